// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ElidedLabel.h"

#include "RowPainting.h"

#include <QPainter>

ElidedLabel::ElidedLabel(const QString& text, QWidget* parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    setText(text);
}

QSize ElidedLabel::sizeHint() const
{
    ensurePolished(); // the style sheet may bring another font
    return {0, fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return sizeHint();
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    RowPainting::drawLine(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, text());
}
