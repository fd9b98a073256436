// SPDX-License-Identifier: MIT
#include "CStageMapper.h"

CStageMapper::CStageMapper(const QString& name, const QString& settingsFile,
                           const CStageDriver::MakeController& makeController)
    : m_stage(name, settingsFile, CStage::Way::StopAndGo, makeController,
              {[this] { emit Ready(); }, [](const StagePlace&) {}}, nullptr)
{
    Name = name;
}

CStageMapper::~CStageMapper()
{
    m_stage.Release();
}
