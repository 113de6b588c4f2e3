// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Browser.h"
#include "CardHeader.h"
#include "Delegates.h"
#include "GlyphWidgets.h"
#include "HomePageFixture.h"
#include "IconHelper.h"
#include "Pixels.h"
#include "PreviewTooltip.h"
#include "WebQuery.h"

#include <QAccessible>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTextEdit>
#include <QTimer>

#include <algorithm>

namespace
{

constexpr int kHomeWidth = MainWindow::WINDOW_WIDTH_GRID - 2 * MainWindow::SHADOW_MARGIN;
constexpr int kHomeHeight = MainWindow::WINDOW_HEIGHT_GRID - 2 * MainWindow::SHADOW_MARGIN;
constexpr int kStripWidth = kHomeWidth - 24;

LauncherElement item(const QString& id, const QString& name, const QString& type = ItemType::Url)
{
    return {id, name, type, name + QStringLiteral(" value"), {}};
}

/// One section "Only" with items of these names; their ids are "0", "1" and so on.
LauncherData documentOf(const QStringList& names)
{
    LauncherData document;
    document.categories = QStringList{"Only"};
    document.defaultCategory = QStringLiteral("Only");
    for (int i = 0; i < names.size(); ++i)
        document.sectionElements["Only"].append(item(QString::number(i), names.at(i)));
    return document;
}

/// So many that not every one has a pill, with names of different lengths.
LauncherData manySections(int count)
{
    LauncherData document;
    for (int i = 0; i < count; ++i)
        document.categories.append(QStringLiteral("S & %1%2").arg(i).arg(QString(i % 7 * 4, u'w')));
    document.defaultCategory = document.categories.constFirst();
    return document;
}

QStringList numbered(int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names.append(QStringLiteral("Item %1").arg(i));
    return names;
}

} // namespace

/// The home page as it stands: its parts and their places, pills, rows, what shows without rows,
/// and the card over it.
class HomeViewTest : public HomePageFixture
{
    Q_OBJECT

private slots:
    void places_data();
    void places();
    void controls_data();
    void controls();
    void colours();
    void focusOrderIsThatOfTheScreen();
    void headerButtonsOpenTheirMenus_data();
    void headerButtonsOpenTheirMenus();
    void pressOnTheSearchFrameFocusesTheField();

    void pillsShowTheSections();
    void pillIsLitWhileTheKeyboardIsOnStripOrGrid();
    void strangeSectionNames_data();
    void strangeSectionNames();
    void clickOnAPillShowsItsSection();
    void clickOnAPillBuildsTheRowsTwice();
    void contextMenuOfAPill();
    void selectedPillIsScrolledIntoView();
    void manySectionsHaveTheirPillsInView();
    void manySectionsByKeys();
    void wheelScrollsTheStrip_data();
    void wheelScrollsTheStrip();
    void stepCategory_data();
    void stepCategory();

    void rolesOfARow_data();
    void rolesOfARow();
    void preferredRow_data();
    void preferredRow();
    void searchRunsOverAllSections();
    void searchSelectsTheFirstHit();
    void rowsFollowEachLetter();
    void emptyPage_data();
    void emptyPage();
    void strangeWebSuggestion();
    void webSuggestionsOpen_data();
    void webSuggestionsOpen();
    void emptyPageAddsAnItem();
    void selectItemById_data();
    void selectItemById();
    void focusListFromSearch();
    void cellSize_data();
    void cellSize();
    void cellSizeInTheWindow();
    void manyRows();

    void previewFollowsTheRow_data();
    void previewFollowsTheRow();
    void previewOfAVanishedItem();
    void previewIsFrozenWhileTheCardIsInUse();
    void previewTakesWhatItCanShow();

    void cardPlace_data();
    void cardPlace();
    void cardHidesAtOnceWithoutTheFocus();
    void cardHidesATurnLaterWithTheFocus();
    void cardStaysWhenItIsWantedAgain();
    void titleOfTheActions();
    void titleIsPlainText();
    void panelsAreBuiltWhenNeeded();
    void backdropBehindADialog();
    void backdropClosesTheCard_data();
    void backdropClosesTheCard();
    void actionsCloseWhenTheRowsChange();
    void editorKeepsTheCardWhenTheRowsChange();

    void rebuildWithEverythingOpen();

private:
    QPushButton* emptyButton(const char* name) const { return named<QPushButton>(name); }
    QStackedWidget* listStack() const { return named<QStackedWidget>("listStack"); }
    PreviewTooltip* tooltip() const { return home()->findChild<PreviewTooltip*>(); }

    QTimer* hoverDelay() const
    {
        return home()->findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
    }

    /// Those in use; the ones that were there before go a turn later, and are hidden until then.
    QList<GlyphButton*> pills() const
    {
        QList<GlyphButton*> found = named("catContainer")->findChildren<GlyphButton*>();
        found.removeIf([](const GlyphButton* pill) { return pill->isHidden(); });
        std::sort(found.begin(), found.end(),
                  [](const auto* a, const auto* b) { return a->x() < b->x(); });
        return found;
    }

    /// Waits until the pills have been laid out.
    GlyphButton* pill(int index) const
    {
        QCoreApplication::sendPostedEvents();
        return pills().value(index);
    }

    QRect placeOf(const QWidget* widget) const { return rectIn(*home(), widget); }

    QString text(const char* objectName) const { return named<QLineEdit>(objectName)->text(); }
};

void HomeViewTest::places_data()
{
    QTest::addColumn<QRect>("place");
    const auto row = [](const char* name, const QRect& place) { QTest::newRow(name) << place; };
    row("homeHeader", {0, 0, kHomeWidth, 132});
    row("homeAddBtn", {12, 24, 32, 32});
    row("homeTemplateBtn", {52, 24, 32, 32});
    row("searchContainer", {92, 24, kHomeWidth - 144, 32});
    row("homeSettingsBtn", {kHomeWidth - 44, 24, 32, 32});
    row("catScroll", {12, 80, kStripWidth, 28});
    row("chromeStripBase", {0, 132, kHomeWidth, kHomeHeight - 132});
    row("leftCard", {0, 132, kHomeWidth, kHomeHeight - 132});
    row("itemList", {12, 144, kStripWidth, kHomeHeight - 156});
}

