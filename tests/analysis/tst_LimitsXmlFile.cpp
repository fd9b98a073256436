// SPDX-License-Identifier: GPL-3.0-or-later
#include "CLimitsFileOwner.h"
#include "CpuTimer.h"
#include "DialogDriver.h"
#include "LimitsXmlFile.h"
#include "LogRecorder.h"
#include "MetaObjectTable.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString kUnreadableBox = QStringLiteral("Could not load file|Cannot read the file");
const QString kInvalidBox =
    QStringLiteral("Could not load file|The file is not a valid Norvane XML limits file");

class COwner final : public CLimitsFileOwner
{
public:
    CUnits::UnitType LimitsDisplayUnits() const override { return displayUnits; }
    QString LimitsFilePath() const override { return path; }
    void ForgetLimitsFile() override
    {
        ++numForgotten;
        path.clear();
    }
    bool LimitsFileLoaded() const override { return isLoaded; }
    void SetLimitsFileLoaded(bool value) override { isLoaded = value; }

    CUnits::UnitType displayUnits = CUnits::MILLI_TESLA;
    QString path;
    bool isLoaded = false;
    int numForgotten = 0;
};

/// "frequency unit exposure unit" of each band.
QStringList bandsOf(const LimitsXmlFile& file)
{
    QStringList bands;
    for (const QSharedPointer<FrequencyRange>& range : file.Ranges())
        bands.append(QStringLiteral("%1 %2 %3 %4")
                         .arg(range->UpperFrequencyLimitValue())
                         .arg(UnitToText(range->UpperFrequencyLimitUnit()))
                         .arg(range->ExposureLimitValue())
                         .arg(UnitToText(range->ExposureLimitUnit())));
    return bands;
}

QByteArray document(const QByteArray& bands)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<NorvaneExposureLimitsFile ver=\"1.0\">" + bands +
           "</NorvaneExposureLimitsFile>\n";
}

QByteArray band(const char* frequency, const char* exposure, const char* unit)
{
    return QByteArray("<freqRange><upperFreqLimit>") + frequency +
           "</upperFreqLimit><freqUnits>Hz</freqUnits><exposureLimitValue>" + exposure +
           "</exposureLimitValue><valueUnits>" + unit + "</valueUnits></freqRange>";
}

} // namespace

class tst_LimitsXmlFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void surface();
    void initialValues();
    void readsBandsInFileOrder();
    void readsBand_data();
    void readsBand();
    void carriesOver();
    void extremesContainZero();
    void notANumberMovesNoExtreme();
    void readingReplacesBands();
    void otherEncoding();
    void attributesWithoutEnd();
    void missingFile();
    void unreadableFile();
    void refusedRoot_data();
    void refusedRoot();
    void foreignElement();
    void brokenXml_data();
    void brokenXml();
    void entityBomb();
    void recoversFromAnError();
    void clears();
    void converts_data();
    void converts();
    void convertingWidensTheExtremes();
    void convertsNothing();
    void announcesTheConversion();
    void rereadsForAFurtherConversion();
    void forgetsAVanishedFile_data();
    void forgetsAVanishedFile();
    void ignoresTheSameUnit();
    void followsAnotherUnit();
    void remembersAUnitWhileNotLoaded();

private:
    QString write(const QByteArray& content) const;
    void readRefused(const QString& path, const QString& box);

    QTemporaryDir m_directory;
    std::unique_ptr<COwner> m_owner;
    std::unique_ptr<LimitsXmlFile> m_file;
};

void tst_LimitsXmlFile::init()
{
    m_owner = std::make_unique<COwner>();
    m_file = std::make_unique<LimitsXmlFile>(*m_owner);
}

QString tst_LimitsXmlFile::write(const QByteArray& content) const
{
    const QString path = m_directory.filePath(QStringLiteral("limits.xml"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content) != content.size())
        qFatal("Cannot write the test's file");
    return path;
}

