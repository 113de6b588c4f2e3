// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HomePage.h"
#include "Localization.h"
#include "Pixels.h"
#include "Profile.h"
#include "Theme.h"

#include <QJsonDocument>
#include <QtTest>

#include <functional>

/// Templates of sections on their settings page and in their editor, by real keys, with the
/// document on disk as the witness.
class E2eTemplates : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_home.reset(); }
    void fromTheFirstItemToUse();
    void nameIsTaken();
    void deletionFollowsTheAnswer_data();
    void deletionFollowsTheAnswer();
    void itemEditorIsLeft_data();
    void itemEditorIsLeft();
    void creationIsCancelled();
    void lastItemStays();
    void withoutAName();
    void strangeNames_data();
    void strangeNames();
    void fiveThousandItems();
    void byMouse();

private:
    enum RowOfTemplate { NameRow, ContentsRow, DeleteRow };
    enum RowOfItem { EditItemRow, DeleteItemRow };

    void openPage() const;
    void waitForWindow(const char* titleKey) const;
    void waitForCreateButton() const;
    void waitForMenuButton() const;
    /// From the button of a template's menu.
    void choose(RowOfTemplate row, const char* titleKey) const;
    /// From the list of items: to the last of the three buttons behind it.
    void saveTemplate() const;
    /// From the name of an item: to the button that saves it.
    void saveItem() const;
    /// The place of the window of that name on the screen.
    QRect windowCalled(const char* titleKey) const;
    /// A row of the menu that the mouse has just opened.
    void clickMenuRow(RowOfTemplate row) const;
    void clickAt(const QPoint& place) const;
    /// The buttons of the templates' menus from the top, on the screen.
    QList<QPoint> menuButtons() const;
    QJsonArray templates() const;
    QStringList names() const;
    QStringList itemNames(int index) const;
    bool hasArea(const QString& color, const QSize& least) const;
    void waitFor(const std::function<bool()>& condition, const char* failure) const;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<HomePage> m_home;
};

namespace
{

// In the window in which the items of a template are edited, from its corner.
constexpr QPoint kFirstItem{210, 119};
constexpr int kItemHeight = 44;
constexpr QPoint kAddButton{210, 450};
constexpr QPoint kCancelButton{268, 507};
constexpr QPoint kSaveButton{351, 507};

/// A section with an item, and these templates.
QByteArray documentWith(const QVector<SectionTemplate>& templates)
{
    QJsonObject document =
        QJsonDocument::fromJson(Profile::document({Profile::item("One", "Snippet", "text of One")}))
            .object();
    QJsonArray array;
    for (const SectionTemplate& tpl : templates)
        array.append(tpl.toJson());
    document.insert("templates", array);
    return QJsonDocument(document).toJson();
}

SectionTemplate withOneItem(const QString& name)
{
    return {name, 0xE86F, {{{}, "Lid", "Snippet", "text of Lid", {}}}};
}

} // namespace

void E2eTemplates::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

void E2eTemplates::init()
{
    m_home = std::make_unique<HomePage>(*m_desktop);
    m_home->program().setSetting("Theme/ForceTheme", 1);
    m_home->program().writeData("data.json", documentWith({withOneItem("Box")}));
    Theme::forceTheme = 1; // for the colours that are expected
    Theme::seedColorHex = "#0284c7";
    Tr::currentLang = Lang::En;
}

void E2eTemplates::waitFor(const std::function<bool()>& condition, const char* failure) const
{
    if (!QTest::qWaitFor(condition, Desktop::PatienceMs))
        m_home->program().giveUp(failure);
}

/// Whether there is something of a colour in the window.
bool E2eTemplates::hasArea(const QString& color, const QSize& least) const
{
    const QImage window =
        m_desktop->client().screenshot().copy(m_home->program().homeWindow().geometry);
    const QRect box = Pixels::boxOfColor(window, QColor(color), 1);
    return box.width() >= least.width() && box.height() >= least.height();
}

void E2eTemplates::waitForCreateButton() const
{
    const ColorTokens c = Theme::colors();
    const QString focused = Theme::stateLayerOn(c.primary, c.onPrimary, Theme::StateFocus);
    waitFor(
        [&] {
            return m_home->isUp() && hasArea(focused, {60, 30});
        },
        "the button that makes a template hasn't the keyboard");
}

