// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Files.h"

#include <QFile>
#include <QFileInfo>
#include <QIODevice>
#include <QLatin1String>
#include <QSaveFile>

#include <algorithm>
#include <limits>

namespace
{

constexpr QLatin1String kAsideSuffix(".bak");
constexpr qint64 kMinChunkBytes = 4096;

} // namespace

FileContent readToTheEnd(QIODevice& file, qint64 maxBytes)
{
    // Not `readAll`, which gives what came before an error as if it were all. The size is a hint
    // alone: the file may be growing.
    QByteArray bytes;
    qint64 size = 0;
    for (;;) {
        if (size > maxBytes)
            return {FileContent::State::TooLarge, {}};
        // One byte more than there should be, so that the end is seen without a further round.
        bytes.resize(std::max(file.size() + 1, size + kMinChunkBytes));
        const qint64 count = file.read(bytes.data() + size, bytes.size() - size);
        if (count < 0)
            return {FileContent::State::Broken, {}};
        if (count == 0)
            break;
        size += count;
    }
    bytes.resize(size);
    return {FileContent::State::Whole, bytes};
}

FileContent readFile(const QString& filePath, qint64 maxBytes)
{
    QFile file(filePath);
    if (!QFileInfo(filePath).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    if (file.size() > maxBytes)
        return {FileContent::State::TooLarge, {}};
    return readToTheEnd(file, maxBytes);
}

QByteArray readOwnFile(const QString& filePath, qint64 maxBytes)
{
    const FileContent content = readFile(filePath, maxBytes);
    if (content.state == FileContent::State::TooLarge ||
        content.state == FileContent::State::Broken)
        moveFileAside(filePath);
    return content.bytes;
}

bool replaceFile(const QString& filePath, const QByteArray& content)
{
    if (filePath.isEmpty())
        return false;
    QSaveFile file(filePath);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    makePrivate(file);
    // A disk that is full in the middle takes a part of the content and reports no error.
    // QSaveFile would put that part in the place of the old file.
    if (file.write(content) != content.size() || !file.flush())
        file.cancelWriting();
    return file.commit();
}

bool copyOver(const QString& source, const QString& target)
{
    // It would be gone before it is read.
    if (QFileInfo::exists(source) && QFileInfo(source) == QFileInfo(target))
        return true;
    if (QFileInfo::exists(target) && !QFile::remove(target))
        return false;
    const FileContent content = readFile(source, std::numeric_limits<qint64>::max() - 1);
    return content.state == FileContent::State::Whole && replaceFile(target, content.bytes);
}

void makePrivate(QFileDevice& file)
{
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

void moveFileAside(const QString& filePath)
{
    const QFileInfo info(filePath);
    if (!info.exists() && !info.isSymLink())
        return;
    const QString aside = filePath + kAsideSuffix;
    // Not asked for first: a link that points nowhere does not count as existing, and would be in
    // the way of the rename all the same.
    QFile::remove(aside);
    QFile::rename(filePath, aside);
}

bool copyAside(const QString& filePath, const QByteArray& content)
{
    return replaceFile(filePath + kAsideSuffix, content);
}
