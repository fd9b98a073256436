// SPDX-License-Identifier: MIT
#include "CIioContext.h"

#include <cerrno>
#include <iio.h>

bool IioError::IsTimeout() const
{
    return code == ETIMEDOUT || code == EAGAIN;
}

bool IioError::IsGone() const
{
    switch (code) {
    case ENODEV:
    case ENOENT:
    case ENXIO:
    case EBADF:
    case EPIPE:
    case ECONNRESET:
    case ECONNABORTED:
    case ECONNREFUSED:
    case ENOTCONN:
    case ESHUTDOWN:
    case EHOSTUNREACH:
    case ENETUNREACH:
    case ENETDOWN:
        return true;
    default:
        return false;
    }
}

QString IioError::Text() const
{
    return qt_error_string(code);
}

CIioContext::~CIioContext()
{
    if (m_context)
        iio_context_destroy(m_context);
}

IioError CIioContext::Open(const QString& uri, int timeoutMs)
{
    m_uri = uri;
    errno = 0;
    m_context = iio_create_context_from_uri(uri.toUtf8().constData());
    if (!m_context)
        return {errno == 0 ? EIO : errno};
    SetTimeout(timeoutMs);
    return {};
}

void CIioContext::SetTimeout(int timeoutMs)
{
    // A context that has no time-out refuses: whoever waits for it does not rely on it.
    (void)!iio_context_set_timeout(m_context, static_cast<unsigned>(timeoutMs));
}

QList<IioDevice> CIioContext::Magnetometers() const
{
    QList<IioDevice> devices;
    const unsigned count = iio_context_get_devices_count(m_context);
    for (unsigned i = 0; i < count; ++i) {
        const iio_device* found = iio_context_get_device(m_context, i);
        bool hasAll = true;
        for (const char* axis : {"magn_x", "magn_y", "magn_z"})
            hasAll = hasAll && iio_device_find_channel(found, axis, false);
        if (!hasAll)
            continue;
        IioDevice device;
        device.uri = m_uri;
        device.id = QString::fromUtf8(iio_device_get_id(found));
        device.name = QString::fromUtf8(iio_device_get_name(found)).trimmed();
        if (device.name.isEmpty())
            device.name = device.id;
        device.label = QString::fromUtf8(iio_device_get_label(found)).trimmed();
        device.kernel = QString::fromUtf8(iio_context_get_attr_value(m_context, "local,kernel"));
        if (!device.IsNetwork())
            findPlace(device, QStringLiteral("/sys/bus/iio/devices/") + device.id);
        devices.append(device);
    }
    identify(devices);
    return devices;
}
