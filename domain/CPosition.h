// SPDX-License-Identifier: MIT
#pragma once

#include "KestrixApi.h"

#include <QMetaType>
#include <QObject>

/// A place in space, in the length unit of the mapper. Crosses signals by value.
class KESTRIX_API CPosition : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double X READ X WRITE SetX NOTIFY XChanged)
    Q_PROPERTY(double Y READ Y WRITE SetY NOTIFY YChanged)
    Q_PROPERTY(double Z READ Z WRITE SetZ NOTIFY ZChanged)

public:
    explicit CPosition(QObject* parent = nullptr);

    /// A copy is a fresh object with the same values; nothing else of the original comes along.
    CPosition(const CPosition& other);
    CPosition& operator=(const CPosition& other);

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

Q_DECLARE_METATYPE(CPosition)
