// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <QString>

#include <functional>

namespace Platform
{

/// An application as the system knows it.
struct InstalledApplication
{
    QString name;       ///< as shown to the user
    QString launchPath; ///< what is launched; a shell item if `isShellItem`, else a file
    QString key;        ///< identity in lower case
    QIcon presetIcon;   ///< only where the icon can't be asked for later
    bool isShellItem = false;
};

/// Names the installed applications one after the other, in the order in which the first of two
/// with the same key counts. What can't be read is left out. Synchronous, on the GUI thread.
void listInstalledApplications(const std::function<void(const InstalledApplication&)>& add);

/// The icon of an application from `listInstalledApplications()` by its launch path; null if it has
/// none. Reads files: callers keep the answer. GUI thread.
QIcon applicationIcon(const QString& launchPath);

} // namespace Platform
