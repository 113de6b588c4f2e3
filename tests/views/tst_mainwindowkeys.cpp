// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CustomMessageBox.h"
#include "EventCounter.h"
#include "HomePageFixture.h"

#include <QWheelEvent>

/// Who gets an event of the window: the page, the window's own keys or the widget. And what becomes
/// of the item that Enter or a double click runs.
class MainWindowKeysTest : public HomePageFixture
{
    Q_OBJECT

private slots:
    void pageComesFirst();
    void otherPageGetsNone();
    void otherWindowsGetNone();
    void keysAreLeftAloneWithoutAPage();
    void unhandledKeyIsTheWidgets();

    void tabLeadsToTheOtherPage_data();
    void tabLeadsToTheOtherPage();
    void tabStaysInAnOpenCard_data();
    void tabStaysInAnOpenCard();

    void cardKeys_data();
    void cardKeys();
    void panelKeys_data();
    void panelKeys();
    void textIsTypedIntoTheEditor();
    void heldEnterOpensTheEditorAndNoMore();
    void heldEnterDuplicatesAndNoMore();
    void heldKeysRepeatWhereTheyBegan();

    void itemIsRun_data();
    void itemIsRun();
    void runningDismissesTheWindow();
    void failureKeepsTheWindow();
    void nothingToRun();
    void vanishedItemIsNotRun();
    void itemMayVanishBehindTheError();

private:
    void openCard(const QString& which);
    bool isFading() const { return runningFade() || !m_window->isVisible(); }
    void repeat(Qt::Key key, int times, const QString& text = {}) const;
    static void clearClipboard() { QGuiApplication::clipboard()->setText("nothing"); }
    static QString clipboard() { return QGuiApplication::clipboard()->text(); }
};

/// Opens "editor" or "panel".
void MainWindowKeysTest::openCard(const QString& which)
{
    if (which == QLatin1String("editor"))
        m_window->openItemEditor("a2");
    else
        m_window->openItemDeleteConfirm("a2");
    QVERIFY(card()->isVisible());
}

void MainWindowKeysTest::pageComesFirst()
{
    open();
    goToRow(0);
    auto* frame = named("searchContainer");
    EventCounter presses(frame, QEvent::MouseButtonPress);
    QTest::mousePress(frame, Qt::LeftButton, {}, QPoint(2, 2));
    QCOMPARE(focused(), searchField());
    QCOMPARE(presses.count, 0); // the page has taken it
    EventCounter wheels(strip(), QEvent::Wheel);
    QWheelEvent wheel(QPointF(5, 5), strip()->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(strip(), &wheel);
    QCOMPARE(wheels.count, 0);
}

void MainWindowKeysTest::otherPageGetsNone()
{
    open();
    auto* field = new QLineEdit;
    stack()->setCurrentIndex(stack()->addWidget(field));
    field->setFocus();
    EventCounter keys(field, QEvent::KeyPress);
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_A, Qt::Key_Down, Qt::Key_Return})
        QTest::keyClick(field, key);
    QCOMPARE(keys.count, 4);
    QVERIFY(!isFading());
    QVERIFY(searchField()->text().isEmpty());
    QTest::keyClick(field, Qt::Key_Tab);
    QCOMPARE(keys.count, 4);
    EventCounter wheels(strip(), QEvent::Wheel);
    QWheelEvent wheel(QPointF(5, 5), QPointF(5, 5), {}, QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(strip(), &wheel);
    QCOMPARE(wheels.count, 1);
}

void MainWindowKeysTest::otherWindowsGetNone()
{
    open();
    QLineEdit other;
    other.show();
    EventCounter keys(&other, QEvent::KeyPress);
    QTest::keyClick(&other, Qt::Key_Escape);
    QTest::keyClick(&other, Qt::Key_A);
    QCOMPARE(keys.count, 2);
    QVERIFY(!isFading());
    QVERIFY(searchField()->text().isEmpty());
}

