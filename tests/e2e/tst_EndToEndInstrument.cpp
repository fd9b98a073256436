// SPDX-License-Identifier: GPL-3.0-or-later
// Instruments that work, fail, throw and vanish, and the zero-offset calibration.
#include "CApplication.h"
#include "CInstrument.h"
#include "CInstrumentSupervisor.h"
#include "EndToEndTest.h"
#include "PtyBoard.h"

#include <QDir>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <cmath>

class tst_EndToEndInstrument : public EndToEndTest
{
    Q_OBJECT

private:
    CInstrumentSupervisor* supervisor()
    {
        return scenario()
            .Application()
            ->QmlEngine()
            ->rootContext()
            ->contextProperty(QStringLiteral("InstrumentSupervisor"))
            .value<CInstrumentSupervisor*>();
    }

    void openZeroOffset()
    {
        QVERIFY(driver().Click(QStringLiteral("zeroOffsetButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("zeroOffsetStartButton")));
    }

    /// Not after a time: that of a slow start would be over before the session begins.
    void loseInstrument()
    {
        auto* timer = supervisor()->AvailableInstruments().constFirst()->findChild<QTimer*>(
            QStringLiteral("vanishTimer"));
        QVERIFY(timer);
        timer->start(0);
    }

private slots:
    void zeroOffset()
    {
        Scenario::WriteSimulationSettings(QStringLiteral("[Calibration]\nDurationMs=50\nChamberFieldX=5\n"));
        startWithDefaultInstrument();
        QStringList reports;
        connect(supervisor()->AvailableInstruments().constFirst().data(), &CInstrument::StatusStringChanged,
                this, [&reports](const QString& text) { reports << text; });
        const QString refused =
            QStringLiteral("Zero offset not calibrated: the probe is not in a zero-field chamber");
        const QString start = QStringLiteral("zeroOffsetStartButton");
        const QString overrideBox = QStringLiteral("overrideWarningsBoxBox");
        QObject* busyPopup = driver().FindPopup(QStringLiteral("busyPopup"));
        QVERIFY(busyPopup);
        QSignalSpy busy(busyPopup, SIGNAL(visibleChanged()));

        openZeroOffset();
        QVERIFY(driver().Click(start));
        QTRY_VERIFY(!driver().IsVisible(start));
        QCOMPARE(reports, QStringList{refused});
        QCOMPARE(busy.count(), 2);
        QVERIFY(!busyPopup->property("visible").toBool());

        openZeroOffset();
        QVERIFY(driver().Click(overrideBox));
        QVERIFY(driver().Find(overrideBox)->property("checked").toBool());
        QVERIFY(driver().Click(start));
        QTRY_VERIFY(!driver().IsVisible(start));
        const QString calibrated = QStringLiteral("Zero offset calibrated");
        QCOMPARE(reports, (QStringList{refused, calibrated}));
        QCOMPARE(driver().Text(QStringLiteral("statusStatus"), QStringLiteral("value")), calibrated);

        // The override held for one calibration, and Cancel does nothing.
        openZeroOffset();
        QVERIFY(!driver().Find(overrideBox)->property("checked").toBool());
        QVERIFY(driver().Click(QStringLiteral("zeroOffsetCancelButton")));
        QTRY_VERIFY(!driver().IsVisible(start));
        QCOMPARE(busy.count(), 4);

        openZeroOffset();
        const QPoint startPoint = WindowDriver::Middle(driver().Find(start));
        QTest::mousePress(driver().Window(), Qt::LeftButton, {}, startPoint);
        QTRY_VERIFY(!driver().IsVisible(start));
        QTest::mouseRelease(driver().Window(), Qt::LeftButton, {}, startPoint);
        const QString restored = QStringLiteral("Factory zero offset restored");
        QCOMPARE(reports, (QStringList{refused, calibrated, restored}));
        // Had the release started a calibration, it would have ended by the time the dialog is opened and
        // shut.
        openZeroOffset();
        QVERIFY(driver().Click(QStringLiteral("zeroOffsetCancelButton")));
        QTRY_VERIFY(!driver().IsVisible(start));
        QCOMPARE(reports, (QStringList{refused, calibrated, restored}));
        QCOMPARE(busy.count(), 6);
        QVERIFY(scenario().CloseWindow());
    }

    void failedConnection()
    {
        Scenario::WriteSimulationSettings(QStringLiteral("[Misbehaviour]\nConnect=fail\n"));
        scenario().Start(Scenario::Shipped);
        QVERIFY(driver().WaitFor(QStringLiteral("connectButton0")));
        const QSharedPointer<CInstrument> instrument = supervisor()->AvailableInstruments().constFirst();
        QVERIFY(instrument->StatusString() != QStringLiteral("Connection failed"));
        QObject* busyPopup = driver().FindPopup(QStringLiteral("busyPopup"));
        QVERIFY(busyPopup);
        QSignalSpy busy(busyPopup, SIGNAL(visibleChanged()));
        QVERIFY(driver().Click(QStringLiteral("connectButton0")));
        QTRY_COMPARE(busy.count(), 2);
        QVERIFY(!busyPopup->property("visible").toBool());
        QCOMPARE(instrument->StatusString(), QStringLiteral("Connection failed"));
        QVERIFY(driver().IsVisible(QStringLiteral("connectButton0")));
        QCOMPARE(driver().Text(QStringLiteral("statusModel"), QStringLiteral("value")), QStringLiteral("--"));
        QVERIFY(scenario().CloseWindow());
    }

    void throwingConnection()
    {
        Scenario::WriteSimulationSettings(
            QStringLiteral("[Misbehaviour]\nConnect=throw\nDisconnect=throw\n"));
        Scenario::WriteDefaultInstrument(QStringLiteral("Simulated instrument"), kSimulated);
        scenario().Start(Scenario::Shipped);
        QVERIFY(driver().WaitFor(QStringLiteral("instrumentSelectionPage")));
        QVERIFY(
            scenario().LogText().contains(QStringLiteral("Error occured when connecting the instrument.")));
        QVERIFY(scenario().CloseWindow());
    }

    void instrumentLostInASession()
    {
        startWithDefaultInstrument();
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("holdButton")));
        loseInstrument();
        QTRY_VERIFY_WITH_TIMEOUT(answers().IsDone(), 30000);
        QVERIFY(driver().WaitFor(QStringLiteral("instrumentSelectionPage")));
        QCOMPARE(driver().Text(QStringLiteral("statusModel"), QStringLiteral("value")), QStringLiteral("--"));
        QVERIFY(scenario().CloseWindow());
    }

    void instrumentLostAndTheQuestionCancelled()
    {
        startWithDefaultInstrument();
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Cancel);
        QVERIFY(driver().Click(QStringLiteral("recordButton")));
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY_WITH_TIMEOUT(blocks() > 0, 30000);
        loseInstrument();
        QTRY_VERIFY_WITH_TIMEOUT(answers().IsDone(), 30000);
        QVERIFY(driver().IsVisible(QStringLiteral("meterPage")));
        QTRY_VERIFY(!driver().IsVisible(QStringLiteral("holdButton")));
        QVERIFY(driver().Click(QStringLiteral("stopButton")));
        QVERIFY(blocks() > 0);
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(scenario().CloseWindow());
    }

