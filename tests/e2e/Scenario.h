// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DialogAnswers.h"
#include "WindowDriver.h"

#include <QQmlError>
#include <QString>
#include <QStringList>

#include <memory>

class CApplication;

/// One run of the whole program in the test's process: the real composition, QML, window and plug-in
/// libraries. The per-user directories are those of the environment; a process runs one scenario.
class Scenario
{
public:
    /// Which plug-ins there are: none, those that are shipped, or the instruments of these with a mapper of
    /// the tests, which does what its dynamic properties say.
    enum Plugins { None, Shipped, FakeMapper };

    Scenario();
    ~Scenario();

    /// Settings files that must be there before the start.
    static void WriteSimulationSettings(const QString& text);
    static void WriteReplaySettings(const QString& text);
    static void WriteMapperSettings(const QString& text);
    static void WriteSerialBoardSettings(const QString& text);
    static void WriteDefaultInstrument(const QString& name, const QString& serialNumber);
    static void WriteApplicationSettings(const QString& elements);
    static void WriteMeasureSettings(const QString& elements);
    static void WriteMappingSettings(const QString& measurement, const QString& mapping);

    /// Starts the program and waits for its window; returns how long it took in milliseconds.
    qint64 Start(Plugins plugins);
    /// Asks the window to close, as its frame does, and reports whether it did.
    bool CloseWindow();
    /// Ends the program as QApplication does when its last window has closed.
    void Quit();

    CApplication* Application() const { return m_application; }
    WindowDriver& Driver() { return *m_driver; }
    DialogAnswers& Answers() { return m_answers; }
    QObject* ActiveOperation() const;
    QObject* RecordingManager() const;
    QObject* PageViewModel() const;
    bool Flag(const char* name) const;
    /// QML warnings and unexpected dialogs so far.
    QStringList Problems() const;
    QString LogText() const;

private:
    CApplication* m_application = nullptr;
    std::unique_ptr<WindowDriver> m_driver;
    DialogAnswers m_answers;
    QStringList m_qmlWarnings;
    bool m_hasQuit = false;
};
