// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"
#include "CardHeader.h"
#include "CustomMessageBox.h"
#include "IconHelper.h"
#include "ItemEditorPanel.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "MenuSteps.h"
#include "TemplateEditorDialog.h"
#include "TemplateItemDelegate.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>

#include <memory>

namespace
{

LauncherElement item(const QString& name, const QString& type = ItemType::Snippet,
                     const QString& icon = {})
{
    return {{}, name, type, name + QStringLiteral(" text"), icon};
}

SectionTemplate threeItems()
{
    return {"Kit", 0xE86F, {item("One"), item("Two", ItemType::File, "glyph:ea5f"), item("Three")}};
}

} // namespace

class TemplateEditorDialogTest : public QObject, protected MenuSteps
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void looksLikeEveryDialog();
    void header();
    void listPageFollowsTheMeasures();
    void rowsAreTheItems();
    void withoutItems();
    void startsWithTheKeyboardInPlace();

    void editorOpens_data();
    void editorOpens();
    void editorOpensForANewItem();
    void savedItemTakesItsPlace();
    void savedItemIsAdded();
    void savedItemKeepsWhatTheFormDoesNotShow();
    void editorIsLeft_data();
    void editorIsLeft();
    void firstStepGoesToAnEnd_data();
    void firstStepGoesToAnEnd();
    void backspaceInAFieldDeletes();
    void keysOfTheListPage_data();
    void keysOfTheListPage();

    void rowsOfTheMenu();
    void menuHoldsTheWindows();
    void menuIsCancelled_data();
    void menuIsCancelled();
    void menuEdits();
    void menuDeletes_data();
    void menuDeletes();
    void noMenuWithoutARow();

    void saveNeedsAnItem_data();
    void saveNeedsAnItem();
    void saveAccepts();
    void cancelRejects();
    void modelStaysUntouched();

    void strangeNames_data();
    void strangeNames();
    void manyItems();
    void endBehindAMenuOrBox_data();
    void endBehindAMenuOrBox();

private:
    void open(const SectionTemplate& tpl = threeItems());
    QStackedWidget* stack() const { return m_dialog->findChild<QStackedWidget*>(); }
    QListWidget* list() const { return m_dialog->findChild<QListWidget*>(); }
    ItemEditorPanel* panel() const { return m_dialog->findChild<ItemEditorPanel*>(); }
    QLineEdit* name() const { return panel()->findChild<QLineEdit*>("editorNameInput"); }
    QPlainTextEdit* value() const
    {
        return panel()->findChild<QPlainTextEdit*>("editorValueInput");
    }
    QPushButton* listButton(const char* textKey) const;
    QPushButton* panelButton(const char* name) const;
    QStringList rowTexts() const;
    QStringList itemNames() const;
    QStringList selection() const;
    void regainKeyboard() const;
    void type(const QString& itemName, const QString& itemValue) const;
    void spaceOn(int row, const MenuScript::Action& action) const;

    std::unique_ptr<LauncherModel> m_model;
    QPointer<TemplateEditorDialog> m_dialog;
    QWidget m_parent;
};

void TemplateEditorDialogTest::init()
{
    Tr::currentLang = Lang::En;
    Theme::forceTheme = 1;
    const QString path = QDir(TestHome::dataDir()).filePath("data.json");
    QFile::remove(path);
    m_model = std::make_unique<LauncherModel>(path);
}

void TemplateEditorDialogTest::cleanup()
{
    delete m_dialog;
    m_model.reset();
}

void TemplateEditorDialogTest::open(const SectionTemplate& tpl)
{
    m_dialog = new TemplateEditorDialog(m_model.get(), tpl, "A title", &m_parent);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog));
}

QPushButton* TemplateEditorDialogTest::listButton(const char* textKey) const
{
    for (auto* button : stack()->widget(0)->findChildren<QPushButton*>()) {
        if (button->text() == Tr::t(textKey))
            return button;
    }
    return nullptr;
}

