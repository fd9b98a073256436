// SPDX-License-Identifier: GPL-3.0-or-later
#include "LimitsXmlFile.h"

#include "CLimitsFileOwner.h"
#include "CUtils.h"
#include "Property.h"
#include "TagLengthGuard.h"
#include "Utf8XmlDevice.h"
#include "tFlux.h"

#include <QDebug>
#include <QFile>
#include <QXmlStreamReader>

namespace {

/// One band as it stands in the file. What a band does not give carries over from the band before.
struct Band
{
    double frequency = 0;
    CUnits::UnitType frequencyUnit = CUnits::UNKNOWN;
    double exposure = 0;
    CUnits::UnitType exposureUnit = CUnits::UNKNOWN;

    void read(QXmlStreamReader& reader);
};

void Band::read(QXmlStreamReader& reader)
{
    while (reader.readNextStartElement()) {
        if (reader.name() == QLatin1String("upperFreqLimit"))
            frequency = reader.readElementText().toDouble();
        else if (reader.name() == QLatin1String("freqUnits"))
            frequencyUnit = TextToUnit(reader.readElementText());
        else if (reader.name() == QLatin1String("exposureLimitValue"))
            exposure = reader.readElementText().toDouble();
        else if (reader.name() == QLatin1String("valueUnits"))
            exposureUnit = TextToUnit(reader.readElementText());
        else
            reader.skipCurrentElement();
    }
}

bool isLimitsRoot(const QXmlStreamReader& reader)
{
    return reader.name() == QLatin1String("NorvaneExposureLimitsFile") &&
           reader.attributes().value(QLatin1String("ver")) == QLatin1String("1.0");
}

void showUnreadable()
{
    CUtils::ShowError(LimitsXmlFile::tr("Could not load file"), LimitsXmlFile::tr("Cannot read the file"));
}

void refuse(QXmlStreamReader& reader)
{
    reader.raiseError(LimitsXmlFile::tr("Incorrect file"));
    CUtils::ShowError(LimitsXmlFile::tr("Could not load file"),
                      LimitsXmlFile::tr("The file is not a valid Norvane XML limits file"));
}

/// A value that is not a number lies outside of nothing.
void widen(double& lowest, double& highest, double value)
{
    if (value < lowest)
        lowest = value;
    if (value > highest)
        highest = value;
}

} // namespace

LimitsXmlFile::LimitsXmlFile(CLimitsFileOwner& owner, QObject* parent) : XmlFile(parent), m_owner(owner) {}

void LimitsXmlFile::ReadFile(const QString& path)
{
    if (!QFile::exists(path)) {
        setFileError(true);
        qWarning().noquote().nospace() << "Cannot read the file. Limit File doesn't exist : " << path;
        m_owner.ForgetLimitsFile();
        showUnreadable();
        return;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        setFileError(true);
        qWarning().noquote().nospace() << "Cannot read the file. Limit file path : " << path;
        showUnreadable();
        return;
    }

    Utf8XmlDevice text(&file);
    TagLengthGuard device(&text);
    QXmlStreamReader reader(&device);
    if (!reader.readNextStartElement() || !isLimitsRoot(reader))
        refuse(reader);
    Clear();
    readRanges(reader);
    setFileError(reader.hasError());

    file.close();
    if (reader.hasError())
        qDebug().noquote().nospace() << "Error: Failed to parse file : " << path << " : "
                                     << reader.errorString();
    else if (file.error() != QFileDevice::NoError)
        qDebug().noquote().nospace() << "Error: Cannot read file " << path << ": " << file.errorString();
    m_lastDisplayUnits = m_owner.LimitsDisplayUnits();
}

void LimitsXmlFile::readRanges(QXmlStreamReader& reader)
{
    Band band;
    while (reader.readNextStartElement()) {
        if (reader.name() != QLatin1String("freqRange")) {
            refuse(reader);
            return;
        }
        band.read(reader);
        // A band that breaks off is none.
        if (!reader.hasError())
            AddRange(band.frequencyUnit, band.exposureUnit, band.frequency, band.exposure);
    }
}

void LimitsXmlFile::AddRange(CUnits::UnitType frequencyUnit, CUnits::UnitType exposureUnit, double frequency,
                             double exposure)
{
    const auto range = QSharedPointer<FrequencyRange>::create();
    range->SetUpperFrequencyLimitUnit(frequencyUnit);
    range->SetExposureLimitUnit(exposureUnit);
    range->SetUpperFrequencyLimitValue(frequency);
    range->SetExposureLimitValue(exposure);
    m_ranges.append(range);
    widenFrequencies(frequency);
    widenExposures(exposure);
}

void LimitsXmlFile::Clear()
{
    m_ranges.clear();
    m_lowestFrequency = 0;
    m_highestFrequency = 0;
    m_lowestExposure = 0;
    m_highestExposure = 0;
    setConverted(false);
}

void LimitsXmlFile::Convert(bool reread)
{
    setConverted(false);
    if (reread) {
        Clear();
        const QString path = m_owner.LimitsFilePath();
        if (!path.isEmpty() && QFile::exists(path)) {
            ReadFile(path);
        } else {
            m_owner.ForgetLimitsFile();
            m_owner.SetLimitsFileLoaded(false);
        }
    }
    const CUnits::UnitType displayUnits = m_owner.LimitsDisplayUnits();
    const QList<QSharedPointer<FrequencyRange>> ranges = m_ranges;
    for (const QSharedPointer<FrequencyRange>& range : ranges) {
        tFlux exposure = 0;
        ConvertUnits(range->ExposureLimitUnit(), displayUnits, exposure,
                     static_cast<tFlux>(range->ExposureLimitValue()));
        range->SetExposureLimitValue(static_cast<double>(exposure));
        widenExposures(range->ExposureLimitValue());
    }
    setConverted(!ranges.isEmpty());
}

void LimitsXmlFile::OnOperationParameterUnitChanged(CUnits::UnitType units)
{
    if (units == m_lastDisplayUnits)
        return;
    m_lastDisplayUnits = units;
    if (m_owner.LimitsFileLoaded())
        Convert(true);
}

void LimitsXmlFile::setConverted(bool value)
{
    storeAndEmitOnChange(this, m_converted, value, &LimitsXmlFile::ConvertedChanged);
}

void LimitsXmlFile::setFileError(bool value)
{
    storeAndEmitOnChange(this, m_fileError, value, &LimitsXmlFile::FileErrorChanged);
}

void LimitsXmlFile::widenFrequencies(double frequency)
{
    widen(m_lowestFrequency, m_highestFrequency, frequency);
}

void LimitsXmlFile::widenExposures(double exposure)
{
    widen(m_lowestExposure, m_highestExposure, exposure);
}
