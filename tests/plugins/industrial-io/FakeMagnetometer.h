// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <functional>
#include <thread>

/// A magnetometer in the tree of the kernel's devices, to be used in a private namespace: files stand for its
/// attributes, a FIFO for its buffer, filled on a thread of its own while the buffer is on. At first it is
/// one of 0.000146 gauss a count, whose buffer holds 16 bits little-endian an axis.
class FakeMagnetometer
{
public:
    /// Number of the device; `place` is its address on its bus.
    explicit FakeMagnetometer(int number, const QString& place = QStringLiteral("1-001e"));
    ~FakeMagnetometer();
    FakeMagnetometer(const FakeMagnetometer&) = delete;
    FakeMagnetometer& operator=(const FakeMagnetometer&) = delete;

    QString Node() const { return m_node; }
    void Set(const char* attribute, const QByteArray& text) const;
    void Remove(const char* attribute) const;
    QByteArray Text(const char* attribute) const;
    /// The layout of an axis in the buffer.
    void SetType(const QByteArray& type) const;
    void AddTimestamps() const;
    void RemoveBuffer() const;

    void Plug() const;
    void Unplug() const;

    /// `scan` gives the bytes of each scan, by its number. They come at the rate that is set.
    void Start(std::function<QByteArray(int)> scan);
    void Stop();

private:
    void run(const std::function<QByteArray(int)>& scan);

    QString m_tree;
    QString m_link;
    QString m_node;
    std::thread m_thread;
    std::atomic<bool> m_isStopping{false};
};
