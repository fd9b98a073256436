// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>

#include <limits>

/// The visible window of a 2-D plot, and the table of points that fills it. A derived class owns the data and
/// decides when the table is rebuilt. Main thread only.
///
/// Every write of a property emits its signal, whether the value differs or not: the view writes its wishes
/// here and takes back what the model makes of them, so it has to be told even when that is what was there.
class CChart2D : public QAbstractTableModel
{
    Q_OBJECT
    Q_PROPERTY(double Xmax READ Xmax WRITE SetXmax NOTIFY XmaxChanged)
    Q_PROPERTY(double Xmin READ Xmin WRITE SetXmin NOTIFY XminChanged)
    Q_PROPERTY(bool Visible READ Visible WRITE SetVisible NOTIFY VisibleChanged)
    Q_PROPERTY(bool AutoScaling READ AutoScaling WRITE SetAutoScaling NOTIFY AutoScalingChanged)
    Q_PROPERTY(double Ymax READ Ymax WRITE SetYmax NOTIFY YmaxChanged)
    Q_PROPERTY(double Ymin READ Ymin WRITE SetYmin NOTIFY YminChanged)
    Q_PROPERTY(double YmaxAllSignal READ YmaxAllSignal WRITE SetYmaxAllSignal NOTIFY YmaxAllSignalChanged)
    Q_PROPERTY(double YminAllSignal READ YminAllSignal WRITE SetYminAllSignal NOTIFY YminAllSignalChanged)
    Q_PROPERTY(bool FirstDataInit READ FirstDataInit WRITE SetFirstDataInit NOTIFY FirstDataInitChanged)
    Q_PROPERTY(bool YminMaxReseted READ YminMaxReseted WRITE SetYminMaxReseted NOTIFY YminMaxResetedChanged)

public:
    /// Marks of `YmaxAllSignal` and `YminAllSignal` before a value was seen.
    static constexpr double kYmaxUnset = std::numeric_limits<double>::max();
    static constexpr double kYminUnset = std::numeric_limits<double>::min();
    /// The Y axis without values.
    static constexpr double kDefaultYmin = 0.001;
    static constexpr double kDefaultYmax = 10.0;

    explicit CChart2D(QObject* parent = nullptr);

    double Xmax() const { return m_xmax; }                   ///< right end of the visible X window
    double Xmin() const { return m_xmin; }                   ///< left end of the visible X window
    bool Visible() const { return m_visible; }               ///< false while the model is being rebuilt
    bool AutoScaling() const { return m_autoScaling; }       ///< the Y axis follows the data
    double Ymax() const { return m_ymax; }                   ///< top of the Y axis
    double Ymin() const { return m_ymin; }                   ///< bottom of the Y axis
    double YmaxAllSignal() const { return m_ymaxAllSignal; } ///< largest Y seen, or kYmaxUnset
    double YminAllSignal() const { return m_yminAllSignal; } ///< smallest Y seen, or kYminUnset
    bool FirstDataInit() const { return m_firstDataInit; }   ///< data have been drawn
    bool YminMaxReseted() const { return m_yminMaxReseted; } ///< the next drawing recomputes the Y range

    void SetXmax(double value);
    void SetXmin(double value);
    void SetVisible(bool value);
    void SetAutoScaling(bool value);
    void SetYmax(double value);
    void SetYmin(double value);
    void SetYmaxAllSignal(double value);
    void SetYminAllSignal(double value);
    void SetFirstDataInit(bool value);
    void SetYminMaxReseted(bool value);

signals:
    void XmaxChanged(double value);
    void XminChanged(double value);
    void VisibleChanged(bool value);
    void AutoScalingChanged(bool value);
    void YmaxChanged(double value);
    void YminChanged(double value);
    void YmaxAllSignalChanged(double value);
    void YminAllSignalChanged(double value);
    void FirstDataInitChanged(bool value);
    void YminMaxResetedChanged(bool value);
    /// The view puts its range sliders back on the axes.
    void refreshLimitSliderX();
    void refreshLimitSliderY();

protected:
    /// Counts a value that is drawn in the range of everything seen.
    void WidenAllSignal(double value);

private:
    double m_xmax = 0.0;
    double m_xmin = 0.0;
    bool m_visible = true;
    bool m_autoScaling = true;
    double m_ymax = kDefaultYmax;
    double m_ymin = kDefaultYmin;
    double m_ymaxAllSignal = kYmaxUnset;
    double m_yminAllSignal = kYminUnset;
    bool m_firstDataInit = false;
    bool m_yminMaxReseted = true;
};
