// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AddEditCategoryDialog.h"
#include "AutoQuitBlocker.h"
#include "CustomMessageBox.h"
#include "FittingText.h"
#include "GlyphWidgets.h"
#include "GroupedSettingsPage.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "MenuSteps.h"
#include "Pixels.h"
#include "SettingsCard.h"
#include "StorageManager.h"
#include "TemplateEditorDialog.h"
#include "TemplateSettingsPage.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>

namespace
{

constexpr int kWindowWidth = 560; // of the page in the window of the program
constexpr uint kKitIcon = 0xE86F;

LauncherElement snippet(const QString& name)
{
    return {{}, name, ItemType::Snippet, name + QStringLiteral(" text"), {}};
}

QVector<SectionTemplate> kitAndBox()
{
    return {{"Kit", kKitIcon, {snippet("Tool"), snippet("Nail")}},
            {"Box", SectionTemplate::DefaultIcon, {snippet("Lid")}}};
}

QString titleSheet()
{
    return QStringLiteral("QLabel#titleStatic { background-color: transparent; color: %1; "
                          "font-size: 14px; font-weight: bold; border: none; }")
        .arg(Theme::colors().onSurface);
}

QPushButton* buttonOf(const QWidget* dialog, const char* textKey)
{
    for (auto* button : dialog->findChildren<QPushButton*>()) {
        if (button->text() == Tr::t(textKey) && button->isVisibleTo(dialog))
            return button;
    }
    return nullptr;
}

void clickButton(const QWidget* dialog, const char* textKey)
{
    QPushButton* button = buttonOf(dialog, textKey);
    QVERIFY2(button, textKey);
    button->click();
}

/// Adds an item in the editor of a template.
void addItem(const QWidget* editor, const QString& name)
{
    clickButton(editor, "actions.add_shortcut");
    editor->findChild<QLineEdit*>("editorNameInput")->setText(name);
    editor->findChild<QPlainTextEdit*>("editorValueInput")->setPlainText(name + " text");
    editor->findChild<QLineEdit*>("editorNameInput")->setModified(true);
    editor->findChild<QPlainTextEdit*>("editorValueInput")->document()->setModified(true);
    editor->findChild<QPushButton*>("editorSaveBtn")->click();
}

/// What is done to one dialog after the other, which should end in closing it.
class Dialogs : public ModalDriver
{
public:
    explicit Dialogs(QList<Action> steps)
        : ModalDriver([this](QWidget* modal) {
              if (m_steps.isEmpty())
                  static_cast<QDialog*>(modal)->reject();
              else
                  m_steps.takeFirst()(modal);
          }),
          m_size(int(steps.size())),
          m_steps(std::move(steps))
    {}

    /// Whether there have been as many dialogs as steps.
    bool isDone() const { return count() == m_size; }

private:
    int m_size;
    QList<Action> m_steps;
};

ModalDriver::Action enterName(const QString& text)
{
    return [text](QWidget* modal) {
        QVERIFY(qobject_cast<AddEditCategoryDialog*>(modal));
        auto* input = modal->findChild<QLineEdit*>();
        input->setText(text);
        QTest::keyClick(input, Qt::Key_Return);
    };
}

void cancel(QWidget* modal)
{
    clickButton(modal, "dialog.btn_cancel");
}

ModalDriver::Action expectWarning(const char* textKey)
{
    return [textKey](QWidget* modal) {
        const auto labels = modal->findChildren<QLabel*>();
        QCOMPARE(labels.value(0)->text(), "Validation");
        QCOMPARE(labels.value(1)->accessibleName(), Tr::t(textKey));
        pressKey(*modal, Qt::Key_Return);
    };
}

} // namespace

class TemplateSettingsPageTest : public QObject, protected MenuSteps
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase() { FittingText::useProgramFont(); }
    void init();
    void cleanup();

    void withoutTemplates_data();
    void withoutTemplates();
    void rowsShowTheTemplates();
    void countIsTranslated();
    void layoutFollowsTheMeasures();
    void textsFit_data();
    void textsFit();
    void menuButtonLooksLikeItself();
    void rowsAreCards();
    void changesArriveATurnLater();

    void rowsOfTheMenu();
    void menuHoldsTheWindows();
    void endWithoutAChangeGivesTheFocusBack_data();
    void endWithoutAChangeGivesTheFocusBack();
    void focusStaysInPlace_data();
    void focusStaysInPlace();
    void focusElsewhereStays();

    void nameDialogShows_data();
    void nameDialogShows();
    void templateIsMade();
    void templateIsNotMade_data();
    void templateIsNotMade();
    void templateIsRenamed_data();
    void templateIsRenamed();
    void templateIsRefilled();
    void refillIsGivenUp();
    void deletionIsAsked();
    void deletionFollowsTheAnswer_data();
    void deletionFollowsTheAnswer();
    void vanishedTemplate_data();
    void vanishedTemplate();

    void strangeNames_data();
    void strangeNames();
    void templateWithoutAName();
    void sameNameTwice();
    void manyTemplates();
    void pageMayGo_data();
    void pageMayGo();

