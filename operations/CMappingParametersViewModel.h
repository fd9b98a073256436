// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMapperPlugin.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>

class CMappingParameters;
class COperationMapping;

/// What the box "Mapping" of the page offers and has chosen.
class CMappingParametersViewModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList Mappers READ Mappers NOTIFY MappersChanged)
    Q_PROPERTY(int SelectedMapperIndex READ SelectedMapperIndex WRITE SetSelectedMapperIndex NOTIFY
                   SelectedMapperIndexChanged)
    Q_PROPERTY(QStringList Sources READ Sources NOTIFY SourcesChanged)
    Q_PROPERTY(int SelectedSourceIndex READ SelectedSourceIndex WRITE SetSelectedSourceIndex NOTIFY
                   SelectedSourceIndexChanged)
    Q_PROPERTY(bool IsCartesianSource READ IsCartesianSource NOTIFY IsCartesianSourceChanged)
    Q_PROPERTY(bool IsMapperOnTheFly READ IsMapperOnTheFly NOTIFY IsMapperOnTheFlyChanged)

public:
    /// `operation` must outlive the view model. Chooses the first mapper and the cartesian source.
    explicit CMappingParametersViewModel(COperationMapping* operation, QObject* parent = nullptr);

    QStringList Mappers() const { return m_mappers; }                 ///< names of the loaded mappers
    int SelectedMapperIndex() const { return m_selectedMapperIndex; } ///< -1 without a mapper
    QStringList Sources() const { return m_sources; }
    int SelectedSourceIndex() const { return m_selectedSourceIndex; }
    bool IsCartesianSource() const { return m_isCartesianSource; }
    bool IsMapperOnTheFly() const { return m_isMapperOnTheFly; } ///< the mapper sets the pace

    void SetSelectedMapperIndex(int index);
    void SetSelectedSourceIndex(int index);

public slots:
    void OnSelectedSourceIndexChanged(int selectedSourceIndex);
    /// An index that is none changes nothing.
    void OnSelectedMapperIndexChanged(int selectedMapperIndex);

signals:
    void MappersChanged(const QStringList& value);
    void SelectedMapperIndexChanged(int value);
    void SourcesChanged(const QStringList& value);
    void SelectedSourceIndexChanged(int value);
    void IsCartesianSourceChanged(bool value);
    void IsMapperOnTheFlyChanged(bool value);

private:
    CMappingParameters* m_parameters;
    /// In the order of `Mappers`, so that the indices hold when one of them is gone.
    QList<QPointer<CMapperPlugin>> m_plugins;
    QStringList m_mappers;
    int m_selectedMapperIndex = -1;
    QStringList m_sources;
    int m_selectedSourceIndex = 0;
    bool m_isCartesianSource = true;
    bool m_isMapperOnTheFly = false;
};
