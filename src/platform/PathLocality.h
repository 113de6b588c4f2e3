// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace Platform
{

/// Whether a path can be read without asking another machine, or a program that may never answer:
/// false for the name of a share, for what lies on a mount or drive of the network, and for an
/// empty path. A file system that the home directory lies on counts as local, since it is asked
/// all the time. Nothing needs to stand at the path.
///
/// Never waits: where the path may lead away from this machine it isn't touched. On Linux links on
/// the way are followed as far as they are local, on Windows they aren't looked at.
///
/// Any thread. A few system calls, so a caller that asks at every paint keeps the answer.
/// \param path absolute, or meant from the current directory; one of a resource is local.
bool isLocalPath(const QString& path);

} // namespace Platform
