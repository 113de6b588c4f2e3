// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FocusSearch.h"
#include "TestHome.h"

#include <QCheckBox>
#include <QComboBox>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <QTreeWidget>

class FocusSearchTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void findsControlsInOrder();
    void leavesOutWhatCannotHaveTheFocus();
    void firstControlIsTheFirst();
    void firstControlIsTheCheckedOne();
    void firstControlOfNothing();
    void textInputs();
    void itemViews();
};

void FocusSearchTest::findsControlsInOrder()
{
    QWidget root;
    auto* first = new QPushButton(&root);
    new QLabel(&root);
    auto* box = new QWidget(&root);
    auto* second = new QCheckBox(box);
    auto* third = new QPushButton(&root);
    auto* clicked = new QPushButton(&root);
    clicked->setFocusPolicy(Qt::ClickFocus);
    root.setFocusPolicy(Qt::StrongFocus); // not its own descendant
    QCOMPARE(FocusSearch::tabStops(&root), (QList<QWidget*>{first, second, third}));
    QCOMPARE(FocusSearch::focusables(&root), (QList<QWidget*>{first, second, third, clicked}));
}

void FocusSearchTest::leavesOutWhatCannotHaveTheFocus()
{
    QWidget window;
    QWidget root(&window);
    window.setEnabled(false); // what is above the root doesn't matter
    auto* hidden = new QPushButton(&root);
    hidden->hide();
    auto* disabled = new QPushButton(&root);
    disabled->setEnabled(false);
    auto* hiddenBox = new QWidget(&root);
    hiddenBox->hide();
    new QPushButton(hiddenBox);
    auto* left = new QPushButton(&root);
    QCOMPARE(FocusSearch::tabStops(&root), QList<QWidget*>{left});
    QCOMPARE(FocusSearch::focusables(&root), QList<QWidget*>{left});
    QCOMPARE(FocusSearch::firstControl(&root), left);
}

void FocusSearchTest::firstControlIsTheFirst()
{
    QWidget root;
    auto* plain = new QPushButton(&root);
    auto* checkable = new QPushButton(&root);
    checkable->setCheckable(true);
    QCOMPARE(FocusSearch::firstControl(&root), plain);
}

void FocusSearchTest::firstControlIsTheCheckedOne()
{
    QWidget root;
    new QPushButton(&root);
    QPushButton* checked[2];
    for (QPushButton*& button : checked) {
        button = new QPushButton(&root);
        button->setCheckable(true);
        button->setChecked(true);
    }
    QCOMPARE(FocusSearch::firstControl(&root), checked[0]);
    checked[0]->setFocusPolicy(Qt::ClickFocus); // Tab doesn't stop there
    QCOMPARE(FocusSearch::firstControl(&root), checked[1]);
}

void FocusSearchTest::firstControlOfNothing()
{
    QWidget root;
    new QLabel(&root);
    QVERIFY(!FocusSearch::firstControl(&root));
    QVERIFY(FocusSearch::tabStops(&root).isEmpty());
}

void FocusSearchTest::textInputs()
{
    const QLineEdit line;
    const QPlainTextEdit plain;
    const QTextEdit rich;
    const QKeySequenceEdit keys;
    for (const QWidget* input : std::initializer_list<const QWidget*>{&line, &plain, &rich, &keys})
        QVERIFY(FocusSearch::isTextInput(input));
    const QPushButton button;
    const QComboBox box;
    const QListWidget list;
    for (const QWidget* other : std::initializer_list<const QWidget*>{&button, &box, &list})
        QVERIFY(!FocusSearch::isTextInput(other));
    QVERIFY(!FocusSearch::isTextInput(nullptr));
}

void FocusSearchTest::itemViews()
{
    const QListWidget list;
    const QTreeWidget tree;
    QVERIFY(FocusSearch::isInItemView(&list));
    QVERIFY(FocusSearch::isInItemView(list.viewport()));
    QVERIFY(FocusSearch::isInItemView(&tree));
    const QLineEdit line;
    QVERIFY(!FocusSearch::isInItemView(&line));
    QVERIFY(!FocusSearch::isInItemView(nullptr));
}

QTEST_MAIN(FocusSearchTest)
#include "tst_focussearch.moc"
