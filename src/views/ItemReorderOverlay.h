// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ReorderOverlay.h"

class QListWidget;
class QStandardItemModel;

/// Reorders the rows of a list in the shape in which they stand in it, from left to right and row
/// after row. Lies over the list's viewport, which owns it. Shows the rows as they were when it was
/// made, whatever becomes of the list; pictures of items that are read later appear then.
class ItemReorderOverlay : public ReorderOverlay
{
    Q_OBJECT

public:
    /// \param initialSlot row under the cursor, bounded to the rows there are.
    ItemReorderOverlay(QListWidget* list, int initialSlot);

protected:
    QColor backdropColor() const override;
    QString hintKey() const override;
    void createTiles() override;
    QVector<QRect> computeSlotRects(const QVector<ReorderTile*>& tiles) const override;

private:
    QPixmap renderItem(int row, bool lit) const;
    QModelIndex indexOf(int row) const;
    void renewItemPictures();
    void keepRowsFromChanges();
    void keepRows();

    QListWidget* m_list;
    QStandardItemModel* m_keptRows = nullptr; ///< the rows, once those of the list are others
    QVector<QRect> m_baseRects;               ///< of the rows, when the overlay was made
};
