// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAlarmParametersMeterViewModel.h"

#include "AlarmChoices.h"
#include "COperation.h"
#include "EnumTexts.h"
#include "Property.h"

CAlarmParametersMeterViewModel::CAlarmParametersMeterViewModel(COperation* operation, QObject* parent)
    : QObject(parent), m_parameters(operation->OperationParameters()->AlarmParametersMeter())
{
    using Self = CAlarmParametersMeterViewModel;
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
    connect(this, &Self::DisplayAlarmUnitsChanged, this, &Self::OnDisplayAlarmUnitsChanged);
}

void CAlarmParametersMeterViewModel::SetSelectedStateIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedStateIndex, index,
                         &CAlarmParametersMeterViewModel::SelectedStateIndexChanged);
}

void CAlarmParametersMeterViewModel::SetFlagNotification(bool value)
{
    storeAndEmitOnChange(this, m_flagNotification, value,
                         &CAlarmParametersMeterViewModel::FlagNotificationChanged);
}

void CAlarmParametersMeterViewModel::SetDisplayAlarmUnits(CUnits::UnitType units)
{
    storeAndEmitOnChange(this, m_displayAlarmUnits, units,
                         &CAlarmParametersMeterViewModel::DisplayAlarmUnitsChanged);
}

void CAlarmParametersMeterViewModel::SetSelectedAxisIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedAxisIndex, index,
                         &CAlarmParametersMeterViewModel::SelectedAxisIndexChanged);
}

void CAlarmParametersMeterViewModel::SetMinimum(double value)
{
    storeAndEmitOnChange(this, m_minimum, value, &CAlarmParametersMeterViewModel::MinimumChanged);
}

void CAlarmParametersMeterViewModel::SetMaximum(double value)
{
    storeAndEmitOnChange(this, m_maximum, value, &CAlarmParametersMeterViewModel::MaximumChanged);
}

void CAlarmParametersMeterViewModel::OnSelectedStateIndexChanged(int index)
{
    if (index >= 0 && index < m_states.size())
        m_parameters->SetState(m_states.at(index));
}

void CAlarmParametersMeterViewModel::OnSelectedAxisIndexChanged(int index)
{
    if (index >= 0 && index < m_axis.size())
        m_parameters->SetAxis(m_axis.at(index));
}

void CAlarmParametersMeterViewModel::OnMinimumChanged(double value)
{
    m_parameters->SetMinimum(value);
}

void CAlarmParametersMeterViewModel::OnMaximumChanged(double value)
{
    m_parameters->SetMaximum(value);
}

void CAlarmParametersMeterViewModel::OnDisplayAlarmUnitsChanged(CUnits::UnitType units)
{
    m_parameters->SetDisplayAlarmUnits(units);
}
