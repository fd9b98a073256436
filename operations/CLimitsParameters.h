// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

/// The exposure limits file that the user chose.
class CLimitsParameters : public QObject
{
    Q_OBJECT
    Q_PROPERTY(
        QString LimitsFilePath READ LimitsFilePath WRITE SetLimitsFilePath NOTIFY LimitsFilePathChanged)
    Q_PROPERTY(
        QString LimitsFileName READ LimitsFileName WRITE SetLimitsFileName NOTIFY LimitsFileNameChanged)

public:
    using QObject::QObject;

    QString LimitsFilePath() const { return m_limitsFilePath; } ///< a change makes the operation read it
    QString LimitsFileName() const
    {
        return m_limitsFileName;
    } ///< path of the file whose limits are in force

    void SetLimitsFilePath(const QString& path);
    void SetLimitsFileName(const QString& name);

    /// Sets the path and announces it even if it is the same: the file is read again.
    void AssignLimitsFilePath(const QString& path);

signals:
    void LimitsFilePathChanged(const QString& path);
    void LimitsFileNameChanged(const QString& name);

private:
    QString m_limitsFilePath;
    QString m_limitsFileName;
};
