// SPDX-License-Identifier: MIT
#pragma once

#include "CUnits.h"

#include <QString>
#include <QStringList>

#include <array>
#include <optional>

/// What the headings of a table say about its columns.
namespace ColumnHeading {

enum class TimeKind {
    Seconds,
    Milliseconds,
    Microseconds,
    Nanoseconds,
    DateTime, ///< recognised by its values, not by its heading
};

struct TimeColumn
{
    int index = -1;
    TimeKind kind = TimeKind::Seconds;
    bool isUtc = false; ///< the heading says that times are in UTC
};

struct FieldColumn
{
    int index = -1;
    CUnits::UnitType unit = CUnits::UNKNOWN;
};

struct Columns
{
    TimeColumn time;
    std::array<FieldColumn, 3> components;
    FieldColumn magnitude; ///< index -1 if there is none
};

/// Finds time, the three components and the magnitude. Components have a unit (T, mT, µT or uT, nT, G, kG,
/// mG) behind their name, as in "Bx_uT", "Bx (mT)" or "X [nT]"; those named by x, y, z come before u, v, w
/// and others. Nothing if there is no time or there are no three components.
std::optional<Columns> find(const QStringList& headings);

} // namespace ColumnHeading
