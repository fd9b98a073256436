// SPDX-License-Identifier: GPL-3.0-or-later
#include "QmlTestSetup.h"

#include <QApplication>
#include <QtQuickTest>

int main(int argc, char** argv)
{
    // Tables and file dialogs need the widgets' application, as in the program.
    QApplication application(argc, argv);
    QmlTestSetup::Prepare();
    QmlTestSetup setup;
    const int failures = quick_test_main_with_setup(argc, argv, "controls", nullptr, &setup);
    if (QmlTestSetup::WarningCount() > 0)
        qCritical("%d QML warnings", QmlTestSetup::WarningCount());
    return failures + QmlTestSetup::WarningCount();
}
