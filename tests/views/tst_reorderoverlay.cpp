// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DrivenClock.h"
#include "Localization.h"
#include "Pixels.h"
#include "ReorderOverlay.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QApplication>
#include <QEasingCurve>
#include <QFontMetrics>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <limits>
#include <memory>
#include <numeric>

namespace
{

const QString kHint = QStringLiteral("reorder.hint");
constexpr Qt::GlobalColor kRest = Qt::blue;
constexpr Qt::GlobalColor kLit = Qt::red;
constexpr QColor kBackdrop(0, 220, 0);

QPixmap filled(const QSize& size, const QColor& color, qreal ratio = 1.0)
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

Entries grid(int count, int columns, const QSize& size = QSize(100, 80))
{
    return {QVector<QSize>(count, size), columns, false, QPoint(), 0, QString()};
}

/// Pills of different widths in one row.
Entries pills(const QVector<int>& widths, const QPoint& origin = QPoint(10, 4))
{
    Entries entries;
    for (const int width : widths)
        entries.sizes.append(QSize(width, 28));
    entries.isHorizontal = true;
    entries.origin = origin;
    entries.spacing = 8;
    return entries;
}

qreal eased(qreal progress)
{
    return QEasingCurve(QEasingCurve::OutCubic).valueForProgress(progress);
}

/// Where a tile is on a part of its way; the last pixel may be rounded either way.
bool isOnItsWay(const QPoint& pos, const QPoint& from, const QPoint& to, qreal progress)
{
    const QPointF wanted = QPointF(from) + QPointF(to - from) * eased(progress);
    return qAbs(pos.x() - wanted.x()) <= 1.0 && qAbs(pos.y() - wanted.y()) <= 1.0;
}

QVector<int> sorted(QVector<int> order)
{
    std::sort(order.begin(), order.end());
    return order;
}

} // namespace

class ReorderOverlayTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void numbers();
    void tileTakesNothing();
    void tilePaintsItsState_data();
    void tilePaintsItsState();
    void tileRepaintsOnChangeOnly();
    void tileThatMovesRepaintsWhereItWas();

    void liesOverItsParent();
    void initialSlot_data();
    void initialSlot();
    void columns_data();
    void columns();
    void cursorIsBounded();
    void liftAndDropOnlyWhenDue();

    void moveLifted_data();
    void moveLifted();
    void nothingMovesWithoutLift();
    void orderThatReturnsIsUnchanged();
    void unevenSlotsFollowTheOrder();

    void liftFollowsItsEasing();
    void liftReversedHalfWay();
    void slideFollowsItsEasing_data();
    void slideFollowsItsEasing();
    void openingSlideMakesRoomForTheHint();
    void nothingSlidesWithoutAHint();
    void stagger_data();
    void stagger();
    void newSlideEndsTheFormer();
    void scrollEndsASlide();

    void dragCarriesTheTile();
    void dragToASlotThatIsCutDoesNotScroll();
    void dragEndsInItsSlot();
    void dragAcrossSlots();
    void pressDropsWhatKeysHaveLifted();
    void pressBesideSlotsOrWithAnotherButton();
    void pressDuringASlideHoldsTheTile();
    void wheelAfterADragKeepsTheTilesTogether();
    void tileDroppedByAKeyDuringADrag();
    void hoverMovesTheCursor();
    void nearestSlotOnATie();
    void doublePressIsAPress();
    void nothingReachesWhatLiesBelow();

    void wheel_data();
    void wheel();
    void scrollBounds_data();
    void scrollBounds();
    void ensureVisible();
    void cursorScrollsOnlyIfAsked();
    void movingByKeysScrolls();

    void autoScroll_data();
    void autoScroll();
    void autoScrollStopsInTheMiddle();
    void autoScrollStopsWithTheDrag();
    void tileHoldsStillWhileContentScrolls();

    void hintFont();
    void hintPillMeasures_data();
    void hintPillMeasures();
    void hintPillIsPainted();
    void hintScrollsWithTheContent();
    void banner();
    void bannerWithoutText();

    void deletedAtAnyTime();
    void anySequenceEndsInAPermutation();

private:
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
    static bool isAutoScrolling(const QWidget* overlay)
    {
        const auto timers = overlay->findChildren<QTimer*>();
        return std::any_of(timers.begin(), timers.end(),
                           [](const QTimer* timer) { return timer->isActive(); });
    }

    std::unique_ptr<DrivenClock> m_clock;
    std::unique_ptr<QWidget> m_parent;
};

void ReorderOverlayTest::initTestCase()
{
    Tr::currentLang = Lang::En;
    Theme::forceTheme = 1;
}

void ReorderOverlayTest::init()
{
    m_clock = std::make_unique<DrivenClock>();
    m_parent = std::make_unique<QWidget>();
    m_parent->resize(400, 300);
    m_parent->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_parent.get()));
}

void ReorderOverlayTest::cleanup()
{
    m_parent.reset();
    m_clock.reset();
}

void ReorderOverlayTest::numbers()
{
    QCOMPARE(ReorderTile::RestScale, 0.97);
    QCOMPARE(ReorderTile::LiftScale, 1.04);
    QCOMPARE(ReorderTile::DimOpacity, 0.75);
    QCOMPARE(ReorderOverlay::DurLift, 140);
    QCOMPARE(ReorderOverlay::DurInRow, 160);
    QCOMPARE(ReorderOverlay::DurCrossRow, 260);
    QCOMPARE(ReorderOverlay::StaggerCap, 200);
    QCOMPARE(ReorderOverlay::StaggerMax, 12);
    QCOMPARE(ReorderOverlay::EdgeMargin, 28);
    QCOMPARE(ReorderOverlay::AutoScrollStep, 8);
    QCOMPARE(ReorderOverlay::WheelStep, 48);
    QCOMPARE(ReorderOverlay::HintTop, 2);
    QCOMPARE(ReorderOverlay::HintGap, 12);
    QCOMPARE(ReorderOverlay::HintPadH, 16);
    QCOMPARE(ReorderOverlay::HintPadV, 7);
    QCOMPARE(ReorderOverlay::HintSideMargin, 8);
    QCOMPARE(ReorderHintBanner::ScrimAlpha, 0.82);
    QCOMPARE(ReorderHintBanner::TopMargin, 24);
}

