// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HotkeyListener.h"
#include "Profile.h"
#include "Program.h"
#include "TrayHost.h"
#include "WantOfDescriptors.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QSet>
#include <QtTest>

#include <csignal>
#include <memory>
#include <mutex>

#include <sys/socket.h>

namespace
{

using Keys = QVector<xcb_keycode_t>;

/// What a listener tells, on whatever thread.
class Presses
{
public:
    HotkeyGrabs::Callbacks callbacks()
    {
        return {[this](const HotkeyPress& press) {
                    const std::lock_guard lock(m_mutex);
                    m_presses.append(press);
                },
                [](const QList<int>&) {}};
    }

    int count() const
    {
        const std::lock_guard lock(m_mutex);
        return static_cast<int>(m_presses.size());
    }

    HotkeyPress last() const
    {
        const std::lock_guard lock(m_mutex);
        return m_presses.constLast();
    }

private:
    mutable std::mutex m_mutex;
    QVector<HotkeyPress> m_presses;
};

} // namespace

/// Who gets the keys around a hotkey: whatever the program is busy with, however the keys are held
/// and released, and whatever the keyboard is.
class E2eKeyboard : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void busyProgramHoldsNoKeys_data();
    void busyProgramHoldsNoKeys();
    void stoppedProgramGivesTheKeysBack_data();
    void stoppedProgramGivesTheKeysBack();
    void heldHotkeyTypesNothing_data();
    void heldHotkeyTypesNothing();
    void keysTypedWhileTheHotkeyIsHeldArrive_data();
    void keysTypedWhileTheHotkeyIsHeldArrive();
    void hotkeyOfTheOtherWindowWhileOneIsHeld();
    void keyboardsOfAllKinds_data();
    void keyboardsOfAllKinds();
    void keyThatTheKeyboardLacksFallsBack_data();
    void keyThatTheKeyboardLacksFallsBack();

    void keysWaitForTheRelease();
    void keysDoNotWaitForever();
    void releaseOfAnotherHoldChangesNothing();
    void repeatsAreToldOnlyWhereWanted_data();
    void repeatsAreToldOnlyWhereWanted();
    void modifierReleasedBeforeTheKeyTypesNothing();
    void modifierPressedMeanwhileMakesNoNewPress();
    void keyThatOutlastsTheFirstMakesNoNewPress();
    void keysHeldWhenTheyBecomeAHotkeyAreNoPress();
    void repeatsMayBeginLate();
    void quickPressesAreNoRepeats();
    void removedHotkeyLetsTheKeysGo();
    void pressOfARemovedHotkeyDoesNotThawTheNext();
    void removalInTheMiddleOfAPressFreezesNothing();
    void endOfTheListenerLetsTheKeysGo();
    void combinationIsRefusedTwice();
    void lostConnectionIsMadeAnew();
    void withoutServerEverythingIsRefused();
    void withoutDescriptorsEverythingIsRefused();

private:
    int run(const QString& program, const QStringList& arguments) const;
    QString textOfField(Program& program) const;
    void press(HotkeyListener& listener, const Presses& presses, const Keys& keys) const;

    std::unique_ptr<Desktop> m_desktop;
};

namespace
{

// What the keys are called by every keyboard of a PC, whatever is printed on them.
constexpr xcb_keycode_t kEscape = 9;
constexpr xcb_keycode_t kY = 29;
constexpr xcb_keycode_t kControl = 37;
constexpr xcb_keycode_t kShift = 50;
constexpr xcb_keycode_t kZ = 52;
constexpr xcb_keycode_t kAlt = 64;
constexpr xcb_keycode_t kSpace = 65;
constexpr xcb_keycode_t kF1 = 67;
constexpr xcb_keycode_t kNumLock = 77;
constexpr xcb_keycode_t kScrollLock = 78;
constexpr xcb_keycode_t kSuper = 133;

constexpr unsigned int kCtrlAlt = 3;
constexpr WId kWindow = 4711;

QSet<int> openSockets()
{
    QSet<int> sockets;
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    for (const QFileInfo& entry : descriptors.entryInfoList(QDir::AllEntries | QDir::System)) {
        if (entry.symLinkTarget().contains(QLatin1String("socket:")))
            sockets.insert(entry.fileName().toInt());
    }
    return sockets;
}

} // namespace

