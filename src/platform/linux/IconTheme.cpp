// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "IconTheme.h"

#include "DesktopEntry.h"

#include <QDir>
#include <QFile>

#include <algorithm>

namespace
{

constexpr int kTriedIconPx = 48;

const QString kCommonTheme = QStringLiteral("hicolor");

/// A theme of icons, as opposed to one of pointers.
bool hasIcons(const QString& themeFolder)
{
    QByteArray index;
    return DesktopEntries::readFile(QFile::encodeName(themeFolder + QLatin1String("/index.theme")),
                                    index) &&
           index.contains("\nDirectories=");
}

/// The first theme of icons that is installed; empty if there is none but the common one.
QString anyInstalledTheme()
{
    for (const QString& path : QIcon::themeSearchPaths()) {
        const QDir folder(path);
        for (const QString& name :
             folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
            if (name != kCommonTheme && hasIcons(folder.filePath(name)))
                return name;
        }
    }
    return {};
}

bool isInstalledTheme(const QString& name)
{
    const QStringList paths = QIcon::themeSearchPaths();
    return !name.isEmpty() && std::any_of(paths.cbegin(), paths.cend(), [&](const QString& path) {
        return hasIcons(path + QLatin1Char('/') + name);
    });
}

/// Without a desktop nobody names a theme. Applications put their own icons into the common one,
/// but many entries bear the name of an icon that only the theme of a desktop has.
void ensureTheme()
{
    if (QIcon::themeName().isEmpty())
        QIcon::setThemeName(kCommonTheme); // without any name no theme is looked into
    const QString theme = QIcon::themeName();
    const QString fallback = QIcon::fallbackThemeName();
    const bool hasTheme = theme != kCommonTheme && isInstalledTheme(theme);
    const bool hasFallback = fallback != kCommonTheme && isInstalledTheme(fallback);
    if (hasTheme || hasFallback)
        return;
    const QString found = anyInstalledTheme();
    if (!found.isEmpty())
        QIcon::setFallbackThemeName(found);
}

} // namespace

QIcon IconTheme::icon(const QString& name)
{
    ensureTheme();
    const QIcon themed = QIcon::fromTheme(name);
    // The theme may have files of that name and none that can be shown.
    return themed.pixmap(kTriedIconPx).isNull() ? QIcon() : themed;
}
