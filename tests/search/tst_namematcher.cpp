// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "NameMatcher.h"
#include "TestHome.h"

#include <QRandomGenerator>
#include <QTest>

#include <vector>

using Match = NameMatcher::Match;

class NameMatcherTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void matches_data();
    void matches();
    void everyPlaceInEveryLength_data();
    void everyPlaceInEveryLength();
    void agreesWithAPlainSearch();
};

namespace
{

constexpr int kRandomNames = 30000;
constexpr quint32 kSeed = 20;

/// Of few letters, so that much repeats, and with neighbours of these that differ in one bit.
QByteArray randomText(QRandomGenerator& random, int maxLength)
{
    static const QByteArray alphabet = "aab`.\xe1\xc3\x00";
    QByteArray text;
    for (int left = random.bounded(maxLength + 1); left > 0; --left)
        text.append(alphabet.at(random.bounded(static_cast<int>(alphabet.size()))));
    return text;
}

/// What is to be told of a text that begins at that index; -1 for nowhere.
Match matchAt(qsizetype index)
{
    return {index >= 0, index == 0};
}

/// A name as the matcher wants it, in memory of its own and without slack, so that a read beyond it
/// can be noticed. What is readable behind it holds the text once more.
class PaddedName
{
public:
    PaddedName(const QByteArray& name, const QByteArray& wanted)
        : m_size(name.size()), m_memory(name.begin(), name.end())
    {
        while (static_cast<qsizetype>(m_memory.size()) < m_size + NameMatcher::Padding)
            m_memory.insert(m_memory.end(), wanted.begin(), wanted.end());
        m_memory.resize(static_cast<std::size_t>(m_size + NameMatcher::Padding));
        m_memory.shrink_to_fit();
    }

    Match find(const NameMatcher& matcher) const
    {
        return matcher.matchIn(m_memory.data(), m_size);
    }
    Match findByBytes(const NameMatcher& matcher) const
    {
        return matcher.matchByBytes(m_memory.data(), m_size);
    }

private:
    qsizetype m_size;
    std::vector<char> m_memory;
};

} // namespace

void NameMatcherTest::matches_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("wanted");
    QTest::addColumn<int>("index");
    const auto row = [](const char* title, const QByteArray& name, const QByteArray& wanted,
                        int index) { QTest::newRow(title) << name << wanted << index; };
    row("equal", "abc", "abc", 0);
    row("at the beginning", "abcdef", "abc", 0);
    row("inside", "xxabcxx", "abc", 2);
    row("at the end", "xxxxxxxxxabc", "abc", 9);
    row("nowhere", "xxxxxxxxxxxxxab", "abc", -1);
    row("half behind the end", "xxxab", "aba", -1);
    row("longer than the name", "ab", "abc", -1);
    row("longer than any memory behind the name", "ab", QByteArray(10'000'000, 'a'), -1);
    row("longer than an empty name", "", QByteArray(10'000'000, 'a'), -1);
    row("the first of two", "xabxab", "ab", 1);
    row("overlapping itself", "aaaaaaabaaaaaab", "aab", 5);
    row("an empty name", "", "a", -1);
    row("case counts", "ABC", "a", -1);
    row("a long text", QByteArray(40, 'a') + "bcdefghijk", "aaaabcdefghijk", 36);
    row("a long text that goes astray", QByteArray(40, 'a') + "bcdefghijx", "aaaabcdefghijk", -1);
    row("ends that are right around a wrong middle", "axc abc", "abc", 4);
    row("in the second block", QByteArray(32, 'x') + "ab", "ab", 32);
    row("over the end of a block", QByteArray(31, 'x') + "ab", "ab", 31);
    row("longer than a block", "x" + QByteArray(50, 'a'), QByteArray(50, 'a'), 1);
    row("beyond ASCII",
        "\xc3\xbc"
        "bergr\xc3\xb6\xc3\x9f"
        "en",
        "\xc3\xb6\xc3\x9f", 7);
}

void NameMatcherTest::matches()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, wanted);
    const PaddedName padded(name, wanted);
    QFETCH(int, index);
    QCOMPARE(padded.find(NameMatcher(wanted)), matchAt(index));
    QCOMPARE(padded.findByBytes(NameMatcher(wanted)), matchAt(index));
}

void NameMatcherTest::everyPlaceInEveryLength_data()
{
    QTest::addColumn<QByteArray>("wanted");
    for (const char* wanted : {"q", "qr", "qrs", "qrst", "qrstu", "qrstuvwxyz"})
        QTest::newRow(wanted) << QByteArray(wanted);
}

void NameMatcherTest::everyPlaceInEveryLength()
{
    QFETCH(QByteArray, wanted);
    const NameMatcher matcher(wanted);
    for (qsizetype length = wanted.size(); length < 80; ++length) {
        for (qsizetype place = 0; place + wanted.size() <= length; ++place) {
            QByteArray name(length, 'x');
            name.replace(place, wanted.size(), wanted);
            QCOMPARE(PaddedName(name, wanted).find(matcher), matchAt(place));
            QCOMPARE(PaddedName(name, wanted).findByBytes(matcher), matchAt(place));
            name[place + wanted.size() - 1] = '-';
            QCOMPARE(PaddedName(name, wanted).find(matcher), matchAt(-1));
            QCOMPARE(PaddedName(name, wanted).findByBytes(matcher), matchAt(-1));
        }
    }
}

void NameMatcherTest::agreesWithAPlainSearch()
{
    QRandomGenerator random(kSeed);
    int hits = 0;
    for (int round = 0; round < kRandomNames; ++round) {
        const QByteArray wanted = randomText(random, 5) + 'a';
        const QByteArray name = randomText(random, 70);
        const qsizetype expected = name.indexOf(wanted);
        const PaddedName padded(name, wanted);
        QCOMPARE(padded.find(NameMatcher(wanted)), matchAt(expected));
        QCOMPARE(padded.findByBytes(NameMatcher(wanted)), matchAt(expected));
        hits += expected >= 0 ? 1 : 0;
    }
    QVERIFY(hits > kRandomNames / 10 && hits < kRandomNames * 9 / 10);
}

QTEST_MAIN(NameMatcherTest)
#include "tst_namematcher.moc"
