// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Files.h"

#include "TestHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using State = FileContent::State;

class FilesTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup() { m_dir.reset(); }

    void readsWhole_data();
    void readsWhole();
    void readsNothingElse_data();
    void readsNothingElse();
    void ownFileBeyondTheBoundIsMovedAside();
    void ownFileWithinTheBoundStays();
    void movesAside();
    void nothingToMoveAside();
    void replacesWhatIsThere_data();
    void replacesWhatIsThere();

private:
    QString path(const QString& name = "file") const { return m_dir->filePath(name); }
    void write(const QByteArray& content, const QString& name = "file") const;
    QByteArray read(const QString& name = "file") const;
    QStringList names() const
    {
        return QDir(m_dir->path())
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
    }

    std::unique_ptr<QTemporaryDir> m_dir;
};

Q_DECLARE_METATYPE(FileContent::State)

void FilesTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void FilesTest::write(const QByteArray& content, const QString& name) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QByteArray FilesTest::read(const QString& name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not readable)");
}

void FilesTest::readsWhole_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("one byte") << QByteArray("x");
    QTest::newRow("line ends") << QByteArray("a\r\nb\nc\r\x1A");
    QTest::newRow("zeros") << QByteArray(100, '\0');
    QTest::newRow("of a block") << QByteArray(4096, 'x');
    QTest::newRow("a little more than a block") << QByteArray(4097, 'x');
    QTest::newRow("of many blocks") << QByteArray(1000000, 'x');
}

void FilesTest::readsWhole()
{
    QFETCH(QByteArray, content);
    write(content);
    for (const qint64 maxBytes : {content.size(), content.size() + 1, qsizetype(1) << 30}) {
        const FileContent result = readFile(path(), maxBytes);
        QCOMPARE(result.state, State::Whole);
        QCOMPARE(result.bytes, content);
    }
}

void FilesTest::readsNothingElse_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<FileContent::State>("state");
    QTest::newRow("missing") << "missing" << State::Absent;
    QTest::newRow("in a missing directory") << "missing/file" << State::Absent;
    QTest::newRow("directory") << "directory" << State::Absent;
    QTest::newRow("below a file") << "file/file" << State::Absent;
    QTest::newRow("one byte too large") << "file" << State::TooLarge;
}

void FilesTest::readsNothingElse()
{
    QFETCH(QString, name);
    write("content");
    QVERIFY(QDir(m_dir->path()).mkdir("directory"));
    const FileContent result = readFile(path(name), 6);
    QTEST(result.state, "state");
    QCOMPARE(result.bytes, QByteArray());
    QCOMPARE(readOwnFile(path("directory"), 6), QByteArray());
    QCOMPARE(names(), QStringList({"directory", "file"}));
}

void FilesTest::ownFileBeyondTheBoundIsMovedAside()
{
    write("content");
    QCOMPARE(readOwnFile(path(), 6), QByteArray());
    QCOMPARE(names(), QStringList("file.bak"));
    QCOMPARE(read("file.bak"), "content");
}

void FilesTest::ownFileWithinTheBoundStays()
{
    write("content");
    QCOMPARE(readOwnFile(path(), 7), "content");
    QCOMPARE(names(), QStringList("file"));
}

void FilesTest::movesAside()
{
    write("first");
    moveFileAside(path());
    write("second");
    moveFileAside(path());
    QCOMPARE(names(), QStringList("file.bak"));
    QCOMPARE(read("file.bak"), "second");
}

void FilesTest::nothingToMoveAside()
{
    moveFileAside(path());
    QCOMPARE(names(), QStringList());
    write("older", "file.bak");
    moveFileAside(path());
    QCOMPARE(read("file.bak"), "older");
}

void FilesTest::replacesWhatIsThere_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::newRow("new") << false;
    QTest::newRow("old") << true;
}

void FilesTest::replacesWhatIsThere()
{
    QFETCH(bool, isThere);
    if (isThere)
        write("something longer");
    QVERIFY(replaceFile(path(), "content"));
    QCOMPARE(read(), "content");
    QVERIFY(!replaceFile(path("missing/file"), "content"));
    QVERIFY(!replaceFile(m_dir->path(), "content"));
    QCOMPARE(names(), QStringList("file"));
}

QTEST_MAIN(FilesTest)
#include "tst_files.moc"
