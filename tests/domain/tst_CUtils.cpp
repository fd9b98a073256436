// SPDX-License-Identifier: GPL-3.0-or-later
#include "CUtils.h"
#include "ExactDecimal.h"
#include "MetaObjectTable.h"

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>
#include <QTouchDevice>
#include <QtTest>

#include <cmath>
#include <functional>
#include <limits>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

/// Digits before the point of the value as it is floored, zero counting as one.
int integerDigits(double value)
{
    return ExactDecimal::fixed(value < 0 ? std::ceil(-value) : std::floor(value), 0).size();
}

QString expectedText(double value, int significantNb, bool leftSpacePadding)
{
    const int digits = significantNb < 0 ? 5 : significantNb;
    const int decimals = digits - integerDigits(value);
    const QString text = std::isfinite(value) && integerDigits(value) > 3
                             ? ExactDecimal::fixed(std::floor(value), 0)
                             : ExactDecimal::fixed(value, decimals < 0 ? 6 : decimals);
    const int blanks = value < 0 ? 6 - digits : 7 - digits;
    return leftSpacePadding ? QString(qMax(0, blanks), QLatin1Char(' ')) + text : text;
}

QString expectedAlignedText(double value)
{
    const QString floored = ExactDecimal::fixed(std::floor(value), 0);
    QString text(qMax(0, 7 - floored.size()), QLatin1Char(' '));
    if (std::fabs(value) < 1)
        text += ExactDecimal::fixed(value, 4);
    else if (!std::isfinite(value) || integerDigits(value) > 3)
        text += floored;
    else
        text += ExactDecimal::fixed(value, 4 - integerDigits(value));
    return text + QString(qMax(0, 12 - text.size()), QLatin1Char(' '));
}

/// Special values, exact ties, values beside the places where a rule changes, and random ones of every size.
QVector<double> manyValues()
{
    QVector<double> values{0.0,
                           -0.0,
                           kNotANumber,
                           kInfinity,
                           -kInfinity,
                           std::numeric_limits<double>::max(),
                           std::numeric_limits<double>::lowest(),
                           std::numeric_limits<double>::min(),
                           std::numeric_limits<double>::denorm_min(),
                           -std::numeric_limits<double>::denorm_min()};
    for (int exponent = -8; exponent <= 16; ++exponent) {
        const double power = std::pow(10.0, exponent);
        for (const double factor : {1.0, 0.5, 0.05, 0.00005, 0.99999, 0.999995, 0.9999995, 5.0}) {
            const double value = power * factor;
            for (const double near :
                 {value, std::nextafter(value, 0.0), std::nextafter(value, kInfinity), value + 1, value - 1})
                values << near << -near;
        }
    }
    QRandomGenerator random(20240611);
    for (int i = 0; i < 5000; ++i) {
        // A whole number over a small power of two is an exact tie for some count of decimals.
        const int bits = random.bounded(14);
        const double whole = random.bounded(1 << 24);
        values << std::ldexp(whole, -bits) << -std::ldexp(std::fmod(whole, 4096.0), -bits);
        values << (random.generateDouble() - 0.5) * 40000 << (random.generateDouble() - 0.5) * 4;
    }
    for (int i = 0; i < 300; ++i)
        values << std::ldexp(random.generateDouble() - 0.5, random.bounded(-1070, 1020));
    return values;
}

/// Looks at the message box that opens next, which `look` has to close; one that stays open is rejected.
void atNextBox(const std::function<void(QMessageBox&)>& look)
{
    QTimer::singleShot(0, qApp, [look] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box) {
            QTimer::singleShot(0, qApp, [look] { atNextBox(look); });
            return;
        }
        look(*box);
        if (box->isVisible())
            box->reject();
    });
}

struct BoxLook
{
    QString text;
    QString informativeText;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QStringList labels;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    QSize size;
    bool hasParent = true;
    bool isModal = false;
};

