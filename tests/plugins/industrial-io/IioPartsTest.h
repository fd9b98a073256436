// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

/// What needs no device: the layout of samples, the texts of attributes, rates, times and identities.
class IioPartsTest : public QObject
{
    Q_OBJECT

private slots:
    void samples_data();
    void samples();
    void formatsThatCannotBe();
    void numbers();
    void rates_data();
    void rates();
    void rateThatIsPicked();
    void timesOfThisComputer();
    void timesOfAnotherComputer();
    void clocks();
    void identities();
    void settings();
    void threadLeftBehind();
};
