// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"
#include "ConfirmDot.h"
#include "Pixels.h"
#include "Settings.h"
#include "SpotlightTest.h"
#include "TestScreens.h"
#include "UiDriver.h"

#include <QApplication>
#include <QMenu>
#include <QSettings>
#include <QTest>

namespace
{

const QString kDefaultScope = QStringLiteral("Spotlight/DefaultScope");

/// The dot of the menu that is open.
ConfirmDot* confirmDot()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* dot = qobject_cast<ConfirmDot*>(widget))
            return dot;
    }
    return nullptr;
}

void clickDot(QMenu* menu)
{
    clickAt(menu, confirmDot()->geometry().center());
}

QRect rowOf(const QMenu* menu, int index)
{
    return menu->actionGeometry(menu->actions().at(index));
}

void clickRow(QMenu* menu, int index)
{
    clickAt(menu, menu->mapToGlobal(rowOf(menu, index).center()));
}

} // namespace

class SpotlightScopesTest : public QObject, protected SpotlightTest
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

    void chipRowLayout();

    void menuKeys_data();
    void menuKeys();
    void backspaceRemovesTheLastScope();
    void backspaceEditsTextFirst();

    void scopeDefs_data();
    void scopeDefs();
    void defaultScopes_data();
    void defaultScopes();
    void defaultScopesAreWrittenAsGiven();
    void chipsStandInFixedOrder();
    void chipLook();
    void clickedChipRemovesItsScope();
    void unknownScopeHasNoChip();
    void equalScopesChangeNothing();
    void scopesRebuildTheResults();
    void scopesLastUntilTheNextShow();

    void menuHoldsTheScopes();
    void menuOpensBelowItsButton();
    void menuChecksTheActiveScopes();
    void menuEscapeChangesNothing_data();
    void menuEscapeChangesNothing();
    void menuDotCommitsForThisShow();
    void menuTogglesTwiceIsNothing();
    void menuOrderIsThatOfToggling();
    void menuRowsStayOpen_data();
    void menuRowsStayOpen();
    void menuDotStandsBesideTheRow();
    void menuDotFlipsAtTheScreenEdge_data();
    void menuDotFlipsAtTheScreenEdge();
    void menuDotHidesUntilToggled();
    void menuBlocksHiding();
    void hotkeyWhileTheMenuIsOpen();
};

void SpotlightScopesTest::init()
{
    makeSpotlight();
    waitForIndexes();
}

void SpotlightScopesTest::cleanup()
{
    f.reset();
}

void SpotlightScopesTest::chipRowLayout()
{
    auto* layout = dynamic_cast<FlowLayout*>(f->chipRow()->layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins(8, 0, 8, 0));
    QVERIFY(f->chipRow()->isHidden());
    show();
    f->window.setScopeKeys({"Application", "URL", "File", "Folder", "Snippet", "Bulk"});
    QTRY_VERIFY(f->chips().constLast()->isVisible());
    const QVector<GlyphButton*> chips = f->chips();
    QCOMPARE(f->chipRow()->geometry(), QRect(18, 80, 484, layout->heightForWidth(484)));
    QCOMPARE(chips.at(0)->pos(), QPoint(8, 0));
    QCOMPARE(chips.at(1)->x(), chips.at(0)->geometry().right() + 1 + 8);
    const int lastRow = chips.constLast()->y();
    QVERIFY(lastRow > 0); // six chips need two rows
    QCOMPARE(lastRow % (kOneChipRow + 8), 0);
    QCOMPARE(f->chipRow()->height(), lastRow + kOneChipRow);
}

void SpotlightScopesTest::menuKeys_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<bool>("opens");
    const Qt::KeyboardModifiers none = Qt::NoModifier;
    QTest::newRow("F4") << Qt::Key_F4 << none << true;
    QTest::newRow("Ctrl+F4") << Qt::Key_F4 << Qt::KeyboardModifiers(Qt::ControlModifier) << true;
    QTest::newRow("Alt+Down") << Qt::Key_Down << Qt::KeyboardModifiers(Qt::AltModifier) << true;
    QTest::newRow("Ctrl+Alt+Down")
        << Qt::Key_Down << (Qt::AltModifier | Qt::ControlModifier) << true;
    QTest::newRow("Down") << Qt::Key_Down << none << false;
    QTest::newRow("Shift+Down") << Qt::Key_Down << Qt::KeyboardModifiers(Qt::ShiftModifier)
                                << false;
    QTest::newRow("Alt+Up") << Qt::Key_Up << Qt::KeyboardModifiers(Qt::AltModifier) << false;
    QTest::newRow("F3") << Qt::Key_F3 << none << false;
}

