// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FolderFilter.h"
#include "MainWindow.h"
#include "NativeDesktop.h"
#include "OnboardingDialog.h"
#include "Profile.h"
#include "SingleInstance.h"
#include "SpotlightWindow.h"
#include "TourOverlay.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <windows.h>

namespace
{

constexpr int kPatienceMs = 30000;
const QString kHomeHotkey = QStringLiteral("Ctrl+Alt+Space");
const QString kSpotlightHotkey = QStringLiteral("Ctrl+Alt+Y");
const QString kOtherHotkey = QStringLiteral("Ctrl+Shift+K");
const QString kStartMenu = QStringLiteral("\\Microsoft\\Windows\\Start Menu\\Programs");
const QString kAppPaths =
    QStringLiteral("HKEY_CURRENT_USER\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths");
// Wine looks for the openers of files among the machine's alone.
const QString kClasses = QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes");
const QString kSpotlightSetting = QStringLiteral("Hotkey/SpotlightCombo");
const QString kScopeSetting = QStringLiteral("Spotlight/DefaultScope");

QString packedFolder()
{
    return QStringLiteral(ORLIMO_PACKED_FOLDER);
}

QString programIn(const QString& folder)
{
    return folder + QStringLiteral("/Orlimo.exe");
}

bool copyFolder(const QString& from, const QString& to)
{
    QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString file = files.next();
        const QString copy = to + file.mid(from.size());
        if (!QDir().mkpath(QFileInfo(copy).path()) || !QFile::copy(file, copy))
            return false;
    }
    return true;
}

/// Nothing but Windows itself, so that whatever the folder lacks is missed.
QProcessEnvironment bareEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QStringList names = environment.keys();
    for (const QString& name : names) {
        if (name.startsWith(QLatin1String("QT_")) || name == QLatin1String("WINEPATH"))
            environment.remove(name);
    }
    const QString windows = environment.value(QStringLiteral("SystemRoot"));
    environment.insert(QStringLiteral("PATH"), windows + QStringLiteral("\\system32;") + windows);
    return environment;
}

/// A running program; killed at the end.
class Program
{
public:
    explicit Program(const QString& folder = packedFolder())
    {
        m_process.setProcessEnvironment(bareEnvironment());
        m_process.start(programIn(folder), QStringList());
    }
    ~Program()
    {
        m_process.kill();
        m_process.waitForFinished(kPatienceMs);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    bool isRunning() const { return m_process.state() == QProcess::Running; }
    NativeDesktop::Window home() const { return windowOfWidth(MainWindow::WINDOW_WIDTH_GRID); }
    NativeDesktop::Window settings() const
    {
        return windowOfWidth(MainWindow::WINDOW_WIDTH_SETTINGS);
    }
    NativeDesktop::Window spotlight() const { return windowOfWidth(SpotlightWindow::WINDOW_WIDTH); }
    NativeDesktop::Window welcome() const { return windowOfWidth(OnboardingDialog::DialogWidth); }
    NativeDesktop::Window tourCard() const { return windowOfWidth(TourOverlay::CardWidth); }
    /// Its visible windows, the menus among them.
    qsizetype windowCount() const { return NativeDesktop::windowsOf(m_process.processId()).size(); }
    /// Whether a menu is up over the home page and nothing else, another than that one. The
    /// keyboard stays with the page meanwhile.
    bool isMenuUp(quintptr notThis = 0) const
    {
        return home().isForeground && windowCount() == 2 && menuHandle() != notThis;
    }
    quintptr menuHandle() const
    {
        const quintptr page = home().handle;
        for (const NativeDesktop::Window& window : NativeDesktop::windowsOf(m_process.processId()))
            if (window.handle != page)
                return window.handle;
        return 0;
    }
    /// Whether the keyboard is with a window of the program that is neither of the two.
    bool isDialogUp() const { return dialog().exists(); }
    /// Whether that window is one in which a file is chosen.
    bool isChooserUp() const { return dialog().isOfSystem; }
    /// Whether it is one of the program's own, and another than that one.
    bool isQuestionUp(quintptr notThis = 0) const
    {
        const NativeDesktop::Window window = dialog();
        return window.exists() && !window.isOfSystem && window.handle != notThis;
    }
    quintptr dialogHandle() const { return dialog().handle; }

private:
    NativeDesktop::Window dialog() const
    {
        const QList<int> widths{MainWindow::WINDOW_WIDTH_GRID, MainWindow::WINDOW_WIDTH_SETTINGS,
                                SpotlightWindow::WINDOW_WIDTH};
        const QList<NativeDesktop::Window> all = NativeDesktop::windowsOf(m_process.processId());
        const auto found =
            std::find_if(all.begin(), all.end(), [&widths](const NativeDesktop::Window& window) {
                return window.isForeground && !widths.contains(window.geometry.width());
            });
        return found == all.end() ? NativeDesktop::Window() : *found;
    }

    NativeDesktop::Window windowOfWidth(int width) const
    {
        const QList<NativeDesktop::Window> all = NativeDesktop::windowsOf(m_process.processId());
        for (const NativeDesktop::Window& window : all) {
            if (window.geometry.width() == width)
                return window;
        }
        return {};
    }

    QProcess m_process;
};

/// A window of another program's, this one's, in front of all.
class OtherWindow
{
public:
    OtherWindow()
        : m_window(CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200,
                                   200, nullptr, nullptr, nullptr, nullptr))
    {
        SetForegroundWindow(m_window);
    }
    ~OtherWindow() { DestroyWindow(m_window); }
    OtherWindow(const OtherWindow&) = delete;
    OtherWindow& operator=(const OtherWindow&) = delete;

