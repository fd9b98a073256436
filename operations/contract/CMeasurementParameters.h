// SPDX-License-Identifier: MIT
#pragma once

#include "CTrigger.h"
#include "CTriggerPlugin.h"
#include "CUnits.h"
#include "KestrixApi.h"
#include "tFlux.h"

#include <QList>
#include <QObject>
#include <QString>

/// The acquisition parameters of an operation. The rates depend on each other: the object keeps acquisition
/// rate, block size, display rate, frequency maximum and number of bins consistent by itself, within the
/// assignment that disturbs them, and has no clamps; bounds are the business of the fields that edit it.
///
/// `ApplyConfiguration` is the commit flag towards the instrument driver: while it is false the driver must
/// not transfer the parameters, and its change to true says that the set is complete. A cascade drops it
/// before its first change and raises it once, after its last. Whoever assigns several parameters together
/// does the same around them.
///
/// Main thread only; a driver that reads it elsewhere copies it when ApplyConfigurationChanged(true) comes.
class KESTRIX_API CMeasurementParameters : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int Averaging READ Averaging WRITE SetAveraging NOTIFY AveragingChanged)
    Q_PROPERTY(
        double AcquisitionRate READ AcquisitionRate WRITE SetAcquisitionRate NOTIFY AcquisitionRateChanged)
    Q_PROPERTY(double ImmediateAcquisitionRate READ ImmediateAcquisitionRate WRITE SetImmediateAcquisitionRate
                   NOTIFY ImmediateAcquisitionRateChanged)
    Q_PROPERTY(int BlockSize READ BlockSize WRITE SetBlockSize NOTIFY BlockSizeChanged)
    Q_PROPERTY(double DisplayRate READ DisplayRate WRITE SetDisplayRate NOTIFY DisplayRateChanged)
    Q_PROPERTY(double FrequencyMin READ FrequencyMin WRITE SetFrequencyMin NOTIFY FrequencyMinChanged)
    Q_PROPERTY(double FrequencyMax READ FrequencyMax WRITE SetFrequencyMax NOTIFY FrequencyMaxChanged)
    Q_PROPERTY(double NumberOfBins READ NumberOfBins WRITE SetNumberOfBins NOTIFY NumberOfBinsChanged)
    Q_PROPERTY(CUnits::UnitType Units READ Units WRITE SetUnits NOTIFY UnitsChanged)
    Q_PROPERTY(
        CUnits::UnitType DisplayUnits READ DisplayUnits WRITE SetDisplayUnits NOTIFY DisplayUnitsChanged)
    Q_PROPERTY(QList<CUnits::UnitType> UncertaintyUnitList READ UncertaintyUnitList WRITE
                   SetUncertaintyUnitList NOTIFY UncertaintyUnitListChanged)
    Q_PROPERTY(CUnits::UnitType UncertaintyUnits READ UncertaintyUnits WRITE SetUncertaintyUnits NOTIFY
                   UncertaintyUnitsChanged)
    Q_PROPERTY(bool EnableAdcUnit READ EnableAdcUnit WRITE SetEnableAdcUnit NOTIFY EnableAdcUnitChanged)
    Q_PROPERTY(bool AutoRange READ AutoRange WRITE SetAutoRange NOTIFY AutoRangeChanged)
    Q_PROPERTY(tFlux Range READ Range WRITE SetRange NOTIFY RangeChanged)
    Q_PROPERTY(
        CTrigger::TriggerMode TriggerMode READ TriggerMode WRITE SetTriggerMode NOTIFY TriggerModeChanged)
    Q_PROPERTY(
        CTriggerPlugin* TriggerPlugin READ TriggerPlugin WRITE SetTriggerPlugin NOTIFY TriggerPluginChanged)
    Q_PROPERTY(bool ApplyConfiguration READ ApplyConfiguration WRITE SetApplyConfiguration NOTIFY
                   ApplyConfigurationChanged)