void tst_LimitsXmlFile::surface()
{
    using namespace MetaObjectTable;
    const QMetaObject& meta = LimitsXmlFile::staticMetaObject;
    QCOMPARE(meta.superClass()->className(), "XmlFile");
    VERIFY_NO_DIFFERENCE(
        compareProperties(meta, {{"Converted", "bool", ReadOnly}, {"FileError", "bool", ReadOnly}}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(meta, QMetaMethod::Signal, {"ConvertedChanged(bool)", "FileErrorChanged(bool)"}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(meta, QMetaMethod::Slot, {"OnOperationParameterUnitChanged(CUnits::UnitType)"}));
}

void tst_LimitsXmlFile::initialValues()
{
    QVERIFY(!m_file->Converted());
    QVERIFY(!m_file->FileError());
    QVERIFY(m_file->Ranges().isEmpty());
    QCOMPARE(m_file->LowestFrequency(), 0.0);
    QCOMPARE(m_file->HighestFrequency(), 0.0);
    QCOMPARE(m_file->LowestExposure(), 0.0);
    QCOMPARE(m_file->HighestExposure(), 0.0);
}

void tst_LimitsXmlFile::readsBandsInFileOrder()
{
    const LogRecorder log;
    m_file->ReadFile(write(document("<!-- from the left -->" + band("100", "2", "mT") +
                                    band("8", "40", "\xC2\xB5T") + band("3000", "0.5", "G"))));
    QVERIFY(!m_file->FileError());
    QCOMPARE(bandsOf(*m_file), QStringList({QStringLiteral("100 Hz 2 mT"), QStringLiteral("8 Hz 40 \u00B5T"),
                                            QStringLiteral("3000 Hz 0.5 G")}));
    QVERIFY(!m_file->Converted());
    QVERIFY(log.Messages().isEmpty());
    QCOMPARE(m_owner->numForgotten, 0);
}

void tst_LimitsXmlFile::readsBand_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");
    QTest::newRow("other order") << QByteArray(
                                        "<valueUnits>G</valueUnits><exposureLimitValue>3</exposureLimitValue>"
                                        "<freqUnits>Hz</freqUnits><upperFreqLimit>7</upperFreqLimit>")
                                 << QStringLiteral("7 Hz 3 G");
    QTest::newRow("empty") << QByteArray() << QStringLiteral("0   0  ");
    QTest::newRow("no value unit") << QByteArray("<upperFreqLimit>7</upperFreqLimit>"
                                                 "<exposureLimitValue>3</exposureLimitValue>")
                                   << QStringLiteral("7   3  ");
    QTest::newRow("bad numbers") << QByteArray("<upperFreqLimit>seven</upperFreqLimit>"
                                               "<exposureLimitValue>3,5</exposureLimitValue>")
                                 << QStringLiteral("0   0  ");
    QTest::newRow("exponent") << QByteArray("<upperFreqLimit>1.5e3</upperFreqLimit>"
                                            "<exposureLimitValue>-2E-1</exposureLimitValue>")
                              << QStringLiteral("1500   -0.2  ");
    QTest::newRow("unknown units") << QByteArray("<freqUnits>furlong</freqUnits><valueUnits>uT</valueUnits>")
                                   << QStringLiteral("0   0  ");
    QTest::newRow("other children") << QByteArray(
                                           "<name>ours<deep><upperFreqLimit>9</upperFreqLimit></deep></name>"
                                           "<upperFreqLimit>7</upperFreqLimit>")
                                    << QStringLiteral("7   0  ");
    QTest::newRow("frequency in kilohertz stays a number")
        << QByteArray("<upperFreqLimit>7</upperFreqLimit><freqUnits>kHz</freqUnits>")
        << QStringLiteral("7   0  ");
}

void tst_LimitsXmlFile::readsBand()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QString, expected);
    m_file->ReadFile(write(document("<freqRange>" + content + "</freqRange>")));
    QVERIFY(!m_file->FileError());
    QCOMPARE(bandsOf(*m_file), QStringList(expected));
}

