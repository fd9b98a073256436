// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMappingOperationViewModel.h"

#include "CMappingParameters.h"
#include "CMeasurementParameters.h"
#include "COperationMapping.h"
#include "CRecordingManagerMapping.h"
#include "CSettings.h"
#include "CUtils.h"
#include "FieldRotation.h"
#include "PresentTime.h"
#include "Property.h"
#include "UncertaintyConversion.h"

#include <QDebug>

#include <algorithm>
#include <cmath>

namespace {

using Page = CMappingOperationViewModel;

} // namespace

CMappingOperationViewModel::CMappingOperationViewModel(COperationMapping* operation, CSettings* settings,
                                                       CUserNotifier* notifier, QObject* parent)
    : COperationViewModel(QStringLiteral("MappingOperation"), parent), m_operation(operation),
      m_settings(settings), m_session(*operation), m_measurementParametersViewModel(operation, true),
      m_alarmParametersViewModel(operation), m_mappingParametersViewModel(operation),
      m_datasetViewModel(operation, settings), m_replayParametersViewModel(operation),
      m_alarm(notifier, m_session.alarmParameters().State(), m_session.alarmParameters().Axis(), false)
{
    if (!m_session.recordingManager().IsDataLoaded())
        m_session.dataSet().SetMeasurementParameters(&m_session.liveParameters());
    followUnitsOf(*m_session.dataSet().MeasurementParameters());
    OnAlarmAxisUnitChanged();
    setMaxVectorCount(vectorCapacity());
    connectSignals();
    connectAxes();
    presentExistingData();
    // Last, since a replay that waited for a view delivers its next block at once.
    m_session.recordingManager().SetIsProcessingBlock(false);
}

void CMappingOperationViewModel::connectSignals()
{
    connect(m_operation, &COperationMapping::NewMeasure, this, &Page::OnNewMeasure);
    connect(&m_session.liveParameters(), &CMeasurementParameters::UnitsChanged, this,
            &Page::OnOperationParameterUnitChanged);
    connect(&m_session.liveParameters(), &CMeasurementParameters::UnitsChanged, this,
            &Page::OnMeasureParametersUnitChanged);
    connect(&m_session.liveParameters(), &CMeasurementParameters::UncertaintyUnitsChanged, this,
            &Page::OnMeasureParametersUncertaintyUnitChanged);
    connect(&m_session.alarmParameters(), &CAlarmParametersMapping::AxisChanged, this,
            &Page::OnAlarmAxisUnitChanged);
    connect(&m_session.dataSet(), &CDataset::ClearedChanged, this, &Page::OnDataSetCleared);
    connect(&m_session.dataSet(), &CDataset::MeasurementParametersUpdated, this,
            &Page::OnMeasureParametersUnitChanged);
    connect(&m_session.recordingManager(), &CRecordingManager::IsPlayingBackChanged, this,
            &Page::OnPlayingBackChanged);
    connect(m_session.mappingParameters().MapperSourceFile()->MappingFile(), &MappingXmlFile::Loaded, this,
            &Page::OnMappingFileLoaded);
    connect(&m_session.mappingParameters(), &CMappingParameters::SourceChanged, this,
            &Page::OnMappingParmsSourceChanged);
    connect(this, &COperationViewModel::DatasetLoaded, this, &Page::OnDatasetLoaded);
}

void CMappingOperationViewModel::connectAxes()
{
    CMapperPositionSourceCartesian& grid = *m_session.mappingParameters().MapperSourceCartesian();
    connect(grid.X(), &CAxisStepSeries::StartChanged, this, &Page::OnMapperSourceCartesianXStartChanged);
    connect(grid.X(), &CAxisStepSeries::StopChanged, this, &Page::OnMapperSourceCartesianXStopChanged);
    connect(grid.Y(), &CAxisStepSeries::StartChanged, this, &Page::OnMapperSourceCartesianYStartChanged);
    connect(grid.Y(), &CAxisStepSeries::StopChanged, this, &Page::OnMapperSourceCartesianYStopChanged);
    connect(grid.Z(), &CAxisStepSeries::StartChanged, this, &Page::OnMapperSourceCartesianZStartChanged);
    connect(grid.Z(), &CAxisStepSeries::StopChanged, this, &Page::OnMapperSourceCartesianZStopChanged);
}

