// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QSurfaceFormat>
#include <QTest>

/// The main function of a test that shows 3-D scenes, which need OpenGL 2.1.
template <class Test> int runSceneTest(int argc, char** argv)
{
    QSurfaceFormat format;
    format.setVersion(2, 1);
    format.setDepthBufferSize(24);
    QSurfaceFormat::setDefaultFormat(format);
    const QApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}
