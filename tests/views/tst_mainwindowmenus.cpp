// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "GlyphWidgets.h"
#include "HomePageFixture.h"

/// The menus of the window: their rows, where they open, what a choice does, and who has the focus
/// at their end.
class MainWindowMenusTest : public HomePageFixture
{
    Q_OBJECT

private slots:
    void rowsOfTheItemMenu_data();
    void rowsOfTheItemMenu();
    void rowsOfTheMoveMenu();
    void rowsOfTheSectionMenu();
    void rowsOfTheAddMenu();
    void rowsOfTheTemplateMenu_data();
    void rowsOfTheTemplateMenu();
    void rowsOfTheTemplatePick();
    void rowsAreTranslated();
    void namesStandAsTheyAre();

    void menusOpenAtTheirAnchors_data();
    void menusOpenAtTheirAnchors();
    void contextMenuOnlyOverAnItem();
    void itemMenuMakesTheItemCurrent();
    void windowsAreHeld_data();
    void windowsAreHeld();
    void cancelGivesTheFocusBack_data();
    void cancelGivesTheFocusBack();

    void editOpensTheEditor();
    void duplicateSelectsTheCopy();
    void deleteAsksInThePanel();
    void moveMovesTheItem();
    void moveOfTheLastItemFocusesTheStrip();
    void moveIsCancelled();
    void noMoveMenuWithoutATarget();
    void addRowOpensTheEditor_data();
    void addRowOpensTheEditor();

    void sectionMenuOfAnotherSection();
    void sectionMenuOfNoSection_data();
    void sectionMenuOfNoSection();
    void rightClickOpensTheMenuOfItsPill();
    void noSectionMenuWithoutAPill();
    void templatePick_data();
    void templatePick();
    void noTemplatePickWithoutTemplates();

    void vanishedItem_data();
    void vanishedItem();
    void itemMovedBehindTheMenu();
    void vanishedSection_data();
    void vanishedSection();
    void vanishedMoveTarget();

private:
    using Opening = std::function<void()>;
    Opening openingOf(const QString& menu);
    void addMenuRows() const;
    QWidget* pill(const QString& section) const;
};

/// What opens one of the menus, with the focus where a user would have it then.
MainWindowMenusTest::Opening MainWindowMenusTest::openingOf(const QString& menu)
{
    if (menu == QLatin1String("item")) {
        goToRow(1);
        return [this] { m_window->showContextMenuForCurrentItem(); };
    }
    if (menu == QLatin1String("move")) {
        goToRow(1);
        return
            [this] { m_window->showMoveToSectionMenu("a2", "Alpha", QPoint(300, 300), focused()); };
    }
    if (menu == QLatin1String("section")) {
        strip()->setFocus();
        return [this] { m_window->showCategoryActionsMenu(); };
    }
    if (menu == QLatin1String("add")) {
        home()->addButton()->setFocus();
        return [this] { m_window->showAddActionsMenu(); };
    }
    home()->templateButton()->setFocus();
    if (menu == QLatin1String("template"))
        return [this] { m_window->showTemplateActionsMenu(); };
    return [this] { m_window->pickTemplateName(home()->templateButton()); };
}

void MainWindowMenusTest::addMenuRows() const
{
    QTest::addColumn<QString>("menu");
    for (const char* menu : {"item", "move", "section", "add", "template", "template pick"})
        QTest::newRow(menu) << menu;
}

QWidget* MainWindowMenusTest::pill(const QString& section) const
{
    for (auto* button : named("catContainer")->findChildren<GlyphButton*>()) {
        if (button->isVisible() && button->text() == section)
            return button;
    }
    return nullptr;
}

void MainWindowMenusTest::rowsOfTheItemMenu_data()
{
    QTest::addColumn<QStringList>("categories");
    QTest::addColumn<bool>("isKnown");
    QTest::addColumn<bool>("canMove");
    QTest::newRow("one section") << QStringList{"Alpha"} << true << false;
    QTest::newRow("two sections") << QStringList{"Alpha", "Beta"} << true << true;
    QTest::newRow("three sections") << QStringList{"Alpha", "Beta", "Gamma"} << true << true;
    QTest::newRow("item gone") << QStringList{"Alpha", "Beta"} << false << false;
}

