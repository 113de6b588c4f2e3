// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "NameMatcher.h"
#include "TestHome.h"

#include <QRandomGenerator>
#include <QTest>

class NameMatcherTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void indexIn_data();
    void indexIn();
    void everyPlaceInEveryLength_data();
    void everyPlaceInEveryLength();
    void agreesWithQString();
    void pairsNeverHideAHit();
    void pairsTellMisses_data();
    void pairsTellMisses();
};

namespace
{

constexpr int kRandomNames = 30000;
constexpr quint32 kSeed = 20;

/// Of few letters, so that much repeats, and with neighbours of these that differ in one bit.
QString randomText(QRandomGenerator& random, int maxLength)
{
    static const QString alphabet = QString::fromUtf16(u"aab`.\u0061\u0161\u6161\u8061\U0001F600");
    QString text;
    for (int left = random.bounded(maxLength + 1); left > 0; --left)
        text.append(alphabet.at(random.bounded(static_cast<int>(alphabet.size()))));
    return text;
}

} // namespace

void NameMatcherTest::indexIn_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("index");
    QTest::newRow("equal") << "abc"
                           << "abc" << 0 << 0;
    QTest::newRow("at the beginning") << "abcdef"
                                      << "abc" << 0 << 0;
    QTest::newRow("inside") << "xxabcxx"
                            << "abc" << 0 << 2;
    QTest::newRow("at the end") << "xxxxxxxxxabc"
                                << "abc" << 0 << 9;
    QTest::newRow("nowhere") << "xxxxxxxxxxxxxab"
                             << "abc" << 0 << -1;
    QTest::newRow("longer than the name") << "ab"
                                          << "abc" << 0 << -1;
    QTest::newRow("the first of two") << "xabxab"
                                      << "ab" << 0 << 1;
    QTest::newRow("the second of two") << "xabxabxxxxxxx"
                                       << "ab" << 2 << 4;
    QTest::newRow("exactly where it is looked for") << "xabxab"
                                                    << "ab" << 4 << 4;
    QTest::newRow("behind the last") << "xabxabxxxxxxx"
                                     << "ab" << 5 << -1;
    QTest::newRow("from the end on") << "abc"
                                     << "a" << 3 << -1;
    QTest::newRow("overlapping itself") << "aaaaaaabaaaaaab"
                                        << "aab" << 0 << 5;
    QTest::newRow("an empty name") << ""
                                   << "a" << 0 << -1;
    QTest::newRow("case counts") << "ABC"
                                 << "a" << 0 << -1;
    QTest::newRow("a long text") << QString(40, 'a') + "bcdefghijk"
                                 << "aaaabcdefghijk" << 0 << 36;
    QTest::newRow("a long text that goes astray") << QString(40, 'a') + "bcdefghijx"
                                                  << "aaaabcdefghijk" << 0 << -1;
    QTest::newRow("beyond ASCII") << "übergrößen"
                                  << "öße" << 0 << 6;
    QTest::newRow("a code unit with the same low byte")
        << QString::fromUtf16(u"xxxx\u6161xxx") << "a" << 0 << -1;
}

void NameMatcherTest::indexIn()
{
    QFETCH(QString, name);
    QFETCH(QString, wanted);
    QFETCH(int, from);
    QTEST(static_cast<int>(NameMatcher(wanted).indexIn(name, from)), "index");
}

void NameMatcherTest::everyPlaceInEveryLength_data()
{
    QTest::addColumn<QString>("wanted");
    for (const char* wanted : {"q", "qr", "qrs", "qrst", "qrstu", "qrstuvwxyz"})
        QTest::newRow(wanted) << QString(wanted);
}

void NameMatcherTest::everyPlaceInEveryLength()
{
    QFETCH(QString, wanted);
    const NameMatcher matcher(wanted);
    for (qsizetype length = wanted.size(); length < 40; ++length) {
        for (qsizetype place = 0; place + wanted.size() <= length; ++place) {
            QString name(length, 'x');
            name.replace(place, wanted.size(), wanted);
            // Memory of its own and without slack, so that a read beyond it can be noticed.
            name.squeeze();
            QCOMPARE(matcher.indexIn(name, 0), place);
            QCOMPARE(matcher.indexIn(name, place), place);
            if (place + wanted.size() < length)
                QCOMPARE(matcher.indexIn(name, place + 1), -1);
            name[place + wanted.size() - 1] = '-';
            QCOMPARE(matcher.indexIn(name, 0), -1);
        }
    }
}

void NameMatcherTest::agreesWithQString()
{
    QRandomGenerator random(kSeed);
    int hits = 0;
    for (int round = 0; round < kRandomNames; ++round) {
        const QString wanted = randomText(random, 5) + 'a';
        const QString name = randomText(random, 30);
        const qsizetype from = random.bounded(static_cast<int>(name.size()) + 1);
        const qsizetype expected = name.indexOf(wanted, from);
        QCOMPARE(NameMatcher(wanted).indexIn(name, from), expected);
        hits += expected >= 0 ? 1 : 0;
    }
    QVERIFY(hits > kRandomNames / 10 && hits < kRandomNames * 9 / 10);
}

void NameMatcherTest::pairsNeverHideAHit()
{
    QRandomGenerator random(kSeed);
    for (int round = 0; round < kRandomNames; ++round) {
        const QString wanted = randomText(random, 2) + 'a';
        const QString name = randomText(random, 20);
        const bool canBe = NameMatcher(wanted).canBeIn(NameMatcher::pairsOf(name));
        QVERIFY(canBe || !name.contains(wanted));
        QVERIFY(NameMatcher(wanted).canBeIn(NameMatcher::AllPairs));
    }
}

void NameMatcherTest::pairsTellMisses_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<bool>("canBe");
    QTest::newRow("a letter that isn't there") << "invoice"
                                               << "ox" << false;
    QTest::newRow("letters in another order") << "invoice"
                                              << "ni" << false;
    QTest::newRow("letters apart") << "invoice"
                                   << "ie" << false;
    QTest::newRow("one pair of several") << "invoice"
                                         << "inx" << false;
    QTest::newRow("a single letter is no pair") << "invoice"
                                                << "x" << true;
    QTest::newRow("an empty name") << ""
                                   << "ab" << false;
}

void NameMatcherTest::pairsTellMisses()
{
    QFETCH(QString, name);
    QFETCH(QString, wanted);
    QTEST(NameMatcher(wanted).canBeIn(NameMatcher::pairsOf(name)), "canBe");
}

QTEST_MAIN(NameMatcherTest)
#include "tst_namematcher.moc"
