// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"
#include "BothHotkeys.h"
#include "CustomMessageBox.h"
#include "HotkeyRecorderFilter.h"
#include "Localization.h"
#include "Settings.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include <optional>

using Registration = FakeHotkeyBackend::Registration;

namespace
{

constexpr WId kWindow = BothHotkeys::Window;
constexpr unsigned int kNoRepeat = 0x4000;
constexpr unsigned int kCtrlAlt = 3;
const QString kIdleStyle = QStringLiteral("QPushButton { padding: 3px; }");

/// Takes every key away from what it watches, as the filters of a page do with theirs.
class KeyThief : public QObject
{
public:
    using QObject::QObject;
    int count = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress)
            return QObject::eventFilter(watched, event);
        ++count;
        return true;
    }
};

/// A page with one recorder, as wide as the settings page has it.
struct Page : QWidget
{
    Page(HotkeyRecorderFilter::ControllerGetter getter, HotkeyManager::Slot* slot,
         bool hasHint = true)
    {
        auto* column = new QVBoxLayout(this);
        for (QWidget* each : std::initializer_list<QWidget*>{button, display, hint, other})
            column->addWidget(each);
        filter =
            new HotkeyRecorderFilter(button, display, hasHint ? hint : nullptr, Theme::colors(),
                                     this, std::move(getter), slot, kIdleStyle);
        show();
    }

    void listen()
    {
        QVERIFY(QTest::qWaitForWindowActive(this));
        button->setFocus();
        button->click();
    }

    bool isListening() const { return HotkeyRecorderFilter::isListeningOn(button); }

    QPushButton* button = new QPushButton;
    QLabel* display = new QLabel;
    QLabel* hint = new QLabel;
    QLineEdit* other = new QLineEdit;
    HotkeyRecorderFilter* filter = nullptr;
};

} // namespace

class HotkeyRecorderFilterTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void idle();
    void listening();
    void backToIdle();
    void worksWithoutAHint();
    void textsInEveryLanguage();
    void styleOfTheDisplay();
    void longCombinationDoesNotWidenThePage();

    void recordsACombination_data();
    void recordsACombination();
    void swallowedKeysLeaveItListening_data();
    void swallowedKeysLeaveItListening();
    void heldKeyIsNotRecorded();
    void escapeCancels();
    void tabDoesNotMoveTheFocus();
    void keysAreItsOwnAloneWhileItListens();
    void lossOfFocusCancels();
    void keysPassWhileItIsIdle();

    void refusals_data();
    void refusals();
    void refusalKeepsWindowsOpen();
    void lateRefusalBringsTheOldOneBack();
    void messageOutlivesThePage();

    void recordsNothingWithoutAControllerOrSlot_data();
    void recordsNothingWithoutAControllerOrSlot();
    void asksForTheControllerEachTime();
    void sameCombinationAgain();
    void pageIsRebuilt();

private:
    HotkeyRecorderFilter::ControllerGetter getter()
    {
        return [this] { return m_hotkeys->main.get(); };
    }
    static QString stored(const QString& key) { return Settings::value(key).toString(); }

    std::optional<BothHotkeys> m_hotkeys;
};

void HotkeyRecorderFilterTest::init()
{
    Tr::currentLang = Lang::En;
    Theme::forceTheme = 1;
    m_hotkeys.emplace();
}

void HotkeyRecorderFilterTest::cleanup()
{
    m_hotkeys.reset();
}

void HotkeyRecorderFilterTest::idle()
{
    const Page page(getter(), &HotkeyManager::mainWindowSlot);
    QCOMPARE(page.filter->parent(), page.button);
    QVERIFY(!page.isListening());
    QCOMPARE(page.button->text(), "Record");
    QCOMPARE(page.button->styleSheet(), kIdleStyle);
    QCOMPARE(page.display->text(), "Ctrl+Alt+Space");
    QCOMPARE(page.display->styleSheet(),
             HotkeyRecorderFilter::displayStyle(Theme::colors(), false));
    QVERIFY(page.hint->isHidden());
    QVERIFY(!HotkeyRecorderFilter::isListeningOn(page.display));
    QVERIFY(!HotkeyRecorderFilter::isListeningOn(nullptr));
}

