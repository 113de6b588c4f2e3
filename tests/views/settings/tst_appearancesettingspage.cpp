// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AccentPicker.h"
#include "AppearanceSettingsPage.h"
#include "AutoQuitBlocker.h"
#include "CustomColorPickerDialog.h"
#include "CustomMessageBox.h"
#include "FakeSystemTheme.h"
#include "GlyphWidgets.h"
#include "LanguageRows.h"
#include "Localization.h"
#include "Settings.h"
#include "SettingsPageDriver.h"
#include "TestHome.h"
#include "UiDriver.h"

#include <QButtonGroup>
#include <QDir>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace
{

const QString kThemeKey = QStringLiteral("Theme/ForceTheme");
const QString kSeedKey = QStringLiteral("Theme/SeedColor");

} // namespace

class AppearanceSettingsPageTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup() { m_page.reset(); }
    void cards_data();
    void cards();
    void looks();
    void checksTheModeInForce_data();
    void checksTheModeInForce();
    void changesTheMode_data();
    void changesTheMode();
    void theModeInForceIsNoChange_data();
    void theModeInForceIsNoChange();
    void keepsWindowsOpenWhileTheModeChanges();
    void autoFollowsTheDesktop();
    void swatchShowsTheSeed();
    void changesTheAccent_data();
    void changesTheAccent();
    void opensOnTheAccentInForce();
    void mayBeRebuiltByWhoeverIsTold_data();
    void mayBeRebuiltByWhoeverIsTold();
    void mayGoWhileItAsks_data();
    void mayGoWhileItAsks();

private:
    void show();
    QPushButton* button(const char* name) const;

    std::unique_ptr<AppearanceSettingsPage> m_page;
};

void AppearanceSettingsPageTest::init()
{
    QVERIFY(QDir(TestHome::dataDir()).removeRecursively());
    FakeSystemTheme::setDark(false);
    Tr::currentLang = Lang::En;
    Theme::loadSettings();
    Theme::forceTheme = 1;
}

void AppearanceSettingsPageTest::show()
{
    m_page = std::make_unique<AppearanceSettingsPage>();
    m_page->resize(420, 180);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
}

QPushButton* AppearanceSettingsPageTest::button(const char* name) const
{
    return SettingsPageDriver::button(*m_page, name);
}

void AppearanceSettingsPageTest::cards_data()
{
    addLanguageRows();
}

void AppearanceSettingsPageTest::cards()
{
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    show();
    QCOMPARE(SettingsPageDriver::titlesOf(*m_page),
             QStringList({Tr::t("settings.app.theme_title"), Tr::t("settings.app.accent_title")}));
    QStringList texts;
    QStringList names;
    for (const QPushButton* one : m_page->findChildren<QPushButton*>()) {
        texts.append(one->text());
        names.append(one->objectName());
    }
    QCOMPARE(texts,
             QStringList({Tr::t("settings.app.theme_auto"), Tr::t("settings.app.theme_light"),
                          Tr::t("settings.app.theme_dark"), ""}));
    QCOMPARE(names,
             QStringList({"themeBtn_auto", "themeBtn_light", "themeBtn_dark", "accentSwatch"}));
}

void AppearanceSettingsPageTest::looks()
{
    show();
    QCOMPARE(m_page->styleSheet(), "background: transparent;");
    QCOMPARE(m_page->layout()->contentsMargins(), QMargins(16, 16, 16, 16));
    QCOMPARE(m_page->layout()->spacing(), 16);
    const ColorTokens c = Theme::colors();
    for (const char* name : {"themeBtn_auto", "themeBtn_light", "themeBtn_dark"}) {
        const QPushButton* pill = button(name);
        const QString selector = QStringLiteral("QPushButton#%1").arg(QLatin1String(name));
        QCOMPARE(pill->height(), 36);
        QCOMPARE(pill->cursor().shape(), Qt::PointingHandCursor);
        QCOMPARE(pill->focusPolicy(), Qt::StrongFocus);
        QCOMPARE(pill->styleSheet(),
                 QStringLiteral("%1 { background-color: %2; color: %3; border: 2px solid "
                                "transparent; border-radius: 18px; padding: 0 14px; font-size: "
                                "12px; font-weight: bold; outline: 0; }")
                         .arg(selector, c.surfaceContainerHighest, c.onSurface) +
                     Theme::choiceBtnStates(c, selector));
    }
    // In pixels: the ground shows through beside the cards, and the choice stands out.
    m_page->setFocus();
    const QImage image = Pixels::imageOf(*m_page);
    QCOMPARE(image.pixelColor(8, 90), QColor(Qt::white));
    QCOMPARE(image.pixelColor(200, 20), QColor(Theme::boxBg()));
    QCOMPARE(SettingsPageDriver::fillOf(*m_page, *button("themeBtn_light")),
             QColor(getItemTheme().key));
    QCOMPARE(SettingsPageDriver::fillOf(*m_page, *button("themeBtn_dark")),
             QColor(c.surfaceContainerHighest));
    const QList<QFrame*> cards = SettingsPageDriver::cardsOf(*m_page);
    QCOMPARE(cards.at(0)->geometry().topLeft(), QPoint(16, 16));
    QCOMPARE(cards.at(0)->geometry().right() + 1, 420 - 16);
    QCOMPARE(cards.at(1)->geometry().top(), cards.at(0)->geometry().bottom() + 1 + 16);
    QCOMPARE(button("themeBtn_light")->x(), button("themeBtn_auto")->geometry().right() + 1 + 8);
}

