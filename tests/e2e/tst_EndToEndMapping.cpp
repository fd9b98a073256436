// SPDX-License-Identifier: GPL-3.0-or-later
// The mapping page in the whole program: maps against a formula and against published ones, and mappers of
// every conduct.
#include "CMapperPlugin.h"
#include "COperationMapping.h"
#include "EndToEndTest.h"

#include <QAbstractItemModel>
#include <QDir>
#include <QFile>
#include <QJSValue>
#include <QPointer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QQuaternion>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QUrl>
#include <QVector3D>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using Vector = std::array<double, 3>;

/// What a map must show at one of its places.
struct Place
{
    Vector place;
    Vector field;
};

double norm(const Vector& vector)
{
    return std::sqrt(vector[0] * vector[0] + vector[1] * vector[1] + vector[2] * vector[2]);
}

/// mu0/4pi (3 r (m r) / r^5 - m / r^3), in microtesla, with lengths in millimetres, of the moment (0.3, -0.2,
/// 0.9) A m^2 at (5, -4, -60).
Vector dipole(const Vector& place)
{
    const Vector moment{0.3, -0.2, 0.9};
    const Vector r{(place[0] - 5) / 1000, (place[1] + 4) / 1000, (place[2] + 60) / 1000};
    const double distance = norm(r);
    const double along = moment[0] * r[0] + moment[1] * r[1] + moment[2] * r[2];
    Vector field{};
    for (size_t i = 0; i < 3; ++i)
        field[i] = 0.1 * (3 * r[i] * along / std::pow(distance, 5) - moment[i] / std::pow(distance, 3));
    return field;
}

/// A published table of places in centimetres and fields in tesla.
QVector<Place> publishedMap(const QString& path)
{
    QVector<Place> points;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return points;
    file.readLine();
    while (!file.atEnd()) {
        const QList<QByteArray> cells = file.readLine().trimmed().split(',');
        if (cells.size() < 7)
            continue;
        const auto number = [&](int cell) { return cells[cell].toDouble(); };
        points.append(
            Place{{number(0) * 10, number(1) * 10, number(2) * 10}, {number(3), number(4), number(5)}});
    }
    return points;
}

void writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

} // namespace

/// Each test function is one run of the program, in a process of its own.
class tst_EndToEndMapping : public EndToEndTest
{
    Q_OBJECT

private slots:
    void mapOfADipole();
    void publishedMapWithoutInstrument();
    void moverAndAlarm();
    void mapperThatWaitsAndVanishes();

private:
    CMappingParameters& mapping()
    {
        return *qobject_cast<COperationMapping*>(scenario().ActiveOperation())->MappingParameters();
    }
    double page(const char* property) { return scenario().PageViewModel()->property(property).toDouble(); }
    QObject* pagePart(const char* property)
    {
        return scenario().PageViewModel()->property(property).value<QObject*>();
    }
    bool isInSession() { return scenario().ActiveOperation()->property("SessionInProgress").toBool(); }
    QString shown(const char* displayer)
    {
        return driver().Text(QLatin1String(displayer), QStringLiteral("value"));
    }

    void openMapping();
    void openTab(const char* tab, const char* view);
    /// Whether an item lies below that one, wherever it was declared.
    bool isInside(const char* item, const char* ancestor);
    /// The rows of the table on screen.
    int rows();
    QVector<double> column(const char* role);
    QVector<QObject*> arrows();
    /// What the file dialog of the mapping box does when a file has been chosen.
    void choosePositions(const QString& path);

    /// Tables, arrows and limits of the page show the map. Gives the largest deviation of the components in
    /// the table, as part of the magnitude.
    double compareViews(const QVector<Place>& map, double tolerance);
    void compareTable(const QVector<Place>& map, double tolerance, double& largest);
    void compareArrows(const QVector<Place>& map);
    void compareLimits(const QVector<Place>& map);
};

void tst_EndToEndMapping::openMapping()
{
    QVERIFY(driver().Click(QStringLiteral("mappingMenuButton")));
    QVERIFY(driver().WaitFor(QStringLiteral("mappingPage")));
}