void MainWindowMenusTest::rowsOfTheItemMenu()
{
    QFETCH(QStringList, categories);
    QFETCH(bool, isKnown);
    QFETCH(bool, canMove);
    LauncherData document = standardDocument();
    document.categories = categories;
    document.defaultCategory = "Alpha";
    open(document);
    goToRow(0);
    if (!isKnown)
        const_cast<LauncherData&>(model()->data()).sectionElements["Alpha"].removeFirst();
    QList<MenuRow> expected{{"Edit Shortcut", 0xF097}};
    if (isKnown)
        expected.append({"Duplicate Shortcut", 0xE14D});
    if (canMove)
        expected.append({"Move to Section", 0xE9A1});
    expected.append({"Delete Shortcut", 0xE92E});
    inMenus([this] { m_window->showContextMenuForCurrentItem(); },
            {[&](QMenu* menu) { verifyRows(menu, withCancel(expected)); }});
}

void MainWindowMenusTest::rowsOfTheMoveMenu()
{
    LauncherData document = standardDocument();
    document.categoryIcons.insert("Gamma", AlphaIcon);
    open(document);
    const QList<MenuRow> expected =
        withCancel({{"Beta", SectionTemplate::DefaultIcon}, {"Gamma", AlphaIcon}});
    inMenus(openingOf("move"), {[&](QMenu* menu) { verifyRows(menu, expected); }});
}

void MainWindowMenusTest::rowsOfTheSectionMenu()
{
    open();
    const QList<MenuRow> expected = withCancel({{"Add Shortcut", 0xE145},
                                                {"Reorder Items", 0xE8FE},
                                                {{}, 0},
                                                {"Edit Section", 0xF097},
                                                {"Delete Section", 0xE92E},
                                                {"Reorder Sections", 0xE8D4}});
    inMenus(openingOf("section"), {[&](QMenu* menu) { verifyRows(menu, expected); }});
}

void MainWindowMenusTest::rowsOfTheAddMenu()
{
    open();
    const QList<MenuRow> expected = withCancel({{"Add Shortcut", 0xE145}, {"Add Section", 0xE2CC}});
    inMenus(openingOf("add"), {[&](QMenu* menu) { verifyRows(menu, expected); }});
}

void MainWindowMenusTest::rowsOfTheTemplateMenu_data()
{
    QTest::addColumn<bool>("hasCategory");
    QTest::addColumn<bool>("hasTemplates");
    QTest::newRow("all") << true << true;
    QTest::newRow("no templates") << true << false;
    QTest::newRow("no section") << false << true;
    QTest::newRow("neither") << false << false;
}

void MainWindowMenusTest::rowsOfTheTemplateMenu()
{
    QFETCH(bool, hasCategory);
    QFETCH(bool, hasTemplates);
    LauncherData document = standardDocument();
    if (!hasTemplates)
        document.templates.clear();
    open(document);
    if (!hasCategory)
        model()->setCurrentCategory({});
    QList<MenuRow> expected;
    if (hasCategory)
        expected.append({"Save as Template", 0xE598});
    if (hasTemplates)
        expected.append({"Section from Template", 0xE866});
    if (hasCategory || hasTemplates)
        expected.append(MenuRow());
    expected.append({"Manage Templates", 0xE98B});
    inMenus(openingOf("template"), {[&](QMenu* menu) { verifyRows(menu, withCancel(expected)); }});
}

void MainWindowMenusTest::rowsOfTheTemplatePick()
{
    open();
    const QList<MenuRow> expected =
        withCancel({{"Kit", KitIcon}, {"Box", SectionTemplate::DefaultIcon}});
    inMenus(openingOf("template pick"), {[&](QMenu* menu) { verifyRows(menu, expected); }});
}

void MainWindowMenusTest::rowsAreTranslated()
{
    open();
    Tr::currentLang = Lang::Es;
    QStringList texts;
    inMenus(openingOf("section"), {[&texts](QMenu* menu) { texts = textsOf(menu); }});
    Tr::currentLang = Lang::En;
    QCOMPARE(texts.value(0), QStringLiteral("Añadir acceso directo"));
    QCOMPARE(texts.value(3), QStringLiteral("Editar sección"));
}

