// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AppIndex.h"
#include "DesktopFolders.h"
#include "InstalledApplications.h"
#include "ShellLaunch.h"
#include "TestHome.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QTest>

#include <algorithm>

#include <sys/stat.h>

namespace
{

const QString kBusName = QStringLiteral("org.example.My-App");

// 16 by 16, in one colour.
const QByteArray kDrawing = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16\" height=\"16\">"
                            "<rect width=\"16\" height=\"16\" fill=\"#ff00ff\"/></svg>";
const QByteArray kXpm = "/* XPM */\nstatic char *x[] = {\"1 1 1 1\", \"a c #ffff00\", \"a\"};\n";
constexpr char kDrawingColor[] = "#ff00ff";
constexpr char kXpmColor[] = "#ffff00";

/// Whether the Qt of this machine has what reads drawings, which comes in a package of its own.
bool canDraw()
{
    return QImageReader::supportedImageFormats().contains("svg");
}

} // namespace

/// Real entries in private folders for data.
class InstalledApplicationsTest : public QObject, private DesktopFolders
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void entryBecomesAnApplication();
    void entryIsOffered_data();
    void entryIsOffered();
    void firstIdWins_data();
    void firstIdWins();
    void orderIsFolderByFolder();
    void brokenFoldersAreSurvived();
    void namesFollowTheLocale();
    void idsThatDifferInCase();

    void iconIsFound_data();
    void iconIsFound();
    void looseIconIsFound_data();
    void looseIconIsFound();
    void drawingFitsEachSize_data();
    void drawingFitsEachSize();
    void iconIsMadeSmaller();
    void iconOfNoEntry_data();
    void iconOfNoEntry();
    void iconOfAnInstalledTheme();

private:
    void writeImage(const QString& name, int sizePx, const QColor& color) const;

    QByteArray m_searchPath;
};

void InstalledApplicationsTest::initTestCase()
{
    m_searchPath = qgetenv("PATH");
}

void InstalledApplicationsTest::init()
{
    makeFolders();
}

void InstalledApplicationsTest::cleanup()
{
    qputenv("PATH", m_searchPath);
}

void InstalledApplicationsTest::writeImage(const QString& name, int sizePx,
                                           const QColor& color) const
{
    QVERIFY(QDir().mkpath(QFileInfo(path(name)).path()));
    QImage image(sizePx, sizePx, QImage::Format_ARGB32);
    image.fill(color);
    QVERIFY(image.save(path(name), "PNG"));
}

void InstalledApplicationsTest::entryBecomesAnApplication()
{
    writeEntry("a/applications/org.Example.App.desktop", "Name=App One\nExec=tool\nIcon=x\n");
    writeEntry("a/applications/Vendor/Sub/App.desktop", "Name=App Two\nExec=tool\n");
    QVector<Platform::InstalledApplication> all;
    Platform::listInstalledApplications(
        [&all](const Platform::InstalledApplication& found) { all.append(found); });
    QCOMPARE(all.size(), 2);
    QCOMPARE(all.at(0).name, "App Two"); // upper case comes first
    QCOMPARE(all.at(0).key, "vendor-sub-app.desktop");
    QCOMPARE(all.at(0).launchPath, path("a/applications/Vendor/Sub/App.desktop"));
    QCOMPARE(all.at(1).name, "App One");
    QCOMPARE(all.at(1).key, "org.example.app.desktop");
    QCOMPARE(all.at(1).launchPath, path("a/applications/org.Example.App.desktop"));
    for (const Platform::InstalledApplication& application : all) {
        QVERIFY(application.isShellItem);
        QVERIFY(application.presetIcon.isNull());
    }
}

