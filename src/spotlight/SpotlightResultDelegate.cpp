// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SpotlightResultDelegate.h"

#include "RowPainting.h"
#include "Theme.h"

#include <QIcon>
#include <QPainter>

namespace
{

constexpr int kHeaderIndent = 16;
constexpr int kHeaderLift = 2;
constexpr int kBlockInset = 4;
constexpr int kInnerRadius = 8;
constexpr int kCircleDiameter = 36;
constexpr int kCircleIndent = 12;
constexpr int kIconInset = 7;
constexpr int kGlyphPx = 20;
constexpr int kTitleGap = 12;
constexpr int kTitleReserve = 18;

} // namespace

SpotlightResultDelegate::SpotlightResultDelegate(QObject* parent) : QStyledItemDelegate(parent)
{}

void SpotlightResultDelegate::setLastRowBottomRadius(int radius)
{
    m_lastRowBottomRadius = radius;
}

void SpotlightResultDelegate::setFirstRowTopRadius(int radius)
{
    m_firstRowTopRadius = radius;
}

QString SpotlightResultDelegate::typeLabel(const QString& type)
{
    return RowPainting::typeLabel(type);
}

QPainterPath SpotlightResultDelegate::twoRadiusPath(const QRect& rect, int topRadius,
                                                    int bottomRadius)
{
    return RowPainting::twoRadiusPath(rect, topRadius, bottomRadius);
}

QSize SpotlightResultDelegate::sizeHint(const QStyleOptionViewItem& option,
                                        const QModelIndex& index) const
{
    return {option.rect.width(), index.data(RoleIsHeader).toBool() ? HeaderHeight : RowHeight};
}

void SpotlightResultDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const
{
    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    const QString title = index.data(Qt::DisplayRole).toString();
    if (index.data(RoleIsHeader).toBool()) {
        paintHeader(painter, option.rect, title);
        painter->restore();
        return;
    }
    const bool isHint = index.data(RoleIsHint).toBool();
    const RowColors colors = rowColors(option.state.testFlag(QStyle::State_Selected),
                                       option.state.testFlag(QStyle::State_MouseOver), isHint);
    const QRect block = option.rect.adjusted(kBlockInset, kBlockInset, -kBlockInset, -kBlockInset);
    paintBlock(painter, block, index, colors.block);
    const QRect circle(block.left() + kCircleIndent,
                       block.top() + (block.height() - kCircleDiameter) / 2, kCircleDiameter,
                       kCircleDiameter);
    paintIcon(painter, circle, index, colors);
    paintTitle(painter, block, circle, title, colors.title);
    painter->restore();
}

SpotlightResultDelegate::RowColors SpotlightResultDelegate::rowColors(bool isSelected,
                                                                      bool isHovered, bool isHint)
{
    const ColorTokens c = Theme::colors();
    if (isHint) // a message never lights up
        return {Theme::boxBg(), c.surfaceVariant, c.onSurfaceVariant, c.onSurfaceVariant};
    if (isSelected)
        return {Theme::boxActiveBg(), c.primary, c.onPrimary, c.onSurface};
    const QString block = isHovered ? Theme::boxActiveBg() : Theme::boxBg();
    return {block, c.surfaceVariant, c.onSurface, c.onSurface};
}

void SpotlightResultDelegate::paintHeader(QPainter* painter, const QRect& rect, const QString& text)
{
    painter->setFont(RowPainting::rowFont(FontTokens::SizeSmPx));
    painter->setPen(QColor(Theme::colors().onSurfaceVariant));
    RowPainting::drawLine(painter, rect.adjusted(kHeaderIndent, 0, -kHeaderIndent, -kHeaderLift),
                          Qt::AlignLeft | Qt::AlignBottom, text);
}

void SpotlightResultDelegate::paintBlock(QPainter* painter, const QRect& block,
                                         const QModelIndex& index, const QColor& fill) const
{
    painter->setPen(Qt::NoPen);
    painter->setBrush(fill);
    const int top = index.data(RoleGroupFirst).toBool() ? m_firstRowTopRadius : kInnerRadius;
    const int bottom = index.data(RoleGroupLast).toBool() ? m_lastRowBottomRadius : kInnerRadius;
    if (top != kInnerRadius || bottom != kInnerRadius)
        painter->drawPath(twoRadiusPath(block, top, bottom));
    else
        painter->drawRoundedRect(block, kInnerRadius, kInnerRadius);
}

void SpotlightResultDelegate::paintIcon(QPainter* painter, const QRect& rect,
                                        const QModelIndex& index, const RowColors& colors)
{
    const RowPainting::Circle circle{rect, colors.circle, colors.glyph, kGlyphPx};
    const auto icon = index.data(Qt::DecorationRole).value<QIcon>();
    if (icon.isNull()) {
        RowPainting::drawItemCircle(painter, circle, kIconInset,
                                    index.data(RoleIconToken).toString(),
                                    RowPainting::itemType(index));
        return;
    }
    RowPainting::fillCircle(painter, circle);
    icon.paint(painter, rect.adjusted(kIconInset, kIconInset, -kIconInset, -kIconInset),
               Qt::AlignCenter, QIcon::Normal, QIcon::Off);
}

void SpotlightResultDelegate::paintTitle(QPainter* painter, const QRect& block, const QRect& circle,
                                         const QString& title, const QColor& color)
{
    const int circleRight = circle.left() + circle.width();
    const int blockRight = block.left() + block.width();
    const QRect rect(circleRight + kTitleGap, block.top(), blockRight - circleRight - kTitleReserve,
                     block.height());
    painter->setFont(RowPainting::rowFont(FontTokens::SizeMdPx));
    painter->setPen(color);
    RowPainting::drawLine(painter, rect, Qt::AlignLeft | Qt::AlignVCenter, title);
}
