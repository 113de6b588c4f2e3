// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"

#include <QByteArray>
#include <QHash>
#include <QSet>

namespace Platform
{

/// Where file systems are mounted, and which of them may keep whoever touches them waiting: those
/// of the network, those served by a program, and those mounted at the first touch. Asking the
/// file system itself would be such a touch already.
///
/// All paths are absolute, without links and without a slash at the end: that of the root is empty.
class MountTable
{
public:
    MountTable() = default;

    /// \param mountInfo in the format of /proc/self/mountinfo. Lines that make no sense are left
    /// out.
    static MountTable parse(const QByteArray& mountInfo);

    bool hasRemote() const { return !m_remoteParents.isEmpty(); }

    /// Whether such a file system is mounted at exactly this path.
    bool isRemote(const QByteArray& path) const { return m_remote.value(path, false); }

    /// Whether one is mounted at a name inside this directory.
    bool holdsRemote(const QByteArray& directory) const
    {
        return m_remoteParents.contains(directory);
    }

    /// The mount points below a directory, and whether they are remote.
    QHash<QByteArray, bool> below(const QByteArray& directory) const;

    /// Whether one is mounted anywhere below this directory.
    bool hasRemoteBelow(const QByteArray& directory) const;

    /// Whether the way from `root` to a path below it goes through one, which may be mounted at the
    /// path itself. One that holds the root is not in the way.
    bool isBehindRemote(const QByteArray& path, const QByteArray& root) const;

private:
    void add(const QByteArray& line);

    QHash<QByteArray, bool> m_remote; ///< by mount point
    QSet<QByteArray> m_remoteParents;
};

/// The mounts that this process sees, as they come and go. To be used by one thread.
class CurrentMounts
{
public:
    enum class News {
        None,
        Changed, ///< or read for the first time
        Unknown  ///< not read yet, because the system has no means left
    };

    /// Reads the table if something was mounted or unmounted since the last time; otherwise it
    /// takes less time than opening a file. If it can't be read the previous one stays, and the
    /// next look tries again.
    News look();

    /// Empty if the system doesn't tell.
    const MountTable& table() const { return m_table; }

    /// Something to poll for `POLLPRI`; negative if there is nothing. It tells of each change once,
    /// so whoever polls it has to call `expectNews` before the next look.
    int descriptor() const { return m_file.get(); }
    void expectNews() { m_isDue = true; }

private:
    bool open();
    bool hasNews() const;
    bool read();

    // Stays open, so that the table can be read when there are no descriptors left.
    FileDescriptor m_file;
    MountTable m_table;
    bool m_isDue = true;
    bool m_isKnown = false;
};

} // namespace Platform
