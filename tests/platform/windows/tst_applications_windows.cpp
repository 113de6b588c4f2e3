// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FakeFolder.h"
#include "InstalledApplications.h"
#include "ShellIcon.h"
#include "ShellLink.h"
#include "StoreApps.h"
#include "SystemResources.h"
#include "TaskMemorySpy.h"
#include "TestHome.h"

#include <QDir>
#include <QFile>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QIcon>
#include <QImage>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <cstring>
#include <memory>
#include <utility>

#include <wrl/client.h>

using Microsoft::WRL::ComPtr;
using Platform::InstalledApplication;

namespace
{

constexpr int kNamedSizePx = 48;
const QString kPrograms = QStringLiteral("/Microsoft/Windows/Start Menu/Programs/");
const QString kMachine = QStringLiteral("HKEY_LOCAL_MACHINE");
const QString kUser = QStringLiteral("HKEY_CURRENT_USER");
const QString kCurrentVersion = QStringLiteral("\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion");
const QString kAppPaths = kCurrentVersion + QStringLiteral("\\App Paths");

LPCWSTR wide(const QString& text)
{
    return reinterpret_cast<LPCWSTR>(text.utf16());
}

QString native(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

void writeFile(const QString& path, const QByteArray& content = "content")
{
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
}

/// COM for what a test does itself.
class Com
{
public:
    explicit Com(DWORD kind = COINIT_APARTMENTTHREADED) : m_result(CoInitializeEx(nullptr, kind)) {}
    ~Com()
    {
        if (SUCCEEDED(m_result))
            CoUninitialize();
    }
    Com(const Com&) = delete;
    Com& operator=(const Com&) = delete;

private:
    HRESULT m_result;
};

bool threadHasCom()
{
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    return CoGetApartmentType(&type, &qualifier) != CO_E_NOTINITIALIZED;
}

/// What a shortcut is to say.
struct Shortcut
{
    QString target{};
    QString icon{};
    int iconIndex = 0;
    bool isControlPanel = false; ///< a part of the desktop, which has no path
};

void makeShortcut(const QString& path, const Shortcut& shortcut)
{
    const Com com;
    ComPtr<IShellLinkW> link;
    ComPtr<IPersistFile> file;
    bool isDone =
        QDir().mkpath(QFileInfo(path).path()) &&
        SUCCEEDED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                   reinterpret_cast<void**>(link.GetAddressOf()))) &&
        SUCCEEDED(
            link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(file.GetAddressOf())));
    if (isDone && !shortcut.target.isEmpty())
        isDone = SUCCEEDED(link->SetPath(wide(native(shortcut.target))));
    if (isDone && !shortcut.icon.isEmpty())
        isDone = SUCCEEDED(link->SetIconLocation(wide(native(shortcut.icon)), shortcut.iconIndex));
    if (isDone && shortcut.isControlPanel) {
        PIDLIST_ABSOLUTE item = nullptr;
        isDone =
            SUCCEEDED(SHGetKnownFolderIDList(FOLDERID_ControlPanelFolder, 0, nullptr, &item)) &&
            SUCCEEDED(link->SetIDList(item));
        CoTaskMemFree(item);
    }
    if (!isDone || FAILED(file->Save(wide(native(path)), TRUE)))
        qFatal("cannot make %s", qPrintable(path));
}

/// An icon file of one colour, in the size in which icons are taken out of files.
void writeIcon(const QString& path, Qt::GlobalColor color)
{
    QImage image(kNamedSizePx, kNamedSizePx, QImage::Format_ARGB32);
    image.fill(color);
    if (!image.save(path, "ICO"))
        qFatal("cannot write %s", qPrintable(path));
}

/// The colour of a one-coloured icon; an invalid one for the icons of the desktop's own making.
QColor colorOf(const QIcon& icon)
{
    const QSize size(kNamedSizePx, kNamedSizePx);
    if (!icon.availableSizes().contains(size))
        return {};
    return icon.pixmap(size).toImage().pixelColor(kNamedSizePx / 2, kNamedSizePx / 2);
}

QImage imageOf(const QIcon& icon)
{
    return icon.pixmap(icon.availableSizes().value(0)).toImage();
}

/// Puts a variable of the same length in the place of a directory, which Wine never leaves in a
/// shortcut that it makes.
void replaceDirectory(const QString& shortcut, const QString& directory, const QString& variable)
{
    QFile file(shortcut);
    QVERIFY(file.open(QIODevice::ReadWrite));
    const QByteArray before = file.readAll();
    QByteArray after = before;
    after.replace(directory.toLocal8Bit(), variable.toLocal8Bit());
    QVERIFY(after != before);
    QCOMPARE(after.size(), before.size());
    QVERIFY(file.seek(0));
    QCOMPARE(file.write(after), after.size());
}

QSettings appPaths(const QString& root)
{
    return QSettings(root + kAppPaths, QSettings::NativeFormat);
}

/// The names of all keys and the values in them, from where `settings` stands downwards.
QStringList contentsOf(QSettings& settings)
{
    QStringList contents;
    const QStringList names = settings.childKeys();
    for (const QString& name : names)
        contents.append(settings.group() + "/" + name + "=" + settings.value(name).toString());
    const QStringList groups = settings.childGroups();
    for (const QString& group : groups) {
        settings.beginGroup(group);
        contents.append(settings.group() + "/");
        contents += contentsOf(settings);
        settings.endGroup();
    }
    return contents;
}

