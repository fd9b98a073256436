// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowDriver.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

QQuickItem* WindowDriver::Find(const QString& objectName) const
{
    return find(m_window->contentItem(), objectName);
}

QQuickItem* WindowDriver::find(QQuickItem* parent, const QString& objectName) const
{
    // By childItems(), not children(): what loaders and delegates make is no child object of theirs.
    const QList<QQuickItem*> items = parent->childItems();
    for (QQuickItem* item : items) {
        if (!item->isVisible())
            continue;
        if (item->objectName() == objectName)
            return item;
        if (QQuickItem* found = find(item, objectName))
            return found;
    }
    return nullptr;
}

QString WindowDriver::Text(const QString& objectName, const QString& part) const
{
    QQuickItem* item = Find(objectName);
    if (item && !part.isEmpty())
        item = find(item, part);
    return item ? item->property("text").toString() : QString();
}

QPoint WindowDriver::middle(QQuickItem* item) const
{
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

bool WindowDriver::WaitFor(const QString& objectName, int timeoutMs) const
{
    return QTest::qWaitFor([&] { return IsVisible(objectName); }, timeoutMs);
}

bool WindowDriver::Click(const QString& objectName) const
{
    QPoint last(-1, -1);
    const bool isStill = QTest::qWaitFor(
        [&] {
            QQuickItem* item = Find(objectName);
            if (!item || !item->isEnabled() || item->width() <= 0)
                return false;
            // Positioners place their items when the next frame is made.
            QSignalSpy frame(m_window, &QQuickWindow::frameSwapped);
            m_window->update();
            frame.wait(1000);
            item = Find(objectName);
            if (!item)
                return false;
            const QPoint now = middle(item);
            const bool same = now == last;
            last = now;
            return same;
        },
        5000);
    if (!isStill)
        return false;
    QTest::mouseClick(m_window, Qt::LeftButton, {}, last);
    return true;
}
