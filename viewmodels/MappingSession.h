// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "COperationMapping.h"

class CMeasurementParametersViewModel;

/// The parts of the mapping operation, and what the commands of the page do with them whatever the page
/// shows. The operation must outlive the object.
class MappingSession
{
public:
    explicit MappingSession(COperationMapping& operation) : m_operation(operation) {}

    CRecordingManagerMapping& recordingManager() const { return *m_operation.RecordingManager(); }
    CDataSetMapping& dataSet() const { return *recordingManager().DataSet(); }
    CMappingParameters& mappingParameters() const { return *m_operation.MappingParameters(); }
    CMeasurementParameters& liveParameters() const
    {
        return *m_operation.OperationParameters()->MeasurementParameters();
    }
    CAlarmParametersMapping& alarmParameters() const
    {
        return *m_operation.OperationParameters()->AlarmParametersMapping();
    }

    /// An empty dataset, with its texts, that keeps what comes.
    void beginRecord();
    /// A record and the session that fills it.
    void begin();
    /// Holds replay or session.
    void hold();
    /// Ends the record and what fills it.
    void endRecord();
    /// Starts the replay, or goes on with it.
    void startReplay(double timeWarp);
    void resumeReplay();
    /// Delivers the next block of the replay at once.
    void playNextBlock();
    void calibrateZeroOffset(bool force);
    void restoreZeroOffset();
    /// Rates, and the first entry of each list of the measurement box.
    void setDefaultParameters(CMeasurementParametersViewModel& box);

private:
    void pauseReplayOrStopSession();

    COperationMapping& m_operation;
};
