// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// A locale, as far as it decides which of an entry's localised values the user reads. Pure.
class EntryLocale
{
public:
    static constexpr int NoMatch = -1;
    static constexpr int Untagged = 0; ///< rank of a value without a tag, which fits every locale

    /// A locale in which no tagged value fits.
    EntryLocale() = default;
    /// \param name "lang_COUNTRY.ENCODING@MODIFIER", of which all but the first may be missing; "C"
    /// and "POSIX" name no language. The encoding makes no difference.
    explicit EntryLocale(QByteArrayView name);

    /// The locale of messages of this process's environment.
    static EntryLocale ofEnvironment();

    /// How well a value with that tag fits, the more the better; `NoMatch` if it doesn't.
    int rankOf(QByteArrayView tag) const;

private:
    QByteArray m_language; ///< empty if there is none
    QByteArray m_country;
    QByteArray m_modifier;
};

/// The main group of a desktop entry that describes an application. Pure functions over bytes and
/// text, which take any bytes: no I/O, any thread.
struct DesktopEntry
{
    QString name; ///< in the user's language; may be empty, although that is against the rules
    QString icon; ///< absolute path or name in the icon theme
    QString exec; ///< the command line, its quoting and field codes as written
    QString tryExec;
    QString workingDirectory;
    QStringList onlyShowIn;
    QStringList notShowIn;
    bool isHidden = false; ///< counts as deleted
    bool isNotDisplayed = false;
    bool isTerminal = false;
    bool isBusActivatable = false;

    /// \returns nothing unless `content` begins with the main group and its type is "Application".
    /// Lines that are no key and value are passed over, and what stands in later groups is not
    /// looked at. Of two values for one key the later counts.
    static std::optional<DesktopEntry> parse(QByteArrayView content, const EntryLocale& locale);

    /// \param desktops names of the running desktop, the most specific first.
    bool isShownIn(const QStringList& desktops) const;

    /// The program and its arguments, field codes resolved, with no file or address to open.
    /// \param path where the entry lies.
    /// \returns nothing if there is no command line, or it breaks the rules.
    std::optional<QStringList> command(const QString& path) const;

    /// The name on the message bus of an application whose entry lies at `path`; empty if that
    /// file's name can't be one.
    static QString busName(const QString& path);
};

/// Desktop entries on disk, by the rules of base directories. No state; any thread, but for those
/// that read the environment.
namespace DesktopEntries
{

/// Beyond this size a file is no entry: far above the largest with all its translations.
constexpr qsizetype MaxFileBytes = qsizetype{1024} * 1024;

struct File
{
    QByteArray id;   ///< path below the folder of entries, with a dash for each slash
    QByteArray path; ///< absolute

    bool operator==(const File&) const = default;
};

/// The absolute paths of the folders for data, as the environment names them, in order of
/// precedence: the user's own first.
QStringList dataFolders();

/// All that lies as an entry in a folder for data, whatever it holds, by id. The order doesn't
/// depend on the file system. A directory that links lead to twice is read once, under its own name
/// if it has one here; hidden names are passed over, and so is what lies beyond a thousand folders.
QVector<File> filesIn(const QString& dataFolder);

/// Where the entry with that id lies; empty if there is none.
QString pathOfId(const QString& id);

/// Reads a plain file of at most `MaxFileBytes` and never waits for a pipe or a device.
/// \param content may keep its memory from one call to the next. Undefined after a failure.
[[nodiscard]] bool readFile(const QByteArray& path, QByteArray& content);

/// Whether an absolute path, or a name on the search path, is a program that can be executed.
bool isProgram(const QString& program);

} // namespace DesktopEntries
