// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Keymap.h"
#include "TestHome.h"

#include <QtTest>

#include <memory>

#include <xkbcommon/xkbcommon.h>

/// Which keys and modifier bits a combination is on the keyboards of this world.
class KeymapTest : public QObject
{
    Q_OBJECT

private slots:
    static void initMain() { TestHome::install(); }
    void keycodes_data();
    void keycodes();
    void functionKeysBeyondTheKeyboard_data();
    void functionKeysBeyondTheKeyboard();
    void addedFunctionKeyIsFound();
    void shiftedFunctionKeyIsAnotherKey();
    void placesHaveNamesNotNumbers();
    void unknownKeyHasNoKeycode();
    void emptyMapHasNoKeys();
    void modifiers_data();
    void modifiers();
    void locks_data();
    void locks();
    void stateWithoutLocks();
    void modifierKeys_data();
    void modifierKeys();
};

namespace
{

using Codes = QVector<xcb_keycode_t>;
using States = QVector<quint16>;
using SharedKeymap = std::shared_ptr<xkb_keymap>;

constexpr unsigned int kAlt = 1;
constexpr unsigned int kControl = 2;
constexpr unsigned int kShift = 4;
constexpr unsigned int kWin = 8;

constexpr quint16 kNumLock = XCB_MOD_MASK_2;

xkb_context* context()
{
    static const std::shared_ptr<xkb_context> s_context(
        xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES), xkb_context_unref);
    return s_context.get();
}

SharedKeymap owned(xkb_keymap* keymap)
{
    if (!keymap)
        qFatal("the keyboard map can't be read");
    return {keymap, xkb_keymap_unref};
}

