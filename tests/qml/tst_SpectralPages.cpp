// SPDX-License-Identifier: GPL-3.0-or-later
// The spectrum and AC analysis pages on the real view models: tables, boxes and what stands above the view.
#include "DialogDriver.h"
#include "LogRecorder.h"
#include "PropertyLog.h"
#include "SpectralPageFixture.h"

#include <QPointer>
#include <QRegularExpression>

namespace {

/// As the cells of the tables are written.
QString fourDecimals(double value)
{
    return QString::number(value, 'f', 4);
}

QStringList fiveTimes(const QString& text)
{
    return {text, text, text, text, text};
}

QVector<QString> columnProperties(QQuickItem* table, const char* property)
{
    QVector<QString> values;
    for (int i = 0; i < table->property("columnCount").toInt(); ++i) {
        QVariant column;
        QMetaObject::invokeMethod(table, "getColumn", Q_RETURN_ARG(QVariant, column), Q_ARG(QVariant, i));
        values.append(column.value<QObject*>()->property(property).toString());
    }
    return values;
}

const QByteArray kRoot = "<NorvaneExposureLimitsFile ver=\"1.0\">";
const QByteArray kBand = "<freqRange><upperFreqLimit>50</upperFreqLimit><exposureLimitValue>4"
                         "</exposureLimitValue><valueUnits>µT</valueUnits></freqRange>";
const QByteArray kEnd = "</NorvaneExposureLimitsFile>";

} // namespace

class tst_SpectralPages : public QObject, private SpectralPageFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { prepare(); }
    void init() { begin(); }
    void cleanup() { end(); }

    void spectrumHead();
    void acAnalysisHead();
    void tabsBuildTheirViewsAnew();
    void peaks();
    void peakColumnsHaveOneWidth();
    void bands();
    void numbersHaveNoGroups();
    void boxesOfSpectrum();
    void boxesOfAcAnalysis();
    void binsOfTheBandOnShow();
    void frequencyFields();
    void hiddenAlarmChoiceWritesNothing();
    void limitsFile_data() { bothPages(); }
    void limitsFile();
    void refusedLimits();
    void vanishedLimits();
    void warning_data() { bothPages(); }
    void warning();
};

void tst_SpectralPages::spectrumHead()
{
    openSpectrum();
    QCOMPARE(item("fieldComboBox")->property("text").toString(), QStringLiteral("Field component"));
    QCOMPARE(item("fieldComboBox")->property("currentText").toString(), QStringLiteral("B.B'"));
    QVERIFY(!isVisible("thresholdField"));
    QVERIFY(!isVisible("aboveNoiseLabel"));
    choose("fieldComboBox", 4);
    QCOMPARE(m_spectrum->SelectedFieldIndex(), 4);
    m_spectrum->SetSelectedFieldIndex(2);
    QCOMPARE(item("fieldComboBox")->property("currentText").toString(), QStringLiteral("Bx"));

    // The field of the threshold starts at its own number and does not follow the view model.
    m_spectrum->SetThreshold(33);
    click("tableTab");
    QVERIFY(isVisible("thresholdField"));
    QVERIFY(isVisible("aboveNoiseLabel"));
    QCOMPARE(textOf("aboveNoiseLabel"), QStringLiteral("above noise"));
    QCOMPARE(item("thresholdField")->property("label").toString(), QStringLiteral("Threshold"));
    QCOMPARE(item("thresholdField")->property("unit").toInt(), int(CUnits::DECIBEL));
    QCOMPARE(textOf("thresholdFieldText").toDouble(), 10.0);
    QCOMPARE(m_spectrum->Threshold(), 33.0);
    enter("thresholdField", "0");
    QCOMPARE(m_spectrum->Threshold(), 0.0);
    QVERIFY(item("thresholdField")->property("valid").toBool());
    enter("thresholdField", "-1");
    QVERIFY(!item("thresholdField")->property("valid").toBool());
    QCOMPARE(m_spectrum->Threshold(), -1.0);
    enter("thresholdField", "1e300");
    QVERIFY(item("thresholdField")->property("valid").toBool());
    enter("thresholdField", "24");
    click("plotTab");
    QVERIFY(!isVisible("thresholdField"));
    QVERIFY(!isVisible("aboveNoiseLabel"));
    click("tableTab");
    QCOMPARE(textOf("thresholdFieldText").toDouble(), 24.0);
}

