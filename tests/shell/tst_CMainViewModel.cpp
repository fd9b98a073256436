// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAcAnalysisOperationViewModel.h"
#include "CConnectionPageViewModel.h"
#include "CMappingOperationViewModel.h"
#include "CMeterOperationViewModel.h"
#include "CSpectrumOperationViewModel.h"
#include "MainViewModelFixture.h"
#include "MetaObjectTable.h"
#include "SettingsDirectoryPath.h"

#include <QDesktopServices>
#include <QDir>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace MetaObjectTable;

namespace {

const char kPageQuestion[] =
    "Are you sure you want to quit the current page ?|All unsaved settings will be lost";

} // namespace

class tst_CMainViewModel : public QObject, private MainViewModelFixture
{
    Q_OBJECT

public slots:
    void takeUrl(const QUrl& url) { m_openedUrls << url; }

private slots:
    void initTestCase() { QVERIFY(QDir().mkpath(SettingsDirectoryPath)); }
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void surface();
    void initialValues();
    void settersEmitOnChange();

    void meterPage();
    void pagesOfTheMeasureOperation();
    void mappingPageHasItsOwnOperation();
    void meterPageChangesInOrder();
    void repeatedMeterPageMakesANewViewModel();
    void meterToMeterAsksNothing();
    void selectionPage();
    void selectionPageChangesInOrder();
    void selectionPageTwiceStays();
    void selectionPageEndsTheOperation();
    void oldViewModelLivesUntilTheEventLoop();
    void unsavedConnectionChoices();
    void unsavedData();
    void sessionInProgress();

    void helpWithoutPage();
    void helpOfThePage();
    void helpThatCannotBeOpened();

    void exitWithoutUnsavedWork();
    void exitAsksAndShutsPluginsDown_data();
    void exitAsksAndShutsPluginsDown();
    void exitDoesNotAskAboutParameters();
    void terminate();
    void endsWithItsPage();

private:
    QList<QUrl> m_openedUrls;
};

void tst_CMainViewModel::surface()
{
    const QMetaObject& meta = CMainViewModel::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(meta, {{"LoaderSource", "QString", ReadOnly},
                                                  {"LoaderSourceChanging", "bool", ReadOnly},
                                                  {"pActivePageViewModel", "CPageViewModel*", ReadOnly},
                                                  {"MainWindowHeight", "double", ReadWrite},
                                                  {"SmallWindowSize", "bool", ReadWrite},
                                                  {"PageMenuExpanded", "bool", ReadWrite},
                                                  {"ParameterMenuExpanded", "bool", ReadWrite},
                                                  {"InstrumentModel", "QString", ReadOnly},
                                                  {"InstrumentSerialNumber", "QString", ReadOnly},
                                                  {"InstrumentStatus", "QString", ReadOnly},
                                                  {"CurrentInstrument", "CInstrument*", ReadOnly},
                                                  {"LastLogMessages", "QString", ReadWrite},
                                                  {"LogMessageList", "CLogMessageList*", Constant},
                                                  {"LogMessageProxy", "CLogFilterProxyModel*", Constant}}));
    VERIFY_NO_DIFFERENCE(
        compareMethods(meta, QMetaMethod::Slot,
                       {"displayMeterPage()", "displaySpectrumPage()", "displayAcAnalysisPage()",
                        "displayMappingPage()", "displayInstrumentSelectionPage()", "displaySettingsPage()",
                        "displayHelp()", "exitApplicationAllowed()", "OnHasActiveInstrumentChanged()",
                        "OnInstrumentStatusChanged(QString)"}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Method, {"ignoreSoftwareUpdate(QString)"}));
}