void HotkeyRecorderFilterTest::listening()
{
    Page page(getter(), &HotkeyManager::mainWindowSlot);
    page.listen();
    const ColorTokens c = Theme::colors();
    QVERIFY(page.isListening());
    QVERIFY(!HotkeyRecorderFilter::isListeningOn(&page));
    QCOMPARE(page.button->text(), "Recording...");
    QCOMPARE(page.button->styleSheet(), Theme::activeListeningStyle(c));
    QCOMPARE(page.display->text(), "Ctrl+Alt+Space");
    QCOMPARE(page.display->styleSheet(), HotkeyRecorderFilter::displayStyle(c, true));
    QVERIFY(page.hint->isVisible());
    QCOMPARE(page.hint->text(), "Press the key combination you want. Press Esc to cancel.");
    page.button->click(); // once more
    QVERIFY(page.isListening());
}

void HotkeyRecorderFilterTest::backToIdle()
{
    Page page(getter(), &HotkeyManager::mainWindowSlot);
    page.listen();
    HotkeyManager::mainWindowSlot.combo = "Ctrl+Alt+J"; // changed by another hand
    page.filter->stopListening();
    QVERIFY(!page.isListening());
    QCOMPARE(page.button->text(), "Record");
    QCOMPARE(page.button->styleSheet(), kIdleStyle);
    QCOMPARE(page.display->text(), "Ctrl+Alt+J");
    QCOMPARE(page.display->styleSheet(),
             HotkeyRecorderFilter::displayStyle(Theme::colors(), false));
    QVERIFY(page.hint->isHidden());
}

void HotkeyRecorderFilterTest::worksWithoutAHint()
{
    Page page(getter(), &HotkeyManager::mainWindowSlot, false);
    page.listen();
    QTest::keyClick(page.button, Qt::Key_K, Qt::ControlModifier | Qt::AltModifier);
    QCOMPARE(page.display->text(), "Ctrl+Alt+K");
}

void HotkeyRecorderFilterTest::textsInEveryLanguage()
{
    for (const Lang lang : Tr::all()) {
        Tr::currentLang = lang;
        Page page(getter(), &HotkeyManager::mainWindowSlot);
        QCOMPARE(page.button->text(), Tr::t("settings.system.hotkey_record_btn"));
        QCOMPARE(page.hint->text(), Tr::t("settings.system.hotkey_hint"));
        page.listen();
        QCOMPARE(page.button->text(), Tr::t("settings.system.hotkey_recording"));
    }
}

void HotkeyRecorderFilterTest::styleOfTheDisplay()
{
    ColorTokens c;
    c.primaryContainer = "#111111";
    c.onPrimaryContainer = "#222222";
    c.surfaceContainerHighest = "#333333";
    c.onSurface = "#444444";
    const QString box = "; border: none; border-radius: 18px; padding: 8px 16px; font-size: 12px; "
                        "font-weight: bold; }";
    QCOMPARE(HotkeyRecorderFilter::displayStyle(c, true),
             "QLabel { background-color: #111111; color: #222222" + box);
    QCOMPARE(HotkeyRecorderFilter::displayStyle(c, false),
             "QLabel { background-color: #333333; color: #444444" + box);
}

