// SPDX-License-Identifier: GPL-3.0-or-later
#include "CCSVResultsSerializer.h"
#include "CDataSetMapping.h"
#include "CDataSetMeasurement.h"
#include "CSettings.h"
#include "RecordTestSupport.h"

#include <QRegularExpression>
#include <QTextCodec>
#include <QtTest>

using namespace RecordTestSupport;

class tst_CCSVResultsSerializer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_parameters.SetUnits(CUnits::GAUSS);
        m_sample = sampleAt(timeAt(36672123), 123456789, 48.25F);
        m_sample->SetTemperature(7);
        m_sample->SetDB(0.5F);
    }

    void nothingWithoutBlocks()
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QVERIFY(!m_serializer.WriteMeasurement(CDataSetMeasurement(m_settings), &buffer));
        QVERIFY(!m_serializer.WriteMapping(CDataSetMapping(m_settings), &buffer));
        QVERIFY(buffer.data().isEmpty());
    }

    void measurement()
    {
        CDataSetMeasurement dataset(m_settings);
        fillTexts(dataset);
        for (int i = 0; i < 2; ++i) {
            auto block = QSharedPointer<CMeasureBlock>::create();
            block->SetComment(QStringLiteral("not written"));
            block->Results = {m_sample, m_sample};
            dataset.AddBlock(block);
        }
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QVERIFY(m_serializer.WriteMeasurement(dataset, &buffer));
        const QString row = QStringLiteral("2024.03.01T10:11:12.123456789;48.25;0;0;0;0;7;0.5");
        const QStringList lines{
            QStringLiteral("Timestamp;B;B.B';Bx;By;Bz;Temp;dB"), row, row, row, row, QString(), QString()};
        QCOMPARE(withoutTimeOfSave(buffer.data()),
                 head(QStringLiteral("Measurement")) + lines.join(QLatin1Char('\n')));
    }

    void mapping()
    {
        CDataSetMapping dataset(m_settings);
        fillTexts(dataset);
        for (int i = 0; i < 2; ++i) {
            auto block = QSharedPointer<CMeasureBlockMapping>::create();
            block->Position.SetX(1.5);
            block->Position.SetY(i);
            block->Position.SetZ(1234567);
            block->Orientation.SetRoll(-90);
            block->Orientation.SetYaw(0.1);
            block->Results = {m_sample};
            dataset.AddBlock(block);
        }
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QVERIFY(m_serializer.WriteMapping(dataset, &buffer));
        QString expected = head(QStringLiteral("Mapping"));
        for (int i = 0; i < 2; ++i)
            expected +=
                QStringLiteral("Position (x y z);1.5;%1;1.23457e+06\nOrientation (roll pitch yaw);-90;0;0.1\n"
                               "Timestamp;B;B.B';Bx;By;Bz;Temp;dB\n2024.03.01T10:11:12.123456789;48.25;0;0;0;"
                               "0;7;0.5\n\n")
                    .arg(i);
        QCOMPARE(withoutTimeOfSave(buffer.data()), expected);
    }

    void timeOfSaveIsLocalAndNow()
    {
        CDataSetMeasurement dataset(m_settings);
        dataset.AddBlock(blockOf(1));
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QVERIFY(m_serializer.WriteMeasurement(dataset, &buffer));
        const QString line = QString::fromUtf8(buffer.data()).section(QLatin1Char('\n'), 1, 1);
        QVERIFY(line.startsWith(QStringLiteral("Timestamp;")));
        const QRegularExpression form(QStringLiteral("^\\d{4}\\.\\d\\d\\.\\d\\dT\\d\\d:\\d\\d:\\d\\d$"));
        QVERIFY2(form.match(line.mid(10)).hasMatch(), qPrintable(line));
        const QDateTime time = QDateTime::fromString(line.mid(10), QStringLiteral("yyyy.MM.ddTHH:mm:ss"));
        QVERIFY(qAbs(time.secsTo(QDateTime::currentDateTime())) <= 5);
    }

    void nothingIsQuoted()
    {
        CDataSetMeasurement dataset(m_settings);
        dataset.SetComment(QStringLiteral("a;b\n\"c\""));
        dataset.AddBlock(blockOf(1));
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QVERIFY(m_serializer.WriteMeasurement(dataset, &buffer));
        QVERIFY(buffer.data().contains("\nComment;a;b\n\"c\"\nInstrument;\n"));
    }

    void deviceThatTakesNothingIsNotNoticed()
    {
        if (!QFile::exists(QStringLiteral("/dev/full")))
            QSKIP("this system has no /dev/full");
        CDataSetMeasurement dataset(m_settings);
        dataset.AddBlock(blockOf(1));
        QFile file(QStringLiteral("/dev/full"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(m_serializer.WriteMeasurement(dataset, &file));
    }

    void readsNothing()
    {
        CDataSetMeasurement measurement(m_settings);
        CDataSetMapping mapping(m_settings);
        QBuffer buffer;
        buffer.open(QIODevice::ReadOnly);
        QVERIFY(!m_serializer.ReadMeasurement(&buffer, measurement));
        QVERIFY(!m_serializer.ReadMapping(&buffer, mapping));
    }

private:
    void fillTexts(CDataset& dataset)
    {
        dataset.SetMeasurementParameters(&m_parameters);
        dataset.SetComment(QStringLiteral("overall"));
        dataset.SetInstrumentName(QStringLiteral("Probe 7"));
    }

    static QString head(const QString& kind)
    {
        return QStringLiteral(
                   "Source;Kestrix v1.2.4\nTimestamp;\nDescription;Magnetic Field %1 File, Norvane\n\n"
                   "Type;tQDR_BODY_KESTRIX\nVersion;1.0\nComment;overall\nInstrument;Probe 7\n\n"
                   "Parameters;Units=G;Range=0;AutoRange=0;TriggerMode=Immediate;AcqRate=0;DispRate=1;Avg=1;"
                   "FreqMin=0;"
                   "FreqMax=0;Bins=0;BlockSize=1\n\n")
            .arg(kind);
    }

    static QString withoutTimeOfSave(const QByteArray& data)
    {
        QStringList lines = QTextCodec::codecForLocale()->toUnicode(data).split(QLatin1Char('\n'));
        lines[1] = lines[1].section(QLatin1Char(';'), 0, 0) + QLatin1Char(';');
        return lines.join(QLatin1Char('\n'));
    }

    CSettings m_settings{QString()};
    CMeasurementParameters m_parameters;
    CCSVResultsSerializer m_serializer;
    QSharedPointer<CFieldIntensityResult> m_sample;
};

QTEST_GUILESS_MAIN(tst_CCSVResultsSerializer)
#include "tst_CCSVResultsSerializer.moc"
