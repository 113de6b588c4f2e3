// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AppIndex.h"
#include "FakeApplications.h"
#include "FreshProcess.h"
#include "TestHome.h"

#include <QApplication>
#include <QPixmap>
#include <QTest>
#include <QTextStream>

using Entry = AppIndex::Entry;

class AppIndexTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void entriesThatCount_data();
    void entriesThatCount();
    void search_data();
    void search();
    void limits_data();
    void limits();
    void nothingBeforeTheBuild();
    void isBuiltFromTheBeginning();
    void buildsOnce();
    void thousandsOfApplications();

    void presetIconComesFirst();
    void iconIsAskedForOnce();
    void missingIconIsRememberedToo();
    void iconsBelongToKeys();
    void asElement_data();
    void asElement();
};

namespace
{

constexpr int kManyApplications = 20000;

Entry application(const QString& name, const QString& launchPath, const QString& key)
{
    Entry entry;
    entry.name = name;
    entry.launchPath = launchPath;
    entry.key = key;
    return entry;
}

Entry named(const QString& name)
{
    return application(name, "/apps/" + name, name.toLower());
}

void print(const QString& line)
{
    QTextStream(stdout) << line << '\n';
}

/// The child's side: does what the words say, in order. "app" takes a name, a launch path and a key
/// of one more application of the desktop, "many" a number of them; "search" takes a query and a
/// limit, and prints a hit on each line. "watch" has each listing print whether the index says that
/// it is built; the word "built" prints it at once.
int runScript(const QStringList& words)
{
    QVector<Entry> desktop;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString& word = words.at(i);
        if (word == "app") {
            desktop.append(application(words.at(i + 1), words.at(i + 2), words.at(i + 3)));
            FakeApplications::setApplications(desktop);
            i += 3;
        } else if (word == "many") {
            for (int left = words.at(++i).toInt(); left > 0; --left)
                desktop.append(named(QString("application %1").arg(left)));
            FakeApplications::setApplications(desktop);
        } else if (word == "build") {
            AppIndex::build();
        } else if (word == "search") {
            const QVector<Entry> hits = AppIndex::search(words.at(i + 1), words.at(i + 2).toInt());
            for (const Entry& hit : hits)
                print(hit.name + '|' + hit.launchPath + '|' + hit.key);
            i += 2;
        } else if (word == "watch") {
            FakeApplications::onListing([] {
                print(AppIndex::isBuilt() ? "listing, built" : "listing, not built");
                AppIndex::build(); // as from an event loop within
            });
        } else if (word == "built") {
            print(AppIndex::isBuilt() ? "built" : "not built");
        } else if (word == "listings") {
            print(QString::number(FakeApplications::listCount()));
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

/// The names that a search finds on a desktop with these applications.
QStringList found(const QStringList& names, const QString& query, int limit)
{
    QStringList script;
    for (const QString& name : names)
        script << "app" << name << "/apps/" + name << name.toLower();
    QStringList hits = run(script + QStringList{"build", "search", query, QString::number(limit)});
    for (QString& hit : hits)
        hit = hit.section('|', 0, 0);
    return hits;
}

QStringList numbered(const QString& name, int count)
{
    QStringList names;
    for (int i = 1; i <= count; ++i)
        names.append(name + QString::number(i));
    return names;
}

QIcon icon(Qt::GlobalColor color)
{
    QPixmap pixmap(8, 8);
    pixmap.fill(color);
    return QIcon(pixmap);
}

} // namespace

void AppIndexTest::entriesThatCount_data()
{
    QTest::addColumn<QStringList>("applications"); // name, launch path and key of each
    QTest::addColumn<QStringList>("kept");
    QTest::newRow("none") << QStringList() << QStringList();
    QTest::newRow("one") << QStringList{"app A", "/a", "a"} << QStringList{"app A|/a|a"};
    QTest::newRow("without a name") << QStringList{"", "/app", "a"} << QStringList();
    QTest::newRow("without a path") << QStringList{"app A", "", "a"} << QStringList();
    QTest::newRow("order of the system")
        << QStringList{"app Z", "/z", "z", "app A", "/a", "a", "app M", "/m", "m"}
        << QStringList{"app Z|/z|z", "app A|/a|a", "app M|/m|m"};
    QTest::newRow("the first of a key counts")
        << QStringList{"app A", "/a", "same", "app B", "/b", "other", "app C", "/c", "same"}
        << QStringList{"app A|/a|same", "app B|/b|other"};
    // The systems that tell ids apart by their case write keys in lower case nevertheless.
    QTest::newRow("ids that differ in case alone")
        << QStringList{"app A", "/a/Tool.desktop", "tool.desktop",
                       "app B", "/a/tool.desktop", "tool.desktop"}
        << QStringList{"app A|/a/Tool.desktop|tool.desktop"};
    QTest::newRow("one left out holds no key")
        << QStringList{"app A", "", "same", "", "/b", "same", "app C", "/c", "same"}
        << QStringList{"app C|/c|same"};
    QTest::newRow("keys are texts, not paths")
        << QStringList{"app A", "/a", "c:\\a.exe", "app A", "/a", "c:/a.exe", "app A", "/a", "A"}
        << QStringList{"app A|/a|c:\\a.exe", "app A|/a|c:/a.exe", "app A|/a|A"};
    QTest::newRow("same name and path, other keys")
        << QStringList{"app A", "/a", "1", "app A", "/a", "2"}
        << QStringList{"app A|/a|1", "app A|/a|2"};
    QTest::newRow("one without a key")
        << QStringList{"app A", "/a", "", "app B", "/b", ""} << QStringList{"app A|/a|"};
}

void AppIndexTest::entriesThatCount()
{
    QFETCH(QStringList, applications);
    QStringList script;
    for (qsizetype i = 0; i < applications.size(); i += 3)
        script << "app" << applications.mid(i, 3);
    QTEST(run(script + QStringList{"build", "search", "app", "12"}), "kept");
}

void AppIndexTest::search_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const QString& query, const QStringList& expected) {
        QTest::newRow(qPrintable('|' + query + '|')) << query << expected;
    };
    row("edit", {"Editor", "edit two", "The Editor", "HexEdit"});
    row("EDIT", {"Editor", "edit two", "The Editor", "HexEdit"});
    row("  edit  ", {"Editor", "edit two", "The Editor", "HexEdit"});
    row("edit ", {"Editor", "edit two", "The Editor", "HexEdit"});
    row("edit t", {"edit two"});
    row("editor", {"Editor", "The Editor"});
    row("the", {"The Editor"});
    row("e", {"Editor", "edit two", "The Editor", "HexEdit"}); // "é" is another letter
    row("editx", {});
    row("edit  two", {});
    row("", {});
    row("   ", {});
    row("*", {});
    row(".", {});
    row("+", {"C++ Lab"});
    row("c++", {"C++ Lab"});
    row(QStringLiteral("CAFÉ"), {QStringLiteral("Café")});
    row(QStringLiteral("メモ"), {QStringLiteral("メモ帳")});
    QTest::newRow("tabs around it") << "\t\nthe\t" << QStringList{"The Editor"};
    QTest::newRow("no-break space") << QStringLiteral("\u00a0") << QStringList();
    QTest::newRow("very long") << QString(10000, 'e') << QStringList();
}