void tst_CMainViewModel::initialValues()
{
    QCOMPARE(contextObject("MainViewModel"), m_main.get());
    QCOMPARE(m_main->LoaderSource(), QString());
    QVERIFY(!m_main->LoaderSourceChanging());
    QVERIFY(!m_main->pActivePageViewModel());
    QCOMPARE(m_main->MainWindowHeight(), 0.0);
    QVERIFY(!m_main->SmallWindowSize());
    QVERIFY(!m_main->PageMenuExpanded());
    QVERIFY(!m_main->ParameterMenuExpanded());
    QCOMPARE(m_main->InstrumentModel(), QStringLiteral("--"));
    QCOMPARE(m_main->InstrumentSerialNumber(), QStringLiteral("--"));
    QCOMPARE(m_main->InstrumentStatus(), QStringLiteral("--"));
    QVERIFY(!m_main->CurrentInstrument());
    QCOMPARE(m_main->LastLogMessages(), QString());
    QVERIFY(m_main->LogMessageList());
    QCOMPARE(m_main->LogMessageProxy()->sourceModel(), m_main->LogMessageList());
    for (const char* name : {"ActiveOperation", "ActivePageViewModel", "ConnectionPageViewModel"})
        QVERIFY(!m_engine->rootContext()->contextProperty(QLatin1String(name)).isValid());
}

void tst_CMainViewModel::settersEmitOnChange()
{
    QSignalSpy height(m_main.get(), &CMainViewModel::MainWindowHeightChanged);
    QSignalSpy small(m_main.get(), &CMainViewModel::SmallWindowSizeChanged);
    QSignalSpy pageMenu(m_main.get(), &CMainViewModel::PageMenuExpandedChanged);
    QSignalSpy parameterMenu(m_main.get(), &CMainViewModel::ParameterMenuExpandedChanged);
    QSignalSpy messages(m_main.get(), &CMainViewModel::LastLogMessagesChanged);
    for (int i = 0; i < 2; ++i) {
        m_main->SetMainWindowHeight(768.5);
        m_main->SetSmallWindowSize(true);
        m_main->SetPageMenuExpanded(true);
        m_main->SetParameterMenuExpanded(true);
        m_main->SetLastLogMessages(QStringLiteral("text"));
    }
    QCOMPARE(height.count(), 1);
    QCOMPARE(height.at(0).at(0).toDouble(), 768.5);
    QCOMPARE(small.count(), 1);
    QCOMPARE(small.at(0).at(0).toBool(), true);
    QCOMPARE(pageMenu.count(), 1);
    QCOMPARE(parameterMenu.count(), 1);
    QCOMPARE(messages.count(), 1);
    QCOMPARE(messages.at(0).at(0).toString(), QStringLiteral("text"));
}

void tst_CMainViewModel::meterPage()
{
    BoxAnswers answers;
    m_main->displayMeterPage();
    QCOMPARE(m_main->LoaderSource(), QStringLiteral("Pages/MeterPage.qml"));
    QVERIFY(!m_main->LoaderSourceChanging());
    QVERIFY(qobject_cast<CMeterOperationViewModel*>(m_main->pActivePageViewModel()));
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("MeterOperation"));
    QVERIFY(!m_main->pActivePageViewModel()->parent());
    QCOMPARE(contextObject("ActivePageViewModel"), m_main->pActivePageViewModel());
    QCOMPARE(contextObject("ActiveOperation"), operation());
    QCOMPARE(m_operations->GetActiveOperation(), operation());
    QVERIFY(answers.texts.isEmpty());
}

void tst_CMainViewModel::pagesOfTheMeasureOperation()
{
    connectInstrument("1");
    BoxAnswers answers;
    m_main->displayMeterPage();
    const QPointer<CPageViewModel> meter = m_main->pActivePageViewModel();
    operation()->StartSession();
    // A session goes on from page to page, without a question.
    m_main->displaySpectrumPage();
    QCOMPARE(m_main->LoaderSource(), QStringLiteral("Pages/SpectrumPage.qml"));
    QVERIFY(qobject_cast<CSpectrumOperationViewModel*>(m_main->pActivePageViewModel()));
    QCOMPARE(contextObject("ActivePageViewModel"), m_main->pActivePageViewModel());
    m_main->displayAcAnalysisPage();
    QCOMPARE(m_main->LoaderSource(), QStringLiteral("Pages/AcAnalysisPage.qml"));
    QVERIFY(qobject_cast<CAcAnalysisOperationViewModel*>(m_main->pActivePageViewModel()));
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("AcAnalysisOperation"));
    QCOMPARE(contextObject("ActiveOperation"), operation());
    QVERIFY(operation()->SessionInProgress());
    QVERIFY(answers.texts.isEmpty());
    deleteDeferred();
    QVERIFY(!meter);
}