    bool isForeground() const { return m_window && GetForegroundWindow() == m_window; }

private:
    HWND m_window;
};

/// Presses keys one after the other.
void press(const QStringList& keys)
{
    for (const QString& key : keys)
        NativeDesktop::pressKeys(key);
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool makeFile(const QString& path)
{
    return QFile(path).open(QIODevice::WriteOnly);
}

/// Makes a program in this folder the one that opens files of one kind. Gives the file that it
/// leaves when it has been started; null if it can't be put there.
QString installOpener(const QString& folder)
{
    const QString opener = folder + QStringLiteral("/opener.exe");
    if (!QFile::copy(QStringLiteral(ORLIMO_RECORDER), opener))
        return {};
    QSettings classes(kClasses, QSettings::NativeFormat);
    classes.setValue(QStringLiteral(".orlimomemo/Default"), QStringLiteral("Orlimo.Memo"));
    classes.setValue(QStringLiteral("Orlimo.Memo/shell/open/command/Default"),
                     QStringLiteral("\"%1\" \"%2\"")
                         .arg(QDir::toNativeSeparators(opener), QStringLiteral("%1")));
    return opener + QStringLiteral(".started");
}

/// Opens the picker of folders from a new Spotlight and unchecks its last row.
void uncheckLastFolder(const Program& program)
{
    constexpr int kMaxRows = 9; // all folders, six usual ones, two of the user's
    NativeDesktop::pressKeys(kSpotlightHotkey);
    QTRY_VERIFY(program.spotlight().isForeground);
    QTRY_COMPARE(program.windowCount(), 1);
    press({QStringLiteral("F4")});
    QTRY_COMPARE(program.windowCount(), 2);
    press({QStringLiteral("Up"), QStringLiteral("Return")});
    QTRY_VERIFY(program.isDialogUp());
    press(QStringList(kMaxRows, QStringLiteral("Down")));
    press({QStringLiteral("Space"), QStringLiteral("Return")});
    QTRY_VERIFY(!program.isDialogUp());
    QTRY_VERIFY(program.spotlight().isForeground);
}

void startAgain()
{
    QProcess second;
    second.setProcessEnvironment(bareEnvironment());
    second.start(programIn(packedFolder()), QStringList());
    QVERIFY(second.waitForFinished(kPatienceMs));
    QCOMPARE(second.exitStatus(), QProcess::NormalExit);
    QCOMPARE(second.exitCode(), 0);
}

} // namespace

/// The packed program at its main job.
class E2ePacked : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void bothHotkeysFire();
    void snippetLandsOnTheClipboard();
    void lockHasItsName();
    void secondStartWakesTheFirst();
    void secondStartRaisesWhatIsShown();
    void copyElsewhereRunsBesideIt();
    void takenHotkeyFallsBack();
    void installedApplicationIsFoundAndStarted_data();
    void installedApplicationIsFoundAndStarted();
    void newFileIsFoundAndOpened();
    void limitedToAFolderByKeys();
    void madeByKeysAndStillThereLater();
    void settingsAreChangedByKeys();
    void recordedHotkeyFires();
    void dataIsTakenOutAndInByKeys();
    void newUserIsWelcomedAndShownAround();
    void auditsRunBesideIt();
    void reorderedByKeys();
    void sectionSavedAsTemplateAndUsedByKeys();

private:
    QString path(const QString& name) const { return QDir(m_dataDir).filePath(name); }
    void set(const QString& key, const QString& value) const;
    void write(const QString& name, const QByteArray& content) const;
    QByteArray read(const QString& name) const;
    QJsonObject document() const
    {
        return QJsonDocument::fromJson(read(QStringLiteral("data.json"))).object();
    }
    QString setting(const QString& key) const;
    void hideHome(const Program& program) const;
    void openSettings(const Program& program, int category, int row) const;

    QString m_dataDir;
};

void E2ePacked::initTestCase()
{
    QCoreApplication::setApplicationName(QStringLiteral("Orlimo"));
    QCoreApplication::setOrganizationName(QStringLiteral("Orlimo"));
    m_dataDir = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    // Started with a profile that is thrown away, or it would work on a user's own document.
    QVERIFY2(!QFileInfo::exists(m_dataDir), qPrintable(m_dataDir));
    QVERIFY2(QFileInfo::exists(programIn(packedFolder())), qPrintable(packedFolder()));
}

void E2ePacked::init()
{
    QVERIFY(QDir(m_dataDir).removeRecursively());
    QVERIFY(QDir().mkpath(m_dataDir));
    set(QStringLiteral("Onboarding/Completed"), QStringLiteral("true")); // no welcome over the work
}