void MainWindowMenusTest::namesStandAsTheyAre()
{
    const QString markup = QStringLiteral("R&D <b>&x</b>\nsecond");
    const QString huge(1 << 20, u'w');
    LauncherData document = standardDocument();
    document.categories = QStringList{"Alpha", markup, huge};
    document.defaultCategory = "Alpha";
    document.templates = {{markup, KitIcon, {snippet({}, "Tool")}}, {huge, KitIcon, {}}};
    open(document);
    for (const char* menuName : {"move", "template pick"}) {
        inMenus(openingOf(menuName), {[&](QMenu* menu) {
                    QAction* first = menu->actions().constFirst();
                    QCOMPARE(first->text(), Keys::withoutShortcut(markup));
                    QVERIFY(menu->width() < MainWindow::WINDOW_WIDTH_GRID);
                    menu->setActiveAction(nullptr);
                    QTest::keyClick(menu, Qt::Key_D); // no shortcut: nothing is chosen by it
                    QVERIFY(menu->isVisible());
                }});
    }
    QVERIFY(itemsOf(markup).isEmpty());
    inMenus(openingOf("move"), {choose(markup)});
    QCOMPARE(itemsOf(markup), QStringList{"Two"});
}

void MainWindowMenusTest::menusOpenAtTheirAnchors_data()
{
    addMenuRows();
}

void MainWindowMenusTest::menusOpenAtTheirAnchors()
{
    QFETCH(QString, menu);
    open();
    const Opening opening = openingOf(menu);
    const auto centerOf = [](const QWidget* widget) {
        return widget->mapToGlobal(widget->rect().center());
    };
    QPoint expected(300, 300);
    if (menu == QLatin1String("item"))
        expected =
            list()->viewport()->mapToGlobal(list()->visualItemRect(list()->currentItem()).center());
    else if (menu == QLatin1String("section"))
        expected = centerOf(home()->selectedCategoryButton());
    else if (menu == QLatin1String("add"))
        expected = centerOf(home()->addButton());
    else if (menu.startsWith(QLatin1String("template")))
        expected = centerOf(home()->templateButton());
    QPoint corner;
    inMenus(opening, {[&corner](QMenu* shown) { corner = shown->geometry().topLeft(); }});
    QCOMPARE(corner, expected);
}

void MainWindowMenusTest::contextMenuOnlyOverAnItem()
{
    open();
    goToRow(0);
    const QRect second = list()->visualItemRect(list()->item(1));
    QPoint corner;
    inMenus([&] { emit list()->customContextMenuRequested(second.center()); },
            {[&corner](QMenu* menu) { corner = menu->geometry().topLeft(); }});
    QCOMPARE(corner, list()->viewport()->mapToGlobal(second.center()));
    QCOMPARE(currentRow(), QStringLiteral("Two"));
    const QPoint beside(list()->viewport()->width() / 2, list()->viewport()->height() - 2);
    QVERIFY(!list()->itemAt(beside));
    inMenus([&] { m_window->showContextMenu(beside); }, {});
    QCOMPARE(currentRow(), QStringLiteral("Two"));
}

void MainWindowMenusTest::itemMenuMakesTheItemCurrent()
{
    open();
    goToRow(0);
    QString current;
    inMenus([this] { m_window->showItemActionsMenu(list()->item(2), QPoint(10, 10)); },
            {[&](QMenu*) { current = currentRow(); }});
    QCOMPARE(current, QStringLiteral("Three"));
    inMenus([this] { m_window->showItemActionsMenu(nullptr, QPoint(10, 10)); }, {});
    list()->setCurrentItem(nullptr);
    inMenus([this] { m_window->showContextMenuForCurrentItem(); }, {});
}

void MainWindowMenusTest::windowsAreHeld_data()
{
    addMenuRows();
}

