// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FlowLayout.h"
#include "TestHome.h"

#include <QPointer>
#include <QSpacerItem>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>

#include <memory>

namespace
{

/// A widget whose hints can be chosen.
class HintedWidget : public QWidget
{
public:
    explicit HintedWidget(const QSize& hint, const QSize& minimumHint = QSize(0, 0))
        : m_hint(hint), m_minimumHint(minimumHint)
    {}

    QSize sizeHint() const override { return m_hint; }
    QSize minimumSizeHint() const override { return m_minimumHint; }

private:
    QSize m_hint;
    QSize m_minimumHint;
};

/// A flow in a parent, filled with widgets of the given sizes.
struct Flow
{
    explicit Flow(const QList<QSize>& sizes, int hSpacing = 8, int vSpacing = 6)
        : layout(new FlowLayout(&parent, hSpacing, vSpacing))
    {
        layout->setContentsMargins(0, 0, 0, 0);
        for (const QSize& size : sizes)
            layout->addWidget(new HintedWidget(size));
    }

    QList<QRect> geometries() const
    {
        QList<QRect> all;
        for (int i = 0; i < layout->count(); ++i)
            all << layout->itemAt(i)->geometry();
        return all;
    }

    QWidget parent;
    FlowLayout* layout;
};

} // namespace

class FlowLayoutTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void wrapsAtTheRightEdge_data();
    void wrapsAtTheRightEdge();
    void rowIsAsHighAsItsTallestItem();
    void marginsAndOffsetAreRespected();
    void heightForWidth_data();
    void heightForWidth();
    void heightForWidthMovesNothing();
    void itemSizeFollowsHintsAndLimits_data();
    void itemSizeFollowsHintsAndLimits();
    void spacerItemsCount();
    void minimumSizeIsTheLargestItem();
    void emptyLayout();
    void itemsOutsideTheRangeAreNull();
    void takeAtHandsTheItemOver();
    void destructionDeletesTheItems();
    void deletedWidgetLeavesTheFlow();
    void addingToAShownParentLaysOut();
    void surroundingLayoutGivesTheHeight();
};

void FlowLayoutTest::wrapsAtTheRightEdge_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QList<QSize>>("sizes");
    QTest::addColumn<QList<QRect>>("geometries");
    const QList<QSize> three{{40, 10}, {40, 10}, {40, 10}};
    const QRect first(0, 0, 40, 10);
    QTest::newRow("all in one row")
        << 200 << three << QList<QRect>{first, {48, 0, 40, 10}, {96, 0, 40, 10}};
    QTest::newRow("exact fit") << 136 << three
                               << QList<QRect>{first, {48, 0, 40, 10}, {96, 0, 40, 10}};
    QTest::newRow("one pixel short")
        << 135 << three << QList<QRect>{first, {48, 0, 40, 10}, {0, 16, 40, 10}};
    QTest::newRow("one in each row")
        << 50 << three << QList<QRect>{first, {0, 16, 40, 10}, {0, 32, 40, 10}};
    QTest::newRow("sole item too wide")
        << 30 << QList<QSize>{{90, 10}} << QList<QRect>{{0, 0, 90, 10}};
    QTest::newRow("too wide between others")
        << 60 << QList<QSize>{{40, 10}, {90, 12}, {40, 10}}
        << QList<QRect>{first, {0, 16, 90, 12}, {0, 34, 40, 10}};
    QTest::newRow("no width") << 0 << QList<QSize>{{40, 10}, {40, 10}}
                              << QList<QRect>{first, {0, 16, 40, 10}};
}

void FlowLayoutTest::wrapsAtTheRightEdge()
{
    QFETCH(const int, width);
    QFETCH(const QList<QSize>, sizes);
    const Flow flow(sizes);
    flow.layout->setGeometry(QRect(0, 0, width, 500));
    QTEST(flow.geometries(), "geometries");
    QCOMPARE(flow.layout->geometry(), QRect(0, 0, width, 500));
}

void FlowLayoutTest::rowIsAsHighAsItsTallestItem()
{
    const Flow flow({{40, 10}, {40, 30}, {40, 20}});
    flow.layout->setGeometry(QRect(0, 0, 90, 500));
    // Items keep their own height at the top of the row, and the next row clears the tallest.
    QCOMPARE(flow.geometries(), (QList<QRect>{{0, 0, 40, 10}, {48, 0, 40, 30}, {0, 36, 40, 20}}));
}

