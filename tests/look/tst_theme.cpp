// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FakeSystemTheme.h"
#include "FreshProcess.h"
#include "Settings.h"
#include "TestHome.h"
#include "Theme.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

namespace
{

constexpr int kFollowSystem = 0;
constexpr int kForceLight = 1;
constexpr int kForceDark = 2;
const QString kDefaultSeed = QStringLiteral("#0284c7");

struct TokenField
{
    const char* name;
    QString ColorTokens::*field;
};

// In the order of the fields, so that the length of the table is also checked.
constexpr TokenField kFields[] = {
    {"primary", &ColorTokens::primary},
    {"onPrimary", &ColorTokens::onPrimary},
    {"primaryContainer", &ColorTokens::primaryContainer},
    {"onPrimaryContainer", &ColorTokens::onPrimaryContainer},
    {"surface", &ColorTokens::surface},
    {"surfaceContainer", &ColorTokens::surfaceContainer},
    {"surfaceContainerLowest", &ColorTokens::surfaceContainerLowest},
    {"surfaceContainerLow", &ColorTokens::surfaceContainerLow},
    {"surfaceContainerHigh", &ColorTokens::surfaceContainerHigh},
    {"surfaceContainerHighest", &ColorTokens::surfaceContainerHighest},
    {"onSurface", &ColorTokens::onSurface},
    {"surfaceVariant", &ColorTokens::surfaceVariant},
    {"onSurfaceVariant", &ColorTokens::onSurfaceVariant},
    {"outline", &ColorTokens::outline},
    {"outlineVariant", &ColorTokens::outlineVariant},
    {"errorColor", &ColorTokens::errorColor},
    {"onError", &ColorTokens::onError},
    {"errorContainer", &ColorTokens::errorContainer},
    {"onErrorContainer", &ColorTokens::onErrorContainer},
    {"warning", &ColorTokens::warning},
    {"onWarning", &ColorTokens::onWarning},
    {"container", &ColorTokens::container},
    {"key", &ColorTokens::key},
    {"onContainer", &ColorTokens::onContainer},
    {"onKey", &ColorTokens::onKey},
};
static_assert(sizeof(ColorTokens) == std::size(kFields) * sizeof(QString));

QString tokenNamed(const ColorTokens& tokens, const QString& name)
{
    for (const TokenField& entry : kFields) {
        if (name == QLatin1String(entry.name))
            return tokens.*entry.field;
    }
    return QStringLiteral("no such token");
}

void useTheme(int mode, const QString& seed)
{
    Theme::forceTheme = mode;
    Theme::seedColorHex = seed;
}

struct Sample
{
    int mode;
    QString seed;
    ColorTokens tokens;
};

/// Palettes of vivid and dull seeds around the colour wheel, and of a grey, in both modes.
const std::vector<Sample>& samples()
{
    static const std::vector<Sample> all = [] {
        QStringList seeds{QStringLiteral("#808080")};
        for (const int saturation : {255, 128}) {
            for (int hue = 0; hue < 360; hue += 5)
                seeds << QColor::fromHsl(hue, saturation, 128).name();
        }
        std::vector<Sample> made;
        for (const int mode : {kForceLight, kForceDark}) {
            for (const QString& seed : seeds) {
                useTheme(mode, seed);
                made.push_back({mode, seed, getItemTheme()});
            }
        }
        return made;
    }();
    return all;
}

bool isNear(double actual, double expected)
{
    if (std::abs(actual - expected) <= 1e-9)
        return true;
    qWarning("got %.12f, expected %.12f", actual, expected);
    return false;
}

/// Tells what is set before anything is loaded or asked for.
int printInitialState(const QStringList&)
{
    std::printf("%d\n%s\n%d\n", Theme::forceTheme, qPrintable(Theme::seedColorHex),
                Theme::gridColumns);
    return 0;
}

/// True if every token is the very text that the other has, and no equal one worked out anew.
bool areShared(const ColorTokens& a, const ColorTokens& b)
{
    return std::all_of(std::begin(kFields), std::end(kFields), [&](const TokenField& entry) {
        return (a.*entry.field).constData() == (b.*entry.field).constData();
    });
}

QByteArray settingsFileContent()
{
    QFile file(Theme::settingsFilePath());
    return file.open(QIODevice::ReadOnly | QIODevice::Text) ? file.readAll() : QByteArray();
}

} // namespace