private:
    void open(const QVector<SectionTemplate>& templates = kitAndBox());
    QList<QFrame*> rows() const;
    QStringList names() const;
    QPushButton* menuButton(const QString& name) const;
    void regainKeyboard() const;
    void chooseFor(const QString& name, const char* textKey,
                   const QList<ModalDriver::Action>& steps);
    void create(const QList<ModalDriver::Action>& steps);
    QVector<SectionTemplate> onDisk() const { return StorageManager::loadData(m_path).templates; }

    QString m_path;
    std::unique_ptr<LauncherModel> m_model;
    std::unique_ptr<QWidget> m_window;
    QPointer<TemplateSettingsPage> m_page;
};

void TemplateSettingsPageTest::init()
{
    Tr::currentLang = Lang::En;
    Theme::forceTheme = 1;
    m_path = QDir(TestHome::dataDir()).filePath("data.json");
}

void TemplateSettingsPageTest::cleanup()
{
    m_window.reset();
    m_model.reset();
}

void TemplateSettingsPageTest::open(const QVector<SectionTemplate>& templates)
{
    LauncherData document;
    document.categories = QStringList{"Default"};
    document.defaultCategory = "Default";
    document.templates = templates;
    StorageManager::saveData(m_path, document);
    m_model = std::make_unique<LauncherModel>(m_path);
    m_window = std::make_unique<QWidget>();
    m_page = new TemplateSettingsPage(m_model.get());
    auto* column = new QVBoxLayout(m_window.get());
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(new GroupedSettingsPage(QList<QWidget*>{m_page}));
    m_window->resize(kWindowWidth, 500);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

QList<QFrame*> TemplateSettingsPageTest::rows() const
{
    QList<QFrame*> cards;
    collectSettingsRows(m_page, cards);
    return cards;
}

/// From the second row on: the first one makes templates.
QStringList TemplateSettingsPageTest::names() const
{
    QStringList texts;
    for (const QFrame* row : rows().mid(1))
        texts.append(row->findChild<QLabel*>("titleStatic")->text());
    return texts;
}

QPushButton* TemplateSettingsPageTest::menuButton(const QString& name) const
{
    return m_page->findChild<QPushButton*>("tplMenuBtn_" + name);
}

/// Here, unlike on a desktop, a menu or a dialog leaves the keyboard to nobody.
void TemplateSettingsPageTest::regainKeyboard() const
{
    m_window->activateWindow();
    QTRY_VERIFY(m_window->isActiveWindow());
}

/// Chooses a row of a template's menu, which opens these dialogs.
void TemplateSettingsPageTest::chooseFor(const QString& name, const char* textKey,
                                         const QList<ModalDriver::Action>& steps)
{
    const MenuScript script({chooseKey(textKey)});
    const Dialogs dialogs(steps);
    menuButton(name)->setFocus();
    menuButton(name)->click();
    QVERIFY(script.isDone());
    QVERIFY(dialogs.isDone());
    regainKeyboard();
}

void TemplateSettingsPageTest::create(const QList<ModalDriver::Action>& steps)
{
    const Dialogs dialogs(steps);
    auto* button = m_page->findChild<QPushButton*>("tplCreateBtn");
    button->setFocus();
    button->click();
    QVERIFY(dialogs.isDone());
    regainKeyboard();
}

void TemplateSettingsPageTest::withoutTemplates_data()
{
    QTest::addColumn<bool>("hasModel");
    QTest::newRow("none yet") << true;
    QTest::newRow("no model") << false;
}

void TemplateSettingsPageTest::withoutTemplates()
{
    QFETCH(bool, hasModel);
    open({});
    TemplateSettingsPage page(hasModel ? m_model.get() : nullptr);
    QCOMPARE(page.layout()->count(), 2);
    auto* create = qobject_cast<QFrame*>(page.layout()->itemAt(0)->widget());
    QVERIFY(SettingsCard::isCard(create));
    QCOMPARE(create->findChild<QLabel*>("titleStatic")->text(), "New template");
    auto* button = create->findChild<QPushButton*>("tplCreateBtn");
    QCOMPARE(button->text(), "New Template");
    QCOMPARE(button->height(), 36);
    QCOMPARE(button->focusPolicy(), Qt::StrongFocus);
    QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(button->styleSheet(), Theme::primaryBtnStyle(Theme::colors()));
    const auto* hint = qobject_cast<QLabel*>(page.layout()->itemAt(1)->widget());
    QCOMPARE(hint->text(), Tr::t("template.page_empty"));
    QVERIFY(hint->wordWrap());
    const ColorTokens c = Theme::colors();
    QCOMPARE(hint->styleSheet(),
             Theme::textOnCardStyle(c.onSurfaceVariant, "13px") + " padding-left: 24px;");
    QCOMPARE(create->findChild<QLabel*>("titleStatic")->styleSheet(), titleSheet());
    const Dialogs dialogs({cancel});
    button->click();
    QCOMPARE(dialogs.count(), hasModel ? 1 : 0);
}

void TemplateSettingsPageTest::rowsShowTheTemplates()
{
    open();
    QCOMPARE(rows().size(), 3);
    QCOMPARE(rows().constFirst()->findChild<QLabel*>("titleStatic")->text(), "New template");
    QCOMPARE(names(), QStringList({"Kit", "Box"}));
    const QList<QLabel*> labels = rows().at(1)->findChildren<QLabel*>();
    QCOMPARE(labels.size(), 2);
    QCOMPARE(labels.at(1)->text(), "2 shortcuts");
    QCOMPARE(labels.at(0)->objectName(), "titleStatic");
    QCOMPARE(labels.at(0)->styleSheet(), titleSheet());
    QCOMPARE(labels.at(1)->styleSheet(),
             Theme::textOnCardStyle(Theme::colors().onSurfaceVariant, "13px"));
    auto* icon = rows().at(1)->findChild<GlyphLabel*>();
    QCOMPARE(icon->size(), QSize(24, 24));
    GlyphLabel likeness;
    likeness.resize(icon->size());
    likeness.setGlyph(kKitIcon, 18, Theme::colors().onSurface);
    QCOMPARE(Pixels::imageOf(*icon), Pixels::imageOf(likeness));
}

void TemplateSettingsPageTest::countIsTranslated()
{
    for (const Lang lang : Tr::all()) {
        Tr::currentLang = lang;
        open({{"Kit", kKitIcon, QVector<LauncherElement>(12)}, {"None", kKitIcon, {}}});
        const auto countOf = [this](int row) {
            return rows().at(row)->findChildren<QLabel*>().at(1)->text();
        };
        QCOMPARE(countOf(1), Tr::t("template.item_count").arg(12));
        QCOMPARE(countOf(2), Tr::t("template.item_count").arg(0));
    }
}

void TemplateSettingsPageTest::layoutFollowsTheMeasures()
{
    open();
    m_page->setParent(nullptr);
    m_page->layout()->setContentsMargins(16, 16, 16, 16); // which the group has taken away
    const std::unique_ptr<QWidget> page(m_page);
    page->resize(kWindowWidth, 400);
    page->show();
    QVERIFY(QTest::qWaitForWindowExposed(page.get()));
    QCOMPARE(TemplateSettingsPage(m_model.get()).layout()->contentsMargins(),
             QMargins(16, 16, 16, 16));
    QCOMPARE(page->layout()->spacing(), 12);
    const QFrame* row = rows().at(1);
    QCOMPARE(rectIn(*page, row).left(), 16);
    QCOMPARE(rectIn(*page, row).right() + 1, kWindowWidth - 16);
    const QRect icon = rectIn(*row, row->findChild<GlyphLabel*>());
    QCOMPARE(icon.left(), 24);
    QVERIFY(qAbs(icon.center().y() - row->rect().center().y()) <= 1);
    const QList<QLabel*> labels = row->findChildren<QLabel*>();
    const QRect name = rectIn(*row, labels.at(0));
    const QRect count = rectIn(*row, labels.at(1));
    QCOMPARE(name.left(), icon.right() + 1 + 12);
    QCOMPARE(count.left(), name.left());
    QCOMPARE(count.top(), name.bottom() + 1 + 2);
    const QRect button = rectIn(*row, row->findChild<QPushButton*>());
    QCOMPARE(button.right() + 1, row->width() - 16);
    QCOMPARE(name.right() + 1, button.left() - 12);
}

void TemplateSettingsPageTest::textsFit_data()
{
    QTest::addColumn<Lang>("lang");
    QTest::addColumn<int>("count");
    for (const Lang lang : Tr::all()) {
        for (const int count : {0, 1, 30}) // without and with a scroll bar
            QTest::addRow("%s, %d", qPrintable(Tr::codeFor(lang)), count) << lang << count;
    }
}

void TemplateSettingsPageTest::textsFit()
{
    QFETCH(Lang, lang);
    QFETCH(int, count);
    Tr::currentLang = lang;
    QVector<SectionTemplate> templates;
    for (int i = 0; i < count; ++i)
        templates.append({QString::number(i), kKitIcon, QVector<LauncherElement>(1000)});
    open(templates);
    QCOMPARE(rows().size(), 1 + count);
    auto* create = m_page->findChild<QPushButton*>("tplCreateBtn");
    QVERIFY(create->fontMetrics().horizontalAdvance(create->text()) <=
            FittingText::contentsOf(*create).width());
    for (const QLabel* label : m_page->findChildren<QLabel*>()) {
        const QRect room = label->contentsRect();
        const int flags = label->wordWrap() ? Qt::TextWordWrap : 0;
        const QRect text =
            label->fontMetrics().boundingRect(QRect(0, 0, room.width(), 0), flags, label->text());
        QVERIFY2(text.width() <= room.width() && text.height() <= room.height(),
                 qPrintable(label->text()));
    }
    for (const QFrame* row : rows())
        QVERIFY(m_window->rect().contains(
            QRect(row->mapTo(m_window.get(), QPoint()).x(), 0, row->width(), 1)));
}

void TemplateSettingsPageTest::menuButtonLooksLikeItself()
{
    open();
    QPushButton* button = menuButton("Kit");
    QCOMPARE(button->size(), QSize(36, 36));
    QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(button->focusPolicy(), Qt::StrongFocus);
    const ColorTokens c = Theme::colors();
    const auto layer = [&c](double weight) {
        return Theme::stateLayerOn(c.surfaceContainerHighest, c.onSurface, weight);
    };
    QCOMPARE(button->styleSheet(),
             QStringLiteral("QPushButton { background-color: %1; border: none; border-radius: "
                            "18px; outline: 0; }QPushButton:hover { background-color: %2; }"
                            "QPushButton:focus { background-color: %3; }")
                 .arg(c.surfaceContainerHighest, layer(0.08), layer(0.1)));
    GlyphButton likeness;
    likeness.setStyleSheet(button->styleSheet());
    likeness.setGlyph(0xE5D4, 16, c.onSurface);
    likeness.resize(button->size());
    QCOMPARE(Pixels::imageOf(*button), Pixels::imageOf(likeness));
}

void TemplateSettingsPageTest::rowsAreCards()
{
    open();
    const QList<QFrame*> cards = rows();
    cards.at(0)->setFocus();
    pressKey(*m_window, Qt::Key_Down);
    QCOMPARE(m_window->focusWidget(), cards.at(1));
    pressKey(*m_window, Qt::Key_Return);
    QCOMPARE(m_window->focusWidget(), menuButton("Kit"));
    pressKey(*m_window, Qt::Key_Down);
    QCOMPARE(m_window->focusWidget(), menuButton("Box"));
    pressKey(*m_window, Qt::Key_Escape);
    QCOMPARE(m_window->focusWidget(), cards.at(2));
}

void TemplateSettingsPageTest::changesArriveATurnLater()
{
    open();
    const QPointer<QFrame> row = rows().at(1);
    m_model->saveTemplate({"Third", kKitIcon, {snippet("One")}});
    m_model->renameTemplate("Kit", "Case", kKitIcon);
    QVERIFY(row); // its menu may be what this comes from
    QCOMPARE(names(), QStringList({"Kit", "Box"}));
    QTRY_COMPARE(names(), QStringList({"Case", "Box", "Third"}));
    QTRY_VERIFY(!row);
    for (const char* name : {"Case", "Box", "Third"})
        m_model->deleteTemplate(name);
    QTRY_COMPARE(rows().size(), 1);
    QTRY_COMPARE(m_page->layout()->count(), 2);
}

void TemplateSettingsPageTest::rowsOfTheMenu()
{
    open();
    QRect place;
    const MenuScript script({[this, &place](QMenu* menu) {
        place = menu->geometry();
        verifyRows(menu, withCancel({{"Edit Name & Icon", 0xF097},
                                     {"Edit Contents", 0xF1C4},
                                     {"Delete Template", 0xE92E}}));
    }});
    menuButton("Kit")->click();
    QVERIFY(script.isDone());
    QCOMPARE(place.topLeft(), menuButton("Kit")->mapToGlobal(QPoint(0, 36 + 4)));
}

void TemplateSettingsPageTest::menuHoldsTheWindows()
{
    open();
    QTRY_VERIFY(!g_blockAutoQuit);
    bool isHeld = false;
    const MenuScript script({[&isHeld](QMenu* menu) {
        isHeld = g_blockAutoQuit;
        QTest::keyClick(menu, Qt::Key_Backspace);
        QVERIFY(!menu->isVisible());
    }});
    menuButton("Kit")->click();
    QVERIFY(isHeld);
}

void TemplateSettingsPageTest::endWithoutAChangeGivesTheFocusBack_data()
{
    QTest::addColumn<QString>("row");
    QTest::newRow("no choice") << "";
    QTest::newRow("name") << "template.edit";
    QTest::newRow("contents") << "template.edit_contents";
    QTest::newRow("deletion") << "template.delete";
}

void TemplateSettingsPageTest::endWithoutAChangeGivesTheFocusBack()
{
    QFETCH(QString, row);
    open();
    const MenuScript script(
        {row.isEmpty() ? MenuScript::Action(&cancelByKey) : choose(Tr::t(row))});
    const Dialogs dialogs({cancel});
    menuButton("Box")->click();
    QVERIFY(script.isDone());
    regainKeyboard();
    QTRY_COMPARE(QApplication::focusWidget(), menuButton("Box"));
    QCOMPARE(onDisk(), kitAndBox());
}

void TemplateSettingsPageTest::focusStaysInPlace_data()
{
    QTest::addColumn<QString>("after"); // the button that has it
    QTest::addColumn<QString>("change");
    QTest::newRow("last deleted") << "tplMenuBtn_Kit"
                                  << "delete Box";
    QTest::newRow("first deleted") << "tplMenuBtn_Box"
                                   << "delete Kit";
    QTest::newRow("renamed") << "tplMenuBtn_Case"
                             << "rename";
    QTest::newRow("refilled") << "tplMenuBtn_Kit"
                              << "refill";
    QTest::newRow("made") << "tplCreateBtn"
                          << "make";
}

void TemplateSettingsPageTest::focusStaysInPlace()
{
    QFETCH(QString, after);
    QFETCH(QString, change);
    open();
    const auto addAndSave = [](QWidget* editor) {
        addItem(editor, "New");
        clickButton(editor, "dialog.btn_save");
    };
    const auto confirm = [](QWidget* modal) { clickButton(modal, "dialog.btn_delete"); };
    if (change == "make")
        create({enterName("Case"), addAndSave});
    else if (change == "rename")
        chooseFor("Kit", "template.edit", {enterName("Case")});
    else if (change == "refill")
        chooseFor("Kit", "template.edit_contents", {addAndSave});
    else
        chooseFor(change.mid(7), "template.delete", {confirm});
    QCoreApplication::processEvents(); // the turn in which the page follows
    QTRY_VERIFY(QApplication::focusWidget());
    QCOMPARE(QApplication::focusWidget()->objectName(), after);
    if (change == "rename")
        QCOMPARE(names(), QStringList({"Case", "Box"}));
}

void TemplateSettingsPageTest::focusElsewhereStays()
{
    open();
    auto* field = new QLineEdit;
    m_window->layout()->addWidget(field);
    field->setFocus();
    m_model->deleteTemplate("Kit");
    QTRY_COMPARE(names(), QStringList("Box"));
    QCOMPARE(QApplication::focusWidget(), field);
}

void TemplateSettingsPageTest::nameDialogShows_data()
{
    QTest::addColumn<bool>("isNew");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("name");
    QTest::addColumn<uint>("icon");
    QTest::newRow("new") << true << "New Template"
                         << "" << 0xE2C7U;
    QTest::newRow("existing") << false << "Edit Name & Icon"
                              << "Kit" << kKitIcon;
}

void TemplateSettingsPageTest::nameDialogShows()
{
    QFETCH(bool, isNew);
    QFETCH(QString, title);
    QFETCH(QString, name);
    QFETCH(uint, icon);
    open();
    const auto look = [&](QWidget* modal) {
        QVERIFY(g_blockAutoQuit);
        QCOMPARE(modal->parentWidget(), m_window.get());
        QCOMPARE(modal->windowTitle(), title);
        const auto* input = modal->findChild<QLineEdit*>();
        QCOMPARE(input->text(), name);
        QCOMPARE(input->placeholderText(), Tr::t("template.name_placeholder"));
        QCOMPARE(input->accessibleName(), Tr::t("template.lbl_name"));
        QCOMPARE(static_cast<AddEditCategoryDialog*>(modal)->getIcon(), icon);
        modal->findChild<QLineEdit*>()->setText("  ");
        const Dialogs warning({expectWarning("template.err_name_empty")});
        QTest::keyClick(modal->findChild<QLineEdit*>(), Qt::Key_Return);
        QVERIFY(warning.isDone());
        cancel(modal);
    };
    if (isNew)
        create({look});
    else
        chooseFor("Kit", "template.edit", {look});
    QCOMPARE(onDisk(), kitAndBox());
}

void TemplateSettingsPageTest::templateIsMade()
{
    open();
    const auto pickIcon = [](QWidget* modal) {
        for (auto* button : modal->findChildren<GlyphButton*>()) {
            if (button->property("glyph").toUInt() == 0xE943)
                button->click();
        }
        enterName(" Case ")(modal);
    };
    const auto fill = [this](QWidget* modal) {
        QVERIFY(qobject_cast<TemplateEditorDialog*>(modal));
        QCOMPARE(modal->windowTitle(), "Edit Contents");
        QCOMPARE(modal->parentWidget(), m_window.get());
        QCOMPARE(onDisk(), kitAndBox()); // it exists only once it has items
        addItem(modal, "One");
        addItem(modal, "Two");
        clickButton(modal, "dialog.btn_save");
    };
    create({pickIcon, fill});
    QVector<SectionTemplate> expected = kitAndBox();
    const auto url = [](const QString& name) {
        return LauncherElement{{}, name, ItemType::Url, name + " text", {}};
    };
    expected.append({"Case", 0xE943, {url("One"), url("Two")}});
    QCOMPARE(onDisk().size(), 3);
    QCOMPARE(m_model->templates(), expected);
    QTRY_COMPARE(names(), QStringList({"Kit", "Box", "Case"}));
}

void TemplateSettingsPageTest::templateIsNotMade_data()
{
    QTest::addColumn<QString>("name"); // empty for cancelling that dialog
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("no name") << "" << false;
    QTest::newRow("name taken") << "Box" << true;
    QTest::newRow("items given up") << "Case" << false;
    QTest::newRow("other case of a name") << "box" << false;
}

void TemplateSettingsPageTest::templateIsNotMade()
{
    QFETCH(QString, name);
    QFETCH(bool, isTaken);
    open();
    const QSignalSpy changes(m_model.get(), &LauncherModel::templatesChanged);
    const auto giveUp = [](QWidget* modal) {
        QVERIFY(qobject_cast<TemplateEditorDialog*>(modal));
        addItem(modal, "One");
        cancel(modal);
    };
    if (name.isEmpty())
        create({cancel});
    else if (isTaken)
        create({enterName(name), expectWarning("template.err_name_exists")});
    else
        create({enterName(name), giveUp});
    QCOMPARE(changes.count(), 0);
    QCOMPARE(onDisk(), kitAndBox());
}

void TemplateSettingsPageTest::templateIsRenamed_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("free name") << "Case" << false;
    QTest::newRow("its own") << "Kit" << false;
    QTest::newRow("other case") << "KIT" << false;
    QTest::newRow("another's") << "Box" << true;
}

