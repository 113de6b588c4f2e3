// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Settings.h"

#include "TestHome.h"

#include <QDataStream>
#include <QDateTime>
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
    void somethingElseInTheWay();

private:
    static QString path() { return Settings::filePath(); }
    static void write(const QByteArray& content);
    static QByteArray read();
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
    // A time of its own for each, because Qt knows a file by its size and time alone.
    static QDateTime s_time = QDateTime::currentDateTime().addDays(-1);
    s_time = s_time.addSecs(1);
    QFile file(TestHome::writeDataFile("settings.ini", content));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(s_time, QFileDevice::FileModificationTime));
}

QByteArray SettingsTest::read()
{
    QFile file(path());
    return file.open(QIODevice::ReadOnly | QIODevice::Text) ? file.readAll() : QByteArray("(none)");
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

void SettingsTest::somethingElseInTheWay()
{
    QVERIFY(QDir().mkpath(path() + "/inside"));
    QVERIFY(!Settings::contains("Some/key"));
    QCOMPARE(Settings::value("Some/key", 3).toInt(), 3);
    Settings::setValue("Some/key", 4);
    QVERIFY(QFileInfo(path() + "/inside").isDir());
    QVERIFY(!QFile::exists(path() + ".bak"));
}

QTEST_MAIN(SettingsTest)
#include "tst_settings.moc"
