// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QStyledItemDelegate>

#include <functional>

struct ColorTokens;

/// Paints the rows of a list of folders: a check circle and a name. GUI thread only.
class FolderRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static constexpr int PadH = 10; ///< px, free at the left and the right edge
    static constexpr int PadV = 8;  ///< px, free above and below the text

    /// \param checked asked at each paint whether a row is checked; may be empty, then none is.
    FolderRowDelegate(const ColorTokens& tokens, std::function<bool(const QModelIndex&)> checked,
                      QObject* parent);

    /// As wide as the text wants it, but never wider than the view.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    void paintBackground(QPainter* painter, const QStyleOptionViewItem& option,
                         bool isChecked) const;

    QColor m_fg;
    QColor m_onFg;
    QColor m_dimFg;
    QColor m_hoverBg;
    QColor m_selBg;
    QColor m_dotBg;
    QColor m_dotFg;
    std::function<bool(const QModelIndex&)> m_checked;
};
