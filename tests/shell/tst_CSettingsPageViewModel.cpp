// SPDX-License-Identifier: GPL-3.0-or-later
#include "ApplicationDirPath.h"
#include "CApplication.h"
#include "CSettingsPageViewModel.h"
#include "MetaObjectTable.h"
#include "SettingsDirectoryPath.h"
#include "ShellTestSupport.h"

#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <functional>
#include <memory>

using namespace MetaObjectTable;

namespace {

const char kRestart[] = "Restart application|Please restart the application to apply the new settings";
const char kDefaultsQuestion[] =
    "Are you sure you want to restore the factory settings ?|Your current settings will be lost";

QString settingsFile()
{
    return SettingsDirectoryPath + QStringLiteral("/KestrixApplicationSettings.xml");
}

/// The text of an element of the settings file; "(none)" if there is none.
QString stored(const char* key)
{
    QFile file(settingsFile());
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("(none)");
    const QRegularExpression form(QStringLiteral("<%1>([^<]*)</%1>").arg(QLatin1String(key)));
    const QRegularExpressionMatch match = form.match(QString::fromUtf8(file.readAll()));
    return match.hasMatch() ? match.captured(1) : QStringLiteral("(none)");
}

} // namespace

class tst_CSettingsPageViewModel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void surface();
    void identity();
    void startsWithTheSettings();
    void startThrowsUnsavedSettingsAway();
    void pathEdits_data();
    void pathEdits();
    void shortPaths_data();
    void shortPaths();
    void shortPathIsOfTheArgument();
    void countsAndCheck();
    void countsOfManyBits();
    void csvIsNoUnsavedEdit();
    void equalValueIsNoEdit();
    void save();
    void saveTellsAlthoughTheFileCannotBeWritten();
    void saveLeavesTheCsvSwitchOut();
    void restore();
    void restoreDefaults();
    void restoreDefaultsCancelled();
    void settingsOutliveThePage();
    void isInCommandWhileABoxIsOpen();

private:
    CSettings* settings() { return CApplication::Instance()->Settings(); }

    std::unique_ptr<CSettingsPageViewModel> m_page;
};

void tst_CSettingsPageViewModel::initTestCase()
{
    ApplicationDirPath = QStringLiteral("/opt/app");
    QVERIFY(QDir().mkpath(SettingsDirectoryPath));
    QFile::remove(settingsFile());
    CApplication::Instance();
}

void tst_CSettingsPageViewModel::init()
{
    settings()->RestoreFactorySettings(true);
    settings()->SetSaveRecordingsAsCsv(false);
    settings()->WriteToFile();
    m_page = std::make_unique<CSettingsPageViewModel>();
}

void tst_CSettingsPageViewModel::cleanup()
{
    m_page.reset();
}

void tst_CSettingsPageViewModel::cleanupTestCase()
{
    CApplication::Instance()->onAboutToQuit();
    deleteDeferred();
}

