// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HomePage.h"
#include "MainWindow.h"
#include "Profile.h"

#include <QRandomGenerator>
#include <QtTest>

/// Ways through the home page by its keys, the search, and what no order of keys and clicks may do.
class E2eHomeKeys : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void searchFindsInAllSections();
    void enterRunsTheFirstHit();
    void nothingFoundSearchesTheWeb_data();
    void nothingFoundSearchesTheWeb();
    void secondSuggestionIsClicked();
    void typingSearches_data();
    void typingSearches();
    void whatIsNoTypingDoesNotSearch();
    void sectionsAreSteppedThrough();
    void pillsScrollUnderTheWheel();
    void escapeHides_data();
    void escapeHides();
    void escapeLeavesStepByStep();
    void backspaceInTheEditor();
    void tabChangesNothingInACard_data();
    void tabChangesNothingInACard();
    void tabLeadsToTheSettingsAndBack();
    void randomKeysAndClicksDoNoHarm_data();
    void randomKeysAndClicksDoNoHarm();

private:
    void writeProfile(HomePage& home) const;
    QString plainWindowManagerConfig() const;
    void runRandomly(HomePage& home, QRandomGenerator& random, int steps) const;
    void pressRandomly(HomePage& home, QRandomGenerator& random) const;

    std::unique_ptr<Desktop> m_desktop;
    QTemporaryDir m_configDir;
};

namespace
{

LauncherElement snippet(const QString& name)
{
    return Profile::item(name, QStringLiteral("Snippet"), QStringLiteral("text of ") + name);
}

int fromEnvironment(const char* name, int otherwise)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariableIntValue(name) : otherwise;
}

} // namespace

void E2eHomeKeys::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

/// The words of the names of items tell them apart by their first letters.
void E2eHomeKeys::writeProfile(HomePage& home) const
{
    home.program().writeData(
        QStringLiteral("data.json"),
        Profile::documentOfSections(
            {{QStringLiteral("Work"),
              {snippet(QStringLiteral("Alpha mail")), snippet(QStringLiteral("Beta mail"))}},
             {QStringLiteral("Play"), {snippet(QStringLiteral("Gamma mail"))}},
             {QStringLiteral("Rest"), {}}}));
    m_desktop->setClipboard(QStringLiteral("from before"));
}

void E2eHomeKeys::searchFindsInAllSections()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    home.press({HomePage::Up});
    home.type(QStringLiteral("mail"));
    // From the field by way of the strip to the third hit, which is in another section.
    home.press({HomePage::Down});
    home.goToItem(2);
    home.press({HomePage::Return});
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of Gamma mail"));
    QCOMPARE(home.program().setting(QStringLiteral("lastCategory")).toString(),
             QStringLiteral("Work"));
    // The next show begins with an empty field.
    home.show();
    home.press({HomePage::Down, HomePage::Return});
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of Alpha mail"));
}

void E2eHomeKeys::enterRunsTheFirstHit()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    home.click(HomePage::SearchField);
    home.type(QStringLiteral("gam"));
    home.press({HomePage::Return});
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of Gamma mail"));
}

void E2eHomeKeys::nothingFoundSearchesTheWeb_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("opened");
    QTest::newRow("words") << "zebra crossing"
                           << "https://www.google.com/search?q=zebra%20crossing";
    QTest::newRow("an engine of its own") << "y zebras"
                                          << "https://www.youtube.com/results?search_query=zebras";
    QTest::newRow("an address and a blank") << "zebra.example.org "
                                            << "http://zebra.example.org";
}

void E2eHomeKeys::nothingFoundSearchesTheWeb()
{
    QFETCH(QString, text);
    QFETCH(QString, opened);
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    home.press({HomePage::Up});
    home.type(text);
    home.press({HomePage::Return});
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->opened(), QStringList{opened});
}

void E2eHomeKeys::secondSuggestionIsClicked()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    home.press({HomePage::Up});
    home.type(QStringLiteral("y zebras"));
    Program::keep(home.program().settledScreenshot(), QStringLiteral("home-suggestions"));
    constexpr QPoint kSecondSuggestion{308, 430};
    home.click(kSecondSuggestion);
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->opened(),
                 QStringList{QStringLiteral("https://www.google.com/search?q=y%20zebras")});
}

