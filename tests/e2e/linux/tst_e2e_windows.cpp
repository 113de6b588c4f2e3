// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "MainWindow.h"
#include "Profile.h"
#include "Program.h"
#include "SlowHome.h"
#include "TrayHost.h"

#include <QElapsedTimer>
#include <QFile>
#include <QtTest>

/// Coming and going of the two windows, one process per install, and what happens to hotkeys.
class E2eWindows : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void escapeAndHotkeyHide();
    void losingTheFocusHidesOnlyAfterTheGuard();
    void hotkeyDuringTheFadeEndsHidden();
    void theWindowsExcludeEachOther();
    void previousWindowHasTheFocusAgain();
    void secondStartWakesTheFirst();
    void secondStartRaisesAWindowThatIsUp();
    void copyElsewhereRunsBesideIt();
    void killedProcessIsTakenOver();
    void showsWriteNoDocument();
    void takenHotkeyFallsBack();
    void takenDefaultsAreLogged();
    void combinationOfTheOtherWindowIsRefused();
    void keysBehindTheHotkeyArriveWhole();
    void keysBehindTheHotkeyArriveWithoutWindowManager();
    void focusComesBackWithoutWindowManager();
    void hotkeyStormAtTheStartLeavesNoBadState();
    void heldHotkeyFiresOnce();
    void lockKeysDoNotMatter();
    void changedKeyboardMapMovesTheHotkeys();
    void withoutDisplayItSaysSo_data();
    void withoutDisplayItSaysSo();
    void launchedProgramsGetTheUsersEnvironment();
    void exitEntryEndsTheProcess();
    void exitDoesNotWaitForTheFirstScan();
    void closedWindowsLeaveTheProcess_data();
    void closedWindowsLeaveTheProcess();

private:
    void typeThroughHotkey(Desktop& desktop, Program& program, int number);

    std::unique_ptr<Desktop> m_desktop;
};

void E2eWindows::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

void E2eWindows::escapeAndHotkeyHide()
{
    Program program(*m_desktop);
    program.startAndSettle();
    program.openSpotlight();
    program.key(QStringLiteral("Escape"));
    program.waitUntilSpotlightIsGone();
    program.openSpotlight();
    program.key(QStringLiteral("ctrl+alt+y"));
    program.waitUntilSpotlightIsGone();
}

