// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "EventCounter.h"
#include "SpotlightTest.h"
#include "TestScreens.h"
#include "UiDriver.h"

#include <QGraphicsDropShadowEffect>
#include <QTest>

class SpotlightGeometryTest : public QObject, protected SpotlightTest
{
    Q_OBJECT

public:
    static void initMain()
    {
        TestHome::install();
        TestScreens::install();
    }

private slots:
    void init();
    void cleanup();

    void heights_data();
    void heights();
    void stripHeightFollowsTheChips();
    void panelHasTwoHeightsOnly();
    void typingDoesNotResize();
    void shadowFollowsTheShell();

    void showPlacesTheWindow();

    void dragMovesTheWindow_data();
    void dragMovesTheWindow();
    void dragNeedsTheLeftButton();
    void dragEndsWithTheRelease();
    void dragIsForgottenAtTheNextShow();
    void fieldDoesNotDrag();
    void draggedWindowGrowsWhereItIs();
    void anchoredY_data();
    void anchoredY();
    void panelLiftsTheWindowAtTheBottom();
    void chipsLiftTheWindowAtTheBottom();
};

void SpotlightGeometryTest::init()
{
    makeSpotlight();
    waitForIndexes();
}

void SpotlightGeometryTest::cleanup()
{
    f.reset();
}

void SpotlightGeometryTest::heights_data()
{
    QTest::addColumn<int>("strip");
    QTest::addColumn<int>("panel");
    QTest::addColumn<int>("expected");
    QTest::newRow("empty") << 80 << 0 << 144;
    QTest::newRow("with results") << 80 << 328 << 472;
    QTest::newRow("with chips") << 126 << 0 << 190;
    QTest::newRow("with both") << 126 << 328 << 518;
    QTest::newRow("negative panel") << 80 << -1 << 144;
    QTest::newRow("very negative panel") << 80 << -1000 << 144;
}

void SpotlightGeometryTest::heights()
{
    QFETCH(int, strip);
    QFETCH(int, panel);
    QTEST(f->window.windowHeightFor(strip, panel), "expected");
}

void SpotlightGeometryTest::stripHeightFollowsTheChips()
{
    show();
    QCOMPARE(f->window.chipRowHeight(), 0);
    QCOMPARE(f->window.searchStripHeight(), 80);
    QCOMPARE(f->window.emptyStateHeight(), kEmptyHeight);
    f->window.setScopeKeys({"File"});
    QCOMPARE(f->window.chipRowHeight(), kOneChipRow);
    QCOMPARE(f->window.searchStripHeight(), 98 + kOneChipRow);
    QCOMPARE(f->window.emptyStateHeight(), kEmptyHeight + 18 + kOneChipRow);
    QCOMPARE(f->pill()->height(), 98 + kOneChipRow);
    QCOMPARE(f->window.height(), kEmptyHeight + 18 + kOneChipRow);
    f->window.setScopeKeys({"Application", "URL", "File", "Folder", "Snippet", "Bulk"});
    const int twoRows = 2 * kOneChipRow + 8;
    QCOMPARE(f->window.chipRowHeight(), twoRows);
    QCOMPARE(f->pill()->height(), 98 + twoRows);
    f->window.setScopeKeys({});
    QCOMPARE(f->pill()->height(), 80);
    QCOMPARE(f->window.height(), kEmptyHeight);
    QVERIFY(f->chipRow()->isHidden());
}

void SpotlightGeometryTest::panelHasTwoHeightsOnly()
{
    for (const int rows : {-5, 0})
        QCOMPARE(f->window.panelHeightFor(rows), 0);
    for (const int rows : {1, 2, 5, 6, 100000})
        QCOMPARE(f->window.panelHeightFor(rows), 328);
    f->setItems({makeItem("only one", "Snippet")});
    show();
    f->window.setScopeKeys({"Snippet"});
    f->field()->setText(QStringLiteral("only"));
    QCOMPARE(f->list()->count(), 1);
    QVERIFY(f->panel()->isVisible());
    QCOMPARE(f->panel()->height(), 328);
    QCOMPARE(f->shell()->height(), 98 + kOneChipRow + 328);
    f->field()->setText(QStringLiteral("only nothing"));
    QVERIFY(f->panel()->isHidden());
    QCOMPARE(f->shell()->height(), 98 + kOneChipRow);
}

