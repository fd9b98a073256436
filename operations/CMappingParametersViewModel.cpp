// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMappingParametersViewModel.h"

#include "COperationMapping.h"
#include "Property.h"

CMappingParametersViewModel::CMappingParametersViewModel(COperationMapping* operation, QObject* parent)
    : QObject(parent), m_parameters(operation->MappingParameters()),
      m_sources({CMapperPositionSource::TypeToText(CMapperPositionSource::Cartesian),
                 CMapperPositionSource::TypeToText(CMapperPositionSource::File)})
{
    using Self = CMappingParametersViewModel;
    m_parameters->SetMapperSource(m_parameters->MapperSourceCartesian());
    connect(this, &Self::SelectedSourceIndexChanged, this, &Self::OnSelectedSourceIndexChanged);
    connect(this, &Self::SelectedMapperIndexChanged, this, &Self::OnSelectedMapperIndexChanged);

    for (CMapperPlugin* plugin : operation->GetMapperPlugins()) {
        m_plugins.append(plugin);
        m_mappers.append(plugin->Name);
    }
    if (!m_plugins.isEmpty())
        SetSelectedMapperIndex(0);
}

void CMappingParametersViewModel::SetSelectedMapperIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedMapperIndex, index,
                         &CMappingParametersViewModel::SelectedMapperIndexChanged);
}

void CMappingParametersViewModel::SetSelectedSourceIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedSourceIndex, index,
                         &CMappingParametersViewModel::SelectedSourceIndexChanged);
}

void CMappingParametersViewModel::OnSelectedSourceIndexChanged(int selectedSourceIndex)
{
    storeAndEmitOnChange(this, m_isCartesianSource, selectedSourceIndex == 0,
                         &CMappingParametersViewModel::IsCartesianSourceChanged);
    if (m_isCartesianSource)
        m_parameters->SetMapperSource(m_parameters->MapperSourceCartesian());
    else
        m_parameters->SetMapperSource(m_parameters->MapperSourceFile());
    emit m_parameters->SourceChanged();
}

void CMappingParametersViewModel::OnSelectedMapperIndexChanged(int selectedMapperIndex)
{
    CMapperPlugin* const plugin = m_plugins.value(selectedMapperIndex);
    if (!plugin)
        return;
    m_parameters->SetSelectedMapper(plugin);
    storeAndEmitOnChange(this, m_isMapperOnTheFly, plugin->MapperType == CMapperPlugin::kOnTheFly,
                         &CMappingParametersViewModel::IsMapperOnTheFlyChanged);
}
