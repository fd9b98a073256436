// SPDX-License-Identifier: GPL-3.0-or-later
#include "CSettings.h"
#include "LogRecorder.h"
#include "MetaObjectTable.h"
#include "PropertyLog.h"
#include "SettingsDirectoryPath.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QtTest>

using QtDataVisualization::Q3DCamera;

namespace {

QString filePath()
{
    return SettingsDirectoryPath + QStringLiteral("/KestrixApplicationSettings.xml");
}

void writeFile(const QByteArray& content)
{
    QVERIFY(QDir().mkpath(SettingsDirectoryPath));
    QFile file(filePath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

QByteArray readFile()
{
    QFile file(filePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray withRoot(const QByteArray& children)
{
    return "<?xml version=\"1.0\"?>\n<SETTINGS>" + children + "</SETTINGS>\n";
}

QByteArray element(const char* key, const char* text)
{
    return QByteArray("<") + key + ">" + text + "</" + key + ">";
}

/// The value of a property, the number of it if it is an enumerator.
QVariant valueOf(const QMetaProperty& property, const QObject& object)
{
    const QVariant value = property.read(&object);
    return property.isEnumType() ? QVariant(value.toInt()) : value;
}

QVariant valueOf(const char* name, const QObject& object)
{
    return valueOf(object.metaObject()->property(object.metaObject()->indexOfProperty(name)), object);
}

const QString kApplicationDir = QStringLiteral("/opt/app");

} // namespace

class TestCSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void directoryHasNoPartOfTheApplication();
    void surface();
    void defaults();
    void nameLists();
    void settersEmitOnChangeOnly();
    void readsEveryKey_data();
    void readsEveryKey();
    void boolsAreTrueForOneOnly_data();
    void boolsAreTrueForOneOnly();
    void badTextsKeepTheValue_data();
    void badTextsKeepTheValue();
    void valuesBeyondTheirMeaningAreKept();
    void skipsOtherElements();
    void keysMissingFromTheFileKeepTheirValue();
    void readingEmitsForWhatDiffers();
    void wrongRoot();
    void brokenFileKeepsWhatWasReadBefore_data();
    void brokenFileKeepsWhatWasReadBefore();
    void unreadableFile();
    void missingFileIsNoError();
    void writesAllKeysInOrder();
    void writtenFileIsReadBack();
    void writesSixSignificantDigits();
    void writeCreatesOneLevel();
    void writeWithoutParentDirectoryOnlyLogs();
    void restoreFactorySettings();
    void restoreWritesOnRequestOnly();
};

void TestCSettings::initTestCase()
{
    // The tests below remove this directory.
    QVERIFY2(SettingsDirectoryPath.startsWith(QDir::currentPath() + QLatin1Char('/')),
             "to be started by ctest, which gives the test a home of its own");
}

void TestCSettings::init()
{
    QVERIFY(QDir(SettingsDirectoryPath).removeRecursively());
    QVERIFY(QDir().mkpath(QFileInfo(SettingsDirectoryPath).path()));
}

void TestCSettings::directoryHasNoPartOfTheApplication()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Norvane"));
    QCoreApplication::setApplicationName(QStringLiteral("Kestrix"));
    QCOMPARE(SettingsDirectoryPath, qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/Kestrix"));
}

void TestCSettings::surface()
{
    using namespace MetaObjectTable;
    const char* const preset = "QtDataVisualization::Q3DCamera::CameraPreset";
    VERIFY_NO_DIFFERENCE(compareProperties(
        CSettings::staticMetaObject,
        {{"InstrumentParameterPath", "QString", ReadWrite},
         {"InstrumentDriverPluginsPath", "QString", ReadWrite},
         {"MapperPluginsPath", "QString", ReadWrite},
         {"TriggerPluginsPath", "QString", ReadWrite},
         {"DefaultStoragePath", "QString", ReadWrite},
         {"SaveRecordingsAsCsv", "bool", ReadWrite},
         {"CheckForNewVersion", "bool", ReadWrite},
         {"IgnoreSpecificVersion", "QString", ReadWrite},
         {"MeasurementMaxMeasurementCount", "qulonglong", ReadWrite},
         {"MappingMaxMeasurementCount", "qulonglong", ReadWrite},
         {"LogMaxHistoryCount", "uint", ReadWrite},
         {"AveragingCount", "uint", ReadWrite},
         {"AveragingMode", "int", ReadWrite},
         {"EnableMeterMode", "bool", ReadWrite},
         {"EnableSpectrumMode", "bool", ReadWrite},
         {"EnableAcAnalysisMode", "bool", ReadWrite},
         {"EnableMappingMode", "bool", ReadWrite},
         {"Meter3DCameraPreset", preset, ReadWrite},
         {"Meter3DZoomLevel", "double", ReadWrite},
         {"Meter3DOrthoProjection", "bool", ReadWrite},
         {"Mapping3DCameraPreset", preset, ReadWrite},
         {"Mapping3DZoomLevel", "double", ReadWrite},
         {"Mapping3DOrthoProjection", "bool", ReadWrite},
         {"Mapping2DPlotHorizontalAxisType", "t_Mapping2DPlotHorizontalAxisType", ReadWrite},
         {"CameraPresetNames", "QStringList", Constant},
         {"XAxisTypeNames", "QStringList", Constant}}));
    VERIFY_NO_DIFFERENCE(compareEnum(CSettings::staticMetaObject, "t_Mapping2DPlotHorizontalAxisType",
                                     {{"e_HorizAxisIsTime", 0},
                                      {"e_HorizAxisIsXPosition", 1},
                                      {"e_HorizAxisIsYPosition", 2},
                                      {"e_HorizAxisIsZPosition", 3}}));
}

void TestCSettings::defaults()
{
    const CSettings settings(kApplicationDir);
    QCOMPARE(settings.InstrumentParameterPath(), SettingsDirectoryPath);
    QCOMPARE(settings.InstrumentDriverPluginsPath(), QStringLiteral("/opt/app/kestrix/instrument"));
    QCOMPARE(settings.MapperPluginsPath(), QStringLiteral("/opt/app/kestrix/mapper"));
    QCOMPARE(settings.TriggerPluginsPath(), QStringLiteral("/opt/app/kestrix/trigger"));
    QCOMPARE(settings.DefaultStoragePath(),
             QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    QCOMPARE(settings.SaveRecordingsAsCsv(), false);
    QCOMPARE(settings.CheckForNewVersion(), true);
    QCOMPARE(settings.IgnoreSpecificVersion(), QString());
    QCOMPARE(settings.MeasurementMaxMeasurementCount(), Q_UINT64_C(120000));
    QCOMPARE(settings.MappingMaxMeasurementCount(), Q_UINT64_C(1000000));
    QCOMPARE(settings.LogMaxHistoryCount(), 200U);
    QCOMPARE(settings.AveragingCount(), 1U);
    QCOMPARE(settings.AveragingMode(), 0);
    QCOMPARE(settings.EnableMeterMode(), true);
    QCOMPARE(settings.EnableSpectrumMode(), true);
    QCOMPARE(settings.EnableAcAnalysisMode(), true);
    QCOMPARE(settings.EnableMappingMode(), true);
    QCOMPARE(static_cast<int>(settings.Meter3DCameraPreset()), 14);
    QCOMPARE(settings.Meter3DZoomLevel(), 90.0);
    QCOMPARE(settings.Meter3DOrthoProjection(), false);
    QCOMPARE(static_cast<int>(settings.Mapping3DCameraPreset()), 14);
    QCOMPARE(settings.Mapping3DZoomLevel(), 90.0);
    QCOMPARE(settings.Mapping3DOrthoProjection(), false);
    QCOMPARE(static_cast<int>(settings.Mapping2DPlotHorizontalAxisType()), 3);
    QVERIFY2(!QFile::exists(filePath()), "the constructor only reads");
}

void TestCSettings::nameLists()
{
    const CSettings settings(kApplicationDir);
    QCOMPARE(
        settings.CameraPresetNames().join(QLatin1Char('|')),
        QStringLiteral("Front Low|Front|Front High|Left Low|Left|Left High|Right Low|Right|Right High|"
                       "Behind Low|Behind|Behind High|Isometric Left|Isometric Left High|Isometric Right|"
                       "Isometric Right High|Directly Above|Directly Above CW 45|Directly Above CCW 45"));
    QCOMPARE(settings.XAxisTypeNames(),
             (QStringList{QStringLiteral("Time"), QStringLiteral("X Position"), QStringLiteral("Y Position"),
                          QStringLiteral("Z Position")}));
    // A name's position is the value of the preset.
    QCOMPARE(settings.CameraPresetNames().at(Q3DCamera::CameraPresetIsometricRight),
             QStringLiteral("Isometric Right"));
    QCOMPARE(settings.CameraPresetNames().at(Q3DCamera::CameraPresetDirectlyAboveCCW45),
             QStringLiteral("Directly Above CCW 45"));
}

void TestCSettings::settersEmitOnChangeOnly()
{
    CSettings settings(kApplicationDir);
    PropertyLog log(&settings);
    const QVector<QPair<const char*, QVariant>> values{
        {"InstrumentParameterPath", QStringLiteral("a")},
        {"InstrumentDriverPluginsPath", QStringLiteral("b")},
        {"MapperPluginsPath", QStringLiteral("c")},
        {"TriggerPluginsPath", QStringLiteral("d")},
        {"DefaultStoragePath", QStringLiteral("e")},
        {"SaveRecordingsAsCsv", true},
        {"CheckForNewVersion", false},
        {"IgnoreSpecificVersion", QStringLiteral("f")},
        {"MeasurementMaxMeasurementCount", Q_UINT64_C(18446744073709551615)},
        {"MappingMaxMeasurementCount", Q_UINT64_C(18446744073709551614)},
        {"LogMaxHistoryCount", 4294967295U},
        {"AveragingCount", 4294967294U},
        {"AveragingMode", -1},
        {"EnableMeterMode", false},
        {"EnableSpectrumMode", false},
        {"EnableAcAnalysisMode", false},
        {"EnableMappingMode", false},
        {"Meter3DCameraPreset", 0},
        {"Meter3DZoomLevel", 12.5},
        {"Meter3DOrthoProjection", true},
        {"Mapping3DCameraPreset", 0},
        {"Mapping3DZoomLevel", 13.5},
        {"Mapping3DOrthoProjection", true},
        {"Mapping2DPlotHorizontalAxisType", 0},
    };
    for (const auto& [name, value] : values) {
        QVERIFY2(settings.setProperty(name, value), name);
        QCOMPARE(valueOf(name, settings), value);
        QCOMPARE(log.count(QString::fromLatin1(name)), 1);
        settings.setProperty(name, value);
        QCOMPARE(log.take().size(), 1);
    }
}

void TestCSettings::readsEveryKey_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("InstrumentParameterPath") << QByteArray("/x/y") << QVariant(QStringLiteral("/x/y"));
    QTest::newRow("DefaultStoragePath")
        << QByteArray("/\xC3\xBC &amp; z") << QVariant(QStringLiteral("/ü & z"));
    QTest::newRow("IgnoreSpecificVersion") << QByteArray("1.2.5") << QVariant(QStringLiteral("1.2.5"));
    QTest::newRow("SaveRecordingsAsCsv") << QByteArray("1") << QVariant(true);
    QTest::newRow("CheckForNewVersion") << QByteArray("0") << QVariant(false);
    QTest::newRow("MeasurementMaxMeasurementCount")
        << QByteArray("18446744073709551615") << QVariant(Q_UINT64_C(18446744073709551615));
    QTest::newRow("MappingMaxMeasurementCount") << QByteArray("0") << QVariant(Q_UINT64_C(0));
    QTest::newRow("LogMaxHistoryCount") << QByteArray("4294967295") << QVariant(4294967295U);
    QTest::newRow("AveragingCount") << QByteArray("7") << QVariant(7U);
    QTest::newRow("AveragingMode") << QByteArray("-2") << QVariant(-2);
    QTest::newRow("EnableMeterMode") << QByteArray("0") << QVariant(false);
    QTest::newRow("EnableSpectrumMode") << QByteArray("0") << QVariant(false);
    QTest::newRow("EnableAcAnalysisMode") << QByteArray("0") << QVariant(false);
    QTest::newRow("EnableMappingMode") << QByteArray("0") << QVariant(false);
    QTest::newRow("Meter3DCameraPreset") << QByteArray("8") << QVariant(8);
    QTest::newRow("Meter3DZoomLevel") << QByteArray("1.5e2") << QVariant(150.0);
    QTest::newRow("Meter3DOrthoProjection") << QByteArray("1") << QVariant(true);
    QTest::newRow("Mapping3DCameraPreset") << QByteArray("8") << QVariant(8);
    QTest::newRow("Mapping3DZoomLevel") << QByteArray("-3.25") << QVariant(-3.25);
    QTest::newRow("Mapping3DOrthoProjection") << QByteArray("1") << QVariant(true);
    QTest::newRow("Mapping2DPlotHorizontalAxisType") << QByteArray("0") << QVariant(0);
}

void TestCSettings::readsEveryKey()
{
    QFETCH(QByteArray, text);
    QFETCH(QVariant, value);
    writeFile(withRoot(element(QTest::currentDataTag(), text.constData())));
    CSettings fresh(kApplicationDir);
    QCOMPARE(valueOf(QTest::currentDataTag(), fresh), value);

    // Nothing else is touched.
    QVERIFY(QFile::remove(filePath()));
    const CSettings defaults(kApplicationDir);
    const QMetaObject& metaObject = CSettings::staticMetaObject;
    for (int i = metaObject.propertyOffset(); i < metaObject.propertyCount(); ++i) {
        const QMetaProperty property = metaObject.property(i);
        if (qstrcmp(property.name(), QTest::currentDataTag()) != 0)
            QCOMPARE(valueOf(property, fresh), valueOf(property, defaults));
        else
            QVERIFY(valueOf(property, fresh) != valueOf(property, defaults));
    }
}

void TestCSettings::boolsAreTrueForOneOnly_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("value");
    QTest::newRow("1") << QByteArray("1") << true;
    QTest::newRow("0") << QByteArray("0") << false;
    QTest::newRow("empty") << QByteArray("") << false;
    QTest::newRow("true") << QByteArray("true") << false;
    QTest::newRow("01") << QByteArray("01") << false;
    QTest::newRow("blank before") << QByteArray(" 1") << false;
}

void TestCSettings::boolsAreTrueForOneOnly()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, value);
    QByteArray children;
    for (const char* key :
         {"SaveRecordingsAsCsv", "CheckForNewVersion", "EnableMeterMode", "Meter3DOrthoProjection"})
        children += element(key, text.constData());
    writeFile(withRoot(children));
    const CSettings settings(kApplicationDir);
    QCOMPARE(settings.SaveRecordingsAsCsv(), value);
    QCOMPARE(settings.CheckForNewVersion(), value);
    QCOMPARE(settings.EnableMeterMode(), value);
    QCOMPARE(settings.Meter3DOrthoProjection(), value);
}

