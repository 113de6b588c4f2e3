// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ChoiceRow.h"
#include "GroupedSettingsPage.h"
#include "HotkeyRecorderFilter.h"
#include "SettingsCard.h"
#include "SettingsViewFixture.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHBoxLayout>
#include <QSignalSpy>
#include <QVBoxLayout>

/// The keys of the settings page, on a page of its own that has every kind of card: a button alone;
/// three buttons of which one is checked; two buttons; a field, a combo box and a list; and one
/// without any control.
class SettingsViewKeysTest : public SettingsViewFixture
{
    Q_OBJECT

private slots:
    void keys_data();
    void keys();
    void enterClicksTheButton_data();
    void enterClicksTheButton();
    void heldEnterClicksOnlyOnce();
    void leavesForTheHomePage_data();
    void leavesForTheHomePage();
    void backspaceDeletesInAField();
    void escInAFieldIsTheCards();
    void openPopupKeepsItsKeys();
    void listAlwaysHasACategory();
    void cardHandsTheFocusOn();
    void cardWithoutControlKeepsTheFocus();
    void clickOnACategoryLeadsIn();
    void arrowOnlyChangesThePage();
    void downFromBackWithoutAList();
    void emptyPageIsLeftAlone();
    void scrollsToTheCard();
    void otherKeysPass_data();
    void otherKeysPass();
    void recorderHasItsKeys_data();
    void recorderHasItsKeys();
    void strangersAreLeftAlone();
    void everyPage_data();
    void everyPage();

private:
    void openTestPage();
    static QWidget* makeTestPage();
    void focusOn(const QString& where) const;
};

