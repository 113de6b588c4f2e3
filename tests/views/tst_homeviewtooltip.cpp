// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HomePageFixture.h"
#include "PreviewTooltip.h"

#include <QScrollBar>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>

/// The tooltip of the home page: which row it is for, when it comes and what sends it away.
class HomeViewTooltipTest : public HomePageFixture
{
    Q_OBJECT

private slots:
    void pointerMovesTheSelection();
    void selectionStartsTheDelay();
    void tooltipShowsTheItem();
    void tooltipStaysAway_data();
    void tooltipStaysAway();
    void scrollingCancelsTheTooltip();
    void goesWithWhatItBelongsTo_data();
    void goesWithWhatItBelongsTo();
    void wheelSendsItAway();

private:
    PreviewTooltip* tooltip() const { return home()->findChild<PreviewTooltip*>(); }

    QTimer* hoverDelay() const
    {
        return home()->findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
    }
};

void HomeViewTooltipTest::pointerMovesTheSelection()
{
    open();
    QTRY_COMPARE(list()->gridSize(), QSize(176, 132));
    const auto middle = [this](int row) {
        return list()->visualItemRect(list()->item(row)).center();
    };
    QTest::mouseMove(list()->viewport(), middle(2));
    QTRY_COMPARE(list()->currentRow(), 2);
    QTest::mouseMove(list()->viewport(), middle(1));
    QTRY_COMPARE(list()->currentRow(), 1);
    QCOMPARE(previewPage(), int(HomeView::PagePreviewDetail));
}

void HomeViewTooltipTest::selectionStartsTheDelay()
{
    open();
    QVERIFY(!hoverDelay()->isActive()); // which building the rows doesn't
    QVERIFY(hoverDelay()->isSingleShot());
    QCOMPARE(hoverDelay()->interval(), 900);
    list()->setCurrentRow(1);
    QVERIFY(hoverDelay()->isActive());
    home()->cancelHoverPreview();
    QVERIFY(!hoverDelay()->isActive());
    list()->setCurrentRow(2);
    QVERIFY(hoverDelay()->isActive());
    home()->refreshUI(-1, false);
    QVERIFY(!hoverDelay()->isActive());
    // A tooltip that is up goes with the row that it belongs to.
    home()->showHoverPreview();
    QVERIFY(tooltip()->isVisible());
    list()->setCurrentRow(1);
    QVERIFY(tooltip()->isHidden());
    hoverDelay()->start(0);
    QTRY_VERIFY(tooltip()->isVisible());
}

void HomeViewTooltipTest::tooltipShowsTheItem()
{
    open();
    QTRY_COMPARE(list()->gridSize(), QSize(176, 132));
    list()->setCurrentRow(1);
    home()->showHoverPreview();
    QVERIFY(tooltip()->isVisible());
    const auto labels = tooltip()->findChildren<QLabel*>();
    QVERIFY(std::any_of(labels.begin(), labels.end(),
                        [](const QLabel* label) { return label->text() == "Two text"; }));
    // Above and to the right of the tile.
    const QRect tile(list()->viewport()->mapToGlobal(QPoint(176 + 6, 6)), QSize(164, 120));
    QCOMPARE(tooltip()->x(), tile.right() + 8);
    QCOMPARE(tooltip()->y(), tile.top() - 8 - tooltip()->height());
    QCOMPARE(focused(), strip());
}

void HomeViewTooltipTest::tooltipStaysAway_data()
{
    QTest::addColumn<QString>("reason");
    for (const char* reason : {"editor", "actions", "no rows", "no row", "no item",
                               "items are put into order", "sections are put into order"})
        QTest::newRow(reason) << reason;
}

void HomeViewTooltipTest::tooltipStaysAway()
{
    QFETCH(QString, reason);
    open();
    goToRow(1);
    home()->showHoverPreview();
    QVERIFY(tooltip()->isVisible());
    if (reason == "editor")
        m_window->openItemEditor("a1");
    else if (reason == "actions")
        m_window->openItemDeleteConfirm("a1");
    else if (reason == "no rows")
        searchField()->setText("zzz");
    else if (reason == "no row")
        list()->setCurrentRow(-1);
    else if (reason == "items are put into order")
        home()->enterReorderMode();
    else if (reason == "sections are put into order")
        home()->enterSectionReorderMode();
    else
        list()->setCurrentItem(new QListWidgetItem("foreign", list()));
    home()->showHoverPreview();
    QVERIFY(tooltip()->isHidden());
}

void HomeViewTooltipTest::scrollingCancelsTheTooltip()
{
    LauncherData document = standardDocument();
    for (int i = 0; i < 60; ++i)
        document.sectionElements["Alpha"].append(snippet(QString::number(i), "Item"));
    open(document);
    QTRY_VERIFY(list()->verticalScrollBar()->maximum() > 0);
    list()->setCurrentRow(1);
    home()->showHoverPreview();
    QVERIFY(tooltip()->isVisible());
    hoverDelay()->start();
    list()->verticalScrollBar()->setValue(20);
    QVERIFY(tooltip()->isHidden());
    QVERIFY(!hoverDelay()->isActive());
    // So does a change of what the card shows.
    home()->showHoverPreview();
    QVERIFY(tooltip()->isVisible());
    m_window->openItemEditor("a1");
    QVERIFY(tooltip()->isHidden());
}

void HomeViewTooltipTest::goesWithWhatItBelongsTo_data()
{
    QTest::addColumn<QString>("whose");
    QTest::addColumn<int>("event");
    QTest::newRow("the pointer leaves the rows") << "rows" << int(QEvent::Leave);
    QTest::newRow("the keyboard leaves the list") << "list" << int(QEvent::FocusOut);
    QTest::newRow("the pointer leaves the window") << "window" << int(QEvent::Leave);
}

void HomeViewTooltipTest::goesWithWhatItBelongsTo()
{
    QFETCH(QString, whose);
    QFETCH(int, event);
    open();
    goToRow(1);
    home()->showHoverPreview();
    QVERIFY(tooltip()->isVisible());
    hoverDelay()->start();
    QWidget* watched = m_window.get();
    if (whose == "rows")
        watched = list()->viewport();
    else if (whose == "list")
        watched = list();
    QFocusEvent focusOut(QEvent::FocusOut, Qt::OtherFocusReason);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(watched, event == QEvent::Leave ? &leave : &focusOut);
    QVERIFY(tooltip()->isHidden());
    QVERIFY(!hoverDelay()->isActive());
}

void HomeViewTooltipTest::wheelSendsItAway()
{
    open(); // with nothing that could be scrolled
    goToRow(1);
    home()->showHoverPreview();
    QVERIFY(tooltip()->isVisible());
    const QPoint place(10, 10);
    QWheelEvent wheel(place, list()->viewport()->mapToGlobal(place), QPoint(), QPoint(0, -120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(list()->viewport(), &wheel);
    QVERIFY(tooltip()->isHidden());
}

QTEST_MAIN(HomeViewTooltipTest)
#include "tst_homeviewtooltip.moc"
