// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowDriver.h"

#include "ActiveWindow.h"
#include "PatientWait.h"

#include <QAccessible>
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

QObject* WindowDriver::FindPopup(const QString& objectName) const
{
    return findPopup(m_window->contentItem(), objectName);
}

QObject* WindowDriver::findPopup(QQuickItem* parent, const QString& objectName) const
{
    // A pop-up is no item, but the child object of one.
    if (auto* popup = parent->findChild<QObject*>(objectName))
        return popup;
    const QList<QQuickItem*> items = parent->childItems();
    for (QQuickItem* item : items) {
        if (QObject* popup = item->isVisible() ? findPopup(item, objectName) : nullptr)
            return popup;
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

QString WindowDriver::AccessibleName(QQuickItem* item)
{
    const QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(item);
    return interface ? interface->text(QAccessible::Name) : QString();
}

QPoint WindowDriver::Middle(QQuickItem* item)
{
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

bool WindowDriver::WaitFor(const QString& objectName) const
{
    return QTest::qWaitFor([&] { return IsVisible(objectName); }, kLongWaitMs);
}

void WindowDriver::MakeFrame() const
{
    QSignalSpy frame(m_window, &QQuickWindow::frameSwapped);
    m_window->update();
    frame.wait(1000);
}

bool WindowDriver::Click(const QString& objectName) const
{
    QPoint last(-1, -1);
    const bool isStill = QTest::qWaitFor(
        [&] {
            QQuickItem* item = Find(objectName);
            if (!item || !item->isEnabled() || item->width() <= 0)
                return false;
            MakeFrame();
            item = Find(objectName);
            if (!item)
                return false;
            const QPoint now = Middle(item);
            const bool same = now == last;
            last = now;
            return same;
        },
        kLongWaitMs);
    if (!isStill)
        return false;
    QTest::mouseClick(m_window, Qt::LeftButton, {}, last);
    return true;
}

bool WindowDriver::TabTo(const QString& objectName) const
{
    for (int i = 0; i < 60; ++i) {
        QQuickItem* item = Find(objectName);
        if (item && item->hasActiveFocus())
            return true;
        Key(Qt::Key_Tab);
    }
    return false;
}

QSet<QString> WindowDriver::TabAround() const
{
    QSet<QString> names;
    for (int i = 0; i < 30; ++i) {
        Key(Qt::Key_Tab);
        const QQuickItem* item = m_window->activeFocusItem();
        names << (item ? item->objectName() : QString());
    }
    return names;
}

void WindowDriver::Key(int key, Qt::KeyboardModifiers modifiers) const
{
    QVERIFY(makeActive(m_window));
    QTest::keyClick(m_window, static_cast<Qt::Key>(key), modifiers);
}

void WindowDriver::Type(const QString& text) const
{
    QVERIFY(makeActive(m_window));
    for (const QChar character : text)
        QTest::keyClick(m_window, character.toLatin1());
}

bool WindowDriver::Enter(const QString& field, const QString& number) const
{
    QQuickItem* input = Find(field + QStringLiteral("Text"));
    if (!input || !input->isEnabled() || !makeActive(m_window))
        return false;
    input->forceActiveFocus();
    Key(Qt::Key_A, Qt::ControlModifier);
    Type(number);
    Key(Qt::Key_Return);
    return true;
}

bool WindowDriver::Choose(const QString& comboBox, int index) const
{
    QQuickItem* box = Find(comboBox + QStringLiteral("Box"));
    if (!box || !box->isEnabled())
        return false;
    const auto chosen = [box] { return box->property("currentIndex").toInt(); };
    while (chosen() != index) {
        if (!makeActive(m_window))
            return false;
        box->forceActiveFocus();
        const int before = chosen();
        Key(before < index ? Qt::Key_Down : Qt::Key_Up);
        if (chosen() == before)
            return false;
    }
    return true;
}
