// SPDX-License-Identifier: GPL-3.0-or-later
#include "CSpectrumOperationDatasetViewModel.h"

CSpectrumOperationDatasetViewModel::CSpectrumOperationDatasetViewModel(COperationMeasure* operation,
                                                                       QObject* parent)
    : QObject(parent), m_chart(operation), m_table(operation)
{
}
