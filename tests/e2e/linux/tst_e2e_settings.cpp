// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "HomePage.h"
#include "Localization.h"
#include "MainWindow.h"
#include "Pixels.h"
#include "Profile.h"
#include "Theme.h"

#include <QtTest>

#include <functional>

/// The settings that change how the program looks: changed by keys and mouse, seen on the screen
/// and in the file, and found again after a restart.
class E2eSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_home.reset(); }
    void waysInAndOut();
    void escapeClimbsUp();
    void darkAndLightAndBack();
    void fourLanguages();
    void threeColumnCounts();
    void accentByHex();
    void accentByField();
    void accentByHue();
    void accentThatIsNone();
    void manyChanges();

private:
    void start();
    void restart();
    void openSettings() const;
    void enterPage() const;
    void changeBy(std::initializer_list<xcb_keysym_t> keys) const;
    QVector<xcb_window_t> viewableWindows() const;
    void openLanguageMenu() const;
    void chooseLanguage(Lang lang) const;
    QPoint openPicker() const;
    void waitForColor(const QPoint& place, const QString& color, const char* failure) const;
    void waitForLook(int mode) const;
    void waitForStored(const QString& key, const QString& value, const char* failure) const;
    void waitForFocusedChoice(const char* failure) const;
    void waitForFocusedLanguage(const char* failure) const;
    void waitForFocusedSwatch(const char* failure) const;
    void waitForAreaOf(const QColor& color, int tolerance, const QSize& least,
                       const char* failure) const;
    void waitFor(const std::function<bool()>& condition, const char* failure) const;
    QImage windowPicture() const;
    QRgb pixel(const QPoint& place) const;
    bool isSettingsPage() const;
    QString stored(const QString& key) const;
    qint64 residentBytes() const;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<HomePage> m_home;
    xcb_window_t m_window = XCB_WINDOW_NONE; ///< the main one, whatever its size
};

namespace
{

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kIsMemoryTold = false; // what is freed stays resident there
#else
constexpr bool kIsMemoryTold = true;
#endif
constexpr int kChanges = 20; // within the five minutes that a function has on a busy machine
constexpr int kFirstChanges = 10;
constexpr double kGrowth = 1.05;

const QString kThemeKey = QStringLiteral("Theme/ForceTheme");
const QString kSeedKey = QStringLiteral("Theme/SeedColor");
const QString kColumnsKey = QStringLiteral("Layout/GridColumns");
const QString kLanguageKey = QStringLiteral("Language/Code");
const QString kSeed = QStringLiteral("#0284c7");
constexpr int kSystem = 0;
constexpr int kLight = 1;
constexpr int kDark = 2;

// From the corner of the window.
constexpr QPoint kBesideTitle{300, 60}; ///< in the header
constexpr QPoint kPanel{260, 130};      ///< between the list of categories and the cards
constexpr QPoint kBackButton{60, 60};
constexpr QPoint kSettingsButton{556, 72}; ///< of the home page

// From the corner of the colour dialog.
constexpr QRect kField{35, 70, 250, 150};
constexpr QRect kHueBar{35, 233, 250, 22};

QVector<LauncherElement> twelveItems()
{
    QVector<LauncherElement> items;
    for (int i = 1; i <= 12; ++i) {
        items.append(Profile::item(QStringLiteral("Item %1").arg(i), QStringLiteral("URL"),
                                   QStringLiteral("https://example.org")));
    }
    return items;
}

/// How many tiles the line at that height of the window goes through.
int tilesAt(const QImage& window, int y)
{
    const QColor ground(Theme::panelBg());
    int tiles = 0;
    bool isInTile = false;
    for (int x = 40; x < window.width() - 40; ++x) {
        const bool isTile = window.pixelColor(x, y) != ground;
        tiles += isTile && !isInTile ? 1 : 0;
        isInTile = isTile;
    }
    return tiles;
}

} // namespace

void E2eSettings::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

void E2eSettings::init()
{
    m_home = std::make_unique<HomePage>(*m_desktop);
    m_home->program().setSetting(kThemeKey, kLight);
    m_home->program().writeData(QStringLiteral("data.json"), Profile::document(twelveItems()));
    Theme::forceTheme = kLight; // for the colours that are expected
    Theme::seedColorHex = kSeed;
}

void E2eSettings::waitFor(const std::function<bool()>& condition, const char* failure) const
{
    m_home->program().waitFor(condition, failure);
}

