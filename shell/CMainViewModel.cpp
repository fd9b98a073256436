// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMainViewModel.h"

#include "CAcAnalysisOperationViewModel.h"
#include "CConnectionPageViewModel.h"
#include "CInstrumentSupervisor.h"
#include "CMapperPlugin.h"
#include "CMappingOperationViewModel.h"
#include "CMeterOperationViewModel.h"
#include "COperationParameters.h"
#include "COperationsManager.h"
#include "CSettings.h"
#include "CSettingsPageViewModel.h"
#include "CSpectrumOperationViewModel.h"
#include "CTriggerPlugin.h"
#include "CUtils.h"
#include "Property.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDesktopServices>
#include <QQmlContext>
#include <QUrl>

namespace {

constexpr char kConnectionName[] = "Connection";
constexpr char kSettingsName[] = "Settings";

QString noInstrument()
{
    return QStringLiteral("--");
}

} // namespace

CMainViewModel::CMainViewModel(CSettings* settings, QQmlContext* rootContext,
                               COperationsManager* operationsManager, CInstrumentSupervisor* supervisor,
                               CUserNotifier* notifier, QObject* parent)
    : QObject(parent), m_settings(settings), m_rootContext(rootContext),
      m_operationsManager(operationsManager), m_supervisor(supervisor), m_notifier(notifier),
      m_logMessageList(*settings)
{
    m_rootContext->setContextProperty(QStringLiteral("MainViewModel"), this);
    connect(m_supervisor, &CInstrumentSupervisor::HasActiveInstrumentChanged, this,
            &CMainViewModel::OnHasActiveInstrumentChanged);
    SetInstrumentTexts(noInstrument(), noInstrument(), noInstrument());
    m_logMessageProxy.setSourceModel(&m_logMessageList);
}

CMainViewModel::~CMainViewModel()
{
    delete m_page;
}

void CMainViewModel::Terminate()
{
    m_operationsManager->LeaveActiveOperation();
}

void CMainViewModel::displayMeterPage()
{
    MoveToMeasurePage<CMeterOperationViewModel>(QStringLiteral("Pages/MeterPage.qml"));
}

void CMainViewModel::displaySpectrumPage()
{
    MoveToMeasurePage<CSpectrumOperationViewModel>(QStringLiteral("Pages/SpectrumPage.qml"));
}

void CMainViewModel::displayAcAnalysisPage()
{
    MoveToMeasurePage<CAcAnalysisOperationViewModel>(QStringLiteral("Pages/AcAnalysisPage.qml"));
}

void CMainViewModel::displayMappingPage()
{
    COperationMapping* operation = m_operationsManager->OperationMapping();
    MoveToOperationPage({QStringLiteral("Pages/MappingPage.qml"), operation, [this, operation] {
                             return new CMappingOperationViewModel(operation, m_settings, m_notifier);
                         }});
}

template <class ViewModel> void CMainViewModel::MoveToMeasurePage(const QString& loaderSource)
{
    COperationMeasure* operation = m_operationsManager->OperationMeasure();
    MoveToOperationPage({loaderSource, operation,
                         [this, operation] { return new ViewModel(operation, m_settings, m_notifier); }});
}

void CMainViewModel::MoveToOperationPage(const OperationPage& page)
{
    if ((HasPage(kConnectionName) || HasPage(kSettingsName)) && !LeavingUnsavedParametersAllowed())
        return;
    if (!m_operationsManager->ChangeOperationAllowed(page.operation))
        return;

    SetLoaderSourceChanging(true);
    if (m_page)
        m_page->PageLeft();
    DiscardPage();
    m_operationsManager->SetActiveOperation(page.operation);
    // Each writing of a context property connects the context with the object anew.
    const QString activeOperation = QStringLiteral("ActiveOperation");
    if (m_rootContext->contextProperty(activeOperation).value<QObject*>() != page.operation)
        m_rootContext->setContextProperty(activeOperation, page.operation);
    m_page = page.createViewModel();
    m_page->PageEntered();
    m_rootContext->setContextProperty(QStringLiteral("ActivePageViewModel"), m_page);
    EndPageChange(page.loaderSource);
}

