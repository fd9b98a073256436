// SPDX-License-Identifier: GPL-3.0-or-later
#include "QmlTestSetup.h"

#include "CSteadyTable.h"
#include "CUnits.h"
#include "InitResources.h"

#include <QDebug>
#include <QFontDatabase>
#include <QLocale>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlError>
#include <QQuickItem>
#include <QTest>

namespace {
int warningCount = 0;
}

QmlTestSetup::QmlTestSetup()
{
    m_recordingManager.insert(QStringLiteral("IsOperationMeasure"), true);
    m_operation.insert(QStringLiteral("RecordingManager"),
                       QVariant::fromValue<QObject*>(&m_recordingManager));
    m_mainViewModel.insert(QStringLiteral("ParameterMenuExpanded"), false);
    m_mainViewModel.insert(QStringLiteral("PageMenuExpanded"), false);
    for (const char* fact : {"Manufacturer", "Model", "SerialNumber", "ElectronicsVersion", "FirmwareVersion",
                             "ProbeVersion", "ManufacturingDate", "CalibrationDate"})
        m_connectionPage.insert(QLatin1String(fact), QString());
    m_connectionPage.insert(QStringLiteral("CalibrationOutOfDate"), false);
    m_connectionPage.insert(QStringLiteral("ConnectedInstruments"), QStringList());
    m_connectionPage.insert(QStringLiteral("InstrumentNames"), QStringList());
    m_connectionPage.insert(QStringLiteral("ActiveInstrumentIndex"), -1);
    m_connectionPage.insert(QStringLiteral("SelectedDefaultInstrumentIndex"), -1);
    m_connectionPage.insert(QStringLiteral("SerialPortNames"), QStringList());
    m_connectionPage.insert(QStringLiteral("BaudrateNames"), QStringList());
    m_connectionPage.insert(QStringLiteral("SelectedSerialPortNameIndex"), -1);
    m_connectionPage.insert(QStringLiteral("SelectedBaudrateIndex"), -1);
}

void QmlTestSetup::Prepare()
{
    InitResources();
    for (const char* name :
         {"VRQ-Oxygen-Regular", "VRQ-Oxygen-Bold", "VRQ-Oxygen-Light", "OxygenMono-Regular"}) {
        const QString path = QStringLiteral(":/Resources/Fonts/%1.ttf").arg(QLatin1String(name));
        if (QFontDatabase::addApplicationFont(path) < 0)
            qFatal("cannot load %s", qPrintable(path));
    }
    qmlRegisterType<CUnits>("Kestrix.CUnit", 1, 0, "Unit");
    CSteadyTable::RegisterQmlTypes();
}

int QmlTestSetup::WarningCount()
{
    return warningCount;
}

void QmlTestSetup::setLocale(const QString& name)
{
    QLocale::setDefault(QLocale(name));
}

void QmlTestSetup::expectDebugMessage(const QString& message)
{
    QTest::ignoreMessage(QtDebugMsg, qPrintable(message));
}

QAbstractItemModel* QmlTestSetup::resultsModel(int rows)
{
    m_results.SetRowCount(rows);
    return &m_results;
}

void QmlTestSetup::setUp(QQmlEngine* engine)
{
    connect(engine, &QQmlEngine::warnings, this, [](const QList<QQmlError>& warnings) {
        for (const QQmlError& warning : warnings)
            qCritical().noquote() << "QML warning:" << warning.toString();
        warningCount += warnings.size();
    });
    QQmlEngine::setObjectOwnership(&m_results, QQmlEngine::CppOwnership);
    QQmlContext* context = engine->rootContext();
    context->setContextProperty(QStringLiteral("Utils"), &m_utils);
    context->setContextProperty(QStringLiteral("ActiveOperation"), &m_operation);
    context->setContextProperty(QStringLiteral("MainViewModel"), &m_mainViewModel);
    context->setContextProperty(QStringLiteral("ConnectionPageViewModel"), &m_connectionPage);
    context->setContextProperty(QStringLiteral("TestSupport"), this);
}

QQuickItem* QmlTestSetup::FindItem(QQuickItem* root, const char* name)
{
    const QString wanted = QString::fromLatin1(name);
    QList<QQuickItem*> open{root};
    while (!open.isEmpty()) {
        QQuickItem* candidate = open.takeFirst();
        if (candidate->objectName() == wanted)
            return candidate;
        // By childItems(), not children(): what loaders and delegates make is no child object of theirs.
        open.append(candidate->childItems());
    }
    return nullptr;
}

void QmlTestSetup::qmlEngineAvailable(QQmlEngine* engine)
{
    setUp(engine);
}
