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

    /// Reads up to the first samples, and never more than the head of the file; false if the file is no
    /// record.
    bool Open();

    bool Next(RecordedSample& sample) override;
    bool Rewind() override;

private:
    bool startDocument();
    bool readHead();
    QString readText();
    bool readToken();
    bool readNextFlux();
    void readParameters(const QString& text);
    bool parseRow(const QStringRef& row, RecordedSample& sample);

    QFile m_file;
    QXmlStreamReader m_xml;
    CTimeParser m_timeParser{CTimeParser::Zone::Local};
    QString m_separator;
    bool m_isInfoComplete = false; ///< after Open() the parameters are not read again
    int m_depth = 0;               ///< elements open
    int m_headElements = 0;        ///< elements seen before Open() is done
    int m_columns = 8;
    QString m_flux; ///< rows of the block being read
    int m_fluxAt = 0;
};
