// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The number that an attribute of the kernel holds, written with a point whatever the locale is. Nothing if
/// it holds anything else.
std::optional<double> numberOfAttribute(const QByteArray& text);

/// A text of this plug-in in the language of the program.
QString iioText(const char* text);
