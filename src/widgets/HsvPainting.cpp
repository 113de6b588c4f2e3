// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HsvPainting.h"

#include <QPainter>

namespace
{

constexpr int kRingAlpha = 235;
constexpr qreal kRingWidth = 2.0;
constexpr int kRingHairlineAlpha = 55;

} // namespace

QColor HsvPainting::pureHue(int hue)
{
    return QColor::fromHsv(hue, MaxLevel, MaxLevel);
}

QPen HsvPainting::hairline(int alpha)
{
    return QPen(QColor(0, 0, 0, alpha), 1.0);
}

void HsvPainting::paintHandle(QPainter* painter, const QPointF& centre, const QColor& fill,
                              qreal radius, qreal outerRadius)
{
    painter->setBrush(fill);
    painter->setPen(QPen(QColor(255, 255, 255, kRingAlpha), kRingWidth));
    painter->drawEllipse(centre, radius, radius);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(hairline(kRingHairlineAlpha));
    painter->drawEllipse(centre, outerRadius, outerRadius);
}
