// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FolderFilter.h"
#include "Profile.h"
#include "Program.h"
#include "SlowHome.h"
#include "Theme.h"

#include <QDir>
#include <QFile>
#include <QUrl>
#include <QtTest>

#include <memory>
#include <optional>

/// Limiting the file results to folders, by real keys and a real mouse.
class E2eFolders : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void pickedFolderNarrowsForGood();
    void clickRemovesTheChip();
    void backspaceLeavesTheChip();
    void pickerByMouse();
    void leavingThePickerChangesNothing_data();
    void leavingThePickerChangesNothing();
    void folderOfTheHomeIsAdded();
    void folderOutsideTheHomeIsRefused();
    void anyBytesInTheFile_data();
    void anyBytesInTheFile();
    void looks_data();
    void looks();

private:
    void start(const QStringList& folders = {});
    void restart();
    void searchForPlans();
    std::optional<XClient::Window> dialog(const QSize& smallest) const;
    std::optional<XClient::Window> picker() const { return dialog({480, 380}); }
    /// Without its shadow.
    QRect pickerCard() const
    {
        return picker().value_or(XClient::Window()).geometry.adjusted(10, 10, -10, -10);
    }
    bool hasFocus(const std::optional<XClient::Window>& window) const;
    void openPicker() const;
    void openAddOther();
    void pressAt(const QPoint& position) const;
    QString homePath(const QString& name) const { return m_program->homeDir() + '/' + name; }
    QByteArray stored() const { return m_program->readData(kFileName); }
    void searchAndLaunchSecond();
    int height() const { return m_program->spotlight().geometry.height(); }

    static inline const QString kFileName = QStringLiteral("folderfilter.json");
    static constexpr int kEmptyHeight = 144;
    static constexpr int kChipHeight = 190; // one row of chips
    static constexpr int kPanelHeight = 328;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<Program> m_program;
};

namespace
{

constexpr QPoint kCard = Program::SpotlightCard;
constexpr QPoint kFirstChip = kCard + QPoint(18 + 8, 18 + 44 + 18);
constexpr QPoint kFirstRow = kCard + QPoint(6 + 4, 126 + 4 + 30 + 4); // below a row of chips

QString fileAddress(const QString& path)
{
    return QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
}

} // namespace

void E2eFolders::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

void E2eFolders::init()
{
    m_program = std::make_unique<Program>(*m_desktop);
    m_program->writeHomeFile(QStringLiteral("Documents/plan-one.memo"));
    m_program->writeHomeFile(QStringLiteral("Music/plan-two.memo"));
    m_program->writeHomeFile(QStringLiteral("Zoo/plan-three.memo"));
}

void E2eFolders::cleanup()
{
    m_program.reset();
}

void E2eFolders::start(const QStringList& folders)
{
    Theme::forceTheme = 1; // for the colours that are expected
    m_program->setSetting(QStringLiteral("Theme/ForceTheme"), 1);
    m_program->setSetting(QStringLiteral("Spotlight/DefaultScope"),
                          QStringList{QStringLiteral("File")});
    if (!folders.isEmpty())
        m_program->writeData(kFileName, FolderFilter::toBytes(folders));
    m_program->startAndSettle();
    m_program->openSpotlight();
}

void E2eFolders::restart()
{
    m_program->process().kill();
    QVERIFY(m_program->process().waitForFinished());
    m_program->startAndSettle();
    m_program->openSpotlight();
}

void E2eFolders::searchForPlans()
{
    m_program->type(QStringLiteral("plan-"));
    QTRY_COMPARE(height(), kChipHeight + kPanelHeight);
    // A row of a file is chosen at once, while the hint that stands there until the home is indexed
    // never is.
    QTRY_COMPARE(QColor(m_desktop->client().pixel(kFirstRow + QPoint(200, 2))),
                 QColor(Theme::boxActiveBg()));
}