void FlowLayoutTest::marginsAndOffsetAreRespected()
{
    const Flow flow({{40, 10}, {40, 10}, {40, 10}});
    flow.layout->setContentsMargins(5, 7, 11, 13);
    flow.layout->setGeometry(QRect(100, 200, 5 + 88 + 11, 300));
    QCOMPARE(flow.geometries(),
             (QList<QRect>{{105, 207, 40, 10}, {153, 207, 40, 10}, {105, 223, 40, 10}}));
}

void FlowLayoutTest::heightForWidth_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("one row") << 3 + 136 + 4 << 2 + 10 + 5;
    QTest::newRow("two rows") << 3 + 135 + 4 << 2 + 26 + 5;
    QTest::newRow("three rows") << 3 + 40 + 4 << 2 + 42 + 5;
    QTest::newRow("narrower than an item") << 10 << 2 + 42 + 5;
    QTest::newRow("no width") << 0 << 2 + 42 + 5;
}

void FlowLayoutTest::heightForWidth()
{
    const Flow flow({{40, 10}, {40, 10}, {40, 10}});
    flow.layout->setContentsMargins(3, 2, 4, 5);
    QVERIFY(flow.layout->hasHeightForWidth());
    QFETCH(const int, width);
    QTEST(flow.layout->heightForWidth(width), "height");
}

void FlowLayoutTest::heightForWidthMovesNothing()
{
    const Flow flow({{40, 10}, {40, 10}, {40, 10}});
    flow.layout->setGeometry(QRect(0, 0, 200, 50));
    const QList<QRect> before = flow.geometries();
    QCOMPARE(flow.layout->heightForWidth(50), 42);
    QCOMPARE(flow.geometries(), before);
    QCOMPARE(flow.layout->geometry(), QRect(0, 0, 200, 50));
}

