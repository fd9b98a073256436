// SPDX-License-Identifier: GPL-3.0-or-later
#include "FakeOptions.h"

#include <QCoreApplication>
#include <QStringList>

namespace FakeOptions {

void takeFromEnvironment(QObject& plugin)
{
    const QStringList entries = qEnvironmentVariable("KESTRIX_FAKE").split(QLatin1Char(';'));
    for (const QString& entry : entries) {
        const int equals = entry.indexOf(QLatin1Char('='));
        if (equals > 0)
            plugin.setProperty(entry.left(equals).toLatin1().constData(), entry.mid(equals + 1));
    }
}

QVariant value(const QObject* object, const QObject* plugin, const char* key, const QVariant& fallback)
{
    for (const QObject* holder : {object, plugin}) {
        if (!holder)
            continue;
        const QVariant option = holder->property(key);
        if (option.isValid())
            return option;
    }
    return fallback;
}

void recordCall(QObject& fake, const QString& call)
{
    fake.setProperty("calls", fake.property("calls").toStringList() << call);
    QCoreApplication* const application = QCoreApplication::instance();
    const QVariant journal = application->property("journal");
    if (journal.isValid())
        application->setProperty("journal", journal.toStringList()
                                                << fake.objectName() + QLatin1Char(' ') + call);
}

QString placeText(const CPosition& position, const COrientation& orientation)
{
    return QStringLiteral("%1 %2 %3 %4 %5 %6")
        .arg(position.X())
        .arg(position.Y())
        .arg(position.Z())
        .arg(orientation.Roll())
        .arg(orientation.Pitch())
        .arg(orientation.Yaw());
}

void recordPlace(QObject& mapper, const CPosition& position, const COrientation& orientation)
{
    mapper.setProperty("places", mapper.property("places").toStringList()
                                     << placeText(position, orientation));
}

} // namespace FakeOptions
