// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CFakeInstrumentListProvider.h"
#include "CInstrumentPlugin.h"

#include <memory>

/// A plug-in with fake instruments. What a test does with it is invokable, so that it works through a loaded
/// library as well.
class CFakeInstrumentPlugin : public CInstrumentPlugin
{
    Q_OBJECT

public:
    explicit CFakeInstrumentPlugin(QObject* parent = nullptr);

    void Start() override;
    void Stop() override;
    CInstrumentListProvider* GetInstrumentListProvider() override;

    /// Drops an instrument from the list and announces it.
    Q_INVOKABLE void vanish(const QString& serialNumber);
    /// Puts a new instrument on the list and announces it.
    Q_INVOKABLE void appear(const QString& serialNumber);
    Q_INVOKABLE void announce();
    /// Lets every running instrument emit one block at once.
    Q_INVOKABLE void emitBlock();

private:
    std::unique_ptr<CFakeInstrumentListProvider> m_provider;
};
