// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"
#include "Browser.h"
#include "CustomMessageBox.h"
#include "FreshProcess.h"
#include "LaunchDispatcher.h"
#include "Localization.h"
#include "TestFiles.h"
#include "TestHome.h"
#include "Types.h"
#include "UiDriver.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QSaveFile>
#include <QTest>
#include <QUrl>

#include <memory>

namespace
{

// Set for the programs that are launched, which are copies of this test: they write down how they
// were called, into this directory.
constexpr char kRecordsVariable[] = "ORLIMO_TEST_RECORDS";

// Names an item that the shell of Windows knows.
const QString kClassOfTheShell = QStringLiteral("::{645FF040-5081-101B-9F08-00AA002F954E}");

int recordCall(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    const QString fileName = QStringLiteral("%1.json").arg(QCoreApplication::applicationPid());
    QSaveFile file(QDir(qEnvironmentVariable(kRecordsVariable)).filePath(fileName));
    const QJsonObject record{
        {"arguments", QJsonArray::fromStringList(QCoreApplication::arguments().mid(1))},
        {"directory", QDir::currentPath()}};
    const bool isWritten = file.open(QIODevice::WriteOnly) &&
                           file.write(QJsonDocument(record).toJson()) > 0 && file.commit();
    return isWritten ? 0 : 1;
}

struct Message
{
    QString title;
    QString text;
    bool operator==(const Message&) const = default;
};

/// Runs an element and answers the error dialogs, all of which it checks for what they share.
struct Launch
{
    Launch(const QString& type, const QString& value)
    {
        QWidget parent;
        ModalDriver driver([this, &parent](QWidget* modal) {
            const auto labels = modal->findChildren<QLabel*>();
            messages.append({labels.value(0)->text(), labels.value(1)->text()});
            isBlocked = isBlocked && g_blockAutoQuit;
            isOwned = isOwned && modal->parentWidget() == &parent;
            isMessageBox = isMessageBox && qobject_cast<CustomMessageBox*>(modal);
            pressKey(*modal, Qt::Key_Escape);
        });
        LauncherElement el;
        el.shortcutType = type;
        el.value = value;
        isDone = LaunchDispatcher::execute(el, &parent);
    }

    QList<Message> messages;
    bool isDone = false;
    bool isBlocked = true;
    bool isOwned = true;
    bool isMessageBox = true;
};

/// Desktop entries are what one of the two systems has.
bool hasDesktopEntries()
{
    return QSysInfo::kernelType() == QLatin1String("linux");
}

} // namespace

class LaunchDispatcherTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void snippetGoesToTheClipboard_data();
    void snippetGoesToTheClipboard();
    void urlIsOpenedAsTyped_data();
    void urlIsOpenedAsTyped();
    void fileIsOpenedAsLocalFile_data();
    void fileIsOpenedAsLocalFile();
    void applicationGetsExactArguments_data();
    void applicationGetsExactArguments();
    void applicationInheritsTheWorkingDirectory();
    void applicationIsFoundByTheSearchPath();
    void failedStartIsReported_data();
    void failedStartIsReported();
    void bulkReadsEachLine_data();
    void bulkReadsEachLine();
    void bulkOpensInOrder();
    void bulkStartsPrograms_data();
    void bulkStartsPrograms();
    void bulkErrorsNeverStopIt();
    void bulkPrefersAFileToAnAddress();
    void errorTitleIsNeverTranslated();
    void errorDialogKeepsWindowsOpen();
    void shellItemIsLaunched_data();
    void shellItemIsLaunched();
    void shellItemCannotBeStarted_data();
    void shellItemCannotBeStarted();

private:
    QString path(const QString& name) const { return QDir(m_dir).filePath(name); }
    void makeFile(const QString& name) const;
    void makeEntry(const QString& name, const QString& program) const;
    void makeShellLauncher() const;
    void addDesktopEntryRows() const;
    QList<QJsonObject> records() const;
    QStringList onlyArguments() const;

    QString m_dir;     ///< the current directory of the tests
    QString m_records; ///< where launched programs leave their records
    QByteArray m_searchPath;
    std::unique_ptr<Browser> m_browser;
};

