// SPDX-License-Identifier: GPL-3.0-or-later
// The gauge of the probe axis, judged by what its picture shows.
#include "ActiveWindow.h"
#include "MeterView.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

using Corners = std::array<QPointF, 3>;

double distanceToSegment(const QPointF& point, const QPointF& from, const QPointF& to)
{
    const QPointF along = to - from;
    const double squared = QPointF::dotProduct(along, along);
    double part = squared > 0 ? QPointF::dotProduct(point - from, along) / squared : 0;
    part = std::clamp(part, 0.0, 1.0);
    const QPointF gap = point - (from + part * along);
    return std::hypot(gap.x(), gap.y());
}

double cross(const QPointF& a, const QPointF& b)
{
    return a.x() * b.y() - a.y() * b.x();
}

/// How far a point lies within a triangle; negative outside.
double depth(const QPointF& point, const Corners& corners)
{
    double distance = std::numeric_limits<double>::max();
    int positive = 0;
    int negative = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const QPointF& from = corners[i];
        const QPointF& to = corners[(i + 1) % 3];
        distance = std::min(distance, distanceToSegment(point, from, to));
        const double side = cross(to - from, point - from);
        positive += side > 0 ? 1 : 0;
        negative += side < 0 ? 1 : 0;
    }
    const bool hasArea = positive + negative > 0;
    return hasArea && (positive == 0 || negative == 0) ? distance : -distance;
}

bool isDark(QRgb colour)
{
    return qGray(colour) < 0x90;
}

int darkPixels(const QImage& picture, const QRect& place)
{
    int count = 0;
    for (int y = place.top(); y <= place.bottom(); ++y)
        for (int x = place.left(); x <= place.right(); ++x)
            count += isDark(picture.pixel(x, y)) ? 1 : 0;
    return count;
}

const float kNan = std::numeric_limits<float>::quiet_NaN();

} // namespace

class tst_MeterCompas : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void measures();
    void triangle_data();
    void triangle();
    void triangleOfTheReferenceDirection();
    void sidesTakeTurns();
    void nullFieldClearsBothSides();
    void notANumberClearsBothSides();
    void magnitudeBelowTheComponents();
    void followsItsWidth();
    void builtAnew();
    void builtAnewAfterANullField();
    void choicesReachTheViewModel();
    void choicesFollowTheViewModel();
    void choicesFallBackWithTheDataset();
    void pathElementsAreLetGo();

private:
    /// Compares the two sides with the triangle of a part along the axis and a part across it.
    void compareTriangle(double along, double across);
    void compareEmpty();
    void choose(const char* name, int index);
    int chosen(const char* name) { return m_view->Find(name)->property("currentIndex").toInt(); }

    std::unique_ptr<MeterView> m_view;
    int m_warningsBefore = 0;
};

void tst_MeterCompas::initTestCase()
{
    QmlTestSetup::Prepare();
    m_view = std::make_unique<MeterView>();
}

void tst_MeterCompas::init()
{
    m_warningsBefore = QmlTestSetup::WarningCount();
}

void tst_MeterCompas::cleanup()
{
    m_view->Renew();
    QCOMPARE(QmlTestSetup::WarningCount(), m_warningsBefore);
}

void tst_MeterCompas::compareTriangle(double along, double across)
{
    const QImage picture = m_view->Picture();
    const double ratio = picture.devicePixelRatio();
    for (const bool isRight : {false, true}) {
        const QQuickItem* side = m_view->Find(isRight ? "compasRightSide" : "compasLeftSide");
        const QRect place = m_view->PlaceInPicture(side);
        if (isRight != (along >= 0)) {
            QCOMPARE(darkPixels(picture, place), 0);
            continue;
        }
        const double width = std::abs(along) * side->width();
        const double height = (1 - across) * side->height();
        const double foot = isRight ? 0 : side->width();
        const double middle = side->height() / 2;
        const Corners corners{QPointF(foot, middle - height / 2),
                              QPointF(isRight ? width : side->width() - width, middle),
                              QPointF(foot, middle + height / 2)};
        for (int y = place.top(); y <= place.bottom(); ++y) {
            for (int x = place.left(); x <= place.right(); ++x) {
                const QPointF point = QPointF(x + 0.5 - place.left(), y + 0.5 - place.top()) / ratio;
                const double inside = depth(point, corners);
                // The outline is 3 wide, and its ends are square.
                if (inside > 1 || inside < -4) {
                    QVERIFY2(isDark(picture.pixel(x, y)) == (inside > 0),
                             qPrintable(QStringLiteral("%1, %2: %3").arg(x).arg(y).arg(inside)));
                }
            }
        }
    }
}

