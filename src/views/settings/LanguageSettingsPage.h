// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QPushButton;

/// The setting of the language. Shows what is in force when it is made. GUI thread only.
class LanguageSettingsPage : public QWidget
{
    Q_OBJECT

public:
    explicit LanguageSettingsPage(QWidget* parent = nullptr);

signals:
    /// The user has changed the language, and that is stored. Whatever is shown still speaks the
    /// old one: whoever listens rebuilds it.
    void languageChanged();

private:
    void showLangMenu(QPushButton* button);
};
