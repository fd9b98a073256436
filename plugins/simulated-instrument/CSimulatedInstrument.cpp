// SPDX-License-Identifier: MIT
#include "CSimulatedInstrument.h"

#include <QDateTime>
#include <QLoggingCategory>
#include <QThread>

#include <stdexcept>

namespace {

QList<tFlux> ranges()
{
    return {3e-5F, 1e-4F, 1e-3F, 1e-2F};
}
constexpr double kMaxAcquisitionRate = 100000;
constexpr double kMinAcquisitionRate = 0.01;
constexpr double kMaxDisplayRate = 1000;
constexpr double kMinDisplayRate = 0.001;
constexpr int kMaxAveraging = 10000;
constexpr int kMaxBlockSize = 65535;
constexpr int kCalibrationAgeDays = 90;
/// A larger field in the chamber, in tesla, means that the probe is not in a chamber at all.
constexpr double kMaxChamberField = 1e-6;

void setBound(CBoundedParm* bound, double min, double max, double defaultValue)
{
    bound->SetMin(min);
    bound->SetMax(max);
    bound->SetDefault(defaultValue);
}

// "SIM-0001" counts on to "SIM-0002".
QString serialNumberAt(const QString& first, int index)
{
    int digits = 0;
    while (digits < first.size() && first.at(first.size() - 1 - digits).isDigit())
        ++digits;
    const qlonglong number = first.right(digits).toLongLong() + index;
    return index == 0 ? first
                      : first.left(first.size() - digits) +
                            QStringLiteral("%1").arg(number, digits, 10, QLatin1Char('0'));
}

} // namespace

CSimulatedInstrument::CSimulatedInstrument(const SimulationSettings& settings, int index)
    : m_settings(settings), m_vanishTimer(this)
{
    SetName(tr("Simulated instrument"));
    SetSerialNumber(serialNumberAt(settings.serialNumber, index));
    SetInterface(CInstrumentInterface::USB);
    SetRessourceName(QStringLiteral("simulated://%1").arg(index + 1));
    m_vanishTimer.setObjectName(QStringLiteral("vanishTimer"));
    m_vanishTimer.setSingleShot(true);
    connect(&m_vanishTimer, &QTimer::timeout, this, &CSimulatedInstrument::vanish);
}

CSimulatedInstrument::~CSimulatedInstrument() = default;

bool CSimulatedInstrument::Connect()
{
    m_settings = SimulationSettings::Load();
    if (m_settings.connectDelayMs > 0)
        QThread::msleep(static_cast<unsigned long>(m_settings.connectDelayMs));
    if (m_settings.connect != Outcome::Success)
        dropConnection();
    if (m_settings.connect == Outcome::Exception)
        throw std::runtime_error("The simulated instrument was asked to fail in Connect");
    if (m_settings.connect == Outcome::Failure) {
        report(tr("Connection failed"));
        return false;
    }
    if (IsConnected())
        return true;

    fillCapabilities();
    m_source = std::make_shared<CSimulatedBlockSource>(m_settings, ranges(),
                                                       QDateTime::currentMSecsSinceEpoch() * 1000000);
    m_source->SetZeroCorrection(m_zeroCorrection);
    SetIsConnected(true);
    SetStatusString(tr("Ready"));
    if (m_settings.vanishAfterS > 0)
        m_vanishTimer.start(static_cast<int>(m_settings.vanishAfterS * 1000));
    ApplyParameters();
    return true;
}

void CSimulatedInstrument::Disconnect()
{
    dropConnection();
    SetStatusString(tr("Disconnected"));
    if (m_settings.disconnect != Outcome::Success)
        throw std::runtime_error("The simulated instrument was asked to fail in Disconnect");
}

void CSimulatedInstrument::dropConnection()
{
    m_vanishTimer.stop();
    StopMeasurement();
    SetIsConnected(false);
}

