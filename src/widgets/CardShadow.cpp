// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CardShadow.h"

#include <QImage>
#include <QPainter>
#include <QWidget>

#include <cmath>

namespace
{

/// Blurring at half the size costs a quarter, and nobody sees the difference.
constexpr int kShrink = 2;

/// What is left of a full pixel as far away from it as the blur's radius says.
constexpr double kFaintest = 2.0 / 255.0;

/// Spreads a row of bytes to its right and then back to its left.
void blurRow(uchar* first, qsizetype stride, int count, double share)
{
    double level = 0.0;
    uchar* byte = first;
    for (int i = 0; i < count; ++i, byte += stride) {
        level += share * (*byte - level);
        *byte = static_cast<uchar>(level);
    }
    byte -= stride;
    for (int i = 1; i < count; ++i) {
        byte -= stride;
        level += share * (*byte - level);
        *byte = static_cast<uchar>(level);
    }
}

/// Blurs a picture of one byte for each pixel.
void blur(QImage& alpha, double radius)
{
    const double share = 1.0 - std::pow(kFaintest, 1.0 / radius);
    uchar* bits = alpha.bits();
    const qsizetype line = alpha.bytesPerLine();
    for (int y = 0; y < alpha.height(); ++y)
        blurRow(bits + y * line, 1, alpha.width(), share);
    for (int x = 0; x < alpha.width(); ++x)
        blurRow(bits + x, line, alpha.height(), share);
}

} // namespace

CardShadow::CardShadow(QWidget* card, int radiusPx)
    : QGraphicsDropShadowEffect(card), m_card(card), m_radiusPx(radiusPx)
{}

void CardShadow::dropPicture()
{
    m_look = {};
    m_picture = {};
}

void CardShadow::draw(QPainter* painter)
{
    const QRectF card = sourceBoundingRect();
    const Look look{card.size().toSize(), painter->device()->devicePixelRatioF(), blurRadius(),
                    color()};
    if (!(look == m_look)) {
        m_picture = makePicture(look);
        m_look = look;
        ++m_pictureCount;
    }
    const QPointF margin(look.blur, look.blur);
    painter->drawPixmap(card.topLeft() + offset() - margin, m_picture);
    // `drawSource` takes the place of a widget into account twice.
    m_card->render(painter, QPoint(), QRegion(), QWidget::DrawChildren);
}

QPixmap CardShadow::makePicture(const Look& look) const
{
    const QRectF card(QPointF(look.blur, look.blur), look.card);
    const QSize size = ((card.size() + 2 * QSizeF(look.blur, look.blur)) * look.ratio).toSize();

    QImage shape((size + QSize(kShrink - 1, kShrink - 1)) / kShrink,
                 QImage::Format_ARGB32_Premultiplied);
    shape.fill(Qt::transparent);
    QPainter shapePainter(&shape);
    shapePainter.setRenderHint(QPainter::Antialiasing);
    shapePainter.scale(look.ratio / kShrink, look.ratio / kShrink);
    shapePainter.setPen(Qt::NoPen);
    shapePainter.setBrush(Qt::black);
    shapePainter.drawRoundedRect(card, m_radiusPx, m_radiusPx);
    shapePainter.end();
    shape = shape.convertToFormat(QImage::Format_Alpha8);
    blur(shape, look.blur * look.ratio / kShrink);

    QImage tinted(shape.size(), QImage::Format_ARGB32_Premultiplied);
    tinted.fill(look.color);
    QPainter tint(&tinted);
    tint.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    tint.drawImage(QPoint(), shape);
    tint.end();

    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRect(QPoint(), shape.size() * kShrink), tinted);
    painter.end();
    picture.setDevicePixelRatio(look.ratio);
    return picture;
}
