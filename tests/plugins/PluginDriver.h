// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CInstrument.h"
#include "CInstrumentPlugin.h"
#include "CTriggerPlugin.h"

#include <QByteArray>
#include <QLibrary>
#include <QObject>
#include <QSharedPointer>
#include <QVector>

#include <memory>

/// Nanoseconds since 1970 of a sample, from its whole seconds and its nanoseconds.
qint64 epochNs(const CFieldIntensityResult& result);

/// Writes `text` as a settings file of a plug-in into the per-user directory.
void writeSettings(const QString& fileName, const QByteArray& text);
void removeSettings(const QString& fileName);

/// Threads of this process; -1 where that cannot be known.
int threadCount();

/// A plug-in library, used as the application uses it.
class PluginDriver
{
public:
    explicit PluginDriver(const QString& path);
    ~PluginDriver();

    /// Loads, starts, and waits for the first list.
    bool Start();
    QString ErrorString() const { return m_library.errorString(); }
    CInstrumentPlugin* Plugin() const { return m_plugin.get(); }
    CInstrumentListProvider* Provider() const { return m_provider; }
    QList<QSharedPointer<CInstrument>> Instruments() const { return m_provider->GetInstrumentList(); }
    /// Null if there is none with this number.
    QSharedPointer<CInstrument> Instrument(const QString& serialNumber) const;

private:
    QLibrary m_library;
    std::unique_ptr<CInstrumentPlugin> m_plugin;
    CInstrumentListProvider* m_provider = nullptr;
};

/// Parameters of one operation and all blocks that come.
class Session : public QObject
{
    Q_OBJECT

public:
    explicit Session(const QSharedPointer<CInstrument>& instrument);
    ~Session() override;

    /// Sets several parameters as one.
    void Configure(CTrigger::TriggerMode mode, double acquisitionRate, int blockSize, double displayRate);
    QVector<QSharedPointer<CFieldIntensityResult>> Samples() const;

    QSharedPointer<CInstrument> instrument;
    CMeasurementParameters parameters;
    QVector<QSharedPointer<CMeasureBlock>> blocks;
};

/// A trigger source that fires when the test says so.
class FakeTrigger : public CTriggerPlugin
{
    Q_OBJECT

public:
    void Start() override {}
    void Stop() override {}
    void Shutdown() override {}
};
