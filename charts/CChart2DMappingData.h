// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2DAveragedData.h"
#include "CMappingBlocks.h"
#include "CSettings.h"

#include <QSharedPointer>

#include <deque>

class COperationMapping;

/// The plot of the mapping page, over time or over one coordinate of the place. A block is one place; its
/// components are turned into the mapper's frame, once and in place, so that all who share its samples see
/// them turned. The table shows a regular choice of blocks, and of results within each, always with the last
/// ones. Averages restart in each block; over 0 samples they plot nothing.
///
/// The values of a block are read when it is added and again by `UpdateFilter`; they must not change between.
class CChart2DMappingData : public CChart2DAveragedData
{
    Q_OBJECT
    Q_PROPERTY(
        CSettings::t_Mapping2DPlotHorizontalAxisType HorizontalAxisType READ HorizontalAxisType CONSTANT)

public:
    using Blocks = std::deque<QSharedPointer<CMeasureBlockMapping>>;

    /// Takes the axis and starts with the averaging that `settings` hold. Both must outlive the chart.
    CChart2DMappingData(COperationMapping* operation, CSettings* settings, QObject* parent = nullptr);

    CSettings::t_Mapping2DPlotHorizontalAxisType HorizontalAxisType() const { return m_horizontalAxisType; }

    /// Adds a block of a mapping. One without results, or without a place, is left out.
    void AddMeasureBlock(const QSharedPointer<CMeasureBlock>& block);
    /// Adds a whole recording and shows all of it.
    void LoadDataset(const Blocks& blocks);
    /// Adds a recording up to block `index`, as far as there are blocks.
    void LoadDatasetUpTo(const Blocks& blocks, int index);
    void ClearData() override;

    void refreshLegendData(double axeXMin, double axeXMax) override;
    void resetAxisXDelta(bool resetFullAxis = false) override;
    void UpdateAxisX(unsigned count) override;
    void UpdateTimeLabels() override;
    void UpdateDownsampling() override;
    unsigned ComputeDeltaX() override;
    /// Makes the plotted blocks anew from all blocks.
    void UpdateFilter() override;

protected:
    const CMappingBlocks& MappingBlocks() const { return m_blocks; }

private:
    bool IsTimeAxis() const { return m_horizontalAxisType == CSettings::e_HorizAxisIsTime; }
    double DefaultMinDeltaAxisX() const;
    double KeyOf(const CMappingBlocks::Entry& entry) const;
    bool TakeValues(CMappingBlocks::Entry& entry) const;
    void AppendBlock(const QSharedPointer<CMeasureBlockMapping>& block);
    void DropBeyondLimit(int resultCount);
    void UpdateLimitsX();
    void Load(const Blocks& blocks, std::size_t count, bool isWhole);

    COperationMapping* m_operation;
    const CSettings::t_Mapping2DPlotHorizontalAxisType m_horizontalAxisType;
    CMappingBlocks m_blocks;
    double m_axisMargin = 1.0;
    quint64 m_resultsArrived = 0;
    quint64 m_timeStampsDropped = 0;
};
