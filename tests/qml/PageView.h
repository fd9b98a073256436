// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MeasureFixture.h"
#include "QmlTestSetup.h"
#include "WindowDriver.h"

#include <QQmlPropertyMap>
#include <QQuickView>
#include <QStringList>
#include <QVector>

#include <memory>

/// A page of the measure operation in a window of its own, on a real page view model.
class PageView
{
public:
    /// `page` is the name of a file in the folder of the pages; the fixture and the view model must outlive
    /// the view.
    PageView(MeasureFixture& fixture, QObject* pageViewModel, const QString& page);
    ~PageView();

    WindowDriver& Driver() { return *m_driver; }
    QQuickView& Window() { return *m_view; }
    /// The item of that name, shown or not; ends the test if there is none.
    QQuickItem* Item(const char* name) const;
    bool IsVisible(const char* name) const;
    /// Where an item lies in the window.
    QRectF PlaceOf(const char* name) const;
    QString TextOf(const char* name) const;
    /// What a table shows, row by row from its header on, each from left to right.
    QVector<QStringList> CellsOf(const char* table) const;
    /// The texts of a table that are wider than their cells.
    QStringList WideTextsOf(const char* table) const;
    /// Changes between the panel and the drawer of parameters, and opens the latter.
    void SetSmall(bool isSmall);

private:
    QmlTestSetup m_setup;
    QQmlPropertyMap m_mainViewModel;
    std::unique_ptr<QQuickView> m_view;
    std::unique_ptr<WindowDriver> m_driver;
};
