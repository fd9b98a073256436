// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeasurementOperationViewModel.h"

#include "CInstrument.h"
#include "CMeasurementParameters.h"
#include "CMeasurementParametersViewModel.h"
#include "COperationMeasure.h"
#include "COperationParameters.h"
#include "CRecordingManagerMeasure.h"
#include "CSettings.h"
#include "CUtils.h"
#include "PresentTime.h"
#include "Property.h"

#include <QDebug>
#include <QSharedPointer>

#include <algorithm>

CMeasurementOperationViewModel::CMeasurementOperationViewModel(const QString& name,
                                                               COperationMeasure* operation,
                                                               CSettings* settings, QObject* parent)
    : COperationViewModel(name, parent), m_operation(operation), m_settings(settings),
      m_replayParametersViewModel(operation)
{
    connect(liveParameters(), &CMeasurementParameters::UnitsChanged, this,
            &CMeasurementOperationViewModel::OnMeasureParametersUnitChanged);
    connect(liveParameters(), &CMeasurementParameters::UncertaintyUnitsChanged, this,
            &CMeasurementOperationViewModel::OnMeasureParametersUncertaintyUnitChanged);
    connect(dataSet(), &CDataset::MeasurementParametersUpdated, this,
            &CMeasurementOperationViewModel::OnMeasureParametersUnitChanged);

    if (!recordingManager()->IsDataLoaded())
        pointDataSetAtLiveParameters();
    followUnitsOf(*dataSet()->MeasurementParameters());
}

CRecordingManagerMeasure* CMeasurementOperationViewModel::recordingManager() const
{
    return m_operation->RecordingManager();
}

CDataSetMeasurement* CMeasurementOperationViewModel::dataSet() const
{
    return recordingManager()->DataSet();
}

CMeasurementParameters* CMeasurementOperationViewModel::liveParameters() const
{
    return m_operation->OperationParameters()->MeasurementParameters();
}

void CMeasurementOperationViewModel::pointDataSetAtLiveParameters()
{
    dataSet()->SetMeasurementParameters(liveParameters());
}

void CMeasurementOperationViewModel::takeDisplayUnitsOfLiveParameters()
{
    SetDisplayUnits(liveParameters()->Units());
    SetDisplayUncertaintyUnits(liveParameters()->UncertaintyUnits());
}

void CMeasurementOperationViewModel::disconnectFromOperation()
{
    for (QObject* sender : std::initializer_list<QObject*>{operation(), operation()->LimitsFile(),
                                                           liveParameters(), dataSet(), recordingManager()})
        disconnect(sender, nullptr, this, nullptr);
}

void CMeasurementOperationViewModel::SetCommentOverAll(const QString& comment)
{
    storeAndEmitOnChange(this, m_commentOverAll, comment,
                         &CMeasurementOperationViewModel::CommentOverAllChanged);
}

void CMeasurementOperationViewModel::OnMeasureParametersUnitChanged(CUnits::UnitType units)
{
    followUnits(units);
}

void CMeasurementOperationViewModel::OnMeasureParametersUncertaintyUnitChanged(CUnits::UnitType units)
{
    const bool isLoaded = recordingManager()->IsDataLoaded();
    SetDisplayUncertaintyUnits(isLoaded ? dataSet()->MeasurementParameters()->UncertaintyUnits() : units);
}

void CMeasurementOperationViewModel::resume()
{
    const CommandScope command(*this);
    if (recordingManager()->IsPlayingBack()) {
        recordingManager()->StartReplay();
        return;
    }
    if (!recordingManager()->IsIdleWithData()) {
        beginSession();
        return;
    }
    if (!askToQuitOperation())
        return;
    m_operation->Reset();
    beginSession();
    takeDisplayUnitsOfLiveParameters();
}

void CMeasurementOperationViewModel::beginSession()
{
    m_operation->StartSession();
    recordingManager()->SetIsHolding(false);
    recordingManager()->SetIsIdle(false);
}

