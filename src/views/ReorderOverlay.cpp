// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ReorderOverlay.h"

#include "Localization.h"
#include "Theme.h"

#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <QParallelAnimationGroup>
#include <QPauseAnimation>
#include <QPropertyAnimation>
#include <QSequentialAnimationGroup>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <limits>
#include <utility>

namespace
{

constexpr int kHintFontPx = 13;
constexpr qreal kHintRadius = 16.0;
constexpr int kHintMinWidth = 120;
constexpr int kHintMinInner = 40;
constexpr int kHintMaxHeight = 4000;
constexpr int kHintFlags = int(Qt::TextWordWrap) | int(Qt::AlignCenter);

qint64 squaredDistance(const QPoint& a, const QPoint& b)
{
    const qint64 x = qint64(a.x()) - b.x();
    const qint64 y = qint64(a.y()) - b.y();
    return x * x + y * y;
}

QString hintTextOf(const QString& key)
{
    return key.isEmpty() ? QString() : Tr::t(key);
}

} // namespace

ReorderTile::ReorderTile(QWidget* parent, const QPixmap& rest, const QPixmap& lit, int sourceRow)
    : ReorderTile(parent, Picture(), sourceRow)
{
    m_restPixmap = rest;
    m_litPixmap = lit;
}

ReorderTile::ReorderTile(QWidget* parent, Picture picture, int sourceRow)
    : QWidget(parent), m_picture(std::move(picture)), m_sourceRow(sourceRow)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
}

const QPixmap& ReorderTile::pixmapNow()
{
    QPixmap& pixmap = m_current ? m_litPixmap : m_restPixmap;
    if (pixmap.isNull() && m_picture)
        pixmap = m_picture(m_current);
    return pixmap;
}

void ReorderTile::forgetPictures()
{
    if (!m_picture)
        return;
    m_restPixmap = QPixmap();
    m_litPixmap = QPixmap();
    update();
}

void ReorderTile::setLift(qreal lift)
{
    // Shifted, since nothing is fuzzily equal to 0.
    if (qFuzzyCompare(1.0 + m_lift, 1.0 + lift))
        return;
    m_lift = lift;
    update();
}

void ReorderTile::setCurrent(bool current)
{
    if (m_current == current)
        return;
    m_current = current;
    update();
}

void ReorderTile::animateLift(qreal target)
{
    if (m_liftAnim)
        m_liftAnim->stop();
    auto* animation = new QVariantAnimation(this);
    animation->setDuration(ReorderOverlay::DurLift);
    animation->setEasingCurve(QEasingCurve::OutCubic);
    animation->setStartValue(m_lift);
    animation->setEndValue(target);
    connect(animation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& lift) { setLift(lift.toReal()); });
    m_liftAnim = animation;
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void ReorderTile::paintEvent(QPaintEvent*)
{
    const qreal dim = m_current ? 1.0 : DimOpacity;
    const qreal rest = m_current ? 1.0 : RestScale;
    const qreal scale = rest + (LiftScale - rest) * m_lift;
    const QPixmap& pixmap = pixmapNow();
    const QSizeF size = pixmap.deviceIndependentSize() * scale;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setOpacity(dim + (1.0 - dim) * m_lift);
    const QPointF corner((width() - size.width()) / 2.0, (height() - size.height()) / 2.0);
    painter.drawPixmap(QRectF(corner, size), pixmap, QRectF(pixmap.rect()));
}

void ReorderTile::moveEvent(QMoveEvent* event)
{
    parentWidget()->update(QRect(event->oldPos(), size()));
    QWidget::moveEvent(event);
}

