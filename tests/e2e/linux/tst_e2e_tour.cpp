// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Localization.h"
#include "OnboardingDialog.h"
#include "Profile.h"
#include "SettingsKeys.h"
#include "Theme.h"
#include "TourOverlay.h"

#include <QtTest>

#include <memory>

/// The first start as a new user has it: the welcome, and the tour that makes a section and an item
/// on the live page, with the disk and the screen as the witnesses.
class E2eTour : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_home.reset(); }
    void fromWelcomeToTheEnd_data();
    void fromWelcomeToTheEnd();
    void leavingEarlyLeadsIntoTheTour_data();
    void leavingEarlyLeadsIntoTheTour();
    void keysOfTheSlides();
    void killedWelcomeComesAgain();
    void calledDuringTheWelcome_data();
    void calledDuringTheWelcome();
    void goesAndComesInTheMiddle_data();
    void goesAndComesInTheMiddle();
    void cancelledFormRewinds_data();
    void cancelledFormRewinds();
    void cancelledSectionWaits();
    void onlyTheHoleIsOpen();
    void themeChosenMeanwhileStands();
    void existingDataComesBack_data();
    void existingDataComesBack();
    void startedAgain();

private:
    enum Way { ByKeys, ByMouse };

    Program& program() const { return m_home->program(); }
    void waitFor(const std::function<bool()>& condition, const char* failure) const;
    XClient::Window visible(int width) const;
    XClient::Window welcome() const { return visible(OnboardingDialog::DialogWidth); }
    XClient::Window card() const { return visible(TourOverlay::CardWidth); }
    QRect geometryOf(xcb_window_t id) const;
    QImage cardPicture() const;
    void clickAt(const QPoint& place) const;
    QPoint onScreen(const QPoint& place) const;

    void startAnew() const;
    void waitForWelcome() const;
    void chooseLanguage(int index, Way way) const;
    void leafThrough(Way way) const;

    QPoint cardPlace(int step) const;
    QRect target(int step) const;
    bool isAtStep(int step) const;
    bool isHoleOpen(const QRect& target) const;
    void waitForStep(int step) const;
    void clickNext() const;
    void startTour(bool isDark = true) const;
    void makeSection(const QString& name, Way way) const;
    void openForm(Way way) const;
    void chooseFileType(Way way) const;
    void nameItem(const QString& name, Way way) const;
    void giveFile(const QString& path, Way way) const;
    void goTo(int step, int from = MainWindow::TourWelcome) const;
    void waitForEnd() const;
    void waitForLight() const;
    void verifyWhatWasMade(const QStringList& before) const;
    void startFromTheSettings() const;
    QString file() const { return program().homeDir() + QStringLiteral("/note.txt"); }
    void keepPicture(const QString& name) const;
    bool isCompleted() const;
    QColor panel() const;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<SettingsKeys> m_home;
};

namespace
{

const QString kFirstSection = QStringLiteral("Default");
const QString kSection = QStringLiteral("Mine");
const QString kItem = QStringLiteral("Notes");
const QString kCompletedKey = QStringLiteral("Onboarding/Completed");
const QString kLanguageKey = QStringLiteral("Language/Code");
const QString kThemeKey = QStringLiteral("Theme/ForceTheme");
constexpr int kLight = 1;
constexpr int kDark = 2;
constexpr int kAboutCategory = 3;
constexpr QPoint kGear = Program::SpotlightCard + QPoint(18 + 484 - 6 - 16, 18 + 22);

// From the corner of the welcome.
constexpr QPoint kLanguages[] = {{110, 212}, {250, 212}, {390, 212}};
constexpr QPoint kNext{430, 289};
constexpr QPoint kPrevious{318, 289}; ///< in all languages

constexpr int kCardGap = 12;             ///< between a dialog and the card beside it
constexpr QPoint kSaveSection{225, 333}; ///< from the corner of the section's dialog

// From the corner of the window.
constexpr int kMargin = 32; ///< for its shadow
constexpr QSize kInside{MainWindow::WINDOW_WIDTH_GRID - 2 * kMargin,
                        MainWindow::WINDOW_HEIGHT_GRID - 2 * kMargin};
constexpr QPoint kPanel{400, 560};
constexpr QPoint kSettingsButton{556, 72};

/// What the steps point at, from the corner of the window; null for nothing.
constexpr QRect kTargets[] = {
    {},                  // the welcome
    {44, 56, 32, 32},    // the plus, for a section
    {44, 112, 529, 28},  // the strip
    {44, 56, 32, 32},    // the plus, for an item
    {102, 244, 198, 36}, // the type
    {154, 159, 360, 40}, // the name
    {314, 300, 200, 36}, // the browse button
    {316, 502, 198, 36}, // the save button
    {44, 176, 176, 132}, // the first tile
    {157, 62, 364, 20},  // the search field
};
static_assert(std::size(kTargets) == MainWindow::TourStepCount);

QVector<LauncherElement> threeItems()
{
    QVector<LauncherElement> items;
    for (int i = 1; i <= 3; ++i) {
        items.append(Profile::item(QStringLiteral("Item %1").arg(i), QStringLiteral("Snippet"),
                                   QStringLiteral("text %1").arg(i)));
    }
    return items;
}

} // namespace

