// SPDX-License-Identifier: MIT
#pragma once

#include "CLineLink.h"

#include <memory>

class QSerialPort;

/// A serial port, eight data bits without parity. A path that is in no list of ports will do, too.
class CSerialLink : public CLineLink
{
public:
    CSerialLink();
    ~CSerialLink() override;

    bool Open(const QString& port, int baudRate, QString& error) override;
    void Close() override;
    bool IsOpen() const override;
    bool Write(const QByteArray& bytes) override;

protected:
    bool ReadBytes(QByteArray& bytes, int waitMs) override;

private:
    std::unique_ptr<QSerialPort> m_port;
};
