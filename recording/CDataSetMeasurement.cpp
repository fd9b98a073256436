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
        assignResultsCount(ResultsCount() - static_cast<quint64>(oldest->Results.size()));
    }
}

void CDataSetMeasurement::Clear()
{
    // Neither clear nor an assigned empty list gives the memory back.
    std::deque<QSharedPointer<CMeasureBlock>>().swap(m_measureBlocks);
    SetComment(QString());
    AssignFilePath(QString());
    AssignInstrumentName(QString());
    AssignDate(QString());
    SetResultsCount(0);
    SetCleared(true);
}
