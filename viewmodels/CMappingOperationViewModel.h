// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAlarmParametersMappingViewModel.h"
#include "CBlockAlarm.h"
#include "CMappingOperationDatasetViewModel.h"
#include "CMappingParametersViewModel.h"
#include "CMeasureBlockMapping.h"
#include "CMeasurementParametersViewModel.h"
#include "COperationViewModel.h"
#include "COrientation.h"
#include "CPosition.h"
#include "CReplayParametersViewModel.h"
#include "MappingAxes.h"
#include "MappingSession.h"
#include "VectorRecord.h"

#include <QSharedPointer>

#include <array>
#include <deque>
#include <limits>

/// The mapping page. Turns each block, which is one place, into what the page shows: place and last values,
/// plot, table and the arrows of the 3-D view; compares it with the limits of the alarm; and carries the
/// commands of the page.
///
/// The 3-D view keeps the arrows itself and follows the signals; the history here is what it is made from.
class CMappingOperationViewModel : public COperationViewModel
{
    Q_OBJECT
    Q_PROPERTY(CMeasurementParametersViewModel* MeasurementParametersViewModel READ
                   MeasurementParametersViewModel CONSTANT)
    Q_PROPERTY(
        CAlarmParametersMappingViewModel* AlarmParametersViewModel READ AlarmParametersViewModel CONSTANT)
    Q_PROPERTY(
        CMappingParametersViewModel* MappingParametersViewModel READ MappingParametersViewModel CONSTANT)
    Q_PROPERTY(CMappingOperationDatasetViewModel* MappingOperationDatasetViewModel READ
                   MappingOperationDatasetViewModel CONSTANT)
    Q_PROPERTY(CReplayParametersViewModel* ReplayParametersViewModel READ ReplayParametersViewModel CONSTANT)
    Q_PROPERTY(double BLastBlock READ BLastBlock NOTIFY BLastBlockChanged)
    Q_PROPERTY(double dBLastBlock READ dBLastBlock NOTIFY dBLastBlockChanged)
    Q_PROPERTY(double BPrimeLastBlock READ BPrimeLastBlock NOTIFY BPrimeLastBlockChanged)
    Q_PROPERTY(double BxLastBlock READ BxLastBlock NOTIFY BxLastBlockChanged)
    Q_PROPERTY(double ByLastBlock READ ByLastBlock NOTIFY ByLastBlockChanged)
    Q_PROPERTY(double BzLastBlock READ BzLastBlock NOTIFY BzLastBlockChanged)
    Q_PROPERTY(COrientation* Orientation READ Orientation NOTIFY OrientationChanged)
    Q_PROPERTY(CPosition* Position READ Position NOTIFY PositionChanged)
    Q_PROPERTY(double XStart READ XStart NOTIFY XStartChanged)
    Q_PROPERTY(double XStop READ XStop NOTIFY XStopChanged)
    Q_PROPERTY(double YStart READ YStart NOTIFY YStartChanged)
    Q_PROPERTY(double YStop READ YStop NOTIFY YStopChanged)
    Q_PROPERTY(double ZStart READ ZStart NOTIFY ZStartChanged)
    Q_PROPERTY(double ZStop READ ZStop NOTIFY ZStopChanged)
    Q_PROPERTY(double Scale READ Scale NOTIFY ScaleChanged)
    Q_PROPERTY(double MaxScale READ MaxScale NOTIFY MaxScaleChanged)
    Q_PROPERTY(double PosX READ PosX NOTIFY PosXChanged)
    Q_PROPERTY(double PosY READ PosY NOTIFY PosYChanged)
    Q_PROPERTY(double PosZ READ PosZ NOTIFY PosZChanged)
    Q_PROPERTY(double QuatX READ QuatX NOTIFY QuatXChanged)
    Q_PROPERTY(double QuatY READ QuatY NOTIFY QuatYChanged)
    Q_PROPERTY(double QuatZ READ QuatZ NOTIFY QuatZChanged)
    Q_PROPERTY(double QuatScalar READ QuatScalar NOTIFY QuatScalarChanged)
    Q_PROPERTY(CAlarm::AlarmState LastAlarmState READ LastAlarmState NOTIFY LastAlarmStateChanged)
    Q_PROPERTY(CAxis::AxisType LastAlarmAxis READ LastAlarmAxis NOTIFY LastAlarmAxisChanged)
    Q_PROPERTY(QString CommentOverAll READ CommentOverAll NOTIFY CommentOverAllChanged)
    Q_PROPERTY(QString CommentBlock READ CommentBlock NOTIFY CommentBlockChanged)
    Q_PROPERTY(double SliderValueGraph3D READ SliderValueGraph3D WRITE SetSliderValueGraph3D NOTIFY
                   SliderValueGraph3DChanged)
    Q_PROPERTY(bool CanAcceptNewMeasure READ CanAcceptNewMeasure NOTIFY CanAcceptNewMeasureChanged)
    Q_PROPERTY(int MaxVectorCount READ MaxVectorCount NOTIFY MaxVectorCountChanged)

public:
    /// Operation, settings and notifier must outlive the view model. A page that is opened on blocks shows
    /// them.
    CMappingOperationViewModel(COperationMapping* operation, CSettings* settings, CUserNotifier* notifier,
                               QObject* parent = nullptr);

