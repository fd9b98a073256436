// SPDX-License-Identifier: GPL-3.0-or-later
#include "LogRecorder.h"
#include "OperationFixture.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

QByteArray document(const QByteArray& content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<OPERATION_PARAMETERS>" + content +
           "</OPERATION_PARAMETERS>\n";
}

QByteArray measurement(const QByteArray& content)
{
    return document("<MEASUREMENT_PARAMETERS>" + content + "</MEASUREMENT_PARAMETERS>");
}

} // namespace

/// Parameter files of operations, written and read.
class tst_ParameterFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void writes();
    void writesTheInitialValues();
    void doesNotWriteWhereItCannot();
    void roundTrip();
    void missingFile();
    void brokenFile_data();
    void brokenFile();
    void emptyDocument();
    void anyRoot();
    void readsMeasurementParameters();
    void readsInFileOrder();
    void conversions_data();
    void conversions();
    void ignoresFrequencyMax();
    void holdsTheDriverBack();
    void raisesApplyConfigurationThatWasDown();
    void unit_data();
    void unit();
    void unitIsAnnouncedInEveryCase();
    void uncertaintyUnit_data();
    void uncertaintyUnit();
    void pendingUncertaintyUnitLastsForTheFile();
    void immediateMode_data();
    void immediateMode();
    void triggerPlugin_data();
    void triggerPlugin();
    void announcesTheMeasurementParameters();
    void readsLimits();
    void readsAlarms();
    void ignoresForeignChildrenOfAlarms();
    void handsOnOtherElements();

private:
    bool load(const QByteArray& content)
    {
        return m_operation->LoadParameters(m_fixture->write(QStringLiteral("p.xml"), content));
    }
    CMeasurementParameters& parameters() { return m_operation->measurement(); }

    std::unique_ptr<OperationFixture> m_fixture;
    std::unique_ptr<CTestOperation> m_operation;
    CFakeTriggerPlugin m_first;
    CFakeTriggerPlugin m_second;
};

void tst_ParameterFile::init()
{
    m_fixture = std::make_unique<OperationFixture>();
    m_operation = std::make_unique<CTestOperation>(&m_fixture->supervisor);
    m_first.Name = QStringLiteral("First");
    m_second.Name = QStringLiteral("Second <&>");
    m_operation->triggerPlugins = {&m_first, &m_second};
}

void tst_ParameterFile::cleanup()
{
    m_operation.reset();
    m_fixture.reset();
}

