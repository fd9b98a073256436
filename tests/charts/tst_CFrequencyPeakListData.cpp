// SPDX-License-Identifier: GPL-3.0-or-later
#include "Announcements.h"
#include "CFrequencyPeakListData.h"
#include "ComputeError.h"
#include "MetaObjectTable.h"
#include "OperationFixture.h"
#include "SpectralAnalysis.h"

#include <QAbstractItemModelTester>
#include <QTest>

#include <cmath>

using namespace MetaObjectTable;
using Model = CFrequencyPeakListData;

namespace {

/// A floor of 0.1 with single bins of other sizes.
std::vector<float> spectrumOf(std::size_t bins, const std::vector<std::pair<std::size_t, float>>& lines)
{
    std::vector<float> spectrum(bins, 0.1F);
    for (const auto& line : lines)
        spectrum[line.first] = line.second;
    return spectrum;
}

QVariant valueAt(const Model& model, int row, int role)
{
    return model.data(model.index(row, 0), role);
}

QVector<float> frequenciesOf(const Model& model)
{
    QVector<float> frequencies;
    for (int row = 0; row < model.rowCount(); ++row)
        frequencies.append(valueAt(model, row, Model::FrequencyRole).toFloat());
    return frequencies;
}

} // namespace

class tst_CFrequencyPeakListData : public QObject, private OperationFixture
{
    Q_OBJECT

private slots:
    void init();
    void rolesAndShape();
    void peaksByRole();
    void invalidAnswers();
    void emptiedDatasetHasNoAnswers();
    void peaksBelowTheMinimumDrop_data();
    void peaksBelowTheMinimumDrop();
    void exposureLimits();
    void limitsFollowTheFile();
    void announcements();
    void tooShortSpectrumThrows();
    void sineReadsItsAmplitude();
    void noisyLinesAreFound();
    void modelTesterStaysContent();

private:
    std::unique_ptr<Model> m_model;
};

void tst_CFrequencyPeakListData::init()
{
    m_model.reset();
    start();
    m_model = std::make_unique<Model>(m_operation.get());
    dataSet().AddBlock(makeBlock(2));
}

void tst_CFrequencyPeakListData::rolesAndShape()
{
    const QHash<int, QByteArray> expected{
        {257, "Peak"}, {258, "Amplitude"}, {259, "Frequency"}, {260, "ExposureLimit"}};
    QCOMPARE(m_model->roleNames(), expected);
    QCOMPARE(m_model->columnCount(), 4);
    QCOMPARE(m_model->rowCount(), 0);
    VERIFY_NO_DIFFERENCE(compareProperties(Model::staticMetaObject, {}));
    QCOMPARE(Model::staticMetaObject.superClass(), &QAbstractTableModel::staticMetaObject);
}

void tst_CFrequencyPeakListData::peaksByRole()
{
    m_model->UpdatePeaks(spectrumOf(100, {{20, 2.0F}, {50, 3.0F}}), 0.5, 10.0, 0.0);
    QCOMPARE(m_model->rowCount(), 2);
    const QVector<QVariant> first{1, 4.0F, 10.0F, 0.0};
    const QVector<QVariant> second{2, 6.0F, 25.0F, 0.0};
    for (int i = 0; i < 4; ++i) {
        for (const int row : {0, 1}) {
            const QVariant value = valueAt(*m_model, row, 257 + i);
            const QVariant& expected = row == 0 ? first[i] : second[i];
            QCOMPARE(value.userType(), expected.userType());
            QCOMPARE(value, expected);
        }
    }
    // The column does not matter
    QCOMPARE(m_model->data(m_model->index(1, 3), Model::PeakRole), QVariant(2));
    QCOMPARE(m_model->rowCount(m_model->index(0, 0)), 0);
    QCOMPARE(m_model->columnCount(m_model->index(0, 0)), 0);
}

void tst_CFrequencyPeakListData::invalidAnswers()
{
    QVERIFY(!valueAt(*m_model, 0, Model::PeakRole).isValid());
    m_model->UpdatePeaks(spectrumOf(100, {{20, 2.0F}}), 1.0, 10.0, 0.0);
    QVERIFY(valueAt(*m_model, 0, Model::PeakRole).isValid());
    QVERIFY(!valueAt(*m_model, 1, Model::PeakRole).isValid());
    QVERIFY(!m_model->data(QModelIndex(), Model::PeakRole).isValid());
    for (const int role : {0, 1, 2, 256, 261})
        QVERIFY(!valueAt(*m_model, 0, role).isValid());
}

