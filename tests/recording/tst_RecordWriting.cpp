// SPDX-License-Identifier: GPL-3.0-or-later
#include "CDataSetMapping.h"
#include "CDataSetMeasurement.h"
#include "CSettings.h"
#include "CXMLResultsSerializer.h"
#include "MetaObjectTable.h"
#include "RecordTestSupport.h"

#include <QDomDocument>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <clocale>

using namespace RecordTestSupport;

namespace {

/// Takes so many bytes and then no more.
class FullDevice : public QIODevice
{
public:
    explicit FullDevice(qint64 room) : m_room(room) { open(QIODevice::WriteOnly); }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 size) override
    {
        const qint64 taken = qMin(size, m_room);
        m_room -= taken;
        return taken > 0 || size == 0 ? taken : -1;
    }

private:
    qint64 m_room;
};

} // namespace

class tst_RecordWriting : public QObject
{
    Q_OBJECT

private slots:
    void init() { QObject::disconnect(&m_parameters, nullptr, &m_parameters, nullptr); }

    void serializerHasNoProperties()
    {
        VERIFY_NO_DIFFERENCE(MetaObjectTable::compareProperties(CResultsSerializer::staticMetaObject, {}));
        VERIFY_NO_DIFFERENCE(MetaObjectTable::compareProperties(CXMLResultsSerializer::staticMetaObject, {}));
    }