void tst_MeterCompas::compareEmpty()
{
    const QImage picture = m_view->Picture();
    for (const char* name : {"compasLeftSide", "compasRightSide"}) {
        // A path of one point is a dot in a corner at most.
        const QRect place = m_view->PlaceInPicture(m_view->Find(name));
        QVERIFY2(darkPixels(picture, place) <= 9, name);
    }
}

void tst_MeterCompas::measures()
{
    m_view->Load();
    compareEmpty();
    const QQuickItem* left = m_view->Find("compasLeftSide");
    const QQuickItem* right = m_view->Find("compasRightSide");
    QCOMPARE(left->height(), 75.0);
    QCOMPARE(right->height(), 75.0);
    QVERIFY(std::abs(left->width() - right->width()) <= 1);
    QCOMPARE(right->mapToScene(QPointF()).x() - left->mapToScene(QPointF(left->width(), 0)).x(), 1.0);
    QCOMPARE(m_view->Find("meterCompas")->height(), 0.4 * 560);
    QCOMPARE(chosen("probeAxisChoice"), 2);
    QCOMPARE(chosen("compasModeChoice"), 0);
}

void tst_MeterCompas::triangle_data()
{
    QTest::addColumn<int>("axis");
    QTest::addColumn<QVector<float>>("field");
    QTest::addColumn<double>("along");
    QTest::addColumn<double>("across");
    QTest::addRow("+x along x") << 0 << QVector<float>{48, 0, 0} << 1.0 << 0.0;
    QTest::addRow("-x along x") << 0 << QVector<float>{-48, 0, 0} << -1.0 << 0.0;
    QTest::addRow("+y along y") << 1 << QVector<float>{0, 48, 0} << 1.0 << 0.0;
    QTest::addRow("-y along y") << 1 << QVector<float>{0, -48, 0} << -1.0 << 0.0;
    QTest::addRow("+z along z") << 2 << QVector<float>{0, 0, 48} << 1.0 << 0.0;
    QTest::addRow("-z along z") << 2 << QVector<float>{0, 0, -48} << -1.0 << 0.0;
    QTest::addRow("3-4-0 along x") << 0 << QVector<float>{3, 4, 0} << 0.6 << 0.8;
    QTest::addRow("0-(-12)-5 along y") << 1 << QVector<float>{0, -12, 5} << -12.0 / 13 << 5.0 / 13;
    QTest::addRow("2-3-(-6) along z") << 2 << QVector<float>{2, 3, -6} << -6.0 / 7 << std::sqrt(13.0) / 7;
    QTest::addRow("across z") << 2 << QVector<float>{3, 4, 0} << 0.0 << 1.0;
}

void tst_MeterCompas::triangle()
{
    QFETCH(int, axis);
    QFETCH(QVector<float>, field);
    QFETCH(double, along);
    QFETCH(double, across);
    m_view->Load();
    m_view->Meter().SetSelectedProbeAxisIndex(axis);
    m_view->Deliver(field[0], field[1], field[2]);
    compareTriangle(along, across);
}

void tst_MeterCompas::triangleOfTheReferenceDirection()
{
    m_view->Load();
    m_view->Meter().SetSelectedModeIndex(1);
    const auto block = makeRamp(5, 1, 0, 10);
    block->Bprime.SetX(-4);
    block->Bprime.SetZ(-3);
    m_view->Deliver(block);
    compareTriangle(-0.6, 0.8);
}

void tst_MeterCompas::sidesTakeTurns()
{
    m_view->Load();
    for (const float sign : {1.0F, -1.0F, -1.0F, 1.0F}) {
        m_view->Deliver(3, 0, 4 * sign);
        compareTriangle(0.8 * double(sign), 0.6);
    }
}

void tst_MeterCompas::nullFieldClearsBothSides()
{
    m_view->Load();
    for (const float sign : {1.0F, -1.0F}) {
        m_view->Deliver(0, 0, 4 * sign);
        m_view->Deliver(0, 0, 0);
        compareEmpty();
        // What was drawn before does not come back.
        const int width = m_view->Window().width() + 60;
        m_view->Window().resize(width, 560);
        QTRY_COMPARE(m_view->Find("componentDisplayer")->width(), double(width));
        compareEmpty();
    }
    m_view->Deliver(3, 0, 4);
    compareTriangle(0.8, 0.6);
}

void tst_MeterCompas::notANumberClearsBothSides()
{
    m_view->Load();
    m_view->Deliver(0, 0, 4);
    m_view->Deliver(kNan, kNan, kNan);
    compareEmpty();
    m_view->Deliver(3, 0, 4);
    compareTriangle(0.8, 0.6);
}

