// SPDX-License-Identifier: MIT
#include "CIioListProvider.h"

#include "IioSettings.h"

#include <QElapsedTimer>
#include <QLoggingCategory>

#include <algorithm>

namespace {

constexpr int kLookMs = 200;
// Devices that are there at once are in the first list, which the start of the program waits for.
constexpr int kFirstLookMs = 300;
// A scan that is under way may end by itself within this; one that hangs is left behind.
constexpr int kStopMs = 300;

bool isSame(const IioDevice& a, const IioDevice& b)
{
    return a.uri == b.uri && a.id == b.id && a.identity == b.identity;
}

int restOf(const QElapsedTimer& elapsed, int limitMs)
{
    return std::max(0, limitMs - static_cast<int>(elapsed.elapsed()));
}

} // namespace

CIioListProvider::CIioListProvider(QObject* parent) : CInstrumentListProvider(parent)
{
    m_lookTimer.setInterval(kLookMs);
    connect(&m_lookTimer, &QTimer::timeout, this, &CIioListProvider::look);
}

CIioListProvider::~CIioListProvider()
{
    Stop();
}

void CIioListProvider::Start()
{
    if (!m_contexts.empty())
        return;
    const IioSettings settings = IioSettings::Load();
    const QStringList uris = settings.Uris();
    for (const QString& uri : uris) {
        Context context;
        context.scanner = std::make_shared<CIioScanner>(uri, settings.TimeoutMs());
        context.thread = std::make_unique<CDetachableThread>([scanner = context.scanner] { scanner->Run(); });
        m_contexts.push_back(std::move(context));
    }
    QElapsedTimer elapsed;
    elapsed.start();
    for (const Context& context : m_contexts)
        context.scanner->WaitForFirst(restOf(elapsed, kFirstLookMs));
    for (Context& context : m_contexts)
        lookAt(context);
    m_lookTimer.start();
    QMetaObject::invokeMethod(this, &CInstrumentListProvider::InstrumentListUpdated, Qt::QueuedConnection);
}

void CIioListProvider::Stop()
{
    m_lookTimer.stop();
    for (const Context& context : m_contexts)
        context.scanner->RequestStop();
    QElapsedTimer elapsed;
    elapsed.start();
    for (const Context& context : m_contexts)
        context.thread->Finish(restOf(elapsed, kStopMs));
    m_contexts.clear();
    // No call of the library is under way when the program ends, unless it hangs.
    for (const auto& instrument : qAsConst(m_instruments)) {
        if (instrument->IsConnected())
            instrument->Disconnect();
    }
}

QList<QSharedPointer<CInstrument>> CIioListProvider::GetInstrumentList()
{
    QList<QSharedPointer<CInstrument>> instruments;
    for (const auto& instrument : qAsConst(m_instruments))
        instruments.append(instrument);
    return instruments;
}

void CIioListProvider::SetSerialPortSettings(QString /*port*/, int /*baudRate*/) {}

void CIioListProvider::look()
{
    bool hasChanged = false;
    for (Context& context : m_contexts)
        hasChanged = lookAt(context) || hasChanged;
    if (hasChanged)
        emit InstrumentListUpdated();
}

bool CIioListProvider::lookAt(Context& context)
{
    // Over a network the connection itself tells best whether the other end is still there.
    const QString uri = context.scanner->Uri();
    const bool isInUse =
        std::any_of(m_instruments.cbegin(), m_instruments.cend(), [&uri](const auto& instrument) {
            return instrument->IsConnected() && instrument->Device().IsNetwork() &&
                   instrument->Device().uri == uri;
        });
    context.scanner->SetPaused(isInUse);
    const IioScan scan = context.scanner->Last();
    if (isInUse || scan.count == context.seen)
        return false;
    context.seen = scan.count;
    report(context, scan);
    bool hasChanged = drop(uri, scan.devices);
    for (const IioDevice& device : scan.devices)
        hasChanged = list(device) || hasChanged;
    return hasChanged;
}

void CIioListProvider::report(Context& context, const IioScan& scan)
{
    QString message = scan.problem;
    if (message.isEmpty() && scan.devices.isEmpty())
        message = tr("There is no magnetometer of three axes at %1").arg(context.scanner->Uri());
    if (message == context.message)
        return;
    context.message = message;
    if (!scan.problem.isEmpty())
        qWarning().noquote() << message;
    else if (!message.isEmpty())
        qInfo().noquote() << message;
}

bool CIioListProvider::drop(const QString& uri, const QList<IioDevice>& present)
{
    bool hasChanged = false;
    const QList<QSharedPointer<CIioInstrument>> listed = m_instruments;
    for (const auto& instrument : listed) {
        const IioDevice& device = instrument->Device();
        const bool isPresent =
            std::any_of(present.cbegin(), present.cend(),
                        [&device](const IioDevice& other) { return isSame(device, other); });
        if (device.uri != uri || isPresent)
            continue;
        remove(instrument.data());
        instrument->disconnect(this);
        if (instrument->IsConnected())
            instrument->Lose(tr("The magnetometer %1 is gone").arg(device.Location()));
        hasChanged = true;
    }
    return hasChanged;
}

bool CIioListProvider::list(const IioDevice& device)
{
    const bool isListed =
        std::any_of(m_instruments.cbegin(), m_instruments.cend(),
                    [&device](const auto& instrument) { return isSame(instrument->Device(), device); });
    if (isListed)
        return false;
    const auto instrument = QSharedPointer<CIioInstrument>::create(device);
    m_instruments.append(instrument);
    // Queued, since the list may hold the last reference to the sender.
    connect(
        instrument.data(), &CIioInstrument::Vanished, this,
        [this, gone = instrument.data(), uri = device.uri] {
            remove(gone);
            // It comes back when it is found again, not by what was found before.
            for (const Context& context : m_contexts) {
                if (context.scanner->Uri() == uri)
                    context.scanner->Forget();
            }
            emit InstrumentListUpdated();
        },
        Qt::QueuedConnection);
    return true;
}

void CIioListProvider::remove(const CIioInstrument* instrument)
{
    const auto found = std::find_if(m_instruments.cbegin(), m_instruments.cend(),
                                    [instrument](const auto& listed) { return listed.data() == instrument; });
    if (found != m_instruments.cend())
        m_instruments.removeAt(static_cast<int>(found - m_instruments.cbegin()));
}
