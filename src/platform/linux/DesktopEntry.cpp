// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DesktopEntry.h"

#include "FileDescriptor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <memory>
#include <tuple>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr QByteArrayView kMainGroup("[Desktop Entry]");
constexpr QByteArrayView kByteOrderMark("\xef\xbb\xbf");
constexpr QByteArrayView kApplicationType("Application");
constexpr QByteArrayView kEntrySuffix(".desktop");
constexpr qsizetype kLongestBusName = 255;
constexpr qsizetype kMaxFolders = 1000;

/// Takes the next line off `content`, without blanks at its ends: among them the carriage return of
/// a file that has been through another system.
QByteArrayView takeLine(QByteArrayView& content)
{
    const qsizetype end = content.indexOf('\n');
    const QByteArrayView line = end < 0 ? content : content.first(end);
    content = end < 0 ? QByteArrayView() : content.sliced(end + 1);
    return line.trimmed();
}

bool isComment(QByteArrayView line)
{
    return line.isEmpty() || line.startsWith('#');
}

/// The character that an escape stands for; 0 if it stands for none.
char escapedCharacter(char letter)
{
    switch (letter) {
    case 's':
        return ' ';
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'r':
        return '\r';
    case '\\':
        return '\\';
    default:
        return 0;
    }
}

/// Splits a raw value at each `separator` that is not escaped, and resolves the escapes. An escape
/// that means nothing stays as it is: people write \" where only \\" would be right.
QStringList split(QByteArrayView raw, char separator)
{
    QStringList texts;
    QByteArray text;
    for (qsizetype i = 0; i < raw.size(); ++i) {
        if (raw[i] == separator && separator != 0) {
            texts.append(QString::fromUtf8(text));
            text.clear();
            continue;
        }
        const char next = raw[i] == '\\' && i + 1 < raw.size() ? raw[i + 1] : '\0';
        const char meant = next != 0 && next == separator ? separator : escapedCharacter(next);
        text.append(meant != 0 ? meant : raw[i]);
        i += meant != 0 ? 1 : 0;
    }
    texts.append(QString::fromUtf8(text));
    return texts;
}

QString textOf(QByteArrayView raw)
{
    // Most values hold no escape.
    return raw.contains('\\') ? split(raw, '\0').constFirst() : QString::fromUtf8(raw);
}

QStringList listOf(QByteArrayView raw)
{
    QStringList list = split(raw, ';');
    list.removeAll(QString());
    return list;
}

bool isTrue(QByteArrayView raw)
{
    return raw == QByteArrayView("true") || raw == QByteArrayView("1"); // the latter is older
}

/// The best of the values for one key.
struct LocalisedValue
{
    QByteArrayView raw;
    int rank = EntryLocale::NoMatch;

    void offer(QByteArrayView value, int valueRank)
    {
        if (valueRank >= rank && valueRank != EntryLocale::NoMatch && !value.isEmpty()) {
            raw = value;
            rank = valueRank;
        }
    }
};

/// The values of the main group as they stand in the file.
struct RawEntry
{
    QByteArrayView type;
    QByteArrayView exec;
    QByteArrayView tryExec;
    QByteArrayView path;
    QByteArrayView onlyShowIn;
    QByteArrayView notShowIn;
    QByteArrayView hidden;
    QByteArrayView noDisplay;
    QByteArrayView terminal;
    QByteArrayView dbusActivatable;
    LocalisedValue name;
    LocalisedValue icon;

    /// \returns false if there is no main group, or something stands before it.
    bool read(QByteArrayView content, const EntryLocale& locale);

private:
    void readPair(QByteArrayView line, const EntryLocale& locale);
    void readValue(QByteArrayView key, QByteArrayView value);
    LocalisedValue* localised(QByteArrayView key);
};

struct PlainKey
{
    QByteArrayView key;
    QByteArrayView RawEntry::*value;
};

