// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Scenario.h"

#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>

/// A test whose functions are one run of the whole program each, in a process of its own. What they share is
/// here: a fresh scenario, the look at what went wrong, and the steps that many of them take.
class EndToEndTest : public QObject
{
    Q_OBJECT

protected:
    static const QString kQuitQuestion;
    static const QString kSimulated;

    Scenario& scenario() { return *m_scenario; }
    WindowDriver& driver() { return m_scenario->Driver(); }
    DialogAnswers& answers() { return m_scenario->Answers(); }
    int blocks() { return m_scenario->RecordingManager()->property("NumBlocks").toInt(); }

    void connectFirstInstrument();
    void openMeter();
    void startWithDefaultInstrument(Scenario::Plugins plugins = Scenario::Shipped);
    /// Records until there are so many blocks, and stops.
    void makeRecord(int count = 5);
    /// Saves the record under that name; returns its path, or nothing if that failed.
    QString saveRecord(const QString& name);
    /// Ends the work with the data on screen, and loads the record of so many blocks.
    void endAndLoad(const QString& path, int recorded);

private slots:
    void init();
    void cleanup();

private:
    std::unique_ptr<Scenario> m_scenario;
};

/// Runs a test of that kind as the program runs itself.
int runEndToEnd(int argc, char** argv, const std::function<std::unique_ptr<QObject>()>& make);

#define END_TO_END_MAIN(TestClass)                                                                           \
    int main(int argc, char** argv)                                                                          \
    {                                                                                                        \
        return runEndToEnd(argc, argv, [] { return std::make_unique<TestClass>(); });                        \
    }
