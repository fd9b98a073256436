// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAlarmParametersMeterViewModel.h"
#include "CBlockAlarm.h"
#include "CMeasureBlock.h"
#include "CMeasurementOperationViewModel.h"
#include "CMeasurementParametersViewModel.h"
#include "CMeterOperationDatasetViewModel.h"

#include <QDateTime>
#include <QSharedPointer>
#include <QStringList>
#include <QTimer>
#include <QVector>

/// The meter page. Turns each block of the measure operation, live or replayed, into what the page shows: the
/// values of its last sample with their maxima, the compass, the arrows of field and rotation, the table and
/// the time plot; and compares it with the limits of the alarm. A replayed block is cut into small blocks, so
/// that it looks like a continuous measurement.
///
/// Last values, maxima and quaternions announce every assignment, changed or not.
class CMeterOperationViewModel : public CMeasurementOperationViewModel
{
    Q_OBJECT
    Q_PROPERTY(CMeasurementParametersViewModel* MeasurementParametersViewModel READ
                   MeasurementParametersViewModel CONSTANT)
    Q_PROPERTY(
        CAlarmParametersMeterViewModel* AlarmParametersViewModel READ AlarmParametersViewModel CONSTANT)
    Q_PROPERTY(CMeterOperationDatasetViewModel* MeterOperationDatasetViewModel READ
                   MeterOperationDatasetViewModel CONSTANT)
    Q_PROPERTY(double BLastBlock READ BLastBlock NOTIFY BLastBlockChanged)
    Q_PROPERTY(double BPrimeLastBlock READ BPrimeLastBlock NOTIFY BPrimeLastBlockChanged)
    Q_PROPERTY(double BxLastBlock READ BxLastBlock NOTIFY BxLastBlockChanged)
    Q_PROPERTY(double ByLastBlock READ ByLastBlock NOTIFY ByLastBlockChanged)
    Q_PROPERTY(double BzLastBlock READ BzLastBlock NOTIFY BzLastBlockChanged)
    Q_PROPERTY(double dBLastBlock READ dBLastBlock NOTIFY dBLastBlockChanged)
    Q_PROPERTY(double BMax READ BMax NOTIFY BMaxChanged)
    Q_PROPERTY(double BPrimeMax READ BPrimeMax NOTIFY BPrimeMaxChanged)
    Q_PROPERTY(double BxMax READ BxMax NOTIFY BxMaxChanged)
    Q_PROPERTY(double ByMax READ ByMax NOTIFY ByMaxChanged)
    Q_PROPERTY(double BzMax READ BzMax NOTIFY BzMaxChanged)
    Q_PROPERTY(QStringList ProbeAxisNames READ ProbeAxisNames NOTIFY ProbeAxisNamesChanged)
    Q_PROPERTY(int SelectedProbeAxisIndex READ SelectedProbeAxisIndex WRITE SetSelectedProbeAxisIndex NOTIFY
                   SelectedProbeAxisIndexChanged)
    Q_PROPERTY(QStringList ModeNames READ ModeNames NOTIFY ModeNamesChanged)
    Q_PROPERTY(int SelectedModeIndex READ SelectedModeIndex WRITE SetSelectedModeIndex NOTIFY
                   SelectedModeIndexChanged)
    Q_PROPERTY(bool UpdateLeftCompas READ UpdateLeftCompas NOTIFY UpdateLeftCompasChanged)
    Q_PROPERTY(bool UpdateRightCompas READ UpdateRightCompas NOTIFY UpdateRightCompasChanged)
    Q_PROPERTY(bool ClearCompas READ ClearCompas NOTIFY ClearCompasChanged)
    Q_PROPERTY(double CompasHeight READ CompasHeight NOTIFY CompasHeightChanged)
    Q_PROPERTY(double CompasWidth READ CompasWidth NOTIFY CompasWidthChanged)
    Q_PROPERTY(CAlarm::AlarmState LastAlarmState READ LastAlarmState NOTIFY LastAlarmStateChanged)
    Q_PROPERTY(CAxis::AxisType LastAlarmAxis READ LastAlarmAxis NOTIFY LastAlarmAxisChanged)
    Q_PROPERTY(QString CommentBlock READ CommentBlock NOTIFY CommentBlockChanged)
    Q_PROPERTY(bool NewMeasureReady READ NewMeasureReady NOTIFY NewMeasureReadyChanged)
    Q_PROPERTY(double QuatX READ QuatX NOTIFY QuatXChanged)
    Q_PROPERTY(double QuatY READ QuatY NOTIFY QuatYChanged)
    Q_PROPERTY(double QuatZ READ QuatZ NOTIFY QuatZChanged)
    Q_PROPERTY(double QuatScalar READ QuatScalar NOTIFY QuatScalarChanged)
    Q_PROPERTY(bool RotEnable READ RotEnable WRITE SetRotEnable NOTIFY RotEnableChanged)
    Q_PROPERTY(bool RotVisible READ RotVisible NOTIFY RotVisibleChanged)
    Q_PROPERTY(double RotQuatX READ RotQuatX NOTIFY RotQuatXChanged)
    Q_PROPERTY(double RotQuatY READ RotQuatY NOTIFY RotQuatYChanged)
    Q_PROPERTY(double RotQuatZ READ RotQuatZ NOTIFY RotQuatZChanged)
    Q_PROPERTY(double RotQuatScalar READ RotQuatScalar NOTIFY RotQuatScalarChanged)

public:
    /// Operation, settings and notifier must outlive the view model.
    CMeterOperationViewModel(COperationMeasure* operation, CSettings* settings, CUserNotifier* notifier,
                             QObject* parent = nullptr);

