// SPDX-License-Identifier: GPL-3.0-or-later
// Measured field maps as records and positions files, loaded, saved again and replayed, compared value by
// value with what their authors published. The files are made by a script that knows nothing of the program;
// here the published tables are read once more.

#include "CRecordingManagerMapping.h"
#include "CSettings.h"
#include "MappingXmlFile.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double kDegree = 0.017453292519943295;

using Vector = std::array<double, 3>;

struct Point
{
    Vector place; ///< millimetres
    double roll;  ///< degrees
    Vector field; ///< tesla
    QString time; ///< empty where it is not known
};

QString dataPath()
{
    const QByteArray fromEnvironment = qgetenv("KESTRIX_SHARED_DATA");
    return QDir::cleanPath(fromEnvironment.isEmpty() ? QStringLiteral(SHARED_DATA_PATH)
                                                     : QString::fromLocal8Bit(fromEnvironment));
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// "20032018", "40426" to "2018.03.20T04:04:26".
QString timeOf(const QByteArray& date, const QByteArray& time)
{
    const QString digits = QString::fromLatin1(time.rightJustified(6, '0'));
    const QString days = QString::fromLatin1(date);
    return days.mid(4) + QLatin1Char('.') + days.mid(2, 2) + QLatin1Char('.') + days.left(2) +
           QLatin1Char('T') + digits.left(2) + QLatin1Char(':') + digits.mid(2, 2) + QLatin1Char(':') +
           digits.mid(4);
}

QVector<Point> readSolenoid(const QString& path)
{
    QVector<Point> points;
    const QList<QByteArray> lines = contentOf(path).split('\n');
    for (const QByteArray& line : lines) {
        const QList<QByteArray> cells = line.simplified().split(' ');
        if (line.startsWith('#') || cells.size() < 10)
            continue;
        const double r = cells[1].toDouble();
        const double phi = cells[2].toDouble();
        const double radial = cells[3].toDouble();
        const double azimuthal = cells[4].toDouble();
        const double c = std::cos(phi * kDegree);
        const double s = std::sin(phi * kDegree);
        points.append({{r * c * 1000, r * s * 1000, cells[0].toDouble() * 1000},
                       phi,
                       {radial * c - azimuthal * s, radial * s + azimuthal * c, cells[5].toDouble()},
                       timeOf(cells[8], cells[9])});
    }
    std::stable_sort(points.begin(), points.end(),
                     [](const Point& a, const Point& b) { return a.time < b.time; });
    return points;
}

QVector<Point> readPlane(const QString& path, bool hasHole)
{
    QVector<Point> points;
    const QList<QByteArray> lines = contentOf(path).split('\n');
    for (const QByteArray& line : lines.mid(1)) {
        const QList<QByteArray> cells = line.trimmed().split(',');
        if (cells.size() < 7)
            continue;
        const Point point{{cells[0].toDouble() * 10, cells[1].toDouble() * 10, cells[2].toDouble() * 10},
                          0,
                          {cells[3].toDouble(), cells[4].toDouble(), cells[5].toDouble()},
                          QString()};
        if (!hasHole || std::abs(point.place[0]) >= 100 || std::abs(point.place[1]) >= 100)
            points.append(point);
    }
    return points;
}

/// Whether `value` is what six significant digits leave of `expected`.
bool isSixDigitsOf(double value, double expected)
{
    if (expected == 0)
        return std::abs(value) < 1e-12;
    const double unit = std::pow(10.0, std::floor(std::log10(std::abs(expected))) - 5);
    return std::abs(value - expected) <= unit * 0.50001 + std::abs(expected) * 6e-8;
}

QString rowsOf(const CRecordingManagerMapping& manager)
{
    QString rows;
    for (const auto& block : *manager.DataSet()->MeasureBlocks()) {
        const CMeasureBlockMapping& mapped = *block;
        rows += QStringLiteral("%1 %2 %3 %4 ")
                    .arg(mapped.Position.X())
                    .arg(mapped.Position.Y())
                    .arg(mapped.Position.Z())
                    .arg(mapped.Orientation.Roll()) +
                mapped.FormatBlockAsText(QStringLiteral(";")) + QLatin1Char('\n');
    }
    return rows;
}

} // namespace

