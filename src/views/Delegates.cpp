// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Delegates.h"

#include "IconHelper.h"
#include "RowPainting.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace
{

constexpr int kTilePointSize = 9;
constexpr qreal kTileRadius = 20.0;
constexpr int kTilePad = 8; ///< above and below what stands in a tile
constexpr int kMaxLines = 2;
constexpr int kPlateAlpha = 28;
constexpr double kPictureShare = 0.23; ///< of a plate, left free on each side of a picture
constexpr double kGlyphShare = 0.5;
constexpr QChar kEllipsis(0x2026);

constexpr int kDescribedHeight = 64;
constexpr qreal kOuterRadius = 24.0;
constexpr qreal kInnerRadius = 4.0;
constexpr int kCardPad = 16;
constexpr int kCircleDiameter = 40;
constexpr int kCircleGap = 12;
constexpr int kCircleGlyphPx = 18;
constexpr int kDescriptionPx = 12;
constexpr float kDescriptionOpacity = 0.68F;

/// Hands out the words of a name one by one, since nobody looks at more than the first few. Words
/// are parted by blanks alone. Of a word that no line can hold only the beginning is given.
class Words
{
public:
    Words(const QString& text, int lineWidth) : m_text(text), m_lineWidth(lineWidth)
    {
        skipBlanks();
    }

    bool atEnd() const { return m_position == m_text.size(); }

    QString next()
    {
        const qsizetype blank = m_text.indexOf(u' ', m_position);
        const qsizetype end = blank < 0 ? m_text.size() : blank;
        const QStringView word = m_text.sliced(m_position, end - m_position);
        m_position = end;
        skipBlanks();
        const QStringView part = RowPainting::visiblePart(word, m_lineWidth);
        return part.size() == word.size() ? word.toString() : part.toString() + kEllipsis;
    }

private:
    void skipBlanks()
    {
        while (!atEnd() && m_text.at(m_position) == u' ')
            ++m_position;
    }

    QStringView m_text;
    int m_lineWidth;
    qsizetype m_position = 0;
};

/// Breaks a name into at most `maxLines` lines. The last one ends in an ellipsis if there would be
/// more; all of them may still be wider than `width`.
QStringList wrapped(const QString& title, const QFontMetrics& metrics, int width, int maxLines)
{
    QStringList lines;
    QString line;
    for (Words words(title, width); !words.atEnd();) {
        const QString word = words.next();
        const QString candidate = line.isEmpty() ? word : line + u' ' + word;
        if (line.isEmpty() || metrics.horizontalAdvance(candidate) <= width) {
            line = candidate;
            continue;
        }
        if (lines.size() + 1 == maxLines)
            return lines << line + kEllipsis;
        lines << line;
        line = word;
    }
    return lines << (line.isEmpty() ? title : line);
}

} // namespace

GridTileDelegate::GridTileDelegate(int tileGap, QObject* parent)
    : QStyledItemDelegate(parent), m_tileGap(tileGap)
{}

int GridTileDelegate::tileHeightFor(int cellW, int gap)
{
    return qBound(MinTileHeight, cellW - gap, MaxTileHeight);
}

