// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HomePageFixture.h"

#include <QSignalSpy>
#include <QStackedWidget>

/// How the editor and the question before a deletion open and close over the home page: what they
/// are about, what is selected and who has the focus afterwards.
class MainWindowEditorTest : public HomePageFixture
{
    Q_OBJECT

private slots:
    void editorOpens_data();
    void editorOpens();
    void editorOfAnItemGoneIsForANewOne();
    void secondOpeningKeepsTheWayBack();
    void cancelGivesTheFocusBack_data();
    void cancelGivesTheFocusBack();
    void cancelWithoutAWayBack_data();
    void cancelWithoutAWayBack();
    void cancelLeavesTheDocument();
    void saveSelectsTheItem_data();
    void saveSelectsTheItem();
    void saveIntoAnotherSectionShowsIt();
    void firstItemOfASection();
    void savedItemOutOfViewFocusesTheStrip();
    void editorOfASectionGone();

    void editorOverThePanelGivesItBack();
    void escapeClosesBothOfThem();
    void panelOpens();
    void panelOfAnItemGone();
    void panelCloses_data();
    void panelCloses();
    void lastItemGoneFocusesTheStrip();

    void showGoesBackToTheStart_data();
    void showGoesBackToTheStart();
    void showKeepsTheSection();
    void showChoosesASection();
    void modelChangesReachThePage();
    void sectionTheUserLeftComesBack();

private:
    void save() const { named<QPushButton>("editorSaveBtn")->click(); }
    void fill(const QString& name, const QString& value) const;
    void hideAndShow();
    void openPanelList();
};

/// Types into the form that is open.
void MainWindowEditorTest::fill(const QString& name, const QString& value) const
{
    auto* nameField = named<QLineEdit>("editorNameInput");
    nameField->selectAll();
    QTest::keyClicks(nameField, name);
    auto* valueField = named<QPlainTextEdit>("editorValueInput");
    valueField->selectAll();
    QTest::keyClicks(valueField, value);
}

void MainWindowEditorTest::hideAndShow()
{
    m_window->fadeOutAndHide();
    QTRY_VERIFY(!m_window->isVisible());
    ForeignProgram foreign;
    foreign.takeFocus();
    m_window->show();
    QTRY_VERIFY(m_window->isActiveWindow());
}

/// The actions of an item as the panel itself lists them, one step before the question.
void MainWindowEditorTest::openPanelList()
{
    goToRow(1);
    m_window->openItemDeleteConfirm("a2");
    panel()->openItemMenu("Alpha", "a2", true);
    QCOMPARE(panel()->currentStep(), ActionsList);
}

void MainWindowEditorTest::editorOpens_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("category");
    QTest::newRow("new item") << ""
                              << "Add Shortcut"
                              << ""
                              << "Alpha";
    QTest::newRow("item") << "a2"
                          << "Edit Shortcut"
                          << "Two"
                          << "Alpha";
    QTest::newRow("item of another section") << "b1"
                                             << "Edit Shortcut"
                                             << "Bee"
                                             << "Beta";
}

void MainWindowEditorTest::editorOpens()
{
    QFETCH(QString, id);
    open();
    m_window->openItemEditor(id);
    QVERIFY(m_window->isItemEditorOpen());
    QTEST(cardTitle(), "title");
    QCOMPARE(previewPage(), int(HomeView::PagePreviewEditor));
    QVERIFY(card()->isVisible());
    QVERIFY(backdrop()->isVisible());
    QTEST(named<QLineEdit>("editorNameInput")->text(), "name");
    QTEST(editor()->editingCategory(), "category");
    QCOMPARE(focused(), named("editorNameInput"));
}

void MainWindowEditorTest::editorOfAnItemGoneIsForANewOne()
{
    open();
    m_window->openItemEditor("gone");
    QVERIFY(named<QLineEdit>("editorNameInput")->text().isEmpty());
    QCOMPARE(editor()->editingCategory(), QStringLiteral("Alpha"));
    fill("Later", "text");
    save();
    QCOMPARE(rows(), QStringList({"One", "Two", "Three", "Later"}));
}

void MainWindowEditorTest::secondOpeningKeepsTheWayBack()
{
    open();
    home()->addButton()->setFocus();
    m_window->openItemEditor({});
    m_window->openItemEditor("a1");
    QCOMPARE(named<QLineEdit>("editorNameInput")->text(), QStringLiteral("One"));
    m_window->closeItemEditor(-1);
    QCOMPARE(focused(), home()->addButton());
}

