// SPDX-License-Identifier: GPL-3.0-or-later
#include "IioDeviceTest.h"
#include "IioNetworkTest.h"
#include "IioPartsTest.h"
#include "PrivateNamespace.h"

#include <QCoreApplication>
#include <QtTest>

int main(int argc, char* argv[])
{
    // Before there is a second thread.
    const QString refused = enterPrivateNamespace();
    QCoreApplication application(argc, argv);
    IioPartsTest parts;
    IioDeviceTest devices(refused);
    IioNetworkTest network(refused);
    int failed = 0;
    for (QObject* test :
         {static_cast<QObject*>(&parts), static_cast<QObject*>(&devices), static_cast<QObject*>(&network)})
        failed += QTest::qExec(test, argc, argv);
    return failed;
}