void TestCSettings::badTextsKeepTheValue_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("text");
    const auto add = [](const char* key, const char* text) {
        QTest::addRow("%s %s", key, text) << QByteArray(key) << QByteArray(text);
    };
    add("AveragingCount", "abc");
    add("AveragingCount", "-1");
    add("AveragingCount", "4294967296");
    add("LogMaxHistoryCount", "");
    add("LogMaxHistoryCount", "1.5");
    add("MeasurementMaxMeasurementCount", "18446744073709551616");
    add("MappingMaxMeasurementCount", "0x10");
    add("AveragingMode", "2147483648");
    add("Meter3DCameraPreset", "Front");
    add("Mapping3DCameraPreset", "");
    add("Meter3DZoomLevel", "1,5");
    add("Mapping3DZoomLevel", "much");
    add("Mapping2DPlotHorizontalAxisType", "7");
    add("Mapping2DPlotHorizontalAxisType", "4");
    add("Mapping2DPlotHorizontalAxisType", "-1");
    add("Mapping2DPlotHorizontalAxisType", "x");
}

void TestCSettings::badTextsKeepTheValue()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, text);
    CSettings settings(kApplicationDir);
    // Present values that no default is, so that a value kept differs from a value reset.
    settings.SetAveragingCount(5);
    settings.SetMapping2DPlotHorizontalAxisType(CSettings::e_HorizAxisIsYPosition);
    const QVariant before = valueOf(key.constData(), settings);
    writeFile(withRoot(element(key.constData(), text.constData())));
    LogRecorder log;
    settings.ReadFromFile();
    QCOMPARE(valueOf(key.constData(), settings), before);
    QCOMPARE(log.Messages(), QStringList());
}

