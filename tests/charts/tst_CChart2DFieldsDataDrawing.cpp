// SPDX-License-Identifier: GPL-3.0-or-later
// The published table and the Y axis, against hand-made values and against ReferenceDrawing over random data.
#include "ChartFixtures.h"
#include "ReferenceDrawing.h"

#include <QTest>

#include <limits>
#include <random>

namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr qint64 kMillisecond = 1000000;

/// Equal as numbers, or both not a number.
template <class Number> bool same(Number a, Number b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

/// A result in each millisecond, all fields equal to the value.
QVector<QSharedPointer<CFieldIntensityResult>> evenResults(const std::vector<float>& values)
{
    QVector<QSharedPointer<CFieldIntensityResult>> results;
    for (const float value : values)
        results.append(makeResult(results.size() * kMillisecond, {value, value, value, value, value, 0.0F}));
    return results;
}

} // namespace

class tst_CChart2DFieldsDataDrawing : public QObject
{
    Q_OBJECT

private slots:
    void noResult();
    void oneResult();
    void oneResultOfANewChartWithoutAutoScaling();
    void rowsByLength_data();
    void rowsByLength();
    void lastSampleOf402IsLost();
    void bucketSkipsItsEnd();
    void everySeriesKeepsItsOwnPeak();
    void tiesKeepTheEarlier();
    void distanceIsSinglePrecision();
    void invertedWindow();
    void windowPastTheFilteredHistory();
    void notANumberNeverWins();
    void leadingNotANumberStays();
    void hiddenSeriesDoNotCount();
    void allHidden();
    void flatSignal();
    void recoveryFromFlatSignal();
    void manualScaling();
    void extremesOnlyWiden();
    void smallestFloatAsLargestValue();
    void equalsReference_data();
    void equalsReference();

private:
    CMeasurementParameters m_parameters;
};

void tst_CChart2DFieldsDataDrawing::noResult()
{
    PlainChart chart(&m_parameters);
    chart.SetYmin(-5.0);
    chart.SetYmax(5.0);
    chart.SetDownsampledSignalLength(7);
    chart.UpdateDownsampling();
    QCOMPARE(chart.DownsampledSignalLength(), 0);
    QCOMPARE(chart.Ymin(), -5.0);
    QCOMPARE(chart.Ymax(), 5.0);
    QCOMPARE(chart.FirstDataInit(), false);
}

void tst_CChart2DFieldsDataDrawing::oneResult()
{
    PlainChart chart(&m_parameters);
    chart.add({makeResult(0, {50.0F, 49.0F, 1.0F, -2.0F, 3.0F, 0.5F})});
    chart.SetYminMaxReseted(false);
    chart.UpdateDownsampling();
    QCOMPARE(chart.DownsampledSignalLength(), 2);
    QCOMPARE(chart.rowCount(), 2);
    QCOMPARE(xValue(chart, 0), 0.0);
    QCOMPARE(xValue(chart, 1), 0.1);
    const QVector<float> expected{50.0F, 49.0F, 1.0F, -2.0F, 3.0F, 49.5F, 50.5F};
    for (int series = 0; series < 7; ++series) {
        QCOMPARE(seriesValue(chart, 0, series), expected[series]);
        QCOMPARE(seriesValue(chart, 1, series), expected[series]);
    }
    QVERIFY(chart.YminMaxReseted());
    QVERIFY(chart.FirstDataInit());
    // -2 to 50.5: tick 5, axis -5 to 55
    QCOMPARE(chart.Ymin(), -5.0);
    QCOMPARE(chart.Ymax(), 55.0);
    QCOMPARE(chart.YTickCount(), 7); // 13 ticks halve
    QCOMPARE(chart.YminAllSignal(), -5.0);
    QCOMPARE(chart.YmaxAllSignal(), 55.0);
}

void tst_CChart2DFieldsDataDrawing::oneResultOfANewChartWithoutAutoScaling()
{
    PlainChart chart(&m_parameters);
    chart.SetAutoScaling(false);
    chart.add({makeResult(0, {50.0F, 49.0F, 1.0F, -2.0F, 3.0F, 0.5F})});
    chart.UpdateDownsampling();
    // Two rows are more than one
    QCOMPARE(chart.YminMaxReseted(), false);
    QCOMPARE(chart.Ymin(), -5.0);
    QCOMPARE(chart.Ymax(), 55.0);
}

