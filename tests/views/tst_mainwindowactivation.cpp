// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "EventCounter.h"
#include "FakeHotkeyBackend.h"
#include "MainWindow.h"
#include "TestHome.h"

#include <QApplication>
#include <QFrame>
#include <QPointer>
#include <QTest>

/// On a desktop that gives the activation to whoever asks for it, be it on the screen or not.
class MainWindowActivationTest : public QObject
{
    Q_OBJECT

public:
    static void initMain();

private slots:
    void initTestCase();

    void rebuildOfAHiddenWindowLeavesTheActivation_data();
    void rebuildOfAHiddenWindowLeavesTheActivation();
};

void MainWindowActivationTest::initMain()
{
    TestHome::install();
    qputenv("QT_QPA_PLATFORM", "minimal");
}

void MainWindowActivationTest::initTestCase()
{
    QApplication::setQuitOnLastWindowClosed(false);
    FakeHotkeyBackend::install();
    TestHome::writeSettings();
    // This is such a desktop.
    QWidget hidden;
    hidden.winId();
    QWidget shown;
    shown.show();
    shown.activateWindow();
    QTRY_VERIFY(shown.isActiveWindow());
    hidden.activateWindow();
    QTRY_VERIFY(!shown.isActiveWindow());
}

void MainWindowActivationTest::rebuildOfAHiddenWindowLeavesTheActivation_data()
{
    QTest::addColumn<bool>("hasBeenShown");
    QTest::newRow("never shown") << false;
    QTest::newRow("hidden again") << true;
}

void MainWindowActivationTest::rebuildOfAHiddenWindowLeavesTheActivation()
{
    // As Spotlight asks for when colours are changed from there.
    QFETCH(bool, hasBeenShown);
    MainWindow window(nullptr);
    if (hasBeenShown) {
        window.show();
        window.fadeOutAndHide();
        QTRY_VERIFY(window.isHidden());
    }
    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_VERIFY(other.isActiveWindow());
    EventCounter changes(&other, QEvent::ActivationChange);
    const QPointer<QFrame> old = window.findChild<QFrame*>("bgContainer");
    QVERIFY(old);
    window.rebuildUIPreservingFocus();
    QTRY_VERIFY(!old);
    QCoreApplication::processEvents();
    QCOMPARE(changes.count, 0);
    QVERIFY(other.isActiveWindow());
}

QTEST_MAIN(MainWindowActivationTest)
#include "tst_mainwindowactivation.moc"
