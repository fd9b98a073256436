// SPDX-License-Identifier: GPL-3.0-or-later
#include "CVersionChecker.h"
#include "LogRecorder.h"
#include "MetaObjectTable.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>
#include <stdexcept>

using namespace MetaObjectTable;

namespace {

const char kHeader[] = "<Header><Version>1.0</Version></Header>";

QByteArray list(const QByteArray& content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Root>" + content + "</Root>\n";
}

QByteArray products(const QByteArray& content)
{
    return list(kHeader + QByteArray("<Products>") + content + "</Products>");
}

QByteArray software(const QByteArray& version)
{
    return products("<Kestrix><Software>" + version + "</Software></Kestrix>");
}

} // namespace

/// What the list says, without a network.
class tst_CVersionChecker : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_log = std::make_unique<LogRecorder>(); }
    void cleanup() { m_log.reset(); }

    void surface();
    void versions_data();
    void versions();
    void invalidVersions_data();
    void invalidVersions();
    void failures_data();
    void failures();
    void unreadableLists_data();
    void unreadableLists();
    void acceptedLists_data();
    void acceptedLists();
    void otherProduct();
    void responseIsUsedOnce();
    void exceptionOfAListener_data();
    void exceptionOfAListener();

private:
    /// The versions that are announced for a list.
    QStringList announced(const QByteArray& response, const char* current = "1.2.4")
    {
        CVersionChecker checker(QStringLiteral("Kestrix"), QString::fromLatin1(current), QString());
        QSignalSpy spy(&checker, &CVersionChecker::NewVersionAvailable);
        checker.SetResponse(response);
        checker.OnNewVersionResponse();
        QStringList versions;
        for (const QList<QVariant>& arguments : qAsConst(spy))
            versions << arguments.at(0).toString();
        return versions;
    }

    std::unique_ptr<LogRecorder> m_log;
};

void tst_CVersionChecker::surface()
{
    const QMetaObject& meta = CVersionChecker::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(meta, {}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Signal, {"NewVersionAvailable(QString)"}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Slot, {"OnNewVersionResponse()"}));
}

void tst_CVersionChecker::versions_data()
{
    QTest::addColumn<QByteArray>("current");
    QTest::addColumn<QByteArray>("online");
    QTest::addColumn<QString>("announcement");
    const auto row = [](const char* current, const char* online, const char* announcement) {
        QTest::addRow("%s, now %s", current, online)
            << QByteArray(current) << QByteArray(online) << QString::fromLatin1(announcement);
    };
    row("1.2.4", "1.2.4", "");
    row("1.2.4", "1.2.3", "");
    row("1.2.4", "1.2.5", "1.2.5");
    row("1.2.9", "1.2.10", "1.2.10");
    row("1.2.10", "1.2.9", "");
    row("1.2.4", "1.3", "1.3");
    row("1.2.4", "1.3.0", "1.3");
    row("1.2.4", "2", "2");
    row("1.2.4", "1", "");
    row("1.2.4", "1.2.4-rc1", "");
    row("1.2.4", "1.2.5-beta2", "1.2.5");
    row("1.2.4", "1.2.4.1", "1.2.4.1");
    row("1.2.4", "\n\t 1.2.5 \n", "1.2.5");
    row("1.2.4", "01.02.05", "1.2.5");
}

void tst_CVersionChecker::versions()
{
    QFETCH(QByteArray, current);
    QFETCH(QByteArray, online);
    QFETCH(QString, announcement);
    const QStringList expected = announcement.isEmpty() ? QStringList() : QStringList{announcement};
    QCOMPARE(announced(software(online), current.constData()), expected);
    const QString line = QStringLiteral("Current software version: %1 Online software version: %2")
                             .arg(QString::fromLatin1(current), QString::fromLatin1(online).trimmed());
    QCOMPARE(m_log->Texts(QtInfoMsg), QStringList{line});
    QCOMPARE(m_log->Texts(QtWarningMsg), QStringList());
}

void tst_CVersionChecker::invalidVersions_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("letters") << QByteArray("abc");
    QTest::newRow("v before it") << QByteArray("v1.3");
    QTest::newRow("point first") << QByteArray(".3");
    QTest::newRow("minus") << QByteArray("-2");
    QTest::newRow("nothing") << QByteArray("");
}

