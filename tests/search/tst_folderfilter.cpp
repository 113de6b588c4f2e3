// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FolderFilter.h"
#include "FolderPaths.h"
#include "FreshProcess.h"
#include "TestHome.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTest>
#include <QTextStream>

#include <algorithm>

class FolderFilterTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void cleanup();
    void isUnder_data();
    void isUnder();
    void anyFolderIsEnough_data();
    void anyFolderIsEnough();
    void acceptsWhatIsUnderAny_data();
    void acceptsWhatIsUnderAny();
    void tenThousandFolders();
    void fromBytes_data();
    void fromBytes();
    void toBytesIsOneCompactArray();
    void bytesRoundTrip_data();
    void bytesRoundTrip();
    void filePathIsInTheDataDirectory();

    void withoutAFileEverythingIsAccepted();
    void chosenFoldersNarrow();
    void anyOfTheFoldersWillDo();
    void aChoiceIsKept();
    void aChoiceReplacesTheOneOnDisk();
    void anEmptyChoiceLiftsTheNarrowing();
    void unusableFileIsOverwritten_data();
    void unusableFileIsOverwritten();
    void onlyAnIntactFileIsRead_data();
    void onlyAnIntactFileIsRead();
    void theFileIsReadOncePerProcess();
    void aMissingFolderIsKept();
    void aFailedSaveStaysInMemory();
};

using FolderPaths::isUnderAny;
using FolderPaths::native;

namespace
{

QString filterFile()
{
    return QDir(TestHome::dataDir()).filePath("folderfilter.json");
}

QByteArray filterContent()
{
    QFile file(filterFile());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

void print(const QString& line)
{
    QTextStream(stdout) << line << '\n';
}

/// The child's side: does what the words say, in order. "set" chooses the folders up to the word
/// "end", "accepts" prints "yes" or "no" for a path, "state" the folders and what is told of them,
/// "write" replaces the file, "block file" puts a directory in its place.
int runScript(const QStringList& words)
{
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString& word = words.at(i);
        if (word == "set") {
            QStringList folders;
            while (words.at(++i) != "end")
                folders.append(words.at(i));
            FolderFilter::setFolders(folders);
        } else if (word == "accepts") {
            print(FolderFilter::accepts(words.at(++i)) ? "yes" : "no");
        } else if (word == "state") {
            print(QString("%1 %2 %3")
                      .arg(FolderFilter::isActive() ? "active" : "idle")
                      .arg(FolderFilter::count())
                      .arg(FolderFilter::folders().join('|')));
        } else if (word == "write") {
            TestHome::writeDataFile("folderfilter.json", words.at(++i).toUtf8());
        } else if (word == "block file") {
            QDir().mkpath(filterFile() + "/inside");
        } else if (word == "unblock file") {
            QDir(filterFile()).removeRecursively();
        } else {
            qFatal("no such word: %s", qPrintable(word));
        }
    }
    return 0;
}

/// The lines that the script printed in a process of its own.
QStringList run(const QStringList& script)
{
    return FreshProcess::linesOf("script", script);
}

} // namespace

void FolderFilterTest::cleanup()
{
    QFile::remove(filterFile());
    QDir(filterFile()).removeRecursively();
}

void FolderFilterTest::isUnder_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("isUnder");
    const auto row = [](const char* name, const char* path, const char* folder, bool isUnder) {
        QTest::newRow(name) << native(path) << native(folder) << isUnder;
    };
    row("a file in it", "/home/me/Docs/a.txt", "/home/me/Docs", true);
    row("a file deep in it", "/home/me/Docs/b/c/a.txt", "/home/me/Docs", true);
    row("a folder in it", "/home/me/Docs/b", "/home/me/Docs", true);
    row("the folder itself", "/home/me/Docs", "/home/me/Docs", false);
    row("the folder above", "/home/me", "/home/me/Docs", false);
    row("a sibling with a longer name", "/home/me/Docsier", "/home/me/Docs", false);
    row("a file in such a sibling", "/home/me/Docsier/a", "/home/me/Docs", false);
    row("a sibling of the same length", "/home/me/Dogs/a.txt", "/home/me/Docs", false);
    row("a sibling that differs at the beginning", "/home/mo/Docs/a.txt", "/home/me/Docs", false);
    row("the case of the path", "/HOME/me/docs/a.txt", "/home/me/Docs", true);
    row("the case of the folder", "/home/me/docs/a.txt", "/home/ME/DOCS", true);
    row("case beyond ASCII", "/home/me/ÄRGER/a", "/home/me/ärger", true);
    row("no folder", "/home/me/a.txt", "", false);
    row("neither", "", "", false);
    row("no path", "", "/home", false);
    row("a root with its separator", "/a.txt", "/", true);
    row("the root itself", "/", "/", true);
    row("a drive", "C:/a.txt", "C:/", true);
    row("the drive itself", "C:/", "C:/", true);
    row("another drive", "D:/a.txt", "C:/", false);
    row("a drive without its separator", "C:", "C:/", false);
    row("a folder with a separator at its end", "/home/me/Docs/a", "/home/me/Docs/", true);
    QTest::newRow("the other system's separator is none")
        << QString("x%1a").arg(QDir::separator() == '/' ? '\\' : '/') << QString("x") << false;
}

