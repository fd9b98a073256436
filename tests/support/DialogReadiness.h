// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>

/// Whether a dialog is to be answered. One that is closed before the window manager has given it the focus
/// takes the focus away from the window under it at any later moment, and with it the keys that the test
/// sends there.
class DialogReadiness
{
public:
    bool IsReady(QWidget* dialog)
    {
        if (m_dialog != dialog) {
            m_dialog = dialog;
            m_seen.start();
        }
        return dialog->isActiveWindow() || m_seen.hasExpired(kLongestMs);
    }

private:
    /// A window manager need not give the focus to every dialog.
    static constexpr qint64 kLongestMs = 5000;

    QPointer<QWidget> m_dialog;
    QElapsedTimer m_seen;
};
