// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FittingText.h"
#include "LanguageRows.h"
#include "Pixels.h"
#include "RowPainting.h"
#include "SettingsCatDelegate.h"
#include "SettingsViewFixture.h"

#include <QPointer>

#include <functional>

/// The settings page as it stands in the window, how the user gets there and away again, and what
/// is left of it after the window has been built anew.
class SettingsViewTest : public SettingsViewFixture
{
    Q_OBJECT

private slots:
    void header_data();
    void header();
    void panel_data();
    void panel();
    void categoriesAndPages_data();
    void categoriesAndPages();
    void textsFit_data();
    void textsFit();
    void categoryListLook();
    void hoveredCategoryIsLit();
    void titleDoesNotFollowTheCategory();
    void nothingBeforeItIsBuilt();

    void isBuiltWhenItIsEntered();
    void entersByKeyAndButton_data();
    void entersByKeyAndButton();
    void keepsTheCategoryAcrossVisits();
    void tabLeadsHome_data();
    void tabLeadsHome();
    void tabDuringTheDip();
    void showBeginsAtTheTop();
    void opensCategoryByTitle_data();
    void opensCategoryByTitle();
    void managesTemplates();
    void managesNothingOnceLeft();

    void rebuildKeepsTheCategory_data();
    void rebuildKeepsTheCategory();
    void rebuildKeepsTheFocusInView();
    void rebuildInAnotherLanguage();
    void controlsChangeTheWindow_data();
    void controlsChangeTheWindow();
    void rebuildDuringAChangeOfPage_data();
    void rebuildDuringAChangeOfPage();
    void rebuildWhenHiddenBeginsAtHome();
    void manyRebuildsLeaveNothingBehind();

private:
    void rebuild();
    QWidget* part(const char* name) const { return settings()->findChild<QWidget*>(name); }
};

namespace
{

const QStringList kCategoryKeys{"settings.cat_display", "settings.cat_app", "settings.cat_template",
                                "settings.cat_about"};

void addModes()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("light") << 1;
    QTest::newRow("dark") << 2;
}

} // namespace

void SettingsViewTest::rebuild()
{
    m_window->rebuildUIPreservingFocus();
    waitForTheDip();
}

void SettingsViewTest::header_data()
{
    addModes();
}

