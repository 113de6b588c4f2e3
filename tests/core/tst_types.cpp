// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TestHome.h"
#include "Types.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

class TypesTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void createIdIsABareLowerCaseUuid();
    void createIdIsNewEachTime();
    void elementToJsonHoldsExactlySixKeys();
    void elementFromJsonReadsFiveKeys();
    void elementFromJson_data();
    void elementFromJson();
    void elementWithoutIdGetsOne_data();
    void elementWithoutIdGetsOne();
    void elementSurvivesTheRoundTrip_data();
    void elementSurvivesTheRoundTrip();
    void templateToJsonHoldsExactlyTheseKeys();
    void templateIcon_data();
    void templateIcon();
    void templateItemsHaveNoId();
    void templateItemsOfOtherTypes_data();
    void templateItemsOfOtherTypes();
    void templateSurvivesTheRoundTrip_data();
    void templateSurvivesTheRoundTrip();
    void equalityLooksAtEveryField();
    void defaults();
};

namespace
{

QJsonObject parsed(const QByteArray& json)
{
    return QJsonDocument::fromJson(json).object();
}

const LauncherElement kMail = {"an-id", "Mail", "URL", "https://mail.example", "glyph:e2c7"};

} // namespace

void TypesTest::createIdIsABareLowerCaseUuid()
{
    static const QRegularExpression uuid(
        "^[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}$");
    const QString id = LauncherElement::createId();
    QCOMPARE(id.size(), 36);
    QVERIFY2(uuid.match(id).hasMatch(), qPrintable(id));
}

void TypesTest::createIdIsNewEachTime()
{
    QSet<QString> ids;
    for (int i = 0; i < 1000; ++i)
        ids.insert(LauncherElement::createId());
    QCOMPARE(ids.size(), 1000);
}

void TypesTest::elementToJsonHoldsExactlySixKeys()
{
    const QJsonObject expected = {{"iconPath", "glyph:e2c7"}, {"id", "an-id"},
                                  {"name", "Mail"},           {"shortcutType", "URL"},
                                  {"type", "shortcut"},       {"value", "https://mail.example"}};
    QCOMPARE(kMail.toJson(), expected);
    // An item without content writes all of them too.
    QCOMPARE(LauncherElement().toJson().keys(), expected.keys());
}

void TypesTest::elementFromJsonReadsFiveKeys()
{
    const QJsonObject obj = parsed(R"({"id": "an-id", "name": "Mail", "shortcutType": "URL",
        "value": "https://mail.example", "iconPath": "glyph:e2c7", "type": "Bulk", "more": 1})");
    QCOMPARE(LauncherElement::fromJson(obj), kMail);
}

void TypesTest::elementFromJson_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<LauncherElement>("expected");
    const LauncherElement onlyId = {"x", {}, {}, {}, {}};
    QTest::newRow("keys missing") << QByteArray(R"({"id": "x"})") << onlyId;
    QTest::newRow("numbers") << QByteArray(
                                    R"({"id": "x", "name": 1, "shortcutType": 2.5, "value": -3})")
                             << onlyId;
    QTest::newRow("nulls and booleans")
        << QByteArray(R"({"id": "x", "name": null, "value": true, "iconPath": false})") << onlyId;
    QTest::newRow("containers") << QByteArray(
                                       R"({"id": "x", "name": ["n"], "value": {"value": "v"}})")
                                << onlyId;
    QTest::newRow("the legacy type key is not the type")
        << QByteArray(R"({"id": "x", "type": "URL"})") << onlyId;
    QTest::newRow("keys are case-sensitive")
        << QByteArray(R"({"id": "x", "Name": "n", "shortcuttype": "URL"})") << onlyId;
    QTest::newRow("an unknown shortcut type is kept")
        << QByteArray(R"({"id": "x", "shortcutType": "url"})")
        << LauncherElement{"x", {}, "url", {}, {}};
    QTest::newRow("the id is taken as it is") << QByteArray(R"({"id": " NOT A UUID "})")
                                              << LauncherElement{" NOT A UUID ", {}, {}, {}, {}};
}

