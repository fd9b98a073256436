// SPDX-License-Identifier: GPL-3.0-or-later
#include "IioCheckTest.h"
#include "IioDeviceTest.h"
#include "IioNetworkTest.h"
#include "IioPartsTest.h"
#include "PrivateNamespace.h"

#include <QCoreApplication>
#include <QtTest>

#include <memory>

namespace {

// One program, several tests: each waits much, and they need not wait for one another.
std::unique_ptr<QObject> testOfName(const QByteArray& name, const QString& refused)
{
    if (name == "devices")
        return std::make_unique<IioDeviceTest>(refused);
    if (name == "network")
        return std::make_unique<IioNetworkTest>(refused);
    if (name == "check")
        return std::make_unique<IioCheckTest>(refused);
    return std::make_unique<IioPartsTest>();
}

} // namespace

// The first argument names the test; what follows is for Qt.
int main(int argc, char* argv[])
{
    const QByteArray name = argc > 1 ? argv[1] : "";
    // Before there is a second thread.
    const QString refused = name == "parts" ? QString() : enterPrivateNamespace();
    QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    arguments.removeAt(1);
    const std::unique_ptr<QObject> test = testOfName(name, refused);
    return QTest::qExec(test.get(), arguments);
}
