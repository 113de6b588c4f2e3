// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Profile.h"
#include "Program.h"
#include "SolidIcons.h"
#include "SpotlightWindow.h"
#include "Theme.h"

#include <QDBusConnection>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QtTest>

#include <memory>
#include <optional>

/// An application that the message bus starts, as far as that is asked of it.
class BusApplication : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    int activations() const { return m_activations; }

public slots:
    void Activate(const QVariantMap&) { ++m_activations; }

private:
    int m_activations = 0;
};

/// Installed applications and the web in Spotlight: what a desktop full of entries comes to, and
/// what the rows start.
class E2eApplications : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void rowsComeInOrder_data();
    void rowsComeInOrder();
    void addressReachesTheBrowser_data();
    void addressReachesTheBrowser();
    void hintRowLaunchesNothing();
    void ghostTextStandsBehindTheCursor();
    void applicationGetsItsExactArguments_data();
    void applicationGetsItsExactArguments();
    void failingApplicationKeepsEverything();
    void messageBusActivatesAnApplication();
    void refusedActivationFallsBackToTheCommand_data();
    void refusedActivationFallsBackToTheCommand();

    void usedApplicationsRise();
    void nameIsInTheUsersLanguage_data();
    void nameIsInTheUsersLanguage();
    void applicationScope();
    void snippetScopeShowsNoApplications();
    void laterApplicationsNeedAnotherStart();
    void looks_data();
    void looks();

private:
    enum class Road { DesktopLauncher, OwnLauncher };

    std::unique_ptr<Program> makeProgram(Road road = Road::DesktopLauncher);
    void useSharedProgram(Road road = Road::DesktopLauncher);
    void startOwnProgram(std::unique_ptr<Program> program);
    void forgetLaunches();
    void writeEntry(const char* path, QByteArray lines);
    void writeDesktopLauncher(const QString& program);
    QString launcherFolder() const { return m_desktop->path(QStringLiteral("launcher")); }
    QStringList iconsFor(const QString& query);
    void doubleClickAt(int belowStrip) const;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<SolidIcons> m_icons;
    std::unique_ptr<Program> m_program;
    std::optional<Road> m_sharedRoad; ///< of the running program, if later cases may go on with it
};

