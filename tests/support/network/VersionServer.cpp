// SPDX-License-Identifier: GPL-3.0-or-later
#include "VersionServer.h"

#include <QFile>
#include <QStandardPaths>

namespace {

constexpr int kStartMs = 60000;

QString interpreter()
{
    const QString ofTheSystem = QStringLiteral("/usr/bin/python3");
    return QFile::exists(ofTheSystem) ? ofTheSystem : QStringLiteral("python3");
}

} // namespace

VersionServer::VersionServer()
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(interpreter(), {QStringLiteral(KESTRIX_VERSION_SERVER), m_folder.path()});
    // The server tells its ports in one line when it listens.
    QByteArray output;
    while (!output.endsWith('\n')) {
        if (!m_process.waitForReadyRead(kStartMs)) {
            m_error = m_process.errorString().toUtf8();
            return;
        }
        output += m_process.readAllStandardOutput();
    }
    const QList<QByteArray> entries = output.trimmed().split(' ');
    for (const QByteArray& entry : entries)
        m_ports.insert(entry.left(entry.indexOf('=')), entry.mid(entry.indexOf('=') + 1));
}

VersionServer::~VersionServer()
{
    // It ends with its input.
    m_process.closeWriteChannel();
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(kStartMs))
        m_process.kill();
    m_process.waitForFinished();
}

QByteArray VersionServer::AuthorityPath() const
{
    return QFile::encodeName(m_folder.filePath(QStringLiteral("authority.pem")));
}

QByteArray VersionServer::Url(const char* kind, const QByteArray& path) const
{
    const QByteArray scheme = qstrcmp(kind, "plain") == 0 ? "http" : "https";
    return scheme + "://127.0.0.1:" + m_ports.value(kind) + path;
}

bool VersionServer::Write(const char* name, const QByteArray& content) const
{
    QFile file(m_folder.filePath(QLatin1String(name)));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}