void tst_LimitsXmlFile::carriesOver()
{
    const QString path = write(
        document(band("10", "2", "mT") +
                 "<freqRange><upperFreqLimit>20</upperFreqLimit></freqRange>"
                 "<freqRange><exposureLimitValue>1</exposureLimitValue></freqRange>"
                 "<freqRange><upperFreqLimit>bad</upperFreqLimit><valueUnits>G</valueUnits></freqRange>"));
    const QStringList expected{QStringLiteral("10 Hz 2 mT"), QStringLiteral("20 Hz 2 mT"),
                               QStringLiteral("20 Hz 1 mT"), QStringLiteral("0 Hz 1 G")};
    m_file->ReadFile(path);
    QCOMPARE(bandsOf(*m_file), expected);
    // Nothing carries over from one file to the next.
    m_file->ReadFile(write(document("<freqRange/>")));
    QCOMPARE(bandsOf(*m_file), QStringList(QStringLiteral("0   0  ")));
}

void tst_LimitsXmlFile::extremesContainZero()
{
    m_file->AddRange(CUnits::HZ, CUnits::TESLA, 50, 4);
    QCOMPARE(m_file->LowestFrequency(), 0.0);
    QCOMPARE(m_file->HighestFrequency(), 50.0);
    QCOMPARE(m_file->LowestExposure(), 0.0);
    QCOMPARE(m_file->HighestExposure(), 4.0);
    m_file->AddRange(CUnits::HZ, CUnits::TESLA, -3, -7);
    QCOMPARE(m_file->LowestFrequency(), -3.0);
    QCOMPARE(m_file->HighestFrequency(), 50.0);
    QCOMPARE(m_file->LowestExposure(), -7.0);
    QCOMPARE(m_file->HighestExposure(), 4.0);
    QCOMPARE(bandsOf(*m_file), QStringList({QStringLiteral("50 Hz 4 T"), QStringLiteral("-3 Hz -7 T")}));
}

void tst_LimitsXmlFile::notANumberMovesNoExtreme()
{
    m_file->ReadFile(
        write(document(band("50", "-4", "mT") + band("nan", "nan", "mT") + band("8", "2", "mT"))));
    m_file->Convert(false);
    QCOMPARE(m_file->Ranges().size(), 3);
    QCOMPARE(m_file->LowestFrequency(), 0.0);
    QCOMPARE(m_file->HighestFrequency(), 50.0);
    QCOMPARE(m_file->LowestExposure(), -4.0);
    QCOMPARE(m_file->HighestExposure(), 2.0);
}

void tst_LimitsXmlFile::otherEncoding()
{
    m_file->ReadFile(write("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"
                           "<NorvaneExposureLimitsFile ver=\"1.0\">" +
                           band("8", "40", "\xB5T") + "</NorvaneExposureLimitsFile>"));
    QVERIFY(!m_file->FileError());
    QCOMPARE(bandsOf(*m_file), QStringList(QStringLiteral("8 Hz 40 \u00B5T")));
}

// Each attribute of a tag is compared with all others, so that this one would take hours.
void tst_LimitsXmlFile::attributesWithoutEnd()
{
    QByteArray attributes;
    for (int i = 0; i < 500000; ++i)
        attributes += " a" + QByteArray::number(i) + "=''";
    const LogRecorder log;
    m_file->ReadFile(write(document(band("10", "1", "mT") + "<freqRange" + attributes + "/>")));
    QVERIFY(m_file->FileError());
    QCOMPARE(bandsOf(*m_file), QStringList(QStringLiteral("10 Hz 1 mT")));
    QCOMPARE(log.Messages().size(), 1);
}

