// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Localization.h"
#include "TestHome.h"
#include "WebQuery.h"

#include <QTest>
#include <QUrl>
#include <QUrlQuery>

using Suggestion = WebQuery::Suggestion;
using EngineMatch = WebQuery::EngineMatch;

namespace
{

constexpr int kMegabyte = 1024 * 1024;

const QString kVideoToken = QStringLiteral("glyph:e684");
const QString kSearchToken = QStringLiteral("glyph:ef7a");
const QString kVideos = QStringLiteral("https://www.youtube.com/results?search_query=");
const QString kSearch = QStringLiteral("https://www.google.com/search?q=");

Suggestion search(const QString& label, const QString& encoded)
{
    return {label + QStringLiteral(" — Google Search"), kSearchToken, kSearch + encoded, false};
}

Suggestion videos(const QString& label, const QString& encoded)
{
    return {label + QStringLiteral(" — YouTube"), kVideoToken, kVideos + encoded, true};
}

Suggestion open(const QString& address)
{
    return {QStringLiteral("Open ") + address, QString(), address, false};
}

/// What a server reads in the query of an address.
QString decoded(const QString& url, const QString& key)
{
    const QUrlQuery query(QUrl(url, QUrl::StrictMode));
    return query.queryItemValue(key, QUrl::FullyDecoded);
}

} // namespace

Q_DECLARE_METATYPE(WebQuery::Suggestion)

class WebQueryTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init() { Tr::currentLang = Lang::En; }

    void looksLikeLink_data();
    void looksLikeLink();
    void wantsDirectUrl_data();
    void wantsDirectUrl();
    void engineFor_data();
    void engineFor();
    void suggestionsFor_data();
    void suggestionsFor();
    void labelsFollowTheLanguage_data();
    void labelsFollowTheLanguage();
    void queriesSurviveTheAddress_data();
    void queriesSurviveTheAddress();
    void halfASurrogateGivesAnAddress();
    void hugeTexts_data();
    void hugeTexts();
    void asElementIsAnAddress_data();
    void asElementIsAnAddress();
};

