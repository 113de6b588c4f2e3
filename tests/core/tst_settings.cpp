// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Settings.h"

#include "FreshProcess.h"
#include "SettingsFile.h"
#include "TestHome.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTest>

class SettingsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();

    void keysOfAFile();
    void keysOfNoFile();
    void writtenThrough();
    void restOfTheFileStays();
    void otherProgramsChange();
    void caseOfKeysDoesNotMatter();
    void qtWouldMakeAnObject();
    void objectsAreRefused_data();
    void objectsAreRefused();
    void largestFile_data();
    void largestFile();
    void longestText_data();
    void longestText();
    void somethingElseInTheWay();
    void fullDiskLeavesTheOldFile_data();
    void fullDiskLeavesTheOldFile();

private:
    static QString path() { return Settings::filePath(); }
    static void write(const QByteArray& content);
    static QByteArray read() { return SettingsFile::read(); }
};

namespace
{

/// What a value of this class leaves behind when it is made from bytes.
int s_made = 0;

struct Trap
{
    friend QDataStream& operator<<(QDataStream& stream, const Trap&) { return stream; }
    friend QDataStream& operator>>(QDataStream& stream, Trap&)
    {
        ++s_made;
        return stream;
    }
};

/// Stores a text under a key, in a process of its own.
int changeASetting(const QStringList& arguments)
{
    Settings::setValue(arguments.at(0), arguments.at(1));
    return 0;
}

} // namespace
Q_DECLARE_METATYPE(Trap)

void SettingsTest::init()
{
    qRegisterMetaType<Trap>();
    s_made = 0;
    QVERIFY(QDir(TestHome::dataDir()).removeRecursively());
}

void SettingsTest::write(const QByteArray& content)
{
    QVERIFY(SettingsFile::write(content));
}

void SettingsTest::keysOfAFile()
{
    write("[General]\ntop=a\n\n[Some]\nlist=a, b\nnumber=7\n");
    QCOMPARE(path(), QDir(TestHome::dataDir()).filePath("settings.ini"));
    QCOMPARE(Settings::value("top").toString(), "a");
    QCOMPARE(Settings::value("Some/list").toStringList(), QStringList({"a", "b"}));
    QCOMPARE(Settings::value("Some/number", 3).toInt(), 7);
    QCOMPARE(Settings::value("Some/other", 3).toInt(), 3);
    QVERIFY(!Settings::value("Some/other").isValid());
    QVERIFY(Settings::contains("Some/number"));
    QVERIFY(!Settings::contains("Some/other"));
    QVERIFY(!Settings::contains("Some"));
}

void SettingsTest::keysOfNoFile()
{
    QVERIFY(!Settings::contains("Some/key"));
    QCOMPARE(Settings::value("Some/key", "x").toString(), "x");
    QVERIFY(!QFileInfo::exists(path()));
    QVERIFY(QFileInfo(QFileInfo(path()).path()).isDir());
}

void SettingsTest::writtenThrough()
{
    Settings::setValue("Some/number", 7);
    QCOMPARE(read(), "[Some]\nnumber=7\n");
    Settings::setValue("Some/number", 8);
    Settings::setValue("top", "a, b");
    Settings::setValue("Some/list", QStringList{"a", "b"});
    Settings::setValue("Some/truth", true);
    QCOMPARE(read(), "[General]\ntop=\"a, b\"\n\n[Some]\nlist=a, b\nnumber=8\ntruth=true\n");
    QCOMPARE(Settings::value("top").toString(), "a, b");
    QCOMPARE(Settings::value("Some/truth").toBool(), true);
    QCOMPARE(QDir(TestHome::dataDir()).entryList(QDir::Files | QDir::Hidden),
             QStringList("settings.ini"));
}

void SettingsTest::restOfTheFileStays()
{
    write("[Other]\nwindow=@ByteArray(\\x1\\0\\xff)\nplace=@Rect(1 2 3 4)\n\n[Some]\nnumber=7\n");
    Settings::setValue("Some/number", 8);
    QCOMPARE(read(), "[Other]\nplace=@Rect(1 2 3 4)\nwindow=@ByteArray(\\x1\\0\\xff)\n\n"
                     "[Some]\nnumber=8\n");
}

void SettingsTest::otherProgramsChange()
{
    write("[Some]\nnumber=7\n");
    QCOMPARE(Settings::value("Some/number").toInt(), 7);
    write("[Some]\nnumber=8\n");
    QCOMPARE(Settings::value("Some/number").toInt(), 8);
    write("[Some]\nnumber=8\nother=1\n");
    Settings::setValue("Some/number", 9);
    QCOMPARE(read(), "[Some]\nnumber=9\nother=1\n");
    QVERIFY(QFile::remove(path()));
    QVERIFY(!Settings::contains("Some/number"));
}

void SettingsTest::caseOfKeysDoesNotMatter()
{
    write("[some]\nNUMBER=7\n");
    QVERIFY(Settings::contains("Some/number"));
    QCOMPARE(Settings::value("Some/number").toInt(), 7);
    Settings::setValue("Some/number", 8);
    Settings::setValue("Some/Other", 1);
    QCOMPARE(read(), "[Some]\nOther=1\n\n[some]\nNUMBER=8\n");
    write("[Some]\nnumber=1\n[some]\nnumber=2\n");
    QCOMPARE(Settings::value("Some/number").toInt(), 1);
    QCOMPARE(Settings::value("some/number").toInt(), 2);
}

/// For comparison: otherwise the next test would say nothing.
void SettingsTest::qtWouldMakeAnObject()
{
    const QString file = QDir(TestHome::dataDir()).filePath("qt.ini");
    QSettings(file, QSettings::IniFormat).setValue("Some/key", QVariant::fromValue(Trap()));
    const QString copy = file + "2";
    QVERIFY(QFile::copy(file, copy));
    QCOMPARE(s_made, 0);
    QVERIFY(QSettings(copy, QSettings::IniFormat).contains("Some/key"));
    QVERIFY(s_made > 0);
}