void E2ePacked::write(const QString& name, const QByteArray& content) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

void E2ePacked::set(const QString& key, const QString& value) const
{
    QSettings settings(path(QStringLiteral("settings.ini")), QSettings::IniFormat);
    settings.setValue(key, value);
}

QByteArray E2ePacked::read(const QString& name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString E2ePacked::setting(const QString& key) const
{
    const QSettings settings(path(QStringLiteral("settings.ini")), QSettings::IniFormat);
    return settings.value(key).toString();
}

/// Waits for the first window and goes to the first control of a row of the settings.
void E2ePacked::openSettings(const Program& program, int category, int row) const
{
    QTRY_VERIFY_WITH_TIMEOUT(program.home().isForeground, kPatienceMs);
    NativeDesktop::pressKeys(QStringLiteral("Tab"));
    QTRY_VERIFY_WITH_TIMEOUT(program.settings().isForeground, kPatienceMs);
    for (int i = 0; i < category; ++i)
        NativeDesktop::pressKeys(QStringLiteral("Down"));
    NativeDesktop::pressKeys(QStringLiteral("Return"));
    for (int i = 0; i < row; ++i)
        NativeDesktop::pressKeys(QStringLiteral("Down"));
}

/// Waits for the first window and sends it away, as at the beginning of a user's day.
void E2ePacked::hideHome(const Program& program) const
{
    QTRY_VERIFY_WITH_TIMEOUT(program.home().isForeground, kPatienceMs);
    NativeDesktop::pressKeys(kHomeHotkey);
    QTRY_VERIFY(!program.home().exists());
}

void E2ePacked::bothHotkeysFire()
{
    const Program program;
    hideHome(program);
    if (QTest::currentTestFailed())
        return;
    NativeDesktop::pressKeys(kSpotlightHotkey);
    QTRY_VERIFY(program.spotlight().isForeground);
    NativeDesktop::pressKeys(kHomeHotkey);
    QTRY_VERIFY(program.home().isForeground);
    QTRY_VERIFY(!program.spotlight().exists());
    NativeDesktop::pressKeys(kHomeHotkey);
    QTRY_VERIFY(!program.home().exists());
}

void E2ePacked::snippetLandsOnTheClipboard()
{
    const QString text = QStringLiteral("line one\nzweite Zeile — 日本");
    write(QStringLiteral("data.json"),
          Profile::document(
              {Profile::item(QStringLiteral("Greeting"), QStringLiteral("Snippet"), text)}));
    QTRY_VERIFY(NativeDesktop::setClipboardText(QStringLiteral("from before")));
    const Program program;
    hideHome(program);
    if (QTest::currentTestFailed())
        return;
    NativeDesktop::pressKeys(kSpotlightHotkey);
    QTRY_VERIFY(program.spotlight().isForeground);
    NativeDesktop::type(QStringLiteral("greet"));
    NativeDesktop::pressKeys(QStringLiteral("Return"));
    QTRY_VERIFY(!program.spotlight().exists());
    QTRY_COMPARE(NativeDesktop::clipboardText().remove(QLatin1Char('\r')), text);

    const QJsonObject usage = QJsonDocument::fromJson(read(QStringLiteral("usage.json"))).object();
    const QJsonObject record = usage.value(QStringLiteral("id-Greeting")).toObject();
    QCOMPARE(record.value(QStringLiteral("c")).toInt(), 1);
}

void E2ePacked::lockHasItsName()
{
    const QString key = SingleInstance::instanceKey(QFileInfo(packedFolder()).absoluteFilePath());
    const QString name = QStringLiteral("Orlimo_Vestrel_SingleInstanceMutex_") + key;
    const auto isThere = [&name] {
        const HANDLE mutex =
            OpenMutexW(SYNCHRONIZE, FALSE, reinterpret_cast<LPCWSTR>(name.utf16()));
        return mutex != nullptr && CloseHandle(mutex) != 0;
    };
    {
        QVERIFY(!isThere());
        const Program program;
        QTRY_VERIFY_WITH_TIMEOUT(program.home().exists(), kPatienceMs);
        QVERIFY(isThere());
    }
    QTRY_VERIFY(!isThere()); // it goes with the process
}

void E2ePacked::secondStartWakesTheFirst()
{
    const Program program;
    hideHome(program);
    if (QTest::currentTestFailed())
        return;
    startAgain();
    if (QTest::currentTestFailed())
        return;
    QTRY_VERIFY(program.home().isForeground);
    QVERIFY(program.isRunning());
}

void E2ePacked::secondStartRaisesWhatIsShown()
{
    const Program program;
    QTRY_VERIFY_WITH_TIMEOUT(program.home().isForeground, kPatienceMs);
    // A window that has only just come stays when another takes the keyboard from it.
    const OtherWindow other;
    QTRY_VERIFY(other.isForeground());
    QVERIFY(program.home().exists());
    QVERIFY(!program.home().isForeground);
    startAgain();
    if (QTest::currentTestFailed())
        return;
    QTRY_VERIFY(program.home().isForeground);
    QVERIFY(!other.isForeground());
}

void E2ePacked::copyElsewhereRunsBesideIt()
{
    const QTemporaryDir elsewhere;
    QVERIFY(copyFolder(packedFolder(), elsewhere.path()));
    const Program program;
    QTRY_VERIFY_WITH_TIMEOUT(program.home().exists(), kPatienceMs);
    const Program copy(elsewhere.path());
    QTRY_VERIFY_WITH_TIMEOUT(copy.home().exists(), kPatienceMs);
    QVERIFY(program.isRunning());
    QVERIFY(copy.isRunning());
}

void E2ePacked::takenHotkeyFallsBack()
{
    set(kSpotlightSetting, kOtherHotkey);
    const NativeDesktop::TakenHotkey taken(kOtherHotkey);
    QVERIFY(taken.isTaken());
    const Program program;
    hideHome(program);
    if (QTest::currentTestFailed())
        return;
    NativeDesktop::pressKeys(kSpotlightHotkey);
    QTRY_VERIFY(program.spotlight().isForeground);
    const QSettings settings(path(QStringLiteral("settings.ini")), QSettings::IniFormat);
    QCOMPARE(settings.value(kSpotlightSetting).toString(), kSpotlightHotkey);
}

void E2ePacked::installedApplicationIsFoundAndStarted_data()
{
    QTest::addColumn<bool>("isLinked");
    QTest::addColumn<QString>("name");
    QTest::newRow("link in the Start Menu") << true << "Quillforge";
    QTest::newRow("registered under App Paths") << false << "Marrowind";
}

void E2ePacked::installedApplicationIsFoundAndStarted()
{
    QFETCH(bool, isLinked);
    QFETCH(QString, name);
    const QTemporaryDir installed;
    // Under another name than that of the link, which is the one that is shown.
    const QString program =
        installed.filePath((isLinked ? QStringLiteral("program") : name) + QStringLiteral(".exe"));
    QVERIFY(QFile::copy(QStringLiteral(ORLIMO_RECORDER), program));
    const QString nativeProgram = QDir::toNativeSeparators(program);
    if (isLinked) {
        const QDir menu(qEnvironmentVariable("AppData") + kStartMenu);
        QVERIFY(menu.mkpath(QStringLiteral("Tools")));
        QVERIFY(QFile::link(program, menu.filePath("Tools/" + name + ".lnk")));
    } else {
        QSettings registry(kAppPaths, QSettings::NativeFormat);
        registry.setValue(name + QStringLiteral(".exe/Default"), nativeProgram);
    }

    const Program launcher;
    hideHome(launcher);
    if (QTest::currentTestFailed())
        return;
    NativeDesktop::pressKeys(kSpotlightHotkey);
    QTRY_VERIFY(launcher.spotlight().isForeground);
    NativeDesktop::type(name);
    NativeDesktop::pressKeys(QStringLiteral("Return"));
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(program + QStringLiteral(".started")), kPatienceMs);
    QTRY_VERIFY(!launcher.spotlight().exists());
    const QJsonObject usage = QJsonDocument::fromJson(read(QStringLiteral("usage.json"))).object();
    QCOMPARE(usage.keys().size(), 1);
    QCOMPARE(QDir::fromNativeSeparators(usage.keys().constFirst()), program.toLower());
}

