// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ChoiceRow.h"
#include "SettingsCard.h"
#include "SettingsCardFilter.h"
#include "TestHome.h"
#include "Theme.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

namespace
{

/// Stops the keys that get past every filter installed after it, and counts them.
class PassedKeys : public QObject
{
public:
    void watch(QWidget* widget) { widget->installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress)
            return QObject::eventFilter(watched, event);
        ++count;
        return true;
    }
};

/// Widgets side by side in a box without focus.
QWidget* boxOf(const QList<QWidget*>& widgets)
{
    auto* box = new QWidget;
    auto* row = new QHBoxLayout(box);
    for (QWidget* widget : widgets)
        row->addWidget(widget);
    return box;
}

template <typename Widget, typename... Arguments>
Widget* named(const char* name, Arguments&&... arguments)
{
    auto* widget = new Widget(std::forward<Arguments>(arguments)...);
    widget->setObjectName(name);
    return widget;
}

} // namespace

/// The keys of a page with four cards: a button alone; three buttons of which one is checked; two
/// buttons and a hidden one; a field, a combo box and a list.
class SettingsCardFilterTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup() { m_page.reset(); }

    void dressesTheCard();
    void keys_data();
    void keys();
    void enterWorksTheControl_data();
    void enterWorksTheControl();
    void openListKeepsItsKeys();
    void otherKeysPass_data();
    void otherKeysPass();
    void cardOfAScrollAreaLeadsIntoIt();
    void cardWithoutControls();
    void cardsOfOtherParentsAreNoNeighbours();
    void keysOfAnotherWindowAreIgnored();
    void withoutFocusInsideTheControlsKeepTheirKeys();

private:
    void add(const char* name, QWidget* control);
    QWidget* at(const QString& name) const { return m_page->findChild<QWidget*>(name); }
    /// Presses a key on the widget, and tells whether it was taken.
    bool press(QWidget* widget, int key);

    std::unique_ptr<QWidget> m_page;
    std::unique_ptr<PassedKeys> m_passed;
};

void SettingsCardFilterTest::add(const char* name, QWidget* control)
{
    m_passed->watch(control);
    for (QWidget* child : control->findChildren<QWidget*>())
        m_passed->watch(child);
    auto* card = new QFrame(m_page.get());
    card->setObjectName(name);
    m_passed->watch(card);
    auto* row = new QHBoxLayout(card);
    row->addWidget(new QLabel(name));
    row->addWidget(control);
    m_page->layout()->addWidget(card);
    new SettingsCardFilter(card, control, card);
    if (m_page->isVisible())
        card->show();
}

void SettingsCardFilterTest::init()
{
    Theme::forceTheme = 1;
    m_passed = std::make_unique<PassedKeys>();
    m_page = std::make_unique<QWidget>();
    new QVBoxLayout(m_page.get());
    add("card1", named<QPushButton>("alone", "alone"));
    add("card2", new ChoiceRow({{0, "a", "choice0"}, {1, "b", "choice1"}, {2, "c", "choice2"}}, 1,
                               ChoiceRow::Shape::Pill));
    auto* hidden = named<QPushButton>("hidden", "hidden");
    auto* left = named<QPushButton>("left", "left");
    auto* right = named<QPushButton>("right", "right");
    add("card3", boxOf({hidden, new QLabel("label"), left, right}));
    hidden->hide();
    auto* combo = named<QComboBox>("combo");
    combo->addItems({"one", "two", "three"});
    auto* list = named<QListWidget>("list");
    list->addItems({"one", "two"});
    // Without the policy of a card, as any frame on a page.
    list->setFocusPolicy(Qt::WheelFocus);
    add("card4", boxOf({named<QLineEdit>("field", "text"), combo, list}));
    m_page->show();
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
}

bool SettingsCardFilterTest::press(QWidget* widget, int key)
{
    const int passed = m_passed->count;
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
    return m_passed->count == passed;
}