/// Notes the look of the next box and then clicks a button of it.
void noteAndClick(BoxLook& look, QMessageBox::StandardButton button)
{
    atNextBox([&look, button](QMessageBox& box) {
        look.text = box.text();
        look.informativeText = box.informativeText();
        look.icon = box.icon();
        look.buttons = box.standardButtons();
        for (const QAbstractButton* each : box.buttons())
            look.labels << each->text();
        look.labels.sort();
        look.defaultButton = box.standardButton(box.defaultButton());
        look.size = box.size();
        look.hasParent = box.parentWidget() != nullptr;
        look.isModal = box.isModal();
        if (button != QMessageBox::NoButton)
            box.button(button)->click();
    });
}

} // namespace

class TestCUtils : public QObject
{
    Q_OBJECT

private slots:
    void surface();
    void texts();
    void referenceIsExact();
    void doubleToStringExamples_data();
    void doubleToStringExamples();
    void overloads();
    void pointAlignmentExamples_data();
    void pointAlignmentExamples();
    void manyValuesAgreeWithTheReference();
    void intToStringExamples_data();
    void intToStringExamples();
    void fileNameFromPath();
    void platform();
    void askConfirmation_data();
    void askConfirmation();
    void showInformation();
    void showError();
    void saveFileKeepsTheOldTail();
    void saveFileMakesTheFile();
    void saveFileFails();
    void loadFile();
    void loadFileFails();

private:
    CUtils m_utils;
};

void TestCUtils::surface()
{
    using namespace MetaObjectTable;
    VERIFY_NO_DIFFERENCE(compareProperties(CUtils::staticMetaObject, {}));
    VERIFY_NO_DIFFERENCE(compareMethods(
        CUtils::staticMetaObject, QMetaMethod::Method,
        {"getUnitText(int)", "getTriggerText(int)", "doubleToStringPointAlignment(double)",
         "doubleToString(double,int,bool)", "doubleToString(double,int)", "doubleToString(double)",
         "intToString(double)", "fileNameFromPath(QString)", "isTouchDevice()", "isUnix()", "isLinux()",
         "saveFile(QString,QString)", "loadFile(QString)"}));
    VERIFY_NO_DIFFERENCE(compareMethods(CUtils::staticMetaObject, QMetaMethod::Signal, {}));
    VERIFY_NO_DIFFERENCE(compareMethods(CUtils::staticMetaObject, QMetaMethod::Slot, {}));
}

void TestCUtils::texts()
{
    QCOMPARE(m_utils.getUnitText(3), QStringLiteral("\u00B5T"));
    QCOMPARE(m_utils.getUnitText(17), QStringLiteral(" "));
    QCOMPARE(m_utils.getUnitText(0), QString());
    QCOMPARE(m_utils.getUnitText(18), QString());
    QCOMPARE(m_utils.getTriggerText(1), QStringLiteral("Continuous"));
    QCOMPARE(m_utils.getTriggerText(4), QStringLiteral("External"));
    QCOMPARE(m_utils.getTriggerText(0), QString());
    QCOMPARE(m_utils.getTriggerText(5), QString());
}

void TestCUtils::referenceIsExact()
{
    QCOMPARE(ExactDecimal::fixed(0.1, 20), QStringLiteral("0.10000000000000000555"));
    QCOMPARE(ExactDecimal::fixed(-0.5, 0), QStringLiteral("-1"));
    QCOMPARE(ExactDecimal::fixed(1e23, 0), QStringLiteral("99999999999999991611392"));
    QCOMPARE(ExactDecimal::fixed(999.9996, 3), QStringLiteral("1000.000"));
    QCOMPARE(ExactDecimal::general(2048.125, 6), QStringLiteral("2048.13"));
    QCOMPARE(ExactDecimal::general(-0.0009765625, 6), QStringLiteral("-0.000976563"));
    QCOMPARE(ExactDecimal::general(999999.5, 6), QStringLiteral("1e+06"));
    QCOMPARE(ExactDecimal::general(100000, 6), QStringLiteral("100000"));
}

