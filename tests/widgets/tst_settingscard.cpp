// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Pixels.h"
#include "SettingsCard.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>
#include <QVBoxLayout>

#include <memory>
#include <vector>

class SettingsCardTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init() { Theme::forceTheme = 1; }
    void looks();
    void layoutFollowsTheMeasures();
    void titleGivesWayToTheControl();
    void headingTakesThePlaceOfTheTitle();
    void isACard_data();
    void isACard();
    void collectsRowsInOrder();

private:
    std::vector<std::unique_ptr<QWidget>> m_widgets; ///< of a table
};

void SettingsCardTest::looks()
{
    SettingsCard card("A & <b>title</b>", new QPushButton("control"));
    QCOMPARE(card.focusPolicy(), Qt::StrongFocus);
    QCOMPARE(card.styleSheet(), "QFrame { background-color: " + Theme::boxBg() +
                                    "; border: none; border-radius: 16px; }");
    const auto* title = card.findChild<QLabel*>("titleStatic");
    QVERIFY(title);
    QCOMPARE(title->text(), "A & <b>title</b>");
    QCOMPARE(title->textFormat(), Qt::PlainText);
    QCOMPARE(title->styleSheet(), Theme::staticTitleStyle(Theme::colors()));
    card.resize(400, 60);
    card.layout()->activate();
    const QImage image = Pixels::imageOf(card);
    QCOMPARE(image.pixelColor(200, 3), QColor(Theme::boxBg()));
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white)); // the corners are round
}

void SettingsCardTest::layoutFollowsTheMeasures()
{
    auto* control = new QPushButton("control");
    control->setFixedSize(100, 36);
    SettingsCard card("A title", control);
    QCOMPARE(card.sizeHint().height(), 12 + 36 + 12);
    card.resize(400, 80);
    card.layout()->activate();
    const QRect title = card.findChild<QLabel*>()->geometry();
    QCOMPARE(control->geometry(), QRect(400 - 16 - 100, 22, 100, 36));
    QCOMPARE(title.left(), 24);
    QCOMPARE(title.right() + 1, 400 - 16 - 100 - 12);
    QVERIFY(qAbs(title.center().y() - 40) <= 1);
}

void SettingsCardTest::titleGivesWayToTheControl()
{
    auto* control = new QPushButton("control");
    control->setFixedSize(150, 36);
    SettingsCard card("A title of several words that is far too long for its card", control);
    card.resize(300, 200);
    card.layout()->activate();
    QCOMPARE(card.size(), QSize(300, 200));
    QCOMPARE(control->geometry().right() + 1, 300 - 16);
    QVERIFY(card.findChild<QLabel*>()->geometry().right() < control->geometry().left());
}

void SettingsCardTest::headingTakesThePlaceOfTheTitle()
{
    auto* heading = new QWidget;
    auto* column = new QVBoxLayout(heading);
    column->addWidget(new QLabel("name"));
    column->addWidget(new QLabel("3 items"));
    auto* control = new QPushButton;
    control->setFixedSize(36, 36);
    SettingsCard card(heading, control);
    card.resize(400, 100);
    card.layout()->activate();
    QCOMPARE(heading->geometry().left(), 24);
    QCOMPARE(heading->geometry().right() + 1, 400 - 16 - 36 - 12);
    QVERIFY(!card.findChild<QLabel*>("titleStatic"));
}

void SettingsCardTest::isACard_data()
{
    QTest::addColumn<QWidget*>("widget");
    QTest::addColumn<bool>("isCard");
    const auto row = [this](const char* name, QWidget* widget, Qt::FocusPolicy policy,
                            bool isCard) {
        widget->setFocusPolicy(policy);
        m_widgets.emplace_back(widget);
        QTest::newRow(name) << widget << isCard;
    };
    row("a frame with the policy of a card", new QFrame, Qt::StrongFocus, true);
    row("a frame without it", new QFrame, Qt::NoFocus, false);
    row("a frame for Tab alone", new QFrame, Qt::TabFocus, false);
    row("a frame for the wheel as well", new QFrame, Qt::WheelFocus, false);
    row("a widget", new QWidget, Qt::StrongFocus, false);
    row("a label", new QLabel, Qt::NoFocus, false);
    row("a button", new QPushButton, Qt::StrongFocus, false);
}

void SettingsCardTest::isACard()
{
    QFETCH(QWidget*, widget);
    QTEST(SettingsCard::isCard(widget), "isCard");
    QVERIFY(!SettingsCard::isCard(nullptr));
}

void SettingsCardTest::collectsRowsInOrder()
{
    QWidget root;
    auto* first = new SettingsCard("1", new QPushButton, &root);
    auto* box = new QWidget(&root);
    auto* second = new SettingsCard("2", new QPushButton, box);
    auto* nestedControl = new QWidget;
    auto* third = new SettingsCard("3", nestedControl, box);
    new SettingsCard("in a card, which is not entered", new QPushButton, nestedControl);
    auto* scroll = new QScrollArea(&root);
    scroll->setFocusPolicy(Qt::NoFocus);
    auto* page = new QWidget;
    scroll->setWidget(page);
    auto* fourth = new SettingsCard("4", new QPushButton, page);
    auto* last = new SettingsCard("5", new QPushButton, &root);
    QList<QFrame*> rows;
    collectSettingsRows(&root, rows);
    QCOMPARE(rows, (QList<QFrame*>{first, second, third, fourth, last}));
    collectSettingsRows(box, rows); // appends
    QCOMPARE(rows.size(), 7);
}

QTEST_MAIN(SettingsCardTest)
#include "tst_settingscard.moc"
