// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Profile.h"
#include "Program.h"
#include "SlowHome.h"
#include "SolidIcons.h"
#include "Theme.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QUrl>
#include <QtTest>

#include <memory>

/// The files of the home in Spotlight: found, followed while they change, and opened.
class E2eFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void newFileShowsUpByItself_data();
    void newFileShowsUpByItself();
    void renamingAndRemovingAreFollowed();
    void folderIsFollowedWithAllThatIsInIt();
    void manyChangesAtOnceAreFollowed();
    void fileNameReachesTheHandlerWhole_data();
    void fileNameReachesTheHandlerWhole();
    void usedFileComesFirst();
    void filesAndFoldersShareTheRoom();
    void allScopesShowNoFolders();
    void someFoldersAreLeftOut();
    void hintStandsUntilTheFirstScanIsDone();
    void allScopesSayNothingWhileTheIndexPrepares();
    void looks_data();
    void looks();

private:
    void startWithScopes(const QStringList& scopes);
    void waitUntilIndexed();
    void searchFor(const QString& text) const;
    QStringList icons() const { return m_icons->namesIn(m_desktop->client().screenshot()); }
    QString homePath(const QString& name) const
    {
        return QDir(m_program->homeDir()).filePath(name);
    }
    int height() const { return m_program->spotlight().geometry.height(); }
    bool isOpen() const { return height() >= kPanelHeight; }

    static constexpr int kPanelHeight = 328;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<SolidIcons> m_icons;
    std::unique_ptr<Program> m_program;
};

namespace
{

const QString kFile = QStringLiteral("File");
const QString kFolder = QStringLiteral("Folder");
const QString kMemoIcon = QStringLiteral("application-x-orlimo-memo");
const QString kFolderIcon = QStringLiteral("folder");

// One kind of file, so that the icon of a row tells that it is a row of such a file.
const QByteArray kMemoType =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
    "<mime-type type=\"application/x-orlimo-memo\"><comment>memo</comment>"
    "<glob pattern=\"*.memo\"/></mime-type></mime-info>\n";

constexpr QPoint kCard = Program::SpotlightCard;
constexpr int kStripHeight = 80;
constexpr int kChipStripHeight = 126;

QString fileAddress(const QString& path)
{
    return QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
}

} // namespace

void E2eFiles::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
    m_icons = std::make_unique<SolidIcons>(m_desktop->path(QStringLiteral("share")));
    m_icons->addToTheme(kMemoIcon, QStringLiteral("mimetypes"));
    m_icons->addToTheme(kFolderIcon, QStringLiteral("places"));
    const QString types = m_desktop->path(QStringLiteral("share/mime/packages"));
    QVERIFY(QDir().mkpath(types));
    QFile memo(types + QStringLiteral("/memo.xml"));
    QVERIFY(memo.open(QIODevice::WriteOnly) && memo.write(kMemoType) == kMemoType.size());
}

void E2eFiles::init()
{
    m_program = std::make_unique<Program>(*m_desktop);
}

void E2eFiles::cleanup()
{
    m_program.reset();
}

void E2eFiles::startWithScopes(const QStringList& scopes)
{
    m_program->setSetting(QStringLiteral("Spotlight/DefaultScope"), scopes);
    m_program->startAndSettle();
    m_program->openSpotlight();
}

void E2eFiles::searchFor(const QString& text) const
{
    m_program->key(QStringLiteral("ctrl+a"));
    m_program->type(text);
    // What stands there while the letters come is of no interest.
    m_program->settledScreenshot();
}

void E2eFiles::waitUntilIndexed()
{
    // The rows come by themselves when the first scan is done.
    searchFor(QStringLiteral("indexed.memo"));
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
}

void E2eFiles::newFileShowsUpByItself_data()
{
    QTest::addColumn<QStringList>("scopes");
    QTest::newRow("all scopes") << QStringList();
    QTest::newRow("files") << QStringList{kFile};
}

