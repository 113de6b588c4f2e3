// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"
#include "FilePattern.h"
#include "IconPickerDialog.h"
#include "ItemEditorTest.h"
#include "MenuSteps.h"
#include "Pictures.h"

#include <QFileDialog>
#include <QMenu>
#include <QSignalSpy>
#include <QUuid>

#include <functional>

namespace
{

const QString kNoName = QStringLiteral("Validation Failed|Shortcut name cannot be empty.");
const QString kNoValue =
    QStringLiteral("Validation Failed|Shortcut value (URL/Path) cannot be empty.");
const QString kNoSection =
    QStringLiteral("Validation Failed|Create a section first before adding a shortcut.");

/// Chooses a row of a menu as a user does.
MenuDriver::Action chooseRow(int row)
{
    return [row](QMenu* menu) {
        for (int i = 0; i <= row; ++i)
            QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
    };
}

} // namespace

class ItemEditorPanelTest : public ItemEditorTest, protected MenuSteps
{
    Q_OBJECT

private slots:
    void startsAsDeclared();
    void opensANewItem_data();
    void opensANewItem();
    void opensAStoredItem();
    void sectionOffered_data();
    void sectionOffered();
    void withoutSectionsNoneIsOffered();
    void opensAnElement();
    void openingAgainForgetsTheLastForm();

    void typeDecidesTheForm_data();
    void typeDecidesTheForm();
    void hidingBrowseHandsTheFocusOn();
    void typeMenu();
    void typeMenuChooses_data();
    void typeMenuChooses();
    void typeMenuCancelled_data();
    void typeMenuCancelled();
    void sectionMenu();
    void sectionMenuWithoutSections();

    void iconButtonShowsTheIcon_data();
    void iconButtonShowsTheIcon();
    void iconButtonShowsAPicture();
    void iconIsChosen();
    void iconCancelledStays();
    void browseAsksForAFile();
    void browsedPath_data();
    void browsedPath();
    void browseCancelled();

    void validationOrder_data();
    void validationOrder();
    void savesANewItem();
    void savesAnExistingItem();
    void savesWhatIsThere_data();
    void savesWhatIsThere();
    void savesIntoAnotherSection();
    void savesAnElement();
    void elementIsValidated();
    void cancelAndForceClose();

    void itemVanishedMeanwhile();
    void sectionVanishedMeanwhile();
    void pickVanishedMeanwhile();
    void allSectionsVanishedMeanwhile();
    void sectionsCameMeanwhile();

    void hugeValueIsShownInPart_data();
    void hugeValueIsShownInPart();
    void hugeNameIsKept();
    void longNamesWidenNothing();
    void anyIconPathCostsNothing_data();
    void anyIconPathCostsNothing();

    void survivesItsEnd_data();
    void survivesItsEnd();
};

void ItemEditorPanelTest::startsAsDeclared()
{
    QCOMPARE(ItemEditorPanel::EditorIconBtnSize, 40);
    QCOMPARE(ItemEditorPanel::PillPadLeft, 34);
    QCOMPARE(ItemEditorPanel::PillGlyphX, 22.0);
    QCOMPARE(m_panel->typeButton(), type());
    QCOMPARE(m_panel->sectionButton(), section());
    QCOMPARE(m_panel->nameInput(), name());
    QCOMPARE(m_panel->browseButton(), browse());
    QCOMPARE(m_panel->valueInput(), value());
    QCOMPARE(m_panel->saveButton(), save());
    QVERIFY(cancel());
    QVERIFY(!section()->isVisible());
    QVERIFY(browse()->isVisible());
    QVERIFY(m_panel->editingCategory().isEmpty());
}

void ItemEditorPanelTest::opensANewItem_data()
{
    QTest::addColumn<QString>("id");
    QTest::newRow("no id") << "";
    QTest::newRow("unknown id") << "nobody";
    QTest::newRow("id of another section") << "h1";
}

void ItemEditorPanelTest::opensANewItem()
{
    QFETCH(QString, id);
    m_panel->openEditor("Work", id);
    QCOMPARE(name()->text(), QString());
    QCOMPARE(value()->toPlainText(), QString());
    QCOMPARE(type()->label(), "URL");
    QCOMPARE(section()->label(), "Work");
    QCOMPARE(m_panel->editingCategory(), "Work");
    QCOMPARE(m_window->focusWidget(), name());
}

