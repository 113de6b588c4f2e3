// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AppIndex.h"
#include "FreshProcess.h"
#include "InstalledApplications.h"
#include "SessionBus.h"
#include "ShellLaunch.h"
#include "TestFiles.h"
#include "TestHome.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVirtualObject>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <memory>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

// Real entries in private folders for data, and launches of a script that notes how it was called.
// This process also plays the message bus's side: a bus of its own with an application on it.

namespace
{

constexpr char kRecordVariable[] = "ORLIMO_TEST_RECORD";
constexpr char kBusAddress[] = "DBUS_SESSION_BUS_ADDRESS";
const QString kBusConnection = QStringLiteral("application");
const QString kBusName = QStringLiteral("org.example.My-App");
const QString kBusObject = QStringLiteral("/org/example/My_App");
constexpr int kPatienceMs = 30000;

// Writes its name, its arguments and its folder, and puts the note into place as a whole.
const QByteArray kRecorder =
    "#!/bin/sh\n"
    "[ -n \"$ORLIMO_TEST_RECORD\" ] || exit 1\n"
    "echo \"$*\" >> \"$ORLIMO_TEST_RECORD.starts\"\n"
    "part=$ORLIMO_TEST_RECORD.$$\n"
    "{ for word in \"${0##*/}\" \"$@\"; do printf '[%s]\\n' \"$word\"; done\n"
    "pwd; } > \"$part\"\n"
    "/bin/mv \"$part\" \"$ORLIMO_TEST_RECORD\"\n";

// Leaves a mark when it begins and, if it lives so long, another a second later.
const QByteArray kSlowLauncher = "#!/bin/sh\n"
                                 "echo begun > \"$ORLIMO_TEST_RECORD.begun\"\n"
                                 "/bin/sleep 1\n"
                                 "echo slow > \"$ORLIMO_TEST_RECORD.part\"\n"
                                 "/bin/mv \"$ORLIMO_TEST_RECORD.part\" \"$ORLIMO_TEST_RECORD\"\n";

// 16 by 16, in one colour.
const QByteArray kDrawing = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16\" height=\"16\">"
                            "<rect width=\"16\" height=\"16\" fill=\"#ff00ff\"/></svg>";
const QByteArray kXpm = "/* XPM */\nstatic char *x[] = {\"1 1 1 1\", \"a c #ffff00\", \"a\"};\n";
constexpr char kDrawingColor[] = "#ff00ff";
constexpr char kXpmColor[] = "#ffff00";

/// An application that is activated over the bus.
class BusApplication : public QDBusVirtualObject
{
public:
    QString error; ///< what it answers with, unless it is empty
    QList<QDBusMessage> calls;

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        calls.append(message);
        connection.send(error.isEmpty() ? message.createReply()
                                        : message.createErrorReply(error, "as the test wants it"));
        return true;
    }
};

/// Whether the Qt of this machine has what reads drawings, which comes in a package of its own.
bool canDraw()
{
    return QImageReader::supportedImageFormats().contains("svg");
}

/// Whether all that is waited for after a launch, the bus and the desktop's launcher, has ended.
bool isSettled()
{
    return qApp->findChildren<QDBusPendingCallWatcher*>().isEmpty() &&
           qApp->findChildren<QProcess*>().isEmpty();
}

/// The child's side of a program that ends while the desktop's launcher is at work: launches an
/// entry, waits for the files that are named, and goes. What Qt has to say comes with the output.
int launchAndQuit(const QStringList& arguments)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& message) {
        std::puts(qPrintable(message));
        std::fflush(stdout);
    });
    if (!Platform::launchShellItem(arguments.at(0)))
        return 1;
    const bool isThere = QTest::qWaitFor(
        [&arguments] {
            return std::all_of(arguments.cbegin() + 1, arguments.cend(),
                               [](const QString& file) { return QFile::exists(file); });
        },
        kPatienceMs);
    return isThere ? 0 : 2;
}

qsizetype countOf(const char* folder)
{
    return QDir(QLatin1String(folder)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size();
}

QByteArray childrenOfThisProcess()
{
    QFile file(QStringLiteral("/proc/self/task/%1/children").arg(::getpid()));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unknown");
}

/// What one of the standard channels leads to, be it no file.
QString channelOfThisProcess(int channel)
{
    QByteArray target(1000, '\0');
    const QByteArray link = "/proc/self/fd/" + QByteArray::number(channel);
    const ssize_t size = ::readlink(link.constData(), target.data(), size_t(target.size()));
    return QFile::decodeName(target.left(qMax(size, ssize_t(0))));
}

} // namespace

