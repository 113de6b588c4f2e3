// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "GlyphWidgets.h"
#include "HomePageFixture.h"
#include "PreviewTooltip.h"

/// The tree of the window is built anew, the document becomes another one or the window hides while
/// something lies over it that belongs to what was before. Nothing may reach for what is gone, the
/// window works as before, and the focus is where one can see it.
class MainWindowLayersTest : public HomePageFixture
{
    Q_OBJECT

private slots:
    void rebuildBehindAMenu_data();
    void rebuildBehindAMenu();
    void choiceAfterARebuild_data();
    void choiceAfterARebuild();
    void rebuildBehindADialog_data();
    void rebuildBehindADialog();
    void rebuildUnderACard_data();
    void rebuildUnderACard();
    void rebuildBehindThePickersOfTheEditor_data();
    void rebuildBehindThePickersOfTheEditor();
    void rebuildUnderTheTooltip_data();
    void rebuildUnderTheTooltip();
    void rebuildInAFade_data();
    void rebuildInAFade();
    void rebuildGivesTheFocusBack_data();
    void rebuildGivesTheFocusBack();
    void importBehindAMenu_data();
    void importBehindAMenu();
    void importBehindTheQuestion_data();
    void importBehindTheQuestion();
    void importBehindTheEditor_data();
    void importBehindTheEditor();
    void importBehindAPickerOfTheEditor_data();
    void importBehindAPickerOfTheEditor();
    void hidingBehindAPickerOfTheEditor_data();
    void hidingBehindAPickerOfTheEditor();
    void hidingBehindADialog();

private:
    void rebuild();
    void import(const LauncherData& document);
    void hideAndShow();
    void workLayer(const QString& button, const std::function<void()>& work, const QString& choice);
    void verifyWorks();
};

/// Changes theme or language, as the row of the test says, and waits for the new tree.
void MainWindowLayersTest::rebuild()
{
    QFETCH(QString, change);
    const QPointer<QFrame> old = background();
    if (change == QLatin1String("theme"))
        Theme::saveForceTheme(Theme::isDarkMode() ? 1 : 2);
    else
        Tr::setLanguage(Tr::currentLang == Lang::En ? Lang::Ja : Lang::En);
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!old);
    QVERIFY(home());
}

/// Replaces the document, as another window of the program may do it at any time.
void MainWindowLayersTest::import(const LauncherData& document)
{
    const QString path = QDir(TestHome::dataDir()).filePath(QStringLiteral("import.json"));
    StorageManager::saveData(path, document);
    model()->importData(path);
}

void MainWindowLayersTest::hideAndShow()
{
    m_window->fadeOutAndHide();
    QTRY_VERIFY(!m_window->isVisible());
    m_window->show();
    QTRY_VERIFY(m_window->isVisible());
}

/// Clicks a button of the editor, does `work` once its menu or dialog is there, and then chooses a
/// row of the menu or answers the dialog with Enter; with an empty choice, gives up.
void MainWindowLayersTest::workLayer(const QString& button, const std::function<void()>& work,
                                     const QString& choice)
{
    bool isDone = false;
    QTimer looking;
    connect(&looking, &QTimer::timeout, this, [&] {
        const QPointer<QWidget> popup = QApplication::activePopupWidget();
        const QPointer<QWidget> modal = QApplication::activeModalWidget();
        if (isDone || (!popup && !modal))
            return;
        isDone = true;
        work();
        if (popup && !choice.isEmpty())
            choose(choice)(qobject_cast<QMenu*>(popup));
        if (popup)
            popup->close();
        if (modal)
            pressKey(*modal, choice.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
    });
    looking.start(0);
    m_window->findChild<QPushButton*>(button)->click();
    QVERIFY(isDone);
    regainKeyboard();
}

/// The window does what it is there for.
void MainWindowLayersTest::verifyWorks()
{
    QTRY_VERIFY(!isDipping());
    QTRY_VERIFY(m_window->isActiveWindow());
    QVERIFY(!m_window->isItemEditorOpen());
    QCOMPARE(panel()->currentStep(), ActionsNone);
    // With the focus inside it goes one turn of the event loop later.
    QTRY_VERIFY(!card()->isVisible());
    m_window->openItemEditor("a1");
    QVERIFY(card()->isVisible());
    press(Qt::Key_Escape);
    QTRY_VERIFY(!card()->isVisible());
    QVERIFY(!backdrop()->isVisible());
    goToRow(0);
    QTest::keyClick(list(), Qt::Key_Right);
    QCOMPARE(list()->currentRow(), 1);
}

namespace
{

/// Rows for what lies over the window, each with both the changes that have it built anew.
void addRows(const QStringList& layers)
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("layer");
    for (const QString& layer : layers) {
        for (const char* change : {"theme", "language"})
            QTest::addRow("%s, %s", qPrintable(layer), change) << change << layer;
    }
}

} // namespace

