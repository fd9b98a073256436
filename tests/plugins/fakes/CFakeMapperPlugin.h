// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMapperPluginStopAndGo.h"

#include <thread>

/// A stop-and-go mapper that arrives at once and records its calls, see FakeOptions.h.
class CFakeMapperPlugin : public CMapperPluginStopAndGo
{
    Q_OBJECT

public:
    explicit CFakeMapperPlugin(QObject* parent = nullptr);
    ~CFakeMapperPlugin() override;

    void Start() override;
    void Stop() override;
    CPosition GetPosition() override;
    COrientation GetOrientation() override;
    void Shutdown() override;
    void MoveTo(CPosition& position, COrientation& orientation) override;

public slots:
    void EmitReady();
    /// Deletes the mapper.
    void Vanish();

private:
    void joinThread();

    CPosition m_position;
    COrientation m_orientation;
    std::thread m_thread;
};
