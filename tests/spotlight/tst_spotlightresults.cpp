// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Browser.h"
#include "FakeApplications.h"
#include "FakeFileSystem.h"
#include "FileIndex.h"
#include "ItemImages.h"
#include "Localization.h"
#include "Pixels.h"
#include "SpotlightFixture.h"
#include "UiDriver.h"
#include "UsageStats.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QScrollBar>
#include <QTest>
#include <QUrl>

#include <memory>

using Delegate = SpotlightResultDelegate;

namespace
{

constexpr int kLight = 1;
constexpr int kFieldLimit = 32767; // what a line edit holds
constexpr qsizetype kMegabyte = 1024 * 1024;

// No scope that has a chip, but one that only own items can be of.
const QStringList kOwnOnly{"Snippet", "URL"};

const QString kMissingProgram = QStringLiteral("/no/such/place/program.exe");

LauncherElement snippet(const QString& name, const QString& value = QString())
{
    return makeItem(name, QStringLiteral("Snippet"), value);
}

void use(const QString& key, int times)
{
    for (int i = 0; i < times; ++i)
        UsageStats::record(key);
}

void use(const LauncherElement& element, int times)
{
    use(element.id, times);
}

FakeApplications::Application application(const QString& name, bool isShellItem)
{
    FakeApplications::Application app;
    app.name = name;
    app.key = name.toLower();
    app.launchPath = QStringLiteral("/apps/") + QString(app.key).replace(u' ', u'-');
    app.isShellItem = isShellItem;
    return app;
}

/// "Name A", "Name B" and so on.
QStringList lettered(const QString& name, int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names.append(name + u' ' + QChar(u'A' + i));
    return names;
}

/// The desktop of all tests, since a process asks for it once: two families of thirteen, and
/// single ones. None has a name that the text of a test about something else is part of.
QVector<FakeApplications::Application> installedApplications()
{
    QVector<FakeApplications::Application> apps{
        application("The Quill", false), application("Zebra", true),
        application("Zebu", false),      application("Fly Queen", true),
        application("8*8 Lab", false),   application("Wobble %1 Wheel", true)};
    for (const QString& name : lettered("Quill", 13) + lettered("Plum", 13))
        apps.append(application(name, true));
    return apps;
}

/// The home of all tests: a folder for each letter, and files beside and in them. Their names, too,
/// are no part of what other tests search for.
QStringList homeContent()
{
    QStringList content;
    for (const QString& name : lettered("chart", 13))
        content << name + '/' << name + ".xls" << name + "/level" + name.right(1);
    return content << "Orchard.txt"
                   << "8*8.txt";
}

/// The full path of what `homeContent` names so.
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

/// The record of a row: what is set of all that a row can have set.
QMap<int, QVariant> recordOf(const QListWidgetItem* item)
{
    QMap<int, QVariant> record;
    for (int role = Delegate::RoleOriginalIndex; role <= SpotlightWindow::RoleUsageKey; ++role) {
        if (item->data(role).isValid())
            record.insert(role, item->data(role));
    }
    return record;
}

/// All four events of it; the view asks for the press before.
void doubleClick(QWidget* widget, const QPoint& pos)
{
    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseDClick(widget, Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, pos);
}

QString clipboardText()
{
    return QGuiApplication::clipboard()->text();
}

} // namespace

class SpotlightResultsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void filesWhileTheScanRuns(); // the first, because the process has but one first scan

    void headersOnlyInMixedView_data();
    void headersOnlyInMixedView();
    void groupsKeepDocumentOrder();
    void emptyTypeCountsAsUrl();
    void everyUnknownTypeIsAGroup();
    void usageRanksWithinGroups();
    void usageRanksGroups();
    void groupsOfScopesAreRanked();
    void ownItemsHaveNoLimit();

    void emptyTextClosesThePanel();
    void blanksAreAQueryWithoutHits();
    void textIsTrimmedForItems();
    void textWithoutHits();
    void rebuildSelectsTheFirstResult();
    void rebuildStartsAtTheTop();
    void languageOfHeaders();

    void rowRecords();
    void rowIsPaintedAgainOnceItsPictureIsRead();
    void headerRecords();
    void groupEdges();
    void rowsKeepStrangeNames_data();
    void rowsKeepStrangeNames();
    void rowsStayInsideThePanel();

    void calculatorComesFirst();
    void calculatorRecords();
    void calculatorHeaderStandsAlone_data();
    void calculatorHeaderStandsAlone();
    void calculatorNeedsAllScopes();
    void calculatorNeedsADigit();
    void calculatorLaunchCopiesTheValue();

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
    void changedFilesLeaveAHiddenWindow();
    void indexOutlivesTheWindow();

    void allGroupsInTheirOrder_data();
    void allGroupsInTheirOrder();
    void webNeedsAllScopes_data();
    void webNeedsAllScopes();
    void webRecords();
    void webLaunchLeavesNoTrace_data();
    void webLaunchLeavesNoTrace();
    void engineGroups_data();
    void engineGroups();
    void engineHintIsPassive();
    void titlesKeepPlaceMarkers();
    void ghost_data();
    void ghost();
    void languageOfWebGroups();

    void launchRunsRecordsAndHides();
    void launchTakesTheItemAsItIsNow();
    void launchFindsAMovedItem();
    void launchOfADeletedItem();
    void launchThatFails();
    void launchOfNoResult();
    void launchCountsEveryTime();
    void clickSelectsDoubleClickLaunches();
    void doubleClickOnAHeader();
    void pointerLightsUpRows();
    void bulkWithHotkeyDuringItsMessage();
    void failureWithHotkeyDuringItsMessage();

    void megabyteIntoTheField_data();
    void megabyteIntoTheField();
    void megabyteAsAnItem();

private:
    void show();
    void type(const QString& text, const QStringList& scopes = kOwnOnly);
    QStringList rowsUpToOwn() const;
    QListWidgetItem* rowNamed(const QString& title) const;

    std::unique_ptr<SpotlightFixture> f;
};

void SpotlightResultsTest::initTestCase()
{
    QApplication::setCursorFlashTime(0); // a ghost is compared with a picture of the field
    QPixmap red(16, 16);
    red.fill(Qt::red);
    FakeApplications::setIcon(application("Zebra", true).launchPath, QIcon(red));
    FakeApplications::setApplications(installedApplications());
    FakeFileSystem::setIcon(".xls", QIcon(red));
    FakeFileSystem::add(homeContent());
    FakeFileSystem::hold();
}

void SpotlightResultsTest::init()
{
    Theme::forceTheme = kLight;
    Tr::currentLang = Lang::En;
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    f = std::make_unique<SpotlightFixture>();
    if (qstrcmp(QTest::currentTestFunction(), "filesWhileTheScanRuns") == 0)
        return;
    FakeFileSystem::release();
    QTRY_VERIFY(FileIndex::isReady());
}

void SpotlightResultsTest::cleanup()
{
    f.reset();
}

void SpotlightResultsTest::show()
{
    f->pressHotkey();
    QVERIFY(QTest::qWaitForWindowActive(&f->window));
}

