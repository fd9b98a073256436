// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

/// The number that an attribute of the kernel holds, written with a point whatever the locale is. Nothing if
/// it holds anything else.
std::optional<double> numberOfAttribute(const QByteArray& text);
