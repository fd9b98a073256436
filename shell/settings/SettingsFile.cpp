// SPDX-License-Identifier: GPL-3.0-or-later
#include "SettingsFile.h"

#include <QCoreApplication>
#include <QDebug>
#include <QXmlStreamWriter>

static const QString kRootElement = QStringLiteral("SETTINGS");

void ReadSettingsFile(const QString& path, const std::function<void(QXmlStreamReader&)>& readElement)
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
                    readElement(xml);
            } else {
                xml.raiseError(QCoreApplication::translate("SettingsFile", "Incorrect file"));
            }
        }
        file.close();
    }
    if (xml.hasError())
        qDebug() << "Error: Failed to parse file : " << path << " : " << xml.errorString();
    else if (file.error() != QFile::NoError)
        qDebug() << "Error: Cannot read file " << path << ": " << file.errorString();
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
