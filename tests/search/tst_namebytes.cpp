// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "NameBytes.h"
#include "TestHome.h"

#include <QRandomGenerator>
#include <QTest>

class NameBytesTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void names_data();
    void names();
    void anythingComesBack();
};

void NameBytesTest::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QString() << QByteArray();
    QTest::newRow("ASCII") << "Read Me.txt" << QByteArray("Read Me.txt");
    QTest::newRow("a zero") << QString(QChar(u'\0')) << QByteArray(1, '\0');
    QTest::newRow("two bytes") << QString(QChar(0xe9)) << QByteArray("\xc3\xa9");
    QTest::newRow("three bytes") << QString(QChar(0x65e5)) << QByteArray("\xe6\x97\xa5");
    QTest::newRow("next to the halves") << QString(QChar(0xd7ff)) << QByteArray("\xed\x9f\xbf");
    QTest::newRow("a pair") << QString::fromUtf16(u"\U0001F600") << QByteArray("\xf0\x9f\x98\x80");
    const QChar mark(QChar::ByteOrderMark);
    QTest::newRow("a byte order mark") << mark + QString("a")
                                       << QByteArray("\xef\xbb\xbf"
                                                     "a");
    QTest::newRow("two of them") << QString(2, mark) << QByteArray("\xef\xbb\xbf\xef\xbb\xbf");
    QTest::newRow("one behind half a pair")
        << QString(QChar(0xd83d)) + mark << QByteArray("\xed\xa0\xbd\xef\xbb\xbf");
    QTest::newRow("a first half") << QString(QChar(0xd83d)) << QByteArray("\xed\xa0\xbd");
    QTest::newRow("a second half") << QString(QChar(0xde00)) << QByteArray("\xed\xb8\x80");
    QTest::newRow("the last half") << QString(QChar(0xdfff)) << QByteArray("\xed\xbf\xbf");
    QTest::newRow("halves in the wrong order")
        << QString(QChar(0xde00)) + QChar(0xd83d) << QByteArray("\xed\xb8\x80\xed\xa0\xbd");
    QTest::newRow("a half before a pair") << QChar(0xd83d) + QString::fromUtf16(u"\U0001F600")
                                          << QByteArray("\xed\xa0\xbd\xf0\x9f\x98\x80");
}

void NameBytesTest::names()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QCOMPARE(NameBytes::fromText(name), bytes);
    QCOMPARE(NameBytes::toText(bytes.constData(), bytes.size()), name);
}

void NameBytesTest::anythingComesBack()
{
    static const QString alphabet = QString::fromUtf16(u"aZ.\u00e9\u65e5\ud7ff\ue000\uffff\ufeff") +
                                    QChar(0xd800) + QChar(0xdbff) + QChar(0xdc00) + QChar(0xdfff);
    QRandomGenerator random(7);
    for (int round = 0; round < 20000; ++round) {
        QString name;
        for (int left = random.bounded(12); left > 0; --left)
            name.append(alphabet.at(random.bounded(static_cast<int>(alphabet.size()))));
        const QByteArray bytes = NameBytes::fromText(name);
        QCOMPARE(NameBytes::toText(bytes.constData(), bytes.size()), name);
    }
}

QTEST_MAIN(NameBytesTest)
#include "tst_namebytes.moc"
