// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AppearanceSettingsPage.h"
#include "IniText.h"
#include "LanguageSettingsPage.h"
#include "LayoutSettingsPage.h"
#include "Localization.h"
#include "MainWindowFixture.h"
#include "Pixels.h"
#include "SettingsFile.h"
#include "SpotlightWindow.h"

#include <QPushButton>
#include <QRandomGenerator>
#include <QTest>

#include <functional>

namespace
{

constexpr quint32 kSeed = 20260712;
constexpr int kRandomFiles = 100;
constexpr int kRandomWindows = 10;

struct Key
{
    const char* group; ///< a new one begins here; empty for the one before
    const char* name;
};

// Every key that the program has.
constexpr Key kKeys[] = {{"[General]\n", "lastCategory"},
                         {"\n[Hotkey]\n", "Combo"},
                         {"", "SpotlightCombo"},
                         {"\n[Language]\n", "Code"},
                         {"\n[Layout]\n", "GridColumns"},
                         {"\n[Onboarding]\n", "Completed"},
                         {"\n[Spotlight]\n", "DefaultScope"},
                         {"\n[Theme]\n", "ForceTheme"},
                         {"", "SeedColor"},
                         {"\n[Other]\n", "key"}};

struct NamedValue
{
    const char* name;
    QByteArray value;
};

/// What may stand behind a key if somebody else has written it.
QList<NamedValue> values()
{
    return {
        {"nothing", ""},
        {"blanks", "   \t "},
        {"zero", "0"},
        {"below zero", "-1"},
        {"more than a number can be", "99999999999999999999999"},
        {"least of all numbers", "-2147483648"},
        {"fraction", "2.5"},
        {"no number", "nan"},
        {"truth", "true"},
        {"list", "a, b, 3, #ff0000, en"},
        {"list of nothing", ", , ,"},
        {"list that isn't closed", "\"a\", \"b"},
        {"invalid", "@Invalid()"},
        {"bytes", "@ByteArray(\\x1\\0\\xff)"},
        {"rectangle", "@Rect(1 2 3 4)"},
        {"object", "@Variant(\\0\\0\\0\\x7f\\0\\0\\0\\x5QFont)"},
        {"object that isn't closed", "@Variant("},
        {"half an escape", "\\x"},
        {"escape to nothing", "\\"},
        {"zero bytes", QByteArray("a\0b\0", 4)},
        {"no text", "\xff\xfe\xc3\x28"},
        {"line feeds", "\\n\\n\\r\\n"},
        {"placeholders", "%1 %2 %s%n"},
        {"markup", "<b>&amp;</b>"},
        {"style sheet", "#fff; } * { color: red; background: url(/dev/zero); }"},
        {"path", "../../../../etc/passwd"},
        {"from right to left", "\\x202e\\x5d0\\x5d1"},
        {"beyond the first plane", "\\xd83d\\xde00\\xd83d"},
        {"colour of sixteen bits", "#ffff00000001"},
        {"colour with nothing in it", "transparent"},
        {"half a colour", "#12345"},
        {"half a combination", "Ctrl+"},
        {"combination of nothing", "++++"},
        {"combination without an end", QByteArray("Ctrl+").repeated(20000)},
        {"combination of the other hotkey", "Ctrl+Alt+Y"},
        {"all kinds of results", "URL, Application, File, Bulk, Snippet, ShellItem, folder"},
        {"another case", "EN"},
        {"long", QByteArray(90000, 'x')},
    };
}

QByteArray fileWith(const std::function<QByteArray()>& nextValue)
{
    QByteArray text;
    for (const Key& key : kKeys)
        text += QByteArray(key.group) + key.name + '=' + nextValue() + '\n';
    return text;
}

/// Any bytes but those that would end the line.
QByteArray randomValue(QRandomGenerator& random)
{
    const QList<NamedValue> known = values();
    QByteArray value = known.at(random.bounded(int(known.size()))).value.left(200);
    for (int changes = random.bounded(6); changes > 0 && !value.isEmpty(); --changes) {
        const qsizetype place = random.bounded(int(value.size()));
        if (random.bounded(2) == 0)
            value[place] = char(random.bounded(256));
        else
            value.insert(place, char(random.bounded(256)));
    }
    return value.replace('\n', 'n').replace('\r', 'r');
}

/// The file in one spelling, without the hotkeys: loading puts the default in the place of one that
/// can't be used, and tells the user.
QByteArray restOf(const QByteArray& file)
{
    QSettings::SettingsMap all = IniText::parse(file);
    all.removeIf(
        [](const auto& entry) { return entry.key().startsWith(QLatin1String("Hotkey/")); });
    return IniText::format(all);
}

} // namespace

