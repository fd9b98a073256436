// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CPageViewModel.h"
#include "CUnits.h"

/// What the pages of all operations have in common: the units of the values on screen and the tab on screen.
/// The units belong to the data that is shown, which after a load is not the unit of the live parameters.
class COperationViewModel : public CPageViewModel
{
    Q_OBJECT
    Q_PROPERTY(
        CUnits::UnitType DisplayUnits READ DisplayUnits WRITE SetDisplayUnits NOTIFY DisplayUnitsChanged)
    Q_PROPERTY(CUnits::UnitType DisplayUncertaintyUnits READ DisplayUncertaintyUnits WRITE
                   SetDisplayUncertaintyUnits NOTIFY DisplayUncertaintyUnitsChanged)
    Q_PROPERTY(int SectionIndex READ SectionIndex WRITE SetSectionIndex NOTIFY SectionIndexChanged)

public:
    using CPageViewModel::CPageViewModel;

    CUnits::UnitType DisplayUnits() const { return m_displayUnits; } ///< unit of all field values on the page
    CUnits::UnitType DisplayUncertaintyUnits() const
    {
        return m_displayUncertaintyUnits;
    } ///< unit of the uncertainty on the page, PERCENT included
    int SectionIndex() const { return m_sectionIndex; } ///< tab on screen, from 0; written by the page

    void SetDisplayUnits(CUnits::UnitType units);
    void SetDisplayUncertaintyUnits(CUnits::UnitType units);
    void SetSectionIndex(int sectionIndex);

signals:
    void DisplayUnitsChanged(CUnits::UnitType units);
    void DisplayUncertaintyUnitsChanged(CUnits::UnitType units);
    void SectionIndexChanged(int sectionIndex);
    /// A record was loaded into the operation's dataset.
    void DatasetLoaded();

protected:
    /// Takes over `units` so that a value equal to the old one is announced too, and UNKNOWN is not.
    void replaceDisplayUncertaintyUnits(CUnits::UnitType units);

private:
    CUnits::UnitType m_displayUnits = CUnits::UNKNOWN;
    CUnits::UnitType m_displayUncertaintyUnits = CUnits::UNKNOWN;
    int m_sectionIndex = 0;
};
