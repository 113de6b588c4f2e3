// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TestScreens.h"

#include "TestFiles.h"
#include "TestHome.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace
{

constexpr char kFileName[] = "screens.json";

QString s_startDirectory;

void enter(const QString& directory)
{
    if (!QDir::setCurrent(directory))
        qFatal("cannot enter %s", qPrintable(directory));
}

// The platform has read the file by then. Whatever is given relative to the current directory, such
// as a file for the results, means the one that the test was started in; and Windows removes no
// directory that is a current one.
void returnToTheStart()
{
    enter(s_startDirectory);
}

QJsonObject screen(const char* name, const QRect& place)
{
    return {{"name", QLatin1String(name)},
            {"x", place.x()},
            {"y", place.y()},
            {"width", place.width()},
            {"height", place.height()}};
}

} // namespace

void TestScreens::install()
{
    const QJsonArray screens{screen("primary", Primary), screen("second", Second)};
    const QByteArray json = QJsonDocument(QJsonObject{{"screens", screens}}).toJson();
    if (!TestFiles::write(QDir(TestHome::path()).filePath(kFileName), json))
        qFatal("cannot write the screens");
    // Given by a relative name, since the platform's options are separated by colons.
    s_startDirectory = QDir::currentPath();
    enter(TestHome::path());
    qAddPreRoutine(returnToTheStart);
    qputenv("QT_QPA_PLATFORM", QByteArray("offscreen:configfile=") + kFileName);
}