class InstalledApplicationsTest : public QObject, private TestTree
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

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

    void launchByCommandLine_data();
    void launchByCommandLine();
    void launchRunsInItsFolder();
    void launchByTheDesktop_data();
    void launchByTheDesktop();
    void launchThatTheDesktopRefuses_data();
    void launchThatTheDesktopRefuses();
    void launchThatTheRealDesktopRefuses_data();
    void launchThatTheRealDesktopRefuses();
    void launchThatNobodyDoes();
    void launchOutlivesThisProgram_data();
    void launchOutlivesThisProgram();
    void launchFails_data();
    void launchFails();
    void launchInATerminal_data();
    void launchInATerminal();
    void launchTerminalIsMissing();
    void launchOverTheBus_data();
    void launchOverTheBus();
    void launchOverTheBusWithoutCommandLine_data();
    void launchOverTheBusWithoutCommandLine();
    void launchOverTheBusTurnedDown_data();
    void launchOverTheBusTurnedDown();
    void launchOverTheBusThatNobodyDoes();
    void busIsThere_data();
    void busIsThere();
    void userBusIsThere();
    void launchWithoutABus_data();
    void launchWithoutABus();
    void launchIsDetached_data();
    void launchIsDetached();
    void launchLeavesNothingOpen_data();
    void launchLeavesNothingOpen();

private:
    void writeEntry(const QString& name, const QByteArray& lines) const;
    void writeImage(const QString& name, int sizePx, const QColor& color) const;
    void makeProgram(const QString& name, const QByteArray& content = kRecorder) const;
    void launchAndSettle(const QString& value) const;
    QByteArray starts() const;
    bool isRecorded() const { return QFile::exists(path("record")); }
    QStringList record() const;
    QStringList takeRecord() const;
    QStringList namesOffered() const;

    QProcess m_bus;
    QByteArray m_busAddress;
    QByteArray m_searchPath;
    BusApplication m_application;
};

void InstalledApplicationsTest::initTestCase()
{
    m_searchPath = qgetenv("PATH");
    m_bus.start(QStringLiteral("dbus-daemon"),
                {QStringLiteral("--session"), QStringLiteral("--nofork"),
                 QStringLiteral("--print-address"),
                 QStringLiteral("--address=unix:tmpdir=") + TestHome::path()});
    QVERIFY2(m_bus.waitForStarted(), "dbus-daemon is not installed");
    QTRY_VERIFY_WITH_TIMEOUT(m_bus.canReadLine(), kPatienceMs);
    m_busAddress = m_bus.readLine().trimmed();
    auto connection =
        QDBusConnection::connectToBus(QString::fromLatin1(m_busAddress), kBusConnection);
    QVERIFY(connection.isConnected());
    QVERIFY(connection.registerVirtualObject(kBusObject, &m_application));
}

void InstalledApplicationsTest::init()
{
    makeRoot();
    for (const char* variable :
         {"LC_ALL", "LC_MESSAGES", "LANG", "XDG_CURRENT_DESKTOP", "TERMINAL"})
        qunsetenv(variable);
    qputenv("XDG_DATA_HOME", QFile::encodeName(path("own")));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(path("a") + ':' + path("b")));
    qputenv("PATH", QFile::encodeName(path("bin")));
    qputenv(kRecordVariable, QFile::encodeName(path("record")));
    qputenv(kBusAddress, m_busAddress);
    m_application.error.clear();
    m_application.calls.clear();
    makeProgram("tool");
    QIcon::setThemeSearchPaths({path("own/icons"), path("a/icons")});
    QIcon::setThemeName("hicolor");
    QIcon::setFallbackThemeName({});
}

void InstalledApplicationsTest::cleanup()
{
    QDBusConnection(kBusConnection).unregisterService(kBusName);
    qputenv("PATH", m_searchPath);
}

void InstalledApplicationsTest::cleanupTestCase()
{
    QDBusConnection::disconnectFromBus(kBusConnection);
    m_bus.terminate();
    m_bus.waitForFinished();
}

void InstalledApplicationsTest::writeEntry(const QString& name, const QByteArray& lines) const
{
    write(name, "[Desktop Entry]\nType=Application\n" + lines);
}

void InstalledApplicationsTest::writeImage(const QString& name, int sizePx,
                                           const QColor& color) const
{
    QVERIFY(QDir().mkpath(QFileInfo(path(name)).path()));
    QImage image(sizePx, sizePx, QImage::Format_ARGB32);
    image.fill(color);
    QVERIFY(image.save(path(name), "PNG"));
}