void tst_ParameterFile::writes()
{
    CMeasurementParameters& p = parameters();
    p.SetTriggerMode(CTrigger::CONTINUOUS);
    p.SetAcquisitionRate(1234.5678);
    p.SetFrequencyMin(0.5);
    p.SetAveraging(12);
    p.SetRange(0.1F);
    p.SetAutoRange(true);
    p.SetEnableAdcUnit(true);
    p.SetUnits(CUnits::MICRO_TESLA);
    p.SetUncertaintyUnits(CUnits::PERCENT);
    p.SetTriggerPlugin(&m_second);
    COperationParameters& all = *m_operation->OperationParameters();
    all.LimitsParameters()->SetLimitsFilePath(QStringLiteral("/x/limits & more.xml"));
    all.LimitsParameters()->SetLimitsFileName(QStringLiteral("limits"));
    all.AlarmParametersMeter()->SetAxis(CAxis::BBprime);
    all.AlarmParametersMeter()->SetState(CAlarm::FlagNotification);
    all.AlarmParametersMeter()->SetMinimum(-1234567);
    all.AlarmParametersMeter()->SetMaximum(1.23456789);
    all.AlarmParametersSpectrum()->SetState(CAlarm::Notification);
    all.AlarmParametersAcAnalysis()->SetState(CAlarm::Audio);
    all.AlarmParametersAcAnalysis()->SetAxis(CAxis::Bz);
    all.AlarmParametersMapping()->SetAxis(CAxis::dB);
    all.AlarmParametersMapping()->SetMinimum(1e-7);
    all.AlarmParametersMapping()->SetMaximum(30);

    const QString path = m_fixture->directory.filePath(QStringLiteral("out.xml"));
    m_operation->SaveParameters(path);
    QCOMPARE(QString::fromUtf8(OperationFixture::readFile(path)),
             QStringLiteral(R"(<?xml version="1.0" encoding="UTF-8"?>
<OPERATION_PARAMETERS>
    <MEASUREMENT_PARAMETERS>
        <Range>0.1</Range>
        <AutoRange>1</AutoRange>
        <AdcUnit>1</AdcUnit>
        <Units>%1T</Units>
        <UncertaintyUnits>%</UncertaintyUnits>
        <Averaging>12</Averaging>
        <AcquisitionRate>1234.57</AcquisitionRate>
        <DisplayRate>1</DisplayRate>
        <FrequencyMin>0.5</FrequencyMin>
        <FrequencyMax>617.284</FrequencyMax>
        <TriggerMode>Continuous</TriggerMode>
        <TriggerPlugin>Second &lt;&amp;&gt;</TriggerPlugin>
    </MEASUREMENT_PARAMETERS>
    <LIMITS_PARAMETERS>
        <LimitsFilePath>/x/limits &amp; more.xml</LimitsFilePath>
        <LimitsFileName>limits</LimitsFileName>
    </LIMITS_PARAMETERS>
    <ALARM_METER_PARAMETERS>
        <Axis>B.B'</Axis>
        <State>Flag Notification</State>
        <Minimum>-1.23457e+06</Minimum>
        <Maximum>1.23457</Maximum>
    </ALARM_METER_PARAMETERS>
    <ALARM_SPECTRUM_PARAMETERS>
        <State>Notification</State>
    </ALARM_SPECTRUM_PARAMETERS>
    <ALARM_ACANALYSIS_PARAMETERS>
        <State>Audio</State>
        <Axis>Bz</Axis>
    </ALARM_ACANALYSIS_PARAMETERS>
    <ALARM_MAPPING_PARAMETERS>
        <Axis>dB</Axis>
        <State>Off</State>
        <Minimum>1e-07</Minimum>
        <Maximum>30</Maximum>
    </ALARM_MAPPING_PARAMETERS>
    <EXTRA>more</EXTRA>
</OPERATION_PARAMETERS>
)")
                 .replace(QLatin1String("%1T"), QString(QChar(0x00B5)) + QLatin1Char('T')));
}

void tst_ParameterFile::writesTheInitialValues()
{
    const QString path = m_fixture->directory.filePath(QStringLiteral("out.xml"));
    m_operation->SaveParameters(path);
    const QByteArray text = OperationFixture::readFile(path);
    QVERIFY(text.contains("<Units> </Units>"));
    QVERIFY(text.contains("<UncertaintyUnits> </UncertaintyUnits>"));
    QVERIFY(text.contains("<TriggerMode>Immediate</TriggerMode>"));
    QVERIFY(text.contains("<AutoRange>0</AutoRange>"));
    QVERIFY(text.contains("<LimitsFilePath></LimitsFilePath>"));
    QVERIFY(!text.contains("TriggerPlugin"));
}

void tst_ParameterFile::doesNotWriteWhereItCannot()
{
    const QString path = m_fixture->directory.filePath(QStringLiteral("absent/out.xml"));
    const LogRecorder log;
    m_operation->SaveParameters(path);
    QCOMPARE(log.Messages(), QStringList(QStringLiteral("CRIT Error: Cannot read file : ") + path));
}

