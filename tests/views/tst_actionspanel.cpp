// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ActionsPanel.h"
#include "Delegates.h"
#include "EventCounter.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "Pixels.h"
#include "TestFonts.h"
#include "TestHome.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

namespace
{

const QString kSection = QStringLiteral("Work");
const QString kItem = QStringLiteral("item-1");
const QString kOther = QStringLiteral("item-2");
constexpr int kCardWidth = 460;
constexpr int kMegabyte = 1 << 20;

/// What the panel has told its owner, in order.
class Told
{
public:
    explicit Told(ActionsPanel* panel)
    {
        QObject::connect(panel, &ActionsPanel::closeRequested, panel,
                         [this] { words << QStringLiteral("close"); });
        QObject::connect(panel, &ActionsPanel::editItemRequested, panel,
                         [this](const QString& id) { words << QStringLiteral("edit ") + id; });
        QObject::connect(panel, &ActionsPanel::dataChanged, panel,
                         [this] { words << QStringLiteral("changed"); });
        QObject::connect(panel, &ActionsPanel::stepChanged, panel,
                         [this, panel](ItemActionsStep step) {
                             words << QStringLiteral("step %1").arg(int(step));
                             wasCurrent = wasCurrent && panel->currentStep() == step;
                         });
    }

    QStringList words;
    bool wasCurrent = true; ///< each step told was the panel's own by then
};

} // namespace

class ActionsPanelTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void startsEmpty();
    void looks();
    void listStyle();
    void rowsFitWithoutScrolling();

    void menuListsTheActions_data();
    void menuListsTheActions();
    void menuTakesTheFocus_data();
    void menuTakesTheFocus();
    void questionNamesTheItem_data();
    void questionNamesTheItem();
    void questionWithoutAnItem_data();
    void questionWithoutAnItem();
    void nameIsPlainText_data();
    void nameIsPlainText();
    void hugeNamesStayInTheCard_data();
    void hugeNamesStayInTheCard();
    void nameInControlCharactersStaysOnItsLine();
    void longQuestionStandsInTheMiddle();

    void enterRunsTheRow_data();
    void enterRunsTheRow();
    void heldEnterIsNoAnswer_data();
    void heldEnterIsNoAnswer();
    void doubleClickRunsTheRow();
    void clickSelectsOnly();
    void deletesTheItem();
    void deletesWhatHasGone();
    void deletionSurvivesAReset();
    void rowsThatDoNothing_data();
    void rowsThatDoNothing();
    void cancelRow_data();
    void cancelRow();

    void backKeys_data();
    void backKeys();
    void listKeys_data();
    void listKeys();
    void arrowsMoveInside();
    void keysWithoutARow_data();
    void keysWithoutARow();
    void otherKeysPassOn();
    void keysOfOtherWidgets();
    void escapeTwiceCloses();

    void resetIsSilent();
    void accessibleNames();

private:
    QListWidget* list() const { return m_panel->findChild<QListWidget*>("actionsList"); }
    QLabel* title() const { return m_panel->findChild<QLabel*>(); }
    QStringList names() const;
    void saveItem(const QString& name) const;
    void open(ItemActionsStep step) const;

    std::unique_ptr<LauncherModel> m_model;
    std::unique_ptr<QWidget> m_window;
    ActionsPanel* m_panel = nullptr;
};

void ActionsPanelTest::initTestCase()
{
    QVERIFY(TestFonts::addWeights());
}

void ActionsPanelTest::init()
{
    Theme::forceTheme = 1;
    Tr::currentLang = Lang::En;
    QFile::remove(TestHome::dataDir() + "/actions.json");
    m_model = std::make_unique<LauncherModel>(TestHome::dataDir() + "/actions.json");
    QVERIFY(m_model->addCategory(kSection, 0));
    m_model->saveItem(kSection, {kItem, "Mail", "URL", "https://mail.example", ""}, -1);
    m_model->saveItem(kSection, {kOther, "Notes", "File", "/notes.txt", ""}, -1);
    m_window = std::make_unique<QWidget>();
    m_window->resize(kCardWidth, 400);
    auto* rows = new QVBoxLayout(m_window.get());
    rows->setContentsMargins(0, 0, 0, 0);
    m_panel = new ActionsPanel(m_model.get(), m_window.get());
    rows->addWidget(m_panel);
    rows->addWidget(new QLineEdit);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_window->findChild<QLineEdit*>()->setFocus();
}

