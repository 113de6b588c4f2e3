// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FolderFilter.h"
#include "Program.h"
#include "Theme.h"

#include <QPainter>
#include <QUrl>
#include <QtTest>

#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>

/// The settings of Spotlight, by real keys and a real mouse.
class E2eSpotlightSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void chosenScopesSurviveARestart();
    void bothWindowsChange_data();
    void bothWindowsChange();
    void leavingChangesNothing_data();
    void leavingChangesNothing();
    void hotkeyWhileTheyAreOpen_data();
    void hotkeyWhileTheyAreOpen();
    void looks_data();
    void looks();

private:
    void start(int theme = 1, const QString& language = QStringLiteral("en"));
    void restart();
    void waitFor(const std::function<bool()>& condition, const char* failure) const;
    /// Presses keys one after the other, each once the one before has been dealt with.
    void press(std::initializer_list<const char*> keys) const;
    void click(const QPoint& position) const;
    /// The windows on the screen that are neither Spotlight nor the main window.
    QVector<XClient::Window> others() const;
    std::optional<XClient::Window> focusedOther() const;
    void openSettings();
    /// Opens what stands behind a control that has the focus or is clicked: a menu, or a dialog.
    void openOneMore(const std::function<void()>& act, const char* failure) const;
    void waitUntilOthersAre(qsizetype count, const char* failure) const;
    void waitForSpotlight() const;
    void typePlan();
    bool isFileFound() const;
    void chooseLastLanguageAndDark() const;
    QImage quietPicture() const;
    /// What a picture shows of Spotlight: without its round corners and the field, whose caret
    /// blinks.
    QImage spotlightIn(QImage picture) const;
    /// Where a control stands: its middle, so far from the right edge of the dialog's card and from
    /// its top or, if negative, its bottom.
    QPoint inCard(int fromRight, int y) const;
    QByteArray settingsFile() const { return m_program->readData(QStringLiteral("settings.ini")); }
    int height() const { return m_program->spotlight().geometry.height(); }

    static constexpr int kEmptyHeight = 144;
    static constexpr int kChipHeight = 190; // one row of chips
    static constexpr int kPanelHeight = 328;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<Program> m_program;
    XClient::Window m_settings;
    const QString m_defaultSeed = Theme::seedColorHex;
};

namespace
{

constexpr QPoint kCard = Program::SpotlightCard;
constexpr QPoint kGear = kCard + QPoint(18 + 484 - 6 - 16, 18 + 22);
constexpr QPoint kCorner{2, 2}; // out of the way
constexpr char kSeed[] = "#b91c1c";

} // namespace

void E2eSpotlightSettings::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

void E2eSpotlightSettings::init()
{
    m_program = std::make_unique<Program>(*m_desktop);
    m_program->writeHomeFile(QStringLiteral("plan-one.memo"));
    m_program->writeHomeFile(QStringLiteral("plan-two/empty.memo"));
}

void E2eSpotlightSettings::cleanup()
{
    m_program.reset();
}

void E2eSpotlightSettings::waitFor(const std::function<bool()>& condition,
                                   const char* failure) const
{
    m_program->waitFor(condition, failure);
}

void E2eSpotlightSettings::start(int theme, const QString& language)
{
    Theme::forceTheme = theme; // for the colours that are expected
    Theme::seedColorHex = m_defaultSeed;
    m_program->setSetting(QStringLiteral("Theme/ForceTheme"), theme);
    m_program->setSetting(QStringLiteral("Language/Code"), language);
    restart();
}

void E2eSpotlightSettings::restart()
{
    if (m_program->process().state() != QProcess::NotRunning) {
        m_program->process().kill();
        QVERIFY(m_program->process().waitForFinished(Desktop::PatienceMs));
    }
    m_desktop->client().movePointer(kCorner);
    m_program->startAndSettle();
    m_program->openSpotlight();
}

void E2eSpotlightSettings::press(std::initializer_list<const char*> keys) const
{
    for (const char* key : keys) {
        m_program->key(QLatin1String(key));
        m_program->waitForKeysToBeHandled();
    }
}