void CMappingOperationViewModel::PageLeft()
{
    CMapperPositionSourceCartesian& grid = *m_session.mappingParameters().MapperSourceCartesian();
    for (QObject* sender : std::initializer_list<QObject*>{
             m_operation, &m_session.liveParameters(), &m_session.alarmParameters(), &m_session.dataSet(),
             &m_session.recordingManager(), m_session.mappingParameters().MapperSourceFile()->MappingFile(),
             &m_session.mappingParameters(), grid.X(), grid.Y(), grid.Z()})
        disconnect(sender, nullptr, this, nullptr);
    disconnect(this, nullptr, this, nullptr);
    m_alarm.Stop();
}

QString CMappingOperationViewModel::GetHelpName() const
{
    const QStringList names{QStringLiteral("mapping_numeric"), QStringLiteral("mapping_plot"),
                            QStringLiteral("mapping_table"), QStringLiteral("mapping_vector")};
    return names.value(SectionIndex());
}

void CMappingOperationViewModel::presentExistingData()
{
    const bool isInSession = m_operation->SessionInProgress();
    if (m_session.dataSet().MeasureBlocks()->empty() && !isInSession)
        return;
    setCanAcceptNewMeasure(true);
    m_rebuildingVectors = true;
    if (m_session.recordingManager().IsPlayingBack()) {
        setMaxVectorCount(numBlocks());
        rebuildViews(Extent::ReplayIndex);
        if (numBlocks() > 0)
            updatePositionAndOrientation(*m_session.dataSet().MeasureBlocks()->at(replayedBlock()));
    } else {
        if (m_session.recordingManager().IsIdleWithData())
            openReplayRange();
        rebuildViews(Extent::WholeDataset);
        if (isInSession)
            setMaxVectorCount(vectorCapacity());
    }
    m_rebuildingVectors = false;
}

void CMappingOperationViewModel::resume()
{
    const CommandScope command(*this);
    if (m_session.recordingManager().IsPlayingBack()) {
        m_session.recordingManager().StartReplay();
        return;
    }
    if (m_session.recordingManager().IsIdleWithData()) {
        if (!askToQuitOperation())
            return;
        m_operation->Reset();
    }
    setCanAcceptNewMeasure(true);
    m_session.begin();
}

void CMappingOperationViewModel::hold()
{
    const CommandScope command(*this);
    m_session.hold();
}

void CMappingOperationViewModel::stop()
{
    const CommandScope command(*this);
    if (m_session.recordingManager().IsPlayingBack())
        m_session.recordingManager().StopReplay();
    if (!m_session.recordingManager().IsRecording())
        return;
    m_session.endRecord();
    setCommentOverAll(m_session.dataSet().Comment());
}

void CMappingOperationViewModel::end()
{
    const CommandScope command(*this);
    if (!askToQuitOperation())
        return;
    m_operation->StopSession();
    m_operation->Reset();
}

void CMappingOperationViewModel::start()
{
    m_datasetViewModel.TableData()->Clear();
    const int index = m_replayParametersViewModel.SelectedTimeWarpIndex();
    m_session.startReplay(m_replayParametersViewModel.TimeWarpValues().value(index, 1.0));
}

void CMappingOperationViewModel::zeroOffset(bool forceCalibration)
{
    const CommandScope command(*this);
    m_session.calibrateZeroOffset(forceCalibration);
}

void CMappingOperationViewModel::restoreZeroOffsetToFactory()
{
    const CommandScope command(*this);
    m_session.restoreZeroOffset();
}

void CMappingOperationViewModel::load()
{
    const CommandScope command(*this);
    if (m_session.recordingManager().HasUnsavedData() && !askToQuitOperation())
        return;
    if (m_operation->SessionInProgress())
        m_operation->StopSession();
    stop();

    const QString path = askFileToOpen(tr("Open File"), *m_settings);
    if (path.isEmpty())
        return;
    if (m_session.recordingManager().Load(path))
        followLoad();
    else
        followFailedLoad();
}

void CMappingOperationViewModel::followLoad()
{
    if (m_session.recordingManager().IsDataLoaded()) {
        const CMeasurementParameters& parameters = *m_session.dataSet().MeasurementParameters();
        SetDisplayUncertaintyUnits(parameters.UncertaintyUnits());
        OnMeasureParametersUnitChanged(parameters.Units());
    }
    setCanAcceptNewMeasure(true);
    emit DatasetLoaded();
}