void E2eTour::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

void E2eTour::init()
{
    m_home = std::make_unique<SettingsKeys>(*m_desktop);
    Theme::forceTheme = kLight; // for the colours that are expected
    program().beNewUser();
    program().writeHomeFile(QStringLiteral("note.txt"));
}

void E2eTour::waitFor(const std::function<bool()>& condition, const char* failure) const
{
    m_home->waitOrGiveUp(condition, failure);
}

XClient::Window E2eTour::visible(int width) const
{
    for (const XClient::Window& window : m_desktop->client().windowsOf(program().processId())) {
        if (window.isViewable && window.geometry.width() == width)
            return window;
    }
    return {};
}

QRect E2eTour::geometryOf(xcb_window_t id) const
{
    for (const XClient::Window& window : m_desktop->client().windowsOf(program().processId())) {
        if (window.id == id)
            return window.geometry;
    }
    program().giveUp("the window has gone");
}

QPoint E2eTour::onScreen(const QPoint& place) const
{
    return program().homeWindow().geometry.topLeft() + place;
}

QImage E2eTour::cardPicture() const
{
    // Inside its round corners.
    return m_home->settledScreenshot().copy(card().geometry.adjusted(8, 8, -8, -8));
}

void E2eTour::clickAt(const QPoint& place) const
{
    m_home->clickOnScreen(place);
}

QColor E2eTour::panel() const
{
    return QColor(m_desktop->client().pixel(onScreen(kPanel)));
}

bool E2eTour::isCompleted() const
{
    return program().setting(kCompletedKey).toBool();
}

void E2eTour::startAnew() const
{
    program().startWithoutWaiting();
    waitForWelcome();
}

void E2eTour::waitForWelcome() const
{
    waitFor(
        [this] {
            const XClient::Window dialog = welcome();
            return dialog.id != XCB_WINDOW_NONE && m_desktop->client().focus() == dialog.id;
        },
        "the welcome doesn't come up");
    m_home->settledScreenshot(); // it is asked whether it is still there from here on
}

void E2eTour::chooseLanguage(int index, Way way) const
{
    const QImage question = m_home->settledScreenshot();
    if (way == ByMouse) {
        clickAt(welcome().geometry.topLeft() + kLanguages[index]);
    } else {
        m_home->press(HomePage::Right, index);
        m_home->press({HomePage::Space});
    }
    waitFor([&] { return m_desktop->client().screenshot() != question; }, "nothing is chosen");
}

/// From the slide that welcomes: to the last one, by a detour, and into the tour.
void E2eTour::leafThrough(Way way) const
{
    const auto go = [&](xcb_keysym_t key, const QPoint& place) {
        if (way == ByMouse)
            clickAt(welcome().geometry.topLeft() + place);
        else
            m_home->press({key});
        return m_home->settledScreenshot();
    };
    const QImage second = go(HomePage::Return, kNext);
    const QImage third = go(HomePage::Right, kNext);
    QVERIFY(third != second);
    QCOMPARE(go(HomePage::Left, kPrevious), second);
    QCOMPARE(go(HomePage::Right, kNext), third);
    QVERIFY(go(HomePage::Return, kNext) != third);
    QVERIFY(!isCompleted());
    go(HomePage::Right, kNext);
}