void TypesTest::elementFromJson()
{
    QFETCH(QByteArray, json);
    QTEST(LauncherElement::fromJson(parsed(json)), "expected");
}

void TypesTest::elementWithoutIdGetsOne_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("missing") << QByteArray(R"({"name": "n"})");
    QTest::newRow("empty") << QByteArray(R"({"name": "n", "id": ""})");
    QTest::newRow("number") << QByteArray(R"({"name": "n", "id": 5})");
    QTest::newRow("null") << QByteArray(R"({"name": "n", "id": null})");
}

void TypesTest::elementWithoutIdGetsOne()
{
    QFETCH(QByteArray, json);
    const LauncherElement first = LauncherElement::fromJson(parsed(json));
    const LauncherElement second = LauncherElement::fromJson(parsed(json));
    QCOMPARE(first.id.size(), 36);
    QCOMPARE(second.id.size(), 36);
    QVERIFY(first.id != second.id);
    QCOMPARE(first.name, "n");
}

void TypesTest::elementSurvivesTheRoundTrip_data()
{
    QTest::addColumn<LauncherElement>("element");
    QTest::newRow("plain") << kMail;
    QTest::newRow("empty but for the id") << LauncherElement{"x", {}, {}, {}, {}};
    QTest::newRow("line feeds and quotes")
        << LauncherElement{"x", "a\nb\r\nc\t\"d\"\\", "Snippet", "\n", ""};
    QTest::newRow("right-to-left marks") << LauncherElement{
        "x", QString::fromUtf16(u"\u202Eevil\u202C \u200Fשלום\u2067"), "File", "/tmp/x", ""};
    QTest::newRow("beyond the basic plane")
        << LauncherElement{"x", "🗂️ 𠮷", "URL", "日本語", ""};
}

void TypesTest::elementSurvivesTheRoundTrip()
{
    QFETCH(LauncherElement, element);
    const QByteArray bytes = QJsonDocument(element.toJson()).toJson();
    QCOMPARE(LauncherElement::fromJson(parsed(bytes)), element);
}

void TypesTest::templateToJsonHoldsExactlyTheseKeys()
{
    const SectionTemplate tpl = {"Set", 58689, {kMail}};
    const QJsonObject item = {{"iconPath", "glyph:e2c7"},
                              {"name", "Mail"},
                              {"shortcutType", "URL"},
                              {"value", "https://mail.example"}};
    const QJsonObject expected = {{"icon", 58689}, {"items", QJsonArray{item}}, {"name", "Set"}};
    QCOMPARE(tpl.toJson(), expected);
    QCOMPARE(SectionTemplate().toJson(),
             (QJsonObject{{"icon", 58055}, {"items", QJsonArray()}, {"name", ""}}));
}

void TypesTest::templateIcon_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<uint>("icon");
    QTest::newRow("absent keeps the folder") << QByteArray("{}") << 58055U;
    QTest::newRow("number") << QByteArray(R"({"icon": 58378})") << 58378U;
    QTest::newRow("zero") << QByteArray(R"({"icon": 0})") << 0U;
    QTest::newRow("text") << QByteArray(R"({"icon": "58378"})") << 0U;
    QTest::newRow("null") << QByteArray(R"({"icon": null})") << 0U;
    QTest::newRow("fraction") << QByteArray(R"({"icon": 58378.5})") << 0U;
    QTest::newRow("beyond int") << QByteArray(R"({"icon": 4294967295})") << 0U;
    QTest::newRow("beyond everything") << QByteArray(R"({"icon": 1e300})") << 0U;
    QTest::newRow("negative wraps around") << QByteArray(R"({"icon": -1})") << 4294967295U;
}

void TypesTest::templateIcon()
{
    QFETCH(QByteArray, json);
    QTEST(SectionTemplate::fromJson(parsed(json)).icon, "icon");
}

