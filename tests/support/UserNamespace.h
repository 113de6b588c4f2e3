// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FreshProcess.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Runs tasks as the superuser of a user namespace of their own, where they have limits of their
/// own and may mount. Linux only; some systems forbid such namespaces.
namespace UserNamespace
{

/// Runs a task of `FreshProcess` in a new namespace. Waits for 30 s at most.
/// \param further namespaces that the task gets as well, as `CLONE_` flags.
/// \returns a failure also if the system forbids it.
FreshProcess::Outcome run(const QString& task, const QStringList& arguments, int further = 0);

/// Writes a short text to a file of the system in one go. \returns false if it isn't taken whole.
bool write(const char* path, const QByteArray& text);

} // namespace UserNamespace
