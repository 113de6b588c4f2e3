// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Browser.h"
#include "EventCounter.h"
#include "HomePageFixture.h"
#include "IconHelper.h"
#include "Pixels.h"
#include "WebQuery.h"

#include <QKeyEvent>
#include <QStackedWidget>

namespace
{

// The widgets of the home page that have the keyboard, by their object names.
constexpr char kAdd[] = "homeAddBtn";
constexpr char kTemplate[] = "homeTemplateBtn";
constexpr char kSettings[] = "homeSettingsBtn";
constexpr char kSearch[] = "searchInput";
constexpr char kStrip[] = "catScroll";
constexpr char kGrid[] = "itemList";
constexpr char kEmptyAdd[] = "emptyAddBtn";

} // namespace

/// What the keys do on the home page, and what follows the focus there.
class HomeViewKeyboardTest : public HomePageFixture
{
    Q_OBJECT

private slots:
    void keys_data();
    void keys();
    void upOnTheGrid_data();
    void upOnTheGrid();
    void cursorKeysInTheField_data();
    void cursorKeysInTheField();
    void stepsAlongTheStrip();
    void walkOverThePage();
    void gridKeepsItsOwnArrows();

    void escapeHides_data();
    void escapeHides();
    void typing_data();
    void typing();
    void typingFromTheGrid();
    void spaceOpensTheMenuOfTheItem();
    void enterInTheFieldRunsTheFirstHit();
    void enterInTheFieldOpensTheFirstSuggestion();
    void enterInTheFieldWithoutAnythingToOpen();
    void enterOnTheGridRunsTheItem();
    void enterOnTheStripOpensTheMenuOfTheSection();
    void enterClicksButtons_data();
    void enterClicksButtons();
    void enterOnAnotherWidget();

    void focusOnTheFieldClearsTheCard();
    void focusOnTheFieldClosesTheActions();
    void focusOnTheFieldLeavesTheEditor();
    void headerGlyphsStayAsTheyAre();

private:
    /// Hands the page a key, as the window does; what it doesn't take is not delivered anywhere.
    bool handle(QObject* obj, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                const QString& text = {}) const
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
        return home()->handleKeyPress(obj, &event);
    }

    void focusOn(const QString& name) const
    {
        QWidget* widget = m_window->findChild<QWidget*>(name);
        widget->setFocus();
        QCOMPARE(focused(), widget);
    }

    static QString clipboard() { return QGuiApplication::clipboard()->text(); }
};

void HomeViewKeyboardTest::keys_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("handled");
    QTest::addColumn<QString>("to"); ///< where the focus is afterwards
    const auto row = [](const char* name, const char* from, Qt::Key key, bool handled,
                        const char* to) {
        QTest::newRow(name) << from << int(key) << handled << to;
    };
    row("down from the field", kSearch, Qt::Key_Down, true, kStrip);
    row("down from add", kAdd, Qt::Key_Down, true, kStrip);
    row("down from templates", kTemplate, Qt::Key_Down, true, kStrip);
    row("down from settings", kSettings, Qt::Key_Down, true, kStrip);
    row("down from the strip", kStrip, Qt::Key_Down, true, kGrid);
    row("down on the grid", kGrid, Qt::Key_Down, false, kGrid);
    row("up from the field", kSearch, Qt::Key_Up, true, kSearch);
    row("up from add", kAdd, Qt::Key_Up, true, kAdd);
    row("up from templates", kTemplate, Qt::Key_Up, true, kTemplate);
    row("up from settings", kSettings, Qt::Key_Up, true, kSettings);
    row("up from the strip", kStrip, Qt::Key_Up, true, kSearch);
    row("up in the first line of the grid", kGrid, Qt::Key_Up, true, kStrip);
    row("left in the empty field", kSearch, Qt::Key_Left, true, kTemplate);
    row("left from add", kAdd, Qt::Key_Left, true, kAdd);
    row("left from templates", kTemplate, Qt::Key_Left, true, kAdd);
    row("left from settings", kSettings, Qt::Key_Left, true, kSearch);
    row("left on the first pill", kStrip, Qt::Key_Left, true, kSearch);
    row("left on the grid", kGrid, Qt::Key_Left, false, kGrid);
    row("right in the empty field", kSearch, Qt::Key_Right, true, kSettings);
    row("right from add", kAdd, Qt::Key_Right, true, kTemplate);
    row("right from templates", kTemplate, Qt::Key_Right, true, kSearch);
    row("right from settings", kSettings, Qt::Key_Right, true, kSettings);
    row("right on the strip", kStrip, Qt::Key_Right, true, kStrip);
    row("right on the grid", kGrid, Qt::Key_Right, false, kGrid);
    row("space in the field", kSearch, Qt::Key_Space, false, kSearch);
    row("space on the strip", kStrip, Qt::Key_Space, false, kStrip);
    row("space on a button", kAdd, Qt::Key_Space, false, kAdd);
    row("backspace in the field", kSearch, Qt::Key_Backspace, false, kSearch);
    row("backspace on the grid", kGrid, Qt::Key_Backspace, false, kGrid);
    row("home on the grid", kGrid, Qt::Key_Home, false, kGrid);
    row("back tab", kGrid, Qt::Key_Backtab, false, kGrid);
    row("a modifier alone", kGrid, Qt::Key_Control, false, kGrid);
}

