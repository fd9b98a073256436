// SPDX-License-Identifier: GPL-3.0-or-later
#include "CApplication.h"

#include "ApplicationDirPath.h"
#include "CInstrumentPlugin.h"
#include "CPlotTable.h"
#include "CSteadyTable.h"
#include "CUnits.h"
#include "CUtils.h"
#include "ProductInfo.h"
#include "SettingsDirectoryPath.h"

#include <QAction>
#include <QApplication>
#include <QEventLoop>
#include <QFontDatabase>
#include <QIcon>
#include <QMenu>
#include <QMutex>
#include <QMutexLocker>
#include <QQmlContext>
#include <QScopedValueRollback>
#include <QSystemTrayIcon>
#include <QThread>
#include <QTimer>
#include <QUrl>

#include <atomic>

namespace {

constexpr int kInstrumentListTimeoutMs = 2000;
constexpr int kTrayMessageMs = 5000;

std::atomic<CApplication*> instance{nullptr};
// Held by other threads while they use the instance, and by the main thread while it takes the instance away.
// Has no destructor, for threads that outlive main().
QBasicMutex instanceInUse;
std::atomic<QtMessageHandler> previousHandler{nullptr};

bool isMainThread()
{
    return QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread();
}

void forgetInstance()
{
    const QMutexLocker lock(&instanceInUse);
    instance = nullptr;
}

void passOn(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    CApplication* const application = instance;
    if (application)
        application->messageHandler(type, context, message);
}

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    const QtMessageHandler previous = previousHandler;
    if (previous)
        previous(type, context, message);

    if (isMainThread()) {
        passOn(type, context, message);
        return;
    }
    // Qt gives no message of this thread to a handler that is at work on one already, so the lock is not
    // asked for twice.
    const QMutexLocker lock(&instanceInUse);
    passOn(type, context, message);
}

void installMessageHandler()
{
    const QtMessageHandler previous = qInstallMessageHandler(handleMessage);
    if (previous != handleMessage)
        previousHandler = previous;
}

bool isNoise(QtMsgType type, const QString& message)
{
    return type == QtWarningMsg && (message.contains(QLatin1String("Ignored NaN")) ||
                                    message.contains(QLatin1String("obtain clipboard")) ||
                                    message.contains(QLatin1String("Logarithms of zero")));
}

} // namespace

CApplication* CApplication::Instance()
{
    if (!instance)
        instance = new CApplication(nullptr);
    return instance;
}

CApplication::CApplication(QObject* parent)
    : QObject(parent), m_settings(ApplicationDirPath), m_pluginsManager(m_settings, this),
      m_supervisor(&m_settings, this),
      m_operationsManager(&m_settings, &m_pluginsManager, &m_supervisor, this),
      m_mainViewModel(&m_settings, m_engine.rootContext(), &m_operationsManager, &m_supervisor, this, this),
      m_loggingCategory("Kestrix.CApplication"), m_logger(SettingsDirectoryPath, this)
{
    qDebug().nospace() << "CApplication::CApplication() // thread " << thread();
    CreateTrayIcon();
}

CApplication::~CApplication()
{
    delete m_versionChecker;
    qDebug() << "CApplication destructor";
    // The windows go before the models that they are bound to.
    qDeleteAll(m_engine.rootObjects());
    if (instance == this)
        forgetInstance();
}

void CApplication::CreateTrayIcon()
{
    m_quitAction = new QAction(tr("&Quit"), this);
    connect(m_quitAction, &QAction::triggered, qApp, &QCoreApplication::quit);
    // During the start that ends no more than the loop in which the start waits.
    connect(m_quitAction, &QAction::triggered, this, [this] {
        if (!m_isInitialized)
            m_quitIsDue = true;
    });
    m_trayMenu = std::make_unique<QMenu>();
    m_trayMenu->addAction(m_quitAction);
    m_trayIcon = new QSystemTrayIcon(this);
    m_trayIcon->setContextMenu(m_trayMenu.get());
    m_trayIcon->setIcon(QIcon(QStringLiteral(":/Resources/Icons/Kestrix.ico")));
    m_trayIcon->setToolTip(kApplicationName);
    m_trayIcon->setVisible(true);
}

