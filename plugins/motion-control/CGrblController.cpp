// SPDX-License-Identifier: MIT
#include "CGrblController.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <algorithm>

namespace {

constexpr char kGrblReset = '\x18';
constexpr char kGrblJogCancel = '\x85';
constexpr char kGrblHold = '!';
constexpr char kGrblAskStatus = '?';
/// Waits until all moves before it are done, and then for so many seconds.
constexpr const char* kGrblBarrier = "G4 P0.05";
constexpr int kGrblTrials = 3;
/// The work offset is in one of so many reports at the latest.
constexpr int kGrblReportsToOffset = 40;
constexpr int kGrblMotorsAlwaysOn = 255;

QString trGrbl(const char* text)
{
    return QCoreApplication::translate("CGrblController", text);
}

} // namespace

MachineResult CGrblController::Connect()
{
    m_configuration = {};
    m_workOffset.reset();
    m_isBusy = false;
    m_mayBeLocked = true;
    MachineResult result = awaitBanner();
    if (result.IsDone())
        result = readConfiguration();
    if (result.IsDone())
        result = Prepare();
    return result;
}

MachineResult CGrblController::awaitBanner()
{
    drain();
    m_heardOf = {};
    bool isResetSent = false;
    QElapsedTimer waited;
    waited.start();
    // Whatever comes before the banner is of the time before: answers to questions of somebody else.
    while (!m_heardOf.isBanner) {
        if (!listen())
            return silent();
        if (isInterrupted())
            return interrupted();
        if (!isResetSent && m_heardOf.hasStatus && isMoving())
            return failed(trGrbl("the machine is moving already"));
        const bool isLate = waited.elapsed() > times().banner;
        if (isResetSent && isLate)
            return silent();
        if (!isResetSent && (m_heardOf.hasStatus || isLate)) {
            // A controller that did not restart by itself shows its banner after a reset. One that is halted
            // by an alarm answers nothing else.
            if (!link().Write(QByteArray(1, kGrblReset)))
                return silent();
            isResetSent = true;
            waited.start();
        } else if (!isResetSent) {
            poll();
        }
    }
    if (!isResetSent && !settings().isHoming)
        qWarning("%s: the machine restarted as its port was opened: its zero is where it stands now",
                 qPrintable(settings().port));
    qInfo("%s: %s", qPrintable(settings().port), m_banner.constData());
    return {};
}

MachineResult CGrblController::readConfiguration()
{
    m_configuration = {};
    m_heardOf = {};
    for (const char* question : {"$$", "$I"}) {
        const MachineResult result = command(question);
        if (!result.IsDone())
            return result;
    }
    if (m_configuration.idleDelayMs != kGrblMotorsAlwaysOn)
        qInfo("%s: the motors are switched off at rest ($1=%d); with $1=255 they hold the probe",
              qPrintable(settings().port), m_configuration.idleDelayMs);
    noteSlowAxes();
    return {};
}

void CGrblController::noteSlowAxes() const
{
    const double feed = std::max(settings().feed, settings().scanFeed);
    const StagePlace& rate = m_configuration.maxRate;
    const bool isSlower =
        std::any_of(rate.cbegin(), rate.cend(), [feed](double most) { return most > 0 && most < feed; });
    if (isSlower)
        qInfo("%s: the feed of the settings is more than the machine's, X %g, Y %g, Z %g mm/min",
              qPrintable(settings().port), rate[0], rate[1], rate[2]);
}

MachineResult CGrblController::Prepare()
{
    m_heardOf = {};
    m_isHoldTold = false;
    m_mayBeLocked = true;
    MachineResult result = askStatus();
    if (result.IsDone() && isState("Alarm"))
        result = leaveAlarm();
    if (result.IsDone() && settings().isHoming && !m_configuration.isHomed)
        result = home();
    if (!result.IsDone())
        return result;
    m_mayBeLocked = false;
    m_heardOf = {};
    // Millimetres, absolute places, feed per minute.
    result = command("G21 G90 G94");
    if (result.IsDone())
        result = askWorkOffset();
    return result;
}