void TemplateSettingsPageTest::templateIsRenamed()
{
    QFETCH(QString, name);
    QFETCH(bool, isTaken);
    open();
    const auto pickIcon = [&name](QWidget* modal) {
        modal->findChildren<GlyphButton*>().constFirst()->click(); // the folder
        enterName(name)(modal);
    };
    QList<ModalDriver::Action> steps{pickIcon};
    if (isTaken)
        steps.append(expectWarning("template.err_name_exists"));
    chooseFor("Kit", "template.edit", steps);
    QVector<SectionTemplate> expected = kitAndBox();
    if (!isTaken) {
        expected[0].name = name;
        expected[0].icon = 0xE2C7;
    }
    QCOMPARE(onDisk(), expected);
}

void TemplateSettingsPageTest::templateIsRefilled()
{
    open();
    const auto refill = [](QWidget* modal) {
        QCOMPARE(modal->windowTitle(), "Edit Contents");
        addItem(modal, "Screw");
        clickButton(modal, "dialog.btn_save");
    };
    chooseFor("Kit", "template.edit_contents", {refill});
    QVector<SectionTemplate> expected = kitAndBox();
    expected[0].items.append({{}, "Screw", ItemType::Url, "Screw text", {}});
    QCOMPARE(m_model->templates(), expected); // in its old place
    QTRY_COMPARE(rows().at(1)->findChildren<QLabel*>().at(1)->text(), "3 shortcuts");
}

