// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CUtils.h"
#include "TestResultsModel.h"

#include <QObject>
#include <QQmlPropertyMap>
#include <QString>

class QQmlEngine;
class QQuickItem;

/// What QML needs of the application to show controls: fonts, units, "Utils"; and "TestSupport" for the
/// tests.
class QmlTestSetup : public QObject
{
    Q_OBJECT

public:
    QmlTestSetup();

    /// Loads resources and fonts and registers the types; before the first engine, after the application.
    static void Prepare();

    /// Warnings of all engines so far: any of them fails the run.
    static int WarningCount();

    /// The locale that QML formats and reads numbers in.
    Q_INVOKABLE void setLocale(const QString& name);

    /// The test fails unless exactly this is logged for debugging before it ends.
    Q_INVOKABLE void expectDebugMessage(const QString& message);

    /// A model with the roles of the results table.
    Q_INVOKABLE QAbstractItemModel* resultsModel(int rows);

    void setUp(QQmlEngine* engine);

    /// The item of that name below `root`, shown or not; null if there is none.
    static QQuickItem* FindItem(QQuickItem* root, const char* name);

public slots:
    void qmlEngineAvailable(QQmlEngine* engine);

private:
    CUtils m_utils;
    TestResultsModel m_results;
    QQmlPropertyMap m_recordingManager;
    QQmlPropertyMap m_operation;
    QQmlPropertyMap m_mainViewModel;
    QQmlPropertyMap m_connectionPage;
};
