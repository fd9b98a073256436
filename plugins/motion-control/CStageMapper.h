// SPDX-License-Identifier: MIT
#pragma once

#include "CMapperPluginStopAndGo.h"
#include "CStage.h"

/// A real machine that carries the probe from point to point. A place that it cannot reach, and a machine
/// that fails or falls silent, go to the log; the mapping then waits until it is stopped.
class CStageMapper : public CMapperPluginStopAndGo
{
    Q_OBJECT

public:
    CStageMapper(const QString& name, const QString& settingsFile,
                 const CStageDriver::MakeController& makeController);
    ~CStageMapper() override;

    void Start() override { m_stage.Start(); }
    void Stop() override { m_stage.Stop(); }
    CPosition GetPosition() override { return m_stage.Position(); }
    COrientation GetOrientation() override { return m_stage.Orientation(); }
    void Shutdown() override { m_stage.Release(); }
    void MoveTo(CPosition& position, COrientation& orientation) override
    {
        m_stage.MoveTo(position, orientation);
    }

private:
    CStage m_stage;
};