/// A keyboard with these layouts, separated by commas, and their variants likewise.
SharedKeymap keyboard(const QByteArray& layouts, const QByteArray& variants = {})
{
    const xkb_rule_names names{"evdev", "pc105", layouts.constData(), variants.constData(), ""};
    return owned(xkb_keymap_new_from_names(context(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

/// The plain keyboard with these components in place of its own.
SharedKeymap keyboardWith(const QByteArray& symbols,
                          const QByteArray& keycodes = "include \"evdev+aliases(qwerty)\"")
{
    const QByteArray text = "xkb_keymap { xkb_keycodes { " + keycodes +
                            " }; xkb_types { include \"complete\" }; "
                            "xkb_compat { include \"complete\" }; xkb_symbols { " +
                            symbols + " }; };";
    return owned(xkb_keymap_new_from_string(context(), text.constData(), XKB_KEYMAP_FORMAT_TEXT_V1,
                                            XKB_KEYMAP_COMPILE_NO_FLAGS));
}

} // namespace

void KeymapTest::keycodes_data()
{
    QTest::addColumn<QByteArray>("layouts");
    QTest::addColumn<QByteArray>("variants");
    QTest::addColumn<uint>("key");
    QTest::addColumn<Codes>("codes");
    const auto row = [](const char* name, const char* layouts, const char* variants, uint key,
                        const Codes& codes) {
        QTest::newRow(name) << QByteArray(layouts) << QByteArray(variants) << key << codes;
    };
    row("letter", "us", "", 'Y', {29});
    row("letter in another place", "de", "", 'Y', {52});
    row("the first layout decides", "us,de", "", 'Y', {29});
    row("the first layout decides, the other way round", "de,us", "", 'Y', {52});
    row("letter of another order", "us", "dvorak", 'Y', {28});
    row("no Latin letters: Cyrillic", "ru", "", 'Y', {29});
    row("no Latin letters: Greek", "gr", "", 'Q', {24});
    row("no Latin letters: Arabic", "ara", "", 'A', {38});
    row("Latin letters in the second layout only", "ru,de", "", 'Y', {52});
    row("Latin letters in the last of four layouts", "ru,gr,ara,de", "", 'Y', {52});
    row("no Latin letters in four layouts", "ru,gr,ara,th", "", 'Y', {29});
    row("digit", "us", "", '1', {10});
    row("digit behind Shift", "fr", "", '1', {10});
    row("digit in no layout", "th", "", '0', {19});
    row("space", "ru", "", 32, {65});
    row("Return", "us", "", 13, {36});
    row("Tab", "us", "", 9, {23});
    row("Left", "us", "", 37, {113});
    row("Up", "us", "", 38, {111});
    row("Right", "us", "", 39, {114});
    row("Down", "us", "", 40, {116});
    row("Delete", "us", "", 46, {119});
    row("F1", "us", "", 112, {67});
    row("F12", "ru", "", 123, {96});
}

void KeymapTest::keycodes()
{
    QFETCH(QByteArray, layouts);
    QFETCH(QByteArray, variants);
    QFETCH(uint, key);
    const SharedKeymap keymap = keyboard(layouts, variants);
    QTEST(Keymap::of(keymap.get()).keycodesOf(key), "codes");
}

void KeymapTest::functionKeysBeyondTheKeyboard_data()
{
    QTest::addColumn<uint>("key");
    for (uint number = 13; number <= 24; ++number)
        QTest::addRow("F%u", number) << 111 + number;
}

void KeymapTest::functionKeysBeyondTheKeyboard()
{
    QFETCH(uint, key);
    const SharedKeymap keymap = keyboard("us,ru");
    QCOMPARE(Keymap::of(keymap.get()).keycodesOf(key), Codes());
}

void KeymapTest::addedFunctionKeyIsFound()
{
    const SharedKeymap keymap = keyboardWith("include \"pc+us\" key <FK13> { [ F13 ] }; "
                                             "key <FK24> { [ F24 ] };");
    QCOMPARE(Keymap::of(keymap.get()).keycodesOf(111 + 13), Codes{191});
    QCOMPARE(Keymap::of(keymap.get()).keycodesOf(111 + 24), Codes{202});
}

void KeymapTest::shiftedFunctionKeyIsAnotherKey()
{
    const SharedKeymap keymap =
        keyboardWith("include \"pc+us\" key <FK01> { type = \"TWO_LEVEL\", [ F1, F13 ] };");
    QCOMPARE(Keymap::of(keymap.get()).keycodesOf(111 + 13), Codes());
    QCOMPARE(Keymap::of(keymap.get()).keycodesOf(111 + 1), Codes{67});
}

void KeymapTest::placesHaveNamesNotNumbers()
{
    const SharedKeymap keymap =
        keyboardWith("include \"pc+ru\"", "minimum = 8; maximum = 255; <AD06> = 129;");
    QCOMPARE(Keymap::of(keymap.get()).keycodesOf('Y'), Codes{129});
}

void KeymapTest::unknownKeyHasNoKeycode()
{
    const SharedKeymap keymap = keyboard("us");
    for (const uint key : {0u, 1u, 27u + 1, 111u, 136u, 0x8000u})
        QCOMPARE(Keymap::of(keymap.get()).keycodesOf(key), Codes());
}

void KeymapTest::emptyMapHasNoKeys()
{
    QCOMPARE(Keymap().keycodesOf('Y'), Codes());
    QCOMPARE(Keymap().lockVariants(), States{0});
}

void KeymapTest::modifiers_data()
{
    QTest::addColumn<QByteArray>("symbols");
    QTest::addColumn<uint>("modifiers");
    QTest::addColumn<quint16>("state");
    const auto row = [](const char* name, const char* symbols, uint modifiers, uint state) {
        QTest::newRow(name) << QByteArray(symbols) << modifiers << quint16(state);
    };
    constexpr char kPlain[] = "include \"pc+us\"";
    row("none", kPlain, 0, 0);
    row("Alt", kPlain, kAlt, XCB_MOD_MASK_1);
    row("Ctrl", kPlain, kControl, XCB_MOD_MASK_CONTROL);
    row("Shift", kPlain, kShift, XCB_MOD_MASK_SHIFT);
    row("Win", kPlain, kWin, XCB_MOD_MASK_4);
    row("all", kPlain, kAlt | kControl | kShift | kWin,
        XCB_MOD_MASK_1 | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_4);
    constexpr char kSwapped[] = "key <LALT> { [ Alt_L ] }; modifier_map Mod3 { <LALT> }; "
                                "key <LWIN> { [ Super_L ] }; modifier_map Mod5 { <LWIN> };";
    row("Alt on another modifier", kSwapped, kAlt, XCB_MOD_MASK_3);
    row("Win on another modifier", kSwapped, kWin, XCB_MOD_MASK_5);
    constexpr char kNone[] = "key <SPCE> { [ space ] };";
    row("Alt on no key", kNone, kAlt, XCB_MOD_MASK_1);
    row("Win on no key", kNone, kWin, XCB_MOD_MASK_4);
    row("Win in the second layout",
        "key <LWIN> { [ a ], [ Super_L ] }; "
        "modifier_map Mod3 { Super_L };",
        kWin, XCB_MOD_MASK_3);
}

void KeymapTest::modifiers()
{
    QFETCH(QByteArray, symbols);
    QFETCH(uint, modifiers);
    const SharedKeymap keymap = keyboardWith(symbols);
    QTEST(Keymap::of(keymap.get()).stateOf(modifiers), "state");
}

void KeymapTest::locks_data()
{
    QTest::addColumn<QByteArray>("symbols");
    QTest::addColumn<States>("locks");
    constexpr quint16 kCaps = XCB_MOD_MASK_LOCK;
    constexpr quint16 kScroll = XCB_MOD_MASK_3;
    QTest::newRow("usual") << QByteArrayLiteral("include \"pc+us\"")
                           << States{0, kCaps, kNumLock, kCaps | kNumLock};
    QTest::newRow("with Scroll Lock")
        << QByteArrayLiteral("include \"pc+us\" modifier_map Mod3 { Scroll_Lock };")
        << States{0,       kCaps,           kNumLock,           kCaps | kNumLock,
                  kScroll, kCaps | kScroll, kNumLock | kScroll, kCaps | kNumLock | kScroll};
    QTest::newRow("Num Lock elsewhere")
        << QByteArrayLiteral("key <NMLK> { [ Num_Lock ] }; modifier_map Mod5 { Num_Lock };")
        << States{0, kCaps, XCB_MOD_MASK_5, kCaps | XCB_MOD_MASK_5};
    QTest::newRow("Num Lock behind Shift")
        << QByteArrayLiteral("key <NMLK> { [ Tab, Num_Lock ] }; modifier_map Mod2 { <NMLK> };")
        << States{0, kCaps, kNumLock, kCaps | kNumLock};
    QTest::newRow("none but Caps Lock")
        << QByteArrayLiteral("key <SPCE> { [ space ] };") << States{0, kCaps};
}

void KeymapTest::locks()
{
    QFETCH(QByteArray, symbols);
    const SharedKeymap keymap = keyboardWith(symbols);
    QTEST(Keymap::of(keymap.get()).lockVariants(), "locks");
}

void KeymapTest::stateWithoutLocks()
{
    const SharedKeymap owner = keyboard("us");
    const Keymap keymap = Keymap::of(owner.get());
    constexpr uint kPressed = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
    QCOMPARE(keymap.withoutLocks(kPressed | XCB_MOD_MASK_LOCK | kNumLock), quint16(kPressed));
    constexpr uint kThirdLayout = 2U << 13;
    QCOMPARE(keymap.withoutLocks(kPressed | kThirdLayout | XCB_BUTTON_MASK_1), quint16(kPressed));
    QCOMPARE(keymap.withoutLocks(kPressed | XCB_MOD_MASK_SHIFT),
             quint16(kPressed | XCB_MOD_MASK_SHIFT));
}

void KeymapTest::modifierKeys_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("isModifier");
    QTest::newRow("Shift") << 50 << true;
    QTest::newRow("Ctrl") << 37 << true;
    QTest::newRow("Alt") << 64 << true;
    QTest::newRow("Alt Gr") << 108 << true;
    QTest::newRow("Win") << 133 << true;
    QTest::newRow("Caps Lock") << 66 << true;
    QTest::newRow("letter") << 29 << false;
    QTest::newRow("space") << 65 << false;
    QTest::newRow("function key") << 67 << false;
    QTest::newRow("no key of this keyboard") << 8 << false;
}

void KeymapTest::modifierKeys()
{
    QFETCH(int, code);
    const SharedKeymap keymap = keyboard("de");
    QTEST(Keymap::of(keymap.get()).isModifier(static_cast<xcb_keycode_t>(code)), "isModifier");
    QVERIFY(!Keymap().isModifier(static_cast<xcb_keycode_t>(code)));
}

QTEST_GUILESS_MAIN(KeymapTest)
#include "tst_keymap.moc"