void tst_SpectralPages::acAnalysisHead()
{
    m_fixture->deliverAndStop({SpectralFixture::sine(1, 20), SpectralFixture::sine(1, 20, 1)});
    openAcAnalysis();
    QCOMPARE(item("figureOfMeritComboBox")->property("text").toString(), QStringLiteral("Figure of merit"));
    QCOMPARE(item("figureOfMeritComboBox")->property("currentText").toString(),
             QStringLiteral("RMS Amplitude"));
    QCOMPARE(item("figureOfMeritComboBoxBox")->width(), 200.0);
    choose("figureOfMeritComboBox", 2);
    QCOMPARE(m_acAnalysis->SelectedFigureOfMeritIndex(), 2);
    m_acAnalysis->SetSelectedFigureOfMeritIndex(1);
    QCOMPARE(item("figureOfMeritComboBox")->property("currentText").toString(),
             QStringLiteral("Peak-to-Peak Amplitude"));
    // Unlike on the other pages, "Stop" stands before the "End" that shows.
    QQuickItem* const end = m_page->Driver().Find(QStringLiteral("endButton"));
    QVERIFY(end != nullptr);
    const QList<QQuickItem*> buttons = end->parentItem()->childItems();
    QVERIFY(buttons.indexOf(item("stopButton")) < buttons.indexOf(end));
}

void tst_SpectralPages::tabsBuildTheirViewsAnew()
{
    m_fixture->deliver(SpectralFixture::sine(10, 20));
    openSpectrum();
    CFrequencyPeakListData& table = SpectrumPage::tableOf(*m_spectrum);
    QCOMPARE(m_spectrum->SectionIndex(), 0);
    // The chart asks for the data when it is complete.
    QVERIFY(table.rowCount() > 0);
    const QPointer<QQuickItem> chart = item("spectrumChart2D");
    click("tableTab");
    QCOMPARE(m_spectrum->SectionIndex(), 1);
    QTRY_VERIFY(chart.isNull());
    const QPointer<QQuickItem> view = item("spectrumPeakTable");
    QVERIFY(table.rowCount() > 0);
    // What is emptied before the plot is built comes back by it.
    QVector<int> bins;
    CChart2DSpectrumData& data = SpectrumPage::chartOf(*m_spectrum);
    connect(&data, &QAbstractItemModel::modelReset, this, [&] { bins.append(data.rowCount()); });
    click("plotTab");
    QCOMPARE(m_spectrum->SectionIndex(), 0);
    QTRY_VERIFY(view.isNull());
    QVERIFY(table.rowCount() > 0);
    QCOMPARE(bins, QVector<int>({0, SpectralFixture::kRate / 2 + 1}));
    QVERIFY(isVisible("spectrumChart2D"));
}

void tst_SpectralPages::peaks()
{
    m_fixture->loadLimits({{30, 4.25}, {60, 1234.5}});
    m_fixture->deliver(SpectralFixture::sine(10, 40));
    openSpectrum();
    click("tableTab");
    QQuickItem* const table = item("spectrumPeakTable");
    QCOMPARE(columnProperties(table, "role"),
             QVector<QString>({QStringLiteral("Peak"), QStringLiteral("Amplitude"),
                               QStringLiteral("Frequency"), QStringLiteral("ExposureLimit")}));
    CFrequencyPeakListData& model = SpectrumPage::tableOf(*m_spectrum);
    QCOMPARE(model.rowCount(), 1);
    const auto number = [&model](int role) { return model.data(model.index(0, 0), role).toDouble(); };
    const QStringList header{QStringLiteral("Peak #"), QStringLiteral("Amplitude [µT]"),
                             QStringLiteral("Frequency [Hz]"), QStringLiteral("Exposure limit [µT]")};
    const QStringList row{QStringLiteral("1"), fourDecimals(number(CFrequencyPeakListData::AmplitudeRole)),
                          fourDecimals(number(CFrequencyPeakListData::FrequencyRole)),
                          QStringLiteral("1234.5000")};
    QTRY_COMPARE(m_page->CellsOf("spectrumPeakTable"), QVector<QStringList>({header, row}));
    m_fixture->parameters().SetDisplayUnits(CUnits::GAUSS);
    m_fixture->parameters().SetUnits(CUnits::GAUSS);
    QTRY_COMPARE(columnProperties(table, "title").at(1), QStringLiteral("Amplitude [G]"));
    QCOMPARE(columnProperties(table, "title").at(2), QStringLiteral("Frequency [Hz]"));
    QCOMPARE(columnProperties(table, "title").at(3), QStringLiteral("Exposure limit [G]"));
}

