// SPDX-License-Identifier: GPL-3.0-or-later
#include "DialogDriver.h"
#include "LogRecorder.h"
#include "MappingXmlFile.h"
#include "MetaObjectTable.h"
#include "PropertyLog.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

namespace {

const QString kUnreadableBox = QStringLiteral("Could not load file|Cannot read the file");
const QString kInvalidBox =
    QStringLiteral("Could not load file|The file is not a valid Norvane XML mapping file");

QByteArray document(const QByteArray& points)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<NorvaneMappingFile ver=\"1.0\">" + points +
           "</NorvaneMappingFile>\n";
}

QByteArray point(const QByteArray& children)
{
    return "<point>" + children + "</point>";
}

QByteArray at(int x, int y, int z)
{
    return point("<X>" + QByteArray::number(x) + "</X><Y>" + QByteArray::number(y) + "</Y><Z>" +
                 QByteArray::number(z) + "</Z>");
}

/// "X Y Z Roll Pitch Yaw" of each point.
QStringList pointsOf(MappingXmlFile& file)
{
    QStringList points;
    for (int i = 0; i < file.Positions()->size(); ++i) {
        const CPosition& position = file.Positions()->at(i);
        const COrientation& orientation = file.Orientations()->at(i);
        points.append(QStringLiteral("%1 %2 %3 %4 %5 %6")
                          .arg(position.X())
                          .arg(position.Y())
                          .arg(position.Z())
                          .arg(orientation.Roll())
                          .arg(orientation.Pitch())
                          .arg(orientation.Yaw()));
    }
    return points;
}

/// "Xmin..Xmax Ymin..Ymax Zmin..Zmax".
QString boundsOf(const MappingXmlFile& file)
{
    return QStringLiteral("%1..%2 %3..%4 %5..%6")
        .arg(file.PositionXMin())
        .arg(file.PositionXMax())
        .arg(file.PositionYMin())
        .arg(file.PositionYMax())
        .arg(file.PositionZMin())
        .arg(file.PositionZMax());
}

QString parseFailure(const QString& path, const QString& error)
{
    return QStringLiteral("DEBUG Error: Failed to parse file : ") + path + QStringLiteral(" : ") + error;
}

} // namespace

