// SPDX-License-Identifier: MIT
#include "CMarlinController.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <algorithm>

namespace {

constexpr int kMarlinTrials = 3;
constexpr int kMarlinResends = 10;
/// A printer loads its boot loader, its settings and its screen first.
constexpr int kMarlinStartFactor = 4;
constexpr int kMarlinSliceMs = 10;
constexpr double kSecondsPerMinute = 60;
constexpr double kMsPerSecond = 1000;
/// Of a feed that is not told.
constexpr double kMarlinAssumedFeed = 1000;
/// No move takes longer than a day.
constexpr double kMarlinMaxSeconds = 86400;
constexpr char kMarlinLetters[] = "XYZ";

QString trMarlin(const char* text)
{
    return QCoreApplication::translate("CMarlinController", text);
}

} // namespace

MachineResult CMarlinController::Connect()
{
    m_limits.reset();
    m_maxFeed = {};
    m_isHomed = false;
    m_isBusy = false;
    m_hasEmergencyParser = false;
    MachineResult result = greet();
    // Who it is, its greatest speeds, its limits.
    for (const char* question : {"M115", "M503", "M211"}) {
        if (result.IsDone())
            result = command(question, times().answer);
    }
    if (result.IsDone())
        result = Prepare();
    return result;
}

MachineResult CMarlinController::greet()
{
    drain();
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < static_cast<qint64>(times().banner) * kMarlinStartFactor) {
        // The empty line ends what may have come in before.
        if (!link().Write("\nM110 N0\n"))
            return silent();
        m_heardOf = {};
        QElapsedTimer asked;
        asked.start();
        while (asked.elapsed() < times().banner && !m_heardOf.isOk && !m_heardOf.isStart) {
            if (!listen())
                return silent();
            if (isInterrupted())
                return interrupted();
        }
        const bool isAnswered = m_heardOf.isOk;
        // The rest of its greeting, and answers to earlier trials.
        if (!letFinish())
            return silent();
        if (isAnswered && !m_heardOf.isStart) {
            m_lineNumber = 0;
            return {};
        }
    }
    return silent();
}

bool CMarlinController::letFinish()
{
    QElapsedTimer quiet;
    QElapsedTimer waited;
    quiet.start();
    waited.start();
    // Whatever it says counts here, though a port that is never quiet is not waited for.
    while (quiet.elapsed() < times().quiet && waited.elapsed() < times().banner) {
        QByteArray line;
        const CLineLink::Input input = link().Read(line, kMarlinSliceMs);
        if (input == CLineLink::Input::Lost)
            return false;
        if (input == CLineLink::Input::Nothing)
            continue;
        take(line);
        quiet.start();
    }
    return true;
}

MachineResult CMarlinController::Prepare()
{
    drain();
    m_heardOf = {};
    MachineResult result;
    // Millimetres, absolute places, and motors that stay on at rest.
    for (const char* line : {"G21", "G90", "M84 S0"}) {
        if (result.IsDone())
            result = command(line, times().answer);
    }
    if (result.IsDone() && settings().isHoming && !m_isHomed)
        result = home();
    if (result.IsDone())
        result = askPlace();
    return result;
}

MachineResult CMarlinController::home()
{
    qInfo("%s: homing", qPrintable(settings().port));
    m_isBusy = true;
    m_isHoming = true;
    MachineResult result = command("G28", times().homing);
    if (result.kind == MachineResult::Kind::Silent)
        result.text = trMarlin("controller silent: homing does not end");
    if (!result.IsDone())
        return result;
    m_isBusy = false;
    m_isHoming = false;
    m_isHomed = true;
    return {};
}

MachineResult CMarlinController::askPlace()
{
    m_heardOf.hasPlace = false;
    const MachineResult result = command("M114", times().answer);
    if (result.IsDone() && !m_heardOf.hasPlace)
        return failed(trMarlin("the machine does not tell its place"));
    return result;
}

