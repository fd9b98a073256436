// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CRecordingManagerMapping.h"
#include "CRecordingManagerMeasure.h"
#include "RecordTestSupport.h"

#include <QSignalSpy>
#include <QVector>

namespace ReplayTestSupport {

/// Milliseconds of the day at which the first block begins.
constexpr int kStartMs = 36000000;

/// Managers with what they do not show.
class MeasureManager : public CRecordingManagerMeasure
{
public:
    using CRecordingManager::BlockWaitCount;
    using CRecordingManager::RemainingTimeAtPause;
    using CRecordingManager::ReplayTimer;
    using CRecordingManagerMeasure::CRecordingManagerMeasure;
    using CRecordingManagerMeasure::EndOfReplayTimer;
    using CRecordingManagerMeasure::EndWaitCount;
};

class MappingManager : public CRecordingManagerMapping
{
public:
    using CRecordingManager::ReplayTimer;
    using CRecordingManagerMapping::CRecordingManagerMapping;
};

/// A finished record of blocks `spacingMs` apart, of three samples 10 ms apart each.
template <class Manager, class Block = CMeasureBlock> void fill(Manager& manager, int blocks, int spacingMs)
{
    for (int i = 0; i < blocks; ++i)
        manager.AddMeasureBlock(RecordTestSupport::blockOf<Block>(3, kStartMs + i * spacingMs));
    manager.SetEndReplayIndex(blocks - 1);
    manager.StopRecord();
}

/// A view that is done with each block at once.
template <class Manager> void finishAtOnce(Manager& manager)
{
    QObject::connect(&manager, &Manager::ReplayMeasureBlock, &manager,
                     [&manager] { manager.SetIsProcessingBlock(false); });
}

/// What a signal with an index told.
inline QVector<int> indicesOf(const QSignalSpy& spy)
{
    QVector<int> indices;
    for (const auto& arguments : spy)
        indices << arguments[0].toInt();
    return indices;
}

} // namespace ReplayTestSupport