void tst_LimitsXmlFile::readingReplacesBands()
{
    m_file->ReadFile(write(document(band("500", "9", "mT"))));
    m_file->ReadFile(write(document(band("10", "1", "mT"))));
    QCOMPARE(m_file->Ranges().size(), 1);
    QCOMPARE(m_file->HighestFrequency(), 10.0);
    QCOMPARE(m_file->HighestExposure(), 1.0);
}

/// Reads a file that the user is told of by this box.
void tst_LimitsXmlFile::readRefused(const QString& path, const QString& box)
{
    DialogDriver dialogs;
    dialogs.pressNext(QMessageBox::Ok);
    m_file->ReadFile(path);
    QVERIFY(dialogs.isDone());
    QCOMPARE(dialogs.messages, QStringList(box));
    QVERIFY(m_file->FileError());
}

void tst_LimitsXmlFile::missingFile()
{
    const QString path = m_directory.filePath(QStringLiteral("absent.xml"));
    m_owner->path = path;
    QSignalSpy errorSpy(m_file.get(), &LimitsXmlFile::FileErrorChanged);
    const LogRecorder log;
    readRefused(path, kUnreadableBox);
    QCOMPARE(log.Messages(),
             QStringList(QStringLiteral("WARN Cannot read the file. Limit File doesn't exist : ") + path));
    QCOMPARE(errorSpy.count(), 1);
    QCOMPARE(m_owner->numForgotten, 1);
}

void tst_LimitsXmlFile::unreadableFile()
{
    // A directory exists and cannot be opened.
    const QString path = m_directory.path();
    m_owner->path = path;
    const LogRecorder log;
    readRefused(path, kUnreadableBox);
    QCOMPARE(log.Texts(QtWarningMsg),
             QStringList(QStringLiteral("Cannot read the file. Limit file path : ") + path));
    QCOMPARE(m_owner->path, path);
}

void tst_LimitsXmlFile::refusedRoot_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("no XML") << QByteArray("limits: 50 Hz\n");
    QTest::newRow("other root") << QByteArray("<Limits ver=\"1.0\"><freqRange/></Limits>");
    QTest::newRow("other case") << QByteArray(
        "<norvaneExposureLimitsFile ver=\"1.0\"><freqRange/></norvaneExposureLimitsFile>");
    QTest::newRow("other version") << QByteArray(
        "<NorvaneExposureLimitsFile ver=\"1.1\"><freqRange/></NorvaneExposureLimitsFile>");
    QTest::newRow("no version") << QByteArray(
        "<NorvaneExposureLimitsFile><freqRange/></NorvaneExposureLimitsFile>");
}

void tst_LimitsXmlFile::refusedRoot()
{
    QFETCH(const QByteArray, content);
    const QString path = write(content);
    m_owner->path = path;
    const LogRecorder log;
    readRefused(path, kInvalidBox);
    QCOMPARE(log.Messages(), QStringList(QStringLiteral("DEBUG Error: Failed to parse file : ") + path +
                                         QStringLiteral(" : Incorrect file")));
    QVERIFY(m_file->Ranges().isEmpty());
    QCOMPARE(m_owner->path, path);
}

void tst_LimitsXmlFile::foreignElement()
{
    const QString path = write(document(band("10", "1", "mT") + "<freqrange/>" + band("20", "2", "mT")));
    const LogRecorder log;
    readRefused(path, kInvalidBox);
    QCOMPARE(log.Messages(), QStringList(QStringLiteral("DEBUG Error: Failed to parse file : ") + path +
                                         QStringLiteral(" : Incorrect file")));
    QCOMPARE(bandsOf(*m_file), QStringList(QStringLiteral("10 Hz 1 mT")));
}

