// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <QString>

/// The theme of icons that the desktop has chosen, or one that is installed where no desktop has.
class IconTheme
{
public:
    IconTheme() = delete;

    /// The icon of that name; null if there is none, or none in a format that can be read. GUI
    /// thread.
    static QIcon icon(const QString& name);
};
