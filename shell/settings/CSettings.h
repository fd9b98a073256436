// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtDataVisualization/Q3DCamera>

/// The application-wide settings, kept in "KestrixApplicationSettings.xml" in `SettingsDirectoryPath`. The
/// object is made with the defaults and what the file holds; the file is written on request only, never at
/// exit. Trouble with the file is logged and never stops anything. Main thread only.
class CSettings : public QObject
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
    Q_PROPERTY(bool SaveRecordingsAsCsv READ SaveRecordingsAsCsv WRITE SetSaveRecordingsAsCsv NOTIFY
                   SaveRecordingsAsCsvChanged)
    Q_PROPERTY(bool CheckForNewVersion READ CheckForNewVersion WRITE SetCheckForNewVersion NOTIFY
                   CheckForNewVersionChanged)
    Q_PROPERTY(QString IgnoreSpecificVersion READ IgnoreSpecificVersion WRITE SetIgnoreSpecificVersion NOTIFY
                   IgnoreSpecificVersionChanged)
    Q_PROPERTY(quint64 MeasurementMaxMeasurementCount READ MeasurementMaxMeasurementCount WRITE
                   SetMeasurementMaxMeasurementCount NOTIFY MeasurementMaxMeasurementCountChanged)
    Q_PROPERTY(quint64 MappingMaxMeasurementCount READ MappingMaxMeasurementCount WRITE
                   SetMappingMaxMeasurementCount NOTIFY MappingMaxMeasurementCountChanged)
    Q_PROPERTY(quint32 LogMaxHistoryCount READ LogMaxHistoryCount WRITE SetLogMaxHistoryCount NOTIFY
                   LogMaxHistoryCountChanged)
    Q_PROPERTY(
        quint32 AveragingCount READ AveragingCount WRITE SetAveragingCount NOTIFY AveragingCountChanged)
    Q_PROPERTY(int AveragingMode READ AveragingMode WRITE SetAveragingMode NOTIFY AveragingModeChanged)
    Q_PROPERTY(
        bool EnableMeterMode READ EnableMeterMode WRITE SetEnableMeterMode NOTIFY EnableMeterModeChanged)
    Q_PROPERTY(bool EnableSpectrumMode READ EnableSpectrumMode WRITE SetEnableSpectrumMode NOTIFY
                   EnableSpectrumModeChanged)
    Q_PROPERTY(bool EnableAcAnalysisMode READ EnableAcAnalysisMode WRITE SetEnableAcAnalysisMode NOTIFY
                   EnableAcAnalysisModeChanged)
    Q_PROPERTY(bool EnableMappingMode READ EnableMappingMode WRITE SetEnableMappingMode NOTIFY
                   EnableMappingModeChanged)
    Q_PROPERTY(QtDataVisualization::Q3DCamera::CameraPreset Meter3DCameraPreset READ Meter3DCameraPreset WRITE
                   SetMeter3DCameraPreset NOTIFY Meter3DCameraPresetChanged)
    Q_PROPERTY(double Meter3DZoomLevel READ Meter3DZoomLevel WRITE SetMeter3DZoomLevel NOTIFY
                   Meter3DZoomLevelChanged)
    Q_PROPERTY(bool Meter3DOrthoProjection READ Meter3DOrthoProjection WRITE SetMeter3DOrthoProjection NOTIFY
                   Meter3DOrthoProjectionChanged)
    Q_PROPERTY(QtDataVisualization::Q3DCamera::CameraPreset Mapping3DCameraPreset READ Mapping3DCameraPreset
                   WRITE SetMapping3DCameraPreset NOTIFY Mapping3DCameraPresetChanged)
    Q_PROPERTY(double Mapping3DZoomLevel READ Mapping3DZoomLevel WRITE SetMapping3DZoomLevel NOTIFY
                   Mapping3DZoomLevelChanged)
    Q_PROPERTY(bool Mapping3DOrthoProjection READ Mapping3DOrthoProjection WRITE SetMapping3DOrthoProjection
                   NOTIFY Mapping3DOrthoProjectionChanged)
    Q_PROPERTY(
        t_Mapping2DPlotHorizontalAxisType Mapping2DPlotHorizontalAxisType READ Mapping2DPlotHorizontalAxisType
            WRITE SetMapping2DPlotHorizontalAxisType NOTIFY Mapping2DPlotHorizontalAxisTypeChanged)
    Q_PROPERTY(QStringList CameraPresetNames READ CameraPresetNames CONSTANT)
    Q_PROPERTY(QStringList XAxisTypeNames READ XAxisTypeNames CONSTANT)

