// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStackedWidget>
#include <QString>
#include <QWidget>

/// A line edit that shows a completion behind the text while the cursor stands at its end. The
/// ghost is never part of the text.
class GhostLineEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit GhostLineEdit(QWidget* parent = nullptr);

    /// Empty for no ghost.
    void setGhostText(const QString& text);
    /// An invalid colour, as at the start, means the palette's text colour. Its alpha is ignored.
    void setGhostColor(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_ghost;
    QColor m_ghostColor;
};

/// A stack that wants the size of its current page instead of that of its largest one. Once it is
/// in place, a page that wraps its text gets the height that it needs at the stack's width.
class SizeAdaptiveStackedWidget : public QStackedWidget
{
    Q_OBJECT

public:
    explicit SizeAdaptiveStackedWidget(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    /// Never: a layout around the stack would get the answer from the one inside, which takes the
    /// highest of all pages as soon as one of them wraps its text.
    bool hasHeightForWidth() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    /// `hint` of a page, as high as the page has to be at the present width.
    QSize wrapped(const QWidget* page, const QSize& hint) const;
};

/// A plain text edit with a gutter of line numbers, which can be switched off.
class NumberedPlainTextEdit : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit NumberedPlainTextEdit(QWidget* parent = nullptr);

    void setLineNumbersVisible(bool on);
    /// Paints the part of the gutter that `event` asks for; called by the gutter itself.
    void lineNumberAreaPaintEvent(QPaintEvent* event);
    /// In pixels; 0 while the numbers are off.
    int lineNumberAreaWidth() const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private slots:
    void updateLineNumberAreaWidth(int newBlockCount);
    void updateLineNumberArea(const QRect& rect, int dy);

private:
    QWidget* lineNumberArea;
    bool m_lineNumbersVisible = true;
};

/// The gutter of a `NumberedPlainTextEdit`, which does all the work.
class LineNumberArea : public QWidget
{
    Q_OBJECT

public:
    /// \param editor becomes the parent.
    explicit LineNumberArea(NumberedPlainTextEdit* editor);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    NumberedPlainTextEdit* codeEditor;
};