namespace
{

template <typename Widget>
Widget* called(const char* name)
{
    auto* widget = new Widget;
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

QWidget* boxOf(const QList<QWidget*>& widgets)
{
    auto* box = new QWidget;
    auto* row = new QHBoxLayout(box);
    for (QWidget* widget : widgets)
        row->addWidget(widget);
    return box;
}

} // namespace

QWidget* SettingsViewKeysTest::makeTestPage()
{
    auto* combo = called<QComboBox>("combo");
    combo->addItems({"one", "two", "three"});
    auto* list = called<QListWidget>("list");
    list->addItems({"one", "two", "three"});
    list->setCurrentRow(1);
    list->setFocusPolicy(Qt::WheelFocus); // any other frame is a card
    list->setFixedHeight(60);
    auto* page = new QWidget;
    auto* rows = new QVBoxLayout(page);
    rows->addWidget(new SettingsCard("One", called<QPushButton>("alone")));
    rows->addWidget(new SettingsCard(
        "Two", new ChoiceRow({{0, "a", "choice0"}, {1, "b", "choice1"}, {2, "c", "choice2"}}, 1,
                             ChoiceRow::Shape::Pill)));
    rows->addWidget(new SettingsCard(
        "Three", boxOf({called<QPushButton>("left"), called<QPushButton>("right")})));
    rows->addWidget(new SettingsCard("Four", boxOf({called<QLineEdit>("field"), combo, list})));
    auto* bare = new SettingsCard("Five", new QLabel("nothing to do"));
    bare->setObjectName("bare");
    rows->addWidget(bare);
    return new GroupedSettingsPage({{"Group", page}});
}

/// Puts the page of this test in the place of the first category's.
void SettingsViewKeysTest::openTestPage()
{
    openSettings();
    QWidget* real = pages()->widget(0);
    pages()->insertWidget(0, makeTestPage());
    pages()->removeWidget(real);
    delete real;
    pages()->setCurrentIndex(0);
    categories()->setFocus();
    QCOMPARE(focused(), categories());
}

/// \param where the name of a widget; a number behind that of the list is the row.
void SettingsViewKeysTest::focusOn(const QString& where) const
{
    if (where.startsWith("categories")) {
        categories()->setCurrentRow(where.back().digitValue());
        categories()->setFocus();
    } else {
        auto* widget = settings()->findChild<QWidget*>(where);
        QVERIFY2(widget, qPrintable(where));
        widget->setFocus();
        QCOMPARE(focusedName(), where);
    }
}

void SettingsViewKeysTest::keys_data()
{
    QTest::addColumn<QString>("where");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("isConsumed");
    const auto row = [](const char* where, Qt::Key key, const char* target,
                        bool isConsumed = true) {
        QTest::addRow("%s on %s", qPrintable(QKeySequence(key).toString()), where)
            << where << key << target << isConsumed;
    };
    const char* const list = "settingsCatList";
    const char* const back = "settingsBackBtn";
    row("categories0", Qt::Key_Up, back);
    row("categories1", Qt::Key_Up, list, false);
    row("categories0", Qt::Key_Down, list, false);
    row("categories3", Qt::Key_Down, list, false);
    row("categories0", Qt::Key_Left, list, false);
    row("categories0", Qt::Key_Right, list, false);
    row("categories0", Qt::Key_Return, "alone");
    row("categories0", Qt::Key_Enter, "alone");
    row(back, Qt::Key_Down, list);
    row(back, Qt::Key_Up, back);
    row(back, Qt::Key_Left, back);
    row(back, Qt::Key_Right, back);
    row("alone", Qt::Key_Up, back);
    row("alone", Qt::Key_Down, "choice1");
    row("alone", Qt::Key_Left, list);
    row("alone", Qt::Key_Right, "alone");
    row("alone", Qt::Key_Escape, list);
    row("alone", Qt::Key_Backspace, list);
    row("choice0", Qt::Key_Left, list);
    row("choice0", Qt::Key_Right, "choice1");
    row("choice1", Qt::Key_Left, "choice0");
    row("choice1", Qt::Key_Right, "choice2");
    row("choice2", Qt::Key_Right, "choice2");
    row("choice2", Qt::Key_Up, "alone");
    row("choice0", Qt::Key_Down, "left");
    row("choice1", Qt::Key_Escape, list);
    row("left", Qt::Key_Left, list);
    row("left", Qt::Key_Right, "right");
    row("right", Qt::Key_Left, "left");
    row("right", Qt::Key_Right, "right");
    row("right", Qt::Key_Up, "choice1");
    row("right", Qt::Key_Down, "field");
    row("right", Qt::Key_Backspace, list);
    row("field", Qt::Key_Up, "left");
    row("field", Qt::Key_Down, "bare");
    row("field", Qt::Key_Left, list);
    row("field", Qt::Key_Right, "combo");
    row("field", Qt::Key_Backspace, "field", false);
    row("combo", Qt::Key_Left, "field");
    row("combo", Qt::Key_Right, "list");
    row("combo", Qt::Key_Up, "left");
    row("combo", Qt::Key_Down, "bare");
    row("combo", Qt::Key_Escape, list);
    row("list", Qt::Key_Up, "list", false);
    row("list", Qt::Key_Down, "list", false);
    row("list", Qt::Key_Left, "combo");
    row("list", Qt::Key_Right, "list");
    row("list", Qt::Key_Escape, list);
    row("list", Qt::Key_Backspace, list);
    row("bare", Qt::Key_Up, "field");
    row("bare", Qt::Key_Down, "bare");
    row("bare", Qt::Key_Left, "bare", false);
    row("bare", Qt::Key_Right, "bare", false);
    row("bare", Qt::Key_Return, "bare", false);
    row("bare", Qt::Key_Escape, list);
    row("bare", Qt::Key_Backspace, list);
}

void SettingsViewKeysTest::keys()
{
    QFETCH(QString, where);
    QFETCH(Qt::Key, key);
    openTestPage();
    focusOn(where);
    if (where.startsWith("categories")) {
        // Another category has a page of its own, which is none of this test's business.
        QCOMPARE(pages()->currentIndex(), categories()->currentRow());
    }
    QTEST(isTaken(key), "isConsumed");
    QTEST(focusedName(), "target");
    QVERIFY(!isDipping());
    QVERIFY(isOnSettings());
}

void SettingsViewKeysTest::enterClicksTheButton_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("where");
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        for (const char* where : {"alone", "choice2", "left", "right"})
            QTest::addRow("%s on %s", qPrintable(QKeySequence(key).toString()), where)
                << key << where;
    }
}

