// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CFieldIntensityResult.h"
#include "CMeasureBlock.h"
#include "CMeasureBlockMapping.h"

#include <QAbstractTableModel>
#include <QSharedPointer>
#include <QVector>

#include <array>
#include <deque>

class CDataSetMapping;
class CDataSetMeasurement;
class CRecordingManager;

/// The rows of the results table: the samples of the block on screen in the measure operations, the last
/// sample of each block in the mapping operation. Live data is read from the dataset, replayed data from rows
/// that the model keeps. The columns of the view pick a role each; the column index has no meaning.
class CMeasureBlockData : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Role {
        TimestampRole = Qt::UserRole + 1, ///< date and time with nine decimals of the second
        BRole,
        dBRole, ///< uncertainty as converted for display
        BBprimeRole,
        BxRole,
        ByRole,
        BzRole,
        TRole, ///< temperature in ADC counts
        XRole, ///< position and orientation exist in mapping only
        YRole,
        ZRole,
        RollRole,
        PitchRole,
        YawRole
    };
    Q_ENUM(Role)

    /// For the measure operations. Starts with the block that the page opens on, if there is one. Dataset and
    /// manager must outlive the model.
    CMeasureBlockData(CDataSetMeasurement* dataSet, CRecordingManager* recordingManager,
                      QObject* parent = nullptr);
    /// For the mapping operation; starts without rows.
    CMeasureBlockData(CDataSetMapping* dataSet, CRecordingManager* recordingManager,
                      QObject* parent = nullptr);

    QHash<int, QByteArray> roleNames() const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    /// Removes all rows.
    void Clear();
    /// Adds a row for each sample of the block. For the measure operations.
    void AddBlock(const QSharedPointer<CMeasureBlock>& block);
    /// Adds a row for the block's last sample and drops the rows of blocks that left the dataset. For the
    /// mapping operation.
    void AddMappingBlock(const QSharedPointer<CMeasureBlockMapping>& block);
    /// Adds the first `count` blocks as `AddMappingBlock` does one, and tells the views of all rows at once.
    void AddMappingBlocks(const std::deque<QSharedPointer<CMeasureBlockMapping>>& blocks, std::size_t count);
    /// Makes the views read all rows again.
    void ReloadRows();

private:
    using ResultPointer = QSharedPointer<CFieldIntensityResult>;

    /// Where a block was taken, as plain numbers: one for each role from XRole to YawRole.
    using Pose = std::array<double, 6>;

    static Pose poseOf(const CMeasureBlockMapping& block);
    void beginMappingRows(int count);
    void appendToOwnList(const CMeasureBlockMapping& block);
    void endMappingRows(int count);
    void dropRowsOfLostBlocks(int rowsToCome);
    ResultPointer resultAt(int row) const;
    QVariant poseValueAt(int row, int role) const;

    CDataSetMeasurement* const m_measurementDataSet = nullptr;
    CDataSetMapping* const m_mappingDataSet = nullptr;
    CRecordingManager* const m_recordingManager;
    QVector<ResultPointer> m_ownResults;
    QVector<Pose> m_ownPoses; ///< parallel to the results, in mapping only
    bool m_useOwnList = false;
    const bool m_isMapping;
    int m_rowCount = 0;
};
