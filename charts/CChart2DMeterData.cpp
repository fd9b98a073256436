// SPDX-License-Identifier: GPL-3.0-or-later
#include "CChart2DMeterData.h"

#include "CFieldIntensityResult.h"
#include "COperationMeasure.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using Result = CFieldIntensityResult;
using Fields = std::array<float, 6>;

Fields fieldsOf(const Result& result)
{
    return {result.B(), result.Bx(), result.By(), result.Bz(), result.BBprime(), result.dB()};
}

QSharedPointer<Result> makeAverage(const Fields& sums, float divisor)
{
    const auto average = QSharedPointer<Result>::create();
    average->SetB(sums[0] / divisor);
    average->SetBx(sums[1] / divisor);
    average->SetBy(sums[2] / divisor);
    average->SetBz(sums[3] / divisor);
    average->SetBBprime(sums[4] / divisor);
    average->SetDB(sums[5] / divisor);
    return average;
}

} // namespace

CChart2DMeterData::CChart2DMeterData(COperationMeasure* operation, CSettings* settings, QObject* parent)
    : CChart2DAveragedData(operation->OperationParameters()->MeasurementParameters(), settings, parent),
      m_operation(operation)
{
}

void CChart2DMeterData::AddMeasureBlock(const QSharedPointer<CMeasureBlock>& block)
{
    if (MeasureResultCount() == 0) {
        resetAxisXDelta(false);
        resetAxisYDelta();
    }
    AppendBlock(*block);
}

void CChart2DMeterData::LoadDataset(const Blocks& blocks)
{
    if (blocks.empty())
        return;
    BeginLoading();
    for (const QSharedPointer<CMeasureBlock>& block : blocks)
        AppendBlock(*block);
    const std::size_t count = History().TimeStamps().size();
    if (count > 0)
        SetXmax(History().X(count - 1));
    resetAxisXDelta(true);
    EndLoading();
}

void CChart2DMeterData::LoadDatasetUpTo(const Blocks& blocks, int index, bool wholeDataset)
{
    if (blocks.empty() || index < 0)
        return;
    BeginLoading();
    const auto end = wholeDataset || static_cast<std::size_t>(index) >= blocks.size()
                         ? blocks.end()
                         : blocks.begin() + index + 1;
    std::for_each(blocks.begin(), end,
                  [this](const QSharedPointer<CMeasureBlock>& block) { AppendBlock(*block); });
    ShowBlock(blocks, index, wholeDataset);
    EndLoading();
}

void CChart2DMeterData::MoveToBlock(const Blocks& blocks, int index, bool wholeDataset)
{
    if (blocks.empty() || index < 0)
        return;
    BeginLoading();
    ShowBlock(blocks, index, wholeDataset);
    EndLoading();
}

void CChart2DMeterData::UpdateFilter()
{
    const std::size_t count = History().Raw().size();
    const std::size_t n = std::min<std::size_t>(count, AveragingCount());
    for (std::size_t k = History().Filtered().size(); k < count; ++k) {
        if (AveragingMode() == Off || n == 0)
            History().AppendFiltered(History().Raw()[k]);
        else if (AveragingMode() == Exponential)
            History().AppendFiltered(FilterExponential(k, n));
        else
            History().AppendFiltered(FilterMoving(k, n));
    }
}

void CChart2DMeterData::ResetFilter()
{
    m_sampleCounter = 0;
    m_accumulators.fill(0.0F);
}

void CChart2DMeterData::AppendBlock(const CMeasureBlock& block)
{
    for (const QSharedPointer<CFieldIntensityResult>& result : block.Results)
        History().AppendRaw(result);
    UpdateFilter();
    while (History().Raw().size() > m_operation->GetMaxMeasurementCount())
        History().DropOldest();
    History().MoveOriginToOldest();
    SetDirty(true);
    const std::size_t count = History().Raw().size();
    if (count != MeasureResultCount())
        SetMeasureResultCount(count);
    const double rate = Parameters()->AcquisitionRate();
    if (rate > 0.0)
        SetMinDeltaAxisX(1.0 / rate);
    SetMeasureResultMinX(0.0);
    // Blocks without samples are legal, so the history may still be empty.
    if (count == 0)
        return;
    const double end = History().X(count - 1) + MinDeltaAxisX();
    SetMeasureResultMaxX(end > 0.5 ? end + 0.5 : end);
}

void CChart2DMeterData::ShowBlock(const Blocks& blocks, int index, bool wholeDataset)
{
    const qint64 count = static_cast<qint64>(History().TimeStamps().size());
    const qint64 last = static_cast<qint64>(blocks.front()->Results.size()) * (qint64{index} + 1) - 1;
    if (count == 0) {
        SetXmax(0.0);
    } else if (!wholeDataset || last < 0 || last >= count) {
        SetXmax(History().X(static_cast<std::size_t>(count) - 1));
    } else {
        SetDirty(false);
        const double end = History().X(static_cast<std::size_t>(last)) + MinDeltaAxisX();
        SetXmax(end > 0.5 ? std::ceil(end + end) * 0.5 : end);
    }
    resetAxisXDelta(false);
}

/// y[k] = ((n - 1) y[k-1] + x[k]) / n, where each operation rounds to single precision.
CFieldsHistory::Result CChart2DMeterData::FilterExponential(std::size_t k, std::size_t n)
{
    if (k == 0)
        return History().Raw().front();
    const Fields x = fieldsOf(*History().Raw()[k]);
    const Fields y = fieldsOf(*History().Filtered()[k - 1]);
    const float divisor = static_cast<float>(n);
    const float weight = divisor - 1.0F;
    for (std::size_t i = 0; i < kFieldCount; ++i)
        m_accumulators[i] = y[i] * weight + x[i];
    return makeAverage(m_accumulators, divisor);
}

/// The sum of the window is carried on, not summed anew, and its rounding with it.
CFieldsHistory::Result CChart2DMeterData::FilterMoving(std::size_t k, std::size_t n)
{
    const Fields x = fieldsOf(*History().Raw()[k]);
    if (k >= n) {
        const Fields leaving = fieldsOf(*History().Raw()[k - n]);
        for (std::size_t i = 0; i < kFieldCount; ++i)
            m_accumulators[i] = x[i] + m_accumulators[i] - leaving[i];
        return makeAverage(m_accumulators, static_cast<float>(n));
    }
    if (m_sampleCounter < 1) {
        m_accumulators = x;
        m_sampleCounter = 1;
        return History().Raw()[k];
    }
    for (std::size_t i = 0; i < kFieldCount; ++i)
        m_accumulators[i] += x[i];
    ++m_sampleCounter;
    return makeAverage(m_accumulators, static_cast<float>(m_sampleCounter));
}
