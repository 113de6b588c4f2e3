// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FlowLayout.h"

#include <QWidget>

FlowLayout::FlowLayout(QWidget* parent, int hSpacing, int vSpacing)
    : QLayout(parent), m_hSpace(hSpacing), m_vSpace(vSpacing)
{}

FlowLayout::~FlowLayout()
{
    while (QLayoutItem* item = takeAt(0))
        delete item;
}

void FlowLayout::addItem(QLayoutItem* item)
{
    m_items.append(item);
    invalidate();
}

int FlowLayout::count() const
{
    return int(m_items.size());
}

QLayoutItem* FlowLayout::itemAt(int index) const
{
    return m_items.value(index, nullptr);
}

QLayoutItem* FlowLayout::takeAt(int index)
{
    if (index < 0 || index >= m_items.size())
        return nullptr;
    QLayoutItem* item = m_items.takeAt(index);
    invalidate();
    return item;
}

Qt::Orientations FlowLayout::expandingDirections() const
{
    return {};
}

bool FlowLayout::hasHeightForWidth() const
{
    return true;
}

int FlowLayout::heightForWidth(int width) const
{
    return doLayout(QRect(0, 0, width, 0), true);
}

QSize FlowLayout::sizeHint() const
{
    return minimumSize();
}

QSize FlowLayout::minimumSize() const
{
    QSize largest(0, 0);
    for (QLayoutItem* item : m_items)
        largest = largest.expandedTo(hintOf(item));
    return largest.grownBy(contentsMargins());
}

void FlowLayout::setGeometry(const QRect& rect)
{
    QLayout::setGeometry(rect);
    doLayout(rect, false);
}

int FlowLayout::doLayout(const QRect& rect, bool testOnly) const
{
    const QMargins margins = contentsMargins();
    const QRect area = rect.marginsRemoved(margins);
    int x = area.left();
    int y = area.top();
    int lineHeight = 0;
    for (QLayoutItem* item : m_items) {
        const QSize size = hintOf(item);
        // A row is never left empty: an item wider than the area stands alone and overflows.
        if (x + size.width() > area.right() + 1 && lineHeight > 0) {
            x = area.left();
            y += lineHeight + m_vSpace;
            lineHeight = 0;
        }
        if (!testOnly)
            item->setGeometry(QRect(QPoint(x, y), size));
        x += size.width() + m_hSpace;
        lineHeight = qMax(lineHeight, size.height());
    }
    return y + lineHeight - rect.y() + margins.bottom();
}

QSize FlowLayout::hintOf(QLayoutItem* item)
{
    const QWidget* widget = item->widget();
    if (!widget)
        return item->sizeHint();
    return widget->sizeHint()
        .expandedTo(widget->minimumSizeHint())
        .boundedTo(widget->maximumSize())
        .expandedTo(widget->minimumSize());
}
