// SPDX-License-Identifier: GPL-3.0-or-later
// Takes the pictures of the help pages from the running program, one function for each scene. The folder for
// them is the environment's KESTRIX_IMAGES; scripts/make-help-images.sh runs all of them.
#include "EndToEndTest.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QUrl>

namespace {

const QString kLimitsFile =
    QStringLiteral(KESTRIX_E2E_SOURCE_DIR "/../../examples/limits/icnirp-2010-public.xml");
/// For animations and for what is drawn a frame later.
constexpr int kRestMs = 1500;

/// Mains with two harmonics.
void writeAlternatingField()
{
    Scenario::WriteSimulationSettings(QStringLiteral(
        "[Field]\nDcX=20\nDcY=5\nDcZ=-40\nRotatingAmplitude=0\nAcX=6\nAcY=8\nAcZ=0\nAcThirdX=0.6\n"
        "AcThirdY=0.8\nAcFifthX=0.5\nAcFifthY=0\nAcFifthZ=0.4\n"));
    Scenario::WriteMeasureSettings(QStringLiteral(
        "<AutoRange>1</AutoRange><Units>µT</Units><UncertaintyUnits>%</UncertaintyUnits>"
        "<Averaging>1</Averaging><AcquisitionRate>2000</AcquisitionRate><DisplayRate>2</DisplayRate>"
        "<FrequencyMin>10</FrequencyMin><FrequencyMax>1000</FrequencyMax>"
        "<TriggerMode>Continuous</TriggerMode>"));
}

/// A field that turns once in some seconds, slow enough to be followed in the plot.
void writeSlowField()
{
    Scenario::WriteSimulationSettings(
        QStringLiteral("[Field]\nAcX=0\nAcY=0\nAcZ=0\nRotatingAmplitude=15\nRotatingFrequency=0.2\n"));
    Scenario::WriteMeasureSettings(QStringLiteral(
        "<AutoRange>1</AutoRange><Units>µT</Units><UncertaintyUnits>µT</UncertaintyUnits>"
        "<Averaging>1</Averaging><AcquisitionRate>100</AcquisitionRate><DisplayRate>10</DisplayRate>"
        "<TriggerMode>Continuous</TriggerMode>"));
}

} // namespace

class HelpImages : public EndToEndTest
{
    Q_OBJECT

private:
    void take(const QString& name)
    {
        // Away from what it would highlight or explain.
        QTest::mouseMove(driver().Window(), QPoint(driver().Window()->width() / 2, 2));
        QTest::qWait(kRestMs);
        const QImage image = driver().Window()->grabWindow();
        QVERIFY(!image.isNull());
        const QDir folder(qEnvironmentVariable("KESTRIX_IMAGES"));
        constexpr int kBestCompression = 0;
        QVERIFY(image.convertToFormat(QImage::Format_RGB888)
                    .save(folder.filePath(name + QStringLiteral(".png")), "PNG", kBestCompression));
    }

    void takeTab(const QString& tab, const QString& name)
    {
        QVERIFY(driver().Click(tab));
        take(name);
    }

    void measure(int count)
    {
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY_WITH_TIMEOUT(blocks() >= count, 60000);
    }

    void quit()
    {
        answers().AnswerAlways(kQuitQuestion, [] { return QMessageBox::Ok; });
        QVERIFY(scenario().CloseWindow());
    }

    void openSpectral(const QString& menuButton)
    {
        writeAlternatingField();
        startWithDefaultInstrument();
        QVERIFY(driver().Click(menuButton));
        QVERIFY(driver().WaitFor(QStringLiteral("limitsBox")));
        // Its path appears in the status bar.
        const QString limits = QDir::current().filePath(QStringLiteral("icnirp-2010-public.xml"));
        QFile::copy(kLimitsFile, limits);
        QQuickItem* selector = driver().Find(QStringLiteral("limitsFileSelector"));
        QVERIFY(selector);
        QVERIFY(
            QMetaObject::invokeMethod(selector, "acceptUrl", Q_ARG(QVariant, QUrl::fromLocalFile(limits))));
    }

private slots:
    void connection()
    {
        scenario().Start(Scenario::Shipped);
        connectFirstInstrument();
        take(QStringLiteral("connection"));
        quit();
    }