void CMainViewModel::displayInstrumentSelectionPage()
{
    // The instrument can vanish in the middle of a page change, for example when the connection page asks for
    // the instruments: that page change comes to its end first.
    if (m_loaderSourceChanging) {
        m_selectionPageIsDue = true;
        return;
    }
    if (HasPage(kConnectionName))
        return;
    if (HasPage(kSettingsName) && !LeavingUnsavedParametersAllowed())
        return;
    if (!m_operationsManager->ChangeOperationAllowed(nullptr))
        return;

    SetLoaderSourceChanging(true);
    // The operation takes its leave of a page that still listens.
    DiscardPage();
    m_operationsManager->LeaveActiveOperation();
    m_page = new CConnectionPageViewModel(m_supervisor);
    m_page->PageEntered();
    m_rootContext->setContextProperty(QStringLiteral("ActivePageViewModel"), m_page);
    m_rootContext->setContextProperty(QStringLiteral("ConnectionPageViewModel"), m_page);
    EndPageChange(QStringLiteral("Pages/InstrumentSelectionPage.qml"));
}

void CMainViewModel::displaySettingsPage()
{
    if (HasPage(kConnectionName) && !LeavingUnsavedParametersAllowed())
        return;
    if (!m_operationsManager->ChangeOperationAllowed(nullptr))
        return;

    SetLoaderSourceChanging(true);
    DiscardPage();
    m_operationsManager->LeaveActiveOperation();
    m_page = new CSettingsPageViewModel;
    m_page->PageEntered();
    m_rootContext->setContextProperty(QStringLiteral("ActivePageViewModel"), m_page);
    m_rootContext->setContextProperty(QStringLiteral("SettingsPageViewModel"), m_page);
    EndPageChange(QStringLiteral("Pages/SettingsPage.qml"));
}

bool CMainViewModel::LeavingUnsavedParametersAllowed() const
{
    return !m_page->HasUnsavedParameter() ||
           CUtils::AskConfirmation(tr("Are you sure you want to quit the current page ?"),
                                   tr("All unsaved settings will be lost"));
}

bool CMainViewModel::HasPage(const char* name) const
{
    return m_page && m_page->Name() == QLatin1String(name);
}

void CMainViewModel::DiscardPage()
{
    // Not at once: blocks on their way and the bindings of the old page may still reach it.
    if (m_page)
        m_page->deleteLater();
    m_page = nullptr;
}

void CMainViewModel::EndPageChange(const QString& loaderSource)
{
    storeAndEmitOnChange(this, m_loaderSource, loaderSource, &CMainViewModel::LoaderSourceChanged);
    SetLoaderSourceChanging(false);
    DisplayDueSelectionPage();
}

void CMainViewModel::DisplayDueSelectionPage()
{
    // The next command of the page can be running already; its end brings us here again.
    if (!m_selectionPageIsDue || (m_page && m_page->IsInCommand()))
        return;
    m_selectionPageIsDue = false;
    displayInstrumentSelectionPage();
}

void CMainViewModel::displayHelp()
{
    if (!m_page)
        return;

    const QUrl directory(CUtils::IsMac() ? QStringLiteral("../Resources/help") : QStringLiteral("help"));
    const QUrl page(directory.toString() + QLatin1Char('/') + m_page->GetHelpName() +
                    QStringLiteral(".html"));
    const QUrl url = QUrl::fromLocalFile(QCoreApplication::applicationFilePath()).resolved(page);
    qInfo().noquote() << "Opening contextual help :" << url.toString();
    if (!QDesktopServices::openUrl(url))
        CUtils::ShowError(tr("Could not open help"), tr("Could not find file : ") + url.toString());
}

