// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class QFrame;
class QWidget;

/// Dresses a card of the settings and gives it its keys. The focus is either on the card or on a
/// control inside: Enter leads in, Esc and Backspace lead out, Up and Down go to the neighbours,
/// and Left and Right go around inside. GUI thread only.
class SettingsCardFilter : public QObject
{
    Q_OBJECT

public:
    /// \param card takes the focus from now on.
    /// \param content the control of the card, or what holds its controls. Controls that come later
    /// are not looked after.
    SettingsCardFilter(QFrame* card, QWidget* content, QObject* parent);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void updateStyle();
    void installOnChildren(QWidget* content);
    /// True while a control inside the card has the focus.
    bool isEditingNow() const;
    bool handleCardKey(int key);
    bool handleControlKey(QWidget* control, int key);
    void enterCard();
    static bool activate(QWidget* control);
    bool moveToNeighbour(const QWidget* control, int step);
    bool moveInside(QWidget* control, int step);
    /// The card `step` further among those beside this one; null beyond the ends.
    QFrame* neighbour(int step) const;

    QFrame* m_card;
    QWidget* m_content;
};