/// Shows the window with a text in its field. Scopes keep sources out that a test isn't about.
void SpotlightResultsTest::type(const QString& text, const QStringList& scopes)
{
    if (!f->window.isVisible())
        show();
    f->window.setScopeKeys(scopes);
    f->field()->setText(text);
}

/// The rows down to the last one of the user's items; behind it stand those of other sources.
QStringList SpotlightResultsTest::rowsUpToOwn() const
{
    QStringList rows = f->rows();
    while (!rows.isEmpty() &&
           !f->list()->item(int(rows.size()) - 1)->data(Delegate::RoleElementId).isValid())
        rows.removeLast();
    return rows;
}

QListWidgetItem* SpotlightResultsTest::rowNamed(const QString& title) const
{
    const QList<QListWidgetItem*> items = f->list()->findItems(title, Qt::MatchExactly);
    if (items.size() != 1)
        qFatal("not one row \"%s\"", qPrintable(title));
    return items.constFirst();
}

void SpotlightResultsTest::filesWhileTheScanRuns()
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

void SpotlightResultsTest::headersOnlyInMixedView_data()
{
    QTest::addColumn<QStringList>("scopes");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("all") << QStringList()
                         << QStringList{"# Snippet", "n snippet",     "# Web Bookmark", "n url",
                                        "n empty",   "# Application", "n app",          "# File",
                                        "n file",    "# Bulk Action", "n bulk"};
    QTest::newRow("Snippet") << QStringList{"Snippet"} << QStringList{"n snippet"};
    QTest::newRow("URL") << QStringList{"URL"} << QStringList{"n url", "n empty"};
    QTest::newRow("Bulk") << QStringList{"Bulk"} << QStringList{"n bulk"};
    QTest::newRow("Snippet and URL")
        << QStringList{"Snippet", "URL"}
        << QStringList{"# Snippet", "n snippet", "# Web Bookmark", "n url", "n empty"};
    QTest::newRow("the same in another order")
        << QStringList{"URL", "Snippet"}
        << QStringList{"# Snippet", "n snippet", "# Web Bookmark", "n url", "n empty"};
    QTest::newRow("one with hits, one without")
        << QStringList{"Bulk", "Teapot"} << QStringList{"# Bulk Action", "n bulk"};
    QTest::newRow("other letter case") << QStringList{"snippet", "SNIPPET"} << QStringList();
    QTest::newRow("one twice") << QStringList{"Bulk", "Bulk"}
                               << QStringList{"# Bulk Action", "n bulk"};
    QTest::newRow("empty key") << QStringList{""} << QStringList();
}

void SpotlightResultsTest::headersOnlyInMixedView()
{
    QFETCH(QStringList, scopes);
    f->setItems({snippet("n snippet"), makeItem("n url", "URL"), makeItem("n empty", ""),
                 makeItem("n app", "Application"), makeItem("n file", "File"),
                 makeItem("n bulk", "Bulk"), makeItem("other", "URL")});
    show();
    f->window.rebuildResults(QStringLiteral("n "), scopes);
    QTEST(rowsUpToOwn(), "expected");
}

void SpotlightResultsTest::groupsKeepDocumentOrder()
{
    f->setItems({makeItem("n 1", "URL"), snippet("n 2"), makeItem("n 3", "URL"), snippet("n 4"),
                 makeItem("n 5", "URL")});
    f->model.addCategory(QStringLiteral("Second"), 0xE2C7);
    f->model.saveItem(QStringLiteral("Second"), snippet("n 6"), -1);
    type("n");
    QCOMPARE(f->rows(), QStringList({"# Web Bookmark", "n 1", "n 3", "n 5", "# Snippet", "n 2",
                                     "n 4", "n 6"}));
}

void SpotlightResultsTest::emptyTypeCountsAsUrl()
{
    f->setItems({makeItem("n empty", ""), makeItem("n url", "URL")});
    type("n", {"URL"});
    QCOMPARE(f->rows(), QStringList({"n empty", "n url"}));
    QCOMPARE(f->list()->item(0)->data(Delegate::RoleItemType).toString(), QStringLiteral("URL"));
    QCOMPARE(f->list()->item(0)->data(Delegate::RoleGroupFirst).toBool(), true);
    QCOMPARE(f->list()->item(0)->data(Delegate::RoleGroupLast).toBool(), false);
}

void SpotlightResultsTest::everyUnknownTypeIsAGroup()
{
    f->setItems({makeItem("n teapot", "Teapot"), makeItem("n app", "Application"),
                 makeItem("n shell", "ShellItem"), makeItem("n url", "url"),
                 makeItem("n teapot 2", "Teapot")});
    type("n ", {});
    QCOMPARE(rowsUpToOwn(),
             QStringList({"# Application", "n teapot", "n teapot 2", "# Application", "n app",
                          "# Application", "n shell", "# Application", "n url"}));
    QCOMPARE(f->list()->item(1)->data(Delegate::RoleItemType).toString(), QStringLiteral("Teapot"));
    type("n ", {"Teapot"});
    QCOMPARE(f->rows(), QStringList({"n teapot", "n teapot 2"}));
}

void SpotlightResultsTest::usageRanksWithinGroups()
{
    const QVector<LauncherElement> items{snippet("n 1"), snippet("n 2"), snippet("n 3"),
                                         snippet("n 4"), snippet("n 5")};
    f->setItems(items);
    use(items.at(3), 1);
    use(items.at(4), 3);
    type("n", {"Snippet"});
    QCOMPARE(f->rows(), QStringList({"n 5", "n 4", "n 1", "n 2", "n 3"}));
    use(items.at(1), 2);
    type("n ", {"Snippet"});
    QCOMPARE(f->rows(), QStringList({"n 5", "n 2", "n 4", "n 1", "n 3"}));
    QCOMPARE(f->selected(), QStringLiteral("n 5"));
}

void SpotlightResultsTest::usageRanksGroups()
{
    const QVector<LauncherElement> items{snippet("n s1"),         makeItem("n b", "Bulk"),
                                         makeItem("n u1", "URL"), makeItem("n f", "File"),
                                         makeItem("n u2", "URL"), snippet("n s2")};
    f->setItems(items);
    // One item that is used more counts more than two that are used often. No two counts are
    // equal, for then the second in which they were made would decide.
    use(items.at(0), 3);
    use(items.at(5), 2);
    use(items.at(4), 4);
    type("n", {"Snippet", "URL", "Bulk", "File"});
    QCOMPARE(f->rows(), QStringList({"# Web Bookmark", "n u2", "n u1", "# Snippet", "n s1", "n s2",
                                     "# Bulk Action", "n b", "# File", "n f"}));
}

void SpotlightResultsTest::groupsOfScopesAreRanked()
{
    const QVector<LauncherElement> items{snippet("n s"), makeItem("n b", "Bulk"),
                                         makeItem("n u", "URL")};
    f->setItems(items);
    use(items.at(1), 5);
    use(items.at(2), 1);
    type("n");
    QCOMPARE(f->rows(), QStringList({"# Web Bookmark", "n u", "# Snippet", "n s"}));
}

