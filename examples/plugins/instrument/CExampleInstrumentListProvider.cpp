// SPDX-License-Identifier: MIT
#include "CExampleInstrumentListProvider.h"

#include "CExampleInstrument.h"

CExampleInstrumentListProvider::CExampleInstrumentListProvider()
    : m_instrument(QSharedPointer<CExampleInstrument>::create())
{
}

QList<QSharedPointer<CInstrument>> CExampleInstrumentListProvider::GetInstrumentList()
{
    return {m_instrument};
}

void CExampleInstrumentListProvider::SetSerialPortSettings(QString port, int baudRate)
{
    // There is no serial line.
    Q_UNUSED(port)
    Q_UNUSED(baudRate)
}