/// What a root holds of all that a listing looks at, and what lies beside that.
QStringList registryOf(const QString& root)
{
    // From the key above, since settings create the one that they are opened on.
    QSettings settings(root + kCurrentVersion, QSettings::NativeFormat);
    const QStringList beside = settings.childGroups();
    settings.beginGroup("App Paths");
    return beside + contentsOf(settings);
}

QVector<InstalledApplication> list()
{
    QVector<InstalledApplication> found;
    Platform::listInstalledApplications(
        [&found](const InstalledApplication& one) { found.append(one); });
    return found;
}

} // namespace

/// The applications that Windows tells of, and their icons.
class ApplicationsTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init();
    void cleanup();

    void shortcutIsListed_data();
    void shortcutIsListed();
    void fileIsNoApplication_data();
    void fileIsNoApplication();
    void shortcutsOfBothMenus();
    void menusMayBeMissing_data();
    void menusMayBeMissing();

    void appPathIsListed_data();
    void appPathIsListed();
    void appPathIsLeftOut_data();
    void appPathIsLeftOut();
    void sourcesComeInOrder();
    void listingWritesNothing_data();
    void listingWritesNothing();

    void storeAppIsCollected_data();
    void storeAppIsCollected();
    void storeAppsKeepTheirOrder();
    void storeFolderThatFails_data();
    void storeFolderThatFails();
    void storeFolderThatBreaksOff_data();
    void storeFolderThatBreaksOff();
    void storeAppHasItsIcon();
    void storeAppWithoutIcon();
    void storeAppWithoutIdList();
    void storeMemoryIsFreed();
    void displayNameForms_data();
    void displayNameForms();
    void storeFolderIsAbsent();

    void namedIconIsTaken_data();
    void namedIconIsTaken();
    void iconOfTarget_data();
    void iconOfTarget();
    void shortcutWithoutIcon_data();
    void shortcutWithoutIcon();
    void iconIsExtracted_data();
    void iconIsExtracted();
    void applicationIcons_data();
    void applicationIcons();
    void variablesAreExpanded_data();
    void variablesAreExpanded();
    void comIsLeftAsItWas();
    void otherKindOfComGivesUp();
    void iconOfNothingIsNull();
    void iconsLeakNothing_data();
    void iconsLeakNothing();

private:
    QString path(const QString& name) const { return m_dir->filePath(name); }
    QString machineMenu(const QString& name) const { return path("machine") + kPrograms + name; }
    QString userMenu(const QString& name) const { return path("user") + kPrograms + name; }
    /// What was found below the test's own directory, where it is.
    QVector<InstalledApplication> listOwn() const;
    QStringList namesOfOwn() const;
    void setAppPath(const QString& root, const QString& group, const QVariant& value);

    std::unique_ptr<QTemporaryDir> m_dir;
    QVector<std::pair<QString, QString>> m_groups;
};

void ApplicationsTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    QVERIFY(QDir().mkpath(machineMenu(QString())));
    QVERIFY(QDir().mkpath(userMenu(QString())));
    // With separators of the system, as it sets these variables itself.
    qputenv("ProgramData", native(path("machine")).toLocal8Bit());
    qputenv("AppData", native(path("user")).toLocal8Bit());
}

void ApplicationsTest::cleanup()
{
    for (const auto& [root, group] : m_groups)
        appPaths(root).remove(group);
    m_groups.clear();
    m_dir.reset();
}

QVector<InstalledApplication> ApplicationsTest::listOwn() const
{
    QVector<InstalledApplication> own;
    const QVector<InstalledApplication> all = list();
    for (const InstalledApplication& one : all) {
        if (QDir::fromNativeSeparators(one.launchPath).startsWith(m_dir->path()))
            own.append(one);
    }
    return own;
}

QStringList ApplicationsTest::namesOfOwn() const
{
    QStringList names;
    const QVector<InstalledApplication> own = listOwn();
    for (const InstalledApplication& one : own)
        names.append(one.name);
    return names;
}

void ApplicationsTest::setAppPath(const QString& root, const QString& group, const QVariant& value)
{
    m_groups.append({root, group});
    QSettings settings(root + kAppPaths, QSettings::NativeFormat);
    settings.setValue(group + "/Default", value);
    settings.sync();
    QCOMPARE(settings.status(), QSettings::NoError);
}

void ApplicationsTest::shortcutIsListed_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("target"); // below the test's directory; "control" is a desktop part
    QTest::addColumn<bool>("exists");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("hasTargetAsKey");
    QTest::newRow("program") << "Writer.lnk"
                             << "bin/Writer.exe" << true << "Writer" << true;
    QTest::newRow("name with dots") << "Writer 1.2.lnk"
                                    << "bin/w.exe" << true << "Writer 1.2" << true;
    QTest::newRow("deep in the menu") << "a/b c/d/Writer.lnk"
                                      << "w.exe" << true << "Writer" << true;
    QTest::newRow("capitals in the target") << "Writer.lnk"
                                            << "Bin/WRITER.EXE" << true << "Writer" << true;
    QTest::newRow("other letters") << QStringLiteral("日本語 é.lnk") << QStringLiteral("Écrit.exe")
                                   << true << QStringLiteral("日本語 é") << true;
    QTest::newRow("no program, but no document either") << "Data.lnk"
                                                        << "data.xyz" << true << "Data" << true;
    QTest::newRow("target without a suffix") << "Data.lnk"
                                             << "pdf" << true << "Data" << true;
    QTest::newRow("document suffix in the middle") << "Help.lnk"
                                                   << "help.pdf.exe" << true << "Help" << true;
    QTest::newRow("missing program") << "Gone.lnk"
                                     << "gone.EXE" << false << "Gone" << true;
    QTest::newRow("desktop part") << "Panel.lnk"
                                  << "control" << false << "Panel" << false;
    QTest::newRow("no target") << "Nothing.lnk"
                               << "" << false << "Nothing" << false;
    // Qt reads a shortcut only under a suffix in lower case.
    QTest::newRow("suffix in capitals") << "Writer.LNK"
                                        << "WRITER.EXE" << true << "Writer" << false;
}