void tst_SpectralPages::peakColumnsHaveOneWidth()
{
    openSpectrum();
    click("tableTab");
    QQuickItem* const table = item("spectrumPeakTable");
    const auto widthsAt = [table](double present, double width) {
        table->setProperty("columnWidth", present);
        table->setWidth(width);
        return columnProperties(table, "width");
    };
    const auto four = [](double width) { return QVector<QString>(4, QString::number(width)); };
    QCOMPARE(columnProperties(table, "width"), four(125));
    QCOMPARE(widthsAt(125, 900), four(125));
    QCOMPARE(widthsAt(250, 800), four(200));
    QCOMPARE(widthsAt(200, 801), four(125));
    QCOMPARE(widthsAt(200, 796), four(199));
    QCOMPARE(widthsAt(200, 480), four(125));
}

void tst_SpectralPages::bands()
{
    openAcAnalysis();
    click("tableTab");
    QQuickItem* const table = item("frequencyTable");
    // Blocks of before the page are not in the table.
    m_fixture->deliver(SpectralFixture::sine(10, 40));
    QCOMPARE(columnProperties(table, "role"),
             QVector<QString>({QStringLiteral("FrequencyBand"), QStringLiteral("B"),
                               QStringLiteral("BBprime"), QStringLiteral("Bx"), QStringLiteral("By"),
                               QStringLiteral("Bz"), QStringLiteral("ExposureLimit")}));
    QCOMPARE(columnProperties(table, "width"),
             QVector<QString>(6, QStringLiteral("100")) + QVector<QString>{QStringLiteral("110")});
    const QStringList header{QStringLiteral("Freq, Band [Hz]"),
                             QStringLiteral("B [µT]"),
                             QStringLiteral("B·B' [µT]"),
                             QStringLiteral("Bx [µT]"),
                             QStringLiteral("By [µT]"),
                             QStringLiteral("Bz [µT]"),
                             QStringLiteral("Exposure Limit [µT]")};
    // A sine of 10 has an RMS of 10 / √2.
    const QStringList figures = fiveTimes(QStringLiteral("7.0711"));
    QTRY_COMPARE(m_page->CellsOf("frequencyTable"),
                 QVector<QStringList>({header, QStringList(QStringLiteral("0-100")) + figures +
                                                   QStringList(QStringLiteral("0.0000"))}));
    const QStringList nothing = fiveTimes(QStringLiteral("0.0000"));
    const QVector<QStringList> twoBands{
        header, QStringList(QStringLiteral("0-30")) + nothing + QStringList(QStringLiteral("4.2500")),
        QStringList(QStringLiteral("30-60")) + figures + QStringList(QStringLiteral("1234.5000"))};
    m_fixture->loadLimits({{30, 4.25}, {60, 1234.5}});
    QTRY_COMPARE(m_page->CellsOf("frequencyTable"), twoBands);
    m_fixture->operation.clearLimitsFile();
    QTRY_COMPARE(m_page->CellsOf("frequencyTable"), QVector<QStringList>{header});
    // The rows come before the limits are converted, and show them afterwards.
    QByteArray bandsInMillitesla;
    for (const char* values : {"<upperFreqLimit>30</upperFreqLimit><exposureLimitValue>0.00425",
                               "<upperFreqLimit>60</upperFreqLimit><exposureLimitValue>1.2345"})
        bandsInMillitesla += QByteArray("<freqRange>") + values +
                             "</exposureLimitValue><valueUnits>mT</valueUnits></freqRange>";
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("Newlimits file charged")));
    chooseFile(writeFile(kRoot + bandsInMillitesla + kEnd));
    QTRY_COMPARE(m_page->CellsOf("frequencyTable"), twoBands);
    // The longest texts fit too.
    m_fixture->loadLimits({{1.12202e6, 1}, {1.25893e6, 2}});
    QTRY_COMPARE(m_page->CellsOf("frequencyTable").last().first(), QStringLiteral("1.12202e+06-1.25893e+06"));
    QCOMPARE(m_page->WideTextsOf("frequencyTable"), QStringList());
}

void tst_SpectralPages::numbersHaveNoGroups()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    m_fixture->loadLimits({{60, 123456}});
    m_fixture->deliver(SpectralFixture::sine(10, 40));
    openSpectrum();
    click("tableTab");
    QTRY_COMPARE(m_page->CellsOf("spectrumPeakTable").value(1).value(3), QStringLiteral("123456,0000"));
}

