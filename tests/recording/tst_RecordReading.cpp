// SPDX-License-Identifier: GPL-3.0-or-later
#include "CDataSetMapping.h"
#include "CDataSetMeasurement.h"
#include "CSettings.h"
#include "CXMLResultsSerializer.h"
#include "RecordTestSupport.h"

#include <QPointer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTextCodec>
#include <QtTest>

#include <cmath>

using namespace RecordTestSupport;

class tst_RecordReading : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_measurement = std::make_unique<CDataSetMeasurement>(m_settings);
        m_mapping = std::make_unique<CDataSetMapping>(m_settings);
        m_serializer = std::make_unique<CXMLResultsSerializer>();
    }

    void strictHead_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("asMapping");
        QTest::addColumn<QString>("message");
        const QString empty = QStringLiteral("The file is empty");
        const QString noMapping = QStringLiteral("The file is not a valid Norvane XML mapping file");
        const QString noMeasurement = QStringLiteral("The file is not a valid Norvane XML measurement file");
        const QString body =
            QStringLiteral("The Norvane XML record file body is not supported. (read body v%1).");
        const QString dataset =
            QStringLiteral("The measurement dataset type is not supported. (read body v%1).");
        const QString typeStart = QStringLiteral("The file does not contain a dataset of type ");
        const auto row = [](const char* name, const QByteArray& text, bool asMapping,
                            const QString& message) { QTest::newRow(name) << text << asMapping << message; };
        row("no byte", "", false, empty);
        row("no byte, mapping", "", true, empty);
        row("white space", " \n\t ", false, empty);
        row("only a declaration", "<?xml version=\"1.0\"?>", false, empty);
        row("only a comment", "<!-- x -->", true, empty);
        row("no XML", "Timestamp;B\n", false, empty);
        row("other root", "<Other ver=\"1.0\"/>", false, noMeasurement);
        row("other root, mapping", "<Other ver=\"1.0\"/>", true, noMapping);
        row("case of the root", "<norvaneXmlRecord ver=\"1.0\"/>", false, noMeasurement);
        row("root version", "<NorvaneXmlRecord ver=\"1.1\"/>", false, noMeasurement);
        row("root version, mapping", "<NorvaneXmlRecord ver=\"1\"/>", true, noMapping);
        row("root without version", "<NorvaneXmlRecord/>", false, noMeasurement);
        row("body version",
            "<NorvaneXmlRecord ver=\"1.0\"><body type=\"tQDR_BODY_KESTRIX\" ver=\"1.0\"/></NorvaneXmlRecord>",
            false, body.arg(QStringLiteral("1.0")));
        row("body version, mapping",
            "<NorvaneXmlRecord ver=\"1.0\"><body type=\"tQDR_BODY_KESTRIX\" ver=\"2\"/></NorvaneXmlRecord>",
            true, body.arg(QStringLiteral("2")));
        row("body without version",
            "<NorvaneXmlRecord ver=\"1.0\"><body type=\"tQDR_BODY_KESTRIX\"/></NorvaneXmlRecord>", false,
            body.arg(QString()));
        row("dataset version", record("", "1.0"), false, dataset.arg(QStringLiteral("1.0")));
        row("dataset version, mapping", record("", "1.3", "MAPPING"), true,
            dataset.arg(QStringLiteral("1.3")));
        row("dataset without version", record("", ""), false, dataset.arg(QString()));
        row("mapping read as measurement", record("", "1.2", "MAPPING"), false,
            typeStart + QStringLiteral("tQDR_DATASET_KESTRIX_MEASUREMENT"));
        row("measurement read as mapping", record(""), true,
            typeStart + QStringLiteral("tQDR_DATASET_KESTRIX_MAPPING"));
        row("type before version", record("", "9.9", "OTHER"), false,
            typeStart + QStringLiteral("tQDR_DATASET_KESTRIX_MEASUREMENT"));
    }

    void strictHead()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, asMapping);
        QFETCH(QString, message);
        QVERIFY(!(asMapping ? readMapping(text) : readMeasurement(text)));
        QCOMPARE(m_serializer->ErrorMessage(), message);
        // A success does not clear the message.
        QVERIFY(readMeasurement(record("")));
        QCOMPARE(m_serializer->ErrorMessage(), message);
    }

    void lenientBelow_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("no body") << QByteArray("<NorvaneXmlRecord ver=\"1.0\"></NorvaneXmlRecord>");
        QTest::newRow("body of another type, of any version")
            << QByteArray("<NorvaneXmlRecord ver=\"1.0\"><body type=\"x\" ver=\"7\"><dataset "
                          "type=\"y\"/></body></NorvaneXmlRecord>");
        QTest::newRow("no dataset") << QByteArray(
            "<NorvaneXmlRecord ver=\"1.0\"><body type=\"tQDR_BODY_KESTRIX\" "
            "ver=\"1.1\"></body></NorvaneXmlRecord>");
        QTest::newRow("error behind the root") << QByteArray("<NorvaneXmlRecord ver=\"1.0\"><body");
        QTest::newRow("wrong end tag") << QByteArray("<NorvaneXmlRecord ver=\"1.0\"><body></x>");
    }

    void lenientBelow()
    {
        QFETCH(QByteArray, text);
        QVERIFY(readMeasurement(text));
        QVERIFY(m_measurement->MeasureBlocks()->empty());
        QVERIFY(m_serializer->ErrorMessage().isEmpty());
    }

    void textsOfTheRecord()
    {
        QSignalSpy date(m_measurement.get(), &CDataset::DateChanged);
        QVERIFY(readMeasurement(record("")));
        QCOMPARE(m_measurement->Date(), QStringLiteral("2024.03.01T10:00:00"));
        QCOMPARE(date.count(), 1);
        QCOMPARE(m_measurement->InstrumentName(), QStringLiteral("Probe 7"));
        QCOMPARE(m_measurement->Comment(), QStringLiteral("whole record"));
        QCOMPARE(m_serializer->FormatVersion(), QStringLiteral("1.2"));
        QVERIFY(!m_measurement->MeasurementParameters()); // the file had none
    }

    void emptyCommentTellsNothing()
    {
        QSignalSpy comment(m_measurement.get(), &CDataset::CommentChanged);
        QVERIFY(readMeasurement(
            "<NorvaneXmlRecord ver=\"1.0\"><body type=\"tQDR_BODY_KESTRIX\" ver=\"1.1\"><comment></comment>"
            "</body></NorvaneXmlRecord>"));
        QCOMPARE(comment.count(), 0);
    }

    void partsInAnyOrderWithUnknownOnes()
    {
        QVERIFY(
            readMeasurement("<NorvaneXmlRecord ver=\"1.0\"><x><header/></x><body type=\"other\"/>"
                            "<body ver=\"1.1\" type=\"tQDR_BODY_KESTRIX\"><dataset ver=\"1.2\" "
                            "type=\"tQDR_DATASET_KESTRIX_MEASUREMENT\">"
                            "<y><measurements/></y><measurements><flux>2024.03.01T10:00:00.5;1;2;3;4;5;6;7</"
                            "flux><comment>c</comment></measurements>"
                            "</dataset><z/><comment>late</comment></body><header><q/><dateTime8601>D</"
                            "dateTime8601></header></NorvaneXmlRecord>"));
        QCOMPARE(m_measurement->MeasureBlocks()->size(), size_t(1));
        QCOMPARE(m_measurement->MeasureBlocks()->at(0)->Comment(), QStringLiteral("c"));
        QCOMPARE(m_measurement->Comment(), QStringLiteral("late"));
        QCOMPARE(m_measurement->Date(), QStringLiteral("D"));
    }

    void prefixesOfNamesDoNotCount()
    {
        for (const QByteArray& declaration : {QByteArray(" xmlns:k=\"urn:x\""), QByteArray()}) {
            QVERIFY(readMeasurement("<k:NorvaneXmlRecord ver=\"1.0\"" + declaration +
                                    "><body type=\"tQDR_BODY_KESTRIX\" ver=\"1.1\" xmlns=\"urn:y\">"
                                    "<k:comment>c</k:comment></body></k:NorvaneXmlRecord>"));
            QCOMPARE(m_measurement->Comment(), QStringLiteral("c"));
            m_measurement->Clear();
        }
    }

    void columnsByPosition()
    {
        QVERIFY(readMeasurement(
            record("<headings colsep=\";\">dB;Temp;anything</headings>" +
                   measurementsWithFlux("2024.03.01T10:11:12.123456789;1.5;-2.5;3e2;4;5;600;0.25\n"
                                        "2024.03.01T10:11:12.223456789;2;2;2;2;2;2;2"))));
        const auto& results = m_measurement->MeasureBlocks()->at(0)->Results;
        QCOMPARE(results.size(), 2);
        QCOMPARE(m_measurement->ResultsCount(), quint64(2));
        QCOMPARE(m_serializer->SampleCount(), 2);
        const CFieldIntensityResult& first = *results[0];
        QCOMPARE(first.Timestamp, QDateTime(QDate(2024, 3, 1), QTime(10, 11, 12, 123)));
        QCOMPARE(first.TimestampNanoseconds, 123456789U);
        QCOMPARE(first.B(), 1.5F);
        QCOMPARE(first.BBprime(), -2.5F);
        QCOMPARE(first.Bx(), 300.0F);
        QCOMPARE(first.By(), 4.0F);
        QCOMPARE(first.Bz(), 5.0F);
        QCOMPARE(first.Temperature(), quint16(600));
        QCOMPARE(first.dB(), 0.25F);
        QVERIFY(std::isnan(first.dBConverted()));
        QCOMPARE(m_measurement->MeasureBlocks()->at(0)->Bprime.X(), 0.0);
    }

    void versionWithoutUncertaintyHasSevenColumns()
    {
        QVERIFY(readMeasurement(record(
            measurementsWithFlux("2024.03.01T10:11:12.5;1;2;3;4;5;6\n2024.03.01T10:11:13.5;7;8;9;10;11;12"),
            "1.1")));
        QCOMPARE(m_serializer->FormatVersion(), QStringLiteral("1.1"));
        const auto& results = m_measurement->MeasureBlocks()->at(0)->Results;
        QCOMPARE(results.size(), 2);
        for (const auto& result : results)
            QVERIFY(std::isnan(result->dB()));
        QCOMPARE(results[1]->B(), 7.0F);
        QCOMPARE(results[1]->Temperature(), quint16(12));
    }

    /// Rows and columns are one flat list.
    void rowsOfTheWrongLengthShift()
    {
        QVERIFY(readMeasurement(
            record(measurementsWithFlux("2024.03.01T10:11:12.5;1;2;3;4;5;6\n7;2024.03.01T10:11:13.5;8"))));
        const auto& results = m_measurement->MeasureBlocks()->at(0)->Results;
        QCOMPARE(results.size(), 2);
        QCOMPARE(results[0]->dB(), 7.0F);
        QCOMPARE(results[1]->B(), 8.0F);
        QVERIFY(std::isnan(results[1]->dB()));
    }

    void badTokens()
    {
        QVERIFY(readMeasurement(record(
            measurementsWithFlux("garbage;x;1,5;;--3;5;70000;nine\n2024.03.01T10:11:12;2;2;2;2;2;2;2"))));
        const auto& results = m_measurement->MeasureBlocks()->at(0)->Results;
        QCOMPARE(results.size(), 2);
        QVERIFY(!results[0]->Timestamp.isValid());
        QCOMPARE(results[0]->TimestampNanoseconds, 0U);
        QCOMPARE(results[0]->B(), 0.0F);
        QCOMPARE(results[0]->BBprime(), 0.0F);
        QCOMPARE(results[0]->Bx(), 0.0F);
        QCOMPARE(results[0]->By(), 0.0F);
        QCOMPARE(results[0]->Bz(), 5.0F);
        QCOMPARE(results[0]->Temperature(), quint16(0));
        QCOMPARE(results[0]->dB(), 0.0F);
        QVERIFY(!results[1]->Timestamp.isValid());
        QCOMPARE(results[1]->B(), 2.0F);
    }

    void blankFluxHasNoSamples_data()
    {
        QTest::addColumn<QByteArray>("measurements");
        QTest::newRow("empty") << QByteArray("<measurements><flux></flux></measurements>");
        QTest::newRow("self-closing") << QByteArray("<measurements><flux/></measurements>");
        QTest::newRow("white space") << QByteArray("<measurements><flux> \n\t </flux></measurements>");
        QTest::newRow("none") << QByteArray("<measurements/>");
    }

    void blankFluxHasNoSamples()
    {
        QFETCH(QByteArray, measurements);
        QVERIFY(readMeasurement(record(measurements)));
        QCOMPARE(m_measurement->MeasureBlocks()->size(), size_t(1));
        QVERIFY(m_measurement->MeasureBlocks()->at(0)->Results.isEmpty());
        QCOMPARE(m_measurement->ResultsCount(), quint64(0));
    }

    /// The tokens must be those of the pattern "(\" separator "|\" newline ")", whatever the separator.
    void separators_data()
    {
        QTest::addColumn<QString>("separator");
        for (const char* separator :
             {";", ",", "|",  " ",  ".",  "-", "+", "\\", "/",  ":", "$",        "^",
              "(", "*", ";;", ", ", "||", "t", "d", "",   "a(", "[", "\xc3\xa9", "\xe2\x82\xac",
              "_", "e", "T",  ";+", ",;+"})
            QTest::newRow(separator) << QString::fromUtf8(separator);
    }

    void separators()
    {
        QFETCH(QString, separator);
        const QString row = QStringList{QStringLiteral("2024.03.01T10:11:12.5"),
                                        QStringLiteral("1.5"),
                                        QStringLiteral("-2"),
                                        QStringLiteral("3e1"),
                                        QStringLiteral("4"),
                                        QStringLiteral("5"),
                                        QStringLiteral("6"),
                                        QStringLiteral("7")}
                                .join(separator);
        const QString flux = row + QLatin1Char('\n') + row;
        const QRegularExpression pattern(QStringLiteral("(\\") + separator + QStringLiteral("|\\\n)"));
        const QStringList tokens = pattern.isValid() ? flux.split(pattern) : QStringList();

        QVERIFY(readMeasurement(record("<headings colsep=\"" + separator.toHtmlEscaped().toUtf8() + "\"/>" +
                                       measurementsWithFlux(flux.toHtmlEscaped().toUtf8()))));
        const auto& results = m_measurement->MeasureBlocks()->at(0)->Results;
        QCOMPARE(results.size(), (tokens.size() + 7) / 8);
        for (int i = 0; i < tokens.size(); ++i) {
            const CFieldIntensityResult& result = *results[i / 8];
            const tFlux values[] = {0,           result.B(), result.BBprime(), result.Bx(), result.By(),
                                    result.Bz(), 0,          result.dB()};
            if (i % 8 == 6)
                QCOMPARE(result.Temperature(), tokens[i].toUShort());
            else if (i % 8 != 0)
                QCOMPARE(values[i % 8], tokens[i].toFloat());
        }
    }

    void headingsWithoutSeparatorLeaveTheDefault()
    {
        QVERIFY(readMeasurement(
            record("<headings>x</headings>" + measurementsWithFlux("2024.03.01T10:11:12.5;1;2;3;4;5;6;7"))));
        QCOMPARE(m_measurement->MeasureBlocks()->at(0)->Results.at(0)->dB(), 7.0F);
    }

    void parameters()
    {
        QSignalSpy changed(m_measurement.get(), &CDataset::MeasurementParametersChanged);
        QVERIFY(readMeasurement(record(
            "<parameters>Units=mT Range=0.3 AutoRange=1 TriggerMode=Timer AcqRate=1000 DispRate=3.5 Avg=7 "
            "FreqMin=2 FreqMax=123 Bins=17 BlockSize=77 BlockSize=5</parameters>")));
        QCOMPARE(changed.count(), 1);
        const CMeasurementParameters* parameters = m_measurement->MeasurementParameters();
        QVERIFY(parameters && !parameters->parent());
        QCOMPARE(parameters->Units(), CUnits::MILLI_TESLA);
        QCOMPARE(parameters->DisplayUnits(), CUnits::MILLI_TESLA);
        QCOMPARE(parameters->UncertaintyUnits(), GetUncertaintyUnit(CUnits::MILLI_TESLA));
        QCOMPARE(parameters->Range(), 0.3F);
        QVERIFY(parameters->AutoRange());
        QCOMPARE(parameters->TriggerMode(), CTrigger::TIMER);
        // None of these agrees with the others, and none is made to.
        QCOMPARE(parameters->AcquisitionRate(), 1000.0);
        QCOMPARE(parameters->DisplayRate(), 3.5);
        QCOMPARE(parameters->Averaging(), 7);
        QCOMPARE(parameters->FrequencyMin(), 2.0);
        QCOMPARE(parameters->FrequencyMax(), 123.0);
        QCOMPARE(parameters->NumberOfBins(), 17.0);
        QCOMPARE(parameters->BlockSize(), 77);
        QVERIFY(parameters->ApplyConfiguration());
        QCOMPARE(
            parameters->ToString(QStringLiteral(" ")),
            QStringLiteral(
                "Units=mT Range=0.3 AutoRange=1 TriggerMode=Timer AcqRate=1000 DispRate=3.5 Avg=7 FreqMin=2 "
                "FreqMax=123 Bins=17 BlockSize=77"));
    }

    void parametersTellTheirChanges()
    {
        QStringList told;
        connect(m_measurement.get(), &CDataset::MeasurementParametersChanged, this,
                [&](CMeasurementParameters* parameters) {
                    QCOMPARE(parameters->Units(), CUnits::UNKNOWN);
                    connect(parameters, &CMeasurementParameters::UnitsChanged, this,
                            [&] { told << QStringLiteral("Units"); });
                    connect(parameters, &CMeasurementParameters::DisplayUnitsChanged, this,
                            [&] { told << QStringLiteral("DisplayUnits"); });
                    connect(parameters, &CMeasurementParameters::UncertaintyUnitsChanged, this,
                            [&] { told << QStringLiteral("UncertaintyUnits"); });
                    connect(parameters, &CMeasurementParameters::AcquisitionRateChanged, this,
                            [&] { told << QStringLiteral("AcquisitionRate"); });
                    connect(parameters, &CMeasurementParameters::FrequencyMaxChanged, this,
                            [&] { told << QStringLiteral("FrequencyMax"); });
                    connect(parameters, &CMeasurementParameters::ApplyConfigurationChanged, this,
                            [&] { told << QStringLiteral("Apply"); });
                });
        QVERIFY(readMeasurement(
            record("<parameters>Units=G Range=0.3 AutoRange=1 TriggerMode=Timer AcqRate=1000</parameters>")));
        QCOMPARE(told.join(QLatin1Char(' ')),
                 QStringLiteral("Units DisplayUnits UncertaintyUnits AcquisitionRate"));
    }

    /// Only the set that a view at work may hold waits for the event loop.
    void parametersOfTheSameReadDoNotPileUp()
    {
        QVERIFY(readMeasurement(record("<parameters/>")));
        const QPointer<CMeasurementParameters> previous = m_measurement->MeasurementParameters();
        QVector<QPointer<CMeasurementParameters>> told;
        connect(m_measurement.get(), &CDataset::MeasurementParametersChanged, this,
                [&](CMeasurementParameters* parameters) {
                    QVERIFY(told.isEmpty() || told.last()); // the one before is still there
                    told << parameters;
                });
        QVERIFY(readMeasurement(record("<parameters/><parameters/><parameters>Units=G</parameters>")));
        QCOMPARE(told.size(), 3);
        QVERIFY(previous);
        QVERIFY(!told[0] && !told[1]);
        QCOMPARE(m_measurement->MeasurementParameters(), told[2].data());
        QCOMPARE(m_measurement->MeasurementParameters()->Units(), CUnits::GAUSS);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!previous);
        QVERIFY(told[2]);
    }

    void dateIsToldAlsoWhenItIsTheSame()
    {
        QSignalSpy date(m_measurement.get(), &CDataset::DateChanged);
        QVERIFY(readMeasurement(record(QByteArray())));
        QVERIFY(readMeasurement(record(QByteArray())));
        QCOMPARE(date.count(), 2);
        QCOMPARE(date[1][0].toString(), QStringLiteral("2024.03.01T10:00:00"));
    }

    void onlyThePositionOfAParameterCounts_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("keys not looked at")
            << QByteArray("a=T b=2 c=0 d=External e=5")
            << QStringLiteral("Units=T Range=2 AutoRange=0 TriggerMode=External AcqRate=5");
        QTest::newRow("order changed by hand")
            << QByteArray("Units=G AutoRange=1 Range=0.25 TriggerMode=External AcqRate=5")
            << QStringLiteral("Units=G Range=1 AutoRange=0 TriggerMode=External AcqRate=5");
        QTest::newRow("skipped entries keep their position")
            << QByteArray("Units=T Range=1=2 AutoRange TriggerMode=External AcqRate=5")
            << QStringLiteral("Units=T Range=0 AutoRange=0 TriggerMode=External AcqRate=5");
        // The text of the unknown unit is a blank, which is one position more.
        QTest::newRow("unknown unit")
            << QByteArray("Units=  Range=3 AutoRange=External TriggerMode=7")
            << QStringLiteral("Units=  Range=0 AutoRange=1 TriggerMode=External AcqRate=7");
        QTest::newRow("any non-zero is true")
            << QByteArray("Units=T Range=1 AutoRange=-3 TriggerMode=x AcqRate=y")
            << QStringLiteral("Units=T Range=1 AutoRange=1 TriggerMode=Continuous AcqRate=0");
        QTest::newRow("empty") << QByteArray("")
                               << QStringLiteral(
                                      "Units=  Range=0 AutoRange=0 TriggerMode=Immediate AcqRate=0");
    }

    void onlyThePositionOfAParameterCounts()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, expected);
        QVERIFY(readMeasurement(record("<parameters>" + text + "</parameters>")));
        const QString all = m_measurement->MeasurementParameters()->ToString(QStringLiteral(" "));
        QCOMPARE(all.left(all.indexOf(QStringLiteral(" DispRate"))), expected);
    }

    void mappingBlocks()
    {
        const QByteArray block =
            "<measurements><comment>p</comment><position unit=\"\">1.5;-2;1e3</position>"
            "<orientation "
            "unit=\"degree\">10;20;30</orientation><flux>2024.03.01T10:11:12.5,1,2,3,4,5,6,7</flux>"
            "</measurements>";
        QVERIFY(readMapping(record("<headings colsep=\",\"/>" + block + block, "1.2", "MAPPING")));
        QCOMPARE(m_mapping->MeasureBlocks()->size(), size_t(2));
        QCOMPARE(m_mapping->ResultsCount(), quint64(2));
        const CMeasureBlockMapping& first = *m_mapping->MeasureBlocks()->at(0);
        QCOMPARE(first.Comment(), QStringLiteral("p"));
        QCOMPARE(first.Position.X(), 1.5);
        QCOMPARE(first.Position.Y(), -2.0);
        QCOMPARE(first.Position.Z(), 1000.0);
        QCOMPARE(first.Orientation.Roll(), 10.0);
        QCOMPARE(first.Orientation.Pitch(), 20.0);
        QCOMPARE(first.Orientation.Yaw(), 30.0);
        QCOMPARE(first.Results.size(), 1);
        QCOMPARE(first.Results[0]->dB(), 7.0F);
        QVERIFY(!first.RotAppliedOnMeasBlock());
    }

    void placeNeedsThreeParts_data()
    {
        QTest::addColumn<QByteArray>("element");
        QTest::newRow("two") << QByteArray("<position>1;2</position>");
        QTest::newRow("four") << QByteArray("<position>1;2;3;4</position>");
        QTest::newRow("none") << QByteArray("<position/>");
        QTest::newRow("orientation of one") << QByteArray("<orientation>1</orientation>");
    }

    void placeNeedsThreeParts()
    {
        QFETCH(QByteArray, element);
        QVERIFY(!readMapping("<x/>"));
        const QString message = m_serializer->ErrorMessage();
        const QByteArray good = "<measurements><position>1;2;3</position></measurements>";
        QVERIFY(!readMapping(
            record(good + "<measurements>" + element + "</measurements>" + good, "1.2", "MAPPING")));
        QCOMPARE(m_serializer->ErrorMessage(), message);
        QCOMPARE(m_mapping->MeasureBlocks()->size(), size_t(2)); // what was read before stays
        QCOMPARE(m_mapping->ResultsCount(), quint64(0));         // which only the end of the dataset sets
    }

    void badNumbersOfAPlaceAreZero()
    {
        QVERIFY(
            readMapping(record("<measurements><position>x;;3</position></measurements>", "1.2", "MAPPING")));
        QCOMPARE(m_mapping->MeasureBlocks()->at(0)->Position.X(), 0.0);
        QCOMPARE(m_mapping->MeasureBlocks()->at(0)->Position.Z(), 3.0);
    }

    void measurementBlocksHaveNoPlace()
    {
        QVERIFY(readMeasurement(
            record("<measurements><position>1</position><comment>c</comment></measurements>")));
        QCOMPARE(m_measurement->MeasureBlocks()->at(0)->Comment(), QStringLiteral("c"));
    }

    void walkGoesOnInsideUnknownElementsOfABlock()
    {
        QVERIFY(readMeasurement(
            record("<measurements><a>text<b><comment>inner</comment></b></a>"
                   "<flux>2024.03.01T10:11:12.5;1;2;3;4;5;6;7</flux></measurements><measurements/>")));
        QCOMPARE(m_measurement->MeasureBlocks()->size(), size_t(2));
        QCOMPARE(m_measurement->MeasureBlocks()->at(0)->Comment(), QStringLiteral("inner"));
        QCOMPARE(m_measurement->MeasureBlocks()->at(0)->Results.size(), 1);
    }

    void fluxInPieces()
    {
        QVERIFY(readMeasurement(record(measurementsWithFlux(
            "2024.03.01T10:11:12.5;1<!-- c -->0;2;<![CDATA[3;4]]>;5;6;7&#10;2024.03.01T10:11:13.5&#59;8"))));
        const auto& results = m_measurement->MeasureBlocks()->at(0)->Results;
        QCOMPARE(results.size(), 2);
        QCOMPARE(results[0]->B(), 10.0F);
        QCOMPARE(results[0]->By(), 4.0F);
        QCOMPARE(results[1]->B(), 8.0F);
    }

    void windowsLineEndsAndOtherEncodings()
    {
        QByteArray text = record(
            measurementsWithFlux("2024.03.01T10:11:12.5;1;2;3;4;5;6;7\n2024.03.01T10:11:13.5;8;2;3;4;5;6;7"));
        text.replace("\n", "\r\n");
        text.replace("UTF-8", "UTF-16");
        const QTextCodec* codec = QTextCodec::codecForName("UTF-16");
        QVERIFY(readMeasurement(codec->fromUnicode(QString::fromUtf8(text))));
        QCOMPARE(m_measurement->ResultsCount(), quint64(2));
        QCOMPARE(m_measurement->MeasureBlocks()->at(0)->Results[0]->dB(), 7.0F);
    }

    void encodings_data()
    {
        QTest::addColumn<QByteArray>("codec");
        QTest::addColumn<QByteArray>("declared");
        QTest::addColumn<bool>("hasMark");
        for (const char* codec : {"UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-32BE", "UTF-8"}) {
            for (const char* declared : {" encoding=\"UTF-16\"", " encoding='UTF-8'", ""}) {
                if (qstrcmp(codec, "UTF-8") == 0 && qstrcmp(declared, " encoding=\"UTF-16\"") == 0)
                    continue;
                for (const bool hasMark : {true, false})
                    QTest::addRow("%s,%s%s", codec, declared, hasMark ? ", mark" : "")
                        << QByteArray(codec) << QByteArray(declared) << hasMark;
            }
        }
        for (const char* codec : {"ISO-8859-13", "windows-1257"})
            QTest::newRow(codec) << QByteArray(codec) << QByteArray(" encoding = '") + codec + "' " << false;
    }

    /// In other encodings the bytes of "<", ">" and quotes are parts of other characters as well.
    void encodings()
    {
        QFETCH(QByteArray, codec);
        QFETCH(QByteArray, declared);
        QFETCH(bool, hasMark);
        const QByteArray rows = QByteArray("2024.03.01T10:11:12.5;1;2;3;4;5;6;7\n").repeated(999) +
                                "2024.03.01T10:11:12.5;1;2;3;4;5;6;7";
        const QString comment = QStringLiteral("\u013C don't \u0122\u0123 ");
        QByteArray content = record("<!-- @@ --><measurements><comment>" + QByteArray("@").repeated(2000) +
                                    "</comment><flux>" + rows + "</flux></measurements>");
        content.replace(" encoding=\"UTF-8\"", declared);
        QString text = QString::fromUtf8(content).replace(QLatin1Char('@'), comment);
        if (hasMark)
            text.prepend(QChar(QChar::ByteOrderMark));
        QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
        QVERIFY(readMeasurement(
            QTextCodec::codecForName(codec)->fromUnicode(text.constData(), text.size(), &state)));
        QCOMPARE(m_measurement->MeasureBlocks()->size(), size_t(1));
        QCOMPARE(m_measurement->MeasureBlocks()->at(0)->Results.size(), 1000);
        QCOMPARE(m_measurement->MeasureBlocks()->at(0)->Comment().size(), comment.size() * 2000);
        QVERIFY(m_measurement->MeasureBlocks()->at(0)->Comment().startsWith(comment));
    }

    void noLimitWhileReading()
    {
        m_settings.SetMeasurementMaxMeasurementCount(1);
        QVERIFY(readMeasurement(record(measurementsWithFlux("2024.03.01T10:11:12.5;1") +
                                       measurementsWithFlux("2024.03.01T10:11:12.5;1"))));
        QCOMPARE(m_measurement->MeasureBlocks()->size(), size_t(2));
        QCOMPARE(m_measurement->ResultsCount(), quint64(2));
    }

    void sampleCountStartsAnewAtEachRead()
    {
        const QByteArray text = record(measurementsWithFlux("2024.03.01T10:11:12.5;1;2;3;4;5;6;7"));
        QVERIFY(readMeasurement(text));
        m_measurement->Clear();
        QVERIFY(readMeasurement(text));
        QCOMPARE(m_serializer->SampleCount(), 1);
        QCOMPARE(m_measurement->ResultsCount(), quint64(1));
    }

private:
    bool readMeasurement(QByteArray text)
    {
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        return m_serializer->ReadMeasurement(&buffer, *m_measurement);
    }

    bool readMapping(QByteArray text)
    {
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        return m_serializer->ReadMapping(&buffer, *m_mapping);
    }

    CSettings m_settings{QString()};
    std::unique_ptr<CDataSetMeasurement> m_measurement;
    std::unique_ptr<CDataSetMapping> m_mapping;
    std::unique_ptr<CXMLResultsSerializer> m_serializer;
};

QTEST_GUILESS_MAIN(tst_RecordReading)
#include "tst_RecordReading.moc"