void ReorderOverlayTest::tileTakesNothing()
{
    ReorderTile tile(m_parent.get(), QPixmap(), QPixmap(), 7);
    QCOMPARE(tile.sourceRow(), 7);
    QCOMPARE(tile.lift(), 0.0);
    QVERIFY(tile.testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(tile.focusPolicy(), Qt::NoFocus);
}

void ReorderOverlayTest::tilePaintsItsState_data()
{
    QTest::addColumn<bool>("current");
    QTest::addColumn<qreal>("lift");
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<QColor>("color");
    const auto onWhite = [](const QColor& color, qreal opacity) {
        const auto mix = [opacity](int channel) {
            return qRound(channel * opacity + 255 * (1 - opacity));
        };
        return QColor(mix(color.red()), mix(color.green()), mix(color.blue()));
    };
    QTest::newRow("at rest") << false << 0.0 << 0.97 << onWhite(kRest, 0.75);
    QTest::newRow("half lifted") << false << 0.5 << 1.005 << onWhite(kRest, 0.875);
    QTest::newRow("lifted") << false << 1.0 << 1.04 << onWhite(kRest, 1.0);
    QTest::newRow("current") << true << 0.0 << 1.0 << onWhite(kLit, 1.0);
    QTest::newRow("current, half lifted") << true << 0.5 << 1.02 << onWhite(kLit, 1.0);
    QTest::newRow("current, lifted") << true << 1.0 << 1.04 << onWhite(kLit, 1.0);
}

void ReorderOverlayTest::tilePaintsItsState()
{
    QFETCH(bool, current);
    QFETCH(qreal, lift);
    QFETCH(qreal, scale);
    QFETCH(QColor, color);
    for (const qreal ratio : {1.0, 1.5, 2.0}) {
        ReorderTile tile(m_parent.get(), filled(QSize(160, 120), kRest, ratio),
                         filled(QSize(160, 120), kLit, ratio), 0);
        tile.resize(200, 160);
        tile.setCurrent(current);
        tile.setLift(lift);
        const QImage image = Pixels::imageOf(tile);
        QVERIFY(Pixels::isNear(image.pixelColor(100, 80), color, 2));
        // Half a pixel of an edge may be painted faintly.
        const QRect box = Pixels::boxOfColor(image, color, 60);
        QVERIFY(qAbs(box.width() - 160 * scale) <= 1.5);
        QVERIFY(qAbs(box.height() - 120 * scale) <= 1.5);
        QVERIFY(Pixels::isCentredOn(box, QPointF(99.5, 79.5)));
        QCOMPARE(tile.size(), QSize(200, 160));
    }
}

void ReorderOverlayTest::tileRepaintsOnChangeOnly()
{
    ReorderTile tile(m_parent.get(), filled(QSize(20, 20), kRest), filled(QSize(20, 20), kLit), 0);
    tile.resize(30, 30);
    tile.show();
    PaintCounter counter(&tile);
    QTRY_VERIFY(counter.count > 0);
    const auto paintsAfter = [&counter](const std::function<void()>& change) {
        counter.count = 0;
        change();
        QCoreApplication::processEvents();
        return counter.count;
    };
    QCOMPARE(paintsAfter([&tile] { tile.setLift(0.0); }), 0);
    QCOMPARE(paintsAfter([&tile] { tile.setLift(0.5); }), 1);
    QCOMPARE(paintsAfter([&tile] { tile.setLift(0.5); }), 0);
    QCOMPARE(paintsAfter([&tile] { tile.setCurrent(false); }), 0);
    QCOMPARE(paintsAfter([&tile] { tile.setCurrent(true); }), 1);
    QCOMPARE(paintsAfter([&tile] { tile.setCurrent(true); }), 0);
}

void ReorderOverlayTest::tileThatMovesRepaintsWhereItWas()
{
    TestOverlay* overlay = make(grid(2, 1));
    QCoreApplication::processEvents();
    overlay->tile(0)->move(250, 200);
    QCoreApplication::processEvents();
    const QImage image = m_parent->grab().toImage();
    QCOMPARE(image.pixelColor(50, 40), kBackdrop);
    QVERIFY(image.pixelColor(300, 240) != kBackdrop);
}

void ReorderOverlayTest::liesOverItsParent()
{
    const TestOverlay* overlay = make(grid(4, 2));
    QCOMPARE(overlay->geometry(), QRect(0, 0, 400, 300));
    QVERIFY(overlay->isVisible());
    QCOMPARE(overlay->cursor().shape(), Qt::OpenHandCursor);
    QVERIFY(overlay->hasMouseTracking());
    QCOMPARE(overlay->focusPolicy(), Qt::NoFocus);
    QCOMPARE(overlay->slotCount(), 4);
    QCOMPARE(overlay->currentOrder(), QVector<int>({0, 1, 2, 3}));
    QVERIFY(!overlay->orderChanged());
    QVERIFY(!overlay->hasLift());
    const QImage image = m_parent->grab().toImage();
    QCOMPARE(image.pixelColor(399, 299), kBackdrop);
}

void ReorderOverlayTest::initialSlot_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("wanted");
    QTest::addColumn<int>("expected");
    QTest::newRow("first") << 5 << 0 << 0;
    QTest::newRow("third") << 5 << 2 << 2;
    QTest::newRow("last") << 5 << 4 << 4;
    QTest::newRow("beyond the last") << 5 << 100 << 4;
    QTest::newRow("none") << 5 << -1 << 0;
    QTest::newRow("one tile") << 1 << 0 << 0;
    QTest::newRow("no tiles") << 0 << 0 << -1;
}

void ReorderOverlayTest::initialSlot()
{
    QFETCH(int, count);
    QFETCH(int, wanted);
    QFETCH(int, expected);
    TestOverlay* overlay = make(grid(count, 3), wanted);
    QCOMPARE(overlay->cursorSlot(), expected);
    QCOMPARE(overlay->slotCount(), count);
    overlay->liftCursor();
    QCOMPARE(overlay->hasLift(), count > 0);
    overlay->moveLifted(1);
    overlay->setScroll(50);
    overlay->ensureSlotVisible(0);
    press(overlay, QPoint(5, 5));
    move(overlay, QPoint(50, 50));
    release(overlay, QPoint(50, 50));
    overlay->dropLifted();
    QCOMPARE(sorted(overlay->currentOrder()), grid(count, 3).inOrder());
}

void ReorderOverlayTest::columns_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("inRow");
    QTest::addColumn<int>("expected");
    QTest::newRow("no slots") << 0 << 3 << 1;
    QTest::newRow("one") << 1 << 3 << 1;
    QTest::newRow("a row not full") << 2 << 3 << 2;
    QTest::newRow("a full row") << 3 << 3 << 3;
    QTest::newRow("several rows") << 11 << 4 << 4;
    QTest::newRow("one below the other") << 5 << 1 << 1;
}

void ReorderOverlayTest::columns()
{
    QFETCH(int, count);
    QFETCH(int, inRow);
    QTEST(make(grid(count, inRow))->columns(), "expected");
}

void ReorderOverlayTest::cursorIsBounded()
{
    TestOverlay* overlay = make(grid(6, 3), 2);
    for (const auto& [wanted, expected] : {std::pair(-1, 0),
                                           {3, 3},
                                           {6, 5},
                                           {std::numeric_limits<int>::max(), 5},
                                           {std::numeric_limits<int>::min(), 0}}) {
        overlay->setCursorSlot(wanted, true);
        QCOMPARE(overlay->cursorSlot(), expected);
        for (int row = 0; row < 6; ++row) {
            const QImage image = Pixels::imageOf(*overlay->tile(row));
            const QColor wantedColor = row == expected ? QColor(kLit) : QColor(64, 64, 255);
            QVERIFY(Pixels::isNear(image.pixelColor(50, 40), wantedColor, 2));
        }
    }
}