void FolderFilterTest::isUnder()
{
    QFETCH(QString, path);
    QFETCH(QString, folder);
    QTEST(FolderFilter::isUnder(path, folder), "isUnder");
}

void FolderFilterTest::anyFolderIsEnough_data()
{
    QTest::addColumn<QStringList>("folders");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isAccepted");
    const auto row = [](const char* name, const QStringList& folders, const char* path,
                        bool isAccepted) {
        QTest::newRow(name) << native(folders) << native(QString::fromUtf8(path)) << isAccepted;
    };
    const QStringList docs{"/home/me/Docs"};
    row("a file in it", docs, "/home/me/Docs/a.txt", true);
    row("a file deep in it", docs, "/home/me/Docs/b/c/a.txt", true);
    row("the folder itself", docs, "/home/me/Docs", false);
    row("the folder itself with a separator", docs, "/home/me/Docs/", true);
    row("the folder above", docs, "/home/me", false);
    row("a sibling with a longer name", docs, "/home/me/Docsier/a", false);
    row("a sibling of the same length", docs, "/home/me/Dogs/a", false);
    row("of another case", {"/HOME/me/dOCS"}, "/home/me/Docs/a", true);
    row("beyond ASCII", {QStringLiteral("/home/ÄRGER")}, "/home/\xC3\xA4rger/a", true);
    row("no path", docs, "", false);
    row("a path without a folder", {"/"}, "a.txt", false);
    row("an empty folder", {""}, "/home/me/a.txt", false);
    row("a root", {"/"}, "/a.txt", true);
    row("the root itself", {"/"}, "/", true);
    row("a drive", {"C:/"}, "c:/a.txt", true);
    row("the drive itself", {"C:/"}, "C:/", true);
    row("another drive", {"C:/"}, "D:/a.txt", false);
    row("a drive without its separator", {"C:/"}, "C:", false);
    row("a folder with a separator at its end", {"/home/me/Docs/"}, "/home/me/Docs/a", true);
    row("two separators", {"/home/me/Docs//"}, "/home/me/Docs/a", false);
    row("under the first of several", {"/a", "/home/b/c", "/d"}, "/a/x", true);
    row("under the longest of several", {"/a", "/home/b/c", "/d"}, "/home/b/c/x", true);
    row("under none of several", {"/a", "/home/b/c", "/d"}, "/home/b/d/x", false);
    row("under one in another", {"/a", "/a/b"}, "/a/c/x", true);
    row("the same twice", {"/a", "/A/"}, "/a/x", true);
}

void FolderFilterTest::anyFolderIsEnough()
{
    QFETCH(QStringList, folders);
    QFETCH(QString, path);
    FolderFilter::setFolders(folders);
    QTEST(FolderFilter::accepts(path), "isAccepted");
    QCOMPARE(isUnderAny(path, folders), FolderFilter::accepts(path));
}

void FolderFilterTest::acceptsWhatIsUnderAny_data()
{
    FolderPaths::addNameRows();
}

void FolderFilterTest::acceptsWhatIsUnderAny()
{
    QFETCH(QStringList, names);
    QRandomGenerator random(1);
    int countUnder = 0;
    int count = 0;
    for (int round = 0; round < 50; ++round) {
        QStringList folders;
        for (int i = 0; i < 4; ++i)
            folders.append(FolderPaths::random(random, names));
        FolderFilter::setFolders(folders);
        for (int i = 0; i < 60; ++i, ++count) {
            const QString path = FolderPaths::random(random, names);
            const bool isUnder = isUnderAny(path, folders);
            if (FolderFilter::accepts(path) != isUnder)
                QFAIL(qPrintable(path + " in " + folders.join(" | ")));
            countUnder += isUnder ? 1 : 0;
        }
    }
    QVERIFY(countUnder > 0 && countUnder < count);
}

