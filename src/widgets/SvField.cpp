// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SvField.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace
{

using HsvPainting::MaxHue;
using HsvPainting::MaxLevel;

constexpr int kMinHeight = 150;
constexpr int kHintWidth = 252;
constexpr qreal kRadius = 14.0;
constexpr qreal kMarkerInset = 9.0; // keeps the whole marker in the field
constexpr qreal kMarkerRadius = 6.5;
constexpr qreal kMarkerOuterRadius = 8.0;
constexpr int kBorderAlpha = 35;

/// `position` kept `kMarkerInset` inside a side of `length`; its middle if that has no room.
qreal keptInside(qreal position, qreal length)
{
    const qreal inset = std::min(kMarkerInset, length / 2.0);
    return std::clamp(position, inset, length - inset);
}

} // namespace

SvField::SvField(QWidget* parent) : QWidget(parent)
{
    setCursor(Qt::CrossCursor);
    setMinimumHeight(kMinHeight);
    setFocusPolicy(Qt::NoFocus);
}

QSize SvField::sizeHint() const
{
    return {kHintWidth, kMinHeight};
}

void SvField::setHue(int hue)
{
    const int bounded = std::clamp(hue, 0, MaxHue);
    if (bounded == m_hue)
        return;
    m_hue = bounded;
    m_cache = QImage();
    update();
}

void SvField::setSv(int sat, int val)
{
    const int boundedSat = std::clamp(sat, 0, MaxLevel);
    const int boundedVal = std::clamp(val, 0, MaxLevel);
    if (boundedSat == m_sat && boundedVal == m_val)
        return;
    m_sat = boundedSat;
    m_val = boundedVal;
    update();
}

void SvField::buildCache()
{
    const qreal ratio = devicePixelRatioF();
    m_cache = QImage(size() * ratio, QImage::Format_ARGB32_Premultiplied);
    m_cache.setDevicePixelRatio(ratio);
    m_cache.fill(HsvPainting::pureHue(m_hue));
    QLinearGradient saturation(0, 0, width(), 0);
    saturation.setColorAt(0, QColor(255, 255, 255, 255));
    saturation.setColorAt(1, QColor(255, 255, 255, 0));
    QLinearGradient value(0, 0, 0, height());
    value.setColorAt(0, QColor(0, 0, 0, 0));
    value.setColorAt(1, QColor(0, 0, 0, 255));
    QPainter painter(&m_cache);
    painter.fillRect(rect(), saturation);
    painter.fillRect(rect(), value);
}

QPointF SvField::markerCentre() const
{
    return {keptInside(width() * qreal(m_sat) / MaxLevel, width()),
            keptInside(height() * (1.0 - qreal(m_val) / MaxLevel), height())};
}

void SvField::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event);
    // A window that moves to another screen may find pixels of another size there.
    if (m_cache.isNull() || m_cache.devicePixelRatio() != devicePixelRatioF())
        buildCache();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    outline.addRoundedRect(rect(), kRadius, kRadius);
    painter.setClipPath(outline);
    painter.drawImage(0, 0, m_cache);
    painter.setClipping(false);
    HsvPainting::paintHandle(&painter, markerCentre(), QColor::fromHsv(m_hue, m_sat, m_val),
                             kMarkerRadius, kMarkerOuterRadius);
    painter.setPen(HsvPainting::hairline(kBorderAlpha));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
}

void SvField::resizeEvent(QResizeEvent* event)
{
    m_cache = QImage();
    QWidget::resizeEvent(event);
}

void SvField::mousePressEvent(QMouseEvent* event)
{
    pick(event->position().toPoint());
}

void SvField::mouseMoveEvent(QMouseEvent* event)
{
    pick(event->position().toPoint());
}

void SvField::pick(const QPoint& point)
{
    const qreal w = std::max(width() - 1, 1);
    const qreal h = std::max(height() - 1, 1);
    const int sat = std::clamp(qRound(point.x() * MaxLevel / w), 0, MaxLevel);
    const int val = std::clamp(qRound(MaxLevel * (h - point.y()) / h), 0, MaxLevel);
    if (sat == m_sat && val == m_val)
        return;
    m_sat = sat;
    m_val = val;
    update();
    emit svChanged();
}
