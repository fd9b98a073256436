// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

/// Magnetometers of this computer: the unmodified library on a tree of fake devices.
class IioDeviceTest : public QObject
{
    Q_OBJECT

public:
    /// `refused`: why there is no private namespace; empty if there is one.
    explicit IioDeviceTest(const QString& refused) : m_refused(refused) {}

private slots:
    void initTestCase();
    void noDevice();
    void buffered();
    void scansWithTimes();
    void ownTrigger();
    void polled();
    void values_data();
    void values();
    void unusable_data();
    void unusable();
    void bufferRefused_data();
    void bufferRefused();
    void bufferStaysEmpty();
    void twoDevicesOneVanishes();
    void vanishesWhilePolled();

private:
    const QString m_refused;
};