void LaunchDispatcherTest::initTestCase()
{
    m_dir = TestHome::path() + QStringLiteral("/with blank é");
    m_records = TestHome::path() + QStringLiteral("/records");
    QVERIFY(QDir().mkpath(m_dir));
    QVERIFY(QDir::setCurrent(m_dir));
    m_dir = QDir::currentPath(); // as the system writes it
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), path("tool.exe")));
    makeFile("my notes.txt");
    makeFile("readme.example");
    makeFile("plain");
    m_searchPath = qgetenv("PATH");
    qputenv(kRecordsVariable, QFile::encodeName(m_records));
}

void LaunchDispatcherTest::init()
{
    QVERIFY(QDir().mkpath(m_records));
    m_browser = std::make_unique<Browser>();
    Tr::currentLang = Lang::En;
}

void LaunchDispatcherTest::cleanup()
{
    m_browser.reset();
    qputenv("PATH", m_searchPath);
    QVERIFY(QDir(m_records).removeRecursively());
}

void LaunchDispatcherTest::makeFile(const QString& name) const
{
    QVERIFY(TestFiles::write(path(name)));
}

/// A desktop entry that starts `program`, if it isn't launched by other means.
void LaunchDispatcherTest::makeEntry(const QString& name, const QString& program) const
{
    const QString lines = QStringLiteral("[Desktop Entry]\nType=Application\nName=Sample\n"
                                         "Exec=\"%1\" by itself %U\n");
    QVERIFY(TestFiles::write(path(name), lines.arg(program).toUtf8()));
}

QList<QJsonObject> LaunchDispatcherTest::records() const
{
    QList<QJsonObject> result;
    const QDir dir(m_records);
    for (const QString& name : dir.entryList({"*.json"}, QDir::Files)) {
        QFile file(dir.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            result.append(QJsonDocument::fromJson(file.readAll()).object());
    }
    return result;
}

/// The arguments of the one program that was started, or none if there have been other numbers.
QStringList LaunchDispatcherTest::onlyArguments() const
{
    const QList<QJsonObject> all = records();
    return all.size() == 1 ? all.first().value("arguments").toVariant().toStringList()
                           : QStringList();
}

void LaunchDispatcherTest::snippetGoesToTheClipboard_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("word") << "hello";
    QTest::newRow("empty") << "";
    QTest::newRow("blanks are kept") << "  a\tb \n";
    QTest::newRow("several scripts") << QString::fromUtf8("añ 日本語 😀");
    QTest::newRow("looks like an address") << "https://example.org";
}

void LaunchDispatcherTest::snippetGoesToTheClipboard()
{
    QFETCH(QString, value);
    QGuiApplication::clipboard()->setText("from before");
    const Launch launch("Snippet", value);
    QVERIFY(launch.isDone);
    QCOMPARE(QGuiApplication::clipboard()->text(), value);
    QVERIFY(launch.messages.isEmpty());
    QVERIFY(m_browser->opened.isEmpty());
}

void LaunchDispatcherTest::urlIsOpenedAsTyped_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QStringList>("opened");
    QTest::newRow("full") << "https://example.org/a?b=c#d"
                          << QStringList{"https://example.org/a?b=c#d"};
    QTest::newRow("bare domain") << "example.org" << QStringList{"http://example.org"};
    QTest::newRow("blanks around") << "  example.org/x " << QStringList{"http://example.org/x"};
    QTest::newRow("port") << "localhost:8080" << QStringList{"http://localhost:8080"};
    QTest::newRow("blank inside") << "https://example.org/a b"
                                  << QStringList{"https://example.org/a%20b"};
    QTest::newRow("no ASCII") << QString::fromUtf8("https://example.org/é")
                              << QStringList{"https://example.org/%C3%A9"};
    QTest::newRow("empty goes unnoticed") << "" << QStringList();
}

void LaunchDispatcherTest::urlIsOpenedAsTyped()
{
    QFETCH(QString, value);
    const Launch launch("URL", value);
    QVERIFY(launch.isDone);
    QTEST(m_browser->opened, "opened");
    QVERIFY(launch.messages.isEmpty());
}

