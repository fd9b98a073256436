// SPDX-License-Identifier: GPL-3.0-or-later
#include "COperationViewModel.h"

#include "CInstrument.h"
#include "CMeasureBlock.h"
#include "CMeasurementParameters.h"
#include "CSettings.h"
#include "CUtils.h"
#include "PresentTime.h"
#include "Property.h"
#include "UncertaintyConversion.h"

#include <QFileDialog>
#include <QRegExp>

namespace {

/// The first four digits in a row of the model's name.
QString modelDigits(const QString& model)
{
    const QRegExp fourDigits(QStringLiteral("\\d{4}"));
    return fourDigits.indexIn(model) >= 0 ? fourDigits.cap(0) : QStringLiteral("0000");
}

} // namespace

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

void COperationViewModel::followUnits(CUnits::UnitType units)
{
    SetDisplayUnits(units);
    if (DisplayUncertaintyUnits() != CUnits::PERCENT)
        SetDisplayUncertaintyUnits(GetUncertaintyUnit(units));
}

void COperationViewModel::followUnitsOf(const CMeasurementParameters& parameters)
{
    SetDisplayUncertaintyUnits(parameters.UncertaintyUnits());
    followUnits(parameters.Units());
}

void COperationViewModel::convertUncertainty(const CMeasureBlock& block) const
{
    for (const QSharedPointer<CFieldIntensityResult>& sample : block.Results) {
        sample->SetDBConverted(
            ConvertUncertainty(sample->dB(), sample->B(), DisplayUnits(), DisplayUncertaintyUnits()));
    }
}

bool COperationViewModel::askToQuitOperation()
{
    return CUtils::AskConfirmation(tr("Are you sure you want to quit the current operation?"),
                                   tr("All the measured data will be lost"));
}

QString COperationViewModel::recordFileName(const CInstrument* instrument, const QString& kind)
{
    const QString model = instrument ? instrument->Model() : QString();
    const QString serialNumber = instrument ? instrument->SerialNumber() : QString();
    return QStringList{modelDigits(model), serialNumber, presentTime(QStringLiteral("yyyy-MM-dd_HH.mm.ss")),
                       kind + QStringLiteral(".qdr.xml")}
        .join(QLatin1Char('_'));
}

QString COperationViewModel::askFileToOpen(const QString& caption, const CSettings& settings)
{
    return QFileDialog::getOpenFileName(nullptr, caption, settings.DefaultStoragePath(), tr("XML (*.xml)"));
}

QString COperationViewModel::askFileToSave(const QString& caption, const QString& proposedName,
                                           const CSettings& settings)
{
    return QFileDialog::getSaveFileName(
        nullptr, caption, settings.DefaultStoragePath() + QLatin1Char('/') + proposedName, tr("XML (*.xml)"));
}
