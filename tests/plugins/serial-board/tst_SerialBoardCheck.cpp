// SPDX-License-Identifier: GPL-3.0-or-later
#include "PtyBoard.h"

#include <QDir>
#include <QProcess>
#include <QTest>

class tst_SerialBoardCheck : public QObject
{
    Q_OBJECT

private slots:
    void checkFindsNothing()
    {
        PtyBoard board(QDir::current().filePath(QStringLiteral("board")));
        QVERIFY(board.Plug());
        board.Start([index = 0]() mutable {
            ++index;
            return PtyWrite{index / 200.0,
                            "X: 20.50  Y: -3.25  Z: " + QByteArray::number(41 + index % 3) + "  uT\n"};
        });
        QProcess check;
        // A busy machine must not look like a slow plug-in.
        check.start(QStringLiteral(CHECKER),
                    {QStringLiteral("--slow"), QStringLiteral("5000"), QStringLiteral("--blocks"),
                     QStringLiteral("2"), QStringLiteral("--wait"), QStringLiteral("1.5"),
                     QStringLiteral("--serial-port"), board.Path(), QStringLiteral(PLUGIN_PATH)});
        QVERIFY(check.waitForFinished(90000));
        const QByteArray report = check.readAllStandardOutput();
        QVERIFY2(check.exitCode() == 0, report.constData());
        QVERIFY2(report.contains("Serial board"), report.constData());
        // Only automatic ranging can be chosen: the sensor of a board is not known.
        QVERIFY2(report.contains("0 errors, 1 warnings") && report.contains("ranges-empty"),
                 report.constData());
    }
};

QTEST_GUILESS_MAIN(tst_SerialBoardCheck)
#include "tst_SerialBoardCheck.moc"