void ItemEditorPanelTest::opensAStoredItem()
{
    QSignalSpy typed(m_panel, &ItemEditorPanel::editorTypeChanged);
    m_panel->openEditor("Work", "w2");
    QCOMPARE(name()->text(), "Lines");
    QCOMPARE(value()->toPlainText(), "/a\n/b");
    QCOMPARE(type()->label(), "Bulk");
    QCOMPARE(typed, QList<QVariantList>{{"Bulk"}});
    QCOMPARE(m_window->focusWidget(), name());
}

void ItemEditorPanelTest::sectionOffered_data()
{
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("offered");
    QTest::newRow("its own") << "Home"
                             << "Home";
    QTest::newRow("unknown") << "Nowhere"
                             << "Work";
    QTest::newRow("none") << ""
                          << "Work";
}

void ItemEditorPanelTest::sectionOffered()
{
    QFETCH(QString, category);
    m_panel->openEditor(category, {});
    QTEST(section()->label(), "offered");
    QVERIFY(section()->isVisible());
    QVERIFY(labelOf(section())->isVisible());
}

void ItemEditorPanelTest::withoutSectionsNoneIsOffered()
{
    m_panel->openEditor("Work", {});
    QVERIFY(section()->isVisible());
    makeWithoutSections();
    m_panel->openEditor("", {});
    QVERIFY(!section()->isVisible());
    QVERIFY(!labelOf(section())->isVisible());
    QCOMPARE(warningOfSave(), kNoSection); // and nothing of the empty name
    QVERIFY(m_model->data().sectionElements.isEmpty());
}

void ItemEditorPanelTest::opensAnElement()
{
    m_panel->openEditor("Work", "w1");
    m_panel->openForElement({"", "Alone", "Snippet", " text ", "glyph:e2c7"});
    QCOMPARE(name()->text(), "Alone");
    QCOMPARE(value()->toPlainText(), " text ");
    QCOMPARE(type()->label(), "Text");
    QVERIFY(!section()->isVisible());
    QVERIFY(m_panel->editingCategory().isEmpty());
    QCOMPARE(m_window->focusWidget(), name());
}

void ItemEditorPanelTest::openingAgainForgetsTheLastForm()
{
    m_panel->openForElement({"", "Alone", "Bulk", "/a", "glyph:e2c7"});
    type(name(), " typed");
    m_panel->openEditor("Work", {});
    QCOMPARE(name()->text(), QString());
    QCOMPARE(type()->label(), "URL");
    QVERIFY(!browse()->isVisible());
    type(name(), "New");
    type(value(), "x");
    QSignalSpy ready(m_panel, &ItemEditorPanel::elementReady);
    click(save());
    QCOMPARE(ready.count(), 0);
    QCOMPARE(m_model->getItems("Work").size(), 3);
    QCOMPARE(m_model->getItems("Work").last().iconPath, QString());
}

void ItemEditorPanelTest::typeDecidesTheForm_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("pill");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("namePlaceholder");
    QTest::addColumn<QString>("valuePlaceholder");
    QTest::addColumn<bool>("numbers");
    QTest::addColumn<bool>("browses");
    const auto row = [](const char* name, const char* stored, const char* pill, const char* label,
                        const char* suffix, bool numbers, bool browses) {
        const QString key = QString::fromLatin1(suffix);
        QTest::newRow(name) << stored << pill << label << "editor.ph_name_" + key
                            << "editor.ph_val_" + key << numbers << browses;
    };
    row("URL", "URL", "URL", "editor.lbl_url", "url", false, false);
    row("no type", "", "URL", "editor.lbl_url", "url", false, false);
    row("application", "Application", "App", "editor.lbl_file", "app", false, true);
    row("older application", "App", "App", "editor.lbl_file", "app", false, true);
    row("file", "File", "File", "editor.lbl_file", "file", false, true);
    row("bulk", "Bulk", "Bulk", "editor.lbl_bulk", "bulk", true, true);
    row("snippet", "Snippet", "Text", "editor.lbl_snippet", "snippet", false, false);
    row("shell item", "ShellItem", "Text", "editor.lbl_snippet", "snippet", false, false);
    row("unknown", "Gadget", "Text", "editor.lbl_snippet", "snippet", false, false);
    row("other case", "url", "Text", "editor.lbl_snippet", "snippet", false, false);
}