void E2eFiles::newFileShowsUpByItself()
{
    QFETCH(QStringList, scopes);
    m_program->writeHomeFile(QStringLiteral("Documents/indexed.memo"));
    startWithScopes(scopes);
    waitUntilIndexed();
    searchFor(QStringLiteral("report"));
    QTRY_COMPARE(icons(), QStringList());
    // Among all scopes there is still the search on the web.
    QTRY_COMPARE(isOpen(), scopes.isEmpty());

    m_program->writeHomeFile(QStringLiteral("Documents/Report of 2031.memo"));
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
    m_program->key(QStringLiteral("Return"));
    const QString path = homePath(QStringLiteral("Documents/Report of 2031.memo"));
    QTRY_COMPARE(m_desktop->opened(), QStringList{fileAddress(path)});
    m_program->waitUntilSpotlightIsGone();
    QCOMPARE(m_program->usage().keys(), QStringList{path});
    QCOMPARE(m_program->usage().value(path).toObject().value(QStringLiteral("c")).toInt(), 1);
}

void E2eFiles::renamingAndRemovingAreFollowed()
{
    const QString oldPath = homePath(QStringLiteral("Notes/journal-old.memo"));
    const QString newPath = homePath(QStringLiteral("Notes/journal-new.memo"));
    const QString outside = m_desktop->path(QStringLiteral("journal-new.memo"));
    m_program->writeHomeFile(QStringLiteral("Notes/journal-old.memo"));
    m_program->writeHomeFile(QStringLiteral("indexed.memo"));
    startWithScopes({kFile});
    waitUntilIndexed();
    searchFor(QStringLiteral("journal-new"));
    QTRY_VERIFY(!isOpen());
    QVERIFY(QFile::rename(oldPath, newPath));
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
    searchFor(QStringLiteral("journal-old"));
    QTRY_VERIFY(!isOpen());
    // Out of the home and back into it.
    searchFor(QStringLiteral("journal"));
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
    QVERIFY(QFile::rename(newPath, outside));
    QTRY_VERIFY(!isOpen());
    QVERIFY(QFile::rename(outside, oldPath));
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
    searchFor(QStringLiteral("journal-n"));
    QTRY_VERIFY(!isOpen());
    QVERIFY(QFile::rename(oldPath, newPath));
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->opened(), QStringList{fileAddress(newPath)});
    m_program->waitUntilSpotlightIsGone();

    m_program->openSpotlight();
    searchFor(QStringLiteral("journal"));
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
    QVERIFY(QFile::remove(newPath));
    QTRY_VERIFY(!isOpen());
    m_program->key(QStringLiteral("Return"));
    m_program->settledScreenshot();
    QVERIFY(m_program->isSpotlightUp());
    QCOMPARE(m_desktop->opened().size(), 1);
}

void E2eFiles::folderIsFollowedWithAllThatIsInIt()
{
    m_program->writeHomeFile(QStringLiteral("indexed.memo"));
    startWithScopes({kFile});
    waitUntilIndexed();
    searchFor(QStringLiteral("plan"));
    QTRY_VERIFY(!isOpen());
    m_program->writeHomeFile(QStringLiteral("Trips/2031/plan.memo"));
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
    QVERIFY(QDir().rename(homePath(QStringLiteral("Trips")), homePath(QStringLiteral("Travels"))));
    // In the new place it goes on being followed.
    searchFor(QStringLiteral("map"));
    QTRY_VERIFY(!isOpen());
    m_program->writeHomeFile(QStringLiteral("Travels/2031/map.memo"));
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
    searchFor(QStringLiteral("plan"));
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->opened(),
                 QStringList{fileAddress(homePath(QStringLiteral("Travels/2031/plan.memo")))});
    m_program->waitUntilSpotlightIsGone();

    m_program->openSpotlight();
    searchFor(QStringLiteral("plan"));
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
    QVERIFY(QDir(homePath(QStringLiteral("Travels"))).removeRecursively());
    QTRY_VERIFY(!isOpen());
}