void SettingsViewKeysTest::enterClicksTheButton()
{
    QFETCH(Qt::Key, key);
    QFETCH(QString, where);
    openTestPage();
    focusOn(where);
    const QSignalSpy clicks(qobject_cast<QPushButton*>(focused()), &QPushButton::clicked);
    QVERIFY(isTaken(key));
    QCOMPARE(clicks.count(), 1);
    QCOMPARE(focusedName(), where);
}

void SettingsViewKeysTest::heldEnterClicksOnlyOnce()
{
    openTestPage();
    focusOn("categories0");
    const QSignalSpy clicks(settings()->findChild<QPushButton*>("alone"), &QPushButton::clicked);
    QTest::keyPress(focused(), Qt::Key_Return);
    QCOMPARE(focusedName(), QStringLiteral("alone"));
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
    const EventCounter presses(focused(), QEvent::KeyPress);
    QApplication::sendEvent(focused(), &repeated);
    QCOMPARE(clicks.count(), 0);
    QCOMPARE(presses.count, 0);
    QTest::keyClick(focused(), Qt::Key_Return);
    QCOMPARE(clicks.count(), 1);
}

void SettingsViewKeysTest::leavesForTheHomePage_data()
{
    QTest::addColumn<QString>("where");
    QTest::addColumn<Qt::Key>("key");
    for (const char* where : {"categories0", "categories2", "settingsBackBtn"}) {
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Backspace})
            QTest::addRow("%s on %s", qPrintable(QKeySequence(key).toString()), where)
                << where << key;
    }
    QTest::newRow("Return on the button") << "settingsBackBtn" << Qt::Key_Return;
    QTest::newRow("Space on the button") << "settingsBackBtn" << Qt::Key_Space;
}

void SettingsViewKeysTest::leavesForTheHomePage()
{
    QFETCH(QString, where);
    QFETCH(Qt::Key, key);
    openTestPage();
    focusOn(where);
    model()->saveItem("Alpha", snippet("a4", "Four"), -1);
    QTest::keyClick(focused(), key);
    QVERIFY(isDipping());
    QTRY_COMPARE(focused(), list());
    waitForTheDip();
    QVERIFY(!isOnSettings());
    QCOMPARE(focused(), list());
    QCOMPARE(rows(), QStringList({"One", "Two", "Three", "Four"}));
}

void SettingsViewKeysTest::backspaceDeletesInAField()
{
    openTestPage();
    auto* field = settings()->findChild<QLineEdit*>("field");
    field->setText("ab");
    focusOn("field");
    QTest::keyClick(field, Qt::Key_Backspace);
    QCOMPARE(field->text(), QStringLiteral("a"));
    QCOMPARE(focused(), field);
    QVERIFY(isOnSettings());
}

void SettingsViewKeysTest::escInAFieldIsTheCards()
{
    openTestPage();
    focusOn("field");
    QWidget* card = settings()->rowOf(focused());
    const EventCounter cardFocus(card, QEvent::FocusIn);
    QVERIFY(!isTaken(Qt::Key_Escape)); // by the page; the card takes it, and hands the focus back
    QCOMPARE(cardFocus.count, 1);
    QCOMPARE(focusedName(), QStringLiteral("field"));
    QVERIFY(isOnSettings());
    QVERIFY(!isDipping());
}

void SettingsViewKeysTest::openPopupKeepsItsKeys()
{
    openTestPage();
    focusOn("combo");
    auto* combo = settings()->findChild<QComboBox*>("combo");
    combo->showPopup();
    QVERIFY(combo->view()->isVisible());
    for (const int key : {Qt::Key_Up, Qt::Key_Down}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QVERIFY(!settings()->handleKeyPress(combo, &event));
    }
    QTest::keyClick(combo->view(), Qt::Key_Down);
    QTest::keyClick(combo->view(), Qt::Key_Return);
    QCOMPARE(combo->currentIndex(), 1);
    QTRY_VERIFY(!combo->view()->isVisible());
    combo->setFocus();
    QVERIFY(isTaken(Qt::Key_Up));
}

