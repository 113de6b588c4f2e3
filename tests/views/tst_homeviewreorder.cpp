// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CustomMessageBox.h"
#include "GlyphWidgets.h"
#include "HomePageFixture.h"
#include "ItemReorderOverlay.h"
#include "LauncherModel.h"
#include "PreviewTooltip.h"
#include "SectionReorderOverlay.h"

#include <QDir>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStackedWidget>

#include <algorithm>
#include <functional>
#include <utility>

/// Items and sections put into another order on the home page: how a mode begins and ends, what the
/// keys do in it, and what becomes of the document.
class HomeViewReorderTest : public HomePageFixture
{
    Q_OBJECT

private slots:
    void manySectionsAreReordered();
    void menuBeginsTheMode();
    void menuBeginsTheModeOfSections();
    void cursorBeginsOnTheCurrentRow();
    void refused_data();
    void refused();
    void refusalEndsWithARebuild();
    void oneModeAtATime();

    void arrowsMoveTheCursor();
    void arrowsMoveTheLiftedItem();
    void arrowsInTheStrip();
    void everyKeyIsConsumed_data();
    void everyKeyIsConsumed();
    void spaceLiftsAndDrops();

    void commitWritesOnce();
    void commitSelectsTheMovedItem();
    void commitWithoutAChangeWritesNothing_data();
    void commitWithoutAChangeWritesNothing();
    void cancelLeavesAll_data();
    void cancelLeavesAll();
    void itemsByMouse();
    void sectionsByKeys();
    void sectionsByMouse();
    void sectionsOutOfView();
    void tilesLookLikeThePills();
    void pillsThatAreMadeAnewMeanwhile();
    void bannerHintsAtSections();
    void nothingToEnd();

    void clickOnAPillCommits();
    void hidingCommits_data();
    void hidingCommits();
    void rebuildCommits_data();
    void rebuildCommits();
    void editorCommits();

    void nothingElseHappensMeanwhile();
    void documentThatChangesMeanwhile_data();
    void documentThatChangesMeanwhile();
    void changeElsewhereLeavesTheMode_data();
    void changeElsewhereLeavesTheMode();
    void sectionsThatChangeMeanwhile_data();
    void sectionsThatChangeMeanwhile();
    void changeOnAnotherPage();
    void overlayStaysWhereItIsWhenRowsAreMadeAnew();
    void anySequenceKeepsEveryItem();

private:
    ReorderOverlay* overlay() const { return m_window->findChild<ReorderOverlay*>(); }
    ReorderHintBanner* banner() const { return m_window->findChild<ReorderHintBanner*>(); }
    void chooseInSectionMenu(const char* key) const
    {
        inMenus([this] { m_window->showCategoryActionsMenu(); }, {chooseKey(key)});
    }
    QStringList sections() const { return model()->data().categories; }
    QStringList pillTexts() const
    {
        QStringList texts;
        for (const QPushButton* pill : shownPills())
            texts.append(pill->text());
        return texts;
    }
    QList<GlyphButton*> shownPills() const
    {
        QList<GlyphButton*> pills;
        for (auto* pill : named("catContainer")->findChildren<GlyphButton*>()) {
            if (!pill->isHidden())
                pills.append(pill);
        }
        std::sort(pills.begin(), pills.end(),
                  [](const auto* a, const auto* b) { return a->x() < b->x(); });
        return pills;
    }
    ReorderTile* tile(int sourceRow) const
    {
        for (auto* tile : overlay()->findChildren<ReorderTile*>()) {
            if (tile->sourceRow() == sourceRow)
                return tile;
        }
        return nullptr;
    }
    /// All tiles have come to rest.
    bool isAtRest() const
    {
        const auto groups = overlay()->findChildren<QAbstractAnimation*>();
        return std::none_of(groups.begin(), groups.end(), [](const auto* group) {
            return group->state() == QAbstractAnimation::Running;
        });
    }
    /// Drags a tile onto the place of another one.
    void drag(int row, int target) const
    {
        QTRY_VERIFY(isAtRest());
        const QPoint from = overlay()->mapToGlobal(tile(row)->geometry().center());
        const QPoint to = overlay()->mapToGlobal(tile(target)->geometry().center());
        sendMouse(overlay(), QEvent::MouseButtonPress, from);
        sendMouse(overlay(), QEvent::MouseMove, (from + to) / 2);
        sendMouse(overlay(), QEvent::MouseMove, to);
        sendMouse(overlay(), QEvent::MouseButtonRelease, to);
    }
    static LauncherData manySections(int count)
    {
        LauncherData document = standardDocument();
        for (int i = 0; i < count; ++i)
            document.categories.append(QStringLiteral("Section %1").arg(i));
        return document;
    }
    static LauncherData manyItems(int count)
    {
        LauncherData document = standardDocument();
        document.sectionElements["Alpha"].clear();
        for (int i = 0; i < count; ++i)
            document.sectionElements["Alpha"].append(
                snippet(QString::number(i), QStringLiteral("Item %1").arg(i)));
        return document;
    }
    static void importDocument(LauncherModel* model, const LauncherData& document)
    {
        const QString path = QDir(TestHome::dataDir()).filePath(QStringLiteral("import.json"));
        StorageManager::saveData(path, document);
        model->importData(path);
    }
    /// Begins the mode and takes the first entry one place to the right.
    void moveFirstEntry(bool ofSections) const
    {
        if (ofSections)
            home()->enterSectionReorderMode();
        else
            home()->enterReorderMode();
        press(Qt::Key_Space);
        press(Qt::Key_Right);
    }
    /// Sections and items by name, in order.
    static QStringList contentsOf(const LauncherModel& model)
    {
        QStringList lines;
        for (const QString& section : model.data().categories) {
            lines.append(section + u':');
            for (const LauncherElement& item : model.getItems(section))
                lines.append(item.name);
        }
        return lines;
    }
    /// A change of the document during a mode ends it, and is all that is written.
    void verifyEndsWith(const std::function<void(LauncherModel*)>& change) const
    {
        const QString copyPath = QDir(TestHome::dataDir()).filePath(QStringLiteral("copy.json"));
        StorageManager::saveData(copyPath, model()->data());
        LauncherModel copy(copyPath);
        copy.setCurrentCategory(model()->currentCategory());
        change(&copy);
        const QPointer<ReorderOverlay> gone = overlay();
        change(model());
        QVERIFY(!home()->isReorderMode());
        QVERIFY(!overlay());
        home()->exitReorderMode(true); // as a hidden window would
        QTRY_VERIFY(gone.isNull());
        QCOMPARE(contentsOf(*model()), contentsOf(copy));
        QCOMPARE(onDisk(), model()->data());
    }
    /// Opens the first section with the keyboard on its grid.
    void openOnGrid(const LauncherData& document = standardDocument())
    {
        open(document);
        goToRow(0);
    }
};

