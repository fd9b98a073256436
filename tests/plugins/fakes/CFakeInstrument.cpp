// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeInstrument.h"

#include "FakeOptions.h"

#include <QCoreApplication>
#include <QThread>

#include <chrono>
#include <stdexcept>

namespace {

QList<CUnits::UnitType> unitsOf(const QString& option)
{
    QList<CUnits::UnitType> units;
    if (option == QLatin1String("none"))
        return units;
    if (option == QLatin1String("all")) {
        for (int unit = CUnits::TESLA; unit <= CUnits::ADC; ++unit)
            units.append(static_cast<CUnits::UnitType>(unit));
        return units;
    }
    const QStringList texts = option.split(QLatin1Char(','));
    for (const QString& text : texts)
        units.append(TextToUnit(text));
    return units;
}

void setBound(CBoundedParm* bound, double min, double max, double defaultValue)
{
    bound->SetMin(min);
    bound->SetMax(max);
    bound->SetDefault(defaultValue);
}

} // namespace

CFakeInstrument::CFakeInstrument(const QString& serialNumber, QObject* plugin) : m_plugin(plugin)
{
    setObjectName(QStringLiteral("fakeInstrument"));
    SetName(QStringLiteral("Fake"));
    SetSerialNumber(serialNumber);
    SetInterface(CInstrumentInterface::USB);
    SetRessourceName(QStringLiteral("fake://") + serialNumber);
    connect(&m_blockTimer, &QTimer::timeout, this, &CFakeInstrument::onBlockTimer);
}

CFakeInstrument::~CFakeInstrument()
{
    endBlockThread();
}

QSharedPointer<CMeasureBlock> CFakeInstrument::MakeBlock(int numSamples, qint64 firstSampleMs)
{
    QThread* const mainThread = QCoreApplication::instance()->thread();
    const QDateTime start(QDate(2024, 3, 1), QTime(12, 0));
    const auto block = QSharedPointer<CMeasureBlock>::create();
    block->Bprime.SetX(1);
    for (int i = 0; i < numSamples; ++i) {
        const auto sample = QSharedPointer<CFieldIntensityResult>::create();
        sample->SetBx(3);
        sample->SetBy(4);
        sample->SetBz(0);
        sample->SetB(5);
        sample->SetBBprime(3);
        sample->SetDB(0.5F);
        const qint64 timeMs = firstSampleMs + i;
        sample->Timestamp = start.addMSecs(timeMs);
        sample->TimestampNanoseconds = static_cast<quint32>(timeMs % 1000) * 1000000U;
        sample->moveToThread(mainThread);
        block->Results.append(sample);
    }
    block->moveToThread(mainThread);
    return block;
}

void CFakeInstrument::SendTrigger()
{
    record(QStringLiteral("SendTrigger"));
}

bool CFakeInstrument::Connect()
{
    record(QStringLiteral("Connect"));
    QThread::msleep(option("connectDelayMs", 0).toUInt());
    failIfAsked("connect");
    if (option("connect", QString()).toString() == QLatin1String("false"))
        return false;
    fillCapabilities();
    SetIsConnected(true);
    SetStatusString(QStringLiteral("Ready"));
    const int vanishAfterMs = option("vanishAfterMs", 0).toInt();
    if (vanishAfterMs > 0)
        QTimer::singleShot(vanishAfterMs, this, &CFakeInstrument::VanishDue);
    return true;
}

void CFakeInstrument::Disconnect()
{
    record(QStringLiteral("Disconnect"));
    failIfAsked("disconnect");
    m_blockTimer.stop();
    endBlockThread();
    SetIsRunning(false);
    SetIsConnected(false);
}

void CFakeInstrument::StartMeasurement()
{
    record(QStringLiteral("StartMeasurement"));
    SetIsRunning(true);
    m_samplesPerBlock = option("samplesPerBlock", 10).toInt();
    const int blockCount = option("blockCount", 0).toInt();
    const int intervalMs = option("blockIntervalMs", 10).toInt();
    if (blockCount == 0)
        return;
    if (option("threaded", false).toBool()) {
        endBlockThread();
        m_isThreadToEnd = false;
        m_blockThread = std::thread([=] { runBlockThread(blockCount, intervalMs); });
    } else {
        m_blocksToGo = blockCount;
        m_blockTimer.start(intervalMs);
    }
}

