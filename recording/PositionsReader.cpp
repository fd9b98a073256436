// SPDX-License-Identifier: GPL-3.0-or-later
#include "PositionsReader.h"

namespace {

constexpr int kMaxPointDepth = 256;
/// Characters. The predefined entities do not count.
constexpr int kMaxPointEntityExpansion = 64;

/// The number that an element of this name gives, or null.
double* numberNamed(const QStringRef& name, PositionsReader::Point& point)
{
    if (name == QLatin1String("X"))
        return &point.x;
    if (name == QLatin1String("Y"))
        return &point.y;
    if (name == QLatin1String("Z"))
        return &point.z;
    if (name == QLatin1String("Roll"))
        return &point.roll;
    if (name == QLatin1String("Pitch"))
        return &point.pitch;
    if (name == QLatin1String("Yaw"))
        return &point.yaw;
    return nullptr;
}

} // namespace

PositionsReader::PositionsReader(QIODevice* device) : m_text(device), m_device(&m_text), m_xml(&m_device)
{
    m_xml.setEntityExpansionLimit(kMaxPointEntityExpansion);
    // Names are without their prefix either way, and nothing is looked up in what the parents declare.
    m_xml.setNamespaceProcessing(false);
}

void PositionsReader::read(const QString& refusal, const std::function<void(const Point&)>& addPoint,
                           const std::function<void()>& refused)
{
    if (!readRoot())
        return;
    const bool isPositionsFile = m_xml.name() == QLatin1String("NorvaneMappingFile") &&
                                 m_xml.attributes().value(QLatin1String("ver")) == QLatin1String("1.0");
    if (!isPositionsFile) {
        m_xml.raiseError(refusal);
        refused();
        return;
    }

    // What a point does not give stays as it was in the point before.
    Point point;
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() != QLatin1String("point")) {
            m_xml.raiseError(refusal);
            refused();
            return;
        }
        readPoint(point);
        // A point that breaks off is none.
        if (!m_xml.hasError())
            addPoint(point);
    }
}

bool PositionsReader::readRoot()
{
    while (!m_xml.atEnd()) {
        const QXmlStreamReader::TokenType token = m_xml.readNext();
        if (token == QXmlStreamReader::StartElement)
            return true;
        if (token == QXmlStreamReader::DTD && m_xml.text().contains(QLatin1String("<!ATTLIST")))
            m_xml.raiseError(QStringLiteral("Default attributes are not supported"));
    }
    return false;
}

void PositionsReader::readPoint(Point& point)
{
    while (m_xml.readNextStartElement()) {
        double* const number = numberNamed(m_xml.name(), point);
        if (number)
            *number = m_xml.readElementText().toDouble();
        else
            skipElement();
    }
}

void PositionsReader::skipElement()
{
    int depth = 1;
    while (depth > 0 && !m_xml.atEnd()) {
        const QXmlStreamReader::TokenType token = m_xml.readNext();
        if (token == QXmlStreamReader::EndElement)
            --depth;
        else if (token == QXmlStreamReader::StartElement && ++depth > kMaxPointDepth)
            m_xml.raiseError(QStringLiteral("The elements are nested too deeply"));
    }
}