class tst_RealMaps : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (!QDir(dataPath() + QStringLiteral("/mice-solenoid-map")).exists())
            QSKIP("The published maps are not at hand");
        QProcess python;
        python.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        python.start(QStringLiteral(PYTHON_PATH),
                     {QStringLiteral(SCRIPT_PATH), dataPath(), m_directory.path()});
        if (!python.waitForStarted())
            QSKIP("There is no Python");
        QVERIFY(python.waitForFinished(120000));
        QCOMPARE(python.exitCode(), 0);
        m_golden = QJsonDocument::fromJson(contentOf(dataPath() + QStringLiteral("/GOLDEN.json"))).object();
        QVERIFY(!m_golden.isEmpty());
    }

    void maps_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("source");
        QTest::addColumn<int>("count");
        const auto row = [](const char* name, const char* source, int count) {
            QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(source) << count;
        };
        row("solenoid-small", "mice-solenoid-map/SSD_run04_polarCoordinates.dat", 486);
        row("solenoid-large", "mice-solenoid-map/SSU_run07_polarCoordinates.dat", 11514);
        row("plane-may", "mirror-magnets-xyz-map/both_magnets_2022_05_16_Bfield.csv", 368);
        row("plane-june", "mirror-magnets-xyz-map/both_magnets_2022_06_06_Bfield.csv", 368);
        row("plane-with-hole", "mirror-magnets-xyz-map/both_magnets_2022_06_06_Bfield.csv", 343);
    }

    void maps()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, source);
        QFETCH(const int, count);
        const QString path = dataPath() + QLatin1Char('/') + source;
        const QVector<Point> points = name.startsWith(QLatin1String("solenoid"))
                                          ? readSolenoid(path)
                                          : readPlane(path, name.endsWith(QLatin1String("hole")));
        QCOMPARE(points.size(), count);

        CRecordingManagerMapping manager(m_settings);
        QVERIFY(manager.Load(m_directory.filePath(name + QStringLiteral(".qdr.xml"))));
        compareRecord(manager, points);
        if (!name.endsWith(QLatin1String("hole")))
            compareStatistics(manager, m_golden.value(source).toObject(),
                              name.startsWith(QLatin1String("plane")));
        comparePositions(m_directory.filePath(name + QStringLiteral(".positions.xml")), points);
        saveAgain(manager);
        replay(manager);
    }

