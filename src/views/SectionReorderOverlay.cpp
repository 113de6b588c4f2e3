// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SectionReorderOverlay.h"

#include "Theme.h"

#include <QPushButton>

SectionReorderOverlay::SectionReorderOverlay(QWidget* viewport, const QVector<TileSource>& sources,
                                             int spacing, int initialSlot)
    : ReorderOverlay(viewport), m_sources(sources), m_spacing(spacing)
{
    initialize(initialSlot);
}

QColor SectionReorderOverlay::backdropColor() const
{
    return QColor(Theme::shellBg());
}

void SectionReorderOverlay::createTiles()
{
    for (int i = 0; i < m_sources.size(); ++i) {
        const TileSource& source = m_sources.at(i);
        const QRect rect = source.rect.adjusted(-TilePad, 0, TilePad, 0);
        if (source.picture)
            addTile(source.picture, i, rect);
        else
            addTile(source.rest, source.lit, i, rect);
    }
}

QVector<QRect> SectionReorderOverlay::computeSlotRects(const QVector<ReorderTile*>& tiles) const
{
    QVector<QRect> rects;
    if (m_sources.isEmpty())
        return rects;
    rects.reserve(tiles.size());
    int x = m_sources.first().rect.left();
    const int y = m_sources.first().rect.top();
    for (const ReorderTile* tile : tiles) {
        rects.append(QRect(QPoint(x - TilePad, y), tile->size()));
        x += tile->width() - 2 * TilePad + m_spacing;
    }
    return rects;
}

QPixmap grabPillWithRoundedCorners(QPushButton* btn)
{
    const qreal ratio = btn->devicePixelRatioF();
    QPixmap pixmap(qRound(btn->width() * ratio), qRound(btn->height() * ratio));
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    btn->render(&pixmap, QPoint(), QRegion(), QWidget::DrawChildren);
    return pixmap;
}
