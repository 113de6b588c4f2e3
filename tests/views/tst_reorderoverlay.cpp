// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Pixels.h"
#include "ReorderOverlayFixture.h"

#include <QPointer>
#include <QRandomGenerator>

#include <functional>

/// What tiles look like, where they stand, and how they come there: by keys, lifted and sliding.
class ReorderOverlayTest : public ReorderOverlayFixture
{
    Q_OBJECT

private slots:
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

    void onlyTilesInViewAreShown();
    void slideOfManyTiles();

    void deletedAtAnyTime();
    void anySequenceEndsInAPermutation();
};

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
    QCOMPARE(ReorderOverlay::AutoScrollMs, 16);
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

void ReorderOverlayTest::onlyTilesInViewAreShown()
{
    TestOverlay* overlay = make(grid(600, 3));
    const auto shownRows = [overlay] {
        QVector<int> rows;
        for (const auto* tile : overlay->findChildren<ReorderTile*>()) {
            if (tile->isVisible())
                rows.append(tile->sourceRow());
        }
        return sorted(rows);
    };
    QCOMPARE(shownRows(), grid(12, 3).inOrder()); // four lines of them, the last one cut
    overlay->setCursorSlot(599, true);
    QCOMPARE(overlay->scroll(), 200 * 80 - 1 - 300); // all are where they should be
    QCOMPARE(shownRows().size(), 12);
    QCOMPARE(shownRows().last(), 599);
    // What is held shows wherever it is.
    overlay->liftCursor();
    overlay->moveLifted(-599);
    m_clock->pass(1000);
    QVERIFY(shownRows().contains(599));
    QCOMPARE(overlay->scroll(), 0);
    overlay->resize(400, 500); // seven lines
    QCOMPARE(shownRows().size(), 21);
}

void ReorderOverlayTest::slideOfManyTiles()
{
    TestOverlay* overlay = make(grid(600, 3), 300);
    overlay->liftCursor();
    overlay->moveLifted(-300); // through the view, which stays where it is
    m_clock->pass(0);
    m_clock->pass(130);
    QVERIFY(isOnItsWay(overlay->tile(11)->pos(), QPoint(200, 240), QPoint(0, 320), 0.5));
    QVERIFY(isOnItsWay(overlay->tile(300)->pos(), QPoint(0, 8000), QPoint(0, 0), 0.5));
    QVERIFY(overlay->tile(11)->isVisible());
    QVERIFY(overlay->tile(300)->isVisible());
    QVERIFY(!overlay->tile(50)->isVisible());
    m_clock->pass(130);
    QCOMPARE(overlay->scroll(), 0);
    QCOMPARE(overlay->tile(11)->pos(), QPoint(0, 320));
    QCOMPARE(overlay->tile(300)->pos(), QPoint(0, 0));
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
