// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMeterOperationViewModel.h"
#include "MainViewModelFixture.h"
#include "SettingsDirectoryPath.h"

#include <QDir>
#include <QFileDialog>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

namespace {

/// Takes the instrument away while the first dialog is open, and goes on one round of the dialog's event loop
/// later. Questions are answered with OK, file dialogs are cancelled.
class LossInADialog : public QObject
{
public:
    explicit LossInADialog(const std::function<void()>& lose) : m_lose(lose)
    {
        m_timer.callOnTimeout(this, [this] { look(); });
        m_timer.start(1);
    }

    int dialogs = 0;

private:
    void look()
    {
        QWidget* dialog = QApplication::activeModalWidget();
        if (!dialog)
            return;
        if (m_lose) {
            std::exchange(m_lose, nullptr)();
            return;
        }
        ++dialogs;
        if (auto* box = qobject_cast<QMessageBox*>(dialog))
            box->button(QMessageBox::Ok)->click();
        else
            static_cast<QFileDialog*>(dialog)->reject();
    }

    std::function<void()> m_lose;
    QTimer m_timer;
};

void runEventLoopOnce()
{
    QEventLoop loop;
    QTimer::singleShot(0, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

class tst_CMainViewModelInstrument : public QObject, private MainViewModelFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(QDir().mkpath(SettingsDirectoryPath)); }
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void instrumentTexts();
    void statusFollows();
    void otherInstrument();
    void lostOnTheConnectionPage();
    void lostOnTheMeterPage();
    void lostWithUnsavedDataAndCancel();
    void lostWithUnsavedDataAndOk();
    void lostWhileAQuestionIsOpen();
    void foundMissingByTheConnectionPage();
    void currentInstrumentIsNullOnceGone();
    void lostInADialogOfAPageCommand_data();
    void lostInADialogOfAPageCommand();
    void lostInAnInstrumentCall_data();
    void lostInAnInstrumentCall();
    void lostInNestedCommands();

private:
    CMeterOperationViewModel* meter() const
    {
        return qobject_cast<CMeterOperationViewModel*>(m_main->pActivePageViewModel());
    }

    void loseInstrument()
    {
        m_provider->instruments.clear();
        emit m_provider->InstrumentListUpdated();
    }

    /// Stored data are on screen.
    void storeData()
    {
        auto block = QSharedPointer<CMeasureBlock>::create();
        block->Results.append(QSharedPointer<CFieldIntensityResult>::create());
        operation()->RecordingManager()->AddMeasureBlock(block);
        operation()->RecordingManager()->StopRecord();
    }
};

void tst_CMainViewModelInstrument::instrumentTexts()
{
    QSignalSpy model(m_main.get(), &CMainViewModel::InstrumentModelChanged);
    QSignalSpy serialNumber(m_main.get(), &CMainViewModel::InstrumentSerialNumberChanged);
    QSignalSpy status(m_main.get(), &CMainViewModel::InstrumentStatusChanged);
    QSignalSpy current(m_main.get(), &CMainViewModel::CurrentInstrumentChanged);
    const QSharedPointer<FakeInstrument> instrument = connectInstrument("1");
    QCOMPARE(m_main->InstrumentModel(), QStringLiteral("Model 1"));
    QCOMPARE(m_main->InstrumentSerialNumber(), QStringLiteral("1"));
    QCOMPARE(m_main->InstrumentStatus(), QStringLiteral("Ready"));
    QCOMPARE(m_main->CurrentInstrument(), instrument.data());
    QCOMPARE(model.count(), 1);
    QCOMPARE(serialNumber.count(), 1);
    QCOMPARE(status.count(), 1);
    QCOMPARE(current.count(), 1);

    m_main->displayInstrumentSelectionPage();
    m_supervisor->ClearActiveInstrument();
    QCOMPARE(m_main->InstrumentModel(), QStringLiteral("--"));
    QCOMPARE(m_main->InstrumentSerialNumber(), QStringLiteral("--"));
    QCOMPARE(m_main->InstrumentStatus(), QStringLiteral("--"));
    QCOMPARE(m_main->CurrentInstrument(), instrument.data());
    QCOMPARE(current.count(), 1);

    m_supervisor->SetActiveInstrument(instrument);
    QCOMPARE(m_main->InstrumentModel(), QStringLiteral("Model 1"));
    QCOMPARE(current.count(), 1);
}

void tst_CMainViewModelInstrument::statusFollows()
{
    m_main->displayInstrumentSelectionPage();
    const QSharedPointer<FakeInstrument> instrument = connectInstrument("1");
    QSignalSpy status(m_main.get(), &CMainViewModel::InstrumentStatusChanged);
    instrument->SetStatusString(QStringLiteral("Busy"));
    QCOMPARE(m_main->InstrumentStatus(), QStringLiteral("Busy"));
    QCOMPARE(status.count(), 1);
    m_main->OnInstrumentStatusChanged(QStringLiteral("Busy"));
    QCOMPARE(status.count(), 1);

    m_supervisor->ClearActiveInstrument();
    instrument->SetStatusString(QStringLiteral("Idle"));
    QCOMPARE(m_main->InstrumentStatus(), QStringLiteral("--"));
}

void tst_CMainViewModelInstrument::otherInstrument()
{
    m_main->displayInstrumentSelectionPage();
    const QSharedPointer<FakeInstrument> first = connectInstrument("1");
    const QSharedPointer<FakeInstrument> second = connectInstrument("2");
    QCOMPARE(m_main->CurrentInstrument(), second.data());
    QCOMPARE(m_main->InstrumentSerialNumber(), QStringLiteral("2"));
    first->SetStatusString(QStringLiteral("of the first"));
    QCOMPARE(m_main->InstrumentStatus(), QStringLiteral("Ready"));
    second->SetStatusString(QStringLiteral("of the second"));
    QCOMPARE(m_main->InstrumentStatus(), QStringLiteral("of the second"));
}

void tst_CMainViewModelInstrument::lostOnTheConnectionPage()
{
    m_main->displayInstrumentSelectionPage();
    connectInstrument("1");
    const QPointer<CPageViewModel> page = m_main->pActivePageViewModel();
    m_provider->instruments.clear();
    emit m_provider->InstrumentListUpdated();
    QCOMPARE(m_main->InstrumentModel(), QStringLiteral("--"));
    deleteDeferred();
    QVERIFY(page);
    QCOMPARE(m_main->pActivePageViewModel(), page.data());
}

void tst_CMainViewModelInstrument::lostOnTheMeterPage()
{
    connectInstrument("1");
    m_main->displayMeterPage();
    BoxAnswers answers;
    m_provider->instruments.clear();
    emit m_provider->InstrumentListUpdated();
    QVERIFY(answers.texts.isEmpty());
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("Connection"));
    QCOMPARE(m_main->InstrumentStatus(), QStringLiteral("--"));
    QVERIFY(!m_operations->GetActiveOperation());
}