std::optional<XClient::Window> E2eFolders::dialog(const QSize& smallest) const
{
    const auto windows = m_desktop->client().windowsOf(m_program->process().processId());
    for (const XClient::Window& window : windows) {
        const QSize size = window.geometry.size();
        const bool isOwn =
            window.id == m_program->spotlight().id || window.id == m_program->homeWindow().id;
        if (window.isViewable && !isOwn && size.width() >= smallest.width() &&
            size.height() >= smallest.height())
            return window;
    }
    return std::nullopt;
}

bool E2eFolders::hasFocus(const std::optional<XClient::Window>& window) const
{
    return window && m_desktop->client().focus() == window->id;
}

void E2eFolders::openPicker() const
{
    m_program->key(QStringLiteral("F4"));
    QTRY_VERIFY(dialog({100, 100}));
    m_program->key(QStringLiteral("Up")); // the last row
    m_program->key(QStringLiteral("Return"));
    QTRY_VERIFY(hasFocus(picker()));
}

void E2eFolders::openAddOther()
{
    openPicker();
    const XClient::Window under = *picker();
    m_program->key(QStringLiteral("Tab"));
    m_program->key(QStringLiteral("space"));
    QTRY_VERIFY(m_desktop->client().focus() != under.id);
    m_program->settledScreenshot();
}

void E2eFolders::pressAt(const QPoint& position) const
{
    m_desktop->xdotool({QStringLiteral("mousemove"), QString::number(position.x()),
                        QString::number(position.y()), QStringLiteral("click"),
                        QStringLiteral("1")});
}

/// Launches the second file that is found, if there are two, and else the only one.
void E2eFolders::searchAndLaunchSecond()
{
    m_program->key(QStringLiteral("Down"));
    m_program->key(QStringLiteral("Down"));
    m_program->key(QStringLiteral("Return"));
    m_program->waitUntilSpotlightIsGone();
}

void E2eFolders::pickedFolderNarrowsForGood()
{
    start();
    searchForPlans();
    openPicker();
    // All folders, documents, music.
    for (const char* key : {"Down", "Down", "space"})
        m_program->key(QLatin1String(key));
    Program::keep(m_program->settledScreenshot(), QStringLiteral("folders-picked"));
    m_program->key(QStringLiteral("Return"));
    QTRY_VERIFY(!picker());
    QTRY_VERIFY(m_program->isSpotlightUp());
    QTRY_COMPARE(stored(), FolderFilter::toBytes({homePath(QStringLiteral("Music"))}));
    // Two chips, and the text is still there.
    QTRY_COMPARE(height(), kChipHeight + kPanelHeight);
    const QImage picture = m_program->settledScreenshot();
    Program::keep(picture, QStringLiteral("folders-chip"));
    const QColor chip(Theme::colors().primaryContainer);
    QCOMPARE(picture.pixelColor(kFirstChip + QPoint(14, 1)), chip);
    int chips = 0;
    for (int x = 0; x < 300; ++x) { // along the upper edge, where no text is
        const bool isChip = picture.pixelColor(kFirstChip + QPoint(x, 1)) == chip;
        const bool wasChip = x > 0 && picture.pixelColor(kFirstChip + QPoint(x - 1, 1)) == chip;
        chips += isChip && !wasChip ? 1 : 0;
    }
    QCOMPARE(chips, 2);
    searchAndLaunchSecond();
    const QString music = fileAddress(homePath(QStringLiteral("Music/plan-two.memo")));
    QTRY_COMPARE(m_desktop->opened(), QStringList{music});

    restart();
    QTRY_COMPARE(height(), kChipHeight);
    searchForPlans();
    searchAndLaunchSecond();
    QTRY_COMPARE(m_desktop->opened(), (QStringList{music, music}));
}