void SettingsCardFilterTest::dressesTheCard()
{
    const auto* card = qobject_cast<QFrame*>(at("card1"));
    QCOMPARE(card->focusPolicy(), Qt::StrongFocus);
    QCOMPARE(card->styleSheet(), "QFrame { background-color: " + Theme::boxBg() +
                                     "; border: none; border-radius: 16px; }");
}

void SettingsCardFilterTest::keys_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("to");
    QTest::addColumn<bool>("isTaken");
    const auto row = [](const char* from, Qt::Key key, const char* to, bool isTaken = true) {
        QTest::addRow("%s, %s", from, qPrintable(QKeySequence(key).toString()))
            << from << int(key) << to << isTaken;
    };
    // On a card.
    row("card1", Qt::Key_Return, "alone");
    row("card1", Qt::Key_Enter, "alone");
    row("card2", Qt::Key_Return, "choice1"); // the checked one
    row("card3", Qt::Key_Enter, "left");     // the first that can be seen
    row("card4", Qt::Key_Return, "field");
    row("card1", Qt::Key_Up, "card1");
    row("card1", Qt::Key_Down, "card2");
    row("card2", Qt::Key_Up, "card1");
    row("card3", Qt::Key_Down, "card4");
    row("card4", Qt::Key_Down, "card4");
    row("card2", Qt::Key_Left, "card2", false);
    row("card2", Qt::Key_Right, "card2", false);
    row("card2", Qt::Key_Escape, "card2", false);
    row("card2", Qt::Key_Backspace, "card2", false);
    // Out of a card.
    row("alone", Qt::Key_Escape, "card1");
    row("choice2", Qt::Key_Backspace, "card2");
    row("right", Qt::Key_Escape, "card3");
    row("field", Qt::Key_Escape, "card4");
    row("field", Qt::Key_Backspace, "field", false);
    row("combo", Qt::Key_Backspace, "card4");
    // From control to control of the next card.
    row("alone", Qt::Key_Up, "card1");
    row("alone", Qt::Key_Down, "choice1");
    row("choice0", Qt::Key_Down, "left");
    row("choice0", Qt::Key_Up, "alone");
    row("right", Qt::Key_Up, "choice1");
    row("right", Qt::Key_Down, "field");
    row("field", Qt::Key_Up, "left");
    row("field", Qt::Key_Down, "card4");
    row("combo", Qt::Key_Up, "left");
    row("list", Qt::Key_Up, "list", false);
    row("list", Qt::Key_Down, "list", false);
    // Around inside a card.
    row("alone", Qt::Key_Left, "alone");
    row("alone", Qt::Key_Right, "alone");
    row("choice0", Qt::Key_Right, "choice1");
    row("choice1", Qt::Key_Right, "choice2");
    row("choice2", Qt::Key_Right, "choice0");
    row("choice0", Qt::Key_Left, "choice2");
    row("left", Qt::Key_Right, "right");
    row("right", Qt::Key_Right, "left");
    row("left", Qt::Key_Left, "right");
    row("combo", Qt::Key_Right, "list");
    row("list", Qt::Key_Left, "list", false);
    row("list", Qt::Key_Right, "list", false);
}

void SettingsCardFilterTest::keys()
{
    QFETCH(QString, from);
    QFETCH(int, key);
    at(from)->setFocus();
    QCOMPARE(QApplication::focusWidget(), at(from));
    QTEST(press(at(from), key), "isTaken");
    QFETCH(QString, to);
    QCOMPARE(QApplication::focusWidget()->objectName(), to);
}

void SettingsCardFilterTest::enterWorksTheControl_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

