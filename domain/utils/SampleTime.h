// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

class CTimestampableResult;

/// Time of a sample in milliseconds since the epoch. Some drivers give a sample a time in whole seconds and
/// the rest in the nanoseconds only; without milliseconds in the time those of the nanoseconds count.
qint64 millisecondsSinceEpoch(const CTimestampableResult& result);