void E2eFolders::clickRemovesTheChip()
{
    start({homePath(QStringLiteral("Music")), homePath(QStringLiteral("gone"))});
    searchForPlans();
    m_program->key(QStringLiteral("ctrl+a"));
    m_program->key(QStringLiteral("BackSpace"));
    m_program->key(QStringLiteral("BackSpace")); // the scope's chip
    QTRY_COMPARE(height(), kChipHeight);
    m_program->settledScreenshot(); // the chips move up to its place
    pressAt(kFirstChip + QPoint(20, 14));
    QTRY_COMPARE(stored(), FolderFilter::toBytes({homePath(QStringLiteral("gone"))}));
    m_program->settledScreenshot();
    pressAt(kFirstChip + QPoint(20, 14));
    QTRY_COMPARE(stored(), QByteArray("[]"));
    QTRY_COMPARE(height(), kEmptyHeight);
    QVERIFY(m_program->isSpotlightUp());
    restart();
    QTRY_COMPARE(height(), kChipHeight); // the scope's alone
    m_program->key(QStringLiteral("BackSpace"));
    QTRY_COMPARE(height(), kEmptyHeight);
}

void E2eFolders::backspaceLeavesTheChip()
{
    const QByteArray before = FolderFilter::toBytes({homePath(QStringLiteral("Music"))});
    start({homePath(QStringLiteral("Music"))});
    for (int i = 0; i < 4; ++i) // the first takes the scope
        m_program->key(QStringLiteral("BackSpace"));
    const QImage picture = m_program->settledScreenshot();
    QCOMPARE(picture.pixelColor(kFirstChip + QPoint(14, 1)),
             QColor(Theme::colors().primaryContainer));
    QCOMPARE(height(), kChipHeight);
    QCOMPARE(stored(), before);
    QVERIFY(m_program->isSpotlightUp());
}

void E2eFolders::pickerByMouse()
{
    start();
    searchForPlans();
    pressAt(kCard + QPoint(18 + 8 + 20, 18 + 22)); // the button of the filters
    QTRY_VERIFY(dialog({100, 100}));
    m_program->settledScreenshot();
    const QRect menu = dialog({100, 100})->geometry;
    pressAt(QPoint(menu.center().x(), menu.bottom() - 24));
    QTRY_VERIFY(hasFocus(picker()));
    QTRY_COMPARE(pickerCard().top(), kCard.y());
    QTRY_VERIFY(qAbs(pickerCard().center().x() - m_program->spotlight().geometry.center().x()) <=
                1);
    const QRect card = pickerCard();
    const QImage picture = m_program->settledScreenshot();
    // The rows begin below the hint. The first one's circle is filled, the others are rings.
    const QColor dot(Theme::colors().primary);
    const int x = card.left() + 1 + 24 + 1 + 4 + 10 + 9;
    int y = card.top() + 40;
    while (y < card.bottom() && picture.pixelColor(x, y) != dot)
        ++y;
    QVERIFY(y < card.bottom());
    pressAt(QPoint(x + 60, y + 8 + 34)); // documents
    m_program->settledScreenshot();
    pressAt(QPoint(x + 60, y + 8 + 2 * 34)); // music
    const QImage chosen = m_program->settledScreenshot();
    const QColor selected(Theme::colors().primaryContainer);
    QCOMPARE(chosen.pixelColor(card.right() - 60, y + 8),
             QColor(Theme::fieldIdleBg(Theme::colors())));
    QCOMPARE(chosen.pixelColor(card.right() - 60, y + 8 + 34), selected);
    QCOMPARE(chosen.pixelColor(card.right() - 60, y + 8 + 2 * 34), selected);
    pressAt(card.bottomRight() - QPoint(24 + 24, 24 + 18)); // OK
    QTRY_VERIFY(!picker());
    QTRY_VERIFY(m_program->isSpotlightUp());
    QTRY_COMPARE(stored(), FolderFilter::toBytes({homePath(QStringLiteral("Documents")),
                                                  homePath(QStringLiteral("Music"))}));
}

