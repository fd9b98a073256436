// SPDX-License-Identifier: GPL-3.0-or-later
#include "LogRecorder.h"
#include "MappingPageFixture.h"
#include "PropertyLog.h"

#include <QQuaternion>
#include <QSignalSpy>
#include <QVector3D>
#include <QtTest>

#include <cmath>

namespace {

constexpr double kSmallestMaxScale = 2.220446049250313e-16;

/// The direction that the arrow on view points to.
QVector3D direction(const CMappingOperationViewModel& page)
{
    return QQuaternion(float(page.QuatScalar()), float(page.QuatX()), float(page.QuatY()),
                       float(page.QuatZ()))
        .rotatedVector(QVector3D(0, 1, 0));
}

QVector<double> lastValues(const CMappingOperationViewModel& page)
{
    return {page.BLastBlock(),  page.dBLastBlock(), page.BPrimeLastBlock(),
            page.BxLastBlock(), page.ByLastBlock(), page.BzLastBlock()};
}

QVector<double> place(CMappingOperationViewModel& page)
{
    return {page.Position()->X(),       page.Position()->Y(),        page.Position()->Z(),
            page.Orientation()->Roll(), page.Orientation()->Pitch(), page.Orientation()->Yaw()};
}

} // namespace

class tst_CMappingViews : public QObject
{
    Q_OBJECT

private slots:
    void blocksAreIgnoredUntilAccepted();
    void blockInAllViews();
    void componentsAreTurned_data();
    void componentsAreTurned();
    void turnedBlockIsLeftAsItIs();
    void emptyBlock();
    void uncertaintyInPercent();

    void arrowPointsAlongTheField_data();
    void arrowPointsAlongTheField();
    void largestScale();
    void oldestVectorsGo();
    void vectorCapacity();
    void vectorByIndex();

    void firstViolationWaitsForTheTimer();
    void stateChangeReportsAtOnce();
    void flagAlone();

    void storedBlockRebuildsTheViews();
    void missingVectorsAreRebuilt();
    void lastBlockBehindTheSession();
    void axesOfEqualPlaces();
    void axesFollowTheGrid();
    void axesFollowTheFile();

    void unitsOfTheParameters();
    void uncertaintyStaysInPercent();
    void unitOfTheLimits();
    void clearedDataset();
    void pageOnARecord();
    void pageOnASession();
    void pageOnAReplay();
    void pageLeft();
};

void tst_CMappingViews::blocksAreIgnoredUntilAccepted()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    f.take(f.ramp(1), 1);
    QCOMPARE(page->BLastBlock(), 0.0);
    QCOMPARE(f.charted(*page), 0ULL);
    QVERIFY(page->VectorHistory().empty());
}

void tst_CMappingViews::blockInAllViews()
{
    MappingPageFixture f;
    const MappingPage page = f.makeRunningPage();
    f.mappingManager().SetMeasComment(QStringLiteral("left "));
    f.mappingManager().SetIsProcessingBlock(true);
    f.placeMapper(1, 2, 3, 0, 0, 90);
    Sample last = field(3, 4, 0);
    last.bbPrime = 7;
    last.dB = 0.5F;
    PropertyLog log(page.get());
    QSignalSpy arrows(page.get(), &CMappingOperationViewModel::newVectorToPlot);
    QSignalSpy released(&f.mappingManager(), &CRecordingManager::IsProcessingBlockChanged);
    f.mapping.OnNewMeasure(makeBlock({field(9, 9, 9), last}, QStringLiteral("corner")));

    QCOMPARE(place(*page), (QVector<double>{1, 2, 3, 0, 0, 90}));
    QCOMPARE(log.count(QStringLiteral("Position")), 1);
    QCOMPARE(log.count(QStringLiteral("Orientation")), 1);
    QCOMPARE(page->BLastBlock(), 5.0);
    QCOMPARE(page->BPrimeLastBlock(), 7.0);
    QCOMPARE(page->dBLastBlock(), 0.5);
    QCOMPARE(f.charted(*page), 2ULL);
    QCOMPARE(f.tableB(*page), QVector<float>{5});
    QCOMPARE(page->CommentBlock(), QStringLiteral("left corner"));
    QCOMPARE(f.scales(*page), QVector<double>{5});
    QCOMPARE(QVector3D(float(page->PosX()), float(page->PosY()), float(page->PosZ())), QVector3D(1, 2, 3));
    QCOMPARE(arrows.count(), 1);
    QCOMPARE(released.count(), 1);
    QVERIFY(!f.mappingManager().IsProcessingBlock());
}

