// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAlarm.h"
#include "CAxis.h"

#include <QList>
#include <QObject>
#include <QStringList>

class CAlarmParametersAcAnalysis;
class COperation;

/// The box "Alarm" of the AC analysis page. Follows the parameters of the operation once, when it is made,
/// and writes what the user chooses back to them; parameters loaded later show when the page is built anew.
class CAlarmParametersAcAnalysisViewModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<CAlarm::AlarmState> States READ States NOTIFY StatesChanged)
    Q_PROPERTY(QStringList StateNames READ StateNames NOTIFY StateNamesChanged)
    Q_PROPERTY(int SelectedStateIndex READ SelectedStateIndex WRITE SetSelectedStateIndex NOTIFY
                   SelectedStateIndexChanged)
    Q_PROPERTY(QList<CAxis::AxisType> Axis READ Axis NOTIFY AxisChanged)
    Q_PROPERTY(QStringList AxisNames READ AxisNames NOTIFY AxisNamesChanged)
    Q_PROPERTY(int SelectedAxisIndex READ SelectedAxisIndex WRITE SetSelectedAxisIndex NOTIFY
                   SelectedAxisIndexChanged)

public:
    /// The operation must outlive the view model.
    explicit CAlarmParametersAcAnalysisViewModel(COperation* operation, QObject* parent = nullptr);

    QList<CAlarm::AlarmState> States() const { return m_states; }
    QStringList StateNames() const { return m_stateNames; }         ///< texts of `States`
    int SelectedStateIndex() const { return m_selectedStateIndex; } ///< in `States`; -1 for none of them
    QList<CAxis::AxisType> Axis() const { return m_axis; }
    QStringList AxisNames() const { return m_axisNames; }         ///< texts of `Axis` for the screen
    int SelectedAxisIndex() const { return m_selectedAxisIndex; } ///< in `Axis`; -1 for none of them

    void SetSelectedStateIndex(int index);
    void SetSelectedAxisIndex(int index);

public slots:
    void OnSelectedStateIndexChanged(int index);
    void OnSelectedAxisIndexChanged(int index);

signals:
    void StatesChanged(const QList<CAlarm::AlarmState>& states);
    void StateNamesChanged(const QStringList& names);
    void SelectedStateIndexChanged(int index);
    void AxisChanged(const QList<CAxis::AxisType>& axis);
    void AxisNamesChanged(const QStringList& names);
    void SelectedAxisIndexChanged(int index);

private:
    CAlarmParametersAcAnalysis* const m_parameters;
    QList<CAlarm::AlarmState> m_states;
    QStringList m_stateNames;
    int m_selectedStateIndex = -1;
    QList<CAxis::AxisType> m_axis;
    QStringList m_axisNames;
    int m_selectedAxisIndex = -1;
};