void E2eSpotlightSettings::click(const QPoint& position) const
{
    m_desktop->client().click(position);
    m_program->waitForKeysToBeHandled();
}

QVector<XClient::Window> E2eSpotlightSettings::others() const
{
    const xcb_window_t spotlight = m_program->spotlight().id;
    const xcb_window_t home = m_program->homeWindow().id;
    QVector<XClient::Window> windows = m_desktop->client().windowsOf(m_program->processId());
    windows.removeIf([spotlight, home](const XClient::Window& window) {
        return !window.isViewable || window.id == spotlight || window.id == home ||
               window.geometry.width() < 100;
    });
    return windows;
}

std::optional<XClient::Window> E2eSpotlightSettings::focusedOther() const
{
    const xcb_window_t focus = m_desktop->client().focus();
    for (const XClient::Window& window : others()) {
        if (window.id == focus)
            return window;
    }
    return std::nullopt;
}

void E2eSpotlightSettings::waitForSpotlight() const
{
    waitFor([this] { return m_program->isSpotlightUp() && others().isEmpty(); },
            "the keyboard doesn't come back to Spotlight");
}

void E2eSpotlightSettings::openSettings()
{
    click(kGear);
    waitFor([this] { return focusedOther().has_value(); }, "the settings don't come up");
    m_settings = *focusedOther();
    m_desktop->client().movePointer(kCorner);
    m_program->waitForKeysToBeHandled();
}

void E2eSpotlightSettings::waitUntilOthersAre(qsizetype count, const char* failure) const
{
    waitFor([this, count] { return others().size() == count; }, failure);
    m_program->waitForKeysToBeHandled();
}

void E2eSpotlightSettings::openOneMore(const std::function<void()>& act, const char* failure) const
{
    const auto before = others().size();
    act();
    waitUntilOthersAre(before + 1, failure);
}

void E2eSpotlightSettings::typePlan()
{
    m_program->type(QStringLiteral("plan-"));
    waitFor([this] { return height() >= kEmptyHeight + kPanelHeight; }, "nothing is found");
    waitFor([this] { return isFileFound(); }, "the file isn't found");
}

/// Until the home is indexed there is a hint, which is never chosen, or in a search through
/// everything the web's row alone.
bool E2eSpotlightSettings::isFileFound() const
{
    constexpr QPoint kFirstRow = kCard + QPoint(6 + 4, 80 + 4 + 30 + 4);
    constexpr QPoint kSecondRow = kFirstRow + QPoint(0, 64 + 30); // below a header, too
    constexpr QPoint kClear(200, 2);                              // above the name of a row
    const XClient& client = m_desktop->client();
    if (height() == kChipHeight + kPanelHeight) {
        const QPoint place = kFirstRow + QPoint(0, kChipHeight - kEmptyHeight) + kClear;
        return QColor(client.pixel(place)) == QColor(Theme::boxActiveBg());
    }
    return QColor(client.pixel(kSecondRow + kClear)) == QColor(Theme::boxBg());
}

QImage E2eSpotlightSettings::quietPicture() const
{
    m_desktop->client().movePointer(kCorner);
    return m_program->settledScreenshot();
}

QImage E2eSpotlightSettings::spotlightIn(QImage picture) const
{
    QPainter(&picture).fillRect(QRect(kCard + QPoint(78, 18), QSize(340, 44)), Qt::black);
    return picture.copy(m_program->spotlight().geometry.adjusted(72, 32, -72, -32));
}

QPoint E2eSpotlightSettings::inCard(int fromRight, int y) const
{
    const QRect card = m_settings.geometry.adjusted(10, 10, -10, -10);
    return {card.right() - 25 - fromRight, y < 0 ? card.bottom() + y : card.top() + y};
}

/// From the settings as they open: with the keyboard alone.
void E2eSpotlightSettings::chooseLastLanguageAndDark() const
{
    press({"Down"});
    openOneMore([this] { press({"Return"}); }, "the menu of languages doesn't open");
    press({"Down", "Down", "Down", "Down", "Return"});
    waitUntilOthersAre(1, "the menu of languages doesn't close");
    press({"Down", "Right"}); // from light to dark
}

