// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CBlockRecorder.h"

class CCheckRun;

/// What blocks of one measurement must be like.
struct BlockExpectation
{
    int blockSize = 0;
    double rate = 0;          ///< samples per second; 0 if unknown
    bool mayEndShort = false; ///< the last block may have fewer samples: the source had no more
};

/// Reports what is wrong with the blocks of one measurement, in the order of their emits.
void checkBlocks(CCheckRun& run, const QVector<RecordedBlock>& blocks, const BlockExpectation& expected);

/// Median of the finite magnitudes; not-a-number without any.
double medianMagnitude(const CMeasureBlock& block);
