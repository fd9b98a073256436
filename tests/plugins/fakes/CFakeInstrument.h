// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CInstrument.h"

#include <QPointer>
#include <QTimer>

#include <atomic>
#include <thread>

/// An instrument without hardware; its behaviour is told by the options in FakeOptions.h, its own before
/// those of its plug-in. Its calls are recorded on itself, and on the plug-in with the serial number in
/// front. Each sample is Bx 3, By 4, Bz 0, B 5, BBprime 3, dB 0.5; they follow each other by a millisecond.
class CFakeInstrument : public CInstrument
{
    Q_OBJECT

public:
    explicit CFakeInstrument(const QString& serialNumber, QObject* plugin = nullptr);
    ~CFakeInstrument() override;

    /// A block as the instrument makes them.
    static QSharedPointer<CMeasureBlock> MakeBlock(int numSamples, qint64 firstSampleMs = 0);

public slots:
    void SendTrigger() override;
    bool Connect() override;
    void Disconnect() override;
    void StartMeasurement() override;
    void StopMeasurement() override;
    void CalibrateZeroOffset(bool forceCalibration = false) override;
    void RestoreZeroOffsetToFactory() override;

    /// Emits one block at once.
    void EmitBlock();

signals:
    /// The time after which it is to leave the list is over.
    void VanishDue();

private:
    QVariant option(const char* key, const QVariant& fallback) const;
    void record(const QString& call);
    void failIfAsked(const char* key) const;
    void fillCapabilities();
    QSharedPointer<CMeasureBlock> nextBlock();
    void onBlockTimer();
    void runBlockThread(int blockCount, int intervalMs);
    void endBlockThread();

    QPointer<QObject> m_plugin;
    QTimer m_blockTimer;
    int m_blocksToGo = 0;
    std::atomic<int> m_samplesPerBlock{10};
    std::atomic<qint64> m_nextSampleMs{0};
    std::atomic<bool> m_isThreadToEnd{false};
    std::thread m_blockThread;
};