void E2ePacked::newFileIsFoundAndOpened()
{
    // Another program that opens files of this kind.
    const QTemporaryDir installed;
    const QString started = installOpener(installed.path());
    QVERIFY(!started.isNull());
    // So that there is no row but that of the file, and Enter does nothing before it is there.
    set(kScopeSetting, QStringLiteral("File"));
    const QString older = QDir::home().filePath(QStringLiteral("Gorsewood.orlimomemo"));
    const QString newer = QDir::home().filePath(QStringLiteral("Thistledown.orlimomemo"));
    QVERIFY(makeFile(older));

    const Program launcher;
    hideHome(launcher);
    if (QTest::currentTestFailed())
        return;
    // Once the older one is found the first scan is over, and the newer one can only be news.
    for (const QString& file : {older, newer}) {
        NativeDesktop::pressKeys(kSpotlightHotkey);
        QTRY_VERIFY(launcher.spotlight().isForeground);
        NativeDesktop::type(QFileInfo(file).completeBaseName());
        QVERIFY(makeFile(file));
        const auto isOpened = [&started] {
            NativeDesktop::pressKeys(QStringLiteral("Return"));
            return QFileInfo::exists(started);
        };
        QTRY_VERIFY_WITH_TIMEOUT(isOpened(), kPatienceMs);
        QTRY_VERIFY(!launcher.spotlight().exists());
        // It may still be open.
        QTRY_VERIFY(QFile::remove(started) || !QFileInfo::exists(started));
        const QJsonObject usage =
            QJsonDocument::fromJson(read(QStringLiteral("usage.json"))).object();
        QVERIFY2(usage.contains(QDir::toNativeSeparators(file)),
                 QJsonDocument(usage).toJson().constData());
    }
    QVERIFY(QFile::remove(older));
    QVERIFY(QFile::remove(newer));
}

