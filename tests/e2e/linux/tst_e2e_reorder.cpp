// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HomePage.h"
#include "Profile.h"
#include "Theme.h"

#include <QElapsedTimer>
#include <QtTest>

/// Items and sections put into another order by real keys and mouse, with the document on disk, the
/// next start and the clipboard as witnesses.
class E2eReorder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void itemsByKeys();
    void itemsByMouse();
    void itemsByMouseBeyondTheEdge();
    void sectionsByKeys();
    void sectionsByMouse();
    void commits_data();
    void commits();
    void cancels_data();
    void cancels();
    void refuses_data();
    void refuses();
    void looks_data();
    void looks();

private:
    /// "Work" with a dozen snippets, "Play" with one, "Rest" with none.
    static QByteArray threeSections();
    void writeProfile(HomePage& home) const;
    static void beginItems(const HomePage& home);
    static void beginSections(const HomePage& home);
    void drag(HomePage& home, const QPoint& from, const QPoint& to) const;
    static void startAgain(HomePage& home);
    void verifyRuns(HomePage& home, const QString& name) const;

    std::unique_ptr<Desktop> m_desktop;
};

namespace
{

const QString kWork = QStringLiteral("Work");

/// About what the hint takes above the tiles, on one line.
constexpr QPoint kHintRoom{0, 46};

LauncherElement snippet(const QString& name)
{
    return Profile::item(name, QStringLiteral("Snippet"), QStringLiteral("text of ") + name);
}

/// Those of the dozen, by their numbers.
QStringList itemsNamed(const QVector<int>& numbers)
{
    QStringList names;
    for (const int number : numbers)
        names.append(QStringLiteral("Item %1").arg(number));
    return names;
}

QVector<LauncherElement> dozen()
{
    QVector<LauncherElement> items;
    for (const QString& name : itemsNamed({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}))
        items.append(snippet(name));
    return items;
}

/// In the mode.
QPoint tileInMode(int index)
{
    return HomePage::tile(index) + kHintRoom;
}

} // namespace

void E2eReorder::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

QByteArray E2eReorder::threeSections()
{
    return Profile::documentOfSections({{kWork, dozen()},
                                        {QStringLiteral("Play"), {snippet(QStringLiteral("Lone"))}},
                                        {QStringLiteral("Rest"), {}}});
}

void E2eReorder::writeProfile(HomePage& home) const
{
    home.program().writeData(QStringLiteral("data.json"), threeSections());
    m_desktop->setClipboard(QStringLiteral("from before"));
}

/// From the strip.
void E2eReorder::beginItems(const HomePage& home)
{
    home.press({HomePage::Return});
    home.chooseRow(HomePage::ReorderItemsRow);
}

void E2eReorder::beginSections(const HomePage& home)
{
    home.press({HomePage::Return});
    home.chooseRow(HomePage::ReorderSectionsRow);
}

void E2eReorder::drag(HomePage& home, const QPoint& from, const QPoint& to) const
{
    home.settledScreenshot();
    home.takeWithPointer(from);
    home.movePointer((from + to) / 2);
    home.movePointer(to);
    home.dropFromPointer();
    home.settledScreenshot();
}

void E2eReorder::startAgain(HomePage& home)
{
    home.program().process().kill();
    QVERIFY(home.program().process().waitForFinished());
    home.start();
}

/// Enter on the grid runs this item.
void E2eReorder::verifyRuns(HomePage& home, const QString& name) const
{
    home.press({HomePage::Return});
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of ") + name);
}

