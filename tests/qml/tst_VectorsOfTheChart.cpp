// SPDX-License-Identifier: GPL-3.0-or-later
// The vectors of a mapping in space, judged by their items and by what the picture shows.
#include "HeapGrowth.h"
#include "LogRecorder.h"
#include "PictureDifference.h"
#include "SceneTestMain.h"
#include "VectorsFixture.h"

#include <QQmlComponent>
#include <QTest>

class tst_VectorsOfTheChart : public QObject, private VectorsFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { QmlTestSetup::Prepare(); }
    void init() { begin(); }
    void cleanup() { end(); }

    void vectorOfABlock();
    void arrowsLieAlongTheAxes_data();
    void arrowsLieAlongTheAxes();
    void longestArrow();
    void oldestGoes();
    void failureIsLogged();
    void signalsOfThePage();
    void allVectors_data();
    void allVectors();
    void allAreAskedForBeyondTheCapacity();
    void visibleUntil_data();
    void visibleUntil();
    void fieldThatIsNotANumber();
    void memoryDoesNotGrow();
};

void tst_VectorsOfTheChart::vectorOfABlock()
{
    m_page->setProperty("SliderValueGraph3D", 0.5);
    show();
    const QImage before = picture();
    const QQuaternion rotation = QQuaternion(0.5F, -0.5F, 0.5F, 0.5F);
    m_page->append({3, {0.25F, 0.5F, 0.75F}, rotation});
    const QVector<QObject*> all = vectors();
    QCOMPARE(all.size(), 1);
    const QObject* vector = all.first();
    QCOMPARE(vector->property("meshFile").toString(), QStringLiteral(":/Resources/Mesh/ArrowMesh.obj"));
    QCOMPARE(vector->property("shadowCasting").toBool(), false);
    QCOMPARE(vector->property("visible").toBool(), true);
    QCOMPARE(vector->property("position").value<QVector3D>(), QVector3D(0.25F, 0.5F, 0.75F));
    QCOMPARE(vector->property("rotation").value<QQuaternion>(), rotation);
    QCOMPARE(vector->property("scaling").value<QVector3D>(), QVector3D(0.1F, 0.5F, 0.1F));
    // The scene lets go of the name of a texture that it has read: its colour is seen in the picture.
    const Difference arrow = compare(picture(), before, place());
    QVERIFY(arrow.count > 100);
    QVERIFY2(arrow.colourBefore.hsvSaturation() > 100 && (arrow.colourBefore.hsvHue() + 10) % 360 < 20,
             qPrintable(arrow.colourBefore.name()));
}

void tst_VectorsOfTheChart::arrowsLieAlongTheAxes_data()
{
    QTest::addColumn<int>("preset");
    QTest::addColumn<QVector<int>>("inSight");
    // Seen along an axis its arrow points at the viewer and covers its own foot.
    QTest::addRow("front") << 0 << QVector<int>{0, 1, 2, 3};
    QTest::addRow("side") << 6 << QVector<int>{2, 3, 4, 5};
    QTest::addRow("isometric right") << 14 << QVector<int>{0, 1, 2, 3, 4, 5};
    QTest::addRow("above") << 16 << QVector<int>{0, 1, 4, 5};
}

/// An arrow points to where the place lies that is further along its axis.
void tst_VectorsOfTheChart::arrowsLieAlongTheAxes()
{
    QFETCH(int, preset);
    QFETCH(QVector<int>, inSight);
    const QVector3D directions[] = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};
    m_fixture.settings.SetMapping3DCameraPreset(
        static_cast<QtDataVisualization::Q3DCamera::CameraPreset>(preset));
    m_fixture.settings.SetMapping3DOrthoProjection(true);
    show();
    const QImage empty = picture();
    const auto drawn = [&](const Vector& vector, double length) {
        emit m_page->clear3DPlots();
        m_page->setProperty("MaxScale", 1.0);
        scene()->setProperty("arrowLength", length);
        m_page->makeCurrent(vector);
        emit m_page->newVectorToPlot();
        return compare(picture(), empty, place());
    };
    // A short one is a mark.
    const Difference centre = drawn(FakeMappingPage::along({0, 1, 0}, 1, kCentre), 0.02);
    QVERIFY(centre.count > 5);
    for (const int index : inSight) {
        const QVector3D& direction = directions[index];
        const Difference mark = drawn(FakeMappingPage::along({0, 1, 0}, 1, kCentre + 0.4F * direction), 0.02);
        const Difference arrow = drawn(FakeMappingPage::along(direction, 1, kCentre), 0.4);
        QVERIFY(mark.count > 5);
        QVERIFY(arrow.count > 50);
        const double angle = angleBetween(arrow.middle - centre.middle, mark.middle - centre.middle);
        QVERIFY2(angle < 6, qPrintable(QStringLiteral("%1: %2").arg(index).arg(angle)));
    }
}

