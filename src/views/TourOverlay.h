// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPainterPath>
#include <QPointer>
#include <QRect>
#include <QString>
#include <QWidget>

class FloatingCard;
class QBoxLayout;
class QFrame;
class QLabel;
class QPushButton;

/// What a guided tour shows: its window dimmed but for a hole around one control, through which the
/// mouse reaches that, and beside it a card with a text. It knows nothing of the steps. The card is
/// a window of its own, which may lie over the edge of the other and never takes the keyboard.
/// Coordinates are the overlay's unless said otherwise. GUI thread only.
class TourOverlay : public QWidget
{
    Q_OBJECT

public:
    static constexpr int CardWidth = 280;    ///< px
    static constexpr int HolePad = 3;        ///< px of air around the control
    static constexpr int HoleRadiusCap = 23; ///< px
    static constexpr int RingWidth = 1;      ///< px

    /// \param window the one that is dimmed; the overlay's geometry in it is the caller's affair.
    explicit TourOverlay(QWidget* window);
    ~TourOverlay() override;

    /// Shows a step, above all else in the window.
    /// \param target what the hole is around; null for none.
    /// \param nextLabel of the button that emits `advanced`; empty for none.
    void showStep(const QRect& target, const QString& title, const QString& desc, int stepNo,
                  int stepCount, const QString& nextLabel);
    /// Shows the card alone, beside a dialog. The counter stays that of the last step.
    /// \param anchor the dialog, in global coordinates.
    void showCompanion(const QRect& anchor, const QString& title, const QString& desc);
    /// Hides all of it.
    void dismiss();

    QColor backdropColor() const;
    /// Empty without a target.
    QPainterPath holePath() const;

    /// The card; it goes with the overlay.
    QWidget* cardWindow() const;
    QPushButton* nextButton() const { return m_nextBtn; }

    /// Where a card of that size goes in an overlay of that size.
    static QPoint cardPlace(const QSize& overlay, const QRect& target, const QSize& card);
    /// Where it goes beside a dialog; all in the coordinates of the screen.
    /// \param area what there is of the screen.
    static QPoint companionPlace(const QRect& area, const QRect& anchor, const QSize& card);

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    void advanced();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void buildCard();
    QBoxLayout* buildBottomRow();
    void setTexts(const QString& title, const QString& desc, const QString& nextLabel);
    void relayout();
    void sizeCard(int width);
    void placeCard();
    void showCard();

    QRect m_target;
    QPointer<FloatingCard> m_cardWin; ///< the window may go first and take it along
    QFrame* m_card = nullptr;
    QLabel* m_titleLbl = nullptr;
    QLabel* m_descLbl = nullptr;
    QLabel* m_stepLbl = nullptr;
    QPushButton* m_nextBtn = nullptr;
    int m_stepNo = 0;
    int m_stepCount = 0;
    bool m_companion = false;  ///< the card stands beside a dialog
    bool m_selfHiding = false; ///< the overlay goes and the card stays
};