ReorderOverlay::ReorderOverlay(QWidget* viewportParent) : QWidget(viewportParent)
{
    setGeometry(viewportParent->rect());
    setCursor(Qt::OpenHandCursor);
    setMouseTracking(true);
    setFocusPolicy(Qt::NoFocus);
    // What lies below must not select, run or scroll anything meanwhile.
    setAttribute(Qt::WA_NoMousePropagation);
    // Otherwise each frame of a slide would paint that, too.
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void ReorderOverlay::initialize(int initialSlot)
{
    computeHintGeometry();
    show(); // ahead of the tiles, of which those that are out of view are not to come along
    raise();
    createTiles();
    refreshSlotRects();
    setCursorSlot(std::max(0, initialSlot), false);
    // From where the entries stood to their slots, which makes room for the hint.
    layoutTiles(true, true);
}

void ReorderOverlay::addTile(const QPixmap& rest, const QPixmap& lit, int sourceRow,
                             const QRect& initialRect)
{
    placeTile(new ReorderTile(this, rest, lit, sourceRow), initialRect);
}

void ReorderOverlay::addTile(ReorderTile::Picture picture, int sourceRow, const QRect& initialRect)
{
    placeTile(new ReorderTile(this, std::move(picture), sourceRow), initialRect);
}

void ReorderOverlay::placeTile(ReorderTile* tile, const QRect& initialRect)
{
    tile->setGeometry(initialRect);
    m_tiles.append(tile);
}

QVector<int> ReorderOverlay::currentOrder() const
{
    QVector<int> order;
    order.reserve(m_tiles.size());
    for (const ReorderTile* tile : m_tiles)
        order.append(tile->sourceRow());
    return order;
}

bool ReorderOverlay::orderChanged() const
{
    for (int i = 0; i < m_tiles.size(); ++i) {
        if (m_tiles.at(i)->sourceRow() != i)
            return true;
    }
    return false;
}

int ReorderOverlay::columns() const
{
    const auto isInFirstRow = [this](const QRect& rect) {
        return rect.y() == m_slotRects.first().y();
    };
    const auto end = std::find_if_not(m_slotRects.begin(), m_slotRects.end(), isInFirstRow);
    return std::max(1, int(end - m_slotRects.begin()));
}

int ReorderOverlay::axisOf(const QPoint& point) const
{
    return isHorizontal() ? point.x() : point.y();
}

int ReorderOverlay::startOf(const QRect& rect) const
{
    return isHorizontal() ? rect.left() : rect.top();
}

int ReorderOverlay::endOf(const QRect& rect) const
{
    return isHorizontal() ? rect.right() : rect.bottom();
}

int ReorderOverlay::viewportExtent() const
{
    return isHorizontal() ? width() : height();
}

QPoint ReorderOverlay::scrollOffset() const
{
    return isHorizontal() ? QPoint(m_scroll, 0) : QPoint(0, m_scroll);
}

QPoint ReorderOverlay::slotPos(int slot) const
{
    return m_slotRects.at(slot).topLeft() - scrollOffset();
}

int ReorderOverlay::slotAt(const QPoint& point) const
{
    for (int i = 0; i < slotCount(); ++i) {
        if (m_slotRects.at(i).translated(-scrollOffset()).contains(point))
            return i;
    }
    return -1;
}

int ReorderOverlay::slotNear(const QPoint& point) const
{
    int nearest = -1;
    qint64 least = std::numeric_limits<qint64>::max();
    for (int i = 0; i < slotCount(); ++i) {
        const QRect rect = m_slotRects.at(i).translated(-scrollOffset());
        const qint64 distance = squaredDistance(point, rect.center());
        if (distance < least) {
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

void ReorderOverlay::refreshSlotRects()
{
    m_slotRects = computeSlotRects(m_tiles);
    m_contentStart = 0;
    m_contentEnd = 0;
    for (int i = 0; i < slotCount(); ++i) {
        const int start = startOf(m_slotRects.at(i));
        const int end = endOf(m_slotRects.at(i));
        m_contentStart = i == 0 ? start : std::min(m_contentStart, start);
        m_contentEnd = i == 0 ? end : std::max(m_contentEnd, end);
    }
}

int ReorderOverlay::clampScroll(int value) const
{
    const int low = std::min(0, m_contentStart);
    const int high = std::max(low, m_contentEnd - viewportExtent());
    return std::clamp(value, low, high);
}

void ReorderOverlay::setScroll(int value)
{
    const int scroll = clampScroll(value);
    if (scroll == m_scroll)
        return;
    m_scroll = scroll;
    update();
    layoutTiles(false, false);
    if (m_dragging)
        moveLiftedTo(m_lastDragPos);
}

void ReorderOverlay::ensureSlotVisible(int slot)
{
    if (slot < 0 || slot >= slotCount())
        return;
    const int start = startOf(m_slotRects.at(slot)) - m_scroll;
    const int end = endOf(m_slotRects.at(slot)) - m_scroll;
    if (start < 0)
        setScroll(m_scroll + start);
    else if (end > viewportExtent())
        setScroll(m_scroll + end - viewportExtent());
}

void ReorderOverlay::setCursorSlot(int slot, bool ensureVisible)
{
    if (m_tiles.isEmpty())
        return;
    const int wanted = std::clamp(slot, 0, int(m_tiles.size()) - 1);
    if (wanted == m_cursorSlot)
        return;
    if (isTile(m_cursorSlot))
        m_tiles.at(m_cursorSlot)->setCurrent(false);
    m_cursorSlot = wanted;
    m_tiles.at(wanted)->setCurrent(true);
    if (ensureVisible)
        ensureSlotVisible(wanted);
}

void ReorderOverlay::liftCursor()
{
    if (m_lifted || !isTile(m_cursorSlot))
        return;
    m_lifted = m_tiles.at(m_cursorSlot);
    m_lifted->raise();
    m_lifted->animateLift(1.0);
    // A slide under way would carry the tile off from under the pointer; the others go on.
    if (m_dragging)
        layoutTiles(true, false);
}

void ReorderOverlay::dropLifted()
{
    if (!m_lifted)
        return;
    m_lifted->animateLift(0.0);
    m_lifted = nullptr;
    if (m_dragging)
        layoutTiles(true, false); // a key has dropped it out of the pointer's hand
}

void ReorderOverlay::moveLifted(int delta)
{
    if (!m_lifted || delta == 0)
        return;
    const int from = m_cursorSlot;
    const qint64 wanted = qint64(from) + delta;
    const int to = int(std::clamp<qint64>(wanted, 0, m_tiles.size() - 1));
    if (from == to)
        return;
    const bool crossRow = columns() > 1 && m_slotRects.at(from).y() != m_slotRects.at(to).y();
    m_tiles.move(from, to);
    m_cursorSlot = to;
    refreshSlotRects();
    if (!m_dragging)
        ensureSlotVisible(to);
    layoutTiles(true, crossRow);
    m_lifted->raise();
}

void ReorderOverlay::stopAnim()
{
    // A tile that still comes to rest would go on to where its slot has been.
    if (m_settleAnim)
        m_settleAnim->stop();
    if (!m_anim)
        return;
    m_anim->stop();
    delete m_anim;
}

void ReorderOverlay::layoutTiles(bool animated, bool crossRow)
{
    stopAnim();
    QVector<int> moved;
    for (int i = 0; i < m_tiles.size(); ++i) {
        ReorderTile* tile = m_tiles.at(i);
        showOrHide(i, animated);
        if (isDragged(tile) || tile->pos() == slotPos(i))
            continue;
        if (animated)
            moved.append(i);
        else
            tile->move(slotPos(i));
    }
    if (!moved.isEmpty())
        animate(moved, crossRow ? DurCrossRow : DurInRow);
}

/// Of thousands of tiles only those are shown that are in view, or come through it on their way:
/// each one that is shown costs something in every frame.
/// \param isOnItsWay whether the tile slides to its slot from where it is, and doesn't jump.
void ReorderOverlay::showOrHide(int slot, bool isOnItsWay) const
{
    ReorderTile* tile = m_tiles.at(slot);
    QRect way(slotPos(slot), tile->size());
    if (isOnItsWay)
        way = way.united(tile->geometry());
    const bool isSeen = isDragged(tile) || way.intersects(rect());
    if (isSeen != tile->isHidden())
        return;
    tile->setVisible(isSeen);
    if (!isSeen && m_tiles.size() > MaxKeptPictures)
        tile->forgetPictures();
}

void ReorderOverlay::animate(const QVector<int>& moved, int durationMs)
{
    const int stagger = std::min(StaggerMax, StaggerCap / int(moved.size()));
    m_anim = new QParallelAnimationGroup(this);
    for (int k = 0; k < moved.size(); ++k) {
        const int slot = moved.at(k);
        ReorderTile* tile = m_tiles.at(slot);
        // They are too many to take turns, and then nobody sees when these come to their places.
        if (stagger == 0 && tile->isHidden()) {
            tile->move(slotPos(slot));
            continue;
        }
        QPropertyAnimation* slide = makeSlide(tile, slotPos(slot), durationMs);
        if (stagger == 0 || k == 0) {
            m_anim->addAnimation(slide);
            continue;
        }
        auto* delayed = new QSequentialAnimationGroup;
        delayed->addPause(stagger * k);
        delayed->addAnimation(slide);
        m_anim->addAnimation(delayed);
    }
    m_anim->start(QAbstractAnimation::KeepWhenStopped);
}

QPropertyAnimation* ReorderOverlay::makeSlide(ReorderTile* tile, const QPoint& target,
                                              int durationMs) const
{
    auto* slide = new QPropertyAnimation(tile, "pos");
    slide->setDuration(durationMs);
    slide->setEasingCurve(QEasingCurve::OutCubic);
    slide->setStartValue(tile->pos());
    slide->setEndValue(target);
    return slide;
}

void ReorderOverlay::settle(ReorderTile* tile, const QPoint& target)
{
    if (m_settleAnim)
        m_settleAnim->stop();
    m_settleAnim = makeSlide(tile, target, DurInRow);
    m_settleAnim->setParent(this);
    m_settleAnim->start(QAbstractAnimation::DeleteWhenStopped);
}

void ReorderOverlay::moveLiftedTo(const QPoint& dragPos)
{
    m_lastDragPos = dragPos;
    if (m_lifted)
        m_lifted->move(dragPos - m_grabOffset);
}

void ReorderOverlay::mousePressEvent(QMouseEvent* event)
{
    const QPoint position = event->position().toPoint();
    const int slot = event->button() == Qt::LeftButton ? slotAt(position) : -1;
    if (slot < 0) {
        QWidget::mousePressEvent(event);
        return;
    }
    dropLifted();
    setCursorSlot(slot, false);
    m_dragging = true;
    liftCursor();
    m_lastDragPos = position;
    m_grabOffset = position - m_lifted->pos();
    setCursor(Qt::ClosedHandCursor);
}

void ReorderOverlay::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint position = event->position().toPoint();
    if (!m_dragging) {
        const int slot = slotAt(position);
        if (slot >= 0)
            setCursorSlot(slot, false);
        QWidget::mouseMoveEvent(event);
        return;
    }
    moveLiftedTo(position);
    followPointer();
    updateAutoScroll(position);
}

void ReorderOverlay::followPointer()
{
    const int slot = slotNear(m_lastDragPos);
    if (slot >= 0 && slot != m_cursorSlot)
        moveLifted(slot - m_cursorSlot);
}

void ReorderOverlay::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_dragging) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    m_dragging = false;
    stopAutoScroll();
    setCursor(Qt::OpenHandCursor);
    if (m_lifted)
        settle(m_lifted, slotPos(int(m_tiles.indexOf(m_lifted))));
    dropLifted();
}

void ReorderOverlay::wheelEvent(QWheelEvent* event)
{
    const QPoint turn = event->angleDelta();
    const int delta = turn.y() != 0 ? turn.y() : turn.x();
    if (delta == 0) {
        QWidget::wheelEvent(event);
        return;
    }
    setScroll(m_scroll + (delta > 0 ? -WheelStep : WheelStep));
    event->accept();
}

void ReorderOverlay::updateAutoScroll(const QPoint& point)
{
    const int along = axisOf(point);
    if (along < EdgeMargin)
        m_autoScrollDir = -1;
    else if (along > viewportExtent() - EdgeMargin)
        m_autoScrollDir = 1;
    else
        m_autoScrollDir = 0;
    if (m_autoScrollDir == 0) {
        stopAutoScroll();
        return;
    }
    if (m_autoScrollTimer)
        return;
    m_autoScrollTimer = new QTimer(this);
    connect(m_autoScrollTimer, &QTimer::timeout, this, &ReorderOverlay::autoScroll);
    m_autoScrollTimer->start(AutoScrollMs);
}

void ReorderOverlay::autoScroll()
{
    const int before = m_scroll;
    setScroll(m_scroll + m_autoScrollDir * AutoScrollStep);
    if (m_scroll == before)
        stopAutoScroll();
    else
        followPointer(); // the content has passed below the tile, which stays at the pointer
}

void ReorderOverlay::stopAutoScroll()
{
    if (!m_autoScrollTimer)
        return;
    m_autoScrollTimer->stop();
    m_autoScrollTimer->deleteLater();
    m_autoScrollTimer = nullptr;
    m_autoScrollDir = 0;
}

void ReorderOverlay::computeHintGeometry()
{
    m_hintText = hintTextOf(hintKey());
    if (m_hintText.isEmpty()) {
        m_hintInset = 0;
        return;
    }
    const QSize size = measureHintPill(hintFont(font()), m_hintText, width() - 2 * HintSideMargin);
    m_hintRect = QRect(QPoint((width() - size.width()) / 2, HintTop), size);
    m_hintInset = size.height() + HintTop + HintGap;
}

QFont ReorderOverlay::hintFont(const QFont& base)
{
    QFont font = base;
    font.setPixelSize(kHintFontPx);
    font.setBold(true);
    return font;
}

QSize ReorderOverlay::measureHintPill(const QFont& font, const QString& text, int maxPillW)
{
    const int maxWidth = std::max(maxPillW, kHintMinWidth);
    const int inner = std::max(maxWidth - 2 * HintPadH, kHintMinInner);
    const QFontMetrics metrics(font);
    const QRect bounding =
        metrics.boundingRect(QRect(0, 0, inner, kHintMaxHeight), kHintFlags, text);
    return {std::min(maxWidth, bounding.width() + 2 * HintPadH),
            std::max(bounding.height(), metrics.height()) + 2 * HintPadV};
}

void ReorderOverlay::paintHintPill(QPainter& painter, const QRect& rect, const QFont& font,
                                   const QString& text)
{
    const ColorTokens c = Theme::colors();
    const qreal radius = std::min(kHintRadius, rect.height() / 2.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(c.surfaceContainerHighest));
    painter.drawRoundedRect(rect, radius, radius);
    painter.setPen(QColor(c.onSurfaceVariant));
    painter.setFont(font);
    painter.drawText(rect.adjusted(HintPadH, HintPadV, -HintPadH, -HintPadV), kHintFlags, text);
}

void ReorderOverlay::moveEvent(QMoveEvent* event)
{
    QWidget::moveEvent(event);
    // A view whose rows are made anew may scroll, and takes along what lies over it.
    if (parentWidget() && pos() != QPoint(0, 0))
        move(0, 0);
}

void ReorderOverlay::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    for (int i = 0; i < slotCount(); ++i)
        showOrHide(i, true);
}

void ReorderOverlay::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), backdropColor());
    const QRect pill = m_hintRect.translated(0, -m_scroll);
    if (!m_hintText.isEmpty() && pill.isValid() && pill.bottom() >= 0)
        paintHintPill(painter, pill, hintFont(font()), m_hintText);
}

ReorderHintBanner::ReorderHintBanner(QWidget* parent, const QString& key)
    : QWidget(parent), m_text(hintTextOf(key))
{
    setGeometry(parent->rect());
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    show();
    raise();
}

void ReorderHintBanner::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor scrim(Theme::colors().surface);
    scrim.setAlphaF(float(ScrimAlpha));
    painter.fillRect(rect(), scrim);
    if (m_text.isEmpty())
        return;
    const QFont font = ReorderOverlay::hintFont(this->font());
    const QSize size =
        ReorderOverlay::measureHintPill(font, m_text, width() - 2 * ReorderOverlay::HintSideMargin);
    const QRect pill(QPoint((width() - size.width()) / 2, TopMargin), size);
    ReorderOverlay::paintHintPill(painter, pill, font, m_text);
}
