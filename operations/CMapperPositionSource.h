// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "COrientation.h"
#include "CPosition.h"

#include <QObject>
#include <QString>

/// Where the points of a stop-and-go mapping come from. Main thread only.
class CMapperPositionSource : public QObject
{
    Q_OBJECT
    Q_PROPERTY(eType Type READ Type CONSTANT)

public:
    enum eType { Cartesian = 1, File = 2 };
    Q_ENUM(eType)

    explicit CMapperPositionSource(eType type, QObject* parent = nullptr);

    /// Back to the first point.
    virtual void Reset() = 0;
    /// Writes the next point to the arguments and advances. False past the end, with the arguments left as
    /// they are.
    virtual bool GetNextPosition(CPosition& position, COrientation& orientation) = 0;

    eType Type() const { return m_type; }
    /// As parameter files and the page have it.
    static QString TypeToText(eType type);

private:
    const eType m_type;
};