    QString GetHelpName() const override;
    void PageLeft() override;

    /// Starts a record and its session, or goes on with a held replay. Asks before stored data is dropped.
    Q_INVOKABLE void resume();
    /// Begins a record with an empty dataset.
    Q_INVOKABLE void record() { m_session.beginRecord(); }
    /// Holds the replay or the session.
    Q_INVOKABLE void hold();
    /// Stops a replay; stops a record and its session.
    Q_INVOKABLE void stop();
    /// Leaves session and data, after a question.
    Q_INVOKABLE void end();
    /// Starts the replay.
    Q_INVOKABLE void start();
    /// Delivers the next block of the replay at once.
    Q_INVOKABLE void playback() { m_session.playNextBlock(); }
    /// Replays the next block; the recording manager tells it from `start` by its step-by-step mode.
    Q_INVOKABLE void step() { m_session.resumeReplay(); }
    /// Zero-offset calibration of the instrument; blocks until it is done.
    Q_INVOKABLE void zeroOffset(bool forceCalibration);
    Q_INVOKABLE void zeroOffset() { zeroOffset(true); }
    /// Undoes the zero-offset calibration; blocks until it is done.
    Q_INVOKABLE void restoreZeroOffsetToFactory();
    /// Rates and choices for a first map, in effect with an instrument only.
    Q_INVOKABLE void setDefaultParameters()
    {
        m_session.setDefaultParameters(m_measurementParametersViewModel);
    }
    /// Puts the arrow of this number on view; nothing for a number that is none.
    Q_INVOKABLE void getComputeVector3D(int blockIndex);
    /// Loads a record that the user picks, after a question if data would be lost.
    Q_INVOKABLE void load();
    /// Saves the dataset under a name that the user picks.
    Q_INVOKABLE void save();
    Q_INVOKABLE void loadParameters();
    Q_INVOKABLE void saveParameters();

    CMeasurementParametersViewModel* MeasurementParametersViewModel()
    {
        return &m_measurementParametersViewModel;
    }
    CAlarmParametersMappingViewModel* AlarmParametersViewModel() { return &m_alarmParametersViewModel; }
    CMappingParametersViewModel* MappingParametersViewModel() { return &m_mappingParametersViewModel; }
    CMappingOperationDatasetViewModel* MappingOperationDatasetViewModel() { return &m_datasetViewModel; }
    CReplayParametersViewModel* ReplayParametersViewModel() { return &m_replayParametersViewModel; }

