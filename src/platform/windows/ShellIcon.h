// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

#include <memory>

#include <windows.h>

namespace Platform
{

struct NativeIconDeleter
{
    using pointer = HICON;
    void operator()(HICON icon) const { DestroyIcon(icon); }
};

/// An icon of the system with its owner.
using NativeIcon = std::unique_ptr<HICON, NativeIconDeleter>;

/// The same picture for Qt; null if there is none or it can't be read. GUI thread.
QIcon toIcon(const NativeIcon& icon);

/// The icon that `SHGetFileInfoW` has for these arguments, `SHGFI_ICON` being understood; null if
/// it has none. GUI thread. \param item a path, or an id list if the flags say so.
QIcon shellIcon(LPCWSTR item, DWORD attributes, UINT flags);

} // namespace Platform