void ReorderOverlayTest::liftAndDropOnlyWhenDue()
{
    TestOverlay* overlay = make(grid(6, 3), 1);
    overlay->dropLifted();
    QVERIFY(!overlay->hasLift());
    overlay->liftCursor();
    QVERIFY(overlay->hasLift());
    QCOMPARE(overlay->children().last(), overlay->tile(1)); // above all others
    overlay->setCursorSlot(2, false);
    overlay->liftCursor(); // one is lifted already
    m_clock->pass(1000);
    QCOMPARE(overlay->tile(1)->lift(), 1.0);
    QCOMPARE(overlay->tile(2)->lift(), 0.0);
    overlay->dropLifted();
    QVERIFY(!overlay->hasLift());
    QCOMPARE(overlay->cursorSlot(), 2);
    m_clock->pass(1000);
    QCOMPARE(overlay->tile(1)->lift(), 0.0);
    QVERIFY(!overlay->orderChanged());
}

void ReorderOverlayTest::moveLifted_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("delta");
    QTest::addColumn<QVector<int>>("order");
    QTest::addColumn<int>("cursor");
    // Three columns, the last row two long.
    const QVector<int> same{0, 1, 2, 3, 4, 5, 6, 7};
    QTest::newRow("none") << 3 << 0 << same << 3;
    QTest::newRow("right") << 3 << 1 << QVector<int>{0, 1, 2, 4, 3, 5, 6, 7} << 4;
    QTest::newRow("left") << 3 << -1 << QVector<int>{0, 1, 3, 2, 4, 5, 6, 7} << 2;
    QTest::newRow("down") << 1 << 3 << QVector<int>{0, 2, 3, 4, 1, 5, 6, 7} << 4;
    QTest::newRow("up") << 4 << -3 << QVector<int>{0, 4, 1, 2, 3, 5, 6, 7} << 1;
    QTest::newRow("up in the top row") << 2 << -3 << QVector<int>{2, 0, 1, 3, 4, 5, 6, 7} << 0;
    QTest::newRow("down to a shorter row") << 5 << 3 << QVector<int>{0, 1, 2, 3, 4, 6, 7, 5} << 7;
    QTest::newRow("left of the first") << 0 << -1 << same << 0;
    QTest::newRow("right of the last") << 7 << 1 << same << 7;
    QTest::newRow("far") << 3 << std::numeric_limits<int>::max()
                         << QVector<int>{0, 1, 2, 4, 5, 6, 7, 3} << 7;
    QTest::newRow("far back") << 3 << std::numeric_limits<int>::min()
                              << QVector<int>{3, 0, 1, 2, 4, 5, 6, 7} << 0;
}

void ReorderOverlayTest::moveLifted()
{
    QFETCH(int, from);
    QFETCH(int, delta);
    QFETCH(QVector<int>, order);
    QFETCH(int, cursor);
    const Entries entries = grid(8, 3);
    TestOverlay* overlay = make(entries, from);
    overlay->liftCursor();
    overlay->moveLifted(delta);
    QCOMPARE(overlay->currentOrder(), order);
    QCOMPARE(overlay->cursorSlot(), cursor);
    QCOMPARE(overlay->orderChanged(), order != entries.inOrder());
    QVERIFY(overlay->hasLift());
    m_clock->pass(2000);
    for (int slot = 0; slot < 8; ++slot)
        QCOMPARE(overlay->tile(order.at(slot))->pos(), overlay->slotsNow().at(slot).topLeft());
    overlay->dropLifted();
    QCOMPARE(overlay->currentOrder(), order);
    QCOMPARE(overlay->cursorSlot(), cursor);
}

void ReorderOverlayTest::nothingMovesWithoutLift()
{
    TestOverlay* overlay = make(grid(8, 3), 3);
    overlay->moveLifted(1);
    QCOMPARE(overlay->cursorSlot(), 3);
    QVERIFY(!overlay->orderChanged());
}

void ReorderOverlayTest::orderThatReturnsIsUnchanged()
{
    TestOverlay* overlay = make(grid(8, 3), 3);
    overlay->liftCursor();
    overlay->moveLifted(4);
    QVERIFY(overlay->orderChanged());
    overlay->moveLifted(-4);
    QVERIFY(!overlay->orderChanged());
    QCOMPARE(overlay->cursorSlot(), 3);
}

void ReorderOverlayTest::unevenSlotsFollowTheOrder()
{
    TestOverlay* overlay = make(pills({50, 90, 30, 70}), 1);
    overlay->liftCursor();
    overlay->moveLifted(-1); // the widest to the front
    m_clock->pass(1000);
    QCOMPARE(overlay->currentOrder(), QVector<int>({1, 0, 2, 3}));
    QCOMPARE(overlay->tile(1)->pos(), QPoint(10, 4));
    QCOMPARE(overlay->tile(0)->pos(), QPoint(10 + 90 + 8, 4));
    QCOMPARE(overlay->tile(2)->pos(), QPoint(10 + 90 + 8 + 50 + 8, 4));
    QCOMPARE(overlay->tile(3)->pos(), QPoint(10 + 90 + 8 + 50 + 8 + 30 + 8, 4));
    overlay->moveLifted(3);
    m_clock->pass(1000);
    QCOMPARE(overlay->currentOrder(), QVector<int>({0, 2, 3, 1}));
    QCOMPARE(overlay->tile(0)->pos(), QPoint(10, 4));
    QCOMPARE(overlay->tile(1)->pos(), QPoint(10 + 50 + 8 + 30 + 8 + 70 + 8, 4));
}

void ReorderOverlayTest::liftFollowsItsEasing()
{
    TestOverlay* overlay = make(grid(4, 2));
    overlay->liftCursor();
    m_clock->pass(0);
    QCOMPARE(overlay->tile(0)->lift(), 0.0);
    for (int quarter = 1; quarter <= 4; ++quarter) {
        m_clock->pass(35);
        QCOMPARE(overlay->tile(0)->lift(), eased(quarter / 4.0));
    }
    QCOMPARE(overlay->tile(0)->lift(), 1.0);
    overlay->dropLifted();
    m_clock->pass(0);
    for (int quarter = 1; quarter <= 4; ++quarter) {
        m_clock->pass(35);
        QVERIFY(qAbs(overlay->tile(0)->lift() - (1.0 - eased(quarter / 4.0))) < 1e-9);
    }
    QCOMPARE(overlay->tile(0)->lift(), 0.0);
}

void ReorderOverlayTest::liftReversedHalfWay()
{
    TestOverlay* overlay = make(grid(4, 2));
    overlay->liftCursor();
    m_clock->pass(0);
    m_clock->pass(70);
    const qreal reached = overlay->tile(0)->lift();
    QCOMPARE(reached, eased(0.5));
    overlay->dropLifted();
    qreal last = reached;
    m_clock->pass(0);
    QCOMPARE(overlay->tile(0)->lift(), reached);
    for (int ms = 1; ms <= 140; ++ms) {
        m_clock->pass(1);
        QVERIFY(overlay->tile(0)->lift() <= last); // it never goes up again
        last = overlay->tile(0)->lift();
        if (ms == 35)
            QVERIFY(qAbs(last - reached * (1.0 - eased(0.25))) < 1e-9);
    }
    QCOMPARE(last, 0.0);
}