void HomeViewTest::places()
{
    QFETCH(QRect, place);
    open();
    QCOMPARE(home()->size(), QSize(kHomeWidth, kHomeHeight));
    QCOMPARE(placeOf(named(QTest::currentDataTag())), place);
    // The field takes what the glyph leaves of its frame.
    QCOMPARE(placeOf(searchField()).left(), 92 + 12 + 13 + 8);
    QCOMPARE(placeOf(searchField()).right(), kHomeWidth - 53 - 12);
}

void HomeViewTest::controls_data()
{
    QTest::addColumn<int>("policy");
    QTest::addColumn<QString>("spokenName");
    const auto row = [](const char* name, Qt::FocusPolicy policy, const QString& spokenName) {
        QTest::newRow(name) << int(policy) << spokenName;
    };
    row("homeAddBtn", Qt::StrongFocus, "Add Shortcut");
    row("homeTemplateBtn", Qt::StrongFocus, "Templates");
    row("homeSettingsBtn", Qt::StrongFocus, "Settings");
    row("searchInput", Qt::StrongFocus, "Search...");
    row("searchContainer", Qt::NoFocus, {});
    row("catScroll", Qt::StrongFocus, "Alpha");
    row("itemList", Qt::StrongFocus, {});
    row("gridOverlayBackdrop", Qt::NoFocus, "Cancel");
}

