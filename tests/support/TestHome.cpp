// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TestHome.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <memory>

namespace
{

std::unique_ptr<QTemporaryDir> s_home;

void pointInto(const char* variable, const QString& subDirectory)
{
    const QString dir = s_home->filePath(subDirectory);
    if (!QDir().mkpath(dir))
        qFatal("cannot make %s", qPrintable(dir));
    qputenv(variable, QFile::encodeName(dir));
}

} // namespace

void TestHome::install()
{
    s_home = std::make_unique<QTemporaryDir>();
    if (!s_home->isValid())
        qFatal("no temporary directory: %s", qPrintable(s_home->errorString()));
    pointInto("HOME", QStringLiteral("home"));
    pointInto("XDG_DATA_HOME", QStringLiteral("data"));
    pointInto("XDG_CONFIG_HOME", QStringLiteral("config"));
    pointInto("XDG_CACHE_HOME", QStringLiteral("cache"));
    pointInto("XDG_RUNTIME_DIR", QStringLiteral("run"));
    pointInto("APPDATA", QStringLiteral("data"));
    pointInto("LOCALAPPDATA", QStringLiteral("data"));
    // Qt refuses a run-time directory that others may read.
    QFile::setPermissions(s_home->filePath(QStringLiteral("run")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication::setApplicationName(QStringLiteral("Orlimo"));
    QCoreApplication::setOrganizationName(QStringLiteral("Orlimo"));
}

QString TestHome::path()
{
    return s_home ? s_home->path() : QString();
}

QString TestHome::dataDir()
{
    const QString dir = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (!QDir().mkpath(dir))
        qFatal("cannot make %s", qPrintable(dir));
    return dir;
}

QString TestHome::writeDataFile(const QString& fileName, const QByteArray& content)
{
    QFile file(QDir(dataDir()).filePath(fileName));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
    return file.fileName();
}