void HomeViewKeyboardTest::keys()
{
    QFETCH(QString, from);
    QFETCH(int, key);
    QFETCH(QString, to);
    open();
    focusOn(from);
    const auto text = key == Qt::Key_Backspace ? QStringLiteral("\b") : QString();
    QTEST(handle(focused(), Qt::Key(key), Qt::NoModifier, text), "handled");
    QCOMPARE(focused()->objectName(), to);
    QCOMPARE(searchField()->text(), QString());
}

void HomeViewKeyboardTest::upOnTheGrid_data()
{
    QTest::addColumn<int>("columns"); // as set
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("leaves");
    QTest::newRow("first of three") << 3 << 0 << true;
    QTest::newRow("last of the first line") << 3 << 2 << true;
    QTest::newRow("second line") << 3 << 3 << false;
    QTest::newRow("no row") << 3 << -1 << true;
    // The grid shows four at most, the key counts what is set all the same.
    QTest::newRow("seven set, second line") << 7 << 6 << true;
    QTest::newRow("seven set, behind them") << 7 << 7 << false;
    QTest::newRow("none set, first") << 0 << 0 << true;
    QTest::newRow("none set, second") << 0 << 1 << false;
}

void HomeViewKeyboardTest::upOnTheGrid()
{
    QFETCH(int, columns);
    QFETCH(int, row);
    QFETCH(bool, leaves);
    LauncherData document = standardDocument();
    for (int i = 0; i < 9; ++i)
        document.sectionElements["Alpha"].append(snippet(QString::number(i), "More"));
    open(document);
    const auto restore =
        qScopeGuard([stored = Theme::gridColumns] { Theme::gridColumns = stored; });
    Theme::gridColumns = columns;
    goToRow(row);
    QCOMPARE(handle(list(), Qt::Key_Up), leaves);
    QCOMPARE(focused(), leaves ? strip() : list());
}

void HomeViewKeyboardTest::cursorKeysInTheField_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("cursor");
    QTest::addColumn<bool>("isSelected");
    QTest::addColumn<QString>("to");
    QTest::newRow("left at the start") << int(Qt::Key_Left) << 0 << false << kTemplate;
    QTest::newRow("left behind a letter") << int(Qt::Key_Left) << 1 << false << kSearch;
    QTest::newRow("left with a selection") << int(Qt::Key_Left) << 0 << true << kSearch;
    QTest::newRow("right at the end") << int(Qt::Key_Right) << 3 << false << kSettings;
    QTest::newRow("right before a letter") << int(Qt::Key_Right) << 2 << false << kSearch;
    QTest::newRow("right with a selection") << int(Qt::Key_Right) << 3 << true << kSearch;
}

void HomeViewKeyboardTest::cursorKeysInTheField()
{
    QFETCH(int, key);
    QFETCH(int, cursor);
    QFETCH(bool, isSelected);
    QFETCH(QString, to);
    open();
    focusOn(kSearch);
    searchField()->setText("one");
    if (isSelected)
        searchField()->setSelection(3 - cursor, 2 * cursor - 3); // ends at the cursor
    else
        searchField()->setCursorPosition(cursor);
    QCOMPARE(searchField()->cursorPosition(), cursor);
    QCOMPARE(handle(searchField(), Qt::Key(key)), to != kSearch);
    QCOMPARE(focused()->objectName(), to);
}