void TemplateSettingsPageTest::refillIsGivenUp()
{
    open();
    const auto giveUp = [](QWidget* modal) {
        addItem(modal, "Screw");
        cancel(modal);
    };
    chooseFor("Kit", "template.edit_contents", {giveUp});
    QCOMPARE(m_model->templates(), kitAndBox());
}

void TemplateSettingsPageTest::deletionIsAsked()
{
    open();
    const auto look = [this](QWidget* modal) {
        QVERIFY(g_blockAutoQuit);
        QCOMPARE(modal->parentWidget(), m_window.get());
        const auto labels = modal->findChildren<QLabel*>();
        QCOMPARE(labels.value(0)->text(), "Delete Template?");
        QCOMPARE(labels.value(1)->accessibleName(),
                 Tr::t("template.confirm_delete_msg").arg("Kit"));
        const ColorTokens c = Theme::colors();
        QPushButton* erase = buttonOf(modal, "dialog.btn_delete");
        QCOMPARE(erase->styleSheet(), Theme::destructiveBtnStyle(c));
        QVERIFY(!erase->isDefault());
        QVERIFY(buttonOf(modal, "dialog.btn_cancel")->isDefault());
        cancel(modal);
    };
    chooseFor("Kit", "template.delete", {look});
    QCOMPARE(onDisk(), kitAndBox());
}