constexpr std::array kPlainKeys{
    PlainKey{"Type", &RawEntry::type},
    PlainKey{"Exec", &RawEntry::exec},
    PlainKey{"TryExec", &RawEntry::tryExec},
    PlainKey{"Path", &RawEntry::path},
    PlainKey{"OnlyShowIn", &RawEntry::onlyShowIn},
    PlainKey{"NotShowIn", &RawEntry::notShowIn},
    PlainKey{"Hidden", &RawEntry::hidden},
    PlainKey{"NoDisplay", &RawEntry::noDisplay},
    PlainKey{"Terminal", &RawEntry::terminal},
    PlainKey{"DBusActivatable", &RawEntry::dbusActivatable},
};

bool RawEntry::read(QByteArrayView content, const EntryLocale& locale)
{
    // No text has it, and on the way to a program or the system it would cut a value short.
    if (content.contains('\0'))
        return false;
    if (content.startsWith(kByteOrderMark))
        content = content.sliced(kByteOrderMark.size());
    bool isInGroup = false;
    while (!content.isEmpty()) {
        const QByteArrayView line = takeLine(content);
        if (isComment(line))
            continue;
        if (isInGroup && line.startsWith('['))
            return true; // nothing of the later groups is of any use here
        if (isInGroup)
            readPair(line, locale);
        else if (line == kMainGroup)
            isInGroup = true;
        else
            return false;
    }
    return isInGroup;
}

void RawEntry::readPair(QByteArrayView line, const EntryLocale& locale)
{
    const qsizetype equals = line.indexOf('=');
    if (equals < 0)
        return;
    const QByteArrayView key = line.first(equals).trimmed();
    const QByteArrayView value = line.sliced(equals + 1).trimmed();
    if (!key.endsWith(']')) {
        readValue(key, value);
        return;
    }
    const qsizetype bracket = key.indexOf('[');
    LocalisedValue* target = bracket < 0 ? nullptr : localised(key.first(bracket));
    if (target)
        target->offer(value, locale.rankOf(key.sliced(bracket + 1).chopped(1)));
}

void RawEntry::readValue(QByteArrayView key, QByteArrayView value)
{
    if (LocalisedValue* target = localised(key)) {
        target->offer(value, EntryLocale::Untagged);
        return;
    }
    for (const PlainKey& plain : kPlainKeys) {
        if (key == plain.key)
            this->*plain.value = value;
    }
}

LocalisedValue* RawEntry::localised(QByteArrayView key)
{
    if (key == QByteArrayView("Name"))
        return &name;
    return key == QByteArrayView("Icon") ? &icon : nullptr;
}

bool isOneOf(QChar character, QLatin1String characters)
{
    return characters.contains(character);
}

/// Takes a command line apart: first the quotes, in the way a POSIX shell does it, which covers
/// what the rules allow and what entries in the wild do besides; then the field codes.
class CommandLine
{
public:
    CommandLine(const DesktopEntry& entry, const QString& path) : m_entry(entry), m_path(path) {}

    std::optional<QStringList> words()
    {
        const bool isSound = read();
        if (!isSound || m_words.isEmpty() || m_words.constFirst().isEmpty())
            return std::nullopt;
        return m_words;
    }

private:
    bool read();
    bool readQuoted(QChar quote);
    bool readFieldCode();
    void endWord();
    bool isAtEnd() const { return m_at >= m_entry.exec.size(); }
    QChar take() { return m_entry.exec.at(m_at++); }
    void append(const QString& text)
    {
        m_word += text;
        m_isWord = true;
    }

    const DesktopEntry& m_entry;
    const QString& m_path;
    qsizetype m_at = 0;
    QStringList m_words;
    QString m_word;
    bool m_isWord = false;  ///< something has been written into the word, be it an empty text
    bool m_hasCode = false; ///< a field code that may stand for nothing was part of the word
    bool m_hasIcon = false;
};

bool CommandLine::read()
{
    while (!isAtEnd()) {
        const QChar character = take();
        bool isSound = true;
        if (isOneOf(character, QLatin1String(" \t\n\r")))
            endWord();
        else if (isOneOf(character, QLatin1String("\"'")))
            isSound = readQuoted(character);
        else if (character == QLatin1Char('%'))
            isSound = readFieldCode();
        else if (character != QLatin1Char('\\'))
            append(character);
        else if (!isAtEnd())
            append(take());
        else
            isSound = false;
        if (!isSound)
            return false;
    }
    endWord();
    return true;
}

