// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2DFieldsData.h"
#include "CMeasureBlock.h"

#include <QSharedPointer>

#include <deque>

class COperationMeasure;

/// The time plot of the AC analysis page: a point stands for a whole block, reduced to one figure of merit
/// for each series. The figure is 0 for the RMS, 1 for the peak-to-peak value, 2 for the standard deviation;
/// any other index counts as 0. The uncertainty of a figure is half the distance of the figures of the two
/// bounds.
///
/// A block that is too short for its figure makes all three entry points throw ComputeError: one without
/// results, or for the standard deviation one with a single result. Its point is not added.
class CChart2DAcAnalysisData : public CChart2DFieldsData
{
    Q_OBJECT

public:
    using Blocks = std::deque<QSharedPointer<CMeasureBlock>>;

    /// The operation must outlive the chart.
    explicit CChart2DAcAnalysisData(COperationMeasure* operation, QObject* parent = nullptr);

    /// Adds the point of a live block.
    void AddMeasureBlock(const QSharedPointer<CMeasureBlock>& block, int figureOfMeritIndex);
    /// Adds a whole recording and shows its last ten seconds.
    void LoadDataset(const Blocks& blocks, int figureOfMeritIndex);
    /// Adds a recording up to block `index`, or the whole with the window ending at that block.
    void LoadDatasetUpTo(const Blocks& blocks, int figureOfMeritIndex, int index, bool wholeDataset);

    unsigned ComputeDeltaX() override;
    /// Takes over the raw results as they are.
    void UpdateFilter() override;

private:
    class LoadingBracket;

    std::size_t MaxPointCount() const;

    COperationMeasure* m_operation;
};
