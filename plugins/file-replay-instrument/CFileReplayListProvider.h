// SPDX-License-Identifier: MIT
#pragma once

#include "CFileReplayInstrument.h"
#include "CInstrumentListProvider.h"

#include <QDateTime>
#include <QFileSystemWatcher>
#include <QHash>
#include <QList>
#include <QSharedPointer>
#include <QTimer>

#include <memory>

/// Lists the recordings of the configured folder and of the folders directly in it, and follows its changes.
/// Only the head of a file is read, and only again when the file has changed.
class CFileReplayListProvider : public CInstrumentListProvider
{
    Q_OBJECT

public:
    explicit CFileReplayListProvider(QObject* parent = nullptr);

    /// Reads the folder, and reports the recordings when the event loop runs.
    void Start();
    /// Ends the replays that are still running and no longer follows the folder.
    void Stop();

public slots:
    QList<QSharedPointer<CInstrument>> GetInstrumentList() override;
    /// Recordings have no serial line: ignored.
    void SetSerialPortSettings(QString port, int baudRate) override;

private:
    struct Entry
    {
        QString path;
        qint64 size = 0;
        QDateTime modified;
        QSharedPointer<CFileReplayInstrument> instrument; ///< null if the file is no recording
    };

    void onFolderChanged();
    /// True if the set of instruments has changed.
    bool scan();
    void watch(const QStringList& folders);

    QString m_folder;
    QList<Entry> m_entries; ///< by path
    std::unique_ptr<QFileSystemWatcher> m_watcher;
    QTimer m_settleTimer; ///< waits for the end of a series of changes
};