void tst_CSettingsPageViewModel::surface()
{
    const QMetaObject& meta = CSettingsPageViewModel::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(meta, {{"InstrumentParameterPath", "QString", ReadWrite},
                                                  {"InstrumentDriverPluginsPath", "QString", ReadWrite},
                                                  {"MapperPluginsPath", "QString", ReadWrite},
                                                  {"TriggerPluginsPath", "QString", ReadWrite},
                                                  {"DefaultStoragePath", "QString", ReadWrite},
                                                  {"InstrumentParameterPathShort", "QString", ReadWrite},
                                                  {"InstrumentDriverPluginsPathShort", "QString", ReadWrite},
                                                  {"MapperPluginsPathShort", "QString", ReadWrite},
                                                  {"TriggerPluginsPathShort", "QString", ReadWrite},
                                                  {"DefaultStoragePathShort", "QString", ReadWrite},
                                                  {"SaveRecordingsAsCsv", "bool", ReadWrite},
                                                  {"CheckForNewVersion", "bool", ReadWrite},
                                                  {"MeasurementMaxMeasurementCount", "qulonglong", ReadWrite},
                                                  {"MappingMaxMeasurementCount", "qulonglong", ReadWrite},
                                                  {"LogMaxHistoryCount", "uint", ReadWrite}}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(meta, QMetaMethod::Slot,
                       {"OnInstrumentParameterPathChanged(QString)", "OnMapperPluginsPathChanged(QString)",
                        "OnTriggerPluginsPathChanged(QString)", "OnInstrumentDriversPathChanged(QString)",
                        "OnDefaultStoragePathChanged(QString)", "OnSaveRecordingsAsCsvChanged()",
                        "OnCheckForNewVersionChanged()", "OnMeasurementMaxMeasurementCountChanged(int)",
                        "OnMappingMaxMeasurementCountChanged(int)", "OnLogMaxHistoryCountChanged(int)"}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(meta, QMetaMethod::Method, {"save()", "restore()", "restoreDefaults()"}));
}

void tst_CSettingsPageViewModel::identity()
{
    QCOMPARE(m_page->Name(), QStringLiteral("Settings"));
    QCOMPARE(m_page->GetHelpName(), QStringLiteral("settings"));
}

void tst_CSettingsPageViewModel::startsWithTheSettings()
{
    QCOMPARE(m_page->InstrumentParameterPath(), SettingsDirectoryPath);
    QCOMPARE(m_page->InstrumentDriverPluginsPath(), QStringLiteral("/opt/app/kestrix/instrument"));
    QCOMPARE(m_page->InstrumentDriverPluginsPathShort(), QStringLiteral("/opt/app/kestrix/instrument"));
    QCOMPARE(m_page->MapperPluginsPath(), QStringLiteral("/opt/app/kestrix/mapper"));
    QCOMPARE(m_page->MapperPluginsPathShort(), QStringLiteral("/opt/app/kestrix/mapper"));
    QCOMPARE(m_page->TriggerPluginsPath(), QStringLiteral("/opt/app/kestrix/trigger"));
    QCOMPARE(m_page->TriggerPluginsPathShort(), QStringLiteral("/opt/app/kestrix/trigger"));
    QCOMPARE(m_page->DefaultStoragePath(), settings()->DefaultStoragePath());
    QVERIFY(!m_page->SaveRecordingsAsCsv());
    QVERIFY(m_page->CheckForNewVersion());
    QCOMPARE(m_page->MeasurementMaxMeasurementCount(), quint64(120000));
    QCOMPARE(m_page->MappingMaxMeasurementCount(), quint64(1000000));
    QCOMPARE(m_page->LogMaxHistoryCount(), quint32(200));
    QVERIFY(!m_page->HasUnsavedParameter());
}

void tst_CSettingsPageViewModel::startThrowsUnsavedSettingsAway()
{
    settings()->SetDefaultStoragePath(QStringLiteral("/unsaved"));
    settings()->SetLogMaxHistoryCount(7);
    settings()->SetMapperPluginsPath(QStringLiteral("/own/mappers"));
    m_page = std::make_unique<CSettingsPageViewModel>();
    QVERIFY(settings()->DefaultStoragePath() != QLatin1String("/unsaved"));
    QCOMPARE(settings()->LogMaxHistoryCount(), quint32(200));
    // The file has no paths of plug-ins.
    QCOMPARE(m_page->MapperPluginsPath(), QStringLiteral("/own/mappers"));
    QVERIFY(!m_page->HasUnsavedParameter());
}

void tst_CSettingsPageViewModel::pathEdits_data()
{
    QTest::addColumn<QByteArray>("property");
    for (const char* name : {"InstrumentParameterPath", "InstrumentDriverPluginsPath", "MapperPluginsPath",
                             "TriggerPluginsPath", "DefaultStoragePath"})
        QTest::newRow(name) << QByteArray(name);
}

void tst_CSettingsPageViewModel::pathEdits()
{
    QFETCH(QByteArray, property);
    const QByteArray shortProperty = property + "Short";
    QSignalSpy unsaved(m_page.get(), &CPageViewModel::HasUnsavedParameterChanged);
    QVERIFY(m_page->setProperty(property.constData(), QStringLiteral("/data/one")));
    QCOMPARE(settings()->property(property.constData()).toString(), QStringLiteral("/data/one"));
    QCOMPARE(m_page->property(shortProperty.constData()).toString(), QStringLiteral("/data/one"));
    QVERIFY(m_page->HasUnsavedParameter());
    QVERIFY(m_page->setProperty(property.constData(), QStringLiteral("/data/two")));
    QCOMPARE(settings()->property(property.constData()).toString(), QStringLiteral("/data/two"));
    QCOMPARE(unsaved.count(), 1);
    // Only the file does not have it yet, and no other path has changed.
    QVERIFY(stored(property.constData()) != QLatin1String("/data/two"));
    int numChanged = 0;
    for (const char* name : {"InstrumentParameterPath", "InstrumentDriverPluginsPath", "MapperPluginsPath",
                             "TriggerPluginsPath", "DefaultStoragePath"})
        numChanged += settings()->property(name).toString() == QLatin1String("/data/two") ? 1 : 0;
    QCOMPARE(numChanged, 1);
}

void tst_CSettingsPageViewModel::shortPaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("shortPath");
    const auto x = [](int count) { return QString(count, QLatin1Char('x')); };
    const QString ellipsis = QStringLiteral(".../");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("80 characters") << QStringLiteral("/a/") + x(77) << QStringLiteral("/a/") + x(77);
    // The part before the first separator is empty.
    QTest::newRow("81 characters") << QStringLiteral("/a/") + x(78)
                                   << ellipsis + QStringLiteral("a/") + x(78);
    QTest::newRow("81 characters, relative") << QStringLiteral("ab/") + x(78) << ellipsis + x(78);
    QTest::newRow("rest of 80") << QStringLiteral("/ab/") + x(80) << ellipsis + x(80);
    QTest::newRow("rest of 81") << QStringLiteral("ab/c/") + x(79) << ellipsis + x(79);
    QTest::newRow("no separator") << x(81) << ellipsis;
    QTest::newRow("long last part") << QStringLiteral("/a/") + x(90) << ellipsis;
    QTest::newRow("long first part") << x(90) + QStringLiteral("/b") << ellipsis + QStringLiteral("b");
    QTest::newRow("empty parts") << QStringLiteral("//") + x(79) << ellipsis + QStringLiteral("/") + x(79);
    QTest::newRow("separator last") << x(80) + QStringLiteral("/") << ellipsis;
}

