// SPDX-License-Identifier: GPL-3.0-or-later
#include "CPropertyWatch.h"

#include "CCheckRun.h"
#include "CInstrument.h"

#include <QMetaMethod>
#include <QMetaProperty>

namespace {

template <class List> QString textOfList(const List& list)
{
    QStringList texts;
    for (const auto& entry : list)
        texts.append(QString::number(entry));
    return texts.join(QLatin1Char(','));
}

QString textOf(const QVariant& value)
{
    if (value.userType() == qMetaTypeId<QList<tFlux>>())
        return textOfList(value.value<QList<tFlux>>());
    if (value.userType() == qMetaTypeId<QList<CUnits::UnitType>>())
        return textOfList(value.value<QList<CUnits::UnitType>>());
    if (value.userType() == qMetaTypeId<QList<CTrigger::TriggerMode>>())
        return textOfList(value.value<QList<CTrigger::TriggerMode>>());
    if (value.userType() == qMetaTypeId<QDateTime>())
        return value.toDateTime().toString(Qt::ISODateWithMs);
    if (value.canConvert<QStringList>())
        return value.toStringList().join(QLatin1Char('\n'));
    return QString::number(value.toLongLong());
}

int signalIndex(const char* signature)
{
    return CInstrument::staticMetaObject.indexOfSignal(signature);
}

} // namespace

CPropertyWatch::CPropertyWatch(CCheckRun& run, CInstrument& instrument) : m_run(run), m_instrument(instrument)
{
    const QMetaObject& meta = CInstrument::staticMetaObject;
    const int slot = staticMetaObject.indexOfSlot("onSignal()");
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        // The parameters are the application's.
        if (property.hasNotifySignal() && qstrcmp(property.name(), "MeasurementParameters") != 0)
            m_properties.append(i);
    }
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.methodType() == QMetaMethod::Signal && method.name() != "OnNewMeasureBlock")
            QMetaObject::connect(&m_instrument, i, this, slot, Qt::DirectConnection);
    }
    m_values = values();
}

void CPropertyWatch::onSignal()
{
    const int signal = senderSignalIndex();
    const QMutexLocker lock(&m_mutex);
    m_signalled.insert(signal);
}

QStringList CPropertyWatch::values() const
{
    QStringList values;
    for (const int index : m_properties)
        values.append(textOf(m_instrument.metaObject()->property(index).read(&m_instrument)));
    return values;
}

void CPropertyWatch::Check()
{
    const QStringList present = values();
    QSet<int> signalled;
    {
        const QMutexLocker lock(&m_mutex);
        signalled.swap(m_signalled);
    }
    QStringList silent;
    for (int i = 0; i < m_properties.size(); ++i) {
        const QMetaProperty property = m_instrument.metaObject()->property(m_properties.at(i));
        if (present.at(i) != m_values.at(i) && !signalled.contains(property.notifySignalIndex()))
            silent.append(QString::fromLatin1(property.name()));
    }
    m_values = present;
    if (!silent.isEmpty())
        m_run.Find("property-silent", silent.join(QLatin1String(", ")));
}

void CPropertyWatch::CheckWhileConnected()
{
    QSet<int> signalled;
    {
        const QMutexLocker lock(&m_mutex);
        signalled = m_signalled;
    }
    Check();
    checkListUpdates(signalled);
}

void CPropertyWatch::checkListUpdates(const QSet<int>& signalled)
{
    const struct
    {
        const char* changed;
        const char* updated;
    } pairs[] = {{"RangeListChanged(QList<tFlux>)", "OnRangeListUpdated()"},
                 {"UnitListChanged(QList<CUnits::UnitType>)", "OnUnitListUpdated()"},
                 {"TriggerListChanged(QList<CTrigger::TriggerMode>)", "OnTriggerListUpdated()"}};
    for (const auto& pair : pairs) {
        if (signalled.contains(signalIndex(pair.changed)) && !signalled.contains(signalIndex(pair.updated)))
            m_run.Find("list-update-missing", QString::fromLatin1(pair.updated));
    }
}
