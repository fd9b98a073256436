// SPDX-License-Identifier: MIT
#include "CMeasureBlock.h"
#include "CMeasureBlockMapping.h"
#include "CTrigger.h"
#include "CUnits.h"

#include <QCoreApplication>

// Registered when the library is loaded: a queued signal of a plug-in or a property read by name must find
// the types even before the first object of the application exists.
static void registerMetaTypes()
{
    qRegisterMetaType<tFlux>("tFlux");
    qRegisterMetaType<QList<tFlux>>("QList<tFlux>");
    qRegisterMetaType<CUnits::UnitType>("CUnits::UnitType");
    qRegisterMetaType<QList<CUnits::UnitType>>("QList<CUnits::UnitType>");
    qRegisterMetaType<CTrigger::TriggerMode>("CTrigger::TriggerMode");
    qRegisterMetaType<QList<CTrigger::TriggerMode>>("QList<CTrigger::TriggerMode>");
    qRegisterMetaType<CPosition>("CPosition");
    qRegisterMetaType<COrientation>("COrientation");
    qRegisterMetaType<QSharedPointer<CFieldIntensityResult>>("QSharedPointer<CFieldIntensityResult>");
    qRegisterMetaType<QSharedPointer<CMeasureBlock>>("QSharedPointer<CMeasureBlock>");
    qRegisterMetaType<QSharedPointer<CMeasureBlockMapping>>("QSharedPointer<CMeasureBlockMapping>");
}
Q_CONSTRUCTOR_FUNCTION(registerMetaTypes)
