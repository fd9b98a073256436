// SPDX-License-Identifier: GPL-3.0-or-later
#include "COperationMeasure.h"
#include "DialogDriver.h"
#include "LogRecorder.h"
#include "OperationFixture.h"

#include <QFile>
#include <QSignalSpy>
#include <QtTest>

namespace {

const QByteArray kTwoBands =
    "<NorvaneExposureLimitsFile ver=\"1.0\">"
    "<freqRange><upperFreqLimit>50</upperFreqLimit><freqUnits>Hz</freqUnits>"
    "<exposureLimitValue>2</exposureLimitValue><valueUnits>T</valueUnits></freqRange>"
    "<freqRange><upperFreqLimit>400</upperFreqLimit><exposureLimitValue>0.5</exposureLimitValue></freqRange>"
    "</NorvaneExposureLimitsFile>";

} // namespace

/// The exposure limits of the measure operation.
class tst_COperationMeasureLimits : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void withoutLimits();
    void loads();
    void ignoresTheSamePath();
    void replaces();
    void refusesABadFile();
    void forgetsAMissingFile();
    void clears();
    void clearsNothing();
    void followsTheDisplayUnit();
    void forgetsAFileThatVanished();
    void comesBackWithTheSettings();
    void badFileInTheSettings();
    void usesTheUnitOfTheParameterFile();
    void largestFrequency();

private:
    CLimitsParameters& limits() { return *m_operation->OperationParameters()->LimitsParameters(); }
    void setUnits(CUnits::UnitType units)
    {
        CMeasurementParameters& parameters = *m_operation->OperationParameters()->MeasurementParameters();
        parameters.SetDisplayUnits(units);
        parameters.SetUnits(units);
    }
    QString goodFile() const { return m_fixture->write(QStringLiteral("limits.xml"), kTwoBands); }

    std::unique_ptr<OperationFixture> m_fixture;
    std::unique_ptr<COperationMeasure> m_operation;
};

void tst_COperationMeasureLimits::init()
{
    m_fixture = std::make_unique<OperationFixture>();
    m_operation = std::make_unique<COperationMeasure>(&m_fixture->settings, &m_fixture->plugins,
                                                      &m_fixture->supervisor);
    setUnits(CUnits::MILLI_TESLA);
}

void tst_COperationMeasureLimits::cleanup()
{
    m_operation.reset();
    m_fixture.reset();
}

void tst_COperationMeasureLimits::withoutLimits()
{
    QVERIFY(!m_operation->LimitsFileLoaded());
    QCOMPARE(m_operation->getLimitsCount(), 0);
    QCOMPARE(m_operation->getFrequency(0), 0.0);
    QCOMPARE(m_operation->getExposure(-1), 0.0);
}

void tst_COperationMeasureLimits::loads()
{
    QSignalSpy loadedSpy(m_operation.get(), &COperationMeasure::LimitsFileLoadedChanged);
    bool wasLoadedAtConversion = false;
    connect(m_operation->LimitsFile(), &LimitsXmlFile::ConvertedChanged, this,
            [&] { wasLoadedAtConversion = m_operation->LimitsFileLoaded(); });
    limits().SetLimitsFilePath(goodFile());
    QVERIFY(m_operation->LimitsFileLoaded());
    QCOMPARE(loadedSpy.count(), 1);
    QVERIFY(wasLoadedAtConversion);
    QVERIFY(m_operation->LimitsFile()->Converted());
    QCOMPARE(limits().LimitsFileName(), limits().LimitsFilePath());
    QCOMPARE(m_operation->getLimitsCount(), 2);
    QCOMPARE(m_operation->getFrequency(0), 50.0);
    QCOMPARE(m_operation->getFrequency(1), 400.0);
    QCOMPARE(m_operation->getExposure(0), 2000.0);
    QCOMPARE(m_operation->getExposure(1), 500.0);
    QCOMPARE(m_operation->getExposure(2), 0.0);
}

void tst_COperationMeasureLimits::ignoresTheSamePath()
{
    const QString path = goodFile();
    limits().SetLimitsFilePath(path);
    QSignalSpy loadedSpy(m_operation.get(), &COperationMeasure::LimitsFileLoadedChanged);
    limits().SetLimitsFilePath(path);
    QCOMPARE(loadedSpy.count(), 0);
    // An assignment reads the file again.
    limits().AssignLimitsFilePath(path);
    QCOMPARE(loadedSpy.count(), 2);
    QVERIFY(m_operation->LimitsFileLoaded());
}