void tst_LimitsXmlFile::brokenXml_data()
{
    QTest::addColumn<QByteArray>("tail");
    QTest::newRow("cut between bands") << QByteArray();
    QTest::newRow("cut inside a band") << QByteArray("<freqRange><upperFreqLimit>9</upperFreqLimit>");
    QTest::newRow("cut inside a number") << QByteArray("<freqRange><upperFreqLimit>9");
    QTest::newRow("wrong end tag") << QByteArray("<freqRange></freqrange></NorvaneExposureLimitsFile>");
    QTest::newRow("element inside a number")
        << QByteArray("<freqRange><upperFreqLimit>1<b>2</b></upperFreqLimit></freqRange>"
                      "</NorvaneExposureLimitsFile>");
}

void tst_LimitsXmlFile::brokenXml()
{
    QFETCH(const QByteArray, tail);
    const QString path = write("<NorvaneExposureLimitsFile ver=\"1.0\">" + band("10", "1", "mT") + tail);
    const DialogDriver dialogs;
    const LogRecorder log;
    m_file->ReadFile(path);
    QVERIFY(dialogs.messages.isEmpty());
    QVERIFY(m_file->FileError());
    QCOMPARE(bandsOf(*m_file), QStringList(QStringLiteral("10 Hz 1 mT")));
    QCOMPARE(log.Messages().size(), 1);
    QVERIFY(log.Messages().first().startsWith(QStringLiteral("DEBUG Error: Failed to parse file : ") + path +
                                              QStringLiteral(" : ")));
}

void tst_LimitsXmlFile::entityBomb()
{
    QByteArray content = "<!DOCTYPE l [<!ENTITY a0 \"0123456789\">";
    for (int i = 1; i < 12; ++i) {
        const QByteArray previous = "&a" + QByteArray::number(i - 1) + ";";
        content += "<!ENTITY a" + QByteArray::number(i) + " \"" + previous.repeated(10) + "\">";
    }
    content += "]>" + QByteArray("<NorvaneExposureLimitsFile ver=\"1.0\"><freqRange><upperFreqLimit>&a11;"
                                 "</upperFreqLimit></freqRange></NorvaneExposureLimitsFile>");
    const LogRecorder log;
    const CpuTimer timer;
    m_file->ReadFile(write(content));
    QVERIFY(m_file->FileError());
    QVERIFY(m_file->Ranges().isEmpty());
    QVERIFY(timer.elapsed() < 5000);
}

void tst_LimitsXmlFile::recoversFromAnError()
{
    QSignalSpy errorSpy(m_file.get(), &LimitsXmlFile::FileErrorChanged);
    {
        const LogRecorder log;
        m_file->ReadFile(write("<NorvaneExposureLimitsFile ver=\"1.0\">"));
        m_file->ReadFile(write("<NorvaneExposureLimitsFile ver=\"1.0\">"));
    }
    QCOMPARE(errorSpy.count(), 1);
    m_file->ReadFile(write(document({})));
    QVERIFY(!m_file->FileError());
    QCOMPARE(errorSpy.count(), 2);
}

void tst_LimitsXmlFile::clears()
{
    m_file->AddRange(CUnits::HZ, CUnits::TESLA, 50, 4);
    m_file->AddRange(CUnits::HZ, CUnits::TESLA, -50, -4);
    m_file->Convert(false);
    QSignalSpy convertedSpy(m_file.get(), &LimitsXmlFile::ConvertedChanged);
    m_file->Clear();
    m_file->Clear();
    QCOMPARE(convertedSpy.count(), 1);
    initialValues();
}

