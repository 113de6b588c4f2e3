// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QApplication>
#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QTest>

class QProcess;

/// Starts the running test binary once more, to do one task in a process whose statics are fresh
/// and which may be killed. The child shares the private home of its parent.
///
/// A test that uses it ends in a `main` of its own:
///
///     int main(int argc, char** argv)
///     {
///         return FreshProcess::main<MyTest>(argc, argv, {{"name of the task", function}});
///     }
class FreshProcess
{
public:
    /// What the child does; the result is its exit code. A core application exists.
    using Task = int (*)(const QStringList& arguments);

    struct Outcome
    {
        bool hasExited = false; ///< false: it didn't start, crashed or hung
        int exitCode = -1;
        QByteArray output; ///< standard output, lines ended by a line feed alone
    };

    FreshProcess() = delete;

    /// The body of `main`: does the task that the arguments name, else runs the tests of a `Test`
    /// after its public `initMain()`, as QTEST_MAIN does.
    template <typename Test, typename Application = QApplication>
    static int main(int argc, char** argv, const QHash<QString, Task>& tasks = {})
    {
        if (isTask(argc, argv))
            return runTask(argc, argv, tasks);
        Test::initMain();
        const Application application(argc, argv);
        Test test;
        return QTest::qExec(&test, argc, argv);
    }

    /// The same by halves, for a `main` that runs no tests.
    static bool isTask(int argc, char** argv);
    static int runTask(int argc, char** argv, const QHash<QString, Task>& tasks);

    /// Starts the task and returns at once.
    static void start(QProcess& process, const QString& task, const QStringList& arguments);

    /// Starts the task and waits for its end.
    static Outcome run(const QString& task, const QStringList& arguments);

    /// Runs the task and gives the lines that it printed, without empty ones. Fatal if it fails.
    static QStringList linesOf(const QString& task, const QStringList& arguments);

    /// True where there is a shell that limits the size of files.
    static bool canLimitFileSize();

    /// As `run`, but no file can grow beyond so many blocks of 512 bytes: to the task the disk is
    /// full in the middle of a write.
    static Outcome runWithFullDisk(int blocks, const QString& task, const QStringList& arguments);
};
