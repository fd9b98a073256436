// SPDX-License-Identifier: GPL-3.0-or-later
#include "CBadInstrumentPlugin.h"

#include "BadMode.h"

#include <QThread>
#include <QTimer>

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <thread>

using namespace std::chrono_literals;

namespace {

constexpr int kExitStatus = 5;
constexpr int kSoonMs = 20;

} // namespace

void CBadInstrumentPlugin::Start()
{
    if (isBad("crash"))
        std::abort();
    if (isBad("hang"))
        std::this_thread::sleep_for(1h);
    if (isBad("exception"))
        throw std::runtime_error("told to throw");
    if (isBad("exit-status"))
        std::atexit([] { std::_Exit(kExitStatus); });
    if (isBad("thread-left"))
        std::thread([] { std::this_thread::sleep_for(1h); }).detach();
    if (isBad("main-thread-blocked"))
        QTimer::singleShot(kSoonMs, this, [] { std::this_thread::sleep_for(500ms); });
    if (!isBad("list-not-announced"))
        QTimer::singleShot(isBad("main-thread-blocked") ? 2 * kSoonMs : 0, &m_provider,
                           &CInstrumentListProvider::InstrumentListUpdated);
}

void CBadInstrumentPlugin::Stop()
{
    const QList<QSharedPointer<CInstrument>> instruments = m_provider.GetInstrumentList();
    for (const QSharedPointer<CInstrument>& instrument : instruments) {
        if (!instrument)
            continue;
        instrument->StopMeasurement();
        instrument->SetIsConnected(isBad("stop-not-idempotent") && m_isStopped);
    }
    m_isStopped = true;
}

CInstrumentListProvider* CBadInstrumentPlugin::GetInstrumentListProvider()
{
    return isBad("provider-null") ? nullptr : &m_provider;
}
