// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ReorderOverlay.h"

class QPushButton;

/// Reorders pills of different widths that stand in one row. Lies over the viewport of their
/// strip, which owns it.
class SectionReorderOverlay : public ReorderOverlay
{
    Q_OBJECT

public:
    static constexpr int TilePad = 4; ///< px on both sides of a pill, where it grows when lifted

    /// One pill.
    struct TileSource
    {
        QPixmap rest;
        QPixmap lit;
        QRect rect; ///< in the viewport; left of it or beyond its end if it is scrolled away
        ReorderTile::Picture picture = {}; ///< if there is one, it makes `rest` and `lit`
    };

    /// \param sources the pills from left to right.
    /// \param spacing px between two pills.
    SectionReorderOverlay(QWidget* viewport, const QVector<TileSource>& sources, int spacing,
                          int initialSlot);

protected:
    QColor backdropColor() const override;
    bool isHorizontal() const override { return true; }
    void createTiles() override;
    QVector<QRect> computeSlotRects(const QVector<ReorderTile*>& tiles) const override;

private:
    QVector<TileSource> m_sources;
    int m_spacing;
};

/// A picture of a button at its screen's ratio, with nothing behind its rounded corners.
QPixmap grabPillWithRoundedCorners(QPushButton* btn);
