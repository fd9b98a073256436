// SPDX-License-Identifier: GPL-3.0-or-later
#include "CChart2DSpectrumData.h"

#include "CFieldIntensityResult.h"
#include "COperationMeasure.h"
#include "FieldSeries.h"
#include "Property.h"
#include "SpectralAnalysis.h"

#include <QDebug>

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace {

constexpr double kStartYmin = 0.01;
/// Keeps a log axis valid before there are data.
constexpr float kStartValue = 1.0F;
constexpr double kRoomBelow = 0.2;
constexpr double kRoomAbove = 2.0;

/// Without samples for an index that is none of the five series that are measured.
std::vector<float> signalOf(const CMeasureBlock& block, int fieldIndex)
{
    if (fieldIndex < static_cast<int>(FieldSeries::B) || fieldIndex > static_cast<int>(FieldSeries::Bz))
        return {};
    return FieldSeries::signalOf(block, static_cast<FieldSeries::Index>(fieldIndex));
}

/// Converts a whole number of any size. What is not a number gives 0.
int toBin(double value)
{
    constexpr double kLimit = 1e9;
    return std::isnan(value) ? 0 : static_cast<int>(std::max(-kLimit, std::min(value, kLimit)));
}

} // namespace

/// The range of the values drawn.
struct CChart2DSpectrumData::Fold
{
    float min = FLT_MAX;
    float max = FLT_MIN;
};

CChart2DSpectrumData::CChart2DSpectrumData(COperationMeasure* operation, QObject* parent)
    : CChart2D(parent), m_operation(operation), m_xValues(m_nbPointsAxeX + 1, QVariant(0.0)),
      m_published(m_nbPointsAxeX + 1, kStartValue)
{
    SetYmin(kStartYmin);
    SetYmax(kDefaultYmax);
    SetYminAllSignal(kStartYmin);
    SetYmaxAllSignal(kDefaultYmax);
}

void CChart2DSpectrumData::SetMaxSpectrum(double value)
{
    storeAndEmit(this, m_maxSpectrum, value, &CChart2DSpectrumData::MaxSpectrumChanged);
}

void CChart2DSpectrumData::SetMinSpectrum(double value)
{
    storeAndEmit(this, m_minSpectrum, value, &CChart2DSpectrumData::MinSpectrumChanged);
}

void CChart2DSpectrumData::SetMaxFrequency(double value)
{
    storeAndEmit(this, m_maxFrequency, value, &CChart2DSpectrumData::MaxFrequencyChanged);
}

void CChart2DSpectrumData::SetMinFrequency(double value)
{
    storeAndEmit(this, m_minFrequency, value, &CChart2DSpectrumData::MinFrequencyChanged);
}

void CChart2DSpectrumData::SetNbPointsAxeX(int value)
{
    storeAndEmit(this, m_nbPointsAxeX, value, &CChart2DSpectrumData::NbPointsAxeXChanged);
}

void CChart2DSpectrumData::SetDownsampledSignalLength(int value)
{
    storeAndEmit(this, m_downsampledSignalLength, value,
                 &CChart2DSpectrumData::DownsampledSignalLengthChanged);
}

int CChart2DSpectrumData::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_spectrum.size());
}

int CChart2DSpectrumData::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 2;
}

QVariant CChart2DSpectrumData::data(const QModelIndex& index, int role) const
{
    if (role != Qt::DisplayRole || !index.isValid() || index.column() >= columnCount() ||
        index.row() >= std::min(m_downsampledSignalLength, m_published.size()))
        return {};
    return index.column() == 0 ? m_xValues[index.row()] : QVariant(m_published[index.row()]);
}

void CChart2DSpectrumData::UpdateSpectrum(const QSharedPointer<CMeasureBlock>& block, int fieldIndex)
{
    if (block->Results.isEmpty())
        return;
    SetVisible(false);
    m_spectrum.clear();
    if (!ComputeSpectrum(signalOf(*block, fieldIndex), m_spectrum))
        qWarning().noquote() << "Error with ComputeSpectrum: ";
    SetMinFrequency(Parameters().FrequencyMin());
    SetMaxFrequency(Parameters().FrequencyMax());
    SetXmin(m_minFrequency);
    SetXmax(m_maxFrequency);
    Redraw();
    SetVisible(true);
}

void CChart2DSpectrumData::Clear()
{
    beginResetModel();
    m_spectrum.clear();
    endResetModel();
    const LimitsXmlFile& limits = *m_operation->LimitsFile();
    const bool hasLimits = m_operation->LimitsFileLoaded();
    SetYmin(hasLimits ? limits.LowestExposure() : kDefaultYmin);
    SetYmax(hasLimits ? limits.HighestExposure() : kDefaultYmax);
}