void tst_ParameterFile::roundTrip()
{
    parameters().SetTriggerMode(CTrigger::CONTINUOUS);
    parameters().SetAcquisitionRate(200);
    parameters().SetDisplayRate(2);
    parameters().SetUnits(CUnits::KILO_AMPERE_PER_METER);
    parameters().SetTriggerPlugin(&m_second);
    m_operation->OperationParameters()->AlarmParametersMapping()->SetAxis(CAxis::BBprime);
    const QString path = m_fixture->directory.filePath(QStringLiteral("out.xml"));
    m_operation->SaveParameters(path);

    CTestOperation other(&m_fixture->supervisor);
    other.triggerPlugins = m_operation->triggerPlugins;
    QVERIFY(other.LoadParameters(path));
    QCOMPARE(other.measurement().AcquisitionRate(), 200.0);
    QCOMPARE(other.measurement().DisplayRate(), 2.0);
    QCOMPARE(other.measurement().BlockSize(), 100);
    QCOMPARE(other.measurement().FrequencyMax(), 100.0);
    QCOMPARE(other.measurement().NumberOfBins(), 50.0);
    QCOMPARE(other.measurement().Units(), CUnits::KILO_AMPERE_PER_METER);
    QCOMPARE(other.measurement().TriggerPlugin(), &m_second);
    QCOMPARE(other.OperationParameters()->AlarmParametersMapping()->Axis(), CAxis::BBprime);

    const QString again = m_fixture->directory.filePath(QStringLiteral("again.xml"));
    other.SaveParameters(again);
    // The uncertainty has got its default unit by the load.
    QCOMPARE(OperationFixture::readFile(again).replace("<UncertaintyUnits>mA/m<", "<UncertaintyUnits> <"),
             OperationFixture::readFile(path));
}

void tst_ParameterFile::missingFile()
{
    QSignalSpy applySpy(&parameters(), &CMeasurementParameters::ApplyConfigurationChanged);
    const LogRecorder log;
    QVERIFY(!m_operation->LoadParameters(m_fixture->directory.filePath(QStringLiteral("absent.xml"))));
    QVERIFY(log.Messages().isEmpty());
    QCOMPARE(applySpy.count(), 0);
}

void tst_ParameterFile::brokenFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("line");
    QTest::newRow("empty") << QByteArray() << 1;
    QTest::newRow("no XML") << QByteArray("Averaging = 3\n") << 1;
    QTest::newRow("cut") << QByteArray("<A>\n<MEASUREMENT_PARAMETERS>\n<Averaging>3</Averaging>") << 3;
    QTest::newRow("wrong end tag")
        << QByteArray("<A>\n<MEASUREMENT_PARAMETERS><Averaging>3</averaging></MEASUREMENT_PARAMETERS></A>")
        << 2;
}

void tst_ParameterFile::brokenFile()
{
    QFETCH(const QByteArray, content);
    QFETCH(const int, line);
    QSignalSpy applySpy(&parameters(), &CMeasurementParameters::ApplyConfigurationChanged);
    const LogRecorder log;
    QVERIFY(!load(content));
    QCOMPARE(log.Messages().size(), 1);
    const QString message = log.Messages().first();
    const QString path = m_fixture->directory.filePath(QStringLiteral("p.xml"));
    QVERIFY2(message.startsWith(QStringLiteral("WARN Cannot parse XML file. Error : ")), qPrintable(message));
    QVERIFY2(message.contains(QStringLiteral(" Line %1 Column ").arg(line)), qPrintable(message));
    QVERIFY2(message.endsWith(QStringLiteral(" File ") + path), qPrintable(message));
    QCOMPARE(parameters().Averaging(), 1);
    QCOMPARE(applySpy.count(), 0);
}

void tst_ParameterFile::emptyDocument()
{
    QSignalSpy doneSpy(m_operation.get(), &COperation::OnLoadMeasParametersDone);
    QVERIFY(load(document({})));
    QCOMPARE(doneSpy.count(), 0);
    QVERIFY(parameters().ApplyConfiguration());
}

void tst_ParameterFile::anyRoot()
{
    QVERIFY(load("<X><MEASUREMENT_PARAMETERS><Averaging>3</Averaging></MEASUREMENT_PARAMETERS></X>"));
    QCOMPARE(parameters().Averaging(), 3);
}

