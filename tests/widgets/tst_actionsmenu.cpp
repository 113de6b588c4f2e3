// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "ActionsMenu.h"
#include "AutoQuitBlocker.h"
#include "IconHelper.h"
#include "Localization.h"
#include "Pixels.h"
#include "TestHome.h"
#include "Theme.h"
#include "UiDriver.h"

#include <QAction>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QWidgetAction>

#include <memory>

namespace
{

using Row = ActionsMenuRow;

ActionsMenuRow* rowOf(QAction* action)
{
    auto* widgetAction = qobject_cast<QWidgetAction*>(action);
    return widgetAction ? qobject_cast<ActionsMenuRow*>(widgetAction->defaultWidget()) : nullptr;
}

/// Counts the events that get past every filter installed after it.
class PassedEvents : public QObject
{
public:
    explicit PassedEvents(QObject* watched) { watched->installEventFilter(this); }

    QList<QEvent::Type> types;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
            types.append(event->type());
            break;
        default:
            break;
        }
        return false;
    }
};

/// A window with a field that has the focus, and with what a popup may be opened at.
class PopupStage : public QWidget
{
public:
    PopupStage()
    {
        setGeometry(60, 80, 500, 400);
        field = new QLineEdit(this);
        button = new QPushButton(this);
        button->setGeometry(30, 40, 220, 30);
        list = new QListWidget(this);
        list->setGeometry(20, 100, 300, 200);
        list->addItems({"first", "second", "third"});
        show();
        field->setFocus();
        activateWindow();
        if (!QTest::qWaitForWindowActive(this))
            qFatal("no window");
    }

    QLineEdit* field;
    QPushButton* button;
    QListWidget* list;
};

void choose(QMenu* menu, int index)
{
    menu->setActiveAction(menu->actions().at(index));
    QTest::keyClick(menu, Qt::Key_Return);
}

} // namespace

class ActionsMenuTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void styleOfAMenu();
    void backspaceCloses();
    void otherKeysPassTheBackKeyFilter();

    void rowConstants();
    void rowIsAWidgetAction();
    void rowsStandInOrder();
    void ampersandsAreNoMnemonics();
    void sizeHint_data();
    void sizeHint();
    void plainRow();
    void closingRows_data();
    void closingRows();
    void anchorBelow();

    void highlightFollowsTheActiveAction();
    void hoverRepaintsRows();
    void paintsGlyphAndTextInTheirColumns_data();
    void paintsGlyphAndTextInTheirColumns();
    void paintsTheCheckCircle_data();
    void paintsTheCheckCircle();
    void textsOfAMenuLineUp();

    void toggleRowKeepsTheMenuOpen();
    void plainRowClosesTheMenu();
    void unwatchedCheckRowClosesTheMenu();
    void toggleHappensOnRelease();
    void doubleClickTogglesTwice();
    void rightButtonIsNotConsumed();
    void clickOutsideClosesTheMenu();
    void keysToggle_data();
    void keysToggle();
    void keysOnAPlainRowPass_data();
    void keysOnAPlainRowPass();
    void keysWithoutAnActiveRowPass();
    void fireRepaintsAllRows();

    void areaTakesItsClicks();
    void areaIsSkipped_data();
    void areaIsSkipped();
    void areaWithoutHandlerStillTakesClicks();
    void areaComesBeforeARow();
    void firstOfTwoAreasWins();

    void longTextIsElidedInANarrowRow();
    void namesOfAMegabyteAreBounded();
    void popupRunsWhatIsChosen_data();
    void popupRunsWhatIsChosen();
    void popupWithoutAChoiceGivesTheFocusBack_data();
    void popupWithoutAChoiceGivesTheFocusBack();
    void popupOutlivesTheFocusWidget();
    void popupHoldsTheWindows();
    void popupOpensAtItsAnchor_data();
    void popupOpensAtItsAnchor();
    void popupSurvivesItsParent();
    void toggleMayDeleteTheMenu();
    void popupElidesLongNames();
    void popupRowsFillAWideMenu();

private:
    void popup();
    void click(QAction* action, Qt::MouseButton button = Qt::LeftButton);
    QPoint middleOf(QAction* action) const { return m_menu->actionGeometry(action).center(); }
    ActionsMenu::ToggleFilter* makeFilter();

    ColorTokens m_colors;
    std::unique_ptr<QMenu> m_menu;
    QList<QAction*> m_toggled;
};

void ActionsMenuTest::init()
{
    Tr::currentLang = Lang::En;
    Theme::forceTheme = 1;
    m_colors = Theme::colors();
    m_menu = std::make_unique<QMenu>();
    ActionsMenu::style(*m_menu, m_colors);
    m_toggled.clear();
}

void ActionsMenuTest::cleanup()
{
    m_menu.reset();
}

void ActionsMenuTest::popup()
{
    m_menu->popup(QPoint(100, 100));
    QVERIFY(QTest::qWaitForWindowExposed(m_menu.get()));
}