void E2eKeyboard::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

void E2eKeyboard::cleanup()
{
    // What a failed case may leave behind is not the next one's.
    for (const xcb_keycode_t code : {kY, kSpace, kF1, kControl, kAlt, kShift, kSuper})
        m_desktop->client().setKeyDown(code, false);
    const QStringList plain{QStringLiteral("-option"), QString(), QStringLiteral("us")};
    QCOMPARE(run(QStringLiteral("setxkbmap"), plain), 0);
}

int E2eKeyboard::run(const QString& program, const QStringList& arguments) const
{
    QProcess process;
    process.setProcessEnvironment(m_desktop->environment());
    process.start(program, arguments);
    return process.waitForFinished() ? process.exitCode() : -1;
}

/// Takes a moment to become what it is, since the text comes by way of the clipboard.
QString E2eKeyboard::textOfField(Program& program) const
{
    program.key(QStringLiteral("ctrl+a"));
    program.key(QStringLiteral("ctrl+c"));
    return m_desktop->clipboard();
}

void E2eKeyboard::busyProgramHoldsNoKeys_data()
{
    QTest::addColumn<QString>("call");
    QTest::newRow("what was launched is being noted") << QStringLiteral("fdatasync");
    QTest::newRow("what is launched is being looked at") << QStringLiteral("statx");
}

void E2eKeyboard::busyProgramHoldsNoKeys()
{
    QFETCH(QString, call);
    constexpr int kLongestMs = 450;
    const QString gate = m_desktop->path(QStringLiteral("stuck-disk"));
    const QString stuck = gate + QStringLiteral(".stuck");
    Program program(*m_desktop);
    program.writeHomeFile(QStringLiteral("note.txt"));
    const QString note = QDir(program.homeDir()).filePath(QStringLiteral("note.txt"));
    program.writeData(QStringLiteral("data.json"),
                      Profile::document({Profile::item(QStringLiteral("Notebook"),
                                                       QStringLiteral("File"), note)}));
    program.setVariable(QStringLiteral("LD_PRELOAD"), QStringLiteral(ORLIMO_STUCK_DISK_LIBRARY));
    program.setVariable(QStringLiteral("ORLIMO_STUCK_DISK"), gate);
    program.setVariable(QStringLiteral("ORLIMO_STUCK_CALL"), call);
    program.setVariable(QStringLiteral("ORLIMO_STUCK_MS"), QStringLiteral("5000"));
    // A sanitizer wants to be the first library, which matters for what it replaces itself.
    program.setVariable(QStringLiteral("ASAN_OPTIONS"),
                        qEnvironmentVariable("ASAN_OPTIONS") +
                            QStringLiteral(":verify_asan_link_order=0"));
    program.startAndSettle();
    program.openSpotlight();
    program.type(QStringLiteral("notebook"));
    program.settledScreenshot();
    QFile file(gate);
    QVERIFY(file.open(QIODevice::WriteOnly));
    program.key(QStringLiteral("Return"));
    QTRY_VERIFY(QFile::exists(stuck));

    const xcb_window_t other = m_desktop->focusOtherWindow();
    QVERIFY(QFile::exists(stuck));
    QElapsedTimer sinceHotkey;
    sinceHotkey.start();
    m_desktop->client().pressKeycodes({kControl, kAlt, kY});
    m_desktop->client().pressKeycodes({kZ});
    int pressCount = 0;
    while (pressCount < 3 && sinceHotkey.elapsed() < 5000) // Ctrl, Alt and the key behind
        pressCount += m_desktop->client().takeKeyPressCount();
    const qint64 elapsedMs = sinceHotkey.elapsed();
    QCOMPARE(pressCount, 3);
    QVERIFY2(elapsedMs < kLongestMs, qPrintable(QStringLiteral("%1 ms").arg(elapsedMs)));
    QVERIFY(QFile::exists(stuck)); // the program was busy all the time
    QCOMPARE(m_desktop->client().focus(), other);
    // Once the program gets round to it, all goes on as ever.
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(stuck), 10000);
    program.waitUntilSpotlightIsGone();
    program.openSpotlight();
}

void E2eKeyboard::stoppedProgramGivesTheKeysBack_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("when it goes on") << SIGCONT;
    QTest::newRow("when it ends") << SIGKILL;
}