void HomeViewTest::controls()
{
    QFETCH(int, policy);
    QFETCH(QString, spokenName);
    open();
    const QWidget* control = named(QTest::currentDataTag());
    QCOMPARE(int(control->focusPolicy()), policy);
    QCOMPARE(control->accessibleName(), spokenName);
    if (qobject_cast<const QAbstractButton*>(control))
        QCOMPARE(control->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(named("searchContainer")->cursor().shape(), Qt::IBeamCursor);
    QCOMPARE(searchField()->placeholderText(), Tr::t("home.search_placeholder"));
    QVERIFY(list()->viewport()->hasMouseTracking());
    QCOMPARE(list()->viewMode(), QListView::IconMode);
    QCOMPARE(list()->movement(), QListView::Static);
    QVERIFY(qobject_cast<GridTileDelegate*>(list()->itemDelegate()));
}

void HomeViewTest::colours()
{
    open();
    const QImage image = home()->grab().toImage();
    const QColor shell(Theme::shellBg());
    const QColor panel(Theme::panelBg());
    QCOMPARE(image.pixelColor(kHomeWidth / 2, 12), shell);
    QCOMPARE(image.pixelColor(kHomeWidth / 2, 68), shell);
    QCOMPARE(image.pixelColor(300, 140), panel);
    QCOMPARE(image.pixelColor(4, 400), panel);
    // In the middle of the search frame, behind whose rounded end the header shows.
    QCOMPARE(image.pixelColor(kHomeWidth - 80, 40), QColor(Theme::boxBg()));
    QCOMPARE(image.pixelColor(92, 24), shell);
    // The panel's upper corners are round as well.
    QCOMPARE(image.pixelColor(0, 132), shell);
    QCOMPARE(image.pixelColor(kHomeWidth - 1, 132), shell);
    QCOMPARE(image.pixelColor(17, 133), panel);
}

void HomeViewTest::focusOrderIsThatOfTheScreen()
{
    open();
    QList<const QWidget*> order;
    for (const char* name :
         {"homeAddBtn", "homeTemplateBtn", "searchInput", "homeSettingsBtn", "catScroll",
          "itemList", "emptyAddBtn", "emptyWebBtn", "emptyWebAltBtn"})
        order.append(named(name));
    QList<const QWidget*> chain;
    const QWidget* first = order.constFirst();
    const QWidget* widget = first;
    do {
        if (order.contains(widget))
            chain.append(widget);
        widget = widget->nextInFocusChain();
    } while (widget != first);
    QCOMPARE(chain, order);
}

void HomeViewTest::headerButtonsOpenTheirMenus_data()
{
    QTest::addColumn<QString>("firstRow");
    QTest::newRow("homeAddBtn") << "actions.add_shortcut";
    QTest::newRow("homeTemplateBtn") << "template.save_as";
}

void HomeViewTest::headerButtonsOpenTheirMenus()
{
    QFETCH(QString, firstRow);
    open();
    QString found;
    MenuDriver driver([&found](QMenu* menu) {
        found = menu->actions().constFirst()->text();
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    QTest::mouseClick(named(QTest::currentDataTag()), Qt::LeftButton);
    QVERIFY(driver.hasClosed());
    QCOMPARE(found, Tr::t(firstRow));
}

void HomeViewTest::pressOnTheSearchFrameFocusesTheField()
{
    open();
    QTest::mousePress(named("searchContainer"), Qt::LeftButton, Qt::NoModifier, QPoint(5, 16));
    QCOMPARE(focused(), searchField());
}

void HomeViewTest::pillsShowTheSections()
{
    open();
    QCoreApplication::sendPostedEvents();
    const QList<GlyphButton*> found = pills();
    QCOMPARE(found.size(), 3);
    const QStringList names{"Alpha", "Beta", "Gamma"};
    int x = 0;
    for (int i = 0; i < 3; ++i) {
        const GlyphButton* button = found.at(i);
        QCOMPARE(button->text(), names.at(i));
        QCOMPARE(button->accessibleName(), names.at(i));
        QCOMPARE(button->height(), 28);
        QCOMPARE(button->focusPolicy(), Qt::NoFocus);
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
        QCOMPARE(button->font().pointSize(), 9);
        QCOMPARE(button->font().weight(), QFont::Bold);
        QCOMPARE(button->x(), x);
        x += button->width() + 8;
    }
    QCOMPARE(home()->selectedCategoryButton(), found.at(0));
}

void HomeViewTest::pillIsLitWhileTheKeyboardIsOnStripOrGrid()
{
    open();
    GlyphButton lit;
    PillStyle::applyLit(&lit, AlphaIcon);
    GlyphButton resting;
    PillStyle::applyResting(&resting, AlphaIcon, false);
    const auto alpha = [this] { return pill(0)->styleSheet(); };
    QTRY_COMPARE(alpha(), lit.styleSheet());
    searchField()->setFocus();
    QTRY_COMPARE(alpha(), resting.styleSheet());
    list()->setFocus();
    QTRY_COMPARE(alpha(), lit.styleSheet());
    home()->addButton()->setFocus();
    QTRY_COMPARE(alpha(), resting.styleSheet());
    strip()->setFocus();
    QTRY_COMPARE(alpha(), lit.styleSheet());
    QCOMPARE(pill(1)->styleSheet(), resting.styleSheet());
    // The glyph is part of the look.
    QVERIFY(Pixels::imageOf(*pill(0)) != Pixels::imageOf(*pill(1)));
}

void HomeViewTest::strangeSectionNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown"); ///< empty for a part of the name
    QTest::newRow("ampersands") << "R&D && Co"
                                << "R&&D &&&& Co";
    QTest::newRow("line feeds") << "one\ntwo\rthree"
                                << "one two three";
    QTest::newRow("markup") << "<b>bold</b>"
                            << "<b>bold</b>";
    QTest::newRow("right to left") << QString::fromUtf8("\u202eabc \u05e9\u05dc") << QString();
    QTest::newRow("emoji") << QString::fromUtf8("\U0001F680 go")
                           << QString::fromUtf8("\U0001F680 go");
    QTest::newRow("10,000 characters") << QString(10000, u'W') << QString();
    QTest::newRow("a megabyte of ampersands") << QString(1024 * 1024, u'&') << QString();
    QTest::newRow("a thousand lines") << QString(1000, u'\n') + "end" << QString();
}

void HomeViewTest::strangeSectionNames()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    LauncherData document = standardDocument();
    document.categories = QStringList{"Alpha", name};
    open(document);
    const GlyphButton* button = pill(1);
    QVERIFY(button);
    if (!shown.isEmpty())
        QCOMPARE(button->text(), shown);
    QVERIFY(!button->text().contains(u'\n') && !button->text().contains(u'\r'));
    QVERIFY(button->shortcut().isEmpty());
    QCOMPARE(button->height(), 28);
    QVERIFY2(button->width() <= kStripWidth, qPrintable(QString::number(button->width())));
    QCOMPARE(button->accessibleName(), name.left(button->accessibleName().size()));
    QVERIFY(button->accessibleName().size() >= std::min(name.size(), qsizetype(1000)));
    QVERIFY(button->accessibleName().size() < 2000);
    QCOMPARE(m_window->width(), MainWindow::WINDOW_WIDTH_GRID);
    QCOMPARE(strip()->width(), kStripWidth);
    // Its section opens like any other.
    QTest::mouseClick(pill(1), Qt::LeftButton);
    QCOMPARE(model()->currentCategory(), name);
}

void HomeViewTest::clickOnAPillShowsItsSection()
{
    open();
    QCOMPARE(rows(), QStringList({"One", "Two", "Three"}));
    QTest::mouseClick(pill(1), Qt::LeftButton);
    QCOMPARE(model()->currentCategory(), "Beta");
    QCOMPARE(rows(), QStringList{"Bee"});
    QCOMPARE(pills().size(), 3);
    QCOMPARE(home()->selectedCategoryButton()->text(), "Beta");
    QCOMPARE(strip()->accessibleName(), "Beta");
}

void HomeViewTest::clickOnAPillBuildsTheRowsTwice()
{
    open();
    const QSignalSpy cleared(list()->model(), &QAbstractItemModel::modelReset);
    QTest::mouseClick(pill(1), Qt::LeftButton);
    QCOMPARE(cleared.count(), 2);
    QVERIFY(home()->stepCategory(1));
    QCOMPARE(cleared.count(), 3);
}

void HomeViewTest::contextMenuOfAPill()
{
    open();
    MenuDriver driver([this](QMenu* menu) {
        QCOMPARE(model()->currentCategory(), "Beta");
        QCOMPARE(menu->actions().constFirst()->text(), Tr::t("actions.add_shortcut"));
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    GlyphButton* beta = pill(1);
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(3, 3),
                            beta->mapToGlobal(QPoint(3, 3)));
    QApplication::sendEvent(beta, &event);
    QTRY_VERIFY(driver.hasClosed());
}

void HomeViewTest::selectedPillIsScrolledIntoView()
{
    LauncherData document = standardDocument();
    for (int i = 0; i < 40; ++i)
        document.categories.append(QStringLiteral("Section %1").arg(i));
    open(document);
    const auto isInView = [this] {
        const GlyphButton* button = home()->selectedCategoryButton();
        const QRect place(button->mapTo(strip(), QPoint(0, 0)), button->size());
        return strip()->rect().contains(place);
    };
    QTRY_VERIFY(isInView());
    model()->setCurrentCategory("Section 39");
    home()->refreshCategories(-1, false);
    QScrollBar* bar = home()->categoryStrip()->horizontalScrollBar();
    QTRY_COMPARE(bar->value(), bar->maximum());
    QVERIFY(bar->value() > 0);
    QVERIFY(isInView());
    QVERIFY(!bar->isVisible());
    model()->setCurrentCategory("Alpha");
    home()->refreshCategories(-1, false);
    QTRY_COMPARE(bar->value(), 0);
}

void HomeViewTest::manySectionsHaveTheirPillsInView()
{
    constexpr int kCount = 500;
    open(manySections(kCount));
    const QStringList sections = model()->data().categories;
    const QScrollArea* area = home()->categoryStrip();
    QScrollBar* bar = area->horizontalScrollBar();
    QTRY_VERIFY(bar->maximum() > kCount * 28);
    QCoreApplication::processEvents(); // which scrolls to the current one
    const int end = bar->maximum();
    QHash<QString, int> places;
    for (int left = 0; left <= end; left = left == end ? end + 1 : std::min(left + 300, end)) {
        bar->setValue(left);
        QCoreApplication::processEvents();
        QCOMPARE(bar->maximum(), end);
        QVERIFY(pills().size() < 200);
        QVERIFY(home()->selectedCategoryButton());
        QCOMPARE(home()->selectedCategoryButton()->label(), sections.constFirst());
        int x = -1;
        qsizetype index = -1;
        for (const GlyphButton* button : pills()) {
            if (button->geometry().right() < left || button->x() > left + kStripWidth)
                continue;
            // Each has its place, side by side with the next, and without a gap on either side.
            QCOMPARE(places.value(button->label(), button->x()), button->x());
            places.insert(button->label(), button->x());
            if (x < 0)
                QVERIFY(button->x() <= left + 8 || button->label() == sections.constFirst());
            else
                QCOMPARE(button->x(), x);
            QCOMPARE(sections.indexOf(button->label()),
                     index < 0 ? sections.indexOf(button->label()) : index);
            index = sections.indexOf(button->label()) + 1;
            x = button->geometry().right() + 1 + 8;
        }
        QVERIFY(x >= left + kStripWidth || index == kCount);
    }
    QCOMPARE(places.size(), kCount);
    QCOMPARE(places.value(sections.constLast()) + pills().constLast()->width(),
             named("catContainer")->width());
}

void HomeViewTest::manySectionsByKeys()
{
    open(manySections(500));
    const QStringList sections = model()->data().categories;
    for (int i = 1; i < 150; ++i) {
        QTest::keyClick(strip(), Qt::Key_Right);
        QCOMPARE(model()->currentCategory(), sections.at(i));
        QVERIFY(home()->selectedCategoryButton());
        QCOMPARE(home()->selectedCategoryButton()->label(), sections.at(i));
    }
    QCoreApplication::processEvents();
    const QWidget* viewport = home()->categoryStrip()->viewport();
    QTRY_VERIFY(viewport->rect().contains(rectIn(*viewport, home()->selectedCategoryButton())));
    model()->setCurrentCategory(sections.constLast());
    home()->refreshCategories(-1, false);
    QTRY_VERIFY(viewport->rect().contains(rectIn(*viewport, home()->selectedCategoryButton())));
    QCOMPARE(home()->selectedCategoryButton()->label(), sections.constLast());
}

void HomeViewTest::wheelScrollsTheStrip_data()
{
    QTest::addColumn<QPoint>("angle");
    QTest::addColumn<int>("moved");
    QTest::newRow("down") << QPoint(0, -60) << 60;
    QTest::newRow("up") << QPoint(0, 60) << -60;
    QTest::newRow("sideways") << QPoint(-40, 0) << 40;
    QTest::newRow("both: up and down counts") << QPoint(-40, -60) << 60;
    QTest::newRow("beyond the end") << QPoint(0, 100000) << -100;
}

void HomeViewTest::wheelScrollsTheStrip()
{
    QFETCH(QPoint, angle);
    QFETCH(int, moved);
    LauncherData document = standardDocument();
    for (int i = 0; i < 40; ++i)
        document.categories.append(QStringLiteral("Section %1").arg(i));
    open(document);
    QScrollBar* bar = home()->categoryStrip()->horizontalScrollBar();
    QTRY_VERIFY(bar->maximum() > 300);
    // The selected pill is scrolled to in a turn of its own.
    QCoreApplication::processEvents();
    for (QWidget* target : {named("catContainer"), strip()}) {
        bar->setValue(100);
        const QPoint pos(2, 2);
        QWheelEvent event(pos, target->mapToGlobal(pos), QPoint(), angle, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(target, &event);
        QCOMPARE(bar->value(), 100 + moved);
    }
}

void HomeViewTest::stepCategory_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<int>("delta");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QString>("to");
    QTest::newRow("right") << "Alpha" << 1 << true << "Beta";
    QTest::newRow("left") << "Gamma" << -1 << true << "Beta";
    QTest::newRow("before the first") << "Alpha" << -1 << false << "Alpha";
    QTest::newRow("behind the last") << "Gamma" << 1 << false << "Gamma";
    QTest::newRow("two at once") << "Alpha" << 2 << true << "Gamma";
    QTest::newRow("no such section") << "Nowhere" << 1 << false << "Nowhere";
}

void HomeViewTest::stepCategory()
{
    QFETCH(QString, from);
    QFETCH(int, delta);
    QFETCH(QString, to);
    open();
    model()->setCurrentCategory(from);
    home()->refreshCategories(-1, false);
    QTEST(home()->stepCategory(delta), "result");
    QCOMPARE(model()->currentCategory(), to);
    const GlyphButton* selected = home()->selectedCategoryButton();
    QCOMPARE(selected ? selected->text() : QString("Nowhere"), to);
    QCOMPARE(rows(), itemsOf(to));
}

void HomeViewTest::rolesOfARow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char* name, int index, int role, const QVariant& value) {
        QTest::newRow(name) << index << role << value;
    };
    row("name", 0, Qt::DisplayRole, "Site");
    row("place", 1, 256, 1);
    row("id", 1, 258, "id-app");
    row("type", 1, 261, "Application");
    row("type of an item without one", 0, 261, "URL");
    row("reserved", 0, 262, 0);
    row("icon", 1, 263, "glyph:e40a");
    row("no icon", 0, 263, "");
    row("section", 1, 264, "Alpha");
    row("what is spoken", 1, Qt::AccessibleTextRole, "Tool, Application");
    row("what is spoken of an address", 0, Qt::AccessibleTextRole, "Site, Web Bookmark");
    row("nothing else", 0, 257, {});
}

