// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1String>

/// Names under which the application presents itself and marks its files.
inline const QLatin1String kApplicationName("Kestrix");
inline const QLatin1String kApplicationVersion("1.2.4");
inline const QLatin1String kOrganizationName("Norvane");

/// Where the maker is reached; whoever builds a product for release sets these four.
inline const QLatin1String kOrganizationDomain("norvane.invalid");
inline const QLatin1String kOrganizationWebsite("https://www.norvane.invalid");
inline const QLatin1String kOrganizationEmail("contact@norvane.invalid");
inline const QLatin1String kSoftwareUpdateWebsite("https://www.norvane.invalid/download");
