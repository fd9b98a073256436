// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeasureBlockData.h"

#include "CDataSetMapping.h"
#include "CDataSetMeasurement.h"
#include "CRecordingManager.h"

#include <QLocale>

#include <algorithm>

namespace {

constexpr int kColumnCount = 7;

template <class Blocks> auto blockAt(const Blocks& blocks, int index)
{
    return blocks.at(static_cast<std::size_t>(index));
}

QString timestampText(const CFieldIntensityResult& result)
{
    return QLocale::c().toString(result.Timestamp, QStringLiteral("yyyy.MM.ddTHH:mm:ss")) +
           QStringLiteral(".%1").arg(result.TimestampNanoseconds, 9, 10, QLatin1Char('0'));
}

bool isPoseRole(int role)
{
    return role >= CMeasureBlockData::XRole && role <= CMeasureBlockData::YawRole;
}

} // namespace

CMeasureBlockData::CMeasureBlockData(CDataSetMeasurement* dataSet, CRecordingManager* recordingManager,
                                     QObject* parent)
    : QAbstractTableModel(parent), m_measurementDataSet(dataSet), m_recordingManager(recordingManager),
      m_isMapping(false)
{
    Q_ASSERT(dataSet);
    const auto& blocks = *dataSet->MeasureBlocks();
    if (blocks.empty())
        return;
    const int replayIndex = m_recordingManager->ReplayIndex();
    const bool isReplayed = m_recordingManager->IsPlayingBack() && replayIndex >= 0 &&
                            static_cast<std::size_t>(replayIndex) < blocks.size();
    AddBlock(isReplayed ? blockAt(blocks, replayIndex) : blocks.back());
}

CMeasureBlockData::CMeasureBlockData(CDataSetMapping* dataSet, CRecordingManager* recordingManager,
                                     QObject* parent)
    : QAbstractTableModel(parent), m_mappingDataSet(dataSet), m_recordingManager(recordingManager),
      m_isMapping(true)
{
}

QHash<int, QByteArray> CMeasureBlockData::roleNames() const
{
    return {{TimestampRole, "Timestamp"},
            {BRole, "B"},
            {dBRole, "dB"},
            {BBprimeRole, "BBprime"},
            {BxRole, "Bx"},
            {ByRole, "By"},
            {BzRole, "Bz"},
            {TRole, "T"},
            {XRole, "X"},
            {YRole, "Y"},
            {ZRole, "Z"},
            {RollRole, "Roll"},
            {PitchRole, "Pitch"},
            {YawRole, "Yaw"}};
}

int CMeasureBlockData::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rowCount;
}

int CMeasureBlockData::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : kColumnCount;
}

QVariant CMeasureBlockData::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_rowCount)
        return {};
    if (isPoseRole(role))
        return poseValueAt(index.row(), role);
    if (role < TimestampRole || role > TRole)
        return {};

    const ResultPointer result = resultAt(index.row());
    if (result.isNull())
        return {};
    switch (role) {
    case TimestampRole:
        return timestampText(*result);
    case BRole:
        return result->B();
    case dBRole:
        return result->dBConverted();
    case BBprimeRole:
        return result->BBprime();
    case BxRole:
        return result->Bx();
    case ByRole:
        return result->By();
    case BzRole:
        return result->Bz();
    default:
        return static_cast<int>(result->Temperature());
    }
}

CMeasureBlockData::ResultPointer CMeasureBlockData::resultAt(int row) const
{
    if (m_useOwnList)
        return m_ownResults.value(row);

    if (m_isMapping) {
        const auto& blocks = *m_mappingDataSet->MeasureBlocks();
        if (static_cast<std::size_t>(row) >= blocks.size())
            return {};
        const QSharedPointer<CMeasureBlockMapping> block = blockAt(blocks, row);
        return block->Results.isEmpty() ? ResultPointer() : block->Results.last();
    }

    // The rows are those of the newest block only.
    const auto& blocks = *m_measurementDataSet->MeasureBlocks();
    return blocks.empty() ? ResultPointer() : blocks.back()->Results.value(row);
}