void ActionsMenuTest::click(QAction* action, Qt::MouseButton button)
{
    QTest::mouseMove(m_menu.get(), middleOf(action));
    QTest::mouseClick(m_menu.get(), button, Qt::NoModifier, middleOf(action));
}

/// A filter that notes what it toggles.
ActionsMenu::ToggleFilter* ActionsMenuTest::makeFilter()
{
    return new ActionsMenu::ToggleFilter(m_menu.get(),
                                         [this](QAction* action) { m_toggled.append(action); });
}

void ActionsMenuTest::styleOfAMenu()
{
    QCOMPARE(m_menu->windowType(), Qt::Popup);
    QVERIFY(m_menu->windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(m_menu->windowFlags() & Qt::NoDropShadowWindowHint);
    QVERIFY(m_menu->testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(m_menu->styleSheet(), Theme::contextMenuStyle(m_colors));
}

void ActionsMenuTest::backspaceCloses()
{
    QAction* action = ActionsMenu::addPlainRow(*m_menu, "A", m_colors);
    const QSignalSpy triggered(action, &QAction::triggered);
    popup();
    m_menu->setActiveAction(action);
    QTest::keyClick(m_menu.get(), Qt::Key_Backspace);
    QVERIFY(!m_menu->isVisible());
    QCOMPARE(triggered.count(), 0);
}

void ActionsMenuTest::otherKeysPassTheBackKeyFilter()
{
    QMenu menu;
    const PassedEvents passed(&menu);
    ActionsMenu::style(menu, m_colors);
    for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_A, Qt::Key_Down, Qt::Key_Backspace})
        QTest::keyClick(&menu, key);
    QCOMPARE(passed.types.size(), 3);
}

void ActionsMenuTest::rowConstants()
{
    QCOMPARE(Row::PadH, 16);
    QCOMPARE(Row::PadV, 9);
    QCOMPARE(Row::IconBox, 18);
    QCOMPARE(Row::IconGap, 12);
    QCOMPARE(Row::IconPx, 15);
    QCOMPARE(Row::CheckBox, 18);
    QCOMPARE(Row::CheckGap, 12);
    QCOMPARE(Row::Radius, 10);
}

void ActionsMenuTest::rowIsAWidgetAction()
{
    QAction* action = ActionsMenu::addRow(*m_menu, Glyph::Edit, "Edit", m_colors);
    QCOMPARE(action->parent(), m_menu.get());
    Row* row = rowOf(action);
    QVERIFY(row);
    QCOMPARE(row->font().pixelSize(), 14);
    QCOMPARE(row->focusPolicy(), Qt::NoFocus);
    QVERIFY(row->testAttribute(Qt::WA_TransparentForMouseEvents));
}

void ActionsMenuTest::rowsStandInOrder()
{
    QAction* first = ActionsMenu::addRow(*m_menu, Glyph::Edit, "Edit", m_colors);
    QAction* second = ActionsMenu::addCheckRow(
        *m_menu, [] { return true; }, Glyph::Apps, "Apps", m_colors);
    QAction* third = ActionsMenu::addPlainRow(*m_menu, "Plain", m_colors);
    QCOMPARE(m_menu->actions(), (QList<QAction*>{first, second, third}));
}

void ActionsMenuTest::ampersandsAreNoMnemonics()
{
    QAction* action = ActionsMenu::addPlainRow(*m_menu, "R&D", m_colors);
    QCOMPARE(action->text(), "R&&D"); // "R&D" to whoever reads the menu out
    const QSignalSpy triggered(action, &QAction::triggered);
    popup();
    QTest::keyClick(m_menu.get(), Qt::Key_D);
    QVERIFY(m_menu->isVisible());
    QCOMPARE(triggered.count(), 0);
}

void ActionsMenuTest::sizeHint_data()
{
    QTest::addColumn<uint>("glyph");
    QTest::addColumn<bool>("reserveCheck");
    QTest::addColumn<bool>("hasProbe");
    QTest::addColumn<int>("lead"); // beside the text and its padding
    QTest::newRow("text only") << 0u << false << false << 0;
    QTest::newRow("glyph") << Glyph::Edit << false << false << 30;
    QTest::newRow("check column") << 0u << true << true << 30;
    QTest::newRow("check column and glyph") << Glyph::Edit << true << true << 60;
    QTest::newRow("check column without a question") << Glyph::Edit << true << false << 60;
    QTest::newRow("a question without the column") << Glyph::Edit << false << true << 30;
}

void ActionsMenuTest::sizeHint()
{
    QFETCH(uint, glyph);
    QFETCH(bool, reserveCheck);
    QFETCH(bool, hasProbe);
    QFETCH(int, lead);
    std::function<bool()> probe;
    if (hasProbe)
        probe = [] { return true; };
    for (const QString& text : {QString(), QStringLiteral("A long text, in the menu")}) {
        Row* row = rowOf(ActionsMenu::addRow(*m_menu, glyph, text, m_colors, reserveCheck, probe));
        const QFontMetrics metrics = row->fontMetrics();
        QCOMPARE(row->sizeHint(), QSize(lead + 16 + metrics.horizontalAdvance(text) + 16,
                                        qMax(18, metrics.height()) + 18));
    }
}

