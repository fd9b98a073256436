// SPDX-License-Identifier: GPL-3.0-or-later
#include "CRecordingManagerMapping.h"
#include "CRecordingManagerMeasure.h"
#include "CSettings.h"
#include "RecordTestSupport.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

using namespace RecordTestSupport;

namespace {

constexpr int kSamples = 120000;
constexpr int kBlockSize = 100;
constexpr qint64 kPeriodNs = 100003; // not a whole number of microseconds

/// The value to which six significant digits bring a number, ties away from zero. The C library writes the
/// exact digits, of which the seventh decides.
tFlux atSixDigits(tFlux value)
{
    char exact[128];
    std::snprintf(exact, sizeof exact, "%.70e", std::fabs(static_cast<double>(value)));
    const QByteArray digits = QByteArray(1, exact[0]) + QByteArray(exact + 2, 6);
    const int exponent = QByteArray(exact).split('e')[1].toInt();
    const int rounded = digits.left(6).toInt() + (digits[6] >= '5' ? 1 : 0);
    const QByteArray text = QByteArray::number(rounded) + 'e' + QByteArray::number(exponent - 5);
    return std::copysign(static_cast<tFlux>(std::strtod(text.constData(), nullptr)), value);
}

} // namespace

class tst_RecordRoundTrip : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_parameters.SetUnits(CUnits::MICRO_TESLA); }

    void fullMeasurement()
    {
        std::mt19937 random(1);
        std::uniform_real_distribution<float> mantissa(-10, 10);
        const auto randomValue = [&] {
            return mantissa(random) * std::pow(10.0F, static_cast<float>(random() % 20) - 10);
        };
        const QDateTime start(QDate(2024, 3, 1), QTime(23, 59, 55)); // goes over midnight

        CRecordingManagerMeasure writer(m_settings);
        writer.DataSet()->SetMeasurementParameters(&m_parameters);
        std::vector<QSharedPointer<CMeasureBlock>> blocks;
        for (int i = 0; i < kSamples; ++i) {
            if (i % kBlockSize == 0)
                blocks.push_back(QSharedPointer<CMeasureBlock>::create());
            const qint64 ns = i * kPeriodNs;
            auto sample =
                sampleAt(start.addMSecs(ns / 1000000), static_cast<quint32>(ns % 1000000000), randomValue());
            sample->SetBBprime(randomValue());
            sample->SetBx(randomValue());
            sample->SetBy(randomValue());
            sample->SetBz(randomValue());
            sample->SetDB(randomValue());
            sample->SetTemperature(static_cast<quint16>(random()));
            blocks.back()->Results.append(sample);
            blocks.back()->Bprime.SetX(1);
        }
        writer.ResetRecord();
        for (const auto& block : blocks)
            writer.AddMeasureBlock(block);
        writer.SetBodyComment(QStringLiteral("b\u00b5dy"));
        writer.StopRecord();
        const QString path = m_directory.filePath(QStringLiteral("round.qdr.xml"));
        writer.Save(path);
        QVERIFY(!writer.HasUnsavedData());

        CRecordingManagerMeasure reader(m_settings);
        QVERIFY(reader.Load(path));
        QCOMPARE(reader.NumBlocks(), kSamples / kBlockSize);
        QCOMPARE(reader.DataSet()->ResultsCount(), quint64(kSamples));
        QCOMPARE(reader.DataSet()->Comment(), QStringLiteral("b\u00b5dy"));
        for (size_t b = 0; b < blocks.size(); ++b) {
            const auto& read = *reader.DataSet()->MeasureBlocks()->at(b);
            QCOMPARE(read.Results.size(), kBlockSize);
            QCOMPARE(read.Bprime.X(), 0.0);
            for (int i = 0; i < kBlockSize; ++i) {
                const CFieldIntensityResult& was = *blocks[b]->Results[i];
                const CFieldIntensityResult& is = *read.Results[i];
                if (is.Timestamp != was.Timestamp || is.TimestampNanoseconds != was.TimestampNanoseconds)
                    QFAIL(qPrintable(QStringLiteral("time of sample %1 in block %2").arg(i).arg(b)));
                if (is.B() != atSixDigits(was.B()) || is.BBprime() != atSixDigits(was.BBprime()) ||
                    is.Bx() != atSixDigits(was.Bx()) || is.By() != atSixDigits(was.By()) ||
                    is.Bz() != atSixDigits(was.Bz()) || is.dB() != atSixDigits(was.dB()) ||
                    is.Temperature() != was.Temperature())
                    QFAIL(qPrintable(QStringLiteral("value of sample %1 in block %2").arg(i).arg(b)));
                QVERIFY(std::isnan(is.dBConverted()));
            }
        }

        // What has been read is written again to the same rows.
        const QString again = m_directory.filePath(QStringLiteral("again.qdr.xml"));
        reader.Save(again);
        QCOMPARE(rowsOf(again), rowsOf(path));
    }

    void handWrittenRecordOfAllColumns()
    {
        // Written with the C library only.
        const QString path = m_directory.filePath(QStringLiteral("hand.qdr.xml"));
        QByteArray flux;
        for (int i = 0; i < 1000; ++i) {
            char row[256];
            std::snprintf(row, sizeof row,
                          "%s2024.03.01T%02d:%02d:%02d.%09d;%.6g;%.6g;%.6g;%.6g;%.6g;%d;%.6g", i ? "\n" : "",
                          i / 3600, i / 60 % 60, i % 60, i * 999983, i * 0.25, i * -0.5, i * 1e-7, i * 1e7,
                          i + 0.125, i, i / 3.0);
            flux += row;
        }
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(record("<headings colsep=\";\"/>" + measurementsWithFlux(flux)));
        file.close();

        CRecordingManagerMeasure manager(m_settings);
        QVERIFY(manager.Load(path));
        const auto& results = manager.DataSet()->MeasureBlocks()->at(0)->Results;
        QCOMPARE(results.size(), 1000);
        for (int i = 0; i < 1000; ++i) {
            const CFieldIntensityResult& result = *results[i];
            const int ns = i * 999983;
            QCOMPARE(result.Timestamp,
                     QDateTime(QDate(2024, 3, 1), QTime(0, 0)).addMSecs(i * 1000LL + ns / 1000000));
            QCOMPARE(result.TimestampNanoseconds, static_cast<quint32>(ns));
            QCOMPARE(result.B(), static_cast<tFlux>(i * 0.25));
            QCOMPARE(result.BBprime(), static_cast<tFlux>(i * -0.5));
            QCOMPARE(result.Temperature(), static_cast<quint16>(i));
        }
        QCOMPARE(results[999]->By(), 9.99e9F);
        QCOMPARE(results[1]->Bx(), 1e-7F);
    }

    void mapping()
    {
        CRecordingManagerMapping writer(m_settings);
        writer.DataSet()->SetMeasurementParameters(&m_parameters);
        for (int i = 0; i < 5; ++i) {
            const auto block = blockOf<CMeasureBlockMapping>(3, 36000000 + i * 1000);
            block->Position.SetX(i + 0.5);
            block->Position.SetY(-i);
            block->Orientation.SetYaw(i * 10);
            block->SetRotAppliedOnMeasBlock(true);
            block->SetComment(QStringLiteral("point %1").arg(i));
            writer.AddMeasureBlock(block);
        }
        const QString path = m_directory.filePath(QStringLiteral("mapping.qdr.xml"));
        writer.Save(path);
        CRecordingManagerMapping reader(m_settings);
        QVERIFY(reader.Load(path));
        QCOMPARE(reader.NumBlocks(), 5);
        for (int i = 0; i < 5; ++i) {
            const CMeasureBlockMapping& block =
                *reader.DataSet()->MeasureBlocks()->at(static_cast<size_t>(i));
            QCOMPARE(block.Position.X(), i + 0.5);
            QCOMPARE(block.Position.Y(), double(-i));
            QCOMPARE(block.Orientation.Yaw(), i * 10.0);
            QVERIFY(!block.RotAppliedOnMeasBlock());
            QCOMPARE(block.Comment(), QStringLiteral("point %1").arg(i));
            QCOMPARE(block.Results.size(), 3);
        }
    }

private:
    static QByteArray rowsOf(const QString& path)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return QByteArrayLiteral("unreadable ") + path.toUtf8();
        const QByteArray all = file.readAll();
        return all.mid(all.indexOf("<headings"));
    }

    QTemporaryDir m_directory;
    CSettings m_settings{QString()};
    CMeasurementParameters m_parameters;
};

QTEST_GUILESS_MAIN(tst_RecordRoundTrip)
#include "tst_RecordRoundTrip.moc"
