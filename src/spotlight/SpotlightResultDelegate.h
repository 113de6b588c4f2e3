// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ItemRoles.h"

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

    using enum ItemRoles::Role;

    explicit SpotlightResultDelegate(QObject* parent);

    /// Corner radius in pixels of the first row of a group at its top, and of the last at its
    /// bottom; 8 until set. More than half a row makes a half circle.
    void setLastRowBottomRadius(int radius);
    void setFirstRowTopRadius(int radius);

    /// Label of the group of a type, in the current language; an unknown type is an application.
    static QString typeLabel(const QString& type);

    /// \see RowPainting::twoRadiusPath
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
    static void paintIcon(QPainter* painter, const QRect& rect, const QModelIndex& index,
                          const RowColors& colors);
    static void paintTitle(QPainter* painter, const QRect& block, const QRect& circle,
                           const QString& title, const QColor& color);
    void paintBlock(QPainter* painter, const QRect& block, const QModelIndex& index,
                    const QColor& fill) const;

    int m_lastRowBottomRadius = 8;
    int m_firstRowTopRadius = 8;
};