void tst_CMainViewModel::mappingPageHasItsOwnOperation()
{
    connectInstrument("1");
    BoxAnswers answers;
    m_main->displayMeterPage();
    m_main->displayMappingPage();
    QCOMPARE(m_main->LoaderSource(), QStringLiteral("Pages/MappingPage.qml"));
    QVERIFY(qobject_cast<CMappingOperationViewModel*>(m_main->pActivePageViewModel()));
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("MappingOperation"));
    QCOMPARE(contextObject("ActivePageViewModel"), m_main->pActivePageViewModel());
    QCOMPARE(contextObject("ActiveOperation"), m_operations->OperationMapping());
    QVERIFY(m_operations->GetActiveOperation() == m_operations->OperationMapping());
    QVERIFY(answers.texts.isEmpty());
}

void tst_CMainViewModel::meterPageChangesInOrder()
{
    m_main->displayInstrumentSelectionPage();
    const QPointer<CPageViewModel> old = m_main->pActivePageViewModel();
    QStringList steps;
    connect(m_main.get(), &CMainViewModel::LoaderSourceChangingChanged, this, [&](bool changing) {
        QCOMPARE(m_main->LoaderSourceChanging(), changing);
        const bool oldIsPublished = contextObject("ActivePageViewModel") == old;
        const bool operationIsActive = m_operations->GetActiveOperation() == operation();
        steps << QStringLiteral("changing %1, %2 page, %3 operation")
                     .arg(QLatin1String(changing ? "true" : "false"),
                          QLatin1String(oldIsPublished ? "old" : "new"),
                          QLatin1String(operationIsActive ? "active" : "no"));
    });
    connect(m_main.get(), &CMainViewModel::LoaderSourceChanged, this, [&](const QString& source) {
        QVERIFY(m_main->LoaderSourceChanging());
        QCOMPARE(contextObject("ActivePageViewModel"), m_main->pActivePageViewModel());
        QCOMPARE(contextObject("ActiveOperation"), operation());
        steps << source;
    });
    QSignalSpy page(m_main.get(), &CMainViewModel::pActivePageViewModelChanged);
    m_main->displayMeterPage();
    QCOMPARE(steps, QStringList() << QStringLiteral("changing true, old page, no operation")
                                  << QStringLiteral("Pages/MeterPage.qml")
                                  << QStringLiteral("changing false, new page, active operation"));
    QCOMPARE(page.count(), 0);
}

void tst_CMainViewModel::repeatedMeterPageMakesANewViewModel()
{
    m_main->displayMeterPage();
    const QPointer<CPageViewModel> first = m_main->pActivePageViewModel();
    QSignalSpy source(m_main.get(), &CMainViewModel::LoaderSourceChanged);
    QSignalSpy changing(m_main.get(), &CMainViewModel::LoaderSourceChangingChanged);
    m_main->displayMeterPage();
    QVERIFY(m_main->pActivePageViewModel() != first);
    QCOMPARE(contextObject("ActivePageViewModel"), m_main->pActivePageViewModel());
    QCOMPARE(source.count(), 0);
    QCOMPARE(changing.count(), 2);
    deleteDeferred();
    QVERIFY(!first);
}

void tst_CMainViewModel::meterToMeterAsksNothing()
{
    connectInstrument("1");
    BoxAnswers answers;
    m_main->displayMeterPage();
    operation()->StartSession();
    operation()->RecordingManager()->SetHasUnsavedData(true);
    m_main->displayMeterPage();
    QVERIFY(answers.texts.isEmpty());
    QVERIFY(operation()->SessionInProgress());
    QVERIFY(operation()->GetUnsavedData());
    operation()->RecordingManager()->SetHasUnsavedData(false);
}

