// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DesktopEntry.h"
#include "TestFiles.h"
#include "TestHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <algorithm>
#include <memory>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr QByteArrayView kAllLocales("Name=Colour\n"
                                     "Name[sr]=sr\n"
                                     "Name[sr_RS]=sr_RS\n"
                                     "Name[sr@latin]=sr@latin\n"
                                     "Name[sr_RS@latin]=sr_RS@latin\n"
                                     "Name[de]=Farbe\n"
                                     "Name[en_GB]=British\n"
                                     "Name[fr.UTF-8]=Couleur\n");

QByteArray inGroup(QByteArrayView lines)
{
    return QByteArray("[Desktop Entry]\nType=Application\n").append(lines);
}

DesktopEntry parsed(QByteArrayView lines, QByteArrayView locale = {})
{
    return DesktopEntry::parse(inGroup(lines), EntryLocale(locale)).value_or(DesktopEntry());
}

void addRow(const char* title, const char* text, const QStringList& words)
{
    QTest::newRow(title) << QString::fromUtf8(text) << words;
}

} // namespace

class DesktopEntryTest : public QObject, private TestTree
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();

    void localeRanksTags_data();
    void localeRanksTags();
    void localeComesFromTheEnvironment_data();
    void localeComesFromTheEnvironment();
    void nameFollowsTheLocale_data();
    void nameFollowsTheLocale();
    void iconFollowsTheLocale();
    void groupIsFound_data();
    void groupIsFound();
    void nameIsRead_data();
    void nameIsRead();
    void valuesAreRead();
    void booleansAreRead_data();
    void booleansAreRead();
    void listsAreSplit_data();
    void listsAreSplit();
    void desktopsDecide_data();
    void desktopsDecide();
    void commandIsResolved_data();
    void commandIsResolved();
    void brokenCommandIsRefused_data();
    void brokenCommandIsRefused();
    void fieldCodesTakeTheEntrysValues_data();
    void fieldCodesTakeTheEntrysValues();
    void busNameComesFromTheFile_data();
    void busNameComesFromTheFile();
    void damagedEntriesAreSurvived();
    void hugeLineIsSurvived();

    void dataFoldersComeFromTheEnvironment_data();
    void dataFoldersComeFromTheEnvironment();
    void foldersGiveIds();
    void orderIsThatOfTheIds();
    void sameIdInOneFolder();
    void linkedFoldersAreReadOnce();
    void linkedFolderElsewhere();
    void numberOfFoldersIsBounded();
    void missingFolderHoldsNothing();
    void idIsFoundByPrecedence();
    void plainFilesAreRead_data();
    void plainFilesAreRead();
    void programsAreFound_data();
    void programsAreFound();

private:
    void link(const QString& target, const QString& name) const;
    QStringList idsIn(const QString& dataFolder) const;
};

void DesktopEntryTest::init()
{
    makeRoot();
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        qunsetenv(variable);
}

void DesktopEntryTest::link(const QString& target, const QString& name) const
{
    QVERIFY(QDir().mkpath(QFileInfo(path(name)).path()));
    // As written: QFile would make a relative target absolute.
    QCOMPARE(::symlink(qPrintable(target), qPrintable(path(name))), 0);
}

QStringList DesktopEntryTest::idsIn(const QString& dataFolder) const
{
    QStringList ids;
    for (const DesktopEntries::File& file : DesktopEntries::filesIn(path(dataFolder)))
        ids.append(QString::fromUtf8(file.id));
    return ids;
}

void DesktopEntryTest::localeRanksTags_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<int>("rank");
    const auto row = [](const char* locale, const char* tag, int rank) {
        QTest::addRow("%s reads %s", locale, tag) << QByteArray(locale) << QByteArray(tag) << rank;
    };
    const int none = EntryLocale::NoMatch;
    row("sr_RS.UTF-8@latin", "sr_RS@latin", 4);
    row("sr_RS.UTF-8@latin", "sr_RS", 3);
    row("sr_RS.UTF-8@latin", "sr@latin", 2);
    row("sr_RS.UTF-8@latin", "sr", 1);
    row("sr_RS.UTF-8@latin", "sr_ME", none);
    row("sr_RS.UTF-8@latin", "sr@cyrillic", none);
    row("sr_RS.UTF-8@latin", "sr_ME@latin", none);
    row("sr_RS", "sr_RS@latin", none);
    row("sr_RS", "sr@latin", none);
    row("sr@latin", "sr_RS@latin", none);
    row("sr@latin", "sr_RS", none);
    row("sr@latin", "sr@latin", 2);
    row("de", "de_DE", none);
    row("de", "de", 1);
    row("de_DE", "de_DE.ISO-8859-1", 3);
    row("de_DE.UTF-8", "DE", none);
    row("de_DE.UTF-8", "deu", none);
    row("deu", "de", none);
    row("de", "", none);
    row("de", "_DE", none);
    row("", "", none);
    row("", "de", none);
    row("C", "C", none);
    row("C.UTF-8", "C", none);
    row("POSIX", "POSIX", none);
    row("_DE", "_DE", none);
    row("@latin", "@latin", none);
}

