// SPDX-License-Identifier: GPL-3.0-or-later
#include "CConnectionPageSettings.h"
#include "CSettings.h"
#include "LogRecorder.h"
#include "MetaObjectTable.h"
#include "SettingsDirectoryPath.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

QStringList fieldsOf(const CConnectionPageSettings& settings)
{
    return {settings.SerialPort(), settings.BaudRate(), settings.InstrumentName(),
            settings.InstrumentSerialNumber()};
}

const QStringList kFields{QStringLiteral("/dev/ttyS0"), QStringLiteral("115200"),
                          QStringLiteral("Probe & <b>"), QStringLiteral("SN-1")};

} // namespace

class TestCConnectionPageSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void surface();
    void fieldsStartEmpty();
    void saveWritesInOrder();
    void savedFieldsAreReadBack();
    void lookedForWhereTheParametersAre();
    void orderOfKeysDoesNotMatter();
    void missingKeysKeepTheirText();
    void wrongRoot();
    void brokenFile();
    void unreadableFile();
    void saveCreatesOneLevel();
    void saveWithoutParentDirectoryOnlyLogs();

private:
    QString filePath() const
    {
        return m_settings->InstrumentParameterPath() + QStringLiteral("/KestrixConnectionSettings.xml");
    }

    QScopedPointer<QTemporaryDir> m_dir;
    QScopedPointer<CSettings> m_settings;
};

void TestCConnectionPageSettings::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
    m_settings.reset(new CSettings(QStringLiteral("/opt/app")));
    m_settings->SetInstrumentParameterPath(m_dir->path());
}

void TestCConnectionPageSettings::surface()
{
    const QMetaObject& metaObject = CConnectionPageSettings::staticMetaObject;
    QCOMPARE(metaObject.superClass(), &QObject::staticMetaObject);
    VERIFY_NO_DIFFERENCE(MetaObjectTable::compareProperties(metaObject, {}));
    VERIFY_NO_DIFFERENCE(MetaObjectTable::compareMethods(metaObject, QMetaMethod::Signal, {}));
}

void TestCConnectionPageSettings::fieldsStartEmpty()
{
    LogRecorder log;
    const CConnectionPageSettings connection(m_settings.data());
    for (const QString& field : fieldsOf(connection))
        QCOMPARE(field, QString());
    QCOMPARE(log.Messages(), QStringList());
    QVERIFY(!QFile::exists(filePath()));
}

void TestCConnectionPageSettings::saveWritesInOrder()
{
    CConnectionPageSettings connection(m_settings.data());
    connection.SaveConnectionSettings(kFields[0], kFields[1], kFields[2], kFields[3]);
    QCOMPARE(fieldsOf(connection), kFields);
    QCOMPARE(contentOf(filePath()), QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                               "<SETTINGS>\n"
                                               "    <Name>Probe &amp; &lt;b&gt;</Name>\n"
                                               "    <SerialNumber>SN-1</SerialNumber>\n"
                                               "    <SerialPort>/dev/ttyS0</SerialPort>\n"
                                               "    <BaudRate>115200</BaudRate>\n"
                                               "</SETTINGS>\n"));
}

void TestCConnectionPageSettings::savedFieldsAreReadBack()
{
    CConnectionPageSettings connection(m_settings.data());
    connection.SaveConnectionSettings(kFields[0], kFields[1], kFields[2], kFields[3]);
    const CConnectionPageSettings other(m_settings.data());
    QCOMPARE(fieldsOf(other), kFields);
    // Empty texts are saved too, and a shorter file leaves nothing of the longer one.
    connection.SaveConnectionSettings({}, {}, {}, {});
    const CConnectionPageSettings emptied(m_settings.data());
    QCOMPARE(fieldsOf(emptied), (QStringList{QString(), QString(), QString(), QString()}));
}

void TestCConnectionPageSettings::lookedForWhereTheParametersAre()
{
    CConnectionPageSettings connection(m_settings.data());
    connection.SaveConnectionSettings(kFields[0], kFields[1], kFields[2], kFields[3]);
    const QTemporaryDir elsewhere;
    write(elsewhere.filePath(QStringLiteral("KestrixConnectionSettings.xml")),
          "<SETTINGS><Name>moved</Name></SETTINGS>");
    m_settings->SetInstrumentParameterPath(elsewhere.path());
    connection.ReadFromFile();
    QCOMPARE(connection.InstrumentName(), QStringLiteral("moved"));
}

