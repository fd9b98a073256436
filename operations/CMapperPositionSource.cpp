// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMapperPositionSource.h"

CMapperPositionSource::CMapperPositionSource(eType type, QObject* parent) : QObject(parent), m_type(type) {}

QString CMapperPositionSource::TypeToText(eType type)
{
    switch (type) {
    case Cartesian:
        return QStringLiteral("Cartesian");
    case File:
        return QStringLiteral("File");
    }
    return QStringLiteral("Error");
}
