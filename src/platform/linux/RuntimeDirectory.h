// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// The directory of this user alone for what lasts as long as the programs that use it: locks and
/// sockets. That of the session where there is one that others can't enter, whether the environment
/// names it or not; else one among the user's data, made if need be. Never one in a directory that
/// users share, where somebody else could take the name first. Two processes of one user get the
/// same, unless the environment names different ones to them or the session's comes or goes between
/// their starts, as with a login. Empty if there is none.
QString runtimeDirectory();
