// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStyledItemDelegate>

/// Paints the rows of a template's items: badge and name. It reads the display role and, of
/// `ItemRoles`, the type and the icon. GUI thread only.
class TemplateItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static constexpr int IconSize = 28; ///< lengths in pixels
    static constexpr int PadH = 8;
    static constexpr int PadV = 8;
    static constexpr int Gap = 10; ///< between badge and name

    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};
