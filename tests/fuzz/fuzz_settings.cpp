// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "IniText.h"
#include "Localization.h"
#include "Settings.h"
#include "SettingsFile.h"
#include "SpotlightWindow.h"
#include "Theme.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace
{

// In the order in which the parts of an input become their values.
const QByteArrayList kKeys{"[Theme]\nForceTheme",       "SeedColor",
                           "[Layout]\nGridColumns",     "[Language]\nCode",
                           "[Spotlight]\nDefaultScope", "[General]\nlastCategory"};
const QString kChangedKey = QStringLiteral("Theme/ForceTheme");

void require(bool condition)
{
    if (!condition)
        std::abort();
}

QByteArray fileWith(const QByteArrayList& values)
{
    QByteArray text;
    for (qsizetype i = 0; i < kKeys.size(); ++i)
        text += kKeys.at(i) + '=' + values.value(i) + '\n';
    return text;
}

/// All of the file but one key, in one spelling.
QByteArray restOfTheFile()
{
    QSettings::SettingsMap values = IniText::parse(SettingsFile::bytes());
    values.removeIf([](const auto& entry) {
        return entry.key().compare(kChangedKey, Qt::CaseInsensitive) == 0;
    });
    return IniText::format(values);
}

} // namespace

/// Whatever stands behind the keys of "settings.ini": every part of the program finds something
/// that it can work with, and a change of one setting leaves all others.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QByteArray file = fileWith(input.split('\0'));
    require(SettingsFile::write(file));

    Theme::loadSettings();
    require(Theme::gridColumns >= 2 && Theme::gridColumns <= 4);
    Tr::loadSettings();
    require(Tr::all().contains(Tr::currentLang));
    require(SpotlightWindow::defaultScopeKeys().size() < SpotlightWindow::scopeDefs().size());
    require(SettingsFile::bytes() == file);

    const QByteArray rest = restOfTheFile();
    Theme::saveForceTheme(1);
    require(Settings::value(kChangedKey).toInt() == 1);
    require(restOfTheFile() == rest);
    require(QColor::isValidColorName(Theme::colors().primary));
    require(QColor::isValidColorName(getItemTheme().onKey));
    return 0;
}
