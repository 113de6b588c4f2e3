// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>

class QWidget;

/// Where the keyboard goes inside a part of a page, and what takes keys for itself. Controls that
/// are hidden or disabled within that part don't count. GUI thread only.
namespace FocusSearch
{

/// What can have the focus below `root`, in the order of the tree. Of a group of buttons of which
/// one is checked these are all, though Tab stops at the checked one alone.
QList<QWidget*> focusables(const QWidget* root);

/// Where Tab stops below `root`, in the order of the tree.
QList<QWidget*> tabStops(const QWidget* root);

/// The control below `root` to begin with: the first tab stop, or better the first one that is a
/// checked button, which is the present choice. Null if there is none.
QWidget* firstControl(const QWidget* root);

/// True for a field that text is typed into, where Backspace deletes a character.
bool isTextInput(const QWidget* widget);

/// True for a list, a tree or a table, and for what is inside one: the arrows are its own.
bool isInItemView(const QWidget* widget);

} // namespace FocusSearch
