// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "InstalledApplications.h"
#include "TestFiles.h"

#include <QFile>
#include <QIcon>
#include <QTest>

/// Private folders for desktop entries ("own/applications", "a/...", "b/..."), for icons beside
/// them and for programs ("bin"), which the environment names; for a test to inherit.
class DesktopFolders : protected TestTree
{
protected:
    /// Begins with folders that hold nothing but the program "tool", and no locale or desktop.
    void makeFolders(const QByteArray& tool = QByteArrayLiteral("#!/bin/sh\n"))
    {
        makeRoot();
        for (const char* variable :
             {"LC_ALL", "LC_MESSAGES", "LANG", "XDG_CURRENT_DESKTOP", "TERMINAL"})
            qunsetenv(variable);
        qputenv("XDG_DATA_HOME", QFile::encodeName(path("own")));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(path("a") + ':' + path("b")));
        qputenv("PATH", QFile::encodeName(path("bin")));
        makeProgram("tool", tool);
        QIcon::setThemeSearchPaths({path("own/icons"), path("a/icons")});
        QIcon::setThemeName("hicolor");
        QIcon::setFallbackThemeName({});
    }

    void writeEntry(const QString& name, const QByteArray& lines) const
    {
        write(name, "[Desktop Entry]\nType=Application\n" + lines);
    }

    void makeProgram(const QString& name, const QByteArray& content) const
    {
        write("bin/" + name, content);
        QVERIFY(QFile::setPermissions(path("bin/" + name),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    static QStringList namesOffered()
    {
        QStringList names;
        Platform::listInstalledApplications(
            [&names](const Platform::InstalledApplication& found) { names.append(found.name); });
        return names;
    }
};
