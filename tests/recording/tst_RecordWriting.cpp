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

    void numbersDoNotFollowTheLocale()
    {
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