void SpotlightScopesTest::menuKeys()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(bool, opens);
    fill();
    f->list()->setCurrentRow(2);
    const MenuDriver driver([](QMenu* menu) { QTest::keyClick(menu, Qt::Key_Escape); });
    QTest::keyClick(f->field(), key, modifiers);
    QCOMPARE(driver.hasClosed(), opens);
    const bool isPlainDown = key == Qt::Key_Down && !opens;
    const bool isUp = key == Qt::Key_Up;
    QCOMPARE(f->list()->currentRow(), isPlainDown ? 4 : isUp ? 1 : 2);
    QCOMPARE(f->field()->text(), QStringLiteral("note"));
    QCOMPARE(f->window.focusWidget(), f->field());
}

void SpotlightScopesTest::backspaceRemovesTheLastScope()
{
    show();
    f->window.setScopeKeys({"Snippet", "File", "Application"});
    QCOMPARE(f->chipTexts(), QStringList({"Application", "File", "Snippet"}));
    QTest::keyClick(f->field(), Qt::Key_Backspace); // the last one that was chosen
    QCOMPARE(f->chipTexts(), QStringList({"File", "Snippet"}));
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    QCOMPARE(f->chipTexts(), QStringList({"Snippet"}));
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    QCOMPARE(f->chipTexts(), QStringList());
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    QVERIFY(f->chips().isEmpty());
    QVERIFY(f->window.isVisible());
    QVERIFY(!f->fade());
}

void SpotlightScopesTest::backspaceEditsTextFirst()
{
    show();
    f->window.setScopeKeys({"File"});
    QTest::keyClicks(f->field(), QStringLiteral("ab"));
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    QCOMPARE(f->field()->text(), QStringLiteral("a"));
    QCOMPARE(f->chips().size(), 1);
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    QCOMPARE(f->field()->text(), QString());
    QCOMPARE(f->chips().size(), 1); // the press that empties the field does no more
    QTest::keyClick(f->field(), Qt::Key_Delete);
    QCOMPARE(f->chips().size(), 1);
    QTest::keyClicks(f->field(), QStringLiteral(" "));
    f->field()->home(false);
    QTest::keyClick(f->field(), Qt::Key_Backspace); // at the start, but not of an empty text
    QCOMPARE(f->chips().size(), 1);
}

void SpotlightScopesTest::scopeDefs_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("key");
    QTest::addColumn<uint>("ownGlyph");
    QTest::addColumn<uint>("glyph");
    QTest::addColumn<QString>("label");
    QTest::newRow("all") << 0 << "" << 0xE5C3u << 0xE5C3u << "All";
    QTest::newRow("Application") << 1 << "Application" << 0u << 0xE30Cu << "Application";
    QTest::newRow("URL") << 2 << "URL" << 0u << 0xE250u << "Web Bookmark";
    QTest::newRow("File") << 3 << "File" << 0u << 0xE873u << "File";
    QTest::newRow("Folder") << 4 << "Folder" << 0xE2C7u << 0xE2C7u << "Folders";
    QTest::newRow("Snippet") << 5 << "Snippet" << 0u << 0xF1C6u << "Snippet";
    QTest::newRow("Bulk") << 6 << "Bulk" << 0u << 0xEBBDu << "Bulk Action";
}

void SpotlightScopesTest::scopeDefs()
{
    QFETCH(int, index);
    QCOMPARE(SpotlightWindow::scopeDefs().size(), 7);
    const SpotlightWindow::ScopeDef& def = SpotlightWindow::scopeDefs().at(index);
    QTEST(QString::fromLatin1(def.typeKey), "key");
    QTEST(def.glyph, "ownGlyph");
    QTEST(SpotlightWindow::scopeGlyph(def), "glyph");
    QTEST(SpotlightWindow::scopeLabel(def), "label");
}