void tst_SpectralPages::boxesOfSpectrum()
{
    openSpectrum();
    const auto boxes = [this] {
        QStringList names;
        const QList<QQuickItem*> items = item("parametersBoxes")->childItems();
        for (const QQuickItem* box : items)
            names << box->objectName();
        return names;
    };
    QCOMPARE(boxes(), QStringList({QStringLiteral("recordBox"), QStringLiteral("measurementBox"),
                                   QStringLiteral("replayBox"), QStringLiteral("limitsBox"),
                                   QStringLiteral("alarmBox"), QStringLiteral("saveImportParametersBox")}));
    const QVector<bool> expanded{true, true, true, true, false, false};
    for (int i = 0; i < expanded.size(); ++i)
        QCOMPARE(item(qPrintable(boxes().at(i)))->property("expanded").toBool(), expanded.at(i));
    for (const char* shown : {"unitsComboBox", "uncertaintyUnitsComboBox", "rangeComboBox", "triggerComboBox",
                              "frequencyMinField", "frequencyMaxField", "numberOfBinsField",
                              "displayRateField", "blockSizeField", "averagingField"})
        QVERIFY2(isVisible(shown), shown);
    for (const char* hidden : {"busTriggerComboBox", "acquisitionRateField", "immediateAcquisitionRateField"})
        QVERIFY2(!isVisible(hidden), hidden);
    expand("alarmBox");
    QVERIFY(isVisible("alarmStateComboBox"));
    for (const char* hidden : {"alarmAxisComboBox", "alarmMinimumField", "alarmMaximumField"})
        QVERIFY2(!isVisible(hidden), hidden);
    m_page->SetSmall(true);
    QTRY_VERIFY(isVisible("numberOfBinsField"));
    QVERIFY(!isVisible("blockSizeField"));
    m_page->SetSmall(false);
    m_fixture->deliverAndStop({SpectralFixture::sine(1, 20)});
    QVERIFY(isVisible("frequencyMinLine"));
    QVERIFY(isVisible("frequencyMaxLine"));
}

void tst_SpectralPages::boxesOfAcAnalysis()
{
    openAcAnalysis();
    QVERIFY(item("limitsBox")->property("expanded").toBool());
    for (const char* shown : {"unitsComboBox", "triggerComboBox", "acquisitionRateField", "displayRateField",
                              "blockSizeField", "averagingField", "limitsBox"})
        QVERIFY2(isVisible(shown), shown);
    for (const char* hidden : {"busTriggerComboBox", "immediateAcquisitionRateField", "frequencyMinField",
                               "frequencyMaxField", "numberOfBinsField"})
        QVERIFY2(!isVisible(hidden), hidden);
    expand("alarmBox");
    QVERIFY(isVisible("alarmStateComboBox"));
    QVERIFY(isVisible("alarmAxisComboBox"));
    QVERIFY(!isVisible("alarmMinimumField"));
    QVERIFY(!isVisible("alarmMaximumField"));
    choose("alarmAxisComboBox", 4);
    QCOMPARE(m_fixture->operation.OperationParameters()->AlarmParametersAcAnalysis()->Axis(), CAxis::Bz);
    // The five of the table; there is no ε(B).
    QCOMPARE(item("alarmAxisComboBox")->property("count").toInt(), 5);
    choose("triggerComboBox", 1);
    QCOMPARE(m_fixture->parameters().TriggerMode(), CTrigger::IMMEDIATE);
    QVERIFY(!isVisible("acquisitionRateField"));
    QVERIFY(isVisible("immediateAcquisitionRateField"));
    QVERIFY(!item("immediateAcquisitionRateField")->isEnabled());
    m_page->SetSmall(true);
    QTRY_VERIFY(isVisible("blockSizeField"));
    m_page->SetSmall(false);
    m_fixture->deliverAndStop({SpectralFixture::sine(1, 20)});
    QVERIFY(isVisible("replayInformation"));
    QVERIFY(!isVisible("frequencyMinLine"));
}