void tst_CMainViewModel::selectionPage()
{
    m_main->displayInstrumentSelectionPage();
    QCOMPARE(m_main->LoaderSource(), QStringLiteral("Pages/InstrumentSelectionPage.qml"));
    QVERIFY(!m_main->LoaderSourceChanging());
    auto* page = qobject_cast<CConnectionPageViewModel*>(m_main->pActivePageViewModel());
    QVERIFY(page);
    QVERIFY(!page->parent());
    QCOMPARE(page->InstrumentSupervisor(), m_supervisor.get());
    QCOMPARE(contextObject("ActivePageViewModel"), page);
    QCOMPARE(contextObject("ConnectionPageViewModel"), page);
    QVERIFY(!m_engine->rootContext()->contextProperty(QStringLiteral("ActiveOperation")).isValid());
}

void tst_CMainViewModel::selectionPageChangesInOrder()
{
    m_main->displayMeterPage();
    const CPageViewModel* old = m_main->pActivePageViewModel();
    QStringList steps;
    connect(m_main.get(), &CMainViewModel::LoaderSourceChangingChanged, this, [&](bool changing) {
        const bool oldIsPublished = contextObject("ActivePageViewModel") == old;
        steps << QStringLiteral("changing %1, %2 page, %3 operation")
                     .arg(QLatin1String(changing ? "true" : "false"),
                          QLatin1String(oldIsPublished ? "old" : "new"),
                          QLatin1String(m_operations->GetActiveOperation() ? "active" : "no"));
    });
    connect(m_main.get(), &CMainViewModel::LoaderSourceChanged, this, [&](const QString& source) {
        QVERIFY(m_main->LoaderSourceChanging());
        QCOMPARE(contextObject("ActivePageViewModel"), m_main->pActivePageViewModel());
        QCOMPARE(contextObject("ConnectionPageViewModel"), m_main->pActivePageViewModel());
        steps << source;
    });
    m_main->displayInstrumentSelectionPage();
    QCOMPARE(steps, QStringList() << QStringLiteral("changing true, old page, active operation")
                                  << QStringLiteral("Pages/InstrumentSelectionPage.qml")
                                  << QStringLiteral("changing false, new page, no operation"));
}

void tst_CMainViewModel::selectionPageTwiceStays()
{
    m_main->displayInstrumentSelectionPage();
    const CPageViewModel* page = m_main->pActivePageViewModel();
    QSignalSpy changing(m_main.get(), &CMainViewModel::LoaderSourceChangingChanged);
    static_cast<CConnectionPageViewModel*>(m_main->pActivePageViewModel())->SetSelectedBaudrateIndex(5);
    BoxAnswers answers;
    m_main->displayInstrumentSelectionPage();
    QCOMPARE(m_main->pActivePageViewModel(), page);
    QCOMPARE(changing.count(), 0);
    QVERIFY(answers.texts.isEmpty());
}

void tst_CMainViewModel::selectionPageEndsTheOperation()
{
    m_main->displayMeterPage();
    m_main->displayInstrumentSelectionPage();
    QVERIFY(!m_operations->GetActiveOperation());
    // The last value stays published.
    QCOMPARE(contextObject("ActiveOperation"), operation());
}

void tst_CMainViewModel::oldViewModelLivesUntilTheEventLoop()
{
    m_main->displayMeterPage();
    const QPointer<CPageViewModel> meter = m_main->pActivePageViewModel();
    m_main->displayInstrumentSelectionPage();
    const QPointer<CPageViewModel> selection = m_main->pActivePageViewModel();
    QVERIFY(meter);
    m_main->displayMeterPage();
    QVERIFY(selection);
    deleteDeferred();
    QVERIFY(!meter);
    QVERIFY(!selection);
    QVERIFY(m_main->pActivePageViewModel());
}

