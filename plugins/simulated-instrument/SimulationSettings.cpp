// SPDX-License-Identifier: MIT
#include "SimulationSettings.h"

#include <QSettings>
#include <QStandardPaths>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kTeslaPerMicroTesla = 1e-6;
constexpr int kMaxCount = 16;

class Reader
{
public:
    explicit Reader(const QString& path) : m_settings(path, QSettings::IniFormat) {}

    void Read(const char* key, double& value, double factor = 1) const
    {
        bool ok = false;
        const double read = text(key).toDouble(&ok);
        if (ok && std::isfinite(read))
            value = read * factor;
    }

    template <class Integer> void ReadInteger(const char* key, Integer& value) const
    {
        bool ok = false;
        const qlonglong read = text(key).toLongLong(&ok);
        if (ok && read >= 0)
            value = static_cast<Integer>(std::min<qlonglong>(read, std::numeric_limits<int>::max()));
    }

    void Read(const char* key, FieldVector& value, double factor) const
    {
        const QByteArray name(key);
        Read((name + 'X').constData(), value.x, factor);
        Read((name + 'Y').constData(), value.y, factor);
        Read((name + 'Z').constData(), value.z, factor);
    }

    void Read(const char* key, bool& value) const
    {
        const QString read = text(key);
        if (!read.isEmpty())
            value = read == QLatin1String("true") || read == QLatin1String("1");
    }

    void Read(const char* key, Outcome& value) const
    {
        const QString read = text(key);
        if (read == QLatin1String("fail"))
            value = Outcome::Failure;
        else if (read == QLatin1String("throw"))
            value = Outcome::Exception;
    }

    QString text(const char* key) const { return m_settings.value(QLatin1String(key)).toString().trimmed(); }

private:
    QSettings m_settings;
};

} // namespace

QString SimulationSettings::FilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Kestrix/KestrixSimulatedInstrument.ini");
}

SimulationSettings SimulationSettings::Load()
{
    SimulationSettings settings;
    const Reader reader(FilePath());

    reader.ReadInteger("Instruments/Count", settings.count);
    settings.count = std::min(settings.count, kMaxCount);
    const QString serialNumber = reader.text("Instruments/SerialNumber");
    if (!serialNumber.isEmpty())
        settings.serialNumber = serialNumber;
    settings.calibrationDate = QDate::fromString(reader.text("Instruments/CalibrationDate"), Qt::ISODate);

    reader.Read("Field/Dc", settings.dc, kTeslaPerMicroTesla);
    reader.Read("Field/AcFrequency", settings.acFrequency);
    reader.Read("Field/Ac", settings.ac, kTeslaPerMicroTesla);
    reader.Read("Field/AcThird", settings.acThird, kTeslaPerMicroTesla);
    reader.Read("Field/AcFifth", settings.acFifth, kTeslaPerMicroTesla);
    reader.Read("Field/RotatingAmplitude", settings.rotatingAmplitude, kTeslaPerMicroTesla);
    reader.Read("Field/RotatingFrequency", settings.rotatingFrequency);
    reader.Read("Field/DriftPerHour", settings.driftPerHour, kTeslaPerMicroTesla);

    reader.Read("Sensor/Noise", settings.noise);
    settings.noise = std::max(0.0, settings.noise);
    reader.ReadInteger("Sensor/Seed", settings.seed);
    reader.Read("Sensor/Offset", settings.offset, kTeslaPerMicroTesla);
    reader.Read("Sensor/AccuracyOfReading", settings.accuracyOfReading);
    reader.Read("Sensor/AccuracyOfRange", settings.accuracyOfRange);
    reader.Read("Sensor/Bprime", settings.bprime, 1);
    reader.Read("Sensor/EstimateBprime", settings.estimateBprime);

    reader.ReadInteger("Calibration/DurationMs", settings.calibrationMs);
    reader.Read("Calibration/ChamberField", settings.chamberField, kTeslaPerMicroTesla);

    reader.ReadInteger("Misbehaviour/ConnectDelayMs", settings.connectDelayMs);
    reader.Read("Misbehaviour/Connect", settings.connect);
    reader.Read("Misbehaviour/Disconnect", settings.disconnect);
    reader.Read("Misbehaviour/VanishAfterS", settings.vanishAfterS);
    reader.Read("Misbehaviour/ReturnAfterS", settings.returnAfterS);
    reader.ReadInteger("Misbehaviour/EmptyBlockEvery", settings.emptyBlockEvery);
    reader.ReadInteger("Misbehaviour/NanBlockEvery", settings.nanBlockEvery);
    reader.Read("Misbehaviour/BurstIntervalS", settings.burstIntervalS);
    reader.Read("Misbehaviour/BurstLengthS", settings.burstLengthS);
    return settings;
}
