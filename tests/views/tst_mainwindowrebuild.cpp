// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "EventCounter.h"
#include "Localization.h"
#include "MainWindowFixture.h"

#include <QDialog>
#include <QLayout>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <functional>

/// How the window changes its content: behind a dip, to another page and to a tree built anew, and
/// where the focus is then.
class MainWindowRebuildTest : public MainWindowFixture
{
    Q_OBJECT

private slots:
    void swapBehindADip();
    void swapAtOnceWhenNotShowing();
    void emptySwapIsNone();
    void swapStartsFromThePresentOpacity();
    void fadeDoesNotLoseTheSwap();
    void secondSwapDoesNotLoseTheFirst();
    void swapFromWithinASwap();
    void destroyedInMidSwap_data();
    void destroyedInMidSwap();

    void goToPageOutOfBounds_data();
    void goToPageOutOfBounds();
    void goToPage();

    void rebuildBehindADip();
    void rebuildWhenHidden();
    void rebuildWhileFading();
    void rebuildTwice();
    void rebuildChangesTheLanguage();
    void rebuildChoosesAValidCategory_data();
    void rebuildChoosesAValidCategory();
    void rebuildGivesTheFocusBack_data();
    void rebuildGivesTheFocusBack();
    void rebuildDuringARebuildComesAfterIt();
    void pagesSwapAtOnceDuringARebuild();
    void keysPassDuringARebuild();
    void rebuildLeavesContentVisible();
    void fadingWindowLeavesTheActivation();
    void rebuildTakesTheActivationOfAShownWindow();
    void oldTreeIsOutOfReachWhileItGoes();
    void treeGoesBeforeTheModel();

    void tabIsTakenFromTheFocusChain_data();
    void tabIsTakenFromTheFocusChain();
    void otherWindowsKeepTheirTab();

private:
    void rebuildAnd(const std::function<void()>& inBetween);
};

namespace
{

/// True if the event was consumed before it reached the widget.
bool isOverrideConsumed(QWidget* widget, Qt::Key key)
{
    EventCounter counter(widget, QEvent::ShortcutOverride);
    QKeyEvent event(QEvent::ShortcutOverride, key, Qt::NoModifier);
    event.ignore();
    QApplication::sendEvent(widget, &event);
    return counter.count == 0 && event.isAccepted();
}

} // namespace

void MainWindowRebuildTest::swapBehindADip()
{
    constructAndShow();
    QVector<qreal> opacities;
    m_window->runBlindSwap([this, &opacities] { opacities.append(m_window->windowOpacity()); });
    QVERIFY(opacities.isEmpty());
    auto* group = m_window->findChild<QSequentialAnimationGroup*>({}, Qt::FindDirectChildrenOnly);
    QVERIFY(group);
    QCOMPARE(group->animationCount(), 2);
    const auto* out = qobject_cast<QPropertyAnimation*>(group->animationAt(0));
    const auto* in = qobject_cast<QPropertyAnimation*>(group->animationAt(1));
    QCOMPARE(out->duration(), 110);
    QCOMPARE(out->easingCurve().type(), QEasingCurve::InQuad);
    QCOMPARE(in->duration(), 170);
    QCOMPARE(in->easingCurve().type(), QEasingCurve::OutQuad);
    QTRY_VERIFY(!isDipping());
    QCOMPARE(opacities, QVector<qreal>{0.0});
    QCOMPARE(m_window->windowOpacity(), 1.0);
    QVERIFY(m_window->isVisible());
}

void MainWindowRebuildTest::swapAtOnceWhenNotShowing()
{
    construct();
    int swapped = 0;
    m_window->runBlindSwap([&swapped] { ++swapped; });
    QCOMPARE(swapped, 1);
    QVERIFY(!isDipping());

    m_window->show();
    m_window->fadeOutAndHide();
    m_window->runBlindSwap([&swapped] { ++swapped; });
    QCOMPARE(swapped, 2);
    QVERIFY(!isDipping());
    QVERIFY(runningFade());
}

