// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Browser.h"
#include "Localization.h"
#include "SpotlightSearchTest.h"
#include "UsageStats.h"

#include <QApplication>
#include <QClipboard>
#include <QTest>

namespace
{

constexpr int kFieldLimit = 32767; // what a line edit holds
constexpr qsizetype kMegabyte = 1024 * 1024;

} // namespace

class SpotlightResultsTest : public QObject, protected SpotlightSearchTest
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();
    void cleanup();

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
    void languageOfHeaders();

    void calculatorComesFirst();
    void calculatorRecords();
    void calculatorHeaderStandsAlone_data();
    void calculatorHeaderStandsAlone();
    void calculatorNeedsAllScopes();
    void calculatorNeedsADigit();
    void calculatorLaunchCopiesTheValue();

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

    void megabyteIntoTheField_data();
    void megabyteIntoTheField();
    void megabyteAsAnItem();

private:
    using SpotlightSearchTest::use;
    static void use(const LauncherElement& element, int times) { use(element.id, times); }
    QStringList rowsUpToOwn() const;
};

void SpotlightResultsTest::initTestCase()
{
    QApplication::setCursorFlashTime(0); // a ghost is compared with a picture of the field
    installMachine();
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

void SpotlightResultsTest::init()
{
    makeSpotlight();
    waitForIndexes();
}

void SpotlightResultsTest::cleanup()
{
    f.reset();
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

void SpotlightResultsTest::languageOfHeaders()
{
    f->setItems({snippet("1 note"), makeItem("1 site", "URL")});
    Tr::currentLang = Lang::Es;
    type("1", {});
    QCOMPARE(rowsUpToOwn(),
             QStringList({QStringLiteral("# Calculadora"), QStringLiteral("# Fragmento"), "1 note",
                          QStringLiteral("# Marcador web"), "1 site"}));
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
