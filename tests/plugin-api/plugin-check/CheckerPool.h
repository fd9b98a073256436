// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

/// One run of kestrix-plugin-check.
struct CheckerRun
{
    QStringList arguments;
    QString fake; ///< KESTRIX_FAKE, what the fake plug-ins do
    QString bad;  ///< KESTRIX_BAD, what is wrong with the bad plug-in

    int exitCode = -1; ///< -1: it did not come to its end
    QJsonObject report;
    QStringList codes; ///< of the findings, each once
};

/// Runs checks beside each other: most of their time they wait.
class CheckerPool
{
public:
    /// Fills in how they ended.
    static void RunAll(QVector<CheckerRun>& runs);
    static void Run(CheckerRun& run);
};
