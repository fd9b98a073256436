// SPDX-License-Identifier: MIT
#include "CExampleInstrument.h"

#include <algorithm>

namespace {

constexpr double kMaxRate = 1000; // Hz

void setBound(CBoundedParm* bound, double min, double max, double value)
{
    bound->SetMin(min);
    bound->SetMax(max);
    bound->SetDefault(value);
}

} // namespace

CExampleInstrument::CExampleInstrument()
{
    // What the list shows before anybody connects.
    SetName(QStringLiteral("Example instrument"));
    SetSerialNumber(QStringLiteral("EXAMPLE-1"));
    SetRessourceName(QStringLiteral("example"));
    SetInterface(CInstrumentInterface::USB);
    // Each operation has parameters of its own: the pointer changes with the page.
    connect(this, &CInstrument::MeasurementParametersChanged, this, &CExampleInstrument::watchParameters);
}

bool CExampleInstrument::Connect()
{
    // Open the device here. Return false, or throw what derives from std::exception, if that fails.
    SetManufacturer(QStringLiteral("Example"));
    SetModel(QStringLiteral("Constant field"));
    SetFirmwareVersion(QStringLiteral("1.0"));
    SetUnitList({CUnits::MICRO_TESLA, CUnits::NANO_TESLA, CUnits::GAUSS});
    SetRangeList({0.0001F}); // tesla
    SetTriggerList({CTrigger::CONTINUOUS, CTrigger::IMMEDIATE, CTrigger::TIMER, CTrigger::EXTERNAL});
    // The meter page begins with 10, a mapping with 100: where a bound leaves these out, nobody can measure
    // before he has changed them. A field that never changes is its own average.
    setBound(AveragingBound(), 1, 1000, 10);
    setBound(BlockSizeBound(), 1, kMaxRate, 10);
    // The bounds of the device, and those that the fields of the application keep to.
    for (CBoundedParm* bound : {AcquisitionRateBound(), KestrixAcquisitionRateBound()})
        setBound(bound, 1, kMaxRate, 100);
    for (CBoundedParm* bound : {DisplayRateBound(), KestrixDisplayRateBound()})
        setBound(bound, 1, 50, 10);
    setBound(FrequencyMinBound(), 0, kMaxRate / 2, 0);
    setBound(FrequencyMaxBound(), 0.5, kMaxRate / 2, 50);
    SetStatusString(QStringLiteral("Ready"));
    SetIsConnected(true);
    takeOverParameters();
    return true;
}

void CExampleInstrument::Disconnect()
{
    StopMeasurement();
    // Close the device here.
    SetIsConnected(false);
}

void CExampleInstrument::watchParameters()
{
    if (m_watched)
        disconnect(m_watched, nullptr, this, nullptr);
    CMeasurementParameters* parameters = MeasurementParameters();
    m_watched = parameters;
    if (!parameters)
        return;
    // The rates change together, while ApplyConfiguration is false; the others while it stays true.
    const auto watch = [this, parameters](auto signal) {
        connect(parameters, signal, this, &CExampleInstrument::takeOverParameters);
    };
    watch(&CMeasurementParameters::ApplyConfigurationChanged);
    watch(&CMeasurementParameters::AcquisitionRateChanged);
    watch(&CMeasurementParameters::BlockSizeChanged);
    watch(&CMeasurementParameters::DisplayRateChanged);
    watch(&CMeasurementParameters::UnitsChanged);
    watch(&CMeasurementParameters::TriggerModeChanged);
    watch(&CMeasurementParameters::TriggerPluginChanged);
    takeOverParameters();
}

void CExampleInstrument::takeOverParameters()
{
    // A rate that is written back changes parameters in its turn.
    if (!m_watched || !m_watched->ApplyConfiguration() || !IsConnected() || m_isTakingOver)
        return;
    m_isTakingOver = true;
    m_watched->SetImmediateAcquisitionRate(kMaxRate);
    m_isTakingOver = false;

    Acquisition acquisition;
    acquisition.triggerMode = m_watched->TriggerMode();
    acquisition.units = m_watched->Units();
    // Parameter files come with any number in them.
    acquisition.blockSize = std::clamp(m_watched->BlockSize(), 1, static_cast<int>(kMaxRate));
    acquisition.displayRate = std::clamp(m_watched->DisplayRate(), 1.0, 50.0);
    acquisition.acquisitionRate = acquisition.triggerMode == CTrigger::IMMEDIATE
                                      ? kMaxRate
                                      : std::clamp(m_watched->AcquisitionRate(), 1.0, kMaxRate);

    // The trigger plug-in and the instrument are connected by the instrument, by nobody else.
    disconnect(m_trigger);
    if (m_watched->TriggerPlugin())
        m_trigger = connect(m_watched->TriggerPlugin(), &CTriggerPlugin::Trigger, this,
                            &CExampleInstrument::SendTrigger);

    if (acquisition == m_acquisition)
        return;
    m_acquisition = acquisition;
    if (IsRunning())
        startReading();
}

void CExampleInstrument::SendTrigger()
{
    if (IsRunning() && m_acquisition.triggerMode == CTrigger::EXTERNAL)
        m_reader.RequestBlock();
}

void CExampleInstrument::StartMeasurement()
{
    if (!IsConnected() || !m_watched)
        return;
    takeOverParameters();
    if (!IsRunning()) {
        startReading();
        SetStatusString(QStringLiteral("Measuring"));
        SetIsRunning(true);
    } else if (m_acquisition.triggerMode == CTrigger::IMMEDIATE) {
        // Each call asks for one block.
        ++m_numRequested;
        m_reader.RequestBlock();
    }
}

void CExampleInstrument::StopMeasurement()
{
    stopReading();
    SetStatusString(IsConnected() ? QStringLiteral("Ready") : QString());
    SetIsRunning(false);
}

void CExampleInstrument::startReading()
{
    stopReading();
    const int reading = m_reading;
    m_reader.Start(m_acquisition, [this, reading](const QSharedPointer<CMeasureBlock>& block) {
        // From the thread of the reader to the main thread.
        QMetaObject::invokeMethod(
            this, [this, reading, block] { onBlock(reading, block); }, Qt::QueuedConnection);
    });
    if (m_acquisition.triggerMode == CTrigger::IMMEDIATE) {
        m_numRequested = 1;
        m_reader.RequestBlock();
    }
}

void CExampleInstrument::stopReading()
{
    m_reader.Stop();
    // Blocks that wait for the main thread are those of an older reading now.
    ++m_reading;
}

void CExampleInstrument::onBlock(int reading, const QSharedPointer<CMeasureBlock>& block)
{
    if (reading != m_reading)
        return;
    // The receiver may stop the instrument, or drop it.
    const QPointer<CExampleInstrument> self(this);
    emit OnNewMeasureBlock(block);
    if (self && reading == m_reading && m_acquisition.triggerMode == CTrigger::IMMEDIATE &&
        --m_numRequested == 0)
        StopMeasurement();
}

void CExampleInstrument::CalibrateZeroOffset(bool forceCalibration)
{
    // May take its time, as Connect() may.
    Q_UNUSED(forceCalibration)
}

void CExampleInstrument::RestoreZeroOffsetToFactory() {}