void tst_CSettingsPageViewModel::shortPaths()
{
    QFETCH(QString, path);
    QFETCH(QString, shortPath);
    m_page->SetDefaultStoragePath(path);
    QCOMPARE(m_page->DefaultStoragePathShort(), shortPath);
    QCOMPARE(m_page->DefaultStoragePath(), path);
    QCOMPARE(settings()->DefaultStoragePath(), path);
}

void tst_CSettingsPageViewModel::shortPathIsOfTheArgument()
{
    QSignalSpy shortPath(m_page.get(), &CSettingsPageViewModel::MapperPluginsPathShortChanged);
    QVERIFY(QMetaObject::invokeMethod(m_page.get(), "OnMapperPluginsPathChanged",
                                      Q_ARG(QString, QStringLiteral("/other"))));
    QCOMPARE(m_page->MapperPluginsPathShort(), QStringLiteral("/other"));
    QCOMPARE(settings()->MapperPluginsPath(), QStringLiteral("/opt/app/kestrix/mapper"));
    QVERIFY(m_page->HasUnsavedParameter());
    QVERIFY(QMetaObject::invokeMethod(m_page.get(), "OnMapperPluginsPathChanged",
                                      Q_ARG(QString, QStringLiteral("/other"))));
    QCOMPARE(shortPath.count(), 1);
}

void tst_CSettingsPageViewModel::countsAndCheck()
{
    const std::function<void()> edits[] = {
        [this] { m_page->SetCheckForNewVersion(false); },
        [this] { m_page->SetMeasurementMaxMeasurementCount(5); },
        [this] { m_page->SetMappingMaxMeasurementCount(6); },
        [this] { m_page->SetLogMaxHistoryCount(7); },
    };
    for (const std::function<void()>& edit : edits) {
        m_page->SetHasUnsavedParameter(false);
        edit();
        QVERIFY(m_page->HasUnsavedParameter());
    }
    QVERIFY(!settings()->CheckForNewVersion());
    QCOMPARE(settings()->MeasurementMaxMeasurementCount(), quint64(5));
    QCOMPARE(settings()->MappingMaxMeasurementCount(), quint64(6));
    QCOMPARE(settings()->LogMaxHistoryCount(), quint32(7));
    QCOMPARE(stored("LogMaxHistoryCount"), QStringLiteral("200"));
}

