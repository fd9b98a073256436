// SPDX-License-Identifier: GPL-3.0-or-later
#include "CSettings.h"

#include "CUtils.h"
#include "Property.h"
#include "SettingsDirectoryPath.h"
#include "SettingsFile.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

using QtDataVisualization::Q3DCamera;

namespace {

QString pluginRoot()
{
    return CUtils::IsMac() ? QStringLiteral("/../Plugins/kestrix/") : QStringLiteral("/kestrix/");
}

QString boolText(bool value)
{
    return value ? QStringLiteral("1") : QStringLiteral("0");
}

QString numberText(double value)
{
    return QString::number(value, 'g', 6);
}

} // namespace

CSettings::CSettings(const QString& applicationDirPath, QObject* parent)
    : QObject(parent), m_applicationDirPath(applicationDirPath)
{
    RestoreFactorySettings(false);
    ReadFromFile();
}

QString CSettings::filePath() const
{
    return QDir(SettingsDirectoryPath).filePath(QStringLiteral("KestrixApplicationSettings.xml"));
}

void CSettings::RestoreFactorySettings(bool save)
{
    const QString plugins = m_applicationDirPath + pluginRoot();
    SetInstrumentParameterPath(SettingsDirectoryPath);
    SetInstrumentDriverPluginsPath(plugins + QStringLiteral("instrument"));
    SetMapperPluginsPath(plugins + QStringLiteral("mapper"));
    SetTriggerPluginsPath(plugins + QStringLiteral("trigger"));
    SetDefaultStoragePath(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    SetCheckForNewVersion(true);
    SetIgnoreSpecificVersion({});
    SetMeasurementMaxMeasurementCount(120000);
    SetMappingMaxMeasurementCount(1000000);
    SetLogMaxHistoryCount(200);
    SetAveragingCount(1);
    SetAveragingMode(0);
    SetEnableMeterMode(true);
    SetEnableSpectrumMode(true);
    SetEnableAcAnalysisMode(true);
    SetEnableMappingMode(true);
    SetMeter3DCameraPreset(Q3DCamera::CameraPresetIsometricRight);
    SetMeter3DZoomLevel(90.0);
    SetMeter3DOrthoProjection(false);
    SetMapping3DCameraPreset(Q3DCamera::CameraPresetIsometricRight);
    SetMapping3DZoomLevel(90.0);
    SetMapping3DOrthoProjection(false);
    SetMapping2DPlotHorizontalAxisType(e_HorizAxisIsZPosition);
    m_cameraPresetNames = QStringList{tr("Front Low"),
                                      tr("Front"),
                                      tr("Front High"),
                                      tr("Left Low"),
                                      tr("Left"),
                                      tr("Left High"),
                                      tr("Right Low"),
                                      tr("Right"),
                                      tr("Right High"),
                                      tr("Behind Low"),
                                      tr("Behind"),
                                      tr("Behind High"),
                                      tr("Isometric Left"),
                                      tr("Isometric Left High"),
                                      tr("Isometric Right"),
                                      tr("Isometric Right High"),
                                      tr("Directly Above"),
                                      tr("Directly Above CW 45"),
                                      tr("Directly Above CCW 45")};
    m_xAxisTypeNames = QStringList{tr("Time"), tr("X Position"), tr("Y Position"), tr("Z Position")};
    if (save)
        WriteToFile();
}

void CSettings::ReadFromFile()
{
    const auto text = [this](void (CSettings::*set)(const QString&)) {
        return [this, set](const QString& value) { (this->*set)(value); };
    };
    const auto boolean = [this](void (CSettings::*set)(bool)) {
        return [this, set](const QString& value) { (this->*set)(value == QLatin1String("1")); };
    };
    const auto number = [this](auto convert, auto set) {
        return [this, convert, set](const QString& value) {
            bool converts = false;
            const auto converted = convert(value, &converts);
            if (converts)
                (this->*set)(converted);
        };
    };
    const auto toULongLong = [](const QString& value, bool* ok) { return value.toULongLong(ok); };
    const auto toUInt = [](const QString& value, bool* ok) { return value.toUInt(ok); };
    const auto toInt = [](const QString& value, bool* ok) { return value.toInt(ok); };
    const auto toDouble = [](const QString& value, bool* ok) { return value.toDouble(ok); };
    const auto toPreset = [](const QString& value, bool* ok) {
        return static_cast<Q3DCamera::CameraPreset>(value.toInt(ok));
    };
    const auto toAxisType = [](const QString& value, bool* ok) {
        const uint number = value.toUInt(ok);
        *ok = *ok && number <= e_HorizAxisIsZPosition;
        return static_cast<t_Mapping2DPlotHorizontalAxisType>(number);
    };
    ReadSettingsFile(
        filePath(),
        {
            {QStringLiteral("InstrumentParameterPath"), text(&CSettings::SetInstrumentParameterPath)},
            {QStringLiteral("DefaultStoragePath"), text(&CSettings::SetDefaultStoragePath)},
            {QStringLiteral("IgnoreSpecificVersion"), text(&CSettings::SetIgnoreSpecificVersion)},
            {QStringLiteral("SaveRecordingsAsCsv"), boolean(&CSettings::SetSaveRecordingsAsCsv)},
            {QStringLiteral("CheckForNewVersion"), boolean(&CSettings::SetCheckForNewVersion)},
            {QStringLiteral("MappingMaxMeasurementCount"),
             number(toULongLong, &CSettings::SetMappingMaxMeasurementCount)},
            {QStringLiteral("MeasurementMaxMeasurementCount"),
             number(toULongLong, &CSettings::SetMeasurementMaxMeasurementCount)},
            {QStringLiteral("LogMaxHistoryCount"), number(toUInt, &CSettings::SetLogMaxHistoryCount)},
            {QStringLiteral("AveragingMode"), number(toInt, &CSettings::SetAveragingMode)},
            {QStringLiteral("AveragingCount"), number(toUInt, &CSettings::SetAveragingCount)},
            {QStringLiteral("EnableMeterMode"), boolean(&CSettings::SetEnableMeterMode)},
            {QStringLiteral("EnableSpectrumMode"), boolean(&CSettings::SetEnableSpectrumMode)},
            {QStringLiteral("EnableAcAnalysisMode"), boolean(&CSettings::SetEnableAcAnalysisMode)},
            {QStringLiteral("EnableMappingMode"), boolean(&CSettings::SetEnableMappingMode)},
            {QStringLiteral("Meter3DCameraPreset"), number(toPreset, &CSettings::SetMeter3DCameraPreset)},
            {QStringLiteral("Meter3DZoomLevel"), number(toDouble, &CSettings::SetMeter3DZoomLevel)},
            {QStringLiteral("Meter3DOrthoProjection"), boolean(&CSettings::SetMeter3DOrthoProjection)},
            {QStringLiteral("Mapping3DCameraPreset"), number(toPreset, &CSettings::SetMapping3DCameraPreset)},
            {QStringLiteral("Mapping3DZoomLevel"), number(toDouble, &CSettings::SetMapping3DZoomLevel)},
            {QStringLiteral("Mapping3DOrthoProjection"), boolean(&CSettings::SetMapping3DOrthoProjection)},
            {QStringLiteral("Mapping2DPlotHorizontalAxisType"),
             number(toAxisType, &CSettings::SetMapping2DPlotHorizontalAxisType)},
        });
}

void CSettings::WriteToFile()
{
    if (!QDir(SettingsDirectoryPath).exists())
        QDir().mkdir(SettingsDirectoryPath);
    QFile file(filePath());
    if (!file.open(QIODevice::WriteOnly)) {
        qDebug().noquote().nospace() << "Error: Cannot read file : " << file.fileName();
        return;
    }
    WriteSettingsFile(
        file, {{"InstrumentParameterPath", m_instrumentParameterPath},
               {"DefaultStoragePath", m_defaultStoragePath},
               {"IgnoreSpecificVersion", m_ignoreSpecificVersion},
               {"SaveRecordingsAsCsv", boolText(m_saveRecordingsAsCsv)},
               {"CheckForNewVersion", boolText(m_checkForNewVersion)},
               {"MappingMaxMeasurementCount", QString::number(m_mappingMaxMeasurementCount)},
               {"MeasurementMaxMeasurementCount", QString::number(m_measurementMaxMeasurementCount)},
               {"LogMaxHistoryCount", QString::number(m_logMaxHistoryCount)},
               {"AveragingMode", QString::number(m_averagingMode)},
               {"AveragingCount", QString::number(m_averagingCount)},
               {"EnableMeterMode", boolText(m_enableMeterMode)},
               {"EnableSpectrumMode", boolText(m_enableSpectrumMode)},
               {"EnableAcAnalysisMode", boolText(m_enableAcAnalysisMode)},
               {"EnableMappingMode", boolText(m_enableMappingMode)},
               {"Meter3DCameraPreset", QString::number(m_meter3DCameraPreset)},
               {"Meter3DZoomLevel", numberText(m_meter3DZoomLevel)},
               {"Meter3DOrthoProjection", boolText(m_meter3DOrthoProjection)},
               {"Mapping3DCameraPreset", QString::number(m_mapping3DCameraPreset)},
               {"Mapping3DZoomLevel", numberText(m_mapping3DZoomLevel)},
               {"Mapping3DOrthoProjection", boolText(m_mapping3DOrthoProjection)},
               {"Mapping2DPlotHorizontalAxisType", QString::number(m_mapping2DPlotHorizontalAxisType)}});
}

void CSettings::SetInstrumentParameterPath(const QString& value)
{
    storeAndEmitOnChange(this, m_instrumentParameterPath, value, &CSettings::InstrumentParameterPathChanged);
}

void CSettings::SetInstrumentDriverPluginsPath(const QString& value)
{
    storeAndEmitOnChange(this, m_instrumentDriverPluginsPath, value,
                         &CSettings::InstrumentDriverPluginsPathChanged);
}

void CSettings::SetMapperPluginsPath(const QString& value)
{
    storeAndEmitOnChange(this, m_mapperPluginsPath, value, &CSettings::MapperPluginsPathChanged);
}

void CSettings::SetTriggerPluginsPath(const QString& value)
{
    storeAndEmitOnChange(this, m_triggerPluginsPath, value, &CSettings::TriggerPluginsPathChanged);
}

void CSettings::SetDefaultStoragePath(const QString& value)
{
    storeAndEmitOnChange(this, m_defaultStoragePath, value, &CSettings::DefaultStoragePathChanged);
}

void CSettings::SetSaveRecordingsAsCsv(bool value)
{
    storeAndEmitOnChange(this, m_saveRecordingsAsCsv, value, &CSettings::SaveRecordingsAsCsvChanged);
}

void CSettings::SetCheckForNewVersion(bool value)
{
    storeAndEmitOnChange(this, m_checkForNewVersion, value, &CSettings::CheckForNewVersionChanged);
}

void CSettings::SetIgnoreSpecificVersion(const QString& value)
{
    storeAndEmitOnChange(this, m_ignoreSpecificVersion, value, &CSettings::IgnoreSpecificVersionChanged);
}

void CSettings::SetMeasurementMaxMeasurementCount(quint64 value)
{
    storeAndEmitOnChange(this, m_measurementMaxMeasurementCount, value,
                         &CSettings::MeasurementMaxMeasurementCountChanged);
}

void CSettings::SetMappingMaxMeasurementCount(quint64 value)
{
    storeAndEmitOnChange(this, m_mappingMaxMeasurementCount, value,
                         &CSettings::MappingMaxMeasurementCountChanged);
}

void CSettings::SetLogMaxHistoryCount(quint32 value)
{
    storeAndEmitOnChange(this, m_logMaxHistoryCount, value, &CSettings::LogMaxHistoryCountChanged);
}

void CSettings::SetAveragingCount(quint32 value)
{
    storeAndEmitOnChange(this, m_averagingCount, value, &CSettings::AveragingCountChanged);
}

void CSettings::SetAveragingMode(int value)
{
    storeAndEmitOnChange(this, m_averagingMode, value, &CSettings::AveragingModeChanged);
}

void CSettings::SetEnableMeterMode(bool value)
{
    storeAndEmitOnChange(this, m_enableMeterMode, value, &CSettings::EnableMeterModeChanged);
}

void CSettings::SetEnableSpectrumMode(bool value)
{
    storeAndEmitOnChange(this, m_enableSpectrumMode, value, &CSettings::EnableSpectrumModeChanged);
}

void CSettings::SetEnableAcAnalysisMode(bool value)
{
    storeAndEmitOnChange(this, m_enableAcAnalysisMode, value, &CSettings::EnableAcAnalysisModeChanged);
}

void CSettings::SetEnableMappingMode(bool value)
{
    storeAndEmitOnChange(this, m_enableMappingMode, value, &CSettings::EnableMappingModeChanged);
}

void CSettings::SetMeter3DCameraPreset(QtDataVisualization::Q3DCamera::CameraPreset value)
{
    storeAndEmitOnChange(this, m_meter3DCameraPreset, value, &CSettings::Meter3DCameraPresetChanged);
}

void CSettings::SetMeter3DZoomLevel(double value)
{
    storeAndEmitOnChange(this, m_meter3DZoomLevel, value, &CSettings::Meter3DZoomLevelChanged);
}

void CSettings::SetMeter3DOrthoProjection(bool value)
{
    storeAndEmitOnChange(this, m_meter3DOrthoProjection, value, &CSettings::Meter3DOrthoProjectionChanged);
}

void CSettings::SetMapping3DCameraPreset(QtDataVisualization::Q3DCamera::CameraPreset value)
{
    storeAndEmitOnChange(this, m_mapping3DCameraPreset, value, &CSettings::Mapping3DCameraPresetChanged);
}

void CSettings::SetMapping3DZoomLevel(double value)
{
    storeAndEmitOnChange(this, m_mapping3DZoomLevel, value, &CSettings::Mapping3DZoomLevelChanged);
}

void CSettings::SetMapping3DOrthoProjection(bool value)
{
    storeAndEmitOnChange(this, m_mapping3DOrthoProjection, value,
                         &CSettings::Mapping3DOrthoProjectionChanged);
}

void CSettings::SetMapping2DPlotHorizontalAxisType(t_Mapping2DPlotHorizontalAxisType value)
{
    storeAndEmitOnChange(this, m_mapping2DPlotHorizontalAxisType, value,
                         &CSettings::Mapping2DPlotHorizontalAxisTypeChanged);
}
