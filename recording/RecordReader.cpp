// SPDX-License-Identifier: GPL-3.0-or-later
#include "RecordReader.h"

#include "CDataset.h"
#include "CMeasureBlock.h"
#include "EnumTexts.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace {

constexpr int kParameterCount = 11;
constexpr int kMaxDepth = 256;
/// Characters. The predefined entities do not count.
constexpr int kMaxEntityExpansion = 64;

/// Sets the field that stands at this position of the parameters; the key is not looked at.
void setParameter(CMeasurementParameters& parameters, int position, const QString& text)
{
    switch (position) {
    case 0: {
        const CUnits::UnitType units = TextToUnit(text);
        parameters.SetUnits(units);
        parameters.SetDisplayUnits(units);
        parameters.SetUncertaintyUnits(GetUncertaintyUnit(units));
        break;
    }
    case 1:
        parameters.SetRange(text.toFloat());
        break;
    case 2:
        parameters.SetAutoRange(text.toInt() != 0);
        break;
    case 3:
        parameters.SetTriggerMode(TextToTriggerMode(text));
        break;
    case 4:
        parameters.SetAcquisitionRate(text.toDouble());
        break;
    case 5:
        parameters.SetDisplayRate(text.toDouble());
        break;
    case 6:
        parameters.SetAveraging(text.toInt());
        break;
    case 7:
        parameters.SetFrequencyMin(text.toDouble());
        break;
    case 8:
        parameters.SetFrequencyMax(text.toDouble());
        break;
    case 9:
        parameters.SetNumberOfBins(text.toDouble());
        break;
    case 10:
        parameters.SetBlockSize(text.toInt());
        break;
    default:
        break;
    }
}

} // namespace

RecordReader::RecordReader(QIODevice* device, const RecordFormat::Kind& kind, CDataset& dataset, State& state)
    : m_text(device), m_blocks(&m_text), m_device(&m_blocks), m_xml(&m_device), m_kind(kind),
      m_dataset(dataset), m_state(state)
{
    m_xml.setEntityExpansionLimit(kMaxEntityExpansion);
    // Records have no namespaces, and the XML reader would look for that of each element in all that its
    // parents declare. Names are without their prefix either way.
    m_xml.setNamespaceProcessing(false);
}

bool RecordReader::read()
{
    using namespace RecordFormat;
    if (!readRoot())
        return fail(QStringLiteral("The file is empty"));
    if (!isAt(kRoot) || attribute(kVersion) != kRootVersion)
        return fail(m_kind.notOfThisKind);
    while (m_xml.readNextStartElement()) {
        if (isAt(kHeader)) {
            readHeader();
        } else if (isAt(kBody) && attribute(kType) == kBodyType) {
            if (!readBody())
                return false;
        } else {
            skipElement();
        }
    }
    return true;
}

bool RecordReader::readRoot()
{
    while (!m_xml.atEnd()) {
        const QXmlStreamReader::TokenType token = m_xml.readNext();
        if (token == QXmlStreamReader::StartElement)
            return true;
        if (token != QXmlStreamReader::DTD)
            continue;
        // Its entities may stand for tags.
        m_blocks.forgoPlainContent();
        if (m_xml.text().contains(QLatin1String("<!ATTLIST")))
            m_xml.raiseError(QStringLiteral("Default attributes are not supported"));
    }
    return false;
}

bool RecordReader::setPlace(Part part, const QString& text)
{
    Q_UNUSED(part)
    Q_UNUSED(text)
    return true;
}

void RecordReader::readHeader()
{
    while (m_xml.readNextStartElement()) {
        if (isAt(RecordFormat::kDateTime))
            m_dataset.AssignDate(m_xml.readElementText());
        else
            skipElement();
    }
}

bool RecordReader::readBody()
{
    using namespace RecordFormat;
    const QString version = attribute(kVersion);
    if (version != kBodyVersion)
        return fail(QStringLiteral("The Norvane XML record file body is not supported. (read body v%1).")
                        .arg(version));
    while (m_xml.readNextStartElement()) {
        if (isAt(kInstrument)) {
            m_dataset.SetInstrumentName(m_xml.readElementText());
        } else if (isAt(kComment)) {
            m_dataset.SetComment(m_xml.readElementText());
        } else if (isAt(kDataset)) {
            if (!readDataset())
                return false;
        } else {
            skipElement();
        }
    }
    return true;
}

bool RecordReader::readDataset()
{
    using namespace RecordFormat;
    if (attribute(kType) != m_kind.datasetType)
        return fail(QStringLiteral("The file does not contain a ") + kDataset + QStringLiteral(" of type ") +
                    m_kind.datasetType);
    m_state.formatVersion = attribute(kVersion);
    const bool hasUncertainty = m_state.formatVersion == kDatasetVersion;
    if (!hasUncertainty && m_state.formatVersion != kDatasetVersionWithoutUncertainty)
        return fail(QStringLiteral("The measurement dataset type is not supported. (read body v%1).")
                        .arg(m_state.formatVersion));

    m_fluxReader.setHasUncertaintyColumn(hasUncertainty);
    m_fluxReader.setSeparator(QString(kSeparator));
    while (m_xml.readNextStartElement()) {
        if (isAt(kHeadings)) {
            if (m_xml.attributes().hasAttribute(kColumnSeparator))
                m_fluxReader.setSeparator(attribute(kColumnSeparator));
            skipElement();
        } else if (isAt(kParameters)) {
            readParameters();
        } else if (isAt(kMeasurements)) {
            if (!readMeasurements())
                return false;
        } else {
            skipElement();
        }
    }
    setResultsCount();
    return true;
}

