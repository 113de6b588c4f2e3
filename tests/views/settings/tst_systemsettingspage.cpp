// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"
#include "BothHotkeys.h"
#include "CustomMessageBox.h"
#include "FittingText.h"
#include "LanguageRows.h"
#include "Localization.h"
#include "Settings.h"
#include "SettingsCard.h"
#include "SystemSettingsPage.h"
#include "TestHome.h"
#include "UiDriver.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <memory>
#include <optional>

using Registration = FakeHotkeyBackend::Registration;
Q_DECLARE_METATYPE(Registration)

namespace
{

constexpr WId kWindow = BothHotkeys::Window;
constexpr unsigned int kNoRepeat = 0x4000;
constexpr unsigned int kCtrlAlt = 3;
const Qt::KeyboardModifiers kCtrlAltKeys = Qt::ControlModifier | Qt::AltModifier;

Registration registered(int id, unsigned int key)
{
    return {kWindow, id, kCtrlAlt | kNoRepeat, key};
}

/// The texts of the message that came up.
QStringList textsOf(const QWidget* box)
{
    QStringList texts;
    for (const QLabel* label : box->findChildren<QLabel*>())
        texts.append(label->text());
    return texts;
}

} // namespace

class SystemSettingsPageTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase() { FittingText::useProgramFont(); }
    void init();
    void cleanup();

    void rowsInOrder();
    void layoutOfARow();
    void textsFit_data();
    void textsFit();

    void recordsItsOwnHotkey_data();
    void recordsItsOwnHotkey();
    void refusesTheOtherHotkey();
    void takenByAnotherProgram();
    void tabIsRecorded();
    void escapeAndLossOfFocusCancel();

    void resetsToTheDefault_data();
    void resetsToTheDefault();
    void resetOfTheDefaultRegistersAgain();
    void resetIsRefused();
    void lateRefusalOfAResetSaysOk();
    void refusedResetKeepsWindowsOpen();
    void withoutAControllerNothingHappens();
    void asksForTheControllerEachTime();
    void messageOutlivesThePage();
    void hugeCombinationDoesNotWidenThePage();

private:
    template <typename Widget = QPushButton>
    Widget* child(const QString& name) const
    {
        return m_page->findChild<Widget*>(name);
    }
    QLabel* display(int row) const { return labels(row).at(1); }
    QLabel* hint(int row) const { return labels(row).at(2); }
    QList<QLabel*> labels(int row) const { return cards().at(row)->findChildren<QLabel*>(); }
    QList<QFrame*> cards() const;
    void build();
    void record(const QString& name, Qt::Key key, Qt::KeyboardModifiers modifiers);
    void change(HotkeyManager::Slot& slot, const QString& combo);

    std::optional<BothHotkeys> m_hotkeys;
    std::unique_ptr<SystemSettingsPage> m_page;
};

void SystemSettingsPageTest::init()
{
    Tr::currentLang = Lang::En;
    Theme::forceTheme = 1;
    m_hotkeys.emplace();
    build();
}

void SystemSettingsPageTest::cleanup()
{
    m_page.reset();
    m_hotkeys.reset();
}

void SystemSettingsPageTest::build()
{
    m_page = std::make_unique<SystemSettingsPage>([this] { return m_hotkeys->main.get(); },
                                                  [this] { return m_hotkeys->spotlight.get(); });
    m_page->resize(600, 300);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
}

QList<QFrame*> SystemSettingsPageTest::cards() const
{
    QList<QFrame*> cards;
    collectSettingsRows(m_page.get(), cards);
    return cards;
}

void SystemSettingsPageTest::record(const QString& name, Qt::Key key,
                                    Qt::KeyboardModifiers modifiers)
{
    auto* button = child("hotkeyRecord_" + name);
    button->setFocus();
    button->click();
    QVERIFY(HotkeyRecorderFilter::isListeningOn(button));
    QTest::keyClick(button, key, modifiers);
}

void SystemSettingsPageTest::change(HotkeyManager::Slot& slot, const QString& combo)
{
    auto* controller =
        &slot == m_hotkeys->main->slot() ? m_hotkeys->main.get() : m_hotkeys->spotlight.get();
    QVERIFY(controller->setHotkeyAndSave(combo));
    build();
}

