// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAlarm.h"

#include <QList>
#include <QObject>
#include <QStringList>

class CAlarmParametersSpectrum;
class COperation;

/// The box "Alarm" of the spectrum page. Follows the parameters of the operation once, when it is made, and
/// writes what the user chooses back to them; parameters loaded later show when the page is built anew.
class CAlarmParametersSpectrumViewModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<CAlarm::AlarmState> States READ States NOTIFY StatesChanged)
    Q_PROPERTY(QStringList StateNames READ StateNames NOTIFY StateNamesChanged)
    Q_PROPERTY(int SelectedStateIndex READ SelectedStateIndex WRITE SetSelectedStateIndex NOTIFY
                   SelectedStateIndexChanged)
    Q_PROPERTY(
        bool FlagNotification READ FlagNotification WRITE SetFlagNotification NOTIFY FlagNotificationChanged)

public:
    /// The operation must outlive the view model.
    explicit CAlarmParametersSpectrumViewModel(COperation* operation, QObject* parent = nullptr);

    QList<CAlarm::AlarmState> States() const { return m_states; }
    QStringList StateNames() const { return m_stateNames; }         ///< texts of `States`
    int SelectedStateIndex() const { return m_selectedStateIndex; } ///< in `States`; -1 for none of them
    bool FlagNotification() const
    {
        return m_flagNotification;
    } ///< the last check found a violation; set by the page

    void SetSelectedStateIndex(int index);
    void SetFlagNotification(bool value);

public slots:
    void OnSelectedStateIndexChanged(int index);

signals:
    void StatesChanged(const QList<CAlarm::AlarmState>& states);
    void StateNamesChanged(const QStringList& names);
    void SelectedStateIndexChanged(int index);
    void FlagNotificationChanged(bool value);

private:
    CAlarmParametersSpectrum* const m_parameters;
    QList<CAlarm::AlarmState> m_states;
    QStringList m_stateNames;
    int m_selectedStateIndex = -1;
    bool m_flagNotification = false;
};
