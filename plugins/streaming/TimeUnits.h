// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

inline constexpr qint64 kNsPerSecond = 1000000000;
inline constexpr qint64 kNsPerMs = 1000000;
