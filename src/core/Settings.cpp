// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "Settings.h"

#include "Files.h"
#include "IniText.h"
#include "StorageManager.h"

#include <QDir>
#include <QFileDevice>
#include <QFileInfo>
#include <QIODevice>
#include <QSettings>

#include <algorithm>

namespace
{

// Qt reads the file again only if it has changed, so what came of the last time is kept.
bool s_isUnreadable = false;

bool readIni(QIODevice& device, QSettings::SettingsMap& values)
{
    const FileContent content = readToTheEnd(device, Settings::MaxFileBytes);
    s_isUnreadable = content.state != FileContent::State::Whole;
    values = IniText::parse(content.bytes);
    return !s_isUnreadable;
}

bool writeIni(QIODevice& device, const QSettings::SettingsMap& values)
{
    device.setTextModeEnabled(true);
    auto* file = qobject_cast<QFileDevice*>(&device);
    if (file)
        makePrivate(*file);
    const QByteArray text = IniText::format(values);
    // A disk that is full in the middle says so only when the buffer is emptied.
    return device.write(text) == text.size() && (!file || file->flush());
}

/// Anything else can't be read, and to open a pipe would block.
bool isFileOrNothing(const QString& path)
{
    const QFileInfo info(path);
    return info.isFile() || !info.exists();
}

/// The key as the file spells it. People write it as they like, and case never mattered on Windows;
/// but a format that doesn't tell cases apart would write every key in small letters.
QString spellingOf(const QSettings& settings, const QString& key)
{
    if (settings.contains(key))
        return key;
    const QStringList keys = settings.allKeys();
    const auto found = std::find_if(keys.begin(), keys.end(), [&key](const QString& other) {
        return other.compare(key, Qt::CaseInsensitive) == 0;
    });
    return found == keys.end() ? key : *found;
}

} // namespace

QSettings::Format Settings::format()
{
    // Qt's own would make objects of what is in the file.
    static const QSettings::Format s_format =
        QSettings::registerFormat("ini", readIni, writeIni, Qt::CaseSensitive);
    return s_format;
}

QString Settings::filePath()
{
    return QDir(StorageManager::appDataDir()).filePath(QStringLiteral("settings.ini"));
}

bool Settings::contains(const QString& key)
{
    const QString path = filePath();
    if (!isFileOrNothing(path))
        return false;
    const QSettings settings(path, format());
    return settings.contains(spellingOf(settings, key));
}

QVariant Settings::value(const QString& key, const QVariant& fallback)
{
    const QString path = filePath();
    if (!isFileOrNothing(path))
        return fallback;
    const QSettings settings(path, format());
    const QVariant found = settings.value(spellingOf(settings, key), fallback);
    const bool isRefused = found.metaType() == QMetaType::fromType<IniText::RawValue>();
    return isRefused ? fallback : found;
}

void Settings::setValue(const QString& key, const QVariant& value)
{
    const QString path = filePath();
    if (!isFileOrNothing(path) || value.toString().size() > MaxValueLength)
        return;
    QSettings settings(path, format());
    if (s_isUnreadable) {
        moveFileAside(path);
        s_isUnreadable = false;
    }
    settings.setValue(spellingOf(settings, key), value);
    settings.sync();
}