void SettingsViewKeysTest::listAlwaysHasACategory()
{
    openSettings(2);
    categories()->setCurrentRow(-1);
    QFocusEvent focusIn(QEvent::FocusIn);
    QVERIFY(!settings()->handleEvent(categories(), &focusIn)); // before the list itself hears of it
    QCOMPARE(categories()->currentRow(), 0);
    QCOMPARE(pages()->currentIndex(), 0);
    // What is current but no longer selected is so again, with its page.
    categories()->setCurrentRow(2);
    categories()->clearSelection();
    pages()->setCurrentIndex(1);
    backButton()->setFocus();
    categories()->setFocus();
    QCOMPARE(categories()->currentRow(), 2);
    QVERIFY(categories()->currentItem()->isSelected());
    QCOMPARE(pages()->currentIndex(), 2);
}

void SettingsViewKeysTest::cardHandsTheFocusOn()
{
    openTestPage();
    const QList<QFrame*> cards = settings()->detailRows();
    QCOMPARE(cards.size(), 5);
    const QStringList controls{"alone", "choice1", "left", "field", "bare"};
    for (int i = 0; i < cards.size(); ++i) {
        categories()->setFocus();
        cards.at(i)->setFocus();
        QCOMPARE(focusedName(), controls.at(i));
    }
}

void SettingsViewKeysTest::cardWithoutControlKeepsTheFocus()
{
    openTestPage();
    auto* bare = settings()->findChild<QFrame*>("bare");
    QVERIFY(!settings()->focusRowControl(bare));
    QVERIFY(!settings()->focusRowControl(nullptr));
    bare->setFocus();
    QCOMPARE(focused(), bare);
}

void SettingsViewKeysTest::clickOnACategoryLeadsIn()
{
    openTestPage();
    categories()->setCurrentRow(1);
    const QRect first = categories()->visualItemRect(categories()->item(0));
    QTest::mouseClick(categories()->viewport(), Qt::LeftButton, {}, first.center());
    QCOMPARE(pages()->currentIndex(), 0);
    QCOMPARE(focusedName(), QStringLiteral("alone"));
    // Nor can it be taken back.
    QTest::mouseClick(categories()->viewport(), Qt::LeftButton, Qt::ControlModifier,
                      first.center());
    QVERIFY(categories()->item(0)->isSelected());
    QCOMPARE(focusedName(), QStringLiteral("alone"));
}

void SettingsViewKeysTest::arrowOnlyChangesThePage()
{
    openTestPage();
    for (int row = 1; row < categories()->count(); ++row) {
        QTest::keyClick(focused(), Qt::Key_Down);
        QCOMPARE(categories()->currentRow(), row);
        QCOMPARE(pages()->currentIndex(), row);
        QCOMPARE(focused(), categories());
    }
    QTest::keyClick(focused(), Qt::Key_Down);
    QCOMPARE(categories()->currentRow(), categories()->count() - 1);
}

void SettingsViewKeysTest::downFromBackWithoutAList()
{
    openTestPage();
    focusOn("settingsBackBtn");
    categories()->hide();
    QVERIFY(isTaken(Qt::Key_Down));
    QCOMPARE(focusedName(), QStringLiteral("alone"));
    categories()->show();
    categories()->setCurrentItem(nullptr);
    focusOn("settingsBackBtn");
    QVERIFY(isTaken(Qt::Key_Down));
    QCOMPARE(focused(), categories());
    QCOMPARE(categories()->currentRow(), 0);
}

void SettingsViewKeysTest::emptyPageIsLeftAlone()
{
    openTestPage();
    pages()->insertWidget(0, new QWidget);
    pages()->setCurrentIndex(0);
    QVERIFY(settings()->detailRows().isEmpty());
    QVERIFY(isTaken(Qt::Key_Return));
    QCOMPARE(focused(), categories());
    settings()->openSelectedCategory();
    QCOMPARE(focused(), categories());
}