void tst_CChart2DFieldsDataDrawing::rowsByLength_data()
{
    QTest::addColumn<int>("results");
    QTest::addColumn<int>("rows");
    QTest::addColumn<double>("lastX");
    QTest::newRow("2") << 2 << 2 << 0.001;
    QTest::newRow("3") << 3 << 3 << 0.002;
    QTest::newRow("400") << 400 << 400 << 0.399;
    QTest::newRow("401: every sample") << 401 << 401 << 0.400;
    QTest::newRow("402: one sample short") << 402 << 401 << 0.400;
    // span 402, step 402 / 401: row 400 ends at round(400.9975)
    QTest::newRow("403") << 403 << 401 << 0.401;
    // span 802, step 2: row 400 ends at 800
    QTest::newRow("803: step 2") << 803 << 401 << 0.800;
}

void tst_CChart2DFieldsDataDrawing::rowsByLength()
{
    QFETCH(int, results);
    QFETCH(int, rows);
    QFETCH(double, lastX);
    std::vector<float> values;
    for (int i = 0; i < results; ++i)
        values.push_back(static_cast<float>(i));
    PlainChart chart(&m_parameters);
    chart.add(evenResults(values));
    chart.showAll();
    chart.UpdateDownsampling();
    QCOMPARE(chart.DownsampledSignalLength(), rows);
    QVERIFY(std::abs(xValue(chart, rows - 1) - lastX) < 1e-6);
    QCOMPARE(xValue(chart, 0), 0.0);
    QCOMPARE(seriesValue(chart, 0, 0), 0.0F);
}

void tst_CChart2DFieldsDataDrawing::lastSampleOf402IsLost()
{
    std::vector<float> values(402, 1.0F);
    values.back() = 99.0F;
    values.front() = 0.0F;
    PlainChart chart(&m_parameters);
    chart.add(evenResults(values));
    chart.showAll();
    chart.UpdateDownsampling();
    for (int row = 0; row < 401; ++row)
        QVERIFY(seriesValue(chart, row, 0) < 99.0F);
    // Nor does it count for the axis
    QVERIFY(chart.YmaxAllSignal() < 99.0);
}

void tst_CChart2DFieldsDataDrawing::bucketSkipsItsEnd()
{
    // Step 2: bucket of row i is the sample 2i - 1 alone, sample 2i is its end
    std::vector<float> values(803, 0.0F);
    for (std::size_t i = 2; i < values.size(); i += 2)
        values[i] = 100.0F;
    values[1] = 7.0F;
    PlainChart chart(&m_parameters);
    chart.add(evenResults(values));
    chart.showAll();
    chart.UpdateDownsampling();
    QCOMPARE(seriesValue(chart, 1, 0), 7.0F);
    QVERIFY(std::abs(xValue(chart, 1) - 0.002) < 1e-6);
    for (int row = 2; row < 401; ++row)
        QCOMPARE(seriesValue(chart, row, 0), 0.0F);
    QCOMPARE(chart.YmaxAllSignal(), 7.0);
}

void tst_CChart2DFieldsDataDrawing::everySeriesKeepsItsOwnPeak()
{
    // 2406 results, step 2405 / 401 = 5.9975...: row 1 ends at 6, its bucket is samples 1 to 5
    QVector<QSharedPointer<CFieldIntensityResult>> results;
    for (int i = 0; i < 2406; ++i)
        results.append(makeResult(i * kMillisecond, {0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F}));
    results[1]->SetBx(-3.0F);
    results[2]->SetBx(2.0F);
    results[3]->SetB(5.0F);
    results[5]->SetBy(-1.0F);
    results[6]->SetBz(9.0F);
    PlainChart chart(&m_parameters);
    chart.add(results);
    chart.showAll();
    chart.UpdateDownsampling();
    QCOMPARE(seriesValue(chart, 1, 0), 5.0F);
    QCOMPARE(seriesValue(chart, 1, 2), -3.0F);
    QCOMPARE(seriesValue(chart, 1, 3), -1.0F);
    QCOMPARE(seriesValue(chart, 1, 4), 0.0F);
    QCOMPARE(seriesValue(chart, 1, 5), 5.0F);
    QVERIFY(std::abs(xValue(chart, 1) - 0.006) < 1e-6);
    // Distance is from the value drawn before: at row 2 the quiet 0 is 5 away from B's peak
    QCOMPARE(seriesValue(chart, 2, 0), 0.0F);
}

