// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "InstalledApplications.h"

#include <QStringList>
#include <QVector>

#include <functional>

/// A desktop whose applications a test makes up. Its object file defines what
/// "InstalledApplications.h" and "ShellLaunch.h" declare: compiled into a test, it replaces the
/// real ones of the library, so that no application of the machine gets in.
class FakeApplications
{
public:
    using Application = Platform::InstalledApplication;

    FakeApplications() = delete;

    /// What the desktop lists from now on; nothing at first.
    static void setApplications(const QVector<Application>& applications);
    /// Called at the beginning of each listing.
    static void onListing(const std::function<void()>& callback);
    /// How often the applications have been listed since the process started.
    static int listCount();

    /// The icon that the desktop gives to a launch path; null at first.
    static void setIcon(const QString& launchPath, const QIcon& icon);
    /// The launch paths for which icons have been asked for, in order.
    static QStringList iconRequests();

    /// Whether the desktop refuses to start shell items from now on; it doesn't at first.
    static void setRefusing(bool isRefusing);
    /// The shell items that were to be started, refused or not, in order.
    static QStringList launches();
};