void MainWindowMenusTest::windowsAreHeld()
{
    QFETCH(QString, menu);
    open();
    const Opening opening = openingOf(menu);
    QTRY_VERIFY(!g_blockAutoQuit);
    bool isHeld = false;
    QWidget* parent = nullptr;
    inMenus(opening, {[&](QMenu* shown) {
                isHeld = g_blockAutoQuit;
                parent = shown->parentWidget();
            }});
    QVERIFY(isHeld);
    QCOMPARE(parent, m_window.get());
}

void MainWindowMenusTest::cancelGivesTheFocusBack_data()
{
    QTest::addColumn<QString>("menu");
    QTest::addColumn<bool>("byRow");
    for (const char* menu : {"item", "move", "section", "add", "template", "template pick"}) {
        QTest::addRow("%s, Esc", menu) << menu << false;
        QTest::addRow("%s, cancel row", menu) << menu << true;
    }
}

void MainWindowMenusTest::cancelGivesTheFocusBack()
{
    QFETCH(QString, menu);
    QFETCH(bool, byRow);
    open();
    const Opening opening = openingOf(menu);
    const QWidget* before = focused();
    QVERIFY(before && before->hasFocus());
    inMenus(opening, {[&](QMenu* shown) {
                searchField()->setFocus(); // it wanders off while the menu is open
                if (byRow)
                    chooseKey("dialog.btn_cancel")(shown);
                else
                    cancelByKey(shown);
            }});
    QCOMPARE(focused(), before);
    QCOMPARE(onDisk(), standardDocument());
    QVERIFY(!card()->isVisible());
}

void MainWindowMenusTest::editOpensTheEditor()
{
    open();
    inMenus(openingOf("item"), {chooseKey("actions.edit_shortcut")});
    QVERIFY(m_window->isItemEditorOpen());
    QCOMPARE(cardTitle(), QStringLiteral("Edit Shortcut"));
    QCOMPARE(named<QLineEdit>("editorNameInput")->text(), QStringLiteral("Two"));
    QCOMPARE(focused(), named("editorNameInput"));
}

void MainWindowMenusTest::duplicateSelectsTheCopy()
{
    open();
    inMenus(openingOf("item"), {[this](QMenu* menu) {
                strip()->setFocus();
                chooseKey("actions.duplicate_shortcut")(menu);
            }});
    QCOMPARE(rows(), QStringList({"One", "Two", "Two 2", "Three"}));
    QCOMPARE(currentRow(), QStringLiteral("Two 2"));
    QCOMPARE(focused(), list());
    QCOMPARE(onDisk().sectionElements.value("Alpha").size(), 4);
}

void MainWindowMenusTest::deleteAsksInThePanel()
{
    open();
    inMenus(openingOf("item"), {chooseKey("actions.delete_shortcut")});
    QCOMPARE(previewPage(), int(HomeView::PagePreviewActions));
    QCOMPARE(panel()->currentStep(), ActionsConfirmDelete);
    QCOMPARE(cardTitle(), QStringLiteral("Delete Shortcut"));
    QCOMPARE(rows().size(), 3);
    QTest::keyClick(focused(), Qt::Key_Return);
    QCOMPARE(rows(), QStringList({"One", "Three"}));
    QCOMPARE(onDisk().sectionElements.value("Alpha").size(), 2);
    QTRY_VERIFY(!card()->isVisible());
    QCOMPARE(focused(), list());
}

void MainWindowMenusTest::moveMovesTheItem()
{
    open();
    goToRow(1);
    QPoint first;
    QPoint second;
    inMenus([this] { m_window->showContextMenuForCurrentItem(); },
            {[&](QMenu* menu) {
                 first = menu->geometry().topLeft();
                 chooseKey("actions.move_item")(menu);
             },
             [&](QMenu* menu) {
                 second = menu->geometry().topLeft();
                 choose("Gamma")(menu);
             }});
    QCOMPARE(second, first);
    QCOMPARE(rows(), QStringList({"One", "Three"}));
    QCOMPARE(itemsOf("Gamma"), QStringList{"Two"});
    QCOMPARE(model()->currentCategory(), QStringLiteral("Alpha"));
    QCOMPARE(focused(), list());
}