void tst_CChart2DFieldsDataDrawing::tiesKeepTheEarlier()
{
    std::vector<float> values(2406, 0.0F);
    values[2] = -4.0F;
    values[4] = 4.0F;
    PlainChart chart(&m_parameters);
    chart.add(evenResults(values));
    chart.showAll();
    chart.UpdateDownsampling();
    QCOMPARE(seriesValue(chart, 1, 0), -4.0F);
}

/// 2^24 - 1 and 2^24 - 0 differ by one, which the distance from -0.5 cannot hold.
void tst_CChart2DFieldsDataDrawing::distanceIsSinglePrecision()
{
    std::vector<float> values(2406, -0.5F);
    values[1] = 16777215.0F;
    values[2] = 16777216.0F;
    PlainChart chart(&m_parameters);
    chart.add(evenResults(values));
    chart.showAll();
    chart.UpdateDownsampling();
    // |-0.5 - 16777215| rounds to 16777216 and so does |-0.5 - 16777216|: the earlier one stays
    QCOMPARE(seriesValue(chart, 1, 0), 16777215.0F + 0.0F);
}

void tst_CChart2DFieldsDataDrawing::invertedWindow()
{
    std::vector<float> values;
    for (int i = 0; i < 50; ++i)
        values.push_back(static_cast<float>(i));
    PlainChart chart(&m_parameters);
    chart.add(evenResults(values));
    chart.SetYTickCount(4);
    chart.SetXmin(0.0305);
    chart.SetXmax(0.0095);
    chart.SetYminMaxReseted(false);
    chart.UpdateDownsampling();
    // lower 30, upper 10
    QCOMPARE(chart.DownsampledSignalLength(), -19);
    QCOMPARE(chart.FirstDataInit(), true);
    QCOMPARE(chart.Ymin(), 0.001);
    QCOMPARE(chart.Ymax(), 10.0);
    QCOMPARE(chart.YTickCount(), 11);
    QCOMPARE(chart.YminMaxReseted(), true);
    QVERIFY(!chart.index(0, 0).isValid());
    // Between two samples: lower 10, upper 11, two rows; the inverse gives lower 11, upper 10: length 0
    chart.SetXmin(0.0112);
    chart.SetXmax(0.0098);
    chart.UpdateDownsampling();
    QCOMPARE(chart.DownsampledSignalLength(), 0);
    QCOMPARE(chart.rowCount(), 0);
}

/// A derived class may hold fewer filtered results than time stamps.
void tst_CChart2DFieldsDataDrawing::windowPastTheFilteredHistory()
{
    class Lagging : public PlainChart
    {
    public:
        using PlainChart::PlainChart;
        void UpdateFilter() override
        {
            while (History().Filtered().size() < 3)
                History().AppendFiltered(History().Raw()[History().Filtered().size()]);
        }
    } chart(&m_parameters);
    chart.add(evenResults({1, 2, 3, 4, 5, 6}));
    chart.SetXmin(0.0035);
    chart.SetXmax(0.0055);
    chart.SetYmax(77.0);
    chart.UpdateDownsampling();
    QCOMPARE(chart.DownsampledSignalLength(), 0);
    QCOMPARE(chart.Ymax(), 77.0);
}

void tst_CChart2DFieldsDataDrawing::notANumberNeverWins()
{
    std::vector<float> values(2406, 1.0F);
    values[1] = 2.0F;
    values[3] = kNan;
    PlainChart chart(&m_parameters);
    chart.add(evenResults(values));
    chart.showAll();
    chart.UpdateDownsampling();
    QCOMPARE(seriesValue(chart, 1, 0), 2.0F);
    QCOMPARE(chart.YmaxAllSignal(), 2.0);
}

