// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Types.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <optional>

/// Finds the data directory and carries the document between memory and "data.json".
/// No state, GUI thread; shows nothing to the user and writes nothing to the log.
class StorageManager
{
public:
    /// A file beyond this size is not read but treated like one that can't be parsed. Far above
    /// what a user can type, far below what exhausts the memory.
    static constexpr qint64 MaxDocumentBytes = 256LL * 1024 * 1024;

    StorageManager() = delete;

    /// The per-user data directory, created if absent, closed to other users. It may still be
    /// missing if that failed.
    static QString appDataDir();

    /// Reads the document, in the current or in the legacy shape. Never fails: whatever the file
    /// holds, the result has at least one category and a default among them.
    ///
    /// A file that is missing, empty or can't be opened is left alone. One that holds anything but
    /// a JSON object, or whose reading breaks off, is moved aside as `moveFileAside` does, so that
    /// the next save doesn't destroy what might be rescued by hand.
    static LauncherData loadData(const QString& filePath);

    /// The document that `bytes` hold, as `loadData` reads it; nothing if that is no JSON object.
    static std::optional<LauncherData> parse(const QByteArray& bytes);

    /// What stands for a document of which nothing can be read: one empty category "Default".
    static LauncherData emptyDocument();

    /// Where the document is kept that was replaced last as a whole: a file beside it.
    static QString previousPath(const QString& filePath);

    /// Puts `data` into that file, in place of what it held. False if it can't be written, then it
    /// stays as it was.
    [[nodiscard]] static bool savePrevious(const QString& filePath, const LauncherData& data);

    /// Replaces the file by `data`, as `replaceFile` does. If it can't be written the caller isn't
    /// told.
    static void saveData(const QString& filePath, const LauncherData& data);
};
