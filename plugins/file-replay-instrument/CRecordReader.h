// SPDX-License-Identifier: MIT
#pragma once

#include "CRecordingReader.h"
#include "CTimeParser.h"

#include <QFile>
#include <QXmlStreamReader>

/// The application's own record files, measurement and mapping, dataset versions 1.1 and 1.2.
class CRecordReader : public CRecordingReader
{
public:
    explicit CRecordReader(const QString& path);

    /// Reads up to the first samples; false if the file is no record.
    bool Open();

    bool Next(RecordedSample& sample) override;
    bool Rewind() override;

private:
    bool readHead();
    bool readNextFlux();
    void readParameters(const QString& text);
    bool parseRow(const QStringRef& row, RecordedSample& sample);

    QFile m_file;
    QXmlStreamReader m_xml;
    CTimeParser m_timeParser{CTimeParser::Zone::Local};
    QString m_separator;
    bool m_isInfoComplete = false; ///< after Open() the parameters are not read again
    int m_columns = 8;
    QString m_flux; ///< rows of the block being read
    int m_fluxAt = 0;
};
