// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFrequencyTableData.h"

#include "AlarmMessage.h"
#include "COperationMeasure.h"
#include "EnumTexts.h"
#include "Property.h"
#include "SpectralAnalysis.h"

#include <algorithm>

namespace {

constexpr int kBandColumnCount = 7;

QString frequencyText(double frequency)
{
    constexpr int kDigits = 6;
    return QString::number(frequency, 'g', kDigits);
}

} // namespace

CFrequencyTableData::CFrequencyTableData(COperationMeasure* operation, CUserNotifier* notifier,
                                         QObject* parent)
    : QAbstractTableModel(parent), m_operation(operation), m_notifier(notifier)
{
}

void CFrequencyTableData::SetFlagNotification(bool value)
{
    storeAndEmitOnChange(this, m_flagNotification, value, &CFrequencyTableData::FlagNotificationChanged);
}

QHash<int, QByteArray> CFrequencyTableData::roleNames() const
{
    return {{FrequencyBandRole, "FrequencyBand"},
            {BRole, "B"},
            {BBprimeRole, "BBprime"},
            {BxRole, "Bx"},
            {ByRole, "By"},
            {BzRole, "Bz"},
            {ExposureLimitRole, "ExposureLimit"}};
}

int CFrequencyTableData::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rowCount;
}

int CFrequencyTableData::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : kBandColumnCount;
}

QVariant CFrequencyTableData::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_rowCount ||
        m_operation->RecordingManager()->DataSet()->MeasureBlocks()->empty())
        return {};
    if (role == FrequencyBandRole)
        return BandText(index.row());
    if (role == ExposureLimitRole)
        return ExposureLimitOf(index.row());
    if (role < BRole || role > BzRole)
        return {};
    return m_figures[static_cast<std::size_t>(role - BRole)][static_cast<std::size_t>(index.row())];
}

bool CFrequencyTableData::CanUpdate() const
{
    constexpr int kFewestResults = 2;
    const QSharedPointer<CMeasureBlock> block = BlockToShow();
    if (!block)
        return true;
    float previous = 0.0F;
    for (const float frequency : UpperFrequencies()) {
        if (!(frequency > previous))
            return false;
        previous = frequency;
    }
    return block->Results.size() >= kFewestResults;
}

void CFrequencyTableData::UpdateTable(int figureOfMeritIndex)
{
    Clear();
    const QSharedPointer<CMeasureBlock> block = BlockToShow();
    if (!block)
        return;
    ComputeFigures(*block, figureOfMeritIndex == 1 || figureOfMeritIndex == 2 ? figureOfMeritIndex : 0);
    CheckLimits();
    const int count = static_cast<int>(m_figures.front().size());
    beginInsertRows(QModelIndex(), 0, count - 1);
    m_rowCount = count;
    endInsertRows();
}

void CFrequencyTableData::Clear()
{
    const bool hadRows = m_rowCount > 0;
    if (hadRows)
        beginRemoveRows(QModelIndex(), 0, m_rowCount - 1);
    m_rowCount = 0;
    for (std::vector<float>& figures : m_figures)
        figures.clear();
    if (hadRows)
        endRemoveRows();
}

const CMeasurementParameters& CFrequencyTableData::Parameters() const
{
    return *m_operation->RecordingManager()->DataSet()->MeasurementParameters();
}

/// The newest block, or the one that is replayed or looked at. Null for an empty dataset.
QSharedPointer<CMeasureBlock> CFrequencyTableData::BlockToShow() const
{
    const CRecordingManagerMeasure& manager = *m_operation->RecordingManager();
    const auto& blocks = *manager.DataSet()->MeasureBlocks();
    if (blocks.empty())
        return {};
    const bool isLookedAt = manager.IsPlayingBack() || manager.IsDataLoaded() ||
                            (!manager.IsRecording() && manager.IsIdleWithData());
    const auto position = static_cast<std::size_t>(manager.ReplayIndex());
    return isLookedAt && manager.ReplayIndex() >= 0 && position < blocks.size() ? blocks[position]
                                                                                : blocks.back();
}

