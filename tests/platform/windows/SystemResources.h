// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <vector>

#include <windows.h>

/// What a process can run out of. Wine answers none of the functions that count what is in use, so
/// this looks at what is left.
namespace SystemResources
{

/// How many graphics objects can still be made. An icon is made of such objects.
inline std::size_t freeGdiObjects()
{
    std::vector<HBITMAP> bitmaps;
    while (HBITMAP bitmap = CreateBitmap(1, 1, 1, 1, nullptr))
        bitmaps.push_back(bitmap);
    for (const HBITMAP bitmap : bitmaps)
        DeleteObject(bitmap);
    return bitmaps.size();
}

/// A number that grows with the handles in use, since the lowest free one is given out.
inline quintptr nextHandle()
{
    const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    CloseHandle(event);
    return reinterpret_cast<quintptr>(event);
}

/// How many pieces of the process's heap are in use.
inline std::size_t heapBlocks()
{
    std::size_t blocks = 0;
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(GetProcessHeap(), &entry)) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0)
            ++blocks;
    }
    return blocks;
}

} // namespace SystemResources
