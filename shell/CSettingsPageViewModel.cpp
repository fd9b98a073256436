// SPDX-License-Identifier: GPL-3.0-or-later
#include "CSettingsPageViewModel.h"

#include "CApplication.h"
#include "CSettings.h"
#include "CUtils.h"
#include "Property.h"

#include <QStringList>

namespace {

constexpr int kMaxShownLength = 80;

/// Drops folders from the left until the path is short enough to be shown.
QString ShortenPath(const QString& path)
{
    if (path.size() <= kMaxShownLength)
        return path;
    const QLatin1Char separator('/');
    QString rest = path;
    do {
        QStringList parts = rest.split(separator);
        parts.removeFirst();
        rest = parts.join(separator);
    } while (rest.size() > kMaxShownLength);
    return QStringLiteral(".../") + rest;
}

} // namespace

CSettingsPageViewModel::CSettingsPageViewModel()
    : CPageViewModel(QStringLiteral("Settings")), m_settings(CApplication::Instance()->Settings())
{
    ConnectEdits();
    m_settings->ReadFromFile();
    FillFromSettings();
    SetHasUnsavedParameter(false);
}

void CSettingsPageViewModel::ConnectEdits()
{
    using This = CSettingsPageViewModel;
    connect(this, &This::InstrumentParameterPathChanged, this, &This::OnInstrumentParameterPathChanged);
    connect(this, &This::InstrumentDriverPluginsPathChanged, this, &This::OnInstrumentDriversPathChanged);
    connect(this, &This::MapperPluginsPathChanged, this, &This::OnMapperPluginsPathChanged);
    connect(this, &This::TriggerPluginsPathChanged, this, &This::OnTriggerPluginsPathChanged);
    connect(this, &This::DefaultStoragePathChanged, this, &This::OnDefaultStoragePathChanged);
    connect(this, &This::SaveRecordingsAsCsvChanged, this, &This::OnSaveRecordingsAsCsvChanged);
    connect(this, &This::CheckForNewVersionChanged, this, &This::OnCheckForNewVersionChanged);
    connect(this, &This::MeasurementMaxMeasurementCountChanged, this,
            &This::OnMeasurementMaxMeasurementCountChanged);
    connect(this, &This::MappingMaxMeasurementCountChanged, this, &This::OnMappingMaxMeasurementCountChanged);
    connect(this, &This::LogMaxHistoryCountChanged, this, &This::OnLogMaxHistoryCountChanged);
}

QString CSettingsPageViewModel::GetHelpName() const
{
    return QStringLiteral("settings");
}

void CSettingsPageViewModel::save()
{
    const CommandScope command(*this);
    m_settings->SetInstrumentParameterPath(m_instrumentParameterPath);
    m_settings->SetInstrumentDriverPluginsPath(m_instrumentDriverPluginsPath);
    m_settings->SetMapperPluginsPath(m_mapperPluginsPath);
    m_settings->SetTriggerPluginsPath(m_triggerPluginsPath);
    m_settings->SetDefaultStoragePath(m_defaultStoragePath);
    m_settings->SetCheckForNewVersion(m_checkForNewVersion);
    m_settings->SetMeasurementMaxMeasurementCount(m_measurementMaxMeasurementCount);
    m_settings->SetMappingMaxMeasurementCount(m_mappingMaxMeasurementCount);
    m_settings->SetLogMaxHistoryCount(m_logMaxHistoryCount);
    m_settings->WriteToFile();
    if (HasUnsavedParameter())
        SetHasUnsavedParameter(false);
    else
        emit HasUnsavedParameterChanged(false);
    TellToRestart();
}

void CSettingsPageViewModel::restore()
{
    m_settings->ReadFromFile();
    FillFromSettings();
    SetHasUnsavedParameter(false);
}

