// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CMeterOperationViewModel.h"
#include "MeasureFixture.h"
#include "QmlTestSetup.h"

#include <QQmlPropertyMap>
#include <QQuickItem>
#include <QQuickView>

#include <memory>

void setBound(CBoundedParm* bound, double min, double max);

/// The meter page on the real view models. Each test has models and a page of its own; the window and the
/// engine, which would take most of the time, are the same for all tests of a program.
class MeterPageFixture
{
protected:
    static void prepare();
    /// Models with an instrument whose bounds are finite.
    void begin();
    void end();

    /// The page with all boxes in sight.
    void load();
    QQuickItem* item(const char* name) const;
    bool isVisible(const char* name) const { return item(name)->isVisible(); }
    QString textOf(const char* field) const { return item(field)->property("text").toString(); }
    QObject* choice(const char* name) const { return item(name); }
    int chosen(const char* name) const { return choice(name)->property("currentIndex").toInt(); }
    void click(const char* name);
    void choose(const char* name, int index);
    /// Types a number into a field and presses Return.
    void enter(const char* field, const QString& text);
    void enterText(const char* area, const QString& text);
    bool isRed(const char* field) const;
    bool isEnabled(const char* name) const { return item(name)->isEnabled(); }
    QString information(const char* line) const { return item(line)->property("value").toString(); }
    void expandBox(const char* name);
    void addBlocks(int count);
    CMeasurementParameters& parameters() { return m_fixture->parameters(); }
    CMeasurementParametersViewModel& measurement() { return *m_meter->MeasurementParametersViewModel(); }

    std::unique_ptr<MeasureFixture> m_fixture;
    QSharedPointer<FakeInstrument> m_instrument;
    std::unique_ptr<CMeterOperationViewModel> m_meter;
    std::unique_ptr<QQmlPropertyMap> m_mainViewModel;
    std::unique_ptr<QmlTestSetup> m_setup;
    std::unique_ptr<QQuickView> m_view;

private:
    void makeWindow();

    int m_warningsBefore = 0;
};