    void meter()
    {
        writeSlowField();
        startWithDefaultInstrument();
        measure(80);
        take(QStringLiteral("meter_component"));
        takeTab(QStringLiteral("plotTab"), QStringLiteral("meter_plot"));
        takeTab(QStringLiteral("tableTab"), QStringLiteral("meter_table"));
        quit();
    }

    void records()
    {
        writeSlowField();
        startWithDefaultInstrument();
        makeRecord(120);
        QVERIFY(driver().Click(QStringLiteral("plotTab")));
        QVERIFY(driver().Click(QStringLiteral("playbackButton")));
        QTest::qWait(3 * kRestMs);
        take(QStringLiteral("records"));
        quit();
    }

    void spectrum()
    {
        openSpectral(QStringLiteral("spectrumMenuButton"));
        measure(3);
        take(QStringLiteral("spectrum_plot"));
        QVERIFY(scenario().PageViewModel()->setProperty("Threshold", 40.0));
        takeTab(QStringLiteral("tableTab"), QStringLiteral("spectrum_table"));
        quit();
    }

    void acAnalysis()
    {
        openSpectral(QStringLiteral("acAnalysisMenuButton"));
        measure(10);
        take(QStringLiteral("ac_analysis_plot"));
        takeTab(QStringLiteral("tableTab"), QStringLiteral("ac_analysis_table"));
        quit();
    }

    void mapping()
    {
        // Over X, with the magnet below the area.
        Scenario::WriteApplicationSettings(
            QStringLiteral("<Mapping2DPlotHorizontalAxisType>1</Mapping2DPlotHorizontalAxisType>"));
        Scenario::WriteSimulationSettings(QStringLiteral("[Magnet]\nCenterX=10\nCenterZ=-30\n"));
        startWithDefaultInstrument();
        QVERIFY(driver().Click(QStringLiteral("mappingMenuButton")));
        QVERIFY(driver().WaitFor(QStringLiteral("mappingPage")));
        for (const QString& axis : {QStringLiteral("x"), QStringLiteral("y")}) {
            QVERIFY(driver().Enter(axis + QStringLiteral("StartField"), QStringLiteral("-40")));
            QVERIFY(driver().Enter(axis + QStringLiteral("StopField"), QStringLiteral("40")));
            QVERIFY(driver().Enter(axis + QStringLiteral("StepField"), QStringLiteral("20")));
        }
        QVERIFY(driver().Enter(QStringLiteral("zStopField"), QStringLiteral("20")));
        QVERIFY(driver().Enter(QStringLiteral("zStepField"), QStringLiteral("10")));
        take(QStringLiteral("mapping_start"));
        QVERIFY(driver().Click(QStringLiteral("resumeButton")));
        QTRY_VERIFY_WITH_TIMEOUT(scenario().Flag("IsIdleWithData"), 60000);
        take(QStringLiteral("mapping_numeric"));
        takeTab(QStringLiteral("plotTab"), QStringLiteral("mapping_plot"));
        takeTab(QStringLiteral("tableTab"), QStringLiteral("mapping_table"));
        QVERIFY(scenario().PageViewModel()->setProperty("SliderValueGraph3D", 0.5));
        takeTab(QStringLiteral("vectorTab"), QStringLiteral("mapping_vector"));
        quit();
    }

    void settings()
    {
        scenario().Start(Scenario::Shipped);
        QVERIFY(driver().Click(QStringLiteral("settingsButton")));
        take(QStringLiteral("settings"));
        quit();
    }
};

END_TO_END_MAIN(HelpImages)
#include "HelpImages.moc"
