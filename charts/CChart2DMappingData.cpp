// SPDX-License-Identifier: GPL-3.0-or-later
#include "CChart2DMappingData.h"

#include "BlockAverages.h"
#include "COperationMapping.h"
#include "FieldRotation.h"
#include "NiceRange.h"

#include <QDebug>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double kTimeAxisSpacing = 0.1;
constexpr double kPositionAxisSpacing = 1e-6;

/// A place in a regular choice, rounded to the nearest; the running sum may end past the last one.
std::size_t nearestIndex(float place, std::size_t count)
{
    const long index = std::lroundf(place);
    return index < 0 ? 0 : std::min(static_cast<std::size_t>(index), count - 1);
}

} // namespace

CChart2DMappingData::CChart2DMappingData(COperationMapping* operation, CSettings* settings, QObject* parent)
    : CChart2DAveragedData(operation->OperationParameters()->MeasurementParameters(), settings, parent),
      m_operation(operation), m_horizontalAxisType(settings->Mapping2DPlotHorizontalAxisType())
{
    SetMinDeltaAxisX(DefaultMinDeltaAxisX());
}

void CChart2DMappingData::AddMeasureBlock(const QSharedPointer<CMeasureBlock>& block)
{
    const auto mappingBlock = block.dynamicCast<CMeasureBlockMapping>();
    if (!mappingBlock || mappingBlock->Results.isEmpty())
        return;
    FieldRotation::applyOnce(*mappingBlock);
    AppendBlock(mappingBlock);
    DropBeyondLimit(mappingBlock->Results.size());
    History().MoveOriginToOldest();
    UpdateLimitsX();
    const std::size_t count = History().TimeStamps().size();
    if (count != MeasureResultCount())
        SetMeasureResultCount(count);
    SetDirty(true);
}

void CChart2DMappingData::LoadDataset(const Blocks& blocks)
{
    Load(blocks, blocks.size(), true);
}

void CChart2DMappingData::LoadDatasetUpTo(const Blocks& blocks, int index)
{
    const std::size_t count = index < 0 ? 0 : static_cast<std::size_t>(index) + 1;
    Load(blocks, std::min(count, blocks.size()), false);
}

void CChart2DMappingData::ClearData()
{
    m_blocks.Clear();
    m_resultsArrived = 0;
    m_timeStampsDropped = 0;
    CChart2DFieldsData::ClearData();
    SetMeasureResultMinX(0.0);
    SetMeasureResultMaxX(1.0);
    m_axisMargin = 1.0;
    SetMinDeltaAxisX(DefaultMinDeltaAxisX());
}

void CChart2DMappingData::refreshLegendData(double axeXMin, double axeXMax)
{
    if (m_blocks.Plotted().IsEmpty()) {
        SetXmin(0.0);
        SetXmax(1.0);
        return;
    }
    const double lowest = IsTimeAxis() ? MeasureResultMinX() : m_blocks.Plotted().First().key - m_axisMargin;
    const double highest = IsTimeAxis() ? MeasureResultMaxX() : m_blocks.Plotted().Last().key + m_axisMargin;
    SetXmin(std::max(lowest, axeXMin));
    SetXmax(std::min(highest, axeXMax));
    UpdateTimeLabels();
}

void CChart2DMappingData::resetAxisXDelta(bool resetFullAxis)
{
    if (m_blocks.Plotted().IsEmpty())
        return;
    if (!IsTimeAxis()) {
        m_axisMargin = niceMargin(m_blocks.Plotted().Last().key - m_blocks.Plotted().First().key);
        SetXmin(m_blocks.Plotted().First().key - m_axisMargin);
        SetXmax(m_blocks.Plotted().Last().key + m_axisMargin);
        emit refreshLimitSliderX();
        return;
    }
    // The base cuts the window at zero in the same way.
    CChart2DFieldsData::resetAxisXDelta(resetFullAxis);
}

void CChart2DMappingData::UpdateAxisX(unsigned count)
{
    if (m_blocks.Plotted().IsEmpty()) {
        SetXmin(0.0);
        SetXmax(1.0);
        return;
    }
    const std::size_t lastResult = count > 0 ? count - 1 : 0;
    if (IsTimeAxis()) {
        const std::size_t stamps = History().TimeStamps().size();
        if (stamps == 0)
            return;
        const double end = WindowEnd(std::min(lastResult, stamps - 1));
        const double start = Xmax() - kLiveWindowS;
        SetXmin(start > 0.0 ? start : MeasureResultMinX());
        SetXmax(end);
    } else {
        const std::size_t perBlock = m_blocks.Plotted().First().resultCount;
        const double first = m_blocks.Plotted().First().key;
        const double last =
            m_blocks.Plotted().At(std::min(lastResult / perBlock, m_blocks.Plotted().Count() - 1)).key;
        m_axisMargin = niceMargin(last - first);
        SetXmin(first - m_axisMargin);
        SetXmax(last + m_axisMargin);
    }
    UpdateTimeLabels();
}

