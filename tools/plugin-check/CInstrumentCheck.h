// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CPropertyWatch.h"

#include <QSharedPointer>

#include <memory>

class CCheckRun;
class CInstrument;
class CMeasurementCheck;

/// The check of one instrument, from the list through connection and measurement back to the list.
class CInstrumentCheck
{
public:
    CInstrumentCheck(CCheckRun& run, const QSharedPointer<CInstrument>& instrument);

    /// False if the instrument could not be connected.
    bool Execute();
    /// Connects it and begins to measure, for an end from outside. False if it does not measure.
    bool LeaveMeasuring();
    /// After such an end: reports what goes on. The plug-in must still exist.
    void CheckLeft(qint64 endNs);

    ~CInstrumentCheck();

private:
    void phase(const char* name);
    void checkListed();
    bool connectInstrument(const char* codeOfFailure);
    void disconnectInstrument();
    void checkDisconnectWhileMeasuring();

    CCheckRun& m_run;
    QSharedPointer<CInstrument> m_instrument;
    CPropertyWatch m_watch;
    std::unique_ptr<CMeasurementCheck> m_left; ///< the measurement that was left to its end
};
