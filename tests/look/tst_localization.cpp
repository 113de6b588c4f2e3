// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Localization.h"
#include "Settings.h"
#include "TestHome.h"
#include "Theme.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto kUnknownLang = static_cast<Lang>(7);
const QStringList kEnglishOnly{u"editor.ph_val_app"_s, u"editor.ph_val_file"_s,
                               u"editor.ph_val_url"_s};
const QStringList kOneTextForAll{u"about.store_title"_s, u"web.youtube"_s};
// The product, a key combination as it is stored, and keys whose caps read the same everywhere.
// "Enter Section Name" is the verb.
const QString kKeptWords = u"Orlimo|Ctrl\\+Alt\\+Space|\\bEnter\\b(?! [A-Z])|\\bEsc\\b|\\bTab\\b"_s;

QStringList matchesOf(const QString& pattern, const QString& text)
{
    QStringList found;
    auto matches = QRegularExpression(pattern).globalMatch(text);
    while (matches.hasNext())
        found << matches.next().captured();
    return found;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

QString unescaped(QString field)
{
    const QChar guard(u'\x1'); // keeps an escaped backslash from meeting the letter behind it
    field.replace(u"\\\\"_s, guard).replace(u"\\n"_s, u"\n"_s).replace(guard, u'\\');
    return field;
}

/// Key and English text of every row, as the table has to hold them.
QMap<QString, QString> englishTexts()
{
    QFile file(QStringLiteral(ORLIMO_TEST_DATA_DIR "/english_texts.tsv"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    QMap<QString, QString> texts;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QStringList fields = line.split(u'\t');
        if (!line.startsWith(u'#') && fields.size() == 2)
            texts.insert(fields.at(0), unescaped(fields.at(1)));
    }
    return texts;
}

/// The three translations of a row with their language; none for the rows that have only English.
QList<QPair<QString, QString>> translationsOf(const LocalizedText& row)
{
    QList<QPair<QString, QString>> texts;
    for (const auto& [code, text] :
         {qMakePair(u"id"_s, row.id), qMakePair(u"es"_s, row.es), qMakePair(u"ja"_s, row.ja)}) {
        if (!text.isEmpty())
            texts << qMakePair(code, text);
    }
    return texts;
}

QString describe(const QString& code, const QString& text)
{
    return code + u": "_s + text;
}

/// "1." or "•" at the start of each line that has one.
QStringList lineMarkers(const QString& text)
{
    return matchesOf(u"(?m)^(•|\\d+\\.) "_s, text);
}

/// What a text ends with, in one form for half-width and full-width characters.
QString ending(const QString& text)
{
    static const QStringList endings{u"..."_s, u"…"_s, u"?"_s, u"!"_s, u":"_s};
    QString normal = text;
    normal.replace(u'？', u'?').replace(u'！', u'!').replace(u'：', u':');
    for (const QString& candidate : endings) {
        if (normal.endsWith(candidate))
            return candidate;
    }
    return {};
}

QString settingsFile()
{
    return Theme::settingsFilePath();
}

void writeSettings(const QByteArray& content)
{
    TestHome::writeDataFile(u"settings.ini"_s, content);
}

QString storedCode()
{
    return QSettings(settingsFile(), Settings::format())
        .value("Language/Code", u"(absent)"_s)
        .toString();
}

QByteArray settingsBytes()
{
    QFile file(settingsFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

} // namespace

class LocalizationTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void startsInEnglish();

    void tableHasEveryRow();
    void rowsPerPrefix_data();
    void rowsPerPrefix();
    void englishText_data();
    void englishText();
    void fourLanguages_data();
    void fourLanguages();
    void onlyPlaceholderPathsLackTranslations();
    void productNamesKeepOneText();
    void addressPlaceholderIsAnExampleAddress();

    void translationsFollowEnglish_data();
    void translationsFollowEnglish();
    void textsAreTidy_data();
    void textsAreTidy();
    void translationsAreTranslated();
    void equalEnglishHasEqualTranslations();
    void glossary_data();
    void glossary();
    void namedLabels_data();
    void namedLabels();
    void typeMenuEntryKeepsItsName();
    void tourEndsAtTheAboutPage();

    void forLang_data();
    void forLang();
    void textFollowsTheCurrentLanguage();
    void missingKey_data();
    void missingKey();
    void englishStandsInForMissingTranslations();

    void codes_data();
    void codes();
    void langForCode_data();
    void langForCode();
    void namesAreTheLanguagesOwn_data();
    void namesAreTheLanguagesOwn();
    void menuOrder();

    void load_data();
    void load();
    void loadWithoutFile();
    void loadFromUnreadableFile();
    void loadLeavesAnUnknownCode();
    void setLanguageStores_data();
    void setLanguageStores();
    void setLanguageKeepsOtherKeys();
    void setLanguageStoresTheCurrentLanguageToo();
    void setLanguageWithoutWritableFile();
    void thereAndBack();

private:
    static void addTranslatedRows();

    const QMap<QString, LocalizedText> m_table = localizationTable();
};

void LocalizationTest::init()
{
    Tr::currentLang = Lang::En;
    QFile::remove(settingsFile());
    QDir().rmdir(settingsFile());
    // QSettings remembers a file by size and time; it has to see that the old one is gone.
    QCOMPARE(storedCode(), u"(absent)"_s);
}

void LocalizationTest::cleanup()
{
    Tr::currentLang = Lang::En;
}

// Must stay the first test: afterwards the language has been changed.
void LocalizationTest::startsInEnglish()
{
    QCOMPARE(Tr::currentLang, Lang::En);
    QCOMPARE(static_cast<int>(Lang::En), 0);
    QCOMPARE(static_cast<int>(Lang::Id), 1);
    QCOMPARE(static_cast<int>(Lang::Es), 2);
    QCOMPARE(static_cast<int>(Lang::Ja), 3);
}

void LocalizationTest::tableHasEveryRow()
{
    QCOMPARE(m_table.size(), 222);
    QCOMPARE(m_table.keys(), englishTexts().keys());
}

void LocalizationTest::rowsPerPrefix_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("test") << 1;
    QTest::newRow("settings") << 12;
    QTest::newRow("settings.system") << 5;
    QTest::newRow("onboarding") << 3;
    QTest::newRow("onboarding.slide1") << 2;
    QTest::newRow("onboarding.slide2") << 2;
    QTest::newRow("onboarding.slide3") << 2;
    QTest::newRow("onboarding.slide4") << 2;
    QTest::newRow("home") << 4;
    QTest::newRow("web") << 6;
    QTest::newRow("tooltip") << 1;
    QTest::newRow("dialog") << 16;
    QTest::newRow("about") << 9;
    QTest::newRow("tour") << 26;
    QTest::newRow("spotlight") << 16;
    QTest::newRow("spotset") << 4;
    QTest::newRow("folderpick") << 8;
    QTest::newRow("template") << 26;
    QTest::newRow("actions") << 15;
    QTest::newRow("reorder") << 6;
    QTest::newRow("editor") << 21;
    QTest::newRow("settings.app") << 6;
    QTest::newRow("settings.layout") << 1;
    QTest::newRow("settings.sys") << 3;
    QTest::newRow("settings.data") << 21;
    QTest::newRow("main") << 4;
    QTest::newRow("nothing") << 0;
}

void LocalizationTest::rowsPerPrefix()
{
    QFETCH(int, count);
    const QString prefix = QString::fromLatin1(QTest::currentDataTag());
    const QStringList keys = m_table.keys();
    QCOMPARE(std::count_if(keys.cbegin(), keys.cend(),
                           [&prefix](const QString& key) {
                               return key.left(key.lastIndexOf(u'.')) == prefix;
                           }),
             count);
}

void LocalizationTest::englishText_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("english");
    const QMap<QString, QString> texts = englishTexts();
    for (auto text = texts.cbegin(); text != texts.cend(); ++text)
        QTest::newRow(qPrintable(text.key())) << text.key() << text.value();
}