void tst_CMainViewModelInstrument::lostWithUnsavedDataAndCancel()
{
    connectInstrument("1");
    m_main->displayMeterPage();
    operation()->RecordingManager()->SetHasUnsavedData(true);
    BoxAnswers answers({QMessageBox::Cancel});
    m_provider->instruments.clear();
    emit m_provider->InstrumentListUpdated();
    QCOMPARE(answers.texts, QStringList{QLatin1String(kQuitQuestion)});
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("MeterOperation"));
    QCOMPARE(m_main->InstrumentModel(), QStringLiteral("--"));
    QCOMPARE(m_main->InstrumentSerialNumber(), QStringLiteral("--"));
    QCOMPARE(m_main->InstrumentStatus(), QStringLiteral("--"));
    QVERIFY(operation()->GetUnsavedData());
    operation()->RecordingManager()->SetHasUnsavedData(false);
}

void tst_CMainViewModelInstrument::lostWithUnsavedDataAndOk()
{
    connectInstrument("1");
    m_main->displayMeterPage();
    operation()->StartSession();
    operation()->RecordingManager()->SetHasUnsavedData(true);
    BoxAnswers answers({QMessageBox::Ok});
    m_provider->instruments.clear();
    emit m_provider->InstrumentListUpdated();
    QCOMPARE(answers.texts, QStringList{QLatin1String(kQuitQuestion)});
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("Connection"));
    QVERIFY(!operation()->SessionInProgress());
}

void tst_CMainViewModelInstrument::lostWhileAQuestionIsOpen()
{
    connectInstrument("1");
    m_main->displayMeterPage();
    operation()->StartSession();
    // The second question opens over the first one; both are answered with OK.
    BoxAnswers answers({QMessageBox::Ok, QMessageBox::Ok});
    answers.whileOpen = [this] {
        m_provider->instruments.clear();
        emit m_provider->InstrumentListUpdated();
    };
    m_main->displayInstrumentSelectionPage();
    QCOMPARE(answers.texts, QStringList() << QLatin1String(kQuitQuestion) << QLatin1String(kQuitQuestion));
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("Connection"));
    QCOMPARE(contextObject("ActivePageViewModel"), m_main->pActivePageViewModel());
    QVERIFY(!m_main->LoaderSourceChanging());
    QVERIFY(!m_operations->GetActiveOperation());
}

