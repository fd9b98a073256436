// SPDX-License-Identifier: GPL-3.0-or-later
#include "CInstrumentPlugin.h"
#include "CMapperPlugin.h"
#include "CPluginsManager.h"
#include "CSettings.h"
#include "CTriggerPlugin.h"
#include "LogRecorder.h"

#include <QDir>
#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString kPluginsDir = QStringLiteral(KESTRIX_TEST_PLUGINS_DIR);
const QString kNoInstruments = QStringLiteral("WARN Unable to load any instrument plugins");

} // namespace

class tst_CPluginsManager : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void missingDirectories();
    void emptyDirectories();
    void loadsEachKind();
    void reportsAFileThatIsNoLibrary();
    void reportsABrokenMapperOrTriggerOnce();
    void countsALibraryWithoutFactory();
    void skipsAFactoryThatAnswersNull();
    void loadsInTheOrderOfTheDirectory();
    void ignoresSubdirectories();
    void terminates();

private:
    QString path(const char* kind) const { return m_root->filePath(QLatin1String(kind)); }
    QString startMessage() const
    {
        return QStringLiteral("INFO Loading Instrument plugin in ") + path("instrument");
    }
    void makeDirectories() const;
    void addLibrary(const char* kind, const char* library, const QString& as) const;
    void addText(const char* kind, const QString& name) const;
    QStringList loadAll(CPluginsManager& manager) const;

    std::unique_ptr<QTemporaryDir> m_root;
    std::unique_ptr<CSettings> m_settings;
};

void tst_CPluginsManager::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    m_settings = std::make_unique<CSettings>(QString());
    m_settings->SetInstrumentDriverPluginsPath(path("instrument"));
    m_settings->SetMapperPluginsPath(path("mapper"));
    m_settings->SetTriggerPluginsPath(path("trigger"));
}

void tst_CPluginsManager::makeDirectories() const
{
    for (const char* kind : {"instrument", "mapper", "trigger"})
        QVERIFY(QDir().mkpath(path(kind)));
}

void tst_CPluginsManager::addLibrary(const char* kind, const char* library, const QString& as) const
{
    QVERIFY(QFile::copy(kPluginsDir + QLatin1Char('/') + QLatin1String(library),
                        path(kind) + QLatin1Char('/') + as));
}