void FolderFilterTest::tenThousandFolders()
{
    constexpr int Count = 10000;
    QStringList folders;
    for (int i = 0; i < Count; ++i)
        folders.append(native(QString("/home/me/%1/folder %2").arg(i % 100).arg(i)));
    FolderFilter::setFolders(folders);
    for (int i = 0; i < Count; ++i) {
        const QString folder = native(QString("/home/ME/%1/Folder %2").arg(i % 100).arg(i));
        QVERIFY(FolderFilter::accepts(folder + native("/a.txt")));
        QVERIFY(!FolderFilter::accepts(folder + native("x/a.txt")));
        QVERIFY(!FolderFilter::accepts(folder));
    }
}

void FolderFilterTest::fromBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("folders");
    const auto row = [](const char* name, const char* bytes, const QStringList& folders) {
        QTest::newRow(name) << QByteArray(bytes) << folders;
    };
    row("two", R"(["/a","/b"])", {"/a", "/b"});
    row("with blanks and lines", "\n[ \"/a\" ,\n\t\"/b\" ]\n", {"/a", "/b"});
    row("none", "[]", {});
    row("empty texts are dropped", R"(["","/a",""])", {"/a"});
    row("what is no text is dropped", R"([1,null,true,["/x"],{"y":"/z"},"/a"])", {"/a"});
    row("doubles are kept", R"(["/a","/a"])", {"/a", "/a"});
    row("separators are taken as they are", R"(["C:\\a","/b/"])", {"C:\\a", "/b/"});
    row("object", R"({"/a":"/b"})", {});
    row("text", R"("/a")", {});
    row("number", "5", {});
    row("nothing", "", {});
    row("no JSON", "/a\n/b", {});
    row("truncated", R"(["/a","/b)", {});
    row("garbage behind", R"(["/a"] x)", {});
    row("invalid UTF-8", "[\"/a\xff\"]", {});
}

void FolderFilterTest::fromBytes()
{
    QFETCH(QByteArray, bytes);
    QTEST(FolderFilter::fromBytes(bytes), "folders");
}

void FolderFilterTest::toBytesIsOneCompactArray()
{
    QCOMPARE(FolderFilter::toBytes({"/a b", "C:\\c"}), R"(["/a b","C:\\c"])");
    QCOMPARE(FolderFilter::toBytes({}), "[]");
}

void FolderFilterTest::bytesRoundTrip_data()
{
    QTest::addColumn<QStringList>("folders");
    QTest::newRow("several") << QStringList{"/a", "/b", "/a"};
    QTest::newRow("odd names") << QStringList{"/日本", "/\"quoted\"", "/line\nbreak", " ",
                                              QString::fromUtf16(u"/\u202Ertl")};
    QTest::newRow("long") << QStringList{QString(100000, '/')};
}

void FolderFilterTest::bytesRoundTrip()
{
    QFETCH(QStringList, folders);
    QCOMPARE(FolderFilter::fromBytes(FolderFilter::toBytes(folders)), folders);
}

void FolderFilterTest::filePathIsInTheDataDirectory()
{
    QCOMPARE(FolderFilter::filePath(), filterFile());
}

void FolderFilterTest::withoutAFileEverythingIsAccepted()
{
    QCOMPARE(run({"state", "accepts", "/a", "accepts", ""}),
             (QStringList{"idle 0 ", "yes", "yes"}));
    // Asking writes nothing.
    QVERIFY(!QFile::exists(filterFile()));
}

void FolderFilterTest::chosenFoldersNarrow()
{
    const QString docs = native("/home/me/Docs");
    const QStringList answers =
        run({"set", docs, "end", "state", "accepts", native("/home/me/Docs/a.txt"), "accepts", docs,
             "accepts", native("/home/me/b.txt"), "accepts", native("/home/me/docs/A.TXT")});
    QCOMPARE(answers, (QStringList{"active 1 " + docs, "yes", "no", "no", "yes"}));
}