void E2eWindows::losingTheFocusHidesOnlyAfterTheGuard()
{
    Program program(*m_desktop);
    program.startAndSettle();
    QElapsedTimer shown;
    shown.start();
    program.openSpotlight();
    m_desktop->focusOtherWindow();
    while (shown.elapsed() < 1200) {
        QVERIFY2(program.spotlight().isViewable,
                 qPrintable(QStringLiteral("gone after %1 ms").arg(shown.elapsed())));
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    program.key(QStringLiteral("ctrl+alt+y"));
    program.waitUntilSpotlightIsGone();

    program.openSpotlight();
    shown.restart();
    QTRY_VERIFY(shown.elapsed() > 1700); // beyond the guard and the blocker of the show
    QVERIFY(program.isSpotlightUp());
    m_desktop->focusOtherWindow();
    program.waitUntilSpotlightIsGone();
}

void E2eWindows::hotkeyDuringTheFadeEndsHidden()
{
    Program program(*m_desktop);
    program.startAndSettle();
    for (int round = 0; round < 10; ++round) {
        program.openSpotlight();
        // The second press comes at once, long before the 60 ms are over.
        m_desktop->xdotool({QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("0"),
                            QStringLiteral("Escape"), QStringLiteral("ctrl+alt+y")});
        program.waitUntilSpotlightIsGone();
        // It stays gone: nothing was queued up behind the fade.
        QElapsedTimer quiet;
        quiet.start();
        QTRY_VERIFY(quiet.elapsed() > 200);
        QVERIFY(!program.spotlight().isViewable);
    }
}

void E2eWindows::theWindowsExcludeEachOther()
{
    Program program(*m_desktop);
    program.startAndSettle();
    program.openSpotlight();
    program.key(QStringLiteral("ctrl+alt+space"));
    QTRY_VERIFY(program.homeWindow().isViewable && !program.spotlight().isViewable);
    program.key(QStringLiteral("ctrl+alt+y"));
    QTRY_VERIFY(program.isSpotlightUp() && !program.homeWindow().isViewable);
}

void E2eWindows::previousWindowHasTheFocusAgain()
{
    Program program(*m_desktop);
    program.startAndSettle();
    const xcb_window_t other = m_desktop->focusOtherWindow();
    for (int round = 0; round < 5; ++round) {
        program.openSpotlight();
        program.key(QStringLiteral("Escape"));
        program.waitUntilSpotlightIsGone();
        QTRY_COMPARE(m_desktop->client().focus(), other);
    }
}

void E2eWindows::secondStartWakesTheFirst()
{
    Program program(*m_desktop);
    program.startAndSettle();
    QVERIFY(!program.homeWindow().isViewable);
    QProcess second;
    Desktop::dieWithParent(second);
    second.setProcessEnvironment(m_desktop->environment());
    QElapsedTimer elapsed;
    elapsed.start();
    second.start(Program::binary(), QStringList());
    QVERIFY(second.waitForFinished(10000));
    QCOMPARE(second.exitCode(), 0);
    QVERIFY2(elapsed.elapsed() < 3000, qPrintable(QString::number(elapsed.elapsed())));
    QTRY_VERIFY(program.homeWindow().isViewable);
}

void E2eWindows::secondStartRaisesAWindowThatIsUp()
{
    Program program(*m_desktop);
    program.start();
    m_desktop->focusOtherWindow(); // within the guard, so the home window stays
    QVERIFY(program.homeWindow().isViewable);
    QProcess second;
    Desktop::dieWithParent(second);
    second.setProcessEnvironment(m_desktop->environment());
    second.start(Program::binary(), QStringList());
    QVERIFY(second.waitForFinished(10000));
    QTRY_COMPARE(m_desktop->client().focus(), program.homeWindow().id);
}

void E2eWindows::copyElsewhereRunsBesideIt()
{
    Program first(*m_desktop);
    first.startAndSettle();
    const QString copy = m_desktop->path(QStringLiteral("copy/Orlimo"));
    QDir().mkpath(m_desktop->path(QStringLiteral("copy")));
    QFile::remove(copy);
    QVERIFY(QFile::copy(Program::binary(), copy));
    QProcess second;
    Desktop::dieWithParent(second);
    second.setProcessEnvironment(m_desktop->environment());
    second.start(copy, QStringList());
    QVERIFY(second.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(!m_desktop->client().windowsOf(second.processId()).isEmpty(), 15000);
    QCOMPARE(second.state(), QProcess::Running);
    QCOMPARE(first.process().state(), QProcess::Running);
    QVERIFY(!first.homeWindow().isViewable); // it wasn't woken
    second.kill();
    QVERIFY(second.waitForFinished());
}

void E2eWindows::killedProcessIsTakenOver()
{
    Program program(*m_desktop);
    program.startAndSettle();
    program.process().kill();
    QVERIFY(program.process().waitForFinished());
    program.startAndSettle();
    program.openSpotlight();
    // The stale socket was replaced: a further start still wakes this one.
    QProcess second;
    Desktop::dieWithParent(second);
    second.setProcessEnvironment(m_desktop->environment());
    second.start(Program::binary(), QStringList());
    QVERIFY(second.waitForFinished(10000));
    QCOMPARE(second.exitCode(), 0);
    QTRY_VERIFY(program.homeWindow().isViewable);
}

/// Only a change of the user's makes one.
void E2eWindows::showsWriteNoDocument()
{
    Program program(*m_desktop);
    program.startAndSettle();
    program.openSpotlight();
    program.key(QStringLiteral("Escape"));
    program.waitUntilSpotlightIsGone();
    program.key(QStringLiteral("ctrl+alt+space"));
    QTRY_VERIFY(program.homeWindow().isViewable);
    program.key(QStringLiteral("ctrl+alt+space"));
    QTRY_VERIFY(!program.homeWindow().isViewable);
    QStringList files = QDir(program.dataDir()).entryList(QDir::Files);
    files.removeOne(QStringLiteral("debug.log")); // there only if there was something to tell
    QCOMPARE(files, QStringList{QStringLiteral("settings.ini")});
    QVERIFY(!program.readData(QStringLiteral("debug.log")).contains("Gagal memuat font"));
}

void E2eWindows::takenHotkeyFallsBack()
{
    constexpr xcb_keysym_t kKeyM = 'm';
    constexpr quint16 kCtrlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
    TrayHost tray(m_desktop->busAddress());
    QVERIFY(m_desktop->client().grabKey(kKeyM, kCtrlAlt));
    {
        Program program(*m_desktop);
        program.setSetting(QStringLiteral("Hotkey/Combo"), QStringLiteral("Ctrl+Alt+M"));
        program.startAndSettle();
        QCOMPARE(program.setting(QStringLiteral("Hotkey/Combo")).toString(),
                 QStringLiteral("Ctrl+Alt+Space"));
        QTRY_COMPARE(tray.balloons(),
                     QStringList{QStringLiteral("dialog-warning|6000|Info Hotkey|Hotkey invalid "
                                                "(Kombinasi sudah dipakai aplikasi lain.). "
                                                "Fallback ke default.")});
    }
    m_desktop->client().ungrabKey(kKeyM, kCtrlAlt);
}

void E2eWindows::takenDefaultsAreLogged()
{
    constexpr xcb_keysym_t kKeyY = 'y';
    constexpr quint16 kCtrlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
    QVERIFY(m_desktop->client().grabKey(kKeyY, kCtrlAlt));
    {
        Program program(*m_desktop);
        program.start();
        QTRY_VERIFY(program.readData(QStringLiteral("debug.log"))
                        .contains("[DEBUG] GlobalHotkeyController: Failed to register hotkey "
                                  "\"Ctrl+Alt+Y\"\n"));
        QVERIFY(!program.spotlight().isViewable);
    }
    m_desktop->client().ungrabKey(kKeyY, kCtrlAlt);
}

void E2eWindows::combinationOfTheOtherWindowIsRefused()
{
    Program program(*m_desktop);
    program.setSetting(QStringLiteral("Hotkey/Combo"), QStringLiteral("Ctrl+Alt+Y"));
    program.start();
    QTRY_VERIFY(program.readData(QStringLiteral("debug.log"))
                    .contains("GlobalHotkeyController: Failed to register hotkey"));
    m_desktop->focusOtherWindow();
    program.key(QStringLiteral("ctrl+alt+y"));
    QTRY_VERIFY(!program.homeWindow().isViewable);
    program.key(QStringLiteral("ctrl+alt+y"));
    QTRY_VERIFY(program.homeWindow().isViewable);
    QVERIFY(!program.spotlight().isViewable);
}

void E2eWindows::typeThroughHotkey(Desktop& desktop, Program& program, int number)
{
    // One process sends it all, so the first letter is on its way before any window can be.
    desktop.xdotool({QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("0"),
                     QStringLiteral("ctrl+alt+y"), QStringLiteral("type"),
                     QStringLiteral("--delay"), QStringLiteral("0"), QStringLiteral("--args"),
                     QStringLiteral("1"), QStringLiteral("%1+0").arg(number), QStringLiteral("key"),
                     QStringLiteral("--delay"), QStringLiteral("0"), QStringLiteral("Return")});
    QTRY_COMPARE_WITH_TIMEOUT(desktop.clipboard(), QString::number(number), 10000);
    program.waitUntilSpotlightIsGone();
}

void E2eWindows::keysBehindTheHotkeyArriveWhole()
{
    constexpr int kRounds = 200;
    Program program(*m_desktop);
    program.startAndSettle();
    const xcb_window_t other = m_desktop->focusOtherWindow();
    m_desktop->client().takeKeyPressCount();
    for (int round = 0; round < kRounds; ++round) {
        typeThroughHotkey(*m_desktop, program, 12345000 + round);
        if (QTest::currentTestFailed())
            return;
        QTRY_COMPARE(m_desktop->client().focus(), other);
    }
    // Only the modifiers of the hotkey itself, pressed before it, are the other window's.
    QCOMPARE(m_desktop->client().takeKeyPressCount(), 2 * kRounds);
}

void E2eWindows::keysBehindTheHotkeyArriveWithoutWindowManager()
{
    Desktop bare(Desktop::NoFeature);
    Program program(bare);
    program.startWithoutWaiting();
    QTRY_VERIFY_WITH_TIMEOUT(program.homeWindow().isViewable, 15000);
    program.key(QStringLiteral("ctrl+alt+space"));
    QTRY_VERIFY(!program.homeWindow().isViewable);
    for (int round = 0; round < 10; ++round) {
        typeThroughHotkey(bare, program, 54321000 + round);
        if (QTest::currentTestFailed())
            return;
    }
}

void E2eWindows::focusComesBackWithoutWindowManager()
{
    Desktop bare(Desktop::NoFeature);
    const xcb_window_t other = bare.client().makeWindow(QRect(20, 60, 300, 200));
    bare.client().setFocus(other);
    QTRY_COMPARE(bare.client().focus(), other);
    Program program(bare);
    program.startWithoutWaiting();
    QTRY_VERIFY_WITH_TIMEOUT(bare.client().focus() == program.homeWindow().id, 15000);
    // From one window of the program to the other: the keyboard stays with the second.
    program.openSpotlight();
    QTRY_VERIFY(!program.homeWindow().isViewable);
    QVERIFY(program.isSpotlightUp());
    program.key(QStringLiteral("Escape"));
    program.waitUntilSpotlightIsGone();
    QTRY_COMPARE(bare.client().focus(), other);
}

void E2eWindows::hotkeyStormAtTheStartLeavesNoBadState()
{
    for (int round = 0; round < 3; ++round) {
        Program program(*m_desktop);
        m_desktop->focusOtherWindow();
        program.startWithoutWaiting();
        QElapsedTimer started;
        started.start();
        while (started.elapsed() < 2000) {
            const qint64 next = started.elapsed() + 100;
            program.key(QStringLiteral("ctrl+alt+y"));
            while (started.elapsed() < next)
                QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
        QTRY_VERIFY(program.homeWindow().id != XCB_WINDOW_NONE);
        program.settledScreenshot();
        if (program.spotlight().isViewable) {
            QTRY_VERIFY(program.isSpotlightUp());
            program.key(QStringLiteral("ctrl+alt+y"));
            program.waitUntilSpotlightIsGone();
        }
        program.openSpotlight();
    }
}

void E2eWindows::heldHotkeyFiresOnce()
{
    Program program(*m_desktop);
    program.startAndSettle();
    m_desktop->xdotool({QStringLiteral("keydown"), QStringLiteral("ctrl"),
                        QStringLiteral("keydown"), QStringLiteral("alt"), QStringLiteral("keydown"),
                        QStringLiteral("y")});
    QTRY_VERIFY(program.isSpotlightUp());
    // Far beyond the delay after which a held key repeats.
    QElapsedTimer held;
    held.start();
    while (held.elapsed() < 1200) {
        QVERIFY(program.spotlight().isViewable);
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    m_desktop->xdotool({QStringLiteral("keyup"), QStringLiteral("y"), QStringLiteral("keyup"),
                        QStringLiteral("alt"), QStringLiteral("keyup"), QStringLiteral("ctrl")});
    QVERIFY(program.isSpotlightUp());
    program.type(QStringLiteral("5*5"));
    program.key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("25"));
}

void E2eWindows::lockKeysDoNotMatter()
{
    Program program(*m_desktop);
    program.startAndSettle();
    for (const char* lock : {"Num_Lock", "Caps_Lock"}) {
        program.key(QLatin1String(lock));
        program.openSpotlight();
        program.key(QStringLiteral("Escape"));
        program.waitUntilSpotlightIsGone();
        program.key(QLatin1String(lock));
    }
}

void E2eWindows::changedKeyboardMapMovesTheHotkeys()
{
    const auto setLayout = [this](const QString& layout) {
        QProcess process;
        process.setProcessEnvironment(m_desktop->environment());
        process.start(QStringLiteral("setxkbmap"), {QStringLiteral("-layout"), layout});
        return process.waitForFinished() && process.exitCode() == 0;
    };
    constexpr xcb_keycode_t kKeyRightOfT = 29; // Y on the first of the layouts, Z on the second
    constexpr xcb_keycode_t kKeyLeftOfX = 52;  // and the other way round
    constexpr xcb_keysym_t kKeyY = 'y';
    constexpr xcb_keysym_t kKeyZ = 'z';
    constexpr quint16 kCtrlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
    const auto isHeldInsteadOf = [this](xcb_keycode_t held, xcb_keycode_t free) {
        return m_desktop->client().isGrabbedByOther(held, kCtrlAlt) &&
               !m_desktop->client().isGrabbedByOther(free, kCtrlAlt);
    };
    Program program(*m_desktop);
    program.startAndSettle();
    QVERIFY(isHeldInsteadOf(kKeyRightOfT, kKeyLeftOfX));
    QVERIFY(setLayout(QStringLiteral("de")));
    QTRY_VERIFY(isHeldInsteadOf(kKeyLeftOfX, kKeyRightOfT));
    program.openSpotlight();
    program.key(QStringLiteral("Escape"));
    program.waitUntilSpotlightIsGone();
    // The first of two layouts decides.
    QVERIFY(setLayout(QStringLiteral("us,de")));
    QTRY_VERIFY(isHeldInsteadOf(kKeyRightOfT, kKeyLeftOfX));
    QVERIFY(setLayout(QStringLiteral("us")));
    QTRY_VERIFY(isHeldInsteadOf(kKeyRightOfT, kKeyLeftOfX));
    program.openSpotlight();
    program.key(QStringLiteral("Escape"));
    program.waitUntilSpotlightIsGone();
    // Another program lets the key go that is the hotkey's now, but only a moment later.
    QVERIFY(m_desktop->client().grabKey(kKeyZ, kCtrlAlt));
    QVERIFY(setLayout(QStringLiteral("de")));
    QTRY_VERIFY(!m_desktop->client().isGrabbedByOther(kKeyRightOfT, kCtrlAlt));
    m_desktop->client().ungrabKey(kKeyY, kCtrlAlt);
    QTRY_VERIFY(isHeldInsteadOf(kKeyLeftOfX, kKeyRightOfT));
    program.openSpotlight();
    QVERIFY(setLayout(QStringLiteral("us")));
}

void E2eWindows::withoutDisplayItSaysSo_data()
{
    QTest::addColumn<QString>("display");
    QTest::addColumn<bool>("wayland");
    QTest::newRow("nothing at all") << "" << false;
    QTest::newRow("a display that isn't there") << ":4711" << false;
    QTest::newRow("Wayland without X11") << "" << true;
}

void E2eWindows::withoutDisplayItSaysSo()
{
    QFETCH(QString, display);
    QFETCH(bool, wayland);
    QProcessEnvironment environment = m_desktop->environment();
    environment.remove(QStringLiteral("DISPLAY"));
    if (!display.isEmpty())
        environment.insert(QStringLiteral("DISPLAY"), display);
    if (wayland) {
        environment.insert(QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("wayland-0"));
        environment.insert(QStringLiteral("XDG_SESSION_TYPE"), QStringLiteral("wayland"));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("wayland"));
    }
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(Program::binary(), QStringList());
    QVERIFY(process.waitForFinished(10000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QVERIFY(process.exitCode() != 0);
    const QByteArray said = process.readAllStandardError();
    QCOMPARE(said.count('\n'), 1);
    QVERIFY2(said.startsWith("Orlimo needs an X11 display"), said.constData());
}

void E2eWindows::launchedProgramsGetTheUsersEnvironment()
{
    QFile script(m_desktop->path(QStringLiteral("bin/showplatform")));
    const QString noted = m_desktop->path(QStringLiteral("platform"));
    const QString text =
        QStringLiteral("#!/bin/sh\necho \"[${QT_QPA_PLATFORM-unset}]\" > '%1'\n").arg(noted);
    QVERIFY(script.open(QIODevice::WriteOnly) && script.write(text.toUtf8()) > 0);
    script.close();
    QVERIFY(script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    Program program(*m_desktop);
    program.writeData(QStringLiteral("data.json"),
                      Profile::document({Profile::item(QStringLiteral("Show platform"),
                                                       QStringLiteral("Application"),
                                                       QStringLiteral("showplatform"))}));
    program.startAndSettle();
    program.openSpotlight();
    program.type(QStringLiteral("show"));
    program.key(QStringLiteral("Return"));
    const auto content = [&noted] {
        QFile file(noted);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QTRY_COMPARE(content(), QByteArrayLiteral("[unset]\n"));
}

void E2eWindows::exitEntryEndsTheProcess()
{
    TrayHost tray(m_desktop->busAddress());
    Program program(*m_desktop);
    program.writeData(QStringLiteral("data.json"), Profile::document(Profile::examples()));
    program.startAndSettle();
    QTRY_VERIFY(tray.hasItem());
    QCOMPARE(tray.menuLabels(), (QStringList{QStringLiteral("Show"), QStringLiteral("Exit")}));
    tray.clickMenuEntry(QStringLiteral("Show"));
    QTRY_VERIFY(program.homeWindow().isViewable);
    tray.clickMenuEntry(QStringLiteral("Exit"));
    QTRY_COMPARE_WITH_TIMEOUT(program.process().state(), QProcess::NotRunning, 15000);
    QCOMPARE(program.process().exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.process().exitCode(), 0);
    QCOMPARE(program.setting(QStringLiteral("lastCategory")).toString(), QStringLiteral("Work"));
}

void E2eWindows::exitDoesNotWaitForTheFirstScan()
{
    TrayHost tray(m_desktop->busAddress());
    Program program(*m_desktop);
    program.setSetting(QStringLiteral("Spotlight/DefaultScope"),
                       QStringList{QStringLiteral("File")});
    SlowHome::begin(*m_desktop, program);
    program.startAndSettle();
    program.openSpotlight();
    const int closedHeight = program.spotlight().geometry.height();
    program.type(QStringLiteral("no such file"));
    QTRY_VERIFY(program.spotlight().geometry.height() > closedHeight); // for the hint alone
    program.key(QStringLiteral("Escape"));
    program.waitUntilSpotlightIsGone();
    QTRY_VERIFY(tray.hasItem());
    QElapsedTimer elapsed;
    elapsed.start();
    tray.clickMenuEntry(QStringLiteral("Exit"));
    QTRY_COMPARE_WITH_TIMEOUT(program.process().state(), QProcess::NotRunning, 15000);
    QVERIFY2(elapsed.elapsed() < 2500, qPrintable(QString::number(elapsed.elapsed())));
    QCOMPARE(program.process().exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.process().exitCode(), 0);
    SlowHome::end(*m_desktop);
}

void E2eWindows::closedWindowsLeaveTheProcess_data()
{
    QTest::addColumn<QString>("plugin");
    QTest::addColumn<int>("width"); // of the window that is closed
    QTest::newRow("its own") << "" << int(MainWindow::WINDOW_WIDTH_GRID);
    QTest::newRow("the last of those that count for Qt") << "plainwindow" << 321;
}

void E2eWindows::closedWindowsLeaveTheProcess()
{
    QFETCH(QString, plugin);
    QFETCH(int, width);
    Program program(*m_desktop);
    program.setVariable(QStringLiteral("QT_PLUGIN_PATH"), QStringLiteral(ORLIMO_PLUGINS));
    program.setVariable(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), plugin);
    const auto window = [&] {
        for (const XClient::Window& candidate :
             m_desktop->client().windowsOf(program.process().processId())) {
            if (candidate.geometry.width() == width)
                return candidate;
        }
        return XClient::Window();
    };
    program.startWithoutWaiting();
    QTRY_VERIFY_WITH_TIMEOUT(window().isViewable, 15000);
    QTRY_VERIFY_WITH_TIMEOUT(program.homeWindow().id != XCB_WINDOW_NONE, 15000);
    m_desktop->client().askToClose(window().id);
    QTRY_VERIFY(!window().isViewable);
    program.openSpotlight();
    QCOMPARE(program.process().state(), QProcess::Running);
}

QTEST_GUILESS_MAIN(E2eWindows)
#include "tst_e2e_windows.moc"
