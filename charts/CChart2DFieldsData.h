// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2D.h"
#include "CFieldsHistory.h"
#include "CFieldsTable.h"
#include "CMeasurementParameters.h"
#include "FieldSeries.h"

#include <QDateTime>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <array>
#include <limits>

/// A plot of the seven field series over time. It keeps the whole history and publishes a table of at most
/// `NbPointsAxeX` rows for the visible window: column 0 is X in seconds since the oldest result, columns 1 to
/// 7 are the series. A bucket of samples gives, for each series, the sample furthest from the row before, so
/// that no peak is lost. A timer rebuilds the table when data came or the window moved.
///
/// Derived classes say how results enter the history and how they are filtered.
class CChart2DFieldsData : public CChart2D
{
    Q_OBJECT
    Q_PROPERTY(qulonglong MeasureResultCount READ MeasureResultCount WRITE SetMeasureResultCount NOTIFY
                   MeasureResultCountChanged)
    Q_PROPERTY(double MeasureResultMinX READ MeasureResultMinX WRITE SetMeasureResultMinX NOTIFY
                   MeasureResultMinXChanged)
    Q_PROPERTY(double MeasureResultMaxX READ MeasureResultMaxX WRITE SetMeasureResultMaxX NOTIFY
                   MeasureResultMaxXChanged)
    Q_PROPERTY(double MinDeltaAxisX READ MinDeltaAxisX WRITE SetMinDeltaAxisX NOTIFY MinDeltaAxisXChanged)
    Q_PROPERTY(QString XmaxDate READ XmaxDate WRITE SetXmaxDate NOTIFY XmaxDateChanged)
    Q_PROPERTY(QString XminDate READ XminDate WRITE SetXminDate NOTIFY XminDateChanged)
    Q_PROPERTY(QString XmaxTime READ XmaxTime WRITE SetXmaxTime NOTIFY XmaxTimeChanged)
    Q_PROPERTY(QString XminTime READ XminTime WRITE SetXminTime NOTIFY XminTimeChanged)
    Q_PROPERTY(int IntensityFieldCount READ IntensityFieldCount CONSTANT)
    Q_PROPERTY(int NbPointsAxeX READ NbPointsAxeX WRITE SetNbPointsAxeX NOTIFY NbPointsAxeXChanged)
    Q_PROPERTY(int DownsampledSignalLength READ DownsampledSignalLength WRITE SetDownsampledSignalLength
                   NOTIFY DownsampledSignalLengthChanged)
    Q_PROPERTY(int XTickCount READ XTickCount WRITE SetXTickCount NOTIFY XTickCountChanged)
    Q_PROPERTY(int YTickCount READ YTickCount WRITE SetYTickCount NOTIFY YTickCountChanged)
    Q_PROPERTY(int NumberValidPoints READ NumberValidPoints WRITE SetNumberValidPoints NOTIFY
                   NumberValidPointsChanged)

public:
    /// `parameters` are those of the operation; their rates decide the window.
    explicit CChart2DFieldsData(CMeasurementParameters* parameters, QObject* parent = nullptr);
    ~CChart2DFieldsData() override;

    qulonglong MeasureResultCount() const { return m_measureResultCount; } ///< results in the history
    double MeasureResultMinX() const { return m_measureResultMinX; }       ///< lower limit of X
    double MeasureResultMaxX() const { return m_measureResultMaxX; }       ///< upper limit of X
    double MinDeltaAxisX() const { return m_minDeltaAxisX; } ///< spacing of results, smallest span of a zoom
    QString XmaxDate() const { return m_xmaxDate; }          ///< texts under the two ends of the X axis
    QString XminDate() const { return m_xminDate; }
    QString XmaxTime() const { return m_xmaxTime; }
    QString XminTime() const { return m_xminTime; }
    int IntensityFieldCount() const { return static_cast<int>(FieldSeries::Count); } ///< number of series
    int NbPointsAxeX() const { return m_nbPointsAxeX; } ///< most rows of the published table
    /// Rows now published; 0 or less when the window is empty or inverted.
    int DownsampledSignalLength() const { return m_downsampledSignalLength; }
    int XTickCount() const { return m_xTickCount; }
    int YTickCount() const { return m_yTickCount; }
    int NumberValidPoints() const { return m_numberValidPoints; }

