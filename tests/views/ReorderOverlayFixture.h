// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "DrivenClock.h"
#include "Localization.h"
#include "ReorderOverlay.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QApplication>
#include <QEasingCurve>
#include <QTest>
#include <QWheelEvent>

#include <algorithm>
#include <limits>
#include <memory>
#include <numeric>
#include <utility>

inline const QString kHint = QStringLiteral("reorder.hint");
constexpr Qt::GlobalColor kRest = Qt::blue;
constexpr Qt::GlobalColor kLit = Qt::red;
constexpr QColor kBackdrop(0, 220, 0);

inline QPixmap filled(const QSize& size, const QColor& color, qreal ratio = 1.0)
{
    QPixmap pixmap(size * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(color);
    return pixmap;
}

/// Entries of any sizes, in rows of `columns` or in one row from left to right.
struct Entries
{
    QVector<QSize> sizes;
    int columns = 1;
    bool isHorizontal = false;
    QPoint origin;
    int spacing = 0;
    QString hint;

    QVector<QRect> rects(const QVector<int>& order) const
    {
        QVector<QRect> result;
        QPoint at = origin;
        for (int i = 0; i < order.size(); ++i) {
            const QSize size = sizes.at(order.at(i));
            result.append(QRect(at, size));
            if (isHorizontal)
                at.rx() += size.width() + spacing;
            else if ((i + 1) % columns == 0)
                at = QPoint(origin.x(), at.y() + size.height() + spacing);
            else
                at.rx() += size.width() + spacing;
        }
        return result;
    }

    QVector<int> inOrder() const
    {
        QVector<int> order(sizes.size());
        std::iota(order.begin(), order.end(), 0);
        return order;
    }
};

class TestOverlay : public ReorderOverlay
{
public:
    TestOverlay(QWidget* parent, Entries entries, int initialSlot = 0)
        : ReorderOverlay(parent), m_entries(std::move(entries))
    {
        initialize(initialSlot);
    }

    using ReorderOverlay::hintInset;

    ReorderTile* tile(int sourceRow) const
    {
        for (auto* tile : findChildren<ReorderTile*>()) {
            if (tile->sourceRow() == sourceRow)
                return tile;
        }
        return nullptr;
    }

    QVector<QRect> slotsNow() const
    {
        QVector<QRect> rects = m_entries.rects(currentOrder());
        for (QRect& rect : rects)
            rect.translate(0, hintInset());
        return rects;
    }

    /// How far the content is scrolled, if all tiles but the lifted one are in their slots; else
    /// the least number.
    int scroll() const
    {
        QVector<int> offsets;
        const QVector<QRect> rects = slotsNow();
        for (int i = 0; i < rects.size(); ++i) {
            const ReorderTile* at = tile(currentOrder().at(i));
            if (hasLift() && i == cursorSlot())
                continue;
            const QPoint off = rects.at(i).topLeft() - at->pos();
            if ((m_entries.isHorizontal ? off.y() : off.x()) != 0)
                return std::numeric_limits<int>::min();
            offsets.append(m_entries.isHorizontal ? off.x() : off.y());
        }
        const bool isSame = std::equal(offsets.begin() + 1, offsets.end(), offsets.begin());
        return isSame ? offsets.first() : std::numeric_limits<int>::min();
    }

protected:
    QColor backdropColor() const override { return kBackdrop; }
    bool isHorizontal() const override { return m_entries.isHorizontal; }
    QString hintKey() const override { return m_entries.hint; }
    void createTiles() override
    {
        const QVector<QRect> rects = m_entries.rects(m_entries.inOrder());
        for (int i = 0; i < rects.size(); ++i) {
            addTile(filled(rects.at(i).size(), kRest), filled(rects.at(i).size(), kLit), i,
                    rects.at(i));
        }
    }
    QVector<QRect> computeSlotRects(const QVector<ReorderTile*>& tiles) const override
    {
        QVector<int> order;
        for (const ReorderTile* tile : tiles)
            order.append(tile->sourceRow());
        QVector<QRect> rects = m_entries.rects(order);
        for (QRect& rect : rects)
            rect.translate(0, hintInset());
        return rects;
    }

private:
    Entries m_entries;
};

inline Entries grid(int count, int columns, const QSize& size = QSize(100, 80))
{
    return {QVector<QSize>(count, size), columns, false, QPoint(), 0, QString()};
}

/// Pills of different widths in one row.
inline Entries pills(const QVector<int>& widths, const QPoint& origin = QPoint(10, 4))
{
    Entries entries;
    for (const int width : widths)
        entries.sizes.append(QSize(width, 28));
    entries.isHorizontal = true;
    entries.origin = origin;
    entries.spacing = 8;
    return entries;
}

inline qreal eased(qreal progress)
{
    return QEasingCurve(QEasingCurve::OutCubic).valueForProgress(progress);
}

/// Where a tile is on a part of its way; the last pixel may be rounded either way.
inline bool isOnItsWay(const QPoint& pos, const QPoint& from, const QPoint& to, qreal progress)
{
    const QPointF wanted = QPointF(from) + QPointF(to - from) * eased(progress);
    return qAbs(pos.x() - wanted.x()) <= 1.0 && qAbs(pos.y() - wanted.y()) <= 1.0;
}

inline QVector<int> sorted(QVector<int> order)
{
    std::sort(order.begin(), order.end());
    return order;
}

/// The ground that the tests of the overlay stand on: a widget that it lies over, and time that
/// passes as they say.
class ReorderOverlayFixture : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase()
    {
        Tr::currentLang = Lang::En;
        Theme::forceTheme = 1;
    }

    void init()
    {
        m_clock = std::make_unique<DrivenClock>();
        m_parent = std::make_unique<QWidget>();
        m_parent->resize(400, 300);
        m_parent->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_parent.get()));
    }

    void cleanup()
    {
        m_parent.reset();
        m_clock.reset();
    }

protected:
    TestOverlay* make(const Entries& entries, int initialSlot = 0)
    {
        auto* overlay = new TestOverlay(m_parent.get(), entries, initialSlot);
        m_clock->pass(2000);
        return overlay;
    }
    void press(QWidget* overlay, const QPoint& at, Qt::MouseButton button = Qt::LeftButton)
    {
        sendMouse(overlay, QEvent::MouseButtonPress, overlay->mapToGlobal(at), button);
    }
    void move(QWidget* overlay, const QPoint& to)
    {
        sendMouse(overlay, QEvent::MouseMove, overlay->mapToGlobal(to));
    }
    void release(QWidget* overlay, const QPoint& at)
    {
        sendMouse(overlay, QEvent::MouseButtonRelease, overlay->mapToGlobal(at));
    }
    static bool turnWheel(QWidget* overlay, const QPoint& angle)
    {
        QWheelEvent event(QPointF(5, 5), QPointF(5, 5), QPoint(), angle, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(overlay, &event);
        return event.isAccepted();
    }

    std::unique_ptr<DrivenClock> m_clock;
    std::unique_ptr<QWidget> m_parent;
};
