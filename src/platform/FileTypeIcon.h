// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <QString>

namespace Platform
{

/// The icon that the desktop gives to files of a type, or to folders; null if it has none. Touches
/// no file of that type: the name alone decides. GUI thread.
/// \param suffix with its dot and in lower case; empty for a file without one. Ignored for folders.
QIcon fileTypeIcon(const QString& suffix, bool isDir);

} // namespace Platform