void DesktopEntryTest::localeRanksTags()
{
    QFETCH(QByteArray, locale);
    QFETCH(QByteArray, tag);
    QTEST(EntryLocale(locale).rankOf(tag), "rank");
}

void DesktopEntryTest::localeComesFromTheEnvironment_data()
{
    QTest::addColumn<QByteArray>("lcAll");
    QTest::addColumn<QByteArray>("lcMessages");
    QTest::addColumn<QByteArray>("lang");
    QTest::addColumn<QByteArray>("language");
    const auto row = [](const char* title, const char* lcAll, const char* lcMessages,
                        const char* lang, const char* language) {
        QTest::newRow(title) << QByteArray(lcAll) << QByteArray(lcMessages) << QByteArray(lang)
                             << QByteArray(language);
    };
    row("nothing", "", "", "", "");
    row("the general one", "", "", "de_DE.UTF-8", "de");
    row("messages before the general one", "", "fr_FR.UTF-8", "de_DE.UTF-8", "fr");
    row("all before messages", "ja_JP.UTF-8", "fr_FR.UTF-8", "de_DE.UTF-8", "ja");
    row("all of them plain", "C", "fr_FR.UTF-8", "de_DE.UTF-8", "");
}

void DesktopEntryTest::localeComesFromTheEnvironment()
{
    QFETCH(QByteArray, lcAll);
    QFETCH(QByteArray, lcMessages);
    QFETCH(QByteArray, lang);
    QFETCH(QByteArray, language);
    qputenv("LC_ALL", lcAll); // which, when empty, counts as unset
    qputenv("LC_MESSAGES", lcMessages);
    qputenv("LANG", lang);
    const EntryLocale locale = EntryLocale::ofEnvironment();
    for (const char* tag : {"de", "fr", "ja"})
        QCOMPARE(locale.rankOf(tag) > 0, language == tag);
}

void DesktopEntryTest::nameFollowsTheLocale_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QString>("name");
    const auto row = [](const char* locale, const char* name) {
        QTest::newRow(locale) << QByteArray(locale) << QString::fromUtf8(name);
    };
    row("C", "Colour");
    row("en_US.UTF-8", "Colour");
    row("en_GB.UTF-8", "British");
    row("de_AT.UTF-8", "Farbe");
    row("fr_FR.UTF-8", "Couleur");
    row("sr", "sr");
    row("sr_RS.UTF-8", "sr_RS");
    row("sr_ME.UTF-8", "sr");
    row("sr_ME.UTF-8@latin", "sr@latin");
    row("sr_RS.UTF-8@latin", "sr_RS@latin");
    row("sr_RS@other", "sr_RS");
    row("ja_JP.UTF-8", "Colour");
}

void DesktopEntryTest::nameFollowsTheLocale()
{
    QFETCH(QByteArray, locale);
    QTEST(parsed(kAllLocales, locale).name, "name");
    // The order in the file makes no difference.
    QByteArrayList lines = kAllLocales.toByteArray().split('\n');
    std::reverse(lines.begin(), lines.end());
    QTEST(parsed(lines.join('\n'), locale).name, "name");
}

void DesktopEntryTest::iconFollowsTheLocale()
{
    QCOMPARE(parsed("Icon=a\nIcon[de]=b\n", "de_DE").icon, "b");
    QCOMPARE(parsed("Icon=a\nIcon[de]=b\n", "fr").icon, "a");
}

