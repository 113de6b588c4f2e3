// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FramelessWindow.h"

#include "AutoQuitBlocker.h"
#include "Theme.h"

#include <QApplication>
#include <QEvent>
#include <QGraphicsDropShadowEffect>
#include <QPropertyAnimation>
#include <QWidget>

namespace
{

constexpr int kFadeOutMs = 60;
constexpr qreal kShadowBlur = 35.0;
constexpr int kShadowOffsetY = 10;
constexpr int kShadowAlphaDark = 150;
constexpr int kShadowAlphaLight = 40;

} // namespace

QGraphicsDropShadowEffect* FramelessWindow::addShadow(QWidget* card)
{
    auto* shadow = new QGraphicsDropShadowEffect(card);
    shadow->setBlurRadius(kShadowBlur);
    shadow->setOffset(0, kShadowOffsetY);
    tintShadow(shadow);
    card->setGraphicsEffect(shadow);
    return shadow;
}

void FramelessWindow::tintShadow(QGraphicsDropShadowEffect* shadow)
{
    shadow->setColor(QColor(0, 0, 0, Theme::isDarkMode() ? kShadowAlphaDark : kShadowAlphaLight));
}

QPropertyAnimation* FramelessWindow::startFadeOut(QWidget* window,
                                                  const std::function<void()>& onFinished)
{
    auto* fade = new QPropertyAnimation(window, "windowOpacity", window);
    fade->setDuration(kFadeOutMs);
    fade->setStartValue(window->windowOpacity());
    fade->setEndValue(0.0);
    fade->setEasingCurve(QEasingCurve::Linear);
    QObject::connect(fade, &QPropertyAnimation::finished, window, onFinished);
    fade->start(QAbstractAnimation::DeleteWhenStopped);
    return fade;
}

bool FramelessWindow::isLeftForAnotherProgram(const QWidget* window, const QEvent* event)
{
    return event->type() == QEvent::ActivationChange && !window->isActiveWindow() &&
           !QApplication::activeWindow() && !g_blockAutoQuit;
}
