// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "EventCounter.h"
#include "FakeFileSystem.h"
#include "FileIndex.h"
#include "FolderFilter.h"
#include "FolderPickerDialog.h"
#include "Pixels.h"
#include "SpotlightTest.h"
#include "TestScreens.h"
#include "ToolTips.h"
#include "UiDriver.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QListWidget>
#include <QMenu>
#include <QPointer>
#include <QTest>
#include <QVBoxLayout>

#include <functional>

namespace
{

const QString kAndRemove = QStringLiteral("\nRemove this filter");

QString native(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

/// A folder of the made-up home.
QString homeFolder(const QString& name)
{
    return FileIndex::rootPath() + QDir::separator() + native(name);
}

QByteArray filterContent()
{
    QFile file(FolderFilter::filePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Chooses the last row of the menu that is open.
void chooseFolders(QMenu* menu)
{
    QAction* row = menu->actions().constLast();
    clickAt(menu, menu->mapToGlobal(menu->actionGeometry(row).center()));
}

/// The row of a folder in the picker.
QListWidgetItem* rowOf(QWidget* picker, const QString& folder)
{
    auto* list = picker->findChild<QListWidget*>();
    for (int row = 0; row < list->count(); ++row) {
        if (list->item(row)->data(Qt::UserRole).toString() == folder)
            return list->item(row);
    }
    qFatal("no row for %s", qPrintable(folder));
}

} // namespace

/// Limiting the file results to folders: the chips of Spotlight and the way to its picker.
class SpotlightFoldersTest : public QObject, protected SpotlightTest
{
    Q_OBJECT

public:
    static void initMain()
    {
        TestHome::install();
        TestScreens::install();
    }

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void chipNames_data();
    void chipNames();
    void everyFolderHasAChip();
    void chipsOfFoldersFollowThoseOfScopes();
    void chipLook();
    void chipSaysWhereItsFolderIs_data();
    void chipSaysWhereItsFolderIs();
    void longNamesAreElided_data();
    void longNamesAreElided();
    void chipsWrapOntoThreeLines();
    void chipsStopWhereNobodySeesThem();
    void chipsLastOverShows();
    void aShowMakesTheChipsOnce();
    void clickedChipRemovesItsFolder();
    void removedFolderRebuildsTheResults();
    void strangeFoldersNarrow_data();
    void strangeFoldersNarrow();
    void removingTakesEveryEqualPath();
    void removingWhatIsNotThereChangesNothing();
    void backspaceLeavesFolders();

    void menuEndsInTheRowOfFolders();
    void menuRowOpensThePicker_data();
    void menuRowOpensThePicker();
    void menuRowDropsTheMarks();
    void acceptedChoiceNarrows();
    void rejectedChoiceChangesNothing();
    void allFoldersRemoveEveryChip();
    void choiceIsKept();
    void pickerKeepsTheWindow();
    void pickerWhileTheWindowIsHidden();
    void pickerStandsOnTheStrip();
    void dialogIsAligned_data();
    void dialogIsAligned();

private:
    /// Shows the window with the search limited to these folders.
    void limitTo(const QStringList& folders)
    {
        FolderFilter::setFolders(folders);
        show();
    }

    /// Opens the menu by its key, and from there the picker, and does something to that.
    void pick(const std::function<void(QWidget*)>& act)
    {
        const ModalDriver picker([&act](QWidget* modal) {
            QVERIFY(qobject_cast<FolderPickerDialog*>(modal));
            act(modal);
        });
        const MenuDriver menu(&chooseFolders);
        QTest::keyClick(f->field(), Qt::Key_F4);
        QVERIFY(menu.hasClosed());
        QCOMPARE(picker.count(), 1);
    }
};

void SpotlightFoldersTest::initTestCase()
{
    FakeFileSystem::add({"Docs/plan.txt", "Docs/sub/plan b.txt", "Music/plan.mp3", "plan.md"});
}

void SpotlightFoldersTest::init()
{
    FolderFilter::setFolders({});
    makeSpotlight();
    waitForIndexes();
}

void SpotlightFoldersTest::cleanup()
{
    f.reset();
}

void SpotlightFoldersTest::chipNames_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("text");
    const QString root = native(QDir::rootPath());
    QTest::newRow("folder") << homeFolder("Docs") << "Docs";
    QTest::newRow("folder in a folder") << homeFolder("Docs/sub") << "sub";
    QTest::newRow("separator at its end") << homeFolder("Docs/") << "Docs";
    QTest::newRow("separators alone") << homeFolder("Docs//") << homeFolder("Docs//");
    QTest::newRow("a root, which has no name") << root << root;
    QTest::newRow("gone") << homeFolder("never was") << "never was";
    QTest::newRow("a file") << homeFolder("plan.md") << "plan.md";
    QTest::newRow("no path") << "just a name"
                             << "just a name";
    QTest::newRow("blank") << homeFolder(" ") << " ";
    QTest::newRow("ampersand") << homeFolder("R&D && Co") << "R&&D &&&& Co"; // shown as R&D && Co
    QTest::newRow("markup") << homeFolder("<b>bold<i>") << "<b>bold<i>";
    QTest::newRow("line feed") << homeFolder("two\nlines") << "two lines";
    QTest::newRow("other line ends") << homeFolder(QStringLiteral("a\u2028b\u2029c")) << "a b c";
    QTest::newRow("no ASCII") << homeFolder(QStringLiteral("ピクチャ"))
                              << QStringLiteral("ピクチャ");
    QTest::newRow("right to left")
        << homeFolder(QStringLiteral("\u202Eabc")) << QStringLiteral("\u202Eabc");
}

void SpotlightFoldersTest::chipNames()
{
    QFETCH(QString, folder);
    QFETCH(QString, text);
    limitTo({folder});
    QCOMPARE(f->chipTexts(), QStringList{text});
    QVERIFY(f->chipRow()->isVisible());
    QCOMPARE(f->window.height(), kEmptyHeight + 18 + kOneChipRow);
    const GlyphButton* chip = f->chips().constFirst();
    const QString shown = QString(text).replace("&&", "&");
    QCOMPARE(chip->width(), chip->fontMetrics().horizontalAdvance(shown) + 64);
    QVERIFY(chip->shortcut().isEmpty());
}

void SpotlightFoldersTest::everyFolderHasAChip()
{
    limitTo({homeFolder("b"), homeFolder("a"), homeFolder("B"), homeFolder("a")});
    QCOMPARE(f->chipTexts(), QStringList({"b", "a", "B", "a"})); // in the order of the list
}

void SpotlightFoldersTest::chipsOfFoldersFollowThoseOfScopes()
{
    limitTo({homeFolder("Docs"), homeFolder("Music")});
    f->window.setScopeKeys({"Snippet", "File"});
    QCOMPARE(f->chipTexts(), QStringList({"File", "Snippet", "Docs", "Music"}));
    f->window.removeScope(QStringLiteral("File"));
    QCOMPARE(f->chipTexts(), QStringList({"Snippet", "Docs", "Music"}));
}

void SpotlightFoldersTest::chipLook()
{
    limitTo({homeFolder("Docs")});
    GlyphButton* chip = f->chips().constFirst();
    QTRY_VERIFY(chip->isVisible());
    QCOMPARE(chip->parentWidget(), f->chipRow());
    QCOMPARE(chip->focusPolicy(), Qt::NoFocus);
    QCOMPARE(chip->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(chip->pos(), QPoint(8, 0));
    GlyphButton expected(QString(), f->chipRow());
    PillStyle::applyFilterChip(&expected, 0xE2C7, QStringLiteral("Docs"));
    QCOMPARE(Pixels::imageOf(*chip), Pixels::imageOf(expected));
}

void SpotlightFoldersTest::chipSaysWhereItsFolderIs_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("toolTip");
    const auto row = [](const char* name, const QString& folder) {
        QTest::newRow(name) << folder << folder + kAndRemove;
    };
    row("folder", homeFolder("Docs"));
    row("root", native(QDir::rootPath()));
    row("separator at its end", homeFolder("Docs/"));
    row("ampersand", homeFolder("R&D"));
    QTest::newRow("markup") << QStringLiteral("<b>x</b>")
                            << "<p>&lt;b&gt;x&lt;/b&gt;<br>\nRemove this filter</p>";
    QTest::newRow("very long") << QString(100000, u'x')
                               << QString(ToolTips::MaxLength, u'x') + QStringLiteral("…");
}

void SpotlightFoldersTest::chipSaysWhereItsFolderIs()
{
    QFETCH(QString, folder);
    limitTo({folder});
    QTEST(f->chips().constFirst()->toolTip(), "toolTip");
}

void SpotlightFoldersTest::longNamesAreElided_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a little too long") << QString(80, u'n');
    QTest::newRow("as long as names get") << QString(255, u'n');
    QTest::newRow("a megabyte") << QString(1024 * 1024, u'n');
    QTest::newRow("a megabyte of ampersands") << QString(1024 * 1024, u'&');
}

void SpotlightFoldersTest::longNamesAreElided()
{
    QFETCH(QString, name);
    limitTo({homeFolder("Docs"), homeFolder(name)});
    const GlyphButton* chip = f->chips().at(1);
    QVERIFY(chip->text().endsWith(QStringLiteral("…")));
    QVERIFY2(chip->width() <= 420 + 64, qPrintable(QString::number(chip->width())));
    QVERIFY2(chip->width() > 420 + 64 - 30, qPrintable(QString::number(chip->width())));
    QCOMPARE(f->window.width(), SpotlightWindow::WINDOW_WIDTH);
    QTRY_COMPARE(chip->y(), kOneChipRow + 8); // on a line of its own
    // The row holds it whole, with what there is left of the margins shared.
    QVERIFY(f->chipRow()->rect().contains(chip->geometry()));
    QCOMPARE(chip->x(), qBound(0, (484 - chip->width()) / 2, 8));
    f->window.removeFolder(homeFolder(name));
    QTRY_COMPARE(f->chips().constFirst()->pos(), QPoint(8, 0));
}

void SpotlightFoldersTest::chipsWrapOntoThreeLines()
{
    QStringList folders;
    for (const char* name : {"one", "two", "three"})
        folders << homeFolder(QString::fromLatin1(name) + QString(30, u'n'));
    limitTo(folders);
    QTRY_VERIFY(f->chips().constLast()->isVisible());
    for (int i = 0; i < 3; ++i)
        QCOMPARE(f->chips().at(i)->pos(), QPoint(8, i * (kOneChipRow + 8)));
    QCOMPARE(f->chipRow()->geometry(), QRect(18, 80, 484, 3 * kOneChipRow + 2 * 8));
    QCOMPARE(f->window.height(), kEmptyHeight + 18 + 3 * kOneChipRow + 2 * 8);
    QTest::mouseClick(f->chips().at(1), Qt::LeftButton);
    QCOMPARE(f->window.height(), kEmptyHeight + 18 + 2 * kOneChipRow + 8);
}

void SpotlightFoldersTest::chipsStopWhereNobodySeesThem()
{
    QStringList folders;
    QStringList names;
    for (int i = 0; i < 5000; ++i) {
        names << QStringLiteral("f%1").arg(i);
        folders << homeFolder(names.constLast());
    }
    limitTo(folders.mid(0, 60));
    QCOMPARE(f->chipTexts(), names.mid(0, 60)); // on a dozen lines
    f->window.hide();
    limitTo(folders);
    const qsizetype made = f->chips().size();
    QVERIFY2(made < 300, qPrintable(QString::number(made)));
    QCOMPARE(f->chipTexts(), names.mid(0, made));
    QVERIFY(f->chipRow()->height() >= screenArea().height()); // no gap at the end
    QVERIFY2(f->window.height() < 3 * screenArea().height(),
             qPrintable(QString::number(f->window.height())));
    QTest::mouseClick(f->chips().constFirst(), Qt::LeftButton);
    QCOMPARE(FolderFilter::folders(), folders.mid(1));
    QVERIFY(f->chips().size() >= made - 1); // later ones have wider names
    QCOMPARE(f->chipTexts(), names.mid(1, f->chips().size()));
    f->window.hide();
    limitTo(folders.mid(4990)); // they come as others go
    QCOMPARE(f->chipTexts(), names.mid(4990));
}

void SpotlightFoldersTest::chipsLastOverShows()
{
    limitTo({homeFolder("Docs")});
    f->window.setScopeKeys({"File"});
    f->pressHotkey();
    QTRY_VERIFY(f->window.isHidden());
    show();
    QCOMPARE(f->chipTexts(), QStringList{"Docs"}); // unlike those of scopes
    QCOMPARE(f->window.height(), kEmptyHeight + 18 + kOneChipRow);
    f = nullptr;
    makeSpotlight();
    show();
    QCOMPARE(f->chipTexts(), QStringList{"Docs"}); // from the start on
}

void SpotlightFoldersTest::aShowMakesTheChipsOnce()
{
    FolderFilter::setFolders({homeFolder("Documents"), homeFolder("Music")});
    for (int round = 0; round < 2; ++round) {
        const EventCounter made(f->chipRow(), QEvent::ChildAdded);
        show();
        QCOMPARE(f->chips().size(), 2);
        QCOMPARE(made.count, 2);
        f->window.hide();
    }
}

void SpotlightFoldersTest::clickedChipRemovesItsFolder()
{
    limitTo({homeFolder("Docs"), homeFolder("Music"), homeFolder("Gone")});
    QTest::keyClicks(f->field(), QStringLiteral("plan"));
    const QPointer<GlyphButton> clicked = f->chips().at(1);
    QTest::mouseClick(clicked, Qt::LeftButton);
    QCOMPARE(f->chipTexts(), QStringList({"Docs", "Gone"}));
    QTRY_VERIFY(!clicked);
    QCOMPARE(FolderFilter::folders(), QStringList({homeFolder("Docs"), homeFolder("Gone")}));
    QCOMPARE(filterContent(), FolderFilter::toBytes({homeFolder("Docs"), homeFolder("Gone")}));
    QVERIFY(f->window.isVisible());
    QVERIFY(f->field()->hasFocus());
    QCOMPARE(f->field()->text(), QStringLiteral("plan"));
}

void SpotlightFoldersTest::removedFolderRebuildsTheResults()
{
    limitTo({homeFolder("docs"), homeFolder("Music")}); // whatever the case
    f->window.setScopeKeys({"File"});
    f->field()->setText(QStringLiteral("plan"));
    QCOMPARE(f->rows(), QStringList({"# Files on this PC", "plan.mp3", "plan.txt", "plan b.txt"}));
    f->window.removeFolder(homeFolder("docs"));
    QCOMPARE(f->rows(), QStringList({"# Files on this PC", "plan.mp3"}));
    f->window.removeFolder(homeFolder("Music"));
    QCOMPARE(f->rows(),
             QStringList({"# Files on this PC", "plan.md", "plan.mp3", "plan.txt", "plan b.txt"}));
    QCOMPARE(filterContent(), QByteArray("[]"));
    QCOMPARE(f->field()->text(), QStringLiteral("plan"));
    QCOMPARE(f->chipTexts(), QStringList{"File"});
}

void SpotlightFoldersTest::strangeFoldersNarrow_data()
{
    QTest::addColumn<QStringList>("folders");
    QTest::addColumn<QStringList>("found");
    const QStringList none;
    const QStringList docs{"plan.txt", "plan b.txt"};
    const QStringList all{"plan.md", "plan.mp3", "plan.txt", "plan b.txt"};
    const QString separator(QDir::separator());
    QTest::newRow("other case") << QStringList{homeFolder("Docs").toUpper()} << docs;
    QTest::newRow("separator at its end") << QStringList{homeFolder("Docs") + separator} << docs;
    QTest::newRow("two separators at its end")
        << QStringList{homeFolder("Docs") + separator + separator} << none;
    QTest::newRow("the root") << QStringList{native(QDir::rootPath())} << all;
    QTest::newRow("the home") << QStringList{FileIndex::rootPath()} << all;
    QTest::newRow("above the home")
        << QStringList{native(QFileInfo(FileIndex::rootPath()).path())} << all;
    QTest::newRow("gone") << QStringList{homeFolder("Gone")} << none;
    // What a link leads to isn't listed under the link, so a link is like a folder that is gone.
    QTest::newRow("a link, or another name of a folder")
        << QStringList{homeFolder("Docs/../Docs")} << none;
    QTest::newRow("a file") << QStringList{homeFolder("plan.md")} << none;
    QTest::newRow("the beginning of a name") << QStringList{homeFolder("Doc")} << none;
    QTest::newRow("no path") << QStringList{"Docs"} << none;
    QTest::newRow("gone beside one that is there")
        << QStringList{homeFolder("Gone"), homeFolder("Docs")} << docs;
    QTest::newRow("one in another")
        << QStringList{homeFolder("Docs/sub"), homeFolder("Docs")} << docs;
}

void SpotlightFoldersTest::strangeFoldersNarrow()
{
    QFETCH(QStringList, folders);
    QFETCH(QStringList, found);
    limitTo(folders);
    f->window.setScopeKeys({"File"});
    f->field()->setText(QStringLiteral("plan"));
    QCOMPARE(f->rows(), found.isEmpty() ? found : QStringList("# Files on this PC") + found);
    QCOMPARE(f->chips().size(), folders.size() + 1);
    QCOMPARE(FolderFilter::folders(), folders); // kept as they are
    QTest::mouseClick(f->chips().constLast(), Qt::LeftButton);
    QCOMPARE(FolderFilter::folders(), folders.mid(0, folders.size() - 1));
}

void SpotlightFoldersTest::removingTakesEveryEqualPath()
{
    limitTo({homeFolder("a"), homeFolder("b"), homeFolder("a"), homeFolder("A")});
    QTest::mouseClick(f->chips().at(0), Qt::LeftButton);
    QCOMPARE(FolderFilter::folders(), QStringList({homeFolder("b"), homeFolder("A")}));
    QCOMPARE(f->chipTexts(), QStringList({"b", "A"}));
}

void SpotlightFoldersTest::removingWhatIsNotThereChangesNothing()
{
    limitTo({homeFolder("Docs")});
    type(QStringLiteral("plan"), {"File"});
    f->list()->setCurrentRow(2);
    const QVector<GlyphButton*> chips = f->chips();
    QVERIFY(QFile::remove(FolderFilter::filePath()));
    for (const QString& path :
         {homeFolder("Music"), homeFolder("docs"), homeFolder("Docs/"), QString()})
        f->window.removeFolder(path);
    QCOMPARE(f->chips(), chips);
    QCOMPARE(f->list()->currentRow(), 2);
    QVERIFY(!QFile::exists(FolderFilter::filePath())); // nor is anything written
}

void SpotlightFoldersTest::backspaceLeavesFolders()
{
    limitTo({homeFolder("Docs"), homeFolder("Music")});
    f->window.setScopeKeys({"Snippet", "File"});
    for (int i = 0; i < 2; ++i)
        QTest::keyClick(f->field(), Qt::Key_Backspace);
    QCOMPARE(f->chipTexts(), QStringList({"Docs", "Music"}));
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(f->field(), Qt::Key_Backspace);
    QCOMPARE(f->chipTexts(), QStringList({"Docs", "Music"}));
    QCOMPARE(FolderFilter::count(), 2);
    QVERIFY(f->window.isVisible());
    QVERIFY(!f->fade());
}

void SpotlightFoldersTest::menuEndsInTheRowOfFolders()
{
    show();
    QStringList texts;
    int rows = 0;
    bool isSeparated = false;
    const MenuDriver driver([&](QMenu* menu) {
        for (const QAction* action : menu->actions())
            texts.append(action->text());
        rows = int(menu->actions().size());
        isSeparated = menu->actions().at(rows - 2)->isSeparator();
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(driver.hasClosed());
    QCOMPARE(rows, 8); // six scopes, a line, and this one
    QVERIFY(isSeparated);
    QCOMPARE(texts.constLast(), QStringLiteral("Limit to folders..."));
}

void SpotlightFoldersTest::menuRowOpensThePicker_data()
{
    QTest::addColumn<int>("key"); // 0 for a click
    QTest::newRow("click") << 0;
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

void SpotlightFoldersTest::menuRowOpensThePicker()
{
    QFETCH(int, key);
    show();
    QTest::keyClicks(f->field(), QStringLiteral("plan"));
    const ModalDriver picker([](QWidget* modal) {
        QVERIFY(qobject_cast<FolderPickerDialog*>(modal));
        pressKey(*modal, Qt::Key_Escape);
    });
    const MenuDriver menu([key](QMenu* open) {
        if (key == 0) {
            chooseFolders(open);
            return;
        }
        QTest::keyClick(open, Qt::Key_Up); // from none to the last
        QTest::keyClick(open, Qt::Key(key));
    });
    QTest::mouseClick(f->filterButton(), Qt::LeftButton);
    QVERIFY(menu.hasClosed());
    QCOMPARE(picker.count(), 1);
    QCOMPARE(f->window.focusWidget(), f->field());
    QCOMPARE(f->field()->text(), QStringLiteral("plan"));
}

void SpotlightFoldersTest::menuRowDropsTheMarks()
{
    show();
    f->window.setScopeKeys({"File"});
    const ModalDriver picker([](QWidget* modal) { pressKey(*modal, Qt::Key_Return); });
    const MenuDriver menu([](QMenu* open) {
        clickAt(open, open->mapToGlobal(open->actionGeometry(open->actions().at(0)).center()));
        chooseFolders(open);
    });
    QTest::keyClick(f->field(), Qt::Key_F4);
    QVERIFY(menu.hasClosed());
    QCOMPARE(picker.count(), 1);
    QCOMPARE(f->chipTexts(), QStringList{"File"});
}

void SpotlightFoldersTest::acceptedChoiceNarrows()
{
    limitTo({homeFolder("Docs"), homeFolder("Music")});
    f->window.setScopeKeys({"File"});
    QTest::keyClicks(f->field(), QStringLiteral("plan"));
    QCOMPARE(f->rows().size(), 4);
    pick([](QWidget* picker) {
        rowOf(picker, homeFolder("Docs"))->setSelected(false);
        pressKey(*picker, Qt::Key_Return);
    });
    QCOMPARE(FolderFilter::folders(), QStringList{homeFolder("Music")});
    QCOMPARE(filterContent(), FolderFilter::toBytes({homeFolder("Music")}));
    QCOMPARE(f->chipTexts(), QStringList({"File", "Music"}));
    QCOMPARE(f->rows(), QStringList({"# Files on this PC", "plan.mp3"}));
    QCOMPARE(f->field()->text(), QStringLiteral("plan"));
    QCOMPARE(f->window.focusWidget(), f->field());
    QVERIFY(f->window.isVisible());
}

void SpotlightFoldersTest::rejectedChoiceChangesNothing()
{
    const QStringList folders{homeFolder("Docs"), homeFolder("docs"), homeFolder("Docs")};
    limitTo(folders);
    QTest::keyClicks(f->field(), QStringLiteral("plan"));
    const QVector<GlyphButton*> chips = f->chips();
    f->list()->setCurrentRow(2);
    pick([](QWidget* picker) {
        picker->findChild<QListWidget*>()->clearSelection();
        pressKey(*picker, Qt::Key_Escape);
    });
    QCOMPARE(FolderFilter::folders(), folders);
    QCOMPARE(f->chips(), chips);
    QCOMPARE(f->list()->currentRow(), 2);
    QCOMPARE(f->field()->text(), QStringLiteral("plan"));
    QCOMPARE(f->window.focusWidget(), f->field());
}

void SpotlightFoldersTest::allFoldersRemoveEveryChip()
{
    limitTo({homeFolder("Docs"), homeFolder("Gone")});
    f->window.setScopeKeys({"File"});
    QTest::keyClicks(f->field(), QStringLiteral("plan"));
    pick([](QWidget* picker) {
        auto* list = picker->findChild<QListWidget*>();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                          list->visualItemRect(list->item(0)).center());
        pressKey(*picker, Qt::Key_Return);
    });
    QCOMPARE(filterContent(), QByteArray("[]"));
    QCOMPARE(f->chipTexts(), QStringList{"File"});
    QVERIFY(f->rows().contains(QStringLiteral("plan.md")));
}

void SpotlightFoldersTest::choiceIsKept()
{
    // None of the usual folders, so its row comes from what is chosen.
    limitTo({homeFolder("Music/deep")});
    for (int i = 0; i < 2; ++i) {
        pick([](QWidget* picker) {
            QVERIFY(rowOf(picker, homeFolder("Music/deep"))->isSelected());
            pressKey(*picker, Qt::Key_Return);
        });
        QCOMPARE(f->chipTexts(), QStringList{"deep"});
    }
}

void SpotlightFoldersTest::pickerKeepsTheWindow()
{
    show();
    QTest::keyClicks(f->field(), QStringLiteral("plan"));
    endGuards();
    bool isBlocked = false;
    bool wasVisible = false;
    pick([&](QWidget* picker) {
        isBlocked = g_blockAutoQuit;
        QApplication::setActiveWindow(nullptr); // as when a dialog of the desktop's opens
        wasVisible = f->window.isVisible() && !f->fade();
        picker->close();
    });
    QVERIFY(isBlocked);
    QVERIFY(wasVisible);
    QVERIFY(f->window.isVisible());
    QVERIFY(!f->fade());
    QVERIFY(g_blockAutoQuit); // for a while after its end, too
    QCOMPARE(f->field()->text(), QStringLiteral("plan"));
    QTRY_VERIFY(!g_blockAutoQuit);
}

void SpotlightFoldersTest::pickerWhileTheWindowIsHidden()
{
    limitTo({homeFolder("Docs")});
    pick([this](QWidget* picker) {
        f->pressHotkey();
        QVERIFY(QTest::qWaitFor([this] { return f->window.isHidden(); }));
        picker->findChild<QListWidget*>()->clearSelection();
        pressKey(*picker, Qt::Key_Return);
    });
    QVERIFY(f->window.isHidden());
    show();
    QVERIFY(f->chips().isEmpty());
    QCOMPARE(f->window.height(), kEmptyHeight);
}

void SpotlightFoldersTest::pickerStandsOnTheStrip()
{
    show();
    QRect card;
    int middle = 0;
    pick([&](QWidget* picker) {
        const auto* frame = picker->findChild<QFrame*>("dialogBg");
        card = QRect(frame->mapToGlobal(QPoint(0, 0)), frame->size());
        middle = picker->x() + picker->width() / 2;
        pressKey(*picker, Qt::Key_Escape);
    });
    const QRect strip(f->pill()->mapToGlobal(QPoint(0, 0)), f->pill()->size());
    QCOMPARE(card.top(), strip.top());
    QCOMPARE(middle, f->window.geometry().center().x());
    QVERIFY(screenArea().contains(card));
}

void SpotlightFoldersTest::dialogIsAligned_data()
{
    QTest::addColumn<QPoint>("window"); // relative to the screen's available area
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("margin");
    QTest::addColumn<QPoint>("expected"); // the same
    const QRect area = TestScreens::Primary;
    const int w = area.width();
    const int h = area.height();
    // The middle of a window at x is at x + 291, its strip 32 below its top.
    const auto row = [](const char* name, const QPoint& window, const QSize& size, int margin,
                        const QPoint& expected) {
        QTest::newRow(name) << window << size << margin << expected;
    };
    row("in the middle", {200, 100}, {300, 200}, 10, {200 + 291 - 150, 100 + 32 - 10});
    row("of odd width", {200, 100}, {301, 200}, 10, {200 + 291 - 150, 100 + 32 - 10});
    row("no margin", {200, 100}, {300, 200}, 0, {200 + 291 - 150, 132});
    row("just fits below", {200, h - 200}, {300, 178}, 10, {341, h - 178});
    row("lifted", {200, h - 100}, {300, 178}, 10, {341, h - 178 + 10});
    row("too high", {200, 100}, {300, h + 100}, 10, {341, -10});
    row("card as high as the screen", {200, 100}, {300, h + 20}, 10, {341, -10});
    row("above the screen", {200, -80}, {300, 200}, 10, {341, -10});
    row("at the left edge", {-291, 100}, {300, 200}, 10, {-10, 122});
    row("beyond the left edge", {-500, 100}, {300, 200}, 10, {-10, 122});
    row("at the right edge", {w - 291 - 140, 100}, {300, 200}, 10, {w - 290, 122});
    row("beyond the right edge", {w, 100}, {300, 200}, 10, {w - 290, 122});
    row("wider than the screen", {200, 100}, {w + 200, 200}, 10, {-10, 122});
}

void SpotlightFoldersTest::dialogIsAligned()
{
    QFETCH(QPoint, window);
    QFETCH(QSize, size);
    QFETCH(int, margin);
    QFETCH(QPoint, expected);
    const QPoint origin = screenArea().topLeft();
    f->window.move(origin + window);
    QDialog dialog;
    dialog.setFixedSize(size);
    if (margin > 0) {
        auto* layout = new QVBoxLayout(&dialog);
        layout->setContentsMargins(margin, margin, margin, margin);
    }
    f->window.alignDialogToSearchBar(&dialog);
    QCOMPARE(dialog.pos() - origin, expected);
    QCOMPARE(dialog.size(), size);
}

QTEST_MAIN(SpotlightFoldersTest)
#include "tst_spotlightfolders.moc"
