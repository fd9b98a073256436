// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QHash>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

/// A web server on this machine alone, in a process of its own, with certificates from an authority that was
/// made for it. Its addresses are told by name: "good", "wrongHost", "expired" and "unknownAuthority" are the
/// kinds of certificate, "plain" has none, "closed" is a port that nobody serves.
///
/// The path of a request says what comes back: "/file/NAME" the file, "/slow/NAME" the same in small pieces,
/// "/cut/NAME" one that breaks off, "/error/NAME" one with the status 500, "/redirect/REST" another request
/// for /REST, "/toPlain/REST" the same without encryption, "/loop" one for itself.
class VersionServer
{
public:
    VersionServer();
    ~VersionServer();

    /// False if it did not start; the reason is in Error().
    bool IsRunning() const { return !m_ports.isEmpty(); }
    QByteArray Error() const { return m_error; }
    /// PEM file of the authority.
    QByteArray AuthorityPath() const;
    QByteArray Url(const char* kind, const QByteArray& path) const;
    bool Write(const char* name, const QByteArray& content) const;

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QHash<QByteArray, QByteArray> m_ports;
    QByteArray m_error;
};