void TestCSettings::valuesBeyondTheirMeaningAreKept()
{
    writeFile(withRoot(element("Meter3DCameraPreset", "25") + element("AveragingMode", "1000") +
                       element("Mapping3DZoomLevel", "-1e300")));
    const CSettings settings(kApplicationDir);
    QCOMPARE(static_cast<int>(settings.Meter3DCameraPreset()), 25);
    QCOMPARE(settings.AveragingMode(), 1000);
    QCOMPARE(settings.Mapping3DZoomLevel(), -1e300);
}

void TestCSettings::skipsOtherElements()
{
    writeFile(withRoot(element("InstrumentDriverPluginsPath", "/not/stored") +
                       "<Later><AveragingCount>3</AveragingCount>text</Later>" +
                       element("AveragingMode", "2") + element("averagingcount", "4")));
    const CSettings settings(kApplicationDir);
    QCOMPARE(settings.InstrumentDriverPluginsPath(), QStringLiteral("/opt/app/kestrix/instrument"));
    QCOMPARE(settings.AveragingCount(), 1U);
    QCOMPARE(settings.AveragingMode(), 2);
}

void TestCSettings::keysMissingFromTheFileKeepTheirValue()
{
    CSettings settings(kApplicationDir);
    settings.SetAveragingCount(9);
    settings.SetDefaultStoragePath(QStringLiteral("/kept"));
    writeFile(withRoot(element("AveragingMode", "1")));
    settings.ReadFromFile();
    QCOMPARE(settings.AveragingCount(), 9U);
    QCOMPARE(settings.DefaultStoragePath(), QStringLiteral("/kept"));
    QCOMPARE(settings.AveragingMode(), 1);
}