QPushButton* TemplateEditorDialogTest::panelButton(const char* name) const
{
    return panel()->findChild<QPushButton*>(QString::fromLatin1(name));
}

QStringList TemplateEditorDialogTest::rowTexts() const
{
    QStringList texts;
    for (int row = 0; row < list()->count(); ++row)
        texts.append(list()->item(row)->text());
    return texts;
}

QStringList TemplateEditorDialogTest::itemNames() const
{
    QStringList names;
    for (const LauncherElement& element : m_dialog->result().items)
        names.append(element.name);
    return names;
}

QStringList TemplateEditorDialogTest::selection() const
{
    QStringList texts;
    for (const QListWidgetItem* row : list()->selectedItems())
        texts.append(row->text());
    return texts;
}

/// Here, unlike on a desktop, a menu or a dialog leaves the keyboard to nobody.
void TemplateEditorDialogTest::regainKeyboard() const
{
    m_dialog->activateWindow();
    QTRY_VERIFY(m_dialog->isActiveWindow());
}

/// Fills the form in as a user does.
void TemplateEditorDialogTest::type(const QString& itemName, const QString& itemValue) const
{
    name()->selectAll();
    QTest::keyClicks(name(), itemName);
    value()->selectAll();
    QTest::keyClicks(value(), itemValue);
}

void TemplateEditorDialogTest::spaceOn(int row, const MenuScript::Action& action) const
{
    list()->setCurrentRow(row);
    list()->setFocus();
    const MenuScript script({action});
    QTest::keyClick(list(), Qt::Key_Space);
    QVERIFY(script.isDone());
    regainKeyboard();
}

void TemplateEditorDialogTest::looksLikeEveryDialog()
{
    open();
    verifyDialogLook(*m_dialog, m_parent, 0, 60);
    QCOMPARE(m_dialog->size(), QSize(420, 560));
    QCOMPARE(m_dialog->minimumSize(), m_dialog->maximumSize());
    QCOMPARE(m_dialog->windowTitle(), "A title");
}

void TemplateEditorDialogTest::header()
{
    open();
    auto* band = m_dialog->findChild<CardHeader*>("tplEditorHeader");
    QCOMPARE(band->title(), "A title");
    QCOMPARE(band->height(), 56);
    QCOMPARE(band->layout()->contentsMargins(), QMargins(12, 0, 12, 0));
    QVERIFY(band->styleSheet().contains("background-color: " + Theme::shellBg()));
    QVERIFY(band->styleSheet().contains("border-top-left-radius: 23px"));
    auto* title = band->findChild<QLabel*>();
    QCOMPARE(title->alignment(), Qt::AlignCenter);
    QCOMPARE(title->styleSheet(), Theme::bandTitleStyle(Theme::colors()));
    QCOMPARE(rectIn(*m_dialog, stack()).top(), rectIn(*m_dialog, band).bottom() + 1);
}

void TemplateEditorDialogTest::listPageFollowsTheMeasures()
{
    open();
    const QWidget* page = stack()->widget(0);
    QCOMPARE(page->layout()->contentsMargins(), QMargins(24, 24, 24, 24));
    QCOMPARE(page->layout()->spacing(), 12);
    const QRect rows = rectIn(*page, list());
    const QRect add = rectIn(*page, listButton("actions.add_shortcut"));
    const QRect cancel = rectIn(*page, listButton("dialog.btn_cancel"));
    const QRect save = rectIn(*page, listButton("dialog.btn_save"));
    QCOMPARE(rows.topLeft(), QPoint(24, 24));
    QCOMPARE(rows.right() + 1, page->width() - 24);
    QCOMPARE(add.top(), rows.bottom() + 1 + 12);
    QCOMPARE(add.left(), rows.left());
    QCOMPARE(add.right(), rows.right());
    QCOMPARE(save.top(), add.bottom() + 1 + 12 + 8);
    QCOMPARE(save.bottom() + 1, page->height() - 24);
    QCOMPARE(save.right(), rows.right());
    QCOMPARE(save.left(), cancel.right() + 1 + 12);
    const ColorTokens c = Theme::colors();
    for (const auto& [key, style] :
         {std::pair("actions.add_shortcut", Theme::smallPillStyle(c)),
          std::pair("dialog.btn_cancel", Theme::actionBtnStyle(c, "transparent")),
          std::pair("dialog.btn_save", Theme::primaryBtnStyle(c))}) {
        QCOMPARE(listButton(key)->height(), 36);
        QCOMPARE(listButton(key)->cursor().shape(), Qt::PointingHandCursor);
        QCOMPARE(listButton(key)->styleSheet(), style);
    }
    QCOMPARE(list()->styleSheet(),
             QStringLiteral("QListWidget { background-color: %1; border: none; border-radius: "
                            "16px; padding: 6px; outline: none; }")
                 .arg(Theme::fieldIdleBg(c)));
    QCOMPARE(list()->focusPolicy(), Qt::StrongFocus);
}