void InstalledApplicationsTest::entryIsOffered_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<bool>("isOffered");
    const auto row = [](const char* title, const QByteArray& lines, bool isOffered) {
        QTest::newRow(title) << lines << isOffered;
    };
    const QByteArray least = "Name=A\nExec=tool\n";
    row("least", least, true);
    row("no name", "Exec=tool\n", false);
    row("empty name", "Name=\nExec=tool\n", false);
    row("blank name", "Name=\\s\\t\nExec=tool\n", false);
    row("no command line", "Name=A\n", false);
    row("empty command line", "Name=A\nExec=\n", false);
    row("open quote", "Name=A\nExec=tool \"a\n", false);
    row("unknown field code", "Name=A\nExec=tool %x\n", false);
    row("program that is missing, about which no rule is", "Name=A\nExec=missing\n", true);
    row("another type", "Name=A\nExec=tool\nType=Link\n", false);
    row("hidden", least + "Hidden=true\n", false);
    row("not hidden", least + "Hidden=false\n", true);
    row("not displayed", least + "NoDisplay=true\n", false);
    row("displayed", least + "NoDisplay=false\n", true);
    row("in a terminal", least + "Terminal=true\n", true);
    row("only here", least + "OnlyShowIn=Here;\n", true);
    row("only in the second name of here", least + "OnlyShowIn=General;\n", true);
    row("only elsewhere", least + "OnlyShowIn=Elsewhere;\n", false);
    row("not here", least + "NotShowIn=X;Here;\n", false);
    row("not elsewhere", least + "NotShowIn=Elsewhere;\n", true);
    row("tried program is there", least + "TryExec=tool\n", true);
    row("tried program is there, by its path", least + "TryExec=/bin/sh\n", true);
    row("tried program is missing", least + "TryExec=missing\n", false);
    row("tried program is missing, by its path", least + "TryExec=/missing/tool\n", false);
    row("tried program can't be executed", least + "TryExec=/etc/passwd\n", false);
    row("nothing to try", least + "TryExec=\n", true);
    row("bus alone", "Name=A\nDBusActivatable=true\n", true);
    row("bus and command line", least + "DBusActivatable=true\n", true);
    row("bus and a broken command line", "Name=A\nExec='\nDBusActivatable=true\n", false);
    row("stray line", least + "stray\n", true);
    row("Windows line ends", "Name=A\r\nExec=tool\r\n", true);
    row("a zero", least + QByteArray("X=\0", 3), false);
    row("too large", least + QByteArray(1 << 20, '#'), false);
}

void InstalledApplicationsTest::entryIsOffered()
{
    QFETCH(QByteArray, lines);
    QFETCH(bool, isOffered);
    qputenv("XDG_CURRENT_DESKTOP", "Here::General");
    writeEntry("a/applications/" + kBusName + ".desktop", lines);
    QCOMPARE(namesOffered(), isOffered ? QStringList{"A"} : QStringList());
}

void InstalledApplicationsTest::firstIdWins_data()
{
    QTest::addColumn<QByteArray>("first"); // the whole file of the user's own
    QTest::addColumn<QString>("name");
    const auto row = [](const char* title, const QByteArray& first, const char* name) {
        QTest::newRow(title) << first << QString::fromLatin1(name);
    };
    const QByteArray group = "[Desktop Entry]\nType=Application\n";
    row("another entry", group + "Name=Own\nExec=tool\n", "Own");
    row("hidden", group + "Name=Own\nExec=tool\nHidden=true\n", "");
    row("hidden and nothing else", "[Desktop Entry]\nHidden=true\n", "");
    row("not displayed", group + "Name=Own\nExec=tool\nNoDisplay=true\n", "");
    row("not for this desktop", group + "Name=Own\nExec=tool\nOnlyShowIn=Other;\n", "");
    row("program missing", group + "Name=Own\nExec=tool\nTryExec=missing\n", "");
    row("broken", group + "Name=Own\nExec=\"\n", "");
    row("empty", "", "");
    row("no entry at all",
        "\x7f"
        "ELF",
        "");
}

void InstalledApplicationsTest::firstIdWins()
{
    QFETCH(QByteArray, first);
    QFETCH(QString, name);
    const QByteArray shared = "Name=Shared\nExec=tool\n";
    writeEntry("b/applications/v-x.desktop", shared);
    QCOMPARE(namesOffered(), QStringList{"Shared"});
    write("own/applications/v/x.desktop", first); // the same id at another place
    writeEntry("b/applications/other.desktop", "Name=Other\nExec=tool\n");
    QStringList expected{"Other"};
    if (!name.isEmpty())
        expected.prepend(name);
    QCOMPARE(namesOffered(), expected);
}

void InstalledApplicationsTest::orderIsFolderByFolder()
{
    for (const char* folder : {"b", "own", "a"}) {
        for (const char* id : {"z", "m", "d/e", "common"})
            writeEntry(QStringLiteral("%1/applications/%2.desktop").arg(folder, id),
                       QByteArray("Exec=tool\nName=") + folder + ' ' + id);
    }
    QCOMPARE(namesOffered(), (QStringList{"own common", "own d/e", "own m", "own z"}));
    writeEntry("a/applications/n.desktop", "Exec=tool\nName=a n");
    writeEntry("a/applications/a.desktop", "Exec=tool\nName=a a");
    writeEntry("b/applications/a1.desktop", "Exec=tool\nName=b a1");
    QCOMPARE(namesOffered(),
             (QStringList{"own common", "own d/e", "own m", "own z", "a a", "a n", "b a1"}));
}