void E2eKeyboard::stoppedProgramGivesTheKeysBack()
{
    QFETCH(int, signal);
    Program program(*m_desktop);
    program.startAndSettle();
    m_desktop->focusOtherWindow();
    const pid_t pid = static_cast<pid_t>(program.process().processId());
    QCOMPARE(::kill(pid, SIGSTOP), 0);
    m_desktop->client().pressKeycodes({kControl, kAlt, kY});
    m_desktop->client().pressKeycodes({kZ});
    QCOMPARE(m_desktop->client().takeKeyPressCount(), 2); // nobody gets what is behind it
    QCOMPARE(::kill(pid, signal), 0);
    if (signal == SIGCONT) {
        QTRY_VERIFY(program.isSpotlightUp());
        program.type(QStringLiteral("ebra"));
        QTRY_COMPARE(textOfField(program), QStringLiteral("zebra"));
        return;
    }
    int pressCount = 0;
    QTRY_COMPARE(pressCount += m_desktop->client().takeKeyPressCount(), 1);
}

void E2eKeyboard::heldHotkeyTypesNothing_data()
{
    QTest::addColumn<QString>("hotkey");
    QTest::addColumn<Keys>("keys");
    QTest::addColumn<Keys>("released");
    QTest::newRow("without a text")
        << QStringLiteral("Ctrl+Alt+Y") << Keys{kControl, kAlt, kY} << Keys{kY, kAlt, kControl};
    QTest::newRow("space") << QStringLiteral("Win+Space") << Keys{kSuper, kSpace}
                           << Keys{kSpace, kSuper};
    QTest::newRow("function key") << QStringLiteral("Shift+F1") << Keys{kShift, kF1}
                                  << Keys{kF1, kShift};
    QTest::newRow("letter") << QStringLiteral("Shift+Y") << Keys{kShift, kY} << Keys{kY, kShift};
    QTest::newRow("modifier released first")
        << QStringLiteral("Win+Space") << Keys{kSuper, kSpace} << Keys{kSuper, kSpace};
}

