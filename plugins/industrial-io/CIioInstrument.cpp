// SPDX-License-Identifier: MIT
#include "CIioInstrument.h"

#include "SteadyTime.h"

#include <QLoggingCategory>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kWatchMs = 100;
// A buffer may stay empty before polling is tried; a slow device takes its time until its rate is known.
constexpr int kStartTimeouts = 2;
constexpr int kLearnMs = 3000;
// What a call of the library may take beyond its time-out before it counts as hanging.
constexpr int kHangMs = 1000;
// How long a reader may take to end before it is left behind.
constexpr int kCloseMs = 1000;
constexpr double kSilentS = 2;
constexpr double kSilentReadings = 10;

constexpr int kMaxAveraging = 1000;
constexpr int kMaxBlockSize = 65535;
constexpr double kMinDisplayRate = 1e-4;
constexpr double kDefaultDisplayRate = 10;
// Parameter files keep six digits: such a rate comes back as the same number.
constexpr int kFileDigits = 6;

double rounded(double value)
{
    return QString::number(value, 'g', kFileDigits).toDouble();
}

void setBound(CBoundedParm* bound, double min, double max, double defaultValue)
{
    bound->SetMin(min);
    bound->SetMax(max);
    bound->SetDefault(defaultValue);
}

} // namespace

CIioInstrument::CIioInstrument(const IioDevice& device) : m_device(device)
{
    SetName(tr("Magnetometer"));
    SetSerialNumber(device.identity);
    SetInterface(device.IsNetwork() ? CInstrumentInterface::Ethernet : CInstrumentInterface::USB);
    SetRessourceName(device.Location());
    m_watch.setInterval(kWatchMs);
    connect(&m_watch, &QTimer::timeout, this, &CIioInstrument::onWatch);
}

CIioInstrument::~CIioInstrument()
{
    StopMeasurement();
    closeReader(kCloseMs);
}

bool CIioInstrument::Connect()
{
    if (IsConnected())
        return true;
    m_settings = IioSettings::Load();
    if (!openReader()) {
        closeReader(kCloseMs);
        return false;
    }
    SetIsConnected(true);
    SetStatusString(tr("Ready"));
    m_watch.start();
    ApplyParameters();
    return true;
}

bool CIioInstrument::openReader()
{
    IioCapture capture;
    capture.device = m_device;
    capture.timeoutMs = m_settings.TimeoutMs();
    capture.mayBuffer = m_settings.mayBuffer;
    capture.trigger = m_settings.trigger;
    m_queue = std::make_shared<CSampleQueue>();
    m_reader = std::make_shared<CIioReader>(capture, m_queue);
    m_thread = std::make_unique<CDetachableThread>([reader = m_reader] { reader->Run(); });

    m_state = m_reader->WaitFor(IioState::Phase::Starting, capture.timeoutMs + kHangMs);
    if (m_state.phase == IioState::Phase::Starting) {
        log(m_state);
        m_state = m_reader->WaitFor(IioState::Phase::Ready, kStartTimeouts * capture.timeoutMs + kLearnMs);
    }
    log(m_state);
    switch (m_state.phase) {
    case IioState::Phase::Failed:
        return fail(m_state.problem);
    case IioState::Phase::Opening:
        return fail(tr("The context %1 does not answer").arg(m_device.uri));
    case IioState::Phase::Starting:
        return fail(tr("The magnetometer %1 gives no readings").arg(m_device.Location()));
    case IioState::Phase::Ready:
        break;
    }
    m_source = std::make_shared<CReadingBlockSource>(m_queue, CUnits::GAUSS, m_settings.uncertainty);
    m_isSilent = false;
    m_averaging = 1;
    m_askedRate = m_state.rate;
    fillCapabilities();
    return true;
}

bool CIioInstrument::fail(const QString& message)
{
    qWarning().noquote() << message;
    SetStatusString(message);
    SetLastMessage(message);
    return false;
}

