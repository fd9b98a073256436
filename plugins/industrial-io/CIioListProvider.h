// SPDX-License-Identifier: MIT
#pragma once

#include "CDetachableThread.h"
#include "CIioInstrument.h"
#include "CIioScanner.h"
#include "CInstrumentListProvider.h"

#include <QSharedPointer>
#include <QTimer>

#include <memory>
#include <vector>

/// Lists the magnetometers of this computer and of those that the settings name, while they can be reached.
class CIioListProvider : public CInstrumentListProvider
{
    Q_OBJECT

public:
    explicit CIioListProvider(QObject* parent = nullptr);
    ~CIioListProvider() override;

    /// Looks for magnetometers, and reports when the event loop runs.
    void Start();
    /// Ends connections that are still open and looks no more.
    void Stop();

public slots:
    QList<QSharedPointer<CInstrument>> GetInstrumentList() override;
    /// There is no serial port here.
    void SetSerialPortSettings(QString port, int baudRate) override;

private:
    struct Context
    {
        std::shared_ptr<CIioScanner> scanner; ///< shared with the thread
        std::unique_ptr<CDetachableThread> thread;
        int seen = 0;    ///< scans that were looked at
        QString message; ///< the last one in the log
    };

    void look();
    bool lookAt(Context& context);
    void report(Context& context, const IioScan& scan);
    bool drop(const QString& uri, const QList<IioDevice>& present);
    bool list(const IioDevice& device);
    void remove(const CIioInstrument* instrument);

    std::vector<Context> m_contexts;
    QList<QSharedPointer<CIioInstrument>> m_instruments;
    QTimer m_lookTimer{this};
};
