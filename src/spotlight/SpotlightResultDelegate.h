// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QPainterPath>
#include <QStyledItemDelegate>

/// Paints the rows of the Spotlight list: group headers, results and passive hints. All it knows of
/// a row comes from the item's roles. GUI thread only.
class SpotlightResultDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static constexpr int HeaderHeight = 30;   ///< px
    static constexpr int RowHeight = 64;      ///< px, of every row but a header
    static constexpr int RowBlockHeight = 56; ///< px, what is painted of a row
    static constexpr int RowGap = RowHeight - RowBlockHeight;

    /// Item roles. The title is the display role, an icon of the row's own the decoration role.
    enum Role {
        RoleOriginalIndex = 256, ///< int, own items: place in their section
        RoleElementId = 258,     ///< QString, own items
        RoleItemType = 261,      ///< QString, all but headers; empty counts as "URL"
        RoleReserved = 262,      ///< int, always 0
        RoleIconToken = 263,     ///< QString, icon string of the row
        RoleCategory = 264,      ///< QString, own items: section name
        RoleSynthetic = 265,     ///< bool: no stored item stands behind the row
        RoleValue = 266,         ///< QString, synthetic rows: what to launch
        RoleIsHeader = 267,      ///< bool
        RoleGroupFirst = 268,    ///< bool
        RoleGroupLast = 269,     ///< bool
        RoleIsHint = 270,        ///< bool
        RoleNextFree = 271       ///< first number that others may use
    };

    explicit SpotlightResultDelegate(QObject* parent);

    /// Corner radius in pixels of the first row of a group at its top, and of the last at its
    /// bottom; 8 until set. More than half a row makes a half circle.
    void setLastRowBottomRadius(int radius);
    void setFirstRowTopRadius(int radius);

    /// Label of the group of a type, in the current language; an unknown type is an application.
    static QString typeLabel(const QString& type);

    /// A rounded rectangle with one radius for its upper and one for its lower corners, each
    /// bounded to half the shorter side.
    static QPainterPath twoRadiusPath(const QRect& rect, int topRadius, int bottomRadius);

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    struct RowColors
    {
        QColor block;
        QColor circle;
        QColor glyph;
        QColor title;
    };

    static RowColors rowColors(bool isSelected, bool isHovered, bool isHint);
    static void paintHeader(QPainter* painter, const QRect& rect, const QString& text);
    static void paintIcon(QPainter* painter, const QRect& circle, const QModelIndex& index,
                          const QColor& glyphColor);
    static void paintTitle(QPainter* painter, const QRect& block, const QRect& circle,
                           const QString& title, const QColor& color);
    void paintBlock(QPainter* painter, const QRect& block, const QModelIndex& index,
                    const QColor& fill) const;

    int m_lastRowBottomRadius = 8;
    int m_firstRowTopRadius = 8;
};