void MainWindowKeysTest::keysAreLeftAloneWithoutAPage()
{
    open();
    int asked = 0;
    bool isConsumed = false;
    connect(home(), &QObject::destroyed, this, [&] {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
        isConsumed = m_window->handleKeyPress(m_window.get(), &escape) ||
                     m_window->handleKeyPress(m_window.get(), &tab);
        ++asked;
    });
    m_window->rebuildUIPreservingFocus();
    QTRY_COMPARE(asked, 1);
    QVERIFY(!isConsumed);
    QVERIFY(!isFading());
}

void MainWindowKeysTest::unhandledKeyIsTheWidgets()
{
    open();
    searchField()->setText("T");
    searchField()->setFocus();
    QTest::keyClick(searchField(), Qt::Key_Backspace);
    QVERIFY(searchField()->text().isEmpty());
    goToRow(0);
    QTest::keyClick(list(), Qt::Key_Right);
    QCOMPARE(currentRow(), QStringLiteral("Two"));
}

void MainWindowKeysTest::tabLeadsToTheOtherPage_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"searchInput", "homeAddBtn", "homeTemplateBtn", "homeSettingsBtn",
                             "catScroll", "itemList"})
        QTest::newRow(name) << name;
}

void MainWindowKeysTest::tabLeadsToTheOtherPage()
{
    QFETCH(QString, name);
    open();
    auto* widget = m_window->findChild<QWidget*>(name);
    QVERIFY(widget);
    widget->setFocus();
    EventCounter keys(widget, QEvent::KeyPress);
    QTest::keyClick(widget, Qt::Key_Tab);
    QCOMPARE(keys.count, 0);
    QVERIFY(isDipping());
    QTRY_COMPARE(stack()->currentIndex(), 1);
}

void MainWindowKeysTest::tabStaysInAnOpenCard_data()
{
    QTest::addColumn<QString>("which");
    QTest::newRow("editor") << "editor";
    QTest::newRow("panel") << "panel";
}

void MainWindowKeysTest::tabStaysInAnOpenCard()
{
    QFETCH(QString, which);
    open();
    openCard(which);
    const QWidget* before = focused();
    QVERIFY(before);
    const int page = previewPage();
    press(Qt::Key_Tab);
    QVERIFY(!isDipping());
    QCOMPARE(focused(), before);
    QCOMPARE(previewPage(), page);
}

void MainWindowKeysTest::cardKeys_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("isOpen");
    QTest::addColumn<bool>("isTaken");
    const auto add = [](const char* title, const char* name, Qt::Key key, bool isOpen,
                        bool isTaken) {
        QTest::newRow(title) << name << int(key) << isOpen << isTaken;
    };
    add("Esc in the name", "editorNameInput", Qt::Key_Escape, false, true);
    add("Esc in the value", "editorValueInput", Qt::Key_Escape, false, true);
    add("Esc on a pill", "editorTypeBtn", Qt::Key_Escape, false, true);
    add("Esc on the save button", "editorSaveBtn", Qt::Key_Escape, false, true);
    add("Backspace in the name", "editorNameInput", Qt::Key_Backspace, true, false);
    add("Backspace in the value", "editorValueInput", Qt::Key_Backspace, true, false);
    add("Backspace on the icon", "editorIconBtn", Qt::Key_Backspace, false, true);
    add("Backspace on a pill", "editorSectionBtn", Qt::Key_Backspace, false, true);
    add("Backspace on the save button", "editorSaveBtn", Qt::Key_Backspace, false, true);
    add("Left on a button", "editorSaveBtn", Qt::Key_Left, true, false);
    add("letter on a button", "editorSaveBtn", Qt::Key_X, true, false);
    add("Space in the name", "editorNameInput", Qt::Key_Space, true, false);
    add("Delete in the value", "editorValueInput", Qt::Key_Delete, true, false);
}

void MainWindowKeysTest::cardKeys()
{
    QFETCH(QString, name);
    QFETCH(int, key);
    QFETCH(bool, isOpen);
    open();
    goToRow(1);
    m_window->openItemEditor("a2");
    auto* widget = m_window->findChild<QWidget*>(name);
    QVERIFY(widget);
    widget->setFocus();
    QCOMPARE(focused(), widget);
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QTEST(m_window->handleKeyPress(widget, &event), "isTaken");
    QCOMPARE(m_window->isItemEditorOpen(), isOpen);
    QTRY_COMPARE(card()->isVisible(), isOpen);
    QVERIFY(!isFading());
    QCOMPARE(onDisk(), standardDocument());
}