GridTileDelegate::TileLayout
GridTileDelegate::layoutFor(const QRect& itemRect, const QString& title, const QFont& font) const
{
    TileLayout layout;
    const int half = m_tileGap / 2;
    layout.tileRect = itemRect.adjusted(half, half, -half, -half);
    const int h = layout.tileRect.height();
    const int w = layout.tileRect.width();
    layout.iconSize = qBound(38, qRound(h * 0.38), 60);
    layout.iconTextGap = qBound(6, qRound(h * 0.1), 24);
    layout.sidePad = qBound(8, qRound(w * 0.1), 20);
    layout.textW = w - 2 * layout.sidePad;

    // Always in the heaviest weight in use, or a name would break elsewhere when its tile lights
    // up.
    QFont heavy = font;
    heavy.setWeight(QFont::Bold);
    const QFontMetrics metrics(heavy);
    layout.lineHeight = metrics.height();
    const int room = h - 2 * kTilePad - layout.iconSize - layout.iconTextGap;
    const int maxLines = qBound(1, room / std::max(1, layout.lineHeight), kMaxLines);
    for (const QString& line : wrapped(title, metrics, layout.textW, maxLines))
        layout.lines << RowPainting::elidedLine(metrics, line, layout.textW);

    const int contentHeight = layout.iconSize + layout.iconTextGap +
                              layout.lineHeight * static_cast<int>(layout.lines.size());
    const int top = layout.tileRect.top() + std::max(kTilePad, (h - contentHeight) / 2);
    layout.iconRect = QRect(layout.tileRect.center().x() - layout.iconSize / 2, top,
                            layout.iconSize, layout.iconSize);
    return layout;
}

QSize GridTileDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    const int width = option.rect.width();
    return {width, tileHeightFor(width, m_tileGap) + m_tileGap};
}

void GridTileDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const
{
    const bool isCurrent =
        option.widget && option.widget->hasFocus() && option.state.testFlag(QStyle::State_Selected);
    const bool isLit = isCurrent || option.state.testFlag(QStyle::State_MouseOver);
    const TileColors colors = tileColors(isLit);
    QFont font = option.font;
    font.setFamilies(FontTokens::Families);
    font.setPointSize(kTilePointSize);
    font.setWeight(isLit ? QFont::Bold : QFont::Medium);
    const TileLayout layout = layoutFor(option.rect, index.data().toString(), font);

    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(colors.tile);
    painter->drawRoundedRect(layout.tileRect, kTileRadius, kTileRadius);
    paintIcon(painter, layout, colors, index);
    painter->setFont(font);
    painter->setPen(colors.text);
    paintName(painter, layout);
    painter->restore();
}

GridTileDelegate::TileColors GridTileDelegate::tileColors(bool isLit)
{
    const ColorTokens c = Theme::colors();
    if (!isLit)
        return {Theme::boxBg(), Theme::stateLayer(c, kPlateAlpha), c.onSurfaceVariant,
                c.onSurfaceVariant};
    const ColorTokens tones = getItemTheme();
    return {c.primaryContainer, tones.key, tones.onKey, c.onPrimaryContainer};
}

void GridTileDelegate::paintIcon(QPainter* painter, const TileLayout& layout,
                                 const TileColors& colors, const QModelIndex& index)
{
    const RowPainting::Circle plate{layout.iconRect, colors.plate, colors.glyph,
                                    qRound(layout.iconSize * kGlyphShare)};
    RowPainting::drawItemCircle(painter, plate, qRound(layout.iconSize * kPictureShare),
                                index.data(ItemRoles::RoleIconToken).toString(),
                                RowPainting::itemType(index));
}

void GridTileDelegate::paintName(QPainter* painter, const TileLayout& layout)
{
    QRect place(layout.tileRect.left() + layout.sidePad,
                layout.iconRect.bottom() + 1 + layout.iconTextGap, layout.textW, layout.lineHeight);
    for (const QString& line : layout.lines) {
        painter->drawText(place, Qt::AlignHCenter | Qt::AlignTop | Qt::TextSingleLine, line);
        place.translate(0, layout.lineHeight);
    }
}

CardListDelegate::CardListDelegate(const ColorTokens& tokens, const QString& seedHex,
                                   QObject* parent)
    : QStyledItemDelegate(parent), m_tokens(tokens), m_seedHex(seedHex)
{}

QSize CardListDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    if (index.data(RoleDescription).toString().isEmpty())
        return QStyledItemDelegate::sizeHint(option, index);
    return {option.rect.width(), kDescribedHeight};
}

void CardListDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const ColorTokens tones =
        Theme::tonesFor(QColor(m_seedHex.isEmpty() ? Theme::seedColorHex : m_seedHex));
    const RowLook look = rowLook(tones, option.state);
    paintCard(painter, option.rect, index, look.fill);
    const bool isLit = option.state & (QStyle::State_Selected | QStyle::State_MouseOver);
    const QRect area =
        paintIcon(painter, option.rect.adjusted(kCardPad, 0, -kCardPad, 0), index, tones, isLit);
    paintTexts(painter, area, index, look);
    painter->restore();
}

CardListDelegate::RowLook CardListDelegate::rowLook(const ColorTokens& tones,
                                                    QStyle::State state) const
{
    const ColorTokens& c = m_tokens;
    const bool isHovered = state.testFlag(QStyle::State_MouseOver);
    const bool isSelected = state.testFlag(QStyle::State_Selected);
    const QString& base = isSelected ? c.primaryContainer : tones.container;
    const QString& text = isSelected ? c.onPrimaryContainer : c.onSurface;
    return {isHovered ? Theme::stateLayerOn(base, text, Theme::StateHover) : base, text,
            isSelected};
}

void CardListDelegate::paintCard(QPainter* painter, const QRect& rect, const QModelIndex& index,
                                 const QColor& fill)
{
    const bool isFirst = index.row() == 0;
    const bool isLast = index.row() == index.model()->rowCount(index.parent()) - 1;
    painter->setPen(Qt::NoPen);
    painter->setBrush(fill);
    painter->drawPath(RowPainting::twoRadiusPath(rect, isFirst ? kOuterRadius : kInnerRadius,
                                                 isLast ? kOuterRadius : kInnerRadius));
}

QRect CardListDelegate::paintIcon(QPainter* painter, const QRect& area, const QModelIndex& index,
                                  const ColorTokens& tones, bool isLit)
{
    const int kind = index.data(RoleIconKind).toInt();
    if (kind == IconNone)
        return area;
    const QRect rect(area.left(), area.top() + (area.height() - kCircleDiameter) / 2,
                     kCircleDiameter, kCircleDiameter);
    RowPainting::drawGlyphCircle(painter,
                                 {rect, isLit ? tones.key : tones.container,
                                  isLit ? tones.onKey : tones.onContainer, kCircleGlyphPx},
                                 kind == IconEdit ? Glyph::Edit : Glyph::Delete);
    return area.adjusted(kCircleDiameter + kCircleGap, 0, 0, 0);
}

void CardListDelegate::paintTexts(QPainter* painter, const QRect& area, const QModelIndex& index,
                                  const RowLook& look)
{
    const QString title = index.data().toString();
    const QString description = index.data(RoleDescription).toString();
    const bool isBold = look.isBold || !description.isEmpty();
    painter->setFont(
        RowPainting::rowFont(FontTokens::SizeMdPx, isBold ? QFont::Bold : QFont::Normal));
    painter->setPen(look.text);
    if (description.isEmpty()) {
        RowPainting::drawLine(painter, area, Qt::AlignLeft | Qt::AlignVCenter, title);
        return;
    }
    const int half = area.height() / 2;
    RowPainting::drawLine(painter, QRect(area.topLeft(), QSize(area.width(), half)),
                          Qt::AlignLeft | Qt::AlignBottom, title);
    QColor muted = look.text;
    muted.setAlphaF(muted.alphaF() * kDescriptionOpacity);
    painter->setFont(RowPainting::rowFont(kDescriptionPx, QFont::Normal));
    painter->setPen(muted);
    RowPainting::drawLine(painter, area.adjusted(0, half, 0, 0), Qt::AlignLeft | Qt::AlignTop,
                          description);
}

QRect MainListDelegate::iconCircleRect(const QRect& bar)
{
    return {bar.x() + IconLeftPad, bar.y() + (bar.height() - IconSize) / 2, IconSize, IconSize};
}
