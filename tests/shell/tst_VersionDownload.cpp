// SPDX-License-Identifier: GPL-3.0-or-later
#include "CVersionChecker.h"
#include "CurlDetour.h"
#include "LogRecorder.h"
#include "ProductInfo.h"
#include "VersionServer.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

QByteArray list(const char* product, const char* version)
{
    return QByteArray("<Root><Header><Version>1.0</Version></Header><Products><") + product + "><Software>" +
           version + "</Software></" + product + "></Products></Root>";
}

const char kParseWarning[] = "VersionChecker: Cannot parse XML.\nLine: ";
const char kCurlWarning[] = "VersionChecker: CURL error: ";

} // namespace

/// The check as a whole, against a server on this machine.
class tst_VersionDownload : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void announces_data();
    void announces();
    void fails_data();
    void fails();
    void defaultAuthoritiesDoNotKnowTheServer();
    void libraryThatFails();
    void largeList();
    void secondRunStartsAnew();
    void defaultHostFailsWithoutANetwork();

private:
    QStringList announced(const QByteArray& url)
    {
        CVersionChecker checker(QStringLiteral("Kestrix"), QStringLiteral("1.2.4"), QString::fromUtf8(url));
        QSignalSpy spy(&checker, &CVersionChecker::NewVersionAvailable);
        checker.Run();
        QStringList versions;
        for (const QList<QVariant>& arguments : qAsConst(spy))
            versions << arguments.at(0).toString();
        return versions;
    }

    VersionServer m_server;
    std::unique_ptr<LogRecorder> m_log;
    int m_openHandles = 0;
};

void tst_VersionDownload::initTestCase()
{
    QVERIFY2(m_server.IsRunning(), m_server.Error().constData());
    QVERIFY(m_server.Write("new", list("Kestrix", "1.3")));
    QVERIFY(m_server.Write("same", list("Kestrix", "1.2.4")));
    QVERIFY(m_server.Write("mark", "\xEF\xBB\xBF" + list("Kestrix", "1.3")));
    QVERIFY(m_server.Write("other", list("Other", "9.9")));
    QVERIFY(m_server.Write("empty", {}));
    QVERIFY(m_server.Write("garbage", QByteArray("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16)));
    QByteArray bomb = "<!DOCTYPE Root [<!ENTITY a0 \"1.3\">";
    for (int i = 1; i < 30; ++i)
        bomb += QStringLiteral("<!ENTITY a%1 \"&a%2;&a%2;&a%2;\">").arg(i).arg(i - 1).toUtf8();
    QVERIFY(m_server.Write("bomb", bomb + "]><Root>&a29;</Root>"));
}

void tst_VersionDownload::init()
{
    CurlDetour::TrustAuthority(m_server.AuthorityPath());
    m_openHandles = CurlDetour::NumHandles() - CurlDetour::NumCleanups();
    m_log = std::make_unique<LogRecorder>();
}

void tst_VersionDownload::cleanup()
{
    m_log.reset();
    CurlDetour::TrustAuthority({});
    CurlDetour::FailToInitialize(false);
    QCOMPARE(CurlDetour::NumHandles() - CurlDetour::NumCleanups(), m_openHandles);
}

void tst_VersionDownload::announces_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QStringList>("versions");
    const QStringList none;
    const QStringList later{QStringLiteral("1.3")};
    QTest::newRow("good certificate") << QByteArray("good") << QByteArray("/file/new") << later;
    QTest::newRow("same version") << QByteArray("good") << QByteArray("/file/same") << none;
    QTest::newRow("byte order mark") << QByteArray("good") << QByteArray("/file/mark") << later;
    QTest::newRow("wrong product") << QByteArray("good") << QByteArray("/file/other") << none;
    QTest::newRow("redirect") << QByteArray("good") << QByteArray("/redirect/file/new") << later;
    QTest::newRow("redirects") << QByteArray("good") << QByteArray("/redirect/redirect/file/new") << later;
    QTest::newRow("redirect to HTTP") << QByteArray("good") << QByteArray("/toPlain/file/new") << later;
    QTest::newRow("slow") << QByteArray("good") << QByteArray("/slow/new") << later;
    QTest::newRow("HTTP") << QByteArray("plain") << QByteArray("/file/new") << later;
    QTest::newRow("status 500 with a list") << QByteArray("good") << QByteArray("/error/new") << later;
}

void tst_VersionDownload::announces()
{
    QFETCH(QByteArray, kind);
    QFETCH(QByteArray, path);
    QFETCH(QStringList, versions);
    QCOMPARE(announced(m_server.Url(kind.constData(), path)), versions);
    QCOMPARE(m_log->Texts(QtWarningMsg), QStringList());
    QCOMPARE(m_log->Texts(QtInfoMsg).size(), 1);
}

void tst_VersionDownload::fails_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("warning");
    const QByteArray curl(kCurlWarning);
    const QByteArray verification = curl + "SSL peer certificate or SSH remote key was not OK";
    QTest::newRow("empty") << QByteArray("good") << QByteArray("/file/empty")
                           << QByteArray("VersionChecker: Empty response from version URL.");
    QTest::newRow("garbage") << QByteArray("good") << QByteArray("/file/garbage")
                             << QByteArray(kParseWarning);
    QTest::newRow("entity bomb") << QByteArray("good") << QByteArray("/file/bomb")
                                 << QByteArray(kParseWarning);
    QTest::newRow("status 404") << QByteArray("good") << QByteArray("/nothing") << QByteArray(kParseWarning);
    QTest::newRow("cut off") << QByteArray("good") << QByteArray("/cut/new")
                             << curl + "Transferred a partial file";
    QTest::newRow("redirect without end")
        << QByteArray("good") << QByteArray("/loop") << curl + "Number of redirects hit maximum amount";
    QTest::newRow("wrong host") << QByteArray("wrongHost") << QByteArray("/file/new") << verification;
    QTest::newRow("expired") << QByteArray("expired") << QByteArray("/file/new") << verification;
    QTest::newRow("unknown authority")
        << QByteArray("unknownAuthority") << QByteArray("/file/new") << verification;
    QTest::newRow("nobody there") << QByteArray("closed") << QByteArray("/file/new")
                                  << curl + "Couldn't connect to server";
}

void tst_VersionDownload::fails()
{
    QFETCH(QByteArray, kind);
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, warning);
    QCOMPARE(announced(m_server.Url(kind.constData(), path)), QStringList());
    const QStringList warnings = m_log->Texts(QtWarningMsg);
    QCOMPARE(warnings.size(), 1);
    QVERIFY2(warnings.constFirst().startsWith(QString::fromUtf8(warning)), qPrintable(warnings.constFirst()));
}