void MainWindowKeysTest::panelKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("isOpen");
    QTest::newRow("Esc") << int(Qt::Key_Escape) << false;
    QTest::newRow("Backspace") << int(Qt::Key_Backspace) << false;
    QTest::newRow("Left, by the panel itself") << int(Qt::Key_Left) << false;
    QTest::newRow("letter") << int(Qt::Key_X) << true;
    QTest::newRow("Down") << int(Qt::Key_Down) << true;
}

void MainWindowKeysTest::panelKeys()
{
    QFETCH(int, key);
    QFETCH(bool, isOpen);
    open();
    goToRow(1);
    m_window->openItemDeleteConfirm("a2");
    QTest::keyClick(focused(), Qt::Key(key));
    QCOMPARE(panel()->currentStep() != ActionsNone, isOpen);
    QTRY_COMPARE(card()->isVisible(), isOpen);
    if (!isOpen)
        QCOMPARE(focused(), list());
    QVERIFY(searchField()->text().isEmpty());
    QVERIFY(!isFading());
    QCOMPARE(rows(), QStringList({"One", "Two", "Three"}));
}

void MainWindowKeysTest::textIsTypedIntoTheEditor()
{
    open();
    m_window->openItemEditor("a2");
    auto* name = named<QLineEdit>("editorNameInput");
    name->setFocus();
    name->setText("Two");
    QTest::keyClick(name, Qt::Key_Backspace);
    QTest::keyClicks(name, "x y");
    QCOMPARE(name->text(), QStringLiteral("Twx y"));
    auto* value = named<QPlainTextEdit>("editorValueInput");
    value->setPlainText("ab");
    value->setFocus();
    value->moveCursor(QTextCursor::End);
    QTest::keyClick(value, Qt::Key_Backspace);
    QCOMPARE(value->toPlainText(), QStringLiteral("a"));
    QVERIFY(searchField()->text().isEmpty());
}

/// What a keyboard sends while a key stays down, to whoever has the focus at each time.
void MainWindowKeysTest::repeat(Qt::Key key, int times, const QString& text) const
{
    for (int i = 0; i < times; ++i) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text, true);
        QApplication::sendEvent(focused(), &event);
    }
}

void MainWindowKeysTest::heldEnterOpensTheEditorAndNoMore()
{
    open();
    goToRow(0);
    inMenus([this] { press(Qt::Key_Space); }, {chooseKey("actions.edit_shortcut")});
    QVERIFY(m_window->isItemEditorOpen());
    repeat(Qt::Key_Return, 3, QStringLiteral("\r"));
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(focused()->objectName(), "editorNameInput");
    QCOMPARE(named<GlyphButton>("editorTypeBtn")->label(), "Text");
}

void MainWindowKeysTest::heldEnterDuplicatesAndNoMore()
{
    open();
    clearClipboard();
    goToRow(0);
    inMenus([this] { press(Qt::Key_Space); }, {chooseKey("actions.duplicate_shortcut")});
    QCOMPARE(focused(), list());
    repeat(Qt::Key_Return, 3, QStringLiteral("\r"));
    QCOMPARE(clipboard(), "nothing");
    QVERIFY(!isFading());
    press(Qt::Key_Return); // anew
    QCOMPARE(clipboard(), "One text");
}

void MainWindowKeysTest::heldKeysRepeatWhereTheyBegan()
{
    open();
    goToRow(0);
    repeat(Qt::Key_Right, 2);
    QCOMPARE(currentRow(), "Three");
    m_window->openItemEditor("a1");
    auto* value = named<QPlainTextEdit>("editorValueInput");
    value->setPlainText({});
    value->setFocus();
    press(Qt::Key_Return);
    repeat(Qt::Key_Return, 2, QStringLiteral("\r"));
    press(Qt::Key_Space);
    repeat(Qt::Key_Space, 1, QStringLiteral(" "));
    QCOMPARE(value->toPlainText(), "\n\n\n  ");
}

