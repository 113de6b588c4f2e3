// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Browser.h"
#include "FakeApplications.h"
#include "FakeFileSystem.h"
#include "FileIndex.h"
#include "Pixels.h"
#include "SpotlightSearchTest.h"
#include "UiDriver.h"
#include "UsageStats.h"

#include <QDir>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include <memory>

namespace
{

/// The full path of what the content of the made-up home is called.
QString fullPath(const QString& path)
{
    return FileIndex::rootPath() + QDir::separator() +
           QDir::toNativeSeparators(path.endsWith('/') ? path.chopped(1) : path);
}

QStringList withSuffix(QStringList names, const QString& suffix)
{
    for (QString& name : names)
        name += suffix;
    return names;
}

/// Files that are made, of which the index is told.
void comes(const QStringList& paths)
{
    FakeFileSystem::Changes changes;
    for (const QString& path : paths)
        changes.append({Platform::FileAdded, path});
    FakeFileSystem::add(paths);
    FakeFileSystem::report({changes});
}

} // namespace

class SpotlightIndexesTest : public QObject, protected SpotlightSearchTest
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void filesWhileTheScanRuns(); // the first, because the process has but one first scan

    void applicationsFollowTheScopes_data();
    void applicationsFollowTheScopes();
    void applicationRecords();
    void applicationsEndAtTwelve();
    void usageRanksTheFirstTwelveOnly();
    void applicationIconsAreAskedForOnce();
    void applicationIconIsPainted();
    void shellItemLaunch();
    void fileApplicationLaunch();
    void applicationThatCannotBeStarted();

    void filesFollowTheScopes_data();
    void filesFollowTheScopes();
    void ownFilesComeFirst();
    void fileRecords();
    void filesRankByUsage();
    void fileLaunch_data();
    void fileLaunch();
    void changedFilesRebuildTheRows();
    void filesElsewhereLeaveTheSelection_data();
    void filesElsewhereLeaveTheSelection();
    void changedFilesLeaveAHiddenWindow();
    void indexOutlivesTheWindow();
    void showReadsWhatIsNotWatched();
};

void SpotlightIndexesTest::initTestCase()
{
    installMachine();
    FakeFileSystem::hold();
}

void SpotlightIndexesTest::init()
{
    makeSpotlight();
    if (qstrcmp(QTest::currentTestFunction(), "filesWhileTheScanRuns") == 0)
        return;
    FakeFileSystem::release();
    waitForIndexes();
}

void SpotlightIndexesTest::cleanup()
{
    f.reset();
}

void SpotlightIndexesTest::filesWhileTheScanRuns()
{
    const QStringList hint{"Preparing file index..."};
    show();
    for (const QString& text : {QStringLiteral("chart"), QStringLiteral("   ")}) {
        type(text, {"File"});
        QCOMPARE(f->rows(), QStringList{"# Files on this PC"} + hint);
        type(text, {"Folder"});
        QCOMPARE(f->rows(), QStringList{"# Folders on this PC"} + hint);
        type(text, {"Folder", "File"});
        QCOMPARE(f->rows(), QStringList{"# Files on this PC"} + hint);
        QCOMPARE(f->selected(), QString());
    }
    const QMap<int, QVariant> record{{Delegate::RoleItemType, "File"},
                                     {Delegate::RoleIconToken, ""},
                                     {Delegate::RoleIsHint, true},
                                     {Delegate::RoleGroupFirst, true},
                                     {Delegate::RoleGroupLast, true}};
    QCOMPARE(recordOf(f->list()->item(1)), record);
    QCOMPARE(f->list()->item(1)->flags(), Qt::ItemFlags(Qt::NoItemFlags));
    QTest::keyClick(f->field(), Qt::Key_Return);
    QVERIFY(!f->fade());

    // A search through everything has nothing to say about files yet, and says so by silence.
    type("chart", {});
    QCOMPARE(f->rows(), QStringList({"# Web Search", QStringLiteral("chart — Google Search")}));
    QVERIFY(!FileIndex::isReady());
    FakeFileSystem::release();
    QTRY_VERIFY(FileIndex::isReady());
    QCOMPARE(f->rows().constFirst(), QStringLiteral("# Files on this PC")); // by itself
    QCOMPARE(f->selected(), QStringLiteral("chart A.xls"));
}