void E2eFiles::manyChangesAtOnceAreFollowed()
{
    m_program->writeHomeFile(QStringLiteral("Music/indexed.memo"));
    startWithScopes({kFile});
    waitUntilIndexed();
    searchFor(QStringLiteral("unpacked"));
    QTRY_VERIFY(!isOpen());
    for (int i = 0; i < 500; ++i)
        m_program->writeHomeFile(QStringLiteral("Music/unpacked-%1.memo").arg(i));
    QTRY_VERIFY(isOpen());
    searchFor(QStringLiteral("unpacked-499.memo"));
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
}

void E2eFiles::fileNameReachesTheHandlerWhole_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("encoded");
    QTest::newRow("blanks") << "two words.memo"
                            << "two%20words.memo";
    QTest::newRow("not ASCII") << QStringLiteral("čaj 日本.memo")
                               << "%C4%8Daj%20%E6%97%A5%E6%9C%AC.memo";
    QTest::newRow("what has a meaning in addresses") << "100% #1 a+b?c&d.memo"
                                                     << "100%25%20%231%20a+b%3Fc&d.memo";
    QTest::newRow("what has a meaning to a shell") << "$HOME 'it' \"so\" `x`;|.memo"
                                                   << "$HOME%20'it'%20%22so%22%20%60x%60;%7C.memo";
}

void E2eFiles::fileNameReachesTheHandlerWhole()
{
    QFETCH(QString, name);
    QFETCH(QString, encoded);
    m_program->writeHomeFile(name);
    startWithScopes({kFile});
    m_program->paste(name);
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->opened(), QStringList{QStringLiteral("file://") + m_program->homeDir() +
                                                  QLatin1Char('/') + encoded});
    m_program->waitUntilSpotlightIsGone();
    QVERIFY(m_program->usage().contains(homePath(name)));
}

void E2eFiles::usedFileComesFirst()
{
    m_program->writeHomeFile(QStringLiteral("draft.memo"));
    m_program->writeHomeFile(QStringLiteral("draft of a long letter.memo"));
    m_program->writeHomeFile(QStringLiteral("indexed.memo"));
    const QString used = homePath(QStringLiteral("draft of a long letter.memo"));
    const QJsonObject record{{QStringLiteral("c"), 1},
                             {QStringLiteral("t"), double(QDateTime::currentSecsSinceEpoch())}};
    m_program->writeData(QStringLiteral("usage.json"),
                         QJsonDocument(QJsonObject{{used, record}}).toJson());
    startWithScopes({kFile});
    waitUntilIndexed();
    searchFor(QStringLiteral("draft"));
    QTRY_COMPARE(icons().size(), 2);
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->opened(), QStringList{fileAddress(used)});
    m_program->waitUntilSpotlightIsGone();
    // The name that is typed in full comes before every other.
    m_program->openSpotlight();
    searchFor(QStringLiteral("draft.memo"));
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->opened().value(1), fileAddress(homePath(QStringLiteral("draft.memo"))));
}

