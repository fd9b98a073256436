// SPDX-License-Identifier: GPL-3.0-or-later

// Preloaded into window tests under the address sanitizer: libraries stay mapped, so that a leak report can
// name them.
extern "C" __attribute__((visibility("default"))) int dlclose(void* /*handle*/)
{
    return 0;
}
