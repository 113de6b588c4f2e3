// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ShellIcon.h"

#include <QImage>
#include <QPixmap>

#include <shellapi.h>

QIcon Platform::toIcon(const NativeIcon& icon)
{
    if (!icon)
        return {};
    const QImage image = QImage::fromHICON(icon.get());
    return image.isNull() ? QIcon() : QIcon(QPixmap::fromImage(image));
}

QIcon Platform::shellIcon(LPCWSTR item, DWORD attributes, UINT flags)
{
    SHFILEINFOW info{};
    if (SHGetFileInfoW(item, attributes, &info, sizeof info, SHGFI_ICON | flags) == 0)
        return {};
    return toIcon(NativeIcon(info.hIcon));
}
