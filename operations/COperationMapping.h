// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeasureBlock.h"
#include "CMeasureBlockMapping.h"
#include "COperation.h"
#include "CRecordingManagerMapping.h"

#include <QSharedPointer>

class CMapperPlugin;
class CMapperPluginStopAndGo;
class CPluginsManager;
class CSettings;

/// Measures the field at a series of places. A stop-and-go mapper is sent from point to point of the position
/// source, one block is taken at each, and the session ends with the list. An on-the-fly mapper tells itself
/// when a block is to be taken; the source is not used then, and the session has no end of its own.
class COperationMapping : public COperation
{
    Q_OBJECT
    Q_PROPERTY(CRecordingManagerMapping* RecordingManager READ RecordingManager CONSTANT)
    Q_PROPERTY(CMappingParameters* MappingParameters READ MappingParameters CONSTANT)

public:
    /// All three must outlive the operation.
    COperationMapping(CSettings* settings, CPluginsManager* pluginsManager, CInstrumentSupervisor* supervisor,
                      QObject* parent = nullptr);

    quint64 GetMaxMeasurementCount() const override;
    /// Takes over the parameters of the last run, or defaults, and listens to the instrument.
    void Activate() override;
    /// Stores the parameters and stops listening.
    void Deactivate() override;
    /// Needs a mapper and an instrument; starts the mapper and sends it to the first point.
    void StartSession() override;
    /// Stops the mapper. A block that is under way still arrives.
    void StopSession() override;
    void Reset() override;
    bool GetUnsavedData() const override;
    bool GetDataSetEmpty() const override;
    const QList<CTriggerPlugin*>& GetTriggerPlugins() const override;
    void SaveExtraParameters(QXmlStreamWriter& writer) const override;
    void LoadExtraParameters(const QDomElement& element) override;

    const QList<CMapperPlugin*>& GetMapperPlugins() const;
    CRecordingManagerMapping* RecordingManager() { return &m_recordingManager; }
    CMappingParameters* MappingParameters() { return OperationParameters()->MappingParameters(); }

public slots:
    void OnNewMeasure(QSharedPointer<CMeasureBlock> pMeasureBlock);
    void OnReplayMeasure(QSharedPointer<CMeasureBlockMapping> pMeasureBlock);
    /// A block is to be taken at the place where the mapper is now.
    void OnAcquire();

signals:
    /// A block for the page, live or replayed.
    void NewMeasure(QSharedPointer<CMeasureBlockMapping> pMeasureBlock);

private:
    void setDefaultParameters();
    void ReadCartesianParameters(const QDomElement& element);
    void locate(CMeasureBlockMapping& block);
    void moveOn(CMapperPluginStopAndGo& mapper);
    void endOfList();

    CSettings* m_settings;
    CPluginsManager* m_pluginsManager;
    CRecordingManagerMapping m_recordingManager;
};
