// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFrequencyPeakListData.h"

#include "COperationMeasure.h"
#include "SpectralPeaks.h"

#include <QDebug>

#include <algorithm>

namespace {

constexpr int kPeakColumnCount = 4;

} // namespace

CFrequencyPeakListData::CFrequencyPeakListData(COperationMeasure* operation, QObject* parent)
    : QAbstractTableModel(parent), m_operation(operation)
{
}

QHash<int, QByteArray> CFrequencyPeakListData::roleNames() const
{
    return {{PeakRole, "Peak"},
            {AmplitudeRole, "Amplitude"},
            {FrequencyRole, "Frequency"},
            {ExposureLimitRole, "ExposureLimit"}};
}

int CFrequencyPeakListData::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_frequencies.size());
}

int CFrequencyPeakListData::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : kPeakColumnCount;
}

QVariant CFrequencyPeakListData::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount() ||
        m_operation->RecordingManager()->DataSet()->MeasureBlocks()->empty())
        return {};
    const auto peak = static_cast<std::size_t>(index.row());
    switch (role) {
    case PeakRole:
        return index.row() + 1;
    case AmplitudeRole:
        return m_amplitudes[peak];
    case FrequencyRole:
        return m_frequencies[peak];
    case ExposureLimitRole:
        return ExposureLimitAt(m_frequencies[peak]);
    default:
        return {};
    }
}

void CFrequencyPeakListData::UpdatePeaks(const std::vector<float>& spectrum, double frequencyResolution,
                                         double thresholdDb, double minimumFrequency)
{
    Clear();
    std::vector<float> frequencies;
    std::vector<float> amplitudes;
    if (!ComputeSpectralPeaks(spectrum, frequencies, amplitudes, static_cast<float>(frequencyResolution),
                              static_cast<float>(thresholdDb)))
        qWarning().noquote() << "Error with ComputeSpectralPeaks return false: ";
    const auto below =
        std::count_if(frequencies.begin(), frequencies.end(), [minimumFrequency](float frequency) {
            return static_cast<double>(frequency) < minimumFrequency;
        });
    frequencies.erase(frequencies.begin(), frequencies.begin() + below);
    amplitudes.erase(amplitudes.begin(), amplitudes.begin() + below);
    if (frequencies.empty())
        return;
    beginInsertRows(QModelIndex(), 0, static_cast<int>(frequencies.size()) - 1);
    m_frequencies.swap(frequencies);
    m_amplitudes.swap(amplitudes);
    endInsertRows();
}

void CFrequencyPeakListData::ReloadLimits()
{
    if (rowCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1), {ExposureLimitRole});
}

void CFrequencyPeakListData::Clear()
{
    const bool hadRows = rowCount() > 0;
    if (hadRows)
        beginRemoveRows(QModelIndex(), 0, rowCount() - 1);
    m_frequencies.clear();
    m_amplitudes.clear();
    if (hadRows)
        endRemoveRows();
}

double CFrequencyPeakListData::ExposureLimitAt(float frequency) const
{
    for (const QSharedPointer<FrequencyRange>& range : m_operation->LimitsFile()->Ranges()) {
        if (static_cast<double>(frequency) < range->UpperFrequencyLimitValue())
            return range->ExposureLimitValue();
    }
    return 0.0;
}