void SettingsTest::objectsAreRefused_data()
{
    QTest::addColumn<QByteArray>("disguise");
    QTest::newRow("as Qt writes it") << QByteArray("@Variant(");
    QTest::newRow("escaped") << QByteArray("\\x40V\\141riant(");
    QTest::newRow("in a list") << QByteArray("a, @Variant(");
}

void SettingsTest::objectsAreRefused()
{
    QFETCH(QByteArray, disguise);
    const QString file = QDir(TestHome::dataDir()).filePath("qt.ini");
    QSettings(file, QSettings::IniFormat).setValue("Some/key", QVariant::fromValue(Trap()));
    QFile written(file);
    QVERIFY(written.open(QIODevice::ReadOnly | QIODevice::Text));
    const QByteArray text = written.readAll().replace("@Variant(", disguise);
    QVERIFY(text.contains(disguise));

    write(text + "other=1\n");
    QCOMPARE(Settings::value("Some/key", "default"), QVariant("default"));
    QCOMPARE(Settings::value("Some/other").toInt(), 1);
    QVERIFY(Settings::contains("Some/key"));
    Settings::setValue("Some/other", 2);
    QCOMPARE(read(), text + "other=2\n");
    Settings::setValue("Some/key", "plain");
    QCOMPARE(Settings::value("Some/key", "default"), QVariant("plain"));
    QCOMPARE(s_made, 0);
}

void SettingsTest::largestFile_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("as large as it may be") << Settings::MaxFileBytes << true;
    QTest::newRow("larger") << Settings::MaxFileBytes + 1 << false;
}

void SettingsTest::largestFile()
{
    QFETCH(qint64, size);
    QFETCH(bool, isRead);
    const QByteArray text = "[Some]\nold=1\n";
    const QByteArray content = text + QByteArray(size - text.size(), ' ');
    write(content);
    QCOMPARE(Settings::value("Some/old", 0).toInt(), isRead ? 1 : 0);
    Settings::setValue("Some/new", 2);
    QCOMPARE(read(), isRead ? "[Some]\nnew=2\nold=1\n" : "[Some]\nnew=2\n");
    QCOMPARE(QFile::exists(path() + ".bak"), !isRead);
    if (!isRead)
        QCOMPARE(QFileInfo(path() + ".bak").size(), size);
    Settings::setValue("Some/new", 3);
    QCOMPARE(Settings::value("Some/new").toInt(), 3);
}

void SettingsTest::longestText_data()
{
    QTest::addColumn<QChar>("letter");
    QTest::newRow("one byte each") << QChar(u'w');
    QTest::newRow("more bytes each") << QChar(0x8A9E);
    QTest::newRow("written as an escape") << QChar(u'\1');
}

/// A longer one would leave a file behind that the next start takes for unreadable.
void SettingsTest::longestText()
{
    QFETCH(QChar, letter);
    const QString longest(Settings::MaxValueLength, letter);
    Settings::setValue("Some/key", longest);
    write(read()); // for Qt to read it anew
    QCOMPARE(Settings::value("Some/key").toString(), longest);
    Settings::setValue("Some/key", longest + letter);
    write(read());
    QCOMPARE(Settings::value("Some/key").toString(), longest);
    QVERIFY(!QFile::exists(path() + ".bak"));
}

void SettingsTest::somethingElseInTheWay()
{
    QVERIFY(QDir().mkpath(path() + "/inside"));
    QVERIFY(!Settings::contains("Some/key"));
    QCOMPARE(Settings::value("Some/key", 3).toInt(), 3);
    Settings::setValue("Some/key", 4);
    QVERIFY(QFileInfo(path() + "/inside").isDir());
    QVERIFY(!QFile::exists(path() + ".bak"));
}

void SettingsTest::fullDiskLeavesTheOldFile_data()
{
    QTest::addColumn<int>("blocks"); // -1 for as many as there are
    QTest::addColumn<int>("rest");   // bytes that the file has besides
    QTest::addColumn<bool>("isSaved");
    QTest::newRow("enough room, for comparison") << -1 << 100000 << true;
    if (FreshProcess::canLimitFileSize()) {
        QTest::newRow("no room at all") << 0 << 100000 << false;
        QTest::newRow("room for a part") << 64 << 100000 << false;
        // So little is written that it waits in a buffer until the file is closed.
        QTest::newRow("room for a part of little") << 4 << 10000 << false;
        QTest::newRow("no room for little") << 0 << 10 << false;
    }
}

void SettingsTest::fullDiskLeavesTheOldFile()
{
    QFETCH(int, blocks);
    QFETCH(int, rest);
    QFETCH(bool, isSaved);
    const QByteArray other = "[Other]\ntext=" + QByteArray(rest, 'x') + "\n\n";
    write(other + "[Some]\nnumber=7\n");
    const QStringList arguments = {"Some/number", "8"};
    const FreshProcess::Outcome outcome =
        blocks < 0 ? FreshProcess::run("set", arguments)
                   : FreshProcess::runWithFullDisk(blocks, "set", arguments);
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(read(), other + "[Some]\nnumber=" + (isSaved ? "8" : "7") + "\n");
    QCOMPARE(QDir(TestHome::dataDir()).entryList(QDir::Files | QDir::Hidden),
             QStringList("settings.ini"));
}

int main(int argc, char** argv)
{
    return FreshProcess::main<SettingsTest>(argc, argv, {{"set", changeASetting}});
}

#include "tst_settings.moc"
