// SPDX-License-Identifier: GPL-3.0-or-later
#include "CChart2DFieldsData.h"

#include "CFieldIntensityResult.h"
#include "NiceRange.h"
#include "Property.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace {

constexpr int kRefreshIntervalMs = 20;
constexpr int kDefaultYTickCount = 11;

} // namespace

CChart2DFieldsData::CChart2DFieldsData(CMeasurementParameters* parameters, QObject* parent)
    : CChart2D(parent), m_table(m_nbPointsAxeX), m_timer(new QTimer(this)), m_parameters(parameters)
{
    m_seriesVisible.fill(true);
    connect(m_parameters, &CMeasurementParameters::AcquisitionRateChanged, this,
            &CChart2DFieldsData::OnMeasurementParametersRateChanged);
    connect(m_parameters, &CMeasurementParameters::DisplayRateChanged, this,
            &CChart2DFieldsData::OnMeasurementParametersRateChanged);
    connect(m_timer, &QTimer::timeout, this, &CChart2DFieldsData::UpdatePlot);
    m_timer->start(kRefreshIntervalMs);
    QTimer::singleShot(0, this, &CChart2DFieldsData::OnMeasurementParametersRateChanged);
}

CChart2DFieldsData::~CChart2DFieldsData()
{
    m_timer->stop();
    m_timer->disconnect(this);
    if (m_parameters)
        m_parameters->disconnect(this);
    m_timer->deleteLater();
}

void CChart2DFieldsData::SetMeasureResultCount(qulonglong value)
{
    storeAndEmit(this, m_measureResultCount, value, &CChart2DFieldsData::MeasureResultCountChanged);
}

void CChart2DFieldsData::SetMeasureResultMinX(double value)
{
    storeAndEmit(this, m_measureResultMinX, value, &CChart2DFieldsData::MeasureResultMinXChanged);
}

void CChart2DFieldsData::SetMeasureResultMaxX(double value)
{
    storeAndEmit(this, m_measureResultMaxX, value, &CChart2DFieldsData::MeasureResultMaxXChanged);
}

void CChart2DFieldsData::SetMinDeltaAxisX(double value)
{
    storeAndEmit(this, m_minDeltaAxisX, value, &CChart2DFieldsData::MinDeltaAxisXChanged);
}

void CChart2DFieldsData::SetXmaxDate(const QString& value)
{
    storeAndEmit(this, m_xmaxDate, value, &CChart2DFieldsData::XmaxDateChanged);
}

void CChart2DFieldsData::SetXminDate(const QString& value)
{
    storeAndEmit(this, m_xminDate, value, &CChart2DFieldsData::XminDateChanged);
}

void CChart2DFieldsData::SetXmaxTime(const QString& value)
{
    storeAndEmit(this, m_xmaxTime, value, &CChart2DFieldsData::XmaxTimeChanged);
}

void CChart2DFieldsData::SetXminTime(const QString& value)
{
    storeAndEmit(this, m_xminTime, value, &CChart2DFieldsData::XminTimeChanged);
}

void CChart2DFieldsData::SetNbPointsAxeX(int value)
{
    m_table.Reserve(value);
    storeAndEmit(this, m_nbPointsAxeX, value, &CChart2DFieldsData::NbPointsAxeXChanged);
}

void CChart2DFieldsData::SetDownsampledSignalLength(int value)
{
    storeAndEmit(this, m_downsampledSignalLength, value, &CChart2DFieldsData::DownsampledSignalLengthChanged);
}

void CChart2DFieldsData::SetXTickCount(int value)
{
    storeAndEmit(this, m_xTickCount, value, &CChart2DFieldsData::XTickCountChanged);
}

void CChart2DFieldsData::SetYTickCount(int value)
{
    storeAndEmit(this, m_yTickCount, value, &CChart2DFieldsData::YTickCountChanged);
}

void CChart2DFieldsData::SetNumberValidPoints(int value)
{
    storeAndEmit(this, m_numberValidPoints, value, &CChart2DFieldsData::NumberValidPointsChanged);
}

int CChart2DFieldsData::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_downsampledSignalLength;
}

int CChart2DFieldsData::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : IntensityFieldCount() + 1;
}

