// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2DMappingData.h"
#include "CMeasureBlockData.h"

#include <QObject>

class COperationMapping;
class CSettings;

/// Groups the models behind the mapping page's table and plot.
class CMappingOperationDatasetViewModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(CChart2DMappingData* Chart2DData READ Chart2DData CONSTANT)
    Q_PROPERTY(CMeasureBlockData* TableData READ TableData CONSTANT)

public:
    /// Operation and settings must outlive the object.
    CMappingOperationDatasetViewModel(COperationMapping* operation, CSettings* settings,
                                      QObject* parent = nullptr);

    CChart2DMappingData* Chart2DData() { return &m_chart2DData; }
    CMeasureBlockData* TableData() { return &m_tableData; }

private:
    CChart2DMappingData m_chart2DData;
    CMeasureBlockData m_tableData;
};
