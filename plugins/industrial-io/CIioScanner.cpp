// SPDX-License-Identifier: MIT
#include "CIioScanner.h"

#include "CIioContext.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <chrono>
#include <sys/stat.h>

namespace {

constexpr int kLocalLookMs = 500;
constexpr int kNetworkLookMs = 5000;
const QLatin1String kLocal("local:");

// Changes whenever a device comes, goes or is exchanged. To look into devices costs far more.
QByteArray localDevices()
{
    QByteArray signature;
    const QFileInfoList entries = QDir(QStringLiteral("/sys/bus/iio/devices"))
                                      .entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& entry : entries) {
        const QByteArray path = QFile::encodeName(entry.canonicalFilePath());
        struct stat status = {};
        if (stat(path.constData(), &status) == 0)
            signature += path + ' ' + QByteArray::number(static_cast<quint64>(status.st_ino)) + '\n';
    }
    return signature;
}

} // namespace

void CIioScanner::Run()
{
    const bool isLocal = m_uri == kLocal;
    const std::chrono::milliseconds interval(isLocal ? kLocalLookMs : kNetworkLookMs);
    QByteArray known;
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_isStopping) {
        const bool isWanted = m_isWanted || !isLocal;
        const bool isPaused = m_isPaused;
        const int forgotten = m_forgotten;
        m_isWanted = false;
        lock.unlock();
        const QByteArray present = isLocal ? localDevices() : QByteArray();
        const bool mustLook = !isPaused && (isWanted || present != known);
        IioScan scan;
        if (mustLook)
            scan = look();
        lock.lock();
        if (isPaused) {
            m_isWanted = true;
        } else if (mustLook && forgotten == m_forgotten && !m_isPaused) {
            known = present;
            scan.count = m_last.count + 1;
            m_last = scan;
            m_changed.notify_all();
        }
        m_changed.wait_for(lock, interval, [this] { return m_isStopping || (m_isWanted && !m_isPaused); });
    }
}

IioScan CIioScanner::look() const
{
    IioScan scan;
    CIioContext context;
    const IioError error = context.Open(m_uri, m_timeoutMs);
    if (error.code == 0)
        scan.devices = context.Magnetometers();
    else if (error.IsTimeout())
        scan.problem = tr("The context %1 does not answer").arg(m_uri);
    else if (m_uri != kLocal || (error.code != ENOENT && error.code != ENODEV))
        scan.problem = tr("The context %1 cannot be opened: %2").arg(m_uri, error.Text());
    return scan;
}

IioScan CIioScanner::Last() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_last;
}

void CIioScanner::WaitForFirst(int timeoutMs)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait_for(lock, std::chrono::milliseconds(timeoutMs), [this] { return m_last.count > 0; });
}

void CIioScanner::SetPaused(bool isPaused)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_isPaused == isPaused)
        return;
    m_isPaused = isPaused;
    m_changed.notify_all();
}

void CIioScanner::Forget()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_last.devices.clear();
    m_isWanted = true;
    ++m_forgotten;
    m_changed.notify_all();
}

void CIioScanner::RequestStop()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isStopping = true;
    m_changed.notify_all();
}
