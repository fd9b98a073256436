// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeasureBlockData.h"

#include <QObject>

/// Groups the models behind the meter page's table and plot.
class CMeterOperationDatasetViewModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(CMeasureBlockData* TableData READ TableData CONSTANT)

public:
    /// Dataset and recording manager must outlive the object.
    CMeterOperationDatasetViewModel(CDataSetMeasurement* dataSet, CRecordingManager* recordingManager,
                                    QObject* parent = nullptr);

    CMeasureBlockData* TableData() { return &m_tableData; }

private:
    CMeasureBlockData m_tableData;
};
