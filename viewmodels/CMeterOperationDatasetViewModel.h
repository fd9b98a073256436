// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2DMeterData.h"
#include "CMeasureBlockData.h"

#include <QObject>

class COperationMeasure;
class CSettings;

/// Groups the models behind the meter page's table and plot.
class CMeterOperationDatasetViewModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(CMeasureBlockData* TableData READ TableData CONSTANT)
    Q_PROPERTY(CChart2DMeterData* Chart2DData READ Chart2DData CONSTANT)

public:
    /// Operation and settings must outlive the object.
    CMeterOperationDatasetViewModel(COperationMeasure* operation, CSettings* settings,
                                    QObject* parent = nullptr);

    CMeasureBlockData* TableData() { return &m_tableData; }
    CChart2DMeterData* Chart2DData() { return &m_chart2DData; }

private:
    CMeasureBlockData m_tableData;
    CChart2DMeterData m_chart2DData;
};
