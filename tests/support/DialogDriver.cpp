// SPDX-License-Identifier: GPL-3.0-or-later
#include "DialogDriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>

DialogDriver::DialogDriver()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    connect(&m_timer, &QTimer::timeout, this, &DialogDriver::look);
    m_timer.start(10);
}

void DialogDriver::pressNext(QMessageBox::StandardButton button)
{
    m_answers.append([button](QWidget* dialog) {
        if (auto* box = qobject_cast<QMessageBox*>(dialog))
            box->button(button)->click();
    });
}

void DialogDriver::pickNext(const QString& path)
{
    m_answers.append([path](QWidget* widget) {
        auto* dialog = qobject_cast<QFileDialog*>(widget);
        if (!dialog)
            return;
        if (path.isEmpty()) {
            dialog->reject();
            return;
        }
        dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(path);
        QMetaObject::invokeMethod(dialog, "accept");
    });
}

void DialogDriver::look()
{
    QWidget* dialog = QApplication::activeModalWidget();
    if (!dialog)
        return;
    const bool isStuck = dialog == m_answered;
    if (isStuck || m_answers.isEmpty()) {
        ++m_unexpected;
        if (!isStuck)
            describe(dialog);
        dialog->close();
        return;
    }
    if (!m_readiness.IsReady(dialog))
        return;
    m_answered = dialog;
    describe(dialog);
    m_answers.takeFirst()(dialog);
}

void DialogDriver::describe(QWidget* dialog)
{
    if (const auto* box = qobject_cast<QMessageBox*>(dialog)) {
        messages.append(box->text() + QLatin1Char('|') + box->informativeText());
    } else if (const auto* files = qobject_cast<QFileDialog*>(dialog)) {
        const auto* name = files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        fileDialogs.append(QStringList{
            files->windowTitle(),
            files->acceptMode() == QFileDialog::AcceptSave ? QStringLiteral("save") : QStringLiteral("open"),
            files->directory().path(), name->text(), files->nameFilters().join(QLatin1Char(';'))}
                               .join(QLatin1Char('|')));
    }
}