void SettingsViewTest::header()
{
    QFETCH(int, mode);
    store("Theme/ForceTheme", mode);
    openSettings();
    QWidget* band = part("settingsHeaderCard");
    QVERIFY(band);
    QCOMPARE(rectIn(*settings(), band), QRect(0, 0, 756, 56));
    QCOMPARE(band->styleSheet(),
             QStringLiteral("QFrame#settingsHeaderCard { background-color: %1; border: none; "
                            "border-top-left-radius: 24px; border-top-right-radius: 24px; "
                            "border-bottom-left-radius: 0px; border-bottom-right-radius: 0px; }")
                 .arg(Theme::shellBg()));
    const auto* title = band->findChild<QLabel*>();
    QCOMPARE(title->text(), QStringLiteral("Settings"));
    QCOMPARE(title->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
    QCOMPARE(rectIn(*band, title).left(), 12 + 32 + 8);

    QCOMPARE(rectIn(*band, backButton()), QRect(12, 12, 32, 32));
    QCOMPARE(backButton()->text(), QString(QChar(0x2190)));
    QCOMPARE(backButton()->font().pixelSize(), 20);
    QVERIFY(backButton()->font().bold());
    QCOMPARE(backButton()->focusPolicy(), Qt::StrongFocus);
    QCOMPARE(backButton()->cursor().shape(), Qt::PointingHandCursor);
    const QString ink = Theme::colors().onSurface;
    QCOMPARE(title->styleSheet(),
             QStringLiteral("color: %1; font-size: 18px; font-weight: bold; border: none; "
                            "background: transparent;")
                 .arg(ink));
    QCOMPARE(backButton()->styleSheet(),
             QStringLiteral("QPushButton { background-color: transparent; color: %1; border: none; "
                            "border-radius: 16px; outline: 0; %4 }"
                            "QPushButton:hover { background-color: %2; color: %1; }"
                            "QPushButton:focus { background-color: %3; color: %1; outline: 0; }")
                 .arg(ink, Theme::stateLayerOn("transparent", ink, 0.08),
                      Theme::stateLayerOn("transparent", ink, 0.1),
                      IconHelper::glyphCenteringPad(backButton()->font(), QChar(0x2190),
                                                    QSize(32, 32))));
    QVERIFY(!Pixels::boxOfColor(backButton()->grab().toImage().convertedTo(QImage::Format_RGB32),
                                QColor(Theme::colors().onSurface), 60)
                 .isEmpty());
}

void SettingsViewTest::panel_data()
{
    addModes();
}

void SettingsViewTest::panel()
{
    QFETCH(int, mode);
    store("Theme/ForceTheme", mode);
    openSettings();
    const QSize card(820 - 64, 580 - 64);
    QCOMPARE(m_window->size(), QSize(820, 580));
    QCOMPARE(settings()->size(), card);
    QCOMPARE(rectIn(*settings(), part("settingsChromeStripBase")), QRect(0, 56, 756, 460));
    QCOMPARE(rectIn(*settings(), part("settingsPaperPanel")), QRect(0, 56, 756, 460));
    // Three parts of the width for the categories, seven for their pages.
    QCOMPARE(rectIn(*settings(), categories()), QRect(0, 56, 227, 460));
    QCOMPARE(rectIn(*settings(), pages()), QRect(227, 56, 529, 460));

    const QImage image = m_window->grab().toImage().convertedTo(QImage::Format_ARGB32);
    const auto at = [&image](int x, int y) { return QColor(image.pixelColor(32 + x, 32 + y)); };
    const QColor shell(Theme::shellBg());
    const QColor paper(Theme::panelBg());
    QCOMPARE(at(378, 4), shell);
    QCOMPARE(at(378, 55), shell);
    QCOMPARE(at(378, 57), paper);
    // Radius 16 above: on the shell's ground.
    for (const int x : {1, 754}) {
        QCOMPARE(at(x, 57), shell);
        QCOMPARE(at(x, 56 + 17), paper);
    }
    // Radius 24 below, as the window's: nothing there but its shadow.
    for (const int x : {1, 754}) {
        QVERIFY(at(x, 514) != paper && at(x, 514) != shell);
        QCOMPARE(at(x, 516 - 26), paper);
    }
}

void SettingsViewTest::categoriesAndPages_data()
{
    addLanguageRows();
}

void SettingsViewTest::categoriesAndPages()
{
    QFETCH(Lang, lang);
    store("Language/Code", Tr::codeFor(lang));
    openSettings();
    const QList<uint> glyphs{0xE40A, 0xE429, 0xE98B, 0xF09A};
    QCOMPARE(categories()->count(), 4);
    QCOMPARE(pages()->count(), 4);
    for (int row = 0; row < 4; ++row) {
        const QListWidgetItem* item = categories()->item(row);
        QCOMPARE(item->text(), Tr::t(kCategoryKeys.at(row)));
        QCOMPARE(item->data(256).toUInt(), glyphs.at(row));
        categories()->setCurrentRow(row);
        QCOMPARE(pages()->currentIndex(), row);
        // It fits into its pill, even where it is bold: 12 px outside on both sides, the bubble of
        // 28 px and what is around it, 16 px behind the text.
        const QFont font = RowPainting::rowFont(13, QFont::Bold);
        const int room = categories()->width() - 24 - (12 + 28 + 10) - 16;
        QVERIFY2(QFontMetrics(font).horizontalAdvance(item->text()) <= room,
                 qPrintable(item->text()));
    }
    QCOMPARE(part("settingsHeaderCard")->findChild<QLabel*>()->text(), Tr::t("settings.title"));
}

void SettingsViewTest::textsFit_data()
{
    categoriesAndPages_data();
}

void SettingsViewTest::textsFit()
{
    QFETCH(Lang, lang);
    FittingText::useProgramFont();
    store("Language/Code", Tr::codeFor(lang));
    openSettings();
    for (int row = 0; row < 4; ++row) {
        categories()->setCurrentRow(row);
        QCoreApplication::processEvents();
        const QRect page = rectIn(*settings(), pages());
        int texts = 0;
        for (QPushButton* button : pages()->currentWidget()->findChildren<QPushButton*>()) {
            const QSize text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
            QVERIFY2(text.width() <= FittingText::contentsOf(*button).width(),
                     qPrintable(button->text()));
            const QRect place = rectIn(*settings(), button);
            QVERIFY2(place.left() >= page.left() && place.right() <= page.right(),
                     qPrintable(button->text()));
            ++texts;
        }
        for (QLabel* label : pages()->currentWidget()->findChildren<QLabel*>()) {
            if (!label->isVisible() || label->text().isEmpty())
                continue;
            const bool fits = label->wordWrap()
                                  ? label->heightForWidth(label->width()) <= label->height()
                                  : label->sizeHint().width() <= label->width();
            QVERIFY2(fits, qPrintable(label->text()));
            ++texts;
        }
        QVERIFY(texts >= 6);
    }
}

void SettingsViewTest::categoryListLook()
{
    openSettings();
    QCOMPARE(categories()->objectName(), QStringLiteral("settingsCatList"));
    QCOMPARE(categories()->focusPolicy(), Qt::StrongFocus);
    QCOMPARE(categories()->editTriggers(), QAbstractItemView::NoEditTriggers);
    QCOMPARE(categories()->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(categories()->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QVERIFY(qobject_cast<SettingsCatDelegate*>(categories()->itemDelegate()));
    for (int row = 0; row < 4; ++row) {
        const QRect place = categories()->visualItemRect(categories()->item(row));
        QCOMPARE(place, QRect(0, row * 50, 227, 50)); // a pill of 38 px, half a gap on either side
    }
    QCOMPARE(categories()->viewport()->mapTo(settings(), QPoint()), QPoint(0, 56 + 16));
    const QImage image = settings()->grab().toImage();
    const auto left = [&image](int row) {
        return QColor(image.pixelColor(20, 56 + 16 + row * 50 + 25));
    };
    QCOMPARE(left(0), QColor(Theme::colors().primaryContainer));
    QCOMPARE(left(1), QColor(Theme::boxBg()));
}

void SettingsViewTest::hoveredCategoryIsLit()
{
    openSettings();
    const QPoint middle = categories()->visualItemRect(categories()->item(2)).center();
    QTest::mouseMove(categories()->viewport(), middle + QPoint(1, 1));
    QTest::mouseMove(categories()->viewport(), middle);
    const auto pill = [&] {
        return categories()->viewport()->grab().toImage().pixelColor(20, middle.y());
    };
    QTRY_COMPARE(pill(), QColor(Theme::colors().surfaceVariant));
    QCOMPARE(categories()->currentRow(), 0);
}

void SettingsViewTest::titleDoesNotFollowTheCategory()
{
    openSettings();
    for (int row = 3; row >= 0; --row) {
        categories()->setCurrentRow(row);
        QCOMPARE(part("settingsHeaderCard")->findChild<QLabel*>()->text(),
                 QStringLiteral("Settings"));
    }
}

void SettingsViewTest::nothingBeforeItIsBuilt()
{
    open();
    SettingsView view(model(), m_window.get(), nullptr);
    view.resetToTop();
    view.updateHeaderTitle();
    view.openSelectedCategory();
    view.focusAfterRebuild(nullptr);
    QVERIFY(!view.openCategoryByTitle("About"));
    QVERIFY(view.focusCategoryPane());
    QVERIFY(view.detailRows().isEmpty());
    QVERIFY(!view.rowOf(&view));
    for (const int key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Up, Qt::Key_Left}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QVERIFY(!view.handleKeyPress(&view, &event));
    }
    QFocusEvent focusIn(QEvent::FocusIn);
    QVERIFY(!view.handleEvent(&view, &focusIn));
    QCOMPARE(focused(), strip());
}

void SettingsViewTest::isBuiltWhenItIsEntered()
{
    open();
    const auto list = [this] { return m_window->findChild<QListWidget*>("settingsCatList"); };
    QVERIFY(!list());
    press(Qt::Key_Tab);
    QVERIFY(list());
    QCOMPARE(focused(), list());
    QTRY_VERIFY(isOnSettings());
    waitForTheDip();
    QVERIFY(list()->isVisible());
    QCOMPARE(focused(), list());
    const QPointer<QListWidget> old(list());
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!old);
    QVERIFY(list()->isVisible());
    QCOMPARE(focused(), list());
}

void SettingsViewTest::entersByKeyAndButton_data()
{
    QTest::addColumn<QString>("way");
    for (const char* way : {"Tab", "click", "Return"})
        QTest::newRow(way) << way;
}

void SettingsViewTest::entersByKeyAndButton()
{
    QFETCH(QString, way);
    open();
    if (way == QLatin1String("Tab")) {
        press(Qt::Key_Tab);
    } else if (way == QLatin1String("click")) {
        QTest::mouseClick(home()->settingsButton(), Qt::LeftButton);
    } else {
        home()->settingsButton()->setFocus();
        QTest::keyClick(focused(), Qt::Key_Return);
    }
    QVERIFY(isDipping());
    QCOMPARE(m_window->size(), QSize(617, 616));
    QCOMPARE(focused(), categories()); // at once
    waitForTheDip();
    QVERIFY(isOnSettings());
    QCOMPARE(m_window->geometry(), QRect(190, 186, 820, 580));
    QCOMPARE(focused(), categories());
    QCOMPARE(categories()->currentRow(), 0);
    QVERIFY(categories()->currentItem()->isSelected());
}

void SettingsViewTest::keepsTheCategoryAcrossVisits()
{
    openSettings(2);
    press(Qt::Key_Tab);
    waitForTheDip();
    press(Qt::Key_Tab);
    waitForTheDip();
    QCOMPARE(categories()->currentRow(), 2);
    categories()->setCurrentItem(nullptr);
    press(Qt::Key_Tab);
    waitForTheDip();
    press(Qt::Key_Tab);
    QCOMPARE(categories()->currentRow(), 0);
    waitForTheDip();
}

void SettingsViewTest::tabLeadsHome_data()
{
    QTest::addColumn<QString>("where");
    QTest::newRow("from the list") << "settingsCatList";
    QTest::newRow("from the back button") << "settingsBackBtn";
    QTest::newRow("from a control") << "btnExportData";
}

void SettingsViewTest::tabLeadsHome()
{
    QFETCH(QString, where);
    openSettings(1);
    part(qPrintable(where))->setFocus();
    model()->saveItem("Alpha", snippet("a4", "Four"), -1);
    QVERIFY(isTaken(Qt::Key_Tab));
    QCOMPARE(focused(), strip());
    waitForTheDip();
    QVERIFY(!isOnSettings());
    QCOMPARE(m_window->geometry(), QRect(292, 168, 617, 616));
    QCOMPARE(focused(), strip());
    QCOMPARE(rows(), QStringList({"One", "Two", "Three", "Four"}));
}

void SettingsViewTest::tabDuringTheDip()
{
    open();
    press(Qt::Key_Tab);
    press(Qt::Key_Tab); // not there yet: the way there begins anew
    waitForTheDip();
    QVERIFY(isOnSettings());
    QCOMPARE(focused(), categories());
    // What is typed meanwhile finds the list, and not what is out of sight.
    press(Qt::Key_Tab);
    waitForTheDip();
    press(Qt::Key_Tab);
    press(Qt::Key_Down);
    waitForTheDip();
    QCOMPARE(categories()->currentRow(), 1);
    QCOMPARE(pages()->currentIndex(), 1);
}

void SettingsViewTest::showBeginsAtTheTop()
{
    openSettings(3);
    m_window->fadeOutAndHide();
    QTRY_VERIFY(m_window->isHidden());
    ForeignProgram foreign;
    foreign.takeFocus();
    m_window->show();
    QVERIFY(!isOnSettings());
    QCOMPARE(m_window->size(), QSize(617, 616));
    QCOMPARE(categories()->currentRow(), 0);
    QCOMPARE(pages()->currentIndex(), 0);
    QTRY_COMPARE(focused(), strip());
}

void SettingsViewTest::opensCategoryByTitle_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("row"); // -1: none
    QTest::newRow("first") << "Display" << 0;
    QTest::newRow("last") << "About" << 3;
    QTest::newRow("templates") << "Templates" << 2;
    QTest::newRow("none") << "" << -1;
    QTest::newRow("other case") << "about" << -1;
    QTest::newRow("beginning") << "Temp" << -1;
    QTest::newRow("pattern") << "*" << -1;
    QTest::newRow("key") << "settings.cat_about" << -1;
    QTest::newRow("another language") << "Tentang" << -1;
}