/// The strongest field has the slider's length, in the moment in which its arrow is made.
void tst_VectorsOfTheChart::longestArrow()
{
    m_page->setProperty("SliderValueGraph3D", 0.4);
    show();
    for (const double scale : {2.0, 8.0, -16.0, 4.0})
        m_page->append(FakeMappingPage::along({1, 0, 0}, scale, kCentre));
    QCOMPARE(lengths(), (QVector<float>{0.4F, 0.4F, -0.4F, 0.1F}));
    // Made anew they share the last measure.
    manager().DataSet()->SetResultsCount(4);
    emit m_page->reload3DPlots();
    QCOMPARE(lengths(), (QVector<float>{0.05F, 0.2F, -0.4F, 0.1F}));
}

void tst_VectorsOfTheChart::oldestGoes()
{
    m_page->setProperty("MaxVectorCount", 3);
    show();
    for (const Vector& vector : row(5))
        m_page->append(vector);
    const QVector<QObject*> all = vectors();
    QCOMPARE(all.size(), 3);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(all.at(i)->property("position").value<QVector3D>().x(), float(i + 3) / 10);
    // All of the scene's items
    picture();
    QCOMPARE(scene()->property("vectors").value<QJSValue>().property(QStringLiteral("length")).toInt(), 3);
    m_page->setProperty("MaxVectorCount", 0);
    emit m_page->clear3DPlots();
    m_page->append(row(1).first());
    QCOMPARE(vectors().size(), 0);
}

void tst_VectorsOfTheChart::failureIsLogged()
{
    show();
    QQmlComponent broken(m_engine.get());
    scene()->setProperty("vectorComponent", QVariant::fromValue(&broken));
    const LogRecorder log;
    m_page->append(row(1).first());
    QCOMPARE(log.Texts(QtDebugMsg), QStringList{QStringLiteral("3D vector add element error  = -1")});
    QCOMPARE(vectors().size(), 0);
}

void tst_VectorsOfTheChart::signalsOfThePage()
{
    show();
    const QImage empty = picture();
    for (const Vector& vector : row(3))
        m_page->append(vector);
    QCOMPARE(vectors().size(), 3);
    QVERIFY(compare(picture(), empty, place()).count > 100);
    emit m_page->clear3DPlots();
    QCOMPARE(vectors().size(), 0);
    QCOMPARE(compare(picture(), empty, place()).count, 0);

    manager().DataSet()->SetResultsCount(3);
    emit m_page->reload3DPlots();
    QCOMPARE(vectors().size(), 3);
    emit m_page->reload3DPlots();
    QCOMPARE(vectors().size(), 3);
    rest(2);
    QCOMPARE(visibleCount(), 3);
    const QImage three = picture();
    emit m_page->setVisibleUntilChart();
    QCOMPARE(visibleCount(), 2);
    QVERIFY(compare(picture(), three, place()).count > 20);
}

void tst_VectorsOfTheChart::allVectors_data()
{
    QTest::addColumn<bool>("isPlayingBack");
    QTest::addColumn<bool>("isRecording");
    QTest::addColumn<bool>("isIdleWithData");
    QTest::addColumn<int>("expected");
    QTest::addColumn<int>("expectedVisible");
    // Of 9 vectors, 7 blocks in the dataset and the replay at its fourth.
    QTest::addRow("running") << false << false << false << 7 << 7;
    QTest::addRow("recording") << false << true << false << 7 << 7;
    QTest::addRow("recording with data") << false << true << true << 7 << 7;
    QTest::addRow("at rest") << false << false << true << 7 << 4;
    QTest::addRow("replay") << true << false << false << 4 << 4;
    QTest::addRow("replay over data") << true << false << true << 4 << 4;
}

/// What the page has is shown as soon as there is a scene, and made anew at its word.
void tst_VectorsOfTheChart::allVectors()
{
    QFETCH(bool, isPlayingBack);
    QFETCH(bool, isRecording);
    QFETCH(bool, isIdleWithData);
    QFETCH(int, expected);
    QFETCH(int, expectedVisible);
    m_page->history = row(9);
    m_page->maxScale = 9;
    manager().DataSet()->SetResultsCount(7);
    manager().SetIsIdleWithData(isIdleWithData);
    manager().SetIsRecording(isRecording);
    manager().SetIsPlayingBack(isPlayingBack);
    manager().SetReplayIndex(3);
    show();
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(m_page->asked, firstNumbers(expected));
        QCOMPARE(vectors().size(), expected);
        QCOMPARE(visibleCount(), expectedVisible);
        QCOMPARE(vectors().constLast()->property("position").value<QVector3D>().x(), float(expected) / 10);
        m_page->asked.clear();
        emit m_page->reload3DPlots();
    }
}