/// The control and some air around it are as light as ever, and what is around that is dimmed.
bool E2eTour::isHoleOpen(const QRect& target) const
{
    constexpr int kInsideBy = 2;
    constexpr int kOutsideBy = 5; // past the ring
    constexpr int kDim = 150;     // of 255
    const auto isDimmed = [this](const QPoint& inside, const QPoint& outside) {
        const QColor lit(m_desktop->client().pixel(onScreen(inside)));
        const QColor dimmed(m_desktop->client().pixel(onScreen(outside)));
        const auto isChannel = [](int lightness, int dim) {
            return qAbs(lightness * (255 - kDim) / 255 - dim) <= 1;
        };
        return lit.lightness() < 128 && isChannel(lit.red(), dimmed.red()) &&
               isChannel(lit.green(), dimmed.green()) && isChannel(lit.blue(), dimmed.blue());
    };
    const QPoint middle = target.center();
    const auto above = [&](int by) { return QPoint(middle.x(), target.top() - by); };
    const auto below = [&](int by) { return QPoint(middle.x(), target.bottom() + by); };
    const auto left = [&](int by) { return QPoint(target.left() - by, middle.y()); };
    const auto right = [&](int by) { return QPoint(target.right() + by, middle.y()); };
    return isDimmed(above(kInsideBy), above(kOutsideBy)) &&
           isDimmed(below(kInsideBy), below(kOutsideBy)) &&
           isDimmed(left(kInsideBy), left(kOutsideBy)) &&
           isDimmed(right(kInsideBy), right(kOutsideBy));
}

/// Where the card of a step goes, from the corner of the window.
QPoint E2eTour::cardPlace(int step) const
{
    const QPoint corner(kMargin, kMargin);
    const QRect& target = kTargets[step];
    return corner + TourOverlay::cardPlace(kInside,
                                           target.isNull() ? QRect() : target.translated(-corner),
                                           card().geometry.size());
}

/// What a step points at, with the card up. The form is in the middle of the page, as high as what
/// is in it.
QRect E2eTour::target(int step) const
{
    const bool isInForm = step >= MainWindow::TourPickType && step <= MainWindow::TourSaveItem;
    if (!isInForm)
        return kTargets[step];
    return kTargets[step].translated(0, card().geometry.top() - onScreen(cardPlace(step)).y());
}

bool E2eTour::isAtStep(int step) const
{
    constexpr int kFormSlack = 30;
    if (!m_home->isUp() || card().id == XCB_WINDOW_NONE) // the card never has the keyboard
        return false;
    const QRect pointedAt = target(step);
    const QPoint off = card().geometry.topLeft() - onScreen(cardPlace(step)) -
                       (pointedAt.topLeft() - kTargets[step].topLeft());
    return off.isNull() && qAbs(pointedAt.top() - kTargets[step].top()) <= kFormSlack &&
           (pointedAt.isNull() || isHoleOpen(pointedAt));
}

void E2eTour::waitForStep(int step) const
{
    const QByteArray failure = "the tour isn't at step " + QByteArray::number(step);
    waitFor([this, step] { return isAtStep(step); }, failure.constData());
}

void E2eTour::clickNext() const
{
    constexpr QPoint kFromCorner{40, 26};
    clickAt(card().geometry.bottomRight() - kFromCorner);
}

/// With the welcome over.
void E2eTour::startTour(bool isDark) const
{
    program().setSetting(kThemeKey, isDark ? kDark : kLight);
    startAnew();
    m_home->press({HomePage::Escape});
    waitForStep(MainWindow::TourWelcome);
}

