// SPDX-License-Identifier: MIT
#pragma once

#include "FieldVector.h"

#include <QDate>
#include <QString>

/// How a step of the instrument's life turns out.
enum class Outcome { Success, Failure, Exception };

/// The settings file of the simulated instrument, "KestrixSimulatedInstrument.ini" in the per-user directory.
/// Its keys are told in docs/simulated-instrument.md; a missing key, or a missing file, leaves the default.
/// Fields are in tesla here, in microtesla in the file.
struct SimulationSettings
{
    // Instruments
    int count = 1;
    QString serialNumber = QStringLiteral("SIM-0001"); ///< of the first one, the others count on
    QDate calibrationDate;                             ///< invalid: 90 days ago

    // Field
    FieldVector dc{20.9e-6, 1.8e-6, 44.1e-6};
    double acFrequency = 50;           ///< Hz
    FieldVector ac{0.6e-6, 0.8e-6, 0}; ///< peak of the fundamental on each axis
    FieldVector acThird{0.06e-6, 0.08e-6, 0};
    FieldVector acFifth{0.03e-6, 0, 0.04e-6};
    double rotatingAmplitude = 0.5e-6; ///< in the plane of X and Y
    double rotatingFrequency = 0.05;   ///< Hz
    FieldVector driftPerHour{50e-9, -30e-9, 20e-9};

    // Sensor
    double noise = 2e-5; ///< standard deviation of one raw reading as part of the range
    quint64 seed = 0;    ///< of the noise; 0: another one at each connection
    FieldVector offset{120e-9, -80e-9, 150e-9};
    double accuracyOfReading = 0.001;
    double accuracyOfRange = 0.0002;
    FieldVector bprime{0.6, 0.8, 0};
    bool estimateBprime = false; ///< B' is the direction in which the field of a block varies most

    // Magnet that a simulated mapper carries the probe around
    FieldVector magnetCenter{0, 0, -40}; ///< millimetres, in the frame of the mapper
    FieldVector magnetMoment{0, 0, 0.8}; ///< A m^2
    double magnetRadius = 6;             ///< millimetres

    // Calibration
    int calibrationMs = 1000;
    FieldVector chamberField; ///< what remains in the zero-field chamber

    // Misbehaviour
    int connectDelayMs = 0;
    Outcome connect = Outcome::Success;
    Outcome disconnect = Outcome::Success;
    double vanishAfterS = 0; ///< after a connection; 0 is never
    double returnAfterS = 0; ///< after it vanished; 0 is never
    int emptyBlockEvery = 0; ///< every n-th block of a run is empty; 0 is none
    int nanBlockEvery = 0;   ///< every n-th block of a run is not-a-number; 0 is none
    double burstIntervalS = 0;
    double burstLengthS = 0;

    static QString FilePath();
    static SimulationSettings Load();
};