void InstalledApplicationsTest::brokenFoldersAreSurvived()
{
    writeEntry("a/applications/good.desktop", "Name=Good\nExec=tool\n");
    QVERIFY(QDir().mkpath(path("own/applications/folder.desktop")));
    QCOMPARE(::mkfifo(qPrintable(path("a/applications/pipe.desktop")), 0600), 0);
    const auto link = [this](const char* target, const char* name) {
        return ::symlink(target, qPrintable(path(QStringLiteral("a/applications/") + name))) == 0;
    };
    QVERIFY(link("/dev/zero", "zero.desktop"));
    QVERIFY(link("/dev/tty", "tty.desktop"));
    QVERIFY(link("nowhere", "dangling.desktop"));
    QVERIFY(link(".", "loop"));
    QVERIFY(link("..", "up"));
    write("b/applications", "no folder");
    QCOMPARE(namesOffered(), QStringList{"Good"});
    // What can't be read takes its id all the same.
    writeEntry("own/applications/pipe.desktop", "Name=Own pipe\nExec=tool\n");
    QFile::remove(path("b/applications"));
    writeEntry("b/applications/zero.desktop", "Name=Never\nExec=tool\n");
    QCOMPARE(namesOffered(), (QStringList{"Own pipe", "Good"}));
}

void InstalledApplicationsTest::namesFollowTheLocale()
{
    writeEntry("a/applications/a.desktop",
               "Name=Colour\nName[de]=Farbe\nName[ja]=\xe8\x89\xb2\nExec=tool\n");
    QCOMPARE(namesOffered(), QStringList{"Colour"});
    qputenv("LANG", "de_DE.UTF-8");
    QCOMPARE(namesOffered(), QStringList{"Farbe"});
    qputenv("LC_MESSAGES", "ja_JP.UTF-8");
    QCOMPARE(namesOffered(), QStringList{QString::fromUtf8("色")});
    qputenv("LC_ALL", "C");
    QCOMPARE(namesOffered(), QStringList{"Colour"});
}

/// Two files for the system, but one application for whoever counts launches by the key.
void InstalledApplicationsTest::idsThatDifferInCase()
{
    writeEntry("a/applications/Tool.desktop", "Name=Upper\nExec=tool\n");
    writeEntry("a/applications/tool.desktop", "Name=Lower\nExec=tool\n");
    writeEntry("b/applications/TOOL.desktop", "Name=Shared\nExec=tool\n");
    writeEntry("b/applications/other.desktop", "Name=Other\nExec=tool\n");
    QStringList keys;
    Platform::listInstalledApplications(
        [&keys](const Platform::InstalledApplication& found) { keys.append(found.key); });
    QCOMPARE(namesOffered(), (QStringList{"Upper", "Lower", "Shared", "Other"}));
    QCOMPARE(keys, (QStringList{"tool.desktop", "tool.desktop", "tool.desktop", "other.desktop"}));

    AppIndex::build(); // once in a process: no other case here may ask the index
    const QVector<AppIndex::Entry> hits = AppIndex::search("e", 12);
    QCOMPARE(hits.size(), 2);
    QCOMPARE(hits.at(0).name, "Upper");
    QCOMPARE(hits.at(0).launchPath, path("a/applications/Tool.desktop"));
    QCOMPARE(hits.at(1).name, "Other");
}

void InstalledApplicationsTest::iconIsFound_data()
{
    QTest::addColumn<QString>("icon"); // %1 is the folder of the case
    QTest::addColumn<QString>("color");
    const auto row = [](const char* title, const char* icon, const char* color) {
        QTest::newRow(title) << QString::fromLatin1(icon) << QString::fromLatin1(color);
    };
    row("path", "%1/pic.png", "#ff0000");
    row("path with a blank", "%1/my pic.png", "#ff0000");
    row("missing path", "%1/missing.png", "");
    row("path of a folder", "%1/own", "");
    row("path of a pipe", "%1/pipe.png", "");
    row("path of a device", "/dev/zero", "");
    row("path of a text", "%1/text.png", "");
    row("relative path", "pic.png", "");
    row("path out of the theme", "../../../../../pic", "");
    row("path out of the folders beside it", "../../pic", "");
    row("name", "themed", "#00ff00");
    row("name with a suffix", "themed.png", "#00ff00");
    row("name with another suffix", "themed.svg", "#00ff00");
    row("name with a suffix in capitals", "themed.XPM", "#00ff00");
    row("name with a dot", "org.example.App", "#00ff00");
    row("name in the shared theme", "shared", "#00ff00");
    row("image beside a drawing", "both", "#00ff00");
    row("drawing that can't be shown", "drawing", "");
    row("beside the themes", "loose", "#0000ff");
    row("beside the themes with a suffix", "loose.png", "#0000ff");
    row("in the old place", "old", "#0000ff");
    row("the theme before the old place", "themed", "#00ff00");
    row("the old place if the theme's can't be shown", "damaged", "#0000ff");
    row("unknown name", "unknown", "");
    row("empty", "", "");
}