void TestCSettings::readingEmitsForWhatDiffers()
{
    CSettings settings(kApplicationDir);
    PropertyLog log(&settings);
    writeFile(withRoot(element("AveragingMode", "1") + element("AveragingCount", "1") +
                       element("IgnoreSpecificVersion", "9.9") + element("EnableMeterMode", "1")));
    settings.ReadFromFile();
    QCOMPARE(log.take(),
             (QStringList{QStringLiteral("AveragingMode=1"), QStringLiteral("IgnoreSpecificVersion=9.9")}));
    settings.ReadFromFile();
    QCOMPARE(log.take(), QStringList());
}

void TestCSettings::wrongRoot()
{
    writeFile("<FOO>" + element("AveragingCount", "3") + "</FOO>");
    LogRecorder log;
    const CSettings settings(kApplicationDir);
    QCOMPARE(settings.AveragingCount(), 1U);
    QCOMPARE(log.Messages(), QStringList(QStringLiteral("DEBUG Error: Failed to parse file : ") + filePath() +
                                         QStringLiteral(" : Incorrect file")));
}

void TestCSettings::brokenFileKeepsWhatWasReadBefore_data()
{
    QTest::addColumn<QByteArray>("tail");
    QTest::newRow("cut between elements") << QByteArray();
    QTest::newRow("cut inside a tag") << QByteArray("<Averaging");
    QTest::newRow("cut inside a number") << QByteArray("<AveragingCount>12");
    QTest::newRow("cut inside a text") << QByteArray("<IgnoreSpecificVersion>1.2");
    QTest::newRow("cut inside a switch") << QByteArray("<EnableMeterMode>");
    QTest::newRow("child inside a text")
        << QByteArray("<IgnoreSpecificVersion>1.2<b/></IgnoreSpecificVersion>");
    QTest::newRow("tags that do not match") << QByteArray("<AveragingCount>3</AveragingMode>");
    QTest::newRow("control character") << QByteArray("<IgnoreSpecificVersion>1\x01");
    QTest::newRow("unknown entity") << QByteArray(
        "<IgnoreSpecificVersion>a&nothing;</IgnoreSpecificVersion>");
}

