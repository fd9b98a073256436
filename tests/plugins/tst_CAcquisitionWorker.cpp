// SPDX-License-Identifier: GPL-3.0-or-later
#include "CAcquisitionWorker.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

class EmptyBlocks : public CBlockSource
{
public:
    QSharedPointer<CMeasureBlock> NextBlock(const AcquisitionParameters& /*parameters*/,
                                            const BlockTimes& /*times*/) override
    {
        return QSharedPointer<CMeasureBlock>::create();
    }
};

} // namespace

class tst_CAcquisitionWorker : public QObject
{
    Q_OBJECT

private slots:
    // 65,535 samples at 0.01 Hz last for 75 days, which is more milliseconds than an int holds.
    void waitsForAVeryLongBlock()
    {
        AcquisitionParameters parameters;
        parameters.triggerMode = CTrigger::CONTINUOUS;
        parameters.acquisitionRate = 0.01;
        parameters.blockSize = 65535;
        CAcquisitionWorker worker(std::make_shared<EmptyBlocks>(), parameters, {});
        QSignalSpy blocks(&worker, &CAcquisitionWorker::BlockReady);
        const auto* timer = worker.findChild<QTimer*>();
        QVERIFY(timer);
        worker.Run();
        QTRY_VERIFY(timer->isActive() && timer->interval() > 0);
        QVERIFY(timer->interval() > 60000);
        QVERIFY(blocks.isEmpty());
    }

    void deliversWhenABlockIsDue()
    {
        AcquisitionParameters parameters;
        parameters.triggerMode = CTrigger::CONTINUOUS;
        parameters.acquisitionRate = 100;
        parameters.blockSize = 10;
        CAcquisitionWorker worker(std::make_shared<EmptyBlocks>(), parameters, {});
        QSignalSpy blocks(&worker, &CAcquisitionWorker::BlockReady);
        QElapsedTimer elapsed;
        elapsed.start();
        worker.Run();
        QTRY_VERIFY(blocks.size() >= 3);
        QVERIFY(elapsed.elapsed() >= 299);
    }
};

QTEST_GUILESS_MAIN(tst_CAcquisitionWorker)
#include "tst_CAcquisitionWorker.moc"