void AppearanceSettingsPageTest::checksTheModeInForce_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QStringList>("checked");
    QTest::newRow("auto") << 0 << QStringList("themeBtn_auto");
    QTest::newRow("light") << 1 << QStringList("themeBtn_light");
    QTest::newRow("dark") << 2 << QStringList("themeBtn_dark");
    QTest::newRow("none of them") << 77 << QStringList();
    QTest::newRow("below them") << -1 << QStringList();
}

void AppearanceSettingsPageTest::checksTheModeInForce()
{
    QFETCH(int, mode);
    Theme::forceTheme = mode;
    show();
    QTEST(SettingsPageDriver::checkedOf(*m_page), "checked");
    QVERIFY(!Settings::contains(kThemeKey)); // to show it changes nothing
}

void AppearanceSettingsPageTest::changesTheMode_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("to");
    QTest::newRow("light to dark") << 1 << QByteArray("themeBtn_dark") << 2;
    QTest::newRow("dark to light") << 2 << QByteArray("themeBtn_light") << 1;
    QTest::newRow("dark to auto") << 2 << QByteArray("themeBtn_auto") << 0;
    QTest::newRow("auto to light") << 0 << QByteArray("themeBtn_light") << 1;
    QTest::newRow("nonsense to auto") << 77 << QByteArray("themeBtn_auto") << 0;
}

void AppearanceSettingsPageTest::changesTheMode()
{
    QFETCH(int, from);
    QFETCH(QByteArray, name);
    QFETCH(int, to);
    Theme::forceTheme = from;
    show();
    int modeWhenTold = -1;
    QString storedWhenTold;
    connect(m_page.get(), &AppearanceSettingsPage::appearanceChanged, this, [&] {
        modeWhenTold = Theme::forceTheme;
        storedWhenTold = Settings::value(kThemeKey).toString();
    });
    const QSignalSpy changed(m_page.get(), &AppearanceSettingsPage::appearanceChanged);
    QTest::mouseClick(button(name.constData()), Qt::LeftButton);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(modeWhenTold, to);
    QCOMPARE(storedWhenTold, QString::number(to));
    QCOMPARE(SettingsPageDriver::checkedOf(*m_page), QStringList(name));
    QVERIFY(!Settings::contains(kSeedKey));
}

void AppearanceSettingsPageTest::theModeInForceIsNoChange_data()
{
    QTest::addColumn<bool>("isChecked");
    QTest::newRow("shown as such") << true;
    QTest::newRow("in force since the page was made") << false;
}

void AppearanceSettingsPageTest::theModeInForceIsNoChange()
{
    QFETCH(bool, isChecked);
    Theme::forceTheme = isChecked ? 2 : 1;
    show();
    Theme::forceTheme = 2;
    const QSignalSpy changed(m_page.get(), &AppearanceSettingsPage::appearanceChanged);
    button("themeBtn_dark")->click();
    QCOMPARE(changed.count(), 0);
    QVERIFY(!Settings::contains(kThemeKey));
}

void AppearanceSettingsPageTest::keepsWindowsOpenWhileTheModeChanges()
{
    QTRY_VERIFY(!g_blockAutoQuit);
    show();
    bool wasBlocked = false;
    connect(m_page.get(), &AppearanceSettingsPage::appearanceChanged, this,
            [&wasBlocked] { wasBlocked = g_blockAutoQuit; });
    button("themeBtn_dark")->click();
    QVERIFY(wasBlocked);
    QTRY_VERIFY(!g_blockAutoQuit);
}

void AppearanceSettingsPageTest::autoFollowsTheDesktop()
{
    show();
    const QColor lightBox(Theme::boxBg());
    FakeSystemTheme::setDark(true);
    button("themeBtn_auto")->click();
    QTRY_VERIFY(Theme::isDarkMode()); // the answer before may still be good
    show();
    QVERIFY(QColor(Theme::boxBg()) != lightBox);
    QCOMPARE(Pixels::imageOf(*m_page).pixelColor(200, 20), QColor(Theme::boxBg()));
    QCOMPARE(SettingsPageDriver::checkedOf(*m_page), QStringList("themeBtn_auto"));
}

void AppearanceSettingsPageTest::swatchShowsTheSeed()
{
    Theme::seedColorHex = "#d03060";
    show();
    auto* swatch = qobject_cast<AccentSwatchButton*>(button("accentSwatch"));
    QVERIFY(swatch);
    QCOMPARE(swatch->size(), QSize(36, 36));
    m_page->setFocus();
    const QImage image = Pixels::imageOf(*m_page);
    QCOMPARE(image.pixelColor(swatch->mapTo(m_page.get(), QPoint(18, 18))),
             QColor(0xd0, 0x30, 0x60));
    const QColor outline(Theme::colors().outline);
    QVERIFY(
        Pixels::isNear(image.pixelColor(swatch->mapTo(m_page.get(), QPoint(18, 0))), outline, 40));
}