void LaunchDispatcherTest::fileIsOpenedAsLocalFile_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("existing") << path("my notes.txt");
    QTest::newRow("folder") << m_dir;
    QTest::newRow("missing goes unnoticed") << path("missing");
    QTest::newRow("characters that an address reads otherwise") << path("a#b?c%20d&e.txt");
    QTest::newRow("an address is no address here") << "https://example.org";
}

void LaunchDispatcherTest::fileIsOpenedAsLocalFile()
{
    QFETCH(QString, value);
    const Launch launch("File", value);
    QVERIFY(launch.isDone);
    QCOMPARE(m_browser->opened.size(), 1);
    const QUrl url = QUrl::fromEncoded(m_browser->opened.first().toUtf8());
    QCOMPARE(url.toLocalFile(), value);
    QVERIFY(launch.messages.isEmpty());
}

void LaunchDispatcherTest::applicationGetsExactArguments_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("tail");
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("words") << "Application"
                           << "one two" << QStringList{"one", "two"};
    QTest::newRow("quoted blank") << "Application"
                                  << "\"a b\" c" << QStringList{"a b", "c"};
    QTest::newRow("quotes inside a word") << "Application"
                                          << "--name=\"a b\"" << QStringList{"--name=a b"};
    QTest::newRow("literal quotes") << "Application"
                                    << "\"\"\"hi\"\"\"" << QStringList{"\"hi\""};
    QTest::newRow("several scripts")
        << "Application" << QString::fromUtf8("ñ \"日 本\" 😀")
        << QStringList{QString::fromUtf8("ñ"), QString::fromUtf8("日 本"), QString::fromUtf8("😀")};
    QTest::newRow("variables are not expanded")
        << "Application"
        << "$HOME %PATH% ~" << QStringList{"$HOME", "%PATH%", "~"};
    QTest::newRow("no shell reads it")
        << "Application"
        << "* ; a && b | c > d 'e f'"
        << QStringList{"*", ";", "a", "&&", "b", "|", "c", ">", "d", "'e", "f'"};
    QTest::newRow("empty type") << ""
                                << "x" << QStringList{"x"};
    QTest::newRow("unknown type") << "Widget"
                                  << "x" << QStringList{"x"};
    QTest::newRow("types are case-sensitive") << "file"
                                              << "x" << QStringList{"x"};
    QTest::newRow("types are not trimmed") << "Snippet "
                                           << "x" << QStringList{"x"};
}

void LaunchDispatcherTest::applicationGetsExactArguments()
{
    QFETCH(QString, type);
    QFETCH(QString, tail);
    const Launch launch(type, QStringLiteral("\"%1\" ").arg(path("tool.exe")) + tail);
    QVERIFY(launch.isDone);
    QTRY_COMPARE(records().size(), 1);
    QTEST(onlyArguments(), "arguments");
    QVERIFY(launch.messages.isEmpty());
    QVERIFY(m_browser->opened.isEmpty());
}

void LaunchDispatcherTest::applicationInheritsTheWorkingDirectory()
{
    QVERIFY(Launch("Application", QStringLiteral("\"%1\"").arg(path("tool.exe"))).isDone);
    QTRY_COMPARE(records().size(), 1);
    QCOMPARE(records().first().value("directory").toString(), m_dir);
}

void LaunchDispatcherTest::applicationIsFoundByTheSearchPath()
{
    qputenv("PATH", QFile::encodeName(m_dir) + QDir::listSeparator().toLatin1() + m_searchPath);
    QVERIFY(Launch("Application", "tool.exe a").isDone);
    QTRY_COMPARE(records().size(), 1);
    QCOMPARE(onlyArguments(), QStringList{"a"});
}

void LaunchDispatcherTest::failedStartIsReported_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("value");
    QTest::newRow("missing program") << "Application"
                                     << "/no/such/program with arguments";
    QTest::newRow("not in the search path") << "Application"
                                            << "no-such-program-anywhere";
    QTest::newRow("empty") << "Application"
                           << "";
    QTest::newRow("blanks only") << "Application"
                                 << "   ";
    QTest::newRow("no program but a file")
        << "Application" << QStringLiteral("\"%1\"").arg(path("my notes.txt"));
    QTest::newRow("a folder") << "Application" << QStringLiteral("\"%1\"").arg(m_dir);
    QTest::newRow("blank in the path without quotes") << "Application" << path("tool.exe");
    QTest::newRow("empty type") << ""
                                << "/no/such/program";
    QTest::newRow("unknown type") << "url"
                                  << "https://example.org";
}