void tst_CSettingsPageViewModel::countsOfManyBits()
{
    const quint64 count = Q_UINT64_C(0x100000002);
    m_page->SetMeasurementMaxMeasurementCount(count);
    m_page->SetMappingMaxMeasurementCount(count + 1);
    m_page->SetLogMaxHistoryCount(0x80000001);
    QCOMPARE(settings()->MeasurementMaxMeasurementCount(), count);
    QCOMPARE(settings()->MappingMaxMeasurementCount(), count + 1);
    QCOMPARE(settings()->LogMaxHistoryCount(), quint32(0x80000001));
}

void tst_CSettingsPageViewModel::csvIsNoUnsavedEdit()
{
    m_page->SetSaveRecordingsAsCsv(true);
    QVERIFY(settings()->SaveRecordingsAsCsv());
    QVERIFY(!m_page->HasUnsavedParameter());
    QCOMPARE(stored("SaveRecordingsAsCsv"), QStringLiteral("0"));
}

void tst_CSettingsPageViewModel::equalValueIsNoEdit()
{
    QSignalSpy path(m_page.get(), &CSettingsPageViewModel::MapperPluginsPathChanged);
    m_page->SetMapperPluginsPath(m_page->MapperPluginsPath());
    m_page->SetLogMaxHistoryCount(200);
    m_page->SetCheckForNewVersion(true);
    QCOMPARE(path.count(), 0);
    QVERIFY(!m_page->HasUnsavedParameter());
}

void tst_CSettingsPageViewModel::save()
{
    m_page->SetInstrumentParameterPath(QStringLiteral("/parameters"));
    m_page->SetDefaultStoragePath(QStringLiteral("/records"));
    m_page->SetMeasurementMaxMeasurementCount(11);
    m_page->SetMappingMaxMeasurementCount(12);
    m_page->SetLogMaxHistoryCount(13);
    m_page->SetCheckForNewVersion(false);
    // The settings follow the page again, whatever has been done to them meanwhile.
    settings()->SetDefaultStoragePath(QStringLiteral("/elsewhere"));
    settings()->SetMeasurementMaxMeasurementCount(1);
    QSignalSpy unsaved(m_page.get(), &CPageViewModel::HasUnsavedParameterChanged);
    BoxAnswers answers({QMessageBox::Ok, QMessageBox::Ok});
    m_page->save();
    QCOMPARE(answers.texts, QStringList{QLatin1String(kRestart)});
    QCOMPARE(stored("InstrumentParameterPath"), QStringLiteral("/parameters"));
    QCOMPARE(stored("DefaultStoragePath"), QStringLiteral("/records"));
    QCOMPARE(stored("MeasurementMaxMeasurementCount"), QStringLiteral("11"));
    QCOMPARE(stored("MappingMaxMeasurementCount"), QStringLiteral("12"));
    QCOMPARE(stored("LogMaxHistoryCount"), QStringLiteral("13"));
    QCOMPARE(stored("CheckForNewVersion"), QStringLiteral("0"));
    QVERIFY(!m_page->HasUnsavedParameter());
    QCOMPARE(unsaved.count(), 1);
    m_page->save();
    QCOMPARE(unsaved.count(), 2);
    QCOMPARE(unsaved.at(1).at(0).toBool(), false);
}

void tst_CSettingsPageViewModel::saveTellsAlthoughTheFileCannotBeWritten()
{
    QVERIFY(QFile::remove(settingsFile()));
    QVERIFY(QDir().mkdir(settingsFile()));
    m_page->SetLogMaxHistoryCount(13);
    BoxAnswers answers({QMessageBox::Ok});
    m_page->save();
    QVERIFY(QDir().rmdir(settingsFile()));
    QCOMPARE(answers.texts, QStringList{QLatin1String(kRestart)});
    QVERIFY(!m_page->HasUnsavedParameter());
}

