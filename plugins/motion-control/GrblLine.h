// SPDX-License-Identifier: MIT
#pragma once

#include "StagePlace.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// One line that a GRBL controller sent.
struct GrblLine
{
    enum class Kind {
        Other, ///< nothing that is known, such as a damaged line
        Ok,
        Error, ///< `number`
        Alarm, ///< `number`
        Banner,
        Status,  ///< `state`, `subState` and the places
        Setting, ///< `number` and `value`
        Options, ///< `text`, the letters of the build
        Message  ///< `text`, other lines in brackets
    };

    Kind kind = Kind::Other;
    int number = 0;
    double value = 0;
    QByteArray text;

    QByteArray state;  ///< such as "Idle", "Run", "Hold", "Alarm"
    int subState = -1; ///< of "Hold:0"; -1 if there is none
    // As reported: millimetres or inches.
    std::optional<StagePlace> machinePlace;
    std::optional<StagePlace> workPlace;
    std::optional<StagePlace> workOffset; ///< machine place less work place

    /// `line` is without its end.
    static GrblLine Parse(const QByteArray& line);
    /// What a code means, in a few words.
    static QString ErrorText(int number);
    static QString AlarmText(int number);
};