void E2eHomeKeys::typingSearches_data()
{
    using Keys = QVector<int>;
    QTest::addColumn<Keys>("keys"); // to where the typing begins
    QTest::newRow("strip") << Keys{};
    QTest::newRow("grid") << Keys{HomePage::Down, HomePage::Right};
    QTest::newRow("add button") << Keys{HomePage::Up, HomePage::Left, HomePage::Left};
    QTest::newRow("template button") << Keys{HomePage::Up, HomePage::Left};
    QTest::newRow("settings button") << Keys{HomePage::Up, HomePage::Right};
    QTest::newRow("field") << Keys{HomePage::Up};
}

void E2eHomeKeys::typingSearches()
{
    QFETCH(QVector<int>, keys);
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    for (const int key : keys)
        home.press({xcb_keysym_t(key)});
    home.type(QStringLiteral("Gamma ma"));
    home.press({HomePage::Return});
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of Gamma mail"));
}

void E2eHomeKeys::whatIsNoTypingDoesNotSearch()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    home.press({HomePage::Down, HomePage::Right});
    home.chord({HomePage::Control, 'g'});            // no letter that is typed
    home.press({HomePage::Space, HomePage::Escape}); // the menu of the item, and out of it
    home.press({HomePage::Return});
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of Beta mail"));
}

void E2eHomeKeys::sectionsAreSteppedThrough()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    home.press({HomePage::Right, HomePage::Down, HomePage::Return});
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of Gamma mail"));
    const auto lastSection = [&home] {
        return home.program().setting(QStringLiteral("lastCategory")).toString();
    };
    QCOMPARE(lastSection(), QStringLiteral("Play"));
    home.show();
    // In the empty section there is no way down; behind the last pill stands the settings button.
    home.press({HomePage::Right, HomePage::Down, HomePage::Right, HomePage::Down, HomePage::Left,
                HomePage::Left, HomePage::Left, HomePage::Down, HomePage::Down, HomePage::Right,
                HomePage::Return});
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of Beta mail"));
    QCOMPARE(lastSection(), QStringLiteral("Work"));
}

void E2eHomeKeys::pillsScrollUnderTheWheel()
{
    QVector<Profile::Section> sections;
    for (int i = 1; i <= 12; ++i)
        sections.append({QStringLiteral("Section %1").arg(i), {}});
    HomePage home(*m_desktop);
    home.program().writeData(QStringLiteral("data.json"), Profile::documentOfSections(sections));
    home.start();
    constexpr uint8_t kWheelDown = 5;
    for (int i = 0; i < 30; ++i)
        home.click(HomePage::FirstPill, kWheelDown);
    // The last pill has come in at the right end.
    constexpr QPoint kRightEnd{545, 126};
    home.click(kRightEnd);
    home.press({HomePage::Escape});
    home.waitUntilGone();
    QCOMPARE(home.program().setting(QStringLiteral("lastCategory")).toString(),
             QStringLiteral("Section 12"));
}

void E2eHomeKeys::escapeHides_data()
{
    typingSearches_data();
}

void E2eHomeKeys::escapeHides()
{
    QFETCH(QVector<int>, keys);
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    for (const int key : keys)
        home.press({xcb_keysym_t(key)});
    home.press({HomePage::Escape});
    home.waitUntilGone();
    home.show();
}

void E2eHomeKeys::escapeLeavesStepByStep()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    const QByteArray before = home.program().readData(QStringLiteral("data.json"));
    home.start();
    home.press({HomePage::Down, HomePage::Space});
    home.chooseRow(HomePage::EditItemRow);
    home.type(QStringLiteral("not to be kept"));
    home.press({HomePage::Return, HomePage::Return}); // the menu of types
    home.press({HomePage::Escape});                   // the menu
    home.press({HomePage::Escape});                   // the editor
    home.press({HomePage::Space, HomePage::Escape});  // a menu over the grid
    home.press({HomePage::Up, HomePage::Return});
    home.chooseRow(HomePage::EditSectionRow);
    home.waitForDialog();
    home.press({HomePage::Escape}); // a dialog
    home.waitForHome();
    home.press({HomePage::Down, HomePage::Return}); // all is as it was
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of Alpha mail"));
    QCOMPARE(home.program().readData(QStringLiteral("data.json")), before);
}