/// A bucket without numbers is drawn as such, and leaves the next one without a distance to choose by.
void tst_CChart2DFieldsDataDrawing::leadingNotANumberStays()
{
    std::vector<float> values(2406, 1.0F);
    std::fill(values.begin() + 7, values.begin() + 12, kNan); // bucket of row 2
    values[13] = 2.0F;                                        // bucket of row 3 begins
    values[14] = 40.0F;
    values[19] = kNan; // bucket of row 4 begins
    values[20] = 5.0F;
    PlainChart chart(&m_parameters);
    chart.add(evenResults(values));
    chart.showAll();
    chart.UpdateDownsampling();
    QVERIFY(std::isnan(seriesValue(chart, 2, 0)));
    QCOMPARE(seriesValue(chart, 3, 0), 2.0F);
    QCOMPARE(seriesValue(chart, 4, 0), 5.0F);
    QCOMPARE(chart.YmaxAllSignal(), 40.0);
}

void tst_CChart2DFieldsDataDrawing::hiddenSeriesDoNotCount()
{
    PlainChart chart(&m_parameters);
    chart.add({makeResult(0, {100, 90, 1, 2, 3, 1}), makeResult(kMillisecond, {100, 90, 11, 2, 3, 1})});
    chart.showAll();
    for (const int series : {0, 1, 5, 6})
        chart.setComponantVisibility(series, false, false);
    QCOMPARE(chart.DownsampledSignalLength(), 0);
    chart.setComponantVisibility(4, true);
    QCOMPARE(chart.DownsampledSignalLength(), 2);
    QCOMPARE(chart.Ymin(), 1.0);
    QCOMPARE(chart.Ymax(), 11.0);
    QCOMPARE(chart.YmaxAllSignal(), 11.0);
    // The table holds the hidden ones all the same
    QCOMPARE(seriesValue(chart, 1, 0), 100.0F);
    chart.setComponantVisibility(7, true);
    chart.setComponantVisibility(-1, false);
    QCOMPARE(chart.Ymax(), 11.0);
}

void tst_CChart2DFieldsDataDrawing::allHidden()
{
    PlainChart chart(&m_parameters);
    chart.add(evenResults({-50.0F, 50.0F}));
    chart.showAll();
    for (int series = 0; series < 7; ++series)
        chart.setComponantVisibility(series, false, series == 6);
    QCOMPARE(chart.DownsampledSignalLength(), 2);
    QCOMPARE(chart.Ymin(), 0.001);
    QCOMPARE(chart.Ymax(), 10.0);
    QVERIFY(chart.YminAllSignal() == CChart2D::kYminUnset);
    QVERIFY(chart.YmaxAllSignal() == CChart2D::kYmaxUnset);
}

void tst_CChart2DFieldsDataDrawing::flatSignal()
{
    PlainChart chart(&m_parameters);
    chart.add(evenResults({48.0F, 48.0F, 48.0F}));
    chart.showAll();
    chart.UpdateDownsampling();
    QVERIFY(std::isnan(chart.Ymin()));
    QVERIFY(std::isnan(chart.Ymax()));
    QCOMPARE(chart.YTickCount(), 1);
    QCOMPARE(chart.YminAllSignal(), 48.0);
    QCOMPARE(chart.YmaxAllSignal(), 48.0);
}

void tst_CChart2DFieldsDataDrawing::recoveryFromFlatSignal()
{
    PlainChart chart(&m_parameters);
    chart.add(evenResults({48.0F, 48.0F, 48.0F}));
    chart.showAll();
    chart.UpdateDownsampling();
    chart.add({makeResult(3 * kMillisecond, {49, 49, 49, 49, 49, 0})});
    chart.showAll();
    chart.UpdateDownsampling();
    QCOMPARE(chart.Ymin(), 48.0);
    QCOMPARE(chart.Ymax(), 49.0);
    QCOMPARE(chart.YTickCount(), 11);
}

