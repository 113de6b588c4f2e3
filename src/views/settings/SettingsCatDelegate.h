// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QFont>
#include <QStyledItemDelegate>

/// Paints a category of the settings as a pill with a glyph in a bubble and its name. The glyph's
/// codepoint is in `Qt::UserRole`; 0 is none. GUI thread only.
class SettingsCatDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static constexpr int PillHeight = 38; ///< px

    /// \param rowGap px between two pills, of which each keeps half above and below.
    explicit SettingsCatDelegate(int rowGap, QObject* parent = nullptr);

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    struct Look
    {
        QColor pill;
        QColor bubble;
        QColor glyph;
        QColor text;
        QFont::Weight weight;
    };

    static Look lookFor(QStyle::State state);

    int rowGap;
};