void ActionsPanelTest::cleanup()
{
    m_window.reset();
    m_model.reset();
}

QStringList ActionsPanelTest::names() const
{
    QStringList result;
    for (const LauncherElement& element : m_model->getItems(kSection))
        result << element.name;
    return result;
}

void ActionsPanelTest::saveItem(const QString& name) const
{
    m_model->saveItem(kSection, {kItem, name, "URL", "https://mail.example", ""}, 0);
}

void ActionsPanelTest::open(ItemActionsStep step) const
{
    if (step == ActionsConfirmDelete)
        m_panel->openDeleteConfirm(kSection, kItem);
    else
        m_panel->openItemMenu(kSection, kItem, step == ActionsList);
    QCOMPARE(m_panel->currentStep(), step);
}

void ActionsPanelTest::startsEmpty()
{
    QCOMPARE(m_panel->currentStep(), ActionsNone);
    QCOMPARE(list()->count(), 0);
    QVERIFY(title()->isHidden());
    QVERIFY(title()->text().isEmpty());
    QCOMPARE(int(ActionsNone), 0);
    QCOMPARE(int(ActionsList), 1);
    QCOMPARE(int(ActionsConfirmDelete), 2);
}

void ActionsPanelTest::looks()
{
    auto* rows = qobject_cast<QVBoxLayout*>(m_panel->layout());
    QVERIFY(rows);
    QCOMPARE(rows->contentsMargins(), QMargins(24, 12, 24, 12));
    QCOMPARE(rows->spacing(), 12);
    QCOMPARE(rows->itemAt(0)->widget(), title());
    QCOMPARE(rows->itemAt(1)->widget(), list());
    QVERIFY(title()->wordWrap());
    QCOMPARE(title()->alignment(), Qt::Alignment(Qt::AlignCenter));
    QCOMPARE(title()->styleSheet(),
             QStringLiteral("color: %1; font-size: 14px; letter-spacing: 0.2px; border: none;")
                 .arg(Theme::colors().onSurfaceVariant));
    QCOMPARE(list()->focusPolicy(), Qt::StrongFocus);
    QCOMPARE(list()->editTriggers(), QAbstractItemView::NoEditTriggers);
    QCOMPARE(list()->spacing(), 2);
    QCOMPARE(list()->dragDropMode(), QAbstractItemView::NoDragDrop);
    QVERIFY(qobject_cast<CardListDelegate*>(list()->itemDelegate()));
}

void ActionsPanelTest::listStyle()
{
    const ColorTokens c = Theme::colors();
    const QString expected =
        QStringLiteral("QListWidget { background-color: transparent; border: none; outline: 0; "
                       "padding: 0px; margin: 0px; }QListWidget::item { padding: 8px 16px; "
                       "border-radius: 16px; font-size: 14px; border: 1px solid transparent; "
                       "background: transparent; }QListWidget::item:hover { background-color: "
                       "%1; }QListWidget::item:selected { background-color: %2; border: 1px "
                       "solid %3; }QListWidget::item:focus { background-color: %2; border: 1px "
                       "solid %3; }")
            .arg(c.surfaceVariant, c.surfaceContainerHighest, c.outline);
    QCOMPARE(list()->styleSheet(), expected);
}

void ActionsPanelTest::rowsFitWithoutScrolling()
{
    for (const ItemActionsStep step : {ActionsList, ActionsConfirmDelete}) {
        open(step);
        QCoreApplication::processEvents();
        QCOMPARE(list()->horizontalScrollBar()->maximum(), 0);
        QCOMPARE(list()->verticalScrollBar()->maximum(), 0);
        for (int row = 0; row < list()->count(); ++row) {
            const QRect rect = list()->visualItemRect(list()->item(row));
            QVERIFY(rect.top() >= 0 && rect.bottom() < list()->viewport()->height());
            QVERIFY(rect.left() <= 2 && rect.right() >= list()->viewport()->width() - 3);
        }
    }
    open(ActionsList);
    QCOMPARE(list()->visualItemRect(list()->item(0)).height(), 64);
}

