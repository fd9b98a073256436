// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "BlockContentDevice.h"
#include "FluxReader.h"
#include "RecordFormat.h"
#include "TagLengthGuard.h"
#include "Utf8XmlDevice.h"

#include <QString>
#include <QXmlStreamReader>

class CDataset;
class CMeasureBlock;
class QIODevice;

/// One walk over the stream of a record file. What differs between the two kinds of records is left to a
/// derived class.
///
/// Files may be hostile. What no record has counts as an XML error: elements nested hundreds deep, tags of
/// thousands of characters, internal entities that expand to more than a few characters, default attributes,
/// unknown encodings. What is left takes time and memory in proportion to the size of the file, at worst for
/// a mapping that is all empty blocks: of each, fifteen characters become objects of 560 bytes.
class RecordReader
{
public:
    /// What the serializer keeps of its reads.
    struct State
    {
        QString errorMessage;
        qint32 sampleCount = 0;
        QString formatVersion;
    };

    RecordReader(QIODevice* device, const RecordFormat::Kind& kind, CDataset& dataset, State& state);
    virtual ~RecordReader() = default;
    Q_DISABLE_COPY(RecordReader)

    bool read();

protected:
    /// A new block at the end of the dataset's queue.
    virtual CMeasureBlock& appendBlock() = 0;
    /// Called at the end of a dataset.
    virtual void setResultsCount() = 0;
    /// An element of a block.
    enum class Part { Unknown, Comment, Flux, Position, Orientation };
    /// Whether records of this kind know a place of each block.
    virtual bool hasPlaces() const { return false; }
    /// Sets the position or the orientation of the newest block. On false the whole read ends.
    virtual bool setPlace(Part part, const QString& text);

    const State& state() const { return m_state; }

private:
    void readHeader();
    bool readBody();
    bool readDataset();
    void readParameters();
    bool readRoot();
    bool readMeasurements();
    bool readBlock(CMeasureBlock& block);
    /// Reads the whole content if it is plain. On false the whole read ends.
    bool readPlainContent(CMeasureBlock& block);
    template <class Name> Part partOf(const Name& name) const;
    bool setPart(Part part, const QString& text, CMeasureBlock& block);
    void skipElement();
    void refuseDepth(int depth);
    bool fail(const QString& message);
    QString attribute(QLatin1String name) const;
    bool isAt(QLatin1String elementName) const { return m_xml.name() == elementName; }

    Utf8XmlDevice m_text;
    BlockContentDevice m_blocks;
    TagLengthGuard m_device;
    QXmlStreamReader m_xml;
    const RecordFormat::Kind& m_kind;
    CDataset& m_dataset;
    State& m_state;
    FluxReader m_fluxReader;
    QString m_plainText;
    bool m_hasReadParameters = false;
};
