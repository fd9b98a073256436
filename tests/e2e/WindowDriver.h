// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QSet>
#include <QString>

class QObject;
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
    /// The pop-up of that name below the visible items, open or not; null if there is none.
    QObject* FindPopup(const QString& objectName) const;
    bool IsVisible(const QString& objectName) const { return Find(objectName) != nullptr; }
    /// The property `text` of the item, or of its part of that name.
    QString Text(const QString& objectName, const QString& part = {}) const;
    /// The middle of an item in the coordinates of the window.
    static QPoint Middle(QQuickItem* item);
    /// Waits until the item is there and still, and clicks its middle; false if it does not come.
    bool Click(const QString& objectName) const;
    /// Waits until the item is there; false if it does not come in time.
    bool WaitFor(const QString& objectName, int timeoutMs = 5000) const;
    /// Presses Tab until the item has the focus; false if it never has.
    bool TabTo(const QString& objectName) const;
    /// Presses Tab often, and tells the names of the items that had the focus, each once.
    QSet<QString> TabAround() const;
    void Key(int key) const;

private:
    QQuickItem* find(QQuickItem* parent, const QString& objectName) const;
    QObject* findPopup(QQuickItem* parent, const QString& objectName) const;

    QQuickWindow* m_window;
};
