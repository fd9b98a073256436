// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CFakeInstrument.h"
#include "CInstrumentListProvider.h"

#include <QStringList>

/// Lists fake instruments. The options are those of the plug-in, or its own without one.
class CFakeInstrumentListProvider : public CInstrumentListProvider
{
    Q_OBJECT

public:
    explicit CFakeInstrumentListProvider(const QStringList& serialNumbers, QObject* plugin = nullptr,
                                         QObject* parent = nullptr);

    /// The instruments as they would be listed now.
    QList<QSharedPointer<CFakeInstrument>> Instruments() const { return m_instruments; }
    void AddInstrument(const QSharedPointer<CFakeInstrument>& instrument);
    /// Drops an instrument without a word.
    void RemoveInstrument(const QString& serialNumber);
    /// Emits InstrumentListUpdated, from a thread of its own if the options ask for it.
    void Announce();

public slots:
    QList<QSharedPointer<CInstrument>> GetInstrumentList() override;
    void SetSerialPortSettings(QString port, int baudRate) override;

private:
    QVariant option(const char* key, const QVariant& fallback) const;
    QSharedPointer<CFakeInstrument> makeInstrument(const QString& serialNumber);
    void watch(const CFakeInstrument& instrument);

    QObject* m_plugin;
    QList<QSharedPointer<CFakeInstrument>> m_instruments;
};
