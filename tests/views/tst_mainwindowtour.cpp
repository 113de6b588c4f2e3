// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AboutSettingsPage.h"
#include "HomePageFixture.h"
#include "OnboardingDialog.h"
#include "SettingsView.h"
#include "TourOverlay.h"

#include <QElapsedTimer>
#include <QTimer>

namespace
{

constexpr int kForceLight = 1;
constexpr int kForceDark = 2;
constexpr int kOver = -1;
constexpr int kDipMs = 270; // of 280 at least, behind which a page changes or is built anew

struct Step
{
    const char* name;
    const char* buttonKey; ///< null for none
};

constexpr Step kSteps[] = {
    {"welcome", "tour.btn_begin"},
    {"section", nullptr},
    {"pill", "tour.btn_next"},
    {"item", nullptr},
    {"type", nullptr},
    {"name", "tour.btn_next"},
    {"file", nullptr},
    {"save", nullptr},
    {"run", "tour.btn_next"},
    {"finish", "tour.btn_finish"},
};

} // namespace

/// The welcome, and the guided tour over the home page.
class MainWindowTourTest : public HomePageFixture
{
    Q_OBJECT

private slots:
    void stepsShowWhatTheyAreAbout_data();
    void stepsShowWhatTheyAreAbout();
    void focusOfTheSteps();
    void whatIsMadeStays();
    void otherTypesDontAdvance_data();
    void otherTypesDontAdvance();
    void blankValueDoesntAdvance();
    void cancelledFormRewinds_data();
    void cancelledFormRewinds();
    void savedEarlyRewinds();
    void existingDataIsHidden();
    void searchFindsOnlyWhatIsNew();
    void tabIsSwallowed();
    void rebuildEndsTheTour();
    void otherPageEndsTheTour();
    void missingTargetEndsTheTour();
    void hideAndShowKeepTheStep_data();
    void hideAndShowKeepTheStep();
    void cardLiesOverNoBackdrop();
    void companionExplainsTheDialog_data();
    void companionExplainsTheDialog();
    void questionHidesTheOverlay();

    void ordersNothing();

    void lightThemeIsDarkForTheTour();
    void darkThemeStartsAtOnce();
    void themeChosenMeanwhileStands();

    void aboutPageStartsTheTour();
    void newUserIsWelcomedOnce();
    void oldHandIsNotWelcomed();
    void languageOfTheWelcomeIsThatOfThePage();

private:
    void start(int mode = kForceDark, const LauncherData& document = standardDocument());
    void goTo(int step);
    void passStep();
    void chooseType(const QString& type);
    TourOverlay* overlay() const { return m_window->findChild<TourOverlay*>("tourOverlay"); }
    void next() const { QTest::mouseClick(overlay()->nextButton(), Qt::LeftButton); }
    QString shownTitle() const
    {
        return overlay()->cardWindow()->findChild<QLabel*>("tourTitle")->text();
    }
    QRect expectedTarget(int step) const;
    QPlainTextEdit* value() const { return named<QPlainTextEdit>("editorValueInput"); }
};

void MainWindowTourTest::start(int mode, const LauncherData& document)
{
    store("Theme/ForceTheme", mode);
    open(document);
    m_window->startInteractiveTour();
    QTRY_COMPARE(m_window->tourStep(), int(MainWindow::TourWelcome));
}

void MainWindowTourTest::chooseType(const QString& type)
{
    auto* button = editor()->typeButton();
    inMenus([button] { QTest::mouseClick(button, Qt::LeftButton); }, {choose(type)});
}

/// Does what the step waits for.
void MainWindowTourTest::passStep()
{
    const int step = m_window->tourStep();
    switch (step) {
    case MainWindow::TourMakeSection:
        QVERIFY(model()->addCategory("New", AlphaIcon));
        break;
    case MainWindow::TourOpenItemForm:
        m_window->openItemEditor({});
        break;
    case MainWindow::TourPickType:
        chooseType("File");
        break;
    case MainWindow::TourFillName:
        QTest::keyClicks(editor()->nameInput(), "Mine");
        next();
        break;
    case MainWindow::TourPickFile:
        QTest::keyClicks(value(), "/tmp/some.txt");
        break;
    case MainWindow::TourSaveItem:
        named<QPushButton>("editorSaveBtn")->click();
        break;
    default:
        next();
    }
    const int after = step == MainWindow::TourFinish ? kOver : step + 1;
    QTRY_COMPARE(m_window->tourStep(), after);
}

