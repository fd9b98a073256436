// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DialogReadiness.h"

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include <functional>

class QFileDialog;

/// Answers modal dialogs while a test waits inside of them. The answers are given in the order in which they
/// were announced; a dialog that nobody announced, or that its answer does not close, is rejected and
/// counted.
class DialogDriver : public QObject
{
public:
    DialogDriver();

    /// Presses a button of the next dialog, a message box.
    void pressNext(QMessageBox::StandardButton button);
    /// Picks a path in the next dialog, a file dialog; an empty path cancels it.
    void pickNext(const QString& path);

    /// Whether all announced dialogs came, and no other.
    bool isDone() const { return m_answers.isEmpty() && m_unexpected == 0; }

    // What the dialogs were like, in their order.
    QStringList messages;    ///< text and informative text of message boxes, joined by "|"
    QStringList fileDialogs; ///< caption, mode, folder, proposed name and filters, joined by "|"

private:
    void look();
    void describe(QWidget* dialog);

    QTimer m_timer;
    QList<std::function<void(QWidget*)>> m_answers;
    QPointer<QWidget> m_answered;
    DialogReadiness m_readiness;
    int m_unexpected = 0;
};
