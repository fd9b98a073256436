// SPDX-License-Identifier: MIT
#pragma once

#include "CTimestampableResult.h"
#include "tFlux.h"

#include <QSharedPointer>

#include <limits>

/// One sample of the three field components, in the unit of its block. The instrument fills it; nothing in
/// the application derives one field from another. Only `dBConverted` is written after the block was emitted.
class KESTRIX_API CFieldIntensityResult : public CTimestampableResult
{
    Q_OBJECT
    Q_PROPERTY(tFlux Bx READ Bx WRITE SetBx NOTIFY BxChanged)
    Q_PROPERTY(tFlux By READ By WRITE SetBy NOTIFY ByChanged)
    Q_PROPERTY(tFlux Bz READ Bz WRITE SetBz NOTIFY BzChanged)
    Q_PROPERTY(tFlux B READ B WRITE SetB NOTIFY BChanged)
    Q_PROPERTY(tFlux dB READ dB WRITE SetDB NOTIFY dBChanged)
    Q_PROPERTY(tFlux BBprime READ BBprime WRITE SetBBprime NOTIFY BBprimeChanged)
    Q_PROPERTY(tFlux dBConverted READ dBConverted WRITE SetDBConverted NOTIFY dBConvertedChanged)
    Q_PROPERTY(quint16 Temperature READ Temperature WRITE SetTemperature NOTIFY TemperatureChanged)

public:
    using CTimestampableResult::CTimestampableResult;

    tFlux Bx() const { return m_bx; }           ///< X component
    tFlux By() const { return m_by; }           ///< Y component
    tFlux Bz() const { return m_bz; }           ///< Z component
    tFlux B() const { return m_b; }             ///< magnitude
    tFlux dB() const { return m_dB; }           ///< uncertainty of the field
    tFlux BBprime() const { return m_bbPrime; } ///< component along the block's reference direction B'
    tFlux dBConverted() const
    {
        return m_dBConverted;
    } ///< dB in the uncertainty unit chosen for display; not-a-number until computed
    quint16 Temperature() const { return m_temperature; } ///< raw temperature count of the instrument

    void SetBx(tFlux value);
    void SetBy(tFlux value);
    void SetBz(tFlux value);
    void SetB(tFlux value);
    void SetDB(tFlux value);
    void SetBBprime(tFlux value);
    void SetDBConverted(tFlux value);
    void SetTemperature(quint16 value);

signals:
    void BxChanged(tFlux value);
    void ByChanged(tFlux value);
    void BzChanged(tFlux value);
    void BChanged(tFlux value);
    void dBChanged(tFlux value);
    void BBprimeChanged(tFlux value);
    void dBConvertedChanged(tFlux value);
    void TemperatureChanged(quint16 value);

private:
    tFlux m_bx = 0;
    tFlux m_by = 0;
    tFlux m_bz = 0;
    tFlux m_b = 0;
    tFlux m_dB = 0;
    tFlux m_bbPrime = 0;
    tFlux m_dBConverted = std::numeric_limits<tFlux>::quiet_NaN();
    quint16 m_temperature = 0;
};

Q_DECLARE_METATYPE(QSharedPointer<CFieldIntensityResult>)
