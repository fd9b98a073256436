// SPDX-License-Identifier: GPL-3.0-or-later
#include "COperationMapping.h"

#include "CMapperPluginOnTheFly.h"
#include "CMapperPluginStopAndGo.h"
#include "CPluginsManager.h"
#include "CSettings.h"
#include "MappingParameterFile.h"

#include <QDebug>
#include <QDomElement>

namespace {

QString mappingSettingsFileName()
{
    return QStringLiteral("KestrixMappingSettings.xml");
}

/// A block of its own with the samples of the instrument's block, which are shared.
QSharedPointer<CMeasureBlockMapping> mappingBlockOf(const CMeasureBlock& block)
{
    auto mappingBlock = QSharedPointer<CMeasureBlockMapping>::create();
    mappingBlock->SetComment(block.Comment());
    mappingBlock->Results = block.Results;
    mappingBlock->Bprime.SetX(block.Bprime.X());
    mappingBlock->Bprime.SetY(block.Bprime.Y());
    mappingBlock->Bprime.SetZ(block.Bprime.Z());
    return mappingBlock;
}

} // namespace

COperationMapping::COperationMapping(CSettings* settings, CPluginsManager* pluginsManager,
                                     CInstrumentSupervisor* supervisor, QObject* parent)
    : COperation(supervisor, parent), m_settings(settings), m_pluginsManager(pluginsManager),
      m_recordingManager(*settings)
{
    SetName(QStringLiteral("Mapping"));
    m_recordingManager.DataSet()->SetMeasurementParameters(OperationParameters()->MeasurementParameters());
    connect(&m_recordingManager, &CRecordingManagerMapping::ReplayMeasureBlock, this,
            &COperationMapping::OnReplayMeasure);
}

quint64 COperationMapping::GetMaxMeasurementCount() const
{
    return m_settings->MappingMaxMeasurementCount();
}

void COperationMapping::Activate()
{
    if (!LoadSettingsFile(mappingSettingsFileName()))
        setDefaultParameters();
    if (const QSharedPointer<CInstrument> instrument = ActiveInstrument())
        connect(instrument.data(), &CInstrument::OnNewMeasureBlock, this, &COperationMapping::OnNewMeasure,
                Qt::UniqueConnection);
}

void COperationMapping::Deactivate()
{
    SaveSettingsFile(mappingSettingsFileName());
    if (const QSharedPointer<CInstrument> instrument = ActiveInstrument())
        disconnect(instrument.data(), &CInstrument::OnNewMeasureBlock, this,
                   &COperationMapping::OnNewMeasure);
}

void COperationMapping::setDefaultParameters()
{
    // The mode comes last: the cascade of each assignment depends on it.
    CMeasurementParameters& parameters = *OperationParameters()->MeasurementParameters();
    parameters.SetApplyConfiguration(false);
    parameters.SetAcquisitionRate(10.0);
    parameters.SetDisplayRate(1.0);
    parameters.SetAveraging(100);
    parameters.SetTriggerMode(CTrigger::IMMEDIATE);
    TakeUnitOfInstrument();
    parameters.SetApplyConfiguration(true);
}

void COperationMapping::StartSession()
{
    CMapperPlugin* const mapper = MappingParameters()->SelectedMapper();
    if (!mapper) {
        qWarning("Mapper is null");
        return;
    }
    if (!ActiveInstrument())
        return;
    SetSessionInProgress(true);
    mapper->Start();

    if (mapper->MapperType != CMapperPlugin::kStopAndGo) {
        if (const auto* onTheFly = qobject_cast<CMapperPluginOnTheFly*>(mapper))
            connect(onTheFly, &CMapperPluginOnTheFly::Acquire, this, &COperationMapping::OnAcquire,
                    Qt::QueuedConnection);
        return;
    }
    auto* stopAndGo = qobject_cast<CMapperPluginStopAndGo*>(mapper);
    if (!stopAndGo)
        return;
    connect(stopAndGo, &CMapperPluginStopAndGo::Ready, this, &COperationMapping::OnAcquire,
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::UniqueConnection));

    CMapperPositionSource* const source = MappingParameters()->MapperSource();
    if (!source)
        return;
    source->Reset();
    CPosition position;
    COrientation orientation;
    if (source->GetNextPosition(position, orientation))
        stopAndGo->MoveTo(position, orientation);
    else
        endOfList();
}

