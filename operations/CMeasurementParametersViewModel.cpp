// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeasurementParametersViewModel.h"

#include "CMeasurementParameters.h"
#include "COperation.h"
#include "CTriggerPlugin.h"
#include "CUtils.h"
#include "EnumTexts.h"
#include "Property.h"

#include <QPointer>
#include <QSignalBlocker>
#include <QVariantMap>

namespace {

// The value of the enumerator of raw counts, taken for a position in the unit list on purpose.
constexpr int kAdcUnitIndex = CUnits::ADC;
constexpr int kUnitIndexInsteadOfAdc = 1;

QStringList noInstrument()
{
    return {QStringLiteral("--")};
}

QVariantMap rangeEntry(const QString& first, const QString& second)
{
    return {{QStringLiteral("first"), first}, {QStringLiteral("second"), second}};
}

CTrigger::TriggerMode triggerModeOf(const QString& name)
{
    for (const CTrigger::TriggerMode mode :
         {CTrigger::CONTINUOUS, CTrigger::IMMEDIATE, CTrigger::TIMER, CTrigger::EXTERNAL}) {
        if (TriggerModeToText(mode) == name)
            return mode;
    }
    return CTrigger::IMMEDIATE;
}

} // namespace

CMeasurementParametersViewModel::CMeasurementParametersViewModel(COperation* operation,
                                                                 bool excludeContinuous, QObject* parent)
    : QObject(parent), m_operation(operation),
      m_parameters(operation->OperationParameters()->MeasurementParameters()),
      m_excludeContinuous(excludeContinuous), m_hasAdc(m_parameters->EnableAdcUnit()),
      m_isDisplayEnable(m_parameters->TriggerMode() == CTrigger::CONTINUOUS),
      m_isDisplayRateVisible(m_isDisplayEnable)
{
    using Self = CMeasurementParametersViewModel;
    connectSignals();
    storeAndEmitOnChange(this, m_unitsList, computeUnitsList(), &Self::UnitsListChanged);
    publishUncertaintyUnitsList(computeUncertaintyUnitsList());
    storeAndEmitOnChange(this, m_ranges, computeRanges(), &Self::RangesChanged);
    storeAndEmitOnChange(this, m_triggers, computeTriggers(), &Self::TriggersChanged);
    fillTriggerPlugins();

    const QSharedPointer<CInstrument> device = instrument();
    if (!device)
        return;
    connect(device.data(), &CInstrument::OnUnitListUpdated, this,
            &Self::OnInstrumentMeasurementParametersUpdated);
    connect(device.data(), &CInstrument::OnRangeListUpdated, this,
            &Self::OnInstrumentMeasurementParametersUpdated);
    connect(device.data(), &CInstrument::OnTriggerListUpdated, this,
            &Self::OnInstrumentMeasurementParametersUpdated);
    connect(m_operation, &COperation::OnLoadMeasParametersDone, this, &Self::OnParametersLoadChangedUnit);
    OnParametersRangeChange();
    OnParametersUnitsChange();
    publishUncertaintyUnitsList(computeUncertaintyUnitsList());
    OnParametersUncertaintyUnitsChange();
    OnTriggerModeChanged();
}

void CMeasurementParametersViewModel::connectSignals()
{
    using Self = CMeasurementParametersViewModel;
    using Parameters = CMeasurementParameters;
    connect(this, &Self::SelectedUnitIndexChanged, this, &Self::OnSelectedUnitIndexChanged);
    connect(this, &Self::SelectedUncertaintyUnitIndexChanged, this,
            &Self::OnSelectedUncertaintyUnitIndexChanged);
    connect(this, &Self::SelectedRangeIndexChanged, this, &Self::OnSelectedRangeIndexChanged);
    connect(this, &Self::SelectedTriggerIndexChanged, this, &Self::OnSelectedTriggerModeIndexChanged);
    connect(this, &Self::SelectedTriggerPluginIndexChanged, this, &Self::OnSelectedTriggerPluginIndexChanged);

    connect(m_parameters, &Parameters::UnitsChanged, this, &Self::OnParametersUnitsChange);
    connect(m_parameters, &Parameters::UncertaintyUnitsChanged, this,
            &Self::OnParametersUncertaintyUnitsChange);
    connect(m_parameters, &Parameters::AutoRangeChanged, this, &Self::OnParametersRangeChange);
    connect(m_parameters, &Parameters::RangeChanged, this, &Self::OnParametersRangeChange);
    connect(m_parameters, &Parameters::TriggerModeChanged, this, &Self::OnTriggerModeChanged);
    connect(m_parameters, &Parameters::TriggerPluginChanged, this, &Self::OnParametersTriggerPluginsChanged);
    connect(m_parameters, &Parameters::EnableAdcUnitChanged, this, &Self::OnParametersEnableAdcUnitChanged);
}

