// SPDX-License-Identifier: GPL-3.0-or-later
#include "CBadListProvider.h"

#include "BadMode.h"
#include "CBadInstrument.h"

#include <QThread>

namespace {

constexpr unsigned long kSlowMs = 500;

QSharedPointer<CInstrument> makeInstrument()
{
    const QString serialNumber = isBad("serial-empty") ? QString() : QStringLiteral("BAD-1");
    return QSharedPointer<CBadInstrument>::create(serialNumber);
}

} // namespace

CBadListProvider::CBadListProvider()
{
    if (!isBad("list-empty"))
        m_instruments.append(makeInstrument());
    if (isBad("serial-duplicate"))
        m_instruments.append(makeInstrument());
    if (isBad("list-null"))
        m_instruments.append(QSharedPointer<CInstrument>());
}

QList<QSharedPointer<CInstrument>> CBadListProvider::GetInstrumentList()
{
    if (isBad("slow-call"))
        QThread::msleep(kSlowMs);
    if (isBad("list-identity"))
        m_instruments = {makeInstrument()};
    return m_instruments;
}

void CBadListProvider::SetSerialPortSettings(QString /*port*/, int /*baudRate*/) {}
