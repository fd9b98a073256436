// SPDX-License-Identifier: GPL-3.0-or-later
#include "PluginDriver.h"

#include "PatientWait.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QtTest>

namespace {

QString settingsPath(const QString& fileName)
{
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Kestrix");
    QDir().mkpath(folder);
    return folder + QLatin1Char('/') + fileName;
}

} // namespace

qint64 epochNs(const CFieldIntensityResult& result)
{
    return result.Timestamp.toMSecsSinceEpoch() / 1000 * 1000000000LL +
           static_cast<qint64>(result.TimestampNanoseconds);
}

void writeSettings(const QString& fileName, const QByteArray& text)
{
    QFile file(settingsPath(fileName));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(text) != text.size())
        qFatal("Cannot write %s", qPrintable(file.fileName()));
}

void removeSettings(const QString& fileName)
{
    QFile::remove(settingsPath(fileName));
}

int threadCount()
{
    const QDir tasks(QStringLiteral("/proc/self/task"));
    return tasks.exists() ? static_cast<int>(tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size()) : -1;
}

PluginDriver::PluginDriver(const QString& path) : m_library(path) {}

PluginDriver::~PluginDriver()
{
    if (m_plugin)
        m_plugin->Stop();
}

bool PluginDriver::Start()
{
    using Factory = CInstrumentPlugin* (*)();
    if (!m_library.load())
        return false;
    const auto factory = reinterpret_cast<Factory>(m_library.resolve("CreateInstrumentPlugin"));
    if (!factory)
        return false;
    m_plugin.reset(factory());
    m_plugin->Start();
    m_provider = m_plugin->GetInstrumentListProvider();
    QSignalSpy listed(m_provider, &CInstrumentListProvider::InstrumentListUpdated);
    return listed.wait(kLongWaitMs);
}

QSharedPointer<CInstrument> PluginDriver::Instrument(const QString& serialNumber) const
{
    const auto instruments = Instruments();
    for (const auto& instrument : instruments) {
        if (instrument->SerialNumber() == serialNumber)
            return instrument;
    }
    return {};
}

Session::Session(const QSharedPointer<CInstrument>& source) : instrument(source)
{
    connect(instrument.data(), &CInstrument::OnNewMeasureBlock, this,
            [this](const QSharedPointer<CMeasureBlock>& block) { blocks.append(block); });
    instrument->SetMeasurementParameters(&parameters);
}

Session::~Session()
{
    instrument->StopMeasurement();
}

void Session::Configure(CTrigger::TriggerMode mode, double acquisitionRate, int blockSize, double displayRate)
{
    parameters.SetApplyConfiguration(false);
    parameters.SetTriggerMode(mode);
    // Every assignment moves the others; what is set last stands.
    if (mode == CTrigger::CONTINUOUS || mode == CTrigger::TIMER) {
        parameters.SetAcquisitionRate(acquisitionRate);
        parameters.SetDisplayRate(displayRate);
        parameters.blockSignals(true);
        parameters.SetBlockSize(blockSize);
        parameters.blockSignals(false);
    } else {
        parameters.blockSignals(true);
        parameters.SetAcquisitionRate(acquisitionRate);
        parameters.SetBlockSize(blockSize);
        parameters.SetDisplayRate(displayRate);
        parameters.blockSignals(false);
    }
    parameters.SetApplyConfiguration(true);
}

QVector<QSharedPointer<CFieldIntensityResult>> Session::Samples() const
{
    QVector<QSharedPointer<CFieldIntensityResult>> samples;
    for (const auto& block : blocks)
        samples += block->Results;
    return samples;
}
