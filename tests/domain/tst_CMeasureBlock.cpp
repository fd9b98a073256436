// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeasureBlock.h"
#include "ExactDecimal.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <limits>

namespace {

const QString kSeparator = QStringLiteral(";");

QSharedPointer<CFieldIntensityResult> sample(const QDateTime& timestamp, quint32 nanoseconds)
{
    auto result = QSharedPointer<CFieldIntensityResult>::create();
    result->Timestamp = timestamp;
    result->TimestampNanoseconds = nanoseconds;
    return result;
}

QDateTime at(int year, int month, int day, int hour, int minute, int second, int ms = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second, ms));
}

QString timestampText(const QDateTime& timestamp, quint32 nanoseconds)
{
    CMeasureBlock block;
    block.Results.append(sample(timestamp, nanoseconds));
    return block.FormatBlockAsText(kSeparator).section(kSeparator, 0, 0);
}

/// Values of every size, with exact ties for six digits among them.
QVector<tFlux> manyValues()
{
    constexpr tFlux kInfinity = std::numeric_limits<tFlux>::infinity();
    QVector<tFlux> values{0.0F,
                          -0.0F,
                          std::numeric_limits<tFlux>::quiet_NaN(),
                          kInfinity,
                          -kInfinity,
                          std::numeric_limits<tFlux>::max(),
                          std::numeric_limits<tFlux>::lowest(),
                          std::numeric_limits<tFlux>::min(),
                          std::numeric_limits<tFlux>::denorm_min(),
                          2048.125F,
                          -2048.375F,
                          999999.5F,
                          99999.95F};
    for (int exponent = -45; exponent <= 38; ++exponent) {
        const auto power = static_cast<tFlux>(std::pow(10.0, exponent));
        for (const tFlux value :
             {power, power * 0.9999995F, power * 0.999999F, power * 1.5F, power * 1.234565F})
            values << value << std::nextafter(value, 0.0F) << std::nextafter(value, kInfinity) << -value;
    }
    QRandomGenerator random(99);
    for (int i = 0; i < 4000; ++i) {
        values << static_cast<tFlux>(std::ldexp(random.generateDouble() - 0.5, random.bounded(-148, 128)));
        values << static_cast<tFlux>(std::ldexp(random.bounded(1 << 24), -random.bounded(16)));
        values << static_cast<tFlux>((random.generateDouble() - 0.5) * 100);
    }
    while (values.size() % 6 != 0)
        values << 1.0F;
    return values;
}

} // namespace

class TestCMeasureBlock : public QObject
{
    Q_OBJECT

private slots:
    void asConstructed();
    void commentEmitsOnChange();
    void emptyBlock();
    void oneSample();
    void twoSamples();
    void separators();
    void timestamps();
    void headings();
    void numbersAgreeWithTheReference();
    void temperatures();
};

void TestCMeasureBlock::asConstructed()
{
    const CMeasureBlock block;
    QCOMPARE(block.Comment(), QString());
    QVERIFY(block.Results.isEmpty());
    QCOMPARE(block.Bprime.X(), 0.0);
    QCOMPARE(block.Bprime.Y(), 0.0);
    QCOMPARE(block.Bprime.Z(), 0.0);
}

void TestCMeasureBlock::commentEmitsOnChange()
{
    CMeasureBlock block;
    QSignalSpy changed(&block, &CMeasureBlock::CommentChanged);
    block.SetComment({});
    QCOMPARE(changed.size(), 0);
    block.SetComment(QStringLiteral("a"));
    block.SetComment(QStringLiteral("a"));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.takeFirst().at(0).toString(), QStringLiteral("a"));
}

void TestCMeasureBlock::emptyBlock()
{
    const CMeasureBlock block;
    QCOMPARE(block.FormatBlockAsText(kSeparator), QString());
    QCOMPARE(block.FormatBlockAsText({}), QString());
}

void TestCMeasureBlock::oneSample()
{
    CMeasureBlock block;
    block.Results.append(sample(at(2024, 2, 29, 1, 2, 3, 456), 456789012));
    CFieldIntensityResult& result = *block.Results.constFirst();
    result.SetB(48856.125F);
    result.SetBBprime(-0.5F);
    result.SetBx(1e-7F);
    result.SetBy(2048.125F);
    result.SetBz(0.1F);
    result.SetTemperature(65535);
    result.SetDB(12.25F);
    result.SetDBConverted(77.0F);
    QCOMPARE(block.FormatBlockAsText(kSeparator),
             QStringLiteral("2024.02.29T01:02:03.456789012;48856.1;-0.5;1e-07;2048.13;0.1;65535;12.25"));
}

