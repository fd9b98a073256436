// SPDX-License-Identifier: GPL-3.0-or-later
#include "CFakeInstrumentPlugin.h"

#include "FakeOptions.h"

#include <QTimer>

CFakeInstrumentPlugin::CFakeInstrumentPlugin(QObject* parent) : CInstrumentPlugin(parent)
{
    setObjectName(QStringLiteral("fakeInstrumentPlugin"));
    FakeOptions::takeFromEnvironment(*this);
}

void CFakeInstrumentPlugin::Start()
{
    FakeOptions::recordCall(*this, QStringLiteral("Start"));
    const QString serialNumbers =
        FakeOptions::value(this, nullptr, "serialNumbers", QStringLiteral("FAKE-1")).toString();
    m_provider = std::make_unique<CFakeInstrumentListProvider>(
        serialNumbers.split(QLatin1Char(','), Qt::SkipEmptyParts), this);
    if (FakeOptions::value(this, nullptr, "announceAtStart", true).toBool())
        QTimer::singleShot(0, m_provider.get(), &CFakeInstrumentListProvider::Announce);
}

void CFakeInstrumentPlugin::Stop()
{
    FakeOptions::recordCall(*this, QStringLiteral("Stop"));
}

CInstrumentListProvider* CFakeInstrumentPlugin::GetInstrumentListProvider()
{
    return m_provider.get();
}

void CFakeInstrumentPlugin::vanish(const QString& serialNumber)
{
    m_provider->RemoveInstrument(serialNumber);
    m_provider->Announce();
}

void CFakeInstrumentPlugin::appear(const QString& serialNumber)
{
    m_provider->AddInstrument(QSharedPointer<CFakeInstrument>::create(serialNumber, this));
    m_provider->Announce();
}

void CFakeInstrumentPlugin::announce()
{
    m_provider->Announce();
}

void CFakeInstrumentPlugin::emitBlock()
{
    const QList<QSharedPointer<CFakeInstrument>> instruments = m_provider->Instruments();
    for (const QSharedPointer<CFakeInstrument>& instrument : instruments) {
        if (instrument->IsRunning())
            instrument->EmitBlock();
    }
}