void WebQueryTest::looksLikeLink_data()
{
    QTest::addColumn<bool>("isLink");
    QTest::addColumn<QString>("text");
    const auto row = [](bool isLink, const QString& text) {
        QTest::newRow(qPrintable(text)) << isLink << text;
    };
    QTest::newRow("empty") << false << QString();

    // Schemes, with anything behind them but white space
    for (const char* scheme : {"http://", "https://", "ftp://", "ftps://", "file://"}) {
        const QString text = QString::fromLatin1(scheme);
        row(true, text);
        row(true, text + "x");
        row(true, text.toUpper() + "x");
        row(false, text + "x y");
        row(false, text.chopped(1) + "x");
        row(false, "x" + text);
    }
    row(true, "hTTp://1.2.3.256");
    row(false, "mailto:someone@example.com"); // its colon cuts the host off
    row(false, "ssh://x");
    row(false, "://example");

    // White space anywhere
    row(false, "example.com ");
    row(false, " example.com");
    row(false, "exa mple.com");
    row(false, "example.com/a b");
    QTest::newRow("tab") << false << QStringLiteral("example.com\t");
    QTest::newRow("line feed") << false << QStringLiteral("exam\nple.com");
    QTest::newRow("no-break space") << false << QStringLiteral("exam\u00a0ple.com");
    QTest::newRow("ideographic space") << false << QStringLiteral("example.com\u3000");
    QTest::newRow("line separator") << false << QStringLiteral("http://x\u2028");
    QTest::newRow("zero-width space, which is none") << true << QStringLiteral("a\u200b.com");

    // Names
    row(true, "example.com");
    row(true, "EXAMPLE.COM");
    row(true, "a.io");
    row(false, "a.b");
    row(false, "example");
    row(false, "example.");
    row(false, "example.com.");
    row(false, ".com");
    row(true, "..com");
    row(true, "a..com");
    row(true, "-.co");
    row(true, "notes.txt"); // no list of known endings
    row(false, "archive.7z");
    row(false, "movie.mp4");
    row(false, "example.c-m");
    row(false, "example.co_");
    row(false, "xn--e1afmkfd.xn--p1ai"); // letters only
    row(true, QStringLiteral("пример.рф"));
    row(true, QStringLiteral("例え.テスト"));
    row(true, QStringLiteral("דוגמה.קום"));
    QTest::newRow("full-width dot") << false << QStringLiteral("example\uff0ecom");
    QTest::newRow("combining mark in the ending") << false << QStringLiteral("example.co\u0301");
    QTest::newRow("letters beyond the basic plane")
        << false << QStringLiteral("example.\U00010400\U00010401");
    QTest::newRow("half a surrogate in the ending")
        << false << (QStringLiteral("example.com") + QChar(0xD801));
    QTest::newRow("null in the name") << true << (QString(QChar(0)) + QStringLiteral(".com"));
    QTest::newRow("null in the ending") << false << (QStringLiteral("a.com") + QChar(0));

    // The end of the host
    row(true, "example.com/");
    row(true, "example.com/a/b?c#d");
    row(true, "example.com?q=1");
    row(true, "example.com#top");
    row(true, "example.com?http://x");
    row(false, "example/a.com");
    row(false, "example?a.com");
    row(false, "example#a.com");
    row(false, "/usr/share/a.txt");
    row(false, "?a.com");
    row(false, "#a.com");
    row(false, "C:\\folder\\file.txt");

    // Ports
    row(true, "example.com:80");
    row(true, "example.com:");
    row(true, "example.com:port");
    row(true, "example.com:80/a:b");
    row(true, "example.com/a:b.c");
    row(false, "a.com:80:90"); // only the last colon cuts
    row(false, "example:80");
    row(false, "x:example.com");
    row(false, ":80");
    row(true, ":example.com"); // a leading colon stays
    row(false, "::example.com");
    row(false, ":");
    row(false, "[::1]");
    row(false, "[::1]:80");

    // A user in front of the host
    row(true, "someone@example.com");
    row(true, "@example.com");
    row(true, "a@b@example.com");
    row(false, "someone:secret@example.com"); // cut at the colon
    row(false, "someone@localhost");

    // The machine itself
    row(true, "localhost");
    row(true, "LocalHost");
    row(true, "localhost:8080/x");
    row(true, "localhost/");
    row(true, "localhost?x");
    row(false, "localhost.");
    row(false, "localhosts");
    row(true, "my.localhost");

    // Four bytes
    row(true, "10.0.0.1");
    row(true, "0.0.0.0");
    row(true, "255.255.255.255");
    row(true, "192.168.1.1:8080/admin");
    row(true, "010.000.0.001");
    row(true, "10.0.0.+1"); // a sign makes it no less a number
    row(true, "10.0.0.-0");
    row(true, "+10.-0.+0.+255");
    row(false, "10.0.0.+256");
    row(false, "10.0.0.+-1");
    row(false, "10.0.0.1+");
    row(false, "10.0.0.+");
    row(false, "10.0.0.256");
    row(false, "256.0.0.1");
    row(false, "10.0.0.-1");
    row(false, "10.0.0");
    row(false, "10.0.0.0.1");
    row(false, "10.0..1");
    row(false, ".10.0.1");
    row(false, "10.0.0.");
    row(false, "10.0.0.1.");
    row(false, "10.0.0.0x1");
    row(false, "10.0.0.1e1");
    row(false, "10.0.0.99999999999999999999");
    row(false, "1.5");
    row(false, "3.14159");
    row(true, "1.2.3.de"); // no bytes, but a name
}

void WebQueryTest::looksLikeLink()
{
    QFETCH(QString, text);
    QTEST(WebQuery::looksLikeLink(text), "isLink");
}

void WebQueryTest::wantsDirectUrl_data()
{
    QTest::addColumn<bool>("wants");
    QTest::addColumn<QString>("text");
    const auto row = [](bool wants, const QString& text) {
        QTest::newRow(qPrintable('|' + text + '|')) << wants << text;
    };
    row(true, "example.com ");
    row(true, "  example.com ");
    row(true, "example.com    ");
    row(true, "http:// ");
    row(false, "example.com");
    row(false, " example.com");
    row(false, "example.c ");
    row(false, "two words.com ");
    row(false, " ");
    row(false, "");
    QTest::newRow("tab, then blank") << true << QStringLiteral("example.com\t ");
    QTest::newRow("blank, then tab") << false << QStringLiteral("example.com \t");
    QTest::newRow("line feed") << false << QStringLiteral("example.com\n");
    QTest::newRow("no-break space") << false << QStringLiteral("example.com\u00a0");
    QTest::newRow("ideographic space") << false << QStringLiteral("example.com\u3000");
}