// The expected colours were worked out by a second, separate implementation of the palette.
class ThemeTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void initialState();

    void settingsPath();
    void settingsPathMakesItsDirectory();
    void loadDefaults();
    void loadWithoutValidation();
    void loadGridColumns_data();
    void loadGridColumns();
    void saveAndLoad();
    void saveBoundsGridColumns_data();
    void saveBoundsGridColumns();
    void saveKeepsOtherKeys();
    void saveWithoutAFileHoldsInMemory();

    void forcedModesNeverAskTheDesktop();
    void desktopIsAskedEveryTwoSeconds();

    void defaultPalette_data();
    void defaultPalette();
    void tonesOfAnotherBase_data();
    void tonesOfAnotherBase();
    void colorsLeavesTheBaseTonesEmpty();
    void tonesForTouchesSixFieldsOnly();
    void tonesForIgnoresAlpha();
    void tonesForKeepsOneBaseOnly();
    void palettesAreCached_data();
    void palettesAreCached();
    void palettesNoticeSeedAndMode();
    void itemThemeIsOfTheSeed();
    void errorAndWarningIgnoreTheSeed();
    void greySeed();
    void redSeed();
    void vividSeedIsCapped();
    void invalidSeedGivesTheGreysOfBlack_data();
    void invalidSeedGivesTheGreysOfBlack();
    void seedJustBelowRed();
    void tokensAreHexColours();
    void seedCoordinates();
    void fromSpec_data();
    void fromSpec();

    void relativeLuminance_data();
    void relativeLuminance();
    void contrastRatio();
    void pairsAreReadableByConstruction_data();
    void pairsAreReadableByConstruction();
    void textIsReadableUnderStateLayers();
    void onColorFor_data();
    void onColorFor();
    void onColorForPair_data();
    void onColorForPair();
    void onColorForAlwaysReads();
    void stateLayer();
    void stateLayerOn_data();
    void stateLayerOn();
};

void ThemeTest::init()
{
    QFile::remove(Theme::settingsFilePath());
    useTheme(kForceLight, kDefaultSeed);
    Theme::gridColumns = 3;
}

void ThemeTest::initialState()
{
    const QStringList initial{QString::number(kFollowSystem), kDefaultSeed, "3"};
    QCOMPARE(FreshProcess::linesOf("print initial state", {}), initial);
    // A fresh installation loads the same.
    Theme::forceTheme = 5;
    Theme::seedColorHex.clear();
    Theme::gridColumns = 4;
    Theme::loadSettings();
    QCOMPARE(Theme::forceTheme, kFollowSystem);
    QCOMPARE(Theme::seedColorHex, kDefaultSeed);
    QCOMPARE(Theme::gridColumns, 3);
}

void ThemeTest::settingsPath()
{
    QCOMPARE(Theme::settingsFilePath(), TestHome::dataDir() + QStringLiteral("/settings.ini"));
}

void ThemeTest::settingsPathMakesItsDirectory()
{
    QDir dir(TestHome::dataDir());
    QVERIFY(dir.removeRecursively());
    QVERIFY(!dir.exists());
    QVERIFY(Theme::settingsFilePath().startsWith(dir.path()));
    QVERIFY(dir.exists());
}

void ThemeTest::loadDefaults()
{
    TestHome::writeDataFile(QStringLiteral("settings.ini"), "[Other]\nkey=1\n");
    useTheme(kForceDark, QStringLiteral("#ff0000"));
    Theme::gridColumns = 2;
    Theme::loadSettings();
    QCOMPARE(Theme::forceTheme, kFollowSystem);
    QCOMPARE(Theme::seedColorHex, kDefaultSeed);
    QCOMPARE(Theme::gridColumns, 3);
}

void ThemeTest::loadWithoutValidation()
{
    TestHome::writeDataFile(QStringLiteral("settings.ini"),
                            "[Theme]\nForceTheme=7\nSeedColor=no colour\n");
    Theme::loadSettings();
    QCOMPARE(Theme::forceTheme, 7);
    QCOMPARE(Theme::seedColorHex, QStringLiteral("no colour"));
}

void ThemeTest::loadGridColumns_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("columns");
    QTest::newRow("too many") << "9" << 4;
    QTest::newRow("too few") << "1" << 2;
    QTest::newRow("least") << "2" << 2;
    QTest::newRow("most") << "4" << 4;
    QTest::newRow("negative") << "-3" << 2;
    QTest::newRow("no number") << "many" << 2;
    QTest::newRow("a thousand million") << "1000000000" << 4;
}

void ThemeTest::loadGridColumns()
{
    QFETCH(QString, stored);
    // By its own means, since a file of the same size and second would not be read again.
    QSettings settings(Theme::settingsFilePath(), Settings::format());
    settings.setValue(QStringLiteral("Layout/GridColumns"), stored);
    settings.sync();
    Theme::loadSettings();
    QTEST(Theme::gridColumns, "columns");
}

