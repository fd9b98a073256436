// SPDX-License-Identifier: GPL-3.0-or-later
#include "ApplicationDirPath.h"
#include "CApplication.h"
#include "InitResources.h"
#include "ProcessSetup.h"

#include <QApplication>
#include <QIcon>
#include <QThread>

int main(int argc, char* argv[])
{
    prepareProcess();
    QApplication application(argc, argv);
    // The main thread is the measuring thread too.
    QThread::currentThread()->setPriority(QThread::HighPriority);
    InitResources();
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/Resources/Icons/Kestrix.ico")));
    ApplicationDirPath = QCoreApplication::applicationDirPath();
    CApplication* kestrix = CApplication::Instance();
    kestrix->Initialize();
    QObject::connect(&application, &QCoreApplication::aboutToQuit, kestrix, &CApplication::onAboutToQuit);
    return QApplication::exec();
}
