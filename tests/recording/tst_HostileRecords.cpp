// SPDX-License-Identifier: GPL-3.0-or-later
// Files that no program of ours wrote: cut off, random, or made to exhaust the reader.

#include "CDataSetMapping.h"
#include "CDataSetMeasurement.h"
#include "CSettings.h"
#include "CXMLResultsSerializer.h"
#include "CpuTimer.h"
#include "RecordTestSupport.h"

#include <QFile>
#include <QTextCodec>
#include <QtTest>

#include <functional>
#include <random>

using namespace RecordTestSupport;

namespace {

constexpr qint64 kLarge = 20000000;
#ifdef __SANITIZE_ADDRESS__
// AddressSanitizer keeps 256 MB of freed memory back.
constexpr qint64 kKeptBack = 256000000;
#else
constexpr qint64 kKeptBack = 0;
#endif

/// A file of any size that is made while it is read.
class GeneratedDevice : public QIODevice
{
public:
    using Generator = std::function<void(char* data, qint64 size)>;

    GeneratedDevice(const QByteArray& head, qint64 bodySize, Generator body)
        : m_head(head), m_left(bodySize), m_body(std::move(body))
    {
        open(QIODevice::ReadOnly);
    }

    bool isSequential() const override { return true; }
    bool atEnd() const override { return m_head.isEmpty() && m_left == 0; }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        if (!m_head.isEmpty()) {
            const auto taken = static_cast<int>(qMin<qint64>(size, m_head.size()));
            std::copy_n(m_head.constData(), taken, data);
            m_head.remove(0, taken);
            return taken;
        }
        const qint64 taken = qMin(size, m_left);
        m_body(data, taken);
        m_left -= taken;
        return taken;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_head;
    qint64 m_left;
    Generator m_body;
};

GeneratedDevice::Generator repeat(const QByteArray& piece)
{
    // Copied in long runs: byte by byte the making would take longer than the reading.
    const QByteArray run = piece.repeated(1 + 65536 / piece.size());
    return [run, position = qint64(0)](char* data, qint64 size) mutable {
        while (size > 0) {
            const qint64 taken = qMin(size, run.size() - position);
            std::copy_n(run.constData() + position, taken, data);
            position = (position + taken) % run.size();
            data += taken;
            size -= taken;
        }
    };
}

/// Bytes, from the kernel's account of this process; 0 where there is none.
qint64 peakMemory()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray all = file.readAll();
    const int line = all.indexOf("VmHWM:");
    return line < 0 ? 0 : all.mid(line + 6, all.indexOf("kB", line) - line - 6).trimmed().toLongLong() * 1024;
}

void forgetPeakMemory()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}

/// What a mapping record tells, in one text.
QString contentsOf(const QByteArray& text, const CSettings& settings)
{
    QBuffer buffer;
    buffer.setData(text);
    buffer.open(QIODevice::ReadOnly);
    CXMLResultsSerializer serializer;
    CDataSetMapping dataset(settings);
    const bool isRead = serializer.ReadMapping(&buffer, dataset);
    QString contents =
        QStringLiteral("%1 %2 %3\n").arg(isRead).arg(dataset.ResultsCount()).arg(serializer.ErrorMessage());
    for (const auto& block : *dataset.MeasureBlocks()) {
        const CPosition& place = block->Position;
        const COrientation& turn = block->Orientation;
        contents += block->Comment() + QLatin1Char('|') + block->FormatBlockAsText(QStringLiteral(";"));
        for (const double value : {place.X(), place.Y(), place.Z(), turn.Roll(), turn.Pitch(), turn.Yaw()})
            contents += QLatin1Char('|') + QString::number(value, 'g', 17);
        contents += QLatin1Char('\n');
    }
    return contents;
}

const QByteArray kOpenFlux =
    record(QByteArray()).split('\n').mid(0, 10).join('\n').replace("</dataset>", "") + "<measurements><flux>";

} // namespace

