// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DirectoryAccess.h"

#include <QStringDecoder>
#include <QStringEncoder>

#include <algorithm>
#include <array>
#include <climits>

#include <fcntl.h>

namespace
{

int openRetrying(int parent, const char* path, int flags)
{
    int descriptor = -1;
    do {
        descriptor = ::openat(parent, path, flags | O_CLOEXEC);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

} // namespace

bool Platform::isOutOfMeans(int error)
{
    return error == ENOSPC || error == ENOMEM || error == EMFILE || error == ENFILE;
}

QString Platform::fileNameText(std::string_view name)
{
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (std::all_of(name.begin(), name.end(), isAscii))
        return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
    // A byte order mark is part of the name, so it must not be taken for a mark and removed.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    const QString text = decoder(QByteArrayView(name.data(), static_cast<qsizetype>(name.size())));
    return decoder.hasError() ? QString() : text;
}

std::optional<QByteArray> Platform::pathBytes(const QString& path)
{
    QStringEncoder encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless);
    QByteArray bytes = encoder(path);
    if (encoder.hasError() || bytes.contains('\0') || !bytes.startsWith('/'))
        return std::nullopt;
    const auto isInVain = [](char a, char b) { return a == '/' && b == '/'; };
    bytes.erase(std::unique(bytes.begin(), bytes.end(), isInVain), bytes.end());
    if (bytes.endsWith('/'))
        bytes.chop(1);
    return bytes;
}

Platform::FileDescriptor Platform::openPath(const QByteArray& path, int flags)
{
    if (path.isEmpty())
        return FileDescriptor(openRetrying(AT_FDCWD, "/", flags));
    // The system takes PATH_MAX bytes at most, so a longer path is gone along piece by piece.
    FileDescriptor reached;
    qsizetype begin = 0;
    while (path.size() - begin >= PATH_MAX) {
        const qsizetype end = path.lastIndexOf('/', begin + PATH_MAX - 1);
        if (end <= begin) {
            errno = ENAMETOOLONG;
            return FileDescriptor();
        }
        const QByteArray piece = path.mid(begin, end - begin);
        const int parent = reached.isOpen() ? reached.get() : AT_FDCWD;
        reached = FileDescriptor(openRetrying(parent, piece.constData(), O_PATH | O_DIRECTORY));
        if (!reached.isOpen())
            return FileDescriptor();
        begin = end + 1; // what began with a slash would be taken for a path from the root
    }
    const int parent = reached.isOpen() ? reached.get() : AT_FDCWD;
    return FileDescriptor(openRetrying(parent, path.constData() + begin, flags));
}

Platform::FileDescriptor Platform::openSubdirectory(int parent, const char* name)
{
    return FileDescriptor(openRetrying(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW));
}

Platform::FileDescriptor Platform::openBelow(int top, const QByteArray& path)
{
    FileDescriptor reached;
    qsizetype begin = 0;
    for (qsizetype end = path.indexOf('/'); end >= 0; end = path.indexOf('/', begin)) {
        const QByteArray name = path.mid(begin, end - begin);
        reached = FileDescriptor(openRetrying(reached.isOpen() ? reached.get() : top,
                                              name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW));
        if (!reached.isOpen())
            return FileDescriptor();
        begin = end + 1;
    }
    return openSubdirectory(reached.isOpen() ? reached.get() : top, path.constData() + begin);
}

QByteArray Platform::canonicalPath(int directory, const QByteArray& path)
{
    const QByteArray link = "/proc/self/fd/" + QByteArray::number(directory);
    std::array<char, PATH_MAX> target{};
    const ssize_t size = ::readlink(link.constData(), target.data(), target.size());
    if (size <= 0 || static_cast<size_t>(size) == target.size())
        return path;
    return size == 1 ? QByteArray() : QByteArray(target.data(), size);
}
