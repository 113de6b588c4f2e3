// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FramelessWindow.h"

#include "AutoQuitBlocker.h"
#include "CardShadow.h"
#include "Foreground.h"
#include "Theme.h"

#include <QApplication>
#include <QFrame>
#include <QMouseEvent>
#include <QPropertyAnimation>
#include <QTimer>

namespace
{

constexpr int kFadeOutMs = 60;
constexpr qreal kShadowBlur = 35.0;
constexpr int kShadowOffsetY = 10;
constexpr int kShadowAlphaDark = 150;
constexpr int kShadowAlphaLight = 40;

} // namespace

FramelessWindow::FramelessWindow(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TranslucentBackground, true);
    setWindowFlags(Qt::FramelessWindowHint | Qt::Tool);
    setStyleSheet(QStringLiteral("QWidget { font-family: %1; }").arg(FontTokens::Family));
    m_showGuardTimer = new QTimer(this);
    m_showGuardTimer->setSingleShot(true);
    connect(m_showGuardTimer, &QTimer::timeout, this, [this] { m_isShowing = false; });
}

bool FramelessWindow::isToggledToShow() const
{
    // Opacity tells a window that is fading out.
    return isHidden() || windowOpacity() < 1.0;
}

void FramelessWindow::toggleVisibility()
{
    if (isToggledToShow())
        show();
    else
        fadeOutAndHide();
}

void FramelessWindow::hideForOtherWindow()
{
    if (!isHidden())
        fadeOutAndHide();
}

void FramelessWindow::fadeOutAndHide()
{
    if (m_isClosing)
        return;
    prepareFade();
    m_isClosing = true;
    m_fadeAnim = new QPropertyAnimation(this, "windowOpacity", this);
    m_fadeAnim->setDuration(kFadeOutMs);
    m_fadeAnim->setStartValue(windowOpacity());
    m_fadeAnim->setEndValue(0.0);
    m_fadeAnim->setEasingCurve(QEasingCurve::Linear);
    connect(m_fadeAnim, &QPropertyAnimation::finished, this, [this] {
        m_fadeAnim.clear();
        hide();
    });
    m_fadeAnim->start(QAbstractAnimation::DeleteWhenStopped);
}

void FramelessWindow::showEvent(QShowEvent* event)
{
    const AutoQuitBlocker blocker;
    m_isShowing = true;
    m_showGuardTimer->start(ShowGuardMs);
    // A window that is hidden in the middle of a drag never hears of the release.
    m_dragging = false;
    prepareShow();
    QWidget::showEvent(event);
    placeOnScreen();
    endFade();
    takeForeground();
    finishShow();
    emit becameVisible();
}

void FramelessWindow::endFade()
{
    if (m_fadeAnim) {
        m_fadeAnim->stop();
        m_fadeAnim.clear();
    }
    m_isClosing = false;
    setWindowOpacity(1.0);
}

void FramelessWindow::takeForeground()
{
    raise();
    activateWindow();
    Platform::bringToForeground(winId());
}

bool FramelessWindow::isLeftForAnotherProgram(const QEvent* event) const
{
    return event->type() == QEvent::ActivationChange && !isActiveWindow() &&
           !QApplication::activeWindow() && !g_blockAutoQuit;
}

void FramelessWindow::changeEvent(QEvent* event)
{
    // The hand-over of the foreground at a show can report a loss of focus that is none.
    if (isLeftForAnotherProgram(event) && !m_isShowing)
        fadeOutAndHide();
    QWidget::changeEvent(event);
}

void FramelessWindow::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        m_dragging = true;
        m_dragPosition = event->globalPosition().toPoint() - frameGeometry().topLeft();
        event->accept();
    }
    QWidget::mousePressEvent(event);
}

void FramelessWindow::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragging) {
        move(event->globalPosition().toPoint() - m_dragPosition);
        dragged();
        event->accept();
    }
    QWidget::mouseMoveEvent(event);
}

bool FramelessWindow::isDragEndedBy(Qt::MouseButton button) const
{
    return button == Qt::LeftButton;
}

void FramelessWindow::mouseReleaseEvent(QMouseEvent* event)
{
    if (isDragEndedBy(event->button())) {
        m_dragging = false;
        event->accept();
    }
    QWidget::mouseReleaseEvent(event);
}

void FramelessWindow::buildShadowLayer(const QString& objectName, int radiusPx)
{
    m_shadowLayer = new QFrame(this);
    m_shadowLayer->setObjectName(objectName);
    m_shadowLayer->setFrameShape(QFrame::NoFrame);
    m_shadowLayer->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_shadowLayer->lower();
    m_dropShadow = new CardShadow(m_shadowLayer, radiusPx);
    m_dropShadow->setBlurRadius(kShadowBlur);
    m_dropShadow->setOffset(0, kShadowOffsetY);
    tintShadow();
    m_shadowLayer->setGraphicsEffect(m_dropShadow);
}

void FramelessWindow::syncShadowLayers()
{
    m_shadowLayer->setGeometry(
        rect().adjusted(SHADOW_MARGIN, SHADOW_MARGIN, -SHADOW_MARGIN, -SHADOW_MARGIN));
}

void FramelessWindow::tintShadow()
{
    m_dropShadow->setColor(
        QColor(0, 0, 0, Theme::isDarkMode() ? kShadowAlphaDark : kShadowAlphaLight));
}

void FramelessWindow::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (m_shadowLayer)
        syncShadowLayers();
}

void FramelessWindow::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    // The window may stay hidden for hours, and the picture is made anew in a moment.
    if (m_dropShadow)
        m_dropShadow->dropPicture();
}