void MainWindowLayersTest::rebuildBehindAMenu_data()
{
    addRows({"item", "move", "section", "section by its pill", "add", "template", "template pick"});
}

void MainWindowLayersTest::rebuildBehindAMenu()
{
    QFETCH(QString, layer);
    open();
    QString name = "catScroll";
    QList<MenuScript::Action> actions;
    if (layer == QLatin1String("move"))
        actions.append(chooseKey("actions.move_item"));
    else if (layer == QLatin1String("template pick"))
        actions.append(chooseKey("template.from_template"));
    actions.append([this](QMenu* menu) {
        const QPointer<QMenu> alive(menu);
        rebuild();
        QVERIFY(alive); // it is the window's, not the tree's
        cancelByKey(menu);
    });
    std::function<void()> opening;
    if (layer == QLatin1String("item") || layer == QLatin1String("move")) {
        goToRow(1);
        name = "itemList";
        opening = [this] { QTest::keyClick(list(), Qt::Key_Space); };
    } else if (layer == QLatin1String("section")) {
        opening = [this] { QTest::keyClick(strip(), Qt::Key_Return); };
    } else if (layer == QLatin1String("section by its pill")) {
        opening = [this] {
            emit home()->selectedCategoryButton()->customContextMenuRequested(QPoint(1, 1));
        };
    } else {
        name = layer == QLatin1String("add") ? "homeAddBtn" : "homeTemplateBtn";
        opening = [this, name] {
            auto* button = m_window->findChild<QPushButton*>(name);
            button->setFocus();
            QTest::mouseClick(button, Qt::LeftButton);
        };
    }
    inMenus(opening, actions);
    QVERIFY(focused() && m_window->isAncestorOf(focused()));
    QCOMPARE(focused()->objectName(), name);
    verifyWorks();
}

void MainWindowLayersTest::choiceAfterARebuild_data()
{
    addRows({"actions.edit_shortcut", "actions.duplicate_shortcut", "actions.delete_shortcut",
             "actions.move_item"});
}

void MainWindowLayersTest::choiceAfterARebuild()
{
    QFETCH(QString, layer);
    open();
    goToRow(1);
    const QString row = Tr::t(layer); // as it was before the language changed
    QList<MenuScript::Action> actions{[&](QMenu* menu) {
        rebuild();
        choose(row)(menu);
    }};
    if (layer == QLatin1String("actions.move_item"))
        actions.append(choose("Gamma"));
    inMenus([this] { QTest::keyClick(list(), Qt::Key_Space); }, actions);
    if (layer == QLatin1String("actions.edit_shortcut")) {
        QVERIFY(m_window->isItemEditorOpen());
        QCOMPARE(named<QLineEdit>("editorNameInput")->text(), QStringLiteral("Two"));
        press(Qt::Key_Escape);
    } else if (layer == QLatin1String("actions.delete_shortcut")) {
        QCOMPARE(panel()->currentStep(), ActionsConfirmDelete);
        press(Qt::Key_Escape);
    } else if (layer == QLatin1String("actions.move_item")) {
        QCOMPARE(itemsOf("Gamma"), QStringList{"Two"});
    } else {
        QCOMPARE(currentRow(), QStringLiteral("Two 2"));
    }
    QTRY_VERIFY(!card()->isVisible());
    verifyWorks();
}

void MainWindowLayersTest::rebuildBehindADialog_data()
{
    addRows({"new section", "edited section", "template", "used template", "section's deletion",
             "warning", "launch error"});
}

