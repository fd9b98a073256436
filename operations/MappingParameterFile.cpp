// SPDX-License-Identifier: GPL-3.0-or-later
#include "MappingParameterFile.h"

#include "CMappingParameters.h"

#include <QDomElement>
#include <QXmlStreamWriter>

namespace {

const QLatin1String kMapping("MAPPING_PARAMETERS");
const QLatin1String kMapper("Mapper");
const QLatin1String kSource("Source");
const QLatin1String kPosition("MAPPING_POSITION_PARAMETERS");
const QLatin1String kX("X");
const QLatin1String kY("Y");
const QLatin1String kZ("Z");
const QLatin1String kStart("Start");
const QLatin1String kStop("Stop");
const QLatin1String kStepSize("Step_Size");
const QLatin1String kOrientation("MAPPING_ORIENTATION_PARAMETERS");
const QLatin1String kRoll("Roll");
const QLatin1String kPitch("Pitch");
const QLatin1String kYaw("Yaw");
/// Says only that the points come from a file; which one is not stored.
const QLatin1String kMappingFile("NorvaneMappingFile");

void writeNumber(QXmlStreamWriter& writer, QLatin1String name, double value)
{
    writer.writeTextElement(name, QString::number(value, 'g', 6));
}

void writeAxis(QXmlStreamWriter& writer, QLatin1String name, const CAxisStepSeries& axis)
{
    writer.writeStartElement(name);
    writeNumber(writer, kStart, axis.Start());
    writeNumber(writer, kStop, axis.Stop());
    writeNumber(writer, kStepSize, axis.StepSize());
    writer.writeEndElement();
}

void writeGrid(QXmlStreamWriter& writer, const CMapperPositionSourceCartesian& source)
{
    writer.writeStartElement(kPosition);
    writeAxis(writer, kX, *source.X());
    writeAxis(writer, kY, *source.Y());
    writeAxis(writer, kZ, *source.Z());
    writer.writeEndElement();

    const COrientation& orientation = *source.Orientation();
    writer.writeStartElement(kOrientation);
    writeNumber(writer, kRoll, orientation.Roll());
    writeNumber(writer, kPitch, orientation.Pitch());
    writeNumber(writer, kYaw, orientation.Yaw());
    writer.writeEndElement();
}

/// Calls visit(child element, tag name) in the order of the file.
template <class Visit> void forEachElement(const QDomElement& element, Visit visit)
{
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        visit(child, child.tagName());
}

void readAxis(const QDomElement& element, CAxisStepSeries& axis)
{
    forEachElement(element, [&axis](const QDomElement& child, const QString& tag) {
        const double value = child.text().toDouble();
        if (tag == kStart)
            axis.SetStart(value);
        else if (tag == kStop)
            axis.SetStop(value);
        else if (tag == kStepSize)
            axis.SetStepSize(value);
    });
}

} // namespace

namespace MappingParameterFile {

void write(QXmlStreamWriter& writer, const CMappingParameters& parameters)
{
    const CMapperPlugin* mapper = parameters.SelectedMapper();
    const CMapperPositionSource* source = parameters.MapperSource();
    const auto type = source ? source->Type() : CMapperPositionSource::eType();
    writer.writeStartElement(kMapping);
    writer.writeTextElement(kMapper, mapper ? mapper->Name : QString());
    writer.writeTextElement(kSource, CMapperPositionSource::TypeToText(type));
    if (type == CMapperPositionSource::Cartesian)
        writeGrid(writer, *parameters.MapperSourceCartesian());
    else if (type == CMapperPositionSource::File)
        writer.writeEmptyElement(kMappingFile);
    writer.writeEndElement();
}

bool isMappingParameters(const QDomElement& element)
{
    return element.tagName() == kMapping;
}

bool isGrid(const QDomElement& element)
{
    return element.tagName() == kPosition || element.tagName() == kOrientation;
}

void readGrid(const QDomElement& element, CMapperPositionSourceCartesian& source)
{
    const bool isPosition = element.tagName() == kPosition;
    forEachElement(element, [&](const QDomElement& child, const QString& tag) {
        if (isPosition) {
            if (tag == kX)
                readAxis(child, *source.X());
            else if (tag == kY)
                readAxis(child, *source.Y());
            else if (tag == kZ)
                readAxis(child, *source.Z());
            return;
        }
        const double angle = child.text().toDouble();
        if (tag == kRoll)
            source.Orientation()->SetRoll(angle);
        else if (tag == kPitch)
            source.Orientation()->SetPitch(angle);
        else if (tag == kYaw)
            source.Orientation()->SetYaw(angle);
    });
}

} // namespace MappingParameterFile