void tst_CMappingViews::componentsAreTurned_data()
{
    QTest::addColumn<QVector3D>("angles");
    QTest::addColumn<QVector3D>("field");
    QTest::addColumn<QVector3D>("turned");
    // Roll turns about Z, pitch about X and yaw about Y, each counter-clockwise seen from the axis' tip.
    QTest::newRow("roll") << QVector3D(90, 0, 0) << QVector3D(1, 0, 0) << QVector3D(0, 1, 0);
    QTest::newRow("pitch") << QVector3D(0, 90, 0) << QVector3D(0, 1, 0) << QVector3D(0, 0, 1);
    QTest::newRow("yaw") << QVector3D(0, 0, 90) << QVector3D(0, 0, 1) << QVector3D(1, 0, 0);
    // Yaw first: z to x; pitch leaves it; roll takes it to y.
    QTest::newRow("all") << QVector3D(90, 90, 90) << QVector3D(0, 0, 1) << QVector3D(0, 1, 0);
}

void tst_CMappingViews::componentsAreTurned()
{
    QFETCH(QVector3D, angles);
    QFETCH(QVector3D, field);
    QFETCH(QVector3D, turned);
    MappingPageFixture f;
    const MappingPage page = f.makeRunningPage();
    f.placeMapper(0, 0, 0, double(angles.x()), double(angles.y()), double(angles.z()));
    const auto block = makeBlock({::field(field.x(), field.y(), field.z())});
    f.mapping.OnNewMeasure(block);
    const QVector3D shown(float(page->BxLastBlock()), float(page->ByLastBlock()), float(page->BzLastBlock()));
    QVERIFY((shown - turned).length() < 1e-6F);
    const CFieldIntensityResult& sample = *block->Results.first();
    QVERIFY((QVector3D(sample.Bx(), sample.By(), sample.Bz()) - turned).length() < 1e-6F);
    QVERIFY((direction(*page) - turned).length() < 1e-6F);
}

void tst_CMappingViews::turnedBlockIsLeftAsItIs()
{
    MappingPageFixture f;
    const MappingPage page = f.makeRunningPage();
    auto block = MappingBlock::create();
    block->Results = makeBlock({field(1, 2, 3)})->Results;
    block->Orientation.SetRoll(90);
    block->SetRotAppliedOnMeasBlock(true);
    page->OnNewMeasure(block);
    QCOMPARE(lastValues(*page).mid(3), (QVector<double>{1, 2, 3}));
}

void tst_CMappingViews::emptyBlock()
{
    MappingPageFixture f;
    const MappingPage page = f.makeRunningPage();
    f.take({field(1, 2, 2)}, 1);
    QSignalSpy arrows(page.get(), &CMappingOperationViewModel::newVectorToPlot);
    f.take({}, 5, 6, 7);
    QCOMPARE(page->BLastBlock(), 3.0);
    QCOMPARE(page->PosX(), 5.0);
    QCOMPARE(page->PosZ(), 7.0);
    QCOMPARE(page->Scale(), 3.0);
    QCOMPARE(f.scales(*page), QVector<double>{3});
    QCOMPARE(arrows.count(), 0);
}

void tst_CMappingViews::uncertaintyInPercent()
{
    MappingPageFixture f;
    f.live().SetUncertaintyUnits(CUnits::PERCENT);
    const MappingPage page = f.makeRunningPage();
    Sample sample = field(0, 0, 10);
    sample.dB = 0.25F;
    f.take({sample});
    QCOMPARE(page->dBLastBlock(), 2.5);
}

