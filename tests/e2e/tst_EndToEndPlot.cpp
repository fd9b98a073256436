// SPDX-License-Identifier: GPL-3.0-or-later
// The time plot of the meter page, live, at rest, after a load and in a replay.
#include "CApplication.h"
#include "EndToEndTest.h"
#include "PlotDriver.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QStyleHints>
#include <QTest>
#include <QTime>
#include <QTouchDevice>
#include <QXYSeries>

#include <algorithm>
#include <cmath>

class tst_EndToEndPlot : public EndToEndTest
{
    Q_OBJECT

private:
    PlotDriver plot() { return PlotDriver(driver()); }

    void openPlot()
    {
        QVERIFY(driver().Click(QStringLiteral("plotTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("measurementsChart2D")));
    }

    /// Measures until there are so many blocks of two samples, and holds.
    void measureAndHold(int count)
    {
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY_WITH_TIMEOUT(blocks() >= count, 30000);
        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("resumeButton")));
        QTRY_COMPARE(plot().Number("MeasureResultCount"), 2.0 * blocks());
        QVERIFY(plot().WaitForPoints(2 * count));
    }

    double shown(const char* property) { return scenario().PageViewModel()->property(property).toDouble(); }

private slots:
    void plotFollowsTheMeasurement()
    {
        startWithDefaultInstrument();
        QVERIFY(!driver().IsVisible(QStringLiteral("filterBox")));
        openPlot();
        QCOMPARE(scenario().PageViewModel()->property("SectionIndex").toInt(), 1);
        QVERIFY(driver().IsVisible(QStringLiteral("filterBox")));
        QVERIFY(!driver().IsVisible(QStringLiteral("bMaxDisplayer")));
        QCOMPARE(plot().Points(0).size(), 0);

        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QVERIFY(plot().WaitForPoints(10));
        QVector<double> before;
        for (int i = 0; i < 7; ++i)
            before.append(plot().Points(i).last().x());
        for (int i = 0; i < 7; ++i)
            QTRY_VERIFY2(plot().Points(i).last().x() > before.at(i), qPrintable(QString::number(i)));

        // At rest the last points are the values that the page shows.
        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("resumeButton")));
        QTRY_COMPARE(plot().Number("MeasureResultCount"), 2.0 * blocks());
        QTRY_COMPARE(plot().Points(0).size(), 2 * blocks());
        QVERIFY(plot().WaitForPoints(2));
        const double uncertainty = shown("dBLastBlock");
        QVERIFY(uncertainty > 0);
        const QVector<double> last{shown("BLastBlock"),
                                   shown("BPrimeLastBlock"),
                                   shown("BxLastBlock"),
                                   shown("ByLastBlock"),
                                   shown("BzLastBlock"),
                                   shown("BLastBlock") - uncertainty,
                                   shown("BLastBlock") + uncertainty};
        for (int i = 0; i < 7; ++i)
            QTRY_VERIFY2(std::abs(plot().Points(i).last().y() - last.at(i)) < 1e-4,
                         qPrintable(QString::number(i)));
        const QString today = QDate::currentDate().toString(QStringLiteral("yyyy.MM.dd"));
        QVERIFY(driver().Text(QStringLiteral("xMinDateLabel")) <= today);
        QCOMPARE(driver().Text(QStringLiteral("xMinTimeLabel")).section(QLatin1Char('.'), 0, 0).size(), 8);
        QVERIFY(driver().Text(QStringLiteral("xMaxTimeLabel")) >
                driver().Text(QStringLiteral("xMinTimeLabel")));

