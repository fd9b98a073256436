// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMapperPositionSourceMappingFile.h"

CMapperPositionSourceMappingFile::CMapperPositionSourceMappingFile(QObject* parent)
    : CMapperPositionSource(File, parent)
{
}

void CMapperPositionSourceMappingFile::Reset()
{
    m_positionIndex = 0;
}

bool CMapperPositionSourceMappingFile::GetNextPosition(CPosition& position, COrientation& orientation)
{
    const QList<CPosition>& positions = *m_mappingFile.Positions();
    const QList<COrientation>& orientations = *m_mappingFile.Orientations();
    if (m_positionIndex >= positions.size() || m_positionIndex >= orientations.size())
        return false;
    orientation = orientations.at(m_positionIndex);
    position = positions.at(m_positionIndex);
    ++m_positionIndex;
    return true;
}

void CMapperPositionSourceMappingFile::loadMappingFile()
{
    m_mappingFile.Load();
}
