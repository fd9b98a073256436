// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "COrientation.h"
#include "CPosition.h"

#include <QObject>
#include <QString>
#include <QVariant>

/// How a fake plug-in behaves is told by dynamic properties. Whoever cannot reach the object before it starts
/// puts them into the environment variable KESTRIX_FAKE, "key=value;key=value": each fake plug-in sets them
/// on itself when it is made. An option is read each time it is needed, so that it may change meanwhile.
///
/// | option           | value                                                            | default |
/// |------------------|------------------------------------------------------------------|---------|
/// | serialNumbers    | comma-separated serial numbers of the instruments                | FAKE-1  |
/// | announceAtStart  | 0 or 1: the first list update follows Start(), queued            | 1       |
/// | threaded         | 0 or 1: blocks and list updates are emitted from another thread  | 0       |
/// | renewObjects     | 0 or 1: each call for the list makes new objects                 | 0       |
/// | connect          | ok, false, throw (a std::exception), throwInt                    | ok      |
/// | disconnect       | ok, throw, throwInt                                              | ok      |
/// | connectDelayMs   | how long Connect() blocks                                        | 0       |
/// | vanishAfterMs    | a connected instrument leaves the list after this time; 0: never | 0       |
/// | blockCount       | blocks that follow a StartMeasurement(); -1: without end         | 0       |
/// | blockIntervalMs  | pause between two blocks                                         | 10      |
/// | samplesPerBlock  |                                                                  | 10      |
/// | units            | comma-separated unit texts; "none" for an empty list             | all     |
/// | triggerName      | Name of the trigger plug-in                                      | Fake trigger |
/// | mapperName       | Name of the mapper plug-in                                       | Fake mapper  |
/// | mapperType       | MapperType, which need not be true                               | true    |
/// | ready            | Ready after a MoveTo(): once, twice, never, thread (from another | once    |
/// |                  | one), vanish (the mapper is deleted instead)                     |         |
///
/// The dynamic property "calls" of a fake holds the names of the calls that it got, in their order, and
/// "places" the places that a mapper was sent to. If the application has the dynamic property "journal", the
/// calls of all fakes are added to it, with the object name in front.
namespace FakeOptions {

/// Sets the options of the environment on a plug-in.
void takeFromEnvironment(QObject& plugin);

/// The option of the first of the two objects that has it, or `fallback`.
QVariant value(const QObject* object, const QObject* plugin, const char* key, const QVariant& fallback);

void recordCall(QObject& fake, const QString& call);

/// "X Y Z Roll Pitch Yaw".
QString placeText(const CPosition& position, const COrientation& orientation);
void recordPlace(QObject& mapper, const CPosition& position, const COrientation& orientation);

} // namespace FakeOptions