void TemplateSettingsPageTest::deletionFollowsTheAnswer_data()
{
    QTest::addColumn<QList<Qt::Key>>("keys");
    QTest::addColumn<bool>("isDeleted");
    QTest::newRow("Enter, on what is offered") << QList{Qt::Key_Return} << false;
    QTest::newRow("to the first button") << QList{Qt::Key_Left, Qt::Key_Return} << true;
    QTest::newRow("Esc counts as the first") << QList{Qt::Key_Escape} << true;
    QTest::newRow("and so does Backspace") << QList{Qt::Key_Backspace} << true;
}

void TemplateSettingsPageTest::deletionFollowsTheAnswer()
{
    QFETCH(QList<Qt::Key>, keys);
    QFETCH(bool, isDeleted);
    open();
    const auto answer = [&keys](QWidget* modal) {
        for (const Qt::Key key : keys)
            pressKey(*modal, key);
    };
    chooseFor("Kit", "template.delete", {answer});
    QVector<SectionTemplate> expected = kitAndBox();
    if (isDeleted)
        expected.removeFirst();
    QCOMPARE(onDisk(), expected);
    QTRY_COMPARE(names().size(), expected.size());
}

void TemplateSettingsPageTest::vanishedTemplate_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<bool>("isBehindTheDialog");
    for (const char* row : {"template.edit", "template.edit_contents", "template.delete"})
        QTest::addRow("%s, behind the menu", row) << row << false;
    for (const char* row : {"template.edit", "template.delete"})
        QTest::addRow("%s, behind the dialog", row) << row << true;
}