void SpotlightIndexesTest::applicationsFollowTheScopes_data()
{
    QTest::addColumn<QStringList>("scopes");
    QTest::addColumn<QStringList>("expected");
    const QStringList installed{"# Installed Apps", "Zebra", "Zebu"};
    const QStringList web{"# Web Search", QStringLiteral("zeb — Google Search")};
    QTest::newRow("all") << QStringList()
                         << (QStringList{"# Snippet", "zeb note", "# Application", "my zeb"} +
                             installed + web);
    QTest::newRow("Application") << QStringList{"Application"}
                                 << (QStringList{"my zeb"} + installed);
    QTest::newRow("Application and Snippet")
        << QStringList{"Application", "Snippet"}
        << (QStringList{"# Snippet", "zeb note", "# Application", "my zeb"} + installed);
    QTest::newRow("Application and one without hits")
        << QStringList{"Bulk", "Application"}
        << (QStringList{"# Application", "my zeb"} + installed);
    QTest::newRow("Snippet") << QStringList{"Snippet"} << QStringList{"zeb note"};
    QTest::newRow("Snippet and URL")
        << QStringList{"Snippet", "URL"} << QStringList{"# Snippet", "zeb note"};
    QTest::newRow("other letter case") << QStringList{"application"} << QStringList();
    QTest::newRow("type of their items") << QStringList{"ShellItem"} << QStringList();
}

void SpotlightIndexesTest::applicationsFollowTheScopes()
{
    QFETCH(QStringList, scopes);
    f->setItems({snippet("zeb note"), makeItem("my zeb", "Application")});
    type("zeb", scopes);
    QTEST(f->rows(), "expected");
}

void SpotlightIndexesTest::applicationRecords()
{
    type("ZEB ", {"Application"});
    QCOMPARE(f->rows(), QStringList({"# Installed Apps", "Zebra", "Zebu"}));
    const QMap<int, QVariant> zebra{
        {Delegate::RoleItemType, "ShellItem"},   {Delegate::RoleReserved, 0},
        {Delegate::RoleSynthetic, true},         {Delegate::RoleValue, "/apps/zebra"},
        {Delegate::RoleGroupFirst, true},        {Delegate::RoleGroupLast, false},
        {SpotlightWindow::RoleUsageKey, "zebra"}};
    QCOMPARE(recordOf(rowNamed("Zebra")), zebra);
    const QMap<int, QVariant> zebu{
        {Delegate::RoleItemType, "File"},       {Delegate::RoleReserved, 0},
        {Delegate::RoleSynthetic, true},        {Delegate::RoleValue, "/apps/zebu"},
        {Delegate::RoleGroupFirst, false},      {Delegate::RoleGroupLast, true},
        {SpotlightWindow::RoleUsageKey, "zebu"}};
    QCOMPARE(recordOf(rowNamed("Zebu")), zebu);
    QVERIFY(!rowNamed("Zebra")->icon().isNull());
    QVERIFY(rowNamed("Zebu")->icon().isNull());
    QCOMPARE(f->selected(), QStringLiteral("Zebra"));
}

void SpotlightIndexesTest::applicationsEndAtTwelve()
{
    type("quill", {"Application"});
    QCOMPARE(f->rows(), QStringList{"# Installed Apps"} + lettered("Quill", 12));
    type("quill m", {"Application"});
    QCOMPARE(f->rows(), QStringList({"# Installed Apps", "Quill M"}));
    type("ill", {"Application"}); // nothing begins so: the order of the desktop
    QCOMPARE(f->rows(), QStringList({"# Installed Apps", "The Quill"}) + lettered("Quill", 11));
}

void SpotlightIndexesTest::usageRanksTheFirstTwelveOnly()
{
    use("plum c", 2);
    use("plum l", 4);
    use("plum m", 9);
    type("plum", {"Application"});
    QStringList expected{"# Installed Apps", "Plum L", "Plum C"};
    for (const QString& name : lettered("Plum", 11)) {
        if (name != QLatin1String("Plum C"))
            expected.append(name);
    }
    QCOMPARE(f->rows(), expected);
    QCOMPARE(f->selected(), QStringLiteral("Plum L"));
}

