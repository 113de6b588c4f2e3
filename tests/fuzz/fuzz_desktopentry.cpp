// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "DesktopEntry.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace
{

const QString kPath = QStringLiteral("/some where/org.example.App.desktop");

void require(bool condition)
{
    if (!condition)
        std::abort();
}

/// Rules that hold for every command line that may be run.
void checkCommand(const DesktopEntry& entry)
{
    const std::optional<QStringList> words = entry.command(kPath);
    if (!words)
        return;
    require(!entry.exec.isEmpty());
    require(!words->isEmpty() && !words->constFirst().isEmpty());
    for (const QString& word : *words)
        require(!word.contains(QChar(QChar::Null)));
    // Quoted by the rules, the words come out as they are. What stands in them is no code any more.
    DesktopEntry again;
    for (QString word : *words) {
        for (const char* special : {"\\", "\"", "`", "$"})
            word.replace(QLatin1String(special), QLatin1Char('\\') + QLatin1String(special));
        again.exec += QLatin1Char('"') + word.replace(QLatin1Char('%'), QLatin1String("%%")) +
                      QLatin1String("\" ");
    }
    require(again.command(kPath) == words);
}

/// One desktop can't be among those that alone show an entry and yet not be shown it.
void checkDesktops(const DesktopEntry& entry)
{
    for (const QString& desktop : entry.onlyShowIn)
        require(!desktop.isEmpty() && entry.isShownIn({desktop}));
    for (const QString& desktop : entry.notShowIn)
        require(entry.isShownIn({desktop}) == entry.onlyShowIn.contains(desktop));
    require(entry.isShownIn({}) == entry.onlyShowIn.isEmpty());
}

} // namespace

/// Any bytes are an entry or none, and a command line or none, by the same rules each time. The
/// first line names the locale.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArrayView input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const qsizetype lineEnd = input.indexOf('\n');
    const EntryLocale locale(lineEnd < 0 ? QByteArrayView("de_DE@x") : input.first(lineEnd));
    const QByteArrayView content = input.sliced(lineEnd + 1);

    const std::optional<DesktopEntry> entry = DesktopEntry::parse(content, locale);
    if (entry) {
        checkCommand(*entry);
        checkDesktops(*entry);
        // What stands in later groups changes nothing.
        QByteArray longer = content.toByteArray();
        longer += "\n[Other]\nType=Link\nExec=\"\nName=Other\n";
        const std::optional<DesktopEntry> same = DesktopEntry::parse(longer, locale);
        require(same && same->name == entry->name && same->exec == entry->exec);
    }

    // The bytes as they are, without a file around them.
    DesktopEntry bare;
    bare.exec = QString::fromUtf8(input).remove(QChar(QChar::Null));
    bare.name = QStringLiteral("a \"b\" %f");
    checkCommand(bare);
    const QString busName = DesktopEntry::busName(bare.exec);
    require(busName.isEmpty() || busName.contains(QLatin1Char('.')));
    return 0;
}