void SystemSettingsPageTest::rowsInOrder()
{
    QCOMPARE(m_page->styleSheet(), "background: transparent;");
    QCOMPARE(m_page->layout()->contentsMargins(), QMargins(16, 16, 16, 16));
    QCOMPARE(cards().size(), 2);
    QCOMPARE(labels(0).at(0)->text(), "Global Hotkey");
    QCOMPARE(labels(1).at(0)->text(), "Spotlight Hotkey");
    QCOMPARE(labels(0).at(0)->objectName(), "titleStatic");
    QCOMPARE(display(0)->text(), "Ctrl+Alt+Space");
    QCOMPARE(display(1)->text(), "Ctrl+Alt+Y");
    QCOMPARE(child("hotkeyReset_main")->text(), "Reset");
    QCOMPARE(child("hotkeyRecord_spotlight")->text(), "Record");
}

void SystemSettingsPageTest::layoutOfARow()
{
    const QRect reset = rectIn(*m_page, child("hotkeyReset_main"));
    const QRect recorder = rectIn(*m_page, child("hotkeyRecord_main"));
    const QRect combo = rectIn(*m_page, display(0));
    QCOMPARE(recorder.left(), reset.right() + 1 + 8);
    QCOMPARE(combo.left(), recorder.right() + 1 + 8);
    for (const QRect& each : {reset, recorder, combo}) {
        QCOMPARE(each.height(), 36);
        QCOMPARE(each.top(), reset.top());
    }
    QCOMPARE(combo.right(), rectIn(*m_page, cards().at(0)).right() - 16);
    QCOMPARE(rectIn(*m_page, labels(0).at(0)).left(), 16 + 24);
    QVERIFY(display(0)->alignment() == Qt::AlignCenter);
    for (const char* name : {"hotkeyReset_main", "hotkeyRecord_main"}) {
        QCOMPARE(child(name)->styleSheet(), Theme::smallPillStyle(Theme::colors()));
        QCOMPARE(child(name)->cursor().shape(), Qt::PointingHandCursor);
    }
    QVERIFY(hint(0)->isHidden());
    QVERIFY(hint(0)->wordWrap());
    child("hotkeyRecord_main")->click();
    QVERIFY(hint(0)->isVisible());
    QVERIFY(hint(1)->isHidden());
    m_page->layout()->activate();
    QTRY_COMPARE(rectIn(*m_page, hint(0)).top(),
                 rectIn(*m_page, child("hotkeyRecord_main")).bottom() + 1 + 8);
}

void SystemSettingsPageTest::textsFit_data()
{
    addLanguageRows();
}

void SystemSettingsPageTest::textsFit()
{
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    build();
    QCOMPARE(labels(0).at(0)->text(), Tr::t("settings.system.hotkey_title"));
    child("hotkeyRecord_main")->click();
    QTRY_VERIFY(hint(0)->isVisible());
    for (const QPushButton* button : m_page->findChildren<QPushButton*>()) {
        const QRect room = FittingText::contentsOf(*button);
        QVERIFY2(button->fontMetrics().horizontalAdvance(button->text()) <= room.width(),
                 qPrintable(button->text()));
    }
    QTRY_VERIFY(hint(0)->height() >= hint(0)->heightForWidth(hint(0)->width()));
    for (const QLabel* title : {labels(0).at(0), labels(1).at(0)})
        QVERIFY(title->height() >= title->heightForWidth(title->width()));
}

void SystemSettingsPageTest::recordsItsOwnHotkey_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("settingsKey");
    QTest::addColumn<QVector<Registration>>("expected");
    QTest::newRow("main window") << 0 << "main"
                                 << "Hotkey/Combo"
                                 << QVector<Registration>{registered(2, 'Y'), registered(1, 'K')};
    QTest::newRow("Spotlight") << 1 << "spotlight"
                               << "Hotkey/SpotlightCombo"
                               << QVector<Registration>{registered(1, 32), registered(2, 'K')};
}

void SystemSettingsPageTest::recordsItsOwnHotkey()
{
    QFETCH(int, row);
    QFETCH(QString, name);
    QFETCH(QString, settingsKey);
    const QString other = display(1 - row)->text();
    record(name, Qt::Key_K, kCtrlAltKeys);
    QCOMPARE(display(row)->text(), "Ctrl+Alt+K");
    QCOMPARE(display(1 - row)->text(), other);
    QCOMPARE(Settings::value(settingsKey).toString(), "Ctrl+Alt+K");
    QTEST(m_hotkeys->backend->registrations(), "expected");
}