QImage E2eSettings::windowPicture() const
{
    return m_desktop->client().screenshot().copy(m_home->program().homeWindow().geometry);
}

QRgb E2eSettings::pixel(const QPoint& place) const
{
    return m_desktop->client().pixel(m_home->program().homeWindow().geometry.topLeft() + place);
}

bool E2eSettings::isSettingsPage() const
{
    return m_home->program().homeWindow().geometry.width() == MainWindow::WINDOW_WIDTH_SETTINGS;
}

QString E2eSettings::stored(const QString& key) const
{
    return m_home->program().setting(key).toString();
}

qint64 E2eSettings::residentBytes() const
{
    QFile file(QStringLiteral("/proc/%1/statm").arg(m_home->program().processId()));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    return file.readAll().split(' ').value(1).toLongLong() * 4096;
}

void E2eSettings::start()
{
    m_home->start();
    m_window = m_home->program().homeWindow().id;
}

/// Whatever isn't on the disk by now is lost.
void E2eSettings::restart()
{
    QProcess& process = m_home->program().process();
    process.kill();
    if (!process.waitForFinished(Desktop::PatienceMs))
        qFatal("the program can't be killed");
    start();
}

void E2eSettings::openSettings() const
{
    m_home->press({HomePage::Tab});
    waitFor([this] { return isSettingsPage(); }, "Tab doesn't lead to the settings");
}

/// From the home page to the checked button of the first card.
void E2eSettings::enterPage() const
{
    openSettings();
    m_home->press({HomePage::Return});
    waitForFocusedChoice("Enter doesn't lead from the list into the page");
}

/// Presses the keys of a change and sees to it that there is a window at all times, though it may
/// fade and change its size.
void E2eSettings::changeBy(std::initializer_list<xcb_keysym_t> keys) const
{
    constexpr int kLongerThanTheFadeMs = 300;
    m_home->press(keys);
    QElapsedTimer watched;
    watched.start();
    while (!watched.hasExpired(kLongerThanTheFadeMs)) {
        if (viewableWindows().contains(m_window))
            continue;
        m_home->program().giveUp("there is no window while the page is rebuilt");
    }
}

QVector<xcb_window_t> E2eSettings::viewableWindows() const
{
    QVector<xcb_window_t> found;
    for (const XClient::Window& window :
         m_desktop->client().windowsOf(m_home->program().processId())) {
        if (window.isViewable)
            found.append(window.id);
    }
    return found;
}

/// From the button of the languages.
void E2eSettings::openLanguageMenu() const
{
    m_home->press({HomePage::Return});
    waitFor([this] { return viewableWindows().size() == 2; }, "the menu doesn't open");
}

/// From the button of the languages.
void E2eSettings::chooseLanguage(Lang lang) const
{
    openLanguageMenu();
    m_home->press(HomePage::Down, int(lang) + 1);
    changeBy({HomePage::Return});
    waitForStored(kLanguageKey, Tr::codeFor(lang), "the language isn't stored");
    // The new page gets the focus that the old one had when the key came: what is pressed before it
    // is there leads nowhere.
    m_home->settledScreenshot();
}

/// From the colour sample. Gives the corner of the dialog on the screen.
QPoint E2eSettings::openPicker() const
{
    m_home->press({HomePage::Return});
    const xcb_window_t dialog = m_home->waitForDialog();
    for (const XClient::Window& window :
         m_desktop->client().windowsOf(m_home->program().processId())) {
        if (window.id == dialog)
            return window.geometry.topLeft();
    }
    m_home->program().giveUp("the colour dialog has gone");
}

void E2eSettings::waitForColor(const QPoint& place, const QString& color, const char* failure) const
{
    waitFor([&] { return QColor(pixel(place)) == QColor(color); }, failure);
}

void E2eSettings::waitForLook(int mode) const
{
    Theme::forceTheme = mode;
    waitForColor(kPanel, Theme::panelBg(), mode == kDark ? "it isn't dark" : "it isn't light");
    waitForColor(kBesideTitle, Theme::shellBg(), "the header has kept its colour");
}

void E2eSettings::waitForStored(const QString& key, const QString& value, const char* failure) const
{
    waitFor([&] { return stored(key) == value; }, failure);
}

