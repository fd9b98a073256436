// SPDX-License-Identifier: MIT
#include "CFileReplayInstrument.h"

#include "FileReplaySettings.h"

#include <QFileInfo>
#include <QLoggingCategory>

namespace {

constexpr int kMaxBlocksInFlight = 8;
constexpr int kMaxAveraging = 10000;
constexpr int kMaxBlockSize = 65535;
constexpr double kMinDisplayRate = 1e-4;
// A rate that passed through six digits of text still counts as the recording's own.
constexpr double kRateTolerance = 1e-4;

void setBound(CBoundedParm* bound, double min, double max, double defaultValue)
{
    bound->SetMin(min);
    bound->SetMax(max);
    bound->SetDefault(defaultValue);
}

} // namespace

CFileReplayInstrument::CFileReplayInstrument(const QString& path, const QString& serialNumber,
                                             const RecordingInfo& info)
    : m_path(path), m_info(info)
{
    SetName(tr("Replay"));
    SetSerialNumber(serialNumber);
    SetInterface(CInstrumentInterface::Unknown);
    SetRessourceName(path);
    SetModel(tr("Replay of %1").arg(info.format));
    m_pacing.maxBlocksInFlight = kMaxBlocksInFlight;
}

CFileReplayInstrument::~CFileReplayInstrument() = default;

bool CFileReplayInstrument::Connect()
{
    if (IsConnected())
        return true;
    std::unique_ptr<CRecordingReader> reader = CRecordingReader::Open(m_path);
    if (!reader) {
        qWarning() << "The recording cannot be read:" << m_path;
        SetStatusString(tr("The recording cannot be read"));
        return false;
    }
    const FileReplaySettings settings = FileReplaySettings::Load();
    m_pacing.speed = settings.speed;
    m_info = reader->Info();
    m_source = std::make_shared<CReplayBlockSource>(std::move(reader), settings.loop);
    fillCapabilities();
    SetIsConnected(true);
    SetStatusString(tr("Ready"));
    ApplyParameters();
    return true;
}

void CFileReplayInstrument::Disconnect()
{
    StopMeasurement();
    m_source.reset();
    SetIsConnected(false);
    SetStatusString(tr("Disconnected"));
}

void CFileReplayInstrument::fillCapabilities()
{
    const QFileInfo file(m_path);
    SetManufacturer(QStringLiteral("Kestrix"));
    SetManufacturingDate(file.lastModified());
    SetElectronicsVersion(m_info.format);
    SetProbeVersion(file.fileName());
    SetFirmwareVersion(QStringLiteral("1.0.0"));

    QList<CUnits::UnitType> units{m_info.unit};
    for (const CUnits::UnitType unit :
         {CUnits::MICRO_TESLA, CUnits::MILLI_TESLA, CUnits::TESLA, CUnits::NANO_TESLA, CUnits::GAUSS,
          CUnits::KILO_GAUSS, CUnits::MILLI_GAUSS, CUnits::MEGA_HERTZ_PROTON, CUnits::AMPERE_PER_METER,
          CUnits::KILO_AMPERE_PER_METER, CUnits::MILLI_AMPERE_PER_METER}) {
        // A record of raw counts can be shown in nothing else.
        if (!units.contains(unit) && m_info.unit != CUnits::ADC)
            units.append(unit);
    }
    SetUnitList(units);
    SetRangeList({});
    SetTriggerList({CTrigger::CONTINUOUS, CTrigger::IMMEDIATE, CTrigger::TIMER, CTrigger::EXTERNAL});

    const double rate = m_info.rate;
    const double minRate = rate * (1 - kRateTolerance);
    const double maxRate = rate * (1 + kRateTolerance);
    setBound(AveragingBound(), 1, kMaxAveraging, 1);
    setBound(BlockSizeBound(), 1, kMaxBlockSize, 1);
    setBound(AcquisitionRateBound(), rate, rate, rate);
    setBound(KestrixAcquisitionRateBound(), minRate, maxRate, rate);
    setBound(DisplayRateBound(), std::min(kMinDisplayRate, rate), rate, std::min(rate, 10.0));
    setBound(KestrixDisplayRateBound(), std::min(kMinDisplayRate, rate), maxRate, std::min(rate, 10.0));
    setBound(FrequencyMinBound(), 0, maxRate / 2, 0);
    setBound(FrequencyMaxBound(), minRate / 2, maxRate / 2, rate / 2);

    emit OnUnitListUpdated();
    emit OnHasAdcUpdated();
    emit OnRangeListUpdated();
    emit OnTriggerListUpdated();
}

double CFileReplayInstrument::ImmediateRate(const AcquisitionParameters& /*parameters*/) const
{
    return m_info.rate;
}

void CFileReplayInstrument::PrepareRun()
{
    // Single blocks follow one another through the recording.
    if (Applied().triggerMode != CTrigger::IMMEDIATE || m_source->IsAtEnd())
        m_source->Rewind();
}

void CFileReplayInstrument::RunExhausted()
{
    SetStatusString(tr("End of the recording"));
}

void CFileReplayInstrument::ParametersApplied(CMeasurementParameters& parameters)
{
    // Queued, since the parameters may still be inside the cascade that raised the commit flag.
    if (parameters.AcquisitionRate() != m_info.rate || parameters.DisplayRate() > m_info.rate)
        QMetaObject::invokeMethod(this, &CFileReplayInstrument::enforceOwnRate, Qt::QueuedConnection);
}

void CFileReplayInstrument::enforceOwnRate()
{
    CMeasurementParameters* parameters = MeasurementParameters();
    if (!parameters || !parameters->ApplyConfiguration() || !IsConnected())
        return;
    parameters->SetApplyConfiguration(false);
    parameters->SetAcquisitionRate(m_info.rate);
    if (parameters->DisplayRate() > m_info.rate)
        parameters->SetDisplayRate(m_info.rate);
    parameters->SetApplyConfiguration(true);
}

void CFileReplayInstrument::CalibrateZeroOffset(bool /*forceCalibration*/)
{
    SetStatusString(tr("A recording has no zero offset to calibrate"));
}

void CFileReplayInstrument::RestoreZeroOffsetToFactory()
{
    CalibrateZeroOffset();
}