void ThemeTest::saveAndLoad()
{
    Theme::saveForceTheme(kForceDark);
    Theme::saveSeedColor(QStringLiteral("#ffd400"));
    Theme::saveGridColumns(4);
    QCOMPARE(Theme::forceTheme, kForceDark);
    QCOMPARE(Theme::seedColorHex, QStringLiteral("#ffd400"));
    QCOMPARE(Theme::gridColumns, 4);

    // On disk at once, and under fixed names.
    const QByteArray content = settingsFileContent();
    QVERIFY(content.contains("[Theme]\n"));
    QVERIFY(content.contains("ForceTheme=2\n"));
    QVERIFY(content.contains("SeedColor=#ffd400\n"));
    QVERIFY(content.contains("[Layout]\n"));
    QVERIFY(content.contains("GridColumns=4\n"));

    useTheme(kFollowSystem, kDefaultSeed);
    Theme::gridColumns = 3;
    Theme::loadSettings();
    QCOMPARE(Theme::forceTheme, kForceDark);
    QCOMPARE(Theme::seedColorHex, QStringLiteral("#ffd400"));
    QCOMPARE(Theme::gridColumns, 4);
}

void ThemeTest::saveBoundsGridColumns_data()
{
    QTest::addColumn<int>("asked");
    QTest::addColumn<int>("kept");
    QTest::newRow("too many") << 9 << 4;
    QTest::newRow("too few") << 0 << 2;
    QTest::newRow("inside") << 3 << 3;
}

void ThemeTest::saveBoundsGridColumns()
{
    QFETCH(int, asked);
    QFETCH(int, kept);
    Theme::saveGridColumns(asked);
    QCOMPARE(Theme::gridColumns, kept);
    const QSettings stored(Theme::settingsFilePath(), Settings::format());
    QCOMPARE(stored.value(QStringLiteral("Layout/GridColumns")).toInt(), kept);
}

void ThemeTest::saveKeepsOtherKeys()
{
    TestHome::writeDataFile(QStringLiteral("settings.ini"), "[General]\nlastCategory=Work\n");
    Theme::saveSeedColor(QStringLiteral("#ef4444"));
    QVERIFY(settingsFileContent().contains("lastCategory=Work"));
}

void ThemeTest::saveWithoutAFileHoldsInMemory()
{
    // A directory in place of the file: no user, however mighty, can write that.
    QDir dir(TestHome::dataDir());
    QVERIFY(dir.mkdir(QStringLiteral("settings.ini")));
    Theme::saveForceTheme(kForceDark);
    Theme::saveSeedColor(QStringLiteral("#ef4444"));
    Theme::saveGridColumns(2);
    QVERIFY(QFileInfo(Theme::settingsFilePath()).isDir());
    QVERIFY(dir.rmdir(QStringLiteral("settings.ini")));
    QCOMPARE(Theme::forceTheme, kForceDark);
    QCOMPARE(Theme::seedColorHex, QStringLiteral("#ef4444"));
    QCOMPARE(Theme::gridColumns, 2);
    QVERIFY(Theme::isDarkMode());
}

void ThemeTest::forcedModesNeverAskTheDesktop()
{
    const int readsBefore = FakeSystemTheme::readCount();
    FakeSystemTheme::setDark(true);
    Theme::forceTheme = kForceLight;
    QVERIFY(!Theme::isDarkMode());
    FakeSystemTheme::setDark(false);
    Theme::forceTheme = kForceDark;
    QVERIFY(Theme::isDarkMode());
    QCOMPARE(FakeSystemTheme::readCount(), readsBefore);
}

void ThemeTest::desktopIsAskedEveryTwoSeconds()
{
    const int readsBefore = FakeSystemTheme::readCount();
    QCOMPARE(readsBefore, 0); // the answer of an earlier test would still be good
    QElapsedTimer sinceFirstRead;
    sinceFirstRead.start();
    FakeSystemTheme::setDark(true);
    Theme::forceTheme = kFollowSystem;
    QVERIFY(Theme::isDarkMode());
    QCOMPARE(Theme::colors().onWarning, QStringLiteral("#451a03"));

    FakeSystemTheme::setDark(false);
    QVERIFY(Theme::isDarkMode());
    QCOMPARE(FakeSystemTheme::readCount(), readsBefore + 1);
    Theme::forceTheme = 7; // no known mode: follows the desktop too, by the same answer
    QVERIFY(Theme::isDarkMode());
    QCOMPARE(FakeSystemTheme::readCount(), readsBefore + 1);

    QTRY_VERIFY_WITH_TIMEOUT(!Theme::isDarkMode(), 20000);
    // A little less than two seconds, since the wall clock asked there may be slewed meanwhile.
    QVERIFY(sinceFirstRead.elapsed() >= 1900);
    QCOMPARE(FakeSystemTheme::readCount(), readsBefore + 2);
    QCOMPARE(Theme::colors().onWarning, QStringLiteral("#ffffff"));
}