void SpotlightScopesTest::defaultScopes_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QStringList>("keys");
    const QStringList all{"Application", "URL", "File", "Folder", "Snippet", "Bulk"};
    QTest::newRow("absent") << QVariant() << QStringList();
    QTest::newRow("empty list") << QVariant(QStringList()) << QStringList();
    QTest::newRow("one") << QVariant(QStringList{"Snippet"}) << QStringList{"Snippet"};
    QTest::newRow("one as plain text") << QVariant("Snippet") << QStringList{"Snippet"};
    QTest::newRow("in another order")
        << QVariant(QStringList{"File", "Application"}) << QStringList{"Application", "File"};
    QTest::newRow("unknown words")
        << QVariant(QStringList{"Teapot", "file", " File"}) << QStringList();
    QTest::newRow("known among unknown")
        << QVariant(QStringList{"x", "Bulk", "", "URL"}) << QStringList{"URL", "Bulk"};
    QTest::newRow("twice") << QVariant(QStringList{"URL", "URL"}) << QStringList{"URL"};
    QTest::newRow("empty key") << QVariant(QStringList{""}) << QStringList();
    QTest::newRow("number") << QVariant(7) << QStringList();
    QTest::newRow("all of them") << QVariant(QStringList{"Bulk", "Snippet", "Folder", "File", "URL",
                                                         "Application"})
                                 << all;
}

void SpotlightScopesTest::defaultScopes()
{
    QFETCH(QVariant, stored);
    QFETCH(QStringList, keys);
    if (stored.isValid())
        QSettings(Theme::settingsFilePath(), Settings::format()).setValue(kDefaultScope, stored);
    QCOMPARE(SpotlightWindow::defaultScopeKeys(), keys);
    show();
    QStringList labels;
    for (const SpotlightWindow::ScopeDef& def : SpotlightWindow::scopeDefs()) {
        if (keys.contains(QString::fromLatin1(def.typeKey)))
            labels.append(SpotlightWindow::scopeLabel(def));
    }
    QCOMPARE(f->chipTexts(), labels);
    QCOMPARE(f->chipRow()->isVisible(), !keys.isEmpty());
    QCOMPARE(f->window.height(), f->window.emptyStateHeight());
}

void SpotlightScopesTest::defaultScopesAreWrittenAsGiven()
{
    const QStringList given{"File", "Teapot", "Application"};
    SpotlightWindow::setDefaultScopeKeys(given);
    const QSettings settings(Theme::settingsFilePath(), Settings::format());
    QCOMPARE(settings.value(kDefaultScope).toStringList(), given);
    QCOMPARE(SpotlightWindow::defaultScopeKeys(), QStringList({"Application", "File"}));
    SpotlightWindow::setDefaultScopeKeys({});
    QCOMPARE(SpotlightWindow::defaultScopeKeys(), QStringList());
}

void SpotlightScopesTest::chipsStandInFixedOrder()
{
    show();
    f->window.setScopeKeys({"Bulk", "Folder", "URL", "Application", "Snippet", "File"});
    QCOMPARE(f->chipTexts(), QStringList({"Application", "Web Bookmark", "File", "Folders",
                                          "Snippet", "Bulk Action"}));
}