void HomeViewKeyboardTest::stepsAlongTheStrip()
{
    open();
    press(Qt::Key_Right);
    QCOMPARE(model()->currentCategory(), "Beta");
    QCOMPARE(rows(), QStringList{"Bee"});
    press(Qt::Key_Right);
    QCOMPARE(model()->currentCategory(), "Gamma");
    QCOMPARE(focused(), strip());
    // There is nothing to go down to in an empty section.
    press(Qt::Key_Down);
    QCOMPARE(focused(), strip());
    press(Qt::Key_Right);
    QCOMPARE(model()->currentCategory(), "Gamma");
    QCOMPARE(focused()->objectName(), kSettings);
    focusOn(kStrip);
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    QCOMPARE(model()->currentCategory(), "Alpha");
    QCOMPARE(focused(), strip());
    press(Qt::Key_Left);
    QCOMPARE(focused(), searchField());
}

void HomeViewKeyboardTest::walkOverThePage()
{
    open();
    const QList<std::pair<Qt::Key, const char*>> walk{
        {Qt::Key_Up, kSearch},      {Qt::Key_Left, kTemplate},  {Qt::Key_Left, kAdd},
        {Qt::Key_Left, kAdd},       {Qt::Key_Right, kTemplate}, {Qt::Key_Right, kSearch},
        {Qt::Key_Right, kSettings}, {Qt::Key_Right, kSettings}, {Qt::Key_Left, kSearch},
        {Qt::Key_Down, kStrip},     {Qt::Key_Down, kGrid},      {Qt::Key_Right, kGrid},
        {Qt::Key_Up, kStrip},       {Qt::Key_Down, kGrid}};
    for (const auto& [key, to] : walk) {
        press(key);
        QCOMPARE(focused()->objectName(), to);
    }
    QCOMPARE(currentRow(), "Two");
}

void HomeViewKeyboardTest::gridKeepsItsOwnArrows()
{
    LauncherData document = standardDocument();
    for (const char* name : {"Four", "Five", "Six", "Seven"})
        document.sectionElements["Alpha"].append(snippet(name, name));
    open(document);
    QTRY_COMPARE(list()->gridSize(), QSize(176, 132));
    goToRow(1);
    press(Qt::Key_Down);
    QCOMPARE(currentRow(), "Five");
    press(Qt::Key_Right);
    QCOMPARE(currentRow(), "Six");
    press(Qt::Key_Up);
    QCOMPARE(currentRow(), "Three");
    press(Qt::Key_Up);
    QCOMPARE(focused(), strip());
}

void HomeViewKeyboardTest::escapeHides_data()
{
    QTest::addColumn<QString>("from");
    for (const char* from : {kAdd, kTemplate, kSettings, kSearch, kStrip, kGrid})
        QTest::newRow(from) << from;
}

void HomeViewKeyboardTest::escapeHides()
{
    QFETCH(QString, from);
    open();
    focusOn(from);
    press(Qt::Key_Escape);
    QVERIFY(runningFade());
    QTRY_VERIFY(m_window->isHidden());
}

void HomeViewKeyboardTest::typing_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("taken");
    const auto row = [](const char* name, const char* from, int key, int modifiers,
                        const QString& text, bool taken) {
        QTest::newRow(name) << from << key << modifiers << text << taken;
    };
    const int none = Qt::NoModifier;
    row("letter on the grid", kGrid, Qt::Key_A, none, "a", true);
    row("letter on the strip", kStrip, Qt::Key_A, none, "a", true);
    row("letter on a button", kAdd, Qt::Key_A, none, "a", true);
    row("capital", kGrid, Qt::Key_A, Qt::ShiftModifier, "A", true);
    row("letter of another script", kGrid, 0, none, QString(u'\u3042'), true);
    row("emoji", kGrid, 0, none, QStringLiteral("\U0001F600"), true);
    row("rare character on the strip", kStrip, 0, none, QStringLiteral("\U00020000"), true);
    row("unassigned beyond the basic plane", kGrid, 0, none, QStringLiteral("\U000E0000"), false);
    row("digit", kGrid, Qt::Key_1, none, "1", true);
    row("several at once", kGrid, 0, none, "ab", true);
    row("letter in the field", kSearch, Qt::Key_A, none, "a", false);
    row("with Ctrl", kGrid, Qt::Key_A, Qt::ControlModifier, "a", false);
    row("with Alt", kGrid, Qt::Key_A, Qt::AltModifier, "a", false);
    row("with Shift and Ctrl", kGrid, Qt::Key_A, Qt::ShiftModifier | Qt::ControlModifier, "A",
        false);
    row("of the number pad", kGrid, Qt::Key_1, Qt::KeypadModifier, "1", false);
    row("space on the strip", kStrip, Qt::Key_Space, none, " ", false);
    row("no text", kGrid, Qt::Key_F5, none, "", false);
    row("control character", kGrid, Qt::Key_Delete, none, "\x7f", false);
    row("Ctrl+A as it comes", kGrid, Qt::Key_A, Qt::ControlModifier, "\x01", false);
}