void SpotlightIndexesTest::applicationIconsAreAskedForOnce()
{
    for (const char* text : {"z", "ze", "zeb", "zebr", "zebra", "zeb", "zebu"})
        type(QString::fromLatin1(text), {});
    for (const char* path : {"/apps/zebra", "/apps/zebu"}) // there is one, there is none
        QCOMPARE(FakeApplications::iconRequests().count(QString::fromLatin1(path)), 1);
}

void SpotlightIndexesTest::applicationIconIsPainted()
{
    type("zeb", {"Application"});
    const QListWidgetItem* item = rowNamed("Zebra");
    const QImage image = f->list()->viewport()->grab().toImage();
    const QRect icon = Pixels::boxOfColor(image, Qt::red);
    QCOMPARE(icon.size(), QSize(16, 16)); // no larger than it is
    QVERIFY(f->list()->visualItemRect(item).contains(icon));
}

void SpotlightIndexesTest::shellItemLaunch()
{
    type("zeb", {});
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(FakeApplications::launches(), QStringList{"/apps/zebra"});
    QVERIFY(UsageStats::scoreFor("zebra") > 0.9);
    QCOMPARE(f->field()->text(), QString());
    QCOMPARE(f->rows(), QStringList());
    QTRY_VERIFY(f->window.isHidden());
}

void SpotlightIndexesTest::fileApplicationLaunch()
{
    const Browser browser;
    use("zebra", 1); // whatever other tests have used
    type("zeb", {"Application"});
    QTest::keyClick(f->field(), Qt::Key_Down);
    QCOMPARE(f->selected(), QStringLiteral("Zebu"));
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(browser.opened, QStringList{"file:///apps/zebu"});
    QVERIFY(UsageStats::scoreFor("zebu") > 0.9);
    QTRY_VERIFY(f->window.isHidden());
    use("zebu", 50);
    type("zeb", {"Application"});
    QCOMPARE(f->rows(), QStringList({"# Installed Apps", "Zebu", "Zebra"}));
}

void SpotlightIndexesTest::applicationThatCannotBeStarted()
{
    FakeApplications::setRefusing(true);
    type("fly", {});
    const QStringList rows = f->rows();
    const ModalDriver driver([](QWidget* box) { pressKey(*box, Qt::Key_Return); });
    QTest::keyClick(f->field(), Qt::Key_Return);
    FakeApplications::setRefusing(false);
    QCOMPARE(driver.count(), 1);
    QCOMPARE(FakeApplications::launches().constLast(), QStringLiteral("/apps/fly-queen"));
    QCOMPARE(UsageStats::scoreFor("fly queen"), 0.0);
    QCOMPARE(f->field()->text(), QStringLiteral("fly"));
    QCOMPARE(f->rows(), rows);
    QCOMPARE(f->selected(), QStringLiteral("Fly Queen"));
    QVERIFY(f->window.isVisible());
    QVERIFY(!f->fade());
}

void SpotlightIndexesTest::filesFollowTheScopes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("scopes");
    QTest::addColumn<QStringList>("expected");
    const auto files = [](int count) {
        return QStringList{"# Files on this PC"} + withSuffix(lettered("chart", count), ".xls");
    };
    const auto folders = [](int count) {
        return QStringList{"# Folders on this PC"} + lettered("chart", count);
    };
    const QStringList web{"# Web Search", QStringLiteral("chart — Google Search")};
    QTest::newRow("all") << "chart" << QStringList() << files(5) + web; // and no folders
    QTest::newRow("File") << "chart" << QStringList{"File"} << files(12);
    QTest::newRow("Folder") << "chart" << QStringList{"Folder"} << folders(12);
    QTest::newRow("File and Folder")
        << "chart" << QStringList{"File", "Folder"} << files(5) + folders(5);
    QTest::newRow("the same in another order")
        << "chart" << QStringList{"Folder", "File"} << files(5) + folders(5);
    QTest::newRow("File and Snippet") << "chart" << QStringList{"File", "Snippet"} << files(5);
    QTest::newRow("Folder and Application")
        << "chart" << QStringList{"Folder", "Application"} << folders(5);
    QTest::newRow("Snippet") << "chart" << QStringList{"Snippet"} << QStringList();
    QTest::newRow("Application") << "chart" << QStringList{"Application"} << QStringList();
    QTest::newRow("other letter case") << "chart" << QStringList{"file", "FOLDER"} << QStringList();
    QTest::newRow("blanks around it") << "  CHART " << QStringList{"File"} << files(12);
    QTest::newRow("files alone") << "orchard" << QStringList{"File", "Folder"}
                                 << QStringList{"# Files on this PC", "Orchard.txt"};
    QTest::newRow("no file") << "chart." << QStringList{"File"} << QStringList();
    QTest::newRow("blanks") << "   " << QStringList{"File", "Folder"} << QStringList();
    QTest::newRow("names, not paths")
        << "levelb" << QStringList{"File"} << QStringList{"# Files on this PC", "levelB"};
}

