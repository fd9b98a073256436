// SPDX-License-Identifier: GPL-3.0-or-later
#include "SettingsFile.h"

#include <QCoreApplication>
#include <QDebug>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

static const QString kRootElement = QStringLiteral("SETTINGS");

static void readElement(QXmlStreamReader& xml, const SettingsReaders& readers)
{
    const auto reader = readers.constFind(xml.name().toString());
    if (reader == readers.constEnd()) {
        xml.skipCurrentElement();
        return;
    }
    const QString text = xml.readElementText();
    // Where the file breaks off inside an element, the text so far is not a value.
    if (!xml.hasError())
        (*reader)(text);
}

void ReadSettingsFile(const QString& path, const SettingsReaders& readers)
{
    QFile file(path);
    if (!file.exists())
        return;
    QXmlStreamReader xml;
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        xml.setDevice(&file);
        if (xml.readNextStartElement()) {
            if (xml.name() == kRootElement) {
                while (xml.readNextStartElement())
                    readElement(xml, readers);
            } else {
                xml.raiseError(QCoreApplication::translate("SettingsFile", "Incorrect file"));
            }
        }
        file.close();
    }
    if (xml.hasError())
        qDebug().noquote().nospace() << "Error: Failed to parse file : " << path << " : "
                                     << xml.errorString();
    else if (file.error() != QFile::NoError)
        qDebug().noquote().nospace() << "Error: Cannot read file " << path << ": " << file.errorString();
}

void WriteSettingsFile(QFile& file, const QVector<SettingsEntry>& entries)
{
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(kRootElement);
    for (const SettingsEntry& entry : entries)
        xml.writeTextElement(QLatin1String(entry.key), entry.text);
    xml.writeEndElement();
    xml.writeEndDocument();
    file.close();
}