void CChart2DSpectrumData::ResetAxisX()
{
    SetXmin(Parameters().FrequencyMin());
    SetXmax(Parameters().FrequencyMax());
    UpdateYRange();
}

void CChart2DSpectrumData::refreshAxisX(int axeXMin, int axeXMax)
{
    SetXmax(std::min(m_maxFrequency, static_cast<double>(axeXMax)));
    SetXmin(std::max(m_minFrequency, static_cast<double>(axeXMin)));
    Redraw();
}

const CMeasurementParameters& CChart2DSpectrumData::Parameters() const
{
    return *m_operation->RecordingManager()->DataSet()->MeasurementParameters();
}

/// The view's mapper reads the table whenever the length is told, so it is told when the table is whole.
void CChart2DSpectrumData::Redraw()
{
    beginResetModel();
    const bool isLengthDue = UpdateDownsampling();
    UpdateYRange();
    endResetModel();
    if (isLengthDue)
        emit DownsampledSignalLengthChanged(m_downsampledSignalLength);
}

/// Returns whether the length was stored, so that its signal is due.
bool CChart2DSpectrumData::UpdateDownsampling()
{
    const double resolution = Parameters().FrequencyResolution();
    if (!(resolution > 0.0))
        return false;
    const int rows = static_cast<int>(m_spectrum.size());
    const int first = std::max(0, toBin(std::floor(Xmin() / resolution)));
    const int last = std::min(toBin(std::ceil(Xmax() / resolution)), rows - 1);
    const int span = last - first;
    m_downsampledSignalLength = span > m_nbPointsAxeX ? m_nbPointsAxeX : span + 1;
    if (first < rows)
        PublishRows(first, span, resolution);
    return true;
}

/// Publishes the window of `span` bins from bin `first` on. The bins of each further row begin where those of
/// the row before ended, and its X is the end of its own, so that the first bin counts in two rows.
void CChart2DSpectrumData::PublishRows(int first, int span, double resolution)
{
    Fold fold;
    const int length = m_downsampledSignalLength;
    if (length > m_published.size()) {
        m_published.resize(length);
        m_xValues.resize(length);
    }
    if (length > 0) {
        m_xValues[0] = first * resolution;
        m_published[0] = VisitBins(0.0F, first, first, fold);
    }
    const double step = length > 0 ? static_cast<double>(span) / length : 1.0;
    int begin = first;
    for (int row = 1; row < length; ++row) {
        const int end = std::min(toBin(std::ceil(row * step)) + first, rowCount());
        m_xValues[row] = end * resolution;
        m_published[row] = VisitBins(m_published[row - 1], begin, end, fold);
        begin = end;
    }
    m_maxSpectrum = static_cast<double>(fold.max);
    m_minSpectrum = static_cast<double>(fold.min);
}

/// The bin from `begin` up to `end`, one at least, that is furthest from what was drawn before.
float CChart2DSpectrumData::VisitBins(float drawn, int begin, int end, Fold& fold)
{
    float furthest = m_spectrum[static_cast<std::size_t>(begin)];
    float distance = 0.0F;
    int bin = begin;
    do {
        const float amplitude = m_spectrum[static_cast<std::size_t>(bin)];
        const float difference = std::fabs(drawn - amplitude);
        if (difference > distance) {
            distance = difference;
            furthest = amplitude;
        }
        fold.min = std::min(fold.min, amplitude);
        fold.max = std::max(fold.max, amplitude);
        WidenAllSignal(static_cast<double>(amplitude));
    } while (++bin < end);
    return furthest;
}

/// Spectrum and limits are both in view, as far as a log axis can show them.
void CChart2DSpectrumData::UpdateYRange()
{
    double bottom = m_minSpectrum;
    double top = m_maxSpectrum;
    if (m_operation->LimitsFileLoaded()) {
        const double lowest = m_operation->LimitsFile()->LowestExposure();
        const double highest = m_operation->LimitsFile()->HighestExposure();
        if (std::max(m_maxSpectrum, highest) > 0.0 && !(m_maxSpectrum > highest))
            top = highest;
        if (std::min(m_minSpectrum, lowest) > 0.0 && !(m_minSpectrum < lowest))
            bottom = lowest;
    }
    SetYmin(bottom * kRoomBelow);
    SetYmax(top * kRoomAbove);
}
