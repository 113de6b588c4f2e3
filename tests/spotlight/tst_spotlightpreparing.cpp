// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FakeFileSystem.h"
#include "FileIndex.h"
#include "SpotlightSearchTest.h"

#include <QTest>

/// What becomes of a search for files that there are none of, put before they had been counted. A
/// process of its own, because each has but one first scan.
class SpotlightPreparingTest : public QObject, protected SpotlightSearchTest
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void cleanup() { f.reset(); }

    void hintGoesWithoutHits();
};

void SpotlightPreparingTest::initTestCase()
{
    installMachine();
    FakeFileSystem::hold();
    makeSpotlight();
}

void SpotlightPreparingTest::hintGoesWithoutHits()
{
    show();
    type("no such name", {"File"});
    QCOMPARE(f->rows(), QStringList({"# Files on this PC", "Preparing file index..."}));
    QVERIFY(!FileIndex::isReady());
    FakeFileSystem::release();
    QTRY_VERIFY(FileIndex::isReady());
    QTRY_COMPARE(f->rows(), QStringList());
}

QTEST_MAIN(SpotlightPreparingTest)
#include "tst_spotlightpreparing.moc"
