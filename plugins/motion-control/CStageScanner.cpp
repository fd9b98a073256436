// SPDX-License-Identifier: MIT
#include "CStageScanner.h"

CStageScanner::CStageScanner(const QString& name, const QString& settingsFile,
                             const CStageDriver::MakeController& makeController)
    : m_stage(name, settingsFile, CStage::Way::Scan, makeController,
              {[] {},
               [this](const StagePlace& place) {
                   emit Acquire(CStage::PositionOf(place), m_stage.Orientation());
               }},
              nullptr)
{
    Name = name;
}

CStageScanner::~CStageScanner()
{
    m_stage.Release();
}