void ApplicationsTest::shortcutIsListed()
{
    QFETCH(QString, fileName);
    QFETCH(QString, target);
    QFETCH(bool, exists);
    QFETCH(QString, name);
    QFETCH(bool, hasTargetAsKey);
    const QString shortcut = machineMenu(fileName);
    const bool isControlPanel = target == "control";
    if (exists)
        writeFile(path(target));
    makeShortcut(
        shortcut,
        {isControlPanel || target.isEmpty() ? QString() : path(target), {}, 0, isControlPanel});

    const QVector<InstalledApplication> found = listOwn();
    QCOMPARE(found.size(), 1);
    QCOMPARE(found.first().name, name);
    QCOMPARE(found.first().launchPath, shortcut);
    QCOMPARE(found.first().key, (hasTargetAsKey ? path(target) : shortcut).toLower());
    QVERIFY(found.first().presetIcon.isNull());
    QVERIFY(!found.first().isShellItem);
}

void ApplicationsTest::fileIsNoApplication_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("isShortcut");
    const QStringList suffixes{"chm", "txt", "pdf",  "html", "htm",
                               "rtf", "doc", "docx", "md",   "ini"};
    for (const QString& suffix : suffixes) {
        QTest::addRow("%s", qPrintable(suffix)) << "A.lnk"
                                                << "a." + suffix << true;
        QTest::addRow("%s in capitals", qPrintable(suffix)) << "A.lnk"
                                                            << "a." + suffix.toUpper() << true;
    }
    QTest::newRow("nothing but a document suffix") << "A.lnk"
                                                   << ".pdf" << true;
    QTest::newRow("folder") << "A.lnk"
                            << "folder/" << true;
    QTest::newRow("program itself") << "a.exe"
                                    << "" << false;
    QTest::newRow("web address") << "a.url"
                                 << "" << false;
    QTest::newRow("suffix in the middle") << "a.lnk.txt"
                                          << "" << false;
    QTest::newRow("folder that is called so") << "a.lnk/"
                                              << "" << false;
}

void ApplicationsTest::fileIsNoApplication()
{
    QFETCH(QString, fileName);
    QFETCH(QString, target);
    QFETCH(bool, isShortcut);
    if (target.endsWith('/'))
        QVERIFY(QDir().mkpath(path(target)));
    else if (!target.isEmpty())
        writeFile(path(target));
    if (isShortcut)
        makeShortcut(machineMenu(fileName), {path(target)});
    else if (fileName.endsWith('/'))
        QVERIFY(QDir().mkpath(machineMenu(fileName)));
    else
        writeFile(machineMenu(fileName));
    QCOMPARE(namesOfOwn(), QStringList());

    // A missing document is none the less a document.
    if (isShortcut && !target.endsWith('/')) {
        QVERIFY(QFile::remove(path(target)));
        QCOMPARE(namesOfOwn(), QStringList());
    }
}

void ApplicationsTest::shortcutsOfBothMenus()
{
    writeFile(path("same.exe"));
    writeFile(path("other.exe"));
    makeShortcut(userMenu("a.lnk"), {path("same.exe")});
    makeShortcut(machineMenu("z.lnk"), {path("same.exe")});
    makeShortcut(userMenu("b.lnk"), {path("other.exe")});

    const QVector<InstalledApplication> found = listOwn();
    QCOMPARE(found.size(), 3);
    QCOMPARE(found.at(0).launchPath, machineMenu("z.lnk"));
    QCOMPARE(found.at(1).launchPath, userMenu("a.lnk"));
    QCOMPARE(found.at(2).launchPath, userMenu("b.lnk"));
    QCOMPARE(found.at(1).key, found.at(0).key);
    QVERIFY(found.at(2).key != found.at(0).key);
}

void ApplicationsTest::menusMayBeMissing_data()
{
    QTest::addColumn<bool>("isVariableSet");
    QTest::newRow("no folder") << true;
    QTest::newRow("no variable") << false;
}

void ApplicationsTest::menusMayBeMissing()
{
    QFETCH(bool, isVariableSet);
    makeShortcut(userMenu("a.lnk"), {path("a.exe")});
    QVERIFY(QDir(path("machine")).removeRecursively());
    if (!isVariableSet)
        qunsetenv("ProgramData");
    QCOMPARE(namesOfOwn(), QStringList{"a"});
    QVERIFY(QDir(path("user")).removeRecursively());
    if (!isVariableSet)
        qunsetenv("AppData");
    QCOMPARE(namesOfOwn(), QStringList());
}

void ApplicationsTest::appPathIsListed_data()
{
    QTest::addColumn<QString>("root");
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("pattern"); // %1 is the program
    for (const QString& root : {kMachine, kUser}) {
        const char* hive = root == kMachine ? "machine" : "user";
        QTest::addRow("plain, %s", hive) << root << "orlimo-test.exe"
                                         << "%1";
        QTest::addRow("quoted, %s", hive) << root << "orlimo-test.exe"
                                          << "\"%1\"";
    }
    QTest::newRow("blanks around") << kUser << "orlimo-test.exe"
                                   << "  \" %1 \" ";
    QTest::newRow("one quote") << kUser << "orlimo-test.exe"
                               << "\"%1";
    QTest::newRow("key in capitals") << kUser << "ORLIMO-TEST.EXE"
                                     << "%1";
    QTest::newRow("key that is nothing else") << kUser << ".exe"
                                              << "%1";
}