void tst_VectorsOfTheChart::allAreAskedForBeyondTheCapacity()
{
    m_page->setProperty("MaxVectorCount", 4);
    m_page->history = row(4);
    manager().DataSet()->SetResultsCount(6);
    show();
    QCOMPARE(m_page->asked, firstNumbers(6));
    QVector<float> places;
    const QVector<QObject*> arrows = vectors();
    for (const QObject* arrow : arrows)
        places.append(arrow->property("position").value<QVector3D>().x());
    // The page knows four: the last two are those of its fourth again, in the place of the oldest.
    QCOMPARE(places, (QVector<float>{0.3F, 0.4F, 0.4F, 0.4F}));
}

void tst_VectorsOfTheChart::visibleUntil_data()
{
    QTest::addColumn<bool>("isPlayingBack");
    QTest::addColumn<bool>("isIdleWithData");
    QTest::addColumn<int>("replayIndex");
    QTest::addColumn<int>("results");
    QTest::addColumn<int>("expected");
    QTest::addRow("running") << false << false << 1 << 4 << 4;
    QTest::addRow("more results than vectors") << false << false << 1 << 40 << 6;
    QTest::addRow("no results") << false << false << 1 << 0 << 0;
    QTest::addRow("at rest") << false << true << 1 << 4 << 2;
    QTest::addRow("at rest before the first") << false << true << -1 << 4 << 0;
    QTest::addRow("at rest beyond the last") << false << true << 30 << 4 << 6;
    QTest::addRow("replay") << true << false << 4 << 4 << 5;
}

void tst_VectorsOfTheChart::visibleUntil()
{
    QFETCH(bool, isPlayingBack);
    QFETCH(bool, isIdleWithData);
    QFETCH(int, replayIndex);
    QFETCH(int, results);
    QFETCH(int, expected);
    show();
    for (const Vector& vector : row(6))
        m_page->append(vector);
    manager().SetIsPlayingBack(isPlayingBack);
    manager().SetIsIdleWithData(isIdleWithData);
    manager().SetReplayIndex(replayIndex);
    manager().DataSet()->SetResultsCount(quint64(results));
    emit m_page->setVisibleUntilChart();
    QCOMPARE(visibleCount(), expected);
    // What was hidden is shown again.
    manager().SetIsPlayingBack(true);
    manager().SetReplayIndex(5);
    emit m_page->setVisibleUntilChart();
    QCOMPARE(visibleCount(), 6);
}

void tst_VectorsOfTheChart::fieldThatIsNotANumber()
{
    m_page->setProperty("SliderValueGraph3D", 0.5);
    show();
    const QImage empty = picture();
    m_page->append(FakeMappingPage::along({1, 0, 0}, 1, {0.2F, 0.5F, 0.5F}));
    const QImage first = picture();
    const LogRecorder log;
    const auto nan = float(kNan);
    m_page->append({kNan, {0.7F, 0.5F, 0.5F}, QQuaternion(nan, nan, nan, nan)});
    m_page->append({1, {nan, 0.5F, 0.5F}, QQuaternion(1, 0, 0, 0)});
    m_page->append({0, {0.7F, 0.5F, 0.5F}, QQuaternion(1, 0, 0, 0)});
    QVERIFY(compare(picture(), first, place()).count < 60);
    m_page->append(FakeMappingPage::along({1, 0, 0}, 1, {0.7F, 0.5F, 0.5F}));
    QVERIFY(compare(picture(), first, place()).count > 100);
    QVERIFY(compare(first, empty, place()).count > 100);
    QCOMPARE(log.Messages(), QStringList());
}

void tst_VectorsOfTheChart::memoryDoesNotGrow()
{
    m_page->history = row(40);
    rest(40);
    show();
    const double growth = heapGrowth(3, 15, [this] {
        show(false);
        picture();
        show();
        picture();
    });
    // An arrow takes more than a kilobyte, and 600 were made.
    QVERIFY2(growth < 300, qPrintable(QString::number(growth)));
}

int main(int argc, char* argv[])
{
    return runSceneTest<tst_VectorsOfTheChart>(argc, argv);
}

#include "tst_VectorsOfTheChart.moc"
