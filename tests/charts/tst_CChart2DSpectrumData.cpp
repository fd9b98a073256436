// SPDX-License-Identifier: GPL-3.0-or-later
// The surface, the analysis of a block, the axes and the orders of signals; what is drawn has a test of its
// own.
#include "ComputeError.h"
#include "MetaObjectTable.h"
#include "PropertyLog.h"
#include "SpectrumChartFixture.h"

#include <QAbstractItemModelTester>
#include <QTest>

#include <complex>

using namespace MetaObjectTable;

namespace {

/// By the definition of the transform, in double precision.
std::vector<double> referenceSpectrum(const std::vector<double>& signal)
{
    const auto n = static_cast<double>(signal.size());
    const double pi = std::acos(-1.0);
    std::vector<double> spectrum;
    for (std::size_t k = 0; k <= signal.size() / 2; ++k) {
        std::complex<double> sum = 0.0;
        for (std::size_t i = 0; i < signal.size(); ++i) {
            const double window = std::pow(std::sin(pi * static_cast<double>(i) / (n - 1.0)), 2.0);
            sum += signal[i] * window *
                   std::polar(1.0, -2.0 * pi * static_cast<double>(k) * static_cast<double>(i) / n);
        }
        spectrum.push_back(std::abs(sum) * 2.0 / n);
    }
    return spectrum;
}

} // namespace

class tst_CChart2DSpectrumData : public QObject, private SpectrumChartFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void surface();
    void constructedValues();
    void everyWriteIsTold();
    void modelOfTheTable();
    void spectrumOfEachSeries();
    void blockWithoutResultsDoesNothing();
    void tooShortBlocksThrow_data();
    void tooShortBlocksThrow();
    void indexOutsideTheSeriesThrows();
    void order();
    void everyBlockResetsTheZoom();
    void datasetDecidesTheRates();
    void zoomIsClamped();
    void zoomTruncatesToWholeHertz();
    void resetAxisXKeepsTheTable();
    void yRange_data();
    void yRange();
    void zerosGiveAnAxisFromZero();
    void clear();
    void clearWithLimits();
    void modelTesterStaysContent();
};

void tst_CChart2DSpectrumData::surface()
{
    const QMetaObject& meta = CChart2DSpectrumData::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(meta, {{"MaxSpectrum", "double", ReadWrite},
                                                  {"MinSpectrum", "double", ReadWrite},
                                                  {"MaxFrequency", "double", ReadWrite},
                                                  {"MinFrequency", "double", ReadWrite},
                                                  {"NbPointsAxeX", "int", ReadWrite},
                                                  {"DownsampledSignalLength", "int", ReadWrite}}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Signal,
                                        {"MaxSpectrumChanged(double)", "MinSpectrumChanged(double)",
                                         "MaxFrequencyChanged(double)", "MinFrequencyChanged(double)",
                                         "NbPointsAxeXChanged(int)", "DownsampledSignalLengthChanged(int)"}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Method, {"refreshAxisX(int,int)"}));
    QCOMPARE(meta.superClass(), &CChart2D::staticMetaObject);
}

void tst_CChart2DSpectrumData::constructedValues()
{
    QCOMPARE(m_chart->MaxSpectrum(), 1.0);
    QCOMPARE(m_chart->MinSpectrum(), 1.0);
    QCOMPARE(m_chart->MaxFrequency(), 10.0);
    QCOMPARE(m_chart->MinFrequency(), 0.0);
    QCOMPARE(m_chart->NbPointsAxeX(), 401);
    QCOMPARE(m_chart->DownsampledSignalLength(), 0);
    QCOMPARE(m_chart->Ymin(), 0.01);
    QCOMPARE(m_chart->Ymax(), 10.0);
    QCOMPARE(m_chart->YminAllSignal(), 0.01);
    QCOMPARE(m_chart->YmaxAllSignal(), 10.0);
    QCOMPARE(m_chart->Visible(), true);
    QCOMPARE(m_chart->rowCount(), 0);
    QCOMPARE(m_chart->columnCount(), 2);
    QVERIFY(m_chart->GetSpectrum().empty());
}

void tst_CChart2DSpectrumData::everyWriteIsTold()
{
    PropertyLog log(m_chart.get());
    for (int i = 0; i < 2; ++i) {
        m_chart->SetMaxSpectrum(2.0);
        m_chart->SetMinSpectrum(3.0);
        m_chart->SetMaxFrequency(4.0);
        m_chart->SetMinFrequency(5.0);
        m_chart->SetNbPointsAxeX(6);
        m_chart->SetDownsampledSignalLength(7);
        QCOMPARE(log.take(), QStringList({QStringLiteral("MaxSpectrum=2"), QStringLiteral("MinSpectrum=3"),
                                          QStringLiteral("MaxFrequency=4"), QStringLiteral("MinFrequency=5"),
                                          QStringLiteral("NbPointsAxeX=6"),
                                          QStringLiteral("DownsampledSignalLength=7")}));
    }
}