void E2ePacked::limitedToAFolderByKeys()
{
    const QTemporaryDir installed;
    const QString started = installOpener(installed.path());
    QVERIFY(!started.isNull());
    set(kScopeSetting, QStringLiteral("File"));
    const QString fileName = QStringLiteral("folderfilter.json");
    const QString kept = QDir::home().filePath(QStringLiteral("Gorse/Thistledown2.orlimomemo"));
    // The shorter name, so that its row would be the first one.
    const QString left = QDir::home().filePath(QStringLiteral("Fern/Thistledown.orlimomemo"));
    QStringList folders;
    for (const QString& file : {kept, left}) {
        const QString folder = QFileInfo(file).path();
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(makeFile(file));
        folders.append(QDir::toNativeSeparators(folder));
    }
    write(fileName, FolderFilter::toBytes(folders));
    {
        const Program program;
        hideHome(program);
        if (QTest::currentTestFailed())
            return;
        uncheckLastFolder(program);
        if (QTest::currentTestFailed())
            return;
        QTRY_COMPARE(read(fileName), FolderFilter::toBytes({folders.constFirst()}));
        NativeDesktop::type(QStringLiteral("thistledown"));
        const auto isOpened = [&started] {
            NativeDesktop::pressKeys(QStringLiteral("Return"));
            return QFileInfo::exists(started);
        };
        QTRY_VERIFY_WITH_TIMEOUT(isOpened(), kPatienceMs);
        QTRY_VERIFY(!program.spotlight().exists());
        const QJsonObject usage =
            QJsonDocument::fromJson(read(QStringLiteral("usage.json"))).object();
        QCOMPARE(usage.keys(), QStringList{QDir::toNativeSeparators(kept)});
    }
    const Program again;
    hideHome(again);
    if (QTest::currentTestFailed())
        return;
    uncheckLastFolder(again); // the one that is still there
    QTRY_COMPARE(read(fileName), QByteArray("[]"));
    for (const QString& file : {kept, left})
        QVERIFY(QDir(QFileInfo(file).path()).removeRecursively());
}

/// A section and a snippet in it, from an empty profile on; the snippet runs, also after a restart.
void E2ePacked::madeByKeysAndStillThereLater()
{
    const QString up = QStringLiteral("Up");
    const QString down = QStringLiteral("Down");
    const QString left = QStringLiteral("Left");
    const QString enter = QStringLiteral("Return");
    QTRY_VERIFY(NativeDesktop::setClipboardText(QStringLiteral("from before")));
    {
        const Program program;
        QTRY_VERIFY_WITH_TIMEOUT(program.home().isForeground, kPatienceMs);
        // From the pills by way of the search to the button that adds; the second row is a section.
        press({up, left, left, enter});
        QTRY_COMPARE(program.windowCount(), 2);
        press({down, down, enter});
        QTRY_VERIFY(program.isDialogUp());
        NativeDesktop::type(QStringLiteral("tools"));
        press({enter});
        QTRY_COMPARE(program.windowCount(), 1);
        QTRY_VERIFY(program.home().isForeground);
        press({enter});
        QTRY_COMPARE(program.windowCount(), 2);
        press({down, enter});
        QTRY_COMPARE(program.windowCount(), 1);
        NativeDesktop::type(QStringLiteral("greeting"));
        press({enter, enter});
        QTRY_COMPARE(program.windowCount(), 2);
        // Its type is the last of five.
        press({down, down, down, down, down, enter});
        QTRY_COMPARE(program.windowCount(), 1);
        press({down});
        NativeDesktop::type(QStringLiteral("good morning"));
        press({down, QStringLiteral("Right"), enter});
        const auto items = [this] {
            return document()
                .value(QStringLiteral("sectionElements"))
                .toObject()
                .value(QStringLiteral("tools"))
                .toArray();
        };
        QTRY_COMPARE(items().size(), 1);
        const QJsonObject item = items().at(0).toObject();
        QCOMPARE(item.value(QStringLiteral("name")).toString(), QStringLiteral("greeting"));
        QCOMPARE(item.value(QStringLiteral("shortcutType")).toString(), QStringLiteral("Snippet"));
        QCOMPARE(item.value(QStringLiteral("value")).toString(), QStringLiteral("good morning"));
        press({enter});
        QTRY_COMPARE(NativeDesktop::clipboardText(), QStringLiteral("good morning"));
        QTRY_VERIFY(!program.home().exists());
    }
    QTRY_VERIFY(NativeDesktop::setClipboardText(QStringLiteral("from between")));
    const Program again;
    QTRY_VERIFY_WITH_TIMEOUT(again.home().isForeground, kPatienceMs);
    press({down, enter});
    QTRY_COMPARE(NativeDesktop::clipboardText(), QStringLiteral("good morning"));
    QTRY_VERIFY(!again.home().exists());
}

