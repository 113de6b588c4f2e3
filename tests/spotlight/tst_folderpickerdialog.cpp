// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"
#include "FakeFileSystem.h"
#include "FileIndex.h"
#include "FolderFilter.h"
#include "FolderPickerDialog.h"
#include "Localization.h"
#include "Pixels.h"
#include "TestFiles.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QStandardPaths>
#include <QTest>
#include <QTextDocument>

#include <algorithm>
#include <memory>

namespace
{

QString native(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

QString homePath()
{
    return native(QStandardPaths::writableLocation(QStandardPaths::HomeLocation));
}

/// A folder of the home, which need not be there.
QString inHome(const QString& name)
{
    return homePath() + QDir::separator() + native(name);
}

/// The usual folders that this home has.
QStringList usualFolders()
{
    QStringList folders;
    for (const auto location : {QStandardPaths::DesktopLocation, QStandardPaths::DownloadLocation,
                                QStandardPaths::DocumentsLocation, QStandardPaths::PicturesLocation,
                                QStandardPaths::MusicLocation, QStandardPaths::MoviesLocation}) {
        const QString path = native(QStandardPaths::writableLocation(location));
        if (QFileInfo(path).isDir() && !folders.contains(path, Qt::CaseInsensitive))
            folders.append(path);
    }
    return folders;
}

/// Where this desktop keeps its usual folders: two share one, and one is not there.
void writeUserDirs()
{
    const QByteArray names = "XDG_DESKTOP_DIR=\"$HOME/Desktop\"\n"
                             "XDG_DOWNLOAD_DIR=\"$HOME/Downloads\"\n"
                             "XDG_DOCUMENTS_DIR=\"$HOME/Documents\"\n"
                             "XDG_PICTURES_DIR=\"$HOME/Media\"\n"
                             "XDG_MUSIC_DIR=\"$HOME/Nowhere\"\n"
                             "XDG_VIDEOS_DIR=\"$HOME/media\"\n";
    const QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (!TestFiles::write(QDir(config).filePath("user-dirs.dirs"), names))
        qFatal("cannot write the user's folders");
}

} // namespace

class FolderPickerDialogTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        TestHome::installWithHome();
        writeUserDirs();
    }

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void withoutAnIndexThereAreNoCounts(); // the first: an index is built once for each process
    void countsOfTheIndex();

    void looksLikeEveryDialog();
    void texts();
    void measures();
    void allFoldersComeFirst();
    void usualFoldersStandInTheirOrder();
    void chosenFoldersHaveRows_data();
    void chosenFoldersHaveRows();
    void choiceIsThatOfTheRows();
    void allFoldersClearTheOthers();
    void circleOfAllFoldersFollowsTheOthers();
    void strangeNames_data();
    void strangeNames();
    void manyFoldersScroll();

    void enterAccepts_data();
    void enterAccepts();
    void backKeysReject_data();
    void backKeysReject();
    void arrowsAndSpaceChoose();
    void buttons();

    void otherFolderIsAskedForInTheHome();
    void otherFolderArrivesChecked_data();
    void otherFolderArrivesChecked();
    void otherFolderKeepsTheChoice();
    void tenThousandFoldersKeepTheirChoice();
    void otherFolderThatHasARow();
    void folderOutsideTheHomeIsRefused_data();
    void folderOutsideTheHomeIsRefused();
    void cancelledQuestionChangesNothing();
    void questionsKeepWindowsOpen();

private:
    void open();
    QListWidget* list() const { return m_dialog->findChild<QListWidget*>(); }
    QStringList rowTexts() const;
    QStringList keys() const;
    QListWidgetItem* rowOf(const QString& key) const;
    void clickRow(int row) const;
    void clickRow(const QString& key) const { clickRow(list()->row(rowOf(key))); }
    QPushButton* button(const QString& text) const;
    void pickOther(const QString& path) const;
    bool isCircleFilled(int row) const;

    std::unique_ptr<QWidget> m_parent;
    std::unique_ptr<FolderPickerDialog> m_dialog;
    QStringList m_made;
};