void E2eTemplates::waitForMenuButton() const
{
    const ColorTokens c = Theme::colors();
    const QString focused =
        Theme::stateLayerOn(c.surfaceContainerHighest, c.onSurface, Theme::StateFocus);
    waitFor(
        [&] {
            return m_home->isUp() && hasArea(focused, {30, 30});
        },
        "no button of a template's menu has the keyboard");
}

void E2eTemplates::waitForWindow(const char* titleKey) const
{
    const QString title =
        QByteArray(titleKey) == "Validation" ? QString(titleKey) : Tr::t(titleKey);
    waitFor(
        [&] {
            const xcb_window_t focus = m_desktop->client().focus();
            return m_desktop->client().titleOf(focus).startsWith(title);
        },
        qPrintable("no window with the keyboard is called: " + title));
}

/// By the menu of the home page, of which this is the last row but that of cancelling.
void E2eTemplates::openPage() const
{
    m_home->start();
    m_home->openTemplateMenu();
    m_home->chooseRow(HomePage::UseTemplateRow + 1);
    waitForCreateButton();
}

void E2eTemplates::choose(RowOfTemplate row, const char* titleKey) const
{
    m_home->press({HomePage::Return});
    m_home->chooseRow(row);
    waitForWindow(titleKey);
}

void E2eTemplates::saveTemplate() const
{
    m_home->press(HomePage::Tab, 3);
    m_home->press({HomePage::Return});
}

void E2eTemplates::saveItem() const
{
    // Name, type, value, the button for cancelling and the one beside it.
    m_home->press(
        {HomePage::Down, HomePage::Down, HomePage::Down, HomePage::Right, HomePage::Return});
}

QRect E2eTemplates::windowCalled(const char* titleKey) const
{
    waitForWindow(titleKey);
    const xcb_window_t focus = m_desktop->client().focus();
    for (const XClient::Window& window :
         m_desktop->client().windowsOf(m_home->program().processId())) {
        if (window.id == focus)
            return window.geometry;
    }
    return {};
}

void E2eTemplates::clickAt(const QPoint& place) const
{
    m_desktop->client().click(place);
    m_home->program().waitForKeysToBeHandled();
}

void E2eTemplates::clickMenuRow(RowOfTemplate row) const
{
    constexpr int kRows = 4; // that of cancelling is the last
    QRect menu;
    waitFor(
        [&] {
            for (const XClient::Window& window :
                 m_desktop->client().windowsOf(m_home->program().processId())) {
                if (window.isViewable && window.id != m_home->program().homeWindow().id)
                    menu = window.geometry;
            }
            return menu.isValid();
        },
        "no menu comes up");
    m_home->settledScreenshot();
    clickAt(menu.topLeft() + QPoint(menu.width() / 2, menu.height() * (2 * row + 1) / (2 * kRows)));
}

QList<QPoint> E2eTemplates::menuButtons() const
{
    constexpr int kSize = 36;
    constexpr int kBesideTheGlyph = 10;
    const ColorTokens c = Theme::colors();
    const QColor idle(c.surfaceContainerHighest);
    const QColor focused(
        Theme::stateLayerOn(c.surfaceContainerHighest, c.onSurface, Theme::StateFocus));
    const QRect home = m_home->program().homeWindow().geometry;
    const QImage screen = m_home->settledScreenshot();
    QList<QPoint> found;
    // The right edge of the cards' content is that of the button which makes a template.
    const QColor primary(c.primary);
    const QColor chosen(Theme::stateLayerOn(c.primary, c.onPrimary, Theme::StateFocus));
    const QRect create = Pixels::boxWhere(screen.copy(home), [&](const QColor& color) {
        return Pixels::isNear(color, primary, 1) || Pixels::isNear(color, chosen, 1);
    });
    const int x = home.left() + create.right() - kSize / 2;
    int run = 0;
    for (int y = home.top() + create.bottom(); y < home.bottom(); ++y) {
        const QColor color = screen.pixelColor(x - kBesideTheGlyph, y);
        const bool isButton = Pixels::isNear(color, idle, 1) || Pixels::isNear(color, focused, 1);
        run = isButton ? run + 1 : 0;
        if (run == kSize / 2)
            found.append(QPoint(x, y - kSize / 4));
    }
    return found;
}

QJsonArray E2eTemplates::templates() const
{
    return m_home->document().value("templates").toArray();
}

QStringList E2eTemplates::names() const
{
    QStringList all;
    for (const QJsonValue& tpl : templates())
        all.append(tpl.toObject().value("name").toString());
    return all;
}

QStringList E2eTemplates::itemNames(int index) const
{
    QStringList all;
    for (const QJsonValue& item : templates().at(index).toObject().value("items").toArray())
        all.append(item.toObject().value("name").toString());
    return all;
}

