// SPDX-License-Identifier: GPL-3.0-or-later
#include "MappingXmlFile.h"

#include "CUtils.h"
#include "Property.h"

#include <QDebug>
#include <QFile>

namespace {

using BoundChanged = void (MappingXmlFile::*)(double);

/// Not-a-number lies neither above nor below.
void widen(MappingXmlFile* file, double value, double& min, BoundChanged minChanged, double& max,
           BoundChanged maxChanged)
{
    if (value > max)
        storeAndEmitOnChange(file, max, value, maxChanged);
    if (value < min)
        storeAndEmitOnChange(file, min, value, minChanged);
}

void showError(const QString& text)
{
    CUtils::ShowError(MappingXmlFile::tr("Could not load file"), text);
}

} // namespace

void MappingXmlFile::SetFileName(const QString& value)
{
    storeAndEmitOnChange(this, m_fileName, value, &MappingXmlFile::FileNameChanged);
}

void MappingXmlFile::SetFilePath(const QString& value)
{
    storeAndEmitOnChange(this, m_filePath, value, &MappingXmlFile::FilePathChanged);
}

void MappingXmlFile::Load()
{
    setFileLoaded(false);
    clear();
    QFile file(m_filePath);
    bool isParsed = true;
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        isParsed = readPoints(file);
    } else {
        setFileError(true);
        qWarning().noquote().nospace() << "Cannot read the file : " << m_filePath;
        showError(tr("Cannot read the file"));
    }
    if (isParsed && file.error() != QFileDevice::NoError)
        qDebug().noquote().nospace() << "Error: Cannot read file " << m_filePath << ": "
                                     << file.errorString();
    file.close();
    setFileLoaded(!m_fileError);
    emit Loaded();
}

bool MappingXmlFile::readPoints(QIODevice& file)
{
    PositionsReader reader(&file);
    reader.read(
        tr("Incorrect file"), [this](const PositionsReader::Point& point) { addPoint(point); },
        [] { showError(tr("The file is not a valid Norvane XML mapping file")); });
    setFileError(reader.hasError());
    if (reader.hasError())
        qDebug().noquote().nospace() << "Error: Failed to parse file : " << m_filePath << " : "
                                     << reader.errorString();
    return !reader.hasError();
}

void MappingXmlFile::addPoint(const PositionsReader::Point& point)
{
    CPosition position;
    position.SetX(point.x);
    position.SetY(point.y);
    position.SetZ(point.z);
    m_positions.append(position);

    using Self = MappingXmlFile;
    widen(this, point.x, m_positionXMin, &Self::PositionXMinChanged, m_positionXMax,
          &Self::PositionXMaxChanged);
    widen(this, point.y, m_positionYMin, &Self::PositionYMinChanged, m_positionYMax,
          &Self::PositionYMaxChanged);
    widen(this, point.z, m_positionZMin, &Self::PositionZMinChanged, m_positionZMax,
          &Self::PositionZMaxChanged);

    COrientation orientation;
    orientation.SetRoll(point.roll);
    orientation.SetPitch(point.pitch);
    orientation.SetYaw(point.yaw);
    m_orientations.append(orientation);
}

void MappingXmlFile::clear()
{
    m_positions.clear();
    m_orientations.clear();
    storeAndEmitOnChange(this, m_positionXMin, 0.0, &MappingXmlFile::PositionXMinChanged);
    storeAndEmitOnChange(this, m_positionXMax, 0.0, &MappingXmlFile::PositionXMaxChanged);
    storeAndEmitOnChange(this, m_positionYMin, 0.0, &MappingXmlFile::PositionYMinChanged);
    storeAndEmitOnChange(this, m_positionYMax, 0.0, &MappingXmlFile::PositionYMaxChanged);
    storeAndEmitOnChange(this, m_positionZMin, 0.0, &MappingXmlFile::PositionZMinChanged);
    storeAndEmitOnChange(this, m_positionZMax, 0.0, &MappingXmlFile::PositionZMaxChanged);
}

void MappingXmlFile::setFileError(bool value)
{
    storeAndEmitOnChange(this, m_fileError, value, &MappingXmlFile::FileErrorChanged);
}

void MappingXmlFile::setFileLoaded(bool value)
{
    storeAndEmitOnChange(this, m_fileLoaded, value, &MappingXmlFile::FileLoadedChanged);
}
