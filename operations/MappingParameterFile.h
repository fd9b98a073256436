// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class CMapperPositionSourceCartesian;
class CMappingParameters;
class QDomElement;
class QXmlStreamWriter;

/// The element of a parameter file that only the mapping has.
namespace MappingParameterFile {

void write(QXmlStreamWriter& writer, const CMappingParameters& parameters);

bool isMappingParameters(const QDomElement& element);
/// Whether the element gives a part of a grid.
bool isGrid(const QDomElement& element);
/// Sets what a grid element gives. What it does not name stays.
void readGrid(const QDomElement& element, CMapperPositionSourceCartesian& source);

} // namespace MappingParameterFile
