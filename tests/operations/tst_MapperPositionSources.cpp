// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeMapperPlugin.h"
#include "CMappingParameters.h"
#include "FakeOptions.h"
#include "LogRecorder.h"
#include "MetaObjectTable.h"
#include "PropertyLog.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <array>
#include <cmath>
#include <functional>
#include <limits>

using namespace MetaObjectTable;

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

void setAxis(CAxisStepSeries* axis, double start, double stop, double step)
{
    axis->SetStart(start);
    axis->SetStop(stop);
    axis->SetStepSize(step);
}

/// The points that are left, "X Y Z Roll Pitch Yaw" each.
QStringList takeAll(CMapperPositionSource& source, int limit = 1000)
{
    QStringList places;
    CPosition position;
    COrientation orientation;
    while (places.size() < limit && source.GetNextPosition(position, orientation))
        places.append(FakeOptions::placeText(position, orientation));
    return places;
}

} // namespace

/// What decides the points of a mapping.
class tst_MapperPositionSources : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_grid = std::make_unique<CMapperPositionSourceCartesian>(); }

    void axisSurface()
    {
        const QMetaObject& meta = CAxisStepSeries::staticMetaObject;
        VERIFY_NO_DIFFERENCE(compareProperties(meta, {{"Start", "double", ReadWrite},
                                                      {"Stop", "double", ReadWrite},
                                                      {"StepSize", "double", ReadWrite}}));
        VERIFY_NO_DIFFERENCE(compareMethods(
            meta, QMetaMethod::Signal,
            {"StartChanged(double)", "StopChanged(double)", "StepSizeChanged(double)", "Updated()"}));
        VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Slot, {"OnUpdated()"}));
    }

    void axis()
    {
        CAxisStepSeries axis;
        QCOMPARE(axis.Start(), 0.0);
        QCOMPARE(axis.Stop(), 1.0);
        QCOMPARE(axis.StepSize(), 1.0);
        PropertyLog log(&axis);
        QSignalSpy updated(&axis, &CAxisStepSeries::Updated);
        for (int i = 0; i < 2; ++i)
            setAxis(&axis, 2, 3, 4);
        QCOMPARE(log.take(), QStringList({QStringLiteral("Start=2"), QStringLiteral("Stop=3"),
                                          QStringLiteral("StepSize=4")}));
        QCOMPARE(updated.count(), 3);
    }

    void sourceSurfaces()
    {
        VERIFY_NO_DIFFERENCE(
            compareProperties(CMapperPositionSource::staticMetaObject, {{"Type", "eType", Constant}}));
        VERIFY_NO_DIFFERENCE(
            compareEnum(CMapperPositionSource::staticMetaObject, "eType", {{"Cartesian", 1}, {"File", 2}}));
        VERIFY_NO_DIFFERENCE(compareProperties(CMapperPositionSourceCartesian::staticMetaObject,
                                               {{"X", "CAxisStepSeries*", Constant},
                                                {"Y", "CAxisStepSeries*", Constant},
                                                {"Z", "CAxisStepSeries*", Constant},
                                                {"Orientation", "COrientation*", Constant}}));
        VERIFY_NO_DIFFERENCE(compareMethods(CMapperPositionSourceCartesian::staticMetaObject,
                                            QMetaMethod::Slot, {"InitializePositions()"}));
        VERIFY_NO_DIFFERENCE(compareProperties(CMapperPositionSourceMappingFile::staticMetaObject,
                                               {{"MappingFile", "MappingXmlFile*", Constant}}));
        VERIFY_NO_DIFFERENCE(compareMethods(CMapperPositionSourceMappingFile::staticMetaObject,
                                            QMetaMethod::Method, {"loadMappingFile()"}));
    }

    void types()
    {
        QCOMPARE(CMapperPositionSourceCartesian().Type(), CMapperPositionSource::Cartesian);
        QCOMPARE(CMapperPositionSourceMappingFile().Type(), CMapperPositionSource::File);
        using Source = CMapperPositionSource;
        QCOMPARE(Source::TypeToText(Source::Cartesian), QStringLiteral("Cartesian"));
        QCOMPARE(Source::TypeToText(Source::File), QStringLiteral("File"));
        for (const int other : {0, 3, -1})
            QCOMPARE(Source::TypeToText(static_cast<Source::eType>(other)), QStringLiteral("Error"));
    }

    void defaultGrid()
    {
        QCOMPARE(m_grid->PositionIndex(), 0);
        m_grid->Reset();
        const QStringList corners = takeAll(*m_grid);
        QCOMPARE(corners, QStringList({QStringLiteral("0 0 0 0 0 0"), QStringLiteral("0 0 1 0 0 0"),
                                       QStringLiteral("0 1 0 0 0 0"), QStringLiteral("0 1 1 0 0 0"),
                                       QStringLiteral("1 0 0 0 0 0"), QStringLiteral("1 0 1 0 0 0"),
                                       QStringLiteral("1 1 0 0 0 0"), QStringLiteral("1 1 1 0 0 0")}));
        QCOMPARE(m_grid->PositionIndex(), 8);
    }

    // X is outermost, Z runs fastest, each inner axis begins at its start again.
    void orderOfTheAxes()
    {
        setAxis(m_grid->X(), 10, 20, 10);
        setAxis(m_grid->Y(), -1, 1, 2);
        setAxis(m_grid->Z(), 5, 7, 1);
        m_grid->Reset();
        QStringList expected;
        for (const int x : {10, 20})
            for (const int y : {-1, 1})
                for (const int z : {5, 6, 7})
                    expected.append(QStringLiteral("%1 %2 %3 0 0 0").arg(x).arg(y).arg(z));
        QCOMPARE(takeAll(*m_grid), expected);
    }

    void pointsOfAnAxis_data()
    {
        QTest::addColumn<double>("start");
        QTest::addColumn<double>("stop");
        QTest::addColumn<double>("step");
        QTest::addColumn<int>("points");
        QTest::newRow("0 to 1 by 0.1") << 0.0 << 1.0 << 0.1 << 11;
        QTest::newRow("0 to 0.3 by 0.1") << 0.0 << 0.3 << 0.1 << 3;
        QTest::newRow("one point") << 5.0 << 5.0 << 1.0 << 1;
        QTest::newRow("step beyond the stop") << 0.0 << 1.0 << 2.0 << 1;
        QTest::newRow("start above stop") << 1.0 << 0.0 << 1.0 << 0;
        QTest::newRow("step 0.001") << 0.0 << 1.0 << 0.001 << 0;
        QTest::newRow("step 0.0011") << 0.0 << 0.0033 << 0.0011 << 4;
        QTest::newRow("step above 0.001 by the least") << 0.0 << 0.0015 << std::nextafter(0.001, 1.0) << 2;
        QTest::newRow("step 0") << 0.0 << 1.0 << 0.0 << 0;
        QTest::newRow("negative step") << 1.0 << 0.0 << -0.5 << 0;
        QTest::newRow("negative step, upward") << 0.0 << 1.0 << -0.5 << 0;
        QTest::newRow("step lost against the start") << 1e17 << 2e17 << 1.0 << 1;
        QTest::newRow("start not a number") << kNan << 1.0 << 1.0 << 0;
        QTest::newRow("stop not a number") << 0.0 << kNan << 1.0 << 0;
        QTest::newRow("step not a number") << 0.0 << 1.0 << kNan << 1;
        QTest::newRow("infinite start") << -kInfinity << 1.0 << 1.0 << 1;
        QTest::newRow("infinite step") << 0.0 << kInfinity << kInfinity << 2;
        QTest::newRow("infinite step, finite stop") << 0.0 << 1.0 << kInfinity << 1;
    }

    void pointsOfAnAxis()
    {
        QFETCH(const double, start);
        QFETCH(const double, stop);
        QFETCH(const double, step);
        QFETCH(const int, points);
        const std::array<CAxisStepSeries*, 3> axes{m_grid->X(), m_grid->Y(), m_grid->Z()};
        for (CAxisStepSeries* axis : axes) {
            const LogRecorder log;
            for (CAxisStepSeries* other : axes)
                setAxis(other, 0, 0, 1);
            setAxis(axis, start, stop, step);
            m_grid->Reset();
            QCOMPARE(takeAll(*m_grid).size(), points);
        }
    }

    // The values carry the rounding errors of the steps before them.
    void stepsAreAddedUp()
    {
        setAxis(m_grid->X(), 0, 0, 1);
        setAxis(m_grid->Y(), 0, 0, 1);
        setAxis(m_grid->Z(), 0, 1, 0.1);
        m_grid->Reset();
        CPosition position;
        COrientation orientation;
        const std::array<double, 11> expected{0,
                                              0.1,
                                              0.2,
                                              0.30000000000000004,
                                              0.4,
                                              0.5,
                                              0.6,
                                              0.7,
                                              0.7999999999999999,
                                              0.8999999999999999,
                                              0.9999999999999999};
        for (const double value : expected) {
            QVERIFY(m_grid->GetNextPosition(position, orientation));
            QVERIFY(position.Z() == value);
        }
        QVERIFY(!m_grid->GetNextPosition(position, orientation));
    }

    void onlyTheFirstTooSmallStepIsTold_data()
    {
        QTest::addColumn<QString>("small");
        QTest::addColumn<QString>("told");
        QTest::newRow("X") << QStringLiteral("X") << QStringLiteral("X");
        QTest::newRow("Y") << QStringLiteral("Y") << QStringLiteral("Y");
        QTest::newRow("Z") << QStringLiteral("Z") << QStringLiteral("Z");
        QTest::newRow("Y and Z") << QStringLiteral("YZ") << QStringLiteral("Y");
        QTest::newRow("all") << QStringLiteral("XYZ") << QStringLiteral("X");
    }

    void onlyTheFirstTooSmallStepIsTold()
    {
        QFETCH(const QString, small);
        QFETCH(const QString, told);
        {
            const LogRecorder unheard;
            m_grid->X()->SetStepSize(small.contains(QLatin1Char('X')) ? 0.001 : 1);
            m_grid->Y()->SetStepSize(small.contains(QLatin1Char('Y')) ? -1 : 1);
            m_grid->Z()->SetStepSize(small.contains(QLatin1Char('Z')) ? 0 : 1);
        }
        const LogRecorder log;
        m_grid->Reset();
        QCOMPARE(log.Messages(), QStringList(QStringLiteral("DEBUG %1.StepSize is too small").arg(told)));
        QVERIFY(takeAll(*m_grid).isEmpty());
        QCOMPARE(m_grid->PositionIndex(), 0);
    }

    void anEditBeginsTheGridAnew()
    {
        const std::array<std::function<void()>, 3> edits{[&] { m_grid->X()->SetStop(2); },
                                                         [&] { m_grid->Y()->SetStart(-1); },
                                                         [&] { m_grid->Z()->SetStepSize(0.5); }};
        for (const auto& edit : edits) {
            m_grid->Reset();
            QCOMPARE(takeAll(*m_grid, 3).size(), 3);
            edit();
            QCOMPARE(m_grid->PositionIndex(), 0);
        }
        // X 0 to 2, Y -1 to 1, Z 0 to 1 by 0.5.
        QCOMPARE(takeAll(*m_grid).size(), 3 * 3 * 3);
        // The orientation is no axis.
        m_grid->Reset();
        takeAll(*m_grid, 3);
        m_grid->Orientation()->SetYaw(5);
        QCOMPARE(m_grid->PositionIndex(), 3);
    }

    void oneOrientationForAll()
    {
        m_grid->Orientation()->SetRoll(10);
        m_grid->Orientation()->SetPitch(20);
        m_grid->Orientation()->SetYaw(30);
        m_grid->Reset();
        const QStringList places = takeAll(*m_grid);
        QCOMPARE(places.size(), 8);
        for (const QString& place : places)
            QVERIFY(place.endsWith(QStringLiteral(" 10 20 30")));
    }

    void pastTheEndTheArgumentsStay()
    {
        CPosition position;
        COrientation orientation;
        position.SetX(7);
        orientation.SetPitch(8);
        QVERIFY(!m_grid->GetNextPosition(position, orientation));
        setAxis(m_grid->X(), 3, 3, 1);
        m_grid->Reset();
        QCOMPARE(takeAll(*m_grid).size(), 4);
        QVERIFY(!m_grid->GetNextPosition(position, orientation));
        QCOMPARE(FakeOptions::placeText(position, orientation), QStringLiteral("7 0 0 0 8 0"));
        QCOMPARE(m_grid->PositionIndex(), 4);
    }

    // While a user types, steps and ranges meet that nobody means.
    void aGridBeyondAllMemory()
    {
        setAxis(m_grid->X(), -1e9, 1e9, 0.0011);
        setAxis(m_grid->Y(), -1e9, 1e9, 0.0011);
        setAxis(m_grid->Z(), -1e9, 1e9, 0.0011);
        m_grid->Reset();
        QCOMPARE(takeAll(*m_grid, 5000).size(), 5000);
    }

    void file()
    {
        CMapperPositionSourceMappingFile source;
        QVERIFY(takeAll(source).isEmpty());
        load(source,
             "<point><X>1</X><Roll>9</Roll></point><point><Y>2</Y></point><point><Yaw>3</Yaw></point>");
        const QStringList expected{QStringLiteral("1 0 0 9 0 0"), QStringLiteral("1 2 0 9 0 0"),
                                   QStringLiteral("1 2 0 9 0 3")};
        QCOMPARE(takeAll(source), expected);
        QCOMPARE(source.PositionIndex(), 3);
        QVERIFY(takeAll(source).isEmpty());
        source.Reset();
        QCOMPARE(source.PositionIndex(), 0);
        QCOMPARE(takeAll(source), expected);
    }

    // A new file does not restart a list, the next session does.
    void aLoadKeepsTheIndex()
    {
        CMapperPositionSourceMappingFile source;
        load(source, "<point/><point/>");
        takeAll(source, 1);
        load(source, "<point><X>1</X></point><point><X>2</X></point>");
        QCOMPARE(source.PositionIndex(), 1);
        QCOMPARE(takeAll(source), QStringList(QStringLiteral("2 0 0 0 0 0")));
    }

    void listsOfDifferentLengthEndAtTheShorter()
    {
        CMapperPositionSourceMappingFile source;
        load(source, "<point/><point/><point/>");
        source.MappingFile()->Orientations()->removeLast();
        QCOMPARE(takeAll(source).size(), 2);
        source.MappingFile()->Positions()->clear();
        source.Reset();
        QVERIFY(takeAll(source).isEmpty());
    }

    void parametersSurface()
    {
        const QMetaObject& meta = CMappingParameters::staticMetaObject;
        VERIFY_NO_DIFFERENCE(
            compareProperties(meta, {{"SelectedMapper", "CMapperPlugin*", ReadWrite},
                                     {"MapperSource", "CMapperPositionSource*", ReadWrite},
                                     {"MapperSourceCartesian", "CMapperPositionSourceCartesian*", Constant},
                                     {"MapperSourceFile", "CMapperPositionSourceMappingFile*", Constant}}));
        VERIFY_NO_DIFFERENCE(
            compareMethods(meta, QMetaMethod::Signal,
                           {"SelectedMapperChanged(CMapperPlugin*)",
                            "MapperSourceChanged(CMapperPositionSource*)", "SourceChanged()"}));
    }

    void parameters()
    {
        CMappingParameters parameters;
        QCOMPARE(parameters.SelectedMapper(), nullptr);
        QCOMPARE(parameters.MapperSource(), parameters.MapperSourceCartesian());
        CFakeMapperPlugin mapper;
        QSignalSpy mapperSpy(&parameters, &CMappingParameters::SelectedMapperChanged);
        QSignalSpy sourceSpy(&parameters, &CMappingParameters::MapperSourceChanged);
        QSignalSpy chosenSpy(&parameters, &CMappingParameters::SourceChanged);
        for (int i = 0; i < 2; ++i) {
            parameters.SetSelectedMapper(&mapper);
            parameters.SetMapperSource(parameters.MapperSourceFile());
        }
        QCOMPARE(parameters.SelectedMapper(), &mapper);
        QCOMPARE(parameters.MapperSource(), parameters.MapperSourceFile());
        QCOMPARE(mapperSpy.count(), 1);
        QCOMPARE(sourceSpy.count(), 1);
        QCOMPARE(chosenSpy.count(), 0);
        parameters.SetMapperSource(nullptr);
        QCOMPARE(parameters.MapperSource(), nullptr);
    }

    void aMapperThatIsGoneIsNotSelected()
    {
        CMappingParameters parameters;
        auto first = std::make_unique<CFakeMapperPlugin>();
        auto second = std::make_unique<CFakeMapperPlugin>();
        parameters.SetSelectedMapper(first.get());
        parameters.SetSelectedMapper(second.get());
        QSignalSpy spy(&parameters, &CMappingParameters::SelectedMapperChanged);
        first.reset();
        QCOMPARE(spy.count(), 0);
        QCOMPARE(parameters.SelectedMapper(), second.get());
        second.reset();
        QCOMPARE(spy.count(), 1);
        QCOMPARE(parameters.SelectedMapper(), nullptr);
    }

    void switchingTheSourceResetsNothing()
    {
        CMappingParameters parameters;
        parameters.MapperSourceCartesian()->Reset();
        takeAll(*parameters.MapperSource(), 3);
        parameters.SetMapperSource(parameters.MapperSourceFile());
        parameters.SetMapperSource(parameters.MapperSourceCartesian());
        QCOMPARE(parameters.MapperSourceCartesian()->PositionIndex(), 3);
    }

private:
    void load(CMapperPositionSourceMappingFile& source, const QByteArray& points) const
    {
        const QString path = m_directory.filePath(QStringLiteral("positions.xml"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            qFatal("Cannot write the test's file");
        file.write("<NorvaneMappingFile ver=\"1.0\">" + points + "</NorvaneMappingFile>");
        file.close();
        source.MappingFile()->SetFilePath(path);
        QMetaObject::invokeMethod(&source, "loadMappingFile");
        QVERIFY(source.MappingFile()->FileLoaded());
    }

    QTemporaryDir m_directory;
    std::unique_ptr<CMapperPositionSourceCartesian> m_grid;
};

QTEST_GUILESS_MAIN(tst_MapperPositionSources)
#include "tst_MapperPositionSources.moc"
