// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CInstrumentSupervisor.h"
#include "CMainViewModel.h"
#include "COperationsManager.h"
#include "CPluginsManager.h"
#include "CSettings.h"
#include "ShellTestSupport.h"
#include "SilentNotifier.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QTemporaryDir>

#include <memory>

const char kQuitQuestion[] =
    "Are you sure you want to quit the current operation?|All the measured data will be lost";

/// The main view model with all that it needs, made anew for each test.
class MainViewModelFixture
{
protected:
    void setUp()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_settings = std::make_unique<CSettings>(QStringLiteral("/nowhere"));
        m_settings->SetInstrumentParameterPath(m_folder->path());
        m_plugins = std::make_unique<CPluginsManager>(*m_settings);
        m_engine = std::make_unique<QQmlEngine>();
        m_provider = std::make_unique<FakeProvider>();
        m_supervisor = std::make_unique<CInstrumentSupervisor>(m_settings.get());
        m_supervisor->AddInstrumentListProvider(m_provider.get());
        m_operations =
            std::make_unique<COperationsManager>(m_settings.get(), m_plugins.get(), m_supervisor.get());
        m_main = std::make_unique<CMainViewModel>(m_settings.get(), m_engine->rootContext(),
                                                  m_operations.get(), m_supervisor.get(), &m_notifier);
    }

    void tearDown()
    {
        m_main->Terminate();
        m_main.reset();
        deleteDeferred();
        m_operations.reset();
        m_supervisor.reset();
        m_provider.reset();
        m_engine.reset();
        m_plugins.reset();
        m_settings.reset();
        m_folder.reset();
    }

    QObject* contextObject(const char* name) const
    {
        return m_engine->rootContext()->contextProperty(QString::fromLatin1(name)).value<QObject*>();
    }

    COperationMeasure* operation() { return m_operations->OperationMeasure(); }

    QSharedPointer<FakeInstrument> connectInstrument(const char* serialNumber)
    {
        const QSharedPointer<FakeInstrument> instrument = m_provider->add("Probe", serialNumber);
        instrument->SetModel(QStringLiteral("Model ") + QString::fromLatin1(serialNumber));
        instrument->SetStatusString(QStringLiteral("Ready"));
        m_supervisor->RefreshAvailableInstruments();
        m_supervisor->SetActiveInstrument(instrument);
        return instrument;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    SilentNotifier m_notifier;
    std::unique_ptr<CSettings> m_settings;
    std::unique_ptr<CPluginsManager> m_plugins;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<FakeProvider> m_provider;
    std::unique_ptr<CInstrumentSupervisor> m_supervisor;
    std::unique_ptr<COperationsManager> m_operations;
    std::unique_ptr<CMainViewModel> m_main;
};