void MainWindowMenusTest::moveOfTheLastItemFocusesTheStrip()
{
    open();
    model()->setCurrentCategory("Beta");
    home()->refreshCategories(-1, false);
    goToRow(0);
    inMenus([this] { m_window->showContextMenuForCurrentItem(); },
            {chooseKey("actions.move_item"), choose("Alpha")});
    QVERIFY(rows().isEmpty());
    QCOMPARE(focused(), strip());
}

void MainWindowMenusTest::moveIsCancelled()
{
    open();
    inMenus(openingOf("item"), {chooseKey("actions.move_item"), [this](QMenu* menu) {
                                    strip()->setFocus();
                                    cancelByKey(menu);
                                }});
    QCOMPARE(onDisk(), standardDocument());
    QCOMPARE(focused(), list());
}

void MainWindowMenusTest::noMoveMenuWithoutATarget()
{
    LauncherData document = standardDocument();
    document.categories = QStringList{"Alpha"};
    document.defaultCategory = "Alpha";
    open(document);
    inMenus(
        [this] { m_window->showMoveToSectionMenu("a2", "Alpha", QPoint(10, 10), searchField()); },
        {});
    QCOMPARE(focused(), searchField());
    inMenus([this] { m_window->showMoveToSectionMenu("a2", "Alpha", QPoint(10, 10), {}); }, {});
    QCOMPARE(focused(), searchField());
}

void MainWindowMenusTest::addRowOpensTheEditor_data()
{
    QTest::addColumn<QString>("menu");
    QTest::newRow("add") << "add";
    QTest::newRow("section") << "section";
}

void MainWindowMenusTest::addRowOpensTheEditor()
{
    QFETCH(QString, menu);
    open();
    inMenus(openingOf(menu), {chooseKey("actions.add_shortcut")});
    QVERIFY(m_window->isItemEditorOpen());
    QCOMPARE(cardTitle(), QStringLiteral("Add Shortcut"));
    QVERIFY(named<QLineEdit>("editorNameInput")->text().isEmpty());
    QCOMPARE(editor()->editingCategory(), QStringLiteral("Alpha"));
}

void MainWindowMenusTest::sectionMenuOfAnotherSection()
{
    open();
    m_window->showCategoryActionsMenuFor("Beta"); // the menu opens in the next turn
    QCOMPARE(model()->currentCategory(), QStringLiteral("Beta"));
    QCOMPARE(rows(), QStringList{"Bee"});
    QPoint corner;
    QPoint expected;
    inMenus([] {}, {[&](QMenu* menu) {
                QCOMPARE(home()->selectedCategoryButton()->text(), QStringLiteral("Beta"));
                expected = home()->selectedCategoryButton()->mapToGlobal(
                    home()->selectedCategoryButton()->rect().center());
                corner = menu->geometry().topLeft();
            }});
    QCOMPARE(corner, expected);
    inMenus([this] { m_window->showCategoryActionsMenuFor("Beta"); }, {cancelByKey});
}

void MainWindowMenusTest::sectionMenuOfNoSection_data()
{
    QTest::addColumn<QString>("section");
    QTest::newRow("no name") << "";
    QTest::newRow("unknown") << "Gone";
}

void MainWindowMenusTest::sectionMenuOfNoSection()
{
    QFETCH(QString, section);
    open();
    inMenus(
        [&] {
            m_window->showCategoryActionsMenuFor(section);
            QCoreApplication::processEvents();
        },
        {});
    QCOMPARE(model()->currentCategory(), QStringLiteral("Alpha"));
}

void MainWindowMenusTest::rightClickOpensTheMenuOfItsPill()
{
    open();
    QWidget* gamma = pill("Gamma");
    QVERIFY(gamma);
    inMenus([gamma] { emit gamma->customContextMenuRequested(gamma->rect().center()); },
            {chooseKey("actions.add_shortcut")});
    QVERIFY(m_window->isItemEditorOpen());
    QCOMPARE(editor()->editingCategory(), QStringLiteral("Gamma"));
}

