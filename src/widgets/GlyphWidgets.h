// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QPushButton>
#include <QString>
#include <QWidget>

class QPainter;
class QPointF;
class QRectF;

/// Shows one glyph with its ink in the middle of the widget. Takes no focus.
class GlyphLabel : public QWidget
{
    Q_OBJECT

public:
    explicit GlyphLabel(QWidget* parent = nullptr);

    /// \param glyph codepoint of the icon font, 0 for none.
    /// \param px glyph size in pixels, also the size hint.
    /// \param color any name `QColor` reads; nothing is drawn while it is empty.
    void setGlyph(uint glyph, int px, const QString& color);
    void setGlyphColor(const QString& color);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    uint m_glyph = 0;
    int m_px = 0;
    QString m_color;
};

/// A push button with a glyph on top of what its style sheet draws, and optionally a second glyph
/// near its right edge. Without a colour it is a plain push button.
class GlyphButton : public QPushButton
{
    Q_OBJECT

public:
    explicit GlyphButton(QWidget* parent = nullptr);
    explicit GlyphButton(const QString& text, QWidget* parent = nullptr);

    static constexpr int MaxLabelWidth = 4096; ///< pixels; what is beyond isn't even measured

    /// Shows `text` as it stands: an ampersand stays one and makes no shortcut, unlike in
    /// `setText()`. For names that somebody has given, of any length.
    void setLabel(const QString& text);
    /// What `setLabel` was given last, all of it.
    const QString& label() const { return m_label; }
    /// Sets the leading glyph; `px` is its size in pixels, and `color` serves both glyphs.
    void setGlyph(uint glyph, int px, const QString& color);
    void setGlyphColor(const QString& color);
    /// Colour under the pointer or with focus; empty to keep the ordinary colour then.
    void setGlyphActiveColor(const QString& color);
    /// Distance in pixels from the left edge to the centre of the leading glyph; 0 or less puts it
    /// in the middle of the button, over any text.
    void setGlyphLeftInset(double inset);
    void setTrailingGlyph(uint glyph, int px);
    /// Distance in pixels from the right edge to the centre of the trailing glyph.
    void setGlyphRightInset(double inset);
    /// Takes the leading glyph away; size, colours and the trailing glyph stay.
    void clearGlyph();
    /// Shows the picture of an item in place of the leading glyph, fitted into `iconSize()`. It is
    /// read off the GUI thread and appears when that is done; of a file that is no picture nothing
    /// is shown, and where there is no file the glyph. No path at all takes the picture away.
    /// \param iconPath icon string of an item; that of a glyph has no picture.
    void setPicture(const QString& iconPath);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPointF leadingCenter() const;
    /// True if the place of the leading glyph is the picture's, be it read or not.
    bool paintPicture(QPainter* painter) const;

    QString m_label;
    QString m_picture; ///< icon string; empty for none
    bool m_awaitsPictures = false;
    uint m_glyph = 0;
    int m_px = 0;
    qreal m_leftInset = 0.0;
    uint m_trailGlyph = 0;
    int m_trailPx = 0;
    qreal m_rightInset = 0.0;
    QString m_color;
    QString m_activeColor;
};

/// The badge of an item: its own image, or its glyph on a filled circle. Takes no focus.
class GlyphBadge : public QWidget
{
    Q_OBJECT

public:
    explicit GlyphBadge(QWidget* parent = nullptr);

    /// \param iconPath icon string as stored with the item.
    /// \param type shortcut type, which decides where `iconPath` names nothing usable.
    void setItem(const QString& iconPath, const QString& type);

    /// Draws a badge into `box`. An image is stretched to it; a file that exists but cannot be
    /// decoded leaves the box empty, as does one that has not been read yet: name a widget that
    /// paints badges to `ItemImages::repaintOnArrival`. The painter's state stays as it was.
    static void paintInto(QPainter* p, const QRectF& box, const QString& iconPath,
                          const QString& type);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_path;
    QString m_type;
};

/// A round colour sample that offers a pencil while it is under the pointer or has focus.
class AccentSwatchButton : public QPushButton
{
    Q_OBJECT

public:
    static constexpr int Size = 36; ///< side of the square it occupies, in pixels

    /// \param hairline colour of the one-pixel ring that sets the sample off from its ground.
    AccentSwatchButton(const QColor& color, const QColor& hairline, QWidget* parent);

    void setColor(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    QColor m_color;
    QColor m_hairline;
};

/// The round check mark of list and menu rows.
class CheckCircle
{
public:
    CheckCircle() = delete;

    /// Draws a circle of radius 8 pixels around `center`: filled with `onBg` and ticked in `onFg`,
    /// or an empty ring in `ringFg`. Leaves the painter without a brush and with a changed pen;
    /// antialiasing is the caller's. Does nothing without a painter.
    static void draw(QPainter* p, const QPointF& center, bool checked, const QColor& ringFg,
                     const QColor& onBg, const QColor& onFg);
};

/// The looks of section pills and filter chips. Does nothing for a null button.
class PillStyle
{
public:
    static constexpr int Height = 28;      ///< of every pill, in pixels
    static constexpr int Radius = 14;      ///< corner radius, in pixels
    static constexpr int GlyphPx = 13;     ///< glyph size, in pixels
    static constexpr double GlyphX = 19.5; ///< from the edge to the glyph's centre, in pixels

    PillStyle() = delete;

    /// A pill that is not selected; `dim` fades its text and glyph. The height is the caller's.
    static void applyResting(GlyphButton* pill, uint glyph, bool dim);
    /// The selected pill. The height is the caller's.
    static void applyLit(GlyphButton* pill, uint glyph);
    /// A chip with a remove mark behind its text; sets text, width and height.
    static void applyFilterChip(GlyphButton* chip, uint glyph, const QString& label);
};