void WebQueryTest::wantsDirectUrl()
{
    QFETCH(QString, text);
    QTEST(WebQuery::wantsDirectUrl(text), "wants");
}

void WebQueryTest::engineFor_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("matched");
    QTest::addColumn<QString>("query");
    const auto row = [](const QString& text, bool matched, const QString& query = QString()) {
        QTest::newRow(qPrintable('|' + text + '|')) << text << matched << query;
    };
    row("y cats", true, "cats");
    row("Y cats", true, "cats");
    row("y Cats and Dogs", true, "Cats and Dogs");
    row("y cats  and   dogs ", true, "cats  and   dogs");
    row("  y cats", true, "cats");
    row("y y cats", true, "y cats");
    row("y ", true);
    row(" y ", true);
    row("y", false);
    row("y  ", false);
    row("y  cats", false);
    row("ycats", false);
    row("yy cats", false);
    row("cats y ", false);
    row("", false);
    row("   ", false);
    row("y. cats", false);
    QTest::newRow("tab ahead") << QStringLiteral("\t\n\u3000y cats") << true
                               << QStringLiteral("cats");
    QTest::newRow("tab for the blank") << QStringLiteral("y\tcats") << false << QString();
    QTest::newRow("no-break space for the blank")
        << QStringLiteral("y\u00a0cats") << false << QString();
    QTest::newRow("tab behind the blank") << QStringLiteral("y \tcats") << false << QString();
    QTest::newRow("ideographic space behind the blank")
        << QStringLiteral("y \u3000cats") << false << QString();
    QTest::newRow("tab behind the query")
        << QStringLiteral("y cats\t\n") << true << QStringLiteral("cats");
    QTest::newRow("null behind the blank")
        << (QStringLiteral("y ") + QChar(0)) << true << QString(QChar(0));
    QTest::newRow("full-width letter") << QStringLiteral("\uff59 cats") << false << QString();
    QTest::newRow("right-to-left mark ahead")
        << QStringLiteral("\u200fy cats") << false << QString();
}

void WebQueryTest::engineFor()
{
    QFETCH(QString, text);
    QFETCH(bool, matched);
    QFETCH(QString, query);
    const EngineMatch expected{true, QStringLiteral("YouTube"), query, kVideoToken};
    QVERIFY(WebQuery::engineFor(text) == (matched ? expected : EngineMatch()));
}