    // Last sample of the block on screen, the components in the frame of the mapper.
    double BLastBlock() const { return m_bLastBlock; }
    double dBLastBlock() const { return m_dBLastBlock; } ///< in the unit of the uncertainty on the page
    double BPrimeLastBlock() const { return m_bPrimeLastBlock; }
    double BxLastBlock() const { return m_bxLastBlock; }
    double ByLastBlock() const { return m_byLastBlock; }
    double BzLastBlock() const { return m_bzLastBlock; }
    /// Of the block that was measured, loaded or replayed last. Looking at a stored block leaves it.
    COrientation* Orientation() { return &m_orientation; }
    CPosition* Position() { return &m_position; } ///< likewise
    // Limits of the 3-D view, in the length unit of the mapper. A stop may lie below its start.
    double XStart() const { return m_axes.xStart; }
    double XStop() const { return m_axes.xStop; }
    double YStart() const { return m_axes.yStart; }
    double YStop() const { return m_axes.yStop; }
    double ZStart() const { return m_axes.zStart; }
    double ZStop() const { return m_axes.zStop; }
    // The arrow on view.
    double Scale() const { return m_vector.scale; } ///< magnitude of its field
    double MaxScale() const { return m_maxScale; }  ///< largest magnitude since the last clear, above 0
    double PosX() const { return m_vector.posX; }
    double PosY() const { return m_vector.posY; }
    double PosZ() const { return m_vector.posZ; }
    double QuatX() const { return m_vector.quatX; } ///< turns the direction +Y to that of the field
    double QuatY() const { return m_vector.quatY; }
    double QuatZ() const { return m_vector.quatZ; }
    double QuatScalar() const { return m_vector.quatScalar; }
    CAlarm::AlarmState LastAlarmState() const { return m_alarm.LastState(); } ///< seen by the last check
    CAxis::AxisType LastAlarmAxis() const { return m_alarm.LastAxis(); }      ///< seen by the last check
    QString CommentOverAll() const { return m_commentOverAll; }               ///< of the whole record
    QString CommentBlock() const { return m_commentBlock; }                   ///< of the block on screen
    double SliderValueGraph3D() const { return m_sliderValueGraph3D; }        ///< length of the longest arrow
    bool CanAcceptNewMeasure() const { return m_canAcceptNewMeasure; }        ///< the views follow the blocks
    int MaxVectorCount() const { return m_maxVectorCount; }                   ///< most arrows that are kept

    void SetSliderValueGraph3D(double value);

    const std::deque<VectorRecord>& VectorHistory() const { return m_vectorHistory; }

public slots:
    void OnNewMeasure(QSharedPointer<CMeasureBlockMapping> block);
    void OnOperationParameterUnitChanged();
    void OnMeasureParametersUnitChanged(CUnits::UnitType units);
    void OnMeasureParametersUncertaintyUnitChanged(CUnits::UnitType units);
    void OnAlarmAxisUnitChanged();
    void OnDataSetCleared();
    void OnPlayingBackChanged(bool isPlayingBack);
    void OnMappingFileLoaded();
    void OnMappingParmsSourceChanged();
    void OnMapperSourceCartesianXStartChanged(double value);
    void OnMapperSourceCartesianXStopChanged(double value);
    void OnMapperSourceCartesianYStartChanged(double value);
    void OnMapperSourceCartesianYStopChanged(double value);
    void OnMapperSourceCartesianZStartChanged(double value);
    void OnMapperSourceCartesianZStopChanged(double value);
    void OnDatasetLoaded();

signals:
    void BLastBlockChanged(double value);
    void dBLastBlockChanged(double value);
    void BPrimeLastBlockChanged(double value);
    void BxLastBlockChanged(double value);
    void ByLastBlockChanged(double value);
    void BzLastBlockChanged(double value);
    void OrientationChanged(COrientation* value);
    void PositionChanged(CPosition* value);
    void XStartChanged(double value);
    void XStopChanged(double value);
    void YStartChanged(double value);
    void YStopChanged(double value);
    void ZStartChanged(double value);
    void ZStopChanged(double value);
    void ScaleChanged(double value);
    void MaxScaleChanged(double value);
    void PosXChanged(double value);
    void PosYChanged(double value);
    void PosZChanged(double value);
    void QuatXChanged(double value);
    void QuatYChanged(double value);
    void QuatZChanged(double value);
    void QuatScalarChanged(double value);
    void LastAlarmStateChanged(CAlarm::AlarmState state);
    void LastAlarmAxisChanged(CAxis::AxisType axis);
    void CommentOverAllChanged(const QString& comment);
    void CommentBlockChanged(const QString& comment);
    void SliderValueGraph3DChanged(double value);
    void CanAcceptNewMeasureChanged(bool value);
    void MaxVectorCountChanged(int value);