void HotkeyRecorderFilterTest::longCombinationDoesNotWidenThePage()
{
    const int usual = Page(getter(), &HotkeyManager::mainWindowSlot).sizeHint().width();
    HotkeyManager::mainWindowSlot.combo = QStringLiteral("Ctrl+").repeated(200'000) + u'K';
    const Page page(getter(), &HotkeyManager::mainWindowSlot);
    QVERIFY(page.sizeHint().width() < usual + 300);
    QVERIFY(page.display->text().startsWith("Ctrl+Ctrl+"));
}

void HotkeyRecorderFilterTest::recordsACombination_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("combo");
    const Qt::KeyboardModifiers ctrlAlt = Qt::ControlModifier | Qt::AltModifier;
    const auto row = [](int key, Qt::KeyboardModifiers modifiers, const QString& combo) {
        QTest::addRow("%s", qPrintable(combo)) << key << modifiers << combo;
    };
    for (const char letter : QByteArray("ABCDEFGHIJKLMNOPQRSTUVWXZ0123456789")) // Y is Spotlight's
        row(Qt::Key(letter), ctrlAlt, QStringLiteral("Ctrl+Alt+") + QLatin1Char(letter));
    for (int n = 1; n <= 24; ++n)
        row(Qt::Key_F1 + n - 1, Qt::ShiftModifier, QStringLiteral("Shift+F%1").arg(n));
    row(Qt::Key_Space, Qt::AltModifier | Qt::ShiftModifier, "Alt+Shift+Space");
    row(Qt::Key_Return, ctrlAlt, "Ctrl+Alt+Enter");
    row(Qt::Key_Tab, ctrlAlt, "Ctrl+Alt+Tab");
    row(Qt::Key_Delete, Qt::ControlModifier, "Ctrl+Delete");
    row(Qt::Key_K, Qt::ControlModifier, "Ctrl+K");
    row(Qt::Key_K, Qt::AltModifier, "Alt+K");
    row(Qt::Key_K, Qt::ShiftModifier, "Shift+K");
    row(Qt::Key_K, Qt::MetaModifier, "Win+K");
    row(Qt::Key_K, Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier | Qt::MetaModifier,
        "Ctrl+Alt+Shift+Win+K");
    QTest::newRow("Enter of the number pad")
        << int(Qt::Key_Enter) << (ctrlAlt | Qt::KeypadModifier) << "Ctrl+Alt+Enter";
    QTest::newRow("digit of the number pad")
        << int(Qt::Key_7) << (ctrlAlt | Qt::KeypadModifier) << "Ctrl+Alt+7";
}

void HotkeyRecorderFilterTest::recordsACombination()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QString, combo);
    Page page(getter(), &HotkeyManager::mainWindowSlot);
    page.listen();
    QTest::keyClick(page.button, Qt::Key(key), modifiers);
    QVERIFY(!page.isListening());
    QCOMPARE(page.display->text(), combo);
    QCOMPARE(HotkeyManager::mainWindowSlot.combo, combo);
    QCOMPARE(stored("Hotkey/Combo"), combo);
    QCOMPARE(HotkeyManager::spotlightSlot.combo, "Ctrl+Alt+Y");
    // The old one is dead, the new one is alive.
    unsigned int bits = 0;
    unsigned int code = 0;
    QVERIFY(HotkeyManager::parseCombo(combo, bits, code));
    const QVector<Registration> expected{{kWindow, 2, kCtrlAlt | kNoRepeat, 'Y'},
                                         {kWindow, 1, bits | kNoRepeat, code}};
    QCOMPARE(m_hotkeys->backend->registrations(), expected);
}

void HotkeyRecorderFilterTest::swallowedKeysLeaveItListening_data()
{
    QTest::addColumn<int>("key");
    const auto row = [](const char* name, int key) { QTest::newRow(name) << key; };
    row("Ctrl", Qt::Key_Control);
    row("Shift", Qt::Key_Shift);
    row("Alt", Qt::Key_Alt);
    row("Win", Qt::Key_Meta);
    row("AltGr", Qt::Key_AltGr);
    row("Super", Qt::Key_Super_L);
    row("Up", Qt::Key_Up);
    row("Down", Qt::Key_Down);
    row("Left", Qt::Key_Left);
    row("Right", Qt::Key_Right);
    row("Print", Qt::Key_Print);
    row("Insert", Qt::Key_Insert);
    row("Home", Qt::Key_Home);
    row("End", Qt::Key_End);
    row("PageUp", Qt::Key_PageUp);
    row("PageDown", Qt::Key_PageDown);
    row("Backspace", Qt::Key_Backspace);
    row("Backtab", Qt::Key_Backtab);
    row("plus", Qt::Key_Plus);
    row("comma", Qt::Key_Comma);
    row("before the digits", Qt::Key_0 - 1);
    row("after the digits", Qt::Key_9 + 1);
    row("before the letters", Qt::Key_A - 1);
    row("after the letters", Qt::Key_Z + 1);
    row("F25", Qt::Key_F25);
    row("Caps Lock", Qt::Key_CapsLock);
    row("letter of another script", 0x0416);
    row("no key", 0);
    row("unknown", Qt::Key_unknown);
}