void InstalledApplicationsTest::makeProgram(const QString& name, const QByteArray& content) const
{
    write("bin/" + name, content);
    QVERIFY(QFile::setPermissions(path("bin/" + name),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

/// Launches an item, and waits until nothing is waited for any more.
void InstalledApplicationsTest::launchAndSettle(const QString& value) const
{
    QVERIFY(Platform::launchShellItem(value));
    QTRY_VERIFY_WITH_TIMEOUT(isSettled(), kPatienceMs);
}

/// The arguments of all calls of the recorder, one on a line.
QByteArray InstalledApplicationsTest::starts() const
{
    QFile file(path("record.starts"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The lines of what the recorder noted: name, arguments, folder.
QStringList InstalledApplicationsTest::record() const
{
    QFile file(path("record"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
}

/// The same without the folder, and the note is gone.
QStringList InstalledApplicationsTest::takeRecord() const
{
    QStringList lines = record();
    if (!lines.isEmpty())
        lines.removeLast();
    QFile::remove(path("record"));
    return lines;
}

QStringList InstalledApplicationsTest::namesOffered() const
{
    QStringList names;
    Platform::listInstalledApplications(
        [&names](const Platform::InstalledApplication& found) { names.append(found.name); });
    return names;
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

void InstalledApplicationsTest::launchByCommandLine_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QStringList>("called");
    const auto row = [](const char* title, const QByteArray& lines, const QStringList& called) {
        QTest::newRow(title) << lines << called;
    };
    row("program", "Exec=tool\n", {"[tool]"});
    row("arguments", "Exec=tool a \"b  c\" \"\" $HOME *\n",
        {"[tool]", "[a]", "[b  c]", "[]", "[$HOME]", "[*]"});
    row("no files", "Exec=tool %U -- %f\n", {"[tool]", "[--]"});
    row("name and icon", "Exec=tool %c %i\nName[de]=B c\nIcon=pic\n",
        {"[tool]", "[B c]", "[--icon]", "[pic]"});
    row("both layers of escapes", R"(Exec=tool "a\\\\b" "\\$x" a\sb)",
        {"[tool]", R"([a\b])", "[$x]", "[a]", "[b]"});
    row("variables for the program", "Exec=/usr/bin/env X=1 tool y\n", {"[tool]", "[y]"});
    row("hidden", "Exec=tool\nHidden=true\n", {"[tool]"});
    row("not displayed", "Exec=tool\nNoDisplay=true\nOnlyShowIn=X;\n", {"[tool]"});
    row("tried program is missing", "Exec=tool\nTryExec=missing\n", {"[tool]"});
    row("stray line", "stray\nExec=tool\n", {"[tool]"});
    row("bus wanted by a file whose name can't be one", "Exec=tool\nDBusActivatable=true\n",
        {"[tool]"});
}

void InstalledApplicationsTest::launchByCommandLine()
{
    QFETCH(QByteArray, lines);
    qputenv("LANG", "de_DE.UTF-8");
    writeEntry("a/applications/v/x.desktop", "Name=A\n" + lines);
    for (const QString& value : {path("a/applications/v/x.desktop"), QString("v-x.desktop")}) {
        QVERIFY(Platform::launchShellItem(value));
        QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), kPatienceMs);
        QTEST(takeRecord(), "called");
    }
}

void InstalledApplicationsTest::launchRunsInItsFolder()
{
    QVERIFY(QDir().mkpath(path("my folder")));
    makeProgram("../my folder/inner");
    writeEntry("x.desktop", "Name=A\nExec=./inner %k\nPath=" + path("my folder").toUtf8() + "\n");
    QVERIFY(Platform::launchShellItem(path("x.desktop")));
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), kPatienceMs);
    QCOMPARE(record(), (QStringList{"[inner]", '[' + path("x.desktop") + ']', path("my folder")}));
    QFile::remove(path("record"));

    writeEntry("x.desktop", "Name=A\nExec=tool\n");
    QVERIFY(Platform::launchShellItem(path("x.desktop")));
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), kPatienceMs);
    QCOMPARE(record().constLast(), QDir::currentPath());
}

void InstalledApplicationsTest::launchByTheDesktop_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<bool>("isByTheDesktop");
    const auto row = [](const char* title, const QByteArray& lines, bool isByTheDesktop) {
        QTest::newRow(title) << lines << isByTheDesktop;
    };
    row("usual", "Exec=tool a %U\n", true);
    row("with its folder", "Exec=tool\nPath=/tmp\n", true);
    row("tried program is there", "Exec=tool\nTryExec=tool\n", true);
    row("hidden", "Exec=tool\nHidden=true\n", true);
    row("bus on which nobody has the name", "Exec=tool\nDBusActivatable=true\n", true);
    row("form that it may refuse", "Exec=tool\nstray\n[X]\nstray\n", true);
    // The launcher would refuse these, or leave something out.
    row("in a terminal", "Exec=tool\nTerminal=true\n", false);
    row("tried program is missing", "Exec=tool\nTryExec=missing\n", false);
    row("place of the entry", "Exec=tool %k\n", false);
    row("program beside the entry's folder", "Exec=./tool\nPath=%1/bin\n", false);
}

void InstalledApplicationsTest::launchByTheDesktop()
{
    QFETCH(QByteArray, lines);
    QFETCH(bool, isByTheDesktop);
    makeProgram("gio");
    makeProgram("x-terminal-emulator");
    const QString entry = "a/applications/" + kBusName + ".desktop";
    writeEntry(entry, "Name=A\n" + lines.replace("%1", root().toUtf8()));
    launchAndSettle(kBusName + ".desktop");
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), kPatienceMs);
    const QStringList called = takeRecord();
    if (isByTheDesktop)
        QCOMPARE(called, (QStringList{"[gio]", "[launch]", '[' + path(entry) + ']'}));
    else
        QVERIFY(called.constFirst() != "[gio]");
    QCOMPARE(starts().count('\n'), 1);
}