void E2eHomeKeys::backspaceInTheEditor()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    home.press({HomePage::Down, HomePage::Space});
    home.chooseRow(HomePage::EditItemRow);
    home.press({HomePage::End, HomePage::BackSpace}); // a letter of the name
    home.press({HomePage::Down, HomePage::Down, HomePage::Down, HomePage::Right, HomePage::Return});
    QTRY_COMPARE(home.itemNames(QStringLiteral("Work")).constFirst(), QStringLiteral("Alpha mai"));
    home.press({HomePage::Space});
    home.chooseRow(HomePage::EditItemRow);
    home.press({HomePage::End});
    home.type(QStringLiteral("not to be kept"));
    home.press({HomePage::Down, HomePage::BackSpace}); // on the type: out
    home.press({HomePage::Return});
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of Alpha mail"));
    QCOMPARE(home.itemNames(QStringLiteral("Work")).constFirst(), QStringLiteral("Alpha mai"));
}

void E2eHomeKeys::tabChangesNothingInACard_data()
{
    using Keys = QVector<int>;
    QTest::addColumn<Keys>("before");
    QTest::addColumn<Keys>("after");
    QTest::addColumn<QString>("copied");
    // The name field keeps the keyboard.
    QTest::newRow("editor")
        << Keys{HomePage::Down,   HomePage::Space, HomePage::Down,
                HomePage::Return, HomePage::End,   'x'}
        << Keys{HomePage::BackSpace, HomePage::Down,  HomePage::Down,   HomePage::End,   'z',
                HomePage::Down,      HomePage::Right, HomePage::Return, HomePage::Return}
        << "text of Alpha mailz";
    QTest::newRow("delete confirmation")
        << Keys{HomePage::Down, HomePage::Space, HomePage::Down,  HomePage::Down,
                HomePage::Down, HomePage::Down,  HomePage::Return}
        << Keys{HomePage::Return, HomePage::Return} << "text of Beta mail";
}

void E2eHomeKeys::tabChangesNothingInACard()
{
    QFETCH(QVector<int>, before);
    QFETCH(QVector<int>, after);
    QFETCH(QString, copied);
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    for (const int key : before)
        home.press({xcb_keysym_t(key)});
    home.press({HomePage::Tab, HomePage::Tab});
    for (const int key : after)
        home.press({xcb_keysym_t(key)});
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), copied);
}

void E2eHomeKeys::tabLeadsToTheSettingsAndBack()
{
    HomePage home(*m_desktop);
    writeProfile(home);
    home.start();
    const QSize homeSize = home.program().homeWindow().geometry.size();
    for (int i = 0; i < 3; ++i) {
        home.press({HomePage::Tab});
        QTRY_COMPARE(home.program().homeWindow().geometry.size(),
                     QSize(MainWindow::WINDOW_WIDTH_SETTINGS, MainWindow::WINDOW_HEIGHT_SETTINGS));
        home.press({HomePage::Tab});
        QTRY_COMPARE(home.program().homeWindow().geometry.size(), homeSize);
    }
    home.press({HomePage::Right, HomePage::Down, HomePage::Return});
    home.waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text of Gamma mail"));
}

void E2eHomeKeys::randomKeysAndClicksDoNoHarm_data()
{
    QTest::addColumn<int>("seed");
    const int first = fromEnvironment("ORLIMO_FIRST_SEED", 1);
    const int count = fromEnvironment("ORLIMO_SEEDS", 10);
    for (int seed = first; seed < first + count; ++seed)
        QTest::addRow("seed %d", seed) << seed;
}

