// SPDX-License-Identifier: GPL-3.0-or-later
#include "CBoardDecoder.h"
#include "CLineSplitter.h"
#include "CSampleQueue.h"

#include <QTest>

#include <cmath>

class tst_CBoardDecoder : public QObject
{
    Q_OBJECT

private slots:
    void splitter()
    {
        using Lines = QList<QByteArray>;
        CLineSplitter splitter;
        QCOMPARE(splitter.Feed("X: 1\r\nX"), (Lines{"X: 1"}));
        QVERIFY(splitter.HasPartialLine());
        QCOMPARE(splitter.Feed(": 2\n\n"), (Lines{"X: 2"}));
        QVERIFY(!splitter.HasPartialLine());
        // An end in two pieces, and byte by byte.
        QCOMPARE(splitter.Feed("a\r") + splitter.Feed("\nb\n"), (Lines{"a", "b"}));
        Lines lines;
        for (const char c : {'c', 'd', '\r', '\n', 'e', '\n'})
            lines += splitter.Feed(QByteArray(1, c));
        QCOMPARE(lines, (Lines{"cd", "e"}));
        splitter.Feed("lost he");
        splitter.Interrupt();
        QVERIFY(!splitter.HasPartialLine());
        QCOMPARE(splitter.Feed("re\nwhole\n"), (Lines{"whole"}));
        splitter.Interrupt();
        splitter.BeginLine();
        QCOMPARE(splitter.Feed("whole\n"), (Lines{"whole"}));
        // A line of the greatest length, and one that is longer, in pieces and at once.
        const QByteArray longest(CLineSplitter::kMaxLineLength, 'x');
        QCOMPARE(splitter.Feed(longest + '\n'), (Lines{longest}));
        QCOMPARE(splitter.Feed(longest), Lines());
        QCOMPARE(splitter.Feed("y\nz\n"), (Lines{"z"}));
        QCOMPARE(splitter.Feed(longest + longest + "\nz\n"), (Lines{"z"}));
        QCOMPARE(splitter.Feed(QByteArray("\x00\xFF\n", 3)), (Lines{QByteArray("\x00\xFF", 2)}));
        QCOMPARE(splitter.Feed({}), Lines());
    }

    void decoder()
    {
        constexpr qint64 kMs = 1000000;
        // The unit of the lines goes before that of the settings, and all samples have one.
        CBoardDecoder decoder(CUnits::GAUSS, 2, {});
        QVector<BoardSample> samples;
        for (int i = 0; i < 100; ++i) {
            const QByteArray line = i < 95 ? "\nX: 1 Y: -2 Z: 3 uT" : "\nX: 0.001 Y: 0.002 Z: 0.003 mT";
            samples += decoder.Feed(line, (1000 + 10 * i) * kMs);
        }
        QCOMPARE(decoder.Unit(), CUnits::MICRO_TESLA);
        QVERIFY(decoder.IsSettled());
        QVERIFY(std::abs(decoder.Rate() - 100) < 1e-6);
        QVERIFY(samples.size() > 20);
        QCOMPARE(samples.first().field.y, -4.0);
        QCOMPARE(samples.first().step, 2.0);
        QVERIFY(std::isnan(samples.first().temperature));
        QVERIFY(std::abs(samples.last().field.x - 2) < 1e-12);
        QVERIFY(std::abs(samples.last().step - 2) < 1e-12);

        // A line that stops half-way for long is not continued by what comes then.
        CBoardDecoder cut(CUnits::GAUSS, 1, {});
        cut.Feed("\n1,2,3\n1,2,", 0);
        QVERIFY(cut.HasReadings());
        cut.Feed("7,8,9\n", 600 * kMs);
        QCOMPARE(cut.RejectedLines(), 0);
        cut.Feed("1,2,", 610 * kMs);
        cut.Feed("7,8,9\n", 620 * kMs);
        QCOMPARE(cut.RejectedLines(), 1);
        QCOMPARE(cut.Unit(), CUnits::GAUSS);

        // The first line is whole if it ends a silence.
        CBoardDecoder header(CUnits::UNKNOWN, 1, {});
        header.Begin(0);
        header.Feed("z (nT),y (nT),x (nT)\n1,2,3\n", 60 * kMs);
        QVERIFY(header.HasReadings());
        QCOMPARE(header.Unit(), CUnits::NANO_TESLA);
        CBoardDecoder late(CUnits::UNKNOWN, 1, {});
        late.Begin(0);
        late.Feed("z (nT),y (nT),x (nT)\n1,2,3\n", 40 * kMs);
        QCOMPARE(late.Unit(), CUnits::UNKNOWN);
    }