void tst_ParameterFile::readsMeasurementParameters()
{
    QVERIFY(load(measurement("<Range>0.3</Range><AutoRange>1</AutoRange><AdcUnit>1</AdcUnit><Units>mG</Units>"
                             "<UncertaintyUnits>T</UncertaintyUnits><Averaging>25</Averaging>"
                             "<AcquisitionRate>200</AcquisitionRate><DisplayRate>2</DisplayRate>"
                             "<FrequencyMin>1.5</FrequencyMin><FrequencyMax>7</FrequencyMax>"
                             "<TriggerMode>Timer</TriggerMode><TriggerPlugin>First</TriggerPlugin>")));
    QCOMPARE(parameters().Range(), 0.3F);
    QVERIFY(parameters().AutoRange());
    QVERIFY(parameters().EnableAdcUnit());
    QCOMPARE(parameters().Units(), CUnits::MILLI_GAUSS);
    QCOMPARE(parameters().DisplayUnits(), CUnits::MILLI_GAUSS);
    QCOMPARE(parameters().UncertaintyUnits(), CUnits::MILLI_GAUSS);
    QCOMPARE(parameters().UncertaintyUnitList(),
             QList<CUnits::UnitType>({CUnits::MILLI_GAUSS, CUnits::PERCENT}));
    QCOMPARE(parameters().Averaging(), 25);
    QCOMPARE(parameters().AcquisitionRate(), 200.0);
    QCOMPARE(parameters().DisplayRate(), 2.0);
    QCOMPARE(parameters().FrequencyMin(), 1.5);
    QCOMPARE(parameters().FrequencyMax(), 100.0);
    QCOMPARE(parameters().BlockSize(), 100);
    QCOMPARE(parameters().TriggerMode(), CTrigger::TIMER);
    QCOMPARE(parameters().TriggerPlugin(), &m_first);
}

void tst_ParameterFile::readsInFileOrder()
{
    // Each assignment cascades: in the continuous mode the acquisition rate that comes last sets the block
    // size, in the immediate mode the display rate.
    QVERIFY(load(measurement("<TriggerMode>Continuous</TriggerMode><DisplayRate>4</DisplayRate>"
                             "<AcquisitionRate>100</AcquisitionRate>")));
    QCOMPARE(parameters().BlockSize(), 25);
    QCOMPARE(parameters().DisplayRate(), 4.0);
    m_operation = std::make_unique<CTestOperation>(&m_fixture->supervisor);
    QVERIFY(load(measurement("<TriggerMode>Immediate</TriggerMode><DisplayRate>4</DisplayRate>"
                             "<AcquisitionRate>100</AcquisitionRate>")));
    QCOMPARE(parameters().BlockSize(), 1);
    QCOMPARE(parameters().DisplayRate(), 100.0);
}

void tst_ParameterFile::conversions_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("expected");
    const QVariant no(false);
    QTest::newRow("bool 2") << QByteArray("<AutoRange>2</AutoRange>") << QByteArray("AutoRange") << no;
    QTest::newRow("bool true") << QByteArray("<AutoRange>true</AutoRange>") << QByteArray("AutoRange") << no;
    QTest::newRow("bool 01") << QByteArray("<AdcUnit>01</AdcUnit>") << QByteArray("EnableAdcUnit")
                             << QVariant(true);
    QTest::newRow("int") << QByteArray("<Averaging>4.5</Averaging>") << QByteArray("Averaging")
                         << QVariant(0);
    QTest::newRow("float") << QByteArray("<Range>wide</Range>") << QByteArray("Range") << QVariant(0.0F);
    QTest::newRow("double") << QByteArray("<FrequencyMin>1,5</FrequencyMin>") << QByteArray("FrequencyMin")
                            << QVariant(0.0);
    QTest::newRow("mode") << QByteArray("<TriggerMode>Sometimes</TriggerMode>") << QByteArray("TriggerMode")
                          << QVariant::fromValue(CTrigger::CONTINUOUS);
    QTest::newRow("unit") << QByteArray("<Units>furlong</Units>") << QByteArray("Units")
                          << QVariant::fromValue(CUnits::UNKNOWN);
    QTest::newRow("blank unit") << QByteArray("<Units> </Units>") << QByteArray("Units")
                                << QVariant::fromValue(CUnits::UNKNOWN);
}