void CMappingOperationViewModel::followFailedLoad()
{
    m_operation->Reset();
    m_session.dataSet().SetMeasurementParameters(&m_session.liveParameters());
    qWarning().noquote() << "Error while loading file:"
                         << m_session.recordingManager().XMLResultsSerializer()->ErrorMessage();
    CUtils::ShowError(tr("Could not load file"), tr("The file is not a valid Norvane XML mapping file"));
}

void CMappingOperationViewModel::save()
{
    const CommandScope command(*this);
    const QString name = recordFileName(m_operation->ActiveInstrument().data(), QStringLiteral("mapping"));
    m_session.recordingManager().Save(askFileToSave(tr("Save File"), name, *m_settings));
}

void CMappingOperationViewModel::loadParameters()
{
    const CommandScope command(*this);
    const QString path = askFileToOpen(tr("Open parameters to file"), *m_settings);
    if (path.isEmpty())
        return;
    m_operation->LoadParameters(path);
    // A block is taken at each place, which free-running measurement knows nothing of.
    if (m_session.liveParameters().TriggerMode() == CTrigger::CONTINUOUS)
        m_session.liveParameters().SetTriggerMode(CTrigger::IMMEDIATE);
}

void CMappingOperationViewModel::saveParameters()
{
    const CommandScope command(*this);
    const QString name = QStringLiteral("MappingParameters-") +
                         presentTime(QStringLiteral("yyyy.MM.dd-HH.mm.ss")) + QStringLiteral(".xml");
    m_operation->SaveParameters(askFileToSave(tr("Save parameters to file"), name, *m_settings));
}

void CMappingOperationViewModel::OnNewMeasure(QSharedPointer<CMeasureBlockMapping> block)
{
    if (!m_canAcceptNewMeasure)
        return;
    const CRecordingManagerMapping& manager = m_session.recordingManager();
    if (manager.IsPlayingBack() || manager.IsRecording() || !manager.IsIdleWithData()) {
        processBlock(block);
        return;
    }
    // The user looks at a stored block, or the last one of a session comes behind its end.
    m_rebuildingVectors = static_cast<qint64>(m_vectorHistory.size()) < manager.NumBlocks();
    rebuildViews(Extent::ReplayIndex);
    m_rebuildingVectors = false;
}

void CMappingOperationViewModel::processBlock(const BlockPointer& block)
{
    updatePositionAndOrientation(*block);
    convertUncertainty(*block);
    updateLastBlockValues(*block);
    m_datasetViewModel.Chart2DData()->AddMeasureBlock(block);
    m_datasetViewModel.TableData()->AddMappingBlock(block);
    setCommentBlock(block->Comment());
    checkOutOfLimit(*block);
    appendVector(*block);
    // Releases the next block of a replay.
    m_session.recordingManager().SetIsProcessingBlock(false);
}

void CMappingOperationViewModel::rebuildViews(Extent extent)
{
    if (!m_canAcceptNewMeasure)
        return;
    resetViews(m_rebuildingVectors);
    const auto& blocks = *m_session.dataSet().MeasureBlocks();
    if (blocks.empty())
        return;

    CChart2DMappingData& chart = *m_datasetViewModel.Chart2DData();
    std::size_t count = blocks.size();
    if (extent == Extent::ReplayIndex) {
        count = replayedBlock() + 1;
        chart.LoadDatasetUpTo(blocks, static_cast<int>(replayedBlock()));
    } else {
        chart.LoadDataset(blocks);
        if (m_rebuildingVectors) {
            setMaxScale(kSmallestMaxScale);
            setMaxVectorCount(numBlocks());
        }
        // A block shown at rest leaves the place of the last one that was measured or replayed.
        updatePositionAndOrientation(*blocks.back());
    }
    const CMeasureBlockMapping& current = *blocks[count - 1];
    for (std::size_t i = 0; i < count; ++i) {
        if (m_rebuildingVectors)
            appendVector(*blocks[i]);
        convertUncertainty(*blocks[i]);
    }
    m_datasetViewModel.TableData()->AddMappingBlocks(blocks, count);
    setAxes(MappingAxes::ofBlocks(blocks));
    if (!m_rebuildingVectors)
        emit setVisibleUntilChart();
    checkOutOfLimit(current);
    updateLastBlockValues(current);
    setCommentBlock(current.Comment());
    setCommentOverAll(m_session.dataSet().Comment());
}

