// SPDX-License-Identifier: MIT
#include "SimulationSettings.h"

#include "CIniReader.h"

#include <algorithm>

namespace {

constexpr double kTeslaPerMicroTesla = 1e-6;
constexpr int kMaxCount = 16;
constexpr double kMinMagnetRadius = 1e-3;

class Reader : public CIniReader
{
public:
    using CIniReader::CIniReader;
    using CIniReader::Read;

    void Read(const char* key, FieldVector& value, double factor) const
    {
        const QByteArray name(key);
        Read((name + 'X').constData(), value.x, factor);
        Read((name + 'Y').constData(), value.y, factor);
        Read((name + 'Z').constData(), value.z, factor);
    }

    void Read(const char* key, Outcome& value) const
    {
        const QString read = Text(key);
        if (read == QLatin1String("fail"))
            value = Outcome::Failure;
        else if (read == QLatin1String("throw"))
            value = Outcome::Exception;
    }
};

} // namespace

QString SimulationSettings::FilePath()
{
    return CIniReader::PathOf(QStringLiteral("KestrixSimulatedInstrument.ini"));
}

SimulationSettings SimulationSettings::Load()
{
    SimulationSettings settings;
    const Reader reader(FilePath());

    reader.ReadInteger("Instruments/Count", settings.count);
    settings.count = std::min(settings.count, kMaxCount);
    const QString serialNumber = reader.Text("Instruments/SerialNumber");
    if (!serialNumber.isEmpty())
        settings.serialNumber = serialNumber;
    settings.calibrationDate = QDate::fromString(reader.Text("Instruments/CalibrationDate"), Qt::ISODate);

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

    reader.Read("Magnet/Center", settings.magnetCenter, 1);
    reader.Read("Magnet/Moment", settings.magnetMoment, 1);
    reader.Read("Magnet/Radius", settings.magnetRadius);
    settings.magnetRadius = std::max(settings.magnetRadius, kMinMagnetRadius);

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
