// SPDX-License-Identifier: MIT
#pragma once

#include "StagePlace.h"

#include <QByteArray>

#include <optional>

/// One line that a Marlin controller sent.
struct MarlinLine
{
    enum class Kind {
        Other,
        Ok,
        Busy,            ///< it lives and is at work
        Resend,          ///< from line `number` on
        LineFault,       ///< a line came damaged or out of order; a Resend follows
        Error,           ///< `text`
        Start,           ///< it has just started
        NotHomed,        ///< it does not move before it is homed
        Place,           ///< `place`, where the last move ends
        MaxFeed,         ///< `place`, millimetres per second
        Limits,          ///< `place` and `upper`, if they are in force
        Firmware,        ///< `text`
        EmergencyParser, ///< `number` 1: stops are seen at once
    };

    Kind kind = Kind::Other;
    long number = 0;
    QByteArray text;
    StagePlace place{};
    StagePlace upper{};

    /// `line` is without its end.
    static MarlinLine Parse(const QByteArray& line);
    /// The line with its number and checksum, with the line feed.
    static QByteArray Numbered(long number, const QByteArray& line);
};
