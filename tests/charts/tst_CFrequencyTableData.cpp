// SPDX-License-Identifier: GPL-3.0-or-later
// The rows and their values; the comparison with the limits has a test of its own.
#include "Announcements.h"
#include "BandTableFixture.h"
#include "ComputeError.h"
#include "MetaObjectTable.h"

#include <QAbstractItemModelTester>
#include <QTest>

#include <complex>

using namespace MetaObjectTable;

namespace {

/// The figures of a signal's bands, in double precision: keeps the terms of the transform whose frequency,
/// rounded to bins, lies in the band, and sums them up again. Half of the rate is in no band, so the signal
/// must have nothing there.
std::vector<double> referenceBands(const std::vector<double>& signal, const std::vector<double>& upper,
                                   int figure, double rate)
{
    const std::size_t n = signal.size();
    const auto count = static_cast<double>(n);
    const double turn = 2.0 * std::acos(-1.0) / count;
    std::vector<std::complex<double>> transform(n / 2 + 1);
    for (std::size_t k = 0; k < transform.size(); ++k) {
        for (std::size_t i = 0; i < n; ++i)
            transform[k] += signal[i] * std::polar(1.0, -turn * static_cast<double>(k * i % n));
    }
    std::vector<double> figures;
    std::size_t begin = 0;
    for (const double frequency : upper) {
        const auto end =
            static_cast<std::size_t>(std::llround(std::min(frequency, rate / 2.0) * count / rate));
        double low = 1e300;
        double high = -1e300;
        double sum = 0.0;
        double squares = 0.0;
        for (std::size_t i = 0; i < n; ++i) {
            double x = 0.0;
            for (std::size_t k = begin; k < end; ++k)
                x += (k == 0 ? 1.0 : 2.0) / count *
                     (transform[k] * std::polar(1.0, turn * static_cast<double>(k * i % n))).real();
            low = std::min(low, x);
            high = std::max(high, x);
            sum += x;
            squares += x * x;
        }
        const double variance = std::max(0.0, (squares - sum * sum / count) / (count - 1.0));
        figures.push_back(figure == 0   ? std::sqrt(squares / count)
                          : figure == 1 ? high - low
                                        : std::sqrt(variance));
        begin = std::max(begin, end);
    }
    return figures;
}

} // namespace

class tst_CFrequencyTableData : public QObject, private BandTableFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void rolesAndShape();
    void emptyDataset();
    void withoutLimits();
    void bandsOfTheLimits();
    void bandTexts_data();
    void bandTexts();
    void figuresEqualReference_data();
    void figuresEqualReference();
    void sineInItsBand();
    void invalidAnswers();
    void emptiedDatasetHasNoAnswers();
    void limitsThatChangeUnderTheRows();
    void blockOfTheTable_data();
    void blockOfTheTable();
    void loadedRecordHasItsOwnRate();
    void announcements();
    void badInputThrows_data();
    void badInputThrows();
    void modelTesterStaysContent();
};

void tst_CFrequencyTableData::rolesAndShape()
{
    const QHash<int, QByteArray> expected{
        {257, "FrequencyBand"}, {258, "B"}, {259, "BBprime"}, {260, "Bx"}, {261, "By"}, {262, "Bz"},
        {263, "ExposureLimit"}};
    QCOMPARE(m_model->roleNames(), expected);
    QCOMPARE(m_model->columnCount(), 7);
    QCOMPARE(m_model->rowCount(), 0);
    const QMetaObject& meta = Model::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(meta, {{"FlagNotification", "bool", ReadWrite}}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Signal, {"FlagNotificationChanged(bool)"}));
    QCOMPARE(meta.superClass(), &QAbstractTableModel::staticMetaObject);
    QCOMPARE(m_model->FlagNotification(), false);
    addBlock(makeBlock(20));
    m_model->UpdateTable(0);
    QCOMPARE(m_model->rowCount(m_model->index(0, 0)), 0);
    QCOMPARE(m_model->columnCount(m_model->index(0, 0)), 0);
}

void tst_CFrequencyTableData::emptyDataset()
{
    Announcements log(*m_model);
    QVERIFY(m_model->CanUpdate());
    m_model->UpdateTable(0);
    m_model->Clear();
    QCOMPARE(m_model->rowCount(), 0);
    QCOMPARE(log.list, QStringList());
    QVERIFY(!valueAt(0, Model::FrequencyBandRole).isValid());
}

