// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ShellLaunch.h"

#include "DesktopEntry.h"
#include "SessionBus.h"

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

#include <unistd.h>

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
    return FoundEntry{path, std::move(*entry)};
}

/// The desktop's launcher at work. Its end says whether it has started the program. One that is
/// still at it when this object goes is left alone.
class DesktopLauncher : public QProcess
{
public:
    explicit DesktopLauncher(QObject* parent) : QProcess(parent)
    {
        // No pipes: the launched program inherits its channels, and has them for longer than this
        // one lives.
        setProcessChannelMode(QProcess::ForwardedChannels);
        setInputChannelMode(QProcess::ForwardedInputChannel);
        // What ends this program's session, such as a terminal that closes, is not to end others.
        setChildProcessModifier([] { ::setsid(); });
    }

    ~DesktopLauncher() override
    {
        // Of a process that it knows to be running the base class complains, and kills it.
        setProcessState(QProcess::NotRunning);
    }
};

/// Whether the desktop's launcher can do justice to an entry. What it is known to refuse goes the
/// program's own road, on which a failure is seen at once.
///
/// The launcher is given the content of the file rather than its place, so it has nothing to put
/// for %k. And it starts nothing in a terminal but one of the few that it knows, to which neither
/// $TERMINAL nor Debian's alternative belongs.
bool suitsDesktopLauncher(const FoundEntry& found)
{
    const DesktopEntry& entry = found.entry;
    const auto isMissing = [](const QString& program) {
        return !program.isEmpty() && !DesktopEntries::isProgram(program);
    };
    const std::optional<QStringList> command = entry.command(found.path);
    return !entry.isTerminal && command && !isMissing(command->constFirst()) &&
           !isMissing(entry.tryExec) && !entry.exec.contains(QLatin1String("%k")) &&
           (entry.workingDirectory.isEmpty() || QFileInfo(entry.workingDirectory).isDir());
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

void reportFailure(const FoundEntry& found, const QString& reason)
{
    qWarning() << "Gagal menjalankan aplikasi:" << found.path << reason;
}

/// What becomes of a launch that the desktop's launcher wouldn't do, for reasons that are its own:
/// it is stricter about the form of a file, and in early versions it launches nothing at all.
void onLauncherFailed(const FoundEntry& found, const QString& reason)
{
    if (!startByCommandLine(found.entry, found.path))
        reportFailure(found, reason);
}

/// \returns false if there is no such launcher. Whether it does its work is told later.
bool startByDesktopLauncher(const FoundEntry& found)
{
    if (!suitsDesktopLauncher(found) || !DesktopEntries::isProgram(kDesktopLauncher))
        return false;
    auto* launcher = new DesktopLauncher(QCoreApplication::instance());
    QObject::connect(launcher, &QProcess::finished, launcher,
                     [launcher, found](int exitCode, QProcess::ExitStatus status) {
                         launcher->deleteLater();
                         if (status != QProcess::NormalExit || exitCode != 0)
                             onLauncherFailed(found, kDesktopLauncher + QLatin1Char(' ') +
                                                         QString::number(exitCode));
                     });
    QObject::connect(launcher, &QProcess::errorOccurred, launcher,
                     [launcher, found](QProcess::ProcessError error) {
                         if (error != QProcess::FailedToStart) // the others come to an end as well
                             return;
                         launcher->deleteLater();
                         onLauncherFailed(found, launcher->errorString());
                     });
    launcher->start(kDesktopLauncher, {QStringLiteral("launch"), found.path});
    return true;
}

bool startWithoutBus(const FoundEntry& found)
{
    return startByDesktopLauncher(found) || startByCommandLine(found.entry, found.path);
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

/// What becomes of an activation that was turned down: the entry's other ways are left.
void onActivated(const QDBusMessage& reply, const FoundEntry& found)
{
    if (reply.type() != QDBusMessage::ErrorMessage)
        return;
    const QDBusError::ErrorType type = QDBusError(reply).type();
    const bool isSlow =
        type == QDBusError::NoReply || type == QDBusError::Timeout || type == QDBusError::TimedOut;
    // One that is slow to answer may yet come up, and then there would be two of it.
    if (isSlow || !startWithoutBus(found))
        reportFailure(found, reply.errorMessage());
}

/// \returns false if there is nobody to ask. Whether the application comes up is told later.
bool startByBus(const FoundEntry& found)
{
    const QString busName = DesktopEntry::busName(found.path);
    if (!found.entry.isBusActivatable || busName.isEmpty() || !hasSessionBus())
        return false;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(activationOf(busName)),
                                                QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, found] {
        onActivated(watcher->reply(), found);
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
    // An entry that asks for the bus may have a command line as well, for desktops without one.
    return startByBus(*found) || startWithoutBus(*found);
}