void TestCUtils::doubleToStringExamples_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("digits");
    QTest::addColumn<bool>("padding");
    QTest::addColumn<QString>("text");
    const auto add = [](double value, int digits, bool padding, const char* text) {
        QTest::addRow("%g, %d, %d", value, digits, padding)
            << value << digits << padding << QString::fromLatin1(text);
    };
    add(0.5, 5, false, "0.5000");
    add(12.345, 5, false, "12.345");
    add(123456.7, 5, false, "123456");
    add(-0.5, 5, false, "-0.5000");
    add(1.5, 5, true, "  1.5000");
    add(-1.5, 5, true, " -1.5000");
    add(-1234.5, 5, false, "-1235");
    add(1234.9, 5, false, "1234");
    add(999.96, 4, false, "1000.0"); // rounding lengthens the text
    add(-999.5, 5, false, "-1000");  // floored to four digits
    add(-9.5, 5, false, "-9.500");   // floored to two digits
    add(0, 5, false, "0.0000");
    add(-0.0, 5, false, "0.0000");
    add(-1e-9, 5, false, "-0.0000");
    add(0.99999, 5, false, "1.0000");
    add(0.5, 1, false, "1"); // an exact tie goes away from zero
    add(2.5, 1, false, "3");
    add(0.5, 0, false, "0.500000"); // a negative count of decimals stands for six
    add(123, 2, false, "123.000000");
    add(123, 3, false, "123");
    add(1.5, -1, false, "1.5000"); // a negative count of digits stands for five
    add(1.5, -7, true, "  1.5000");
    add(1.5, 6, true, " 1.50000");
    add(-1.5, 6, true, "-1.50000");
    add(1.5, 7, true, "1.500000");
    add(1.5, 0, true, "       1.500000");
    add(12345678, 3, true, "    12345678"); // the padding does not look at the text
    add(kNotANumber, 5, true, "  nan");
    add(kInfinity, 5, false, "inf");
    add(-kInfinity, 5, true, " -inf");
}

void TestCUtils::doubleToStringExamples()
{
    QFETCH(double, value);
    QFETCH(int, digits);
    QFETCH(bool, padding);
    QFETCH(QString, text);
    QCOMPARE(m_utils.doubleToString(value, digits, padding), text);
    QCOMPARE(expectedText(value, digits, padding), text);
}

void TestCUtils::overloads()
{
    QCOMPARE(m_utils.doubleToString(1.5), QStringLiteral("1.5000"));
    QCOMPARE(m_utils.doubleToString(1.5, 3), QStringLiteral("1.50"));
    QCOMPARE(m_utils.doubleToString(-12.5, -1), QStringLiteral("-12.500"));
}

void TestCUtils::pointAlignmentExamples_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    const auto add = [](double value, const char* text) {
        QTest::addRow("%g", value) << value << QString::fromLatin1(text);
    };
    add(1.5, "      1.500 ");
    add(0.5, "      0.5000");
    add(-0.5, "     -0.5000");
    add(0, "      0.0000");
    add(-0.0, "      0.0000");
    add(-1, "     -1.000 ");
    add(-1.5, "     -1.500 ");
    add(12.25, "     12.25  ");
    add(123.25, "    123.3   ");
    add(1234.9, "   1234     ");
    add(-1234.5, "  -1235     ");
    add(123456789, "123456789   ");
    add(1234567890123, "1234567890123");
    add(-999.5, "  -1000     ");
    add(kInfinity, "    inf     ");
    add(-kInfinity, "   -inf     ");
    add(kNotANumber, "    nan     ");
}

void TestCUtils::pointAlignmentExamples()
{
    QFETCH(double, value);
    QFETCH(QString, text);
    QCOMPARE(m_utils.doubleToStringPointAlignment(value), text);
    QCOMPARE(expectedAlignedText(value), text);
}

