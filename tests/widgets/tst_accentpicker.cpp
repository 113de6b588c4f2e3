// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AccentPicker.h"
#include "AutoQuitBlocker.h"
#include "CustomColorPickerDialog.h"
#include "CustomMessageBox.h"
#include "Localization.h"
#include "Settings.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <memory>
#include <optional>

using Answer = std::optional<QString>;
Q_DECLARE_METATYPE(Answer)

class AccentPickerTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void answers_data();
    void answers();
    void opensOnTheGivenColor_data();
    void opensOnTheGivenColor();
    void saysWhatIsNoColor();
    void keepsWindowsOpen();
    void storesNothing();
    void outlivesThePageThatAsks();
};

void AccentPickerTest::init()
{
    Tr::currentLang = Lang::En;
    Theme::seedColorHex = "#0284c7";
}

void AccentPickerTest::answers_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<int>("windows");
    QTest::newRow("code") << "#ff0000" << Qt::Key_Return << Answer("#ff0000") << 1;
    QTest::newRow("word as typed") << "DodgerBlue" << Qt::Key_Return << Answer("DodgerBlue") << 1;
    QTest::newRow("blanks") << " #ff0000 " << Qt::Key_Return << Answer("#ff0000") << 1;
    QTest::newRow("unchanged") << "" << Qt::Key_Return << Answer("#0284c7") << 1;
    QTest::newRow("cancelled") << "#ff0000" << Qt::Key_Escape << Answer() << 1;
    QTest::newRow("no colour") << "#ff000" << Qt::Key_Return << Answer() << 2;
    QTest::newRow("a blank") << " " << Qt::Key_Return << Answer() << 2;
    QTest::newRow("no colour, cancelled") << "nothing" << Qt::Key_Escape << Answer() << 1;
}

void AccentPickerTest::answers()
{
    QFETCH(QString, typed);
    QFETCH(Qt::Key, key);
    const ModalDriver driver([&](QWidget* modal) {
        if (!qobject_cast<CustomColorPickerDialog*>(modal)) {
            pressKey(*modal, Qt::Key_Return);
            return;
        }
        auto* hex = modal->findChild<QLineEdit*>();
        if (!typed.isEmpty())
            hex->clear();
        QTest::keyClicks(hex, typed);
        QTest::keyClick(hex, key);
    });
    QTEST(AccentPicker::ask(nullptr), "answer");
    QTEST(driver.count(), "windows");
}

void AccentPickerTest::opensOnTheGivenColor_data()
{
    QTest::addColumn<QString>("initial");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << ""
                          << "#0284c7";
    QTest::newRow("a pending one") << "#abcdef"
                                   << "#abcdef";
}

void AccentPickerTest::opensOnTheGivenColor()
{
    QFETCH(QString, initial);
    QString text;
    const ModalDriver driver([&text](QWidget* modal) {
        text = modal->findChild<QLineEdit*>()->text();
        pressKey(*modal, Qt::Key_Escape);
    });
    AccentPicker::ask(nullptr, initial);
    QTEST(text, "text");
}

void AccentPickerTest::saysWhatIsNoColor()
{
    QWidget window;
    QWidget page(&window);
    QStringList texts;
    const ModalDriver driver([&](QWidget* modal) {
        QCOMPARE(modal->parentWidget(), &window);
        if (qobject_cast<CustomMessageBox*>(modal)) {
            for (const QLabel* label : modal->findChildren<QLabel*>())
                texts.append(label->text());
        } else {
            modal->findChild<QLineEdit*>()->setText("colour");
        }
        pressKey(*modal, Qt::Key_Return);
    });
    QVERIFY(!AccentPicker::ask(&page));
    QCOMPARE(texts,
             QStringList({"Invalid Color", "Please enter a valid Hex code (e.g. #FF0000)."}));
}

void AccentPickerTest::keepsWindowsOpen()
{
    QTRY_VERIFY(!g_blockAutoQuit);
    QList<bool> blocked;
    const ModalDriver driver([&blocked](QWidget* modal) {
        blocked.append(g_blockAutoQuit);
        if (auto* hex = modal->findChild<QLineEdit*>())
            hex->clear();
        pressKey(*modal, Qt::Key_Return);
    });
    AccentPicker::ask(nullptr);
    QCOMPARE(blocked, QList<bool>({true, true}));
    QVERIFY(g_blockAutoQuit);
    QTRY_VERIFY(!g_blockAutoQuit);
}

void AccentPickerTest::storesNothing()
{
    const ModalDriver driver([](QWidget* modal) {
        modal->findChild<QLineEdit*>()->setText("#ff0000");
        pressKey(*modal, Qt::Key_Return);
    });
    QVERIFY(AccentPicker::ask(nullptr));
    QCOMPARE(Theme::seedColorHex, "#0284c7");
    QVERIFY(!Settings::contains("Theme/SeedColor"));
}

void AccentPickerTest::outlivesThePageThatAsks()
{
    QWidget window;
    auto page = std::make_unique<QWidget>(&window);
    const ModalDriver driver([&page](QWidget* modal) {
        page.reset();
        modal->findChild<QLineEdit*>()->setText("#ff0000");
        pressKey(*modal, Qt::Key_Return);
    });
    QCOMPARE(AccentPicker::ask(page.get()), Answer("#ff0000"));
}

QTEST_MAIN(AccentPickerTest)
#include "tst_accentpicker.moc"