MachineResult CGrblController::leaveAlarm()
{
    m_configuration.isHomed = false;
    if (settings().isHoming)
        return {};
    if (!settings().isUnlocking)
        return failed(trGrbl("the machine is locked by an alarm: home it, or let it be unlocked (Home and "
                             "Unlock in the settings)"));
    qWarning("%s: unlocked after an alarm; its position may be wrong", qPrintable(settings().port));
    m_heardOf = {};
    m_status = {};
    return command("$X");
}

MachineResult CGrblController::home()
{
    if (!m_configuration.hasHoming)
        return failed(trGrbl("homing is asked for, but the machine has none ($22=0)"));
    qInfo("%s: homing", qPrintable(settings().port));
    m_heardOf = {};
    m_status = {};
    m_isBusy = true;
    m_isHoming = true;
    if (!send("$H"))
        return silent();
    // Some controllers answer nothing at all while they home.
    const MachineResult result = await([this] { return m_heardOf.isOk; }, times().homing);
    if (!result.IsDone())
        return result;
    if (!m_heardOf.isOk)
        return {MachineResult::Kind::Silent, trGrbl("controller silent: homing does not end")};
    m_isBusy = false;
    m_isHoming = false;
    m_configuration.isHomed = true;
    return {};
}

MachineResult CGrblController::moveTo(const StagePlace& place, double feed)
{
    drain();
    if (const MachineResult result = trouble(); !result.IsDone())
        return result;
    const StagePlace machinePlace = sumOf(place, m_workOffset.value_or(StagePlace{}));
    if (const std::optional<QString> why = m_configuration.WhyOutside(machinePlace))
        return refused(*why);

    for (int trial = 0; trial < kGrblTrials; ++trial) {
        m_isBusy = true;
        MachineResult result = command(moveLine(place, feed));
        if (result.kind == MachineResult::Kind::Refused)
            m_isBusy = false;
        if (!result.IsDone())
            return result;
        switch (awaitArrival(place, result)) {
        case Arrival::Arrived:
            m_isBusy = false;
            return {};
        case Arrival::Trouble:
            return result;
        case Arrival::NotThere:
            qWarning("%s: the machine did not move; sending the move again", qPrintable(settings().port));
        }
    }
    return failed(trGrbl("the machine does not go to the place"));
}

CGrblController::Arrival CGrblController::awaitArrival(const StagePlace& place, MachineResult& result)
{
    m_heardOf = {};
    int numBarriers = 1;
    bool isAcknowledged = false;
    QElapsedTimer atRest;
    QElapsedTimer moved;
    StagePlace last = m_workPlace;
    QElapsedTimer reported;
    moved.start();
    reported.start();
    result = send(kGrblBarrier) ? MachineResult() : silent();
    while (result.IsDone()) {
        poll();
        result = heed();
        if (result.IsDone() && reported.elapsed() > times().silence)
            result = silent();
        if (!result.IsDone())
            break;
        if (m_heardOf.isOk && !isAcknowledged) {
            // The report has to be younger than the acknowledgement.
            isAcknowledged = true;
            m_heardOf.hasStatus = false;
        }
        if (!m_heardOf.hasStatus)
            continue;
        m_heardOf.hasStatus = false;
        reported.start();
        noteHold();
        if (!isState("Idle"))
            atRest.invalidate();
        else if (!atRest.isValid())
            atRest.start();
        if (m_workPlace != last || !isState("Run"))
            moved.start();
        last = m_workPlace;
        if (isState("Idle") && isAcknowledged && isAt(place))
            return Arrival::Arrived;
        if (moved.elapsed() > times().stall)
            result = failed(trGrbl("the machine says that it runs, but does not move"));
        if (!atRest.isValid() || atRest.elapsed() < times().answer)
            continue;
        if (!isAt(place))
            return Arrival::NotThere;
        if (numBarriers == kGrblTrials) {
            result = {MachineResult::Kind::Silent, trGrbl("controller silent: no acknowledgement")};
            break;
        }
        qWarning("%s: a line was lost; sending it again", qPrintable(settings().port));
        ++numBarriers;
        atRest.start();
        if (!send(kGrblBarrier))
            result = silent();
    }
    return Arrival::Trouble;
}