void tst_COperationMeasureLimits::replaces()
{
    limits().SetLimitsFilePath(goodFile());
    const QString other = m_fixture->write(
        QStringLiteral("other.xml"), "<NorvaneExposureLimitsFile ver=\"1.0\"></NorvaneExposureLimitsFile>");
    limits().SetLimitsFilePath(other);
    QVERIFY(m_operation->LimitsFileLoaded());
    QVERIFY(!m_operation->LimitsFile()->Converted());
    QCOMPARE(m_operation->getLimitsCount(), 0);
    QCOMPARE(limits().LimitsFileName(), other);
}

void tst_COperationMeasureLimits::refusesABadFile()
{
    limits().SetLimitsFilePath(goodFile());
    const QString bad =
        m_fixture->write(QStringLiteral("bad.xml"), "<NorvaneExposureLimitsFile ver=\"1.1\"/>");
    DialogDriver dialogs;
    dialogs.pressNext(QMessageBox::Ok);
    const LogRecorder log;
    limits().SetLimitsFilePath(bad);
    QVERIFY(dialogs.isDone());
    QVERIFY(!m_operation->LimitsFileLoaded());
    QVERIFY(limits().LimitsFileName().isEmpty());
    QCOMPARE(limits().LimitsFilePath(), bad);
    QCOMPARE(m_operation->getLimitsCount(), 0);
}

void tst_COperationMeasureLimits::forgetsAMissingFile()
{
    limits().SetLimitsFilePath(goodFile());
    QSignalSpy pathSpy(&limits(), &CLimitsParameters::LimitsFilePathChanged);
    DialogDriver dialogs;
    dialogs.pressNext(QMessageBox::Ok);
    const LogRecorder log;
    limits().SetLimitsFilePath(m_fixture->directory.filePath(QStringLiteral("absent.xml")));
    QVERIFY(dialogs.isDone());
    QVERIFY(limits().LimitsFilePath().isEmpty());
    QVERIFY(limits().LimitsFileName().isEmpty());
    QVERIFY(!m_operation->LimitsFileLoaded());
    QCOMPARE(m_operation->getLimitsCount(), 0);
    QCOMPARE(pathSpy.count(), 2);
}

void tst_COperationMeasureLimits::clears()
{
    limits().SetLimitsFilePath(goodFile());
    QSignalSpy pathSpy(&limits(), &CLimitsParameters::LimitsFilePathChanged);
    QSignalSpy nameSpy(&limits(), &CLimitsParameters::LimitsFileNameChanged);
    QSignalSpy loadedSpy(m_operation.get(), &COperationMeasure::LimitsFileLoadedChanged);
    m_operation->clearLimitsFile();
    QVERIFY(limits().LimitsFilePath().isEmpty());
    QVERIFY(limits().LimitsFileName().isEmpty());
    QVERIFY(!m_operation->LimitsFileLoaded());
    QVERIFY(!m_operation->LimitsFile()->Converted());
    QCOMPARE(m_operation->getLimitsCount(), 0);
    QCOMPARE(pathSpy.count(), 1);
    QCOMPARE(nameSpy.count(), 1);
    QCOMPARE(loadedSpy.count(), 1);
}

void tst_COperationMeasureLimits::clearsNothing()
{
    QSignalSpy pathSpy(&limits(), &CLimitsParameters::LimitsFilePathChanged);
    QSignalSpy nameSpy(&limits(), &CLimitsParameters::LimitsFileNameChanged);
    QSignalSpy loadedSpy(m_operation.get(), &COperationMeasure::LimitsFileLoadedChanged);
    const LogRecorder log;
    m_operation->clearLimitsFile();
    QCOMPARE(pathSpy.count(), 1);
    QCOMPARE(nameSpy.count(), 0);
    QCOMPARE(loadedSpy.count(), 0);
    QVERIFY(log.Messages().isEmpty());
}

