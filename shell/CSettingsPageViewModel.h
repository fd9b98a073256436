// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CPageViewModel.h"

#include <QString>

class CSettings;

/// The settings page for what takes effect after a restart: paths, limits of memory, the update check. An
/// edit reaches the settings object at once and its file with save(). Needs the application object.
class CSettingsPageViewModel : public CPageViewModel
{
    Q_OBJECT
    Q_PROPERTY(QString InstrumentParameterPath READ InstrumentParameterPath WRITE SetInstrumentParameterPath
                   NOTIFY InstrumentParameterPathChanged)
    Q_PROPERTY(QString InstrumentDriverPluginsPath READ InstrumentDriverPluginsPath WRITE
                   SetInstrumentDriverPluginsPath NOTIFY InstrumentDriverPluginsPathChanged)
    Q_PROPERTY(QString MapperPluginsPath READ MapperPluginsPath WRITE SetMapperPluginsPath NOTIFY
                   MapperPluginsPathChanged)
    Q_PROPERTY(QString TriggerPluginsPath READ TriggerPluginsPath WRITE SetTriggerPluginsPath NOTIFY
                   TriggerPluginsPathChanged)
    Q_PROPERTY(QString DefaultStoragePath READ DefaultStoragePath WRITE SetDefaultStoragePath NOTIFY
                   DefaultStoragePathChanged)
    Q_PROPERTY(QString InstrumentParameterPathShort READ InstrumentParameterPathShort WRITE
                   SetInstrumentParameterPathShort NOTIFY InstrumentParameterPathShortChanged)
    Q_PROPERTY(QString InstrumentDriverPluginsPathShort READ InstrumentDriverPluginsPathShort WRITE
                   SetInstrumentDriverPluginsPathShort NOTIFY InstrumentDriverPluginsPathShortChanged)
    Q_PROPERTY(QString MapperPluginsPathShort READ MapperPluginsPathShort WRITE SetMapperPluginsPathShort
                   NOTIFY MapperPluginsPathShortChanged)
    Q_PROPERTY(QString TriggerPluginsPathShort READ TriggerPluginsPathShort WRITE SetTriggerPluginsPathShort
                   NOTIFY TriggerPluginsPathShortChanged)
    Q_PROPERTY(QString DefaultStoragePathShort READ DefaultStoragePathShort WRITE SetDefaultStoragePathShort
                   NOTIFY DefaultStoragePathShortChanged)
    Q_PROPERTY(bool SaveRecordingsAsCsv READ SaveRecordingsAsCsv WRITE SetSaveRecordingsAsCsv NOTIFY
                   SaveRecordingsAsCsvChanged)
    Q_PROPERTY(bool CheckForNewVersion READ CheckForNewVersion WRITE SetCheckForNewVersion NOTIFY
                   CheckForNewVersionChanged)
    Q_PROPERTY(quint64 MeasurementMaxMeasurementCount READ MeasurementMaxMeasurementCount WRITE
                   SetMeasurementMaxMeasurementCount NOTIFY MeasurementMaxMeasurementCountChanged)
    Q_PROPERTY(quint64 MappingMaxMeasurementCount READ MappingMaxMeasurementCount WRITE
                   SetMappingMaxMeasurementCount NOTIFY MappingMaxMeasurementCountChanged)
    Q_PROPERTY(quint32 LogMaxHistoryCount READ LogMaxHistoryCount WRITE SetLogMaxHistoryCount NOTIFY
                   LogMaxHistoryCountChanged)

public:
    /// Reads the settings file first: what was changed in the settings object and not saved is lost, as far
    /// as the file has it.
    CSettingsPageViewModel();

    QString GetHelpName() const override;

    /// Writes the settings file and tells the user to restart.
    Q_INVOKABLE void save();
    /// Takes back what the settings file holds.
    Q_INVOKABLE void restore();
    /// After a question, sets and writes the factory settings; the CSV switch keeps its value.
    Q_INVOKABLE void restoreDefaults();

