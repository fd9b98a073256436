// SPDX-License-Identifier: MIT
#include "CTextReader.h"

#include "TimeUnits.h"

#include <QThread>
#include <QVector>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kMaxLineLength = 4096;
constexpr int kInspectedLines = 400;
constexpr int kLinesPerInterruptionTest = 1000;

} // namespace

bool isMissingMarker(double value)
{
    return value == 88888.0 || value == 99999.0 || value == 99999.99;
}

double estimateRate(const QVector<qint64>& timesNs)
{
    QVector<qint64> steps;
    for (int i = 1; i < timesNs.size(); ++i) {
        if (timesNs.at(i) > timesNs.at(i - 1))
            steps.append(timesNs.at(i) - timesNs.at(i - 1));
    }
    if (steps.isEmpty())
        return 1;
    QVector<qint64> sorted = steps;
    std::nth_element(sorted.begin(), sorted.begin() + sorted.size() / 2, sorted.end());
    const qint64 median = sorted.at(sorted.size() / 2);
    // Times are written with few digits, so that single steps vary; gaps are longer than that.
    qint64 sum = 0;
    int count = 0;
    for (const qint64 step : qAsConst(steps)) {
        if (step > median / 2 && step < median + (median + 1) / 2) {
            sum += step;
            ++count;
        }
    }
    return static_cast<double>(count * kNsPerSecond) / static_cast<double>(sum);
}

CTextReader::CTextReader(const QString& path) : m_file(path) {}

bool CTextReader::Open()
{
    if (!m_file.open(QIODevice::ReadOnly) || !ReadHead())
        return false;
    m_firstRow = m_file.pos();
    return inspectRows() && Rewind();
}

bool CTextReader::Rewind()
{
    return m_file.isOpen() && m_file.seek(m_firstRow);
}

bool CTextReader::Next(RecordedSample& sample)
{
    QByteArray line;
    for (int lines = 1; ReadLine(line); ++lines) {
        if (ParseRow(line, sample) == Row::Sample)
            return true;
        if (lines % kLinesPerInterruptionTest == 0 && QThread::currentThread()->isInterruptionRequested())
            return false;
    }
    return false;
}

bool CTextReader::ReadLine(QByteArray& line)
{
    m_lineStart = m_file.pos();
    line = m_file.readLine(kMaxLineLength);
    if (line.isEmpty())
        return false;
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    return true;
}

void CTextReader::UnreadLine()
{
    m_file.seek(m_lineStart);
}

bool CTextReader::inspectRows()
{
    QVector<qint64> timesNs;
    int places = 0;
    QByteArray line;
    for (int i = 0; i < kInspectedLines && ReadLine(line); ++i) {
        RecordedSample sample;
        const Row row = ParseRow(line, sample);
        if (row == Row::None)
            continue;
        timesNs.append(sample.timeNs);
        if (row == Row::Sample)
            places = std::max(places, DecimalPlaces(line));
    }
    m_info.rate = estimateRate(timesNs);
    m_info.uncertainty = 0.5 * std::pow(10.0, -places);
    return !timesNs.isEmpty();
}
