// SPDX-License-Identifier: GPL-3.0-or-later
// The timer, the table and the orders of signals; axes and what is drawn have tests of their own.
#include "MetaObjectTable.h"
#include "QuietChart.h"

#include <QAbstractItemModelTester>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <cfloat>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>

using namespace MetaObjectTable;

class tst_CChart2DFieldsData : public QObject
{
    Q_OBJECT

private slots:
    void surface();
    void virtualFunctionsInOrder();
    void constructedValues();
    void everyWriteIsTold();
    void modelOfTheTable();
    void singleShotAndRatesMoveTheWindow();
    void timerRedrawsOnlyWhenNeeded();
    void updatePlotOrder();
    void lengthIsToldAfterTheReset();
    void visibilityDrawsOnce();
    void recomputeFullFilter();
    void clearDataOrder();
    void clearDataWhileDrawing();
    void modelTesterStaysContent();
    void modelTesterStandsClearData();
    void parametersMayDieFirst();

private:
    CMeasurementParameters m_parameters;
};

void tst_CChart2DFieldsData::surface()
{
    const QMetaObject& meta = CChart2DFieldsData::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(meta, {{"MeasureResultCount", "qulonglong", ReadWrite},
                                                  {"MeasureResultMinX", "double", ReadWrite},
                                                  {"MeasureResultMaxX", "double", ReadWrite},
                                                  {"MinDeltaAxisX", "double", ReadWrite},
                                                  {"XmaxDate", "QString", ReadWrite},
                                                  {"XminDate", "QString", ReadWrite},
                                                  {"XmaxTime", "QString", ReadWrite},
                                                  {"XminTime", "QString", ReadWrite},
                                                  {"IntensityFieldCount", "int", Constant},
                                                  {"NbPointsAxeX", "int", ReadWrite},
                                                  {"DownsampledSignalLength", "int", ReadWrite},
                                                  {"XTickCount", "int", ReadWrite},
                                                  {"YTickCount", "int", ReadWrite},
                                                  {"NumberValidPoints", "int", ReadWrite}}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(meta, QMetaMethod::Method,
                       {"refreshLegendData(double,double)", "setComponantVisibility(int,bool,bool)",
                        "setComponantVisibility(int,bool)", "resetAxisXDelta(bool)", "resetAxisXDelta()",
                        "resetAxisYDelta()", "refreshYminYmax(double,double)", "refreshYmin(double)",
                        "refreshYmax(double)"}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(meta, QMetaMethod::Slot,
                       {"RecomputeFullFilter()", "OnMeasurementParametersRateChanged()", "UpdatePlot()"}));
    QVERIFY(meta.indexOfSignal("clearCharts()") >= meta.methodOffset());
    QVERIFY(meta.inherits(&CChart2D::staticMetaObject));
}

#ifdef __GXX_ABI_VERSION
namespace {

/// Where a virtual function stands in the table of its class: the first word of a pointer to it.
template <class Function> std::ptrdiff_t placeInTable(Function function)
{
    std::ptrdiff_t words[2] = {};
    static_assert(sizeof(words) == sizeof(function), "not a pointer to a member function");
    std::memcpy(words, &function, sizeof(words));
    return words[0];
}

} // namespace
#endif

void tst_CChart2DFieldsData::virtualFunctionsInOrder()
{
#ifdef __GXX_ABI_VERSION
    const std::ptrdiff_t step = sizeof(void*);
    const std::ptrdiff_t first = placeInTable(&CChart2DFieldsData::refreshLegendData);
    QCOMPARE(placeInTable(&CChart2DFieldsData::resetAxisXDelta), first + step);
    QCOMPARE(placeInTable(&CChart2DFieldsData::resetAxisYDelta), first + 2 * step);
    QCOMPARE(placeInTable(&CChart2DFieldsData::UpdateAxisX), first + 3 * step);
    QCOMPARE(placeInTable(&CChart2DFieldsData::UpdateTimeLabels), first + 4 * step);
    QCOMPARE(placeInTable(&CChart2DFieldsData::UpdateDownsampling), first + 5 * step);
    QCOMPARE(placeInTable(&CChart2DFieldsData::ComputeDeltaX), first + 6 * step);
    QCOMPARE(placeInTable(&CChart2DFieldsData::UpdateFilter), first + 7 * step);
    QCOMPARE(placeInTable(&CChart2DFieldsData::ResetFilter), first + 8 * step);
    // Nothing before them: they follow those of the table model.
    QCOMPARE(first, placeInTable(&QAbstractItemModel::revert) + step);
#else
    QSKIP("The order is that of another compiler's tables");
#endif
}

void tst_CChart2DFieldsData::constructedValues()
{
    const PlainChart chart(&m_parameters);
    QCOMPARE(chart.MeasureResultCount(), qulonglong{0});
    QCOMPARE(chart.MeasureResultMinX(), 0.0);
    QCOMPARE(chart.MeasureResultMaxX(), 1.0);
    QCOMPARE(chart.MinDeltaAxisX(), 0.1);
    QCOMPARE(chart.XmaxDate() + chart.XminDate() + chart.XmaxTime() + chart.XminTime(), QString());
    QCOMPARE(chart.IntensityFieldCount(), 7);
    QCOMPARE(chart.NbPointsAxeX(), 401);
    QCOMPARE(chart.DownsampledSignalLength(), 0);
    QCOMPARE(chart.XTickCount(), 3);
    QCOMPARE(chart.YTickCount(), 11);
    QCOMPARE(chart.NumberValidPoints(), 0);
    QVERIFY(timerOf(chart)->isActive());
    QCOMPARE(timerOf(chart)->interval(), 20);
    QVERIFY(!timerOf(chart)->isSingleShot());
}

void tst_CChart2DFieldsData::everyWriteIsTold()
{
    QuietChart chart(&m_parameters);
    const QMetaObject& meta = CChart2DFieldsData::staticMetaObject;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        if (property.isConstant())
            continue;
        QSignalSpy spy(&chart, property.notifySignal());
        QVariant value = property.type() == QVariant::String ? QVariant(QStringLiteral("text")) : QVariant(5);
        QVERIFY(value.convert(static_cast<int>(property.type())));
        QVERIFY2(property.write(&chart, value) && property.write(&chart, value), property.name());
        QCOMPARE(property.read(&chart), value);
        QVERIFY2(spy.count() == 2, property.name());
        QCOMPARE(spy.last().first(), value);
    }
}

