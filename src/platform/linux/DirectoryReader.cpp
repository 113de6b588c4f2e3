// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DirectoryReader.h"

#include "DirectoryAccess.h"
#include "LinkTarget.h"
#include "MountTable.h"
#include "TreeWatch.h"

#include <algorithm>
#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

// A walk that takes long must not enter what is mounted meanwhile; one of a million directories
// must not take longer for that.
constexpr int kDirectoriesPerLook = 32;

/// Whether what is mounted on a name of that type, as its directory lists it, is a directory: only
/// on one can another be mounted, and only a file on a file.
bool canCoverDirectory(unsigned char type)
{
    return type == DT_DIR || type == DT_UNKNOWN;
}

/// What stands at a name of an open directory, as a `DT_` value; `DT_UNKNOWN` if nothing does.
unsigned char typeIn(int directory, const char* name)
{
    struct stat status = {};
    if (::fstatat(directory, name, &status, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0)
        return DT_UNKNOWN;
    return static_cast<unsigned char>(IFTODT(status.st_mode));
}

class ReaddirReader final : public Platform::DirectoryReader
{
public:
    /// \param watch null if nothing is to be watched.
    ReaddirReader(const QString& root, Platform::TreeWatch* watch)
        : m_root(Platform::pathBytes(root)), m_watch(watch)
    {
        if (m_watch)
            m_watch->beginReading();
    }
    ~ReaddirReader() override
    {
        if (m_watch)
            m_watch->endReading();
    }

    bool list(const QString& directory, const Visitor& visit) override;
    Platform::PathKind kindOf(const QString& path) override;

private:
    int open(const QByteArray& path, qsizetype longestKept);
    int reach(const QByteArray& path, qsizetype longestKept);
    int openRoot();
    bool lookAtMounts();
    void noteRemote();
    void visitEntry(std::string_view name, unsigned char type, const Visitor& visit);
    bool isDirectoryListed(const QByteArray& name);
    QByteArray canonical(const QByteArray& path) const
    {
        return m_canonicalRoot + path.mid(m_root->size());
    }
    /// Of the directory being listed.
    std::string_view relativePath() const
    {
        const std::string_view path(m_path.constData(), static_cast<size_t>(m_path.size()));
        return path.substr(std::min(static_cast<size_t>(m_root->size()) + 1, path.size()));
    }
    bool leadsToFile(const char* link) const
    {
        return Platform::linkLeadsToFile(m_directory, canonical(m_path), link, m_mounts.table());
    }

    std::optional<QByteArray> m_root; ///< nothing if it can't be a path
    Platform::TreeWatch* m_watch;
    QByteArray m_canonicalRoot; ///< as the mount table names it
    Platform::CurrentMounts m_mounts;
    int m_untilLook = 0;           ///< directories until the next look at the mounts
    bool m_isRemoteAround = false; ///< a remote file system is mounted below the root
    Platform::EntryBuffer m_buffer;
    Platform::DirectoryChain<qsizetype> m_chain; ///< keys: length of the directory's part of m_path
    QByteArray m_path;                           ///< of the directory being listed
    int m_directory = -1;                        ///< the same one, open
    bool m_holdsRemote = false;                  ///< a remote file system is mounted in it
};

bool ReaddirReader::list(const QString& directory, const Visitor& visit)
{
    const std::optional<QByteArray> path = Platform::pathBytes(directory);
    // Itself it would have been read to its end already.
    m_directory = path ? open(*path, path->size() - 1) : -1;
    if (m_directory < 0)
        return false;
    // Before it is read: what is made after that is told by the watch.
    if (m_watch)
        m_watch->watch(m_directory, relativePath());
    m_holdsRemote = m_isRemoteAround && m_mounts.table().holdsRemote(canonical(m_path));
    return m_buffer.read(
        m_directory,
        [&](std::string_view name, unsigned char type) { visitEntry(name, type, visit); },
        [] { return false; });
}

Platform::PathKind ReaddirReader::kindOf(const QString& path)
{
    using Platform::PathKind;
    const std::optional<QByteArray> bytes = Platform::pathBytes(path);
    if (!bytes)
        return PathKind::Missing;
    if (bytes == m_root)
        return openRoot() < 0 ? PathKind::Missing : PathKind::Directory;
    const qsizetype slash = bytes->lastIndexOf('/');
    const QByteArray name = bytes->mid(slash + 1);
    m_directory = open(bytes->left(slash), slash);
    if (m_directory < 0)
        return PathKind::Missing;
    if (m_isRemoteAround && m_mounts.table().isRemote(canonical(*bytes)))
        return isDirectoryListed(name) ? PathKind::Directory : PathKind::File;
    const unsigned char type = typeIn(m_directory, name.constData());
    if (type == DT_UNKNOWN || (type == DT_LNK && !leadsToFile(name.constData())))
        return PathKind::Missing;
    return type == DT_DIR ? PathKind::Directory : PathKind::File;
}

/// \param longestKept of directories that are still open, those of a longer path are opened anew.
int ReaddirReader::open(const QByteArray& path, qsizetype longestKept)
{
    const int opened = reach(path, longestKept);
    if (opened < 0 && m_watch && Platform::isOutOfMeans(errno))
        m_watch->noteLoss();
    return opened;
}

/// \returns negative with `errno` set, also if the way to the directory goes through a remote file
/// system.
int ReaddirReader::reach(const QByteArray& path, qsizetype longestKept)
{
    errno = ENOENT;
    if (!m_root || (path != *m_root && !path.startsWith(*m_root + '/')))
        return -1;
    const auto mismatch = std::mismatch(path.cbegin(), path.cend(), m_path.cbegin(), m_path.cend());
    const qsizetype common = mismatch.first - path.cbegin();
    m_path = path;
    int reached = m_chain.shorten([&](qsizetype length) {
        return length <= std::min(common, longestKept) &&
               (length == path.size() || path.at(length) == '/');
    });
    if (reached < 0)
        reached = openRoot();
    if (reached < 0 || !lookAtMounts())
        return -1;
    // The walk doesn't enter one that it knows of, but it may have been mounted since.
    if (m_isRemoteAround && m_mounts.table().isBehindRemote(canonical(path), m_canonicalRoot)) {
        errno = ENOENT;
        return -1;
    }
    // One name at a time, so that no directory that was replaced by a link lets the walk out.
    while (reached >= 0 && m_chain.lastKey() < path.size()) {
        const qsizetype begin = m_chain.lastKey() + 1;
        const qsizetype slash = path.indexOf('/', begin);
        const qsizetype end = slash < 0 ? path.size() : slash;
        const QByteArray name = path.mid(begin, end - begin);
        Platform::FileDescriptor next = Platform::openSubdirectory(reached, name.constData());
        reached = next.isOpen() ? m_chain.append(end, std::move(next)) : -1;
    }
    return reached;
}

int ReaddirReader::openRoot()
{
    // The root itself may be a link: a home directory often is.
    Platform::FileDescriptor root = Platform::openPath(*m_root, O_RDONLY | O_DIRECTORY);
    if (!root.isOpen())
        return -1;
    m_canonicalRoot = Platform::canonicalPath(root.get(), *m_root);
    noteRemote();
    return m_chain.append(m_root->size(), std::move(root));
}

/// \returns false if nothing is known of the mounts for want of means, as `errno` then says: what
/// is entered then might never answer.
bool ReaddirReader::lookAtMounts()
{
    if (m_untilLook-- > 0)
        return true;
    const Platform::CurrentMounts::News news = m_mounts.look();
    if (news == Platform::CurrentMounts::News::Changed)
        noteRemote();
    const bool isKnown = news != Platform::CurrentMounts::News::Unknown;
    m_untilLook = isKnown ? kDirectoriesPerLook : 0;
    if (!isKnown)
        errno = EMFILE;
    return isKnown;
}

void ReaddirReader::noteRemote()
{
    m_isRemoteAround = m_mounts.table().hasRemoteBelow(m_canonicalRoot);
}

void ReaddirReader::visitEntry(std::string_view name, unsigned char type, const Visitor& visit)
{
    // No path in the program could lead back to a name that isn't text, so nothing could open it.
    QString text = Platform::fileNameText(name);
    if (text.isNull())
        return;
    if (m_holdsRemote &&
        m_mounts.table().isRemote(canonical(m_path) + '/' + QByteArray(name.data()))) {
        visit({std::move(text), canCoverDirectory(type), false});
        return;
    }
    if (type == DT_UNKNOWN) // some file systems leave it out of their directories
        type = typeIn(m_directory, name.data());
    // Gone again, or nothing that is to be listed.
    if (type == DT_UNKNOWN || (type == DT_LNK && !leadsToFile(name.data())))
        return;
    const bool isDir = type == DT_DIR;
    visit({std::move(text), isDir, isDir});
}

/// What kind of mount point a name of the open directory is, without a touch to what is mounted.
bool ReaddirReader::isDirectoryListed(const QByteArray& name)
{
    bool isDirectory = true;
    ::lseek(m_directory, 0, SEEK_SET); // another name may have been looked for in it
    const auto compare = [&](std::string_view listed, unsigned char type) {
        if (name == listed.data())
            isDirectory = canCoverDirectory(type);
    };
    m_buffer.read(m_directory, compare, [] { return false; });
    return isDirectory;
}

} // namespace

std::unique_ptr<Platform::DirectoryReader> Platform::DirectoryReader::create(const QString& root,
                                                                             TreeWatcher* watcher)
{
    return std::make_unique<ReaddirReader>(root, dynamic_cast<TreeWatch*>(watcher));
}

QString Platform::programDataFolderName()
{
    return QStringLiteral(".cache");
}

Qt::CaseSensitivity Platform::pathCaseSensitivity()
{
    return Qt::CaseSensitive;
}