void MainWindowRebuildTest::emptySwapIsNone()
{
    construct();
    m_window->runBlindSwap({});
    m_window->show();
    int swapped = 0;
    m_window->runBlindSwap([&swapped] { ++swapped; });
    m_window->runBlindSwap({});
    // What runs already isn't disturbed by it.
    QVERIFY(isDipping());
    QTRY_VERIFY(!isDipping());
    QCOMPARE(swapped, 1);
}

void MainWindowRebuildTest::swapStartsFromThePresentOpacity()
{
    constructAndShow();
    m_window->setWindowOpacity(0.5);
    m_window->runBlindSwap([] {});
    const auto* group =
        m_window->findChild<QSequentialAnimationGroup*>({}, Qt::FindDirectChildrenOnly);
    const auto* out = qobject_cast<QPropertyAnimation*>(group->animationAt(0));
    QVERIFY(qAbs(out->startValue().toReal() - 0.5) < 0.01);
    QTRY_VERIFY(!isDipping());
    QCOMPARE(m_window->windowOpacity(), 1.0);
}

void MainWindowRebuildTest::fadeDoesNotLoseTheSwap()
{
    constructAndShow();
    int swapped = 0;
    m_window->runBlindSwap([&swapped] { ++swapped; });
    m_window->setWindowOpacity(0.5);
    m_window->fadeOutAndHide();
    QVERIFY(!isDipping());
    // The dip is put right before the fade begins.
    QCOMPARE(runningFade()->startValue().toReal(), 1.0);
    QCOMPARE(swapped, 0); // only when the event loop turns
    QTRY_COMPARE(swapped, 1);
    QTRY_VERIFY(m_window->isHidden());
    QCOMPARE(swapped, 1);
    QCOMPARE(m_window->windowOpacity(), 0.0);
}

void MainWindowRebuildTest::secondSwapDoesNotLoseTheFirst()
{
    constructAndShow();
    QStringList swapped;
    m_window->runBlindSwap([&swapped] { swapped.append("first"); });
    m_window->setWindowOpacity(0.5);
    m_window->runBlindSwap([&swapped] { swapped.append("second"); });
    // The first dip has been put right.
    QCOMPARE(m_window->windowOpacity(), 1.0);
    QTRY_VERIFY(!isDipping());
    const QStringList expected{"first", "second"};
    QCOMPARE(swapped, expected);
    QCOMPARE(m_window->windowOpacity(), 1.0);
}

void MainWindowRebuildTest::swapFromWithinASwap()
{
    constructAndShow();
    QStringList swapped;
    m_window->runBlindSwap([this, &swapped] {
        swapped.append("outer");
        m_window->runBlindSwap([&swapped] { swapped.append("inner"); });
    });
    QTRY_COMPARE(swapped.size(), 2);
    QTRY_VERIFY(!isDipping());
    const QStringList expected{"outer", "inner"};
    QCOMPARE(swapped, expected);
    QCOMPARE(m_window->windowOpacity(), 1.0);
}

void MainWindowRebuildTest::destroyedInMidSwap_data()
{
    QTest::addColumn<bool>("isSwapped");
    QTest::newRow("before the swap") << false;
    QTest::newRow("after the swap") << true;
}

void MainWindowRebuildTest::destroyedInMidSwap()
{
    QFETCH(bool, isSwapped);
    constructAndShow();
    int swapped = 0;
    m_window->runBlindSwap([this, &swapped, isSwapped] {
        ++swapped;
        if (isSwapped)
            QTimer::singleShot(0, this, [this] { m_window.reset(); });
    });
    if (!isSwapped)
        m_window.reset();
    QTRY_VERIFY(!m_window);
    QCOMPARE(swapped, isSwapped ? 1 : 0);
}

void MainWindowRebuildTest::goToPageOutOfBounds_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("present") << 0;
    QTest::newRow("negative") << -1;
    QTest::newRow("behind the last") << 2;
    QTest::newRow("far") << 1000000;
}

void MainWindowRebuildTest::goToPageOutOfBounds()
{
    QFETCH(int, index);
    constructAndShow();
    while (stack()->count() < 2)
        stack()->addWidget(new QWidget);
    m_window->goToPage(index);
    QVERIFY(!isDipping());
    QCOMPARE(stack()->currentIndex(), 0);
}

