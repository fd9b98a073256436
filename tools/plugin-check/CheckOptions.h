// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

/// What the command line asks for.
struct CheckOptions
{
    QString pluginPath;
    QString kind; ///< "instrument", "mapper", "trigger"; empty: by the factories that the library exports
    bool isJson = false;
    bool isStrict = false;  ///< warnings count as violations
    bool isVerbose = false; ///< shows the plug-in's own output and how long its calls took
    bool isListingCodes = false;
    int timeLimitMs = 120000; ///< of the whole check
    int callLimitMs = 30000;  ///< a call that takes longer hangs
    int slowMs = 200;         ///< a call longer than this blocks the main thread
    int slowConnectMs = 10000;
    int waitMs = 5000;    ///< for a signal that must come
    int numBlocks = 4;    ///< of each trigger mode
    QString serialNumber; ///< checks only this instrument; empty: all
    QString serialPort;
    int baudRate = 9600;
    bool isCalibrating = false; ///< calibrates and restores the zero offset, too
    double step = 1;            ///< how far a stop-and-go mapper is moved, in its length unit

    QString journalPath; ///< of the process that loads the plug-in; empty in the one that watches it

    enum class Outcome { Check, Exit, Fail };

    /// Reads the arguments, the program's name first. Exit: `text` is to be printed, and that is all. Fail:
    /// `text` says what is wrong with them.
    Outcome Parse(const QStringList& arguments, QString& text);
};