void E2eFolders::leavingThePickerChangesNothing_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("Esc") << "Escape";
    QTest::newRow("Backspace") << "BackSpace";
}

void E2eFolders::leavingThePickerChangesNothing()
{
    QFETCH(QString, key);
    start();
    searchForPlans();
    const QRect panel(kCard + QPoint(0, 126 + 4), QSize(520, 200));
    const QImage before = m_program->settledScreenshot();
    openPicker();
    m_program->key(QStringLiteral("Down"));
    m_program->key(QStringLiteral("space"));
    m_program->key(key);
    QTRY_VERIFY(!picker());
    QTRY_VERIFY(m_program->isSpotlightUp());
    QTRY_COMPARE(m_program->settledScreenshot().copy(panel), before.copy(panel));
    QCOMPARE(stored(), QByteArray());
    m_program->key(QStringLiteral("Return")); // the text is still there, and the row
    QTRY_COMPARE(m_desktop->opened().size(), 1);
}

void E2eFolders::folderOfTheHomeIsAdded()
{
    start();
    searchForPlans();
    openAddOther();
    m_program->type(homePath(QStringLiteral("Zoo")));
    m_program->settledScreenshot();
    m_program->key(QStringLiteral("Return"));
    QTRY_VERIFY(hasFocus(picker()));
    Program::keep(m_program->settledScreenshot(), QStringLiteral("folders-added"));
    m_program->key(QStringLiteral("Tab"));
    m_program->key(QStringLiteral("Tab"));
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(stored(), FolderFilter::toBytes({homePath(QStringLiteral("Zoo"))}));
    QTRY_VERIFY(m_program->isSpotlightUp());
    searchAndLaunchSecond();
    QTRY_COMPARE(m_desktop->opened(),
                 QStringList{fileAddress(homePath(QStringLiteral("Zoo/plan-three.memo")))});
}

void E2eFolders::folderOutsideTheHomeIsRefused()
{
    start({homePath(QStringLiteral("Music"))});
    openAddOther();
    m_program->type(QStringLiteral("/usr/share"));
    m_program->settledScreenshot();
    m_program->key(QStringLiteral("Return"));
    // The file dialog gives way to the warning.
    QTRY_VERIFY(!hasFocus(picker()) && !hasFocus(m_program->spotlight()));
    Program::keep(m_program->settledScreenshot(), QStringLiteral("folders-refused"));
    m_program->key(QStringLiteral("Return"));
    QTRY_VERIFY(hasFocus(picker()));
    m_program->key(QStringLiteral("Escape"));
    QTRY_VERIFY(!picker());
    QTRY_VERIFY(m_program->isSpotlightUp());
    QTRY_COMPARE(stored(), FolderFilter::toBytes({homePath(QStringLiteral("Music"))}));
}

void E2eFolders::anyBytesInTheFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("stripRows"); // of chips, the scope's among them
    QTest::newRow("object") << QByteArray(R"({"/a":1})") << 1;
    QTest::newRow("text") << QByteArray(R"("/a")") << 1;
    QTest::newRow("zeros") << QByteArray(4096, '\0') << 1;
    QTest::newRow("invalid UTF-8") << QByteArray("[\"/\xff\xfe\"]") << 1;
    QTest::newRow("numbers among them") << QByteArray(R"([1,null,"/a",{},["/b"]])") << 1;
    QTest::newRow("a megabyte in one name")
        << QByteArray("[\"/" + QByteArray(1024 * 1024, 'n') + "\"]") << 2;
    QTest::newRow("markup, line feeds, marks")
        << QByteArray("[\"/<b>x</b><img src=y>\",\"/a\\nb\",\"/\xe2\x80\xae"
                      "abc\",\"/&amp;\"]")
        << 2;
}