void MainWindowEditorTest::cancelGivesTheFocusBack_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("by");
    for (const char* name : {"homeAddBtn", "catScroll", "itemList", "searchInput"}) {
        for (const char* by : {"Esc", "button", "call", "backdrop"})
            QTest::addRow("%s, %s", name, by) << name << by;
    }
}

void MainWindowEditorTest::cancelGivesTheFocusBack()
{
    QFETCH(QString, name);
    QFETCH(QString, by);
    open();
    auto* widget = m_window->findChild<QWidget*>(name);
    QVERIFY(widget);
    widget->setFocus();
    m_window->openItemEditor({});
    QVERIFY(focused() != widget);
    if (by == QLatin1String("Esc"))
        press(Qt::Key_Escape);
    else if (by == QLatin1String("button"))
        named<QPushButton>("editorCancelBtn")->click();
    else if (by == QLatin1String("call"))
        m_window->closeItemEditor(-1);
    else
        named<QPushButton>("gridOverlayBackdrop")->click();
    QVERIFY(!m_window->isItemEditorOpen());
    QCOMPARE(focused(), widget);
    QTRY_VERIFY(!card()->isVisible());
    QVERIFY(!backdrop()->isVisible());
    QCOMPARE(focused(), widget);
}

void MainWindowEditorTest::cancelWithoutAWayBack_data()
{
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("name");
    QTest::newRow("rows") << "Alpha"
                          << "itemList";
    QTest::newRow("no rows") << "Gamma"
                             << "catScroll";
}

void MainWindowEditorTest::cancelWithoutAWayBack()
{
    QFETCH(QString, section);
    open();
    model()->setCurrentCategory(section);
    home()->refreshCategories(-1, false);
    auto* passing = new QLineEdit(home());
    passing->show();
    passing->setFocus();
    m_window->openItemEditor({});
    delete passing;
    m_window->closeItemEditor(-1);
    QTEST(focused()->objectName(), "name");
}

void MainWindowEditorTest::cancelLeavesTheDocument()
{
    open();
    m_window->openItemEditor("a2");
    fill("Other", "value");
    press(Qt::Key_Escape);
    QCOMPARE(onDisk(), standardDocument());
    QCOMPARE(rows(), QStringList({"One", "Two", "Three"}));
    QTRY_COMPARE(previewPage(), int(HomeView::PagePreviewDetail));
}

void MainWindowEditorTest::saveSelectsTheItem_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("new item") << "" << QStringList{"One", "Two", "Three", "Saved"};
    QTest::newRow("first item") << "a1" << QStringList{"Saved", "Two", "Three"};
    QTest::newRow("last item") << "a3" << QStringList{"One", "Two", "Saved"};
}

void MainWindowEditorTest::saveSelectsTheItem()
{
    QFETCH(QString, id);
    open();
    home()->addButton()->setFocus();
    m_window->openItemEditor(id);
    fill("Saved", "value");
    save();
    QVERIFY(!m_window->isItemEditorOpen());
    QTEST(rows(), "names");
    QCOMPARE(currentRow(), QStringLiteral("Saved"));
    QCOMPARE(focused(), list());
    QTRY_VERIFY(!card()->isVisible());
    QCOMPARE(focused(), list());
    QCOMPARE(onDisk(), model()->data());
}

void MainWindowEditorTest::saveIntoAnotherSectionShowsIt()
{
    open();
    goToRow(1);
    m_window->openItemEditor("a2");
    inMenus([this] { named<QPushButton>("editorSectionBtn")->click(); }, {choose("Beta")});
    save();
    QCOMPARE(model()->currentCategory(), QStringLiteral("Beta"));
    QCOMPARE(home()->selectedCategoryButton()->text(), QStringLiteral("Beta"));
    QCOMPARE(rows(), QStringList({"Bee", "Two"}));
    QCOMPARE(currentRow(), QStringLiteral("Two"));
    QCOMPARE(focused(), list());
    QCOMPARE(itemsOf("Alpha"), QStringList({"One", "Three"}));
}

