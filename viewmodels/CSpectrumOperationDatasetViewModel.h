// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2DSpectrumData.h"
#include "CFrequencyPeakListData.h"

#include <QObject>

class COperationMeasure;

/// Groups the models behind the spectrum page's plot and table.
class CSpectrumOperationDatasetViewModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(CChart2DSpectrumData* FFTChart2DData READ FFTChart2DData CONSTANT)
    Q_PROPERTY(CFrequencyPeakListData* TableData READ TableData CONSTANT)

public:
    /// The operation must outlive the object.
    explicit CSpectrumOperationDatasetViewModel(COperationMeasure* operation, QObject* parent = nullptr);

    CChart2DSpectrumData* FFTChart2DData() { return &m_chart; }
    CFrequencyPeakListData* TableData() { return &m_table; }

private:
    CChart2DSpectrumData m_chart;
    CFrequencyPeakListData m_table;
};