void TemplateEditorDialogTest::rowsAreTheItems()
{
    open();
    QCOMPARE(rowTexts(), QStringList({"One", "Two", "Three"}));
    QCOMPARE(list()->item(1)->data(261).toString(), "File");
    QCOMPARE(list()->item(1)->data(263).toString(), "glyph:ea5f");
    QVERIFY(qobject_cast<TemplateItemDelegate*>(list()->itemDelegate()));
    QCOMPARE(list()->visualItemRect(list()->item(0)).size(),
             QSize(list()->viewport()->width(), 44));
    QVERIFY(list()->isVisible());
    QVERIFY(!stack()->widget(0)->findChild<QLabel*>()->isVisible());
}

void TemplateEditorDialogTest::withoutItems()
{
    open({"Kit", 0xE86F, {}});
    auto* hint = stack()->widget(0)->findChild<QLabel*>();
    QVERIFY(hint->isVisible());
    QCOMPARE(hint->text(), Tr::t("template.editor_empty"));
    QCOMPARE(hint->alignment(), Qt::AlignCenter);
    QCOMPARE(hint->styleSheet(), Theme::textOnCardStyle(Theme::colors().onSurfaceVariant, "13px"));
    QVERIFY(hint->wordWrap());
    QVERIFY(!list()->isVisible());
}

void TemplateEditorDialogTest::startsWithTheKeyboardInPlace()
{
    open();
    QTRY_COMPARE(QApplication::focusWidget(), list());
    QCOMPARE(stack()->currentIndex(), 0);
    delete m_dialog;
    open({"Kit", 0xE86F, {}});
    QTRY_COMPARE(QApplication::focusWidget(), listButton("actions.add_shortcut"));
}

void TemplateEditorDialogTest::editorOpens_data()
{
    QTest::addColumn<QString>("way");
    for (const char* way : {"Return", "Enter", "double click"})
        QTest::newRow(way) << way;
}

void TemplateEditorDialogTest::editorOpens()
{
    QFETCH(QString, way);
    open();
    list()->setCurrentRow(1);
    if (way == "double click") {
        const QPoint place = list()->visualItemRect(list()->item(1)).center();
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, place);
    } else {
        QTest::keyClick(list(), way == "Return" ? Qt::Key_Return : Qt::Key_Enter);
    }
    QCOMPARE(stack()->currentIndex(), 1);
    QCOMPARE(QApplication::focusWidget(), name());
    QCOMPARE(name()->text(), "Two");
    QCOMPARE(value()->toPlainText(), "Two text");
    QVERIFY(!panel()->sectionButton()->isVisible()); // a template is in no section
}

void TemplateEditorDialogTest::editorOpensForANewItem()
{
    open();
    list()->setCurrentRow(1);
    listButton("actions.add_shortcut")->click();
    QCOMPARE(stack()->currentIndex(), 1);
    QCOMPARE(QApplication::focusWidget(), name());
    QCOMPARE(name()->text(), "");
    QCOMPARE(value()->toPlainText(), "");
}

