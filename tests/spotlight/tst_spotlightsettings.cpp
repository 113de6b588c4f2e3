// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "MainWindow.h"
#include "PickerPill.h"
#include "Pixels.h"
#include "Settings.h"
#include "SpotlightSettingsDialog.h"
#include "SpotlightTest.h"
#include "TestScreens.h"
#include "UiDriver.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

#include <functional>

namespace
{

const QString kScopeSetting = QStringLiteral("Spotlight/DefaultScope");

QByteArray settingsFile()
{
    QFile file(Theme::settingsFilePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QPushButton* part(QWidget* dialog, const char* name)
{
    return dialog->findChild<QPushButton*>(QString::fromLatin1(name));
}

/// The button that opens the menu of scopes.
PickerPill* pickOf(QWidget* dialog)
{
    return dialog->findChildren<PickerPill*>().constLast();
}

/// Ticks rows of the menu of scopes, that of all of them being 0, and takes the result over.
void tick(QWidget* dialog, const QList<int>& rows)
{
    MenuDriver menu([&rows](QMenu* open) {
        for (const int row : rows) {
            open->setActiveAction(open->actions().at(row));
            QTest::keyClick(open, Qt::Key_Space);
        }
        QTest::keyClick(open, Qt::Key_Up); // past the first row if that was the last one
        open->setActiveAction(open->actions().constLast());
        QTest::keyClick(open, Qt::Key_Return);
    });
    pickOf(dialog)->click();
    QVERIFY(menu.hasClosed());
}

void chooseLanguage(QWidget* dialog, Lang lang)
{
    MenuDriver menu([lang](QMenu* open) {
        open->setActiveAction(open->actions().at(int(lang)));
        QTest::keyClick(open, Qt::Key_Return);
    });
    part(dialog, "spotLangBtn")->click();
    QVERIFY(menu.hasClosed());
}

void accept(QWidget* dialog)
{
    qobject_cast<QDialog*>(dialog)->accept();
}

} // namespace

/// The way from Spotlight to its settings and back.
class SpotlightSettingsTest : public QObject, protected SpotlightTest
{
    Q_OBJECT

public:
    static void initMain()
    {
        TestHome::install();
        TestScreens::install();
    }

private slots:
    void init();
    void cleanup();

    void gear();
    void gearFollowsTheTheme();

    void offersTheScopes();
    void opensOnTheDefault_data();
    void opensOnTheDefault();
    void chosenScopesApplyAtOnceAndLater_data();
    void chosenScopesApplyAtOnceAndLater();
    void okAloneBringsTheDefaultBack();
    void resultsFollowTheScopes();
    void leavingChangesNothing_data();
    void leavingChangesNothing();

    void lookChangesAtOnce();
    void languageChangesAtOnce();
    void otherWindowIsTold_data();
    void otherWindowIsTold();
    void otherWindowIsBuiltAnew();

    void textAndFocusStay_data();
    void textAndFocusStay();
    void windowStays();
    void rebuildBehindTheDialog();
    void windowIsHiddenMeanwhile_data();
    void windowIsHiddenMeanwhile();
    void standsOnTheStrip();

private:
    /// Opens the settings by their button, and does something to them, which must close them.
    void configure(const std::function<void(QWidget*)>& act) const
    {
        const ModalDriver driver([&act](QWidget* modal) {
            QVERIFY(qobject_cast<SpotlightSettingsDialog*>(modal));
            act(modal);
        });
        QTest::mouseClick(f->settingsButton(), Qt::LeftButton);
        QCOMPARE(driver.count(), 1);
    }
    static QStringList storedScopes() { return Settings::value(kScopeSetting).toStringList(); }
};

void SpotlightSettingsTest::init()
{
    Theme::seedColorHex = QStringLiteral("#0284C7");
    makeSpotlight();
    waitForIndexes();
}

void SpotlightSettingsTest::cleanup()
{
    f.reset();
}

void SpotlightSettingsTest::gear()
{
    QCOMPARE(SpotlightWindow::SETTINGS_BTN_SIZE, 32);
    show();
    const GlyphButton* gear = f->settingsButton();
    QCOMPARE(gear->minimumSize(), QSize(32, 32));
    QCOMPARE(gear->maximumSize(), QSize(32, 32));
    QCOMPARE(gear->focusPolicy(), Qt::NoFocus);
    QCOMPARE(gear->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(gear->styleSheet(),
             QStringLiteral("QPushButton { background: transparent; border: none; }"));
    QCOMPARE(gear->accessibleName(), "Settings");
    // At the right end of the field, as far from its edge as from those above and below.
    const QRect place(gear->mapTo(f->box(), QPoint(0, 0)), gear->size());
    QCOMPARE(place, QRect(f->box()->width() - 6 - 32, 6, 32, 32));
}

void SpotlightSettingsTest::gearFollowsTheTheme()
{
    for (const int theme : {kLight, kDark}) {
        Theme::forceTheme = theme;
        f->window.applyThemeColors();
        GlyphButton expected(f->box());
        expected.setFixedSize(32, 32);
        expected.setStyleSheet(f->settingsButton()->styleSheet());
        const ColorTokens c = Theme::colors();
        expected.setGlyph(0xE8B8, 20, c.onSurfaceVariant);
        QCOMPARE(Pixels::imageOf(*f->settingsButton()), Pixels::imageOf(expected));
        f->settingsButton()->setAttribute(Qt::WA_UnderMouse);
        expected.setGlyph(0xE8B8, 20, c.onSurface);
        QCOMPARE(Pixels::imageOf(*f->settingsButton()), Pixels::imageOf(expected));
        f->settingsButton()->setAttribute(Qt::WA_UnderMouse, false);
    }
}

void SpotlightSettingsTest::offersTheScopes()
{
    show();
    QStringList texts;
    configure([&texts](QWidget* dialog) {
        MenuDriver menu([&texts](QMenu* open) {
            for (const QAction* action : open->actions())
                texts.append(action->text());
            QTest::keyClick(open, Qt::Key_Escape);
        });
        pickOf(dialog)->click();
        pressKey(*dialog, Qt::Key_Escape);
    });
    QStringList expected;
    for (const SpotlightWindow::ScopeDef& def : SpotlightWindow::scopeDefs())
        expected.append(SpotlightWindow::scopeLabel(def));
    QCOMPARE(texts.mid(0, 7), expected);
    QCOMPARE(texts.constLast(), "Done");
}

void SpotlightSettingsTest::opensOnTheDefault_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QVariant() << "All";
    QTest::newRow("empty") << QVariant(QStringList()) << "All";
    QTest::newRow("one") << QVariant(QStringList{"Folder"}) << "Folders";
    QTest::newRow("one as a text") << QVariant("File") << "File";
    QTest::newRow("several") << QVariant(QStringList{"Snippet", "File", "URL"}) << "3 types";
    QTest::newRow("unknown among them") << QVariant(QStringList{"Nothing", "File", ""}) << "File";
    QTest::newRow("unknown alone") << QVariant(QStringList{"file", "Nothing"}) << "All";
    QTest::newRow("one twice") << QVariant(QStringList{"File", "File"}) << "File";
}

void SpotlightSettingsTest::opensOnTheDefault()
{
    QFETCH(QVariant, stored);
    if (stored.isValid())
        Settings::setValue(kScopeSetting, stored);
    const QByteArray before = settingsFile();
    show();
    f->window.setScopeKeys({"Bulk"}); // those of this search are something else
    QString text;
    configure([&text](QWidget* dialog) {
        text = pickOf(dialog)->text();
        pressKey(*dialog, Qt::Key_Escape);
    });
    QTEST(text, "text");
    QCOMPARE(settingsFile(), before);
    QCOMPARE(f->chipTexts(), QStringList{SpotlightResultDelegate::typeLabel("Bulk")});
}

void SpotlightSettingsTest::chosenScopesApplyAtOnceAndLater_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QList<int>>("ticked");
    QTest::addColumn<QStringList>("after");
    using Rows = QList<int>;
    using Keys = QStringList;
    QTest::newRow("one") << Keys{} << Rows{3} << Keys{"File"};
    QTest::newRow("several, in any order")
        << Keys{} << Rows{6, 1, 4} << Keys{"Application", "Folder", "Bulk"};
    QTest::newRow("another beside one") << Keys{"File"} << Rows{2} << Keys{"URL", "File"};
    QTest::newRow("all") << Keys{"File", "URL"} << Rows{0} << Keys{};
    QTest::newRow("every single one")
        << Keys{} << Rows{1, 2, 3, 4, 5, 6}
        << Keys{"Application", "URL", "File", "Folder", "Snippet", "Bulk"};
}

void SpotlightSettingsTest::chosenScopesApplyAtOnceAndLater()
{
    QFETCH(QStringList, before);
    QFETCH(QList<int>, ticked);
    QFETCH(QStringList, after);
    SpotlightWindow::setDefaultScopeKeys(before);
    show();
    configure([&ticked](QWidget* dialog) {
        tick(dialog, ticked);
        accept(dialog);
    });
    QCOMPARE(storedScopes(), after);
    QCOMPARE(SpotlightWindow::defaultScopeKeys(), after);
    const auto chipCount = f->chips().size();
    QCOMPARE(chipCount, after.size());
    f->pressHotkey();
    QTRY_VERIFY(f->window.isHidden());
    show();
    QCOMPARE(f->chips().size(), chipCount);
}

void SpotlightSettingsTest::okAloneBringsTheDefaultBack()
{
    SpotlightWindow::setDefaultScopeKeys({"File"});
    show();
    f->window.setScopeKeys({"URL", "Snippet"});
    configure(&accept);
    QCOMPARE(f->chipTexts(), QStringList{"File"});
    QCOMPARE(storedScopes(), QStringList{"File"});
}

void SpotlightSettingsTest::resultsFollowTheScopes()
{
    fill(); // snippets and addresses
    configure([](QWidget* dialog) {
        tick(dialog, {2});
        accept(dialog);
    });
    QCOMPARE(f->rows(), QStringList({"note three", "note four"}));
    QCOMPARE(f->field()->text(), "note");
}

void SpotlightSettingsTest::leavingChangesNothing_data()
{
    QTest::addColumn<int>("key"); // 0: the window system closes it
    QTest::newRow("Esc") << int(Qt::Key_Escape);
    QTest::newRow("Backspace") << int(Qt::Key_Backspace);
    QTest::newRow("closed") << 0;
}

void SpotlightSettingsTest::leavingChangesNothing()
{
    QFETCH(int, key);
    fill();
    f->list()->setCurrentRow(4);
    const QStringList rows = f->rows();
    const QVector<GlyphButton*> chips = f->chips();
    const QByteArray before = settingsFile();
    const QSignalSpy told(&f->window, &SpotlightWindow::appearanceChanged);
    configure([key](QWidget* dialog) {
        tick(dialog, {1, 3});
        chooseLanguage(dialog, Lang::Ja);
        part(dialog, "spotThemeBtn2")->click();
        if (key == 0)
            dialog->close();
        else
            pressKey(*dialog, Qt::Key(key));
    });
    QCOMPARE(told.count(), 0);
    QCOMPARE(settingsFile(), before);
    QCOMPARE(Theme::forceTheme, kLight);
    QCOMPARE(Tr::currentLang, Lang::En);
    QCOMPARE(f->rows(), rows);
    QCOMPARE(f->list()->currentRow(), 4);
    QCOMPARE(f->chips(), chips);
    QCOMPARE(f->field()->text(), "note");
    QCOMPARE(f->window.focusWidget(), f->field());
    QVERIFY(f->window.isVisible());
}

void SpotlightSettingsTest::lookChangesAtOnce()
{
    show();
    const QString light = f->pill()->styleSheet();
    configure([](QWidget* dialog) {
        part(dialog, "spotThemeBtn2")->click();
        accept(dialog);
    });
    QVERIFY(Theme::isDarkMode());
    QVERIFY(f->pill()->styleSheet() != light);
    QVERIFY(f->pill()->styleSheet().contains(Theme::shellBg()));
    QCOMPARE(Settings::value("Theme/ForceTheme").toInt(), kDark);
    QVERIFY(f->window.isVisible());
}

void SpotlightSettingsTest::languageChangesAtOnce()
{
    fill();
    f->list()->setCurrentRow(4);
    configure([](QWidget* dialog) {
        tick(dialog, {2, 5}); // the same scopes as now
        chooseLanguage(dialog, Lang::Es);
        accept(dialog);
    });
    QCOMPARE(Settings::value("Language/Code").toString(), "es");
    QCOMPARE(f->filterButton()->text(), Tr::t("spotlight.filter_add"));
    QCOMPARE(f->field()->placeholderText(), Tr::t("home.search_placeholder"));
    QCOMPARE(f->settingsButton()->accessibleName(), Tr::t("settings.title"));
    QCOMPARE(f->chipTexts(), QStringList({SpotlightResultDelegate::typeLabel("URL"),
                                          SpotlightResultDelegate::typeLabel("Snippet")}));
    // The headings of the results, too.
    QCOMPARE(f->rows().constFirst(), "# " + SpotlightResultDelegate::typeLabel("Snippet"));
    QVERIFY(!f->rows().contains("# Web Bookmark"));
    QCOMPARE(f->rows().size(), 6);
    QCOMPARE(f->field()->text(), "note");
}

void SpotlightSettingsTest::otherWindowIsTold_data()
{
    QTest::addColumn<int>("theme");
    QTest::addColumn<Lang>("lang");
    QTest::addColumn<QString>("seed");
    QTest::addColumn<int>("count");
    const QString seed = QStringLiteral("#0284c7"); // in another case
    QTest::newRow("nothing") << 1 << Lang::En << seed << 0;
    QTest::newRow("theme") << 0 << Lang::En << seed << 1;
    QTest::newRow("language") << 1 << Lang::Id << seed << 1;
    QTest::newRow("colour") << 1 << Lang::En << "#ff0000" << 1;
    QTest::newRow("everything") << 2 << Lang::Ja << "#ff0000" << 1;
}

void SpotlightSettingsTest::otherWindowIsTold()
{
    QFETCH(int, theme);
    QFETCH(Lang, lang);
    QFETCH(QString, seed);
    show();
    const QSignalSpy told(&f->window, &SpotlightWindow::appearanceChanged);
    configure([&](QWidget* dialog) {
        part(dialog, qPrintable(QStringLiteral("spotThemeBtn%1").arg(theme)))->click();
        chooseLanguage(dialog, lang);
        const ModalDriver picker([&seed](QWidget* modal) {
            auto* hex = modal->findChild<QLineEdit*>();
            hex->setText(seed);
            QTest::keyClick(hex, Qt::Key_Return);
        });
        dialog->findChild<AccentSwatchButton*>()->click();
        QCOMPARE(told.count(), 0);
        accept(dialog);
    });
    QTEST(int(told.count()), "count");
    QCOMPARE(f->window.focusWidget(), f->field());
}

void SpotlightSettingsTest::otherWindowIsBuiltAnew()
{
    MainWindow home(nullptr);
    connect(&f->window, &SpotlightWindow::appearanceChanged, &home,
            &MainWindow::rebuildUIPreservingFocus);
    const auto* background = home.findChild<QFrame*>("bgContainer");
    const QString light = background->styleSheet();
    type(QStringLiteral("plan"));
    configure([](QWidget* dialog) {
        part(dialog, "spotThemeBtn2")->click();
        chooseLanguage(dialog, Lang::Ja);
        accept(dialog);
    });
    QTRY_VERIFY(home.findChild<QFrame*>("bgContainer")->styleSheet() != light);
    QVERIFY(home.isHidden());
    QVERIFY(f->window.isVisible());
    QVERIFY(!f->fade());
    QCOMPARE(f->window.focusWidget(), f->field());
    QCOMPARE(f->field()->text(), "plan");
}

void SpotlightSettingsTest::textAndFocusStay_data()
{
    QTest::addColumn<bool>("isAccepted");
    QTest::newRow("OK") << true;
    QTest::newRow("Cancel") << false;
}

void SpotlightSettingsTest::textAndFocusStay()
{
    QFETCH(bool, isAccepted);
    show();
    QTest::keyClicks(f->field(), QStringLiteral("some plan"));
    f->field()->setCursorPosition(4);
    configure([isAccepted](QWidget* dialog) {
        pickOf(dialog)->setFocus();
        tick(dialog, {2});
        QCOMPARE(dialog->focusWidget(), pickOf(dialog));
        isAccepted ? accept(dialog) : qobject_cast<QDialog*>(dialog)->reject();
    });
    QCOMPARE(f->field()->text(), "some plan");
    QCOMPARE(f->field()->cursorPosition(), 4);
    QCOMPARE(f->window.focusWidget(), f->field());
    QTest::keyClicks(f->window.focusWidget(), QStringLiteral("!"));
    QCOMPARE(f->field()->text(), "some! plan");
    QVERIFY(f->window.isVisible());
}

void SpotlightSettingsTest::windowStays()
{
    show();
    endGuards();
    const auto loseFocus = [this] {
        QApplication::setActiveWindow(nullptr); // as when a dialog of the desktop's opens
        QVERIFY(f->window.isVisible());
        QVERIFY(!f->fade());
    };
    configure([&](QWidget* dialog) {
        loseFocus();
        for (QPushButton* opener :
             {part(dialog, "spotLangBtn"), static_cast<QPushButton*>(pickOf(dialog))}) {
            MenuDriver menu([&loseFocus](QMenu* open) {
                loseFocus();
                open->close();
            });
            opener->click();
            QVERIFY(menu.hasClosed());
            loseFocus();
        }
        const ModalDriver picker([&loseFocus](QWidget* modal) {
            loseFocus();
            modal->close();
        });
        dialog->activateWindow();
        dialog->findChild<AccentSwatchButton*>()->click();
        QCOMPARE(picker.count(), 1);
        loseFocus();
        dialog->close();
    });
    loseFocus(); // for a while after its end, too
    QTRY_VERIFY(!g_blockAutoQuit);
    f->window.activateWindow();
    QTRY_VERIFY(f->window.isActiveWindow());
    QApplication::setActiveWindow(nullptr);
    QTRY_VERIFY(f->window.isHidden()); // and not for ever
}

void SpotlightSettingsTest::rebuildBehindTheDialog()
{
    MainWindow home(nullptr);
    show();
    configure([&home](QWidget* dialog) {
        part(dialog, "spotThemeBtn2")->setFocus();
        home.rebuildUIPreservingFocus();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(QApplication::activeModalWidget(), dialog);
        QCOMPARE(dialog->focusWidget(), part(dialog, "spotThemeBtn2"));
        tick(dialog, {3});
        accept(dialog);
    });
    QCOMPARE(f->chipTexts(), QStringList{"File"});
    QCOMPARE(f->window.focusWidget(), f->field());
}

void SpotlightSettingsTest::windowIsHiddenMeanwhile_data()
{
    QTest::addColumn<bool>("byOther");
    QTest::newRow("by its hotkey") << false;
    QTest::newRow("by the other window") << true;
}

void SpotlightSettingsTest::windowIsHiddenMeanwhile()
{
    QFETCH(bool, byOther);
    type(QStringLiteral("plan"), {});
    const QSignalSpy told(&f->window, &SpotlightWindow::appearanceChanged);
    configure([&](QWidget* dialog) {
        if (byOther)
            f->window.hideForOtherWindow();
        else
            f->pressHotkey();
        QVERIFY(QTest::qWaitFor([this] { return f->window.isHidden(); }));
        QVERIFY(dialog->isVisible()); // what the user has set in it isn't lost
        tick(dialog, {3});
        part(dialog, "spotThemeBtn2")->click();
        accept(dialog);
    });
    QVERIFY(f->window.isHidden());
    QCOMPARE(told.count(), 1);
    QCOMPARE(storedScopes(), QStringList{"File"});
    show();
    QCOMPARE(f->chipTexts(), QStringList{"File"});
    QCOMPARE(f->field()->text(), QString());
    QVERIFY(f->pill()->styleSheet().contains(Theme::shellBg()));
    QTRY_VERIFY(f->field()->hasFocus());
}

void SpotlightSettingsTest::standsOnTheStrip()
{
    show();
    QRect card;
    int middle = 0;
    configure([&](QWidget* dialog) {
        const auto* frame = dialog->findChild<QFrame*>("dialogBg");
        card = QRect(frame->mapToGlobal(QPoint(0, 0)), frame->size());
        middle = dialog->x() + dialog->width() / 2;
        pressKey(*dialog, Qt::Key_Escape);
    });
    QCOMPARE(card.top(), f->pill()->mapToGlobal(QPoint(0, 0)).y());
    QCOMPARE(middle, f->window.geometry().center().x());
    QVERIFY(screenArea().contains(card));
}

QTEST_MAIN(SpotlightSettingsTest)
#include "tst_spotlightsettings.moc"