namespace
{

struct EntryFile
{
    const char* path;
    const char* lines; ///< all of the file if it begins a group itself
};

// What should be in none of the rows has the icon "wrong".
constexpr EntryFile kEntries[] = {
    {"data/applications/org.example.Editor.desktop",
     "Name=Text Editor\nIcon=own-editor\nExec=recorder own-editor %F\n"},
    {"data/applications/text-cleaner.desktop",
     "Name=Text Cleaner\nIcon=wrong\nExec=recorder cleaner\nHidden=true\n"},
    {"data/applications/text-notes.desktop", "Name=Text Notes\nIcon=notes\nExec=recorder notes\n"},
    {"data/applications/zz-tools.desktop",
     "Name=Plain Text Tools\nIcon=tools\nExec=recorder tools\n"},

    {"share/applications/Org.Example.Clock.desktop",
     "Name=Text Clock\nIcon=clock\nExec=recorder clock\n"},
    {"share/applications/damaged.desktop", "Name=Damaged\nExec=recorder damaged\n===\n"},
    {"share/applications/calendar.desktop",
     "Name=Calendar\r\nExec=recorder calendar\r\nStartupNotify=true\r\n"},
    {"share/applications/kde4/viewer.desktop",
     "Name=Text Viewer\nIcon=viewer\nExec=recorder viewer %i --caption %c \"--scale=100%%\" "
     "\"two words\" %F\nMimeType=text/plain;\n"},
    {"share/applications/lost.desktop", "Name=Lost Program\nExec=no-such-program %U\n"},
    {"share/applications/notes-archive.desktop",
     "Name=Notes Archive\nIcon=archive\nExec=recorder archive\n"},
    {"share/applications/org.example.Door.desktop",
     "Name=Double Door\nExec=recorder door\nDBusActivatable=true\n"},
    {"share/applications/org.example.Bus.desktop",
     "Name=Text Bus\nIcon=bus\nDBusActivatable=true\n"},
    {"share/applications/org.example.Editor.desktop",
     "Name=Text Editor of the System\nIcon=wrong\nExec=recorder system-editor\n"},
    {"share/applications/org.example.Files.desktop",
     "Name=Text Files\nName[de]=Dateien\nName[de_AT]=Akten\nName[ja]=ファイル\nIcon=files\n"
     "Exec=recorder files %c\n"},
    {"share/applications/text-cleaner.desktop",
     "Name=Text Cleaner\nIcon=wrong\nExec=recorder cleaner\n"},
    {"share/applications/text-code.desktop", "Name=Text Code\nIcon=wrong\nExec=recorder %y\n"},
    {"share/applications/text-console.desktop",
     "Name=Text Console\nIcon=console\nExec=recorder console \"two words\"\nTerminal=true\n"},
    {"share/applications/text-elsewhere.desktop",
     "Name=Text Elsewhere\nIcon=wrong\nExec=recorder elsewhere\nOnlyShowIn=Elsewhere;\n"},
    {"share/applications/text-finder.desktop",
     "Name=Text Finder\nIcon=@FINDER@\nExec=recorder finder %k\n"},
    {"share/applications/text-headless.desktop",
     "# [Desktop Entry]\nType=Application\nName=Text Headless\nIcon=wrong\nExec=recorder a\n"
     "[Desktop Entry]\n"},
    {"share/applications/text-helper.desktop",
     "Name=Text Helper\nIcon=wrong\nExec=recorder helper\nNoDisplay=true\n"},
    {"share/applications/text-here.desktop",
     "Name=Text Here\nIcon=here\nExec=recorder here\nOnlyShowIn=Other;Tidy;\n"},
    {"share/applications/text-idle.desktop", "Name=Text Idle\nIcon=wrong\n"},
    {"share/applications/text-link.desktop",
     "[Desktop Entry]\nType=Link\nName=Text Link\nIcon=wrong\nURL=https://example.org\n"},
    {"share/applications/text-nameless.desktop", "Icon=wrong\nExec=recorder text\n"},
    {"share/applications/text-shared.desktop",
     "Name=Text Shared\nIcon=loose\nExec=recorder shared\nNotShowIn=Elsewhere;\n"},
    {"share/applications/text-not-here.desktop",
     "Name=Text Not Here\nIcon=wrong\nExec=recorder not-here\nNotShowIn=Tidy;\n"},
    {"share/applications/text-tried.desktop",
     "Name=Text Tried\nIcon=tried\nExec=recorder tried\nTryExec=recorder\n"},
    {"share/applications/text-unclosed.desktop",
     "Name=Text Unclosed\nIcon=wrong\nExec=recorder \"unclosed\n"},
    {"share/applications/text-untried.desktop",
     "Name=Text Untried\nIcon=wrong\nExec=recorder untried\nTryExec=no-such-program\n"},

    {"local/applications/kde4-viewer.desktop",
     "Name=Text Viewer of a Stranger\nIcon=wrong\nExec=recorder stranger\n"},
    {"local/applications/text-notes.desktop",
     "Name=Text Notes of a Stranger\nIcon=wrong\nExec=recorder stranger\n"},
    {"local/applications/text-quoted.desktop",
     R"(Name=Text Quoted
Icon=quoted
Exec=recorder quoted "\\$HOME" "a\\\\b" "say \\"hi\\"" "" "čeština 日本"
)"},
    {"local/applications/text-thirteenth.desktop",
     "Name=Text Thirteenth\nIcon=thirteenth\nExec=recorder thirteenth\n"},
    {"local/applications/web.desktop",
     "# with more groups\nName=Web Browser\nGenericName=Browser\nIcon=browser\n"
     "Exec=recorder browser %U\nActions=new;\n\n[Desktop Action new]\nName=Text Window\n"
     "Icon=wrong\nExec=recorder new\n"},
};

// Those of the sound entries whose names begin with "Text", in the order in which they are found.
const QStringList kTextIcons{
    QStringLiteral("own-editor"), QStringLiteral("notes"),  QStringLiteral("clock"),
    QStringLiteral("viewer"),     QStringLiteral("bus"),    QStringLiteral("files"),
    QStringLiteral("console"),    QStringLiteral("finder"), QStringLiteral("here"),
    QStringLiteral("loose"),      QStringLiteral("tried"),  QStringLiteral("quoted"),
    QStringLiteral("thirteenth"),
};
constexpr int kMostApplications = 12;

const QStringList kThemedIcons{
    QStringLiteral("own-editor"), QStringLiteral("notes"),   QStringLiteral("tools"),
    QStringLiteral("clock"),      QStringLiteral("viewer"),  QStringLiteral("archive"),
    QStringLiteral("bus"),        QStringLiteral("files"),   QStringLiteral("console"),
    QStringLiteral("here"),       QStringLiteral("tried"),   QStringLiteral("quoted"),
    QStringLiteral("thirteenth"), QStringLiteral("browser"), QStringLiteral("wrong"),
};

constexpr QPoint kCard = Program::SpotlightCard;
constexpr int kStripHeight = 80;
constexpr int kChipStripHeight = 126; // with one row of chips
constexpr int kClosedHeight = kStripHeight + 64;
constexpr int kOpenHeight = kClosedHeight + 328;
constexpr int kListPadding = 4;
constexpr int kHeaderHeight = 30;
constexpr int kRowHeight = 64;

const QString kDesktopLauncher = QStringLiteral("gio");
const QString kRecorder = QStringLiteral("recorder");
const QString kTerminal = QStringLiteral("x-terminal-emulator");

QString url(const QString& host, const QString& pathAndQuery)
{
    return QStringLiteral("https://www.%1.com/%2").arg(host, pathAndQuery);
}

QString videos(const QString& query)
{
    return url(QStringLiteral("youtube"), QStringLiteral("results?search_query=") + query);
}

QString search(const QString& query)
{
    return url(QStringLiteral("google"), QStringLiteral("search?q=") + query);
}

/// The part of `area` in which two pictures differ.
QRect difference(const QImage& a, const QImage& b, const QRect& area)
{
    QRect box;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (a.pixel(x, y) != b.pixel(x, y))
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

} // namespace

void E2eApplications::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
    m_icons = std::make_unique<SolidIcons>(m_desktop->path(QStringLiteral("share")));
    for (const QString& name : kThemedIcons)
        m_icons->addToTheme(name);
    m_icons->addFile(QStringLiteral("finder"), m_desktop->path(QStringLiteral("finder.png")));
    QDir().mkpath(m_desktop->path(QStringLiteral("local/pixmaps")));
    m_icons->addFile(QStringLiteral("loose"),
                     m_desktop->path(QStringLiteral("local/pixmaps/loose.png")));
    for (const EntryFile& entry : kEntries)
        writeEntry(entry.path, entry.lines);
    // Neither a folder nor a link to nowhere is an entry, whatever it is called.
    QVERIFY(QDir().mkpath(m_desktop->path(QStringLiteral("share/applications/text-a.desktop"))));
    QVERIFY(QFile::link(QStringLiteral("/nowhere"),
                        m_desktop->path(QStringLiteral("share/applications/text-b.desktop"))));
    // The recorders need one program of the machine.
    QVERIFY(QFile::link(QStandardPaths::findExecutable(QStringLiteral("mv")),
                        m_desktop->path(QStringLiteral("bin/mv"))));
    const QString launcher = QStandardPaths::findExecutable(kDesktopLauncher);
    QVERIFY2(!launcher.isEmpty(), "gio is not installed");
    writeDesktopLauncher(launcher);
}

