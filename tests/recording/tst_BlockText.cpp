// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeasureBlock.h"
#include "RecordTestSupport.h"

#include <QtTest>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

using namespace RecordTestSupport;

namespace {

/// The text of a number as it stands in the column of B.
QString numberInBlock(tFlux value)
{
    CMeasureBlock block;
    block.Results.append(sampleAt(timeAt(0), 0, value));
    return block.FormatBlockAsText(QStringLiteral(";")).section(QLatin1Char(';'), 1, 1);
}

tFlux fromBits(quint32 bits)
{
    tFlux value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

} // namespace

class tst_BlockText : public QObject
{
    Q_OBJECT

private slots:
    void emptyBlockIsEmptyText()
    {
        QCOMPARE(CMeasureBlock().FormatBlockAsText(QStringLiteral(";")), QString());
    }

    void columnsInOrder()
    {
        CMeasureBlock block;
        auto sample = sampleAt(QDateTime(QDate(2024, 3, 1), QTime(10, 11, 12, 999)), 5);
        sample->SetB(48.2F);
        sample->SetBBprime(47.5F);
        sample->SetBx(-1.25F);
        sample->SetBy(0);
        sample->SetBz(1234567);
        sample->SetTemperature(65535);
        sample->SetDB(0.000012345F);
        block.Results.append(sample);
        QCOMPARE(block.FormatBlockAsText(QStringLiteral(" , ")),
                 QStringLiteral("2024.03.01T10:11:12.000000005 , 48.2 , 47.5 , -1.25 , 0 , 1.23457e+06 , "
                                "65535 , 1.2345e-05"));
        block.Results.append(sampleAt(QDateTime(), 0));
        const QString two = block.FormatBlockAsText(QStringLiteral(";"));
        QCOMPARE(two.count(QLatin1Char('\n')), 1);
        QCOMPARE(two.section(QLatin1Char('\n'), 1), QStringLiteral(".000000000;1;0;0;0;0;0;0"));
    }

    void timestamps_data()
    {
        QTest::addColumn<QDateTime>("time");
        QTest::newRow("midnight") << QDateTime(QDate(1999, 12, 31), QTime(0, 0));
        QTest::newRow("last second") << QDateTime(QDate(2000, 2, 29), QTime(23, 59, 59, 999));
        QTest::newRow("small year") << QDateTime(QDate(7, 1, 2), QTime(3, 4, 5), Qt::UTC);
        QTest::newRow("large year") << QDateTime(QDate(12345, 1, 2), QTime(3, 4, 5), Qt::UTC);
        QTest::newRow("before the era") << QDateTime(QDate(-44, 3, 15), QTime(12, 0, 0), Qt::UTC);
        QTest::newRow("with offset") << QDateTime(QDate(2024, 3, 1), QTime(12, 0), Qt::OffsetFromUTC, 3600);
        QTest::newRow("invalid") << QDateTime();
    }

    void timestamps()
    {
        QFETCH(QDateTime, time);
        CMeasureBlock block;
        block.Results.append(sampleAt(time, 123456789));
        QCOMPARE(block.FormatBlockAsText(QStringLiteral(";")).section(QLatin1Char(';'), 0, 0),
                 time.toString(QStringLiteral("yyyy.MM.ddTHH:mm:ss")) + QStringLiteral(".123456789"));
    }

    void numbersGiveTheTextOfQString_data()
    {
        QTest::addColumn<float>("value");
        for (const tFlux value : {0.0F,
                                  -0.0F,
                                  1.0F,
                                  -1.0F,
                                  0.1F,
                                  2048.125F,
                                  2048.375F,
                                  -2048.125F,
                                  0.5F,
                                  999999.5F,
                                  999999.4F,
                                  1e6F,
                                  1e5F,
                                  999999.0F,
                                  9999995.0F,
                                  1e-4F,
                                  9.9999996e-5F,
                                  1e-5F,
                                  1.5e-5F,
                                  1e-11F,
                                  9.9e-12F,
                                  1e12F,
                                  9.99999e11F,
                                  16777216.0F,
                                  8388608.5F,
                                  0.0001F,
                                  0.00012345F,
                                  123456.5F,
                                  123457.5F,
                                  65504.0F,
                                  1e-38F,
                                  1e-45F,
                                  3.4028235e38F,
                                  1e-10F,
                                  1e10F,
                                  1e11F,
                                  std::numeric_limits<float>::quiet_NaN(),
                                  std::numeric_limits<float>::infinity(),
                                  -std::numeric_limits<float>::infinity()})
            QTest::addRow("%.9g", static_cast<double>(value)) << value;
    }

    void numbersGiveTheTextOfQString()
    {
        QFETCH(float, value);
        QCOMPARE(numberInBlock(value), QString::number(static_cast<double>(value), 'g', 6));
    }

    /// Every exponent, with mantissas at both ends and at random.
    void manyNumbersGiveTheTextOfQString()
    {
        std::mt19937 random(20240301);
        for (quint32 exponent = 0; exponent < 256; ++exponent) {
            for (int i = 0; i < 400; ++i) {
                quint32 mantissa = random() & 0x7fffffU;
                if (i < 4)
                    mantissa = static_cast<quint32>(i);
                else if (i < 8)
                    mantissa = 0x7fffffU - static_cast<quint32>(i - 4);
                const tFlux value = fromBits((exponent << 23) | mantissa | (random() & 0x80000000U));
                const QString expected = QString::number(static_cast<double>(value), 'g', 6);
                const QString text = numberInBlock(value);
                if (text != expected)
                    QFAIL(qPrintable(QStringLiteral("%1 instead of %2").arg(text, expected)));
            }
        }
    }

    /// Decimal ties: six digits and a half exactly.
    void tiesRoundAwayFromZero()
    {
        for (int i = 100000; i < 110000; ++i) {
            const tFlux value = static_cast<tFlux>(i) + 0.5F;
            QCOMPARE(numberInBlock(value), QString::number(i + 1));
            QCOMPARE(numberInBlock(-value), QString::number(-i - 1));
        }
    }
};

QTEST_GUILESS_MAIN(tst_BlockText)
#include "tst_BlockText.moc"