void ActionsPanelTest::menuListsTheActions_data()
{
    QTest::addColumn<Lang>("lang");
    QTest::newRow("English") << Lang::En;
    QTest::newRow("Indonesian") << Lang::Id;
    QTest::newRow("Spanish") << Lang::Es;
    QTest::newRow("Japanese") << Lang::Ja;
}

void ActionsPanelTest::menuListsTheActions()
{
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    m_panel->openDeleteConfirm(kSection, kItem); // leaves a title and a row behind
    m_panel->openItemMenu(kSection, kItem, true);
    QCOMPARE(list()->count(), 2);
    const QListWidgetItem* edit = list()->item(0);
    QCOMPARE(edit->text(), Tr::t("actions.edit_shortcut"));
    QCOMPARE(edit->data(256).toString(), QStringLiteral("edit"));
    QCOMPARE(edit->data(257).toString(), Tr::t("actions.edit_shortcut_desc"));
    QCOMPARE(edit->data(258).toInt(), int(CardListDelegate::IconEdit));
    const QListWidgetItem* remove = list()->item(1);
    QCOMPARE(remove->text(), Tr::t("actions.delete_shortcut"));
    QCOMPARE(remove->data(256).toString(), QStringLiteral("delete"));
    QCOMPARE(remove->data(257).toString(), Tr::t("actions.delete_shortcut_desc"));
    QCOMPARE(remove->data(258).toInt(), int(CardListDelegate::IconDelete));
    QVERIFY(title()->isHidden());
    // The texts find room in their rows.
    const int room = list()->viewport()->width() - 2 * 2 - 16 - 40 - 12 - 16;
    for (const QListWidgetItem* row : {edit, remove}) {
        QFont font;
        font.setFamilies(FontTokens::Families);
        font.setPixelSize(14);
        font.setWeight(QFont::Bold);
        QVERIFY(QFontMetrics(font).horizontalAdvance(row->text()) <= room);
        font.setPixelSize(12);
        QVERIFY(QFontMetrics(font).horizontalAdvance(row->data(257).toString()) <= room);
    }
}

void ActionsPanelTest::menuTakesTheFocus_data()
{
    QTest::addColumn<bool>("takeFocus");
    QTest::addColumn<ItemActionsStep>("step");
    QTest::addColumn<int>("row");
    QTest::newRow("taking it") << true << ActionsList << 0;
    QTest::newRow("showing only") << false << ActionsNone << -1;
}

void ActionsPanelTest::menuTakesTheFocus()
{
    QFETCH(bool, takeFocus);
    QFETCH(ItemActionsStep, step);
    Told told(m_panel);
    m_panel->openItemMenu(kSection, kItem, takeFocus);
    QCOMPARE(m_panel->currentStep(), step);
    QTEST(list()->currentRow(), "row");
    QCOMPARE(list()->hasFocus(), takeFocus);
    QCOMPARE(list()->selectedItems().size(), takeFocus ? 1 : 0);
    QCOMPARE(told.words, QStringList(QStringLiteral("step %1").arg(int(step))));
    QVERIFY(told.wasCurrent);
}

void ActionsPanelTest::questionNamesTheItem_data()
{
    menuListsTheActions_data();
}

void ActionsPanelTest::questionNamesTheItem()
{
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    Told told(m_panel);
    m_panel->openDeleteConfirm(kSection, kOther);
    QCOMPARE(m_panel->currentStep(), ActionsConfirmDelete);
    QCOMPARE(told.words, QStringList("step 2"));
    QVERIFY(told.wasCurrent);
    QVERIFY(title()->isVisible());
    QCOMPARE(title()->text(), Tr::t("actions.del_shortcut_title").arg("Notes"));
    QVERIFY(title()->text().contains(QStringLiteral("\"Notes\"")));
    QCOMPARE(list()->count(), 1);
    const QListWidgetItem* yes = list()->item(0);
    QCOMPARE(yes->text(), Tr::t("dialog.btn_yes"));
    QCOMPARE(yes->data(256).toString(), QStringLiteral("confirm_delete"));
    QVERIFY(yes->data(257).toString().isEmpty());
    QCOMPARE(yes->data(258).toInt(), int(CardListDelegate::IconNone));
    QCOMPARE(yes->foreground().color().name(), Theme::colors().errorColor);
    QCOMPARE(list()->currentRow(), 0);
    QVERIFY(list()->hasFocus());
}

