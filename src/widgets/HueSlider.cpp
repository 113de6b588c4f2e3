// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HueSlider.h"

#include "HsvPainting.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace
{

using HsvPainting::MaxHue;

constexpr int kHueSteps = 6; // between pure colours, where a gradient in RGB is one in hue
constexpr int kDegreesPerStep = 60;
constexpr qreal kRingInset = 2.0;
constexpr qreal kHairlineInset = 1.0;

} // namespace

HueSlider::HueSlider(QWidget* parent) : QWidget(parent)
{
    setFixedHeight(Height);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::NoFocus);
}

void HueSlider::setHue(int hue)
{
    const int bounded = std::clamp(hue, 0, MaxHue);
    if (bounded == m_hue)
        return;
    m_hue = bounded;
    update();
}

qreal HueSlider::handleX() const
{
    return qreal(m_hue) / MaxHue * (width() - height()) + height() / 2.0;
}

void HueSlider::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal d = height();
    const QRectF bar(0, 0.25 * d, width(), 0.5 * d);
    QLinearGradient hues(bar.topLeft(), bar.topRight());
    for (int i = 0; i <= kHueSteps; ++i)
        hues.setColorAt(qreal(i) / kHueSteps,
                        HsvPainting::pureHue(std::min(i * kDegreesPerStep, MaxHue)));
    painter.setPen(Qt::NoPen);
    painter.setBrush(hues);
    painter.drawRoundedRect(bar, bar.height() / 2.0, bar.height() / 2.0);
    HsvPainting::paintHandle(&painter, {handleX(), d / 2.0}, HsvPainting::pureHue(m_hue),
                             d / 2.0 - kRingInset, d / 2.0 - kHairlineInset);
}

void HueSlider::mousePressEvent(QMouseEvent* event)
{
    pick(event->position().toPoint().x());
}

void HueSlider::mouseMoveEvent(QMouseEvent* event)
{
    pick(event->position().toPoint().x());
}

void HueSlider::pick(int x)
{
    const int span = std::max(width() - height(), 1);
    const int hue = std::clamp(qRound((x - height() / 2.0) / span * MaxHue), 0, MaxHue);
    if (hue == m_hue)
        return;
    m_hue = hue;
    update();
    emit hueChanged(m_hue);
}
