// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Scenario.h"

#include <QRandomGenerator>
#include <QVector>

/// Does what a user may do on a page, at random but the same for the same seed.
class RandomUser
{
public:
    RandomUser(Scenario& scenario, quint32 seed) : m_scenario(scenario), m_random(seed) {}

    /// A number from 0 to count - 1.
    int UpTo(int count) { return m_random.bounded(count); }

    void OpenTab(int index) const;
    void OpenAnyTab();
    /// A click on the item of that name, if it is there and enabled.
    void Press(const char* name) const;
    /// One of these, if the action bar offers it.
    void GiveCommand(const QVector<const char*>& commands);
    /// Zoom, legend, wheel, drag or filter, if a plot is on screen.
    void ActOnThePlot();
    /// Small or wide window, with the drawer of the small one open or not.
    void ChangeLayout();

private:
    WindowDriver& driver() const { return m_scenario.Driver(); }

    Scenario& m_scenario;
    QRandomGenerator m_random;
};
