// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CPageViewModel.h"
#include "CUnits.h"

#include <QString>

class CInstrument;
class CMeasureBlock;
class CMeasurementParameters;
class CSettings;

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
    /// Shows field values in `units` and the uncertainty, unless it is a percentage, in the unit that goes
    /// with them.
    void followUnits(CUnits::UnitType units);
    /// Takes the unit of the uncertainty from the parameters and follows their units.
    void followUnitsOf(const CMeasurementParameters& parameters);

    /// Gives all samples of the block their uncertainty as the page shows it.
    void convertUncertainty(const CMeasureBlock& block) const;

    /// Asks before measured data is dropped.
    static bool askToQuitOperation();
    /// Proposes a name for a record: digits of the model, serial number, time and kind of the record.
    static QString recordFileName(const CInstrument* instrument, const QString& kind);
    // File dialogs that start in the user's storage path; empty when the user cancels.
    static QString askFileToOpen(const QString& caption, const CSettings& settings);
    static QString askFileToSave(const QString& caption, const QString& proposedName,
                                 const CSettings& settings);

private:
    CUnits::UnitType m_displayUnits = CUnits::UNKNOWN;
    CUnits::UnitType m_displayUncertaintyUnits = CUnits::UNKNOWN;
    int m_sectionIndex = 0;
};