void tst_CVersionChecker::invalidVersions()
{
    QFETCH(QByteArray, text);
    QCOMPARE(announced(software(text)), QStringList());
    QCOMPARE(m_log->Texts(QtWarningMsg),
             QStringList{QStringLiteral("VersionChecker: Invalid online version format: ") +
                         QString::fromLatin1(text)});
}

void tst_CVersionChecker::failures_data()
{
    QTest::addColumn<QByteArray>("response");
    QTest::addColumn<QString>("warning");
    const auto row = [](const char* name, const QByteArray& response, const char* warning) {
        QTest::newRow(name) << response << QString::fromLatin1(warning);
    };
    const QByteArray kestrix = "<Kestrix><Software>9.9</Software></Kestrix>";
    row("empty", {}, "VersionChecker: Empty response from version URL.");
    row("other root", "<List/>", "VersionChecker: Unexpected root element: List Expected: Root");
    row("root in lower case", "<root/>", "VersionChecker: Unexpected root element: root Expected: Root");
    row("nothing in the root", "<Root/>",
        "VersionChecker exception: fileDownloaded : Missing Header element\n");
    row("no header", list("<Products>" + kestrix + "</Products>"),
        "VersionChecker exception: fileDownloaded : Missing Header element\n");
    row("header inside the products", list("<Products>" + QByteArray(kHeader) + kestrix + "</Products>"),
        "VersionChecker exception: fileDownloaded : Missing Header element\n");
    row("no version in the header", list("<Header/><Products>" + kestrix + "</Products>"),
        "VersionChecker exception: ReadHeader : Header missing <Version> element\n");
    row("later version of the format", list("<Header><Version> 2.0\n</Version></Header>"),
        "VersionChecker exception: ReadHeader : XML version mismatch: expected 1.0, got 2.0\n");
    row("version of the format as a number", list("<Header><Version>1</Version></Header>"),
        "VersionChecker exception: ReadHeader : XML version mismatch: expected 1.0, got 1\n");
    row("empty version of the format", list("<Header><Version/></Header>"),
        "VersionChecker exception: ReadHeader : XML version mismatch: expected 1.0, got \n");
    row("no products", list(kHeader + kestrix),
        "VersionChecker exception: fileDownloaded : Missing Products element\n");
    row("no software", products("<Kestrix><Firmware>9.9</Firmware></Kestrix>"),
        "VersionChecker exception: ReadProducts : Missing <Software> element in product section\n");
}

void tst_CVersionChecker::failures()
{
    QFETCH(QByteArray, response);
    QFETCH(QString, warning);
    QCOMPARE(announced(response), QStringList());
    QCOMPARE(m_log->Texts(QtWarningMsg), QStringList{warning});
    QCOMPARE(m_log->Texts(QtInfoMsg), QStringList());
}

void tst_CVersionChecker::unreadableLists_data()
{
    QTest::addColumn<QByteArray>("response");
    QTest::newRow("a mark and no more") << QByteArray("\xEF\xBB\xBF");
    QTest::newRow("text") << QByteArray("Not found");
    QTest::newRow("cut off") << software("9.9").left(60);
    QTest::newRow("crossed elements") << QByteArray("<Root><Header></Root></Header>");
    QTest::newRow("two roots") << QByteArray("<Root/><Root/>");
    QTest::newRow("web page") << QByteArray("<!DOCTYPE html>\n<html><body><p>Moved<br></body></html>");
    QTest::newRow("zeros") << QByteArray(1000, '\0');
    QByteArray bytes;
    for (int i = 0; i < 4096; ++i)
        bytes.append(static_cast<char>(i * 37 + i / 256));
    QTest::newRow("bytes") << bytes;
    const QByteArray tags = QByteArray("<a>").repeated(300000);
    QTest::newRow("deep") << list(tags + QByteArray("</a>").repeated(300000));
    QTest::newRow("deep and open") << QByteArray(tags);

    QByteArray bomb = "<?xml version=\"1.0\"?>\n<!DOCTYPE Root [\n<!ENTITY a0 \"9.9\">\n";
    for (int i = 1; i < 30; ++i)
        bomb += QStringLiteral("<!ENTITY a%1 \"&a%2;&a%2;&a%2;&a%2;&a%2;\">\n").arg(i).arg(i - 1).toUtf8();
    bomb += "]>\n<Root>" + QByteArray(kHeader) +
            "<Products><Kestrix><Software>&a29;</Software></Kestrix></Products></Root>";
    QTest::newRow("entity bomb") << bomb;
    QTest::newRow("entity of itself")
        << QByteArray("<!DOCTYPE Root [<!ENTITY a \"&b;\"><!ENTITY b \"&a;\">]><Root>&a;</Root>");
}

