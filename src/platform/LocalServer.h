// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

namespace Platform
{

/// Where this user's local server of that name may lie, in the form that `QLocalServer` and
/// `QLocalSocket` take, the best place first; of these the first that no other user holds is meant.
/// Empty if the user has no directory to put it in.
QStringList localServerPlaces(const QString& name);

/// True if a server of another user lies at `place`. It may be connected to for a moment and left
/// again without a word.
bool isHeldByAnotherUser(const QString& place);

} // namespace Platform