void InstalledApplicationsTest::launchThatTheDesktopRefuses_data()
{
    QTest::addColumn<QByteArray>("launcher"); // the whole program
    const QByteArray notes = "#!/bin/sh\necho \"$*\" > \"$ORLIMO_TEST_RECORD.asked\"\n";
    QTest::newRow("says no") << notes + "exit 1\n";
    QTest::newRow("says no in another way") << notes + "exit 255\n";
    QTest::newRow("dies") << notes + "kill -9 $$\n";
    QTest::newRow("can't be run") << QByteArray("#!/nowhere/sh\n");
    QTest::newRow("is no program") << QByteArray("\x7f\x45LF", 4);
}

void InstalledApplicationsTest::launchThatTheDesktopRefuses()
{
    QFETCH(QByteArray, launcher);
    makeProgram("gio", launcher);
    writeEntry("x.desktop", "Name=A\nExec=tool x\n");
    launchAndSettle(path("x.desktop"));
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), kPatienceMs);
    QCOMPARE(takeRecord(), (QStringList{"[tool]", "[x]"}));
    QCOMPARE(starts(), QByteArray("x\n"));
    QFile asked(path("record.asked"));
    QCOMPARE(asked.open(QIODevice::ReadOnly), launcher.contains("asked"));
    if (asked.isOpen())
        QCOMPARE(asked.readAll(), "launch " + QFile::encodeName(path("x.desktop")) + '\n');
}

void InstalledApplicationsTest::launchThatTheRealDesktopRefuses_data()
{
    QTest::addColumn<QByteArray>("content");
    const auto row = [](const char* title, const QByteArray& content) {
        QTest::newRow(title) << content;
    };
    const QByteArray entry = "[Desktop Entry]\nType=Application\nName=A\nExec=tool x\n";
    row("nothing, for comparison", entry);
    row("blank behind the type", "[Desktop Entry]\nType=Application \nName=A\nExec=tool x\n");
    row("blank behind the tried program", entry + "TryExec=tool \n");
    row("blank behind the folder", entry + "Path=/tmp \n");
    row("bracket in a header", entry + "[a]b]\n");
    row("bracket in a key", entry + "Na[me=x\n");
    row("blank in a tag", entry + "Name[de DE]=x\n");
    row("no key", entry + "===\n");
    row("tag that is no text", entry + "Name[\xff\xfe]=x\n");
    row("field code in front", "[Desktop Entry]\nType=Application\nName=A\nExec=%f tool x\n");
    row("main group twice, of another type", entry + "[Desktop Entry]\nType=Link\n");
    row("stray line", entry + "stray\n");
    row("stray line in a later group", entry + "[X]\nstray\n");
    row("byte order mark", "\xef\xbb\xbf" + entry);
}

/// Whatever the launcher of this machine thinks of an entry, its program is started, and once.
void InstalledApplicationsTest::launchThatTheRealDesktopRefuses()
{
    QFETCH(QByteArray, content);
    const QString gio = QStandardPaths::findExecutable(
        "gio", QString::fromLocal8Bit(m_searchPath).split(':', Qt::SkipEmptyParts));
    QVERIFY2(!gio.isEmpty(), "gio is not installed");
    QVERIFY(QFile::link(gio, path("bin/gio")));
    write("x.desktop", content);
    launchAndSettle(path("x.desktop"));
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), kPatienceMs);
    QCOMPARE(takeRecord(), (QStringList{"[tool]", "[x]"}));
    QCOMPARE(starts(), QByteArray("x\n"));
}