void HotkeyRecorderFilterTest::swallowedKeysLeaveItListening()
{
    QFETCH(int, key);
    Page page(getter(), &HotkeyManager::mainWindowSlot);
    page.listen();
    for (const Qt::KeyboardModifiers& modifiers :
         {Qt::KeyboardModifiers(), Qt::ControlModifier | Qt::AltModifier}) {
        QKeyEvent press(QEvent::KeyPress, key, modifiers);
        QKeyEvent release(QEvent::KeyRelease, key, modifiers);
        QApplication::sendEvent(page.button, &press);
        QApplication::sendEvent(page.button, &release);
    }
    QVERIFY(page.isListening());
    QVERIFY(page.button->hasFocus());
    QTest::keyClick(page.button, Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(page.display->text(), "Ctrl+K");
}

void HotkeyRecorderFilterTest::heldKeyIsNotRecorded()
{
    Page page(getter(), &HotkeyManager::mainWindowSlot);
    page.listen();
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
    QApplication::sendEvent(page.button, &repeated);
    QVERIFY(page.isListening());
}

void HotkeyRecorderFilterTest::escapeCancels()
{
    for (const Qt::KeyboardModifiers& modifiers :
         {Qt::KeyboardModifiers(), Qt::ControlModifier | Qt::AltModifier}) {
        Page page(getter(), &HotkeyManager::mainWindowSlot);
        page.listen();
        QTest::keyClick(page.button, Qt::Key_Escape, modifiers);
        QVERIFY(!page.isListening());
        QVERIFY(page.button->hasFocus());
        QCOMPARE(page.display->text(), "Ctrl+Alt+Space");
        QCOMPARE(stored("Hotkey/Combo"), "Ctrl+Alt+Space");
    }
}

void HotkeyRecorderFilterTest::tabDoesNotMoveTheFocus()
{
    Page page(getter(), &HotkeyManager::mainWindowSlot);
    page.listen();
    const ModalDriver driver([](QWidget* modal) { pressKey(*modal, Qt::Key_Return); });
    QTest::keyClick(page.button, Qt::Key_Tab); // refused without a modifier
    QCOMPARE(driver.count(), 1);
    QVERIFY(!page.isListening());
    QCOMPARE(page.focusWidget(), page.button);
}

void HotkeyRecorderFilterTest::keysAreItsOwnAloneWhileItListens()
{
    Page page(getter(), &HotkeyManager::mainWindowSlot);
    KeyThief thief;
    page.button->installEventFilter(&thief); // later than the recorder
    QTest::keyClick(page.button, Qt::Key_K);
    QCOMPARE(thief.count, 1);
    page.listen();
    QTest::keyClick(page.button, Qt::Key_Up);
    QTest::keyClick(page.button, Qt::Key_Backspace);
    QTest::keyClick(page.button, Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(thief.count, 1);
    QCOMPARE(page.display->text(), "Ctrl+K");
    QTest::keyClick(page.button, Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(page.display->text(), "Ctrl+K");
}

void HotkeyRecorderFilterTest::lossOfFocusCancels()
{
    Page page(getter(), &HotkeyManager::mainWindowSlot);
    page.listen();
    QTest::mouseClick(page.other, Qt::LeftButton);
    page.other->setFocus();
    QVERIFY(!page.isListening());
    QVERIFY(page.other->hasFocus()); // the event has passed on
    QVERIFY(!page.button->hasFocus());
    QTest::keyClick(page.button, Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(page.display->text(), "Ctrl+Alt+Space");
}

void HotkeyRecorderFilterTest::keysPassWhileItIsIdle()
{
    Page page(getter(), &HotkeyManager::mainWindowSlot);
    QVERIFY(QTest::qWaitForWindowActive(&page));
    page.button->setFocus();
    QTest::keyClick(page.button, Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(page.display->text(), "Ctrl+Alt+Space");
    QTest::keyClick(page.button, Qt::Key_Space);
    QVERIFY(page.isListening()); // the space bar has pressed the button, and is not recorded
    page.filter->stopListening();
    QTest::keyClick(page.button, Qt::Key_Tab);
    QVERIFY(page.other->hasFocus());
}

void HotkeyRecorderFilterTest::refusals_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("message");
    const Qt::KeyboardModifiers none;
    const Qt::KeyboardModifiers ctrl = Qt::ControlModifier;
    const Qt::KeyboardModifiers ctrlAlt = Qt::ControlModifier | Qt::AltModifier;
    const QString noModifier = "Wajib menggunakan modifier (Ctrl/Alt/Shift/Win).";
    const QString denied = "Kombinasi ini dicadangkan (Denylist).";
    const QString taken = "Kombinasi sudah dipakai aplikasi lain.";
    QTest::newRow("letter alone") << int(Qt::Key_K) << none << noModifier;
    QTest::newRow("function key alone") << int(Qt::Key_F5) << none << noModifier;
    QTest::newRow("Enter alone") << int(Qt::Key_Return) << none << noModifier;
    QTest::newRow("reserved") << int(Qt::Key_C) << ctrl << denied;
    QTest::newRow("reserved, with Delete") << int(Qt::Key_Delete) << ctrlAlt << denied;
    QTest::newRow("of another program") << int(Qt::Key_T) << ctrlAlt << taken;
    QTest::newRow("of the other window") << int(Qt::Key_Y) << ctrlAlt << taken;
    QTest::newRow("free for a probe alone")
        << int(Qt::Key_Q) << ctrlAlt << "Gagal mendaftarkan kombinasi ini ke Windows.";
}

void HotkeyRecorderFilterTest::refusals()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QString, message);
    m_hotkeys->backend->takeByOther(kCtrlAlt, 'T');
    m_hotkeys->backend->refuseUnder(1, kCtrlAlt, 'Q');
    Page page(getter(), &HotkeyManager::mainWindowSlot);
    page.listen();
    QStringList texts;
    bool wasListening = true;
    const ModalDriver driver([&](QWidget* modal) {
        wasListening = page.isListening();
        for (const QLabel* label : modal->findChildren<QLabel*>())
            texts.append(label->text());
        pressKey(*modal, Qt::Key_Return);
    });
    QTest::keyClick(page.button, Qt::Key(key), modifiers);
    QCOMPARE(texts, QStringList({"Invalid Hotkey", message}));
    QVERIFY(!wasListening);
    QCOMPARE(driver.count(), 1);
    // What was in force still is.
    QCOMPARE(page.display->text(), "Ctrl+Alt+Space");
    QCOMPARE(stored("Hotkey/Combo"), "Ctrl+Alt+Space");
    QVERIFY(m_hotkeys->backend->registrations().contains({kWindow, 1, kCtrlAlt | kNoRepeat, 32}));
    QCOMPARE(m_hotkeys->backend->registrations().size(), 2);
}

void HotkeyRecorderFilterTest::refusalKeepsWindowsOpen()
{
    QTRY_VERIFY(!g_blockAutoQuit);
    Page page(getter(), &HotkeyManager::mainWindowSlot);
    page.listen();
    bool wasBlocked = false;
    const ModalDriver driver([&](QWidget* modal) {
        wasBlocked = g_blockAutoQuit;
        pressKey(*modal, Qt::Key_Escape);
    });
    QTest::keyClick(page.button, Qt::Key_K);
    QVERIFY(wasBlocked);
}

void HotkeyRecorderFilterTest::lateRefusalBringsTheOldOneBack()
{
    m_hotkeys->backend->refuseUnder(2, kCtrlAlt, 'Q');
    Page page([this] { return m_hotkeys->spotlight.get(); }, &HotkeyManager::spotlightSlot);
    page.listen();
    const ModalDriver driver([](QWidget* modal) { pressKey(*modal, Qt::Key_Return); });
    QTest::ignoreMessage(QtDebugMsg,
                         "GlobalHotkeyController: Failed to register hotkey \"Ctrl+Alt+Q\"");
    QTest::keyClick(page.button, Qt::Key_Q, Qt::ControlModifier | Qt::AltModifier);
    QCOMPARE(driver.count(), 1);
    QVERIFY(m_hotkeys->backend->registrations().contains({kWindow, 2, kCtrlAlt | kNoRepeat, 'Y'}));
    QCOMPARE(stored("Hotkey/SpotlightCombo"), "Ctrl+Alt+Y");
}

void HotkeyRecorderFilterTest::messageOutlivesThePage()
{
    QWidget window;
    auto* page = new Page(getter(), &HotkeyManager::mainWindowSlot);
    page->setParent(&window);
    page->show();
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    page->button->setFocus();
    page->button->click();
    const ModalDriver driver([&](QWidget* modal) {
        QCOMPARE(modal->parentWidget(), &window);
        delete page;
        page = nullptr;
        pressKey(*modal, Qt::Key_Return);
    });
    QTest::keyClick(page->button, Qt::Key_K);
    QCOMPARE(driver.count(), 1);
    QVERIFY(!page);
}

void HotkeyRecorderFilterTest::recordsNothingWithoutAControllerOrSlot_data()
{
    QTest::addColumn<bool>("hasGetter");
    QTest::addColumn<bool>("hasController");
    QTest::addColumn<bool>("hasSlot");
    QTest::newRow("no getter") << false << false << true;
    QTest::newRow("no controller") << true << false << true;
    QTest::newRow("no slot") << true << true << false;
}

void HotkeyRecorderFilterTest::recordsNothingWithoutAControllerOrSlot()
{
    QFETCH(bool, hasGetter);
    QFETCH(bool, hasController);
    QFETCH(bool, hasSlot);
    HotkeyRecorderFilter::ControllerGetter get;
    if (hasGetter)
        get = [this, hasController] { return hasController ? m_hotkeys->main.get() : nullptr; };
    Page page(get, hasSlot ? &HotkeyManager::mainWindowSlot : nullptr);
    const QString shown = hasSlot ? "Ctrl+Alt+Space" : "";
    QCOMPARE(page.display->text(), shown);
    page.listen();
    QVERIFY(page.isListening());
    QTest::keyClick(page.button, Qt::Key_K, Qt::ControlModifier);
    QVERIFY(!page.isListening());
    QCOMPARE(page.display->text(), shown);
    QCOMPARE(HotkeyManager::mainWindowSlot.combo, "Ctrl+Alt+Space");
    QCOMPARE(stored("Hotkey/Combo"), "Ctrl+Alt+Space");
}

void HotkeyRecorderFilterTest::asksForTheControllerEachTime()
{
    Page page(getter(), &HotkeyManager::mainWindowSlot);
    // The window has made itself anew.
    m_hotkeys->main.reset();
    m_hotkeys->main =
        std::make_unique<GlobalHotkeyController>(4712, 1, &HotkeyManager::mainWindowSlot, nullptr);
    page.listen();
    QTest::keyClick(page.button, Qt::Key_K, Qt::ControlModifier);
    QVERIFY(m_hotkeys->backend->registrations().contains(
        {4712, 1, HotkeyManager::ModControl | kNoRepeat, 'K'}));
}

void HotkeyRecorderFilterTest::sameCombinationAgain()
{
    Page page(getter(), &HotkeyManager::mainWindowSlot);
    page.listen();
    QTest::keyClick(page.button, Qt::Key_Space, Qt::ControlModifier | Qt::AltModifier);
    QVERIFY(!page.isListening());
    QCOMPARE(page.display->text(), "Ctrl+Alt+Space");
    QCOMPARE(m_hotkeys->backend->registrations().size(), 2);
}

void HotkeyRecorderFilterTest::pageIsRebuilt()
{
    auto page = std::make_unique<Page>(getter(), &HotkeyManager::mainWindowSlot);
    page->listen();
    Tr::currentLang = Lang::Es;
    page = std::make_unique<Page>(getter(), &HotkeyManager::mainWindowSlot);
    QVERIFY(!page->isListening());
    QCOMPARE(page->button->text(), "Grabar");
    page->listen();
    QTest::keyClick(page->button, Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(page->display->text(), "Ctrl+K");
}

QTEST_MAIN(HotkeyRecorderFilterTest)
#include "tst_hotkeyrecorderfilter.moc"