void SpotlightIndexesTest::filesFollowTheScopes()
{
    QFETCH(QString, text);
    QFETCH(QStringList, scopes);
    type(text, scopes);
    QTEST(f->rows(), "expected");
}

void SpotlightIndexesTest::ownFilesComeFirst()
{
    f->setItems({makeItem("my orchard", "File")});
    type("orchard", {"File"});
    QCOMPARE(f->rows(), QStringList({"my orchard", "# Files on this PC", "Orchard.txt"}));
    type("orchard", {"File", "Bulk"});
    QCOMPARE(f->rows(), QStringList({"# File", "my orchard", "# Files on this PC", "Orchard.txt"}));
}

void SpotlightIndexesTest::fileRecords()
{
    type("chart", {"File", "Folder"});
    const auto record = [](const QString& path, bool first, bool last) {
        return QMap<int, QVariant>{{Delegate::RoleItemType, "File"},
                                   {Delegate::RoleReserved, 0},
                                   {Delegate::RoleSynthetic, true},
                                   {Delegate::RoleValue, fullPath(path)},
                                   {Delegate::RoleGroupFirst, first},
                                   {Delegate::RoleGroupLast, last},
                                   {SpotlightWindow::RoleUsageKey, fullPath(path)}};
    };
    QCOMPARE(recordOf(rowNamed("chart A.xls")), record("chart A.xls", true, false));
    QCOMPARE(recordOf(rowNamed("chart C.xls")), record("chart C.xls", false, false));
    QCOMPARE(recordOf(rowNamed("chart E.xls")), record("chart E.xls", false, true));
    QCOMPARE(recordOf(rowNamed("chart A")), record("chart A/", true, false));
    QCOMPARE(recordOf(rowNamed("chart E")), record("chart E/", false, true));
    QVERIFY(!rowNamed("chart A.xls")->icon().isNull());
    QVERIFY(rowNamed("chart A")->icon().isNull());
    type("leveld", {"File"});
    QCOMPARE(recordOf(rowNamed("levelD")), record("chart D/levelD", true, true));
}

void SpotlightIndexesTest::filesRankByUsage()
{
    use(fullPath("chart M.xls"), 3); // beyond the twelfth, but the index sees it
    use(fullPath("chart C.xls"), 1);
    type("chart", {});
    QCOMPARE(f->rows().mid(0, 4),
             QStringList({"# Files on this PC", "chart M.xls", "chart C.xls", "chart A.xls"}));
}

void SpotlightIndexesTest::fileLaunch_data()
{
    QTest::addColumn<QString>("scope");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("path");
    QTest::newRow("file") << "File"
                          << "chart K.x"
                          << "chart K.xls";
    QTest::newRow("folder") << "Folder"
                            << "chart K"
                            << "chart K/";
}

void SpotlightIndexesTest::fileLaunch()
{
    QFETCH(QString, scope);
    QFETCH(QString, text);
    QFETCH(QString, path);
    const Browser browser;
    type(text, {scope});
    QTest::keyClick(f->field(), Qt::Key_Return);
    const QString wanted = fullPath(path);
    QCOMPARE(browser.opened,
             QStringList{QString::fromUtf8(QUrl::fromLocalFile(wanted).toEncoded())});
    QVERIFY(UsageStats::scoreFor(wanted) > 0.9);
    QCOMPARE(f->field()->text(), QString());
    QTRY_VERIFY(f->window.isHidden());
}

