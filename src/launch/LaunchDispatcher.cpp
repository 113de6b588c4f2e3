// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "LaunchDispatcher.h"

#include "AutoQuitBlocker.h"
#include "CustomMessageBox.h"
#include "Localization.h"
#include "ShellLaunch.h"
#include "Types.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QProcess>
#include <QUrl>

namespace
{

void showError(QWidget* parent, const QString& message)
{
    const AutoQuitBlocker blocker;
    CustomMessageBox::critical(parent, QStringLiteral("Error"), message);
}

struct Command
{
    QString program;
    QStringList arguments;

    /// \returns false if there is no such program or the system refuses to start it.
    bool start() const { return QProcess::startDetached(program, arguments, QString(), nullptr); }
};

/// A command line taken apart; one without any word is taken for the name of a program, which then
/// fails to start.
Command parseCommand(const QString& line)
{
    QStringList arguments = QProcess::splitCommand(line);
    const QString program = arguments.isEmpty() ? line : arguments.takeFirst();
    return {program, arguments};
}

void openFile(const QString& path)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

void openTypedAddress(const QString& text)
{
    QDesktopServices::openUrl(QUrl::fromUserInput(text));
}

bool isWebAddress(const QString& text)
{
    return text.startsWith(QLatin1String("http://"), Qt::CaseInsensitive) ||
           text.startsWith(QLatin1String("https://"), Qt::CaseInsensitive);
}

/// The target on a line of a "Bulk" item, which may have been written as a list with semicolons.
QString bulkTarget(const QString& line)
{
    QString path = line.trimmed();
    if (path.endsWith(QLatin1Char(';')))
        path.chop(1);
    return path;
}

void runBulkTarget(const QString& path, QWidget* parent)
{
    if (isWebAddress(path)) {
        QDesktopServices::openUrl(QUrl(path));
        return;
    }
    const Command command = parseCommand(path);
    if (command.program.endsWith(QLatin1String(".exe"), Qt::CaseInsensitive)) {
        if (!command.start())
            showError(parent, Tr::t("main.err_exec_title").arg(path));
        return;
    }
    // A file of that name comes before the address it may look like ("notes.txt", "orlimo.app").
    if (!QFileInfo::exists(path) && path.contains(QLatin1Char('.')))
        openTypedAddress(path);
    else
        openFile(path);
}

void runBulk(const QString& value, QWidget* parent)
{
    const QStringList lines = value.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QString path = bulkTarget(line);
        if (!path.isEmpty())
            runBulkTarget(path, parent);
    }
}

/// Passes on whether something could be started, once the user knows of a failure.
bool reportStart(bool started, QWidget* parent)
{
    if (!started)
        showError(parent, Tr::t("main.err_exec_msg"));
    return started;
}

} // namespace

bool LaunchDispatcher::execute(const LauncherElement& el, QWidget* parent)
{
    if (el.shortcutType == ItemType::Snippet) {
        QGuiApplication::clipboard()->setText(el.value);
        return true;
    }
    if (el.shortcutType == ItemType::Bulk) {
        runBulk(el.value, parent);
        return true;
    }
    if (el.shortcutType == ItemType::File) {
        openFile(el.value);
        return true;
    }
    if (el.shortcutType == ItemType::Url) {
        openTypedAddress(el.value);
        return true;
    }
    if (el.shortcutType == ItemType::ShellItem)
        return reportStart(Platform::launchShellItem(el.value), parent);
    // Applications, and every type that a newer or a broken document may bring along.
    return reportStart(parseCommand(el.value).start(), parent);
}