        QVERIFY(driver().Click(QStringLiteral("tableTab")));
        QTRY_VERIFY(!driver().IsVisible(QStringLiteral("filterBox")));
        QVERIFY(scenario().CloseWindow());
    }

    void plotLegend()
    {
        startWithDefaultInstrument();
        openPlot();
        measureAndHold(5);
        const QVector<bool> all(7, true);
        const auto leave = [this] { QTest::mouseMove(driver().Window(), plot().At(0.5, 0.5)); };
        leave();
        QTRY_COMPARE(plot().Visibility(), all);
        const double top = plot().Number("Ymax");
        // B and its bounds go together; the smaller components are left to the axis.
        QVERIFY(driver().Click(QStringLiteral("legendRow0")));
        QVERIFY(driver().Click(QStringLiteral("legendRow4")));
        leave();
        QTRY_COMPARE(plot().Visibility(), (QVector<bool>{false, true, true, true, false, false, false}));
        QTRY_VERIFY(plot().Number("Ymax") < top);
        QVERIFY(driver().Click(QStringLiteral("legendSelectNoneButton")));
        QTRY_COMPARE(plot().Visibility(), QVector<bool>(7, false));
        QCOMPARE(plot().Number("Ymin"), 0.001);
        QCOMPARE(plot().Number("Ymax"), 10.0);
        QVERIFY(driver().Click(QStringLiteral("legendSelectAllButton")));
        QTRY_COMPARE(plot().Visibility(), all);
        QCOMPARE(plot().Number("Ymax"), top);
        QVERIFY(driver().Click(QStringLiteral("legendButton")));
        QTRY_VERIFY(!driver().IsVisible(QStringLiteral("chartLegend")));
        QVERIFY(scenario().CloseWindow());
    }

    void plotZoom()
    {
        startWithDefaultInstrument();
        openPlot();
        measureAndHold(30);
        QVERIFY(driver().Click(QStringLiteral("zoomResetButton")));
        QTRY_COMPARE(plot().Number("Xmin"), 0.0);
        const double everything = plot().Number("MeasureResultMaxX");
        QTRY_COMPARE(plot().Number("Xmax"), everything);

        QVERIFY(driver().Click(QStringLiteral("zoomInButton")));
        QTRY_VERIFY(std::abs(plot().Span() - everything / 2) < 0.02);
        QVERIFY(driver().Click(QStringLiteral("zoomOutButton")));
        QTRY_VERIFY(std::abs(plot().Span() - everything) < 0.04);
        QVERIFY(driver().Click(QStringLiteral("zoomInButton")));
        QVERIFY(driver().Click(QStringLiteral("zoomInButton")));
        QTRY_VERIFY(std::abs(plot().Span() - everything / 4) < 0.02);

        const double start = plot().Number("Xmin");
        plot().Wheel(120);
        QTRY_VERIFY(plot().Number("Xmin") > start + 0.05);
        plot().Wheel(-120);
        QTRY_VERIFY(std::abs(plot().Number("Xmin") - start) < 0.01);

        plot().RightClick();
        QTRY_COMPARE(plot().Span(), everything);
        plot().Drag(plot().At(0.25, 0.3), plot().At(0.75, 0.6));
        QTRY_VERIFY(std::abs(plot().Number("Xmin") - everything / 4) < 0.05);
        QTRY_VERIFY(std::abs(plot().Number("Xmax") - 3 * everything / 4) < 0.05);
        // What is drawn is what lies in the window.
        QVERIFY(plot().WaitForPoints(10));
        QTRY_VERIFY(plot().Points(2).first().x() >= plot().Number("Xmin") - 0.1);
        QVERIFY(plot().Points(2).last().x() <= plot().Number("Xmax") + 0.1);
        plot().RightClick();
        QTRY_COMPARE(plot().Span(), everything);
        QVERIFY(scenario().CloseWindow());
    }

    void plotSliders()
    {
        startWithDefaultInstrument();
        openPlot();
        measureAndHold(30);
        plot().RightClick();
        QTRY_COMPARE(plot().Number("Xmin"), 0.0);
        const double everything = plot().Number("MeasureResultMaxX");
        plot().DragHandle("xRangeSlider", "first", QPoint(120, 0));
        QTRY_VERIFY(plot().Number("Xmin") > 0.1);
        QCOMPARE(plot().Number("Xmax"), everything);
        plot().DragHandle("xRangeSlider", "second", QPoint(-80, 0));
        QTRY_VERIFY(plot().Number("Xmax") < everything - 0.1);
        QVERIFY(plot().Number("Xmax") > plot().Number("Xmin"));

        QVERIFY(!driver().IsVisible(QStringLiteral("yRangeSlider")));
        QVERIFY(driver().Click(QStringLiteral("autoScalingButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("yRangeSlider")));
        QTRY_COMPARE(plot().Number("Ymax"), plot().Number("YmaxAllSignal"));
        const double low = plot().Number("Ymin");
        const double high = plot().Number("Ymax");
        plot().DragHandle("yRangeSlider", "second", QPoint(0, 60));
        QTRY_VERIFY(plot().Number("Ymax") < high);
        QCOMPARE(plot().Number("Ymin"), low);
        plot().DragHandle("yRangeSlider", "first", QPoint(0, -60));
        QTRY_VERIFY(plot().Number("Ymin") > low);
        QVERIFY(plot().Number("Ymax") > plot().Number("Ymin"));
        // The user's range stays while new data come.
        const double chosen = plot().Number("Ymax");
        const int before = blocks();
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY(blocks() > before + 3);
        QCOMPARE(plot().Number("Ymax"), chosen);
        QVERIFY(driver().Click(QStringLiteral("autoScalingButton")));
        QTRY_VERIFY(!driver().IsVisible(QStringLiteral("yRangeSlider")));
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(scenario().CloseWindow());
    }

    void plotFilter()
    {
        startWithDefaultInstrument();
        openPlot();
        measureAndHold(10);
        const QVector<QPointF> raw = plot().Points(2);
        QVERIFY(driver().Click(QStringLiteral("filterBoxTitle")));
        QVERIFY(driver().WaitFor(QStringLiteral("averagingModeComboBox")));
        QVERIFY(driver().Find(QStringLiteral("averagingModeComboBoxBox")));
        driver().Find(QStringLiteral("averagingModeComboBoxBox"))->forceActiveFocus();
        driver().Key(Qt::Key_Down);
        driver().Key(Qt::Key_Down);
        QTRY_COMPARE(plot().Number("AveragingModeIndex"), 2.0);
        QVERIFY(driver().Enter(QStringLiteral("averagingCountField"), QStringLiteral("4")));
        QTRY_COMPARE(plot().Number("AveragingCount"), 4.0);

        // The mean of as many as four samples, at each place.
        const auto isSmoothed = [&] {
            const QVector<QPointF> drawn = plot().Points(2);
            if (drawn.size() != raw.size())
                return false;
            for (int i = 0; i < drawn.size(); ++i) {
                const int first = std::max(0, i - 3);
                double sum = 0;
                for (int k = first; k <= i; ++k)
                    sum += raw.at(k).y();
                if (std::abs(drawn.at(i).y() - sum / (i - first + 1)) > 1e-4)
                    return false;
            }
            return true;
        };
        QTRY_VERIFY(isSmoothed());
        QVERIFY(std::abs(plot().Points(2).last().y() - raw.last().y()) > 1e-4);

        driver().Find(QStringLiteral("averagingModeComboBoxBox"))->forceActiveFocus();
        driver().Key(Qt::Key_Up);
        driver().Key(Qt::Key_Up);
        QTRY_COMPARE(plot().Points(2), raw);
        QVERIFY(scenario().CloseWindow());
    }

    void plotByTouch()
    {
        QTouchDevice* const screen = QTest::createTouchDevice();
        // However fast or slow this machine is: drags are no double tap, and two taps are.
        QStyleHints* const hints = QGuiApplication::styleHints();
        hints->setMouseDoubleClickInterval(0);
        const auto tap = [&](const QPoint& at) {
            QTest::touchEvent(driver().Window(), screen).press(0, at, driver().Window());
            QTest::touchEvent(driver().Window(), screen).release(0, at, driver().Window());
        };
        const auto drag = [&](const QPoint& from, const QPoint& to) {
            QTest::touchEvent(driver().Window(), screen).press(0, from, driver().Window());
            for (int i = 1; i <= 10; ++i) {
                QTest::touchEvent(driver().Window(), screen)
                    .move(0, from + (to - from) * i / 10, driver().Window());
                QVERIFY(!driver().IsVisible(QStringLiteral("zoomSelector")));
            }
            QTest::touchEvent(driver().Window(), screen).release(0, to, driver().Window());
        };
        startWithDefaultInstrument();
        openPlot();
        measureAndHold(30);
        plot().RightClick();
        QTRY_COMPARE(plot().Number("Xmin"), 0.0);
        const double everything = plot().Number("MeasureResultMaxX");
        QVERIFY(driver().Click(QStringLiteral("zoomInButton")));
        QVERIFY(driver().Click(QStringLiteral("zoomInButton")));
        QTRY_VERIFY(std::abs(plot().Span() - everything / 4) < 0.02);
        const double span = plot().Span();

        // The window goes with the finger, as wide as it was.
        double start = plot().Number("Xmin");
        drag(plot().At(0.7, 0.5), plot().At(0.3, 0.5));
        QTRY_VERIFY(std::abs(plot().Number("Xmin") - (start + 0.4 * span)) < 0.02);
        QVERIFY(std::abs(plot().Span() - span) < 0.02);
        start = plot().Number("Xmin");
        drag(plot().At(0.3, 0.5), plot().At(0.5, 0.5));
        QTRY_VERIFY(std::abs(plot().Number("Xmin") - (start - 0.2 * span)) < 0.02);
        // Not beyond the first result.
        for (int i = 0; i < 8; ++i)
            drag(plot().At(0.1, 0.5), plot().At(0.9, 0.5));
        QTRY_VERIFY(plot().Number("Xmin") > -span / 5);
        start = plot().Number("Xmin");
        drag(plot().At(0.1, 0.5), plot().At(0.9, 0.5));
        QCOMPARE(plot().Number("Xmin"), start);

        // Up and down only while the user has the axis.
        const auto axisY = [this](const char* end) {
            return driver()
                .Find(QStringLiteral("chartView"))
                ->property("axisY")
                .value<QObject*>()
                ->property(end)
                .toDouble();
        };
        const double bottom = axisY("min");
        drag(plot().At(0.5, 0.3), plot().At(0.5, 0.6));
        QCOMPARE(axisY("min"), bottom);
        QVERIFY(driver().Click(QStringLiteral("autoScalingButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("yRangeSlider")));
        QVERIFY(driver().Click(QStringLiteral("zoomInButton")));
        QTRY_VERIFY(axisY("max") < plot().Number("YmaxAllSignal"));
        const double low = axisY("min");
        const double height = axisY("max") - low;
        drag(plot().At(0.5, 0.4), plot().At(0.5, 0.5));
        QTRY_VERIFY(std::abs(axisY("min") - (low + 0.1 * height)) < 0.02 * height);

        const QPoint middle = plot().At(0.5, 0.5);
        hints->setMouseDoubleClickInterval(60000);
        tap(middle);
        tap(middle);
        hints->setMouseDoubleClickInterval(0);
        QTRY_COMPARE(plot().Number("Xmin"), 0.0);
        QTRY_COMPARE(plot().Number("Xmax"), everything);
        QTRY_COMPARE(plot().Number("Ymax"), plot().Number("YmaxAllSignal"));

        // A finger that goes away leaves no row of the legend in the foreground.
        tap(WindowDriver::Middle(driver().Find(QStringLiteral("legendRow2"))));
        QTRY_COMPARE(plot().Visibility(), (QVector<bool>{true, true, false, true, true, true, true}));
        tap(WindowDriver::Middle(driver().Find(QStringLiteral("legendRow2"))));
        QTRY_COMPARE(plot().Visibility(), QVector<bool>(7, true));
        QVERIFY(scenario().CloseWindow());
    }

    void plotOfALoadedRecord()
    {
        startWithDefaultInstrument();
        openPlot();
        makeRecord(10);
        const int recorded = blocks();
        QVERIFY(plot().WaitForPoints(2 * recorded));
        const QVector<QPointF> measured = plot().Points(0);
        const QString path = saveRecord(QStringLiteral("plotted.qdr.xml"));
        QVERIFY(!path.isEmpty());
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(driver().Click(QStringLiteral("endButton")));
        QTRY_COMPARE(plot().Points(0).size(), 0);
        QCOMPARE(driver().Text(QStringLiteral("xMinDateLabel")), QString());

        answers().ExpectFileDialog(QStringLiteral("Open File"), path);
        QVERIFY(driver().Click(QStringLiteral("loadButton")));
        const auto isDrawn = [&] {
            const QVector<QPointF> drawn = plot().Points(0);
            return drawn.size() == measured.size() && std::equal(drawn.begin(), drawn.end(), measured.begin(),
                                                                 [](const QPointF& a, const QPointF& b) {
                                                                     return std::abs(a.x() - b.x()) < 1e-3 &&
                                                                            std::abs(a.y() - b.y()) < 1e-3;
                                                                 });
        };
        QTRY_VERIFY(isDrawn());
        const auto shownMs = [this] {
            const auto time = [this](const char* label) {
                return QTime::fromString(driver().Text(QLatin1String(label)), QStringLiteral("HH:mm:ss.zzz"));
            };
            return time("xMinTimeLabel").msecsTo(time("xMaxTimeLabel"));
        };
        QTRY_COMPARE(driver().Text(QStringLiteral("xMaxDateLabel")).size(), 10);
        // Another page forgets it and the way back brings it again, once.
        QVERIFY(driver().Click(QStringLiteral("tableTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("measurementsTable")));
        openPlot();
        QTRY_VERIFY(isDrawn());
        QCOMPARE(driver().Text(QStringLiteral("xMaxDateLabel")).size(), 10);

        // The window follows the block that the user looks at.
        QVERIFY(driver().WaitFor(QStringLiteral("currentBlockField")));
        QVERIFY(driver().Enter(QStringLiteral("currentBlockField"), QStringLiteral("3")));
        QTRY_COMPARE(driver().Text(QStringLiteral("blockLine"), QStringLiteral("value")),
                     QStringLiteral("3"));
        // Six samples, 50 ms each.
        QTRY_VERIFY(std::abs(plot().Number("Xmax") - 0.3) < 0.01);
        QTRY_VERIFY2(std::abs(shownMs() - 300) <= 50, qPrintable(QString::number(shownMs())));
        QCOMPARE(plot().Number("MeasureResultCount"), 2.0 * recorded);
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(scenario().CloseWindow());
    }

    void plotFollowsTheReplay()
    {
        startWithDefaultInstrument();
        openPlot();
        makeRecord(20);
        const int recorded = blocks();
        QVERIFY(plot().WaitForPoints(2 * recorded));
        const QVector<QPointF> measured = plot().Points(0);
        QSignalSpy cleared(plot().Model(), SIGNAL(clearCharts()));
        QSignalSpy counts(plot().Model(), SIGNAL(MeasureResultCountChanged(qulonglong)));
        // Slow enough to be held in its middle on any machine.
        QVERIFY(scenario().RecordingManager()->setProperty("TimeWarp", 0.2));
        QVERIFY(driver().Click(QStringLiteral("playbackButton")));
        QTRY_VERIFY(scenario().Flag("IsPlayingBack"));
        QCOMPARE(cleared.count(), 1);
        QTRY_VERIFY(plot().Number("MeasureResultCount") > 4);
        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        QVERIFY(plot().WaitForPoints(4));
        const double held = plot().Number("MeasureResultCount");
        QVERIFY(held < 2 * recorded);
        QTest::qWait(300);
        QCOMPARE(plot().Number("MeasureResultCount"), held);
        QVERIFY(scenario().RecordingManager()->setProperty("TimeWarp", 2.0));
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY_WITH_TIMEOUT(!scenario().Flag("IsPlayingBack"), 20000);
        QTRY_COMPARE(plot().Points(0), measured);
        double previous = 0;
        for (int i = 1; i < counts.count(); ++i) {
            QVERIFY(counts.at(i).first().toDouble() > previous);
            previous = counts.at(i).first().toDouble();
        }
        QCOMPARE(previous, 2.0 * recorded);
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(scenario().CloseWindow());
    }

    void plotInTheSmallWindow()
    {
        startWithDefaultInstrument();
        driver().Window()->resize(954, 698);
        QVERIFY(driver().WaitFor(QStringLiteral("smallMenuToggle")));
        openPlot();
        measureAndHold(5);
        QVERIFY(driver().Find(QStringLiteral("chartView"))->width() > 400);
        QVERIFY(driver().Click(QStringLiteral("parametersMenuToggle")));
        QVERIFY(driver().WaitFor(QStringLiteral("filterBoxTitle")));
        QVERIFY(driver().Click(QStringLiteral("filterBoxTitle")));
        QVERIFY(driver().WaitFor(QStringLiteral("averagingCountField")));
        // A press on the plot folds the drawer.
        QTest::mouseClick(driver().Window(), Qt::LeftButton, {}, plot().At(0.2, 0.5));
        QTRY_VERIFY(!scenario().Application()->MainViewModel()->ParameterMenuExpanded());
        QVERIFY(driver().Click(QStringLiteral("componentTab")));
        QVERIFY(driver().Click(QStringLiteral("parametersMenuToggle")));
        QVERIFY(driver().WaitFor(QStringLiteral("alarmBoxTitle")));
        QVERIFY(!driver().IsVisible(QStringLiteral("filterBox")));
        QVERIFY(scenario().CloseWindow());
    }
};

END_TO_END_MAIN(tst_EndToEndPlot)
#include "tst_EndToEndPlot.moc"
