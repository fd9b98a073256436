// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The settings file of the file-replay instruments, "KestrixFileReplay.ini" in the per-user directory. Its
/// keys are told in docs/file-replay.md; a missing key, or a missing file, leaves the default.
struct FileReplaySettings
{
    QString folder;    ///< default: the user's documents, where records are saved by default
    double speed = 1;  ///< multiple of the recording's own rate; 0: as fast as it is read
    bool loop = false; ///< begin anew at the end

    static QString FilePath();
    static FileReplaySettings Load();
};