void MainWindowRebuildTest::goToPage()
{
    constructAndShow();
    while (stack()->count() < 2)
        stack()->addWidget(new QWidget);
    QVector<qreal> opacities;
    connect(stack(), &QStackedWidget::currentChanged, this,
            [&] { opacities.append(m_window->windowOpacity()); });
    m_window->goToPage(1);
    QCOMPARE(m_window->geometry(), QRect(292, 168, 617, 616));
    QTRY_VERIFY(!isDipping());
    QCOMPARE(stack()->currentIndex(), 1);
    QCOMPARE(m_window->geometry(), QRect(190, 186, 820, 580));
    m_window->goToPage(0);
    QTRY_VERIFY(!isDipping());
    QCOMPARE(stack()->currentIndex(), 0);
    QCOMPARE(m_window->geometry(), QRect(292, 168, 617, 616));
    // Size and place have jumped at the darkest moments.
    const QVector<qreal> dark{0.0, 0.0};
    QCOMPARE(opacities, dark);
}

void MainWindowRebuildTest::rebuildBehindADip()
{
    constructAndShow();
    const QPointer<QFrame> old = background();
    Theme::saveSeedColor("#a03050");
    m_window->rebuildUIPreservingFocus();
    QVERIFY(isDipping());
    QVERIFY(old);
    QTRY_VERIFY(!isDipping());
    QVERIFY(!old);
    QCOMPARE(m_window->findChildren<QFrame*>("bgContainer").size(), 1);
    QCOMPARE(m_window->layout()->count(), 1);
    QVERIFY(background()->styleSheet().contains(Theme::shellBg()));
    QCOMPARE(m_window->windowOpacity(), 1.0);
    QVERIFY(m_window->isVisible());
}

void MainWindowRebuildTest::rebuildWhenHidden()
{
    construct();
    const QPointer<QFrame> old = background();
    Theme::saveForceTheme(2);
    m_window->rebuildUIPreservingFocus();
    QVERIFY(old);
    QTRY_VERIFY(!old);
    QVERIFY(background()->styleSheet().contains(Theme::shellBg()));
    QVERIFY(m_window->isHidden());
    QVERIFY(!isDipping());
}

void MainWindowRebuildTest::rebuildWhileFading()
{
    constructAndShow();
    const QPointer<QFrame> old = background();
    m_window->fadeOutAndHide();
    m_window->rebuildUIPreservingFocus();
    QVERIFY(old);
    QTRY_VERIFY(!old);
    QTRY_VERIFY(m_window->isHidden());
    QVERIFY(background());
    QVERIFY(!isDipping());
}

void MainWindowRebuildTest::rebuildTwice()
{
    constructAndShow();
    const QPointer<QFrame> old = background();
    m_window->rebuildUIPreservingFocus();
    Theme::saveSeedColor("#a03050");
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!isDipping());
    QVERIFY(!old);
    QCOMPARE(m_window->findChildren<QFrame*>("bgContainer").size(), 1);
    QVERIFY(background()->styleSheet().contains(Theme::shellBg()));
    QCOMPARE(m_window->windowOpacity(), 1.0);
}

void MainWindowRebuildTest::rebuildChangesTheLanguage()
{
    construct();
    QCOMPARE(trayAction(0)->text(), "Show");
    QCOMPARE(trayAction(1)->text(), "Exit");
    Tr::setLanguage(Lang::Ja);
    m_window->rebuildUIPreservingFocus();
    QTRY_COMPARE(trayAction(0)->text(), QStringLiteral("表示"));
    QCOMPARE(trayAction(1)->text(), QStringLiteral("終了"));
    QCOMPARE(m_window->findChild<QSystemTrayIcon*>()->contextMenu()->actions().size(), 2);
}

