// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CInstrumentSupervisor.h"
#include "CLogger.h"
#include "CMainViewModel.h"
#include "COperationsManager.h"
#include "CPluginsManager.h"
#include "CSettings.h"
#include "CUserNotifier.h"
#include "CVersionChecker.h"

#include <QDateTime>
#include <QLoggingCategory>
#include <QObject>
#include <QPointer>
#include <QQmlApplicationEngine>
#include <QString>
#include <QVector>

#include <memory>

class QAction;
class QMenu;
class QSystemTrayIcon;

/// Composition root: owns every long-lived model by value and destroys them in reverse order. It also owns
/// the tray icon, and the messages of the whole process end here. Made on first use, gone after
/// onAboutToQuit(). Needs a QApplication; main thread only, except where told.
class CApplication : public QObject, private CUserNotifier
{
    Q_OBJECT
    Q_PROPERTY(CSettings* Settings READ Settings CONSTANT)

public:
    /// The application object, made if there is none.
    static CApplication* Instance();
    ~CApplication() override;

    CSettings* Settings() { return &m_settings; }
    CMainViewModel* MainViewModel() { return &m_mainViewModel; }
    QQmlApplicationEngine* QmlEngine() { return &m_engine; }

    /// Second stage of the start, called once: from the message handler to the first page and its window.
    /// Waits up to two seconds for the first list of instruments. "&Quit" of the tray icon during the start
    /// ends the application as soon as its event loop runs.
    void Initialize();

public slots:
    /// Ends the operation and the plug-ins and hands itself to deleteLater. Messages that come later reach
    /// the default output only.
    void onAboutToQuit();
    /// Logs a message to the file, the log list and the status bar's line. Callable from any thread: the file
    /// is written at once, list and line follow on the main thread. A message that the list's or the line's
    /// own listeners log comes behind the one they were told of.
    void messageHandler(QtMsgType type, const QMessageLogContext& context, const QString& msg);
    /// Opens the dialog about a new version, unless the user wants to hear no more of this one.
    void OnNewVersionAvailable(QString newVersion);

private:
    /// A message on its way to the log list.
    struct ListEntry
    {
        CLogMessage::eLevel level;
        QString message;
        QDateTime timestamp;
    };

    explicit CApplication(QObject* parent);

    void ShowTrayMessage(const QString& title, const QString& text) override;
    void Beep() override;

    void CreateTrayIcon();
    void StartInstrumentPlugins();
    void LoadFonts();
    void SetContextProperties();
    void WaitForInstrumentList();
    void ConnectDefaultInstrument();
    void CheckForNewVersion();
    void ListOnMainThread(const ListEntry& entry);
    void List(const ListEntry& entry);

    CSettings m_settings;
    CPluginsManager m_pluginsManager;
    QQmlApplicationEngine m_engine;
    CInstrumentSupervisor m_supervisor;
    COperationsManager m_operationsManager;
    CMainViewModel m_mainViewModel;
    QLoggingCategory m_loggingCategory;
    QAction* m_quitAction = nullptr; ///< child
    std::unique_ptr<QMenu> m_trayMenu;
    QPointer<QSystemTrayIcon> m_trayIcon; ///< child; gone before this object
    CLogger m_logger;
    CVersionChecker* m_versionChecker = nullptr; ///< child; null until Initialize()

    bool m_isInitialized = false;
    bool m_quitIsDue = false; ///< asked for before the application's event loop runs
    bool m_isListing = false;
    QVector<ListEntry> m_waitingEntries; ///< logged by a listener while an entry is being listed
};