void CApplication::ShowTrayMessage(const QString& title, const QString& text)
{
    if (m_trayIcon)
        m_trayIcon->showMessage(title, text, QSystemTrayIcon::Warning, kTrayMessageMs);
}

void CApplication::Beep()
{
    QApplication::beep();
}

void CApplication::Initialize()
{
    installMessageHandler();
    m_pluginsManager.LoadAll();
    StartInstrumentPlugins();
    LoadFonts();
    CPlotTable::RegisterQmlTypes();
    qmlRegisterType<CUnits>("Kestrix.CUnit", 1, 0, "Unit");
    qmlRegisterUncreatableType<CLogMessage>("Kestrix.CLogMessage", 1, 0, "LogMessageLevel",
                                            QStringLiteral("Cannot create LogMessageLevel in QML"));
    CSteadyTable::RegisterQmlTypes();
    SetContextProperties();
    WaitForInstrumentList();
    ConnectDefaultInstrument();
    if (m_supervisor.HasActiveInstrument())
        m_mainViewModel.displayMeterPage();
    else
        m_mainViewModel.displayInstrumentSelectionPage();
    m_engine.load(QUrl(QStringLiteral("qrc:/Resources/MainWindow.qml")));
    CheckForNewVersion();
    m_isInitialized = true;
    if (m_quitIsDue)
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

void CApplication::StartInstrumentPlugins()
{
    for (CInstrumentPlugin* plugin : m_pluginsManager.InstrumentPlugins()) {
        plugin->Start();
        m_supervisor.AddInstrumentListProvider(plugin->GetInstrumentListProvider());
    }
}

void CApplication::LoadFonts()
{
    struct Font
    {
        QString path;
        const char* text;
    };
    const Font fonts[] = {
        {QStringLiteral(":/Resources/Fonts/VRQ-Oxygen-Regular.ttf"), "Load font Oxygen. ID :"},
        {QStringLiteral(":/Resources/Fonts/VRQ-Oxygen-Bold.ttf"), "Load font Oxygen Bold. ID :"},
        {QStringLiteral(":/Resources/Fonts/VRQ-Oxygen-Light.ttf"), "Load font Oxygen Light. ID :"},
        {QStringLiteral(":/Resources/Fonts/OxygenMono-Regular.ttf"), "Load font Oxygen Mono Regular. ID :"},
    };
    for (const Font& font : fonts)
        qCDebug(m_loggingCategory, "%s %d", font.text, QFontDatabase::addApplicationFont(font.path));
}

void CApplication::SetContextProperties()
{
    // One for the process: QML may ask it until the very end.
    static CUtils* const utils = new CUtils;

    QQmlContext* context = m_engine.rootContext();
    context->setContextProperty(QStringLiteral("QtVerSix"), false);
    context->setContextProperty(QStringLiteral("QtVersion"), QString::fromLatin1(qVersion()));
    context->setContextProperty(QStringLiteral("InstrumentSupervisor"), &m_supervisor);
    context->setContextProperty(QStringLiteral("OrganizationName"), QString(kOrganizationName));
    context->setContextProperty(QStringLiteral("OrganizationWebsite"), QString(kOrganizationWebsite));
    context->setContextProperty(QStringLiteral("OrganizationEmail"), QString(kOrganizationEmail));
    context->setContextProperty(QStringLiteral("OrganizationLogo"),
                                QStringLiteral("qrc:///Resources/Images/Norvane.svg"));
    context->setContextProperty(QStringLiteral("AppName"), QString(kApplicationName));
    context->setContextProperty(QStringLiteral("Version"), QString(kApplicationVersion));
    context->setContextProperty(QStringLiteral("SoftwareUpdateWebsite"), QString(kSoftwareUpdateWebsite));
    context->setContextProperty(QStringLiteral("Utils"), utils);
    context->setContextProperty(QStringLiteral("Settings"), &m_settings);
    context->setContextProperty(QStringLiteral("debug"), static_cast<QObject*>(nullptr));
}

void CApplication::WaitForInstrumentList()
{
    QEventLoop loop;
    connect(&m_supervisor, &CInstrumentSupervisor::AvailableInstrumentUpdated, &loop, &QEventLoop::quit);
    QTimer::singleShot(kInstrumentListTimeoutMs, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

void CApplication::ConnectDefaultInstrument()
{
    if (m_supervisor.GetDefaultInstrument())
        m_supervisor.SetActiveInstrument(m_supervisor.GetDefaultInstrument());
}

void CApplication::CheckForNewVersion()
{
    m_versionChecker = new CVersionChecker(kApplicationName, kApplicationVersion, kVersionListUrl, this);
    connect(m_versionChecker, &CVersionChecker::NewVersionAvailable, this,
            &CApplication::OnNewVersionAvailable);
    if (m_settings.CheckForNewVersion())
        m_versionChecker->Run();
}

void CApplication::OnNewVersionAvailable(QString newVersion)
{
    if (newVersion == m_settings.IgnoreSpecificVersion())
        return;
    m_engine.rootContext()->setContextProperty(QStringLiteral("NewVersion"), newVersion);
    m_engine.load(QUrl(QStringLiteral("qrc:/Resources/Widgets/NewSoftwareVersionDialog.qml")));
}

void CApplication::onAboutToQuit()
{
    qDebug() << "CApplication terminate";
    m_mainViewModel.Terminate();
    m_pluginsManager.Terminate();
    m_trayIcon->hide();
    m_trayIcon->deleteLater();
    m_trayMenu.release()->deleteLater();
    m_quitAction->deleteLater();
    deleteLater();
    forgetInstance();
    qDebug() << "CApplication terminated";
}

void CApplication::messageHandler(QtMsgType type, const QMessageLogContext& context, const QString& msg)
{
    if (isNoise(type, msg))
        return;
    m_logger.Write(type, context, msg);

    const ListEntry entry{CLogMessage::LevelOf(type, msg), msg, QDateTime::currentDateTime()};
    if (isMainThread()) {
        ListOnMainThread(entry);
        return;
    }
    // Dropped with this object, if the application ends first.
    QMetaObject::invokeMethod(
        this,
        [this, entry] {
            if (instance == this)
                ListOnMainThread(entry);
        },
        Qt::QueuedConnection);
}

void CApplication::ListOnMainThread(const ListEntry& entry)
{
    // The list is in the middle of a change while its listeners are told.
    if (m_isListing) {
        m_waitingEntries.append(entry);
        return;
    }
    const QScopedValueRollback<bool> listing(m_isListing, true);
    List(entry);
    // A listener that logs at each entry would keep this going for ever: what it logs at its own entries is
    // kept in the file only.
    const QVector<ListEntry> waiting = std::exchange(m_waitingEntries, {});
    for (const ListEntry& next : waiting)
        List(next);
    m_waitingEntries.clear();
}

void CApplication::List(const ListEntry& entry)
{
    const auto message = QSharedPointer<CLogMessage>::create();
    message->SetLevel(entry.level);
    message->SetMessage(entry.message);
    message->SetTimestamp(entry.timestamp);
    m_mainViewModel.LogMessageList()->Append(message);
    if (m_mainViewModel.LogMessageProxy()->MinLevel() <= entry.level)
        m_mainViewModel.SetLastLogMessages(QStringLiteral("[%1] %2 - %3\n")
                                               .arg(CLogMessage::LevelText(entry.level),
                                                    entry.timestamp.toString(Qt::ISODateWithMs),
                                                    entry.message));
}
