// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "CaseFold.h"

#include <QTest>

class CaseFoldTest : public QObject
{
    Q_OBJECT

private slots:
    void keysAreEqualAsComparisonsAre_data();
    void keysAreEqualAsComparisonsAre();
    void everyCharacterOfTheFirstPlane();
    void partsHavePartsOfTheKey();
};

void CaseFoldTest::keysAreEqualAsComparisonsAre_data()
{
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");
    const auto row = [](const char* name, const QString& left, const QString& right) {
        QTest::newRow(name) << left << right;
    };
    row("nothing", "", "");
    row("nothing and something", "", "a");
    row("same", "Docs", "Docs");
    row("of two cases", "Docs", "dOCS");
    row("beside the letters", "@[`{", "`{@[");
    row("beyond ASCII", QStringLiteral("Ärger"), QStringLiteral("äRGER"));
    row("sharp s and what it could be", QStringLiteral("ß"), QStringLiteral("ss"));
    row("sharp s of two cases", QStringLiteral("ß"), QStringLiteral("ẞ"));
    row("long s", QStringLiteral("ſ"), QStringLiteral("S"));
    row("i with a dot", QStringLiteral("İ"), QStringLiteral("i"));
    row("i without", QStringLiteral("ı"), QStringLiteral("I"));
    row("sigma at an end", QStringLiteral("ς"), QStringLiteral("Σ"));
    row("pairs", QStringLiteral("\U00010400"), QStringLiteral("\U00010428"));
    row("other pairs", QStringLiteral("\U00010400"), QStringLiteral("\U00010401"));
    row("half a pair", QString(QChar(0xd801)), QString(QChar(0xd801)));
    row("the halves in a wrong order", QString(QChar(0xdc00)) + QChar(0xd801),
        QString(QChar(0xdc28)) + QChar(0xd801));
}

void CaseFoldTest::keysAreEqualAsComparisonsAre()
{
    QFETCH(QString, left);
    QFETCH(QString, right);
    QCOMPARE(CaseFold::keyOf(left) == CaseFold::keyOf(right),
             left.compare(right, Qt::CaseInsensitive) == 0);
}

void CaseFoldTest::everyCharacterOfTheFirstPlane()
{
    for (char16_t unit = 0; unit < 0xFFFF; ++unit) {
        const QString character(QChar{unit});
        for (const QString& other : {character.toLower(), character.toUpper()}) {
            const bool isSame = character.compare(other, Qt::CaseInsensitive) == 0;
            if ((CaseFold::keyOf(character) == CaseFold::keyOf(other)) != isSame)
                QFAIL(qPrintable(QString::number(unit, 16)));
        }
    }
}

void CaseFoldTest::partsHavePartsOfTheKey()
{
    const QString text = QStringLiteral("/Home/Ä\U00010400ß/x");
    const QString key = CaseFold::keyOf(text);
    QCOMPARE(key, QStringLiteral("/home/ä\U00010428ß/x"));
    for (const qsizetype end : {0, 1, 5, 6, 7, 9, 10, 12})
        QCOMPARE(CaseFold::keyOf(QStringView(text).first(end)), key.first(end));
    QVERIFY(CaseFold::keyOf(text.first(8)) == key.first(7) + QChar(0xd801)); // half a pair
}

QTEST_APPLESS_MAIN(CaseFoldTest)
#include "tst_casefold.moc"