void ItemEditorPanelTest::typeDecidesTheForm()
{
    QFETCH(QString, stored);
    QFETCH(QString, label);
    QFETCH(QString, namePlaceholder);
    QFETCH(QString, valuePlaceholder);
    QFETCH(bool, numbers);
    for (const Lang lang : Tr::all()) {
        Tr::currentLang = lang;
        rebuild();
        m_panel->openForElement({"", "Name", stored, "value", ""});
        QTEST(type()->label(), "pill"); // the same in every language
        QCOMPARE(labelOf(value())->text(), Tr::t(label));
        QCOMPARE(name()->placeholderText(), Tr::t(namePlaceholder));
        QCOMPARE(value()->placeholderText(), Tr::t(valuePlaceholder));
        QCOMPARE(value()->lineNumberAreaWidth() > 0, numbers);
        QTEST(browse()->isVisible(), "browses");
    }
}

void ItemEditorPanelTest::hidingBrowseHandsTheFocusOn()
{
    m_panel->openForElement({"", "Name", "File", "/a", ""});
    browse()->setFocus();
    m_panel->openForElement({"", "Name", "URL", "/a", ""}); // which then focuses the name
    const auto focusOnChange = [this](const QString& stored) {
        QWidget* focused = nullptr;
        const auto connection = connect(m_panel, &ItemEditorPanel::editorTypeChanged, this,
                                        [this, &focused] { focused = m_window->focusWidget(); });
        m_panel->openForElement({"", "Name", stored, "/a", ""});
        disconnect(connection);
        return focused;
    };
    QCOMPARE(focusOnChange("Bulk"), name());
    browse()->setFocus();
    QCOMPARE(focusOnChange("File"), browse());
    browse()->setFocus();
    QCOMPARE(focusOnChange("URL"), value());
}

void ItemEditorPanelTest::typeMenu()
{
    m_panel->openEditor("Work", "w1");
    QTRY_VERIFY(!g_blockAutoQuit);
    int width = 0;
    QPoint corner;
    bool blocked = false;
    MenuDriver driver([&](QMenu* menu) {
        width = menu->width();
        corner = menu->pos();
        blocked = g_blockAutoQuit;
        verifyRows(menu, withCancel({{"URL", 0xE250},
                                     {"App", 0xE30C},
                                     {"File", 0xE873},
                                     {"Bulk", 0xEBBD},
                                     {"Text", 0xF1C6}}));
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    click(type());
    QVERIFY(driver.hasClosed());
    QVERIFY(width >= type()->width());
    QCOMPARE(corner, type()->mapToGlobal(QPoint(0, 36 + 4)));
    QVERIFY(blocked);
}

void ItemEditorPanelTest::typeMenuChooses_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("pill");
    QTest::newRow("URL") << 0 << "URL"
                         << "URL";
    QTest::newRow("application") << 1 << "Application"
                                 << "App";
    QTest::newRow("file") << 2 << "File"
                          << "File";
    QTest::newRow("bulk") << 3 << "Bulk"
                          << "Bulk";
    QTest::newRow("snippet") << 4 << "Snippet"
                             << "Text";
}

void ItemEditorPanelTest::typeMenuChooses()
{
    QFETCH(int, row);
    QFETCH(QString, stored);
    m_panel->openForElement({"", "Name", "Gadget", "value", ""});
    QSignalSpy typed(m_panel, &ItemEditorPanel::editorTypeChanged);
    QSignalSpy ready(m_panel, &ItemEditorPanel::elementReady);
    const MenuDriver driver(chooseRow(row));
    click(type());
    QVERIFY(driver.hasClosed());
    QTEST(type()->label(), "pill");
    QCOMPARE(typed, QList<QVariantList>{{stored}});
    QCOMPARE(m_window->focusWidget(), type());
    QCOMPARE(name()->text(), "Name");
    QCOMPARE(value()->toPlainText(), "value");
    click(save());
    QCOMPARE(ready.at(0).at(0).value<LauncherElement>().shortcutType, stored);
}

void ItemEditorPanelTest::typeMenuCancelled_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Esc") << int(Qt::Key_Escape);
    QTest::newRow("Backspace") << int(Qt::Key_Backspace);
}

void ItemEditorPanelTest::typeMenuCancelled()
{
    QFETCH(int, key);
    m_panel->openEditor("Work", "w2");
    QSignalSpy typed(m_panel, &ItemEditorPanel::editorTypeChanged);
    QSignalSpy closed(m_panel, &ItemEditorPanel::closeRequested);
    for (const MenuDriver::Action& act :
         {MenuDriver::Action([key](QMenu* m) { QTest::keyClick(m, Qt::Key(key)); }),
          chooseRow(5)}) {
        const MenuDriver driver(act);
        name()->setFocus();
        type()->click(); // which leaves the focus where it is
        QVERIFY(driver.hasClosed());
        QCOMPARE(m_window->focusWidget(), type());
    }
    QCOMPARE(type()->label(), "Bulk");
    QCOMPARE(typed.count(), 0);
    QCOMPARE(closed.count(), 0);
}