void DesktopEntryTest::groupIsFound_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isEntry");
    const auto row = [](const char* title, const QByteArray& content, bool isEntry) {
        QTest::newRow(title) << content << isEntry;
    };
    row("least", "[Desktop Entry]\nType=Application", true);
    row("nothing", "", false);
    row("blanks", " \n\t\n", false);
    row("comment alone", "# [Desktop Entry]\n", false);
    row("no group", "Type=Application\nName=A\n", false);
    row("group without a type", "[Desktop Entry]\nName=A\n", false);
    row("empty type", "[Desktop Entry]\nType=\n", false);
    row("an address", "[Desktop Entry]\nType=Link\nURL=https://example.org\n", false);
    row("a folder", "[Desktop Entry]\nType=Directory\n", false);
    row("type in another case", "[Desktop Entry]\nType=application\n", false);
    row("localised type is no type", "[Desktop Entry]\nType[de]=Application\n", false);
    row("key in another case", "[Desktop Entry]\ntype=Application\n", false);
    row("comments and blanks first", "# one\n\n \t# two\n[Desktop Entry]\nType=Application\n",
        true);
    row("line before the group", "stray\n[Desktop Entry]\nType=Application\n", false);
    row("value before the group", "A=b\n[Desktop Entry]\nType=Application\n", false);
    row("another group first", "[Other]\nA=b\n[Desktop Entry]\nType=Application\n", false);
    row("type in a later group", "[Desktop Entry]\nName=A\n[Other]\nType=Application\n", false);
    row("type in a second main group",
        "[Desktop Entry]\nName=A\n[Desktop Entry]\nType=Application\n", false);
    row("group in another case", "[desktop entry]\nType=Application\n", false);
    row("group without its end", "[Desktop Entry\nType=Application\n", false);
    row("group with more behind", "[Desktop Entry] x\nType=Application\n", false);
    row("group with blanks around", "  [Desktop Entry] \t\nType=Application\n", true);
    row("Windows line ends", "[Desktop Entry]\r\nType=Application\r\n", true);
    row("old line ends", "[Desktop Entry]\rType=Application\r", false);
    row("byte order mark", "\xef\xbb\xbf[Desktop Entry]\nType=Application\n", true);
    row("half a byte order mark", "\xef\xbb[Desktop Entry]\nType=Application\n", false);
    row("stray lines", "[Desktop Entry]\nstray\n==\n=\n]\nType=Application\n", true);
    row("blanks around the sign", "[Desktop Entry]\n Type \t= \tApplication \n", true);
    row("a zero", QByteArray("[Desktop Entry]\nType=Application\nName=a\0b\n", 42), false);
    row("other encoding", "[Desktop Entry]\nType=Application\nName=\xe9\xff\n", true);
    row("two types, the later counts", "[Desktop Entry]\nType=Link\nType=Application\n", true);
    row("a picture", "\x89PNG\r\n\x1a\n", false);
}

void DesktopEntryTest::groupIsFound()
{
    QFETCH(QByteArray, content);
    QTEST(DesktopEntry::parse(content, EntryLocale()).has_value(), "isEntry");
}

void DesktopEntryTest::nameIsRead_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("name");
    const auto row = [](const char* title, const QByteArray& lines, const char* name) {
        QTest::newRow(title) << lines << QString::fromUtf8(name);
    };
    row("word", "Name=Editor", "Editor");
    row("several scripts", "Name=\xc3\x91 \xe6\x97\xa5\xe6\x9c\xac", "Ñ 日本");
    row("none", "", "");
    row("empty", "Name=", "");
    row("blanks at the ends go", "Name=  Text  Editor \t", "Text  Editor");
    row("carriage return goes", "Name=Editor\r\n", "Editor");
    row("escapes", R"(Name=\sa\sb\tc\nd\re\\f)", " a b\tc\nd\re\\f");
    row("escape of an escape", R"(Name=a\\sb)", "a\\sb");
    row("unknown escapes stay", R"(Name=a\qb\"c\;)", R"(a\qb\"c\;)");
    row("escape at the end", R"(Name=a\)", "a\\");
    row("signs in the value", "Name=a=b[c]#d;e", "a=b[c]#d;e");
    row("the later of two", "Name=a\nName=b", "b");
    row("the later of two unless it is empty", "Name=a\nName=", "a");
    row("comments", "#Name=a\nName=b\n #Name=c", "b");
    row("other groups", "Name=a\n[Desktop Action New]\nName=b", "a");
    row("a second main group", "Name=a\n[Desktop Entry]\nName=b", "a");
    row("a group that is none ends it too", "Name=a\n[Broken\nName=b", "a");
    row("empty tag", "Name=a\nName[]=b", "a");
    row("tag without an end", "Name=a\nName[de=b", "a");
    row("tag without a beginning", "Name=a\nNamede]=b", "a");
    row("tag of tags", "Name=a\nName[[de]]=b", "a");
    row("longer key", "Name=a\nNames=b\nX-Name=c\nGenericName=d", "a");
    row("broken text", "Name=a\xff\xc3z", "a\uFFFD\uFFFDz");
    row("empty in the user's language", "Name=a\nName[de]=", "a");
    row("in the user's language alone", "Name[de]=b", "b");
    row("in another language alone", "Name[fr]=b", "");
    row("twice in the user's language", "Name[de]=a\nName[de]=b", "b");
}

void DesktopEntryTest::nameIsRead()
{
    QFETCH(QByteArray, lines);
    QTEST(parsed(lines, "de_DE.UTF-8").name, "name");
}

