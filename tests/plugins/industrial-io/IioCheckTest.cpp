// SPDX-License-Identifier: GPL-3.0-or-later
#include "IioCheckTest.h"

#include "FakeMagnetometer.h"

#include <QProcess>
#include <QtTest>

void IioCheckTest::findsNothing()
{
    if (!m_refused.isEmpty())
        QSKIP(qPrintable(QStringLiteral("No private namespace: ") + m_refused));
    FakeMagnetometer device(0);
    device.RemoveBuffer();
    device.Plug();
    QProcess check;
    // A busy machine must not look like a slow plug-in.
    check.start(QStringLiteral(CHECKER),
                {QStringLiteral("--slow"), QStringLiteral("5000"), QStringLiteral("--blocks"),
                 QStringLiteral("2"), QStringLiteral("--wait"), QStringLiteral("1.5"),
                 QStringLiteral(PLUGIN_PATH)});
    QVERIFY(check.waitForFinished(90000));
    const QByteArray report = check.readAllStandardOutput();
    QVERIFY2(check.exitCode() == 0, report.constData());
    QVERIFY2(report.contains("lis3mdl_magn 1-001e"), report.constData());
    // Only automatic ranging can be chosen: the kernel does not tell the range of a sensor. On a busy machine
    // values are asked for late, and their times say so.
    QVERIFY2(report.contains("0 errors") && report.contains("ranges-empty"), report.constData());
}