void InstalledApplicationsTest::iconIsFound()
{
    QFETCH(QString, icon);
    QFETCH(QString, color);
    const QByteArray index = "[Icon Theme]\nName=Common\nDirectories=48x48/apps\n\n"
                             "[48x48/apps]\nSize=48\nType=Fixed\n";
    write("own/icons/hicolor/index.theme", index);
    write("a/icons/hicolor/index.theme", index);
    writeImage("pic.png", 48, "#ff0000");
    writeImage("my pic.png", 48, "#ff0000");
    write("text.png", "no image");
    QCOMPARE(::mkfifo(qPrintable(path("pipe.png")), 0600), 0);
    for (const char* name : {"themed", "org.example.App", "both"})
        writeImage(QStringLiteral("own/icons/hicolor/48x48/apps/%1.png").arg(name), 48, "#00ff00");
    writeImage("a/icons/hicolor/48x48/apps/shared.png", 48, "#00ff00");
    write("own/icons/hicolor/48x48/apps/both.svg", "no drawing");
    write("own/icons/hicolor/48x48/apps/drawing.svg", "no drawing");
    write("own/icons/hicolor/48x48/apps/damaged.png", "no image");
    writeImage("a/icons/loose.png", 32, "#0000ff");
    for (const char* name : {"old", "themed", "damaged"})
        writeImage(QStringLiteral("b/pixmaps/%1.png").arg(name), 32, "#0000ff");
    const QString value = icon.contains("%1") ? icon.arg(root()) : icon;
    writeEntry("a/applications/x.desktop", "Name=A\nExec=tool\nIcon=" + value.toUtf8() + "\n");

    const QIcon found = Platform::applicationIcon(path("a/applications/x.desktop"));
    QCOMPARE(found.isNull(), color.isEmpty());
    if (!color.isEmpty())
        QCOMPARE(found.pixmap(16).toImage().pixelColor(8, 8), QColor(color));
}

void InstalledApplicationsTest::looseIconIsFound_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("color"); // empty: there is none
    const auto row = [](const char* title, const QStringList& files, const QString& color) {
        QTest::newRow(title) << files << color;
    };
    // Each kind of image has a colour of its own, and so has each place.
    const QString drawn = canDraw() ? kDrawingColor : "";
    row("old bitmap", {"a/pixmaps/x.xpm"}, kXpmColor);
    row("drawing", {"a/pixmaps/x.svg"}, drawn);
    row("image before the others", {"a/icons/x.xpm", "a/icons/x.svg", "a/icons/x.png"}, "#0000ff");
    row("drawing before the old bitmap", {"a/icons/x.xpm", "a/icons/x.svg"},
        canDraw() ? kDrawingColor : kXpmColor);
    row("beside the themes before the old place", {"a/pixmaps/x.png", "a/icons/x.png"}, "#0000ff");
    row("place before kind", {"a/pixmaps/x.png", "a/icons/x.xpm"}, kXpmColor);
    row("folder for data before place", {"b/icons/x.png", "a/pixmaps/x.xpm"}, kXpmColor);
    row("the user's own before the system's", {"a/icons/x.png", "own/pixmaps/x.xpm"}, kXpmColor);
    row("another kind of image", {"a/icons/x.gif"}, "");
    row("suffix in capitals", {"a/icons/x.PNG"}, "");
}

void InstalledApplicationsTest::looseIconIsFound()
{
    QFETCH(QStringList, files);
    QFETCH(QString, color);
    for (const QString& file : files) {
        if (file.endsWith(".svg"))
            write(file, kDrawing);
        else if (file.endsWith(".xpm"))
            write(file, kXpm);
        else
            writeImage(file, 32, file.contains("/icons/") ? "#0000ff" : "#ff0000");
    }
    writeEntry("a/applications/x.desktop", "Name=A\nExec=tool\nIcon=x\n");
    const QIcon found = Platform::applicationIcon(path("a/applications/x.desktop"));
    QCOMPARE(found.isNull(), color.isEmpty());
    if (!color.isEmpty())
        QCOMPARE(found.pixmap(1).toImage().pixelColor(0, 0), QColor(color));
}