void LocalizationTest::englishText()
{
    QFETCH(QString, key);
    QFETCH(QString, english);
    QVERIFY(!english.isEmpty());
    QCOMPARE(m_table.value(key).en, english);
    QCOMPARE(Tr::t(key), english);
}

void LocalizationTest::fourLanguages_data()
{
    QTest::addColumn<QStringList>("texts");
    const auto row = [](const char* key, const QStringList& texts) { QTest::newRow(key) << texts; };
    row("dialog.btn_ok", {u"OK"_s, u"OK"_s, u"Aceptar"_s, u"OK"_s});
    row("settings.title", {u"Settings"_s, u"Pengaturan"_s, u"Ajustes"_s, u"設定"_s});
    row("settings.app.theme_auto", {u"Auto"_s, u"Otomatis"_s, u"Automático"_s, u"自動"_s});
    row("web.search", {u"%1 — Google Search"_s, u"%1 — Google Penelusuran"_s,
                       u"%1 — Búsqueda de Google"_s, u"%1 — Google 検索"_s});
    row("web.open", {u"Open %1"_s, u"Buka %1"_s, u"Abrir %1"_s, u"%1 を開く"_s});
    row("web.engine_group",
        {u"Search on %1: %2"_s, u"Cari di %1: %2"_s, u"Buscar en %1: %2"_s, u"%1 で検索: %2"_s});
    row("tooltip.more_lines", {u"+%1 more"_s, u"+%1 lagi"_s, u"+%1 más"_s, u"他 %1 件"_s});
    row("tour.step_counter", {u"%1 of %2"_s, u"%1 dari %2"_s, u"%1 de %2"_s, u"%1 / %2"_s});
    row("folderpick.row",
        {u"%1  ·  %2 items"_s, u"%1  ·  %2 item"_s, u"%1  ·  %2 elementos"_s, u"%1  ·  %2 件"_s});
    row("template.item_count",
        {u"%1 shortcuts"_s, u"%1 pintasan"_s, u"%1 accesos directos"_s, u"%1 ショートカット"_s});
    row("spotset.n_types", {u"%1 types"_s, u"%1 jenis"_s, u"%1 tipos"_s, u"%1 種類"_s});
    row("main.err_exec_title", {u"Failed to execute: %1"_s, u"Gagal menjalankan: %1"_s,
                                u"No se pudo ejecutar: %1"_s, u"実行できませんでした：%1"_s});
    row("actions.del_shortcut_title", {u"Delete \"%1\"?"_s, u"Hapus \"%1\"?"_s,
                                       u"¿Eliminar \"%1\"?"_s, u"\"%1\" を削除しますか？"_s});
    row("about.hotkey_label",
        {u"Press %1 to open Orlimo"_s, u"Tekan %1 untuk membuka Orlimo"_s,
         u"Pulsa %1 para abrir Orlimo"_s, u"%1 を押すと Orlimo が開きます"_s});
    row("settings.data.btn_export",
        {u"Export →"_s, u"Ekspor →"_s, u"Exportar →"_s, u"書き出し →"_s});
    row("onboarding.slide1.title", {u"Welcome to Orlimo"_s, u"Selamat Datang di Orlimo"_s,
                                    u"Te damos la bienvenida a Orlimo"_s, u"Orlimo へようこそ"_s});
}