void tst_CMainViewModelInstrument::foundMissingByTheConnectionPage()
{
    connectInstrument("1");
    m_main->displayMeterPage();
    // Dropped without a word: the refresh at the visit of the selection page finds out.
    m_provider->instruments.clear();
    QSignalSpy changing(m_main.get(), &CMainViewModel::LoaderSourceChangingChanged);
    m_main->displayInstrumentSelectionPage();
    QCOMPARE(changing.count(), 2);
    QVERIFY(!m_main->LoaderSourceChanging());
    QVERIFY(!m_supervisor->HasActiveInstrument());
    QCOMPARE(m_main->InstrumentModel(), QStringLiteral("--"));
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("Connection"));
    QCOMPARE(contextObject("ActivePageViewModel"), m_main->pActivePageViewModel());
    QCOMPARE(contextObject("ConnectionPageViewModel"), m_main->pActivePageViewModel());
}

void tst_CMainViewModelInstrument::currentInstrumentIsNullOnceGone()
{
    m_main->displayInstrumentSelectionPage();
    connectInstrument("1");
    QVERIFY(m_main->CurrentInstrument());
    // The last owner lets go while the instrument is active.
    m_provider->instruments.clear();
    m_supervisor->RefreshAvailableInstruments();
    QVERIFY(!m_main->CurrentInstrument());
    QVERIFY(m_main->property("CurrentInstrument").value<CInstrument*>() == nullptr);
    m_main->OnHasActiveInstrumentChanged();
    QCOMPARE(m_main->InstrumentModel(), QStringLiteral("--"));
}

void tst_CMainViewModelInstrument::lostInADialogOfAPageCommand_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<bool>("unsaved");
    for (const char* command : {"resume", "end", "load", "save", "loadParameters", "saveParameters"})
        QTest::newRow(command) << QByteArray(command) << false;
    QTest::newRow("load, unsaved data") << QByteArray("load") << true;
}

void tst_CMainViewModelInstrument::lostInADialogOfAPageCommand()
{
    QFETCH(QByteArray, command);
    QFETCH(bool, unsaved);
    connectInstrument("1");
    m_main->displayMeterPage();
    storeData();
    operation()->RecordingManager()->SetHasUnsavedData(unsaved);
    const QPointer<CMeterOperationViewModel> page = meter();
    LossInADialog loss([this] { loseInstrument(); });
    QVERIFY(QMetaObject::invokeMethod(page, command.constData(), Qt::DirectConnection));

    // The page outlived its command, and is still the one on screen when its control gets the control back.
    QVERIFY(page);
    QVERIFY(loss.dialogs > 0);
    QCOMPARE(m_main->pActivePageViewModel(), page.data());
    QCOMPARE(m_main->InstrumentModel(), QStringLiteral("--"));
    QTRY_COMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("Connection"));
    QTRY_VERIFY(!page);
    QVERIFY(!m_operations->GetActiveOperation());
}

void tst_CMainViewModelInstrument::lostInAnInstrumentCall_data()
{
    QTest::addColumn<QByteArray>("command");
    for (const char* command : {"resume", "hold", "stop", "zeroOffset", "restoreZeroOffsetToFactory"})
        QTest::newRow(command) << QByteArray(command);
}

void tst_CMainViewModelInstrument::lostInAnInstrumentCall()
{
    QFETCH(QByteArray, command);
    const QSharedPointer<FakeInstrument> instrument = connectInstrument("1");
    m_main->displayMeterPage();
    if (command != "resume")
        meter()->resume();
    if (command == "stop")
        meter()->record();
    const QPointer<CMeterOperationViewModel> page = meter();
    bool outlivedTheLoss = false;
    instrument->whileCalled = [&] {
        loseInstrument();
        runEventLoopOnce();
        outlivedTheLoss = page;
    };
    BoxAnswers answers({QMessageBox::Ok, QMessageBox::Ok});
    QVERIFY(QMetaObject::invokeMethod(page, command.constData(), Qt::DirectConnection));
    QVERIFY(outlivedTheLoss);
    QCOMPARE(m_main->pActivePageViewModel(), page.data());
    QTRY_COMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("Connection"));
    QTRY_VERIFY(!page);
}

void tst_CMainViewModelInstrument::lostInNestedCommands()
{
    const QSharedPointer<FakeInstrument> instrument = connectInstrument("1");
    m_main->displayMeterPage();
    const QPointer<CMeterOperationViewModel> page = meter();
    QSignalSpy ended(page, &CPageViewModel::CommandEnded);
    bool outlivedTheInnerCommand = false;
    instrument->whileCalled = [&] {
        instrument->whileCalled = [this] { loseInstrument(); };
        page->restoreZeroOffsetToFactory();
        runEventLoopOnce();
        outlivedTheInnerCommand = page && m_main->pActivePageViewModel() == page;
    };
    page->zeroOffset();
    QVERIFY(outlivedTheInnerCommand);
    QCOMPARE(ended.count(), 1);
    QTRY_COMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("Connection"));
}

QTEST_MAIN(tst_CMainViewModelInstrument)
#include "tst_CMainViewModelInstrument.moc"
