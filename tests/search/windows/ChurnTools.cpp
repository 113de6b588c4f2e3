// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ChurnTools.h"

#include <windows.h>

void ChurnTools::allowWatches(int /*count*/)
{} // one watch covers all

bool ChurnTools::isWatchedWherever()
{
    return !GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version");
}

bool ChurnTools::exchange(const QString& /*path*/, const QString& /*other*/)
{
    return false;
}