void E2eTour::makeSection(const QString& name, Way way) const
{
    if (way == ByMouse)
        clickAt(onScreen(HomePage::AddButton));
    else
        m_home->openAddMenu();
    m_home->chooseRow(HomePage::AddSectionRow);
    const xcb_window_t dialog = m_home->waitForDialog();
    const QRect place = geometryOf(dialog);
    waitFor([&] { return card().geometry.topLeft() == place.topRight() + QPoint(1 + kCardGap, 0); },
            "the card isn't beside the dialog");
    m_home->type(name);
    if (way == ByMouse)
        clickAt(place.topLeft() + kSaveSection);
    else
        m_home->press({HomePage::Return});
}

void E2eTour::openForm(Way way) const
{
    if (way == ByMouse)
        clickAt(onScreen(HomePage::AddButton));
    else
        m_home->openAddMenu();
    m_home->chooseRow(HomePage::AddItemRow);
}

void E2eTour::chooseFileType(Way way) const
{
    if (way == ByMouse)
        clickAt(onScreen(target(MainWindow::TourPickType).center()));
    else
        m_home->press({HomePage::Return, HomePage::Return}); // past the name
    m_home->chooseRow(HomePage::FileRow);
}

void E2eTour::nameItem(const QString& name, Way way) const
{
    if (way == ByMouse)
        clickAt(onScreen(target(MainWindow::TourFillName).center()));
    else
        m_home->press({HomePage::Up});
    m_home->type(name);
}

void E2eTour::giveFile(const QString& path, Way way) const
{
    if (way == ByMouse) {
        clickAt(onScreen(target(MainWindow::TourPickFile).center()));
        m_home->waitForDialog();
        m_home->chooseFile(path);
    } else {
        m_home->press(HomePage::Down, 3); // past the type and the button for browsing
        m_home->type(path);
    }
}

/// Takes the tour from a step to a later one.
void E2eTour::goTo(int step, int from) const
{
    const std::function<void()> acts[] = {
        [this] { clickNext(); },
        [this] { makeSection(kSection, ByMouse); },
        [this] { clickNext(); },
        [this] { openForm(ByMouse); },
        [this] { chooseFileType(ByKeys); },
        [this] {
            nameItem(kItem, ByKeys);
            clickNext();
        },
        [this] { giveFile(file(), ByKeys); },
        [this] {
            m_home->press({HomePage::Down, HomePage::Right, HomePage::Return});
        },
        [this] { clickNext(); },
    };
    for (int at = from; at < step; ++at) {
        waitForStep(at);
        acts[at]();
    }
    waitForStep(step);
}

void E2eTour::waitForEnd() const
{
    waitFor([this] { return card().id == XCB_WINDOW_NONE; }, "the card stays");
    m_home->waitForHome();
}

void E2eTour::waitForLight() const
{
    waitFor([this] { return panel() == QColor(Theme::panelBg()); }, "it isn't light again");
}

void E2eTour::keepPicture(const QString& name) const
{
    Program::keep(m_home->settledScreenshot(), name);
}

/// Nothing but the section and the item of the tour has come to the document.
void E2eTour::verifyWhatWasMade(const QStringList& before) const
{
    QCOMPARE(m_home->sections(), before + QStringList{kSection});
    QCOMPARE(m_home->itemNames(kSection), QStringList{kItem});
    const QJsonObject item = m_home->item(kSection, 0);
    QCOMPARE(item.value(QStringLiteral("shortcutType")).toString(), QStringLiteral("File"));
    QCOMPARE(item.value(QStringLiteral("value")).toString(), file());
}

void E2eTour::fromWelcomeToTheEnd_data()
{
    QTest::addColumn<QString>("stored"); // the language that is there already
    QTest::addColumn<int>("choice");     // in the welcome; -1: it is left
    QTest::addColumn<QString>("language");
    QTest::addColumn<int>("way");
    QTest::newRow("English by keys") << QString() << 0 << "en" << int(ByKeys);
    QTest::newRow("Indonesian by mouse") << QString() << 1 << "id" << int(ByMouse);
    QTest::newRow("Spanish by keys") << QString() << 2 << "es" << int(ByKeys);
    QTest::newRow("Japanese by mouse") << "ja" << -1 << "ja" << int(ByMouse);
}