QVariant CChart2DFieldsData::data(const QModelIndex& index, int role) const
{
    if (role != Qt::DisplayRole || !index.isValid() || index.column() >= columnCount() ||
        index.row() >= std::min(m_downsampledSignalLength, m_table.Capacity()))
        return {};
    return m_table.Value(index.row(), index.column());
}

void CChart2DFieldsData::ClearData()
{
    m_timer->stop();
    SetVisible(false);
    BeginReset();
    SetNumberValidPoints(0);
    m_history.ClearRaw();
    SetDownsampledSignalLength(0);
    BeginReset();
    m_history.ClearFiltered();
    ResetFilter();
    UpdateFilter();
    UpdateDownsampling();
    EndReset();
    SetMeasureResultMinX(0.0);
    SetMeasureResultMaxX(1.0);
    SetMeasureResultCount(0);
    SetMinDeltaAxisX(0.1);
    SetXTickCount(10);
    SetXminDate({});
    SetXminTime({});
    SetXmaxDate({});
    SetXmaxTime({});
    SetYmin(kDefaultYmin);
    SetYmax(kDefaultYmax);
    SetYminAllSignal(kYminUnset);
    SetYmaxAllSignal(kYmaxUnset);
    SetFirstDataInit(false);
    SetYminMaxReseted(true);
    SetXmin(0.0);
    SetXmax(1.0);
    m_drawnXmin = 0.0;
    m_drawnXmax = 0.0;
    resetAxisXDelta(true);
    resetAxisYDelta();
    EndReset();
    emit clearCharts();
    SetVisible(true);
    m_timer->start();
}

void CChart2DFieldsData::refreshLegendData(double axeXMin, double axeXMax)
{
    const std::size_t count = m_history.Filtered().size();
    if (count < 2) {
        SetXmin(0.0);
        SetXmax(1.0);
        return;
    }
    SetXmax(std::min(axeXMax, m_measureResultMaxX));
    SetXmin(std::max(axeXMin, m_measureResultMinX));
    UpdateTimeLabels();
}

void CChart2DFieldsData::setComponantVisibility(int index, bool visible, bool updateDownsample)
{
    if (index >= 0 && index < IntensityFieldCount())
        m_seriesVisible[static_cast<std::size_t>(index)] = visible;
    if (updateDownsample)
        UpdateDownsampling();
}

void CChart2DFieldsData::resetAxisXDelta(bool resetFullAxis)
{
    const std::size_t count = m_history.TimeStamps().size();
    if (count > 0) {
        if (resetFullAxis) {
            SetXmin(m_measureResultMinX);
            SetXmax(WindowEnd(count - 1));
        } else {
            const double start = Xmax() - kLiveWindowS;
            SetXmin(start > 0.0 ? start : m_measureResultMinX);
        }
    }
    emit refreshLimitSliderX();
}

void CChart2DFieldsData::resetAxisYDelta()
{
    SetYminMaxReseted(true);
    UpdateDownsampling();
    emit refreshLimitSliderY();
}

void CChart2DFieldsData::refreshYminYmax(double yMin, double yMax)
{
    if (yMin == DBL_MIN || yMin == DBL_MAX || yMax == DBL_MIN || yMax == DBL_MAX)
        return;
    const NiceRange range = niceRange(yMin, yMax, m_yTickCount);
    if (range.tickCount != m_yTickCount)
        SetYTickCount(range.tickCount);
    SetYmin(range.min);
    SetYmax(range.max);
}

void CChart2DFieldsData::refreshYmin(double sliderValue)
{
    if (m_measureResultCount != 0)
        SetYmin(std::max(YminAllSignal(), sliderValue));
}

void CChart2DFieldsData::refreshYmax(double sliderValue)
{
    if (m_measureResultCount != 0)
        SetYmax(std::min(YmaxAllSignal(), sliderValue));
}

void CChart2DFieldsData::UpdateAxisX(unsigned count)
{
    if (m_history.Filtered().size() < 2) {
        SetXmin(0.0);
        SetXmax(1.0);
        return;
    }
    if (!m_history.TimeStamps().empty()) {
        const double start = Xmax() - kLiveWindowS;
        SetXmin(start > 0.0 ? start : m_measureResultMinX);
    }
    SetXmax(WindowEnd(count > 0 ? count - 1 : 0));
    UpdateTimeLabels();
}