void ThemeTest::defaultPalette_data()
{
    QTest::addColumn<QString>("light");
    QTest::addColumn<QString>("dark");
    const struct
    {
        const char* name;
        const char* light;
        const char* dark;
    } rows[] = {
        {"primary", "#006ba4", "#9bccf8"},
        {"onPrimary", "#ffffff", "#0b1f2e"},
        {"primaryContainer", "#deeeff", "#0b537e"},
        {"onPrimaryContainer", "#052236", "#ffffff"},
        {"surface", "#f8f9fd", "#131517"},
        {"surfaceContainer", "#f0f2f8", "#1b1f23"},
        {"surfaceContainerLowest", "#fafbff", "#2a3641"},
        {"surfaceContainerLow", "#f0f4fb", "#1c2630"},
        {"surfaceContainerHigh", "#e3ecf7", "#141a20"},
        {"surfaceContainerHighest", "#c6e2fe", "#25303a"},
        {"onSurface", "#151a1d", "#f1f2f3"},
        {"surfaceVariant", "#d0dbe0", "#364248"},
        {"onSurfaceVariant", "#3d515b", "#98a9b2"},
        {"outline", "#9fb9d2", "#31485d"},
        {"outlineVariant", "#bbc8d7", "#384958"},
        {"errorColor", "#b00d1d", "#ffb3ab"},
        {"onError", "#ffffff", "#311614"},
        {"errorContainer", "#ffe7e3", "#803a36"},
        {"onErrorContainer", "#371614", "#ffffff"},
        {"warning", "#d97706", "#f59e0b"},
        {"onWarning", "#ffffff", "#451a03"},
        {"container", "#f0f2f8", "#24292f"},
        {"key", "#0a6ba1", "#9bccf8"},
        {"onContainer", "#095480", "#d7ebff"},
        {"onKey", "#ffffff", "#0b1f2e"},
    };
    for (const auto& row : rows)
        QTest::newRow(row.name) << QString(row.light) << QString(row.dark);
}

void ThemeTest::defaultPalette()
{
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    useTheme(kForceLight, kDefaultSeed);
    QTEST(tokenNamed(getItemTheme(), name), "light");
    useTheme(kForceDark, kDefaultSeed);
    QTEST(tokenNamed(getItemTheme(), name), "dark");
}

void ThemeTest::tonesOfAnotherBase_data()
{
    QTest::addColumn<QString>("light");
    QTest::addColumn<QString>("dark");
    const struct
    {
        const char* name;
        const char* light;
        const char* dark;
    } rows[] = {
        {"key", "#a34b46", "#ffb3ad"},
        {"container", "#ffeeec", "#332524"},
        {"onContainer", "#813b37", "#ffe2de"},
        {"onKey", "#ffffff", "#311614"},
        {"primaryContainer", "#ffe7e3", "#803a36"},
        {"onPrimaryContainer", "#371614", "#ffffff"},
    };
    for (const auto& row : rows)
        QTest::newRow(row.name) << QString(row.light) << QString(row.dark);
}

void ThemeTest::tonesOfAnotherBase()
{
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    const QColor base(0xEF, 0x44, 0x44);
    useTheme(kForceLight, kDefaultSeed);
    QTEST(tokenNamed(Theme::tonesFor(base), name), "light");
    useTheme(kForceDark, kDefaultSeed);
    QTEST(tokenNamed(Theme::tonesFor(base), name), "dark");
}

void ThemeTest::colorsLeavesTheBaseTonesEmpty()
{
    Theme::tonesFor(Theme::seedColor()); // must not leak into the palette
    const ColorTokens c = Theme::colors();
    for (const QString& token : {c.container, c.key, c.onContainer, c.onKey})
        QCOMPARE(token, QString());
}

void ThemeTest::tonesForTouchesSixFieldsOnly()
{
    ColorTokens t = Theme::tonesFor(QColor(0x22, 0xC5, 0x5E));
    const ColorTokens c = Theme::colors();
    QVERIFY(t.primaryContainer != c.primaryContainer);
    QVERIFY(t.onPrimaryContainer != c.onPrimaryContainer);
    t.primaryContainer = c.primaryContainer;
    t.onPrimaryContainer = c.onPrimaryContainer;
    for (QString* token : {&t.container, &t.key, &t.onContainer, &t.onKey}) {
        QVERIFY(!token->isEmpty());
        token->clear();
    }
    QVERIFY(t == c);
}

void ThemeTest::palettesAreCached_data()
{
    QTest::addColumn<bool>("isOfABase");
    QTest::addColumn<QString>("otherSeed");
    QTest::addColumn<int>("otherMode");
    QTest::newRow("palette, another seed") << false << "#a03050" << kForceLight;
    QTest::newRow("palette, another mode") << false << kDefaultSeed << kForceDark;
    QTest::newRow("tones, another seed") << true << "#a03050" << kForceLight;
    QTest::newRow("tones, another mode") << true << kDefaultSeed << kForceDark;
}

