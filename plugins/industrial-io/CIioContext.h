// SPDX-License-Identifier: MIT
#pragma once

#include "IioDevice.h"

#include <QList>
#include <QString>

struct iio_context;

/// Why a call of the library failed.
struct IioError
{
    int code = 0; ///< as errno has it; 0 is none

    bool IsTimeout() const;
    /// Whether device or context cannot be reached any more.
    bool IsGone() const;
    QString Text() const;
};

/// A context of the library, which is open as long as this object lives. For one thread; every call may last
/// as long as the time-out, and over a network longer.
class CIioContext
{
public:
    CIioContext() = default;
    ~CIioContext();
    CIioContext(const CIioContext&) = delete;
    CIioContext& operator=(const CIioContext&) = delete;

    IioError Open(const QString& uri, int timeoutMs);
    void SetTimeout(int timeoutMs);
    iio_context* Handle() const { return m_context; }

    /// Devices with the channels magn_x, magn_y and magn_z.
    QList<IioDevice> Magnetometers() const;

private:
    QString m_uri;
    iio_context* m_context = nullptr;
};
