// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "GlyphWidgets.h"
#include "IconGrid.h"
#include "IconHelper.h"
#include "Localization.h"
#include "TestHome.h"
#include "Theme.h"

#include <QDialog>
#include <QGridLayout>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

namespace
{

constexpr int kColumns = 3;
// Names for places outside the grid.
constexpr int kAbove = 100;
constexpr int kBelow = 101;

/// A dialog that counts the key events it filters, with a grid of seven icons in three columns and
/// a widget above and below it.
class GridDialog : public QDialog
{
public:
    GridDialog()
    {
        auto* column = new QVBoxLayout(this);
        auto* grid = new QGridLayout;
        column->addWidget(above);
        column->addLayout(grid);
        column->addWidget(below);
        icons = IconGrid::build(grid, IconHelper::pickableGlyphs().first(7), kColumns, this);
        show();
    }

    QWidget* at(int place)
    {
        return place == kAbove ? above : place == kBelow ? below : icons.at(place);
    }

    QPushButton* above = new QPushButton;
    QPushButton* below = new QPushButton;
    QList<GlyphButton*> icons;
    int filteredKeys = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        filteredKeys += event->type() == QEvent::KeyPress ? 1 : 0;
        return QDialog::eventFilter(watched, event);
    }
};

} // namespace

class IconGridTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void heights();
    void cells();
    void keysPassTheDialog();
    void oneIsSelected();
    void noneIsSelected();
    void indices();
    void focusStaysInTheGrid_data();
    void focusStaysInTheGrid();
    void focusOfAGlyph();
    void emptyGrid();
    void arrows_data();
    void arrows();
    void nothingAbove();
    void otherKeys();
};

void IconGridTest::init()
{
    Theme::forceTheme = 1;
    Tr::currentLang = Lang::En;
}

void IconGridTest::heights()
{
    QCOMPARE(IconGrid::heightOf(1), 36);
    QCOMPARE(IconGrid::heightOf(2), 88);
    QCOMPARE(IconGrid::heightOf(3), 140);
}

void IconGridTest::cells()
{
    GridDialog dialog;
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const QList<uint> glyphs = IconHelper::pickableGlyphs().first(7);
    QCOMPARE(dialog.icons.size(), 7);
    for (int i = 0; i < 7; ++i) {
        const GlyphButton* icon = dialog.icons.at(i);
        QCOMPARE(icon->property("glyph").toUInt(), glyphs.at(i));
        QCOMPARE(IconGrid::glyphOf(icon), glyphs.at(i));
        QCOMPARE(icon->size(), QSize(36, 36));
        QCOMPARE(icon->accessibleName(), QStringLiteral("Icon: %1").arg(i + 1));
        QCOMPARE(icon->focusPolicy(), Qt::StrongFocus);
        QCOMPARE(icon->y(), dialog.icons.first()->y() + i / kColumns * (36 + 16));
        QCOMPARE(icon->x(), dialog.icons.at(i % kColumns)->x());
    }
}

void IconGridTest::keysPassTheDialog()
{
    GridDialog dialog;
    QTest::keyClick(dialog.icons.at(2), Qt::Key_F1);
    QCOMPARE(dialog.filteredKeys, 1);
}

void IconGridTest::oneIsSelected()
{
    const GridDialog dialog;
    IconGrid::applyStyle(dialog.icons, IconGrid::glyphOf(dialog.icons.at(4)));
    for (int i = 0; i < 7; ++i)
        QCOMPARE(dialog.icons.at(i)->styleSheet(), Theme::iconChoiceStyle(Theme::colors(), i == 4));
}

void IconGridTest::noneIsSelected()
{
    const GridDialog dialog;
    IconGrid::applyStyle(dialog.icons, 0);
    for (const GlyphButton* icon : dialog.icons)
        QCOMPARE(icon->styleSheet(), Theme::iconChoiceStyle(Theme::colors(), false));
}

void IconGridTest::indices()
{
    const GridDialog dialog;
    QCOMPARE(IconGrid::indexOf(dialog.icons, dialog.icons.at(5)), 5);
    QCOMPARE(IconGrid::indexOf(dialog.icons, dialog.above), -1);
    QCOMPARE(IconGrid::indexOf(dialog.icons, nullptr), -1);
}

void IconGridTest::focusStaysInTheGrid_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("focused");
    QTest::newRow("in the middle") << 3 << 3;
    QTest::newRow("before the first") << -1 << 0;
    QTest::newRow("behind the last") << 7 << 6;
}

void IconGridTest::focusStaysInTheGrid()
{
    QFETCH(int, index);
    QFETCH(int, focused);
    const GridDialog dialog;
    IconGrid::focusAt(dialog.icons, index);
    QCOMPARE(dialog.focusWidget(), dialog.icons.at(focused));
}

void IconGridTest::focusOfAGlyph()
{
    const GridDialog dialog;
    IconGrid::focusGlyph(dialog.icons, IconGrid::glyphOf(dialog.icons.at(6)));
    QCOMPARE(dialog.focusWidget(), dialog.icons.at(6));
    IconGrid::focusGlyph(dialog.icons, 0x41);
    QCOMPARE(dialog.focusWidget(), dialog.icons.first());
}

void IconGridTest::emptyGrid()
{
    GridDialog dialog;
    dialog.above->setFocus();
    IconGrid::focusAt({}, 0);
    IconGrid::focusGlyph({}, 0xE2C7);
    QCOMPARE(dialog.focusWidget(), dialog.above);
}

void IconGridTest::arrows_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("to");
    QTest::newRow("Left") << 4 << int(Qt::Key_Left) << 3;
    QTest::newRow("Left on the first") << 0 << int(Qt::Key_Left) << 0;
    QTest::newRow("Right") << 2 << int(Qt::Key_Right) << 3;
    QTest::newRow("Right on the last") << 6 << int(Qt::Key_Right) << 6;
    QTest::newRow("Up") << 4 << int(Qt::Key_Up) << 1;
    QTest::newRow("Up from the first row") << 2 << int(Qt::Key_Up) << kAbove;
    QTest::newRow("Down") << 1 << int(Qt::Key_Down) << 4;
    QTest::newRow("Down from the last row") << 6 << int(Qt::Key_Down) << kBelow;
    QTest::newRow("Down into a hole") << 5 << int(Qt::Key_Down) << kBelow;
}

void IconGridTest::arrows()
{
    QFETCH(int, from);
    QFETCH(int, key);
    QFETCH(int, to);
    GridDialog dialog;
    dialog.at(from)->setFocus();
    QVERIFY(IconGrid::moveFocus(dialog.icons, kColumns, from, key, dialog.above, dialog.below));
    QCOMPARE(dialog.focusWidget(), dialog.at(to));
}

void IconGridTest::nothingAbove()
{
    const GridDialog dialog;
    dialog.icons.at(1)->setFocus();
    QVERIFY(IconGrid::moveFocus(dialog.icons, kColumns, 1, Qt::Key_Up, nullptr, dialog.below));
    QCOMPARE(dialog.focusWidget(), dialog.icons.at(1));
}

void IconGridTest::otherKeys()
{
    const GridDialog dialog;
    dialog.icons.at(1)->setFocus();
    for (const int key : {int(Qt::Key_Home), int(Qt::Key_Tab), int(Qt::Key_Return)})
        QVERIFY(!IconGrid::moveFocus(dialog.icons, kColumns, 1, key, dialog.above, dialog.below));
    QCOMPARE(dialog.focusWidget(), dialog.icons.at(1));
}

QTEST_MAIN(IconGridTest)
#include "tst_icongrid.moc"
