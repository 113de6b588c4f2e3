// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ItemImages.h"
#include "Pixels.h"
#include "SpotlightTest.h"
#include "UiDriver.h"
#include "UsageStats.h"

#include <QClipboard>
#include <QScrollBar>
#include <QTest>

namespace
{

const QString kMissingProgram = QStringLiteral("/no/such/place/program.exe");

} // namespace

class SpotlightRowsTest : public QObject, protected SpotlightTest
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void arrowsSkipHeaders();
    void arrowsStopAtTheEnds();
    void arrowsWithoutSelection();
    void arrowsWithoutRows();
    void moveSelectionByNothing();
    void hintsAreSkipped();
    void returnKeysLaunch_data();
    void returnKeysLaunch();
    void returnWithoutRowDoesNothing();

    void rebuildSelectsTheFirstResult();
    void rebuildStartsAtTheTop();

    void rowRecords();
    void rowIsPaintedAgainOnceItsPictureIsRead();
    void headerRecords();
    void groupEdges();
    void rowsKeepStrangeNames_data();
    void rowsKeepStrangeNames();
    void rowsStayInsideThePanel();

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
};

void SpotlightRowsTest::init()
{
    makeSpotlight();
    waitForIndexes();
}

void SpotlightRowsTest::cleanup()
{
    f.reset();
}

void SpotlightRowsTest::arrowsSkipHeaders()
{
    fill();
    QCOMPARE(f->list()->currentRow(), 1);
    for (const int expected : {2, 4, 5}) {
        QTest::keyClick(f->field(), Qt::Key_Down);
        QCOMPARE(f->list()->currentRow(), expected);
    }
    for (const int expected : {4, 2, 1}) {
        QTest::keyClick(f->field(), Qt::Key_Up);
        QCOMPARE(f->list()->currentRow(), expected);
    }
}

void SpotlightRowsTest::arrowsStopAtTheEnds()
{
    fill();
    QTest::keyClick(f->field(), Qt::Key_Up); // only a header stands above
    QCOMPARE(f->list()->currentRow(), 1);
    QCOMPARE(f->selected(), QStringLiteral("note one"));
    f->list()->setCurrentRow(5);
    QTest::keyClick(f->field(), Qt::Key_Down);
    QCOMPARE(f->list()->currentRow(), 5);
    f->window.setScopeKeys({"URL"}); // no header at all
    QCOMPARE(f->list()->currentRow(), 0);
    QTest::keyClick(f->field(), Qt::Key_Up);
    QCOMPARE(f->list()->currentRow(), 0);
    QCOMPARE(f->selected(), QStringLiteral("note three"));
}

void SpotlightRowsTest::arrowsWithoutSelection()
{
    fill();
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up}) {
        f->list()->setCurrentRow(-1);
        QTest::keyClick(f->field(), key);
        QCOMPARE(f->list()->currentRow(), 1);
    }
}

void SpotlightRowsTest::arrowsWithoutRows()
{
    show();
    QTest::keyClicks(f->field(), QStringLiteral("x"));
    f->window.setScopeKeys({"Snippet"});
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up}) {
        QTest::keyClick(f->field(), key);
        QCOMPARE(f->list()->currentRow(), -1);
    }
    QCOMPARE(f->field()->cursorPosition(), 1); // consumed, not handed to the field
    auto* header = new QListWidgetItem(QStringLiteral("alone"), f->list());
    header->setData(SpotlightResultDelegate::RoleIsHeader, true);
    header->setFlags(Qt::NoItemFlags);
    QTest::keyClick(f->field(), Qt::Key_Down);
    QCOMPARE(f->list()->currentRow(), -1);
}

void SpotlightRowsTest::moveSelectionByNothing()
{
    fill();
    f->list()->setCurrentRow(-1);
    f->window.moveSelection(0);
    QCOMPARE(f->list()->currentRow(), -1);
}

void SpotlightRowsTest::hintsAreSkipped()
{
    fill();
    f->list()->item(2)->setData(SpotlightResultDelegate::RoleIsHint, true);
    QTest::keyClick(f->field(), Qt::Key_Down);
    QCOMPARE(f->list()->currentRow(), 4);
    QTest::keyClick(f->field(), Qt::Key_Up);
    QCOMPARE(f->list()->currentRow(), 1);
}

void SpotlightRowsTest::returnKeysLaunch_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("Return") << Qt::Key_Return << Qt::KeyboardModifiers(Qt::NoModifier);
    QTest::newRow("Enter") << Qt::Key_Enter << Qt::KeyboardModifiers(Qt::KeypadModifier);
    QTest::newRow("Shift+Return") << Qt::Key_Return << Qt::KeyboardModifiers(Qt::ShiftModifier);
}

void SpotlightRowsTest::returnKeysLaunch()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    fill();
    QTest::keyClick(f->field(), Qt::Key_Down);
    QTest::keyClick(f->field(), key, modifiers);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("2"));
    QTRY_VERIFY(f->window.isHidden());
}

void SpotlightRowsTest::returnWithoutRowDoesNothing()
{
    show();
    QTest::keyClick(f->field(), Qt::Key_Return);
    QTest::keyClicks(f->field(), QStringLiteral("x"));
    f->list()->clear();
    QTest::keyClick(f->field(), Qt::Key_Enter);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
    QCOMPARE(f->field()->text(), QStringLiteral("x"));
    QVERIFY(!f->fade());
    QVERIFY(f->window.isVisible());
}

void SpotlightRowsTest::rebuildSelectsTheFirstResult()
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

void SpotlightRowsTest::rebuildStartsAtTheTop()
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

void SpotlightRowsTest::rowRecords()
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

void SpotlightRowsTest::rowIsPaintedAgainOnceItsPictureIsRead()
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

void SpotlightRowsTest::headerRecords()
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

void SpotlightRowsTest::groupEdges()
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

void SpotlightRowsTest::rowsKeepStrangeNames_data()
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

void SpotlightRowsTest::rowsKeepStrangeNames()
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

void SpotlightRowsTest::rowsStayInsideThePanel()
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

void SpotlightRowsTest::launchRunsRecordsAndHides()
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

void SpotlightRowsTest::launchTakesTheItemAsItIsNow()
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

void SpotlightRowsTest::launchFindsAMovedItem()
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

void SpotlightRowsTest::launchOfADeletedItem()
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

void SpotlightRowsTest::launchThatFails()
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

void SpotlightRowsTest::launchOfNoResult()
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

void SpotlightRowsTest::launchCountsEveryTime()
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

void SpotlightRowsTest::clickSelectsDoubleClickLaunches()
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

void SpotlightRowsTest::doubleClickOnAHeader()
{
    f->setItems({snippet("note", "the value")});
    type("note");
    const QPoint header = f->list()->visualItemRect(f->list()->item(0)).center();
    doubleClick(f->list()->viewport(), header);
    QCOMPARE(clipboardText(), QStringLiteral("before"));
    QCOMPARE(f->selected(), QStringLiteral("note"));
    QVERIFY(!f->fade());
}

void SpotlightRowsTest::pointerLightsUpRows()
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

void SpotlightRowsTest::bulkWithHotkeyDuringItsMessage()
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

void SpotlightRowsTest::failureWithHotkeyDuringItsMessage()
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

QTEST_MAIN(SpotlightRowsTest)
#include "tst_spotlightrows.moc"
