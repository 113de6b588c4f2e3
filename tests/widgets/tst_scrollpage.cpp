// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Pixels.h"
#include "ScrollPage.h"
#include "TestHome.h"

#include <QLabel>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>

class ScrollPageTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void looks();
    void groundShowsThrough();
    void scrollsUpAndDownAlone();
};

void ScrollPageTest::looks()
{
    const ScrollPage page;
    QVERIFY(page.widgetResizable());
    QCOMPARE(page.frameShape(), QFrame::NoFrame);
    QCOMPARE(page.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(page.focusPolicy(), Qt::NoFocus); // so it is no card, nor a stop of Tab
    QCOMPARE(page.styleSheet(), "QScrollArea { background: transparent; border: none; }");
    QCOMPARE(page.rows()->contentsMargins(), QMargins(16, 16, 16, 16));
    QCOMPARE(page.rows()->spacing(), 16);
    QVERIFY(page.rows()->isEmpty());
}

void ScrollPageTest::groundShowsThrough()
{
    QWidget window;
    QPalette palette;
    palette.setColor(QPalette::Window, QColor("#00ff00"));
    window.setPalette(palette);
    window.resize(200, 200);
    auto* layout = new QVBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* page = new ScrollPage;
    QPalette other;
    other.setColor(QPalette::Window, Qt::red);
    page->setPalette(other);
    page->rows()->addWidget(new QLabel("row"));
    page->rows()->addStretch();
    layout->addWidget(page);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QImage image = window.grab().toImage();
    for (const QPoint& point : {QPoint(3, 3), QPoint(100, 150), QPoint(190, 190)})
        QCOMPARE(image.pixelColor(point), QColor("#00ff00"));
}

void ScrollPageTest::scrollsUpAndDownAlone()
{
    ScrollPage page;
    auto* row = new QLabel("row");
    row->setMinimumSize(900, 2000);
    page.rows()->addWidget(row);
    page.resize(300, 300);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    QVERIFY(!page.horizontalScrollBar()->isVisible());
    QCOMPARE(page.verticalScrollBar()->maximum(), 2000 + 32 - page.viewport()->height());
}

QTEST_MAIN(ScrollPageTest)
#include "tst_scrollpage.moc"