void E2eSettings::waitForAreaOf(const QColor& color, int tolerance, const QSize& least,
                                const char* failure) const
{
    waitFor(
        [&] {
            const QSize size = Pixels::boxOfColor(windowPicture(), color, tolerance).size();
            return size.width() >= least.width() && size.height() >= least.height();
        },
        failure);
}

void E2eSettings::waitForFocusedChoice(const char* failure) const
{
    const ColorTokens t = getItemTheme();
    waitForAreaOf(QColor(Theme::stateLayerOn(t.key, t.onKey, Theme::StateFocus)), 0, {28, 28},
                  failure);
}

void E2eSettings::waitForFocusedLanguage(const char* failure) const
{
    const ColorTokens c = Theme::colors();
    waitForAreaOf(
        QColor(Theme::stateLayerOn(c.surfaceContainerHighest, c.onSurface, Theme::StateFocus)), 0,
        {150, 30}, failure);
}

/// The sample under the veil that its pencil has with the focus.
void E2eSettings::waitForFocusedSwatch(const char* failure) const
{
    constexpr int kVeil = 255 - 140;
    const QColor seed = Theme::seedColor();
    const QColor veiled(seed.red() * kVeil / 255, seed.green() * kVeil / 255,
                        seed.blue() * kVeil / 255);
    waitForAreaOf(veiled, 2, {30, 30}, failure);
}

void E2eSettings::waysInAndOut()
{
    start();
    QVERIFY(!isSettingsPage());
    const QImage home = m_home->settledScreenshot();
    const auto waitForHomePage = [this](const char* failure) {
        waitFor([this] { return !isSettingsPage(); }, failure);
        m_home->waitForHome();
    };
    openSettings();
    Program::keep(m_home->settledScreenshot(), QStringLiteral("settings-way-in"));
    m_home->press({HomePage::Tab});
    waitForHomePage("Tab doesn't lead back");
    openSettings();
    m_home->press({HomePage::Escape});
    waitForHomePage("Esc doesn't lead back");
    openSettings();
    m_home->press({HomePage::BackSpace});
    waitForHomePage("Backspace doesn't lead back");
    openSettings();
    m_home->press({HomePage::Up, HomePage::Return});
    waitForHomePage("Enter on the back button doesn't lead back");
    openSettings();
    m_home->settledScreenshot(); // the pointer finds nothing while the window moves
    m_home->click(kBackButton);
    waitForHomePage("the back button doesn't lead back");
    m_home->settledScreenshot();
    m_home->click(kSettingsButton);
    waitFor([this] { return isSettingsPage(); }, "the button doesn't lead to the settings");
    m_home->press({HomePage::Escape});
    waitForHomePage("Esc doesn't lead back");
    // In the grid as at first, ready for the next key.
    m_home->press({HomePage::Up});
    QTRY_COMPARE(m_home->settledScreenshot(), home);
}

void E2eSettings::escapeClimbsUp()
{
    start();
    enterPage();
    m_home->press({HomePage::Down, HomePage::Down, HomePage::Down});
    waitForFocusedLanguage("Down doesn't lead to the languages");
    openLanguageMenu();
    m_home->press({HomePage::Escape});
    waitFor([this] { return viewableWindows().size() == 1; }, "Esc doesn't close the menu");
    waitForFocusedLanguage("the focus isn't on the button again whose menu was closed");
    const QImage inside = m_home->settledScreenshot();
    m_home->press({HomePage::Escape});
    QTRY_VERIFY(m_home->settledScreenshot() != inside); // the list has the focus
    QVERIFY(isSettingsPage());
    m_home->press({HomePage::Escape});
    waitFor([this] { return !isSettingsPage(); }, "Esc in the list doesn't lead to the home page");
    m_home->waitForHome();
    m_home->press({HomePage::Escape});
    m_home->waitUntilGone();
    m_home->show();
    QVERIFY(!isSettingsPage());
}

void E2eSettings::darkAndLightAndBack()
{
    start();
    enterPage();
    changeBy({HomePage::Right, HomePage::Return});
    waitForStored(kThemeKey, QString::number(kDark), "dark isn't stored");
    waitForLook(kDark);
    waitForFocusedChoice("the focus isn't on the button for dark");
    changeBy({HomePage::Left, HomePage::Return});
    waitForStored(kThemeKey, QString::number(kLight), "light isn't stored");
    waitForLook(kLight);
    waitForFocusedChoice("the focus isn't on the button for light");
    changeBy({HomePage::Left, HomePage::Return});
    waitForStored(kThemeKey, QString::number(kSystem), "the system's choice isn't stored");
    waitForLook(kLight); // of which there is none on this desktop
    waitForFocusedChoice("the focus isn't on the button for the system's choice");
    changeBy({HomePage::Right, HomePage::Right, HomePage::Return});
    waitForStored(kThemeKey, QString::number(kDark), "dark isn't stored again");
    waitForLook(kDark);
    restart();
    openSettings();
    waitForLook(kDark);
}