void DesktopEntryTest::valuesAreRead()
{
    const DesktopEntry entry = parsed("Exec=run \\\\x\nTryExec=/bin/a\\sb\nPath=/tmp/x y\n"
                                      "Icon=pic.png\nOnlyShowIn=A;B\nNotShowIn=C;\n"
                                      "Hidden=true\nNoDisplay=true\nTerminal=true\n"
                                      "DBusActivatable=true\n");
    QCOMPARE(entry.exec, R"(run \x)");
    QCOMPARE(entry.tryExec, "/bin/a b");
    QCOMPARE(entry.workingDirectory, "/tmp/x y");
    QCOMPARE(entry.icon, "pic.png");
    QCOMPARE(entry.onlyShowIn, (QStringList{"A", "B"}));
    QCOMPARE(entry.notShowIn, QStringList{"C"});
    QVERIFY(entry.isHidden && entry.isNotDisplayed && entry.isTerminal && entry.isBusActivatable);
    const DesktopEntry bare = parsed("");
    QVERIFY(!bare.isHidden && !bare.isNotDisplayed && !bare.isTerminal && !bare.isBusActivatable);
    QVERIFY(bare.exec.isEmpty() && bare.onlyShowIn.isEmpty() && bare.notShowIn.isEmpty());
}

void DesktopEntryTest::booleansAreRead_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("isTrue");
    QTest::newRow("true") << QByteArray("true") << true;
    QTest::newRow("old true") << QByteArray("1") << true;
    QTest::newRow("blanks") << QByteArray(" true \r") << true;
    QTest::newRow("false") << QByteArray("false") << false;
    QTest::newRow("old false") << QByteArray("0") << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("other case") << QByteArray("True") << false;
    QTest::newRow("other word") << QByteArray("yes") << false;
    QTest::newRow("longer") << QByteArray("truer") << false;
    QTest::newRow("the later counts") << QByteArray("true\nHidden=false") << false;
}

void DesktopEntryTest::booleansAreRead()
{
    QFETCH(QByteArray, value);
    QTEST(parsed("Hidden=" + value).isHidden, "isTrue");
}

void DesktopEntryTest::listsAreSplit_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QStringList>("list");
    QTest::newRow("empty") << QByteArray() << QStringList();
    QTest::newRow("separators") << QByteArray(";;") << QStringList();
    QTest::newRow("one") << QByteArray("A") << QStringList{"A"};
    QTest::newRow("closed") << QByteArray("A;B;") << QStringList{"A", "B"};
    QTest::newRow("open") << QByteArray("A;B") << QStringList{"A", "B"};
    QTest::newRow("escaped") << QByteArray(R"(A\;B;C)") << QStringList{"A;B", "C"};
    QTest::newRow("escape before a separator")
        << QByteArray(R"(A\\;B)") << QStringList{R"(A\)", "B"};
    QTest::newRow("other escapes") << QByteArray(R"(A\sB;\q)") << QStringList{"A B", R"(\q)"};
    QTest::newRow("escape at the end") << QByteArray(R"(A;\)") << QStringList{"A", R"(\)"};
}

void DesktopEntryTest::listsAreSplit()
{
    QFETCH(QByteArray, value);
    QTEST(parsed("OnlyShowIn=" + value).onlyShowIn, "list");
}

void DesktopEntryTest::desktopsDecide_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QStringList>("desktops");
    QTest::addColumn<bool>("isShown");
    const QByteArray only = "OnlyShowIn=A;B;";
    const QByteArray except = "NotShowIn=A;B;";
    QTest::newRow("no word, no desktop") << QByteArray() << QStringList() << true;
    QTest::newRow("no word") << QByteArray() << QStringList{"A"} << true;
    QTest::newRow("only, no desktop") << only << QStringList() << false;
    QTest::newRow("only, that one") << only << QStringList{"B"} << true;
    QTest::newRow("only, another one") << only << QStringList{"C"} << false;
    QTest::newRow("only, one of several") << only << QStringList{"C", "A"} << true;
    QTest::newRow("only, another case") << only << QStringList{"a"} << false;
    QTest::newRow("only for none is no word")
        << QByteArray("OnlyShowIn=;") << QStringList() << true;
    QTest::newRow("not, no desktop") << except << QStringList() << true;
    QTest::newRow("not, that one") << except << QStringList{"A"} << false;
    QTest::newRow("not, another one") << except << QStringList{"C"} << true;
    QTest::newRow("not, one of several") << except << QStringList{"C", "B"} << false;
    const QByteArray both = "OnlyShowIn=A;\nNotShowIn=B;";
    QTest::newRow("both, the first desktop with a word decides for")
        << both << QStringList{"A", "B"} << true;
    QTest::newRow("both, the first desktop with a word decides against")
        << both << QStringList{"B", "A"} << false;
    QTest::newRow("both, neither") << both << QStringList{"C"} << false;
}

void DesktopEntryTest::desktopsDecide()
{
    QFETCH(QByteArray, lines);
    QFETCH(QStringList, desktops);
    QTEST(parsed(lines).isShownIn(desktops), "isShown");
}

