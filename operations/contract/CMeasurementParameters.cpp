// SPDX-License-Identifier: MIT
#include "CMeasurementParameters.h"

#include "EnumTexts.h"
#include "Property.h"

#include <QStringList>

#include <cmath>

namespace {

/// The quotient truncated toward zero into sixteen bits: it wraps, it does not saturate.
int truncatedTo16Bits(double quotient)
{
    constexpr double kModulus = 65536.0;
    return std::isfinite(quotient) ? static_cast<int>(std::fmod(std::trunc(quotient), kModulus)) : 0;
}

QString formatted(const char* key, double value)
{
    return QLatin1String(key) + QString::number(value, 'g', 6);
}

} // namespace

CMeasurementParameters::CMeasurementParameters(QObject* parent) : QObject(parent)
{
    using Self = CMeasurementParameters;
    connect(this, &Self::AcquisitionRateChanged, this, &Self::OnAcquisitionRateChanged);
    connect(this, &Self::DisplayRateChanged, this, &Self::OnDisplayRateChanged);
    connect(this, &Self::FrequencyMaxChanged, this, &Self::OnFrequencyMaxChanged);
    connect(this, &Self::FrequencyMinChanged, this, &Self::OnFrequencyMinChanged);
    connect(this, &Self::BlockSizeChanged, this, &Self::OnBlockSizeChanged);
    connect(this, &Self::NumberOfBinsChanged, this, &Self::OnNumberOfBinsChanged);
    connect(this, &Self::ImmediateAcquisitionRateChanged, this, &Self::OnImmediateAcquisitionRateChanged);
    connect(this, &Self::TriggerModeChanged, this, &Self::OnTriggerModeChanged);
}

void CMeasurementParameters::SetAveraging(int value)
{
    storeAndEmitOnChange(this, m_averaging, value, &CMeasurementParameters::AveragingChanged);
}

void CMeasurementParameters::SetAcquisitionRate(double value)
{
    storeAndEmitOnChange(this, m_acquisitionRate, value, &CMeasurementParameters::AcquisitionRateChanged);
}

void CMeasurementParameters::SetImmediateAcquisitionRate(double value)
{
    storeAndEmitOnChange(this, m_immediateAcquisitionRate, value,
                         &CMeasurementParameters::ImmediateAcquisitionRateChanged);
}

void CMeasurementParameters::SetBlockSize(int value)
{
    storeAndEmitOnChange(this, m_blockSize, value, &CMeasurementParameters::BlockSizeChanged);
}

void CMeasurementParameters::SetDisplayRate(double value)
{
    storeAndEmitOnChange(this, m_displayRate, value, &CMeasurementParameters::DisplayRateChanged);
}

void CMeasurementParameters::SetFrequencyMin(double value)
{
    storeAndEmitOnChange(this, m_frequencyMin, value, &CMeasurementParameters::FrequencyMinChanged);
}

void CMeasurementParameters::SetFrequencyMax(double value)
{
    storeAndEmitOnChange(this, m_frequencyMax, value, &CMeasurementParameters::FrequencyMaxChanged);
}

void CMeasurementParameters::SetNumberOfBins(double value)
{
    storeAndEmitOnChange(this, m_numberOfBins, value, &CMeasurementParameters::NumberOfBinsChanged);
}

void CMeasurementParameters::SetUnits(CUnits::UnitType value)
{
    storeAndEmit(this, m_units, value, &CMeasurementParameters::UnitsChanged);
}

void CMeasurementParameters::SetDisplayUnits(CUnits::UnitType value)
{
    storeAndEmit(this, m_displayUnits, value, &CMeasurementParameters::DisplayUnitsChanged);
}

void CMeasurementParameters::SetUncertaintyUnitList(const QList<CUnits::UnitType>& value)
{
    storeAndEmit(this, m_uncertaintyUnitList, value, &CMeasurementParameters::UncertaintyUnitListChanged);
}

void CMeasurementParameters::SetUncertaintyUnits(CUnits::UnitType value)
{
    storeAndEmit(this, m_uncertaintyUnits, value, &CMeasurementParameters::UncertaintyUnitsChanged);
}

void CMeasurementParameters::SetEnableAdcUnit(bool value)
{
    storeAndEmitOnChange(this, m_enableAdcUnit, value, &CMeasurementParameters::EnableAdcUnitChanged);
}

void CMeasurementParameters::SetAutoRange(bool value)
{
    storeAndEmitOnChange(this, m_autoRange, value, &CMeasurementParameters::AutoRangeChanged);
}

void CMeasurementParameters::SetRange(tFlux value)
{
    storeAndEmitOnChange(this, m_range, value, &CMeasurementParameters::RangeChanged);
}

void CMeasurementParameters::SetTriggerMode(CTrigger::TriggerMode value)
{
    storeAndEmitOnChange(this, m_triggerMode, value, &CMeasurementParameters::TriggerModeChanged);
}

void CMeasurementParameters::SetTriggerPlugin(CTriggerPlugin* value)
{
    storeAndEmitOnChange(this, m_triggerPlugin, value, &CMeasurementParameters::TriggerPluginChanged);
}

void CMeasurementParameters::SetApplyConfiguration(bool value)
{
    storeAndEmitOnChange(this, m_applyConfiguration, value,
                         &CMeasurementParameters::ApplyConfigurationChanged);
}

