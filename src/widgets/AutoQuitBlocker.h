// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

/// Guards that are alive or ended less than `AutoQuitBlocker::ReleaseMs` ago.
extern int g_autoQuitBlockCount;
/// True while loss of focus must not hide a window of ours. GUI thread only.
extern bool g_blockAutoQuit;

/// Keeps the windows from hiding on loss of focus: construct it on the stack around anything modal.
/// GUI thread only, and only while the application object exists.
class AutoQuitBlocker
{
public:
    static constexpr int ReleaseMs = 500; ///< how long a guard works on after its end

    AutoQuitBlocker();
    ~AutoQuitBlocker();
    AutoQuitBlocker(const AutoQuitBlocker&) = delete;
    AutoQuitBlocker& operator=(const AutoQuitBlocker&) = delete;
};
