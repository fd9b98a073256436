// SPDX-License-Identifier: MIT
#include "CSerialLink.h"

#include <QSerialPort>

namespace {

constexpr int kSerialWriteMs = 1000;

} // namespace

CSerialLink::CSerialLink() = default;

CSerialLink::~CSerialLink() = default;

bool CSerialLink::Open(const QString& port, int baudRate, QString& error)
{
    Close();
    ForgetInput();
    // A fresh one each time: it belongs to the thread that makes it.
    m_port = std::make_unique<QSerialPort>(port);
    if (m_port->setBaudRate(baudRate) && m_port->open(QIODevice::ReadWrite))
        return true;
    error = m_port->errorString();
    m_port.reset();
    return false;
}

void CSerialLink::Close()
{
    m_port.reset();
}

bool CSerialLink::IsOpen() const
{
    return m_port != nullptr;
}

bool CSerialLink::Write(const QByteArray& bytes)
{
    if (!m_port || m_port->write(bytes) != bytes.size())
        return false;
    while (m_port->bytesToWrite() > 0) {
        if (!m_port->waitForBytesWritten(kSerialWriteMs))
            return false;
    }
    return true;
}

bool CSerialLink::ReadBytes(QByteArray& bytes, int waitMs)
{
    if (!m_port)
        return false;
    if (m_port->bytesAvailable() == 0 && !m_port->waitForReadyRead(waitMs)) {
        const QSerialPort::SerialPortError error = m_port->error();
        m_port->clearError();
        return error == QSerialPort::NoError || error == QSerialPort::TimeoutError;
    }
    bytes = m_port->readAll();
    return true;
}