void E2eFiles::filesAndFoldersShareTheRoom()
{
    // The longer the name, the later it comes.
    for (int i = 1; i <= 7; ++i) {
        const QString name = QStringLiteral("match") + QString(i, QLatin1Char('x'));
        m_program->writeHomeFile(QStringLiteral("in/") + name + QStringLiteral(".memo"));
        QVERIFY(QDir().mkpath(homePath(name)));
    }
    m_program->writeHomeFile(QStringLiteral("in/indexed.memo"));
    startWithScopes({kFile, kFolder});
    waitUntilIndexed();
    searchFor(QStringLiteral("match"));
    const QStringList files{kMemoIcon, kMemoIcon, kMemoIcon, kMemoIcon, kMemoIcon};
    QTRY_COMPARE(icons(), files);
    for (int i = 0; i < 5; ++i)
        m_program->key(QStringLiteral("Down")); // onto the first folder
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->opened(), QStringList{fileAddress(homePath("matchx"))});
    m_program->waitUntilSpotlightIsGone();

    m_program->openSpotlight();
    searchFor(QStringLiteral("match"));
    for (int i = 0; i < 20; ++i)
        m_program->key(QStringLiteral("Down")); // onto the last
    // The five end at the bottom of the panel.
    const QStringList folders{kFolderIcon, kFolderIcon, kFolderIcon, kFolderIcon, kFolderIcon};
    QTRY_COMPARE(icons(), folders);
    m_program->key(QStringLiteral("Up"));
    m_program->key(QStringLiteral("Return"));
    // The one that was used has gone to the front: x, then xx, xxx, xxxx, xxxxx.
    QTRY_COMPARE(m_desktop->opened().value(1), fileAddress(homePath("matchxxxx")));
    m_program->waitUntilSpotlightIsGone(); // noted by then
    QVERIFY(m_program->usage().contains(homePath("matchxxxx")));
}

void E2eFiles::allScopesShowNoFolders()
{
    m_program->writeHomeFile(QStringLiteral("Garden/garden.memo"));
    QVERIFY(QDir().mkpath(homePath(QStringLiteral("Garden chairs"))));
    startWithScopes({});
    searchFor(QStringLiteral("garden"));
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
    m_program->key(QStringLiteral("Escape"));
    m_program->waitUntilSpotlightIsGone();
    m_program->setSetting(QStringLiteral("Spotlight/DefaultScope"), QStringList{kFolder});
    m_program->openSpotlight();
    searchFor(QStringLiteral("garden"));
    const QStringList folders{kFolderIcon, kFolderIcon};
    QTRY_COMPARE(icons(), folders);
}

void E2eFiles::someFoldersAreLeftOut()
{
    for (const char* folder : {"node_modules", ".git", "__pycache__", ".venv", "AppData", ".cache"})
        m_program->writeHomeFile(QLatin1String(folder) + QStringLiteral("/hoard.memo"));
    m_program->writeHomeFile(QStringLiteral(".config/app/hoard.memo")); // hidden, but a user's own
    startWithScopes({kFile});
    searchFor(QStringLiteral("hoard"));
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
    m_program->writeHomeFile(QStringLiteral(".git/objects/hoard.memo"));
    m_program->writeHomeFile(QStringLiteral("src/hoard.memo"));
    const QStringList two{kMemoIcon, kMemoIcon};
    QTRY_COMPARE(icons(), two);
    QCOMPARE(m_icons->namesIn(m_program->settledScreenshot()), two);
}

void E2eFiles::hintStandsUntilTheFirstScanIsDone()
{
    Theme::forceTheme = 1;
    m_program->setSetting(QStringLiteral("Theme/ForceTheme"), 1);
    SlowHome::begin(*m_desktop, *m_program);
    startWithScopes({kFile});
    QVERIFY(!isOpen());
    searchFor(QStringLiteral("seldom"));
    QTRY_VERIFY(isOpen());
    const QImage picture = m_program->settledScreenshot();
    Program::keep(picture, QStringLiteral("files-preparing"));
    // Below the header; and it isn't selected.
    const QPoint block = kCard + QPoint(6 + 4, kChipStripHeight + 4 + 30 + 4);
    QCOMPARE(picture.pixelColor(block + QPoint(200, 2)), QColor(Theme::boxBg()));
    QCOMPARE(picture.pixelColor(block + QPoint(14, 28)), QColor(Theme::colors().surfaceVariant));
    QCOMPARE(picture.pixelColor(block + QPoint(200, 64)), QColor(Theme::panelBg()));
    m_program->key(QStringLiteral("Down"));
    m_program->key(QStringLiteral("Return"));
    // All but the field, in which the cursor blinks, is as it was.
    const QRect panel(kCard + QPoint(0, kChipStripHeight), QSize(520, kPanelHeight));
    QTRY_COMPARE(m_program->settledScreenshot().copy(panel), picture.copy(panel));
    QVERIFY(m_program->isSpotlightUp());
    QCOMPARE(m_desktop->opened(), QStringList());

    SlowHome::end(*m_desktop);
    const QStringList rows{kMemoIcon, kMemoIcon, kMemoIcon, kMemoIcon, kMemoIcon};
    QTRY_COMPARE(icons(), rows);
    searchFor(QStringLiteral("not in there"));
    QTRY_VERIFY(!isOpen());
}

