// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2DAveragedData.h"
#include "CMeasureBlock.h"

#include <QSharedPointer>

#include <array>
#include <deque>

class COperationMeasure;
class CSettings;

/// The time plot of the meter page: every sample of every block is a point, smoothed by an average if asked.
/// The averages are made in single precision and carried from block to block. A count of 0 is no averaging.
class CChart2DMeterData : public CChart2DAveragedData
{
    Q_OBJECT

public:
    using Blocks = std::deque<QSharedPointer<CMeasureBlock>>;

    /// Starts with the averaging that `settings` hold. Both must outlive the chart.
    CChart2DMeterData(COperationMeasure* operation, CSettings* settings, QObject* parent = nullptr);

    /// Adds a live block.
    void AddMeasureBlock(const QSharedPointer<CMeasureBlock>& block);
    /// Adds a whole recording and shows all of it.
    void LoadDataset(const Blocks& blocks);
    /// Adds a recording up to block `index`, or the whole with the window ending at that block.
    void LoadDatasetUpTo(const Blocks& blocks, int index, bool wholeDataset);
    /// Moves the window to the end of block `index` of a recording that is loaded already.
    void MoveToBlock(const Blocks& blocks, int index, bool wholeDataset);

    void UpdateFilter() override;
    void ResetFilter() override;

private:
    static constexpr std::size_t kFieldCount = 6;

    void AppendBlock(const CMeasureBlock& block);
    void ShowBlock(const Blocks& blocks, int index, bool wholeDataset);
    CFieldsHistory::Result FilterExponential(std::size_t k, std::size_t n);
    CFieldsHistory::Result FilterMoving(std::size_t k, std::size_t n);

    COperationMeasure* m_operation;
    /// Samples in the window of the moving average while it grows.
    int m_sampleCounter = 0;
    std::array<float, kFieldCount> m_accumulators{};
};
