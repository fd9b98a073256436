// SPDX-License-Identifier: GPL-3.0-or-later
#include "COperationsManager.h"

#include "CInstrumentSupervisor.h"
#include "CUtils.h"

namespace {

/// Takes the operation back to no data and stores its parameters.
void endOperation(COperation& operation)
{
    operation.StopSession();
    operation.Reset();
    operation.Deactivate();
}

/// The driver is told in every case: it may have let go of the same parameters in the meantime.
void giveParameters(COperation& operation, CInstrument& instrument)
{
    CMeasurementParameters* parameters = operation.OperationParameters()->MeasurementParameters();
    if (instrument.MeasurementParameters() == parameters)
        emit instrument.MeasurementParametersChanged(parameters);
    else
        instrument.SetMeasurementParameters(parameters);
}

} // namespace

COperationsManager::COperationsManager(CSettings* settings, CPluginsManager* pluginsManager,
                                       CInstrumentSupervisor* supervisor, QObject* parent)
    : QObject(parent), m_supervisor(supervisor), m_operationMeasure(settings, pluginsManager, supervisor),
      m_operationMapping(settings, pluginsManager, supervisor)
{
}

bool COperationsManager::ChangeOperationAllowed(const COperation* next) const
{
    if (next == m_activeOperation || !m_activeOperation)
        return true;
    if (!m_activeOperation->GetUnsavedData() && !m_activeOperation->SessionInProgress())
        return true;
    if (next && next->Name() == m_activeOperation->Name())
        return true;
    return CUtils::AskConfirmation(tr("Are you sure you want to quit the current operation?"),
                                   tr("All the measured data will be lost"));
}

void COperationsManager::SetActiveOperation(COperation* operation)
{
    if (operation == m_activeOperation)
        return;
    LeaveActiveOperation();
    if (const QSharedPointer<CInstrument> instrument = m_supervisor->Instrument().toStrongRef())
        giveParameters(*operation, *instrument);
    m_activeOperation = operation;
    m_activeOperation->Activate();
}

void COperationsManager::LeaveActiveOperation()
{
    if (m_activeOperation)
        endOperation(*m_activeOperation);
    m_activeOperation = nullptr;
}
