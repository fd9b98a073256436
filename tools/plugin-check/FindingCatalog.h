// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Every kind of finding. The codes are what scripts look for: they do not change.
namespace FindingCatalog {

/// An error breaks the contract; a warning is legal, and probably not meant.
bool isError(const QString& code);
/// One sentence; empty for a code that does not exist.
QString meaningOf(const QString& code);
/// All codes, one a line, with severity and meaning.
QString listing();

} // namespace FindingCatalog
