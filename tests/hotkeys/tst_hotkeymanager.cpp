// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FakeHotkeyBackend.h"
#include "HotkeyManager.h"
#include "Localization.h"
#include "Settings.h"
#include "TestHome.h"
#include "Theme.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTest>

using Registration = FakeHotkeyBackend::Registration;
using Result = HotkeyManager::ValidationResult;
using Slot = HotkeyManager::Slot;

Q_DECLARE_METATYPE(HotkeyManager::Slot*)

class HotkeyManagerTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();

    void slotsBeforeTheFirstLoad();
    void allSlotsInOrder();
    void settingsFileIsTheThemes();

    void keyWords_data();
    void keyWords();
    void modifierWords_data();
    void modifierWords();
    void combinations_data();
    void combinations();
    void notACombination_data();
    void notACombination();
    void parsingStartsFromZero();

    void denyList_data();
    void denyList();
    void validate_data();
    void validate();
    void messagesAreNotTranslated();
    void presentCombinationNeedsNoProbe();
    void forcedTestProbesThePresentCombination();
    void probeLeavesNothingBehind();
    void refusedBeforeTheProbe_data();
    void refusedBeforeTheProbe();
    void takenByAnotherProgram();
    void takenByThisProcess();
    void withoutAWindowNothingIsProbed();

    void validateForChange_data();
    void validateForChange();
    void bothSlotsAlikeRefuseTheChange();
    void systemRefusalComesBeforeTheOtherSlots();

    void adopt_data();
    void adopt();

    void firstRunStoresBothDefaults();
    void loadsTheStoredCombination();
    void storedCombinationIsAlwaysProbed();
    void unusableStoredCombinationFallsBack_data();
    void unusableStoredCombinationFallsBack();
    void takenStoredCombinationFallsBack();
    void takenDefaultIsAdoptedAllTheSame();
    void combinationOfTheOtherSlotIsNotCaught();
    void loadingWithoutAWindowDoesNotProbe();
    void saveKeepsTheOtherKeys();

private:
    static QString stored(const QString& key);
    static void store(const QString& key, const QVariant& value);

    Slot m_initialMain;
    Slot m_initialSpotlight;
    FakeHotkeyBackend* m_backend = nullptr;
};

namespace
{

constexpr WId kWindow = 4711;
const QString kOk = QStringLiteral("OK");
const QString kBadFormat = QStringLiteral("Format hotkey tidak valid.");
const QString kNoModifier = QStringLiteral("Wajib menggunakan modifier (Ctrl/Alt/Shift/Win).");
const QString kPrintScreen = QStringLiteral("PrintScreen tidak diizinkan.");
const QString kEscape = QStringLiteral("Tombol Escape dicadangkan untuk sistem navigasi.");
const QString kDenied = QStringLiteral("Kombinasi ini dicadangkan (Denylist).");
const QString kTaken = QStringLiteral("Kombinasi sudah dipakai aplikasi lain.");
const QString kOwn = QStringLiteral("Kombinasi ini sudah dipakai hotkey lain di aplikasi ini.");

void compareSlots(const Slot& actual, const Slot& expected)
{
    QCOMPARE(actual.combo, expected.combo);
    QCOMPARE(actual.modifiers, expected.modifiers);
    QCOMPARE(actual.vk, expected.vk);
    QCOMPARE(actual.settingsKey, expected.settingsKey);
    QCOMPARE(actual.defaultCombo, expected.defaultCombo);
}

} // namespace

QString HotkeyManagerTest::stored(const QString& key)
{
    return QSettings(HotkeyManager::settingsFilePath(), Settings::format()).value(key).toString();
}

void HotkeyManagerTest::store(const QString& key, const QVariant& value)
{
    QSettings(HotkeyManager::settingsFilePath(), Settings::format()).setValue(key, value);
}

void HotkeyManagerTest::initTestCase()
{
    m_initialMain = HotkeyManager::mainWindowSlot;
    m_initialSpotlight = HotkeyManager::spotlightSlot;
}

void HotkeyManagerTest::init()
{
    HotkeyManager::mainWindowSlot = m_initialMain;
    HotkeyManager::spotlightSlot = m_initialSpotlight;
    TestHome::writeDataFile("settings.ini", {});
    m_backend = FakeHotkeyBackend::install();
}