void tst_COperationMeasureLimits::followsTheDisplayUnit()
{
    limits().SetLimitsFilePath(goodFile());
    QSignalSpy convertedSpy(m_operation->LimitsFile(), &LimitsXmlFile::ConvertedChanged);
    setUnits(CUnits::MILLI_TESLA);
    QCOMPARE(convertedSpy.count(), 0);
    setUnits(CUnits::GAUSS);
    QCOMPARE(m_operation->getExposure(0), 20000.0);
    QCOMPARE(m_operation->getExposure(1), 5000.0);
    setUnits(CUnits::MILLI_TESLA);
    QCOMPARE(m_operation->getExposure(0), 2000.0);
    QVERIFY(m_operation->LimitsFileLoaded());
}

void tst_COperationMeasureLimits::forgetsAFileThatVanished()
{
    const QString path = goodFile();
    limits().SetLimitsFilePath(path);
    QVERIFY(QFile::remove(path));
    QSignalSpy loadedSpy(m_operation.get(), &COperationMeasure::LimitsFileLoadedChanged);
    setUnits(CUnits::GAUSS);
    QVERIFY(!m_operation->LimitsFileLoaded());
    QCOMPARE(loadedSpy.count(), 1);
    QVERIFY(limits().LimitsFilePath().isEmpty());
    QVERIFY(limits().LimitsFileName().isEmpty());
    QCOMPARE(m_operation->getLimitsCount(), 0);
}

void tst_COperationMeasureLimits::comesBackWithTheSettings()
{
    limits().SetLimitsFilePath(goodFile());
    m_operation->Deactivate();
    COperationMeasure next(&m_fixture->settings, &m_fixture->plugins, &m_fixture->supervisor);
    next.Activate();
    QVERIFY(next.LimitsFileLoaded());
    QCOMPARE(next.OperationParameters()->LimitsParameters()->LimitsFilePath(), limits().LimitsFilePath());
    QCOMPARE(next.getExposure(0), 2000.0);
    // On a next visit the file is read anew.
    m_fixture->write(QStringLiteral("limits.xml"),
                     "<NorvaneExposureLimitsFile ver=\"1.0\"></NorvaneExposureLimitsFile>");
    next.Activate();
    QVERIFY(next.LimitsFileLoaded());
    QCOMPARE(next.getLimitsCount(), 0);
}

void tst_COperationMeasureLimits::badFileInTheSettings()
{
    limits().SetLimitsFilePath(goodFile());
    m_operation->Deactivate();
    m_fixture->write(QStringLiteral("limits.xml"), "<Other/>");
    COperationMeasure next(&m_fixture->settings, &m_fixture->plugins, &m_fixture->supervisor);
    DialogDriver dialogs;
    dialogs.pressNext(QMessageBox::Ok);
    const LogRecorder log;
    next.Activate();
    QVERIFY(dialogs.isDone());
    QVERIFY(!next.LimitsFileLoaded());
}

void tst_COperationMeasureLimits::usesTheUnitOfTheParameterFile()
{
    // Wherever the unit stands in the file, page and limits have the same one in the end.
    const QByteArray path = goodFile().toUtf8();
    const QByteArray units = "<MEASUREMENT_PARAMETERS><Units>G</Units></MEASUREMENT_PARAMETERS>";
    const QByteArray file =
        "<LIMITS_PARAMETERS><LimitsFilePath>" + path + "</LimitsFilePath></LIMITS_PARAMETERS>";
    for (const QByteArray& content : {QByteArray(units + file), QByteArray(file + units)}) {
        setUnits(CUnits::MILLI_TESLA);
        QVERIFY(
            m_operation->LoadParameters(m_fixture->write(QStringLiteral("p.xml"), "<A>" + content + "</A>")));
        QCOMPARE(m_operation->OperationParameters()->MeasurementParameters()->DisplayUnits(), CUnits::GAUSS);
        QVERIFY(m_operation->LimitsFileLoaded());
        QCOMPARE(m_operation->getExposure(0), 20000.0);
    }
}

void tst_COperationMeasureLimits::largestFrequency()
{
    QCOMPARE(m_operation->getMaxFrequency(), -1.0);
    m_fixture->connectInstrument(0);
    m_fixture->instrument(0)->FrequencyMaxBound()->SetMax(1234.5);
    QCOMPARE(m_operation->getMaxFrequency(), 1234.5);
    m_fixture->supervisor.ClearActiveInstrument();
    QCOMPARE(m_operation->getMaxFrequency(), -1.0);
}

QTEST_MAIN(tst_COperationMeasureLimits)

#include "tst_COperationMeasureLimits.moc"