void tst_VersionDownload::defaultAuthoritiesDoNotKnowTheServer()
{
    CurlDetour::TrustAuthority({});
    QCOMPARE(announced(m_server.Url("good", "/file/new")), QStringList());
    QVERIFY(m_log->Texts(QtWarningMsg).value(0).startsWith(QLatin1String(kCurlWarning)));
}

void tst_VersionDownload::libraryThatFails()
{
    CurlDetour::FailToInitialize(true);
    QCOMPARE(announced(m_server.Url("good", "/file/new")), QStringList());
    QCOMPARE(m_log->Texts(QtWarningMsg),
             QStringList{QStringLiteral("VersionChecker: Failed to initialize CURL")});
}

void tst_VersionDownload::largeList()
{
    QByteArray large = list("Kestrix", "1.3");
    large.replace("<Products>",
                  "<Products>" + QByteArray("<Other><Software>1</Software></Other>").repeated(50000));
    QVERIFY(m_server.Write("large", large));
    QCOMPARE(announced(m_server.Url("good", "/file/large")), QStringList{QStringLiteral("1.3")});
}

void tst_VersionDownload::secondRunStartsAnew()
{
    CVersionChecker checker(QStringLiteral("Kestrix"), QStringLiteral("1.2.4"),
                            QString::fromUtf8(m_server.Url("good", "/file/new")));
    QSignalSpy spy(&checker, &CVersionChecker::NewVersionAvailable);
    checker.Run();
    checker.Run();
    QCOMPARE(spy.count(), 2);
}

void tst_VersionDownload::defaultHostFailsWithoutANetwork()
{
    QCOMPARE(QString(kVersionListUrl), QStringLiteral("https://127.0.0.1:1/versions/Versions.xml"));
    QCOMPARE(announced(QString(kVersionListUrl).toUtf8()), QStringList());
    QCOMPARE(m_log->Texts(QtWarningMsg),
             QStringList{QStringLiteral("VersionChecker: CURL error: Couldn't connect to server")});
}

QTEST_GUILESS_MAIN(tst_VersionDownload)
#include "tst_VersionDownload.moc"