void CFakeInstrument::StopMeasurement()
{
    record(QStringLiteral("StopMeasurement"));
    m_blockTimer.stop();
    endBlockThread();
    SetIsRunning(false);
}

void CFakeInstrument::CalibrateZeroOffset(bool forceCalibration)
{
    record(forceCalibration ? QStringLiteral("CalibrateZeroOffset forced")
                            : QStringLiteral("CalibrateZeroOffset"));
}

void CFakeInstrument::RestoreZeroOffsetToFactory()
{
    record(QStringLiteral("RestoreZeroOffsetToFactory"));
}

void CFakeInstrument::EmitBlock()
{
    emit OnNewMeasureBlock(nextBlock());
}

QVariant CFakeInstrument::option(const char* key, const QVariant& fallback) const
{
    return FakeOptions::value(this, m_plugin, key, fallback);
}

void CFakeInstrument::record(const QString& call)
{
    FakeOptions::recordCall(*this, call);
    if (m_plugin)
        FakeOptions::recordCall(*m_plugin, SerialNumber() + QLatin1Char(' ') + call);
}

void CFakeInstrument::failIfAsked(const char* key) const
{
    const QString behaviour = option(key, QString()).toString();
    if (behaviour == QLatin1String("throw"))
        throw std::runtime_error(key);
    if (behaviour == QLatin1String("throwInt"))
        throw 1;
}

void CFakeInstrument::fillCapabilities()
{
    SetModel(QStringLiteral("FM2040"));
    SetManufacturer(QStringLiteral("Fake & Sons"));
    SetElectronicsVersion(QStringLiteral("E1"));
    SetProbeVersion(QStringLiteral("P1"));
    SetFirmwareVersion(QStringLiteral("1.0"));
    SetManufacturingDate(QDateTime(QDate(2020, 1, 2), QTime(0, 0)));
    SetCalibrationDate(QDateTime(QDate(2021, 3, 4), QTime(0, 0)));
    SetRangeList({0.001F, 0.1F, 1.0F});
    SetUnitList(unitsOf(option("units", QStringLiteral("all")).toString()));
    SetTriggerList({CTrigger::CONTINUOUS, CTrigger::IMMEDIATE, CTrigger::TIMER, CTrigger::EXTERNAL});
    setBound(AveragingBound(), 1, 1000, 1);
    setBound(BlockSizeBound(), 1, 10000, 1);
    setBound(AcquisitionRateBound(), 0.1, 10000, 100);
    setBound(DisplayRateBound(), 0.1, 100, 10);
    setBound(KestrixAcquisitionRateBound(), 0.1, 10000, 100);
    setBound(KestrixDisplayRateBound(), 0.1, 100, 10);
    setBound(FrequencyMinBound(), 0, 5000, 0);
    setBound(FrequencyMaxBound(), 0.05, 5000, 50);
}

QSharedPointer<CMeasureBlock> CFakeInstrument::nextBlock()
{
    const int numSamples = m_samplesPerBlock;
    return MakeBlock(numSamples, m_nextSampleMs.fetch_add(numSamples));
}

void CFakeInstrument::onBlockTimer()
{
    if (m_blocksToGo > 0 && --m_blocksToGo == 0)
        m_blockTimer.stop();
    EmitBlock();
}

void CFakeInstrument::runBlockThread(int blockCount, int intervalMs)
{
    for (int i = 0; (blockCount < 0 || i < blockCount) && !m_isThreadToEnd; ++i) {
        emit OnNewMeasureBlock(nextBlock());
        std::this_thread::sleep_for(std::chrono::milliseconds(intervalMs));
    }
}

void CFakeInstrument::endBlockThread()
{
    m_isThreadToEnd = true;
    if (m_blockThread.joinable())
        m_blockThread.join();
}