void HomeViewReorderTest::manySectionsAreReordered()
{
    open(manySections(300));
    QStringList wanted = sections();
    wanted.move(0, 1);
    const QRect third = rectIn(*home()->categoryStrip()->viewport(), shownPills().at(2));
    home()->enterSectionReorderMode();
    QCOMPARE(overlay()->slotCount(), int(wanted.size()));
    QTRY_VERIFY(isAtRest());
    // Where the pills are, of which not all have been made.
    QCOMPARE(tile(2)->geometry().adjusted(SectionReorderOverlay::TilePad, 0,
                                          -SectionReorderOverlay::TilePad, 0),
             third);
    press(Qt::Key_Space);
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    QCOMPARE(sections(), wanted);
    QCOMPARE(onDisk().categories, wanted);
}

void HomeViewReorderTest::menuBeginsTheMode()
{
    open();
    chooseInSectionMenu("actions.reorder_items");
    QVERIFY(home()->isReorderMode());
    QCOMPARE(home()->reorderTarget(), HomeView::ReorderItems);
    QVERIFY(qobject_cast<ItemReorderOverlay*>(overlay()));
    QCOMPARE(overlay()->parentWidget(), list()->viewport());
    QCOMPARE(overlay()->slotCount(), 3);
    QCOMPARE(focused(), list());
    QVERIFY(!banner());
}

void HomeViewReorderTest::menuBeginsTheModeOfSections()
{
    open();
    model()->setCurrentCategory("Beta");
    home()->refreshCategories(-1, false);
    chooseInSectionMenu("actions.reorder_sections");
    QCOMPARE(home()->reorderTarget(), HomeView::ReorderSections);
    QVERIFY(qobject_cast<SectionReorderOverlay*>(overlay()));
    QCOMPARE(overlay()->parentWidget(), home()->categoryStrip()->viewport());
    QCOMPARE(overlay()->slotCount(), 3);
    QCOMPARE(overlay()->cursorSlot(), 1);
    QCOMPARE(focused(), strip());
}

void HomeViewReorderTest::cursorBeginsOnTheCurrentRow()
{
    openOnGrid();
    goToRow(2);
    home()->enterReorderMode();
    QCOMPARE(overlay()->cursorSlot(), 2);
    home()->exitReorderMode(false);
    {
        const QSignalBlocker blocker(list());
        list()->setCurrentRow(-1);
    }
    home()->enterReorderMode();
    QCOMPARE(overlay()->cursorSlot(), 0);
    QCOMPARE(list()->currentRow(), 0);
}

