// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeasureBlock.h"
#include "CMeasureBlockMapping.h"

#include <QBuffer>
#include <QDateTime>
#include <QSharedPointer>
#include <QString>

/// Short ways to blocks and record files written by hand.
namespace RecordTestSupport {

inline QSharedPointer<CFieldIntensityResult> sampleAt(const QDateTime& time, quint32 nanoseconds,
                                                      tFlux value = 1)
{
    auto sample = QSharedPointer<CFieldIntensityResult>::create();
    sample->Timestamp = time;
    sample->TimestampNanoseconds = nanoseconds;
    sample->SetB(value);
    return sample;
}

/// Local time on the first of March 2024, which is no day of a clock change anywhere.
inline QDateTime timeAt(int millisecondOfDay)
{
    return QDateTime(QDate(2024, 3, 1), QTime::fromMSecsSinceStartOfDay(millisecondOfDay));
}

/// Samples `periodMs` apart.
template <class Block = CMeasureBlock>
QSharedPointer<Block> blockOf(int samples, int startMs = 36000000, int periodMs = 10)
{
    auto block = QSharedPointer<Block>::create();
    for (int i = 0; i < samples; ++i) {
        const int ms = startMs + i * periodMs;
        block->Results.append(sampleAt(timeAt(ms), static_cast<quint32>(ms % 1000) * 1000000U));
    }
    return block;
}

/// A record with these elements in its dataset, as another program might write it.
inline QByteArray record(const QByteArray& datasetContent, const QByteArray& version = "1.2",
                         const QByteArray& kind = "MEASUREMENT")
{
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<NorvaneXmlRecord ver="1.0">
 <header>
  <src>Hand</src>
  <dateTime8601>2024.03.01T10:00:00</dateTime8601>
  <descr>by hand</descr>
 </header>
 <body type="tQDR_BODY_KESTRIX" ver="1.1">
  <comment>whole record</comment>
  <instrument>Probe 7</instrument>
  <dataset type="tQDR_DATASET_KESTRIX_)" +
           kind + "\" ver=\"" + version + "\">" + datasetContent + R"(</dataset>
 </body>
</NorvaneXmlRecord>
)";
}

inline QByteArray measurementsWithFlux(const QByteArray& flux)
{
    return "<measurements><flux>" + flux + "</flux></measurements>";
}

} // namespace RecordTestSupport