MachineResult CMarlinController::moveTo(const StagePlace& place, double feed)
{
    drain();
    if (const std::optional<QString> why = whyOutside(place))
        return refused(*why);
    const StagePlace from = m_workPlace;
    const double seconds = secondsOf(from, place, feed);
    m_isBusy = true;
    m_heardOf.isNotHomed = false;
    MachineResult result = command(moveLine(place, feed), times().answer);
    if (result.IsDone() && m_heardOf.isNotHomed) {
        m_isBusy = false;
        return refused(trMarlin("the machine does not move before it is homed"));
    }
    if (result.IsDone())
        result = passTime(from, place, seconds);
    if (result.IsDone())
        result = command("M400", times().stall + static_cast<qint64>(seconds * kMsPerSecond));
    if (result.IsDone())
        result = askPlace();
    if (!result.IsDone())
        return result;
    m_isBusy = false;
    if (distanceOf(m_workPlace, place) > 2 * kPlaceToleranceMm)
        return refused(trMarlin("the machine stands at (%1, %2, %3) mm, not where it was sent")
                           .arg(m_workPlace[0])
                           .arg(m_workPlace[1])
                           .arg(m_workPlace[2]));
    return {};
}

MachineResult CMarlinController::passTime(const StagePlace& from, const StagePlace& to, double seconds)
{
    QElapsedTimer passed;
    passed.start();
    const double durationMs = seconds * kMsPerSecond;
    while (static_cast<double>(passed.elapsed()) < durationMs) {
        if (!listen())
            return silent();
        if (isInterrupted())
            return interrupted();
        const MachineResult result = trouble();
        if (!result.IsDone())
            return result;
        const double part = std::min(1.0, static_cast<double>(passed.elapsed()) / durationMs);
        const StagePlace way = differenceOf(to, from);
        tellPlace(sumOf(from, {way[0] * part, way[1] * part, way[2] * part}));
    }
    return {};
}

void CMarlinController::Halt()
{
    if (!m_isBusy) {
        hooks().onHaltSent();
        return;
    }
    if (m_isHoming && !m_hasEmergencyParser)
        qWarning("%s: this machine cannot be stopped while it homes", qPrintable(settings().port));
    link().Write("M410\n");
    hooks().onHaltSent();

    m_isHalting = true;
    QElapsedTimer waited;
    waited.start();
    m_heardOf = {};
    startListening();
    // Its answer, and those that were still to come.
    while (waited.elapsed() < times().halt && !(m_heardOf.isOk && silentMs() > times().quiet) && listen()) {
    }
    const bool isAnswering = m_heardOf.isOk;
    m_heardOf = {};
    if (!isAnswering || !askPlace().IsDone())
        qWarning("%s: the machine was told to stop and does not answer", qPrintable(settings().port));
    m_isHalting = false;
    m_isBusy = false;
    m_isHoming = false;
}

MachineResult CMarlinController::command(const QByteArray& line, qint64 limitMs)
{
    drain();
    const QByteArray numbered = MarlinLine::Numbered(++m_lineNumber, line);
    int numTrials = 0;
    int numResends = 0;
    bool isToBeSent = true;
    bool isTaken = false;
    m_heardOf.isOk = false;
    m_heardOf.resend.reset();
    QElapsedTimer waited;
    waited.start();
    while (!m_heardOf.isOk) {
        if (isToBeSent && !link().Write(numbered))
            return silent();
        if (isToBeSent)
            startListening();
        isToBeSent = false;
        if (!listen())
            return silent();
        if (isInterrupted() && !m_isHalting)
            return interrupted();
        const MachineResult result = trouble();
        if (!result.IsDone())
            return result;
        if (waited.elapsed() > limitMs * kMarlinTrials + times().busy)
            return failed(trMarlin("the machine is busy without end"));
        if (m_heardOf.resend) {
            if (*m_heardOf.resend > m_lineNumber + 1 || ++numResends > kMarlinResends)
                return failed(trMarlin("the machine has lost count of the lines"));
            isToBeSent = isToBeSentAgain();
            isTaken = isTaken || !isToBeSent;
        } else if (silentMs() > limitMs) {
            // It has the line, so that it was the answer that got lost.
            if (isTaken && !m_isHoming)
                return {};
            if (m_isHoming || ++numTrials == kMarlinTrials)
                return silent();
            qWarning("%s: no answer; sending the line again", qPrintable(settings().port));
            isToBeSent = true;
        }
    }
    return {};
}