void FolderPickerDialogTest::initTestCase()
{
    for (const auto& name : {"Desktop", "Downloads", "Documents", "Media", "media",
                             "Documents/Jobs", "Documents/Jobs/Deep", "Zoo"}) {
        if (QDir(homePath()).mkdir(name))
            m_made.prepend(inHome(name));
    }
    FakeFileSystem::add({"Documents/Jobs/a.txt", "Documents/b.txt", "Documents/Jobs/Deep/c.txt",
                         "Downloads/d.txt", "e.txt"});
    for (int i = 0; i < 1500; ++i)
        FakeFileSystem::add(QStringLiteral("Zoo/%1").arg(i));
}

void FolderPickerDialogTest::cleanupTestCase()
{
    for (const QString& path : m_made)
        QDir().rmdir(path);
}

void FolderPickerDialogTest::init()
{
    Tr::currentLang = Lang::En;
    FolderFilter::setFolders({});
    m_parent = std::make_unique<QWidget>();
}

void FolderPickerDialogTest::cleanup()
{
    m_dialog.reset();
    m_parent.reset();
    FakeFileSystem::release();
}

void FolderPickerDialogTest::open()
{
    m_dialog = std::make_unique<FolderPickerDialog>(m_parent.get());
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
}

QStringList FolderPickerDialogTest::rowTexts() const
{
    QStringList found;
    for (int row = 0; row < list()->count(); ++row)
        found.append(list()->item(row)->text());
    return found;
}

QStringList FolderPickerDialogTest::keys() const
{
    QStringList found;
    for (int row = 0; row < list()->count(); ++row)
        found.append(list()->item(row)->data(Qt::UserRole).toString());
    return found;
}

QListWidgetItem* FolderPickerDialogTest::rowOf(const QString& key) const
{
    const qsizetype row = keys().indexOf(key);
    if (row < 0)
        qFatal("no row for %s", qPrintable(key));
    return list()->item(int(row));
}

void FolderPickerDialogTest::clickRow(int row) const
{
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier,
                      list()->visualItemRect(list()->item(row)).center());
}

QPushButton* FolderPickerDialogTest::button(const QString& text) const
{
    for (QPushButton* found : m_dialog->findChildren<QPushButton*>()) {
        if (found->text() == text)
            return found;
    }
    qFatal("no button %s", qPrintable(text));
}

void FolderPickerDialogTest::pickOther(const QString& path) const
{
    const ModalDriver driver([&path](QWidget* modal) {
        auto* name = modal->findChild<QLineEdit*>("fileNameEdit");
        if (!name) { // the warning about what was picked
            pressKey(*modal, Qt::Key_Return);
            return;
        }
        name->setText(path);
        QTest::keyClick(name, Qt::Key_Return);
    });
    QTest::mouseClick(button("Add another folder..."), Qt::LeftButton);
}

bool FolderPickerDialogTest::isCircleFilled(int row) const
{
    const QImage image = list()->viewport()->grab().toImage();
    const QRect rect = list()->visualItemRect(list()->item(row));
    // Between the tick and the circle's edge.
    const QPoint spot(rect.left() + 10 + 9, rect.center().y() - 6);
    return Pixels::isNear(image.pixelColor(spot), QColor(Theme::colors().primary), 8);
}

void FolderPickerDialogTest::withoutAnIndexThereAreNoCounts()
{
    QVERIFY(!FileIndex::isReady());
    open();
    QCOMPARE(rowTexts().mid(0, 2), QStringList({"All folders", "Desktop"}));
    for (const QString& text : rowTexts())
        QVERIFY2(!text.contains("items"), qPrintable(text));
    m_dialog.reset();
    FakeFileSystem::hold();
    FileIndex::build();
    QTRY_VERIFY(FakeFileSystem::isHeld());
    open();
    QCOMPARE(rowTexts().at(1), QStringLiteral("Desktop"));
}