    QString InstrumentParameterPath() const { return m_instrumentParameterPath; }
    QString InstrumentDriverPluginsPath() const { return m_instrumentDriverPluginsPath; }
    QString MapperPluginsPath() const { return m_mapperPluginsPath; }
    QString TriggerPluginsPath() const { return m_triggerPluginsPath; }
    QString DefaultStoragePath() const { return m_defaultStoragePath; }
    // The paths for display: long ones without their first folders.
    QString InstrumentParameterPathShort() const { return m_instrumentParameterPathShort; }
    QString InstrumentDriverPluginsPathShort() const { return m_instrumentDriverPluginsPathShort; }
    QString MapperPluginsPathShort() const { return m_mapperPluginsPathShort; }
    QString TriggerPluginsPathShort() const { return m_triggerPluginsPathShort; }
    QString DefaultStoragePathShort() const { return m_defaultStoragePathShort; }
    /// A CSV file beside each record. A change is live at once and is no unsaved edit.
    bool SaveRecordingsAsCsv() const { return m_saveRecordingsAsCsv; }
    bool CheckForNewVersion() const { return m_checkForNewVersion; }
    quint64 MeasurementMaxMeasurementCount() const { return m_measurementMaxMeasurementCount; } ///< points
    quint64 MappingMaxMeasurementCount() const { return m_mappingMaxMeasurementCount; }         ///< points
    quint32 LogMaxHistoryCount() const { return m_logMaxHistoryCount; } ///< entries of the log list

    void SetInstrumentParameterPath(const QString& value);
    void SetInstrumentDriverPluginsPath(const QString& value);
    void SetMapperPluginsPath(const QString& value);
    void SetTriggerPluginsPath(const QString& value);
    void SetDefaultStoragePath(const QString& value);
    void SetInstrumentParameterPathShort(const QString& value);
    void SetInstrumentDriverPluginsPathShort(const QString& value);
    void SetMapperPluginsPathShort(const QString& value);
    void SetTriggerPluginsPathShort(const QString& value);
    void SetDefaultStoragePathShort(const QString& value);
    void SetSaveRecordingsAsCsv(bool value);
    void SetCheckForNewVersion(bool value);
    void SetMeasurementMaxMeasurementCount(quint64 value);
    void SetMappingMaxMeasurementCount(quint64 value);
    void SetLogMaxHistoryCount(quint32 value);

public slots:
    void OnInstrumentParameterPathChanged(QString path);
    void OnMapperPluginsPathChanged(QString path);
    void OnTriggerPluginsPathChanged(QString path);
    void OnInstrumentDriversPathChanged(QString path);
    void OnDefaultStoragePathChanged(QString path);
    void OnSaveRecordingsAsCsvChanged();
    void OnCheckForNewVersionChanged();
    // The numbers are those of the properties: an argument has too few bits for them.
    void OnMeasurementMaxMeasurementCountChanged(int value);
    void OnMappingMaxMeasurementCountChanged(int value);
    void OnLogMaxHistoryCountChanged(int value);

signals:
    void InstrumentParameterPathChanged(const QString& value);
    void InstrumentDriverPluginsPathChanged(const QString& value);
    void MapperPluginsPathChanged(const QString& value);
    void TriggerPluginsPathChanged(const QString& value);
    void DefaultStoragePathChanged(const QString& value);
    void InstrumentParameterPathShortChanged(const QString& value);
    void InstrumentDriverPluginsPathShortChanged(const QString& value);
    void MapperPluginsPathShortChanged(const QString& value);
    void TriggerPluginsPathShortChanged(const QString& value);
    void DefaultStoragePathShortChanged(const QString& value);
    void SaveRecordingsAsCsvChanged(bool value);
    void CheckForNewVersionChanged(bool value);
    void MeasurementMaxMeasurementCountChanged(quint64 value);
    void MappingMaxMeasurementCountChanged(quint64 value);
    void LogMaxHistoryCountChanged(quint32 value);

private:
    void ConnectEdits();
    void FillFromSettings();
    void TellToRestart() const;

    CSettings* m_settings;
    QString m_instrumentParameterPath;
    QString m_instrumentDriverPluginsPath;
    QString m_mapperPluginsPath;
    QString m_triggerPluginsPath;
    QString m_defaultStoragePath;
    QString m_instrumentParameterPathShort;
    QString m_instrumentDriverPluginsPathShort;
    QString m_mapperPluginsPathShort;
    QString m_triggerPluginsPathShort;
    QString m_defaultStoragePathShort;
    bool m_saveRecordingsAsCsv = false;
    bool m_checkForNewVersion = false;
    quint64 m_measurementMaxMeasurementCount = 0;
    quint64 m_mappingMaxMeasurementCount = 0;
    quint32 m_logMaxHistoryCount = 0;
};