/// The rows themselves go with the page's clear.
void tst_CFrequencyPeakListData::emptiedDatasetHasNoAnswers()
{
    m_model->UpdatePeaks(spectrumOf(100, {{20, 2.0F}}), 1.0, 10.0, 0.0);
    dataSet().Clear();
    QCOMPARE(m_model->rowCount(), 1);
    for (const int role : {257, 258, 259, 260})
        QVERIFY(!valueAt(*m_model, 0, role).isValid());
    dataSet().AddBlock(makeBlock(2));
    QVERIFY(valueAt(*m_model, 0, Model::PeakRole).isValid());
}

void tst_CFrequencyPeakListData::peaksBelowTheMinimumDrop_data()
{
    QTest::addColumn<double>("minimum");
    QTest::addColumn<QVector<float>>("frequencies");
    QTest::newRow("none") << 0.0 << QVector<float>({10, 30, 60});
    QTest::newRow("below the first") << 9.99 << QVector<float>({10, 30, 60});
    QTest::newRow("at the first") << 10.0 << QVector<float>({10, 30, 60});
    QTest::newRow("above the first") << 10.01 << QVector<float>({30, 60});
    QTest::newRow("two") << 31.0 << QVector<float>({60});
    QTest::newRow("all") << 61.0 << QVector<float>();
}

void tst_CFrequencyPeakListData::peaksBelowTheMinimumDrop()
{
    QFETCH(double, minimum);
    QFETCH(QVector<float>, frequencies);
    m_model->UpdatePeaks(spectrumOf(100, {{10, 2.0F}, {30, 2.0F}, {60, 2.0F}}), 1.0, 10.0, minimum);
    QCOMPARE(frequenciesOf(*m_model), frequencies);
    // The numbers count what is left
    for (int row = 0; row < m_model->rowCount(); ++row)
        QCOMPARE(valueAt(*m_model, row, Model::PeakRole).toInt(), row + 1);
}

void tst_CFrequencyPeakListData::exposureLimits()
{
    // The bands stay in the order of the file, and the first one that ends above the peak counts
    loadLimits({{20.0, 0.5}, {50.0, 0.25}, {40.0, 0.125}, {60.0, 4.0}});
    m_model->UpdatePeaks(
        spectrumOf(100, {{10, 2.0F}, {20, 2.0F}, {30, 2.0F}, {50, 2.0F}, {60, 2.0F}, {80, 2.0F}}), 1.0, 10.0,
        0.0);
    QVector<double> limits;
    for (int row = 0; row < m_model->rowCount(); ++row)
        limits.append(valueAt(*m_model, row, Model::ExposureLimitRole).toDouble());
    QCOMPARE(limits, QVector<double>({0.5, 0.25, 0.25, 4.0, 0.0, 0.0}));
}

void tst_CFrequencyPeakListData::limitsFollowTheFile()
{
    m_model->UpdatePeaks(spectrumOf(100, {{10, 2.0F}}), 1.0, 10.0, 0.0);
    QCOMPARE(valueAt(*m_model, 0, Model::ExposureLimitRole), QVariant(0.0));
    loadLimits({{20.0, 0.5}});
    QCOMPARE(valueAt(*m_model, 0, Model::ExposureLimitRole), QVariant(0.5));
    m_operation->clearLimitsFile();
    QCOMPARE(valueAt(*m_model, 0, Model::ExposureLimitRole), QVariant(0.0));
}

void tst_CFrequencyPeakListData::announcements()
{
    Announcements log(*m_model);
    const std::vector<float> quiet = spectrumOf(100, {});
    m_model->UpdatePeaks(quiet, 1.0, 10.0, 0.0);
    m_model->Clear();
    QCOMPARE(log.list, QStringList());
    m_model->UpdatePeaks(spectrumOf(100, {{10, 2.0F}, {30, 2.0F}}), 1.0, 10.0, 0.0);
    QCOMPARE(log.list, QStringList({QStringLiteral("insert 0..1")}));
    m_model->UpdatePeaks(spectrumOf(100, {{10, 2.0F}, {30, 2.0F}, {60, 2.0F}}), 1.0, 10.0, 0.0);
    QCOMPARE(log.list.mid(1), QStringList({QStringLiteral("remove 0..1"), QStringLiteral("insert 0..2")}));
    m_model->UpdatePeaks(quiet, 1.0, 10.0, 0.0);
    QCOMPARE(log.list.mid(3), QStringList({QStringLiteral("remove 0..2")}));
    m_model->UpdatePeaks(spectrumOf(100, {{10, 2.0F}}), 1.0, 10.0, 0.0);
    m_model->Clear();
    QCOMPARE(log.list.mid(4), QStringList({QStringLiteral("insert 0..0"), QStringLiteral("remove 0..0")}));
    QCOMPARE(m_model->rowCount(), 0);
}

