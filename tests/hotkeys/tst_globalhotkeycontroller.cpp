// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FakeHotkeyBackend.h"
#include "GlobalHotkeyController.h"
#include "Settings.h"
#include "TestHome.h"

#include <QAbstractEventDispatcher>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using Registration = FakeHotkeyBackend::Registration;

class GlobalHotkeyControllerTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void constructionRegistersNothing();
    void registersWithoutRepeats();
    void presentCombinationIsNotProbed();
    void newCombinationIsProbedFirst();
    void slotIsNotChanged();
    void refusedByTheRulesKeepsTheOld_data();
    void refusedByTheRulesKeepsTheOld();
    void takenByAnotherProgramKeepsTheOld();
    void secondCombinationReplacesTheFirst();
    void sameCombinationAgain();
    void ownCombinationInAnotherSpellingIsRefused();
    void systemThatRefusesTheFlag();
    void refusedAtTheLastStepLosesTheOld();
    void sameCombinationOnBothSlots();
    void worksWithoutASlot();

    void savesASuccess();
    void savesNothingWithoutASlot();
    void refusedChangeLeavesSlotAndFile();
    void lateRefusalLeavesSlotAndFile();
    void changeSavesASuccess();
    void changeLeavesNothingDead_data();
    void changeLeavesNothingDead();
    void changeWithoutASlot();

    void eventIsFilteredById_data();
    void eventIsFilteredById();
    void otherEventsPass();
    void twoControllersCoexist();

    void destructionFreesTheCombination();
    void destructionLeavesTheOtherController();
    void destroyedControllerHearsNothing();

private:
    std::unique_ptr<GlobalHotkeyController> controller(int id, HotkeyManager::Slot* slot) const;
    static QString storedCombo();

    HotkeyManager::Slot m_slot;
    HotkeyManager::Slot m_otherSlot;
    FakeHotkeyBackend* m_backend = nullptr;
};

namespace
{

constexpr WId kWindow = 4711;
constexpr unsigned int kNoRepeat = 0x4000;
constexpr unsigned int kCtrlAlt = 3;

/// Sends a press through everything that listens to native events, as the platform does.
bool press(int id)
{
    FakeHotkeyBackend::Press event{id};
    qintptr result = 0;
    return QAbstractEventDispatcher::instance()->filterNativeEvent(FakeHotkeyBackend::eventType(),
                                                                   &event, &result);
}

} // namespace

void GlobalHotkeyControllerTest::init()
{
    TestHome::writeDataFile("settings.ini", "[Hotkey]\nCombo=Ctrl+Alt+Space\n");
    m_slot = {"Ctrl+Alt+Space", kCtrlAlt, 32, "Hotkey/Combo", "Ctrl+Alt+Space"};
    m_otherSlot = {"Ctrl+Alt+Y", kCtrlAlt, 'Y', "Hotkey/SpotlightCombo", "Ctrl+Alt+Y"};
    m_backend = FakeHotkeyBackend::install();
}

void GlobalHotkeyControllerTest::cleanup()
{
    QVERIFY(m_backend->registrations().isEmpty());
}

std::unique_ptr<GlobalHotkeyController>
GlobalHotkeyControllerTest::controller(int id, HotkeyManager::Slot* slot) const
{
    return std::make_unique<GlobalHotkeyController>(kWindow, id, slot, nullptr);
}

QString GlobalHotkeyControllerTest::storedCombo()
{
    return QSettings(HotkeyManager::settingsFilePath(), Settings::format())
        .value("Hotkey/Combo")
        .toString();
}

void GlobalHotkeyControllerTest::constructionRegistersNothing()
{
    const auto first = controller(1, &m_slot);
    QVERIFY(m_backend->attempts().isEmpty());
    QCOMPARE(first->windowId(), kWindow);
    QCOMPARE(first->slot(), &m_slot);
}

void GlobalHotkeyControllerTest::registersWithoutRepeats()
{
    const auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey("Ctrl+Alt+Space"));
    const QVector<Registration> expected{{kWindow, 1, kCtrlAlt | kNoRepeat, 32}};
    QCOMPARE(m_backend->registrations(), expected);
}

void GlobalHotkeyControllerTest::presentCombinationIsNotProbed()
{
    const auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey(m_slot.combo));
    const QVector<Registration> expected{{kWindow, 1, kCtrlAlt | kNoRepeat, 32}};
    QCOMPARE(m_backend->attempts(), expected);
}

