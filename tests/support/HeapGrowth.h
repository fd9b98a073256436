// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#ifdef __GLIBC__
#include <malloc.h>
#endif

/// The kilobytes by which the heap grows in so many calls of `visit`, after some that are let pass; 0 where
/// the heap is not told of.
template <class Visit> double heapGrowth(int passed, int counted, const Visit& visit)
{
#ifdef __GLIBC__
    const auto kilobytes = [] { return static_cast<double>(mallinfo2().uordblks) / 1024; };
    for (int i = 0; i < passed; ++i)
        visit();
    const double before = kilobytes();
    for (int i = 0; i < counted; ++i)
        visit();
    return kilobytes() - before;
#else
    for (int i = 0; i < passed + counted; ++i)
        visit();
    return 0;
#endif
}
