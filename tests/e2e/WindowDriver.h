// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QString>

class QQuickItem;
class QQuickWindow;

/// Finds items of the real window by their object name, and acts on them with mouse and keyboard events.
class WindowDriver
{
public:
    explicit WindowDriver(QQuickWindow* window) : m_window(window) {}

    QQuickWindow* Window() const { return m_window; }
    /// The visible item of that name, or null.
    QQuickItem* Find(const QString& objectName) const;
    bool IsVisible(const QString& objectName) const { return Find(objectName) != nullptr; }
    /// The property `text` of the item, or of its part of that name.
    QString Text(const QString& objectName, const QString& part = {}) const;
    /// Waits until the item is there and still, and clicks its middle; false if it does not come.
    bool Click(const QString& objectName) const;
    /// Waits until the item is there; false if it does not come in time.
    bool WaitFor(const QString& objectName, int timeoutMs = 5000) const;

private:
    QQuickItem* find(QQuickItem* parent, const QString& objectName) const;
    QPoint middle(QQuickItem* item) const;

    QQuickWindow* m_window;
};