void LocalizationTest::fourLanguages()
{
    QFETCH(QStringList, texts);
    const LocalizedText row = m_table.value(QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(QStringList({row.en, row.id, row.es, row.ja}), texts);
}

void LocalizationTest::onlyPlaceholderPathsLackTranslations()
{
    QStringList lacking;
    for (auto row = m_table.cbegin(); row != m_table.cend(); ++row) {
        const auto count = translationsOf(*row).size();
        if (count != 3)
            lacking << row.key();
        QVERIFY2(count == 3 || count == 0, qPrintable(row.key()));
    }
    QCOMPARE(lacking, kEnglishOnly);
}

void LocalizationTest::productNamesKeepOneText()
{
    QStringList single;
    for (auto row = m_table.cbegin(); row != m_table.cend(); ++row) {
        if (row->id == row->en && row->es == row->en && row->ja == row->en)
            single << row.key();
    }
    QCOMPARE(single, kOneTextForAll);
}

void LocalizationTest::addressPlaceholderIsAnExampleAddress()
{
    const QString address = m_table.value(u"editor.ph_val_url"_s).en;
    QVERIFY(address.startsWith(u"https://"_s));
    // Reserved for examples, so nobody can ever stand behind it.
    QVERIFY(QUrl(address).host().endsWith(u".example.org"_s));
}

void LocalizationTest::addTranslatedRows()
{
    QTest::addColumn<LocalizedText>("row");
    const QMap<QString, LocalizedText> table = localizationTable();
    for (auto row = table.cbegin(); row != table.cend(); ++row)
        QTest::newRow(qPrintable(row.key())) << *row;
}

void LocalizationTest::translationsFollowEnglish_data()
{
    addTranslatedRows();
}

void LocalizationTest::translationsFollowEnglish()
{
    QFETCH(LocalizedText, row);
    for (const auto& [code, text] : translationsOf(row)) {
        const QString where = describe(code, text);
        const auto check = [&where](const QStringList& actual, const QStringList& expected) {
            QVERIFY2(actual == expected, qPrintable(where));
        };
        check(sorted(matchesOf(u"%\\d"_s, text)), sorted(matchesOf(u"%\\d"_s, row.en)));
        check(matchesOf(u"</?b>"_s, text), matchesOf(u"</?b>"_s, row.en));
        check(matchesOf(u"\n+"_s, text), matchesOf(u"\n+"_s, row.en));
        check(lineMarkers(text), lineMarkers(row.en));
        check(matchesOf(u"[←→↑↓›]"_s, text), matchesOf(u"[←→↑↓›]"_s, row.en));
        check(matchesOf(u"[\"']%\\d[\"']"_s, text), matchesOf(u"[\"']%\\d[\"']"_s, row.en));
        check(matchesOf(kKeptWords, text), matchesOf(kKeptWords, row.en));
        QVERIFY2(ending(text) == ending(row.en), qPrintable(where));
    }
}

void LocalizationTest::textsAreTidy_data()
{
    addTranslatedRows();
}

void LocalizationTest::textsAreTidy()
{
    QFETCH(LocalizedText, row);
    for (const QString& text : {row.en, row.id, row.es, row.ja}) {
        QCOMPARE(text, text.trimmed());
        for (const QString& line : text.split(u'\n'))
            QCOMPARE(line, line.trimmed());
        // Doubled blanks are meant only around the dot of the folder rows.
        QVERIFY2(!text.contains(u"  "_s) || text.contains(u"  ·  "_s), qPrintable(text));
        QCOMPARE(text.count(u"<b>"_s), text.count(u"</b>"_s));
        QVERIFY2(!text.contains(QChar::ReplacementCharacter), qPrintable(text));
    }
    QCOMPARE(row.es.count(u'¿'), row.es.count(u'?'));
    QCOMPARE(row.es.count(u'¡'), row.es.count(u'!'));
    QCOMPARE(row.ja.count(u'「'), row.ja.count(u'」'));
    QVERIFY2(matchesOf(u"[?!,;]"_s, row.ja).isEmpty(), qPrintable(row.ja));
    const QString latin = row.id + row.es;
    QVERIFY2(matchesOf(u"[\\x{3000}-\\x{9fff}\\x{ff00}-\\x{ffef}]"_s, latin).isEmpty(),
             qPrintable(latin));
}

// A text forgotten in English would pass every comparison of form, so the words that really are
// the same in two languages are listed.
void LocalizationTest::translationsAreTranslated()
{
    const QMap<QString, QStringList> same{
        {u"id"_s,
         {u"%1 — YouTube"_s, u"Data"_s, u"File"_s, u"Filter"_s, u"Microsoft Store"_s, u"OK"_s,
          u"Reset"_s, u"Tutorial"_s}},
        {u"es"_s, {u"%1 — YouTube"_s, u"Microsoft Store"_s, u"No"_s, u"Tutorial"_s}},
        {u"ja"_s, {u"%1 — YouTube"_s, u"Microsoft Store"_s, u"OK"_s}},
    };
    QMap<QString, QStringList> found;
    for (const LocalizedText& row : m_table) {
        for (const auto& [code, text] : translationsOf(row)) {
            if (text == row.en && !found[code].contains(text))
                found[code] << text;
        }
    }
    for (QStringList& texts : found)
        texts.sort();
    QCOMPARE(found, same);
}

void LocalizationTest::equalEnglishHasEqualTranslations()
{
    QMap<QString, LocalizedText> seen;
    for (auto row = m_table.cbegin(); row != m_table.cend(); ++row) {
        if (!seen.contains(row->en))
            seen.insert(row->en, *row);
        const LocalizedText& first = seen[row->en];
        QVERIFY2(first.id == row->id && first.es == row->es && first.ja == row->ja,
                 qPrintable(row.key()));
    }
}

void LocalizationTest::glossary_data()
{
    QTest::addColumn<QString>("english");
    QTest::addColumn<QStringList>("words");
    const auto word = [](const QString& english, const QStringList& words) {
        QTest::newRow(qPrintable(english)) << english << words;
    };
    word(u"section"_s, {u"bagian"_s, u"secci"_s, u"セクション"_s});
    word(u"shortcut"_s, {u"pintasan"_s, u"acceso"_s, u"ショートカット"_s});
    word(u"template"_s, {u"templat"_s, u"plantilla"_s, u"テンプレート"_s});
    word(u"snippet"_s, {u"cuplikan"_s, u"fragmento"_s, u"スニペット"_s});
    word(u"hotkey"_s, {u"tombol pintas"_s, u"atajo"_s, u"ホットキー"_s});
    word(u"bulk action"_s, {u"tindakan massal"_s, u"en lote"_s, u"一括操作"_s});
    word(u"actions"_s, {u"tindakan"_s, u"acci"_s, u"操作"_s});
    word(u"tutorial|\\btour"_s, {u"tutorial"_s, u"tutorial"_s, u"チュートリアル"_s});
    word(u"clipboard"_s, {u"papan klip"_s, u"portapapeles"_s, u"クリップボード"_s});
    word(u"folder"_s, {u"folder"_s, u"carpeta"_s, u"フォルダー"_s});
    word(u"\\bicon\\b"_s, {u"ikon"_s, u"icono"_s, u"アイコン"_s});
}

void LocalizationTest::glossary()
{
    QFETCH(QString, english);
    QFETCH(QStringList, words);
    const QRegularExpression term(english, QRegularExpression::CaseInsensitiveOption);
    int used = 0;
    for (auto row = m_table.cbegin(); row != m_table.cend(); ++row) {
        // The tagline's "shortcut" is the key combination.
        if (!row->en.contains(term) || row.key() == u"about.tagline"_s)
            continue;
        const QStringList texts{row->id, row->es, row->ja};
        for (int i = 0; i < texts.size(); ++i)
            QVERIFY2(texts.at(i).contains(words.at(i), Qt::CaseInsensitive),
                     qPrintable(row.key() + u": "_s + texts.at(i)));
        ++used;
    }
    QVERIFY(used > 0);
}

void LocalizationTest::namedLabels_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("label");
    const auto names = [](const QString& text, const QString& label) {
        QTest::newRow(qPrintable(text + u" names "_s + label)) << text << label;
    };
    names(u"tour.section_desc"_s, u"actions.add_section"_s);
    names(u"tour.section_desc"_s, u"actions.add_shortcut"_s);
    names(u"tour.section_dialog_desc"_s, u"dialog.btn_save"_s);
    names(u"tour.item_desc"_s, u"actions.add_shortcut"_s);
    names(u"tour.file_desc"_s, u"editor.btn_upload"_s);
    names(u"tour.finish_desc"_s, u"settings.title"_s);
    names(u"template.page_empty"_s, u"template.save_as"_s);
    names(u"spotset.default_hint"_s, u"spotlight.filter_add"_s);
    names(u"onboarding.slide4.desc"_s, u"settings.title"_s);
}