/// The machine's own launcher, behind a script that notes what came of it.
void E2eApplications::writeDesktopLauncher(const QString& program)
{
    QVERIFY(QDir().mkpath(launcherFolder()));
    QFile script(launcherFolder() + QLatin1Char('/') + kDesktopLauncher);
    QVERIFY(script.open(QIODevice::WriteOnly));
    const QString lines = QStringLiteral("#!/bin/sh\n'%1' \"$@\"\nstatus=$?\n"
                                         "echo \"$status $*\" > '%2.part'\n"
                                         "mv '%2.part' '%2'\nexit $status\n");
    const QString noted = m_desktop->path(kDesktopLauncher + QStringLiteral(".out"));
    QVERIFY(script.write(lines.arg(program, noted).toUtf8()) > 0);
    QVERIFY(script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void E2eApplications::cleanup()
{
    const bool canGoOn = m_sharedRoad && !QTest::currentTestFailed() && m_program &&
                         !m_program->spotlight().isViewable;
    if (canGoOn)
        return;
    m_program.reset();
    m_sharedRoad.reset();
}

void E2eApplications::writeEntry(const char* path, QByteArray lines)
{
    const bool isWhole = lines.contains("[Desktop Entry]\n");
    lines.replace("@FINDER@", m_desktop->path(QStringLiteral("finder.png")).toUtf8());
    QFile file(m_desktop->path(QLatin1String(path)));
    QDir().mkpath(QFileInfo(file).path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(isWhole ? lines : "[Desktop Entry]\nType=Application\n" + lines);
}

std::unique_ptr<Program> E2eApplications::makeProgram(Road road)
{
    m_program.reset(); // there is one of it in a session
    m_sharedRoad.reset();
    auto program = std::make_unique<Program>(*m_desktop);
    program->setVariable(QStringLiteral("XDG_DATA_DIRS"),
                         m_desktop->path(QStringLiteral("share")) + QLatin1Char(':') +
                             m_desktop->path(QStringLiteral("local")));
    program->setVariable(QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("Tidy:Spotless"));
    const QString path = QStringLiteral("PATH");
    program->setVariable(path, road == Road::OwnLauncher
                                   ? m_desktop->path(QStringLiteral("bin"))
                                   : launcherFolder() + QLatin1Char(':') +
                                         m_desktop->environment().value(path));
    return program;
}

void E2eApplications::forgetLaunches()
{
    m_desktop->addRecorder(kRecorder);
    m_desktop->addRecorder(kTerminal);
    QFile::remove(m_desktop->path(kDesktopLauncher + QStringLiteral(".out")));
}

void E2eApplications::startOwnProgram(std::unique_ptr<Program> program)
{
    m_program = std::move(program);
    forgetLaunches();
    m_program->startAndSettle();
    m_program->openSpotlight();
}

void E2eApplications::useSharedProgram(Road road)
{
    if (m_sharedRoad != road) {
        startOwnProgram(makeProgram(road));
        m_sharedRoad = road;
        return;
    }
    QFile::remove(m_desktop->path(QStringLiteral("opened")));
    forgetLaunches();
    m_program->openSpotlight();
}

QStringList E2eApplications::iconsFor(const QString& query)
{
    m_program->key(QStringLiteral("ctrl+a"));
    m_program->type(query);
    QStringList icons;
    for (;;) {
        const qsizetype known = icons.size();
        icons += m_icons->namesIn(m_program->settledScreenshot());
        icons.removeDuplicates();
        if (icons.size() == known)
            return icons;
        // As many as are visible at once, so that none is passed over.
        for (int i = 0; i < SpotlightWindow::VISIBLE_ROWS; ++i)
            m_program->key(QStringLiteral("Down"));
    }
}

void E2eApplications::doubleClickAt(int belowStrip) const
{
    const QPoint position = kCard + QPoint(200, kStripHeight + belowStrip);
    m_desktop->xdotool({QStringLiteral("mousemove"), QString::number(position.x()),
                        QString::number(position.y()), QStringLiteral("click"),
                        QStringLiteral("--repeat"), QStringLiteral("2"), QStringLiteral("--delay"),
                        QStringLiteral("40"), QStringLiteral("1")});
}

void E2eApplications::rowsComeInOrder_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("icons");
    QTest::newRow("the first twelve") << "text" << kTextIcons.mid(0, kMostApplications);
    QTest::newRow("blanks and letter case") << "  TEXT E" << QStringList{"own-editor"};
    QTest::newRow("beginnings first") << "notes" << QStringList{"archive", "notes"};
    QTest::newRow("within a name") << "t v" << QStringList{"viewer"};
    QTest::newRow("end of a name") << "tools" << QStringList{"tools"};
    QTest::newRow("only the first of an id") << "text notes" << QStringList{"notes"};
    QTest::newRow("only the first of an id in a folder") << "text viewer" << QStringList{"viewer"};
    QTest::newRow("name of an action") << "text window" << QStringList();
    QTest::newRow("another name of it") << "browser" << QStringList{"browser"};
    QTest::newRow("none") << "nowhere" << QStringList();
}

void E2eApplications::rowsComeInOrder()
{
    QFETCH(QString, query);
    useSharedProgram();
    QTEST(iconsFor(query), "icons");
    m_program->key(QStringLiteral("Escape"));
    m_program->waitUntilSpotlightIsGone();
}

void E2eApplications::addressReachesTheBrowser_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("address");
    QTest::newRow("engine") << "y cats" << 0 << videos("cats");
    QTest::newRow("search behind the engine") << "y cats" << 1 << search("y%20cats");
    QTest::newRow("engine, upper case") << "Y Tom & Jerry" << 0 << videos("Tom%20%26%20Jerry");
    QTest::newRow("engine without a query") << "y " << 0 << search("y");
    QTest::newRow("two blanks are no engine") << "y  cats" << 0 << search("y%20%20cats");
    QTest::newRow("domain") << "example.org" << 0 << search("example.org");
    QTest::newRow("domain and blank") << "example.org " << 0 << "http://example.org";
    QTest::newRow("address and blank")
        << "https://example.org/a?b=c#d " << 0 << "https://example.org/a?b=c#d";
    QTest::newRow("port and blank") << "localhost:8080/x " << 0 << "http://localhost:8080/x";
    QTest::newRow("numbers and blank") << "10.0.0.1 " << 0 << "http://10.0.0.1";
    QTest::newRow("no number of a host") << "10.0.0.256 " << 0 << search("10.0.0.256");
    QTest::newRow("one letter is no ending") << "a.b " << 0 << search("a.b");
    QTest::newRow("not ASCII") << QStringLiteral("čeština 日本 ✓") << 0
                               << search("%C4%8De%C5%A1tina%20%E6%97%A5%E6%9C%AC%20%E2%9C%93");
    QTest::newRow("not ASCII, engine") << QStringLiteral("y 猫") << 0 << videos("%E7%8C%AB");
    QTest::newRow("what has a meaning in addresses")
        << "50% \"off\" #1 a+b 'c' ?d=/e" << 0
        << search("50%25%20%22off%22%20%231%20a%2Bb%20%27c%27%20%3Fd%3D%2Fe");
}

void E2eApplications::addressReachesTheBrowser()
{
    QFETCH(QString, text);
    QFETCH(int, row);
    QFETCH(QString, address);
    useSharedProgram();
    const QByteArray usage = m_program->readData(QStringLiteral("usage.json"));
    m_program->paste(text);
    QTRY_COMPARE(m_program->spotlight().geometry.height(), kOpenHeight);
    for (int i = 0; i < row; ++i)
        m_program->key(QStringLiteral("Down"));
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->opened(), QStringList{address});
    m_program->waitUntilSpotlightIsGone();
    QCOMPARE(m_program->readData(QStringLiteral("usage.json")), usage);
}

