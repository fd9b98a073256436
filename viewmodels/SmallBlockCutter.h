// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeasureBlock.h"

#include <QSharedPointer>
#include <QVector>

/// Cuts a block into pieces that span `spanMs` milliseconds of recorded time each, so that a replay of long
/// blocks looks like a continuous measurement. A tail shorter than half a span stays with the last piece. The
/// pieces share the samples and carry comment and reference direction of the block. No pieces without
/// samples.
QVector<QSharedPointer<CMeasureBlock>> cutIntoSmallBlocks(const CMeasureBlock& block, qint64 spanMs);
