// SPDX-License-Identifier: GPL-3.0-or-later
#include "ParameterFile.h"

#include "CInstrument.h"
#include "CTriggerPlugin.h"
#include "EnumTexts.h"

#include <QDomElement>
#include <QXmlStreamWriter>

#include <algorithm>

namespace {

const QLatin1String kRoot("OPERATION_PARAMETERS");

const QLatin1String kMeasurement("MEASUREMENT_PARAMETERS");
const QLatin1String kRange("Range");
const QLatin1String kAutoRange("AutoRange");
const QLatin1String kAdcUnit("AdcUnit");
const QLatin1String kUnits("Units");
const QLatin1String kUncertaintyUnits("UncertaintyUnits");
const QLatin1String kAveraging("Averaging");
const QLatin1String kAcquisitionRate("AcquisitionRate");
const QLatin1String kDisplayRate("DisplayRate");
const QLatin1String kFrequencyMin("FrequencyMin");
const QLatin1String kFrequencyMax("FrequencyMax");
const QLatin1String kTriggerMode("TriggerMode");
const QLatin1String kTriggerPlugin("TriggerPlugin");

const QLatin1String kLimits("LIMITS_PARAMETERS");
const QLatin1String kLimitsFilePath("LimitsFilePath");
const QLatin1String kLimitsFileName("LimitsFileName");

const QLatin1String kAlarmMeter("ALARM_METER_PARAMETERS");
const QLatin1String kAlarmSpectrum("ALARM_SPECTRUM_PARAMETERS");
const QLatin1String kAlarmAcAnalysis("ALARM_ACANALYSIS_PARAMETERS");
const QLatin1String kAlarmMapping("ALARM_MAPPING_PARAMETERS");
const QLatin1String kState("State");
const QLatin1String kAxis("Axis");
const QLatin1String kMinimum("Minimum");
const QLatin1String kMaximum("Maximum");

QString numberText(double value)
{
    return QString::number(value, 'g', 6);
}

QString boolText(bool value)
{
    return value ? QStringLiteral("1") : QStringLiteral("0");
}

bool toBool(const QString& text)
{
    return text.toInt() == 1;
}

void writeMeasurementParameters(QXmlStreamWriter& writer, const CMeasurementParameters& parameters)
{
    writer.writeStartElement(kMeasurement);
    writer.writeTextElement(kRange, numberText(static_cast<double>(parameters.Range())));
    writer.writeTextElement(kAutoRange, boolText(parameters.AutoRange()));
    writer.writeTextElement(kAdcUnit, boolText(parameters.EnableAdcUnit()));
    writer.writeTextElement(kUnits, UnitToText(parameters.Units()));
    writer.writeTextElement(kUncertaintyUnits, UnitToText(parameters.UncertaintyUnits()));
    writer.writeTextElement(kAveraging, QString::number(parameters.Averaging()));
    writer.writeTextElement(kAcquisitionRate, numberText(parameters.AcquisitionRate()));
    writer.writeTextElement(kDisplayRate, numberText(parameters.DisplayRate()));
    writer.writeTextElement(kFrequencyMin, numberText(parameters.FrequencyMin()));
    writer.writeTextElement(kFrequencyMax, numberText(parameters.FrequencyMax()));
    writer.writeTextElement(kTriggerMode, TriggerModeToText(parameters.TriggerMode()));
    if (const CTriggerPlugin* plugin = parameters.TriggerPlugin())
        writer.writeTextElement(kTriggerPlugin, plugin->Name);
    writer.writeEndElement();
}

/// Meter and mapping have the same fields.
template <class Alarm>
void writeBoundedAlarm(QXmlStreamWriter& writer, const QString& element, const Alarm& alarm)
{
    writer.writeStartElement(element);
    writer.writeTextElement(kAxis, AxisToText(alarm.Axis()));
    writer.writeTextElement(kState, AlarmStateToText(alarm.State()));
    writer.writeTextElement(kMinimum, numberText(alarm.Minimum()));
    writer.writeTextElement(kMaximum, numberText(alarm.Maximum()));
    writer.writeEndElement();
}

/// Calls visit(tag name, text) for each child element, in the order of the file.
template <class Visit> void forEachChild(const QDomElement& element, Visit visit)
{
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        visit(child.tagName(), child.text());
}

template <class Alarm> bool readStateOrAxis(Alarm& alarm, const QString& tag, const QString& text)
{
    if (tag == kState)
        alarm.SetState(TextToAlarmState(text));
    else if (tag == kAxis)
        alarm.SetAxis(TextToAxis(text));
    else
        return false;
    return true;
}

template <class Alarm> void readBoundedAlarm(const QDomElement& element, Alarm& alarm)
{
    forEachChild(element, [&alarm](const QString& tag, const QString& text) {
        if (readStateOrAxis(alarm, tag, text))
            return;
        if (tag == kMinimum)
            alarm.SetMinimum(text.toDouble());
        else if (tag == kMaximum)
            alarm.SetMaximum(text.toDouble());
    });
}

void readLimits(const QDomElement& element, CLimitsParameters& limits)
{
    forEachChild(element, [&limits](const QString& tag, const QString& text) {
        // The assignment makes the operation read the limits file.
        if (tag == kLimitsFilePath)
            limits.AssignLimitsFilePath(text);
        else if (tag == kLimitsFileName)
            limits.SetLimitsFileName(text);
    });
}

/// The unit, unless the instrument cannot deliver in it.
CUnits::UnitType deliverableUnit(CUnits::UnitType unit, const CInstrument* instrument)
{
    if (!instrument)
        return unit;
    const QList<CUnits::UnitType> deliverable = instrument->UnitList();
    return deliverable.isEmpty() || deliverable.contains(unit) ? unit : deliverable.first();
}

CTriggerPlugin* triggerPluginOf(const QString& name, const QList<CTriggerPlugin*>& plugins)
{
    const auto found = std::find_if(plugins.cbegin(), plugins.cend(),
                                    [&name](const CTriggerPlugin* plugin) { return plugin->Name == name; });
    return found == plugins.cend() ? nullptr : *found;
}

void readMeasurementParameter(const QString& tag, const QString& text, CMeasurementParameters& parameters,
                              ParameterFile::Context& context)
{
    // FrequencyMax is written for the reader's eyes only: it follows from the acquisition rate.
    if (tag == kRange)
        parameters.SetRange(text.toFloat());
    else if (tag == kAutoRange)
        parameters.SetAutoRange(toBool(text));
    else if (tag == kAdcUnit)
        parameters.SetEnableAdcUnit(toBool(text));
    else if (tag == kUnits)
        parameters.SetUnits(deliverableUnit(TextToUnit(text), context.instrument));
    else if (tag == kUncertaintyUnits)
        context.pendingUncertaintyUnits = TextToUnit(text);
    else if (tag == kAveraging)
        parameters.SetAveraging(text.toInt());
    else if (tag == kAcquisitionRate)
        parameters.SetAcquisitionRate(text.toDouble());
    else if (tag == kDisplayRate)
        parameters.SetDisplayRate(text.toDouble());
    else if (tag == kFrequencyMin)
        parameters.SetFrequencyMin(text.toDouble());
    else if (tag == kTriggerMode)
        parameters.SetTriggerMode(TextToTriggerMode(text));
    else if (tag == kTriggerPlugin)
        parameters.SetTriggerPlugin(triggerPluginOf(text, context.triggerPlugins));
}

} // namespace

