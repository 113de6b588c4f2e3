// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace Platform
{

/// The path in the form that the system takes as it stands: neither does it end after 260
/// characters, nor are names changed that Windows itself wouldn't give ("aux", "name."), but other
/// systems do. Only for system calls, never for a path that goes on.
/// \param path absolute; a relative one comes back unchanged.
QString extendedPath(const QString& path);

} // namespace Platform