void TemplateEditorDialogTest::savedItemTakesItsPlace()
{
    open();
    list()->setCurrentRow(1);
    QTest::keyClick(list(), Qt::Key_Return);
    type("2", "new");
    panelButton("editorSaveBtn")->click();
    QCOMPARE(stack()->currentIndex(), 0);
    SectionTemplate expected = threeItems();
    expected.items[1].name = "2";
    expected.items[1].value = "new";
    QCOMPARE(m_dialog->result(), expected);
    QCOMPARE(rowTexts(), QStringList({"One", "2", "Three"}));
    QCOMPARE(selection(), QStringList("2"));
    QCOMPARE(QApplication::focusWidget(), list());
}

void TemplateEditorDialogTest::savedItemIsAdded()
{
    open();
    list()->setCurrentRow(1);
    listButton("actions.add_shortcut")->click();
    type("Four", "http://four");
    panelButton("editorSaveBtn")->click();
    SectionTemplate expected = threeItems();
    expected.items.append({{}, "Four", ItemType::Url, "http://four", {}});
    QCOMPARE(m_dialog->result(), expected);
    QCOMPARE(selection(), QStringList("Four"));
    QCOMPARE(QApplication::focusWidget(), list());
    delete m_dialog;
    open({"Kit", 0xE86F, {}}); // the first of all
    listButton("actions.add_shortcut")->click();
    type("Four", "http://four");
    panelButton("editorSaveBtn")->click();
    QCOMPARE(itemNames(), QStringList("Four"));
    QVERIFY(list()->isVisible());
    QCOMPARE(QApplication::focusWidget(), list());
}

void TemplateEditorDialogTest::savedItemKeepsWhatTheFormDoesNotShow()
{
    const LauncherElement odd{"an id", "Odd", "Teapot", "\xA0value\r\n", "/a/picture.png"};
    open({"Kit", 0xE86F, {odd}});
    list()->setCurrentRow(0);
    QTest::keyClick(list(), Qt::Key_Return);
    panelButton("editorSaveBtn")->click();
    QCOMPARE(m_dialog->result().items, QVector{odd});
}

void TemplateEditorDialogTest::editorIsLeft_data()
{
    QTest::addColumn<QString>("way");
    QTest::addColumn<bool>("isNew");
    QTest::addColumn<QStringList>("selected");
    QTest::newRow("its button") << "button" << false << QStringList("Two");
    QTest::newRow("Esc in its field") << "Esc in field" << false << QStringList("Two");
    QTest::newRow("Esc in its value") << "Esc in value" << false << QStringList("Two");
    QTest::newRow("Esc on its button") << "Esc on button" << false << QStringList("Two");
    QTest::newRow("its button, new item") << "button" << true << QStringList();
    QTest::newRow("Esc in its field, new item") << "Esc in field" << true << QStringList();
    QTest::newRow("Esc that reaches the dialog") << "Esc" << false << QStringList();
    QTest::newRow("Backspace that reaches it") << "Backspace" << false << QStringList();
    QTest::newRow("Backspace on a button") << "Backspace on button" << false << QStringList();
}

void TemplateEditorDialogTest::editorIsLeft()
{
    QFETCH(QString, way);
    QFETCH(bool, isNew);
    QFETCH(QStringList, selected);
    open();
    const QSignalSpy ends(m_dialog, &QDialog::finished);
    list()->setCurrentRow(1);
    if (isNew)
        listButton("actions.add_shortcut")->click();
    else
        QTest::keyClick(list(), Qt::Key_Return);
    QTest::keyClicks(name(), "dropped");
    const Qt::Key key = way.startsWith("Esc") ? Qt::Key_Escape : Qt::Key_Backspace;
    if (way == "button")
        panelButton("editorCancelBtn")->click();
    else if (way == "Esc in field")
        QTest::keyClick(name(), key);
    else if (way == "Esc in value")
        QTest::keyClick(value(), key);
    else if (way.endsWith("on button"))
        QTest::keyClick(panelButton("editorTypeBtn"), key);
    else
        QTest::keyClick(m_dialog, key);
    QCOMPARE(stack()->currentIndex(), 0);
    QCOMPARE(selection(), selected);
    QCOMPARE(list()->currentRow(), selected.isEmpty() ? -1 : 1);
    QCOMPARE(QApplication::focusWidget(), list());
    QCOMPARE(m_dialog->result(), threeItems());
    QCOMPARE(ends.count(), 0);
}