namespace ParameterFile {

void beginDocument(QXmlStreamWriter& writer)
{
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(kRoot);
}

void writeCommonElements(QXmlStreamWriter& writer, const COperationParameters& parameters)
{
    writeMeasurementParameters(writer, *parameters.MeasurementParameters());

    const CLimitsParameters& limits = *parameters.LimitsParameters();
    writer.writeStartElement(kLimits);
    writer.writeTextElement(kLimitsFilePath, limits.LimitsFilePath());
    writer.writeTextElement(kLimitsFileName, limits.LimitsFileName());
    writer.writeEndElement();

    writeBoundedAlarm(writer, kAlarmMeter, *parameters.AlarmParametersMeter());

    writer.writeStartElement(kAlarmSpectrum);
    writer.writeTextElement(kState, AlarmStateToText(parameters.AlarmParametersSpectrum()->State()));
    writer.writeEndElement();

    const CAlarmParametersAcAnalysis& acAnalysis = *parameters.AlarmParametersAcAnalysis();
    writer.writeStartElement(kAlarmAcAnalysis);
    writer.writeTextElement(kState, AlarmStateToText(acAnalysis.State()));
    writer.writeTextElement(kAxis, AxisToText(acAnalysis.Axis()));
    writer.writeEndElement();

    writeBoundedAlarm(writer, kAlarmMapping, *parameters.AlarmParametersMapping());
}

bool isMeasurementParameters(const QDomElement& element)
{
    return element.tagName() == kMeasurement;
}

void readMeasurementParameters(const QDomElement& element, CMeasurementParameters& parameters,
                               Context& context)
{
    forEachChild(element, [&](const QString& tag, const QString& text) {
        readMeasurementParameter(tag, text, parameters, context);
    });

    if (context.instrument && parameters.TriggerMode() == CTrigger::IMMEDIATE)
        parameters.SetAcquisitionRate(parameters.ImmediateAcquisitionRate());
    // Limits are compared in the display unit, and the page shows the unit of the values.
    parameters.SetDisplayUnits(parameters.Units());
    setUncertaintyUnits(parameters, context.pendingUncertaintyUnits);
}

bool readLimitsOrAlarm(const QDomElement& element, COperationParameters& parameters)
{
    const QString tag = element.tagName();
    if (tag == kLimits) {
        readLimits(element, *parameters.LimitsParameters());
    } else if (tag == kAlarmMeter) {
        readBoundedAlarm(element, *parameters.AlarmParametersMeter());
    } else if (tag == kAlarmSpectrum) {
        CAlarmParametersSpectrum& alarm = *parameters.AlarmParametersSpectrum();
        forEachChild(element, [&alarm](const QString& child, const QString& text) {
            if (child == kState)
                alarm.SetState(TextToAlarmState(text));
        });
    } else if (tag == kAlarmAcAnalysis) {
        CAlarmParametersAcAnalysis& alarm = *parameters.AlarmParametersAcAnalysis();
        forEachChild(element, [&alarm](const QString& child, const QString& text) {
            readStateOrAxis(alarm, child, text);
        });
    } else if (tag == kAlarmMapping) {
        readBoundedAlarm(element, *parameters.AlarmParametersMapping());
    } else {
        return false;
    }
    return true;
}

void setUncertaintyUnits(CMeasurementParameters& parameters, CUnits::UnitType wanted)
{
    const CUnits::UnitType defaultUnits = GetUncertaintyUnit(parameters.Units());
    parameters.SetUncertaintyUnits(wanted == CUnits::PERCENT ? wanted : defaultUnits);
    parameters.SetUncertaintyUnitList({defaultUnits, CUnits::PERCENT});
}

} // namespace ParameterFile