void CIioInstrument::log(const IioState& state) const
{
    for (const QString& notice : state.notices)
        qWarning().noquote() << notice;
}

void CIioInstrument::closeReader(int timeoutMs)
{
    m_watch.stop();
    if (!m_reader)
        return;
    m_reader->RequestStop();
    if (!m_thread->Finish(timeoutMs))
        qWarning().noquote() << tr("A call to %1 hangs, and is left behind").arg(m_device.Location());
    m_thread.reset();
    m_reader.reset();
}

void CIioInstrument::Disconnect()
{
    StopMeasurement();
    closeReader(kCloseMs);
    m_source.reset();
    SetIsConnected(false);
    SetStatusString(tr("Disconnected"));
}

void CIioInstrument::Lose(const QString& message)
{
    Disconnect();
    fail(message);
    emit Vanished();
}

void CIioInstrument::fillCapabilities()
{
    SetManufacturer(m_settings.manufacturer.isEmpty() ? tr("Unknown") : m_settings.manufacturer);
    SetModel(m_device.name);
    SetElectronicsVersion(m_state.isBuffered ? tr("Buffered") : tr("Polled"));
    SetFirmwareVersion(m_device.kernel.isEmpty() ? QString() : QStringLiteral("Linux ") + m_device.kernel);
    if (m_settings.calibrationDate.isValid())
        SetCalibrationDate(m_settings.calibrationDate.startOfDay());
    SetUnitList({CUnits::MICRO_TESLA, CUnits::MILLI_TESLA, CUnits::TESLA, CUnits::NANO_TESLA, CUnits::GAUSS,
                 CUnits::KILO_GAUSS, CUnits::MILLI_GAUSS, CUnits::MEGA_HERTZ_PROTON, CUnits::AMPERE_PER_METER,
                 CUnits::KILO_AMPERE_PER_METER, CUnits::MILLI_AMPERE_PER_METER});
    QList<tFlux> ranges;
    if (m_settings.range > 0) {
        tFlux range = 0;
        ConvertUnits(CUnits::GAUSS, CUnits::TESLA, range, static_cast<tFlux>(m_settings.range));
        ranges.append(range);
    }
    SetRangeList(ranges);
    SetTriggerList({CTrigger::CONTINUOUS, CTrigger::IMMEDIATE, CTrigger::TIMER, CTrigger::EXTERNAL});
    fillBounds();
    qInfo().noquote() << tr("%1 is read %2 at %3 Hz, timed by %4")
                             .arg(m_device.Location(),
                                  m_state.isBuffered ? tr("through its buffer") : tr("by polling"))
                             .arg(m_state.rate)
                             .arg(m_state.usesDeviceTime ? tr("its scans") : tr("this computer"));

    emit OnUnitListUpdated();
    emit OnHasAdcUpdated();
    emit OnRangeListUpdated();
    emit OnTriggerListUpdated();
}

void CIioInstrument::fillBounds()
{
    const double min = rounded(m_state.rates.Min() / m_averaging);
    const double max = rounded(m_state.rates.Max() / m_averaging);
    const double rate = std::clamp(rounded(m_state.rate / m_averaging), min, max);
    const double minDisplayRate = std::min(kMinDisplayRate, min);
    const double displayRate = std::min(rate, kDefaultDisplayRate);
    setBound(AveragingBound(), 1, kMaxAveraging, 1);
    setBound(BlockSizeBound(), 1, kMaxBlockSize, 1);
    setBound(AcquisitionRateBound(), min, max, rate);
    setBound(KestrixAcquisitionRateBound(), min, max, rate);
    setBound(DisplayRateBound(), minDisplayRate, max, displayRate);
    setBound(KestrixDisplayRateBound(), minDisplayRate, max, displayRate);
    setBound(FrequencyMinBound(), 0, max / 2, 0);
    setBound(FrequencyMaxBound(), min / 2, max / 2, rate / 2);
}

