// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FakeApplications.h"

#include "ShellLaunch.h"

#include <QHash>

namespace
{

struct Desktop
{
    QVector<FakeApplications::Application> applications;
    std::function<void()> onListing;
    int listCount = 0;
    QHash<QString, QIcon> icons;
    QStringList iconRequests;
    bool isRefusing = false;
    QStringList launches;
};

Desktop& desktop()
{
    static Desktop s_desktop;
    return s_desktop;
}

} // namespace

void FakeApplications::setApplications(const QVector<Application>& applications)
{
    desktop().applications = applications;
}

void FakeApplications::onListing(const std::function<void()>& callback)
{
    desktop().onListing = callback;
}

int FakeApplications::listCount()
{
    return desktop().listCount;
}

void FakeApplications::setIcon(const QString& launchPath, const QIcon& icon)
{
    desktop().icons.insert(launchPath, icon);
}

QStringList FakeApplications::iconRequests()
{
    return desktop().iconRequests;
}

void FakeApplications::setRefusing(bool isRefusing)
{
    desktop().isRefusing = isRefusing;
}

QStringList FakeApplications::launches()
{
    return desktop().launches;
}

void Platform::listInstalledApplications(
    const std::function<void(const InstalledApplication&)>& add)
{
    Desktop& d = desktop();
    ++d.listCount;
    if (d.onListing)
        d.onListing();
    for (const InstalledApplication& application : d.applications)
        add(application);
}

QIcon Platform::applicationIcon(const QString& launchPath)
{
    desktop().iconRequests.append(launchPath);
    return desktop().icons.value(launchPath);
}

bool Platform::launchShellItem(const QString& value)
{
    desktop().launches.append(value);
    return !desktop().isRefusing;
}