void MainWindowTourTest::goTo(int step)
{
    while (m_window->tourStep() < step && !QTest::currentTestFailed())
        passStep();
}

QRect MainWindowTourTest::expectedTarget(int step) const
{
    const QWidget* widgets[] = {nullptr,
                                home()->addButton(),
                                strip(),
                                home()->addButton(),
                                editor()->typeButton(),
                                editor()->nameInput(),
                                editor()->browseButton(),
                                editor()->saveButton(),
                                nullptr,
                                searchField()};
    QRect place;
    if (step == MainWindow::TourItemMade)
        place = list()
                    ->visualItemRect(list()->currentItem())
                    .translated(list()->viewport()->mapTo(m_window.get(), QPoint(0, 0)));
    else if (widgets[step])
        place = rectIn(*m_window, widgets[step]);
    else
        return {};
    return place.translated(-background()->pos());
}

void MainWindowTourTest::stepsShowWhatTheyAreAbout_data()
{
    QTest::addColumn<int>("step");
    for (int step = 0; step < MainWindow::TourStepCount; ++step)
        QTest::newRow(kSteps[step].name) << step;
}

void MainWindowTourTest::stepsShowWhatTheyAreAbout()
{
    QFETCH(int, step);
    start();
    goTo(step);
    QCOMPARE(m_window->tourStep(), step);
    const QString prefix = QStringLiteral("tour.") + QLatin1String(kSteps[step].name);
    QVERIFY(overlay()->isVisible());
    QCOMPARE(overlay()->geometry(), background()->geometry());
    QCOMPARE(shownTitle(), Tr::t(prefix + "_title"));
    const QWidget* card = overlay()->cardWindow();
    QVERIFY(card->isVisible());
    QCOMPARE(card->findChild<QLabel*>("tourText")->text(), Tr::t(prefix + "_desc"));
    QCOMPARE(card->findChild<QLabel*>("tourCounter")->text(),
             QStringLiteral("%1 of 10").arg(step + 1));
    const char* buttonKey = kSteps[step].buttonKey;
    QCOMPARE(overlay()->nextButton()->isVisible(), buttonKey != nullptr);
    QCOMPARE(overlay()->nextButton()->text(), buttonKey ? Tr::t(buttonKey) : QString());
    // The hole fits what it is about, to the pixel.
    const QRect target = expectedTarget(step);
    const int pad = TourOverlay::HolePad;
    const QRectF hole = target.isNull() ? QRectF() : target.adjusted(-pad, -pad, pad, pad);
    QCOMPARE(overlay()->holePath().boundingRect(), hole);
}

void MainWindowTourTest::focusOfTheSteps()
{
    start();
    goTo(MainWindow::TourSectionMade);
    QCOMPARE(m_window->focusWidget(), strip());
    goTo(MainWindow::TourItemMade);
    QCOMPARE(m_window->focusWidget(), list());
}

void MainWindowTourTest::whatIsMadeStays()
{
    start();
    goTo(MainWindow::TourFinish);
    passStep();
    QVERIFY(!m_window->tourActive());
    QTRY_VERIFY(!overlay());
    const LauncherData document = onDisk();
    QCOMPARE(document.categories, (QStringList{"Alpha", "Beta", "Gamma", "New"}));
    const QVector<LauncherElement> items = document.sectionElements.value("New");
    QCOMPARE(items.size(), 1);
    QCOMPARE(items.at(0).name, QStringLiteral("Mine"));
    QCOMPARE(items.at(0).shortcutType, ::ItemType::File);
    QCOMPARE(items.at(0).value, QStringLiteral("/tmp/some.txt"));
}

void MainWindowTourTest::otherTypesDontAdvance_data()
{
    QTest::addColumn<QString>("type");
    for (const char* type : {"Application", "Bulk", "Snippet", "URL"})
        QTest::newRow(type) << type;
}

void MainWindowTourTest::otherTypesDontAdvance()
{
    QFETCH(QString, type);
    start();
    goTo(MainWindow::TourPickType);
    emit editor()->editorTypeChanged(type);
    QCoreApplication::processEvents();
    QCOMPARE(m_window->tourStep(), int(MainWindow::TourPickType));
    emit editor()->editorTypeChanged(::ItemType::File);
    QTRY_COMPARE(m_window->tourStep(), int(MainWindow::TourFillName));
    // Nor does the type at any other step.
    emit editor()->editorTypeChanged(::ItemType::File);
    QCoreApplication::processEvents();
    QCOMPARE(m_window->tourStep(), int(MainWindow::TourFillName));
}