void MainWindowMenusTest::noSectionMenuWithoutAPill()
{
    open();
    model()->setCurrentCategory({});
    home()->refreshCategories(-1, false);
    inMenus([this] { m_window->showCategoryActionsMenu(); }, {});
}

void MainWindowMenusTest::templatePick_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<QString>("name");
    QTest::newRow("first") << "Kit"
                           << "Kit";
    QTest::newRow("second") << "Box"
                            << "Box";
    QTest::newRow("cancel") << Tr::t("dialog.btn_cancel") << "";
}

void MainWindowMenusTest::templatePick()
{
    QFETCH(QString, row);
    open();
    QString picked("before");
    inMenus([&] { picked = m_window->pickTemplateName(searchField()); }, {choose(row)});
    QTEST(picked, "name");
}

void MainWindowMenusTest::noTemplatePickWithoutTemplates()
{
    LauncherData document = standardDocument();
    document.templates.clear();
    open(document);
    inMenus([this] { QVERIFY(m_window->pickTemplateName(searchField()).isEmpty()); }, {});
    inMenus([this] { QVERIFY(m_window->pickTemplateName(nullptr).isEmpty()); }, {});
}

void MainWindowMenusTest::vanishedItem_data()
{
    QTest::addColumn<QString>("key");
    for (const char* key :
         {"actions.edit_shortcut", "actions.duplicate_shortcut", "actions.delete_shortcut"})
        QTest::newRow(key) << key;
}

void MainWindowMenusTest::vanishedItem()
{
    QFETCH(QString, key);
    open();
    inMenus(openingOf("item"), {[&](QMenu* menu) {
                model()->deleteItem("Alpha", "a2");
                strip()->setFocus();
                choose(Tr::t(key))(menu);
            }});
    QVERIFY(!m_window->isItemEditorOpen());
    QCOMPARE(panel()->currentStep(), ActionsNone);
    QVERIFY(!card()->isVisible());
    QCOMPARE(rows(), QStringList({"One", "Three"}));
    QCOMPARE(focused(), list());
}

void MainWindowMenusTest::itemMovedBehindTheMenu()
{
    open();
    inMenus(openingOf("item"), {[this](QMenu* menu) {
                                    model()->moveItemToCategory("Alpha", "a2", "Beta");
                                    chooseKey("actions.move_item")(menu);
                                },
                                choose("Gamma")});
    QCOMPARE(itemsOf("Beta"), QStringList({"Bee", "Two"}));
    QVERIFY(itemsOf("Gamma").isEmpty());
    inMenus([this] { m_window->showContextMenuForCurrentItem(); }, {cancelByKey});
}

void MainWindowMenusTest::vanishedSection_data()
{
    QTest::addColumn<QString>("menu");
    QTest::addColumn<QString>("key");
    QTest::newRow("edit") << "section"
                          << "actions.edit_section";
    QTest::newRow("delete") << "section"
                            << "actions.delete_section";
}

void MainWindowMenusTest::vanishedSection()
{
    QFETCH(QString, menu);
    QFETCH(QString, key);
    open();
    LauncherData expected;
    const ModalDriver driver([](QWidget* modal) { pressKey(*modal, Qt::Key_Escape); });
    inMenus(openingOf(menu), {[&](QMenu* shown) {
                model()->deleteCategory("Alpha");
                expected = onDisk();
                choose(Tr::t(key))(shown);
            }});
    QCOMPARE(driver.count(), 0);
    QCOMPARE(onDisk(), expected);
    QCOMPARE(model()->currentCategory(), QStringLiteral("Beta"));
    QCOMPARE(focused(), strip());
}

void MainWindowMenusTest::vanishedMoveTarget()
{
    open();
    inMenus(openingOf("move"), {[this](QMenu* menu) {
                model()->deleteCategory("Gamma");
                strip()->setFocus();
                choose("Gamma")(menu);
            }});
    QCOMPARE(rows(), QStringList({"One", "Two", "Three"}));
    QCOMPARE(focused(), strip()); // a failure leaves it alone
    QCOMPARE(onDisk().categories, QStringList({"Alpha", "Beta"}));
}

QTEST_MAIN(MainWindowMenusTest)
#include "tst_mainwindowmenus.moc"
