// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMapperPlugin.h"
#include "CMapperPositionSourceCartesian.h"
#include "CMapperPositionSourceMappingFile.h"

#include <QObject>
#include <QPointer>

/// What moves the probe in a mapping, and where it is to go. Main thread only.
class CMappingParameters : public QObject
{
    Q_OBJECT
    Q_PROPERTY(CMapperPlugin* SelectedMapper READ SelectedMapper WRITE SetSelectedMapper NOTIFY
                   SelectedMapperChanged)
    Q_PROPERTY(CMapperPositionSource* MapperSource READ MapperSource WRITE SetMapperSource NOTIFY
                   MapperSourceChanged)
    Q_PROPERTY(CMapperPositionSourceCartesian* MapperSourceCartesian READ MapperSourceCartesian CONSTANT)
    Q_PROPERTY(CMapperPositionSourceMappingFile* MapperSourceFile READ MapperSourceFile CONSTANT)

public:
    explicit CMappingParameters(QObject* parent = nullptr);

    /// Null until one is chosen, and again once the chosen one is gone. Not owned.
    CMapperPlugin* SelectedMapper() const { return m_selectedMapper; }
    void SetSelectedMapper(CMapperPlugin* mapper);

    /// One of the two members; the cartesian one at first.
    CMapperPositionSource* MapperSource() const { return m_mapperSource; }
    void SetMapperSource(CMapperPositionSource* source);

    CMapperPositionSourceCartesian* MapperSourceCartesian() { return &m_mapperSourceCartesian; }
    const CMapperPositionSourceCartesian* MapperSourceCartesian() const { return &m_mapperSourceCartesian; }
    CMapperPositionSourceMappingFile* MapperSourceFile() { return &m_mapperSourceFile; }

signals:
    void SelectedMapperChanged(CMapperPlugin* value);
    void MapperSourceChanged(CMapperPositionSource* value);
    /// The user has chosen a source; emitted by the view model, for the same source too.
    void SourceChanged();

private:
    CMapperPositionSourceCartesian m_mapperSourceCartesian;
    CMapperPositionSourceMappingFile m_mapperSourceFile;
    QPointer<CMapperPlugin> m_selectedMapper;
    QMetaObject::Connection m_mapperDestroyed;
    CMapperPositionSource* m_mapperSource;
};