void GlobalHotkeyControllerTest::newCombinationIsProbedFirst()
{
    const auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey("Ctrl+Alt+K"));
    const QVector<Registration> expected{{kWindow, 999, kCtrlAlt, 'K'},
                                         {kWindow, 1, kCtrlAlt | kNoRepeat, 'K'}};
    QCOMPARE(m_backend->attempts(), expected);
}

void GlobalHotkeyControllerTest::slotIsNotChanged()
{
    const auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey("Ctrl+Alt+K"));
    QCOMPARE(m_slot.combo, "Ctrl+Alt+Space");
    QCOMPARE(m_slot.vk, 32u);
    QCOMPARE(storedCombo(), "Ctrl+Alt+Space");
}

void GlobalHotkeyControllerTest::refusedByTheRulesKeepsTheOld_data()
{
    QTest::addColumn<QString>("combo");
    for (const char* combo : {"", "nonsense", "Ctrl+Home", "K", "Ctrl+PrtScn", "Ctrl+Esc", "Ctrl+C",
                              "Win+L", "Ctrl+Alt+Delete"})
        QTest::addRow("'%s'", combo) << QString(combo);
}

void GlobalHotkeyControllerTest::refusedByTheRulesKeepsTheOld()
{
    QFETCH(QString, combo);
    const auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey("Ctrl+Alt+Space"));
    const QVector<Registration> before = m_backend->registrations();
    QVERIFY(!first->applyHotkey(combo));
    QCOMPARE(m_backend->registrations(), before);
    QCOMPARE(m_backend->attempts().size(), 1);

    // An empty text is none, even where it is what the slot holds.
    m_slot.combo.clear();
    QVERIFY(!first->applyHotkey({}));
    QCOMPARE(m_backend->registrations(), before);
}

void GlobalHotkeyControllerTest::takenByAnotherProgramKeepsTheOld()
{
    m_backend->takeByOther(kCtrlAlt, 'K');
    const auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey("Ctrl+Alt+Space"));
    const QVector<Registration> before = m_backend->registrations();
    QVERIFY(!first->applyHotkey("Ctrl+Alt+K"));
    QCOMPARE(m_backend->registrations(), before);
}

void GlobalHotkeyControllerTest::secondCombinationReplacesTheFirst()
{
    const auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey("Ctrl+Alt+Space"));
    QVERIFY(first->applyHotkey("Shift+F9"));
    const QVector<Registration> expected{{kWindow, 1, 4 | kNoRepeat, 120}};
    QCOMPARE(m_backend->registrations(), expected);
}

void GlobalHotkeyControllerTest::sameCombinationAgain()
{
    const auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey(m_slot.combo));
    QVERIFY(first->applyHotkey(m_slot.combo));
    QCOMPARE(m_backend->registrations().size(), 1);
}

void GlobalHotkeyControllerTest::ownCombinationInAnotherSpellingIsRefused()
{
    // The probe meets this process's own registration, and the spelling tells no such thing.
    const auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey(m_slot.combo));
    const QVector<Registration> before = m_backend->registrations();
    QVERIFY(!first->applyHotkey("ctrl+alt+space"));
    QCOMPARE(m_backend->registrations(), before);
}

void GlobalHotkeyControllerTest::systemThatRefusesTheFlag()
{
    m_backend->refuseNoRepeat();
    const auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey(m_slot.combo));
    const QVector<Registration> attempts{{kWindow, 1, kCtrlAlt | kNoRepeat, 32},
                                         {kWindow, 1, kCtrlAlt, 32}};
    QCOMPARE(m_backend->attempts(), attempts);
    const QVector<Registration> expected{{kWindow, 1, kCtrlAlt, 32}};
    QCOMPARE(m_backend->registrations(), expected);
}

void GlobalHotkeyControllerTest::refusedAtTheLastStepLosesTheOld()
{
    const auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey(m_slot.combo));
    m_backend->refuseId(1);
    QTest::ignoreMessage(QtDebugMsg,
                         "GlobalHotkeyController: Failed to register hotkey \"Ctrl+Alt+K\"");
    QVERIFY(!first->applyHotkey("Ctrl+Alt+K"));
    QVERIFY(m_backend->registrations().isEmpty());
}

