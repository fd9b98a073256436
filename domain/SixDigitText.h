// SPDX-License-Identifier: MIT
#pragma once

#include "tFlux.h"

#include <QChar>
#include <QVarLengthArray>

/// Room for one line of a block's text.
using TextBuffer = QVarLengthArray<QChar, 256>;

/// Appends exactly what QString::number(value, 'g', 6) gives for the widened value, several times faster: a
/// record has seven hundred thousand such numbers and more.
void appendSixDigits(TextBuffer& text, tFlux value);

/// Appends a whole number in base 10, padded on the left with zeros to `width`.
void appendInteger(TextBuffer& text, quint32 value, int width);