void HotkeyManagerTest::slotsBeforeTheFirstLoad()
{
    compareSlots(m_initialMain, {"Ctrl+Alt+Space", 0, 0, "Hotkey/Combo", "Ctrl+Alt+Space"});
    compareSlots(m_initialSpotlight, {"Ctrl+Alt+Y", 0, 0, "Hotkey/SpotlightCombo", "Ctrl+Alt+Y"});
}

void HotkeyManagerTest::allSlotsInOrder()
{
    const QVector<Slot*> expected{&HotkeyManager::mainWindowSlot, &HotkeyManager::spotlightSlot};
    QCOMPARE(HotkeyManager::allSlots(), expected);
}

void HotkeyManagerTest::settingsFileIsTheThemes()
{
    QCOMPARE(HotkeyManager::settingsFilePath(), Theme::settingsFilePath());
    QCOMPARE(HotkeyManager::settingsFilePath(), QDir(TestHome::dataDir()).filePath("settings.ini"));
}

void HotkeyManagerTest::keyWords_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<uint>("key");

    const QVector<std::pair<QString, uint>> words{
        {"Space", 32u},  {"Enter", 13u},       {"Return", 13u}, {"Esc", 27u},   {"Escape", 27u},
        {"Tab", 9u},     {"Up", 38u},          {"Down", 40u},   {"Left", 37u},  {"Right", 39u},
        {"PrtScn", 44u}, {"PrintScreen", 44u}, {"Del", 46u},    {"Delete", 46u}};
    for (const auto& [word, key] : words)
        QTest::newRow(qPrintable(word)) << word << key;
    for (uint letter = 65; letter <= 90; ++letter)
        QTest::addRow("%c", char(letter)) << QString(QChar(letter)) << letter;
    for (uint digit = 48; digit <= 57; ++digit)
        QTest::addRow("%c", char(digit)) << QString(QChar(digit)) << digit;
    for (uint number = 1; number <= 24; ++number)
        QTest::addRow("F%u", number) << QStringLiteral("F%1").arg(number) << 111 + number;
}

void HotkeyManagerTest::keyWords()
{
    QFETCH(QString, word);
    QFETCH(uint, key);

    for (const QString& spelling : {word, word.toLower(), word.toUpper(), " " + word + "\t"}) {
        uint modifiers = 0;
        uint vk = 0;
        QVERIFY2(HotkeyManager::parseCombo("Shift+" + spelling, modifiers, vk),
                 qPrintable(spelling));
        QCOMPARE(vk, key);
        QCOMPARE(modifiers, 4u);
    }
}

void HotkeyManagerTest::modifierWords_data()
{
    QTest::addColumn<uint>("modifier");
    QTest::newRow("Ctrl") << 2u;
    QTest::newRow("Control") << 2u;
    QTest::newRow("Alt") << 1u;
    QTest::newRow("Shift") << 4u;
    QTest::newRow("Win") << 8u;
    QTest::newRow("Windows") << 8u;
    QTest::newRow("Meta") << 8u;
}

void HotkeyManagerTest::modifierWords()
{
    QFETCH(uint, modifier);

    const QString word = QTest::currentDataTag();
    for (const QString& spelling : {word, word.toLower(), word.toUpper(), " " + word + " "}) {
        uint modifiers = 0;
        uint vk = 0;
        QVERIFY2(HotkeyManager::parseCombo(spelling + "+Q", modifiers, vk), qPrintable(spelling));
        QCOMPARE(modifiers, modifier);
        QCOMPARE(vk, 81u);
    }
}

void HotkeyManagerTest::combinations_data()
{
    QTest::addColumn<QString>("combo");
    QTest::addColumn<uint>("modifiers");
    QTest::addColumn<uint>("key");
    QTest::newRow("default of the main window") << "Ctrl+Alt+Space" << 3u << 32u;
    QTest::newRow("default of the search window") << "Ctrl+Alt+Y" << 3u << 89u;
    QTest::newRow("blanks and lower case") << "  ctrl +  alt + f1 " << 3u << 112u;
    QTest::newRow("all four") << "Win+Shift+Alt+Ctrl+9" << 15u << 57u;
    QTest::newRow("repeated modifier") << "Ctrl+Control+Ctrl+K" << 2u << 75u;
    QTest::newRow("two names of one modifier") << "Meta+Windows+K" << 8u << 75u;
    QTest::newRow("no modifier") << "F5" << 0u << 116u;
    QTest::newRow("F alone is a letter") << "Ctrl+F" << 2u << 70u;
    QTest::newRow("doubled plus") << "Ctrl++K" << 2u << 75u;
    QTest::newRow("plus at both ends") << "+Ctrl+K+" << 2u << 75u;
}