void HomeViewTest::rolesOfARow()
{
    QFETCH(int, row);
    QFETCH(int, role);
    LauncherData document = standardDocument();
    document.sectionElements["Alpha"] = {{"id-site", "Site", "", "https://a.example", ""},
                                         {"id-app", "Tool", "Application", "/x", "glyph:e40a"}};
    open(document);
    QTEST(list()->item(row)->data(role), "value");
    const std::unique_ptr<QListWidgetItem> copy(list()->item(row)->clone());
    QTEST(copy->data(role), "value");
}

void HomeViewTest::preferredRow_data()
{
    QTest::addColumn<int>("preferred");
    QTest::addColumn<int>("row");
    QTest::newRow("none") << -1 << 0;
    QTest::newRow("first") << 0 << 0;
    QTest::newRow("last") << 2 << 2;
    QTest::newRow("behind the last") << 3 << 0;
}

void HomeViewTest::preferredRow()
{
    QFETCH(int, preferred);
    open();
    goToRow(1);
    const QSignalSpy selected(list(), &QListWidget::currentRowChanged);
    home()->refreshUI(preferred, false);
    QTEST(list()->currentRow(), "row");
    // That the old rows have gone is told, what is selected of the new ones is not.
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.constFirst().constFirst().toInt(), -1);
    home()->refreshCategories(preferred, false);
    QTEST(list()->currentRow(), "row");
}

