// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Gives a test process directories of its own, so that no test reads or leaves anything in those
/// of whoever runs it.
class TestHome
{
public:
    TestHome() = delete;

    /// Points HOME, XDG_* and the run-time directory into a fresh temporary directory, selects the
    /// offscreen platform and sets the application's identity. Call it from `initMain()`, before
    /// the application object exists. The directory goes with the process.
    ///
    /// What the program keeps is kept apart on every system, the home directory itself only where
    /// the system takes it from the environment; Windows doesn't.
    static void install();

    /// The same for a test that makes, lists or removes something in the home directory itself.
    /// Ends the run with a fatal message unless that is the directory of `install()`, or one
    /// without a single file in it, which nobody lives in.
    static void installWithHome();

    /// Where the system doesn't take the data directory from the environment, keeps this process to
    /// Qt's directories for tests. `install()` does so too; this is for the processes that a test
    /// starts, which inherit the environment alone.
    static void enterTestMode();

    /// The temporary directory; empty before `install()`.
    static QString path();

    /// The directory in which the program under test keeps its state; created if absent.
    static QString dataDir();

    /// Writes the settings of somebody who has had the welcome, so that the main window shows
    /// without it, and `others`, groups of their own as in the file. Without this call the profile
    /// is a new user's.
    static void writeSettings(const QByteArray& others = {});

    /// Writes `content` to `fileName` in `dataDir()`, replacing what was there, and returns the
    /// full path. Ends the test run with a fatal message if that fails.
    static QString writeDataFile(const QString& fileName, const QByteArray& content);
};
