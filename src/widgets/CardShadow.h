// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QGraphicsDropShadowEffect>
#include <QPixmap>
#include <QSize>

/// The shadow of a widget with round corners. It looks like that of its base class, but is blurred
/// once and not at every repaint, takes its shape from the corners instead of from what the widget
/// paints, and is as soft on a screen with small pixels as on any other. GUI thread only.
class CardShadow : public QGraphicsDropShadowEffect
{
    Q_OBJECT

public:
    /// For `card`, which becomes the parent and has corners of `radiusPx`.
    CardShadow(QWidget* card, int radiusPx);

    /// Gives the memory of the blurred picture back; the next repaint makes it anew.
    void dropPicture();

    /// Blurred pictures made so far. For the tests: a repaint alone must not make one.
    int pictureCount() const { return m_pictureCount; }

protected:
    void draw(QPainter* painter) override;

private:
    /// All that the picture depends on.
    struct Look
    {
        QSize card;        ///< in logical pixels
        qreal ratio = 0.0; ///< device pixels to one of those
        qreal blur = 0.0;  ///< in logical pixels
        QColor color;
        bool operator==(const Look&) const = default;
    };

    QPixmap makePicture(const Look& look) const;

    QWidget* m_card;
    int m_radiusPx;
    int m_pictureCount = 0;
    Look m_look; ///< of the picture
    QPixmap m_picture;
};