void TestCUtils::manyValuesAgreeWithTheReference()
{
    const QVector<double> values = manyValues();
    QVERIFY(values.size() >= 20000);
    QRandomGenerator random(7);
    for (const double value : values) {
        const int digits = random.bounded(-2, 12);
        QCOMPARE(m_utils.doubleToString(value), expectedText(value, 5, false));
        QCOMPARE(m_utils.doubleToString(value, digits), expectedText(value, digits, false));
        QCOMPARE(m_utils.doubleToString(value, digits, true), expectedText(value, digits, true));
        QCOMPARE(m_utils.doubleToStringPointAlignment(value), expectedAlignedText(value));
        QCOMPARE(m_utils.intToString(value), ExactDecimal::general(value, 6));
    }
}

void TestCUtils::intToStringExamples_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("1234567") << 1234567.0 << QStringLiteral("1.23457e+06");
    QTest::newRow("100000") << 100000.0 << QStringLiteral("100000");
    QTest::newRow("1.5") << 1.5 << QStringLiteral("1.5");
    QTest::newRow("-0.0") << -0.0 << QStringLiteral("0");
    QTest::newRow("tie") << 2048.125 << QStringLiteral("2048.13");
    QTest::newRow("small") << 0.00001 << QStringLiteral("1e-05");
}

void TestCUtils::intToStringExamples()
{
    QFETCH(double, value);
    QFETCH(QString, text);
    QCOMPARE(m_utils.intToString(value), text);
}

void TestCUtils::fileNameFromPath()
{
    QCOMPARE(m_utils.fileNameFromPath(QStringLiteral("/a/b/c.qdr.xml")), QStringLiteral("c.qdr.xml"));
    QCOMPARE(m_utils.fileNameFromPath(QStringLiteral("c.csv")), QStringLiteral("c.csv"));
    QCOMPARE(m_utils.fileNameFromPath(QStringLiteral("/a/b/")), QString());
    QCOMPARE(m_utils.fileNameFromPath({}), QString());
}

void TestCUtils::platform()
{
    QCOMPARE(m_utils.isTouchDevice(), !QTouchDevice::devices().isEmpty());
#if defined(Q_OS_LINUX)
    QVERIFY(m_utils.isLinux());
    QVERIFY(m_utils.isUnix());
    QVERIFY(!CUtils::IsMac());
#elif defined(Q_OS_DARWIN)
    QVERIFY(!m_utils.isLinux());
    QVERIFY(m_utils.isUnix());
    QVERIFY(CUtils::IsMac());
#else
    QVERIFY(!m_utils.isLinux());
    QVERIFY(!m_utils.isUnix());
    QVERIFY(!CUtils::IsMac());
#endif
}

void TestCUtils::askConfirmation_data()
{
    QTest::addColumn<int>("click");
    QTest::addColumn<bool>("answer");
    QTest::newRow("ok") << static_cast<int>(QMessageBox::Ok) << true;
    QTest::newRow("cancel") << static_cast<int>(QMessageBox::Cancel) << false;
    QTest::newRow("closed") << static_cast<int>(QMessageBox::NoButton) << false;
}

void TestCUtils::askConfirmation()
{
    QFETCH(int, click);
    QFETCH(bool, answer);
    BoxLook look;
    noteAndClick(look, static_cast<QMessageBox::StandardButton>(click));
    QCOMPARE(CUtils::AskConfirmation(QStringLiteral("Sure?"), QStringLiteral("It is lost.")), answer);
    QCOMPARE(look.text, QStringLiteral("Sure?"));
    QCOMPARE(look.informativeText, QStringLiteral("It is lost."));
    QCOMPARE(look.icon, QMessageBox::Warning);
    QCOMPARE(look.buttons, QMessageBox::Ok | QMessageBox::Cancel);
    QCOMPARE(look.labels, (QStringList{QStringLiteral("Cancel"), QStringLiteral("OK")}));
    QCOMPARE(look.defaultButton, QMessageBox::Cancel);
    QCOMPARE(look.size.expandedTo({200, 200}), look.size);
    QVERIFY(!look.hasParent);
    QVERIFY(look.isModal);
}