void SpotlightGeometryTest::typingDoesNotResize()
{
    fill();
    QTRY_COMPARE(f->window.height(), kOpenHeight + 18 + kOneChipRow);
    QCoreApplication::processEvents();
    const EventCounter windowSizes(&f->window, QEvent::Resize);
    const EventCounter panelSizes(f->panel(), QEvent::Resize);
    const EventCounter styles(f->pill(), QEvent::StyleChange);
    for (const char* text : {"note ", "note t", "note tw", "note two", "o", "n"}) {
        f->field()->setText(QString::fromLatin1(text));
        QVERIFY(f->list()->count() > 0);
        QCoreApplication::processEvents();
    }
    QCOMPARE(windowSizes.count, 0);
    QCOMPARE(panelSizes.count, 0);
    QCOMPARE(styles.count, 0);
    f->field()->clear();
    QCOMPARE(windowSizes.count, 1);
}

void SpotlightGeometryTest::shadowFollowsTheShell()
{
    const auto* effect =
        qobject_cast<QGraphicsDropShadowEffect*>(f->shadowLayer()->graphicsEffect());
    QVERIFY(effect);
    QCOMPARE(effect->blurRadius(), 35.0);
    QCOMPARE(effect->offset(), QPointF(0, 10));
    QCOMPARE(f->shadowLayer()->frameShape(), QFrame::NoFrame);
    QVERIFY(f->shadowLayer()->testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(f->shadowLayer()->parentWidget(), &f->window);
    QCOMPARE(f->window.layout()->indexOf(f->shadowLayer()), -1);
    QVERIFY(f->window.children().indexOf(f->shadowLayer()) <
            f->window.children().indexOf(f->shell())); // painted below it
    fill();
    QTRY_COMPARE(f->shell()->geometry(), QRect(32, 32, 520, 98 + kOneChipRow + 328));
    QCOMPARE(f->shadowLayer()->geometry(), f->shell()->geometry());
    f->window.setScopeKeys({});
    f->field()->clear();
    QTRY_COMPARE(f->shell()->geometry(), QRect(32, 32, 520, 80));
    QCOMPARE(f->shadowLayer()->geometry(), f->shell()->geometry());
}

void SpotlightGeometryTest::showPlacesTheWindow()
{
    show();
    const QRect area = screenArea();
    QCOMPARE(f->window.geometry(),
             QRect((area.width() - 584) / 2, area.height() / 4, 584, kEmptyHeight));
}

void SpotlightGeometryTest::dragMovesTheWindow_data()
{
    QTest::addColumn<QString>("where");
    QTest::newRow("shell") << "spotlightShell";
    QTest::newRow("strip") << "spotlightSearchPill";
    QTest::newRow("box") << "spotlightSearchBox";
    QTest::newRow("margin") << QString();
}

void SpotlightGeometryTest::dragMovesTheWindow()
{
    QFETCH(QString, where);
    show();
    QWidget* grabbed = where.isEmpty() ? &f->window : f->window.findChild<QWidget*>(where);
    QVERIFY(grabbed);
    const QPoint start = f->window.pos();
    const QPoint grab = start + QPoint(300, 36);
    sendMouse(grabbed, QEvent::MouseButtonPress, grab);
    QCOMPARE(f->window.pos(), start);
    for (const QPoint& way : {QPoint(1, 0), QPoint(-40, 25), QPoint(-300, -500)}) {
        sendMouse(grabbed, QEvent::MouseMove, grab + way);
        QCOMPARE(f->window.pos(), start + way);
    }
    sendMouse(grabbed, QEvent::MouseButtonRelease, grab);
}

void SpotlightGeometryTest::dragNeedsTheLeftButton()
{
    show();
    const QPoint start = f->window.pos();
    const QPoint grab = start + QPoint(300, 36);
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        sendMouse(f->pill(), QEvent::MouseButtonPress, grab, button);
        sendMouse(f->pill(), QEvent::MouseMove, grab + QPoint(50, 50), button);
        sendMouse(f->pill(), QEvent::MouseButtonRelease, grab + QPoint(50, 50), button);
        QCOMPARE(f->window.pos(), start);
    }
}

void SpotlightGeometryTest::dragEndsWithTheRelease()
{
    show();
    const QPoint start = f->window.pos();
    const QPoint grab = start + QPoint(300, 36);
    for (const Qt::MouseButton released : {Qt::LeftButton, Qt::RightButton}) {
        sendMouse(f->pill(), QEvent::MouseButtonPress, grab);
        sendMouse(f->pill(), QEvent::MouseButtonRelease, grab, released); // of any button
        sendMouse(f->pill(), QEvent::MouseMove, grab + QPoint(50, 50));
        QCOMPARE(f->window.pos(), start);
    }
}

void SpotlightGeometryTest::dragIsForgottenAtTheNextShow()
{
    show();
    const QPoint start = f->window.pos();
    const QPoint grab = start + QPoint(300, 36);
    sendMouse(f->pill(), QEvent::MouseButtonPress, grab);
    sendMouse(f->pill(), QEvent::MouseMove, grab + QPoint(50, 50));
    QCOMPARE(f->window.pos(), start + QPoint(50, 50));
    // The button is released over whatever is there then.
    f->window.fadeOutAndHide();
    QTRY_VERIFY(f->window.isHidden());
    show();
    QCOMPARE(f->window.pos(), start);
    sendMouse(f->pill(), QEvent::MouseMove, grab + QPoint(70, -30));
    QCOMPARE(f->window.pos(), start);
}