void E2eApplications::hintRowLaunchesNothing()
{
    useSharedProgram();
    m_program->type(QStringLiteral("y "));
    QTRY_COMPARE(m_program->spotlight().geometry.height(), kOpenHeight);
    m_program->settledScreenshot();
    constexpr int kHint = kListPadding + kHeaderHeight + kRowHeight / 2;
    doubleClickAt(kHint);
    m_program->settledScreenshot();
    QVERIFY(m_program->isSpotlightUp());
    QCOMPARE(m_desktop->opened(), QStringList());
    // Below it comes the search, with a header of its own.
    doubleClickAt(kHint + kRowHeight + kHeaderHeight);
    QTRY_COMPARE(m_desktop->opened(), QStringList{search(QStringLiteral("y"))});
    m_program->waitUntilSpotlightIsGone();
}

void E2eApplications::ghostTextStandsBehindTheCursor()
{
    const QRect box(kCard + QPoint(18, 18), QSize(484, 44));
    constexpr int kGhostWidth = 80;  // it is wider
    constexpr int kCursorWidth = 40; // a cursor at either end of a few letters is narrower
    useSharedProgram();
    m_program->type(QStringLiteral("y"));
    const QImage without = m_program->settledScreenshot();
    const auto changedWidth = [&](const QString& key) {
        m_program->key(key);
        return difference(without, m_program->settledScreenshot(), box).width();
    };
    const auto shows = [&](const QString& key) { return changedWidth(key) > kGhostWidth; };
    const auto hides = [&](const QString& key) { return changedWidth(key) < kCursorWidth; };
    QVERIFY(shows(QStringLiteral("space")));
    QVERIFY(hides(QStringLiteral("Left"))); // not at the end of the text
    QVERIFY(shows(QStringLiteral("End")));
    QVERIFY(hides(QStringLiteral("c")));
    QVERIFY(shows(QStringLiteral("BackSpace")));
    QVERIFY(hides(QStringLiteral("space"))); // two blanks
    m_program->key(QStringLiteral("BackSpace"));
    m_program->key(QStringLiteral("ctrl+a"));
    m_program->key(QStringLiteral("ctrl+c"));
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("y ")); // it is no part of the text
    m_program->key(QStringLiteral("Escape"));
    m_program->waitUntilSpotlightIsGone();
}

