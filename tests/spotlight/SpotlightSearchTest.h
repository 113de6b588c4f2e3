// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FakeApplications.h"
#include "FakeFileSystem.h"
#include "SpotlightTest.h"
#include "UsageStats.h"

#include <QIcon>
#include <QMap>
#include <QPixmap>

/// A window of Spotlight on a made-up machine, which has applications and files to be found; for a
/// test to inherit.
class SpotlightSearchTest : protected SpotlightTest
{
protected:
    /// The process asks for the desktop and the home once, so all tests have the same. Call it
    /// before the first window is made.
    static void installMachine()
    {
        QPixmap red(16, 16);
        red.fill(Qt::red);
        FakeApplications::setIcon(application("Zebra", true).launchPath, QIcon(red));
        FakeApplications::setApplications(installedApplications());
        FakeFileSystem::setIcon(".xls", QIcon(red));
        FakeFileSystem::add(homeContent());
    }

    /// "Name A", "Name B" and so on.
    static QStringList lettered(const QString& name, int count)
    {
        QStringList names;
        for (int i = 0; i < count; ++i)
            names.append(name + u' ' + QChar(u'A' + i));
        return names;
    }

    static void use(const QString& key, int times)
    {
        for (int i = 0; i < times; ++i)
            UsageStats::record(key);
    }

    /// The record of a row: what is set of all that a row can have set.
    static QMap<int, QVariant> recordOf(const QListWidgetItem* item)
    {
        QMap<int, QVariant> record;
        for (int role = Delegate::RoleOriginalIndex; role <= SpotlightWindow::RoleUsageKey;
             ++role) {
            if (item->data(role).isValid())
                record.insert(role, item->data(role));
        }
        return record;
    }

    QListWidgetItem* rowNamed(const QString& title) const
    {
        const QList<QListWidgetItem*> items = f->list()->findItems(title, Qt::MatchExactly);
        if (items.size() != 1)
            qFatal("not one row \"%s\"", qPrintable(title));
        return items.constFirst();
    }

private:
    static FakeApplications::Application application(const QString& name, bool isShellItem)
    {
        FakeApplications::Application app;
        app.name = name;
        app.key = name.toLower();
        app.launchPath = QStringLiteral("/apps/") + QString(app.key).replace(u' ', u'-');
        app.isShellItem = isShellItem;
        return app;
    }

    /// Two families of thirteen, and single ones. None has a name that the text of a test about
    /// something else is part of.
    static QVector<FakeApplications::Application> installedApplications()
    {
        QVector<FakeApplications::Application> apps{
            application("The Quill", false), application("Zebra", true),
            application("Zebu", false),      application("Fly Queen", true),
            application("8*8 Lab", false),   application("Wobble %1 Wheel", true)};
        for (const QString& name : lettered("Quill", 13) + lettered("Plum", 13))
            apps.append(application(name, true));
        return apps;
    }

    /// A folder for each letter, and files beside and in them. Their names, too, are no part of
    /// what other tests search for.
    static QStringList homeContent()
    {
        QStringList content;
        for (const QString& name : lettered("chart", 13))
            content << name + '/' << name + ".xls" << name + "/level" + name.right(1);
        return content << "Orchard.txt"
                       << "8*8.txt";
    }
};