double CMeasurementParameters::FrequencyResolution() const
{
    return m_blockSize == 0 ? 0.0 : m_acquisitionRate / m_blockSize;
}

QString CMeasurementParameters::ToString(const QString& separator) const
{
    const QStringList entries{
        QStringLiteral("Units=") + UnitToText(m_units),
        formatted("Range=", static_cast<double>(m_range)),
        QStringLiteral("AutoRange=") + QString::number(m_autoRange ? 1 : 0),
        QStringLiteral("TriggerMode=") + TriggerModeToText(m_triggerMode),
        formatted("AcqRate=", m_acquisitionRate),
        formatted("DispRate=", m_displayRate),
        QStringLiteral("Avg=") + QString::number(m_averaging),
        formatted("FreqMin=", m_frequencyMin),
        formatted("FreqMax=", m_frequencyMax),
        formatted("Bins=", m_numberOfBins),
        QStringLiteral("BlockSize=") + QString::number(m_blockSize),
    };
    return entries.join(separator);
}

template <class Work> void CMeasurementParameters::runCoupling(bool& guard, Work work)
{
    // A nested slot finds the flag false and restores false, so that the only change to true comes from the
    // outermost slot, behind the whole cascade.
    const bool remembered = m_applyConfiguration;
    SetApplyConfiguration(false);
    guard = true;
    work();
    SetApplyConfiguration(remembered);
    guard = false;
}

bool CMeasurementParameters::isContinuousLike() const
{
    return m_triggerMode == CTrigger::CONTINUOUS || m_triggerMode == CTrigger::TIMER;
}

bool CMeasurementParameters::isInstrumentPaced() const
{
    return m_triggerMode == CTrigger::IMMEDIATE || m_triggerMode == CTrigger::EXTERNAL;
}

void CMeasurementParameters::updateBlockSizeFromRates()
{
    if (m_acquisitionRate >= m_displayRate && m_displayRate > 0)
        SetBlockSize(truncatedTo16Bits(m_acquisitionRate / m_displayRate));
}

void CMeasurementParameters::updateNumberOfBins()
{
    if (m_inNumberOfBinsChanged)
        return;
    if (m_frequencyMax >= m_displayRate && m_displayRate > 0)
        SetNumberOfBins(m_frequencyMax / m_displayRate);
}

void CMeasurementParameters::OnAcquisitionRateChanged()
{
    runCoupling(m_inAcquisitionRateChanged, [this] {
        if (!m_inFrequencyMaxChanged)
            SetFrequencyMax(m_acquisitionRate * 0.5);
        if (!m_inBlockSizeChanged && isContinuousLike())
            updateBlockSizeFromRates();
        if (!m_inDisplayRateChanged && isInstrumentPaced() && m_blockSize > 0)
            SetDisplayRate(m_acquisitionRate / m_blockSize);
    });
}

void CMeasurementParameters::OnDisplayRateChanged()
{
    runCoupling(m_inDisplayRateChanged, [this] {
        if (!m_inBlockSizeChanged && !m_inAcquisitionRateChanged)
            updateBlockSizeFromRates();
        updateNumberOfBins();
    });
}

void CMeasurementParameters::OnFrequencyMaxChanged()
{
    runCoupling(m_inFrequencyMaxChanged, [this] {
        if (!m_inAcquisitionRateChanged)
            SetAcquisitionRate(m_frequencyMax + m_frequencyMax);
        updateNumberOfBins();
    });
}

void CMeasurementParameters::OnFrequencyMinChanged()
{
    runCoupling(m_inFrequencyMinChanged, [this] { updateNumberOfBins(); });
}

void CMeasurementParameters::OnBlockSizeChanged()
{
    // TIMER counts as continuous for a change of rate, yet not for a change of block size.
    runCoupling(m_inBlockSizeChanged, [this] {
        const bool isContinuous = m_triggerMode == CTrigger::CONTINUOUS;
        if (!m_inAcquisitionRateChanged && !m_inDisplayRateChanged && isContinuous)
            SetAcquisitionRate(m_blockSize * m_displayRate);
        else if (!m_inDisplayRateChanged && !isContinuous && m_blockSize >= 1)
            SetDisplayRate(m_acquisitionRate / m_blockSize);
    });
}

void CMeasurementParameters::OnNumberOfBinsChanged()
{
    runCoupling(m_inNumberOfBinsChanged, [this] {
        if (!m_inDisplayRateChanged && m_frequencyMax >= m_numberOfBins && m_numberOfBins > 0)
            SetDisplayRate(m_frequencyMax / m_numberOfBins);
    });
}

void CMeasurementParameters::OnImmediateAcquisitionRateChanged()
{
    if (m_triggerMode != CTrigger::IMMEDIATE)
        return;
    runCoupling(m_inImmediateAcquisitionRateChanged, [this] {
        if (!m_inFrequencyMaxChanged)
            SetFrequencyMax(m_immediateAcquisitionRate * 0.5);
    });
}

void CMeasurementParameters::OnTriggerModeChanged()
{
    if (m_triggerMode == CTrigger::IMMEDIATE)
        OnImmediateAcquisitionRateChanged();
}