void TypesTest::templateItemsHaveNoId()
{
    const SectionTemplate tpl = SectionTemplate::fromJson(
        parsed(R"({"name": "Set", "items": [{"id": "an-id", "name": "Mail", "shortcutType": "URL",
            "value": "https://mail.example", "iconPath": "glyph:e2c7", "type": "Bulk"}]})"));
    LauncherElement expected = kMail;
    expected.id.clear();
    QCOMPARE(tpl, (SectionTemplate{"Set", 58055, {expected}}));
}

void TypesTest::templateItemsOfOtherTypes_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QVector<LauncherElement>>("items");
    const LauncherElement empty;
    const LauncherElement named = {{}, "n", {}, {}, {}};
    QTest::newRow("no list") << QByteArray(R"({"items": {"name": "n"}})")
                             << QVector<LauncherElement>();
    QTest::newRow("missing") << QByteArray("{}") << QVector<LauncherElement>();
    QTest::newRow("entries that are no objects become empty items")
        << QByteArray(R"({"items": [1, "n", null, {"name": "n"}, [{"name": "n"}]]})")
        << QVector<LauncherElement>{empty, empty, empty, named, empty};
}

void TypesTest::templateItemsOfOtherTypes()
{
    QFETCH(QByteArray, json);
    QTEST(SectionTemplate::fromJson(parsed(json)).items, "items");
}

void TypesTest::templateSurvivesTheRoundTrip_data()
{
    QTest::addColumn<SectionTemplate>("tpl");
    const LauncherElement item = {{}, "a\nb", "Bulk", "one\ntwo", "/x.png"};
    QTest::newRow("items in order")
        << SectionTemplate{"Set", 58689, {item, LauncherElement(), item}};
    QTest::newRow("no items, no name") << SectionTemplate();
    QTest::newRow("icon beyond int") << SectionTemplate{"Set", 4294967295U, {}};
}

void TypesTest::templateSurvivesTheRoundTrip()
{
    QFETCH(SectionTemplate, tpl);
    const QByteArray bytes = QJsonDocument(tpl.toJson()).toJson();
    QCOMPARE(SectionTemplate::fromJson(parsed(bytes)), tpl);
}

void TypesTest::equalityLooksAtEveryField()
{
    for (QString LauncherElement::*field :
         {&LauncherElement::id, &LauncherElement::name, &LauncherElement::shortcutType,
          &LauncherElement::value, &LauncherElement::iconPath}) {
        LauncherElement other = kMail;
        QVERIFY(other == kMail);
        other.*field = "different";
        QVERIFY(other != kMail);
    }
    const SectionTemplate tpl = {"Set", 1, {kMail}};
    QVERIFY(tpl != (SectionTemplate{"Set", 2, {kMail}}));
    QVERIFY(tpl != (SectionTemplate{"Sett", 1, {kMail}}));
    QVERIFY(tpl != (SectionTemplate{"Set", 1, {}}));

    const LauncherData document = {"A", {"A"}, {{"A", 1}}, {{"A", {kMail}}}, {tpl}};
    QVERIFY(document == LauncherData(document));
    QVERIFY(document != (LauncherData{"B", {"A"}, {{"A", 1}}, {{"A", {kMail}}}, {tpl}}));
    QVERIFY(document != (LauncherData{"A", {"B"}, {{"A", 1}}, {{"A", {kMail}}}, {tpl}}));
    QVERIFY(document != (LauncherData{"A", {"A"}, {{"A", 2}}, {{"A", {kMail}}}, {tpl}}));
    QVERIFY(document != (LauncherData{"A", {"A"}, {{"A", 1}}, {{"A", {}}}, {tpl}}));
    QVERIFY(document != (LauncherData{"A", {"A"}, {{"A", 1}}, {{"A", {kMail}}}, {}}));
}

void TypesTest::defaults()
{
    QCOMPARE(SectionTemplate::DefaultIcon, 0xE2C7U);
    QCOMPARE(SectionTemplate().icon, 58055U);
    const LauncherData document;
    QVERIFY(document.defaultCategory.isEmpty());
    QVERIFY(document.categories.isEmpty());
    QVERIFY(document.templates.isEmpty());
}

QTEST_MAIN(TypesTest)
#include "tst_types.moc"
