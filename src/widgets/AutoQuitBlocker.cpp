// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"

#include <QCoreApplication>
#include <QTimer>

int g_autoQuitBlockCount = 0;
bool g_blockAutoQuit = false;

AutoQuitBlocker::AutoQuitBlocker()
{
    ++g_autoQuitBlockCount;
    g_blockAutoQuit = true;
}

AutoQuitBlocker::~AutoQuitBlocker()
{
    // A native or modal window delivers its last focus events after it has closed, and those must
    // not hide the window behind it either.
    QTimer::singleShot(ReleaseMs, QCoreApplication::instance(), [] {
        --g_autoQuitBlockCount;
        if (g_autoQuitBlockCount < 1) {
            g_autoQuitBlockCount = 0;
            g_blockAutoQuit = false;
        }
    });
}