void CChart2DFieldsData::UpdateTimeLabels()
{
    const int lower = m_history.LowerIndex(Xmin());
    const int upper = m_history.UpperIndex(Xmax());
    if (lower >= upper || upper >= static_cast<int>(m_history.Filtered().size()))
        return;
    // A filtered result has no date of its own.
    ShowTimes(m_history.Raw().at(static_cast<std::size_t>(lower))->Timestamp,
              m_history.Raw().at(static_cast<std::size_t>(upper))->Timestamp);
}

void CChart2DFieldsData::ShowTimes(const QDateTime& begin, const QDateTime& end)
{
    const QString dateFormat = QStringLiteral("yyyy.MM.dd");
    const QString timeFormat =
        std::abs(begin.msecsTo(end)) < 1000 ? QStringLiteral("HH:mm:ss.zzz") : QStringLiteral("HH:mm:ss");
    const auto assign = [this](const QString& stored, const QString& text,
                               void (CChart2DFieldsData::*set)(const QString&)) {
        if (stored != text)
            (this->*set)(text);
    };
    assign(m_xminDate, begin.toString(dateFormat), &CChart2DFieldsData::SetXminDate);
    assign(m_xminTime, begin.toString(timeFormat), &CChart2DFieldsData::SetXminTime);
    assign(m_xmaxDate, end.toString(dateFormat), &CChart2DFieldsData::SetXmaxDate);
    assign(m_xmaxTime, end.toString(timeFormat), &CChart2DFieldsData::SetXmaxTime);
}

void CChart2DFieldsData::UpdateDownsampling()
{
    Fold fold;
    if (m_history.Filtered().size() == 1)
        PublishSingleResult(fold);
    else if (!PublishWindow(fold))
        return;
    UpdateAxisY(fold);
}

void CChart2DFieldsData::UpdateFilter() {}

void CChart2DFieldsData::ResetFilter() {}

void CChart2DFieldsData::RecomputeFullFilter()
{
    BeginReset();
    m_history.ClearFiltered();
    ResetFilter();
    UpdateFilter();
    UpdateDownsampling();
    EndReset();
}

void CChart2DFieldsData::OnMeasurementParametersRateChanged()
{
    resetAxisXDelta(false);
}

void CChart2DFieldsData::UpdatePlot()
{
    if (m_drawnXmin == Xmin() && m_drawnXmax == Xmax() && !m_dirty)
        return;
    BeginReset();
    if (m_dirty)
        UpdateAxisX(static_cast<unsigned>(m_measureResultCount));
    UpdateDownsampling();
    EndReset();
    m_dirty = false;
    m_drawnXmin = Xmin();
    m_drawnXmax = Xmax();
}

void CChart2DFieldsData::BeginLoading()
{
    m_timer->stop();
    SetVisible(false);
}

void CChart2DFieldsData::EndLoading()
{
    SetVisible(true);
    m_timer->start();
}

double CChart2DFieldsData::WindowEnd(std::size_t index) const
{
    const double end = m_history.X(index) + m_minDeltaAxisX;
    return end > 0.5 && m_measureResultMaxX > 0.5 ? m_measureResultMaxX : end;
}

void CChart2DFieldsData::BeginReset()
{
    ++m_resetDepth;
    beginResetModel();
}

void CChart2DFieldsData::EndReset()
{
    endResetModel();
    if (--m_resetDepth > 0 || !m_lengthSignalDue)
        return;
    m_lengthSignalDue = false;
    emit DownsampledSignalLengthChanged(m_downsampledSignalLength);
}

/// A row past the agreed number takes memory of its own.
void CChart2DFieldsData::PublishRow(int row, double x, const FieldSeries::Values& values)
{
    m_table.Reserve(row + 1);
    m_table.SetRow(row, x, values);
}

/// A change of the length makes the view's mappers read the table anew, so within the brackets of a reset its
/// signal waits until the reset is over.
void CChart2DFieldsData::PublishLength(int length)
{
    if (m_resetDepth == 0) {
        SetDownsampledSignalLength(length);
        return;
    }
    m_downsampledSignalLength = length;
    m_lengthSignalDue = true;
}

