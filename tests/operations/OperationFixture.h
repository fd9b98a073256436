// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CFakeInstrumentListProvider.h"
#include "CFakeTriggerPlugin.h"
#include "CInstrumentSupervisor.h"
#include "COperation.h"
#include "CPluginsManager.h"
#include "CSettings.h"

#include <QStringList>
#include <QTemporaryDir>

/// What an operation needs around it: a settings directory without files, two listed instruments "1" and "2",
/// none of them connected, and no plug-ins.
class OperationFixture
{
public:
    OperationFixture();
    ~OperationFixture();

    QSharedPointer<CFakeInstrument> instrument(int index) const { return provider.Instruments().at(index); }
    void connectInstrument(int index);
    /// Writes a file of the test and answers its path.
    QString write(const QString& name, const QByteArray& content) const;

    static QString settingsFilePath();
    static QByteArray readFile(const QString& path);

    QTemporaryDir directory;
    CSettings settings;
    CPluginsManager plugins;
    CFakeInstrumentListProvider provider;
    CInstrumentSupervisor supervisor;
};

/// The least operation that there can be; records its calls.
class CTestOperation : public COperation
{
    Q_OBJECT

public:
    explicit CTestOperation(CInstrumentSupervisor* supervisor, const QString& name = QStringLiteral("Test"));

    quint64 GetMaxMeasurementCount() const override { return 7; }
    void Activate() override { calls.append(QStringLiteral("Activate")); }
    void Deactivate() override { calls.append(QStringLiteral("Deactivate")); }
    void StopSession() override;
    void Reset() override { calls.append(QStringLiteral("Reset")); }
    bool GetUnsavedData() const override { return hasUnsavedData; }
    bool GetDataSetEmpty() const override { return true; }
    const QList<CTriggerPlugin*>& GetTriggerPlugins() const override { return triggerPlugins; }
    void SaveExtraParameters(QXmlStreamWriter& writer) const override;
    void LoadExtraParameters(const QDomElement& element) override;

    CMeasurementParameters& measurement() { return *OperationParameters()->MeasurementParameters(); }

    QStringList calls;
    QStringList extraElements;
    bool hasUnsavedData = false;
    QList<CTriggerPlugin*> triggerPlugins;
};