void LocalizationTest::namedLabels()
{
    QFETCH(QString, text);
    QFETCH(QString, label);
    for (const Lang lang : Tr::all()) {
        const QString sentence = m_table.value(text).forLang(lang);
        QVERIFY2(sentence.contains(m_table.value(label).forLang(lang)), qPrintable(sentence));
    }
}

// The type menu of the editor shows "File" whatever the language, so the tour must say so too.
void LocalizationTest::typeMenuEntryKeepsItsName()
{
    for (const Lang lang : Tr::all()) {
        Tr::currentLang = lang;
        QCOMPARE(Tr::t(u"File"_s), u"File"_s);
        QVERIFY2(Tr::t(u"tour.type_desc"_s).contains(u"File"_s), qPrintable(Tr::codeFor(lang)));
    }
}

// No page is titled "Overview"; the translations name the page where the tutorial can be started.
void LocalizationTest::tourEndsAtTheAboutPage()
{
    const QString key = u"tour.finish_desc"_s;
    QVERIFY(Tr::t(key).contains(u"Settings › Overview"_s));
    for (const Lang lang : {Lang::Id, Lang::Es, Lang::Ja}) {
        Tr::currentLang = lang;
        const QString path = Tr::t(u"settings.title"_s) + u" › "_s + Tr::t(u"settings.cat_about"_s);
        const bool isQuoted = lang == Lang::Ja; // as Japanese sets off every label in a sentence
        const QString wanted = isQuoted ? u"「"_s + path + u"」"_s : path;
        QVERIFY2(Tr::t(key).contains(wanted), qPrintable(Tr::t(key)));
    }
}