/// Shown are the bins from the lowest frequency on, stored are those from 0 on.
void tst_SpectralPages::binsOfTheBandOnShow()
{
    openSpectrum();
    CMeasurementParameters& parameters = m_fixture->parameters();
    enter("frequencyMaxField", "100");
    enter("frequencyMinField", "25");
    QCOMPARE(parameters.FrequencyMin(), 25.0);
    QCOMPARE(parameters.FrequencyMax(), 100.0);
    const double shown = textOf("numberOfBinsFieldText").toDouble();
    QCOMPARE(shown, double(parameters.NumberOfBins()) * 0.75);
    enter("numberOfBinsField", "60");
    QCOMPARE(double(parameters.NumberOfBins()), 80.0);
    QCOMPARE(textOf("numberOfBinsFieldText").toDouble(), 60.0);
}

void tst_SpectralPages::frequencyFields()
{
    openSpectrum();
    QCOMPARE(item("frequencyMinField")->property("toolTipText").toString(),
             QStringLiteral("Min = 0.000 Max = 500.000"));
    QCOMPARE(item("frequencyMinField")->property("unit").toInt(), int(CUnits::HZ));
    QVERIFY(item("frequencyMaxField")->isEnabled());
    QVERIFY(item("resumeButton")->isEnabled());
    enter("frequencyMinField", "501");
    QVERIFY(!item("resumeButton")->isEnabled());
    QVERIFY(!item("recordButton")->isEnabled());
    enter("frequencyMinField", "0");
    QVERIFY(item("resumeButton")->isEnabled());
    choose("triggerComboBox", 1);
    QVERIFY(!item("frequencyMaxField")->isEnabled());
    QVERIFY(item("frequencyMinField")->isEnabled());
}

void tst_SpectralPages::hiddenAlarmChoiceWritesNothing()
{
    CAlarmParametersAcAnalysis& alarm =
        *m_fixture->operation.OperationParameters()->AlarmParametersAcAnalysis();
    alarm.SetAxis(CAxis::By);
    alarm.SetState(CAlarm::Audio);
    openSpectrum();
    expand("alarmBox");
    choose("alarmStateComboBox", 3);
    QCOMPARE(m_fixture->operation.OperationParameters()->AlarmParametersSpectrum()->State(),
             CAlarm::FlagNotification);
    m_page.reset();
    QCOMPARE(alarm.Axis(), CAxis::By);
    QCOMPARE(alarm.State(), CAlarm::Audio);
}

void tst_SpectralPages::limitsFile()
{
    QFETCH(const QString, page);
    open(page);
    const QString path = writeFile(kRoot + kBand + kEnd);
    PropertyLog log(&limits());
    QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("Newlimits file charged : ") + path));
    chooseFile(path);
    // The name first. The path loads the file before others hear of it, and what is loaded has its whole path
    // for a name.
    QCOMPARE(log.take(), QStringList({QStringLiteral("LimitsFileName=my limits.xml"),
                                      QStringLiteral("LimitsFileName=") + path,
                                      QStringLiteral("LimitsFilePath=") + path}));
    QVERIFY(m_fixture->operation.LimitsFileLoaded());
    QCOMPARE(textOf("limitsFileSelectorText"), QStringLiteral("my limits.xml"));
    QCOMPARE(item("limitsFileSelector")->property("label").toString(), QStringLiteral("Limits"));
    QCOMPARE(item("limitsFileSelector")->property("toolTipText").toString(), path);

    // A page that is built later knows the name of the parameters only.
    m_page.reset();
    open(page);
    QCOMPARE(textOf("limitsFileSelectorText"), QString());
    QCOMPARE(item("limitsFileSelectorText")->property("placeholderText").toString(), path);

    log.take();
    QTest::ignoreMessage(QtDebugMsg, "Clear limits on 2D plot");
    click("clearLimitsButton");
    QVERIFY(!m_fixture->operation.LimitsFileLoaded());
    QCOMPARE(limits().LimitsFilePath(), QString());
    QCOMPARE(limits().LimitsFileName(), QString());
    QCOMPARE(item("limitsFileSelectorText")->property("placeholderText").toString(), QString());
    // The same file once more
    QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("Newlimits file charged : ") + path));
    chooseFile(path);
    QVERIFY(m_fixture->operation.LimitsFileLoaded());
    QTest::ignoreMessage(QtDebugMsg, "Clear limits on 2D plot");
    click("clearLimitsButton");
    QCOMPARE(textOf("limitsFileSelectorText"), QString());
    QCOMPARE(item("limitsFileSelector")->property("filePath").toString(), QString());
    QCOMPARE(item("limitsFileSelector")->property("fileName").toString(), QString());
}

