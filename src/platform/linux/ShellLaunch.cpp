// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "platform/ShellLaunch.h"

#include "platform/linux/DesktopEntry.h"
#include "platform/linux/SessionBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <algorithm>
#include <array>

namespace
{

constexpr QLatin1String kEntrySuffix(".desktop");
constexpr QLatin1String kDesktopLauncher("gio");
constexpr QLatin1String kApplicationInterface("org.freedesktop.Application");

struct Terminal
{
    QLatin1String program;
    QLatin1String option; ///< what the command comes behind, one argument for each word
};

// In the order in which they are tried.
constexpr std::array kTerminals{
    Terminal{QLatin1String("x-terminal-emulator"), QLatin1String("-e")},
    Terminal{QLatin1String("xterm"), QLatin1String("-e")},
    Terminal{QLatin1String("gnome-terminal"), QLatin1String("--")},
    Terminal{QLatin1String("konsole"), QLatin1String("-e")},
    Terminal{QLatin1String("xfce4-terminal"), QLatin1String("-x")},
    Terminal{QLatin1String("mate-terminal"), QLatin1String("-x")},
};

/// The entry that a value names, and where it lies.
struct FoundEntry
{
    QString path;
    DesktopEntry entry;
    bool isStrictlyFormed = false;
};

QString pathOf(const QString& value)
{
    if (!value.endsWith(kEntrySuffix))
        return {};
    return value.contains(QLatin1Char('/')) ? QFileInfo(value).absoluteFilePath()
                                            : DesktopEntries::pathOfId(value);
}

std::optional<FoundEntry> findEntry(const QString& value)
{
    const QString path = pathOf(value);
    QByteArray content;
    if (path.isEmpty() || !DesktopEntries::readFile(QFile::encodeName(path), content))
        return std::nullopt;
    std::optional<DesktopEntry> entry = DesktopEntry::parse(content, EntryLocale::ofEnvironment());
    if (!entry)
        return std::nullopt;
    return FoundEntry{path, std::move(*entry), DesktopEntry::isStrictlyFormed(content)};
}

/// Whether the desktop's launcher is sure to do justice to an entry. It is started detached, so
/// nobody would learn that it refused one; what it can't do goes the program's own road, on which a
/// failure is seen.
///
/// The launcher refuses a file that isn't strictly formed, one whose program or "TryExec" is
/// missing or whose folder is, and one for a terminal unless it finds one of the few that it knows,
/// to which neither $TERMINAL nor Debian's alternative belongs. And it is given the content of the
/// file rather than its place, so it has nothing to put for %k and calls nobody on the message bus.
bool suitsDesktopLauncher(const FoundEntry& found)
{
    const DesktopEntry& entry = found.entry;
    const auto isMissing = [](const QString& program) {
        return !program.isEmpty() && !DesktopEntries::isProgram(program);
    };
    const std::optional<QStringList> command = entry.command(found.path);
    return found.isStrictlyFormed && !entry.isTerminal && command &&
           !isMissing(command->constFirst()) && !isMissing(entry.tryExec) &&
           !entry.exec.contains(QLatin1String("%k")) &&
           (entry.workingDirectory.isEmpty() || QFileInfo(entry.workingDirectory).isDir());
}

bool startWithDesktopLauncher(const QString& path)
{
    return QProcess::startDetached(kDesktopLauncher, {QStringLiteral("launch"), path}, QString(),
                                   nullptr);
}

QLatin1String optionOf(const QString& terminal)
{
    const QString name = QFileInfo(terminal).fileName();
    const auto* known = std::find_if(kTerminals.cbegin(), kTerminals.cend(),
                                     [&name](const Terminal& t) { return name == t.program; });
    return known != kTerminals.cend() ? known->option : QLatin1String("-e"); // what most understand
}

/// The command that runs others in a terminal, up to and with the option; empty if there is none.
QStringList terminalCommand()
{
    const QStringList chosen = QProcess::splitCommand(qEnvironmentVariable("TERMINAL"));
    if (!chosen.isEmpty() && DesktopEntries::isProgram(chosen.constFirst()))
        return chosen + QStringList{optionOf(chosen.constFirst())};
    for (const Terminal& terminal : kTerminals) {
        if (DesktopEntries::isProgram(terminal.program))
            return {terminal.program, terminal.option};
    }
    return {};
}

/// Whether it can be told at once that there is no such program. A path that begins nowhere counts
/// from the folder in which the program is to run.
bool isKnownToBeMissing(const QString& program)
{
    const bool isRelativePath =
        program.contains(QLatin1Char('/')) && !program.startsWith(QLatin1Char('/'));
    return !isRelativePath && !DesktopEntries::isProgram(program);
}

bool startByCommandLine(const DesktopEntry& entry, const QString& path)
{
    std::optional<QStringList> command = entry.command(path);
    // Asked here because a terminal would open whether or not there is anything to run in it.
    if (!command || isKnownToBeMissing(command->constFirst()))
        return false;
    if (entry.isTerminal) {
        const QStringList terminal = terminalCommand();
        if (terminal.isEmpty())
            return false;
        command = terminal + *command;
    }
    const QString program = command->takeFirst();
    return QProcess::startDetached(program, *command, entry.workingDirectory, nullptr);
}

/// The object of an application stands at its name, with slashes.
QDBusMessage activationOf(const QString& busName)
{
    QString object = QLatin1Char('/') + busName;
    object.replace(QLatin1Char('.'), QLatin1Char('/')).replace(QLatin1Char('-'), QLatin1Char('_'));
    QDBusMessage request = QDBusMessage::createMethodCall(busName, object, kApplicationInterface,
                                                          QStringLiteral("Activate"));
    request << QVariantMap();
    return request;
}

/// What becomes of an activation that was turned down: the command line is the second way.
void onActivated(const QDBusMessage& reply, const DesktopEntry& entry, const QString& path)
{
    if (reply.type() != QDBusMessage::ErrorMessage)
        return;
    // One that is slow to answer may yet come up, and then there would be two of it.
    const QDBusError::ErrorType type = QDBusError(reply).type();
    if (type == QDBusError::NoReply || type == QDBusError::Timeout || type == QDBusError::TimedOut)
        return;
    if (!startByCommandLine(entry, path))
        qWarning() << "Gagal menjalankan aplikasi:" << path << reply.errorMessage();
}

/// \returns false if there is nobody to ask. Whether the application comes up is told later.
bool startByBus(const DesktopEntry& entry, const QString& path)
{
    const QString busName = DesktopEntry::busName(path);
    if (!entry.isBusActivatable || busName.isEmpty() || !hasSessionBus())
        return false;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(activationOf(busName)),
                                                QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, entry, path] {
        onActivated(watcher->reply(), entry, path);
        watcher->deleteLater();
    });
    return true;
}

} // namespace

bool Platform::launchShellItem(const QString& value)
{
    const std::optional<FoundEntry> found = findEntry(value);
    if (!found)
        return false;
    if (suitsDesktopLauncher(*found) && startWithDesktopLauncher(found->path))
        return true;
    return startByBus(found->entry, found->path) || startByCommandLine(found->entry, found->path);
}