void ReorderOverlayTest::slideFollowsItsEasing_data()
{
    QTest::addColumn<bool>("isHorizontal");
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("delta");
    QTest::addColumn<int>("duration");
    QTest::newRow("in a row") << false << 3 << 1 << 160;
    QTest::newRow("across rows") << false << 3 << 3 << 260;
    QTest::newRow("to the next row by one") << false << 3 << 2 << 160;
    QTest::newRow("one column") << false << 1 << 1 << 160;
    QTest::newRow("pills") << true << 1 << 1 << 160;
    QTest::newRow("pills, far") << true << 1 << 5 << 160;
}

void ReorderOverlayTest::slideFollowsItsEasing()
{
    QFETCH(bool, isHorizontal);
    QFETCH(int, columns);
    QFETCH(int, delta);
    QFETCH(int, duration);
    Entries entries = grid(6, columns, QSize(40, 28));
    if (isHorizontal)
        entries = pills({40, 50, 60, 40, 50, 60});
    TestOverlay* overlay = make(entries);
    overlay->liftCursor();
    const QPoint from = overlay->slotsNow().at(1).topLeft();
    overlay->moveLifted(delta);
    m_clock->pass(0);
    const QPoint to = overlay->slotsNow().at(0).topLeft();
    // The first that moves is the one that comes to slot 0; it starts at once.
    QCOMPARE(overlay->tile(1)->pos(), from);
    for (int quarter = 1; quarter <= 4; ++quarter) {
        m_clock->pass(duration / 4);
        QVERIFY(isOnItsWay(overlay->tile(1)->pos(), from, to, quarter / 4.0));
        if (quarter < 4)
            QVERIFY(overlay->tile(1)->pos() != to || eased(quarter / 4.0) * 40 > 38);
    }
    QCOMPARE(overlay->tile(1)->pos(), to);
}

void ReorderOverlayTest::openingSlideMakesRoomForTheHint()
{
    Entries entries = grid(4, 2);
    entries.hint = kHint;
    auto* overlay = new TestOverlay(m_parent.get(), entries);
    const int inset = overlay->hintInset();
    QVERIFY(inset > 30);
    m_clock->pass(0);
    QCOMPARE(overlay->tile(0)->pos(), QPoint(0, 0));
    for (int quarter = 1; quarter <= 4; ++quarter) {
        m_clock->pass(65);
        QVERIFY(isOnItsWay(overlay->tile(0)->pos(), QPoint(0, 0), QPoint(0, inset), quarter / 4.0));
        if (quarter < 4)
            QVERIFY(overlay->tile(3)->y() - 80 < overlay->tile(0)->y()); // it started later
    }
    QCOMPARE(overlay->tile(0)->pos(), QPoint(0, inset));
    m_clock->pass(36);
    QCOMPARE(overlay->tile(3)->pos(), QPoint(100, 80 + inset));
}

void ReorderOverlayTest::nothingSlidesWithoutAHint()
{
    const TestOverlay overlay(m_parent.get(), grid(4, 2));
    QCOMPARE(overlay.hintInset(), 0);
    QVERIFY(overlay.findChildren<QAbstractAnimation*>().isEmpty());
    QCOMPARE(overlay.tile(3)->pos(), QPoint(100, 80));
}

void ReorderOverlayTest::stagger_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("step");
    QTest::newRow("2 tiles") << 2 << 12;
    QTest::newRow("16 tiles") << 16 << 12;
    QTest::newRow("17 tiles") << 17 << 11;
    QTest::newRow("40 tiles") << 40 << 5;
    QTest::newRow("60 tiles") << 60 << 3;
    QTest::newRow("200 tiles") << 200 << 1;
    QTest::newRow("201 tiles") << 201 << 0;
}

void ReorderOverlayTest::stagger()
{
    QFETCH(int, count);
    QFETCH(int, step);
    // So far from each other that a tile has moved visibly one millisecond after its start, and all
    // in view, since scrolling would end the slide.
    QWidget parent;
    parent.resize(100, 100 * (count + 1));
    TestOverlay overlay(&parent, grid(count, 1, QSize(100, 100)));
    const QVector<QRect> rects = overlay.slotsNow();
    overlay.liftCursor();
    overlay.moveLifted(count - 1); // all of them move
    const QVector<int> order = overlay.currentOrder();
    QVector<int> startMs(count, -1);
    m_clock->pass(0);
    for (int ms = 1; ms <= step * count + 1; ++ms) {
        m_clock->pass(1);
        for (int slot = 0; slot < count; ++slot) {
            const int row = order.at(slot);
            if (startMs.at(slot) < 0 && overlay.tile(row)->pos() != rects.at(row).topLeft())
                startMs[slot] = ms - 1;
        }
    }
    for (int slot = 0; slot < count; ++slot)
        QCOMPARE(startMs.at(slot), step * slot);
}

void ReorderOverlayTest::newSlideEndsTheFormer()
{
    TestOverlay* overlay = make(grid(6, 3));
    overlay->liftCursor();
    overlay->moveLifted(1);
    m_clock->pass(0);
    m_clock->pass(40);
    const QPoint reached = overlay->tile(0)->pos();
    QVERIFY(isOnItsWay(overlay->tile(1)->pos(), QPoint(100, 0), QPoint(0, 0), 0.25));
    overlay->moveLifted(1);
    m_clock->pass(0);
    QCOMPARE(overlay->tile(0)->pos(), reached); // it goes on from where it is
    m_clock->pass(300);
    QCOMPARE(overlay->currentOrder(), QVector<int>({1, 2, 0, 3, 4, 5}));
    for (int slot = 0; slot < 6; ++slot)
        QCOMPARE(overlay->tile(overlay->currentOrder().at(slot))->pos(),
                 overlay->slotsNow().at(slot).topLeft());
    QVERIFY(overlay->findChildren<QAbstractAnimation*>(Qt::FindDirectChildrenOnly).size() <= 1);
}

void ReorderOverlayTest::scrollEndsASlide()
{
    TestOverlay* overlay = make(grid(30, 3));
    overlay->liftCursor();
    overlay->moveLifted(4);
    m_clock->pass(0);
    m_clock->pass(50);
    QCOMPARE(overlay->scroll(), std::numeric_limits<int>::min());
    overlay->setScroll(30);
    QCOMPARE(overlay->scroll(), 30);
    QCOMPARE(overlay->tile(0)->pos(), QPoint(100, 80 - 30)); // the lifted one as well
    m_clock->pass(500);
    QCOMPARE(overlay->scroll(), 30);
    QCOMPARE(overlay->tile(0)->pos(), QPoint(100, 80 - 30));
}