void HomeViewReorderTest::refused_data()
{
    QTest::addColumn<bool>("ofSections");
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("search");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("searching") << false << "Alpha"
                               << "o" << QByteArray("reorder.err_searching");
    QTest::newRow("blanks in the field") << false << "Alpha"
                                         << "  " << QByteArray("reorder.err_searching");
    QTest::newRow("searching in an empty section") << false << "Gamma"
                                                   << "x" << QByteArray("reorder.err_searching");
    QTest::newRow("no items") << false << "Gamma"
                              << "" << QByteArray("reorder.err_empty");
    QTest::newRow("one item") << false << "Beta"
                              << "" << QByteArray("reorder.err_single");
    QTest::newRow("no such section") << false << "Delta"
                                     << "" << QByteArray("reorder.err_empty");
    QTest::newRow("one section") << true << "Alpha"
                                 << "" << QByteArray("reorder.err_single_section");
}

void HomeViewReorderTest::refused()
{
    QFETCH(bool, ofSections);
    QFETCH(QString, section);
    QFETCH(QString, search);
    QFETCH(QByteArray, error);
    LauncherData document = standardDocument();
    if (ofSections)
        document.categories = QStringList{"Alpha"};
    open(document);
    model()->setCurrentCategory(section);
    home()->refreshCategories(-1, false);
    searchField()->setText(search);
    bool wasDimmed = false;
    QStringList texts;
    const ModalDriver driver([&](QWidget* dialog) {
        wasDimmed = backdrop()->isVisible();
        QVERIFY(g_blockAutoQuit);
        QVERIFY(qobject_cast<CustomMessageBox*>(dialog));
        QCOMPARE(dialog->windowTitle(),
                 Tr::t(ofSections ? "actions.reorder_sections" : "actions.reorder_items"));
        for (const QLabel* label : dialog->findChildren<QLabel*>())
            texts.append(label->text());
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    if (ofSections)
        home()->enterSectionReorderMode();
    else
        home()->enterReorderMode();
    QCOMPARE(driver.count(), 1);
    QVERIFY(wasDimmed);
    QVERIFY2(texts.contains(Tr::t(error)), qPrintable(texts.join(u'|')));
    QVERIFY(!backdrop()->isVisible());
    QVERIFY(!home()->isReorderMode());
    QVERIFY(!overlay());
}

void HomeViewReorderTest::refusalEndsWithARebuild()
{
    open();
    model()->setCurrentCategory("Gamma");
    const ModalDriver driver([this](QWidget* dialog) {
        m_window->hide(); // so that it is rebuilt at once
        m_window->rebuildUIPreservingFocus();
        QCoreApplication::processEvents();
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    home()->enterReorderMode();
    QCOMPARE(driver.count(), 1);
    QVERIFY(!home()->isReorderMode());
}

void HomeViewReorderTest::oneModeAtATime()
{
    openOnGrid();
    home()->enterReorderMode();
    const ReorderOverlay* first = overlay();
    home()->enterReorderMode();
    home()->enterSectionReorderMode();
    QCOMPARE(home()->reorderTarget(), HomeView::ReorderItems);
    QCOMPARE(overlay(), first);
    QCOMPARE(m_window->findChildren<ReorderOverlay*>().size(), 1);
}

void HomeViewReorderTest::arrowsMoveTheCursor()
{
    openOnGrid(manyItems(10));
    home()->enterReorderMode();
    QCOMPARE(overlay()->columns(), 3);
    const auto slotAfter = [this](Qt::Key key) {
        press(key);
        return overlay()->cursorSlot();
    };
    // Ten items: the last row holds one.
    QCOMPARE(slotAfter(Qt::Key_Right), 1);
    QCOMPARE(slotAfter(Qt::Key_Down), 4);
    QCOMPARE(slotAfter(Qt::Key_Left), 3);
    QCOMPARE(slotAfter(Qt::Key_Down), 6);
    QCOMPARE(slotAfter(Qt::Key_Right), 7);
    QCOMPARE(slotAfter(Qt::Key_Down), 9);
    QCOMPARE(slotAfter(Qt::Key_Right), 9);
    QCOMPARE(slotAfter(Qt::Key_Down), 9);
    QCOMPARE(slotAfter(Qt::Key_Up), 6);
    QCOMPARE(slotAfter(Qt::Key_Up), 3);
    QCOMPARE(slotAfter(Qt::Key_Left), 2);
    QCOMPARE(slotAfter(Qt::Key_Up), 0);
    QCOMPARE(slotAfter(Qt::Key_Left), 0);
    QVERIFY(!overlay()->orderChanged());
    QCOMPARE(list()->currentRow(), 0);
}

void HomeViewReorderTest::arrowsMoveTheLiftedItem()
{
    openOnGrid(manyItems(6));
    moveFirstEntry(false);
    QCOMPARE(overlay()->currentOrder(), QVector<int>({1, 0, 2, 3, 4, 5}));
    press(Qt::Key_Down);
    QCOMPARE(overlay()->currentOrder(), QVector<int>({1, 2, 3, 4, 0, 5}));
    press(Qt::Key_Down);
    QCOMPARE(overlay()->currentOrder(), QVector<int>({1, 2, 3, 4, 5, 0}));
    press(Qt::Key_Up);
    QCOMPARE(overlay()->currentOrder(), QVector<int>({1, 2, 0, 3, 4, 5}));
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    QCOMPARE(overlay()->currentOrder(), QVector<int>({0, 1, 2, 3, 4, 5}));
    QVERIFY(!overlay()->orderChanged());
}

void HomeViewReorderTest::arrowsInTheStrip()
{
    open();
    home()->enterSectionReorderMode();
    QCOMPARE(overlay()->cursorSlot(), 0);
    press(Qt::Key_Down);
    press(Qt::Key_Up);
    QCOMPARE(overlay()->cursorSlot(), 0);
    press(Qt::Key_Right);
    QCOMPARE(overlay()->cursorSlot(), 1);
    press(Qt::Key_Space);
    press(Qt::Key_Right);
    press(Qt::Key_Up);
    QCOMPARE(overlay()->currentOrder(), QVector<int>({0, 2, 1}));
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    QCOMPARE(overlay()->currentOrder(), QVector<int>({1, 0, 2}));
    home()->exitReorderMode(false);
    home()->reorderArrow(Qt::Key_Left); // there is nothing to move any more
    QCOMPARE(sections(), QStringList({"Alpha", "Beta", "Gamma"}));
}

void HomeViewReorderTest::everyKeyIsConsumed_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("tab") << Qt::Key_Tab << Qt::KeyboardModifiers();
    QTest::newRow("back tab") << Qt::Key_Backtab << Qt::KeyboardModifiers(Qt::ShiftModifier);
    QTest::newRow("letter") << Qt::Key_A << Qt::KeyboardModifiers();
    QTest::newRow("select all") << Qt::Key_A << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("delete") << Qt::Key_Delete << Qt::KeyboardModifiers();
    QTest::newRow("home") << Qt::Key_Home << Qt::KeyboardModifiers();
    QTest::newRow("end") << Qt::Key_End << Qt::KeyboardModifiers();
    QTest::newRow("page down") << Qt::Key_PageDown << Qt::KeyboardModifiers();
    QTest::newRow("F2") << Qt::Key_F2 << Qt::KeyboardModifiers();
    QTest::newRow("menu") << Qt::Key_Menu << Qt::KeyboardModifiers();
}

void HomeViewReorderTest::everyKeyIsConsumed()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    openOnGrid();
    home()->enterReorderMode();
    press(key, modifiers);
    QVERIFY(home()->isReorderMode());
    QCOMPARE(focused(), list());
    QCOMPARE(list()->currentRow(), 0);
    QCOMPARE(overlay()->cursorSlot(), 0);
    QVERIFY(!overlay()->hasLift());
    QVERIFY(searchField()->text().isEmpty());
    // Wherever the focus is.
    searchField()->setFocus();
    press(key, modifiers);
    QVERIFY(searchField()->text().isEmpty());
    QVERIFY(home()->isReorderMode());
}

void HomeViewReorderTest::spaceLiftsAndDrops()
{
    openOnGrid();
    home()->enterReorderMode();
    press(Qt::Key_Space);
    QVERIFY(overlay()->hasLift());
    press(Qt::Key_Right);
    press(Qt::Key_Space);
    QVERIFY(!overlay()->hasLift());
    press(Qt::Key_Right); // the cursor alone
    QCOMPARE(overlay()->currentOrder(), QVector<int>({1, 0, 2}));
    QCOMPARE(overlay()->cursorSlot(), 2);
}

void HomeViewReorderTest::commitWritesOnce()
{
    openOnGrid();
    const QSignalSpy changes(model(), &LauncherModel::itemsChanged);
    moveFirstEntry(false);
    press(Qt::Key_Right);
    press(Qt::Key_Space);
    press(Qt::Key_Left);
    QCOMPARE(changes.count(), 0);
    QCOMPARE(itemsOf("Alpha"), QStringList({"One", "Two", "Three"}));
    QCOMPARE(rows(), QStringList({"One", "Two", "Three"}));
    const QPointer<ReorderOverlay> gone = overlay();
    press(Qt::Key_Return);
    QVERIFY(!home()->isReorderMode());
    QVERIFY(!overlay());
    QTRY_VERIFY(gone.isNull());
    QCOMPARE(changes.count(), 1);
    QCOMPARE(itemsOf("Alpha"), QStringList({"Two", "Three", "One"}));
    QCOMPARE(rows(), QStringList({"Two", "Three", "One"}));
    QCOMPARE(onDisk(), model()->data());
    QCOMPARE(list()->currentRow(), 1); // where the cursor was
    QVERIFY(m_window->isVisible());
}

void HomeViewReorderTest::commitSelectsTheMovedItem()
{
    openOnGrid();
    moveFirstEntry(false);
    press(Qt::Key_Enter);
    QCOMPARE(currentRow(), QStringLiteral("One"));
    QCOMPARE(list()->currentRow(), 1);
    QCOMPARE(focused(), list());
    // And it is what runs.
    QApplication::clipboard()->clear();
    press(Qt::Key_Return);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("One text"));
}

void HomeViewReorderTest::commitWithoutAChangeWritesNothing_data()
{
    QTest::addColumn<bool>("ofSections");
    QTest::newRow("items") << false;
    QTest::newRow("sections") << true;
}

void HomeViewReorderTest::commitWithoutAChangeWritesNothing()
{
    QFETCH(bool, ofSections);
    openOnGrid();
    goToRow(1);
    const QSignalSpy items(model(), &LauncherModel::itemsChanged);
    const QSignalSpy categories(model(), &LauncherModel::categoriesChanged);
    moveFirstEntry(ofSections);
    press(Qt::Key_Left);
    press(Qt::Key_Return);
    QVERIFY(!home()->isReorderMode());
    QCOMPARE(items.count() + categories.count(), 0);
    QCOMPARE(focused(), ofSections ? strip() : list());
    QCOMPARE(list()->currentRow(), 1);
}

void HomeViewReorderTest::cancelLeavesAll_data()
{
    QTest::addColumn<bool>("ofSections");
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("items, Esc") << false << Qt::Key_Escape;
    QTest::newRow("items, Backspace") << false << Qt::Key_Backspace;
    QTest::newRow("sections, Esc") << true << Qt::Key_Escape;
    QTest::newRow("sections, Backspace") << true << Qt::Key_Backspace;
}

void HomeViewReorderTest::cancelLeavesAll()
{
    QFETCH(bool, ofSections);
    QFETCH(Qt::Key, key);
    openOnGrid();
    goToRow(2);
    const LauncherData before = model()->data();
    if (ofSections)
        home()->enterSectionReorderMode();
    else
        home()->enterReorderMode();
    press(Qt::Key_Space);
    press(ofSections ? Qt::Key_Right : Qt::Key_Left);
    QVERIFY(overlay()->orderChanged());
    press(key);
    QVERIFY(!home()->isReorderMode());
    QVERIFY(!overlay());
    QVERIFY(!banner());
    QVERIFY(m_window->isVisible() && !runningFade());
    QCOMPARE(model()->data(), before);
    QCOMPARE(onDisk(), before);
    QCOMPARE(focused(), ofSections ? strip() : list());
    QCOMPARE(list()->currentRow(), 2);
    QCOMPARE(pillTexts(), QStringList({"Alpha", "Beta", "Gamma"}));
}

void HomeViewReorderTest::itemsByMouse()
{
    openOnGrid(manyItems(12));
    home()->enterReorderMode();
    drag(1, 10); // across rows
    QCOMPARE(overlay()->cursorSlot(), 10);
    QTRY_VERIFY(isAtRest());
    drag(11, 0);
    press(Qt::Key_Return);
    QStringList expected;
    for (const int i : {11, 0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 1})
        expected.append(QStringLiteral("Item %1").arg(i));
    QCOMPARE(itemsOf("Alpha"), expected);
    QCOMPARE(rows(), expected);
    QCOMPARE(currentRow(), QStringLiteral("Item 11"));
    QCOMPARE(onDisk(), model()->data());
}

void HomeViewReorderTest::sectionsByKeys()
{
    open();
    const QSignalSpy changes(model(), &LauncherModel::categoriesChanged);
    moveFirstEntry(true);
    press(Qt::Key_Return);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(sections(), QStringList({"Beta", "Alpha", "Gamma"}));
    QCOMPARE(onDisk(), model()->data());
    QTRY_COMPARE(pillTexts(), QStringList({"Beta", "Alpha", "Gamma"}));
    QCOMPARE(model()->currentCategory(), QStringLiteral("Alpha"));
    QCOMPARE(rows(), QStringList({"One", "Two", "Three"}));
    QCOMPARE(focused(), strip());
    QVERIFY(!banner());
    press(Qt::Key_Left); // the keys are the strip's again
    QCOMPARE(model()->currentCategory(), QStringLiteral("Beta"));
}

void HomeViewReorderTest::sectionsByMouse()
{
    open();
    home()->enterSectionReorderMode();
    drag(2, 0);
    press(Qt::Key_Return);
    QCOMPARE(sections(), QStringList({"Gamma", "Alpha", "Beta"}));
    QCOMPARE(onDisk(), model()->data());
}

void HomeViewReorderTest::sectionsOutOfView()
{
    LauncherData document = standardDocument();
    for (int i = 0; i < 20; ++i)
        document.categories.append(QStringLiteral("Another section %1").arg(i));
    open(document);
    model()->setCurrentCategory(document.categories.last());
    home()->refreshCategories(-1, false);
    QScrollBar* bar = home()->categoryStrip()->horizontalScrollBar();
    QTRY_VERIFY(bar->value() > 0);
    home()->enterSectionReorderMode();
    QVERIFY(tile(0)->x() < 0);
    QCOMPARE(overlay()->cursorSlot(), 22);
    press(Qt::Key_Space);
    for (int i = 0; i < 22; ++i)
        press(Qt::Key_Left);
    QTRY_VERIFY(isAtRest());
    QCOMPARE(tile(22)->x(), 0); // the content has come along
    press(Qt::Key_Return);
    QCOMPARE(sections().first(), document.categories.last());
    QCOMPARE(sections().size(), 23);
}

void HomeViewReorderTest::tilesLookLikeThePills()
{
    open();
    QCoreApplication::processEvents(); // which lights the pill, since the strip has the keyboard
    const QRect place(shownPills().first()->mapTo(m_window.get(), QPoint(0, 0)),
                      shownPills().first()->size());
    const QImage pill = m_window->grab(place).toImage();
    home()->enterSectionReorderMode();
    QVERIFY(m_window->grab(place).toImage() == pill);
    QCOMPARE(tile(0)->size(), place.size() + QSize(8, 0));
}

void HomeViewReorderTest::pillsThatAreMadeAnewMeanwhile()
{
    open();
    home()->enterSectionReorderMode();
    model()->editCategory("Gamma", "Gamma", KitIcon); // the same sections as before
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(home()->isReorderMode());
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    const QColor lit(getItemTheme().key);
    const QImage image = overlay()->grab().toImage();
    QCOMPARE(image.pixelColor(tile(2)->geometry().center().x(), 2), lit);
    QCOMPARE(pillTexts(), QStringList({"Alpha", "Beta", "Gamma"}));
}

void HomeViewReorderTest::bannerHintsAtSections()
{
    open();
    home()->enterSectionReorderMode();
    QVERIFY(banner());
    QCOMPARE(banner()->parentWidget(), named("listStack"));
    QCOMPARE(banner()->size(), named("listStack")->size());
    const QPointer<ReorderHintBanner> gone = banner();
    home()->exitReorderMode(true);
    QVERIFY(!banner());
    QTRY_VERIFY(gone.isNull());
}

void HomeViewReorderTest::nothingToEnd()
{
    openOnGrid();
    searchField()->setFocus();
    home()->exitReorderMode(true);
    home()->exitReorderMode(false);
    QCOMPARE(focused(), searchField());
}

void HomeViewReorderTest::clickOnAPillCommits()
{
    openOnGrid();
    moveFirstEntry(false);
    shownPills().at(1)->click();
    QVERIFY(!home()->isReorderMode());
    QCOMPARE(itemsOf("Alpha"), QStringList({"Two", "One", "Three"}));
    QCOMPARE(model()->currentCategory(), QStringLiteral("Beta"));
    QCOMPARE(rows(), QStringList({"Bee"}));
    QCOMPARE(itemsOf("Beta"), QStringList({"Bee"}));
    QCOMPARE(onDisk(), model()->data());
}

void HomeViewReorderTest::hidingCommits_data()
{
    QTest::addColumn<bool>("ofSections");
    QTest::newRow("items") << false;
    QTest::newRow("sections") << true;
}

void HomeViewReorderTest::hidingCommits()
{
    QFETCH(bool, ofSections);
    openOnGrid();
    moveFirstEntry(ofSections);
    m_window->fadeOutAndHide();
    QVERIFY(!home()->isReorderMode());
    if (ofSections)
        QCOMPARE(sections(), QStringList({"Beta", "Alpha", "Gamma"}));
    else
        QCOMPARE(itemsOf("Alpha"), QStringList({"Two", "One", "Three"}));
    QCOMPARE(onDisk(), model()->data());
    QTRY_VERIFY(m_window->isHidden());
    m_window->show();
    QVERIFY(!home()->isReorderMode());
    QVERIFY(!overlay());
}

void HomeViewReorderTest::rebuildCommits_data()
{
    hidingCommits_data();
}

void HomeViewReorderTest::rebuildCommits()
{
    QFETCH(bool, ofSections);
    openOnGrid();
    moveFirstEntry(ofSections);
    const QPointer<HomeView> before = home();
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(before.isNull());
    QVERIFY(!home()->isReorderMode());
    if (ofSections)
        QCOMPARE(pillTexts(), QStringList({"Beta", "Alpha", "Gamma"}));
    else
        QCOMPARE(rows(), QStringList({"Two", "One", "Three"}));
    QCOMPARE(onDisk(), model()->data());
}

void HomeViewReorderTest::editorCommits()
{
    openOnGrid();
    moveFirstEntry(false);
    m_window->openItemEditor({});
    QVERIFY(!home()->isReorderMode());
    QCOMPARE(itemsOf("Alpha"), QStringList({"Two", "One", "Three"}));
    QVERIFY(m_window->isItemEditorOpen());
}

void HomeViewReorderTest::nothingElseHappensMeanwhile()
{
    openOnGrid();
    home()->enterReorderMode();
    const LauncherData before = model()->data();
    QApplication::clipboard()->setText(QStringLiteral("untouched"));
    m_window->handleItemExecution(list()->item(1));
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("untouched"));
    emit list()->itemEntered(list()->item(2));
    QCOMPARE(list()->currentRow(), 0);
    m_window->showContextMenuForCurrentItem();
    m_window->showContextMenu(list()->visualItemRect(list()->item(0)).center());
    m_window->showCategoryActionsMenuFor("Alpha");
    m_window->showCategoryActionsMenuFor("Beta");
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(model()->currentCategory(), QStringLiteral("Alpha"));
    home()->showHoverPreview();
    QVERIFY(!m_window->findChild<PreviewTooltip*>()->isVisible());
    QCOMPARE(model()->data(), before);
    QVERIFY(home()->isReorderMode());
}