void CGrblController::Halt()
{
    if (!m_isBusy) {
        hooks().onHaltSent();
        return;
    }
    // An alarm has stopped it, and made it deaf to all but a reset.
    const bool isStopped = m_heardOf.alarm.has_value();
    if (!m_isHoming)
        link().Write(QByteArray(1, kGrblHold) + kGrblJogCancel);
    else
        link().Write(QByteArray(1, kGrblReset)); // homing knows no hold
    hooks().onHaltSent();

    QElapsedTimer waited;
    waited.start();
    int numAtRest = 0;
    StagePlace last = m_workPlace;
    m_heardOf = {};
    // A reset before it is at rest would make it lose its position. At rest is what stands twice at one
    // place: some say that the hold is complete while they slow down.
    bool isAnswering = m_isHoming || isStopped;
    while (!m_isHoming && !isStopped && numAtRest < 2 &&
           waited.elapsed() < (isAnswering ? times().halt : times().answer)) {
        poll();
        if (!listen())
            break;
        if (!m_heardOf.hasStatus)
            continue;
        m_heardOf.hasStatus = false;
        isAnswering = true;
        if (isState("Alarm"))
            break;
        numAtRest = !isMoving() && m_workPlace == last ? numAtRest + 1 : 0;
        last = m_workPlace;
    }
    reset(isAnswering);
}

void CGrblController::reset(bool isAnswering)
{
    // What was sent and is not begun yet goes with it.
    const bool wasHomed = m_configuration.isHomed;
    m_heardOf = {};
    if (!m_isHoming)
        link().Write(QByteArray(1, kGrblReset));
    QElapsedTimer waited;
    waited.start();
    while (isAnswering && !m_heardOf.isBanner && waited.elapsed() < times().banner && listen()) {
    }
    isAnswering = m_heardOf.isBanner;
    // At rest it knows its place on, unlike after a restart of its own.
    m_configuration.isHomed = wasHomed && !m_isHoming;
    m_heardOf = {};
    if (isAnswering)
        askWorkOffset();
    else
        qWarning("%s: the machine was told to stop and does not answer", qPrintable(settings().port));
    m_heardOf = {};
    m_isBusy = false;
    m_isHoming = false;
}

MachineResult CGrblController::command(const QByteArray& line)
{
    for (int trial = 0; trial < kGrblTrials; ++trial) {
        drain();
        m_heardOf.isOk = false;
        m_heardOf.error.reset();
        if (trial > 0)
            qWarning("%s: a line was lost; sending it again", qPrintable(settings().port));
        if (!send(line))
            return silent();
        MachineResult result = await([this] { return m_heardOf.isOk || m_heardOf.error; }, times().answer);
        if (m_heardOf.error && !m_heardOf.alarm && !m_heardOf.isBanner)
            return refused(QString::fromLatin1(line) + QLatin1String(": ") + errorText());
        if (!result.IsDone() || m_heardOf.isOk)
            return result;
        // Is somebody there, at least?
        result = askStatus();
        if (!result.IsDone())
            return result;
    }
    return {MachineResult::Kind::Silent, trGrbl("controller silent: no acknowledgement")};
}

MachineResult CGrblController::askStatus()
{
    m_heardOf.hasStatus = false;
    QElapsedTimer asked;
    asked.start();
    while (!m_heardOf.hasStatus) {
        poll();
        if (!listen() || asked.elapsed() > times().silence)
            return silent();
        if (isInterrupted() && !m_isBusy)
            return interrupted();
    }
    return {};
}

