// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CInstrument.h"
#include "CInstrumentListProvider.h"
#include "CInstrumentSupervisor.h"
#include "CMeasureBlock.h"
#include "CMeasurementParameters.h"
#include "COperationMeasure.h"
#include "CPluginsManager.h"
#include "CRecordingManagerMeasure.h"
#include "CSettings.h"
#include "CUserNotifier.h"

#include <QSharedPointer>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>

/// An instrument that writes down what it is asked for.
class FakeInstrument : public CInstrument
{
    Q_OBJECT

public:
    FakeInstrument();

    QStringList calls;

    void SendTrigger() override;
    bool Connect() override;
    void Disconnect() override;
    void StartMeasurement() override;
    void StopMeasurement() override;
    void CalibrateZeroOffset(bool forceCalibration) override;
    void RestoreZeroOffsetToFactory() override;
};

class FakeInstrumentListProvider : public CInstrumentListProvider
{
    Q_OBJECT

public:
    QList<QSharedPointer<CInstrument>> instruments;

    QList<QSharedPointer<CInstrument>> GetInstrumentList() override { return instruments; }
    void SetSerialPortSettings(QString, int) override {}
};

/// Writes down what the user is told.
class FakeNotifier : public CUserNotifier
{
public:
    void ShowTrayMessage(const QString& title, const QString& text) override;
    void Beep() override;

    QStringList calls; ///< "title|text" of tray messages, and "beep", in their order
};

/// The values of a sample; the components in the order x, y, z.
struct Sample
{
    float bx = 0;
    float by = 0;
    float bz = 0;
    float b = 0;
    float bbPrime = 0;
    float dB = 0;
    int timeMs = 0;
};

QSharedPointer<CMeasureBlock> makeBlock(const QVector<Sample>& samples, const QString& comment = QString());
/// Samples of rising time whose B is first, first + 1 and so on.
QSharedPointer<CMeasureBlock> makeRamp(int first, int count, int startMs, int stepMs);

/// A measure operation with all that it needs, live unit microtesla, and a folder for files.
struct MeasureFixture
{
    MeasureFixture();

    /// Makes a fake instrument the active one.
    QSharedPointer<FakeInstrument> connectInstrument();
    CMeasurementParameters& parameters() { return *operation.OperationParameters()->MeasurementParameters(); }
    CRecordingManagerMeasure& manager() { return *operation.RecordingManager(); }
    CDataSetMeasurement& dataSet() { return *manager().DataSet(); }
    /// Writes a record of three blocks of two samples in gauss, comment "from file", and returns its path.
    QString writeRecord();

    QTemporaryDir directory;
    FakeNotifier notifier;
    CSettings settings;
    CPluginsManager pluginsManager;
    FakeInstrumentListProvider provider;
    CInstrumentSupervisor supervisor;
    COperationMeasure operation;
};