void E2eSettings::fourLanguages()
{
    start();
    enterPage();
    m_home->press({HomePage::Down, HomePage::Down, HomePage::Down});
    waitForFocusedLanguage("Down doesn't lead to the languages");
    QList<QImage> pictures{m_home->settledScreenshot()};
    for (const Lang lang : {Lang::Id, Lang::Es, Lang::Ja, Lang::En}) {
        chooseLanguage(lang);
        waitForFocusedLanguage("the focus isn't on the button of the languages");
        pictures.append(m_home->settledScreenshot());
    }
    for (int i = 1; i < 4; ++i) {
        for (int j = 0; j < i; ++j)
            QVERIFY(pictures.at(i) != pictures.at(j));
    }
    // English again, and nothing has moved.
    QTRY_COMPARE(m_home->settledScreenshot(), pictures.first());
    chooseLanguage(Lang::Ja);
    waitForFocusedLanguage("the focus isn't on the button of the languages");
    restart();
    enterPage();
    m_home->press({HomePage::Down, HomePage::Down, HomePage::Down});
    waitForFocusedLanguage("Down doesn't lead to the languages after a restart");
    QTRY_COMPARE(m_home->settledScreenshot(), pictures.at(3));
}

void E2eSettings::threeColumnCounts()
{
    constexpr int kInFirstLine = 176 + 30; // below the upper edge of the tiles, above their glyphs
    start();
    enterPage();
    m_home->press({HomePage::Down, HomePage::Down});
    waitForFocusedChoice("Down doesn't lead to the columns");
    struct Step
    {
        xcb_keysym_t key;
        int columns;
    };
    const auto tilesSeen = [this] {
        const QImage picture = m_home->settledScreenshot();
        return tilesAt(picture.copy(m_home->program().homeWindow().geometry), kInFirstLine);
    };
    for (const Step& step :
         {Step{HomePage::Left, 2}, Step{HomePage::Right, 3}, Step{HomePage::Right, 4}}) {
        changeBy({step.key, HomePage::Return});
        waitForStored(kColumnsKey, QString::number(step.columns), "the columns aren't stored");
        waitForFocusedChoice("the focus isn't on the button of the columns");
        m_home->press({HomePage::Escape, HomePage::Escape});
        waitFor([this] { return !isSettingsPage(); }, "Esc doesn't lead to the home page");
        QTRY_COMPARE_WITH_TIMEOUT(tilesSeen(), step.columns, Desktop::PatienceMs);
        enterPage();
        m_home->press({HomePage::Down, HomePage::Down});
        waitForFocusedChoice("Down doesn't lead to the columns again");
    }
    restart();
    QTRY_COMPARE_WITH_TIMEOUT(tilesSeen(), 4, Desktop::PatienceMs);
}

void E2eSettings::accentByHex()
{
    start();
    enterPage();
    m_home->press({HomePage::Down});
    waitForFocusedSwatch("Down doesn't lead to the accent colour");
    for (const char* typed : {"#d03060", "forestgreen", "#808080", "#ffffff", "#D0A060"}) {
        openPicker();
        m_home->chord({HomePage::Control, 'a'});
        m_home->type(QString::fromLatin1(typed));
        Program::keep(m_home->settledScreenshot(),
                      QStringLiteral("settings-picker-") + QString::fromLatin1(typed).remove('#'));
        changeBy({HomePage::Return});
        waitForStored(kSeedKey, QString::fromLatin1(typed), "the colour isn't stored as typed");
        Theme::seedColorHex = QString::fromLatin1(typed);
        waitForLook(kLight);
        m_home->waitForHome();
        waitForFocusedSwatch("the focus isn't on the accent colour");
    }
    restart();
    openSettings();
    waitForLook(kLight);
}