void HotkeyManagerTest::combinations()
{
    QFETCH(QString, combo);
    uint modifiers = 0;
    uint key = 0;
    QVERIFY(HotkeyManager::parseCombo(combo, modifiers, key));
    QTEST(modifiers, "modifiers");
    QTEST(key, "key");
}

void HotkeyManagerTest::notACombination_data()
{
    QTest::addColumn<QString>("combo");
    QTest::newRow("empty") << "";
    QTest::newRow("null") << QString();
    QTest::newRow("blank") << " ";
    QTest::newRow("plus") << "+";
    QTest::newRow("pluses") << "+++";
    QTest::newRow("the plus key") << "Ctrl++";
    QTest::newRow("modifiers alone, behind them a plus") << "Ctrl+Alt+";
    QTest::newRow("modifier alone") << "Ctrl";
    QTest::newRow("blank between pluses") << "Ctrl+ +A";
    QTest::newRow("blank for a key") << "Ctrl+ ";
    QTest::newRow("unknown modifier") << "Hyper+A";
    QTest::newRow("key in front") << "A+Ctrl";
    QTest::newRow("two keys") << "Ctrl+A+B";
    QTest::newRow("other separator") << "Ctrl-A";
    for (const char* word :
         {"F0", "F25",      "F100",   "F-1", "F+1",  "F 1", "FF",   "F1x",  "F1.0",   "F0x1",
          "FN", "F1234567", "Insert", "Ins", "Home", "End", "PgUp", "PgDn", "PageUp", "AB",
          "10", ";",        "-",      "/",   "@",    "[",   "`",    "{",    "Spaces", "Backspace"})
        QTest::addRow("%s", word) << QStringLiteral("Ctrl+%1").arg(QString(word));
    QTest::newRow("line break in a number") << "Ctrl+F1\n2";
    QTest::newRow("Arabic digit") << QStringLiteral("Ctrl+F١");
    QTest::newRow("single Arabic digit") << QStringLiteral("Ctrl+١");
    QTest::newRow("other letter") << QStringLiteral("Ctrl+Ä");
    QTest::newRow("letter that grows") << QStringLiteral("Ctrl+ß");
    QTest::newRow("full-width letter") << QStringLiteral("Ctrl+Ａ");
    QTest::newRow("outside the first plane") << QStringLiteral("Ctrl+😀");
    QTest::newRow("lone surrogate") << QStringLiteral("Ctrl+") + QChar(0xD83D);
    QTest::newRow("zero character") << QStringLiteral("Ctrl+") + QChar(0);
    QTest::newRow("very long") << "Ctrl+" + QString(1'000'000, 'F');
    QTest::newRow("very many") << QString("Ctrl+").repeated(200'000);
    QTest::newRow("number out of every range") << "Ctrl+F" + QString(1000, '1');
}

void HotkeyManagerTest::notACombination()
{
    QFETCH(QString, combo);
    uint modifiers = 0;
    uint key = 0;
    QVERIFY(!HotkeyManager::parseCombo(combo, modifiers, key));
}

void HotkeyManagerTest::parsingStartsFromZero()
{
    uint modifiers = 77;
    uint key = 77;
    QVERIFY(!HotkeyManager::parseCombo("+", modifiers, key));
    QCOMPARE(modifiers, 0u);
    QCOMPARE(key, 0u);

    modifiers = 8;
    key = 77;
    QVERIFY(HotkeyManager::parseCombo("Ctrl+K", modifiers, key));
    QCOMPARE(modifiers, 2u);
    QCOMPARE(key, 75u);
}

void HotkeyManagerTest::denyList_data()
{
    QTest::addColumn<QString>("message");
    for (const char* combo :
         {"Ctrl+C",  "Ctrl+V", "Ctrl+X", "Ctrl+Z", "Ctrl+Y", "Ctrl+A",  "Ctrl+S",
          "Ctrl+P",  "Ctrl+N", "Ctrl+O", "Ctrl+F", "Ctrl+W", "Ctrl+T",  "Alt+F4",
          "Alt+Tab", "Win+L",  "Win+D",  "Win+E",  "Win+R",  "Win+Tab", "Ctrl+Alt+Delete"})
        QTest::newRow(combo) << kDenied;
    // In the list too, but the rule about the key comes first.
    QTest::newRow("Ctrl+Escape") << kEscape;
    QTest::newRow("Ctrl+Shift+Escape") << kEscape;

    // The list is about keys, not about spellings.
    QTest::newRow("control + v") << kDenied;
    QTest::newRow("META+l") << kDenied;
    QTest::newRow("windows+tab") << kDenied;
    QTest::newRow("Alt+Ctrl+Del") << kDenied;
    QTest::newRow("Ctrl+Ctrl+C") << kDenied;

    // Both numbers have to match.
    for (const char* combo : {"Ctrl+Shift+C", "Alt+C", "Win+C", "Ctrl+B", "Ctrl+F4", "Alt+F5",
                              "Alt+Shift+F4", "Ctrl+Alt+Tab", "Ctrl+Tab", "Win+Shift+L", "Ctrl+L",
                              "Ctrl+Delete", "Alt+Delete", "Shift+Tab", "Win+Space", "Ctrl+Enter",
                              "Shift+Del", "Win+Alt+Tab", "Ctrl+Alt+Shift+Delete"})
        QTest::newRow(combo) << kOk;
}

void HotkeyManagerTest::denyList()
{
    QFETCH(QString, message);
    const Result result = HotkeyManager::validate(QTest::currentDataTag(), 0, false, nullptr);
    QCOMPARE(result.message, message);
    QCOMPARE(result.valid, message == kOk);
}

void HotkeyManagerTest::validate_data()
{
    QTest::addColumn<QString>("combo");
    QTest::addColumn<QString>("message");
    QTest::newRow("default") << "Ctrl+Alt+Space" << kOk;
    QTest::newRow("shift with a letter") << "Shift+A" << kOk;
    QTest::newRow("empty") << "" << kBadFormat;
    QTest::newRow("unknown key") << "Ctrl+Home" << kBadFormat;
    QTest::newRow("unknown modifier") << "Fn+A" << kBadFormat;
    QTest::newRow("bad key without modifier") << "Home" << kBadFormat;
    QTest::newRow("function key alone") << "F5" << kNoModifier;
    QTest::newRow("letter alone") << "K" << kNoModifier;
    QTest::newRow("print screen alone") << "PrintScreen" << kNoModifier;
    QTest::newRow("escape alone") << "Esc" << kNoModifier;
    QTest::newRow("print screen") << "Alt+PrintScreen" << kPrintScreen;
    QTest::newRow("print screen, short") << "ctrl+shift+prtscn" << kPrintScreen;
    QTest::newRow("escape") << "Alt+Escape" << kEscape;
    QTest::newRow("escape, short") << "Ctrl+Alt+Shift+Win+esc" << kEscape;
}

void HotkeyManagerTest::validate()
{
    QFETCH(QString, combo);
    QFETCH(QString, message);
    for (const WId window : {WId(0), kWindow}) {
        const Result result = HotkeyManager::validate(combo, window, false, nullptr);
        QCOMPARE(result.message, message);
        QCOMPARE(result.valid, message == kOk);
    }
}

void HotkeyManagerTest::messagesAreNotTranslated()
{
    const Lang before = Tr::currentLang;
    for (const Lang lang : Tr::all()) {
        Tr::currentLang = lang;
        QCOMPARE(HotkeyManager::validate("F5", 0, false, nullptr).message, kNoModifier);
    }
    Tr::currentLang = before;
}

void HotkeyManagerTest::presentCombinationNeedsNoProbe()
{
    // Even one that couldn't be read: nothing changes.
    Slot slot{"nonsense", 0, 0, "Hotkey/Combo", "Ctrl+Alt+Space"};
    const Result result = HotkeyManager::validate("nonsense", kWindow, false, &slot);
    QVERIFY(result.valid);
    QCOMPARE(result.message, QString());
    QVERIFY(m_backend->attempts().isEmpty());

    // The comparison is exact, so another spelling is a change.
    slot.combo = "Ctrl+Alt+Space";
    QCOMPARE(HotkeyManager::validate("ctrl+alt+space", kWindow, false, &slot).message, kOk);
    QCOMPARE(m_backend->attempts().size(), 1);
}

void HotkeyManagerTest::forcedTestProbesThePresentCombination()
{
    m_backend->takeByOther(3, 32);
    const Slot& slot = HotkeyManager::mainWindowSlot;
    QVERIFY(HotkeyManager::validate(slot.combo, kWindow, false, &slot).valid);
    const Result forced = HotkeyManager::validate(slot.combo, kWindow, true, &slot);
    QVERIFY(!forced.valid);
    QCOMPARE(forced.message, kTaken);
}

void HotkeyManagerTest::probeLeavesNothingBehind()
{
    QVERIFY(HotkeyManager::validate("Ctrl+Alt+F7", kWindow, false, nullptr).valid);
    const QVector<Registration> expected{{kWindow, 999, 3, 118}};
    QCOMPARE(m_backend->attempts(), expected);
    QVERIFY(m_backend->registrations().isEmpty());
}

void HotkeyManagerTest::refusedBeforeTheProbe_data()
{
    QTest::addColumn<QString>("combo");
    for (const char* combo : {"", "Ctrl+Home", "F5", "Ctrl+PrtScn", "Ctrl+Esc", "Ctrl+C", "Win+L"})
        QTest::addRow("%s", combo) << QString(combo);
}

void HotkeyManagerTest::refusedBeforeTheProbe()
{
    QFETCH(QString, combo);
    QVERIFY(!HotkeyManager::validate(combo, kWindow, true, nullptr).valid);
    QVERIFY(m_backend->attempts().isEmpty());
}

void HotkeyManagerTest::takenByAnotherProgram()
{
    m_backend->takeByOther(3, 75);
    const Result result = HotkeyManager::validate("Ctrl+Alt+K", kWindow, false, nullptr);
    QVERIFY(!result.valid);
    QCOMPARE(result.message, kTaken);
    QVERIFY(m_backend->registrations().isEmpty());
}

void HotkeyManagerTest::takenByThisProcess()
{
    // The words speak of another program even then.
    QVERIFY(m_backend->registerHotkey(kWindow, 2, 3 | HotkeyBackend::NoRepeat, 75));
    const Result result = HotkeyManager::validate("Ctrl+Alt+K", kWindow, false, nullptr);
    QVERIFY(!result.valid);
    QCOMPARE(result.message, kTaken);
    const QVector<Registration> untouched{{kWindow, 2, 3 | HotkeyBackend::NoRepeat, 75}};
    QCOMPARE(m_backend->registrations(), untouched);
}

void HotkeyManagerTest::withoutAWindowNothingIsProbed()
{
    m_backend->takeByOther(3, 75);
    const Result result = HotkeyManager::validate("Ctrl+Alt+K", 0, true, nullptr);
    QVERIFY(result.valid);
    QCOMPARE(result.message, kOk);
    QVERIFY(m_backend->attempts().isEmpty());
}

void HotkeyManagerTest::validateForChange_data()
{
    QTest::addColumn<HotkeyManager::Slot*>("slot");
    QTest::addColumn<QString>("combo");
    QTest::addColumn<QString>("message");
    Slot* main = &HotkeyManager::mainWindowSlot;
    Slot* spotlight = &HotkeyManager::spotlightSlot;
    QTest::newRow("new") << main << "Ctrl+Alt+K" << kOk;
    QTest::newRow("own") << main << "Ctrl+Alt+Space" << kOk;
    QTest::newRow("own of the other slot") << spotlight << "Ctrl+Alt+Y" << kOk;
    QTest::newRow("the other's") << main << "Ctrl+Alt+Y" << kOwn;
    QTest::newRow("the other's, seen from there") << spotlight << "Ctrl+Alt+Space" << kOwn;
    QTest::newRow("the other's in another case") << main << "cTRL+aLT+y" << kOwn;
    // Texts are compared, not keys.
    QTest::newRow("the other's with blanks") << main << "Ctrl + Alt + Y" << kOk;
    QTest::newRow("the other's in another order") << main << "Alt+Ctrl+Y" << kOk;
    QTest::newRow("not a combination") << main << "Y" << kNoModifier;
    QTest::newRow("denied") << main << "Ctrl+C" << kDenied;
}

void HotkeyManagerTest::validateForChange()
{
    QFETCH(HotkeyManager::Slot*, slot);
    QFETCH(QString, combo);
    QFETCH(QString, message);
    const Result result = HotkeyManager::validateForChange(combo, kWindow, *slot);
    QCOMPARE(result.message, message);
    QCOMPARE(result.valid, message == kOk);
}

void HotkeyManagerTest::bothSlotsAlikeRefuseTheChange()
{
    HotkeyManager::spotlightSlot.combo = HotkeyManager::mainWindowSlot.combo;
    const Result result =
        HotkeyManager::validateForChange("Ctrl+Alt+Space", kWindow, HotkeyManager::mainWindowSlot);
    QVERIFY(!result.valid);
    QCOMPARE(result.message, kOwn);
}

void HotkeyManagerTest::systemRefusalComesBeforeTheOtherSlots()
{
    m_backend->takeByOther(3, 89);
    QCOMPARE(HotkeyManager::validateForChange("Ctrl+Alt+Y", kWindow, HotkeyManager::mainWindowSlot)
                 .message,
             kTaken);
}

void HotkeyManagerTest::adopt_data()
{
    QTest::addColumn<QString>("combo");
    QTest::addColumn<uint>("modifiers");
    QTest::addColumn<uint>("key");
    QTest::newRow("readable") << "Shift+Win+F24" << 12u << 135u;
    QTest::newRow("denied is not asked") << "Ctrl+C" << 2u << 67u;
    QTest::newRow("unreadable") << "nonsense" << 0u << 0u;
    QTest::newRow("empty") << "" << 0u << 0u;
}

void HotkeyManagerTest::adopt()
{
    QFETCH(QString, combo);
    QFETCH(uint, modifiers);
    QFETCH(uint, key);
    Slot slot{"Ctrl+Alt+Space", 3, 32, "Hotkey/Combo", "Ctrl+Alt+Space"};
    HotkeyManager::adopt(slot, combo);
    compareSlots(slot, {combo, modifiers, key, "Hotkey/Combo", "Ctrl+Alt+Space"});
    QVERIFY(m_backend->attempts().isEmpty());
    QCOMPARE(stored("Hotkey/Combo"), QString());
}

void HotkeyManagerTest::firstRunStoresBothDefaults()
{
    for (Slot* slot : HotkeyManager::allSlots())
        QCOMPARE(HotkeyManager::loadSettings(*slot, kWindow), QString());
    compareSlots(HotkeyManager::mainWindowSlot,
                 {"Ctrl+Alt+Space", 3, 32, "Hotkey/Combo", "Ctrl+Alt+Space"});
    compareSlots(HotkeyManager::spotlightSlot,
                 {"Ctrl+Alt+Y", 3, 89, "Hotkey/SpotlightCombo", "Ctrl+Alt+Y"});

    QFile file(HotkeyManager::settingsFilePath());
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    QCOMPARE(file.readAll(), "[Hotkey]\nCombo=Ctrl+Alt+Space\nSpotlightCombo=Ctrl+Alt+Y\n");
}

void HotkeyManagerTest::loadsTheStoredCombination()
{
    store("Hotkey/Combo", "shift + F3");
    QCOMPARE(HotkeyManager::loadSettings(HotkeyManager::mainWindowSlot, kWindow), QString());
    compareSlots(HotkeyManager::mainWindowSlot,
                 {"shift + F3", 4, 114, "Hotkey/Combo", "Ctrl+Alt+Space"});
    QCOMPARE(stored("Hotkey/Combo"), "shift + F3");
}

void HotkeyManagerTest::storedCombinationIsAlwaysProbed()
{
    store("Hotkey/Combo", HotkeyManager::mainWindowSlot.combo);
    QCOMPARE(HotkeyManager::loadSettings(HotkeyManager::mainWindowSlot, kWindow), QString());
    const QVector<Registration> expected{{kWindow, 999, 3, 32}};
    QCOMPARE(m_backend->attempts(), expected);
}

void HotkeyManagerTest::unusableStoredCombinationFallsBack_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("message");
    QTest::newRow("empty") << QVariant(QString()) << kBadFormat;
    QTest::newRow("nonsense") << QVariant("%1 %s \\n") << kBadFormat;
    QTest::newRow("a list") << QVariant(QStringList{"Ctrl+Alt+K", "Ctrl+Alt+J"}) << kBadFormat;
    QTest::newRow("a number") << QVariant(42) << kBadFormat;
    QTest::newRow("no modifier") << QVariant("K") << kNoModifier;
    QTest::newRow("print screen") << QVariant("Ctrl+PrtScn") << kPrintScreen;
    QTest::newRow("escape") << QVariant("Ctrl+Esc") << kEscape;
    QTest::newRow("denied") << QVariant("Ctrl+C") << kDenied;
}