void CMappingOperationViewModel::resetViews(bool withVectors)
{
    m_datasetViewModel.Chart2DData()->ClearData();
    m_datasetViewModel.TableData()->Clear();
    setCommentBlock(QString());
    setCommentOverAll(QString());
    if (!withVectors)
        return;
    emit clear3DPlots();
    m_vectorHistory.clear();
}

void CMappingOperationViewModel::updatePositionAndOrientation(const CMeasureBlockMapping& block)
{
    m_position = block.Position;
    emit PositionChanged(&m_position);
    m_orientation = block.Orientation;
    emit OrientationChanged(&m_orientation);
}

void CMappingOperationViewModel::updateLastBlockValues(const CMeasureBlockMapping& block)
{
    if (block.Results.isEmpty())
        return;
    const CFieldIntensityResult& sample = *block.Results.last();
    FieldRotation::Vector field{sample.Bx(), sample.By(), sample.Bz()};
    // The chart turns the samples in place, but only after this.
    if (!block.RotAppliedOnMeasBlock())
        field = FieldRotation::rotated(block.Orientation, field);
    setLastBlockValues({static_cast<double>(sample.B()), static_cast<double>(sample.dBConverted()),
                        static_cast<double>(sample.BBprime()), static_cast<double>(field[0]),
                        static_cast<double>(field[1]), static_cast<double>(field[2])});
}

void CMappingOperationViewModel::setLastBlockValues(const std::array<double, 6>& values)
{
    storeAndEmitOnChange(this, m_bLastBlock, values[0], &Page::BLastBlockChanged);
    storeAndEmitOnChange(this, m_dBLastBlock, values[1], &Page::dBLastBlockChanged);
    storeAndEmitOnChange(this, m_bPrimeLastBlock, values[2], &Page::BPrimeLastBlockChanged);
    storeAndEmitOnChange(this, m_bxLastBlock, values[3], &Page::BxLastBlockChanged);
    storeAndEmitOnChange(this, m_byLastBlock, values[4], &Page::ByLastBlockChanged);
    storeAndEmitOnChange(this, m_bzLastBlock, values[5], &Page::BzLastBlockChanged);
}

void CMappingOperationViewModel::checkOutOfLimit(const CMeasureBlock& block)
{
    const CAlarm::AlarmState lastState = m_alarm.LastState();
    const CAxis::AxisType lastAxis = m_alarm.LastAxis();
    const CAlarmParametersMapping& parameters = m_session.alarmParameters();
    m_alarm.Check(block,
                  {parameters.State(), parameters.Axis(), parameters.Minimum(), parameters.Maximum(),
                   m_alarmParametersViewModel.DisplayAlarmUnits()},
                  {DisplayUnits(), DisplayUncertaintyUnits()},
                  [this](bool isViolated) { m_alarmParametersViewModel.SetFlagNotification(isViolated); });
    if (m_alarm.LastState() != lastState)
        emit LastAlarmStateChanged(m_alarm.LastState());
    if (m_alarm.LastAxis() != lastAxis)
        emit LastAlarmAxisChanged(m_alarm.LastAxis());
}

void CMappingOperationViewModel::appendVector(const CMeasureBlockMapping& block)
{
    setPositionOnView(block.Position.X(), block.Position.Y(), block.Position.Z());
    if (block.Results.isEmpty())
        return;
    const VectorRecord vector = makeVectorRecord(*block.Results.last(), block.Position);
    storeAndEmitOnChange(this, m_vector.scale, vector.scale, &Page::ScaleChanged);
    const double magnitude = std::abs(vector.scale);
    if (magnitude > std::abs(m_maxScale) && magnitude > kSmallestMaxScale)
        setMaxScale(magnitude);
    putOnView(vector);
    m_vectorHistory.push_back(vector);
    while (static_cast<qint64>(m_vectorHistory.size()) > m_maxVectorCount)
        m_vectorHistory.pop_front();
    emit newVectorToPlot();
}