void ReorderOverlayTest::dragCarriesTheTile()
{
    TestOverlay* overlay = make(grid(6, 3), 5);
    press(overlay, QPoint(130, 20));
    QVERIFY(overlay->hasLift());
    QCOMPARE(overlay->cursorSlot(), 1);
    QCOMPARE(overlay->cursor().shape(), Qt::ClosedHandCursor);
    QCOMPARE(overlay->tile(1)->pos(), QPoint(100, 0));
    for (const QPoint& to : {QPoint(131, 22), QPoint(150, 40), QPoint(140, 10)}) {
        move(overlay, to);
        QCOMPARE(overlay->tile(1)->pos(), to - QPoint(30, 20));
    }
    QVERIFY(!overlay->orderChanged());
    m_clock->pass(200);
    QCOMPARE(overlay->tile(1)->pos(), QPoint(110, -10));
    QCOMPARE(overlay->tile(1)->lift(), 1.0);
}

void ReorderOverlayTest::dragToASlotThatIsCutDoesNotScroll()
{
    TestOverlay* overlay = make(grid(30, 3));
    press(overlay, QPoint(150, 150));
    move(overlay, QPoint(150, 270));
    QCOMPARE(overlay->cursorSlot(), 10); // at 240 to 319 of 300
    m_clock->pass(1000);
    QCOMPARE(overlay->scroll(), 0);
}

void ReorderOverlayTest::dragEndsInItsSlot()
{
    TestOverlay* overlay = make(grid(6, 3));
    press(overlay, QPoint(30, 100));
    move(overlay, QPoint(60, 120));
    release(overlay, QPoint(60, 120));
    QVERIFY(!overlay->hasLift());
    QCOMPARE(overlay->cursor().shape(), Qt::OpenHandCursor);
    m_clock->pass(0);
    QCOMPARE(overlay->tile(3)->pos(), QPoint(30, 100));
    for (int quarter = 1; quarter <= 4; ++quarter) {
        m_clock->pass(40);
        QVERIFY(isOnItsWay(overlay->tile(3)->pos(), QPoint(30, 100), QPoint(0, 80), quarter / 4.0));
    }
    QCOMPARE(overlay->tile(3)->pos(), QPoint(0, 80));
    QCOMPARE(overlay->tile(3)->lift(), 0.0);
    move(overlay, QPoint(250, 20)); // no drag any more
    QCOMPARE(overlay->tile(3)->pos(), QPoint(0, 80));
    QVERIFY(!overlay->orderChanged());
}

void ReorderOverlayTest::dragAcrossSlots()
{
    TestOverlay* overlay = make(grid(9, 3));
    press(overlay, QPoint(50, 40));
    move(overlay, QPoint(150, 110)); // over slot 4
    QCOMPARE(overlay->currentOrder(), QVector<int>({1, 2, 3, 4, 0, 5, 6, 7, 8}));
    QCOMPARE(overlay->cursorSlot(), 4);
    m_clock->pass(0);
    QCOMPARE(overlay->tile(0)->pos(), QPoint(100, 70)); // under the pointer, in no slide
    m_clock->pass(100);
    QVERIFY(overlay->tile(1)->pos() != QPoint(0, 0)); // across rows it takes 260 ms
    m_clock->pass(160 + 36);
    for (int slot = 0; slot < 4; ++slot)
        QCOMPARE(overlay->tile(slot + 1)->pos(), overlay->slotsNow().at(slot).topLeft());
    for (int row = 5; row < 9; ++row) // and these stayed
        QCOMPARE(overlay->tile(row)->pos(), overlay->slotsNow().at(row).topLeft());
    QCOMPARE(overlay->tile(0)->pos(), QPoint(100, 70));
    move(overlay, QPoint(500, 600)); // outside, and nearest to the last
    QCOMPARE(overlay->cursorSlot(), 8);
    QCOMPARE(overlay->currentOrder(), QVector<int>({1, 2, 3, 4, 5, 6, 7, 8, 0}));
    release(overlay, QPoint(500, 600));
    m_clock->pass(500);
    QCOMPARE(overlay->scroll(), 0);
}

void ReorderOverlayTest::pressDropsWhatKeysHaveLifted()
{
    TestOverlay* overlay = make(grid(6, 3));
    overlay->liftCursor();
    overlay->moveLifted(1);
    m_clock->pass(1000);
    press(overlay, QPoint(250, 100)); // slot 5
    QCOMPARE(overlay->cursorSlot(), 5);
    QVERIFY(overlay->hasLift());
    m_clock->pass(1000);
    QCOMPARE(overlay->tile(0)->lift(), 0.0);
    QCOMPARE(overlay->tile(5)->lift(), 1.0);
    release(overlay, QPoint(250, 100));
    QVERIFY(!overlay->hasLift());
}

void ReorderOverlayTest::pressBesideSlotsOrWithAnotherButton()
{
    TestOverlay* overlay = make(grid(5, 3), 2);
    press(overlay, QPoint(350, 280));
    QVERIFY(!overlay->hasLift());
    press(overlay, QPoint(20, 20), Qt::RightButton);
    press(overlay, QPoint(20, 20), Qt::MiddleButton);
    QVERIFY(!overlay->hasLift());
    QCOMPARE(overlay->cursorSlot(), 2);
    QCOMPARE(overlay->cursor().shape(), Qt::OpenHandCursor);
    release(overlay, QPoint(20, 20));
    QCOMPARE(overlay->cursorSlot(), 2);
    // Neither does it drop what keys have lifted.
    overlay->liftCursor();
    press(overlay, QPoint(350, 280));
    QVERIFY(overlay->hasLift());
}

void ReorderOverlayTest::pressDuringASlideHoldsTheTile()
{
    TestOverlay* overlay = make(grid(6, 3));
    overlay->liftCursor();
    overlay->moveLifted(2);
    m_clock->pass(0);
    m_clock->pass(40);
    const QPoint reached = overlay->tile(0)->pos();
    QVERIFY(reached != QPoint(200, 0));
    press(overlay, QPoint(250, 40));
    m_clock->pass(100);
    QCOMPARE(overlay->tile(0)->pos(), reached);
    move(overlay, QPoint(251, 42));
    QCOMPARE(overlay->tile(0)->pos(), reached + QPoint(1, 2));
    m_clock->pass(500);
    QCOMPARE(overlay->tile(0)->pos(), reached + QPoint(1, 2));
    QCOMPARE(overlay->scroll(), 0); // the others have come to their places
}

void ReorderOverlayTest::wheelAfterADragKeepsTheTilesTogether()
{
    TestOverlay* overlay = make(grid(30, 3));
    press(overlay, QPoint(50, 40));
    move(overlay, QPoint(60, 60));
    release(overlay, QPoint(60, 60));
    m_clock->pass(0);
    m_clock->pass(40);
    turnWheel(overlay, QPoint(0, -120));
    m_clock->pass(500);
    QCOMPARE(overlay->scroll(), 48);
    QCOMPARE(overlay->tile(0)->pos(), QPoint(0, -48));
}

