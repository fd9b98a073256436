// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2DAcAnalysisData.h"
#include "CFrequencyTableData.h"

#include <QObject>

class COperationMeasure;
class CUserNotifier;

/// Groups the models behind the AC analysis page's table and plot.
class CAcAnalysisOperationDatasetViewModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(CFrequencyTableData* TableData READ TableData CONSTANT)
    Q_PROPERTY(CChart2DAcAnalysisData* Chart2DData READ Chart2DData CONSTANT)

public:
    /// Operation and notifier must outlive the object.
    CAcAnalysisOperationDatasetViewModel(COperationMeasure* operation, CUserNotifier* notifier,
                                         QObject* parent = nullptr);

    CFrequencyTableData* TableData() { return &m_table; }
    CChart2DAcAnalysisData* Chart2DData() { return &m_chart; }

private:
    CFrequencyTableData m_table;
    CChart2DAcAnalysisData m_chart;
};
