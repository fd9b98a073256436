// SPDX-License-Identifier: GPL-3.0-or-later
#include "CRecordingManagerMapping.h"

namespace {

constexpr int kEndOfReplayMs = 100;

} // namespace

CRecordingManagerMapping::CRecordingManagerMapping(const CSettings& settings, QObject* parent)
    : CRecordingManager(parent), m_dataSet(settings)
{
    using Self = CRecordingManagerMapping;
    connect(&m_dataSet, &CDataset::ClearedChanged, this, &Self::OnDataSetCleared);
    connect(this, &Self::BodyCommentChanged, this, &Self::OnBodyCommentChanged);
    SetIsOperationMeasure(false);
}

void CRecordingManagerMapping::PlayNextStep()
{
    if (advance()) {
        emit ReplayIndexChanged(ReplayIndex());
        // Whoever heard of the index may have emptied the dataset.
        if (ReplayIndex() >= 0 && static_cast<size_t>(ReplayIndex()) < m_dataSet.MeasureBlocks()->size())
            emit ReplayMeasureBlock(m_dataSet.MeasureBlocks()->at(static_cast<size_t>(ReplayIndex())));
    }
    if (isAtEndOfReplay())
        QTimer::singleShot(kEndOfReplayMs, this, &CRecordingManagerMapping::StopReplay);
}

void CRecordingManagerMapping::ResetRecord()
{
    beginRecord(m_dataSet);
}

void CRecordingManagerMapping::Save(const QString& path)
{
    saveDataset(path, m_dataSet, [this](CResultsSerializer& serializer, QIODevice* device) {
        return serializer.WriteMapping(m_dataSet, device);
    });
}

bool CRecordingManagerMapping::Load(const QString& path)
{
    return loadDataset(
        path, m_dataSet,
        [this](CResultsSerializer& serializer, QIODevice* device) {
            return serializer.ReadMapping(device, m_dataSet);
        },
        [this] { return static_cast<int>(m_dataSet.MeasureBlocks()->size()); });
}

void CRecordingManagerMapping::AddMeasureBlock(QSharedPointer<CMeasureBlock> block)
{
    const auto mappingBlock = block.objectCast<CMeasureBlockMapping>();
    if (!mappingBlock)
        return;
    prepareNewBlock(*mappingBlock);
    m_dataSet.AddBlock(mappingBlock);
    followNewBlock(static_cast<int>(m_dataSet.MeasureBlocks()->size()));
}

void CRecordingManagerMapping::OnDataSetCleared()
{
    SetIsDataSetEmpty(true);
    SetHasUnsavedData(false);
    followCleared();
}

void CRecordingManagerMapping::OnBodyCommentChanged()
{
    m_dataSet.SetComment(BodyComment());
}

QSharedPointer<CMeasureBlock> CRecordingManagerMapping::blockAt(int index) const
{
    return m_dataSet.MeasureBlocks()->at(static_cast<size_t>(index));
}