void MainWindowEditorTest::firstItemOfASection()
{
    open();
    model()->setCurrentCategory("Gamma");
    home()->refreshCategories(-1, false);
    named<QPushButton>("emptyAddBtn")->click();
    QVERIFY(m_window->isItemEditorOpen());
    fill("First", "value");
    save();
    QCOMPARE(rows(), QStringList{"First"});
    QCOMPARE(focused(), list());
    QTRY_VERIFY(!card()->isVisible());
    QCOMPARE(focused(), list());
}

void MainWindowEditorTest::savedItemOutOfViewFocusesTheStrip()
{
    open();
    searchField()->setText("Two");
    QCOMPARE(rows(), QStringList{"Two"});
    m_window->openItemEditor("a2");
    fill("Elsewhere", "value");
    save();
    QVERIFY(rows().isEmpty());
    QCOMPARE(focused(), strip());
    QTRY_VERIFY(!card()->isVisible());
    QCOMPARE(focused(), strip());
}

void MainWindowEditorTest::editorOfASectionGone()
{
    open();
    m_window->openItemEditor("a2");
    model()->deleteCategory("Alpha");
    QVERIFY(m_window->isItemEditorOpen());
    press(Qt::Key_Escape);
    QVERIFY(!m_window->isItemEditorOpen());
    QCOMPARE(model()->currentCategory(), QStringLiteral("Beta"));
    QCOMPARE(rows(), QStringList{"Bee"});
    QTRY_VERIFY(!card()->isVisible());
}

void MainWindowEditorTest::editorOverThePanelGivesItBack()
{
    open();
    openPanelList();
    QWidget* actions = focused();
    QCOMPARE(actions->objectName(), QStringLiteral("actionsList"));
    emit panel()->editItemRequested("a2");
    QVERIFY(m_window->isItemEditorOpen());
    QCOMPARE(cardTitle(), QStringLiteral("Edit Shortcut"));
    named<QPushButton>("editorCancelBtn")->click();
    QCOMPARE(focused(), actions);
    QTRY_COMPARE(previewPage(), int(HomeView::PagePreviewActions));
    QVERIFY(card()->isVisible());
    QCOMPARE(panel()->currentStep(), ActionsList);
    QCOMPARE(focused(), actions);
    // A saved item has no use for the panel any more.
    emit panel()->editItemRequested("a2");
    fill("Saved", "value");
    save();
    QCOMPARE(panel()->currentStep(), ActionsNone);
    QTRY_VERIFY(!card()->isVisible());
    QCOMPARE(focused(), list());
}

void MainWindowEditorTest::escapeClosesBothOfThem()
{
    open();
    openPanelList();
    emit panel()->editItemRequested("a2");
    press(Qt::Key_Escape);
    QVERIFY(!m_window->isItemEditorOpen());
    QCOMPARE(panel()->currentStep(), ActionsNone);
    QCOMPARE(focused(), list());
    QTRY_VERIFY(!card()->isVisible());
    QCOMPARE(focused(), list());
}

void MainWindowEditorTest::panelOpens()
{
    open();
    m_window->openItemDeleteConfirm("b1"); // wherever the item is
    QCOMPARE(previewPage(), int(HomeView::PagePreviewActions));
    QCOMPARE(panel()->currentStep(), ActionsConfirmDelete);
    QVERIFY(card()->isVisible());
    QCOMPARE(focused()->objectName(), QStringLiteral("actionsList"));
    QTest::keyClick(focused(), Qt::Key_Return);
    QVERIFY(itemsOf("Beta").isEmpty());
    QVERIFY(onDisk().sectionElements.value("Beta").isEmpty());
}

void MainWindowEditorTest::panelOfAnItemGone()
{
    open();
    const int page = previewPage();
    m_window->openItemDeleteConfirm("gone");
    m_window->openItemDeleteConfirm({});
    QCOMPARE(panel()->currentStep(), ActionsNone);
    QCOMPARE(previewPage(), page);
    QVERIFY(!card()->isVisible());
    QCOMPARE(focused(), strip());
}

void MainWindowEditorTest::panelCloses_data()
{
    QTest::addColumn<QString>("by");
    for (const char* by : {"Esc", "Backspace", "Left", "backdrop", "call"})
        QTest::newRow(by) << by;
}