/// The rows are those of the whole spectrum, the values those of the drawing.
void tst_CChart2DSpectrumData::modelOfTheTable()
{
    showRandom(11);
    m_chart->refreshAxisX(2, 5);
    QCOMPARE(m_chart->rowCount(), 11);
    QCOMPARE(m_chart->DownsampledSignalLength(), 4);
    QCOMPARE(m_chart->rowCount(m_chart->index(0, 0)), 0);
    QCOMPARE(m_chart->columnCount(m_chart->index(0, 0)), 0);
    for (int row = 0; row < 11; ++row) {
        for (int column = 0; column < 2; ++column) {
            const QModelIndex index = m_chart->index(row, column);
            const QVariant value = m_chart->data(index);
            QCOMPARE(value.isValid(), row < 4);
            if (row < 4)
                QCOMPARE(static_cast<int>(value.type()), column == 0 ? static_cast<int>(QMetaType::Double)
                                                                     : static_cast<int>(QMetaType::Float));
            for (const int role : {1, 2, 3, 6, 256, 257})
                QVERIFY(!m_chart->data(index, role).isValid());
        }
    }
    QVERIFY(!m_chart->data(QModelIndex()).isValid());
    // A length that somebody writes does not lead outside the table
    showRandom(1001);
    m_chart->SetDownsampledSignalLength(1000);
    QVERIFY(!m_chart->data(m_chart->index(999, 1)).isValid());
    QVERIFY(m_chart->data(m_chart->index(401, 1)).isValid());
}

void tst_CChart2DSpectrumData::spectrumOfEachSeries()
{
    recordParameters(45.0, 45, 0.0, 22.0);
    const Block block = makeBlock(45);
    const auto valueOf = [](const CFieldIntensityResult& result, int index) {
        const std::array<float, 5> values{result.B(), result.BBprime(), result.Bx(), result.By(),
                                          result.Bz()};
        return static_cast<double>(values[static_cast<std::size_t>(index)]);
    };
    for (int index = 0; index < 5; ++index) {
        m_chart->UpdateSpectrum(block, index);
        std::vector<double> signal;
        for (const auto& result : block->Results)
            signal.push_back(valueOf(*result, index));
        const std::vector<double> expected = referenceSpectrum(signal);
        const std::vector<float> spectrum = m_chart->GetSpectrum();
        QCOMPARE(spectrum.size(), std::size_t{23});
        for (std::size_t k = 0; k < spectrum.size(); ++k)
            QVERIFY(std::abs(static_cast<double>(spectrum[k]) - expected[k]) < 1e-4);
    }
}

void tst_CChart2DSpectrumData::blockWithoutResultsDoesNothing()
{
    showRandom(11);
    PropertyLog log(m_chart.get());
    QSignalSpy resets(m_chart.get(), &QAbstractItemModel::modelReset);
    m_chart->UpdateSpectrum(Block::create(), 0);
    m_chart->UpdateSpectrum(Block::create(), 7);
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(resets.count(), 0);
    QCOMPARE(m_chart->rowCount(), 11);
}

void tst_CChart2DSpectrumData::tooShortBlocksThrow_data()
{
    QTest::addColumn<int>("index");
    for (int index = 0; index < 5; ++index)
        QTest::addRow("series %d", index) << index;
}

void tst_CChart2DSpectrumData::tooShortBlocksThrow()
{
    QFETCH(int, index);
    showRandom(11);
    QVERIFY_EXCEPTION_THROWN(m_chart->UpdateSpectrum(makeBlock(1), index), ComputeError);
    QVERIFY(m_chart->GetSpectrum().empty());
    // The next good block shows
    showRandom(21);
    QCOMPARE(m_chart->rowCount(), 21);
    QCOMPARE(m_chart->Visible(), true);
}

void tst_CChart2DSpectrumData::indexOutsideTheSeriesThrows()
{
    recordParameters(10.0, 10, 0.0, 5.0);
    for (const int index : {5, 6, 1000, -1})
        QVERIFY_EXCEPTION_THROWN(m_chart->UpdateSpectrum(makeBlock(10), index), ComputeError);
}

