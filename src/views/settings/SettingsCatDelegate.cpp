// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SettingsCatDelegate.h"

#include "RowPainting.h"
#include "Theme.h"

#include <QPainter>

#include <algorithm>

namespace
{

constexpr int kSideInset = 12;
constexpr int kBubbleInset = 12;
constexpr int kBubbleMax = 28;
constexpr int kBubbleClearance = 6; // of the pill's height
constexpr int kBubbleAlpha = 28;
constexpr int kGlyphPx = 16;
constexpr int kTextGap = 10;
constexpr int kTextPad = 16;

} // namespace

SettingsCatDelegate::SettingsCatDelegate(int rowGapPx, QObject* parent)
    : QStyledItemDelegate(parent), rowGap(rowGapPx)
{}

QSize SettingsCatDelegate::sizeHint(const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const
{
    Q_UNUSED(index);
    return {option.rect.width(), PillHeight + rowGap};
}

SettingsCatDelegate::Look SettingsCatDelegate::lookFor(QStyle::State state)
{
    const ColorTokens c = Theme::colors();
    if (state & QStyle::State_Selected) {
        const ColorTokens t = getItemTheme();
        return {c.primaryContainer, t.key, t.onKey, c.onPrimaryContainer, QFont::Bold};
    }
    const QString pill = state & QStyle::State_MouseOver ? c.surfaceVariant : Theme::boxBg();
    return {pill, Theme::stateLayer(c, kBubbleAlpha), c.onSurfaceVariant, c.onSurfaceVariant,
            QFont::Medium};
}

void SettingsCatDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const
{
    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    const Look look = lookFor(option.state);
    const QRect pill = option.rect.adjusted(kSideInset, rowGap / 2, -kSideInset, -rowGap / 2);
    painter->setPen(Qt::NoPen);
    painter->setBrush(look.pill);
    painter->drawRoundedRect(pill, pill.height() / 2.0, pill.height() / 2.0);
    int textLeft = pill.left() + kTextPad;
    if (const uint glyph = index.data(Qt::UserRole).toUInt()) {
        const int side = std::min(pill.height() - kBubbleClearance, kBubbleMax);
        const QRect bubble(pill.left() + kBubbleInset, pill.top() + (pill.height() - side) / 2,
                           side, side);
        RowPainting::drawGlyphCircle(painter, {bubble, look.bubble, look.glyph, kGlyphPx}, glyph);
        textLeft = bubble.right() + 1 + kTextGap;
    }
    painter->setFont(RowPainting::rowFont(FontTokens::SizeSmPx, look.weight));
    painter->setPen(look.text);
    QRect text = pill;
    text.setLeft(textLeft);
    text.setRight(pill.right() - kTextPad);
    RowPainting::drawLine(painter, text, Qt::AlignLeft | Qt::AlignVCenter, index.data().toString());
    painter->restore();
}
