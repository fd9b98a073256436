// SPDX-License-Identifier: MIT
#pragma once

#include "CBoardLineParser.h"
#include "CUnits.h"

#include <QDate>
#include <QString>
#include <QVector>

/// The settings file of the serial boards, "KestrixSerialBoard.ini" in the per-user directory. Its keys are
/// told in docs/hardware.md; a missing key, or a missing file, leaves the default.
struct SerialBoardSettings
{
    // Port
    QString port;  ///< name or path; empty: the one chosen in the application
    int speed = 0; ///< baud; 0: the one chosen in the application
    double timeoutS = 6;

    // Board
    CUnits::UnitType unit = CUnits::UNKNOWN; ///< of values that name none
    double scale = 1;                        ///< multiplies every value, for boards that print counts
    QVector<CBoardLineParser::Column> columns;
    double range = 0;       ///< of the sensor, in the board's unit after scaling; 0 is unknown
    double uncertainty = 0; ///< likewise; 0: half of the last digit
    QString manufacturer;
    QString model;
    QDate calibrationDate;

    static QString FilePath();
    static SerialBoardSettings Load();
};
