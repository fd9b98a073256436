// SPDX-License-Identifier: GPL-3.0-or-later
#include "CConnectionPageSettings.h"

#include "CSettings.h"
#include "SettingsFile.h"

#include <QDebug>
#include <QDir>

CConnectionPageSettings::CConnectionPageSettings(CSettings* settings, QObject* parent)
    : QObject(parent), m_fileName(QStringLiteral("KestrixConnectionSettings.xml")), m_settings(settings)
{
    ReadFromFile();
}

QString CConnectionPageSettings::filePath() const
{
    return QDir(m_settings->InstrumentParameterPath()).filePath(m_fileName);
}

void CConnectionPageSettings::ReadFromFile()
{
    const auto into = [](QString& field) { return [&field](const QString& text) { field = text; }; };
    ReadSettingsFile(filePath(), {{QStringLiteral("Name"), into(m_instrumentName)},
                                  {QStringLiteral("SerialNumber"), into(m_instrumentSerialNumber)},
                                  {QStringLiteral("SerialPort"), into(m_serialPort)},
                                  {QStringLiteral("BaudRate"), into(m_baudRate)}});
}

void CConnectionPageSettings::SaveConnectionSettings(const QString& port, const QString& baudRate,
                                                     const QString& name, const QString& serialNumber)
{
    m_serialPort = port;
    m_baudRate = baudRate;
    m_instrumentName = name;
    m_instrumentSerialNumber = serialNumber;
    writeToFile();
}

void CConnectionPageSettings::writeToFile() const
{
    const QString directory = m_settings->InstrumentParameterPath();
    if (!QDir(directory).exists())
        QDir().mkdir(directory);
    QFile file(filePath());
    if (!file.open(QIODevice::WriteOnly)) {
        qDebug().noquote().nospace() << "Error: Cannot create file : " << file.fileName();
        return;
    }
    WriteSettingsFile(file, {{"Name", m_instrumentName},
                             {"SerialNumber", m_instrumentSerialNumber},
                             {"SerialPort", m_serialPort},
                             {"BaudRate", m_baudRate}});
}