void TestCSettings::brokenFileKeepsWhatWasReadBefore()
{
    QFETCH(QByteArray, tail);
    writeFile("<SETTINGS>" + element("AveragingMode", "1") + tail);
    LogRecorder log;
    const CSettings settings(kApplicationDir);
    QCOMPARE(settings.AveragingMode(), 1);
    QCOMPARE(settings.AveragingCount(), 1U);
    QCOMPARE(settings.IgnoreSpecificVersion(), QString());
    QCOMPARE(settings.EnableMeterMode(), true);
    QCOMPARE(log.Messages().size(), 1);
    QVERIFY(log.Messages().constFirst().startsWith(QStringLiteral("DEBUG Error: Failed to parse file : ") +
                                                   filePath() + QStringLiteral(" : ")));
}

void TestCSettings::unreadableFile()
{
    // A directory of that name exists and cannot be opened, whoever runs the test.
    QVERIFY(QDir().mkpath(filePath()));
    LogRecorder log;
    const CSettings settings(kApplicationDir);
    QCOMPARE(settings.AveragingCount(), 1U);
    QCOMPARE(log.Messages().size(), 1);
    QVERIFY(log.Messages().constFirst().startsWith(QStringLiteral("DEBUG Error: Cannot read file ") +
                                                   filePath() + QStringLiteral(": ")));
}

