// SPDX-License-Identifier: MIT
#pragma once

#include <CInstrumentListProvider.h>

/// Lists the one instrument there is. Every call returns the same object: by that the application knows it
/// again.
class CExampleInstrumentListProvider : public CInstrumentListProvider
{
    Q_OBJECT

public:
    CExampleInstrumentListProvider();

    QList<QSharedPointer<CInstrument>> GetInstrumentList() override;
    void SetSerialPortSettings(QString port, int baudRate) override;

private:
    QSharedPointer<CInstrument> m_instrument;
};