void ActionsMenuTest::plainRow()
{
    QAction* action = ActionsMenu::addPlainRow(*m_menu, "Plain", m_colors);
    QCOMPARE(rowOf(action)->sizeHint().width(),
             32 + rowOf(action)->fontMetrics().horizontalAdvance("Plain"));
}

void ActionsMenuTest::closingRows_data()
{
    QTest::addColumn<bool>("isDone");
    QTest::addColumn<bool>("reserveCheck");
    QTest::addColumn<Lang>("lang");
    QTest::addColumn<QString>("text");
    QTest::newRow("done") << true << false << Lang::En << "Done";
    QTest::newRow("done, aligned") << true << true << Lang::En << "Done";
    QTest::newRow("cancel") << false << false << Lang::En << "Cancel";
    QTest::newRow("cancel, aligned") << false << true << Lang::En << "Cancel";
    QTest::newRow("cancel in Japanese")
        << false << false << Lang::Ja << QString::fromUtf8("キャンセル");
}

void ActionsMenuTest::closingRows()
{
    QFETCH(bool, isDone);
    QFETCH(bool, reserveCheck);
    QFETCH(Lang, lang);
    QFETCH(QString, text);
    Tr::currentLang = lang;
    ActionsMenu::addPlainRow(*m_menu, "A", m_colors);
    const auto add = isDone ? &ActionsMenu::addDone : &ActionsMenu::addCancel;
    QAction* action = add(*m_menu, m_colors, reserveCheck);
    QCOMPARE(m_menu->actions().size(), 3);
    QVERIFY(m_menu->actions().at(1)->isSeparator());
    QCOMPARE(m_menu->actions().at(2), action);
    QCOMPARE(action->text(), text);
    const int lead = reserveCheck ? 60 : 30;
    QCOMPARE(rowOf(action)->sizeHint().width(),
             lead + 32 + rowOf(action)->fontMetrics().horizontalAdvance(text));
}

void ActionsMenuTest::anchorBelow()
{
    QWidget window;
    window.setGeometry(50, 60, 600, 400);
    QPushButton button("x", &window);
    button.setGeometry(20, 30, 333, 36);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    ActionsMenu::addPlainRow(*m_menu, "A", m_colors);
    QCOMPARE(ActionsMenu::anchorBelow(&button, *m_menu),
             window.mapToGlobal(QPoint(20, 30 + 36 + 4)));
    QCOMPARE(m_menu->minimumWidth(), 333);
    popup();
    QCOMPARE(m_menu->width(), 333);
}

void ActionsMenuTest::highlightFollowsTheActiveAction()
{
    QAction* first = ActionsMenu::addPlainRow(*m_menu, "First", m_colors);
    QAction* second = ActionsMenu::addPlainRow(*m_menu, "Second", m_colors);
    popup();
    const QColor highlight(m_colors.primaryContainer);
    const auto isLit = [&highlight](QAction* action) {
        const QImage image = Pixels::imageOf(*rowOf(action));
        return image.pixelColor(image.width() / 2, 1) == highlight;
    };
    m_menu->setActiveAction(first);
    QVERIFY(isLit(first));
    QVERIFY(!isLit(second));
    QTest::keyClick(m_menu.get(), Qt::Key_Down);
    QVERIFY(!isLit(first));
    QVERIFY(isLit(second));
    // Over the whole row, with rounded corners.
    const QImage image = Pixels::imageOf(*rowOf(second));
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::white));
    QCOMPARE(image.pixelColor(0, image.height() / 2), highlight);
    QCOMPARE(image.pixelColor(image.width() - 1, image.height() / 2), highlight);
}

void ActionsMenuTest::hoverRepaintsRows()
{
    QAction* first = ActionsMenu::addPlainRow(*m_menu, "First", m_colors);
    QAction* second = ActionsMenu::addPlainRow(*m_menu, "Second", m_colors);
    popup();
    m_menu->setActiveAction(first);
    QTRY_VERIFY(m_menu->isVisible());
    const PaintCounter firstPaints(rowOf(first));
    const PaintCounter secondPaints(rowOf(second));
    emit m_menu->hovered(second);
    QTRY_VERIFY(firstPaints.count > 0);
    QTRY_VERIFY(secondPaints.count > 0);
}

void ActionsMenuTest::paintsGlyphAndTextInTheirColumns_data()
{
    QTest::addColumn<bool>("reserveCheck");
    QTest::addColumn<bool>("isActive");
    QTest::newRow("idle") << false << false;
    QTest::newRow("active") << false << true;
    QTest::newRow("idle with check column") << true << false;
    QTest::newRow("active with check column") << true << true;
}