void tst_CVersionChecker::unreadableLists()
{
    QFETCH(QByteArray, response);
    QCOMPARE(announced(response), QStringList());
    const QStringList warnings = m_log->Texts(QtWarningMsg);
    QCOMPARE(warnings.size(), 1);
    const QRegularExpression form(
        QStringLiteral("^VersionChecker: Cannot parse XML\\.\nLine: \\d+, Column: \\d+$"));
    QVERIFY2(form.match(warnings.constFirst()).hasMatch(), qPrintable(warnings.constFirst()));
}

void tst_CVersionChecker::acceptedLists_data()
{
    QTest::addColumn<QByteArray>("response");
    QTest::newRow("plain") << software("9.9");
    QTest::newRow("byte order mark") << "\xEF\xBB\xBF" + software("9.9");
    QTest::newRow("no declaration") << software("9.9").mid(software("9.9").indexOf("<Root>"));
    QTest::newRow("blanks around the version of the format") << list(
        "<Header><Version>\n  1.0 </Version></Header><Products><Kestrix><Software>9.9</Software></Kestrix>"
        "</Products>");
    QTest::newRow("products first") << list(
        "<Products><Kestrix><Software>9.9</Software></Kestrix></Products>" + QByteArray(kHeader));
    QTest::newRow("other elements") << list(
        "<Date>today</Date>" + QByteArray(kHeader) +
        "<Products><Other><Software>1.0</Software></Other><Kestrix><Date/><Software>9.9</Software>"
        "<Software>1.0</Software></Kestrix><Kestrix><Software>10</Software></Kestrix></Products>");
    QTest::newRow("comment and CDATA") << software("<!-- new -->9<![CDATA[.9]]>");
}

void tst_CVersionChecker::acceptedLists()
{
    QFETCH(QByteArray, response);
    QCOMPARE(announced(response), QStringList{QStringLiteral("9.9")});
    QCOMPARE(m_log->Texts(QtWarningMsg), QStringList());
}

void tst_CVersionChecker::otherProduct()
{
    QCOMPARE(announced(products("<Other><Software>9.9</Software></Other><kestrix/>")), QStringList());
    QCOMPARE(m_log->Texts(QtInfoMsg),
             QStringList{QStringLiteral("VersionChecker: Product not found in XML: Kestrix")});
    QCOMPARE(m_log->Texts(QtWarningMsg), QStringList());
}

void tst_CVersionChecker::responseIsUsedOnce()
{
    CVersionChecker checker(QStringLiteral("Kestrix"), QStringLiteral("1.2.4"), QString());
    QSignalSpy spy(&checker, &CVersionChecker::NewVersionAvailable);
    checker.SetResponse(software("9.9"));
    checker.OnNewVersionResponse();
    checker.OnNewVersionResponse();
    QCOMPARE(spy.count(), 1);
    QCOMPARE(m_log->Texts(QtWarningMsg),
             QStringList{QStringLiteral("VersionChecker: Empty response from version URL.")});
}

void tst_CVersionChecker::exceptionOfAListener_data()
{
    QTest::addColumn<bool>("isStandard");
    QTest::addColumn<QString>("warning");
    QTest::newRow("standard") << true << QStringLiteral("VersionChecker exception: no window");
    QTest::newRow("other") << false
                           << QStringLiteral("VersionChecker: Unknown exception while parsing XML file.");
}

void tst_CVersionChecker::exceptionOfAListener()
{
    QFETCH(bool, isStandard);
    QFETCH(QString, warning);
    CVersionChecker checker(QStringLiteral("Kestrix"), QStringLiteral("1.2.4"), QString());
    connect(&checker, &CVersionChecker::NewVersionAvailable, this, [isStandard] {
        if (isStandard)
            throw std::runtime_error("no window");
        throw 1;
    });
    checker.SetResponse(software("9.9"));
    checker.OnNewVersionResponse();
    QCOMPARE(m_log->Texts(QtWarningMsg), QStringList{warning});
}

QTEST_GUILESS_MAIN(tst_CVersionChecker)
#include "tst_CVersionChecker.moc"