void E2eApplications::applicationGetsItsExactArguments_data()
{
    QTest::addColumn<int>("road");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("launcher"); // what the desktop's launcher notes
    const QString finder = m_desktop->path("share/applications/text-finder.desktop");
    for (const Road road : {Road::DesktopLauncher, Road::OwnLauncher}) {
        // The file is that of an entry which is the launcher's business.
        const auto addRow = [this, road](const char* name, const char* query,
                                         const QString& program, const QString& arguments,
                                         const char* key, const char* file, int status = 0) {
            const bool isOwn = road == Road::OwnLauncher;
            const QString path = m_desktop->path(QLatin1String(file));
            QTest::addRow("%s, %s", name, isOwn ? "by itself" : "by the desktop's launcher")
                << int(road) << query << program << arguments << key
                << (isOwn || !*file ? QString()
                                    : QStringLiteral("%1 launch %2\n").arg(status).arg(path));
        };
        addRow("the user's own", "text editor", kRecorder, "[own-editor]\n",
               "org.example.editor.desktop", "data/applications/org.example.Editor.desktop");
        addRow("upper-case id", "text clock", kRecorder, "[clock]\n", "org.example.clock.desktop",
               "share/applications/Org.Example.Clock.desktop");
        addRow("field codes", "text viewer", kRecorder,
               "[viewer]\n[--icon]\n[viewer]\n[--caption]\n[Text Viewer]\n[--scale=100%]\n"
               "[two words]\n",
               "kde4-viewer.desktop", "share/applications/kde4/viewer.desktop");
        addRow("quotes", "text quoted", kRecorder,
               QStringLiteral("[quoted]\n[$HOME]\n[a\\b]\n[say \"hi\"]\n[]\n[čeština 日本]\n"),
               "text-quoted.desktop", "local/applications/text-quoted.desktop");
        addRow("its own place", "text finder", kRecorder,
               QStringLiteral("[finder]\n[%1]\n").arg(finder), "text-finder.desktop", "");
        addRow("terminal", "text console", kTerminal, "[-e]\n[recorder]\n[console]\n[two words]\n",
               "text-console.desktop", "");
        addRow("more groups", "web b", kRecorder, "[browser]\n", "web.desktop",
               "local/applications/web.desktop");
        addRow("lines of another system", "calendar", kRecorder, "[calendar]\n", "calendar.desktop",
               "share/applications/calendar.desktop");
        addRow("form that is refused", "damaged", kRecorder, "[damaged]\n", "damaged.desktop",
               "share/applications/damaged.desktop", 1);
    }
}