void SpotlightResultsTest::ownItemsHaveNoLimit()
{
    QVector<LauncherElement> items;
    for (int i = 0; i < 1000; ++i)
        items.append(snippet(QStringLiteral("note %1").arg(i)));
    f->setItems(items);
    type("note", {"Snippet"});
    QCOMPARE(f->list()->count(), 1000);
    QCOMPARE(f->panel()->height(), 328);
    QTest::keyClick(f->field(), Qt::Key_Down);
    QCOMPARE(f->selected(), QStringLiteral("note 1"));
}

void SpotlightResultsTest::emptyTextClosesThePanel()
{
    f->setItems({snippet("note")});
    type("note");
    QVERIFY(f->panel()->isVisible());
    f->field()->clear();
    QCOMPARE(f->rows(), QStringList());
    QVERIFY(f->panel()->isHidden());
    QCOMPARE(f->window.height(), f->window.emptyStateHeight());
}

void SpotlightResultsTest::blanksAreAQueryWithoutHits()
{
    f->setItems({snippet("a   b"), snippet("   ")});
    type("a");
    type("   ");
    QCOMPARE(f->rows(), QStringList());
    QVERIFY(f->panel()->isHidden());
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(f->field()->text(), QStringLiteral("   "));
    QVERIFY(f->window.isVisible());
    for (const QStringList& scopes : {QStringList(), QStringList{"Application"}}) {
        type("   ", scopes);
        QCOMPARE(f->rows(), QStringList());
    }
}

void SpotlightResultsTest::textIsTrimmedForItems()
{
    f->setItems({snippet("My Note"), snippet("other")});
    type("  nOTE  ", {"Snippet"});
    QCOMPARE(f->rows(), QStringList{"My Note"});
    type("my  note", {"Snippet"}); // blanks within count
    QCOMPARE(f->rows(), QStringList());
    type("\tnote\n", {"Snippet"});
    QCOMPARE(f->rows(), QStringList{"My Note"});
}

void SpotlightResultsTest::textWithoutHits()
{
    f->setItems({snippet("note")});
    type("note");
    type("xyz");
    QCOMPARE(f->rows(), QStringList());
    QVERIFY(f->panel()->isHidden());
    type(".*");
    QCOMPARE(f->rows(), QStringList()); // no pattern
}

void SpotlightResultsTest::rebuildSelectsTheFirstResult()
{
    f->setItems({snippet("note 1"), snippet("note 2"), makeItem("note 3", "URL")});
    type("note");
    QCOMPARE(f->list()->currentRow(), 1);
    f->list()->setCurrentRow(4);
    f->window.rebuildResults(f->field()->text(), kOwnOnly); // as when a source gets ready
    QCOMPARE(f->list()->currentRow(), 1);
    QCOMPARE(f->selected(), QStringLiteral("note 1"));
    f->list()->setCurrentRow(2);
    f->field()->setText(QStringLiteral("note "));
    QCOMPARE(f->selected(), QStringLiteral("note 1"));
}

void SpotlightResultsTest::rebuildStartsAtTheTop()
{
    QVector<LauncherElement> items;
    for (int i = 0; i < 40; ++i)
        items.append(snippet(QStringLiteral("note %1").arg(i)));
    f->setItems(items);
    type("note");
    QScrollBar* bar = f->list()->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0);
    bar->setValue(bar->maximum());
    f->field()->setText(QStringLiteral("not"));
    QTRY_VERIFY(bar->maximum() > 0);
    QCOMPARE(bar->value(), 0);
    for (int i = 0; i < 30; ++i)
        QTest::keyClick(f->field(), Qt::Key_Down);
    QVERIFY(bar->value() > 0);
    f->field()->setText(QStringLiteral("no"));
    QTRY_VERIFY(bar->maximum() > 0);
    QCOMPARE(bar->value(), 0); // the header above the first row is seen again
}

void SpotlightResultsTest::languageOfHeaders()
{
    f->setItems({snippet("1 note"), makeItem("1 site", "URL")});
    Tr::currentLang = Lang::Es;
    type("1", {});
    QCOMPARE(rowsUpToOwn(),
             QStringList({QStringLiteral("# Calculadora"), QStringLiteral("# Fragmento"), "1 note",
                          QStringLiteral("# Marcador web"), "1 site"}));
}

void SpotlightResultsTest::rowRecords()
{
    LauncherElement second = makeItem("note b", "File", "/some/file");
    second.iconPath = QStringLiteral("glyph:e40a");
    f->setItems({makeItem("other", "URL"), second});
    type("note", {"File"});
    const QListWidgetItem* item = f->list()->item(0);
    QCOMPARE(item->text(), QStringLiteral("note b"));
    QVERIFY(item->icon().isNull());
    QCOMPARE(item->data(Delegate::RoleItemType), QVariant(QStringLiteral("File")));
    QCOMPARE(item->data(Delegate::RoleReserved), QVariant(0));
    QCOMPARE(item->data(Delegate::RoleIconToken), QVariant(QStringLiteral("glyph:e40a")));
    QCOMPARE(item->data(Delegate::RoleOriginalIndex), QVariant(1));
    QCOMPARE(item->data(Delegate::RoleElementId), QVariant(second.id));
    QCOMPARE(item->data(Delegate::RoleCategory), QVariant(f->model.data().categories.at(0)));
    QCOMPARE(item->data(SpotlightWindow::RoleUsageKey), QVariant(second.id));
    for (const int unset : {int(Delegate::RoleSynthetic), int(Delegate::RoleValue),
                            int(Delegate::RoleIsHeader), int(Delegate::RoleIsHint)})
        QVERIFY(!item->data(unset).isValid());
    QVERIFY(item->flags().testFlag(Qt::ItemIsEnabled));
    QVERIFY(item->flags().testFlag(Qt::ItemIsSelectable));
    QVERIFY(!item->flags().testFlag(Qt::ItemIsEditable));
}

void SpotlightResultsTest::rowIsPaintedAgainOnceItsPictureIsRead()
{
    LauncherElement item = makeItem("note", "URL");
    item.iconPath = TestHome::writeDataFile(QStringLiteral("row.png"), {});
    QImage picture(22, 22, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(item.iconPath));
    f->setItems({item});
    f->pressHotkey();
    QVERIFY(QTest::qWaitForWindowExposed(&f->window));
    const PaintWatcher watcher(f->list()->viewport(), [&item] {
        return ItemImages::find(item.iconPath, {22, 22}, 1.0).state == ItemImages::State::Ready;
    });
    type("note");
    QTRY_VERIFY(watcher.wasTrue());
    QVERIFY(!Pixels::boxOfColor(Pixels::imageOf(*f->list()->viewport()), Qt::red).isEmpty());
}