void tst_CPluginsManager::addText(const char* kind, const QString& name) const
{
    QFile file(path(kind) + QLatin1Char('/') + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("This is no library.\n");
}

QStringList tst_CPluginsManager::loadAll(CPluginsManager& manager) const
{
    const LogRecorder log;
    manager.LoadAll();
    return log.Messages();
}

void tst_CPluginsManager::missingDirectories()
{
    CPluginsManager manager(*m_settings);
    QCOMPARE(loadAll(manager), QStringList({startMessage(), kNoInstruments}));
    QVERIFY(manager.InstrumentPlugins().isEmpty());
    QVERIFY(manager.MapperPlugins().isEmpty());
    QVERIFY(manager.TriggerPlugins().isEmpty());
    manager.Terminate();
}

void tst_CPluginsManager::emptyDirectories()
{
    makeDirectories();
    CPluginsManager manager(*m_settings);
    QCOMPARE(loadAll(manager), QStringList({startMessage(), kNoInstruments}));
}

void tst_CPluginsManager::loadsEachKind()
{
    makeDirectories();
    addLibrary("instrument", "instrument/fake-instrument.so", QStringLiteral("i.so"));
    addLibrary("mapper", "mapper/fake-mapper.so", QStringLiteral("m.so"));
    addLibrary("trigger", "trigger/fake-trigger.so", QStringLiteral("t.so"));
    CPluginsManager manager(*m_settings);
    QCOMPARE(loadAll(manager), QStringList({startMessage(), QStringLiteral("INFO library i.so loaded"),
                                            QStringLiteral("DEBUG library m.so loaded"),
                                            QStringLiteral("DEBUG library t.so loaded")}));
    QCOMPARE(manager.InstrumentPlugins().size(), 1);
    QCOMPARE(manager.InstrumentPlugins().first()->objectName(), QStringLiteral("fakeInstrumentPlugin"));
    QCOMPARE(manager.MapperPlugins().size(), 1);
    QCOMPARE(manager.MapperPlugins().first()->Name, QStringLiteral("Fake mapper"));
    QCOMPARE(manager.TriggerPlugins().size(), 1);
    QCOMPARE(manager.TriggerPlugins().first()->Name, QStringLiteral("Fake trigger"));
    // Loading makes a plug-in and does not start it.
    QVERIFY(manager.InstrumentPlugins().first()->property("calls").toStringList().isEmpty());
    manager.Terminate();
}

void tst_CPluginsManager::reportsAFileThatIsNoLibrary()
{
    makeDirectories();
    // The suffix puts the text before the library.
    addText("instrument", QStringLiteral("readme.aaa"));
    addLibrary("instrument", "instrument/fake-instrument.so", QStringLiteral("i.so"));
    CPluginsManager manager(*m_settings);
    const QStringList messages = loadAll(manager);
    QCOMPARE(messages.size(), 3);
    QCOMPARE(messages.at(0), startMessage());
    QVERIFY2(messages.at(1).startsWith(QStringLiteral("INFO Cannot load library ")) &&
                 messages.at(1).contains(path("instrument") + QStringLiteral("/readme.aaa")),
             qPrintable(messages.at(1)));
    QCOMPARE(messages.at(2), QStringLiteral("INFO library i.so loaded"));
    QCOMPARE(manager.InstrumentPlugins().size(), 1);
    manager.Terminate();
}

void tst_CPluginsManager::reportsABrokenMapperOrTriggerOnce()
{
    makeDirectories();
    addText("mapper", QStringLiteral("readme.aaa"));
    addText("trigger", QStringLiteral("readme.aaa"));
    addLibrary("trigger", "trigger/fake-trigger.so", QStringLiteral("t.so"));
    CPluginsManager manager(*m_settings);
    const QStringList messages = loadAll(manager);
    QCOMPARE(messages.size(), 5);
    QVERIFY(messages.at(2).startsWith(QStringLiteral("DEBUG Cannot load library ")));
    QVERIFY(messages.at(2).contains(QStringLiteral("mapper/readme.aaa")));
    QVERIFY(messages.at(3).startsWith(QStringLiteral("DEBUG Cannot load library ")));
    QVERIFY(messages.at(3).contains(QStringLiteral("trigger/readme.aaa")));
    QCOMPARE(messages.at(4), QStringLiteral("DEBUG library t.so loaded"));
    QVERIFY(manager.MapperPlugins().isEmpty());
    QCOMPARE(manager.TriggerPlugins().size(), 1);
    manager.Terminate();
}

void tst_CPluginsManager::countsALibraryWithoutFactory()
{
    makeDirectories();
    for (const char* kind : {"instrument", "mapper", "trigger"})
        addLibrary(kind, "no-factory/no-factory.so", QStringLiteral("n.so"));
    CPluginsManager manager(*m_settings);
    QCOMPARE(loadAll(manager),
             QStringList({startMessage(), QStringLiteral("INFO library n.so loaded"),
                          QStringLiteral("DEBUG Could not create instrument plugin from the loaded library"),
                          QStringLiteral("DEBUG library n.so loaded"),
                          QStringLiteral("DEBUG Could not create mapper plugin from the loaded library"),
                          QStringLiteral("DEBUG library n.so loaded"),
                          QStringLiteral("DEBUG Could not create trigger plugin from the loaded library")}));
    QVERIFY(manager.InstrumentPlugins().isEmpty());
    QVERIFY(manager.MapperPlugins().isEmpty());
    QVERIFY(manager.TriggerPlugins().isEmpty());
}

void tst_CPluginsManager::skipsAFactoryThatAnswersNull()
{
    makeDirectories();
    for (const char* kind : {"instrument", "mapper", "trigger"})
        addLibrary(kind, "null-factory/null-factory.so", QStringLiteral("n.so"));
    CPluginsManager manager(*m_settings);
    QCOMPARE(loadAll(manager), QStringList({startMessage(), QStringLiteral("INFO library n.so loaded"),
                                            QStringLiteral("DEBUG library n.so loaded"),
                                            QStringLiteral("DEBUG library n.so loaded")}));
    QVERIFY(manager.InstrumentPlugins().isEmpty());
    QVERIFY(manager.MapperPlugins().isEmpty());
    QVERIFY(manager.TriggerPlugins().isEmpty());
}

void tst_CPluginsManager::loadsInTheOrderOfTheDirectory()
{
    makeDirectories();
    // By suffix, and by name where the suffix is the same.
    addLibrary("trigger", "trigger/fake-trigger.so", QStringLiteral("a.so2"));
    addLibrary("trigger", "trigger/fake-trigger.so", QStringLiteral("c.so1"));
    addLibrary("trigger", "trigger/fake-trigger.so", QStringLiteral("b.so1"));
    CPluginsManager manager(*m_settings);
    const QStringList messages = loadAll(manager);
    QCOMPARE(messages.mid(2), QStringList({QStringLiteral("DEBUG library b.so1 loaded"),
                                           QStringLiteral("DEBUG library c.so1 loaded"),
                                           QStringLiteral("DEBUG library a.so2 loaded")}));
    QCOMPARE(manager.TriggerPlugins().size(), 3);
    manager.Terminate();
}

void tst_CPluginsManager::ignoresSubdirectories()
{
    makeDirectories();
    QVERIFY(QDir().mkpath(path("instrument") + QStringLiteral("/sub.so")));
    CPluginsManager manager(*m_settings);
    QCOMPARE(loadAll(manager), QStringList({startMessage(), kNoInstruments}));
}

void tst_CPluginsManager::terminates()
{
    makeDirectories();
    addLibrary("instrument", "instrument/fake-instrument.so", QStringLiteral("i.so"));
    addLibrary("mapper", "mapper/fake-mapper.so", QStringLiteral("m.so"));
    addLibrary("trigger", "trigger/fake-trigger.so", QStringLiteral("t.so"));
    CPluginsManager manager(*m_settings);
    loadAll(manager);
    const QVector<QPointer<CPlugin>> plugins{manager.InstrumentPlugins().first(),
                                             manager.MapperPlugins().first(),
                                             manager.TriggerPlugins().first()};
    QStringList destroyed;
    for (const QPointer<CPlugin>& plugin : plugins)
        connect(plugin, &QObject::destroyed, this,
                [&destroyed](QObject* object) { destroyed.append(object->objectName()); });

    manager.Terminate();
    QVERIFY(manager.InstrumentPlugins().isEmpty());
    QVERIFY(manager.MapperPlugins().isEmpty());
    QVERIFY(manager.TriggerPlugins().isEmpty());
    for (const QPointer<CPlugin>& plugin : plugins) {
        QVERIFY(plugin);
        QCOMPARE(plugin->property("calls").toStringList(), QStringList(QStringLiteral("Stop")));
    }

    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(destroyed,
             QStringList({QStringLiteral("fakeInstrumentPlugin"), QStringLiteral("fakeMapperPlugin"),
                          QStringLiteral("fakeTriggerPlugin")}));
    manager.Terminate();
}

QTEST_GUILESS_MAIN(tst_CPluginsManager)

#include "tst_CPluginsManager.moc"
