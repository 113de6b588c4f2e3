// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "PickerPill.h"

#include "Keys.h"
#include "RowPainting.h"

#include <QStyle>
#include <QStyleOptionButton>

PickerPill::PickerPill(QWidget* parent) : GlyphButton(parent)
{
    setFixedHeight(Height);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
}

QSize PickerPill::sizeHint() const
{
    ensurePolished();
    return hintFor(lineOf(MaxLabelWidth));
}

QSize PickerPill::minimumSizeHint() const
{
    ensurePolished();
    return hintFor(QString());
}

QString PickerPill::lineOf(int width) const
{
    // A button would begin a new line there.
    const QString line =
        RowPainting::visiblePart(label(), MaxLabelWidth).replace(QChar::LineFeed, u' ');
    return RowPainting::elidedLine(fontMetrics(), line, width);
}

QSize PickerPill::hintFor(const QString& text) const
{
    QStyleOptionButton option;
    GlyphButton::initStyleOption(&option);
    const QFontMetrics metrics = fontMetrics();
    const QSize contents(metrics.horizontalAdvance(text), metrics.height());
    return style()->sizeFromContents(QStyle::CT_PushButton, &option, contents, this);
}

void PickerPill::initStyleOption(QStyleOptionButton* option) const
{
    GlyphButton::initStyleOption(option);
    const int room = style()->subElementRect(QStyle::SE_PushButtonContents, option, this).width();
    option->text = Keys::withoutShortcut(lineOf(room));
}
