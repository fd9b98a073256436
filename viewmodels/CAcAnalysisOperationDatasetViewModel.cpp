// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAcAnalysisOperationDatasetViewModel.h"

CAcAnalysisOperationDatasetViewModel::CAcAnalysisOperationDatasetViewModel(COperationMeasure* operation,
                                                                           CUserNotifier* notifier,
                                                                           QObject* parent)
    : QObject(parent), m_table(operation, notifier), m_chart(operation)
{
}
