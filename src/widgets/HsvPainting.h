// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QPen>
#include <QPointF>

class QPainter;

/// What the two bars of the colour picker have in common: Qt's integer scales of hue, saturation
/// and value, and the handle that marks the present choice. GUI thread only.
namespace HsvPainting
{

inline constexpr int MaxHue = 359;   ///< degrees
inline constexpr int MaxLevel = 255; ///< of saturation and value

/// The colour of full saturation and value.
QColor pureHue(int hue);

/// A line of one pixel that sets a bright shape off from a bright ground.
/// \param alpha 0 to 255.
QPen hairline(int alpha);

/// A circle filled with `fill` in a white ring, and a hairline around that.
/// \param radius, outerRadius px, of the ring and of the hairline.
void paintHandle(QPainter* painter, const QPointF& centre, const QColor& fill, qreal radius,
                 qreal outerRadius);

} // namespace HsvPainting
