// SPDX-License-Identifier: GPL-3.0-or-later
#include "MetaObjectTable.h"

#include <QMetaEnum>
#include <QMetaProperty>

namespace MetaObjectTable {

static QByteArray accessOf(const QMetaProperty& property)
{
    QByteArray text;
    text += property.isReadable() ? "read" : "";
    text += property.isWritable() ? " write" : "";
    text += property.isConstant() ? " constant" : "";
    if (property.hasNotifySignal())
        text += " notify=" + property.notifySignal().name();
    return text;
}

static QByteArray accessOf(const Property& property)
{
    const QByteArray notify = QByteArray(" notify=") + property.name + "Changed";
    switch (property.access) {
    case ReadWrite:
        return "read write" + notify;
    case ReadOnly:
        return "read" + notify;
    case Constant:
        return "read constant";
    case ReadOnlyNoNotify:
        return "read";
    case ReadWriteNoNotify:
        return "read write";
    }
    return {};
}

QByteArray compareProperties(const QMetaObject& metaObject, const QVector<Property>& expected)
{
    const int first = metaObject.propertyOffset();
    const int count = metaObject.propertyCount() - first;
    for (int i = 0; i < qMin(count, expected.size()); ++i) {
        const QMetaProperty actual = metaObject.property(first + i);
        const QByteArray is = QByteArray(actual.typeName()) + " " + actual.name() + ": " + accessOf(actual);
        const QByteArray should =
            QByteArray(expected[i].type) + " " + expected[i].name + ": " + accessOf(expected[i]);
        if (is != should)
            return QByteArray(metaObject.className()) + " property " + QByteArray::number(i) + " is \"" + is +
                   "\", expected \"" + should + "\"";
    }
    if (count != expected.size())
        return QByteArray(metaObject.className()) + " has " + QByteArray::number(count) +
               " properties, expected " + QByteArray::number(expected.size());
    return {};
}

QByteArray compareEnum(const QMetaObject& metaObject, const char* enumName,
                       const QVector<EnumValue>& expected)
{
    const int index = metaObject.indexOfEnumerator(enumName);
    if (index < 0)
        return QByteArray(metaObject.className()) + " has no enum " + enumName;
    const QMetaEnum actual = metaObject.enumerator(index);
    for (int i = 0; i < qMin(actual.keyCount(), expected.size()); ++i) {
        if (qstrcmp(actual.key(i), expected[i].name) != 0 || actual.value(i) != expected[i].value)
            return QByteArray(enumName) + " entry " + QByteArray::number(i) + " is " + actual.key(i) + "=" +
                   QByteArray::number(actual.value(i)) + ", expected " + expected[i].name + "=" +
                   QByteArray::number(expected[i].value);
    }
    if (actual.keyCount() != expected.size())
        return QByteArray(enumName) + " has " + QByteArray::number(actual.keyCount()) +
               " entries, expected " + QByteArray::number(expected.size());
    return {};
}

QByteArray compareMethods(const QMetaObject& metaObject, QMetaMethod::MethodType kind,
                          const QVector<QByteArray>& expectedSignatures)
{
    QVector<QByteArray> actual;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
        const QMetaMethod method = metaObject.method(i);
        if (method.methodType() == kind)
            actual.append(method.methodSignature());
    }
    for (int i = 0; i < qMin(actual.size(), expectedSignatures.size()); ++i) {
        const QByteArray should = QMetaObject::normalizedSignature(expectedSignatures[i].constData());
        if (actual[i] != should)
            return QByteArray(metaObject.className()) + " method " + QByteArray::number(i) + " is " +
                   actual[i] + ", expected " + should;
    }
    if (actual.size() != expectedSignatures.size()) {
        QByteArray list;
        for (const QByteArray& signature : qAsConst(actual))
            list += " " + signature;
        return QByteArray(metaObject.className()) + " has " + QByteArray::number(actual.size()) +
               " methods of this kind, expected " + QByteArray::number(expectedSignatures.size()) + ":" +
               list;
    }
    return {};
}

} // namespace MetaObjectTable