void ItemEditorPanelTest::sectionMenu()
{
    m_model->addCategory("R&D\nlab", 0xE86F);
    m_panel->openEditor("Work", "w1");
    MenuDriver driver([](QMenu* menu) {
        verifyRows(
            menu,
            withCancel(
                {{"Work", 0xE943}, {"Home", 0xE943}, {"Empty", 0xE943}, {"R&D\nlab", 0xE86F}}));
        chooseRow(3)(menu);
    });
    click(section());
    QVERIFY(driver.hasClosed());
    QCOMPARE(section()->label(), "R&D\nlab");
    QCOMPARE(m_window->focusWidget(), section());
    const MenuDriver second([](QMenu* menu) { QTest::keyClick(menu, Qt::Key_Escape); });
    name()->setFocus();
    section()->click();
    QCOMPARE(section()->label(), "R&D\nlab");
    QCOMPARE(m_window->focusWidget(), section());
}

void ItemEditorPanelTest::sectionMenuWithoutSections()
{
    m_panel->openEditor("Work", "w1");
    makeWithoutSections();
    const MenuDriver driver([](QMenu*) { QFAIL("a menu without a row"); });
    name()->setFocus();
    section()->click();
    QCOMPARE(m_window->focusWidget(), section());
}

void ItemEditorPanelTest::iconButtonShowsTheIcon_data()
{
    QTest::addColumn<QString>("iconPath");
    QTest::addColumn<uint>("glyph");
    QTest::newRow("none") << "" << 0xE43EU;
    QTest::newRow("glyph") << "glyph:e86f" << 0xE86FU;
    QTest::newRow("malformed glyph") << "glyph:folder" << 0xE250U;
    QTest::newRow("picture that is gone") << "/no/such/picture.png" << 0xE43EU;
}

void ItemEditorPanelTest::iconButtonShowsTheIcon()
{
    QFETCH(QString, iconPath);
    QFETCH(uint, glyph);
    if (!iconPath.isEmpty())
        pictureOnceRead(iconPath, {22, 22});
    m_panel->openForElement({"", "Name", "Bulk", "value", iconPath});
    GlyphButton expected(m_panel);
    expected.setStyleSheet(icon()->styleSheet());
    expected.setGlyph(glyph, 19, Theme::colors().onSurface);
    expected.resize(40, 40);
    QCOMPARE(icon()->grab().toImage(), expected.grab().toImage());
}

void ItemEditorPanelTest::iconButtonShowsAPicture()
{
    QImage image(60, 60, QImage::Format_RGB32);
    image.fill(Qt::red);
    const QString file = QDir(TestHome::dataDir()).filePath("red.png");
    QVERIFY(image.save(file));
    m_panel->openForElement({"", "Name", "URL", "value", file});
    QTRY_COMPARE(icon()->grab().toImage().pixelColor(20, 20), QColor(Qt::red));
    const QImage shown = icon()->grab().toImage();
    QCOMPARE(shown.pixelColor(9, 9), QColor(Qt::red)); // 22 of 40
    QCOMPARE(shown.pixelColor(30, 30), QColor(Qt::red));
    QVERIFY(shown.pixelColor(8, 20) != QColor(Qt::red));
    QVERIFY(shown.pixelColor(31, 20) != QColor(Qt::red));
    m_panel->openForElement({"", "Name", "URL", "value", ""});
    QVERIFY(icon()->grab().toImage().pixelColor(9, 9) != QColor(Qt::red));
}

void ItemEditorPanelTest::iconIsChosen()
{
    m_panel->openForElement({"", "Name", "URL", "value", "glyph:e86f"});
    QTRY_VERIFY(!g_blockAutoQuit);
    const ModalDriver driver([this](QWidget* modal) {
        QVERIFY(qobject_cast<IconPickerDialog*>(modal));
        QCOMPARE(modal->parentWidget(), m_panel);
        QCOMPARE(qobject_cast<GlyphButton*>(modal->focusWidget())->property("glyph").toUInt(),
                 0xE86FU); // the present one
        QVERIFY(g_blockAutoQuit);
        pressKey(*modal, Qt::Key_Left);
        pressKey(*modal, Qt::Key_Return);
    });
    click(icon());
    QCOMPARE(driver.count(), 1);
    QSignalSpy ready(m_panel, &ItemEditorPanel::elementReady);
    click(save());
    QCOMPARE(ready.at(0).at(0).value<LauncherElement>().iconPath, "glyph:ea28");
}