void SpotlightResultsTest::headerRecords()
{
    f->setItems({snippet("note")});
    type("note");
    const QListWidgetItem* header = f->list()->item(0);
    QCOMPARE(header->text(), QStringLiteral("Snippet"));
    QCOMPARE(header->data(Delegate::RoleIsHeader), QVariant(true));
    QCOMPARE(header->flags(), Qt::ItemFlags(Qt::NoItemFlags));
    for (int role = Delegate::RoleOriginalIndex; role <= SpotlightWindow::RoleUsageKey; ++role)
        QCOMPARE(header->data(role).isValid(), role == Delegate::RoleIsHeader);
}

void SpotlightResultsTest::groupEdges()
{
    f->setItems({snippet("n 1"), snippet("n 2"), snippet("n 3"), makeItem("n 4", "URL")});
    type("n");
    QStringList edges;
    for (int row = 0; row < f->list()->count(); ++row) {
        const QListWidgetItem* item = f->list()->item(row);
        if (item->data(Delegate::RoleIsHeader).toBool())
            continue;
        edges.append(item->text() +
                     (item->data(Delegate::RoleGroupFirst).toBool() ? " first" : "") +
                     (item->data(Delegate::RoleGroupLast).toBool() ? " last" : ""));
    }
    QCOMPARE(edges, QStringList({"n 1 first", "n 2", "n 3 last", "n 4 first last"}));
}

void SpotlightResultsTest::rowsKeepStrangeNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("line feeds") << "zz first\nsecond\r\nthird";
    QTest::newRow("right-to-left marks") << QStringLiteral("\u202ezz\u200f שלום");
    QTest::newRow("surrogates") << QStringLiteral("zz \U0001F980");
    QTest::newRow("half a surrogate") << (QStringLiteral("zz ") + QChar(0xD83E));
    QTest::newRow("null character") << (QStringLiteral("zz") + QChar(0) + QStringLiteral("x"));
    QTest::newRow("looks like a header") << "# zz";
    QTest::newRow("ampersand") << "zz & &co";
    QTest::newRow("long") << (QStringLiteral("zz") + QString(10000, u'x'));
}

void SpotlightResultsTest::rowsKeepStrangeNames()
{
    QFETCH(QString, name);
    f->setItems({snippet(name, "the value")});
    // What is saved is what is shown: the document goes through JSON.
    const QString kept = f->model.data().sectionElements.first().constFirst().name;
    QCOMPARE(kept, name);
    type("ZZ", {"Snippet"});
    QCOMPARE(f->list()->count(), 1);
    QCOMPARE(f->list()->item(0)->text(), name);
    QVERIFY(!f->window.grab().isNull());
    QCOMPARE(f->panel()->height(), 328);
    QCOMPARE(f->window.width(), int(SpotlightWindow::WINDOW_WIDTH));
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(clipboardText(), QStringLiteral("the value"));
}

void SpotlightResultsTest::rowsStayInsideThePanel()
{
    QVector<LauncherElement> items;
    for (int i = 0; i < 20; ++i)
        items.append(snippet(QStringLiteral("note %1").arg(i)));
    f->setItems(items);
    type("note", {"Snippet"});
    f->list()->verticalScrollBar()->setValue(100);
    QImage image(f->panel()->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    f->panel()->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    // Where the panel's corner of radius 40 has gone, nothing may stand out of it.
    for (int x = 0; x < 14; ++x) {
        const int y = image.height() - 8;
        QCOMPARE(image.pixelColor(x, y).alpha(), 0);
        QCOMPARE(image.pixelColor(image.width() - 1 - x, y).alpha(), 0);
    }
    QVERIFY(image.pixelColor(image.width() / 2, image.height() - 8).alpha() > 0);
}

void SpotlightResultsTest::calculatorComesFirst()
{
    const LauncherElement item = snippet("2+3 days");
    f->setItems({item});
    use(item, 50);
    type("2+3", {});
    QCOMPARE(rowsUpToOwn(), QStringList({"# Calculator", "2+3 = 5", "# Snippet", "2+3 days"}));
    QCOMPARE(f->selected(), QStringLiteral("2+3 = 5"));
}

void SpotlightResultsTest::calculatorRecords()
{
    type("  6*7 ", {});
    const QListWidgetItem* item = f->list()->item(1);
    QCOMPARE(item->text(), QStringLiteral("6*7 = 42"));
    QCOMPARE(item->data(Delegate::RoleItemType), QVariant(QStringLiteral("Snippet")));
    QCOMPARE(item->data(Delegate::RoleIconToken), QVariant(QStringLiteral("glyph:ea5f")));
    QCOMPARE(item->data(Delegate::RoleSynthetic), QVariant(true));
    QCOMPARE(item->data(Delegate::RoleValue), QVariant(QStringLiteral("42")));
    QCOMPARE(item->data(Delegate::RoleReserved), QVariant(0));
    QCOMPARE(item->data(Delegate::RoleGroupFirst), QVariant(true));
    QCOMPARE(item->data(Delegate::RoleGroupLast), QVariant(true));
    for (const int unset : {int(Delegate::RoleElementId), int(Delegate::RoleCategory),
                            int(Delegate::RoleOriginalIndex), int(SpotlightWindow::RoleUsageKey)})
        QVERIFY(!item->data(unset).isValid());
}

void SpotlightResultsTest::calculatorHeaderStandsAlone_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("bare number") << "42";
    QTest::newRow("unfinished sum") << "4+";
    QTest::newRow("unfinished parenthesis") << "4*(2+1";
    QTest::newRow("division by zero") << "4/0";
    QTest::newRow("no expression at all") << "4 people";
}

void SpotlightResultsTest::calculatorHeaderStandsAlone()
{
    QFETCH(QString, text);
    show();
    f->field()->setText(text);
    QCOMPARE(f->rows(), QStringList({"# Calculator", "# Web Search",
                                     text + QStringLiteral(" — Google Search")}));
    QVERIFY(f->panel()->isVisible());
    QCOMPARE(f->panel()->height(), 328);
    QCOMPARE(f->list()->currentRow(), 2);
    // With an item behind it, that is selected.
    f->setItems({snippet(text + QStringLiteral(" or so"))});
    f->window.rebuildResults(text, {});
    QCOMPARE(rowsUpToOwn().mid(0, 2), QStringList({"# Calculator", "# Snippet"}));
    QCOMPARE(f->list()->currentRow(), 2);
}

void SpotlightResultsTest::calculatorNeedsAllScopes()
{
    f->setItems({snippet("2+3 days")});
    for (const QStringList& scopes : {QStringList{"Snippet"}, QStringList{"Snippet", "URL"}}) {
        type("2+3", scopes);
        QVERIFY(!f->rows().contains(QStringLiteral("# Calculator")));
        QVERIFY(!f->rows().contains(QStringLiteral("2+3 = 5")));
        QCOMPARE(f->rows().constLast(), QStringLiteral("2+3 days"));
        QCOMPARE(f->selected(), QStringLiteral("2+3 days"));
    }
}

void SpotlightResultsTest::calculatorNeedsADigit()
{
    for (const char* text : {"-2+3", "(2+3)", "pi", "+1", ".5+1"}) {
        type(QString::fromLatin1(text), {});
        QCOMPARE(f->rows(),
                 QStringList({"# Web Search", text + QStringLiteral(" — Google Search")}));
    }
}