void MainWindowLayersTest::rebuildBehindADialog()
{
    QFETCH(QString, layer);
    LauncherData document = standardDocument();
    document.sectionElements["Alpha"].append(
        {"a4", "Gone", ItemType::Application, "/no/such/program-at-all", {}});
    open(document);
    goToRow(3);
    const ModalDriver driver([this](QWidget* modal) {
        const QPointer<QWidget> alive(modal);
        const bool isDimmed = backdrop()->isVisible();
        rebuild();
        QVERIFY(alive);
        QCOMPARE(backdrop()->isVisible(), isDimmed);
        QCOMPARE(backdrop()->geometry() == home()->rect(), isDimmed);
        QVERIFY(modal->isActiveWindow()); // the window behind leaves it the keyboard
        const auto buttons = modal->findChildren<QPushButton*>();
        if (modal->findChild<QLineEdit*>())
            pressKey(*modal, Qt::Key_Escape);
        else
            buttons.constLast()->click();
    });
    if (layer == QLatin1String("new section"))
        m_window->addSectionViaDialog(m_window.get());
    else if (layer == QLatin1String("edited section"))
        m_window->editSectionViaDialog(m_window.get(), "Alpha");
    else if (layer == QLatin1String("template"))
        m_window->saveSectionAsTemplate(m_window.get(), "Alpha");
    else if (layer == QLatin1String("used template"))
        m_window->createSectionFromTemplateViaDialog(m_window.get(), "Kit");
    else if (layer == QLatin1String("section's deletion"))
        m_window->deleteSectionWithConfirm(m_window.get(), "Alpha");
    else if (layer == QLatin1String("warning"))
        m_window->saveSectionAsTemplate(m_window.get(), "Gamma");
    else
        QTest::keyClick(list(), Qt::Key_Return);
    QCOMPARE(driver.count(), 1);
    QVERIFY(backdrop()->isHidden());
    QCOMPARE(onDisk(), document);
    regainKeyboard();
    QCOMPARE(focused(), list());
    verifyWorks();
}

void MainWindowLayersTest::rebuildUnderACard_data()
{
    addRows({"editor", "panel"});
}

void MainWindowLayersTest::rebuildUnderACard()
{
    QFETCH(QString, layer);
    open();
    goToRow(1);
    if (layer == QLatin1String("editor"))
        m_window->openItemEditor("a2");
    else
        m_window->openItemDeleteConfirm("a2");
    QVERIFY(card()->isVisible());
    rebuild();
    QVERIFY(!card()->isVisible());
    // Nothing that is in view bears the name of what had the focus.
    QCOMPARE(focused(), searchField());
    QCOMPARE(rows(), QStringList({"One", "Two", "Three"}));
    QCOMPARE(onDisk(), standardDocument());
    verifyWorks();
}

void MainWindowLayersTest::rebuildBehindThePickersOfTheEditor_data()
{
    addRows({"editorTypeBtn", "editorSectionBtn", "editorIconBtn", "warning"});
}

