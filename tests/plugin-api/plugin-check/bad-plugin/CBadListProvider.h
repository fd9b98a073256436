// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CInstrumentListProvider.h"

/// Lists one bad instrument, or breaks the rules of lists.
class CBadListProvider : public CInstrumentListProvider
{
public:
    CBadListProvider();

    QList<QSharedPointer<CInstrument>> GetInstrumentList() override;
    void SetSerialPortSettings(QString port, int baudRate) override;

private:
    QList<QSharedPointer<CInstrument>> m_instruments;
};
