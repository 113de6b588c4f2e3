// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ShellLaunch.h"

#include <QProcess>

bool Platform::launchShellItem(const QString& value)
{
    return QProcess::startDetached(QStringLiteral("explorer.exe"), {value}, QString(), nullptr);
}