void MainWindowRebuildTest::rebuildChoosesAValidCategory_data()
{
    const QStringList all{"Alpha", "Beta", "Gamma"};
    QTest::addColumn<QStringList>("categories");
    QTest::addColumn<QString>("standard");
    QTest::addColumn<QString>("current");
    QTest::addColumn<QString>("chosen");
    QTest::newRow("still there") << all << "Beta"
                                 << "Gamma"
                                 << "Gamma";
    QTest::newRow("gone, to the default") << all << "Beta"
                                          << "Gone"
                                          << "Beta";
    QTest::newRow("none yet") << all << "Beta"
                              << ""
                              << "Beta";
    QTest::newRow("other case") << all << "Beta"
                                << "gamma"
                                << "Beta";
    QTest::newRow("default gone too") << QStringList{"Gamma", "Alpha"} << "Beta"
                                      << "Gone"
                                      << "Gamma";
    QTest::newRow("none left") << QStringList() << "Beta"
                               << "Gone"
                               << "";
}

void MainWindowRebuildTest::rebuildChoosesAValidCategory()
{
    QFETCH(QStringList, categories);
    QFETCH(QString, standard);
    QFETCH(QString, current);
    construct();
    // No operation of the model leaves a default behind that isn't there; a document may.
    auto& document = const_cast<LauncherData&>(m_window->model()->data());
    document.categories = categories;
    document.defaultCategory = standard;
    m_window->model()->setCurrentCategory(current);
    rebuildAnd([] {});
    QTEST(m_window->model()->currentCategory(), "chosen");
}

void MainWindowRebuildTest::rebuildGivesTheFocusBack_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<bool>("isGivenBack");
    QTest::newRow("same name") << "nameEdit"
                               << "nameEdit" << true;
    QTest::newRow("other name") << "nameEdit"
                                << "valueEdit" << false;
    QTest::newRow("without a name") << ""
                                    << "" << false;
}

void MainWindowRebuildTest::rebuildGivesTheFocusBack()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    constructAndShow();
    const auto addEdit = [this](const QString& name) {
        auto* edit = new QLineEdit;
        edit->setObjectName(name);
        stack()->currentWidget()->layout()->addWidget(edit);
        edit->show();
        return edit;
    };
    addEdit(before)->setFocus();
    QPointer<QLineEdit> built;
    // The texts of the tray change when the tree is built and before the focus is given.
    connect(trayAction(0), &QAction::changed, this, [&] { built = addEdit(after); });
    Tr::setLanguage(Lang::Ja);
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!isDipping());
    QVERIFY(built);
    QFETCH(bool, isGivenBack);
    // Where there is nothing to give it back to, the search field takes it.
    const QWidget* expected =
        isGivenBack ? built.data() : m_window->findChild<QLineEdit*>("searchInput");
    QCOMPARE(QApplication::focusWidget(), expected);
}

/// Rebuilds the tree and does something in the middle of it.
void MainWindowRebuildTest::rebuildAnd(const std::function<void()>& inBetween)
{
    const QPointer<QFrame> old = background();
    const auto connection =
        connect(m_window->model(), &LauncherModel::currentCategoryChanged, this, inBetween);
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!old);
    disconnect(connection);
}

void MainWindowRebuildTest::rebuildDuringARebuildComesAfterIt()
{
    constructAndShow();
    m_window->model()->setCurrentCategory("Gone"); // so that the rebuild chooses another
    QPointer<QFrame> inner;
    bool isLeftAlone = false;
    rebuildAnd([&] {
        inner = background();
        m_window->rebuildUIPreservingFocus();
        isLeftAlone = inner && inner == background();
    });
    QVERIFY(isLeftAlone);
    QTRY_VERIFY(!inner); // replaced once more
    QTRY_VERIFY(!isDipping());
    QCOMPARE(m_window->findChildren<QFrame*>("bgContainer").size(), 1);
    QCOMPARE(m_window->windowOpacity(), 1.0);
}

void MainWindowRebuildTest::pagesSwapAtOnceDuringARebuild()
{
    constructAndShow();
    m_window->model()->setCurrentCategory("Gone");
    int page = -1;
    rebuildAnd([&] {
        stack()->addWidget(new QWidget);
        m_window->goToPage(1);
        page = stack()->currentIndex();
    });
    QCOMPARE(page, 1);
}