void E2eApplications::applicationGetsItsExactArguments()
{
    QFETCH(int, road);
    QFETCH(QString, query);
    QFETCH(QString, program);
    QFETCH(QString, arguments);
    QFETCH(QString, key);
    QFETCH(QString, launcher);
    useSharedProgram(Road(road));
    QVERIFY(!m_program->usage().contains(key));
    m_program->type(query);
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->recorded(program), arguments);
    QTRY_COMPARE(m_desktop->recorded(kDesktopLauncher), launcher);
    m_program->waitUntilSpotlightIsGone();
    QCOMPARE(m_program->usage().value(key).toObject().value(QStringLiteral("c")).toInt(), 1);
    QCOMPARE(m_desktop->opened(), QStringList());
}

void E2eApplications::failingApplicationKeepsEverything()
{
    useSharedProgram();
    m_program->type(QStringLiteral("lost"));
    m_program->key(QStringLiteral("Return"));
    QTRY_VERIFY(m_program->spotlight().isViewable && !m_program->isSpotlightUp() &&
                m_desktop->client().focus() != XCB_WINDOW_NONE);
    m_program->settledScreenshot();
    m_program->key(QStringLiteral("Return"));
    QTRY_VERIFY(m_program->isSpotlightUp());
    QVERIFY(!m_program->usage().contains(QStringLiteral("lost.desktop")));
    m_program->key(QStringLiteral("ctrl+a"));
    m_program->key(QStringLiteral("ctrl+c"));
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("lost"));
    m_program->key(QStringLiteral("Escape"));
    m_program->waitUntilSpotlightIsGone();
}

void E2eApplications::messageBusActivatesAnApplication()
{
    const QString connection = QStringLiteral("e2e-applications");
    QDBusConnection bus = QDBusConnection::connectToBus(m_desktop->busAddress(), connection);
    BusApplication application;
    QVERIFY(bus.registerObject(QStringLiteral("/org/example/Bus"), &application,
                               QDBusConnection::ExportAllSlots));
    QVERIFY(bus.registerService(QStringLiteral("org.example.Bus")));
    useSharedProgram();
    m_program->type(QStringLiteral("text bus"));
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(application.activations(), 1);
    m_program->waitUntilSpotlightIsGone();
    QVERIFY(m_program->usage().contains(QStringLiteral("org.example.bus.desktop")));
    QDBusConnection::disconnectFromBus(connection);
}

void E2eApplications::refusedActivationFallsBackToTheCommand_data()
{
    QTest::addColumn<int>("road");
    QTest::addColumn<QString>("launcher");
    const QString entry = m_desktop->path("share/applications/org.example.Door.desktop");
    QTest::newRow("by the desktop's launcher")
        << int(Road::DesktopLauncher) << "0 launch " + entry + "\n";
    QTest::newRow("by itself") << int(Road::OwnLauncher) << QString();
}

void E2eApplications::refusedActivationFallsBackToTheCommand()
{
    QFETCH(int, road);
    QFETCH(QString, launcher);
    useSharedProgram(Road(road));
    m_program->type(QStringLiteral("door"));
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->recorded(kRecorder), QStringLiteral("[door]\n"));
    QTRY_COMPARE(m_desktop->recorded(kDesktopLauncher), launcher);
    m_program->waitUntilSpotlightIsGone();
}

