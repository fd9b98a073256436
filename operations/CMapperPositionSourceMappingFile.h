// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMapperPositionSource.h"
#include "MappingXmlFile.h"

/// The points of a positions file.
class CMapperPositionSourceMappingFile : public CMapperPositionSource
{
    Q_OBJECT
    Q_PROPERTY(MappingXmlFile* MappingFile READ MappingFile CONSTANT)

public:
    explicit CMapperPositionSourceMappingFile(QObject* parent = nullptr);

    MappingXmlFile* MappingFile() { return &m_mappingFile; }

    void Reset() override;
    bool GetNextPosition(CPosition& position, COrientation& orientation) override;
    int PositionIndex() const { return m_positionIndex; } ///< points handed out since the last restart

    /// Reads the file whose path stands in `MappingFile`.
    Q_INVOKABLE void loadMappingFile();

private:
    MappingXmlFile m_mappingFile;
    int m_positionIndex = 0;
};
