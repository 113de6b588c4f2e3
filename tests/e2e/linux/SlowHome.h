// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Desktop.h"
#include "Program.h"

#include <QFile>
#include <QTest>

/// A home whose first scan lasts as long as a test needs it to.
namespace SlowHome
{

inline QString gate(const Desktop& desktop)
{
    return desktop.path(QStringLiteral("slow-disk"));
}

/// Call before the program is started.
inline void begin(const Desktop& desktop, Program& program)
{
    // Without the delay these are a matter of milliseconds.
    for (int i = 0; i < 400; ++i)
        program.writeHomeFile(QStringLiteral("folder-%1/seldom.memo").arg(i));
    QFile slowDisk(gate(desktop));
    QVERIFY(slowDisk.open(QIODevice::WriteOnly));
    program.setVariable(QStringLiteral("LD_PRELOAD"), QStringLiteral(ORLIMO_SLOW_DISK_LIBRARY));
    program.setVariable(QStringLiteral("ORLIMO_SLOW_DISK"), slowDisk.fileName());
    program.setVariable(QStringLiteral("ORLIMO_SLOW_DISK_MS"), QStringLiteral("100"));
    // A sanitizer wants to be the first library, which matters for what it replaces itself.
    program.setVariable(QStringLiteral("ASAN_OPTIONS"),
                        qEnvironmentVariable("ASAN_OPTIONS") +
                            QStringLiteral(":verify_asan_link_order=0"));
}

/// From now on the scan is as fast as the disk.
inline void end(const Desktop& desktop)
{
    QVERIFY(QFile::remove(gate(desktop)));
}

} // namespace SlowHome
