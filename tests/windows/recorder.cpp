// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

// Stands in for an installed application: all that it does is to leave a file beside itself that
// tells of its start.

#include <algorithm>
#include <array>
#include <cstdio>

#include <windows.h>

int main()
{
    std::array<wchar_t, MAX_PATH> path = {};
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), MAX_PATH);
    constexpr std::array<wchar_t, 9> kSuffix = {L'.', L's', L't', L'a', L'r', L't', L'e', L'd', 0};
    if (length == 0 || length + kSuffix.size() > path.size())
        return 1;
    std::copy(kSuffix.begin(), kSuffix.end(), path.begin() + length);
    std::FILE* file = _wfopen(path.data(), L"w");
    return file && std::fclose(file) == 0 ? 0 : 1;
}