public:
    enum t_Mapping2DPlotHorizontalAxisType : int {
        e_HorizAxisIsTime = 0,
        e_HorizAxisIsXPosition = 1,
        e_HorizAxisIsYPosition = 2,
        e_HorizAxisIsZPosition = 3
    };
    Q_ENUM(t_Mapping2DPlotHorizontalAxisType)

    /// `applicationDirPath` is the directory beside which the plug-ins lie.
    explicit CSettings(const QString& applicationDirPath, QObject* parent = nullptr);

    /// Sets every property but SaveRecordingsAsCsv to its default; writes the file if `save`.
    void RestoreFactorySettings(bool save);
    /// Merges the file into the present values: keys that it lacks or that do not convert stay as they are.
    void ReadFromFile();
    void WriteToFile();

    QString InstrumentParameterPath() const
    {
        return m_instrumentParameterPath;
    } ///< directory of the connection file
    QString InstrumentDriverPluginsPath() const
    {
        return m_instrumentDriverPluginsPath;
    } ///< directory of the instrument plug-ins, not stored
    QString MapperPluginsPath() const
    {
        return m_mapperPluginsPath;
    } ///< directory of the mapper plug-ins, not stored
    QString TriggerPluginsPath() const
    {
        return m_triggerPluginsPath;
    } ///< directory of the trigger plug-ins, not stored
    QString DefaultStoragePath() const { return m_defaultStoragePath; } ///< where file dialogs begin
    bool SaveRecordingsAsCsv() const
    {
        return m_saveRecordingsAsCsv;
    } ///< write a CSV file beside each saved record
    bool CheckForNewVersion() const { return m_checkForNewVersion; } ///< ask for a later version at start-up
    QString IgnoreSpecificVersion() const
    {
        return m_ignoreSpecificVersion;
    } ///< version that is not to be announced again
    quint64 MeasurementMaxMeasurementCount() const
    {
        return m_measurementMaxMeasurementCount;
    } ///< samples kept by a measurement dataset
    quint64 MappingMaxMeasurementCount() const
    {
        return m_mappingMaxMeasurementCount;
    }                                                                   ///< samples kept by a mapping dataset
    quint32 LogMaxHistoryCount() const { return m_logMaxHistoryCount; } ///< entries of the log list
    quint32 AveragingCount() const { return m_averagingCount; }         ///< length of the time plot's average
    int AveragingMode() const { return m_averagingMode; }               ///< kind of the time plot's average
    bool EnableMeterMode() const { return m_enableMeterMode; }          ///< offer the Meter page
    bool EnableSpectrumMode() const { return m_enableSpectrumMode; }    ///< offer the Spectrum page
    bool EnableAcAnalysisMode() const { return m_enableAcAnalysisMode; } ///< offer the AC Analysis page
    bool EnableMappingMode() const { return m_enableMappingMode; }       ///< offer the Mapping page
    QtDataVisualization::Q3DCamera::CameraPreset Meter3DCameraPreset() const
    {
        return m_meter3DCameraPreset;
    }                                                              ///< camera of the meter scene
    double Meter3DZoomLevel() const { return m_meter3DZoomLevel; } ///< zoom of the meter scene, percent
    bool Meter3DOrthoProjection() const
    {
        return m_meter3DOrthoProjection;
    } ///< parallel projection of the meter scene
    QtDataVisualization::Q3DCamera::CameraPreset Mapping3DCameraPreset() const
    {
        return m_mapping3DCameraPreset;
    }                                                                  ///< camera of the mapping scene
    double Mapping3DZoomLevel() const { return m_mapping3DZoomLevel; } ///< zoom of the mapping scene, percent
    bool Mapping3DOrthoProjection() const
    {
        return m_mapping3DOrthoProjection;
    } ///< parallel projection of the mapping scene
    t_Mapping2DPlotHorizontalAxisType Mapping2DPlotHorizontalAxisType() const
    {
        return m_mapping2DPlotHorizontalAxisType;
    } ///< what the mapping plot shows along X
    /// Names of the camera presets, in the order of their values.
    QStringList CameraPresetNames() const { return m_cameraPresetNames; }
    /// Names of the horizontal axes, in the order of their values.
    QStringList XAxisTypeNames() const { return m_xAxisTypeNames; }

    void SetInstrumentParameterPath(const QString& value);
    void SetInstrumentDriverPluginsPath(const QString& value);
    void SetMapperPluginsPath(const QString& value);
    void SetTriggerPluginsPath(const QString& value);
    void SetDefaultStoragePath(const QString& value);
    void SetSaveRecordingsAsCsv(bool value);
    void SetCheckForNewVersion(bool value);
    void SetIgnoreSpecificVersion(const QString& value);
    void SetMeasurementMaxMeasurementCount(quint64 value);
    void SetMappingMaxMeasurementCount(quint64 value);
    void SetLogMaxHistoryCount(quint32 value);
    void SetAveragingCount(quint32 value);
    void SetAveragingMode(int value);
    void SetEnableMeterMode(bool value);
    void SetEnableSpectrumMode(bool value);
    void SetEnableAcAnalysisMode(bool value);
    void SetEnableMappingMode(bool value);
    void SetMeter3DCameraPreset(QtDataVisualization::Q3DCamera::CameraPreset value);
    void SetMeter3DZoomLevel(double value);
    void SetMeter3DOrthoProjection(bool value);
    void SetMapping3DCameraPreset(QtDataVisualization::Q3DCamera::CameraPreset value);
    void SetMapping3DZoomLevel(double value);
    void SetMapping3DOrthoProjection(bool value);
    void SetMapping2DPlotHorizontalAxisType(t_Mapping2DPlotHorizontalAxisType value);

