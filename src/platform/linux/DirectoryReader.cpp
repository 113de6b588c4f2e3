// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "platform/DirectoryReader.h"

#include "platform/linux/DirectoryAccess.h"
#include "platform/linux/LinkTarget.h"
#include "platform/linux/MountTable.h"

#include <algorithm>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>

namespace
{

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
    explicit ReaddirReader(const QString& root);

    bool list(const QString& directory, const Visitor& visit) override;

private:
    int open(const QByteArray& path);
    int openRoot();
    void visitEntry(std::string_view name, unsigned char type, const Visitor& visit);
    QByteArray canonicalDirectory() const { return m_canonicalRoot + m_path.mid(m_root->size()); }

    std::optional<QByteArray> m_root; ///< nothing if it can't be a path
    QByteArray m_canonicalRoot;
    Platform::MountTable m_mounts;
    Platform::EntryBuffer m_buffer;
    Platform::DirectoryChain<qsizetype> m_chain; ///< keys: length of the directory's part of m_path
    QByteArray m_path;                           ///< of the directory being listed
    int m_directory = -1;                        ///< the same one, open
    bool m_holdsRemote = false;                  ///< a remote file system is mounted in it
};

ReaddirReader::ReaddirReader(const QString& root)
    : m_root(Platform::pathBytes(root)), m_mounts(Platform::MountTable::read())
{
    if (!m_root)
        return;
    const Platform::FileDescriptor directory = Platform::openPath(*m_root, O_PATH | O_DIRECTORY);
    m_canonicalRoot =
        directory.isOpen() ? Platform::canonicalPath(directory.get(), *m_root) : *m_root;
}

bool ReaddirReader::list(const QString& directory, const Visitor& visit)
{
    const std::optional<QByteArray> path = Platform::pathBytes(directory);
    if (!path || !m_root)
        return false;
    m_directory = open(*path);
    if (m_directory < 0)
        return false;
    m_holdsRemote = m_mounts.hasRemote() && m_mounts.holdsRemote(canonicalDirectory());
    return m_buffer.read(
        m_directory,
        [&](std::string_view name, unsigned char type) { visitEntry(name, type, visit); },
        [] { return false; });
}

int ReaddirReader::open(const QByteArray& path)
{
    if (path != *m_root && !path.startsWith(*m_root + '/'))
        return -1;
    const auto mismatch = std::mismatch(path.cbegin(), path.cend(), m_path.cbegin(), m_path.cend());
    const qsizetype common = mismatch.first - path.cbegin();
    m_path = path;
    // Those above the wanted one only: itself it would have been read to its end already.
    int reached = m_chain.shorten([&](qsizetype length) {
        return length <= common && length < path.size() && path.at(length) == '/';
    });
    if (reached < 0)
        reached = openRoot();
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
    return root.isOpen() ? m_chain.append(m_root->size(), std::move(root)) : -1;
}

void ReaddirReader::visitEntry(std::string_view name, unsigned char type, const Visitor& visit)
{
    // No path in the program could lead back to a name that isn't text, so nothing could open it.
    QString text = Platform::fileNameText(name);
    if (text.isNull())
        return;
    if (m_holdsRemote && m_mounts.isRemote(canonicalDirectory() + '/' + QByteArray(name.data()))) {
        visit({std::move(text), true, false});
        return;
    }
    if (type == DT_UNKNOWN) // some file systems leave it out of their directories
        type = typeIn(m_directory, name.data());
    if (type == DT_LNK &&
        !Platform::linkLeadsToFile(m_directory, canonicalDirectory(), name.data(), m_mounts))
        return;
    const bool isDir = type == DT_DIR;
    visit({std::move(text), isDir, isDir});
}

} // namespace

std::unique_ptr<Platform::DirectoryReader> Platform::DirectoryReader::create(const QString& root)
{
    return std::make_unique<ReaddirReader>(root);
}

Platform::PathKind Platform::kindOfPath(const QString& path)
{
    const std::optional<QByteArray> bytes = pathBytes(path);
    if (!bytes)
        return PathKind::Missing;
    if (bytes->isEmpty())
        return PathKind::Directory;
    const qsizetype slash = bytes->lastIndexOf('/');
    const QByteArray parentPath = bytes->left(slash);
    const QByteArray name = bytes->mid(slash + 1);
    const FileDescriptor parent = openPath(parentPath, O_PATH | O_DIRECTORY);
    if (!parent.isOpen())
        return PathKind::Missing;
    const unsigned char type = typeIn(parent.get(), name.constData());
    if (type == DT_UNKNOWN)
        return PathKind::Missing;
    if (type != DT_LNK)
        return type == DT_DIR ? PathKind::Directory : PathKind::File;
    const bool isFile = linkLeadsToFile(parent.get(), canonicalPath(parent.get(), parentPath),
                                        name.constData(), MountTable::read());
    return isFile ? PathKind::File : PathKind::Missing;
}

QString Platform::programDataFolderName()
{
    return QStringLiteral(".cache");
}

Qt::CaseSensitivity Platform::pathCaseSensitivity()
{
    return Qt::CaseSensitive;
}
