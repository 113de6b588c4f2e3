// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FileTypeIcon.h"
#include "TestHome.h"

#include <QTest>

class FileTypeIconTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void anIconIsNullOrCanBePainted_data();
    void anIconIsNullOrCanBePainted();
    void suffixMeansNothingForFolders();
};

void FileTypeIconTest::anIconIsNullOrCanBePainted_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<bool>("isDir");
    QTest::newRow("folder") << "" << true;
    QTest::newRow("no suffix") << "" << false;
    QTest::newRow("text") << ".txt" << false;
    QTest::newRow("program") << ".exe" << false;
    QTest::newRow("unknown") << ".nosuchtype" << false;
    QTest::newRow("dot alone") << "." << false;
    QTest::newRow("blank") << ". " << false;
    QTest::newRow("wildcards") << ".*?[" << false;
    QTest::newRow("very long") << "." + QString(5000, 'x') << false;
}

void FileTypeIconTest::anIconIsNullOrCanBePainted()
{
    QFETCH(QString, suffix);
    QFETCH(bool, isDir);
    const QIcon icon = Platform::fileTypeIcon(suffix, isDir);
    QCOMPARE(icon.pixmap(32).isNull(), icon.isNull());
}

void FileTypeIconTest::suffixMeansNothingForFolders()
{
    const auto image = [](const QString& suffix) {
        return Platform::fileTypeIcon(suffix, true).pixmap(32).toImage();
    };
    QCOMPARE(image(".txt"), image(""));
}

QTEST_MAIN(FileTypeIconTest)
#include "tst_filetypeicon.moc"
