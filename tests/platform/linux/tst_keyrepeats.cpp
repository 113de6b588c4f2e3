// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "KeyRepeats.h"
#include "TestHome.h"

#include <QKeyEvent>
#include <QTest>
#include <QWidget>
#include <QWindow>

namespace
{

/// Notes the last press.
class Field : public QWidget
{
public:
    int presses = 0;
    bool isRepeat = false;
    QString text;

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        ++presses;
        isRepeat = event->isAutoRepeat();
        text = event->text();
        event->accept();
    }
};

} // namespace

/// Which presses are repeats: those of the time of the release before them.
class KeyRepeatsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase() { KeyRepeats::watch(); }
    void pressAfterRelease_data();
    void pressAfterRelease();
};

void KeyRepeatsTest::pressAfterRelease_data()
{
    QTest::addColumn<int>("code");      // that of the release is 36
    QTest::addColumn<int>("time");      // that of the release is 5000
    QTest::addColumn<bool>("isMarked"); // by Qt
    QTest::addColumn<bool>("isRepeat");
    QTest::newRow("same key, same time") << 36 << 5000 << false << true;
    QTest::newRow("same key, later") << 36 << 5001 << false << false;
    QTest::newRow("another key, same time") << 37 << 5000 << false << false;
    QTest::newRow("known already") << 36 << 5000 << true << true;
    QTest::newRow("without a time") << 36 << 0 << false << false;
}

void KeyRepeatsTest::pressAfterRelease()
{
    QFETCH(int, code);
    QFETCH(int, time);
    QFETCH(bool, isMarked);
    Field field;
    field.show();
    QVERIFY(QTest::qWaitForWindowExposed(&field));
    const auto send = [&field](QEvent::Type type, int nativeCode, int at, bool isRepeat) {
        QKeyEvent event(type, Qt::Key_Return, Qt::NoModifier, quint32(nativeCode), 0, 0,
                        QStringLiteral("\r"), isRepeat);
        event.setTimestamp(quint64(at));
        QCoreApplication::sendEvent(field.windowHandle(), &event);
        return event.isAccepted();
    };
    send(QEvent::KeyRelease, 36, time == 0 ? 0 : 5000, false);
    QVERIFY(send(QEvent::KeyPress, code, time, isMarked));
    QCOMPARE(field.presses, 1);
    QTEST(field.isRepeat, "isRepeat");
    QCOMPARE(field.text, QStringLiteral("\r"));
}

QTEST_MAIN(KeyRepeatsTest)
#include "tst_keyrepeats.moc"
