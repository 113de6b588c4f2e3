// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

class QWidget;

/// The question for the accent colour, which several places put. GUI thread only.
class AccentPicker
{
public:
    AccentPicker() = delete;

    /// Lets the user choose a colour above the window of `parent` and waits for the end of that; no
    /// window of ours hides meanwhile. Stores nothing. `parent` itself may be gone afterwards.
    /// \param initialHex the colour to open on; empty for the present one.
    /// \returns a name that Qt has for a colour, as typed. Nothing if the user cancelled, or if the
    /// text named no colour, which the user then has been told.
    static std::optional<QString> ask(QWidget* parent, const QString& initialHex = QString());
};