void E2ePacked::settingsAreChangedByKeys()
{
    constexpr int kDisplay = 0;
    constexpr int kThemeRow = 0;
    constexpr int kLanguageRow = 3;
    set(QStringLiteral("Theme/ForceTheme"), QStringLiteral("1"));
    {
        const Program program;
        openSettings(program, kDisplay, kThemeRow);
        if (QTest::currentTestFailed())
            return;
        // From the light theme, which is in force, to the dark one.
        press({QStringLiteral("Right"), QStringLiteral("Return")});
        QTRY_COMPARE(setting(QStringLiteral("Theme/ForceTheme")), QStringLiteral("2"));
    }
    const Program program;
    openSettings(program, kDisplay, kLanguageRow);
    if (QTest::currentTestFailed())
        return;
    press({QStringLiteral("Return")});
    QTRY_COMPARE(program.windowCount(), 2);
    press({QStringLiteral("Down"), QStringLiteral("Down"), QStringLiteral("Return")});
    QTRY_COMPARE(setting(QStringLiteral("Language/Code")), QStringLiteral("id"));
    QCOMPARE(setting(QStringLiteral("Theme/ForceTheme")), QStringLiteral("2"));
    QTRY_VERIFY(program.settings().isForeground);
}

void E2ePacked::recordedHotkeyFires()
{
    constexpr int kApp = 1;
    constexpr int kSpotlightRow = 1;
    {
        const Program program;
        openSettings(program, kApp, kSpotlightRow);
        if (QTest::currentTestFailed())
            return;
        press({QStringLiteral("Right"), QStringLiteral("Return")});
        NativeDesktop::pressKeys(kOtherHotkey);
        QTRY_COMPARE(setting(kSpotlightSetting), kOtherHotkey);
        NativeDesktop::pressKeys(kOtherHotkey);
        QTRY_VERIFY(program.spotlight().isForeground);
    }
    const Program again;
    hideHome(again);
    if (QTest::currentTestFailed())
        return;
    NativeDesktop::pressKeys(kSpotlightHotkey); // which is nobody's now
    NativeDesktop::pressKeys(kOtherHotkey);
    QTRY_VERIFY(again.spotlight().isForeground);
    NativeDesktop::pressKeys(kOtherHotkey);
    QTRY_VERIFY(!again.spotlight().exists());
}

void E2ePacked::dataIsTakenOutAndInByKeys()
{
    constexpr int kApp = 1;
    constexpr int kExportRow = 2;
    const QByteArray document = Profile::document(
        {Profile::item(QStringLiteral("Note"), QStringLiteral("Snippet"), QStringLiteral("text"))});
    write(QStringLiteral("data.json"), document);
    const QString enter = QStringLiteral("Return");
    const QTemporaryDir elsewhere;
    const QString file = elsewhere.filePath(QStringLiteral("copy.json"));
    const auto choose = [&file] {
        NativeDesktop::pressKeys(QStringLiteral("Ctrl+A"));
        QTRY_VERIFY(NativeDesktop::setClipboardText(QDir::toNativeSeparators(file)));
        press({QStringLiteral("Ctrl+V"), QStringLiteral("Return")});
    };
    const Program program;
    openSettings(program, kApp, kExportRow);
    if (QTest::currentTestFailed())
        return;
    press({enter});
    QTRY_VERIFY_WITH_TIMEOUT(program.isChooserUp(), kPatienceMs);
    choose();
    QTRY_COMPARE_WITH_TIMEOUT(contentOf(file), document, kPatienceMs);
    QTRY_VERIFY(program.isQuestionUp()); // the message; the chooser is gone by then
    press({enter});
    QTRY_VERIFY(!program.isDialogUp() && program.settings().isForeground);

    // All of it deleted and brought in again; Esc answers the questions like their first buttons.
    press({QStringLiteral("Down"), QStringLiteral("Down"), enter});
    QTRY_VERIFY(program.isQuestionUp());
    quintptr question = program.dialogHandle();
    press({QStringLiteral("Esc")});
    QTRY_VERIFY(!read(QStringLiteral("data.json")).contains("Note"));
    QVERIFY(read(QStringLiteral("data.json.previous")).contains("Note"));
    QTRY_VERIFY(program.isQuestionUp(question)); // it fades away beneath the message
    press({enter});
    QTRY_VERIFY(!program.isDialogUp() && program.settings().isForeground);
    press({QStringLiteral("Up"), enter});
    QTRY_VERIFY_WITH_TIMEOUT(program.isChooserUp(), kPatienceMs);
    choose();
    QTRY_VERIFY_WITH_TIMEOUT(program.isQuestionUp(), kPatienceMs);
    question = program.dialogHandle();
    press({QStringLiteral("Esc")});
    QTRY_VERIFY(read(QStringLiteral("data.json")).contains("Note"));
    QTRY_VERIFY(program.isQuestionUp(question));
    press({enter});
    QTRY_VERIFY(!program.isDialogUp() && program.settings().isForeground);
    QCOMPARE(contentOf(file), document);
}

