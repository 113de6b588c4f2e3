// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

/// A desktop whose colour scheme a test decides. Its object file defines `Platform::prefersDark`:
/// compiled into a test, it replaces the real one of the library.
class FakeSystemTheme
{
public:
    FakeSystemTheme() = delete;

    /// What the desktop answers from now on; light at first.
    static void setDark(bool isDark);
    /// How often the program has asked since the process started.
    static int readCount();
};