void HomeViewTest::searchRunsOverAllSections()
{
    open();
    searchField()->setText("  EE ");
    QCOMPARE(rows(), QStringList({"Three", "Bee"}));
    QCOMPARE(list()->item(0)->data(ItemRoles::RoleCategory), "Alpha");
    QCOMPARE(list()->item(0)->data(ItemRoles::RoleOriginalIndex), 2);
    QCOMPARE(list()->item(1)->data(ItemRoles::RoleCategory), "Beta");
    QCOMPARE(list()->item(1)->data(ItemRoles::RoleOriginalIndex), 0);
    // The pills say where the user was.
    QCOMPARE(home()->selectedCategoryButton()->text(), "Alpha");
    // They work, and the search stays.
    QTest::mouseClick(pill(2), Qt::LeftButton);
    QCOMPARE(model()->currentCategory(), "Gamma");
    QCOMPARE(rows(), QStringList({"Three", "Bee"}));
    searchField()->clear();
    QCOMPARE(rows(), QStringList());
}

void HomeViewTest::searchSelectsTheFirstHit()
{
    open();
    goToRow(2);
    searchField()->setText("e");
    QCOMPARE(list()->currentRow(), 0);
    home()->refreshUI(1, false); // a place in a section says nothing among hits
    QCOMPARE(list()->currentRow(), 0);
    QCOMPARE(previewPage(), int(HomeView::PagePreviewDetail));
}

void HomeViewTest::rowsFollowEachLetter()
{
    open();
    searchField()->setFocus();
    QTest::keyClicks(searchField(), "tw");
    QCOMPARE(rows(), QStringList{"Two"});
    QTest::keyClicks(searchField(), "x");
    QCOMPARE(rows(), QStringList());
    QTest::keyClick(searchField(), Qt::Key_Backspace);
    QCOMPARE(rows(), QStringList{"Two"});
}

void HomeViewTest::emptyPage_data()
{
    QTest::addColumn<QStringList>("sections");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("textKey");
    QTest::addColumn<bool>("hasAdd");
    QTest::addColumn<int>("webButtons");
    const QStringList some{"Gamma"};
    QTest::newRow("empty section") << some << ""
                                   << "home.no_items" << true << 0;
    QTest::newRow("no sections") << QStringList() << ""
                                 << "home.no_items" << false << 0;
    QTest::newRow("no hits") << some << "zzz"
                             << "home.no_results" << false << 1;
    QTest::newRow("no hits of an engine's query") << some << "y zzz"
                                                  << "home.no_results" << false << 2;
    QTest::newRow("an address") << some << "orlimo.example "
                                << "home.no_results" << false << 1;
    QTest::newRow("blanks") << some << "   "
                            << "home.no_results" << false << 0;
    QTest::newRow("no hits without sections") << QStringList() << "zzz"
                                              << "home.no_results" << false << 1;
}

void HomeViewTest::emptyPage()
{
    QFETCH(QStringList, sections);
    QFETCH(QString, query);
    QFETCH(QString, textKey);
    QFETCH(bool, hasAdd);
    QFETCH(int, webButtons);
    LauncherData document = documentOf({});
    document.categories = QStringList{"Gamma"};
    open(document);
    if (sections.isEmpty())
        model()->deleteCategory("Gamma");
    searchField()->setText(query);
    QCOMPARE(listStack()->currentIndex(), int(HomeView::PageEmptyList));
    QCOMPARE(previewPage(), int(HomeView::PagePreviewEmpty));
    const auto labels = listStack()->currentWidget()->findChildren<QLabel*>();
    QCOMPARE(labels.size(), 1);
    QCOMPARE(labels.constFirst()->text(), Tr::t(textKey));
    QCOMPARE(!emptyButton("emptyAddBtn")->isHidden(), hasAdd);
    QCOMPARE(!emptyButton("emptyWebBtn")->isHidden(), webButtons > 0);
    QCOMPARE(!emptyButton("emptyWebAltBtn")->isHidden(), webButtons > 1);
    const auto suggestions = WebQuery::suggestionsFor(query);
    if (webButtons > 0)
        QCOMPARE(emptyButton("emptyWebBtn")->text(), suggestions.at(0).label);
    if (webButtons > 1)
        QCOMPARE(emptyButton("emptyWebAltBtn")->text(), suggestions.at(1).label);
    for (const char* name : {"emptyAddBtn", "emptyWebBtn", "emptyWebAltBtn"})
        QCOMPARE(emptyButton(name)->height(), 36);
    // All of it stands in the middle, one below the other.
    const auto badge = listStack()->currentWidget()->findChild<GlyphBadge*>();
    QCOMPARE(badge->size(), QSize(36, 36));
    QTRY_COMPARE(placeOf(badge).left(), 12 + (kStripWidth - 36) / 2);
    QCOMPARE(placeOf(labels.constFirst()).top(), placeOf(badge).bottom() + 1 + 8);
    // A text has the whole width before it is broken.
    QVERIFY(labels.constFirst()->width() > kStripWidth - 40);
}

void HomeViewTest::strangeWebSuggestion()
{
    open();
    searchField()->setText("a&b\u2028" + QString(5000, u'W'));
    const QPushButton* button = emptyButton("emptyWebBtn");
    QVERIFY(button->text().startsWith("a&&b W"));
    QTRY_VERIFY(button->isVisible());
    QVERIFY2(button->width() <= kStripWidth, qPrintable(QString::number(button->width())));
    QCOMPARE(m_window->width(), MainWindow::WINDOW_WIDTH_GRID);
}

