// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes as a record file: nothing may crash, and what was read must be written and read again to the same
// rows.

#include "CDataSetMapping.h"
#include "CDataSetMeasurement.h"
#include "CSettings.h"
#include "CXMLResultsSerializer.h"

#include <QBuffer>
#include <QLoggingCategory>

#include <cstdlib>

namespace {

const CSettings& settings()
{
    static const CSettings instance{QString()};
    return instance;
}

template <class Dataset> QString rowsOf(const Dataset& dataset)
{
    QString rows;
    for (const auto& block : *dataset.MeasureBlocks())
        rows += block->FormatBlockAsText(QStringLiteral(";")) + QLatin1Char('\n');
    return rows;
}

void checkMeasurement(QByteArray text)
{
    QBuffer source(&text);
    source.open(QIODevice::ReadOnly);
    CXMLResultsSerializer serializer;
    CDataSetMeasurement dataset(settings());
    serializer.ReadMeasurement(&source, dataset);

    QBuffer record;
    record.open(QIODevice::ReadWrite);
    if (!serializer.WriteMeasurement(dataset, &record))
        return;
    // Texts of the file may hold what XML cannot say; the rows always can be said.
    CDataSetMeasurement plain(settings());
    *plain.MeasureBlocks() = *dataset.MeasureBlocks();
    for (const auto& block : *plain.MeasureBlocks()) {
        block->SetComment(QString());
        // A time that is none is written as nothing, so that its nanoseconds are not found again.
        for (const auto& result : block->Results) {
            if (!result->Timestamp.isValid())
                result->TimestampNanoseconds = 0;
        }
    }
    QBuffer plainRecord;
    plainRecord.open(QIODevice::ReadWrite);
    serializer.WriteMeasurement(plain, &plainRecord);
    plainRecord.seek(0);
    CDataSetMeasurement again(settings());
    if (!serializer.ReadMeasurement(&plainRecord, again) || rowsOf(again) != rowsOf(plain))
        std::abort();
}

void checkMapping(QByteArray text)
{
    QBuffer source(&text);
    source.open(QIODevice::ReadOnly);
    CXMLResultsSerializer serializer;
    CDataSetMapping dataset(settings());
    serializer.ReadMapping(&source, dataset);
    QBuffer record;
    record.open(QIODevice::ReadWrite);
    serializer.WriteMapping(dataset, &record);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<int>(size));
    checkMeasurement(text);
    checkMapping(text);
    return 0;
}