QSharedPointer<CInstrument> CMeasurementParametersViewModel::instrument() const
{
    return m_operation->ActiveInstrument();
}

QStringList CMeasurementParametersViewModel::computeUnitsList() const
{
    const QSharedPointer<CInstrument> device = instrument();
    if (!device)
        return noInstrument();
    QStringList names;
    const QList<CUnits::UnitType> units = device->UnitList();
    for (const CUnits::UnitType unit : units) {
        if (unit != CUnits::ADC || m_hasAdc)
            names.append(UnitToText(unit));
    }
    return names;
}

QStringList CMeasurementParametersViewModel::computeUncertaintyUnitsList()
{
    const QSharedPointer<CInstrument> device = instrument();
    if (!device || device->UnitList().isEmpty())
        return noInstrument();
    const QList<CUnits::UnitType> units = device->UnitList();
    const CUnits::UnitType uncertaintyUnit =
        GetUncertaintyUnit(units.value(m_selectedUnitIndex, units.first()));
    m_parameters->SetUncertaintyUnitList({uncertaintyUnit, CUnits::PERCENT});
    if (m_parameters->UncertaintyUnits() != CUnits::PERCENT)
        m_parameters->SetUncertaintyUnits(uncertaintyUnit);
    return uncertaintyUnitTexts();
}

QVariantList CMeasurementParametersViewModel::computeRanges() const
{
    const QSharedPointer<CInstrument> device = instrument();
    if (!device)
        return {rangeEntry(noInstrument().constFirst(), QString())};
    QVariantList ranges{rangeEntry(QStringLiteral("Auto"), QString())};
    const QList<tFlux> values = device->RangeList();
    for (const tFlux value : values)
        ranges.append(rangeEntry(QString::number(static_cast<double>(value), 'g', 6), QStringLiteral("[T]")));
    return ranges;
}

QStringList CMeasurementParametersViewModel::computeTriggers() const
{
    const QSharedPointer<CInstrument> device = instrument();
    if (!device)
        return noInstrument();
    if (m_excludeContinuous)
        return {TriggerModeToText(CTrigger::IMMEDIATE), TriggerModeToText(CTrigger::TIMER),
                TriggerModeToText(CTrigger::EXTERNAL)};
    QStringList names;
    const QList<CTrigger::TriggerMode> modes = device->TriggerList();
    for (const CTrigger::TriggerMode mode : modes) {
        const QString name = TriggerModeToText(mode);
        if (!name.isEmpty())
            names.append(name);
    }
    return names;
}

QStringList CMeasurementParametersViewModel::uncertaintyUnitTexts() const
{
    QStringList names;
    const QList<CUnits::UnitType> units = m_parameters->UncertaintyUnitList();
    for (const CUnits::UnitType unit : units)
        names.append(UnitToText(unit));
    return names;
}

void CMeasurementParametersViewModel::publishUncertaintyUnitsList(const QStringList& names)
{
    storeAndEmitOnChange(this, m_uncertaintyUnitsList, names,
                         &CMeasurementParametersViewModel::UncertaintyUnitsListChanged);
}

void CMeasurementParametersViewModel::fillTriggerPlugins()
{
    QStringList names;
    for (const CTriggerPlugin* plugin : m_operation->GetTriggerPlugins())
        names.append(plugin->Name);
    storeAndEmitOnChange(this, m_triggerPlugins, names,
                         &CMeasurementParametersViewModel::TriggerPluginsChanged);
    if (!m_triggerPlugins.isEmpty())
        SetSelectedTriggerPluginIndex(0);
}

void CMeasurementParametersViewModel::SetSelectedUnitIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedUnitIndex, index,
                         &CMeasurementParametersViewModel::SelectedUnitIndexChanged);
}

