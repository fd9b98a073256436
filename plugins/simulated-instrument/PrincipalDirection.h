// SPDX-License-Identifier: MIT
#pragma once

#include "FieldVector.h"

#include <QVector>

/// Unit vector along which `fields` vary most about their mean, that is the direction of an alternating
/// field. Points to the side of `fallback`, which is returned if they do not vary or are too few to tell.
FieldVector principalDirection(const QVector<FieldVector>& fields, const FieldVector& fallback);