void SpotlightResultsTest::calculatorLaunchCopiesTheValue()
{
    QFile::remove(UsageStats::filePath());
    type("6*7", {});
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(clipboardText(), QStringLiteral("42"));
    QCOMPARE(f->field()->text(), QString());
    QTRY_VERIFY(f->window.isHidden());
    QVERIFY(!QFile::exists(UsageStats::filePath())); // leaves no trace
}

void SpotlightResultsTest::applicationsFollowTheScopes_data()
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

void SpotlightResultsTest::applicationsFollowTheScopes()
{
    QFETCH(QStringList, scopes);
    f->setItems({snippet("zeb note"), makeItem("my zeb", "Application")});
    type("zeb", scopes);
    QTEST(f->rows(), "expected");
}

void SpotlightResultsTest::applicationRecords()
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

void SpotlightResultsTest::applicationsEndAtTwelve()
{
    type("quill", {"Application"});
    QCOMPARE(f->rows(), QStringList{"# Installed Apps"} + lettered("Quill", 12));
    type("quill m", {"Application"});
    QCOMPARE(f->rows(), QStringList({"# Installed Apps", "Quill M"}));
    type("ill", {"Application"}); // nothing begins so: the order of the desktop
    QCOMPARE(f->rows(), QStringList({"# Installed Apps", "The Quill"}) + lettered("Quill", 11));
}

void SpotlightResultsTest::usageRanksTheFirstTwelveOnly()
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

void SpotlightResultsTest::applicationIconsAreAskedForOnce()
{
    for (const char* text : {"z", "ze", "zeb", "zebr", "zebra", "zeb", "zebu"})
        type(QString::fromLatin1(text), {});
    for (const char* path : {"/apps/zebra", "/apps/zebu"}) // there is one, there is none
        QCOMPARE(FakeApplications::iconRequests().count(QString::fromLatin1(path)), 1);
}

void SpotlightResultsTest::applicationIconIsPainted()
{
    type("zeb", {"Application"});
    const QListWidgetItem* item = rowNamed("Zebra");
    const QImage image = f->list()->viewport()->grab().toImage();
    const QRect icon = Pixels::boxOfColor(image, Qt::red);
    QCOMPARE(icon.size(), QSize(16, 16)); // no larger than it is
    QVERIFY(f->list()->visualItemRect(item).contains(icon));
}

void SpotlightResultsTest::shellItemLaunch()
{
    type("zeb", {});
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(FakeApplications::launches(), QStringList{"/apps/zebra"});
    QVERIFY(UsageStats::scoreFor("zebra") > 0.9);
    QCOMPARE(f->field()->text(), QString());
    QCOMPARE(f->rows(), QStringList());
    QTRY_VERIFY(f->window.isHidden());
}

void SpotlightResultsTest::fileApplicationLaunch()
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

void SpotlightResultsTest::applicationThatCannotBeStarted()
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

void SpotlightResultsTest::filesFollowTheScopes_data()
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

void SpotlightResultsTest::filesFollowTheScopes()
{
    QFETCH(QString, text);
    QFETCH(QStringList, scopes);
    type(text, scopes);
    QTEST(f->rows(), "expected");
}

void SpotlightResultsTest::ownFilesComeFirst()
{
    f->setItems({makeItem("my orchard", "File")});
    type("orchard", {"File"});
    QCOMPARE(f->rows(), QStringList({"my orchard", "# Files on this PC", "Orchard.txt"}));
    type("orchard", {"File", "Bulk"});
    QCOMPARE(f->rows(), QStringList({"# File", "my orchard", "# Files on this PC", "Orchard.txt"}));
}

void SpotlightResultsTest::fileRecords()
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

void SpotlightResultsTest::filesRankByUsage()
{
    use(fullPath("chart M.xls"), 3); // beyond the twelfth, but the index sees it
    use(fullPath("chart C.xls"), 1);
    type("chart", {});
    QCOMPARE(f->rows().mid(0, 4),
             QStringList({"# Files on this PC", "chart M.xls", "chart C.xls", "chart A.xls"}));
}

void SpotlightResultsTest::fileLaunch_data()
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

void SpotlightResultsTest::fileLaunch()
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

void SpotlightResultsTest::changedFilesRebuildTheRows()
{
    type("pear", {"File"});
    QCOMPARE(f->rows(), QStringList());
    QVERIFY(f->panel()->isHidden());
    FakeFileSystem::add({"pear A.xls", "pear B.xls"});
    FakeFileSystem::reportOverflow();
    QTRY_COMPARE(f->rows(), QStringList({"# Files on this PC", "pear A.xls", "pear B.xls"}));
    QVERIFY(f->panel()->isVisible());
    QTest::keyClick(f->field(), Qt::Key_Down);
    QCOMPARE(f->selected(), QStringLiteral("pear B.xls"));
    FakeFileSystem::add("pear C.xls");
    FakeFileSystem::reportOverflow();
    QTRY_COMPARE(f->rows().size(), 4);
    QCOMPARE(f->selected(), QStringLiteral("pear A.xls")); // a selection isn't kept
}

void SpotlightResultsTest::changedFilesLeaveAHiddenWindow()
{
    type("pear", {"File"});
    const QStringList rows = f->rows();
    f->window.hide();
    const qsizetype before = FileIndex::entries().size();
    FakeFileSystem::add("pear D.xls");
    FakeFileSystem::reportOverflow();
    QTRY_VERIFY(FileIndex::entries().size() != before);
    QCOMPARE(f->rows(), rows);
}

void SpotlightResultsTest::indexOutlivesTheWindow()
{
    type("pear", {"File"});
    f.reset();
    const qsizetype before = FileIndex::entries().size();
    FakeFileSystem::add("pear E.xls");
    FakeFileSystem::reportOverflow();
    QTRY_VERIFY(FileIndex::entries().size() != before);
    f = std::make_unique<SpotlightFixture>(); // and serves the next one
    type("pear e", {"File"});
    QCOMPARE(f->rows(), QStringList({"# Files on this PC", "pear E.xls"}));
}

void SpotlightResultsTest::allGroupsInTheirOrder_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("calculator") << "8*8"
                                << QStringList{
                                       "# Calculator",       "8*8 = 64",
                                       "# Snippet",          "8*8 days",
                                       "# Installed Apps",   "8*8 Lab",
                                       "# Files on this PC", "8*8.txt",
                                       "# Web Search",       QStringLiteral("8*8 — Google Search")};
    QTest::newRow("engine") << "y q"
                            << QStringList{"# Snippet",
                                           "my quest",
                                           "# Installed Apps",
                                           "Fly Queen",
                                           "# Search on YouTube: q",
                                           QStringLiteral("q — YouTube"),
                                           "# Web Search",
                                           QStringLiteral("y q — Google Search")};
}

void SpotlightResultsTest::allGroupsInTheirOrder()
{
    QFETCH(QString, text);
    QFETCH(QStringList, expected);
    f->setItems({snippet("my quest"), snippet("8*8 days")});
    use("fly queen", 20); // usage moves nothing across groups
    use("8*8 lab", 20);
    type(text, {});
    QCOMPARE(f->rows(), expected);
    QCOMPARE(f->list()->currentRow(), 1);
}

