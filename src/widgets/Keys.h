// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <Qt>

/// What keys mean, the same in every window. Pure: any thread.
namespace Keys
{

/// True for the Return key and the Enter key of the number pad.
constexpr bool isEnter(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

/// True for the keys that lead back, or out of a dialog: Esc and, outside text fields, Backspace.
constexpr bool isBack(int key)
{
    return key == Qt::Key_Escape || key == Qt::Key_Backspace;
}

/// `text` for a control that takes "&" for the mark of a shortcut key, so that it shows every "&"
/// and gets no shortcut. For names, which somebody else has given.
inline QString withoutShortcut(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace Keys
