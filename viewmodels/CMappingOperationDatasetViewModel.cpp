// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMappingOperationDatasetViewModel.h"

#include "COperationMapping.h"
#include "CRecordingManagerMapping.h"

CMappingOperationDatasetViewModel::CMappingOperationDatasetViewModel(COperationMapping* operation,
                                                                     CSettings* settings, QObject* parent)
    : QObject(parent), m_chart2DData(operation, settings),
      m_tableData(operation->RecordingManager()->DataSet(), operation->RecordingManager())
{
}