void SpotlightResultsTest::webNeedsAllScopes_data()
{
    QTest::addColumn<QStringList>("scopes");
    QTest::newRow("URL") << QStringList{"URL"};
    QTest::newRow("Application") << QStringList{"Application"};
    QTest::newRow("Snippet and URL") << QStringList{"Snippet", "URL"};
    QTest::newRow("unknown") << QStringList{"Web"};
    QTest::newRow("empty key") << QStringList{""};
}

void SpotlightResultsTest::webNeedsAllScopes()
{
    QFETCH(QStringList, scopes);
    for (const char* text : {"y cats", "y ", "example.com ", "cats", "1+1"}) {
        type(QString::fromLatin1(text), scopes);
        QVERIFY(f->rows().filter("Search").isEmpty());
        QVERIFY(f->rows().filter("Open").isEmpty());
    }
    QCOMPARE(f->rows(), QStringList()); // and nothing has "1+1" in its name
    QVERIFY(f->panel()->isHidden());
    QTest::keyClick(f->field(), Qt::Key_Return);
    QVERIFY(f->window.isVisible());
    QVERIFY(!f->fade());
}

void SpotlightResultsTest::webRecords()
{
    const QMap<int, QVariant> common{{Delegate::RoleItemType, "URL"},
                                     {Delegate::RoleReserved, 0},
                                     {Delegate::RoleSynthetic, true},
                                     {Delegate::RoleGroupFirst, true},
                                     {Delegate::RoleGroupLast, true}};
    const auto with = [&common](const QString& token, const QString& url) {
        QMap<int, QVariant> record = common;
        record.insert(Delegate::RoleIconToken, token);
        record.insert(Delegate::RoleValue, url);
        return record;
    };
    type("y cats", {});
    QCOMPARE(recordOf(rowNamed(QStringLiteral("cats — YouTube"))),
             with("glyph:e684", "https://www.youtube.com/results?search_query=cats"));
    QCOMPARE(recordOf(rowNamed(QStringLiteral("y cats — Google Search"))),
             with("glyph:ef7a", "https://www.google.com/search?q=y%20cats"));
    type("example.com ", {});
    QCOMPARE(recordOf(rowNamed("Open example.com")), with("", "example.com"));
    QVERIFY(rowNamed("Open example.com")->flags().testFlag(Qt::ItemIsSelectable));
    QVERIFY(!rowNamed("Open example.com")->data(Qt::DecorationRole).isValid());
}

void SpotlightResultsTest::webLaunchLeavesNoTrace_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("downs");
    QTest::addColumn<QString>("opened");
    QTest::newRow("search") << "two cats" << 0 << "https://www.google.com/search?q=two%20cats";
    QTest::newRow("engine") << "y two cats" << 0
                            << "https://www.youtube.com/results?search_query=two%20cats";
    QTest::newRow("search behind the engine")
        << "y two cats" << 1 << "https://www.google.com/search?q=y%20two%20cats";
    QTest::newRow("search below a hint") << "y " << 1 << "https://www.google.com/search?q=y";
    QTest::newRow("address") << "Example.com/a " << 0 << "http://example.com/a";
    QTest::newRow("address with a port") << "localhost:8080/x " << 0 << "http://localhost:8080/x";
    QTest::newRow("address with a scheme") << "https://x " << 0 << "https://x";
    QTest::newRow("bytes") << "10.0.0.1 " << 0 << "http://10.0.0.1";
    QTest::newRow("special characters")
        << "a&b=%1#c" << 0 << "https://www.google.com/search?q=a%26b%3D%251%23c";
}

void SpotlightResultsTest::webLaunchLeavesNoTrace()
{
    QFETCH(QString, text);
    QFETCH(int, downs);
    QFETCH(QString, opened);
    const Browser browser;
    QFile::remove(UsageStats::filePath());
    type(text, {});
    for (int i = 0; i < downs; ++i)
        QTest::keyClick(f->field(), Qt::Key_Down);
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(browser.opened, QStringList{opened});
    QVERIFY(!QFile::exists(UsageStats::filePath()));
    QCOMPARE(f->field()->text(), QString());
    QTRY_VERIFY(f->window.isHidden());
}

void SpotlightResultsTest::engineGroups_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");
    const QString suffix = QStringLiteral(" — Google Search");
    QTest::newRow("query") << "y cats"
                           << QStringList{"# Search on YouTube: cats",
                                          QStringLiteral("cats — YouTube"), "# Web Search",
                                          "y cats" + suffix};
    QTest::newRow("upper case, blanks around it")
        << "  Y two cats "
        << QStringList{"# Search on YouTube: two cats", QStringLiteral("two cats — YouTube"),
                       "# Web Search", "Y two cats" + suffix};
    const QString hint = QStringLiteral("Type what to search…");
    const QStringList apps{"# Installed Apps", "Fly Queen"}; // it has a "y" in its name
    const QStringList web{"# Web Search", "y" + suffix};
    QTest::newRow("no query yet") << "y " << apps + QStringList{"# Search on YouTube", hint} + web;
    QTest::newRow("prefix alone") << "y" << apps + web;
    QTest::newRow("two blanks") << "y  " << apps + web;
    QTest::newRow("address as the query")
        << "y example.com "
        << QStringList{"# Search on YouTube: example.com", QStringLiteral("example.com — YouTube"),
                       "# Web Search", "y example.com" + suffix};
    QTest::newRow("address") << "example.com " << QStringList{"# Web Search", "Open example.com"};
    QTest::newRow("address without the blank")
        << "example.com" << QStringList{"# Web Search", "example.com" + suffix};
}

void SpotlightResultsTest::engineGroups()
{
    QFETCH(QString, text);
    show();
    f->field()->setText(text);
    QTEST(f->rows(), "expected");
}

void SpotlightResultsTest::engineHintIsPassive()
{
    const Browser browser;
    type("y ", {});
    QListWidgetItem* hint = rowNamed(QStringLiteral("Type what to search…"));
    const QMap<int, QVariant> record{{Delegate::RoleItemType, "URL"},
                                     {Delegate::RoleIconToken, "glyph:e684"},
                                     {Delegate::RoleIsHint, true},
                                     {Delegate::RoleGroupFirst, true},
                                     {Delegate::RoleGroupLast, true}};
    QCOMPARE(recordOf(hint), record);
    QCOMPARE(hint->flags(), Qt::ItemFlags(Qt::NoItemFlags));
    const QString search = QStringLiteral("y — Google Search");
    QCOMPARE(f->selected(), QStringLiteral("Fly Queen"));
    QTest::keyClick(f->field(), Qt::Key_Down);
    QCOMPARE(f->selected(), search);
    QTest::keyClick(f->field(), Qt::Key_Up);
    QCOMPARE(f->selected(), QStringLiteral("Fly Queen"));
    const QPoint centre = f->list()->visualItemRect(hint).center();
    doubleClick(f->list()->viewport(), centre);
    f->window.launchItem(hint);
    QCOMPARE(browser.opened, QStringList());
    QCOMPARE(f->selected(), QStringLiteral("Fly Queen"));
    QCOMPARE(f->field()->text(), QStringLiteral("y "));
    QVERIFY(!f->fade());
}