class tst_MappingXmlFile : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_file = std::make_unique<MappingXmlFile>(); }

    void surface()
    {
        using namespace MetaObjectTable;
        const QMetaObject& meta = MappingXmlFile::staticMetaObject;
        QCOMPARE(meta.superClass()->className(), "XmlFile");
        VERIFY_NO_DIFFERENCE(compareProperties(meta, {{"FileName", "QString", ReadWrite},
                                                      {"FilePath", "QString", ReadWrite},
                                                      {"FileError", "bool", ReadOnly},
                                                      {"FileLoaded", "bool", ReadOnly},
                                                      {"PositionXMin", "double", ReadOnly},
                                                      {"PositionXMax", "double", ReadOnly},
                                                      {"PositionYMin", "double", ReadOnly},
                                                      {"PositionYMax", "double", ReadOnly},
                                                      {"PositionZMin", "double", ReadOnly},
                                                      {"PositionZMax", "double", ReadOnly},
                                                      {"Positions", "QList<CPosition>*", Constant},
                                                      {"Orientations", "QList<COrientation>*", Constant}}));
        VERIFY_NO_DIFFERENCE(compareMethods(
            meta, QMetaMethod::Signal,
            {"FileNameChanged(QString)", "FilePathChanged(QString)", "FileErrorChanged(bool)",
             "FileLoadedChanged(bool)", "PositionXMinChanged(double)", "PositionXMaxChanged(double)",
             "PositionYMinChanged(double)", "PositionYMaxChanged(double)", "PositionZMinChanged(double)",
             "PositionZMaxChanged(double)", "Loaded()"}));
    }

    void initialValues()
    {
        QVERIFY(m_file->FileName().isEmpty());
        QVERIFY(m_file->FilePath().isEmpty());
        QVERIFY(!m_file->FileError());
        QVERIFY(!m_file->FileLoaded());
        QVERIFY(m_file->Positions()->isEmpty());
        QVERIFY(m_file->Orientations()->isEmpty());
        QCOMPARE(boundsOf(*m_file), QStringLiteral("0..0 0..0 0..0"));
    }

    void namesCompare()
    {
        PropertyLog log(m_file.get());
        for (int i = 0; i < 2; ++i) {
            m_file->SetFileName(QStringLiteral("n"));
            m_file->SetFilePath(QStringLiteral("p"));
        }
        QCOMPARE(log.take(), QStringList({QStringLiteral("FileName=n"), QStringLiteral("FilePath=p")}));
    }

    void readsPoints_data()
    {
        QTest::addColumn<QByteArray>("points");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char* name, const QByteArray& points, const char* expected) {
            QTest::newRow(name) << points
                                << QString::fromLatin1(expected).split(QLatin1Char('|'), Qt::SkipEmptyParts);
        };
        row("none", "", "");
        row("all six", point("<X>1</X><Y>2</Y><Z>3</Z><Roll>4</Roll><Pitch>5</Pitch><Yaw>6</Yaw>"),
            "1 2 3 4 5 6");
        row("any order", point("<Yaw>6</Yaw><Z>3</Z><Roll>4</Roll><X>1</X><Pitch>5</Pitch><Y>2</Y>"),
            "1 2 3 4 5 6");
        row("order of the file", at(3, 0, 0) + at(1, 0, 0) + at(2, 0, 0),
            "3 0 0 0 0 0|1 0 0 0 0 0|2 0 0 0 0 0");
        row("starts at zero", point("<Y>7</Y>"), "0 7 0 0 0 0");
        row("carries over", point("<X>1</X><Yaw>9</Yaw>") + point("<Y>2</Y>") + point("<X>3</X>"),
            "1 0 0 0 0 9|1 2 0 0 0 9|3 2 0 0 0 9");
        row("without children", at(1, 2, 3) + "<point/>", "1 2 3 0 0 0|1 2 3 0 0 0");
        row("equal positions", at(1, 2, 3) + at(1, 2, 3) + at(1, 2, 3),
            "1 2 3 0 0 0|1 2 3 0 0 0|1 2 3 0 0 0");
        row("malformed number", at(1, 2, 3) + point("<X>one</X><Y/>"), "1 2 3 0 0 0|0 0 3 0 0 0");
        row("number of another locale", point("<X>1,5</X><Y>1.5</Y>"), "0 1.5 0 0 0 0");
        row("signs, exponents, blanks", point("<X>-1.25e2</X><Y>+4</Y><Z>\n  0.5 </Z>"), "-125 4 0.5 0 0 0");
        row("given twice", point("<X>1</X><X>2</X>"), "2 0 0 0 0 0");
        row("other children", point("<Note>a<X>5</X></Note><X>1</X><x>3</x>"), "1 0 0 0 0 0");
        row("comments and texts", "<!-- c -->text" + point("t<X>1<!-- 2 -->3</X>t"), "13 0 0 0 0 0");
        row("not finite", point("<X>inf</X><Y>-inf</Y><Z>nan</Z>"), "inf -inf nan 0 0 0");
    }

    void readsPoints()
    {
        QFETCH(const QByteArray, points);
        QFETCH(const QStringList, expected);
        QSignalSpy loaded(m_file.get(), &MappingXmlFile::Loaded);
        const DialogDriver dialogs;
        const LogRecorder log;
        load(document(points));
        QVERIFY(dialogs.messages.isEmpty());
        QVERIFY(log.Messages().isEmpty());
        QCOMPARE(pointsOf(*m_file), expected);
        QCOMPARE(m_file->Orientations()->size(), m_file->Positions()->size());
        QVERIFY(m_file->FileLoaded());
        QVERIFY(!m_file->FileError());
        QCOMPARE(loaded.count(), 1);
    }

    void boundsHoldTheOrigin_data()
    {
        QTest::addColumn<QByteArray>("points");
        QTest::addColumn<QString>("expected");
        QTest::newRow("none") << QByteArray() << "0..0 0..0 0..0";
        QTest::newRow("one of 5") << point("<X>5</X>") << "0..5 0..0 0..0";
        QTest::newRow("one below") << at(-5, -6, -7) << "-5..0 -6..0 -7..0";
        QTest::newRow("far away") << at(100, 200, 300) + at(101, 199, 300) << "0..101 0..200 0..300";
        QTest::newRow("both sides") << at(-1, 2, 0) + at(3, -4, 5) << "-1..3 -4..2 0..5";
        QTest::newRow("not a number") << point("<X>nan</X>") + at(1, 1, 1) << "0..1 0..1 0..1";
    }

    void boundsHoldTheOrigin()
    {
        QFETCH(const QByteArray, points);
        QFETCH(const QString, expected);
        load(document(points));
        QCOMPARE(boundsOf(*m_file), expected);
    }

    void tellsInItsOrder()
    {
        load(document(at(1, 0, 0)));
        PropertyLog log(m_file.get());
        int told = -1;
        connect(m_file.get(), &MappingXmlFile::Loaded, this, [&] { told = log.entries().size(); });
        load(document(at(2, -1, 0) + at(1, 0, 0) + at(3, 0, 0)));
        const QStringList expected{QStringLiteral("FileLoaded=false"), QStringLiteral("PositionXMax=0"),
                                   QStringLiteral("PositionXMax=2"),   QStringLiteral("PositionYMin=-1"),
                                   QStringLiteral("PositionXMax=3"),   QStringLiteral("FileLoaded=true")};
        QCOMPARE(log.entries(), expected);
        QCOMPARE(told, expected.size());
    }

    void aLoadReplacesTheOneBefore()
    {
        load(document(at(1, 2, 3)));
        load(document(""));
        QVERIFY(m_file->FileLoaded());
        QVERIFY(m_file->Positions()->isEmpty());
        QCOMPARE(boundsOf(*m_file), QStringLiteral("0..0 0..0 0..0"));
        // The first point of a file carries nothing over from another file.
        load(document(at(1, 2, 3)));
        load(document("<point/>"));
        QCOMPARE(pointsOf(*m_file), QStringList(QStringLiteral("0 0 0 0 0 0")));
    }

    void unreadable_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("none given") << QString();
        QTest::newRow("missing") << m_directory.filePath(QStringLiteral("absent.xml"));
        QTest::newRow("directory") << m_directory.path();
    }

    void unreadable()
    {
        QFETCH(const QString, path);
        load(document(at(1, 2, 3)));
        m_file->SetFilePath(path);
        QSignalSpy loaded(m_file.get(), &MappingXmlFile::Loaded);
        DialogDriver dialogs;
        dialogs.pressNext(QMessageBox::Ok);
        const LogRecorder log;
        m_file->Load();
        QVERIFY(dialogs.isDone());
        QCOMPARE(dialogs.messages, QStringList(kUnreadableBox));
        // Qt has a word of its own on a file without a name.
        QCOMPARE(log.Texts(QtWarningMsg).last(), QStringLiteral("Cannot read the file : ") + path);
        QCOMPARE(log.Texts(QtDebugMsg).size(), 1);
        QVERIFY(log.Texts(QtDebugMsg)
                    .first()
                    .startsWith(QStringLiteral("Error: Cannot read file ") + path + QStringLiteral(": ")));
        QVERIFY(m_file->FileError());
        QVERIFY(!m_file->FileLoaded());
        QCOMPARE(loaded.count(), 1);
        QVERIFY(m_file->Positions()->isEmpty());
        QCOMPARE(boundsOf(*m_file), QStringLiteral("0..0 0..0 0..0"));
    }

    void refusedRoot_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("other root") << QByteArray("<Mapping ver=\"1.0\"><point/></Mapping>");
        QTest::newRow("other case") << QByteArray(
            "<norvaneMappingFile ver=\"1.0\"><point/></norvaneMappingFile>");
        QTest::newRow("version 1.1") << QByteArray(
            "<NorvaneMappingFile ver=\"1.1\"><point/></NorvaneMappingFile>");
        QTest::newRow("no version") << QByteArray("<NorvaneMappingFile><point/></NorvaneMappingFile>");
    }

    void refusedRoot()
    {
        QFETCH(const QByteArray, content);
        QSignalSpy loaded(m_file.get(), &MappingXmlFile::Loaded);
        DialogDriver dialogs;
        dialogs.pressNext(QMessageBox::Ok);
        const LogRecorder log;
        load(content);
        QVERIFY(dialogs.isDone());
        QCOMPARE(dialogs.messages, QStringList(kInvalidBox));
        QCOMPARE(log.Messages(),
                 QStringList(parseFailure(m_file->FilePath(), QStringLiteral("Incorrect file"))));
        QVERIFY(m_file->FileError());
        QVERIFY(!m_file->FileLoaded());
        QVERIFY(m_file->Positions()->isEmpty());
        QCOMPARE(loaded.count(), 1);
    }

    void withoutAnElement_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("no XML") << QByteArray("1;2;3\n4;5;6\n");
        QTest::newRow("comment only") << QByteArray("<!-- nothing -->");
        QTest::newRow("default attributes")
            << QByteArray("<!DOCTYPE a [<!ATTLIST NorvaneMappingFile ver CDATA \"1.0\">]>"
                          "<NorvaneMappingFile/>");
        QTest::newRow("cut in the root") << QByteArray("<NorvaneMappingFile ver=\"1");
    }

    void withoutAnElement()
    {
        QFETCH(const QByteArray, content);
        const DialogDriver dialogs;
        const LogRecorder log;
        load(content);
        QVERIFY(dialogs.messages.isEmpty());
        QVERIFY(m_file->FileError());
        QVERIFY(!m_file->FileLoaded());
        QCOMPARE(log.Messages().size(), 1);
        QVERIFY(log.Messages().first().startsWith(parseFailure(m_file->FilePath(), QString())));
    }

    void foreignElement()
    {
        DialogDriver dialogs;
        dialogs.pressNext(QMessageBox::Ok);
        const LogRecorder log;
        load(document(at(1, 2, 3) + "<Point/>" + at(4, 5, 6)));
        QVERIFY(dialogs.isDone());
        QCOMPARE(dialogs.messages, QStringList(kInvalidBox));
        QCOMPARE(log.Messages(),
                 QStringList(parseFailure(m_file->FilePath(), QStringLiteral("Incorrect file"))));
        QVERIFY(m_file->FileError());
        QCOMPARE(pointsOf(*m_file), QStringList(QStringLiteral("1 2 3 0 0 0")));
        QCOMPARE(boundsOf(*m_file), QStringLiteral("0..1 0..2 0..3"));
    }

    void brokenXml_data()
    {
        QTest::addColumn<QByteArray>("tail");
        QTest::newRow("cut between points") << QByteArray();
        QTest::newRow("cut inside a point") << QByteArray("<point><X>9</X>");
        QTest::newRow("cut inside a number") << QByteArray("<point><X>9");
        QTest::newRow("wrong end tag") << QByteArray("<point></Point></NorvaneMappingFile>");
        QTest::newRow("element inside a number")
            << QByteArray("<point><X>1<b>2</b></X></point></NorvaneMappingFile>");
        QTest::newRow("nested deeply") << "<point>" + QByteArray("<a>").repeated(300) +
                                              QByteArray("</a>").repeated(300) +
                                              "</point></NorvaneMappingFile>";
    }

    void brokenXml()
    {
        QFETCH(const QByteArray, tail);
        const DialogDriver dialogs;
        const LogRecorder log;
        load("<NorvaneMappingFile ver=\"1.0\">" + at(1, 2, 3) + at(4, 5, 6) + tail);
        QVERIFY(dialogs.messages.isEmpty());
        QVERIFY(m_file->FileError());
        QVERIFY(!m_file->FileLoaded());
        QCOMPARE(pointsOf(*m_file),
                 QStringList({QStringLiteral("1 2 3 0 0 0"), QStringLiteral("4 5 6 0 0 0")}));
        QCOMPARE(log.Messages().size(), 1);
        QVERIFY(log.Messages().first().startsWith(parseFailure(m_file->FilePath(), QString())));
    }

    void cutAnywhere()
    {
        const QByteArray whole = document(at(1, 2, 3) + at(4, 5, 6) + at(7, 8, 9));
        const int end = whole.lastIndexOf('>'); // of the root's end tag
        int lastPoints = 0;
        for (int length = 0; length <= end; ++length) {
            const LogRecorder log;
            load(whole.left(length));
            QVERIFY2(m_file->FileError(), QByteArray::number(length));
            const int points = m_file->Positions()->size();
            QVERIFY(points >= lastPoints);
            lastPoints = points;
        }
        QCOMPARE(lastPoints, 3);
    }

    void recoversFromAnError()
    {
        QSignalSpy errors(m_file.get(), &MappingXmlFile::FileErrorChanged);
        {
            const LogRecorder log;
            load("<NorvaneMappingFile ver=\"1.0\">");
            load("<NorvaneMappingFile ver=\"1.0\">");
        }
        QCOMPARE(errors.count(), 1);
        load(document(at(1, 1, 1)));
        QCOMPARE(errors.count(), 2);
        QVERIFY(!m_file->FileError());
        QVERIFY(m_file->FileLoaded());
    }

    void otherEncodings()
    {
        load("\xFF\xFE" + utf16(document(at(1, 2, 3))));
        QCOMPARE(pointsOf(*m_file), QStringList(QStringLiteral("1 2 3 0 0 0")));
        load(document(at(1, 2, 3)).replace("\n", "\r\n"));
        QCOMPARE(pointsOf(*m_file), QStringList(QStringLiteral("1 2 3 0 0 0")));
    }

    void entityBomb()
    {
        QByteArray content = "<!DOCTYPE l [<!ENTITY a0 \"0123456789\">";
        for (int i = 1; i < 12; ++i) {
            const QByteArray previous = "&a" + QByteArray::number(i - 1) + ";";
            content += "<!ENTITY a" + QByteArray::number(i) + " \"" + previous.repeated(10) + "\">";
        }
        content += "]><NorvaneMappingFile ver=\"1.0\"><point><X>&a11;</X></point></NorvaneMappingFile>";
        const LogRecorder log;
        load(content);
        QVERIFY(m_file->FileError());
        QVERIFY(m_file->Positions()->isEmpty());
    }

    void fiftyThousandPoints()
    {
        QByteArray points;
        for (int i = 0; i < 50000; ++i)
            points += point("<X>" + QByteArray::number(i) + "</X><Y>" + QByteArray::number(-i * 0.5) +
                            "</Y><Yaw>" + QByteArray::number(i % 360) + "</Yaw>");
        load(document(points));
        QVERIFY(m_file->FileLoaded());
        QCOMPARE(m_file->Positions()->size(), 50000);
        QCOMPARE(m_file->Orientations()->size(), 50000);
        for (int i = 0; i < 50000; ++i) {
            QCOMPARE(m_file->Positions()->at(i).X(), static_cast<double>(i));
            QCOMPARE(m_file->Positions()->at(i).Y(), QByteArray::number(-i * 0.5).toDouble());
            QCOMPARE(m_file->Orientations()->at(i).Yaw(), static_cast<double>(i % 360));
        }
        QCOMPARE(m_file->PositionXMax(), 49999.0);
    }

private:
    static QByteArray utf16(QByteArray latin1)
    {
        latin1.replace("UTF-8", "UTF-16");
        QByteArray wide;
        for (const char character : latin1)
            wide.append(character).append('\0');
        return wide;
    }

    void load(const QByteArray& content)
    {
        const QString path = m_directory.filePath(QStringLiteral("positions.xml"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content) != content.size())
            qFatal("Cannot write the test's file");
        file.close();
        m_file->SetFilePath(path);
        m_file->Load();
    }

    QTemporaryDir m_directory;
    std::unique_ptr<MappingXmlFile> m_file;
};

QTEST_MAIN(tst_MappingXmlFile)
#include "tst_MappingXmlFile.moc"