void HomeViewKeyboardTest::typing()
{
    QFETCH(QString, from);
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(QString, text);
    QFETCH(bool, taken);
    open();
    searchField()->setText("e");
    searchField()->setCursorPosition(0);
    focusOn(from);
    QCOMPARE(handle(focused(), Qt::Key(key), Qt::KeyboardModifiers(modifiers), text), taken);
    QCOMPARE(searchField()->text(), taken ? "e" + text : QString("e"));
    QCOMPARE(focused()->objectName(), taken ? QString(kSearch) : from);
}

void HomeViewKeyboardTest::typingFromTheGrid()
{
    open();
    goToRow(0);
    QTest::keyClicks(list(), "t");
    QCOMPARE(focused(), searchField());
    QCOMPARE(rows(), QStringList({"Two", "Three"}));
    QTest::keyClicks(searchField(), "w");
    QCOMPARE(searchField()->text(), "tw");
    QCOMPARE(rows(), QStringList{"Two"});
}

void HomeViewKeyboardTest::spaceOpensTheMenuOfTheItem()
{
    open();
    goToRow(1);
    QString first;
    inMenus([this] { press(Qt::Key_Space); }, {[&first](QMenu* menu) {
                first = menu->actions().constFirst()->text();
                cancelByKey(menu);
            }});
    QCOMPARE(first, Tr::t("actions.edit_shortcut"));
    QCOMPARE(currentRow(), "Two");
    QCOMPARE(searchField()->text(), QString());
}

void HomeViewKeyboardTest::enterInTheFieldRunsTheFirstHit()
{
    open();
    QGuiApplication::clipboard()->clear();
    focusOn(kSearch);
    searchField()->setText("e");
    QCOMPARE(currentRow(), "One");
    press(Qt::Key_Return);
    QCOMPARE(clipboard(), "One text");
    QTRY_VERIFY(m_window->isHidden());
}