void E2eSpotlightSettings::chosenScopesSurviveARestart()
{
    start();
    typePlan();
    QCOMPARE(height(), kEmptyHeight + kPanelHeight);
    openSettings();
    press({"Down", "Down", "Down", "Down"}); // language, theme, colour, types
    openOneMore([this] { press({"space"}); }, "the menu of types doesn't open");
    press({"Down", "Down", "Down", "Down", "space"}); // all, applications, addresses, files
    Program::keep(m_program->settledScreenshot(), QStringLiteral("spotsettings-ticked"));
    press({"Down", "Down", "Down", "Down", "Return"}); // past the last type: done
    waitUntilOthersAre(1, "the menu of types doesn't close");
    QVERIFY(!m_program->setting(QStringLiteral("Spotlight/DefaultScope")).isValid());
    press({"Down", "Down", "Return"}); // cancel, OK
    waitForSpotlight();
    QCOMPARE(m_program->setting(QStringLiteral("Spotlight/DefaultScope")).toStringList(),
             QStringList{QStringLiteral("File")});
    // They hold at once, and the text is still there.
    waitFor([this] { return height() == kChipHeight + kPanelHeight; }, "no chip appears");
    Program::keep(quietPicture(), QStringLiteral("spotsettings-scope"));
    m_program->type(QStringLiteral("on"));
    press({"Return"});
    m_program->waitUntilSpotlightIsGone();
    const QString file = QString::fromLatin1(
        QUrl::fromLocalFile(m_program->homeDir() + "/plan-one.memo").toEncoded());
    waitFor([this] { return !m_desktop->opened().isEmpty(); }, "no file is opened");
    QCOMPARE(m_desktop->opened(), QStringList{file});

    restart();
    waitFor([this] { return height() == kChipHeight; }, "the chip is gone after a restart");
    typePlan();
    press({"Return"});
    waitFor([this] { return m_desktop->opened().size() == 2; }, "no file is opened again");
    QCOMPARE(m_desktop->opened().constLast(), file);
}

void E2eSpotlightSettings::bothWindowsChange_data()
{
    QTest::addColumn<bool>("byMouse");
    QTest::newRow("by keys") << false;
    QTest::newRow("by mouse") << true;
}