void tst_CMainViewModel::unsavedConnectionChoices()
{
    m_main->displayInstrumentSelectionPage();
    auto* page = static_cast<CConnectionPageViewModel*>(m_main->pActivePageViewModel());
    page->SetSelectedBaudrateIndex(5);
    QVERIFY(page->HasUnsavedParameter());

    BoxAnswers answers({QMessageBox::Cancel, QMessageBox::Ok});
    QSignalSpy changing(m_main.get(), &CMainViewModel::LoaderSourceChangingChanged);
    m_main->displayMeterPage();
    QCOMPARE(answers.texts, QStringList{QLatin1String(kPageQuestion)});
    QCOMPARE(m_main->pActivePageViewModel(), page);
    QCOMPARE(changing.count(), 0);
    QVERIFY(!m_operations->GetActiveOperation());

    m_main->displayMeterPage();
    QCOMPARE(answers.texts.size(), 2);
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("MeterOperation"));
}

void tst_CMainViewModel::unsavedData()
{
    m_main->displayMeterPage();
    const CPageViewModel* page = m_main->pActivePageViewModel();
    operation()->RecordingManager()->SetHasUnsavedData(true);

    BoxAnswers answers({QMessageBox::Cancel, QMessageBox::Ok});
    QSignalSpy changing(m_main.get(), &CMainViewModel::LoaderSourceChangingChanged);
    m_main->displayInstrumentSelectionPage();
    QCOMPARE(answers.texts, QStringList{QLatin1String(kQuitQuestion)});
    QCOMPARE(m_main->pActivePageViewModel(), page);
    QCOMPARE(m_main->LoaderSource(), QStringLiteral("Pages/MeterPage.qml"));
    QCOMPARE(changing.count(), 0);
    QCOMPARE(m_operations->GetActiveOperation(), operation());
    QVERIFY(operation()->GetUnsavedData());

    m_main->displayInstrumentSelectionPage();
    QCOMPARE(answers.texts.size(), 2);
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("Connection"));
    QVERIFY(!operation()->GetUnsavedData());
}

void tst_CMainViewModel::sessionInProgress()
{
    const QSharedPointer<FakeInstrument> instrument = connectInstrument("1");
    m_main->displayMeterPage();
    operation()->StartSession();
    QVERIFY(instrument->IsRunning());
    BoxAnswers answers({QMessageBox::Cancel, QMessageBox::Ok});
    m_main->displayInstrumentSelectionPage();
    QCOMPARE(answers.texts, QStringList{QLatin1String(kQuitQuestion)});
    QVERIFY(operation()->SessionInProgress());
    m_main->displayInstrumentSelectionPage();
    QCOMPARE(m_main->pActivePageViewModel()->Name(), QStringLiteral("Connection"));
    QVERIFY(!operation()->SessionInProgress());
    QVERIFY(!instrument->IsRunning());
    QVERIFY(instrument->IsConnected());
}

void tst_CMainViewModel::helpWithoutPage()
{
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "takeUrl");
    BoxAnswers answers;
    m_openedUrls.clear();
    m_main->displayHelp();
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    QVERIFY(m_openedUrls.isEmpty());
    QVERIFY(answers.texts.isEmpty());
}

void tst_CMainViewModel::helpOfThePage()
{
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "takeUrl");
    m_openedUrls.clear();
    const QString folder = QLatin1String("file://") + QCoreApplication::applicationDirPath();
    m_main->displayInstrumentSelectionPage();
    QTest::ignoreMessage(QtInfoMsg, qPrintable(QStringLiteral("Opening contextual help : ") + folder +
                                               QLatin1String("/help/connection.html")));
    m_main->displayHelp();
    m_main->displayMeterPage();
    m_main->displayHelp();
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    QCOMPARE(m_openedUrls, QList<QUrl>() << QUrl(folder + QLatin1String("/help/connection.html"))
                                         << QUrl(folder + QLatin1String("/help/meter_component.html")));
}

