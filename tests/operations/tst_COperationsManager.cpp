// SPDX-License-Identifier: GPL-3.0-or-later
#include "COperationsManager.h"
#include "DialogDriver.h"
#include "OperationFixture.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

const QString kQuestion = QStringLiteral("Are you sure you want to quit the current operation?|"
                                         "All the measured data will be lost");

} // namespace

class tst_COperationsManager : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void startsWithoutActiveOperation();
    void allowsWithoutAsking();
    void asks_data();
    void asks();
    void asksAboutNoOperationWithTheSameName();
    void activates();
    void activatesOnce();
    void changes();
    void leaves();
    void leavesNothing();
    void givesItsParametersToTheInstrument();
    void activatesWithoutInstrument();
    void measureOperationKeepsItsParameters();
    void fromMeterToMapping_data();
    void fromMeterToMapping();

private:
    std::unique_ptr<OperationFixture> m_fixture;
    std::unique_ptr<COperationsManager> m_manager;
    std::unique_ptr<CTestOperation> m_first;
    std::unique_ptr<CTestOperation> m_second;
};

void tst_COperationsManager::init()
{
    m_fixture = std::make_unique<OperationFixture>();
    m_manager = std::make_unique<COperationsManager>(&m_fixture->settings, &m_fixture->plugins,
                                                     &m_fixture->supervisor);
    m_first = std::make_unique<CTestOperation>(&m_fixture->supervisor, QStringLiteral("First"));
    m_second = std::make_unique<CTestOperation>(&m_fixture->supervisor, QStringLiteral("Second"));
}

void tst_COperationsManager::cleanup()
{
    m_first.reset();
    m_second.reset();
    m_manager.reset();
    m_fixture.reset();
}

void tst_COperationsManager::startsWithoutActiveOperation()
{
    QCOMPARE(m_manager->GetActiveOperation(), nullptr);
    QCOMPARE(m_manager->OperationMeasure()->Name(), QStringLiteral("MeterSpectrumAc"));
    QCOMPARE(m_manager->OperationMapping()->Name(), QStringLiteral("Mapping"));
}

void tst_COperationsManager::allowsWithoutAsking()
{
    const DialogDriver dialogs;
    QVERIFY(m_manager->ChangeOperationAllowed(nullptr));
    m_first->hasUnsavedData = true;
    QVERIFY(m_manager->ChangeOperationAllowed(m_first.get()));
    m_first->hasUnsavedData = false;

    m_manager->SetActiveOperation(m_first.get());
    QVERIFY(m_manager->ChangeOperationAllowed(m_second.get()));
    QVERIFY(m_manager->ChangeOperationAllowed(nullptr));
    m_first->hasUnsavedData = true;
    QVERIFY(m_manager->ChangeOperationAllowed(m_first.get()));
    QVERIFY(dialogs.messages.isEmpty());
}

void tst_COperationsManager::asks_data()
{
    QTest::addColumn<bool>("hasUnsavedData");
    QTest::addColumn<bool>("isInSession");
    QTest::addColumn<bool>("isLeft");
    QTest::addColumn<bool>("answer");
    for (const bool answer : {false, true}) {
        for (const bool isLeft : {false, true}) {
            const char* how = answer ? "ok" : "cancel";
            const char* where = isLeft ? "to none" : "to another";
            QTest::addRow("unsaved data %s %s", where, how) << true << false << isLeft << answer;
            QTest::addRow("session %s %s", where, how) << false << true << isLeft << answer;
        }
    }
}

void tst_COperationsManager::asks()
{
    QFETCH(const bool, hasUnsavedData);
    QFETCH(const bool, isInSession);
    QFETCH(const bool, isLeft);
    QFETCH(const bool, answer);
    m_fixture->connectInstrument(0);
    m_manager->SetActiveOperation(m_first.get());
    m_first->hasUnsavedData = hasUnsavedData;
    if (isInSession)
        m_first->StartSession();
    m_first->calls.clear();

    DialogDriver dialogs;
    dialogs.pressNext(answer ? QMessageBox::Ok : QMessageBox::Cancel);
    QCOMPARE(m_manager->ChangeOperationAllowed(isLeft ? nullptr : m_second.get()), answer);
    QVERIFY(dialogs.isDone());
    QCOMPARE(dialogs.messages, QStringList(kQuestion));
    // The question changes nothing by itself.
    QVERIFY(m_first->calls.isEmpty());
    QCOMPARE(m_first->SessionInProgress(), isInSession);
    QCOMPARE(m_manager->GetActiveOperation(), m_first.get());
}

void tst_COperationsManager::asksAboutNoOperationWithTheSameName()
{
    m_manager->SetActiveOperation(m_first.get());
    m_first->hasUnsavedData = true;
    const CTestOperation namesake(&m_fixture->supervisor, QStringLiteral("First"));
    const DialogDriver dialogs;
    QVERIFY(m_manager->ChangeOperationAllowed(&namesake));
    QVERIFY(dialogs.messages.isEmpty());
}

void tst_COperationsManager::activates()
{
    m_manager->SetActiveOperation(m_first.get());
    QCOMPARE(m_manager->GetActiveOperation(), m_first.get());
    QCOMPARE(m_first->calls, QStringList(QStringLiteral("Activate")));
}