void TestCSettings::missingFileIsNoError()
{
    LogRecorder log;
    const CSettings settings(kApplicationDir);
    QCOMPARE(log.Messages(), QStringList());
}

void TestCSettings::writesAllKeysInOrder()
{
    CSettings settings(kApplicationDir);
    settings.SetInstrumentParameterPath(QStringLiteral("/p"));
    settings.SetDefaultStoragePath(QStringLiteral("/s & <t>"));
    settings.SetIgnoreSpecificVersion(QStringLiteral("2.0"));
    settings.SetSaveRecordingsAsCsv(true);
    settings.SetEnableSpectrumMode(false);
    settings.SetMeter3DZoomLevel(123.4567);
    settings.WriteToFile();
    QCOMPARE(readFile(),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                        "<SETTINGS>\n"
                        "    <InstrumentParameterPath>/p</InstrumentParameterPath>\n"
                        "    <DefaultStoragePath>/s &amp; &lt;t&gt;</DefaultStoragePath>\n"
                        "    <IgnoreSpecificVersion>2.0</IgnoreSpecificVersion>\n"
                        "    <SaveRecordingsAsCsv>1</SaveRecordingsAsCsv>\n"
                        "    <CheckForNewVersion>1</CheckForNewVersion>\n"
                        "    <MappingMaxMeasurementCount>1000000</MappingMaxMeasurementCount>\n"
                        "    <MeasurementMaxMeasurementCount>120000</MeasurementMaxMeasurementCount>\n"
                        "    <LogMaxHistoryCount>200</LogMaxHistoryCount>\n"
                        "    <AveragingMode>0</AveragingMode>\n"
                        "    <AveragingCount>1</AveragingCount>\n"
                        "    <EnableMeterMode>1</EnableMeterMode>\n"
                        "    <EnableSpectrumMode>0</EnableSpectrumMode>\n"
                        "    <EnableAcAnalysisMode>1</EnableAcAnalysisMode>\n"
                        "    <EnableMappingMode>1</EnableMappingMode>\n"
                        "    <Meter3DCameraPreset>14</Meter3DCameraPreset>\n"
                        "    <Meter3DZoomLevel>123.457</Meter3DZoomLevel>\n"
                        "    <Meter3DOrthoProjection>0</Meter3DOrthoProjection>\n"
                        "    <Mapping3DCameraPreset>14</Mapping3DCameraPreset>\n"
                        "    <Mapping3DZoomLevel>90</Mapping3DZoomLevel>\n"
                        "    <Mapping3DOrthoProjection>0</Mapping3DOrthoProjection>\n"
                        "    <Mapping2DPlotHorizontalAxisType>3</Mapping2DPlotHorizontalAxisType>\n"
                        "</SETTINGS>\n"));
}

