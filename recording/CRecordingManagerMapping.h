// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CDataSetMapping.h"
#include "CRecordingManager.h"

/// Recording manager of the mapping operation.
class CRecordingManagerMapping : public CRecordingManager
{
    Q_OBJECT
    Q_PROPERTY(CDataSetMapping* DataSet READ DataSet CONSTANT)

public:
    explicit CRecordingManagerMapping(const CSettings& settings, QObject* parent = nullptr);

    CDataSetMapping* DataSet() { return &m_dataSet; }
    const CDataSetMapping* DataSet() const { return &m_dataSet; }

public slots:
    void PlayNextStep() override;
    void ResetRecord() override;
    void Save(const QString& path) override;
    bool Load(const QString& path) override;
    /// Takes mapping blocks only; any other block is ignored.
    void AddMeasureBlock(QSharedPointer<CMeasureBlock> block) override;
    void OnDataSetCleared();
    void OnBodyCommentChanged();

signals:
    void ReplayMeasureBlock(QSharedPointer<CMeasureBlockMapping> block);

protected:
    QSharedPointer<CMeasureBlock> blockAt(int index) const override;

private:
    CDataSetMapping m_dataSet;
};