void tst_LimitsXmlFile::converts_data()
{
    QTest::addColumn<CUnits::UnitType>("from");
    QTest::addColumn<CUnits::UnitType>("to");
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("expected");
    QTest::newRow("T to mT") << CUnits::TESLA << CUnits::MILLI_TESLA << 1.5 << 1500.0;
    QTest::newRow("same") << CUnits::MICRO_TESLA << CUnits::MICRO_TESLA << 100.0 << 100.0;
    QTest::newRow("G to nT") << CUnits::GAUSS << CUnits::NANO_TESLA << 2.0 << 2e5;
    QTest::newRow("mT to G") << CUnits::MILLI_TESLA << CUnits::GAUSS << 0.5 << 5.0;
    QTest::newRow("percent counts as T") << CUnits::PERCENT << CUnits::MILLI_TESLA << 1.0 << 1000.0;
    QTest::newRow("unknown counts as T") << CUnits::UNKNOWN << CUnits::MICRO_TESLA << 2.0 << 2e6;
    QTest::newRow("to unknown counts as T")
        << CUnits::MILLI_TESLA << CUnits::UNKNOWN << 1000.0 << 1000.0 * static_cast<double>(0.001F);
    QTest::newRow("to ADC") << CUnits::MICRO_TESLA << CUnits::ADC << 3.0 << -3.0;
    // The value is held in single precision from here on.
    QTest::newRow("single precision") << CUnits::TESLA << CUnits::TESLA << 0.1 << static_cast<double>(0.1F);
}

void tst_LimitsXmlFile::converts()
{
    QFETCH(const CUnits::UnitType, from);
    QFETCH(const CUnits::UnitType, to);
    QFETCH(const double, value);
    QFETCH(const double, expected);
    m_owner->displayUnits = to;
    m_file->AddRange(CUnits::HZ, from, 50, value);
    m_file->Convert(false);
    QCOMPARE(m_file->Ranges().first()->ExposureLimitValue(),
             static_cast<double>(static_cast<float>(expected)));
    QCOMPARE(m_file->Ranges().first()->ExposureLimitUnit(), from);
    QCOMPARE(m_file->Ranges().first()->UpperFrequencyLimitValue(), 50.0);
    QVERIFY(m_file->Converted());
}

void tst_LimitsXmlFile::convertingWidensTheExtremes()
{
    // What was read takes part as well as what it was converted to.
    m_owner->displayUnits = CUnits::MILLI_TESLA;
    m_file->AddRange(CUnits::HZ, CUnits::TESLA, 50, 2);
    m_file->AddRange(CUnits::HZ, CUnits::GAUSS, 60, -400);
    m_file->Convert(false);
    QCOMPARE(m_file->HighestExposure(), 2000.0);
    QCOMPARE(m_file->LowestExposure(), -400.0);
    QCOMPARE(m_file->HighestFrequency(), 60.0);
}

void tst_LimitsXmlFile::convertsNothing()
{
    QSignalSpy convertedSpy(m_file.get(), &LimitsXmlFile::ConvertedChanged);
    m_file->Convert(false);
    QVERIFY(!m_file->Converted());
    QCOMPARE(convertedSpy.count(), 0);
}

void tst_LimitsXmlFile::announcesTheConversion()
{
    m_file->AddRange(CUnits::HZ, CUnits::TESLA, 50, 2);
    m_file->AddRange(CUnits::HZ, CUnits::MILLI_TESLA, 60, 3);
    QSignalSpy convertedSpy(m_file.get(), &LimitsXmlFile::ConvertedChanged);
    QSignalSpy firstSpy(m_file->Ranges().at(0).data(), &FrequencyRange::ExposureLimitValueChanged);
    QSignalSpy secondSpy(m_file->Ranges().at(1).data(), &FrequencyRange::ExposureLimitValueChanged);
    m_file->Convert(false);
    QCOMPARE(convertedSpy.count(), 1);
    QCOMPARE(firstSpy.count(), 1);
    QCOMPARE(secondSpy.count(), 0);
    m_file->Convert(false);
    QCOMPARE(convertedSpy.count(), 3);
    QCOMPARE(convertedSpy.at(1).first().toBool(), false);
    QCOMPARE(convertedSpy.at(2).first().toBool(), true);
    // Without reading anew the value is taken for one in the unit of the file again.
    QCOMPARE(m_file->Ranges().at(0)->ExposureLimitValue(), 2e6);
}

