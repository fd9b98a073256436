// SPDX-License-Identifier: MIT
#include "CSerialBoardInstrument.h"

#include "TimeUnits.h"

#include <QLoggingCategory>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kMaxAveraging = 1000;
constexpr int kMaxBlockSize = 65535;
constexpr double kMinDisplayRate = 1e-4;
constexpr double kDefaultDisplayRate = 10;
// What the time for learning a board's rate can tell.
constexpr int kRateDigits = 4;
// Of its last digit: what is closer is the same rate, so that it does not flicker between two.
constexpr double kRateTolerance = 0.75;
constexpr double kCloseRate = 0.01;
// So many blocks a second that their size is not rounded down.
constexpr double kNextBelow = 1 - 1e-9;
// Parameter files keep six digits: such a rate comes back as the same number.
constexpr int kFileDigits = 6;

double rounded(double value, int digits)
{
    return QString::number(value, 'g', digits).toDouble();
}

void setBound(CBoundedParm* bound, double min, double max, double defaultValue)
{
    bound->SetMin(min);
    bound->SetMax(max);
    bound->SetDefault(defaultValue);
}

QString firstOf(const QString& text, const QString& otherwise)
{
    return text.isEmpty() ? otherwise : text;
}

} // namespace

CSerialBoardInstrument::CSerialBoardInstrument(const BoardPort& port, const QString& serialNumber, int speed)
    : m_port(port), m_speed(speed)
{
    SetName(tr("Serial board"));
    SetSerialNumber(serialNumber);
    SetInterface(port.IsUsb() ? CInstrumentInterface::USB : CInstrumentInterface::Serial);
    SetRessourceName(port.location);
}

CSerialBoardInstrument::~CSerialBoardInstrument()
{
    StopMeasurement();
    closePort();
}

bool CSerialBoardInstrument::Connect()
{
    if (IsConnected())
        return true;
    m_settings = SerialBoardSettings::Load();
    if (!openPort()) {
        closePort();
        return false;
    }
    SetIsConnected(true);
    SetStatusString(tr("Ready"));
    ApplyParameters();
    return true;
}

bool CSerialBoardInstrument::openPort()
{
    m_queue = std::make_shared<CSampleQueue>();
    m_reader = new CPortReader(m_port.location, m_speed,
                               CBoardDecoder(m_settings.unit, m_settings.scale, m_settings.columns), m_queue);
    m_readerThread = std::make_unique<QThread>();
    m_readerThread->setObjectName(SerialNumber());
    m_reader->moveToThread(m_readerThread.get());
    connect(m_readerThread.get(), &QThread::started, m_reader, &CPortReader::Open);
    connect(m_readerThread.get(), &QThread::finished, m_reader, &QObject::deleteLater);
    // What a reader has told and was not heard before its end concerns nobody any more.
    connect(
        m_reader, &CPortReader::Lost, this,
        [this, reader = m_reader] {
            if (reader == m_reader)
                Lose();
        },
        Qt::QueuedConnection);
    connect(
        m_reader, &CPortReader::SilenceChanged, this,
        [this, reader = m_reader](bool isSilent) {
            if (reader == m_reader)
                onSilenceChanged(isSilent);
        },
        Qt::QueuedConnection);
    m_readerThread->start();

    const auto timeoutMs = static_cast<unsigned long>(m_settings.timeoutS * kMsPerSecond);
    BoardState state = m_reader->WaitForPhase(BoardState::Phase::Learning, timeoutMs);
    if (state.phase == BoardState::Phase::Learning)
        state = m_reader->WaitForPhase(BoardState::Phase::Ready, timeoutMs);
    switch (state.phase) {
    case BoardState::Phase::Failed:
        return fail(tr("The port %1 cannot be opened: %2").arg(m_port.location, state.error));
    case BoardState::Phase::Opening:
    case BoardState::Phase::Waiting:
        return fail(state.bytes == 0
                        ? tr("The board at %1 sends nothing").arg(m_port.location)
                        : tr("What the board at %1 sends is no reading of three axes: is %2 baud its speed?")
                              .arg(m_port.location)
                              .arg(m_speed));
    case BoardState::Phase::Learning:
        return fail(tr("The board at %1 sends too little to tell its rate").arg(m_port.location));
    case BoardState::Phase::Ready:
        break;
    }
    if (state.unit == CUnits::UNKNOWN)
        return fail(tr("The board at %1 does not tell its unit: name it in %2")
                        .arg(m_port.location, SerialBoardSettings::FilePath()));
    m_source = std::make_shared<CReadingBlockSource>(m_queue, state.unit, m_settings.uncertainty);
    fillCapabilities(state);
    return true;
}

bool CSerialBoardInstrument::fail(const QString& message)
{
    qWarning().noquote() << message;
    SetStatusString(message);
    SetLastMessage(message);
    return false;
}

void CSerialBoardInstrument::closePort()
{
    if (!m_readerThread)
        return;
    m_readerThread->quit();
    m_readerThread->wait();
    m_readerThread.reset();
    m_reader = nullptr;
}

void CSerialBoardInstrument::Disconnect()
{
    StopMeasurement();
    closePort();
    m_source.reset();
    SetIsConnected(false);
    SetStatusString(tr("Disconnected"));
}

void CSerialBoardInstrument::Lose()
{
    Disconnect();
    fail(tr("Connection lost: the port %1 is gone").arg(m_port.location));
    emit Vanished();
}

