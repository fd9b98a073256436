// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "COperationParameters.h"

#include <QList>

class CInstrument;
class CTriggerPlugin;
class QDomElement;
class QXmlStreamWriter;

/// The elements of a parameter file that all operations have in common.
namespace ParameterFile {

/// What the measurement parameters of a file are checked against.
struct Context
{
    const CInstrument* instrument; ///< null without one
    const QList<CTriggerPlugin*>& triggerPlugins;
    /// Unit of the uncertainty as the file gives it, which takes effect once the unit of the field is known.
    CUnits::UnitType pendingUncertaintyUnits = CUnits::UNKNOWN;
};

void beginDocument(QXmlStreamWriter& writer);
void writeCommonElements(QXmlStreamWriter& writer, const COperationParameters& parameters);

bool isMeasurementParameters(const QDomElement& element);
void readMeasurementParameters(const QDomElement& element, CMeasurementParameters& parameters,
                               Context& context);

/// Reads the limits or an alarm. False if the element is neither.
bool readLimitsOrAlarm(const QDomElement& element, COperationParameters& parameters);

/// Gives the uncertainty the default unit of the field, unless it is to be a percentage, and offers both.
void setUncertaintyUnits(CMeasurementParameters& parameters, CUnits::UnitType wanted);

} // namespace ParameterFile
