// SPDX-License-Identifier: GPL-3.0-or-later
#include "ProcessSetup.h"

#include "LocalTimeZone.h"
#include "ProductInfo.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QSurfaceFormat>

void prepareProcess()
{
    keepLocalTimeZone();
    QCoreApplication::setOrganizationName(kOrganizationName);
    QCoreApplication::setOrganizationDomain(kOrganizationDomain);
    QCoreApplication::setApplicationName(kApplicationName);
    QGuiApplication::setDesktopFileName(kDesktopFileName);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi, true);

    // The 3-D scenes need OpenGL 2.1 without a core profile.
    QSurfaceFormat format;
    format.setVersion(2, 1);
    format.setDepthBufferSize(24);
    QSurfaceFormat::setDefaultFormat(format);

    // A live page asks for a frame with each block. Qt grants one after 5 ms, so that on a machine without a
    // graphics processor one frame is still being drawn when the next is due, and measuring waits for it.
    // With 12 ms the window is drawn about sixty times a second.
    constexpr char kFrameDelayVariable[] = "QT_QPA_UPDATE_IDLE_TIME";
    if (!qEnvironmentVariableIsSet(kFrameDelayVariable))
        qputenv(kFrameDelayVariable, "12");
}