void E2eKeyboard::heldHotkeyTypesNothing()
{
    QFETCH(QString, hotkey);
    QFETCH(Keys, keys);
    QFETCH(Keys, released);
    Program program(*m_desktop);
    program.setSetting(QStringLiteral("Hotkey/SpotlightCombo"), hotkey);
    program.startAndSettle();
    QElapsedTimer held;
    held.start();
    for (const xcb_keycode_t code : std::as_const(keys))
        m_desktop->client().setKeyDown(code, true);
    QTRY_VERIFY(program.isSpotlightUp());
    while (held.elapsed() < 2000) {
        QVERIFY(program.spotlight().isViewable);
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    for (const xcb_keycode_t code : std::as_const(released)) {
        m_desktop->client().setKeyDown(code, false);
        held.restart();
        QTRY_VERIFY(held.elapsed() > 200); // several repeats of what is still down
    }
    program.type(QStringLiteral("zebra"));
    QTRY_COMPARE(textOfField(program), QStringLiteral("zebra"));
    for (const xcb_keycode_t code : std::as_const(keys))
        m_desktop->client().setKeyDown(code, true);
    program.waitUntilSpotlightIsGone();
}

void E2eKeyboard::keysTypedWhileTheHotkeyIsHeldArrive_data()
{
    QTest::addColumn<Keys>("releasedBefore");
    QTest::addColumn<Keys>("releasedAfter");
    QTest::newRow("key still down") << Keys{kSuper} << Keys{kSpace};
    QTest::newRow("all still down") << Keys{} << Keys{kSpace, kSuper};
    QTest::newRow("modifier still down") << Keys{kSpace} << Keys{kSuper};
    QTest::newRow("all released") << Keys{kSpace, kSuper} << Keys{};
}

void E2eKeyboard::keysTypedWhileTheHotkeyIsHeldArrive()
{
    QFETCH(Keys, releasedBefore);
    QFETCH(Keys, releasedAfter);
    constexpr xcb_keycode_t kO = 32;
    constexpr xcb_keycode_t kR = 27;
    constexpr xcb_keycode_t kA = 38;
    Program program(*m_desktop);
    program.setSetting(QStringLiteral("Hotkey/SpotlightCombo"), QStringLiteral("Win+Space"));
    program.startAndSettle();
    XClient& client = m_desktop->client();
    client.setKeyDown(kSuper, true);
    client.setKeyDown(kSpace, true);
    for (const xcb_keycode_t code : std::as_const(releasedBefore))
        client.setKeyDown(code, false);
    for (const xcb_keycode_t code : {kZ, kO, kR, kR, kA})
        client.pressKeycodes({code});
    for (const xcb_keycode_t code : std::as_const(releasedAfter))
        client.setKeyDown(code, false);
    QTRY_VERIFY(program.isSpotlightUp());
    QTRY_COMPARE(textOfField(program), QStringLiteral("zorra"));
}

void E2eKeyboard::hotkeyOfTheOtherWindowWhileOneIsHeld()
{
    Program program(*m_desktop);
    program.startAndSettle();
    XClient& client = m_desktop->client();
    for (const xcb_keycode_t code : {kControl, kAlt, kY})
        client.setKeyDown(code, true);
    QTRY_VERIFY(program.isSpotlightUp());
    client.setKeyDown(kSpace, true);
    QTRY_VERIFY(program.homeWindow().isViewable && !program.spotlight().isViewable);
    for (const xcb_keycode_t code : {kSpace, kY, kAlt, kControl})
        client.setKeyDown(code, false);
    program.openSpotlight();
    program.type(QStringLiteral("zebra"));
    QTRY_COMPARE(textOfField(program), QStringLiteral("zebra"));
}

void E2eKeyboard::keyboardsOfAllKinds_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("hotkey");
    QTest::addColumn<Keys>("lock");
    QTest::addColumn<Keys>("keys");
    const QString setxkbmap = QStringLiteral("setxkbmap");
    const QString xmodmap = QStringLiteral("xmodmap");
    const QString ctrlAltY = QStringLiteral("Ctrl+Alt+Y");
    const Keys ctrlAltYKeys{kControl, kAlt, kY};
    QTest::newRow("Cyrillic letters")
        << setxkbmap << QStringList{QStringLiteral("ru")} << ctrlAltY << Keys() << ctrlAltYKeys;
    QTest::newRow("Cyrillic letters, the Latin ones of another order behind them")
        << setxkbmap << QStringList{QStringLiteral("ru,de")} << ctrlAltY << Keys()
        << Keys{kControl, kAlt, kZ};
    QTest::newRow("four layouts, Latin letters in the last alone")
        << setxkbmap << QStringList{QStringLiteral("ru,gr,ara,de")} << ctrlAltY << Keys()
        << Keys{kControl, kAlt, kZ};
    QTest::newRow("second of two layouts in use")
        << setxkbmap
        << QStringList{QStringLiteral("-option"), QStringLiteral("grp:sclk_toggle"),
                       QStringLiteral("us,ru")}
        << ctrlAltY << Keys{kScrollLock} << ctrlAltYKeys;
    QTest::newRow("Num Lock") << setxkbmap << QStringList{QStringLiteral("us")} << ctrlAltY
                              << Keys{kNumLock} << ctrlAltYKeys;
    QTest::newRow("Scroll Lock as a modifier")
        << xmodmap << QStringList{QStringLiteral("-e"), QStringLiteral("add mod3 = Scroll_Lock")}
        << ctrlAltY << Keys{kScrollLock} << ctrlAltYKeys;
    QTest::newRow("Super on another modifier")
        << xmodmap
        << QStringList{QStringLiteral("-e"), QStringLiteral("clear mod4"), QStringLiteral("-e"),
                       QStringLiteral("add mod3 = Super_L")}
        << QStringLiteral("Win+Space") << Keys() << Keys{kSuper, kSpace};
}

void E2eKeyboard::keyboardsOfAllKinds()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    QFETCH(QString, hotkey);
    QFETCH(Keys, lock);
    QFETCH(Keys, keys);
    QCOMPARE(run(program, arguments), 0);
    Program launcher(*m_desktop);
    launcher.setSetting(QStringLiteral("Hotkey/SpotlightCombo"), hotkey);
    launcher.start();
    QCOMPARE(launcher.setting(QStringLiteral("Hotkey/SpotlightCombo")).toString(), hotkey);
    XClient& client = m_desktop->client();
    if (!lock.isEmpty())
        client.pressKeycodes(lock);
    for (int round = 0; round < 2; ++round) {
        client.pressKeycodes(keys);
        QTRY_VERIFY(launcher.isSpotlightUp());
        client.pressKeycodes({kEscape});
        launcher.waitUntilSpotlightIsGone();
    }
    if (!lock.isEmpty())
        client.pressKeycodes(lock);
}

