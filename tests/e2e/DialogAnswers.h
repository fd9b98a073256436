// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DialogReadiness.h"

#include <QHash>
#include <QMessageBox>
#include <QObject>
#include <QQueue>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>

/// Answers the modal dialogs that the program opens, in the order given beforehand. One that nobody expected
/// is refused and noted, so that no test hangs on it.
class DialogAnswers : public QObject
{
    Q_OBJECT

public:
    explicit DialogAnswers(QObject* parent = nullptr);

    void ExpectMessage(const QString& text, QMessageBox::StandardButton answer);
    void ExpectFileDialog(const QString& title, const QString& path);

    /// From now on answers this message, and this file dialog, as often as they come, unless another answer
    /// is expected first.
    void AnswerAlways(const QString& text, const std::function<QMessageBox::StandardButton()>& answer);
    void AnswerFileDialogAlways(const QString& title, const QString& path);

    bool IsDone() const { return m_expected.isEmpty(); }
    /// What went otherwise than expected.
    QStringList Problems() const { return m_problems; }
    /// The name that the last file dialog proposed.
    QString LastProposal() const { return m_lastProposal; }
    /// The informative text of the last message.
    QString LastDetails() const { return m_lastDetails; }

private:
    struct Expected
    {
        QString text;
        QMessageBox::StandardButton button;
        QString path;
        bool isFileDialog;
    };

    void answer();
    void answerMessage(QMessageBox& box);
    void answerFileDialog(QWidget& modal);

    QTimer m_timer;
    DialogReadiness m_readiness;
    QQueue<Expected> m_expected;
    QHash<QString, std::function<QMessageBox::StandardButton()>> m_standingAnswers;
    QHash<QString, QString> m_standingPaths;
    QStringList m_problems;
    QString m_lastProposal;
    QString m_lastDetails;
};