void ActionsMenuTest::paintsGlyphAndTextInTheirColumns()
{
    QFETCH(bool, reserveCheck);
    QFETCH(bool, isActive);
    m_colors.onSurface = "#ff0000";
    m_colors.onPrimaryContainer = "#0000ff";
    m_colors.primaryContainer = "#ffffff"; // so that only ink is seen
    QAction* action = ActionsMenu::addRow(*m_menu, Glyph::Work, "MMMM", m_colors, reserveCheck);
    popup();
    m_menu->setActiveAction(isActive ? action : nullptr);
    QImage image = Pixels::imageOf(*rowOf(action));
    const QColor ink(isActive ? Qt::blue : Qt::red);
    const QColor otherInk(isActive ? Qt::red : Qt::blue);
    QVERIFY(Pixels::boxOfColor(image, otherInk, 60).isEmpty());

    const int iconX = (reserveCheck ? 30 : 0) + 16;
    const QImage glyph = image.copy(iconX, 0, 18, image.height());
    QVERIFY(Pixels::isCentredOn(Pixels::inkBox(glyph), QPointF(9, image.height() / 2.0)));
    QVERIFY(!Pixels::boxOfColor(glyph, ink, 60).isEmpty());

    const int textX = iconX + 30;
    QVERIFY(Pixels::inkBox(image.copy(iconX + 18, 0, 12, image.height())).isEmpty());
    const QRect text =
        Pixels::boxOfColor(image.copy(textX, 0, image.width() - textX, image.height()), ink, 100);
    QVERIFY(text.left() <= 3);
    QVERIFY(text.right() < image.width() - textX - 14);
    QVERIFY(qAbs(text.center().y() - image.height() / 2) <= 2);
}

void ActionsMenuTest::paintsTheCheckCircle_data()
{
    QTest::addColumn<int>("checked"); // -1: nobody to ask
    QTest::addColumn<bool>("isActive");
    QTest::addColumn<QString>("ring"); // empty for a filled circle
    QTest::newRow("checked") << 1 << false << "";
    QTest::newRow("checked and active") << 1 << true << "";
    QTest::newRow("unchecked") << 0 << false << "#00ff00";
    QTest::newRow("unchecked and active") << 0 << true << "#0000ff";
    QTest::newRow("nobody to ask") << -1 << false << "#00ff00";
}

void ActionsMenuTest::paintsTheCheckCircle()
{
    QFETCH(int, checked);
    QFETCH(bool, isActive);
    QFETCH(QString, ring);
    m_colors.onSurfaceVariant = "#00ff00";
    m_colors.onPrimaryContainer = "#0000ff";
    m_colors.primaryContainer = "#ffffff";
    m_colors.primary = "#ff00ff";
    std::function<bool()> probe;
    if (checked >= 0)
        probe = [checked] { return checked == 1; };
    QAction* action = ActionsMenu::addCheckRow(*m_menu, probe, 0, QString(), m_colors);
    popup();
    m_menu->setActiveAction(isActive ? action : nullptr);
    const QImage image = Pixels::imageOf(*rowOf(action));
    const QPoint center(25, image.height() / 2);
    const QRect circle = Pixels::inkBox(image);
    QVERIFY(Pixels::isCentredOn(circle, QPointF(25, image.height() / 2.0)));
    QVERIFY(circle.width() >= 16 && circle.width() <= 18);
    const QColor inside = image.pixelColor(center - QPoint(0, 6));
    if (ring.isEmpty()) {
        QCOMPARE(inside, QColor("#ff00ff"));
    } else {
        QCOMPARE(inside, QColor(Qt::white));
        QVERIFY(!Pixels::boxOfColor(image, QColor(ring), 60).isEmpty());
        QVERIFY(Pixels::boxOfColor(image, QColor("#ff00ff"), 60).isEmpty());
    }
}

void ActionsMenuTest::textsOfAMenuLineUp()
{
    m_colors.onSurfaceVariant = "#ffffff"; // rings out of sight
    const QList<QAction*> actions{ActionsMenu::addCheckRow(
                                      *m_menu, [] { return false; }, Glyph::Apps, "MM", m_colors),
                                  ActionsMenu::addRow(*m_menu, Glyph::Done, "MM", m_colors, true),
                                  ActionsMenu::addDone(*m_menu, m_colors, true)};
    popup();
    for (QAction* action : actions) {
        QImage image = Pixels::imageOf(*rowOf(action));
        const int textX = 16 + 30 + 30;
        QVERIFY(Pixels::inkBox(image.copy(textX - 12, 0, 12, image.height())).isEmpty());
        QVERIFY(Pixels::inkBox(image.copy(textX, 0, 4, image.height())).isValid());
    }
}

void ActionsMenuTest::toggleRowKeepsTheMenuOpen()
{
    bool isOn = false;
    QAction* toggle = ActionsMenu::addCheckRow(
        *m_menu, [&isOn] { return isOn; }, Glyph::Apps, "T", m_colors);
    const QSignalSpy triggered(toggle, &QAction::triggered);
    ActionsMenu::ToggleFilter filter(m_menu.get(), [&](QAction* action) {
        QCOMPARE(action, toggle);
        isOn = !isOn;
    });
    filter.watch(toggle);
    popup();
    click(toggle);
    QVERIFY(isOn);
    QVERIFY(m_menu->isVisible());
    click(toggle);
    QVERIFY(!isOn);
    QVERIFY(m_menu->isVisible());
    QCOMPARE(triggered.count(), 0);
}