void LaunchDispatcherTest::failedStartIsReported()
{
    QFETCH(QString, type);
    QFETCH(QString, value);
    const Launch launch(type, value);
    QVERIFY(!launch.isDone);
    QCOMPARE(launch.messages, (QList<Message>{{"Error", "Failed to execute local application!"}}));
    QVERIFY(launch.isMessageBox);
    QVERIFY(launch.isOwned);
    QVERIFY(m_browser->opened.isEmpty());
}

void LaunchDispatcherTest::bulkReadsEachLine_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QStringList>("opened");
    const auto fileUrl = [](const QString& name) {
        return QStringList{QString::fromUtf8(QUrl::fromLocalFile(name).toEncoded())};
    };
    QTest::newRow("nothing") << "" << QStringList();
    QTest::newRow("blank lines") << "\n \n\t\n\r\n" << QStringList();
    QTest::newRow("semicolons alone") << ";\n ; \n" << QStringList();
    QTest::newRow("address") << "https://example.org/a" << QStringList{"https://example.org/a"};
    QTest::newRow("address in any case, and no program")
        << "HTTP://example.org/setup.exe" << QStringList{"http://example.org/setup.exe"};
    QTest::newRow("secure address in any case")
        << "Https://example.org/A.EXE" << QStringList{"https://example.org/A.EXE"};
    QTest::newRow("address with a blank")
        << "https://example.org/a b" << QStringList{"https://example.org/a%20b"};
    QTest::newRow("carriage return")
        << "https://example.org/a\r\nhttps://example.org/b\r\n"
        << QStringList{"https://example.org/a", "https://example.org/b"};
    QTest::newRow("one semicolon is cut off")
        << "https://example.org/a;" << QStringList{"https://example.org/a"};
    QTest::newRow("only one semicolon is")
        << "https://example.org/a;;" << QStringList{"https://example.org/a;"};
    QTest::newRow("an address ending in .exe is no program")
        << "https://example.org/setup.exe" << QStringList{"https://example.org/setup.exe"};
    QTest::newRow("bare domain") << "example.org" << QStringList{"http://example.org"};
    QTest::newRow("bare domain with a semicolon")
        << " example.org; " << QStringList{"http://example.org"};
    QTest::newRow("existing file") << path("my notes.txt") << fileUrl(path("my notes.txt"));
    QTest::newRow("existing folder") << m_dir << fileUrl(m_dir);
    QTest::newRow("missing program without extension") << "notepad" << fileUrl("notepad");
    QTest::newRow("no second trim") << "notepad ;" << fileUrl("notepad ");
    QTest::newRow("two semicolons hide a program")
        << path("tool.exe;;") << fileUrl(path("tool.exe;"));
    QTest::newRow("missing file with a dot") << path("gone.txt") << fileUrl(path("gone.txt"));
}

void LaunchDispatcherTest::bulkReadsEachLine()
{
    QFETCH(QString, value);
    const Launch launch("Bulk", value);
    QVERIFY(launch.isDone);
    QTEST(m_browser->opened, "opened");
    QVERIFY(launch.messages.isEmpty());
    QVERIFY(records().isEmpty());
}

void LaunchDispatcherTest::bulkOpensInOrder()
{
    QVERIFY(Launch("Bulk", "https://example.org/3\nexample.org\n\nhttps://example.org/1").isDone);
    QCOMPARE(m_browser->opened,
             (QStringList{"https://example.org/3", "http://example.org", "https://example.org/1"}));
}

void LaunchDispatcherTest::bulkStartsPrograms_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("arguments");
    const QString tool = QStringLiteral("\"%1\"").arg(path("tool.exe"));
    QTest::newRow("arguments") << tool + " a \"b c\"" << QStringList{"a", "b c"};
    QTest::newRow("semicolon") << tool + " a;" << QStringList{"a"};
    QTest::newRow("blanks around") << "  " + tool + " a  \r" << QStringList{"a"};
    QTest::newRow("found by the search path") << "tool.exe a" << QStringList{"a"};
    QTest::newRow("not the file of that name")
        << "tool.exe readme.example" << QStringList{"readme.example"};
}