bool CommandLine::readQuoted(QChar quote)
{
    m_isWord = true;
    while (!isAtEnd()) {
        const QChar character = take();
        if (character == quote)
            return true;
        if (character == QLatin1Char('%')) {
            // What becomes of field codes in here is left open; most desktops resolve them.
            if (!readFieldCode())
                return false;
            continue;
        }
        const bool isEscape = quote == QLatin1Char('"') && character == QLatin1Char('\\') &&
                              !isAtEnd() && isOneOf(m_entry.exec.at(m_at), QLatin1String("\"`$\\"));
        m_word += isEscape ? take() : character;
    }
    return false;
}

bool CommandLine::readFieldCode()
{
    if (isAtEnd())
        return false;
    const QChar code = take();
    if (code == QLatin1Char('%')) {
        append(code);
        return true;
    }
    m_hasCode = true;
    if (code == QLatin1Char('c'))
        append(m_entry.name);
    else if (code == QLatin1Char('k'))
        append(m_path);
    else if (code == QLatin1Char('i'))
        m_hasIcon = true;
    else
        // Files and addresses, of which there are none, and codes that are out of use. A command
        // line with any other must not be run.
        return isOneOf(code, QLatin1String("fFuUdDnNvm"));
    return true;
}

void CommandLine::endWord()
{
    // An empty argument where a field code stood would be taken for the name of a file.
    if (m_hasIcon && m_word.isEmpty() && !m_entry.icon.isEmpty())
        m_words << QStringLiteral("--icon") << m_entry.icon;
    else if (m_isWord && !(m_hasCode && m_word.isEmpty()))
        m_words << m_word;
    m_word.clear();
    m_isWord = false;
    m_hasCode = false;
    m_hasIcon = false;
}

bool isBusNameElement(const QString& element)
{
    if (element.isEmpty() || element.at(0).isDigit())
        return false;
    return std::all_of(element.cbegin(), element.cend(), [](QChar c) {
        return (c.unicode() < 128 && c.isLetterOrNumber()) || isOneOf(c, QLatin1String("_-"));
    });
}

bool isUsable(const QString& folder)
{
    // By the rules of base directories a relative path is to be ignored.
    return folder.startsWith(QLatin1Char('/'));
}

struct CloseDirectory
{
    void operator()(DIR* directory) const { ::closedir(directory); }
};

/// Walks over one folder of entries.
class FolderWalk
{
public:
    explicit FolderWalk(QByteArray root) { m_folders.append({std::move(root), QByteArray()}); }

    QVector<DesktopEntries::File> run();

private:
    struct Folder
    {
        QByteArray path;
        QByteArray idPrefix;
    };
    enum class Kind { File, Folder, LinkedFolder };

    void read(const Folder& folder);
    void note(Folder item, Kind kind);
    static Kind kindOf(const QByteArray& path, unsigned char directoryType);

    QVector<Folder> m_folders;
    // Kept for later, so that a folder which can be reached without a link has the ids of its
    // place.
    QVector<Folder> m_linkedFolders;
    QSet<std::pair<dev_t, ino_t>> m_visited;
    QVector<DesktopEntries::File> m_files;
};

QVector<DesktopEntries::File> FolderWalk::run()
{
    for (qsizetype i = 0; i < m_folders.size() && i < kMaxFolders; ++i) {
        read(Folder(m_folders.at(i)));
        if (i + 1 == m_folders.size())
            m_folders.append(std::exchange(m_linkedFolders, {}));
    }
    std::sort(m_files.begin(), m_files.end(), [](const auto& a, const auto& b) {
        return std::tie(a.id, a.path) < std::tie(b.id, b.path);
    });
    return std::move(m_files);
}