void WebQueryTest::suggestionsFor_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVector<Suggestion>>("expected");
    const auto row = [](const QString& text, const QVector<Suggestion>& expected) {
        QTest::newRow(qPrintable('|' + text + '|')) << text << expected;
    };
    row("", {});
    row("   ", {});
    QTest::newRow("other white space")
        << QStringLiteral("\t\n\u00a0\u3000") << QVector<Suggestion>();

    row("cats", {search("cats", "cats")});
    row("  two cats  ", {search("two cats", "two%20cats")});
    row("Two  Cats", {search("Two  Cats", "Two%20%20Cats")});

    row("example.com", {search("example.com", "example.com")});
    row("example.com ", {open("example.com")});
    row("  Example.com/A?b=c d", {search("Example.com/A?b=c d", "Example.com%2FA%3Fb%3Dc%20d")});
    row("  Example.com/A?b=c  ", {open("Example.com/A?b=c")});
    row("http://x ", {open("http://x")});
    row("example.c ", {search("example.c", "example.c")});
    row("10.0.0.1 ", {open("10.0.0.1")});
    row("10.0.0.+1 ", {open("10.0.0.+1")});
    row("10.0.0.-0 ", {open("10.0.0.-0")});
    row("10.0.0.256 ", {search("10.0.0.256", "10.0.0.256")});
    row("localhost:8080/x ", {open("localhost:8080/x")});
    row("someone@example.com ", {open("someone@example.com")});

    row("y cats", {videos("cats", "cats"), search("y cats", "y%20cats")});
    row("Y cats", {videos("cats", "cats"), search("Y cats", "Y%20cats")});
    row(" y cats ", {videos("cats", "cats"), search("y cats", "y%20cats")});
    row("y ", {search("y", "y")});
    row("y", {search("y", "y")});
    row("y  ", {search("y", "y")});
    row("y  cats", {search("y  cats", "y%20%20cats")});
    row("y example.com ",
        {videos("example.com", "example.com"), search("y example.com", "y%20example.com")});

    // A query is put in once; what looks like a place for it stays as it is.
    row("y %1", {videos("%1", "%251"), search("y %1", "y%20%251")});
    row("%1 %2 %L1 %%1", {search("%1 %2 %L1 %%1", "%251%20%252%20%25L1%20%25%251")});
    row("%1.com ", {open("%1.com")});
    row("%20", {search("%20", "%2520")});

    row("a&b=c#d+e/f?g", {search("a&b=c#d+e/f?g", "a%26b%3Dc%23d%2Be%2Ff%3Fg")});
    row("-._~", {search("-._~", "-._~")});
    row("<b>\"'\\", {search("<b>\"'\\", "%3Cb%3E%22%27%5C")});
    row(QStringLiteral("ñandú"), {search(QStringLiteral("ñandú"), "%C3%B1and%C3%BA")});
    row(QStringLiteral("y 猫"), {videos(QStringLiteral("猫"), "%E7%8C%AB"),
                                 search(QStringLiteral("y 猫"), "y%20%E7%8C%AB")});
    row(QStringLiteral("\U0001F980"), {search(QStringLiteral("\U0001F980"), "%F0%9F%A6%80")});
    QTest::newRow("right-to-left override")
        << QStringLiteral("\u202eabc")
        << QVector<Suggestion>{search(QStringLiteral("\u202eabc"), "%E2%80%AEabc")};
    QTest::newRow("null") << (QStringLiteral("a") + QChar(0) + QStringLiteral("b"))
                          << QVector<Suggestion>{search(
                                 QStringLiteral("a") + QChar(0) + QStringLiteral("b"), "a%00b")};
    QTest::newRow("line feed within")
        << QStringLiteral("a\nb") << QVector<Suggestion>{search("a\nb", "a%0Ab")};
}

void WebQueryTest::suggestionsFor()
{
    QFETCH(QString, text);
    QFETCH(QVector<Suggestion>, expected);
    const QVector<Suggestion> suggestions = WebQuery::suggestionsFor(text);
    QCOMPARE(suggestions.size(), expected.size());
    for (qsizetype i = 0; i < expected.size(); ++i) {
        QCOMPARE(suggestions.at(i).label, expected.at(i).label);
        QCOMPARE(suggestions.at(i).iconToken, expected.at(i).iconToken);
        QCOMPARE(suggestions.at(i).url, expected.at(i).url);
        QCOMPARE(suggestions.at(i).fromEngine, expected.at(i).fromEngine);
    }
}

void WebQueryTest::labelsFollowTheLanguage_data()
{
    QTest::addColumn<Lang>("lang");
    QTest::addColumn<QString>("searchLabel");
    QTest::addColumn<QString>("openLabel");
    QTest::newRow("en") << Lang::En << "y %2 — Google Search"
                        << "Open %1.com";
    QTest::newRow("id") << Lang::Id << "y %2 — Google Penelusuran"
                        << "Buka %1.com";
    QTest::newRow("es") << Lang::Es << QStringLiteral("y %2 — Búsqueda de Google")
                        << "Abrir %1.com";
    QTest::newRow("ja") << Lang::Ja << QStringLiteral("y %2 — Google 検索")
                        << QStringLiteral("%1.com を開く");
}

void WebQueryTest::labelsFollowTheLanguage()
{
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    const QVector<Suggestion> suggestions = WebQuery::suggestionsFor("y %2");
    QCOMPARE(suggestions.at(0).label, QStringLiteral("%2 — YouTube"));
    QTEST(suggestions.at(1).label, "searchLabel");
    QTEST(WebQuery::suggestionsFor("%1.com ").at(0).label, "openLabel");
}