void tst_CChart2DFieldsDataDrawing::manualScaling()
{
    PlainChart chart(&m_parameters);
    chart.SetAutoScaling(false);
    chart.add(evenResults({0.3F, 9.7F}));
    chart.showAll();
    chart.UpdateDownsampling();
    QCOMPARE(chart.Ymin(), 0.0);
    QCOMPARE(chart.Ymax(), 10.0);
    QCOMPARE(chart.YminMaxReseted(), false);
    // The user's axis stands, while the extremes follow
    chart.SetYmin(2.0);
    chart.SetYmax(3.0);
    chart.add({makeResult(2 * kMillisecond, {25, 25, 25, 25, 25, 0})});
    chart.showAll();
    chart.UpdateDownsampling();
    QCOMPARE(chart.Ymin(), 2.0);
    QCOMPARE(chart.Ymax(), 3.0);
    QCOMPARE(chart.YmaxAllSignal(), 25.0);
    // A reset takes everything seen, not only the nice range of the window
    chart.SetXmin(0.0);
    chart.SetXmax(0.0005);
    chart.resetAxisYDelta();
    QCOMPARE(chart.Ymin(), 0.0);
    QCOMPARE(chart.Ymax(), 25.0);
    QCOMPARE(chart.YminMaxReseted(), false);
    // One row is too little to take the axis from the model
    chart.SetXmin(chart.x(1));
    chart.SetXmax(chart.x(1));
    chart.resetAxisYDelta();
    QCOMPARE(chart.DownsampledSignalLength(), 1);
    QCOMPARE(chart.YminMaxReseted(), true);
}

void tst_CChart2DFieldsDataDrawing::extremesOnlyWiden()
{
    PlainChart chart(&m_parameters);
    chart.add(evenResults({100.0F, 0.0F, 4.0F, 6.0F}));
    chart.showAll();
    chart.UpdateDownsampling();
    QCOMPARE(chart.YmaxAllSignal(), 100.0);
    chart.SetXmin(0.002);
    chart.UpdateDownsampling();
    QCOMPARE(chart.Ymax(), 6.0);
    QCOMPARE(chart.YmaxAllSignal(), 100.0);
    QCOMPARE(chart.YminAllSignal(), 0.0);
}

void tst_CChart2DFieldsDataDrawing::smallestFloatAsLargestValue()
{
    PlainChart chart(&m_parameters);
    chart.add(evenResults({-1.0F, std::numeric_limits<float>::min()}));
    chart.showAll();
    chart.UpdateDownsampling();
    QCOMPARE(chart.Ymin(), 0.001);
    QCOMPARE(chart.Ymax(), 10.0);
}

void tst_CChart2DFieldsDataDrawing::equalsReference_data()
{
    QTest::addColumn<int>("seed");
    QTest::addColumn<int>("length");
    QTest::addColumn<double>("tieShare");
    QTest::addColumn<double>("nanShare");
    QTest::addColumn<double>("backwardShare");
    int seed = 0;
    for (const int length : {0, 1, 2, 3, 400, 401, 402, 403, 802, 803, 1604, 5000}) {
        for (const double ties : {0.0, 0.7}) {
            for (const double nans : {0.0, 0.2, 1.0}) {
                for (const double backward : {0.0, 0.1}) {
                    QTest::addRow("%d results, ties %.1f, not a number %.1f, backward %.1f", length, ties,
                                  nans, backward)
                        << ++seed << length << ties << nans << backward;
                }
            }
        }
    }
}