void MainWindowEditorTest::panelCloses()
{
    QFETCH(QString, by);
    open();
    goToRow(1);
    m_window->openItemDeleteConfirm("a2");
    if (by == QLatin1String("Esc"))
        press(Qt::Key_Escape);
    else if (by == QLatin1String("Backspace"))
        press(Qt::Key_Backspace);
    else if (by == QLatin1String("Left"))
        press(Qt::Key_Left);
    else if (by == QLatin1String("backdrop"))
        named<QPushButton>("gridOverlayBackdrop")->click();
    else
        m_window->closeItemActionsPanel();
    QCOMPARE(panel()->currentStep(), ActionsNone);
    QCOMPARE(focused(), list());
    QTRY_VERIFY(!card()->isVisible());
    QVERIFY(!backdrop()->isVisible());
    QCOMPARE(currentRow(), QStringLiteral("Two"));
    QCOMPARE(onDisk(), standardDocument());
}

void MainWindowEditorTest::lastItemGoneFocusesTheStrip()
{
    open();
    model()->setCurrentCategory("Beta");
    home()->refreshCategories(-1, false);
    goToRow(0);
    m_window->openItemDeleteConfirm("b1");
    QTest::keyClick(focused(), Qt::Key_Return);
    QVERIFY(rows().isEmpty());
    QCOMPARE(focused(), strip());
    QTRY_VERIFY(!card()->isVisible());
    QCOMPARE(focused(), strip());
}

void MainWindowEditorTest::showGoesBackToTheStart_data()
{
    QTest::addColumn<QString>("left");
    for (const char* left : {"editor", "panel", "search", "other page"})
        QTest::newRow(left) << left;
}

void MainWindowEditorTest::showGoesBackToTheStart()
{
    QFETCH(QString, left);
    open();
    if (left == QLatin1String("editor")) {
        m_window->openItemEditor("a2");
        fill("Other", "value");
    } else if (left == QLatin1String("panel")) {
        m_window->openItemDeleteConfirm("a2");
    } else if (left == QLatin1String("search")) {
        searchField()->setFocus();
        searchField()->setText("Bee");
    } else {
        stack()->setCurrentIndex(stack()->addWidget(new QWidget));
    }
    hideAndShow();
    QCOMPARE(stack()->currentIndex(), 0);
    QVERIFY(!m_window->isItemEditorOpen());
    QCOMPARE(panel()->currentStep(), ActionsNone);
    QVERIFY(searchField()->text().isEmpty());
    QCOMPARE(rows(), QStringList({"One", "Two", "Three"}));
    QCOMPARE(focused(), strip());
    QTRY_VERIFY(!card()->isVisible());
    QVERIFY(!backdrop()->isVisible());
    QCOMPARE(focused(), strip());
    QCOMPARE(onDisk(), standardDocument());
}

void MainWindowEditorTest::showKeepsTheSection()
{
    open();
    model()->setCurrentCategory("Gamma");
    hideAndShow();
    QCOMPARE(model()->currentCategory(), QStringLiteral("Gamma"));
    QCOMPARE(home()->selectedCategoryButton()->text(), QStringLiteral("Gamma"));
    QVERIFY(rows().isEmpty());
    QCOMPARE(stored(kLastCategory), QStringLiteral("Gamma"));
}

void MainWindowEditorTest::showChoosesASection()
{
    open();
    model()->setCurrentCategory({});
    hideAndShow();
    QCOMPARE(model()->currentCategory(), QStringLiteral("Alpha"));
    QCOMPARE(rows(), QStringList({"One", "Two", "Three"}));
}

void MainWindowEditorTest::modelChangesReachThePage()
{
    open();
    model()->saveItem("Alpha", snippet("a4", "Four"), -1);
    QCOMPARE(rows(), QStringList({"One", "Two", "Three", "Four"}));
    model()->addCategory("Delta", AlphaIcon);
    QCOMPARE(home()->selectedCategoryButton()->text(), QStringLiteral("Delta"));
    QVERIFY(rows().isEmpty());
    m_window->openItemEditor({});
    model()->deleteCategory("Delta"); // leaves the editor that is open
    QVERIFY(card()->isVisible());
    QCOMPARE(previewPage(), int(HomeView::PagePreviewEditor));
}

void MainWindowEditorTest::sectionTheUserLeftComesBack()
{
    store(kLastCategory, "Beta");
    open();
    QCOMPARE(home()->selectedCategoryButton()->text(), QStringLiteral("Beta"));
    QCOMPARE(rows(), QStringList{"Bee"});
}

QTEST_MAIN(MainWindowEditorTest)
#include "tst_mainwindoweditor.moc"