void SettingsViewTest::opensCategoryByTitle()
{
    QFETCH(QString, title);
    QFETCH(int, row);
    openSettings(1);
    QCOMPARE(settings()->openCategoryByTitle(title), row >= 0);
    QCOMPARE(categories()->currentRow(), row >= 0 ? row : 1);
    QCOMPARE(pages()->currentIndex(), categories()->currentRow());
    QVERIFY(categories()->currentItem()->isSelected());
    if (row < 0)
        QCOMPARE(focused(), categories());
}

void SettingsViewTest::managesTemplates()
{
    open();
    inMenus([this] { m_window->showTemplateActionsMenu(); }, {chooseKey("template.manage")});
    waitForTheDip();
    QVERIFY(isOnSettings());
    QTRY_COMPARE(focusedName(), QStringLiteral("tplCreateBtn"));
    QCOMPARE(categories()->currentRow(), 2);
    QCOMPARE(pages()->currentIndex(), 2);
}

void SettingsViewTest::managesNothingOnceLeft()
{
    open();
    inMenus([this] { m_window->showTemplateActionsMenu(); }, {chooseKey("template.manage")});
    m_window->fadeOutAndHide();
    QTRY_VERIFY(m_window->isHidden());
    m_window->show();
    bool isOver = false;
    QTimer::singleShot(400, Qt::PreciseTimer, this, [&isOver] { isOver = true; });
    QTRY_VERIFY(isOver);
    QVERIFY(!isOnSettings());
    QCOMPARE(categories()->currentRow(), 0);
}

