// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CInstrument.h"
#include "CTrigger.h"

#include <QObject>
#include <QSharedPointer>
#include <QStringList>
#include <QVariantList>

class CMeasurementParameters;
class COperation;

/// The box "Measurement": makes lists for its combo boxes of what the instrument can do, turns the chosen
/// indices into parameters and follows the parameters with the indices. Asks before a change of unit that
/// would lose data, and tells which rates can be set in the trigger mode.
///
/// The instrument is asked anew at each use; without one the lists hold the single entry "--" and a choice
/// has no effect. An index outside its list is ignored.
class CMeasurementParametersViewModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList UnitsList READ UnitsList NOTIFY UnitsListChanged)
    Q_PROPERTY(QStringList UncertaintyUnitsList READ UncertaintyUnitsList NOTIFY UncertaintyUnitsListChanged)
    Q_PROPERTY(bool HasAdc READ HasAdc NOTIFY HasAdcChanged)
    Q_PROPERTY(int SelectedUnitIndex READ SelectedUnitIndex WRITE SetSelectedUnitIndex NOTIFY
                   SelectedUnitIndexChanged)
    Q_PROPERTY(int PreviousUnitIndex READ PreviousUnitIndex WRITE SetPreviousUnitIndex NOTIFY
                   PreviousUnitIndexChanged)
    Q_PROPERTY(int SelectedUncertaintyUnitIndex READ SelectedUncertaintyUnitIndex WRITE
                   SetSelectedUncertaintyUnitIndex NOTIFY SelectedUncertaintyUnitIndexChanged)
    Q_PROPERTY(QVariantList Ranges READ Ranges NOTIFY RangesChanged)
    Q_PROPERTY(int SelectedRangeIndex READ SelectedRangeIndex WRITE SetSelectedRangeIndex NOTIFY
                   SelectedRangeIndexChanged)
    Q_PROPERTY(QStringList Triggers READ Triggers NOTIFY TriggersChanged)
    Q_PROPERTY(int SelectedTriggerIndex READ SelectedTriggerIndex WRITE SetSelectedTriggerIndex NOTIFY
                   SelectedTriggerIndexChanged)
    Q_PROPERTY(QStringList TriggerPlugins READ TriggerPlugins NOTIFY TriggerPluginsChanged)
    Q_PROPERTY(int SelectedTriggerPluginIndex READ SelectedTriggerPluginIndex WRITE
                   SetSelectedTriggerPluginIndex NOTIFY SelectedTriggerPluginIndexChanged)
    Q_PROPERTY(bool TriggerPluginVisible READ TriggerPluginVisible NOTIFY TriggerPluginVisibleChanged)
    Q_PROPERTY(bool IsDisplayEnable READ IsDisplayEnable NOTIFY IsDisplayEnableChanged)
    Q_PROPERTY(bool IsDisplayRateVisible READ IsDisplayRateVisible NOTIFY IsDisplayRateVisibleChanged)
    Q_PROPERTY(
        bool IsAcquisitionRateEnable READ IsAcquisitionRateEnable NOTIFY IsAcquisitionRateEnableChanged)
    Q_PROPERTY(
        bool IsAcquisitionRateVisible READ IsAcquisitionRateVisible NOTIFY IsAcquisitionRateVisibleChanged)
    Q_PROPERTY(bool IsImmediateAcquisitionRateVisible READ IsImmediateAcquisitionRateVisible NOTIFY
                   IsImmediateAcquisitionRateVisibleChanged)
    Q_PROPERTY(double FrequencyMinSpectrumDefaultValue READ FrequencyMinSpectrumDefaultValue CONSTANT)
    Q_PROPERTY(double FrequencyMaxSpectrumDefaultValue READ FrequencyMaxSpectrumDefaultValue CONSTANT)
    Q_PROPERTY(double DisplayRateSpectrumDefaultValue READ DisplayRateSpectrumDefaultValue CONSTANT)
    Q_PROPERTY(ushort AveragingSpectrumDefaultValue READ AveragingSpectrumDefaultValue CONSTANT)
    Q_PROPERTY(
        double AcquisitionRateAcAnalysisDefaultValue READ AcquisitionRateAcAnalysisDefaultValue CONSTANT)
    Q_PROPERTY(double DisplayRateAcAnalysisDefaultValue READ DisplayRateAcAnalysisDefaultValue CONSTANT)
    Q_PROPERTY(ushort AveragingAcAnalysisDefaultValue READ AveragingAcAnalysisDefaultValue CONSTANT)
    Q_PROPERTY(double AcquisitionRateMappingDefaultValue READ AcquisitionRateMappingDefaultValue CONSTANT)
    Q_PROPERTY(double DisplayRateMappingDefaultValue READ DisplayRateMappingDefaultValue CONSTANT)
    Q_PROPERTY(ushort AveragingMappingDefaultValue READ AveragingMappingDefaultValue CONSTANT)

