// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>

/// A data folder of this process alone, which takes the place of the user's before anything asks for it: the
/// files of the user who runs a target are not for fuzzing. It goes with the process.
namespace DataHome {

/// Makes the settings directory in it. Once, before the first input.
void prepare();
/// Writes a file of the settings directory; aborts if that fails.
void write(const QString& name, const unsigned char* data, size_t size);
QByteArray read(const QString& name);
/// Path of a file in the settings directory.
QString pathOf(const QString& name);

/// Whether XML can say the text, so that it is found again after writing.
bool isPlain(const QString& text);

} // namespace DataHome