void ThemeTest::palettesAreCached()
{
    QFETCH(bool, isOfABase);
    QFETCH(QString, otherSeed);
    QFETCH(int, otherMode);
    const auto palette = [isOfABase] {
        return isOfABase ? Theme::tonesFor(QColor(0x22, 0xC5, 0x5E)) : Theme::colors();
    };
    useTheme(kForceLight, kDefaultSeed);
    const ColorTokens first = palette();
    QVERIFY(areShared(palette(), first));
    useTheme(otherMode, otherSeed);
    const ColorTokens other = palette();
    QVERIFY(!(other == first));
    QVERIFY(areShared(palette(), other));
    useTheme(kForceLight, kDefaultSeed);
    const ColorTokens again = palette();
    QVERIFY(again == first);
    QVERIFY(!areShared(again, first)); // one palette is kept, not all of them
}

void ThemeTest::tonesForIgnoresAlpha()
{
    const ColorTokens solid = Theme::tonesFor(QColor(0x22, 0xC5, 0x5E));
    Theme::tonesFor(QColor(Qt::black)); // out of the cache with it
    QVERIFY(Theme::tonesFor(QColor(0x22, 0xC5, 0x5E, 10)) == solid);
}

void ThemeTest::tonesForKeepsOneBaseOnly()
{
    const QColor green(0x22, 0xC5, 0x5E);
    const QColor red(0xEF, 0x44, 0x44);
    const ColorTokens first = Theme::tonesFor(green);
    QVERIFY(!(Theme::tonesFor(red) == first));
    QVERIFY(Theme::tonesFor(green) == first);
    QVERIFY(Theme::tonesFor(green) == first);
}

void ThemeTest::palettesNoticeSeedAndMode()
{
    const QColor base(0x22, 0xC5, 0x5E);
    const ColorTokens light = Theme::colors();
    const ColorTokens lightTones = Theme::tonesFor(base);
    Theme::forceTheme = kForceDark;
    QVERIFY(!(Theme::colors() == light));
    QVERIFY(!(Theme::tonesFor(base) == lightTones));
    Theme::forceTheme = kForceLight;
    Theme::seedColorHex = QStringLiteral("#8b5cf6");
    QVERIFY(!(Theme::colors() == light));
    QVERIFY(!(Theme::tonesFor(base) == lightTones));
    Theme::seedColorHex = kDefaultSeed;
    QVERIFY(Theme::colors() == light);
    QVERIFY(Theme::tonesFor(base) == lightTones);
}

void ThemeTest::itemThemeIsOfTheSeed()
{
    Theme::seedColorHex = QStringLiteral("#8b5cf6");
    QVERIFY(getItemTheme() == Theme::tonesFor(QColor(0x8B, 0x5C, 0xF6)));
    QCOMPARE(getItemTheme().primaryContainer, Theme::colors().primaryContainer);
}

void ThemeTest::errorAndWarningIgnoreTheSeed()
{
    const ColorTokens blue = Theme::colors();
    Theme::seedColorHex = QStringLiteral("#22c55e");
    const ColorTokens green = Theme::colors();
    QVERIFY(green.primary != blue.primary);
    QCOMPARE(green.errorColor, blue.errorColor);
    QCOMPARE(green.onError, blue.onError);
    QCOMPARE(green.errorContainer, blue.errorContainer);
    QCOMPARE(green.onErrorContainer, blue.onErrorContainer);
    QCOMPARE(green.warning, blue.warning);
    QCOMPARE(green.onWarning, blue.onWarning);
}

void ThemeTest::greySeed()
{
    Theme::seedColorHex = QStringLiteral("#808080");
    QCOMPARE(Theme::seedColor().hslHue(), -1);
    const ColorTokens light = Theme::colors();
    QCOMPARE(light.onSurface, QStringLiteral("#191919"));
    QCOMPARE(light.surfaceVariant, QStringLiteral("#d8d8d8"));
    QCOMPARE(light.onSurfaceVariant, QStringLiteral("#4c4c4c"));
    QCOMPARE(light.primary, QStringLiteral("#656666")); // the faint tint of its small chroma
    QCOMPARE(light.surface, QStringLiteral("#faf9f9"));
    Theme::forceTheme = kForceDark;
    const ColorTokens dark = Theme::colors();
    QCOMPARE(dark.onSurface, QStringLiteral("#f2f2f2"));
    QCOMPARE(dark.surfaceVariant, QStringLiteral("#3f3f3f"));
    QCOMPARE(dark.onSurfaceVariant, QStringLiteral("#a5a5a5"));
    QCOMPARE(dark.onPrimary, QStringLiteral("#1d1e1e"));
}