void CSimulatedInstrument::fillCapabilities()
{
    SetManufacturer(QStringLiteral("Kestrix"));
    SetModel(QStringLiteral("SIM-1000"));
    SetElectronicsVersion(QStringLiteral("1.0"));
    SetProbeVersion(QStringLiteral("1.0"));
    SetFirmwareVersion(QStringLiteral("1.0.0"));
    SetManufacturingDate(QDate(2024, 1, 15).startOfDay());
    SetCalibrationDate(m_settings.calibrationDate.isValid()
                           ? m_settings.calibrationDate.startOfDay()
                           : QDate::currentDate().addDays(-kCalibrationAgeDays).startOfDay());

    // The unit that suits a field of the earth's size comes first, since a first start measures in it. ADC
    // must be last: a list that hides it has to keep the positions of the others.
    SetUnitList({CUnits::MICRO_TESLA, CUnits::MILLI_TESLA, CUnits::TESLA, CUnits::NANO_TESLA, CUnits::GAUSS,
                 CUnits::KILO_GAUSS, CUnits::MILLI_GAUSS, CUnits::MEGA_HERTZ_PROTON, CUnits::AMPERE_PER_METER,
                 CUnits::KILO_AMPERE_PER_METER, CUnits::MILLI_AMPERE_PER_METER, CUnits::ADC});
    SetRangeList(ranges());
    SetTriggerList({CTrigger::CONTINUOUS, CTrigger::IMMEDIATE, CTrigger::TIMER, CTrigger::EXTERNAL});
    SetDivisorList({QStringLiteral("1")});

    setBound(AveragingBound(), 1, kMaxAveraging, 10);
    setBound(BlockSizeBound(), 1, kMaxBlockSize, 2);
    setBound(AcquisitionRateBound(), kMinAcquisitionRate, kMaxAcquisitionRate, 20);
    setBound(KestrixAcquisitionRateBound(), kMinAcquisitionRate, kMaxAcquisitionRate, 20);
    setBound(DisplayRateBound(), kMinDisplayRate, kMaxDisplayRate, 10);
    setBound(KestrixDisplayRateBound(), kMinDisplayRate, kMaxDisplayRate, 10);
    setBound(FrequencyMinBound(), 0, kMaxAcquisitionRate / 2, 0);
    setBound(FrequencyMaxBound(), kMinAcquisitionRate / 2, kMaxAcquisitionRate / 2, 10);

    emit OnUnitListUpdated();
    emit OnHasAdcUpdated();
    emit OnRangeListUpdated();
    emit OnTriggerListUpdated();
}

AcquisitionPacing CSimulatedInstrument::Pacing() const
{
    AcquisitionPacing pacing;
    pacing.burstIntervalS = m_settings.burstIntervalS;
    pacing.burstLengthS = m_settings.burstLengthS;
    return pacing;
}

double CSimulatedInstrument::ImmediateRate(const AcquisitionParameters& parameters) const
{
    // A single block is taken as fast as the converter and the averaging allow.
    return kMaxAcquisitionRate / parameters.averaging;
}

void CSimulatedInstrument::PrepareRun()
{
    m_source->BeginRun();
}

void CSimulatedInstrument::CalibrateZeroOffset(bool forceCalibration)
{
    if (!IsConnected())
        return;
    if (m_settings.chamberField.LargestComponent() > kMaxChamberField && !forceCalibration) {
        report(tr("Zero offset not calibrated: the probe is not in a zero-field chamber"));
        return;
    }
    QThread::msleep(static_cast<unsigned long>(m_settings.calibrationMs));
    setZeroCorrection(m_source->MeasureZeroField());
    report(tr("Zero offset calibrated"));
}

void CSimulatedInstrument::RestoreZeroOffsetToFactory()
{
    if (!IsConnected())
        return;
    setZeroCorrection({});
    report(tr("Factory zero offset restored"));
}

void CSimulatedInstrument::setZeroCorrection(const FieldVector& correction)
{
    m_zeroCorrection = correction;
    m_source->SetZeroCorrection(correction);
}

void CSimulatedInstrument::report(const QString& message)
{
    SetMessagesHistory(MessagesHistory() << message);
    SetLastMessage(message);
    SetStatusString(message);
}

void CSimulatedInstrument::vanish()
{
    dropConnection();
    report(tr("Connection lost"));
    emit Vanished();
}