void DesktopEntryTest::commandIsResolved_data()
{
    QTest::addColumn<QString>("exec");
    QTest::addColumn<QStringList>("words");
    addRow("program", "run", {"run"});
    addRow("arguments", "run a  b\tc ", {"run", "a", "b", "c"});
    addRow("quoted", R"(run "a b" "c")", {"run", "a b", "c"});
    addRow("quoted program", R"("/opt/my app/run" x)", {"/opt/my app/run", "x"});
    addRow("empty argument", R"(run "" x)", {"run", "", "x"});
    addRow("escapes in quotes", R"(run "\"\`\$\\")", {"run", R"("`$\)"});
    addRow("other escapes in quotes stay", R"(run "\a\%%")", {"run", R"(\a\%)"});
    addRow("quotes in the middle", R"(run --x="a b"c)", {"run", "--x=a bc"});
    addRow("single quotes", R"(run 'a "b" \c')", {"run", R"(a "b" \c)"});
    addRow("one kind of quote in the other", R"(run "it's" '"')", {"run", "it's", "\""});
    addRow("escapes outside of quotes", R"(run a\ b C:\\x \"q)", {"run", "a b", "C:\\x", "\"q"});
    addRow("no shell", "run $HOME ~ * a;b a|b a&b >c #d", //
           {"run", "$HOME", "~", "*", "a;b", "a|b", "a&b", ">c", "#d"});
    addRow("line end parts words", "run a\nb\rc", {"run", "a", "b", "c"});
    addRow("several scripts", "ñ 日本 😀", {"ñ", "日本", "😀"});
    addRow("no files", "run %f %F %u %U", {"run"});
    addRow("no files in between", "run %U -- %f x", {"run", "--", "x"});
    addRow("no file within a word", "run --file=%f x%Uy", {"run", "--file=", "xy"});
    addRow("no file in quotes", R"(run "%F" 'a%f')", {"run", "a"});
    addRow("codes out of use", "run %d %D %n %N %v %m x%m", {"run", "x"});
    addRow("percent sign", "run 100%% %%f a%%%%b", {"run", "100%", "%f", "a%%b"});
    addRow("percent sign in quotes", R"(run "%%c")", {"run", "%c"});
    addRow("code as program", "%f run", {"run"});
}

void DesktopEntryTest::commandIsResolved()
{
    QFETCH(QString, exec);
    DesktopEntry entry;
    entry.exec = exec;
    QTEST(entry.command("/a.desktop").value_or(QStringList{"broken"}), "words");
}

void DesktopEntryTest::brokenCommandIsRefused_data()
{
    QTest::addColumn<QString>("exec");
    QTest::newRow("empty") << "";
    QTest::newRow("blanks") << " \t\n";
    QTest::newRow("open quote") << "run \"a";
    QTest::newRow("open single quote") << "run 'a";
    QTest::newRow("quote alone") << "run \"";
    QTest::newRow("escaped end of the quote") << R"(run "a\")";
    QTest::newRow("escape at the end") << R"(run a\)";
    QTest::newRow("empty program") << R"("" x)";
    QTest::newRow("codes alone") << "%f %U";
    QTest::newRow("unknown code") << "run %x";
    QTest::newRow("unknown code in quotes") << "run \"%Y\"";
    QTest::newRow("unknown code in a word") << "run +%H";
    QTest::newRow("code in another case") << "run %C";
    QTest::newRow("percent sign at the end") << "run %";
    QTest::newRow("percent sign before a blank") << "run % f";
    QTest::newRow("percent sign at the end of a quote") << "run \"a%\"";
}

void DesktopEntryTest::brokenCommandIsRefused()
{
    QFETCH(QString, exec);
    DesktopEntry entry;
    entry.exec = exec;
    QVERIFY(!entry.command("/a.desktop"));
}

void DesktopEntryTest::fieldCodesTakeTheEntrysValues_data()
{
    QTest::addColumn<QString>("exec");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QStringList>("words");
    const auto row = [](const char* title, const char* exec, const char* icon,
                        const QStringList& words) {
        QTest::newRow(title) << QString::fromUtf8(exec) << QString::fromUtf8(icon) << words;
    };
    row("name is one argument", "run %c", "", {"run", "My \"App\" %f"});
    row("name in a word", "run --title=%c!", "", {"run", "--title=My \"App\" %f!"});
    row("name in quotes", "run \"%c\"", "", {"run", "My \"App\" %f"});
    row("place", "run %k", "", {"run", "/some where/a.desktop"});
    row("icon is two arguments", "run %i x", "pic", {"run", "--icon", "pic", "x"});
    row("icon with a blank", "run %i", "/a b.png", {"run", "--icon", "/a b.png"});
    row("no icon", "run %i x", "", {"run", "x"});
    row("icon within a word is nothing", "run x%i", "pic", {"run", "x"});
    row("icon twice", "run %i %i", "p", {"run", "--icon", "p", "--icon", "p"});
}

