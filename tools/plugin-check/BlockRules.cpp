// SPDX-License-Identifier: GPL-3.0-or-later
#include "BlockRules.h"

#include "CCheckRun.h"

#include <QSet>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr qint64 kMsPerSecond = 1000;
constexpr qint64 kNsPerMs = 1000000;
constexpr qint64 kNsPerSecond = 1000000000;
// Of the period of the samples; the clock of an instrument need not be that of its parameters.
constexpr double kPeriodTolerance = 0.2;

qint64 wholeSeconds(qint64 ms)
{
    return ms >= 0 ? ms / kMsPerSecond : -((-ms + kMsPerSecond - 1) / kMsPerSecond);
}

qint64 epochNs(const CFieldIntensityResult& sample)
{
    return wholeSeconds(sample.Timestamp.toMSecsSinceEpoch()) * kNsPerSecond + sample.TimestampNanoseconds;
}

QString timeText(const CFieldIntensityResult& sample)
{
    return QStringLiteral("%1.%2")
        .arg(sample.Timestamp.toString(QStringLiteral("yyyy.MM.ddTHH:mm:ss")))
        .arg(sample.TimestampNanoseconds, 9, 10, QLatin1Char('0'));
}

/// Goes through the samples of a measurement in their order.
class SampleRules
{
public:
    explicit SampleRules(CCheckRun& run) : m_run(run) {}

    void Check(const CFieldIntensityResult& sample)
    {
        checkFields(sample);
        if (!sample.Timestamp.isValid()) {
            m_run.Find("timestamp-invalid", QStringLiteral("the default of QDateTime"));
            return;
        }
        if (sample.TimestampNanoseconds >= kNsPerSecond) {
            m_run.Find("nanoseconds-range", QString::number(sample.TimestampNanoseconds));
            return;
        }
        const qint64 ms = sample.Timestamp.toMSecsSinceEpoch();
        const qint64 fractionMs = ms - wholeSeconds(ms) * kMsPerSecond;
        if (fractionMs != 0 && std::abs(fractionMs - sample.TimestampNanoseconds / kNsPerMs) > 1)
            m_run.Find("timestamp-fraction",
                       QStringLiteral("%1 ms, %2 ns").arg(fractionMs).arg(sample.TimestampNanoseconds));
        const qint64 ns = epochNs(sample);
        if (m_hasLast && ns < m_lastNs)
            m_run.Find("timestamp-backwards",
                       QStringLiteral("%1 follows %2").arg(timeText(sample), m_lastText));
        else if (m_hasLast && ns == m_lastNs)
            m_run.Find("timestamp-equal", timeText(sample));
        m_hasLast = true;
        m_lastNs = ns;
        m_lastText = timeText(sample);
    }

private:
    void checkFields(const CFieldIntensityResult& sample)
    {
        if (sample.dB() < 0)
            m_run.Find("uncertainty-negative", QString::number(static_cast<double>(sample.dB())));
        if (!std::isnan(sample.dBConverted()))
            m_run.Find("converted-set", QString::number(static_cast<double>(sample.dBConverted())));
    }

    CCheckRun& m_run;
    bool m_hasLast = false;
    qint64 m_lastNs = 0;
    QString m_lastText;
};

void checkPeriod(CCheckRun& run, const CMeasureBlock& block, double rate)
{
    const int numPeriods = block.Results.size() - 1;
    if (numPeriods < 1 || rate <= 0)
        return;
    const CFieldIntensityResult& first = *block.Results.constFirst();
    const CFieldIntensityResult& last = *block.Results.constLast();
    if (!first.Timestamp.isValid() || !last.Timestamp.isValid())
        return;
    const double periodNs = static_cast<double>(epochNs(last) - epochNs(first)) / numPeriods;
    const double expectedNs = static_cast<double>(kNsPerSecond) / rate;
    if (std::abs(periodNs - expectedNs) > kPeriodTolerance * expectedNs)
        run.Find("sample-period", QStringLiteral("%1 ns instead of %2").arg(periodNs).arg(expectedNs));
}

} // namespace

void checkBlocks(CCheckRun& run, const QVector<RecordedBlock>& blocks, const BlockExpectation& expected)
{
    SampleRules samples(run);
    QSet<const CMeasureBlock*> seenBlocks;
    QSet<const CFieldIntensityResult*> seenSamples;
    for (int i = 0; i < blocks.size(); ++i) {
        const RecordedBlock& recorded = blocks.at(i);
        if (!recorded.block) {
            run.Find("block-null", QStringLiteral("block %1").arg(i + 1));
            continue;
        }
        const CMeasureBlock& block = *recorded.block;
        if (seenBlocks.contains(&block))
            run.Find("block-changed", QStringLiteral("block %1 was emitted before").arg(i + 1));
        else if (CBlockRecorder::DigestOf(block) != recorded.digest)
            run.Find("block-changed", QStringLiteral("block %1 is no longer what it was").arg(i + 1));
        seenBlocks.insert(&block);

        // A block without samples is legal.
        const int size = block.Results.size();
        const bool isShortEnd = expected.mayEndShort && i == blocks.size() - 1 && size < expected.blockSize;
        if (size != 0 && size != expected.blockSize && !isShortEnd)
            run.Find("block-size",
                     QStringLiteral("%1 samples instead of %2").arg(size).arg(expected.blockSize));
        if (block.Results.contains(QSharedPointer<CFieldIntensityResult>())) {
            run.Find("sample-null", QStringLiteral("block %1").arg(i + 1));
            continue;
        }
        for (const QSharedPointer<CFieldIntensityResult>& sample : block.Results) {
            if (seenSamples.contains(sample.data()))
                run.Find("block-changed", QStringLiteral("a sample of block %1 came before").arg(i + 1));
            seenSamples.insert(sample.data());
            samples.Check(*sample);
        }
        checkPeriod(run, block, expected.rate);
    }
}

double medianMagnitude(const CMeasureBlock& block)
{
    std::vector<double> magnitudes;
    for (const QSharedPointer<CFieldIntensityResult>& sample : block.Results) {
        if (sample && std::isfinite(sample->B()))
            magnitudes.push_back(std::abs(static_cast<double>(sample->B())));
    }
    if (magnitudes.empty())
        return std::numeric_limits<double>::quiet_NaN();
    const auto middle = magnitudes.begin() + static_cast<std::ptrdiff_t>(magnitudes.size() / 2);
    std::nth_element(magnitudes.begin(), middle, magnitudes.end());
    return *middle;
}