void tst_CFrequencyTableData::withoutLimits()
{
    recordParameters(123.5, 20, 0.0, 60.0);
    addBlock(makeBlock(20));
    m_model->UpdateTable(0);
    QCOMPARE(m_model->rowCount(), 1);
    QCOMPARE(valueAt(0, Model::FrequencyBandRole), QVariant(QStringLiteral("0-61.75")));
    QCOMPARE(valueAt(0, Model::ExposureLimitRole), QVariant(QStringLiteral("0")));
    for (int role = Model::BRole; role <= Model::BzRole; ++role)
        QCOMPARE(valueAt(0, role).userType(), static_cast<int>(QMetaType::Float));
}

void tst_CFrequencyTableData::bandsOfTheLimits()
{
    recordParameters(100.0, 20, 0.0, 50.0);
    loadLimits({{5.0, 0.5}, {20.0, 0.25}, {80.0, 2.0}});
    addBlock(makeBlock(20));
    m_model->UpdateTable(0);
    QCOMPARE(m_model->rowCount(), 3);
    QCOMPARE(texts(Model::FrequencyBandRole),
             QStringList({QStringLiteral("0-5"), QStringLiteral("5-20"), QStringLiteral("20-80")}));
    QCOMPARE(valueAt(0, Model::ExposureLimitRole), QVariant(0.5));
    QCOMPARE(valueAt(1, Model::ExposureLimitRole), QVariant(0.25));
    QCOMPARE(valueAt(2, Model::ExposureLimitRole), QVariant(2.0));
    m_operation->clearLimitsFile();
    m_model->UpdateTable(0);
    QCOMPARE(texts(Model::FrequencyBandRole), QStringList({QStringLiteral("0-50")}));
}

void tst_CFrequencyTableData::bandTexts_data()
{
    QTest::addColumn<double>("frequency");
    QTest::addColumn<QString>("text");
    QTest::newRow("whole") << 50.0 << QStringLiteral("0-50");
    QTest::newRow("fraction") << 0.025 << QStringLiteral("0-0.025");
    QTest::newRow("six digits") << 123456.7 << QStringLiteral("0-123457");
    QTest::newRow("power") << 1234567.0 << QStringLiteral("0-1.23457e+06");
    QTest::newRow("small") << 0.00001234567 << QStringLiteral("0-1.23457e-05");
}

void tst_CFrequencyTableData::bandTexts()
{
    QFETCH(double, frequency);
    QFETCH(QString, text);
    loadLimits({{frequency, 1.0}});
    recordParameters(100.0, 20, 0.0, 50.0);
    addBlock(makeBlock(20));
    m_model->UpdateTable(0);
    QCOMPARE(valueAt(0, Model::FrequencyBandRole).toString(), text);
}

void tst_CFrequencyTableData::figuresEqualReference_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("figure");
    QTest::newRow("RMS") << 0 << 0;
    QTest::newRow("peak-to-peak") << 1 << 1;
    QTest::newRow("standard deviation") << 2 << 2;
    QTest::newRow("unknown") << 3 << 0;
    QTest::newRow("negative") << -1 << 0;
}

void tst_CFrequencyTableData::figuresEqualReference()
{
    QFETCH(int, index);
    QFETCH(int, figure);
    constexpr double kRate = 300.0;
    constexpr int kSamples = 151;
    recordParameters(kRate, kSamples, 0.0, 150.0);
    // A third one within a bin, and one that begins at half of the rate
    const std::vector<double> upper{10.0, 48.0, 48.5, 130.0, 200.0, 300.0};
    QVector<QPair<double, double>> bands;
    for (const double frequency : upper)
        bands.append({frequency, 1.0});
    loadLimits(bands);
    const Block block = makeBlock(kSamples);
    addBlock(block);
    m_model->UpdateTable(index);
    QCOMPARE(m_model->rowCount(), 6);
    for (int role = Model::BRole; role <= Model::BzRole; ++role) {
        std::vector<double> signal;
        for (const auto& result : block->Results) {
            const std::array<float, 5> values{result->B(), result->BBprime(), result->Bx(), result->By(),
                                              result->Bz()};
            signal.push_back(static_cast<double>(values[static_cast<std::size_t>(role - Model::BRole)]));
        }
        const std::vector<double> expected = referenceBands(signal, upper, figure, kRate);
        for (int row = 0; row < 6; ++row) {
            const double value = valueAt(row, role).toDouble();
            QVERIFY2(std::abs(value - expected[static_cast<std::size_t>(row)]) < 2e-3,
                     qPrintable(QStringLiteral("row %1, role %2: %3, expected %4")
                                    .arg(row)
                                    .arg(role)
                                    .arg(value)
                                    .arg(expected[static_cast<std::size_t>(row)])));
        }
        QCOMPARE(valueAt(2, role).toFloat(), 0.0F);
        QCOMPARE(valueAt(5, role).toFloat(), 0.0F);
    }
}

