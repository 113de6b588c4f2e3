// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SearchEngine.h"
#include "TestHome.h"

#include <QTest>

class SearchEngineTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void search_data();
    void search();
    void matchIsAFullCopyWithItsPlace();
    void aCategoryListedTwiceIsSearchedTwice();
    void emptyDocument();
};

namespace
{

LauncherElement item(const QString& name, const QString& value = QString())
{
    return {name + "-id", name, "URL", value, "glyph:e2c7"};
}

/// Alphabetical order of the sections and document order differ on purpose.
LauncherData document()
{
    LauncherData data;
    data.categories = {"Zeta", "No entry", "Alpha", "Empty"};
    data.defaultCategory = "Zeta";
    data.sectionElements = {
        {"Zeta", {item("Mail", "needle"), item("Calendar"), item("mail archive")}},
        {"Alpha", {item("Web MAIL"), item("100% [a.b] \\d"), item("Straße"), item("日本語")}},
        {"Empty", {}},
        {"Unlisted", {item("Mail of nobody")}}};
    return data;
}

} // namespace

void SearchEngineTest::search_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("hits");
    const QStringList none;
    QTest::newRow("empty query") << "" << none;
    QTest::newRow("null query") << QString() << none;
    QTest::newRow("document order, any case")
        << "mail" << QStringList{"Zeta/0/Mail", "Zeta/2/mail archive", "Alpha/0/Web MAIL"};
    QTest::newRow("query in capitals")
        << "MAIL" << QStringList{"Zeta/0/Mail", "Zeta/2/mail archive", "Alpha/0/Web MAIL"};
    QTest::newRow("middle of a word") << "lend" << QStringList{"Zeta/1/Calendar"};
    QTest::newRow("value is not searched") << "needle" << none;
    QTest::newRow("type is not searched") << "url" << none;
    QTest::newRow("icon is not searched") << "glyph" << none;
    QTest::newRow("id is not searched") << "-id" << none;
    QTest::newRow("unlisted section is not searched") << "nobody" << none;
    QTest::newRow("section name is not searched") << "zeta" << none;
    QTest::newRow("blanks are not trimmed") << " mail" << QStringList{"Alpha/0/Web MAIL"};
    QTest::newRow("blank alone") << " "
                                 << QStringList{"Zeta/2/mail archive", "Alpha/0/Web MAIL",
                                                "Alpha/1/100% [a.b] \\d"};
    QTest::newRow("no pattern") << "[a.b]" << QStringList{"Alpha/1/100% [a.b] \\d"};
    QTest::newRow("no pattern either") << ".*" << none;
    QTest::newRow("non-Latin") << "本" << QStringList{"Alpha/3/日本語"};
    QTest::newRow("folding is by character") << "strasse" << none;
    QTest::newRow("longer than every name") << QString(10000, 'm') << none;
}

void SearchEngineTest::search()
{
    QFETCH(QString, query);
    QStringList hits;
    const QVector<SearchMatch> matches = SearchEngine::search(document(), query);
    for (const SearchMatch& match : matches)
        hits.append(
            QString("%1/%2/%3").arg(match.category).arg(match.originalIndex).arg(match.el.name));
    QTEST(hits, "hits");
}

void SearchEngineTest::matchIsAFullCopyWithItsPlace()
{
    LauncherData data = document();
    const QVector<SearchMatch> matches = SearchEngine::search(data, "calendar");
    const LauncherElement original = data.sectionElements["Zeta"].at(1);
    data.sectionElements["Zeta"][1].name = "changed";
    QCOMPARE(matches, (QVector<SearchMatch>{{"Zeta", original, 1}}));
}

void SearchEngineTest::aCategoryListedTwiceIsSearchedTwice()
{
    LauncherData data;
    data.categories = {"A", "A"};
    data.sectionElements = {{"A", {item("Mail")}}};
    QCOMPARE(SearchEngine::search(data, "mail").size(), 2);
}

void SearchEngineTest::emptyDocument()
{
    QVERIFY(SearchEngine::search(LauncherData(), "a").isEmpty());
}

QTEST_MAIN(SearchEngineTest)
#include "tst_searchengine.moc"