void CChart2DMappingData::UpdateTimeLabels()
{
    if (IsTimeAxis()) {
        const int lower = History().LowerIndex(Xmin());
        const int upper = History().UpperIndex(Xmax());
        if (lower >= upper)
            return;
        const auto begin = m_blocks.ResultAt(m_timeStampsDropped + static_cast<quint64>(lower));
        const auto end = m_blocks.ResultAt(m_timeStampsDropped + static_cast<quint64>(upper));
        if (begin && end)
            ShowTimes(begin->Timestamp, end->Timestamp);
        return;
    }
    const char axis = "XYZ"[m_horizontalAxisType - CSettings::e_HorizAxisIsXPosition];
    SetXminTime(QStringLiteral("Min %1 =").arg(QLatin1Char(axis)));
    SetXminDate(QString::number(Xmin(), 'g', 6));
    SetXmaxTime(QStringLiteral("Max %1 =").arg(QLatin1Char(axis)));
    SetXmaxDate(QString::number(Xmax(), 'g', 6));
}

/// The steps are single precision numbers that add up from the left; their start is chosen so that the last
/// block and the last result are met.
void CChart2DMappingData::UpdateDownsampling()
{
    const auto blocks = static_cast<int>(m_blocks.Plotted().Count());
    if (blocks < 1)
        return;
    const auto perBlock = static_cast<int>(m_blocks.Plotted().First().resultCount);
    const int mostRows = std::max(1, NbPointsAxeX());
    int shownBlocks = blocks;
    int shownPerBlock = perBlock;
    if (mostRows < blocks) {
        shownBlocks = mostRows;
        shownPerBlock = 1;
    } else if (mostRows < static_cast<qint64>(perBlock) * blocks) {
        shownPerBlock = mostRows / blocks;
    }
    const auto blockEnd = static_cast<float>(blocks);
    const auto resultEnd = static_cast<float>(perBlock);
    const float blockStep = blockEnd / static_cast<float>(shownBlocks);
    const float resultStep = resultEnd / static_cast<float>(shownPerBlock);
    const float blockStart = static_cast<float>(blocks - 1) - static_cast<float>(shownBlocks - 1) * blockStep;
    const float resultStart =
        static_cast<float>(perBlock - 1) - static_cast<float>(shownPerBlock - 1) * resultStep;

    Fold fold;
    int row = 0;
    FieldSeries::Values drawn{};
    const double origin = History().Origin();
    CMappingOrder::Walk walk(m_blocks.Plotted());
    // Which rows are drawn is defined by running sums in single precision.
    // NOLINTNEXTLINE(clang-analyzer-security.FloatLoopCounter)
    for (float u = blockStart; u < blockEnd; u += blockStep) {
        const CMappingOrder::Item& item = walk.At(nearestIndex(u, static_cast<std::size_t>(blocks)));
        // NOLINTNEXTLINE(clang-analyzer-security.FloatLoopCounter)
        for (float v = resultStart; v < resultEnd; v += resultStep) {
            const std::size_t k = nearestIndex(v, item.resultCount);
            const bool isLast = k + 1 == item.resultCount;
            drawn = isLast ? item.lastValues : item.entry->values[k];
            double x = item.key;
            if (IsTimeAxis())
                x = (isLast ? item.lastTimeStamp : item.entry->timeStamps[k]) - origin;
            PublishRow(row, x, drawn);
            for (std::size_t i = 0; i < FieldSeries::Count; ++i) {
                if (IsSeriesVisible(i))
                    fold.Add(drawn[i], drawn[i]);
            }
            ++row;
        }
    }
    if (row == 1)
        PublishRow(row++, kSecondRowX, drawn);
    PublishLength(row);
    if (fold.min < YminAllSignal() || YminAllSignal() == kYminUnset)
        SetYminAllSignal(fold.min);
    if (fold.max > YmaxAllSignal() || YmaxAllSignal() == kYmaxUnset)
        SetYmaxAllSignal(fold.max);
    SetFirstDataInit(true);
    UpdateAxisY(fold);
}

unsigned CChart2DMappingData::ComputeDeltaX()
{
    qDebug() << "CChart2DMappingData::ComputeDeltaX" << Parameters()->AcquisitionRate();
    return CChart2DAveragedData::ComputeDeltaX();
}