void MainWindowRebuildTest::keysPassDuringARebuild()
{
    constructAndShow();
    m_window->model()->setCurrentCategory("Gone");
    bool isTaken = true;
    rebuildAnd([&] { isTaken = isOverrideConsumed(m_window.get(), Qt::Key_Tab); });
    QVERIFY(!isTaken);
    QVERIFY(isOverrideConsumed(m_window.get(), Qt::Key_Tab));
}

void MainWindowRebuildTest::rebuildLeavesContentVisible()
{
    // By the time the texts of the tray follow, and not one turn of the event loop later.
    constructAndShow();
    bool isVisible = false;
    connect(trayAction(0), &QAction::changed, this,
            [this, &isVisible] { isVisible = stack()->currentWidget()->isVisible(); });
    Tr::setLanguage(Lang::Ja);
    m_window->rebuildUIPreservingFocus();
    QTRY_COMPARE(trayAction(0)->text(), QStringLiteral("表示"));
    QVERIFY(isVisible);
}

void MainWindowRebuildTest::fadingWindowLeavesTheActivation()
{
    constructAndShow();
    const QPointer<QFrame> old = background();
    m_window->fadeOutAndHide();
    runningFade()->pause();
    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_VERIFY(other.isActiveWindow());
    EventCounter changes(&other, QEvent::ActivationChange);
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!old);
    QCoreApplication::processEvents();
    QCOMPARE(changes.count, 0);
    QVERIFY(other.isActiveWindow());
}

void MainWindowRebuildTest::rebuildTakesTheActivationOfAShownWindow()
{
    constructAndShow();
    const QPointer<QFrame> old = background();
    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_VERIFY(other.isActiveWindow());
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!old);
    QTRY_VERIFY(m_window->isActiveWindow());
}

void MainWindowRebuildTest::oldTreeIsOutOfReachWhileItGoes()
{
    constructAndShow();
    const QPointer<QFrame> old = background();
    QWidget* page = stack()->currentWidget();
    stack()->addWidget(new QWidget);
    // A page that goes may still call the window.
    int calls = 0;
    connect(page, &QObject::destroyed, m_window.get(), [this, &calls] {
        ++calls;
        m_window->goToPage(1);
    });
    m_window->rebuildUIPreservingFocus();
    QTRY_VERIFY(!old);
    QCOMPARE(calls, 1);
    QCOMPARE(stack()->currentIndex(), 0);
    QCOMPARE(m_window->size(), QSize(617, 616));
}

void MainWindowRebuildTest::treeGoesBeforeTheModel()
{
    construct();
    bool hadModel = false;
    connect(background(), &QObject::destroyed, this,
            [&hadModel, model = QPointer(m_window->model())] { hadModel = model; });
    m_window.reset();
    QVERIFY(hadModel);
}

void MainWindowRebuildTest::tabIsTakenFromTheFocusChain_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("isConsumed");
    QTest::newRow("tab") << int(Qt::Key_Tab) << true;
    QTest::newRow("return") << int(Qt::Key_Return) << false;
    QTest::newRow("letter") << int(Qt::Key_A) << false;
}

void MainWindowRebuildTest::tabIsTakenFromTheFocusChain()
{
    QFETCH(int, key);
    QFETCH(bool, isConsumed);
    constructAndShow();
    for (QWidget* widget : {static_cast<QWidget*>(m_window.get()),
                            static_cast<QWidget*>(background()), stack()->currentWidget()})
        QCOMPARE(isOverrideConsumed(widget, static_cast<Qt::Key>(key)), isConsumed);
}

void MainWindowRebuildTest::otherWindowsKeepTheirTab()
{
    constructAndShow();
    QWidget other;
    QVERIFY(!isOverrideConsumed(&other, Qt::Key_Tab));
    QDialog dialog(m_window.get());
    QVERIFY(!isOverrideConsumed(&dialog, Qt::Key_Tab));
}

QTEST_MAIN(MainWindowRebuildTest)
#include "tst_mainwindowrebuild.moc"
