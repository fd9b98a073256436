// SPDX-License-Identifier: MIT
#include "CFileReplayListProvider.h"

#include "FileReplaySettings.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

constexpr int kSettleMs = 200;
constexpr int kMaxFiles = 2000;
constexpr int kFreshS = 5;

QString serialNumberOf(const QDir& folder, const QString& path)
{
    // Goes into file names, and is told apart from the instrument's name by " - ".
    return folder.relativeFilePath(path)
        .replace(QLatin1Char('/'), QLatin1Char('_'))
        .replace(QLatin1String(" - "), QLatin1String("-"));
}

} // namespace

CFileReplayListProvider::CFileReplayListProvider(QObject* parent) : CInstrumentListProvider(parent)
{
    m_settleTimer.setSingleShot(true);
    m_settleTimer.setInterval(kSettleMs);
    connect(&m_settleTimer, &QTimer::timeout, this, &CFileReplayListProvider::onFolderChanged);
}

void CFileReplayListProvider::Start()
{
    if (m_watcher)
        return;
    m_folder = QDir::cleanPath(FileReplaySettings::Load().folder);
    m_watcher = std::make_unique<QFileSystemWatcher>();
    connect(m_watcher.get(), &QFileSystemWatcher::directoryChanged, &m_settleTimer,
            qOverload<>(&QTimer::start));
    scan();
    QMetaObject::invokeMethod(this, &CInstrumentListProvider::InstrumentListUpdated, Qt::QueuedConnection);
}

void CFileReplayListProvider::Stop()
{
    m_settleTimer.stop();
    m_watcher.reset();
    for (const Entry& entry : qAsConst(m_entries)) {
        if (entry.instrument)
            entry.instrument->StopMeasurement();
    }
}

QList<QSharedPointer<CInstrument>> CFileReplayListProvider::GetInstrumentList()
{
    QList<QSharedPointer<CInstrument>> instruments;
    for (const Entry& entry : qAsConst(m_entries)) {
        if (entry.instrument)
            instruments.append(entry.instrument);
    }
    return instruments;
}

void CFileReplayListProvider::SetSerialPortSettings(QString /*port*/, int /*baudRate*/) {}

void CFileReplayListProvider::onFolderChanged()
{
    if (scan())
        emit InstrumentListUpdated();
}

bool CFileReplayListProvider::scan()
{
    const QDir folder(m_folder);
    QStringList folders{m_folder};
    const auto subfolders = folder.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& subfolder : subfolders)
        folders.append(subfolder.absoluteFilePath());

    QHash<QString, Entry> known;
    for (const Entry& entry : qAsConst(m_entries))
        known.insert(entry.path, entry);

    QList<Entry> entries;
    for (const QString& path : qAsConst(folders)) {
        const auto files = QDir(path).entryInfoList(QDir::Files | QDir::Readable, QDir::Name);
        for (const QFileInfo& file : files) {
            if (entries.size() >= kMaxFiles)
                break;
            Entry entry = known.take(file.absoluteFilePath());
            if (entry.path.isEmpty() ||
                (!entry.instrument && (entry.size != file.size() || entry.modified != file.lastModified()))) {
                entry = {file.absoluteFilePath(), file.size(), file.lastModified(), {}};
                if (const auto reader = CRecordingReader::Open(entry.path))
                    entry.instrument = QSharedPointer<CFileReplayInstrument>::create(
                        entry.path, serialNumberOf(folder, entry.path), reader->Info());
            }
            // It may still be written, which the watcher of the folder does not tell.
            if (!entry.instrument && entry.modified.secsTo(QDateTime::currentDateTime()) < kFreshS)
                m_settleTimer.start();
            entries.append(entry);
        }
    }
    watch(folders);

    const QList<QSharedPointer<CInstrument>> before = GetInstrumentList();
    m_entries = entries;
    return GetInstrumentList() != before;
}

void CFileReplayListProvider::watch(const QStringList& folders)
{
    const QStringList watched = m_watcher->directories();
    QStringList wanted;
    for (const QString& path : folders) {
        if (QDir(path).exists())
            wanted.append(path);
    }
    // The folder may come into being later.
    if (wanted.isEmpty()) {
        const QString parent = QFileInfo(m_folder).absolutePath();
        if (QDir(parent).exists())
            wanted.append(parent);
    }
    for (const QString& path : watched) {
        if (!wanted.contains(path))
            m_watcher->removePath(path);
    }
    for (const QString& path : qAsConst(wanted)) {
        if (!watched.contains(path))
            m_watcher->addPath(path);
    }
}
