// SPDX-License-Identifier: GPL-3.0-or-later
#include "FluxReader.h"

#include "NumberText.h"

#include <QRegularExpression>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

enum Column {
    TimestampColumn,
    BColumn,
    BBprimeColumn,
    BxColumn,
    ByColumn,
    BzColumn,
    TemperatureColumn,
    dBColumn
};

/// Whether a backslash before the character makes a pattern that matches just the character.
bool isLiteralWhenEscaped(const QString& separator)
{
    return separator.size() == 1 && !separator[0].isLetterOrNumber() && !separator[0].isSurrogate() &&
           !separator[0].isNull();
}

/// Whether the pattern of the separator takes a bounded number of steps at each place of a text. A repetition
/// may try every way to cut a text into pieces, and a group or a reference may repeat too. One "+" at the end
/// is harmless: nothing behind it can fail. `\X` counts the regional indicators in front of it.
bool isBoundedPattern(const QString& separator)
{
    constexpr int kMaxLength = 16;
    const auto canRepeat = [](QChar character) { return QStringLiteral("*+?{(\\").contains(character); };
    if (separator.size() > kMaxLength || separator.startsWith(QLatin1Char('X')))
        return false;
    if (separator.size() < 2)
        return true;
    const int tail = separator.endsWith(QLatin1Char('+')) ? 1 : 0;
    return std::none_of(separator.begin() + 1, separator.end() - tail, canRepeat);
}

} // namespace

void FluxReader::setSeparator(const QString& separator)
{
    m_separator = separator;
}

int FluxReader::read(const QString& text, CMeasureBlock& block)
{
    const bool isBlank =
        std::all_of(text.begin(), text.end(), [](QChar character) { return character.isSpace(); });
    if (isBlank)
        return 0;

    const int before = block.Results.size();
    // The blocks of a record are mostly of one size. Behind the first text the list grows by itself, since
    // to reserve for each text of many would copy the list as often.
    if (before == 0)
        block.Results.reserve(m_samplesOfLastBlock);
    m_block = &block;
    m_column = TimestampColumn;
    if (isLiteralWhenEscaped(m_separator))
        splitAtCharacter(text);
    else
        splitAtPattern(text);
    return block.Results.size() - before;
}

void FluxReader::finishBlock(CMeasureBlock& block)
{
    block.Results.squeeze();
    m_samplesOfLastBlock = block.Results.size();
}

void FluxReader::splitAtCharacter(const QString& text)
{
    const QChar separator = m_separator[0];
    const auto isSeparator = [separator](QChar character) {
        return character == separator || character == QLatin1Char('\n');
    };
    // A plain number ends at the next separator, unless that can be part of a number.
    const bool canReadNumbersInPlace = !QStringLiteral("+-.").contains(separator);
    const QChar* const end = text.constData() + text.size();
    const QChar* tokenBegin = text.constData();
    for (;;) {
        const QChar* tokenEnd = tokenBegin;
        double value = 0;
        if (canReadNumbersInPlace && isAtValue() && readPlainDecimal(tokenEnd, end, value) &&
            (tokenEnd == end || isSeparator(*tokenEnd))) {
            setValue(static_cast<tFlux>(value));
            finishColumn();
        } else {
            tokenEnd = std::find_if(tokenBegin, end, isSeparator);
            readToken(QStringView(tokenBegin, tokenEnd));
        }
        if (tokenEnd == end)
            return;
        tokenBegin = tokenEnd + 1;
    }
}

void FluxReader::splitAtPattern(const QString& text)
{
    // Behind the backslash such a separator may mean more than itself. The format is defined by the pattern.
    if (!isBoundedPattern(m_separator))
        return;
    const QRegularExpression pattern(QStringLiteral("(\\%1|\\\n)").arg(m_separator));
    if (!pattern.isValid())
        return;
    const QStringView all(text);
    int begin = 0;
    for (auto matches = pattern.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        readToken(all.mid(begin, match.capturedStart() - begin));
        begin = match.capturedEnd();
    }
    readToken(all.mid(begin));
}

void FluxReader::readToken(QStringView token)
{
    if (m_column == TimestampColumn)
        startSample(token);
    else if (m_column == TemperatureColumn)
        m_result->SetTemperature(toCount(token));
    else
        setValue(toFluxValue(token));
    finishColumn();
}

void FluxReader::startSample(QStringView timestamp)
{
    constexpr tFlux kNotANumber = std::numeric_limits<tFlux>::quiet_NaN();
    auto result = QSharedPointer<CFieldIntensityResult>::create();
    m_result = result.data();
    m_result->SetDB(kNotANumber);
    m_result->SetDBConverted(kNotANumber);
    m_timestampParser.parse(timestamp, *m_result);
    m_block->Results.append(std::move(result));
}

void FluxReader::setValue(tFlux value)
{
    switch (m_column) {
    case BColumn:
        m_result->SetB(value);
        break;
    case BBprimeColumn:
        m_result->SetBBprime(value);
        break;
    case BxColumn:
        m_result->SetBx(value);
        break;
    case ByColumn:
        m_result->SetBy(value);
        break;
    case BzColumn:
        m_result->SetBz(value);
        break;
    case dBColumn:
        m_result->SetDB(value);
        break;
    default:
        break;
    }
}

void FluxReader::finishColumn()
{
    const int lastColumn = m_hasUncertaintyColumn ? dBColumn : TemperatureColumn;
    m_column = m_column == lastColumn ? TimestampColumn : m_column + 1;
}

bool FluxReader::isAtValue() const
{
    return m_column != TimestampColumn && m_column != TemperatureColumn;
}
