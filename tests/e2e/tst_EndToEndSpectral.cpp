// SPDX-License-Identifier: GPL-3.0-or-later
// The spectrum and AC analysis pages on the simulated instrument, whose lines are known, with exposure
// limits.
#include "BellListener.h"
#include "CApplication.h"
#include "EndToEndTest.h"
#include "TrayBalloon.h"

#include <QAbstractItemModel>
#include <QDir>
#include <QFile>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSystemTrayIcon>
#include <QTest>
#include <QUrl>
#include <QXYSeries>

#include <cmath>

namespace {

/// A line of the simulated field: frequency in Hz and the peak value of B·B' in µT.
struct Line
{
    double frequency;
    double amplitude;
};

const QString kExamples = QStringLiteral(KESTRIX_E2E_SOURCE_DIR "/../../examples/limits/");
const QString kLimitsFile = kExamples + QStringLiteral("icnirp-2010-public.xml");

/// Alternating field only; B' is (0.6, 0.8, 0), along which the fifth harmonic has 0.6 times its X.
void writeLines(double scale)
{
    Scenario::WriteSimulationSettings(QStringLiteral("[Field]\nDcX=0\nDcY=0\nDcZ=0\nRotatingAmplitude=0\n"
                                                     "AcX=%1\nAcY=%2\nAcZ=0\nAcThirdX=0.6\nAcThirdY=0.8\n"
                                                     "AcFifthX=0.5\nAcFifthY=0\nAcFifthZ=0.4\n"
                                                     "[Sensor]\nOffsetX=0\nOffsetY=0\nOffsetZ=0\n")
                                          .arg(6 * scale)
                                          .arg(8 * scale));
}

const QString kRefusal = QStringLiteral("Could not load file");
const QVector<Line> kLines{{50, 10}, {150, 1}, {250, 0.3}};

/// 2,000 samples a second in blocks of 1,000: bins 2 Hz apart.
void writeRates()
{
    Scenario::WriteMeasureSettings(QStringLiteral(
        "<AutoRange>1</AutoRange><Units>µT</Units><UncertaintyUnits>µT</UncertaintyUnits>"
        "<Averaging>1</Averaging><AcquisitionRate>2000</AcquisitionRate><DisplayRate>2</DisplayRate>"
        "<FrequencyMin>10</FrequencyMin><FrequencyMax>1000</FrequencyMax><TriggerMode>Continuous</"
        "TriggerMode>"));
}

/// A limits file whose bands have a line of the field each, and what is said after them.
QString writeBands(const QString& tail = QStringLiteral("</NorvaneExposureLimitsFile>"))
{
    QFile file(QDir::current().filePath(QStringLiteral("bands.xml")));
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write("<NorvaneExposureLimitsFile ver=\"1.0\">");
    for (const int upper : {10, 100, 200, 300, 1000})
        file.write(QStringLiteral("<freqRange><upperFreqLimit>%1</upperFreqLimit><exposureLimitValue>0.1"
                                  "</exposureLimitValue><valueUnits>mT</valueUnits></freqRange>")
                       .arg(upper)
                       .toUtf8());
    file.write(tail.toUtf8());
    return file.fileName();
}

} // namespace

class tst_EndToEndSpectral : public EndToEndTest
{
    Q_OBJECT

private:
    enum AlarmState { Off, Notification, Audio, FlagNotification };

    void start(double scale, const QString& menuButton)
    {
        writeLines(scale);
        writeRates();
        startWithDefaultInstrument();
        QVERIFY(driver().Click(menuButton));
        QVERIFY(driver().WaitFor(QStringLiteral("limitsBox")));
    }

    void startSpectrum(double scale) { start(scale, QStringLiteral("spectrumMenuButton")); }
    void startAcAnalysis(double scale) { start(scale, QStringLiteral("acAnalysisMenuButton")); }

    void measure(int count)
    {
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY_WITH_TIMEOUT(blocks() >= count, 20000);
    }

    bool areLimitsLoaded() { return scenario().ActiveOperation()->property("LimitsFileLoaded").toBool(); }

    /// Through the file dialog, as a user does.
    void chooseLimits(const QString& path)
    {
        answers().ExpectFileDialog(QStringLiteral("Select a limits file"), path);
        QVERIFY(driver().Click(QStringLiteral("limitsFileSelectorButton")));
        QTRY_VERIFY(areLimitsLoaded());
        QTRY_COMPARE(driver().Text(QStringLiteral("limitsFileSelectorText")), QFileInfo(path).fileName());
    }

