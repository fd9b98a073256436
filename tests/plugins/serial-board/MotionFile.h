// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FieldVector.h"

#include <QByteArray>
#include <QString>
#include <QVector>

/// The first rows of the recording of a sensor that was moved by hand, in microtesla at 2000/7 Hz; empty
/// where it is not at hand.
QVector<FieldVector> readMotionFile(int count);

/// How a board prints a sample. `timeS` is its own clock.
using LineFormat = QByteArray (*)(const FieldVector& field, double timeS);

struct NamedFormat
{
    const char* name;
    LineFormat print;
    QByteArray head = {};         ///< printed once, at the start
    double microteslaPerUnit = 1; ///< of the numbers
    bool hasUnit = false;         ///< a line names it
    bool hasTime = false;         ///< a line has the time of the board
};

QVector<NamedFormat> allFormats();