void ActionsPanelTest::questionWithoutAnItem_data()
{
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("id");
    QTest::newRow("no such item") << kSection << "gone";
    QTest::newRow("no such section") << "Nowhere" << kItem;
    QTest::newRow("item of another section") << "Default" << kItem;
    QTest::newRow("nothing at all") << ""
                                    << "";
}

void ActionsPanelTest::questionWithoutAnItem()
{
    QFETCH(QString, section);
    QFETCH(QString, id);
    Tr::currentLang = Lang::Ja; // the word for it is the same in every language
    m_panel->openDeleteConfirm(section, id);
    QCOMPARE(title()->text(), Tr::t("actions.del_shortcut_title").arg("Shortcut"));
    QCOMPARE(list()->count(), 1);
}

void ActionsPanelTest::nameIsPlainText_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("markup") << "<h1>Mail</h1>";
    QTest::newRow("an image") << "<img src='/etc/passwd'>";
    QTest::newRow("entity") << "a &lt; b &amp; c";
    QTest::newRow("ampersand") << "R&D && more";
    QTest::newRow("place marks") << "%1 %2 %L1";
    QTest::newRow("right-to-left marks") << QStringLiteral("\u202eMail\u202c \u200f");
    QTest::newRow("from right to left") << QStringLiteral("שלום");
    QTest::newRow("faces") << QStringLiteral("\U0001F600 \U0001F600");
    QTest::newRow("empty") << "";
}

void ActionsPanelTest::nameIsPlainText()
{
    QFETCH(QString, name);
    saveItem(name);
    m_panel->openDeleteConfirm(kSection, kItem);
    QCOMPARE(title()->textFormat(), Qt::PlainText);
    QCOMPARE(title()->text(), QStringLiteral("Delete \"") + name + QStringLiteral("\"?"));
    QVERIFY(title()->height() < 2 * title()->fontMetrics().height() + 4);
    QVERIFY(!title()->buddy());
}

void ActionsPanelTest::hugeNamesStayInTheCard_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("one word") << QString(kMegabyte, u'W');
    QTest::newRow("narrow letters") << QString(kMegabyte, u'i');
    QTest::newRow("words") << QStringLiteral("wide ").repeated(kMegabyte / 5);
    QTest::newRow("line feeds") << QStringLiteral("Mg\n").repeated(kMegabyte / 3);
    QTest::newRow("line separators") << QStringLiteral("Mg\u2028").repeated(kMegabyte / 3);
    QTest::newRow("faces") << QStringLiteral("\U0001F600").repeated(kMegabyte / 2);
    QTest::newRow("no-break blanks") << QStringLiteral("wide\u00a0").repeated(kMegabyte / 5);
    QTest::newRow("10,000 letters") << QString(10000, u'm');
}

void ActionsPanelTest::hugeNamesStayInTheCard()
{
    QFETCH(QString, name);
    saveItem(name);
    m_panel->openDeleteConfirm(kSection, kItem);
    QCoreApplication::processEvents();
    const QString shown = title()->text();
    QVERIFY(shown.startsWith(QStringLiteral("Delete \"") + name.left(2)));
    QVERIFY(QString(shown).remove(QChar(0x200B)).endsWith(QStringLiteral("\u2026\"?")));
    QVERIFY(shown.size() < 1000);
    QCOMPARE(m_window->width(), kCardWidth);
    QVERIFY(m_panel->minimumSizeHint().width() <= kCardWidth);
    QVERIFY(title()->minimumSizeHint().width() <= kCardWidth - 48);
    QVERIFY(title()->width() <= kCardWidth - 48);
    // All of it can be seen, on a few lines.
    QVERIFY(title()->height() >= title()->heightForWidth(title()->width()));
    QVERIFY(title()->height() < 6 * title()->fontMetrics().height());
    QVERIFY(list()->viewport()->rect().contains(list()->visualItemRect(list()->item(0))));
}

