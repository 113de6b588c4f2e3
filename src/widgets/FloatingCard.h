// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QFrame;

/// A rounded card in a window of its own, which can lie over the edge of the window it belongs to.
/// It never takes the focus: that would count as turning away from the main window, which hides
/// then. Hidden until it is shown. A subclass or an owner fills `card()`. GUI thread only.
class FloatingCard : public QWidget
{
    Q_OBJECT

public:
    /// \param type `Qt::ToolTip` or `Qt::Tool`.
    /// \param cardName object name of the card.
    FloatingCard(QWidget* parent, Qt::WindowType type, const QString& cardName);

    /// The visible part, which fills the window; without a layout as yet. Never null.
    QFrame* card() const { return m_card; }

    /// Gives the window the size that its content wants, whatever has changed in it since.
    void fitToContent();

    /// Moves the window to `topLeft`, or as near to that as leaves it on the screen that
    /// `screenPoint` lies on, or else on the primary one. What is larger than the screen begins at
    /// its left or top edge. Global coordinates.
    void placeAt(const QPoint& topLeft, const QPoint& screenPoint);

private:
    QFrame* m_card;
};
