// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ReorderOverlayFixture.h"

#include <QTimer>

/// Tiles in the hand of the pointer, and the scrolling of them.
class ReorderOverlayMouseTest : public ReorderOverlayFixture
{
    Q_OBJECT

private slots:
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
    void hoverWhileATileIsLifted();
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

private:
    static bool isAutoScrolling(const QWidget* overlay)
    {
        const auto timers = overlay->findChildren<QTimer*>();
        return std::any_of(timers.begin(), timers.end(),
                           [](const QTimer* timer) { return timer->isActive(); });
    }
};

void ReorderOverlayMouseTest::dragCarriesTheTile()
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

void ReorderOverlayMouseTest::dragToASlotThatIsCutDoesNotScroll()
{
    TestOverlay* overlay = make(grid(30, 3));
    press(overlay, QPoint(150, 150));
    move(overlay, QPoint(150, 270));
    QCOMPARE(overlay->cursorSlot(), 10); // at 240 to 319 of 300
    m_clock->pass(1000);
    QCOMPARE(overlay->scroll(), 0);
}

void ReorderOverlayMouseTest::dragEndsInItsSlot()
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

void ReorderOverlayMouseTest::dragAcrossSlots()
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

void ReorderOverlayMouseTest::pressDropsWhatKeysHaveLifted()
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

void ReorderOverlayMouseTest::pressBesideSlotsOrWithAnotherButton()
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

void ReorderOverlayMouseTest::pressDuringASlideHoldsTheTile()
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

void ReorderOverlayMouseTest::wheelAfterADragKeepsTheTilesTogether()
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

void ReorderOverlayMouseTest::tileDroppedByAKeyDuringADrag()
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

void ReorderOverlayMouseTest::hoverMovesTheCursor()
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

/// The keys go on with what the pointer has come to, and the lifted tile stays where it is.
void ReorderOverlayMouseTest::hoverWhileATileIsLifted()
{
    TestOverlay* overlay = make(grid(6, 3));
    overlay->liftCursor();
    m_clock->pass(500);
    move(overlay, QPoint(150, 120));
    QCOMPARE(overlay->cursorSlot(), 4);
    QVERIFY(overlay->hasLift());
    QVERIFY(!overlay->orderChanged());
    overlay->moveLifted(1);
    QCOMPARE(overlay->cursorSlot(), 5);
    QCOMPARE(overlay->currentOrder(), QVector<int>({0, 1, 2, 3, 5, 4}));
    m_clock->pass(500);
    QCOMPARE(overlay->tile(0)->lift(), 1.0);
    QCOMPARE(overlay->tile(0)->pos(), QPoint(0, 0));
    overlay->dropLifted();
    QVERIFY(!overlay->hasLift());
    m_clock->pass(500);
    QCOMPARE(overlay->tile(0)->lift(), 0.0);
}

void ReorderOverlayMouseTest::nearestSlotOnATie()
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

void ReorderOverlayMouseTest::doublePressIsAPress()
{
    TestOverlay* overlay = make(grid(6, 3));
    sendMouse(overlay, QEvent::MouseButtonDblClick, overlay->mapToGlobal(QPoint(150, 40)));
    QVERIFY(overlay->hasLift());
    QCOMPARE(overlay->cursorSlot(), 1);
    release(overlay, QPoint(150, 40));
    QVERIFY(!overlay->hasLift());
}

void ReorderOverlayMouseTest::nothingReachesWhatLiesBelow()
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

void ReorderOverlayMouseTest::wheel_data()
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

void ReorderOverlayMouseTest::wheel()
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

void ReorderOverlayMouseTest::scrollBounds_data()
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

void ReorderOverlayMouseTest::scrollBounds()
{
    QFETCH(int, origin);
    QFETCH(QVector<int>, widths);
    TestOverlay* overlay = make(pills(widths, QPoint(origin, 0)));
    overlay->setScroll(-10000);
    QTEST(overlay->scroll(), "least");
    overlay->setScroll(10000);
    QTEST(overlay->scroll(), "most");
}

void ReorderOverlayMouseTest::ensureVisible()
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

void ReorderOverlayMouseTest::cursorScrollsOnlyIfAsked()
{
    TestOverlay* overlay = make(grid(30, 3));
    overlay->setCursorSlot(29, false);
    QCOMPARE(overlay->scroll(), 0);
    overlay->setCursorSlot(29, true); // it is there already
    QCOMPARE(overlay->scroll(), 0);
    overlay->setCursorSlot(28, true);
    QCOMPARE(overlay->scroll(), 799 - 300);
}

void ReorderOverlayMouseTest::movingByKeysScrolls()
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

void ReorderOverlayMouseTest::autoScroll_data()
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

void ReorderOverlayMouseTest::autoScroll()
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

void ReorderOverlayMouseTest::autoScrollStopsInTheMiddle()
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

void ReorderOverlayMouseTest::autoScrollStopsWithTheDrag()
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

void ReorderOverlayMouseTest::tileHoldsStillWhileContentScrolls()
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

QTEST_MAIN(ReorderOverlayMouseTest)
#include "tst_reorderoverlaymouse.moc"
