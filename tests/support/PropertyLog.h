// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QStringList>

/// Writes down the notify signals of an object in the order of their emission, each as "Property=value" with
/// the value that the property has at that moment.
class PropertyLog : public QObject
{
public:
    /// Follows all properties that the class of `object` and its bases declare.
    explicit PropertyLog(QObject* object);

    int qt_metacall(QMetaObject::Call call, int id, void** arguments) override;

    /// The entries so far, which are forgotten.
    QStringList take();
    QStringList entries() const { return m_entries; }
    /// How many entries there are for a property.
    int count(const QString& property) const;

private:
    QObject* const m_object;
    QStringList m_entries;
};
