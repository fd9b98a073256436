// SPDX-License-Identifier: GPL-3.0-or-later
#include "DialogAnswers.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QListView>

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

void DialogAnswers::AnswerAlways(const QString& text,
                                 const std::function<QMessageBox::StandardButton()>& answer)
{
    m_standingAnswers.insert(text, answer);
}

void DialogAnswers::AnswerFileDialogAlways(const QString& title, const QString& path)
{
    m_standingPaths.insert(title, path);
}

void DialogAnswers::answer()
{
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal || !m_readiness.IsReady(modal))
        return;
    if (auto* box = qobject_cast<QMessageBox*>(modal))
        answerMessage(*box);
    else
        answerFileDialog(*modal);
}

void DialogAnswers::answerMessage(QMessageBox& box)
{
    m_lastDetails = box.informativeText();
    if (!m_expected.isEmpty() && !m_expected.head().isFileDialog && m_expected.head().text == box.text()) {
        later(box.button(m_expected.dequeue().button), "click");
        return;
    }
    if (const auto standing = m_standingAnswers.value(box.text())) {
        later(box.button(standing()), "click");
        return;
    }
    m_problems << QStringLiteral("unexpected message: ") + box.text() + QLatin1Char('|') +
                      box.informativeText();
    later(&box, "reject");
}

void DialogAnswers::answerFileDialog(QWidget& modal)
{
    const auto* dialog = qobject_cast<QFileDialog*>(&modal);
    QString path = m_standingPaths.value(modal.windowTitle());
    if (!m_expected.isEmpty() && m_expected.head().isFileDialog &&
        m_expected.head().text == modal.windowTitle())
        path = m_expected.dequeue().path;
    if (!dialog || path.isEmpty()) {
        m_problems << QStringLiteral("unexpected dialog: ") + modal.windowTitle();
        later(&modal, "reject");
        return;
    }
    auto* edit = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    m_lastProposal = edit->text();
    // A file that was chosen before stays selected beside the new one while the edit has no focus.
    dialog->findChild<QListView*>(QStringLiteral("listView"))->selectionModel()->clearSelection();
    edit->setText(path);
    later(&modal, "accept");
}
