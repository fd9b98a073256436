// SPDX-License-Identifier: GPL-3.0-or-later
#include "DialogAnswers.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>

namespace {

/// Not from within the timer: it would not fire for a dialog that the answer opens.
void later(QObject* object, const char* slot)
{
    QMetaObject::invokeMethod(object, slot, Qt::QueuedConnection);
}

} // namespace

DialogAnswers::DialogAnswers(QObject* parent) : QObject(parent)
{
    connect(&m_timer, &QTimer::timeout, this, &DialogAnswers::answer);
    m_timer.start(20);
}

void DialogAnswers::ExpectMessage(const QString& text, QMessageBox::StandardButton answer)
{
    m_expected.enqueue({text, answer, {}, false});
}

void DialogAnswers::ExpectFileDialog(const QString& title, const QString& path)
{
    m_expected.enqueue({title, QMessageBox::NoButton, path, true});
}

void DialogAnswers::answer()
{
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal)
        return;
    if (auto* box = qobject_cast<QMessageBox*>(modal)) {
        if (m_expected.isEmpty() || m_expected.head().isFileDialog || m_expected.head().text != box->text()) {
            m_problems << QStringLiteral("unexpected message: ") + box->text() + QLatin1Char('|') +
                              box->informativeText();
            later(box, "reject");
            return;
        }
        later(box->button(m_expected.dequeue().button), "click");
        return;
    }
    auto* dialog = qobject_cast<QFileDialog*>(modal);
    if (!dialog || m_expected.isEmpty() || !m_expected.head().isFileDialog ||
        m_expected.head().text != dialog->windowTitle()) {
        m_problems << QStringLiteral("unexpected dialog: ") + modal->windowTitle();
        later(modal, "reject");
        return;
    }
    auto* edit = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    m_lastProposal = edit->text();
    edit->setText(m_expected.dequeue().path);
    later(dialog, "accept");
}
