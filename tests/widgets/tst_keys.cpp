// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Keys.h"

#include <QKeySequence>
#include <QTest>

class KeysTest : public QObject
{
    Q_OBJECT

private slots:
    void meaning_data();
    void meaning();
    void withoutShortcut_data();
    void withoutShortcut();
};

void KeysTest::meaning_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("isEnter");
    QTest::addColumn<bool>("isBack");
    QTest::newRow("Return") << int(Qt::Key_Return) << true << false;
    QTest::newRow("Enter") << int(Qt::Key_Enter) << true << false;
    QTest::newRow("Esc") << int(Qt::Key_Escape) << false << true;
    QTest::newRow("Backspace") << int(Qt::Key_Backspace) << false << true;
    QTest::newRow("Space") << int(Qt::Key_Space) << false << false;
    QTest::newRow("Delete") << int(Qt::Key_Delete) << false << false;
    QTest::newRow("the browser's Back") << int(Qt::Key_Back) << false << false;
    QTest::newRow("none") << 0 << false << false;
}

void KeysTest::meaning()
{
    QFETCH(int, key);
    QTEST(Keys::isEnter(key), "isEnter");
    QTEST(Keys::isBack(key), "isBack");
}

void KeysTest::withoutShortcut_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("label");
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("plain") << "Work"
                           << "Work";
    QTest::newRow("one") << "R&D"
                         << "R&&D";
    QTest::newRow("two together") << "a&&b"
                                  << "a&&&&b";
    QTest::newRow("at the ends") << "&a&"
                                 << "&&a&&";
}

void KeysTest::withoutShortcut()
{
    QFETCH(QString, text);
    QTEST(Keys::withoutShortcut(text), "label");
    QVERIFY(QKeySequence::mnemonic(Keys::withoutShortcut(text)).isEmpty());
}

QTEST_GUILESS_MAIN(KeysTest)
#include "tst_keys.moc"