void SystemSettingsPageTest::refusesTheOtherHotkey()
{
    QStringList texts;
    const ModalDriver driver([&texts](QWidget* box) {
        texts = textsOf(box);
        pressKey(*box, Qt::Key_Return);
    });
    record("main", Qt::Key_Y, kCtrlAltKeys);
    QCOMPARE(driver.count(), 1);
    QCOMPARE(texts, QStringList({"Invalid Hotkey", "Kombinasi sudah dipakai aplikasi lain."}));
    QCOMPARE(display(0)->text(), "Ctrl+Alt+Space");
    QCOMPARE(m_hotkeys->backend->registrations().size(), 2);
}

void SystemSettingsPageTest::takenByAnotherProgram()
{
    m_hotkeys->backend->takeByOther(kCtrlAlt, 'K');
    const QVector<Registration> before = m_hotkeys->backend->registrations();
    const ModalDriver driver([](QWidget* box) { pressKey(*box, Qt::Key_Return); });
    record("spotlight", Qt::Key_K, kCtrlAltKeys);
    QCOMPARE(driver.count(), 1);
    QCOMPARE(display(1)->text(), "Ctrl+Alt+Y");
    QCOMPARE(m_hotkeys->backend->registrations(), before);
}

void SystemSettingsPageTest::tabIsRecorded()
{
    record("main", Qt::Key_Tab, kCtrlAltKeys);
    QCOMPARE(display(0)->text(), "Ctrl+Alt+Tab");
    QCOMPARE(m_page->focusWidget(), child("hotkeyRecord_main"));
}

void SystemSettingsPageTest::escapeAndLossOfFocusCancel()
{
    record("main", Qt::Key_Escape, Qt::NoModifier);
    QVERIFY(!HotkeyRecorderFilter::isListeningOn(child("hotkeyRecord_main")));
    QCOMPARE(m_page->focusWidget(), child("hotkeyRecord_main"));

    child("hotkeyRecord_main")->click();
    child("hotkeyReset_spotlight")->setFocus();
    QVERIFY(!HotkeyRecorderFilter::isListeningOn(child("hotkeyRecord_main")));
    QCOMPARE(display(0)->text(), "Ctrl+Alt+Space");
}

void SystemSettingsPageTest::resetsToTheDefault_data()
{
    recordsItsOwnHotkey_data();
}

void SystemSettingsPageTest::resetsToTheDefault()
{
    QFETCH(int, row);
    QFETCH(QString, name);
    QFETCH(QString, settingsKey);
    HotkeyManager::Slot* slot = HotkeyManager::allSlots().at(row);
    change(*slot, "Ctrl+Alt+K");
    QTEST(m_hotkeys->backend->registrations(), "expected");
    QCOMPARE(display(row)->text(), "Ctrl+Alt+K");
    child("hotkeyReset_" + name)->click();
    QCOMPARE(display(row)->text(), slot->defaultCombo);
    QCOMPARE(slot->combo, slot->defaultCombo);
    QCOMPARE(Settings::value(settingsKey).toString(), slot->defaultCombo);
    QCOMPARE(m_hotkeys->backend->registrations().last(), registered(row + 1, slot->vk));
}

void SystemSettingsPageTest::resetOfTheDefaultRegistersAgain()
{
    const qsizetype before = m_hotkeys->backend->attempts().size();
    child("hotkeyReset_main")->click();
    // Without a probe, which would meet the registration that is in force.
    QCOMPARE(m_hotkeys->backend->attempts().mid(before), QVector<Registration>{registered(1, 32)});
    const QVector<Registration> expected{registered(2, 'Y'), registered(1, 32)};
    QCOMPARE(m_hotkeys->backend->registrations(), expected);
    QCOMPARE(display(0)->text(), "Ctrl+Alt+Space");
}

void SystemSettingsPageTest::resetIsRefused()
{
    change(HotkeyManager::mainWindowSlot, "Ctrl+Alt+K");
    change(HotkeyManager::spotlightSlot, "Ctrl+Alt+Space");
    QStringList texts;
    const ModalDriver driver([&texts](QWidget* box) {
        texts = textsOf(box);
        pressKey(*box, Qt::Key_Return);
    });
    child("hotkeyReset_main")->click();
    QCOMPARE(texts, QStringList({"Invalid Hotkey", "Kombinasi sudah dipakai aplikasi lain."}));
    QCOMPARE(display(0)->text(), "Ctrl+Alt+K");
    QCOMPARE(HotkeyManager::mainWindowSlot.combo, "Ctrl+Alt+K");
    const QVector<Registration> expected{registered(1, 'K'), registered(2, 32)};
    QCOMPARE(m_hotkeys->backend->registrations(), expected);
}