void tst_LimitsXmlFile::rereadsForAFurtherConversion()
{
    m_owner->path = write(document(band("10", "2", "T")));
    m_file->ReadFile(m_owner->path);
    m_file->Convert(false);
    m_owner->displayUnits = CUnits::GAUSS;
    m_file->Convert(true);
    QCOMPARE(bandsOf(*m_file), QStringList(QStringLiteral("10 Hz 20000 T")));
    QVERIFY(m_file->Converted());
    QCOMPARE(m_file->HighestExposure(), 20000.0);
}

void tst_LimitsXmlFile::forgetsAVanishedFile_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("no path") << QString();
    QTest::newRow("no file") << m_directory.filePath(QStringLiteral("absent.xml"));
}

void tst_LimitsXmlFile::forgetsAVanishedFile()
{
    QFETCH(const QString, path);
    m_file->ReadFile(write(document(band("10", "2", "T"))));
    m_file->Convert(false);
    m_owner->isLoaded = true;
    m_owner->path = path;
    const DialogDriver dialogs;
    const LogRecorder log;
    m_file->Convert(true);
    QCOMPARE(m_owner->numForgotten, 1);
    QVERIFY(!m_owner->isLoaded);
    QVERIFY(m_file->Ranges().isEmpty());
    QVERIFY(!m_file->Converted());
    QVERIFY(!m_file->FileError());
    QVERIFY(log.Messages().isEmpty());
    QVERIFY(dialogs.messages.isEmpty());
}

void tst_LimitsXmlFile::ignoresTheSameUnit()
{
    m_owner->path = write(document(band("10", "2", "T")));
    m_file->ReadFile(m_owner->path);
    m_file->Convert(false);
    m_owner->isLoaded = true;
    const QSharedPointer<FrequencyRange> range = m_file->Ranges().first();
    m_file->OnOperationParameterUnitChanged(CUnits::MILLI_TESLA);
    QCOMPARE(m_file->Ranges().first(), range);
}

void tst_LimitsXmlFile::followsAnotherUnit()
{
    m_owner->path = write(document(band("10", "2", "T")));
    m_file->ReadFile(m_owner->path);
    m_file->Convert(false);
    m_owner->isLoaded = true;
    QCOMPARE(bandsOf(*m_file), QStringList(QStringLiteral("10 Hz 2000 T")));
    m_owner->displayUnits = CUnits::MICRO_TESLA;
    m_file->OnOperationParameterUnitChanged(CUnits::MICRO_TESLA);
    QCOMPARE(bandsOf(*m_file), QStringList(QStringLiteral("10 Hz 2e+06 T")));

    QVERIFY(QFile::remove(m_owner->path));
    m_owner->displayUnits = CUnits::GAUSS;
    m_file->OnOperationParameterUnitChanged(CUnits::GAUSS);
    QVERIFY(!m_owner->isLoaded);
    QCOMPARE(m_owner->numForgotten, 1);
    QVERIFY(m_file->Ranges().isEmpty());
}

void tst_LimitsXmlFile::remembersAUnitWhileNotLoaded()
{
    m_file->AddRange(CUnits::HZ, CUnits::TESLA, 10, 2);
    m_file->OnOperationParameterUnitChanged(CUnits::GAUSS);
    QVERIFY(!m_file->Converted());
    QCOMPARE(m_file->Ranges().size(), 1);
    // Nothing happens for the remembered unit, even when limits are in force by now.
    m_owner->isLoaded = true;
    m_file->OnOperationParameterUnitChanged(CUnits::GAUSS);
    QCOMPARE(m_file->Ranges().size(), 1);
    m_file->OnOperationParameterUnitChanged(CUnits::TESLA);
    QVERIFY(m_file->Ranges().isEmpty());
}

QTEST_MAIN(tst_LimitsXmlFile)

#include "tst_LimitsXmlFile.moc"