void TestCMeasureBlock::twoSamples()
{
    CMeasureBlock block;
    block.Results.append(sample(at(2024, 1, 1, 0, 0, 0), 0));
    block.Results.append(sample(at(2024, 1, 1, 0, 0, 1), 999999999));
    const QString text = block.FormatBlockAsText(QStringLiteral(","));
    QCOMPARE(text.count(QLatin1Char('\n')), 1);
    QCOMPARE(text, QStringLiteral("2024.01.01T00:00:00.000000000,0,0,0,0,0,0,0\n"
                                  "2024.01.01T00:00:01.999999999,0,0,0,0,0,0,0"));
}

void TestCMeasureBlock::separators()
{
    CMeasureBlock block;
    block.Results.append(sample(at(2024, 1, 1, 0, 0, 0), 0));
    QCOMPARE(block.FormatBlockAsText(QStringLiteral(" | ")).count(QStringLiteral(" | ")), 7);
    QCOMPARE(block.FormatBlockAsText({}), QStringLiteral("2024.01.01T00:00:00.0000000000000000"));
}

void TestCMeasureBlock::timestamps()
{
    const QString midnight = QStringLiteral("2024.12.31T23:59:59.");
    QCOMPARE(timestampText(at(2024, 12, 31, 23, 59, 59), 5), midnight + QStringLiteral("000000005"));
    // Milliseconds of the date and time are not what counts.
    QCOMPARE(timestampText(at(2024, 12, 31, 23, 59, 59, 999), 0), midnight + QStringLiteral("000000000"));
    QCOMPARE(timestampText(at(1, 2, 3, 4, 5, 6), 70), QStringLiteral("0001.02.03T04:05:06.000000070"));
    QCOMPARE(timestampText(at(9999, 12, 31, 0, 0, 0), 0), QStringLiteral("9999.12.31T00:00:00.000000000"));
    QCOMPARE(timestampText({}, 5), QStringLiteral(".000000005"));
    const QDateTime utc(QDate(2024, 7, 1), QTime(12, 0), Qt::UTC);
    QCOMPARE(timestampText(utc, 1), QStringLiteral("2024.07.01T12:00:00.000000001"));
}

void TestCMeasureBlock::headings()
{
    QCOMPARE(CMeasureBlock::ColumnHeadings().join(QLatin1Char('|')),
             QStringLiteral("Timestamp|B|B.B'|Bx|By|Bz|Temp|dB"));
}

void TestCMeasureBlock::numbersAgreeWithTheReference()
{
    const QVector<tFlux> values = manyValues();
    QVERIFY(values.size() > 10000);
    CMeasureBlock block;
    QStringList expected;
    for (int i = 0; i < values.size(); i += 6) {
        block.Results.append(sample(at(2024, 1, 1, 0, 0, 0), 0));
        CFieldIntensityResult& result = *block.Results.constLast();
        result.SetB(values[i]);
        result.SetBBprime(values[i + 1]);
        result.SetBx(values[i + 2]);
        result.SetBy(values[i + 3]);
        result.SetBz(values[i + 4]);
        result.SetDB(values[i + 5]);
        for (int field = 0; field < 6; ++field)
            expected.append(ExactDecimal::general(static_cast<double>(values[i + field]), 6));
    }
    QStringList actual;
    const QStringList lines = block.FormatBlockAsText(kSeparator).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        const QStringList fields = line.split(kSeparator);
        QCOMPARE(fields.size(), 8);
        actual << fields.mid(1, 5) << fields[7];
    }
    QCOMPARE(actual.size(), expected.size());
    for (int i = 0; i < actual.size(); ++i)
        QCOMPARE(actual[i], expected[i]);
}

void TestCMeasureBlock::temperatures()
{
    CMeasureBlock block;
    block.Results.append(sample(at(2024, 1, 1, 0, 0, 0), 0));
    for (int temperature = 0; temperature <= 65535; temperature += 13) {
        block.Results.constFirst()->SetTemperature(static_cast<quint16>(temperature));
        QCOMPARE(block.FormatBlockAsText(kSeparator).section(kSeparator, 6, 6), QString::number(temperature));
    }
}

QTEST_APPLESS_MAIN(TestCMeasureBlock)
#include "tst_CMeasureBlock.moc"
