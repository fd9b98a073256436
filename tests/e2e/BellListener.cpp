// SPDX-License-Identifier: GPL-3.0-or-later
#include "BellListener.h"

// The names that these define are at odds with Qt's.
#include <X11/XKBlib.h>
#include <X11/Xlib.h>

struct BellListener::Connection
{
    Display* display = nullptr;
    int firstEvent = 0;
};

BellListener::BellListener() : m_connection(std::make_unique<Connection>())
{
    m_connection->display =
        XkbOpenDisplay(nullptr, &m_connection->firstEvent, nullptr, nullptr, nullptr, nullptr);
    if (!m_connection->display)
        return;
    XkbSelectEvents(m_connection->display, XkbUseCoreKbd, XkbBellNotifyMask, XkbBellNotifyMask);
    XSync(m_connection->display, False);
}

BellListener::~BellListener()
{
    if (m_connection->display)
        XCloseDisplay(m_connection->display);
}

bool BellListener::IsListening() const
{
    return m_connection->display != nullptr;
}

int BellListener::Count()
{
    if (!m_connection->display)
        return 0;
    XSync(m_connection->display, False);
    while (XPending(m_connection->display) > 0) {
        XkbEvent event;
        XNextEvent(m_connection->display, &event.core);
        if (event.type == m_connection->firstEvent && event.any.xkb_type == XkbBellNotify)
            ++m_count;
    }
    return m_count;
}