void ActionsPanelTest::nameInControlCharactersStaysOnItsLine()
{
    saveItem(QStringLiteral("a\nb\r\nc\td\u2028e\u2029f\u0085g"));
    m_panel->openDeleteConfirm(kSection, kItem);
    QCOMPARE(title()->text(), QStringLiteral("Delete \"a b  c d e f g\"?"));
}

void ActionsPanelTest::longQuestionStandsInTheMiddle()
{
    for (const int words : {1, 5, 12, 30}) {
        saveItem(QStringLiteral("mail ").repeated(words).trimmed());
        m_panel->openDeleteConfirm(kSection, kItem);
        QCoreApplication::processEvents();
        QVERIFY(title()->height() >= title()->heightForWidth(title()->width()));
        const QImage image = Pixels::imageOf(*title());
        const QColor ink(Theme::colors().onSurfaceVariant);
        const QRect box = Pixels::boxOfColor(image, ink, 60);
        const int middle = title()->mapTo(m_window.get(), box.center()).x();
        QVERIFY(!box.isEmpty());
        QVERIFY(qAbs(middle - kCardWidth / 2) <= 4);
        QVERIFY(box.top() >= 0 && box.bottom() < title()->height() - 1);
    }
}

void ActionsPanelTest::enterRunsTheRow_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
}

void ActionsPanelTest::enterRunsTheRow()
{
    QFETCH(Qt::Key, key);
    open(ActionsList);
    Told told(m_panel);
    EventCounter passedOn(m_window.get(), QEvent::KeyPress);
    QTest::keyClick(list(), key);
    QCOMPARE(told.words, QStringList("edit item-1"));
    QCOMPARE(m_panel->currentStep(), ActionsList); // the editor opens over it
    told.words.clear();
    list()->setCurrentRow(1);
    QTest::keyClick(list(), key);
    QCOMPARE(told.words, QStringList("step 2"));
    QVERIFY(title()->isVisible());
    QCOMPARE(names(), QStringList({"Mail", "Notes"}));
    told.words.clear();
    QTest::keyClick(list(), key);
    QCOMPARE(told.words, QStringList({"changed", "close"}));
    QCOMPARE(names(), QStringList("Notes"));
    QCOMPARE(passedOn.count, 0);
}

void ActionsPanelTest::heldEnterIsNoAnswer_data()
{
    enterRunsTheRow_data();
}

void ActionsPanelTest::heldEnterIsNoAnswer()
{
    QFETCH(Qt::Key, key);
    open(ActionsList);
    list()->setCurrentRow(1);
    Told told(m_panel);
    EventCounter passedOn(m_window.get(), QEvent::KeyPress);
    QTest::keyPress(list(), key);
    QCOMPARE(m_panel->currentStep(), ActionsConfirmDelete);
    for (int i = 0; i < 3; ++i) {
        QKeyEvent repeated(QEvent::KeyPress, key, Qt::NoModifier, QStringLiteral("\r"), true);
        QCoreApplication::sendEvent(list(), &repeated);
    }
    QCOMPARE(told.words, QStringList("step 2"));
    QCOMPARE(names(), QStringList({"Mail", "Notes"}));
    QCOMPARE(list()->currentRow(), 0);
    QCOMPARE(passedOn.count, 0);
    QTest::keyRelease(list(), key);
    QTest::keyClick(list(), key);
    QCOMPARE(names(), QStringList("Notes"));
}