void GlobalHotkeyControllerTest::sameCombinationOnBothSlots()
{
    // Read from the settings, where nothing compares the two, the second one comes too late.
    m_otherSlot.combo = m_slot.combo;
    const auto first = controller(1, &m_slot);
    const auto second = controller(2, &m_otherSlot);
    QVERIFY(first->applyHotkey(m_slot.combo));
    QTest::ignoreMessage(QtDebugMsg,
                         "GlobalHotkeyController: Failed to register hotkey \"Ctrl+Alt+Space\"");
    QVERIFY(!second->applyHotkey(m_otherSlot.combo));
    const QVector<Registration> expected{{kWindow, 1, kCtrlAlt | kNoRepeat, 32}};
    QCOMPARE(m_backend->registrations(), expected);
}

void GlobalHotkeyControllerTest::worksWithoutASlot()
{
    const auto first = controller(1, nullptr);
    QCOMPARE(first->slot(), nullptr);
    QVERIFY(first->applyHotkey("Ctrl+Alt+K"));
    QCOMPARE(m_backend->registrations().size(), 1);
}

void GlobalHotkeyControllerTest::savesASuccess()
{
    const auto first = controller(1, &m_slot);
    QVERIFY(first->setHotkeyAndSave("Win+Shift+K"));
    QCOMPARE(m_slot.combo, "Win+Shift+K");
    QCOMPARE(m_slot.modifiers, 12u);
    QCOMPARE(m_slot.vk, uint('K'));
    QCOMPARE(storedCombo(), "Win+Shift+K");
    const QVector<Registration> expected{{kWindow, 1, 12 | kNoRepeat, 'K'}};
    QCOMPARE(m_backend->registrations(), expected);
}

void GlobalHotkeyControllerTest::savesNothingWithoutASlot()
{
    const auto first = controller(1, nullptr);
    QVERIFY(!first->setHotkeyAndSave("Ctrl+Alt+K"));
    QVERIFY(m_backend->attempts().isEmpty());
    QCOMPARE(storedCombo(), "Ctrl+Alt+Space");
}

void GlobalHotkeyControllerTest::refusedChangeLeavesSlotAndFile()
{
    m_backend->takeByOther(kCtrlAlt, 'K');
    const auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey(m_slot.combo));
    QVERIFY(!first->setHotkeyAndSave("Ctrl+Alt+K"));
    QCOMPARE(m_slot.combo, "Ctrl+Alt+Space");
    QCOMPARE(storedCombo(), "Ctrl+Alt+Space");
    QCOMPARE(m_backend->registrations().size(), 1);
}

void GlobalHotkeyControllerTest::lateRefusalLeavesSlotAndFile()
{
    const auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey(m_slot.combo));
    m_backend->refuseId(1);
    QTest::ignoreMessage(QtDebugMsg,
                         "GlobalHotkeyController: Failed to register hotkey \"Ctrl+Alt+K\"");
    QVERIFY(!first->setHotkeyAndSave("Ctrl+Alt+K"));
    QCOMPARE(m_slot.combo, "Ctrl+Alt+Space");
    QCOMPARE(m_slot.vk, 32u);
    QCOMPARE(storedCombo(), "Ctrl+Alt+Space");
    QVERIFY(m_backend->registrations().isEmpty());
}

void GlobalHotkeyControllerTest::changeSavesASuccess()
{
    const auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey(m_slot.combo));
    QVERIFY(first->changeHotkeyAndSave("Ctrl+Alt+K"));
    QCOMPARE(m_slot.combo, "Ctrl+Alt+K");
    QCOMPARE(m_slot.vk, 'K');
    QCOMPARE(storedCombo(), "Ctrl+Alt+K");
    const QVector<Registration> expected{{kWindow, 1, kCtrlAlt | kNoRepeat, 'K'}};
    QCOMPARE(m_backend->registrations(), expected);
}

void GlobalHotkeyControllerTest::changeLeavesNothingDead_data()
{
    QTest::addColumn<QString>("combo");
    QTest::addColumn<int>("attempts"); // to register anything
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("no combination") << "Hyper+K" << 0;
    QTest::newRow("against the rules") << "Ctrl+C" << 0;
    QTest::newRow("taken by another program") << "Ctrl+Alt+T" << 1;
    // Probe, registration with and without the flag, and the one before again.
    QTest::newRow("taken at the last step") << "Ctrl+Alt+K" << 4;
}

