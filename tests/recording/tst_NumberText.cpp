// SPDX-License-Identifier: GPL-3.0-or-later
#include "NumberText.h"

#include <QtTest>

#include <cmath>
#include <cstring>
#include <random>

namespace {

quint32 bitsOf(tFlux value)
{
    quint32 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

} // namespace

class tst_NumberText : public QObject
{
    Q_OBJECT

private slots:
    void floatsConvertLikeQString_data()
    {
        QTest::addColumn<QString>("text");
        for (const char* text : {"",
                                 "0",
                                 "-0",
                                 "-0.0",
                                 "1",
                                 "48.2",
                                 "-48.2",
                                 "+48.2",
                                 ".5",
                                 "5.",
                                 "-.5",
                                 "1e5",
                                 "1E5",
                                 "1e+5",
                                 "1e-5",
                                 "1e",
                                 "1e+",
                                 "e5",
                                 "1e22",
                                 "1e23",
                                 "1e38",
                                 "1e39",
                                 "-1e39",
                                 "1e-45",
                                 "1e-46",
                                 "1e400",
                                 "1e-400",
                                 "nan",
                                 "inf",
                                 "-inf",
                                 "NaN",
                                 "abc",
                                 "1abc",
                                 "1 ",
                                 " 1",
                                 "1,5",
                                 "1.2.3",
                                 "--1",
                                 "1-",
                                 "0x10",
                                 "1e5.5",
                                 "1e1000000",
                                 "1e0000001",
                                 "123456789012345",
                                 "1234567890123456",
                                 "0.000000000000000123",
                                 "0.1234567890123456",
                                 "999999999999999e22",
                                 "16777217",
                                 "16777219",
                                 "0.1",
                                 "3.4028235e38",
                                 "3.4028236e38",
                                 "1.17549435e-38",
                                 "1.4e-45",
                                 "1\n",
                                 "00001.5",
                                 "1e-22",
                                 "1e-23",
                                 "9007199254740993",
                                 "\xd9\xa1"})
            QTest::newRow(text) << QString::fromUtf8(text);
    }

    void floatsConvertLikeQString()
    {
        QFETCH(QString, text);
        QCOMPARE(bitsOf(toFluxValue(text)), bitsOf(text.toFloat()));
    }

    void manyFloatsConvertLikeQString()
    {
        std::mt19937 random(7);
        for (int i = 0; i < 200000; ++i) {
            const double value = std::ldexp(static_cast<double>(random()) - 2147483648.0,
                                            static_cast<int>(random() % 200) - 130);
            const QString text = QString::number(value, 'g', static_cast<int>(random() % 17) + 1);
            if (bitsOf(toFluxValue(text)) != bitsOf(text.toFloat()))
                QFAIL(qPrintable(text));
        }
    }

    void countsConvertLikeQString_data()
    {
        QTest::addColumn<QString>("text");
        for (const char* text : {"", "0", "7", "345", "9999", "10000", "65535", "65536", "-1", "+5", " 5",
                                 "5 ", "12a", "a12", "1.5", "0x1F", "007", "000000012", "1e3"})
            QTest::newRow(text) << QString::fromUtf8(text);
    }

    void countsConvertLikeQString()
    {
        QFETCH(QString, text);
        QCOMPARE(toCount(text), text.toUShort());
    }

    void badNumbersAreZero()
    {
        QCOMPARE(toFluxValue(u"abc"), 0.0F);
        QCOMPARE(toFluxValue(u""), 0.0F);
        QCOMPARE(toCount(u"65536"), quint16(0));
        QCOMPARE(toCount(u"-1"), quint16(0));
    }

    void plainDecimalStopsBehindTheNumber()
    {
        const QString text = QStringLiteral("-12.5e1;7");
        const QChar* position = text.constData();
        double value = 0;
        QVERIFY(readPlainDecimal(position, text.constData() + text.size(), value));
        QCOMPARE(value, -125.0);
        QCOMPARE(int(position - text.constData()), 7);
    }
};

QTEST_GUILESS_MAIN(tst_NumberText)
#include "tst_NumberText.moc"
