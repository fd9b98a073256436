// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QMetaMethod>
#include <QMetaObject>
#include <QVector>

/// Expected meta-object surface of a class, written down by hand and compared with what moc made of it.
namespace MetaObjectTable {

enum Access {
    ReadWrite,         ///< readable, writable, with the notify signal <name>Changed
    ReadOnly,          ///< readable, not writable, with the notify signal <name>Changed
    Constant,          ///< CONSTANT, not writable, no notify signal
    ReadOnlyNoNotify,  ///< readable, neither constant nor notifying
    ReadWriteNoNotify, ///< readable and writable, no notify signal
};

struct Property
{
    const char* name;
    const char* type;
    Access access;
};

struct EnumValue
{
    const char* name;
    int value;
};

/// Compares the properties that the class itself declares, in their order. Returns the first difference, or
/// an empty text.
QByteArray compareProperties(const QMetaObject& metaObject, const QVector<Property>& expected);

/// Compares the enumerators of one enum of the class, in their order.
QByteArray compareEnum(const QMetaObject& metaObject, const char* enumName,
                       const QVector<EnumValue>& expected);

/// Compares the signatures of the methods of one kind (signals, slots, or Q_INVOKABLE methods) that the class
/// itself declares, in their order.
QByteArray compareMethods(const QMetaObject& metaObject, QMetaMethod::MethodType kind,
                          const QVector<QByteArray>& expectedSignatures);

} // namespace MetaObjectTable

/// Fails the running test with the difference as message.
#define VERIFY_NO_DIFFERENCE(expression)                                                                     \
    do {                                                                                                     \
        const QByteArray difference = (expression);                                                          \
        QVERIFY2(difference.isEmpty(), difference.constData());                                              \
    } while (false)