bool CMarlinController::isToBeSentAgain()
{
    const bool isTaken = *m_heardOf.resend == m_lineNumber + 1;
    if (!isTaken)
        qWarning("%s: a line came damaged; sending it again", qPrintable(settings().port));
    // The request has an `ok` of its own, which is none for the line.
    m_heardOf.isOk = false;
    await([this] { return m_heardOf.isOk; }, times().quiet);
    startListening();
    m_heardOf.isOk = false;
    m_heardOf.resend.reset();
    return !isTaken;
}

double CMarlinController::secondsOf(const StagePlace& from, const StagePlace& to, double feed) const
{
    const double speed = (feed > 0 ? feed : kMarlinAssumedFeed) / kSecondsPerMinute;
    const StagePlace way = differenceOf(to, from);
    double seconds = distanceOf(from, to) / speed;
    for (size_t axis = 0; axis < way.size(); ++axis) {
        if (m_maxFeed[axis] > 0)
            seconds = std::max(seconds, std::abs(way[axis]) / m_maxFeed[axis]);
    }
    return std::min(seconds, kMarlinMaxSeconds);
}

std::optional<QString> CMarlinController::whyOutside(const StagePlace& place) const
{
    if (!m_limits)
        return std::nullopt;
    for (size_t axis = 0; axis < place.size(); ++axis) {
        if (place[axis] < m_limits->place[axis] || place[axis] > m_limits->upper[axis])
            return trMarlin("%1 %2 mm is beyond the machine's limits of %3 to %4 mm")
                .arg(QLatin1Char(kMarlinLetters[axis]))
                .arg(place[axis])
                .arg(m_limits->place[axis])
                .arg(m_limits->upper[axis]);
    }
    return std::nullopt;
}

bool CMarlinController::take(const QByteArray& bytes)
{
    const MarlinLine line = MarlinLine::Parse(bytes);
    switch (line.kind) {
    case MarlinLine::Kind::Ok:
        m_heardOf.isOk = true;
        break;
    case MarlinLine::Kind::Resend:
        m_heardOf.resend = line.number;
        break;
    case MarlinLine::Kind::Error:
        m_heardOf.error = line.text;
        break;
    case MarlinLine::Kind::Start:
        m_heardOf = {};
        m_heardOf.isStart = true;
        m_isHomed = false;
        break;
    case MarlinLine::Kind::NotHomed:
        m_heardOf.isNotHomed = true;
        break;
    case MarlinLine::Kind::Place:
        m_heardOf.hasPlace = true;
        m_workPlace = line.place;
        tellPlace(m_workPlace);
        break;
    case MarlinLine::Kind::MaxFeed:
        m_maxFeed = line.place;
        break;
    case MarlinLine::Kind::Limits:
        m_limits = line;
        break;
    case MarlinLine::Kind::Firmware:
        qInfo("%s: %s", qPrintable(settings().port), line.text.constData());
        break;
    case MarlinLine::Kind::EmergencyParser:
        m_hasEmergencyParser = line.number != 0;
        break;
    case MarlinLine::Kind::Busy:
    case MarlinLine::Kind::LineFault:
        break;
    case MarlinLine::Kind::Other:
        return false;
    }
    return true;
}

MachineResult CMarlinController::trouble() const
{
    if (!m_heardOf.error.isEmpty())
        return failed(QString::fromLatin1(m_heardOf.error));
    if (m_heardOf.isStart)
        return failed(trMarlin("the controller was restarted"));
    return {};
}
