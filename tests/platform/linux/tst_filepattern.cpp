// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FilePattern.h"
#include "TestFiles.h"
#include "TestHome.h"

#include <QDir>
#include <QTest>

class FilePatternTest : public QObject, private TestTree
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void matchesEveryFile();
};

void FilePatternTest::matchesEveryFile()
{
    makeRoot();
    for (const char* name : {"program", "report.pdf", ".profile"})
        makeFile(name);
    QCOMPARE(QDir(root()).entryList({Platform::anyFilePattern()}, QDir::Files | QDir::Hidden),
             QStringList({".profile", "program", "report.pdf"}));
}

QTEST_MAIN(FilePatternTest)
#include "tst_filepattern.moc"