void WebQueryTest::queriesSurviveTheAddress_data()
{
    QTest::addColumn<QString>("query");
    QTest::newRow("words") << "two cats";
    QTest::newRow("plus") << "c++ & c#";
    QTest::newRow("places") << "%1 %2 100% %41";
    QTest::newRow("address") << "https://example.com/a?b=c&d=e#f";
    QTest::newRow("quotes") << "\"a\" 'b' `c`";
    QTest::newRow("scripts") << QStringLiteral("ñ 猫 кот חתול");
    QTest::newRow("beyond the basic plane") << QStringLiteral("\U0001F980 \U00010400");
    QTest::newRow("control characters") << QStringLiteral("a\u0001\u001f\u007f\u0085b");
    QTest::newRow("not composed") << QStringLiteral("e\u0301");
}

void WebQueryTest::queriesSurviveTheAddress()
{
    QFETCH(QString, query);
    const QString text = "y " + query;
    const QVector<Suggestion> suggestions = WebQuery::suggestionsFor(text);
    QCOMPARE(suggestions.size(), 2);
    for (const Suggestion& suggestion : suggestions) {
        QVERIFY(QUrl(suggestion.url, QUrl::StrictMode).isValid());
        QCOMPARE(QUrl::fromUserInput(suggestion.url), QUrl(suggestion.url)); // as it is opened
    }
    QCOMPARE(decoded(suggestions.at(0).url, "search_query"), query);
    QCOMPARE(decoded(suggestions.at(1).url, "q"), text);
}

void WebQueryTest::halfASurrogateGivesAnAddress()
{
    const QString text = QStringLiteral("y a") + QChar(0xD83E) + QStringLiteral("b");
    const QVector<Suggestion> suggestions = WebQuery::suggestionsFor(text);
    QCOMPARE(suggestions.size(), 2);
    for (const Suggestion& suggestion : suggestions) {
        QVERIFY(QUrl(suggestion.url, QUrl::StrictMode).isValid());
        QVERIFY(suggestion.url.endsWith('b'));
    }
    QCOMPARE(suggestions.at(1).label, text + QStringLiteral(" — Google Search"));
}

void WebQueryTest::hugeTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qsizetype>("count");
    QTest::addColumn<bool>("isLink");
    const QString letters(kMegabyte, 'x');
    QTest::newRow("letters") << letters << qsizetype(1) << false;
    QTest::newRow("blanks") << QString(kMegabyte, ' ') << qsizetype(0) << false;
    QTest::newRow("engine") << ("y " + letters) << qsizetype(2) << false;
    QTest::newRow("blanks ahead of an engine")
        << (QString(kMegabyte, ' ') + "y x") << qsizetype(2) << false;
    QTest::newRow("dots") << QString(kMegabyte, '.') << qsizetype(1) << false;
    QTest::newRow("colons") << QString(kMegabyte, ':') << qsizetype(1) << false;
    QTest::newRow("name") << (letters + ".com") << qsizetype(1) << true;
    QTest::newRow("ending") << ("x." + letters) << qsizetype(1) << true;
    QTest::newRow("number") << ("1.1.1." + QString(kMegabyte, '1')) << qsizetype(1) << false;
    QTest::newRow("surrogates") << QStringLiteral("\U0001F980").repeated(kMegabyte / 2)
                                << qsizetype(1) << false;
}

void WebQueryTest::hugeTexts()
{
    QFETCH(QString, text);
    QTEST(WebQuery::suggestionsFor(text).size(), "count");
    QTEST(WebQuery::looksLikeLink(text), "isLink");
}

void WebQueryTest::asElementIsAnAddress_data()
{
    QTest::addColumn<Suggestion>("suggestion");
    QTest::newRow("search") << search("cats", "cats");
    QTest::newRow("engine") << videos("cats", "cats");
    QTest::newRow("address") << open("example.com");
}

void WebQueryTest::asElementIsAnAddress()
{
    QFETCH(Suggestion, suggestion);
    const LauncherElement expected{QString(), suggestion.label, QStringLiteral("URL"),
                                   suggestion.url, suggestion.iconToken};
    QVERIFY(WebQuery::asElement(suggestion) == expected);
}

QTEST_MAIN(WebQueryTest)
#include "tst_webquery.moc"
