// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "GlyphWidgets.h"

#include "IconHelper.h"
#include "ItemImages.h"
#include "Keys.h"
#include "RowPainting.h"
#include "Theme.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace
{

constexpr double kBadgeGlyphShare = 20.0 / 44.0; // glyph size in the standard badge, as a share

constexpr double kCheckRadius = 8.0;
constexpr double kCheckRingWidth = 1.5;
constexpr int kCheckGlyphPx = 12;

constexpr int kSwatchVeilAlpha = 140;
constexpr int kSwatchGlyphPx = 16;
constexpr char kSwatchGlyphColor[] = "#ffffff";

constexpr int kPillGlyphPadding = 31; // on the side of a glyph
constexpr int kPillTextPadding = 12;  // on the side without one
constexpr int kChipExtraWidth = 64;   // what a chip needs around its text
constexpr float kPillDimAlpha = 0.38F;

bool isGlyphSet(uint glyph, int px)
{
    return glyph != 0 && px >= 1;
}

QPointF centerOf(const QWidget& widget)
{
    return QRectF(widget.rect()).center();
}

} // namespace

GlyphLabel::GlyphLabel(QWidget* parent) : QWidget(parent)
{
    setFocusPolicy(Qt::NoFocus);
}

void GlyphLabel::setGlyph(uint glyph, int px, const QString& color)
{
    if (m_glyph == glyph && m_px == px && m_color == color)
        return;
    const bool sizeChanges = m_px != px;
    m_glyph = glyph;
    m_px = px;
    m_color = color;
    if (sizeChanges)
        updateGeometry();
    update();
}

void GlyphLabel::setGlyphColor(const QString& color)
{
    setGlyph(m_glyph, m_px, color);
}

QSize GlyphLabel::sizeHint() const
{
    return {m_px, m_px};
}

void GlyphLabel::paintEvent(QPaintEvent*)
{
    if (!isGlyphSet(m_glyph, m_px) || m_color.isEmpty())
        return;
    QPainter painter(this);
    IconHelper::drawGlyph(&painter, centerOf(*this), m_glyph, m_px, QColor(m_color));
}

GlyphButton::GlyphButton(QWidget* parent) : QPushButton(parent)
{}

GlyphButton::GlyphButton(const QString& text, QWidget* parent) : QPushButton(text, parent)
{}

void GlyphButton::setLabel(const QString& text)
{
    m_label = text;
    setText(Keys::withoutShortcut(RowPainting::visiblePart(text, MaxLabelWidth)));
}

void GlyphButton::setGlyph(uint glyph, int px, const QString& color)
{
    if (m_glyph == glyph && m_px == px && m_color == color)
        return;
    m_glyph = glyph;
    m_px = px;
    m_color = color;
    update();
}

void GlyphButton::setGlyphColor(const QString& color)
{
    setGlyph(m_glyph, m_px, color);
}

void GlyphButton::setGlyphActiveColor(const QString& color)
{
    if (m_activeColor == color)
        return;
    m_activeColor = color;
    update();
}

void GlyphButton::setGlyphLeftInset(double inset)
{
    if (qFuzzyCompare(m_leftInset, inset))
        return;
    m_leftInset = inset;
    update();
}

void GlyphButton::setTrailingGlyph(uint glyph, int px)
{
    if (m_trailGlyph == glyph && m_trailPx == px)
        return;
    m_trailGlyph = glyph;
    m_trailPx = px;
    update();
}

void GlyphButton::setGlyphRightInset(double inset)
{
    if (qFuzzyCompare(m_rightInset, inset))
        return;
    m_rightInset = inset;
    update();
}

void GlyphButton::clearGlyph()
{
    setGlyph(0, m_px, m_color);
}

void GlyphButton::setPicture(const QString& iconPath)
{
    m_picture = iconPath;
    if (!m_picture.isEmpty() && !m_awaitsPictures) {
        ItemImages::repaintOnArrival(this);
        m_awaitsPictures = true;
    }
    update(); // even for the same path: the file behind it may be another one by now
}

QPointF GlyphButton::leadingCenter() const
{
    const QPointF middle = centerOf(*this);
    return {m_leftInset > 0 ? m_leftInset : middle.x(), middle.y()};
}

