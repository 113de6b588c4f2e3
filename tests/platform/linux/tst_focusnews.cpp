// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FocusNews.h"
#include "TestHome.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QTest>

#include <xcb/xcb.h>

/// Which news of the focus are kept from Qt.
class FocusNewsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase() { FocusNews::watch(); }
    void keptBack_data();
    void keptBack();
};

void FocusNewsTest::keptBack_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<int>("event");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("isKeptBack");
    const QByteArray server("xcb_generic_event_t");
    QTest::newRow("lost to a grab") << server << XCB_FOCUS_OUT << int(XCB_NOTIFY_MODE_GRAB) << true;
    QTest::newRow("lost for good")
        << server << XCB_FOCUS_OUT << int(XCB_NOTIFY_MODE_NORMAL) << false;
    QTest::newRow("lost for good during a grab")
        << server << XCB_FOCUS_OUT << int(XCB_NOTIFY_MODE_WHILE_GRABBED) << false;
    QTest::newRow("lost as a grab ended")
        << server << XCB_FOCUS_OUT << int(XCB_NOTIFY_MODE_UNGRAB) << false;
    QTest::newRow("won by a grab") << server << XCB_FOCUS_IN << int(XCB_NOTIFY_MODE_GRAB) << false;
    QTest::newRow("won back from a grab")
        << server << XCB_FOCUS_IN << int(XCB_NOTIFY_MODE_UNGRAB) << false;
    QTest::newRow("the pointer went to a grab")
        << server << XCB_LEAVE_NOTIFY << int(XCB_NOTIFY_MODE_GRAB) << false;
    QTest::newRow("not the server's")
        << QByteArray("another_event_t") << XCB_FOCUS_OUT << int(XCB_NOTIFY_MODE_GRAB) << false;
}

void FocusNewsTest::keptBack()
{
    QFETCH(QByteArray, kind);
    QFETCH(int, event);
    QFETCH(int, mode);
    xcb_generic_event_t buffer = {};
    auto* news = reinterpret_cast<xcb_focus_out_event_t*>(&buffer);
    news->response_type = uint8_t(event);
    news->mode = uint8_t(mode);
    qintptr result = 0;
    QTEST(QCoreApplication::eventDispatcher()->filterNativeEvent(kind, &buffer, &result),
          "isKeptBack");
}

QTEST_GUILESS_MAIN(FocusNewsTest)
#include "tst_focusnews.moc"