void CMeasurementOperationViewModel::hold()
{
    const CommandScope command(*this);
    recordingManager()->SetIsHolding(true);
    if (recordingManager()->IsPlayingBack())
        recordingManager()->PauseReplay();
    else
        m_operation->StopSession();
}

void CMeasurementOperationViewModel::record()
{
    recordingManager()->ResetRecord();
    pointDataSetAtLiveParameters();
    if (const QSharedPointer<CInstrument> instrument = m_operation->ActiveInstrument()) {
        dataSet()->SetInstrumentName(instrument->Model() + QLatin1Char(' ') + instrument->SerialNumber());
        dataSet()->SetDate(presentTime(QStringLiteral("yyyy.MM.dd HH:mm:ss")));
    }
}

void CMeasurementOperationViewModel::stop()
{
    const CommandScope command(*this);
    if (recordingManager()->IsPlayingBack())
        recordingManager()->StopReplay();
    if (recordingManager()->IsRecording())
        endRecord();
}

void CMeasurementOperationViewModel::endRecord()
{
    recordingManager()->SetIsHolding(true);
    if (recordingManager()->IsPlayingBack())
        recordingManager()->PauseReplay();
    else
        m_operation->StopSession();
    recordingManager()->StopRecord();
    SetCommentOverAll(dataSet()->Comment());
}

void CMeasurementOperationViewModel::end()
{
    const CommandScope command(*this);
    if (!askToQuitOperation())
        return;
    m_operation->StopSession();
    m_operation->Reset();
    pointDataSetAtLiveParameters();
    takeDisplayUnitsOfLiveParameters();
}

void CMeasurementOperationViewModel::start()
{
    recordingManager()->StartReplay();
}

void CMeasurementOperationViewModel::step()
{
    recordingManager()->StartReplay();
}

void CMeasurementOperationViewModel::playback()
{
    recordingManager()->PlayNextStep();
}

void CMeasurementOperationViewModel::load()
{
    const CommandScope command(*this);
    if (recordingManager()->HasUnsavedData() && !askToQuitOperation())
        return;
    if (m_operation->SessionInProgress()) {
        m_operation->StopSession();
        m_operation->Reset();
    }
    stop();

    const QString path = askFileToOpen(tr("Open File"), *m_settings);
    if (path.isEmpty())
        return;
    if (recordingManager()->Load(path))
        followLoad();
    else
        followFailedLoad();
}

void CMeasurementOperationViewModel::followLoad()
{
    if (recordingManager()->IsDataLoaded()) {
        const CMeasurementParameters* parameters = dataSet()->MeasurementParameters();
        replaceDisplayUncertaintyUnits(parameters->UncertaintyUnits());
        OnMeasureParametersUnitChanged(parameters->Units());
    }
    emit DatasetLoaded();
}

void CMeasurementOperationViewModel::followFailedLoad()
{
    m_operation->Reset();
    pointDataSetAtLiveParameters();
    // The units of the record were on the page already when the read failed.
    takeDisplayUnitsOfLiveParameters();
    qWarning().noquote() << "Error while loading file:"
                         << recordingManager()->XMLResultsSerializer()->ErrorMessage();
    CUtils::ShowError(tr("Could not load file"), tr("The file is not a valid Norvane XML measurement file"));
}

void CMeasurementOperationViewModel::applyDefaults(
    CMeasurementParametersViewModel& box, quint16 averaging,
    const std::function<void(CMeasurementParameters&)>& setRates)
{
    if (!m_operation->ActiveInstrument())
        return;
    // The order counts: each assignment adapts the other rates.
    CMeasurementParameters& parameters = *liveParameters();
    parameters.SetApplyConfiguration(false);
    parameters.SetTriggerMode(CTrigger::CONTINUOUS);
    parameters.SetAveraging(averaging);
    setRates(parameters);
    parameters.SetApplyConfiguration(true);

    box.SetSelectedUnitIndex(0);
    box.SetSelectedUncertaintyUnitIndex(0);
    box.SetSelectedRangeIndex(0);
    box.SetSelectedTriggerIndex(0);
}