void HomeViewTest::webSuggestionsOpen_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<bool>("opens");
    QTest::newRow("first") << 0 << true;
    QTest::newRow("second") << 1 << true;
    QTest::newRow("third") << 2 << false;
    QTest::newRow("before the first") << -1 << false;
}

void HomeViewTest::webSuggestionsOpen()
{
    QFETCH(int, which);
    QFETCH(bool, opens);
    const Browser browser;
    open();
    searchField()->setText("y zzz");
    home()->launchWebQuery(which);
    QCOMPARE(browser.opened.size(), opens ? 1 : 0);
    QCOMPARE(runningFade() != nullptr, opens);
    if (!opens)
        return;
    QCOMPARE(browser.opened.constFirst(), WebQuery::suggestionsFor("y zzz").at(which).url);
    QTRY_VERIFY(m_window->isHidden());
    // The buttons do the same.
    m_window->show();
    searchField()->setText("y zzz");
    emptyButton(which == 0 ? "emptyWebBtn" : "emptyWebAltBtn")->click();
    QCOMPARE(browser.opened.size(), 2);
    QCOMPARE(browser.opened.constLast(), browser.opened.constFirst());
}

void HomeViewTest::emptyPageAddsAnItem()
{
    open(documentOf({}));
    emptyButton("emptyAddBtn")->click();
    QVERIFY(m_window->isItemEditorOpen());
    QCOMPARE(previewPage(), int(HomeView::PagePreviewEditor));
    QCOMPARE(cardTitle(), Tr::t("actions.add_shortcut"));
    QVERIFY(card()->isVisible());
}

void HomeViewTest::selectItemById_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("result");
    QTest::addColumn<int>("row");
    QTest::newRow("the last") << "59" << true << 59;
    QTest::newRow("none") << "" << false << 0;
    QTest::newRow("another section's") << "x" << false << 0;
}

void HomeViewTest::selectItemById()
{
    QFETCH(QString, id);
    open(documentOf(numbered(60)));
    QTEST(home()->selectItemById(id), "result");
    QTEST(list()->currentRow(), "row");
    const QRect place = list()->visualItemRect(list()->currentItem());
    QVERIFY(list()->viewport()->rect().contains(place));
}

void HomeViewTest::focusListFromSearch()
{
    open();
    searchField()->setFocus();
    list()->setCurrentRow(-1);
    home()->focusListFromSearch();
    QCOMPARE(focused(), list());
    QCOMPARE(list()->currentRow(), 0);
    // There is nothing to go to in an empty section.
    searchField()->setFocus();
    searchField()->setText("zzz");
    home()->focusListFromSearch();
    QCOMPARE(focused(), searchField());
}

void HomeViewTest::cellSize_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<QSize>("viewport");
    QTest::addColumn<QSize>("cell");
    QTest::newRow("three columns") << 3 << QSize(529, 396) << QSize(176, 132);
    QTest::newRow("two") << 2 << QSize(529, 396) << QSize(264, 132);
    QTest::newRow("four") << 4 << QSize(529, 396) << QSize(132, 132);
    QTest::newRow("one counts as two") << 1 << QSize(529, 396) << QSize(264, 132);
    QTest::newRow("none as well") << 0 << QSize(529, 396) << QSize(264, 132);
    QTest::newRow("seven count as four") << 7 << QSize(529, 396) << QSize(132, 132);
    QTest::newRow("narrow") << 4 << QSize(200, 396) << QSize(72, 108);
    QTest::newRow("tall") << 2 << QSize(700, 900) << QSize(349, 188);
    QTest::newRow("tall, with small tiles") << 4 << QSize(529, 900) << QSize(132, 132);
    QTest::newRow("low") << 3 << QSize(529, 150) << QSize(176, 108);
}

void HomeViewTest::cellSize()
{
    QFETCH(int, columns);
    QFETCH(QSize, viewport);
    open();
    const auto restore =
        qScopeGuard([stored = Theme::gridColumns] { Theme::gridColumns = stored; });
    Theme::gridColumns = columns;
    list()->resize(viewport);
    QCOMPARE(list()->viewport()->size(), viewport);
    home()->applyGridCellSize();
    QTEST(list()->gridSize(), "cell");
}

void HomeViewTest::cellSizeInTheWindow()
{
    open(documentOf(numbered(5)));
    QTRY_COMPARE(list()->gridSize(), QSize(176, 132));
    // Three stand beside one another, the fourth below.
    const auto place = [this](int row) { return list()->visualItemRect(list()->item(row)); };
    QCOMPARE(place(0), QRect(0, 0, 176, 132));
    QCOMPARE(place(2), QRect(352, 0, 176, 132));
    QCOMPARE(place(3), QRect(0, 132, 176, 132));
}

void HomeViewTest::manyRows()
{
    open(documentOf(numbered(20000)));
    QCOMPARE(list()->count(), 20000);
    QCOMPARE(listStack()->currentIndex(), int(HomeView::PageList));
    home()->refreshUI(19999, false);
    QCOMPARE(list()->currentRow(), 19999);
    QVERIFY(home()->selectItemById("12345"));
    QCOMPARE(currentRow(), "Item 12345");
    searchField()->setText("Item 1999");
    QCOMPARE(list()->count(), 11);
    searchField()->setText("Item");
    QCOMPARE(list()->count(), 20000);
    QCOMPARE(list()->item(19999)->data(ItemRoles::RoleElementId), "19999");
}

void HomeViewTest::previewFollowsTheRow_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("shownType");
    for (const QString type : {"URL", "Application", "File", "Bulk", "Snippet", "ShellItem", "Odd"})
        QTest::newRow(qPrintable(type)) << type << type;
    QTest::newRow("none") << ""
                          << "URL";
}

