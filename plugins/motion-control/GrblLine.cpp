// SPDX-License-Identifier: MIT
#include "GrblLine.h"

#include <QCoreApplication>
#include <QList>

namespace {

struct CodeText
{
    int number;
    const char* text;
};

// Texts of our own for the codes of version 1.1; the numbers are those of the protocol.
constexpr CodeText kErrorTexts[] = {
    {1, "a word without its letter"},
    {2, "a number that cannot be read"},
    {3, "an unknown $ command"},
    {5, "homing is not enabled ($22)"},
    {7, "the stored settings could not be read"},
    {8, "allowed at rest only"},
    {9, "locked by an alarm or a jog"},
    {10, "soft limits need homing ($22)"},
    {11, "the line is too long"},
    {13, "the safety door is open"},
    {15, "the place is beyond the travel"},
    {20, "an unknown or unsupported command"},
    {22, "no feed was set"},
    {33, "an invalid target"},
};

constexpr CodeText kAlarmTexts[] = {
    {1, "a limit switch was hit; the position is likely lost"},
    {2, "a target beyond the soft limits"},
    {3, "a reset in motion; the position is likely lost"},
    {4, "the probe input was in the wrong state"},
    {5, "the probe input saw nothing"},
    {6, "homing was ended by a reset"},
    {7, "homing was ended by the safety door"},
    {8, "homing could not clear the limit switch"},
    {9, "homing did not find the limit switch"},
    {10, "homing did not find the second limit switch"},
};

template <size_t N> QString textOfCode(const CodeText (&texts)[N], int number)
{
    for (const CodeText& entry : texts) {
        if (entry.number == number)
            return QCoreApplication::translate("GrblLine", entry.text);
    }
    return QCoreApplication::translate("GrblLine", "code %1").arg(number);
}

/// The first three of at least three numbers.
std::optional<StagePlace> placeOf(const QByteArray& text)
{
    const QList<QByteArray> numbers = text.split(',');
    if (numbers.size() < 3)
        return std::nullopt;
    StagePlace place{};
    for (int axis = 0; axis < 3; ++axis) {
        bool ok = false;
        place[static_cast<size_t>(axis)] = numbers[axis].toDouble(&ok);
        if (!ok || !std::isfinite(place[static_cast<size_t>(axis)]))
            return std::nullopt;
    }
    return place;
}

bool parseStatus(const QByteArray& body, GrblLine& result)
{
    const QList<QByteArray> fields = body.split('|');
    const QList<QByteArray> state = fields.first().split(':');
    if (state.first().isEmpty())
        return false;
    result.state = state.first();
    if (state.size() > 1) {
        bool ok = false;
        result.subState = state[1].toInt(&ok);
        if (!ok)
            return false;
    }
    for (int i = 1; i < fields.size(); ++i) {
        const int colon = fields[i].indexOf(':');
        const QByteArray key = fields[i].left(colon);
        if (key != "MPos" && key != "WPos" && key != "WCO")
            continue;
        const std::optional<StagePlace> place = placeOf(fields[i].mid(colon + 1));
        // A report that was damaged on its way must not move the machine elsewhere.
        if (!place)
            return false;
        (key == "MPos" ? result.machinePlace : key == "WPos" ? result.workPlace : result.workOffset) = place;
    }
    return true;
}

bool parseNumber(const QByteArray& text, int& number)
{
    bool ok = false;
    number = text.toInt(&ok);
    return ok;
}

} // namespace

GrblLine GrblLine::Parse(const QByteArray& line)
{
    const QByteArray trimmed = line.trimmed();
    GrblLine result;
    result.text = trimmed;
    const auto as = [&result](Kind kind, bool isSound) {
        result.kind = isSound ? kind : Kind::Other;
        return result;
    };
    if (trimmed == "ok")
        return as(Kind::Ok, true);
    if (trimmed.startsWith("error:"))
        return as(Kind::Error, parseNumber(trimmed.mid(6), result.number));
    if (trimmed.startsWith("ALARM:"))
        return as(Kind::Alarm, parseNumber(trimmed.mid(6), result.number));
    if (trimmed.startsWith("Grbl ") || trimmed.startsWith("GrblHAL "))
        return as(Kind::Banner, true);
    if (trimmed.startsWith('<'))
        return as(Kind::Status,
                  trimmed.endsWith('>') && parseStatus(trimmed.mid(1, trimmed.size() - 2), result));
    if (trimmed.startsWith('$')) {
        const int equals = trimmed.indexOf('=');
        bool ok = false;
        result.value = trimmed.mid(equals + 1).toDouble(&ok);
        return as(Kind::Setting, equals > 1 && ok && std::isfinite(result.value) &&
                                     parseNumber(trimmed.mid(1, equals - 1), result.number));
    }
    if (trimmed.startsWith("[OPT:")) {
        result.text = trimmed.mid(5).split(',').first();
        if (result.text.endsWith(']'))
            result.text.chop(1);
        return as(Kind::Options, true);
    }
    return as(Kind::Message, trimmed.startsWith('[') && trimmed.endsWith(']'));
}

QString GrblLine::ErrorText(int number)
{
    return textOfCode(kErrorTexts, number);
}

QString GrblLine::AlarmText(int number)
{
    return textOfCode(kAlarmTexts, number);
}
