// SPDX-License-Identifier: GPL-3.0-or-later
#include "COperationViewModel.h"

#include "Property.h"

void COperationViewModel::SetDisplayUnits(CUnits::UnitType units)
{
    storeAndEmitOnChange(this, m_displayUnits, units, &COperationViewModel::DisplayUnitsChanged);
}

void COperationViewModel::SetDisplayUncertaintyUnits(CUnits::UnitType units)
{
    storeAndEmitOnChange(this, m_displayUncertaintyUnits, units,
                         &COperationViewModel::DisplayUncertaintyUnitsChanged);
}

void COperationViewModel::SetSectionIndex(int sectionIndex)
{
    storeAndEmitOnChange(this, m_sectionIndex, sectionIndex, &COperationViewModel::SectionIndexChanged);
}

void COperationViewModel::replaceDisplayUncertaintyUnits(CUnits::UnitType units)
{
    m_displayUncertaintyUnits = CUnits::UNKNOWN;
    SetDisplayUncertaintyUnits(units);
}