void LocalizationTest::forLang_data()
{
    QTest::addColumn<LocalizedText>("row");
    QTest::addColumn<Lang>("lang");
    QTest::addColumn<QString>("text");
    const LocalizedText full{u"e"_s, u"i"_s, u"s"_s, u"j"_s};
    QTest::newRow("English") << full << Lang::En << u"e"_s;
    QTest::newRow("Indonesian") << full << Lang::Id << u"i"_s;
    QTest::newRow("Spanish") << full << Lang::Es << u"s"_s;
    QTest::newRow("Japanese") << full << Lang::Ja << u"j"_s;
    QTest::newRow("out of range") << full << kUnknownLang << u"e"_s;
    QTest::newRow("negative") << full << static_cast<Lang>(-1) << u"e"_s;
    // English and nothing else stands in, however many other languages have a text.
    QTest::newRow("no Indonesian")
        << LocalizedText{u"e"_s, {}, u"s"_s, u"j"_s} << Lang::Id << u"e"_s;
    QTest::newRow("no Spanish") << LocalizedText{u"e"_s, u"i"_s, {}, u"j"_s} << Lang::Es << u"e"_s;
    QTest::newRow("no Japanese") << LocalizedText{u"e"_s, u"i"_s, u"s"_s, {}} << Lang::Ja << u"e"_s;
}