void E2eKeyboard::keyThatTheKeyboardLacksFallsBack_data()
{
    QTest::addColumn<QString>("hotkey");
    QTest::newRow("F13") << QStringLiteral("Ctrl+F13");
    QTest::newRow("F24") << QStringLiteral("Ctrl+F24");
}

void E2eKeyboard::keyThatTheKeyboardLacksFallsBack()
{
    QFETCH(QString, hotkey);
    Program program(*m_desktop);
    program.setSetting(QStringLiteral("Hotkey/SpotlightCombo"), hotkey);
    program.start();
    QCOMPARE(program.setting(QStringLiteral("Hotkey/SpotlightCombo")).toString(),
             QStringLiteral("Ctrl+Alt+Y"));
    program.openSpotlight();
}

void E2eKeyboard::keysWaitForTheRelease()
{
    Presses presses;
    HotkeyListener listener(m_desktop->display().toLatin1(), presses.callbacks());
    QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y'}));
    XClient& client = m_desktop->client();
    m_desktop->focusOtherWindow();
    client.pressKeycodes({kControl, kAlt, kY});
    client.pressKeycodes({kZ});
    QCOMPARE(client.takeKeyPressCount(), 2);
    QTRY_COMPARE(presses.count(), 1);
    QCOMPARE(presses.last().id, 1);
    QCOMPARE(presses.last().window, kWindow);
    QVERIFY(presses.last().time != XCB_CURRENT_TIME);
    listener.release(presses.last().hold);
    int pressCount = 0;
    QTRY_COMPARE(pressCount += client.takeKeyPressCount(), 1);
}

void E2eKeyboard::keysDoNotWaitForever()
{
    Presses presses;
    HotkeyListener listener(m_desktop->display().toLatin1(), presses.callbacks());
    QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y'}));
    XClient& client = m_desktop->client();
    m_desktop->focusOtherWindow();
    QElapsedTimer sincePress;
    sincePress.start();
    client.pressKeycodes({kControl, kAlt, kY});
    client.pressKeycodes({kZ});
    int pressCount = 0;
    QTRY_COMPARE(pressCount += client.takeKeyPressCount(), 3);
    QVERIFY(sincePress.elapsed() >= HotkeyGrabs::LongestHoldMs);
}

void E2eKeyboard::releaseOfAnotherHoldChangesNothing()
{
    Presses presses;
    HotkeyListener listener(m_desktop->display().toLatin1(), presses.callbacks());
    QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y'}));
    XClient& client = m_desktop->client();
    m_desktop->focusOtherWindow();
    QElapsedTimer sincePress;
    sincePress.start();
    client.pressKeycodes({kControl, kAlt, kY});
    client.pressKeycodes({kZ});
    QTRY_COMPARE(presses.count(), 1);
    listener.release(0);
    listener.release(presses.last().hold + 1);
    int pressCount = 0;
    QTRY_COMPARE(pressCount += client.takeKeyPressCount(), 3);
    QVERIFY(sincePress.elapsed() >= HotkeyGrabs::LongestHoldMs);
}

void E2eKeyboard::repeatsAreToldOnlyWhereWanted_data()
{
    QTest::addColumn<bool>("repeats");
    QTest::newRow("wanted") << true;
    QTest::newRow("not wanted") << false;
}

void E2eKeyboard::repeatsAreToldOnlyWhereWanted()
{
    QFETCH(bool, repeats);
    Presses presses;
    HotkeyListener listener(m_desktop->display().toLatin1(), presses.callbacks());
    QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y', repeats}));
    XClient& client = m_desktop->client();
    m_desktop->focusOtherWindow();
    for (const xcb_keycode_t code : {kControl, kAlt, kY})
        client.setKeyDown(code, true);
    QTRY_COMPARE(presses.count(), 1);
    listener.release(presses.last().hold);
    if (repeats) {
        QTRY_VERIFY(presses.count() > 3);
        QCOMPARE(presses.last().hold, 0U);
    } else {
        QElapsedTimer held;
        held.start();
        QTRY_VERIFY(held.elapsed() > 1500);
        QCOMPARE(presses.count(), 1);
    }
    for (const xcb_keycode_t code : {kY, kAlt, kControl})
        client.setKeyDown(code, false);
    QCOMPARE(client.takeKeyPressCount(), 2); // no repeat went to anybody
}