void TemplateSettingsPageTest::vanishedTemplate()
{
    QFETCH(QString, row);
    QFETCH(bool, isBehindTheDialog);
    open();
    const auto chooseRow = choose(Tr::t(row));
    const MenuScript script({[&](QMenu* menu) {
        if (!isBehindTheDialog)
            m_model->deleteTemplate("Kit");
        chooseRow(menu);
    }});
    // What would rename or delete it.
    const Dialogs dialogs({[&](QWidget* modal) {
        m_model->deleteTemplate("Kit");
        if (auto* input = modal->findChild<QLineEdit*>())
            QTest::keyClick(input, Qt::Key_Return);
        else
            pressKey(*modal, Qt::Key_Escape);
    }});
    menuButton("Kit")->click();
    QVERIFY(script.isDone());
    QCOMPARE(dialogs.count(), isBehindTheDialog ? 1 : 0);
    QCOMPARE(onDisk(), kitAndBox().mid(1));
    QTRY_COMPARE(names(), QStringList("Box"));
}

void TemplateSettingsPageTest::strangeNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a megabyte") << QString(1'000'000, 'W');
    QTest::newRow("markup") << "<b>bold</b>&amp;<img src=x>";
    QTest::newRow("ampersands") << "&Fish && Chips";
    QTest::newRow("lines") << "one\ntwo\r\nthree";
    QTest::newRow("place of a name") << "%1 %2";
    QTest::newRow("right to left") << QString::fromUtf8("\xe2\x80\xae\xd7\x97\xd7\x90");
}