void HomeViewTest::previewFollowsTheRow()
{
    QFETCH(QString, type);
    LauncherData document = standardDocument();
    document.sectionElements["Alpha"] = {item("a", "First"),
                                         {"b", "<b>Second</b>", type, "<i>one</i>\ntwo", ""}};
    open(document);
    list()->setCurrentRow(1);
    const QWidget* page = home()->previewStack()->currentWidget();
    QCOMPARE(previewPage(), int(HomeView::PagePreviewDetail));
    const auto labels = page->findChildren<QLabel*>();
    QCOMPARE(labels.at(0)->text(), "<b>Second</b>");
    QCOMPARE(labels.at(0)->textFormat(), Qt::PlainText);
    QTEST(labels.at(1)->text(), "shownType");
    QCOMPARE(page->findChild<QTextEdit*>()->toPlainText(), "<i>one</i>\ntwo");
    // It is kept, but not shown.
    QVERIFY(card()->isHidden());
    list()->setCurrentRow(-1);
    QCOMPARE(previewPage(), int(HomeView::PagePreviewEmpty));
}

void HomeViewTest::previewOfAVanishedItem()
{
    open();
    // A slot that hears of the change first sees rows whose items are gone.
    int page = -1;
    QObject context;
    connect(list(), &QListWidget::currentRowChanged, &context, [&] { page = previewPage(); });
    home()->updatePreviewPanel(list()->item(0));
    QCOMPARE(previewPage(), int(HomeView::PagePreviewDetail));
    const std::unique_ptr<QListWidgetItem> row(list()->item(0)->clone());
    model()->deleteItem("Alpha", "a1");
    home()->updatePreviewPanel(row.get());
    QCOMPARE(previewPage(), int(HomeView::PagePreviewEmpty));
    QListWidgetItem foreign;
    home()->updatePreviewPanel(list()->item(0));
    QCOMPARE(previewPage(), int(HomeView::PagePreviewDetail));
    home()->updatePreviewPanel(&foreign);
    QCOMPARE(previewPage(), int(HomeView::PagePreviewEmpty));
}

void HomeViewTest::previewIsFrozenWhileTheCardIsInUse()
{
    open();
    m_window->openItemEditor("a1");
    home()->updatePreviewPanel(list()->item(1));
    QCOMPARE(previewPage(), int(HomeView::PagePreviewEditor));
    home()->refreshUI(-1, false);
    QCOMPARE(previewPage(), int(HomeView::PagePreviewEditor));
    m_window->closeItemEditor(-1);
    m_window->openItemDeleteConfirm("a1");
    home()->updatePreviewPanel(list()->item(1));
    QCOMPARE(previewPage(), int(HomeView::PagePreviewActions));
}

void HomeViewTest::previewTakesWhatItCanShow()
{
    LauncherData document = standardDocument();
    document.sectionElements["Alpha"] = {
        {"a", QString(1024 * 1024, u'n'), "Snippet", QString(1024 * 1024, u'v'), ""}};
    open(document);
    const QWidget* page = home()->previewStack()->currentWidget();
    QCOMPARE(previewPage(), int(HomeView::PagePreviewDetail));
    QVERIFY(page->findChildren<QLabel*>().at(0)->text().size() < 2000);
    const QString value = page->findChild<QTextEdit*>()->toPlainText();
    QVERIFY(value.size() >= 10000 && value.size() < 20000);
}

void HomeViewTest::cardPlace_data()
{
    QTest::addColumn<QSize>("view");
    QTest::addColumn<QSize>("card"); ///< a height of 0 for that of the contents
    QTest::newRow("wide and high") << QSize(1000, 900) << QSize(460, 0);
    QTest::newRow("as wide as it gets") << QSize(485, 900) << QSize(460, 0);
    QTest::newRow("narrow") << QSize(430, 900) << QSize(406, 0);
    QTest::newRow("low") << QSize(1000, 290) << QSize(460, 266);
    QTest::newRow("very low") << QSize(1000, 190) << QSize(460, 200);
}

void HomeViewTest::cardPlace()
{
    QFETCH(QSize, view);
    QFETCH(QSize, card);
    open();
    HomeView page(model(), m_window.get(), nullptr);
    page.resize(view);
    auto* frame = page.findChild<QFrame*>("rightCard");
    auto* backdrop = page.findChild<QPushButton*>("gridOverlayBackdrop");
    QVERIFY(frame->isHidden());
    QVERIFY(backdrop->isHidden());
    for (const int modal : {HomeView::PagePreviewEditor, HomeView::PagePreviewActions}) {
        page.previewStack()->setCurrentIndex(modal);
        const int height =
            card.height() > 0 ? card.height() : std::max(200, frame->sizeHint().height());
        QCOMPARE(frame->geometry(), QRect((view.width() - card.width()) / 2,
                                          (view.height() - height) / 2, card.width(), height));
        QVERIFY(!frame->isHidden());
        QVERIFY(!backdrop->isHidden());
        QCOMPARE(backdrop->geometry(), page.rect());
        QVERIFY(page.children().indexOf(frame) > page.children().indexOf(backdrop));
        QCOMPARE(page.children().constLast(), frame);
    }
    QCOMPARE(frame->findChild<QFrame*>("previewCardHeader")->height(), 56);
}

void HomeViewTest::cardHidesAtOnceWithoutTheFocus()
{
    open();
    m_window->openItemDeleteConfirm("a1");
    QVERIFY(card()->isVisible());
    QVERIFY(backdrop()->isVisible());
    searchField()->setFocus(); // closes it
    QVERIFY(card()->isHidden());
    QVERIFY(backdrop()->isHidden());
}

void HomeViewTest::cardHidesATurnLaterWithTheFocus()
{
    open();
    m_window->openItemEditor("a1");
    QVERIFY(card()->isAncestorOf(focused()));
    home()->previewStack()->setCurrentIndex(HomeView::PagePreviewEmpty);
    QVERIFY(card()->isVisible());
    QTRY_VERIFY(card()->isHidden());
    QVERIFY(backdrop()->isHidden());
}

void HomeViewTest::cardStaysWhenItIsWantedAgain()
{
    open();
    m_window->openItemEditor("a1");
    home()->previewStack()->setCurrentIndex(HomeView::PagePreviewEmpty);
    home()->previewStack()->setCurrentIndex(HomeView::PagePreviewActions);
    QCoreApplication::processEvents();
    QVERIFY(card()->isVisible());
    QVERIFY(backdrop()->isVisible());
}

