// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "COperationMapping.h"
#include "COperationMeasure.h"

#include <QObject>

class CInstrumentSupervisor;
class CPluginsManager;
class CSettings;

/// Owns the operations, of which at most one is active, and guards data that a change of operation would
/// lose.
class COperationsManager : public QObject
{
    Q_OBJECT

public:
    /// All three must outlive the manager.
    COperationsManager(CSettings* settings, CPluginsManager* pluginsManager,
                       CInstrumentSupervisor* supervisor, QObject* parent = nullptr);

    COperationMeasure* OperationMeasure() { return &m_operationMeasure; }
    COperationMapping* OperationMapping() { return &m_operationMapping; }

    /// Whether the active operation may be left for `next` (null: for none); asks the user when data would be
    /// lost.
    bool ChangeOperationAllowed(const COperation* next) const;
    /// Ends the active operation, if it is another one, and activates `operation`, which must not be null.
    void SetActiveOperation(COperation* operation);
    void LeaveActiveOperation();
    /// Null while none is active.
    COperation* GetActiveOperation() const { return m_activeOperation; }

private:
    CInstrumentSupervisor* m_supervisor;
    COperationMeasure m_operationMeasure;
    COperationMapping m_operationMapping;
    COperation* m_activeOperation = nullptr;
};