void SettingsViewTest::rebuildKeepsTheCategory_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("focus");
    for (int row = 0; row < 4; ++row) {
        for (const char* focus : {"settingsCatList", "settingsBackBtn"})
            QTest::addRow("category %d, %s", row, focus) << row << focus;
    }
    const QList<QStringList> controls{
        {"themeBtn_auto", "themeBtn_dark", "accentSwatch", "gridColBtn_2", "langPickBtn"},
        {"hotkeyRecord_main", "hotkeyReset_spotlight", "btnExportData", "btnResetData"},
        {"tplCreateBtn", "tplMenuBtn_Kit"},
        {"startTourBtn", "aboutMailBtn"}};
    for (int row = 0; row < 4; ++row) {
        for (const QString& focus : controls.at(row))
            QTest::newRow(qPrintable(focus)) << row << focus;
    }
}

void SettingsViewTest::rebuildKeepsTheCategory()
{
    QFETCH(int, row);
    QFETCH(QString, focus);
    openSettings(row);
    part(qPrintable(focus))->setFocus();
    const QPointer<SettingsView> old = settings();
    Theme::saveForceTheme(2);
    rebuild();
    QVERIFY(!old);
    QVERIFY(isOnSettings());
    QCOMPARE(m_window->geometry(), QRect(190, 186, 820, 580));
    QCOMPARE(categories()->currentRow(), row);
    QCOMPARE(pages()->currentIndex(), row);
    QCOMPARE(focusedName(), focus);
    QVERIFY(settings()->isAncestorOf(focused()));
    QVERIFY(part("settingsHeaderCard")->styleSheet().contains(Theme::shellBg()));
}