void tst_EndToEndMapping::openTab(const char* tab, const char* view)
{
    QVERIFY(driver().Click(QLatin1String(tab)));
    QVERIFY2(driver().WaitFor(QLatin1String(view)), view);
}

bool tst_EndToEndMapping::isInside(const char* item, const char* ancestor)
{
    for (QQuickItem* other = driver().Find(QLatin1String(item)); other; other = other->parentItem()) {
        if (other->objectName() == QLatin1String(ancestor))
            return true;
    }
    return false;
}

int tst_EndToEndMapping::rows()
{
    const QQuickItem* table = driver().Find(QStringLiteral("resultsTable"));
    return table ? table->property("rowCount").toInt() : -1;
}

QVector<double> tst_EndToEndMapping::column(const char* role)
{
    QVector<double> values;
    const QQuickItem* table = driver().Find(QStringLiteral("resultsTable"));
    const auto* model = table ? table->property("model").value<QAbstractItemModel*>() : nullptr;
    if (!model)
        return values;
    const int number = model->roleNames().key(role, -1);
    for (int row = 0; row < model->rowCount(); ++row)
        values.append(model->data(model->index(row, 0), number).toDouble());
    return values;
}

QVector<QObject*> tst_EndToEndMapping::arrows()
{
    QVector<QObject*> all;
    const QQuickItem* scene = driver().Find(QStringLiteral("vectorsScene"));
    if (!scene)
        return all;
    const QVariantList list = scene->property("vectors").value<QJSValue>().toVariant().toList();
    for (const QVariant& arrow : list)
        all.append(arrow.value<QObject*>());
    return all;
}

void tst_EndToEndMapping::choosePositions(const QString& path)
{
    QQuickItem* selector = driver().Find(QStringLiteral("mappingFileSelector"));
    QVERIFY(selector != nullptr);
    QVERIFY(QMetaObject::invokeMethod(selector, "acceptUrl", Q_ARG(QVariant, QUrl::fromLocalFile(path))));
}

void tst_EndToEndMapping::compareTable(const QVector<Place>& map, double tolerance, double& largest)
{
    openTab("tableTab", "resultsTable");
    QTRY_COMPARE(rows(), map.size());
    const std::array<QVector<double>, 3> places{column("X"), column("Y"), column("Z")};
    const std::array<QVector<double>, 3> fields{column("Bx"), column("By"), column("Bz")};
    const QVector<double> magnitudes = column("B");
    largest = 0;
    for (int i = 0; i < map.size(); ++i) {
        const double magnitude = norm(map[i].field);
        for (size_t axis = 0; axis < 3; ++axis) {
            // Six digits are kept in a record.
            QVERIFY2(std::abs(places[axis][i] - map[i].place[axis]) <= 5.1e-6 * std::abs(map[i].place[axis]),
                     qPrintable(QString::number(i)));
            largest = std::max(largest, std::abs(fields[axis][i] - map[i].field[axis]) / magnitude);
        }
        largest = std::max(largest, std::abs(magnitudes[i] / magnitude - 1));
    }
    QVERIFY2(largest <= tolerance, qPrintable(QString::number(largest)));
}

void tst_EndToEndMapping::compareArrows(const QVector<Place>& map)
{
    openTab("vectorTab", "vectorsScene");
    // The scale of a display by its millimetres is hardly ever whole.
    const QQuickItem* scene = driver().Find(QStringLiteral("vectorsScene"));
    const QQuickItem* toolbar = driver().Find(QStringLiteral("vectorsToolbar"));
    QVERIFY2(scene->width() > toolbar->width() - 16, qPrintable(QString::number(scene->width())));
    const QVector<QObject*> all = arrows();
    QCOMPARE(all.size(), map.size());
    double strongest = 0;
    for (const Place& point : map)
        strongest = std::max(strongest, norm(point.field));
    for (int i = 0; i < all.size(); ++i) {
        const Place& point = map[i];
        const QVector3D direction =
            all[i]->property("rotation").value<QQuaternion>().rotatedVector(QVector3D(0, 1, 0));
        const QVector3D expected =
            QVector3D(float(point.field[0]), float(point.field[1]), float(point.field[2])) /
            float(norm(point.field));
        QVERIFY2((direction - expected).length() < 1e-4F, qPrintable(QString::number(i)));
        const QVector3D place(float(point.place[0]), float(point.place[1]), float(point.place[2]));
        QVERIFY((all[i]->property("position").value<QVector3D>() - place).length() <= 1e-5F * place.length());
        const auto length = double(all[i]->property("scaling").value<QVector3D>().y());
        QVERIFY(std::abs(length - page("SliderValueGraph3D") * norm(point.field) / strongest) < 1e-5);
        QVERIFY(all[i]->property("visible").toBool());
    }
}