void MainWindowKeysTest::itemIsRun_data()
{
    QTest::addColumn<QString>("by");
    for (const char* by : {"call", "call for a row", "Return", "Enter", "double click"})
        QTest::newRow(by) << by;
}

void MainWindowKeysTest::itemIsRun()
{
    QFETCH(QString, by);
    open();
    goToRow(1);
    clearClipboard();
    if (by == QLatin1String("call"))
        m_window->handleItemExecution(nullptr);
    else if (by == QLatin1String("call for a row"))
        m_window->handleItemExecution(list()->item(1));
    else if (by == QLatin1String("Return"))
        QTest::keyClick(list(), Qt::Key_Return);
    else if (by == QLatin1String("Enter"))
        QTest::keyClick(list(), Qt::Key_Enter);
    else {
        const QPoint place = list()->visualItemRect(list()->item(1)).center();
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, place);
    }
    QCOMPARE(clipboard(), QStringLiteral("Two text"));
    QVERIFY(isFading());
}

void MainWindowKeysTest::runningDismissesTheWindow()
{
    open();
    goToRow(0);
    QTest::keyClick(list(), Qt::Key_Return);
    QTRY_VERIFY(!m_window->isVisible());
    QCOMPARE(stored(kLastCategory), QStringLiteral("Alpha"));
}

void MainWindowKeysTest::failureKeepsTheWindow()
{
    LauncherData document = standardDocument();
    document.sectionElements["Alpha"][0] = {
        "a1", "Gone", ItemType::Application, "/no/such/program-at-all", {}};
    open(document);
    goToRow(0);
    bool isOwned = false;
    const ModalDriver driver([&](QWidget* modal) {
        isOwned = qobject_cast<CustomMessageBox*>(modal) && modal->parentWidget() == m_window.get();
        pressKey(*modal, Qt::Key_Return);
    });
    m_window->handleItemExecution(nullptr);
    QCOMPARE(driver.count(), 1);
    QVERIFY(isOwned);
    QVERIFY(!isFading());
}

void MainWindowKeysTest::nothingToRun()
{
    open();
    clearClipboard();
    list()->setCurrentItem(nullptr);
    m_window->handleItemExecution(nullptr);
    QListWidgetItem stranger("One"); // shows no item
    stranger.setData(ItemRoles::RoleElementId, "a1");
    m_window->handleItemExecution(&stranger);
    stranger.setData(ItemRoles::RoleOriginalIndex, 0);
    stranger.setData(ItemRoles::RoleElementId, "no such item");
    m_window->handleItemExecution(&stranger);
    QCOMPARE(clipboard(), QStringLiteral("nothing"));
    QVERIFY(!isFading());
    stranger.setData(ItemRoles::RoleElementId, "a1");
    m_window->handleItemExecution(&stranger);
    QCOMPARE(clipboard(), QStringLiteral("One text"));
}

void MainWindowKeysTest::vanishedItemIsNotRun()
{
    open();
    goToRow(1);
    clearClipboard();
    // As an import would do it in the moment before the page hears of it.
    const_cast<LauncherData&>(model()->data()).sectionElements["Alpha"].removeAt(1);
    QTest::keyClick(list(), Qt::Key_Return);
    QCOMPARE(clipboard(), QStringLiteral("nothing"));
    QVERIFY(!isFading());
}

void MainWindowKeysTest::itemMayVanishBehindTheError()
{
    LauncherData document = standardDocument();
    document.sectionElements["Alpha"][0] = {
        "a1", "Gone", ItemType::Application, "/no/such/program-at-all", {}};
    open(document);
    goToRow(0);
    const ModalDriver driver([this](QWidget* modal) {
        model()->deleteItem("Alpha", "a1");
        pressKey(*modal, Qt::Key_Return);
    });
    QTest::keyClick(list(), Qt::Key_Return);
    QCOMPARE(driver.count(), 1);
    QCOMPARE(rows(), QStringList({"Two", "Three"}));
    QVERIFY(!isFading());
}

QTEST_MAIN(MainWindowKeysTest)
#include "tst_mainwindowkeys.moc"