void HomeViewReorderTest::documentThatChangesMeanwhile_data()
{
    using Change = std::function<void(LauncherModel*)>;
    QTest::addColumn<Change>("change");
    const auto add = [](const char* name, Change change) {
        QTest::newRow(name) << std::move(change);
    };
    add("an item more",
        [](LauncherModel* model) { model->saveItem("Alpha", snippet("new", "New"), -1); });
    add("many more", [](LauncherModel* model) {
        for (int i = 0; i < 40; ++i)
            model->saveItem("Alpha", snippet(QString::number(i), "New"), -1);
    });
    add("one gone", [](LauncherModel* model) { model->deleteItem("Alpha", "a2"); });
    add("the moved one gone", [](LauncherModel* model) { model->deleteItem("Alpha", "a1"); });
    add("one gone and one more", [](LauncherModel* model) {
        model->deleteItem("Alpha", "a3");
        model->saveItem("Alpha", snippet("new", "New"), -1);
    });
    add("one in the place of another",
        [](LauncherModel* model) { model->saveItem("Alpha", snippet("new", "New"), 1); });
    add("one to another section",
        [](LauncherModel* model) { model->moveItemToCategory("Alpha", "a2", "Beta"); });
    add("one from another section",
        [](LauncherModel* model) { model->moveItemToCategory("Beta", "b1", "Alpha"); });
    add("one twice", [](LauncherModel* model) { model->duplicateItem("Alpha", "a1", nullptr); });
    add("other order", [](LauncherModel* model) {
        QVector<LauncherElement> items = model->getItems("Alpha");
        std::reverse(items.begin(), items.end());
        model->saveReorderedItems("Alpha", items);
    });
    add("another document with as many items", [](LauncherModel* model) {
        LauncherData document = standardDocument();
        for (LauncherElement& item : document.sectionElements["Alpha"])
            item = snippet(item.id + u'x', item.name + u'x');
        importDocument(model, document);
    });
    add("another document without the section", [](LauncherModel* model) {
        LauncherData document = standardDocument();
        document.categories.removeAll("Alpha");
        document.sectionElements["Beta"] = document.sectionElements.take("Alpha");
        importDocument(model, document);
    });
    add("all gone", [](LauncherModel* model) { model->resetData(); });
    add("the section gone", [](LauncherModel* model) { model->deleteCategory("Alpha"); });
    add("the section under another name",
        [](LauncherModel* model) { model->editCategory("Alpha", "Omega", AlphaIcon); });
    add("another section comes up",
        [](LauncherModel* model) { model->addCategory("Delta", AlphaIcon); });
}