void tst_CFrequencyPeakListData::tooShortSpectrumThrows()
{
    m_model->UpdatePeaks(spectrumOf(100, {{10, 2.0F}}), 1.0, 10.0, 0.0);
    Announcements log(*m_model);
    QVERIFY_EXCEPTION_THROWN(m_model->UpdatePeaks({1.0F}, 1.0, 10.0, 0.0), ComputeError);
    QCOMPARE(m_model->rowCount(), 0);
    QCOMPARE(log.list, QStringList({QStringLiteral("remove 0..0")}));
    QVERIFY_EXCEPTION_THROWN(m_model->UpdatePeaks({}, 1.0, 10.0, 0.0), ComputeError);
    // Two bins are enough, for no peak
    m_model->UpdatePeaks({1.0F, 2.0F}, 1.0, 10.0, 0.0);
    QCOMPARE(m_model->rowCount(), 0);
}

/// What the window takes away is given back.
void tst_CFrequencyPeakListData::sineReadsItsAmplitude()
{
    const double pi = std::acos(-1.0);
    std::vector<float> signal;
    for (int i = 0; i < 1000; ++i)
        signal.push_back(static_cast<float>(3.0 * std::sin(2.0 * pi * 50.0 * i / 1000.0) +
                                            0.75 * std::cos(2.0 * pi * 150.0 * i / 1000.0)));
    std::vector<float> spectrum;
    QVERIFY(ComputeSpectrum(signal, spectrum));
    m_model->UpdatePeaks(spectrum, 1.0, 60.0, 10.0);
    QCOMPARE(m_model->rowCount(), 2);
    for (const int row : {0, 1}) {
        QVERIFY(std::abs(valueAt(*m_model, row, Model::FrequencyRole).toDouble() -
                         (row == 0 ? 50.0 : 150.0)) < 0.01);
        QVERIFY(std::abs(valueAt(*m_model, row, Model::AmplitudeRole).toDouble() - (row == 0 ? 3.0 : 0.75)) <
                0.01);
    }
}

/// Lines of random places and sizes in noise, found by a walk over the bins.
void tst_CFrequencyPeakListData::noisyLinesAreFound()
{
    std::uniform_real_distribution<float> noise(0.09F, 0.11F);
    std::uniform_real_distribution<float> size(1.0F, 50.0F);
    std::uniform_int_distribution<int> gap(2, 20);
    for (int round = 0; round < 100; ++round) {
        std::vector<float> spectrum(500);
        for (float& bin : spectrum)
            bin = noise(m_engine);
        QVector<float> frequencies;
        QVector<float> amplitudes;
        for (int bin = gap(m_engine); bin < 498; bin += gap(m_engine)) {
            spectrum[static_cast<std::size_t>(bin)] = size(m_engine);
            if (bin < 30)
                continue;
            frequencies.append(static_cast<float>(bin) * 0.25F);
            amplitudes.append(2.0F * spectrum[static_cast<std::size_t>(bin)]);
        }
        m_model->UpdatePeaks(spectrum, 0.25, 6.0, 7.5);
        QCOMPARE(frequenciesOf(*m_model), frequencies);
        for (int row = 0; row < amplitudes.size(); ++row)
            QCOMPARE(valueAt(*m_model, row, Model::AmplitudeRole).toFloat(), amplitudes[row]);
    }
}

void tst_CFrequencyPeakListData::modelTesterStaysContent()
{
    const QAbstractItemModelTester tester(m_model.get(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    for (const std::size_t lines : {3U, 0U, 1U, 20U}) {
        std::vector<float> spectrum = spectrumOf(100, {});
        for (std::size_t i = 0; i < lines; ++i)
            spectrum[4 * i + 4] = 5.0F;
        m_model->UpdatePeaks(spectrum, 1.0, 10.0, 0.0);
        QCOMPARE(m_model->rowCount(), static_cast<int>(lines));
    }
    m_model->Clear();
}

QTEST_GUILESS_MAIN(tst_CFrequencyPeakListData)
#include "tst_CFrequencyPeakListData.moc"
