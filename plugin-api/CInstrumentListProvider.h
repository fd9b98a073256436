// SPDX-License-Identifier: MIT
#pragma once

#include "CInstrument.h"
#include "KestrixApi.h"

#include <QList>
#include <QObject>
#include <QSharedPointer>

/// Source of the instruments that one plug-in can reach.
class KESTRIX_API CInstrumentListProvider : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

public slots:
    /// The reachable instruments. One that stays reachable must keep its object from call to call: the
    /// application recognises the active instrument by the identity of the object. Dropping an instrument
    /// from the list ends it.
    virtual QList<QSharedPointer<CInstrument>> GetInstrumentList() = 0;
    /// Port name and speed in baud for instruments behind a serial line; the provider decides what follows.
    virtual void SetSerialPortSettings(QString port, int baudRate) = 0;

signals:
    /// The set of reachable instruments may have changed. What is emitted inside CPlugin::Start() is lost,
    /// since nobody is connected yet: emit the first one queued.
    void InstrumentListUpdated();
};