void E2eSpotlightSettings::bothWindowsChange()
{
    QFETCH(bool, byMouse);
    start();
    typePlan();
    const QImage before = quietPicture();
    openSettings();
    const auto typeColor = [this] {
        waitFor([this] { return focusedOther() && focusedOther()->id != m_settings.id; },
                "the colours don't get the keyboard");
        m_program->settledScreenshot(); // the text is selected by then
        m_program->type(QLatin1String(kSeed));
        press({"Return"});
        waitUntilOthersAre(1, "the colours don't close");
    };
    if (byMouse) {
        const int rowHeight = 36 + 12;
        const int first = 1 + 24 + 20 + 12 + 18 + 12 + 18; // below the titles, about
        openOneMore([&] { click(inCard(80, first)); }, "the menu of languages doesn't open");
        const QPoint menu = inCard(80, first + 18 + 4 + 6);
        click(menu + QPoint(0, 3 * 38 + 18));
        waitUntilOthersAre(1, "the menu of languages doesn't close");
        click(inCard(20, first + rowHeight)); // dark, the last one
        openOneMore([&] { click(inCard(18, first + 2 * rowHeight)); }, "no colours");
        typeColor();
        waitFor([this] { return focusedOther() && focusedOther()->id == m_settings.id; },
                "the keyboard doesn't come back to the settings");
        click(inCard(20, -1 - 24 - 18)); // OK
    } else {
        chooseLastLanguageAndDark();
        press({"Down"});
        openOneMore([this] { press({"space"}); }, "the colours don't open");
        typeColor();
        waitFor([this] { return focusedOther() && focusedOther()->id == m_settings.id; },
                "the keyboard doesn't come back to the settings");
        press({"Down", "Down", "Down", "Return"}); // types, cancel, OK
    }
    waitForSpotlight();
    QCOMPARE(m_program->setting(QStringLiteral("Theme/ForceTheme")).toInt(), 2);
    QCOMPARE(m_program->setting(QStringLiteral("Theme/SeedColor")).toString(),
             QLatin1String(kSeed));
    QCOMPARE(m_program->setting(QStringLiteral("Language/Code")).toString(), "ja");

    // The same as after a start with these settings.
    Theme::forceTheme = 2;
    Theme::seedColorHex = QLatin1String(kSeed);
    QTRY_COMPARE(quietPicture().pixelColor(kCard + QPoint(100, 4)), QColor(Theme::shellBg()));
    waitFor([this] { return isFileFound(); }, "the file is no longer found");
    const QImage changed = quietPicture();
    QVERIFY(spotlightIn(changed) != spotlightIn(before));
    const QImage shown = spotlightIn(changed);
    press({"ctrl+alt+space"});
    const auto isHomeUp = [this] {
        const XClient::Window home = m_program->homeWindow();
        return home.isViewable && m_desktop->client().focus() == home.id;
    };
    waitFor(isHomeUp, "the main window doesn't come up");
    const QRect home = m_program->homeWindow().geometry.adjusted(72, 32, -72, -32);
    QTRY_COMPARE(quietPicture().pixelColor(home.topLeft() + QPoint(0, 4)),
                 QColor(Theme::shellBg()));
    const QImage changedHome = quietPicture();
    Program::keep(changed, QStringLiteral("spotsettings-changed"));
    Program::keep(changedHome, QStringLiteral("spotsettings-changed-home"));

    restart();
    typePlan();
    QTRY_COMPARE(spotlightIn(quietPicture()), shown);
    press({"ctrl+alt+space"});
    waitFor(isHomeUp, "the main window doesn't come up again");
    QTRY_COMPARE(quietPicture().copy(home), changedHome.copy(home));
}

void E2eSpotlightSettings::leavingChangesNothing_data()
{
    QTest::addColumn<QString>("key"); // empty for a click on Cancel
    QTest::newRow("Esc") << "Escape";
    QTest::newRow("Backspace") << "BackSpace";
    QTest::newRow("Cancel") << "";
}

void E2eSpotlightSettings::leavingChangesNothing()
{
    QFETCH(QString, key);
    start();
    typePlan();
    const QImage before = quietPicture();
    const QByteArray stored = settingsFile();
    openSettings();
    chooseLastLanguageAndDark();
    if (key.isEmpty())
        press({"Down", "Down", "Down", "Return"}); // colour, types, Cancel
    else
        press({qPrintable(key)});
    waitForSpotlight();
    QCOMPARE(settingsFile(), stored);
    QTRY_COMPARE(spotlightIn(quietPicture()), spotlightIn(before));
    m_program->type(QStringLiteral("on"));
    press({"Return"}); // the text is still there, and what is typed goes behind it
    waitFor([this] { return !m_desktop->opened().isEmpty(); }, "no file is opened");
    QVERIFY(m_desktop->opened().constFirst().endsWith(QStringLiteral("plan-one.memo")));
}

void E2eSpotlightSettings::hotkeyWhileTheyAreOpen_data()
{
    QTest::addColumn<QString>("hotkey");
    QTest::newRow("its own") << "ctrl+alt+y";
    QTest::newRow("of the other window") << "ctrl+alt+space";
}

void E2eSpotlightSettings::hotkeyWhileTheyAreOpen()
{
    QFETCH(QString, hotkey);
    start();
    typePlan();
    openSettings();
    chooseLastLanguageAndDark();
    press({qPrintable(hotkey)});
    m_program->waitUntilSpotlightIsGone();
    // What has been set isn't lost: the dialog stays, and has the keyboard.
    waitFor([this] { return focusedOther() && focusedOther()->id == m_settings.id; },
            "the settings don't keep the keyboard");
    Program::keep(m_program->settledScreenshot(),
                  QStringLiteral("spotsettings-hidden-") + QLatin1String(QTest::currentDataTag()));
    press({"Down", "Down", "Down", "Down", "Return"}); // colour, types, cancel, OK
    waitUntilOthersAre(0, "the settings don't close");
    QCOMPARE(m_program->setting(QStringLiteral("Language/Code")).toString(), "ja");
    QVERIFY(!m_program->spotlight().isViewable);
    m_program->openSpotlight();
    QTRY_COMPARE(height(), kEmptyHeight);
    Theme::forceTheme = 2;
    typePlan();
}

