// SPDX-License-Identifier: GPL-3.0-or-later
#include "TrayBalloon.h"

#include <QApplication>
#include <QLabel>
#include <QStringList>
#include <QWidget>

QWidget* TrayBalloon::Find()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        if (widget->inherits("QBalloonTip") && widget->isVisible())
            return widget;
    }
    return nullptr;
}

QString TrayBalloon::Text()
{
    QStringList texts;
    if (const QWidget* shown = Find()) {
        const QList<QLabel*> labels = shown->findChildren<QLabel*>();
        for (const QLabel* label : labels) {
            if (!label->text().isEmpty())
                texts << label->text();
        }
    }
    return texts.join(QLatin1Char('|'));
}