class tst_HostileRecords : public QObject
{
    Q_OBJECT

private slots:
    void truncatedAnywhere()
    {
        QByteArray content =
            "<headings colsep=\";\">a;b</headings><parameters>Units=mT Range=0.3 AutoRange=1</parameters>";
        for (int i = 0; i < 3; ++i)
            content +=
                "<measurements><comment>c&amp;d</comment><position unit=\"\">1;2;3</position>"
                "<orientation "
                "unit=\"degree\">4;5;6</orientation><flux>2024.03.01T10:11:12.123456789;1;2;3;4;5;6;7\n"
                "2024.03.01T10:11:12.223456789;1;2;3;4;5;6;7</flux></measurements>";
        for (const char* kind : {"MEASUREMENT", "MAPPING"}) {
            const QByteArray whole = record(content, "1.2", kind);
            int lastBlocks = 0;
            for (int length = 0; length <= whole.size(); ++length) {
                QByteArray text = whole.left(length);
                QBuffer buffer(&text);
                buffer.open(QIODevice::ReadOnly);
                CXMLResultsSerializer serializer;
                CDataSetMeasurement measurement(m_settings);
                CDataSetMapping mapping(m_settings);
                int blocks = 0;
                bool isRead = false;
                if (qstrcmp(kind, "MAPPING") == 0) {
                    isRead = serializer.ReadMapping(&buffer, mapping);
                    blocks = static_cast<int>(mapping.MeasureBlocks()->size());
                } else {
                    isRead = serializer.ReadMeasurement(&buffer, measurement);
                    blocks = static_cast<int>(measurement.MeasureBlocks()->size());
                }
                // Once the root has been read, a cut-off file gives what it holds.
                QCOMPARE(isRead, length >= whole.indexOf('>', whole.indexOf("<NorvaneXmlRecord")) + 1);
                QVERIFY(blocks >= lastBlocks && blocks <= 3);
                lastBlocks = blocks;
            }
            QCOMPARE(lastBlocks, 3);
        }
    }

    void damagedByteByByte()
    {
        const QByteArray whole =
            record("<headings colsep=\";\"/><parameters>Units=mT Range=0.3</parameters>" +
                   measurementsWithFlux("2024.03.01T10:11:12.123456789;1;2;3;4;5;6;7"));
        std::mt19937 random(3);
        for (int i = 0; i < 20000; ++i) {
            QByteArray text = whole;
            for (int damage = 0; damage < 3; ++damage)
                text[static_cast<int>(random() % static_cast<unsigned>(text.size()))] =
                    static_cast<char>(random());
            QBuffer buffer(&text);
            buffer.open(QIODevice::ReadOnly);
            CXMLResultsSerializer serializer;
            CDataSetMeasurement dataset(m_settings);
            serializer.ReadMeasurement(&buffer, dataset);
            QVERIFY(dataset.MeasureBlocks()->size() <= 1);
        }
    }

