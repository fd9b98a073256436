// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2DFieldsData.h"
#include "CMappingBlocks.h"
#include "CSettings.h"

#include <QSharedPointer>
#include <QStringList>

#include <deque>

class COperationMapping;

/// The plot of the mapping page, over time or over one coordinate of the place. A block is one place; its
/// components are turned into the mapper's frame, once and in place, so that all who share its samples see
/// them turned. The table shows a regular choice of blocks, and of results within each, always with the last
/// ones. Averages restart in each block.
///
/// The values of a block are read when it is added and again by `UpdateFilter`; they must not change between.
class CChart2DMappingData : public CChart2DFieldsData
{
    Q_OBJECT
    Q_PROPERTY(uint AveragingCount READ AveragingCount WRITE SetAveragingCount NOTIFY AveragingCountChanged)
    Q_PROPERTY(
        AveragingModes AveragingMode READ AveragingMode WRITE SetAveragingMode NOTIFY AveragingModeChanged)
    Q_PROPERTY(int AveragingModeIndex READ AveragingModeIndex WRITE SetAveragingModeIndex NOTIFY
                   AveragingModeIndexChanged)
    Q_PROPERTY(QStringList AveragingModeNames READ AveragingModeNames CONSTANT)
    Q_PROPERTY(
        CSettings::t_Mapping2DPlotHorizontalAxisType HorizontalAxisType READ HorizontalAxisType CONSTANT)

public:
    enum AveragingModes { Off = 0, Exponential = 1, Moving = 2 };
    Q_ENUM(AveragingModes)

    using Blocks = std::deque<QSharedPointer<CMeasureBlockMapping>>;

    /// Takes the axis and starts with the averaging that `settings` hold. Both must outlive the chart.
    CChart2DMappingData(COperationMapping* operation, CSettings* settings, QObject* parent = nullptr);

    /// Samples in an average; with 0 an averaging mode plots nothing.
    uint AveragingCount() const { return m_averagingCount; }
    AveragingModes AveragingMode() const { return m_averagingMode; }
    int AveragingModeIndex() const { return m_averagingModeIndex; } ///< index in AveragingModeNames
    QStringList AveragingModeNames() const { return m_averagingModeNames; }
    CSettings::t_Mapping2DPlotHorizontalAxisType HorizontalAxisType() const { return m_horizontalAxisType; }

    void SetAveragingCount(uint value);
    void SetAveragingMode(AveragingModes value);
    void SetAveragingModeIndex(int value);

    /// Stores count and mode with the application's settings.
    Q_INVOKABLE void saveAveragingParameter();

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

public slots:
    void onAveragingModeIndexChange();
    void onAveragingCountIndexChange();

signals:
    void AveragingCountChanged(uint value);
    void AveragingModeChanged(CChart2DMappingData::AveragingModes value);
    void AveragingModeIndexChanged(int value);

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
    CSettings* m_settings;
    const CSettings::t_Mapping2DPlotHorizontalAxisType m_horizontalAxisType;
    uint m_averagingCount = 1;
    AveragingModes m_averagingMode = Off;
    int m_averagingModeIndex = 0;
    QStringList m_averagingModeNames;
    CMappingBlocks m_blocks;
    double m_axisMargin = 1.0;
    quint64 m_resultsArrived = 0;
    quint64 m_timeStampsDropped = 0;
};
