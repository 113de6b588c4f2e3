// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Types.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

/// Replaces a file by `content` in one step and synchronously: at any moment it is either the old
/// one or the new one, whole. False if it can't be written, as on a full disk; then it stays as
/// it was. A symbolic link stays one; the file it points to is replaced.
bool replaceFile(const QString& filePath, const QByteArray& content);

/// The content of a regular file of at most `maxBytes`; empty for any other, since a pipe would
/// block and a device never end, and for one that can't be read.
QByteArray readFile(const QString& filePath, qint64 maxBytes);

/// Finds the data directory and carries the document between memory and "data.json".
/// No state, GUI thread; shows nothing to the user and writes nothing to the log.
class StorageManager
{
public:
    /// A file beyond this size is not read but treated like one that can't be parsed. Far above
    /// what a user can type, far below what exhausts the memory.
    static constexpr qint64 MaxDocumentBytes = 256LL * 1024 * 1024;

    StorageManager() = delete;

    /// The per-user data directory, created if absent. It may still be missing if that failed.
    static QString appDataDir();

    /// Reads the document, in the current or in the legacy shape. Never fails: whatever the file
    /// holds, the result has at least one category and a default among them.
    ///
    /// A file that is missing, empty or unreadable is left alone. One that holds anything but a
    /// JSON object is moved to `filePath` + ".bak", over an older one of that name, so that the
    /// next save doesn't destroy what might be rescued by hand.
    static LauncherData loadData(const QString& filePath);

    /// Replaces the file by `data`, as `replaceFile` does. If it can't be written the caller isn't
    /// told.
    static void saveData(const QString& filePath, const LauncherData& data);
};