void tst_ParameterFile::conversions()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QByteArray, property);
    QFETCH(const QVariant, expected);
    parameters().SetAutoRange(true);
    parameters().SetAveraging(3);
    parameters().SetRange(1);
    parameters().SetFrequencyMin(1);
    QVERIFY(load(measurement(content)));
    QCOMPARE(parameters().property(property.constData()), expected);
}

void tst_ParameterFile::ignoresFrequencyMax()
{
    QSignalSpy frequencySpy(&parameters(), &CMeasurementParameters::FrequencyMaxChanged);
    QVERIFY(load(measurement("<FrequencyMax>500</FrequencyMax><BlockSize>9</BlockSize>")));
    QCOMPARE(frequencySpy.count(), 0);
    QCOMPARE(parameters().AcquisitionRate(), 0.0);
    QCOMPARE(parameters().BlockSize(), 1);
}

void tst_ParameterFile::holdsTheDriverBack()
{
    QVector<bool> applied;
    connect(&parameters(), &CMeasurementParameters::ApplyConfigurationChanged, this,
            [&](bool value) { applied.append(value); });
    bool wasHeldBack = true;
    connect(m_operation.get(), &COperation::OnLoadMeasParametersDone, this,
            [&] { wasHeldBack = !parameters().ApplyConfiguration(); });
    QVERIFY(load(measurement("<AcquisitionRate>200</AcquisitionRate><DisplayRate>2</DisplayRate>")));
    QCOMPARE(applied, QVector<bool>({false, true}));
    QVERIFY(wasHeldBack);
}

void tst_ParameterFile::raisesApplyConfigurationThatWasDown()
{
    parameters().SetApplyConfiguration(false);
    QVector<bool> applied;
    connect(&parameters(), &CMeasurementParameters::ApplyConfigurationChanged, this,
            [&](bool value) { applied.append(value); });
    QVERIFY(load(measurement("<AcquisitionRate>200</AcquisitionRate>")));
    QCOMPARE(applied, QVector<bool>({true}));
}

void tst_ParameterFile::unit_data()
{
    QTest::addColumn<QString>("instrumentUnits"); // empty: no instrument
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<CUnits::UnitType>("expected");
    QTest::newRow("listed") << QStringLiteral("mT,G") << QByteArray("G") << CUnits::GAUSS;
    QTest::newRow("not listed") << QStringLiteral("mT,G") << QByteArray("T") << CUnits::MILLI_TESLA;
    QTest::newRow("no text") << QStringLiteral("mT,G") << QByteArray() << CUnits::MILLI_TESLA;
    QTest::newRow("empty list") << QStringLiteral("none") << QByteArray("T") << CUnits::TESLA;
    QTest::newRow("no instrument") << QString() << QByteArray("T") << CUnits::TESLA;
}

void tst_ParameterFile::unit()
{
    QFETCH(const QString, instrumentUnits);
    QFETCH(const QByteArray, stored);
    QFETCH(const CUnits::UnitType, expected);
    if (!instrumentUnits.isEmpty()) {
        m_fixture->instrument(0)->setProperty("units", instrumentUnits);
        m_fixture->connectInstrument(0);
    }
    QVERIFY(load(measurement("<Units>" + stored + "</Units>")));
    QCOMPARE(parameters().Units(), expected);
    QCOMPARE(parameters().DisplayUnits(), expected);
}