void CSettingsPageViewModel::restoreDefaults()
{
    const CommandScope command(*this);
    if (!CUtils::AskConfirmation(tr("Are you sure you want to restore the factory settings ?"),
                                 tr("Your current settings will be lost"), CUtils::DefaultButton::Ok))
        return;
    m_settings->RestoreFactorySettings(true);
    FillFromSettings();
    SetHasUnsavedParameter(false);
    TellToRestart();
}

void CSettingsPageViewModel::TellToRestart() const
{
    CUtils::ShowInformation(tr("Restart application"),
                            tr("Please restart the application to apply the new settings"));
}

// Each setter tells its slot, which counts the change as an edit: callers clear that afterwards.
void CSettingsPageViewModel::FillFromSettings()
{
    SetInstrumentParameterPath(m_settings->InstrumentParameterPath());
    SetInstrumentDriverPluginsPath(m_settings->InstrumentDriverPluginsPath());
    SetMapperPluginsPath(m_settings->MapperPluginsPath());
    SetTriggerPluginsPath(m_settings->TriggerPluginsPath());
    SetDefaultStoragePath(m_settings->DefaultStoragePath());
    SetSaveRecordingsAsCsv(m_settings->SaveRecordingsAsCsv());
    SetCheckForNewVersion(m_settings->CheckForNewVersion());
    SetMeasurementMaxMeasurementCount(m_settings->MeasurementMaxMeasurementCount());
    SetMappingMaxMeasurementCount(m_settings->MappingMaxMeasurementCount());
    SetLogMaxHistoryCount(m_settings->LogMaxHistoryCount());
}

void CSettingsPageViewModel::OnInstrumentParameterPathChanged(QString path)
{
    m_settings->SetInstrumentParameterPath(m_instrumentParameterPath);
    SetInstrumentParameterPathShort(ShortenPath(path));
    SetHasUnsavedParameter(true);
}

void CSettingsPageViewModel::OnMapperPluginsPathChanged(QString path)
{
    m_settings->SetMapperPluginsPath(m_mapperPluginsPath);
    SetMapperPluginsPathShort(ShortenPath(path));
    SetHasUnsavedParameter(true);
}

void CSettingsPageViewModel::OnTriggerPluginsPathChanged(QString path)
{
    m_settings->SetTriggerPluginsPath(m_triggerPluginsPath);
    SetTriggerPluginsPathShort(ShortenPath(path));
    SetHasUnsavedParameter(true);
}

void CSettingsPageViewModel::OnInstrumentDriversPathChanged(QString path)
{
    m_settings->SetInstrumentDriverPluginsPath(m_instrumentDriverPluginsPath);
    SetInstrumentDriverPluginsPathShort(ShortenPath(path));
    SetHasUnsavedParameter(true);
}

void CSettingsPageViewModel::OnDefaultStoragePathChanged(QString path)
{
    m_settings->SetDefaultStoragePath(m_defaultStoragePath);
    SetDefaultStoragePathShort(ShortenPath(path));
    SetHasUnsavedParameter(true);
}

void CSettingsPageViewModel::OnSaveRecordingsAsCsvChanged()
{
    m_settings->SetSaveRecordingsAsCsv(m_saveRecordingsAsCsv);
}

void CSettingsPageViewModel::OnCheckForNewVersionChanged()
{
    m_settings->SetCheckForNewVersion(m_checkForNewVersion);
    SetHasUnsavedParameter(true);
}

void CSettingsPageViewModel::OnMeasurementMaxMeasurementCountChanged(int /*value*/)
{
    m_settings->SetMeasurementMaxMeasurementCount(m_measurementMaxMeasurementCount);
    SetHasUnsavedParameter(true);
}

void CSettingsPageViewModel::OnMappingMaxMeasurementCountChanged(int /*value*/)
{
    m_settings->SetMappingMaxMeasurementCount(m_mappingMaxMeasurementCount);
    SetHasUnsavedParameter(true);
}

void CSettingsPageViewModel::OnLogMaxHistoryCountChanged(int /*value*/)
{
    m_settings->SetLogMaxHistoryCount(m_logMaxHistoryCount);
    SetHasUnsavedParameter(true);
}

