// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DesktopFolders.h"
#include "FreshProcess.h"
#include "InstalledApplications.h"
#include "SessionBus.h"
#include "ShellLaunch.h"
#include "TestHome.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVirtualObject>
#include <QDir>
#include <QFile>
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

class ShellLaunchTest : public QObject, private DesktopFolders
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

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
    void launchAndSettle(const QString& value) const;
    QByteArray starts() const;
    bool isRecorded() const { return QFile::exists(path("record")); }
    QStringList record() const;
    QStringList takeRecord() const;

    QProcess m_bus;
    QByteArray m_busAddress;
    QByteArray m_searchPath;
    BusApplication m_application;
};

void ShellLaunchTest::initTestCase()
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

void ShellLaunchTest::init()
{
    makeFolders(kRecorder);
    qputenv(kRecordVariable, QFile::encodeName(path("record")));
    qputenv(kBusAddress, m_busAddress);
    m_application.error.clear();
    m_application.calls.clear();
}

void ShellLaunchTest::cleanup()
{
    QDBusConnection(kBusConnection).unregisterService(kBusName);
    qputenv("PATH", m_searchPath);
}

void ShellLaunchTest::cleanupTestCase()
{
    QDBusConnection::disconnectFromBus(kBusConnection);
    m_bus.terminate();
    m_bus.waitForFinished();
}

/// Launches an item, and waits until nothing is waited for any more.
void ShellLaunchTest::launchAndSettle(const QString& value) const
{
    QVERIFY(Platform::launchShellItem(value));
    QTRY_VERIFY_WITH_TIMEOUT(isSettled(), kPatienceMs);
}

