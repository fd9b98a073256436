// SPDX-License-Identifier: MIT
#include "CRecordReader.h"

#include "CTextReader.h"

#include <QThread>
#include <QVector>

#include <cmath>

namespace {

constexpr int kColumnsWithUncertainty = 8;
constexpr int kInspectedRows = 400;
// Files that are no records are looked at, too, while the program starts: what does not look like a record
// written here must not cost time.
constexpr qint64 kMaxHead = 1 << 20;
constexpr int kMaxTagLength = 4096;
constexpr int kMaxDepth = 16;
constexpr int kMaxHeadElements = 10000;

// A row is never cut in two; a block that is cut ends with its last whole row.
QByteArray headOf(QFile& file)
{
    QByteArray head = file.read(kMaxHead);
    if (file.atEnd())
        return head;
    head.truncate(head.lastIndexOf('\n') + 1);
    return head + "</flux>";
}

// Whether every tag has a sensible length, and nothing but elements and comments is there.
bool hasPlainTags(const QByteArray& xml)
{
    int at = 0;
    while ((at = xml.indexOf('<', at)) >= 0) {
        if (xml.mid(at, 4) == "<!--") {
            at = xml.indexOf("-->", at);
            if (at < 0)
                return false;
            continue;
        }
        if (xml.mid(at, 2) == "<!")
            return false;
        const int start = at;
        char quote = 0;
        for (; at < xml.size() && (quote != 0 || xml.at(at) != '>'); ++at) {
            const char c = xml.at(at);
            if (at - start > kMaxTagLength)
                return false;
            if (quote == 0 && (c == '"' || c == '\''))
                quote = c;
            else if (c == quote)
                quote = 0;
        }
    }
    return true;
}

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
    m_depth = 0;
    m_headElements = 0;
    m_separator = QStringLiteral(";");
    m_columns = kColumnsWithUncertainty;
    m_flux.clear();
    m_fluxAt = 0;
    return startDocument() && readHead();
}

bool CRecordReader::startDocument()
{
    if (m_isInfoComplete) {
        m_xml.setDevice(&m_file);
        return true;
    }
    const QByteArray head = headOf(m_file);
    if (!hasPlainTags(head))
        return false;
    m_xml.clear();
    // As text, so that no encoding declared in the file changes what was just looked at.
    m_xml.addData(QString::fromUtf8(head));
    return true;
}

bool CRecordReader::readToken()
{
    switch (m_xml.readNext()) {
    case QXmlStreamReader::StartElement:
        ++m_depth;
        break;
    case QXmlStreamReader::EndElement:
        --m_depth;
        break;
    case QXmlStreamReader::DTD:
        m_depth = kMaxDepth + 1; // records have none
        break;
    default:
        break;
    }
    if (!m_isInfoComplete && m_xml.isStartElement() && ++m_headElements > kMaxHeadElements)
        return false;
    return m_depth <= kMaxDepth && !m_xml.hasError() && !m_xml.atEnd() &&
           !QThread::currentThread()->isInterruptionRequested();
}

QString CRecordReader::readText()
{
    const int depth = m_depth;
    QString text;
    while (readToken() && m_depth >= depth) {
        if (m_xml.isCharacters() && m_depth == depth)
            text += m_xml.text();
    }
    return text;
}

bool CRecordReader::readHead()
{
    while (readToken() && !m_xml.isStartElement()) {
    }
    return m_xml.isStartElement() && m_depth == 1 && m_xml.name() == QLatin1String("NorvaneXmlRecord") &&
           m_xml.attributes().value(QLatin1String("ver")) == QLatin1String("1.0");
}

bool CRecordReader::readNextFlux()
{
    while (readToken()) {
        if (!m_xml.isStartElement())
            continue;
        if (m_xml.name() == QLatin1String("dataset")) {
            const bool isOld = m_xml.attributes().value(QLatin1String("ver")) == QLatin1String("1.1");
            m_columns = isOld ? kColumnsWithUncertainty - 1 : kColumnsWithUncertainty;
        } else if (m_xml.name() == QLatin1String("headings")) {
            const QStringRef separator = m_xml.attributes().value(QLatin1String("colsep"));
            if (!separator.isEmpty())
                m_separator = separator.toString();
        } else if (m_xml.name() == QLatin1String("parameters") && !m_isInfoComplete) {
            readParameters(readText());
        } else if (m_xml.name() == QLatin1String("flux")) {
            m_flux = readText();
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
