// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QtGlobal>

/// The one sink of Qt's message functions: appends a line of time stamp, level and text to
/// "debug.log" in the data directory, in one write, and ends the process after a fatal message.
/// What would break the line is escaped. A message that comes while the file can't be opened is
/// dropped, and the next one tries again. Any thread: Qt's own log too. Install with
/// `qInstallMessageHandler`.
void fileMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& msg);

/// Lets the next message choose the file anew. To be called when the program has got its name: what
/// Qt logs before lies elsewhere, and the rest shall not.
void reopenLog();