void ApplicationsTest::appPathIsListed()
{
    QFETCH(QString, root);
    QFETCH(QString, group);
    QFETCH(QString, pattern);
    const QString program = native(path("The Program 2.0.EXE"));
    writeFile(program);
    setAppPath(root, group, pattern.arg(program));

    const QVector<InstalledApplication> found = listOwn();
    QCOMPARE(found.size(), 1);
    QCOMPARE(found.first().name, QString("The Program 2.0"));
    QCOMPARE(found.first().launchPath, program);
    QCOMPARE(found.first().key, program.toLower());
    QVERIFY(found.first().presetIcon.isNull());
    QVERIFY(!found.first().isShellItem);
}

void ApplicationsTest::appPathIsLeftOut_data()
{
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("pattern");
    QTest::newRow("key of another kind") << "orlimo-test.com"
                                         << "%1";
    QTest::newRow("key with the suffix inside") << "orlimo-test.exe.old"
                                                << "%1";
    QTest::newRow("arguments") << "orlimo-test.exe"
                               << "%1 /start";
    QTest::newRow("arguments behind quotes") << "orlimo-test.exe"
                                             << "\"%1\" /start";
    QTest::newRow("missing file") << "orlimo-test.exe"
                                  << "%1.gone";
    QTest::newRow("empty") << "orlimo-test.exe"
                           << "";
    QTest::newRow("quotes alone") << "orlimo-test.exe"
                                  << " \"\" ";
    QTest::newRow("variable") << "orlimo-test.exe"
                              << "%AppData%\\..\\program.exe";
}

void ApplicationsTest::appPathIsLeftOut()
{
    QFETCH(QString, group);
    QFETCH(QString, pattern);
    const QString program = native(path("program.exe"));
    writeFile(program);
    setAppPath(kUser, group, pattern.contains("%1") ? pattern.arg(program) : pattern);
    const qsizetype others = list().size();
    QCOMPARE(namesOfOwn(), QStringList());
    appPaths(kUser).remove(group);
    QCOMPARE(list().size(), others);
}

void ApplicationsTest::sourcesComeInOrder()
{
    const QString program = native(path("program.exe"));
    writeFile(program);
    writeFile(path("last.exe"));
    setAppPath(kUser, "orlimo-test-1.exe", program);
    setAppPath(kUser, "orlimo-test-0.exe", native(path("last.exe")));
    setAppPath(kMachine, "orlimo-test-2.exe", program.toUpper());
    makeShortcut(userMenu("user.lnk"), {program});
    makeShortcut(machineMenu("machine.lnk"), {program});

    QStringList paths;
    const QVector<InstalledApplication> all = list();
    for (const InstalledApplication& one : all) {
        if (one.launchPath.contains(m_dir->path().section('/', -1), Qt::CaseInsensitive))
            paths.append(one.launchPath);
    }
    QCOMPARE(paths, QStringList({machineMenu("machine.lnk"), userMenu("user.lnk"),
                                 program.toUpper(), native(path("last.exe")), program}));
}

void ApplicationsTest::listingWritesNothing_data()
{
    QTest::addColumn<bool>("hasKeys");
    QTest::newRow("keys that are there") << true;
    QTest::newRow("key that is missing") << false;
}

void ApplicationsTest::listingWritesNothing()
{
    QFETCH(bool, hasKeys);
    // The other cases leave the user's key behind, empty. The machine's holds what is installed.
    const QString own = kAppPaths.mid(1);
    const LSTATUS removed = RegDeleteTreeW(HKEY_CURRENT_USER, wide(own));
    QVERIFY(removed == ERROR_SUCCESS || removed == ERROR_FILE_NOT_FOUND);
    if (hasKeys) {
        writeFile(path("program.exe"));
        setAppPath(kUser, "orlimo-test.exe", native(path("program.exe")));
        setAppPath(kMachine, "orlimo-test.exe", native(path("gone.exe")));
    }
    const QStringList user = registryOf(kUser);
    const QStringList machine = registryOf(kMachine);
    QCOMPARE(user.contains("App Paths"), hasKeys);
    QCOMPARE(user.filter("orlimo-test.exe").isEmpty(), !hasKeys);
    QCOMPARE(machine.filter("orlimo-test.exe").isEmpty(), !hasKeys);
    QCOMPARE(namesOfOwn(), hasKeys ? QStringList{"program"} : QStringList());
    QCOMPARE(registryOf(kUser), user);
    QCOMPARE(registryOf(kMachine), machine);
}

namespace
{

/// A folder of the file system and a file in it, as the shell names them.
class ItemOfFile
{
public:
    explicit ItemOfFile(const QString& path)
    {
        if (FAILED(SHParseDisplayName(wide(native(path)), nullptr, &m_item, 0, nullptr)))
            qFatal("the shell doesn't know %s", qPrintable(path));
        m_parent = ILCloneFull(m_item);
        ILRemoveLastID(m_parent);
    }
    ~ItemOfFile()
    {
        CoTaskMemFree(m_parent);
        CoTaskMemFree(m_item);
    }
    ItemOfFile(const ItemOfFile&) = delete;
    ItemOfFile& operator=(const ItemOfFile&) = delete;