void SettingsViewTest::rebuildKeepsTheFocusInView()
{
    openSettings(2);
    QString last;
    for (int i = 0; i < 12; ++i) {
        SectionTemplate tpl;
        tpl.name = last = QStringLiteral("Kit%1").arg(i);
        model()->saveTemplate(tpl);
    }
    const QString button = QStringLiteral("tplMenuBtn_") + last;
    QTRY_VERIFY(part(qPrintable(button)));
    part(qPrintable(button))->setFocus();
    rebuild();
    QCOMPARE(focusedName(), button);
    const QFrame* card = settings()->rowOf(focused());
    auto* area = pages()->currentWidget()->findChild<QScrollArea*>();
    QVERIFY(area->widget()->height() > area->viewport()->height() + 100);
    QVERIFY(area->viewport()->rect().contains(rectIn(*area->viewport(), card)));
}

void SettingsViewTest::rebuildInAnotherLanguage()
{
    openSettings(3);
    auto* nameless = new QLineEdit; // nobody finds it again
    nameless->setParent(pages()->currentWidget());
    nameless->show();
    nameless->setFocus();
    QCOMPARE(focused(), nameless);
    Tr::setLanguage(Lang::Ja);
    rebuild();
    QCOMPARE(categories()->currentItem()->text(), QStringLiteral("このアプリについて"));
    QCOMPARE(focused(), categories());
}

