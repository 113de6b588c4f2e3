// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "InstalledApplications.h"

#include "ShellLink.h"
#include "StoreApps.h"

#include <QDir>
#include <QDirIterator>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QSettings>
#include <QStringList>
#include <QVariant>

#include <algorithm>

namespace
{

using Add = std::function<void(const Platform::InstalledApplication&)>;

constexpr QLatin1String kStartMenu("/Microsoft/Windows/Start Menu/Programs");
constexpr QLatin1String kCurrentVersion("\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion");
constexpr QLatin1String kAppPaths("App Paths");
constexpr QLatin1String kProgramSuffix(".exe");
constexpr QLatin1String kShortcutSuffix(".lnk");

QString startMenuBelow(const char* variable)
{
    return QDir::fromNativeSeparators(qEnvironmentVariable(variable)) + kStartMenu;
}

/// Installers put their manuals and licences beside the program.
bool isDocumentTarget(const QString& path)
{
    static const QStringList docExt{QStringLiteral(".chm"), QStringLiteral(".txt"),
                                    QStringLiteral(".pdf"), QStringLiteral(".html"),
                                    QStringLiteral(".htm"), QStringLiteral(".rtf"),
                                    QStringLiteral(".doc"), QStringLiteral(".docx"),
                                    QStringLiteral(".md"),  QStringLiteral(".ini")};
    return std::any_of(docExt.cbegin(), docExt.cend(), [&path](const QString& extension) {
        return path.endsWith(extension, Qt::CaseInsensitive);
    });
}

void addStartMenu(const QString& dir, const Add& add)
{
    // Shortcuts that Qt can't follow to a file, to parts of the desktop for instance, count as
    // system files.
    QDirIterator shortcuts(dir, {QStringLiteral("*.lnk")}, QDir::Files | QDir::System,
                           QDirIterator::Subdirectories);
    while (shortcuts.hasNext()) {
        const QFileInfo shortcut(shortcuts.next());
        const QString target = shortcut.symLinkTarget();
        if (isDocumentTarget(target))
            continue;
        const QString path = shortcut.filePath();
        add({shortcut.completeBaseName(),
             path,
             (target.isEmpty() ? path : target).toLower(),
             {},
             false});
    }
}

void addAppPaths(const QString& root, const Add& add)
{
    // Not opened on the key itself, which that would create where it is missing.
    QSettings programs(root + kCurrentVersion, QSettings::NativeFormat);
    programs.beginGroup(kAppPaths);
    const QStringList groups = programs.childGroups();
    for (const QString& group : groups) {
        if (!group.endsWith(kProgramSuffix, Qt::CaseInsensitive))
            continue;
        const QString path = programs.value(group + QStringLiteral("/Default"))
                                 .toString()
                                 .remove(QLatin1Char('"'))
                                 .trimmed();
        if (path.isEmpty() || !QFileInfo::exists(path))
            continue;
        add({QFileInfo(path).completeBaseName(), path, path.toLower(), {}, false});
    }
}

} // namespace

void Platform::listInstalledApplications(const Add& add)
{
    addStartMenu(startMenuBelow("ProgramData"), add);
    addStartMenu(startMenuBelow("AppData"), add);
    addAppPaths(QStringLiteral("HKEY_LOCAL_MACHINE"), add);
    addAppPaths(QStringLiteral("HKEY_CURRENT_USER"), add);
    addStoreApps(add);
}

QIcon Platform::applicationIcon(const QString& launchPath)
{
    QIcon icon;
    if (launchPath.endsWith(kShortcutSuffix, Qt::CaseInsensitive))
        icon = shortcutIcon(launchPath);
    static const QFileIconProvider provider;
    return icon.isNull() ? provider.icon(QFileInfo(launchPath)) : icon;
}