void HotkeyManagerTest::unusableStoredCombinationFallsBack()
{
    QFETCH(QVariant, value);
    QFETCH(QString, message);
    store("Hotkey/SpotlightCombo", value);
    QCOMPARE(HotkeyManager::loadSettings(HotkeyManager::spotlightSlot, kWindow),
             "Hotkey invalid (" + message + "). Fallback ke default.");
    compareSlots(HotkeyManager::spotlightSlot,
                 {"Ctrl+Alt+Y", 3, 89, "Hotkey/SpotlightCombo", "Ctrl+Alt+Y"});
    QCOMPARE(stored("Hotkey/SpotlightCombo"), "Ctrl+Alt+Y");
}

void HotkeyManagerTest::takenStoredCombinationFallsBack()
{
    m_backend->takeByOther(12, 75);
    store("Hotkey/Combo", "Win+Shift+K");
    QCOMPARE(HotkeyManager::loadSettings(HotkeyManager::mainWindowSlot, kWindow),
             "Hotkey invalid (Kombinasi sudah dipakai aplikasi lain.). Fallback ke default.");
    QCOMPARE(HotkeyManager::mainWindowSlot.combo, "Ctrl+Alt+Space");
    QCOMPARE(stored("Hotkey/Combo"), "Ctrl+Alt+Space");
    QVERIFY(m_backend->registrations().isEmpty());
}

