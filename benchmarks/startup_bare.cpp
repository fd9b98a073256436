// SPDX-License-Identifier: GPL-3.0-or-later
// The least program with a Qt Quick Controls window.

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QUrl>

int main(int argc, char* argv[])
{
    const QGuiApplication application(argc, argv);
    const QQmlApplicationEngine engine(QUrl(QStringLiteral("qrc:/BareWindow.qml")));
    return QGuiApplication::exec();
}