void SettingsCardFilterTest::enterWorksTheControl()
{
    QFETCH(int, key);
    auto* button = m_page->findChild<QPushButton*>("right");
    const QSignalSpy clicked(button, &QPushButton::clicked);
    button->setFocus();
    QVERIFY(press(button, key));
    QCOMPARE(clicked.count(), 1);

    at("choice2")->setFocus();
    QVERIFY(press(at("choice2"), key));
    QCOMPARE(m_page->findChild<ChoiceRow*>()->value(), 2);

    auto* combo = m_page->findChild<QComboBox*>();
    combo->setFocus();
    QVERIFY(press(combo, key));
    QVERIFY(combo->view()->isVisible());
    combo->hidePopup();

    at("field")->setFocus();
    QVERIFY(!press(at("field"), key)); // it has a use of its own for it
}

void SettingsCardFilterTest::openListKeepsItsKeys()
{
    auto* combo = m_page->findChild<QComboBox*>();
    combo->setFocus();
    combo->showPopup();
    // Where a popup has the keyboard, the box still counts as the one with the focus.
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down})
        QVERIFY(!press(combo, key));
    combo->hidePopup();
    QVERIFY(press(combo, Qt::Key_Up));
}

void SettingsCardFilterTest::otherKeysPass_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Tab") << int(Qt::Key_Tab);
    QTest::newRow("Space") << int(Qt::Key_Space);
    QTest::newRow("a letter") << int(Qt::Key_A);
    QTest::newRow("Home") << int(Qt::Key_Home);
    QTest::newRow("Delete") << int(Qt::Key_Delete);
}

void SettingsCardFilterTest::otherKeysPass()
{
    QFETCH(int, key);
    for (const char* name : {"card2", "choice1", "field", "list"}) {
        at(name)->setFocus();
        QVERIFY2(!press(at(name), key), name);
    }
}

void SettingsCardFilterTest::cardOfAScrollAreaLeadsIntoIt()
{
    auto* area = named<QScrollArea>("area");
    area->setFocusPolicy(Qt::TabFocus);
    area->setWidget(boxOf({named<QPushButton>("inArea", "inside")}));
    add("card5", area);
    at("card5")->setFocus();
    QVERIFY(press(at("card5"), Qt::Key_Return));
    QCOMPARE(QApplication::focusWidget()->objectName(), "inArea");
}

void SettingsCardFilterTest::cardWithoutControls()
{
    add("card5", new QLabel("nothing to do"));
    at("card5")->setFocus();
    QVERIFY(press(at("card5"), Qt::Key_Return));
    QCOMPARE(QApplication::focusWidget(), at("card5"));
    // From a control above it, the focus stays on the card itself.
    at("field")->setFocus();
    QVERIFY(press(at("field"), Qt::Key_Down));
    QCOMPARE(QApplication::focusWidget(), at("card5"));
}

void SettingsCardFilterTest::cardsOfOtherParentsAreNoNeighbours()
{
    auto* box = new QWidget(m_page.get());
    m_page->layout()->addWidget(box);
    auto* column = new QVBoxLayout(box);
    auto* card = new SettingsCard("elsewhere", new QPushButton("b"));
    column->addWidget(card);
    box->show();
    QTRY_VERIFY(card->isVisible());
    card->setFocus();
    QVERIFY(press(card, Qt::Key_Up));
    QCOMPARE(QApplication::focusWidget(), card);
    QVERIFY(press(card, Qt::Key_Down));
    QCOMPARE(QApplication::focusWidget(), card);
}

void SettingsCardFilterTest::keysOfAnotherWindowAreIgnored()
{
    at("left")->setFocus();
    const std::unique_ptr<QWidget> popup(at("right"));
    popup->setParent(nullptr); // gone to a window of its own
    QVERIFY(!press(popup.get(), Qt::Key_Escape));
    QCOMPARE(QApplication::focusWidget(), at("left"));
}

void SettingsCardFilterTest::withoutFocusInsideTheControlsKeepTheirKeys()
{
    at("card2")->setFocus();
    QVERIFY(!press(at("choice0"), Qt::Key_Escape));
    at("field")->setFocus(); // in another card
    QVERIFY(!press(at("choice0"), Qt::Key_Return));
}

QTEST_MAIN(SettingsCardFilterTest)
#include "tst_settingscardfilter.moc"