void LocalizationTest::forLang()
{
    QFETCH(LocalizedText, row);
    QFETCH(Lang, lang);
    QTEST(row.forLang(lang), "text");
}

void LocalizationTest::textFollowsTheCurrentLanguage()
{
    QStringList texts;
    for (const Lang lang : {Lang::Ja, Lang::En, Lang::Es, Lang::Id, kUnknownLang}) {
        Tr::currentLang = lang;
        texts << Tr::t(u"settings.title"_s);
    }
    QCOMPARE(texts,
             QStringList({u"設定"_s, u"Settings"_s, u"Ajustes"_s, u"Pengaturan"_s, u"Settings"_s}));
}

void LocalizationTest::missingKey_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("unknown") << u"no.such.key"_s;
    QTest::newRow("empty") << QString();
    QTest::newRow("other case") << u"Settings.Title"_s;
    QTest::newRow("trailing blank") << u"settings.title "_s;
    QTest::newRow("prefix of a key") << u"settings"_s;
    QTest::newRow("entry of the type menu") << u"URL"_s;
    QTest::newRow("text instead of a key") << u"設定 %1\n"_s;
}

void LocalizationTest::missingKey()
{
    QFETCH(QString, key);
    for (const Lang lang : Tr::all()) {
        Tr::currentLang = lang;
        QCOMPARE(Tr::t(key), key);
    }
}

