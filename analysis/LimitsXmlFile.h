// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CUnits.h"
#include "FrequencyRange.h"
#include "XmlFile.h"

#include <QList>
#include <QSharedPointer>

class CLimitsFileOwner;
class QXmlStreamReader;

/// A staircase of exposure limits over frequency, read from a file and converted into the display unit. The
/// bands stay in the order of the file. A failed read is shown to the user in a modal box. Main thread only.
class LimitsXmlFile : public XmlFile
{
    Q_OBJECT
    Q_PROPERTY(bool Converted READ Converted NOTIFY ConvertedChanged)
    Q_PROPERTY(bool FileError READ FileError NOTIFY FileErrorChanged)

public:
    /// `owner` must outlive the file.
    explicit LimitsXmlFile(CLimitsFileOwner& owner, QObject* parent = nullptr);

    bool Converted() const { return m_converted; } ///< the values are in the present display unit
    bool FileError() const { return m_fileError; } ///< the last read failed
    const QList<QSharedPointer<FrequencyRange>>& Ranges() const { return m_ranges; }

    // Extremes over all bands, 0 included: they start at 0 and only move outwards.
    double LowestFrequency() const { return m_lowestFrequency; }
    double HighestFrequency() const { return m_highestFrequency; }
    double LowestExposure() const { return m_lowestExposure; }
    double HighestExposure() const { return m_highestExposure; }

    /// Reads the file into the bands. What was read before an error stays.
    void ReadFile(const QString& path);
    void AddRange(CUnits::UnitType frequencyUnit, CUnits::UnitType exposureUnit, double frequency,
                  double exposure);
    void Clear();
    /// Converts the exposures from the units of the file to the display unit. A conversion overwrites the
    /// values that were read, so that every further one needs `reread`.
    void Convert(bool reread);

public slots:
    /// Converts anew when the display unit is another one than the last.
    void OnOperationParameterUnitChanged(CUnits::UnitType units);

signals:
    void ConvertedChanged(bool value);
    void FileErrorChanged(bool value);

private:
    void setConverted(bool value);
    void setFileError(bool value);
    void readRanges(QXmlStreamReader& reader);
    void widenFrequencies(double frequency);
    void widenExposures(double exposure);

    CLimitsFileOwner& m_owner;
    bool m_converted = false;
    bool m_fileError = false;
    QList<QSharedPointer<FrequencyRange>> m_ranges;
    double m_lowestFrequency = 0;
    double m_highestFrequency = 0;
    double m_lowestExposure = 0;
    double m_highestExposure = 0;
    CUnits::UnitType m_lastDisplayUnits = CUnits::UNKNOWN;
};