    void SetMeasureResultCount(qulonglong value);
    void SetMeasureResultMinX(double value);
    void SetMeasureResultMaxX(double value);
    void SetMinDeltaAxisX(double value);
    void SetXmaxDate(const QString& value);
    void SetXminDate(const QString& value);
    void SetXmaxTime(const QString& value);
    void SetXminTime(const QString& value);
    void SetNbPointsAxeX(int value);
    void SetDownsampledSignalLength(int value);
    void SetXTickCount(int value);
    void SetYTickCount(int value);
    void SetNumberValidPoints(int value);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    /// Sets the window to these ends as far as there are results.
    Q_INVOKABLE virtual void refreshLegendData(double axeXMin, double axeXMax);
    /// Shows or hides one series; a hidden one does not count for the Y axis. Whoever sets several asks for
    /// the new drawing with the last one only.
    Q_INVOKABLE void setComponantVisibility(int index, bool visible, bool updateDownsample = true);
    /// Puts the window over everything, or its left end to 10 s before its right end.
    Q_INVOKABLE virtual void resetAxisXDelta(bool resetFullAxis = false);
    /// Makes the next drawing, which comes at once, choose the Y range anew.
    Q_INVOKABLE virtual void resetAxisYDelta();
    /// Puts the Y axis around a range, with ends on round ticks.
    Q_INVOKABLE void refreshYminYmax(double yMin, double yMax);
    Q_INVOKABLE void refreshYmin(double sliderValue);
    Q_INVOKABLE void refreshYmax(double sliderValue);

    /// Moves the live window of 10 s to result number `count` - 1.
    virtual void UpdateAxisX(unsigned count);
    virtual void UpdateTimeLabels();
    /// Rebuilds the published table and the Y axis from the visible window.
    virtual void UpdateDownsampling();
    /// Results of ten seconds.
    virtual unsigned ComputeDeltaX() = 0;
    /// Filters the raw results that are not yet in the filtered history.
    virtual void UpdateFilter();
    virtual void ResetFilter();
    /// Empties the model.
    virtual void ClearData();

public slots:
    void RecomputeFullFilter();
    void OnMeasurementParametersRateChanged();
    void UpdatePlot();

signals:
    void MeasureResultCountChanged(qulonglong value);
    void MeasureResultMinXChanged(double value);
    void MeasureResultMaxXChanged(double value);
    void MinDeltaAxisXChanged(double value);
    void XmaxDateChanged(const QString& value);
    void XminDateChanged(const QString& value);
    void XmaxTimeChanged(const QString& value);
    void XminTimeChanged(const QString& value);
    void NbPointsAxeXChanged(int value);
    void DownsampledSignalLengthChanged(int value);
    void XTickCountChanged(int value);
    void YTickCountChanged(int value);
    void NumberValidPointsChanged(int value);
    /// The model has been emptied.
    void clearCharts();

protected:
    CMeasurementParameters* Parameters() const { return m_parameters; }
    CFieldsHistory& History() { return m_history; }
    const CFieldsHistory& History() const { return m_history; }

    /// The range of the values drawn; without one the smallest is above the largest.
    struct Fold
    {
        double min = std::numeric_limits<float>::max();
        double max = std::numeric_limits<float>::lowest();

        void Add(float low, float high)
        {
            min = low < min ? low : min;
            max = high > max ? high : max;
        }
    };

    bool IsSeriesVisible(std::size_t series) const { return m_seriesVisible[series]; }
    /// Fills one row of the published table.
    void PublishRow(int row, double x, const FieldSeries::Values& values);
    /// Makes so many rows of the table visible.
    void PublishLength(int length);
    /// Lets the Y axis follow what was drawn.
    void UpdateAxisY(const Fold& fold);
    /// Fills the texts under the X axis with the ends of the window.
    void ShowTimes(const QDateTime& begin, const QDateTime& end);
    /// X of the second row that a lonely point is given, in seconds.
    static constexpr double kSecondRowX = 0.1;
    /// Width of the live window in seconds.
    static constexpr double kLiveWindowS = 10.0;

    /// While this is set, the next tick of the timer redraws.
    void SetDirty(bool dirty) { m_dirty = dirty; }

    /// Brackets of a load: the timer rests and the view hides.
    void BeginLoading();
    void EndLoading();

    /// Right end of a window that ends at result `index`.
    double WindowEnd(std::size_t index) const;

private:
    void BeginReset();
    void EndReset();
    void PublishSingleResult(Fold& fold);
    bool PublishWindow(Fold& fold);
    void FoldSamples(Fold& fold, const FieldSeries::Values& low, const FieldSeries::Values& high,
                     FieldSeries::Iterator first, const FieldSeries::Iterator& last);

    qulonglong m_measureResultCount = 0;
    double m_measureResultMinX = 0.0;
    double m_measureResultMaxX = 1.0;
    double m_minDeltaAxisX = 0.1;
    QString m_xmaxDate;
    QString m_xminDate;
    QString m_xmaxTime;
    QString m_xminTime;
    int m_nbPointsAxeX = 401;
    int m_downsampledSignalLength = 0;
    int m_xTickCount = 3;
    int m_yTickCount = 11;
    int m_numberValidPoints = 0;

    CFieldsHistory m_history;
    bool m_dirty = false;
    CFieldsTable m_table;
    std::array<bool, FieldSeries::Count> m_seriesVisible{};
    double m_drawnXmin = 0.0;
    double m_drawnXmax = 0.0;
    int m_resetDepth = 0;
    bool m_lengthSignalDue = false;
    QTimer* m_timer;
    QPointer<CMeasurementParameters> m_parameters;
};
