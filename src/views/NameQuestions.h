// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Types.h"

#include <QString>

#include <optional>

class QWidget;

/// What is asked and told about the names of sections and templates. The dialogs belong to the
/// window of whoever asks: a rebuild deletes the widgets in a window while they wait, but never
/// the window. GUI thread only; keep an `AutoQuitBlocker` meanwhile.
namespace NameQuestions
{

/// What is named in the dialog, and what it says about it: translation keys.
struct Naming
{
    const char* titleKey;
    const char* labelKey;
    const char* placeholderKey;
    const char* emptyErrKey;
};

constexpr Naming sectionNaming(const char* titleKey)
{
    return {titleKey, "dialog.lbl_section_name", "dialog.section_name_placeholder",
            "dialog.err_section_empty"};
}

constexpr Naming templateNaming(const char* titleKey)
{
    return {titleKey, "template.lbl_name", "template.name_placeholder", "template.err_name_empty"};
}

struct NameAndIcon
{
    QString name;
    uint icon = SectionTemplate::DefaultIcon; ///< codepoint
    bool operator==(const NameAndIcon&) const = default;
};

/// What dialogs are made children of; null for null.
QWidget* windowOf(QWidget* widget);

/// Asks for a name and an icon.
/// \param present what the dialog starts with.
/// \returns nothing if the user gave up, or the window went.
std::optional<NameAndIcon> ask(QWidget* parent, const Naming& naming, const NameAndIcon& present);

/// Tells why a name is not taken.
void refuse(QWidget* parent, const char* textKey);

/// The text of a question about something with a name, of which only so much is read as anybody
/// would.
QString textAbout(const char* textKey, const QString& name);

} // namespace NameQuestions
