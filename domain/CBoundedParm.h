// SPDX-License-Identifier: MIT
#pragma once

#include "KestrixApi.h"

#include <QMetaType>
#include <QObject>

/// Range and default of one instrument parameter, in the unit of that parameter.
class KESTRIX_API CBoundedParm : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double Min READ Min WRITE SetMin NOTIFY MinChanged)
    Q_PROPERTY(double Max READ Max WRITE SetMax NOTIFY MaxChanged)
    Q_PROPERTY(double Default READ Default WRITE SetDefault NOTIFY DefaultChanged)

public:
    explicit CBoundedParm(QObject* parent = nullptr);

    double Min() const { return m_min; }
    double Max() const { return m_max; }
    double Default() const { return m_default; }

    void SetMin(double value);
    void SetMax(double value);
    void SetDefault(double value);

signals:
    void MinChanged(double value);
    void MaxChanged(double value);
    void DefaultChanged(double value);

private:
    double m_min = 0;
    double m_max = 0;
    double m_default = 0;
};