void InstalledApplicationsTest::launchThatNobodyDoes()
{
    makeProgram("gio", "#!/bin/sh\nexit 1\n");
    makeProgram("broken", "#!/nowhere/sh\n"); // which is seen no sooner than it is started
    writeEntry("x.desktop", "Name=A\nExec=broken\n");
    const QRegularExpression warning("^Gagal menjalankan aplikasi: \"" +
                                     QRegularExpression::escape(path("x.desktop")) +
                                     "\" \"gio 1\"$");
    QTest::ignoreMessage(QtWarningMsg, warning);
    launchAndSettle(path("x.desktop"));
}

void InstalledApplicationsTest::launchOutlivesThisProgram_data()
{
    QTest::addColumn<bool>("hasBegun");
    QTest::newRow("ended at once") << false;
    QTest::newRow("ended in the middle") << true;
}

void InstalledApplicationsTest::launchOutlivesThisProgram()
{
    QFETCH(bool, hasBegun);
    makeProgram("gio", kSlowLauncher);
    writeEntry("x.desktop", "Name=A\nExec=tool\n");
    QStringList arguments{path("x.desktop")};
    if (hasBegun)
        arguments.append(path("record.begun"));
    const FreshProcess::Outcome outcome = FreshProcess::run("launch and quit", arguments);
    QVERIFY(outcome.hasExited);
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.output, QByteArray());
    QVERIFY(!isRecorded()); // so it was still at work
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), kPatienceMs);
    QCOMPARE(record(), QStringList{"slow"});
}

void InstalledApplicationsTest::launchFails_data()
{
    QTest::addColumn<QString>("value"); // %1 is the folder of the case
    QTest::addColumn<QByteArray>("lines");
    const auto row = [](const char* title, const char* value, const QByteArray& lines) {
        QTest::newRow(title) << QString::fromLatin1(value) << lines;
    };
    const QByteArray good = "Name=A\nExec=tool\n";
    row("empty", "", good);
    row("no such id", "missing.desktop", good);
    row("id in another case", "X.desktop", good);
    row("id without its suffix", "x", good);
    row("no such path", "%1/missing.desktop", good);
    row("folder", "%1/folder.desktop", good);
    row("pipe", "%1/pipe.desktop", good);
    row("out of the tree", "..-..-outside.desktop", good);
    row("program is missing", "x.desktop", "Name=A\nExec=missing\n");
    row("program is missing, by its path", "x.desktop", "Name=A\nExec=/missing/tool\n");
    row("program is missing, by its path from nowhere", "x.desktop", "Name=A\nExec=./missing\n");
    row("program is missing in a terminal", "x.desktop", "Name=A\nExec=missing\nTerminal=true\n");
    row("program can't be executed", "x.desktop", "Name=A\nExec=/etc/passwd\n");
    row("folder is missing", "x.desktop", good + "Path=/missing\n");
    row("no command line", "x.desktop", "Name=A\n");
    row("broken command line", "x.desktop", "Name=A\nExec=tool \"\n");
    row("unknown field code", "x.desktop", "Name=A\nExec=tool %x\n");
    row("no application", "x.desktop", good + "Type=Link\nURL=https://example.org\n");
    row("bus alone, by a file whose name can't be one", "x.desktop",
        "Name=A\nDBusActivatable=true\n");
}

void InstalledApplicationsTest::launchFails()
{
    QFETCH(QString, value);
    QFETCH(QByteArray, lines);
    makeProgram("x-terminal-emulator");
    writeEntry("own/applications/x.desktop", lines);
    writeEntry("outside.desktop", lines);
    QVERIFY(QDir().mkpath(path("folder.desktop")));
    QCOMPARE(::mkfifo(qPrintable(path("pipe.desktop")), 0600), 0);
    const QString wanted = value.contains("%1") ? value.arg(root()) : value;
    QVERIFY(!Platform::launchShellItem(wanted));
    // The desktop's launcher changes nothing about it.
    makeProgram("gio");
    QVERIFY(!Platform::launchShellItem(wanted));
    QVERIFY(!isRecorded());
}

