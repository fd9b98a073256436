// SPDX-License-Identifier: MIT
#pragma once

#include "CMapperPluginOnTheFly.h"
#include "CStage.h"

/// A real machine that carries the probe along the lines of an area, without stopping at the points where it
/// asks for a block. Its path is in its settings file. It ends at the end of the path.
class CStageScanner : public CMapperPluginOnTheFly
{
    Q_OBJECT

public:
    CStageScanner(const QString& name, const QString& settingsFile,
                  const CStageDriver::MakeController& makeController);
    ~CStageScanner() override;

    void Start() override { m_stage.Start(); }
    void Stop() override { m_stage.Stop(); }
    /// Between two reports of the machine, where it ought to be.
    CPosition GetPosition() override { return m_stage.Position(); }
    COrientation GetOrientation() override { return m_stage.Orientation(); }
    void Shutdown() override { m_stage.Release(); }

private:
    CStage m_stage;
};