void tst_COperationsManager::activatesOnce()
{
    m_fixture->connectInstrument(0);
    m_manager->SetActiveOperation(m_first.get());
    m_first->StartSession();
    m_manager->SetActiveOperation(m_first.get());
    QCOMPARE(m_first->calls, QStringList(QStringLiteral("Activate")));
    QVERIFY(m_first->SessionInProgress());
}

void tst_COperationsManager::changes()
{
    m_fixture->connectInstrument(0);
    m_manager->SetActiveOperation(m_first.get());
    m_first->StartSession();
    m_manager->SetActiveOperation(m_second.get());
    QCOMPARE(m_first->calls, QStringList({QStringLiteral("Activate"), QStringLiteral("StopSession"),
                                          QStringLiteral("Reset"), QStringLiteral("Deactivate")}));
    QCOMPARE(m_second->calls, QStringList(QStringLiteral("Activate")));
    QVERIFY(!m_first->SessionInProgress());
    QVERIFY(!m_fixture->instrument(0)->IsRunning());
    QCOMPARE(m_manager->GetActiveOperation(), m_second.get());
}

void tst_COperationsManager::leaves()
{
    m_manager->SetActiveOperation(m_first.get());
    m_manager->LeaveActiveOperation();
    QCOMPARE(m_first->calls, QStringList({QStringLiteral("Activate"), QStringLiteral("StopSession"),
                                          QStringLiteral("Reset"), QStringLiteral("Deactivate")}));
    QCOMPARE(m_manager->GetActiveOperation(), nullptr);
}

void tst_COperationsManager::leavesNothing()
{
    m_manager->LeaveActiveOperation();
    QCOMPARE(m_manager->GetActiveOperation(), nullptr);
}

void tst_COperationsManager::givesItsParametersToTheInstrument()
{
    m_fixture->connectInstrument(0);
    const QSharedPointer<CFakeInstrument> instrument = m_fixture->instrument(0);
    QSignalSpy parametersSpy(instrument.data(), &CInstrument::MeasurementParametersChanged);
    bool wasActivated = true;
    connect(instrument.data(), &CInstrument::MeasurementParametersChanged, this,
            [&] { wasActivated = m_first->calls.contains(QStringLiteral("Activate")); });
    m_manager->SetActiveOperation(m_first.get());
    QCOMPARE(instrument->MeasurementParameters(), &m_first->measurement());
    QCOMPARE(parametersSpy.count(), 1);
    QVERIFY(!wasActivated);

    // The driver hears of the same parameters again.
    m_manager->LeaveActiveOperation();
    m_manager->SetActiveOperation(m_first.get());
    QCOMPARE(parametersSpy.count(), 2);
    m_manager->SetActiveOperation(m_second.get());
    QCOMPARE(instrument->MeasurementParameters(), &m_second->measurement());
}

void tst_COperationsManager::activatesWithoutInstrument()
{
    m_manager->SetActiveOperation(m_first.get());
    QCOMPARE(m_fixture->instrument(0)->MeasurementParameters(), nullptr);
    QCOMPARE(m_manager->GetActiveOperation(), m_first.get());
}

void tst_COperationsManager::measureOperationKeepsItsParameters()
{
    m_fixture->connectInstrument(0);
    COperationMeasure& measure = *m_manager->OperationMeasure();
    m_manager->SetActiveOperation(&measure);
    measure.OperationParameters()->MeasurementParameters()->SetAveraging(77);
    measure.StartSession();
    m_fixture->instrument(0)->EmitBlock();
    QVERIFY(!measure.GetDataSetEmpty());
    m_manager->LeaveActiveOperation();
    QVERIFY(measure.GetDataSetEmpty());
    QVERIFY(!measure.SessionInProgress());
    QVERIFY(OperationFixture::readFile(OperationFixture::settingsFilePath())
                .contains("<Averaging>77</Averaging>"));
}

void tst_COperationsManager::fromMeterToMapping_data()
{
    QTest::addColumn<bool>("ok");
    QTest::newRow("ok") << true;
    QTest::newRow("cancel") << false;
}

void tst_COperationsManager::fromMeterToMapping()
{
    QFETCH(const bool, ok);
    m_fixture->connectInstrument(0);
    m_manager->SetActiveOperation(m_manager->OperationMeasure());
    m_manager->OperationMeasure()->RecordingManager()->SetHasUnsavedData(true);
    DialogDriver dialogs;
    dialogs.pressNext(ok ? QMessageBox::Ok : QMessageBox::Cancel);
    QCOMPARE(m_manager->ChangeOperationAllowed(m_manager->OperationMapping()), ok);
    QVERIFY(dialogs.isDone());
    QCOMPARE(m_manager->GetActiveOperation(), m_manager->OperationMeasure());
    QVERIFY(m_manager->OperationMeasure()->GetUnsavedData());
    if (!ok)
        return;
    m_manager->SetActiveOperation(m_manager->OperationMapping());
    QCOMPARE(m_fixture->instrument(0)->MeasurementParameters(),
             m_manager->OperationMapping()->OperationParameters()->MeasurementParameters());
    QVERIFY(!m_manager->OperationMeasure()->GetUnsavedData());
}

QTEST_MAIN(tst_COperationsManager)

#include "tst_COperationsManager.moc"