/// Presses one after another, and ends the hold of the last.
void E2eKeyboard::press(HotkeyListener& listener, const Presses& presses, const Keys& keys) const
{
    const int before = presses.count();
    for (const xcb_keycode_t code : keys)
        m_desktop->client().setKeyDown(code, true);
    QTRY_COMPARE(presses.count(), before + 1);
    listener.release(presses.last().hold);
}

void E2eKeyboard::modifierReleasedBeforeTheKeyTypesNothing()
{
    Presses presses;
    HotkeyListener listener(m_desktop->display().toLatin1(), presses.callbacks());
    QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y', true}));
    XClient& client = m_desktop->client();
    m_desktop->focusOtherWindow();
    press(listener, presses, {kControl, kAlt, kY});
    QTRY_VERIFY(presses.count() > 3); // it repeats
    client.setKeyDown(kControl, false);
    QElapsedTimer held;
    held.start();
    QTRY_VERIFY(held.elapsed() > 500);
    client.setKeyDown(kAlt, false);
    client.setKeyDown(kY, false);
    QCOMPARE(client.takeKeyPressCount(), 2); // the modifiers
    client.pressKeycodes({kZ});
    int pressCount = 0;
    QTRY_COMPARE(pressCount += client.takeKeyPressCount(), 1);
}

void E2eKeyboard::modifierPressedMeanwhileMakesNoNewPress()
{
    Presses presses;
    HotkeyListener listener(m_desktop->display().toLatin1(), presses.callbacks());
    QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y'}));
    XClient& client = m_desktop->client();
    m_desktop->focusOtherWindow();
    press(listener, presses, {kControl, kAlt, kY});
    QElapsedTimer held;
    held.start();
    QTRY_VERIFY(held.elapsed() > 800);
    client.setKeyDown(kShift, true);
    QTRY_VERIFY(held.elapsed() > 1000);
    client.setKeyDown(kShift, false);
    QTRY_VERIFY(held.elapsed() > 1500);
    QCOMPARE(presses.count(), 1);
    client.setKeyDown(kShift, true);
    client.pressKeycodes({kZ}); // arrives, and with it all that is behind it
    client.setKeyDown(kShift, false);
    int pressCount = 0;
    QTRY_COMPARE(pressCount += client.takeKeyPressCount(), 3); // Ctrl, Alt and this
    for (const xcb_keycode_t code : {kY, kAlt, kControl})
        client.setKeyDown(code, false);
}

void E2eKeyboard::keyThatOutlastsTheFirstMakesNoNewPress()
{
    Presses presses;
    HotkeyListener listener(m_desktop->display().toLatin1(), presses.callbacks());
    QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y'}));
    QVERIFY(listener.add({kWindow, 2, kCtrlAlt, ' '}));
    XClient& client = m_desktop->client();
    m_desktop->focusOtherWindow();
    press(listener, presses, {kControl, kAlt, kY});
    press(listener, presses, {kSpace});
    client.setKeyDown(kY, false);
    QElapsedTimer held;
    held.start();
    QTRY_VERIFY(held.elapsed() > 1500);
    QCOMPARE(presses.count(), 2);
    client.setKeyDown(kSpace, false);
    press(listener, presses, {kSpace});
    QCOMPARE(presses.last().id, 2);
}