std::vector<float> CFrequencyTableData::UpperFrequencies() const
{
    const auto& ranges = m_operation->LimitsFile()->Ranges();
    if (ranges.isEmpty())
        return {static_cast<float>(Parameters().AcquisitionRate() * 0.5)};
    std::vector<float> frequencies;
    for (const QSharedPointer<FrequencyRange>& range : ranges)
        frequencies.push_back(static_cast<float>(range->UpperFrequencyLimitValue()));
    return frequencies;
}

void CFrequencyTableData::ComputeFigures(const CMeasureBlock& block, int figureOfMeritIndex)
{
    const std::vector<float> frequencies = UpperFrequencies();
    const auto rate = static_cast<float>(Parameters().AcquisitionRate());
    for (std::size_t i = 0; i < kSeriesCount; ++i)
        ComputeACFigureOfMeritPerBand(FieldSeries::signalOf(block, static_cast<FieldSeries::Index>(i)),
                                      frequencies, figureOfMeritIndex, m_figures[i], rate);
}

/// The flag ends false only if all bands pass. What is not a number passes.
void CFrequencyTableData::CheckLimits()
{
    const CAlarmParametersAcAnalysis& alarm =
        *m_operation->OperationParameters()->AlarmParametersAcAnalysis();
    if (alarm.State() == CAlarm::Off || alarm.Axis() < CAxis::B || alarm.Axis() > CAxis::Bz)
        return;
    const std::vector<float>& figures = m_figures[static_cast<std::size_t>(alarm.Axis() - CAxis::B)];
    const auto& ranges = m_operation->LimitsFile()->Ranges();
    const int count = std::min(static_cast<int>(figures.size()), ranges.size());
    double lowerLimit = 0.0;
    for (int band = 0; band < count; ++band) {
        const auto figure = static_cast<double>(figures[static_cast<std::size_t>(band)]);
        const double limit = ranges[band]->ExposureLimitValue();
        const bool isViolated = figure > limit;
        SetFlagNotification(isViolated);
        if (isViolated) {
            Report(lowerLimit, figure, limit);
            return;
        }
        lowerLimit = limit;
    }
}

void CFrequencyTableData::Report(double lowerLimit, double value, double limit) const
{
    const CAlarmParametersAcAnalysis& alarm =
        *m_operation->OperationParameters()->AlarmParametersAcAnalysis();
    const QString axis = AxisToDisplayText(alarm.Axis());
    giveAlarm(*m_notifier, alarm.State(), tr("%1 is out-of-limit").arg(axis),
              tr("Minimum = %1\n%2 = %3\nMaximum = %4")
                  .arg(alarmNumberText(lowerLimit), axis, alarmNumberText(value), alarmNumberText(limit)));
}

/// The limits can be read anew while a row of the old ones is still on screen.
QString CFrequencyTableData::BandText(int row) const
{
    const auto& ranges = m_operation->LimitsFile()->Ranges();
    if (ranges.isEmpty())
        return QStringLiteral("0-") + frequencyText(Parameters().AcquisitionRate() * 0.5);
    if (row >= ranges.size())
        return {};
    const QString lower =
        row == 0 ? QStringLiteral("0") : frequencyText(ranges[row - 1]->UpperFrequencyLimitValue());
    return lower + QLatin1Char('-') + frequencyText(ranges[row]->UpperFrequencyLimitValue());
}

QVariant CFrequencyTableData::ExposureLimitOf(int row) const
{
    const auto& ranges = m_operation->LimitsFile()->Ranges();
    if (ranges.isEmpty())
        return QStringLiteral("0");
    return row < ranges.size() ? QVariant(ranges[row]->ExposureLimitValue()) : QVariant();
}
