// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "InstalledApplications.h"

#include <QString>

#include <functional>

#include <windows.h>

#include <shlobj.h>

namespace Platform
{

/// Names what the shell's applications folder holds and no other place knows: the applications of
/// the store, with their icons, which can't be asked for later. A system without that folder has
/// none. GUI thread.
void addStoreApps(const std::function<void(const InstalledApplication&)>& add);

/// The same for one folder. COM is up to the caller.
/// \param parent the folder's own id list.
void collectStoreApps(IShellFolder* folder, PCIDLIST_ABSOLUTE parent,
                      const std::function<void(const InstalledApplication&)>& add);

/// The same for one child of it.
void collectStoreApp(IShellFolder* folder, PCIDLIST_ABSOLUTE parent, PCUITEMID_CHILD child,
                     const std::function<void(const InstalledApplication&)>& add);

/// The text in `s`, which is freed and gone afterwards; empty if it isn't held as wide characters
/// in memory of its own.
QString strRetToString(STRRET& s);

} // namespace Platform