    /// A file that is none of limits, of which the user is told.
    void pickRefused(const QString& path)
    {
        answers().ExpectFileDialog(QStringLiteral("Select a limits file"), path);
        answers().ExpectMessage(kRefusal, QMessageBox::Ok);
        QVERIFY(driver().Click(QStringLiteral("limitsFileSelectorButton")));
        QTRY_VERIFY(answers().IsDone());
        QCOMPARE(answers().LastDetails(), QStringLiteral("The file is not a valid Norvane XML limits file"));
        verifyNoLimits();
    }

    /// Nothing of a limits file is left in the box or the plot.
    void verifyNoLimits()
    {
        QTRY_COMPARE(series(1)->count(), 0);
        QVERIFY(!areLimitsLoaded());
        QCOMPARE(driver().Text(QStringLiteral("limitsFileSelectorText")), QString());
        QCOMPARE(
            driver().Find(QStringLiteral("limitsFileSelectorText"))->property("placeholderText").toString(),
            QString());
    }

    /// On the plot's tab: the warning by its flag alone, then the tray message, which matches, and the bell.
    void alarmAtLimits(const QString& pattern)
    {
        auto* tray = scenario().Application()->findChild<QSystemTrayIcon*>();
        QTRY_VERIFY2(tray && tray->geometry().isValid(), "no system tray");
        BellListener bell;
        setAlarm(FlagNotification);
        measure(1);
        QVERIFY(!driver().IsVisible(QStringLiteral("outOfBoundsWarning")));
        chooseLimits(kLimitsFile);
        QVERIFY(driver().WaitFor(QStringLiteral("outOfBoundsWarning")));
        QCOMPARE(TrayBalloon::Text(), QString());
        QCOMPARE(bell.Count(), 0);
        setAlarm(Audio);
        QTRY_VERIFY(TrayBalloon::Find() != nullptr);
        const QRegularExpression expression(QRegularExpression::anchoredPattern(pattern));
        const QString text = TrayBalloon::Text();
        QVERIFY2(expression.match(text).hasMatch(), qPrintable(text));
        // With every block anew
        QTRY_VERIFY(bell.Count() >= 2);
        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        QVERIFY(scenario().CloseWindow());
    }

    /// A column of the table on screen.
    QVector<double> column(const QString& table, const char* role)
    {
        QVector<double> values;
        QQuickItem* view = driver().Find(table);
        auto* model = view ? view->property("model").value<QAbstractItemModel*>() : nullptr;
        if (!model)
            return values;
        const int number = model->roleNames().key(role, -1);
        for (int row = 0; row < model->rowCount(); ++row)
            values.append(model->data(model->index(row, 0), number).toDouble());
        return values;
    }

    QtCharts::QXYSeries* series(int index)
    {
        const QVariantList all = driver().Find(QStringLiteral("chartView"))->property("shownSeries").toList();
        return index < all.size() ? all.at(index).value<QtCharts::QXYSeries*>() : nullptr;
    }

    void setAlarm(AlarmState state)
    {
        auto* alarm = scenario().PageViewModel()->property("AlarmParametersViewModel").value<QObject*>();
        QVERIFY(alarm->setProperty("SelectedStateIndex", int(state)));
    }

    void recordSaveLoadReplay(const QString& name)
    {
        makeRecord(3);
        const int recorded = blocks();
        const QString path = saveRecord(name);
        QVERIFY(!path.isEmpty());
        endAndLoad(path, recorded);
    }

    void replay()
    {
        QVERIFY(driver().Click(QStringLiteral("playbackButton")));
        QTRY_VERIFY(scenario().Flag("IsPlayingBack"));
        QTRY_VERIFY_WITH_TIMEOUT(!scenario().Flag("IsPlayingBack"), 20000);
    }

private slots:
    void spectrumBelowItsLimits()
    {
        startSpectrum(1);
        setAlarm(FlagNotification);
        measure(2);
        QVERIFY(series(0) != nullptr);
        QTRY_VERIFY(series(0)->count() > 300);
        QCOMPARE(series(1)->count(), 0);
        chooseLimits(kLimitsFile);
        // Two corners for each band, and the last one to the end of the instrument.
        int bands = 0;
        QVERIFY(QMetaObject::invokeMethod(scenario().ActiveOperation(), "getLimitsCount",
                                          Q_RETURN_ARG(int, bands)));
        QTRY_COMPARE(series(1)->count(), 2 * bands + 1);
        const int before = blocks();
        QTRY_VERIFY(blocks() >= before + 2);
        QVERIFY(!driver().IsVisible(QStringLiteral("outOfBoundsWarning")));
        QVERIFY(driver().Click(QStringLiteral("clearLimitsButton")));
        verifyNoLimits();
        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        QVERIFY(scenario().CloseWindow());
    }