void ReorderOverlayTest::tileDroppedByAKeyDuringADrag()
{
    TestOverlay* overlay = make(grid(6, 3));
    press(overlay, QPoint(50, 40));
    move(overlay, QPoint(70, 60));
    overlay->dropLifted();
    move(overlay, QPoint(250, 60));
    QVERIFY(!overlay->orderChanged());
    m_clock->pass(500);
    QCOMPARE(overlay->scroll(), 0); // it is in its slot before the button is up
    overlay->liftCursor();
    move(overlay, QPoint(260, 70));
    release(overlay, QPoint(250, 60));
    m_clock->pass(500);
    QCOMPARE(overlay->scroll(), 0);
    QCOMPARE(sorted(overlay->currentOrder()), grid(6, 3).inOrder());
}

void ReorderOverlayTest::hoverMovesTheCursor()
{
    TestOverlay* overlay = make(grid(30, 3));
    overlay->setScroll(20);
    move(overlay, QPoint(150, 290)); // a slot that is cut by the edge
    QCOMPARE(overlay->cursorSlot(), 10);
    QCOMPARE(overlay->scroll(), 20);
    move(overlay, QPoint(350, 290)); // beside all
    QCOMPARE(overlay->cursorSlot(), 10);
    QVERIFY(!overlay->hasLift());
}

void ReorderOverlayTest::nearestSlotOnATie()
{
    TestOverlay* overlay = make(grid(9, 3, QSize(101, 81)));
    press(overlay, QPoint(250, 200)); // slot 8
    move(overlay, QPoint(101, 40));   // from 50 and from 151
    QCOMPARE(overlay->cursorSlot(), 1);
    move(overlay, QPoint(100, 40));
    QCOMPARE(overlay->cursorSlot(), 0);

    TestOverlay* tie = make(pills({22, 22}, QPoint(0, 0)));
    press(tie, QPoint(40, 5));
    move(tie, QPoint(26, 13)); // centres at 10 and 40
    QCOMPARE(tie->cursorSlot(), 1);
    move(tie, QPoint(25, 13)); // as far from the one as from the other
    QCOMPARE(tie->cursorSlot(), 0);
}

void ReorderOverlayTest::doublePressIsAPress()
{
    TestOverlay* overlay = make(grid(6, 3));
    sendMouse(overlay, QEvent::MouseButtonDblClick, overlay->mapToGlobal(QPoint(150, 40)));
    QVERIFY(overlay->hasLift());
    QCOMPARE(overlay->cursorSlot(), 1);
    release(overlay, QPoint(150, 40));
    QVERIFY(!overlay->hasLift());
}

void ReorderOverlayTest::nothingReachesWhatLiesBelow()
{
    class Below : public QWidget
    {
    public:
        int count = 0;

    protected:
        bool event(QEvent* event) override
        {
            switch (event->type()) {
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonRelease:
            case QEvent::MouseMove:
            case QEvent::Wheel:
                ++count;
                break;
            default:
                break;
            }
            return QWidget::event(event);
        }
    } below;
    below.resize(400, 300);
    below.setMouseTracking(true);
    below.show();
    TestOverlay overlay(&below, grid(3, 3));
    press(&overlay, QPoint(390, 290));
    release(&overlay, QPoint(390, 290));
    press(&overlay, QPoint(10, 10), Qt::RightButton);
    move(&overlay, QPoint(390, 290));
    turnWheel(&overlay, QPoint(0, 0));
    turnWheel(&overlay, QPoint(0, 120));
    QCOMPARE(below.count, 0);
}

void ReorderOverlayTest::wheel_data()
{
    QTest::addColumn<QPoint>("angle");
    QTest::addColumn<int>("expected");
    QTest::newRow("away") << QPoint(0, 120) << 100 - 48;
    QTest::newRow("towards") << QPoint(0, -120) << 100 + 48;
    QTest::newRow("a little") << QPoint(0, -1) << 100 + 48;
    QTest::newRow("far") << QPoint(0, 960) << 100 - 48;
    QTest::newRow("sideways") << QPoint(120, 0) << 100 - 48;
    QTest::newRow("sideways back") << QPoint(-120, 0) << 100 + 48;
    QTest::newRow("both: the vertical one") << QPoint(120, -120) << 100 + 48;
    QTest::newRow("none") << QPoint(0, 0) << 100;
}

void ReorderOverlayTest::wheel()
{
    QFETCH(QPoint, angle);
    TestOverlay* overlay = make(grid(30, 3));
    overlay->setScroll(100);
    QCOMPARE(turnWheel(overlay, angle), angle != QPoint(0, 0));
    QTEST(overlay->scroll(), "expected");
    for (int turn = 0; turn < 20; ++turn)
        turnWheel(overlay, QPoint(0, 120));
    QCOMPARE(overlay->scroll(), 0);
    for (int turn = 0; turn < 20; ++turn)
        turnWheel(overlay, QPoint(0, -120));
    QCOMPARE(overlay->scroll(), 799 - 300); // to the last line of pixels
}

void ReorderOverlayTest::scrollBounds_data()
{
    QTest::addColumn<int>("origin");
    QTest::addColumn<QVector<int>>("widths");
    QTest::addColumn<int>("least");
    QTest::addColumn<int>("most");
    // 400 px of them are in view.
    QTest::newRow("all in view") << 0 << QVector<int>{100, 100} << 0 << 0;
    QTest::newRow("more to the right") << 0 << QVector<int>{300, 300} << 0 << 607 - 400;
    QTest::newRow("some to the left") << -150 << QVector<int>{100, 100} << -150 << -150;
    QTest::newRow("on both sides") << -150 << QVector<int>{300, 400} << -150 << 557 - 400;
    QTest::newRow("not from the edge") << 50 << QVector<int>{100, 100} << 0 << 0;
}

void ReorderOverlayTest::scrollBounds()
{
    QFETCH(int, origin);
    QFETCH(QVector<int>, widths);
    TestOverlay* overlay = make(pills(widths, QPoint(origin, 0)));
    overlay->setScroll(-10000);
    QTEST(overlay->scroll(), "least");
    overlay->setScroll(10000);
    QTEST(overlay->scroll(), "most");
}

void ReorderOverlayTest::ensureVisible()
{
    TestOverlay* overlay = make(grid(30, 3));
    overlay->ensureSlotVisible(5);
    QCOMPARE(overlay->scroll(), 0);
    overlay->ensureSlotVisible(9); // at 240 to 319 of 300
    QCOMPARE(overlay->scroll(), 19);
    overlay->ensureSlotVisible(29);
    QCOMPARE(overlay->scroll(), 799 - 300);
    overlay->ensureSlotVisible(21); // in view
    QCOMPARE(overlay->scroll(), 799 - 300);
    overlay->ensureSlotVisible(3);
    QCOMPARE(overlay->scroll(), 80);
    overlay->ensureSlotVisible(-1);
    overlay->ensureSlotVisible(30);
    QCOMPARE(overlay->scroll(), 80);
}

void ReorderOverlayTest::cursorScrollsOnlyIfAsked()
{
    TestOverlay* overlay = make(grid(30, 3));
    overlay->setCursorSlot(29, false);
    QCOMPARE(overlay->scroll(), 0);
    overlay->setCursorSlot(29, true); // it is there already
    QCOMPARE(overlay->scroll(), 0);
    overlay->setCursorSlot(28, true);
    QCOMPARE(overlay->scroll(), 799 - 300);
}

