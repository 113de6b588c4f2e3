// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"
#include "TestHome.h"

#include <QElapsedTimer>
#include <QTest>

#include <memory>

namespace
{

// A timer counts whole milliseconds from a clock that need not tick with this one.
constexpr int kEarliestReleaseMs = AutoQuitBlocker::ReleaseMs - 1;

} // namespace

class AutoQuitBlockerTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void nothingIsBlockedAtFirst();
    void blocksFromConstructionOn();
    void releasesHalfASecondAfterItsEnd();
    void nestedGuardsReleaseAfterTheLast();
    void guardsMayEndInAnyOrder();
    void newGuardInTheGracePeriodKeepsBlocking();
    void countNeverStaysBelowZero();
};

void AutoQuitBlockerTest::init()
{
    QTRY_COMPARE(g_autoQuitBlockCount, 0); // what the test before has left running
    QVERIFY(!g_blockAutoQuit);
}

void AutoQuitBlockerTest::nothingIsBlockedAtFirst()
{
    QCOMPARE(g_autoQuitBlockCount, 0);
    QCOMPARE(g_blockAutoQuit, false);
    QCOMPARE(AutoQuitBlocker::ReleaseMs, 500);
}

void AutoQuitBlockerTest::blocksFromConstructionOn()
{
    const AutoQuitBlocker blocker;
    QCOMPARE(g_autoQuitBlockCount, 1);
    QVERIFY(g_blockAutoQuit);
}

void AutoQuitBlockerTest::releasesHalfASecondAfterItsEnd()
{
    auto blocker = std::make_unique<AutoQuitBlocker>();
    QElapsedTimer sinceEnd;
    sinceEnd.start();
    blocker.reset();
    QCOMPARE(g_autoQuitBlockCount, 1);
    QVERIFY(g_blockAutoQuit);
    QTRY_VERIFY(!g_blockAutoQuit);
    QVERIFY(sinceEnd.elapsed() >= kEarliestReleaseMs);
    QCOMPARE(g_autoQuitBlockCount, 0);
}

void AutoQuitBlockerTest::nestedGuardsReleaseAfterTheLast()
{
    auto outer = std::make_unique<AutoQuitBlocker>();
    auto inner = std::make_unique<AutoQuitBlocker>();
    QCOMPARE(g_autoQuitBlockCount, 2);
    inner.reset();
    QCOMPARE(g_autoQuitBlockCount, 2);
    QTRY_COMPARE(g_autoQuitBlockCount, 1);
    QVERIFY(g_blockAutoQuit);

    QElapsedTimer sinceEnd;
    sinceEnd.start();
    outer.reset();
    QVERIFY(g_blockAutoQuit);
    QTRY_VERIFY(!g_blockAutoQuit);
    QVERIFY(sinceEnd.elapsed() >= kEarliestReleaseMs);
    QCOMPARE(g_autoQuitBlockCount, 0);
}

void AutoQuitBlockerTest::guardsMayEndInAnyOrder()
{
    auto first = std::make_unique<AutoQuitBlocker>();
    auto second = std::make_unique<AutoQuitBlocker>();
    first.reset();
    QTRY_COMPARE(g_autoQuitBlockCount, 1);
    QVERIFY(g_blockAutoQuit);
    second.reset();
    QTRY_VERIFY(!g_blockAutoQuit);
}

void AutoQuitBlockerTest::newGuardInTheGracePeriodKeepsBlocking()
{
    auto first = std::make_unique<AutoQuitBlocker>();
    first.reset();
    auto second = std::make_unique<AutoQuitBlocker>();
    QCOMPARE(g_autoQuitBlockCount, 2);
    QTRY_COMPARE(g_autoQuitBlockCount, 1); // the first one's half second is over
    QVERIFY(g_blockAutoQuit);

    QElapsedTimer sinceEnd;
    sinceEnd.start();
    second.reset();
    QTRY_VERIFY(!g_blockAutoQuit);
    QVERIFY(sinceEnd.elapsed() >= kEarliestReleaseMs);
}

void AutoQuitBlockerTest::countNeverStaysBelowZero()
{
    std::make_unique<AutoQuitBlocker>().reset();
    g_autoQuitBlockCount = 0;
    QTRY_VERIFY(!g_blockAutoQuit);
    QCOMPARE(g_autoQuitBlockCount, 0);
}

QTEST_MAIN(AutoQuitBlockerTest)
#include "tst_autoquitblocker.moc"