void ItemEditorPanelTest::iconCancelledStays()
{
    m_panel->openForElement({"", "Name", "URL", "value", "glyph:e86f"});
    const ModalDriver driver([](QWidget* modal) { pressKey(*modal, Qt::Key_Escape); });
    click(icon());
    QCOMPARE(driver.count(), 1);
    QSignalSpy ready(m_panel, &ItemEditorPanel::elementReady);
    click(save());
    QCOMPARE(ready.at(0).at(0).value<LauncherElement>().iconPath, "glyph:e86f");
}

void ItemEditorPanelTest::browseAsksForAFile()
{
    m_panel->openForElement({"", "Name", "File", "value", ""});
    QTRY_VERIFY(!g_blockAutoQuit);
    const ModalDriver driver([this](QWidget* modal) {
        auto* chooser = qobject_cast<QFileDialog*>(modal);
        QVERIFY(chooser);
        QCOMPARE(chooser->windowTitle(), "Select File");
        QCOMPARE(chooser->nameFilters(),
                 QStringList{QStringLiteral("All Files (%1)").arg(Platform::anyFilePattern())});
        QCOMPARE(chooser->fileMode(), QFileDialog::ExistingFile);
        QCOMPARE(chooser->parentWidget(), m_panel);
        QVERIFY(g_blockAutoQuit);
        chooser->reject();
    });
    click(browse());
    QCOMPARE(driver.count(), 1);
}

void ItemEditorPanelTest::browsedPath_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after"); // with the path for %1
    QTest::newRow("file") << "File"
                          << "old"
                          << "%1";
    QTest::newRow("application") << "Application"
                                 << "old"
                                 << "%1";
    QTest::newRow("older application") << "App"
                                       << ""
                                       << "%1";
    QTest::newRow("bulk, empty") << "Bulk"
                                 << ""
                                 << "%1";
    QTest::newRow("bulk") << "Bulk"
                          << "/a\n/b"
                          << "/a\n/b\n%1";
    QTest::newRow("bulk, open line") << "Bulk"
                                     << "/a\n"
                                     << "/a\n\n%1";
}

void ItemEditorPanelTest::browsedPath()
{
    QFETCH(QString, stored);
    QFETCH(QString, before);
    QFETCH(QString, after);
    const QString path = TestHome::writeDataFile("my target", "content");
    m_panel->openForElement({"", "Name", stored, before, ""});
    const ModalDriver driver([&path](QWidget* modal) {
        auto* fileName = modal->findChild<QLineEdit*>("fileNameEdit");
        QVERIFY(fileName);
        fileName->setText(path);
        QTest::keyClick(fileName, Qt::Key_Return);
    });
    click(browse());
    QCOMPARE(driver.count(), 1);
    QCOMPARE(value()->toPlainText(), after.arg(path));
    QSignalSpy ready(m_panel, &ItemEditorPanel::elementReady);
    click(save());
    QCOMPARE(ready.at(0).at(0).value<LauncherElement>().value, after.arg(path));
}

void ItemEditorPanelTest::browseCancelled()
{
    m_panel->openForElement({"", "Name", "File", "old", ""});
    const ModalDriver driver([](QWidget* modal) { pressKey(*modal, Qt::Key_Escape); });
    click(browse());
    QCOMPARE(driver.count(), 1);
    QCOMPARE(value()->toPlainText(), "old");
}

void ItemEditorPanelTest::validationOrder_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("warning");
    QTest::newRow("nothing") << ""
                             << "" << kNoName;
    QTest::newRow("no name") << ""
                             << "x" << kNoName;
    QTest::newRow("name of blanks") << " \t "
                                    << "x" << kNoName;
    QTest::newRow("no value") << "Name"
                              << "" << kNoValue;
    QTest::newRow("value of blanks") << "Name"
                                     << " \n " << kNoValue;
    QTest::newRow("both") << "Name"
                          << "x"
                          << "";
}

void ItemEditorPanelTest::validationOrder()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(QString, warning);
    const LauncherData before = m_model->data();
    m_panel->openEditor("Work", {});
    this->name()->insert(name);
    this->value()->insertPlainText(value);
    QSignalSpy closed(m_panel, &ItemEditorPanel::closeRequested);
    QCOMPARE(warningOfSave(), warning);
    QCOMPARE(closed.count(), warning.isEmpty() ? 1 : 0);
    QCOMPARE(m_model->data() == before, !warning.isEmpty());
    QCOMPARE(this->name()->text(), name);
    QCOMPARE(this->value()->toPlainText(), value);
}

