// SPDX-License-Identifier: MIT
#pragma once

#include "CLineSplitter.h"

#include <QByteArray>
#include <QString>

/// The way to a machine: bytes out, lines in. Used by one thread only, which it may hold up for the times
/// given.
class CLineLink
{
public:
    enum class Input { Line, Nothing, Lost };

    CLineLink() = default;
    virtual ~CLineLink() = default;
    CLineLink(const CLineLink&) = delete;
    CLineLink& operator=(const CLineLink&) = delete;

    /// False with a reason in `error`.
    virtual bool Open(const QString& port, int baudRate, QString& error) = 0;
    virtual void Close() = 0;
    virtual bool IsOpen() const = 0;
    /// False if the way is lost.
    virtual bool Write(const QByteArray& bytes) = 0;
    /// Waits for a line at most so long. Lost: nothing will come any more.
    Input Read(QByteArray& line, int waitMs);

protected:
    /// Bytes that came within the time, or none. False if the way is lost.
    virtual bool ReadBytes(QByteArray& bytes, int waitMs) = 0;
    void ForgetInput();

private:
    CLineSplitter m_splitter;
    QList<QByteArray> m_lines; ///< complete and not taken yet
};
