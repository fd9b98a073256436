// SPDX-License-Identifier: GPL-3.0-or-later
// The spectrum and AC analysis pages on the simulated instrument, whose lines are known, with exposure
// limits.
#include "EndToEndTest.h"

#include <QAbstractItemModel>
#include <QDir>
#include <QFile>
#include <QQuickItem>
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

/// A limits file whose bands have a line of the field each.
QString writeBands()
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
    file.write("</NorvaneExposureLimitsFile>");
    return file.fileName();
}

} // namespace

class tst_EndToEndSpectral : public EndToEndTest
{
    Q_OBJECT

private:
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

    /// What the file dialog of the limits box does when a file has been chosen.
    void chooseLimits(const QString& path)
    {
        QQuickItem* selector = driver().Find(QStringLiteral("limitsFileSelector"));
        QVERIFY(selector != nullptr);
        QVERIFY(QMetaObject::invokeMethod(selector, "acceptUrl", Q_ARG(QVariant, QUrl::fromLocalFile(path))));
        QVERIFY(scenario().ActiveOperation()->property("LimitsFileLoaded").toBool());
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

    void setAlarm(int stateIndex)
    {
        auto* alarm = scenario().PageViewModel()->property("AlarmParametersViewModel").value<QObject*>();
        QVERIFY(alarm->setProperty("SelectedStateIndex", stateIndex));
    }

    void recordSaveLoadReplay(const QString& name)
    {
        makeRecord(3);
        const int recorded = blocks();
        const QString path = saveRecord(name);
        QVERIFY(!path.isEmpty());
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QVERIFY(driver().Click(QStringLiteral("endButton")));
        QTRY_COMPARE(blocks(), 0);
        answers().ExpectFileDialog(QStringLiteral("Open File"), path);
        QVERIFY(driver().Click(QStringLiteral("loadButton")));
        QTRY_COMPARE(blocks(), recorded);
        QVERIFY(scenario().Flag("IsDataLoaded"));
        QCOMPARE(driver().Text(QStringLiteral("blockLine"), QStringLiteral("value")),
                 QString::number(recorded));
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
        setAlarm(3);
        measure(2);
        QVERIFY(series(0) != nullptr);
        QTRY_VERIFY(series(0)->count() > 300);
        QCOMPARE(series(1)->count(), 0);
        chooseLimits(kLimitsFile);
        QCOMPARE(driver().Text(QStringLiteral("limitsFileSelectorText")),
                 QStringLiteral("icnirp-2010-public.xml"));
        // Two corners for each band, and the last one to the end of the instrument.
        int bands = 0;
        QVERIFY(QMetaObject::invokeMethod(scenario().ActiveOperation(), "getLimitsCount",
                                          Q_RETURN_ARG(int, bands)));
        QTRY_COMPARE(series(1)->count(), 2 * bands + 1);
        const int before = blocks();
        QTRY_VERIFY(blocks() >= before + 2);
        QVERIFY(!driver().IsVisible(QStringLiteral("outOfBoundsWarning")));
        QVERIFY(driver().Click(QStringLiteral("clearLimitsButton")));
        QTRY_COMPARE(series(1)->count(), 0);
        QCOMPARE(driver().Text(QStringLiteral("limitsFileSelectorText")), QString());
        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        QVERIFY(scenario().CloseWindow());
    }

    void spectrumAboveItsLimits()
    {
        // 1 mT at 50 Hz, where 0.2 mT are allowed.
        startSpectrum(100);
        setAlarm(3);
        measure(1);
        QVERIFY(!driver().IsVisible(QStringLiteral("outOfBoundsWarning")));
        chooseLimits(kLimitsFile);
        QVERIFY(driver().WaitFor(QStringLiteral("outOfBoundsWarning")));
        QVERIFY(driver().Click(QStringLiteral("holdButton")));
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
        setAlarm(3);
        measure(1);
        QVERIFY(!driver().IsVisible(QStringLiteral("outOfBoundsWarning")));
        chooseLimits(kLimitsFile);
        QVERIFY(driver().WaitFor(QStringLiteral("outOfBoundsWarning")));
        QVERIFY(driver().Click(QStringLiteral("holdButton")));
        QVERIFY(scenario().CloseWindow());
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
        setAlarm(3);
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