void MainWindowTourTest::blankValueDoesntAdvance()
{
    start();
    goTo(MainWindow::TourPickFile);
    QTest::keyClicks(value(), "  ");
    QCoreApplication::processEvents();
    QCOMPARE(m_window->tourStep(), int(MainWindow::TourPickFile));
    QTest::keyClicks(value(), "x");
    QTRY_COMPARE(m_window->tourStep(), int(MainWindow::TourSaveItem));
}

void MainWindowTourTest::cancelledFormRewinds_data()
{
    QTest::addColumn<int>("step");
    for (int step = MainWindow::TourPickType; step <= MainWindow::TourSaveItem; ++step)
        QTest::newRow(kSteps[step].name) << step;
}

void MainWindowTourTest::cancelledFormRewinds()
{
    QFETCH(int, step);
    start();
    goTo(step);
    press(Qt::Key_Escape);
    QTRY_COMPARE(m_window->tourStep(), int(MainWindow::TourOpenItemForm));
    QCOMPARE(shownTitle(), Tr::t("tour.item_title"));
    // From there it goes on as if nothing had been.
    goTo(MainWindow::TourItemMade);
    QCOMPARE(itemsOf("New"), QStringList{"Mine"});
}

void MainWindowTourTest::savedEarlyRewinds()
{
    // Saved at an earlier step, as Enter does it, the item counts as there when the form opens
    // again.
    start();
    goTo(MainWindow::TourFillName);
    QTest::keyClicks(editor()->nameInput(), "Early");
    QTest::keyClicks(value(), "/tmp/early.txt");
    QCOMPARE(m_window->tourStep(), int(MainWindow::TourFillName));
    named<QPushButton>("editorSaveBtn")->click();
    QTRY_COMPARE(m_window->tourStep(), int(MainWindow::TourOpenItemForm));
    QCOMPARE(itemsOf("New").size(), 1);
    goTo(MainWindow::TourItemMade);
    QCOMPARE(itemsOf("New").size(), 2);
}

void MainWindowTourTest::existingDataIsHidden()
{
    start();
    QCOMPARE(rows(), QStringList());
    QVERIFY(!home()->selectedCategoryButton());
    goTo(MainWindow::TourSectionMade);
    QVERIFY(home()->selectedCategoryButton());
    QCOMPARE(strip()->findChildren<QPushButton*>().size(), 1);
    goTo(MainWindow::TourItemMade);
    QCOMPARE(rows(), QStringList{"Mine"});
    goTo(MainWindow::TourFinish);
    passStep();
    QTRY_COMPARE(strip()->findChildren<QPushButton*>().size(), 4);
    model()->setCurrentCategory("Alpha");
    home()->refreshCategories(-1, false);
    QCOMPARE(rows(), (QStringList{"One", "Two", "Three"}));
}

void MainWindowTourTest::searchFindsOnlyWhatIsNew()
{
    start();
    QVERIFY(model()->addCategory("New", AlphaIcon));
    QTest::keyClicks(searchField(), "One");
    QCOMPARE(rows(), QStringList());
    m_window->endTour();
    home()->refreshUI(-1, false);
    QCOMPARE(rows().value(0), QStringLiteral("One"));
}

void MainWindowTourTest::tabIsSwallowed()
{
    start();
    press(Qt::Key_Tab);
    QVERIFY(!isDipping());
    QCOMPARE(stack()->currentIndex(), 0);
    m_window->endTour();
    press(Qt::Key_Tab);
    QTRY_COMPARE(stack()->currentIndex(), 1);
}

void MainWindowTourTest::rebuildEndsTheTour()
{
    start();
    goTo(MainWindow::TourSectionMade);
    const QPointer<TourOverlay> shown = overlay();
    const QPointer<QWidget> card = shown->cardWindow();
    m_window->rebuildUIPreservingFocus();
    QVERIFY(!m_window->tourActive());
    QCOMPARE(m_window->tourStep(), kOver);
    QVERIFY(!card->isVisible());
    QTRY_VERIFY(!shown && !card);
    QTRY_VERIFY(!isDipping());
    QCOMPARE(strip()->findChildren<QPushButton*>().size(), 4);
}

void MainWindowTourTest::otherPageEndsTheTour()
{
    start();
    goTo(MainWindow::TourMakeSection);
    m_window->goToPage(1);
    QTRY_VERIFY(!m_window->tourActive());
}

void MainWindowTourTest::missingTargetEndsTheTour()
{
    start();
    home()->addButton()->hide();
    next();
    QVERIFY(!m_window->tourActive());
    QCOMPARE(m_window->tourStep(), kOver);
}

