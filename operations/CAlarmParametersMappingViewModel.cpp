// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAlarmParametersMappingViewModel.h"

#include "AlarmChoices.h"
#include "COperation.h"
#include "EnumTexts.h"
#include "Property.h"

CAlarmParametersMappingViewModel::CAlarmParametersMappingViewModel(COperation* operation, QObject* parent)
    : QObject(parent), m_parameters(operation->OperationParameters()->AlarmParametersMapping())
{
    using Self = CAlarmParametersMappingViewModel;
    storeAndEmitOnChange(this, m_states, AlarmChoices::states(), &Self::StatesChanged);
    storeAndEmitOnChange(this, m_stateNames, AlarmChoices::stateNames(), &Self::StateNamesChanged);
    storeAndEmitOnChange(this, m_axis, AlarmChoices::axes(), &Self::AxisChanged);
    storeAndEmitOnChange(this, m_axisNames, AlarmChoices::axisNames(m_axis), &Self::AxisNamesChanged);

    SetSelectedStateIndex(m_stateNames.indexOf(AlarmStateToText(m_parameters->State())));
    SetSelectedAxisIndex(m_axisNames.indexOf(AxisToDisplayText(m_parameters->Axis())));
    SetMinimum(m_parameters->Minimum());
    SetMaximum(m_parameters->Maximum());
    SetDisplayAlarmUnits(m_parameters->DisplayAlarmUnits());

    // Only now: what comes from the parameters does not go back to them.
    connect(this, &Self::SelectedStateIndexChanged, this, &Self::OnSelectedStateIndexChanged);
    connect(this, &Self::SelectedAxisIndexChanged, this, &Self::OnSelectedAxisIndexChanged);
    connect(this, &Self::MinimumChanged, this, &Self::OnMinimumChanged);
    connect(this, &Self::MaximumChanged, this, &Self::OnMaximumChanged);
}

void CAlarmParametersMappingViewModel::SetSelectedStateIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedStateIndex, index,
                         &CAlarmParametersMappingViewModel::SelectedStateIndexChanged);
}

void CAlarmParametersMappingViewModel::SetFlagNotification(bool value)
{
    storeAndEmitOnChange(this, m_flagNotification, value,
                         &CAlarmParametersMappingViewModel::FlagNotificationChanged);
}

void CAlarmParametersMappingViewModel::SetDisplayAlarmUnits(CUnits::UnitType units)
{
    storeAndEmitOnChange(this, m_displayAlarmUnits, units,
                         &CAlarmParametersMappingViewModel::DisplayAlarmUnitsChanged);
}

void CAlarmParametersMappingViewModel::SetSelectedAxisIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedAxisIndex, index,
                         &CAlarmParametersMappingViewModel::SelectedAxisIndexChanged);
}

void CAlarmParametersMappingViewModel::SetMinimum(double value)
{
    storeAndEmitOnChange(this, m_minimum, value, &CAlarmParametersMappingViewModel::MinimumChanged);
}

void CAlarmParametersMappingViewModel::SetMaximum(double value)
{
    storeAndEmitOnChange(this, m_maximum, value, &CAlarmParametersMappingViewModel::MaximumChanged);
}

void CAlarmParametersMappingViewModel::OnSelectedStateIndexChanged(int index)
{
    if (index >= 0 && index < m_states.size())
        m_parameters->SetState(m_states.at(index));
}

void CAlarmParametersMappingViewModel::OnSelectedAxisIndexChanged(int index)
{
    if (index >= 0 && index < m_axis.size())
        m_parameters->SetAxis(m_axis.at(index));
}

void CAlarmParametersMappingViewModel::OnMinimumChanged(double value)
{
    m_parameters->SetMinimum(value);
}

void CAlarmParametersMappingViewModel::OnMaximumChanged(double value)
{
    m_parameters->SetMaximum(value);
}
