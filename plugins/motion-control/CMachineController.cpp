// SPDX-License-Identifier: MIT
#include "CMachineController.h"

#include <QCoreApplication>

#include <utility>

namespace {

/// How soon an interruption is seen.
constexpr int kSliceMs = 10;
constexpr double kDigitsOfMove = 1000;
/// Beyond all machines: a place that no command can tell.
constexpr double kGreatestPlace = 1e6;
constexpr char kMoveLetters[] = "XYZ";

QString trMachine(const char* text)
{
    return QCoreApplication::translate("CMachineController", text);
}

} // namespace

CMachineController::CMachineController(CLineLink& link, StageSettings settings, const MachineTimes& times,
                                       MachineHooks hooks)
    : m_link(link), m_settings(std::move(settings)), m_times(times), m_hooks(std::move(hooks))
{
    m_heard.start();
}

MachineResult CMachineController::MoveTo(const StagePlace& place, double feed)
{
    // What is stopped already does not even begin.
    if (isInterrupted())
        return interrupted();
    StagePlace goal = sumOf(place, m_settings.offset);
    for (size_t axis = 0; axis < goal.size(); ++axis) {
        goal[axis] = std::round(goal[axis] * kDigitsOfMove) / kDigitsOfMove;
        // Written so that not-a-number is refused, too.
        if (!(goal[axis] >= m_settings.min[axis] && goal[axis] <= m_settings.max[axis]) ||
            std::abs(goal[axis]) > kGreatestPlace)
            return refused(trMachine("%1 %2 mm is outside the limits of the settings")
                               .arg(QLatin1Char(kMoveLetters[axis]))
                               .arg(goal[axis]));
    }
    return moveTo(goal, feed);
}

bool CMachineController::listen()
{
    QByteArray line;
    const CLineLink::Input input = m_link.Read(line, kSliceMs);
    if (input == CLineLink::Input::Line && take(line))
        m_heard.start();
    m_hooks.onTick();
    return input != CLineLink::Input::Lost;
}

MachineResult CMachineController::heed()
{
    if (!listen())
        return silent();
    if (isInterrupted())
        return interrupted();
    return trouble();
}

MachineResult CMachineController::await(const std::function<bool()>& isOver, qint64 limitMs)
{
    QElapsedTimer waited;
    waited.start();
    MachineResult result;
    while (result.IsDone() && !isOver() && waited.elapsed() < limitMs)
        result = heed();
    return result;
}

void CMachineController::drain()
{
    QByteArray line;
    QElapsedTimer drained;
    drained.start();
    while (drained.elapsed() < m_times.answer && m_link.Read(line, 0) == CLineLink::Input::Line)
        take(line);
}

void CMachineController::tellPlace(const StagePlace& workPlace)
{
    m_hooks.onPlace(differenceOf(workPlace, m_settings.offset));
}

MachineResult CMachineController::silent() const
{
    return {MachineResult::Kind::Silent,
            trMachine("controller silent: %1 gives no answer").arg(m_settings.port)};
}

QByteArray CMachineController::moveLine(const StagePlace& place, double feed)
{
    QByteArray line = feed > 0 ? "G1" : "G0";
    for (size_t axis = 0; axis < place.size(); ++axis) {
        line += ' ';
        line += kMoveLetters[axis];
        line += QByteArray::number(place[axis], 'f', 3);
    }
    if (feed > 0)
        line += " F" + QByteArray::number(feed, 'f', 1);
    return line;
}
