// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Settings.h"

#include <QByteArray>
#include <QDateTime>
#include <QFile>

/// The file of the settings as somebody else writes and reads it.
namespace SettingsFile
{

/// Replaces it in such a way that the program takes notice, however fast one follows the other: Qt
/// knows a file by its size and its time alone. \returns false if it can't be written.
inline bool write(const QByteArray& content)
{
    static QDateTime s_time = QDateTime::currentDateTime().addDays(-365);
    s_time = s_time.addSecs(1);
    QFile file(Settings::filePath());
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() &&
           file.flush() && file.setFileTime(s_time, QFileDevice::FileModificationTime);
}

/// "(none)" if it can't be read.
inline QByteArray bytes()
{
    QFile file(Settings::filePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

/// The same with lines ended by a line feed alone, whatever the system ends them by.
inline QByteArray read()
{
    return bytes().replace("\r\n", "\n");
}

} // namespace SettingsFile