void SettingsViewTest::controlsChangeTheWindow_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::newRow("dark") << "themeBtn_dark"
                          << "Theme/ForceTheme"
                          << "2";
    QTest::newRow("automatic") << "themeBtn_auto"
                               << "Theme/ForceTheme"
                               << "0";
    QTest::newRow("columns") << "gridColBtn_2"
                             << "Layout/GridColumns"
                             << "2";
}

void SettingsViewTest::controlsChangeTheWindow()
{
    QFETCH(QString, control);
    QFETCH(QString, key);
    openSettings();
    const QPointer<SettingsView> old = settings();
    part(qPrintable(control))->setFocus();
    QVERIFY(isTaken(Qt::Key_Return));
    QTEST(stored(key), "value");
    QVERIFY(isDipping());
    waitForTheDip();
    QVERIFY(!old);
    QVERIFY(isOnSettings());
    QCOMPARE(focusedName(), control);
    QVERIFY(qobject_cast<QPushButton*>(focused())->isChecked());
    QVERIFY(part("settingsHeaderCard")->styleSheet().contains(Theme::shellBg()));
    // Once more changes nothing.
    QVERIFY(isTaken(Qt::Key_Return));
    QVERIFY(!isDipping());
}

void SettingsViewTest::rebuildDuringAChangeOfPage_data()
{
    QTest::addColumn<bool>("isToSettings");
    QTest::addColumn<bool>("isRebuildFirst");
    for (const bool isToSettings : {true, false}) {
        for (const bool isRebuildFirst : {true, false})
            QTest::addRow("%s, %s", isToSettings ? "to the settings" : "home",
                          isRebuildFirst ? "rebuild first" : "change first")
                << isToSettings << isRebuildFirst;
    }
}

void SettingsViewTest::rebuildDuringAChangeOfPage()
{
    QFETCH(bool, isToSettings);
    QFETCH(bool, isRebuildFirst);
    open();
    if (!isToSettings)
        enterSettings(1);
    const QPointer<SettingsView> old = settings();
    if (isRebuildFirst)
        m_window->rebuildUIPreservingFocus();
    press(Qt::Key_Tab);
    if (!isRebuildFirst)
        m_window->rebuildUIPreservingFocus();
    waitForTheDip();
    QVERIFY(!old);
    QCOMPARE(isOnSettings(), isToSettings);
    QCOMPARE(m_window->size(), isToSettings ? QSize(820, 580) : QSize(617, 616));
    QVERIFY(focused());
    QVERIFY(stack()->currentWidget()->isAncestorOf(focused()));
    QCOMPARE(m_window->findChildren<SettingsView*>().size(), 1);
}

void SettingsViewTest::rebuildWhenHiddenBeginsAtHome()
{
    openSettings(2);
    m_window->fadeOutAndHide();
    QTRY_VERIFY(m_window->isHidden());
    const QPointer<SettingsView> old = settings();
    m_window->rebuildUIPreservingFocus();
    m_window->show();
    QTRY_VERIFY(!old);
    QVERIFY(!isOnSettings());
    QCOMPARE(m_window->size(), QSize(617, 616));
    QCOMPARE(categories()->currentRow(), 0);
}

void SettingsViewTest::manyRebuildsLeaveNothingBehind()
{
    openSettings(1);
    m_window->hide(); // so that none of them waits for a dip
    qsizetype widgets = 0;
    qsizetype objects = 0;
    for (int i = 1; i <= 100; ++i) {
        Theme::saveForceTheme(1 + i % 2);
        Tr::setLanguage(Tr::all().at(i % 4));
        const QPointer<SettingsView> old = settings();
        m_window->rebuildUIPreservingFocus();
        QTRY_VERIFY(!old);
        QVERIFY(isOnSettings());
        QCoreApplication::processEvents();
        if (i == 12) {
            widgets = QApplication::allWidgets().size();
            objects = m_window->findChildren<QObject*>().size();
        }
    }
    QCOMPARE(categories()->currentRow(), 1);
    // The same theme and the same language as at that time.
    QCOMPARE(QApplication::allWidgets().size(), widgets);
    QCOMPARE(m_window->findChildren<QObject*>().size(), objects);
}

QTEST_MAIN(SettingsViewTest)
#include "tst_settingsview.moc"