void FolderPickerDialogTest::countsOfTheIndex()
{
    QTRY_VERIFY(FileIndex::isReady());
    FolderFilter::setFolders({inHome("documents/JOBS"), inHome("Zoo"), inHome("gone"), homePath(),
                              native(QDir::rootPath())});
    open();
    QStringList expected{"All folders"};
    for (const QString& path : usualFolders()) {
        const QString name = QDir(path).dirName();
        // Files and folders alike, of all depths.
        const int count = path == inHome("Documents") ? 5 : path == inHome("Downloads") ? 1 : 0;
        expected.append(QStringLiteral("%1  ·  %2 items").arg(name).arg(count));
    }
    expected << QStringLiteral("JOBS  ·  3 items")
             << QStringLiteral("Zoo  ·  %1 items").arg(QLocale().toString(1500))
             << QStringLiteral("gone  ·  0 items");
    QCOMPARE(rowTexts().mid(0, expected.size()), expected);
    const QString all = QLocale().toString(FileIndex::entries().size());
    QCOMPARE(rowTexts().at(expected.size()),
             QStringLiteral("%1  ·  %2 items").arg(QDir(homePath()).dirName(), all));
    QCOMPARE(rowTexts().at(expected.size() + 1),
             QStringLiteral("%1  ·  %2 items").arg(native(QDir::rootPath()), all));
    Tr::currentLang = Lang::Es;
    open();
    QVERIFY(
        rowTexts().contains(QStringLiteral("Zoo  ·  %1 elementos").arg(QLocale().toString(1500))));
}

void FolderPickerDialogTest::looksLikeEveryDialog()
{
    open();
    verifyDialogLook(*m_dialog, *m_parent, 24, 80);
    QCOMPARE(m_dialog->windowTitle(), QStringLiteral("Limit search to folders"));
    QVERIFY(list()->hasFocus());
    QCOMPARE(list()->accessibleName(), m_dialog->windowTitle());
}

void FolderPickerDialogTest::texts()
{
    open();
    QStringList found;
    for (const QLabel* label : m_dialog->findChildren<QLabel*>())
        found.append(label->text());
    QCOMPARE(found, QStringList({Tr::t("folderpick.title"), Tr::t("folderpick.hint")}));
    const QLabel* hint = m_dialog->findChildren<QLabel*>().at(1);
    QVERIFY(hint->wordWrap());
    QCOMPARE(hint->styleSheet(), QStringLiteral("color: %1; font-size: %2; border: none;")
                                     .arg(Theme::colors().onSurfaceVariant, FontTokens::SizeMd));
    QCOMPARE(m_dialog->findChildren<QLabel*>().at(0)->styleSheet(),
             Theme::dialogTitleStyle(Theme::colors()));
    QStringList buttonTexts;
    for (const QPushButton* each : m_dialog->findChildren<QPushButton*>()) {
        buttonTexts.append(each->text());
        QCOMPARE(each->cursor().shape(), Qt::PointingHandCursor);
        QCOMPARE(each->isDefault(), each->text() == "OK");
    }
    QCOMPARE(buttonTexts, QStringList({"Add another folder...", "Cancel", "OK"}));
}

void FolderPickerDialogTest::measures()
{
    open();
    const auto* card = m_dialog->findChild<QFrame*>("dialogBg");
    QVERIFY(card->width() >= 460);
    QCOMPARE(card->layout()->spacing(), 12);
    QVERIFY(list()->height() >= 220);
    QCOMPARE(list()->selectionMode(), QAbstractItemView::MultiSelection);
    const int height = m_dialog->height();
    m_dialog->resize(m_dialog->width(), height + 100);
    QTRY_VERIFY(list()->height() >= 320); // all that is more
    const ColorTokens c = Theme::colors();
    QCOMPARE(list()->styleSheet(),
             QStringLiteral("QListWidget { background: %1; border: 1px solid %2; "
                            "border-radius: 8px; outline: 0; padding: 4px; }")
                 .arg(Theme::fieldIdleBg(c), c.outline));
}