void SystemSettingsPageTest::lateRefusalOfAResetSaysOk()
{
    change(HotkeyManager::mainWindowSlot, "Ctrl+Alt+K");
    m_hotkeys->backend->refuseUnder(1, kCtrlAlt, 32); // only behind the probe
    QStringList texts;
    const ModalDriver driver([&texts](QWidget* box) {
        texts = textsOf(box);
        pressKey(*box, Qt::Key_Return);
    });
    QTest::ignoreMessage(QtDebugMsg,
                         "GlobalHotkeyController: Failed to register hotkey \"Ctrl+Alt+Space\"");
    child("hotkeyReset_main")->click();
    QCOMPARE(texts, QStringList({"Invalid Hotkey", "OK"}));
    // The one before is alive again.
    const QVector<Registration> expected{registered(2, 'Y'), registered(1, 'K')};
    QCOMPARE(m_hotkeys->backend->registrations(), expected);
    QCOMPARE(Settings::value("Hotkey/Combo").toString(), "Ctrl+Alt+K");
    QCOMPARE(display(0)->text(), "Ctrl+Alt+K");
}

void SystemSettingsPageTest::refusedResetKeepsWindowsOpen()
{
    change(HotkeyManager::mainWindowSlot, "Ctrl+Alt+K");
    m_hotkeys->backend->takeByOther(kCtrlAlt, 32);
    QTRY_VERIFY(!g_blockAutoQuit);
    bool isBlocked = false;
    const ModalDriver driver([&isBlocked](QWidget* box) {
        isBlocked = g_blockAutoQuit;
        pressKey(*box, Qt::Key_Return);
    });
    child("hotkeyReset_main")->click();
    QVERIFY(isBlocked);
}

void SystemSettingsPageTest::withoutAControllerNothingHappens()
{
    for (const bool hasGetter : {true, false}) {
        HotkeyRecorderFilter::ControllerGetter getter;
        if (hasGetter)
            getter = [] { return nullptr; };
        m_page = std::make_unique<SystemSettingsPage>(getter, getter);
        m_page->show();
        QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
        const qsizetype before = m_hotkeys->backend->attempts().size();
        child("hotkeyReset_main")->click();
        record("spotlight", Qt::Key_K, kCtrlAltKeys);
        QCOMPARE(m_hotkeys->backend->attempts().size(), before);
        QCOMPARE(display(1)->text(), "Ctrl+Alt+Y");
        QVERIFY(!QApplication::activeModalWidget());
    }
}

void SystemSettingsPageTest::asksForTheControllerEachTime()
{
    change(HotkeyManager::mainWindowSlot, "Ctrl+Alt+K");
    m_hotkeys->main.reset();
    constexpr WId another = 4712;
    m_hotkeys->main = std::make_unique<GlobalHotkeyController>(
        another, 1, &HotkeyManager::mainWindowSlot, nullptr);
    child("hotkeyReset_main")->click();
    const QVector<Registration> expected{registered(2, 'Y'),
                                         {another, 1, kCtrlAlt | kNoRepeat, 32}};
    QCOMPARE(m_hotkeys->backend->registrations(), expected);
}

void SystemSettingsPageTest::messageOutlivesThePage()
{
    QWidget window;
    auto* page = new SystemSettingsPage([this] { return m_hotkeys->main.get(); },
                                        [this] { return m_hotkeys->spotlight.get(); }, &window);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    change(HotkeyManager::mainWindowSlot, "Ctrl+Alt+K");
    m_hotkeys->backend->takeByOther(kCtrlAlt, 32);
    bool isThere = false;
    const ModalDriver driver([&](QWidget* box) {
        delete page;
        isThere = box->isVisible();
        pressKey(*box, Qt::Key_Return);
    });
    page->findChild<QPushButton*>("hotkeyReset_main")->click();
    QCOMPARE(driver.count(), 1);
    QVERIFY(isThere);
}

void SystemSettingsPageTest::hugeCombinationDoesNotWidenThePage()
{
    const int usual = m_page->sizeHint().width();
    HotkeyManager::mainWindowSlot.combo = QStringLiteral("Ctrl+").repeated(200'000) + u'K';
    build();
    QVERIFY(m_page->sizeHint().width() < usual + 300);
}

QTEST_MAIN(SystemSettingsPageTest)
#include "tst_systemsettingspage.moc"
