// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ConfirmDot.h"

#include "CardShape.h"

#include <QPainter>

namespace
{

constexpr int kRadius = 19;
constexpr int kGlyphPx = 20;

} // namespace

ConfirmDot::ConfirmDot(QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint |
                          Qt::WindowStaysOnTopHint)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFixedSize(Size, Size);
    CardShape::attach(this, this, kRadius, nullptr, Size / 2 - kRadius);
}

void ConfirmDot::setColors(const QColor& bg, const QColor& fg)
{
    m_bg = bg;
    m_fg = fg;
    update();
}

void ConfirmDot::paintEvent(QPaintEvent*)
{
    const QPointF center(Size / 2.0, Size / 2.0);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_bg);
    painter.drawEllipse(center, kRadius, kRadius);
    IconHelper::drawGlyph(&painter, center, Glyph, kGlyphPx, m_fg);
}