void CSettingsPageViewModel::SetInstrumentParameterPath(const QString& value)
{
    storeAndEmitOnChange(this, m_instrumentParameterPath, value,
                         &CSettingsPageViewModel::InstrumentParameterPathChanged);
}

void CSettingsPageViewModel::SetInstrumentDriverPluginsPath(const QString& value)
{
    storeAndEmitOnChange(this, m_instrumentDriverPluginsPath, value,
                         &CSettingsPageViewModel::InstrumentDriverPluginsPathChanged);
}

void CSettingsPageViewModel::SetMapperPluginsPath(const QString& value)
{
    storeAndEmitOnChange(this, m_mapperPluginsPath, value, &CSettingsPageViewModel::MapperPluginsPathChanged);
}

void CSettingsPageViewModel::SetTriggerPluginsPath(const QString& value)
{
    storeAndEmitOnChange(this, m_triggerPluginsPath, value,
                         &CSettingsPageViewModel::TriggerPluginsPathChanged);
}

void CSettingsPageViewModel::SetDefaultStoragePath(const QString& value)
{
    storeAndEmitOnChange(this, m_defaultStoragePath, value,
                         &CSettingsPageViewModel::DefaultStoragePathChanged);
}

void CSettingsPageViewModel::SetInstrumentParameterPathShort(const QString& value)
{
    storeAndEmitOnChange(this, m_instrumentParameterPathShort, value,
                         &CSettingsPageViewModel::InstrumentParameterPathShortChanged);
}

void CSettingsPageViewModel::SetInstrumentDriverPluginsPathShort(const QString& value)
{
    storeAndEmitOnChange(this, m_instrumentDriverPluginsPathShort, value,
                         &CSettingsPageViewModel::InstrumentDriverPluginsPathShortChanged);
}

void CSettingsPageViewModel::SetMapperPluginsPathShort(const QString& value)
{
    storeAndEmitOnChange(this, m_mapperPluginsPathShort, value,
                         &CSettingsPageViewModel::MapperPluginsPathShortChanged);
}

void CSettingsPageViewModel::SetTriggerPluginsPathShort(const QString& value)
{
    storeAndEmitOnChange(this, m_triggerPluginsPathShort, value,
                         &CSettingsPageViewModel::TriggerPluginsPathShortChanged);
}

void CSettingsPageViewModel::SetDefaultStoragePathShort(const QString& value)
{
    storeAndEmitOnChange(this, m_defaultStoragePathShort, value,
                         &CSettingsPageViewModel::DefaultStoragePathShortChanged);
}

void CSettingsPageViewModel::SetSaveRecordingsAsCsv(bool value)
{
    storeAndEmitOnChange(this, m_saveRecordingsAsCsv, value,
                         &CSettingsPageViewModel::SaveRecordingsAsCsvChanged);
}

void CSettingsPageViewModel::SetCheckForNewVersion(bool value)
{
    storeAndEmitOnChange(this, m_checkForNewVersion, value,
                         &CSettingsPageViewModel::CheckForNewVersionChanged);
}

void CSettingsPageViewModel::SetMeasurementMaxMeasurementCount(quint64 value)
{
    storeAndEmitOnChange(this, m_measurementMaxMeasurementCount, value,
                         &CSettingsPageViewModel::MeasurementMaxMeasurementCountChanged);
}

void CSettingsPageViewModel::SetMappingMaxMeasurementCount(quint64 value)
{
    storeAndEmitOnChange(this, m_mappingMaxMeasurementCount, value,
                         &CSettingsPageViewModel::MappingMaxMeasurementCountChanged);
}

void CSettingsPageViewModel::SetLogMaxHistoryCount(quint32 value)
{
    storeAndEmitOnChange(this, m_logMaxHistoryCount, value,
                         &CSettingsPageViewModel::LogMaxHistoryCountChanged);
}
