// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "LogRecorder.h"
#include "PatientWait.h"
#include "PluginDriver.h"

#include <QByteArray>
#include <QSharedPointer>
#include <QString>

#include <functional>
#include <memory>

/// Of the fake magnetometer, in microtesla: 0.000146 gauss.
constexpr double kCount = 0.0146;

/// The plug-in under test with its settings, its log and the sessions with its instruments.
class IioBench
{
public:
    /// `settings` is the text of the settings file.
    explicit IioBench(const QByteArray& settings = {});
    ~IioBench();

    PluginDriver& Driver() { return *m_driver; }
    CInstrumentListProvider* Provider() const { return m_driver->Provider(); }
    /// The first instrument listed; null if none comes.
    QSharedPointer<CInstrument> Listed(int count = 1);
    /// Whether a text of the log, at any level, has this in it.
    bool HasLogged(const char* text) const;
    QString Log() const { return m_log.Messages().join(QLatin1Char('\n')); }
    /// Ends the plug-in as the program does, and lets its instruments go.
    void Unload();

private:
    LogRecorder m_log;
    std::unique_ptr<PluginDriver> m_driver;
};

/// Scan `number` of the fake magnetometer: the counts number, -number and 1000 + number.
QByteArray countingScan(int number);

/// Whether two field values are the same but for their single precision.
bool isNear(double value, double expected);

/// The number of the first of the scans that the samples are, in microtesla, if they are scans that follow
/// one another without a loss; -1 if they are not.
int firstCountingScan(const QVector<QSharedPointer<CFieldIntensityResult>>& samples, double count = kCount);
