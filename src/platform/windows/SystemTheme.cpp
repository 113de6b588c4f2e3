// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "SystemTheme.h"

#include <QSettings>
#include <QString>
#include <QVariant>

namespace
{

constexpr QLatin1String kPersonalizeKey("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\"
                                        "CurrentVersion\\Themes\\Personalize");
constexpr QLatin1String kLightValue("AppsUseLightTheme");

} // namespace

bool Platform::prefersDark()
{
    const QSettings personalize(kPersonalizeKey, QSettings::NativeFormat);
    if (!personalize.contains(kLightValue))
        return false;
    bool isNumber = false;
    const int usesLight = personalize.value(kLightValue).toInt(&isNumber);
    return isNumber && usesLight == 0; // stored the other way round: 0 is dark
}