/// The welcome, the first steps of the tour that follows, and none of it the next time.
void E2ePacked::newUserIsWelcomedAndShownAround()
{
    constexpr QPoint inside(32, 32); // past the shadow of the window
    constexpr QSize page(MainWindow::WINDOW_WIDTH_GRID - 64, MainWindow::WINDOW_HEIGHT_GRID - 64);
    constexpr QRect addButton(44, 56, 32, 32);
    constexpr QRect strip(44, 112, 529, 28);
    const QString right = QStringLiteral("Right");
    const QString enter = QStringLiteral("Return");
    const QString completed = QStringLiteral("Onboarding/Completed");
    set(completed, QStringLiteral("false"));
    {
        const Program program;
        // Whether the card stands where it is due for what it points at, and leaves the keyboard.
        const auto isCardAt = [&](const QRect& target) {
            const QRect card = program.tourCard().geometry;
            const QRect home = program.home().geometry;
            const QRect inPage = target.isNull() ? target : target.translated(-inside);
            return !card.isNull() && program.home().isForeground &&
                   card.topLeft() ==
                       home.topLeft() + inside + TourOverlay::cardPlace(page, inPage, card.size());
        };
        // On a busy machine a click on a card that has just come has been seen to reach nobody, so
        // it is made again for as long as the card stays where it was.
        const auto clickNextUntilAt = [&](const QRect& target) {
            constexpr int kClicks = 3;
            for (int i = 0; i < kClicks; ++i) {
                NativeDesktop::click(program.tourCard().geometry.bottomRight() - QPoint(40, 26));
                if (QTest::qWaitFor([&] { return isCardAt(target); }))
                    return true;
            }
            return false;
        };
        QTRY_VERIFY_WITH_TIMEOUT(program.welcome().isForeground, kPatienceMs);
        press({right, QStringLiteral("Space")});
        QTRY_COMPARE(setting(QStringLiteral("Language/Code")), QStringLiteral("id"));
        QCOMPARE(setting(completed), QStringLiteral("false"));
        press({right, enter, right, enter});
        QTRY_COMPARE(setting(completed), QStringLiteral("true"));
        QTRY_VERIFY_WITH_TIMEOUT(isCardAt({}), kPatienceMs);
        QVERIFY(clickNextUntilAt(addButton));
        NativeDesktop::click(program.home().geometry.topLeft() + addButton.center());
        QTRY_COMPARE(program.windowCount(), 3);
        press({QStringLiteral("Down"), QStringLiteral("Down"), enter});
        QTRY_VERIFY(program.isDialogUp());
        NativeDesktop::type(QStringLiteral("mine"));
        press({enter});
        QTRY_VERIFY(isCardAt(strip));
        QVERIFY(clickNextUntilAt(addButton));
        QCOMPARE(document().value(QStringLiteral("categories")).toArray().last().toString(),
                 QStringLiteral("mine"));
    }
    const Program again;
    QTRY_VERIFY_WITH_TIMEOUT(again.home().isForeground, kPatienceMs);
    QVERIFY(!again.welcome().exists());
    QVERIFY(!again.tourCard().exists());
}

void E2ePacked::auditsRunBesideIt()
{
    const Program program;
    QTRY_VERIFY_WITH_TIMEOUT(program.home().exists(), kPatienceMs);
    const QByteArray settings = read(QStringLiteral("settings.ini"));
    const QTemporaryDir out;
    const QString colors = out.filePath(QStringLiteral("colours.txt"));
    for (const QStringList& arguments :
         {QStringList{"--audit-contrast"}, QStringList{"--audit-color", colors}}) {
        QProcess audit;
        audit.setProcessEnvironment(bareEnvironment());
        audit.start(programIn(packedFolder()), arguments);
        QVERIFY(audit.waitForFinished(kPatienceMs));
        QCOMPARE(audit.exitStatus(), QProcess::NormalExit);
        QCOMPARE(audit.exitCode(), 0);
    }
    // The same colours as on every system, but for the line ends.
    QFile report(colors);
    QFile expected(QStringLiteral(ORLIMO_TEST_DATA_DIR "/palette.tsv"));
    QVERIFY(report.open(QIODevice::ReadOnly | QIODevice::Text));
    QVERIFY(expected.open(QIODevice::ReadOnly | QIODevice::Text));
    QCOMPARE(report.readAll(), expected.readAll());
    const QByteArray log = read(QStringLiteral("debug.log"));
    QVERIFY2(log.contains("pelanggaran tersisa setelah onColorFor: 0 ==="), log.constData());
    QVERIFY2(log.contains("di bawah ambang: 0 | KEMUNDURAN: 0 ==="), log.constData());
    QVERIFY(program.isRunning());
    QCOMPARE(read(QStringLiteral("settings.ini")), settings);
}