void tst_ParameterFile::unitIsAnnouncedInEveryCase()
{
    parameters().SetUnits(CUnits::GAUSS);
    parameters().SetDisplayUnits(CUnits::GAUSS);
    QStringList signalsSeen;
    connect(&parameters(), &CMeasurementParameters::UnitsChanged, this,
            [&] { signalsSeen.append(QStringLiteral("Units")); });
    connect(&parameters(), &CMeasurementParameters::DisplayUnitsChanged, this,
            [&] { signalsSeen.append(QStringLiteral("DisplayUnits")); });
    connect(&parameters(), &CMeasurementParameters::UncertaintyUnitsChanged, this,
            [&] { signalsSeen.append(QStringLiteral("UncertaintyUnits")); });
    connect(&parameters(), &CMeasurementParameters::UncertaintyUnitListChanged, this,
            [&] { signalsSeen.append(QStringLiteral("UncertaintyUnitList")); });
    connect(m_operation.get(), &COperation::OnLoadMeasParametersDone, this,
            [&] { signalsSeen.append(QStringLiteral("done")); });
    QVERIFY(load(measurement("<Units>G</Units>")));
    QCOMPARE(signalsSeen, QStringList({QStringLiteral("Units"), QStringLiteral("DisplayUnits"),
                                       QStringLiteral("UncertaintyUnits"),
                                       QStringLiteral("UncertaintyUnitList"), QStringLiteral("done")}));
}

void tst_ParameterFile::uncertaintyUnit_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<CUnits::UnitType>("expected");
    QTest::addColumn<CUnits::UnitType>("listed");
    QTest::newRow("percent") << QByteArray("<Units>T</Units><UncertaintyUnits>%</UncertaintyUnits>")
                             << CUnits::PERCENT << CUnits::MILLI_TESLA;
    QTest::newRow("percent first") << QByteArray("<UncertaintyUnits>%</UncertaintyUnits><Units>T</Units>")
                                   << CUnits::PERCENT << CUnits::MILLI_TESLA;
    QTest::newRow("other") << QByteArray("<Units>T</Units><UncertaintyUnits>G</UncertaintyUnits>")
                           << CUnits::MILLI_TESLA << CUnits::MILLI_TESLA;
    QTest::newRow("none") << QByteArray("<Units>nT</Units>") << CUnits::NANO_TESLA << CUnits::NANO_TESLA;
    QTest::newRow("unknown unit") << QByteArray("<Units>furlong</Units>") << CUnits::PERCENT
                                  << CUnits::PERCENT;
}

void tst_ParameterFile::uncertaintyUnit()
{
    QFETCH(const QByteArray, content);
    QFETCH(const CUnits::UnitType, expected);
    QFETCH(const CUnits::UnitType, listed);
    QVERIFY(load(measurement(content)));
    QCOMPARE(parameters().UncertaintyUnits(), expected);
    QCOMPARE(parameters().UncertaintyUnitList(), QList<CUnits::UnitType>({listed, CUnits::PERCENT}));
}

void tst_ParameterFile::pendingUncertaintyUnitLastsForTheFile()
{
    QVERIFY(load(document("<MEASUREMENT_PARAMETERS><UncertaintyUnits>%</UncertaintyUnits>"
                          "</MEASUREMENT_PARAMETERS>"
                          "<MEASUREMENT_PARAMETERS><Units>T</Units></MEASUREMENT_PARAMETERS>")));
    QCOMPARE(parameters().UncertaintyUnits(), CUnits::PERCENT);
    QVERIFY(load(measurement("<Units>T</Units>")));
    QCOMPARE(parameters().UncertaintyUnits(), CUnits::MILLI_TESLA);
}

void tst_ParameterFile::immediateMode_data()
{
    QTest::addColumn<bool>("hasInstrument");
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<double>("expected");
    QTest::newRow("immediate") << true << QByteArray("Immediate") << 40.0;
    QTest::newRow("immediate without instrument") << false << QByteArray("Immediate") << 200.0;
    QTest::newRow("continuous") << true << QByteArray("Continuous") << 200.0;
    QTest::newRow("external") << true << QByteArray("External") << 200.0;
}

