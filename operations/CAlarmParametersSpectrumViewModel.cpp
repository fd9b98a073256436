// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAlarmParametersSpectrumViewModel.h"

#include "AlarmChoices.h"
#include "COperation.h"
#include "EnumTexts.h"
#include "Property.h"

CAlarmParametersSpectrumViewModel::CAlarmParametersSpectrumViewModel(COperation* operation, QObject* parent)
    : QObject(parent), m_parameters(operation->OperationParameters()->AlarmParametersSpectrum())
{
    using Self = CAlarmParametersSpectrumViewModel;
    storeAndEmitOnChange(this, m_states, AlarmChoices::states(), &Self::StatesChanged);
    storeAndEmitOnChange(this, m_stateNames, AlarmChoices::stateNames(), &Self::StateNamesChanged);

    SetSelectedStateIndex(m_stateNames.indexOf(AlarmStateToText(m_parameters->State())));

    // Only now: what comes from the parameters does not go back to them.
    connect(this, &Self::SelectedStateIndexChanged, this, &Self::OnSelectedStateIndexChanged);
}

void CAlarmParametersSpectrumViewModel::SetSelectedStateIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedStateIndex, index,
                         &CAlarmParametersSpectrumViewModel::SelectedStateIndexChanged);
}

void CAlarmParametersSpectrumViewModel::SetFlagNotification(bool value)
{
    storeAndEmitOnChange(this, m_flagNotification, value,
                         &CAlarmParametersSpectrumViewModel::FlagNotificationChanged);
}

void CAlarmParametersSpectrumViewModel::OnSelectedStateIndexChanged(int index)
{
    if (index >= 0 && index < m_states.size())
        m_parameters->SetState(m_states.at(index));
}