void TestCUtils::showInformation()
{
    BoxLook look;
    noteAndClick(look, QMessageBox::Ok);
    CUtils::ShowInformation(QStringLiteral("Done"), QStringLiteral("All of it."));
    QCOMPARE(look.text, QStringLiteral("Done"));
    QCOMPARE(look.informativeText, QStringLiteral("All of it."));
    QCOMPARE(look.icon, QMessageBox::Information);
    QCOMPARE(look.buttons, QMessageBox::Ok);
    QCOMPARE(look.defaultButton, QMessageBox::Ok);
    QCOMPARE(look.size.expandedTo({200, 200}), look.size);
    QVERIFY(!look.hasParent);
    QVERIFY(look.isModal);
}

void TestCUtils::showError()
{
    BoxLook look;
    noteAndClick(look, QMessageBox::Ok);
    CUtils::ShowError(QStringLiteral("Failed"), QStringLiteral("No such file."));
    QCOMPARE(look.text, QStringLiteral("Failed"));
    QCOMPARE(look.informativeText, QStringLiteral("No such file."));
    QCOMPARE(look.icon, QMessageBox::Critical);
    QCOMPARE(look.buttons, QMessageBox::Ok);
    QCOMPARE(look.size.expandedTo({200, 200}), look.size);
    QVERIFY(!look.hasParent);
    QVERIFY(look.isModal);
}

void TestCUtils::saveFileKeepsTheOldTail()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("text.txt"));
    m_utils.saveFile(path, QStringLiteral("0123456789"));
    m_utils.saveFile(path, QStringLiteral("ab\ncd"));
    QCOMPARE(m_utils.loadFile(path), QStringLiteral("ab\ncd56789"));
    m_utils.saveFile(path, {});
    QCOMPARE(m_utils.loadFile(path), QStringLiteral("ab\ncd56789"));
    m_utils.saveFile(path, QStringLiteral("a much longer text"));
    QCOMPARE(m_utils.loadFile(path), QStringLiteral("a much longer text"));
}

void TestCUtils::saveFileMakesTheFile()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("new.txt"));
    m_utils.saveFile(path, QStringLiteral("µT"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("\xC2\xB5T"));
}

void TestCUtils::saveFileFails()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("no/such/folder.txt"));
    BoxLook look;
    noteAndClick(look, QMessageBox::Ok);
    m_utils.saveFile(path, QStringLiteral("text"));
    QCOMPARE(look.text, QStringLiteral("Could not save file"));
    QCOMPARE(look.informativeText, QStringLiteral("Could not open file ") + path);
    QCOMPARE(look.icon, QMessageBox::Critical);
}

void TestCUtils::loadFile()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("text.txt"));
    const auto loaded = [&](const QByteArray& bytes) {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            return QStringLiteral("not written");
        file.write(bytes);
        file.close();
        return m_utils.loadFile(path);
    };
    QCOMPARE(loaded("one\r\ntwo\n"), QStringLiteral("one\r\ntwo\n"));
    QCOMPARE(loaded("\xC2\xB5T \xCE\xB5(B)"), QStringLiteral("\u00B5T \u03B5(B)"));
    QCOMPARE(loaded("a\xFF"), QStringLiteral("a\uFFFD"));
    QCOMPARE(loaded(QByteArray("ab\0cd", 5)), QStringLiteral("ab"));
    QCOMPARE(loaded({}), QString());
}

void TestCUtils::loadFileFails()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("missing.txt"));
    BoxLook look;
    noteAndClick(look, QMessageBox::Ok);
    QCOMPARE(m_utils.loadFile(path), QString());
    QCOMPARE(look.text, QStringLiteral("Could not load file"));
    QCOMPARE(look.informativeText, QStringLiteral("Could not open file ") + path);
    QCOMPARE(look.icon, QMessageBox::Critical);
}

QTEST_MAIN(TestCUtils)
#include "tst_CUtils.moc"