void FolderWalk::read(const Folder& folder)
{
    const std::unique_ptr<DIR, CloseDirectory> directory(::opendir(folder.path.constData()));
    struct stat status = {};
    if (!directory || ::fstat(::dirfd(directory.get()), &status) != 0)
        return;
    const std::pair<dev_t, ino_t> identity(status.st_dev, status.st_ino);
    if (m_visited.contains(identity))
        return;
    m_visited.insert(identity);
    const qsizetype known = m_folders.size();
    const qsizetype knownLinked = m_linkedFolders.size();
    while (const dirent* item = ::readdir(directory.get())) {
        const QByteArray name(item->d_name);
        // Hidden are "." and "..", bins for the deleted, and what a package manager is writing. A
        // name that isn't UTF-8 could not be handed on as text.
        if (name.startsWith('.') || !name.isValidUtf8())
            continue;
        const QByteArray path = folder.path + '/' + name;
        note({path, folder.idPrefix + name}, kindOf(path, item->d_type));
    }
    const auto byPath = [](const Folder& a, const Folder& b) { return a.path < b.path; };
    std::sort(m_folders.begin() + known, m_folders.end(), byPath);
    std::sort(m_linkedFolders.begin() + knownLinked, m_linkedFolders.end(), byPath);
}

void FolderWalk::note(Folder item, Kind kind)
{
    if (kind == Kind::File) {
        // Whatever it is, a link to nowhere included, it takes the id.
        if (item.idPrefix.endsWith(kEntrySuffix))
            m_files.append({item.idPrefix, item.path});
        return;
    }
    item.idPrefix += '-';
    (kind == Kind::Folder ? m_folders : m_linkedFolders).append(item);
}

FolderWalk::Kind FolderWalk::kindOf(const QByteArray& path, unsigned char directoryType)
{
    struct stat status = {};
    if (directoryType == DT_UNKNOWN && ::lstat(path.constData(), &status) == 0)
        directoryType = static_cast<unsigned char>(IFTODT(status.st_mode));
    if (directoryType == DT_DIR)
        return Kind::Folder;
    const bool leadsToFolder = directoryType == DT_LNK && ::stat(path.constData(), &status) == 0 &&
                               S_ISDIR(status.st_mode);
    return leadsToFolder ? Kind::LinkedFolder : Kind::File;
}

} // namespace

EntryLocale::EntryLocale(QByteArrayView name)
{
    const qsizetype at = name.indexOf('@');
    const QByteArrayView modifier = at < 0 ? QByteArrayView() : name.sliced(at + 1);
    QByteArrayView language = at < 0 ? name : name.first(at);
    const qsizetype dot = language.indexOf('.');
    if (dot >= 0)
        language = language.first(dot);
    const qsizetype underscore = language.indexOf('_');
    const QByteArrayView country =
        underscore < 0 ? QByteArrayView() : language.sliced(underscore + 1);
    if (underscore >= 0)
        language = language.first(underscore);
    if (language == QByteArrayView("C") || language == QByteArrayView("POSIX"))
        return;
    m_language = language.toByteArray();
    m_country = country.toByteArray();
    m_modifier = modifier.toByteArray();
}

EntryLocale EntryLocale::ofEnvironment()
{
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QByteArray name = qgetenv(variable);
        if (!name.isEmpty())
            return EntryLocale(name);
    }
    return {};
}

int EntryLocale::rankOf(QByteArrayView tag) const
{
    // Nearly all tags are of other languages: those are told by the first bytes.
    if (m_language.isEmpty() || !tag.startsWith(m_language))
        return NoMatch;
    const EntryLocale wanted(tag);
    const bool fitsCountry = wanted.m_country.isEmpty() || wanted.m_country == m_country;
    const bool fitsModifier = wanted.m_modifier.isEmpty() || wanted.m_modifier == m_modifier;
    if (wanted.m_language != m_language || !fitsCountry || !fitsModifier)
        return NoMatch;
    return 1 + (wanted.m_country.isEmpty() ? 0 : 2) + (wanted.m_modifier.isEmpty() ? 0 : 1);
}