void HomeViewTest::titleOfTheActions()
{
    open();
    m_window->openItemDeleteConfirm("a1");
    QCOMPARE(cardTitle(), Tr::t("actions.delete_shortcut"));
    panel()->openItemMenu("Alpha", "a1", true);
    QCOMPARE(cardTitle(), Tr::t("actions.title_shortcut"));
    home()->setPreviewCardTitle("kept");
    panel()->openItemMenu("Alpha", "a1", false);
    QCOMPARE(cardTitle(), "kept");
}

void HomeViewTest::titleIsPlainText()
{
    open();
    home()->setPreviewCardTitle("<b>&x</b>");
    const auto* label = named("previewCardHeader")->findChild<QLabel*>();
    QCOMPARE(label->text(), "<b>&x</b>");
    QCOMPARE(label->textFormat(), Qt::PlainText);
}

void HomeViewTest::panelsAreBuiltWhenNeeded()
{
    open();
    press(Qt::Key_Down);
    QVERIFY(!home()->findChild<ItemEditorPanel*>());
    QVERIFY(!home()->findChild<ActionsPanel*>());
    QCOMPARE(home()->actionsStep(), ActionsNone);
    m_window->openItemDeleteConfirm("a1");
    QVERIFY(!home()->findChild<ItemEditorPanel*>());
    QCOMPARE(home()->findChildren<ActionsPanel*>(), QList<ActionsPanel*>{home()->actionsPanel()});
    QCOMPARE(home()->actionsStep(), ActionsConfirmDelete);
    m_window->closeItemActionsPanel();
    for (int i = 0; i < 2; ++i) {
        m_window->openItemEditor("a1");
        QCOMPARE(home()->findChildren<ItemEditorPanel*>(),
                 QList<ItemEditorPanel*>{home()->itemEditorPanel()});
        m_window->closeItemEditor(-1);
    }
}

void HomeViewTest::backdropBehindADialog()
{
    open();
    home()->setDialogBackdropVisible(true);
    QVERIFY(backdrop()->isVisible());
    QCOMPARE(backdrop()->geometry(), home()->rect());
    QCOMPARE(home()->children().constLast(), backdrop());
    home()->setDialogBackdropVisible(false);
    QVERIFY(backdrop()->isHidden());
    // With the card up it is behind that, and stays when the dialog goes.
    m_window->openItemEditor("a1");
    home()->setDialogBackdropVisible(true);
    QCOMPARE(home()->children().constLast(), card());
    home()->setDialogBackdropVisible(false);
    QVERIFY(backdrop()->isVisible());
}

void HomeViewTest::backdropClosesTheCard_data()
{
    QTest::addColumn<int>("page");
    QTest::newRow("editor") << int(HomeView::PagePreviewEditor);
    QTest::newRow("actions") << int(HomeView::PagePreviewActions);
    QTest::newRow("a dialog's") << int(HomeView::PagePreviewDetail);
}

void HomeViewTest::backdropClosesTheCard()
{
    QFETCH(int, page);
    open();
    goToRow(1);
    if (page == HomeView::PagePreviewEditor)
        m_window->openItemEditor("a1");
    else if (page == HomeView::PagePreviewActions)
        m_window->openItemDeleteConfirm("a1");
    else
        home()->setDialogBackdropVisible(true);
    QTRY_VERIFY(backdrop()->isVisible());
    QTest::mouseClick(backdrop(), Qt::LeftButton, Qt::NoModifier, QPoint(3, 30));
    QVERIFY(!m_window->isItemEditorOpen());
    QCOMPARE(panel()->currentStep(), ActionsNone);
    QTRY_VERIFY(card()->isHidden());
    QCOMPARE(backdrop()->isHidden(), page != HomeView::PagePreviewDetail);
    QCOMPARE(model()->getItems("Alpha").size(), 3);
}

void HomeViewTest::actionsCloseWhenTheRowsChange()
{
    open();
    m_window->openItemDeleteConfirm("a1");
    home()->refreshUI(-1, true);
    QCOMPARE(panel()->currentStep(), ActionsConfirmDelete);
    home()->refreshUI(-1, false);
    QCOMPARE(panel()->currentStep(), ActionsNone);
    QTRY_VERIFY(card()->isHidden());
}

void HomeViewTest::editorKeepsTheCardWhenTheRowsChange()
{
    open();
    m_window->openItemEditor("a1");
    const QSignalSpy cleared(list()->model(), &QAbstractItemModel::modelReset);
    home()->refreshCategories(-1, false);
    QCOMPARE(cleared.count(), 0); // the pills alone are made anew
    QCOMPARE(pills().size(), 3);
    model()->deleteItem("Alpha", "a1");
    QCOMPARE(rows(), QStringList({"Two", "Three"}));
    QVERIFY(card()->isVisible());
    QCOMPARE(previewPage(), int(HomeView::PagePreviewEditor));
}

void HomeViewTest::rebuildWithEverythingOpen()
{
    open();
    const QPointer<HomeView> before = home();
    list()->setFocus();
    list()->setCurrentRow(1);
    home()->showHoverPreview();
    hoverDelay()->start(0);
    // Everything here is still to come when the view goes.
    home()->refreshCategories(-1, false);
    list()->setFocus();
    searchField()->setFocus();
    home()->addButton()->setFocus();
    m_window->openItemEditor("a1");
    home()->previewStack()->setCurrentIndex(HomeView::PagePreviewEmpty);
    bool wasOpen = false;
    MenuDriver driver([&](QMenu*) {
        m_window->rebuildUIPreservingFocus();
        QTRY_VERIFY(!before);
        wasOpen = true;
    });
    m_window->showCategoryActionsMenu();
    QVERIFY(wasOpen);
    QCoreApplication::processEvents();
    QVERIFY(home());
    QCOMPARE(rows(), QStringList({"One", "Two", "Three"}));
}

QTEST_MAIN(HomeViewTest)
#include "tst_homeview.moc"