void SpotlightIndexesTest::changedFilesRebuildTheRows()
{
    type("pear", {"File"});
    QCOMPARE(f->rows(), QStringList());
    QVERIFY(f->panel()->isHidden());
    comes({"pear A.xls", "pear B.xls"});
    QTRY_COMPARE(f->rows(), QStringList({"# Files on this PC", "pear A.xls", "pear B.xls"}));
    QVERIFY(f->panel()->isVisible());
    QTest::keyClick(f->field(), Qt::Key_Down);
    QCOMPARE(f->selected(), QStringLiteral("pear B.xls"));
    comes({"pear C.xls"});
    QTRY_COMPARE(f->rows().size(), 4);
    QCOMPARE(f->selected(), QStringLiteral("pear A.xls")); // a selection isn't kept
}

void SpotlightIndexesTest::filesElsewhereLeaveTheSelection_data()
{
    QTest::addColumn<QStringList>("scopes");
    QTest::newRow("files") << QStringList{"File"};
    QTest::newRow("files and folders") << QStringList{"File", "Folder"};
    QTest::newRow("everything") << QStringList();
}

void SpotlightIndexesTest::filesElsewhereLeaveTheSelection()
{
    QFETCH(QStringList, scopes);
    type("chart", scopes);
    QTest::keyClick(f->field(), Qt::Key_Down);
    const QString selected = f->selected();
    const QStringList rows = f->rows();
    QVERIFY(selected != rows.value(1));
    const qsizetype before = FileIndex::entries().size();
    const QString newcomer = QString("newcomer %1.xls").arg(scopes.size());
    comes({newcomer});
    QTRY_COMPARE(FileIndex::entries().size(), before + 1);
    QCOMPARE(f->rows(), rows);
    QCOMPARE(f->selected(), selected);
    // One that goes is no longer shown, wherever the selection is.
    comes({"chart 0" + newcomer});
    QTRY_COMPARE(FileIndex::entries().size(), before + 2);
    FakeFileSystem::remove("chart 0" + newcomer);
    FakeFileSystem::report({{{Platform::FileRemoved, "chart 0" + newcomer}}});
    QTRY_COMPARE(FileIndex::entries().size(), before + 1);
    QCOMPARE(f->rows(), rows);
}

void SpotlightIndexesTest::changedFilesLeaveAHiddenWindow()
{
    type("pear", {"File"});
    const QStringList rows = f->rows();
    f->window.hide();
    const qsizetype before = FileIndex::entries().size();
    comes({"pear D.xls"});
    QTRY_VERIFY(FileIndex::entries().size() != before);
    QCOMPARE(f->rows(), rows);
}

void SpotlightIndexesTest::indexOutlivesTheWindow()
{
    type("pear", {"File"});
    f.reset();
    const qsizetype before = FileIndex::entries().size();
    comes({"pear E.xls"});
    QTRY_VERIFY(FileIndex::entries().size() != before);
    f = std::make_unique<SpotlightFixture>(); // and serves the next one
    type("pear e", {"File"});
    QCOMPARE(f->rows(), QStringList({"# Files on this PC", "pear E.xls"}));
}

void SpotlightIndexesTest::showReadsWhatIsNotWatched()
{
    // As if the last reading had been a minute ago.
    auto* fresh = QCoreApplication::instance()->findChild<QTimer*>("fileFreshTimer");
    QVERIFY(fresh);
    fresh->stop();
    f->window.hide();
    FakeFileSystem::setUnwatched({"unseen"});
    FakeFileSystem::add("unseen/pear F.xls");
    const qsizetype before = FileIndex::entries().size();
    f->window.show();
    QTRY_COMPARE(FileIndex::entries().size(), before + 2);
    FakeFileSystem::setUnwatched({});
}

QTEST_MAIN(SpotlightIndexesTest)
#include "tst_spotlightindexes.moc"