public:
    /// With `excludeContinuous` the trigger mode CONTINUOUS is not offered. The operation must outlive the
    /// view model.
    CMeasurementParametersViewModel(COperation* operation, bool excludeContinuous, QObject* parent = nullptr);

    QStringList UnitsList() const { return m_unitsList; } ///< units of the instrument, ADC only with HasAdc
    QStringList UncertaintyUnitsList() const { return m_uncertaintyUnitsList; }
    bool HasAdc() const { return m_hasAdc; }                      ///< raw counts are offered as a unit
    int SelectedUnitIndex() const { return m_selectedUnitIndex; } ///< in the instrument's unit list
    int PreviousUnitIndex() const { return m_previousUnitIndex; } ///< the unit index in force
    int SelectedUncertaintyUnitIndex() const
    {
        return m_selectedUncertaintyUnitIndex;
    }                                                ///< in the list of uncertainty units of the parameters
    QVariantList Ranges() const { return m_ranges; } ///< maps: "first" the number, "second" its unit, tesla
    int SelectedRangeIndex() const { return m_selectedRangeIndex; } ///< 0 is the automatic range
    QStringList Triggers() const { return m_triggers; }
    int SelectedTriggerIndex() const { return m_selectedTriggerIndex; } ///< in `Triggers`
    QStringList TriggerPlugins() const { return m_triggerPlugins; }     ///< names of those that were loaded
    int SelectedTriggerPluginIndex() const { return m_selectedTriggerPluginIndex; }
    bool TriggerPluginVisible() const { return m_triggerPluginVisible; } ///< the mode needs a plug-in
    bool IsDisplayEnable() const { return m_isDisplayEnable; }           ///< the display rate can be set
    bool IsDisplayRateVisible() const { return m_isDisplayRateVisible; } ///< the display rate has a meaning
    bool IsAcquisitionRateEnable() const { return m_isAcquisitionRateEnable; }
    bool IsAcquisitionRateVisible() const { return m_isAcquisitionRateVisible; }
    bool IsImmediateAcquisitionRateVisible() const
    {
        return m_isImmediateAcquisitionRateVisible;
    } ///< the acquisition rate is the instrument's own

    // Defaults by kind of page; rates and frequencies in Hz.
    double FrequencyMinSpectrumDefaultValue() const { return 0.0; }
    double FrequencyMaxSpectrumDefaultValue() const { return 100.0; }
    double DisplayRateSpectrumDefaultValue() const { return 1.0; }
    ushort AveragingSpectrumDefaultValue() const { return 1; }
    double AcquisitionRateAcAnalysisDefaultValue() const { return 200.0; }
    double DisplayRateAcAnalysisDefaultValue() const { return 1.0; }
    ushort AveragingAcAnalysisDefaultValue() const { return 1; }
    double AcquisitionRateMappingDefaultValue() const { return 1.0; }
    double DisplayRateMappingDefaultValue() const { return 1.0; }
    ushort AveragingMappingDefaultValue() const { return 1000; }

    void SetSelectedUnitIndex(int index);
    void SetPreviousUnitIndex(int index);
    void SetSelectedUncertaintyUnitIndex(int index);
    void SetSelectedRangeIndex(int index);
    void SetSelectedTriggerIndex(int index);
    void SetSelectedTriggerPluginIndex(int index);

public slots:
    void OnSelectedUnitIndexChanged(int index);
    void OnSelectedUncertaintyUnitIndexChanged(int index);
    void OnSelectedRangeIndexChanged(int index);
    void OnSelectedTriggerModeIndexChanged(int index);
    void OnSelectedTriggerPluginIndexChanged(int index);
    void OnParametersUnitsChange();
    void OnParametersUncertaintyUnitsChange();
    void OnParametersRangeChange();
    void OnTriggerModeChanged();
    void OnParametersTriggerPluginsChanged();
    void OnParametersEnableAdcUnitChanged();
    void OnInstrumentMeasurementParametersUpdated();
    void OnParametersLoadChangedUnit();

signals:
    void UnitsListChanged(const QStringList& names);
    void UncertaintyUnitsListChanged(const QStringList& names);
    void HasAdcChanged(bool value);
    void SelectedUnitIndexChanged(int index);
    void PreviousUnitIndexChanged(int index);
    void SelectedUncertaintyUnitIndexChanged(int index);
    void RangesChanged(const QVariantList& ranges);
    void SelectedRangeIndexChanged(int index);
    void TriggersChanged(const QStringList& names);
    void SelectedTriggerIndexChanged(int index);
    void TriggerPluginsChanged(const QStringList& names);
    void SelectedTriggerPluginIndexChanged(int index);
    void TriggerPluginVisibleChanged(bool value);
    void IsDisplayEnableChanged(bool value);
    void IsDisplayRateVisibleChanged(bool value);
    void IsAcquisitionRateEnableChanged(bool value);
    void IsAcquisitionRateVisibleChanged(bool value);
    void IsImmediateAcquisitionRateVisibleChanged(bool value);

private:
    void connectSignals();
    QSharedPointer<CInstrument> instrument() const;
    QStringList computeUnitsList() const;
    /// Offers the uncertainty units that go with the selected unit to the parameters too.
    QStringList computeUncertaintyUnitsList();
    QVariantList computeRanges() const;
    QStringList computeTriggers() const;
    QStringList uncertaintyUnitTexts() const;
    void publishUncertaintyUnitsList(const QStringList& names);
    void fillTriggerPlugins();
    void showRatesOf(CTrigger::TriggerMode mode);

    COperation* const m_operation;
    CMeasurementParameters* const m_parameters;
    const bool m_excludeContinuous;

    QStringList m_unitsList;
    QStringList m_uncertaintyUnitsList;
    bool m_hasAdc;
    int m_selectedUnitIndex = -1;
    int m_previousUnitIndex = -1;
    int m_selectedUncertaintyUnitIndex = -1;
    QVariantList m_ranges;
    int m_selectedRangeIndex = -1;
    QStringList m_triggers;
    int m_selectedTriggerIndex = -1;
    QStringList m_triggerPlugins;
    int m_selectedTriggerPluginIndex = -1;
    bool m_triggerPluginVisible = false;
    bool m_isDisplayEnable;
    bool m_isDisplayRateVisible;
    bool m_isAcquisitionRateEnable = true;
    bool m_isAcquisitionRateVisible = true;
    bool m_isImmediateAcquisitionRateVisible = false;
};