void InstalledApplicationsTest::launchInATerminal_data()
{
    QTest::addColumn<QStringList>("installed");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QStringList>("called");
    const auto row = [](const char* title, const QStringList& installed, const char* chosen,
                        const QStringList& terminal) {
        QTest::newRow(title) << installed << QString::fromLatin1(chosen)
                             << terminal + QStringList{"[tool]", "[a b]"};
    };
    row("the user's choice", {"myterm", "x-terminal-emulator", "xterm"}, "myterm",
        {"[myterm]", "[-e]"});
    row("the user's choice with an option", {"myterm"}, "myterm --fast", //
        {"[myterm]", "[--fast]", "[-e]"});
    row("a choice that takes it otherwise", {"gnome-terminal"}, "gnome-terminal",
        {"[gnome-terminal]", "[--]"});
    row("a choice by its path", {"mate-terminal", "xterm"}, "%1/bin/mate-terminal",
        {"[mate-terminal]", "[-x]"});
    row("an unknown choice by its path", {"myterm"}, "%1/bin/myterm", {"[myterm]", "[-e]"});
    row("a choice by a path at which nothing is", {"xterm"}, "/missing/mate-terminal",
        {"[xterm]", "[-e]"});
    row("a choice that is missing", {"x-terminal-emulator", "xterm"}, "missing",
        {"[x-terminal-emulator]", "[-e]"});
    row("the system's choice", {"x-terminal-emulator", "xterm"}, "",
        {"[x-terminal-emulator]", "[-e]"});
    row("the plain one", {"xterm", "konsole"}, "", {"[xterm]", "[-e]"});
    row("GNOME's", {"mate-terminal", "xfce4-terminal", "konsole", "gnome-terminal"}, "",
        {"[gnome-terminal]", "[--]"});
    row("KDE's", {"mate-terminal", "xfce4-terminal", "konsole"}, "", {"[konsole]", "[-e]"});
    row("Xfce's", {"mate-terminal", "xfce4-terminal"}, "", {"[xfce4-terminal]", "[-x]"});
    row("MATE's", {"mate-terminal"}, "", {"[mate-terminal]", "[-x]"});
}

void InstalledApplicationsTest::launchInATerminal()
{
    QFETCH(QStringList, installed);
    QFETCH(QString, chosen);
    for (const QString& name : installed)
        makeProgram(name);
    makeProgram("gio"); // which might know no terminal
    qputenv("TERMINAL", QFile::encodeName(chosen.replace("%1", root())));
    writeEntry("x.desktop", "Name=A\nExec=tool \"a b\"\nTerminal=true\nPath=/tmp\n");
    QVERIFY(Platform::launchShellItem(path("x.desktop")));
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), kPatienceMs);
    QCOMPARE(record().constLast(), "/tmp");
    QTEST(takeRecord(), "called");
}

void InstalledApplicationsTest::launchTerminalIsMissing()
{
    makeProgram("gio");
    qputenv("TERMINAL", "missing");
    writeEntry("x.desktop", "Name=A\nExec=tool\nTerminal=true\n");
    QVERIFY(!Platform::launchShellItem(path("x.desktop")));
    QVERIFY(!isRecorded());
}

void InstalledApplicationsTest::launchOverTheBus_data()
{
    QTest::addColumn<bool>("hasDesktopLauncher");
    QTest::newRow("alone") << false;
    QTest::newRow("before the desktop's launcher") << true;
}

void InstalledApplicationsTest::launchOverTheBus()
{
    QFETCH(bool, hasDesktopLauncher);
    if (hasDesktopLauncher)
        makeProgram("gio");
    QVERIFY(QDBusConnection(kBusConnection).registerService(kBusName));
    writeEntry("a/applications/" + kBusName + ".desktop",
               "Name=A\nExec=tool\nDBusActivatable=true\n");
    QVERIFY(Platform::launchShellItem(kBusName + ".desktop"));
    QTRY_COMPARE_WITH_TIMEOUT(m_application.calls.size(), 1, kPatienceMs);
    const QDBusMessage& call = m_application.calls.constFirst();
    QCOMPARE(call.path(), kBusObject);
    QCOMPARE(call.interface(), "org.freedesktop.Application");
    QCOMPARE(call.member(), "Activate");
    QCOMPARE(call.signature(), "a{sv}");
    QTRY_VERIFY_WITH_TIMEOUT(isSettled(), kPatienceMs);
    // What might have been started besides comes before what is started now.
    writeEntry("later.desktop", "Name=A\nExec=tool later %k\n");
    QVERIFY(Platform::launchShellItem(path("later.desktop")));
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), kPatienceMs);
    QCOMPARE(starts(), "later " + QFile::encodeName(path("later.desktop")) + '\n');
}

void InstalledApplicationsTest::launchOverTheBusWithoutCommandLine_data()
{
    QTest::addColumn<bool>("hasDesktopLauncher");
    QTest::newRow("alone") << false;
    QTest::newRow("beside a launcher that calls nobody") << true;
}

void InstalledApplicationsTest::launchOverTheBusWithoutCommandLine()
{
    QFETCH(bool, hasDesktopLauncher);
    if (hasDesktopLauncher)
        makeProgram("gio");
    QVERIFY(QDBusConnection(kBusConnection).registerService(kBusName));
    writeEntry(kBusName + ".desktop", "Name=A\nDBusActivatable=true\n");
    QVERIFY(Platform::launchShellItem(path(kBusName + ".desktop")));
    QTRY_COMPARE_WITH_TIMEOUT(m_application.calls.size(), 1, kPatienceMs);
    QVERIFY(!isRecorded());
}