void tst_EndToEndMapping::compareLimits(const QVector<Place>& map)
{
    const char* const names[] = {"XStart", "XStop", "YStart", "YStop", "ZStart", "ZStop"};
    for (size_t axis = 0; axis < 3; ++axis) {
        const auto least = std::min_element(map.begin(), map.end(), [axis](const Place& a, const Place& b) {
            return a.place[axis] < b.place[axis];
        });
        const auto most = std::max_element(map.begin(), map.end(), [axis](const Place& a, const Place& b) {
            return a.place[axis] < b.place[axis];
        });
        const double start = least->place[axis];
        const double stop = most->place[axis] > start ? most->place[axis] : start + 1;
        QCOMPARE(page(names[2 * axis]), start);
        QCOMPARE(page(names[2 * axis + 1]), stop);
    }
}

double tst_EndToEndMapping::compareViews(const QVector<Place>& map, double tolerance)
{
    double largest = -1;
    compareTable(map, tolerance, largest);
    compareArrows(map);
    compareLimits(map);
    return largest;
}

void tst_EndToEndMapping::mapOfADipole()
{
    Scenario::WriteSimulationSettings(QStringLiteral(
        "[Magnet]\nCenterX=5\nCenterY=-4\nCenterZ=-60\nMomentX=0.3\nMomentY=-0.2\nMomentZ=0.9\nRadius=6\n"
        "[Sensor]\nNoise=0\nOffsetX=0\nOffsetY=0\nOffsetZ=0\n"));
    Scenario::WriteMapperSettings(QStringLiteral("[Gantry]\nSpeed=20000\nAngularSpeed=20000\nSettleMs=3\n"));
    // The probe is turned about all axes, so that what it measures is not what the page shows.
    Scenario::WriteMappingSettings(
        QStringLiteral("<Units>uT</Units><AutoRange>1</AutoRange><Averaging>100</Averaging>"
                       "<TriggerMode>Immediate</TriggerMode>"),
        QStringLiteral(
            "<MAPPING_POSITION_PARAMETERS><X><Start>-40</Start><Stop>40</Stop><Step_Size>40</Step_Size></X>"
            "<Y><Start>-30</Start><Stop>30</Stop><Step_Size>30</Step_Size></Y>"
            "<Z><Start>-20</Start><Stop>20</Stop><Step_Size>20</Step_Size></Z></MAPPING_POSITION_PARAMETERS>"
            "<MAPPING_ORIENTATION_PARAMETERS><Roll>25</Roll><Pitch>-140</Pitch><Yaw>65</Yaw>"
            "</MAPPING_ORIENTATION_PARAMETERS>"));
    QVector<Place> map;
    for (const double x : {-40.0, 0.0, 40.0})
        for (const double y : {-30.0, 0.0, 30.0})
            for (const double z : {-20.0, 0.0, 20.0})
                map.append(Place{{x, y, z}, dipole({x, y, z})});

    startWithDefaultInstrument();
    openMapping();
    QCOMPARE(driver().Text(QStringLiteral("pitchFieldText")), QStringLiteral("-140.00"));
    QVERIFY(driver().Click(QStringLiteral("resumeButton")));
    QTRY_VERIFY_WITH_TIMEOUT(!isInSession() && blocks() == map.size(), 30000);
    double live = -1;
    compareTable(map, 1e-6, live);

    const QString path = saveRecord(QStringLiteral("dipole.qdr.xml"));
    QVERIFY(!path.isEmpty());
    answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
    QVERIFY(driver().Click(QStringLiteral("endButton")));
    QTRY_COMPARE(blocks(), 0);
    QCOMPARE(arrows().size(), 0);
    answers().ExpectFileDialog(QStringLiteral("Open File"), path);
    QVERIFY(driver().Click(QStringLiteral("loadButton")));
    QTRY_COMPARE(blocks(), map.size());
    const double loaded = compareViews(map, 1e-5);

    QVERIFY(driver().Click(QStringLiteral("playbackButton")));
    QTRY_VERIFY(scenario().Flag("IsPlayingBack"));
    QTRY_VERIFY_WITH_TIMEOUT(!scenario().Flag("IsPlayingBack"), 30000);
    const double replayed = compareViews(map, 1e-5);
    qInfo("%d points, largest deviation as part of the field: live %.2g, loaded %.2g, replayed %.2g",
          map.size(), live, loaded, replayed);
    answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
    QVERIFY(scenario().CloseWindow());
}

