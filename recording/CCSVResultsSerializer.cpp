// SPDX-License-Identifier: GPL-3.0-or-later
#include "CCSVResultsSerializer.h"

#include "CDataSetMapping.h"
#include "CDataSetMeasurement.h"
#include "RecordFormat.h"

#include <QTextStream>

namespace {

using namespace RecordFormat;

// The side file counts its versions on its own.
const QLatin1String kCsvVersion("1.0");

void writeLine(QTextStream& stream, const char* key, const QString& value)
{
    stream << key << kSeparator << value << '\n';
}

void writeHead(QTextStream& stream, const CDataset& dataset, const Kind& kind)
{
    writeLine(stream, "Source", source());
    writeLine(stream, "Timestamp", timeOfSave());
    writeLine(stream, "Description", kind.description);
    stream << '\n';
    writeLine(stream, "Type", kBodyType);
    writeLine(stream, "Version", kCsvVersion);
    writeLine(stream, "Comment", dataset.Comment());
    writeLine(stream, "Instrument", dataset.InstrumentName());
    stream << '\n';
    const CMeasurementParameters* parameters = dataset.MeasurementParameters();
    writeLine(stream, "Parameters", parameters ? parameters->ToString(QString(kSeparator)) : QString());
    stream << '\n';
}

} // namespace

bool CCSVResultsSerializer::WriteMapping(const CDataSetMapping& dataset, QIODevice* device)
{
    if (dataset.MeasureBlocks()->empty())
        return false;

    QTextStream stream(device);
    writeHead(stream, dataset, kMapping);
    const QString headings = columnHeadings();
    for (const QSharedPointer<CMeasureBlockMapping>& block : *dataset.MeasureBlocks()) {
        writeLine(stream, "Position (x y z)", toText(block->Position));
        writeLine(stream, "Orientation (roll pitch yaw)", toText(block->Orientation));
        stream << headings << '\n';
        stream << block->FormatBlockAsText(QString(kSeparator)) << '\n';
        stream << '\n';
    }
    return true;
}

bool CCSVResultsSerializer::WriteMeasurement(const CDataSetMeasurement& dataset, QIODevice* device)
{
    if (dataset.MeasureBlocks()->empty())
        return false;

    QTextStream stream(device);
    writeHead(stream, dataset, kMeasurement);
    stream << columnHeadings() << '\n';
    for (const QSharedPointer<CMeasureBlock>& block : *dataset.MeasureBlocks())
        stream << block->FormatBlockAsText(QString(kSeparator)) << '\n';
    stream << '\n';
    return true;
}

bool CCSVResultsSerializer::ReadMapping(QIODevice* device, CDataSetMapping& dataset)
{
    Q_UNUSED(device)
    Q_UNUSED(dataset)
    return false;
}

bool CCSVResultsSerializer::ReadMeasurement(QIODevice* device, CDataSetMeasurement& dataset)
{
    Q_UNUSED(device)
    Q_UNUSED(dataset)
    return false;
}