    void nothingIsWrittenWithoutBlocks()
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QVERIFY(!CXMLResultsSerializer().WriteMeasurement(CDataSetMeasurement(m_settings), &buffer));
        QVERIFY(!CXMLResultsSerializer().WriteMapping(CDataSetMapping(m_settings), &buffer));
        QVERIFY(buffer.data().isEmpty());
    }

    void measurementRecord()
    {
        CDataSetMeasurement dataset(m_settings);
        fillTexts(dataset);
        auto block = QSharedPointer<CMeasureBlock>::create();
        block->SetComment(QStringLiteral("first <block> & \"more\""));
        auto sample = sampleAt(timeAt(36672123), 123456789, 48.25F);
        sample->SetBBprime(-1);
        sample->SetBx(1.5F);
        sample->SetBy(2.5F);
        sample->SetBz(1e-7F);
        sample->SetTemperature(77);
        sample->SetDB(0.01F);
        block->Results = {sample, sampleAt(timeAt(36672123), 123456790, 2)};
        dataset.AddBlock(block);
        dataset.AddBlock(QSharedPointer<CMeasureBlock>::create());

        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        const QDateTime before = QDateTime::currentDateTime();
        QVERIFY(CXMLResultsSerializer().WriteMeasurement(dataset, &buffer));
        QVERIFY(buffer.isOpen());
        QVERIFY(buffer.data().startsWith(
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<NorvaneXmlRecord ver=\"1.0\">\n    <header>\n"));

        QDomDocument document;
        QVERIFY(document.setContent(buffer.data()));
        const QDomElement root = document.documentElement();
        QCOMPARE(childNames(root), QStringLiteral("header body"));
        const QDomElement header = root.firstChildElement();
        QCOMPARE(childNames(header), QStringLiteral("src dateTime8601 descr"));
        QCOMPARE(textOf(header, "src"), QStringLiteral("Kestrix v1.2.4"));
        QCOMPARE(textOf(header, "descr"), QStringLiteral("Magnetic Field Measurement File, Norvane"));
        const QDateTime saved =
            QDateTime::fromString(textOf(header, "dateTime8601"), QStringLiteral("yyyy.MM.ddTHH:mm:ss"));
        QVERIFY(saved.isValid() && qAbs(saved.secsTo(before)) <= 5);

        QVERIFY(buffer.data().contains("<body type=\"tQDR_BODY_KESTRIX\" ver=\"1.1\">"));
        const QDomElement body = root.lastChildElement();
        QCOMPARE(childNames(body), QStringLiteral("comment instrument dataset"));
        QCOMPARE(textOf(body, "comment"), QStringLiteral("overall"));
        QCOMPARE(textOf(body, "instrument"), QStringLiteral("Probe 7"));
        QVERIFY(buffer.data().contains("<dataset type=\"tQDR_DATASET_KESTRIX_MEASUREMENT\" ver=\"1.2\">"));
        const QDomElement inner = body.lastChildElement();
        QCOMPARE(childNames(inner), QStringLiteral("headings parameters measurements measurements"));
        QCOMPARE(inner.firstChildElement().attribute(QStringLiteral("colsep")), QStringLiteral(";"));
        QCOMPARE(textOf(inner, "headings"), QStringLiteral("Timestamp;B;B.B';Bx;By;Bz;Temp;dB"));
        QCOMPARE(
            textOf(inner, "parameters"),
            QStringLiteral(
                "Units=\u00b5T Range=0.1 AutoRange=1 TriggerMode=Continuous AcqRate=1000 DispRate=10 Avg=3 "
                "FreqMin=1.5 FreqMax=500 Bins=50 BlockSize=100"));
        const QDomElement measurements = inner.firstChildElement(QStringLiteral("measurements"));
        QCOMPARE(childNames(measurements), QStringLiteral("comment flux"));
        QCOMPARE(textOf(measurements, "comment"), block->Comment());
        QCOMPARE(textOf(measurements, "flux"),
                 QStringLiteral("2024.03.01T10:11:12.123456789;48.25;-1;1.5;2.5;1e-07;77;0.01\n"
                                "2024.03.01T10:11:12.123456790;2;0;0;0;0;0;0"));
        QCOMPARE(textOf(inner.lastChildElement(), "flux"), QString());
    }

    void mappingRecord()
    {
        CDataSetMapping dataset(m_settings);
        fillTexts(dataset);
        const auto block = blockOf<CMeasureBlockMapping>(1);
        block->Position.SetX(1.5);
        block->Position.SetY(-2);
        block->Position.SetZ(1234567);
        block->Orientation.SetRoll(90);
        block->Orientation.SetPitch(0.1);
        block->Orientation.SetYaw(-45);
        dataset.AddBlock(block);
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QVERIFY(CXMLResultsSerializer().WriteMapping(dataset, &buffer));
        QDomDocument document;
        QVERIFY(document.setContent(buffer.data()));
        const QDomElement root = document.documentElement();
        QCOMPARE(textOf(root.firstChildElement(), "descr"),
                 QStringLiteral("Magnetic Field Mapping File, Norvane"));
        const QDomElement inner = root.lastChildElement().lastChildElement();
        QCOMPARE(inner.attribute(QStringLiteral("type")), QStringLiteral("tQDR_DATASET_KESTRIX_MAPPING"));
        const QDomElement measurements = inner.lastChildElement();
        QCOMPARE(childNames(measurements), QStringLiteral("comment position orientation flux"));
        QCOMPARE(textOf(measurements, "position"), QStringLiteral("1.5;-2;1.23457e+06"));
        QCOMPARE(textOf(measurements, "orientation"), QStringLiteral("90;0.1;-45"));
        QVERIFY(buffer.data().contains("<position unit=\"\">"));
        QVERIFY(buffer.data().contains("<orientation unit=\"degree\">"));
    }

    void deviceThatDoesNotTakeAllIsAFailure_data()
    {
        QTest::addColumn<qint64>("room");
        for (const qint64 room : {0, 1, 100, 1000, 5000, 20000})
            QTest::addRow("%lld bytes", room) << room;
    }

    void deviceThatDoesNotTakeAllIsAFailure()
    {
        QFETCH(qint64, room);
        CDataSetMeasurement dataset(m_settings);
        for (int i = 0; i < 100; ++i)
            dataset.AddBlock(blockOf(10));
        FullDevice device(room);
        QVERIFY(!CXMLResultsSerializer().WriteMeasurement(dataset, &device));
        FullDevice roomyDevice(10000000);
        QVERIFY(CXMLResultsSerializer().WriteMeasurement(dataset, &roomyDevice));
    }

    void fullDiskIsAFailure_data()
    {
        QTest::addColumn<int>("blocks");
        QTest::newRow("fits a buffer") << 1;
        QTest::newRow("many buffers") << 500;
    }

    void fullDiskIsAFailure()
    {
        if (!QFile::exists(QStringLiteral("/dev/full")))
            QSKIP("this system has no /dev/full");
        QFETCH(int, blocks);
        CDataSetMeasurement dataset(m_settings);
        for (int i = 0; i < blocks; ++i)
            dataset.AddBlock(blockOf(10));
        QFile file(QStringLiteral("/dev/full"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(!CXMLResultsSerializer().WriteMeasurement(dataset, &file));
    }

    /// A text with one of them cannot be written, but the rest of it and of the record can.
    void charactersThatXmlLacksAreLeftOut_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("written");
        const auto with = [](ushort code) { return QStringLiteral("a%1b").arg(QChar(code)); };
        for (const ushort code :
             {0x1, 0x8, 0xB, 0xC, 0xE, 0x1F, 0xFFFE, 0xFFFF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF})
            QTest::addRow("U+%04X", code) << with(code) << QStringLiteral("ab");
        for (const ushort code : {0x9, 0xA, 0x20, 0x7F, 0xD7FF, 0xE000, 0xFFFD})
            QTest::addRow("kept U+%04X", code) << with(code) << with(code);
        QTest::newRow("zero") << with(0) << QStringLiteral("ab");
        const QString pair = QString::fromUcs4(U"\U0001F9F2", 1);
        QTest::newRow("kept pair") << pair << pair;
        QTest::newRow("half a pair behind a pair") << pair + pair.at(0) << pair;
        QTest::newRow("halves in the wrong order") << QString(pair.at(1)) + pair.at(0) << QString();
        QTest::newRow("lone half before a pair") << QString(pair.at(0)) + pair << pair;
    }

    void charactersThatXmlLacksAreLeftOut()
    {
        QFETCH(QString, text);
        QFETCH(QString, written);
        CDataSetMeasurement dataset(m_settings);
        dataset.SetComment(text);
        dataset.SetInstrumentName(text);
        for (int i = 0; i < 3; ++i) {
            dataset.AddBlock(blockOf(1));
            dataset.MeasureBlocks()->back()->SetComment(text);
        }
        QBuffer buffer;
        buffer.open(QIODevice::ReadWrite);
        QVERIFY(CXMLResultsSerializer().WriteMeasurement(dataset, &buffer));

        buffer.seek(0);
        CDataSetMeasurement readBack(m_settings);
        QVERIFY(CXMLResultsSerializer().ReadMeasurement(&buffer, readBack));
        QCOMPARE(readBack.Comment(), written);
        QCOMPARE(readBack.InstrumentName(), written);
        QCOMPARE(readBack.MeasureBlocks()->size(), size_t(3));
        QCOMPARE(readBack.MeasureBlocks()->back()->Comment(), written);
        QCOMPARE(readBack.ResultsCount(), quint64(3));
    }

    void numbersDoNotFollowTheLocale_data()
    {
        QTest::addColumn<bool>("isLocaleOfTheProcess");
        QTest::newRow("default of the toolkit") << false;
        QTest::newRow("of the process too") << true;
    }

    void numbersDoNotFollowTheLocale()
    {
        QFETCH(bool, isLocaleOfTheProcess);
        const QByteArray processBefore = std::setlocale(LC_ALL, nullptr);
        const auto restoreProcess = qScopeGuard([&] { std::setlocale(LC_ALL, processBefore.constData()); });
        if (isLocaleOfTheProcess && !std::setlocale(LC_ALL, "de_DE.UTF-8"))
            QSKIP("this system has no German locale");
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        CDataSetMapping dataset(m_settings);
        const auto block = blockOf<CMeasureBlockMapping>(1);
        block->Position.SetX(1.5);
        block->Results[0]->SetB(2.5F);
        dataset.AddBlock(block);
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        const bool isWritten = CXMLResultsSerializer().WriteMapping(dataset, &buffer);
        QLocale::setDefault(before);
        QVERIFY(isWritten);
        QVERIFY(buffer.data().contains(">1.5;0;0</position>"));
        QVERIFY(buffer.data().contains(";2.5;0;"));
    }

private:
    void fillTexts(CDataset& dataset)
    {
        m_parameters.SetUnits(CUnits::MICRO_TESLA);
        m_parameters.SetRange(0.1F);
        m_parameters.SetAutoRange(true);
        m_parameters.SetTriggerMode(CTrigger::CONTINUOUS);
        m_parameters.SetAcquisitionRate(1000);
        m_parameters.SetDisplayRate(10);
        m_parameters.SetAveraging(3);
        m_parameters.SetFrequencyMin(1.5);
        m_parameters.SetFrequencyMax(500);
        m_parameters.SetNumberOfBins(50);
        m_parameters.SetBlockSize(100);
        dataset.SetMeasurementParameters(&m_parameters);
        dataset.SetComment(QStringLiteral("overall"));
        dataset.SetInstrumentName(QStringLiteral("Probe 7"));
    }

    static QString childNames(const QDomElement& parent)
    {
        QStringList names;
        for (QDomElement child = parent.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement())
            names << child.tagName();
        return names.join(QLatin1Char(' '));
    }

    static QString textOf(const QDomElement& parent, const char* name)
    {
        return parent.firstChildElement(QLatin1String(name)).text();
    }

    CSettings m_settings{QString()};
    CMeasurementParameters m_parameters;
};

QTEST_GUILESS_MAIN(tst_RecordWriting)
#include "tst_RecordWriting.moc"