void ActionsMenuTest::plainRowClosesTheMenu()
{
    QAction* toggle = ActionsMenu::addCheckRow(
        *m_menu, [] { return true; }, Glyph::Apps, "T", m_colors);
    QAction* plain = ActionsMenu::addPlainRow(*m_menu, "Plain", m_colors);
    const QSignalSpy triggered(plain, &QAction::triggered);
    makeFilter()->watch(toggle);
    popup();
    click(toggle);
    QVERIFY(m_menu->isVisible());
    click(plain);
    QVERIFY(!m_menu->isVisible());
    QCOMPARE(triggered.count(), 1);
    QCOMPARE(m_toggled, QList<QAction*>{toggle});
}

void ActionsMenuTest::unwatchedCheckRowClosesTheMenu()
{
    QAction* check = ActionsMenu::addCheckRow(
        *m_menu, [] { return true; }, Glyph::Apps, "T", m_colors);
    const QSignalSpy triggered(check, &QAction::triggered);
    makeFilter();
    popup();
    click(check);
    QVERIFY(!m_menu->isVisible());
    QCOMPARE(triggered.count(), 1);
    QVERIFY(m_toggled.isEmpty());
}

void ActionsMenuTest::toggleHappensOnRelease()
{
    QAction* toggle = ActionsMenu::addPlainRow(*m_menu, "T", m_colors);
    const PassedEvents passed(m_menu.get());
    makeFilter()->watch(toggle);
    popup();
    QTest::mousePress(m_menu.get(), Qt::LeftButton, Qt::NoModifier, middleOf(toggle));
    QVERIFY(m_toggled.isEmpty());
    QTest::mouseRelease(m_menu.get(), Qt::LeftButton, Qt::NoModifier, middleOf(toggle));
    QCOMPARE(m_toggled.size(), 1);
    QVERIFY(passed.types.isEmpty());
}

void ActionsMenuTest::doubleClickTogglesTwice()
{
    QAction* toggle = ActionsMenu::addPlainRow(*m_menu, "T", m_colors);
    const PassedEvents passed(m_menu.get());
    makeFilter()->watch(toggle);
    popup();
    const QPoint where = m_menu->mapToGlobal(middleOf(toggle));
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                                    QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease})
        sendMouse(m_menu.get(), type, where);
    QCOMPARE(m_toggled.size(), 2);
    QVERIFY(m_menu->isVisible());
    QVERIFY(passed.types.isEmpty());
}

void ActionsMenuTest::rightButtonIsNotConsumed()
{
    QAction* toggle = ActionsMenu::addPlainRow(*m_menu, "T", m_colors);
    const PassedEvents passed(m_menu.get());
    makeFilter()->watch(toggle);
    popup();
    QTest::mousePress(m_menu.get(), Qt::RightButton, Qt::NoModifier, middleOf(toggle));
    QCOMPARE(passed.types, QList<QEvent::Type>{QEvent::MouseButtonPress});
    QTest::mouseRelease(m_menu.get(), Qt::RightButton, Qt::NoModifier, middleOf(toggle));
    QCOMPARE(passed.types.size(), 2);
    QVERIFY(m_toggled.isEmpty());
}

void ActionsMenuTest::clickOutsideClosesTheMenu()
{
    makeFilter()->watch(ActionsMenu::addPlainRow(*m_menu, "T", m_colors));
    popup();
    sendMouse(m_menu.get(), QEvent::MouseButtonPress,
              m_menu->geometry().bottomRight() + QPoint(40, 40));
    QVERIFY(!m_menu->isVisible());
    QVERIFY(m_toggled.isEmpty());
}

void ActionsMenuTest::keysToggle_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
    QTest::newRow("Space") << int(Qt::Key_Space);
}

void ActionsMenuTest::keysToggle()
{
    QFETCH(int, key);
    ActionsMenu::addPlainRow(*m_menu, "Plain", m_colors);
    QAction* toggle = ActionsMenu::addPlainRow(*m_menu, "T", m_colors);
    const QSignalSpy triggered(toggle, &QAction::triggered);
    makeFilter()->watch(toggle);
    popup();
    m_menu->setActiveAction(toggle);
    QTest::keyClick(m_menu.get(), static_cast<Qt::Key>(key));
    QTest::keyClick(m_menu.get(), static_cast<Qt::Key>(key));
    QCOMPARE(m_toggled, (QList<QAction*>{toggle, toggle}));
    QVERIFY(m_menu->isVisible());
    QCOMPARE(m_menu->activeAction(), toggle);
    QCOMPARE(triggered.count(), 0);
}

void ActionsMenuTest::keysOnAPlainRowPass_data()
{
    keysToggle_data();
}