/// A click beside the window must not open a menu of the desktop's, which holds the keyboard, nor
/// change to another desktop.
QString E2eHomeKeys::plainWindowManagerConfig() const
{
    const QString path = m_configDir.filePath(QStringLiteral("rc.xml"));
    QFile file(path);
    const QByteArray text =
        "<openbox_config xmlns=\"http://openbox.org/3.4/rc\">"
        "<focus><focusNew>yes</focusNew></focus><desktops><number>1</number></desktops>"
        "<mouse><context name=\"Client\"><mousebind button=\"Left\" action=\"Press\">"
        "<action name=\"Focus\"/><action name=\"Raise\"/></mousebind></context></mouse>"
        "</openbox_config>\n";
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

/// A longer run by hand: ORLIMO_SEEDS=100 ORLIMO_STEPS=2000.
void E2eHomeKeys::randomKeysAndClicksDoNoHarm()
{
    QFETCH(int, seed);
    const int steps = fromEnvironment("ORLIMO_STEPS", 200);
    QRandomGenerator random{quint32(seed)};
    Desktop desktop(Desktop::Everything,
                    {QStringLiteral("openbox"), QStringLiteral("--sm-disable"),
                     QStringLiteral("--config-file"), plainWindowManagerConfig()});
    HomePage home(desktop);
    writeProfile(home);
    home.start();
    runRandomly(home, random, steps);
    QCOMPARE(home.program().process().state(), QProcess::Running);

    // From wherever that has led, Esc leads out, and where another window has the keyboard, the
    // hotkey. Then the window comes back as it always does.
    const auto isGone = [&home] { return !home.program().homeWindow().isViewable; };
    constexpr int kSoonMs = 300;
    for (int i = 0; i < 20 && !QTest::qWaitFor(isGone, kSoonMs); ++i) {
        if (home.hasKeyboard())
            home.press({HomePage::Escape});
        else
            home.program().key(QStringLiteral("ctrl+alt+space"));
    }
    QVERIFY(!home.program().homeWindow().isViewable);
    home.bringUp(); // a press of the hotkey may still be under way on a busy machine
    QVERIFY(home.hasKeyboard());
    QCOMPARE(home.program().process().state(), QProcess::Running);
    QVERIFY(!home.document().isEmpty());
}

void E2eHomeKeys::runRandomly(HomePage& home, QRandomGenerator& random, int steps) const
{
    for (int step = 0; step < steps; ++step) {
        if (home.program().process().state() != QProcess::Running)
            return;
        // An item that ran has hidden the window, or is about to.
        if (!home.program().homeWindow().isViewable)
            home.bringUp();
        pressRandomly(home, random);
        if (step % 20 == 19)
            home.document();
    }
}

/// Keys and clicks as somebody might produce them who reads nothing. Not among them: the keys that
/// delete or rename files in a file dialog.
void E2eHomeKeys::pressRandomly(HomePage& home, QRandomGenerator& random) const
{
    static constexpr xcb_keysym_t kKeys[] = {HomePage::Up,
                                             HomePage::Down,
                                             HomePage::Left,
                                             HomePage::Right,
                                             HomePage::Up,
                                             HomePage::Down,
                                             HomePage::Left,
                                             HomePage::Right,
                                             HomePage::Return,
                                             HomePage::Return,
                                             HomePage::Return,
                                             HomePage::Space,
                                             HomePage::Escape,
                                             HomePage::Tab,
                                             HomePage::BackSpace,
                                             HomePage::Home,
                                             HomePage::End,
                                             'a',
                                             'e',
                                             'm'};
    // There the hotkey could be changed that brings the window back.
    if (home.program().homeWindow().geometry.width() > MainWindow::WINDOW_WIDTH_GRID) {
        home.press({HomePage::Tab});
        return;
    }
    constexpr int kChoices = int(std::size(kKeys));
    const int choice = random.bounded(kChoices + 8);
    if (choice < kChoices) {
        home.press({kKeys[choice]});
        return;
    }
    if (choice == kChoices) {
        home.chord({HomePage::Control, 'a'});
        return;
    }
    if (choice == kChoices + 1) {
        home.chord({HomePage::Shift, HomePage::Tab});
        return;
    }
    // Inside the card, without its header's edge and its shadow.
    const QPoint place(40 + random.bounded(530), 40 + random.bounded(530));
    static constexpr uint8_t kButtons[] = {1, 1, 1, 3, 4, 5};
    const uint8_t button = kButtons[random.bounded(int(std::size(kButtons)))];
    home.click(place, button);
    if (button == 1 && random.bounded(4) == 0)
        home.click(place, button);
}

QTEST_GUILESS_MAIN(E2eHomeKeys)
#include "tst_e2e_homekeys.moc"