/// Whatever stands in the file of the settings: the program starts, has something in force that it
/// can work with, and changes in the file what the user changes.
class StoredValuesTest : public MainWindowFixture
{
    Q_OBJECT

private slots:
    void cleanup();
    void everyKeyOfAStart_data();
    void everyKeyOfAStart();
    void randomFiles();
    void randomStarts();
    void userChangesOneKey_data();
    void userChangesOneKey();

private:
    static void verifyBounds();
    void verifyStart(const QByteArray& file);
};

void StoredValuesTest::cleanup()
{
    m_window.reset();
    Theme::forceTheme = 1;
}

void StoredValuesTest::verifyBounds()
{
    QVERIFY(Theme::gridColumns >= 2 && Theme::gridColumns <= 4);
    QVERIFY(Tr::all().contains(Tr::currentLang));
    QVERIFY(SpotlightWindow::defaultScopeKeys().size() < SpotlightWindow::scopeDefs().size());
    const ColorTokens c = Theme::colors();
    for (const QString& color : {c.primary, c.surface, c.onSurface, c.outline, c.errorColor}) {
        QCOMPARE(color.size(), 7);
        QVERIFY(QColor::isValidColorName(color));
    }
}

void StoredValuesTest::verifyStart(const QByteArray& file)
{
    QVERIFY(SettingsFile::write(file));
    construct();
    verifyBounds();
    const HotkeyManager::Slot& hotkey = HotkeyManager::mainWindowSlot;
    QVERIFY(hotkey.modifiers != 0 && hotkey.vk != 0);
    QVERIFY(m_window->model()->data().categories.contains(m_window->model()->currentCategory()));
    const QSize size = m_window->size();
    QVERIFY(!Pixels::inkBox(Pixels::imageOf(*m_window)).isEmpty());
    QCOMPARE(m_window->size(), size); // nothing in it has grown beyond it
    AppearanceSettingsPage appearance;
    LayoutSettingsPage layout;
    LanguageSettingsPage language;
    for (QWidget* page : {static_cast<QWidget*>(&appearance), static_cast<QWidget*>(&layout),
                          static_cast<QWidget*>(&language)}) {
        page->resize(420, 180);
        QVERIFY(!Pixels::inkBox(Pixels::imageOf(*page)).isEmpty());
        QVERIFY(page->minimumSizeHint().width() <= 420);
    }
    QCOMPARE(restOf(SettingsFile::read()), restOf(file));
}

void StoredValuesTest::everyKeyOfAStart_data()
{
    QTest::addColumn<QByteArray>("value");
    for (const NamedValue& value : values())
        QTest::newRow(value.name) << value.value;
}

void StoredValuesTest::everyKeyOfAStart()
{
    QFETCH(QByteArray, value);
    verifyStart(fileWith([&value] { return value; }));
}

void StoredValuesTest::randomFiles()
{
    QRandomGenerator random(kSeed);
    for (int i = 0; i < kRandomFiles; ++i) {
        const QByteArray file = fileWith([&random] { return randomValue(random); });
        QVERIFY(SettingsFile::write(file));
        Theme::loadSettings();
        Tr::loadSettings();
        for (HotkeyManager::Slot* slot : HotkeyManager::allSlots()) {
            HotkeyManager::loadSettings(*slot, 0);
            QVERIFY(slot->modifiers != 0 && slot->vk != 0);
        }
        verifyBounds();
        QVERIFY2(restOf(SettingsFile::read()) == restOf(file), qPrintable(QString::number(i)));
    }
}

void StoredValuesTest::randomStarts()
{
    QRandomGenerator random(kSeed + 1);
    for (int i = 0; i < kRandomWindows; ++i) {
        verifyStart(fileWith([&random] { return randomValue(random); }));
        QVERIFY2(!QTest::currentTestFailed(), qPrintable(QString::number(i)));
        m_window.reset();
    }
}

void StoredValuesTest::userChangesOneKey_data()
{
    everyKeyOfAStart_data();
}

void StoredValuesTest::userChangesOneKey()
{
    QFETCH(QByteArray, value);
    const QByteArray file = fileWith([&value] { return value; });
    QVERIFY(SettingsFile::write(file));
    Theme::loadSettings();
    AppearanceSettingsPage page;
    const int other = Theme::forceTheme == 2 ? 1 : 2;
    page.findChild<QPushButton*>(other == 2 ? "themeBtn_dark" : "themeBtn_light")->click();
    const QString key = QStringLiteral("Theme/ForceTheme");
    QCOMPARE(stored(key), QString::number(other));
    // The hotkeys as well: nobody has loaded them.
    QSettings::SettingsMap before = IniText::parse(file);
    QSettings::SettingsMap after = IniText::parse(SettingsFile::read());
    before.remove(key);
    after.remove(key);
    QCOMPARE(IniText::format(after), IniText::format(before));
}

QTEST_MAIN(StoredValuesTest)
#include "tst_storedvalues.moc"