void ThemeTest::redSeed()
{
    Theme::seedColorHex = QStringLiteral("#ff0000");
    QVERIFY(Theme::seedHct().chroma > 113.0);
    QCOMPARE(Theme::colors().primary, QStringLiteral("#a6483b")); // brick, not the seed
    QCOMPARE(Theme::colors().surfaceContainerHighest, QStringLiteral("#ffd5cd"));
}

void ThemeTest::vividSeedIsCapped()
{
    // Two seeds of one hue, both stronger than any token wants: one palette.
    const Hct::Color seed = Theme::seedHct();
    const Theme::ToneSpec accent{43.0, 49.07, 80.01, 34.9};
    Hct::Color neon = seed;
    neon.chroma = 130.0;
    neon.tone = 90.0;
    QCOMPARE(Theme::fromSpec(neon, accent, false, 0.0, Theme::NoChromaCap),
             Theme::fromSpec(seed, accent, false, 0.0, Theme::NoChromaCap));
}

void ThemeTest::invalidSeedGivesTheGreysOfBlack_data()
{
    QTest::addColumn<QString>("seed");
    QTest::newRow("no colour") << "no colour";
    QTest::newRow("empty") << "";
    QTest::newRow("cut short") << "#0284c";
    QTest::newRow("without the sign") << "0284c7";
    QTest::newRow("huge") << QString(100000, QLatin1Char('#'));
}

void ThemeTest::invalidSeedGivesTheGreysOfBlack()
{
    QFETCH(QString, seed);
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    useTheme(kForceLight, QStringLiteral("#000000"));
    const ColorTokens black = getItemTheme();
    Theme::seedColorHex = seed;
    QVERIFY(!Theme::seedColor().isValid());
    const ColorTokens t = getItemTheme();
    QVERIFY(t == black);
    QCOMPARE(t.primary, QStringLiteral("#666666"));
    QCOMPARE(t.onSurface, QStringLiteral("#191919"));
    QCOMPARE(Theme::boxActiveBg(), QStringLiteral("#e5e5e5"));
}

void ThemeTest::seedJustBelowRed()
{
    // Sixteen bits a channel bring the hue so near to 360 that Qt rounds it there.
    Theme::seedColorHex = QStringLiteral("#ffff00000001");
    QVERIFY(Theme::seedColor().isValid());
    const QString text = Theme::colors().onSurface;
    Theme::seedColorHex = QStringLiteral("#ff0000");
    QCOMPARE(text, Theme::colors().onSurface);
}

void ThemeTest::tokensAreHexColours()
{
    const QRegularExpression hex(QStringLiteral("^#[0-9a-f]{6}$"));
    for (const Sample& sample : samples()) {
        for (const TokenField& entry : kFields)
            QVERIFY2(hex.match(sample.tokens.*entry.field).hasMatch(), entry.name);
    }
}

void ThemeTest::seedCoordinates()
{
    const Hct::Color seed = Theme::seedHct();
    QVERIFY(std::abs(seed.hue - 246.04) < 0.005);
    QVERIFY(std::abs(seed.chroma - 51.54) < 0.005);
    QVERIFY(std::abs(seed.tone - 52.55) < 0.005);
    QCOMPARE(Theme::seedColor().hslHue(), 200);
    QCOMPARE(Theme::seedColor().hslSaturation(), 250);
    QCOMPARE(Theme::hctOf(QColor(0x02, 0x84, 0xC7, 7)).argb, seed.argb);
    QCOMPARE(Theme::hctOf(QColor()).argb, Theme::hctOf(QColor(Qt::black)).argb);
}

void ThemeTest::fromSpec_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<double>("hueShift");
    QTest::addColumn<double>("chromaCap");
    QTest::addColumn<QString>("hex");
    QTest::newRow("light") << false << 0.0 << Theme::NoChromaCap << "#006ba4";
    QTest::newRow("dark") << true << 0.0 << Theme::NoChromaCap << "#9bccf8";
    QTest::newRow("hue past the circle") << false << 120.0 << Theme::NoChromaCap << "#a4465e";
    QTest::newRow("hue below zero") << false << -300.0 << Theme::NoChromaCap << "#7754a9";
    QTest::newRow("a full turn") << false << 360.0 << Theme::NoChromaCap << "#006ba4";
    QTest::newRow("capped") << false << 0.0 << 10.0 << "#5e666f";
    QTest::newRow("capped to grey") << false << 0.0 << 0.0 << "#666666";
}

void ThemeTest::fromSpec()
{
    QFETCH(bool, dark);
    QFETCH(double, hueShift);
    QFETCH(double, chromaCap);
    const Theme::ToneSpec accent{43.0, 49.07, 80.01, 34.9};
    QTEST(Theme::fromSpec(Theme::seedHct(), accent, dark, hueShift, chromaCap), "hex");
}

