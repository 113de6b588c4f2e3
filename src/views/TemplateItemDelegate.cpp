// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TemplateItemDelegate.h"

#include "GlyphWidgets.h"
#include "ItemRoles.h"
#include "RowPainting.h"
#include "Theme.h"

#include <QAbstractItemView>
#include <QPainter>

#include <algorithm>

namespace
{

constexpr int kRadius = 10;
constexpr int kSideInset = 1; // of the selection

} // namespace

QSize TemplateItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    int width = option.rect.width();
    // A view offers its own width, and a row as wide would end below its scroll bar.
    if (const auto* view = qobject_cast<const QAbstractItemView*>(option.widget))
        width = std::min(width, view->viewport()->width());
    return {width, IconSize + 2 * PadV};
}

void TemplateItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const
{
    const ColorTokens c = Theme::colors();
    const QRectF row(option.rect);
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (isSelected) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(QColor(c.primaryContainer));
        painter->drawRoundedRect(row.adjusted(kSideInset, 0, -kSideInset, 0), kRadius, kRadius);
    }
    const QRectF badge(row.left() + PadH, row.center().y() - IconSize / 2.0, IconSize, IconSize);
    GlyphBadge::paintInto(painter, badge, index.data(ItemRoles::RoleIconToken).toString(),
                          index.data(ItemRoles::RoleItemType).toString());
    painter->setPen(QColor(isSelected ? c.onPrimaryContainer : c.onSurface));
    painter->setFont(option.font);
    const QRect line = option.rect.adjusted(PadH + IconSize + Gap, 0, -PadH, 0);
    RowPainting::drawLine(painter, line, Qt::AlignLeft | Qt::AlignVCenter,
                          index.data(Qt::DisplayRole).toString());
    painter->restore();
}
