// SPDX-License-Identifier: GPL-3.0-or-later
// The ready-made limits files, against the formulae that the guidelines publish.

#include "CLimitsFileOwner.h"
#include "LimitsXmlFile.h"
#include "LogRecorder.h"

#include <QDir>
#include <QtTest>

#include <cmath>
#include <functional>
#include <map>

namespace {

class COwner final : public CLimitsFileOwner
{
public:
    CUnits::UnitType LimitsDisplayUnits() const override { return CUnits::MICRO_TESLA; }
    QString LimitsFilePath() const override { return {}; }
    void ForgetLimitsFile() override {}
    bool LimitsFileLoaded() const override { return false; }
    void SetLimitsFileLoaded(bool /*value*/) override {}
};

/// Microtesla rms at a frequency in hertz. At a break point it is the value of the stretch that ends there.
using Curve = std::function<double(double)>;

struct Guideline
{
    QString file;      ///< without folder and suffix
    QString reference; ///< name of the staircase of others
    QString source;    ///< as the file names it
    Curve curve;
    std::map<double, double> breakPoints; ///< computed by hand
    double at50Hz;
};

double ofWorkers2010(double f)
{
    if (f <= 8)
        return 2e5 / (f * f);
    if (f <= 25)
        return 2.5e4 / f;
    if (f <= 300)
        return 1e3;
    return f <= 3000 ? 3e5 / f : 100;
}

double ofWorkers1998(double f)
{
    if (f <= 1)
        return 2e5;
    if (f <= 8)
        return 2e5 / (f * f);
    if (f <= 820)
        return 2.5e4 / f;
    return f <= 65000 ? 30.7 : 2e6 / f;
}

double ofPublic1998(double f)
{
    if (f <= 1)
        return 4e4;
    if (f <= 8)
        return 4e4 / (f * f);
    if (f <= 800)
        return 5e3 / f;
    return f <= 150000 ? 6.25 : 0.92e6 / f;
}

double ofPublic2010(double f)
{
    if (f <= 8)
        return 4e4 / (f * f);
    if (f <= 25)
        return 5e3 / f;
    if (f <= 400)
        return 200;
    return f <= 3000 ? 8e4 / f : 27;
}

const std::vector<Guideline>& guidelines()
{
    const std::map<double, double> workers2010{{8, 3125}, {25, 1000}, {300, 1000}, {3000, 100}, {1e7, 100}};
    static const std::vector<Guideline> all{
        {QStringLiteral("icnirp-1998-occupational"),
         QStringLiteral("ICNIRP1998_occupational"),
         QStringLiteral("Health Physics 74:494, 1998"),
         ofWorkers1998,
         {{1, 200000}, {8, 3125}, {25, 1000}, {820, 30.4878}, {65000, 30.7}, {1e7, 0.2}},
         500},
        {QStringLiteral("icnirp-1998-public"),
         QStringLiteral("ICNIRP1998_public_EU1999_519"),
         QStringLiteral("1999/519/EC"),
         ofPublic1998,
         {{1, 40000}, {8, 625}, {25, 200}, {800, 6.25}, {150000, 6.25}, {1e7, 0.092}},
         100},
        {QStringLiteral("icnirp-2010-occupational"), QStringLiteral("ICNIRP2010_occupational"),
         QStringLiteral("Health Physics 99:818, 2010"), ofWorkers2010, workers2010, 1000},
        {QStringLiteral("icnirp-2010-public"),
         QStringLiteral("ICNIRP2010_public"),
         QStringLiteral("Health Physics 99:818, 2010"),
         ofPublic2010,
         {{8, 625}, {25, 200}, {400, 200}, {3000, 26.6667}, {1e7, 27}},
         200},
        {QStringLiteral("eu-2013-35-low-action-levels"), QStringLiteral("EU2013_35_low_AL"),
         QStringLiteral("Directive 2013/35/EU"), ofWorkers2010, workers2010, 1000},
        {QStringLiteral("eu-2013-35-high-action-levels"),
         QStringLiteral("EU2013_35_high_AL"),
         QStringLiteral("Directive 2013/35/EU"),
         [](double f) { return f <= 3000 ? 3e5 / f : 100; },
         {{3000, 100}, {1e7, 100}},
         6000},
        {QStringLiteral("eu-2013-35-limb-action-levels"),
         QStringLiteral("EU2013_35_limbs_AL"),
         QStringLiteral("Directive 2013/35/EU"),
         [](double f) { return f <= 3000 ? 9e5 / f : 300; },
         {{3000, 300}, {1e7, 300}},
         18000},
    };
    return all;
}

QString folder()
{
    return QStringLiteral(EXAMPLE_LIMITS_DIR);
}

bool isSame(double found, double expected)
{
    // Six significant digits in the file.
    return std::abs(found / expected - 1.0) < 1e-5;
}

} // namespace

