// SPDX-License-Identifier: GPL-3.0-or-later
// Shows all controls. With an argument it saves a picture of the window there and ends.
#include "QmlTestSetup.h"

#include <QApplication>
#include <QQuickView>
#include <QTimer>

int main(int argc, char** argv)
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_Use96Dpi);
    QApplication application(argc, argv);
    QmlTestSetup::Prepare();
    QmlTestSetup setup;
    QQuickView view;
    setup.setUp(view.engine());
    view.setSource(QUrl::fromLocalFile(QStringLiteral(KESTRIX_GALLERY_QML)));
    if (view.status() != QQuickView::Ready)
        return 1;
    view.show();
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() > 1) {
        QTimer::singleShot(2500, &view, [&] {
            const bool saved = view.grabWindow().save(arguments.at(1));
            QApplication::exit(saved && QmlTestSetup::WarningCount() == 0 ? 0 : 1);
        });
    }
    return QApplication::exec();
}