void TestCSettings::writtenFileIsReadBack()
{
    CSettings written(kApplicationDir);
    written.SetIgnoreSpecificVersion(QStringLiteral("a much longer text than the next one"));
    written.WriteToFile();
    written.SetIgnoreSpecificVersion(QStringLiteral("µ"));
    written.SetSaveRecordingsAsCsv(true);
    written.SetMappingMaxMeasurementCount(Q_UINT64_C(18446744073709551615));
    written.SetMapping2DPlotHorizontalAxisType(CSettings::e_HorizAxisIsXPosition);
    written.SetMeter3DCameraPreset(Q3DCamera::CameraPresetDirectlyAbove);
    written.WriteToFile();
    LogRecorder log;
    const CSettings read(kApplicationDir);
    QCOMPARE(log.Messages(), QStringList());
    const QMetaObject& metaObject = CSettings::staticMetaObject;
    for (int i = metaObject.propertyOffset(); i < metaObject.propertyCount(); ++i)
        QCOMPARE(valueOf(metaObject.property(i), read), valueOf(metaObject.property(i), written));
}

void TestCSettings::writesSixSignificantDigits()
{
    CSettings settings(kApplicationDir);
    settings.SetMeter3DZoomLevel(1234567.0);
    settings.SetMapping3DZoomLevel(0.00001);
    settings.WriteToFile();
    QVERIFY(readFile().contains("<Meter3DZoomLevel>1.23457e+06</Meter3DZoomLevel>"));
    QVERIFY(readFile().contains("<Mapping3DZoomLevel>1e-05</Mapping3DZoomLevel>"));
}

void TestCSettings::writeCreatesOneLevel()
{
    CSettings settings(kApplicationDir);
    settings.WriteToFile();
    QVERIFY(QFile::exists(filePath()));
}

void TestCSettings::writeWithoutParentDirectoryOnlyLogs()
{
    QVERIFY(QDir(QFileInfo(SettingsDirectoryPath).path()).removeRecursively());
    CSettings settings(kApplicationDir);
    LogRecorder log;
    settings.WriteToFile();
    QVERIFY(!QFile::exists(SettingsDirectoryPath));
    QCOMPARE(log.Messages(), QStringList(QStringLiteral("DEBUG Error: Cannot read file : ") + filePath()));
}

void TestCSettings::restoreFactorySettings()
{
    CSettings settings(kApplicationDir);
    const CSettings defaults(kApplicationDir);
    settings.SetInstrumentDriverPluginsPath(QStringLiteral("/elsewhere"));
    settings.SetDefaultStoragePath(QStringLiteral("/elsewhere"));
    settings.SetSaveRecordingsAsCsv(true);
    settings.SetCheckForNewVersion(false);
    settings.SetIgnoreSpecificVersion(QStringLiteral("1"));
    settings.SetEnableMappingMode(false);
    settings.SetMeter3DZoomLevel(5);
    settings.SetMapping3DCameraPreset(Q3DCamera::CameraPresetFront);
    PropertyLog log(&settings);
    settings.RestoreFactorySettings(false);
    QCOMPARE(settings.SaveRecordingsAsCsv(), true);
    QCOMPARE(log.take().size(), 7);
    settings.SetSaveRecordingsAsCsv(false);
    const QMetaObject& metaObject = CSettings::staticMetaObject;
    for (int i = metaObject.propertyOffset(); i < metaObject.propertyCount(); ++i)
        QCOMPARE(valueOf(metaObject.property(i), settings), valueOf(metaObject.property(i), defaults));
}

void TestCSettings::restoreWritesOnRequestOnly()
{
    CSettings settings(kApplicationDir);
    settings.SetSaveRecordingsAsCsv(true);
    settings.SetAveragingCount(3);
    settings.RestoreFactorySettings(false);
    QVERIFY(!QFile::exists(filePath()));
    settings.RestoreFactorySettings(true);
    const CSettings read(kApplicationDir);
    QCOMPARE(read.SaveRecordingsAsCsv(), true);
    QCOMPARE(read.AveragingCount(), 1U);
}

QTEST_GUILESS_MAIN(TestCSettings)
#include "tst_CSettings.moc"
