// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>
#include <QString>

class CardHeader;
class QFrame;
class QHBoxLayout;
class QKeyEvent;
class QPushButton;
class QVBoxLayout;

/// Esc and Backspace close a dialog: rejects it and returns true for these two keys, otherwise
/// does nothing and returns false. An input that has the focus takes its Backspace before the
/// dialog sees it.
bool handleDialogBackKey(QDialog* dialog, QKeyEvent* event);

/// What every dialog of the program is: a rounded card with a shadow, alone in a translucent window
/// without a frame, that stays on top and closes by Esc or Backspace. A subclass fills the card in
/// its constructor. Lengths are in pixels. GUI thread only.
class FramelessDialog : public QDialog
{
    Q_OBJECT

public:
    static constexpr int ShadowPad = 10;  ///< free margin around the card, for its shadow
    static constexpr int PaperBorder = 1; ///< line around the card
    static constexpr int CardPad = 24;    ///< between the card's edge and what is in it
    static constexpr int Spacing = 12;    ///< between the rows of a card
    static constexpr int ButtonHeight = 36;

protected:
    static constexpr int SoftShadow = 60; ///< alpha of the card's shadow, of 255
    static constexpr int StrongShadow = 80;

    /// \param title of the window: nobody sees it, but a screen reader announces it.
    /// \param shadowAlpha 0 to 255.
    /// \param padding `CardPad`, or 0 for a card with a header, which reaches the edges.
    FramelessDialog(QWidget* parent, const QString& title, int shadowAlpha, int padding);

    QFrame* card() const { return m_card; }
    /// The rows of the card, `Spacing` apart.
    QVBoxLayout* rows() const { return m_rows; }

    /// Puts a band with the window's title at the top of a card without padding.
    /// \param objectName of the band.
    CardHeader* addHeader(const QString& objectName);
    /// Adds padded rows, `Spacing` apart, below the header.
    QVBoxLayout* addBody();

    /// Adds a row for buttons to the end of `column`, still empty.
    /// \param topPad free space above it, besides the column's spacing.
    static QHBoxLayout* addButtonRow(QVBoxLayout* column, int topPad);
    /// Adds a button of `ButtonHeight` in `style` to the end of `row`.
    QPushButton* addButton(QHBoxLayout* row, const QString& text, const QString& style,
                           int stretch = 0);
    /// Takes padding from the buttons of a row that is `width` wide if their texts would be cut
    /// otherwise, from all alike. For a dialog of fixed size, once the row is complete.
    static void fitButtons(const QHBoxLayout* row, int width);

    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void moveShadowBelowCard();

    QFrame* m_card;
    QWidget* m_shadowLayer = nullptr; ///< below the card and as large, carries its shadow
    QVBoxLayout* m_rows;
};
