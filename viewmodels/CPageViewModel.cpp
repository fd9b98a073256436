// SPDX-License-Identifier: GPL-3.0-or-later
#include "CPageViewModel.h"

#include "Property.h"

CPageViewModel::CPageViewModel(const QString& name, QObject* parent) : QObject(parent), m_name(name) {}

void CPageViewModel::PageEntered() {}

void CPageViewModel::PageLeft() {}

void CPageViewModel::SetHasUnsavedParameter(bool hasUnsavedParameter)
{
    storeAndEmitOnChange(this, m_hasUnsavedParameter, hasUnsavedParameter,
                         &CPageViewModel::HasUnsavedParameterChanged);
}

CPageViewModel::CommandScope::CommandScope(CPageViewModel& page) : m_page(page)
{
    ++m_page.m_commandsInProgress;
}

CPageViewModel::CommandScope::~CommandScope()
{
    if (--m_page.m_commandsInProgress == 0)
        emit m_page.CommandEnded();
}
