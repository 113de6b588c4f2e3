// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DirectoryReader.h"

#include "ExtendedPath.h"
#include "FoundItem.h"

#include <utility>

#include <windows.h>

namespace
{

struct FindCloser
{
    using pointer = HANDLE;
    void operator()(HANDLE find) const { FindClose(find); }
};

/// \returns null if the directory can't be read.
std::unique_ptr<HANDLE, FindCloser> findFirst(const QString& directory, WIN32_FIND_DATAW& found)
{
    const QString pattern = Platform::extendedPath(directory + QStringLiteral("\\*"));
    const HANDLE find =
        FindFirstFileExW(reinterpret_cast<LPCWSTR>(pattern.utf16()), FindExInfoBasic, &found,
                         FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
    return std::unique_ptr<HANDLE, FindCloser>(find == INVALID_HANDLE_VALUE ? nullptr : find);
}

class WindowsDirectoryReader : public Platform::DirectoryReader
{
public:
    bool list(const QString& directory, const Visitor& visit) override
    {
        WIN32_FIND_DATAW found{};
        const auto find = findFirst(directory, found);
        if (!find)
            return false;
        do {
            if (std::optional<Platform::DirectoryItem> item = Platform::itemOf(found))
                visit(std::move(*item));
        } while (FindNextFileW(find.get(), &found));
        return GetLastError() == ERROR_NO_MORE_FILES;
    }

    Platform::PathKind kindOf(const QString& path) override
    {
        using Platform::PathKind;
        const QString native = Platform::extendedPath(path);
        const DWORD attributes = GetFileAttributesW(reinterpret_cast<LPCWSTR>(native.utf16()));
        if (attributes == INVALID_FILE_ATTRIBUTES)
            return PathKind::Missing;
        return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? PathKind::Directory : PathKind::File;
    }
};

} // namespace

std::unique_ptr<Platform::DirectoryReader> Platform::DirectoryReader::create(const QString& root,
                                                                             TreeWatcher* watcher)
{
    Q_UNUSED(root);    // each path tells by itself what stands there
    Q_UNUSED(watcher); // it watches the whole tree by itself
    return std::make_unique<WindowsDirectoryReader>();
}

QString Platform::programDataFolderName()
{
    return QStringLiteral("AppData");
}

Qt::CaseSensitivity Platform::pathCaseSensitivity()
{
    return Qt::CaseInsensitive;
}
