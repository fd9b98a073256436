// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CDataset.h"
#include "CMeasureBlock.h"

#include <QSharedPointer>

#include <deque>

/// Dataset of a measurement. `ResultsCount` counts samples, and so does its limit,
/// MeasurementMaxMeasurementCount of the settings.
class CDataSetMeasurement : public CDataset
{
    Q_OBJECT
    Q_PROPERTY(std::deque<QSharedPointer<CMeasureBlock>>* MeasureBlocks READ MeasureBlocks CONSTANT)

public:
    using CDataset::CDataset;

    /// The blocks, oldest at the front. Readers of record files append here directly, without a limit.
    std::deque<QSharedPointer<CMeasureBlock>>* MeasureBlocks() { return &m_measureBlocks; }
    const std::deque<QSharedPointer<CMeasureBlock>>* MeasureBlocks() const { return &m_measureBlocks; }

    /// Appends the block and drops the oldest ones as far as the limit asks for it, but never the newest.
    void AddBlock(const QSharedPointer<CMeasureBlock>& block);

    void Clear() override;

private:
    std::deque<QSharedPointer<CMeasureBlock>> m_measureBlocks;
};

Q_DECLARE_METATYPE(std::deque<QSharedPointer<CMeasureBlock>>*)
