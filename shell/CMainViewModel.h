// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CInstrument.h"
#include "CLogFilterProxyModel.h"
#include "CLogMessageList.h"
#include "CPageViewModel.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

class CInstrumentSupervisor;
class COperation;
class COperationsManager;
class CSettings;
class CUserNotifier;
class QQmlContext;

/// What the window frame binds to, and the one place that changes pages. A page is a QML file with a view
/// model made for the visit; the view model is published as "ActivePageViewModel" and deleted when the page
/// is left.
///
/// A page change runs to its end in one call, with LoaderSourceChanging true meanwhile: no binding of the old
/// page sees the new view model. Unsaved work is asked about first, and a cancelled question changes nothing.
/// When the instrument vanishes while a command of the page runs, the page changes once the command has
/// returned.
class CMainViewModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString LoaderSource READ LoaderSource NOTIFY LoaderSourceChanged)
    Q_PROPERTY(bool LoaderSourceChanging READ LoaderSourceChanging NOTIFY LoaderSourceChangingChanged)
    Q_PROPERTY(
        CPageViewModel* pActivePageViewModel READ pActivePageViewModel NOTIFY pActivePageViewModelChanged)
    Q_PROPERTY(double MainWindowHeight READ MainWindowHeight WRITE SetMainWindowHeight NOTIFY
                   MainWindowHeightChanged)
    Q_PROPERTY(
        bool SmallWindowSize READ SmallWindowSize WRITE SetSmallWindowSize NOTIFY SmallWindowSizeChanged)
    Q_PROPERTY(
        bool PageMenuExpanded READ PageMenuExpanded WRITE SetPageMenuExpanded NOTIFY PageMenuExpandedChanged)
    Q_PROPERTY(bool ParameterMenuExpanded READ ParameterMenuExpanded WRITE SetParameterMenuExpanded NOTIFY
                   ParameterMenuExpandedChanged)
    Q_PROPERTY(QString InstrumentModel READ InstrumentModel NOTIFY InstrumentModelChanged)
    Q_PROPERTY(
        QString InstrumentSerialNumber READ InstrumentSerialNumber NOTIFY InstrumentSerialNumberChanged)
    Q_PROPERTY(QString InstrumentStatus READ InstrumentStatus NOTIFY InstrumentStatusChanged)
    Q_PROPERTY(CInstrument* CurrentInstrument READ CurrentInstrument NOTIFY CurrentInstrumentChanged)
    Q_PROPERTY(
        QString LastLogMessages READ LastLogMessages WRITE SetLastLogMessages NOTIFY LastLogMessagesChanged)
    Q_PROPERTY(CLogMessageList* LogMessageList READ LogMessageList CONSTANT)
    Q_PROPERTY(CLogFilterProxyModel* LogMessageProxy READ LogMessageProxy CONSTANT)

public:
    /// The arguments must outlive the view model. Publishes itself as "MainViewModel" in `rootContext`.
    CMainViewModel(CSettings* settings, QQmlContext* rootContext, COperationsManager* operationsManager,
                   CInstrumentSupervisor* supervisor, CUserNotifier* notifier, QObject* parent = nullptr);
    ~CMainViewModel() override;

    /// Ends the active operation.
    void Terminate();
    /// Remembers in the settings file that this version is not to be announced again.
    Q_INVOKABLE void ignoreSoftwareUpdate(QString version);

    QString LoaderSource() const { return m_loaderSource; } ///< page file, relative to the main QML file
    bool LoaderSourceChanging() const { return m_loaderSourceChanging; } ///< true only inside a page change
    /// The page on screen; null before the first one. Its signal does not tell a page change.
    CPageViewModel* pActivePageViewModel() const { return m_page; }
    double MainWindowHeight() const { return m_mainWindowHeight; }
    bool SmallWindowSize() const { return m_smallWindowSize; }   ///< the window has the small layout
    bool PageMenuExpanded() const { return m_pageMenuExpanded; } ///< of the small layout
    bool ParameterMenuExpanded() const { return m_parameterMenuExpanded; }      ///< of the small layout
    QString InstrumentModel() const { return m_instrumentModel; }               ///< "--" without instrument
    QString InstrumentSerialNumber() const { return m_instrumentSerialNumber; } ///< "--" without instrument
    QString InstrumentStatus() const { return m_instrumentStatus; }             ///< "--" without instrument
    /// The last instrument that was active, also after it was disconnected; null once the object is gone.
    CInstrument* CurrentInstrument() const { return m_currentInstrument; }
    QString LastLogMessages() const { return m_lastLogMessages; } ///< line of the status bar
    CLogMessageList* LogMessageList() { return &m_logMessageList; }
    CLogFilterProxyModel* LogMessageProxy() { return &m_logMessageProxy; }

    void SetMainWindowHeight(double value);
    void SetSmallWindowSize(bool value);
    void SetPageMenuExpanded(bool value);
    void SetParameterMenuExpanded(bool value);
    void SetLastLogMessages(const QString& value);