void LocalizationTest::englishStandsInForMissingTranslations()
{
    for (const QString& key : kEnglishOnly) {
        for (const Lang lang : Tr::all()) {
            Tr::currentLang = lang;
            QCOMPARE(Tr::t(key), m_table.value(key).en);
        }
    }
    QCOMPARE(Tr::t(u"editor.ph_val_app"_s), u"C:\\Program Files\\App\\app.exe"_s);
}

void LocalizationTest::codes_data()
{
    QTest::addColumn<Lang>("lang");
    QTest::addColumn<QString>("code");
    QTest::newRow("English") << Lang::En << u"en"_s;
    QTest::newRow("Indonesian") << Lang::Id << u"id"_s;
    QTest::newRow("Spanish") << Lang::Es << u"es"_s;
    QTest::newRow("Japanese") << Lang::Ja << u"ja"_s;
}

void LocalizationTest::codes()
{
    QFETCH(Lang, lang);
    QFETCH(QString, code);
    QCOMPARE(Tr::codeFor(lang), code);
    QCOMPARE(Tr::langForCode(code), lang);
}

void LocalizationTest::langForCode_data()
{
    QTest::addColumn<QString>("code");
    QTest::newRow("empty") << QString();
    QTest::newRow("capitals") << u"ID"_s;
    QTest::newRow("mixed case") << u"Ja"_s;
    QTest::newRow("blank behind") << u"es "_s;
    QTest::newRow("blank before") << u" id"_s;
    QTest::newRow("with region") << u"es_ES"_s;
    QTest::newRow("unknown") << u"fr"_s;
    QTest::newRow("own name") << u"日本語"_s;
    QTest::newRow("embedded null") << u"id\0"_s;
}

void LocalizationTest::langForCode()
{
    QFETCH(QString, code);
    QCOMPARE(Tr::langForCode(code), Lang::En);
    QCOMPARE(Tr::codeFor(Tr::langForCode(code)), u"en"_s);
    QCOMPARE(Tr::codeFor(kUnknownLang), u"en"_s);
}

void LocalizationTest::namesAreTheLanguagesOwn_data()
{
    QTest::addColumn<Lang>("lang");
    QTest::addColumn<QString>("name");
    QTest::newRow("English") << Lang::En << u"English"_s;
    QTest::newRow("Indonesian") << Lang::Id << u"Bahasa Indonesia"_s;
    QTest::newRow("Spanish") << Lang::Es << u"Español"_s;
    QTest::newRow("Japanese") << Lang::Ja << u"日本語"_s;
    QTest::newRow("out of range") << kUnknownLang << u"English"_s;
}

void LocalizationTest::namesAreTheLanguagesOwn()
{
    QFETCH(Lang, lang);
    QFETCH(QString, name);
    for (const Lang current : Tr::all()) {
        Tr::currentLang = current;
        QCOMPARE(Tr::nameFor(lang), name);
    }
}

void LocalizationTest::menuOrder()
{
    QCOMPARE(Tr::all(), QList<Lang>({Lang::En, Lang::Id, Lang::Es, Lang::Ja}));
}

void LocalizationTest::load_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<Lang>("lang");
    const auto row = [](const char* tag, const QByteArray& content, Lang lang) {
        QTest::newRow(tag) << content << lang;
    };
    row("English", "[Language]\nCode=en\n", Lang::En);
    row("Indonesian", "[Language]\nCode=id\n", Lang::Id);
    row("Spanish", "[Language]\nCode=es\n", Lang::Es);
    row("Japanese", "[Language]\nCode=ja\n", Lang::Ja);
    row("quoted, Windows line ends", "[Language]\r\nCode=\"ja\"\r\n", Lang::Ja);
    row("capitals", "[Language]\nCode=EN\n", Lang::En);
    row("capitals of another", "[Language]\nCode=ID\n", Lang::En);
    row("unknown", "[Language]\nCode=tlh\n", Lang::En);
    row("empty", "[Language]\nCode=\n", Lang::En);
    row("key absent", "[Language]\nOther=ja\n", Lang::En);
    row("other section", "[Theme]\nCode=ja\n", Lang::En);
    row("a list", "[Language]\nCode=id, es\n", Lang::En);
    row("a serialized value", "[Language]\nCode=@ByteArray(\\xff)\n", Lang::En);
    row("no INI at all", QByteArray("\x00\xff[[=]\n;\\\nCode", 12), Lang::En);
    row("empty file", QByteArray(), Lang::En);
}