void E2eReorder::itemsByKeys()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    beginItems(home);
    // The first to the right and two rows down, the third to the front, the last up a row.
    home.press({HomePage::Space, HomePage::Right, HomePage::Down, HomePage::Down, HomePage::Space,
                HomePage::Up, HomePage::Up, HomePage::Space, HomePage::Left, HomePage::Space,
                HomePage::Down, HomePage::Down, HomePage::Down, HomePage::Right, HomePage::Right,
                HomePage::Space, HomePage::Up});
    QCOMPARE(home.program().readData(QStringLiteral("data.json")), threeSections());
    home.press({HomePage::Return});
    const QStringList expected = itemsNamed({3, 2, 4, 5, 6, 7, 8, 1, 12, 9, 10, 11});
    QTRY_COMPARE(home.itemNames(kWork), expected);
    verifyRuns(home, QStringLiteral("Item 12")); // the one that was moved last

    startAgain(home);
    QCOMPARE(home.itemNames(kWork), expected);
    home.goToItem(7);
    verifyRuns(home, QStringLiteral("Item 1"));
}

void E2eReorder::itemsByMouse()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    beginItems(home);
    drag(home, tileInMode(1), tileInMode(6)); // two rows down and one column to the left
    drag(home, tileInMode(5), tileInMode(0));
    QCOMPARE(home.program().readData(QStringLiteral("data.json")), threeSections());
    home.press({HomePage::Return});
    const QStringList expected = itemsNamed({7, 1, 3, 4, 5, 6, 2, 8, 9, 10, 11, 12});
    QTRY_COMPARE(home.itemNames(kWork), expected);
    verifyRuns(home, QStringLiteral("Item 7"));

    startAgain(home);
    home.goToItem(6);
    verifyRuns(home, QStringLiteral("Item 2"));
}

/// At the lower edge the tiles scroll as far as there are any.
void E2eReorder::itemsByMouseBeyondTheEdge()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    beginItems(home);
    home.settledScreenshot();
    const QPoint corner(HomePage::tile(2).x(), 570);
    home.takeWithPointer(tileInMode(0));
    home.movePointer(corner);
    home.settledScreenshot();
    home.dropFromPointer();
    home.press({HomePage::Return});
    QTRY_COMPARE(home.itemNames(kWork), itemsNamed({2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 1}));
    verifyRuns(home, QStringLiteral("Item 1"));
}

void E2eReorder::sectionsByKeys()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    beginSections(home);
    home.press({HomePage::Space, HomePage::Right, HomePage::Right, HomePage::Space, HomePage::Left,
                HomePage::Space, HomePage::Left});
    QCOMPARE(home.program().readData(QStringLiteral("data.json")), threeSections());
    home.press({HomePage::Return});
    const QStringList expected{QStringLiteral("Rest"), QStringLiteral("Play"), kWork};
    QTRY_COMPARE(home.sections(), expected);
    // The strip has the keyboard, and the section that was open is still that.
    home.press({HomePage::Left, HomePage::Down});
    verifyRuns(home, QStringLiteral("Lone"));

    startAgain(home);
    QCOMPARE(home.sections(), expected);
    home.press({HomePage::Right, HomePage::Down});
    verifyRuns(home, QStringLiteral("Item 1"));
}

void E2eReorder::sectionsByMouse()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    beginSections(home);
    constexpr QPoint kBehindAll(400, 126);
    drag(home, HomePage::FirstPill, kBehindAll);
    home.press({HomePage::Return});
    const QStringList expected{QStringLiteral("Play"), QStringLiteral("Rest"), kWork};
    QTRY_COMPARE(home.sections(), expected);
    home.press({HomePage::Left, HomePage::Left, HomePage::Down});
    verifyRuns(home, QStringLiteral("Lone"));
    startAgain(home);
    QCOMPARE(home.sections(), expected);
}

void E2eReorder::commits_data()
{
    QTest::addColumn<bool>("ofSections");
    QTest::addColumn<QString>("end");
    for (const char* end : {"Enter", "pill", "hotkey", "focus"})
        QTest::addRow("items, %s", end) << false << QString::fromLatin1(end);
    for (const char* end : {"Enter", "hotkey", "focus"})
        QTest::addRow("sections, %s", end) << true << QString::fromLatin1(end);
}

