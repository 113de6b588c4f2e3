// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ItemRoles.h"
#include "Theme.h"

#include <QFont>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QStyledItemDelegate>

/// Paints an item of a grid as a rounded tile: a round plate with its icon above up to two lines of
/// its name. Names may be of any length and content; what lies behind the lines that are shown
/// costs next to nothing. All it knows of an item comes from `ItemRoles`. GUI thread only.
class GridTileDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static constexpr int TileSide = 120; ///< px, a tile as it was drawn by its designer
    static constexpr int MinTileHeight = 96;
    static constexpr int MaxTileHeight = 176;

    /// Where everything of a tile goes, in the coordinates of the rectangle that was asked for.
    struct TileLayout
    {
        QRect tileRect;
        QRect iconRect;    ///< of the plate
        QStringList lines; ///< of the name, one or two, elided
        int iconSize = 0;  ///< px, side of `iconRect`
        int iconTextGap = 0;
        int sidePad = 0;
        int lineHeight = 0;
        int textW = 0; ///< px that a line may take

        bool operator==(const TileLayout&) const = default;
    };

    /// \param tileGap px between two tiles, of which each keeps half on its sides.
    explicit GridTileDelegate(int tileGap, QObject* parent = nullptr);

    /// Height of a tile in a cell `cellW` wide with a gap of `gap` (px), not counting the gap.
    static int tileHeightFor(int cellW, int gap);

    /// \param itemRect the cell, tile and gap.
    /// \param font of the name; its weight doesn't matter.
    TileLayout layoutFor(const QRect& itemRect, const QString& title, const QFont& font) const;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    struct TileColors
    {
        QColor tile;
        QColor plate;
        QColor glyph;
        QColor text;
    };

    static TileColors tileColors(bool isLit);
    static void paintIcon(QPainter* painter, const TileLayout& layout, const TileColors& colors,
                          const QModelIndex& index);
    static void paintName(QPainter* painter, const TileLayout& layout);

    int m_tileGap;
};

/// Paints the rows of a short list as one stack of cards: title, description if there is one, and
/// an icon in a circle. GUI thread only.
class CardListDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// What stands in the circle.
    enum IconKind { IconNone = 0, IconEdit = 1, IconDelete = 2 };

    /// The title is the display role.
    enum Role {
        RoleDescription = Qt::UserRole + 1, ///< QString; with one, a row has a height of its own
        RoleIconKind = Qt::UserRole + 2     ///< int, an `IconKind`
    };

    /// \param seedHex the colour from which fill and circle are made; empty takes that of the
    /// theme.
    explicit CardListDelegate(const ColorTokens& tokens, const QString& seedHex,
                              QObject* parent = nullptr);

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    struct RowLook
    {
        QColor fill;
        QColor text;
        bool isBold = false;
    };

    RowLook rowLook(const ColorTokens& tones, QStyle::State state) const;
    static void paintCard(QPainter* painter, const QRect& rect, const QModelIndex& index,
                          const QColor& fill);
    /// Returns what is left of `area` for the texts.
    static QRect paintIcon(QPainter* painter, const QRect& area, const QModelIndex& index,
                           const ColorTokens& tones, bool isLit);
    static void paintTexts(QPainter* painter, const QRect& area, const QModelIndex& index,
                           const RowLook& look);

    ColorTokens m_tokens;
    QString m_seedHex;
};

/// Where the icon of an item stands in a row that is a bar instead of a tile. Pure.
class MainListDelegate
{
public:
    static constexpr int BarHeight = 64; ///< px
    static constexpr int IconLeftPad = 16;
    static constexpr int IconSize = 44;

    MainListDelegate() = delete;

    static QRect iconCircleRect(const QRect& bar);
};