void tst_ParameterFile::immediateMode()
{
    QFETCH(const bool, hasInstrument);
    QFETCH(const QByteArray, mode);
    QFETCH(const double, expected);
    if (hasInstrument)
        m_fixture->connectInstrument(0);
    parameters().SetTriggerMode(CTrigger::TIMER);
    parameters().SetImmediateAcquisitionRate(40);
    QVERIFY(
        load(measurement("<TriggerMode>" + mode + "</TriggerMode><AcquisitionRate>200</AcquisitionRate>")));
    QCOMPARE(parameters().AcquisitionRate(), expected);
    QCOMPARE(parameters().FrequencyMax(), expected / 2);
}

void tst_ParameterFile::triggerPlugin_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("expected");
    QTest::newRow("named") << QByteArray("<TriggerPlugin>Second &lt;&amp;&gt;</TriggerPlugin>") << 1;
    QTest::newRow("not named") << QByteArray() << 0;
    QTest::newRow("gone") << QByteArray("<TriggerPlugin>Third</TriggerPlugin>") << -1;
    QTest::newRow("other case") << QByteArray("<TriggerPlugin>first</TriggerPlugin>") << -1;
}

void tst_ParameterFile::triggerPlugin()
{
    QFETCH(const QByteArray, content);
    QFETCH(const int, expected);
    parameters().SetTriggerPlugin(&m_first);
    QSignalSpy pluginSpy(&parameters(), &CMeasurementParameters::TriggerPluginChanged);
    QVERIFY(load(measurement(content)));
    QCOMPARE(parameters().TriggerPlugin(), m_operation->triggerPlugins.value(expected));
    QCOMPARE(pluginSpy.count(), expected == 0 ? 0 : 1);
}

void tst_ParameterFile::announcesTheMeasurementParameters()
{
    QSignalSpy doneSpy(m_operation.get(), &COperation::OnLoadMeasParametersDone);
    QVERIFY(load(document("<LIMITS_PARAMETERS/>")));
    QCOMPARE(doneSpy.count(), 0);
    QVERIFY(load(measurement({})));
    QCOMPARE(doneSpy.count(), 1);
}

void tst_ParameterFile::readsLimits()
{
    CLimitsParameters& limits = *m_operation->OperationParameters()->LimitsParameters();
    const QByteArray content = document("<LIMITS_PARAMETERS><LimitsFilePath>/x/a.xml</LimitsFilePath>"
                                        "<LimitsFileName>a</LimitsFileName></LIMITS_PARAMETERS>");
    QSignalSpy pathSpy(&limits, &CLimitsParameters::LimitsFilePathChanged);
    QSignalSpy nameSpy(&limits, &CLimitsParameters::LimitsFileNameChanged);
    QVERIFY(load(content));
    QVERIFY(load(content));
    QCOMPARE(limits.LimitsFilePath(), QStringLiteral("/x/a.xml"));
    QCOMPARE(limits.LimitsFileName(), QStringLiteral("a"));
    QCOMPARE(pathSpy.count(), 2);
    QCOMPARE(nameSpy.count(), 1);
    QVERIFY(load(document("<LIMITS_PARAMETERS><Other>b</Other></LIMITS_PARAMETERS>")));
    QCOMPARE(pathSpy.count(), 2);
}

