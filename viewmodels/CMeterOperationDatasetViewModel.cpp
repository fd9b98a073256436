// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeterOperationDatasetViewModel.h"

CMeterOperationDatasetViewModel::CMeterOperationDatasetViewModel(CDataSetMeasurement* dataSet,
                                                                 CRecordingManager* recordingManager,
                                                                 QObject* parent)
    : QObject(parent), m_tableData(dataSet, recordingManager)
{
}
