// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "InstalledApplications.h"

#include "DesktopEntry.h"
#include "IconTheme.h"

#include <QFile>
#include <QFileInfo>
#include <QPixmap>
#include <QSet>

namespace
{

// Larger pictures are made smaller, since whoever asks keeps the icon.
constexpr int kLargestIconPx = 256;
constexpr int kTriedIconPx = 48;

/// Lists what the entries of all folders for data offer, each id once.
class ApplicationList
{
public:
    using Add = std::function<void(const Platform::InstalledApplication&)>;

    explicit ApplicationList(const Add& add)
        : m_add(add),
          m_locale(EntryLocale::ofEnvironment()),
          m_desktops(qEnvironmentVariable("XDG_CURRENT_DESKTOP")
                         .split(QLatin1Char(':'), Qt::SkipEmptyParts))
    {}

    void addAll()
    {
        for (const QString& dataFolder : DesktopEntries::dataFolders()) {
            for (const DesktopEntries::File& file : DesktopEntries::filesIn(dataFolder))
                addOnce(file);
        }
    }

private:
    void addOnce(const DesktopEntries::File& file);
    bool isOffered(const DesktopEntry& entry, const QString& path) const;

    const Add& m_add;
    EntryLocale m_locale;
    QStringList m_desktops;
    QSet<QByteArray> m_seen;
    QByteArray m_content; ///< of the last file, for its memory
};

void ApplicationList::addOnce(const DesktopEntries::File& file)
{
    // The first file with an id is the one that counts, whatever is in it: that is how a user
    // replaces or removes what the system brings.
    if (m_seen.contains(file.id))
        return;
    m_seen.insert(file.id);
    if (!DesktopEntries::readFile(file.path, m_content))
        return;
    const std::optional<DesktopEntry> entry = DesktopEntry::parse(m_content, m_locale);
    const QString path = QFile::decodeName(file.path);
    if (entry && isOffered(*entry, path))
        m_add({entry->name, path, QFile::decodeName(file.id).toLower(), QIcon(), true});
}

bool ApplicationList::isOffered(const DesktopEntry& entry, const QString& path) const
{
    if (entry.isHidden || entry.isNotDisplayed || entry.name.trimmed().isEmpty() ||
        !entry.isShownIn(m_desktops))
        return false;
    const bool canBeStarted = entry.exec.isEmpty()
                                  ? entry.isBusActivatable && !DesktopEntry::busName(path).isEmpty()
                                  : entry.command(path).has_value();
    return canBeStarted && (entry.tryExec.isEmpty() || DesktopEntries::isProgram(entry.tryExec));
}

QIcon imageIcon(const QString& path)
{
    // Plain files only: to read a pipe would hold up whoever paints.
    if (!QFileInfo(path).isFile())
        return {};
    // What draws itself anew in each size has none of its own. Nor has what can't be read.
    const QIcon drawing(path);
    if (drawing.availableSizes().isEmpty())
        return drawing.pixmap(kTriedIconPx).isNull() ? QIcon() : drawing;
    const QPixmap image(path);
    const bool isLarge = qMax(image.width(), image.height()) > kLargestIconPx;
    const QPixmap kept = isLarge ? image.scaled(kLargestIconPx, kLargestIconPx, Qt::KeepAspectRatio,
                                                Qt::SmoothTransformation)
                                 : image;
    return kept.isNull() ? QIcon() : QIcon(kept);
}

/// Images that lie beside the themes.
QIcon looseIcon(const QString& name)
{
    for (const QString& dataFolder : DesktopEntries::dataFolders()) {
        for (const char* place : {"/icons/", "/pixmaps/"}) {
            for (const char* suffix : {".png", ".svg", ".xpm"}) {
                QIcon icon =
                    imageIcon(dataFolder + QLatin1String(place) + name + QLatin1String(suffix));
                if (!icon.isNull())
                    return icon;
            }
        }
    }
    return {};
}

/// The name of an icon in a theme. By the rules it has no suffix, but some entries write one.
QString themeNameOf(const QString& icon)
{
    for (const char* suffix : {".png", ".svg", ".xpm"}) {
        if (icon.endsWith(QLatin1String(suffix), Qt::CaseInsensitive))
            return icon.chopped(4);
    }
    return icon;
}

QIcon namedIcon(const QString& icon)
{
    const QString name = themeNameOf(icon);
    // A name with a slash would lead out of the theme.
    if (name.isEmpty() || name.contains(QLatin1Char('/')))
        return {};
    const QIcon themed = IconTheme::icon(name);
    return themed.isNull() ? looseIcon(name) : themed;
}

} // namespace

void Platform::listInstalledApplications(
    const std::function<void(const InstalledApplication&)>& add)
{
    ApplicationList(add).addAll();
}

QIcon Platform::applicationIcon(const QString& launchPath)
{
    QByteArray content;
    if (!DesktopEntries::readFile(QFile::encodeName(launchPath), content))
        return {};
    const std::optional<DesktopEntry> entry =
        DesktopEntry::parse(content, EntryLocale::ofEnvironment());
    if (!entry)
        return {};
    return entry->icon.startsWith(QLatin1Char('/')) ? imageIcon(entry->icon)
                                                    : namedIcon(entry->icon);
}