void ActionsPanelTest::doubleClickRunsTheRow()
{
    open(ActionsList);
    QCoreApplication::processEvents();
    Told told(m_panel);
    const auto doubleClick = [this](int row) {
        const QPoint middle = list()->visualItemRect(list()->item(row)).center();
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, middle);
        QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, middle);
    };
    doubleClick(0);
    QCOMPARE(told.words, QStringList("edit item-1"));
    told.words.clear();
    doubleClick(1);
    QCOMPARE(told.words, QStringList("step 2"));
    QCoreApplication::processEvents();
    told.words.clear();
    doubleClick(0);
    QCOMPARE(told.words, QStringList({"changed", "close"}));
    QCOMPARE(names(), QStringList("Notes"));
}

void ActionsPanelTest::clickSelectsOnly()
{
    open(ActionsList);
    QCoreApplication::processEvents();
    Told told(m_panel);
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {},
                      list()->visualItemRect(list()->item(1)).center());
    QCOMPARE(list()->currentRow(), 1);
    QVERIFY(list()->item(1)->isSelected());
    QVERIFY(told.words.isEmpty());
    QCOMPARE(m_panel->currentStep(), ActionsList);
}

void ActionsPanelTest::deletesTheItem()
{
    m_panel->openDeleteConfirm(kSection, kOther);
    QSignalSpy changed(m_model.get(), &LauncherModel::itemsChanged);
    bool wasDeletedByThen = false;
    connect(m_panel, &ActionsPanel::dataChanged, this,
            [&] { wasDeletedByThen = names() == QStringList("Mail"); });
    QTest::keyClick(list(), Qt::Key_Return);
    QVERIFY(wasDeletedByThen);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().first().toString(), kSection);
    const LauncherModel reloaded(TestHome::dataDir() + "/actions.json");
    QCOMPARE(reloaded.getItems(kSection).size(), 1);
}

void ActionsPanelTest::deletesWhatHasGone()
{
    m_panel->openDeleteConfirm(kSection, kItem);
    m_model->deleteItem(kSection, kItem);
    Told told(m_panel);
    QTest::keyClick(list(), Qt::Key_Return);
    QCOMPARE(told.words, QStringList({"changed", "close"}));
    QCOMPARE(names(), QStringList("Notes"));
}

void ActionsPanelTest::deletionSurvivesAReset()
{
    // The page around the panel closes it when it hears of the change.
    m_panel->openDeleteConfirm(kSection, kItem);
    QStringList sections;
    connect(m_model.get(), &LauncherModel::itemsChanged, m_panel, [&](const QString& section) {
        m_panel->reset();
        sections << section;
    });
    connect(m_panel, &ActionsPanel::closeRequested, m_panel, &ActionsPanel::reset);
    Told told(m_panel);
    QTest::keyClick(list(), Qt::Key_Return);
    QCOMPARE(sections, QStringList(kSection));
    QCOMPARE(told.words, QStringList({"changed", "close"}));
    QCOMPARE(names(), QStringList("Notes"));
    QCOMPARE(m_panel->currentStep(), ActionsNone);
}

void ActionsPanelTest::rowsThatDoNothing_data()
{
    QTest::addColumn<ItemActionsStep>("step");
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("isEnabled");
    for (const char* id : {"edit", "delete", "confirm_delete", "other", ""})
        QTest::addRow("shown only: \"%s\"", id) << ActionsNone << id << true;
    for (const char* id : {"confirm_delete", "other", ""})
        QTest::addRow("list: \"%s\"", id) << ActionsList << id << true;
    for (const char* id : {"edit", "delete", "other", ""})
        QTest::addRow("question: \"%s\"", id) << ActionsConfirmDelete << id << true;
    QTest::newRow("list: disabled \"edit\"") << ActionsList << "edit" << false;
    QTest::newRow("list: disabled \"cancel\"") << ActionsList << "cancel" << false;
    QTest::newRow("question: disabled \"confirm_delete\"")
        << ActionsConfirmDelete << "confirm_delete" << false;
}