void tst_EndToEndMapping::publishedMapWithoutInstrument()
{
    const QDir data(QStringLiteral(KESTRIX_SHARED_DATA));
    const QVector<Place> map = publishedMap(
        data.filePath(QStringLiteral("mirror-magnets-xyz-map/both_magnets_2022_05_16_Bfield.csv")));
    QProcess python;
    // What is preloaded for this process is not meant for another program.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("LD_PRELOAD"));
    python.setProcessEnvironment(environment);
    python.start(QStringLiteral(PYTHON_PATH),
                 {QStringLiteral(MAP_SCRIPT_PATH), data.path(), QDir::currentPath()});
    if (map.isEmpty() || !python.waitForStarted())
        QSKIP("the published maps, or Python, are not at hand");
    QVERIFY(python.waitForFinished(120000));
    QCOMPARE(python.exitCode(), 0);
    QCOMPARE(map.size(), 368);

    scenario().Start(Scenario::None);
    openMapping();
    QVERIFY(!driver().IsVisible(QStringLiteral("resumeButton")));
    QVERIFY(driver().Choose(QStringLiteral("sourceComboBox"), 1));
    QVERIFY(driver().WaitFor(QStringLiteral("mappingFileSelector")));
    QVERIFY(!driver().IsVisible(QStringLiteral("xStartField")));

    // A file that is none leaves the limits, and no name.
    const QString bad = QDir::current().filePath(QStringLiteral("bad.xml"));
    writeFile(bad, "<NorvaneMappingFile ver=\"1.1\"/>");
    answers().ExpectMessage(QStringLiteral("Could not load file"), QMessageBox::Ok);
    choosePositions(bad);
    const QQuickItem* selector = driver().Find(QStringLiteral("mappingFileSelector"));
    QCOMPARE(selector->property("fileName").toString() + selector->property("filePath").toString(),
             QString());
    QCOMPARE(page("XStop"), 1.0);
    choosePositions(QDir::current().filePath(QStringLiteral("plane-may.positions.xml")));
    QCOMPARE(selector->property("placeHolderText").toString(), QStringLiteral("plane-may.positions.xml"));
    QCOMPARE(mapping().MapperSourceFile()->MappingFile()->Positions()->size(), map.size());
    double xStart = 0;
    double xStop = 0;
    for (const Place& point : map) {
        xStart = std::min(xStart, point.place[0]);
        xStop = std::max(xStop, point.place[0]);
    }
    QCOMPARE(page("XStart"), xStart);
    QCOMPARE(page("XStop"), xStop);

    answers().ExpectFileDialog(QStringLiteral("Open File"),
                               QDir::current().filePath(QStringLiteral("plane-may.qdr.xml")));
    QVERIFY(driver().Click(QStringLiteral("loadButton")));
    QTRY_COMPARE(blocks(), map.size());
    QVERIFY(!driver().IsVisible(QStringLiteral("resumeButton")));
    const double loaded = compareViews(map, 1e-5);

    // A second to each place: the rest is not waited for.
    openTab("tableTab", "resultsTable");
    QVERIFY(driver().Click(QStringLiteral("playbackButton")));
    QTRY_VERIFY(rows() > 0 && rows() < map.size());
    QVERIFY(!driver().IsVisible(QStringLiteral("resumeButton")));
    QVERIFY(driver().Click(QStringLiteral("holdButton")));
    QVERIFY(driver().WaitFor(QStringLiteral("resumeButton")));
    QVERIFY(!driver().IsVisible(QStringLiteral("holdButton")));
    scenario().RecordingManager()->setProperty("TimeWarp", 1e9);
    QVERIFY(driver().Click(QStringLiteral("resumeButton")));
    QTRY_VERIFY_WITH_TIMEOUT(!scenario().Flag("IsPlayingBack"), 120000);
    double replayed = -1;
    compareTable(map, 1e-5, replayed);
    qInfo("%d published points, largest deviation as part of the field: loaded %.2g, replayed %.2g",
          map.size(), loaded, replayed);
    answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
    QVERIFY(scenario().CloseWindow());
}

