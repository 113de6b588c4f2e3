// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QWidget;

/// The file chooser of the desktop, the one dialog that is not the program's own. GUI thread only.
namespace FileChooser
{

/// Asks for a file that exists, and keeps the windows from hiding meanwhile.
/// \param parent may be deleted while the chooser is open, which then ends without a choice.
/// \param filter of the names, such as "Images (*.png *.ico)".
/// \returns its path; empty if there was no choice.
QString openFile(QWidget* parent, const QString& caption, const QString& filter);

/// Asks in the same way for a file to be written. One that exists may be chosen, after a question
/// of the chooser's own.
/// \param suggestedName what stands in the field at first.
QString saveFile(QWidget* parent, const QString& caption, const QString& suggestedName,
                 const QString& filter);

} // namespace FileChooser