/// The arguments of all calls of the recorder, one on a line.
QByteArray ShellLaunchTest::starts() const
{
    QFile file(path("record.starts"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The lines of what the recorder noted: name, arguments, folder.
QStringList ShellLaunchTest::record() const
{
    QFile file(path("record"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
}

/// The same without the folder, and the note is gone.
QStringList ShellLaunchTest::takeRecord() const
{
    QStringList lines = record();
    if (!lines.isEmpty())
        lines.removeLast();
    QFile::remove(path("record"));
    return lines;
}

void ShellLaunchTest::launchByCommandLine_data()
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

void ShellLaunchTest::launchByCommandLine()
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

void ShellLaunchTest::launchRunsInItsFolder()
{
    QVERIFY(QDir().mkpath(path("my folder")));
    makeProgram("../my folder/inner", kRecorder);
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

void ShellLaunchTest::launchByTheDesktop_data()
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

void ShellLaunchTest::launchByTheDesktop()
{
    QFETCH(QByteArray, lines);
    QFETCH(bool, isByTheDesktop);
    makeProgram("gio", kRecorder);
    makeProgram("x-terminal-emulator", kRecorder);
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

void ShellLaunchTest::launchThatTheDesktopRefuses_data()
{
    QTest::addColumn<QByteArray>("launcher"); // the whole program
    const QByteArray notes = "#!/bin/sh\necho \"$*\" > \"$ORLIMO_TEST_RECORD.asked\"\n";
    QTest::newRow("says no") << notes + "exit 1\n";
    QTest::newRow("says no in another way") << notes + "exit 255\n";
    QTest::newRow("dies") << notes + "kill -9 $$\n";
    QTest::newRow("can't be run") << QByteArray("#!/nowhere/sh\n");
    QTest::newRow("is no program") << QByteArray("\x7f\x45LF", 4);
}

void ShellLaunchTest::launchThatTheDesktopRefuses()
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

void ShellLaunchTest::launchThatTheRealDesktopRefuses_data()
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
void ShellLaunchTest::launchThatTheRealDesktopRefuses()
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

void ShellLaunchTest::launchThatNobodyDoes()
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

void ShellLaunchTest::launchOutlivesThisProgram_data()
{
    QTest::addColumn<bool>("hasBegun");
    QTest::newRow("ended at once") << false;
    QTest::newRow("ended in the middle") << true;
}

void ShellLaunchTest::launchOutlivesThisProgram()
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

void ShellLaunchTest::launchFails_data()
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

void ShellLaunchTest::launchFails()
{
    QFETCH(QString, value);
    QFETCH(QByteArray, lines);
    makeProgram("x-terminal-emulator", kRecorder);
    writeEntry("own/applications/x.desktop", lines);
    writeEntry("outside.desktop", lines);
    QVERIFY(QDir().mkpath(path("folder.desktop")));
    QCOMPARE(::mkfifo(qPrintable(path("pipe.desktop")), 0600), 0);
    const QString wanted = value.contains("%1") ? value.arg(root()) : value;
    QVERIFY(!Platform::launchShellItem(wanted));
    // The desktop's launcher changes nothing about it.
    makeProgram("gio", kRecorder);
    QVERIFY(!Platform::launchShellItem(wanted));
    QVERIFY(!isRecorded());
}

void ShellLaunchTest::launchInATerminal_data()
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

void ShellLaunchTest::launchInATerminal()
{
    QFETCH(QStringList, installed);
    QFETCH(QString, chosen);
    for (const QString& name : installed)
        makeProgram(name, kRecorder);
    makeProgram("gio", kRecorder); // which might know no terminal
    qputenv("TERMINAL", QFile::encodeName(chosen.replace("%1", root())));
    writeEntry("x.desktop", "Name=A\nExec=tool \"a b\"\nTerminal=true\nPath=/tmp\n");
    QVERIFY(Platform::launchShellItem(path("x.desktop")));
    QTRY_VERIFY_WITH_TIMEOUT(isRecorded(), kPatienceMs);
    QCOMPARE(record().constLast(), "/tmp");
    QTEST(takeRecord(), "called");
}

void ShellLaunchTest::launchTerminalIsMissing()
{
    makeProgram("gio", kRecorder);
    qputenv("TERMINAL", "missing");
    writeEntry("x.desktop", "Name=A\nExec=tool\nTerminal=true\n");
    QVERIFY(!Platform::launchShellItem(path("x.desktop")));
    QVERIFY(!isRecorded());
}

void ShellLaunchTest::launchOverTheBus_data()
{
    QTest::addColumn<bool>("hasDesktopLauncher");
    QTest::newRow("alone") << false;
    QTest::newRow("before the desktop's launcher") << true;
}

void ShellLaunchTest::launchOverTheBus()
{
    QFETCH(bool, hasDesktopLauncher);
    if (hasDesktopLauncher)
        makeProgram("gio", kRecorder);
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

void ShellLaunchTest::launchOverTheBusWithoutCommandLine_data()
{
    QTest::addColumn<bool>("hasDesktopLauncher");
    QTest::newRow("alone") << false;
    QTest::newRow("beside a launcher that calls nobody") << true;
}

void ShellLaunchTest::launchOverTheBusWithoutCommandLine()
{
    QFETCH(bool, hasDesktopLauncher);
    if (hasDesktopLauncher)
        makeProgram("gio", kRecorder);
    QVERIFY(QDBusConnection(kBusConnection).registerService(kBusName));
    writeEntry(kBusName + ".desktop", "Name=A\nDBusActivatable=true\n");
    QVERIFY(Platform::launchShellItem(path(kBusName + ".desktop")));
    QTRY_COMPARE_WITH_TIMEOUT(m_application.calls.size(), 1, kPatienceMs);
    QVERIFY(!isRecorded());
}

void ShellLaunchTest::launchOverTheBusTurnedDown_data()
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

void ShellLaunchTest::launchOverTheBusTurnedDown()
{
    QFETCH(QString, error);
    QFETCH(bool, hasDesktopLauncher);
    QFETCH(bool, isStarted);
    m_application.error = error;
    if (!error.isEmpty())
        QVERIFY(QDBusConnection(kBusConnection).registerService(kBusName));
    if (hasDesktopLauncher)
        makeProgram("gio", kRecorder);
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

void ShellLaunchTest::launchOverTheBusThatNobodyDoes()
{
    writeEntry(kBusName + ".desktop", "Name=A\nDBusActivatable=true\n");
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("^Gagal menjalankan aplikasi: \"" +
                                            QRegularExpression::escape(path(kBusName)) +
                                            "\\.desktop\" \".*" + kBusName + ".*\"$"));
    launchAndSettle(path(kBusName + ".desktop"));
    QVERIFY(!isRecorded());
}

void ShellLaunchTest::busIsThere_data()
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

void ShellLaunchTest::busIsThere()
{
    QFETCH(QByteArray, address);
    qputenv(kBusAddress, address);
    QTEST(hasSessionBus(), "isThere");
}

/// Without an address the user's own bus is the one, if its socket is where it belongs.
void ShellLaunchTest::userBusIsThere()
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

void ShellLaunchTest::launchWithoutABus_data()
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

void ShellLaunchTest::launchWithoutABus()
{
    QFETCH(QByteArray, lines);
    QFETCH(QByteArray, address);
    QFETCH(bool, isStarted);
    qputenv(kBusAddress, address);
    writeEntry(kBusName + ".desktop", "Name=A\nDBusActivatable=true\n" + lines);
    QCOMPARE(Platform::launchShellItem(path(kBusName + ".desktop")), isStarted);
    QTRY_COMPARE_WITH_TIMEOUT(isRecorded(), isStarted, kPatienceMs);
}

void ShellLaunchTest::launchIsDetached_data()
{
    QTest::addColumn<QString>("program");
    QTest::newRow("program") << "tool";
    QTest::newRow("desktop's launcher") << "gio";
}

/// What is launched belongs to no session that may end, and gets no channel that may break.
void ShellLaunchTest::launchIsDetached()
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

void ShellLaunchTest::launchLeavesNothingOpen_data()
{
    QTest::addColumn<bool>("hasDesktopLauncher");
    QTest::newRow("by itself") << false;
    QTest::newRow("by the desktop's launcher") << true;
}

void ShellLaunchTest::launchLeavesNothingOpen()
{
    QFETCH(bool, hasDesktopLauncher);
    if (hasDesktopLauncher)
        makeProgram("gio", kRecorder);
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
    return FreshProcess::main<ShellLaunchTest>(argc, argv, {{"launch and quit", launchAndQuit}});
}

#include "tst_shelllaunch.moc"
