// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QProcess>
#include <QString>

#include <memory>

class FakeMagnetometer;
class IioBench;

/// A process that ends with this one, even if that crashes.
class BoundProcess : public QProcess
{
    Q_OBJECT

protected:
    void setupChildProcess() override;
};

/// Magnetometers of another computer: the library's own daemon on the loopback, and a way there that freezes.
class IioNetworkTest : public QObject
{
    Q_OBJECT

public:
    /// `refused`: why there is no private namespace; empty if there is one.
    explicit IioNetworkTest(const QString& refused);
    ~IioNetworkTest() override;

private slots:
    void initTestCase();
    void cleanupTestCase();
    void buffered();
    void polled();
    void refused();
    void wayThatFreezes_data();
    void wayThatFreezes();
    void freezesUnnoticed();

private:
    const QString m_refused;
    std::unique_ptr<FakeMagnetometer> m_device;
    BoundProcess m_daemon;
};