void SettingsViewKeysTest::scrollsToTheCard()
{
    openTestPage();
    auto* area = pages()->currentWidget()->findChild<QScrollArea*>();
    area->widget()->setMinimumHeight(3000);
    auto* bare = settings()->findChild<QFrame*>("bare");
    QCoreApplication::processEvents();
    const QFrame* last = settings()->detailRows().at(3);
    bare->setFocus();
    QTest::keyClick(bare, Qt::Key_Up);
    QCOMPARE(focusedName(), QStringLiteral("field"));
    const QRect place(last->mapTo(area->viewport(), QPoint()), last->size());
    const QRect view = area->viewport()->rect();
    QVERIFY2(view.adjusted(0, 12, 0, -12).contains(place), qPrintable(QString::number(place.y())));
}

void SettingsViewKeysTest::otherKeysPass_data()
{
    QTest::addColumn<QString>("where");
    QTest::addColumn<Qt::Key>("key");
    for (const char* where : {"categories1", "settingsBackBtn", "alone", "field", "bare"}) {
        for (const Qt::Key key : {Qt::Key_A, Qt::Key_Home, Qt::Key_F5, Qt::Key_Delete})
            QTest::addRow("%s on %s", qPrintable(QKeySequence(key).toString()), where)
                << where << key;
    }
}

void SettingsViewKeysTest::otherKeysPass()
{
    QFETCH(QString, where);
    QFETCH(Qt::Key, key);
    openTestPage();
    focusOn(where);
    const QWidget* before = focused();
    QVERIFY(!isTaken(key));
    QCOMPARE(focused(), before);
    QVERIFY(searchField()->text().isEmpty());
    QVERIFY(isOnSettings());
}

void SettingsViewKeysTest::recorderHasItsKeys_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<bool>("isStillListening");
    QTest::newRow("Tab") << Qt::Key_Tab << false;
    QTest::newRow("Esc") << Qt::Key_Escape << false;
    QTest::newRow("Backspace") << Qt::Key_Backspace << true;
    QTest::newRow("Return") << Qt::Key_Return << false;
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down})
        QTest::newRow(qPrintable(QKeySequence(key).toString())) << key << true;
    QTest::newRow("Ctrl") << Qt::Key_Control << true;
}

void SettingsViewKeysTest::recorderHasItsKeys()
{
    QFETCH(Qt::Key, key);
    openTestPage();
    auto* button = settings()->findChild<QPushButton*>("left");
    auto* label = new QLabel(settings());
    new HotkeyRecorderFilter(button, label, nullptr, Theme::colors(), settings(), {}, nullptr, {});
    button->setFocus();
    const QSignalSpy clicks(button, &QPushButton::clicked);
    QVERIFY(isTaken(Qt::Key_Return));
    QVERIFY(HotkeyRecorderFilter::isListeningOn(button));
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QVERIFY(!settings()->handleKeyPress(button, &event));
    QTest::keyClick(button, key);
    QTEST(HotkeyRecorderFilter::isListeningOn(button), "isStillListening");
    QCOMPARE(focused(), button);
    QCOMPARE(clicks.count(), 1);
    QVERIFY(isOnSettings());
    QVERIFY(!isDipping());
    if (HotkeyRecorderFilter::isListeningOn(button))
        categories()->setFocus();
    QVERIFY(!HotkeyRecorderFilter::isListeningOn(button));
}