    PCIDLIST_ABSOLUTE whole() const { return m_item; }
    PCIDLIST_ABSOLUTE parent() const { return m_parent; }
    PCUITEMID_CHILD child() const { return ILFindLastID(m_item); }

private:
    PIDLIST_ABSOLUTE m_item = nullptr;
    PIDLIST_ABSOLUTE m_parent = nullptr;
};

QVector<InstalledApplication> collect(FakeFolder* folder, PCIDLIST_ABSOLUTE parent)
{
    QVector<InstalledApplication> found;
    Platform::collectStoreApps(folder, parent,
                               [&found](const InstalledApplication& one) { found.append(one); });
    return found;
}

} // namespace

void ApplicationsTest::storeAppIsCollected_data()
{
    using Name = FakeFolder::Name;
    QTest::addColumn<Name>("display");
    QTest::addColumn<Name>("parsing");
    QTest::addColumn<QString>("launchPath"); // empty: left out
    const Name display{"Calculator"};
    const QString id = QStringLiteral("Maker.Calculator_8wekyb3d8bbwe!App");
    QTest::newRow("application of the store") << display << Name{id} << "shell:AppsFolder\\" + id;
    QTest::newRow("mark alone") << display << Name{"!"} << "shell:AppsFolder\\!";
    QTest::newRow("other letters") << Name{QStringLiteral("計算機")} << Name{QStringLiteral("É!é")}
                                   << QStringLiteral("shell:AppsFolder\\É!é");
    QTest::newRow("no mark") << display << Name{"Microsoft.Windows.ControlPanel"} << "";
    QTest::newRow("mark in the name alone") << Name{"Wow!"} << Name{"Maker.Wow"} << "";
    QTest::newRow("empty name") << Name{""} << Name{id} << "";
    QTest::newRow("empty parsing name") << display << Name{""} << "";
    QTest::newRow("null name") << Name{QString()} << Name{id} << "";
    QTest::newRow("null parsing name") << display << Name{QString()} << "";
    QTest::newRow("narrow name") << Name{"Calculator", STRRET_CSTR} << Name{id} << "";
    QTest::newRow("narrow parsing name") << display << Name{id, STRRET_CSTR} << "";
    QTest::newRow("name inside the id list") << Name{"Calculator", STRRET_OFFSET} << Name{id} << "";
    QTest::newRow("name can't be told")
        << Name{"Calculator", STRRET_WSTR, E_FAIL} << Name{id} << "";
    QTest::newRow("parsing name can't be told") << display << Name{id, STRRET_WSTR, E_FAIL} << "";
}

void ApplicationsTest::storeAppIsCollected()
{
    QFETCH(FakeFolder::Name, display);
    QFETCH(FakeFolder::Name, parsing);
    QFETCH(QString, launchPath);
    const Com com;
    writeFile(path("a.txt"));
    const ItemOfFile item(path("a.txt"));
    FakeFolder folder;
    folder.children = {{item.child(), display, parsing}};
    const QVector<InstalledApplication> found = collect(&folder, item.parent());
    QCOMPARE(found.size(), launchPath.isEmpty() ? 0 : 1);
    for (const InstalledApplication& one : found) {
        QCOMPARE(one.name, display.text);
        QCOMPARE(one.launchPath, launchPath);
        QCOMPARE(one.key, parsing.text.toLower());
        QVERIFY(one.isShellItem);
    }
}

void ApplicationsTest::storeAppsKeepTheirOrder()
{
    const Com com;
    writeFile(path("a.txt"));
    writeFile(path("b.txt"));
    writeFile(path("c.txt"));
    const ItemOfFile a(path("a.txt"));
    const ItemOfFile b(path("b.txt"));
    const ItemOfFile c(path("c.txt"));
    FakeFolder folder;
    folder.children = {{c.child(), {"Third"}, {"C!App"}},
                       {b.child(), {"Bad"}, {"B"}},
                       {a.child(), {"First"}, {"A!App"}}};
    const QVector<InstalledApplication> found = collect(&folder, a.parent());
    QCOMPARE(found.size(), 2);
    QCOMPARE(found.at(0).name, QString("Third"));
    QCOMPARE(found.at(1).name, QString("First"));
    QCOMPARE(folder.askedFor, SHCONTF(SHCONTF_FOLDERS | SHCONTF_NONFOLDERS));
    QCOMPARE(folder.references(), 1UL);
    QCOMPARE(folder.enumerations(), 0UL);
}

void ApplicationsTest::storeFolderThatFails_data()
{
    QTest::addColumn<int>("enumResult");
    QTest::addColumn<bool>("saysYesWithoutChild");
    QTest::newRow("refused") << int(E_ACCESSDENIED) << false;
    QTest::newRow("no children") << int(S_FALSE) << false;
    QTest::newRow("child that isn't there") << int(S_OK) << true;
}

void ApplicationsTest::storeFolderThatFails()
{
    QFETCH(int, enumResult);
    QFETCH(bool, saysYesWithoutChild);
    const Com com;
    writeFile(path("a.txt"));
    const ItemOfFile item(path("a.txt"));
    FakeFolder folder;
    folder.children = {{item.child(), {"A"}, {"A!App"}}};
    folder.enumResult = enumResult;
    folder.saysYesWithoutChild = saysYesWithoutChild;
    QVERIFY(collect(&folder, item.parent()).isEmpty());
    QCOMPARE(folder.enumerations(), 0UL);
}

void ApplicationsTest::storeFolderThatBreaksOff_data()
{
    QTest::addColumn<int>("failsAt");
    QTest::addColumn<int>("failure");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("at once") << 0 << int(E_FAIL) << QStringList();
    QTest::newRow("in the middle") << 1 << int(E_FAIL) << QStringList{"A"};
    QTest::newRow("in the middle, for want of memory")
        << 1 << int(E_OUTOFMEMORY) << QStringList{"A"};
    QTest::newRow("before the last") << 2 << int(E_UNEXPECTED) << QStringList({"A", "B"});
    QTest::newRow("never") << -1 << int(E_FAIL) << QStringList({"A", "B", "C"});
}

