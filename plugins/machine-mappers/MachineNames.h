// SPDX-License-Identifier: MIT
#pragma once

#include "CMachineController.h"

#include <QCoreApplication>
#include <QLatin1String>

#include <memory>

/// The settings files. Both mappers of a GRBL machine share one: it is the same machine.
inline const QLatin1String kGrblSettingsFile("KestrixGrblMachine.ini");
inline const QLatin1String kMarlinSettingsFile("KestrixMarlinMachine.ini");

template <class Controller>
std::unique_ptr<CMachineController> makeController(CLineLink& link, const StageSettings& settings,
                                                   const MachineTimes& times, const MachineHooks& hooks)
{
    return std::make_unique<Controller>(link, settings, times, hooks);
}
