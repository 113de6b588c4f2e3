// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

class QFileDevice;
class QIODevice;

/// What came of reading a file whole.
struct FileContent
{
    enum class State {
        Absent,   ///< no such file, or none that can be opened, or no regular one
        Whole,    ///< `bytes` is all of it
        TooLarge, ///< not read
        Broken    ///< the disk or the server failed in the middle of it
    };

    State state = State::Absent;
    QByteArray bytes; ///< empty unless `state` is `Whole`
};

/// Reads a regular file of at most `maxBytes`. Nothing else is opened, since a pipe would block
/// and a device never end.
FileContent readFile(const QString& filePath, qint64 maxBytes);

/// Reads an open file from where it stands to its end. Never `Absent`.
FileContent readToTheEnd(QIODevice& file, qint64 maxBytes);

/// As `readFile`, for a file that the program itself writes. One that is there but can't be read
/// whole is moved aside, as `moveFileAside` does, or the next save would destroy what is in it; the
/// result is empty then, as for one that is absent.
QByteArray readOwnFile(const QString& filePath, qint64 maxBytes);

/// Replaces a file by `content` in one step and synchronously: at any moment it is either the old
/// one or the new one, whole, and nobody but the user can read it. False if it can't be written, as
/// on a full disk; then it stays as it was. A symbolic link stays one; the file it points to is
/// replaced.
bool replaceFile(const QString& filePath, const QByteArray& content);

/// Puts a copy of `source` in the place of whatever file `target` is, as an export does: that goes
/// first, also if there is nothing to copy. Either a whole copy is there at the end or no file. A
/// file is not copied over itself. \returns whether the copy is there.
bool copyOver(const QString& source, const QString& target);

/// Lets nobody but the user read or write a file. To be called while it is empty still, or whoever
/// has opened it by then reads on. Where the file system knows no rights nothing happens.
void makePrivate(QFileDevice& file);

/// Renames a file to `filePath` + ".bak", over an older one of that name; if there is none,
/// the older one stays. If that fails it stays where it is, and the caller isn't told.
void moveFileAside(const QString& filePath);

/// Puts `content`, which `filePath` held when it was read, where `moveFileAside` would put the
/// file; the file stays. False if it can't be written.
[[nodiscard]] bool copyAside(const QString& filePath, const QByteArray& content);
