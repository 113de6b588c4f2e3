// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TestHome.h"

#include "TestFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <memory>

namespace
{

constexpr char kDataVariable[] = "XDG_DATA_HOME";
const QString kHomeFolder = QStringLiteral("home");

std::unique_ptr<QTemporaryDir> s_home;

void pointInto(const char* variable, const QString& subDirectory)
{
    const QString dir = s_home->filePath(subDirectory);
    if (!QDir().mkpath(dir))
        qFatal("cannot make %s", qPrintable(dir));
    qputenv(variable, QFile::encodeName(dir));
}

/// A directory of this process in the real profile, where there is no other way; gone at the end.
class ProfileCorner
{
public:
    explicit ProfileCorner(const QString& path) : m_path(path) {}
    ~ProfileCorner() { QDir(m_path).removeRecursively(); }
    ProfileCorner(const ProfileCorner&) = delete;
    ProfileCorner& operator=(const ProfileCorner&) = delete;

private:
    QString m_path;
};

std::unique_ptr<ProfileCorner> s_corner;

QString dataLocation()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
}

bool holdsAnyFile(const QString& directory)
{
    return QDirIterator(directory, QDir::Files | QDir::System | QDir::Hidden,
                        QDirIterator::Subdirectories)
        .hasNext();
}

} // namespace

void TestHome::install()
{
    s_home = std::make_unique<QTemporaryDir>();
    if (!s_home->isValid())
        qFatal("no temporary directory: %s", qPrintable(s_home->errorString()));
    pointInto("HOME", kHomeFolder);
    pointInto(kDataVariable, QStringLiteral("data"));
    pointInto("XDG_CONFIG_HOME", QStringLiteral("config"));
    pointInto("XDG_CACHE_HOME", QStringLiteral("cache"));
    pointInto("XDG_RUNTIME_DIR", QStringLiteral("run"));
    // Qt refuses a run-time directory that others may read.
    QFile::setPermissions(s_home->filePath(QStringLiteral("run")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication::setApplicationName(QStringLiteral("Orlimo"));
    QCoreApplication::setOrganizationName(QStringLiteral("Orlimo"));
    enterTestMode();
    if (QStandardPaths::isTestModeEnabled()) {
        // Tests that run at the same time share the mode's directory, so each has a part of it.
        QCoreApplication::setOrganizationName(QFileInfo(s_home->path()).fileName());
        s_corner = std::make_unique<ProfileCorner>(QFileInfo(dataLocation()).path());
    }
}

void TestHome::installWithHome()
{
    install();
    const QString home = QFileInfo(QDir::homePath()).canonicalFilePath();
    const bool isOwn = home == QFileInfo(s_home->filePath(kHomeFolder)).canonicalFilePath();
    if (home.isEmpty() || (!isOwn && holdsAnyFile(home)))
        qFatal("Not run: it would work in the home directory %s, which is somebody's.",
               qPrintable(QDir::homePath()));
}

void TestHome::enterTestMode()
{
    const QString wanted = qEnvironmentVariable(kDataVariable);
    if (QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) != wanted)
        QStandardPaths::setTestModeEnabled(true);
}

QString TestHome::path()
{
    return s_home ? s_home->path() : QString();
}

QString TestHome::dataDir()
{
    const QString dir = dataLocation();
    if (!QDir().mkpath(dir))
        qFatal("cannot make %s", qPrintable(dir));
    return dir;
}

void TestHome::writeSettings(const QByteArray& others)
{
    writeDataFile(QStringLiteral("settings.ini"), "[Onboarding]\nCompleted=true\n" + others);
}

QString TestHome::writeDataFile(const QString& fileName, const QByteArray& content)
{
    const QString path = QDir(dataDir()).filePath(fileName);
    if (!TestFiles::write(path, content))
        qFatal("cannot write %s", qPrintable(path));
    return path;
}
