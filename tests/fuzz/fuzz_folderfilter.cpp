// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FolderFilter.h"

#include <QByteArray>
#include <QDir>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace
{

void require(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace

/// Whatever lies in "folderfilter.json": only folders come out, they come back equal after a save,
/// and each of them holds what lies below it and nothing above.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QStringList folders = FolderFilter::fromBytes(input);
    for (const QString& folder : folders) {
        require(!folder.isEmpty());
        require(FolderFilter::isUnder(folder + QDir::separator() + 'a', folder));
        require(FolderFilter::isUnder(folder, folder) == folder.endsWith(QDir::separator()));
        require(!FolderFilter::isUnder(folder.chopped(1), folder));
    }
    require(FolderFilter::fromBytes(FolderFilter::toBytes(folders)) == folders);
    return 0;
}
