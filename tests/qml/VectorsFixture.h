// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "COperationMapping.h"
#include "FakeMappingPage.h"
#include "MeasureFixture.h"
#include "QmlTestSetup.h"

#include <QImage>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRect>

#include <limits>
#include <memory>

/// The vectors of the mapping on a page that is none. Each test has an operation, a page and a window of its
/// own; the engine is the same for all.
class VectorsFixture
{
protected:
    using Vector = FakeMappingPage::Vector;

    static constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    const QVector3D kCentre{0.5F, 0.5F, 0.5F};

    void begin();
    void end();

    /// Fields of strength 1, 2 and so on, in a row along X.
    static QVector<Vector> row(int count);
    static QVector<int> firstNumbers(int count);
    CRecordingManagerMapping& manager() { return *m_operation->RecordingManager(); }
    void show(bool isShown = true);
    /// As a dataset of so many blocks at rest.
    void rest(int blocks);
    QQuickItem* find(const char* name) const { return m_window->findChild<QQuickItem*>(QLatin1String(name)); }
    QQuickItem* scene() const { return find("vectorsScene"); }
    QObject* part(const char* name) const { return scene()->property(name).value<QObject*>(); }
    QObject* camera() const { return part("scene")->property("activeCamera").value<QObject*>(); }
    QVector<QObject*> vectors() const;
    /// The Y scalings, which are the arrows' lengths.
    QVector<float> lengths() const;
    int visibleCount() const;
    void click(const char* name);
    QImage picture() const;
    QRect place() const;
    double slider() const { return find("vectorLengthSlider")->property("value").toDouble(); }

    MeasureFixture m_fixture;
    QmlTestSetup m_setup;
    std::unique_ptr<COperationMapping> m_operation;
    std::unique_ptr<FakeMappingPage> m_page;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QQuickWindow> m_window;

private:
    int m_warningsBefore = 0;
};