void FolderFilterTest::anyOfTheFoldersWillDo()
{
    const QString a = native("/a");
    const QString b = native("/b");
    const QStringList answers = run({"set", a, b, "end", "state", "accepts", native("/a/x"),
                                     "accepts", native("/b/x"), "accepts", native("/c/x")});
    QCOMPARE(answers, (QStringList{"active 2 " + a + '|' + b, "yes", "yes", "no"}));
}

void FolderFilterTest::aChoiceIsKept()
{
    QCOMPARE(run({"set", "/b", "/a", "end"}), QStringList());
    QCOMPARE(filterContent(), R"(["/b","/a"])");
    QCOMPARE(run({"state"}), QStringList{"active 2 /b|/a"});
    QCOMPARE(QDir(TestHome::dataDir()).entryList({"folderfilter*"}, QDir::Files),
             QStringList{"folderfilter.json"});
}

void FolderFilterTest::aChoiceReplacesTheOneOnDisk()
{
    TestHome::writeDataFile("folderfilter.json", R"(["/old"])");
    // Also if nobody has asked before: what is on disk must not come back with the next question.
    QCOMPARE(run({"set", "/new", "end", "state"}), QStringList{"active 1 /new"});
    QCOMPARE(filterContent(), R"(["/new"])");
}

void FolderFilterTest::anEmptyChoiceLiftsTheNarrowing()
{
    TestHome::writeDataFile("folderfilter.json", R"(["/a"])");
    QCOMPARE(run({"accepts", "/b", "set", "end", "state", "accepts", "/b"}),
             (QStringList{"no", "idle 0 ", "yes"}));
    QCOMPARE(filterContent(), "[]");
}

void FolderFilterTest::unusableFileIsOverwritten_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("object") << QByteArray(R"({"/a":1})");
    QTest::newRow("text") << QByteArray(R"("/a")");
    QTest::newRow("no JSON") << QByteArray("not json");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("zeros") << QByteArray(100, '\0');
    QTest::newRow("nested deeply") << QByteArray("[").repeated(100000);
}

void FolderFilterTest::unusableFileIsOverwritten()
{
    QFETCH(QByteArray, content);
    TestHome::writeDataFile("folderfilter.json", content);
    QCOMPARE(run({"state", "accepts", "/x"}), (QStringList{"idle 0 ", "yes"}));
    // Left alone until there is something to write.
    QCOMPARE(filterContent(), content);
    QCOMPARE(run({"set", "/a", "end", "state"}), QStringList{"active 1 /a"});
    QCOMPARE(filterContent(), R"(["/a"])");
}

void FolderFilterTest::onlyAnIntactFileIsRead_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QString>("state");
    QTest::newRow("as large as it may be") << FolderFilter::MaxFileBytes << "active 1 /a";
    QTest::newRow("larger") << FolderFilter::MaxFileBytes + 1 << "idle 0 ";
}

void FolderFilterTest::onlyAnIntactFileIsRead()
{
    QFETCH(qint64, size);
    const QByteArray folders = R"(["/a"])";
    TestHome::writeDataFile("folderfilter.json", folders + QByteArray(size - folders.size(), ' '));
    QFETCH(QString, state);
    QCOMPARE(run({"state"}), QStringList{state});
}

void FolderFilterTest::theFileIsReadOncePerProcess()
{
    QCOMPARE(run({"state", "write", R"(["/a"])", "state"}), (QStringList{"idle 0 ", "idle 0 "}));
    QCOMPARE(run({"state"}), QStringList{"active 1 /a"});
}

void FolderFilterTest::aMissingFolderIsKept()
{
    const QString gone = native(TestHome::path() + "/gone");
    QVERIFY(!QFileInfo::exists(gone));
    run({"set", gone, "end"});
    QCOMPARE(run({"state"}), QStringList{"active 1 " + gone});
}

void FolderFilterTest::aFailedSaveStaysInMemory()
{
    // A directory of that name can be neither read nor replaced, whoever runs the test.
    QCOMPARE(run({"block file", "state", "set", "/a", "end", "state", "unblock file", "set", "/b",
                  "end"}),
             (QStringList{"idle 0 ", "active 1 /a"}));
    QCOMPARE(filterContent(), R"(["/b"])");
}

int main(int argc, char** argv)
{
    return FreshProcess::main<FolderFilterTest>(argc, argv, {{"script", runScript}});
}

#include "tst_folderfilter.moc"
