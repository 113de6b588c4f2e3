// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "RowPainting.h"

#include "IconHelper.h"
#include "ItemImages.h"
#include "ItemRoles.h"
#include "Localization.h"
#include "Theme.h"
#include "Types.h"

#include <QFontMetrics>
#include <QModelIndex>
#include <QPainter>
#include <QPixmap>

#include <algorithm>

namespace
{

// Characters that are narrower than a pixel, such as accents written behind their letter.
constexpr qsizetype kNarrowCharacters = 256;
constexpr char16_t kEllipsis = u'\u2026';

} // namespace

QFont RowPainting::rowFont(int px, QFont::Weight weight)
{
    QFont font;
    font.setFamilies(FontTokens::Families);
    font.setPixelSize(px);
    font.setWeight(weight);
    return font;
}

QString RowPainting::itemType(const QModelIndex& index)
{
    const QString type = index.data(ItemRoles::RoleItemType).toString();
    return type.isEmpty() ? QString(ItemType::Url) : type;
}

QString RowPainting::typeLabel(const QString& type)
{
    if (type == ItemType::Url)
        return Tr::t(QStringLiteral("spotlight.type_url"));
    if (type == ItemType::File)
        return Tr::t(QStringLiteral("spotlight.type_file"));
    if (type == ItemType::Snippet)
        return Tr::t(QStringLiteral("spotlight.type_snippet"));
    if (type == ItemType::Bulk)
        return Tr::t(QStringLiteral("spotlight.type_bulk"));
    return Tr::t(QStringLiteral("spotlight.type_app"));
}

QString RowPainting::visiblePart(const QString& text, int width)
{
    const QStringView part = visiblePart(QStringView(text), width);
    return part.size() == text.size() ? text : part.toString();
}

QStringView RowPainting::visiblePart(QStringView text, int width)
{
    const qsizetype length = std::max(width, 0) + kNarrowCharacters;
    if (length >= text.size())
        return text;
    return text.first(text.at(length - 1).isHighSurrogate() ? length + 1 : length);
}

QString RowPainting::elidedLine(const QFontMetrics& metrics, const QString& text, int width)
{
    QString part = visiblePart(text, width);
    const bool isWhole = part.size() == text.size();
    // These two would begin a new line even in single-line text.
    part.replace(QChar::LineSeparator, u' ').replace(QChar::ParagraphSeparator, u' ');
    QString line = metrics.elidedText(part, Qt::ElideRight, width);
    if (!isWhole && line == part)
        line += kEllipsis;
    return line;
}

void RowPainting::drawLine(QPainter* painter, const QRect& rect, Qt::Alignment alignment,
                           const QString& text)
{
    painter->drawText(rect, int(alignment) | Qt::TextSingleLine,
                      elidedLine(painter->fontMetrics(), text, rect.width()));
}

void RowPainting::fillCircle(QPainter* painter, const Circle& circle)
{
    painter->setPen(Qt::NoPen);
    painter->setBrush(circle.fill);
    painter->drawEllipse(circle.rect);
}

void RowPainting::drawGlyphCircle(QPainter* painter, const Circle& circle, uint glyph)
{
    fillCircle(painter, circle);
    IconHelper::drawGlyph(painter, QRectF(circle.rect).center(), glyph, circle.glyphPx, circle.ink);
}

void RowPainting::drawItemCircle(QPainter* painter, const Circle& circle, int pictureInset,
                                 const QString& token, const QString& type)
{
    const QRect box =
        circle.rect.adjusted(pictureInset, pictureInset, -pictureInset, -pictureInset);
    const ItemImages::Picture picture =
        ItemImages::find(token, box.size(), painter->device()->devicePixelRatio());
    if (picture.state == ItemImages::State::None) {
        drawGlyphCircle(painter, circle, IconHelper::codepointForItem(token, type));
        return;
    }
    fillCircle(painter, circle);
    if (picture.state == ItemImages::State::Ready)
        drawPicture(painter, box, picture.pixmap);
}

void RowPainting::drawPicture(QPainter* painter, const QRect& box, const QPixmap& picture)
{
    const qreal ratio = picture.devicePixelRatio();
    const QRect pixels(QPoint(0, 0), (QSizeF(box.size()) * ratio).toSize());
    QRect target(QPoint(0, 0), picture.size());
    target.moveCenter(pixels.center());
    painter->drawPixmap(box.topLeft() + QPointF(target.topLeft()) / ratio, picture);
}

QPainterPath RowPainting::twoRadiusPath(const QRect& rect, qreal topRadius, qreal bottomRadius)
{
    const QRectF r(rect);
    // A list narrower than the margins of a row leaves a negative size.
    const qreal cap = std::max(0.0, std::min(r.width(), r.height()) / 2.0);
    const qreal top = qBound(0.0, topRadius, cap);
    const qreal bottom = qBound(0.0, bottomRadius, cap);
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
