// SPDX-License-Identifier: MIT
#pragma once

#include <CInstrumentListProvider.h>

/// Lists the one instrument there is. Every call returns the same object: by that the application knows it
/// again.
class CMinimalInstrumentListProvider : public CInstrumentListProvider
{
    Q_OBJECT

public:
    CMinimalInstrumentListProvider();

    QList<QSharedPointer<CInstrument>> GetInstrumentList() override;
    void SetSerialPortSettings(QString port, int baudRate) override;

private:
    QSharedPointer<CInstrument> m_instrument;
};
