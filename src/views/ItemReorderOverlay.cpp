// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ItemReorderOverlay.h"

#include "IconHelper.h"
#include "ItemImages.h"
#include "ItemRoles.h"
#include "Theme.h"

#include <QAbstractItemDelegate>
#include <QListWidget>
#include <QPainter>
#include <QStandardItemModel>
#include <QStyleOptionViewItem>

ItemReorderOverlay::ItemReorderOverlay(QListWidget* list, int initialSlot)
    : ReorderOverlay(list->viewport()), m_list(list)
{
    initialize(initialSlot);
    keepRowsFromChanges();
    ItemImages::callOnArrival(this, [this] { renewItemPictures(); });
}

void ItemReorderOverlay::keepRowsFromChanges()
{
    const QAbstractItemModel* model = m_list->model();
    const auto keep = [this] { keepRows(); };
    connect(model, &QAbstractItemModel::modelAboutToBeReset, this, keep);
    connect(model, &QAbstractItemModel::layoutAboutToBeChanged, this, keep);
    connect(model, &QAbstractItemModel::rowsAboutToBeInserted, this, keep);
    connect(model, &QAbstractItemModel::rowsAboutToBeMoved, this, keep);
    connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, this, keep);
}

/// Pictures are made late, since those of all rows at once may be gigabytes; the rows behind them
/// take little.
void ItemReorderOverlay::keepRows()
{
    const bool isOver = !parentWidget();
    if (m_keptRows || isOver)
        return;
    m_keptRows = new QStandardItemModel(int(m_baseRects.size()), 1, this);
    for (int row = 0; row < m_baseRects.size(); ++row) {
        const QModelIndex source = m_list->model()->index(row, 0);
        const QModelIndex kept = m_keptRows->index(row, 0);
        m_keptRows->setData(kept, source.data(), Qt::DisplayRole);
        // One by one: an item that answers by itself has nothing in what `itemData()` gives.
        for (int role = ItemRoles::RoleOriginalIndex; role < ItemRoles::RoleNextFree; ++role)
            m_keptRows->setData(kept, source.data(role), role);
    }
}

QColor ItemReorderOverlay::backdropColor() const
{
    return QColor(Theme::colors().surface);
}

QString ItemReorderOverlay::hintKey() const
{
    return QStringLiteral("reorder.hint");
}

void ItemReorderOverlay::createTiles()
{
    for (int row = 0; row < m_list->count(); ++row) {
        const QRect rect = m_list->visualItemRect(m_list->item(row));
        m_baseRects.append(rect);
        addTile([this, row](bool lit) { return renderItem(row, lit); }, row, rect);
    }
}

QPixmap ItemReorderOverlay::renderItem(int row, bool lit) const
{
    const QRect rect(QPoint(0, 0), m_baseRects.at(row).size());
    const qreal ratio = m_list->devicePixelRatioF();
    QPixmap pixmap(qRound(rect.width() * ratio), qRound(rect.height() * ratio));
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    const QModelIndex index = indexOf(row);
    QStyleOptionViewItem option;
    option.initFrom(m_list);
    option.font = m_list->font();
    option.rect = rect;
    option.state = QStyle::State_Enabled;
    if (lit)
        option.state |= QStyle::State_MouseOver;
    option.widget = m_list;
    option.index = index;
    QPainter painter(&pixmap);
    m_list->itemDelegateForIndex(index)->paint(&painter, option, index);
    return pixmap;
}

QModelIndex ItemReorderOverlay::indexOf(int row) const
{
    const QAbstractItemModel* rows = m_keptRows ? m_keptRows : m_list->model();
    return rows->index(row, 0);
}

void ItemReorderOverlay::renewItemPictures()
{
    const bool isOver = !parentWidget();
    if (isOver)
        return;
    for (ReorderTile* tile : tiles()) {
        if (!tile->hasPicture())
            continue;
        const QString token = indexOf(tile->sourceRow()).data(ItemRoles::RoleIconToken).toString();
        if (!token.isEmpty() && !IconHelper::isGlyphToken(token))
            tile->forgetPictures();
    }
}

QVector<QRect> ItemReorderOverlay::computeSlotRects(const QVector<ReorderTile*>&) const
{
    QVector<QRect> rects;
    rects.reserve(m_baseRects.size());
    for (const QRect& rect : m_baseRects)
        rects.append(rect.translated(0, hintInset()));
    return rects;
}
