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
    /// What a screen reader says of the item; nothing if it does not know it.
    static QString AccessibleName(QQuickItem* item);
    /// The middle of an item in the coordinates of the window.
    static QPoint Middle(QQuickItem* item);
    /// Waits until the item is there and still, and clicks its middle; false if it does not come.
    bool Click(const QString& objectName) const;
    /// Waits until the item is there; false if it does not come in time.
    bool WaitFor(const QString& objectName) const;
    /// Positioners place their items when the next frame is made.
    void MakeFrame() const;
    /// Presses Tab until the item has the focus; false if it never has.
    bool TabTo(const QString& objectName) const;
    /// Presses Tab often, and tells the names of the items that had the focus, each once.
    QSet<QString> TabAround() const;
    void Key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;
    /// Types text where the focus is.
    void Type(const QString& text) const;
    /// Types a number into the value field of that name, in the place of the old one, and presses Return.
    bool Enter(const QString& field, const QString& number) const;
    /// Chooses an entry of the combo box of that name with the arrow keys; false if it cannot be reached. It
    /// goes through the entries between.
    bool Choose(const QString& comboBox, int index) const;

private:
    QQuickItem* find(QQuickItem* parent, const QString& objectName) const;
    QObject* findPopup(QQuickItem* parent, const QString& objectName) const;

    QQuickWindow* m_window;
};
