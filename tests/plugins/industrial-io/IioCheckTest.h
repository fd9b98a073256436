// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

/// The checker of plug-ins with a fake magnetometer. Most of its time is waiting.
class IioCheckTest : public QObject
{
    Q_OBJECT

public:
    /// `refused`: why there is no private namespace; empty if there is one.
    explicit IioCheckTest(const QString& refused) : m_refused(refused) {}

private slots:
    void findsNothing();

private:
    const QString m_refused;
};