void ActionsMenuTest::keysOnAPlainRowPass()
{
    QFETCH(int, key);
    const PassedEvents passed(m_menu.get());
    QAction* plain = ActionsMenu::addPlainRow(*m_menu, "Plain", m_colors);
    const QSignalSpy triggered(plain, &QAction::triggered);
    makeFilter()->watch(ActionsMenu::addPlainRow(*m_menu, "T", m_colors));
    popup();
    m_menu->setActiveAction(plain);
    QTest::keyClick(m_menu.get(), static_cast<Qt::Key>(key));
    QCOMPARE(passed.types, QList<QEvent::Type>{QEvent::KeyPress});
    QVERIFY(m_toggled.isEmpty());
    // Whether Space chooses a row of an ordinary menu is up to the desktop.
    if (key != Qt::Key_Space) {
        QVERIFY(!m_menu->isVisible());
        QCOMPARE(triggered.count(), 1);
    }
}

void ActionsMenuTest::keysWithoutAnActiveRowPass()
{
    const PassedEvents passed(m_menu.get());
    makeFilter()->watch(ActionsMenu::addPlainRow(*m_menu, "T", m_colors));
    popup();
    m_menu->setActiveAction(nullptr);
    QTest::keyClick(m_menu.get(), Qt::Key_Return);
    QCOMPARE(passed.types, QList<QEvent::Type>{QEvent::KeyPress});
    QVERIFY(m_toggled.isEmpty());
}

void ActionsMenuTest::fireRepaintsAllRows()
{
    QAction* toggle = ActionsMenu::addPlainRow(*m_menu, "T", m_colors);
    QAction* other = ActionsMenu::addPlainRow(*m_menu, "Other", m_colors);
    m_menu->addSeparator(); // no row, and skipped
    ActionsMenu::ToggleFilter* filter = makeFilter();
    popup();
    const PaintCounter togglePaints(rowOf(toggle));
    const PaintCounter otherPaints(rowOf(other));
    filter->fire(toggle);
    QCOMPARE(m_toggled, QList<QAction*>{toggle});
    QTRY_VERIFY(togglePaints.count > 0);
    QTRY_VERIFY(otherPaints.count > 0);
}

void ActionsMenuTest::areaTakesItsClicks()
{
    ActionsMenu::addPlainRow(*m_menu, "A", m_colors);
    popup();
    QWidget dot(nullptr, Qt::Tool | Qt::FramelessWindowHint);
    dot.setGeometry(QRect(m_menu->geometry().topRight() + QPoint(8, 0), QSize(40, 40)));
    dot.show();
    int clicks = 0;
    const PassedEvents passed(m_menu.get());
    makeFilter()->watchArea(&dot, [&clicks] { ++clicks; });
    sendMouse(m_menu.get(), QEvent::MouseButtonPress, dot.geometry().center());
    QCOMPARE(clicks, 0);
    sendMouse(m_menu.get(), QEvent::MouseButtonRelease, dot.geometry().center());
    QCOMPARE(clicks, 1);
    sendMouse(m_menu.get(), QEvent::MouseButtonDblClick, dot.geometry().topLeft());
    QCOMPARE(clicks, 1);
    QVERIFY(passed.types.isEmpty());
    QVERIFY(m_menu->isVisible());
    sendMouse(m_menu.get(), QEvent::MouseButtonPress, dot.geometry().bottomRight() + QPoint(1, 1));
    QCOMPARE(passed.types.size(), 1);
    QCOMPARE(clicks, 1);
}

void ActionsMenuTest::areaIsSkipped_data()
{
    QTest::addColumn<bool>("isDeleted");
    QTest::newRow("hidden") << false;
    QTest::newRow("deleted") << true;
}

void ActionsMenuTest::areaIsSkipped()
{
    QFETCH(bool, isDeleted);
    ActionsMenu::addPlainRow(*m_menu, "A", m_colors);
    popup();
    auto dot = std::make_unique<QWidget>(nullptr, Qt::Tool | Qt::FramelessWindowHint);
    const QRect where(m_menu->geometry().topRight() + QPoint(8, 0), QSize(40, 40));
    dot->setGeometry(where);
    dot->show();
    dot->hide();
    int clicks = 0;
    makeFilter()->watchArea(dot.get(), [&clicks] { ++clicks; });
    if (isDeleted)
        dot.reset();
    sendMouse(m_menu.get(), QEvent::MouseButtonPress, where.center());
    QCOMPARE(clicks, 0);
    QVERIFY(!m_menu->isVisible()); // a click outside like any other
}

void ActionsMenuTest::areaWithoutHandlerStillTakesClicks()
{
    ActionsMenu::addPlainRow(*m_menu, "A", m_colors);
    popup();
    QWidget dot(nullptr, Qt::Tool | Qt::FramelessWindowHint);
    dot.setGeometry(QRect(m_menu->geometry().topRight() + QPoint(8, 0), QSize(40, 40)));
    dot.show();
    const PassedEvents passed(m_menu.get());
    makeFilter()->watchArea(&dot, {});
    sendMouse(m_menu.get(), QEvent::MouseButtonPress, dot.geometry().center());
    sendMouse(m_menu.get(), QEvent::MouseButtonRelease, dot.geometry().center());
    QVERIFY(passed.types.isEmpty());
    QVERIFY(m_menu->isVisible());
}