void E2eTour::fromWelcomeToTheEnd()
{
    QFETCH(QString, stored);
    QFETCH(int, choice);
    QFETCH(QString, language);
    QFETCH(int, way);
    const Way how = Way(way);
    if (!stored.isEmpty())
        program().setSetting(kLanguageKey, stored);
    program().setSetting(kThemeKey, kLight);
    startAnew();
    keepPicture("welcome-" + language);
    if (choice >= 0) {
        chooseLanguage(choice, how);
        QTRY_COMPARE(program().setting(kLanguageKey).toString(), language);
        QVERIFY(!isCompleted());
        leafThrough(how);
    } else {
        m_home->press({HomePage::Escape});
    }
    waitForStep(MainWindow::TourWelcome);
    QVERIFY(isCompleted());
    QCOMPARE(program().setting(kLanguageKey).toString(), language);
    QCOMPARE(m_home->sections(), QStringList());

    keepPicture("tour-0-" + language);
    clickNext();
    waitForStep(MainWindow::TourMakeSection);
    keepPicture("tour-1-" + language);
    makeSection(kSection, how);
    waitForStep(MainWindow::TourSectionMade);
    keepPicture("tour-2-" + language);
    clickNext();
    waitForStep(MainWindow::TourOpenItemForm);
    keepPicture("tour-3-" + language);
    openForm(how);
    waitForStep(MainWindow::TourPickType);
    keepPicture("tour-4-" + language);
    chooseFileType(how);
    waitForStep(MainWindow::TourFillName);
    keepPicture("tour-5-" + language);
    nameItem(kItem, how);
    clickNext();
    waitForStep(MainWindow::TourPickFile);
    keepPicture("tour-6-" + language);
    giveFile(file(), how);
    waitForStep(MainWindow::TourSaveItem);
    keepPicture("tour-7-" + language);
    if (how == ByMouse)
        clickAt(onScreen(target(MainWindow::TourSaveItem).center()));
    else
        m_home->press({HomePage::Down, HomePage::Right, HomePage::Return});
    waitForStep(MainWindow::TourItemMade);
    keepPicture("tour-8-" + language);
    m_home->press({HomePage::Return}); // as the card tells
    m_home->waitUntilGone();
    QTRY_COMPARE(m_desktop->opened(), QStringList{QUrl::fromLocalFile(file()).toString()});
    QVERIFY(card().id == XCB_WINDOW_NONE); // it goes along
    m_home->show();
    waitForStep(MainWindow::TourItemMade);
    clickNext();
    waitForStep(MainWindow::TourFinish);
    keepPicture("tour-9-" + language);
    clickNext();
    waitForEnd();
    waitForLight();
    verifyWhatWasMade({kFirstSection});
    QCOMPARE(program().setting(kThemeKey).toInt(), kLight);

    // Who has had both has them no more.
    m_home->restart();
    m_home->settledScreenshot();
    QVERIFY(welcome().id == XCB_WINDOW_NONE);
    QVERIFY(card().id == XCB_WINDOW_NONE);
    QCOMPARE(panel(), QColor(Theme::panelBg()));
    QCOMPARE(program().setting(kLanguageKey).toString(), language);
}

void E2eTour::leavingEarlyLeadsIntoTheTour_data()
{
    QTest::addColumn<int>("slide");
    QTest::addColumn<int>("key"); // 0: the window manager closes it
    QTest::newRow("Esc on the languages") << 0 << int(HomePage::Escape);
    QTest::newRow("Backspace on the languages") << 0 << int(HomePage::BackSpace);
    QTest::newRow("closed on the languages") << 0 << 0;
    QTest::newRow("Esc on the first slide") << 1 << int(HomePage::Escape);
    QTest::newRow("Backspace on the third slide") << 3 << int(HomePage::BackSpace);
    QTest::newRow("closed on the last slide") << 4 << 0;
}