bool CMainViewModel::exitApplicationAllowed()
{
    const bool allowed = m_operationsManager->ChangeOperationAllowed(nullptr);
    CMapperPlugin* mapper = m_operationsManager->OperationMapping()->MappingParameters()->SelectedMapper();
    if (allowed && mapper)
        mapper->Shutdown();
    CTriggerPlugin* trigger = m_operationsManager->OperationMeasure()
                                  ->OperationParameters()
                                  ->MeasurementParameters()
                                  ->TriggerPlugin();
    if (trigger)
        trigger->Shutdown();
    return allowed;
}

void CMainViewModel::ignoreSoftwareUpdate(QString version)
{
    m_settings->SetIgnoreSpecificVersion(version);
    m_settings->WriteToFile();
}

void CMainViewModel::OnHasActiveInstrumentChanged()
{
    if (!m_supervisor->HasActiveInstrument()) {
        SetInstrumentTexts(noInstrument(), noInstrument(), noInstrument());
        if (m_currentInstrument)
            disconnect(m_currentInstrument, &CInstrument::StatusStringChanged, this,
                       &CMainViewModel::OnInstrumentStatusChanged);
        if (m_page && m_page->IsInCommand()) {
            // A page change now would delete the view model, and the control that called it, under the
            // command. Queued, since the control's handler runs on when the command returns.
            m_selectionPageIsDue = true;
            connect(m_page, &CPageViewModel::CommandEnded, this, &CMainViewModel::DisplayDueSelectionPage,
                    static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::UniqueConnection));
            return;
        }
        displayInstrumentSelectionPage();
        return;
    }

    const QSharedPointer<CInstrument> instrument = m_supervisor->Instrument().toStrongRef();
    if (!instrument)
        return;
    if (m_currentInstrument != instrument.data()) {
        m_currentInstrument = instrument.data();
        emit CurrentInstrumentChanged(m_currentInstrument);
    }
    SetInstrumentTexts(instrument->Model(), instrument->SerialNumber(), instrument->StatusString());
    connect(instrument.data(), &CInstrument::StatusStringChanged, this,
            &CMainViewModel::OnInstrumentStatusChanged, Qt::UniqueConnection);
}

void CMainViewModel::OnInstrumentStatusChanged(QString status)
{
    storeAndEmitOnChange(this, m_instrumentStatus, status, &CMainViewModel::InstrumentStatusChanged);
}

void CMainViewModel::SetInstrumentTexts(const QString& model, const QString& serialNumber,
                                        const QString& status)
{
    storeAndEmitOnChange(this, m_instrumentModel, model, &CMainViewModel::InstrumentModelChanged);
    storeAndEmitOnChange(this, m_instrumentSerialNumber, serialNumber,
                         &CMainViewModel::InstrumentSerialNumberChanged);
    storeAndEmitOnChange(this, m_instrumentStatus, status, &CMainViewModel::InstrumentStatusChanged);
}

void CMainViewModel::SetLoaderSourceChanging(bool value)
{
    storeAndEmit(this, m_loaderSourceChanging, value, &CMainViewModel::LoaderSourceChangingChanged);
}

void CMainViewModel::SetMainWindowHeight(double value)
{
    storeAndEmitOnChange(this, m_mainWindowHeight, value, &CMainViewModel::MainWindowHeightChanged);
}

void CMainViewModel::SetSmallWindowSize(bool value)
{
    storeAndEmitOnChange(this, m_smallWindowSize, value, &CMainViewModel::SmallWindowSizeChanged);
}

void CMainViewModel::SetPageMenuExpanded(bool value)
{
    storeAndEmitOnChange(this, m_pageMenuExpanded, value, &CMainViewModel::PageMenuExpandedChanged);
}

void CMainViewModel::SetParameterMenuExpanded(bool value)
{
    storeAndEmitOnChange(this, m_parameterMenuExpanded, value, &CMainViewModel::ParameterMenuExpandedChanged);
}

void CMainViewModel::SetLastLogMessages(const QString& value)
{
    storeAndEmitOnChange(this, m_lastLogMessages, value, &CMainViewModel::LastLogMessagesChanged);
}