    /// The XML reader reads every block whose start tag has a blank in it.
    void plainBlocksMeanTheSame()
    {
        const QByteArray row = "2024.03.01T10:11:12.123456789;1;2;3;4;5;6;7";
        const QByteArrayList pieces = {
            "<comment>c</comment>",
            "<comment></comment>",
            "<comment/>",
            "<comment>a &amp; b</comment>",
            "<comment>\xC2\xB5T</comment>",
            "<comment>a\r\nb\tc</comment>",
            "<comment>a > b</comment>",
            "<comment>]]></comment>",
            "<comment>\x7f</comment>",
            "<comment>\x01</comment>",
            "<comment>measurements</comment>",
            "<comment>:measurements</comment>",
            "<comment><x/></comment>",
            "<comment ></comment >",
            "<comment unit=\"a\">u</comment>",
            "<comment unit=\"a\" unit=\"b\">u</comment>",
            "<comment unit='a'>u</comment>",
            "<comment>no end",
            "<comment>other end</flux>",
            "<position unit=\"\">1;2;3</position>",
            "<position unit=\"\">1e-3;-2.5;0x</position>",
            "<position>1;2</position>",
            "<position>1;2;3;4</position>",
            "<orientation unit=\"degree\">4;5;6</orientation>",
            "<flux>" + row + "</flux>",
            "<flux>" + row + "<!-- -->\n" + row + "</flux>",
            "<flux><![CDATA[" + row + "]]></flux>",
            "<flux>  \n</flux>",
            "<flux unit=\"mT\">" + row + "</flux>",
            "<x:flux>" + row + "</x:flux>",
            "<other><flux>" + row + "</flux></other>",
            "<other>text</other>",
            "<measurements><flux>" + row + "</flux></measurements>",
            "<a:measurements a=\">\"/>",
            "<!-- <measurements> -->",
            "<!-- </measurements> -->",
            "<![CDATA[<measurements>]]>",
            "</measurements ><measurements>",
            "</measurements><a:measurements ><comment>p</comment></a:measurements><measurements>",
            "</measurements>&b;<measurements>",
            "</measurements><measurements/><measurements>",
            "text",
            " \n\t",
            "<",
            "&b;",
            "&",
        };
        const int usual[] = {0, 20, 24, 25};
        std::mt19937 random(20240301);
        const auto below = [&random](int bound) { return static_cast<int>(random() % unsigned(bound)); };
        int plainBlocks = 0;
        for (int i = 0; i < 400; ++i) {
            QByteArray content;
            for (int block = below(6); block >= 0; --block) {
                content += "\n<measurements>";
                for (const int piece : usual)
                    content += pieces[below(8) > 0 ? piece : below(pieces.size())] + "\n ";
                content += "</measurements>";
            }
            // What is read from the file at once is not whole blocks.
            if (i % 40 == 0)
                content.replace("<flux>", "<flux>" + (row + '\n').repeated(1500));
            QByteArray plain = record(content, "1.2", "MAPPING");
            if (below(4) == 0)
                plain.truncate(plain.size() - below(content.size()));
            if (below(8) == 0)
                plain.replace(
                    "<NorvaneXmlRecord",
                    "<!DOCTYPE a [<!ENTITY b \"<measurements></measurements>\">]><NorvaneXmlRecord");
            QByteArray walked = plain;
            walked.replace("<measurements>", "<measurements >");
            const QString contents = contentsOf(plain, m_settings);
            QVERIFY2(contents == contentsOf(walked, m_settings), plain.right(5000));
            plainBlocks += contents.count(QLatin1String("c|"));
        }
        QVERIFY(plainBlocks > 300);
    }

    void blockTagsFromAnEntity()
    {
        const QByteArray text =
            record("&b;<measurements><comment>c</comment></measurements>", "1.2", "MAPPING")
                .replace("<NorvaneXmlRecord ver",
                         "<!DOCTYPE a [<!ENTITY b \"<measurements></measurements>\">]>"
                         "<NorvaneXmlRecord ver");
        QCOMPARE(contentsOf(text, m_settings), QStringLiteral("1 2 \n||0|0|0|0|0|0\nc||0|0|0|0|0|0\n"));
    }