void tst_CChart2DFieldsDataDrawing::equalsReference()
{
    QFETCH(int, seed);
    QFETCH(int, length);
    QFETCH(double, tieShare);
    QFETCH(double, nanShare);
    QFETCH(double, backwardShare);
    std::mt19937 engine(static_cast<unsigned>(seed));
    std::uniform_real_distribution<double> share(0.0, 1.0);
    std::normal_distribution<float> noise(0.0F, 10.0F);
    const auto value = [&] {
        if (share(engine) < nanShare)
            return kNan;
        const float v = noise(engine);
        return share(engine) < tieShare ? std::round(v / 5.0F) * 5.0F : v;
    };

    PlainChart chart(&m_parameters);
    ReferenceDrawing reference;
    QVector<QSharedPointer<CFieldIntensityResult>> results;
    qint64 now = 0;
    for (int i = 0; i < length; ++i) {
        results.append(makeResult(now, {value(), value(), value(), value(), value(), std::fabs(value())}));
        now += (share(engine) < backwardShare ? -3 : 1) * qint64{1 + static_cast<int>(share(engine) * 9)} *
               kMillisecond;
    }
    chart.add(results);
    double origin = 0.0;
    for (const auto& result : qAsConst(results)) {
        const double stamp = static_cast<double>(result->Timestamp.toMSecsSinceEpoch() / 1000) +
                             result->TimestampNanoseconds / 1e9;
        if (reference.x.empty())
            origin = stamp;
        reference.x.push_back(stamp - origin);
        reference.samples.push_back({result->B(), result->BBprime(), result->Bx(), result->By(), result->Bz(),
                                     result->B() - result->dB(), result->B() + result->dB()});
    }
    QSignalSpy yMinAllSpy(&chart, &CChart2D::YminAllSignalChanged);
    QSignalSpy yMaxAllSpy(&chart, &CChart2D::YmaxAllSignalChanged);

    const double end = reference.x.empty() ? 1.0 : reference.x.back();
    for (int round = 0; round < 40; ++round) {
        double low = (share(engine) * 1.2 - 0.1) * end;
        double high = (share(engine) * 1.2 - 0.1) * end;
        if (round % 4 == 0) {
            low = 0.0;
            high = end;
        } else if (round % 4 != 1 && low > high) {
            std::swap(low, high);
        }
        if (round % 7 == 3) {
            const int series = static_cast<int>(share(engine) * 7);
            const bool visible = share(engine) < 0.5;
            chart.setComponantVisibility(series, visible, false);
            reference.visible[static_cast<std::size_t>(series)] = visible;
        }
        if (round % 5 == 4) {
            const bool autoScaling = share(engine) < 0.5;
            chart.SetAutoScaling(autoScaling);
            reference.autoScaling = autoScaling;
        }
        if (round % 6 == 5) {
            chart.SetYminMaxReseted(true);
            reference.mayChooseY = true;
        }
        if (round == 30) {
            chart.SetNbPointsAxeX(37);
            reference.mostRows = 37;
        }
        if (round == 36) {
            chart.SetNbPointsAxeX(2000);
            reference.mostRows = 2000;
        }
        chart.SetXmin(low);
        chart.SetXmax(high);
        reference.xMin = low;
        reference.xMax = high;
        reference.yMinAllWrites.clear();
        reference.yMaxAllWrites.clear();
        yMinAllSpy.clear();
        yMaxAllSpy.clear();

        chart.UpdateDownsampling();
        reference.draw();

        QCOMPARE(chart.DownsampledSignalLength(), reference.length);
        for (int row = 0; row < reference.length; ++row) {
            QVERIFY(xValue(chart, row) == reference.rowX[static_cast<std::size_t>(row)]);
            for (int series = 0; series < 7; ++series)
                QVERIFY(
                    same(seriesValue(chart, row, series),
                         reference.rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(series)]));
        }
        QVERIFY(same(chart.Ymin(), reference.yMin));
        QVERIFY(same(chart.Ymax(), reference.yMax));
        QVERIFY(same(chart.YminAllSignal(), reference.yMinAll));
        QVERIFY(same(chart.YmaxAllSignal(), reference.yMaxAll));
        QCOMPARE(chart.YTickCount(), reference.yTicks);
        QCOMPARE(chart.YminMaxReseted(), reference.mayChooseY);
        QCOMPARE(chart.FirstDataInit(), reference.drawn);
        QCOMPARE(yMinAllSpy.count(), static_cast<int>(reference.yMinAllWrites.size()));
        for (int i = 0; i < yMinAllSpy.count(); ++i)
            QVERIFY(
                same(yMinAllSpy[i].first().toDouble(), reference.yMinAllWrites[static_cast<std::size_t>(i)]));
        QCOMPARE(yMaxAllSpy.count(), static_cast<int>(reference.yMaxAllWrites.size()));
        for (int i = 0; i < yMaxAllSpy.count(); ++i)
            QVERIFY(
                same(yMaxAllSpy[i].first().toDouble(), reference.yMaxAllWrites[static_cast<std::size_t>(i)]));
    }
}

QTEST_GUILESS_MAIN(tst_CChart2DFieldsDataDrawing)
#include "tst_CChart2DFieldsDataDrawing.moc"
