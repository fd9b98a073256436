// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CDataset.h"
#include "CMeasureBlockMapping.h"

#include <QSharedPointer>

#include <deque>

/// Dataset of a mapping. `ResultsCount` counts blocks; its limit is MappingMaxMeasurementCount of the
/// settings, a number of samples, divided by the block size.
class CDataSetMapping : public CDataset
{
    Q_OBJECT
    Q_PROPERTY(std::deque<QSharedPointer<CMeasureBlockMapping>>* MeasureBlocks READ MeasureBlocks CONSTANT)

public:
    using CDataset::CDataset;

    /// The blocks, oldest at the front. Readers of record files append here directly, without a limit.
    std::deque<QSharedPointer<CMeasureBlockMapping>>* MeasureBlocks() { return &m_measureBlocks; }
    const std::deque<QSharedPointer<CMeasureBlockMapping>>* MeasureBlocks() const { return &m_measureBlocks; }

    /// Appends the block and drops the oldest ones as far as the limit asks for it; without a
    /// block size nothing is counted or dropped.
    void AddBlock(const QSharedPointer<CMeasureBlockMapping>& block);

    void Clear() override;

private:
    std::deque<QSharedPointer<CMeasureBlockMapping>> m_measureBlocks;
};

Q_DECLARE_METATYPE(std::deque<QSharedPointer<CMeasureBlockMapping>>*)