void FolderPickerDialogTest::allFoldersComeFirst()
{
    open();
    const QListWidgetItem* all = list()->item(0);
    QCOMPARE(all->text(), QStringLiteral("All folders"));
    QCOMPARE(all->data(Qt::UserRole).toString(), QString());
    QCOMPARE(all->toolTip(), QStringLiteral("Search without any folder restriction"));
    QVERIFY(!all->isSelected());
    QVERIFY(m_dialog->chosen().isEmpty());
    QVERIFY(isCircleFilled(0));
}

void FolderPickerDialogTest::usualFoldersStandInTheirOrder()
{
    open();
    const QStringList usual = usualFolders();
    QVERIFY(usual.size() >= 3);
    QCOMPARE(keys(), QStringList{QString()} + usual);
    for (int row = 1; row < list()->count(); ++row)
        QCOMPARE(list()->item(row)->toolTip(), usual.at(row - 1));
    QVERIFY(!keys().contains(inHome("Nowhere")));
    QVERIFY(!keys().contains(inHome("media"), Qt::CaseSensitive)); // "Media" of another case
}

void FolderPickerDialogTest::chosenFoldersHaveRows_data()
{
    QTest::addColumn<QStringList>("chosen");
    QTest::addColumn<QStringList>("added");   // rows besides those of the usual folders
    QTest::addColumn<QStringList>("checked"); // what of them is checked
    const QString docs = inHome("Documents");
    const QString zoo = inHome("Zoo");
    const auto row = [](const char* name, const QStringList& chosen, const QStringList& added,
                        const QStringList& checked) {
        QTest::newRow(name) << chosen << added << checked;
    };
    row("none", {}, {}, {});
    row("a usual one", {docs}, {}, {docs});
    row("a usual one in another case", {docs.toUpper()}, {}, {docs});
    row("one of the user's", {zoo}, {zoo}, {zoo});
    row("twice", {zoo, zoo}, {zoo}, {zoo});
    row("of two cases", {zoo, zoo.toLower()}, {zoo}, {zoo});
    row("separator at its end", {zoo + QDir::separator()}, {zoo + QDir::separator()},
        {zoo + QDir::separator()});
    row("gone", {inHome("gone")}, {inHome("gone")}, {inHome("gone")});
    row("root", {native(QDir::rootPath())}, {native(QDir::rootPath())}, {native(QDir::rootPath())});
    row("no path", {"x"}, {"x"}, {"x"});
    row("several", {zoo, docs, inHome("a")}, {zoo, inHome("a")}, {docs, zoo, inHome("a")});
}

void FolderPickerDialogTest::chosenFoldersHaveRows()
{
    QFETCH(QStringList, chosen);
    QFETCH(QStringList, added);
    QFETCH(QStringList, checked);
    FolderFilter::setFolders(chosen);
    open();
    QCOMPARE(keys(), QStringList{QString()} + usualFolders() + added);
    QCOMPARE(m_dialog->chosen(), checked);
    QCOMPARE(isCircleFilled(0), checked.isEmpty());
    pressKey(*m_dialog, Qt::Key_Escape);
    QCOMPARE(FolderFilter::folders(), chosen); // whatever is chosen, the caller stores it
}

void FolderPickerDialogTest::choiceIsThatOfTheRows()
{
    open();
    clickRow(inHome("Documents"));
    clickRow(inHome("Desktop"));
    QCOMPARE(m_dialog->chosen(), QStringList({inHome("Desktop"), inHome("Documents")}));
    clickRow(inHome("Documents"));
    QCOMPARE(m_dialog->chosen(), QStringList{inHome("Desktop")});
}

void FolderPickerDialogTest::allFoldersClearTheOthers()
{
    FolderFilter::setFolders({inHome("Documents"), inHome("Zoo")});
    open();
    QCOMPARE(m_dialog->chosen().size(), 2);
    clickRow(0);
    QVERIFY(m_dialog->chosen().isEmpty());
    QVERIFY(!list()->item(0)->isSelected());
    clickRow(0); // nor by a second click
    QVERIFY(!list()->item(0)->isSelected());
    clickRow(inHome("Zoo"));
    QCOMPARE(m_dialog->chosen(), QStringList{inHome("Zoo")});
}