void MainWindowLayersTest::rebuildBehindThePickersOfTheEditor()
{
    QFETCH(QString, layer);
    open();
    m_window->openItemEditor({});
    const QString button = layer == QLatin1String("warning") ? "editorSaveBtn" : layer;
    bool isRebuilt = false;
    QTimer looking;
    connect(&looking, &QTimer::timeout, this, [&] {
        if (isRebuilt || (!QApplication::activePopupWidget() && !QApplication::activeModalWidget()))
            return;
        isRebuilt = true;
        rebuild();
        if (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
        if (QWidget* modal = QApplication::activeModalWidget())
            modal->close();
    });
    looking.start(0);
    m_window->findChild<QPushButton*>(button)->click();
    QVERIFY(isRebuilt);
    regainKeyboard();
    QCOMPARE(onDisk(), standardDocument());
    verifyWorks();
}

void MainWindowLayersTest::rebuildUnderTheTooltip_data()
{
    addRows({"tooltip"});
}

void MainWindowLayersTest::rebuildUnderTheTooltip()
{
    open();
    goToRow(1);
    home()->showHoverPreview();
    const QPointer<PreviewTooltip> tooltip = m_window->findChild<PreviewTooltip*>();
    QVERIFY(tooltip && tooltip->isVisible());
    rebuild();
    QVERIFY(!tooltip);
    QCOMPARE(focused(), list());
    verifyWorks();
}

void MainWindowLayersTest::rebuildInAFade_data()
{
    addRows({"fade"});
}

void MainWindowLayersTest::rebuildInAFade()
{
    open();
    m_window->openItemEditor("a2");
    m_window->fadeOutAndHide();
    QVERIFY(runningFade());
    rebuild();
    QTRY_VERIFY(!m_window->isVisible());
    ForeignProgram foreign;
    foreign.takeFocus();
    m_window->show();
    QTRY_COMPARE(focused(), strip());
    verifyWorks();
}

void MainWindowLayersTest::rebuildGivesTheFocusBack_data()
{
    addRows({"searchInput", "homeAddBtn", "homeTemplateBtn", "homeSettingsBtn", "catScroll",
             "itemList"});
}

void MainWindowLayersTest::rebuildGivesTheFocusBack()
{
    QFETCH(QString, layer);
    open();
    model()->setCurrentCategory("Beta");
    home()->refreshCategories(-1, false);
    m_window->findChild<QWidget*>(layer)->setFocus();
    QCOMPARE(focused()->objectName(), layer);
    const QPointer<QWidget> before = focused();
    rebuild();
    QVERIFY(!before);
    QVERIFY(focused());
    QCOMPARE(focused()->objectName(), layer);
    QCOMPARE(home()->selectedCategoryButton()->text(), QStringLiteral("Beta"));
    QCOMPARE(rows(), QStringList{"Bee"});
}

void MainWindowLayersTest::importBehindAMenu_data()
{
    QTest::addColumn<QString>("key");
    for (const char* key : {"dialog.btn_cancel", "actions.edit_shortcut",
                            "actions.duplicate_shortcut", "actions.delete_shortcut"})
        QTest::newRow(key) << key;
}

void MainWindowLayersTest::importBehindAMenu()
{
    QFETCH(QString, key);
    open();
    goToRow(1);
    LauncherData emptied = standardDocument();
    emptied.sectionElements["Alpha"].clear();
    inMenus([this] { QTest::keyClick(list(), Qt::Key_Space); }, {[&](QMenu* menu) {
                import(emptied);
                choose(Tr::t(key))(menu);
            }});
    QVERIFY(rows().isEmpty());
    QVERIFY(itemsOf("Alpha").isEmpty());
    QVERIFY(focused() && m_window->isAncestorOf(focused()));
    QVERIFY2(focused()->isVisible(), qPrintable(focused()->objectName()));
    import(standardDocument());
    verifyWorks();
}

void MainWindowLayersTest::importBehindTheQuestion_data()
{
    QTest::addColumn<bool>("isEmptied");
    QTest::newRow("items left") << false;
    QTest::newRow("no items left") << true;
}

void MainWindowLayersTest::importBehindTheQuestion()
{
    QFETCH(bool, isEmptied);
    open();
    goToRow(1);
    m_window->openItemDeleteConfirm("a2");
    LauncherData imported = standardDocument();
    imported.sectionElements["Alpha"] =
        isEmptied ? QVector<LauncherElement>() : QVector<LauncherElement>{snippet("a9", "New")};
    import(imported);
    QCOMPARE(panel()->currentStep(), ActionsNone);
    QTRY_VERIFY(!card()->isVisible());
    QVERIFY(!backdrop()->isVisible());
    QCOMPARE(focused(), isEmptied ? named("emptyAddBtn") : list());
    QVERIFY(focused()->isVisible());
    press(Qt::Key_Escape); // goes to the window now, which hides
    QTRY_VERIFY(!m_window->isVisible());
    QCOMPARE(itemsOf("Alpha"), isEmptied ? QStringList() : QStringList("New"));
}

void MainWindowLayersTest::importBehindTheEditor_data()
{
    QTest::addColumn<QStringList>("sections");
    QTest::addColumn<bool>("hasItem");
    QTest::addColumn<int>("warnings");
    QTest::newRow("nothing gone") << QStringList{"Alpha", "Beta"} << true << 0;
    QTest::newRow("item gone") << QStringList{"Alpha", "Beta"} << false << 0;
    QTest::newRow("section renamed") << QStringList{"Omega", "Beta"} << true << 1;
    QTest::newRow("section gone") << QStringList{"Beta"} << false << 1;
}

void MainWindowLayersTest::importBehindTheEditor()
{
    QFETCH(QStringList, sections);
    QFETCH(bool, hasItem);
    QFETCH(int, warnings);
    open();
    goToRow(1);
    m_window->openItemEditor("a2");
    auto* name = named<QLineEdit>("editorNameInput");
    name->selectAll();
    QTest::keyClicks(name, "Typed");
    LauncherData imported;
    imported.categories = sections;
    imported.defaultCategory = sections.constFirst();
    if (hasItem)
        imported.sectionElements[sections.constFirst()] = {snippet("a2", "Two")};
    import(imported);
    QVERIFY(m_window->isItemEditorOpen());
    QCOMPARE(focused(), name);
    // What has been typed survives, wherever it has to go now.
    const ModalDriver driver([](QWidget* modal) { pressKey(*modal, Qt::Key_Return); });
    auto* save = named<QPushButton>("editorSaveBtn");
    save->click();
    QCOMPARE(driver.count(), warnings);
    QCOMPARE(name->text(), QStringLiteral("Typed"));
    if (warnings > 0) {
        QVERIFY(m_window->isItemEditorOpen());
        regainKeyboard();
        save->click();
    }
    QVERIFY(!m_window->isItemEditorOpen());
    QCOMPARE(onDisk().categories, sections);
    QCOMPARE(rows().last(), QStringLiteral("Typed"));
    QCOMPARE(currentRow(), QStringLiteral("Typed"));
    QCOMPARE(model()->currentCategory(), sections.constFirst());
    QCOMPARE(focused(), list());
    QTRY_VERIFY(!card()->isVisible());
    QVERIFY(!backdrop()->isVisible());
}

void MainWindowLayersTest::importBehindAPickerOfTheEditor_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("choice");
    QTest::newRow("type") << "editorTypeBtn"
                          << "File";
    QTest::newRow("type, given up") << "editorTypeBtn"
                                    << "";
    QTest::newRow("section") << "editorSectionBtn"
                             << "Gamma";
    QTest::newRow("section, given up") << "editorSectionBtn"
                                       << "";
    QTest::newRow("icon") << "editorIconBtn"
                          << "ok";
    QTest::newRow("icon, given up") << "editorIconBtn"
                                    << "";
    QTest::newRow("warning") << "editorSaveBtn"
                             << "ok";
}