void ActionsPanelTest::rowsThatDoNothing()
{
    QFETCH(ItemActionsStep, step);
    QFETCH(QString, id);
    QFETCH(bool, isEnabled);
    open(step);
    auto* row = new QListWidgetItem(QStringLiteral("Row"), list());
    row->setData(Qt::UserRole, id);
    list()->setCurrentItem(row);
    if (!isEnabled)
        row->setFlags(row->flags() & ~Qt::ItemIsEnabled);
    Told told(m_panel);
    EventCounter passedOn(m_window.get(), QEvent::KeyPress);
    QTest::keyClick(list(), Qt::Key_Return);
    QVERIFY(told.words.isEmpty());
    QCOMPARE(m_panel->currentStep(), step);
    QCOMPARE(names(), QStringList({"Mail", "Notes"}));
    QCOMPARE(passedOn.count, 0);
}

void ActionsPanelTest::cancelRow_data()
{
    QTest::addColumn<ItemActionsStep>("step");
    QTest::addColumn<QStringList>("told");
    QTest::addColumn<ItemActionsStep>("stepAfter");
    QTest::newRow("question") << ActionsConfirmDelete << QStringList("step 1") << ActionsList;
    QTest::newRow("list") << ActionsList << QStringList("close") << ActionsList;
    QTest::newRow("shown only") << ActionsNone << QStringList("close") << ActionsNone;
}

void ActionsPanelTest::cancelRow()
{
    QFETCH(ItemActionsStep, step);
    open(step);
    auto* row = new QListWidgetItem(QStringLiteral("Cancel"), list());
    row->setData(Qt::UserRole, QStringLiteral("cancel"));
    list()->setCurrentItem(row);
    Told told(m_panel);
    QTest::keyClick(list(), Qt::Key_Return);
    QTEST(told.words, "told");
    QTEST(m_panel->currentStep(), "stepAfter");
    QCOMPARE(names(), QStringList({"Mail", "Notes"}));
}

void ActionsPanelTest::backKeys_data()
{
    QTest::addColumn<ItemActionsStep>("step");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QStringList>("told");
    const QStringList close("close");
    QTest::newRow("question, Esc")
        << ActionsConfirmDelete << Qt::Key_Escape << QStringList("step 1");
    QTest::newRow("question, Backspace") << ActionsConfirmDelete << Qt::Key_Backspace << close;
    QTest::newRow("question, Left") << ActionsConfirmDelete << Qt::Key_Left << close;
    QTest::newRow("list, Esc") << ActionsList << Qt::Key_Escape << close;
    QTest::newRow("list, Backspace") << ActionsList << Qt::Key_Backspace << close;
    QTest::newRow("list, Left") << ActionsList << Qt::Key_Left << close;
    QTest::newRow("shown only, Esc") << ActionsNone << Qt::Key_Escape << close;
    QTest::newRow("shown only, Backspace") << ActionsNone << Qt::Key_Backspace << close;
    QTest::newRow("shown only, Left") << ActionsNone << Qt::Key_Left << close;
}

void ActionsPanelTest::backKeys()
{
    QFETCH(ItemActionsStep, step);
    QFETCH(Qt::Key, key);
    open(step);
    Told told(m_panel);
    EventCounter passedOn(m_window.get(), QEvent::KeyPress);
    QTest::keyClick(list(), key);
    QTEST(told.words, "told");
    QCOMPARE(passedOn.count, 0);
    QCOMPARE(names(), QStringList({"Mail", "Notes"}));
    if (told.words.first() == QLatin1String("close"))
        QCOMPARE(m_panel->currentStep(), step); // it is its owner who closes it
}

void ActionsPanelTest::listKeys_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("rowAfter");
    QTest::newRow("Up on the first row") << 0 << Qt::Key_Up << 0;
    QTest::newRow("Up without a row") << -1 << Qt::Key_Up << -1;
    QTest::newRow("Down on the last row") << 1 << Qt::Key_Down << 1;
}

void ActionsPanelTest::listKeys()
{
    QFETCH(int, row);
    QFETCH(Qt::Key, key);
    open(ActionsList);
    list()->setCurrentRow(row);
    Told told(m_panel);
    EventCounter passedOn(m_window.get(), QEvent::KeyPress);
    QTest::keyClick(list(), key);
    QTEST(list()->currentRow(), "rowAfter");
    QVERIFY(list()->hasFocus());
    QCOMPARE(passedOn.count, 0);
    QVERIFY(told.words.isEmpty());
}

