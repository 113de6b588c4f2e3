// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SoftBreaks.h"

#include <QTest>

class SoftBreaksTest : public QObject
{
    Q_OBJECT

private slots:
    void withSoftBreaks_data();
    void withSoftBreaks();
};

void SoftBreaksTest::withSoftBreaks_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("broken");
    const QString face = QStringLiteral("\U0001F600");
    const QString mark = QStringLiteral("\u0301");
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("as long as may be") << "abcd"
                                       << "abcd";
    QTest::newRow("longer by one") << "abcde" << QStringLiteral("abcd\u200be");
    QTest::newRow("much longer") << "abcdefghij" << QStringLiteral("abcd\u200befgh\u200bij");
    QTest::newRow("words") << "abc abc abc"
                           << "abc abc abc";
    QTest::newRow("a long word among short ones")
        << "ab cdefgh ij" << QStringLiteral("ab cdef\u200bgh ij");
    QTest::newRow("faces, which are places to break") << face.repeated(5) << face.repeated(5);
    QTest::newRow("never inside a character")
        << u'e' + mark.repeated(2) + QStringLiteral("\U0001D400").repeated(2)
        << u'e' + mark.repeated(2) + QStringLiteral("\U0001D400\u200b\U0001D400");
}

void SoftBreaksTest::withSoftBreaks()
{
    QFETCH(QString, text);
    QTEST(::withSoftBreaks(text, 4), "broken");
}

QTEST_APPLESS_MAIN(SoftBreaksTest)
#include "tst_softbreaks.moc"
