// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CResultsSerializer.h"
#include "RecordReader.h"

#include <QString>

/// Writer and reader of record files (".qdr.xml").
///
/// Reading is strict about the root, the versions and the type of the dataset, and lenient below: an XML
/// error there ends the walk with the blocks read so far and a true result.
class CXMLResultsSerializer : public CResultsSerializer
{
    Q_OBJECT

public:
    using CResultsSerializer::CResultsSerializer;

    /// False without blocks, when nothing is written, and when the device did not take all bytes.
    bool WriteMapping(const CDataSetMapping& dataset, QIODevice* device) override;
    bool WriteMeasurement(const CDataSetMeasurement& dataset, QIODevice* device) override;
    bool ReadMapping(QIODevice* device, CDataSetMapping& dataset) override;
    bool ReadMeasurement(QIODevice* device, CDataSetMeasurement& dataset) override;

    QString ErrorMessage() const
    {
        return m_state.errorMessage;
    } ///< text of the last failure; a success keeps it
    qint32 SampleCount() const
    {
        return m_state.sampleCount;
    } ///< samples read by the last ReadMeasurement so far
    QString FormatVersion() const { return m_state.formatVersion; } ///< version of the dataset last read

private:
    RecordReader::State m_state;
};