void HomeViewReorderTest::documentThatChangesMeanwhile()
{
    QFETCH(std::function<void(LauncherModel*)>, change);
    openOnGrid();
    moveFirstEntry(false);
    press(Qt::Key_Right);
    // What the tiles stand for is no more, and so the mode is over: nothing is written but the
    // change itself.
    verifyEndsWith(change);
    QCOMPARE(rows(), itemsOf(model()->currentCategory()));
    // An empty list makes way for what stands in its place.
    QCOMPARE(focused(), rows().isEmpty() ? named("emptyAddBtn") : list());
}

void HomeViewReorderTest::changeElsewhereLeavesTheMode_data()
{
    using Change = std::function<void(LauncherModel*)>;
    QTest::addColumn<Change>("change");
    QTest::addColumn<QStringList>("expected");
    const QStringList plain{"Two", "One", "Three"};
    QTest::newRow("an item of another section")
        << Change([](LauncherModel* model) { model->deleteItem("Beta", "b1"); }) << plain;
    QTest::newRow("another section gone")
        << Change([](LauncherModel* model) { model->deleteCategory("Gamma"); }) << plain;
    QTest::newRow("a template") << Change([](LauncherModel* model) {
        model->deleteTemplate("Kit");
    }) << plain;
    QTest::newRow("an item under another name") << Change([](LauncherModel* model) {
        model->saveItem("Alpha", snippet("a1", "Renamed"), 0);
    }) << QStringList({"Two", "Renamed", "Three"});
    QTest::newRow("the same document again")
        << Change([](LauncherModel* model) { importDocument(model, standardDocument()); }) << plain;
}

