// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QSettings>
#include <QString>
#include <QVariant>
#include <QtGlobal>

/// The one way to "settings.ini" in the data directory: each key is read from the file and written
/// through to it, so that several copies of the program can share it. GUI thread.
class Settings
{
public:
    /// A larger file counts as unreadable.
    static constexpr qint64 MaxFileBytes = 1024LL * 1024;
    /// A longer text isn't kept: a character may take four bytes, and the file must stay readable.
    static constexpr qsizetype MaxValueLength = 64LL * 1024;

    Settings() = delete;

    /// Full path of the file; its directory exists afterwards.
    static QString filePath();

    /// How the file is read and written. In one process nobody may open it in another format, since
    /// Qt keeps what it knows of a file for all who open that.
    static QSettings::Format format();

    /// Whether the key is in the file, with a value of whatever kind.
    static bool contains(const QString& key);

    /// The value of a key such as "Theme/SeedColor", to be converted by whoever owns it: a text, or
    /// a list of texts. `fallback` if the file can't be read, if it hasn't got the key, or if what
    /// stands there is an object of some other program's: none is ever made from the file.
    static QVariant value(const QString& key, const QVariant& fallback = {});

    /// Puts a text, a number, a truth value or a list of texts under a key, at once; the rest of
    /// the file stays. A file that is there but can't be read is moved aside, as `moveFileAside`
    /// does. If it can't be written, or the text is longer than `MaxValueLength`, it stays as it
    /// was, and the caller isn't told.
    static void setValue(const QString& key, const QVariant& value);
};
