// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FolderRowDelegate.h"

#include "GlyphWidgets.h"
#include "RowPainting.h"
#include "Theme.h"

#include <QAbstractItemView>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace
{

constexpr int kCircleRadius = 9; // with its antialiased edge
constexpr int kCircleBox = 18;
constexpr int kTextLeft = 40;
constexpr int kTextRight = 9;
constexpr int kExtraWidth = 50;
constexpr int kRadius = 8;
constexpr qreal kFocusRing = 1.5;
constexpr int kMaxTextWidth = 4096; // what is beyond that isn't even measured

} // namespace

FolderRowDelegate::FolderRowDelegate(const ColorTokens& tokens,
                                     std::function<bool(const QModelIndex&)> checked,
                                     QObject* parent)
    : QStyledItemDelegate(parent),
      m_fg(tokens.onSurface),
      m_onFg(tokens.onPrimaryContainer),
      m_dimFg(tokens.onSurfaceVariant),
      m_hoverBg(tokens.surfaceVariant),
      m_selBg(tokens.primaryContainer),
      m_dotBg(tokens.primary),
      m_dotFg(tokens.onPrimary),
      m_checked(std::move(checked))
{}

QSize FolderRowDelegate::sizeHint(const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const
{
    const QFontMetrics metrics(option.font);
    const QString text =
        RowPainting::visiblePart(index.data(Qt::DisplayRole).toString(), kMaxTextWidth);
    int width = std::min(metrics.horizontalAdvance(text), kMaxTextWidth) + kExtraWidth;
    // A wider row would be scrolled sideways instead of being elided.
    if (const auto* view = qobject_cast<const QAbstractItemView*>(option.widget))
        width = std::min(width, view->viewport()->width());
    return {width, std::max(kCircleBox, metrics.height()) + 2 * PadV};
}

void FolderRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const
{
    const bool isChecked = m_checked && m_checked(index);
    const QRect rect = option.rect;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    paintBackground(painter, option, isChecked);
    const QPointF middle(rect.left() + PadH + kCircleRadius, rect.top() + rect.height() / 2.0);
    CheckCircle::draw(painter, middle, isChecked, isChecked ? m_onFg : m_dimFg, m_dotBg, m_dotFg);
    painter->setFont(option.font);
    painter->setPen(isChecked ? m_onFg : m_fg);
    const int left = rect.left() + kTextLeft;
    const QRect line(left, rect.top(), rect.right() - left - kTextRight, rect.height());
    RowPainting::drawLine(painter, line, Qt::AlignLeft | Qt::AlignVCenter,
                          index.data(Qt::DisplayRole).toString());
    painter->restore();
}

void FolderRowDelegate::paintBackground(QPainter* painter, const QStyleOptionViewItem& option,
                                        bool isChecked) const
{
    painter->setPen(Qt::NoPen);
    if (isChecked || option.state.testFlag(QStyle::State_MouseOver)) {
        painter->setBrush(isChecked ? m_selBg : m_hoverBg);
        painter->drawRoundedRect(option.rect, kRadius, kRadius);
    }
    if (!option.state.testFlag(QStyle::State_HasFocus))
        return;
    // Without it nobody could tell which row the keyboard is on, since that isn't the checked one.
    const qreal inset = kFocusRing / 2;
    painter->setPen(QPen(m_dotBg, kFocusRing));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(QRectF(option.rect).adjusted(inset, inset, -inset, -inset),
                             kRadius - inset, kRadius - inset);
}
