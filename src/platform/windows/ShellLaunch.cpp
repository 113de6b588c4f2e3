// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ShellLaunch.h"

#include "Explorer.h"

#include <QProcess>

#include <array>

#include <windows.h>

QString Platform::explorerPath()
{
    std::array<wchar_t, MAX_PATH> directory = {};
    // Not what GetWindowsDirectoryW tells: on a terminal server that is a folder of the user's own.
    const UINT length = GetSystemWindowsDirectoryW(directory.data(), UINT(directory.size()));
    if (length == 0 || length >= directory.size())
        return {};
    return QString::fromWCharArray(directory.data(), int(length)) +
           QStringLiteral("\\explorer.exe");
}

bool Platform::startWithItem(const QString& program, const QString& item)
{
    return !program.isEmpty() && QProcess::startDetached(program, {item}, QString(), nullptr);
}

bool Platform::launchShellItem(const QString& value)
{
    return startWithItem(explorerPath(), value);
}
