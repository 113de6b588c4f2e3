// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

/// The settings of the look: light or dark, and the accent colour. Shows what is in force when it
/// is made. GUI thread only.
class AppearanceSettingsPage : public QWidget
{
    Q_OBJECT

public:
    explicit AppearanceSettingsPage(QWidget* parent = nullptr);

signals:
    /// The user has changed the look, and that is stored. Whatever is shown, this page too, still
    /// has the old one: whoever listens rebuilds it.
    void appearanceChanged();

private:
    QWidget* buildThemeCard() const;
    QWidget* buildAccentCard() const;
    void changeTheme(int mode);
    void askForAccent();
};