void LaunchDispatcherTest::bulkStartsPrograms()
{
    QFETCH(QString, line);
    qputenv("PATH", QFile::encodeName(m_dir) + QDir::listSeparator().toLatin1() + m_searchPath);
    const Launch launch("Bulk", line);
    QVERIFY(launch.isDone);
    QTRY_COMPARE(records().size(), 1);
    QTEST(onlyArguments(), "arguments");
    QVERIFY(m_browser->opened.isEmpty());
    QVERIFY(launch.messages.isEmpty());
}

void LaunchDispatcherTest::bulkErrorsNeverStopIt()
{
    const Launch launch("Bulk", "https://example.org/1\n"
                                " missing-one.EXE a;\n"
                                "https://example.org/2\n"
                                "missing-%1-two.exe\n"
                                "https://example.org/3");
    QVERIFY(launch.isDone);
    QCOMPARE(launch.messages, (QList<Message>{{"Error", "Failed to execute: missing-one.EXE a"},
                                              {"Error", "Failed to execute: missing-%1-two.exe"}}));
    QVERIFY(launch.isMessageBox);
    QVERIFY(launch.isOwned);
    QVERIFY(launch.isBlocked);
    QCOMPARE(m_browser->opened, (QStringList{"https://example.org/1", "https://example.org/2",
                                             "https://example.org/3"}));
}

void LaunchDispatcherTest::bulkPrefersAFileToAnAddress()
{
    QVERIFY(Launch("Bulk", "readme.example\nno-such.example").isDone);
    QCOMPARE(m_browser->opened, (QStringList{"file:readme.example", "http://no-such.example"}));
}

void LaunchDispatcherTest::errorTitleIsNeverTranslated()
{
    Tr::currentLang = Lang::Ja;
    const Launch application("Application", "/no/such/program");
    QCOMPARE(application.messages, (QList<Message>{{"Error", Tr::t("main.err_exec_msg")}}));
    const Launch bulk("Bulk", "missing.exe");
    QCOMPARE(bulk.messages,
             (QList<Message>{
                 {"Error", QString::fromUtf8("実行できませんでした：%1").arg("missing.exe")}}));
}

void LaunchDispatcherTest::errorDialogKeepsWindowsOpen()
{
    QTRY_VERIFY(!g_blockAutoQuit);
    const Launch launch("Application", "/no/such/program");
    QCOMPARE(launch.messages.size(), 1);
    QVERIFY(launch.isBlocked);
    QVERIFY(g_blockAutoQuit); // and for a while after the dialog
    QTRY_VERIFY(!g_blockAutoQuit);
    QVERIFY(Launch("Snippet", "x").isDone);
    QVERIFY(!g_blockAutoQuit);
}

/// Puts a copy of this test in the place of the program that the system launches shell items with.
void LaunchDispatcherTest::makeShellLauncher() const
{
    const QString program = QCoreApplication::applicationFilePath();
    if (!hasDesktopEntries()) {
        // Which would be found first if the real one were looked for.
        QVERIFY(QFile::exists("explorer.exe") || QFile::copy(program, "explorer.exe"));
        return;
    }
    QVERIFY(QDir(m_dir).mkpath("bin"));
    QVERIFY(QFile::exists(path("bin/gio")) || QFile::link(program, path("bin/gio")));
    qputenv("PATH", QFile::encodeName(path("bin")));
    qputenv("XDG_DATA_HOME", QFile::encodeName(path("user")));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(path("empty") + ':' + path("system")));
}

void LaunchDispatcherTest::addDesktopEntryRows() const
{
    const auto row = [this](const char* name, const QString& value, const QString& entry) {
        QTest::newRow(name) << value << entry << QStringList{"launch", path(entry)};
    };
    row("id", "org.example.App.desktop", "user/applications/org.example.App.desktop");
    row("dash in the name", "my-tool.desktop", "user/applications/my-tool.desktop");
    row("dash for a folder", "vendor-app.desktop", "system/applications/vendor/app.desktop");
    row("both kinds of dashes", "a-b-c-d.desktop", "system/applications/a-b/c-d.desktop");
    row("two folders deep", "x-y-z.desktop", "system/applications/x/y/z.desktop");
    row("the user's own hides the system's", "both.desktop", "user/applications/both.desktop");
    row("path", path("elsewhere/some app.desktop"), "elsewhere/some app.desktop");
}

