// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "PathLocality.h"

#include <QDir>
#include <QFileInfo>
#include <QLatin1String>

#include <windows.h>

namespace
{

constexpr QLatin1String kVerbatim("\\\\?\\");
constexpr QLatin1String kObject("\\??\\");
constexpr int kDriveLength = 3; // such as "C:\"

bool isLocalDrive(const QString& root)
{
    switch (::GetDriveTypeW(reinterpret_cast<const wchar_t*>(root.utf16()))) {
    case DRIVE_FIXED:
    case DRIVE_REMOVABLE:
    case DRIVE_CDROM:
    case DRIVE_RAMDISK:
        return true;
    default:
        return false;
    }
}

} // namespace

bool Platform::isLocalPath(const QString& path)
{
    if (path.isEmpty())
        return false;
    if (path.startsWith(u':'))
        return true;
    QString native = QDir::toNativeSeparators(path);
    if (native.startsWith(kVerbatim))
        native.remove(0, kVerbatim.size());
    else if (native.startsWith(QLatin1String("\\\\")) || native.startsWith(kObject))
        return false;
    else
        native = QDir::toNativeSeparators(QFileInfo(native).absoluteFilePath());
    // Behind the prefix may stand a share or a device as well.
    const bool hasDrive = native.size() >= kDriveLength && native.at(0).isLetter() &&
                          native.mid(1, 2) == QLatin1String(":\\");
    return hasDrive && isLocalDrive(native.left(kDriveLength));
}