void FolderPickerDialogTest::circleOfAllFoldersFollowsTheOthers()
{
    open();
    QVERIFY(isCircleFilled(0));
    QVERIFY(!isCircleFilled(1));
    clickRow(1);
    QVERIFY(!isCircleFilled(0));
    QVERIFY(isCircleFilled(1));
    clickRow(0);
    QVERIFY(isCircleFilled(0));
    QVERIFY(!isCircleFilled(1));
}

void FolderPickerDialogTest::strangeNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("ampersand") << "R&D";
    QTest::newRow("markup") << "<b>bold<i>";
    QTest::newRow("place marker") << "%1 %2";
    QTest::newRow("line feed") << "two\nlines";
    QTest::newRow("right to left") << QStringLiteral("\u202Eabc");
    QTest::newRow("emoji") << QStringLiteral("\U0001F4C1");
    QTest::newRow("10,000 characters") << QString(10000, u'n');
    QTest::newRow("a megabyte") << QString(1024 * 1024, u'n');
}

void FolderPickerDialogTest::strangeNames()
{
    QFETCH(QString, name);
    open();
    const int width = m_dialog->width();
    FolderFilter::setFolders({inHome(name)});
    open();
    QCOMPARE(m_dialog->width(), width);
    QListWidgetItem* row = list()->item(list()->count() - 1);
    QCOMPARE(row->data(Qt::UserRole).toString(), inHome(name));
    QCOMPARE(row->text(), QStringLiteral("%1  ·  0 items").replace("%1", name));
    QCOMPARE(list()->visualItemRect(row).width(), list()->viewport()->width());
    QVERIFY(list()->visualItemRect(row).height() < 50);
    QVERIFY(!Qt::mightBeRichText(row->toolTip()) || row->toolTip().contains("&lt;"));
    QCOMPARE(m_dialog->chosen(), QStringList{inHome(name)});
    m_dialog->grab();
}

void FolderPickerDialogTest::manyFoldersScroll()
{
    QStringList many;
    for (int i = 0; i < 500; ++i)
        many.append(inHome(QStringLiteral("folder %1").arg(i)));
    open();
    const QSize size = m_dialog->size();
    FolderFilter::setFolders(many);
    open();
    QCOMPARE(m_dialog->size(), size);
    QCOMPARE(m_dialog->chosen(), many);
    for (int row = 0; row < list()->count(); ++row)
        QVERIFY(list()->visualItemRect(list()->item(row)).right() < list()->viewport()->width());
}

void FolderPickerDialogTest::enterAccepts_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
}

void FolderPickerDialogTest::enterAccepts()
{
    QFETCH(Qt::Key, key);
    open();
    clickRow(1);
    pressKey(*m_dialog, key);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
    QCOMPARE(m_dialog->chosen(), QStringList{keys().at(1)});
}

void FolderPickerDialogTest::backKeysReject_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("focus");
    for (const char* focus : {"", "Add another folder...", "Cancel", "OK"}) {
        QTest::addRow("Esc, %s", focus) << Qt::Key_Escape << focus;
        QTest::addRow("Backspace, %s", focus) << Qt::Key_Backspace << focus;
    }
}

void FolderPickerDialogTest::backKeysReject()
{
    QFETCH(Qt::Key, key);
    QFETCH(QString, focus);
    open();
    if (!focus.isEmpty())
        button(focus)->setFocus();
    pressKey(*m_dialog, key);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int(QDialog::Rejected));
}

void FolderPickerDialogTest::arrowsAndSpaceChoose()
{
    open();
    for (const Qt::Key key :
         {Qt::Key_Home, Qt::Key_Down, Qt::Key_Space, Qt::Key_Down, Qt::Key_Down, Qt::Key_Space})
        pressKey(*m_dialog, key);
    QCOMPARE(m_dialog->chosen(), QStringList({keys().at(1), keys().at(3)}));
    QCOMPARE(list()->currentRow(), 3);
    pressKey(*m_dialog, Qt::Key_Space);
    QCOMPARE(m_dialog->chosen(), QStringList{keys().at(1)});
    pressKey(*m_dialog, Qt::Key_Home);
    pressKey(*m_dialog, Qt::Key_Space); // all folders
    QVERIFY(m_dialog->chosen().isEmpty());
}

