// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeterOperationDatasetViewModel.h"

#include "COperationMeasure.h"
#include "CRecordingManagerMeasure.h"

CMeterOperationDatasetViewModel::CMeterOperationDatasetViewModel(COperationMeasure* operation,
                                                                 CSettings* settings, QObject* parent)
    : QObject(parent), m_tableData(operation->RecordingManager()->DataSet(), operation->RecordingManager()),
      m_chart2DData(operation, settings)
{
}