signals:
    void InstrumentParameterPathChanged(const QString& value);
    void InstrumentDriverPluginsPathChanged(const QString& value);
    void MapperPluginsPathChanged(const QString& value);
    void TriggerPluginsPathChanged(const QString& value);
    void DefaultStoragePathChanged(const QString& value);
    void SaveRecordingsAsCsvChanged(bool value);
    void CheckForNewVersionChanged(bool value);
    void IgnoreSpecificVersionChanged(const QString& value);
    void MeasurementMaxMeasurementCountChanged(quint64 value);
    void MappingMaxMeasurementCountChanged(quint64 value);
    void LogMaxHistoryCountChanged(quint32 value);
    void AveragingCountChanged(quint32 value);
    void AveragingModeChanged(int value);
    void EnableMeterModeChanged(bool value);
    void EnableSpectrumModeChanged(bool value);
    void EnableAcAnalysisModeChanged(bool value);
    void EnableMappingModeChanged(bool value);
    void Meter3DCameraPresetChanged(QtDataVisualization::Q3DCamera::CameraPreset value);
    void Meter3DZoomLevelChanged(double value);
    void Meter3DOrthoProjectionChanged(bool value);
    void Mapping3DCameraPresetChanged(QtDataVisualization::Q3DCamera::CameraPreset value);
    void Mapping3DZoomLevelChanged(double value);
    void Mapping3DOrthoProjectionChanged(bool value);
    void Mapping2DPlotHorizontalAxisTypeChanged(t_Mapping2DPlotHorizontalAxisType value);

private:
    QString filePath() const;

    QString m_applicationDirPath;
    QString m_instrumentParameterPath;
    QString m_instrumentDriverPluginsPath;
    QString m_mapperPluginsPath;
    QString m_triggerPluginsPath;
    QString m_defaultStoragePath;
    bool m_saveRecordingsAsCsv = false;
    bool m_checkForNewVersion = true;
    QString m_ignoreSpecificVersion;
    quint64 m_measurementMaxMeasurementCount = 0;
    quint64 m_mappingMaxMeasurementCount = 0;
    quint32 m_logMaxHistoryCount = 0;
    quint32 m_averagingCount = 0;
    int m_averagingMode = 0;
    bool m_enableMeterMode = true;
    bool m_enableSpectrumMode = true;
    bool m_enableAcAnalysisMode = true;
    bool m_enableMappingMode = true;
    QtDataVisualization::Q3DCamera::CameraPreset m_meter3DCameraPreset =
        QtDataVisualization::Q3DCamera::CameraPresetIsometricRight;
    double m_meter3DZoomLevel = 90.0;
    bool m_meter3DOrthoProjection = false;
    QtDataVisualization::Q3DCamera::CameraPreset m_mapping3DCameraPreset =
        QtDataVisualization::Q3DCamera::CameraPresetIsometricRight;
    double m_mapping3DZoomLevel = 90.0;
    bool m_mapping3DOrthoProjection = false;
    t_Mapping2DPlotHorizontalAxisType m_mapping2DPlotHorizontalAxisType = e_HorizAxisIsZPosition;
    QStringList m_cameraPresetNames;
    QStringList m_xAxisTypeNames;
};
