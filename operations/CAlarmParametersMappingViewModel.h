// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAlarm.h"
#include "CAxis.h"
#include "CUnits.h"

#include <QList>
#include <QObject>
#include <QStringList>

class CAlarmParametersMapping;
class COperation;

/// The box "Alarm" of the mapping page. Follows the parameters of the operation once, when it is made, and
/// writes what the user chooses back to them; parameters loaded later show when the page is built anew. The
/// unit of the limits goes one way, from the page to the box.
class CAlarmParametersMappingViewModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<CAlarm::AlarmState> States READ States NOTIFY StatesChanged)
    Q_PROPERTY(QStringList StateNames READ StateNames NOTIFY StateNamesChanged)
    Q_PROPERTY(int SelectedStateIndex READ SelectedStateIndex WRITE SetSelectedStateIndex NOTIFY
                   SelectedStateIndexChanged)
    Q_PROPERTY(
        bool FlagNotification READ FlagNotification WRITE SetFlagNotification NOTIFY FlagNotificationChanged)
    Q_PROPERTY(CUnits::UnitType DisplayAlarmUnits READ DisplayAlarmUnits WRITE SetDisplayAlarmUnits NOTIFY
                   DisplayAlarmUnitsChanged)
    Q_PROPERTY(QList<CAxis::AxisType> Axis READ Axis NOTIFY AxisChanged)
    Q_PROPERTY(QStringList AxisNames READ AxisNames NOTIFY AxisNamesChanged)
    Q_PROPERTY(int SelectedAxisIndex READ SelectedAxisIndex WRITE SetSelectedAxisIndex NOTIFY
                   SelectedAxisIndexChanged)
    Q_PROPERTY(double Minimum READ Minimum WRITE SetMinimum NOTIFY MinimumChanged)
    Q_PROPERTY(double Maximum READ Maximum WRITE SetMaximum NOTIFY MaximumChanged)

public:
    /// The operation must outlive the view model.
    explicit CAlarmParametersMappingViewModel(COperation* operation, QObject* parent = nullptr);

    QList<CAlarm::AlarmState> States() const { return m_states; }
    QStringList StateNames() const { return m_stateNames; }         ///< texts of `States`
    int SelectedStateIndex() const { return m_selectedStateIndex; } ///< in `States`; -1 for none of them
    bool FlagNotification() const
    {
        return m_flagNotification;
    } ///< the last check found a violation; set by the page
    CUnits::UnitType DisplayAlarmUnits() const
    {
        return m_displayAlarmUnits;
    } ///< label of the limits; set by the page
    QList<CAxis::AxisType> Axis() const { return m_axis; }
    QStringList AxisNames() const { return m_axisNames; }         ///< texts of `Axis` for the screen
    int SelectedAxisIndex() const { return m_selectedAxisIndex; } ///< in `Axis`; -1 for none of them
    double Minimum() const
    {
        return m_minimum;
    } ///< smallest allowed value; a change of unit does not convert it
    double Maximum() const
    {
        return m_maximum;
    } ///< largest allowed value; a change of unit does not convert it

    void SetSelectedStateIndex(int index);
    void SetFlagNotification(bool value);
    void SetDisplayAlarmUnits(CUnits::UnitType units);
    void SetSelectedAxisIndex(int index);
    void SetMinimum(double value);
    void SetMaximum(double value);

public slots:
    void OnSelectedStateIndexChanged(int index);
    void OnSelectedAxisIndexChanged(int index);
    void OnMinimumChanged(double value);
    void OnMaximumChanged(double value);

signals:
    void StatesChanged(const QList<CAlarm::AlarmState>& states);
    void StateNamesChanged(const QStringList& names);
    void SelectedStateIndexChanged(int index);
    void FlagNotificationChanged(bool value);
    void DisplayAlarmUnitsChanged(CUnits::UnitType units);
    void AxisChanged(const QList<CAxis::AxisType>& axis);
    void AxisNamesChanged(const QStringList& names);
    void SelectedAxisIndexChanged(int index);
    void MinimumChanged(double value);
    void MaximumChanged(double value);

private:
    CAlarmParametersMapping* const m_parameters;
    QList<CAlarm::AlarmState> m_states;
    QStringList m_stateNames;
    int m_selectedStateIndex = -1;
    bool m_flagNotification = false;
    CUnits::UnitType m_displayAlarmUnits = CUnits::TESLA;
    QList<CAxis::AxisType> m_axis;
    QStringList m_axisNames;
    int m_selectedAxisIndex = -1;
    double m_minimum = 0.0;
    double m_maximum = 0.0;
};