void AppearanceSettingsPageTest::changesTheAccent_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("stored"); // null: nothing changes
    QTest::addColumn<int>("windows");
    QTest::newRow("code") << "#ff0000" << Qt::Key_Return << "#ff0000" << 1;
    QTest::newRow("code in capitals") << "#FF0000" << Qt::Key_Return << "#FF0000" << 1;
    QTest::newRow("word, stored as typed") << "DodgerBlue" << Qt::Key_Return << "DodgerBlue" << 1;
    QTest::newRow("the same again") << "#0284c7" << Qt::Key_Return << "#0284c7" << 1;
    QTest::newRow("cancelled") << "#ff0000" << Qt::Key_Escape << QString() << 1;
    QTest::newRow("half a code") << "#ff00" << Qt::Key_Escape << QString() << 1;
    QTest::newRow("no colour, which is said") << "#ff000" << Qt::Key_Return << QString() << 2;
    QTest::newRow("nothing at all") << "" << Qt::Key_Return << QString() << 2;
}

void AppearanceSettingsPageTest::changesTheAccent()
{
    QFETCH(QString, typed);
    QFETCH(Qt::Key, key);
    QFETCH(QString, stored);
    show();
    const QSignalSpy changed(m_page.get(), &AppearanceSettingsPage::appearanceChanged);
    const ModalDriver driver([&](QWidget* modal) {
        auto* hex = modal->findChild<QLineEdit*>();
        if (!hex) {
            pressKey(*modal, Qt::Key_Return);
            return;
        }
        hex->clear();
        QTest::keyClicks(hex, typed);
        QTest::keyClick(hex, key);
    });
    QTest::mouseClick(button("accentSwatch"), Qt::LeftButton);
    QTEST(driver.count(), "windows");
    QCOMPARE(changed.count(), stored.isNull() ? 0 : 1);
    QCOMPARE(Theme::seedColorHex, stored.isNull() ? "#0284c7" : stored);
    QCOMPARE(Settings::value(kSeedKey).toString(), stored);
    QVERIFY(!Settings::contains(kThemeKey));
}

void AppearanceSettingsPageTest::opensOnTheAccentInForce()
{
    Theme::seedColorHex = "#abcdef";
    show();
    QString text;
    const ModalDriver driver([&text](QWidget* modal) {
        text = modal->findChild<QLineEdit*>()->text();
        pressKey(*modal, Qt::Key_Escape);
    });
    button("accentSwatch")->click();
    QCOMPARE(text, "#abcdef");
}

void AppearanceSettingsPageTest::mayBeRebuiltByWhoeverIsTold_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("mode") << QByteArray("themeBtn_dark");
    QTest::newRow("accent") << QByteArray("accentSwatch");
}

void AppearanceSettingsPageTest::mayBeRebuiltByWhoeverIsTold()
{
    QFETCH(QByteArray, name);
    auto* page = new AppearanceSettingsPage;
    const QPointer<QWidget> guard(page);
    connect(page, &AppearanceSettingsPage::appearanceChanged, page,
            [page] { page->deleteLater(); });
    const ModalDriver driver([](QWidget* modal) { pressKey(*modal, Qt::Key_Return); });
    SettingsPageDriver::button(*page, name.constData())->click();
    QTRY_VERIFY(!guard);
}

void AppearanceSettingsPageTest::mayGoWhileItAsks_data()
{
    QTest::addColumn<bool>("hasSuccessor");
    QTest::newRow("for good") << false;
    QTest::newRow("for another one") << true;
}

void AppearanceSettingsPageTest::mayGoWhileItAsks()
{
    QFETCH(bool, hasSuccessor);
    QWidget window;
    auto* page = new AppearanceSettingsPage(&window);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    int changes = 0;
    const ModalDriver driver([&](QWidget* modal) {
        delete page;
        if (hasSuccessor) {
            connect(new AppearanceSettingsPage(&window), &AppearanceSettingsPage::appearanceChanged,
                    this, [&changes] { ++changes; });
        }
        modal->findChild<QLineEdit*>()->setText("#ff0000");
        pressKey(*modal, Qt::Key_Return);
    });
    // As a user does: the button may go with the page while its click is still on the way.
    QMetaObject::invokeMethod(SettingsPageDriver::button(*page, "accentSwatch"), "clicked",
                              Qt::DirectConnection, Q_ARG(bool, false));
    QCOMPARE(driver.count(), 1);
    QCOMPARE(Theme::seedColorHex, "#ff0000");
    QCOMPARE(changes, hasSuccessor ? 1 : 0);
}

QTEST_MAIN(AppearanceSettingsPageTest)
#include "tst_appearancesettingspage.moc"