void tst_CChart2DSpectrumData::order()
{
    recordParameters(20.0, 20, 2.0, 7.0);
    QStringList before;
    QStringList within;
    PropertyLog log(m_chart.get());
    connect(m_chart.get(), &QAbstractItemModel::modelAboutToBeReset, this, [&] { before = log.take(); });
    connect(m_chart.get(), &QAbstractItemModel::modelReset, this, [&] { within = log.take(); });
    m_chart->UpdateSpectrum(makeBlock(20), 0);
    QCOMPARE(before, QStringList({QStringLiteral("Visible=false"), QStringLiteral("MinFrequency=2"),
                                  QStringLiteral("MaxFrequency=7"), QStringLiteral("Xmin=2"),
                                  QStringLiteral("Xmax=7")}));
    // Values on the way outwards, then the axis
    QVERIFY(within.size() >= 2);
    QVERIFY(within[within.size() - 2].startsWith(QStringLiteral("Ymin=")));
    QVERIFY(within.last().startsWith(QStringLiteral("Ymax=")));
    for (const QString& entry : within.mid(0, within.size() - 2))
        QVERIFY2(entry.contains(QStringLiteral("AllSignal=")), qPrintable(entry));
    // The view's mapper reads the table whenever the length is told, so it is told when the table is whole
    QCOMPARE(log.take(),
             QStringList({QStringLiteral("DownsampledSignalLength=6"), QStringLiteral("Visible=true")}));
}

void tst_CChart2DSpectrumData::everyBlockResetsTheZoom()
{
    showRandom(101);
    m_chart->refreshAxisX(10, 20);
    QCOMPARE(m_chart->DownsampledSignalLength(), 11);
    m_chart->UpdateSpectrum(makeBlock(200), 0);
    QCOMPARE(m_chart->Xmin(), 0.0);
    QCOMPARE(m_chart->Xmax(), 100.0);
    QCOMPARE(m_chart->DownsampledSignalLength(), 101);
}

void tst_CChart2DSpectrumData::datasetDecidesTheRates()
{
    parameters().SetTriggerMode(CTrigger::IMMEDIATE);
    parameters().SetBlockSize(1);
    recordParameters(40.0, 20, 4.0, 12.0);
    m_chart->UpdateSpectrum(makeBlock(20), 0);
    QCOMPARE(m_chart->MinFrequency(), 4.0);
    QCOMPARE(m_chart->MaxFrequency(), 12.0);
    QCOMPARE(xValue(*m_chart, 0), 4.0);
    QCOMPARE(xValue(*m_chart, 1), 6.0);
    QCOMPARE(m_chart->DownsampledSignalLength(), 5);
}

void tst_CChart2DSpectrumData::zoomIsClamped()
{
    recordParameters(200.0, 200, 12.5, 80.25);
    m_chart->UpdateSpectrum(makeBlock(200), 0);
    PropertyLog log(m_chart.get());
    QSignalSpy resets(m_chart.get(), &QAbstractItemModel::modelReset);
    m_chart->refreshAxisX(0, 100);
    QCOMPARE(m_chart->Xmin(), 12.5);
    QCOMPARE(m_chart->Xmax(), 80.25);
    QCOMPARE(log.take().mid(0, 2), QStringList({QStringLiteral("Xmax=80.25"), QStringLiteral("Xmin=12.5")}));
    m_chart->refreshAxisX(20, 30);
    QCOMPARE(m_chart->Xmin(), 20.0);
    QCOMPARE(m_chart->Xmax(), 30.0);
    QCOMPARE(resets.count(), 2);
    QCOMPARE(m_chart->DownsampledSignalLength(), 11);
    QVERIFY(log.count(QStringLiteral("Visible")) == 0);
}

/// The view has numbers with a fraction.
void tst_CChart2DSpectrumData::zoomTruncatesToWholeHertz()
{
    showRandom(101);
    QVERIFY(QMetaObject::invokeMethod(m_chart.get(), "refreshAxisX", Q_ARG(int, static_cast<int>(20.9)),
                                      Q_ARG(int, static_cast<int>(21.9))));
    QCOMPARE(m_chart->Xmin(), 20.0);
    QCOMPARE(m_chart->Xmax(), 21.0);
}

void tst_CChart2DSpectrumData::resetAxisXKeepsTheTable()
{
    showRandom(101);
    m_chart->refreshAxisX(10, 20);
    const double ymax = m_chart->Ymax();
    m_record->SetFrequencyMin(1.0);
    m_record->SetFrequencyMax(90.0);
    loadLimits({{100.0, 1e6}});
    QSignalSpy resets(m_chart.get(), &QAbstractItemModel::modelReset);
    PropertyLog log(m_chart.get());
    m_chart->ResetAxisX();
    QCOMPARE(resets.count(), 0);
    QCOMPARE(m_chart->DownsampledSignalLength(), 11);
    QCOMPARE(m_chart->MaxFrequency(), 100.0);
    QVERIFY(ymax < 1e6);
    const QStringList entries = log.take();
    QCOMPARE(entries.size(), 4);
    QCOMPARE(entries.mid(0, 2), QStringList({QStringLiteral("Xmin=1"), QStringLiteral("Xmax=90")}));
    QCOMPARE(m_chart->Ymax(), 2e6);
}