void tst_CMappingViews::arrowPointsAlongTheField_data()
{
    QTest::addColumn<QVector3D>("field");
    QTest::newRow("+X") << QVector3D(2, 0, 0);
    QTest::newRow("-X") << QVector3D(-2, 0, 0);
    QTest::newRow("+Y") << QVector3D(0, 2, 0);
    QTest::newRow("-Y") << QVector3D(0, -2, 0);
    QTest::newRow("+Z") << QVector3D(0, 0, 2);
    QTest::newRow("-Z") << QVector3D(0, 0, -2);
    QTest::newRow("slanted") << QVector3D(1, -2, 2);
    QTest::newRow("tiny") << QVector3D(1e-9F, 0, 1e-9F);
}

void tst_CMappingViews::arrowPointsAlongTheField()
{
    QFETCH(QVector3D, field);
    MappingPageFixture f;
    const MappingPage page = f.makeRunningPage();
    f.take({::field(field.x(), field.y(), field.z())});
    QVERIFY((direction(*page) - (field * 1e6F).normalized()).length() < 1e-5F);
}

void tst_CMappingViews::largestScale()
{
    MappingPageFixture f;
    const MappingPage page = f.makeRunningPage();
    f.take({magnitude(0)});
    QCOMPARE(page->MaxScale(), kSmallestMaxScale);
    // Whoever hears of the largest one finds the vector that it is of.
    double scaleOfLargest = 0;
    connect(page.get(), &CMappingOperationViewModel::MaxScaleChanged, this,
            [&] { scaleOfLargest = page->Scale(); });
    f.take({magnitude(-5)});
    QCOMPARE(scaleOfLargest, -5.0);
    QCOMPARE(page->Scale(), -5.0);
    QCOMPARE(page->MaxScale(), 5.0);
    f.take({magnitude(4)});
    QCOMPARE(page->Scale(), 4.0);
    QCOMPARE(page->MaxScale(), 5.0);
    f.take({magnitude(std::nanf(""))});
    QVERIFY(std::isnan(page->Scale()));
    QCOMPARE(page->MaxScale(), 5.0);
}

void tst_CMappingViews::oldestVectorsGo()
{
    MappingPageFixture f;
    f.settings.SetMappingMaxMeasurementCount(6);
    const MappingPage page = f.makeRunningPage();
    QCOMPARE(page->MaxVectorCount(), 3);
    // A dataset that keeps short blocks longer than their arrows.
    for (int i = 1; i <= 5; ++i)
        f.take({magnitude(float(i))});
    QCOMPARE(f.scales(*page), (QVector<double>{3, 4, 5}));
}

void tst_CMappingViews::vectorCapacity()
{
    MappingPageFixture f;
    f.settings.SetMappingMaxMeasurementCount(7);
    QCOMPARE(f.makePage()->MaxVectorCount(), 3);
    f.live().SetBlockSize(8);
    QCOMPARE(f.makePage()->MaxVectorCount(), 1);
    f.live().SetBlockSize(0);
    QCOMPARE(f.makePage()->MaxVectorCount(), 0);
    f.live().SetBlockSize(1);
    f.settings.SetMappingMaxMeasurementCount(std::numeric_limits<quint64>::max());
    QCOMPARE(f.makePage()->MaxVectorCount(), std::numeric_limits<int>::max());
}

void tst_CMappingViews::vectorByIndex()
{
    MappingPageFixture f;
    const MappingPage page = f.makeRunningPage();
    f.take({field(3, 0, 0)}, 1, 2, 3);
    f.take({field(0, 5, 0)}, 4, 5, 6);
    page->getComputeVector3D(0);
    QCOMPARE(page->Scale(), 3.0);
    QCOMPARE(page->PosY(), 2.0);
    QVERIFY((direction(*page) - QVector3D(1, 0, 0)).length() < 1e-6F);
    PropertyLog log(page.get());
    for (const int index : {2, -1, 1000000})
        page->getComputeVector3D(index);
    QCOMPARE(log.take(), QStringList());
    page->getComputeVector3D(1);
    QCOMPARE(page->Scale(), 5.0);
    QCOMPARE(page->PosZ(), 6.0);
    QVERIFY((direction(*page) - QVector3D(0, 1, 0)).length() < 1e-6F);
}