void SettingsViewKeysTest::strangersAreLeftAlone()
{
    openTestPage();
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QKeyEvent up(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
    QKeyEvent left(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
    QPushButton other;
    const QSignalSpy clicks(&other, &QPushButton::clicked);
    QObject noWidget;
    for (QKeyEvent* event : {&enter, &up, &left}) {
        QVERIFY(!settings()->handleKeyPress(&other, event));
        QVERIFY(!settings()->handleKeyPress(&noWidget, event));
        QVERIFY(!settings()->handleKeyPress(m_window.get(), event));
    }
    QCOMPARE(clicks.count(), 0);
    QFrame stranger;
    stranger.setFocusPolicy(Qt::StrongFocus);
    QVERIFY(!settings()->rowOf(&stranger));
    QVERIFY(!settings()->rowOf(nullptr));
    QVERIFY(!settings()->rowOf(pages()->currentWidget()));
    settings()->focusAfterRebuild(nullptr);
    QCOMPARE(focused(), categories());
}

void SettingsViewKeysTest::everyPage_data()
{
    QTest::addColumn<Lang>("lang");
    QTest::addColumn<int>("category");
    QTest::addColumn<QList<QStringList>>("rows"); // the controls of each, from left to right
    QTest::addColumn<QStringList>("entries");     // where the focus comes into each
    const QList<QStringList> display{{"themeBtn_auto", "themeBtn_light", "themeBtn_dark"},
                                     {"accentSwatch"},
                                     {"gridColBtn_2", "gridColBtn_3", "gridColBtn_4"},
                                     {"langPickBtn"}};
    const QList<QStringList> app{{"hotkeyReset_main", "hotkeyRecord_main"},
                                 {"hotkeyReset_spotlight", "hotkeyRecord_spotlight"},
                                 {"btnExportData"},
                                 {"btnImportData"},
                                 {"btnResetData"}};
    const QList<QStringList> templates{{"tplCreateBtn"}, {"tplMenuBtn_Kit"}, {"tplMenuBtn_Box"}};
    const QList<QStringList> about{{"startTourBtn"}, {"aboutStoreBtn"}, {"aboutMailBtn"}};
    const auto firsts = [](const QList<QStringList>& rows) {
        QStringList names;
        for (const QStringList& row : rows)
            names.append(row.constFirst());
        return names;
    };
    for (const Lang lang : Tr::all()) {
        const QByteArray code = Tr::codeFor(lang).toLatin1();
        QTest::addRow("display, %s", code.constData())
            << lang << 0 << display
            << QStringList{"themeBtn_light", "accentSwatch", "gridColBtn_3", "langPickBtn"};
        QTest::addRow("application, %s", code.constData()) << lang << 1 << app << firsts(app);
        QTest::addRow("templates, %s", code.constData())
            << lang << 2 << templates << firsts(templates);
        QTest::addRow("about, %s", code.constData()) << lang << 3 << about << firsts(about);
    }
}

void SettingsViewKeysTest::everyPage()
{
    QFETCH(Lang, lang);
    QFETCH(int, category);
    QFETCH(QList<QStringList>, rows);
    QFETCH(QStringList, entries);
    store("Language/Code", Tr::codeFor(lang));
    store("Layout/GridColumns", 3);
    openSettings(category);
    QCOMPARE(settings()->detailRows().size(), rows.size());
    const QString list = QStringLiteral("settingsCatList");
    QVERIFY(isTaken(Qt::Key_Return));
    QCOMPARE(focusedName(), entries.constFirst());

    const auto leadsTo = [this](const QString& where, Qt::Key key, const QString& target) {
        focusOn(where);
        const bool isConsumed = isTaken(key);
        QVERIFY2(isConsumed && focusedName() == target,
                 qPrintable(QStringLiteral("%1 on %2 leads to %3")
                                .arg(QKeySequence(key).toString(), where, focusedName())));
    };
    for (int row = 0; row < rows.size(); ++row) {
        const QStringList controls = rows.at(row);
        const bool isLast = row + 1 == rows.size();
        for (int i = 0; i < controls.size(); ++i) {
            const QString& here = controls.at(i);
            leadsTo(here, Qt::Key_Up, row > 0 ? entries.at(row - 1) : "settingsBackBtn");
            leadsTo(here, Qt::Key_Down, isLast ? here : entries.at(row + 1));
            leadsTo(here, Qt::Key_Left, i > 0 ? controls.at(i - 1) : list);
            leadsTo(here, Qt::Key_Right, i + 1 < controls.size() ? controls.at(i + 1) : here);
            leadsTo(here, Qt::Key_Escape, list);
            leadsTo(here, Qt::Key_Backspace, list);
        }
        // Of buttons that exclude each other, the one that had the focus last is the one to come
        // back to.
        if (settings()->findChild<QPushButton*>(controls.constLast())->isCheckable())
            entries[row] = controls.constLast();
        categories()->setFocus();
        settings()->detailRows().at(row)->setFocus();
        QCOMPARE(focusedName(), entries.at(row));
    }
    QCOMPARE(categories()->currentRow(), category);
    QVERIFY(isOnSettings() && !isDipping());
}

QTEST_MAIN(SettingsViewKeysTest)
#include "tst_settingsviewkeys.moc"
