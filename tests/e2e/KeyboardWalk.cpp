// SPDX-License-Identifier: GPL-3.0-or-later
#include "KeyboardWalk.h"

#include "ActiveWindow.h"
#include "WindowDriver.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <algorithm>

namespace {

/// How a problem names an item.
QString describe(const QQuickItem* item)
{
    QString text = QString::fromLatin1(item->metaObject()->className());
    for (; item; item = item->parentItem()) {
        if (!item->objectName().isEmpty())
            return text + QStringLiteral(" in ") + item->objectName();
    }
    return text;
}

bool isInteractive(const QQuickItem* item)
{
    // The handles of a range slider take the keys, not the slider.
    if (item->inherits("QQuickRangeSlider"))
        return false;
    if (item->activeFocusOnTab())
        return true;
    // Text that can be marked and copied, and no more.
    if (item->property("readOnly").toBool())
        return false;
    const auto inherits = [item](const char* type) { return item->inherits(type); };
    constexpr const char* kTypes[] = {"QQuickAbstractButton", "QQuickComboBox", "QQuickTextInput",
                                      "QQuickTextEdit",       "QQuickSlider",   "QQuickSpinBox"};
    return std::any_of(std::begin(kTypes), std::end(kTypes), inherits);
}

void collect(QQuickItem* parent, QVector<QQuickItem*>& items)
{
    const QList<QQuickItem*> children = parent->childItems();
    for (QQuickItem* item : children) {
        if (!item->isVisible() || !item->isEnabled())
            continue;
        if (isInteractive(item))
            items.append(item);
        collect(item, items);
    }
}

/// Whether all of an item can be seen, or as much of it as there is room for.
bool isInView(const QQuickItem* item)
{
    QRectF place = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
    for (const QQuickItem* ancestor = item->parentItem(); ancestor; ancestor = ancestor->parentItem()) {
        if (!ancestor->clip())
            continue;
        const QRectF view = ancestor->mapRectToScene(QRectF(0, 0, ancestor->width(), ancestor->height()));
        const double room = std::min(place.height(), view.height());
        if (view.intersected(place).height() < room - 1)
            return false;
    }
    return true;
}

/// The item itself or, as a scope hands the keys on, a part of it.
bool hasTheKeys(const QQuickItem* item, QQuickItem* focusItem)
{
    return item == focusItem || (item->isFocusScope() && item->isAncestorOf(focusItem));
}

} // namespace

KeyboardWalk::KeyboardWalk(QQuickWindow* window, QQuickItem* within)
    : m_window(window), m_within(within ? within : window->contentItem())
{
}

QVector<QQuickItem*> KeyboardWalk::interactiveItems() const
{
    QVector<QQuickItem*> items;
    collect(m_within, items);
    return items;
}

QVector<QQuickItem*> KeyboardWalk::walk(int key, QStringList& problems) const
{
    constexpr int kMostItems = 150;
    const QString keyName = key == Qt::Key_Tab ? QStringLiteral("Tab") : QStringLiteral("Shift+Tab");
    const Qt::KeyboardModifiers modifiers = key == Qt::Key_Tab ? Qt::NoModifier : Qt::ShiftModifier;
    QVector<QQuickItem*> way;
    while (way.size() < kMostItems) {
        if (!makeActive(m_window))
            problems << QStringLiteral("the window is not active");
        QTest::keyClick(m_window, static_cast<Qt::Key>(key), modifiers);
        QQuickItem* item = m_window->activeFocusItem();
        if (!item) {
            problems << keyName + QStringLiteral(" leads nowhere");
            return way;
        }
        if (!way.isEmpty() && way.first() == item)
            return way;
        if (way.contains(item)) {
            problems << QStringLiteral("%1 does not get away from %2").arg(keyName, describe(item));
            return way;
        }
        if (!isInView(item))
            problems << QStringLiteral("%1 leads out of view to %2").arg(keyName, describe(item));
        way.append(item);
    }
    problems << keyName + QStringLiteral(" does not come back");
    return way;
}

QStringList KeyboardWalk::Problems() const
{
    QStringList problems;
    const QVector<QQuickItem*> items = interactiveItems();
    for (QQuickItem* item : items) {
        if (item->objectName().isEmpty())
            problems << QStringLiteral("without an object name: ") + describe(item);
        if (WindowDriver::AccessibleName(item).isEmpty())
            problems << QStringLiteral("without a name for a screen reader: ") + describe(item);
    }
    for (const int key : {Qt::Key_Tab, Qt::Key_Backtab}) {
        const QVector<QQuickItem*> way = walk(key, problems);
        const QString keyName = key == Qt::Key_Tab ? QStringLiteral("Tab") : QStringLiteral("Shift+Tab");
        for (const QQuickItem* item : items) {
            const bool isReached = std::any_of(way.begin(), way.end(), [item](QQuickItem* focusItem) {
                return hasTheKeys(item, focusItem);
            });
            if (!isReached)
                problems << QStringLiteral("not reached by %1: %2").arg(keyName, describe(item));
        }
    }
    return problems;
}