/// What comes before the failure counts; what might come after isn't asked for.
void ApplicationsTest::storeFolderThatBreaksOff()
{
    QFETCH(int, failsAt);
    QFETCH(int, failure);
    QFETCH(QStringList, names);
    const Com com;
    for (const char* name : {"a.txt", "b.txt", "c.txt"})
        writeFile(path(name));
    const ItemOfFile a(path("a.txt"));
    const ItemOfFile b(path("b.txt"));
    const ItemOfFile c(path("c.txt"));
    FakeFolder folder;
    folder.children = {{a.child(), {"A"}, {"A!App"}},
                       {b.child(), {"B"}, {"B!App"}},
                       {c.child(), {"C"}, {"C!App"}}};
    folder.failsAt = failsAt;
    folder.failure = failure;
    QStringList found;
    const QVector<InstalledApplication> all = collect(&folder, a.parent());
    for (const InstalledApplication& one : all)
        found.append(one.name);
    QCOMPARE(found, names);
    QCOMPARE(folder.enumerations(), 0UL);
    QCOMPARE(folder.references(), 1UL);
}

void ApplicationsTest::storeAppHasItsIcon()
{
    const Com com;
    QVERIFY(QDir().mkpath(path("folder")));
    writeFile(path("file"));
    const ItemOfFile folderItem(path("folder"));
    const ItemOfFile fileItem(path("file"));
    FakeFolder folder;
    folder.children = {{folderItem.child(), {"A"}, {"A!App"}},
                       {fileItem.child(), {"B"}, {"B!App"}}};
    const QVector<InstalledApplication> found = collect(&folder, folderItem.parent());
    QCOMPARE(found.size(), 2);
    const QImage icon = imageOf(found.at(0).presetIcon);
    QVERIFY(!icon.isNull());
    QCOMPARE(icon, imageOf(Platform::shellIcon(wide(native(path("folder"))), 0, 0)));
    QCOMPARE(imageOf(found.at(1).presetIcon),
             imageOf(Platform::shellIcon(wide(native(path("file"))), 0, 0)));
    QVERIFY(icon != imageOf(found.at(1).presetIcon));
}

void ApplicationsTest::storeAppWithoutIcon()
{
    const Com com;
    writeFile(path("file"));
    const ItemOfFile item(path("file"));
    FakeFolder folder;
    folder.children = {{item.child(), {"A"}, {"A!App"}}};
    // Below a file there is nothing that the shell could look at.
    const QVector<InstalledApplication> found = collect(&folder, item.whole());
    QCOMPARE(found.size(), 1);
    QVERIFY(found.first().presetIcon.isNull());
}

void ApplicationsTest::storeAppWithoutIdList()
{
    const Com com;
    QVERIFY(!ILCombine(nullptr, nullptr)); // as for want of memory
    FakeFolder folder;
    folder.children = {{nullptr, {"A"}, {"A!App"}}};
    // Listed nevertheless, without the icon, which nothing else leads to.
    const QVector<InstalledApplication> found = collect(&folder, nullptr);
    QCOMPARE(found.size(), 1);
    QCOMPARE(found.first().name, QString("A"));
    QCOMPARE(found.first().launchPath, QString("shell:AppsFolder\\A!App"));
    QVERIFY(found.first().presetIcon.isNull());
}

void ApplicationsTest::storeMemoryIsFreed()
{
    const Com com;
    writeFile(path("a.txt"));
    const ItemOfFile item(path("a.txt"));
    FakeFolder folder;
    folder.children = {{item.child(), {"A"}, {"A!App"}},
                       {item.child(), {"No mark"}, {"A"}},
                       {item.child(), {""}, {"A!App"}}};
    collect(&folder, item.parent()); // what the shell keeps for good is allocated here
    TaskMemorySpy spy;
    QVERIFY(spy.isRegistered());
    collect(&folder, item.parent());
    // Two names and an id list for each child.
    QVERIFY2(spy.allocated() >= 9, qPrintable(QString::number(spy.allocated())));
    QCOMPARE(spy.alive(), 0);
}

void ApplicationsTest::displayNameForms_data()
{
    QTest::addColumn<uint>("form");
    QTest::addColumn<bool>("hasText");
    QTest::addColumn<QString>("expected");
    QTest::newRow("wide") << uint(STRRET_WSTR) << true << "text";
    QTest::newRow("wide without text") << uint(STRRET_WSTR) << false << "";
    QTest::newRow("narrow") << uint(STRRET_CSTR) << false << "";
    QTest::newRow("inside the id list") << uint(STRRET_OFFSET) << false << "";
    QTest::newRow("unheard of") << 77U << false << "";
}

void ApplicationsTest::displayNameForms()
{
    QFETCH(uint, form);
    QFETCH(bool, hasText);
    QFETCH(QString, expected);
    const QString text = QStringLiteral("text");
    STRRET name{};
    std::memset(&name, 'x', sizeof name);
    name.uType = form;
    if (form == STRRET_WSTR) {
        const std::size_t size = (static_cast<std::size_t>(text.size()) + 1) * sizeof(wchar_t);
        name.pOleStr = hasText ? static_cast<LPWSTR>(CoTaskMemAlloc(size)) : nullptr;
        if (hasText)
            std::memcpy(name.pOleStr, text.utf16(), size);
    }
    QCOMPARE(Platform::strRetToString(name), expected);
    if (form == STRRET_WSTR) {
        QVERIFY(!name.pOleStr);
        QCOMPARE(Platform::strRetToString(name), QString()); // freed once
    }
}