void E2eTemplates::fromTheFirstItemToUse()
{
    openPage();
    m_home->press({HomePage::Return});
    waitForWindow("template.create_dialog_title");
    m_home->type("Kit");
    m_home->press({HomePage::Return});
    waitForWindow("template.edit_contents_title");
    QCOMPARE(names(), QStringList("Box")); // still without an item
    m_home->press({HomePage::Return});
    m_home->fillEditor("Mail", HomePage::UrlRow, "https://mail.example.org");
    saveTemplate();
    QTRY_COMPARE(names(), QStringList({"Box", "Kit"}));
    QCOMPARE(itemNames(1), QStringList("Mail"));

    waitForCreateButton();
    m_home->press({HomePage::Down, HomePage::Down});
    waitForMenuButton();
    choose(ContentsRow, "template.edit_contents_title");
    m_home->press({HomePage::Tab, HomePage::Return});
    m_home->fillEditor("Note", HomePage::SnippetRow, "text of Note");
    saveTemplate();
    QTRY_COMPARE(itemNames(1), QStringList({"Mail", "Note"}));

    waitForMenuButton();
    choose(NameRow, "template.edit_dialog_title");
    m_home->chord({HomePage::Control, 'a'});
    m_home->type("Case");
    m_home->press({HomePage::Return});
    QTRY_COMPARE(names(), QStringList({"Box", "Case"}));
    QCOMPARE(itemNames(1), QStringList({"Mail", "Note"}));

    waitForMenuButton();
    m_home->program().process().kill();
    QVERIFY(m_home->program().process().waitForFinished(Desktop::PatienceMs));
    m_home->start();
    m_home->openTemplateMenu();
    m_home->chooseRow(HomePage::UseTemplateRow);
    m_home->chooseRow(1);
    waitForWindow("template.use_dialog_title");
    m_home->press({HomePage::Return});
    QTRY_VERIFY(m_home->sections().contains("Case"));
    QCOMPARE(m_home->itemNames("Case"), QStringList({"Mail", "Note"}));
}

void E2eTemplates::nameIsTaken()
{
    m_home->program().writeData("data.json",
                                documentWith({withOneItem("Box"), withOneItem("Kit")}));
    openPage();
    m_home->press({HomePage::Down});
    waitForMenuButton();
    choose(NameRow, "template.edit_dialog_title");
    m_home->chord({HomePage::Control, 'a'});
    m_home->type("Kit");
    m_home->press({HomePage::Return});
    waitForWindow("Validation");
    m_home->press({HomePage::Return});
    waitForMenuButton();
    QCOMPARE(names(), QStringList({"Box", "Kit"}));
    m_home->press({HomePage::Up, HomePage::Return});
    waitForWindow("template.create_dialog_title");
    m_home->type("Kit");
    m_home->press({HomePage::Return});
    waitForWindow("Validation");
    m_home->press({HomePage::Return});
    waitForCreateButton();
    QCOMPARE(names(), QStringList({"Box", "Kit"}));
}

void E2eTemplates::deletionFollowsTheAnswer_data()
{
    using Keys = QVector<int>;
    QTest::addColumn<Keys>("keys");
    QTest::addColumn<bool>("isDeleted");
    QTest::newRow("Enter, on what is offered") << Keys{HomePage::Return} << false;
    QTest::newRow("Esc counts as the first button") << Keys{HomePage::Escape} << true;
    QTest::newRow("and so does Backspace") << Keys{HomePage::BackSpace} << true;
}

void E2eTemplates::deletionFollowsTheAnswer()
{
    QFETCH(QVector<int>, keys);
    QFETCH(bool, isDeleted);
    openPage();
    m_home->press({HomePage::Down});
    waitForMenuButton();
    choose(DeleteRow, "template.confirm_delete_title");
    for (const int key : keys)
        m_home->press({xcb_keysym_t(key)});
    if (isDeleted) {
        waitForCreateButton(); // the only one that is left
        QCOMPARE(names(), QStringList());
    } else {
        waitForMenuButton();
        QCOMPARE(names(), QStringList("Box"));
    }
}

void E2eTemplates::itemEditorIsLeft_data()
{
    QTest::addColumn<bool>("isSaved");
    QTest::addColumn<QString>("name");
    QTest::newRow("Esc drops what was typed") << false << "Lid";
    QTest::newRow("saving keeps it") << true << "Lidless";
}

