// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAlarmParametersAcAnalysisViewModel.h"

#include "AlarmChoices.h"
#include "COperation.h"
#include "EnumTexts.h"
#include "Property.h"

CAlarmParametersAcAnalysisViewModel::CAlarmParametersAcAnalysisViewModel(COperation* operation,
                                                                         QObject* parent)
    : QObject(parent), m_parameters(operation->OperationParameters()->AlarmParametersAcAnalysis())
{
    using Self = CAlarmParametersAcAnalysisViewModel;
    storeAndEmitOnChange(this, m_states, AlarmChoices::states(), &Self::StatesChanged);
    storeAndEmitOnChange(this, m_stateNames, AlarmChoices::stateNames(), &Self::StateNamesChanged);
    storeAndEmitOnChange(this, m_axis, AlarmChoices::axesWithoutUncertainty(), &Self::AxisChanged);
    storeAndEmitOnChange(this, m_axisNames, AlarmChoices::axisNames(m_axis), &Self::AxisNamesChanged);

    SetSelectedStateIndex(m_stateNames.indexOf(AlarmStateToText(m_parameters->State())));
    SetSelectedAxisIndex(m_axisNames.indexOf(AxisToDisplayText(m_parameters->Axis())));

    // Only now: what comes from the parameters does not go back to them.
    connect(this, &Self::SelectedStateIndexChanged, this, &Self::OnSelectedStateIndexChanged);
    connect(this, &Self::SelectedAxisIndexChanged, this, &Self::OnSelectedAxisIndexChanged);
}

void CAlarmParametersAcAnalysisViewModel::SetSelectedStateIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedStateIndex, index,
                         &CAlarmParametersAcAnalysisViewModel::SelectedStateIndexChanged);
}

void CAlarmParametersAcAnalysisViewModel::SetSelectedAxisIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedAxisIndex, index,
                         &CAlarmParametersAcAnalysisViewModel::SelectedAxisIndexChanged);
}

void CAlarmParametersAcAnalysisViewModel::OnSelectedStateIndexChanged(int index)
{
    if (index >= 0 && index < m_states.size())
        m_parameters->SetState(m_states.at(index));
}

void CAlarmParametersAcAnalysisViewModel::OnSelectedAxisIndexChanged(int index)
{
    if (index >= 0 && index < m_axis.size())
        m_parameters->SetAxis(m_axis.at(index));
}