void HomeViewKeyboardTest::enterInTheFieldOpensTheFirstSuggestion()
{
    const Browser browser;
    open();
    focusOn(kSearch);
    searchField()->setText("y zzz");
    press(Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(browser.opened, QStringList{WebQuery::suggestionsFor("y zzz").at(0).url});
    QTRY_VERIFY(m_window->isHidden());
}

void HomeViewKeyboardTest::enterInTheFieldWithoutAnythingToOpen()
{
    const Browser browser;
    open();
    focusOn(kSearch);
    searchField()->setText("   ");
    QCOMPARE(list()->count(), 0);
    press(Qt::Key_Return);
    QCOMPARE(browser.opened, QStringList());
    QVERIFY(!runningFade());
    QCOMPARE(focused(), searchField());
}

void HomeViewKeyboardTest::enterOnTheGridRunsTheItem()
{
    open();
    QGuiApplication::clipboard()->clear();
    goToRow(1);
    press(Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(clipboard(), "Two text");
    QTRY_VERIFY(m_window->isHidden());
}

void HomeViewKeyboardTest::enterOnTheStripOpensTheMenuOfTheSection()
{
    open();
    QStringList texts;
    inMenus([this] { press(Qt::Key_Return); }, {[&texts](QMenu* menu) {
                texts = textsOf(menu);
                cancelByKey(menu);
            }});
    QVERIFY(texts.contains(Tr::t("actions.edit_section")));
}

void HomeViewKeyboardTest::enterClicksButtons_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("key");
    QTest::newRow("add") << kAdd << int(Qt::Key_Return);
    QTest::newRow("templates") << kTemplate << int(Qt::Key_Enter);
    QTest::newRow("settings") << kSettings << int(Qt::Key_Return);
    QTest::newRow("on the empty page") << kEmptyAdd << int(Qt::Key_Return);
}

void HomeViewKeyboardTest::enterClicksButtons()
{
    QFETCH(QString, button);
    QFETCH(int, key);
    open();
    QVERIFY(home()->stepCategory(2)); // an empty one
    auto* target = m_window->findChild<QPushButton*>(button);
    target->disconnect(home()); // what it does is not the matter here
    target->setFocus();
    int clicks = 0;
    connect(target, &QPushButton::clicked, this, [&clicks] { ++clicks; });
    press(Qt::Key(key));
    QCOMPARE(clicks, 1);
}

void HomeViewKeyboardTest::enterOnAnotherWidget()
{
    open();
    QVERIFY(!handle(named("leftCard"), Qt::Key_Return));
    QVERIFY(!handle(named("leftCard"), Qt::Key_Down));
    QVERIFY(!handle(named("leftCard"), Qt::Key_Up));
    QVERIFY(!handle(named("leftCard"), Qt::Key_Left));
    QVERIFY(!handle(named("leftCard"), Qt::Key_Right));
    QCOMPARE(focused(), strip());
}

void HomeViewKeyboardTest::focusOnTheFieldClearsTheCard()
{
    open();
    goToRow(1);
    QCOMPARE(previewPage(), int(HomeView::PagePreviewDetail));
    focusOn(kSearch);
    QCOMPARE(previewPage(), int(HomeView::PagePreviewEmpty));
    const auto* hint = home()->previewStack()->currentWidget()->findChild<QLabel*>();
    QCOMPARE(hint->text(), Tr::t("home.search_hint"));
    list()->setCurrentRow(-1);
    QCOMPARE(hint->text(), QString());
}

void HomeViewKeyboardTest::focusOnTheFieldClosesTheActions()
{
    open();
    m_window->openItemDeleteConfirm("a2");
    QCOMPARE(panel()->currentStep(), ActionsConfirmDelete);
    searchField()->setFocus();
    QCOMPARE(panel()->currentStep(), ActionsNone);
    QTRY_VERIFY(card()->isHidden());
    QCOMPARE(itemsOf("Alpha").size(), 3);
}

void HomeViewKeyboardTest::focusOnTheFieldLeavesTheEditor()
{
    open();
    m_window->openItemEditor("a2");
    searchField()->setFocus();
    QVERIFY(m_window->isItemEditorOpen());
    QCOMPARE(previewPage(), int(HomeView::PagePreviewEditor));
    QVERIFY(card()->isVisible());
}

void HomeViewKeyboardTest::headerGlyphsStayAsTheyAre()
{
    open();
    const ColorTokens tones = getItemTheme();
    const QList<std::pair<GlyphButton*, uint>> buttons{{home()->addButton(), Glyph::Add},
                                                       {home()->templateButton(), Glyph::Bookmarks},
                                                       {home()->settingsButton(), Glyph::Settings}};
    for (const auto& [button, glyph] : buttons) {
        GlyphButton likeness;
        likeness.setObjectName(button->objectName());
        likeness.setStyleSheet(button->styleSheet());
        likeness.resize(32, 32);
        likeness.setGlyph(glyph, 20, tones.onSurface);
        const QImage resting = Pixels::imageOf(likeness);
        QCOMPARE(Pixels::imageOf(*button), resting);
        QEnterEvent enter(QPointF(3, 3), QPointF(3, 3), QPointF(3, 3));
        QApplication::sendEvent(button, &enter);
        QCOMPARE(Pixels::imageOf(*button), resting);
        // The ground changes with the focus, the glyph on it doesn't.
        const QColor ink(tones.onSurface);
        const QRect inkBox = Pixels::boxOfColor(resting, ink, 60);
        QVERIFY(!inkBox.isEmpty());
        button->setFocus();
        QCOMPARE(Pixels::boxOfColor(Pixels::imageOf(*button), ink, 60), inkBox);
        strip()->setFocus();
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(button, &leave);
        QCoreApplication::processEvents();
        QCOMPARE(Pixels::imageOf(*button), resting);
    }
}

QTEST_MAIN(HomeViewKeyboardTest)
#include "tst_homeviewkeyboard.moc"
