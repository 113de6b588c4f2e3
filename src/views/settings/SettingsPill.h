// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QPushButton;

/// The buttons at the end of the rows of settings.
namespace SettingsPill
{

inline constexpr int Height = 36; ///< px

/// A secondary button, still without an owner.
/// \param objectName unique in the window: by it the focus returns after a rebuild.
QPushButton* make(const QString& text, const QString& objectName);

/// Gives a button with a look of its own the measures of these.
void shape(QPushButton* button, const QString& objectName);

} // namespace SettingsPill
