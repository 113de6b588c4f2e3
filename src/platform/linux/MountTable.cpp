// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "MountTable.h"

#include "DirectoryAccess.h"

#include <QList>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace
{

constexpr qsizetype kMountPointField = 4;

// "autofs" mounts what lies behind it as soon as somebody looks. "fuseblk" isn't here: a program
// serves it, but from a disk of this machine.
constexpr std::string_view kRemoteTypes[] = {
    "9p",  "afs",   "autofs", "beegfs", "ceph",     "cifs", "coda",  "fuse",   "gpfs",    "lustre",
    "ncp", "ncpfs", "nfs",    "nfs4",   "orangefs", "smb3", "smbfs", "vboxsf", "virtiofs"};

bool isRemoteType(const QByteArray& type)
{
    return type.startsWith("fuse.") ||
           std::find(std::begin(kRemoteTypes), std::end(kRemoteTypes),
                     std::string_view(type.constData(), static_cast<size_t>(type.size()))) !=
               std::end(kRemoteTypes);
}

bool isOctal(char c)
{
    return c >= '0' && c <= '7';
}

/// Blanks, tabs, line feeds and backslashes stand in the table as a backslash and three octal
/// digits.
QByteArray unescaped(const QByteArray& field)
{
    QByteArray path;
    path.reserve(field.size());
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size() && isOctal(field[i + 1]) &&
            isOctal(field[i + 2]) && isOctal(field[i + 3])) {
            path += static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 +
                                      (field[i + 3] - '0'));
            i += 3;
        } else {
            path += field[i];
        }
    }
    return path;
}

} // namespace

Platform::MountTable Platform::MountTable::parse(const QByteArray& mountInfo)
{
    MountTable table;
    for (const QByteArray& line : mountInfo.split('\n'))
        table.add(line);
    for (auto it = table.m_remote.cbegin(); it != table.m_remote.cend(); ++it) {
        if (it.value())
            table.m_remoteParents.insert(it.key().left(it.key().lastIndexOf('/')));
    }
    return table;
}

void Platform::MountTable::add(const QByteArray& line)
{
    const QList<QByteArray> fields = line.split(' ');
    // Behind the sixth field stands any number of optional ones, which a hyphen ends.
    const qsizetype hyphen = fields.indexOf("-", kMountPointField + 1);
    if (hyphen < 0 || hyphen + 1 >= fields.size() || !fields[kMountPointField].startsWith('/'))
        return;
    const QByteArray mountPoint = unescaped(fields[kMountPointField]);
    // Of several mounts at one point the last hides the others.
    m_remote.insert(mountPoint == "/" ? QByteArray() : mountPoint,
                    isRemoteType(fields[hyphen + 1]));
}

QHash<QByteArray, bool> Platform::MountTable::below(const QByteArray& directory) const
{
    QHash<QByteArray, bool> found;
    const QByteArray prefix = directory + '/';
    for (auto it = m_remote.cbegin(); it != m_remote.cend(); ++it) {
        if (it.key().startsWith(prefix))
            found.insert(it.key(), it.value());
    }
    return found;
}

bool Platform::MountTable::hasRemoteBelow(const QByteArray& directory) const
{
    const QHash<QByteArray, bool> mounts = below(directory);
    return std::find(mounts.cbegin(), mounts.cend(), true) != mounts.cend();
}

bool Platform::MountTable::isBehindRemote(const QByteArray& path, const QByteArray& root) const
{
    for (auto it = m_remote.cbegin(); it != m_remote.cend(); ++it) {
        const QByteArray& point = it.key();
        const bool isOnTheWay =
            path.startsWith(point) && (path.size() == point.size() || path[point.size()] == '/');
        if (it.value() && isOnTheWay && point.size() > root.size())
            return true;
    }
    return false;
}

Platform::CurrentMounts::News Platform::CurrentMounts::look()
{
    if (!m_file.isOpen() && !open())
        return isOutOfMeans(errno) ? News::Unknown : News::None;
    m_isDue = hasNews() || m_isDue;
    if (!m_isDue)
        return News::None;
    m_isDue = !read();
    m_isKnown = m_isKnown || !m_isDue;
    if (m_isDue)
        return m_isKnown ? News::None : News::Unknown;
    return News::Changed;
}

bool Platform::CurrentMounts::open()
{
    // From now on it tells of changes, also of those that come while it is read.
    m_file = openPath("/proc/self/mountinfo", O_RDONLY);
    return m_file.isOpen();
}

bool Platform::CurrentMounts::hasNews() const
{
    pollfd source{m_file.get(), POLLPRI, 0};
    return ::poll(&source, 1, 0) > 0;
}

bool Platform::CurrentMounts::read()
{
    QByteArray text;
    std::array<char, 4096> part;
    ::lseek(m_file.get(), 0, SEEK_SET);
    for (;;) {
        const ssize_t size = ::read(m_file.get(), part.data(), part.size());
        if (size < 0 && errno == EINTR)
            continue;
        if (size < 0)
            return false;
        if (size == 0)
            break;
        text.append(part.data(), size);
    }
    m_table = MountTable::parse(text);
    return true;
}
