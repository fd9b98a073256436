// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CLimitsFileOwner.h"
#include "CMeasureBlock.h"
#include "COperation.h"
#include "CRecordingManagerMeasure.h"
#include "LimitsXmlFile.h"

#include <QSharedPointer>

class CPluginsManager;
class CSettings;

/// The one operation behind the meter, spectrum and AC analysis pages: takes the blocks of the active
/// instrument, keeps them in its recording manager and hands them on to the page on screen. Owns the exposure
/// limits.
class COperationMeasure : public COperation, private CLimitsFileOwner
{
    Q_OBJECT
    Q_PROPERTY(CRecordingManagerMeasure* RecordingManager READ RecordingManager CONSTANT)
    Q_PROPERTY(LimitsXmlFile* LimitsFile READ LimitsFile CONSTANT)
    Q_PROPERTY(bool LimitsFileLoaded READ LimitsFileLoaded NOTIFY LimitsFileLoadedChanged)

public:
    /// All three must outlive the operation.
    COperationMeasure(CSettings* settings, CPluginsManager* pluginsManager, CInstrumentSupervisor* supervisor,
                      QObject* parent = nullptr);

    quint64 GetMaxMeasurementCount() const override;
    /// Takes over the parameters of the last run, or defaults, and listens to the instrument.
    void Activate() override;
    /// Stores the parameters and stops listening.
    void Deactivate() override;
    void Reset() override;
    bool GetUnsavedData() const override;
    bool GetDataSetEmpty() const override;
    const QList<CTriggerPlugin*>& GetTriggerPlugins() const override;
    void SaveExtraParameters(QXmlStreamWriter& writer) const override;
    void LoadExtraParameters(const QDomElement& element) override;

    CRecordingManagerMeasure* RecordingManager() { return &m_recordingManager; }
    LimitsXmlFile* LimitsFile() { return &m_limitsFile; }
    bool LimitsFileLoaded() const override { return m_isLimitsFileLoaded; } ///< whether limits are in force

    /// Forgets the limits.
    Q_INVOKABLE void clearLimitsFile();
    /// Number of bands of the limits.
    Q_INVOKABLE int getLimitsCount() const;
    /// Upper end of a band, Hz. 0 for an index that is none.
    Q_INVOKABLE double getFrequency(int index) const;
    /// Largest frequency of the instrument, Hz; -1 without an instrument.
    Q_INVOKABLE double getMaxFrequency() const;
    /// Limit of a band, in the display unit. 0 for an index that is none.
    Q_INVOKABLE double getExposure(int index) const;

public slots:
    void OnNewMeasure(QSharedPointer<CMeasureBlock> pMeasureBlock);
    void OnReplayMeasure(QSharedPointer<CMeasureBlock> pMeasureBlock);
    void OnLimitsFilePathChanged();

signals:
    void LimitsFileLoadedChanged(bool value);
    /// A block for the page, live or replayed.
    void NewMeasure(QSharedPointer<CMeasureBlock> pMeasureBlock);

private:
    CUnits::UnitType LimitsDisplayUnits() const override;
    QString LimitsFilePath() const override;
    void ForgetLimitsFile() override;
    void SetLimitsFileLoaded(bool value) override;

    void setDefaultParameters();

    CSettings* m_settings;
    CPluginsManager* m_pluginsManager;
    CRecordingManagerMeasure m_recordingManager;
    LimitsXmlFile m_limitsFile;
    bool m_isLimitsFileLoaded = false;
};