void tst_CSettingsPageViewModel::saveLeavesTheCsvSwitchOut()
{
    m_page->SetSaveRecordingsAsCsv(true);
    settings()->SetSaveRecordingsAsCsv(false);
    BoxAnswers answers({QMessageBox::Ok});
    m_page->save();
    QCOMPARE(stored("SaveRecordingsAsCsv"), QStringLiteral("0"));
}

void tst_CSettingsPageViewModel::restore()
{
    m_page->SetDefaultStoragePath(QStringLiteral("/records"));
    m_page->SetSaveRecordingsAsCsv(true);
    m_page->SetLogMaxHistoryCount(13);
    m_page->restore();
    QVERIFY(m_page->DefaultStoragePath() != QLatin1String("/records"));
    QCOMPARE(m_page->DefaultStoragePath(), stored("DefaultStoragePath"));
    QVERIFY(!m_page->SaveRecordingsAsCsv());
    QCOMPARE(m_page->LogMaxHistoryCount(), quint32(200));
    QVERIFY(!m_page->HasUnsavedParameter());
}

void tst_CSettingsPageViewModel::restoreDefaults()
{
    m_page->SetSaveRecordingsAsCsv(true);
    m_page->SetInstrumentDriverPluginsPath(QStringLiteral("/own/drivers"));
    m_page->SetMappingMaxMeasurementCount(3);
    settings()->SetEnableMappingMode(false);
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    BoxAnswers answers({QMessageBox::Ok, QMessageBox::Ok});
    answers.whileOpen = [&defaultButton] {
        const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        defaultButton = box->standardButton(box->defaultButton());
    };
    m_page->restoreDefaults();
    QCOMPARE(answers.texts, (QStringList{QLatin1String(kDefaultsQuestion), QLatin1String(kRestart)}));
    QCOMPARE(defaultButton, QMessageBox::Ok);
    QVERIFY(settings()->EnableMappingMode());
    QCOMPARE(m_page->InstrumentDriverPluginsPath(), QStringLiteral("/opt/app/kestrix/instrument"));
    QCOMPARE(m_page->MappingMaxMeasurementCount(), quint64(1000000));
    QVERIFY(m_page->SaveRecordingsAsCsv());
    QCOMPARE(stored("SaveRecordingsAsCsv"), QStringLiteral("1"));
    QCOMPARE(stored("MappingMaxMeasurementCount"), QStringLiteral("1000000"));
    QVERIFY(!m_page->HasUnsavedParameter());
}

void tst_CSettingsPageViewModel::restoreDefaultsCancelled()
{
    m_page->SetMappingMaxMeasurementCount(3);
    BoxAnswers answers({QMessageBox::Cancel});
    m_page->restoreDefaults();
    QCOMPARE(answers.texts, QStringList{QLatin1String(kDefaultsQuestion)});
    QCOMPARE(m_page->MappingMaxMeasurementCount(), quint64(3));
    QCOMPARE(settings()->MappingMaxMeasurementCount(), quint64(3));
    QVERIFY(m_page->HasUnsavedParameter());
}

void tst_CSettingsPageViewModel::settingsOutliveThePage()
{
    m_page->SetDefaultStoragePath(QStringLiteral("/records"));
    m_page.reset();
    QCOMPARE(settings()->DefaultStoragePath(), QStringLiteral("/records"));
    m_page = std::make_unique<CSettingsPageViewModel>();
    QVERIFY(settings()->DefaultStoragePath() != QLatin1String("/records"));
}

void tst_CSettingsPageViewModel::isInCommandWhileABoxIsOpen()
{
    for (const bool isSave : {true, false}) {
        bool isInCommand = false;
        BoxAnswers answers({QMessageBox::Ok, QMessageBox::Ok});
        answers.whileOpen = [&] { isInCommand = m_page->IsInCommand(); };
        if (isSave)
            m_page->save();
        else
            m_page->restoreDefaults();
        QVERIFY(isInCommand);
        QVERIFY(!m_page->IsInCommand());
    }
}

QTEST_MAIN(tst_CSettingsPageViewModel)
#include "tst_CSettingsPageViewModel.moc"
