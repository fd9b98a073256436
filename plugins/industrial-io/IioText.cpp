// SPDX-License-Identifier: MIT
#include "IioText.h"

#include <cmath>

std::optional<double> numberOfAttribute(const QByteArray& text)
{
    // What a library hands over may count the terminating zero in.
    const QByteArray trimmed = QByteArray(text.constData()).trimmed();
    bool ok = false;
    const double value = trimmed.toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}
