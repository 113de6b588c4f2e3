// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "PillRow.h"

#include <QTest>

class PillRowTest : public QObject
{
    Q_OBJECT

private slots:
    void places();
    void within_data();
    void within();
    void emptyRow();
};

/// Three pills, of 10, 20 and 30 px, at 0, 15 and 40.
static PillRow threePills()
{
    PillRow row;
    row.layOut({10, 20, 30}, 5);
    return row;
}

void PillRowTest::places()
{
    const PillRow row = threePills();
    QCOMPARE(row.count(), 3);
    QCOMPARE(row.left(0), 0);
    QCOMPARE(row.left(1), 15);
    QCOMPARE(row.left(2), 40);
    QCOMPARE(row.width(0), 10);
    QCOMPARE(row.width(2), 30);
    QCOMPARE(row.room({0, 3}), 75);
    QCOMPARE(row.room({1, 2}), 25);
    QCOMPARE(row.room({2, 2}), 0);
}

void PillRowTest::within_data()
{
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("right");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("end");
    QTest::newRow("all") << -100 << 1000 << 0 << 3;
    QTest::newRow("inside of one") << 16 << 20 << 1 << 2;
    QTest::newRow("from the last pixel of one to the first of the next") << 9 << 15 << 0 << 2;
    QTest::newRow("from behind one to before another") << 10 << 39 << 1 << 2;
    QTest::newRow("between two") << 11 << 13 << 1 << 1;
    QTest::newRow("before the first") << -20 << -1 << 0 << 0;
    QTest::newRow("behind the last") << 70 << 90 << 3 << 3;
}

void PillRowTest::within()
{
    QFETCH(int, left);
    QFETCH(int, right);
    QFETCH(int, first);
    QFETCH(int, end);
    const PillRow::Range found = threePills().within(left, right);
    QCOMPARE(found.first, first);
    QCOMPARE(found.end, end);
}

void PillRowTest::emptyRow()
{
    PillRow row;
    QCOMPARE(row.count(), 0);
    QVERIFY(row.within(0, 100) == PillRow::Range());
    row.layOut({}, 8);
    QCOMPARE(row.count(), 0);
    QVERIFY(row.within(0, 100) == PillRow::Range());
}

QTEST_APPLESS_MAIN(PillRowTest)
#include "tst_pillrow.moc"