void E2eFolders::anyBytesInTheFile()
{
    QFETCH(QByteArray, content);
    QFETCH(int, stripRows);
    m_program->writeData(kFileName, content);
    start();
    QTRY_COMPARE(height(), kChipHeight + (stripRows - 1) * 36);
    QCOMPARE(m_program->spotlight().geometry.width(), 584);
    Program::keep(m_program->settledScreenshot(),
                  QStringLiteral("folders-bytes-") + QLatin1String(QTest::currentDataTag()));
    QCOMPARE(stored(), content); // left alone until there is something to store
    openPicker();
    m_program->key(QStringLiteral("Escape"));
    QTRY_VERIFY(m_program->isSpotlightUp());
}

void E2eFolders::looks_data()
{
    QTest::addColumn<int>("theme");
    QTest::addColumn<QString>("language");
    QTest::addColumn<bool>("isIndexed");
    for (const char* language : {"en", "id", "es", "ja"}) {
        const QString code = QString::fromLatin1(language);
        QTest::addRow("light-%s", language) << 1 << code << true;
        QTest::addRow("dark-%s", language) << 2 << code << true;
    }
    QTest::newRow("light-en-unindexed") << 1 << "en" << false;
    QTest::newRow("dark-ja-unindexed") << 2 << "ja" << false;
}

void E2eFolders::looks()
{
    QFETCH(int, theme);
    QFETCH(QString, language);
    QFETCH(bool, isIndexed);
    const QString name = QStringLiteral("folders-") + QLatin1String(QTest::currentDataTag());
    if (!isIndexed)
        SlowHome::begin(*m_desktop, *m_program);
    for (const char* folder : {"Desktop", "Downloads", "Pictures", "Videos"}) {
        for (int i = 0; i < 40; ++i)
            m_program->writeHomeFile(
                QStringLiteral("%1/file %2.txt").arg(QLatin1String(folder)).arg(i));
    }
    m_program->setSetting(QStringLiteral("Theme/ForceTheme"), theme);
    m_program->setSetting(QStringLiteral("Language/Code"), language);
    m_program->setSetting(
        QStringLiteral("Spotlight/DefaultScope"),
        QStringList{QStringLiteral("File"), QStringLiteral("Snippet"), QStringLiteral("Bulk")});
    QStringList folders;
    for (const char* folder :
         {"Documents", "Zoo", "A folder with quite a long name of its own", "Music", "R&D"})
        folders.append(homePath(QString::fromLatin1(folder)));
    folders.append(homePath(QStringLiteral("A name that is longer than ") +
                            QStringLiteral("any chip ").repeated(10)));
    m_program->writeData(kFileName, FolderFilter::toBytes(folders));
    m_program->startAndSettle();
    m_program->openSpotlight();
    if (isIndexed) {
        m_program->type(QStringLiteral("plan-"));
        QTRY_VERIFY(height() > kChipHeight + kPanelHeight);
    }
    Program::keep(m_program->settledScreenshot(), name + QStringLiteral("-chips"));
    const int chipRows = (height() - kEmptyHeight - 18 + 8) % kPanelHeight / 36;
    QVERIFY2(chipRows >= 3, qPrintable(QString::number(chipRows)));
    m_program->key(QStringLiteral("F4"));
    QTRY_VERIFY(dialog({100, 100}));
    m_program->key(QStringLiteral("Up"));
    Program::keep(m_program->settledScreenshot(), name + QStringLiteral("-menu"));
    m_program->key(QStringLiteral("Return"));
    QTRY_VERIFY(hasFocus(picker()));
    Program::keep(m_program->settledScreenshot(), name + QStringLiteral("-picker"));
    // All those chips have lifted the window.
    QTRY_COMPARE(pickerCard().top(), m_program->spotlight().geometry.top() + 32);
    const int width = pickerCard().width();
    QVERIFY2(width <= 520, qPrintable(QString::number(width)));
    if (!isIndexed)
        SlowHome::end(*m_desktop);
}

QTEST_GUILESS_MAIN(E2eFolders)
#include "tst_e2e_folders.moc"