void tst_EndToEndMapping::moverAndAlarm()
{
    Scenario::WriteMapperSettings(
        QStringLiteral("[Mover]\nFromX=-20\nToX=20\nLines=1\nSpacing=4\nSpeed=100\nRepeat=true\n"));
    startWithDefaultInstrument();
    driver().Window()->resize(1280, 960);
    openMapping();
    const auto isStartEnabled = [this] { return driver().Find(QStringLiteral("resumeButton"))->isEnabled(); };
    QVERIFY(isStartEnabled());
    QVERIFY(driver().Enter(QStringLiteral("pitchField"), QStringLiteral("400")));
    QVERIFY(!isStartEnabled());
    QVERIFY(driver().Enter(QStringLiteral("pitchField"), QStringLiteral("-360")));
    QVERIFY(isStartEnabled());
    QCOMPARE(mapping().MapperSourceCartesian()->Orientation()->Pitch(), -360.0);
    QVERIFY(driver().Enter(QStringLiteral("blockSizeField"), QStringLiteral("0")));
    QVERIFY(!isStartEnabled());
    QVERIFY(driver().Enter(QStringLiteral("blockSizeField"), QStringLiteral("10")));
    QVERIFY(isStartEnabled());

    const int mover = pagePart("MappingParametersViewModel")
                          ->property("Mappers")
                          .toStringList()
                          .indexOf(QStringLiteral("Simulated mover"));
    QVERIFY(driver().Choose(QStringLiteral("mapperComboBox"), mover));
    QTRY_VERIFY(!driver().IsVisible(QStringLiteral("sourceComboBox")));
    QVERIFY(!driver().IsVisible(QStringLiteral("xStartField")));
    QVERIFY(!driver().IsVisible(QStringLiteral("mappingFileSelector")));
    QVERIFY(driver().Click(QStringLiteral("resumeButton")));
    QTRY_VERIFY(blocks() >= 2);
    QVERIFY(!driver().IsVisible(QStringLiteral("outOfBoundsWarning")));
    // No field lies within 0 and 0. The state is the one without message and beep.
    pagePart("AlarmParametersViewModel")->setProperty("SelectedStateIndex", 3);
    QTRY_VERIFY(driver().IsVisible(QStringLiteral("outOfBoundsWarning")));

    QVERIFY(driver().IsVisible(QStringLiteral("parametersPanel")));
    QVERIFY(!driver().IsVisible(QStringLiteral("filterBox")));
    openTab("plotTab", "filterBox");
    QVERIFY(isInside("filterBox", "parametersPanel"));
    driver().Window()->resize(954, 698);
    QVERIFY(driver().WaitFor(QStringLiteral("smallMenuToggle")));
    QTRY_VERIFY(!driver().IsVisible(QStringLiteral("parametersPanel")));
    QVERIFY(!driver().IsVisible(QStringLiteral("filterBox")));
    QVERIFY(driver().Click(QStringLiteral("parametersMenuToggle")));
    QVERIFY(driver().WaitFor(QStringLiteral("filterBox")));
    QVERIFY(isInside("filterBox", "smallParametersPanel"));
    openTab("numericTab", "mappingNumeric");
    QTRY_VERIFY(!driver().IsVisible(QStringLiteral("filterBox")));
    driver().Window()->resize(1280, 960);
    QVERIFY(driver().WaitFor(QStringLiteral("parametersPanel")));

    // The path has no end: the user ends it.
    QVERIFY(isInSession());
    QVERIFY(driver().Click(QStringLiteral("stopButton")));
    QVERIFY(!isInSession());
    QTest::qWait(100);
    const int stopped = blocks();
    const double x = page("PosX");
    QTest::qWait(200);
    QCOMPARE(blocks(), stopped);
    QVERIFY(driver().WaitFor(QStringLiteral("saveButton")));
    QCOMPARE(shown("blockLine"), QString::number(stopped));
    QVERIFY(x >= -20 && x <= 20);
    answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
    QVERIFY(scenario().CloseWindow());
}