    void spectrumAboveItsLimits()
    {
        // 1 mT at 50 Hz, where 0.2 mT are allowed.
        startSpectrum(100);
        // Half of the line's amplitude at 50 Hz, and half of that in the bins beside it, of which the lower
        // comes first.
        alarmAtLimits(QStringLiteral("Spectrum is out-of-limit\\|Frequency = 48\\.000 Hz\n"
                                     "Exposure = 2[45]\\d\\.\\d\\d\nLimit = 200\\.00"));
    }

    void refusedAndVanishedLimits()
    {
        startSpectrum(1);
        measure(2);
        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        const QString path = writeBands();
        chooseLimits(path);
        QTRY_COMPARE(series(1)->count(), 11);

        // Another element after the bands takes away those of before.
        writeBands(QStringLiteral("<band/></NorvaneExposureLimitsFile>"));
        QVERIFY(driver().Click(QStringLiteral("clearLimitsButton")));
        pickRefused(path);

        // A file of another kind
        QFile other(QDir::current().filePath(QStringLiteral("other.xml")));
        QVERIFY(other.open(QIODevice::WriteOnly));
        other.write("<SETTINGS/>");
        other.close();
        pickRefused(other.fileName());

        // One that is gone before the program reads it
        QQuickItem* const selector = driver().Find(QStringLiteral("limitsFileSelector"));
        answers().ExpectMessage(kRefusal, QMessageBox::Ok);
        QVERIFY(QMetaObject::invokeMethod(selector, "acceptUrl",
                                          Q_ARG(QVariant, QUrl(QStringLiteral("file:///gone/limits.xml")))));
        QVERIFY(answers().IsDone());
        QCOMPARE(answers().LastDetails(), QStringLiteral("Cannot read the file"));
        verifyNoLimits();

        // And one that is gone when another unit asks for it again
        chooseLimits(writeBands());
        QTRY_COMPARE(series(1)->count(), 11);
        QVERIFY(QFile::remove(path));
        answers().ExpectMessage(QStringLiteral("Are you sure you want to change units?"), QMessageBox::Ok);
        // The dialog gives the focus back.
        QTRY_VERIFY(driver().Window()->isActive());
        QQuickItem* const units = driver().Find(QStringLiteral("unitsComboBox"));
        const int index = units->property("currentIndex").toInt();
        QVERIFY(driver().Choose(QStringLiteral("unitsComboBox"), index > 0 ? index - 1 : 1));
        QTRY_VERIFY(answers().IsDone());
        verifyNoLimits();
        QVERIFY(scenario().LogText().contains(
            QStringLiteral("Cannot read the file. Limit File doesn't exist : /gone/limits.xml")));
        QVERIFY(scenario().LogText().contains(QStringLiteral("Newlimits file charged : ") + path));
        QVERIFY(scenario().LogText().contains(QStringLiteral("Clear limits on 2D plot")));
        QVERIFY(scenario().CloseWindow());
    }