void ActionsPanelTest::arrowsMoveInside()
{
    open(ActionsList);
    QTest::keyClick(list(), Qt::Key_Down);
    QCOMPARE(list()->currentRow(), 1);
    QTest::keyClick(list(), Qt::Key_Up);
    QCOMPARE(list()->currentRow(), 0);
    list()->setCurrentRow(-1);
    QTest::keyClick(list(), Qt::Key_Down);
    QCOMPARE(list()->currentRow(), 0);
}

void ActionsPanelTest::keysWithoutARow_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
    QTest::newRow("Up") << Qt::Key_Up;
    QTest::newRow("Down") << Qt::Key_Down;
}

void ActionsPanelTest::keysWithoutARow()
{
    QFETCH(Qt::Key, key);
    QCOMPARE(list()->count(), 0);
    list()->setFocus();
    Told told(m_panel);
    EventCounter passedOn(m_window.get(), QEvent::KeyPress);
    QTest::keyClick(list(), key);
    QVERIFY(told.words.isEmpty());
    QCOMPARE(passedOn.count, 0);
    QVERIFY(list()->hasFocus());
}

void ActionsPanelTest::otherKeysPassOn()
{
    open(ActionsList);
    Told told(m_panel);
    EventCounter passedOn(m_window.get(), QEvent::KeyPress);
    QTest::keyClick(list(), Qt::Key_F5);
    QCOMPARE(passedOn.count, 1);
    QVERIFY(told.words.isEmpty());
}

void ActionsPanelTest::keysOfOtherWidgets()
{
    // The keys that lead back do so wherever they come from, the others only on the list.
    open(ActionsList);
    auto* field = m_window->findChild<QLineEdit*>();
    field->installEventFilter(m_panel);
    field->setText(QStringLiteral("ab"));
    Told told(m_panel);
    QTest::keyClick(field, Qt::Key_Left);
    QCOMPARE(field->cursorPosition(), 1);
    QTest::keyClick(field, Qt::Key_Return);
    QVERIFY(told.words.isEmpty());
    QTest::keyClick(field, Qt::Key_Backspace);
    QTest::keyClick(field, Qt::Key_Escape);
    QCOMPARE(told.words, QStringList({"close", "close"}));
    QCOMPARE(field->text(), QStringLiteral("ab"));
}

void ActionsPanelTest::escapeTwiceCloses()
{
    open(ActionsConfirmDelete);
    Told told(m_panel);
    QTest::keyClick(list(), Qt::Key_Escape);
    QCOMPARE(m_panel->currentStep(), ActionsList);
    QCOMPARE(list()->count(), 2);
    QCOMPARE(list()->currentRow(), 0);
    QVERIFY(list()->hasFocus());
    QVERIFY(title()->isHidden());
    QTest::keyClick(list(), Qt::Key_Escape);
    QCOMPARE(told.words, QStringList({"step 1", "close"}));
    // The item is still the same one.
    told.words.clear();
    QTest::keyClick(list(), Qt::Key_Return);
    QCOMPARE(told.words, QStringList("edit item-1"));
}

void ActionsPanelTest::resetIsSilent()
{
    for (const ItemActionsStep step : {ActionsNone, ActionsList, ActionsConfirmDelete}) {
        open(step);
        Told told(m_panel);
        m_panel->reset();
        QCOMPARE(m_panel->currentStep(), ActionsNone);
        QCOMPARE(list()->count(), 0);
        QVERIFY(title()->isHidden());
        QVERIFY(title()->text().isEmpty());
        QVERIFY(told.words.isEmpty());
        m_panel->disconnect();
    }
}

void ActionsPanelTest::accessibleNames()
{
    open(ActionsConfirmDelete);
    QCOMPARE(list()->accessibleName(), QStringLiteral("Delete \"Mail\"?"));
    open(ActionsList);
    QCOMPARE(list()->accessibleName(), Tr::t("actions.title_shortcut"));
    m_panel->setFocus(); // whoever gives it to the panel means the list
    QVERIFY(list()->hasFocus());
}

QTEST_MAIN(ActionsPanelTest)
#include "tst_actionspanel.moc"