void E2eApplications::usedApplicationsRise()
{
    const double now = double(QDateTime::currentSecsSinceEpoch());
    const auto used = [now](int count) {
        return QJsonObject{{QStringLiteral("c"), count}, {QStringLiteral("t"), now}};
    };
    const QJsonObject usage{
        {QStringLiteral("text-quoted.desktop"), used(4)},
        {QStringLiteral("org.example.clock.desktop"), used(2)},
        {QStringLiteral("text-thirteenth.desktop"), used(90)}, // beyond the first twelve
    };
    std::unique_ptr<Program> program = makeProgram();
    program->writeData(QStringLiteral("usage.json"), QJsonDocument(usage).toJson());
    startOwnProgram(std::move(program));
    QStringList expected = kTextIcons.mid(0, kMostApplications);
    expected.removeOne(QStringLiteral("quoted"));
    expected.removeOne(QStringLiteral("clock"));
    expected = QStringList{QStringLiteral("quoted"), QStringLiteral("clock")} + expected;
    QCOMPARE(iconsFor(QStringLiteral("text")), expected);

    m_program->key(QStringLiteral("ctrl+a"));
    m_program->type(QStringLiteral("text tried"));
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->recorded(kRecorder), QStringLiteral("[tried]\n"));
    m_program->waitUntilSpotlightIsGone();
    m_program->openSpotlight();
    expected.removeOne(QStringLiteral("tried"));
    expected.insert(2, QStringLiteral("tried"));
    QCOMPARE(iconsFor(QStringLiteral("text")), expected);
}

void E2eApplications::nameIsInTheUsersLanguage_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("name");
    QTest::newRow("German") << "LC_ALL"
                            << "de_DE.UTF-8"
                            << "Dateien";
    QTest::newRow("German of Austria") << "LC_MESSAGES"
                                       << "de_AT.UTF-8"
                                       << "Akten";
    QTest::newRow("Japanese") << "LANG"
                              << "ja_JP.UTF-8" << QStringLiteral("ファイル");
    QTest::newRow("one that it isn't told in") << "LANG"
                                               << "cs_CZ.UTF-8"
                                               << "Text Files";
}

void E2eApplications::nameIsInTheUsersLanguage()
{
    QFETCH(QString, variable);
    QFETCH(QString, locale);
    QFETCH(QString, name);
    std::unique_ptr<Program> program = makeProgram();
    program->setVariable(variable, locale);
    startOwnProgram(std::move(program));
    for (const char* other : {"Dateien", "Akten", "Text Files"}) {
        const QStringList icons = iconsFor(QLatin1String(other));
        QCOMPARE(icons.contains(QStringLiteral("files")), name == QLatin1String(other));
    }
    m_program->key(QStringLiteral("ctrl+a"));
    m_program->paste(name);
    QTRY_COMPARE(m_icons->namesIn(m_desktop->client().screenshot()), QStringList{"files"});
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->recorded(kRecorder), QStringLiteral("[files]\n[%1]\n").arg(name));
}

void E2eApplications::applicationScope()
{
    std::unique_ptr<Program> program = makeProgram();
    program->setSetting(QStringLiteral("Spotlight/DefaultScope"), QStringLiteral("Application"));
    program->writeData(
        QStringLiteral("data.json"),
        Profile::document({Profile::item(QStringLiteral("Clock of mine"),
                                         QStringLiteral("Application"), QStringLiteral("recorder")),
                           Profile::item(QStringLiteral("Browser page"), QStringLiteral("URL"),
                                         QStringLiteral("https://example.org"))}));
    startOwnProgram(std::move(program));
    const auto firstIconMiddle = [this] {
        const auto shown = m_icons->shownIn(m_program->settledScreenshot());
        return shown.isEmpty() ? 0 : shown.constFirst().area.center().y() - kCard.y();
    };
    // The header is there although nothing else can be.
    constexpr int kFirst = kChipStripHeight + kListPadding + kHeaderHeight + kRowHeight / 2;
    QCOMPARE(iconsFor(QStringLiteral("browser")), QStringList{"browser"});
    QVERIFY(std::abs(firstIconMiddle() - kFirst) <= 1);
    // The user's own items of the kind come in front of it and without one.
    QCOMPARE(iconsFor(QStringLiteral("clock")), QStringList{"clock"});
    QVERIFY(std::abs(firstIconMiddle() - kFirst - kRowHeight) <= 1);

    constexpr int kClosedWithChips = kChipStripHeight + 64;
    for (const char* text : {"nowhere", "page", "example.org ", "y cats", "2+2"}) {
        m_program->key(QStringLiteral("ctrl+a"));
        m_program->type(QLatin1String(text));
        m_program->settledScreenshot();
        QCOMPARE(m_program->spotlight().geometry.height(), kClosedWithChips);
        m_program->key(QStringLiteral("Return"));
        m_program->settledScreenshot();
        QVERIFY(m_program->isSpotlightUp());
    }
    QCOMPARE(m_desktop->opened(), QStringList());
    m_program->key(QStringLiteral("ctrl+a"));
    m_program->type(QStringLiteral("browser"));
    m_program->key(QStringLiteral("Down")); // there is no other row
    m_program->key(QStringLiteral("Return"));
    QTRY_COMPARE(m_desktop->recorded(kRecorder), QStringLiteral("[browser]\n"));
}