void tst_CMappingViews::firstViolationWaitsForTheTimer()
{
    MappingPageFixture f;
    f.alarm().SetState(CAlarm::Notification);
    const MappingPage page = f.makeRunningPage();
    f.take({magnitude(1)});
    QVERIFY(page->AlarmParametersViewModel()->FlagNotification());
    QCOMPARE(f.notifier.calls, QStringList());
}

void tst_CMappingViews::stateChangeReportsAtOnce()
{
    MappingPageFixture f;
    const MappingPage page = f.makeRunningPage();
    f.take({magnitude(1)});
    QVERIFY(!page->AlarmParametersViewModel()->FlagNotification());
    int states = 0;
    connect(page.get(), &CMappingOperationViewModel::LastAlarmStateChanged, this, [&states] { ++states; });
    f.alarm().SetState(CAlarm::Notification);
    LogRecorder log;
    f.take({magnitude(1)});
    QVERIFY(page->AlarmParametersViewModel()->FlagNotification());
    QCOMPARE(f.notifier.calls, QStringList{QString::fromUtf8(
                                   "B is out-of-limit [µT]|Minimum = 0.0000\nB = 1.0000\nMaximum = 0.0000")});
    QCOMPARE(log.Texts(QtWarningMsg),
             QStringList{QString::fromUtf8(
                 "B is out-of-limit [µT] : Minimum = 0.0000, B = 1.0000, Maximum = 0.0000")});
    QCOMPARE(states, 1);
    f.take({magnitude(2)});
    QCOMPARE(f.notifier.calls.size(), 1);
    f.alarm().SetState(CAlarm::Off);
    f.take({magnitude(2)});
    QVERIFY(!page->AlarmParametersViewModel()->FlagNotification());
}

void tst_CMappingViews::flagAlone()
{
    MappingPageFixture f;
    const MappingPage page = f.makeRunningPage();
    f.alarm().SetState(CAlarm::FlagNotification);
    LogRecorder log;
    f.take({magnitude(1)});
    QVERIFY(page->AlarmParametersViewModel()->FlagNotification());
    QCOMPARE(log.Texts(QtWarningMsg).size(), 1);
    QCOMPARE(f.notifier.calls, QStringList());
}

void tst_CMappingViews::storedBlockRebuildsTheViews()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    f.connectInstrument();
    f.recordRow(*page, 4);
    QSignalSpy visible(page.get(), &CMappingOperationViewModel::setVisibleUntilChart);
    QSignalSpy cleared(page.get(), &CMappingOperationViewModel::clear3DPlots);
    f.mappingManager().playCurrentBlock(2);
    QCOMPARE(f.charted(*page), 4ULL);
    QCOMPARE(f.tableB(*page), (QVector<float>{10, 20}));
    QCOMPARE(f.axes(*page), (QVector<double>{1, 4, -4, -1, 2, 8}));
    QCOMPARE(page->BLastBlock(), 20.0);
    // The place stays where the mapper was last.
    QCOMPARE(place(*page), (QVector<double>{4, -4, 8, 0, 0, 0}));
    QCOMPARE(page->CommentBlock(), QStringLiteral("2"));
    QCOMPARE(f.scales(*page), (QVector<double>{10, 20, 30, 40}));
    QCOMPARE(visible.count(), 1);
    QCOMPARE(cleared.count(), 0);
    f.mappingManager().playCurrentBlock(4);
    QCOMPARE(f.tableB(*page), (QVector<float>{10, 20, 30, 40}));
    QCOMPARE(page->BLastBlock(), 40.0);
}

