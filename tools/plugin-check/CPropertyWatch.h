// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMutex>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QVector>

class CCheckRun;
class CInstrument;

/// Compares what an instrument's properties say with what its signals told, so that a property that changes
/// in silence is found: the application would go on showing the old value. Signals may come from any thread.
class CPropertyWatch : public QObject
{
    Q_OBJECT

public:
    /// Watches from now on. The instrument must outlive this object.
    CPropertyWatch(CCheckRun& run, CInstrument& instrument);

    /// Reports what changed in silence since the last call or the beginning.
    void Check();
    /// The same, and reports capability lists that changed without the signal that tells the pages of it.
    void CheckWhileConnected();

private slots:
    void onSignal();

private:
    QStringList values() const;
    void checkListUpdates(const QSet<int>& signalled);

    CCheckRun& m_run;
    CInstrument& m_instrument;
    QVector<int> m_properties; ///< indices of those with a signal
    QStringList m_values;      ///< of m_properties

    QMutex m_mutex;        ///< of m_signalled
    QSet<int> m_signalled; ///< indices of the signals that came
};