void TemplateSettingsPageTest::strangeNames()
{
    QFETCH(QString, name);
    open({{"Kit", kKitIcon, {snippet("One")}}});
    const QSize sizeOfPlainName = rows().at(1)->size();
    open({{name, kKitIcon, {snippet("One")}}});
    QCOMPARE(names(), QStringList(name));
    QCOMPARE(m_window->width(), kWindowWidth);
    QCOMPARE(rows().at(1)->size(), sizeOfPlainName);
    const auto changeIcon = [](QWidget* modal) {
        modal->findChildren<GlyphButton*>().constFirst()->click();
        QTest::keyClick(modal->findChild<QLineEdit*>(), Qt::Key_Return);
    };
    chooseFor(name, "template.edit", {changeIcon});
    QCOMPARE(m_model->templates().at(0).name, name);
    QCOMPARE(m_model->templates().at(0).icon, 0xE2C7U);
    const auto addAndSave = [](QWidget* editor) {
        addItem(editor, "Two");
        clickButton(editor, "dialog.btn_save");
    };
    chooseFor(name, "template.edit_contents", {addAndSave});
    QCOMPARE(m_model->templates().at(0).items.size(), 2);
    QSize box;
    const auto confirm = [&box, &name](QWidget* modal) {
        box = modal->size();
        QVERIFY(modal->findChildren<QLabel*>().at(1)->accessibleName().contains(name.left(20)));
        clickButton(modal, "dialog.btn_delete");
    };
    QTRY_VERIFY(menuButton(name));
    chooseFor(name, "template.delete", {confirm});
    QVERIFY2(box.width() < 700 && box.height() < 700, "it must fit on any screen");
    QVERIFY(m_model->templates().isEmpty());
}