void TemplateEditorDialogTest::firstStepGoesToAnEnd_data()
{
    QTest::addColumn<bool>("hasBeenInEditor");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("name");
    for (const bool hasBeen : {false, true}) {
        const char* when = hasBeen ? "behind an item" : "at first";
        QTest::addRow("Down, %s", when) << hasBeen << Qt::Key_Down << "One";
        QTest::addRow("Home, %s", when) << hasBeen << Qt::Key_Home << "One";
        QTest::addRow("End, %s", when) << hasBeen << Qt::Key_End << "Three";
    }
}

void TemplateEditorDialogTest::firstStepGoesToAnEnd()
{
    QFETCH(bool, hasBeenInEditor);
    QFETCH(Qt::Key, key);
    open();
    QTRY_COMPARE(QApplication::focusWidget(), list());
    if (hasBeenInEditor) {
        list()->setCurrentRow(1);
        QTest::keyClick(list(), Qt::Key_Return);
        QTest::keyClick(m_dialog, Qt::Key_Escape);
    }
    QCOMPARE(list()->currentRow(), -1);
    QCOMPARE(selection(), QStringList());
    QTest::keyClick(list(), key);
    QTEST(selection().join(' '), "name");
    QTest::keyClick(list(), Qt::Key_Return);
    QTEST(name()->text(), "name");
}

void TemplateEditorDialogTest::backspaceInAFieldDeletes()
{
    open({"Kit", 0xE86F, {item("x")}});
    list()->setCurrentRow(0);
    QTest::keyClick(list(), Qt::Key_Return);
    name()->end(false);
    for (int i = 0; i < 3; ++i) // the last ones find nothing any more
        QTest::keyClick(name(), Qt::Key_Backspace);
    QCOMPARE(name()->text(), "");
    QCOMPARE(stack()->currentIndex(), 1);
    value()->clear();
    QTest::keyClick(value(), Qt::Key_Backspace);
    QCOMPARE(stack()->currentIndex(), 1);
}

void TemplateEditorDialogTest::keysOfTheListPage_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<Qt::Key>("key");
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Backspace}) {
        for (const char* place : {"list", "actions.add_shortcut", "dialog.btn_save", "dialog"})
            QTest::addRow("%s, %s", place, key == Qt::Key_Escape ? "Esc" : "Backspace")
                << place << key;
    }
}

void TemplateEditorDialogTest::keysOfTheListPage()
{
    QFETCH(QString, place);
    QFETCH(Qt::Key, key);
    open();
    const QSignalSpy ends(m_dialog, &QDialog::rejected);
    QWidget* target = m_dialog;
    if (place == "list")
        target = list();
    else if (place != "dialog")
        target = listButton(place.toLatin1().constData());
    QTest::keyClick(target, key);
    QCOMPARE(ends.count(), 1);
    QVERIFY(!m_dialog->isVisible());
}

void TemplateEditorDialogTest::rowsOfTheMenu()
{
    open();
    QPoint corner;
    spaceOn(1, [&corner](QMenu* menu) {
        corner = menu->geometry().topLeft();
        verifyRows(menu, withCancel({{"Edit Shortcut", 0xF097}, {"Delete Shortcut", 0xE92E}}));
    });
    const QPoint center = list()->visualItemRect(list()->item(1)).center();
    QCOMPARE(corner, list()->viewport()->mapToGlobal(center));
}

