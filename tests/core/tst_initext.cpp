// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "IniText.h"

#include "TestHome.h"

#include <QFile>
#include <QSettings>
#include <QSize>
#include <QTemporaryDir>
#include <QTest>

using IniText::RawValue;

class IniTextTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void asQtWritesIt_data();
    void asQtWritesIt();
    void readsWhatPeopleWrite_data();
    void readsWhatPeopleWrite();
    void objectsAreNotMade_data();
    void objectsAreNotMade();
    void sectionsAndKeys();
    void anyBytes_data();
    void anyBytes();
};

namespace
{

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly | QIODevice::Text) ? file.readAll() : QByteArray("(none)");
}

QByteArray writtenByQt(const QSettings::SettingsMap& values, const QString& path)
{
    QSettings settings(path, QSettings::IniFormat);
    for (auto it = values.begin(); it != values.end(); ++it)
        settings.setValue(it.key(), it.value());
    settings.sync();
    return contentOf(path);
}

/// In the order of their names. Qt keeps that of the calls on some systems.
QStringList sectionsOf(const QByteArray& text)
{
    QStringList sections = QString::fromUtf8(text).trimmed().split("\n\n");
    sections.sort();
    return sections;
}

} // namespace

void IniTextTest::asQtWritesIt_data()
{
    QTest::addColumn<QVariant>("value");
    const auto row = [](const char* name, const QVariant& value) { QTest::newRow(name) << value; };
    row("word", "dark");
    row("combination", "Ctrl+Alt+Space");
    row("colour", "#0284c7");
    row("empty", "");
    row("blanks at both ends", "  a b ");
    row("blank alone", " ");
    row("tabs at both ends", "\ta\t");
    row("comma", "a,b");
    row("semicolon", "a;b");
    row("equals sign", "a=b");
    row("quotes", R"("a" 'b' ?)");
    row("backslashes", R"(C:\x41\n\)");
    row("line feeds", "a\nb\r\nc");
    row("control characters", "\x01\x1F\x7F\a\b\f\v");
    row("digit behind a control character", "\x01"
                                            "1af\x02g");
    row("null character", "a" + QString(QChar(0)) + "1b");
    row("other letters", QStringLiteral("ñ 表示 😀"));
    row("at sign", "@home");
    row("two at signs", "@@home");
    row("looks like an object", "@Variant(x)");
    row("looks like an empty list", "@Invalid()");
    row("brackets", "[General]");
    row("number", 4);
    row("negative number", -1);
    row("truth", true);
    row("list", QStringList{"Application", "URL"});
    row("list of one", QStringList{"Application"});
    row("empty list", QStringList());
    row("list of what needs marks", QStringList{"@a", " b ", "c,d", "", "e\"f"});
}

/// In both directions: what earlier versions wrote by way of Qt is read, and other programs read
/// what this one writes.
void IniTextTest::asQtWritesIt()
{
    QFETCH(QVariant, value);
    const QSettings::SettingsMap values{{"Some/Key", value}, {"Some/second", "x"}, {"top", value}};
    const QTemporaryDir dir;
    const QByteArray text = writtenByQt(values, dir.filePath("qt.ini"));
    QCOMPARE(sectionsOf(IniText::format(values)), sectionsOf(text));

    const QSettings::SettingsMap parsed = IniText::parse(text);
    QCOMPARE(parsed.keys(), values.keys());
    if (value.metaType() == QMetaType::fromType<QStringList>())
        QCOMPARE(parsed["Some/Key"].toStringList(), value.toStringList());
    else
        QCOMPARE(parsed["Some/Key"], QVariant(value.toString()));
    QCOMPARE(parsed["Some/second"], QVariant("x"));
    QCOMPARE(parsed["top"], parsed["Some/Key"]);
    QCOMPARE(sectionsOf(IniText::format(parsed)), sectionsOf(text));
}

void IniTextTest::readsWhatPeopleWrite_data()
{
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char* name, const QByteArray& text) { QTest::newRow(name) << text; };
    row("blanks everywhere", "  [ Hotkey ]  \n\t Combo  =  Ctrl+F1  \n");
    row("without an end of line", "[Hotkey]\nCombo=Ctrl+F1");
    row("line ends of Windows", "[Hotkey]\r\nCombo=Ctrl+F1\r\n");
    row("quotes", "[Hotkey]\nCombo=\"Ctrl+F1\"\n");
    row("quotes around a part", "[Hotkey]\nCombo=Ctrl\"+\"F1\n");
    row("comment behind it", "[Hotkey]\nCombo=Ctrl+F1 ; the best\n");
    row("comment in front", "; Combo=x\n[Hotkey]\n;Combo=y\nCombo=Ctrl+F1\n;Combo=z\n");
    row("byte order mark", "\xEF\xBB\xBF[Hotkey]\nCombo=Ctrl+F1\n");
    row("escapes", "[Hotkey]\nCombo=\\x43trl\\53F\\x31\n");
    row("key written as a number", "[Hotke%79]\n%U0043ombo=Ctrl+F1\n");
    row("section in two pieces", "[Hotkey]\nx=1\n[Other]\nCombo=2\n[Hotkey]\nCombo=Ctrl+F1\n");
    row("twice", "[Hotkey]\nCombo=x\nCombo=Ctrl+F1\n");
    row("lines that make no sense", "=\n]\n[Hotkey]\nCombo\nCombo=Ctrl+F1\n=x\n \\\n");
    row("section without an end", "[Hotkey\nCombo=Ctrl+F1\n");
}