void E2eTour::leavingEarlyLeadsIntoTheTour()
{
    QFETCH(int, slide);
    QFETCH(int, key);
    startAnew();
    if (slide > 0) {
        chooseLanguage(2, ByKeys);
        m_home->press(HomePage::Return, slide - 1);
    }
    QVERIFY(!isCompleted());
    if (key == 0)
        m_desktop->client().askToClose(welcome().id);
    else
        m_home->press({xcb_keysym_t(key)});
    waitForStep(MainWindow::TourWelcome);
    QVERIFY(isCompleted());
    QCOMPARE(program().setting(kLanguageKey).toString(),
             slide > 0 ? QStringLiteral("es") : QString());
}

void E2eTour::keysOfTheSlides()
{
    startAnew();
    const QImage languages = m_home->settledScreenshot();
    // Nobody chooses a language without having looked.
    m_home->press({HomePage::Return});
    QCOMPARE(m_home->settledScreenshot(), languages);
    m_home->press({HomePage::Left, HomePage::Return}); // the last one has the focus
    QVERIFY(m_home->settledScreenshot() != languages);
    QVERIFY(!program().setting(kLanguageKey).isValid());
    m_home->press({HomePage::Right});
    QCOMPARE(m_home->settledScreenshot(), languages);
    chooseLanguage(0, ByKeys);
    // From here there is no way back to the languages.
    const QImage first = m_home->settledScreenshot();
    m_home->press({HomePage::Left});
    QCOMPARE(m_home->settledScreenshot(), first);
    QList<QImage> slides{first};
    for (int slide = 2; slide <= 4; ++slide) {
        m_home->press({HomePage::Right});
        slides.append(m_home->settledScreenshot());
        QVERIFY(slides.last() != slides.at(slide - 2));
    }
    for (int slide = 3; slide >= 1; --slide) {
        m_home->press({HomePage::Left});
        QCOMPARE(m_home->settledScreenshot(), slides.at(slide - 1));
    }
    QVERIFY(!isCompleted());
}

void E2eTour::killedWelcomeComesAgain()
{
    startAnew();
    const QImage english = m_home->settledScreenshot();
    chooseLanguage(2, ByKeys);
    QTRY_COMPARE(program().setting(kLanguageKey).toString(), QStringLiteral("es"));
    program().process().kill();
    QVERIFY(program().process().waitForFinished(Desktop::PatienceMs));
    QVERIFY(!isCompleted());
    startAnew();
    QVERIFY(m_home->settledScreenshot() != english); // Spanish is the one that stands out
    QCOMPARE(program().setting(kLanguageKey).toString(), QStringLiteral("es"));
}

void E2eTour::calledDuringTheWelcome_data()
{
    QTest::addColumn<bool>("isByHotkey");
    QTest::newRow("by its hotkey") << true;
    QTest::newRow("by a second start") << false;
}

void E2eTour::calledDuringTheWelcome()
{
    QFETCH(bool, isByHotkey);
    startAnew();
    const auto call = [&] {
        if (isByHotkey) {
            program().key(QStringLiteral("ctrl+alt+space"));
            return;
        }
        QProcess second;
        second.setProcessEnvironment(m_desktop->environment());
        second.start(Program::binary(), QStringList());
        QVERIFY(second.waitForFinished(Desktop::PatienceMs));
    };
    // The window goes and comes under the welcome, which keeps the keyboard.
    const QImage before = m_home->settledScreenshot();
    call();
    if (isByHotkey) {
        m_home->waitUntilGone();
        call();
    }
    waitForWelcome();
    QVERIFY(program().homeWindow().isViewable);
    QCOMPARE(m_home->settledScreenshot(), before); // and lies above
    chooseLanguage(0, ByKeys);
    QVERIFY(!isCompleted());
    // Left while the window is away, it leads into the tour when that comes back.
    if (isByHotkey) {
        call();
        m_home->waitUntilGone();
    }
    m_home->press({HomePage::Escape});
    waitFor([this] { return welcome().id == XCB_WINDOW_NONE; }, "the welcome doesn't go");
    if (isByHotkey) {
        QVERIFY(card().id == XCB_WINDOW_NONE);
        call();
    }
    waitForStep(MainWindow::TourWelcome);
}

