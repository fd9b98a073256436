// SPDX-License-Identifier: MIT
#include "CFileReplayListProvider.h"

#include "FileReplaySettings.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace {

constexpr int kSettleMs = 200;
constexpr int kMaxFiles = 2000;
constexpr int kMaxFolders = 500;
constexpr int kFreshS = 5;

// Names of files that may hold a recording. What they hold decides.
const QStringList& namePatterns()
{
    static const QStringList patterns{
        QStringLiteral("*.xml"), QStringLiteral("*.csv"), QStringLiteral("*.tsv"), QStringLiteral("*.txt"),
        QStringLiteral("*.dat"), QStringLiteral("*.sec"), QStringLiteral("*.min")};
    return patterns;
}

// At most `maxCount`, by name.
QFileInfoList entriesOf(const QString& path, const QStringList& patterns, QDir::Filters filters, int maxCount)
{
    QFileInfoList entries;
    QDirIterator iterator(path, patterns, filters);
    while (entries.size() < maxCount && iterator.hasNext()) {
        iterator.next();
        entries.append(iterator.fileInfo());
    }
    std::sort(entries.begin(), entries.end(),
              [](const QFileInfo& a, const QFileInfo& b) { return a.fileName() < b.fileName(); });
    return entries;
}

// The file's name, and the subfolder's in parentheses, so that no two files have the same number. It goes
// into file names, where a "/" cannot stand, and is told apart from the instrument's name by " - ".
QString serialNumberOf(const QDir& folder, const QFileInfo& file)
{
    QString number = file.fileName();
    const QDir parent = file.absoluteDir();
    if (parent != folder)
        number += QStringLiteral(" (%1)").arg(parent.dirName());
    return number.replace(QLatin1String(" - "), QLatin1String("-"));
}

QString uniqueNumber(const QString& wanted, const QSet<QString>& used)
{
    QString number = wanted;
    for (int i = 2; used.contains(number); ++i)
        number = QStringLiteral("%1 #%2").arg(wanted).arg(i);
    return number;
}

bool isFresh(const QDateTime& modified)
{
    const qint64 ageS = modified.secsTo(QDateTime::currentDateTime());
    return ageS >= 0 && ageS < kFreshS; // a clock may have been wrong
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
    const auto subfolders = entriesOf(m_folder, {}, QDir::Dirs | QDir::NoDotAndDotDot, kMaxFolders);
    for (const QFileInfo& subfolder : subfolders)
        folders.append(subfolder.absoluteFilePath());

    QHash<QString, Entry> known;
    QSet<QString> numbers;
    for (const Entry& entry : qAsConst(m_entries)) {
        known.insert(entry.path, entry);
        if (entry.instrument)
            numbers.insert(entry.instrument->SerialNumber());
    }

    QList<Entry> entries;
    for (const QString& path : qAsConst(folders)) {
        const auto files =
            entriesOf(path, namePatterns(), QDir::Files | QDir::Readable, kMaxFiles - entries.size());
        for (const QFileInfo& file : files) {
            Entry entry = known.take(file.absoluteFilePath());
            if (entry.path.isEmpty() ||
                (!entry.instrument && (entry.size != file.size() || entry.modified != file.lastModified()))) {
                entry = {file.absoluteFilePath(), file.size(), file.lastModified(), {}};
                if (const auto reader = CRecordingReader::Open(entry.path)) {
                    const QString number = uniqueNumber(serialNumberOf(folder, file), numbers);
                    numbers.insert(number);
                    entry.instrument =
                        QSharedPointer<CFileReplayInstrument>::create(entry.path, number, reader->Info());
                }
            }
            // It may still be written, which the watcher of the folder does not tell.
            if (!entry.instrument && isFresh(entry.modified))
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
