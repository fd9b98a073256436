// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

class CSettings;

/// The last choices of the connection page, kept in "KestrixConnectionSettings.xml" in the directory of
/// InstrumentParameterPath. Main thread only.
class CConnectionPageSettings : public QObject
{
    Q_OBJECT

public:
    /// Reads the file. `settings` is not owned and must outlive the object.
    explicit CConnectionPageSettings(CSettings* settings, QObject* parent = nullptr);

    QString SerialPort() const { return m_serialPort; }
    QString BaudRate() const { return m_baudRate; } ///< decimal text
    QString InstrumentName() const { return m_instrumentName; }
    QString InstrumentSerialNumber() const { return m_instrumentSerialNumber; }

    void ReadFromFile();
    /// Takes the four texts and writes the file; a failure is logged only.
    void SaveConnectionSettings(const QString& port, const QString& baudRate, const QString& name,
                                const QString& serialNumber);

private:
    QString filePath() const;
    void writeToFile() const;

    QString m_serialPort;
    QString m_baudRate;
    QString m_instrumentName;
    QString m_instrumentSerialNumber;
    QString m_fileName;
    CSettings* m_settings;
};
