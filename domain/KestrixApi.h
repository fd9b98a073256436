// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#if defined(KESTRIX_PLUGIN_API_BUILD)
#define KESTRIX_API Q_DECL_EXPORT
#else
#define KESTRIX_API Q_DECL_IMPORT
#endif
