// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// Stands in for an installed application: all that it does is to leave a file beside itself that
// tells of its start.

#include <algorithm>
#include <array>

#include <windows.h>

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int)
{
    std::array<wchar_t, MAX_PATH> path = {};
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), MAX_PATH);
    constexpr std::array<wchar_t, 9> kSuffix = {L'.', L's', L't', L'a', L'r', L't', L'e', L'd', 0};
    if (length == 0 || length + kSuffix.size() > path.size())
        return 1;
    std::copy(kSuffix.begin(), kSuffix.end(), path.begin() + length);
    const HANDLE file = CreateFileW(path.data(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    return file != INVALID_HANDLE_VALUE && CloseHandle(file) ? 0 : 1;
}
