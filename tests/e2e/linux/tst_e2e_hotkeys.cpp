// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Profile.h"
#include "SettingsKeys.h"

#include <QtTest>

/// The hotkeys as their user changes them: recorded, refused, cancelled and set back, each looked
/// for where the server keeps it, and pressed.
class E2eHotkeys : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void newOneLivesAndOldOneIsDead_data();
    void newOneLivesAndOldOneIsDead();
    void keysHeldFromRecordingDontFire();
    void heldByAnotherClientIsRefused();
    void escapeCancels();
    void lossOfFocusCancels();
    void tabIsRecorded();
    void resetBringsTheDefaultBack_data();
    void resetBringsTheDefaultBack();

private:
    bool isGrabbed(xcb_keycode_t code, quint16 modifiers = CtrlAlt) const
    {
        return m_desktop->client().isGrabbedByOther(code, modifiers);
    }
    void listen(SettingsKeys& settings, int row) const;

    static constexpr quint16 CtrlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;

    std::unique_ptr<Desktop> m_desktop;
};

namespace
{

// What the keys are called by every keyboard of a PC.
constexpr xcb_keycode_t kTab = 23;
constexpr xcb_keycode_t kY = 29;
constexpr xcb_keycode_t kK = 45;
constexpr xcb_keycode_t kSpace = 65;

const QString kMainKey = QStringLiteral("Hotkey/Combo");
const QString kSpotlightKey = QStringLiteral("Hotkey/SpotlightCombo");

} // namespace

void E2eHotkeys::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

/// From the home page on.
void E2eHotkeys::listen(SettingsKeys& settings, int row) const
{
    settings.openRow(SettingsKeys::AppCategory, row);
    settings.press({HomePage::Right, HomePage::Return}); // past the button that resets
}

void E2eHotkeys::newOneLivesAndOldOneIsDead_data()
{
    QTest::addColumn<bool>("isMain");
    QTest::newRow("main window") << true;
    QTest::newRow("Spotlight") << false;
}

void E2eHotkeys::newOneLivesAndOldOneIsDead()
{
    QFETCH(bool, isMain);
    const xcb_keycode_t old = isMain ? kSpace : kY;
    const xcb_keysym_t oldSymbol = isMain ? HomePage::Space : xcb_keysym_t('y');
    const QString newKeys = QStringLiteral("ctrl+alt+k");
    const QString key = isMain ? kMainKey : kSpotlightKey;
    SettingsKeys settings(*m_desktop);
    settings.start();
    QVERIFY(isGrabbed(old));
    listen(settings, isMain ? SettingsKeys::MainHotkeyRow : SettingsKeys::SpotlightHotkeyRow);
    settings.chord({HomePage::Control, SettingsKeys::Alt, 'k'});
    const Program& program = settings.program();
    QTRY_COMPARE(program.setting(key).toString(), QStringLiteral("Ctrl+Alt+K"));

    for (const bool isRestarted : {false, true}) {
        if (isRestarted)
            settings.restart();
        QCOMPARE(program.setting(key).toString(), QStringLiteral("Ctrl+Alt+K"));
        QTRY_VERIFY(isGrabbed(kK));
        QTRY_VERIFY(!isGrabbed(old));
        QVERIFY(isGrabbed(isMain ? kY : kSpace));
        settings.settledScreenshot();
        program.key(newKeys);
        if (isMain) {
            settings.waitUntilGone();
        } else {
            QTRY_VERIFY(program.isSpotlightUp());
            program.key(newKeys);
            QTRY_VERIFY(!program.spotlight().isViewable);
        }
        // The keys of the old one are whoever's has the keyboard.
        m_desktop->focusOtherWindow();
        int pressed = 0;
        m_desktop->client().takeKeyPressCount();
        m_desktop->client().pressKeys({HomePage::Control, SettingsKeys::Alt, oldSymbol});
        QTRY_COMPARE(pressed += m_desktop->client().takeKeyPressCount(), 3);
    }
}