private:
    static void compareRecord(CRecordingManagerMapping& manager, const QVector<Point>& points)
    {
        QCOMPARE(manager.NumBlocks(), points.size());
        QCOMPARE(manager.DataSet()->ResultsCount(), static_cast<quint64>(points.size()));
        QCOMPARE(manager.DataSet()->MeasurementParameters()->Units(), CUnits::TESLA);
        QCOMPARE(manager.DataSet()->Comment(), QStringLiteral("measured map"));
        for (int i = 0; i < points.size(); ++i) {
            const Point& point = points[i];
            const CMeasureBlockMapping& block =
                *manager.DataSet()->MeasureBlocks()->at(static_cast<size_t>(i));
            QCOMPARE(block.Results.size(), 1);
            const CFieldIntensityResult& sample = *block.Results.first();
            const Vector place{block.Position.X(), block.Position.Y(), block.Position.Z()};
            const Vector field{static_cast<double>(sample.Bx()), static_cast<double>(sample.By()),
                               static_cast<double>(sample.Bz())};
            for (size_t axis = 0; axis < 3; ++axis) {
                QVERIFY2(isSixDigitsOf(place[axis], point.place[axis]), QByteArray::number(i));
                QVERIFY2(isSixDigitsOf(field[axis], point.field[axis]), QByteArray::number(i));
            }
            const double norm = std::sqrt(point.field[0] * point.field[0] + point.field[1] * point.field[1] +
                                          point.field[2] * point.field[2]);
            QVERIFY2(isSixDigitsOf(static_cast<double>(sample.B()), norm), QByteArray::number(i));
            QVERIFY(isSixDigitsOf(block.Orientation.Roll(), point.roll));
            QCOMPARE(block.Orientation.Pitch(), 0.0);
            if (!point.time.isEmpty())
                QCOMPARE(sample.Timestamp.toString(QStringLiteral("yyyy.MM.ddTHH:mm:ss")), point.time);
        }
    }

    /// With figures that others computed. In the solenoid only the field along its axis is the same
    /// component.
    static void compareStatistics(CRecordingManagerMapping& manager, const QJsonObject& golden,
                                  bool isCartesian)
    {
        std::array<QVector<double>, 3> fields;
        for (const auto& block : *manager.DataSet()->MeasureBlocks()) {
            const CFieldIntensityResult& sample = *block->Results.first();
            fields[0].append(static_cast<double>(sample.Bx()));
            fields[1].append(static_cast<double>(sample.By()));
            fields[2].append(static_cast<double>(sample.Bz()));
        }
        for (int axis = isCartesian ? 0 : 2; axis < 3; ++axis) {
            const QVector<double>& field = fields[static_cast<size_t>(axis)];
            const auto expected = [&](const char* key) {
                return golden.value(QLatin1String(key)).toArray().at(axis).toDouble();
            };
            double sum = 0;
            for (const double value : field)
                sum += value;
            const double largest = std::max(std::abs(expected("min")), std::abs(expected("max")));
            QVERIFY(std::abs(sum / field.size() - expected("mean")) < largest * 1e-6);
            QVERIFY(isSixDigitsOf(*std::min_element(field.begin(), field.end()), expected("min")));
            QVERIFY(isSixDigitsOf(*std::max_element(field.begin(), field.end()), expected("max")));
        }
    }

    static void comparePositions(const QString& path, const QVector<Point>& points)
    {
        MappingXmlFile file;
        file.SetFilePath(path);
        file.Load();
        QVERIFY(file.FileLoaded());
        QCOMPARE(file.Positions()->size(), points.size());
        QCOMPARE(file.Orientations()->size(), points.size());
        Vector min{};
        Vector max{};
        for (int i = 0; i < points.size(); ++i) {
            const CPosition& position = file.Positions()->at(i);
            const Vector place{position.X(), position.Y(), position.Z()};
            for (size_t axis = 0; axis < 3; ++axis) {
                QVERIFY2(std::abs(place[axis] - points[i].place[axis]) < 1e-9, QByteArray::number(i));
                min[axis] = std::min(min[axis], place[axis]);
                max[axis] = std::max(max[axis], place[axis]);
            }
            QCOMPARE(file.Orientations()->at(i).Roll(), points[i].roll);
        }
        const Vector fileMin{file.PositionXMin(), file.PositionYMin(), file.PositionZMin()};
        const Vector fileMax{file.PositionXMax(), file.PositionYMax(), file.PositionZMax()};
        QVERIFY(fileMin == min);
        QVERIFY(fileMax == max);
    }

    void saveAgain(CRecordingManagerMapping& manager)
    {
        const QString path = m_directory.filePath(QStringLiteral("again.qdr.xml"));
        manager.Save(path);
        QVERIFY(!manager.HasUnsavedData());
        CRecordingManagerMapping again(m_settings);
        QVERIFY(again.Load(path));
        QVERIFY(rowsOf(again) == rowsOf(manager));
        QCOMPARE(again.DataSet()->MeasurementParameters()->ToString(QStringLiteral(" ")),
                 manager.DataSet()->MeasurementParameters()->ToString(QStringLiteral(" ")));
    }

    // Each block comes once, in order, the very object of the dataset.
    static void replay(CRecordingManagerMapping& manager)
    {
        QVector<const CMeasureBlockMapping*> delivered;
        const auto connection = connect(&manager, &CRecordingManagerMapping::ReplayMeasureBlock, &manager,
                                        [&](const auto& block) {
                                            delivered.append(block.data());
                                            manager.SetIsProcessingBlock(false);
                                        });
        manager.SetTimeWarp(1e9);
        manager.SetStartReplayIndex(0);
        manager.SetEndReplayIndex(manager.NumBlocks() - 1);
        manager.StartReplay();
        QTRY_VERIFY_WITH_TIMEOUT(!manager.IsPlayingBack(), 300000);
        disconnect(connection);
        QCOMPARE(delivered.size(), manager.NumBlocks());
        for (int i = 0; i < delivered.size(); ++i)
            QCOMPARE(delivered[i], manager.DataSet()->MeasureBlocks()->at(static_cast<size_t>(i)).data());
        QVERIFY(manager.IsIdleWithData());
    }

    QTemporaryDir m_directory;
    CSettings m_settings{QString()};
    QJsonObject m_golden;
};

QTEST_GUILESS_MAIN(tst_RealMaps)
#include "tst_RealMaps.moc"
