// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Names the system's time zone file in the environment variable TZ, unless something is set there already.
/// Without TZ the GNU C library looks at the file anew for every local time that is made, one system call for
/// each sample that is read; with it, it reads the file once. A change of the system's time zone is then
/// noticed at the next start. To be called before the first thread starts. Does nothing on other systems.
void keepLocalTimeZone();
