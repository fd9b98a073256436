// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "COrientation.h"
#include "CPosition.h"
#include "PositionsReader.h"
#include "XmlFile.h"

#include <QList>
#include <QString>

/// A list of points that a stop-and-go mapping visits in order, read from a file. A failed load is shown to
/// the user in a modal box. Main thread only.
class MappingXmlFile : public XmlFile
{
    Q_OBJECT
    Q_PROPERTY(QString FileName READ FileName WRITE SetFileName NOTIFY FileNameChanged)
    Q_PROPERTY(QString FilePath READ FilePath WRITE SetFilePath NOTIFY FilePathChanged)
    Q_PROPERTY(bool FileError READ FileError NOTIFY FileErrorChanged)
    Q_PROPERTY(bool FileLoaded READ FileLoaded NOTIFY FileLoadedChanged)
    Q_PROPERTY(double PositionXMin READ PositionXMin NOTIFY PositionXMinChanged)
    Q_PROPERTY(double PositionXMax READ PositionXMax NOTIFY PositionXMaxChanged)
    Q_PROPERTY(double PositionYMin READ PositionYMin NOTIFY PositionYMinChanged)
    Q_PROPERTY(double PositionYMax READ PositionYMax NOTIFY PositionYMaxChanged)
    Q_PROPERTY(double PositionZMin READ PositionZMin NOTIFY PositionZMinChanged)
    Q_PROPERTY(double PositionZMax READ PositionZMax NOTIFY PositionZMaxChanged)
    Q_PROPERTY(QList<CPosition>* Positions READ Positions CONSTANT)
    Q_PROPERTY(QList<COrientation>* Orientations READ Orientations CONSTANT)

public:
    using XmlFile::XmlFile;

    QString FileName() const { return m_fileName; }  ///< shown by the page, which sets it after a good load
    QString FilePath() const { return m_filePath; }  ///< what the next load reads
    bool FileError() const { return m_fileError; }   ///< the last load failed
    bool FileLoaded() const { return m_fileLoaded; } ///< the last load succeeded
    void SetFileName(const QString& value);
    void SetFilePath(const QString& value);

    // Bounding box of the points and the origin.
    double PositionXMin() const { return m_positionXMin; }
    double PositionXMax() const { return m_positionXMax; }
    double PositionYMin() const { return m_positionYMin; }
    double PositionYMax() const { return m_positionYMax; }
    double PositionZMin() const { return m_positionZMin; }
    double PositionZMax() const { return m_positionZMax; }

    /// Both of the same length, in the order of the visit; owned by the file. What was read before an error
    /// stays.
    QList<CPosition>* Positions() { return &m_positions; }
    QList<COrientation>* Orientations() { return &m_orientations; }

    /// Reads the file at `FilePath`.
    void Load();

signals:
    void FileNameChanged(const QString& value);
    void FilePathChanged(const QString& value);
    void FileErrorChanged(bool value);
    void FileLoadedChanged(bool value);
    void PositionXMinChanged(double value);
    void PositionXMaxChanged(double value);
    void PositionYMinChanged(double value);
    void PositionYMaxChanged(double value);
    void PositionZMinChanged(double value);
    void PositionZMaxChanged(double value);
    /// A load has ended, well or not.
    void Loaded();

private:
    void setFileError(bool value);
    void setFileLoaded(bool value);
    void clear();
    /// False on an XML error.
    bool readPoints(QIODevice& file);
    void addPoint(const PositionsReader::Point& point);

    QString m_fileName;
    bool m_fileError = false;
    bool m_fileLoaded = false;
    double m_positionXMin = 0;
    double m_positionXMax = 0;
    double m_positionYMin = 0;
    double m_positionYMax = 0;
    double m_positionZMin = 0;
    double m_positionZMax = 0;
    QList<CPosition> m_positions;
    QList<COrientation> m_orientations;
};

Q_DECLARE_METATYPE(QList<CPosition>*)
Q_DECLARE_METATYPE(QList<COrientation>*)