/// As after recording it.
void E2eKeyboard::keysHeldWhenTheyBecomeAHotkeyAreNoPress()
{
    Presses presses;
    HotkeyListener listener(m_desktop->display().toLatin1(), presses.callbacks());
    XClient& client = m_desktop->client();
    m_desktop->focusOtherWindow();
    for (const xcb_keycode_t code : {kControl, kAlt, kY})
        client.setKeyDown(code, true);
    int pressed = 0;
    QTRY_VERIFY((pressed += client.takeKeyPressCount()) >= 3);
    QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y'}));
    QElapsedTimer held;
    held.start();
    QTRY_VERIFY(held.elapsed() > 1500); // several repeats
    QCOMPARE(presses.count(), 0);
    client.setKeyDown(kY, false);
    client.setKeyDown(kY, true);
    QTRY_COMPARE(presses.count(), 1);
    listener.release(presses.last().hold);

    // Released before the first repeat.
    client.setKeyDown(kY, false);
    listener.remove(kWindow, 1);
    client.setKeyDown(kY, true);
    QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y'}));
    client.setKeyDown(kY, false);
    held.restart();
    QTRY_VERIFY(held.elapsed() > 200);
    press(listener, presses, {kY});
    QCOMPARE(presses.count(), 2);
}

void E2eKeyboard::repeatsMayBeginLate()
{
    const QString xset = QStringLiteral("xset");
    const QStringList rate{QStringLiteral("r"), QStringLiteral("rate")};
    const auto reset = qScopeGuard([&] { run(xset, rate); });
    QCOMPARE(run(xset, rate + QStringList{QStringLiteral("2500"), QStringLiteral("25")}), 0);
    Presses presses;
    HotkeyListener listener(m_desktop->display().toLatin1(), presses.callbacks());
    QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y'}));
    XClient& client = m_desktop->client();
    m_desktop->focusOtherWindow();
    press(listener, presses, {kControl, kAlt, kY});
    QElapsedTimer held;
    held.start();
    QTRY_VERIFY(held.elapsed() > 3000);
    QCOMPARE(presses.count(), 1);
    QCOMPARE(client.takeKeyPressCount(), 2);
}

void E2eKeyboard::quickPressesAreNoRepeats()
{
    constexpr int kPresses = 20;
    Presses presses;
    HotkeyListener listener(m_desktop->display().toLatin1(), presses.callbacks());
    QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y'}));
    XClient& client = m_desktop->client();
    for (int i = 1; i <= kPresses; ++i) {
        client.pressKeycodes({kControl, kAlt, kY});
        QTRY_COMPARE(presses.count(), i);
        listener.release(presses.last().hold);
    }
    // With the modifiers held all along, too.
    client.setKeyDown(kControl, true);
    client.setKeyDown(kAlt, true);
    for (int i = 1; i <= kPresses; ++i) {
        client.pressKeycodes({kY});
        QTRY_COMPARE(presses.count(), kPresses + i);
        listener.release(presses.last().hold);
    }
}

void E2eKeyboard::removedHotkeyLetsTheKeysGo()
{
    Presses presses;
    HotkeyListener listener(m_desktop->display().toLatin1(), presses.callbacks());
    QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y'}));
    XClient& client = m_desktop->client();
    m_desktop->focusOtherWindow();
    client.pressKeycodes({kControl, kAlt, kY});
    client.pressKeycodes({kZ});
    QTRY_COMPARE(presses.count(), 1);
    QCOMPARE(client.takeKeyPressCount(), 2);
    listener.remove(kWindow, 1);
    QCOMPARE(client.takeKeyPressCount(), 1); // at once, long before the limit
    QVERIFY(client.grabKey('y', XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1));
    client.ungrabKey('y', XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1);
}

void E2eKeyboard::removalInTheMiddleOfAPressFreezesNothing()
{
    Presses presses;
    HotkeyListener listener(m_desktop->display().toLatin1(), presses.callbacks());
    XClient& client = m_desktop->client();
    m_desktop->focusOtherWindow();
    for (int round = 0; round < 100; ++round) {
        QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y'}));
        client.takeKeyPressCount();
        client.pressKeycodes({kControl, kAlt, kY});
        listener.remove(kWindow, 1);
        client.pressKeycodes({kZ});
        int pressCount = 0;
        // The key of the hotkey itself may be either's.
        QTRY_VERIFY((pressCount += client.takeKeyPressCount()) >= 3);
    }
}