void HomeViewReorderTest::changeElsewhereLeavesTheMode()
{
    QFETCH(std::function<void(LauncherModel*)>, change);
    QFETCH(QStringList, expected);
    openOnGrid();
    moveFirstEntry(false);
    change(model());
    QVERIFY(home()->isReorderMode());
    QCOMPARE(overlay()->currentOrder(), QVector<int>({1, 0, 2}));
    press(Qt::Key_Return);
    QCOMPARE(itemsOf("Alpha"), expected);
    QCOMPARE(rows(), expected);
    QCOMPARE(onDisk(), model()->data());
}

void HomeViewReorderTest::sectionsThatChangeMeanwhile_data()
{
    using Change = std::function<void(LauncherModel*)>;
    QTest::addColumn<Change>("change");
    const auto add = [](const char* name, Change change) {
        QTest::newRow(name) << std::move(change);
    };
    add("one gone", [](LauncherModel* model) { model->deleteCategory("Beta"); });
    add("the moved one gone", [](LauncherModel* model) { model->deleteCategory("Alpha"); });
    add("one more", [](LauncherModel* model) { model->addCategory("Delta", AlphaIcon); });
    add("one gone and one more", [](LauncherModel* model) {
        model->deleteCategory("Beta");
        model->addCategory("Delta", AlphaIcon);
    });
    add("another name",
        [](LauncherModel* model) { model->editCategory("Gamma", "Delta", AlphaIcon); });
    add("other order", [](LauncherModel* model) {
        model->saveReorderedCategories({"Gamma", "Beta", "Alpha"});
    });
    add("another document with as many sections", [](LauncherModel* model) {
        LauncherData document = standardDocument();
        document.categories = QStringList{"Alpha", "Delta", "Epsilon"};
        importDocument(model, document);
    });
    add("all gone", [](LauncherModel* model) { model->resetData(); });
}