void TestCConnectionPageSettings::orderOfKeysDoesNotMatter()
{
    write(filePath(), "<SETTINGS><BaudRate>9600</BaudRate><Other><Name>no</Name></Other><SerialPort>COM3"
                      "</SerialPort><SerialNumber>7</SerialNumber><Name>N</Name></SETTINGS>");
    const CConnectionPageSettings connection(m_settings.data());
    QCOMPARE(fieldsOf(connection), (QStringList{QStringLiteral("COM3"), QStringLiteral("9600"),
                                                QStringLiteral("N"), QStringLiteral("7")}));
}

void TestCConnectionPageSettings::missingKeysKeepTheirText()
{
    CConnectionPageSettings connection(m_settings.data());
    connection.SaveConnectionSettings(kFields[0], kFields[1], kFields[2], kFields[3]);
    write(filePath(), "<SETTINGS><SerialNumber>2</SerialNumber></SETTINGS>");
    connection.ReadFromFile();
    QCOMPARE(fieldsOf(connection), (QStringList{kFields[0], kFields[1], kFields[2], QStringLiteral("2")}));
}

void TestCConnectionPageSettings::wrongRoot()
{
    write(filePath(), "<FOO><Name>no</Name></FOO>");
    LogRecorder log;
    const CConnectionPageSettings connection(m_settings.data());
    QCOMPARE(connection.InstrumentName(), QString());
    QCOMPARE(log.Messages(), QStringList(QStringLiteral("DEBUG Error: Failed to parse file : ") + filePath() +
                                         QStringLiteral(" : Incorrect file")));
}

void TestCConnectionPageSettings::brokenFile()
{
    write(filePath(), "<SETTINGS><Name>whole</Name><SerialNumber>cut");
    LogRecorder log;
    const CConnectionPageSettings connection(m_settings.data());
    QCOMPARE(connection.InstrumentName(), QStringLiteral("whole"));
    QCOMPARE(connection.InstrumentSerialNumber(), QString());
    QCOMPARE(log.Messages().size(), 1);
    QVERIFY(log.Messages().constFirst().startsWith(QStringLiteral("DEBUG Error: Failed to parse file : ") +
                                                   filePath() + QStringLiteral(" : ")));
}

void TestCConnectionPageSettings::unreadableFile()
{
    QVERIFY(QDir().mkpath(filePath()));
    LogRecorder log;
    const CConnectionPageSettings connection(m_settings.data());
    QCOMPARE(log.Messages().size(), 1);
    QVERIFY(log.Messages().constFirst().startsWith(QStringLiteral("DEBUG Error: Cannot read file ") +
                                                   filePath() + QStringLiteral(": ")));
}

void TestCConnectionPageSettings::saveCreatesOneLevel()
{
    m_settings->SetInstrumentParameterPath(m_dir->filePath(QStringLiteral("new")));
    CConnectionPageSettings connection(m_settings.data());
    connection.SaveConnectionSettings(kFields[0], kFields[1], kFields[2], kFields[3]);
    QVERIFY(QFile::exists(filePath()));
}

void TestCConnectionPageSettings::saveWithoutParentDirectoryOnlyLogs()
{
    m_settings->SetInstrumentParameterPath(m_dir->filePath(QStringLiteral("new/deeper")));
    CConnectionPageSettings connection(m_settings.data());
    LogRecorder log;
    connection.SaveConnectionSettings(kFields[0], kFields[1], kFields[2], kFields[3]);
    QCOMPARE(fieldsOf(connection), kFields);
    QVERIFY(!QFile::exists(m_settings->InstrumentParameterPath()));
    QCOMPARE(log.Messages(), QStringList(QStringLiteral("DEBUG Error: Cannot create file : ") + filePath()));
}

QTEST_GUILESS_MAIN(TestCConnectionPageSettings)
#include "tst_CConnectionPageSettings.moc"
