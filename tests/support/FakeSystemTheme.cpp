// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FakeSystemTheme.h"

#include "SystemTheme.h"

namespace
{

bool s_isDark = false;
int s_readCount = 0;

} // namespace

void FakeSystemTheme::setDark(bool isDark)
{
    s_isDark = isDark;
}

int FakeSystemTheme::readCount()
{
    return s_readCount;
}

bool Platform::prefersDark()
{
    ++s_readCount;
    return s_isDark;
}