void ItemEditorPanelTest::savesANewItem()
{
    m_panel->openEditor("Work", {});
    type(name(), "  New one ");
    type(value(), " https://example.net ");
    QSignalSpy closed(m_panel, &ItemEditorPanel::closeRequested);
    QSignalSpy changed(m_model.get(), &LauncherModel::itemsChanged);
    click(save());
    QCOMPARE(closed, QList<QVariantList>{{2}});
    QCOMPARE(changed, QList<QVariantList>{{"Work"}});
    const LauncherElement made = m_model->getItems("Work").at(2);
    QCOMPARE(made.name, "New one");
    QCOMPARE(made.value, " https://example.net ");
    QCOMPARE(made.shortcutType, "URL");
    QCOMPARE(made.id.size(), 36);
    QVERIFY(!QUuid::fromString(made.id).isNull());
    QCOMPARE(LauncherModel(m_path).getItems("Work").at(2), made); // on disk as well
}

void ItemEditorPanelTest::savesAnExistingItem()
{
    m_panel->openEditor("Work", "w1");
    name()->selectAll();
    type(name(), "Renamed");
    QSignalSpy closed(m_panel, &ItemEditorPanel::closeRequested);
    click(save());
    QCOMPARE(closed, QList<QVariantList>{{0}});
    QCOMPARE(m_model->getItems("Work").size(), 2);
    QCOMPARE(m_model->getItems("Work").at(0),
             LauncherElement({"w1", "Renamed", "URL", "https://example.org", ""}));
}

void ItemEditorPanelTest::savesWhatIsThere_data()
{
    QTest::addColumn<LauncherElement>("element");
    const auto row = [](const char* name, const QString& type, const QString& value) {
        QTest::newRow(name) << LauncherElement{"x", "Name", type, value, ""};
    };
    row("unknown type", "Gadget", "value");
    row("older application", "App", "value");
    row("shell item", "ShellItem", "value");
    row("outer blanks", "Snippet", "\n  indented\n\n");
    row("hard blanks", "Snippet", QStringLiteral("1\u00a0000\u00a0km"));
    row("line ends of another system", "Snippet", "one\r\ntwo\r\n");
    row("separators", "Snippet", QStringLiteral("one\u2028two\u2029three"));
    row("not ASCII", "Snippet", QString::fromUtf8("שלום <b>&amp;</b> 👩‍👩‍👧 ñ"));
}

void ItemEditorPanelTest::savesWhatIsThere()
{
    QFETCH(LauncherElement, element);
    m_model->saveItem("Empty", element, -1);
    m_panel->openEditor("Empty", "x");
    click(save());
    QCOMPARE(m_model->getItems("Empty"), QVector<LauncherElement>{element});
}

void ItemEditorPanelTest::savesIntoAnotherSection()
{
    m_panel->openEditor("Work", "w1");
    type(name(), "2");
    const MenuDriver driver(chooseRow(1));
    click(section());
    QVERIFY(driver.hasClosed());
    QSignalSpy closed(m_panel, &ItemEditorPanel::closeRequested);
    QSignalSpy changed(m_model.get(), &LauncherModel::itemsChanged);
    click(save());
    QCOMPARE(closed, QList<QVariantList>{{1}});
    QCOMPARE(changed, QList<QVariantList>({{"Work"}, {"Work"}})); // saved, then moved
    QCOMPARE(m_panel->editingCategory(), "Home");
    QCOMPARE(m_model->getItems("Work").size(), 1);
    QCOMPARE(m_model->getItems("Home").at(1),
             LauncherElement({"w1", "Site2", "URL", "https://example.org", ""}));
}

void ItemEditorPanelTest::savesAnElement()
{
    const LauncherData before = m_model->data();
    m_panel->openForElement({"kept", "Alone", "Snippet", " text ", "glyph:e2c7"});
    type(name(), "! ");
    QSignalSpy closed(m_panel, &ItemEditorPanel::closeRequested);
    QSignalSpy ready(m_panel, &ItemEditorPanel::elementReady);
    click(save());
    QCOMPARE(closed.count(), 0);
    QCOMPARE(ready.count(), 1);
    QCOMPARE(ready.at(0).at(0).value<LauncherElement>(),
             LauncherElement({"kept", "Alone!", "Snippet", " text ", "glyph:e2c7"}));
    QVERIFY(m_model->data() == before);
}