void tst_CMappingViews::missingVectorsAreRebuilt()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    f.recordRow(*page, 3);
    // A replay that stops early has drawn one arrow only.
    f.mappingManager().SetReplayStepByStep(true);
    page->start();
    QTRY_COMPARE(page->VectorHistory().size(), std::size_t(1));
    f.mappingManager().SetEndReplayIndex(0);
    page->stop();
    QSignalSpy visible(page.get(), &CMappingOperationViewModel::setVisibleUntilChart);
    QSignalSpy cleared(page.get(), &CMappingOperationViewModel::clear3DPlots);
    f.mappingManager().SetEndReplayIndex(2);
    f.mappingManager().playCurrentBlock(2);
    QCOMPARE(f.scales(*page), (QVector<double>{10, 20}));
    QCOMPARE(cleared.count(), 1);
    QCOMPARE(visible.count(), 0);
}

void tst_CMappingViews::lastBlockBehindTheSession()
{
    MappingPageFixture f;
    f.connectInstrument();
    f.mapper.MapperType = CMapperPlugin::kStopAndGo;
    CMapperPositionSourceCartesian& grid = *f.mappingParameters().MapperSourceCartesian();
    grid.X()->SetStop(2);
    grid.Y()->SetStop(0);
    grid.Z()->SetStop(0);
    const MappingPage page = f.makeRunningPage();
    for (int i = 1; i <= 3; ++i)
        f.mapping.OnNewMeasure(makeBlock(f.ramp(i)));
    QVERIFY(!f.mapping.SessionInProgress());
    QVERIFY(!f.mappingManager().IsRecording());
    QVERIFY(f.mappingManager().IsIdleWithData());
    QCOMPARE(f.tableB(*page), (QVector<float>{10, 20, 30}));
    QCOMPARE(f.charted(*page), 6ULL);
    QCOMPARE(f.scales(*page), (QVector<double>{10, 20, 30}));
    QCOMPARE(page->BLastBlock(), 30.0);
    // The last block is a stored one to the views: the place is still that of the one before.
    QCOMPARE(page->Position()->X(), 1.0);
    QCOMPARE(f.axes(*page), (QVector<double>{0, 2, 0, 1, 0, 1}));
}

void tst_CMappingViews::axesOfEqualPlaces()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    page->resume();
    for (int i = 1; i <= 2; ++i)
        f.take(f.ramp(i), 5, -6, 7);
    page->stop();
    f.mappingManager().playCurrentBlock(1);
    QCOMPARE(f.axes(*page), (QVector<double>{5, 6, -6, -5, 7, 8}));
}

void tst_CMappingViews::axesFollowTheGrid()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    CMapperPositionSourceCartesian& grid = *f.mappingParameters().MapperSourceCartesian();
    grid.X()->SetStart(-1);
    grid.X()->SetStop(-2);
    grid.Y()->SetStart(3);
    grid.Y()->SetStop(4);
    grid.Z()->SetStart(5);
    grid.Z()->SetStop(6);
    QCOMPARE(f.axes(*page), (QVector<double>{-1, -2, 3, 4, 5, 6}));
}

