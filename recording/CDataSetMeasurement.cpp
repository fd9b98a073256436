// SPDX-License-Identifier: GPL-3.0-or-later
#include "CDataSetMeasurement.h"

#include "CSettings.h"

void CDataSetMeasurement::AddBlock(const QSharedPointer<CMeasureBlock>& block)
{
    SetResultsCount(ResultsCount() + static_cast<quint64>(block->Results.size()));
    m_measureBlocks.push_back(block);
    while (ResultsCount() > SettingsRef.MeasurementMaxMeasurementCount() && m_measureBlocks.size() >= 2) {
        const QSharedPointer<CMeasureBlock> oldest = m_measureBlocks.front();
        m_measureBlocks.pop_front();
        SetResultsCount(ResultsCount() - static_cast<quint64>(oldest->Results.size()));
    }
}

void CDataSetMeasurement::Clear()
{
    m_measureBlocks = {};
    SetComment(QString());
    clearFilePath();
    clearInstrumentName();
    clearDate();
    SetResultsCount(0);
    SetCleared(true);
}