public:
    explicit CMeasurementParameters(QObject* parent = nullptr);

    int Averaging() const { return m_averaging; }                ///< averaging count handed to the instrument
    double AcquisitionRate() const { return m_acquisitionRate; } ///< rate of reported samples, Hz
    double ImmediateAcquisitionRate() const
    {
        return m_immediateAcquisitionRate;
    } ///< rate achieved in IMMEDIATE mode, Hz; written by the instrument driver
    int BlockSize() const
    {
        return m_blockSize;
    } ///< samples of a block, 0 to 65535 as far as this class derives it
    double DisplayRate() const { return m_displayRate; } ///< blocks per second, Hz
    double FrequencyMin() const
    {
        return m_frequencyMin;
    } ///< lower frequency of spectrum display and limit check, Hz
    double FrequencyMax() const
    {
        return m_frequencyMax;
    } ///< upper frequency: the Nyquist frequency of AcquisitionRate, Hz
    double NumberOfBins() const
    {
        return m_numberOfBins;
    } ///< spectrum bins between 0 and FrequencyMax, not an integer in general
    CUnits::UnitType Units() const { return m_units; }               ///< unit of the values of measurement
    CUnits::UnitType DisplayUnits() const { return m_displayUnits; } ///< unit for display
    QList<CUnits::UnitType> UncertaintyUnitList() const
    {
        return m_uncertaintyUnitList;
    } ///< the two units in which the uncertainty may be shown
    CUnits::UnitType UncertaintyUnits() const
    {
        return m_uncertaintyUnits;
    }                                                      ///< unit of the uncertainty, PERCENT included
    bool EnableAdcUnit() const { return m_enableAdcUnit; } ///< whether raw ADC counts are offered as a unit
    bool AutoRange() const { return m_autoRange; }         ///< the instrument chooses the range
    tFlux Range() const { return m_range; } ///< manual range, tesla; an entry of the instrument's RangeList
    CTrigger::TriggerMode TriggerMode() const { return m_triggerMode; } ///< how the acquisition is triggered
    CTriggerPlugin* TriggerPlugin() const { return m_triggerPlugin; } ///< plug-in of EXTERNAL mode, not owned
    bool ApplyConfiguration() const
    {
        return m_applyConfiguration;
    } ///< commit flag towards the instrument, see above

    // Units, DisplayUnits, UncertaintyUnitList and UncertaintyUnits emit at every assignment, the others on a
    // change.
    void SetAveraging(int value);
    void SetAcquisitionRate(double value);
    void SetImmediateAcquisitionRate(double value);
    void SetBlockSize(int value);
    void SetDisplayRate(double value);
    void SetFrequencyMin(double value);
    void SetFrequencyMax(double value);
    void SetNumberOfBins(double value);
    void SetUnits(CUnits::UnitType value);
    void SetDisplayUnits(CUnits::UnitType value);
    void SetUncertaintyUnitList(const QList<CUnits::UnitType>& value);
    void SetUncertaintyUnits(CUnits::UnitType value);
    void SetEnableAdcUnit(bool value);
    void SetAutoRange(bool value);
    void SetRange(tFlux value);
    void SetTriggerMode(CTrigger::TriggerMode value);
    void SetTriggerPlugin(CTriggerPlugin* value);
    void SetApplyConfiguration(bool value);

    /// Width of a spectrum bin in Hz: AcquisitionRate / BlockSize, 0.0 without a block size.
    double FrequencyResolution() const;

    /// Eleven entries "key=value" in fixed order, joined by `separator`.
    QString ToString(const QString& separator) const;

public slots:
    void OnAcquisitionRateChanged();
    void OnDisplayRateChanged();
    void OnFrequencyMaxChanged();
    void OnFrequencyMinChanged();
    void OnBlockSizeChanged();
    void OnNumberOfBinsChanged();
    void OnImmediateAcquisitionRateChanged();
    void OnTriggerModeChanged();

signals:
    void AveragingChanged(int value);
    void AcquisitionRateChanged(double value);
    void ImmediateAcquisitionRateChanged(double value);
    void BlockSizeChanged(int value);
    void DisplayRateChanged(double value);
    void FrequencyMinChanged(double value);
    void FrequencyMaxChanged(double value);
    void NumberOfBinsChanged(double value);
    void UnitsChanged(CUnits::UnitType value);
    void DisplayUnitsChanged(CUnits::UnitType value);
    void UncertaintyUnitListChanged(const QList<CUnits::UnitType>& value);
    void UncertaintyUnitsChanged(CUnits::UnitType value);
    void EnableAdcUnitChanged(bool value);
    void AutoRangeChanged(bool value);
    void RangeChanged(tFlux value);
    void TriggerModeChanged(CTrigger::TriggerMode value);
    void TriggerPluginChanged(CTriggerPlugin* value);
    void ApplyConfigurationChanged(bool value);

private:
    template <class Work> void runCoupling(bool& guard, Work work);
    bool isContinuousLike() const;
    bool isInstrumentPaced() const;
    void updateBlockSizeFromRates();
    void updateNumberOfBins();

    int m_averaging = 1;
    double m_acquisitionRate = 0;
    double m_immediateAcquisitionRate = 0;
    int m_blockSize = 1;
    double m_displayRate = 1.0;
    double m_frequencyMin = 0;
    double m_frequencyMax = 0;
    double m_numberOfBins = 0;
    CUnits::UnitType m_units = CUnits::UNKNOWN;
    CUnits::UnitType m_displayUnits = CUnits::UNKNOWN;
    QList<CUnits::UnitType> m_uncertaintyUnitList;
    CUnits::UnitType m_uncertaintyUnits = CUnits::UNKNOWN;
    bool m_enableAdcUnit = false;
    bool m_autoRange = false;
    tFlux m_range = 0;
    CTrigger::TriggerMode m_triggerMode = CTrigger::IMMEDIATE;
    CTriggerPlugin* m_triggerPlugin = nullptr;
    bool m_applyConfiguration = true;

    // Set while the coupling slot of that name is at work.
    bool m_inAcquisitionRateChanged = false;
    bool m_inBlockSizeChanged = false;
    bool m_inNumberOfBinsChanged = false;
    bool m_inDisplayRateChanged = false;
    bool m_inFrequencyMaxChanged = false;
    bool m_inFrequencyMinChanged = false;
    bool m_inImmediateAcquisitionRateChanged = false;
};
