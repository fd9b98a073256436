// SPDX-License-Identifier: MIT
#include "MarlinLine.h"

namespace {

constexpr char kMarlinAxes[] = "XYZ";

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

/// "X1.5 Y2 Z3" or "X:1.5 Y:2 Z:3", from `from` on.
std::optional<StagePlace> marlinPlaceOf(const QByteArray& text, int from)
{
    StagePlace place{};
    int at = from;
    for (size_t axis = 0; axis < place.size(); ++axis) {
        at = text.indexOf(kMarlinAxes[axis], at);
        if (at < 0)
            return std::nullopt;
        ++at;
        if (at < text.size() && text[at] == ':')
            ++at;
        while (at < text.size() && text[at] == ' ')
            ++at;
        int end = at;
        while (end < text.size() && (text[end] == '-' || text[end] == '.' || isDigit(text[end])))
            ++end;
        bool ok = false;
        place[axis] = text.mid(at, end - at).toDouble(&ok);
        if (!ok)
            return std::nullopt;
        at = end;
    }
    return place;
}

bool parseResend(const QByteArray& text, MarlinLine& result)
{
    int at = 0;
    while (at < text.size() && !isDigit(text[at]))
        ++at;
    int end = at;
    while (end < text.size() && isDigit(text[end]))
        ++end;
    bool ok = false;
    result.number = text.mid(at, end - at).toLong(&ok);
    return ok;
}

bool isLineFault(const QByteArray& text)
{
    return text.contains("Line Number is not") || text.contains("checksum mismatch") ||
           text.contains("No Checksum") || text.contains("No Line Number");
}

bool parseLimits(const QByteArray& text, MarlinLine& result)
{
    const int low = text.indexOf("Min:");
    const int high = text.indexOf("Max:");
    const QByteArray lower = text.toLower();
    if (low < 0 || high < low || lower.left(low).contains("off"))
        return false;
    const std::optional<StagePlace> min = marlinPlaceOf(text, low + 4);
    const std::optional<StagePlace> max = marlinPlaceOf(text, high + 4);
    if (!min || !max)
        return false;
    result.place = *min;
    result.upper = *max;
    return true;
}

bool parsePlace(const QByteArray& text, int from, MarlinLine& result)
{
    const std::optional<StagePlace> place = marlinPlaceOf(text, from);
    result.place = place.value_or(StagePlace{});
    return place.has_value();
}

} // namespace

MarlinLine MarlinLine::Parse(const QByteArray& line)
{
    const QByteArray trimmed = line.trimmed();
    MarlinLine result;
    result.text = trimmed;
    const auto as = [&result](Kind kind, bool isSound = true) {
        result.kind = isSound ? kind : Kind::Other;
        return result;
    };
    if (trimmed == "ok" || trimmed.startsWith("ok "))
        return as(Kind::Ok);
    if (trimmed == "start")
        return as(Kind::Start);
    if (trimmed.startsWith("echo:busy") || trimmed.startsWith("busy:"))
        return as(Kind::Busy);
    if (trimmed.startsWith("Resend:") || trimmed.startsWith("rs "))
        return as(Kind::Resend, parseResend(trimmed, result));
    if (trimmed.startsWith("Error:"))
        return as(isLineFault(trimmed) ? Kind::LineFault : Kind::Error);
    if (trimmed.startsWith("!!"))
        return as(Kind::Error);
    if (trimmed.startsWith("X:"))
        return as(Kind::Place, parsePlace(trimmed, 0, result));
    if (trimmed.startsWith("Cap:EMERGENCY_PARSER:"))
        return as(Kind::EmergencyParser, parseResend(trimmed.mid(21), result));
    if (trimmed.contains("FIRMWARE_NAME:")) {
        result.text = trimmed.mid(trimmed.indexOf("FIRMWARE_NAME:") + 14);
        const int end = result.text.indexOf(" SOURCE_CODE_URL:");
        result.text = result.text.left(end);
        return as(Kind::Firmware);
    }
    const QByteArray message = (trimmed.startsWith("echo:") ? trimmed.mid(5) : trimmed).trimmed();
    if (message.startsWith("M203 "))
        return as(Kind::MaxFeed, parsePlace(message, 5, result));
    if (message.contains("Min:") && message.contains("Max:"))
        return as(Kind::Limits, parseLimits(message, result));
    if (message.startsWith("Home ") && message.toLower().contains("first"))
        return as(Kind::NotHomed);
    return result;
}

QByteArray MarlinLine::Numbered(long number, const QByteArray& line)
{
    const QByteArray numbered = 'N' + QByteArray::number(static_cast<qlonglong>(number)) + ' ' + line;
    char checksum = 0;
    for (const char byte : numbered)
        checksum = static_cast<char>(checksum ^ byte);
    return numbered + '*' + QByteArray::number(static_cast<unsigned char>(checksum)) + '\n';
}