void CMeasurementParametersViewModel::SetPreviousUnitIndex(int index)
{
    storeAndEmitOnChange(this, m_previousUnitIndex, index,
                         &CMeasurementParametersViewModel::PreviousUnitIndexChanged);
}

void CMeasurementParametersViewModel::SetSelectedUncertaintyUnitIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedUncertaintyUnitIndex, index,
                         &CMeasurementParametersViewModel::SelectedUncertaintyUnitIndexChanged);
}

void CMeasurementParametersViewModel::SetSelectedRangeIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedRangeIndex, index,
                         &CMeasurementParametersViewModel::SelectedRangeIndexChanged);
}

void CMeasurementParametersViewModel::SetSelectedTriggerIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedTriggerIndex, index,
                         &CMeasurementParametersViewModel::SelectedTriggerIndexChanged);
}

void CMeasurementParametersViewModel::SetSelectedTriggerPluginIndex(int index)
{
    storeAndEmitOnChange(this, m_selectedTriggerPluginIndex, index,
                         &CMeasurementParametersViewModel::SelectedTriggerPluginIndexChanged);
}

void CMeasurementParametersViewModel::OnSelectedUnitIndexChanged(int index)
{
    const QSharedPointer<CInstrument> device = instrument();
    if (!device || m_selectedUnitIndex == m_previousUnitIndex)
        return;
    const QList<CUnits::UnitType> units = device->UnitList();
    if (index < 0 || index >= units.size())
        return;

    bool isWanted = true;
    if (!m_operation->GetDataSetEmpty()) {
        // The page can be left behind the question, when the instrument vanishes.
        const QPointer<CMeasurementParametersViewModel> self(this);
        isWanted = CUtils::AskConfirmation(tr("Are you sure you want to change units?"),
                                           tr("All the measured data will be lost"));
        if (!self)
            return;
    }
    if (isWanted) {
        const CUnits::UnitType uncertaintyUnits = m_parameters->UncertaintyUnits();
        m_parameters->SetDisplayUnits(units.at(index));
        m_parameters->SetUnits(units.at(index));
        publishUncertaintyUnitsList(computeUncertaintyUnitsList());
        if (uncertaintyUnits == CUnits::PERCENT)
            SetSelectedUncertaintyUnitIndex(m_parameters->UncertaintyUnitList().indexOf(CUnits::PERCENT));
        m_operation->Reset();
    } else {
        SetSelectedUnitIndex(m_previousUnitIndex);
    }
    if (m_selectedUnitIndex == kAdcUnitIndex && !m_hasAdc)
        SetSelectedUnitIndex(kUnitIndexInsteadOfAdc);
    SetPreviousUnitIndex(m_selectedUnitIndex);
}

void CMeasurementParametersViewModel::OnSelectedUncertaintyUnitIndexChanged(int index)
{
    const QList<CUnits::UnitType> units = m_parameters->UncertaintyUnitList();
    if (instrument() && index >= 0 && index < units.size())
        m_parameters->SetUncertaintyUnits(units.at(index));
}

void CMeasurementParametersViewModel::OnSelectedRangeIndexChanged(int index)
{
    const QSignalBlocker blocker(this);
    const QSharedPointer<CInstrument> device = instrument();
    if (!device)
        return;
    m_parameters->SetAutoRange(index == 0);
    const QList<tFlux> ranges = device->RangeList();
    if (index <= 0 || index > ranges.size())
        return;
    m_parameters->SetRange(ranges.at(index - 1));
    // A range that the instrument did not know has moved the selection to 0 on the way.
    m_selectedRangeIndex = index;
}

void CMeasurementParametersViewModel::OnSelectedTriggerModeIndexChanged(int index)
{
    const QSharedPointer<CInstrument> device = instrument();
    if (!device || index < 0 || index >= device->TriggerList().size())
        return;
    const CTrigger::TriggerMode mode = triggerModeOf(m_triggers.value(index));
    m_parameters->SetTriggerMode(mode);
    showRatesOf(mode);
}