void tst_CChart2DSpectrumData::yRange_data()
{
    QTest::addColumn<double>("minSpectrum");
    QTest::addColumn<double>("maxSpectrum");
    QTest::addColumn<QVector<double>>("limits");
    QTest::addColumn<double>("bottom");
    QTest::addColumn<double>("top");
    const QVector<double> none;
    QTest::newRow("no limits") << 0.5 << 3.0 << none << 0.5 << 3.0;
    QTest::newRow("no limits, negative") << -0.5 << -0.25 << none << -0.5 << -0.25;
    // The smallest limit of a file is 0 at most, so the spectrum decides the bottom
    QTest::newRow("limit above") << 0.5 << 3.0 << QVector<double>({8.0, 4.0}) << 0.5 << 8.0;
    QTest::newRow("limit below") << 0.5 << 3.0 << QVector<double>({1.0}) << 0.5 << 3.0;
    QTest::newRow("limit equal") << 0.5 << 3.0 << QVector<double>({3.0}) << 0.5 << 3.0;
    QTest::newRow("limit under the smallest bin") << 0.5 << 3.0 << QVector<double>({0.25}) << 0.5 << 3.0;
    QTest::newRow("negative limit") << 0.5 << 3.0 << QVector<double>({-4.0}) << 0.5 << 3.0;
    QTest::newRow("nothing above zero") << -2.0 << -1.0 << QVector<double>({-4.0}) << -2.0 << -1.0;
    QTest::newRow("spectrum below zero") << -2.0 << -1.0 << QVector<double>({4.0}) << -2.0 << 4.0;
}

void tst_CChart2DSpectrumData::yRange()
{
    QFETCH(double, minSpectrum);
    QFETCH(double, maxSpectrum);
    QFETCH(QVector<double>, limits);
    QFETCH(double, bottom);
    QFETCH(double, top);
    if (!limits.isEmpty()) {
        QVector<QPair<double, double>> bands;
        for (const double limit : limits)
            bands.append({10.0 * (bands.size() + 1), limit});
        loadLimits(bands);
    }
    m_chart->SetMinSpectrum(minSpectrum);
    m_chart->SetMaxSpectrum(maxSpectrum);
    m_chart->ResetAxisX();
    QCOMPARE(m_chart->Ymin(), bottom * 0.2);
    QCOMPARE(m_chart->Ymax(), top * 2.0);
}

void tst_CChart2DSpectrumData::zerosGiveAnAxisFromZero()
{
    recordParameters(20.0, 20, 0.0, 10.0);
    m_chart->UpdateSpectrum(blockOf(std::vector<float>(20, 0.0F)), 0);
    // Exactly: to QCOMPARE such small numbers are all the same.
    QVERIFY(m_chart->MinSpectrum() == 0.0);
    QVERIFY(m_chart->MaxSpectrum() == static_cast<double>(FLT_MIN));
    QVERIFY(m_chart->Ymin() == 0.0);
    QVERIFY(m_chart->Ymax() == static_cast<double>(FLT_MIN) * 2.0);
}

void tst_CChart2DSpectrumData::clear()
{
    showRandom(101);
    QSignalSpy resets(m_chart.get(), &QAbstractItemModel::modelReset);
    PropertyLog log(m_chart.get());
    m_chart->Clear();
    QCOMPARE(resets.count(), 1);
    QCOMPARE(log.take(), QStringList({QStringLiteral("Ymin=0.001"), QStringLiteral("Ymax=10")}));
    QVERIFY(m_chart->GetSpectrum().empty());
    QCOMPARE(m_chart->rowCount(), 0);
    QCOMPARE(m_chart->DownsampledSignalLength(), 101);
    QVERIFY(!m_chart->data(m_chart->index(0, 0)).isValid());
    // A zoom finds nothing to draw
    m_chart->refreshAxisX(10, 20);
    QVERIFY(m_chart->DownsampledSignalLength() < 1);
}

void tst_CChart2DSpectrumData::clearWithLimits()
{
    showRandom(101);
    loadLimits({{50.0, 7.0}, {100.0, 3.0}});
    m_chart->Clear();
    QCOMPARE(m_chart->Ymin(), 0.0);
    QCOMPARE(m_chart->Ymax(), 7.0);
}

void tst_CChart2DSpectrumData::modelTesterStaysContent()
{
    const QAbstractItemModelTester tester(m_chart.get(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    for (const int bins : {11, 500, 3, 1200}) {
        showRandom(bins);
        m_chart->refreshAxisX(1, 2);
        m_chart->refreshAxisX(0, bins);
        m_chart->refreshAxisX(2, 1);
        m_chart->Clear();
        m_chart->refreshAxisX(0, bins);
        m_chart->ResetAxisX();
    }
}

QTEST_GUILESS_MAIN(tst_CChart2DSpectrumData)
#include "tst_CChart2DSpectrumData.moc"