void E2eSettings::accentByField()
{
    start();
    enterPage();
    m_home->press({HomePage::Down});
    const QPoint dialog = openPicker();
    m_desktop->client().click(dialog + kField.topLeft() + QPoint(100, 30));
    Program::keep(m_home->settledScreenshot(), QStringLiteral("settings-picker-field"));
    changeBy({HomePage::Return});
    waitFor([this] { return !stored(kSeedKey).isEmpty(); }, "the colour isn't stored");
    const QColor color(stored(kSeedKey));
    QCOMPARE(stored(kSeedKey), color.name().toUpper());
    QVERIFY(qAbs(color.hsvSaturationF() - 100.0 / kField.width()) < 0.05);
    QVERIFY(qAbs(color.valueF() - (1 - 30.0 / kField.height())) < 0.05);
    QVERIFY(qAbs(color.hsvHue() - QColor(kSeed).hsvHue()) <= 2);
    Theme::seedColorHex = stored(kSeedKey);
    waitForLook(kLight);
    waitForFocusedSwatch("the focus isn't on the accent colour");
    restart();
    openSettings();
    waitForLook(kLight);
}

void E2eSettings::accentByHue()
{
    start();
    enterPage();
    m_home->press({HomePage::Down});
    const QPoint dialog = openPicker();
    m_desktop->client().click(dialog + kHueBar.topLeft() + QPoint(200, kHueBar.height() / 2));
    Program::keep(m_home->settledScreenshot(), QStringLiteral("settings-picker-hue"));
    changeBy({HomePage::Return});
    waitFor([this] { return !stored(kSeedKey).isEmpty(); }, "the colour isn't stored");
    const QColor color(stored(kSeedKey));
    const double share = (200.0 - kHueBar.height() / 2.0) / (kHueBar.width() - kHueBar.height());
    QVERIFY(qAbs(color.hsvHue() - share * 359) < 5);
    QVERIFY(qAbs(color.value() - QColor(kSeed).value()) <= 1);
    Theme::seedColorHex = stored(kSeedKey);
    waitForLook(kLight);
    waitForFocusedSwatch("the focus isn't on the accent colour");
    restart();
    openSettings();
    waitForLook(kLight);
}

void E2eSettings::accentThatIsNone()
{
    start();
    enterPage();
    m_home->press({HomePage::Down});
    openPicker();
    m_home->chord({HomePage::Control, 'a'});
    m_home->type(QStringLiteral("#12345"));
    const xcb_window_t picker = m_desktop->client().focus();
    m_home->press({HomePage::Return});
    m_home->waitForDialog(picker);
    Program::keep(m_home->settledScreenshot(), QStringLiteral("settings-no-color"));
    m_home->press({HomePage::Return});
    m_home->waitForHome();
    waitForFocusedSwatch("the focus isn't on the accent colour again");
    waitForLook(kLight);
    QVERIFY(stored(kSeedKey).isEmpty());
}

void E2eSettings::manyChanges()
{
    start();
    enterPage();
    qint64 bytesAtFirst = 0;
    int mode = kLight;
    const int wanted = qEnvironmentVariableIntValue("ORLIMO_E2E_CHANGES");
    const int changes = wanted > kFirstChanges ? wanted : kChanges;
    for (int i = 0; i < changes / 2; ++i) {
        if (i == kFirstChanges / 2)
            bytesAtFirst = residentBytes();
        changeBy({mode == kLight ? HomePage::Right : HomePage::Left, HomePage::Return});
        mode = mode == kLight ? kDark : kLight;
        waitForStored(kThemeKey, QString::number(mode), "the theme isn't stored");
        waitForLook(mode);
        waitForFocusedChoice("the focus isn't on the button of the theme");
        m_home->press({HomePage::Down, HomePage::Down, HomePage::Down});
        waitForFocusedLanguage("Down doesn't lead to the languages");
        chooseLanguage(static_cast<Lang>((i + 1) % 4));
        waitForFocusedLanguage("the focus isn't on the button of the languages");
        m_home->press({HomePage::Up, HomePage::Up, HomePage::Up});
        waitForFocusedChoice("Up doesn't lead to the theme");
    }
    const qint64 bytes = residentBytes();
    qInfo("%lld bytes after %d changes, %lld after %d", bytesAtFirst, kFirstChanges, bytes,
          changes);
    QVERIFY(!kIsMemoryTold || double(bytes) <= double(bytesAtFirst) * kGrowth);
}

QTEST_GUILESS_MAIN(E2eSettings)
#include "tst_e2e_settings.moc"