void E2eReorder::commits()
{
    QFETCH(bool, ofSections);
    QFETCH(QString, end);
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    if (ofSections)
        beginSections(home);
    else
        beginItems(home);
    home.press({HomePage::Space, HomePage::Right});
    if (end == QLatin1String("Enter")) {
        home.press({HomePage::Return});
    } else if (end == QLatin1String("pill")) {
        home.click(HomePage::FirstPill + QPoint(90, 0));
    } else if (end == QLatin1String("hotkey")) {
        home.program().key(QStringLiteral("ctrl+alt+space"));
        home.waitUntilGone();
    } else {
        // Soon after the window has come up, and after a menu, that doesn't count.
        QElapsedTimer sinceTheMenu;
        sinceTheMenu.start();
        QTRY_VERIFY(sinceTheMenu.elapsed() > 2100);
        m_desktop->focusOtherWindow();
        home.waitUntilGone();
    }
    if (ofSections) {
        QTRY_COMPARE(home.sections(),
                     QStringList({QStringLiteral("Play"), kWork, QStringLiteral("Rest")}));
    } else {
        QTRY_COMPARE(home.itemNames(kWork), itemsNamed({2, 1, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
    }
    // The mode is over: keys and Esc mean what they always do.
    home.showAgain();
    const bool isInPlay = end == QLatin1String("pill");
    home.press({HomePage::Down});
    verifyRuns(home, isInPlay ? QStringLiteral("Lone")
                              : QStringLiteral("Item %1").arg(ofSections ? 1 : 2));
    home.show();
    home.press({HomePage::Escape});
    home.waitUntilGone();
}

void E2eReorder::cancels_data()
{
    QTest::addColumn<bool>("ofSections");
    QTest::addColumn<int>("key");
    for (const bool ofSections : {false, true}) {
        const char* what = ofSections ? "sections" : "items";
        QTest::addRow("%s, Esc", what) << ofSections << int(HomePage::Escape);
        QTest::addRow("%s, Backspace", what) << ofSections << int(HomePage::BackSpace);
    }
}

void E2eReorder::cancels()
{
    QFETCH(bool, ofSections);
    QFETCH(int, key);
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    home.goToItem(4);
    home.press({HomePage::Up, HomePage::Up}); // to the strip, by way of the first row
    const QImage before = home.settledScreenshot();
    if (ofSections)
        beginSections(home);
    else
        beginItems(home);
    home.press({HomePage::Space, HomePage::Right, HomePage::Right});
    QTRY_VERIFY(home.settledScreenshot() != before);
    home.press({xcb_keysym_t(key)});
    QVERIFY(home.isUp());
    QCOMPARE(home.program().readData(QStringLiteral("data.json")), threeSections());
    // The grid, or the strip, has the keyboard and shows what it did.
    if (ofSections) {
        QTRY_COMPARE(home.settledScreenshot(), before);
        home.press({HomePage::Down});
    }
    verifyRuns(home, QStringLiteral("Item 2"));
    QCOMPARE(home.program().readData(QStringLiteral("data.json")), threeSections());
}

void E2eReorder::refuses_data()
{
    using Keys = QVector<int>;
    QTest::addColumn<bool>("ofSections");
    QTest::addColumn<int>("sectionCount");
    QTest::addColumn<Keys>("keys"); // from the strip and back to it
    QTest::newRow("one item") << false << 3 << Keys{HomePage::Right};
    QTest::newRow("no items") << false << 3 << Keys{HomePage::Right, HomePage::Right};
    QTest::newRow("searching") << false << 3 << Keys{'t', 'e', HomePage::Down};
    QTest::newRow("a blank in the field")
        << false << 3 << Keys{HomePage::Up, HomePage::Space, HomePage::Down};
    QTest::newRow("one section") << true << 1 << Keys{};
}

void E2eReorder::refuses()
{
    QFETCH(bool, ofSections);
    QFETCH(int, sectionCount);
    QFETCH(QVector<int>, keys);
    const QByteArray document = sectionCount == 1 ? Profile::document(dozen()) : threeSections();
    HomePage home(*m_desktop);
    home.program().writeData(QStringLiteral("data.json"), document);
    home.start();
    for (const int key : keys)
        home.press({xcb_keysym_t(key)});
    if (ofSections)
        beginSections(home);
    else
        beginItems(home);
    const xcb_window_t warning = home.waitForDialog();
    QCOMPARE(m_desktop->client().titleOf(warning),
             ofSections ? QStringLiteral("Reorder Sections") : QStringLiteral("Reorder Items"));
    Program::keep(home.settledScreenshot(),
                  QStringLiteral("reorder-refused-") +
                      QString::fromLatin1(QTest::currentDataTag()).replace(u' ', u'-'));
    home.press({HomePage::Return});
    home.waitForHome();
    // No mode has begun: Esc hides the window.
    home.press({HomePage::Escape});
    home.waitUntilGone();
    QCOMPARE(home.program().readData(QStringLiteral("data.json")), document);
}

void E2eReorder::looks_data()
{
    QTest::addColumn<int>("theme");
    QTest::addColumn<QString>("language");
    for (const char* language : {"en", "id", "es", "ja"}) {
        QTest::addRow("light-%s", language) << 1 << QString::fromLatin1(language);
        QTest::addRow("dark-%s", language) << 2 << QString::fromLatin1(language);
    }
}

/// Pictures to look at, on a screen with twice the pixels.
void E2eReorder::looks()
{
    QFETCH(int, theme);
    QFETCH(QString, language);
    Desktop desktop(Desktop::WindowManager | Desktop::Compositor,
                    {QStringLiteral("openbox"), QStringLiteral("--sm-disable")}, {2000, 1400});
    const QString look =
        QStringLiteral("reorder-") + QString::fromLatin1(QTest::currentDataTag()) + u'-';
    HomePage home(desktop);
    home.program().setScale(2);
    home.program().setSetting(QStringLiteral("Theme/ForceTheme"), theme);
    home.program().setSetting(QStringLiteral("Language/Code"), language);
    home.program().writeData(QStringLiteral("data.json"), threeSections());
    home.start();
    beginItems(home);
    Program::keep(home.settledScreenshot(), look + QStringLiteral("items"));
    home.press({HomePage::Right, HomePage::Down, HomePage::Space});
    const QImage lifted = home.settledScreenshot();
    Program::keep(lifted, look + QStringLiteral("items-lifted"));
    const auto at = [&](const QPoint& place) {
        return QColor(lifted.pixel(home.program().homeWindow().geometry.topLeft() + 2 * place));
    };
    Theme::forceTheme = theme; // for the colours that are expected
    constexpr QPoint kHintsUpperEdge(308, 184);
    QCOMPARE(at(kHintsUpperEdge), QColor(Theme::colors().surfaceContainerHighest));
    QCOMPARE(at(tileInMode(4) - QPoint(60, 0)), QColor(Theme::colors().primaryContainer));
    home.press({HomePage::Left});
    // As many of the slide as the screen gives in its time.
    constexpr int kSlidePictures = 3;
    for (int i = 1; i <= kSlidePictures; ++i) {
        Program::keep(desktop.client().screenshot(),
                      look + QStringLiteral("items-slide-%1").arg(i));
    }
    QVERIFY(home.settledScreenshot() != lifted);
    home.press({HomePage::Escape, HomePage::Up}); // from the first row to the strip
    beginSections(home);
    home.press({HomePage::Space, HomePage::Right});
    Program::keep(home.settledScreenshot(), look + QStringLiteral("sections-lifted"));
    QVERIFY(home.isUp());
}

QTEST_GUILESS_MAIN(E2eReorder)
#include "tst_e2e_reorder.moc"
