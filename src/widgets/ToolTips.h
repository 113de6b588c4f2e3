// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Texts for tooltips. GUI thread only.
namespace ToolTips
{

/// What a tooltip shows of a longer text, in characters; more would only leave the screen.
constexpr qsizetype MaxLength = 1024;

/// `text` for a tooltip, so that it shows what somebody else has named, a file for one, as it
/// stands: a tooltip would take what looks like markup for that.
QString plain(const QString& text);

} // namespace ToolTips
