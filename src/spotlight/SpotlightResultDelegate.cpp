// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SpotlightResultDelegate.h"

#include "IconHelper.h"
#include "Localization.h"
#include "Theme.h"

#include <QIcon>
#include <QPainter>
#include <QPixmap>

#include <algorithm>

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

QFont rowFont(int px)
{
    QFont font;
    font.setFamilies(FontTokens::Families);
    font.setPixelSize(px);
    font.setWeight(QFont::DemiBold);
    return font;
}

/// Draws a text of any length and content on one line; what doesn't fit ends in an ellipsis.
void drawLine(QPainter* painter, const QRect& rect, Qt::Alignment alignment, QString text)
{
    // These two would begin a new line even in single-line text.
    text.replace(QChar::LineSeparator, u' ').replace(QChar::ParagraphSeparator, u' ');
    const QString elided = painter->fontMetrics().elidedText(text, Qt::ElideRight, rect.width());
    painter->drawText(rect, int(alignment) | Qt::TextSingleLine, elided);
}

QString itemType(const QModelIndex& index)
{
    const QString type = index.data(SpotlightResultDelegate::RoleItemType).toString();
    return type.isEmpty() ? QStringLiteral("URL") : type;
}

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
    if (type == QLatin1String("URL"))
        return Tr::t(QStringLiteral("spotlight.type_url"));
    if (type == QLatin1String("File"))
        return Tr::t(QStringLiteral("spotlight.type_file"));
    if (type == QLatin1String("Snippet"))
        return Tr::t(QStringLiteral("spotlight.type_snippet"));
    if (type == QLatin1String("Bulk"))
        return Tr::t(QStringLiteral("spotlight.type_bulk"));
    return Tr::t(QStringLiteral("spotlight.type_app"));
}

QPainterPath SpotlightResultDelegate::twoRadiusPath(const QRect& rect, int topRadius,
                                                    int bottomRadius)
{
    const QRectF r(rect);
    // A list narrower than the margins of a row leaves a negative size.
    const qreal cap = std::max(0.0, std::min(r.width(), r.height()) / 2.0);
    const qreal top = qBound(0.0, qreal(topRadius), cap);
    const qreal bottom = qBound(0.0, qreal(bottomRadius), cap);
    const qreal topSide = 2.0 * top;
    const qreal bottomSide = 2.0 * bottom;
    QPainterPath path;
    path.moveTo(r.left(), r.top() + top);
    path.arcTo(QRectF(r.left(), r.top(), topSide, topSide), 180.0, -90.0);
    path.lineTo(r.right() - top, r.top());
    path.arcTo(QRectF(r.right() - topSide, r.top(), topSide, topSide), 90.0, -90.0);
    path.lineTo(r.right(), r.bottom() - bottom);
    path.arcTo(QRectF(r.right() - bottomSide, r.bottom() - bottomSide, bottomSide, bottomSide), 0.0,
               -90.0);
    path.lineTo(r.left() + bottom, r.bottom());
    path.arcTo(QRectF(r.left(), r.bottom() - bottomSide, bottomSide, bottomSide), 270.0, -90.0);
    path.closeSubpath();
    return path;
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
    painter->setBrush(colors.circle);
    painter->drawEllipse(circle);
    paintIcon(painter, circle, index, colors.glyph);
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
    painter->setFont(rowFont(FontTokens::SizeSmPx));
    painter->setPen(QColor(Theme::colors().onSurfaceVariant));
    drawLine(painter, rect.adjusted(kHeaderIndent, 0, -kHeaderIndent, -kHeaderLift),
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

void SpotlightResultDelegate::paintIcon(QPainter* painter, const QRect& circle,
                                        const QModelIndex& index, const QColor& glyphColor)
{
    const QRect box = circle.adjusted(kIconInset, kIconInset, -kIconInset, -kIconInset);
    const auto icon = index.data(Qt::DecorationRole).value<QIcon>();
    if (!icon.isNull()) {
        icon.paint(painter, box, Qt::AlignCenter, QIcon::Normal, QIcon::Off);
        return;
    }
    const QString token = index.data(RoleIconToken).toString();
    if (IconHelper::hasCustomImage(token)) {
        const QPixmap image = IconHelper::customImage(token);
        if (image.isNull())
            return;
        const QPixmap scaled =
            image.scaled(box.size(), Qt::KeepAspectRatio, Qt::SmoothTransformation);
        QRect target(QPoint(0, 0), scaled.size());
        target.moveCenter(box.center());
        painter->drawPixmap(target, scaled);
        return;
    }
    IconHelper::drawGlyph(painter, QRectF(circle).center(),
                          IconHelper::codepointForItem(token, itemType(index)), kGlyphPx,
                          glyphColor);
}

void SpotlightResultDelegate::paintTitle(QPainter* painter, const QRect& block, const QRect& circle,
                                         const QString& title, const QColor& color)
{
    const int circleRight = circle.left() + circle.width();
    const int blockRight = block.left() + block.width();
    const QRect rect(circleRight + kTitleGap, block.top(), blockRight - circleRight - kTitleReserve,
                     block.height());
    painter->setFont(rowFont(FontTokens::SizeMdPx));
    painter->setPen(color);
    drawLine(painter, rect, Qt::AlignLeft | Qt::AlignVCenter, title);
}
