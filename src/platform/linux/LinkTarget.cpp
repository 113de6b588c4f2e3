// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "LinkTarget.h"

#include "MountTable.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int kMaxLinks = 40; // as many as the system itself goes along

enum class Step {
    Directory,
    File, ///< or nothing at all
    Remote,
    TooLong ///< the path is more than the system takes
};

/// Goes along the target of a link name by name, and looks at the table before it looks at the
/// file system.
class LinkWalk
{
public:
    /// \param links those that were gone along already.
    LinkWalk(const QByteArray& directory, const Platform::MountTable& mounts, int links)
        : m_start(directory + '/'), m_directory(directory), m_mounts(mounts), m_links(links)
    {}

    Step follow(const QByteArray& target)
    {
        prepend(target);
        Step step = Step::Directory;
        while (!m_ahead.isEmpty()) {
            if (step != Step::Directory)
                return step;
            step = advance(takeName());
        }
        return step;
    }

private:
    void prepend(const QByteArray& target)
    {
        if (target.startsWith('/'))
            m_directory.clear();
        m_ahead = target + '/' + m_ahead;
    }

    QByteArray takeName()
    {
        const qsizetype slash = m_ahead.indexOf('/');
        QByteArray name = m_ahead.left(slash);
        m_ahead.remove(0, slash + 1);
        return name;
    }

    Step advance(const QByteArray& name)
    {
        if (name.isEmpty() || name == ".")
            return Step::Directory;
        if (name == "..") {
            m_directory.truncate(std::max<qsizetype>(0, m_directory.lastIndexOf('/')));
            return Step::Directory;
        }
        return enter(m_directory + '/' + name);
    }

    Step enter(const QByteArray& path)
    {
        // A home on the network is touched all the time, so a link may lead into it again.
        if (m_mounts.isRemote(path) && !m_start.startsWith(path + '/'))
            return Step::Remote;
        struct stat status = {};
        const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
        if (::fstatat(AT_FDCWD, path.constData(), &status, flags) != 0)
            return errno == ENAMETOOLONG ? Step::TooLong : Step::File;
        if (S_ISLNK(status.st_mode))
            return followNext(path);
        if (!S_ISDIR(status.st_mode))
            return Step::File;
        m_directory = path;
        return Step::Directory;
    }

    Step followNext(const QByteArray& path)
    {
        std::array<char, PATH_MAX> target{};
        const ssize_t size = ::readlink(path.constData(), target.data(), target.size());
        if (size <= 0 || ++m_links > kMaxLinks)
            return Step::File;
        prepend(QByteArray(target.data(), size));
        return Step::Directory;
    }

    QByteArray m_start;     ///< ends with a slash
    QByteArray m_directory; ///< where the walk stands; empty for the root
    const Platform::MountTable& m_mounts;
    QByteArray m_ahead; ///< names still to be gone along, each ended by a slash
    int m_links;
};

bool leadsToFileAnywhere(int parent, const char* name)
{
    struct stat status = {};
    return ::fstatat(parent, name, &status, AT_NO_AUTOMOUNT) != 0 || !S_ISDIR(status.st_mode);
}

} // namespace

bool Platform::linkLeadsToFile(int parent, const QByteArray& parentPath, const char* name,
                               const MountTable& mounts)
{
    if (!mounts.hasRemote())
        return leadsToFileAnywhere(parent, name);
    std::array<char, PATH_MAX> target{};
    const ssize_t size = ::readlinkat(parent, name, target.data(), target.size());
    if (size <= 0)
        return true;
    LinkWalk walk(parentPath, mounts, 1);
    const Step end = walk.follow(QByteArray(target.data(), size));
    // That far down nothing is mounted as a rule, so the system may be asked.
    return end == Step::TooLong ? leadsToFileAnywhere(parent, name) : end == Step::File;
}

bool Platform::pathLeadsToRemote(const QByteArray& path, const QByteArray& home,
                                 const MountTable& mounts)
{
    if (!mounts.hasRemote())
        return false;
    LinkWalk walk(home, mounts, 0);
    const Step end = walk.follow(path);
    return end == Step::Remote || end == Step::TooLong;
}