void RecordReader::readParameters()
{
    auto owned = std::make_unique<CMeasurementParameters>();
    CMeasurementParameters& parameters = *owned;
    // The set describes what was recorded. Without its couplings no field is derived from another one, and
    // each stays as the file has it.
    QObject::disconnect(&parameters, nullptr, &parameters, nullptr);
    // All who hear of a set hold this one instead of the one before. Only the set of the previous load may be
    // held by a view that is at work now.
    using Replaced = CDataset::Replaced;
    const bool isFirst = !std::exchange(m_hasReadParameters, true);
    m_dataset.AdoptMeasurementParameters(std::move(owned), isFirst ? Replaced::Retire : Replaced::Delete);

    const QString text = m_xml.readElementText();
    int begin = 0;
    for (int position = 0; position < kParameterCount && begin <= text.size(); ++position) {
        const int separator = text.indexOf(RecordFormat::kParametersSeparator, begin);
        const int end = separator < 0 ? text.size() : separator;
        const QStringRef entry = text.midRef(begin, end - begin);
        if (entry.count(QLatin1Char('=')) == 1)
            setParameter(parameters, position, entry.mid(entry.indexOf(QLatin1Char('=')) + 1).toString());
        begin = end + 1;
    }
}

bool RecordReader::readMeasurements()
{
    CMeasureBlock& block = appendBlock();
    const bool isRead = readBlock(block);
    m_fluxReader.finishBlock(block);
    return isRead;
}

bool RecordReader::readBlock(CMeasureBlock& block)
{
    if (!readPlainContent(block))
        return false;
    // Elements that are not known are not skipped: the walk goes on inside them.
    int depth = 1;
    while (depth > 0 && !m_xml.atEnd()) {
        const QXmlStreamReader::TokenType token = m_xml.readNext();
        if (token == QXmlStreamReader::EndElement) {
            --depth;
        } else if (token == QXmlStreamReader::StartElement) {
            const Part part = partOf(m_xml.name());
            if (part == Part::Unknown)
                refuseDepth(++depth);
            else if (!setPart(part, m_xml.readElementText(), block))
                return false;
        }
    }
    return true;
}

bool RecordReader::readPlainContent(CMeasureBlock& block)
{
    const BlockContentDevice::Elements elements = m_blocks.plainElements();
    const auto isKnown = [this](const BlockContentDevice::Element& element) {
        return partOf(element.name) != Part::Unknown;
    };
    if (elements.isEmpty() || !std::all_of(elements.begin(), elements.end(), isKnown))
        return true;
    for (const BlockContentDevice::Element& element : elements) {
        // One text for all blocks stays in the processor's cache, and no hole between their samples is left
        // by another.
        m_plainText.resize(element.text.size());
        std::transform(element.text.begin(), element.text.end(), m_plainText.begin(),
                       [](char character) { return QLatin1Char(character); });
        if (!setPart(partOf(element.name), m_plainText, block))
            return false;
    }
    m_blocks.skipPlainElements();
    return true;
}

template <class Name> RecordReader::Part RecordReader::partOf(const Name& name) const
{
    using namespace RecordFormat;
    if (name == kFlux)
        return Part::Flux;
    if (name == kComment)
        return Part::Comment;
    if (hasPlaces() && name == kPosition)
        return Part::Position;
    if (hasPlaces() && name == kOrientation)
        return Part::Orientation;
    return Part::Unknown;
}

bool RecordReader::setPart(Part part, const QString& text, CMeasureBlock& block)
{
    if (part == Part::Flux)
        m_state.sampleCount += m_fluxReader.read(text, block);
    else if (part == Part::Comment)
        block.SetComment(text);
    else if (!m_xml.hasError()) // what is cut off is no place
        return setPlace(part, text);
    return true;
}

void RecordReader::skipElement()
{
    int depth = 1;
    while (depth > 0 && !m_xml.atEnd()) {
        const QXmlStreamReader::TokenType token = m_xml.readNext();
        if (token == QXmlStreamReader::EndElement)
            --depth;
        else if (token == QXmlStreamReader::StartElement)
            refuseDepth(++depth);
    }
}

void RecordReader::refuseDepth(int depth)
{
    if (depth > kMaxDepth)
        m_xml.raiseError(QStringLiteral("The elements are nested too deeply"));
}

bool RecordReader::fail(const QString& message)
{
    m_state.errorMessage = message;
    return false;
}

QString RecordReader::attribute(QLatin1String name) const
{
    return m_xml.attributes().value(name).toString();
}