QVariant CMeasureBlockData::poseValueAt(int row, int role) const
{
    if (!m_isMapping)
        return {};
    const auto valueIndex = static_cast<std::size_t>(role - XRole);
    if (m_useOwnList)
        return row < m_ownPoses.size() ? QVariant(m_ownPoses.at(row).at(valueIndex)) : QVariant();
    const auto& blocks = *m_mappingDataSet->MeasureBlocks();
    if (static_cast<std::size_t>(row) >= blocks.size())
        return {};
    return poseOf(*blockAt(blocks, row)).at(valueIndex);
}

CMeasureBlockData::Pose CMeasureBlockData::poseOf(const CMeasureBlockMapping& block)
{
    return {{block.Position.X(), block.Position.Y(), block.Position.Z(), block.Orientation.Roll(),
             block.Orientation.Pitch(), block.Orientation.Yaw()}};
}

void CMeasureBlockData::Clear()
{
    const bool hadRows = m_rowCount > 0;
    if (hadRows)
        beginRemoveRows(QModelIndex(), 0, m_rowCount - 1);
    m_ownResults.clear();
    m_ownPoses.clear();
    m_useOwnList = false;
    m_rowCount = 0;
    if (hadRows)
        endRemoveRows();
}

void CMeasureBlockData::AddBlock(const QSharedPointer<CMeasureBlock>& block)
{
    m_useOwnList = m_recordingManager->IsPlayingBack() || m_recordingManager->IsDataLoaded() ||
                   (!m_recordingManager->IsRecording() && m_recordingManager->IsIdleWithData());
    if (block->Results.isEmpty())
        return;
    beginInsertRows(QModelIndex(), m_rowCount, m_rowCount + block->Results.size() - 1);
    if (m_useOwnList)
        m_ownResults += block->Results;
    m_rowCount += block->Results.size();
    endInsertRows();
}

void CMeasureBlockData::AddMappingBlock(const QSharedPointer<CMeasureBlockMapping>& block)
{
    beginMappingRows(1);
    appendToOwnList(*block);
    endMappingRows(1);
}

void CMeasureBlockData::AddMappingBlocks(const std::deque<QSharedPointer<CMeasureBlockMapping>>& blocks,
                                         std::size_t count)
{
    const auto rows = static_cast<int>(std::min(count, blocks.size()));
    if (rows == 0)
        return;
    beginMappingRows(rows);
    std::for_each(blocks.begin(), blocks.begin() + rows,
                  [this](const QSharedPointer<CMeasureBlockMapping>& block) { appendToOwnList(*block); });
    endMappingRows(rows);
}

void CMeasureBlockData::beginMappingRows(int count)
{
    m_useOwnList = m_recordingManager->IsPlayingBack();
    if (!m_useOwnList)
        dropRowsOfLostBlocks(count);
    beginInsertRows(QModelIndex(), m_rowCount, m_rowCount + count - 1);
}

void CMeasureBlockData::appendToOwnList(const CMeasureBlockMapping& block)
{
    if (!m_useOwnList)
        return;
    m_ownResults.append(block.Results.isEmpty() ? ResultPointer() : block.Results.last());
    m_ownPoses.append(poseOf(block));
}

void CMeasureBlockData::endMappingRows(int count)
{
    m_rowCount += count;
    endInsertRows();
}

void CMeasureBlockData::dropRowsOfLostBlocks(int rowsToCome)
{
    Q_ASSERT(m_mappingDataSet);
    // The dataset holds the new blocks already, while their rows are still to come.
    const auto surplus =
        rowsToCome - (static_cast<int>(m_mappingDataSet->MeasureBlocks()->size()) - m_rowCount);
    const int count = std::min(m_rowCount, surplus);
    if (count <= 0)
        return;
    beginRemoveRows(QModelIndex(), 0, count - 1);
    m_rowCount -= count;
    endRemoveRows();
}

void CMeasureBlockData::ReloadRows()
{
    if (m_rowCount == 0)
        return;
    const int rowCount = m_rowCount;
    beginRemoveRows(QModelIndex(), 0, rowCount - 1);
    m_rowCount = 0;
    endRemoveRows();
    beginInsertRows(QModelIndex(), 0, rowCount - 1);
    m_rowCount = rowCount;
    endInsertRows();
}