public slots:
    void displayMeterPage();
    void displaySpectrumPage();
    void displayAcAnalysisPage();
    void displayMappingPage();
    void displayInstrumentSelectionPage();
    /// Made anew, without a question, when it is on screen already.
    void displaySettingsPage();
    /// Opens the help of the page on screen in the browser.
    void displayHelp();
    /// Whether the window may close; asks when a session runs or data are unsaved. The selected trigger
    /// plug-in is shut down whatever the answer.
    bool exitApplicationAllowed();
    void OnHasActiveInstrumentChanged();
    void OnInstrumentStatusChanged(QString status);

signals:
    void LoaderSourceChanged(const QString& value);
    void LoaderSourceChangingChanged(bool value);
    void pActivePageViewModelChanged(CPageViewModel* value);
    void MainWindowHeightChanged(double value);
    void SmallWindowSizeChanged(bool value);
    void PageMenuExpandedChanged(bool value);
    void ParameterMenuExpandedChanged(bool value);
    void InstrumentModelChanged(const QString& value);
    void InstrumentSerialNumberChanged(const QString& value);
    void InstrumentStatusChanged(const QString& value);
    void CurrentInstrumentChanged(CInstrument* value);
    void LastLogMessagesChanged(const QString& value);

private:
    /// A page that shows an operation.
    struct OperationPage
    {
        QString loaderSource;
        COperation* operation;
        std::function<CPageViewModel*()> createViewModel;
    };

    template <class ViewModel> void MoveToMeasurePage(const QString& loaderSource);
    void MoveToOperationPage(const OperationPage& page);
    bool LeavingUnsavedParametersAllowed() const;
    bool HasPage(const char* name) const;
    void DiscardPage();
    void DisplayDueSelectionPage();
    void EndPageChange(const QString& loaderSource);
    void SetLoaderSourceChanging(bool value);
    void SetInstrumentTexts(const QString& model, const QString& serialNumber, const QString& status);

    CSettings* m_settings;
    QQmlContext* m_rootContext;
    COperationsManager* m_operationsManager;
    CInstrumentSupervisor* m_supervisor;
    CUserNotifier* m_notifier;
    CLogMessageList m_logMessageList;
    CLogFilterProxyModel m_logMessageProxy;

    QString m_loaderSource;
    bool m_loaderSourceChanging = false;
    QPointer<CPageViewModel> m_page; ///< owned
    bool m_selectionPageIsDue = false;
    double m_mainWindowHeight = 0.0;
    bool m_smallWindowSize = false;
    bool m_pageMenuExpanded = false;
    bool m_parameterMenuExpanded = false;
    QString m_instrumentModel;
    QString m_instrumentSerialNumber;
    QString m_instrumentStatus;
    QPointer<CInstrument> m_currentInstrument;
    QString m_lastLogMessages;
};