void tst_ParameterFile::readsAlarms()
{
    COperationParameters& all = *m_operation->OperationParameters();
    QVERIFY(load(
        document("<ALARM_METER_PARAMETERS><State>Audio</State><Axis>B.B'</Axis><Minimum>-1.5</Minimum>"
                 "<Maximum>2.5</Maximum></ALARM_METER_PARAMETERS>"
                 "<ALARM_SPECTRUM_PARAMETERS><State>Flag Notification</State></ALARM_SPECTRUM_PARAMETERS>"
                 "<ALARM_ACANALYSIS_PARAMETERS><State>Notification</State><Axis>By</Axis></"
                 "ALARM_ACANALYSIS_PARAMETERS>"
                 "<ALARM_MAPPING_PARAMETERS><State>Audio</State><Axis>Bx</Axis><Minimum>3</"
                 "Minimum><Maximum>4</Maximum>"
                 "</ALARM_MAPPING_PARAMETERS>")));
    QCOMPARE(all.AlarmParametersMeter()->State(), CAlarm::Audio);
    QCOMPARE(all.AlarmParametersMeter()->Axis(), CAxis::BBprime);
    QCOMPARE(all.AlarmParametersMeter()->Minimum(), -1.5);
    QCOMPARE(all.AlarmParametersMeter()->Maximum(), 2.5);
    QCOMPARE(all.AlarmParametersSpectrum()->State(), CAlarm::FlagNotification);
    QCOMPARE(all.AlarmParametersAcAnalysis()->State(), CAlarm::Notification);
    QCOMPARE(all.AlarmParametersAcAnalysis()->Axis(), CAxis::By);
    QCOMPARE(all.AlarmParametersMapping()->State(), CAlarm::Audio);
    QCOMPARE(all.AlarmParametersMapping()->Axis(), CAxis::Bx);
    QCOMPARE(all.AlarmParametersMapping()->Minimum(), 3.0);
    QCOMPARE(all.AlarmParametersMapping()->Maximum(), 4.0);
    QVERIFY(m_operation->extraElements.isEmpty());

    // Texts that are none of the enumeration.
    QVERIFY(load(document("<ALARM_METER_PARAMETERS><State>Loud</State><Axis>Bw</Axis>"
                          "<Minimum>low</Minimum></ALARM_METER_PARAMETERS>")));
    QCOMPARE(all.AlarmParametersMeter()->State(), CAlarm::Off);
    QCOMPARE(all.AlarmParametersMeter()->Axis(), CAxis::dB);
    QCOMPARE(all.AlarmParametersMeter()->Minimum(), 0.0);
    QCOMPARE(all.AlarmParametersMeter()->Maximum(), 2.5);
}

void tst_ParameterFile::ignoresForeignChildrenOfAlarms()
{
    COperationParameters& all = *m_operation->OperationParameters();
    QVERIFY(load(document("<ALARM_SPECTRUM_PARAMETERS><Axis>By</Axis><Minimum>1</Minimum>"
                          "</ALARM_SPECTRUM_PARAMETERS>"
                          "<ALARM_ACANALYSIS_PARAMETERS><Minimum>1</Minimum></ALARM_ACANALYSIS_PARAMETERS>"
                          "<ALARM_METER_PARAMETERS><DisplayAlarmUnits>G</DisplayAlarmUnits>"
                          "</ALARM_METER_PARAMETERS>")));
    QCOMPARE(all.AlarmParametersMeter()->DisplayAlarmUnits(), CUnits::TESLA);
    QCOMPARE(all.AlarmParametersSpectrum()->State(), CAlarm::Off);
    QCOMPARE(all.AlarmParametersAcAnalysis()->Axis(), CAxis::B);
}

void tst_ParameterFile::handsOnOtherElements()
{
    QVERIFY(load(document("<EXTRA>1</EXTRA><!-- between --><MEASUREMENT_PARAMETERS/>text<LIMITS_PARAMETERS/>"
                          "<MAPPING_PARAMETERS>2</MAPPING_PARAMETERS>")));
    QCOMPARE(m_operation->extraElements,
             QStringList({QStringLiteral("EXTRA=1"), QStringLiteral("MAPPING_PARAMETERS=2")}));
}

QTEST_GUILESS_MAIN(tst_ParameterFile)

#include "tst_ParameterFile.moc"
