// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QtGlobal>

/// The one sink of Qt's message functions: appends a line of time stamp, level and text to
/// "debug.log" in the data directory, and ends the process after a fatal message. A message that
/// comes while the file can't be opened is dropped, and the next one tries again. Takes no lock:
/// logging belongs to the GUI thread. Install with `qInstallMessageHandler`.
void fileMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& msg);