void TemplateEditorDialogTest::menuHoldsTheWindows()
{
    open();
    QTRY_VERIFY(!g_blockAutoQuit);
    bool isHeld = false;
    spaceOn(1, [&isHeld](QMenu*) { isHeld = g_blockAutoQuit; });
    QVERIFY(isHeld);
}

void TemplateEditorDialogTest::menuIsCancelled_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Esc") << Qt::Key_Escape;
    QTest::newRow("Backspace") << Qt::Key_Backspace;
}

void TemplateEditorDialogTest::menuIsCancelled()
{
    QFETCH(Qt::Key, key);
    open();
    spaceOn(1, [key](QMenu* menu) { QTest::keyClick(menu, key); });
    QVERIFY(m_dialog->isVisible()); // the key was the menu's alone
    QCOMPARE(QApplication::focusWidget(), list());
    QCOMPARE(selection(), QStringList("Two"));
    QCOMPARE(m_dialog->result(), threeItems());
}

void TemplateEditorDialogTest::menuEdits()
{
    open();
    spaceOn(1, chooseKey("actions.edit_shortcut"));
    QCOMPARE(stack()->currentIndex(), 1);
    QCOMPARE(name()->text(), "Two");
    QCOMPARE(QApplication::focusWidget(), name());
}

void TemplateEditorDialogTest::menuDeletes_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("selected");
    QTest::newRow("first") << 0 << "Two";
    QTest::newRow("middle") << 1 << "Three";
    QTest::newRow("last") << 2 << "Two";
}

void TemplateEditorDialogTest::menuDeletes()
{
    QFETCH(int, row);
    QFETCH(QString, selected);
    open();
    const ModalDriver question([](QWidget* modal) { static_cast<QDialog*>(modal)->reject(); });
    spaceOn(row, chooseKey("actions.delete_shortcut"));
    QCOMPARE(question.count(), 0);
    QStringList expected{"One", "Two", "Three"};
    expected.removeAt(row);
    QCOMPARE(itemNames(), expected);
    QCOMPARE(rowTexts(), expected);
    QCOMPARE(selection(), QStringList(selected));
    QCOMPARE(QApplication::focusWidget(), list());
}

void TemplateEditorDialogTest::noMenuWithoutARow()
{
    open();
    list()->setCurrentRow(-1);
    const MenuScript script({});
    QTest::keyClick(list(), Qt::Key_Space);
    QVERIFY(script.isDone());
}

void TemplateEditorDialogTest::saveNeedsAnItem_data()
{
    QTest::addColumn<bool>("hadItems");
    QTest::newRow("never had one") << false;
    QTest::newRow("the last one removed") << true;
}

void TemplateEditorDialogTest::saveNeedsAnItem()
{
    QFETCH(bool, hadItems);
    open({"Kit", 0xE86F, hadItems ? QVector{item("One")} : QVector<LauncherElement>{}});
    if (hadItems) {
        spaceOn(0, chooseKey("actions.delete_shortcut"));
        QVERIFY(!list()->isVisible());
        QVERIFY(stack()->widget(0)->findChild<QLabel*>()->isVisible());
        QCOMPARE(QApplication::focusWidget(), listButton("actions.add_shortcut"));
    }
    const QSignalSpy ends(m_dialog, &QDialog::finished);
    QStringList texts;
    const ModalDriver driver([&texts](QWidget* modal) {
        QVERIFY(g_blockAutoQuit);
        for (const QLabel* label : modal->findChildren<QLabel*>())
            texts.append(label->accessibleName().isEmpty() ? label->text()
                                                           : label->accessibleName());
        pressKey(*modal, Qt::Key_Escape);
    });
    listButton("dialog.btn_save")->click();
    QCOMPARE(driver.count(), 1);
    QCOMPARE(texts, QStringList({"A title", Tr::t("template.err_no_items")}));
    QCOMPARE(ends.count(), 0);
    QVERIFY(m_dialog->isVisible());
}

