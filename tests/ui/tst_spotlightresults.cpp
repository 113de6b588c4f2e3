// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Localization.h"
#include "Pixels.h"
#include "SpotlightFixture.h"
#include "UiDriver.h"
#include "UsageStats.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>
#include <QTest>

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

void use(const LauncherElement& element, int times)
{
    for (int i = 0; i < times; ++i)
        UsageStats::record(element.id);
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
    void rebuildSelectsTheFirstResult();
    void rebuildStartsAtTheTop();
    void languageOfHeaders();

    void rowRecords();
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

    std::unique_ptr<SpotlightFixture> f;
};

void SpotlightResultsTest::init()
{
    Theme::forceTheme = kLight;
    Tr::currentLang = Lang::En;
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    f = std::make_unique<SpotlightFixture>();
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
    type("   ", {});
    QVERIFY(!f->rows().contains(QStringLiteral("# Calculator")));
    QVERIFY(!f->rows().contains(QStringLiteral("# Snippet")));
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
    QCOMPARE(f->rows().value(0), QStringLiteral("# Calculator"));
    for (int row = 0; row < f->list()->count(); ++row) {
        const QString token = f->list()->item(row)->data(Delegate::RoleIconToken).toString();
        QVERIFY(token != QStringLiteral("glyph:ea5f"));
    }
    QVERIFY(f->panel()->isVisible());
    QCOMPARE(f->panel()->height(), 328);
    QVERIFY(f->list()->currentRow() != 0);
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
        QCOMPARE(f->selected(), QStringLiteral("2+3 days"));
    }
}

void SpotlightResultsTest::calculatorNeedsADigit()
{
    for (const char* text : {"-2+3", "(2+3)", "pi", "+1", ".5+1"}) {
        type(QString::fromLatin1(text), {});
        QVERIFY(!f->rows().contains(QStringLiteral("# Calculator")));
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
