// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "TestScreens.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryFile>

#include <memory>

namespace
{

std::unique_ptr<QTemporaryFile> s_file;

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
    // Given by a relative name, since the platform's options are separated by colons.
    s_file = std::make_unique<QTemporaryFile>("screens_XXXXXX.json");
    if (!s_file->open() || s_file->write(json) != json.size())
        qFatal("cannot write the screens");
    s_file->close();
    const QString name = QFileInfo(*s_file).fileName();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(name));
}
