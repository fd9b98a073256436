// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2DFieldsData.h"
#include "CMeasureBlock.h"

#include <QSharedPointer>
#include <QStringList>

#include <array>
#include <deque>

class COperationMeasure;
class CSettings;

/// The time plot of the meter page: every sample of every block is a point, smoothed by an average if asked.
/// The averages are made in single precision and carried from block to block.
class CChart2DMeterData : public CChart2DFieldsData
{
    Q_OBJECT
    Q_PROPERTY(uint AveragingCount READ AveragingCount WRITE SetAveragingCount NOTIFY AveragingCountChanged)
    Q_PROPERTY(
        AveragingModes AveragingMode READ AveragingMode WRITE SetAveragingMode NOTIFY AveragingModeChanged)
    Q_PROPERTY(int AveragingModeIndex READ AveragingModeIndex WRITE SetAveragingModeIndex NOTIFY
                   AveragingModeIndexChanged)
    Q_PROPERTY(QStringList AveragingModeNames READ AveragingModeNames CONSTANT)

public:
    enum AveragingModes { Off = 0, Exponential = 1, Moving = 2 };
    Q_ENUM(AveragingModes)

    using Blocks = std::deque<QSharedPointer<CMeasureBlock>>;

    /// Starts with the averaging that `settings` hold. Both must outlive the chart.
    CChart2DMeterData(COperationMeasure* operation, CSettings* settings, QObject* parent = nullptr);

    uint AveragingCount() const { return m_averagingCount; } ///< samples in an average; 0 is no averaging
    AveragingModes AveragingMode() const { return m_averagingMode; }
    int AveragingModeIndex() const { return m_averagingModeIndex; } ///< index in AveragingModeNames
    QStringList AveragingModeNames() const { return m_averagingModeNames; }

    void SetAveragingCount(uint value);
    void SetAveragingMode(AveragingModes value);
    void SetAveragingModeIndex(int value);

    /// Stores count and mode with the application's settings.
    Q_INVOKABLE void saveAveragingParameter();

    /// Adds a live block.
    void AddMeasureBlock(const QSharedPointer<CMeasureBlock>& block);
    /// Adds a whole recording and shows all of it.
    void LoadDataset(const Blocks& blocks);
    /// Adds a recording up to block `index`, or the whole with the window ending at that block.
    void LoadDatasetUpTo(const Blocks& blocks, int index, bool wholeDataset);
    /// Moves the window to the end of block `index` of a recording that is loaded already.
    void MoveToBlock(const Blocks& blocks, int index, bool wholeDataset);

    unsigned ComputeDeltaX() override;
    void UpdateFilter() override;
    void ResetFilter() override;

public slots:
    void onAveragingModeIndexChange();
    void onAveragingCountIndexChange();

signals:
    void AveragingCountChanged(uint value);
    void AveragingModeChanged(CChart2DMeterData::AveragingModes value);
    void AveragingModeIndexChanged(int value);

private:
    static constexpr std::size_t kFieldCount = 6;

    void AppendBlock(const CMeasureBlock& block);
    void ShowBlock(const Blocks& blocks, int index, bool wholeDataset);
    CFieldsHistory::Result FilterExponential(std::size_t k, std::size_t n);
    CFieldsHistory::Result FilterMoving(std::size_t k, std::size_t n);

    COperationMeasure* m_operation;
    CSettings* m_settings;
    uint m_averagingCount = 1;
    AveragingModes m_averagingMode = Off;
    int m_averagingModeIndex = 0;
    QStringList m_averagingModeNames;
    /// Samples in the window of the moving average while it grows.
    int m_sampleCounter = 0;
    std::array<float, kFieldCount> m_accumulators{};
};