void AppIndexTest::search()
{
    QFETCH(QString, query);
    const QStringList names{"Editor",
                            "The Editor",
                            "HexEdit",
                            "edit two",
                            QStringLiteral("Café"),
                            "C++ Lab",
                            QStringLiteral("メモ帳")};
    QTEST(found(names, query, 12), "expected");
}

void AppIndexTest::limits_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<int>("limit");
    QTest::addColumn<QStringList>("expected");
    const QStringList prefix = numbered("app ", 12);
    const QStringList inner = numbered("my app ", 14);
    QTest::newRow("as many as there are") << prefix << 12 << prefix;
    QTest::newRow("the first of more") << prefix << 5 << prefix.mid(0, 5);
    QTest::newRow("one") << prefix << 1 << prefix.mid(0, 1);
    QTest::newRow("none") << prefix << 0 << QStringList();
    QTest::newRow("less than none") << prefix << -3 << QStringList();
    QTest::newRow("inner hits only") << inner << 12 << inner.mid(0, 12);
    QTest::newRow("inner hits fill up")
        << (inner + prefix.mid(0, 10)) << 12 << (prefix.mid(0, 10) + inner.mid(0, 2));
    QTest::newRow("no room for inner hits") << (inner + prefix) << 12 << prefix;
    QTest::newRow("prefix hits after the last room are left out")
        << (prefix + QStringList{"app 13"}) << 12 << prefix;
}

