// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FakeFileSystem.h"
#include "FileIndex.h"
#include "FolderFilter.h"
#include "Pixels.h"
#include "SpotlightTest.h"
#include "TestScreens.h"
#include "ToolTips.h"
#include "UiDriver.h"

#include <QDir>
#include <QFile>
#include <QPointer>
#include <QTest>

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

} // namespace

/// Limiting the file results to folders: the chips of Spotlight.
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
    void chipsLastOverShows();
    void clickedChipRemovesItsFolder();
    void removedFolderRebuildsTheResults();
    void removingTakesEveryEqualPath();
    void removingWhatIsNotThereChangesNothing();
    void backspaceLeavesFolders();

private:
    /// Shows the window with the search limited to these folders.
    void limitTo(const QStringList& folders)
    {
        FolderFilter::setFolders(folders);
        show();
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
    QCOMPARE(f->chipTexts(), QStringList{"Docs"}); // from the start on
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

QTEST_MAIN(SpotlightFoldersTest)
#include "tst_spotlightfolders.moc"