class tst_LimitsExamples : public QObject
{
    Q_OBJECT

private slots:
    void allAreTested()
    {
        const QStringList files = QDir(folder()).entryList({QStringLiteral("*.xml")}, QDir::Files);
        QStringList tested;
        for (const Guideline& guideline : guidelines())
            tested.append(guideline.file + QStringLiteral(".xml"));
        tested.sort();
        QCOMPARE(files, tested);
    }

    void staircase_data()
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < guidelines().size(); ++i)
            QTest::newRow(qPrintable(guidelines()[i].file)) << static_cast<int>(i);
    }
    void staircase()
    {
        QFETCH(const int, index);
        const Guideline& guideline = guidelines()[static_cast<std::size_t>(index)];
        const QString path = folder() + QLatin1Char('/') + guideline.file + QStringLiteral(".xml");
        QFile text(path);
        QVERIFY(text.open(QIODevice::ReadOnly));
        QVERIFY(QString::fromUtf8(text.readAll()).contains(guideline.source));

        COwner owner;
        LimitsXmlFile file(owner);
        const LogRecorder log;
        file.ReadFile(path);
        QVERIFY(log.Messages().isEmpty());
        QVERIFY(!file.FileError());

        std::map<double, double> steps;
        double below = 0.0;
        for (const auto& range : file.Ranges()) {
            const double upper = range->UpperFrequencyLimitValue();
            const double limit = range->ExposureLimitValue();
            QCOMPARE(range->UpperFrequencyLimitUnit(), CUnits::HZ);
            QCOMPARE(range->ExposureLimitUnit(), CUnits::MICRO_TESLA);
            QVERIFY(upper > below);
            QVERIFY(isSame(limit, guideline.curve(upper)));
            // Nowhere above the curve, and not more than a step of a twentieth of a decade below it.
            for (const double share : {0.001, 0.3, 0.7, 1.0}) {
                const double frequency = below + share * (upper - below);
                const double curve = guideline.curve(frequency);
                QVERIFY(limit < curve * (1.0 + 1e-5));
                if (below >= 1.0)
                    QVERIFY(limit > curve * std::pow(10.0, (frequency < 8.0 ? -2.0 : -1.0) / 20.0) * 0.9999);
            }
            steps[upper] = limit;
            below = upper;
        }
        QCOMPARE(below, 1e7);
        for (const auto& [frequency, limit] : guideline.breakPoints) {
            QVERIFY(steps.count(frequency) == 1);
            QVERIFY(isSame(steps[frequency], limit));
        }
        QVERIFY(isSame(guideline.curve(50), guideline.at50Hz));
        const double at50Hz = steps.lower_bound(50.0)->second;
        QVERIFY(at50Hz <= guideline.at50Hz);
        QVERIFY(at50Hz > guideline.at50Hz * 0.89);
    }

    // Staircases that others made from the same curves; steps of equal height are one there.
    void againstOtherStaircases()
    {
        const QByteArray fromEnvironment = qgetenv("KESTRIX_SHARED_DATA");
        const QString data = fromEnvironment.isEmpty() ? QStringLiteral(SHARED_DATA_PATH)
                                                       : QString::fromLocal8Bit(fromEnvironment);
        if (!QFile::exists(data + QStringLiteral("/limits")))
            QSKIP("The guidelines' staircases are not at hand");
        for (const Guideline& guideline : guidelines()) {
            QFile csv(data + QStringLiteral("/limits/") + guideline.reference +
                      QStringLiteral("_staircase.csv"));
            QVERIFY(csv.open(QIODevice::ReadOnly));
            csv.readLine();
            COwner owner;
            LimitsXmlFile file(owner);
            file.ReadFile(folder() + QLatin1Char('/') + guideline.file + QStringLiteral(".xml"));
            auto range = file.Ranges().cbegin();
            int rows = 0;
            while (!csv.atEnd()) {
                const QList<QByteArray> cells = csv.readLine().trimmed().split(',');
                QCOMPARE(cells.size(), 2);
                const double upper = cells[0].toDouble();
                const double limit = cells[1].toDouble();
                while (range != file.Ranges().cend() &&
                       (*range)->UpperFrequencyLimitValue() < upper * (1.0 - 1e-5)) {
                    QVERIFY(isSame((*range)->ExposureLimitValue(), limit));
                    ++range;
                }
                QVERIFY(range != file.Ranges().cend());
                QVERIFY(isSame((*range)->UpperFrequencyLimitValue(), upper));
                QVERIFY(isSame((*range)->ExposureLimitValue(), limit));
                ++range;
                ++rows;
            }
            QVERIFY(range == file.Ranges().cend());
            QVERIFY(rows > 40);
        }
    }
};

QTEST_MAIN(tst_LimitsExamples)
#include "tst_LimitsExamples.moc"