void ActionsMenuTest::areaComesBeforeARow()
{
    QAction* toggle = ActionsMenu::addPlainRow(*m_menu, "T", m_colors);
    popup();
    QWidget dot(nullptr, Qt::Tool | Qt::FramelessWindowHint);
    dot.setGeometry(m_menu->geometry());
    dot.show();
    int clicks = 0;
    ActionsMenu::ToggleFilter* filter = makeFilter();
    filter->watch(toggle);
    filter->watchArea(&dot, [&clicks] { ++clicks; });
    click(toggle);
    QCOMPARE(clicks, 1);
    QVERIFY(m_toggled.isEmpty());
}

void ActionsMenuTest::firstOfTwoAreasWins()
{
    ActionsMenu::addPlainRow(*m_menu, "A", m_colors);
    popup();
    QWidget dot(nullptr, Qt::Tool | Qt::FramelessWindowHint);
    dot.setGeometry(QRect(m_menu->geometry().topRight() + QPoint(8, 0), QSize(40, 40)));
    dot.show();
    QString who;
    ActionsMenu::ToggleFilter* filter = makeFilter();
    filter->watchArea(&dot, [&who] { who += "first "; });
    filter->watchArea(&dot, [&who] { who += "second "; });
    sendMouse(m_menu.get(), QEvent::MouseButtonRelease, dot.geometry().center());
    QCOMPARE(who, "first ");
}

void ActionsMenuTest::longTextIsElidedInANarrowRow()
{
    const QString name = QStringLiteral("a name that takes more room than there is");
    Row* row = rowOf(ActionsMenu::addPlainRow(*m_menu, name, m_colors));
    const int room = 120;
    row->setFixedSize(room + 2 * Row::PadH, 36);
    const QString elided = row->fontMetrics().elidedText(name, Qt::ElideRight, room);
    QVERIFY(elided.endsWith(QChar(0x2026)));
    Row* expected = rowOf(ActionsMenu::addPlainRow(*m_menu, elided, m_colors));
    expected->setFixedSize(row->size());
    QCOMPARE(Pixels::imageOf(*row), Pixels::imageOf(*expected));
}

void ActionsMenuTest::namesOfAMegabyteAreBounded()
{
    QAction* action = ActionsMenu::addPlainRow(*m_menu, QString(1 << 20, u'i'), m_colors);
    QVERIFY(action->text().size() < 5000);
    QVERIFY(rowOf(action)->sizeHint().width() > Row::MaxTextWidth);
}

void ActionsMenuTest::popupRunsWhatIsChosen_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("done");
    QTest::newRow("first") << 0 << "first";
    QTest::newRow("second") << 1 << "second";
    QTest::newRow("behind a separator") << 3 << "third";
    QTest::newRow("done row") << 5 << "done";
}

void ActionsMenuTest::popupRunsWhatIsChosen()
{
    QFETCH(int, index);
    PopupStage stage;
    QString done;
    bool wasClosed = false;
    ActionsMenu::Popup popup(&stage);
    QMenu* menu = &popup.menu();
    const auto note = [&](const QString& what) {
        return [&done, &wasClosed, menu, what] {
            done += what;
            wasClosed = !menu->isVisible();
        };
    };
    popup.addRow(Glyph::Edit, "First", note("first"));
    popup.addRow(0, "Second", note("second"));
    popup.addSeparator();
    popup.addRow(Glyph::Delete, "Third", note("third"));
    popup.addDone(note("done"));
    const MenuDriver driver([index](QMenu* open) { choose(open, index); });
    QVERIFY(popup.execBelow(stage.button));
    QTEST(done, "done");
    QVERIFY(wasClosed);
}

void ActionsMenuTest::popupWithoutAChoiceGivesTheFocusBack_data()
{
    QTest::addColumn<int>("index"); // -1: Esc
    QTest::newRow("Esc") << -1;
    QTest::newRow("cancel row") << 2;
    QTest::newRow("row that does nothing") << 3;
}

void ActionsMenuTest::popupWithoutAChoiceGivesTheFocusBack()
{
    QFETCH(int, index);
    PopupStage stage;
    ActionsMenu::Popup popup(&stage);
    bool isDone = false;
    popup.addRow(Glyph::Edit, "First", [&isDone] { isDone = true; });
    popup.addCancel();
    popup.addRow(0, "Nothing", {});
    const MenuDriver driver([&stage, index](QMenu* menu) {
        stage.button->setFocus(); // the focus wanders off while the menu is open
        if (index < 0)
            QTest::keyClick(menu, Qt::Key_Escape);
        else
            choose(menu, index);
    });
    QVERIFY(!popup.execBelow(stage.button));
    QVERIFY(!isDone);
    QCOMPARE(stage.focusWidget(), stage.field);
}