void MainWindowTourTest::hideAndShowKeepTheStep_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("after");
    QTest::newRow("welcome") << 0 << 0;
    QTest::newRow("section") << 1 << 1;
    QTest::newRow("pill") << 2 << 2;
    QTest::newRow("the form, which closes") << 5 << 3;
    QTest::newRow("run") << 8 << 8;
    QTest::newRow("finish") << 9 << 9;
}

void MainWindowTourTest::hideAndShowKeepTheStep()
{
    QFETCH(int, step);
    QFETCH(int, after);
    start();
    goTo(step);
    m_window->fadeOutAndHide();
    QTRY_VERIFY(!m_window->isVisible());
    QVERIFY(!overlay()->cardWindow()->isVisible());
    m_window->show();
    QTRY_VERIFY(overlay() && overlay()->cardWindow()->isVisible());
    QTRY_COMPARE(m_window->tourStep(), after);
    QVERIFY(overlay()->isVisible());
    QCOMPARE(shownTitle(), Tr::t(QStringLiteral("tour.%1_title").arg(kSteps[after].name)));
}

void MainWindowTourTest::cardLiesOverNoBackdrop()
{
    start();
    goTo(MainWindow::TourPickType);
    QVERIFY(card()->isVisible());
    QVERIFY(!backdrop()->isVisible());
}

void MainWindowTourTest::companionExplainsTheDialog_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("after");
    QTest::newRow("cancelled") << QString() << int(MainWindow::TourMakeSection);
    QTest::newRow("made") << "Made" << int(MainWindow::TourSectionMade);
}

void MainWindowTourTest::companionExplainsTheDialog()
{
    QFETCH(QString, name);
    QFETCH(int, after);
    start();
    goTo(MainWindow::TourMakeSection);
    bool wasExplained = false;
    const ModalDriver driver([&](QWidget* dialog) {
        QTRY_VERIFY(!overlay()->isVisible());
        QVERIFY(overlay()->cardWindow()->isVisible());
        QCOMPARE(shownTitle(), Tr::t("tour.section_dialog_title"));
        QVERIFY(!overlay()->cardWindow()->geometry().intersects(dialog->frameGeometry()));
        wasExplained = true;
        if (name.isEmpty()) {
            QTest::keyClick(dialog, Qt::Key_Escape);
            return;
        }
        QTest::keyClicks(dialog->findChild<QLineEdit*>(), name);
        QTest::keyClick(dialog->findChild<QLineEdit*>(), Qt::Key_Return);
    });
    QCOMPARE(m_window->addSectionViaDialog(m_window.get()), !name.isEmpty());
    QVERIFY(wasExplained);
    QTRY_COMPARE(m_window->tourStep(), after);
    QTRY_VERIFY(overlay()->isVisible());
    QCOMPARE(shownTitle(), Tr::t(QStringLiteral("tour.%1_title").arg(kSteps[after].name)));
}

void MainWindowTourTest::questionHidesTheOverlay()
{
    start();
    goTo(MainWindow::TourItemMade);
    m_window->openItemDeleteConfirm(model()->getItems("New").at(0).id);
    QVERIFY(!overlay()->isVisible());
    QVERIFY(!overlay()->cardWindow()->isVisible());
    press(Qt::Key_Escape);
    QTRY_VERIFY(overlay() && overlay()->isVisible());
    QCOMPARE(m_window->tourStep(), int(MainWindow::TourItemMade));
    // An item that isn't there asks nothing, and so hides nothing.
    m_window->openItemDeleteConfirm("none");
    QVERIFY(overlay()->isVisible());
}

/// What a tour hides can't be put into order.
void MainWindowTourTest::ordersNothing()
{
    start();
    const LauncherData before = model()->data();
    home()->enterSectionReorderMode();
    QVERIFY(!home()->isReorderMode()); // fewer pills than there are sections
    home()->enterReorderMode();
    press(Qt::Key_Space);
    press(Qt::Key_Right);
    home()->exitReorderMode(true);
    QVERIFY(!home()->isReorderMode());
    QCOMPARE(model()->data().categories, before.categories);
    QCOMPARE(model()->data().sectionElements, before.sectionElements);
    QCOMPARE(m_window->tourStep(), int(MainWindow::TourWelcome));
}