void tst_MeterCompas::magnitudeBelowTheComponents()
{
    m_view->Load();
    // Twice as long as its side, and with a base below nothing.
    m_view->Deliver(6, 0, 8, 4);
    QCOMPARE(m_view->Meter().CompasWidth(), 2.0);
    QCOMPARE(m_view->Meter().CompasHeight(), -0.5);
    const QRect left = m_view->PlaceInPicture(m_view->Find("compasLeftSide"));
    const QImage picture = m_view->Picture();
    QCOMPARE(darkPixels(picture, left), 0);
    // Nothing is drawn beyond the gauge.
    const QRect right = m_view->PlaceInPicture(m_view->Find("compasRightSide"));
    QVERIFY(darkPixels(picture, right) > 0);
    QCOMPARE(darkPixels(picture, QRect(right.left(), right.bottom() + 1, right.width(), 3)), 0);
}

void tst_MeterCompas::followsItsWidth()
{
    m_view->Load();
    m_view->Deliver(3, 0, -4);
    for (const int width : {1100, 820}) {
        m_view->Window().resize(width, 560);
        QTRY_COMPARE(m_view->Find("componentDisplayer")->width(), double(width));
        compareTriangle(-0.8, 0.6);
    }
}

void tst_MeterCompas::builtAnew()
{
    m_view->Load();
    m_view->Meter().SetSelectedProbeAxisIndex(0);
    m_view->Deliver(3, 0, 4);
    m_view->Load();
    QCOMPARE(chosen("probeAxisChoice"), 0);
    QCOMPARE(m_view->Meter().SelectedProbeAxisIndex(), 0);
    compareTriangle(0.6, 0.8);
}

void tst_MeterCompas::builtAnewAfterANullField()
{
    m_view->Load();
    m_view->Deliver(3, 0, 4);
    m_view->Deliver(0, 0, 0);
    m_view->Load();
    compareEmpty();
    m_view->Deliver(3, 0, 4);
    m_view->Fixture().operation.Reset();
    m_view->Load();
    compareEmpty();
}

void tst_MeterCompas::choose(const char* name, int index)
{
    const QByteArray box = QByteArray(name) + "Box";
    m_view->Click(box.constData());
    const auto* list = m_view->Find(box.constData())->property("popup").value<QObject*>();
    QVERIFY(list);
    QTRY_VERIFY(list->property("opened").toBool());
    QVERIFY(makeActive(&m_view->Window()));
    QTest::keyClick(&m_view->Window(), Qt::Key_Home);
    for (int i = 0; i < index; ++i)
        QTest::keyClick(&m_view->Window(), Qt::Key_Down);
    QTest::keyClick(&m_view->Window(), Qt::Key_Return);
    QTRY_VERIFY(!list->property("visible").toBool());
}

void tst_MeterCompas::choicesReachTheViewModel()
{
    m_view->Load();
    m_view->Deliver(3, 0, 4);
    choose("probeAxisChoice", 0);
    QCOMPARE(m_view->Meter().SelectedProbeAxisIndex(), 0);
    compareTriangle(0.6, 0.8);
    choose("compasModeChoice", 1);
    QCOMPARE(m_view->Meter().SelectedModeIndex(), 1);
    // No reference direction was given.
    compareEmpty();
    choose("compasModeChoice", 0);
    QCOMPARE(m_view->Meter().SelectedModeIndex(), 0);
    compareTriangle(0.6, 0.8);
}

void tst_MeterCompas::choicesFollowTheViewModel()
{
    m_view->Load();
    m_view->Meter().SetSelectedProbeAxisIndex(1);
    m_view->Meter().SetSelectedModeIndex(1);
    QCOMPARE(chosen("probeAxisChoice"), 1);
    QCOMPARE(chosen("compasModeChoice"), 1);
    QCOMPARE(m_view->Meter().SelectedProbeAxisIndex(), 1);
    QCOMPARE(m_view->Meter().SelectedModeIndex(), 1);
}

void tst_MeterCompas::choicesFallBackWithTheDataset()
{
    m_view->Load();
    m_view->Deliver(3, 0, 4);
    m_view->Meter().SetSelectedProbeAxisIndex(0);
    m_view->Meter().SetSelectedModeIndex(1);
    m_view->Fixture().operation.Reset();
    QCOMPARE(m_view->Meter().SelectedProbeAxisIndex(), 2);
    QCOMPARE(m_view->Meter().SelectedModeIndex(), 0);
    QCOMPARE(chosen("probeAxisChoice"), 2);
    QCOMPARE(chosen("compasModeChoice"), 0);
    compareEmpty();
}

void tst_MeterCompas::pathElementsAreLetGo()
{
    m_view->Load();
    const auto lines = [this] {
        int count = 0;
        const auto objects = m_view->Find("compasRightSide")->findChildren<QObject*>();
        for (const QObject* object : objects)
            count += object->inherits("QQuickPathLine") ? 1 : 0;
        return count;
    };
    for (int i = 0; i < 50; ++i)
        m_view->Deliver(3, 0, 4);
    QTRY_COMPARE(lines(), 3);
}

QTEST_MAIN(tst_MeterCompas)
#include "tst_MeterCompas.moc"
