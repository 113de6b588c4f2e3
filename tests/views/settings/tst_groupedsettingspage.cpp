// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "GroupedSettingsPage.h"
#include "ScrollPage.h"
#include "SettingsCard.h"
#include "TestHome.h"
#include "UiDriver.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

namespace
{

/// A small page with margins and one card.
QWidget* makePage(const char* title)
{
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(16, 16, 16, 16);
    auto* control = new QPushButton("control");
    control->setFixedHeight(36);
    column->addWidget(new SettingsCard(title, control));
    return page;
}

/// The titles of headers and cards from top to bottom.
QStringList titlesOf(const GroupedSettingsPage& page)
{
    QStringList titles;
    for (const QLabel* label : page.findChildren<QLabel*>())
        titles.append(label->text());
    return titles;
}

} // namespace

class GroupedSettingsPageTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void groupsOneBelowTheOther();
    void pagesWithoutTitles();
    void missingPagesAndTitles();
    void layoutFollowsTheMeasures();
    void cardsAreFound();
};

void GroupedSettingsPageTest::groupsOneBelowTheOther()
{
    const GroupedSettingsPage page(QList<GroupedSettingsPage::Group>{
        {"Colours", makePage("Theme")}, {"Layout", makePage("Columns")}});
    QCOMPARE(titlesOf(page), QStringList({"Colours", "Theme", "Layout", "Columns"}));
    QCOMPARE(page.layout()->contentsMargins(), QMargins());
    QVERIFY(page.findChild<ScrollPage*>());
}

void GroupedSettingsPageTest::pagesWithoutTitles()
{
    const GroupedSettingsPage page(QList<QWidget*>{makePage("one"), makePage("two")});
    QCOMPARE(titlesOf(page), QStringList({"one", "two"}));
}

void GroupedSettingsPageTest::missingPagesAndTitles()
{
    auto* bare = new QLabel("without a layout");
    const GroupedSettingsPage page(QList<GroupedSettingsPage::Group>{
        {"nothing", nullptr}, {"", makePage("one")}, {"Two", bare}});
    QCOMPARE(titlesOf(page), QStringList({"one", "Two", "without a layout"}));
    const GroupedSettingsPage empty(QList<QWidget*>{});
    QVERIFY(titlesOf(empty).isEmpty());
}

void GroupedSettingsPageTest::layoutFollowsTheMeasures()
{
    GroupedSettingsPage page(QList<GroupedSettingsPage::Group>{
        {"nothing", nullptr}, {"Colours", makePage("Theme")}, {"Layout", makePage("Columns")}});
    page.resize(600, 700);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    QList<QFrame*> cards;
    collectSettingsRows(&page, cards);
    QCOMPARE(cards.size(), 2);
    const QList<QLabel*> labels = page.findChildren<QLabel*>();
    const QRect firstTitle = rectIn(page, labels.at(0));
    const QRect secondTitle = rectIn(page, labels.at(2));
    const QRect first = rectIn(page, cards.at(0));
    const QRect second = rectIn(page, cards.at(1));
    QCOMPARE(firstTitle.topLeft(), QPoint(16 + 24, 16)); // the first header has no room above
    QCOMPARE(first.left(), 16);
    QCOMPARE(first.right() + 1, 600 - 16);
    QCOMPARE(first.top(), firstTitle.bottom() + 1 + 4 + 16);
    QCOMPARE(first.height(), 60); // what is left goes to the end of the page
    QCOMPARE(secondTitle.top(), first.bottom() + 1 + 16 + 12);
    QCOMPARE(second.top(), secondTitle.bottom() + 1 + 4 + 16);
    QCOMPARE(second.height(), 60);
}

void GroupedSettingsPageTest::cardsAreFound()
{
    GroupedSettingsPage page(QList<GroupedSettingsPage::Group>{{"Colours", makePage("Theme")},
                                                               {"Layout", makePage("Columns")}});
    QList<QFrame*> cards;
    collectSettingsRows(&page, cards);
    QCOMPARE(cards.size(), 2); // neither headers nor the scroll area are taken for one
    QCOMPARE(cards.at(0)->findChild<QLabel*>()->text(), "Theme");
}

QTEST_MAIN(GroupedSettingsPageTest)
#include "tst_groupedsettingspage.moc"