void ApplicationsTest::storeFolderIsAbsent()
{
    // Wine, under which alone this runs, has no folder of applications.
    int count = 0;
    Platform::addStoreApps([&count](const InstalledApplication&) { ++count; });
    QCOMPARE(count, 0);
    QVERIFY(!threadHasCom());
}

void ApplicationsTest::namedIconIsTaken_data()
{
    QTest::addColumn<QString>("icon"); // %1 is the directory
    QTest::newRow("path") << "%1/red.ico";
    QTest::newRow("variable") << "%ORLIMO_TEST_DIR%\\red.ico";
    QTest::newRow("variable within a path") << "%1/%ORLIMO_TEST_NAME%.ico";
}

void ApplicationsTest::namedIconIsTaken()
{
    QFETCH(QString, icon);
    writeIcon(path("red.ico"), Qt::red);
    writeFile(path("program.exe"));
    qputenv("ORLIMO_TEST_DIR", native(m_dir->path()).toLocal8Bit());
    qputenv("ORLIMO_TEST_NAME", "red");
    makeShortcut(path("a.lnk"), {path("program.exe"), icon.replace("%1", m_dir->path())});
    QCOMPARE(colorOf(Platform::shortcutIcon(path("a.lnk"))), QColor(Qt::red));
    QCOMPARE(colorOf(Platform::shortcutIcon(native(path("a.lnk")))), QColor(Qt::red));
}

void ApplicationsTest::iconOfTarget_data()
{
    QTest::addColumn<QString>("icon");
    QTest::addColumn<bool>("isVariable");
    QTest::newRow("no icon named") << "" << false;
    QTest::newRow("named icon is missing") << "%1/gone.ico" << false;
    QTest::newRow("named file holds no icon") << "%1/program.exe" << false;
    QTest::newRow("variable in the target") << "" << true;
}

void ApplicationsTest::iconOfTarget()
{
    QFETCH(QString, icon);
    QFETCH(bool, isVariable);
    writeFile(path("program.exe"));
    const QString shortcut = path("a.lnk");
    makeShortcut(shortcut, {path("program.exe"), icon.replace("%1", m_dir->path())});
    if (isVariable) {
        const QString directory = native(m_dir->path());
        const QString name = QStringLiteral("ORLIMO_").leftJustified(directory.size() - 2, 'X');
        replaceDirectory(shortcut, directory, '%' + name + '%');
        QVERIFY(Platform::shortcutIcon(shortcut).isNull()); // the variable isn't set yet
        qputenv(name.toLatin1().constData(), directory.toLocal8Bit());
    }
    QVERIFY(!Platform::shortcutIcon(shortcut).isNull());
    QVERIFY(QFile::remove(path("program.exe")));
    QVERIFY(Platform::shortcutIcon(shortcut).isNull());
}

void ApplicationsTest::shortcutWithoutIcon_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("no shortcut") << QByteArray("this is no shortcut at all");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("cut off") << QByteArray("\x4c\0\0\0\x01\x14\x02\0", 8);
    QTest::newRow("long and wild")
        << QByteArray("\x4c\0\0\0\x01\x14\x02\0\0\0\0\0\xc0\0\0\0\0\0\0\x46", 20)
               .append(QByteArray(4000, '\xff'));
}

void ApplicationsTest::shortcutWithoutIcon()
{
    QFETCH(QByteArray, content);
    writeFile(path("a.lnk"), content);
    QVERIFY(Platform::shortcutIcon(path("a.lnk")).isNull());
    QVERIFY(QFile::remove(path("a.lnk")));
    QVERIFY(Platform::shortcutIcon(path("a.lnk")).isNull());
}

void ApplicationsTest::iconIsExtracted_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("isThere");
    const QString library = QStringLiteral("%SystemRoot%\\system32\\shell32.dll");
    QTest::newRow("first") << library << 0 << true;
    QTest::newRow("by number") << library << 3 << true;
    QTest::newRow("by resource") << library << -4 << true;
    QTest::newRow("number out of range") << library << 100000 << false;
    QTest::newRow("no such resource") << library << -31999 << false;
    QTest::newRow("missing file") << "C:\\gone\\gone.dll" << 0 << false;
    QTest::newRow("variable that isn't set") << "%ORLIMO_TEST_UNSET%\\shell32.dll" << 0 << false;
    QTest::newRow("folder") << "%SystemRoot%" << 0 << false;
    QTest::newRow("empty") << "" << 0 << false;
}

void ApplicationsTest::iconIsExtracted()
{
    QFETCH(QString, file);
    QFETCH(int, index);
    QFETCH(bool, isThere);
    const QIcon icon = Platform::extractIcon(file, index);
    QCOMPARE(icon.isNull(), !isThere);
    if (isThere)
        QCOMPARE(icon.availableSizes(), {QSize(kNamedSizePx, kNamedSizePx)});
}

void ApplicationsTest::applicationIcons_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<bool>("isShortcut");
    QTest::addColumn<bool>("hasOwnIcon");
    QTest::newRow("shortcut") << "a.lnk" << true << true;
    QTest::newRow("shortcut in capitals") << "A.LNK" << true << true;
    QTest::newRow("broken shortcut") << "a.lnk" << false << false;
    QTest::newRow("program") << "a.exe" << false << false;
    QTest::newRow("shortcut under another name") << "a.exe" << true << false;
}