void tst_CChart2DFieldsData::modelOfTheTable()
{
    QuietChart chart(&m_parameters);
    chart.add(ramp(5, 0.1));
    chart.showAll();
    chart.UpdateDownsampling();
    QCOMPARE(chart.rowCount(), 5);
    QCOMPARE(chart.columnCount(), 8);
    QCOMPARE(chart.rowCount(chart.index(0, 0)), 0);
    QCOMPARE(chart.columnCount(chart.index(0, 0)), 0);
    const QVariant x = chart.data(chart.index(2, 0));
    const QVariant y = chart.data(chart.index(2, 1));
    QCOMPARE(x.userType(), static_cast<int>(QMetaType::Double));
    QCOMPARE(y.userType(), static_cast<int>(QMetaType::Float));
    QVERIFY(std::abs(x.toDouble() - 0.2) < 1e-6);
    QCOMPARE(y.toFloat(), 2.0F);
    for (const int role : {int(Qt::EditRole), int(Qt::ToolTipRole), Qt::UserRole + 1})
        QVERIFY(!chart.data(chart.index(2, 1), role).isValid());
    QVERIFY(!chart.data({}).isValid());
    QVERIFY(!chart.data(chart.index(5, 0)).isValid());
    QVERIFY(!chart.data(chart.index(0, 8)).isValid());
    // An index that was good when it was made
    const QModelIndex last = chart.index(4, 3);
    chart.SetDownsampledSignalLength(4);
    QVERIFY(!chart.data(last).isValid());
    // A length that somebody writes does not lead outside the table
    chart.SetDownsampledSignalLength(1000);
    QVERIFY(!chart.data(chart.index(999, 0)).isValid());
}

