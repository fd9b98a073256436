// SPDX-License-Identifier: GPL-3.0-or-later
// Part of the header that all tests share: on a loaded machine a condition may take many times longer to come
// than on a free one.
#pragma once

#include <QtCore/qdeadlinetimer.h>
#include <QtTest/qtestcase.h>

/// How long tests wait for what must come; it costs time only where a test fails. Waits that prove an absence
/// are short and take no part in this.
inline constexpr int kLongWaitMs = 30000;

// What QTRY_VERIFY and its like are made of. Qt's own waits for 5 s, then twice as long again for its
// message, and looks every 50 ms only.
#undef QTRY_IMPL
#define QTRY_IMPL(expr, timeout)                                                                             \
    const QDeadlineTimer qt_test_deadline(qMax(int(timeout), kLongWaitMs));                                  \
    if (!(expr))                                                                                             \
        QTest::qWait(0);                                                                                     \
    while (!(expr) && !qt_test_deadline.hasExpired())                                                        \
        QTest::qWait(10);