void E2eHotkeys::keysHeldFromRecordingDontFire()
{
    constexpr xcb_keycode_t kControl = 37;
    constexpr xcb_keycode_t kAlt = 64;
    constexpr int kHeldMs = 2500; // many repeats
    SettingsKeys settings(*m_desktop);
    settings.start();
    listen(settings, SettingsKeys::MainHotkeyRow);
    QTest::qWait(MainWindow::ShowGuardMs); // until then a loss of the keyboard wouldn't count
    const auto setKeysDown = [this](bool down) {
        for (const xcb_keycode_t code : {kControl, kAlt, kK})
            m_desktop->client().setKeyDown(code, down);
    };
    setKeysDown(true);
    auto release = qScopeGuard([&] { setKeysDown(false); });
    QTRY_COMPARE(settings.program().setting(kMainKey).toString(), QStringLiteral("Ctrl+Alt+K"));
    QElapsedTimer held;
    held.start();
    while (held.elapsed() < kHeldMs) {
        QVERIFY(settings.program().homeWindow().isViewable);
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    setKeysDown(false);
    release.dismiss();
    settings.settledScreenshot();
    QVERIFY(settings.program().homeWindow().isViewable);
    settings.program().key(QStringLiteral("ctrl+alt+k"));
    settings.waitUntilGone();
}

void E2eHotkeys::heldByAnotherClientIsRefused()
{
    SettingsKeys settings(*m_desktop);
    settings.start();
    // With Caps Lock only: without, the server would hand the keys to this client and nobody else.
    constexpr quint16 held = CtrlAlt | XCB_MOD_MASK_LOCK;
    QVERIFY(m_desktop->client().grabKey('k', held));
    const auto release = qScopeGuard([this] { m_desktop->client().ungrabKey('k', held); });
    listen(settings, SettingsKeys::MainHotkeyRow);
    settings.chord({HomePage::Control, SettingsKeys::Alt, 'k'});
    settings.waitForNextDialog();
    settings.press({HomePage::Return});
    settings.waitForSettings();
    QCOMPARE(settings.program().setting(kMainKey).toString(), QStringLiteral("Ctrl+Alt+Space"));
    QVERIFY(isGrabbed(kSpace));
    settings.program().key(QStringLiteral("ctrl+alt+space"));
    settings.waitUntilGone();
}

void E2eHotkeys::escapeCancels()
{
    SettingsKeys settings(*m_desktop);
    settings.start();
    listen(settings, SettingsKeys::MainHotkeyRow);
    // Once for the recorder; the focus stays, and the same button records after that.
    settings.press({HomePage::Escape});
    settings.chord({HomePage::Control, SettingsKeys::Alt, 'k'});
    QCOMPARE(settings.program().setting(kMainKey).toString(), QStringLiteral("Ctrl+Alt+Space"));
    QVERIFY(!isGrabbed(kK));
    settings.waitForSettings();
    settings.press({HomePage::Return});
    settings.chord({HomePage::Control, SettingsKeys::Alt, 'k'});
    QTRY_COMPARE(settings.program().setting(kMainKey).toString(), QStringLiteral("Ctrl+Alt+K"));
}

void E2eHotkeys::lossOfFocusCancels()
{
    constexpr QPoint kFirstCategory{120, 110};
    SettingsKeys settings(*m_desktop);
    settings.start();
    listen(settings, SettingsKeys::SpotlightHotkeyRow);
    settings.click(kFirstCategory);
    settings.chord({HomePage::Control, SettingsKeys::Alt, 'k'});
    QCOMPARE(settings.program().setting(kSpotlightKey).toString(), QStringLiteral("Ctrl+Alt+Y"));
    QVERIFY(!isGrabbed(kK));
    QVERIFY(isGrabbed(kY));
}

void E2eHotkeys::tabIsRecorded()
{
    SettingsKeys settings(*m_desktop);
    settings.start();
    listen(settings, SettingsKeys::SpotlightHotkeyRow);
    settings.chord({HomePage::Control, HomePage::Tab});
    QTRY_COMPARE(settings.program().setting(kSpotlightKey).toString(), QStringLiteral("Ctrl+Tab"));
    QTRY_VERIFY(isGrabbed(kTab, XCB_MOD_MASK_CONTROL));
    // Neither the page nor the focus has gone: the same button records once more.
    settings.waitForSettings();
    settings.press({HomePage::Return});
    settings.chord({HomePage::Control, SettingsKeys::Alt, 'k'});
    QTRY_COMPARE(settings.program().setting(kSpotlightKey).toString(),
                 QStringLiteral("Ctrl+Alt+K"));
}

void E2eHotkeys::resetBringsTheDefaultBack_data()
{
    newOneLivesAndOldOneIsDead_data();
}

void E2eHotkeys::resetBringsTheDefaultBack()
{
    QFETCH(bool, isMain);
    const QString key = isMain ? kMainKey : kSpotlightKey;
    SettingsKeys settings(*m_desktop);
    settings.program().setSetting(key, QStringLiteral("Ctrl+Alt+K"));
    settings.start();
    QVERIFY(isGrabbed(kK));
    settings.openRow(SettingsKeys::AppCategory,
                     isMain ? SettingsKeys::MainHotkeyRow : SettingsKeys::SpotlightHotkeyRow);
    settings.press({HomePage::Return});
    QTRY_COMPARE(settings.program().setting(key).toString(),
                 isMain ? QStringLiteral("Ctrl+Alt+Space") : QStringLiteral("Ctrl+Alt+Y"));
    for (const bool isRestarted : {false, true}) {
        if (isRestarted)
            settings.restart();
        QTRY_VERIFY(isGrabbed(isMain ? kSpace : kY));
        QTRY_VERIFY(!isGrabbed(kK));
    }
}

QTEST_GUILESS_MAIN(E2eHotkeys)
#include "tst_e2e_hotkeys.moc"