void ApplicationsTest::applicationIcons()
{
    QFETCH(QString, fileName);
    QFETCH(bool, isShortcut);
    QFETCH(bool, hasOwnIcon);
    writeIcon(path("red.ico"), Qt::red);
    if (isShortcut)
        makeShortcut(path(fileName), {{}, path("red.ico")});
    else
        writeFile(path(fileName));
    const QIcon icon = Platform::applicationIcon(path(fileName));
    QCOMPARE(colorOf(icon) == QColor(Qt::red), hasOwnIcon);
    // Else it is what the desktop has for that file.
    if (!hasOwnIcon)
        QCOMPARE(imageOf(icon), imageOf(QFileIconProvider().icon(QFileInfo(path(fileName)))));
    QVERIFY(hasOwnIcon || QFileInfo::exists(path(fileName)) != icon.isNull());
}

void ApplicationsTest::variablesAreExpanded_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const QString longest(519, 'x');
    QTest::newRow("nothing to do") << "C:\\a b\\c"
                                   << "C:\\a b\\c";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("variable") << "%ORLIMO_TEST%\\a"
                              << "value\\a";
    QTest::newRow("other case") << "%orlimo_Test%\\a"
                                << "value\\a";
    QTest::newRow("two") << "%ORLIMO_TEST%%ORLIMO_TEST%"
                         << "valuevalue";
    QTest::newRow("not set") << "%ORLIMO_TEST_UNSET%\\a"
                             << "%ORLIMO_TEST_UNSET%\\a";
    QTest::newRow("lone sign") << "100% sure"
                               << "100% sure";
    QTest::newRow("other letters")
        << QStringLiteral("%ORLIMO_TEST%é日") << QStringLiteral("valueé日");
    QTest::newRow("as long as it may be")
        << "%ORLIMO_TEST%" + longest.mid(5) << "value" + longest.mid(5);
    QTest::newRow("one longer") << "%ORLIMO_TEST%" + longest.mid(4)
                                << "%ORLIMO_TEST%" + longest.mid(4);
    QTest::newRow("much longer") << "%ORLIMO_TEST%" + QString(9000, 'x')
                                 << "%ORLIMO_TEST%" + QString(9000, 'x');
}

void ApplicationsTest::variablesAreExpanded()
{
    QFETCH(QString, text);
    qputenv("ORLIMO_TEST", "value");
    QTEST(Platform::expandEnv(text), "expected");
}

void ApplicationsTest::comIsLeftAsItWas()
{
    makeShortcut(machineMenu("a.lnk"), {{}, "%SystemRoot%\\system32\\shell32.dll"});
    QVERIFY(!threadHasCom());
    QCOMPARE(namesOfOwn(), QStringList{"a"});
    QVERIFY(!Platform::shortcutIcon(machineMenu("a.lnk")).isNull());
    QVERIFY(!Platform::applicationIcon(machineMenu("a.lnk")).isNull());
    QVERIFY(!threadHasCom());

    const Com com;
    QVERIFY(!Platform::shortcutIcon(machineMenu("a.lnk")).isNull());
    QCOMPARE(namesOfOwn(), QStringList{"a"});
    QVERIFY(threadHasCom());
}

void ApplicationsTest::otherKindOfComGivesUp()
{
    writeFile(path("program.exe"));
    makeShortcut(machineMenu("a.lnk"), {{}, "%SystemRoot%\\system32\\shell32.dll"});
    {
        const Com com(COINIT_MULTITHREADED);
        QVERIFY(Platform::shortcutIcon(machineMenu("a.lnk")).isNull());
        int count = 0;
        Platform::addStoreApps([&count](const InstalledApplication&) { ++count; });
        QCOMPARE(count, 0);
        QVERIFY(threadHasCom()); // what wasn't taken isn't given back
        // What is no shortcut has its icon none the less.
        QVERIFY(!Platform::applicationIcon(path("program.exe")).isNull());
    }
    QVERIFY(!threadHasCom());
    QVERIFY(!Platform::shortcutIcon(machineMenu("a.lnk")).isNull());
}

void ApplicationsTest::iconOfNothingIsNull()
{
    QVERIFY(Platform::toIcon({}).isNull());
    QVERIFY(Platform::shellIcon(wide(native(path("gone"))), 0, 0).isNull());
    const HICON destroyed = CopyIcon(LoadIconW(nullptr, IDI_APPLICATION));
    QVERIFY(DestroyIcon(destroyed));
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("HICON"));
    QVERIFY(Platform::toIcon(Platform::NativeIcon(destroyed)).isNull());
}

void ApplicationsTest::iconsLeakNothing_data()
{
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QString>("target");
    QTest::newRow("named icon") << "%SystemRoot%\\system32\\shell32.dll"
                                << "";
    QTest::newRow("icon of the target") << ""
                                        << "program.exe";
    QTest::newRow("no icon") << "C:\\gone.dll"
                             << "gone.exe";
}

void ApplicationsTest::iconsLeakNothing()
{
    QFETCH(QString, icon);
    QFETCH(QString, target);
    writeFile(path("program.exe"));
    makeShortcut(path("a.lnk"), {target.isEmpty() ? QString() : path(target), icon});
    Platform::applicationIcon(path("a.lnk")); // what is kept for good is made here
    const std::size_t freeObjects = SystemResources::freeGdiObjects();
    const quintptr handle = SystemResources::nextHandle();
    for (int i = 0; i < 1000; ++i)
        Platform::applicationIcon(path("a.lnk"));
    QCOMPARE(SystemResources::freeGdiObjects(), freeObjects);
    QCOMPARE(SystemResources::nextHandle(), handle);
}

QTEST_MAIN(ApplicationsTest)
#include "tst_applications_windows.moc"