std::optional<DesktopEntry> DesktopEntry::parse(QByteArrayView content, const EntryLocale& locale)
{
    RawEntry raw;
    if (!raw.read(content, locale) || raw.type != kApplicationType)
        return std::nullopt;
    DesktopEntry entry;
    entry.name = textOf(raw.name.raw);
    entry.icon = textOf(raw.icon.raw);
    entry.exec = textOf(raw.exec);
    entry.tryExec = textOf(raw.tryExec);
    entry.workingDirectory = textOf(raw.path);
    entry.onlyShowIn = listOf(raw.onlyShowIn);
    entry.notShowIn = listOf(raw.notShowIn);
    entry.isHidden = isTrue(raw.hidden);
    entry.isNotDisplayed = isTrue(raw.noDisplay);
    entry.isTerminal = isTrue(raw.terminal);
    entry.isBusActivatable = isTrue(raw.dbusActivatable);
    return entry;
}

bool DesktopEntry::isShownIn(const QStringList& desktops) const
{
    for (const QString& desktop : desktops) {
        if (onlyShowIn.contains(desktop))
            return true;
        if (notShowIn.contains(desktop))
            return false;
    }
    return onlyShowIn.isEmpty();
}

std::optional<QStringList> DesktopEntry::command(const QString& path) const
{
    return CommandLine(*this, path).words();
}

QString DesktopEntry::busName(const QString& path)
{
    const QString name = QFileInfo(path).completeBaseName();
    const QStringList elements = name.split(QLatin1Char('.'));
    const bool isValid = elements.size() > 1 && name.size() <= kLongestBusName &&
                         std::all_of(elements.cbegin(), elements.cend(), isBusNameElement);
    return isValid ? name : QString();
}

QStringList DesktopEntries::dataFolders()
{
    QString own = qEnvironmentVariable("XDG_DATA_HOME");
    if (!isUsable(own))
        own = QDir::homePath() + QLatin1String("/.local/share");
    QStringList shared = qEnvironmentVariable("XDG_DATA_DIRS").split(QLatin1Char(':'));
    shared.removeIf([](const QString& folder) { return !isUsable(folder); });
    if (shared.isEmpty())
        shared = QStringList{QStringLiteral("/usr/local/share"), QStringLiteral("/usr/share")};
    QStringList all = QStringList{own} + shared;
    for (QString& folder : all)
        folder = QDir::cleanPath(folder);
    all.removeDuplicates();
    return all;
}

QVector<DesktopEntries::File> DesktopEntries::filesIn(const QString& dataFolder)
{
    return FolderWalk(QFile::encodeName(dataFolder + QLatin1String("/applications"))).run();
}

QString DesktopEntries::pathOfId(const QString& id)
{
    const QByteArray wanted = QFile::encodeName(id);
    for (const QString& dataFolder : dataFolders()) {
        const QVector<File> files = filesIn(dataFolder);
        const auto found = std::find_if(files.cbegin(), files.cend(),
                                        [&wanted](const File& file) { return file.id == wanted; });
        if (found != files.cend())
            return QFile::decodeName(found->path);
    }
    return {};
}

bool DesktopEntries::readFile(const QByteArray& path, QByteArray& content)
{
    // Asked before opening too, since to open a device is to do something to it.
    struct stat status = {};
    if (::stat(path.constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    const Platform::FileDescriptor file(
        ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > MaxFileBytes)
        return false;
    content.resize(status.st_size);
    const ssize_t count = ::read(file.get(), content.data(), size_t(status.st_size));
    if (count < 0)
        return false;
    content.truncate(count);
    return true;
}

bool DesktopEntries::isProgram(const QString& program)
{
    if (program.startsWith(QLatin1Char('/'))) {
        const QFileInfo file(program);
        return file.isFile() && file.isExecutable();
    }
    // A path that begins nowhere would be looked up below each folder of the search path.
    return !program.isEmpty() && !program.contains(QLatin1Char('/')) &&
           !QStandardPaths::findExecutable(program).isEmpty();
}
