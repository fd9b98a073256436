// SPDX-License-Identifier: MIT
#include "CMinimalInstrumentListProvider.h"

#include "CMinimalInstrument.h"

CMinimalInstrumentListProvider::CMinimalInstrumentListProvider()
    : m_instrument(QSharedPointer<CMinimalInstrument>::create())
{
}

QList<QSharedPointer<CInstrument>> CMinimalInstrumentListProvider::GetInstrumentList()
{
    return {m_instrument};
}

void CMinimalInstrumentListProvider::SetSerialPortSettings(QString port, int baudRate)
{
    // There is no serial line.
    Q_UNUSED(port)
    Q_UNUSED(baudRate)
}
