// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeasureBlock.h"
#include "COperationViewModel.h"
#include "CReplayParametersViewModel.h"

#include <QSharedPointer>

#include <functional>

class CDataSetMeasurement;
class CMeasurementParameters;
class CMeasurementParametersViewModel;
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
    using BlockPointer = QSharedPointer<CMeasureBlock>;

    COperationMeasure* operation() const { return m_operation; }
    CSettings* settings() const { return m_settings; }
    CRecordingManagerMeasure* recordingManager() const;
    CDataSetMeasurement* dataSet() const;
    CMeasurementParameters* liveParameters() const;

    void pointDataSetAtLiveParameters();
    /// A first look at a field, in effect with an instrument only: continuous measurement with this
    /// averaging, the page's own rates, and the first entry of each list of the measurement box.
    void applyDefaults(CMeasurementParametersViewModel& box, quint16 averaging,
                       const std::function<void(CMeasurementParameters&)>& setRates);
    /// Whether the page shows blocks of the past, by their index, and not the newest.
    bool showsStoredBlocks() const;
    /// The newest block, or the one of the past that is looked at. Null for an empty dataset.
    BlockPointer blockOnScreen() const;
    /// Shows the last block of a loaded dataset in the way of the page, with the replay box open for all.
    void presentDataset(const std::function<void(const BlockPointer&)>& present);
    /// Brings a plot that holds the history up to date when the page opens. It either takes the blocks up to
    /// an index, or all with that one in view, or all as they came live. A replay waits meanwhile.
    void fillPlot(const std::function<void(int index, bool wholeDataset)>& loadUpTo,
                  const std::function<void()>& loadAll);
    /// Undoes all connections with operation, limits, parameters, dataset and recording manager. The replay
    /// box stays connected, since it keeps the operation's replay parameters in step until the end.
    void disconnectFromOperation();

    /// Opens the replay box for all blocks of the dataset, with the last one in view.
    void openReplayRange();

private:
    void takeDisplayUnitsOfLiveParameters();
    void beginSession();
    void endRecord();
    void followLoad();
    void followFailedLoad();

    COperationMeasure* const m_operation;
    CSettings* const m_settings;
    CReplayParametersViewModel m_replayParametersViewModel;
    QString m_commentOverAll;
};
