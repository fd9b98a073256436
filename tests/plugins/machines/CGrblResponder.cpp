// SPDX-License-Identifier: GPL-3.0-or-later
#include "CGrblResponder.h"

namespace {

QByteArray numbers(const CMotionModel::Place& place, double factor)
{
    return QByteArray::number(place[0] * factor, 'f', 3) + ',' +
           QByteArray::number(place[1] * factor, 'f', 3) + ',' +
           QByteArray::number(place[2] * factor, 'f', 3);
}

} // namespace

CGrblResponder::CGrblResponder()
    : Settings{{1, 255},    {10, 1},      {13, 0},      {20, 0},     {22, 0},
               {23, 0},     {110, 12000}, {111, 12000}, {112, 3000}, {120, 2000},
               {121, 2000}, {122, 500},   {130, 200},   {131, 200},  {132, 100}}
{
}

CGrblResponder::~CGrblResponder()
{
    end();
}

void CGrblResponder::OnByte(char byte)
{
    const bool isDeaf = m_isHalted || (m_isHoming && IsHomingSilent);
    if (byte == '\x18') {
        restart();
        return;
    }
    if (isDeaf)
        return;
    switch (byte) {
    case '?':
        sendStatus();
        return;
    case '!':
        ++m_numHolds;
        m_heldAtX = m_motion.At[0];
        m_motion.Hold();
        return;
    case '~':
        m_motion.Resume();
        return;
    case '\x85':
        return;
    case '\r':
    case '\n':
        note(m_line);
        m_waiting.push_back(m_line);
        m_line.clear();
        return;
    default:
        m_line += byte;
    }
}

void CGrblResponder::OnTick()
{
    if (m_motion.At[0] > AlarmBeyondX && !m_isHalted && !IsLocked) {
        m_motion.Drop();
        IsLocked = true;
        m_isHalted = true;
        send("ALARM:1");
        send("[MSG:Reset to continue]");
    }
    if (m_isToBegin && Clock::now() > m_beginsAt) {
        m_isToBegin = false;
        m_motion.Resume();
    }
    if (m_isHoming && !IsHomingSilent && Clock::now() > m_homedAt) {
        m_isHoming = false;
        IsLocked = false;
        m_motion.At = {-1, -1, -1};
        send("ok");
    }
    while (!m_isHalted && !m_isHoming && (!m_waiting.empty() || !m_barrier.isEmpty())) {
        const bool wasBarrier = !m_barrier.isEmpty();
        handleNext();
        if (wasBarrier && !m_barrier.isEmpty())
            return;
    }
}

void CGrblResponder::handleNext()
{
    if (!m_barrier.isEmpty()) {
        if ((m_motion.IsMoving() || m_motion.IsHeld()) && !IsBarrierInstant)
            return;
        const QByteArray line = m_barrier;
        m_barrier.clear();
        answerOk(line);
        return;
    }
    const QByteArray line = m_waiting.front();
    m_waiting.pop_front();
    if (NumLinesToLose > 0 && line.startsWith(LostBeginning)) {
        --NumLinesToLose;
        return;
    }
    handle(line);
}

void CGrblResponder::handle(const QByteArray& line)
{
    if (IsReportingMuch)
        sendStatus();
    if (line == "$$") {
        sendSettings();
    } else if (line == "$I") {
        send("[VER:1.1h.20190830:]");
        send("[OPT:V,15,128]");
    } else if (line == "$X") {
        IsLocked = false;
        send("[MSG:Caution: Unlocked]");
    } else if (line == "$H") {
        if (Settings[22] == 0) {
            send("error:5");
            return;
        }
        m_isHoming = true;
        m_homedAt = Clock::now() + std::chrono::milliseconds(100);
        return;
    } else if (IsLocked) {
        send("error:9");
        return;
    } else if (line.startsWith("G4")) {
        m_barrier = line;
        return;
    } else if (line.startsWith("G0") || line.startsWith("G1")) {
        if (ErrorOfMoves != 0) {
            send("error:" + QByteArray::number(ErrorOfMoves));
            return;
        }
        move(line);
    }
    answerOk(line);
}

void CGrblResponder::move(const QByteArray& line)
{
    CMotionModel::Place goal = m_motion.End();
    for (size_t axis = 0; axis < goal.size(); ++axis)
        goal[axis] = word(line, "XYZ"[axis], goal[axis] - WorkOffset[axis]) + WorkOffset[axis];
    m_feed = word(line, 'F', m_feed);
    if (IsBarrierInstant) {
        m_isToBegin = true;
        m_beginsAt = Clock::now() + std::chrono::milliseconds(100);
        m_motion.Hold();
    }
    m_motion.Add(goal, (line.startsWith("G0") ? Settings[110] : m_feed) / 60);
}

void CGrblResponder::answerOk(const QByteArray& line)
{
    if (NumAnswersToLose > 0 && line.startsWith(MuteBeginning)) {
        --NumAnswersToLose;
        return;
    }
    send("ok");
}

void CGrblResponder::sendSettings()
{
    for (auto it = Settings.cbegin(); it != Settings.cend(); ++it)
        send('$' + QByteArray::number(it.key()) + '=' + QByteArray::number(it.value(), 'f', 3));
}

void CGrblResponder::sendStatus()
{
    const double factor = Settings[13] != 0 ? 1 / 25.4 : 1;
    CMotionModel::Place place = m_motion.At;
    for (size_t axis = 0; axis < place.size() && IsReportingWork; ++axis)
        place[axis] -= WorkOffset[axis];
    QByteArray report = '<' + state() + (IsReportingWork ? "|WPos:" : "|MPos:") + numbers(place, factor) +
                        "|FS:" + QByteArray::number(m_motion.Speed() * 60, 'f', 0) + ",0";
    if (m_numReports++ % 10 == 1)
        report += "|WCO:" + numbers(WorkOffset, factor);
    send(report + '>');
}

QByteArray CGrblResponder::state() const
{
    if (IsLocked)
        return "Alarm";
    if (m_isHoming)
        return "Home";
    if (m_isToBegin)
        return "Idle";
    if (m_motion.IsHeld())
        return m_motion.IsMoving() ? "Hold:1" : "Hold:0";
    return m_motion.IsMoving() ? "Run" : "Idle";
}

void CGrblResponder::restart()
{
    ++m_numResets;
    if (m_motion.IsMoving() || m_isHoming) {
        IsLocked = true;
        send(m_isHoming ? "ALARM:6" : "ALARM:3");
    }
    m_motion.Drop();
    m_waiting.clear();
    m_barrier.clear();
    m_line.clear();
    m_isHalted = false;
    m_isHoming = false;
    m_numReports = 0;
    if (m_numResets > 1)
        WorkOffset = OffsetAfterStop.value_or(WorkOffset);
    if (!Noise.isEmpty())
        send(Noise);
    send("");
    send("Grbl 1.1h ['$' for help]");
    if (IsLocked)
        send("[MSG:'$H'|'$X' to unlock]");
}

double CGrblResponder::word(const QByteArray& line, char letter, double missing)
{
    const int at = line.indexOf(letter);
    if (at < 0)
        return missing;
    int end = at + 1;
    while (end < line.size() && line[end] != ' ')
        ++end;
    return line.mid(at + 1, end - at - 1).toDouble();
}
