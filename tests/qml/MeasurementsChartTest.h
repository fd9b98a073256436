// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CChart2DMeterData.h"

#include <QObject>
#include <QPoint>
#include <QQuickItem>
#include <QQuickView>
#include <QString>
#include <QValueAxis>
#include <QVector>
#include <QXYSeries>

#include <functional>
#include <memory>

class CInstrumentSupervisor;
class COperationMeasure;
class CPluginsManager;
class CSettings;
class QmlTestSetup;

/// The time plot's view on the real model, in a window of its own for each test function. Any QML warning
/// fails the function.
class MeasurementsChartTest : public QObject
{
    Q_OBJECT

public:
    MeasurementsChartTest();
    ~MeasurementsChartTest() override;

protected:
    enum class Model { Given, Missing };

    void load(Model model = Model::Given);
    /// With 1001 samples in 100 s, whose B rises from 0 to 9 over and over.
    void loadWithRamp();
    /// Samples whose B is the given value; B·B', Bx, By and Bz lie 1 to 4 above it, and dB is 0.5.
    void addSamples(int count, double periodS, const std::function<float(int)>& value);
    CChart2DMeterData& model() const { return *m_model; }
    QQuickView* view() const { return m_view.get(); }

    /// The item of that name, shown or not, or null.
    QQuickItem* item(const char* name) const;
    QQuickItem* chartView() const { return item("chartView"); }
    QtCharts::QValueAxis* axis(const char* name) const;
    static QObject* object(const QObject* of, const char* property)
    {
        return qvariant_cast<QObject*>(of->property(property));
    }
    QVector<QObject*> sprites() const;
    QtCharts::QXYSeries* series(int index) const;

    static QPoint middle(const QQuickItem* item);
    /// A point of the plot area, as fractions from its top left.
    QPoint inPlot(double x, double y) const;
    void click(const char* name);
    void drag(const QPoint& from, const QPoint& to);
    void wheel(int delta);
    /// Lets the model's timer, the bindings and the hand-over of points run.
    void settle();

private slots:
    void initTestCase();
    void init();
    void cleanup();

private:
    std::unique_ptr<CSettings> m_settings;
    std::unique_ptr<CPluginsManager> m_pluginsManager;
    std::unique_ptr<CInstrumentSupervisor> m_supervisor;
    std::unique_ptr<COperationMeasure> m_operation;
    std::unique_ptr<CChart2DMeterData> m_model;
    std::unique_ptr<QmlTestSetup> m_setup;
    std::unique_ptr<QQuickView> m_view;
    int m_warningsBefore = 0;
    qint64 m_nowNs = 0;
};

/// The tests of zooming and scrolling, which run after those of the drawing.
std::unique_ptr<QObject> makeMeasurementsChart2DZoomTest();