void E2eKeyboard::pressOfARemovedHotkeyDoesNotThawTheNext()
{
    Presses presses;
    const std::unique_ptr<HotkeyGrabs> grabs =
        HotkeyGrabs::connect(m_desktop->display().toLatin1(), presses.callbacks());
    QVERIFY(grabs);
    QVERIFY(grabs->add({kWindow, 1, kCtrlAlt, 'Y'}));
    QVERIFY(grabs->add({kWindow, 2, kCtrlAlt, ' '}));
    grabs->run();
    XClient& client = m_desktop->client();
    m_desktop->focusOtherWindow();
    client.pressKeycodes({kControl, kAlt, kY});
    grabs->remove(kWindow, 1); // its press lies here unread
    client.takeKeyPressCount();
    client.pressKeycodes({kControl, kAlt, kSpace});
    client.pressKeycodes({kZ});
    QCOMPARE(client.takeKeyPressCount(), 2);
    grabs->run();
    QCOMPARE(presses.count(), 1);
    QCOMPARE(presses.last().id, 2);
    QCOMPARE(client.takeKeyPressCount(), 0);
    grabs->release(presses.last().hold);
    int pressCount = 0;
    const auto pressesSoFar = [&] {
        grabs->run();
        return pressCount += client.takeKeyPressCount();
    };
    QTRY_COMPARE(pressesSoFar(), 1);
}

void E2eKeyboard::endOfTheListenerLetsTheKeysGo()
{
    XClient& client = m_desktop->client();
    m_desktop->focusOtherWindow();
    {
        Presses presses;
        HotkeyListener listener(m_desktop->display().toLatin1(), presses.callbacks());
        QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y'}));
        client.pressKeycodes({kControl, kAlt, kY});
        client.pressKeycodes({kZ});
        QTRY_COMPARE(presses.count(), 1);
    }
    int pressCount = 0;
    QTRY_COMPARE(pressCount += client.takeKeyPressCount(), 3);
    QVERIFY(!client.isGrabbedByOther(kY, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1));
}

void E2eKeyboard::combinationIsRefusedTwice()
{
    Presses presses;
    HotkeyListener listener(m_desktop->display().toLatin1(), presses.callbacks());
    HotkeyListener other(m_desktop->display().toLatin1(), presses.callbacks());
    QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y'}));
    QVERIFY(!listener.add({kWindow, 2, kCtrlAlt, 'Y'}));
    QVERIFY(!other.add({kWindow, 1, kCtrlAlt, 'Y'}));
    listener.remove(kWindow, 2); // there is none
    QVERIFY(!other.add({kWindow, 1, kCtrlAlt, 'Y'}));
    listener.remove(kWindow, 1);
    QVERIFY(other.add({kWindow, 1, kCtrlAlt, 'Y'}));
}

void E2eKeyboard::lostConnectionIsMadeAnew()
{
    Presses presses;
    const QSet<int> others = openSockets();
    HotkeyListener listener(m_desktop->display().toLatin1(), presses.callbacks());
    QVERIFY(listener.add({kWindow, 1, kCtrlAlt, 'Y'}));
    XClient& client = m_desktop->client();
    const auto isGrabbed = [&client] {
        return client.isGrabbedByOther(kY, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1);
    };
    QVERIFY(isGrabbed());
    for (const int connection : openSockets() - others)
        QCOMPARE(::shutdown(connection, SHUT_RDWR), 0);
    QTRY_VERIFY(!isGrabbed());
    QTRY_VERIFY(isGrabbed());
    client.pressKeycodes({kControl, kAlt, kY});
    QTRY_COMPARE(presses.count(), 1);
}

void E2eKeyboard::withoutServerEverythingIsRefused()
{
    Presses presses;
    HotkeyListener listener(":4711", presses.callbacks());
    QVERIFY(!listener.add({kWindow, 1, kCtrlAlt, 'Y'}));
    listener.remove(kWindow, 1);
    listener.release(1);
}

void E2eKeyboard::withoutDescriptorsEverythingIsRefused()
{
    Presses presses;
    std::unique_ptr<HotkeyListener> listener;
    {
        const WantOfDescriptors want;
        listener =
            std::make_unique<HotkeyListener>(m_desktop->display().toLatin1(), presses.callbacks());
    }
    QVERIFY(!listener->add({kWindow, 1, kCtrlAlt, 'Y'}));
    listener->remove(kWindow, 1);
    listener->release(1);
}

QTEST_GUILESS_MAIN(E2eKeyboard)
#include "tst_e2e_keyboard.moc"