void FolderPickerDialogTest::buttons()
{
    open();
    QTest::mouseClick(button("Cancel"), Qt::LeftButton);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int(QDialog::Rejected));
    open();
    QTest::mouseClick(button("OK"), Qt::LeftButton);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
}

void FolderPickerDialogTest::otherFolderIsAskedForInTheHome()
{
    open();
    QString caption;
    QString directory;
    QFileDialog::FileMode mode = QFileDialog::AnyFile;
    bool isForFoldersOnly = false;
    QWidget* owner = nullptr;
    const ModalDriver driver([&](QWidget* modal) {
        auto* chooser = qobject_cast<QFileDialog*>(modal);
        QVERIFY(chooser);
        caption = chooser->windowTitle();
        directory = native(chooser->directory().absolutePath());
        mode = chooser->fileMode();
        isForFoldersOnly = chooser->testOption(QFileDialog::ShowDirsOnly);
        owner = chooser->parentWidget();
        chooser->reject();
    });
    button("Add another folder...")->setFocus();
    pressKey(*m_dialog, Qt::Key_Return);
    QCOMPARE(driver.count(), 1);
    QCOMPARE(caption, QStringLiteral("Add another folder..."));
    QCOMPARE(directory, homePath());
    QCOMPARE(mode, QFileDialog::Directory);
    QVERIFY(isForFoldersOnly);
    QCOMPARE(owner, m_dialog.get());
    QVERIFY(m_dialog->isVisible());
}

void FolderPickerDialogTest::otherFolderArrivesChecked_data()
{
    QTest::addColumn<QString>("picked");
    QTest::newRow("in the home") << inHome("Zoo");
    QTest::newRow("in a folder of it") << inHome("Documents/Jobs");
    QTest::newRow("the home itself") << homePath();
}

void FolderPickerDialogTest::otherFolderArrivesChecked()
{
    QFETCH(QString, picked);
    open();
    const QStringList before = keys();
    pickOther(picked);
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(keys(), before + QStringList{picked});
    QCOMPARE(m_dialog->chosen(), QStringList{picked});
    QVERIFY(rowTexts().constLast().startsWith(QDir(picked).dirName()));
    m_dialog.reset();
    open();
    QCOMPARE(keys(), before); // nobody has chosen it
}

void FolderPickerDialogTest::otherFolderKeepsTheChoice()
{
    FolderFilter::setFolders({inHome("Documents"), inHome("gone")});
    open();
    clickRow(inHome("Documents")); // off
    clickRow(inHome("Desktop"));   // on
    pickOther(inHome("Zoo"));
    QCOMPARE(m_dialog->chosen(), QStringList({inHome("Desktop"), inHome("gone"), inHome("Zoo")}));
    pickOther(inHome("Documents/Jobs"));
    QCOMPARE(m_dialog->chosen(), QStringList({inHome("Desktop"), inHome("gone"), inHome("Zoo"),
                                              inHome("Documents/Jobs")}));
    clickRow(0);
    QVERIFY(m_dialog->chosen().isEmpty());
    pickOther(inHome("Zoo"));
    QCOMPARE(m_dialog->chosen(), QStringList{inHome("Zoo")});
    QCOMPARE(keys().count(inHome("Zoo")), 1);
}

void FolderPickerDialogTest::tenThousandFoldersKeepTheirChoice()
{
    QStringList many;
    for (int i = 0; i < 10000; ++i)
        many.append(inHome(QStringLiteral("folder %1").arg(i)));
    QStringList twice = many; // each in another case once more
    for (const QString& path : many)
        twice.append(path.toUpper());
    FolderFilter::setFolders(twice);
    open();
    QCOMPARE(m_dialog->chosen(), many);
    for (const int row : {2, 5000, 5002}) {
        list()->item(row + int(usualFolders().size()))->setSelected(false);
        many[row - 1].clear();
    }
    many.removeAll(QString());
    QCOMPARE(m_dialog->chosen(), many);
    pickOther(inHome("Zoo"));
    QCOMPARE(m_dialog->chosen(), many << inHome("Zoo"));
    QVERIFY(!isCircleFilled(0));
}

