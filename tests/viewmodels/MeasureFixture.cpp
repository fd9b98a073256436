// SPDX-License-Identifier: GPL-3.0-or-later
#include "MeasureFixture.h"

#include <QCoreApplication>

FakeInstrument::FakeInstrument()
{
    SetModel(QStringLiteral("Probe 2040 B"));
    SetSerialNumber(QStringLiteral("SN-17"));
}

void FakeInstrument::SendTrigger()
{
    calls.append(QStringLiteral("trigger"));
}

bool FakeInstrument::Connect()
{
    SetIsConnected(true);
    return true;
}

void FakeInstrument::Disconnect()
{
    SetIsConnected(false);
}

void FakeInstrument::StartMeasurement()
{
    calls.append(QStringLiteral("start"));
    SetIsRunning(true);
}

void FakeInstrument::StopMeasurement()
{
    calls.append(QStringLiteral("stop"));
    SetIsRunning(false);
}

void FakeInstrument::CalibrateZeroOffset(bool forceCalibration)
{
    calls.append(forceCalibration ? QStringLiteral("calibrate forced") : QStringLiteral("calibrate"));
}

void FakeInstrument::RestoreZeroOffsetToFactory()
{
    calls.append(QStringLiteral("restore"));
}

void FakeNotifier::ShowTrayMessage(const QString& title, const QString& text)
{
    calls.append(title + QLatin1Char('|') + text);
}

void FakeNotifier::Beep()
{
    calls.append(QStringLiteral("beep"));
}

QSharedPointer<CMeasureBlock> makeBlock(const QVector<Sample>& samples, const QString& comment)
{
    const QDateTime start(QDate(2024, 5, 17), QTime(10, 0));
    auto block = QSharedPointer<CMeasureBlock>::create();
    block->SetComment(comment);
    for (const Sample& values : samples) {
        auto sample = QSharedPointer<CFieldIntensityResult>::create();
        sample->Timestamp = start.addMSecs(values.timeMs);
        sample->TimestampNanoseconds = quint32(values.timeMs % 1000) * 1000000U;
        sample->SetBx(values.bx);
        sample->SetBy(values.by);
        sample->SetBz(values.bz);
        sample->SetB(values.b);
        sample->SetBBprime(values.bbPrime);
        sample->SetDB(values.dB);
        block->Results.append(sample);
    }
    return block;
}

QSharedPointer<CMeasureBlock> makeRamp(int first, int count, int startMs, int stepMs)
{
    QVector<Sample> samples;
    for (int i = 0; i < count; ++i) {
        Sample sample;
        sample.b = float(first + i);
        sample.bz = sample.b;
        sample.timeMs = startMs + i * stepMs;
        samples.append(sample);
    }
    return makeBlock(samples);
}

MeasureFixture::MeasureFixture()
    : settings(QCoreApplication::applicationDirPath()), pluginsManager(settings), supervisor(&settings),
      operation(&settings, &pluginsManager, &supervisor)
{
    settings.SetDefaultStoragePath(directory.path());
    supervisor.AddInstrumentListProvider(&provider);
    parameters().SetUnits(CUnits::MICRO_TESLA);
    parameters().SetDisplayUnits(CUnits::MICRO_TESLA);
    parameters().SetUncertaintyUnits(CUnits::MICRO_TESLA);
    parameters().SetTriggerMode(CTrigger::CONTINUOUS);
}

QSharedPointer<FakeInstrument> MeasureFixture::connectInstrument()
{
    const auto instrument = QSharedPointer<FakeInstrument>::create();
    provider.instruments = {instrument};
    emit provider.InstrumentListUpdated();
    supervisor.SetActiveInstrument(instrument);
    return instrument;
}

QString MeasureFixture::writeRecord()
{
    CRecordingManagerMeasure writer(settings);
    CMeasurementParameters gauss;
    gauss.SetUnits(CUnits::GAUSS);
    gauss.SetBlockSize(2);
    writer.DataSet()->SetMeasurementParameters(&gauss);
    for (int i = 0; i < 3; ++i)
        writer.AddMeasureBlock(makeRamp(10 * i, 2, 100 * i, 10));
    writer.SetBodyComment(QStringLiteral("from file"));
    const QString path = directory.filePath(QStringLiteral("record.xml"));
    writer.Save(path);
    return path;
}