    void peaksTellTheLines()
    {
        startSpectrum(1);
        QVERIFY(driver().Click(QStringLiteral("tableTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("thresholdFieldText")));
        // 40 dB: the lines, and none of the noise.
        QVERIFY(scenario().PageViewModel()->setProperty("Threshold", 40.0));
        chooseLimits(kLimitsFile);
        measure(3);
        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        const QString table = QStringLiteral("spectrumPeakTable");
        QTRY_COMPARE(column(table, "Frequency").size(), kLines.size());
        for (int i = 0; i < kLines.size(); ++i) {
            const double frequency = column(table, "Frequency").at(i);
            const double amplitude = column(table, "Amplitude").at(i);
            qInfo("line %g Hz %g: peak %.4f Hz %.4f", kLines.at(i).frequency, kLines.at(i).amplitude,
                  frequency, amplitude);
            QVERIFY(std::abs(frequency - kLines.at(i).frequency) < 0.02);
            QVERIFY(std::abs(amplitude / kLines.at(i).amplitude - 1) < 0.003);
            QCOMPARE(column(table, "ExposureLimit").at(i), 200.0);
        }
        QVERIFY(scenario().CloseWindow());
    }

    void bandsTellTheLines()
    {
        startAcAnalysis(1);
        chooseLimits(writeBands());
        QVERIFY(scenario().PageViewModel()->setProperty("SelectedFigureOfMeritIndex", 0));
        measure(3);
        QVERIFY(driver().Click(QStringLiteral("tableTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("frequencyTable")));
        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        const QString table = QStringLiteral("frequencyTable");
        QTRY_COMPARE(column(table, "BBprime").size(), 5);
        for (int i = 0; i < kLines.size(); ++i) {
            const double found = column(table, "BBprime").at(i + 1);
            const double expected = kLines.at(i).amplitude / std::sqrt(2.0);
            qInfo("line %g Hz %g: RMS %.4f, band %.4f", kLines.at(i).frequency, kLines.at(i).amplitude,
                  expected, found);
            QVERIFY(std::abs(found / expected - 1) < 0.003);
            // A tenth of a millitesla in the display unit.
            QVERIFY(std::abs(column(table, "ExposureLimit").at(i + 1) - 100.0) < 1e-9);
        }
        QVERIFY(scenario().CloseWindow());
    }

    void bandsAboveTheirLimits()
    {
        startAcAnalysis(100);
        // The magnitude of a field along a line has no 50 Hz, but twice that.
        alarmAtLimits(QStringLiteral("B is out-of-limit\\|Minimum = 200\\.00\nB = (299|30\\d)\\.\\d\\d\n"
                                     "Maximum = 200\\.00"));
    }

    void spectrumOfARecord()
    {
        startSpectrum(1);
        chooseLimits(kLimitsFile);
        recordSaveLoadReplay(QStringLiteral("spectrum.qdr.xml"));
        QTRY_VERIFY(series(0)->count() > 300);
        QVERIFY(driver().IsVisible(QStringLiteral("frequencyMaxLine")));
        replay();
        QVERIFY(driver().Click(QStringLiteral("tableTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("spectrumPeakTable")));
        QTRY_VERIFY(column(QStringLiteral("spectrumPeakTable"), "Frequency").size() >= kLines.size());
        // Back on the plot the block is there again.
        QVERIFY(driver().Click(QStringLiteral("plotTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("spectrumChart2D")));
        QTRY_VERIFY(series(0)->count() > 300);
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(scenario().CloseWindow());
    }

    void acAnalysisOfARecord()
    {
        startAcAnalysis(1);
        recordSaveLoadReplay(QStringLiteral("analysis.qdr.xml"));
        QVERIFY(driver().Click(QStringLiteral("tableTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("frequencyTable")));
        QTRY_COMPARE(column(QStringLiteral("frequencyTable"), "B").size(), 1);
        chooseLimits(writeBands());
        QTRY_COMPARE(column(QStringLiteral("frequencyTable"), "B").size(), 5);
        replay();
        QTRY_COMPARE(column(QStringLiteral("frequencyTable"), "ExposureLimit").size(), 5);
        QVERIFY(driver().Click(QStringLiteral("plotTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("chartView")));
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(scenario().CloseWindow());
    }

    void shortBlocksOnBothPages()
    {
        writeLines(1);
        // As many blocks as samples.
        Scenario::WriteMeasureSettings(
            QStringLiteral("<Units>µT</Units><Averaging>1</Averaging><AcquisitionRate>20</AcquisitionRate>"
                           "<DisplayRate>20</DisplayRate><TriggerMode>Continuous</TriggerMode>"));
        startWithDefaultInstrument();
        QVERIFY(driver().Click(QStringLiteral("spectrumMenuButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("spectrumPage")));
        setAlarm(FlagNotification);
        measure(5);
        QVERIFY(driver().Click(QStringLiteral("tableTab")));
        QVERIFY(driver().Click(QStringLiteral("acAnalysisMenuButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("acAnalysisPage")));
        const int before = blocks();
        QTRY_VERIFY(blocks() > before + 3);
        QVERIFY(driver().Click(QStringLiteral("tableTab")));
        QVERIFY(driver().WaitFor(QStringLiteral("frequencyTable")));
        for (const int figure : {1, 2, 0})
            QVERIFY(scenario().PageViewModel()->setProperty("SelectedFigureOfMeritIndex", figure));
        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        QVERIFY(scenario().CloseWindow());
    }
};

END_TO_END_MAIN(tst_EndToEndSpectral)
#include "tst_EndToEndSpectral.moc"