void ItemEditorPanelTest::elementIsValidated()
{
    makeWithoutSections();
    m_panel->openForElement({});
    QSignalSpy ready(m_panel, &ItemEditorPanel::elementReady);
    QCOMPARE(warningOfSave(), kNoName); // a section isn't asked for
    type(name(), "Name");
    QCOMPARE(warningOfSave(), kNoValue);
    QCOMPARE(ready.count(), 0);
}

void ItemEditorPanelTest::cancelAndForceClose()
{
    const LauncherData before = m_model->data();
    m_panel->openEditor("Work", "w1");
    type(name(), "changed");
    QSignalSpy closed(m_panel, &ItemEditorPanel::closeRequested);
    click(cancel());
    m_panel->forceClose();
    QCOMPARE(closed, QList<QVariantList>({{-1}, {-1}}));
    QVERIFY(m_model->data() == before);
}

void ItemEditorPanelTest::itemVanishedMeanwhile()
{
    m_panel->openEditor("Work", "w1");
    m_model->deleteItem("Work", "w1");
    QSignalSpy closed(m_panel, &ItemEditorPanel::closeRequested);
    click(save());
    QCOMPARE(closed, QList<QVariantList>{{1}});
    const LauncherElement made = m_model->getItems("Work").at(1);
    QCOMPARE(made.name, "Site");
    QVERIFY(made.id != "w1");
}

void ItemEditorPanelTest::sectionVanishedMeanwhile()
{
    m_panel->openEditor("Work", "w1");
    const MenuDriver driver(chooseRow(1));
    click(section());
    m_model->deleteCategory("Work");
    QSignalSpy closed(m_panel, &ItemEditorPanel::closeRequested);
    click(save());
    QCOMPARE(closed, QList<QVariantList>{{1}});
    QCOMPARE(m_model->getItems("Home").at(1).name, "Site");
    QVERIFY(!m_model->data().sectionElements.contains("Work"));
}

void ItemEditorPanelTest::pickVanishedMeanwhile()
{
    m_panel->openEditor("Work", "w1");
    type(name(), " typed");
    m_model->deleteCategory("Work");
    QSignalSpy closed(m_panel, &ItemEditorPanel::closeRequested);
    QCOMPARE(warningOfSave(), kNoSection);
    QCOMPARE(closed.count(), 0);
    QVERIFY(!m_model->data().sectionElements.contains("Work")); // where nobody would find it
    QCOMPARE(name()->text(), "Site typed");
    QCOMPARE(section()->label(), "Home"); // one that there is
    click(save());
    QCOMPARE(closed, QList<QVariantList>{{1}});
    QCOMPARE(m_model->getItems("Home").at(1).name, "Site typed");
}

void ItemEditorPanelTest::allSectionsVanishedMeanwhile()
{
    m_panel->openEditor("Work", "w1");
    makeWithoutSections();
    QCOMPARE(warningOfSave(), kNoSection);
    QVERIFY(!section()->isVisible());
    QCOMPARE(warningOfSave(), kNoSection);
    QVERIFY(m_model->data().sectionElements.isEmpty());
}

void ItemEditorPanelTest::sectionsCameMeanwhile()
{
    makeWithoutSections();
    m_panel->openEditor("", {});
    type(name(), "Name");
    type(value(), "value");
    m_model->addCategory("Late", 0xE2C7);
    QCOMPARE(warningOfSave(), kNoSection);
    QVERIFY(section()->isVisible());
    click(save());
    QCOMPARE(m_model->getItems("Late").size(), 1);
}

