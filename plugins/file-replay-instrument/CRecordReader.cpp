// SPDX-License-Identifier: MIT
#include "CRecordReader.h"

#include "CTextReader.h"

#include <QThread>
#include <QVector>

#include <cmath>

namespace {

constexpr int kColumnsWithUncertainty = 8;
constexpr int kInspectedRows = 400;

} // namespace

CRecordReader::CRecordReader(const QString& path) : m_file(path) {}

bool CRecordReader::Open()
{
    if (!m_file.open(QIODevice::ReadOnly) || !m_file.peek(512).contains("NorvaneXmlRecord") || !Rewind())
        return false;
    // The rate of the parameters is that of the block, which is not known if the record leaves it open.
    QVector<qint64> timesNs;
    RecordedSample sample;
    for (int i = 0; i < kInspectedRows && Next(sample); ++i)
        timesNs.append(sample.timeNs);
    if (timesNs.isEmpty() || m_info.unit == CUnits::UNKNOWN)
        return false;
    if (!(m_info.rate > 0) || !std::isfinite(m_info.rate))
        m_info.rate = estimateRate(timesNs);
    m_info.format = QStringLiteral("Record");
    m_info.hasDate = true;
    m_isInfoComplete = true;
    return Rewind();
}

bool CRecordReader::Rewind()
{
    if (!m_file.seek(0))
        return false;
    m_xml.setDevice(&m_file);
    m_separator = QStringLiteral(";");
    m_columns = kColumnsWithUncertainty;
    m_flux.clear();
    m_fluxAt = 0;
    return readHead();
}

bool CRecordReader::readHead()
{
    return m_xml.readNextStartElement() && m_xml.name() == QLatin1String("NorvaneXmlRecord") &&
           m_xml.attributes().value(QLatin1String("ver")) == QLatin1String("1.0");
}

bool CRecordReader::readNextFlux()
{
    while (!m_xml.atEnd()) {
        if (QThread::currentThread()->isInterruptionRequested())
            return false;
        if (m_xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (m_xml.name() == QLatin1String("dataset")) {
            const bool isOld = m_xml.attributes().value(QLatin1String("ver")) == QLatin1String("1.1");
            m_columns = isOld ? kColumnsWithUncertainty - 1 : kColumnsWithUncertainty;
        } else if (m_xml.name() == QLatin1String("headings")) {
            const QStringRef separator = m_xml.attributes().value(QLatin1String("colsep"));
            if (!separator.isEmpty())
                m_separator = separator.toString();
        } else if (m_xml.name() == QLatin1String("parameters") && !m_isInfoComplete) {
            readParameters(m_xml.readElementText(QXmlStreamReader::SkipChildElements));
        } else if (m_xml.name() == QLatin1String("flux")) {
            m_flux = m_xml.readElementText(QXmlStreamReader::SkipChildElements);
            m_fluxAt = 0;
            return true;
        }
    }
    return false;
}

void CRecordReader::readParameters(const QString& text)
{
    const auto entries = text.splitRef(QLatin1Char(' '));
    for (const QStringRef& entry : entries) {
        const int equals = entry.indexOf(QLatin1Char('='));
        const QStringRef key = entry.left(equals);
        const QStringRef value = entry.mid(equals + 1);
        if (key == QLatin1String("Units"))
            m_info.unit = TextToUnit(value.toString());
        else if (key == QLatin1String("AcqRate"))
            m_info.rate = value.toDouble();
    }
}

bool CRecordReader::Next(RecordedSample& sample)
{
    for (;;) {
        while (m_fluxAt < m_flux.size()) {
            int end = m_flux.indexOf(QLatin1Char('\n'), m_fluxAt);
            if (end < 0)
                end = m_flux.size();
            const QStringRef row(&m_flux, m_fluxAt, end - m_fluxAt);
            m_fluxAt = end + 1;
            if (parseRow(row, sample))
                return true;
        }
        if (!readNextFlux())
            return false;
    }
}

bool CRecordReader::parseRow(const QStringRef& row, RecordedSample& sample)
{
    const auto texts = row.split(m_separator);
    if (texts.size() < m_columns)
        return false;
    const std::optional<qint64> timeNs = m_timeParser.Parse(texts.at(0).toLatin1());
    if (!timeNs)
        return false;
    sample = {};
    sample.timeNs = *timeNs;
    const auto number = [&texts](int column) { return static_cast<double>(texts.at(column).toFloat()); };
    sample.magnitude = number(1);
    sample.alongBprime = number(2);
    sample.field = {number(3), number(4), number(5)};
    sample.temperature = texts.at(6).toUShort();
    if (m_columns == kColumnsWithUncertainty)
        sample.uncertainty = number(7);
    return sample.field.IsFinite();
}
