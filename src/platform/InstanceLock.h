// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace Platform
{

/// Takes the named lock of this user for the rest of the process's life. True if this process now
/// holds it; false if another one does, or if the lock could not be made. The system frees it when
/// the process ends, however it ends.
[[nodiscard]] bool acquireInstanceLock(const QString& name);

} // namespace Platform
