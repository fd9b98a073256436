// SPDX-License-Identifier: GPL-3.0-or-later
#include "RandomUser.h"

#include "CApplication.h"
#include "PlotDriver.h"

#include <QMetaObject>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

void RandomUser::OpenTab(int index) const
{
    if (QQuickItem* tabs = driver().Find(QStringLiteral("tabBar")))
        tabs->setProperty("currentIndex", index);
}

void RandomUser::OpenAnyTab()
{
    if (const QQuickItem* tabs = driver().Find(QStringLiteral("tabBar")))
        OpenTab(UpTo(tabs->property("count").toInt()));
}

void RandomUser::Press(const char* name) const
{
    QQuickItem* item = driver().Find(QLatin1String(name));
    if (item && item->isEnabled())
        QTest::mouseClick(driver().Window(), Qt::LeftButton, {}, WindowDriver::Middle(item));
}

void RandomUser::GiveCommand(const QVector<const char*>& commands)
{
    const QByteArray command = commands.at(UpTo(commands.size()));
    if (driver().IsVisible(QLatin1String(command) + QStringLiteral("Button")))
        QMetaObject::invokeMethod(m_scenario.PageViewModel(), command.constData());
}

void RandomUser::ActOnThePlot()
{
    if (!driver().IsVisible(QStringLiteral("chartView")))
        return;
    const PlotDriver plot(driver());
    switch (UpTo(8)) {
    case 0:
        return Press("zoomInButton");
    case 1:
        return Press("zoomOutButton");
    case 2:
        return Press("autoScalingButton");
    case 3:
        return Press(UpTo(2) == 0 ? "legendRow0" : "legendRow3");
    case 4:
        return Press(UpTo(2) == 0 ? "legendSelectNoneButton" : "legendSelectAllButton");
    case 5:
        return plot.Wheel(UpTo(2) == 0 ? 120 : -120);
    case 6:
        return plot.Drag(plot.At(0.3, 0.3), plot.At(0.6, 0.6));
    default:
        // A spectrum has no averages.
        const int mode = UpTo(3);
        if (QObject* model = plot.Model())
            model->setProperty("AveragingModeIndex", mode);
    }
}

void RandomUser::ChangeLayout()
{
    const bool small = UpTo(2) == 0;
    driver().Window()->resize(small ? QSize(954, 698) : QSize(1100, 800));
    m_scenario.Application()->MainViewModel()->SetParameterMenuExpanded(UpTo(2) == 0);
}