void ThemeTest::relativeLuminance_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<double>("luminance");
    QTest::newRow("black") << QColor(Qt::black) << 0.0;
    QTest::newRow("white") << QColor(Qt::white) << 1.0;
    QTest::newRow("middle grey") << QColor(128, 128, 128) << 0.21586050011389923;
    QTest::newRow("default seed") << QColor(0x02, 0x84, 0xC7) << 0.2063895550653833;
    QTest::newRow("last of the straight part") << QColor(10, 10, 10) << 0.003035269835488375;
    QTest::newRow("first of the curve") << QColor(11, 11, 11) << 0.0033465357638991604;
}

void ThemeTest::relativeLuminance()
{
    QFETCH(QColor, color);
    QFETCH(double, luminance);
    QVERIFY(isNear(Theme::relativeLuminance(color), luminance));
}

void ThemeTest::contrastRatio()
{
    QVERIFY(isNear(Theme::contrastRatio(Qt::white, Qt::black), 21.0));
    QVERIFY(isNear(Theme::contrastRatio(Qt::black, Qt::white), 21.0));
    QVERIFY(isNear(Theme::contrastRatio(Qt::red, Qt::red), 1.0));
    QVERIFY(isNear(Theme::contrastRatio(Qt::white, Theme::seedColor()), 4.095330637522397));
}

void ThemeTest::pairsAreReadableByConstruction_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("fill");
    for (const auto& [text, fill] : {std::pair{"onPrimary", "primary"},
                                     {"onPrimaryContainer", "primaryContainer"},
                                     {"onContainer", "container"},
                                     {"onKey", "key"},
                                     {"onError", "errorColor"},
                                     {"onErrorContainer", "errorContainer"},
                                     {"onSurface", "surface"},
                                     {"onSurface", "surfaceContainer"},
                                     {"onSurface", "surfaceContainerLowest"},
                                     {"onSurface", "surfaceContainerLow"},
                                     {"onSurface", "surfaceContainerHigh"},
                                     {"onSurface", "surfaceContainerHighest"},
                                     {"onSurface", "surfaceVariant"},
                                     {"onSurfaceVariant", "surface"},
                                     {"onSurfaceVariant", "surfaceContainerLow"},
                                     {"onSurfaceVariant", "surfaceContainerHigh"}})
        QTest::addRow("%s on %s", text, fill) << QString(text) << QString(fill);
}

void ThemeTest::pairsAreReadableByConstruction()
{
    QFETCH(QString, text);
    QFETCH(QString, fill);
    for (const Sample& sample : samples()) {
        const double ratio = Theme::contrastRatio(QColor(tokenNamed(sample.tokens, text)),
                                                  QColor(tokenNamed(sample.tokens, fill)));
        QVERIFY2(ratio >= Theme::ContrastText, qPrintable(QStringLiteral("seed %1, mode %2: %3")
                                                              .arg(sample.seed)
                                                              .arg(sample.mode)
                                                              .arg(ratio)));
    }
}

void ThemeTest::textIsReadableUnderStateLayers()
{
    const auto reads = [](const QString& text, const QString& fill) {
        const QString layered = Theme::stateLayerOn(fill, text, Theme::StateFocus);
        return Theme::contrastRatio(QColor(text), QColor(layered)) >= Theme::ContrastText;
    };
    for (const Sample& sample : samples()) {
        const ColorTokens& t = sample.tokens;
        QVERIFY2(reads(t.onPrimary, t.primary), qPrintable(sample.seed));
        QVERIFY2(reads(t.onKey, t.key), qPrintable(sample.seed));
        QVERIFY2(reads(t.onSurface, t.surfaceContainerHighest), qPrintable(sample.seed));
        QVERIFY2(reads(t.onSurface, Theme::fieldIdleBg(t)), qPrintable(sample.seed));
    }
}

void ThemeTest::onColorFor_data()
{
    QTest::addColumn<QString>("background");
    QTest::addColumn<double>("target");
    QTest::addColumn<QString>("text");
    const struct
    {
        const char* name;
        const char* background;
        double target;
        const char* text;
    } rows[] = {
        {"black", "#000000", 4.5, "#ffffff"},
        {"white: the lightest dark", "#ffffff", 4.5, "#1a1a1a"},
        {"yellow keeps its hue", "#ffd400", 4.5, "#342a00"},
        {"blue: white falls short", "#0284c7", 4.5, "#001520"},
        {"blue: white will do for icons", "#0284c7", 3.0, "#ffffff"},
        {"middle grey: down to lightness 22", "#808080", 4.5, "#161616"},
        {"just too light for white", "#777777", 4.5, "#060606"},
        {"just dark enough for white", "#767676", 4.5, "#ffffff"},
        {"nothing reads, white is best", "#757575", 7.0, "#ffffff"},
        {"nothing reads, dark is better by too little", "#787878", 7.0, "#ffffff"},
        {"nothing reads, dark is clearly better", "#7a7a7a", 7.0, "#020202"},
        {"impossible target on a dark ground", "#101010", 99.0, "#ffffff"},
    };
    for (const auto& row : rows)
        QTest::newRow(row.name) << QString(row.background) << row.target << QString(row.text);
}