void TemplateSettingsPageTest::templateWithoutAName()
{
    open({{"", kKitIcon, {snippet("One")}}});
    QCOMPARE(names(), QStringList(""));
    // Nothing of that name could be kept, so the work would be lost.
    chooseFor("", "template.edit_contents", {expectWarning("template.err_name_empty")});
    chooseFor("", "template.edit", {enterName("Kit")});
    QCOMPARE(onDisk(), QVector<SectionTemplate>({{"Kit", kKitIcon, {snippet("One")}}}));
}

void TemplateSettingsPageTest::sameNameTwice()
{
    const SectionTemplate second{"Kit", 0xE2C7, {snippet("Other")}};
    open({kitAndBox().at(0), second});
    QCOMPARE(names(), QStringList({"Kit", "Kit"}));
    chooseFor("Kit", "template.edit", {enterName("Case")});
    QTRY_COMPARE(names(), QStringList({"Case", "Kit"}));
    QCOMPARE(onDisk().at(1), second);
    chooseFor("Case", "template.edit",
              {enterName("Kit"), expectWarning("template.err_name_exists")});
}

void TemplateSettingsPageTest::manyTemplates()
{
    constexpr int kCount = TemplateSettingsPage::RowsAtOnce * 3;
    constexpr int kPatienceMs = 60000; // on a busy machine
    QVector<SectionTemplate> templates;
    QStringList expected;
    for (int i = 0; i < kCount; ++i) {
        templates.append({QString::number(i), kKitIcon, {snippet("One")}});
        expected.append(QString::number(i));
    }
    open(templates);
    QVERIFY(names().size() >= TemplateSettingsPage::RowsAtOnce);
    QTRY_COMPARE_WITH_TIMEOUT(names(), expected, kPatienceMs);
    m_model->deleteTemplate("40");
    m_model->renameTemplate("50", "fifty", kKitIcon);
    m_model->saveTemplate({"last", kKitIcon, {snippet("One")}});
    expected.removeAt(40);
    expected[49] = "fifty";
    expected.append("last");
    QTRY_COMPARE_WITH_TIMEOUT(names(), expected, kPatienceMs);
    // From card to card as they stand below each other.
    QList<int> tops;
    for (const QFrame* row : rows())
        tops.append(rectIn(*m_page, row).top());
    QVERIFY(std::is_sorted(tops.begin(), tops.end()));
    QCOMPARE(m_page->layout()->count(), rows().size());
}

void TemplateSettingsPageTest::pageMayGo_data()
{
    QTest::addColumn<QString>("row"); // empty for the button that makes a template
    QTest::addColumn<QString>("end"); // what goes, and behind what
    for (const char* row : {"template.edit", "template.edit_contents", "template.delete"}) {
        QTest::addRow("%s, page behind the menu", row) << row << "menu";
        QTest::addRow("%s, page behind the dialog", row) << row << "page";
        QTest::addRow("%s, window behind the dialog", row) << row << "window";
    }
    QTest::newRow("made, page behind the dialog") << ""
                                                  << "page";
    QTest::newRow("made, window behind the dialog") << ""
                                                    << "window";
}

void TemplateSettingsPageTest::pageMayGo()
{
    QFETCH(QString, row);
    QFETCH(QString, end);
    open();
    const auto answer = [&](QWidget* modal) {
        if (end == "page")
            delete m_page;
        if (end == "window") {
            m_window.reset();
            return;
        }
        // The dialog is the window's, and its answer still counts.
        if (qobject_cast<TemplateEditorDialog*>(modal)) {
            addItem(modal, "New");
            clickButton(modal, "dialog.btn_save");
        } else if (qobject_cast<AddEditCategoryDialog*>(modal)) {
            enterName("Case")(modal);
        } else {
            clickButton(modal, "dialog.btn_delete");
        }
    };
    const ModalDriver driver(answer);
    QList<MenuScript::Action> actions;
    if (end == "menu")
        actions.append([this](QMenu*) { delete m_page; });
    else if (!row.isEmpty())
        actions.append(choose(Tr::t(row)));
    const MenuScript script(actions);
    if (row.isEmpty())
        m_page->findChild<QPushButton*>("tplCreateBtn")->click();
    else
        menuButton("Kit")->click();
    QVERIFY(script.isDone());
    QVERIFY(!m_page);
    QVector<SectionTemplate> expected = kitAndBox();
    const LauncherElement made{{}, "New", ItemType::Url, "New text", {}};
    if (end == "page") {
        if (row == "template.edit")
            expected[0].name = "Case";
        else if (row == "template.edit_contents")
            expected[0].items.append(made);
        else if (row == "template.delete")
            expected.removeFirst();
        else
            expected.append({"Case", Glyph::Folder, {made}});
    }
    QCOMPARE(m_model->templates(), expected);
}

QTEST_MAIN(TemplateSettingsPageTest)
#include "tst_templatesettingspage.moc"
