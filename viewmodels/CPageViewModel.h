// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

/// Base of all page view models. One is created for each visit of a page and deleted at its end; nothing that
/// has to outlive the visit is kept here.
class CPageViewModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Name READ Name CONSTANT)
    Q_PROPERTY(bool HasUnsavedParameter READ HasUnsavedParameter WRITE SetHasUnsavedParameter NOTIFY
                   HasUnsavedParameterChanged)

public:
    explicit CPageViewModel(const QString& name, QObject* parent = nullptr);

    /// Stem of the help page of the section on screen; empty when there is none.
    virtual QString GetHelpName() const = 0;
    /// Called once, right after construction.
    virtual void PageEntered();
    /// Called just before the view model is scheduled for deletion: signals must not reach it any more.
    virtual void PageLeft();

    QString Name() const { return m_name; }                            ///< identifies the page
    bool HasUnsavedParameter() const { return m_hasUnsavedParameter; } ///< changes were made and not saved
    void SetHasUnsavedParameter(bool hasUnsavedParameter);

    /// A command of the page is running. It may be waiting for the user or for the instrument in an event
    /// loop of its own: a page that is left meanwhile would be deleted under it.
    bool IsInCommand() const { return m_commandsInProgress > 0; }

signals:
    void HasUnsavedParameterChanged(bool hasUnsavedParameter);
    /// The outermost command is about to return.
    void CommandEnded();

protected:
    /// Marks a command of the page as running for as long as it lives. The page outlives it.
    class CommandScope
    {
    public:
        explicit CommandScope(CPageViewModel& page);
        ~CommandScope();

    private:
        Q_DISABLE_COPY(CommandScope)
        CPageViewModel& m_page;
    };

private:
    const QString m_name;
    bool m_hasUnsavedParameter = false;
    int m_commandsInProgress = 0;
};
