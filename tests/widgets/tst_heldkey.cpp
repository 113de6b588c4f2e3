// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HeldKey.h"

#include "TestHome.h"

#include <QKeyEvent>
#include <QTest>
#include <QWindow>

#include <memory>

/// Repeats of a held key go to whom the press went to, and to nobody else.
class HeldKeyTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void whoGetsTheRepeats_data();
    void whoGetsTheRepeats();
    void pressNobodySaw();
    void receiverThatIsGone();
    void newPressStartsAnew();
    void parentsAreOfferedThePressAsWell();
    void onlyPressesOfWidgetsCount();

private:
    static bool ranOn(HeldKey& held, const QObject& watched, int key, bool isRepeat,
                      QEvent::Type type = QEvent::KeyPress)
    {
        const QKeyEvent event(type, key, Qt::NoModifier, {}, isRepeat);
        return held.hasRunOn(&watched, &event);
    }
};

void HeldKeyTest::whoGetsTheRepeats_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("isKept");
    QTest::newRow("Return") << int(Qt::Key_Return) << true;
    QTest::newRow("Enter of the number pad") << int(Qt::Key_Enter) << true;
    QTest::newRow("Space") << int(Qt::Key_Space) << true;
    QTest::newRow("Down") << int(Qt::Key_Down) << false;
    QTest::newRow("Backspace") << int(Qt::Key_Backspace) << false;
    QTest::newRow("letter") << int(Qt::Key_A) << false;
}

void HeldKeyTest::whoGetsTheRepeats()
{
    QFETCH(int, key);
    QFETCH(bool, isKept);
    const QWidget first;
    const QWidget second;
    HeldKey held;
    QVERIFY(!ranOn(held, first, key, false));
    QVERIFY(!ranOn(held, first, key, true));
    QCOMPARE(ranOn(held, second, key, true), isKept);
    QVERIFY(!ranOn(held, first, key, true));
}

void HeldKeyTest::pressNobodySaw()
{
    const QWidget widget;
    HeldKey held;
    QVERIFY(ranOn(held, widget, Qt::Key_Return, true));
}

void HeldKeyTest::receiverThatIsGone()
{
    HeldKey held;
    auto menu = std::make_unique<QWidget>();
    QVERIFY(!ranOn(held, *menu, Qt::Key_Return, false));
    menu.reset();
    const QWidget list;
    QVERIFY(ranOn(held, list, Qt::Key_Return, true));
}

void HeldKeyTest::newPressStartsAnew()
{
    const QWidget first;
    const QWidget second;
    HeldKey held;
    QVERIFY(!ranOn(held, first, Qt::Key_Return, false));
    QVERIFY(!ranOn(held, second, Qt::Key_Return, false));
    QVERIFY(!ranOn(held, second, Qt::Key_Return, true));
    QVERIFY(ranOn(held, first, Qt::Key_Return, true));
}

void HeldKeyTest::parentsAreOfferedThePressAsWell()
{
    QWidget parent;
    const QWidget child(&parent);
    const QWidget sibling(&parent);
    HeldKey held;
    for (const bool isRepeat : {false, true}) {
        QVERIFY(!ranOn(held, child, Qt::Key_Return, isRepeat));
        QVERIFY(!ranOn(held, parent, Qt::Key_Return, isRepeat));
    }
    QVERIFY(ranOn(held, sibling, Qt::Key_Return, true));
}

void HeldKeyTest::onlyPressesOfWidgetsCount()
{
    const QWindow window;
    const QWidget widget;
    const QWidget other;
    HeldKey held;
    QVERIFY(!ranOn(held, widget, Qt::Key_Return, false));
    QVERIFY(!ranOn(held, window, Qt::Key_Return, true));
    QVERIFY(!ranOn(held, other, Qt::Key_Return, true, QEvent::KeyRelease));
    QVERIFY(!ranOn(held, other, Qt::Key_Return, false, QEvent::ShortcutOverride));
    QVERIFY(ranOn(held, other, Qt::Key_Return, true));
}

QTEST_MAIN(HeldKeyTest)
#include "tst_heldkey.moc"