void tst_SpectralPages::refusedLimits()
{
    struct Refusal
    {
        QByteArray content;
        QString message; ///< text and informative text of the box
    };
    const auto invalid =
        QStringLiteral("Could not load file|The file is not a valid Norvane XML limits file");
    const QVector<Refusal> refusals{
        {"<Limits ver=\"1.0\"/>", invalid},
        {"<NorvaneExposureLimitsFile ver=\"1.1\"/>", invalid},
        {kRoot + kBand + "<band/>" + kEnd, invalid},
        // A mere fault in the XML is told in the log.
        {kRoot + kBand, QString()},
        // No file at all
        {QByteArray(), QStringLiteral("Could not load file|Cannot read the file")},
    };
    openSpectrum();
    for (const Refusal& refusal : refusals) {
        const QString path = writeFile(refusal.content);
        if (refusal.content.isEmpty())
            QVERIFY(QFile::remove(path));
        DialogDriver dialogs;
        if (!refusal.message.isEmpty())
            dialogs.pressNext(QMessageBox::Ok);
        {
            const LogRecorder log;
            chooseFile(path);
            QCOMPARE(log.Messages().last(), QStringLiteral("DEBUG Newlimits file charged : ") + path);
        }
        QVERIFY2(dialogs.isDone(), refusal.content);
        QCOMPARE(dialogs.messages, refusal.message.isEmpty() ? QStringList() : QStringList(refusal.message));
        QVERIFY2(!m_fixture->operation.LimitsFileLoaded(), refusal.content);
        QCOMPARE(textOf("limitsFileSelectorText"), QString());
        QCOMPARE(item("limitsFileSelectorText")->property("placeholderText").toString(), QString());
        QCOMPARE(item("limitsFileSelector")->property("filePath").toString(), QString());
        // Mended, the same file is read.
        writeFile(kRoot + kBand + kEnd);
        QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("Newlimits file charged : ") + path));
        chooseFile(path);
        QVERIFY2(m_fixture->operation.LimitsFileLoaded(), refusal.content);
        QCOMPARE(m_fixture->operation.getLimitsCount(), 1);
        QTest::ignoreMessage(QtDebugMsg, "Clear limits on 2D plot");
        click("clearLimitsButton");
    }
}

void tst_SpectralPages::vanishedLimits()
{
    openSpectrum();
    const QString path = writeFile(kRoot + kBand + kEnd);
    QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("Newlimits file charged : ") + path));
    chooseFile(path);
    QVERIFY(QFile::remove(path));
    // The present unit needs no file.
    m_fixture->parameters().SetDisplayUnits(CUnits::MICRO_TESLA);
    QCOMPARE(textOf("limitsFileSelectorText"), QStringLiteral("my limits.xml"));
    choose("unitsComboBox", 2);
    QVERIFY(!m_fixture->operation.LimitsFileLoaded());
    QCOMPARE(limits().LimitsFilePath(), QString());
    QCOMPARE(textOf("limitsFileSelectorText"), QString());
    QCOMPARE(item("limitsFileSelectorText")->property("placeholderText").toString(), QString());
}

void tst_SpectralPages::warning()
{
    QFETCH(const QString, page);
    COperationParameters& parameters = *m_fixture->operation.OperationParameters();
    parameters.AlarmParametersSpectrum()->SetState(CAlarm::FlagNotification);
    parameters.AlarmParametersAcAnalysis()->SetState(CAlarm::FlagNotification);
    m_fixture->loadLimits({{100, 4}});
    open(page);
    for (const char* tab : {"plotTab", "tableTab"}) {
        click(tab);
        QVERIFY(!isVisible("outOfBoundsWarning"));
        m_fixture->deliver(SpectralFixture::sine(20, 40));
        QTRY_VERIFY(isVisible("outOfBoundsWarning"));
        const QRectF place = m_page->PlaceOf("outOfBoundsWarning");
        const char* const choice =
            page == QLatin1String("SpectrumPage") ? "fieldComboBox" : "figureOfMeritComboBox";
        QTRY_VERIFY(m_page->PlaceOf("outOfBoundsWarning").left() >= m_page->PlaceOf(choice).right());
        QVERIFY2(place.right() <= m_page->PlaceOf("tabBar").right(), tab);
        QVERIFY2(place.height() >= 20 && place.bottom() <= m_page->PlaceOf("contentLoader").top(), tab);
        m_fixture->deliver(SpectralFixture::sine(1, 40));
        QVERIFY(!isVisible("outOfBoundsWarning"));
    }
}

QTEST_MAIN(tst_SpectralPages)

#include "tst_SpectralPages.moc"
