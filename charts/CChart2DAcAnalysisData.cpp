// SPDX-License-Identifier: GPL-3.0-or-later
#include "CChart2DAcAnalysisData.h"

#include "CFieldIntensityResult.h"
#include "COperationMeasure.h"
#include "SignalStatistics.h"

#include <QDebug>

#include <algorithm>
#include <cmath>

namespace {

using Figures = FieldSeries::Values;

/// A function that reduces a signal to one number, and its name in messages.
struct FigureOfMerit
{
    bool (*compute)(const std::vector<float>& signal, float& figure);
    const char* name;
};

FigureOfMerit figureOfMerit(int index)
{
    switch (index) {
    case 1:
        return {&ComputeP2PValue, "ComputeP2PValue"};
    case 2:
        return {&ComputeStdDevValue, "ComputeStdDevValue"};
    default:
        return {&ComputeRMSValue, "ComputeRMSValue"};
    }
}

Figures figuresOf(const CMeasureBlock& block, const FigureOfMerit& figure)
{
    constexpr std::array<const char*, FieldSeries::Count> kNames{"B",  "B.B'", "Bx",  "By",
                                                                 "Bz", "B-dB", "B+dB"};
    Figures figures{};
    for (std::size_t i = 0; i < FieldSeries::Count; ++i) {
        const auto series = static_cast<FieldSeries::Index>(i);
        if (!figure.compute(FieldSeries::signalOf(block, series), figures[i]))
            qWarning("Error with %s: %s", figure.name, kNames[i]);
    }
    return figures;
}

QSharedPointer<CFieldIntensityResult> makePoint(const CMeasureBlock& block, int figureOfMeritIndex)
{
    const Figures figures = figuresOf(block, figureOfMerit(figureOfMeritIndex));
    const auto lower = static_cast<double>(figures[FieldSeries::BMinusDB]);
    const auto upper = static_cast<double>(figures[FieldSeries::BPlusDB]);
    auto point = QSharedPointer<CFieldIntensityResult>::create();
    point->SetB(figures[FieldSeries::B]);
    point->SetBBprime(figures[FieldSeries::BBprime]);
    point->SetBx(figures[FieldSeries::Bx]);
    point->SetBy(figures[FieldSeries::By]);
    point->SetBz(figures[FieldSeries::Bz]);
    point->SetDB(static_cast<float>(std::fabs((upper - lower) * 0.5)));
    if (!block.Results.isEmpty()) {
        point->Timestamp = block.Results.last()->Timestamp;
        point->TimestampNanoseconds = block.Results.last()->TimestampNanoseconds;
    }
    return point;
}

} // namespace

/// A load that throws must not leave the chart hidden and its timer at rest.
class CChart2DAcAnalysisData::LoadingBracket
{
public:
    explicit LoadingBracket(CChart2DAcAnalysisData* chart) : m_chart(chart) { m_chart->BeginLoading(); }
    ~LoadingBracket() { m_chart->EndLoading(); }
    Q_DISABLE_COPY_MOVE(LoadingBracket)

private:
    CChart2DAcAnalysisData* m_chart;
};

CChart2DAcAnalysisData::CChart2DAcAnalysisData(COperationMeasure* operation, QObject* parent)
    : CChart2DFieldsData(operation->OperationParameters()->MeasurementParameters(), parent),
      m_operation(operation)
{
}

void CChart2DAcAnalysisData::AddMeasureBlock(const QSharedPointer<CMeasureBlock>& block,
                                             int figureOfMeritIndex)
{
    const auto point = makePoint(*block, figureOfMeritIndex);
    History().AppendRaw(point);
    History().AppendFiltered(point);
    const std::size_t most = std::max<std::size_t>(1, MaxPointCount());
    while (History().Raw().size() > most)
        History().DropOldest();
    History().MoveOriginToOldest();
    SetDirty(true);
    const std::size_t count = History().Raw().size();
    if (count != MeasureResultCount())
        SetMeasureResultCount(count);
    SetMeasureResultMinX(0.0);
    const double end = History().X(count - 1) + MinDeltaAxisX();
    SetMeasureResultMaxX(end > 0.5 ? end + 0.5 : end);
}

void CChart2DAcAnalysisData::LoadDataset(const Blocks& blocks, int figureOfMeritIndex)
{
    if (blocks.empty())
        return;
    const LoadingBracket bracket(this);
    for (const QSharedPointer<CMeasureBlock>& block : blocks)
        AddMeasureBlock(block, figureOfMeritIndex);
    SetXmax(History().X(History().TimeStamps().size() - 1));
    resetAxisXDelta(false);
}

void CChart2DAcAnalysisData::LoadDatasetUpTo(const Blocks& blocks, int figureOfMeritIndex, int index,
                                             bool wholeDataset)
{
    if (blocks.empty() || index < 0)
        return;
    const LoadingBracket bracket(this);
    const auto position = static_cast<std::size_t>(index);
    const auto end = wholeDataset || position >= blocks.size() ? blocks.end() : blocks.begin() + index + 1;
    std::for_each(blocks.begin(), end, [&](const QSharedPointer<CMeasureBlock>& block) {
        AddMeasureBlock(block, figureOfMeritIndex);
    });
    const std::size_t count = History().TimeStamps().size();
    if (wholeDataset && position < count) {
        SetDirty(false);
        const double windowEnd = History().X(position) + MinDeltaAxisX();
        SetXmax(windowEnd > 0.5 ? std::ceil(windowEnd + windowEnd) * 0.5 : windowEnd);
    } else {
        SetXmax(History().X(count - 1));
    }
    resetAxisXDelta(false);
}

unsigned CChart2DAcAnalysisData::ComputeDeltaX()
{
    return static_cast<unsigned>(Parameters()->DisplayRate() * 10.0);
}

void CChart2DAcAnalysisData::UpdateFilter()
{
    for (std::size_t i = History().Filtered().size(); i < History().Raw().size(); ++i)
        History().AppendFiltered(History().Raw()[i]);
    while (History().Filtered().size() > MaxPointCount())
        History().DropOldestFiltered();
}

/// The limit of the operation counts results; a point stands for a block. A loaded record has blocks of its
/// own size.
std::size_t CChart2DAcAnalysisData::MaxPointCount() const
{
    const CMeasurementParameters& parameters =
        *m_operation->RecordingManager()->DataSet()->MeasurementParameters();
    const auto blockSize = static_cast<quint64>(std::max(1, parameters.BlockSize()));
    return static_cast<std::size_t>(m_operation->GetMaxMeasurementCount() / blockSize);
}