void CMeasurementParametersViewModel::showRatesOf(CTrigger::TriggerMode mode)
{
    using Self = CMeasurementParametersViewModel;
    const bool isContinuous = mode == CTrigger::CONTINUOUS;
    const bool isRateChosen = isContinuous || mode == CTrigger::TIMER;
    storeAndEmit(this, m_isDisplayEnable, isContinuous, &Self::IsDisplayEnableChanged);
    storeAndEmit(this, m_isDisplayRateVisible, isContinuous, &Self::IsDisplayRateVisibleChanged);
    storeAndEmit(this, m_isAcquisitionRateEnable, isRateChosen, &Self::IsAcquisitionRateEnableChanged);
    storeAndEmit(this, m_isAcquisitionRateVisible, true, &Self::IsAcquisitionRateVisibleChanged);
    storeAndEmit(this, m_isImmediateAcquisitionRateVisible, mode == CTrigger::IMMEDIATE,
                 &Self::IsImmediateAcquisitionRateVisibleChanged);
}

void CMeasurementParametersViewModel::OnSelectedTriggerPluginIndexChanged(int index)
{
    const QList<CTriggerPlugin*>& plugins = m_operation->GetTriggerPlugins();
    if (index >= 0 && index < plugins.size())
        m_parameters->SetTriggerPlugin(plugins.at(index));
}

void CMeasurementParametersViewModel::OnParametersUnitsChange()
{
    const QSharedPointer<CInstrument> device = instrument();
    const int index = device ? device->UnitList().indexOf(m_parameters->Units()) : -1;
    // The unit is in force already: the selection must not ask for it again.
    SetPreviousUnitIndex(index);
    SetSelectedUnitIndex(index);
}

void CMeasurementParametersViewModel::OnParametersUncertaintyUnitsChange()
{
    SetSelectedUncertaintyUnitIndex(
        m_parameters->UncertaintyUnitList().indexOf(m_parameters->UncertaintyUnits()));
}

void CMeasurementParametersViewModel::OnParametersRangeChange()
{
    const QSignalBlocker blocker(m_parameters);
    const QSharedPointer<CInstrument> device = instrument();
    int index = 0;
    if (device && !m_parameters->AutoRange()) {
        const QList<tFlux> ranges = device->RangeList();
        // 0 if the instrument does not know the range.
        index = ranges.indexOf(m_parameters->Range()) + 1;
        if (index == 0 && !ranges.isEmpty())
            m_parameters->SetRange(ranges.last());
    }
    SetSelectedRangeIndex(index);
}

void CMeasurementParametersViewModel::OnTriggerModeChanged()
{
    const CTrigger::TriggerMode mode = m_parameters->TriggerMode();
    if (const QSharedPointer<CInstrument> device = instrument()) {
        const int position = device->TriggerList().indexOf(mode);
        // CONTINUOUS, which is the first of the instrument's list, is not in that of the box.
        if (m_excludeContinuous)
            SetSelectedTriggerIndex(position >= 1 ? position - 1 : 0);
        else if (position >= 0)
            SetSelectedTriggerIndex(position);
    }
    storeAndEmitOnChange(this, m_triggerPluginVisible, mode == CTrigger::EXTERNAL,
                         &CMeasurementParametersViewModel::TriggerPluginVisibleChanged);
}

void CMeasurementParametersViewModel::OnParametersTriggerPluginsChanged()
{
    const CTriggerPlugin* plugin = m_parameters->TriggerPlugin();
    SetSelectedTriggerPluginIndex(plugin ? m_triggerPlugins.indexOf(plugin->Name) : -1);
}

void CMeasurementParametersViewModel::OnParametersEnableAdcUnitChanged()
{
    storeAndEmitOnChange(this, m_hasAdc, m_parameters->EnableAdcUnit(),
                         &CMeasurementParametersViewModel::HasAdcChanged);
}

void CMeasurementParametersViewModel::OnInstrumentMeasurementParametersUpdated()
{
    using Self = CMeasurementParametersViewModel;
    storeAndEmitOnChange(this, m_unitsList, computeUnitsList(), &Self::UnitsListChanged);
    publishUncertaintyUnitsList(computeUncertaintyUnitsList());
    storeAndEmitOnChange(this, m_ranges, computeRanges(), &Self::RangesChanged);
    storeAndEmitOnChange(this, m_triggers, computeTriggers(), &Self::TriggersChanged);
}

void CMeasurementParametersViewModel::OnParametersLoadChangedUnit()
{
    const QStringList names = uncertaintyUnitTexts();
    if (names.size() == m_uncertaintyUnitsList.size())
        publishUncertaintyUnitsList(names);
}