void tst_CFrequencyTableData::sineInItsBand()
{
    recordParameters(1000.0, 1000, 0.0, 500.0);
    loadLimits({{30.0, 1.0}, {100.0, 1.0}, {500.0, 1.0}});
    const double pi = std::acos(-1.0);
    auto block = Block::create();
    for (int i = 0; i < 1000; ++i) {
        const auto b = static_cast<float>(48.0 + 3.0 * std::sin(2.0 * pi * 50.0 * i / 1000.0));
        block->Results.append(makeResult(i * 1000000, {b, 0, 0, 0, 0, 0}));
    }
    addBlock(block);
    m_model->UpdateTable(0);
    QVERIFY(std::abs(valueAt(0, Model::BRole).toDouble() - 48.0) < 1e-3);
    QVERIFY(std::abs(valueAt(1, Model::BRole).toDouble() - 3.0 / std::sqrt(2.0)) < 1e-3);
    QVERIFY(std::abs(valueAt(2, Model::BRole).toDouble()) < 1e-3);
    QCOMPARE(valueAt(1, Model::BxRole).toFloat(), 0.0F);
    m_model->UpdateTable(1);
    QVERIFY(std::abs(valueAt(1, Model::BRole).toDouble() - 6.0) < 1e-2);
    m_model->UpdateTable(2);
    QVERIFY(std::abs(valueAt(0, Model::BRole).toDouble()) < 1e-3);
    QVERIFY(std::abs(valueAt(1, Model::BRole).toDouble() - 3.0 * std::sqrt(500.0 / 999.0)) < 1e-3);
}

void tst_CFrequencyTableData::invalidAnswers()
{
    addBlock(makeBlock(20));
    QVERIFY(!valueAt(0, Model::BRole).isValid());
    m_model->UpdateTable(0);
    QVERIFY(valueAt(0, Model::BRole).isValid());
    QVERIFY(!valueAt(1, Model::BRole).isValid());
    QVERIFY(!m_model->data(QModelIndex(), Model::BRole).isValid());
    for (const int role : {0, 1, 2, 256, 264})
        QVERIFY(!valueAt(0, role).isValid());
}

void tst_CFrequencyTableData::emptiedDatasetHasNoAnswers()
{
    addBlock(makeBlock(20));
    m_model->UpdateTable(0);
    dataSet().Clear();
    QCOMPARE(m_model->rowCount(), 1);
    for (int role = Model::FrequencyBandRole; role <= Model::ExposureLimitRole; ++role)
        QVERIFY(!valueAt(0, role).isValid());
    m_model->UpdateTable(0);
    QCOMPARE(m_model->rowCount(), 0);
}

void tst_CFrequencyTableData::limitsThatChangeUnderTheRows()
{
    recordParameters(100.0, 20, 0.0, 50.0);
    loadLimits({{5.0, 0.5}, {20.0, 0.25}});
    addBlock(makeBlock(20));
    m_model->UpdateTable(0);
    loadLimits({{7.0, 0.75}});
    QCOMPARE(valueAt(0, Model::FrequencyBandRole).toString(), QStringLiteral("0-7"));
    QCOMPARE(valueAt(1, Model::FrequencyBandRole).toString(), QString());
    QVERIFY(!valueAt(1, Model::ExposureLimitRole).isValid());
    QVERIFY(valueAt(1, Model::BRole).isValid());
}

void tst_CFrequencyTableData::blockOfTheTable_data()
{
    QTest::addColumn<QStringList>("flags");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("block");
    const auto flags = [](const char* names) {
        return QString::fromLatin1(names).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    };
    QTest::newRow("live") << flags("") << 1 << 3;
    QTest::newRow("recording") << flags("IsRecording") << 1 << 3;
    QTest::newRow("playing back") << flags("IsPlayingBack") << 1 << 1;
    QTest::newRow("loaded") << flags("IsDataLoaded") << 2 << 2;
    QTest::newRow("stopped") << flags("IsIdleWithData") << 0 << 0;
    QTest::newRow("stopped and recording") << flags("IsIdleWithData IsRecording") << 1 << 3;
    QTest::newRow("playing back while recording") << flags("IsPlayingBack IsRecording") << 1 << 1;
    QTest::newRow("index past the end") << flags("IsPlayingBack") << 4 << 3;
    QTest::newRow("negative index") << flags("IsDataLoaded") << -1 << 3;
}