void InstalledApplicationsTest::launchOverTheBusTurnedDown_data()
{
    QTest::addColumn<QString>("error"); // empty: there is no such application on the bus
    QTest::addColumn<bool>("hasDesktopLauncher");
    QTest::addColumn<bool>("isStarted");
    const auto row = [](const char* title, const QString& error, bool isStarted) {
        QTest::addRow("%s", title) << error << false << isStarted;
        QTest::addRow("%s, with the desktop's launcher", title) << error << true << isStarted;
    };
    row("nobody there", {}, true);
    row("knows no activation", QDBusError::errorString(QDBusError::UnknownMethod), true);
    row("fails", QDBusError::errorString(QDBusError::Failed), true);
    row("may yet come up", QDBusError::errorString(QDBusError::NoReply), false);
    row("takes too long", QDBusError::errorString(QDBusError::Timeout), false);
    row("may yet come up, in other words", QDBusError::errorString(QDBusError::TimedOut), false);
}

void InstalledApplicationsTest::launchOverTheBusTurnedDown()
{
    QFETCH(QString, error);
    QFETCH(bool, hasDesktopLauncher);
    QFETCH(bool, isStarted);
    m_application.error = error;
    if (!error.isEmpty())
        QVERIFY(QDBusConnection(kBusConnection).registerService(kBusName));
    if (hasDesktopLauncher)
        makeProgram("gio");
    const QString entry = path(kBusName + ".desktop");
    writeEntry(kBusName + ".desktop", "Name=A\nExec=tool x\nDBusActivatable=true\n");
    if (!isStarted) {
        QTest::ignoreMessage(QtWarningMsg, qPrintable("Gagal menjalankan aplikasi: \"" + entry +
                                                      "\" \"as the test wants it\""));
    }
    launchAndSettle(entry);
    QCOMPARE(m_application.calls.size(), error.isEmpty() ? 0 : 1);
    if (isStarted) {
        QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), kPatienceMs);
        QCOMPARE(takeRecord(), hasDesktopLauncher
                                   ? (QStringList{"[gio]", "[launch]", '[' + entry + ']'})
                                   : (QStringList{"[tool]", "[x]"}));
        return;
    }
    // What might have been started comes before what is started now.
    writeEntry("later.desktop", "Name=A\nExec=tool later\nTryExec=missing\n");
    QVERIFY(Platform::launchShellItem(path("later.desktop")));
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), kPatienceMs);
    QCOMPARE(starts(), QByteArray("later\n"));
}

void InstalledApplicationsTest::launchOverTheBusThatNobodyDoes()
{
    writeEntry(kBusName + ".desktop", "Name=A\nDBusActivatable=true\n");
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("^Gagal menjalankan aplikasi: \"" +
                                            QRegularExpression::escape(path(kBusName)) +
                                            "\\.desktop\" \".*" + kBusName + ".*\"$"));
    launchAndSettle(path(kBusName + ".desktop"));
    QVERIFY(!isRecorded());
}

void InstalledApplicationsTest::busIsThere_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::addColumn<bool>("isThere");
    const auto row = [](const char* title, const QByteArray& address, bool isThere) {
        QTest::newRow(title) << address << isThere;
    };
    row("socket", "unix:path=/run/user/1/bus", true);
    row("abstract socket", "unix:abstract=/tmp/autolaunch:,guid=1", true);
    row("several", "unix:path=/a;tcp:host=localhost,port=1", true);
    row("one that would be started", "autolaunch:", false);
    row("one that would be started for the screen", "autolaunch:scope=*user", false);
    row("at last one that would be started", "unix:path=/a;autolaunch:", false);
    row("at first one that would be started", "autolaunch:;unix:path=/a", false);
    row("none", "", false);
}

void InstalledApplicationsTest::busIsThere()
{
    QFETCH(QByteArray, address);
    qputenv(kBusAddress, address);
    QTEST(hasSessionBus(), "isThere");
}

/// Without an address the user's own bus is the one, if its socket is where it belongs.
void InstalledApplicationsTest::userBusIsThere()
{
    const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
    qunsetenv(kBusAddress);
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(path("run")));
    QVERIFY(!hasSessionBus());
    write("run/bus", "no socket");
    QVERIFY(!hasSessionBus());
    QVERIFY(QFile::remove(path("run/bus")));

    const QByteArray socketPath = QFile::encodeName(path("run/bus"));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    QVERIFY(size_t(socketPath.size()) < sizeof address.sun_path);
    std::copy(socketPath.cbegin(), socketPath.cend(), address.sun_path);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    QCOMPARE(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    QVERIFY(hasSessionBus());
    qputenv(kBusAddress, "autolaunch:"); // which comes before it
    QVERIFY(!hasSessionBus());
    qunsetenv(kBusAddress);
    qunsetenv("XDG_RUNTIME_DIR");
    QVERIFY(!hasSessionBus());
    ::close(socket);
    qputenv("XDG_RUNTIME_DIR", before);
}