void ReorderOverlayTest::movingByKeysScrolls()
{
    TestOverlay* overlay = make(grid(30, 3), 7);
    overlay->liftCursor();
    overlay->moveLifted(3);
    m_clock->pass(1000);
    QCOMPARE(overlay->scroll(), 19);
    QCOMPARE(overlay->tile(7)->pos(), QPoint(100, 240 - 19));
    overlay->moveLifted(-10);
    m_clock->pass(1000);
    QCOMPARE(overlay->scroll(), 0);
}

void ReorderOverlayTest::autoScroll_data()
{
    QTest::addColumn<bool>("isHorizontal");
    QTest::addColumn<int>("start");
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<int>("end");
    const int lowest = 799 - 300;
    QTest::newRow("at the lower edge") << false << 0 << QPoint(150, 273) << lowest;
    QTest::newRow("below") << false << 0 << QPoint(150, 900) << lowest;
    QTest::newRow("at the upper edge") << false << lowest << QPoint(150, 27) << 0;
    QTest::newRow("above") << false << lowest << QPoint(150, -50) << 0;
    QTest::newRow("at the right edge") << true << 0 << QPoint(373, 14) << 843 - 400;
    QTest::newRow("at the left edge") << true << 443 << QPoint(27, 14) << 0;
}

void ReorderOverlayTest::autoScroll()
{
    QFETCH(bool, isHorizontal);
    QFETCH(int, start);
    QFETCH(QPoint, pointer);
    QFETCH(int, end);
    const Entries entries = isHorizontal ? pills({200, 200, 200, 220}, QPoint(0, 0)) : grid(30, 3);
    TestOverlay* overlay = make(entries);
    overlay->setScroll(start);
    press(overlay, isHorizontal ? QPoint(150, 14) : QPoint(150, 150));
    const int lifted = overlay->currentOrder().at(overlay->cursorSlot());
    QVERIFY(!isAutoScrolling(overlay));
    move(overlay, pointer);
    QVERIFY(isAutoScrolling(overlay));
    QTRY_VERIFY(!isAutoScrolling(overlay)); // at the end of the content, by itself
    m_clock->pass(1000);
    QCOMPARE(overlay->scroll(), end);
    QVERIFY(overlay->hasLift());
    const bool isAtTheEnd = end > start;
    QVERIFY(isAtTheEnd ? overlay->cursorSlot() >= overlay->slotCount() - 3
                       : overlay->cursorSlot() < 3);
    QCOMPARE(overlay->currentOrder().at(overlay->cursorSlot()), lifted);
    release(overlay, pointer);
    m_clock->pass(1000);
    QCOMPARE(overlay->scroll(), end);
}

void ReorderOverlayTest::autoScrollStopsInTheMiddle()
{
    TestOverlay* overlay = make(grid(300, 3));
    press(overlay, QPoint(150, 150));
    for (const QPoint& calm : {QPoint(150, 28), QPoint(150, 272), QPoint(0, 150)}) {
        move(overlay, QPoint(150, 290));
        QVERIFY(isAutoScrolling(overlay));
        move(overlay, calm);
        QVERIFY(!isAutoScrolling(overlay));
    }
    // From edge to edge it turns.
    overlay->setScroll(400);
    move(overlay, QPoint(150, 290));
    move(overlay, QPoint(150, 5));
    QVERIFY(isAutoScrolling(overlay));
    QTRY_COMPARE(overlay->scroll(), 0);
}

void ReorderOverlayTest::autoScrollStopsWithTheDrag()
{
    TestOverlay* overlay = make(grid(300, 3));
    press(overlay, QPoint(150, 150));
    move(overlay, QPoint(150, 290));
    QVERIFY(isAutoScrolling(overlay));
    release(overlay, QPoint(150, 290));
    QVERIFY(!isAutoScrolling(overlay));
    // Without a drag nothing scrolls at the edge.
    move(overlay, QPoint(150, 295));
    QVERIFY(!isAutoScrolling(overlay));
}

void ReorderOverlayTest::tileHoldsStillWhileContentScrolls()
{
    TestOverlay* overlay = make(grid(300, 3));
    press(overlay, QPoint(150, 150));
    move(overlay, QPoint(160, 290));
    const QPoint held = overlay->tile(4)->pos();
    const int slot = overlay->cursorSlot();
    QTRY_VERIFY(overlay->cursorSlot() > slot + 6);
    QCOMPARE(overlay->tile(4)->pos(), held);
    QCOMPARE(overlay->currentOrder().at(overlay->cursorSlot()), 4);
    turnWheel(overlay, QPoint(0, -120));
    QCOMPARE(overlay->tile(4)->pos(), held);
}

void ReorderOverlayTest::hintFont()
{
    QFont base;
    base.setPointSize(30);
    base.setItalic(true);
    const QFont font = ReorderOverlay::hintFont(base);
    QCOMPARE(font.pixelSize(), 13);
    QVERIFY(font.bold());
    QVERIFY(font.italic());
    QCOMPARE(font.families(), base.families());
}

void ReorderOverlayTest::hintPillMeasures_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("maxWidth");
    for (const Lang lang : Tr::all()) {
        Tr::currentLang = lang;
        for (const int width : {-50, 0, 120, 384, 700, 2000}) {
            const QString name = Tr::codeFor(lang) + u' ' + QString::number(width);
            QTest::newRow(qPrintable(name)) << Tr::t(kHint) << width;
        }
    }
    Tr::currentLang = Lang::En;
    QTest::newRow("short") << QStringLiteral("x") << 384;
}

void ReorderOverlayTest::hintPillMeasures()
{
    QFETCH(QString, text);
    QFETCH(int, maxWidth);
    const QFont font = ReorderOverlay::hintFont(QApplication::font());
    const QFontMetrics metrics(font);
    const QSize size = ReorderOverlay::measureHintPill(font, text, maxWidth);
    const int most = std::max(maxWidth, 120);
    const QRect bounding = metrics.boundingRect(QRect(0, 0, most - 32, 4000),
                                                Qt::TextWordWrap | Qt::AlignCenter, text);
    QCOMPARE(size.width(), std::min(most, bounding.width() + 32));
    QCOMPARE(size.height(), std::max(bounding.height(), metrics.height()) + 14);
    QVERIFY(size.width() <= most);
}

