// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "GlyphWidgets.h"
#include "HomePageFixture.h"
#include "PreviewTooltip.h"

/// The tree of the window is built anew while something lies over it that belongs to the old one.
/// Nothing may reach for what is gone, the window works as before, and the focus comes back.
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

private:
    void rebuild();
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

/// The window does what it is there for.
void MainWindowLayersTest::verifyWorks()
{
    QTRY_VERIFY(!isDipping());
    QTRY_VERIFY(m_window->isActiveWindow());
    QVERIFY(!m_window->isItemEditorOpen());
    QCOMPARE(panel()->currentStep(), ActionsNone);
    QVERIFY(!card()->isVisible());
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
        rebuild();
        QVERIFY(alive);
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

QTEST_MAIN(MainWindowLayersTest)
#include "tst_mainwindowlayers.moc"