void E2eApplications::snippetScopeShowsNoApplications()
{
    std::unique_ptr<Program> program = makeProgram();
    program->setSetting(QStringLiteral("Spotlight/DefaultScope"),
                        QStringList{QStringLiteral("URL"), QStringLiteral("Snippet")});
    program->writeData(QStringLiteral("data.json"),
                       Profile::document({Profile::item(QStringLiteral("Text for letters"),
                                                        QStringLiteral("Snippet"),
                                                        QStringLiteral("kind regards"))}));
    startOwnProgram(std::move(program));
    QCOMPARE(iconsFor(QStringLiteral("text")), QStringList());
    m_program->key(QStringLiteral("Down"));
    m_program->key(QStringLiteral("Return"));
    m_program->waitUntilSpotlightIsGone();
    QTRY_COMPARE(m_desktop->clipboard(), QStringLiteral("kind regards"));
}

void E2eApplications::laterApplicationsNeedAnotherStart()
{
    const QString path = QStringLiteral("data/applications/zz-new.desktop");
    startOwnProgram(makeProgram());
    QCOMPARE(iconsFor(QStringLiteral("text e")), QStringList{"own-editor"});
    writeEntry("data/applications/zz-new.desktop", "Name=Newcomer\nIcon=browser\nExec=recorder\n");
    QCOMPARE(iconsFor(QStringLiteral("newcomer")), QStringList());
    startOwnProgram(makeProgram());
    QCOMPARE(iconsFor(QStringLiteral("newcomer")), QStringList{"browser"});
    QVERIFY(QFile::remove(m_desktop->path(path)));
}

void E2eApplications::looks_data()
{
    QTest::addColumn<int>("theme");
    QTest::newRow("light") << 1;
    QTest::newRow("dark") << 2;
}

void E2eApplications::looks()
{
    QFETCH(int, theme);
    const QString suffix = QLatin1Char('-') + QLatin1String(QTest::currentDataTag());
    Theme::forceTheme = theme; // for the colours that are expected
    std::unique_ptr<Program> program = makeProgram();
    program->setSetting(QStringLiteral("Theme/ForceTheme"), theme);
    startOwnProgram(std::move(program));
    const auto pictureOf = [this, &suffix](const QString& text, const QString& name) {
        m_program->key(QStringLiteral("ctrl+a"));
        m_program->type(text);
        const QImage picture = m_program->settledScreenshot();
        Program::keep(picture, name + suffix);
        return picture;
    };
    const QImage rows = pictureOf(QStringLiteral("text"), QStringLiteral("applications"));
    const QVector<SolidIcons::Shown> shown = m_icons->shownIn(rows);
    QVERIFY(shown.size() >= 4);
    // Seven pixels inside a circle of 36, which is 12 from the left of the block.
    const QPoint block = kCard + QPoint(6 + 4, kStripHeight + kListPadding + kHeaderHeight + 4);
    const QRect icon(block + QPoint(12 + 7, 10 + 7), QSize(22, 22));
    for (int i = 0; i < 4; ++i) {
        const QRect place = icon.translated(0, i * kRowHeight);
        QCOMPARE(shown.at(i).area, place);
        const QColor circle(i == 0 ? Theme::colors().primary : Theme::colors().surfaceVariant);
        QCOMPARE(rows.pixelColor(place.left() - 3, place.center().y()), circle);
        QCOMPARE(rows.pixelColor(place.right() + 3, place.center().y()), circle);
    }
    pictureOf(QStringLiteral("browser"), QStringLiteral("application-and-web"));
    pictureOf(QStringLiteral("calendar"), QStringLiteral("application-without-icon"));
    pictureOf(QStringLiteral("y cats"), QStringLiteral("web-engine"));
    pictureOf(QStringLiteral("y "), QStringLiteral("web-engine-hint"));
    pictureOf(QStringLiteral("example.org "), QStringLiteral("web-address"));
}

QTEST_GUILESS_MAIN(E2eApplications)
#include "tst_e2e_applications.moc"