    // A unit that stood in the lines is not believed of those that name none any more.
    void unitThatIsNotToldAnyMore_data()
    {
        QTest::addColumn<CUnits::UnitType>("told");
        QTest::addColumn<int>("numAfter");
        QTest::addColumn<double>("x");
        QTest::newRow("nor in the settings") << CUnits::UNKNOWN << 0 << 5.0;
        // 5 mG are 0.5 uT. Four such lines tell that it is meant, the first three are lost.
        QTest::newRow("but in the settings") << CUnits::MILLI_GAUSS << 17 << 0.5;
    }
    void unitThatIsNotToldAnyMore()
    {
        QFETCH(CUnits::UnitType, told);
        QFETCH(int, numAfter);
        QFETCH(double, x);
        constexpr qint64 kPeriodNs = 10000000;
        CBoardDecoder decoder(told, 1, {});
        for (int i = 0; i < 100; ++i)
            decoder.Feed("\nX: 5 Y: 0 Z: 1 uT", i * kPeriodNs);
        QVERIFY(decoder.IsSettled());
        QVERIFY(!decoder.Feed("\n", 100 * kPeriodNs).isEmpty());
        QVector<BoardSample> samples;
        for (int i = 101; i < 121; ++i)
            samples += decoder.Feed("X: 5 Y: 0 Z: 1\n", i * kPeriodNs);
        QCOMPARE(samples.size(), numAfter);
        if (numAfter > 0)
            QVERIFY(std::abs(samples.last().field.x - x) < 1e-12);
        QVERIFY(!decoder.Feed("X: 5 Y: 0 Z: 1 uT\n", 122 * kPeriodNs).isEmpty());
    }

    // Four columns whose first grows for two seconds, but not as a clock does.
    void fieldThatGrowsIsNoClock()
    {
        constexpr qint64 kPeriodNs = 10000000;
        CBoardDecoder decoder(CUnits::MICRO_TESLA, 1, {});
        QVector<BoardSample> samples;
        for (int i = 0; i < 300; ++i) {
            const QByteArray x = QByteArray::number(i < 200 ? 40 + 0.1 * i : 80 - 0.1 * i);
            samples += decoder.Feed('\n' + x + ",2,3,21.5", i * kPeriodNs);
        }
        QVERIFY(decoder.IsSettled());
        QVERIFY(!decoder.UsesDeviceTime());
        QVERIFY(samples.size() > 100);
        QCOMPARE(samples.first().field.y, 2.0);
        QCOMPARE(samples.first().temperature, 21.5);
        QVERIFY(std::abs(samples.last().field.x - 50.2) < 1e-9);
        QVERIFY(std::abs(decoder.Rate() - 100) < 1e-6);
    }

    void queue()
    {
        CSampleQueue queue;
        QVERIFY(queue.Take(5, 1).isEmpty());
        QVector<BoardSample> samples(3);
        samples[0].timeNs = 1;
        samples[1].timeNs = 2;
        samples[2].timeNs = 3;
        queue.Push(samples);
        QCOMPARE(queue.Take(2, 1).size(), 2);
        QCOMPARE(queue.Take(2, 1).first().timeNs, 3);
        queue.Push(samples);
        queue.Clear();
        QVERIFY(queue.Take(5, 1).isEmpty());
        // The newest are kept.
        queue.Push(QVector<BoardSample>(CSampleQueue::kMaxSamples));
        queue.Push(samples);
        const QVector<BoardSample> left = queue.Take(2 * CSampleQueue::kMaxSamples, 1);
        QVERIFY(left.size() <= CSampleQueue::kMaxSamples);
        QCOMPARE(left.last().timeNs, 3);
    }
};

QTEST_APPLESS_MAIN(tst_CBoardDecoder)
#include "tst_CBoardDecoder.moc"
