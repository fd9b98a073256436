// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TagLengthGuard.h"
#include "Utf8XmlDevice.h"

#include <QString>
#include <QXmlStreamReader>

#include <functional>

class QIODevice;

/// One walk over the stream of a positions file.
///
/// Files may be hostile; what counts as an XML error in a record counts as one here, see RecordReader.
class PositionsReader
{
public:
    /// Where the probe is to be: position in the length unit of the mapper, angles in degrees.
    struct Point
    {
        double x = 0;
        double y = 0;
        double z = 0;
        double roll = 0;
        double pitch = 0;
        double yaw = 0;
    };

    /// `device` is open for reading and must outlive the reader.
    explicit PositionsReader(QIODevice* device);

    /// Calls `addPoint` for each point, in the order of the file. A root or an element that no positions file
    /// has makes `refusal` the error, ends the walk and calls `refused` before it returns.
    void read(const QString& refusal, const std::function<void(const Point&)>& addPoint,
              const std::function<void()>& refused);

    bool hasError() const { return m_xml.hasError(); }
    QString errorString() const { return m_xml.errorString(); }

private:
    bool readRoot();
    void readPoint(Point& point);
    void skipElement();

    Utf8XmlDevice m_text;
    TagLengthGuard m_device;
    QXmlStreamReader m_xml;
};
