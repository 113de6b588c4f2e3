// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "MainWindow.h"
#include "NativeDesktop.h"
#include "Profile.h"
#include "SpotlightWindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace
{

constexpr int kPatienceMs = 30000;
const QString kHomeHotkey = QStringLiteral("Ctrl+Alt+Space");
const QString kSpotlightHotkey = QStringLiteral("Ctrl+Alt+Y");
const QString kOtherHotkey = QStringLiteral("Ctrl+Shift+K");
const QString kStartMenu = QStringLiteral("\\Microsoft\\Windows\\Start Menu\\Programs");
const QString kAppPaths =
    QStringLiteral("HKEY_CURRENT_USER\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths");
const QString kSpotlightSetting = QStringLiteral("Hotkey/SpotlightCombo");

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
    NativeDesktop::Window spotlight() const { return windowOfWidth(SpotlightWindow::WINDOW_WIDTH); }

private:
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
    void secondStartWakesTheFirst();
    void copyElsewhereRunsBesideIt();
    void takenHotkeyFallsBack();
    void installedApplicationIsFoundAndStarted_data();
    void installedApplicationIsFoundAndStarted();

private:
    QString path(const QString& name) const { return QDir(m_dataDir).filePath(name); }
    void write(const QString& name, const QByteArray& content) const;
    QByteArray read(const QString& name) const;
    void hideHome(const Program& program) const;

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
}

void E2ePacked::write(const QString& name, const QByteArray& content) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QByteArray E2ePacked::read(const QString& name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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

void E2ePacked::secondStartWakesTheFirst()
{
    const Program program;
    hideHome(program);
    if (QTest::currentTestFailed())
        return;
    QProcess second;
    second.setProcessEnvironment(bareEnvironment());
    second.start(programIn(packedFolder()), QStringList());
    QVERIFY(second.waitForFinished(kPatienceMs));
    QCOMPARE(second.exitStatus(), QProcess::NormalExit);
    QCOMPARE(second.exitCode(), 0);
    QTRY_VERIFY(program.home().exists());
    QVERIFY(program.isRunning());
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
    {
        QSettings settings(path(QStringLiteral("settings.ini")), QSettings::IniFormat);
        settings.setValue(kSpotlightSetting, kOtherHotkey);
    }
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

QTEST_GUILESS_MAIN(E2ePacked)
#include "tst_e2e_packed.moc"
