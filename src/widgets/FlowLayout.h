// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLayout>
#include <QList>

/// Lays items out in rows from the left, each at its own size, and starts a new row where the next
/// item would cross the right edge. Owns its items.
class FlowLayout : public QLayout
{
    Q_OBJECT

public:
    /// \param hSpacing,vSpacing gaps between neighbours in a row and between rows, in pixels.
    FlowLayout(QWidget* parent, int hSpacing, int vSpacing);
    ~FlowLayout() override;

    void addItem(QLayoutItem* item) override;
    int count() const override;
    /// Null outside the range.
    QLayoutItem* itemAt(int index) const override;
    /// Hands the item over to the caller; null outside the range.
    QLayoutItem* takeAt(int index) override;

    Qt::Orientations expandingDirections() const override;
    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    void setGeometry(const QRect& rect) override;

private:
    /// Walks the rows in `rect`, moves the items unless `testOnly`, and returns the height used.
    int doLayout(const QRect& rect, bool testOnly) const;
    static QSize hintOf(QLayoutItem* item);

    QList<QLayoutItem*> m_items;
    int m_hSpace;
    int m_vSpace;
};