void tst_CFrequencyTableData::blockOfTheTable()
{
    QFETCH(QStringList, flags);
    QFETCH(int, index);
    QFETCH(int, block);
    for (const float level : {1.0F, 2.0F, 3.0F, 4.0F})
        addBlock(levelBlock(level));
    for (const char* name : {"IsRecording", "IsPlayingBack", "IsDataLoaded", "IsIdleWithData"})
        QVERIFY(manager().setProperty(name, flags.contains(QLatin1String(name))));
    manager().SetReplayIndex(index);
    m_model->UpdateTable(0);
    QCOMPARE(valueAt(0, Model::BRole).toFloat(), static_cast<float>(block + 1));
}

void tst_CFrequencyTableData::loadedRecordHasItsOwnRate()
{
    parameters().SetTriggerMode(CTrigger::IMMEDIATE);
    parameters().SetAcquisitionRate(1000.0);
    recordParameters(20.0, 20, 0.0, 10.0);
    addBlock(makeBlock(20));
    m_model->UpdateTable(0);
    QCOMPARE(valueAt(0, Model::FrequencyBandRole).toString(), QStringLiteral("0-10"));
}

void tst_CFrequencyTableData::announcements()
{
    recordParameters(100.0, 20, 0.0, 50.0);
    addBlock(makeBlock(20));
    Announcements log(*m_model);
    m_model->UpdateTable(0);
    QCOMPARE(log.list, QStringList({QStringLiteral("insert 0..0")}));
    loadLimits({{5.0, 0.5}, {20.0, 0.25}});
    m_model->UpdateTable(0);
    QCOMPARE(log.list.mid(1), QStringList({QStringLiteral("remove 0..0"), QStringLiteral("insert 0..1")}));
    m_model->Clear();
    m_model->Clear();
    QCOMPARE(log.list.mid(3), QStringList({QStringLiteral("remove 0..1")}));
    QCOMPARE(m_model->rowCount(), 0);
}

void tst_CFrequencyTableData::badInputThrows_data()
{
    QTest::addColumn<int>("samples");
    QTest::addColumn<double>("rate");
    QTest::addColumn<QVector<double>>("upper");
    QTest::addColumn<bool>("throws");
    const QVector<double> none;
    QTest::newRow("two results") << 2 << 100.0 << none << false;
    QTest::newRow("one result") << 1 << 100.0 << none << true;
    QTest::newRow("no results") << 0 << 100.0 << none << true;
    QTest::newRow("no rate") << 20 << 0.0 << none << true;
    QTest::newRow("ascending bands") << 20 << 100.0 << QVector<double>({1, 2, 3}) << false;
    QTest::newRow("no rate, but bands") << 20 << 0.0 << QVector<double>({1, 2, 3}) << false;
    QTest::newRow("descending bands") << 20 << 100.0 << QVector<double>({1, 3, 2}) << true;
    QTest::newRow("equal bands") << 20 << 100.0 << QVector<double>({1, 1}) << true;
    QTest::newRow("equal in single precision") << 20 << 100.0 << QVector<double>({1, 1.00000001}) << true;
    QTest::newRow("band of zero") << 20 << 100.0 << QVector<double>({0, 1}) << true;
}

void tst_CFrequencyTableData::badInputThrows()
{
    QFETCH(int, samples);
    QFETCH(double, rate);
    QFETCH(QVector<double>, upper);
    QFETCH(bool, throws);
    addBlock(makeBlock(20));
    m_model->UpdateTable(0);
    recordParameters(rate, samples, 0.0, rate / 2.0);
    if (!upper.isEmpty()) {
        QVector<QPair<double, double>> bands;
        for (const double frequency : upper)
            bands.append({frequency, 1.0});
        loadLimits(bands);
    }
    addBlock(makeBlock(samples));
    for (int figure = 0; figure < 3; ++figure) {
        QCOMPARE(m_model->CanUpdate(), !throws);
        if (throws)
            QVERIFY_EXCEPTION_THROWN(m_model->UpdateTable(figure), ComputeError);
        else
            m_model->UpdateTable(figure);
        QCOMPARE(m_model->rowCount() == 0, throws);
    }
}

void tst_CFrequencyTableData::modelTesterStaysContent()
{
    const QAbstractItemModelTester tester(m_model.get(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    recordParameters(100.0, 20, 0.0, 50.0);
    for (int figure = 0; figure < 3; ++figure) {
        addBlock(makeBlock(20));
        m_model->UpdateTable(figure);
        loadLimits({{5.0, 0.5}, {20.0, 0.25}});
        m_model->UpdateTable(figure);
        m_operation->clearLimitsFile();
        m_model->UpdateTable(figure);
        m_model->Clear();
    }
}

QTEST_GUILESS_MAIN(tst_CFrequencyTableData)
#include "tst_CFrequencyTableData.moc"