void LocalizationTest::load()
{
    QFETCH(QByteArray, content);
    writeSettings(content);
    // Neither English nor any expected result, so that only a load can bring the right answer.
    Tr::currentLang = kUnknownLang;
    Tr::loadSettings();
    QTEST(Tr::currentLang, "lang");
}

void LocalizationTest::loadWithoutFile()
{
    Tr::currentLang = Lang::Ja;
    Tr::loadSettings();
    QCOMPARE(Tr::currentLang, Lang::En);
    QVERIFY(!QFile::exists(settingsFile()));
}

void LocalizationTest::loadFromUnreadableFile()
{
    // A directory can't be read as a file by anybody, root included.
    QVERIFY(QDir().mkpath(settingsFile()));
    Tr::currentLang = Lang::Ja;
    Tr::loadSettings();
    QCOMPARE(Tr::currentLang, Lang::En);
}

void LocalizationTest::loadLeavesAnUnknownCode()
{
    const QByteArray content("[Language]\nCode=EN\n");
    writeSettings(content);
    Tr::loadSettings();
    QCOMPARE(settingsBytes(), content);
    Tr::setLanguage(Lang::Es);
    QCOMPARE(storedCode(), u"es"_s);
}

void LocalizationTest::setLanguageStores_data()
{
    codes_data();
    QTest::newRow("out of range") << kUnknownLang << u"en"_s;
}

void LocalizationTest::setLanguageStores()
{
    QFETCH(Lang, lang);
    QFETCH(QString, code);
    Tr::setLanguage(lang);
    QCOMPARE(Tr::currentLang, lang);
    QCOMPARE(settingsBytes().replace("\r\n", "\n"), "[Language]\nCode=" + code.toLatin1() + "\n");
    Tr::loadSettings();
    QCOMPARE(Tr::currentLang, Tr::langForCode(code));
}

void LocalizationTest::setLanguageKeepsOtherKeys()
{
    writeSettings("lastCategory=Work\n\n[Language]\nCode=tlh\n\n[Theme]\nForceTheme=2\n");
    Tr::setLanguage(Lang::Ja);
    const QSettings settings(settingsFile(), Settings::format());
    QCOMPARE(settings.value("Language/Code").toString(), u"ja"_s);
    QCOMPARE(sorted(settings.allKeys()),
             QStringList({u"Language/Code"_s, u"Theme/ForceTheme"_s, u"lastCategory"_s}));
    QCOMPARE(settings.value("Theme/ForceTheme").toInt(), 2);
}

void LocalizationTest::setLanguageStoresTheCurrentLanguageToo()
{
    Tr::setLanguage(Lang::Id);
    QVERIFY(QFile::remove(settingsFile()));
    Tr::setLanguage(Lang::Id);
    QCOMPARE(storedCode(), u"id"_s);
}

void LocalizationTest::setLanguageWithoutWritableFile()
{
    QVERIFY(QDir().mkpath(settingsFile()));
    Tr::setLanguage(Lang::Es);
    QCOMPARE(Tr::t(u"dialog.btn_save"_s), u"Guardar"_s);
    Tr::loadSettings();
    QCOMPARE(Tr::currentLang, Lang::En);
}

void LocalizationTest::thereAndBack()
{
    Tr::setLanguage(Lang::Ja);
    QCOMPARE(Tr::t(u"main.tray_show"_s), u"表示"_s);
    Tr::setLanguage(Lang::En);
    QCOMPARE(Tr::t(u"main.tray_show"_s), u"Show"_s);
    QCOMPARE(storedCode(), u"en"_s);
}

QTEST_MAIN(LocalizationTest)
#include "tst_localization.moc"