void COperationMapping::OnAcquire()
{
    if (const QSharedPointer<CInstrument> instrument = ActiveInstrument())
        instrument->StartMeasurement();
    StartTriggerPlugin();
}

void COperationMapping::OnNewMeasure(QSharedPointer<CMeasureBlock> pMeasureBlock)
{
    // Instruments are plug-ins: nothing keeps one from sending no block.
    if (!pMeasureBlock)
        return;
    qDebug().noquote().nospace() << "OnNewMeasure with " << pMeasureBlock->Results.size() << " acquisition";
    const QSharedPointer<CMeasureBlockMapping> block = mappingBlockOf(*pMeasureBlock);
    // The probe is on its way to the next point while this one is stored and shown.
    locate(*block);
    m_recordingManager.AddMeasureBlock(block);
    emit NewMeasure(block);
}

void COperationMapping::locate(CMeasureBlockMapping& block)
{
    CMapperPlugin* const mapper = MappingParameters()->SelectedMapper();
    if (!mapper) {
        qWarning("SelectedMapper is not set");
        return;
    }
    block.Position = mapper->GetPosition();
    block.Orientation = mapper->GetOrientation();
    if (!MappingParameters()->MapperSource()) {
        qWarning("MapperSource is not set");
        return;
    }
    if (mapper->MapperType != CMapperPlugin::kStopAndGo)
        return;
    if (auto* stopAndGo = qobject_cast<CMapperPluginStopAndGo*>(mapper))
        moveOn(*stopAndGo);
    else
        qDebug("Fail to casting to CMapperPluginStopAndGo");
}

void COperationMapping::moveOn(CMapperPluginStopAndGo& mapper)
{
    CPosition position;
    COrientation orientation;
    if (MappingParameters()->MapperSource()->GetNextPosition(position, orientation)) {
        StopTriggerPlugin();
        mapper.MoveTo(position, orientation);
    } else {
        endOfList();
    }
}

void COperationMapping::endOfList()
{
    qDebug("End of the MapperSource list");
    StopSession();
    m_recordingManager.StopRecord();
}

void COperationMapping::OnReplayMeasure(QSharedPointer<CMeasureBlockMapping> pMeasureBlock)
{
    emit NewMeasure(pMeasureBlock);
}

void COperationMapping::StopSession()
{
    SetSessionInProgress(false);
    CMapperPlugin* const mapper = MappingParameters()->SelectedMapper();
    if (!mapper) {
        qWarning("Mapper is null");
        return;
    }
    mapper->Stop();
    if (mapper->MapperType != CMapperPlugin::kStopAndGo) {
        if (const auto* onTheFly = qobject_cast<CMapperPluginOnTheFly*>(mapper))
            disconnect(onTheFly, &CMapperPluginOnTheFly::Acquire, this, &COperationMapping::OnAcquire);
    } else if (const auto* stopAndGo = qobject_cast<CMapperPluginStopAndGo*>(mapper)) {
        disconnect(stopAndGo, &CMapperPluginStopAndGo::Ready, this, &COperationMapping::OnAcquire);
    }
}

void COperationMapping::Reset()
{
    ResetRecording(m_recordingManager);
    m_recordingManager.DataSet()->Clear();
}

bool COperationMapping::GetUnsavedData() const
{
    return m_recordingManager.HasUnsavedData();
}

bool COperationMapping::GetDataSetEmpty() const
{
    return m_recordingManager.IsDataSetEmpty();
}

const QList<CTriggerPlugin*>& COperationMapping::GetTriggerPlugins() const
{
    return m_pluginsManager->TriggerPlugins();
}

const QList<CMapperPlugin*>& COperationMapping::GetMapperPlugins() const
{
    return m_pluginsManager->MapperPlugins();
}

void COperationMapping::SaveExtraParameters(QXmlStreamWriter& writer) const
{
    MappingParameterFile::write(writer, *OperationParameters()->MappingParameters());
}

void COperationMapping::LoadExtraParameters(const QDomElement& element)
{
    if (!MappingParameterFile::isMappingParameters(element))
        return;
    // Neither the mapper nor the source is restored, only the grid.
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        if (MappingParameterFile::isGrid(child))
            ReadCartesianParameters(child);
}

void COperationMapping::ReadCartesianParameters(const QDomElement& element)
{
    qDebug().noquote() << "COperationMapping::ReadCartesianParameters" << element.tagName();
    MappingParameterFile::readGrid(element, *MappingParameters()->MapperSourceCartesian());
}