void SpotlightResultsTest::titlesKeepPlaceMarkers()
{
    type("y %2 %1", {});
    QCOMPARE(f->rows(),
             QStringList({"# Search on YouTube: %2 %1", QStringLiteral("%2 %1 — YouTube"),
                          "# Web Search", QStringLiteral("y %2 %1 — Google Search")}));
    type("wobble", {"Application"});
    QCOMPARE(f->rows(), QStringList({"# Installed Apps", "Wobble %1 Wheel"}));
}

void SpotlightResultsTest::ghost_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("ghost");
    QTest::newRow("engine") << "y "
                            << "Search on YouTube";
    QTest::newRow("engine in upper case") << "  Y "
                                          << "Search on YouTube";
    QTest::newRow("engine with a query") << "y c"
                                         << "";
    QTest::newRow("prefix alone") << "y"
                                  << "";
    QTest::newRow("two blanks") << "y  "
                                << "";
    QTest::newRow("other text") << "cats"
                                << "";
    QTest::newRow("blanks") << "   "
                            << "";
    QTest::newRow("empty") << ""
                           << "";
}

void SpotlightResultsTest::ghost()
{
    QFETCH(QString, text);
    QFETCH(QString, ghost);
    // In any scope: the ghost tells what the prefix means, whatever is listed then.
    for (const QStringList& scopes : {QStringList(), QStringList{"Snippet"}}) {
        show();
        f->field()->setText(QStringLiteral("y "));
        type(text, scopes);
        QTRY_VERIFY(f->field()->hasFocus());
        const QImage image = f->field()->grab().toImage();
        f->field()->setGhostText(ghost);
        QCOMPARE(f->field()->grab().toImage(), image);
        f->field()->setGhostText(ghost.isEmpty() ? QStringLiteral("another") : QString());
        QVERIFY(f->field()->grab().toImage() != image); // so that a picture does tell
        f->field()->setGhostText(ghost);
    }
}

void SpotlightResultsTest::languageOfWebGroups()
{
    Tr::currentLang = Lang::Ja;
    type("y q%1", {});
    QCOMPARE(f->rows(),
             QStringList({QStringLiteral("# YouTube で検索: q%1"), QStringLiteral("q%1 — YouTube"),
                          QStringLiteral("# Web 検索"), QStringLiteral("y q%1 — Google 検索")}));
    type("y ", {});
    QVERIFY(f->rows().contains(QStringLiteral("# YouTube で検索")));
    QVERIFY(f->rows().contains(QStringLiteral("検索する内容を入力…")));
    Tr::currentLang = Lang::Es;
    type("zeb", {});
    QCOMPARE(f->rows().constFirst(), QStringLiteral("# Aplicaciones instaladas"));
}

void SpotlightResultsTest::launchRunsRecordsAndHides()
{
    const LauncherElement item = snippet("note", "the value");
    f->setItems({item});
    type("note");
    QFile::remove(UsageStats::filePath());
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(clipboardText(), QStringLiteral("the value"));
    QVERIFY(UsageStats::scoreFor(item.id) > 0.9);
    QVERIFY(QFile::exists(UsageStats::filePath()));
    QCOMPARE(f->field()->text(), QString());
    QCOMPARE(f->rows(), QStringList());
    QVERIFY(f->fade());
    QTRY_VERIFY(f->window.isHidden());
}

void SpotlightResultsTest::launchTakesTheItemAsItIsNow()
{
    LauncherElement item = snippet("note", "old");
    f->setItems({snippet("first"), item});
    type("note");
    item.name = QStringLiteral("renamed");
    item.value = QStringLiteral("new");
    f->setItems({item});
    QCOMPARE(f->rows(), QStringList({"# Snippet", "note"})); // a change of the document is no query
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(clipboardText(), QStringLiteral("new"));
    QCOMPARE(UsageStats::scoreFor(item.id) > 0.9, true);
}

void SpotlightResultsTest::launchFindsAMovedItem()
{
    const LauncherElement item = snippet("note", "moved");
    f->setItems({item});
    type("note");
    const QString from = f->model.data().categories.at(0);
    QVERIFY(f->model.addCategory(QStringLiteral("Elsewhere"), 0xE2C7));
    QVERIFY(f->model.moveItemToCategory(from, item.id, QStringLiteral("Elsewhere")));
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(clipboardText(), QStringLiteral("moved"));
}

void SpotlightResultsTest::launchOfADeletedItem()
{
    const LauncherElement item = snippet("note", "gone");
    f->setItems({item, snippet("note too", "kept")});
    type("note");
    f->model.deleteItem(f->model.data().categories.at(0), item.id);
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(clipboardText(), QStringLiteral("before"));
    QCOMPARE(UsageStats::scoreFor(item.id), 0.0);
    QCOMPARE(f->field()->text(), QStringLiteral("note"));
    QCOMPARE(f->rows(), QStringList({"# Snippet", "note", "note too"}));
    QVERIFY(f->window.isVisible());
    QVERIFY(!f->fade());
}

void SpotlightResultsTest::launchThatFails()
{
    const LauncherElement item = makeItem("note", "Application", kMissingProgram);
    f->setItems({item});
    type("note", {"Teapot", "Application"});
    const QStringList rows = f->rows();
    const ModalDriver driver([](QWidget* box) { pressKey(*box, Qt::Key_Return); });
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(driver.count(), 1);
    QCOMPARE(UsageStats::scoreFor(item.id), 0.0);
    QCOMPARE(f->field()->text(), QStringLiteral("note"));
    QCOMPARE(f->rows(), rows);
    QVERIFY(f->window.isVisible());
    QVERIFY(!f->fade());
}

void SpotlightResultsTest::launchOfNoResult()
{
    f->setItems({snippet("note", "the value")});
    type("note");
    f->window.launchItem(nullptr);
    f->window.launchItem(f->list()->item(0));
    QListWidgetItem* item = f->list()->item(1);
    item->setData(Delegate::RoleIsHint, true);
    f->window.launchItem(item);
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(clipboardText(), QStringLiteral("before"));
    QCOMPARE(f->field()->text(), QStringLiteral("note"));
    QVERIFY(!f->fade());
    item->setData(Delegate::RoleIsHint, false);
    f->window.launchItem(item);
    QCOMPARE(clipboardText(), QStringLiteral("the value"));
}

void SpotlightResultsTest::launchCountsEveryTime()
{
    const QVector<LauncherElement> items{snippet("note 1"), snippet("note 2", "2")};
    f->setItems(items);
    for (int i = 1; i <= 3; ++i) {
        type("note", {"Snippet"});
        if (i == 1)
            QTest::keyClick(f->field(), Qt::Key_Down);
        QCOMPARE(f->selected(), QStringLiteral("note 2")); // once used, it leads
        QTest::keyClick(f->field(), Qt::Key_Return);
        QVERIFY(qAbs(UsageStats::scoreFor(items.at(1).id) - i) < 0.01);
        QTRY_VERIFY(f->window.isHidden());
    }
    QCOMPARE(UsageStats::scoreFor(items.at(0).id), 0.0);
}