void tst_EndToEndMapping::mapperThatWaitsAndVanishes()
{
    qputenv("KESTRIX_FAKE", "ready=never");
    startWithDefaultInstrument(Scenario::FakeMapper);
    openMapping();
    QPointer<CMapperPlugin> mapper = mapping().SelectedMapper();
    QVERIFY(mapper);

    // Nothing comes, and the page lives.
    QVERIFY(driver().Click(QStringLiteral("resumeButton")));
    QVERIFY(driver().WaitFor(QStringLiteral("stopButton")));
    openTab("tableTab", "resultsTable");
    QCOMPARE(rows(), 0);
    QVERIFY(isInSession());
    QVERIFY(driver().Click(QStringLiteral("stopButton")));
    QVERIFY(!isInSession());
    QVERIFY(driver().WaitFor(QStringLiteral("mappingBox")));
    QVERIFY(driver().Find(QStringLiteral("xStartField"))->isEnabled());

    // One place at a time: each tab is built anew from what there is, and goes on from there.
    QVERIFY(driver().Click(QStringLiteral("resumeButton")));
    int taken = 0;
    const auto takeNext = [&] {
        QVERIFY(QMetaObject::invokeMethod(mapper, "EmitReady"));
        ++taken;
        QTRY_COMPARE(blocks(), taken);
    };
    takeNext();
    QTRY_COMPARE(rows(), 1);
    openTab("vectorTab", "vectorsScene");
    QCOMPARE(arrows().size(), 1);
    takeNext();
    QCOMPARE(arrows().size(), 2);
    openTab("numericTab", "mappingNumeric");
    QCOMPARE(shown("positionZDisplayer"), QStringLiteral("1.000"));
    const double magnitude = shown("bDisplayer").toDouble();
    QVERIFY(std::abs(magnitude - page("BLastBlock")) <= 0.005001);
    takeNext();
    QCOMPARE(shown("positionYDisplayer"), QStringLiteral("1.000"));
    openTab("tableTab", "resultsTable");
    QTRY_COMPARE(rows(), 3);
    openTab("plotTab", "chartView");
    takeNext();
    openTab("vectorTab", "vectorsScene");
    QCOMPARE(arrows().size(), 4);
    QVERIFY(driver().Click(QStringLiteral("stopButton")));
    QVERIFY(!isInSession() && scenario().Flag("IsIdleWithData"));
    QVERIFY(driver().IsVisible(QStringLiteral("saveButton")));
    answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
    QVERIFY(driver().Click(QStringLiteral("endButton")));

    // In the middle of a session the mapper is gone.
    mapper->setProperty("ready", QStringLiteral("vanish"));
    QVERIFY(driver().Click(QStringLiteral("resumeButton")));
    QTRY_VERIFY(!mapper);
    QVERIFY(isInSession());
    openTab("tableTab", "resultsTable");
    QVERIFY(driver().Click(QStringLiteral("stopButton")));
    QVERIFY(!isInSession());
    // There is no other one: the record begins, and nothing fills it.
    QVERIFY(driver().Click(QStringLiteral("resumeButton")));
    QVERIFY(!isInSession());
    QTRY_VERIFY(scenario().LogText().contains(QStringLiteral("Mapper is null")));
    QVERIFY(driver().Click(QStringLiteral("stopButton")));
    QVERIFY(driver().Click(QStringLiteral("meterMenuButton")));
    QVERIFY(driver().WaitFor(QStringLiteral("meterPage")));
    openMapping();
    QCOMPARE(pagePart("MappingParametersViewModel")->property("SelectedMapperIndex").toInt(), -1);
    QVERIFY(scenario().CloseWindow());
}

END_TO_END_MAIN(tst_EndToEndMapping)
#include "tst_EndToEndMapping.moc"