bool GlyphButton::paintPicture(QPainter* painter) const
{
    if (m_picture.isEmpty())
        return false;
    const ItemImages::Picture picture =
        ItemImages::find(m_picture, iconSize(), painter->device()->devicePixelRatio());
    if (picture.state == ItemImages::State::Ready) {
        QRectF box(QPointF(), iconSize());
        box.moveCenter(leadingCenter());
        RowPainting::drawPicture(painter, box.toRect(), picture.pixmap);
    }
    return picture.state != ItemImages::State::None;
}

void GlyphButton::paintEvent(QPaintEvent* event)
{
    QPushButton::paintEvent(event);
    QPainter painter(this);
    const bool hasLeading = !paintPicture(&painter) && isGlyphSet(m_glyph, m_px);
    const bool hasTrailing = isGlyphSet(m_trailGlyph, m_trailPx);
    if (m_color.isEmpty())
        return;

    const bool isActive = underMouse() || hasFocus();
    const QColor color(isActive && !m_activeColor.isEmpty() ? m_activeColor : m_color);
    if (hasLeading)
        IconHelper::drawGlyph(&painter, leadingCenter(), m_glyph, m_px, color);
    if (hasTrailing) {
        const QPointF center(width() - m_rightInset, centerOf(*this).y());
        IconHelper::drawGlyph(&painter, center, m_trailGlyph, m_trailPx, color);
    }
}

GlyphBadge::GlyphBadge(QWidget* parent) : QWidget(parent)
{
    setFocusPolicy(Qt::NoFocus);
    ItemImages::repaintOnArrival(this);
}

void GlyphBadge::setItem(const QString& iconPath, const QString& type)
{
    m_path = iconPath;
    m_type = type;
    update(); // even for the same path: the file behind it may be another one by now
}

void GlyphBadge::paintInto(QPainter* p, const QRectF& box, const QString& iconPath,
                           const QString& type)
{
    if (!p || box.isEmpty())
        return;
    p->save();
    p->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QRect square = box.toRect();
    const ItemImages::Picture picture = ItemImages::find(
        iconPath, square.size(), p->device()->devicePixelRatio(), Qt::IgnoreAspectRatio);
    if (picture.state == ItemImages::State::Ready) {
        p->drawPixmap(square, picture.pixmap);
    } else if (picture.state == ItemImages::State::None) {
        const ColorTokens tones = getItemTheme();
        p->setPen(Qt::NoPen);
        p->setBrush(QColor(tones.container));
        p->drawEllipse(box);
        const int px = qRound(qMin(box.height(), box.width()) * kBadgeGlyphShare);
        IconHelper::drawGlyph(p, box.center(), IconHelper::codepointForItem(iconPath, type), px,
                              QColor(tones.onContainer));
    }
    p->restore();
}

void GlyphBadge::paintEvent(QPaintEvent*)
{
    const int side = qMin(width(), height());
    if (side < 1)
        return;
    QRectF box(0, 0, side, side);
    box.moveCenter(centerOf(*this));
    QPainter painter(this);
    paintInto(&painter, box, m_path, m_type);
}

AccentSwatchButton::AccentSwatchButton(const QColor& color, const QColor& hairline, QWidget* parent)
    : QPushButton(parent), m_color(color), m_hairline(hairline)
{
    setFixedSize(Size, Size);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
}

void AccentSwatchButton::setColor(const QColor& color)
{
    if (m_color == color)
        return;
    m_color = color;
    update();
}

void AccentSwatchButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF dot = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setBrush(m_color);
    painter.setPen(QPen(m_hairline, 1.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    painter.drawEllipse(dot);
    if (!underMouse() && !hasFocus())
        return;

    QPainterPath circle;
    circle.addEllipse(dot);
    painter.setClipPath(circle);
    painter.fillRect(rect(), QColor(0, 0, 0, kSwatchVeilAlpha));
    painter.setClipping(false);
    IconHelper::drawGlyph(&painter, centerOf(*this), Glyph::Edit, kSwatchGlyphPx,
                          QColor(kSwatchGlyphColor));
}

void AccentSwatchButton::enterEvent(QEnterEvent* event)
{
    QPushButton::enterEvent(event);
    update();
}

void AccentSwatchButton::leaveEvent(QEvent* event)
{
    QPushButton::leaveEvent(event);
    update();
}

void AccentSwatchButton::focusInEvent(QFocusEvent* event)
{
    QPushButton::focusInEvent(event);
    update();
}

void AccentSwatchButton::focusOutEvent(QFocusEvent* event)
{
    QPushButton::focusOutEvent(event);
    update();
}

void CheckCircle::draw(QPainter* p, const QPointF& center, bool checked, const QColor& ringFg,
                       const QColor& onBg, const QColor& onFg)
{
    if (!p)
        return;
    if (checked) {
        p->setPen(Qt::NoPen);
        p->setBrush(onBg);
        p->drawEllipse(center, kCheckRadius, kCheckRadius);
        IconHelper::drawGlyph(p, center, Glyph::Check, kCheckGlyphPx, onFg);
    } else {
        p->setPen(QPen(ringFg, kCheckRingWidth));
        p->setBrush(Qt::NoBrush);
        p->drawEllipse(center, kCheckRadius, kCheckRadius);
    }
    p->setBrush(Qt::NoBrush);
}

void PillStyle::applyResting(GlyphButton* pill, uint glyph, bool dim)
{
    if (!pill)
        return;
    const ColorTokens c = Theme::colors();
    QColor faded(c.onSurfaceVariant);
    faded.setAlphaF(kPillDimAlpha);
    const QString dimColor = faded.name(QColor::HexArgb);

    pill->setStyleSheet(
        QStringLiteral("QPushButton { background: %1; color: %2; border: none; border-radius: "
                       "%4px; padding-left: %6px; padding-right: %7px; }QPushButton:hover { "
                       "background: %3; color: %5; }")
            .arg(Theme::catTrackBg(), dim ? dimColor : c.onSurfaceVariant, c.surfaceVariant)
            .arg(Radius)
            .arg(c.onSurface)
            .arg(kPillGlyphPadding)
            .arg(kPillTextPadding));
    pill->setGlyphLeftInset(GlyphX);
    pill->setGlyph(glyph, GlyphPx, dim ? dimColor : c.onSurface);
}

void PillStyle::applyLit(GlyphButton* pill, uint glyph)
{
    if (!pill)
        return;
    const ColorTokens tones = getItemTheme();
    pill->setStyleSheet(
        QStringLiteral("QPushButton { background: %1; color: %2; border: none; border-radius: "
                       "%3px; padding-left: %4px; padding-right: %5px; }")
            .arg(tones.key, tones.onKey)
            .arg(Radius)
            .arg(kPillGlyphPadding)
            .arg(kPillTextPadding));
    pill->setGlyphLeftInset(GlyphX);
    pill->setGlyph(glyph, GlyphPx, tones.onKey);
}

void PillStyle::applyFilterChip(GlyphButton* chip, uint glyph, const QString& label)
{
    if (!chip)
        return;
    const ColorTokens c = Theme::colors();
    const QString bg = c.primaryContainer;
    const QString ink = c.onPrimaryContainer;

    chip->setLabel(label);
    chip->setStyleSheet(
        QStringLiteral("QPushButton { background: %1; color: %2; border: none; border-radius: "
                       "%3px; padding-left: %4px; padding-right: %5px; }QPushButton:hover { "
                       "background: %6; }QPushButton:pressed { background: %7; }")
            .arg(bg, ink)
            .arg(Radius)
            .arg(kPillGlyphPadding)
            .arg(kPillGlyphPadding)
            .arg(Theme::stateLayerOn(bg, ink, Theme::StateHover),
                 Theme::stateLayerOn(bg, ink, Theme::StatePressed)));
    chip->setGlyphLeftInset(GlyphX);
    chip->setGlyphRightInset(GlyphX);
    chip->setGlyph(glyph, GlyphPx, ink);
    chip->setTrailingGlyph(Glyph::Close, GlyphPx);
    chip->ensurePolished(); // style sheets around the chip may bring another font
    chip->setFixedSize(chip->fontMetrics().horizontalAdvance(label) + kChipExtraWidth, Height);
}