void IniTextTest::readsWhatPeopleWrite()
{
    QFETCH(QByteArray, text);
    QCOMPARE(IniText::parse(text).value("Hotkey/Combo"), QVariant("Ctrl+F1"));
    const QTemporaryDir dir;
    QFile file(dir.filePath("file.ini"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
    file.close();
    const QSettings settings(file.fileName(), QSettings::IniFormat);
    QCOMPARE(settings.value("Hotkey/Combo"), QVariant("Ctrl+F1"));
}

void IniTextTest::objectsAreNotMade_data()
{
    QTest::addColumn<QByteArray>("written");
    const auto row = [](const char* name, const QByteArray& text) { QTest::newRow(name) << text; };
    row("object", R"(@Variant(\0\0\0\x15\0\0\0\x1\0\0\0\x2))");
    row("time", R"(@DateTime(\0\0\0\x10\0\0\0\0\0\0%\x87h\0\x36\xee\x80\0))");
    row("size", "@Size(1 2)");
    row("bytes", "@ByteArray(abc)");
    row("none that there is", "@Nothing(abc)");
    row("first letters escaped", R"(\x40\x56\x61riant(\0\0\0\x15))");
    row("in octal", R"(\100Variant(\0))");
    row("quoted", "\"@Variant(a;b)\"");
    row("quoted in part", R"(@V"ariant"(\0))");
    row("behind blanks", "   @Variant(\\0)  ");
    row("in a list", R"(a, @Variant(\0), b)");
    row("bytes that are no text", "@Variant(\xff\xfe)");
    row("of no kind at all", "@()");
}

void IniTextTest::objectsAreNotMade()
{
    QFETCH(QByteArray, written);
    const QByteArray text = "[Some]\nafter=y\nbefore=x\nkey=" + written.trimmed() + '\n';
    const QSettings::SettingsMap values =
        IniText::parse("[Some]\nbefore=x\nkey=" + written + "\nafter=y\n");
    QCOMPARE(values["Some/before"], QVariant("x"));
    QCOMPARE(values["Some/after"], QVariant("y"));
    QCOMPARE(values["Some/key"].metaType(), QMetaType::fromType<RawValue>());
    // Whoever put it there finds it again.
    QCOMPARE(IniText::format(values), text);
}

void IniTextTest::sectionsAndKeys()
{
    const QSettings::SettingsMap values{{"lastCategory", "Work"},
                                        {"General/of its own", 1},
                                        {"general", "key"},
                                        {"Theme/SeedColor", "x"},
                                        {"Theme/deeper/key", "y"},
                                        {"a-b/c", 1},
                                        {"a/c", 2},
                                        {"a0/c", 3},
                                        {"a.b_c/%U0041", 4},
                                        {"with blanks/ü 表", "z"},
                                        {"Language/Code", "en"}};
    const QTemporaryDir dir;
    const QByteArray text = writtenByQt(values, dir.filePath("qt.ini"));
    const QSettings::SettingsMap parsed = IniText::parse(text);
    QCOMPARE(parsed.keys(), values.keys());
    QCOMPARE(IniText::parse(IniText::format(values)), parsed);
    const QByteArray own = IniText::format(values);
    QVERIFY2(own.startsWith("[General]\ngeneral=key\nlastCategory=Work\n\n["), own.constData());
}

void IniTextTest::anyBytes_data()
{
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char* name, const QByteArray& text) { QTest::newRow(name) << text; };
    row("empty", "");
    row("quote that is never closed", "[a]\nb=\"c\nd=e\n");
    row("backslash at the end", "[a]\nb=c\\\nd=e\n");
    row("escape that breaks off", "[a]\nb=\\x\nd=\\");
    row("long number", "[a]\nb=\\x123456789abcdef0\nd=\\777777777777\n");
    row("percent at the end", "[%]\n%=1\n%4=2\n%U00=3\n");
    row("slashes", "\\=1\na\\=2\n[\\]\nb=3\n[]\nc=4\n[d]\n\\e=5\nf\\=6\n");
    row("brackets", "[\n]\n[]\n[[]]\n");
    row("equals signs", "===\na==b\n");
    row("no text", QByteArray("\xff\xfe\0\x80=\xc3\n=\xc3\xa9", 10));
    row("many commas", "a=" + QByteArray(100000, ','));
    row("many quotes", "a=" + QByteArray(100000, '"'));
    row("many at signs", "a=" + QByteArray(100000, '@') + "()");
    row("many lines", QByteArray(100000, '\n'));
    row("many sections", QByteArray("[a]\n").repeated(100000));
}

void IniTextTest::anyBytes()
{
    QFETCH(QByteArray, text);
    const QByteArray once = IniText::format(IniText::parse(text));
    QCOMPARE(IniText::format(IniText::parse(once)), once);
    // What is written behind it is found again.
    QCOMPARE(IniText::parse(text + "\n[Theme]\nForceTheme=1\n").value("Theme/ForceTheme"),
             QVariant("1"));
}

QTEST_MAIN(IniTextTest)
#include "tst_initext.moc"