void ActionsMenuTest::popupOutlivesTheFocusWidget()
{
    PopupStage stage;
    ActionsMenu::Popup popup(&stage);
    popup.addCancel();
    const MenuDriver driver([&stage](QMenu* menu) {
        delete stage.field;
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    QVERIFY(!popup.execBelow(stage.button));
    popup.restoreFocus();
}

void ActionsMenuTest::popupHoldsTheWindows()
{
    PopupStage stage;
    bool isHeldWhileOpen = false;
    bool isHeldWhileActing = false;
    QTRY_VERIFY(!g_blockAutoQuit);
    {
        ActionsMenu::Popup popup(&stage);
        popup.addRow(0, "Row", [&] { isHeldWhileActing = g_blockAutoQuit; });
        const MenuDriver driver([&](QMenu* menu) {
            isHeldWhileOpen = g_blockAutoQuit;
            choose(menu, 0);
        });
        QVERIFY(popup.execBelow(stage.button));
    }
    QVERIFY(isHeldWhileOpen);
    QVERIFY(isHeldWhileActing);
    QTRY_VERIFY(!g_blockAutoQuit);
}

void ActionsMenuTest::popupOpensAtItsAnchor_data()
{
    QTest::addColumn<QString>("anchor");
    for (const char* anchor : {"point", "below", "centre", "row"})
        QTest::newRow(anchor) << QString::fromLatin1(anchor);
}

void ActionsMenuTest::popupOpensAtItsAnchor()
{
    QFETCH(QString, anchor);
    PopupStage stage;
    ActionsMenu::Popup popup(&stage);
    popup.addCancel();
    QRect opened;
    const MenuDriver driver([&opened](QMenu* menu) { opened = menu->geometry(); });
    if (anchor == QLatin1String("point")) {
        popup.execAt(QPoint(123, 45));
        QCOMPARE(opened.topLeft(), QPoint(123, 45));
    } else if (anchor == QLatin1String("below")) {
        popup.execBelow(stage.button);
        QCOMPARE(opened.topLeft(), stage.mapToGlobal(QPoint(30, 40 + 30 + 4)));
        QCOMPARE(opened.width(), 220);
    } else if (anchor == QLatin1String("centre")) {
        popup.execAtCenter(stage.button);
        QCOMPARE(opened.topLeft(), stage.mapToGlobal(stage.button->geometry().center()));
    } else {
        const QModelIndex second = stage.list->model()->index(1, 0);
        popup.execAtCenter(stage.list, second);
        QCOMPARE(opened.topLeft(),
                 stage.list->viewport()->mapToGlobal(stage.list->visualRect(second).center()));
    }
}

void ActionsMenuTest::popupSurvivesItsParent()
{
    PopupStage stage;
    auto* page = new QWidget(&stage); // what a rebuild takes away
    auto* pageField = new QLineEdit(page);
    page->show();
    pageField->setFocus();
    bool isDone = false;
    ActionsMenu::Popup popup(page);
    auto* filter = new ActionsMenu::ToggleFilter(&popup.menu(), [](QAction*) {});
    filter->watch(popup.addCheckRow([] { return true; }, 0, "Check"));
    popup.addRow(0, "Row", [&isDone] { isDone = true; });
    const QPointer<QMenu> menu(&popup.menu());
    const MenuDriver driver([page](QMenu*) { delete page; });
    QVERIFY(!popup.execBelow(stage.button));
    QVERIFY(!menu);
    QVERIFY(!isDone);
    popup.restoreFocus();
}

void ActionsMenuTest::toggleMayDeleteTheMenu()
{
    PopupStage stage;
    auto* page = new QWidget(&stage);
    ActionsMenu::Popup popup(page);
    auto* filter = new ActionsMenu::ToggleFilter(&popup.menu(), [page](QAction*) { delete page; });
    filter->watch(popup.addCheckRow([] { return true; }, 0, "Check"));
    const QPointer<QMenu> menu(&popup.menu());
    const MenuDriver driver([](QMenu* shown) {
        QTest::keyClick(shown, Qt::Key_Down);
        QTest::keyClick(shown, Qt::Key_Return);
    });
    QVERIFY(!popup.execBelow(stage.button));
    QVERIFY(!menu);
}

void ActionsMenuTest::popupElidesLongNames()
{
    PopupStage stage;
    ActionsMenu::Popup popup(&stage);
    QAction* action = popup.addRow(Glyph::Folder, "R&D " + QString(1 << 20, u'w'), [] {});
    popup.addCancel();
    QSize size;
    const MenuDriver driver([&](QMenu*) { size = rowOf(action)->size(); });
    popup.execAt(QPoint(10, 10));
    QCOMPARE(size.width(), ActionsMenu::Popup::MaxRowWidth);
}

void ActionsMenuTest::popupRowsFillAWideMenu()
{
    PopupStage stage;
    stage.button->setFixedWidth(ActionsMenu::Popup::MaxRowWidth + 60);
    ActionsMenu::Popup popup(&stage);
    QAction* action = popup.addRow(0, "Short", [] {});
    QRect row;
    QRect room;
    const MenuDriver driver([&](QMenu* menu) {
        row = rowOf(action)->geometry();
        room = menu->actionGeometry(action);
    });
    popup.execBelow(stage.button);
    QCOMPARE(row, room);
    QVERIFY(row.width() > ActionsMenu::Popup::MaxRowWidth);
}

QTEST_MAIN(ActionsMenuTest)
#include "tst_actionsmenu.moc"