void InstalledApplicationsTest::launchWithoutABus_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QByteArray>("address");
    QTest::addColumn<bool>("isStarted");
    for (const char* address : {"", "autolaunch:"}) {
        const char* kind = *address ? "one that would have to be started" : "none";
        QTest::addRow("%s, command line", kind)
            << QByteArray("Exec=tool\n") << QByteArray(address) << true;
        QTest::addRow("%s, no command line", kind) << QByteArray() << QByteArray(address) << false;
    }
}

void InstalledApplicationsTest::launchWithoutABus()
{
    QFETCH(QByteArray, lines);
    QFETCH(QByteArray, address);
    QFETCH(bool, isStarted);
    qputenv(kBusAddress, address);
    writeEntry(kBusName + ".desktop", "Name=A\nDBusActivatable=true\n" + lines);
    QCOMPARE(Platform::launchShellItem(path(kBusName + ".desktop")), isStarted);
    QTRY_COMPARE_WITH_TIMEOUT(isRecorded(), isStarted, kPatienceMs);
}

void InstalledApplicationsTest::launchIsDetached_data()
{
    QTest::addColumn<QString>("program");
    QTest::newRow("program") << "tool";
    QTest::newRow("desktop's launcher") << "gio";
}

/// What is launched belongs to no session that may end, and gets no channel that may break.
void InstalledApplicationsTest::launchIsDetached()
{
    QFETCH(QString, program);
    makeProgram(program,
                "#!/bin/sh\nread -r pid name state parent group session rest < /proc/self/stat\n"
                "part=$ORLIMO_TEST_RECORD.part\n"
                "echo \"$parent\" > \"$part\"\n"
                "echo \"$session\" >> \"$part\"\n"
                "for channel in 0 1 2; do\n"
                "link=$(/usr/bin/readlink \"/proc/$$/fd/$channel\")\n"
                "echo \"$link\" >> \"$part\"\n"
                "done\n"
                "/bin/mv \"$part\" \"$ORLIMO_TEST_RECORD\"\n");
    writeEntry("x.desktop", "Name=A\nExec=tool\n");
    launchAndSettle(path("x.desktop"));
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), kPatienceMs);
    const QStringList noted = record();
    QCOMPARE(noted.size(), 5);
    QCOMPARE(noted.at(0).toInt() == ::getpid(), program == "gio"); // that one is waited for
    QVERIFY(noted.at(1).toInt() != ::getsid(0));
    for (int channel = 0; channel < 3; ++channel)
        QCOMPARE(noted.at(2 + channel), channelOfThisProcess(channel));
}

void InstalledApplicationsTest::launchLeavesNothingOpen_data()
{
    QTest::addColumn<bool>("hasDesktopLauncher");
    QTest::newRow("by itself") << false;
    QTest::newRow("by the desktop's launcher") << true;
}

void InstalledApplicationsTest::launchLeavesNothingOpen()
{
    QFETCH(bool, hasDesktopLauncher);
    if (hasDesktopLauncher)
        makeProgram("gio");
    writeEntry("a/applications/x.desktop", "Name=A\nExec=tool\nIcon=/dev/zero\n");
    writeEntry("a/applications/y.desktop", "Name=B\nExec=missing\n");
    const QByteArray children = childrenOfThisProcess();
    QVERIFY(children != "unknown");
    const qsizetype open = countOf("/proc/self/fd");
    for (int i = 0; i < 5; ++i) {
        launchAndSettle("x.desktop");
        QVERIFY(!Platform::launchShellItem("y.desktop"));
        QCOMPARE(namesOffered().size(), 2);
        Platform::applicationIcon(path("a/applications/x.desktop"));
        QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), kPatienceMs);
        QCOMPARE(takeRecord().value(0), hasDesktopLauncher ? "[gio]" : "[tool]");
    }
    QCOMPARE(countOf("/proc/self/fd"), open);
    QCOMPARE(childrenOfThisProcess(), children); // the bus alone; none waits to be buried
}

int main(int argc, char** argv)
{
    return FreshProcess::main<InstalledApplicationsTest>(argc, argv,
                                                         {{"launch and quit", launchAndQuit}});
}

#include "tst_installedapplications.moc"