void SpotlightGeometryTest::fieldDoesNotDrag()
{
    show();
    const QPoint start = f->window.pos();
    const QPoint grab = f->field()->mapToGlobal(f->field()->rect().center());
    sendMouse(f->field(), QEvent::MouseButtonPress, grab);
    sendMouse(f->field(), QEvent::MouseMove, grab + QPoint(50, 50));
    sendMouse(f->field(), QEvent::MouseButtonRelease, grab + QPoint(50, 50));
    QCOMPARE(f->window.pos(), start);
}

void SpotlightGeometryTest::draggedWindowGrowsWhereItIs()
{
    show();
    dragTo(QPoint(11, 50));
    f->setItems({makeItem("note", "Snippet")});
    QTest::keyClicks(f->field(), QStringLiteral("note"));
    QCOMPARE(f->window.geometry(), QRect(11, 50, 584, kOpenHeight));
    f->window.setScopeKeys({"Snippet"});
    QCOMPARE(f->window.geometry(), QRect(11, 50, 584, kOpenHeight + 18 + kOneChipRow));
    f->field()->clear();
    QCOMPARE(f->window.geometry(), QRect(11, 50, 584, kEmptyHeight + 18 + kOneChipRow));
}

void SpotlightGeometryTest::anchoredY_data()
{
    QTest::addColumn<int>("anchor");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("expected");
    // Where the card of an open window stands exactly on the lower edge of the screen.
    const int lowest = screenArea().bottom() + 1 - kOpenHeight + 32;
    const int highest = screenArea().top() - 32;
    QTest::newRow("fits") << 100 << kOpenHeight << 100;
    QTest::newRow("fits exactly") << lowest << kOpenHeight << lowest;
    QTest::newRow("one pixel too low") << lowest + 1 << kOpenHeight << lowest;
    QTest::newRow("far too low") << lowest + 300 << kOpenHeight << lowest;
    QTest::newRow("low, but small") << lowest + 300 << kEmptyHeight << lowest + 300;
    QTest::newRow("margin above the screen") << highest << kOpenHeight << highest;
    QTest::newRow("card above the screen") << highest - 1 << kOpenHeight << highest;
    QTest::newRow("higher than the screen") << 100 << 5000 << highest;
}

void SpotlightGeometryTest::anchoredY()
{
    QFETCH(int, anchor);
    QFETCH(int, height);
    show();
    dragTo(QPoint(100, anchor));
    QTEST(f->window.anchoredY(height), "expected");
    QCOMPARE(f->window.y(), anchor); // asking moves nothing
}

void SpotlightGeometryTest::panelLiftsTheWindowAtTheBottom()
{
    f->setItems({makeItem("note", "Snippet")});
    show();
    const int bottom = screenArea().bottom() + 1;
    const int y = bottom - kEmptyHeight + 32; // the empty card just fits
    dragTo(QPoint(100, y));
    QTest::keyClicks(f->field(), QStringLiteral("n"));
    QCOMPARE(f->window.geometry(), QRect(100, y - 328, 584, kOpenHeight));
    QCOMPARE(f->shell()->mapToGlobal(QPoint(0, f->shell()->height())).y(), bottom);
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    QCOMPARE(f->window.geometry(), QRect(100, y, 584, kEmptyHeight));
}

void SpotlightGeometryTest::chipsLiftTheWindowAtTheBottom()
{
    f->setItems({makeItem("note", "File")});
    show();
    const int y = screenArea().bottom() + 1 - kEmptyHeight + 32;
    dragTo(QPoint(100, y));
    f->window.setScopeKeys({"File"});
    const int oneRow = 18 + kOneChipRow;
    QCOMPARE(f->window.geometry(), QRect(100, y - oneRow, 584, kEmptyHeight + oneRow));
    f->window.setScopeKeys({"Application", "URL", "File", "Folder", "Snippet", "Bulk"});
    const int twoRows = oneRow + 8 + kOneChipRow;
    QCOMPARE(f->window.geometry(), QRect(100, y - twoRows, 584, kEmptyHeight + twoRows));
    QTest::keyClicks(f->field(), QStringLiteral("n"));
    QCOMPARE(f->window.y(), y - twoRows - 328);
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    f->window.setScopeKeys({});
    QCOMPARE(f->window.geometry(), QRect(100, y, 584, kEmptyHeight));
}

QTEST_MAIN(SpotlightGeometryTest)
#include "tst_spotlightgeometry.moc"