void ItemEditorPanelTest::hugeValueIsShownInPart_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("isPart");
    QTest::newRow("a megabyte in one word") << QString(1'000'000, u'x') << true;
    QTest::newRow("a megabyte of line feeds") << QString(1'000'000, u'\n') + "x" << true;
    QTest::newRow("a megabyte of lines")
        << QStringLiteral("/a/path/of/a/file\n").repeated(60'000) << true;
    QTest::newRow("a line too long") << QString(8'193, u'x') << true;
    QTest::newRow("the longest line") << QString(8'192, u'x') << false;
    QTest::newRow("many lines") << QStringLiteral("/a/path/of/a/file\n").repeated(5'000) << false;
    QTest::newRow("pairs") << "a" + QString::fromUtf8("👩").repeated(9'000) << true;
}

void ItemEditorPanelTest::hugeValueIsShownInPart()
{
    QFETCH(QString, value);
    QFETCH(bool, isPart);
    const LauncherElement stored{"x", "Name", "Bulk", value, ""};
    m_model->saveItem("Empty", stored, -1);
    m_panel->openEditor("Empty", "x");
    const QString shown = this->value()->toPlainText();
    QVERIFY(value.startsWith(shown));
    QCOMPARE(shown.size() < value.size(), isPart);
    QVERIFY(shown.size() > 8'000);
    QVERIFY(!shown.back().isHighSurrogate());
    QCOMPARE(this->value()->isReadOnly(), isPart);
    type(name(), "2");
    QTest::keyClicks(this->value(), "y"); // which only an editable value takes
    click(save());
    const LauncherElement saved = m_model->getItems("Empty").at(0);
    QCOMPARE(saved.name, "Name2");
    QVERIFY(saved.value == (isPart ? value : "y" + value));

    m_panel->openEditor("Work", "w1"); // the next value is an ordinary one
    QVERIFY(!this->value()->isReadOnly());
}

void ItemEditorPanelTest::hugeNameIsKept()
{
    const LauncherElement stored{"x", QString(1'000'000, u'n'), "URL", "value", ""};
    m_model->saveItem("Empty", stored, -1);
    m_panel->openEditor("Empty", "x");
    click(save());
    QVERIFY(m_model->getItems("Empty") == QVector<LauncherElement>{stored});
}

void ItemEditorPanelTest::longNamesWidenNothing()
{
    m_model->addCategory(QStringLiteral("R&D\n").repeated(5'000), 0xE2C7);
    m_panel->openEditor("Work", "w1");
    const QSize hint = m_panel->minimumSizeHint();
    const QRect before = rectIn(*m_panel, section());
    m_panel->openEditor(m_model->data().categories.last(), {});
    name()->setText(QString(10'000, u'W'));
    QCOMPARE(section()->label(), m_model->data().categories.last());
    QCOMPARE(m_panel->minimumSizeHint(), hint);
    QVERIFY(hint.width() <= CardWidth);
    m_panel->layout()->activate();
    QCOMPARE(rectIn(*m_panel, section()), before);
    QCOMPARE(m_panel->width(), CardWidth);
}

void ItemEditorPanelTest::anyIconPathCostsNothing_data()
{
    QTest::addColumn<QString>("iconPath");
    QTest::newRow("directory") << TestHome::dataDir();
    QTest::newRow("no picture") << TestHome::writeDataFile("broken.png", "no picture");
    QTest::newRow("a megabyte") << QString(1'000'000, u'p');
    QTest::newRow("on another machine") << "//server/share/picture.png";
}

void ItemEditorPanelTest::anyIconPathCostsNothing()
{
    QFETCH(QString, iconPath);
    m_panel->openForElement({"", "Name", "URL", "value", iconPath});
    QVERIFY(!icon()->grab().isNull());
    QSignalSpy ready(m_panel, &ItemEditorPanel::elementReady);
    click(save());
    QVERIFY(ready.at(0).at(0).value<LauncherElement>().iconPath == iconPath);
}

void ItemEditorPanelTest::survivesItsEnd_data()
{
    QTest::addColumn<QString>("opener");
    QTest::addColumn<bool>("isMenu");
    QTest::newRow("type menu") << "editorTypeBtn" << true;
    QTest::newRow("section menu") << "editorSectionBtn" << true;
    QTest::newRow("icon picker") << "editorIconBtn" << false;
    QTest::newRow("file chooser") << "editorBrowseBtn" << false;
    QTest::newRow("warning") << "editorSaveBtn" << false;
}

void ItemEditorPanelTest::survivesItsEnd()
{
    QFETCH(QString, opener);
    QFETCH(bool, isMenu);
    const LauncherData before = m_model->data();
    for (const bool byKey : {true, false}) {
        rebuild();
        m_panel->openEditor("Work", "w2");
        name()->clear();
        name()->insert(" ");
        auto* button = m_panel->findChild<QWidget*>(opener);
        button->setFocus();
        const QPointer<ItemEditorPanel> panel(m_panel);
        bool opened = false;
        const MenuDriver menus([&](QMenu*) {
            opened = isMenu;
            delete panel;
        });
        const ModalDriver modals([&](QWidget*) {
            opened = !isMenu;
            delete panel;
        });
        if (byKey)
            QTest::keyPress(button, Qt::Key_Return);
        else
            click(button);
        QVERIFY(opened);
        QVERIFY(!panel);
        QVERIFY(!QApplication::activePopupWidget());
        QVERIFY(!QApplication::activeModalWidget());
    }
    QVERIFY(m_model->data() == before);
}

QTEST_MAIN(ItemEditorPanelTest)
#include "tst_itemeditorpanel.moc"
