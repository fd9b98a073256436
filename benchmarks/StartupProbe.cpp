// SPDX-License-Identifier: GPL-3.0-or-later
// Linked into a program unchanged otherwise: at the first frame of its first Qt Quick window it writes the
// time of the monotonic clock, in nanoseconds, to standard output and ends the process.

#include <QCoreApplication>
#include <QEvent>
#include <QQuickWindow>

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

void reportFrame()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    std::printf("%lld\n", now.tv_sec * 1000000000LL + now.tv_nsec);
    std::fflush(stdout);
    std::_Exit(0);
}

class WindowWatcher : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::PlatformSurface || m_isWatching)
            return false;
        if (auto* window = qobject_cast<QQuickWindow*>(watched)) {
            m_isWatching = true;
            // From whichever thread paints.
            connect(window, &QQuickWindow::frameSwapped, window, reportFrame, Qt::DirectConnection);
        }
        return false;
    }

private:
    bool m_isWatching = false;
};

void watchWindows()
{
    QCoreApplication* application = QCoreApplication::instance();
    application->installEventFilter(new WindowWatcher(application));
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(watchWindows)