/// A single point would not draw, so it becomes two.
void CChart2DFieldsData::PublishSingleResult(Fold& fold)
{
    const FieldSeries::Iterator only = m_history.Values().begin();
    PublishRow(0, 0.0, *only);
    PublishRow(1, kSecondRowX, *only);
    FoldSamples(fold, *only, *only, only, std::next(only));
    PublishLength(2);
    SetYminMaxReseted(true);
    SetFirstDataInit(true);
}

/// Returns false if the window lies past the history, so that the Y axis has to stay.
bool CChart2DFieldsData::PublishWindow(Fold& fold)
{
    const int upper = m_history.UpperIndex(Xmax());
    const int lower = m_history.LowerIndex(Xmin());
    const int span = upper - lower;
    const int length = span >= m_nbPointsAxeX ? m_nbPointsAxeX : span + 1;
    if (length < 1) {
        PublishLength(length);
        SetFirstDataInit(true);
        return true;
    }
    const int count = static_cast<int>(m_history.Filtered().size());
    if (lower >= count) {
        PublishLength(0);
        return false;
    }

    const FieldSeries::Iterator samples = m_history.Values().begin();
    FieldSeries::Values drawn = samples[lower];
    PublishRow(0, m_history.X(static_cast<std::size_t>(lower)), drawn);
    FoldSamples(fold, drawn, drawn, samples + lower, samples + lower + 1);

    const double step = std::max(1.0, static_cast<double>(span) / length);
    int previousEnd = lower;
    for (int row = 1; row < length; ++row) {
        const int end = lower + static_cast<int>(std::round(row * step));
        const int lastUsable = std::min(end, count - 1);
        // The sample at the end of a bucket is left to nobody, unless it is the only one.
        const FieldSeries::Iterator first = samples + std::min(previousEnd + 1, count - 1);
        const FieldSeries::Iterator last = std::max(std::next(first), samples + lastUsable);
        const FieldSeries::Bucket bucket = FieldSeries::visitBucket(first, last, drawn);
        FoldSamples(fold, bucket.low, bucket.high, first, last);
        drawn = bucket.furthest;
        PublishRow(row, m_history.X(static_cast<std::size_t>(lastUsable)), drawn);
        previousEnd = end;
    }
    PublishLength(length);
    SetFirstDataInit(true);
    return true;
}

/// Counts the samples of the visible series in the range drawn and in the range of everything seen. `low` and
/// `high` are the extremes of the samples, so that the samples are only read one by one when they widen the
/// latter.
void CChart2DFieldsData::FoldSamples(Fold& fold, const FieldSeries::Values& low,
                                     const FieldSeries::Values& high, FieldSeries::Iterator first,
                                     const FieldSeries::Iterator& last)
{
    bool widens = false;
    for (std::size_t i = 0; i < FieldSeries::Count; ++i) {
        if (!m_seriesVisible[i])
            continue;
        fold.Add(low[i], high[i]);
        widens = widens || low[i] < YminAllSignal() || high[i] > YmaxAllSignal() ||
                 YminAllSignal() == kYminUnset || YmaxAllSignal() == kYmaxUnset;
    }
    if (!widens)
        return;
    for (; first != last; ++first) {
        for (std::size_t i = 0; i < FieldSeries::Count; ++i) {
            if (m_seriesVisible[i])
                WidenAllSignal(static_cast<double>((*first)[i]));
        }
    }
}

void CChart2DFieldsData::UpdateAxisY(const Fold& fold)
{
    if (fold.min == FLT_MAX || fold.max == FLT_MIN) {
        SetYmin(kDefaultYmin);
        SetYmax(kDefaultYmax);
        if (m_yTickCount != kDefaultYTickCount)
            SetYTickCount(kDefaultYTickCount);
        SetYminMaxReseted(true);
        return;
    }
    if (!AutoScaling() && !YminMaxReseted())
        return;
    refreshYminYmax(fold.min, fold.max);
    if (YmaxAllSignal() < Ymax() || YmaxAllSignal() == kYmaxUnset)
        SetYmaxAllSignal(Ymax());
    if (Ymin() < YminAllSignal() || YminAllSignal() == kYminUnset)
        SetYminAllSignal(Ymin());
    SetYminMaxReseted(true);
    if (AutoScaling())
        return;
    SetYmin(YminAllSignal());
    SetYmax(YmaxAllSignal());
    if (m_downsampledSignalLength > 1)
        SetYminMaxReseted(false);
}
