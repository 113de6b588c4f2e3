// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"

#include <QByteArray>
#include <QString>

#include <cerrno>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <dirent.h>

namespace Platform
{

/// Whether a call failed for want of something that may come free again: watches, memory,
/// descriptors.
bool isOutOfMeans(int error);

/// What a name given by the system reads as; null if no text leads back to it, because it is no
/// UTF-8.
QString fileNameText(std::string_view name);

/// The bytes of an absolute path without slashes that it doesn't need, so that the root of the file
/// system becomes empty. Nothing if no path can be like that.
std::optional<QByteArray> pathBytes(const QString& path);

/// Opens what stands at an absolute path, however long. Symbolic links are followed.
/// \param path as `pathBytes` gives it.
/// \param flags as for `open`; the descriptor is closed on exec in any case.
FileDescriptor openPath(const QByteArray& path, int flags);

/// Opens a directory inside an open one to be read. Never what a symbolic link leads to.
FileDescriptor openSubdirectory(int parent, const char* name);

/// Opens a directory anywhere below an open one to be read. No symbolic link leads there either.
/// \param path names with slashes between them, however long.
FileDescriptor openBelow(int top, const QByteArray& path);

/// Path of an open directory without links in it, in the form of `pathBytes`.
/// \returns `path`, which led to it, if that is too long to be told.
QByteArray canonicalPath(int directory, const QByteArray& path);

/// Reads open directories. One buffer serves a whole walk.
class EntryBuffer
{
public:
    /// Calls `visit(std::string_view name, unsigned char type)` for what is left to be read of a
    /// directory, but for "." and "..". The view is of a text that ends with a zero. The type is
    /// one of the `DT_` values. After each portion asks `isCancelled()`.
    /// \returns false if the directory can't be read to its end.
    template <typename Visit, typename IsCancelled>
    bool read(int directory, Visit&& visit, IsCancelled&& isCancelled)
    {
        for (;;) {
            const ssize_t size = ::getdents64(directory, m_bytes.get(), Size);
            if (size == 0)
                return true;
            if (size < 0 && errno == EINTR)
                continue;
            if (size < 0 || isCancelled())
                return false;
            visitPortion(static_cast<size_t>(size), visit);
        }
    }

private:
    // Big enough for most directories to be told in one call, small enough for the cache.
    static constexpr size_t Size = size_t{64} * 1024;

    template <typename Visit>
    void visitPortion(size_t size, Visit& visit)
    {
        for (size_t offset = 0; offset < size;) {
            const auto* entry = reinterpret_cast<const dirent64*>(m_bytes.get() + offset);
            offset += entry->d_reclen;
            const std::string_view name(entry->d_name);
            if (name != "." && name != "..")
                visit(name, entry->d_type);
        }
    }

    std::unique_ptr<char[]> m_bytes = std::make_unique<char[]>(Size);
};

/// The directories between the root of a walk and where it stands, kept open so that the next one
/// down is opened by its name alone: a path is resolved anew for every directory otherwise, and a
/// very long one can't be resolved at all.
template <typename Key>
class DirectoryChain
{
public:
    /// Forgets the directories at the end of the chain for which `isOnTheWay(key)` is false.
    /// \returns the last one that remains, or a negative number.
    template <typename Predicate>
    int shorten(Predicate&& isOnTheWay)
    {
        while (!m_links.empty() && !isOnTheWay(m_links.back().first))
            m_links.pop_back();
        return m_links.empty() ? -1 : m_links.back().second.get();
    }

    /// \returns the descriptor, now owned by the chain.
    int append(Key key, FileDescriptor&& directory)
    {
        // The oldest are needed last, and a process may not have many descriptors.
        if (m_links.size() == MaxOpen)
            m_links.erase(m_links.begin());
        m_links.emplace_back(std::move(key), std::move(directory));
        return m_links.back().second.get();
    }

    const Key& lastKey() const { return m_links.back().first; }
    void clear() { m_links.clear(); }

private:
    static constexpr size_t MaxOpen = 32;

    std::vector<std::pair<Key, FileDescriptor>> m_links;
};

} // namespace Platform