void tst_CMappingViews::axesFollowTheFile()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    CMappingParameters& parameters = f.mappingParameters();
    MappingXmlFile& file = *parameters.MapperSourceFile()->MappingFile();
    const auto load = [&](const QByteArray& points) {
        QFile stored(f.directory.filePath(QStringLiteral("points.xml")));
        QVERIFY(stored.open(QIODevice::WriteOnly | QIODevice::Truncate));
        stored.write("<NorvaneMappingFile ver=\"1.0\">" + points + "</NorvaneMappingFile>");
        stored.close();
        file.SetFilePath(stored.fileName());
        parameters.MapperSourceFile()->loadMappingFile();
    };
    page->MappingParametersViewModel()->SetSelectedSourceIndex(1);
    QCOMPARE(f.axes(*page), (QVector<double>{0, 1, 0, 1, 0, 1}));

    load("<point><X>5</X><Y>-3</Y></point>");
    const QVector<double> ofFile{0, 5, -3, 0, 0, 0};
    QCOMPARE(f.axes(*page), ofFile);
    page->MappingParametersViewModel()->SetSelectedSourceIndex(0);
    QCOMPARE(f.axes(*page), (QVector<double>{0, 1, 0, 1, 0, 1}));
    page->MappingParametersViewModel()->SetSelectedSourceIndex(1);
    QCOMPARE(f.axes(*page), ofFile);

    // A file that cannot be opened shows no message box of a parse error, but one all the same.
    file.SetFileName(QStringLiteral("points.xml"));
    QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
    file.SetFilePath(f.directory.filePath(QStringLiteral("none.xml")));
    parameters.MapperSourceFile()->loadMappingFile();
    QCOMPARE(file.FileName(), QString());
    QCOMPARE(f.axes(*page), ofFile);
}

void tst_CMappingViews::unitsOfTheParameters()
{
    MappingPageFixture f;
    const MappingPage page = f.makeRunningPage();
    f.take({magnitude(1)});
    f.live().SetUnits(CUnits::GAUSS);
    QVERIFY(f.mappingManager().IsDataSetEmpty());
    QCOMPARE(page->BLastBlock(), 0.0);
    QCOMPARE(page->DisplayUnits(), CUnits::GAUSS);
    QCOMPARE(page->DisplayUncertaintyUnits(), GetUncertaintyUnit(CUnits::GAUSS));
    f.live().SetUncertaintyUnits(CUnits::PERCENT);
    QCOMPARE(page->DisplayUncertaintyUnits(), CUnits::PERCENT);
}

void tst_CMappingViews::uncertaintyStaysInPercent()
{
    MappingPageFixture f;
    f.live().SetUncertaintyUnits(CUnits::PERCENT);
    const MappingPage page = f.makePage();
    QCOMPARE(page->DisplayUncertaintyUnits(), CUnits::PERCENT);
    f.live().SetUnits(CUnits::TESLA);
    QCOMPARE(page->DisplayUnits(), CUnits::TESLA);
    QCOMPARE(page->DisplayUncertaintyUnits(), CUnits::PERCENT);
}

void tst_CMappingViews::unitOfTheLimits()
{
    MappingPageFixture f;
    const MappingPage page = f.makePage();
    CAlarmParametersMappingViewModel& box = *page->AlarmParametersViewModel();
    QCOMPARE(box.DisplayAlarmUnits(), CUnits::MICRO_TESLA);
    f.live().SetUncertaintyUnits(CUnits::PERCENT);
    f.alarm().SetAxis(CAxis::dB);
    QCOMPARE(box.DisplayAlarmUnits(), CUnits::PERCENT);
    f.alarm().SetAxis(CAxis::Bx);
    f.live().SetUnits(CUnits::GAUSS);
    QCOMPARE(box.DisplayAlarmUnits(), CUnits::GAUSS);
}

void tst_CMappingViews::clearedDataset()
{
    MappingPageFixture f;
    const MappingPage page = f.makeRunningPage();
    f.take({magnitude(5)}, 1, 2, 3, QStringLiteral("x"));
    CMapperPositionSourceCartesian& grid = *f.mappingParameters().MapperSourceCartesian();
    grid.X()->SetStop(9);
    CMeasurementParameters other;
    f.mappingData().SetMeasurementParameters(&other);
    f.live().SetBlockSize(50);
    QSignalSpy cleared(page.get(), &CMappingOperationViewModel::clear3DPlots);
    f.mappingData().Clear();
    QCOMPARE(lastValues(*page), QVector<double>(6, 0.0));
    QCOMPARE(place(*page), QVector<double>(6, 0.0));
    QCOMPARE(f.axes(*page), (QVector<double>{0, 9, 0, 1, 0, 1}));
    QCOMPARE(f.mappingData().MeasurementParameters(), &f.live());
    QCOMPARE(page->MaxVectorCount(), 2);
    QCOMPARE(page->MaxScale(), kSmallestMaxScale);
    QCOMPARE(cleared.count(), 1);
    QVERIFY(page->VectorHistory().empty());
    QCOMPARE(f.tableB(*page), QVector<float>());
    QCOMPARE(f.charted(*page), 0ULL);
    QCOMPARE(page->CommentBlock(), QString());
}