    void large_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("times"); // memory allowed, in sizes of the file
        QTest::newRow("zeros") << QByteArray() << QByteArray(1, '\0') << 1;
        QTest::newRow("letters") << QByteArray() << QByteArray("garbage ") << 1;
        QTest::newRow("white space") << QByteArray() << QByteArray(" \n") << 8;
        QTest::newRow("one endless tag") << QByteArray("<") << QByteArray("a") << 8;
        QTest::newRow("one endless attribute")
            << QByteArray("<NorvaneXmlRecord ver=\"") << QByteArray("1.0") << 8;
        QTest::newRow("one endless comment") << QByteArray("<!--") << QByteArray("x") << 8;
        QTest::newRow("nested elements")
            << QByteArray("<NorvaneXmlRecord ver=\"1.0\">") << QByteArray("<a>") << 1;
        QTest::newRow("nested in a block") << kOpenFlux.left(kOpenFlux.size() - 6) << QByteArray("<a>") << 1;
        QTest::newRow("nested in the header")
            << QByteArray("<NorvaneXmlRecord ver=\"1.0\"><header>") << QByteArray("<b>") << 1;
        QTest::newRow("endless token") << kOpenFlux << QByteArray("5") << 12;
        QTest::newRow("endless comment of the record")
            << QByteArray(
                   "<NorvaneXmlRecord ver=\"1.0\"><body type=\"tQDR_BODY_KESTRIX\" ver=\"1.1\"><comment>")
            << QByteArray("c") << 12;
        QTest::newRow("endless parameters")
            << kOpenFlux.left(kOpenFlux.size() - 20) + "<parameters>" << QByteArray("a=b ") << 12;
    }

    void large()
    {
        QFETCH(QByteArray, head);
        QFETCH(QByteArray, body);
        QFETCH(int, times);
        checkLarge(head, repeat(body), times);
    }

    void largeAndRandom()
    {
        auto random = std::make_shared<std::mt19937>(5);
        checkLarge(
            QByteArray(),
            [random](char* data, qint64 size) {
                for (qint64 i = 0; i < size; ++i)
                    data[i] = static_cast<char>((*random)());
            },
            1);
    }

    void entityBombs_data()
    {
        QTest::addColumn<QByteArray>("text");
        QByteArray laughs = "<!DOCTYPE b [<!ENTITY l0 \"lolololol\">";
        for (int i = 1; i < 30; ++i) {
            const QByteArray previous = "&l" + QByteArray::number(i - 1) + ';';
            laughs += "<!ENTITY l" + QByteArray::number(i) + " \"" + previous.repeated(10) + "\">";
        }
        laughs += "]>";
        QTest::newRow("nested") << inRecord(laughs, "&l29;");
        QTest::newRow("many of middling size")
            << inRecord("<!DOCTYPE b [<!ENTITY a \"" + QByteArray(4000, 'x') + "\">]>",
                        QByteArray("&a;").repeated(1000000));
        QTest::newRow("self-reference") << inRecord("<!DOCTYPE b [<!ENTITY a \"&a;\">]>", "&a;");
        QTest::newRow("two that call each other")
            << inRecord("<!DOCTYPE b [<!ENTITY a \"&b;\"><!ENTITY b \"&a;\">]>", "&a;");
        QTest::newRow("from a file") << inRecord("<!DOCTYPE b [<!ENTITY a SYSTEM \"file:///etc/passwd\">]>",
                                                 "&a;");
        QTest::newRow("parameter entities")
            << inRecord("<!DOCTYPE b [<!ENTITY % p \"<!ENTITY a 'x'>\">%p;%p;]>", "&a;");
    }

    void entityBombs()
    {
        QFETCH(QByteArray, text);
        forgetPeakMemory();
        const qint64 before = peakMemory();
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        CXMLResultsSerializer serializer;
        CDataSetMeasurement dataset(m_settings);
        const CpuTimer timer;
        QVERIFY(serializer.ReadMeasurement(&buffer, dataset));
        QVERIFY2(timer.elapsed() < 10000, QByteArray::number(timer.elapsed()));
        QVERIFY(peakMemory() - before < 100000000);
        QVERIFY(!dataset.Comment().contains(QLatin1String("root:")));
    }

    void attributeBombs_data()
    {
        QTest::addColumn<QByteArray>("text");
        QByteArray attributes;
        for (int i = 0; i < 500000; ++i)
            attributes += " a" + QByteArray::number(i) + "=\">\"";
        const QByteArray root = "<NorvaneXmlRecord ver=\"1.0\">";
        QTest::newRow("in a child") << root + "<header" + attributes + "/></NorvaneXmlRecord>";
        QTest::newRow("in an end tag") << root + "<header></header" + attributes + "></NorvaneXmlRecord>";
        QTest::newRow("in the declaration") << "<?xml version=\"?>\"" + attributes + "?>" + root;
        // In these the reader sees one tag, and who looks at the bytes many.
        QString wide = QStringLiteral("<NorvaneXmlRecord ver=\"1.0\"><header");
        for (int i = 0; i < 100000; ++i)
            wide += QStringLiteral(" \u3E3E%1=\"\"").arg(i);
        wide += QLatin1String("/></NorvaneXmlRecord>");
        for (const char* codec : {"UTF-16", "UTF-16BE", "UTF-32LE"})
            QTest::newRow(codec) << QTextCodec::codecForName(codec)->fromUnicode(wide);
        const QByteArray declaration = "<?xml version=\"1.0\" encoding=\"UTF-16LE\"?>";
        QTest::newRow("other encoding than declared")
            << declaration + QByteArray(declaration.size(), ' ') +
                   QTextCodec::codecForName("UTF-16LE")->fromUnicode(wide).mid(2);
        QByteArray defaults = "<!DOCTYPE b [<!ATTLIST a";
        for (int i = 0; i < 2000; ++i)
            defaults += " a" + QByteArray::number(i) + " CDATA \"\"";
        QTest::newRow("by default") << defaults + ">]>" + root + QByteArray("<a/>").repeated(1000000) +
                                           "</NorvaneXmlRecord>";
    }

    void attributeBombs()
    {
        QFETCH(QByteArray, text);
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        CXMLResultsSerializer serializer;
        CDataSetMeasurement dataset(m_settings);
        const CpuTimer timer;
        serializer.ReadMeasurement(&buffer, dataset);
        QVERIFY2(timer.elapsed() < 10000, QByteArray::number(timer.elapsed()));
        QVERIFY(dataset.MeasureBlocks()->empty());
    }

    /// What is long in a record is not a tag.
    void longTextsAreNoLongTags()
    {
        const QByteArray row = "2024.03.01T10:11:12.5;1;2;3;4;5;6;7\n";
        const QByteArray rows = row.repeated(1000);
        const QByteArray inside = "<don't \"> ]] -- <![CDATA[";
        QByteArray text = record(
            "<!--" + inside.repeated(1000) + "--><measurements a='>'><comment><![CDATA[" +
            QByteArray("<!-- don't -->").repeated(1000) + "]]></comment><flux>" + rows + "<![CDATA[" + rows +
            "]]></flux></measurements><?" + QByteArray("x").repeated(1000) + "?><measurements/>");
        text.replace("-- <![", " <![");
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        CXMLResultsSerializer serializer;
        CDataSetMeasurement dataset(m_settings);
        QVERIFY(serializer.ReadMeasurement(&buffer, dataset));
        QCOMPARE(dataset.MeasureBlocks()->size(), size_t(2));
        QCOMPARE(dataset.MeasureBlocks()->at(0)->Results.size(),
                 2001); // with the one behind the last line end
    }

    void quotesOutsideOfTags()
    {
        const QByteArray rows = QByteArray("2024.03.01T10:11:12.5;1;2;3;4;5;6;7\n").repeated(1000);
        QByteArray text =
            record("<?note don't > \" ?><measurements><flux>" + rows + "</flux></measurements><?long " +
                   QByteArray("it's <").repeated(2000) + "?><measurements/>");
        const int root = text.indexOf("<Norvane");
        text.insert(root, "<?style it's?><!-- isn't \" --><!DOCTYPE b [<!ENTITY a \"x<y'>\">"
                          "<?in it's?><!-- isn't --><!ENTITY b '\"'>]>\n");
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        CXMLResultsSerializer serializer;
        CDataSetMeasurement dataset(m_settings);
        QVERIFY(serializer.ReadMeasurement(&buffer, dataset));
        QCOMPARE(dataset.MeasureBlocks()->size(), size_t(2));
        QCOMPARE(dataset.MeasureBlocks()->at(0)->Results.size(), 1001);
    }

    /// Each element would be looked up in all of them.
    void namespaceBomb()
    {
        QByteArray text = "<NorvaneXmlRecord ver=\"1.0\">";
        int name = 0;
        for (int depth = 0; depth < 200; ++depth) {
            text += "<a";
            for (int i = 0; i < 250; ++i)
                text += " xmlns:n" + QByteArray::number(name++, 36) + "=\"\"";
            text += '>';
        }
        text.replace("=\"\"", "=\"u\"");
        text += QByteArray("<b/>").repeated(1000000);
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        CXMLResultsSerializer serializer;
        CDataSetMeasurement dataset(m_settings);
        const CpuTimer timer;
        QVERIFY(serializer.ReadMeasurement(&buffer, dataset));
        QVERIFY2(timer.elapsed() < 10000, QByteArray::number(timer.elapsed()));
    }

    void separatorBombs_data()
    {
        QTest::addColumn<QByteArray>("separator");
        QTest::addColumn<QByteArray>("piece");
        const QByteArray letters(18, 'a');
        QTest::newRow("nested repetition") << QByteArray("d(a+)+b|;") << "1" + letters + ";";
        QTest::newRow("alternatives repeated") << QByteArray("d(?:a|a)*b|;") << "1" + letters + ";";
        QTest::newRow("look to the far end") << QByteArray("d(?=[^x]*+x)") << QByteArray("1");
        QTest::newRow("any to the far end") << QByteArray("d[^x]*+x") << QByteArray("1");
        QTest::newRow("counted repetition") << QByteArray("d.{1,60000}x") << QByteArray("1");
        QTest::newRow("call of its own group")
            << QByteArray("da\\g&lt;1>\\g&lt;1>b|;|a") << QByteArray("1aaaaaaaa;");
        QTest::newRow("grapheme") << QByteArray("X") << QByteArray("\xF0\x9F\x87\xA6");
        QTest::newRow("many alternatives") << QByteArray("x|").repeated(1900) + "x" << QByteArray("1");
    }

    /// The file says at which pattern its texts are cut.
    void separatorBombs()
    {
        QFETCH(QByteArray, separator);
        QFETCH(QByteArray, piece);
        QByteArray text = record("<headings colsep=\"" + separator + "\"/>" +
                                 measurementsWithFlux(piece.repeated(4000000 / piece.size())));
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        CXMLResultsSerializer serializer;
        CDataSetMeasurement dataset(m_settings);
        const CpuTimer timer;
        QVERIFY(serializer.ReadMeasurement(&buffer, dataset));
        QVERIFY2(timer.elapsed() < 10000, QByteArray::number(timer.elapsed()));
        QCOMPARE(dataset.MeasureBlocks()->size(), size_t(1));
        QCOMPARE(dataset.ResultsCount(), quint64(0));
    }

    void manyElementsOfOneKind_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("samples");
        QTest::newRow("texts of one block")
            << "<measurements>" + QByteArray("<flux>1</flux>").repeated(200000) + "</measurements>" << 200000;
        QTest::newRow("parameters") << QByteArray("<parameters/>").repeated(100000) << 0;
        QTest::newRow("blocks") << QByteArray("<measurements/>").repeated(100000) << 0;
    }

    void manyElementsOfOneKind()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, samples);
        QByteArray text = record(content);
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        CXMLResultsSerializer serializer;
        CDataSetMeasurement dataset(m_settings);
        const CpuTimer timer;
        QVERIFY(serializer.ReadMeasurement(&buffer, dataset));
        QVERIFY2(timer.elapsed() < 20000, QByteArray::number(timer.elapsed()));
        QCOMPARE(dataset.ResultsCount(), static_cast<quint64>(samples));
        QVERIFY(dataset.children().size() <= 1);
        if (samples > 0) {
            const auto& results = dataset.MeasureBlocks()->back()->Results;
            QCOMPARE(results.capacity(), results.size());
        }
    }

    void predefinedEntitiesDoNotCount()
    {
        QByteArray text = inRecord("", QByteArray("&lt;&amp;").repeated(10000));
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        CXMLResultsSerializer serializer;
        CDataSetMeasurement dataset(m_settings);
        QVERIFY(serializer.ReadMeasurement(&buffer, dataset));
        QCOMPARE(dataset.Comment(), QStringLiteral("<&").repeated(10000));
    }

private:
    static QByteArray inRecord(const QByteArray& declarations, const QByteArray& comment)
    {
        return declarations +
               "<NorvaneXmlRecord ver=\"1.0\"><body type=\"tQDR_BODY_KESTRIX\" ver=\"1.1\"><comment>" +
               comment + "</comment></body></NorvaneXmlRecord>";
    }

    void checkLarge(const QByteArray& head, GeneratedDevice::Generator body, int times)
    {
        GeneratedDevice device(head, kLarge, std::move(body));
        forgetPeakMemory();
        const qint64 before = peakMemory();
        CXMLResultsSerializer serializer;
        CDataSetMeasurement dataset(m_settings);
        const CpuTimer timer;
        serializer.ReadMeasurement(&device, dataset);
        const qint64 used = peakMemory() - before;
        qInfo("%lld ms, %lld MB", timer.elapsed(), used / 1000000);
        QVERIFY2(timer.elapsed() < 60000, QByteArray::number(timer.elapsed()));
        QVERIFY2(used < times * kLarge + kKeptBack, QByteArray::number(used));
    }

    CSettings m_settings{QString()};
};

QTEST_GUILESS_MAIN(tst_HostileRecords)
#include "tst_HostileRecords.moc"