void ReorderOverlayTest::hintPillIsPainted()
{
    Entries entries = grid(4, 2);
    entries.hint = kHint;
    TestOverlay* overlay = make(entries);
    const ColorTokens c = Theme::colors();
    const QSize size = ReorderOverlay::measureHintPill(ReorderOverlay::hintFont(overlay->font()),
                                                       Tr::t(kHint), 400 - 16);
    QCOMPARE(overlay->hintInset(), size.height() + 2 + 12);
    const QImage image = m_parent->grab().toImage();
    const QRect pill((400 - size.width()) / 2, 2, size.width(), size.height());
    const QColor fill(c.surfaceContainerHighest);
    QCOMPARE(image.pixelColor(pill.center().x(), pill.top() + 1), fill);
    QCOMPARE(image.pixelColor(pill.center().x(), pill.bottom() - 1), fill);
    QCOMPARE(image.pixelColor(pill.left() + 1, pill.center().y()), fill);
    QCOMPARE(image.pixelColor(pill.right() - 1, pill.center().y()), fill);
    QCOMPARE(image.pixelColor(pill.topLeft() + QPoint(1, 1)), kBackdrop);
    QCOMPARE(image.pixelColor(pill.center().x(), pill.top() - 1), kBackdrop);
    QCOMPARE(image.pixelColor(pill.center().x(), pill.bottom() + 1), kBackdrop);
    const QRect text = Pixels::boxOfColor(image.copy(pill), QColor(c.onSurfaceVariant), 90);
    QVERIFY(text.left() >= 15 && text.right() <= pill.width() - 15);
    QVERIFY(text.top() >= 6 && text.bottom() <= pill.height() - 6);
    QVERIFY(text.width() > 100);
}

void ReorderOverlayTest::hintScrollsWithTheContent()
{
    Entries entries = grid(30, 3);
    entries.hint = kHint;
    TestOverlay* overlay = make(entries);
    const QColor fill(Theme::colors().surfaceContainerHighest);
    const QRect before = Pixels::boxOfColor(m_parent->grab().toImage(), fill);
    QVERIFY(before.top() <= 3);
    overlay->setScroll(10);
    const QRect after = Pixels::boxOfColor(m_parent->grab().toImage(), fill);
    QCOMPARE(after.bottom(), before.bottom() - 10);
    overlay->setScroll(300);
    QVERIFY(Pixels::boxOfColor(m_parent->grab().toImage(), fill).isEmpty());
}

void ReorderOverlayTest::banner()
{
    auto* banner = new ReorderHintBanner(m_parent.get(), "reorder.hint_sections");
    QCOMPARE(banner->geometry(), m_parent->rect());
    QVERIFY(banner->isVisible());
    QVERIFY(banner->testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(banner->focusPolicy(), Qt::NoFocus);
    const ColorTokens c = Theme::colors();
    const QImage image = Pixels::imageOf(*banner);
    const QColor surface(c.surface);
    const auto dimmed = [](int channel) { return qRound(channel * 0.82 + 255 * 0.18); };
    QVERIFY(Pixels::isNear(
        image.pixelColor(200, 280),
        QColor(dimmed(surface.red()), dimmed(surface.green()), dimmed(surface.blue())), 2));
    const QSize size = ReorderOverlay::measureHintPill(ReorderOverlay::hintFont(banner->font()),
                                                       Tr::t("reorder.hint_sections"), 400 - 16);
    const QRect pill = Pixels::boxOfColor(image, QColor(c.surfaceContainerHighest));
    QVERIFY(qAbs(pill.left() - (400 - size.width()) / 2) <= 1);
    QVERIFY(qAbs(pill.top() - 24) <= 1);
    QVERIFY(qAbs(pill.width() - size.width()) <= 2);
    QVERIFY(qAbs(pill.height() - size.height()) <= 2);
}

void ReorderOverlayTest::bannerWithoutText()
{
    auto* banner = new ReorderHintBanner(m_parent.get(), QString());
    const QImage image = Pixels::imageOf(*banner);
    QVERIFY(Pixels::boxOfColor(image, QColor(Theme::colors().surfaceContainerHighest)).isEmpty());
    QVERIFY(image.pixelColor(200, 100) == image.pixelColor(200, 32));
}

void ReorderOverlayTest::deletedAtAnyTime()
{
    Entries entries = grid(30, 3);
    entries.hint = kHint;
    for (int moment = 0; moment < 5; ++moment) {
        auto* overlay = new TestOverlay(m_parent.get(), entries); // the opening slide runs
        if (moment > 0)
            m_clock->pass(1000);
        if (moment == 2) {
            overlay->liftCursor();
            overlay->moveLifted(5);
        }
        if (moment > 2) {
            press(overlay, QPoint(150, 150));
            move(overlay, QPoint(150, 295));
        }
        if (moment == 4)
            release(overlay, QPoint(150, 295));
        m_clock->pass(10);
        overlay->setParent(nullptr);
        overlay->deleteLater();
        const QPointer<TestOverlay> guard = overlay;
        QTRY_VERIFY(guard.isNull());
        m_clock->pass(500);
    }
}

void ReorderOverlayTest::anySequenceEndsInAPermutation()
{
    m_parent->hide(); // to paint it all would only take time
    QRandomGenerator random(11);
    const auto point = [&random] {
        return QPoint(random.bounded(-50, 450), random.bounded(-50, 350));
    };
    for (int round = 0; round < 1000; ++round) {
        const int count = random.bounded(0, 14);
        Entries entries = grid(count, random.bounded(1, 5));
        if (random.bounded(2) == 0) {
            QVector<int> widths;
            for (int i = 0; i < count; ++i)
                widths.append(random.bounded(20, 200));
            entries = pills(widths, QPoint(random.bounded(-300, 50), 0));
        }
        entries.hint = random.bounded(2) == 0 ? kHint : QString();
        TestOverlay overlay(m_parent.get(), entries, random.bounded(-2, count + 2));
        bool isPressed = false;
        for (int step = random.bounded(30); step > 0; --step) {
            switch (random.bounded(11)) {
            case 0:
                overlay.liftCursor();
                break;
            case 1:
                overlay.dropLifted();
                break;
            case 2:
            case 3:
                overlay.moveLifted(random.bounded(-6, 7));
                break;
            case 4:
                overlay.setCursorSlot(random.bounded(-2, count + 2), random.bounded(2) == 0);
                break;
            case 5:
                overlay.setScroll(random.bounded(-500, 500));
                break;
            case 6:
                turnWheel(&overlay, QPoint(0, random.bounded(2) == 0 ? 120 : -120));
                break;
            case 7:
                press(&overlay, point());
                isPressed = true;
                break;
            case 8:
                move(&overlay, point());
                break;
            case 9:
                release(&overlay, point());
                isPressed = false;
                break;
            default:
                overlay.resize(random.bounded(1, 500), random.bounded(1, 400));
                break;
            }
            if (random.bounded(4) == 0)
                m_clock->pass(random.bounded(100));
            QCOMPARE(sorted(overlay.currentOrder()), entries.inOrder());
            QVERIFY(overlay.cursorSlot() >= (count == 0 ? -1 : 0) && overlay.cursorSlot() < count);
        }
        if (isPressed)
            release(&overlay, point());
        overlay.dropLifted();
        m_clock->pass(2000);
        QCOMPARE(sorted(overlay.currentOrder()), entries.inOrder());
        if (count > 1)
            QVERIFY(overlay.scroll() != std::numeric_limits<int>::min()); // all in their slots
    }
}

QTEST_MAIN(ReorderOverlayTest)
#include "tst_reorderoverlay.moc"
