// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

class QQuickItem;
class QQuickWindow;

/// Goes through what a window shows as one without a mouse does, or with a screen reader.
class KeyboardWalk
{
public:
    /// All of the window, or what is within one item of it: a modal dialog, for example.
    explicit KeyboardWalk(QQuickWindow* window, QQuickItem* within = nullptr);

    /// What is wrong: items that can be pressed or edited and have no name for tests or none for a screen
    /// reader, that the Tab key does not reach or does not leave, or that are out of view when it reaches
    /// them.
    QStringList Problems() const;

private:
    QVector<QQuickItem*> interactiveItems() const;
    /// The items that the key reaches one after the other, until it comes to one again.
    QVector<QQuickItem*> walk(int key, QStringList& problems) const;

    QQuickWindow* m_window;
    QQuickItem* m_within;
};
