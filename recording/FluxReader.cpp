// SPDX-License-Identifier: GPL-3.0-or-later
#include "FluxReader.h"

#include "NumberText.h"

#include <QRegularExpression>

#include <algorithm>
#include <limits>

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
    block.Results.reserve(before + m_samplesOfLastBlock);
    m_block = &block;
    m_column = TimestampColumn;
    if (isLiteralWhenEscaped(m_separator))
        splitAtCharacter(text);
    else
        splitAtPattern(text);
    block.Results.squeeze();
    m_samplesOfLastBlock = block.Results.size() - before;
    return m_samplesOfLastBlock;
}

void FluxReader::splitAtCharacter(const QString& text)
{
    const QChar separator = m_separator[0];
    const QChar* const end = text.constData() + text.size();
    const QChar* tokenBegin = text.constData();
    for (const QChar* position = tokenBegin; position != end; ++position) {
        if (*position == separator || *position == QLatin1Char('\n')) {
            readToken(QStringView(tokenBegin, position));
            tokenBegin = position + 1;
        }
    }
    readToken(QStringView(tokenBegin, end));
}

void FluxReader::splitAtPattern(const QString& text)
{
    // Behind the backslash such a separator may mean more than itself. The format is defined by the pattern.
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
    switch (m_column) {
    case TimestampColumn: {
        constexpr tFlux kNotANumber = std::numeric_limits<tFlux>::quiet_NaN();
        auto result = QSharedPointer<CFieldIntensityResult>::create();
        m_result = result.data();
        m_block->Results.append(result);
        m_result->SetDB(kNotANumber);
        m_result->SetDBConverted(kNotANumber);
        m_timestampParser.parse(token, *m_result);
        break;
    }
    case BColumn:
        m_result->SetB(toFluxValue(token));
        break;
    case BBprimeColumn:
        m_result->SetBBprime(toFluxValue(token));
        break;
    case BxColumn:
        m_result->SetBx(toFluxValue(token));
        break;
    case ByColumn:
        m_result->SetBy(toFluxValue(token));
        break;
    case BzColumn:
        m_result->SetBz(toFluxValue(token));
        break;
    case TemperatureColumn:
        m_result->SetTemperature(toCount(token));
        break;
    case dBColumn:
        m_result->SetDB(toFluxValue(token));
        break;
    default:
        break;
    }
    const int lastColumn = m_hasUncertaintyColumn ? dBColumn : TemperatureColumn;
    m_column = m_column == lastColumn ? TimestampColumn : m_column + 1;
}
