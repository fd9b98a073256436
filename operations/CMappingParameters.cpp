// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMappingParameters.h"

#include "Property.h"

CMappingParameters::CMappingParameters(QObject* parent)
    : QObject(parent), m_mapperSource(&m_mapperSourceCartesian)
{
}

void CMappingParameters::SetSelectedMapper(CMapperPlugin* mapper)
{
    if (m_selectedMapper == mapper)
        return;
    disconnect(m_mapperDestroyed);
    m_selectedMapper = mapper;
    // By the time the object says so, the pointer to it is null already.
    if (mapper)
        m_mapperDestroyed =
            connect(mapper, &QObject::destroyed, this, [this] { emit SelectedMapperChanged(nullptr); });
    emit SelectedMapperChanged(mapper);
}

void CMappingParameters::SetMapperSource(CMapperPositionSource* source)
{
    storeAndEmitOnChange(this, m_mapperSource, source, &CMappingParameters::MapperSourceChanged);
}
