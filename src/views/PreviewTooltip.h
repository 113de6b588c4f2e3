// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FloatingCard.h"

#include <QPointer>
#include <QString>
#include <QStringList>

class GlyphLabel;
class QBoxLayout;
class QFontMetrics;
class QLabel;
class QTimer;

/// The card that shows what an item holds while the pointer rests on its tile. It takes neither
/// focus nor mouse and goes at any leave, wheel or deactivation of what it is attached to. When it
/// shows is its owner's affair. Names and values may be of any length and content: they show as
/// plain text, and what lies beyond the visible part is at most counted. GUI thread only.
class PreviewTooltip : public FloatingCard
{
    Q_OBJECT

public:
    static constexpr int DelayMs = 900;  ///< how long the pointer should rest
    static constexpr int MaxLines = 4;   ///< of a value of several lines
    static constexpr int MaxWidth = 300; ///< of the card, px

    explicit PreviewTooltip(QWidget* parent);

    /// Hides the tooltip at whatever sends the pointer or the user away from `widget`, as long as
    /// both live. Null is ignored.
    void attachTo(QWidget* widget);
    /// \param timer the one that is about to show the tooltip: stopped when that is dismissed. Not
    /// owned, may be null or go at any time.
    void setDelayTimer(QTimer* timer);

    /// Shows the tooltip above and to the right of a tile, as far as its screen allows. A blank
    /// value shows none and hides the one there is.
    /// \param anchorRect the tile in global coordinates.
    void showFor(const QString& name, const QString& type, const QString& value,
                 const QRect& anchorRect);

    /// The lines of a text that are not blank, trimmed.
    static QStringList meaningfulLines(const QString& text);

    /// What the tooltip shows of a value in a body of `availW` pixels; empty if all is blank.
    /// The first line, and how many more there are.
    static QString singleLineBody(const QString& value, const QFontMetrics& fm, int availW);
    /// The first `MaxLines` lines, each elided, and how many more there are.
    static QString bulkBody(const QString& value, const QFontMetrics& fm, int availW);
    /// As much of the text as wraps into the height of `MaxLines` lines, with "..." where that is
    /// not all.
    static QString snippetBody(const QString& value, const QFontMetrics& fm, int availW);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QBoxLayout* buildHead();
    QString prepareBody(const QString& type, const QString& value);

    QFrame* m_card;
    GlyphLabel* m_icon = nullptr;
    QLabel* m_title = nullptr;
    QLabel* m_value = nullptr;
    QPointer<QTimer> m_delay;
};