void tst_CChart2DFieldsData::singleShotAndRatesMoveTheWindow()
{
    QuietChart chart(&m_parameters);
    QSignalSpy spy(&chart, &CChart2D::refreshLimitSliderX);
    QTRY_COMPARE(spy.count(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(spy.count(), 1);
    chart.add(ramp(300, 0.1));
    chart.SetXmin(0.0);
    chart.SetXmax(25.0);
    m_parameters.SetTriggerMode(CTrigger::IMMEDIATE);
    spy.clear();
    m_parameters.SetAcquisitionRate(m_parameters.AcquisitionRate() + 10.0);
    QVERIFY(spy.count() > 0);
    QCOMPARE(chart.Xmin(), 15.0);
    spy.clear();
    m_parameters.SetDisplayRate(m_parameters.DisplayRate() + 1.0);
    QVERIFY(spy.count() > 0);
}

void tst_CChart2DFieldsData::timerRedrawsOnlyWhenNeeded()
{
    PlainChart chart(&m_parameters);
    QSignalSpy resets(&chart, &QAbstractItemModel::modelReset);
    QTest::qWait(100);
    QCOMPARE(resets.count(), 0);
    chart.add(ramp(3, 0.1));
    QTRY_COMPARE(resets.count(), 1);
    QTest::qWait(100);
    QCOMPARE(resets.count(), 1);
    chart.SetXmin(0.05);
    QTRY_COMPARE(resets.count(), 2);
    chart.SetXmax(0.15);
    QTRY_COMPARE(resets.count(), 3);
    QTest::qWait(100);
    QCOMPARE(resets.count(), 3);
    // A moved window is drawn as it is: only new data scroll
    QCOMPARE(chart.Xmin(), 0.05);
    QCOMPARE(chart.Xmax(), 0.15);
}

void tst_CChart2DFieldsData::updatePlotOrder()
{
    QuietChart chart(&m_parameters);
    chart.add(ramp(21, 1.0));
    chart.SetXmax(15.0);
    SignalLog log(&chart);
    chart.UpdatePlot();
    QCOMPARE(log.lines.first(), QStringLiteral("about to reset"));
    const int reset = log.lines.indexOf(QStringLiteral("reset"));
    QCOMPARE(log.lines.mid(1, 2), QStringList({QStringLiteral("Xmin 5"), QStringLiteral("Xmax 20.1")}));
    for (const char* name :
         {"XminDate", "XminTime", "XmaxDate", "XmaxTime", "FirstDataInit", "Ymin", "Ymax"}) {
        const int at = log.lines.indexOf(QRegularExpression(QLatin1String(name) + QStringLiteral(" .*")));
        QVERIFY2(at > 0 && at < reset, name);
    }
    QCOMPARE(log.lines.count(QStringLiteral("reset")), 1);
    log.lines.clear();
    chart.UpdatePlot();
    QCOMPARE(log.lines, QStringList());
}

/// The view's mappers read the table whenever the length is told, so it is told when the table is whole.
void tst_CChart2DFieldsData::lengthIsToldAfterTheReset()
{
    QuietChart chart(&m_parameters);
    chart.add(ramp(21, 1.0));
    SignalLog log(&chart);
    chart.UpdatePlot();
    QCOMPARE(log.lines.mid(log.lines.size() - 2),
             QStringList({QStringLiteral("reset"), QStringLiteral("DownsampledSignalLength 21")}));
    log.lines.clear();
    chart.RecomputeFullFilter();
    QCOMPARE(log.lines.mid(log.lines.size() - 2),
             QStringList({QStringLiteral("reset"), QStringLiteral("DownsampledSignalLength 21")}));
    log.lines.clear();
    chart.UpdateDownsampling();
    QCOMPARE(log.lines.count(QStringLiteral("DownsampledSignalLength 21")), 1);
}

void tst_CChart2DFieldsData::visibilityDrawsOnce()
{
    QuietChart chart(&m_parameters);
    chart.add(ramp(5, 0.1));
    chart.showAll();
    QSignalSpy spy(&chart, &CChart2DFieldsData::DownsampledSignalLengthChanged);
    for (int i = 0; i < 7; ++i)
        chart.setComponantVisibility(i, true, i + 1 >= 7);
    QCOMPARE(spy.count(), 1);
    QVERIFY(QMetaObject::invokeMethod(&chart, "setComponantVisibility", Q_ARG(int, 0), Q_ARG(bool, false)));
    QCOMPARE(spy.count(), 2);
}

void tst_CChart2DFieldsData::recomputeFullFilter()
{
    class Filtering : public PlainChart
    {
    public:
        using PlainChart::PlainChart;
        QStringList calls;
        void ResetFilter() override
        {
            calls.append(QStringLiteral("reset %1").arg(history().Filtered().size()));
        }
        void UpdateFilter() override
        {
            calls.append(QStringLiteral("filter"));
            PlainChart::UpdateFilter();
        }
        void UpdateDownsampling() override
        {
            calls.append(QStringLiteral("draw %1").arg(history().Filtered().size()));
            PlainChart::UpdateDownsampling();
        }
    } chart(&m_parameters);
    chart.add(ramp(5, 0.1));
    chart.calls.clear();
    QSignalSpy resets(&chart, &QAbstractItemModel::modelReset);
    chart.RecomputeFullFilter();
    QCOMPARE(chart.calls,
             QStringList({QStringLiteral("reset 0"), QStringLiteral("filter"), QStringLiteral("draw 5")}));
    QCOMPARE(resets.count(), 1);
}

void tst_CChart2DFieldsData::clearDataOrder()
{
    PlainChart chart(&m_parameters);
    chart.add(ramp(500, 0.1));
    chart.UpdatePlot();
    QVERIFY(chart.rowCount() > 0);
    chart.SetNumberValidPoints(3);
    bool timerRested = false;
    connect(&chart, &CChart2D::VisibleChanged, this, [&](bool visible) {
        if (!visible)
            timerRested = !timerOf(chart)->isActive();
    });
    SignalLog log(&chart);
    chart.ClearData();
    const QStringList expected{
        QStringLiteral("Visible false"),
        QStringLiteral("about to reset"),
        QStringLiteral("NumberValidPoints 0"),
        QStringLiteral("DownsampledSignalLength 0"),
        QStringLiteral("about to reset"),
        QStringLiteral("reset"),
        QStringLiteral("MeasureResultMinX 0"),
        QStringLiteral("MeasureResultMaxX 1"),
        QStringLiteral("MeasureResultCount 0"),
        QStringLiteral("MinDeltaAxisX 0.1"),
        QStringLiteral("XTickCount 10"),
        QStringLiteral("XminDate "),
        QStringLiteral("XminTime "),
        QStringLiteral("XmaxDate "),
        QStringLiteral("XmaxTime "),
        QStringLiteral("Ymin 0.001"),
        QStringLiteral("Ymax 10"),
        QStringLiteral("YminAllSignal 2.2250738585072014e-308"),
        QStringLiteral("YmaxAllSignal 1.7976931348623157e+308"),
        QStringLiteral("FirstDataInit false"),
        QStringLiteral("YminMaxReseted true"),
        QStringLiteral("Xmin 0"),
        QStringLiteral("Xmax 1"),
        QStringLiteral("refreshLimitSliderX"),
        QStringLiteral("YminMaxReseted true"),
        QStringLiteral("refreshLimitSliderY"),
        QStringLiteral("reset"),
        QStringLiteral("DownsampledSignalLength 0"),
        QStringLiteral("clearCharts"),
        QStringLiteral("Visible true"),
    };
    QCOMPARE(log.lines, expected);
    QVERIFY(timerRested);
    QVERIFY(timerOf(chart)->isActive());
    QCOMPARE(timerOf(chart)->interval(), 20);
    QVERIFY(chart.history().Raw().empty());
    QVERIFY(chart.history().Filtered().empty());
    QVERIFY(chart.history().TimeStamps().empty());
    QCOMPARE(chart.rowCount(), 0);
}

/// The next data start a new picture.
void tst_CChart2DFieldsData::clearDataWhileDrawing()
{
    PlainChart chart(&m_parameters);
    for (int round = 0; round < 3; ++round) {
        chart.add(ramp(30, 0.1, round * 1000.0));
        QTRY_COMPARE(chart.rowCount(), 30);
        QCOMPARE(xValue(chart, 0), 0.0);
        chart.ClearData();
        QCOMPARE(chart.rowCount(), 0);
        QTest::qWait(50);
        QCOMPARE(chart.rowCount(), 0);
        QCOMPARE(chart.Xmin(), 0.0);
        QCOMPARE(chart.Xmax(), 1.0);
        QCOMPARE(chart.Ymax(), 10.0);
    }
}

void tst_CChart2DFieldsData::modelTesterStaysContent()
{
    QuietChart chart(&m_parameters);
    const QAbstractItemModelTester tester(&chart, QAbstractItemModelTester::FailureReportingMode::QtTest);
    chart.UpdatePlot();
    for (int round = 0; round < 20; ++round) {
        chart.add(ramp(1 + round * 7, 0.05, round * 20.0));
        chart.UpdatePlot();
        chart.refreshLegendData(round * 2.0, round * 15.0);
        chart.UpdatePlot();
        chart.setComponantVisibility(round % 7, round % 2 == 0);
        chart.resetAxisYDelta();
        chart.RecomputeFullFilter();
    }
    QCOMPARE(chart.rowCount(), 401);
}

void tst_CChart2DFieldsData::modelTesterStandsClearData()
{
    QuietChart chart(&m_parameters);
    const QAbstractItemModelTester tester(&chart, QAbstractItemModelTester::FailureReportingMode::QtTest);
    chart.add(ramp(50, 0.05));
    chart.UpdatePlot();
    chart.ClearData();
    chart.add(ramp(5, 0.05));
    chart.UpdatePlot();
    QCOMPARE(chart.rowCount(), 5);
    chart.ClearData();
}

void tst_CChart2DFieldsData::parametersMayDieFirst()
{
    auto parameters = std::make_unique<CMeasurementParameters>();
    auto chart = std::make_unique<PlainChart>(parameters.get());
    chart->add(ramp(5, 0.1));
    parameters.reset();
    chart.reset();
    QCoreApplication::processEvents();
}

QTEST_GUILESS_MAIN(tst_CChart2DFieldsData)
#include "tst_CChart2DFieldsData.moc"
