// SPDX-License-Identifier: MIT
#pragma once

#include "KestrixApi.h"

#include <QMetaType>
#include <QObject>

/// Reference direction B' of a block, to which the field's component BBprime refers. Of any length.
class KESTRIX_API CBprimeResult : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double X READ X WRITE SetX NOTIFY XChanged)
    Q_PROPERTY(double Y READ Y WRITE SetY NOTIFY YChanged)
    Q_PROPERTY(double Z READ Z WRITE SetZ NOTIFY ZChanged)

public:
    explicit CBprimeResult(QObject* parent = nullptr);

    double X() const { return m_x; }
    double Y() const { return m_y; }
    double Z() const { return m_z; }

    void SetX(double value);
    void SetY(double value);
    void SetZ(double value);

signals:
    void XChanged(double value);
    void YChanged(double value);
    void ZChanged(double value);

private:
    double m_x = 0;
    double m_y = 0;
    double m_z = 0;
};
