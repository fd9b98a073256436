// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeterOperationViewModel.h"
#include "MeasureFixture.h"
#include "QmlTestSetup.h"

#include <QImage>
#include <QPointF>
#include <QQuickItem>
#include <QQuickView>
#include <QRect>

#include <memory>

/// The component tab of the meter page in a window of its own, on the real view model.
class MeterView
{
public:
    MeterView();
    ~MeterView();

    /// Takes the tab away and makes settings, operation and view model anew, for the next test. The window
    /// and the engine, which would take most of the time, stay.
    void Renew();
    /// Builds the tab anew, as a change of tabs does; the view model stays.
    void Load(const QSize& size = QSize(900, 560));

    /// A block of one sample of this field, in microtesla, of its length or of another magnitude.
    void Deliver(float bx, float by, float bz);
    void Deliver(float bx, float by, float bz, float magnitude);
    void Deliver(const QSharedPointer<CMeasureBlock>& block);

    /// The item of that name, shown or not, or null.
    QQuickItem* Find(const char* name) const;
    /// The scene, once it is there; null if it does not come.
    QQuickItem* Scene() const;
    QObject* PartOfScene(const char* property) const;

    /// What the window shows, in pixels, after all changes have arrived there.
    QImage Picture() const;
    /// Where an item lies in the picture.
    QRect PlaceInPicture(const QQuickItem* item) const;
    void Click(const char* name) const;

    MeasureFixture& Fixture() { return *m_fixture; }
    CMeterOperationViewModel& Meter() { return *m_meter; }
    QQuickView& Window() { return *m_view; }

private:
    void makeModels();
    void unload();
    /// Waits until the window has drawn.
    void draw();

    std::unique_ptr<MeasureFixture> m_fixture;
    std::unique_ptr<CMeterOperationViewModel> m_meter;
    QmlTestSetup m_setup;
    std::unique_ptr<QQuickView> m_view;
};
