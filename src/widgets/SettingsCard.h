// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFrame>
#include <QList>
#include <QString>

class QVBoxLayout;

/// A row of a settings page: its name on the left, its control on the right, with the keys of
/// `SettingsCardFilter`. GUI thread only.
class SettingsCard : public QFrame
{
    Q_OBJECT

public:
    /// \param control becomes the card's.
    SettingsCard(const QString& title, QWidget* control, QWidget* parent = nullptr);
    /// \param heading in place of the name, takes the room that `control` leaves. Both become the
    /// card's. The ground of labels in it is the card's, see `Theme::textOnCardStyle`.
    SettingsCard(QWidget* heading, QWidget* control, QWidget* parent = nullptr);

    /// True for a card, which is any frame with just the focus policy that makes it one. So nothing
    /// else on a page of settings may be a frame with that policy, such as a scroll area.
    static bool isCard(const QWidget* widget);
};

/// Appends the cards below `root` in the order of its children. A card is not entered.
void collectSettingsRows(QWidget* root, QList<QFrame*>& out);

/// Lets `page` hold cards one below the other, with its ground showing through, and with the
/// margins of a page that stands by itself. \returns its rows, still without any.
QVBoxLayout* makeSettingsColumn(QWidget* page);