void FolderPickerDialogTest::otherFolderThatHasARow()
{
    open();
    const QStringList before = keys();
    pickOther(inHome("Documents"));
    QCOMPARE(keys(), before);
    QCOMPARE(m_dialog->chosen(), QStringList{inHome("Documents")});
}

void FolderPickerDialogTest::folderOutsideTheHomeIsRefused_data()
{
    QTest::addColumn<QString>("picked");
    QTest::newRow("above the home") << native(QFileInfo(homePath()).absolutePath());
    QTest::newRow("root") << native(QDir::rootPath());
    // The folder for temporary files may lie in the home.
    const QDir root = QDir::root();
    const QStringList folders = root.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    const auto elsewhere = std::find_if(folders.begin(), folders.end(), [&root](const auto& name) {
        return !homePath().startsWith(native(root.filePath(name)), Qt::CaseInsensitive);
    });
    QVERIFY(elsewhere != folders.end());
    QTest::newRow("elsewhere") << native(root.filePath(*elsewhere));
}

void FolderPickerDialogTest::folderOutsideTheHomeIsRefused()
{
    QFETCH(QString, picked);
    FolderFilter::setFolders({inHome("Documents")});
    open();
    clickRow(inHome("Desktop"));
    const QStringList before = keys();
    QStringList shown;
    QWidget* owner = nullptr;
    const ModalDriver driver([&](QWidget* modal) {
        if (auto* name = modal->findChild<QLineEdit*>("fileNameEdit")) {
            name->setText(picked);
            QTest::keyClick(name, Qt::Key_Return);
            return;
        }
        owner = modal->parentWidget();
        for (const QLabel* label : modal->findChildren<QLabel*>())
            shown.append(label->text());
        pressKey(*modal, Qt::Key_Return);
    });
    QTest::mouseClick(button("Add another folder..."), Qt::LeftButton);
    QCOMPARE(driver.count(), 2);
    QCOMPARE(owner, m_dialog.get());
    QCOMPARE(shown.mid(0, 2), QStringList({Tr::t("folderpick.outside_title"),
                                           Tr::t("folderpick.outside_msg").arg(homePath())}));
    QCOMPARE(keys(), before);
    QCOMPARE(m_dialog->chosen(), QStringList({inHome("Desktop"), inHome("Documents")}));
    QVERIFY(m_dialog->isVisible());
}

void FolderPickerDialogTest::cancelledQuestionChangesNothing()
{
    open();
    clickRow(1);
    const QStringList before = keys();
    const ModalDriver driver([](QWidget* modal) { pressKey(*modal, Qt::Key_Escape); });
    QTest::mouseClick(button("Add another folder..."), Qt::LeftButton);
    QCOMPARE(driver.count(), 1);
    QCOMPARE(keys(), before);
    QCOMPARE(m_dialog->chosen(), QStringList{before.at(1)});
    QVERIFY(m_dialog->isVisible());
}

void FolderPickerDialogTest::questionsKeepWindowsOpen()
{
    QTRY_VERIFY(!g_blockAutoQuit);
    open();
    QVERIFY(!g_blockAutoQuit); // the dialog itself leaves that to its caller
    bool isBlocked = false;
    const ModalDriver driver([&isBlocked](QWidget* modal) {
        isBlocked = g_blockAutoQuit;
        pressKey(*modal, Qt::Key_Escape);
    });
    QTest::mouseClick(button("Add another folder..."), Qt::LeftButton);
    QVERIFY(isBlocked);
    QTRY_VERIFY(!g_blockAutoQuit);
}

QTEST_MAIN(FolderPickerDialogTest)
#include "tst_folderpickerdialog.moc"