void CMappingOperationViewModel::setPositionOnView(double x, double y, double z)
{
    storeAndEmitOnChange(this, m_vector.posX, x, &Page::PosXChanged);
    storeAndEmitOnChange(this, m_vector.posY, y, &Page::PosYChanged);
    storeAndEmitOnChange(this, m_vector.posZ, z, &Page::PosZChanged);
}

void CMappingOperationViewModel::putOnView(const VectorRecord& vector)
{
    storeAndEmitOnChange(this, m_vector.scale, vector.scale, &Page::ScaleChanged);
    setPositionOnView(vector.posX, vector.posY, vector.posZ);
    storeAndEmitOnChange(this, m_vector.quatX, vector.quatX, &Page::QuatXChanged);
    storeAndEmitOnChange(this, m_vector.quatY, vector.quatY, &Page::QuatYChanged);
    storeAndEmitOnChange(this, m_vector.quatZ, vector.quatZ, &Page::QuatZChanged);
    storeAndEmitOnChange(this, m_vector.quatScalar, vector.quatScalar, &Page::QuatScalarChanged);
}

void CMappingOperationViewModel::getComputeVector3D(int blockIndex)
{
    if (blockIndex >= 0 && static_cast<std::size_t>(blockIndex) < m_vectorHistory.size())
        putOnView(m_vectorHistory[static_cast<std::size_t>(blockIndex)]);
}

int CMappingOperationViewModel::numBlocks() const
{
    return static_cast<int>(m_session.dataSet().MeasureBlocks()->size());
}

std::size_t CMappingOperationViewModel::replayedBlock() const
{
    return static_cast<std::size_t>(
        std::clamp(m_session.recordingManager().ReplayIndex(), 0, numBlocks() - 1));
}

int CMappingOperationViewModel::vectorCapacity() const
{
    const int blockSize = m_session.dataSet().MeasurementParameters()->BlockSize();
    if (blockSize <= 0)
        return 0;
    constexpr quint64 kMost = std::numeric_limits<int>::max();
    const quint64 blocks = m_operation->GetMaxMeasurementCount() / static_cast<quint64>(blockSize);
    return static_cast<int>(std::clamp<quint64>(blocks, 1, kMost));
}

void CMappingOperationViewModel::OnOperationParameterUnitChanged()
{
    m_session.dataSet().Clear();
}

void CMappingOperationViewModel::OnMeasureParametersUnitChanged(CUnits::UnitType units)
{
    followUnits(units);
    OnAlarmAxisUnitChanged();
}

void CMappingOperationViewModel::OnMeasureParametersUncertaintyUnitChanged(CUnits::UnitType units)
{
    SetDisplayUncertaintyUnits(units);
    OnAlarmAxisUnitChanged();
}

void CMappingOperationViewModel::OnAlarmAxisUnitChanged()
{
    const bool isOfUncertainty = m_session.alarmParameters().Axis() == CAxis::dB;
    m_alarmParametersViewModel.SetDisplayAlarmUnits(isOfUncertainty ? DisplayUncertaintyUnits()
                                                                    : DisplayUnits());
}

void CMappingOperationViewModel::OnDataSetCleared()
{
    setLastBlockValues({});
    updatePositionAndOrientation(CMeasureBlockMapping());
    OnMappingParmsSourceChanged();
    m_session.dataSet().SetMeasurementParameters(&m_session.liveParameters());
    followUnitsOf(m_session.liveParameters());
    OnAlarmAxisUnitChanged();
    setMaxVectorCount(vectorCapacity());
    resetViews(true);
    setMaxScale(kSmallestMaxScale);
}

void CMappingOperationViewModel::OnPlayingBackChanged(bool isPlayingBack)
{
    if (!isPlayingBack)
        return;
    resetViews(true);
    setCommentOverAll(m_session.dataSet().Comment());
    setMaxVectorCount(numBlocks());
}

void CMappingOperationViewModel::OnMappingParmsSourceChanged()
{
    const CMapperPositionSource* source = m_session.mappingParameters().MapperSource();
    if (!source)
        return;
    if (source->Type() == CMapperPositionSource::Cartesian)
        setAxes(MappingAxes::ofGrid(*m_session.mappingParameters().MapperSourceCartesian()));
    else if (m_session.mappingParameters().MapperSourceFile()->MappingFile()->FileLoaded())
        OnMappingFileLoaded();
}