void CSerialBoardInstrument::fillCapabilities(const BoardState& state)
{
    SetManufacturer(firstOf(m_settings.manufacturer, firstOf(m_port.manufacturer, tr("Unknown"))));
    SetModel(firstOf(m_settings.model, firstOf(m_port.description, tr("Three-axis board"))));
    if (m_settings.calibrationDate.isValid())
        SetCalibrationDate(m_settings.calibrationDate.startOfDay());

    QList<CUnits::UnitType> units{state.unit};
    for (const CUnits::UnitType unit :
         {CUnits::MICRO_TESLA, CUnits::MILLI_TESLA, CUnits::TESLA, CUnits::NANO_TESLA, CUnits::GAUSS,
          CUnits::KILO_GAUSS, CUnits::MILLI_GAUSS, CUnits::MEGA_HERTZ_PROTON, CUnits::AMPERE_PER_METER,
          CUnits::KILO_AMPERE_PER_METER, CUnits::MILLI_AMPERE_PER_METER}) {
        if (!units.contains(unit))
            units.append(unit);
    }
    SetUnitList(units);
    QList<tFlux> ranges;
    if (m_settings.range > 0) {
        tFlux range = 0;
        ConvertUnits(state.unit, CUnits::TESLA, range, static_cast<tFlux>(m_settings.range));
        ranges.append(range);
    }
    SetRangeList(ranges);
    SetTriggerList({CTrigger::CONTINUOUS, CTrigger::IMMEDIATE, CTrigger::TIMER, CTrigger::EXTERNAL});

    m_boardRate = rounded(state.rate, kRateDigits);
    m_averaging = 1;
    fillBounds();
    qInfo() << "Board at" << m_port.location << "sends" << m_boardRate << "readings per second, timed by"
            << (state.usesDeviceTime ? "its own clock" : "their arrival");

    emit OnUnitListUpdated();
    emit OnHasAdcUpdated();
    emit OnRangeListUpdated();
    emit OnTriggerListUpdated();
}

void CSerialBoardInstrument::fillBounds()
{
    m_rate = rounded(m_boardRate / m_averaging, kFileDigits);
    const double minDisplayRate = std::min(kMinDisplayRate, m_rate);
    const double displayRate = std::min(m_rate, kDefaultDisplayRate);
    setBound(AveragingBound(), 1, kMaxAveraging, 1);
    setBound(BlockSizeBound(), 1, kMaxBlockSize, 1);
    setBound(AcquisitionRateBound(), m_rate, m_rate, m_rate);
    setBound(KestrixAcquisitionRateBound(), m_rate, m_rate, m_rate);
    setBound(DisplayRateBound(), minDisplayRate, m_rate, displayRate);
    setBound(KestrixDisplayRateBound(), minDisplayRate, m_rate, displayRate);
    setBound(FrequencyMinBound(), 0, m_rate / 2, 0);
    setBound(FrequencyMaxBound(), m_rate / 2, m_rate / 2, m_rate / 2);
}

void CSerialBoardInstrument::StartMeasurement()
{
    if (IsConnected() && !IsRunning())
        refineRate();
    CStreamingInstrument::StartMeasurement();
}

void CSerialBoardInstrument::refineRate()
{
    const double rate = m_reader->State().rate;
    const double lastDigit = std::pow(10, std::floor(std::log10(m_boardRate)) - kRateDigits + 1);
    if (rate <= 0 || std::abs(rate - m_boardRate) <= kRateTolerance * lastDigit)
        return;
    m_boardRate = rounded(rate, kRateDigits);
    fillBounds();
    enforceOwnRate();
}

AcquisitionPacing CSerialBoardInstrument::Pacing() const
{
    // The board sets the pace: the source waits for it.
    AcquisitionPacing pacing;
    pacing.speed = 0;
    return pacing;
}

double CSerialBoardInstrument::ImmediateRate(const AcquisitionParameters& parameters) const
{
    return rounded(m_boardRate / parameters.averaging, kFileDigits);
}

void CSerialBoardInstrument::PrepareRun()
{
    m_source->BeginRun();
}

void CSerialBoardInstrument::ParametersApplied(CMeasurementParameters& parameters)
{
    if (Applied().averaging != m_averaging) {
        m_averaging = Applied().averaging;
        fillBounds();
    }
    // Queued, since the parameters may still be inside the cascade that raised the commit flag.
    if (parameters.AcquisitionRate() != m_rate || parameters.DisplayRate() > m_rate)
        QMetaObject::invokeMethod(this, &CSerialBoardInstrument::enforceOwnRate, Qt::QueuedConnection);
}

void CSerialBoardInstrument::enforceOwnRate()
{
    CMeasurementParameters* parameters = MeasurementParameters();
    if (!parameters || !parameters->ApplyConfiguration() || !IsConnected())
        return;
    // A rate a little off its own must not cost a sample of the block by rounding.
    const int blockSize = parameters->BlockSize();
    const bool isClose = std::abs(parameters->AcquisitionRate() / m_rate - 1) < kCloseRate;
    parameters->SetApplyConfiguration(false);
    parameters->SetAcquisitionRate(m_rate);
    if (isClose && blockSize > 0 && parameters->BlockSize() != blockSize)
        parameters->SetDisplayRate(m_rate / blockSize * kNextBelow);
    if (parameters->DisplayRate() > m_rate)
        parameters->SetDisplayRate(m_rate);
    parameters->SetApplyConfiguration(true);
}

void CSerialBoardInstrument::onSilenceChanged(bool isSilent)
{
    if (isSilent)
        fail(tr("The board at %1 has stopped sending").arg(m_port.location));
    else
        SetStatusString(IsRunning() ? tr("Measuring") : tr("Ready"));
}

void CSerialBoardInstrument::CalibrateZeroOffset(bool /*forceCalibration*/)
{
    SetStatusString(tr("A board that only sends cannot be calibrated"));
}

void CSerialBoardInstrument::RestoreZeroOffsetToFactory()
{
    CalibrateZeroOffset();
}