void HomeViewReorderTest::sectionsThatChangeMeanwhile()
{
    QFETCH(std::function<void(LauncherModel*)>, change);
    open();
    moveFirstEntry(true);
    press(Qt::Key_Right);
    verifyEndsWith(change);
    QVERIFY(!banner());
    QCOMPARE(pillTexts(), sections());
    QCOMPARE(focused(), strip());
}

void HomeViewReorderTest::changeOnAnotherPage()
{
    openOnGrid();
    moveFirstEntry(false);
    auto* pages = qobject_cast<QStackedWidget*>(home()->parentWidget()->parentWidget());
    QVERIFY(pages);
    auto* other = new QLineEdit;
    pages->setCurrentIndex(pages->addWidget(other));
    other->setFocus();
    verifyEndsWith([](LauncherModel* model) { model->deleteItem("Alpha", "a2"); });
    QCOMPARE(focused(), other); // the keys stay where they are seen
}

void HomeViewReorderTest::overlayStaysWhereItIsWhenRowsAreMadeAnew()
{
    openOnGrid(manyItems(60));
    list()->scrollToBottom();
    list()->setCurrentRow(59);
    QVERIFY(list()->verticalScrollBar()->value() > 0);
    home()->enterReorderMode();
    model()->deleteItem("Beta", "b1");
    QCoreApplication::processEvents();
    QCOMPARE(overlay()->geometry(), list()->viewport()->rect());
    list()->scrollToTop();
    list()->scrollToBottom();
    QCOMPARE(overlay()->geometry(), list()->viewport()->rect());
    list()->scrollToTop();
    QCOMPARE(overlay()->geometry(), list()->viewport()->rect());
}