void SpotlightResultsTest::clickSelectsDoubleClickLaunches()
{
    f->setItems({snippet("note 1", "1"), snippet("note 2", "2"), snippet("note 3", "3")});
    type("note");
    QWidget* rows = f->list()->viewport();
    const auto centreOf = [this](int row) {
        return f->list()->visualItemRect(f->list()->item(row)).center();
    };
    QTest::mouseClick(rows, Qt::LeftButton, Qt::NoModifier, centreOf(2));
    QCOMPARE(f->selected(), QStringLiteral("note 2"));
    QTest::mouseClick(rows, Qt::LeftButton, Qt::NoModifier, centreOf(3));
    QCOMPARE(f->selected(), QStringLiteral("note 3"));
    QTest::mouseClick(rows, Qt::LeftButton, Qt::NoModifier, centreOf(0)); // a header
    QCOMPARE(f->selected(), QStringLiteral("note 3"));
    QCOMPARE(clipboardText(), QStringLiteral("before"));
    QVERIFY(!f->fade());
    doubleClick(rows, centreOf(2));
    QCOMPARE(clipboardText(), QStringLiteral("2"));
    QTRY_VERIFY(f->window.isHidden());
}

void SpotlightResultsTest::doubleClickOnAHeader()
{
    f->setItems({snippet("note", "the value")});
    type("note");
    const QPoint header = f->list()->visualItemRect(f->list()->item(0)).center();
    doubleClick(f->list()->viewport(), header);
    QCOMPARE(clipboardText(), QStringLiteral("before"));
    QCOMPARE(f->selected(), QStringLiteral("note"));
    QVERIFY(!f->fade());
}

void SpotlightResultsTest::pointerLightsUpRows()
{
    f->setItems({snippet("note 1"), snippet("note 2"), snippet("note 3")});
    type("note");
    QWidget* rows = f->list()->viewport();
    const QRect second = f->list()->visualItemRect(f->list()->item(2));
    const auto isLit = [rows, second] {
        const QColor ground =
            rows->grab().toImage().pixelColor(second.right() - 20, second.center().y());
        return ground == QColor(Theme::boxActiveBg());
    };
    QVERIFY(!isLit());
    QTest::mouseMove(rows, second.center());
    QTRY_VERIFY(isLit());
    QCOMPARE(f->selected(), QStringLiteral("note 1")); // but selects nothing
    QTest::mouseMove(rows, second.center() + QPoint(0, Delegate::RowHeight));
    QTRY_VERIFY(!isLit());
}

void SpotlightResultsTest::bulkWithHotkeyDuringItsMessage()
{
    const LauncherElement item = makeItem("note", "Bulk", kMissingProgram);
    f->setItems({item, makeItem("note too", "Bulk")});
    type("note", {"Bulk"});
    bool wasReshown = false;
    // The rows that the running launch came from are gone twice by the time it goes on.
    const ModalDriver driver([this, &wasReshown](QWidget* box) {
        f->pressHotkey();
        QVERIFY(QTest::qWaitFor([this] { return f->window.isHidden(); }));
        f->pressHotkey();
        QCOMPARE(f->rows(), QStringList());
        f->field()->setText(QStringLiteral("no"));
        wasReshown = f->window.isVisible() && f->list()->count() > 0;
        QTest::keyClick(box, Qt::Key_Escape);
    });
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(driver.count(), 1);
    QVERIFY(wasReshown);
    QVERIFY(UsageStats::scoreFor(item.id) > 0.9);
    QCOMPARE(f->field()->text(), QString());
    QCOMPARE(f->rows(), QStringList());
    QTRY_VERIFY(f->window.isHidden());
}

void SpotlightResultsTest::failureWithHotkeyDuringItsMessage()
{
    const LauncherElement item = makeItem("note", "Application", kMissingProgram);
    f->setItems({item});
    type("note", {"Teapot", "Application"});
    const ModalDriver driver([this](QWidget* box) {
        f->pressHotkey();
        QVERIFY(QTest::qWaitFor([this] { return f->window.isHidden(); }));
        f->model.deleteItem(f->model.data().categories.at(0),
                            f->model.data().sectionElements.first().at(0).id);
        QTest::keyClick(box, Qt::Key_Escape);
    });
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(driver.count(), 1);
    QCOMPARE(UsageStats::scoreFor(item.id), 0.0);
    QVERIFY(f->window.isHidden());
    show();
    QVERIFY(f->window.isVisible());
    QCOMPARE(f->window.windowOpacity(), 1.0);
}

void SpotlightResultsTest::megabyteIntoTheField_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("letters") << QString(kMegabyte, u'x');
    QTest::newRow("digits") << QString(kMegabyte, u'9');
    QTest::newRow("sum") << QStringLiteral("1+").repeated(kMegabyte / 2);
    QTest::newRow("parentheses") << (u'1' + QString(kMegabyte, u'('));
    QTest::newRow("signs") << (u'1' + QString(kMegabyte, u'-'));
    QTest::newRow("line feeds") << QString(kMegabyte, u'\n');
    QTest::newRow("right to left") << QStringLiteral("של").repeated(kMegabyte / 2);
    QTest::newRow("beyond the basic plane") << QStringLiteral("\U0001F980").repeated(kMegabyte / 2);
    QTest::newRow("combining marks") << QStringLiteral("e\u0301").repeated(kMegabyte / 2);
}

void SpotlightResultsTest::megabyteIntoTheField()
{
    QFETCH(QString, text);
    f->setItems({snippet("note", "the value")});
    show();
    QGuiApplication::clipboard()->setText(text);
    QTest::keyClick(f->field(), Qt::Key_V, Qt::ControlModifier);
    QVERIFY(f->field()->text().size() > 0);
    QVERIFY(f->field()->text().size() <= kFieldLimit);
    QVERIFY(!f->window.grab().isNull());
    QCOMPARE(f->window.width(), int(SpotlightWindow::WINDOW_WIDTH));
    f->window.setScopeKeys({"Snippet"});
    QCOMPARE(f->rows(), QStringList());
    f->field()->setText(QStringLiteral("note"));
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(clipboardText(), QStringLiteral("the value"));
}

void SpotlightResultsTest::megabyteAsAnItem()
{
    const QString text(kMegabyte, u'x');
    f->setItems({snippet(QStringLiteral("zz") + text, text)});
    type("zz", {"Snippet"});
    QCOMPARE(f->list()->count(), 1);
    QVERIFY(!f->window.grab().isNull());
    QTest::keyClick(f->field(), Qt::Key_Return);
    QCOMPARE(clipboardText(), text);
}

QTEST_MAIN(SpotlightResultsTest)
#include "tst_spotlightresults.moc"
