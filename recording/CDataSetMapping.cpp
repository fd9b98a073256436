// SPDX-License-Identifier: GPL-3.0-or-later
#include "CDataSetMapping.h"

#include "CSettings.h"

#include <algorithm>

void CDataSetMapping::AddBlock(const QSharedPointer<CMeasureBlockMapping>& block)
{
    m_measureBlocks.push_back(block);
    const int blockSize = MeasurementParameters() ? MeasurementParameters()->BlockSize() : 0;
    if (blockSize <= 0)
        return;

    SetResultsCount(m_measureBlocks.size());
    const quint64 limit =
        std::max<quint64>(SettingsRef.MappingMaxMeasurementCount() / static_cast<quint64>(blockSize), 1);
    while (ResultsCount() > limit) {
        m_measureBlocks.pop_front();
        assignResultsCount(m_measureBlocks.size());
    }
}

void CDataSetMapping::Clear()
{
    // Neither clear nor an assigned empty list gives the memory back.
    std::deque<QSharedPointer<CMeasureBlockMapping>>().swap(m_measureBlocks);
    SetComment(QString());
    AssignInstrumentName(QString());
    AssignDate(QString());
    AssignFilePath(QString());
    SetResultsCount(0);
    SetCleared(true);
}