void MainWindowLayersTest::importBehindAPickerOfTheEditor()
{
    QFETCH(QString, button);
    QFETCH(QString, choice);
    open();
    m_window->openItemEditor({});
    LauncherData imported;
    imported.categories = QStringList{"Omega"};
    imported.defaultCategory = "Omega";
    workLayer(
        button, [&] { import(imported); }, choice);
    QVERIFY(m_window->isItemEditorOpen());
    QVERIFY(focused() && editor()->isAncestorOf(focused()) && focused()->isVisible());
    QTest::keyClicks(named("editorNameInput"), "Name");
    QTest::keyClicks(named("editorValueInput"), "Value");
    const ModalDriver driver([](QWidget* modal) { pressKey(*modal, Qt::Key_Return); });
    auto* save = named<QPushButton>("editorSaveBtn");
    save->click(); // into a section that is gone
    QCOMPARE(driver.count(), 1);
    regainKeyboard();
    save->click();
    QCOMPARE(itemsOf("Omega"), QStringList("Name"));
    QCOMPARE(onDisk().categories, QStringList("Omega"));
}

void MainWindowLayersTest::hidingBehindAPickerOfTheEditor_data()
{
    importBehindAPickerOfTheEditor_data();
}

void MainWindowLayersTest::hidingBehindAPickerOfTheEditor()
{
    QFETCH(QString, button);
    QFETCH(QString, choice);
    open();
    goToRow(1);
    m_window->openItemEditor({});
    workLayer(
        button, [this] { hideAndShow(); }, choice);
    QVERIFY(!m_window->isItemEditorOpen());
    QVERIFY(focused());
    QVERIFY2(focused()->isVisible(), qPrintable(focused()->objectName()));
    QVERIFY2(focused() == strip() || focused() == list(), qPrintable(focused()->objectName()));
    QCOMPARE(onDisk(), standardDocument());
    verifyWorks();
}

void MainWindowLayersTest::hidingBehindADialog()
{
    open();
    const ModalDriver driver([this](QWidget* modal) {
        const QPointer<QWidget> alive(modal);
        hideAndShow();
        QVERIFY(alive);
        pressKey(*modal, Qt::Key_Escape);
    });
    QVERIFY(!m_window->addSectionViaDialog(m_window.get()));
    QCOMPARE(driver.count(), 1);
    QVERIFY(!backdrop()->isVisible());
    regainKeyboard();
    QCOMPARE(focused(), strip());
    QTRY_VERIFY(!g_blockAutoQuit);
    QCOMPARE(g_autoQuitBlockCount, 0);
    verifyWorks();
}

QTEST_MAIN(MainWindowLayersTest)
#include "tst_mainwindowlayers.moc"
