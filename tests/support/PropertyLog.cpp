// SPDX-License-Identifier: GPL-3.0-or-later
#include "PropertyLog.h"

#include <QMetaProperty>

#include <utility>

PropertyLog::PropertyLog(QObject* object) : m_object(object)
{
    const QMetaObject* metaObject = object->metaObject();
    const int firstSlot = QObject::staticMetaObject.methodCount();
    for (int i = 0; i < metaObject->propertyCount(); ++i) {
        const QMetaProperty property = metaObject->property(i);
        if (property.hasNotifySignal())
            QMetaObject::connect(object, property.notifySignalIndex(), this, firstSlot + i,
                                 Qt::DirectConnection);
    }
}

int PropertyLog::qt_metacall(QMetaObject::Call call, int id, void** arguments)
{
    id = QObject::qt_metacall(call, id, arguments);
    if (id < 0 || call != QMetaObject::InvokeMetaMethod)
        return id;
    const QMetaProperty property = m_object->metaObject()->property(id);
    m_entries.append(QString::fromLatin1(property.name()) + QLatin1Char('=') +
                     property.read(m_object).toString());
    return -1;
}

QStringList PropertyLog::take()
{
    return std::exchange(m_entries, {});
}

int PropertyLog::count(const QString& property) const
{
    const QString prefix = property + QLatin1Char('=');
    int count = 0;
    for (const QString& entry : m_entries)
        count += entry.startsWith(prefix) ? 1 : 0;
    return count;
}