void LaunchDispatcherTest::shellItemIsLaunched_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QStringList>("arguments");
    if (hasDesktopEntries()) {
        addDesktopEntryRows();
        return;
    }
    // The system's own explorer leaves no record; what it is given is tested where another program
    // can stand in for it.
    QTest::newRow("not by a program of the current directory")
        << kClassOfTheShell << "unused" << QStringList{"afterwards"};
}

void LaunchDispatcherTest::shellItemIsLaunched()
{
    QFETCH(QString, value);
    QFETCH(QString, entry);
    for (const QString& name : {QStringLiteral("user/applications/both.desktop"),
                                QStringLiteral("system/applications/both.desktop"), entry})
        makeEntry(name, path("tool.exe"));
    makeShellLauncher();
    const Launch launch("ShellItem", value);
    QVERIFY(launch.isDone);
    if (!hasDesktopEntries()) {
        const QString tool = QStringLiteral("\"%1\" afterwards").arg(path("tool.exe"));
        QVERIFY(Launch("Application", tool).isDone);
    }
    QTRY_COMPARE(records().size(), 1);
    QTEST(onlyArguments(), "arguments");
    QVERIFY(launch.messages.isEmpty());
}

void LaunchDispatcherTest::shellItemCannotBeStarted_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("hasLauncher");
    QTest::addColumn<bool>("isDone");
    const QString entry = path("system/applications/both.desktop");
    QTest::newRow("one that can, for comparison")
        << (hasDesktopEntries() ? entry : kClassOfTheShell) << true << true;
    if (!hasDesktopEntries())
        return;
    QTest::newRow("no such id") << "missing.desktop" << true << false;
    QTest::newRow("no such path") << path("missing.desktop") << true << false;
    QTest::newRow("empty") << "" << true << false;
    QTest::newRow("not an entry") << path("my notes.txt") << true << false;
    QTest::newRow("a folder") << path("folder.desktop") << true << false;
    QTest::newRow("out of the tree") << "..-secret.desktop" << true << false;
    QTest::newRow("in a hidden folder") << ".hidden-secret.desktop" << true << false;
    QTest::newRow("dashes only") << QString(5000, '-') + ".desktop" << true << false;
    QTest::newRow("without the desktop's launcher") << entry << false << true;
    const QString broken = path("system/applications/broken.desktop");
    QTest::newRow("its program is missing") << broken << true << false;
    QTest::newRow("its program is missing, as is the launcher") << broken << false << false;
}

void LaunchDispatcherTest::shellItemCannotBeStarted()
{
    QFETCH(QString, value);
    QFETCH(bool, hasLauncher);
    QFETCH(bool, isDone);
    makeEntry("system/secret.desktop", path("tool.exe"));
    makeEntry("system/applications/.hidden/secret.desktop", path("tool.exe"));
    makeEntry("system/applications/both.desktop", path("tool.exe"));
    makeEntry("system/applications/broken.desktop", path("missing.exe"));
    QVERIFY(QDir(m_dir).mkpath("folder.desktop"));
    makeShellLauncher();
    if (!hasLauncher)
        qputenv("PATH", QFile::encodeName(path("empty")));
    const Launch launch("ShellItem", value);
    QCOMPARE(launch.isDone, isDone);
    if (isDone) {
        if (hasDesktopEntries()) {
            QTRY_COMPARE(records().size(), 1);
            QCOMPARE(onlyArguments().constFirst(), hasLauncher ? "launch" : "by");
        }
        QVERIFY(launch.messages.isEmpty());
        return;
    }
    QCOMPARE(launch.messages, (QList<Message>{{"Error", "Failed to execute local application!"}}));
    QVERIFY(launch.isOwned);
}

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsSet(kRecordsVariable))
        return recordCall(argc, argv);
    return FreshProcess::main<LaunchDispatcherTest>(argc, argv);
}

#include "tst_launchdispatcher.moc"