void E2eTemplates::itemEditorIsLeft()
{
    QFETCH(bool, isSaved);
    QFETCH(QString, name);
    openPage();
    m_home->press({HomePage::Down});
    waitForMenuButton();
    choose(ContentsRow, "template.edit_contents_title");
    m_home->press({HomePage::Home, HomePage::Return, HomePage::End});
    m_home->type("less");
    if (isSaved)
        saveItem();
    else
        m_home->press({HomePage::Escape});
    saveTemplate();
    waitForMenuButton();
    QTRY_COMPARE(itemNames(0), QStringList(name));
}

void E2eTemplates::creationIsCancelled()
{
    openPage();
    const QByteArray before = m_home->program().readData("data.json");
    for (const int backs : {1, 2}) { // out of the list of items, and out of the form of one as well
        m_home->press({HomePage::Return});
        waitForWindow("template.create_dialog_title");
        m_home->type("Kit");
        m_home->press({HomePage::Return});
        waitForWindow("template.edit_contents_title");
        if (backs > 1) {
            m_home->press({HomePage::Return});
            m_home->type("Mail");
        }
        m_home->press(HomePage::Escape, backs);
        waitForCreateButton();
    }
    QCOMPARE(m_home->program().readData("data.json"), before);
}

void E2eTemplates::lastItemStays()
{
    openPage();
    m_home->press({HomePage::Down});
    waitForMenuButton();
    choose(ContentsRow, "template.edit_contents_title");
    const xcb_window_t editor = m_home->waitForDialog();
    m_home->press({HomePage::Down, HomePage::Space});
    m_home->chooseRow(DeleteItemRow);
    // The button that adds has the keyboard now.
    m_home->press({HomePage::Tab, HomePage::Tab, HomePage::Return});
    m_home->waitForDialog(editor); // it needs an item
    m_home->press({HomePage::Return});
    waitFor([&] { return m_desktop->client().focus() == editor; },
            "the list of items doesn't stay");
    m_home->press({HomePage::Escape});
    waitForMenuButton();
    QCOMPARE(itemNames(0), QStringList("Lid"));
}

/// As a damaged document may have it. Nothing is saved under no name.
void E2eTemplates::withoutAName()
{
    m_home->program().writeData("data.json", documentWith({withOneItem("")}));
    openPage();
    m_home->press({HomePage::Down});
    waitForMenuButton();
    choose(ContentsRow, "Validation");
    m_home->press({HomePage::Return});
    waitForMenuButton();
    QCOMPARE(names(), QStringList(""));
    choose(NameRow, "template.edit_dialog_title");
    m_home->type("Kit");
    m_home->press({HomePage::Return});
    waitForMenuButton();
    QTRY_COMPARE(names(), QStringList("Kit"));
    choose(ContentsRow, "template.edit_contents_title");
    m_home->press({HomePage::Escape});
    waitForMenuButton();
    QCOMPARE(itemNames(0), QStringList("Lid"));
}

void E2eTemplates::strangeNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("10,000 characters") << QString(10000, u'W');
    QTest::newRow("a megabyte") << QString(1024 * 1024, u'n');
    QTest::newRow("markup") << "<b>bold</b><img src=x>";
    QTest::newRow("ampersands") << "&Fish && &Chips";
    QTest::newRow("place markers") << "%1 %2 %%";
    QTest::newRow("lines") << "one\ntwo\r\nthree\ttabs";
    QTest::newRow("right to left") << QStringLiteral("\u202Eגט\u200F");
    QTest::newRow("emoji") << QStringLiteral("\U0001F468\u200D\U0001F469\u200D\U0001F467");
    QTest::newRow("a blank") << " ";
}

void E2eTemplates::strangeNames()
{
    QFETCH(QString, name);
    const SectionTemplate strange{name, 0xE86F, {{{}, name, "Snippet", "text of it", {}}}};
    m_home->program().writeData("data.json", documentWith({withOneItem("Box"), strange}));
    openPage();
    const QSize size = m_home->program().homeWindow().geometry.size();
    const QByteArray before = m_home->program().readData("data.json");
    m_home->press({HomePage::Down, HomePage::Down});
    waitForMenuButton();
    const QRect screen(0, 0, Desktop::ScreenWidth, Desktop::ScreenHeight);
    for (const auto& [row, titleKey] : {std::pair(NameRow, "template.edit_dialog_title"),
                                        std::pair(ContentsRow, "template.edit_contents_title"),
                                        std::pair(DeleteRow, "template.confirm_delete_title")}) {
        choose(row, titleKey);
        QVERIFY2(screen.contains(windowCalled(titleKey)), titleKey);
        // Where Esc would delete, Enter is on the other button.
        m_home->press({row == DeleteRow ? HomePage::Return : HomePage::Escape});
        waitForMenuButton();
    }
    QCOMPARE(m_home->program().homeWindow().geometry.size(), size);
    QCOMPARE(m_home->program().readData("data.json"), before);
    choose(DeleteRow, "template.confirm_delete_title");
    m_home->press({HomePage::Left, HomePage::Return});
    waitForMenuButton(); // that of the other
    QCOMPARE(names(), QStringList("Box"));
}