void CMappingOperationViewModel::OnMappingFileLoaded()
{
    MappingXmlFile& file = *m_session.mappingParameters().MapperSourceFile()->MappingFile();
    if (file.FileError())
        file.SetFileName(QString());
    else
        setAxes(MappingAxes::ofFile(file));
}

void CMappingOperationViewModel::setAxes(const MappingAxes& axes)
{
    OnMapperSourceCartesianXStartChanged(axes.xStart);
    OnMapperSourceCartesianXStopChanged(axes.xStop);
    OnMapperSourceCartesianYStartChanged(axes.yStart);
    OnMapperSourceCartesianYStopChanged(axes.yStop);
    OnMapperSourceCartesianZStartChanged(axes.zStart);
    OnMapperSourceCartesianZStopChanged(axes.zStop);
}

void CMappingOperationViewModel::OnMapperSourceCartesianXStartChanged(double value)
{
    storeAndEmitOnChange(this, m_axes.xStart, value, &Page::XStartChanged);
}

void CMappingOperationViewModel::OnMapperSourceCartesianXStopChanged(double value)
{
    storeAndEmitOnChange(this, m_axes.xStop, value, &Page::XStopChanged);
}

void CMappingOperationViewModel::OnMapperSourceCartesianYStartChanged(double value)
{
    storeAndEmitOnChange(this, m_axes.yStart, value, &Page::YStartChanged);
}

void CMappingOperationViewModel::OnMapperSourceCartesianYStopChanged(double value)
{
    storeAndEmitOnChange(this, m_axes.yStop, value, &Page::YStopChanged);
}

void CMappingOperationViewModel::OnMapperSourceCartesianZStartChanged(double value)
{
    storeAndEmitOnChange(this, m_axes.zStart, value, &Page::ZStartChanged);
}

void CMappingOperationViewModel::OnMapperSourceCartesianZStopChanged(double value)
{
    storeAndEmitOnChange(this, m_axes.zStop, value, &Page::ZStopChanged);
}

void CMappingOperationViewModel::openReplayRange()
{
    m_replayParametersViewModel.SetNumBlocks(m_session.recordingManager().NumBlocks());
    m_replayParametersViewModel.SetStartingBlock(1);
    m_replayParametersViewModel.SetEndingBlock(m_replayParametersViewModel.NumBlocks());
    m_replayParametersViewModel.SetCurrentBlock(m_replayParametersViewModel.NumBlocks());
    m_session.recordingManager().SetReplayIndex(std::max(m_replayParametersViewModel.NumBlocks() - 1, 0));
}

void CMappingOperationViewModel::OnDatasetLoaded()
{
    openReplayRange();
    // A record holds components that were turned before they were stored.
    for (const BlockPointer& block : *m_session.dataSet().MeasureBlocks())
        block->SetRotAppliedOnMeasBlock(true);
    if (m_session.dataSet().MeasureBlocks()->empty())
        return;
    m_rebuildingVectors = true;
    rebuildViews(Extent::WholeDataset);
    m_rebuildingVectors = false;
}

void CMappingOperationViewModel::SetSliderValueGraph3D(double value)
{
    storeAndEmitOnChange(this, m_sliderValueGraph3D, value, &Page::SliderValueGraph3DChanged);
}

void CMappingOperationViewModel::setMaxScale(double value)
{
    storeAndEmitOnChange(this, m_maxScale, value, &Page::MaxScaleChanged);
}

void CMappingOperationViewModel::setMaxVectorCount(int value)
{
    storeAndEmitOnChange(this, m_maxVectorCount, value, &Page::MaxVectorCountChanged);
}

void CMappingOperationViewModel::setCommentOverAll(const QString& comment)
{
    storeAndEmitOnChange(this, m_commentOverAll, comment, &Page::CommentOverAllChanged);
}

void CMappingOperationViewModel::setCommentBlock(const QString& comment)
{
    storeAndEmitOnChange(this, m_commentBlock, comment, &Page::CommentBlockChanged);
}

void CMappingOperationViewModel::setCanAcceptNewMeasure(bool value)
{
    storeAndEmitOnChange(this, m_canAcceptNewMeasure, value, &Page::CanAcceptNewMeasureChanged);
}