    // A board whose port is in no list of the system, as its path was typed.
    void boardAtATypedPath()
    {
        PtyBoard board(QDir::current().filePath(QStringLiteral("board")));
        QVERIFY(board.Plug());
        board.Start([index = 0]() mutable {
            return PtyWrite{++index / 100.0, "X: 20.50  Y: -3.25  Z: 41.00  uT\r\n"};
        });
        Scenario::WriteSimulationSettings(QStringLiteral("[Instruments]\nCount=0\n"));
        Scenario::WriteSerialBoardSettings(QStringLiteral("[Port]\nName=%1\n").arg(board.Path()));
        scenario().Start(Scenario::Shipped);
        QVERIFY(driver().WaitFor(QStringLiteral("connectButton0")));
        QCOMPARE(supervisor()->AvailableInstruments().constFirst()->RessourceName(), board.Path());
        connectFirstInstrument();
        QCOMPARE(driver().Text(QStringLiteral("statusModel"), QStringLiteral("value")),
                 QStringLiteral("Three-axis board"));
        openMeter();
        makeRecord(2);
        // The root of 20.5^2 + 3.25^2 + 41^2.
        const auto magnitude = [this] {
            return driver().Text(QStringLiteral("bDisplayer"), QStringLiteral("value")).toDouble();
        };
        QTRY_VERIFY(std::abs(magnitude() - 45.9545) < 1e-3);
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(scenario().CloseWindow());
    }
};

END_TO_END_MAIN(tst_EndToEndInstrument)
#include "tst_EndToEndInstrument.moc"