void E2eTour::goesAndComesInTheMiddle_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("after");
    const auto row = [](const char* name, int step, int after) {
        QTest::newRow(name) << step << after;
    };
    row("welcome", MainWindow::TourWelcome, MainWindow::TourWelcome);
    row("section", MainWindow::TourMakeSection, MainWindow::TourMakeSection);
    row("strip", MainWindow::TourSectionMade, MainWindow::TourSectionMade);
    // A form doesn't outlive the window's going.
    row("type", MainWindow::TourPickType, MainWindow::TourOpenItemForm);
    row("save", MainWindow::TourSaveItem, MainWindow::TourOpenItemForm);
    row("finish", MainWindow::TourFinish, MainWindow::TourFinish);
}

void E2eTour::goesAndComesInTheMiddle()
{
    QFETCH(int, step);
    QFETCH(int, after);
    startTour();
    goTo(after);
    const QImage before = cardPicture();
    goTo(step, after);
    program().key(QStringLiteral("ctrl+alt+space"));
    m_home->waitUntilGone();
    QVERIFY(card().id == XCB_WINDOW_NONE);
    program().key(QStringLiteral("ctrl+alt+space"));
    waitForStep(after);
    QCOMPARE(cardPicture(), before);
    // Spotlight sends it away as well, and it is where it was after that.
    program().openSpotlight();
    m_home->waitUntilGone();
    QVERIFY(card().id == XCB_WINDOW_NONE);
    program().key(QStringLiteral("ctrl+alt+space"));
    waitForStep(after);
    QCOMPARE(cardPicture(), before);
}

void E2eTour::cancelledFormRewinds_data()
{
    QTest::addColumn<int>("step");
    QTest::newRow("type") << int(MainWindow::TourPickType);
    QTest::newRow("name") << int(MainWindow::TourFillName);
    QTest::newRow("file") << int(MainWindow::TourPickFile);
    QTest::newRow("save") << int(MainWindow::TourSaveItem);
}

void E2eTour::cancelledFormRewinds()
{
    QFETCH(int, step);
    startTour();
    goTo(MainWindow::TourOpenItemForm);
    const QImage form = cardPicture();
    goTo(step, MainWindow::TourOpenItemForm);
    m_home->press({HomePage::Escape});
    waitForStep(MainWindow::TourOpenItemForm);
    QCOMPARE(cardPicture(), form); // and not the step that points there for a section
    QCOMPARE(m_home->itemNames(kSection), QStringList());
    goTo(MainWindow::TourFinish, MainWindow::TourOpenItemForm);
    verifyWhatWasMade({kFirstSection});
}

void E2eTour::cancelledSectionWaits()
{
    startTour();
    goTo(MainWindow::TourMakeSection);
    const QImage before = cardPicture();
    m_home->openAddMenu();
    m_home->press({HomePage::Escape});
    waitForStep(MainWindow::TourMakeSection);
    clickAt(onScreen(HomePage::AddButton));
    m_home->chooseRow(HomePage::AddSectionRow);
    m_home->waitForDialog();
    waitFor([&] { return cardPicture() != before; }, "the card doesn't tell of the dialog");
    // The window behind it is not dimmed by the tour meanwhile.
    QVERIFY(!isHoleOpen(kTargets[MainWindow::TourMakeSection]));
    m_home->press({HomePage::Escape});
    waitForStep(MainWindow::TourMakeSection);
    QCOMPARE(cardPicture(), before);
    QCOMPARE(m_home->sections(), QStringList());
    goTo(MainWindow::TourSectionMade, MainWindow::TourMakeSection);
}

void E2eTour::onlyTheHoleIsOpen()
{
    startTour();
    const QImage before = m_home->settledScreenshot();
    clickAt(onScreen(kSettingsButton));
    clickAt(onScreen(HomePage::AddButton));
    clickAt(card().geometry.center()); // which doesn't take the keyboard either
    m_home->press({HomePage::Tab});
    QCOMPARE(m_home->settledScreenshot(), before);
    waitForStep(MainWindow::TourWelcome);
    goTo(MainWindow::TourMakeSection);
    const QImage section = m_home->settledScreenshot();
    clickAt(onScreen(HomePage::TemplateButton));
    QCOMPARE(m_home->settledScreenshot(), section);
    clickAt(onScreen(HomePage::AddButton));
    QVERIFY(m_home->settledScreenshot() != section); // the menu
}

