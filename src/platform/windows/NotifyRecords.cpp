// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "NotifyRecords.h"

#include <cstring>

#include <windows.h>

namespace
{

constexpr std::size_t kHeaderBytes = offsetof(FILE_NOTIFY_INFORMATION, FileName);

/// Where its name begins and ends is checked by the caller.
QString nameAt(const unsigned char* bytes, std::size_t size)
{
    QString name(static_cast<qsizetype>(size / sizeof(QChar)), Qt::Uninitialized);
    std::memcpy(name.data(), bytes, static_cast<std::size_t>(name.size()) * sizeof(QChar));
    return name;
}

} // namespace

QVector<Platform::TreeChange> Platform::changesIn(const unsigned char* buffer, std::size_t bytes)
{
    QVector<TreeChange> changes;
    std::size_t offset = 0;
    while (bytes - offset >= kHeaderBytes) {
        FILE_NOTIFY_INFORMATION header{}; // copied: nothing but the system keeps records aligned
        std::memcpy(&header, buffer + offset, kHeaderBytes);
        const std::size_t space = bytes - offset;
        if (header.FileNameLength > space - kHeaderBytes)
            break;
        QString name = nameAt(buffer + offset + kHeaderBytes, header.FileNameLength);
        if (!name.isEmpty())
            changes.append({header.Action, std::move(name)});
        if (header.NextEntryOffset == 0 || header.NextEntryOffset >= space)
            break;
        offset += header.NextEntryOffset;
    }
    return changes;
}
