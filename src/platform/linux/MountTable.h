// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

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

    /// The mounts that this process sees; none if the system doesn't tell.
    static MountTable read();

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

private:
    void add(const QByteArray& line);

    QHash<QByteArray, bool> m_remote; ///< by mount point
    QSet<QByteArray> m_remoteParents;
};

} // namespace Platform
