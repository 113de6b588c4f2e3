// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

/// The settings of the arrangement: how many columns the grid of items has. Shows what is in force
/// when it is made. GUI thread only.
class LayoutSettingsPage : public QWidget
{
    Q_OBJECT

public:
    explicit LayoutSettingsPage(QWidget* parent = nullptr);

signals:
    /// The user has changed the arrangement, and that is stored. Whatever is shown still has the
    /// old one: whoever listens rebuilds it.
    void layoutModeChanged();

private:
    void changeGridColumns(int columns);
};
