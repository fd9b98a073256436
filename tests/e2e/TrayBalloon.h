// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QWidget;

/// The balloon that the tray icon shows its messages in.
namespace TrayBalloon {

/// Null while there is none.
QWidget* Find();
/// Title and text, "title|text"; nothing without a balloon.
QString Text();

} // namespace TrayBalloon
