// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

class QWidget;
struct LauncherElement;

/// Runs an item, whatever its type. Everything that is launched goes this way. GUI thread only.
class LaunchDispatcher
{
public:
    LaunchDispatcher() = delete;

    /// \param el must outlive the call: an error dialog runs an event loop in here, so hand over a
    /// copy and no reference into a model that may change meanwhile.
    /// \param parent owner of an error dialog; may be null.
    /// \returns false if a program could not be started, which the user has been told then. A
    /// failed address, file, clipboard or line of a "Bulk" item still counts as done.
    static bool execute(const LauncherElement& el, QWidget* parent);
};
