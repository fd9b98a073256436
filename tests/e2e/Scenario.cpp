// SPDX-License-Identifier: GPL-3.0-or-later
#include "Scenario.h"

#include "ApplicationDirPath.h"
#include "CApplication.h"
#include "PatientWait.h"
#include "SettingsDirectoryPath.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickWindow>
#include <QStandardPaths>
#include <QTest>

namespace {

void writeFile(const QString& path, const QString& text)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(path));
    file.write(text.toUtf8());
}

/// A directory of the run with links to the plug-ins.
QString directoryWithFakeMapper()
{
    const QString directory = QDir::current().filePath(QStringLiteral("application"));
    QDir(directory).removeRecursively();
    QDir().mkpath(directory + QStringLiteral("/kestrix"));
    if (!QFile::link(QStringLiteral(KESTRIX_BIN_DIR "/kestrix/instrument"),
                     directory + QStringLiteral("/kestrix/instrument")) ||
        !QFile::link(QStringLiteral(KESTRIX_FAKE_PLUGINS_DIR "/mapper"),
                     directory + QStringLiteral("/kestrix/mapper")))
        qFatal("cannot link plug-ins in %s", qPrintable(directory));
    return directory;
}

QString applicationDirectory(Scenario::Plugins plugins)
{
    switch (plugins) {
    case Scenario::None:
        break;
    case Scenario::Shipped:
        return QStringLiteral(KESTRIX_BIN_DIR);
    case Scenario::FakeMapper:
        return directoryWithFakeMapper();
    }
    return QDir::currentPath();
}

QString pluginSettingsPath(const char* name)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Kestrix/") + QLatin1String(name);
}

} // namespace

Scenario::Scenario() = default;

Scenario::~Scenario()
{
    Quit();
}

void Scenario::WriteSimulationSettings(const QString& text)
{
    writeFile(pluginSettingsPath("KestrixSimulatedInstrument.ini"), text);
}

void Scenario::WriteReplaySettings(const QString& text)
{
    writeFile(pluginSettingsPath("KestrixFileReplay.ini"), text);
}

void Scenario::WriteMapperSettings(const QString& text)
{
    writeFile(pluginSettingsPath("KestrixSimulatedMapper.ini"), text);
}

void Scenario::WriteSerialBoardSettings(const QString& text)
{
    writeFile(pluginSettingsPath("KestrixSerialBoard.ini"), text);
}

void Scenario::WriteDefaultInstrument(const QString& name, const QString& serialNumber)
{
    writeFile(SettingsDirectoryPath + QStringLiteral("/KestrixConnectionSettings.xml"),
              QStringLiteral("<SETTINGS><Name>%1</Name><SerialNumber>%2</SerialNumber></SETTINGS>")
                  .arg(name, serialNumber));
}

void Scenario::WriteApplicationSettings(const QString& elements)
{
    writeFile(SettingsDirectoryPath + QStringLiteral("/KestrixApplicationSettings.xml"),
              QStringLiteral("<SETTINGS>%1</SETTINGS>").arg(elements));
}

void Scenario::WriteMeasureSettings(const QString& elements)
{
    writeFile(SettingsDirectoryPath + QStringLiteral("/KestrixMeasureSettings.xml"),
              QStringLiteral("<OPERATION_PARAMETERS><MEASUREMENT_PARAMETERS>%1</MEASUREMENT_PARAMETERS>"
                             "</OPERATION_PARAMETERS>")
                  .arg(elements));
}

void Scenario::WriteMappingSettings(const QString& measurement, const QString& mapping)
{
    writeFile(SettingsDirectoryPath + QStringLiteral("/KestrixMappingSettings.xml"),
              QStringLiteral("<OPERATION_PARAMETERS><MEASUREMENT_PARAMETERS>%1</MEASUREMENT_PARAMETERS>"
                             "<MAPPING_PARAMETERS>%2</MAPPING_PARAMETERS></OPERATION_PARAMETERS>")
                  .arg(measurement, mapping));
}

qint64 Scenario::Start(Plugins plugins)
{
    ApplicationDirPath = applicationDirectory(plugins);
    QElapsedTimer clock;
    clock.start();
    m_application = CApplication::Instance();
    QQmlApplicationEngine* engine = m_application->QmlEngine();
    QObject::connect(engine, &QQmlEngine::warnings, &m_answers, [this](const QList<QQmlError>& warnings) {
        for (const QQmlError& warning : warnings) {
            // Qt's own, of a tool tip that becomes due just after its control has gone; seen on loaded
            // machines.
            if (!warning.toString().contains(QLatin1String("QML ToolTip: cannot find any window")))
                m_qmlWarnings << warning.toString();
        }
    });
    m_application->Initialize();
    if (engine->rootObjects().isEmpty())
        qFatal("no window: %s", qPrintable(m_qmlWarnings.join(QLatin1Char('\n'))));
    auto* window = qobject_cast<QQuickWindow*>(engine->rootObjects().constFirst());
    m_driver = std::make_unique<WindowDriver>(window);
    if (!QTest::qWaitForWindowExposed(window, kLongWaitMs))
        qFatal("the window is not shown");
    // Its own window, or a dialog that opens with it
    if (!QTest::qWaitFor([] { return QGuiApplication::focusWindow() != nullptr; }, kLongWaitMs))
        qFatal("no window is active");
    return clock.elapsed();
}

bool Scenario::CloseWindow()
{
    return m_driver->Window()->close();
}

void Scenario::Quit()
{
    if (m_hasQuit || !m_application)
        return;
    m_hasQuit = true;
    m_application->onAboutToQuit();
    m_application = nullptr;
    // The window goes with the engine.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    m_driver.reset();
}

QObject* Scenario::ActiveOperation() const
{
    return m_application->QmlEngine()
        ->rootContext()
        ->contextProperty(QStringLiteral("ActiveOperation"))
        .value<QObject*>();
}

QObject* Scenario::RecordingManager() const
{
    return ActiveOperation()->property("RecordingManager").value<QObject*>();
}

QObject* Scenario::PageViewModel() const
{
    return m_application->MainViewModel()->property("pActivePageViewModel").value<QObject*>();
}

bool Scenario::Flag(const char* name) const
{
    return RecordingManager()->property(name).toBool();
}

QStringList Scenario::Problems() const
{
    return m_qmlWarnings + m_answers.Problems();
}

QString Scenario::LogText() const
{
    QFile file(SettingsDirectoryPath + QStringLiteral("/Kestrix.log"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}