void HomeViewReorderTest::anySequenceKeepsEveryItem()
{
    openOnGrid(manyItems(9));
    QStringList expected = itemsOf("Alpha");
    expected.sort();
    const QList<Qt::Key> keys{Qt::Key_Left,  Qt::Key_Right, Qt::Key_Up,    Qt::Key_Down,
                              Qt::Key_Space, Qt::Key_Space, Qt::Key_Right, Qt::Key_Down};
    QRandomGenerator random(5);
    for (int round = 0; round < 60; ++round) {
        const bool ofSections = random.bounded(3) == 0;
        if (ofSections)
            home()->enterSectionReorderMode();
        else
            home()->enterReorderMode();
        for (int step = random.bounded(12); step > 0; --step)
            press(keys.at(random.bounded(int(keys.size()))));
        press(random.bounded(3) == 0 ? Qt::Key_Escape : Qt::Key_Return);
        QVERIFY(!home()->isReorderMode());
        QStringList items = itemsOf("Alpha");
        QCOMPARE(rows(), items);
        items.sort();
        QCOMPARE(items, expected);
        QStringList names = sections();
        names.sort();
        QCOMPARE(names, QStringList({"Alpha", "Beta", "Gamma"}));
    }
    QCOMPARE(onDisk(), model()->data());
}

QTEST_MAIN(HomeViewReorderTest)
#include "tst_homeviewreorder.moc"