void HotkeyManagerTest::takenDefaultIsAdoptedAllTheSame()
{
    m_backend->takeByOther(3, 32);
    QCOMPARE(HotkeyManager::loadSettings(HotkeyManager::mainWindowSlot, kWindow),
             "Hotkey invalid (" + kTaken + "). Fallback ke default.");
    compareSlots(HotkeyManager::mainWindowSlot,
                 {"Ctrl+Alt+Space", 3, 32, "Hotkey/Combo", "Ctrl+Alt+Space"});
    QCOMPARE(stored("Hotkey/Combo"), "Ctrl+Alt+Space");
    // The stored text was probed, the default that took its place was not.
    QCOMPARE(m_backend->attempts().size(), 1);
}

void HotkeyManagerTest::combinationOfTheOtherSlotIsNotCaught()
{
    store("Hotkey/SpotlightCombo", "Ctrl+Alt+Space");
    for (Slot* slot : HotkeyManager::allSlots())
        QCOMPARE(HotkeyManager::loadSettings(*slot, kWindow), QString());
    QCOMPARE(HotkeyManager::spotlightSlot.combo, "Ctrl+Alt+Space");
    QCOMPARE(HotkeyManager::mainWindowSlot.combo, "Ctrl+Alt+Space");
}

void HotkeyManagerTest::loadingWithoutAWindowDoesNotProbe()
{
    m_backend->takeByOther(3, 32);
    QCOMPARE(HotkeyManager::loadSettings(HotkeyManager::mainWindowSlot, 0), QString());
    QVERIFY(m_backend->attempts().isEmpty());
}

void HotkeyManagerTest::saveKeepsTheOtherKeys()
{
    store("lastCategory", "Work");
    store("Hotkey/Combo", "Ctrl+Alt+J");
    Slot slot = HotkeyManager::spotlightSlot;
    slot.combo = "Ctrl+Alt+K";
    HotkeyManager::saveSettings(slot);
    QCOMPARE(stored("Hotkey/SpotlightCombo"), "Ctrl+Alt+K");
    QCOMPARE(stored("Hotkey/Combo"), "Ctrl+Alt+J");
    QCOMPARE(stored("lastCategory"), "Work");
}

QTEST_MAIN(HotkeyManagerTest)
#include "tst_hotkeymanager.moc"