    QString GetHelpName() const override;
    void PageLeft() override;

    /// Rates and choices for a first look at a field, in effect with an instrument only.
    Q_INVOKABLE void setDefaultParameters();
    Q_INVOKABLE void resetAllMaximum();

    CMeasurementParametersViewModel* MeasurementParametersViewModel()
    {
        return &m_measurementParametersViewModel;
    }
    CAlarmParametersMeterViewModel* AlarmParametersViewModel() { return &m_alarmParametersViewModel; }
    CMeterOperationDatasetViewModel* MeterOperationDatasetViewModel() { return &m_datasetViewModel; }
    double BLastBlock() const { return m_bLastBlock; } ///< of the last sample of the block on screen
    double BPrimeLastBlock() const { return m_bPrimeLastBlock; }
    double BxLastBlock() const { return m_bxLastBlock; }
    double ByLastBlock() const { return m_byLastBlock; }
    double BzLastBlock() const { return m_bzLastBlock; }
    double dBLastBlock() const { return m_dBLastBlock; } ///< in the unit of the uncertainty on the page
    double BMax() const { return m_bMax; }               ///< the largest by magnitude, with its sign
    double BPrimeMax() const { return m_bPrimeMax; }
    double BxMax() const { return m_bxMax; }
    double ByMax() const { return m_byMax; }
    double BzMax() const { return m_bzMax; }
    QStringList ProbeAxisNames() const { return m_probeAxisNames; }
    int SelectedProbeAxisIndex() const { return m_selectedProbeAxisIndex; } ///< reference axis of the compass
    QStringList ModeNames() const { return m_modeNames; }
    int SelectedModeIndex() const { return m_selectedModeIndex; } ///< 0 DC: the field, 1 AC: the direction B'
    bool UpdateLeftCompas() const { return m_updateLeftCompas; }  ///< rises when the left side is to be drawn
    bool UpdateRightCompas() const
    {
        return m_updateRightCompas;
    }                                                      ///< rises when the right side is to be drawn
    bool ClearCompas() const { return m_clearCompas; }     ///< rises when both sides are to be cleared
    double CompasHeight() const { return m_compasHeight; } ///< base of the triangle, fraction of the height
    double CompasWidth() const
    {
        return m_compasWidth;
    } ///< length of the triangle, fraction of a side's width
    CAlarm::AlarmState LastAlarmState() const { return m_alarm.LastState(); } ///< seen by the last check
    CAxis::AxisType LastAlarmAxis() const { return m_alarm.LastAxis(); }      ///< seen by the last check
    QString CommentBlock() const { return m_commentBlock; }    ///< comment of the block on screen
    bool NewMeasureReady() const { return m_newMeasureReady; } ///< false while a block is worked on
    double QuatX() const { return m_arrow.x; }                 ///< rotation of the field arrow
    double QuatY() const { return m_arrow.y; }
    double QuatZ() const { return m_arrow.z; }
    double QuatScalar() const { return m_arrow.scalar; }
    bool RotEnable() const { return m_rotEnable; }   ///< the user wants to see the rotation of the field
    bool RotVisible() const { return m_rotVisible; } ///< the field turns in one sense throughout the block
    double RotQuatX() const { return m_rotationArrow.x; } ///< orientation of the rotation arrow
    double RotQuatY() const { return m_rotationArrow.y; }
    double RotQuatZ() const { return m_rotationArrow.z; }
    double RotQuatScalar() const { return m_rotationArrow.scalar; }

