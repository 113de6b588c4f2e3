// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "IniText.h"

#include <QByteArray>
#include <QStringList>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace
{

void require(bool condition)
{
    if (!condition)
        std::abort();
}

bool isOfAKindThatIsRead(const QVariant& value)
{
    return !value.isValid() || value.metaType() == QMetaType::fromType<QString>() ||
           value.metaType() == QMetaType::fromType<QStringList>() ||
           value.metaType() == QMetaType::fromType<IniText::RawValue>();
}

} // namespace

/// Whatever lies in "settings.ini": nothing but texts come out, they come back equal after a save,
/// and what is written behind it is found again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QSettings::SettingsMap values = IniText::parse(input);
    for (const QVariant& value : values)
        require(isOfAKindThatIsRead(value));
    const QByteArray once = IniText::format(values);
    require(IniText::format(IniText::parse(once)) == once);
    require(IniText::parse(input + "\n[Theme]\nForceTheme=1\n").value("Theme/ForceTheme") == "1");
    return 0;
}
