// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QPointer>

class QWidget;

/// Keeps a translucent, frameless window presentable on a desktop that doesn't blend windows: there
/// the window is cut to its visible card and casts no shadow, so that no black margin shows. On
/// every other desktop it changes nothing. Looks again at each show.
class CardShape : public QObject
{
    Q_OBJECT

public:
    /// Looks after `window` as long as it lives. `card` is its visible part, the window itself or a
    /// widget in it, with corners of `radiusPx`. `shadowOwner` carries the shadow effect; by
    /// default that is the card.
    /// `insetPx` tells how far inside the card's edges its visible part begins.
    static void attach(QWidget* window, QWidget* card, int radiusPx, QWidget* shadowOwner = nullptr,
                       int insetPx = 0);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    CardShape(QWidget* window, QWidget* card, int radiusPx, QWidget* shadowOwner, int insetPx);

    void lookAtDesktop();
    void apply();

    QWidget* m_window;
    QPointer<QWidget> m_card;
    QPointer<QWidget> m_shadowOwner;
    int m_radiusPx;
    int m_insetPx;
    bool m_isCut = false;
};