void FlowLayoutTest::itemSizeFollowsHintsAndLimits_data()
{
    QTest::addColumn<QSize>("hint");
    QTest::addColumn<QSize>("minimumHint");
    QTest::addColumn<QSize>("minimum");
    QTest::addColumn<QSize>("maximum");
    QTest::addColumn<QSize>("size");
    const QSize none(0, 0);
    const QSize open(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    QTest::newRow("hint") << QSize(40, 10) << none << none << open << QSize(40, 10);
    QTest::newRow("larger minimum hint, by side")
        << QSize(40, 10) << QSize(30, 20) << none << open << QSize(40, 20);
    QTest::newRow("maximum") << QSize(40, 10) << none << none << QSize(25, 6) << QSize(25, 6);
    QTest::newRow("minimum") << QSize(40, 10) << none << QSize(50, 30) << open << QSize(50, 30);
    QTest::newRow("fixed") << QSize(40, 10) << QSize(40, 10) << QSize(22, 22) << QSize(22, 22)
                           << QSize(22, 22);
    QTest::newRow("maximum beats the minimum hint")
        << QSize(10, 10) << QSize(60, 60) << none << QSize(30, 30) << QSize(30, 30);
}

void FlowLayoutTest::itemSizeFollowsHintsAndLimits()
{
    QFETCH(const QSize, hint);
    QFETCH(const QSize, minimumHint);
    QFETCH(const QSize, minimum);
    QFETCH(const QSize, maximum);
    const Flow flow({});
    auto* widget = new HintedWidget(hint, minimumHint);
    widget->setMinimumSize(minimum);
    widget->setMaximumSize(maximum);
    flow.layout->addWidget(widget);
    auto* next = new HintedWidget({10, 10});
    flow.layout->addWidget(next);
    flow.layout->setGeometry(QRect(0, 0, 300, 300));
    QTEST(widget->size(), "size");
    QCOMPARE(next->x(), widget->width() + 8); // no gap where a hint was cut
}

void FlowLayoutTest::spacerItemsCount()
{
    const Flow flow({{40, 10}});
    flow.layout->addItem(new QSpacerItem(20, 30));
    flow.layout->addWidget(new HintedWidget({40, 10}));
    QCOMPARE(flow.layout->heightForWidth(300), 30);
    flow.layout->setGeometry(QRect(0, 0, 300, 300));
    QCOMPARE(flow.layout->itemAt(2)->geometry(), QRect(76, 0, 40, 10));
}

void FlowLayoutTest::minimumSizeIsTheLargestItem()
{
    const Flow flow({{40, 10}, {20, 50}, {30, 30}});
    flow.layout->setContentsMargins(1, 2, 3, 4);
    QCOMPARE(flow.layout->minimumSize(), QSize(40 + 4, 50 + 6));
    QCOMPARE(flow.layout->sizeHint(), flow.layout->minimumSize());
    QCOMPARE(flow.layout->expandingDirections(), Qt::Orientations());
}

void FlowLayoutTest::emptyLayout()
{
    const Flow flow({});
    flow.layout->setContentsMargins(1, 2, 3, 4);
    QCOMPARE(flow.layout->count(), 0);
    QCOMPARE(flow.layout->minimumSize(), QSize(4, 6));
    QCOMPARE(flow.layout->heightForWidth(100), 6);
}

void FlowLayoutTest::itemsOutsideTheRangeAreNull()
{
    const Flow flow({{40, 10}});
    QVERIFY(flow.layout->itemAt(0));
    for (const int index : {-1, 1, 1000}) {
        QVERIFY(!flow.layout->itemAt(index));
        QVERIFY(!flow.layout->takeAt(index));
    }
    QCOMPARE(flow.layout->count(), 1);
}

void FlowLayoutTest::takeAtHandsTheItemOver()
{
    const Flow flow({{40, 10}, {50, 10}});
    const std::unique_ptr<QLayoutItem> item(flow.layout->takeAt(0));
    QVERIFY(item);
    QCOMPARE(item->sizeHint(), QSize(40, 10));
    QCOMPARE(flow.layout->count(), 1);
    QCOMPARE(flow.layout->itemAt(0)->sizeHint(), QSize(50, 10));
}

void FlowLayoutTest::destructionDeletesTheItems()
{
    static int s_alive;
    s_alive = 0;
    struct CountedItem : QSpacerItem
    {
        CountedItem() : QSpacerItem(1, 1) { ++s_alive; }
        ~CountedItem() override { --s_alive; }
    };
    QWidget parent;
    auto* layout = new FlowLayout(&parent, 0, 0);
    auto* widget = new QWidget;
    layout->addItem(new CountedItem);
    layout->addWidget(widget);
    layout->addItem(new CountedItem);
    const QPointer<QWidget> guard(widget);
    delete layout;
    QCOMPARE(s_alive, 0);
    QVERIFY(guard); // a widget belongs to its parent
    QCOMPARE(guard->parentWidget(), &parent);
}

void FlowLayoutTest::deletedWidgetLeavesTheFlow()
{
    const Flow flow({{40, 10}, {50, 10}});
    delete flow.layout->itemAt(0)->widget();
    QCOMPARE(flow.layout->count(), 1);
    flow.layout->setGeometry(QRect(0, 0, 300, 300));
    QCOMPARE(flow.geometries(), QList<QRect>{QRect(0, 0, 50, 10)});
}

void FlowLayoutTest::addingToAShownParentLaysOut()
{
    Flow flow({{40, 10}});
    flow.parent.resize(200, 100);
    flow.parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&flow.parent));
    auto* late = new HintedWidget({40, 10});
    flow.layout->addWidget(late);
    QTRY_COMPARE(late->geometry(), QRect(48, 0, 40, 10));
    std::unique_ptr<QLayoutItem> first(flow.layout->takeAt(0));
    first->widget()->hide();
    QTRY_COMPARE(late->geometry(), QRect(0, 0, 40, 10));
}

void FlowLayoutTest::surroundingLayoutGivesTheHeight()
{
    QWidget window;
    auto* column = new QVBoxLayout(&window);
    column->setContentsMargins(0, 0, 0, 0);
    auto* row = new QWidget;
    auto* flow = new FlowLayout(row, 8, 6);
    flow->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 3; ++i)
        flow->addWidget(new HintedWidget({40, 10}));
    column->addWidget(row);
    column->addStretch(1);
    window.resize(100, 300);
    window.show();
    QTRY_COMPARE(row->height(), 26);
    window.resize(200, 300);
    QTRY_COMPARE(row->height(), 10);
    flow->addItem(new QSpacerItem(10, 70)); // no widget's arrival announces it
    QTRY_COMPARE(row->height(), 70);
    delete flow->takeAt(3);
    QTRY_COMPARE(row->height(), 10);
}

QTEST_MAIN(FlowLayoutTest)
#include "tst_flowlayout.moc"
