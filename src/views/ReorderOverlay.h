// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QPixmap>
#include <QPointer>
#include <QVector>
#include <QWidget>

#include <functional>

class QParallelAnimationGroup;
class QPropertyAnimation;
class QTimer;
class QVariantAnimation;

/// The picture of one entry while the entries are being reordered. It takes neither mouse nor
/// focus; the overlay it lies in moves and lifts it.
class ReorderTile : public QWidget
{
    Q_OBJECT

public:
    static constexpr qreal RestScale = 0.97;  ///< of a tile without the cursor
    static constexpr qreal LiftScale = 1.04;  ///< of a lifted tile
    static constexpr qreal DimOpacity = 0.75; ///< of a tile without the cursor

    /// Makes a picture of an entry without or with the cursor on it.
    using Picture = std::function<QPixmap(bool lit)>;

    /// \param rest, lit the entry without and with the cursor on it.
    /// \param sourceRow its place before anything was moved.
    ReorderTile(QWidget* parent, const QPixmap& rest, const QPixmap& lit, int sourceRow);
    /// \param picture asked for each of the two when it is painted first, and not again.
    ReorderTile(QWidget* parent, Picture picture, int sourceRow);

    int sourceRow() const { return m_sourceRow; }
    /// 0 (lying) to 1 (lifted).
    qreal lift() const { return m_lift; }
    void setLift(qreal lift);
    /// Whether the cursor is on the tile.
    void setCurrent(bool current);
    /// Lifts or drops the tile from wherever it is on the way, which ends that way.
    void animateLift(qreal target);
    /// Whether it has been painted since it was made or let go of its pictures.
    bool hasPicture() const { return !m_restPixmap.isNull() || !m_litPixmap.isNull(); }
    /// Lets go of pictures that can be made again, which they are when the tile is painted next.
    void forgetPictures();

protected:
    void paintEvent(QPaintEvent* event) override;
    void moveEvent(QMoveEvent* event) override;

private:
    const QPixmap& pixmapNow();

    Picture m_picture; ///< none if the pictures have been there from the beginning
    QPixmap m_restPixmap;
    QPixmap m_litPixmap;
    int m_sourceRow;
    qreal m_lift = 0.0;
    bool m_current = false;
    QPointer<QVariantAnimation> m_liftAnim;
};

/// Puts the entries of a widget into another order, by mouse and by keyboard alike. It lays
/// pictures of them over the widget on an opaque ground and moves these; the widget itself is not
/// touched, and whoever made the overlay reads the order at the end. A subclass says what the
/// entries look like and where they stand. Keys come from the owner. GUI thread only.
class ReorderOverlay : public QWidget
{
    Q_OBJECT

public:
    static constexpr int DurLift = 140;      ///< ms to lift or drop a tile
    static constexpr int DurInRow = 160;     ///< ms of a slide in a row, and of the end of a drag
    static constexpr int DurCrossRow = 260;  ///< ms of a slide across rows, and of the first one
    static constexpr int StaggerCap = 200;   ///< ms that the tiles of one slide share
    static constexpr int StaggerMax = 12;    ///< ms at most from one tile's start to the next
    static constexpr int EdgeMargin = 28;    ///< px from the edge where a drag begins to scroll
    static constexpr int AutoScrollStep = 8; ///< px of one tick
    static constexpr int AutoScrollMs = 16;  ///< from tick to tick
    static constexpr int WheelStep = 48;     ///< px of one notch
    static constexpr int HintTop = 2;        ///< px above the hint
    static constexpr int HintGap = 12;       ///< px below it
    static constexpr int HintPadH = 16;      ///< px beside its text
    static constexpr int HintPadV = 7;       ///< px above and below its text
    static constexpr int HintSideMargin = 8; ///< px kept at each side of it
    /// Of more tiles, those out of view give up their pictures, which may come to gigabytes.
    static constexpr int MaxKeptPictures = 500;

    int slotCount() const { return int(m_slotRects.size()); }
    /// Slot of the keyboard cursor; -1 if there are no tiles.
    int cursorSlot() const { return m_cursorSlot; }
    bool hasLift() const { return m_lifted != nullptr; }
    /// The former place of each tile, in the present order: a permutation of 0 to count - 1.
    QVector<int> currentOrder() const;
    bool orderChanged() const;
    /// Slots in the first row, at least 1.
    int columns() const;