void E2eTemplates::fiveThousandItems()
{
    constexpr int kCount = 5000;
    SectionTemplate large{"Kit", 0xE86F, {}};
    for (int i = 0; i < kCount; ++i)
        large.items.append({{}, QString("Item %1").arg(i), "Snippet", "text", {}});
    m_home->program().writeData("data.json", documentWith({large}));
    openPage();
    m_home->press({HomePage::Down});
    waitForMenuButton();
    choose(ContentsRow, "template.edit_contents_title");
    m_home->press({HomePage::End, HomePage::Return, HomePage::End});
    m_home->type("less");
    saveItem();
    m_home->press({HomePage::Up, HomePage::Space});
    m_home->chooseRow(DeleteItemRow);
    saveTemplate();
    waitForMenuButton();
    const auto lastName = [this] {
        const QStringList all = itemNames(0);
        return QString("%1: %2").arg(all.size()).arg(all.constLast());
    };
    QTRY_COMPARE(lastName(), QString("4999: Item 4999less"));
    QCOMPARE(itemNames(0).at(kCount - 3), "Item 4997");
}

void E2eTemplates::byMouse()
{
    openPage();
    const ColorTokens c = Theme::colors();
    const QRect home = m_home->program().homeWindow().geometry;
    const QString focused = Theme::stateLayerOn(c.primary, c.onPrimary, Theme::StateFocus);
    const QRect create = Pixels::boxOfColor(m_home->settledScreenshot().copy(home), focused, 1);
    clickAt(home.topLeft() + create.center());
    waitForWindow("template.create_dialog_title");
    m_home->type("Kit");
    m_home->press({HomePage::Return});
    const QRect window = windowCalled("template.edit_contents_title");
    QPoint editor = window.topLeft();
    for (const char* name : {"Mail", "Note"}) {
        clickAt(editor + kAddButton);
        m_home->fillEditor(name, HomePage::SnippetRow, "text");
    }
    // What is chosen is seen, and nothing else is.
    clickAt(editor + kFirstItem);
    const QRect chosen =
        Pixels::boxOfColor(m_home->settledScreenshot().copy(window), QColor(c.primaryContainer), 1);
    QCOMPARE(chosen.height(), kItemHeight);
    QVERIFY(chosen.contains(kFirstItem));
    clickAt(editor + kSaveButton);
    QTRY_COMPARE(names(), QStringList({"Box", "Kit"}));
    QCOMPARE(itemNames(1), QStringList({"Mail", "Note"}));

    waitForCreateButton();
    QCOMPARE(menuButtons().size(), 2);
    clickAt(menuButtons().at(1));
    clickMenuRow(NameRow);
    waitForWindow("template.edit_dialog_title");
    m_home->chord({HomePage::Control, 'a'});
    m_home->type("Case");
    m_home->press({HomePage::Return});
    QTRY_COMPARE(names(), QStringList({"Box", "Case"}));

    waitForMenuButton();
    clickAt(menuButtons().at(1));
    clickMenuRow(ContentsRow);
    editor = windowCalled("template.edit_contents_title").topLeft();
    const QPoint second = editor + kFirstItem + QPoint(0, kItemHeight);
    m_desktop->client().click(second);
    clickAt(second);
    m_home->press({HomePage::End});
    m_home->type("s");
    saveItem();
    clickAt(editor + kCancelButton);
    waitForMenuButton();
    QCOMPARE(itemNames(1), QStringList({"Mail", "Note"}));

    clickAt(menuButtons().at(1));
    clickMenuRow(DeleteRow);
    waitForWindow("template.confirm_delete_title");
    m_home->press({HomePage::Left, HomePage::Return});
    QTRY_COMPARE(names(), QStringList("Box"));
    waitForMenuButton();
}

QTEST_GUILESS_MAIN(E2eTemplates)
#include "tst_e2e_templates.moc"