bool CMeasurementOperationViewModel::showsStoredBlocks() const
{
    const CRecordingManager& manager = *recordingManager();
    return manager.IsPlayingBack() || manager.IsDataLoaded() ||
           (manager.IsIdleWithData() && !manager.IsRecording());
}

CMeasurementOperationViewModel::BlockPointer CMeasurementOperationViewModel::blockOnScreen() const
{
    const auto& blocks = *dataSet()->MeasureBlocks();
    if (blocks.empty())
        return {};
    const int index = recordingManager()->ReplayIndex();
    if (!showsStoredBlocks() || index < 0)
        return blocks.back();
    return blocks[std::min(static_cast<std::size_t>(index), blocks.size() - 1)];
}

void CMeasurementOperationViewModel::presentDataset(const std::function<void(const BlockPointer&)>& present)
{
    openReplayRange();
    const auto& blocks = *dataSet()->MeasureBlocks();
    if (!blocks.empty())
        present(BlockPointer(blocks.back()));
    SetCommentOverAll(dataSet()->Comment());
}

void CMeasurementOperationViewModel::fillPlot(
    const std::function<void(int index, bool wholeDataset)>& loadUpTo, const std::function<void()>& loadAll)
{
    CRecordingManager& manager = *recordingManager();
    if (manager.IsPlayingBack()) {
        const bool isInFlow = !manager.ReplayStepByStep() && !manager.IsHolding();
        if (isInFlow)
            manager.PauseReplay();
        loadUpTo(manager.ReplayIndex(), false);
        if (isInFlow)
            manager.StartReplay();
    } else if (showsStoredBlocks()) {
        loadUpTo(manager.ReplayIndex(), true);
    } else {
        loadAll();
    }
}

void CMeasurementOperationViewModel::openReplayRange()
{
    const auto numBlocks = static_cast<int>(dataSet()->MeasureBlocks()->size());
    m_replayParametersViewModel.SetNumBlocks(numBlocks);
    m_replayParametersViewModel.SetStartingBlock(1);
    m_replayParametersViewModel.SetEndingBlock(numBlocks);
    m_replayParametersViewModel.SetCurrentBlock(m_replayParametersViewModel.EndingBlock());
    recordingManager()->SetReplayIndex(numBlocks >= 1 ? numBlocks - 1 : 0);
}

void CMeasurementOperationViewModel::save()
{
    const CommandScope command(*this);
    const QString name =
        recordFileName(m_operation->ActiveInstrument().data(), QStringLiteral("measurement"));
    recordingManager()->Save(askFileToSave(tr("Save File"), name, *m_settings));
}

void CMeasurementOperationViewModel::saveParameters()
{
    const CommandScope command(*this);
    const QString name = QStringLiteral("MeasurementParameters-") +
                         presentTime(QStringLiteral("yyyy.MM.dd-HH.mm.ss")) + QStringLiteral(".xml");
    m_operation->SaveParameters(askFileToSave(tr("Save parameters to file"), name, *m_settings));
}

void CMeasurementOperationViewModel::loadParameters()
{
    const CommandScope command(*this);
    const QString path = askFileToOpen(tr("Open parameters to file"), *m_settings);
    if (!path.isEmpty())
        m_operation->LoadParameters(path);
}

void CMeasurementOperationViewModel::zeroOffset(bool forceCalibration)
{
    const CommandScope command(*this);
    if (const QSharedPointer<CInstrument> instrument = m_operation->ActiveInstrument())
        instrument->CalibrateZeroOffset(forceCalibration);
}

void CMeasurementOperationViewModel::zeroOffset()
{
    zeroOffset(false);
}

void CMeasurementOperationViewModel::restoreZeroOffsetToFactory()
{
    const CommandScope command(*this);
    if (const QSharedPointer<CInstrument> instrument = m_operation->ActiveInstrument())
        instrument->RestoreZeroOffsetToFactory();
}
