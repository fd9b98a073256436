// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMarlinResponder.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::chrono::milliseconds kBusyInterval{50};
constexpr std::chrono::milliseconds kHomingTime{100};

double wordOf(const QByteArray& line, char letter, double missing)
{
    for (const QByteArray& word : line.split(' ')) {
        if (word.startsWith(letter))
            return word.mid(1).toDouble();
    }
    return missing;
}

} // namespace

CMarlinResponder::~CMarlinResponder()
{
    end();
}

void CMarlinResponder::OnByte(char byte)
{
    if (byte != '\n' && byte != '\r') {
        m_line += byte;
        return;
    }
    QByteArray line = m_line;
    m_line.clear();
    if (line.isEmpty())
        return;
    if (!unwrap(line))
        return;
    note(line);
    m_waiting.push_back(line);
}

bool CMarlinResponder::unwrap(QByteArray& line)
{
    if (!line.startsWith('N'))
        return true;
    const int star = line.lastIndexOf('*');
    const int blank = line.indexOf(' ');
    const long number = line.mid(1, blank - 1).toLong();
    const QByteArray command = line.mid(blank + 1, star - blank - 1);
    if (NumLinesToLose > 0 && command.startsWith(LostBeginning)) {
        --NumLinesToLose;
        return false;
    }
    int checksum = 0;
    for (int i = 0; i < star; ++i)
        checksum ^= static_cast<unsigned char>(line[i]);
    const bool isDamaged = NumLinesToDamage > 0 && command.startsWith(DamagedBeginning);
    if (isDamaged)
        --NumLinesToDamage;
    if (star < 0 || isDamaged || line.mid(star + 1).toInt() != checksum) {
        refuse("checksum mismatch, Last Line: ");
        return false;
    }
    if (number != m_lastNumber + 1) {
        refuse("Line Number is not Last Line Number+1, Last Line: ");
        return false;
    }
    m_lastNumber = number;
    line = command;
    return true;
}

void CMarlinResponder::refuse(const QByteArray& reason)
{
    send("Error:" + reason + QByteArray::number(static_cast<qlonglong>(m_lastNumber)));
    send("Resend: " + QByteArray::number(static_cast<qlonglong>(m_lastNumber + 1)));
    send("ok");
}

void CMarlinResponder::OnTick()
{
    while (!m_waiting.empty() || !m_barrier.isEmpty()) {
        if (!m_barrier.isEmpty()) {
            const bool isHoming = m_barrier == "G28";
            if (isHoming ? IsHomingSilent || Clock::now() < m_homedAt : m_motion.IsMoving()) {
                if (IsTellingBusy && Clock::now() > m_busyAt) {
                    send("echo:busy: processing");
                    ++m_numBusy;
                    m_busyAt = Clock::now() + kBusyInterval;
                }
                return;
            }
            if (isHoming) {
                m_isHomed = true;
                m_motion.At = {0, 0, 0};
                sendPlace();
            }
            const QByteArray line = m_barrier;
            m_barrier.clear();
            answerOk(line);
            continue;
        }
        const QByteArray line = m_waiting.front();
        m_waiting.pop_front();
        handle(line);
    }
}

void CMarlinResponder::handle(const QByteArray& command)
{
    if (command == "M110 N0") {
        m_lastNumber = 0;
    } else if (command == "M115") {
        send("FIRMWARE_NAME:Marlin 2.1.2 SOURCE_CODE_URL:here PROTOCOL_VERSION:1.0 MACHINE_TYPE:Test");
        send("Cap:EMERGENCY_PARSER:0");
    } else if (command == "M503") {
        send("echo:; Maximum feedrates (units/s):");
        send("echo:  M203 X500.00 Y500.00 Z" + QByteArray::number(TopSpeedOfZ, 'f', 2) + " E25.00");
    } else if (command == "M211" && AreLimitsTold) {
        const auto text = [](const CMotionModel::Place& place) {
            return " X" + QByteArray::number(place[0], 'f', 2) + " Y" + QByteArray::number(place[1], 'f', 2) +
                   " Z" + QByteArray::number(place[2], 'f', 2);
        };
        send("echo:Soft endstops: On  Min:" + text(Min) + "   Max:" + text(Max));
    } else if (command == "M114") {
        sendPlace();
    } else if (command == "M400" || command == "G28") {
        m_barrier = command;
        m_busyAt = Clock::now() + kBusyInterval;
        m_homedAt = Clock::now() + kHomingTime;
        return;
    } else if (command == "M410") {
        m_motion.Drop();
    } else if (command.startsWith("G0") || command.startsWith("G1 ")) {
        move(command);
    }
    answerOk(command);
}

void CMarlinResponder::move(const QByteArray& command)
{
    if (!ErrorOfMoves.isEmpty()) {
        send("Error:" + ErrorOfMoves);
        return;
    }
    if (IsHomingNeeded && !m_isHomed) {
        send("echo:Home XYZ First");
        return;
    }
    const CMotionModel::Place from = m_motion.End();
    CMotionModel::Place goal = from;
    for (size_t axis = 0; axis < goal.size(); ++axis)
        goal[axis] = std::clamp(wordOf(command, "XYZ"[axis], goal[axis]), Min[axis], Max[axis]);
    m_feed = wordOf(command, 'F', m_feed);
    double speed = m_feed / 60;
    const double distance = std::hypot(goal[0] - from[0], goal[1] - from[1], goal[2] - from[2]);
    const double rise = std::abs(goal[2] - from[2]);
    if (rise > 0)
        speed = std::min(speed, TopSpeedOfZ * distance / rise);
    m_motion.Add(goal, speed);
}

void CMarlinResponder::sendPlace()
{
    const CMotionModel::Place place = m_motion.End();
    send("X:" + QByteArray::number(place[0], 'f', 2) + " Y:" + QByteArray::number(place[1], 'f', 2) +
         " Z:" + QByteArray::number(place[2], 'f', 2) + " E:0.00 Count X:0 Y:0 Z:0");
}

void CMarlinResponder::answerOk(const QByteArray& command)
{
    if (NumAnswersToLose > 0 && command.startsWith(MuteBeginning)) {
        --NumAnswersToLose;
        return;
    }
    send("ok");
}