void GlobalHotkeyControllerTest::changeLeavesNothingDead()
{
    QFETCH(QString, combo);
    QFETCH(int, attempts);
    m_backend->takeByOther(kCtrlAlt, 'T');
    m_backend->refuseUnder(1, kCtrlAlt, 'K');
    const auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey(m_slot.combo));
    const qsizetype before = m_backend->attempts().size();
    if (attempts == 4)
        QTest::ignoreMessage(QtDebugMsg,
                             "GlobalHotkeyController: Failed to register hotkey \"Ctrl+Alt+K\"");
    QVERIFY(!first->changeHotkeyAndSave(combo));
    QCOMPARE(m_backend->attempts().size() - before, attempts);
    const QVector<Registration> expected{{kWindow, 1, kCtrlAlt | kNoRepeat, 32}};
    QCOMPARE(m_backend->registrations(), expected);
    QCOMPARE(m_slot.combo, "Ctrl+Alt+Space");
    QCOMPARE(storedCombo(), "Ctrl+Alt+Space");
}

void GlobalHotkeyControllerTest::changeWithoutASlot()
{
    const auto first = controller(1, nullptr);
    QVERIFY(!first->changeHotkeyAndSave("Ctrl+Alt+K"));
    QVERIFY(m_backend->attempts().isEmpty());
}

void GlobalHotkeyControllerTest::eventIsFilteredById_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("isOwn");
    QTest::newRow("own") << 1 << true;
    QTest::newRow("the other window's") << 2 << false;
    QTest::newRow("the probe's") << 999 << false;
    QTest::newRow("zero") << 0 << false;
    QTest::newRow("negative") << -1 << false;
}

void GlobalHotkeyControllerTest::eventIsFilteredById()
{
    QFETCH(int, id);
    QFETCH(bool, isOwn);
    const auto first = controller(1, &m_slot);
    QSignalSpy triggered(first.get(), &GlobalHotkeyController::hotkeyTriggered);
    FakeHotkeyBackend::Press event{id};
    qintptr result = 42;
    QCOMPARE(first->nativeEventFilter(FakeHotkeyBackend::eventType(), &event, &result), isOwn);
    QCOMPARE(triggered.count(), isOwn ? 1 : 0);
    QCOMPARE(result, 42);
}

void GlobalHotkeyControllerTest::otherEventsPass()
{
    const auto first = controller(1, &m_slot);
    QSignalSpy triggered(first.get(), &GlobalHotkeyController::hotkeyTriggered);
    FakeHotkeyBackend::Press event{1};
    qintptr result = 0;
    QVERIFY(!first->nativeEventFilter("some_other_event", &event, &result));
    QVERIFY(!first->nativeEventFilter("some_other_event", nullptr, nullptr));
    QCOMPARE(triggered.count(), 0);
}

void GlobalHotkeyControllerTest::twoControllersCoexist()
{
    const auto first = controller(1, &m_slot);
    const auto second = controller(2, &m_otherSlot);
    QSignalSpy firstTriggered(first.get(), &GlobalHotkeyController::hotkeyTriggered);
    QSignalSpy secondTriggered(second.get(), &GlobalHotkeyController::hotkeyTriggered);
    QVERIFY(press(2));
    QCOMPARE(firstTriggered.count(), 0);
    QCOMPARE(secondTriggered.count(), 1);
    QVERIFY(press(1));
    QVERIFY(press(1));
    QCOMPARE(firstTriggered.count(), 2);
    QCOMPARE(secondTriggered.count(), 1);
    QVERIFY(!press(3));
}

void GlobalHotkeyControllerTest::destructionFreesTheCombination()
{
    auto first = controller(1, &m_slot);
    QVERIFY(first->applyHotkey(m_slot.combo));
    first.reset();
    QVERIFY(m_backend->registrations().isEmpty());
    QVERIFY(HotkeyManager::validate(m_slot.combo, kWindow, true, nullptr).valid);
}

void GlobalHotkeyControllerTest::destructionLeavesTheOtherController()
{
    auto first = controller(1, &m_slot);
    const auto second = controller(2, &m_otherSlot);
    QVERIFY(first->applyHotkey(m_slot.combo));
    QVERIFY(second->applyHotkey(m_otherSlot.combo));
    first.reset();
    const QVector<Registration> expected{{kWindow, 2, kCtrlAlt | kNoRepeat, 'Y'}};
    QCOMPARE(m_backend->registrations(), expected);
    QSignalSpy triggered(second.get(), &GlobalHotkeyController::hotkeyTriggered);
    QVERIFY(press(2));
    QCOMPARE(triggered.count(), 1);
}

void GlobalHotkeyControllerTest::destroyedControllerHearsNothing()
{
    auto first = controller(1, &m_slot);
    QVERIFY(press(1));
    first.reset();
    QVERIFY(!press(1));
}

QTEST_MAIN(GlobalHotkeyControllerTest)
#include "tst_globalhotkeycontroller.moc"
