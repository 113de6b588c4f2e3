// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Localization.h"

#include <optional>

class QWidget;

/// The question for the language, which several places put. GUI thread only.
class LanguageMenu
{
public:
    LanguageMenu() = delete;

    /// Opens a menu of all languages, each in its own name, below `button` and waits for its end;
    /// no window of ours hides meanwhile. Changes nothing. The focus is on `button` afterwards, if
    /// that still lives. \returns the choice, also if it is the present language; nothing if the
    /// user chose none.
    static std::optional<Lang> ask(QWidget* button);
};
