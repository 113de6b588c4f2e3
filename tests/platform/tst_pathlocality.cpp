// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "PathLocality.h"
#include "TestHome.h"

#include <QDir>
#include <QTest>

class PathLocalityTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void isLocal_data();
    void isLocal();
};

void PathLocalityTest::isLocal_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isLocal");
    QTest::newRow("none") << "" << false;
    QTest::newRow("home") << QDir::homePath() << true;
    QTest::newRow("nothing there") << QDir::homePath() + "/nothing/there" << true;
    QTest::newRow("native separators")
        << QDir::toNativeSeparators(QDir::homePath() + "/a/b") << true;
    QTest::newRow("relative") << "picture.png" << true;
    QTest::newRow("above the current directory") << "../picture.png" << true;
    QTest::newRow("resource") << ":/fonts/picture.png" << true;
    QTest::newRow("longer than any path")
        << QDir::homePath() + QString("/a").repeated(3000) << true;
}

void PathLocalityTest::isLocal()
{
    QFETCH(QString, path);
    QTEST(Platform::isLocalPath(path), "isLocal");
}

QTEST_MAIN(PathLocalityTest)
#include "tst_pathlocality.moc"