    /// \param slot bounded to the slots there are; without any, nothing happens.
    void setCursorSlot(int slot, bool ensureVisible);
    /// \param value px along the axis, bounded to where the slots are. Ends a slide: all tiles jump
    /// to their places.
    void setScroll(int value);
    /// Nothing for a slot that there is not.
    void ensureSlotVisible(int slot);
    /// Lifts the tile at the cursor, unless one is lifted.
    void liftCursor();
    /// Drops the lifted tile, if any, into the slot it has come to.
    void dropLifted();
    /// Moves the lifted tile, if any, by `delta` slots or as far as there are slots; the tiles
    /// between make room.
    void moveLifted(int delta);

    /// The pill that says how to reorder; the banner shows the same.
    static QFont hintFont(const QFont& base);
    static QSize measureHintPill(const QFont& font, const QString& text, int maxPillW);
    static void paintHintPill(QPainter& painter, const QRect& rect, const QFont& font,
                              const QString& text);

protected:
    /// \param viewportParent what the overlay covers; owns it.
    explicit ReorderOverlay(QWidget* viewportParent);

    /// Makes the tiles and shows the overlay. The last thing in the constructor of a subclass.
    void initialize(int initialSlot);
    /// \param initialRect where the entry stands on the screen, in the coordinates of the parent.
    void addTile(const QPixmap& rest, const QPixmap& lit, int sourceRow, const QRect& initialRect);
    /// The same with pictures that are made when they are painted first.
    void addTile(ReorderTile::Picture picture, int sourceRow, const QRect& initialRect);
    /// Room for the hint above the slots, px; 0 without a hint.
    int hintInset() const { return m_hintInset; }
    const QVector<ReorderTile*>& tiles() const { return m_tiles; }

    /// An opaque colour.
    virtual QColor backdropColor() const = 0;
    /// Whether the slots lie, and are scrolled, from left to right.
    virtual bool isHorizontal() const { return false; }
    /// Key of the hint's text; empty for none.
    virtual QString hintKey() const { return {}; }
    /// Calls `addTile` for each entry, in its order.
    virtual void createTiles() = 0;
    /// One slot for each of `tiles`, which stand in their present order, not scrolled.
    virtual QVector<QRect> computeSlotRects(const QVector<ReorderTile*>& tiles) const = 0;

    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    int axisOf(const QPoint& point) const;
    int startOf(const QRect& rect) const;
    int endOf(const QRect& rect) const;
    int viewportExtent() const;
    QPoint scrollOffset() const;
    QPoint slotPos(int slot) const;
    int slotAt(const QPoint& point) const;
    int slotNear(const QPoint& point) const;
    bool isTile(int slot) const { return slot >= 0 && slot < m_tiles.size(); }
    bool isDragged(const ReorderTile* tile) const { return m_dragging && tile == m_lifted; }

    void placeTile(ReorderTile* tile, const QRect& initialRect);
    void showOrHide(int slot, bool isOnItsWay) const;
    void animate(const QVector<int>& moved, int durationMs);
    void refreshSlotRects();
    int clampScroll(int value) const;
    void computeHintGeometry();
    void stopAnim();
    void layoutTiles(bool animated, bool crossRow);
    QPropertyAnimation* makeSlide(ReorderTile* tile, const QPoint& target, int durationMs) const;
    void settle(ReorderTile* tile, const QPoint& target);
    void moveLiftedTo(const QPoint& dragPos);
    void followPointer();
    void updateAutoScroll(const QPoint& point);
    void autoScroll();
    void stopAutoScroll();

    QVector<QRect> m_slotRects;    ///< not scrolled
    QVector<ReorderTile*> m_tiles; ///< in the present order: tile i belongs to slot i
    ReorderTile* m_lifted = nullptr;
    int m_cursorSlot = -1;
    QPointer<QParallelAnimationGroup> m_anim;
    QPointer<QPropertyAnimation> m_settleAnim; ///< of the tile that a drag has ended with
    int m_scroll = 0;
    int m_contentStart = 0; ///< extent of the slots along the axis
    int m_contentEnd = 0;
    bool m_dragging = false;
    QPoint m_grabOffset;  ///< from the corner of the tile to the pointer
    QPoint m_lastDragPos; ///< of the pointer
    QTimer* m_autoScrollTimer = nullptr;
    int m_autoScrollDir = 0; ///< -1, 0 or 1
    QString m_hintText;
    QRect m_hintRect; ///< not scrolled
    int m_hintInset = 0;
};

/// Dims what it covers and says how to reorder, where the overlay itself is too low for that.
/// Shown at once; takes neither mouse nor focus.
class ReorderHintBanner : public QWidget
{
    Q_OBJECT

public:
    static constexpr qreal ScrimAlpha = 0.82;
    static constexpr int TopMargin = 24; ///< px above the hint

    /// \param key of the text; empty for none.
    ReorderHintBanner(QWidget* parent, const QString& key);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
};
