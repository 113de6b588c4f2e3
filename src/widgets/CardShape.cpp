// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CardShape.h"

#include "Compositor.h"

#include <QEvent>
#include <QGraphicsEffect>
#include <QPainterPath>
#include <QRegion>
#include <QWidget>

void CardShape::attach(QWidget* window, QWidget* card, int radiusPx, QWidget* shadowOwner,
                       int insetPx)
{
    new CardShape(window, card, radiusPx, shadowOwner ? shadowOwner : card, insetPx);
}

CardShape::CardShape(QWidget* window, QWidget* card, int radiusPx, QWidget* shadowOwner,
                     int insetPx)
    : QObject(window),
      m_window(window),
      m_card(card),
      m_shadowOwner(shadowOwner),
      m_radiusPx(radiusPx),
      m_insetPx(insetPx)
{
    window->installEventFilter(this);
    if (card != window) {
        card->installEventFilter(this);
        // A window that rebuilds its content attaches the new card for itself.
        connect(card, &QObject::destroyed, this, &QObject::deleteLater);
    }
    if (window->isVisible())
        lookAtDesktop();
}

bool CardShape::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window && event->type() == QEvent::Show)
        lookAtDesktop();
    else if (m_isCut && (event->type() == QEvent::Resize || event->type() == QEvent::Move))
        apply();
    return QObject::eventFilter(watched, event);
}

void CardShape::lookAtDesktop()
{
    m_isCut = !Platform::isCompositing();
    apply();
}

void CardShape::apply()
{
    if (!m_card)
        return;
    if (m_shadowOwner && m_shadowOwner->graphicsEffect())
        m_shadowOwner->graphicsEffect()->setEnabled(!m_isCut);
    if (!m_isCut) {
        if (!m_window->mask().isEmpty())
            m_window->clearMask();
        return;
    }
    const QRect visible = QRect(m_card->mapTo(m_window, QPoint(0, 0)), m_card->size())
                              .adjusted(m_insetPx, m_insetPx, -m_insetPx, -m_insetPx);
    QPainterPath outline;
    outline.addRoundedRect(visible, m_radiusPx, m_radiusPx);
    const QRegion region(outline.toFillPolygon().toPolygon());
    if (region != m_window->mask())
        m_window->setMask(region);
}
