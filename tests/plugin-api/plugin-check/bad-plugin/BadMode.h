// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

/// What is wrong with the plug-in: the environment variable KESTRIX_BAD holds the code of the finding that it
/// is to be found guilty of. Without one it keeps the contract.
inline bool isBad(const char* code)
{
    static const QByteArray mode = qgetenv("KESTRIX_BAD");
    return mode == code;
}
