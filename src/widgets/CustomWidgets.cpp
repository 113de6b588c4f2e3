// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CustomWidgets.h"

#include "Theme.h"

#include <QFontMetrics>
#include <QPaintEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QTextBlock>

namespace
{

constexpr int kGhostGap = 4; // between the cursor and the ghost, in pixels
constexpr float kGhostAlpha = 0.55F;

constexpr int kGutterPadding = 16;     // beside the digits, on both sides together
constexpr int kGutterPaddingRight = 8; // the share of it between digits and text

} // namespace

GhostLineEdit::GhostLineEdit(QWidget* parent) : QLineEdit(parent)
{}

void GhostLineEdit::setGhostText(const QString& text)
{
    if (m_ghost == text)
        return;
    m_ghost = text;
    update();
}

void GhostLineEdit::setGhostColor(const QColor& color)
{
    if (m_ghostColor == color)
        return;
    m_ghostColor = color;
    update();
}

void GhostLineEdit::paintEvent(QPaintEvent* event)
{
    QLineEdit::paintEvent(event);
    if (m_ghost.isEmpty() || cursorPosition() != text().size())
        return;
    const QRect cursor = cursorRect();
    const int x = cursor.right() + kGhostGap;
    const int room = rect().right() - x;
    if (room <= 0)
        return;

    QColor color = m_ghostColor.isValid() ? m_ghostColor : palette().color(QPalette::Text);
    color.setAlphaF(kGhostAlpha);
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(color);
    painter.drawText(QRect(x, cursor.top(), room, cursor.height()),
                     Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(m_ghost, Qt::ElideRight, room));
}

SizeAdaptiveStackedWidget::SizeAdaptiveStackedWidget(QWidget* parent) : QStackedWidget(parent)
{
    connect(this, &QStackedWidget::currentChanged, this, [this] { updateGeometry(); });
}

QSize SizeAdaptiveStackedWidget::sizeHint() const
{
    const QWidget* page = currentWidget();
    return page ? wrapped(page, page->sizeHint()) : QStackedWidget::sizeHint();
}

QSize SizeAdaptiveStackedWidget::minimumSizeHint() const
{
    const QWidget* page = currentWidget();
    return page ? wrapped(page, page->minimumSizeHint()) : QStackedWidget::minimumSizeHint();
}

bool SizeAdaptiveStackedWidget::hasHeightForWidth() const
{
    return false;
}

void SizeAdaptiveStackedWidget::resizeEvent(QResizeEvent* event)
{
    QStackedWidget::resizeEvent(event);
    if (event->size().width() != event->oldSize().width())
        updateGeometry(); // the height of wrapped text depends on it
}

QSize SizeAdaptiveStackedWidget::wrapped(const QWidget* page, const QSize& hint) const
{
    if (!testAttribute(Qt::WA_Resized) || !page->hasHeightForWidth())
        return hint;
    return {hint.width(), page->heightForWidth(width())};
}

NumberedPlainTextEdit::NumberedPlainTextEdit(QWidget* parent)
    : QPlainTextEdit(parent), lineNumberArea(new LineNumberArea(this))
{
    connect(this, &QPlainTextEdit::blockCountChanged, this,
            &NumberedPlainTextEdit::updateLineNumberAreaWidth);
    connect(this, &QPlainTextEdit::updateRequest, this,
            &NumberedPlainTextEdit::updateLineNumberArea);
    updateLineNumberAreaWidth(blockCount());
}

void NumberedPlainTextEdit::setLineNumbersVisible(bool on)
{
    if (m_lineNumbersVisible == on)
        return;
    m_lineNumbersVisible = on;
    lineNumberArea->setVisible(on);
    updateLineNumberAreaWidth(blockCount());
}

int NumberedPlainTextEdit::lineNumberAreaWidth() const
{
    if (!m_lineNumbersVisible)
        return 0;
    const int digits = int(QString::number(qMax(1, blockCount())).size());
    return digits * fontMetrics().horizontalAdvance(QLatin1Char('9')) + kGutterPadding;
}

void NumberedPlainTextEdit::updateLineNumberAreaWidth(int)
{
    setViewportMargins(lineNumberAreaWidth(), 0, 0, 0);
}

void NumberedPlainTextEdit::updateLineNumberArea(const QRect& rect, int dy)
{
    if (dy != 0)
        lineNumberArea->scroll(0, dy);
    else
        lineNumberArea->update(0, rect.y(), lineNumberArea->width(), rect.height());
    if (rect.contains(viewport()->rect()))
        updateLineNumberAreaWidth(blockCount());
}

void NumberedPlainTextEdit::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    const QRect contents = contentsRect();
    lineNumberArea->setGeometry(contents.left(), contents.top(), lineNumberAreaWidth(),
                                contents.height());
}

void NumberedPlainTextEdit::focusInEvent(QFocusEvent* event)
{
    QPlainTextEdit::focusInEvent(event);
    lineNumberArea->update(); // the gutter wears the colour of the field
}

void NumberedPlainTextEdit::focusOutEvent(QFocusEvent* event)
{
    QPlainTextEdit::focusOutEvent(event);
    lineNumberArea->update();
}

void NumberedPlainTextEdit::lineNumberAreaPaintEvent(QPaintEvent* event)
{
    const ColorTokens tokens = Theme::colors();
    const QRect dirty = event->rect();
    QPainter painter(lineNumberArea);
    painter.fillRect(dirty,
                     QColor(hasFocus() ? Theme::fieldFocusBg(tokens) : Theme::fieldIdleBg(tokens)));
    painter.setFont(font());
    painter.setPen(QColor(tokens.onSurfaceVariant));

    const int textWidth = lineNumberArea->width() - kGutterPaddingRight;
    QTextBlock block = firstVisibleBlock();
    int top = qRound(blockBoundingGeometry(block).translated(contentOffset()).top());
    while (block.isValid() && top <= dirty.bottom()) {
        const int bottom = top + qRound(blockBoundingRect(block).height());
        if (block.isVisible() && bottom >= dirty.top())
            painter.drawText(0, top, textWidth, fontMetrics().height(),
                             Qt::AlignRight | Qt::AlignVCenter,
                             QString::number(block.blockNumber() + 1));
        block = block.next();
        top = bottom;
    }
}

LineNumberArea::LineNumberArea(NumberedPlainTextEdit* editor) : QWidget(editor), codeEditor(editor)
{}

QSize LineNumberArea::sizeHint() const
{
    return {codeEditor->lineNumberAreaWidth(), 0};
}

void LineNumberArea::paintEvent(QPaintEvent* event)
{
    codeEditor->lineNumberAreaPaintEvent(event);
}