void CChart2DMappingData::UpdateFilter()
{
    m_blocks.ClearPlotted();
    for (CMappingBlocks::Entry& entry : m_blocks.Arrived()) {
        if (!TakeValues(entry))
            return;
        m_blocks.Plot(entry);
    }
}

double CChart2DMappingData::DefaultMinDeltaAxisX() const
{
    return IsTimeAxis() ? kTimeAxisSpacing : kPositionAxisSpacing;
}

double CChart2DMappingData::KeyOf(const CMappingBlocks::Entry& entry) const
{
    switch (m_horizontalAxisType) {
    case CSettings::e_HorizAxisIsXPosition:
        return entry.block->Position.X();
    case CSettings::e_HorizAxisIsYPosition:
        return entry.block->Position.Y();
    case CSettings::e_HorizAxisIsZPosition:
        return entry.block->Position.Z();
    default:
        return entry.timeStamps.front();
    }
}

/// Reads the values of the block and averages them. Returns false if the block cannot be plotted.
bool CChart2DMappingData::TakeValues(CMappingBlocks::Entry& entry) const
{
    if (AveragingMode() != Off && AveragingCount() == 0)
        return false;
    entry.values.clear();
    entry.values.reserve(static_cast<std::size_t>(entry.block->Results.size()));
    for (const auto& result : qAsConst(entry.block->Results))
        entry.values.push_back(FieldSeries::valuesOf(*result));
    if (AveragingMode() == Exponential)
        BlockAverages::makeExponential(entry.values, AveragingCount());
    else if (AveragingMode() == Moving)
        BlockAverages::makeMoving(entry.values, AveragingCount());
    return true;
}

/// Adds one block to the plotted ones, with the outcome of `UpdateFilter`.
void CChart2DMappingData::AppendBlock(const QSharedPointer<CMeasureBlockMapping>& block)
{
    CMappingBlocks::Entry entry;
    entry.block = block;
    entry.firstResult = m_resultsArrived;
    if (IsTimeAxis())
        entry.timeStamps.reserve(static_cast<std::size_t>(block->Results.size()));
    for (const auto& result : qAsConst(block->Results)) {
        const double timeStamp = History().AppendTimeStampOf(*result);
        if (IsTimeAxis())
            entry.timeStamps.push_back(timeStamp);
    }
    m_resultsArrived += static_cast<quint64>(block->Results.size());
    entry.key = KeyOf(entry);
    CMappingBlocks::Entry& kept = m_blocks.Append(std::move(entry));
    if (TakeValues(kept))
        m_blocks.Plot(kept);
}

/// The size of the newest block stands for that of all. With blocks of several sizes the time stamps may so
/// run out before the blocks.
void CChart2DMappingData::DropBeyondLimit(int resultCount)
{
    const auto perBlock = static_cast<quint64>(resultCount);
    while (m_blocks.Arrived().size() * perBlock > m_operation->GetMaxMeasurementCount()) {
        m_blocks.DropOldest();
        for (quint64 i = 0; i < perBlock && !History().TimeStamps().empty(); ++i) {
            History().DropOldestTimeStamp();
            ++m_timeStampsDropped;
        }
    }
}

void CChart2DMappingData::UpdateLimitsX()
{
    if (IsTimeAxis()) {
        SetMeasureResultMinX(0.0);
        const std::size_t count = History().TimeStamps().size();
        if (count > 0) {
            const double end = History().X(count - 1) + MinDeltaAxisX();
            SetMeasureResultMaxX(end > 0.5 ? end + 0.5 : end);
        }
        const double rate = Parameters()->AcquisitionRate();
        if (rate > 0.0)
            SetMinDeltaAxisX(1.0 / rate);
        return;
    }
    if (!m_blocks.Plotted().IsEmpty()) {
        SetMeasureResultMaxX(m_blocks.Plotted().Last().key + m_axisMargin);
        SetMeasureResultMinX(m_blocks.Plotted().First().key - m_axisMargin);
    }
    SetMinDeltaAxisX(m_axisMargin);
}

void CChart2DMappingData::Load(const Blocks& blocks, std::size_t count, bool isWhole)
{
    BeginLoading();
    for (std::size_t i = 0; i < count; ++i)
        AddMeasureBlock(blocks[i]);
    const std::size_t stamps = History().TimeStamps().size();
    if (IsTimeAxis() && stamps > 0)
        SetXmax(History().X(stamps - 1));
    else if (!IsTimeAxis() && !m_blocks.Plotted().IsEmpty())
        SetXmax(m_blocks.Plotted().Last().key);
    resetAxisXDelta(isWhole);
    EndLoading();
}