void MainWindowTourTest::lightThemeIsDarkForTheTour()
{
    QElapsedTimer waited;
    waited.start();
    start(kForceLight);
    QVERIFY(waited.elapsed() >= kDipMs); // for the rebuild
    QVERIFY(Theme::isDarkMode());
    QCOMPARE(stored("Theme/ForceTheme"), QStringLiteral("1"));
    QVERIFY(background()->styleSheet().contains(Theme::shellBg()));
    m_window->endTour();
    QTRY_COMPARE(Theme::forceTheme, kForceLight);
    QTRY_VERIFY(background()->styleSheet().contains(Theme::shellBg()));
    QTRY_VERIFY(!isDipping());
    QCOMPARE(stored("Theme/ForceTheme"), QStringLiteral("1"));
}

void MainWindowTourTest::darkThemeStartsAtOnce()
{
    store("Theme/ForceTheme", kForceDark);
    open();
    const QPointer<QFrame> before = background();
    m_window->startInteractiveTour();
    QCoreApplication::processEvents(); // and no more than that
    QVERIFY(m_window->tourActive());
    QVERIFY(!isDipping());
    QCOMPARE(background(), before.data());
    m_window->endTour();
    QCoreApplication::processEvents();
    QCOMPARE(Theme::forceTheme, kForceDark);
    QVERIFY(!isDipping());
}

void MainWindowTourTest::themeChosenMeanwhileStands()
{
    start(kForceLight);
    Theme::saveForceTheme(0);
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!isDipping());
    QCOMPARE(Theme::forceTheme, 0);
    QCOMPARE(stored("Theme/ForceTheme"), QStringLiteral("0"));
}

void MainWindowTourTest::aboutPageStartsTheTour()
{
    store("Theme/ForceTheme", kForceLight);
    open();
    m_window->goToPage(1);
    QTRY_COMPARE(stack()->currentIndex(), 1);
    QTRY_VERIFY(!isDipping());
    QElapsedTimer waited;
    waited.start();
    emit m_window->findChild<AboutSettingsPage*>()->startTourRequested();
    QTRY_VERIFY(m_window->tourActive());
    QVERIFY(waited.elapsed() >= 2 * kDipMs); // for the page, then for the rebuild
    QCOMPARE(stack()->currentIndex(), 0);
    QVERIFY(Theme::isDarkMode());
    QVERIFY(overlay()->isVisible());
    m_window->endTour();
    QTRY_COMPARE(Theme::forceTheme, kForceLight);
    QTRY_VERIFY(!isDipping());
}

void MainWindowTourTest::newUserIsWelcomedOnce()
{
    beNewUser();
    store("Theme/ForceTheme", kForceDark);
    const ModalDriver driver([](QWidget* dialog) {
        QVERIFY(qobject_cast<OnboardingDialog*>(dialog));
        // Held for as long as it is open, and not only since the window has been shown.
        QTimer shown;
        shown.setSingleShot(true);
        shown.start(AutoQuitBlocker::ReleaseMs + 100);
        QTRY_VERIFY(!shown.isActive());
        QVERIFY(g_blockAutoQuit);
        QCOMPARE(QSettings(Theme::settingsFilePath(), Settings::format())
                     .value("Onboarding/Completed")
                     .toBool(),
                 false);
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    construct();
    m_window->show();
    QTRY_COMPARE(driver.count(), 1);
    QTRY_VERIFY(m_window->tourActive());
    QCOMPARE(stored("Onboarding/Completed"), QStringLiteral("true"));
    // Not even if the file forgets.
    beNewUser();
    m_window->hide();
    m_window->show();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QCOMPARE(driver.count(), 1);
}

void MainWindowTourTest::oldHandIsNotWelcomed()
{
    const ModalDriver driver([](QWidget* dialog) { dialog->close(); });
    open();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QCOMPARE(driver.count(), 0);
    QVERIFY(!m_window->tourActive());
}

void MainWindowTourTest::languageOfTheWelcomeIsThatOfThePage()
{
    beNewUser();
    store("Theme/ForceTheme", kForceDark);
    const ModalDriver driver([](QWidget* dialog) {
        Tr::setLanguage(Lang::Es);
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    construct();
    const QPointer<QFrame> before = background();
    m_window->show();
    QTRY_VERIFY(m_window->tourActive());
    QVERIFY(!before);
    QCOMPARE(home()->addButton()->accessibleName(), Tr::t("actions.add_shortcut"));
    QCOMPARE(shownTitle(), Tr::t("tour.welcome_title"));
    m_window.reset();
    Tr::setLanguage(Lang::En);
}

QTEST_MAIN(MainWindowTourTest)
#include "tst_mainwindowtour.moc"