void tst_CMappingViews::pageLeft()
{
    MappingPageFixture f;
    const MappingPage page = f.makeRunningPage();
    page->PageLeft();
    PropertyLog log(page.get());
    QSignalSpy cleared(page.get(), &CMappingOperationViewModel::clear3DPlots);
    f.take({magnitude(5)}, 1, 2, 3);
    CMapperPositionSourceCartesian& grid = *f.mappingParameters().MapperSourceCartesian();
    for (CAxisStepSeries* axis : {grid.X(), grid.Y(), grid.Z()}) {
        axis->SetStart(7);
        axis->SetStop(8);
    }
    f.live().SetUnits(CUnits::GAUSS);
    f.live().SetUncertaintyUnits(CUnits::PERCENT);
    f.alarm().SetAxis(CAxis::dB);
    f.mappingData().Clear();
    emit f.mappingParameters().SourceChanged();
    emit f.mappingParameters().MapperSourceFile()->MappingFile()->Loaded();
    emit f.mappingManager().IsPlayingBackChanged(true);
    emit page->DatasetLoaded();
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(cleared.count(), 0);
}

void tst_CMappingViews::pageOnARecord()
{
    MappingPageFixture f;
    f.recordRow(*f.makePage(), 3);
    f.mappingManager().playCurrentBlock(1);
    const MappingPage page = f.makePage();
    QVERIFY(page->CanAcceptNewMeasure());
    QCOMPARE(f.tableB(*page), (QVector<float>{10, 20, 30}));
    QCOMPARE(f.charted(*page), 6ULL);
    QCOMPARE(f.scales(*page), (QVector<double>{10, 20, 30}));
    QCOMPARE(page->BLastBlock(), 30.0);
    QCOMPARE(page->CommentBlock(), QStringLiteral("3"));
    QCOMPARE(f.axes(*page), (QVector<double>{1, 3, -3, -1, 2, 6}));
    QCOMPARE(f.mappingManager().ReplayIndex(), 2);
}

void tst_CMappingViews::pageOnASession()
{
    MappingPageFixture f;
    f.connectInstrument();
    f.makePage()->resume();
    {
        const MappingPage page = f.makePage();
        f.mappingParameters().SetSelectedMapper(&f.mapper);
        f.take(f.ramp(1), 1);
        QCOMPARE(f.scales(*page), QVector<double>{10});
    }
    const MappingPage page = f.makePage();
    QCOMPARE(page->MaxVectorCount(), 50);
    f.mappingParameters().SetSelectedMapper(&f.mapper);
    f.take(f.ramp(2), 2);
    QCOMPARE(f.tableB(*page), (QVector<float>{10, 20}));
    QCOMPARE(f.scales(*page), (QVector<double>{10, 20}));
}

void tst_CMappingViews::pageOnAReplay()
{
    MappingPageFixture f;
    MappingPage page = f.makePage();
    f.recordRow(*page, 3);
    page->ReplayParametersViewModel()->SetStepByStepMode(true);
    page->start();
    QTRY_COMPARE(page->BLastBlock(), 10.0);
    page = f.makePage();
    QCOMPARE(f.scales(*page), (QVector<double>{10}));
    QCOMPARE(page->MaxVectorCount(), 3);
    QCOMPARE(place(*page), (QVector<double>{1, -1, 2, 0, 0, 0}));
    page->step();
    QTRY_COMPARE(f.scales(*page), (QVector<double>{10, 20}));
    QCOMPARE(f.charted(*page), 4ULL);
}

QTEST_MAIN(tst_CMappingViews)
#include "tst_CMappingViews.moc"
