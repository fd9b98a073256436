// SPDX-License-Identifier: MIT
#include "CIagaReader.h"

#include "NumberText.h"

#include <QList>

#include <array>
#include <cmath>

namespace {

constexpr int kMaxIagaHeadLines = 200;
constexpr int kColumns = 7; // date, time, day of the year, four values
constexpr int kFirstValue = 3;
constexpr double kRadiansPerMinuteOfArc = 3.14159265358979323846 / (180 * 60);

QList<QByteArray> columnsOf(const QByteArray& line)
{
    return line.simplified().split(' ');
}

} // namespace

bool CIagaReader::ReadHead()
{
    QByteArray line;
    if (!ReadLine(line) || !line.simplified().startsWith("Format IAGA-2002"))
        return false;
    for (int i = 0; i < kMaxIagaHeadLines && ReadLine(line); ++i) {
        if (!line.startsWith("DATE"))
            continue;
        const QList<QByteArray> names = columnsOf(line);
        if (names.size() < kColumns)
            return false;
        QByteArray axes;
        for (int value = 0; value < 4; ++value)
            axes.append(names.at(kFirstValue + value).right(1));
        m_isDeclination = axes.startsWith("HDZ");
        m_hasMagnitude = axes.at(3) == 'F' || axes.at(3) == 'S';
        // Angles in other places cannot be turned into three components here.
        const QByteArray components = axes.left(3);
        if (!m_isDeclination &&
            (components.contains('D') || components.contains('I') || components.contains('F')))
            return false;
        m_info.format = QStringLiteral("IAGA-2002");
        m_info.unit = CUnits::NANO_TESLA;
        m_info.hasDate = true;
        return true;
    }
    return false;
}

CTextReader::Row CIagaReader::ParseRow(const QByteArray& line, RecordedSample& sample)
{
    const QList<QByteArray> texts = columnsOf(line);
    if (texts.size() < kColumns)
        return Row::None;
    const std::optional<qint64> timeNs = m_timeParser.Parse(texts.at(0) + 'T' + texts.at(1));
    if (!timeNs)
        return Row::None;
    sample = {};
    sample.timeNs = *timeNs;
    std::array<double, 4> values{};
    for (int i = 0; i < 4; ++i) {
        const std::optional<double> value = NumberText::toDouble(texts.at(kFirstValue + i), false);
        const bool isMissing = !value || isMissingMarker(*value);
        if (isMissing && i < 3)
            return Row::Missing;
        values[static_cast<std::size_t>(i)] = isMissing ? RecordedSample::kNone : *value;
    }
    sample.field = {values[0], values[1], values[2]};
    if (m_isDeclination) {
        const double declination = values[1] * kRadiansPerMinuteOfArc;
        sample.field = {values[0] * std::cos(declination), values[0] * std::sin(declination), values[2]};
    }
    if (m_hasMagnitude)
        sample.magnitude = values[3];
    return Row::Sample;
}

int CIagaReader::DecimalPlaces(const QByteArray& line) const
{
    return NumberText::decimalPlaces(columnsOf(line).at(kFirstValue));
}
