// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FreshProcess.h"

#include "TestHome.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>

#include <cstring>

namespace
{

constexpr char kTaskSwitch[] = "--fresh-process-task";
constexpr int kTimeoutMs = 60000;

// Positions in the child's arguments. The identity comes along, because it decides where the data
// directory is.
constexpr int kSwitchIndex = 1;
constexpr int kOrganisationIndex = 2;
constexpr int kApplicationIndex = 3;
constexpr int kTaskIndex = 4;
constexpr int kFirstArgumentIndex = 5;

constexpr char kShell[] = "/bin/sh";

QStringList commandLine(const QString& task, const QStringList& arguments)
{
    return QStringList{QCoreApplication::applicationFilePath(), kTaskSwitch,
                       QCoreApplication::organizationName(), QCoreApplication::applicationName(),
                       task} +
           arguments;
}

void startCommand(QProcess& process, const QStringList& command)
{
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(command.first(), command.mid(1));
}

FreshProcess::Outcome runCommand(const QStringList& command)
{
    QProcess process;
    startCommand(process, command);
    FreshProcess::Outcome outcome;
    outcome.hasExited =
        process.waitForFinished(kTimeoutMs) && process.exitStatus() == QProcess::NormalExit;
    outcome.exitCode = process.exitCode();
    outcome.output = process.readAllStandardOutput().replace("\r\n", "\n");
    return outcome;
}

} // namespace

bool FreshProcess::isTask(int argc, char** argv)
{
    return argc > kTaskIndex && std::strcmp(argv[kSwitchIndex], kTaskSwitch) == 0;
}

int FreshProcess::runTask(int argc, char** argv, const QHash<QString, Task>& tasks)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QCoreApplication::setOrganizationName(arguments.at(kOrganisationIndex));
    QCoreApplication::setApplicationName(arguments.at(kApplicationIndex));
    TestHome::enterTestMode();
    const Task task = tasks.value(arguments.at(kTaskIndex), nullptr);
    if (!task)
        qFatal("no such task: %s", argv[kTaskIndex]);
    return task(arguments.mid(kFirstArgumentIndex));
}

void FreshProcess::start(QProcess& process, const QString& task, const QStringList& arguments)
{
    startCommand(process, commandLine(task, arguments));
}

FreshProcess::Outcome FreshProcess::run(const QString& task, const QStringList& arguments)
{
    return runCommand(commandLine(task, arguments));
}

QStringList FreshProcess::linesOf(const QString& task, const QStringList& arguments)
{
    const Outcome outcome = run(task, arguments);
    if (!outcome.hasExited || outcome.exitCode != 0)
        qFatal("the task \"%s\" did not end well", qPrintable(task));
    return QString::fromUtf8(outcome.output).split('\n', Qt::SkipEmptyParts);
}

bool FreshProcess::canLimitFileSize()
{
    // The root tells a system that only emulates the path from one that has the shell.
    return QDir::rootPath() == "/" && QFileInfo::exists(kShell);
}

FreshProcess::Outcome FreshProcess::runWithFullDisk(int blocks, const QString& task,
                                                    const QStringList& arguments)
{
    // Without the trap the limit ends the process instead of failing the write.
    const QString script = QString("trap '' XFSZ; ulimit -f %1 && exec \"$0\" \"$@\"").arg(blocks);
    return runCommand(QStringList{kShell, "-c", script} + commandLine(task, arguments));
}