MachineResult CGrblController::askWorkOffset()
{
    for (int i = 0; i < kGrblReportsToOffset && !m_workOffset; ++i) {
        m_polled.invalidate();
        const MachineResult result = askStatus();
        if (!result.IsDone())
            return result;
    }
    if (!m_workOffset)
        return failed(trGrbl("the machine does not tell its work offset"));
    m_polled.invalidate();
    return askStatus();
}

bool CGrblController::take(const QByteArray& bytes)
{
    const GrblLine line = GrblLine::Parse(bytes);
    switch (line.kind) {
    case GrblLine::Kind::Ok:
        m_heardOf.isOk = true;
        break;
    case GrblLine::Kind::Error:
        m_heardOf.error = line.number;
        break;
    case GrblLine::Kind::Alarm:
        m_heardOf.alarm = line.number;
        break;
    case GrblLine::Kind::Banner:
        m_heardOf = {};
        m_heardOf.isBanner = true;
        m_configuration.isHomed = false;
        m_banner = line.text;
        // A restart ends such offsets as are not kept.
        m_workOffset.reset();
        break;
    case GrblLine::Kind::Status:
        takeStatus(line);
        break;
    case GrblLine::Kind::Setting:
        m_configuration.TakeSetting(line.number, line.value);
        break;
    case GrblLine::Kind::Options:
        m_configuration.TakeOptions(line.text);
        break;
    case GrblLine::Kind::Message:
        qInfo("%s: %s", qPrintable(settings().port), line.text.constData());
        break;
    case GrblLine::Kind::Other:
        qDebug("%s: not understood: %s", qPrintable(settings().port), line.text.constData());
        return false;
    }
    return true;
}

void CGrblController::takeStatus(const GrblLine& line)
{
    m_status = line;
    m_heardOf.hasStatus = true;
    const double factor = m_configuration.ReportFactor();
    const auto inMillimetres = [factor](const StagePlace& place) -> StagePlace {
        return {place[0] * factor, place[1] * factor, place[2] * factor};
    };
    if (line.workOffset)
        m_workOffset = inMillimetres(*line.workOffset);
    if (line.workPlace)
        m_workPlace = inMillimetres(*line.workPlace);
    else if (line.machinePlace && m_workOffset)
        m_workPlace = differenceOf(inMillimetres(*line.machinePlace), *m_workOffset);
    else
        return;
    tellPlace(m_workPlace);
}

void CGrblController::poll()
{
    if (m_polled.isValid() && m_polled.elapsed() < times().poll)
        return;
    m_polled.start();
    link().Write(QByteArray(1, kGrblAskStatus));
}

bool CGrblController::send(const QByteArray& line)
{
    return link().Write(line + '\n');
}

MachineResult CGrblController::trouble() const
{
    if (m_heardOf.alarm)
        return failed(
            QStringLiteral("ALARM:%1, %2").arg(*m_heardOf.alarm).arg(GrblLine::AlarmText(*m_heardOf.alarm)));
    if (m_heardOf.isBanner)
        return failed(trGrbl("the controller was restarted"));
    if (m_heardOf.error)
        return failed(errorText());
    if (isState("Alarm") && m_heardOf.hasStatus && !m_mayBeLocked)
        return failed(trGrbl("the machine is locked by an alarm"));
    return {};
}

QString CGrblController::errorText() const
{
    return QStringLiteral("error:%1, %2").arg(*m_heardOf.error).arg(GrblLine::ErrorText(*m_heardOf.error));
}

void CGrblController::noteHold()
{
    const bool isHeld = isState("Hold") || isState("Door");
    if (isHeld && !m_isHoldTold)
        qWarning("%s: the machine is held (%s); the mapping waits", qPrintable(settings().port),
                 m_status.state.constData());
    m_isHoldTold = isHeld;
}

bool CGrblController::isAt(const StagePlace& place) const
{
    const StagePlace way = differenceOf(place, m_workPlace);
    return std::abs(way[0]) <= kPlaceToleranceMm && std::abs(way[1]) <= kPlaceToleranceMm &&
           std::abs(way[2]) <= kPlaceToleranceMm;
}
