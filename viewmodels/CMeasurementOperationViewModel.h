// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "COperationViewModel.h"
#include "CReplayParametersViewModel.h"

class CDataSetMeasurement;
class CMeasurementParameters;
class COperationMeasure;
class CRecordingManagerMeasure;
class CSettings;

/// The commands of the action bar, common to the pages of the measure operation. Which command can be given
/// is decided by the action bar; a command itself checks no more than what it needs. Commands that ask the
/// user or call the instrument keep the page on screen until they return.
///
/// Operation and settings must outlive the view model.
class CMeasurementOperationViewModel : public COperationViewModel
{
    Q_OBJECT
    Q_PROPERTY(CReplayParametersViewModel* ReplayParametersViewModel READ ReplayParametersViewModel CONSTANT)
    Q_PROPERTY(
        QString CommentOverAll READ CommentOverAll WRITE SetCommentOverAll NOTIFY CommentOverAllChanged)

public:
    CMeasurementOperationViewModel(const QString& name, COperationMeasure* operation, CSettings* settings,
                                   QObject* parent = nullptr);

    /// Starts to measure, or goes on with a held replay. Asks before stored data is dropped.
    Q_INVOKABLE void resume();
    /// Holds the measurement or the replay.
    Q_INVOKABLE void hold();
    /// Begins a record with an empty dataset.
    Q_INVOKABLE void record();
    /// Stops a replay; stops a record and its measurement.
    Q_INVOKABLE void stop();
    /// Leaves replay and stored data, after a question, for a fresh measurement.
    Q_INVOKABLE void end();
    /// Starts or goes on with the replay.
    Q_INVOKABLE void start();
    /// Replays the next block; the recording manager tells it from `start` by its step-by-step mode.
    Q_INVOKABLE void step();
    /// Delivers the next block of the replay at once.
    Q_INVOKABLE void playback();
    /// Loads a record that the user picks, after a question if data would be lost.
    Q_INVOKABLE void load();
    /// Saves the dataset under a name that the user picks.
    Q_INVOKABLE void save();
    /// Zero-offset calibration of the instrument; blocks until it is done.
    Q_INVOKABLE void zeroOffset(bool forceCalibration);
    Q_INVOKABLE void zeroOffset();
    /// Undoes the zero-offset calibration; blocks until it is done.
    Q_INVOKABLE void restoreZeroOffsetToFactory();
    Q_INVOKABLE void loadParameters();
    Q_INVOKABLE void saveParameters();

    CReplayParametersViewModel* ReplayParametersViewModel() { return &m_replayParametersViewModel; }
    QString CommentOverAll() const { return m_commentOverAll; } ///< comment of the whole record
    void SetCommentOverAll(const QString& comment);

public slots:
    void OnMeasureParametersUnitChanged(CUnits::UnitType units);
    void OnMeasureParametersUncertaintyUnitChanged(CUnits::UnitType units);

signals:
    void CommentOverAllChanged(const QString& comment);

protected:
    COperationMeasure* operation() const { return m_operation; }
    CSettings* settings() const { return m_settings; }
    CRecordingManagerMeasure* recordingManager() const;
    CDataSetMeasurement* dataSet() const;
    CMeasurementParameters* liveParameters() const;

    void pointDataSetAtLiveParameters();
    /// Opens the replay box for the whole dataset, its last block being the current one.
    void openReplayRange();
    /// Undoes all connections with operation, parameters, dataset and recording manager. The replay box stays
    /// connected, since it keeps the operation's replay parameters in step until the end.
    void disconnectFromOperation();

private:
    void takeDisplayUnitsOfLiveParameters();
    void beginSession();
    void endRecord();
    void followLoad();
    void followFailedLoad();
    bool askToQuitOperation() const;
    QString inDefaultStorage(const QString& fileName) const;

    COperationMeasure* const m_operation;
    CSettings* const m_settings;
    CReplayParametersViewModel m_replayParametersViewModel;
    QString m_commentOverAll;
};