void E2eFiles::allScopesSayNothingWhileTheIndexPrepares()
{
    Theme::forceTheme = 1;
    m_program->setSetting(QStringLiteral("Theme/ForceTheme"), 1);
    SlowHome::begin(*m_desktop, *m_program);
    startWithScopes({});
    searchFor(QStringLiteral("seldom"));
    QTRY_VERIFY(isOpen());
    const QImage picture = m_program->settledScreenshot();
    QCOMPARE(m_icons->namesIn(picture), QStringList());
    // The first row below the first header is that of the web, which can be chosen.
    const QPoint block = kCard + QPoint(6 + 4, kStripHeight + 4 + 30 + 4);
    QCOMPARE(picture.pixelColor(block + QPoint(200, 2)), QColor(Theme::boxActiveBg()));
    QCOMPARE(picture.pixelColor(block + QPoint(200, 64)), QColor(Theme::panelBg()));
    SlowHome::end(*m_desktop);
    const QStringList rows{kMemoIcon, kMemoIcon, kMemoIcon, kMemoIcon, kMemoIcon};
    QTRY_COMPARE(icons(), rows);
}

void E2eFiles::looks_data()
{
    QTest::addColumn<int>("theme");
    QTest::newRow("light") << 1;
    QTest::newRow("dark") << 2;
}

void E2eFiles::looks()
{
    QFETCH(int, theme);
    const QString suffix = QLatin1Char('-') + QLatin1String(QTest::currentDataTag());
    Theme::forceTheme = theme; // for the colours that are expected
    m_program->setSetting(QStringLiteral("Theme/ForceTheme"), theme);
    for (const char* name : {"Team/team.memo",
                             "Team/teams of last year and the one before, in a "
                             "list with a very long name.memo",
                             "team plan.unknown"})
        m_program->writeHomeFile(QLatin1String(name));
    m_program->writeData(QStringLiteral("data.json"), Profile::document(Profile::examples()));
    startWithScopes({kFile, kFolder});
    searchFor(QStringLiteral("team"));
    const QStringList files{kMemoIcon, kMemoIcon};
    QTRY_COMPARE(icons(), files);
    Program::keep(m_program->settledScreenshot(), QStringLiteral("files") + suffix);
    for (int i = 0; i < 5; ++i)
        m_program->key(QStringLiteral("Down"));
    QTRY_COMPARE(icons().value(icons().size() - 1), kFolderIcon);
    Program::keep(m_program->settledScreenshot(), QStringLiteral("folders") + suffix);
    m_program->key(QStringLiteral("Escape"));
    m_program->waitUntilSpotlightIsGone();
    m_program->setSetting(QStringLiteral("Spotlight/DefaultScope"), QStringList());
    m_program->openSpotlight();
    searchFor(QStringLiteral("teams"));
    QTRY_COMPARE(icons(), QStringList{kMemoIcon});
    const QImage all = m_program->settledScreenshot();
    Program::keep(all, QStringLiteral("files-and-web") + suffix);
    // Below the header, seven pixels inside the circle of the row.
    const QPoint block = kCard + QPoint(6 + 4, kStripHeight + 4 + 30 + 4);
    QCOMPARE(m_icons->shownIn(all).constFirst().area,
             QRect(block + QPoint(12 + 7, 10 + 7), QSize(22, 22)));
}

QTEST_GUILESS_MAIN(E2eFiles)
#include "tst_e2e_files.moc"