    void SetSelectedProbeAxisIndex(int index);
    void SetSelectedModeIndex(int index);
    void SetRotEnable(bool enable);

public slots:
    void OnNewMeasure(QSharedPointer<CMeasureBlock> block);
    void OnOperationParameterUnitChanged();
    void OnMeasureParametersUncertaintyUnitChanged();
    void OnAlarmAxisUnitChanged();
    void OnDataSetCleared();
    void OnPlayingBackChanged(bool isPlayingBack);
    void OnIsHoldingChanged(bool isHolding);
    void OnSelectedProbeAxisIndexChanged();
    void OnSelectedModeIndexChanged();
    void OnDatasetLoaded();
    void OnSmallBlockTimer();

signals:
    void BLastBlockChanged(double value);
    void BPrimeLastBlockChanged(double value);
    void BxLastBlockChanged(double value);
    void ByLastBlockChanged(double value);
    void BzLastBlockChanged(double value);
    void dBLastBlockChanged(double value);
    void BMaxChanged(double value);
    void BPrimeMaxChanged(double value);
    void BxMaxChanged(double value);
    void ByMaxChanged(double value);
    void BzMaxChanged(double value);
    void ProbeAxisNamesChanged(const QStringList& names);
    void SelectedProbeAxisIndexChanged(int index);
    void ModeNamesChanged(const QStringList& names);
    void SelectedModeIndexChanged(int index);
    void UpdateLeftCompasChanged(bool update);
    void UpdateRightCompasChanged(bool update);
    void ClearCompasChanged(bool clear);
    void CompasHeightChanged(double height);
    void CompasWidthChanged(double width);
    // The two of the alarm go with the convention: a check takes over new values without a word.
    void LastAlarmStateChanged(CAlarm::AlarmState state);
    void LastAlarmAxisChanged(CAxis::AxisType axis);
    void CommentBlockChanged(const QString& comment);
    void NewMeasureReadyChanged(bool ready);
    void QuatXChanged(double value);
    void QuatYChanged(double value);
    void QuatZChanged(double value);
    void QuatScalarChanged(double value);
    void RotEnableChanged(bool enable);
    void RotVisibleChanged(bool visible);
    void RotQuatXChanged(double value);
    void RotQuatYChanged(double value);
    void RotQuatZChanged(double value);
    void RotQuatScalarChanged(double value);

private:
    /// Whether a block takes the place of the rows in the table or goes behind them.
    enum class TableRows { Replace, Append };

    /// Whether a block comes in, live or by a replay in flow, or the user looks at a stored one, which the
    /// plot holds already.
    enum class BlockSource { Incoming, Stored };

    /// As constructed the identity rotation.
    struct Rotation
    {
        double x = 0;
        double y = 0;
        double z = 0;
        double scalar = 1;
    };

    void connectSignals();
    BlockPointer lastBlockOfDataSet() const;

    void resetDisplay();
    void presentExistingData();
    void fillChart();
    bool isChartBehind();
    void processBlock(const BlockPointer& block, TableRows tableRows, BlockSource source);
    void updateChart(const BlockPointer& block, BlockSource source);
    void updateLastBlockValues(const CMeasureBlock& block);
    void raiseMaximum(double& maximum, double value, void (CMeterOperationViewModel::*changed)(double));
    void updateCompass(const CMeasureBlock& block);
    void redoCompass();
    void clearCompass();
    void checkAlarm(const CMeasureBlock& block);
    void updateArrows(const CMeasureBlock& block);
    void updateFieldArrow();
    void updateRotationArrow(const CMeasureBlock& block);
    void setCommentBlock(const QString& comment);
    void setRotVisible(bool visible);

    void appendSmallBlocks(const CMeasureBlock& block);
    void dropSmallBlocks();
    int delayToNextSmallBlock() const;

    CMeasurementParametersViewModel m_measurementParametersViewModel;
    CAlarmParametersMeterViewModel m_alarmParametersViewModel;
    CMeterOperationDatasetViewModel m_datasetViewModel;
    CBlockAlarm m_alarm;

    double m_bLastBlock = 0;
    double m_bPrimeLastBlock = 0;
    double m_bxLastBlock = 0;
    double m_byLastBlock = 0;
    double m_bzLastBlock = 0;
    double m_dBLastBlock = 0;
    double m_bMax = 0;
    double m_bPrimeMax = 0;
    double m_bxMax = 0;
    double m_byMax = 0;
    double m_bzMax = 0;
    QStringList m_probeAxisNames;
    int m_selectedProbeAxisIndex = 0;
    QStringList m_modeNames;
    int m_selectedModeIndex = 0;
    bool m_updateLeftCompas = false;
    bool m_updateRightCompas = false;
    bool m_clearCompas = false;
    double m_compasHeight = 0;
    double m_compasWidth = 0;
    QString m_commentBlock;
    bool m_newMeasureReady = false;
    Rotation m_arrow;
    bool m_rotEnable = false;
    bool m_rotVisible = false;
    Rotation m_rotationArrow;

    QVector<BlockPointer> m_smallBlocks; ///< pieces that wait for their time; done with once all were shown
    int m_smallBlockIndex = 0;           ///< next piece
    QDateTime m_firstSampleTime;         ///< of the replayed block, whose first piece begins a new table
    quint32 m_firstSampleNanoseconds = 0;
    QTimer m_smallBlockTimer;
    double m_timeWarp = 1.0;
    bool m_fullRedraw = false; ///< the plot is to be filled anew from the dataset
};