void DesktopEntryTest::fieldCodesTakeTheEntrysValues()
{
    QFETCH(QString, exec);
    QFETCH(QString, icon);
    DesktopEntry entry;
    entry.name = "My \"App\" %f"; // nothing in a value is a quote or a code
    entry.icon = icon;
    entry.exec = exec;
    QTEST(entry.command("/some where/a.desktop").value_or(QStringList()), "words");
}

void DesktopEntryTest::busNameComesFromTheFile_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    const auto row = [](const char* title, const QString& path, const QString& name) {
        QTest::newRow(title) << path << name;
    };
    row("usual", "/a/org.foo.Bar.desktop", "org.foo.Bar");
    row("dash, line and digits", "/a/org.foo-x._b9.desktop", "org.foo-x._b9");
    row("one element", "/a/editor.desktop", "");
    row("digit in front", "/a/org.7zip.App.desktop", "");
    row("empty element", "/a/org..App.desktop", "");
    row("empty element in front", "/a/.org.App.desktop", "");
    row("blank", "/a/org.my app.desktop", "");
    row("letter beyond ASCII", QString::fromUtf8("/a/org.é.desktop"), "");
    row("longest", "/a/o." + QString(253, 'x') + ".desktop", "o." + QString(253, 'x'));
    row("too long", "/a/o." + QString(254, 'x') + ".desktop", "");
}

void DesktopEntryTest::busNameComesFromTheFile()
{
    QFETCH(QString, path);
    QTEST(DesktopEntry::busName(path), "name");
}

/// A whole entry, cut off or changed in any one place, gives a part of it or nothing.
void DesktopEntryTest::damagedEntriesAreSurvived()
{
    const QByteArray whole = inGroup("Name=A\\sb\nName[de_DE@x]=B\nExec=\"a\\\\\\\\b\" 'c' %c %i\n"
                                     "OnlyShowIn=A\\;;B\nIcon=x\nTerminal=true\n[Other]\nX=y\n");
    const EntryLocale locale("de_DE.UTF-8@x");
    const auto check = [&locale](const QByteArray& content) {
        const std::optional<DesktopEntry> entry = DesktopEntry::parse(content, locale);
        const auto words = entry.value_or(DesktopEntry()).command("/x");
        return !words || !words->constFirst().isEmpty();
    };
    QVERIFY(DesktopEntry::parse(whole, locale)->command("/x"));
    for (qsizetype i = 0; i < whole.size(); ++i) {
        QVERIFY(check(whole.first(i)));
        for (const char byte : {'\0', '\n', '[', ']', '=', '\\', '"', '%', ';', '\xff'}) {
            QByteArray changed = whole;
            changed[i] = byte;
            QVERIFY(check(changed));
        }
    }
}

void DesktopEntryTest::hugeLineIsSurvived()
{
    const QByteArray many(1 << 20, '\\');
    const DesktopEntry entry = parsed("Name=" + many + "\nExec=" + many + "\n");
    QCOMPARE(entry.name.size(), many.size() / 2);
    QVERIFY(entry.command("/x"));
    QCOMPARE(parsed("OnlyShowIn=" + QByteArray(1 << 20, ';') + "A").onlyShowIn, QStringList{"A"});
}

void DesktopEntryTest::dataFoldersComeFromTheEnvironment_data()
{
    QTest::addColumn<QByteArray>("home");
    QTest::addColumn<QByteArray>("dirs");
    QTest::addColumn<QStringList>("folders");
    const QString own = QDir::homePath() + "/.local/share";
    const QStringList usual{"/usr/local/share", "/usr/share"};
    const auto row = [](const char* title, const char* home, const char* dirs,
                        const QStringList& folders) {
        QTest::newRow(title) << QByteArray(home) << QByteArray(dirs) << folders;
    };
    row("unset", "", "", QStringList{own} + usual);
    row("both", "/h", "/a:/b", {"/h", "/a", "/b"});
    row("own alone", "/h", "", QStringList{"/h"} + usual);
    row("shared alone", "", "/a", {own, "/a"});
    row("relative own", "h", "/a", {own, "/a"});
    row("relative shared", "/h", "x:/a:./y:~/z", {"/h", "/a"});
    row("relative shared alone", "/h", "x:y", QStringList{"/h"} + usual);
    row("empty parts", "/h", "::/a::", {"/h", "/a"});
    row("slashes at the end", "/h/", "/a/:/b//", {"/h", "/a", "/b"});
    row("repeated", "/h", "/a:/h:/a/:/b", {"/h", "/a", "/b"});
}