void tst_CMainViewModel::helpThatCannotBeOpened()
{
    if (QGuiApplication::platformName() != QLatin1String("offscreen"))
        QSKIP("this platform opens a browser");
    m_main->displayInstrumentSelectionPage();
    BoxAnswers answers({QMessageBox::Ok});
    m_main->displayHelp();
    QCOMPARE(answers.texts,
             QStringList{QLatin1String("Could not open help|Could not find file : file://") +
                         QCoreApplication::applicationDirPath() + QLatin1String("/help/connection.html")});
}

void tst_CMainViewModel::exitWithoutUnsavedWork()
{
    BoxAnswers answers;
    QVERIFY(m_main->exitApplicationAllowed());
    m_main->displayMeterPage();
    QVERIFY(m_main->exitApplicationAllowed());
    QVERIFY(answers.texts.isEmpty());
    QCOMPARE(m_operations->GetActiveOperation(), operation());
}

void tst_CMainViewModel::exitAsksAndShutsPluginsDown_data()
{
    QTest::addColumn<bool>("session");
    QTest::addColumn<bool>("ok");
    QTest::newRow("unsaved data, cancel") << false << false;
    QTest::newRow("unsaved data, ok") << false << true;
    QTest::newRow("session, cancel") << true << false;
    QTest::newRow("session, ok") << true << true;
}

void tst_CMainViewModel::exitAsksAndShutsPluginsDown()
{
    QFETCH(bool, session);
    QFETCH(bool, ok);
    connectInstrument("1");
    m_main->displayMeterPage();
    FakeTrigger trigger;
    FakeMapper mapper;
    m_operations->OperationMapping()->MappingParameters()->SetSelectedMapper(&mapper);
    CMeasurementParameters* parameters = operation()->OperationParameters()->MeasurementParameters();
    parameters->SetTriggerPlugin(&trigger);
    if (session)
        operation()->StartSession();
    else
        operation()->RecordingManager()->SetHasUnsavedData(true);

    BoxAnswers answers({ok ? QMessageBox::Ok : QMessageBox::Cancel});
    QCOMPARE(m_main->exitApplicationAllowed(), ok);
    QCOMPARE(answers.texts, QStringList{QLatin1String(kQuitQuestion)});
    QCOMPARE(trigger.shutdowns, 1);
    // The mapper is told only when the exit takes place.
    QCOMPARE(mapper.shutdowns, ok ? 1 : 0);
    QCOMPARE(operation()->SessionInProgress(), session);
    parameters->SetTriggerPlugin(nullptr);
    operation()->RecordingManager()->SetHasUnsavedData(false);
}

void tst_CMainViewModel::exitDoesNotAskAboutParameters()
{
    m_main->displayInstrumentSelectionPage();
    static_cast<CConnectionPageViewModel*>(m_main->pActivePageViewModel())->SetSelectedBaudrateIndex(5);
    BoxAnswers answers;
    QVERIFY(m_main->exitApplicationAllowed());
    QVERIFY(answers.texts.isEmpty());
}

void tst_CMainViewModel::terminate()
{
    connectInstrument("1");
    m_main->displayMeterPage();
    operation()->StartSession();
    operation()->RecordingManager()->SetHasUnsavedData(true);
    BoxAnswers answers;
    m_main->Terminate();
    QVERIFY(answers.texts.isEmpty());
    QVERIFY(!m_operations->GetActiveOperation());
    QVERIFY(!operation()->SessionInProgress());
    m_main->Terminate();
}

void tst_CMainViewModel::endsWithItsPage()
{
    m_main->displayMeterPage();
    const QPointer<CPageViewModel> page = m_main->pActivePageViewModel();
    m_main->Terminate();
    m_main = std::make_unique<CMainViewModel>(m_settings.get(), m_engine->rootContext(), m_operations.get(),
                                              m_supervisor.get(), &m_notifier);
    QVERIFY(!page);
}

QTEST_MAIN(tst_CMainViewModel)
#include "tst_CMainViewModel.moc"