void TemplateEditorDialogTest::saveAccepts()
{
    open();
    const QSignalSpy ends(m_dialog, &QDialog::accepted);
    listButton("dialog.btn_save")->click();
    QCOMPARE(ends.count(), 1);
    QCOMPARE(m_dialog->result(), threeItems());
}

void TemplateEditorDialogTest::cancelRejects()
{
    open();
    const QSignalSpy ends(m_dialog, &QDialog::rejected);
    listButton("dialog.btn_cancel")->click();
    QCOMPARE(ends.count(), 1);
}

void TemplateEditorDialogTest::modelStaysUntouched()
{
    const LauncherData before = m_model->data();
    open();
    listButton("actions.add_shortcut")->click();
    type("Four", "4");
    panelButton("editorSaveBtn")->click();
    listButton("dialog.btn_save")->click();
    QCOMPARE(m_model->data(), before);
}

void TemplateEditorDialogTest::strangeNames_data()
{
    QTest::addColumn<QString>("itemName");
    QTest::newRow("none") << "";
    QTest::newRow("a megabyte") << QString(1'000'000, 'W');
    QTest::newRow("markup") << "<b>bold</b>&amp;";
    QTest::newRow("ampersands") << "&Fish && Chips";
    QTest::newRow("lines") << "one\ntwo\r\nthree";
    QTest::newRow("right to left") << QString::fromUtf8("\xe2\x80\xae\xd7\x97\xd7\x90");
}

void TemplateEditorDialogTest::strangeNames()
{
    QFETCH(QString, itemName);
    open({"Kit", 0xE86F, {item(itemName)}});
    QCOMPARE(rowTexts(), QStringList(itemName));
    QCOMPARE(list()->visualItemRect(list()->item(0)).size(),
             QSize(list()->viewport()->width(), 44));
    QCOMPARE(m_dialog->size(), QSize(420, 560));
    list()->setCurrentRow(0);
    QTest::keyClick(list(), Qt::Key_Return);
    QCOMPARE(stack()->currentIndex(), 1);
    QTest::keyClick(name(), Qt::Key_Escape);
    QCOMPARE(itemNames(), QStringList(itemName));
}

void TemplateEditorDialogTest::manyItems()
{
    QVector<LauncherElement> items;
    for (int i = 0; i < 5000; ++i)
        items.append(item(QString::number(i)));
    open({"Kit", 0xE86F, items});
    QCOMPARE(list()->count(), 5000);
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_End);
    QCOMPARE(selection(), QStringList("4999"));
    spaceOn(4999, chooseKey("actions.delete_shortcut"));
    QCOMPARE(selection(), QStringList("4998"));
    QVERIFY(list()->viewport()->rect().intersects(list()->visualItemRect(list()->item(4998))));
}

void TemplateEditorDialogTest::endBehindAMenuOrBox_data()
{
    QTest::addColumn<QString>("place");
    for (const char* place : {"menu of an item", "message", "menu of the types"})
        QTest::newRow(place) << place;
}

void TemplateEditorDialogTest::endBehindAMenuOrBox()
{
    QFETCH(QString, place);
    open(place == "message" ? SectionTemplate{"Kit", 0xE86F, {}} : threeItems());
    const auto end = [this] { delete m_dialog; };
    const ModalDriver driver([&](QWidget*) { end(); });
    QList<MenuScript::Action> actions;
    if (place != "message")
        actions.append([&](QMenu*) { end(); });
    const MenuScript script(actions);
    if (place == "message") {
        listButton("dialog.btn_save")->click();
    } else if (place == "menu of the types") {
        listButton("actions.add_shortcut")->click();
        panelButton("editorTypeBtn")->click();
    } else {
        list()->setCurrentRow(1);
        QTest::keyPress(list(), Qt::Key_Space); // nobody is there for the release
    }
    QVERIFY(script.isDone());
    QVERIFY(!m_dialog);
}

QTEST_MAIN(TemplateEditorDialogTest)
#include "tst_templateeditordialog.moc"