void E2eTour::themeChosenMeanwhileStands()
{
    startTour(false);
    program().openSpotlight();
    clickAt(kGear);
    waitFor(
        [this] {
            const xcb_window_t focus = m_desktop->client().focus();
            return focus != program().spotlight().id && focus != program().homeWindow().id;
        },
        "the settings of Spotlight don't come up");
    m_home->settledScreenshot();
    m_home->press({HomePage::Down, HomePage::Down, HomePage::Left, HomePage::Left});
    m_home->press({HomePage::Right}); // past the system's choice
    // Colour, types, cancel, OK.
    m_home->press({HomePage::Down, HomePage::Down, HomePage::Down, HomePage::Down});
    m_home->press({HomePage::Return});
    waitFor([this] { return program().isSpotlightUp(); }, "Spotlight doesn't have the keyboard");
    program().key(QStringLiteral("ctrl+alt+space"));
    m_home->waitForHome();
    waitForLight();
    QVERIFY(card().id == XCB_WINDOW_NONE);
    QCOMPARE(program().setting(kThemeKey).toInt(), kLight);
}

void E2eTour::existingDataComesBack_data()
{
    QTest::addColumn<bool>("isNewUser");
    QTest::newRow("at the first start") << true;
    QTest::newRow("from the settings") << false;
}

void E2eTour::existingDataComesBack()
{
    QFETCH(bool, isNewUser);
    program().setSetting(kThemeKey, kLight);
    program().writeData(QStringLiteral("data.json"), Profile::document(threeItems()));
    const QByteArray document = program().readData(QStringLiteral("data.json"));
    if (isNewUser) {
        startAnew();
        m_home->press({HomePage::Escape});
    } else {
        program().setSetting(kCompletedKey, true);
        m_home->start();
        startFromTheSettings();
    }
    waitForStep(MainWindow::TourWelcome);
    const QStringList sections = m_home->sections();
    QCOMPARE(program().readData(QStringLiteral("data.json")), document);
    // Where the first tile would be there is nothing.
    const QImage empty = m_home->settledScreenshot();
    const QPoint tile = onScreen(HomePage::tile(0));
    QCOMPARE(empty.pixelColor(tile), empty.pixelColor(onScreen(kPanel)));
    QCOMPARE(empty.pixelColor(tile - QPoint(60, 40)), empty.pixelColor(onScreen(kPanel)));
    goTo(MainWindow::TourItemMade, MainWindow::TourWelcome);
    const QByteArray settings = program().readData(QStringLiteral("settings.ini"));
    goTo(MainWindow::TourFinish, MainWindow::TourItemMade);
    clickNext();
    waitForEnd();
    waitForLight();
    verifyWhatWasMade(sections);
    QCOMPARE(program().readData(QStringLiteral("settings.ini")), settings);
    QCOMPARE(program().setting(kThemeKey).toInt(), kLight);
    // They are on the page again as well: the first of them is run.
    m_home->settledScreenshot(); // in full view: else the hotkey would show it
    m_home->showAgain();
    m_home->press({HomePage::Left, HomePage::Down, HomePage::Return});
    m_home->waitUntilGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("text 1"));
}

void E2eTour::startFromTheSettings() const
{
    m_home->openRow(kAboutCategory, 0);
    m_home->press({HomePage::Return});
}

void E2eTour::startedAgain()
{
    startTour();
    goTo(MainWindow::TourFinish);
    clickNext();
    waitForEnd();
    m_home->settledScreenshot();
    startFromTheSettings();
    waitForStep(MainWindow::TourWelcome);
    QCOMPARE(m_home->itemNames(kSection), QStringList{kItem});
    clickNext();
    waitForStep(MainWindow::TourMakeSection);
    makeSection(QStringLiteral("Second"), ByMouse);
    waitForStep(MainWindow::TourSectionMade);
    QCOMPARE(m_home->sections(), (QStringList{kFirstSection, kSection, "Second"}));
}

QTEST_GUILESS_MAIN(E2eTour)
#include "tst_e2e_tour.moc"