void E2eSpotlightSettings::looks_data()
{
    QTest::addColumn<int>("theme");
    QTest::addColumn<QString>("language");
    QTest::addColumn<int>("scale");
    for (const char* language : {"en", "id", "es", "ja"}) {
        const QString code = QString::fromLatin1(language);
        QTest::addRow("light-%s", language) << 1 << code << 1;
        QTest::addRow("dark-%s", language) << 2 << code << 1;
    }
    QTest::newRow("light-es-double") << 1 << "es" << 2;
    QTest::newRow("dark-ja-double") << 2 << "ja" << 2;
}

void E2eSpotlightSettings::looks()
{
    QFETCH(int, theme);
    QFETCH(QString, language);
    QFETCH(int, scale);
    if (scale != 1) { // what is twice as large needs twice the screen
        m_program.reset();
        m_desktop.reset();
        m_desktop = std::make_unique<Desktop>(
            Desktop::Everything,
            QStringList{QStringLiteral("openbox"), QStringLiteral("--sm-disable")},
            QSize(Desktop::ScreenWidth, Desktop::ScreenHeight) * scale);
        m_program = std::make_unique<Program>(*m_desktop);
        m_program->setScale(scale);
    }
    const QString name = QStringLiteral("spotsettings-") + QLatin1String(QTest::currentDataTag());
    m_program->setSetting(QStringLiteral("Spotlight/DefaultScope"),
                          QStringList{QStringLiteral("Application"), QStringLiteral("URL"),
                                      QStringLiteral("File"), QStringLiteral("Folder"),
                                      QStringLiteral("Snippet"), QStringLiteral("Bulk")});
    QStringList folders;
    for (const char* folder : {"Documents", "Zoo", "A folder with quite a long name", "R&D"})
        folders.append(m_program->homeDir() + '/' + QLatin1String(folder));
    m_program->writeData(QStringLiteral("folderfilter.json"), FolderFilter::toBytes(folders));
    start(theme, language);
    Program::keep(quietPicture(), name + QStringLiteral("-chips"));
    const int chipRows = (height() / scale - kEmptyHeight - 18 + 8) / 36;
    QVERIFY2(chipRows >= 3, qPrintable(QString::number(chipRows)));

    click(kGear * scale);
    waitFor([this] { return focusedOther().has_value(); }, "the settings don't come up");
    const QRect dialog = focusedOther()->geometry;
    Program::keep(quietPicture(), name);
    QVERIFY2(dialog.width() >= 460 * scale && dialog.width() <= 540 * scale,
             qPrintable(QString::number(dialog.width())));
    press({"Down"});
    openOneMore([this] { press({"Return"}); }, "the menu of languages doesn't open");
    press({"Down"});
    Program::keep(m_program->settledScreenshot(), name + QStringLiteral("-languages"));
    press({"Escape"});
    waitUntilOthersAre(1, "the menu of languages doesn't close");
    press({"Down", "Down", "Down"});
    openOneMore([this] { press({"Return"}); }, "the menu of types doesn't open");
    press({"Down", "Down"});
    Program::keep(m_program->settledScreenshot(), name + QStringLiteral("-types"));
    press({"Escape"});
    waitUntilOthersAre(1, "the menu of types doesn't close");
    press({"Up"});
    openOneMore([this] { press({"Return"}); }, "the colours don't open");
    Program::keep(m_program->settledScreenshot(), name + QStringLiteral("-colours"));
    if (scale != 1) {
        m_program.reset();
        m_desktop = std::make_unique<Desktop>();
    }
}

QTEST_GUILESS_MAIN(E2eSpotlightSettings)
#include "tst_e2e_spotsettings.moc"
