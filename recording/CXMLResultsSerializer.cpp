// SPDX-License-Identifier: GPL-3.0-or-later
#include "CXMLResultsSerializer.h"

#include "CDataSetMapping.h"
#include "CDataSetMeasurement.h"
#include "NumberText.h"
#include "RecordFormat.h"

#include <QFileDevice>
#include <QXmlStreamWriter>

#include <algorithm>
#include <array>

namespace {

using namespace RecordFormat;

/// Without the characters that XML 1.0 has no way to write. One of them, pasted into a comment, must not cost
/// the record.
QString legalText(const QString& text)
{
    QString legal;
    legal.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar character = text[i];
        if (character.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            legal += character;
            legal += text[++i];
            continue;
        }
        const ushort code = character.unicode();
        const bool isControl = code < 0x20 && code != '\t' && code != '\n' && code != '\r';
        if (!isControl && !character.isSurrogate() && code != 0xFFFE && code != 0xFFFF)
            legal += character;
    }
    return legal;
}

void writeText(QXmlStreamWriter& writer, QLatin1String element, const QString& text)
{
    writer.writeTextElement(element, legalText(text));
}

void writeHead(QXmlStreamWriter& writer, const CDataset& dataset, const Kind& kind)
{
    writer.setAutoFormatting(true);
    writer.writeStartDocument(QStringLiteral("1.0"));
    writer.writeStartElement(kRoot);
    writer.writeAttribute(kVersion, kRootVersion);

    writer.writeStartElement(kHeader);
    writer.writeTextElement(kSource, source());
    writer.writeTextElement(kDateTime, timeOfSave());
    writer.writeTextElement(kDescription, kind.description);
    writer.writeEndElement();

    writer.writeStartElement(kBody);
    writer.writeAttribute(kType, kBodyType);
    writer.writeAttribute(kVersion, kBodyVersion);
    writeText(writer, kComment, dataset.Comment());
    writeText(writer, kInstrument, dataset.InstrumentName());

    writer.writeStartElement(kDataset);
    writer.writeAttribute(kType, kind.datasetType);
    writer.writeAttribute(kVersion, kDatasetVersion);
    writer.writeStartElement(kHeadings);
    writer.writeAttribute(kColumnSeparator, QString(kSeparator));
    writer.writeCharacters(columnHeadings());
    writer.writeEndElement();
    const CMeasurementParameters* parameters = dataset.MeasurementParameters();
    writer.writeTextElement(kParameters,
                            parameters ? parameters->ToString(QString(kParametersSeparator)) : QString());
}

void writePlace(QXmlStreamWriter& writer, const CMeasureBlockMapping& block)
{
    writer.writeStartElement(kPosition);
    writer.writeAttribute(kUnit, QString());
    writer.writeCharacters(toText(block.Position));
    writer.writeEndElement();
    writer.writeStartElement(kOrientation);
    writer.writeAttribute(kUnit, QStringLiteral("degree"));
    writer.writeCharacters(toText(block.Orientation));
    writer.writeEndElement();
}

void writePlace(QXmlStreamWriter& writer, const CMeasureBlock& block)
{
    Q_UNUSED(writer)
    Q_UNUSED(block)
}

template <class Dataset> bool write(const Dataset& dataset, const Kind& kind, QIODevice* device)
{
    if (dataset.MeasureBlocks()->empty())
        return false;

    QXmlStreamWriter writer(device);
    writeHead(writer, dataset, kind);
    for (const auto& block : *dataset.MeasureBlocks()) {
        writer.writeStartElement(kMeasurements);
        writeText(writer, kComment, block->Comment());
        writePlace(writer, *block);
        writer.writeTextElement(kFlux, block->FormatBlockAsText(QString(kSeparator)));
        writer.writeEndElement();
        if (writer.hasError())
            return false;
    }
    writer.writeEndDocument();
    if (writer.hasError())
        return false;
    // A file has taken its last bytes into its buffer only; a full disk shows here.
    auto* file = qobject_cast<QFileDevice*>(device);
    return !file || (file->flush() && file->error() == QFileDevice::NoError);
}

double toCoordinate(QStringView text)
{
    const QChar* position = text.begin();
    double value = 0;
    return readPlainDecimal(position, text.end(), value) && position == text.end() ? value : text.toDouble();
}

/// Whether there are just three parts.
bool readThreeParts(const QString& text, std::array<double, 3>& parts)
{
    const QChar* begin = text.constBegin();
    for (size_t i = 0; i < parts.size(); ++i) {
        const QChar* const end = std::find(begin, text.constEnd(), kSeparator);
        const bool isLast = i + 1 == parts.size();
        if ((end == text.constEnd()) != isLast)
            return false;
        parts[i] = toCoordinate(QStringView(begin, end));
        begin = end + 1;
    }
    return true;
}

class MeasurementRecordReader : public RecordReader
{
public:
    MeasurementRecordReader(QIODevice* device, CDataSetMeasurement& dataset, State& state)
        : RecordReader(device, kMeasurement, dataset, state), m_dataset(dataset)
    {
    }

private:
    CMeasureBlock& appendBlock() override
    {
        m_dataset.MeasureBlocks()->push_back(QSharedPointer<CMeasureBlock>::create());
        return *m_dataset.MeasureBlocks()->back();
    }

    void setResultsCount() override { m_dataset.SetResultsCount(static_cast<quint64>(state().sampleCount)); }

    CDataSetMeasurement& m_dataset;
};

class MappingRecordReader : public RecordReader
{
public:
    MappingRecordReader(QIODevice* device, CDataSetMapping& dataset, State& state)
        : RecordReader(device, kMapping, dataset, state), m_dataset(dataset)
    {
    }

private:
    CMeasureBlock& appendBlock() override
    {
        m_dataset.MeasureBlocks()->push_back(QSharedPointer<CMeasureBlockMapping>::create());
        return *m_dataset.MeasureBlocks()->back();
    }

    void setResultsCount() override { m_dataset.SetResultsCount(m_dataset.MeasureBlocks()->size()); }

    bool hasPlaces() const override { return true; }

    bool setPlace(Part part, const QString& text) override
    {
        std::array<double, 3> parts{};
        if (!readThreeParts(text, parts))
            return false;
        CMeasureBlockMapping& block = *m_dataset.MeasureBlocks()->back();
        if (part == Part::Position) {
            block.Position.SetX(parts[0]);
            block.Position.SetY(parts[1]);
            block.Position.SetZ(parts[2]);
        } else {
            block.Orientation.SetRoll(parts[0]);
            block.Orientation.SetPitch(parts[1]);
            block.Orientation.SetYaw(parts[2]);
        }
        return true;
    }

    CDataSetMapping& m_dataset;
};

} // namespace

bool CXMLResultsSerializer::WriteMapping(const CDataSetMapping& dataset, QIODevice* device)
{
    return write(dataset, kMapping, device);
}

bool CXMLResultsSerializer::WriteMeasurement(const CDataSetMeasurement& dataset, QIODevice* device)
{
    return write(dataset, kMeasurement, device);
}

bool CXMLResultsSerializer::ReadMapping(QIODevice* device, CDataSetMapping& dataset)
{
    return MappingRecordReader(device, dataset, m_state).read();
}

bool CXMLResultsSerializer::ReadMeasurement(QIODevice* device, CDataSetMeasurement& dataset)
{
    m_state.sampleCount = 0;
    return MeasurementRecordReader(device, dataset, m_state).read();
}