void InstalledApplicationsTest::drawingFitsEachSize_data()
{
    QTest::addColumn<QString>("icon"); // %1 is the folder of the case
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isSound");
    QTest::newRow("path") << "%1/a/icons/x.svg" << kDrawing << true;
    QTest::newRow("beside the themes") << "x" << kDrawing << true;
    QTest::newRow("path of no drawing") << "%1/a/icons/x.svg" << QByteArray("no drawing") << false;
    QTest::newRow("no drawing beside the themes") << "x" << QByteArray("no drawing") << false;
    QTest::newRow("path of an empty file") << "%1/a/icons/x.svg" << QByteArray("") << false;
}

/// Where nothing reads drawings there is no icon at all, and the row has the application's glyph.
void InstalledApplicationsTest::drawingFitsEachSize()
{
    QFETCH(QString, icon);
    QFETCH(QByteArray, content);
    QFETCH(bool, isSound);
    write("a/icons/x.svg", content);
    const QString value = icon.contains("%1") ? icon.arg(root()) : icon;
    writeEntry("x.desktop", "Name=A\nExec=tool\nIcon=" + value.toUtf8() + "\n");
    const QIcon found = Platform::applicationIcon(path("x.desktop"));
    QCOMPARE(found.isNull(), !isSound || !canDraw());
    if (found.isNull())
        return;
    for (const int sizePx : {16, 32, 200}) {
        const QImage image = found.pixmap(sizePx).toImage();
        QCOMPARE(image.size(), QSize(sizePx, sizePx));
        QCOMPARE(image.pixelColor(sizePx - 1, sizePx - 1), QColor(kDrawingColor));
    }
}

void InstalledApplicationsTest::iconIsMadeSmaller()
{
    QImage image(1000, 500, QImage::Format_ARGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(path("wide.png")));
    writeEntry("a/applications/x.desktop", "Name=A\nExec=tool\nIcon=" + path("wide.png").toUtf8());
    const QIcon icon = Platform::applicationIcon(path("a/applications/x.desktop"));
    QCOMPARE(icon.availableSizes(), QList<QSize>{QSize(256, 128)});
}

void InstalledApplicationsTest::iconOfNoEntry_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << "missing.desktop";
    QTest::newRow("no entry") << "text.desktop";
    QTest::newRow("pipe") << "pipe.desktop";
    QTest::newRow("folder") << "own";
    QTest::newRow("no icon") << "iconless.desktop";
}

void InstalledApplicationsTest::iconOfNoEntry()
{
    QFETCH(QString, name);
    write("text.desktop", "Icon=/usr/share/pixmaps/x.png");
    QVERIFY(QDir().mkpath(path("own")));
    QCOMPARE(::mkfifo(qPrintable(path("pipe.desktop")), 0600), 0);
    writeEntry("iconless.desktop", "Name=A\nExec=tool\n");
    QVERIFY(Platform::applicationIcon(path(name)).isNull());
    QVERIFY(Platform::applicationIcon({}).isNull());
}

/// Where no desktop names a theme, icons that only a desktop's theme has are found nevertheless.
void InstalledApplicationsTest::iconOfAnInstalledTheme()
{
    write("a/icons/Arrows/index.theme", "[Icon Theme]\nName=Pointers alone\n");
    write("a/icons/Nice/index.theme", "[Icon Theme]\nName=Nice\nDirectories=apps\n\n"
                                      "[apps]\nSize=48\n");
    writeImage("a/icons/Nice/apps/utilities-x.png", 48, "#00ff00");
    writeEntry("a/applications/x.desktop", "Name=A\nExec=tool\nIcon=utilities-x\n");
    for (const char* theme : {"hicolor", "gone", ""}) {
        QIcon::setThemeName(theme);
        QIcon::setFallbackThemeName({});
        QVERIFY(!Platform::applicationIcon(path("a/applications/x.desktop")).isNull());
        QCOMPARE(QIcon::fallbackThemeName(), "Nice");
    }
    // The desktop's own choice stays.
    write("a/icons/Other/index.theme", "[Icon Theme]\nName=Other\nDirectories=apps\n\n"
                                       "[apps]\nSize=48\n");
    QIcon::setThemeName("Other");
    QIcon::setFallbackThemeName("hicolor");
    Platform::applicationIcon(path("a/applications/x.desktop"));
    QCOMPARE(QIcon::fallbackThemeName(), "hicolor");
}

QTEST_MAIN(InstalledApplicationsTest)
#include "tst_installedapplications.moc"
