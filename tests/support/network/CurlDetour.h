// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

/// Stands between the program and libcurl. Every test that links this can send the program's requests to a
/// server of its own and name the authority that this server's certificate comes from, which the program
/// leaves to the system; and it can let libcurl fail.
namespace CurlDetour {

/// PEM file of the authority to trust instead of the system's; empty for the latter.
void TrustAuthority(const QByteArray& path);
/// Address that is asked instead of the program's own; empty for the latter.
void SendTo(const QByteArray& url);
/// Whether libcurl has no memory for a new handle.
void FailToInitialize(bool fails);

/// Calls so far.
int NumHandles();   ///< handles that were made
int NumCleanups();  ///< handles that were given back
int NumTransfers(); ///< transfers that were begun

} // namespace CurlDetour