void SpotlightScopesTest::chipLook()
{
    show();
    f->window.setScopeKeys({"Folder"});
    GlyphButton* chip = f->chips().constFirst();
    QTRY_VERIFY(chip->isVisible());
    QCOMPARE(chip->parentWidget(), f->chipRow());
    QCOMPARE(chip->focusPolicy(), Qt::NoFocus);
    QCOMPARE(chip->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(chip->toolTip(), QStringLiteral("Remove this filter"));
    QCOMPARE(chip->size(),
             QSize(chip->fontMetrics().horizontalAdvance(QStringLiteral("Folders")) + 64, 28));
    GlyphButton expected(QString(), f->chipRow());
    PillStyle::applyFilterChip(&expected, 0xE2C7, QStringLiteral("Folders"));
    QCOMPARE(Pixels::imageOf(*chip), Pixels::imageOf(expected));
}

void SpotlightScopesTest::clickedChipRemovesItsScope()
{
    show();
    f->window.setScopeKeys({"URL", "File", "Snippet"});
    QTRY_VERIFY(f->chips().at(1)->isVisible());
    const QPointer<GlyphButton> clicked = f->chips().at(1);
    QTest::mouseClick(clicked, Qt::LeftButton);
    QCOMPARE(f->chipTexts(), QStringList({"Web Bookmark", "Snippet"}));
    QTRY_VERIFY(!clicked);
    QVERIFY(f->window.isVisible());
    QVERIFY(f->field()->hasFocus());
}

void SpotlightScopesTest::unknownScopeHasNoChip()
{
    f->setItems({makeItem("note", "Teapot"), makeItem("note two", "URL")});
    show();
    f->window.setScopeKeys({"Teapot"});
    QVERIFY(f->chips().isEmpty());
    QCOMPARE(f->window.height(), kEmptyHeight);
    QTest::keyClicks(f->field(), QStringLiteral("note"));
    QCOMPARE(f->rows(), QStringList{"note"}); // but it narrows the search
    f->field()->clear();
    QTest::keyClick(f->field(), Qt::Key_Backspace); // and goes like any other
    QTest::keyClicks(f->field(), QStringLiteral("note"));
    QVERIFY(f->rows().contains(QStringLiteral("note two")));
}

void SpotlightScopesTest::equalScopesChangeNothing()
{
    fill();
    const QVector<GlyphButton*> chips = f->chips();
    f->list()->setCurrentRow(4);
    f->window.setScopeKeys({"Snippet", "URL"});
    QCOMPARE(f->chips(), chips);
    QCOMPARE(f->list()->currentRow(), 4);
    f->window.removeScope(QStringLiteral("Bulk")); // was not there
    QCOMPARE(f->chips(), chips);
    f->window.setScopeKeys({"URL", "Snippet"}); // another order is another list
    QCOMPARE(f->list()->currentRow(), 1);
}

void SpotlightScopesTest::scopesRebuildTheResults()
{
    fill();
    f->window.removeScope(QStringLiteral("Snippet"));
    QCOMPARE(f->rows(), QStringList({"note three", "note four"}));
    QCOMPARE(f->chipTexts(), QStringList{"Web Bookmark"});
    f->window.setScopeKeys({"Bulk"});
    QCOMPARE(f->rows(), QStringList());
    QVERIFY(f->panel()->isHidden());
    f->window.setScopeKeys({"URL", "URL", "Snippet"});
    f->window.removeScope(QStringLiteral("URL")); // every one of it
    QCOMPARE(f->rows(), QStringList({"note one", "note two"}));
    QCOMPARE(f->field()->text(), QStringLiteral("note"));
}

void SpotlightScopesTest::scopesLastUntilTheNextShow()
{
    SpotlightWindow::setDefaultScopeKeys({"Snippet"});
    show();
    f->window.setScopeKeys({"URL", "File"});
    QCOMPARE(SpotlightWindow::defaultScopeKeys(), QStringList{"Snippet"});
    f->pressHotkey();
    QTRY_VERIFY(f->window.isHidden());
    show();
    QCOMPARE(f->chipTexts(), QStringList{"Snippet"});
    QCOMPARE(f->window.height(), kEmptyHeight + 18 + kOneChipRow);
}

void SpotlightScopesTest::menuHoldsTheScopes()
{
    show();
    QStringList texts;
    const MenuDriver driver([&texts](QMenu* menu) {
        for (const QAction* action : menu->actions())
            texts.append(action->text());
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QCOMPARE(texts.mid(0, 6), QStringList({"Application", "Web Bookmark", "File", "Folders",
                                           "Snippet", "Bulk Action"}));
    QVERIFY(!texts.contains(QStringLiteral("All")));
}

void SpotlightScopesTest::menuOpensBelowItsButton()
{
    show();
    QRect menuRect;
    const MenuDriver driver([&menuRect](QMenu* menu) {
        menuRect = menu->geometry();
        QTest::keyClick(menu, Qt::Key_Backspace); // closes it too
    });
    QTest::mouseClick(f->filterButton(), Qt::LeftButton);
    QVERIFY(driver.hasClosed());
    const QRect button(f->filterButton()->mapToGlobal(QPoint(0, 0)), f->filterButton()->size());
    QCOMPARE(menuRect.topLeft(), button.bottomLeft() + QPoint(0, 1 + 4));
    QVERIFY(menuRect.width() >= button.width());
    QCOMPARE(f->window.focusWidget(), f->field());
}

void SpotlightScopesTest::menuChecksTheActiveScopes()
{
    show();
    f->window.setScopeKeys({"URL", "Snippet"});
    QVector<bool> checked;
    const MenuDriver driver([&checked](QMenu* menu) {
        const QImage image = menu->grab().toImage();
        for (int i = 0; i < 6; ++i) {
            const QImage row = image.copy(rowOf(menu, i));
            checked.append(!Pixels::boxOfColor(row, QColor(Theme::colors().primary)).isEmpty());
        }
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QCOMPARE(checked, QVector<bool>({false, true, false, false, true, false}));
}

void SpotlightScopesTest::menuEscapeChangesNothing_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Escape") << Qt::Key_Escape;
    QTest::newRow("Backspace") << Qt::Key_Backspace;
}

void SpotlightScopesTest::menuEscapeChangesNothing()
{
    QFETCH(Qt::Key, key);
    fill();
    const MenuDriver driver([key](QMenu* menu) {
        clickRow(menu, 0);
        clickRow(menu, 1);
        QTest::keyClick(menu, key);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QCOMPARE(f->chipTexts(), QStringList({"Web Bookmark", "Snippet"}));
    QCOMPARE(f->rows().size(), 6);
    QCOMPARE(f->window.focusWidget(), f->field());
    QVERIFY(!confirmDot());
}

void SpotlightScopesTest::menuDotCommitsForThisShow()
{
    fill();
    const MenuDriver driver([](QMenu* menu) {
        clickRow(menu, 4); // "Snippet" off
        clickRow(menu, 3); // "Folder" on
        clickDot(menu);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QCOMPARE(f->chipTexts(), QStringList({"Web Bookmark", "Folders"}));
    QVERIFY(f->rows().contains(QStringLiteral("note three")));
    QVERIFY(!f->rows().contains(QStringLiteral("note one")));
    QCOMPARE(f->window.focusWidget(), f->field());
    QVERIFY(!confirmDot());
    QVERIFY(!QSettings(Theme::settingsFilePath(), Settings::format()).contains(kDefaultScope));
    f->pressHotkey();
    QTRY_VERIFY(f->window.isHidden());
    show();
    QVERIFY(f->chips().isEmpty());
}

void SpotlightScopesTest::menuTogglesTwiceIsNothing()
{
    fill();
    const QVector<GlyphButton*> chips = f->chips();
    const MenuDriver driver([](QMenu* menu) {
        clickRow(menu, 0);
        clickRow(menu, 0);
        clickDot(menu);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QCOMPARE(f->chips(), chips);
}

void SpotlightScopesTest::menuOrderIsThatOfToggling()
{
    show();
    const MenuDriver driver([](QMenu* menu) {
        for (const int row : {5, 0, 2})
            clickRow(menu, row);
        clickDot(menu);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QCOMPARE(f->chipTexts(), QStringList({"Application", "File", "Bulk Action"}));
    QTest::keyClick(f->field(), Qt::Key_Backspace);
    QCOMPARE(f->chipTexts(), QStringList({"Application", "Bulk Action"})); // "File" came last
}

void SpotlightScopesTest::menuRowsStayOpen_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("click") << 0;
    QTest::newRow("Space") << int(Qt::Key_Space);
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

void SpotlightScopesTest::menuRowsStayOpen()
{
    QFETCH(int, key);
    show();
    bool staysOpen = false;
    const MenuDriver driver([key, &staysOpen](QMenu* menu) {
        if (key == 0) {
            clickRow(menu, 1);
        } else {
            menu->setActiveAction(menu->actions().at(1));
            QTest::keyClick(menu, Qt::Key(key));
        }
        staysOpen = menu->isVisible();
        clickDot(menu);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QVERIFY(staysOpen);
    QCOMPARE(f->chipTexts(), QStringList{"Web Bookmark"});
}

void SpotlightScopesTest::menuDotStandsBesideTheRow()
{
    show();
    QVector<QPoint> expected;
    QVector<QRect> dots;
    const MenuDriver driver([&expected, &dots](QMenu* menu) {
        for (int i = 0; i < 6; ++i) {
            clickRow(menu, i);
            const QRect row = rowOf(menu, i);
            const QPoint topRight = menu->mapToGlobal(QPoint(menu->width(), row.top()));
            expected.append(topRight + QPoint(8, row.height() / 2 - 20));
            dots.append(confirmDot()->geometry());
        }
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    for (int i = 0; i < 6; ++i)
        QCOMPARE(dots.at(i), QRect(expected.at(i), QSize(40, 40)));
}

void SpotlightScopesTest::menuDotFlipsAtTheScreenEdge_data()
{
    QTest::addColumn<int>("spare");
    QTest::addColumn<bool>("isLeft");
    QTest::newRow("one pixel of room") << 1 << false;
    QTest::newRow("no room") << 0 << true;
    QTest::newRow("less than none") << -20 << true;
}

void SpotlightScopesTest::menuDotFlipsAtTheScreenEdge()
{
    QFETCH(int, spare);
    QFETCH(bool, isLeft);
    show();
    QRect menuRect;
    int dotX = 0;
    const auto openMenu = [&] {
        const MenuDriver driver([&](QMenu* menu) {
            clickRow(menu, 0);
            menuRect = menu->geometry();
            dotX = confirmDot()->x();
            QTest::keyClick(menu, Qt::Key_Escape);
        });
        QTest::keyClick(f->field(), Qt::Key_F4);
        return driver.hasClosed();
    };
    QVERIFY(openMenu());
    const int wantedRight = screenArea().right() - 38 - 8 - spare; // of the menu, exclusive
    dragTo(f->window.pos() + QPoint(wantedRight - menuRect.right() - 1, 0));
    QVERIFY(openMenu());
    QCOMPARE(menuRect.right() + 1, wantedRight);
    QCOMPARE(dotX, isLeft ? menuRect.left() - 48 : menuRect.right() + 1 + 8);
}

void SpotlightScopesTest::menuDotHidesUntilToggled()
{
    show();
    bool isHiddenAtFirst = false;
    bool isShown = false;
    const MenuDriver driver([&](QMenu* menu) {
        QTest::keyClick(menu, Qt::Key_Down); // only moves
        isHiddenAtFirst = confirmDot() && !confirmDot()->isVisible();
        clickRow(menu, 2);
        isShown = confirmDot()->isVisible();
        confirmDot()->hide();
        clickDot(menu); // a click like any other beside the menu, where no dot is to be seen
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QVERIFY(isHiddenAtFirst);
    QVERIFY(isShown);
    QVERIFY(f->chips().isEmpty());
}

void SpotlightScopesTest::menuBlocksHiding()
{
    show();
    endGuards();
    bool isBlocked = false;
    const MenuDriver driver([&isBlocked](QMenu* menu) {
        isBlocked = g_blockAutoQuit;
        QApplication::setActiveWindow(nullptr);
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QVERIFY(isBlocked);
    QVERIFY(f->window.isVisible());
    QVERIFY(!f->fade());
    QVERIFY(g_blockAutoQuit); // for a while after its end, too
    QTRY_VERIFY(!g_blockAutoQuit);
}

void SpotlightScopesTest::hotkeyWhileTheMenuIsOpen()
{
    fill();
    const MenuDriver driver([this](QMenu* menu) {
        clickRow(menu, 0);
        f->pressHotkey();
        QVERIFY(QTest::qWaitFor([this] { return f->window.isHidden(); }));
        f->pressHotkey();
        QVERIFY(f->window.isVisible());
        clickDot(menu);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QVERIFY(f->window.isVisible());
    QCOMPARE(f->chipTexts(), QStringList({"Application", "Web Bookmark", "Snippet"}));
    QCOMPARE(f->field()->text(), QString());
}

QTEST_MAIN(SpotlightScopesTest)
#include "tst_spotlightscopes.moc"