    // To the 3-D view.
    /// All arrows are to go.
    void clear3DPlots();
    /// All arrows are to be made anew from the history.
    void reload3DPlots();
    /// The arrow on view is a new one.
    void newVectorToPlot();
    /// The arrows behind the block on screen are to be hidden.
    void setVisibleUntilChart();

private:
    using BlockPointer = QSharedPointer<CMeasureBlockMapping>;

    /// Up to which block the views are rebuilt, which is the block on screen then.
    enum class Extent { ReplayIndex, WholeDataset };

    static constexpr double kSmallestMaxScale = std::numeric_limits<double>::epsilon();

    void connectSignals();
    void connectAxes();
    void presentExistingData();
    void followLoad();
    void followFailedLoad();

    void processBlock(const BlockPointer& block);
    void rebuildViews(Extent extent);
    void resetViews(bool withVectors);
    void updatePositionAndOrientation(const CMeasureBlockMapping& block);
    void updateLastBlockValues(const CMeasureBlockMapping& block);
    void setLastBlockValues(const std::array<double, 6>& values);
    void checkOutOfLimit(const CMeasureBlock& block);
    void appendVector(const CMeasureBlockMapping& block);
    void putOnView(const VectorRecord& vector);
    void openReplayRange();
    int numBlocks() const;
    /// Index of the block that was shown last; the dataset must not be empty.
    std::size_t replayedBlock() const;
    int vectorCapacity() const;
    void setAxes(const MappingAxes& axes);

    void setPositionOnView(double x, double y, double z);
    void setMaxScale(double value);
    void setMaxVectorCount(int value);
    void setCommentOverAll(const QString& comment);
    void setCommentBlock(const QString& comment);
    void setCanAcceptNewMeasure(bool value);

    COperationMapping* const m_operation;
    CSettings* const m_settings;
    MappingSession m_session;
    CMeasurementParametersViewModel m_measurementParametersViewModel;
    CAlarmParametersMappingViewModel m_alarmParametersViewModel;
    CMappingParametersViewModel m_mappingParametersViewModel;
    CMappingOperationDatasetViewModel m_datasetViewModel;
    CReplayParametersViewModel m_replayParametersViewModel;
    CBlockAlarm m_alarm;

    double m_bLastBlock = 0;
    double m_dBLastBlock = 0;
    double m_bPrimeLastBlock = 0;
    double m_bxLastBlock = 0;
    double m_byLastBlock = 0;
    double m_bzLastBlock = 0;
    COrientation m_orientation;
    CPosition m_position;
    MappingAxes m_axes;
    VectorRecord m_vector; ///< on view
    double m_maxScale = kSmallestMaxScale;
    QString m_commentOverAll;
    QString m_commentBlock;
    double m_sliderValueGraph3D = 0.1;
    bool m_canAcceptNewMeasure = false;
    int m_maxVectorCount = 0;

    std::deque<VectorRecord> m_vectorHistory; ///< oldest first
    bool m_rebuildingVectors = false;         ///< the arrows are made anew with the other views
};