void DesktopEntryTest::dataFoldersComeFromTheEnvironment()
{
    QFETCH(QByteArray, home);
    QFETCH(QByteArray, dirs);
    const QByteArray oldHome = qgetenv("XDG_DATA_HOME");
    const QByteArray oldDirs = qgetenv("XDG_DATA_DIRS");
    qputenv("XDG_DATA_HOME", home);
    qputenv("XDG_DATA_DIRS", dirs);
    const QStringList found = DesktopEntries::dataFolders();
    qputenv("XDG_DATA_HOME", oldHome);
    qputenv("XDG_DATA_DIRS", oldDirs);
    QTEST(found, "folders");
}

void DesktopEntryTest::foldersGiveIds()
{
    for (const char* name : {"a.desktop", "vendor/b.desktop", "x/y/z/c.desktop", "d.desktop.bak",
                             "desktop", "e.Desktop", ".hidden.desktop", ".bin/f.desktop",
                             "folder.desktop/g.desktop", "vendor/mimeinfo.cache"})
        write(QStringLiteral("data/applications/") + QLatin1String(name));
    write("data/outside.desktop");
    const QByteArray noText = QFile::encodeName(path("data/applications/")) + "\xff.desktop";
    QCOMPARE(::symlink("a.desktop", noText.constData()), 0);
    const QStringList ids = idsIn("data");
    QCOMPARE(::unlink(noText.constData()), 0); // nor could Qt remove it with its folder
    QCOMPARE(ids, (QStringList{"a.desktop", "folder.desktop-g.desktop", "vendor-b.desktop",
                               "x-y-z-c.desktop"}));
    const auto files = DesktopEntries::filesIn(path("data"));
    QCOMPARE(QFile::decodeName(files.at(2).path), path("data/applications/vendor/b.desktop"));
}

void DesktopEntryTest::orderIsThatOfTheIds()
{
    QStringList ids;
    for (int i = 0; i < 60; ++i)
        ids.append(QStringLiteral("%1.desktop").arg(i * 7919 % 60, 2, 10, QLatin1Char('0')));
    for (const QString& id : ids)
        write("one/applications/" + id);
    std::reverse(ids.begin(), ids.end());
    for (const QString& id : ids)
        write("two/applications/" + id);
    ids.sort();
    QCOMPARE(idsIn("one"), ids);
    QCOMPARE(idsIn("two"), ids);
}

void DesktopEntryTest::sameIdInOneFolder()
{
    for (const char* name : {"a/b/c.desktop", "a/b-c.desktop", "a-b/c.desktop", "a-b-c.desktop"})
        write(QStringLiteral("data/applications/") + QLatin1String(name));
    QStringList paths;
    for (const DesktopEntries::File& file : DesktopEntries::filesIn(path("data"))) {
        QCOMPARE(file.id, QByteArray("a-b-c.desktop"));
        paths.append(
            QDir(path("data/applications")).relativeFilePath(QString::fromUtf8(file.path)));
    }
    QCOMPARE(paths,
             (QStringList{"a-b-c.desktop", "a-b/c.desktop", "a/b-c.desktop", "a/b/c.desktop"}));
}

void DesktopEntryTest::linkedFoldersAreReadOnce()
{
    write("data/applications/zoo/real.desktop");
    write("data/applications/top.desktop");
    link(".", "data/applications/self");
    link("../..", "data/applications/zoo/up");
    link("zoo", "data/applications/alias"); // comes before the real one by name
    link("loop", "data/applications/loop");
    link("loop2.desktop", "data/applications/loop2.desktop");
    link("/nonexistent", "data/applications/nowhere");
    QCOMPARE(idsIn("data"), (QStringList{"loop2.desktop", "top.desktop", "zoo-real.desktop"}));
}

void DesktopEntryTest::linkedFolderElsewhere()
{
    write("elsewhere/deep/a.desktop");
    write("elsewhere/b.desktop");
    link(path("elsewhere"), "data/applications/two");
    link(path("elsewhere"), "data/applications/one");
    link(path("elsewhere/b.desktop"), "data/applications/c.desktop");
    QCOMPARE(idsIn("data"), (QStringList{"c.desktop", "one-b.desktop", "one-deep-a.desktop"}));
    link("../real-applications", "linked/applications");
    write("real-applications/d.desktop");
    QCOMPARE(idsIn("linked"), QStringList{"d.desktop"});
}

void DesktopEntryTest::numberOfFoldersIsBounded()
{
    constexpr int kFolders = 1100;
    for (int i = 0; i < kFolders; ++i)
        write(QStringLiteral("data/applications/%1/a.desktop").arg(i, 4, 10, QLatin1Char('0')));
    const QStringList ids = idsIn("data");
    QCOMPARE(ids.size(), 999); // the top folder is the thousandth
    QCOMPARE(ids.constFirst(), "0000-a.desktop");
    QCOMPARE(ids.constLast(), "0998-a.desktop");
}