/// Items, then sections, which stay so beyond a restart.
void E2ePacked::reorderedByKeys()
{
    const QString down = QStringLiteral("Down");
    const QString right = QStringLiteral("Right");
    const QString enter = QStringLiteral("Return");
    const QString space = QStringLiteral("Space");
    const auto snippet = [](const char* name) {
        return Profile::item(QLatin1String(name), QStringLiteral("Snippet"), QLatin1String(name));
    };
    write(QStringLiteral("data.json"),
          Profile::documentOfSections(
              {{QStringLiteral("work"), {snippet("one"), snippet("two"), snippet("three")}},
               {QStringLiteral("play"), {snippet("four")}}}));
    const auto firstItem = [this] {
        return document()
            .value(QStringLiteral("sectionElements"))
            .toObject()
            .value(QStringLiteral("work"))
            .toArray()
            .first()
            .toObject()
            .value(QStringLiteral("name"))
            .toString();
    };
    const auto firstSection = [this] {
        return document().value(QStringLiteral("categories")).toArray().first().toString();
    };
    QTRY_VERIFY(NativeDesktop::setClipboardText(QStringLiteral("from before")));
    {
        const Program program;
        QTRY_VERIFY_WITH_TIMEOUT(program.home().isForeground, kPatienceMs);
        press({enter});
        QTRY_COMPARE(program.windowCount(), 2);
        press({down, down, enter});
        QTRY_COMPARE(program.windowCount(), 1);
        press({space, right, enter});
        QTRY_COMPARE(firstItem(), QStringLiteral("two"));
        press({enter}); // the one that was moved is current
        QTRY_COMPARE(NativeDesktop::clipboardText(), QStringLiteral("one"));
        QTRY_VERIFY(!program.home().exists());

        NativeDesktop::pressKeys(kHomeHotkey);
        QTRY_VERIFY(program.home().isForeground);
        press({enter});
        QTRY_COMPARE(program.windowCount(), 2);
        press({down, down, down, down, down, enter});
        QTRY_COMPARE(program.windowCount(), 1);
        press({space, right, enter});
        QTRY_COMPARE(firstSection(), QStringLiteral("play"));
    }
    const Program again;
    QTRY_VERIFY_WITH_TIMEOUT(again.home().isForeground, kPatienceMs);
    press({down, enter});
    QTRY_COMPARE(NativeDesktop::clipboardText(), QStringLiteral("two"));
    QTRY_VERIFY(!again.home().exists());
    QCOMPARE(firstSection(), QStringLiteral("play"));
}

/// A template of a section, and after a restart another section of that.
void E2ePacked::sectionSavedAsTemplateAndUsedByKeys()
{
    const QString up = QStringLiteral("Up");
    const QString down = QStringLiteral("Down");
    const QString left = QStringLiteral("Left");
    const QString enter = QStringLiteral("Return");
    const auto snippet = [](const char* name) {
        return Profile::item(QLatin1String(name), QStringLiteral("Snippet"), QLatin1String(name));
    };
    write(
        QStringLiteral("data.json"),
        Profile::documentOfSections({{QStringLiteral("work"), {snippet("one"), snippet("two")}}}));
    const auto namesOf = [](const QJsonValue& items) {
        QStringList names;
        const QJsonArray array = items.toArray();
        for (const auto item : array)
            names.append(item.toObject().value(QStringLiteral("name")).toString());
        return names;
    };
    const auto saved = [this] {
        return document().value(QStringLiteral("templates")).toArray().first().toObject();
    };
    const QStringList expected{QStringLiteral("one"), QStringLiteral("two")};
    QTRY_VERIFY(NativeDesktop::setClipboardText(QStringLiteral("from before")));
    {
        const Program program;
        QTRY_VERIFY_WITH_TIMEOUT(program.home().isForeground, kPatienceMs);
        // From the pills by way of the search to the button of templates.
        press({up, left, enter});
        QTRY_VERIFY(program.isMenuUp());
        press({down, enter});
        QTRY_VERIFY(program.isDialogUp());
        press({QStringLiteral("Ctrl+A")});
        NativeDesktop::type(QStringLiteral("kit"));
        press({enter});
        QTRY_COMPARE(saved().value(QStringLiteral("name")).toString(), QStringLiteral("kit"));
        QCOMPARE(namesOf(saved().value(QStringLiteral("items"))), expected);
    }
    const Program again;
    QTRY_VERIFY_WITH_TIMEOUT(again.home().isForeground, kPatienceMs);
    press({up, left, enter});
    QTRY_VERIFY(again.isMenuUp());
    const quintptr first = again.menuHandle();
    press({down, down, enter});
    // The templates, of which there is but one.
    QTRY_VERIFY(again.isMenuUp(first));
    press({down, enter});
    QTRY_VERIFY(again.isDialogUp());
    press({enter}); // with the name that is suggested
    QTRY_VERIFY(again.home().isForeground);
    const auto section = [this] {
        return document()
            .value(QStringLiteral("sectionElements"))
            .toObject()
            .value(QStringLiteral("kit"));
    };
    QTRY_COMPARE(namesOf(section()), expected);
    NativeDesktop::pressKeys(kHomeHotkey);
    QTRY_VERIFY(!again.home().exists());
    NativeDesktop::pressKeys(kHomeHotkey);
    QTRY_VERIFY(again.home().isForeground);
    press({down, enter});
    QTRY_COMPARE(NativeDesktop::clipboardText(), QStringLiteral("one"));
    QTRY_VERIFY(!again.home().exists());
    const QSettings settings(path(QStringLiteral("settings.ini")), QSettings::IniFormat);
    QCOMPARE(settings.value(QStringLiteral("lastCategory")).toString(), QStringLiteral("kit"));
}

QTEST_GUILESS_MAIN(E2ePacked)
#include "tst_e2e_packed.moc"
