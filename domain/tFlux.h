// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMetaType>

/// A field quantity, in the unit of the parameters in force. Arithmetic promotes to double and rounds on
/// store.
using tFlux = float;

Q_DECLARE_METATYPE(QList<tFlux>)