AcquisitionPacing CIioInstrument::Pacing() const
{
    // The device sets the pace: the source waits for it.
    AcquisitionPacing pacing;
    pacing.speed = 0;
    return pacing;
}

double CIioInstrument::readingRate(double sampleRate, int averaging) const
{
    return m_state.rates.IsEmpty() ? m_state.rate : m_state.rates.Pick(sampleRate * averaging);
}

double CIioInstrument::sampleRate(double wanted, int averaging) const
{
    return rounded(readingRate(wanted, averaging) / averaging);
}

double CIioInstrument::ImmediateRate(const AcquisitionParameters& parameters) const
{
    return sampleRate(parameters.acquisitionRate, parameters.averaging);
}

void CIioInstrument::PrepareRun()
{
    m_source->BeginRun();
}

void CIioInstrument::ParametersApplied(CMeasurementParameters& parameters)
{
    if (Applied().averaging != m_averaging) {
        m_averaging = Applied().averaging;
        fillBounds();
    }
    const double rate = readingRate(parameters.AcquisitionRate(), m_averaging);
    if (rate != m_askedRate) {
        m_askedRate = rate;
        m_reader->SetRate(rate);
    }
    // Queued, since the parameters may still be inside the cascade that raised the commit flag.
    const double own = sampleRate(parameters.AcquisitionRate(), m_averaging);
    if (parameters.AcquisitionRate() != own || parameters.DisplayRate() > own)
        QMetaObject::invokeMethod(this, &CIioInstrument::enforceRate, Qt::QueuedConnection);
}

void CIioInstrument::enforceRate()
{
    CMeasurementParameters* parameters = MeasurementParameters();
    if (!parameters || !parameters->ApplyConfiguration() || !IsConnected())
        return;
    const double rate = sampleRate(parameters->AcquisitionRate(), m_averaging);
    parameters->SetApplyConfiguration(false);
    parameters->SetAcquisitionRate(rate);
    if (parameters->DisplayRate() > rate)
        parameters->SetDisplayRate(rate);
    parameters->SetApplyConfiguration(true);
}

void CIioInstrument::onWatch()
{
    const int changes = m_state.changes;
    m_state = m_reader->State();
    log(m_state);
    if (m_state.phase == IioState::Phase::Failed) {
        Lose(m_state.problem);
        return;
    }
    const double period = m_state.rate > 0 ? 1 / m_state.rate : 0;
    const double callS = static_cast<double>(steadyNs() - m_state.callNs) * kSecondsPerNs;
    const double patienceS =
        std::fmax(m_settings.timeoutS, kSilentReadings * period) + kHangMs / kMsPerSecond;
    if (callS > patienceS) {
        Lose(tr("The magnetometer %1 does not answer").arg(m_device.Location()));
        return;
    }
    if (m_state.changes != changes) {
        // Without its buffer, or its own rate, the device may have others.
        m_askedRate = m_state.rate;
        fillBounds();
        ApplyParameters();
    }
    const double silenceS = static_cast<double>(steadyNs() - m_state.readingNs) * kSecondsPerNs;
    setSilent(silenceS > std::fmax(kSilentS, kSilentReadings * period));
}

void CIioInstrument::setSilent(bool isSilent)
{
    if (isSilent == m_isSilent)
        return;
    m_isSilent = isSilent;
    if (isSilent)
        fail(tr("The magnetometer %1 has stopped giving readings").arg(m_device.Location()));
    else
        SetStatusString(IsRunning() ? tr("Measuring") : tr("Ready"));
}

void CIioInstrument::CalibrateZeroOffset(bool /*forceCalibration*/)
{
    SetStatusString(tr("A magnetometer of the kernel cannot be calibrated"));
}

void CIioInstrument::RestoreZeroOffsetToFactory()
{
    CalibrateZeroOffset();
}