void DesktopEntryTest::missingFolderHoldsNothing()
{
    QVERIFY(DesktopEntries::filesIn(path("nowhere")).isEmpty());
    write("data/applications"); // a file
    QVERIFY(DesktopEntries::filesIn(path("data")).isEmpty());
    QCOMPARE(::mkfifo(qPrintable(path("nowhere")), 0600), 0);
    QVERIFY(DesktopEntries::filesIn(path("nowhere")).isEmpty());
}

void DesktopEntryTest::idIsFoundByPrecedence()
{
    const QByteArray oldHome = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", QFile::encodeName(path("own")));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(path("a") + ':' + path("b")));
    write("own/applications/v/x.desktop");
    write("a/applications/v-x.desktop");
    write("a/applications/y.desktop");
    write("b/applications/y.desktop");
    write("b/applications/Z.desktop");
    write("secret.desktop");
    const auto found = [this](const QString& id) {
        return QDir(root()).relativeFilePath(DesktopEntries::pathOfId(id));
    };
    QCOMPARE(found("v-x.desktop"), "own/applications/v/x.desktop");
    QCOMPARE(found("y.desktop"), "a/applications/y.desktop");
    QCOMPARE(found("Z.desktop"), "b/applications/Z.desktop");
    for (const char* id : {"z.desktop", "missing.desktop", "", "v/x.desktop",
                           "..-..-secret.desktop", "../../secret.desktop"})
        QCOMPARE(DesktopEntries::pathOfId(id), QString());
    qputenv("XDG_DATA_HOME", oldHome);
}

void DesktopEntryTest::plainFilesAreRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("size"); // -1 if it can't be read
    QTest::newRow("file") << "file" << 5;
    QTest::newRow("link to a file") << "link" << 5;
    QTest::newRow("empty") << "empty" << 0;
    QTest::newRow("largest") << "largest" << int(DesktopEntries::MaxFileBytes);
    QTest::newRow("too large") << "too large" << -1;
    QTest::newRow("enormous") << "enormous" << -1;
    QTest::newRow("missing") << "missing" << -1;
    QTest::newRow("folder") << "folder" << -1;
    QTest::newRow("pipe") << "pipe" << -1;
    QTest::newRow("link to a pipe") << "link to pipe" << -1;
    QTest::newRow("link to a device") << "zero" << -1;
    QTest::newRow("link to the terminal") << "tty" << -1;
    QTest::newRow("link to itself") << "self" << -1;
}

void DesktopEntryTest::plainFilesAreRead()
{
    QFETCH(QString, name);
    write("file", "12345");
    write("empty");
    write("largest", QByteArray(DesktopEntries::MaxFileBytes, 'x'));
    write("too large", QByteArray(DesktopEntries::MaxFileBytes + 1, 'x'));
    write("enormous");
    QCOMPARE(::truncate(qPrintable(path("enormous")), 1LL << 40), 0);
    QVERIFY(QDir().mkpath(path("folder")));
    QCOMPARE(::mkfifo(qPrintable(path("pipe")), 0600), 0);
    link("file", "link");
    link("pipe", "link to pipe");
    link("/dev/zero", "zero");
    link("/dev/tty", "tty");
    link("self", "self");
    QByteArray content = "left from the file before";
    const bool isRead = DesktopEntries::readFile(QFile::encodeName(path(name)), content);
    QTEST(isRead ? int(content.size()) : -1, "size");
}

void DesktopEntryTest::programsAreFound_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<bool>("isFound");
    QTest::newRow("on the search path") << "tool" << true;
    QTest::newRow("in a later folder") << "other" << true;
    QTest::newRow("not on it") << "missing" << false;
    QTest::newRow("not executable") << "text" << false;
    QTest::newRow("folder") << "folder" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("absolute") << "%1/bin/tool" << true;
    QTest::newRow("absolute, missing") << "%1/bin/missing" << false;
    QTest::newRow("absolute, not executable") << "%1/bin/text" << false;
    QTest::newRow("absolute folder") << "%1/bin/folder" << false;
    QTest::newRow("with arguments") << "tool x" << false;
    QTest::newRow("relative path") << "../bin/tool" << false;
    QTest::newRow("path below the search path") << "folder/inner" << false;
}

void DesktopEntryTest::programsAreFound()
{
    QFETCH(QString, program);
    for (const char* name : {"bin/tool", "bin/text", "bin/folder/inner", "more/other"})
        write(QLatin1String(name), "#!/bin/sh\n");
    for (const char* name : {"bin/tool", "bin/folder/inner", "more/other"})
        QVERIFY(
            QFile::setPermissions(path(QLatin1String(name)), QFile::ReadOwner | QFile::ExeOwner));
    const QByteArray searchPath = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(path("bin") + ':' + path("more")));
    const bool isFound =
        DesktopEntries::isProgram(program.contains("%1") ? program.arg(root()) : program);
    qputenv("PATH", searchPath);
    QTEST(isFound, "isFound");
}

QTEST_MAIN(DesktopEntryTest)
#include "tst_desktopentry.moc"