void AppIndexTest::limits()
{
    QFETCH(QStringList, names);
    QFETCH(int, limit);
    QTEST(found(names, "app", limit), "expected");
}

void AppIndexTest::nothingBeforeTheBuild()
{
    QCOMPARE(run({"app", "app A", "/a", "a", "built", "search", "app", "12", "listings"}),
             QStringList({"not built", "0"}));
}

void AppIndexTest::isBuiltFromTheBeginning()
{
    QCOMPARE(run({"watch", "built", "build", "built", "listings"}),
             QStringList({"not built", "listing, built", "built", "1"}));
}

void AppIndexTest::buildsOnce()
{
    QCOMPARE(run({"app", "app A", "/a", "a", "build", "app", "app B", "/b", "b", "build", "build",
                  "search", "app", "12", "listings"}),
             QStringList({"app A|/a|a", "1"}));
    QCOMPARE(run({"build", "app", "app A", "/a", "a", "build", "search", "app", "12", "listings"}),
             QStringList{"1"}); // also where there was nothing the first time
}

void AppIndexTest::thousandsOfApplications()
{
    const QStringList hits =
        run({"many", QString::number(kManyApplications), "build", "search", "TION 7", "3"});
    QCOMPARE(hits.size(), 3);
    QVERIFY(hits.at(0).startsWith("application 7999|"));
}

void AppIndexTest::presetIconComesFirst()
{
    Entry entry = application("app", "/preset", "preset");
    entry.presetIcon = icon(Qt::red);
    FakeApplications::setIcon("/preset", icon(Qt::blue));
    QCOMPARE(AppIndex::iconFor(entry).cacheKey(), entry.presetIcon.cacheKey());
    QVERIFY(!FakeApplications::iconRequests().contains("/preset"));
    // It isn't kept for others with that key.
    entry.presetIcon = QIcon();
    QVERIFY(AppIndex::iconFor(entry).pixmap(8).toImage().pixelColor(1, 1) == QColor(Qt::blue));
}

void AppIndexTest::iconIsAskedForOnce()
{
    const QIcon blue = icon(Qt::blue);
    FakeApplications::setIcon("/once", blue);
    const qsizetype before = FakeApplications::iconRequests().size();
    const Entry entry = application("app", "/once", "once");
    for (int i = 0; i < 3; ++i)
        QCOMPARE(AppIndex::iconFor(entry).cacheKey(), blue.cacheKey());
    QCOMPARE(FakeApplications::iconRequests().mid(before), QStringList{"/once"});
}

void AppIndexTest::missingIconIsRememberedToo()
{
    const qsizetype before = FakeApplications::iconRequests().size();
    const Entry entry = application("app", "/none", "none");
    QVERIFY(AppIndex::iconFor(entry).isNull());
    FakeApplications::setIcon("/none", icon(Qt::blue));
    QVERIFY(AppIndex::iconFor(entry).isNull());
    QCOMPARE(FakeApplications::iconRequests().mid(before), QStringList{"/none"});
}

void AppIndexTest::iconsBelongToKeys()
{
    FakeApplications::setIcon("/shared", icon(Qt::blue));
    const qsizetype before = FakeApplications::iconRequests().size();
    const QIcon first = AppIndex::iconFor(application("app A", "/shared", "key 1"));
    const QIcon second = AppIndex::iconFor(application("app B", "/elsewhere", "key 1"));
    QCOMPARE(second.cacheKey(), first.cacheKey());
    QVERIFY(!AppIndex::iconFor(application("app A", "/shared", "key 2")).isNull());
    QCOMPARE(FakeApplications::iconRequests().mid(before), QStringList({"/shared", "/shared"}));
}

void AppIndexTest::asElement_data()
{
    QTest::addColumn<bool>("isShellItem");
    QTest::addColumn<QString>("type");
    QTest::newRow("file") << false << "File";
    QTest::newRow("shell item") << true << "ShellItem";
}

void AppIndexTest::asElement()
{
    QFETCH(bool, isShellItem);
    QFETCH(QString, type);
    Entry entry = application("App A", "/apps/A", "a");
    entry.isShellItem = isShellItem;
    entry.presetIcon = icon(Qt::red);
    const LauncherElement expected{QString(), "App A", type, "/apps/A", QString()};
    QVERIFY(AppIndex::asElement(entry) == expected);
}

int main(int argc, char** argv)
{
    return FreshProcess::main<AppIndexTest>(argc, argv, {{"script", runScript}});
}

#include "tst_appindex.moc"