void ThemeTest::onColorFor()
{
    QFETCH(QString, background);
    QFETCH(double, target);
    QTEST(Theme::onColorFor(QColor(background), target), "text");
}

void ThemeTest::onColorForPair_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("text");
    const struct
    {
        const char* name;
        const char* first;
        const char* second;
        const char* text;
    } rows[] = {
        {"both dark", "#101010", "#606060", "#ffffff"},
        {"dark shades are of the first", "#0284c7", "#ffd400", "#001520"},
        {"the other way round", "#ffd400", "#0284c7", "#181400"},
        {"a grey first", "#e0e0e0", "#ffd400", "#1a1a1a"},
        // Below 3.0 white has no bonus: dark wins by 0.03.
        {"white is useless, dark a hair better", "#303030", "#d0d0d0", "#020202"},
        {"no text at all reads on both", "#202020", "#ffffff", "#020202"},
        {"white is useless, dark worse", "#000000", "#c0c0c0", "#ffffff"},
    };
    for (const auto& row : rows)
        QTest::newRow(row.name) << QString(row.first) << QString(row.second) << QString(row.text);
}

void ThemeTest::onColorForPair()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    QTEST(Theme::onColorForPair(QColor(first), QColor(second), Theme::ContrastText), "text");
}

void ThemeTest::onColorForAlwaysReads()
{
    // On one background there is always a colour that reads, whatever the background.
    for (int red = 0; red <= 255; red += 17)
        for (int green = 0; green <= 255; green += 17)
            for (int blue = 0; blue <= 255; blue += 17) {
                const QColor bg(red, green, blue);
                const QColor text(Theme::onColorFor(bg, Theme::ContrastText));
                QVERIFY2(Theme::contrastRatio(bg, text) >= Theme::ContrastText,
                         qPrintable(bg.name()));
            }
}

void ThemeTest::stateLayer()
{
    const ColorTokens c = Theme::colors();
    QColor expected(c.onSurface);
    QCOMPARE(Theme::stateLayer(c, 255), expected);
    expected.setAlpha(28);
    QCOMPARE(Theme::stateLayer(c, 28), expected);
    QCOMPARE(Theme::stateLayer(c, 0).alpha(), 0);
}

void ThemeTest::stateLayerOn_data()
{
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("on");
    QTest::addColumn<double>("alpha");
    QTest::addColumn<QString>("result");
    const struct
    {
        const char* name;
        const char* base;
        const char* on;
        double alpha;
        const char* result;
    } rows[] = {
        {"hover", "#c6e2fe", "#151a1d", Theme::StateHover, "#b8d2ec"},
        {"focus", "#c6e2fe", "#151a1d", Theme::StateFocus, "#b4cee8"},
        {"rounds half up", "#000000", "#ffffff", 0.1, "#1a1a1a"},
        {"nothing of it", "#ffffff", "#000000", 0.0, "#ffffff"},
        {"all of it", "#ffffff", "#123456", 1.0, "#123456"},
        {"a half-transparent base counts as solid", "#80112233", "#ffffff", 0.08, "#243443"},
        {"transparent, hover", "transparent", "#151a1d", Theme::StateHover, "rgba(21, 26, 29, 20)"},
        {"transparent, focus", "transparent", "#151a1d", Theme::StateFocus, "rgba(21, 26, 29, 26)"},
        {"wholly transparent by its alpha", "#00ffffff", "#151a1d", 0.08, "rgba(21, 26, 29, 20)"},
        {"a layer on a layer", "rgba(21, 26, 29, 20)", "#151a1d", 0.08, "rgba(21, 26, 29, 20)"},
        {"empty base", "", "#ffffff", 1.0, "rgba(255, 255, 255, 255)"},
    };
    for (const auto& row : rows)
        QTest::newRow(row.name) << QString(row.base) << QString(row.on) << row.alpha
                                << QString(row.result);
}

void ThemeTest::stateLayerOn()
{
    QFETCH(QString, base);
    QFETCH(QString, on);
    QFETCH(double, alpha);
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    QTEST(Theme::stateLayerOn(base, on, alpha), "result");
}

int main(int argc, char** argv)
{
    return FreshProcess::main<ThemeTest>(argc, argv, {{"print initial state", printInitialState}});
}

#include "tst_theme.moc"
