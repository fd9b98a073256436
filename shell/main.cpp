// SPDX-License-Identifier: GPL-3.0-or-later
#include "ApplicationDirPath.h"
#include "CApplication.h"
#include "InitResources.h"
#include "LocalTimeZone.h"
#include "ProductInfo.h"

#include <QApplication>
#include <QSurfaceFormat>
#include <QThread>

int main(int argc, char* argv[])
{
    keepLocalTimeZone();
    QCoreApplication::setOrganizationName(kOrganizationName);
    QCoreApplication::setOrganizationDomain(kOrganizationDomain);
    QCoreApplication::setApplicationName(kApplicationName);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi, true);
    // The 3-D scenes need OpenGL 2.1 without a core profile.
    QSurfaceFormat format;
    format.setVersion(2, 1);
    format.setDepthBufferSize(24);
    QSurfaceFormat::setDefaultFormat(format);

    QApplication application(argc, argv);
    // The main thread is the measuring thread too.
    QThread::currentThread()->setPriority(QThread::HighPriority);
    InitResources();
    ApplicationDirPath = QCoreApplication::applicationDirPath();
    CApplication* kestrix = CApplication::Instance();
    kestrix->Initialize();
    QObject::connect(&application, &QCoreApplication::aboutToQuit, kestrix, &CApplication::onAboutToQuit);
    return QApplication::exec();
}
